// The per-camera state store of the core: settings, tuning views, frame history, ROIs and multi-camera exchange.
#include "aec/core/base/caeccoredatamanager.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <mutex>

#include "platform/statslogger.h"
#include "platform/velaallocator.h"

namespace
{
// Guards every camera's published multi-camera record: the peer camera reads it from its own frame thread.
std::mutex& MultiCamInfoLock()
{
    static std::mutex lock;
    return lock;
}
} // namespace

namespace
{

// Statistics configuration without statistics tuning.
constexpr UINT32 DefaultChannelGainThreshold = 15296;
constexpr UINT32 DefaultGridColumns          = 64;
constexpr UINT32 DefaultGridRows             = 48;
constexpr UINT8  DefaultGridBitDepth         = 14;
// Grid channels: R, Gr, Gb, B.
constexpr UINT32 GridChannelCount = 4;
// The widest bit depth whose full scale (1U << depth) a UINT32 holds.
constexpr UINT32 MaxStatsBitDepth = 31;

// Entries of the EV compensation table of the luma target: one per EV step from the lowest EV.
constexpr INT32 EVCompTableSize = 49;

// Knee counts a custom exposure table may have; the upper bound is exclusive although it is what is reported.
constexpr UINT32 MinCustomTableKnees = 2;
constexpr UINT32 MaxCustomTableKnees = AECORE_CUSTOM_EXPOSURE_TABLE_KNEES;

// Base of the exposure index: sensitivity ratio of one index unit.
constexpr FLOAT AECIndexBase = 1.03F;

// Index units of a linear ratio: index delta = log10(ratio) x this.
constexpr DOUBLE AECIndexPerLog10 = 77.89852905273438;
// Below this two exposure values or speeds count as equal.
constexpr FLOAT AECFloatEpsilon = 1e-7F;

// Converts to UINT32, saturating at both ends: an out-of-range float conversion is undefined. NaN gives 0.
UINT32 ToUINT32Saturated(DOUBLE value)
{
    if (!(value > 0.0))
    {
        return 0;
    }
    constexpr DOUBLE maxValue = static_cast<DOUBLE>(std::numeric_limits<UINT32>::max());
    return (value >= maxValue) ? std::numeric_limits<UINT32>::max() : static_cast<UINT32>(value);
}

// Histogram channel of the statistics tuning's channel number; FALSE when the number has no channel.
BOOL MapHistogramChannel(INT32 tunedChannel, ColorChannel* pChannel)
{
    switch (tunedChannel)
    {
        case 0: *pChannel = ColorChannelR; return TRUE;
        case 1: *pChannel = ColorChannelGR; return TRUE;
        case 2: *pChannel = ColorChannelGB; return TRUE;
        case 4: *pChannel = ColorChannelB; return TRUE;
        case 5: *pChannel = ColorChannelY; return TRUE;
        default: return FALSE;
    }
}

typedef aecStatsConfig::BHistStatsConfigType HistogramTuning;

// The histogram entry that configures the Bayer histogram; null without statistics tuning or histograms.
const HistogramTuning* FirstHistogram(const aecStatsConfig::AECStatsConfig* pTuning)
{
    if ((nullptr == pTuning) || (0 == pTuning->histStatsConfig.histogramsCount))
    {
        return nullptr;
    }
    return pTuning->histStatsConfig.histograms;
}

// Uniform bins unless the tuning asks for bin uniformity.
BOOL IsUniformHistogram(const HistogramTuning& rHistogram)
{
    return (0 == rHistogram.binUniformity) ? TRUE : FALSE;
}

// Full field of view when the tuning's ROI control is set, else the crop window.
StatsROISelection ROISelectionOf(INT32 ROIConfigControl)
{
    return (0 != ROIConfigControl) ? StatsROISelectionFullFOV : StatsROISelectionCroppedFOV;
}

// Operation modes whose last frame the next mode may start from.
BOOL IsStreamingTypeMode(AECAlgoOperationModeType mode)
{
    return (AECAlgoOperationModeStreaming == mode) || (AECAlgoOperationModeFastAEC == mode) ||
           (AECAlgoOperationModeAggressiveAEC == mode);
}

} // namespace

CAECCoreDataManager::CAECCoreDataManager()
    : m_componentList()
    , m_tuningManager()
    , m_pCoreTuningData(nullptr)
    , currentTuningMode()
    , m_opMode(AECAlgoOperationModeInit)
    , m_mtrMode(AECAlgoMeteringModeCenterWeighted)
    , m_contextEV()
    , m_flickerComp(StatisticsAntibanding60Hz)
    , m_manualSetting()
    , m_minFPS(1.0F)
    , m_maxFPS(30.0F)
    , m_LEDMode(AECAlgoLEDModeOff)
    , m_flashMeasState(AECAlgoFlashMeasKindOff)
    , m_flashMeasIndex(0)
    , m_AWBState()
    , m_OverrideSetting()
    , m_LEDCalibrationEnable(FALSE)
    , m_debugDataEnable(TRUE)
    , m_flashMaxCurrent(900)
    , m_arbitrationContext()
    , m_diagConfig()
    , m_gyroInfo()
    , m_startUpExpIndice()
    , m_flashMeasSwitchCounter(0)
    , m_convFrameSkipCounter(0)
    , m_postRawCounter(0)
    , m_meteringType(AECAlgoMeteringIndependent)
    , m_exposureType(AECAlgoExposureIndependent)
    , m_pPeerInfo(nullptr)
    , m_myOwnInfo()
    , m_peerInfoSnapshot()
    , m_cameraInfo()
    , m_touchROIs()
    , m_faceROIs()
    , m_areFlashLowStatsSaved(FALSE)
    , m_sensorInfo()
    , m_curModeInfo()
    , m_prevMode()
    , m_systemLatency(0)
    , m_debugData()
    , m_lockContext()
    , m_dualcamCalibrationInfo()
    , m_MultiExpSensorMode(HDRDisabled)
    , m_dcgMode()
    , m_customExposureTableInfo()
    , m_HDR3Type(HDR3ExposureTypeUnknown)
    , m_DRCGainHDR3(0.0F)
    , m_cropWindow()
    , m_BGBEConfig()
    , m_BayerHistConfig()
    , m_dynamicConvergenceSpeed(0.0F)
    , m_CustomMeteringTable()
    , m_BGBESatThresholds()
    , m_postRawGain(100)
    , m_disableADRC(FALSE)
    , m_realDRCGain(0.0F)
    , m_enableInSensorHDRSnapshot(FALSE)
    , m_isMultiExpSensorMode(FALSE)
    , m_IRLedState(AECIRLedMAX)
    , m_ManualIRIntensity(1.0F)
    , m_IRCutSystemLatency(1)
    , m_IRLedSystemLatency(1)
    , m_PWMFrequency(1.0F)
    , m_compensationRatio(0.0F)
    , m_weightTable()
{
    // No tuning seen yet: every selector differs from what the first tuning brings.
    std::memset(currentTuningMode, 0xFF, sizeof(currentTuningMode));

    m_contextEV.capabilities.minEV      = -12;
    m_contextEV.capabilities.maxEV      = 12;
    m_contextEV.capabilities.stepsPerEV = 6;

    m_manualSetting.manualMode = AECAlgoModeAuto;

    m_AWBState.isAuto    = FALSE;
    m_AWBState.redGain   = 1.0F;
    m_AWBState.greenGain = 1.0F;
    m_AWBState.blueGain  = 1.0F;

    m_arbitrationContext.streamingExpTblSens = 1.0F;
    m_arbitrationContext.currentFPS          = 30.0F;

    m_gyroInfo.sampleCount = 1;

    m_cameraInfo.algoRole = StatsAlgoRoleDefault;
    m_cameraInfo.cameraId = 0;

    m_sensorInfo.fNumber              = 2.0F;
    m_sensorInfo.minimumStreamGain    = 1.0F;
    m_sensorInfo.maximumStreamGain    = 256.0F;
    m_sensorInfo.minimumStillGain     = 1.0F;
    m_sensorInfo.maximumStillGain     = 256.0F;
    m_sensorInfo.minimumStreamExpTime = 1;
    m_sensorInfo.maximumStreamExpTime = 0xFFFFFFFF;
    m_sensorInfo.minimumStillExpTime  = 1;
    m_sensorInfo.maximumStillExpTime  = 0xFFFFFFFF;

    m_lockContext.lockState                = AECAlgoLockOFF;
    m_dualcamCalibrationInfo.OTPStatus     = AECAlgoDualcamOTPInvalid;
    m_dcgMode.numOfExposures               = 1;

    initializeHistoryInfo();
    InitStatsConfig();
}

CAECCoreDataManager::~CAECCoreDataManager()
{
    VelaFree(m_customExposureTableInfo.expTable.expKneeEntries);
}

// ---- Components ----

VOID CAECCoreDataManager::addComponent(IAECComponent* pComponent)
{
    m_componentList.push_back(pComponent);
}

AecResult CAECCoreDataManager::notifyComponents(ComponentEvent event)
{
    AecResult result = AecSuccess;
    for (IAECComponent* pComponent : m_componentList)
    {
        if (AecError == (pComponent->*event)())
        {
            result = AecError;
        }
    }
    return result;
}

// ---- Per-frame bookkeeping ----

VOID CAECCoreDataManager::updateFrameCounters()
{
    if (0 != m_convFrameSkipCounter)
    {
        m_convFrameSkipCounter--;
    }
    if (0 != m_flashMeasSwitchCounter)
    {
        m_flashMeasSwitchCounter--;
    }
    if (0 != m_postRawCounter)
    {
        m_postRawCounter--;
    }
}

BOOL CAECCoreDataManager::isStartConfigSaved() const
{
    return m_curModeInfo.isStartConfigSaved;
}

