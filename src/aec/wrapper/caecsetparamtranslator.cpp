// Translation of one host set parameter into the core's AECCoreSetParam.
#include "aec/wrapper/caecsetparamtranslator.h"

#include <cstdint>

#include "platform/velalog.h"

namespace
{

// Where a set parameter's payload goes in the core record and how many bytes it must have.
struct SetParamTarget
{
    VOID*  pData;
    SIZE_T size;
};

template <typename T>
SetParamTarget Target(T& member)
{
    return SetParamTarget{&member, sizeof(T)};
}

// Seconds to whole nanoseconds, truncated; saturates instead of overflowing for absurd sensor values.
UINT64 ToNanoseconds(DOUBLE seconds)
{
    const DOUBLE nanoseconds = seconds * 1e9;
    return (nanoseconds >= 18446744073709551615.0) ? UINT64_MAX : static_cast<UINT64>(nanoseconds);
}

} // namespace

CAECSetParamTranslator::CAECSetParamTranslator()
    : m_setParam()
{
    updatePrivateData(&m_setParam, sizeof(m_setParam));
}

AECCoreSetParam* CAECSetParamTranslator::translate(const AECAlgoSetParam* pParam)
{
    reset();
    if (nullptr == pParam)
    {
        AEC_VLOG_ERROR("Set parameter is NULL");
        return nullptr;
    }
    m_setParam.paramType = pParam->setParamType;

    AECCoreSetParamData& data   = m_setParam.data;
    SetParamTarget       target = {nullptr, 0};
    switch (pParam->setParamType)
    {
        case AECAlgoSetParamPipelineDelay:                  target = Target(data.sysLatency);            break;
        case AECAlgoSetParamOperationMode:                  target = Target(data.opMode);                break;
        case AECAlgoSetParamMeteringMode:                   target = Target(data.mtrMode);               break;
        case AECAlgoSetParamExposureCompensation:           target = Target(data.EVVal);                 break;
        case AECAlgoSetParamFlickerCompensation:            target = Target(data.flickerComp);           break;
        case AECAlgoSetParamAECLock:                        target = Target(data.bAECLock);              break;
        case AECAlgoSetParamLEDMode:                        target = Target(data.LEDMode);               break;
        case AECAlgoSetParamFlashMeasurement:               target = Target(data.flashMeasurementState); break;
        case AECAlgoSetParamDebugDataEnable:                target = Target(data.debugDataEnable);       break;
        case AECAlgoSetParamFlashMaximumCurrent:            target = Target(data.LEDMaxCurrent);         break;
        case AECAlgoSetParamMultiExpSensorMode:             target = Target(data.multiExposureSensorMode); break;
        case AECAlgoSetParamIsDualCamera:                   target = Target(data.isDual);                break;
        case AECAlgoSetParamControlPostRawSensitivityBoost: target = Target(data.postRawGain);           break;
        case AECAlgoSetParamDisableADRC:                    target = Target(data.disableADRC);           break;
        case AECAlgoSetParamConvergenceSpeed:               target = Target(data.convergenceSpeed);      break;
        case AECAlgoSetParamFPSRange:                       target = Target(data.FPSRange);              break;
        case AECAlgoSetParamCameraInfo:                     target = Target(data.cameraInfo);            break;
        case AECAlgoSetParamTouchROI:                       target = Target(data.touchROI);              break;
        case AECAlgoSetParamCropWindow:                     target = Target(data.cropWindow);            break;
        case AECAlgoSetParamStartUpExpSensitivity:          target = Target(data.startUpExpData);        break;
        case AECAlgoSetParamFlashCalibrationData:           target = Target(data.flashCalibrationData);  break;
        case AECAlgoSetParamAWBState:                       target = Target(data.AWBState);              break;
        case AECAlgoSetParamSetDiagTestConfig:              target = Target(data.diagTestConfig);        break;
        case AECAlgoSetParamDualcamCalibrationInfo:         target = Target(data.calibrationInfo);       break;
        case AECAlgoSetParamManualSetting:                  target = Target(data.manualSetting);         break;
        case AECAlgoSetParamLDMStateQueue:                  target = Target(data.LDMInputMotorInfo);     break;
        case AECAlgoSetParamOverrideSetting:                target = Target(data.OverrideSetting);       break;
        case AECAlgoSetParamPeerInfo:                       target = Target(data.PeerInfoCombo);         break;
        case AECAlgoSetParamUnstabilizedFaceROI:            target = Target(data.faceROI);               break;
        case AECAlgoSetParamGyroInfo:                       target = Target(data.gyro);                  break;
        case AECAlgoSetParamCustomExposureTable:            target = Target(data.customExposureTable);   break;
        case AECAlgoSetParamCustomMeteringTable:            target = Target(data.customMeteringTable);   break;
        case AECAlgoSetParamSorentaData:
            // The tuning stays in the host's store: only the pointer crosses.
            data.pTuningData = static_cast<StatsTuningData*>(pParam->pAECSetParam);
            return &m_setParam;
        case AECAlgoSetParamSensorInfo:
            if (nullptr == pParam->pAECSetParam)
            {
                AEC_VLOG_ERROR("Sensor info set parameter has no data");
                return nullptr;
            }
            if (0 == static_cast<const StatsSensorInfo*>(pParam->pAECSetParam)->pixelClock)
            {
                // No line time can be derived, and the exposure limits would be meaningless.
                AEC_VLOG_ERROR("Sensor info with pixel clock 0 refused");
                return nullptr;
            }
            convertSensorInfo(static_cast<const StatsSensorInfo*>(pParam->pAECSetParam));
            return &m_setParam;
        default:
            // Face ROIs, capabilities, DCG, IR and the later types carry nothing the core reads: it sees the type alone.
            return &m_setParam;
    }

    const SIZE_T srcSize = pParam->sizeOfAECSetParam;
    if ((0 == copyData(target.pData, target.size, pParam->pAECSetParam, srcSize)) && (srcSize == target.size))
    {
        // Only a missing payload of the right size copies nothing; a short one leaves zeros on purpose.
        AEC_VLOG_ERROR("Set parameter %d has no data", pParam->setParamType);
        return nullptr;
    }
    return &m_setParam;
}

