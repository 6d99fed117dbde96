// Drives libaecore through dlopen and its C ABI only, the way a camera framework does.
#include "chostharness.h"

#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>

namespace
{

// The host's callbacks are plain C functions, so their state is file-wide, as in a real framework.
std::mutex               s_logMutex;
std::vector<std::string> s_coreLog;
UINT32                   s_vendorTagBaseCalls = 0;
UINT32                   s_vendorTagQueries   = 0;

} // namespace

VOID HostLogger(const CHAR* pFileName, UINT32 lineNum, const CHAR* pFunctionName, StatsLogGroup group,
                StatsLog level, const CHAR* pFormat, ...)
{
    (void)pFileName;
    (void)lineNum;
    (void)pFunctionName;
    (void)group;
    (void)level;
    char    line[1024];
    va_list args;
    va_start(args, pFormat);
    vsnprintf(line, sizeof(line), pFormat, args);
    va_end(args);
    std::lock_guard<std::mutex> lock(s_logMutex);
    s_coreLog.emplace_back(line);
}

namespace
{

KDKResult HostGetVendorTagBase(LyrVendorTagBaseInfo* pInfo)
{
    s_vendorTagBaseCalls++;
    pInfo->vendorTagBase = 0x80000000U;
    return VelaResultSuccess;
}

KDKResult HostQueryVendorTagLocation(const CHAR* pSectionName, const CHAR* pTagName, UINT32* pTagLocation)
{
    (void)pSectionName;
    s_vendorTagQueries++;
    *pTagLocation = 0x80000000U + static_cast<UINT32>(std::strlen(pTagName));
    return VelaResultSuccess;
}

} // namespace

HostSensorConfig DefaultSensor(UINT32 cameraId, StatsAlgoRole role)
{
    return HostSensorConfig{cameraId, role, 4000, 3000, 1.0F, 64.0F, 2.0F, 64, 48, 10, 2, 1024};
}

CHostHarness::CHostHarness()
    : m_tuning(), m_tuningPath(DefaultTuningFile()), m_tuningHow(HostTuningLoad::Buffer), m_pLibrary(nullptr),
      m_callbacks(), m_hostInterface(), m_bayerGrid(), m_bayerHist(), m_statsInfo(), m_inputs(),
      m_outputs(), m_inputList(), m_outputList()
{
}

CHostHarness::~CHostHarness()
{
    Unload();
}

void CHostHarness::SetTuningFile(const std::string& path, HostTuningLoad how)
{
    m_tuningPath = path;
    m_tuningHow  = how;
}