VOID CAECCoreDataManager::saveStartExposure(const FLOAT* pExpIndices, FLOAT luxIndex)
{
    AECFrameHistory& rStart = m_curModeInfo.startConfig;
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        rStart.expIndices[i]     = pExpIndices[i];
        rStart.sHDRExpIndices[i] = pExpIndices[i];
    }

    // The targets lie below the start indices by the EV compensation in force, except in preflash.
    FLOAT offset = 0.0F;
    FLOAT EV     = 0.0F;
    if (AECAlgoOperationModePreflash != m_opMode)
    {
        offset = getStartEVOffset();
        EV     = m_contextEV.EV;
    }

    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        rStart.expIndicesTargets[i] = pExpIndices[i] - offset;
    }
    rStart.previewEV                 = EV;
    rStart.tableSensitivity          = m_arbitrationContext.streamingExpTblSens;
    rStart.luxIndex                  = luxIndex;
    rStart.luma                      = -1.0F;
    rStart.isSnapshotQuery           = FALSE;
    m_curModeInfo.isStartConfigSaved = TRUE;

    AEC_LOG_INFO("expIdx %.1f %.1f %.1f targIdx %.1f %.1f %.1f cur EV %.1f EV offset %.1f op %d lock %d",
                 rStart.expIndices[0], rStart.expIndices[1], rStart.expIndices[2], rStart.expIndicesTargets[0],
                 rStart.expIndicesTargets[1], rStart.expIndicesTargets[2], EV, offset, m_opMode,
                 m_lockContext.lockState);
}

const MeteringTuningDataType* CAECCoreDataManager::meteringTuning() const
{
    return (nullptr != m_pCoreTuningData) ? &m_pCoreTuningData->mtrTuningData : nullptr;
}

FLOAT CAECCoreDataManager::getStartEVOffset() const
{
    const MeteringTuningDataType* pMtr = meteringTuning();
    if ((nullptr == pMtr) || (nullptr == pMtr->pCore))
    {
        return 0.0F;
    }
    const AECAlgoEVCapabilities& rCaps = m_contextEV.capabilities;
    const INT32 lowest  = static_cast<INT32>(rCaps.minEV) * rCaps.stepsPerEV;
    const INT32 highest = static_cast<INT32>(rCaps.maxEV) * rCaps.stepsPerEV;
    // Capabilities with the lowest EV above the highest would make the clamp below undefined.
    const INT32 uiVal = (lowest <= highest) ? std::clamp(m_contextEV.EVUIVal, lowest, highest) : lowest;
    const INT32 index = std::clamp(uiVal - lowest, 0, EVCompTableSize - 1);
    const FLOAT mult  = pMtr->pCore->mtrLumaTarget.EVLumaTarget.EVCompTable.EVCompTableElements[index];
    if (!(mult > 0.0F))
    {
        AEC_LOG_ERROR("EV compensation multiplier %f at step %d is not positive: no EV offset", mult, index);
        return 0.0F;
    }
    return static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(mult)) * AECIndexPerLog10);
}

AecResult CAECCoreDataManager::saveCurrentFrameID(UINT64 frameID)
{
    if ((TRUE == m_curModeInfo.isCurFrameIDValid) && (m_curModeInfo.curFrameID >= frameID) &&
        (1 != m_OverrideSetting.autoSwitchHDR))
    {
        AEC_LOG_ERROR("Current stats frame ID (%lu) is invalid, not larger than previous (%lu)!",
                      static_cast<unsigned long>(frameID), static_cast<unsigned long>(m_curModeInfo.curFrameID));
        return AecError;
    }
    m_curModeInfo.curFrameID        = frameID;
    m_curModeInfo.isCurFrameIDValid = TRUE;
    return AecSuccess;
}

AecResult CAECCoreDataManager::saveFrameHistoryInfo(const AECFrameHistory& frameHistory)
{
    std::list<AECFrameHistory>& rHistory = m_curModeInfo.frameHistories;
    if ((FALSE == rHistory.empty()) && (rHistory.front().frameID >= frameHistory.frameID))
    {
        AEC_LOG_ERROR("Frame history refuses frame ID %lu: the newest entry has %lu",
                      static_cast<unsigned long>(frameHistory.frameID),
                      static_cast<unsigned long>(rHistory.front().frameID));
        return AecError;
    }

    if (rHistory.size() < AECFrameHistoryMaxCount)
    {
        rHistory.push_front(frameHistory);
    }
    else
    {
        // Full: the oldest node becomes the newest, so a mode in steady state allocates nothing per frame
        // and never more than one node of AECFrameHistoryMaxCount in all.
        rHistory.splice(rHistory.begin(), rHistory, std::prev(rHistory.end()));
        rHistory.front() = frameHistory;
    }
    return AecSuccess;
}

VOID CAECCoreDataManager::setSnapshotQuery()
{
    if (FALSE == m_curModeInfo.frameHistories.empty())
    {
        m_curModeInfo.frameHistories.front().isSnapshotQuery = TRUE;
    }
}

BOOL CAECCoreDataManager::isFrameHistoryEmpty() const
{
    return m_curModeInfo.frameHistories.empty() ? TRUE : FALSE;
}

VOID CAECCoreDataManager::processROIsPerFrame()
{
    FaceROIProcInfo& rFace     = m_faceROIs;
    const BOOL       hasFaces  = (0 != rFace.inputROIPriority.Size()) ? TRUE : FALSE;
    const FLOAT      frameTime = 1.0F / std::max(m_arbitrationContext.currentFPS, 1.0F);
    rFace.faceStatusDuration += frameTime;

    // A change of face presence takes effect only once it has lasted the tuned hold time, so that a face
    // detector flickering for a frame or two does not move the exposure.
    if (((FALSE != rFace.isActiveFace) ? TRUE : FALSE) != hasFaces)
    {
        rFace.faceHintDuration += frameTime;
        if (rFace.faceHintDuration > getFaceHoldTime())
        {
            rFace.isActiveFace       = hasFaces;
            rFace.faceHintDuration   = 0.0F;
            rFace.faceStatusDuration = 0.0F;
        }
    }
    else
    {
        rFace.faceHintDuration = 0.0F;
    }

    // While a face that went away is still held active, metering keeps using the last faces.
    if (TRUE == hasFaces)
    {
        rFace.filteredROIPriority = rFace.inputROIPriority;
    }
    else if (FALSE == rFace.isActiveFace)
    {
        rFace.filteredROIPriority.Clear();
    }

    if (TRUE == m_debugDataEnable)
    {
        publishFaceDebugData();
    }
}

FLOAT CAECCoreDataManager::getFaceHoldTime() const
{
    // Without tuning the hold time is 0: the face state follows on the first frame of a change.
    const MeteringTuningDataType* pMtr     = meteringTuning();
    const BOOL                    isActive = (FALSE != m_faceROIs.isActiveFace) ? TRUE : FALSE;
    if (nullptr == pMtr)
    {
        return 0.0F;
    }
    if (AECAlgoOperationModePreflash == m_opMode)
    {
        if (nullptr == pMtr->pFlash)
        {
            return 0.0F;
        }
        const aecFlash::FlashMeteringType::FDFlashStruct& rFDFlash = pMtr->pFlash->FDFlash;
        return (TRUE == isActive) ? rFDFlash.statsUpdateDelayTimeExit : rFDFlash.statsUpdateDelayTimeEnter;
    }
    if (nullptr == pMtr->pFace)
    {
        return 0.0F;
    }
    return (TRUE == isActive) ? pMtr->pFace->statsUpdateDelayTimeExit : pMtr->pFace->statsUpdateDelayTimeEnter;
}

VOID CAECCoreDataManager::publishFaceDebugData()
{
    AECDebugDataConfigurationType& rConfig = m_debugData.configInfo;
    const ROIPriority&             rFaces  = m_faceROIs.filteredROIPriority;
    // The debug record holds fewer faces than the host may send: the rest are not published.
    const UINT32 count    = std::min(rFaces.Size(), AECDebugDataMaxFaceROIs);
    const BOOL   isInCrop = (StatsROISelectionCroppedFOV == m_BGBEConfig.ROISelection) ? TRUE : FALSE;
    rConfig.bIsFaceActive      = (FALSE != m_faceROIs.isActiveFace) ? 1 : 0;
    rConfig.faceHintDuration   = m_faceROIs.faceHintDuration;
    rConfig.faceStatusDuration = m_faceROIs.faceStatusDuration;
    rConfig.validFaceROICount  = static_cast<UINT8>(count);
    for (UINT32 i = 0; i < count; i++)
    {
        const AECAlgoROI    roi  = (TRUE == isInCrop) ? rFaces.GetNormalizeROIInCrop(i) : rFaces.GetNormalizeROI(i);
        AECDebugDataROIDim& rDim = rConfig.faceROIs[i];
        rDim.left   = roi.x;
        rDim.top    = roi.y;
        rDim.width  = roi.dx;
        rDim.height = roi.dy;
        rDim.weight = roi.weight;
    }
}

VOID CAECCoreDataManager::DebugDataSaveStats(const AECCoreInput* /*pInput*/)
{
    // Later stage: the debug data writer records the frame's statistics.
}

KDKResult CAECCoreDataManager::PrepareDebugData(const StatsDataPointer* /*pDebugBuffer*/, SIZE_T* pSizeWritten)
{
    // Later stage: the debug data writer fills the host's buffer; until then nothing is written.
    if (nullptr != pSizeWritten)
    {
        *pSizeWritten = 0;
    }
    return VelaResultSuccess;
}

// ---- Mode history ----

VOID CAECCoreDataManager::saveAndClearCurrentModeInfo()
{
    std::list<AECFrameHistory>& rHistory = m_curModeInfo.frameHistories;
    if (TRUE == rHistory.empty())
    {
        AEC_LOG_INFO("No frames in history!");
    }
    else if (TRUE == IsStreamingTypeMode(m_opMode))
    {
        m_prevMode.startConfig   = m_curModeInfo.startConfig;
        m_prevMode.lastFrame     = rHistory.front();
        m_prevMode.lastFrameOrig = rHistory.front();
        m_prevMode.isValid       = TRUE;
    }
    m_curModeInfo.isCurFrameIDValid  = FALSE;
    m_curModeInfo.isStartConfigSaved = FALSE;
    rHistory.clear();
}

VOID CAECCoreDataManager::initializeHistoryInfo()
{
    m_curModeInfo.isCurFrameIDValid         = FALSE;
    m_curModeInfo.isStartConfigSaved        = FALSE;
    m_curModeInfo.startConfig.isStartConfig = TRUE;
    m_curModeInfo.frameHistories.clear();
    m_prevMode.isValid = FALSE;
}

VOID CAECCoreDataManager::clearROIInfo()
{
    m_touchROIs.ROICount = 0;
    m_faceROIs.inputROIPriority.Clear();
    m_faceROIs.filteredROIPriority.Clear();
    m_faceROIs.isActiveFace       = FALSE;
    m_faceROIs.faceHintDuration   = 0.0F;
    m_faceROIs.faceStatusDuration = 0.0F;
    if (TRUE == m_debugDataEnable)
    {
        m_debugData.configInfo.bIsTouchActive = 0;
        m_debugData.configInfo.bIsFaceActive  = 0;
    }
}