VOID CAECSetParamTranslator::convertSensorInfo(const StatsSensorInfo* pSensorInfo)
{
    AECAlgoSensorInfo& info     = m_setParam.data.sensorInfo;
    const DOUBLE       lineTime = static_cast<DOUBLE>(pSensorInfo->pixelClockPerLine) /
                                  static_cast<DOUBLE>(pSensorInfo->pixelClock);

    const UINT64 maxExpTime = ToNanoseconds(pSensorInfo->currentMaxLineCount * lineTime);
    // A sensor that reports no minimum line count still exposes for at least one line.
    const UINT64 minExpTime = (0 != pSensorInfo->currentMinLineCount)
                                  ? ToNanoseconds(pSensorInfo->currentMinLineCount * lineTime)
                                  : ToNanoseconds(lineTime);

    info.maximumStreamExpTime   = maxExpTime;
    info.maximumStillExpTime    = maxExpTime;
    info.minimumStreamExpTime   = minExpTime;
    info.minimumStillExpTime    = minExpTime;
    info.fNumber                = pSensorInfo->fNumber;
    info.sensorResWidth         = pSensorInfo->sensorResWidth;
    info.sensorResHeight        = pSensorInfo->sensorResHeight;
    info.statsWindowAspectRatio = static_cast<FLOAT>(pSensorInfo->sensorResWidth) /
                                  static_cast<FLOAT>(pSensorInfo->sensorResHeight);
    info.minimumStreamGain      = pSensorInfo->minGain;
    info.minimumStillGain       = pSensorInfo->minGain;
    info.maximumStreamGain      = pSensorInfo->maxGain;
    info.maximumStillGain       = pSensorInfo->maxGain;

    const StatsAECCapInfo& caps = pSensorInfo->sensorAECCapstime;
    info.minSEFExpTime          = static_cast<UINT64>(caps.minSEFExposureTime);
    info.maxSEFExpTime          = static_cast<UINT64>(caps.maxSEFExposureTime);
    info.minMEFExpTime          = static_cast<UINT64>(caps.minMEFExposureTime);
    info.maxMEFExpTime          = static_cast<UINT64>(caps.maxMEFExposureTime);
    info.minLEFExpTime          = static_cast<UINT64>(caps.minLEFExposureTime);
    info.maxLEFExpTime          = static_cast<UINT64>(caps.maxLEFExposureTime);
    // rollingShutterSkew and flashDelay stay zero from the reset.
}