bool CHostHarness::Load(const std::string& libraryPath, std::string* pError)
{
    m_pLibrary = dlopen(libraryPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (nullptr == m_pLibrary)
    {
        *pError = "cannot load " + libraryPath + ": " + dlerror();
        return false;
    }
    auto pEntry = reinterpret_cast<void (*)(LyrAECAlgorithmCallbacks*)>(Resolve("LyrAECAlgorithmEntry"));
    if (nullptr == pEntry)
    {
        *pError = "LyrAECAlgorithmEntry not exported";
        return false;
    }
    m_callbacks = LyrAECAlgorithmCallbacks{};
    pEntry(&m_callbacks);

    m_hostInterface                         = LyrAlgorithmInterface{};
    m_hostInterface.size                    = sizeof(m_hostInterface);
    m_hostInterface.pGetVendorTagBase       = &HostGetVendorTagBase;
    m_hostInterface.pQueryVendorTagLocation = &HostQueryVendorTagLocation;
    m_callbacks.pfnSetAlgoInterface(&m_hostInterface);
    return m_tuning.Load(m_tuningPath, m_tuningHow, pError);
}

void CHostHarness::Unload()
{
    if (nullptr != m_pLibrary)
    {
        dlclose(m_pLibrary);
        m_pLibrary = nullptr;
    }
}

void* CHostHarness::Resolve(const char* pSymbol) const
{
    return (nullptr != m_pLibrary) ? dlsym(m_pLibrary, pSymbol) : nullptr;
}

KDKResult CHostHarness::Create(UINT32 cameraId, LYRAECAlgorithm** ppAlgo, StatsLoggingFunction pLogger)
{
    // The library reads the camera info among the first five entries, so the list always has five.
    StatsCameraInfo    cameraInfo = {StatsAlgoRoleDefault, cameraId};
    UINT32             sessionHandle = 1;
    BOOL               openIndicator = TRUE;
    AECAlgoCreateParam params[5]     = {};
    params[0] = {reinterpret_cast<VOID*>((nullptr != pLogger) ? pLogger : &HostLogger), sizeof(StatsLoggingFunction), AECAlgoCreateParamsLoggerFunctionPtr};
    params[1] = {&sessionHandle, sizeof(sessionHandle), AECAlgoCreateParamTypeSessionHandle};
    params[2] = {&openIndicator, sizeof(openIndicator), AECAlgoCreateParamTypeCameraOpenIndicator};
    params[3] = {&cameraInfo, sizeof(cameraInfo), AECAlgoCreateParamTypeCameraInfo};
    params[4] = {nullptr, 0, AECCreateParamsTypeTuningData};
    AECAlgoCreateParamList list = {params, 5};
    return m_callbacks.pfnCreate(&list, ppAlgo);
}

KDKResult CHostHarness::SetParam(LYRAECAlgorithm* pAlgo, AECAlgoSetParamType type, const void* pData, UINT32 size)
{
    AECAlgoSetParam     param = {const_cast<void*>(pData), size, type};
    AECAlgoSetParamList list  = {&param, 1};
    return pAlgo->AECSetParam(pAlgo, &list);
}

KDKResult CHostHarness::SendTuning(LYRAECAlgorithm* pAlgo)
{
    StatsTuningData tuning = m_tuning.Data();
    return SetParam(pAlgo, AECAlgoSetParamSorentaData, &tuning, sizeof(tuning));
}

KDKResult CHostHarness::Configure(LYRAECAlgorithm* pAlgo, const HostSensorConfig& sensor, AECAlgoOperationModeType mode)
{
    StatsCameraInfo cameraInfo = {sensor.role, sensor.cameraId};

    // 30 fps with 33 us lines: 1000 lines per frame, exposure from one line up to the frame.
    StatsSensorInfo sensorInfo        = {};
    sensorInfo.currentFPS             = 30;
    sensorInfo.maxFPS                 = 30;
    sensorInfo.currentLinesPerFrame   = 1000;
    sensorInfo.currentMaxLineCount    = 1000;
    sensorInfo.currentMinLineCount    = 1;
    sensorInfo.maxGain                = sensor.maxGain;
    sensorInfo.minGain                = sensor.minGain;
    sensorInfo.pixelClock             = 300000000;
    sensorInfo.pixelClockPerLine      = 10000;
    sensorInfo.sensorResWidth         = sensor.width;
    sensorInfo.sensorResHeight        = sensor.height;
    sensorInfo.fNumber                = sensor.fNumber;
    sensorInfo.sensorActiveResWidth   = sensor.width;
    sensorInfo.sensorActiveResHeight  = sensor.height;

    StatsTuningData tuning = m_tuning.Data();
    UINT8           delay  = sensor.pipelineDelay;
    AECAlgoSetParam params[5] = {
        {&cameraInfo, sizeof(cameraInfo), AECAlgoSetParamCameraInfo},
        {&sensorInfo, sizeof(sensorInfo), AECAlgoSetParamSensorInfo},
        {&delay, sizeof(delay), AECAlgoSetParamPipelineDelay},
        {&tuning, sizeof(tuning), AECAlgoSetParamSorentaData},
        {&mode, sizeof(mode), AECAlgoSetParamOperationMode},
    };
    AECAlgoSetParamList list = {params, 5};
    return pAlgo->AECSetParam(pAlgo, &list);
}

KDKResult CHostHarness::QueryFrameControl(LYRAECAlgorithm* pAlgo, AECAlgoGetParamType type,
                                          AECAlgoGetParamInput* pInput, HostFrameResult* pResult)
{
    *pResult             = HostFrameResult{};
    pResult->exposureSet = {pResult->exposures, AECAlgoExposureCount, sizeof(AECAlgoExposureInfo), 0, 0};

    AECAlgoGetParamOutput outputs[2] = {
        {&pResult->frameControl, sizeof(pResult->frameControl), 0, AECAlgoGetParamOutputFrameControl},
        {&pResult->exposureSet, sizeof(pResult->exposureSet), 0, AECAlgoGetParamOutputExposureSets},
    };
    AECAlgoGetParam query = {};
    query.type            = type;
    query.inputList       = {pInput, (nullptr != pInput) ? 1U : 0U};
    query.outputList      = {outputs, 2};
    pResult->result       = pAlgo->AECGetParam(pAlgo, &query);
    return pResult->result;
}

KDKResult CHostHarness::QueryStartExposure(LYRAECAlgorithm* pAlgo, HostFrameResult* pResult)
{
    return QueryFrameControl(pAlgo, AECAlgoGetParamStartExposure, nullptr, pResult);
}

KDKResult CHostHarness::QuerySnapshotExposure(LYRAECAlgorithm* pAlgo, const AECAlgoSnapshotConfig& config,
                                              HostFrameResult* pResult)
{
    AECAlgoSnapshotConfig snapshot = config;
    AECAlgoGetParamInput  input    = {AECAlgoGetParamInputSnapshotType, &snapshot, sizeof(snapshot)};
    return QueryFrameControl(pAlgo, AECAlgoGetParamSnapshotExposure, &input, pResult);
}

KDKResult CHostHarness::QueryPeerInfo(LYRAECAlgorithm* pAlgo, VOID** ppPeerInfo)
{
    *ppPeerInfo                  = nullptr;
    AECAlgoGetParamOutput output = {ppPeerInfo, sizeof(*ppPeerInfo), 0, AECAlgoGetParamOutputPeerInfo};
    AECAlgoGetParam       query  = {};
    query.type                   = AECAlgoGetParamPeerInfo;
    query.outputList             = {&output, 1};
    return pAlgo->AECGetParam(pAlgo, &query);
}

KDKResult CHostHarness::SetPeerInfo(LYRAECAlgorithm* pAlgo, const StatsPeerInfoCombo& combo)
{
    return SetParam(pAlgo, AECAlgoSetParamPeerInfo, &combo, sizeof(combo));
}

void CHostHarness::BuildStatistics(const HostSensorConfig& sensor, FLOAT greyLevel)
{
    const UINT32 regions  = sensor.gridColumns * sensor.gridRows;
    const UINT32 maxValue = (1U << sensor.bitDepth) - 1U;
    const UINT32 value    = static_cast<UINT32>(std::lround(std::min(greyLevel / 255.0F, 1.0F) * maxValue));
    const UINT32 regionW  = sensor.width / sensor.gridColumns;
    const UINT32 regionH  = sensor.height / sensor.gridRows;
    // Every pixel of the uniform scene lies below the saturation threshold: each Bayer channel of a region
    // counts a quarter of its pixels, all at the scene's value.
    const UINT16 count = static_cast<UINT16>(std::min(regionW * regionH / 4U, 0xFFFFU));
    const StatsColorChannelType channels[4] = {StatsColorChannelR, StatsColorChannelGR, StatsColorChannelGB,
                                                StatsColorChannelB};

    StatsBayerGridChannelInfo region = {};
    region.RSum    = value * count;
    region.BSum    = value * count;
    region.GRSum   = value * count;
    region.GBSum   = value * count;
    region.RCount  = count;
    region.BCount  = count;
    region.GRCount = count;
    region.GBCount = count;
    m_regions.assign(regions, region);

    m_bayerGrid = StatsBayerGrid{};
    m_bayerHist = StatsBayerHist{};
    const UINT32 bins = sensor.histogramBins;
    const UINT32 bin  = std::min(bins - 1, static_cast<UINT32>(std::lround(greyLevel / 255.0F * (bins - 1))));
    for (UINT32 c = 0; c < 4; c++)
    {
        m_bayerGrid.gridDataType[c] = channels[c];
        m_bayerGrid.satThreshold[c] = maxValue;
        m_histogram[c].assign(bins, 0);
        m_histogram[c][bin]         = sensor.width * sensor.height / 4;
        m_bayerHist.pHistData[c]    = m_histogram[c].data();
        m_bayerHist.histDataType[c] = channels[c];
    }
    m_bayerGrid.horizontalRegionCount = sensor.gridColumns;
    m_bayerGrid.verticalRegionCount   = sensor.gridRows;
    m_bayerGrid.totalRegionCount      = regions;
    m_bayerGrid.regionWidth           = regionW;
    m_bayerGrid.regionHeight          = regionH;
    m_bayerGrid.bitDepth              = sensor.bitDepth;
    m_bayerGrid.numValidRegions       = regions;
    m_bayerGrid.startupMode           = StatisticsStartUpValid;
    m_bayerGrid.exposureType          = AECAlgoExposureSafe;
    m_bayerGrid.m_pChannelData        = m_regions.data();
    m_bayerHist.channelCount          = 4;
    m_bayerHist.binCount              = bins;
    m_bayerHist.startupMode           = StatisticsStartUpValid;
    m_bayerHist.uniform               = TRUE;
    m_bayerHist.exposureType          = AECAlgoExposureSafe;
}

KDKResult CHostHarness::ProcessFrame(LYRAECAlgorithm* pAlgo, const HostSensorConfig& sensor, UINT64 frameId,
                                     FLOAT greyLevel, HostFrameResult* pResult)
{
    PrepareFrame(sensor, frameId, greyLevel, pResult);
    return RunPreparedFrame(pAlgo, pResult);
}

void CHostHarness::PrepareFrame(const HostSensorConfig& sensor, UINT64 frameId, FLOAT greyLevel,
                                HostFrameResult* pResult)
{
    BuildStatistics(sensor, greyLevel);
    LinkFrameLists(frameId, pResult);
}

void CHostHarness::PrepareFrame(UINT64 frameId, const StatsBayerGrid& grid, const StatsBayerHist& hist,
                                HostFrameResult* pResult)
{
    m_bayerGrid = grid;
    m_bayerHist = hist;
    LinkFrameLists(frameId, pResult);
}

void CHostHarness::LinkFrameLists(UINT64 frameId, HostFrameResult* pResult)
{
    m_statsInfo           = AECAlgoInputStatsInfo{};
    m_statsInfo.requestId = frameId;
    m_inputs[0]           = {&m_statsInfo, sizeof(m_statsInfo), AECAlgoInputStatisticInfo};
    m_inputs[1]           = {&m_bayerGrid, sizeof(m_bayerGrid), AECAlgoInputBayerGrid};
    m_inputs[2]           = {&m_bayerHist, sizeof(m_bayerHist), AECAlgoInputBayerHist};
    m_inputList           = {m_inputs, 3};

    *pResult             = HostFrameResult{};
    pResult->exposureSet = {pResult->exposures, AECAlgoExposureCount, sizeof(AECAlgoExposureInfo), 0, 0};
    m_outputs[0]         = {&pResult->frameInfo, sizeof(pResult->frameInfo), 0, AECAlgoOutputFrameInfo};
    m_outputs[1]         = {&pResult->frameControl, sizeof(pResult->frameControl), 0, AECAlgoOutputFrameControl};
    m_outputs[2]         = {&pResult->exposureSet, sizeof(pResult->exposureSet), 0, AECAlgoOutputExposureSets};
    m_outputs[3]         = {nullptr, sizeof(LDMSetMotorInfoList), 0, AECAlgoOutputLDMCmdQueue};
    m_outputList         = {m_outputs, 4};
}

KDKResult CHostHarness::RunPreparedFrame(LYRAECAlgorithm* pAlgo, HostFrameResult* pResult)
{
    pResult->result    = pAlgo->AECProcess(pAlgo, &m_inputList, &m_outputList);
    pResult->pLDMQueue = static_cast<const LDMSetMotorInfoList*>(m_outputs[3].pAECOutput);
    return pResult->result;
}

void CHostHarness::Destroy(LYRAECAlgorithm* pAlgo, UINT32 cameraId, bool closeBit)
{
    UINT32          closeMask  = closeBit ? (1U << cameraId) : 0U;
    StatsCameraInfo cameraInfo = {StatsAlgoRoleDefault, cameraId};
    AECAlgoDestroyParam params[2] = {
        {AECDestroyParamTypeCameraCloseIndicator, &closeMask, sizeof(closeMask)},
        {AECDestroyParamTypeCameraInfo, &cameraInfo, sizeof(cameraInfo)},
    };
    AECAlgoDestroyParamList list = {params, 2};
    pAlgo->AECDestroy(pAlgo, &list);
}

const std::vector<std::string>& CHostHarness::CoreLog() const
{
    return s_coreLog;
}

void CHostHarness::ClearCoreLog()
{
    std::lock_guard<std::mutex> lock(s_logMutex);
    s_coreLog.clear();
}

UINT32 CHostHarness::VendorTagBaseCalls() const
{
    return s_vendorTagBaseCalls;
}

UINT32 CHostHarness::VendorTagQueries() const
{
    return s_vendorTagQueries;
}