VOID CAECCoreDataManager::InitStatsConfig()
{
    const aecStatsConfig::AECStatsConfig* pTuning =
        (nullptr != m_pCoreTuningData) ? m_pCoreTuningData->pStatsConfig : nullptr;
    // A first grid threshold of 0 marks statistics tuning that was left empty.
    if ((nullptr == pTuning) || (0.0F == pTuning->gridStatsConfig.maxStatsChannelThreshold[0]) ||
        (FALSE == InitStatsConfigFromTuning(*pTuning)))
    {
        InitStatsConfigDefaults();
    }
}

VOID CAECCoreDataManager::InitStatsConfigDefaults()
{
    for (UINT32 channel = 0; channel < GridChannelCount; channel++)
    {
        m_BGBESatThresholds[channel]                  = DefaultChannelGainThreshold;
        m_BGBEConfig.channelGainThreshold[channel]    = DefaultChannelGainThreshold;
        m_BGBEConfig.minChannelLumaThreshold[channel] = 0;
    }
    m_BGBEConfig.horizontalRegionCount   = DefaultGridColumns;
    m_BGBEConfig.verticalRegionCount     = DefaultGridRows;
    m_BGBEConfig.outputBitDepth          = DefaultGridBitDepth;
    m_BGBEConfig.ROISelection            = StatsROISelectionCroppedFOV;
    m_BGBEConfig.enableYStatsComputation = FALSE;
    for (FLOAT& rWeight : m_BGBEConfig.YStatsWeights)
    {
        rWeight = 0.0F;
    }
    m_BGBEConfig.enableSaturationStats = FALSE;
    m_BGBEConfig.HWStatsSkippingFactor = 0;

    m_BayerHistConfig.channel      = ColorChannelY;
    m_BayerHistConfig.uniform      = TRUE;
    m_BayerHistConfig.ROISelection = StatsROISelectionCroppedFOV;
}

BOOL CAECCoreDataManager::InitStatsConfigFromTuning(const aecStatsConfig::AECStatsConfig& rTuning)
{
    const aecStatsConfig::AECStatsConfig::gridStatsConfigStruct& rGrid  = rTuning.gridStatsConfig;
    const HistogramTuning*                                       pFirst = FirstHistogram(&rTuning);
    // The full scale is 1 << bitDepth: a wider depth would shift past the integer.
    if (rGrid.bitDepth > MaxStatsBitDepth)
    {
        AEC_LOG_ERROR("Statistics tuning refused: bit depth %u above %u; using the default configuration",
                      rGrid.bitDepth, MaxStatsBitDepth);
        return FALSE;
    }
    // The first histogram configures the Bayer histogram.
    if (nullptr == pFirst)
    {
        AEC_LOG_ERROR("Statistics tuning refused: no histogram configuration; using the default configuration");
        return FALSE;
    }
    const DOUBLE scale = static_cast<DOUBLE>(1U << rGrid.bitDepth);
    for (UINT32 channel = 0; channel < GridChannelCount; channel++)
    {
        m_BGBESatThresholds[channel]               = ToUINT32Saturated(rGrid.maxStatsChannelThreshold[channel] * scale);
        m_BGBEConfig.channelGainThreshold[channel] = m_BGBESatThresholds[channel];
        m_BGBEConfig.minChannelLumaThreshold[channel] =
            ToUINT32Saturated(rGrid.minStatsChannelThreshold[channel] * scale);
    }
    for (UINT32 i = 0; i < 3; i++)
    {
        m_BGBEConfig.YStatsWeights[i] = rGrid.YComputationColorWeight[i];
    }
    m_BGBEConfig.horizontalRegionCount   = rGrid.numOfRegionsHorizontal;
    m_BGBEConfig.verticalRegionCount     = rGrid.numOfRegionsVertical;
    m_BGBEConfig.ROISelection            = ROISelectionOf(rGrid.ROIConfigControl);
    m_BGBEConfig.outputBitDepth          = static_cast<UINT8>(rGrid.bitDepth);
    m_BGBEConfig.enableYStatsComputation = rGrid.enableYComputedStats;
    m_BGBEConfig.enableSaturationStats   = rGrid.enableSaturatedStats;
    m_BGBEConfig.HWStatsSkippingFactor   = static_cast<UINT8>(rGrid.HWStatsSkipFactor);

    if (FALSE == MapHistogramChannel(pFirst->colorChannel, &m_BayerHistConfig.channel))
    {
        AEC_LOG_WARN("hist color channel not mapped: %d, forcing to Y %d", pFirst->colorChannel, ColorChannelY);
        m_BayerHistConfig.channel = ColorChannelY;
    }
    m_BayerHistConfig.uniform      = IsUniformHistogram(*pFirst);
    m_BayerHistConfig.ROISelection = ROISelectionOf(pFirst->ROIConfigControl);
    return TRUE;
}

BOOL CAECCoreDataManager::MapTuningToMtrExpConfig(const StatsCameraInfo& cameraInfo)
{
    const ExtensionTuningDataType* pExt = getExtTuning();
    if ((nullptr == pExt) || (nullptr == pExt->pMtrAndExpModeConfig))
    {
        return FALSE;
    }
    const aecglobalelements::AECMtrAndExpoConfigType config = (StatsAlgoRoleSlave == cameraInfo.algoRole)
                                                                  ? pExt->pMtrAndExpModeConfig->slave
                                                                  : pExt->pMtrAndExpModeConfig->master;
    switch (config)
    {
        case aecglobalelements::MtrIndepExpIndep:
        // No tuning value disables metering: "metering disabled, exposure follows" meters all the same.
        case aecglobalelements::MtrDisabledExpFollow:
            m_meteringType = AECAlgoMeteringIndependent;
            m_exposureType = AECAlgoExposureIndependent;
            break;
        case aecglobalelements::MtrIndepExpFollow:
            m_meteringType = AECAlgoMeteringIndependent;
            m_exposureType = AECAlgoExposureFollow;
            break;
        case aecglobalelements::MtrMixExpIndep:
            m_meteringType = AECAlgoMeteringMix;
            m_exposureType = AECAlgoExposureIndependent;
            break;
        case aecglobalelements::MtrIndepExpDynamic:
            m_meteringType = AECAlgoMeteringIndependent;
            m_exposureType = AECAlgoExposureDynamic;
            break;
        default:
            AEC_LOG_ERROR("Unknown metering and exposure configuration %d in tuning; kinds unchanged", config);
            return FALSE;
    }
    AEC_LOG_INFO("Metering set to %d exposure set to %d", m_meteringType, m_exposureType);
    return TRUE;
}

VOID CAECCoreDataManager::armFlashMeasSwitchCounter()
{
    if (0 != m_flashMeasSwitchCounter)
    {
        return;
    }
    if (AECAlgoFlashMeasKindCalib == m_flashMeasState)
    {
        m_flashMeasSwitchCounter = m_systemLatency + ((0 != m_flashMeasIndex) ? 3 : 0);
    }
    else if ((AECAlgoFlashMeasKindTuning == m_flashMeasState) && (0 != m_flashMeasIndex))
    {
        m_flashMeasSwitchCounter = static_cast<UINT32>(m_arbitrationContext.currentFPS * 4 + m_systemLatency);
    }
}

// ---- Setters ----

AecResult CAECCoreDataManager::setOperationMode(AECAlgoOperationModeType mode)
{
    if (mode == m_opMode)
    {
        AEC_LOG_WARN("warning: setting same opmode to AEC (%d)!", mode);
    }

    switch (mode)
    {
        case AECAlgoOperationModeInit:
            // Init starts afresh: nothing of the mode being left is kept.
            initializeHistoryInfo();
            clearROIInfo();
            break;
        case AECAlgoOperationModeStreaming:
            if (AECAlgoOperationModeStreaming == m_opMode)
            {
                AEC_LOG_INFO("Streaming to Streaming\n");
            }
            else
            {
                AEC_LOG_INFO("entering streaming op mode");
            }
            break;
        case AECAlgoOperationModePreflash:
            if ((AECAlgoOperationModeStreaming != m_opMode) && (AECAlgoOperationModePreflash != m_opMode))
            {
                AEC_LOG_ERROR("Error, can only transition into Preflash from Preview/Preflash!\n");
                return AecError;
            }
            break;
        case AECAlgoOperationModeFastAEC:
            if (AECAlgoOperationModeInit != m_opMode)
            {
                AEC_LOG_ERROR("Error: cannot set fast  AEC without going to Init mode first!\n");
                return AecError;
            }
            break;
        case AECAlgoOperationModeAggressiveAEC:
            if (AECAlgoOperationModeInit != m_opMode)
            {
                AEC_LOG_ERROR("Error: cannot set aggressive AEC without going to Init mode first!\n");
                return AecError;
            }
            break;
        case AECAlgoOperationModeFlashMeasurement:
            if ((AECAlgoOperationModeStreaming != m_opMode) && (AECAlgoOperationModeFlashMeasurement != m_opMode))
            {
                AEC_LOG_ERROR("Cannot enter flash measurement operation mode from this op mode: %d\n", m_opMode);
                return AecError;
            }
            armFlashMeasSwitchCounter();
            break;
        default:
            AEC_LOG_ERROR("Error: Invalid Mode %d \n", mode);
            return AecError;
    }

    if (AECAlgoOperationModeInit != mode)
    {
        saveAndClearCurrentModeInfo();
    }
    m_opMode = mode;
    if (TRUE == m_debugDataEnable)
    {
        m_debugData.configInfo.operationMode = static_cast<UINT8>(mode);
    }
    return notifyComponents(&IAECComponent::OnOperationModeChange);
}

AecResult CAECCoreDataManager::setCameraInfo(const StatsCameraInfo& cameraInfo)
{
    m_cameraInfo.cameraId = cameraInfo.cameraId;
    // A role is taken over only together with its tuned metering and exposure kinds.
    if ((cameraInfo.algoRole != m_cameraInfo.algoRole) && (TRUE == MapTuningToMtrExpConfig(cameraInfo)))
    {
        AEC_LOG_INFO("CID: %d, Role changed to %d, from %d", cameraInfo.cameraId, cameraInfo.algoRole,
                     m_cameraInfo.algoRole);
        m_cameraInfo.algoRole = cameraInfo.algoRole;
    }
    return AecSuccess;
}

