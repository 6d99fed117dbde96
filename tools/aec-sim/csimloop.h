// The closed loop: the library (through dlopen) chooses exposures, the simulated sensor films the scene with them.
#ifndef AECORE_TOOLS_AECSIM_CSIMLOOP_H
#define AECORE_TOOLS_AECSIM_CSIMLOOP_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "chostharness.h"
#include "csimscenario.h"
#include "simmetrics.h"
#include "simmodel.h"

struct SimLoopOptions
{
    std::string   libraryPath;
    // Parameter file of the host's tuning store; empty: no store, the library runs on its fake tuning.
    std::string   tuningPath;
    SimSensorDesc sensor;
    uint32_t      thumbnailWidth = 192;
    // Called after each frame with the frames done and the total, e.g. for a progress bar.
    std::function<void(uint32_t, uint32_t)> progress;
};

// The answer to a still-capture query of the timeline.
struct SimSnapshotResult
{
    uint32_t    frame  = 0;
    std::string label;
    KDKResult   result = VelaResultSuccess;
    uint64_t    exposureTime = 0;
    float       gain   = 0.0F;
    uint32_t    iso    = 0;
};

struct SimRunOutput
{
    SimRunData                     run;
    std::vector<SimThumbnail>      thumbnails;
    std::vector<SimSnapshotResult> snapshots;
    std::vector<std::string>       warnings;     // refused set parameters, failed frames
    uint32_t                       failedFrames = 0;
};

class CSimLoop
{
public:
    CSimLoop(const CSimScenario& scenario, const SimLoopOptions& options);

    // Loads the library, sets the camera up as a host does and runs every frame of the scenario.
    bool Run(SimRunOutput* pOutput, std::string* pError);

private:
    bool Configure(std::string* pError);
    // Sends the host requests due at a frame; still queries wait until the frame is processed.
    void ApplyEvents(uint32_t frame, std::vector<const SimEvent*>* pSnapshots);
    void ApplyEvent(const SimEvent& event, uint32_t frame);
    void SetParam(AECAlgoSetParamType type, const void* pData, uint32_t size, const std::string& what);
    // The saturation thresholds the library asks the statistics to use for the next frame, in raw codes.
    void FollowStatsConfig(CStatsGenerator* pStats);
    void QuerySnapshot(const SimEvent& event, uint32_t frame);
    // The record of a processed frame; pNext becomes the exposure the library chose, if it chose one.
    SimFrameRecord RecordFrame(uint32_t f, float brightness, const SimExposure& applied, const HostFrameResult& frame,
                               SimExposure* pNext);
    bool WantsThumbnail(uint32_t frame, const std::string& events) const;

    const CSimScenario& m_scenario;
    SimLoopOptions      m_options;
    CHostHarness        m_harness;
    LYRAECAlgorithm*    m_pAlgo = nullptr;
    SimRunOutput*       m_pOutput = nullptr;
    SimFrameContext     m_context;       // host settings now in force
    int32_t             m_evStepsPerEV = 1;
    std::vector<AECAlgoROI> m_touchROIs; // kept alive while the library may refer to them
    std::vector<SimRect>    m_faces;
    bool                    m_gridMismatchReported = false;
};

#endif // AECORE_TOOLS_AECSIM_CSIMLOOP_H
