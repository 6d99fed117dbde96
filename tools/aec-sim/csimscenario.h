// A simulator scenario: the scene, the sensor, the timeline of light changes and host events, and the expectations.
#ifndef AECORE_TOOLS_AECSIM_CSIMSCENARIO_H
#define AECORE_TOOLS_AECSIM_CSIMSCENARIO_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "aecore/aecore.h"
#include "simmodel.h"

// What happens at a frame of the timeline; light steps change the scene, everything else is a host request.
enum class SimEventKind
{
    LightStep,
    EVCompensation,
    AELock,
    FPSRange,
    Antibanding,
    TouchROI,
    Faces,
    Manual,
    Snapshot,
};

// One timeline entry; it takes effect before the library processes its frame.
struct SimEvent
{
    uint32_t     frame = 0;
    SimEventKind kind  = SimEventKind::LightStep;
    float        ev    = 0.0F;   // light step or exposure compensation, in stops
    bool         on    = false;  // AE lock; faces present; touch ROI set
    float        minFPS = 0.0F;
    float        maxFPS = 0.0F;
    StatisticsAntibanding antibanding = StatisticsAntibandingOff;
    SimRect      roi = {0.0F, 0.0F, 0.0F, 0.0F};
    AECAlgoModeType manualMode = AECAlgoModeAuto;
    uint64_t     manualTime = 0;  // ns
    uint32_t     manualISO  = 0;
    float        manualGain = 0.0F;
    AECAlgoSnapshotType snapshot = AECAlgoSnapshotNormal;

    // Short text for tables, plots and contact sheets, e.g. "light +4EV" or "AE lock".
    std::string Label() const;
};

// A position of the view across a panorama at a frame; the view moves linearly between two positions.
struct SimPanKey
{
    uint32_t frame    = 0;
    float    position = 0.0F;
};

// Thresholds that the regression suite asserts; an absent one is not checked.
struct SimExpectations
{
    std::optional<int32_t> maxSettleFrames;        // after each event the loop converges from
    std::optional<int32_t> maxCrossings;           // target crossings after each such event
    std::optional<double>  maxOvershootEV;
    std::optional<double>  maxFinalLumaError;      // relative, against the library's target
    std::optional<double>  evCompensationTolerance;// relative error of the settled luma against 2^EV
    bool                   lockHoldsExposure = false;
    bool                   antiFlicker       = false;
    bool                   manualHonoured    = false;
    double                 settleToleranceEV   = 0.15; // luma within this of the target counts as settled
    double                 crossingBandEV      = 0.05; // errors inside this band neither cross nor settle a side
    uint64_t               manualTimeToleranceNs = 1000;
    double                 manualISOTolerance  = 0.05; // relative
};

class CSimScenario
{
public:
    // Reads a scenario file; a relative sensor path is taken relative to the scenario's folder.
    bool Load(const std::string& path, std::string* pError);
    // Parses scenario JSON text; baseDir resolves relative file names.
    bool Parse(const std::string& text, const std::string& baseDir, std::string* pError);

    const std::string&            Name() const { return m_name; }
    const std::string&            Description() const { return m_description; }
    const std::string&            SensorPath() const { return m_sensorPath; }
    uint32_t                      Frames() const { return m_frames; }
    uint32_t                      Seed() const { return m_seed; }
    const SimSceneSpec&           Scene() const { return m_scene; }
    const std::vector<SimEvent>&  Events() const { return m_events; }
    const std::vector<SimPanKey>& Pans() const { return m_pans; }
    const std::vector<uint32_t>&  ThumbnailFrames() const { return m_thumbnailFrames; }
    const SimExpectations&        Expect() const { return m_expect; }

    // Overrides from the command line.
    void SetSensorPath(const std::string& path) { m_sensorPath = path; }
    void SetFrames(uint32_t frames) { m_frames = frames; }
    SimSceneSpec* MutableScene() { return &m_scene; }

    // Linear brightness factor of the light steps at a frame (1.0 before the first step).
    float BrightnessAt(uint32_t frame) const;
    // View position across the panorama at a frame: the pan keys, else the scene's start-to-end sweep.
    float PanAt(uint32_t frame) const;

private:
    std::string            m_name;
    std::string            m_description;
    std::string            m_sensorPath;
    uint32_t               m_frames = 60;
    uint32_t               m_seed   = 1;
    SimSceneSpec           m_scene;
    std::vector<SimEvent>  m_events;  // sorted by frame, file order within a frame
    std::vector<SimPanKey> m_pans;    // sorted by frame
    std::vector<uint32_t>  m_thumbnailFrames;
    SimExpectations        m_expect;
};

#endif // AECORE_TOOLS_AECSIM_CSIMSCENARIO_H
