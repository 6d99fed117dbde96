// Drives libaecore through dlopen and its C ABI only, the way a camera framework does.
#ifndef AECORE_TOOLS_CHOSTHARNESS_H
#define AECORE_TOOLS_CHOSTHARNESS_H

#include <string>
#include <vector>

#include "aecore/aecore.h"
#include "chosttuning.h"

// The harness's default core logger; it keeps every message for CoreLog().
VOID HostLogger(const CHAR* pFileName, UINT32 lineNum, const CHAR* pFunctionName, StatsLogGroup group,
                StatsLog level, const CHAR* pFormat, ...);

// Describes the synthetic sensor and scene the harness feeds to an instance.
struct HostSensorConfig
{
    UINT32 cameraId;
    StatsAlgoRole role;    // multi-camera role the camera-info parameter announces
    UINT32 width;          // sensor resolution in pixels
    UINT32 height;
    FLOAT  minGain;
    FLOAT  maxGain;
    FLOAT  fNumber;
    UINT32 gridColumns;    // Bayer grid regions
    UINT32 gridRows;
    UINT16 bitDepth;       // of the grid sums
    UINT8  pipelineDelay;  // frames between choosing an exposure and the statistics that show it
    UINT32 histogramBins;  // of the Bayer histogram: 256 or 1024
};

// A 12 MP, 10-bit-grid sensor (64 x 48 regions, 1024-bin histogram) with gains 1 to 64 behind an f/2.0 lens and a
// pipeline delay of two frames, as the tests and the demo use it.
HostSensorConfig DefaultSensor(UINT32 cameraId, StatsAlgoRole role = StatsAlgoRoleDefault);

// What one processed frame handed back through the output list.
struct HostFrameResult
{
    KDKResult           result;
    AECAlgoFrameInfo    frameInfo;
    AECAlgoFrameControl frameControl;
    AECAlgoExposureInfo exposures[AECAlgoExposureCount];
    AECAlgoExposureSet  exposureSet;
    const LDMSetMotorInfoList* pLDMQueue;
};

class CHostHarness
{
public:
    CHostHarness();
    ~CHostHarness();
    CHostHarness(const CHostHarness&)            = delete;
    CHostHarness& operator=(const CHostHarness&) = delete;

    // The parameter file that Load() reads into the host's tuning store, and how: by default the built default.bin
    // in buffer mode. An empty path leaves the store null, and the library then runs on its fake tuning.
    void SetTuningFile(const std::string& path, HostTuningLoad how);

    // Loads the library, runs the entry point, hands over the host's callback table and loads the tuning file.
    bool Load(const std::string& libraryPath, std::string* pError);
    void Unload();

    // The tuning store and mode selectors that Configure() and SendTuning() hand to an instance.
    CHostTuning&       Tuning() { return m_tuning; }
    const CHostTuning& Tuning() const { return m_tuning; }

    const LyrAECAlgorithmCallbacks& Callbacks() const { return m_callbacks; }
    void* Resolve(const char* pSymbol) const;

    // Creates (or, for a running camera, finds) the instance of a camera; a null logger means the harness's own.
    KDKResult Create(UINT32 cameraId, LYRAECAlgorithm** ppAlgo, StatsLoggingFunction pLogger = nullptr);

    // The host's usual set-up: camera info, sensor info, tuning, then an operation mode.
    KDKResult Configure(LYRAECAlgorithm* pAlgo, const HostSensorConfig& sensor, AECAlgoOperationModeType mode);
    KDKResult SetParam(LYRAECAlgorithm* pAlgo, AECAlgoSetParamType type, const void* pData, UINT32 size);
    // Sends the tuning store and the current selectors again, as a host does when its modes change.
    KDKResult SendTuning(LYRAECAlgorithm* pAlgo);
    KDKResult QueryStartExposure(LYRAECAlgorithm* pAlgo, HostFrameResult* pResult);
    KDKResult QuerySnapshotExposure(LYRAECAlgorithm* pAlgo, const AECAlgoSnapshotConfig& config,
                                    HostFrameResult* pResult);

    // The instance's own multi-camera record, which the host hands to the peer camera.
    KDKResult QueryPeerInfo(LYRAECAlgorithm* pAlgo, VOID** ppPeerInfo);
    KDKResult SetPeerInfo(LYRAECAlgorithm* pAlgo, const StatsPeerInfoCombo& combo);

    // Feeds one frame of a uniform grey scene at the given 8-bit level and walks the whole output list.
    // Calls go straight through the instance table, so a harness on another thread needs no Load().
    KDKResult ProcessFrame(LYRAECAlgorithm* pAlgo, const HostSensorConfig& sensor, UINT64 frameId, FLOAT greyLevel,
                           HostFrameResult* pResult);

    // The two halves of ProcessFrame, so that a caller can watch the library's own work alone.
    void      PrepareFrame(const HostSensorConfig& sensor, UINT64 frameId, FLOAT greyLevel, HostFrameResult* pResult);
    KDKResult RunPreparedFrame(LYRAECAlgorithm* pAlgo, HostFrameResult* pResult);
    // Prepares a frame from statistics the caller built (a simulator's); the records and the buffers they point to
    // must stay valid until RunPreparedFrame returns.
    void      PrepareFrame(UINT64 frameId, const StatsBayerGrid& grid, const StatsBayerHist& hist,
                           HostFrameResult* pResult);

    // Destroys through the close mask; closeBit false leaves the instance running.
    void Destroy(LYRAECAlgorithm* pAlgo, UINT32 cameraId, bool closeBit);

    // Messages that the core logged through the harness's logger.
    const std::vector<std::string>& CoreLog() const;
    void ClearCoreLog();

    UINT32 VendorTagBaseCalls() const;
    UINT32 VendorTagQueries() const;

private:
    KDKResult QueryFrameControl(LYRAECAlgorithm* pAlgo, AECAlgoGetParamType type, AECAlgoGetParamInput* pInput,
                                HostFrameResult* pResult);
    void BuildStatistics(const HostSensorConfig& sensor, FLOAT greyLevel);
    // Points the input and output lists at the statistics records and at pResult.
    void LinkFrameLists(UINT64 frameId, HostFrameResult* pResult);

    // Declared first, so that it goes last: the store outlives the library and every instance it was handed to.
    CHostTuning              m_tuning;
    std::string              m_tuningPath;
    HostTuningLoad           m_tuningHow;
    void*                    m_pLibrary;
    LyrAECAlgorithmCallbacks m_callbacks;
    LyrAlgorithmInterface    m_hostInterface;
    std::vector<StatsBayerGridChannelInfo> m_regions;
    std::vector<UINT32>      m_histogram[4];
    StatsBayerGrid           m_bayerGrid;
    StatsBayerHist           m_bayerHist;
    AECAlgoInputStatsInfo    m_statsInfo;
    AECAlgoInput             m_inputs[3];
    AECAlgoOutput            m_outputs[4];
    AECAlgoInputList         m_inputList;
    AECAlgoOutputList        m_outputList;
};

#endif // AECORE_TOOLS_CHOSTHARNESS_H
