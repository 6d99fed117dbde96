// Set parameters of the core: the host's single door for changing the state of the algorithm.
#include "aec/core/base/caeccore.h"

#include <cstdlib>
#include <cstring>

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

    const AECAlgoSetParamType  type  = pParam->paramType;
    const AECCoreSetParamData& rData = pParam->data;
    AEC_LOG_INFO("AEC Set parameters (%s)", SetParamName(type));

    // The setters' results are not the host's concern: a refused change is logged where it is refused.
    // Frame skipping restarts when a setting that moves the exposure target changes; whether it changes is
    // judged against the store before the setter runs.
    CAECCoreDataManager& rStore     = *m_pDataManager;
    BOOL                 resetSkips = FALSE;
    switch (type)
    {
        case AECAlgoSetParamOperationMode:
            rStore.setOperationMode(rData.opMode);
            break;
        case AECAlgoSetParamSorentaData:
            // The selectors are compared (and taken over) first, also when live tuning applies any tuning.
            if ((TRUE == rStore.isTuningModeChange(rData.pTuningData)) || (TRUE == m_enableLiveTuning))
            {
                rStore.setSorenta(rData.pTuningData, m_pArbitration);
                resetSkips = TRUE;
            }
            break;
        case AECAlgoSetParamMeteringMode:
            resetSkips = (rData.mtrMode != rStore.getMeteringMode()) ? TRUE : FALSE;
            rStore.setMeteringMode(rData.mtrMode);
            break;
        case AECAlgoSetParamExposureCompensation:
            resetSkips = (rData.EVVal != rStore.getEVInfo()->EVUIVal) ? TRUE : FALSE;
            rStore.setEVVal(rData.EVVal);
            break;
        case AECAlgoSetParamFlickerCompensation:
            resetSkips = (rData.flickerComp != rStore.getFlickerCompMode()) ? TRUE : FALSE;
            rStore.setFlickerCompMode(rData.flickerComp);
            break;
        case AECAlgoSetParamManualSetting:
            resetSkips = rStore.isManualSettingChanged(rData.manualSetting);
            rStore.setManualSetting(rData.manualSetting);
            break;
        case AECAlgoSetParamAECLock:
            resetSkips = (rData.bAECLock != rStore.getLockContext()->lockState) ? TRUE : FALSE;
            rStore.setAECLockSetting(rData.bAECLock);
            break;
        case AECAlgoSetParamFPSRange:
            resetSkips = ((rData.FPSRange.minimumFPS != rStore.getMinFPS()) ||
                          (rData.FPSRange.maximumFPS != rStore.getMaxFPS())) ? TRUE : FALSE;
            rStore.setFPSRange(rData.FPSRange);
            break;
        case AECAlgoSetParamLEDMode:
            rStore.setLEDMode(rData.LEDMode);
            break;
        case AECAlgoSetParamTouchROI:
            resetSkips = (rData.touchROI.ROICount != rStore.getTouchROI()->ROICount) ? TRUE : FALSE;
            rStore.setTouchROI(rData.touchROI);
            break;
        case AECAlgoSetParamFaceROI:
            resetSkips = (rData.faceROI.roiCount != rStore.getFaceROI()->inputROIPriority.Size()) ? TRUE : FALSE;
            rStore.setFaceROI(rData.faceROI);
            break;
        case AECAlgoSetParamAWBState:
            rStore.setAWBState(rData.AWBState);
            break;
        case AECAlgoSetParamGyroInfo:
            rStore.setGyro(rData.gyro);
            AEC_LOG_VERBOSE("AECCore's Gyro: x=%f %f %f, y=%f %f %f, z=%f %f %f", rData.gyro.pAngularVelocityX[0],
                            rData.gyro.pAngularVelocityX[1], rData.gyro.pAngularVelocityX[2],
                            rData.gyro.pAngularVelocityY[0], rData.gyro.pAngularVelocityY[1],
                            rData.gyro.pAngularVelocityY[2], rData.gyro.pAngularVelocityZ[0],
                            rData.gyro.pAngularVelocityZ[1], rData.gyro.pAngularVelocityZ[2]);
            break;
        case AECAlgoSetParamOverrideSetting:
            rStore.setOverrideSetting(rData.OverrideSetting);
            break;
        case AECAlgoSetParamFlashMeasurement:
            rStore.setFlashMeasurement(rData.flashMeasurementState);
            break;
        case AECAlgoSetParamFlashCalibrationData:
            m_pExtension->SetFlashCalibrationData(&rData.flashCalibrationData);
            break;
        case AECAlgoSetParamDebugDataEnable:
            rStore.setDebugDataEnable(rData.debugDataEnable);
            break;
        case AECAlgoSetParamSensorInfo:
            rStore.SetSetSensorInfo(&rData.sensorInfo);
            resetSkips = TRUE;
            break;
        case AECAlgoSetParamCameraInfo:
            // The core takes both at once; the store keeps the role only with its tuned configuration.
            rStore.setCameraInfo(rData.cameraInfo);
            m_cameraID = rData.cameraInfo.cameraId;
            m_algoRole = rData.cameraInfo.algoRole;
            break;
        case AECAlgoSetParamFlashMaximumCurrent:
            rStore.setFlashMaxCurrent(rData.LEDMaxCurrent);
            break;
        case AECAlgoSetParamSetDiagTestConfig:
            rStore.setDiagTestConfig(&rData.diagTestConfig);
            break;
        case AECAlgoSetParamStartUpExpSensitivity:
            applyStartUpSensitivity(rData.startUpExpData);
            break;
        case AECAlgoSetParamCropWindow:
            rStore.setCropWindow(rData.cropWindow);
            break;
        case AECAlgoSetParamPipelineDelay:
            rStore.setPipelineDelay(rData.sysLatency);
            AEC_LOG_INFO("System Latency: %d", rData.sysLatency);
            break;
        case AECAlgoSetParamPeerInfo:
            applyPeerInfo(rData.PeerInfoCombo);
            break;
        case AECAlgoSetParamDualcamCalibrationInfo:
            rStore.setDCCalibrationInfo(rData.calibrationInfo);
            break;
        case AECAlgoSetParamDCGMode:
            rStore.setDCGMode(rData.dcgMode);
            AEC_LOG_INFO("DCGMode updated: dcgMode=%d", rData.dcgMode.dcgMode);
            break;
        case AECAlgoSetParamMultiExpSensorMode:
            rStore.setMultiExposureSensorMode(rData.multiExposureSensorMode);
            break;
        case AECAlgoSetParamIsDualCamera:
            m_isDual = rData.isDual;
            break;
        case AECAlgoSetParamUnstabilizedFaceROI:
            rStore.setFaceROI(rData.faceROI);
            break;
        case AECAlgoSetParamControlPostRawSensitivityBoost:
            rStore.setPostRawGain(rData.postRawGain);
            break;
        case AECAlgoSetParamCustomExposureTable:
            rStore.setCustomExposureTable(rData.customExposureTable);
            break;
        case AECAlgoSetParamCustomMeteringTable:
            rStore.setCustomMeteringTable(rData.customMeteringTable);
            break;
        case AECAlgoSetParamDisableADRC:
            rStore.setADRCInfo(rData.disableADRC);
            break;
        case AECAlgoSetParamConvergenceSpeed:
            rStore.setConvergenceSpeed(rData.convergenceSpeed);
            break;
        case AECAlgoSetParamLDMStateQueue:
            LDMInputProcessing(rData.LDMInputMotorInfo);
            break;
        default:
            // Exposure table range, statistics capability, the IR types, the later extensions and anything
            // beyond the table: tolerated.
            AEC_LOG_WARN("Unhandled AEC set input type %d", type);
            break;
    }

    if (TRUE == resetSkips)
    {
        m_pAecSkipCtrl->ResetFrameSkip();
    }
    return VelaResultSuccess;
}