AecResult CAECCoreDataManager::SetSetSensorInfo(const AECAlgoSensorInfo* pSensorInfo)
{
    if (nullptr == pSensorInfo)
    {
        return AecError;
    }
    m_sensorInfo = *pSensorInfo;
    m_faceROIs.inputROIPriority.SetImageResolution(m_sensorInfo.sensorResWidth, m_sensorInfo.sensorResHeight);
    m_faceROIs.filteredROIPriority.SetImageResolution(m_sensorInfo.sensorResWidth, m_sensorInfo.sensorResHeight);

    AECDebugDataConfigurationType& rConfig = m_debugData.configInfo;
    rConfig.fNumber                = m_sensorInfo.fNumber;
    rConfig.sensorAspectRatio      = m_sensorInfo.statsWindowAspectRatio;
    rConfig.minSensorStreamGain    = m_sensorInfo.minimumStreamGain;
    rConfig.maxSensorStreamGain    = m_sensorInfo.maximumStreamGain;
    rConfig.minSensorStreamExpTime = m_sensorInfo.minimumStreamExpTime;
    rConfig.maxSensorStreamExpTime = m_sensorInfo.maximumStreamExpTime;
    rConfig.minSensorStillGain     = m_sensorInfo.minimumStillGain;
    rConfig.maxSensorStillGain     = m_sensorInfo.maximumStillGain;
    rConfig.minSensorStillExpTime  = m_sensorInfo.minimumStillExpTime;
    rConfig.maxSensorStillExpTime  = m_sensorInfo.maximumStillExpTime;

    return notifyComponents(&IAECComponent::OnSensorInfoChange);
}

VOID CAECCoreDataManager::setPipelineDelay(UINT8 systemLatency)
{
    m_systemLatency = systemLatency;
}

VOID CAECCoreDataManager::setOverrideSetting(const AECAlgoOverrideSettingParam& overrideSetting)
{
    m_OverrideSetting = overrideSetting;
    AEC_LOG_INFO("Override setting: speckle %d manualISO %d manualExpTime %d manualFull %d seamlessIHDR %d "
                 "profile3A %u numSHDRFrames %u warmStart %d autoSwitchHDR %d shdrmode %d decompand %d RGBIR %u",
                 m_OverrideSetting.disableSpeckleDetection, m_OverrideSetting.disablePreviewManualISO,
                 m_OverrideSetting.disablePreviewManualExpTime, m_OverrideSetting.disablePreviewManualFull,
                 m_OverrideSetting.enableForceSeamlessIHDRSnapshot, m_OverrideSetting.profile3A,
                 m_OverrideSetting.numSHDRFrames, m_OverrideSetting.enableWarmStart, m_OverrideSetting.autoSwitchHDR,
                 m_OverrideSetting.shdrmode, m_OverrideSetting.isDecompandEnabled, m_OverrideSetting.isRGBIREnaled);
}

VOID CAECCoreDataManager::setAWBState(const AECAlgoWhiteBalanceState& AWBState)
{
    m_AWBState = AWBState;
}

VOID CAECCoreDataManager::setDebugDataEnable(BOOL enable)
{
    m_debugDataEnable = enable;
}

VOID CAECCoreDataManager::setFlashMaxCurrent(INT32 maxCurrent)
{
    m_flashMaxCurrent = maxCurrent;
}

AecResult CAECCoreDataManager::setFlashMeasurement(AECAlgoFlashMeasKindType kind)
{
    if (kind == m_flashMeasState)
    {
        return AecSuccess;
    }
    m_flashMeasState = kind;
    return notifyComponents(&IAECComponent::OnFlashMeasKindChange);
}

VOID CAECCoreDataManager::setPostRawGain(INT32 postRawGain)
{
    if (postRawGain != m_postRawGain)
    {
        // Exposure stays fixed until the frames exposed before the change have passed the pipeline.
        m_postRawCounter = getPipelineDelay();
    }
    m_postRawGain = postRawGain;
}

VOID CAECCoreDataManager::setADRCInfo(BOOL disableADRC)
{
    m_disableADRC = disableADRC;
}

VOID CAECCoreDataManager::setCropWindow(const StatsRectangle& cropWindow)
{
    m_cropWindow = cropWindow;
    m_faceROIs.inputROIPriority.SetCropWindow(&m_cropWindow);
    m_faceROIs.filteredROIPriority.SetCropWindow(&m_cropWindow);
}

AecResult CAECCoreDataManager::MapMultiCamPeerInfo(const StatsPeerInfoCombo* pCombo,
                                                   const AECMultiCamInfo**   ppPeerInfo)
{
    const UINT32 ownID = m_cameraInfo.cameraId;
    if (nullptr == pCombo)
    {
        AEC_LOG_ERROR("CID:%d, Multi-Camera Info is not provided!", ownID);
        return AecError;
    }
    if (1 != pCombo->needSync)
    {
        AEC_LOG_INFO("CID:%d, AEC Sync is not enabled", ownID);
        return AecError;
    }

    switch (m_cameraInfo.algoRole)
    {
        case StatsAlgoRoleMaster:
            for (UINT32 i = 0; i < AECORE_MAX_PEER_PIPELINES; i++)
            {
                if ((TRUE == pCombo->isActive[i]) && (ownID != pCombo->cameraId[i]))
                {
                    AEC_LOG_INFO("CID:%d, Role:MASTER, Selecting the Slave of CID:%d", ownID, pCombo->cameraId[i]);
                    *ppPeerInfo = static_cast<const AECMultiCamInfo*>(pCombo->pPeerInfo[i]);
                    return AecSuccess;
                }
            }
            AEC_LOG_ERROR("CID:%d, Slave Info is not found", ownID);
            return AecError;
        case StatsAlgoRoleSlave:
            for (UINT32 i = 0; i < AECORE_MAX_PEER_PIPELINES; i++)
            {
                if ((TRUE == pCombo->isActive[i]) && (StatsAlgoRoleMaster == pCombo->algoRole[i]))
                {
                    AEC_LOG_INFO("CID:%d, Role:SLAVE, Following Master CamID:%d", ownID, pCombo->cameraId[i]);
                    *ppPeerInfo = static_cast<const AECMultiCamInfo*>(pCombo->pPeerInfo[i]);
                    return AecSuccess;
                }
            }
            AEC_LOG_ERROR("CID:%d, Master Info is not found", ownID);
            return AecError;
        default:
            return AecError;
    }
}

VOID CAECCoreDataManager::setPeerInfo(const AECMultiCamInfo* pPeerInfo)
{
    m_pPeerInfo = pPeerInfo;
    setDCCalibrationUsingPeerInfo();
}

VOID CAECCoreDataManager::setDCCalibrationUsingPeerInfo()
{
    // Without own calibration, the peer's calibration applies from this camera's side: the inverse multiplier.
    const AECMultiCamInfo* pPeer = getPeerInfo();
    if ((nullptr != pPeer) && (AECAlgoDualcamOTPInvalid == m_dualcamCalibrationInfo.OTPStatus) &&
        (AECAlgoDualcamOTPSet == pPeer->OTPInfo.OTPStatus) && (pPeer->OTPInfo.OTPExpCompMultiplier > 0.0F))
    {
        m_dualcamCalibrationInfo.OTPExpCompMultiplier = 1.0F / pPeer->OTPInfo.OTPExpCompMultiplier;
        m_dualcamCalibrationInfo.OTPStatus            = AECAlgoDualcamOTPSetUsingPeer;
    }
}

BOOL CAECCoreDataManager::isTuningModeChange(const StatsTuningData* pTuning)
{
    if (nullptr == pTuning)
    {
        return FALSE;
    }
    // No selectors at all: a host without a tuning store. Its first tuning brings in the fake tuning; after that
    // there is no mode that could change.
    if ((nullptr == pTuning->pTuningModeSelectors) && (0 == pTuning->numSelectors))
    {
        const BOOL isFirst = (nullptr == m_pCoreTuningData) ? TRUE : FALSE;
        AEC_LOG_INFO("is tuning changed:%d", isFirst);
        return isFirst;
    }
    // A shorter or missing selector list cannot be compared with the seven kept: reading on would overrun it.
    if ((nullptr == pTuning->pTuningModeSelectors) || (pTuning->numSelectors < AECTuningModeCount))
    {
        AEC_LOG_ERROR("Tuning mode selectors refused: %p with %u of %u selectors", pTuning->pTuningModeSelectors,
                      pTuning->numSelectors, AECTuningModeCount);
        return FALSE;
    }

    // The first selector names the mode, the others the sub-modes of their mode; the low byte tells them apart.
    const TuningMode* pSelectors = static_cast<const TuningMode*>(pTuning->pTuningModeSelectors);
    AECTuningMode     selected[AECTuningModeCount];
    for (UINT32 i = 0; i < AECTuningModeCount; i++)
    {
        const UINT32 value = (0 == i) ? static_cast<UINT32>(pSelectors[i].mode) : pSelectors[i].subMode.value;
        selected[i]        = static_cast<AECTuningMode>(value & 0xFF);
    }

    const BOOL isChanged = (0 != std::memcmp(selected, currentTuningMode, sizeof(currentTuningMode))) ? TRUE : FALSE;
    if (TRUE == isChanged)
    {
        std::memcpy(currentTuningMode, selected, sizeof(currentTuningMode));
    }
    AEC_LOG_INFO("is tuning changed:%d", isChanged);
    return isChanged;
}

AecResult CAECCoreDataManager::setSorenta(const StatsTuningData* pTuning, IAECArbitration* pArbitration)
{
    m_tuningManager.SetSorenta(pTuning, &m_pCoreTuningData);
    InitStatsConfig();
    applyROIPriorityTuning();
    // The uniformity follows the histogram tuning even when the rest of the statistics tuning is not used.
    const HistogramTuning* pHistogram =
        FirstHistogram((nullptr != m_pCoreTuningData) ? m_pCoreTuningData->pStatsConfig : nullptr);
    if (nullptr != pHistogram)
    {
        m_BayerHistConfig.uniform = IsUniformHistogram(*pHistogram);
    }
    AEC_LOG_INFO("histogram uniformity configured to %d", m_BayerHistConfig.uniform);

    const AecResult result = notifyComponents(&IAECComponent::OnTuningHeaderChange);
    if (AecSuccess != result)
    {
        return result;
    }

    if (TRUE == m_prevMode.isValid)
    {
        rederivePrevModeIndices(pArbitration);
    }
    updateHistoryTableSI();
    return AecSuccess;
}

