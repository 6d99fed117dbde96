// GoogleMock double of the state store that modules read, for tests of one module or calculator alone.
#ifndef TESTS_SUPPORT_MOCKAECCONTEXT_H
#define TESTS_SUPPORT_MOCKAECCONTEXT_H

#include <gmock/gmock.h>

#include "aec/core/include/iaeccontext.h"

class MockAECContext : public IAECContext
{
public:
    MOCK_METHOD(AECAlgoOperationModeType, getOperationMode, (), (override));
    MOCK_METHOD(AECAlgoMeteringModeType, getMeteringMode, (), (override));
    MOCK_METHOD(const EVContext*, getEVInfo, (), (override));
    MOCK_METHOD(StatisticsAntibanding, getFlickerCompMode, (), (override));
    MOCK_METHOD(const AECAlgoManualSetting*, getManualSetting, (), (override));
    MOCK_METHOD(BOOL, getIsAECLocked, (), (override));
    MOCK_METHOD(AECLockContext*, getLockContext, (), (override));
    MOCK_METHOD(FLOAT, getMinFPS, (), (override));
    MOCK_METHOD(FLOAT, getMaxFPS, (), (override));
    MOCK_METHOD(AECAlgoLEDModeType, getLEDMode, (), (override));
    MOCK_METHOD(UINT32, getFlashMeasIndex, (), (override));
    MOCK_METHOD(AECAlgoFlashMeasKindType, getFlashMeasKind, (), (override));
    MOCK_METHOD(const AECAlgoWhiteBalanceState*, getAWBState, (), (override));
    MOCK_METHOD(const AECAlgoOverrideSettingParam*, getOverrideSetting, (), (override));
    MOCK_METHOD(BOOL, getLEDCalibrationEnable, (), (override));
    MOCK_METHOD(BOOL, getDebugDataEnable, (), (override));
    MOCK_METHOD(AECDebugData*, getDebugData, (), (override));
    MOCK_METHOD(INT32, getFlashMaxCurrent, (), (override));
    MOCK_METHOD(const IRTuningDataType*, getIRTuning, (), (override));
    MOCK_METHOD(const ConvergenceTuningDataType*, getConvTuning, (), (override));
    MOCK_METHOD(const MeteringTuningDataType*, getMtrTuning, (), (override));
    MOCK_METHOD(const ArbitrationTuningDataType*, getArbTuning, (), (override));
    MOCK_METHOD(const ExtensionTuningDataType*, getExtTuning, (), (override));
    MOCK_METHOD(const ModArbitrationContext*, getExposureLimitation, (), (override));
    MOCK_METHOD(const AECFrameHistory*, getFrameHistory, (UINT8 offset), (override));
    MOCK_METHOD(BOOL, getPrevModeHistory, (AECModeHistory* pModeHistory), (override));
    MOCK_METHOD(const TouchROIProcInfo*, getTouchROI, (), (override));
    MOCK_METHOD(const FaceROIProcInfo*, getFaceROI, (), (override));
    MOCK_METHOD(FLOAT, getCurrentFPS, (), (override));
    MOCK_METHOD(BOOL, getAreFlashLowStatsSaved, (), (override));
    MOCK_METHOD(const AECAlgoSensorInfo*, getSensorInfo, (), (override));
    MOCK_METHOD(const AECAlgoDiagConfig*, getDiagTestConfig, (), (override));
    MOCK_METHOD(const StatsGyroInfo*, getGyroInfo, (), (override));
    MOCK_METHOD(BOOL, getDRCEnable, (), (override));
    MOCK_METHOD(FLOAT, getCompensationRatio, (), (override));
    MOCK_METHOD(BOOL, getHDR3Enable, (), (override));
    MOCK_METHOD(FLOAT, getRealDRCGainHDR3, (), (override));
    MOCK_METHOD(const AECAlgoStartupIndices*, getStartUpExpIndex, (), (override));
    MOCK_METHOD(UINT8, getPipelineDelay, (), (override));
    MOCK_METHOD(AECAlgoMultiCamMeteringType, getMeteringType, (), (override));
    MOCK_METHOD(AECAlgoMultiCamExposureType, getExposureType, (), (override));
    MOCK_METHOD(const StatsCameraInfo*, getCameraInfo, (), (override));
    MOCK_METHOD(const AECMultiCamInfo*, getPeerInfo, (), (override));
    MOCK_METHOD(AECMultiCamInfo*, getMyOwnInfo, (), (override));
    MOCK_METHOD(const StatsBayerGridBayerExposureConfig*, getBGBEConfig, (), (override));
    MOCK_METHOD(const StatsBayerHistogramConfig*, getBayerHistConfig, (), (override));
    MOCK_METHOD(FLOAT, getDynamicConvergenceSpeed, (), (override));
    MOCK_METHOD(UINT32, getFlashMeasSwitchCounter, (), (override));
    MOCK_METHOD(AECDualcamCalibrationInfo, getDCCalibrationInfo, (), (override));
    MOCK_METHOD(AECAlgoHDRType, getMultiExposureSensorMode, (), (override));
    MOCK_METHOD(const AECDCGConfig*, getDCGMode, (), (override));
    MOCK_METHOD(UINT32, getConvFrameSkipCounter, (), (override));
    MOCK_METHOD(INT32, getPostRawGain, (), (override));
    MOCK_METHOD(UINT32, getPostRawCounter, (), (override));
    MOCK_METHOD(const AECCustomMeteringTable&, getCustomMeteringTable, (), (override));
    MOCK_METHOD(const AECCustomExposureTableInfo*, getCustomExposureTableInfo, (), (override));
    MOCK_METHOD(aecArbitration::ExposureTableType*, getExposureTableFromTableID, (aecglobalelements::ExposureTableIDType tableID), (override));
    MOCK_METHOD(AECIRLedState, getIRState, (), (override));
    MOCK_METHOD(FLOAT, getManualIRIntensity, (), (override));
    MOCK_METHOD(UINT32, getIRCutSystemLatency, (), (override));
    MOCK_METHOD(UINT32, getIRLedSystemLatency, (), (override));
    MOCK_METHOD(FLOAT, getPWMFrequency, (), (override));
    MOCK_METHOD(AECWeightingTable*, getWeightTable, (), (override));
};

#endif // TESTS_SUPPORT_MOCKAECCONTEXT_H
