/* Payload records of the set parameters, one per AECAlgoSetParamType that carries a record. */
#ifndef AECORE_AECORE_SETPARAM_H
#define AECORE_AECORE_SETPARAM_H

#include "aecore/aecore_enums.h"
#include "aecore/aecore_frame.h"
#include "aecore/aecore_ldm.h"
#include "aecore/aecore_stats.h"
#include "aecore/aecore_types.h"

AECORE_EXTERN_C_BEGIN

/*
 * Payload of each set parameter type; sizeOfAECSetParam must be the payload's size unless told otherwise:
 *   PipelineDelay                     UINT8
 *   OperationMode                     AECAlgoOperationModeType
 *   MeteringMode                      AECAlgoMeteringModeType
 *   ExposureCompensation              INT32, in steps of the EV capabilities
 *   FlickerCompensation               StatisticsAntibanding
 *   AECLock                           AECAlgoLockType
 *   LEDMode                           AECAlgoLEDModeType
 *   FlashMeasurement                  AECAlgoFlashMeasKindType
 *   DebugDataEnable, IsDualCamera,
 *   DisableADRC                       BOOL
 *   FlashMaximumCurrent,
 *   ControlPostRawSensitivityBoost    INT32
 *   MultiExpSensorMode                AECAlgoHDRType
 *   ConvergenceSpeed                  FLOAT
 *   FPSRange                          AECAlgoFPSRange
 *   CameraInfo                        StatsCameraInfo
 *   TouchROI                          AECAlgoROIList
 *   CropWindow                        StatsRectangle
 *   StartUpExpSensitivity             AECAlgoStartupSensitivity
 *   FlashCalibrationData              AECAlgoFlashCalibrationData
 *   AWBState                          AECAlgoWhiteBalanceState
 *   SetDiagTestConfig                 AECAlgoDiagConfig
 *   DualcamCalibrationInfo            AECAlgoDCCalibrationInfo
 *   ManualSetting                     AECAlgoManualSetting
 *   LDMStateQueue                     LDMSetAECInputMotorInfo
 *   OverrideSetting                   AECAlgoOverrideSettingParam
 *   PeerInfo                          StatsPeerInfoCombo
 *   UnstabilizedFaceROI               UnstabilizedROIInformation
 *   GyroInfo                          StatsGyroInfo
 *   CustomExposureTable               AECCustomExposureTable
 *   CustomMeteringTable               AECCustomMeteringTable
 *   SensorInfo                        StatsSensorInfo, any size
 *   SorentaData                       StatsTuningData, kept by pointer, any size
 * DCGMode (AECDCGConfig), FaceROI, IRLedState (AECIRLedState) and the other types are not taken over:
 * the core sees the type with zeroed data.
 */

/* The parameter store's set manager and the mode selectors to fetch tuning with. */
typedef struct StatsTuningData
{
    VOID* pTuningSetManager;
    VOID* pTuningModeSelectors;
    UINT  numSelectors;
} StatsTuningData;

/* Manual exposure request; times in nanoseconds. */
typedef struct AECAlgoManualSetting
{
    AECAlgoModeType manualMode;
    UINT32          ISOValue;
    UINT64          exposureTime;
    FLOAT           gain;
    FLOAT           fnumber;
    UINT64          prioMaxExpTime;
} AECAlgoManualSetting;

typedef struct AECAlgoFPSRange
{
    FLOAT maximumFPS;
    FLOAT minimumFPS;
} AECAlgoFPSRange;

/* Host-defined layout of the field types: whether a face blocks the scene and its orientation in degrees. */
typedef struct AWBFaceSAAdjustedROI
{
    BOOL  isFaceBlocked;
    INT32 faceOrientation;
} AWBFaceSAAdjustedROI;

typedef struct AECAlgoWhiteBalanceState
{
    BOOL                 isAuto;
    FLOAT                redGain;
    FLOAT                greenGain;
    FLOAT                blueGain;
    UINT32               CCT;
    AWBFaceSAAdjustedROI faceSAAdjustedROI;
} AECAlgoWhiteBalanceState;

typedef struct AECAlgoROIList
{
    AECAlgoROI* ROIs;
    UINT32      ROICount;
} AECAlgoROIList;

#define AECORE_MAX_FACE_ROIS 16