VOID CAECCoreDataManager::applyROIPriorityTuning()
{
    const aecFace::StatsROIProcessType* pROIProcess =
        (nullptr != m_pCoreTuningData) ? m_pCoreTuningData->pStatsROIProcess : nullptr;
    if ((nullptr == pROIProcess) || (1 != pROIProcess->enableROIPriority))
    {
        m_faceROIs.inputROIPriority.SetTuningData(nullptr);
        m_faceROIs.filteredROIPriority.SetTuningData(nullptr);
        return;
    }
    // The face regions keep their own copy of the ranking weights.
    ROIPriorityTuning tuning = {};
    tuning.sizeWeight        = pROIProcess->ROIPriorityTuning.sizeWeight;
    tuning.centerWeight      = pROIProcess->ROIPriorityTuning.centerWeight;
    m_faceROIs.inputROIPriority.SetTuningData(&tuning);
    m_faceROIs.filteredROIPriority.SetTuningData(&tuning);
}

VOID CAECCoreDataManager::rederivePrevModeIndices(IAECArbitration* pArbitration)
{
    if (nullptr == pArbitration)
    {
        AEC_LOG_ERROR("No arbitration to re-derive the previous mode's indices with");
        return;
    }
    AECFrameHistory&       rLast = m_prevMode.lastFrame;
    const AECFrameHistory& rOrig = m_prevMode.lastFrameOrig;
    if (AecSuccess != pArbitration->QuerySensitivity2ExpIndex(rOrig.sensitivities, getOperationMode(), rLast.expIndices))
    {
        AEC_LOG_ERROR("Previous mode's indices not re-derived: the sensitivity query failed");
        return;
    }
    // The scene stays where it was: the lux index moves with the safe exposure's index.
    rLast.luxIndex = rOrig.luxIndex - (rOrig.expIndices[AECAlgoExposureSafe] - rLast.expIndices[AECAlgoExposureSafe]);
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        AEC_LOG_INFO("EI:%d, Prev:%0.1f New:%0.1f", i, rOrig.expIndices[i], rLast.expIndices[i]);
    }
    AEC_LOG_INFO("Lux Prev:%0.1f New:%0.1f", rOrig.luxIndex, rLast.luxIndex);
}

VOID CAECCoreDataManager::AECUtilUpdateFrameTableSI(AECFrameHistory& rHistory)
{
    const FLOAT frameSI   = rHistory.tableSensitivity;
    const FLOAT currentSI = m_arbitrationContext.streamingExpTblSens;
    if (!(frameSI > 0.0F) || !(currentSI > 0.0F) || (std::fabs(frameSI - currentSI) < AECFloatEpsilon))
    {
        return;
    }
    // The same exposure has a higher index in a table of lower sensitivity.
    const FLOAT offset = static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(frameSI / currentSI)) * AECIndexPerLog10);
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        rHistory.expIndices[i] += offset;
        rHistory.expIndicesTargets[i] += offset;
    }
    // A lux index compensated for the table sensitivity does not depend on the table.
    const MeteringTuningDataType* pMtr = meteringTuning();
    const BOOL isLuxIndexCompensated   = (nullptr != pMtr) && (nullptr != pMtr->pCore) &&
                                       (1 == pMtr->pCore->mtrLumaCalc.indexCalc.enableLuxIndexComp);
    if (FALSE == isLuxIndexCompensated)
    {
        rHistory.luxIndex += offset;
    }
    rHistory.tableSensitivity = currentSI;
    AEC_LOG_INFO("table sensitivity has changed: adding offset %.1f curr SI %.1f frame SI %.1f", offset, currentSI,
                 frameSI);
}

VOID CAECCoreDataManager::updateHistoryTableSI()
{
    if (FALSE == m_curModeInfo.isStartConfigSaved)
    {
        return;
    }
    AECUtilUpdateFrameTableSI(m_curModeInfo.startConfig);
    for (AECFrameHistory& rEntry : m_curModeInfo.frameHistories)
    {
        AECUtilUpdateFrameTableSI(rEntry);
    }
}

AecResult CAECCoreDataManager::setMeteringMode(AECAlgoMeteringModeType mode)
{
    if (mode == m_mtrMode)
    {
        return AecSuccess;
    }
    m_mtrMode = mode;
    return notifyComponents(&IAECComponent::OnMeteringModeChange);
}

AecResult CAECCoreDataManager::setEVVal(INT32 EVVal)
{
    const AECAlgoEVCapabilities& rCaps = m_contextEV.capabilities;
    if (0 == rCaps.stepsPerEV)
    {
        AEC_LOG_ERROR("ERROR: EV capabilities are not populated!");
        return AecError;
    }
    if (EVVal == m_contextEV.EVUIVal)
    {
        return AecSuccess;
    }

    m_contextEV.EVUIVal = EVVal;
    FLOAT EV            = static_cast<FLOAT>(EVVal) / static_cast<FLOAT>(rCaps.stepsPerEV);
    if ((EV < rCaps.minEV) || (EV > rCaps.maxEV))
    {
        AEC_LOG_WARN("Set EV value (%f) exceed max supported range (%d, %d)!", EV, rCaps.minEV, rCaps.maxEV);
        EV = (EV < rCaps.minEV) ? static_cast<FLOAT>(rCaps.minEV) : static_cast<FLOAT>(rCaps.maxEV);
    }
    m_contextEV.EV           = EV;
    m_debugData.configInfo.EV = EV;
    return notifyComponents(&IAECComponent::OnExposureCompChange);
}

AecResult CAECCoreDataManager::setFlickerCompMode(StatisticsAntibanding flickerComp)
{
    if (TRUE == getIsAECLocked())
    {
        // Changing the anti-banding now would move a locked exposure; the unlock applies it.
        m_lockContext.atb = flickerComp;
        return AecSuccess;
    }
    if (flickerComp == m_flickerComp)
    {
        return AecSuccess;
    }
    m_flickerComp = flickerComp;
    return notifyComponents(&IAECComponent::OnFlickerCompModeChange);
}

AecResult CAECCoreDataManager::setAECLockSetting(AECAlgoLockType lockState)
{
    if (AECAlgoOperationModeStreaming != m_opMode)
    {
        AEC_LOG_WARN("Warning: Cannot Lock AEC during OpMode %d", m_opMode);
        return AecError;
    }
    if (lockState == m_lockContext.lockState)
    {
        return AecSuccess;
    }

    m_lockContext.lockState = lockState;
    if (AECAlgoLockOn == lockState)
    {
        m_lockContext.atb = m_flickerComp;
    }
    else
    {
        // Unlocked already, so that an anti-banding mode requested during the lock takes effect now.
        setFlickerCompMode(m_lockContext.atb);
    }
    AEC_LOG_INFO("AEC Lock set to %d", lockState);
    return notifyComponents(&IAECComponent::OnAECLockChange);
}

AecResult CAECCoreDataManager::setManualSetting(const AECAlgoManualSetting& manualSetting)
{
    const UINT64 minExpTime = m_sensorInfo.minimumStreamExpTime;
    const UINT64 maxExpTime = m_sensorInfo.maximumStreamExpTime;
    const AECAlgoModeType mode = manualSetting.manualMode;
    const BOOL isExpTimeMode = (AECAlgoModeManualExpTime == mode) || (AECAlgoModeManualFull == mode) ||
                               ((mode >= AECAlgoModePASMExpTime) && (mode <= AECAlgoModePASMFullManual));
    // Out-of-range times are only reported: arbitration clamps them to the sensor's limits.
    if ((TRUE == isExpTimeMode) &&
        ((manualSetting.exposureTime < minExpTime) || (manualSetting.exposureTime > maxExpTime)))
    {
        AEC_LOG_WARN("Warning: Manual Exposure time exceeded sensor Capabilities");
    }
    if ((AECAlgoModePirisMaxExpPriority == mode) &&
        ((manualSetting.prioMaxExpTime < minExpTime) || (manualSetting.prioMaxExpTime > maxExpTime)))
    {
        AEC_LOG_WARN("Warning: Manual Priority Max Exposure time exceeded sensor Capabilities");
    }

    if (FALSE == isManualSettingChanged(manualSetting))
    {
        return AecSuccess;
    }
    m_manualSetting = manualSetting;
    return notifyComponents(&IAECComponent::OnManualSettingChange);
}

BOOL CAECCoreDataManager::isManualSettingChanged(const AECAlgoManualSetting& manualSetting) const
{
    const BOOL isSame = (manualSetting.manualMode == m_manualSetting.manualMode) &&
                        (manualSetting.ISOValue == m_manualSetting.ISOValue) &&
                        (manualSetting.exposureTime == m_manualSetting.exposureTime) &&
                        (manualSetting.gain == m_manualSetting.gain) &&
                        (manualSetting.fnumber == m_manualSetting.fnumber) &&
                        (manualSetting.prioMaxExpTime == m_manualSetting.prioMaxExpTime);
    return (TRUE == isSame) ? FALSE : TRUE;
}

AecResult CAECCoreDataManager::setFPSRange(const AECAlgoFPSRange& FPSRange)
{
    if ((FPSRange.minimumFPS == m_minFPS) && (FPSRange.maximumFPS == m_maxFPS))
    {
        return AecSuccess;
    }
    m_minFPS = FPSRange.minimumFPS;
    m_maxFPS = FPSRange.maximumFPS;
    return notifyComponents(&IAECComponent::OnFPSChange);
}

AecResult CAECCoreDataManager::setLEDMode(AECAlgoLEDModeType LEDMode)
{
    if (LEDMode == m_LEDMode)
    {
        return AecSuccess;
    }
    m_LEDMode = LEDMode;
    return notifyComponents(&IAECComponent::OnLEDModeChange);
}

