// The per-camera state store of the core: settings, tuning views, frame history, ROIs and multi-camera exchange.
#include "aec/core/base/caeccoredatamanager.h"

#include <cstring>
#include <iterator>

#include "platform/statslogger.h"

namespace
{

// Statistics configuration used until the statistics tuning provides one.
constexpr UINT32 DefaultChannelGainThreshold = 15296;
constexpr UINT32 DefaultGridColumns          = 64;
constexpr UINT32 DefaultGridRows             = 48;
constexpr UINT8  DefaultGridBitDepth         = 14;

// Operation modes whose last frame the next mode may start from.
BOOL IsStreamingTypeMode(AECAlgoOperationModeType mode)
{
    return (AECAlgoOperationModeStreaming == mode) || (AECAlgoOperationModeFastAEC == mode) ||
           (AECAlgoOperationModeAggressiveAEC == mode);
}

} // namespace

CAECCoreDataManager::CAECCoreDataManager()
    : m_componentList()
    , m_tuningViews()
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

CAECCoreDataManager::~CAECCoreDataManager() = default;

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
    // Later stage: the offset is log10 of the multiplier of the metering tuning's EV compensation table
    // times the index constant; without tuning the multiplier is 1 and the offset 0.
    const FLOAT offset = 0.0F;
    const FLOAT EV     = (AECAlgoOperationModePreflash != m_opMode) ? m_contextEV.EV : 0.0F;

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
    // Later stage: face presence debouncing needs the hold times of the face tuning; until then the
    // filtered faces stay as they are.
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
    for (UINT32 channel = 0; channel < 4; channel++)
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

BOOL CAECCoreDataManager::MapTuningToMtrExpConfig(const StatsCameraInfo& /*cameraInfo*/)
{
    // Later stage: the metering and exposure kinds of each role come from the multi-camera tuning.
    // Without that tuning nothing changes.
    return FALSE;
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
    // Without own calibration, the peer's calibration applies from this camera's side: the inverse multiplier.
    if ((nullptr != m_pPeerInfo) && (AECAlgoDualcamOTPInvalid == m_dualcamCalibrationInfo.OTPStatus) &&
        (AECAlgoDualcamOTPSet == m_pPeerInfo->OTPInfo.OTPStatus) && (m_pPeerInfo->OTPInfo.OTPExpCompMultiplier > 0.0F))
    {
        m_dualcamCalibrationInfo.OTPExpCompMultiplier = 1.0F / m_pPeerInfo->OTPInfo.OTPExpCompMultiplier;
        m_dualcamCalibrationInfo.OTPStatus            = AECAlgoDualcamOTPSetUsingPeer;
    }
}

VOID CAECCoreDataManager::setTuningViews(const AECCoreTuningViews& views)
{
    m_tuningViews = views;
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
    return m_tuningViews.pIR;
}

const ConvergenceTuningDataType* CAECCoreDataManager::getConvTuning()
{
    return m_tuningViews.pConv;
}

const MeteringTuningDataType* CAECCoreDataManager::getMtrTuning()
{
    return m_tuningViews.pMtr;
}

const ArbitrationTuningDataType* CAECCoreDataManager::getArbTuning()
{
    return m_tuningViews.pArb;
}

const ExtensionTuningDataType* CAECCoreDataManager::getExtTuning()
{
    return m_tuningViews.pExt;
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
    // Later stage: ADRC is enabled by the histogram target tuning; without tuning it stays off.
    return FALSE;
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
    return m_pPeerInfo;
}

AECMultiCamInfo* CAECCoreDataManager::getMyOwnInfo()
{
    return &m_myOwnInfo;
}

const StatsBayerGridBayerExposureConfig* CAECCoreDataManager::getBGBEConfig()
{
    // Later stage: the saturation thresholds follow the newest frame when the ADRC saturation tuning asks.
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
    // Later stage: custom exposure tables come with the generated exposure table record.
    return nullptr;
}

aecArbitration::ExposureTableType* CAECCoreDataManager::getExposureTableFromTableID(
    aecglobalelements::ExposureTableIDType /*tableID*/)
{
    // Without tuning there is no table; the tuned and custom tables come with the tuning data adapter.
    return nullptr;
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