VOID CAECCore::applyStartUpSensitivity(const AECAlgoStartupSensitivity& startUpData)
{
    AECAlgoStartupIndices startUp = {};
    if (AecSuccess != m_pArbitration->QuerySensitivity2ExpIndex(startUpData.startUpSensitivity,
                                                                m_pDataManager->getOperationMode(),
                                                                startUp.startUpIndices))
    {
        AEC_LOG_ERROR("Start-up sensitivities not taken: arbitration could not convert them");
        return;
    }
    startUp.startMode       = startUpData.startMode;
    startUp.startUpLuxIndex = startUpData.startUpLuxIndex;
    m_pDataManager->setStartUpExpIndex(startUp);
    // The next start query uses it.
    m_pConvergence->m_isStartSettingUsed = FALSE;
}

VOID CAECCore::applyPeerInfo(const StatsPeerInfoCombo& peerInfoCombo)
{
    AEC_LOG_INFO("AEC need sync: %d", peerInfoCombo.needSync);
    for (UINT32 i = 0; i < AECORE_MAX_PEER_PIPELINES; i++)
    {
        AEC_LOG_INFO("PeerPipeline:%d CamID:%d Active:%d Role:%d PeerInfo:%p", i, peerInfoCombo.cameraId[i],
                     peerInfoCombo.isActive[i], peerInfoCombo.algoRole[i], peerInfoCombo.pPeerInfo[i]);
    }
    // A failed selection keeps the peer known so far.
    const AECMultiCamInfo* pPeerInfo = nullptr;
    if (AecSuccess == m_pDataManager->MapMultiCamPeerInfo(&peerInfoCombo, &pPeerInfo))
    {
        m_pDataManager->setPeerInfo(pPeerInfo);
    }
}