AecResult CAECCoreDataManager::setTouchROI(const AECAlgoROIList& touchROI)
{
    // A count without regions would be read from nowhere: the list is refused as a whole.
    if ((0 != touchROI.ROICount) && (nullptr == touchROI.ROIs))
    {
        AEC_LOG_ERROR("Touch ROI list refused: %u ROIs without a region array", touchROI.ROICount);
        return AecError;
    }

    AecResult result = AecSuccess;
    UINT32    count  = touchROI.ROICount;
    if (count > AECMaxTouchROIs)
    {
        AEC_LOG_WARN("Too many touch ROIs (%d) than AEC can handle (%d)!", count, AECMaxTouchROIs);
        count  = AECMaxTouchROIs;
        result = AecError;
    }

    m_touchROIs.ROICount = count;
    for (UINT32 i = 0; i < count; i++)
    {
        AECAlgoROI roi = touchROI.ROIs[i];
        // NaN passes every comparison below unrepaired and would reach the grid as an index.
        if (std::isnan(roi.x) || std::isnan(roi.y) || std::isnan(roi.dx) || std::isnan(roi.dy))
        {
            AEC_LOG_WARN("Touch ROI %u is not a number; taken as empty", i);
            roi.x  = 0.0F;
            roi.y  = 0.0F;
            roi.dx = 0.0F;
            roi.dy = 0.0F;
        }
        if (roi.x > 1.0F)
        {
            AEC_LOG_WARN("x coord %.1f rounding to 1", roi.x);
            roi.x = 1.0F;
        }
        else if (roi.x < 0.0F)
        {
            AEC_LOG_WARN("x coord %.1f rounding to 0", roi.x);
            roi.x = 0.0F;
        }
        if (roi.y > 1.0F)
        {
            AEC_LOG_WARN("y coord %.1f rounding to 1", roi.y);
            roi.y = 1.0F;
        }
        else if (roi.y < 0.0F)
        {
            AEC_LOG_WARN("y coord %.1f rounding to 0", roi.y);
            roi.y = 0.0F;
        }
        if ((roi.x + roi.dx) > 1.0F)
        {
            AEC_LOG_WARN("x %.1f + dx %.1f rounding to 1", roi.x, roi.dx);
            roi.dx = 1.0F - roi.x;
        }
        if ((roi.y + roi.dy) > 1.0F)
        {
            AEC_LOG_WARN("y %.1f + dy %.1f rounding to 1", roi.y, roi.dy);
            roi.dy = 1.0F - roi.y;
        }
        if (roi.dx < 0.0F)
        {
            AEC_LOG_WARN("dx %.1f cap to 0", roi.dx);
            roi.dx = 0.0F;
        }
        if (roi.dy < 0.0F)
        {
            AEC_LOG_WARN("dy %.1f cap to 0", roi.dy);
            roi.dy = 0.0F;
        }
        m_touchROIs.ROIs[i] = roi;
    }

    const AecResult eventResult = notifyComponents(&IAECComponent::OnTouchROIChange);
    return (AecSuccess == result) ? eventResult : result;
}

AecResult CAECCoreDataManager::setFaceROI(const UnstabilizedROIInformation& faceROI)
{
    m_faceROIs.inputROIPriority.UpdateROIData(&faceROI);
    return notifyComponents(&IAECComponent::OnFaceROIChange);
}

VOID CAECCoreDataManager::setGyro(const StatsGyroInfo& gyro)
{
    m_gyroInfo = gyro;
}

AecResult CAECCoreDataManager::setDiagTestConfig(const AECAlgoDiagConfig* pDiagConfig)
{
    // Sweeps run on a streaming pipeline only.
    if ((nullptr == pDiagConfig) || (AECAlgoOperationModeStreaming != m_opMode))
    {
        return AecError;
    }

    BOOL isChanged = FALSE;
    if (TRUE == m_diagConfig.enable)
    {
        for (UINT32 i = 0; i < AECAlgoTestCaseCount; i++)
        {
            isChanged = (pDiagConfig->testCaseEnable[i] != m_diagConfig.testCaseEnable[i]) ? TRUE : isChanged;
        }
    }
    else
    {
        isChanged = (pDiagConfig->enable != m_diagConfig.enable) ? TRUE : FALSE;
    }
    if (FALSE == isChanged)
    {
        return AecSuccess;
    }
    m_diagConfig = *pDiagConfig;
    return notifyComponents(&IAECComponent::OnDiagTestConfigChange);
}

VOID CAECCoreDataManager::setStartUpExpIndex(const AECAlgoStartupIndices& startUpExpIndex)
{
    if (AECAlgoOperationModeStreaming != m_opMode)
    {
        AEC_LOG_WARN("Start-up exposure set in op mode %d: it serves the next start query of streaming", m_opMode);
    }
    m_startUpExpIndice = startUpExpIndex;
}

AecResult CAECCoreDataManager::setDCCalibrationInfo(const AECAlgoDCCalibrationInfo& calibrationInfo)
{
    if (AECAlgoDualcamOTPSet == m_dualcamCalibrationInfo.OTPStatus)
    {
        AEC_LOG_INFO("OTP data already set, skip update");
        return AecSuccess;
    }
    const AECAlgoRelativeDCCalibrationInfo& rRelative = calibrationInfo.relative;
    // Written so that NaN is refused as well.
    if (!(rRelative.brightnessRatio > 0.0F) || !(rRelative.slaveGain > 0.0F) || !(rRelative.slaveTimeUnit > 0.0F) ||
        !(rRelative.masterGain > 0.0F) || !(rRelative.masterTimeUnit > 0.0F))
    {
        AEC_LOG_ERROR("Incorrect OTP data");
        return AecError;
    }
    m_dualcamCalibrationInfo.OTPExpCompMultiplier =
        (rRelative.slaveGain * rRelative.slaveTimeUnit) /
        (rRelative.masterGain * rRelative.masterTimeUnit * rRelative.brightnessRatio);
    m_dualcamCalibrationInfo.OTPStatus = AECAlgoDualcamOTPSet;
    AEC_LOG_INFO("AEC-OTP calibrated compensation multiplier:%f", m_dualcamCalibrationInfo.OTPExpCompMultiplier);
    return AecSuccess;
}

AecResult CAECCoreDataManager::setMultiExposureSensorMode(AECAlgoHDRType multiExposureSensorMode)
{
    m_MultiExpSensorMode = multiExposureSensorMode;
    return notifyComponents(&IAECComponent::OnMultiExposureSensorModeChange);
}

AecResult CAECCoreDataManager::setDCGMode(const AECDCGConfig& dcgMode)
{
    m_dcgMode = dcgMode;
    return notifyComponents(&IAECComponent::OnDCGModeChange);
}

AecResult CAECCoreDataManager::setCustomExposureTable(const AECCustomExposureTable& customExposureTable)
{
    if (FALSE == isExposureTableChanged(customExposureTable))
    {
        return AecSuccess;
    }
    if (1 != customExposureTable.isValid)
    {
        m_customExposureTableInfo.isValid = FALSE;
        AEC_LOG_INFO("Custom Exposure Table is not Valid, hence changed to Tunning Exposure Tables");
    }
    else
    {
        // A table that cannot be used leaves the one in force.
        if ((AecSuccess != ValidateExposureTable(customExposureTable)) ||
            (AecSuccess != CopyExposureTable(customExposureTable)))
        {
            return AecSuccess;
        }
        m_customExposureTableInfo.isValid = TRUE;
        AEC_LOG_INFO("Custom Exposure Table is Valid, hence set and stored in data manager");
    }

    // Arbitration adopts the table and reports its sensitivity, on which the history is then rebased.
    const AecResult result = notifyComponents(&IAECComponent::OnCustomExposureTableChange);
    updateHistoryTableSI();
    return result;
}

BOOL CAECCoreDataManager::isExposureTableChanged(const AECCustomExposureTable& customExposureTable) const
{
    const AECCustomExposureTableInfo& rStored = m_customExposureTableInfo;
    if ((1 == customExposureTable.isValid) != (TRUE == rStored.isValid))
    {
        return TRUE;
    }
    // Two invalid tables both mean the tuned tables, whatever they carry.
    if (1 != customExposureTable.isValid)
    {
        return FALSE;
    }
    const aecArbitration::ExposureTableType& rTable = rStored.expTable;
    if ((customExposureTable.kneeCount != rTable.expKneeEntriesCount) ||
        (customExposureTable.sensitivityCorrectionFactor != rTable.sensitivityCorrectionFactor) ||
        (customExposureTable.antiBandingMinimumTimePercentageThreshold != rTable.thresAntiBandingMinExpTimePct))
    {
        return TRUE;
    }
    // Equal counts of a valid stored table: the count lies within the host's knee arrays.
    for (UINT32 knee = 0; knee < rTable.expKneeEntriesCount; knee++)
    {
        const aecArbitration::ExposureKneeType& rKnee = rTable.expKneeEntries[knee];
        const INT32 priority = (0 != customExposureTable.incrementPriority[knee]) ? 1 : 0;
        if ((customExposureTable.expTime[knee] != rKnee.expTime) || (customExposureTable.gain[knee] != rKnee.gain) ||
            (priority != rKnee.incrementPriority))
        {
            return TRUE;
        }
    }
    return FALSE;
}

AecResult CAECCoreDataManager::ValidateExposureTable(const AECCustomExposureTable& customExposureTable) const
{
    const UINT32 kneeCount = customExposureTable.kneeCount;
    // The host's arrays hold MaxCustomTableKnees knees, yet a table that fills them is refused.
    if ((kneeCount < MinCustomTableKnees) || (kneeCount >= MaxCustomTableKnees))
    {
        AEC_LOG_ERROR("Invalid Custom Exposure Table Size, Size = %d, Min = 2, Max Size = %d", kneeCount,
                      MaxCustomTableKnees);
        return AecError;
    }
    // Each check is written so that NaN fails it too.
    if (!(customExposureTable.sensitivityCorrectionFactor >= 0.0F))
    {
        AEC_LOG_ERROR("Invalid Sensitivity Correction Factor: %f", customExposureTable.sensitivityCorrectionFactor);
        return AecError;
    }
    if (!(customExposureTable.antiBandingMinimumTimePercentageThreshold >= 0.0F))
    {
        AEC_LOG_ERROR("Invalid anti-Banding Minimum Time Percentage Threshold: %f",
                      customExposureTable.antiBandingMinimumTimePercentageThreshold);
        return AecError;
    }
    for (UINT32 knee = 0; knee < kneeCount; knee++)
    {
        // Infinity is refused too: the knee's exposure index would not be finite.
        if (!(customExposureTable.gain[knee] >= 1.0F) || std::isinf(customExposureTable.gain[knee]))
        {
            AEC_LOG_ERROR("Index:%d, EI: %f, Invalid Gain: %f", knee, customExposureTable.expIndex[knee],
                          customExposureTable.gain[knee]);
            return AecError;
        }
        if (0 == customExposureTable.expTime[knee])
        {
            AEC_LOG_ERROR("Index:%d, EI: %f, Invalid ET: %f", knee, customExposureTable.expIndex[knee],
                          static_cast<DOUBLE>(customExposureTable.expTime[knee]));
            return AecError;
        }
    }
    return AecSuccess;
}

