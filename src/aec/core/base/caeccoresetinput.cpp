// Set parameters of the core: the host's single door for changing the state of the algorithm.
#include "aec/core/base/caeccore.h"
#include "aec/core/base/caeccoredatamanager.h"
#include "platform/statslogger.h"

namespace
{

// Names of AECAlgoSetParamType in value order, for the log; the last entry stands for every larger value.
const CHAR* const SetParamNames[] = {
    "AECAlgoSetParamExpTableRange",
    "AECAlgoSetParamOperationMode",
    "AECAlgoSetParamSorentaData",
    "AECAlgoSetParamMeteringMode",
    "AECAlgoSetParamExposureCompensation",
    "AECAlgoSetParamFlickerCompensation",
    "AECAlgoSetParamManualSetting",
    "AECAlgoSetParamAECLock",
    "AECAlgoSetParamFPSRange",
    "AECAlgoSetParamLEDMode",
    "AECAlgoSetParamTouchROI",
    "AECAlgoSetParamFaceROI",
    "AECAlgoSetParamAWBState",
    "AECAlgoSetParamGyroInfo",
    "AECAlgoSetParamOverrideSetting",
    "AECAlgoSetParamFlashMeasurement",
    "AECAlgoSetParamFlashCalibrationData",
    "AECAlgoSetParamDebugDataEnable",
    "AECAlgoSetParamSensorInfo",
    "AECAlgoSetParamCameraInfo",
    "AECAlgoSetParamFlashMaximumCurrent",
    "AECAlgoSetParamSetDiagTestConfig",
    "AECAlgoSetParamStartUpExpSensitivity",
    "AECAlgoSetParamStatsCapability",
    "AECAlgoSetParamCropWindow",
    "AECAlgoSetParamPipelineDelay",
    "AECAlgoSetParamPeerInfo",
    "AECAlgoSetParamDualcamCalibrationInfo",
    "AECAlgoSetParamDCGMode",
    "AECAlgoSetParamMultiExpSensorMode",
    "AECAlgoSetParamIsDualCamera",
    "AECAlgoSetParamUnstabilizedFaceROI",
    "AECAlgoSetParamControlPostRawSensitivityBoost",
    "AECAlgoSetParamCustomExposureTable",
    "AECAlgoSetParamCustomMeteringTable",
    "AECAlgoSetParamDisableADRC",
    "AECAlgoSetParamIRLedState",
    "AECAlgoSetParamIRLedSystemConfig",
    "AECAlgoSetParamConvergenceSpeed",
    "AECAlgoSetParamFlashInlineCalibrationData",
    "AECAlgoSetParamIsFlashInfluencedStats",
    "AECAlgoSetParamFlashInlineCalibrationMode",
    "AECAlgoSetParamTrackerROI",
    "AECAlgoSetParamframeID",
    "AECAlgoSetParamApertureCalibrationInfo",
    "AECAlgoSetParamAmbientRaw",
    "AECAlgoSetParamSaliencyMapData",
    "AECAlgoSetParamZLLData",
    "AECAlgoSetParamMagnetometerInfo",
    "AECAlgoSetParamLightInfo",
    "AECAlgoSetParamAFDFrameInfo",
    "AECAlgoSetParamBYRCamera",
    "AECAlgoSetParamLDMStateQueue",
    "AECAlgoSetParamDecompandSystemConfig",
    "AECAlgoSetParamCount",
    "AECAlgoSetParamMax",
};
constexpr UINT32 SetParamNameCount = sizeof(SetParamNames) / sizeof(SetParamNames[0]);
static_assert(56 == SetParamNameCount, "one name per set parameter type, Count and Max");

const CHAR* SetParamName(AECAlgoSetParamType type)
{
    // Negative values count as too large.
    const UINT32 index = static_cast<UINT32>(type);
    return SetParamNames[(index < SetParamNameCount) ? index : (SetParamNameCount - 1)];
}

// Types this configuration does not handle at all.
BOOL IsUnhandledSetParam(AECAlgoSetParamType type)
{
    const BOOL isOutsideTable = (type < AECAlgoSetParamExpTableRange) || (type > AECAlgoSetParamLDMStateQueue);
    const BOOL isLaterExtension =
        (type >= AECAlgoSetParamFlashInlineCalibrationData) && (type <= AECAlgoSetParamBYRCamera);
    return (AECAlgoSetParamExpTableRange == type) || (AECAlgoSetParamStatsCapability == type) ||
           (AECAlgoSetParamIRLedState == type) || (AECAlgoSetParamIRLedSystemConfig == type) ||
           (TRUE == isOutsideTable) || (TRUE == isLaterExtension);
}

} // namespace

