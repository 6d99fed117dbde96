// The simulated camera: sensor description files, the sensor's capture of a scene, scenes, and the statistics.
#ifndef AECORE_TOOLS_AECSIM_SIMMODEL_H
#define AECORE_TOOLS_AECSIM_SIMMODEL_H

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "aecore/aecore.h"
#include "simtypes.h"

// Reads a sensor description (JSON, see docs/AEC-SIM.md); members not given keep SimSensorDesc's defaults.
bool LoadSensorDesc(const std::string& path, SimSensorDesc* pDesc, std::string* pError);

// The sensor-info parameter a host sends for this sensor (line counts, line time, gains, f-number, resolution).
StatsSensorInfo MakeSensorInfo(const SimSensorDesc& desc);

// Turns scene luminance into a raw Bayer frame: exposure time x gain / f-number^2, shot and read noise, black level,
// full well and clipping at the bit depth; with a flickering light, each row integrates the light over its own
// rolling-shutter window, so times off the flicker grid show bands.
class CSimSensor
{
public:
    CSimSensor(const SimSensorDesc& desc, uint32_t seed);

    // frameStartNs: time of the first row's exposure start; rows follow one line time apart.
    void Capture(const SimImage& scene, const SimFlicker& flicker, const SimExposure& exposure, uint64_t frameStartNs,
                 SimRawFrame* pOut);

    const SimSensorDesc& Desc() const { return m_desc; }

private:
    SimSensorDesc m_desc;
    std::mt19937  m_random;
};

// A face or touch rectangle in the frame, as fractions of width and height.
struct SimRect
{
    float left;
    float top;
    float width;
    float height;
};

// What a scenario says about its scene.
struct SimSceneSpec
{
    // "grey", "gradient", "backlit", "window", "night", "fluorescent", or "hdr" (an OpenEXR or Radiance file)
    std::string type = "grey";
    std::string path;                  // of the radiance map for "hdr"
    float       luminance = 100.0F;    // cd/m2: mean scene luminance the scene is scaled to
    float       panStart  = 0.0F;      // for panoramas: horizontal view position 0..1 at the first frame ...
    float       panEnd    = 0.0F;      // ... and at the last frame
    float       fieldOfView = 0.25F;   // share of the panorama's width in view
    uint32_t    mainsHz   = 0;         // flicker of the scene's lamps (also set by "fluorescent")
};

// A scene the simulator films; it renders at the sensor's simulation resolution.
class ISimScene
{
public:
    virtual ~ISimScene() = default;
    // pan: view position 0..1; brightness: linear factor of the scenario's light steps (1.0 = as specified).
    virtual void Render(float pan, float brightness, SimImage* pOut) = 0;
    virtual SimFlicker Flicker() const = 0;
    // The faces the scene contains, for the face-ROI events; empty if none.
    virtual std::vector<SimRect> Faces() const = 0;
    virtual std::string Name() const = 0;
};

// Builds a scene at the simulation resolution; null with a message when the scene description is wrong or the file unreadable.
std::unique_ptr<ISimScene> CreateScene(const SimSceneSpec& spec, uint32_t width, uint32_t height, std::string* pError);

// Reads an OpenEXR (.exr) or Radiance RGBE (.hdr) file into linear RGB; false with a message otherwise.
bool LoadRadianceMap(const std::string& path, SimImage* pOut, std::string* pError);

// Builds the Bayer grid (sums and counts of non-saturated pixels per channel, saturation sums, as the library's
// parser reads them) and the Bayer histogram of a raw frame. Counts are scaled to the sensor's real resolution.
class CStatsGenerator
{
public:
    explicit CStatsGenerator(const SimSensorDesc& desc);

    // Saturation threshold per channel (R, GR, GB, B) in raw codes; default: the largest code.
    void SetSaturationThresholds(const uint32_t thresholds[4]);
    void Generate(const SimRawFrame& frame);

    // Valid until the next Generate; they point into this object.
    const StatsBayerGrid& Grid() const { return m_grid; }
    const StatsBayerHist& Hist() const { return m_hist; }

private:
    SimSensorDesc                               m_desc;
    uint32_t                                    m_satThreshold[4];
    std::vector<StatsBayerGridChannelInfoS_Sat> m_regions;
    std::vector<uint32_t>                       m_histogram[4];
    StatsBayerGrid                              m_grid;
    StatsBayerHist                              m_hist;
};

#endif // AECORE_TOOLS_AECSIM_SIMMODEL_H