/* One detected face in sensor pixel coordinates. Host-defined layout of roiID and weight: UINT32. */
typedef struct StatsROIData
{
    UINT32         roiID;
    StatsRectangle rect;
    UINT32         weight;
} StatsROIData;

typedef struct UnstabilizedROIInformation
{
    UINT64       requestID;
    UINT32       roiCount;
    StatsROIData roi[AECORE_MAX_FACE_ROIS];
} UnstabilizedROIInformation;

typedef struct AECAlgoOverrideSettingParam
{
    BOOL        disableSpeckleDetection;
    BOOL        disablePreviewManualISO;
    BOOL        disablePreviewManualExpTime;
    BOOL        disablePreviewManualFull;
    BOOL        enableForceSeamlessIHDRSnapshot;
    UINT32      profile3A;
    UINT        numSHDRFrames;
    BOOL        enableWarmStart;
    BOOL        autoSwitchHDR;
    SHDRAECMODE shdrmode;
    BOOL        isDecompandEnabled;
    UINT32      isRGBIREnaled;
} AECAlgoOverrideSettingParam;

/* LED colour ratios measured at calibration, count entries each. */
typedef struct AECAlgoFlashCalibrationData
{
    UINT32 count;
    FLOAT* pRGRatios;
    FLOAT* pBGRatios;
} AECAlgoFlashCalibrationData;

/* Exposure limits of the sensor mode, as the core keeps them; times in nanoseconds. */
typedef struct AECAlgoSensorInfo
{
    FLOAT  fNumber;
    FLOAT  statsWindowAspectRatio;
    FLOAT  minimumStreamGain;
    FLOAT  maximumStreamGain;
    FLOAT  minimumStillGain;
    FLOAT  maximumStillGain;
    UINT64 minimumStreamExpTime;
    UINT64 maximumStreamExpTime;
    UINT64 minimumStillExpTime;
    UINT64 maximumStillExpTime;
    UINT32 sensorResWidth;
    UINT32 sensorResHeight;
    UINT64 rollingShutterSkew;
    UINT64 flashDelay;
    UINT64 minSEFExpTime;
    UINT64 maxSEFExpTime;
    UINT64 minMEFExpTime;
    UINT64 maxMEFExpTime;
    UINT64 minLEFExpTime;
    UINT64 maxLEFExpTime;
} AECAlgoSensorInfo;

/* Diagnostic sweeps to run, one flag per AECAlgoDiagnosticTestCase. */
typedef struct AECAlgoDiagConfig
{
    BOOL enable;
    BOOL testCaseEnable[AECAlgoTestCaseCount];
} AECAlgoDiagConfig;

/* Start exposure as sensitivities per exposure type. */
typedef struct AECAlgoStartupSensitivity
{
    FLOAT              startUpSensitivity[AECAlgoExposureCount];
    AECAlgoStartupMode startMode;
    FLOAT              startUpLuxIndex;
} AECAlgoStartupSensitivity;

/* Start exposure as exposure indices per exposure type. */
typedef struct AECAlgoStartupIndices
{
    FLOAT              startUpIndices[AECAlgoExposureCount];
    AECAlgoStartupMode startMode;
    FLOAT              startUpLuxIndex;
} AECAlgoStartupIndices;

#define AECORE_MAX_GYRO_SAMPLES 32

typedef struct StatsGyroInfo
{
    BOOL   enabled;
    UINT16 sampleCount;
    FLOAT  pAngularVelocityX[AECORE_MAX_GYRO_SAMPLES];
    FLOAT  pAngularVelocityY[AECORE_MAX_GYRO_SAMPLES];
    FLOAT  pAngularVelocityZ[AECORE_MAX_GYRO_SAMPLES];
    FLOAT  gyroSqr;
    UINT64 timeStamp[AECORE_MAX_GYRO_SAMPLES];
    UINT16 samplingTimeMillisec;
} StatsGyroInfo;

#define AECORE_MAX_PEER_PIPELINES 4

/* The pipelines of a multi-camera session; pPeerInfo are the peers' exposure records, opaque to the host. */
typedef struct StatsPeerInfoCombo
{
    BOOL          needSync;
    BOOL          isActive[AECORE_MAX_PEER_PIPELINES];
    UINT32        cameraId[AECORE_MAX_PEER_PIPELINES];
    StatsAlgoRole algoRole[AECORE_MAX_PEER_PIPELINES];
    VOID*         pPeerInfo[AECORE_MAX_PEER_PIPELINES];
} StatsPeerInfoCombo;