KDKResult CAECCore::setInput(const AECCoreSetParam* pParam)
{
    if (nullptr == pParam)
    {
        AEC_LOG_ERROR("SetParam is NULL!");
        return VelaResultEFailed;
    }
    if (FALSE == isConstructed())
    {
        AEC_LOG_ERROR("AEC set parameter refused: the core is not constructed");
        return VelaResultEFailed;
    }

    const AECAlgoSetParamType   type  = pParam->paramType;
    const AECCoreSetParamData&  rData = pParam->data;
    AEC_LOG_INFO("AEC Set parameters (%s)", SetParamName(type));

    if (TRUE == IsUnhandledSetParam(type))
    {
        AEC_LOG_WARN("Unhandled AEC set input type %d", type);
        return VelaResultSuccess;
    }

    // The setters' results are not the host's concern: a refused change is logged where it is refused.
    switch (type)
    {
        case AECAlgoSetParamOperationMode:
            m_pDataManager->setOperationMode(rData.opMode);
            break;
        case AECAlgoSetParamAWBState:
            m_pDataManager->setAWBState(rData.AWBState);
            break;
        case AECAlgoSetParamOverrideSetting:
            m_pDataManager->setOverrideSetting(rData.OverrideSetting);
            break;
        case AECAlgoSetParamFlashMeasurement:
            m_pDataManager->setFlashMeasurement(rData.flashMeasurementState);
            break;
        case AECAlgoSetParamDebugDataEnable:
            m_pDataManager->setDebugDataEnable(rData.debugDataEnable);
            break;
        case AECAlgoSetParamSensorInfo:
            m_pDataManager->SetSetSensorInfo(&rData.sensorInfo);
            m_pAecSkipCtrl->ResetFrameSkip();
            break;
        case AECAlgoSetParamCameraInfo:
            // The core takes both at once; the store keeps the role only with its tuned configuration.
            m_pDataManager->setCameraInfo(rData.cameraInfo);
            m_cameraID = rData.cameraInfo.cameraId;
            m_algoRole = rData.cameraInfo.algoRole;
            break;
        case AECAlgoSetParamFlashMaximumCurrent:
            m_pDataManager->setFlashMaxCurrent(rData.LEDMaxCurrent);
            break;
        case AECAlgoSetParamCropWindow:
            m_pDataManager->setCropWindow(rData.cropWindow);
            break;
        case AECAlgoSetParamPipelineDelay:
            m_pDataManager->setPipelineDelay(rData.sysLatency);
            AEC_LOG_INFO("System Latency: %d", rData.sysLatency);
            break;
        case AECAlgoSetParamPeerInfo:
        {
            const StatsPeerInfoCombo& rCombo = rData.PeerInfoCombo;
            AEC_LOG_INFO("AEC need sync: %d", rCombo.needSync);
            for (UINT32 i = 0; i < AECORE_MAX_PEER_PIPELINES; i++)
            {
                AEC_LOG_INFO("PeerPipeline:%d CamID:%d Active:%d Role:%d PeerInfo:%p", i, rCombo.cameraId[i],
                             rCombo.isActive[i], rCombo.algoRole[i], rCombo.pPeerInfo[i]);
            }
            // A failed selection keeps the peer known so far.
            const AECMultiCamInfo* pPeerInfo = nullptr;
            if (AecSuccess == m_pDataManager->MapMultiCamPeerInfo(&rCombo, &pPeerInfo))
            {
                m_pDataManager->setPeerInfo(pPeerInfo);
            }
            break;
        }
        case AECAlgoSetParamIsDualCamera:
            m_isDual = rData.isDual;
            break;
        case AECAlgoSetParamControlPostRawSensitivityBoost:
            m_pDataManager->setPostRawGain(rData.postRawGain);
            break;
        case AECAlgoSetParamDisableADRC:
            m_pDataManager->setADRCInfo(rData.disableADRC);
            break;
        default:
            // Later stage: tuning, metering mode, EV, anti-banding, manual settings, lock, FPS range, LED mode,
            // ROIs, gyro, flash calibration, diagnostics, start-up sensitivity, peer info, dual-camera
            // calibration, DCG and multi-exposure modes, custom tables, convergence speed and lens state.
            break;
    }
    return VelaResultSuccess;
}