AecResult CAECCoreDataManager::CopyExposureTable(const AECCustomExposureTable& customExposureTable)
{
    aecArbitration::ExposureTableType& rTable    = m_customExposureTableInfo.expTable;
    const UINT32                       kneeCount = customExposureTable.kneeCount;
    if (kneeCount != rTable.expKneeEntriesID)
    {
        // The new array is taken before the old one goes, so that a failure leaves the table in force.
        aecArbitration::ExposureKneeType* pKnees = static_cast<aecArbitration::ExposureKneeType*>(
            VelaCalloc(kneeCount, sizeof(aecArbitration::ExposureKneeType), alignof(aecArbitration::ExposureKneeType)));
        if (nullptr == pKnees)
        {
            AEC_LOG_ERROR("Failed to allocate memory for custom exposure table");
            return AecError;
        }
        VelaFree(rTable.expKneeEntries);
        rTable.expKneeEntries   = pKnees;
        rTable.expKneeEntriesID = kneeCount;
    }

    rTable.expKneeEntriesCount           = kneeCount;
    rTable.sensitivityCorrectionFactor   = customExposureTable.sensitivityCorrectionFactor;
    rTable.thresAntiBandingMinExpTimePct = customExposureTable.antiBandingMinimumTimePercentageThreshold;
    // The host's indices are not used: each knee's index follows from its exposure product and the previous knee's.
    DOUBLE previousProduct = 0.0;
    for (UINT32 knee = 0; knee < kneeCount; knee++)
    {
        aecArbitration::ExposureKneeType& rKnee   = rTable.expKneeEntries[knee];
        const DOUBLE                      product = static_cast<DOUBLE>(customExposureTable.expTime[knee]) *
                                                    static_cast<DOUBLE>(customExposureTable.gain[knee]);
        rKnee.gain              = customExposureTable.gain[knee];
        rKnee.expTime           = customExposureTable.expTime[knee];
        rKnee.incrementPriority = (0 != customExposureTable.incrementPriority[knee]) ? aecglobalelements::AECExpIncExpTime
                                                                                    : aecglobalelements::AECExpIncGain;
        rKnee.expIndex = (0 == knee) ? 0.0F
                                     : rTable.expKneeEntries[knee - 1].expIndex +
                                           static_cast<FLOAT>(std::log10(product / previousProduct) * AECIndexPerLog10);
        previousProduct = product;
    }
    return AecSuccess;
}

AecResult CAECCoreDataManager::setCustomMeteringTable(const AECCustomMeteringTable& customMeteringTable)
{
    if (AECAlgoMeteringModeCustom == m_mtrMode)
    {
        if (AECORE_CUSTOM_METERING_TABLE_SIZE == customMeteringTable.meteringTableSize)
        {
            m_CustomMeteringTable = customMeteringTable;
        }
        else
        {
            AEC_LOG_ERROR("Invalid Custom Metering Table Size : %f",
                          static_cast<DOUBLE>(customMeteringTable.meteringTableSize));
        }
    }
    // Metering re-reads its weights in any case.
    return notifyComponents(&IAECComponent::OnCustomMeteringTableChange);
}

AecResult CAECCoreDataManager::setConvergenceSpeed(FLOAT convergenceSpeed)
{
    if (std::fabs(convergenceSpeed - m_dynamicConvergenceSpeed) < AECFloatEpsilon)
    {
        return AecSuccess;
    }
    if (std::fabs(convergenceSpeed) < AECFloatEpsilon)
    {
        m_dynamicConvergenceSpeed = convergenceSpeed;
        AEC_LOG_INFO("Reset AEC convergence speed with tuning value");
        return notifyComponents(&IAECComponent::OnDynamicConvergenceSpeedChange);
    }
    // Written so that NaN is refused as well.
    if (!((convergenceSpeed >= 0.0F) && (convergenceSpeed <= 1.0F)))
    {
        AEC_LOG_ERROR("Invalid convergence speed %f", convergenceSpeed);
        return AecError;
    }
    m_dynamicConvergenceSpeed = convergenceSpeed;
    AEC_LOG_INFO("Changed AEC convergence speed to %f", convergenceSpeed);
    return notifyComponents(&IAECComponent::OnDynamicConvergenceSpeedChange);
}

AecResult CAECCoreDataManager::setIRLedState(AECIRLedState IRLedState)
{
    if (IRLedState == m_IRLedState)
    {
        return AecSuccess;
    }
    m_IRLedState = IRLedState;
    return notifyComponents(&IAECComponent::OnIRStateChange);
}

AecResult CAECCoreDataManager::setIRLedSystemConfig(const AECIRLedSystemConfig& IRLedSystemConfig)
{
    m_IRCutSystemLatency = IRLedSystemConfig.IRCutSystemLatency;
    m_IRLedSystemLatency = IRLedSystemConfig.IRLedSystemLatency;
    m_PWMFrequency       = IRLedSystemConfig.PWMFrequency;
    return notifyComponents(&IAECComponent::OnIRSystemConfigChange);
}

VOID CAECCoreDataManager::setCompensationRatio(FLOAT compensationRatio)
{
    m_compensationRatio = compensationRatio;
}

VOID CAECCoreDataManager::setWeightTable(const AECWeightingTable& weightTable)
{
    m_weightTable = weightTable;
}

// ---- IAECContext ----

AECAlgoOperationModeType CAECCoreDataManager::getOperationMode()
{
    return m_opMode;
}

AECAlgoMeteringModeType CAECCoreDataManager::getMeteringMode()
{
    return m_mtrMode;
}

const EVContext* CAECCoreDataManager::getEVInfo()
{
    return &m_contextEV;
}

StatisticsAntibanding CAECCoreDataManager::getFlickerCompMode()
{
    return m_flickerComp;
}

const AECAlgoManualSetting* CAECCoreDataManager::getManualSetting()
{
    return &m_manualSetting;
}

BOOL CAECCoreDataManager::getIsAECLocked()
{
    return (AECAlgoLockOn == m_lockContext.lockState) ? TRUE : FALSE;
}

AECLockContext* CAECCoreDataManager::getLockContext()
{
    return &m_lockContext;
}

FLOAT CAECCoreDataManager::getMinFPS()
{
    return m_minFPS;
}

FLOAT CAECCoreDataManager::getMaxFPS()
{
    return m_maxFPS;
}

AECAlgoLEDModeType CAECCoreDataManager::getLEDMode()
{
    return m_LEDMode;
}

UINT32 CAECCoreDataManager::getFlashMeasIndex()
{
    return m_flashMeasIndex;
}

AECAlgoFlashMeasKindType CAECCoreDataManager::getFlashMeasKind()
{
    return m_flashMeasState;
}

const AECAlgoWhiteBalanceState* CAECCoreDataManager::getAWBState()
{
    return &m_AWBState;
}

const AECAlgoOverrideSettingParam* CAECCoreDataManager::getOverrideSetting()
{
    return &m_OverrideSetting;
}

BOOL CAECCoreDataManager::getLEDCalibrationEnable()
{
    return m_LEDCalibrationEnable;
}

BOOL CAECCoreDataManager::getDebugDataEnable()
{
    return m_debugDataEnable;
}

AECDebugData* CAECCoreDataManager::getDebugData()
{
    return &m_debugData;
}

INT32 CAECCoreDataManager::getFlashMaxCurrent()
{
    return m_flashMaxCurrent;
}

const IRTuningDataType* CAECCoreDataManager::getIRTuning()
{
    return (nullptr != m_pCoreTuningData) ? &m_pCoreTuningData->IRTuningData : nullptr;
}

const ConvergenceTuningDataType* CAECCoreDataManager::getConvTuning()
{
    return (nullptr != m_pCoreTuningData) ? &m_pCoreTuningData->convTuningData : nullptr;
}

const MeteringTuningDataType* CAECCoreDataManager::getMtrTuning()
{
    return meteringTuning();
}

const ArbitrationTuningDataType* CAECCoreDataManager::getArbTuning()
{
    return (nullptr != m_pCoreTuningData) ? &m_pCoreTuningData->arbTuningData : nullptr;
}

const ExtensionTuningDataType* CAECCoreDataManager::getExtTuning()
{
    return (nullptr != m_pCoreTuningData) ? &m_pCoreTuningData->extTuningData : nullptr;
}

const ModArbitrationContext* CAECCoreDataManager::getExposureLimitation()
{
    return &m_arbitrationContext;
}

const AECFrameHistory* CAECCoreDataManager::getFrameHistory(UINT8 offset)
{
    if (FALSE == m_curModeInfo.isStartConfigSaved)
    {
        AEC_LOG_WARN("No start configuration is recorded in the history! ");
        return nullptr;
    }
    if (FALSE == m_curModeInfo.isCurFrameIDValid)
    {
        AEC_LOG_VERBOSE("Frame history called with no frame processed; returning start config. ");
        return &m_curModeInfo.startConfig;
    }
    if (offset > AECFrameHistoryMaxCount)
    {
        AEC_LOG_ERROR("Input offset (%d) is bigger than the frame history buffer size (%d)!", offset,
                      AECFrameHistoryMaxCount);
        return nullptr;
    }
    // Frame IDs need not be consecutive: the entry sought is the newest one at least offset IDs old.
    for (const AECFrameHistory& rEntry : m_curModeInfo.frameHistories)
    {
        if ((rEntry.frameID + offset) <= m_curModeInfo.curFrameID)
        {
            return &rEntry;
        }
    }
    return &m_curModeInfo.startConfig;
}

BOOL CAECCoreDataManager::getPrevModeHistory(AECModeHistory* pModeHistory)
{
    if (nullptr != pModeHistory)
    {
        *pModeHistory = m_prevMode;
    }
    return m_prevMode.isValid;
}

const TouchROIProcInfo* CAECCoreDataManager::getTouchROI()
{
    return &m_touchROIs;
}

const FaceROIProcInfo* CAECCoreDataManager::getFaceROI()
{
    return &m_faceROIs;
}

FLOAT CAECCoreDataManager::getCurrentFPS()
{
    return m_arbitrationContext.currentFPS;
}

BOOL CAECCoreDataManager::getAreFlashLowStatsSaved()
{
    return m_areFlashLowStatsSaved;
}

const AECAlgoSensorInfo* CAECCoreDataManager::getSensorInfo()
{
    return &m_sensorInfo;
}