typedef struct AECAlgoRelativeDCCalibrationInfo
{
    FLOAT  brightnessRatio;
    FLOAT  slaveGain;
    FLOAT  slaveTimeUnit;
    FLOAT  masterGain;
    FLOAT  masterTimeUnit;
    UINT32 CCT;
} AECAlgoRelativeDCCalibrationInfo;

typedef struct AECAlgoAbsoluteDCCalibrationInfo
{
    UINT16 gain;
    UINT16 averageLuma;
    UINT16 exposureTimeUs;
    UINT32 CCT;
} AECAlgoAbsoluteDCCalibrationInfo;

/* Dual-camera calibration; version tells which member of the union holds the data. */
typedef struct AECAlgoDCCalibrationInfo
{
    UINT32 version;
    union
    {
        AECAlgoRelativeDCCalibrationInfo relative;
        AECAlgoAbsoluteDCCalibrationInfo absolute;
    };
} AECAlgoDCCalibrationInfo;

typedef struct AECDCGConfig
{
    UINT32        numOfExposures;
    LYRHDRDCGMODE dcgMode;
} AECDCGConfig;

#define AECORE_CUSTOM_EXPOSURE_TABLE_KNEES 50

/* An exposure table from the host that replaces the tuned tables while isValid is set. */
typedef struct AECCustomExposureTable
{
    BOOL   isValid;
    FLOAT  sensitivityCorrectionFactor;
    UINT32 kneeCount;
    FLOAT  gain[AECORE_CUSTOM_EXPOSURE_TABLE_KNEES];
    UINT64 expTime[AECORE_CUSTOM_EXPOSURE_TABLE_KNEES];
    INT32  incrementPriority[AECORE_CUSTOM_EXPOSURE_TABLE_KNEES];
    FLOAT  expIndex[AECORE_CUSTOM_EXPOSURE_TABLE_KNEES];
    FLOAT  antiBandingMinimumTimePercentageThreshold;
} AECCustomExposureTable;

#define AECORE_CUSTOM_METERING_TABLE_SIZE 256

/* Region weights of the custom metering mode; taken only with meteringTableSize equal to the table's capacity. */
typedef struct AECCustomMeteringTable
{
    FLOAT  meteringTable[AECORE_CUSTOM_METERING_TABLE_SIZE];
    UINT32 meteringTableSize;
} AECCustomMeteringTable;

#if defined(__LP64__)
/* Required sizeOfAECSetParam of each payload. */
AECORE_STATIC_ASSERT(sizeof(AECAlgoFPSRange) == 8, "AECAlgoFPSRange must be 8 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoROIList) == 16, "AECAlgoROIList must be 16 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoStartupSensitivity) == 20, "AECAlgoStartupSensitivity must be 20 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoStartupIndices) == 20, "AECAlgoStartupIndices is 20 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoFlashCalibrationData) == 24, "AECAlgoFlashCalibrationData must be 24 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoWhiteBalanceState) == 28, "AECAlgoWhiteBalanceState must be 28 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoDiagConfig) == 28, "AECAlgoDiagConfig must be 28 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoDCCalibrationInfo) == 28, "AECAlgoDCCalibrationInfo must be 28 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoManualSetting) == 32, "AECAlgoManualSetting must be 32 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoOverrideSettingParam) == 48, "AECAlgoOverrideSettingParam must be 48 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsPeerInfoCombo) == 88, "StatsPeerInfoCombo must be 88 bytes");
AECORE_STATIC_ASSERT(sizeof(UnstabilizedROIInformation) == 400, "UnstabilizedROIInformation must be 400 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsGyroInfo) == 664, "StatsGyroInfo must be 664 bytes");
AECORE_STATIC_ASSERT(sizeof(AECCustomExposureTable) == 1024, "AECCustomExposureTable must be 1024 bytes");
AECORE_STATIC_ASSERT(sizeof(AECCustomMeteringTable) == 1028, "AECCustomMeteringTable must be 1028 bytes");
AECORE_STATIC_ASSERT(sizeof(AECDCGConfig) == 8, "AECDCGConfig is 8 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsTuningData) == 24, "StatsTuningData is 24 bytes");
#endif

AECORE_EXTERN_C_END

#endif /* AECORE_AECORE_SETPARAM_H */