VOID CAECCore::LDMInputProcessing(const LDMSetAECInputMotorInfo& motorInfo)
{
    m_LDMlensCap = motorInfo.LensCap;
    if (1 != m_LDMlensCap.PIris)
    {
        return;
    }
    // Only the first configured motor counts: the lens driver repeats its state with every request.
    if (0 == m_LDMmotorSysParam.microStepPerMotorFullStep)
    {
        m_LDMmotorSysParam = motorInfo.MotorSystemConfig;
    }

    LDMIrisTableData&       rTable  = m_LDMpirisTblParam;
    const LDMIrisTableData* pSource = motorInfo.DeviceCharacData.pIrisTable;
    const BOOL isCopied = (0 != rTable.irisTableZoomSize) && (nullptr != rTable.zoomTable) &&
                          (nullptr != rTable.irisFnTable) && (nullptr != rTable.irisStepTable);
    if ((TRUE == isCopied) || (nullptr == pSource))
    {
        return;
    }

    // The host's table is read row by row: an empty or incomplete one would be read from nowhere.
    BOOL isReadable = (0 != pSource->irisTableZoomSize) && (0 != pSource->irisTableIrisSize) &&
                      (nullptr != pSource->zoomTable) && (nullptr != pSource->irisFnTable) &&
                      (nullptr != pSource->irisStepTable);
    for (UINT32 row = 0; (TRUE == isReadable) && (row < pSource->irisTableZoomSize); row++)
    {
        isReadable = (nullptr != pSource->irisFnTable[row]) && (nullptr != pSource->irisStepTable[row]);
    }
    if (FALSE == isReadable)
    {
        AEC_LOG_ERROR("Iris table refused: sizes %u x %u or its rows are missing", pSource->irisTableZoomSize,
                      pSource->irisTableIrisSize);
        return;
    }

    // The lens driver may release its table at any time, so the core keeps its own copy.
    const UINT32 zoomSize    = pSource->irisTableZoomSize;
    const SIZE_T fnRowSize   = sizeof(FLOAT) * pSource->irisTableIrisSize;
    const SIZE_T stepRowSize = sizeof(UINT32) * pSource->irisTableIrisSize;
    LDMIrisTableData copy    = {};
    copy.irisTableZoomSize   = zoomSize;
    copy.irisTableIrisSize   = pSource->irisTableIrisSize;
    copy.zoomTable           = static_cast<INT32*>(std::malloc(sizeof(INT32) * zoomSize));
    copy.irisFnTable         = static_cast<FLOAT**>(std::malloc(sizeof(FLOAT*) * zoomSize));
    copy.irisStepTable       = static_cast<UINT32**>(std::malloc(sizeof(UINT32*) * zoomSize));
    BOOL isComplete = (nullptr != copy.zoomTable) && (nullptr != copy.irisFnTable) && (nullptr != copy.irisStepTable);
    if (nullptr != copy.zoomTable)
    {
        std::memcpy(copy.zoomTable, pSource->zoomTable, sizeof(INT32) * zoomSize);
    }
    for (UINT32 row = 0; row < zoomSize; row++)
    {
        if (nullptr != copy.irisFnTable)
        {
            copy.irisFnTable[row] = static_cast<FLOAT*>(std::malloc(fnRowSize));
            isComplete            = (nullptr != copy.irisFnTable[row]) ? isComplete : FALSE;
            if (nullptr != copy.irisFnTable[row])
            {
                std::memcpy(copy.irisFnTable[row], pSource->irisFnTable[row], fnRowSize);
            }
        }
        if (nullptr != copy.irisStepTable)
        {
            copy.irisStepTable[row] = static_cast<UINT32*>(std::malloc(stepRowSize));
            isComplete              = (nullptr != copy.irisStepTable[row]) ? isComplete : FALSE;
            if (nullptr != copy.irisStepTable[row])
            {
                std::memcpy(copy.irisStepTable[row], pSource->irisStepTable[row], stepRowSize);
            }
        }
    }
    if (FALSE == isComplete)
    {
        // Modules must never see a table with holes; the next lens state tries again.
        AEC_LOG_ERROR("Memory allocation error!");
        releaseIrisTable(copy);
        return;
    }

    rTable = copy;
    m_pArbitration->OnLDMIrisTable(rTable);
    m_pIrisCtrl->OnLDMIrisTable(rTable);
}

VOID CAECCore::releaseIrisTable(LDMIrisTableData& rTable)
{
    for (UINT32 row = 0; row < rTable.irisTableZoomSize; row++)
    {
        if (nullptr != rTable.irisFnTable)
        {
            std::free(rTable.irisFnTable[row]);
        }
        if (nullptr != rTable.irisStepTable)
        {
            std::free(rTable.irisStepTable[row]);
        }
    }
    std::free(rTable.zoomTable);
    std::free(rTable.irisFnTable);
    std::free(rTable.irisStepTable);
    rTable = {};
}