const AECAlgoDiagConfig* CAECCoreDataManager::getDiagTestConfig()
{
    return &m_diagConfig;
}

const StatsGyroInfo* CAECCoreDataManager::getGyroInfo()
{
    return &m_gyroInfo;
}

BOOL CAECCoreDataManager::getDRCEnable()
{
    const MeteringTuningDataType* pMtr = meteringTuning();
    // Without tuning ADRC stays off.
    const BOOL tuned = ((nullptr != pMtr) && (nullptr != pMtr->pCore))
                           ? pMtr->pCore->mtrLumaTarget.histLumaTarget.enableADRC
                           : FALSE;
    const BOOL enable = ((FALSE != tuned) && (FALSE == m_disableADRC) &&
                         (AECAlgoModeAuto == m_manualSetting.manualMode)) ? TRUE : FALSE;
    AEC_LOG_VERBOSE("Enable:%d m_disableADRC:%d manualMode:%d tuning:%d", enable, m_disableADRC,
                    m_manualSetting.manualMode, tuned);
    return enable;
}

FLOAT CAECCoreDataManager::getCompensationRatio()
{
    return m_compensationRatio;
}

BOOL CAECCoreDataManager::getHDR3Enable()
{
    return (SensorHDR == m_MultiExpSensorMode) ? TRUE : FALSE;
}

FLOAT CAECCoreDataManager::getRealDRCGainHDR3()
{
    return m_DRCGainHDR3;
}

const AECAlgoStartupIndices* CAECCoreDataManager::getStartUpExpIndex()
{
    return &m_startUpExpIndice;
}

UINT8 CAECCoreDataManager::getPipelineDelay()
{
    return m_systemLatency;
}

AECAlgoMultiCamMeteringType CAECCoreDataManager::getMeteringType()
{
    return m_meteringType;
}

AECAlgoMultiCamExposureType CAECCoreDataManager::getExposureType()
{
    return m_exposureType;
}

const StatsCameraInfo* CAECCoreDataManager::getCameraInfo()
{
    return &m_cameraInfo;
}

const AECMultiCamInfo* CAECCoreDataManager::getPeerInfo()
{
    if (nullptr == m_pPeerInfo)
    {
        return nullptr;
    }
    // The peer publishes from its own thread: hand out a consistent copy, never the live record.
    std::lock_guard<std::mutex> guard(MultiCamInfoLock());
    m_peerInfoSnapshot = *m_pPeerInfo;
    return &m_peerInfoSnapshot;
}

VOID CAECCoreDataManager::publishMyOwnInfo(const AECMultiCamInfo& info)
{
    std::lock_guard<std::mutex> guard(MultiCamInfoLock());
    m_myOwnInfo = info;
}

AECMultiCamInfo* CAECCoreDataManager::getMyOwnInfo()
{
    return &m_myOwnInfo;
}

const StatsBayerGridBayerExposureConfig* CAECCoreDataManager::getBGBEConfig()
{
    // With ADRC saturation control the thresholds scale with the spread between the short and the safe exposure
    // and, unless predictive saturation control takes care of them, with the predictive gains of the frame.
    const MeteringTuningDataType* pMtr = meteringTuning();
    if ((nullptr == pMtr) || (1 != pMtr->ADRCSaturation.enableADRCSatCtrl))
    {
        return &m_BGBEConfig;
    }
    const AECFrameHistory* pNewest = getFrameHistory(0);
    if (nullptr == pNewest)
    {
        return &m_BGBEConfig;
    }
    FLOAT scale = powf(AECIndexBase, pNewest->expIndices[AECAlgoExposureShort] -
                                         pNewest->expIndices[AECAlgoExposureSafe]);
    if (0 == pMtr->ADRCSaturation.enablePredictiveSatCtrl)
    {
        scale *= pNewest->predictiveGain * pNewest->predictiveADRC;
    }
    for (UINT32 channel = 0; channel < GridChannelCount; channel++)
    {
        m_BGBEConfig.channelGainThreshold[channel] =
            ToUINT32Saturated(static_cast<FLOAT>(m_BGBESatThresholds[channel]) * scale);
    }
    return &m_BGBEConfig;
}

const StatsBayerHistogramConfig* CAECCoreDataManager::getBayerHistConfig()
{
    return &m_BayerHistConfig;
}

FLOAT CAECCoreDataManager::getDynamicConvergenceSpeed()
{
    return m_dynamicConvergenceSpeed;
}

UINT32 CAECCoreDataManager::getFlashMeasSwitchCounter()
{
    return m_flashMeasSwitchCounter;
}

AECDualcamCalibrationInfo CAECCoreDataManager::getDCCalibrationInfo()
{
    return m_dualcamCalibrationInfo;
}

AECAlgoHDRType CAECCoreDataManager::getMultiExposureSensorMode()
{
    return m_MultiExpSensorMode;
}

const AECDCGConfig* CAECCoreDataManager::getDCGMode()
{
    return &m_dcgMode;
}

UINT32 CAECCoreDataManager::getConvFrameSkipCounter()
{
    return m_convFrameSkipCounter;
}

INT32 CAECCoreDataManager::getPostRawGain()
{
    return m_postRawGain;
}

UINT32 CAECCoreDataManager::getPostRawCounter()
{
    return m_postRawCounter;
}

const AECCustomMeteringTable& CAECCoreDataManager::getCustomMeteringTable()
{
    return m_CustomMeteringTable;
}

const AECCustomExposureTableInfo* CAECCoreDataManager::getCustomExposureTableInfo()
{
    return &m_customExposureTableInfo;
}

aecArbitration::ExposureTableType* CAECCoreDataManager::getExposureTableFromTableID(
    aecglobalelements::ExposureTableIDType tableID)
{
    if ((CustomExposureTableID == tableID) && (TRUE == m_customExposureTableInfo.isValid))
    {
        return &m_customExposureTableInfo.expTable;
    }
    const ArbitrationTuningDataType* pArb = getArbTuning();
    if ((nullptr == pArb) || (nullptr == pArb->pCore))
    {
        return nullptr;
    }
    const aecArbitration::AECCoreArbitrationType& rTuning = *pArb->pCore;
    // Table 0 is the fallback: tuning without any table has nothing to fall back on.
    if ((0 == rTuning.expTablesCount) || (nullptr == rTuning.expTables))
    {
        AEC_LOG_ERROR("Exposure table %d requested, but the tuning holds no exposure table", tableID);
        return nullptr;
    }
    // Negative IDs are out of range as well: they would index before the table array.
    if ((tableID < 0) || (static_cast<UINT32>(tableID) >= rTuning.expTablesCount))
    {
        AEC_LOG_ERROR("Invalid exposure table ID %d (table count %u), using table 0", tableID, rTuning.expTablesCount);
        return &rTuning.expTables[0];
    }
    return &rTuning.expTables[tableID];
}

AECIRLedState CAECCoreDataManager::getIRState()
{
    return m_IRLedState;
}

FLOAT CAECCoreDataManager::getManualIRIntensity()
{
    return m_ManualIRIntensity;
}

UINT32 CAECCoreDataManager::getIRCutSystemLatency()
{
    return m_IRCutSystemLatency;
}

UINT32 CAECCoreDataManager::getIRLedSystemLatency()
{
    return m_IRLedSystemLatency;
}

FLOAT CAECCoreDataManager::getPWMFrequency()
{
    return m_PWMFrequency;
}

AECWeightingTable* CAECCoreDataManager::getWeightTable()
{
    return &m_weightTable;
}

// ---- Callbacks ----

VOID CAECCoreDataManager::SetAreFlashLowStatsSaved(BOOL areSaved)
{
    m_areFlashLowStatsSaved = areSaved;
}

VOID CAECCoreDataManager::SetEVCapability(INT8 minEV, INT8 maxEV, INT8 stepsPerEV)
{
    m_contextEV.capabilities.minEV      = minEV;
    m_contextEV.capabilities.maxEV      = maxEV;
    m_contextEV.capabilities.stepsPerEV = stepsPerEV;
}

VOID CAECCoreDataManager::SetRealDRCGain(FLOAT realDRCGain)
{
    m_realDRCGain = realDRCGain;
}

VOID CAECCoreDataManager::SetConvFrameSkipCounter(UINT32 counter)
{
    m_convFrameSkipCounter = counter;
}

VOID CAECCoreDataManager::setSensitivity(FLOAT sensitivity)
{
    m_arbitrationContext.streamingExpTblSens = sensitivity;
}

VOID CAECCoreDataManager::SetStreamingLimitation(ExposureLimitationType* pLimitation)
{
    if (nullptr != pLimitation)
    {
        m_arbitrationContext.exposureLimitation = *pLimitation;
    }
}

VOID CAECCoreDataManager::SetSHDRStreamingLimitation(ExposureLimitationType* pLimitations)
{
    if (nullptr != pLimitations)
    {
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            m_arbitrationContext.exposureShdrLimitation[i] = pLimitations[i];
        }
    }
}

VOID CAECCoreDataManager::SetCurentFPS(FLOAT FPS)
{
    m_arbitrationContext.currentFPS = FPS;
}

VOID CAECCoreDataManager::SetExpTableIdxOffsets(FLOAT* pStreamOffsets, FLOAT* pStillOffsets)
{
    if (nullptr != pStreamOffsets)
    {
        for (UINT32 mode = 0; mode < AECExpIdxOffsetCount; mode++)
        {
            m_arbitrationContext.streamModeExpIdxOffsets[mode] = pStreamOffsets[mode];
        }
    }
    if (nullptr != pStillOffsets)
    {
        // One offset per snapshot kind.
        for (UINT32 kind = 0; kind < AECAlgoSnapshotCount; kind++)
        {
            m_arbitrationContext.stillModeExpIdxOffsets[kind] = pStillOffsets[kind];
        }
    }
}

VOID CAECCoreDataManager::SetStreamingMinExpIndexForATB(FLOAT minExpIndex)
{
    m_arbitrationContext.streamingMinExpIndexForATB = minExpIndex;
}

VOID CAECCoreDataManager::IrisCtrlCallbackPlaceholder(BOOL /*placeholder*/)
{
}

VOID CAECCoreDataManager::SetFlashMeasurementIndex(INT32 index)
{
    m_flashMeasIndex = static_cast<UINT32>(index);
}

VOID CAECCoreDataManager::SetMaxFlashCurrent(UINT32 maxCurrent)
{
    m_flashMaxCurrent = static_cast<INT32>(maxCurrent);
}
