// The core's own interface, and the set-parameter and query records that cross it.
#ifndef AEC_CORE_INCLUDE_IAECCORE_H
#define AEC_CORE_INCLUDE_IAECCORE_H

#include "aecore/aecore.h"
#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aeccoredata.h"

// Payload of one set parameter; which member is valid follows from paramType. Plain records only,
// so that the translator can zero the whole union and copy the host's bytes into it.
union AECCoreSetParamData
{
    AECAlgoOperationModeType    opMode;
    StatsTuningData*            pTuningData;
    AECAlgoMeteringModeType     mtrMode;
    INT32                       EVVal;
    StatisticsAntibanding       flickerComp;
    AECAlgoManualSetting        manualSetting;
    AECAlgoFPSRange             FPSRange;
    AECAlgoLEDModeType          LEDMode;
    AECAlgoWhiteBalanceState    AWBState;
    AECAlgoROIList              touchROI;
    UnstabilizedROIInformation  faceROI;
    AECAlgoOverrideSettingParam OverrideSetting;
    AECAlgoFlashMeasKindType    flashMeasurementState;
    AECAlgoFlashCalibrationData flashCalibrationData;
    BOOL                        debugDataEnable;
    AECAlgoSensorInfo           sensorInfo;
    INT32                       LEDMaxCurrent;
    AECAlgoDiagConfig           diagTestConfig;
    AECAlgoLockType             bAECLock;
    AECAlgoStartupSensitivity   startUpExpData;
    StatsGyroInfo               gyro;
    UINT8                       sysLatency;
    AECMultiCamInfo*            pPeerInfo;
    StatsPeerInfoCombo          PeerInfoCombo;
    StatsCameraInfo             cameraInfo;
    AECAlgoDCCalibrationInfo    calibrationInfo;
    AECAlgoHDRType              multiExposureSensorMode;
    AECDCGConfig                dcgMode;
    StatsRectangle              cropWindow;
    BOOL                        isDual;
    INT32                       postRawGain;
    AECCustomExposureTable      customExposureTable;
    AECCustomMeteringTable      customMeteringTable;
    BOOL                        disableADRC;
    FLOAT                       convergenceSpeed;
    AECIRLedState               IRLedState;
    AECIRLedSystemConfig        IRLedSystemConfig;
    FLOAT                       compensationRatio;
    AECWeightingTable           weightTable;
    LDMSetAECInputMotorInfo     LDMInputMotorInfo;
};

// One set parameter as the core receives it.
struct AECCoreSetParam
{
    AECAlgoSetParamType paramType;
    AECCoreSetParamData data;
};

// Input of a query; which member is valid follows from the query type.
union AECMetadataQueryInput
{
    UINT32                 ISOValue;
    AECAlgoSnapshotConfig  snapshotConfig;
    AECAlgoDebugDataConfig debugData;
};

// Answer of a query; which member is valid follows from the query type.
union AECMetadataQueryOutput
{
    FLOAT                             gain;
    AECFrameControl                   frameSetting;
    AECDebugData*                     pDebugData;
    AECAlgoFlashMeasurementConfig     flashMeasConfig;
    AECAlgoFlashMeasurementResult     flashMeasResult;
    AECAlgoEVCapabilities             EVCapabilities;
    AECMultiCamInfo*                  pPeerInfo;
    StatsBayerGridBayerExposureConfig statsBGBEConfig;
    StatsBayerHistogramConfig         statsBHISTConfig;
};

// One get parameter as the core receives and answers it.
struct AECMetadataQuery
{
    AECAlgoGetParamType    type;
    AECMetadataQueryInput  input;
    AECMetadataQueryOutput output;
};

// The per-camera exposure engine as the algorithm interface sees it.
class IAECCore
{
public:
    virtual ~IAECCore() = default;

    virtual KDKResult setInput(const AECCoreSetParam* pParam) = 0;
    virtual KDKResult process(const AECCoreInput* pInput, AECCoreOutput* pOutput) = 0;
    virtual KDKResult queryMetaData(AECMetadataQuery* pQuery) = 0;
};

#endif // AEC_CORE_INCLUDE_IAECCORE_H
