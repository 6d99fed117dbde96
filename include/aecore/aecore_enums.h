/* Enumerations of the host interface: modes, states, list entry types and parameter types. */
#ifndef AECORE_AECORE_ENUMS_H
#define AECORE_AECORE_ENUMS_H

#include "aecore/aecore_types.h"

AECORE_EXTERN_C_BEGIN

/* Every enumeration is int-sized, so values such as -1 and 0x7FFFFFFF keep the 4-byte host layout. */

/* ---- Create and destroy lists ---- */

typedef enum AECAlgoCreateParamsType
{
    AECAlgoCreateParamsInvalid                = -1,
    AECAlgoCreateParamsLoggerFunctionPtr      = 0,
    AECAlgoCreateParamTypeSessionHandle       = 1,
    AECAlgoCreateParamTypeCameraOpenIndicator = 2,
    AECAlgoCreateParamTypeCameraInfo          = 3,
    AECCreateParamsTypeTuningData             = 4,
    AECAlgoCreateParamTypeCount               = 5,
    AECAlgoCreateParamsMax                    = 0x7FFFFFFF
} AECAlgoCreateParamsType;

typedef enum AECAlgoDestroyParamType
{
    AECDestroyParamTypeInvalid              = -1,
    AECDestroyParamTypeCameraCloseIndicator = 0,
    AECDestroyParamTypeCameraInfo           = 1,
    AECDestroyParamTypeCount                = 2,
    AECDestroyParamTypeMax                  = 0x7FFFFFFF
} AECAlgoDestroyParamType;

/* ---- Modes and states shared across the interface ---- */

typedef enum AECAlgoOperationModeType
{
    AECAlgoOperationModeInit             = 0,
    AECAlgoOperationModeStreaming        = 1,
    AECAlgoOperationModePreflash         = 2,
    AECAlgoOperationModeFastAEC          = 3,
    AECAlgoOperationModeAggressiveAEC    = 4,
    AECAlgoOperationModeFlashMeasurement = 5,
    AECAlgoOperationModeCount            = 6,
    AECAlgoOperationModeMax              = 0x7FFFFFFF
} AECAlgoOperationModeType;

typedef enum AECAlgoMeteringModeType
{
    AECAlgoMeteringModeFrameAverage   = 0,
    AECAlgoMeteringModeCenterWeighted = 1,
    AECAlgoMeteringModeSpot           = 2,
    AECAlgoMeteringModeCustom         = 3,
    AECAlgoMeteringModeMax            = 0x7FFFFFFF
} AECAlgoMeteringModeType;

typedef enum AECAlgoModeType
{
    AECAlgoModeAuto                = 0,
    AECAlgoModeManualISO           = 1,
    AECAlgoModeManualGain          = 2,
    AECAlgoModeManualExpTime       = 3,
    AECAlgoModeManualFull          = 4,
    AECAlgoModeManualAperture      = 5,
    AECAlgoModePirisMaxExpPriority = 6,
    AECAlgoModePASMIris            = 7,
    AECAlgoModePASMISO             = 8,
    AECAlgoModePASMIrisISO         = 9,
    AECAlgoModePASMExpTime         = 10,
    AECAlgoModePASMExpTimeISO      = 11,
    AECAlgoModePASMExpTimeIris     = 12,
    AECAlgoModePASMFullManual      = 13,
    AECAlgoModeMax                 = 0x7FFFFFFF
} AECAlgoModeType;

typedef enum AECAlgoLockType
{
    AECAlgoLockOFF = 0,
    AECAlgoLockOn  = 1,
    AECAlgoLockMax = 0x7FFFFFFF
} AECAlgoLockType;

typedef enum AECAlgoLEDModeType
{
    AECAlgoLEDModeOff  = 0,
    AECAlgoLEDModeAuto = 1,
    AECAlgoLEDModeOn   = 2,
    AECAlgoLEDModeMax  = 0x7FFFFFFF
} AECAlgoLEDModeType;

typedef enum AECAlgoFlashStateType
{
    AECAlgoFlashStateOff          = 0,
    AECAlgoFlashStatePre          = 1,
    AECAlgoFlashStateMain         = 2,
    AECAlgoFlashStateCalibaration = 3,
    AECAlgoFlashStateMax          = 0x7FFFFFFF
} AECAlgoFlashStateType;

typedef enum AECAlgoFlashMeasKindType
{
    AECAlgoFlashMeasKindOff    = 0,
    AECAlgoFlashMeasKindCalib  = 1,
    AECAlgoFlashMeasKindTuning = 2,
    AECAlgoFlashMeasKindMax    = 0x7FFFFFFF
} AECAlgoFlashMeasKindType;

/* Break tells the host that the LED is cooling down between measurement points. */
typedef enum AECAlgoFlashMeasStatusType
{
    AECAlgoFlashMeasStatusOngoing = 0,
    AECAlgoFlashMeasStatusPass    = 1,
    AECAlgoFlashMeasStatusFail    = 2,
    AECAlgoFlashMeasStatusBreak   = 3,
    AECAlgoFlashMeasStatusMax     = 0x7FFFFFFF
} AECAlgoFlashMeasStatusType;

typedef enum AECAlgoSnapshotType
{
    AECAlgoSnapshotNormal = 0,
    AECAlgoSnapshotFlash  = 1,
    AECAlgoSnapshotLLS    = 2,
    AECAlgoSnapshotZLL    = 3,
    AECAlgoSnapshotCount  = 4,
    AECAlgoSnapshotMax    = 0x7FFFFFFF
} AECAlgoSnapshotType;

typedef enum AECAlgoTouchEVType
{
    AECAlgoTouchEVInactive    = 0,
    AECAlgoTouchEVConverging  = 1,
    AECAlgoTouchEVSettled     = 2,
    AECAlgoTouchEVSceneChange = 3,
    AECAlgoTouchEVMax         = 0x7FFFFFFF
} AECAlgoTouchEVType;

typedef enum AECAlgoHDRType
{
    HDRDisabled   = 0,
    ISPHDR        = 1,
    SensorHDR     = 2,
    StaggeredHDR  = 3,
    MultiframeHDR = 4
} AECAlgoHDRType;

typedef enum HDRSensorType
{
    LinearMode       = 0,
    ShdrMode         = 1,
    DCGplusVSMode    = 2,
    DCGplusLoficMode = 3,
    HDRSensorTypeMax = 0x7FFFFFFF
} HDRSensorType;

typedef enum SHDRAECMODE
{
    SHDRAECMODEDEFAULT      = 0,
    SHDRAECMODEV2RAW2FRAME  = 1,
    SHDRAECMODEV38YUV2FRAME = 2,
    SHDRAECMODEV38YUV3FRAME = 3,
    SHDRAECMODEMAX          = 0x7FFFFFFF
} SHDRAECMODE;

/* Index of every three-entry exposure array: short, long, safe (SEF, LEF, MEF in staggered HDR). */
typedef enum AECAlgoExposureType
{
    AECAlgoExposureInvalid = -1,
    AECAlgoExposureDefault = 0,
    AECAlgoExposureShort   = 0,
    AECAlgoExposureLong    = 1,
    AECAlgoExposureSafe    = 2,
    AECAlgoExposureCount   = 3,
    AECAlgoExposureMax     = 0x7FFFFFFF
} AECAlgoExposureType;

typedef enum AECAlgoStartupMode
{
    AECAlgoStartupModeInvalid         = -1,
    AECAlgoStartupModeNormal          = 0,
    AECAlgoStartupModeFastConvergence = 1,
    AECAlgoStartupModeWarmStart       = 2
} AECAlgoStartupMode;

typedef enum AECAlgoSeamlessMode
{
    AECAlgoSeamlessBinning = 0,
    AECAlgoSeamless3HDR    = 1
} AECAlgoSeamlessMode;

typedef enum AECIRLedState
{
    AECIRLedOFF       = 0,
    AECIRLedON        = 1,
    AECIRLedAUTO      = 2,
    AECIRLedIRCutOnly = 3,
    AECIRLedMAX       = 0x7FFFFFFF
} AECIRLedState;

typedef enum StatisticsAntibanding
{
    StatisticsAntibandingInvalid   = -1,
    StatisticsAntibandingOff       = 0,
    StatisticsAntibanding50Hz      = 1,
    StatisticsAntibanding60Hz      = 2,
    StatisticsAntibandingAuto      = 3,
    StatisticsAntibandingAuto_50HZ = 4,
    StatisticsAntibandingAuto_60HZ = 5,
    StatisticsAntibandingMax       = 0x7FFFFFFF
} StatisticsAntibanding;

typedef enum StatsAlgoRole
{
    StatsAlgoRoleDefault = 0,
    StatsAlgoRoleMaster  = 1,
    StatsAlgoRoleSlave   = 2,
    StatsAlgoRoleMax     = 0x7FFFFFFF
} StatsAlgoRole;

typedef enum StatisticsStartUp
{
    StatisticsStartUpValid   = 0,
    StatisticsStartUpInvalid = 1
} StatisticsStartUp;

typedef enum AECAlgoDiagnosticTestCase
{
    AECAlgoTestCaseTimeSweep         = 0,
    AECAlgoTestCaseGainSweep         = 1,
    AECAlgoTestCaseToggleTest        = 2,
    AECAlgoTestCaseExpTimeSweepDelay = 3,
    AECAlgoTestCaseGainSweepDelay    = 4,
    AECAlgoTestCaseToggleTestDelay   = 5,
    AECAlgoTestCaseCount             = 6,
    AECAlgoTestCaseMax               = 7
} AECAlgoDiagnosticTestCase;

/* Status of a host-driven aperture switch, reported back in the frame control record. */
typedef enum ApertureSwitchStateType
{
    ApertureSwitchIdle       = 0,
    ApertureSwitchStart      = 1,
    ApertureSwitchInProgress = 2,
    ApertureSwitchCompleted  = 3,
    ApertureSwitchReserved   = 4
} ApertureSwitchStateType;

/* Dual conversion gain mode of an HDR sensor; the host defines the modes beyond "none". */
typedef enum LYRHDRDCGMODE
{
    LYRHDRDCGModeNone = 0,
    LYRHDRDCGModeDCG  = 1,
    LYRHDRDCGModeMax  = 0x7FFFFFFF
} LYRHDRDCGMODE;

/* ---- Statistics ---- */

typedef enum StatsColorChannelType
{
    StatsColorChannelInvalid = -1,
    StatsColorChannelR       = 0,
    StatsColorChannelGR      = 1,
    StatsColorChannelGB      = 2,
    StatsColorChannelB       = 3,
    StatsColorChannelG       = 4,
    StatsColorChannelY       = 5
} StatsColorChannelType;

/* Channel of the histogram statistics configuration; counts from 1. */
typedef enum ColorChannel
{
    ColorChannelR  = 1,
    ColorChannelGR = 2,
    ColorChannelGB = 3,
    ColorChannelB  = 4,
    ColorChannelG  = 5,
    ColorChannelY  = 6
} ColorChannel;

typedef enum StatsROISelection
{
    StatsROISelectionCustom     = 0,
    StatsROISelectionCroppedFOV = 1,
    StatsROISelectionFullFOV    = 2
} StatsROISelection;

typedef enum MeasurementRegionType
{
    GlobalRegion    = 0,
    ROIWindowRegion = 1
} MeasurementRegionType;

typedef enum HDR3ExposureMergedType
{
    HDR3ExpSplitLong   = 0,
    HDR3ExpSplitMiddle = 1,
    HDR3ExpSplitShort  = 2,
    HDR3ExpMerged      = 3
} HDR3ExposureMergedType;

/* Kind of in-sensor three-exposure statistics; zero (unknown) means only the merged histogram applies. */
typedef enum HDR3ExposureType
{
    HDR3ExposureTypeUnknown = 0,
    HDR3ExposureType1       = 1,
    HDR3ExposureType2       = 2,
    HDR3ExposureTypeMax     = 0x7FFFFFFF
} HDR3ExposureType;

typedef enum StatsVendorTagPublishType
{
    NonPartialMetadata = 0,
    PartialMetadata    = 1
} StatsVendorTagPublishType;

/* ---- Entry types of the process input and output lists ---- */

typedef enum AECAlgoInputType
{
    AECAlgoInputInvalid              = -1,
    AECAlgoInputStatisticInfo        = 0,
    AECAlgoInputBayerGrid            = 1,
    AECAlgoInputBayerHist            = 2,
    AECAlgoInputIHist                = 3,
    AECAlgoInputVendorTag            = 4,
    AECAlgoInputDebugData            = 5,
    AECAlgoInputStatsLyrHandle       = 6,
    AECAlgoInputHDRBHist             = 7,
    AECAlgoInputCameraInfo           = 8,
    AECAlgoInputBayerGridROI         = 9,
    AECAlgoInputRDIStats             = 10,
    AECAlgoInputTintlessBGStats      = 11,
    AECAlgoInputLensShadingInfo      = 12,
    AECAlgoInputHDRStatsCount        = 13,
    AECAlgoInputStatsRequestID       = 14,
    AECAlgoInputBayerHistNonUniform  = 15,
    AECAlgoInputBayerGridLEF         = 16,
    AECAlgoInputBayerHistLEF         = 17,
    AECAlgoInputHDRBHistLEF          = 18,
    AECAlgoInputSHDRInterPolatedData = 19,
    AECAlgoInputBayerGridMEF         = 20,
    AECAlgoInputHDRBHistMEF          = 21,
    AECAlgoInputPIrisMotorSatus      = 22,
    AECAlgoInputZoomMotorSatus       = 23,
    AECAlgoInputIRCutALS             = 24,
    AECAlgoInputCount                = 25,
    AECAlgoInputMax                  = 0x7FFFFFFF
} AECAlgoInputType;

typedef enum AECAlgoOutputType
{
    AECAlgoOutputInvalid          = -1,
    AECAlgoOutputFrameInfo        = 0,
    AECAlgoOutputFrameControl     = 1,
    AECAlgoOutputEXIFApex         = 2,
    AECAlgoOutputLEDCurrents      = 3,
    AECAlgoOutputExposureSets     = 4,
    AECAlgoOutputRealExposureSets = 5,
    AECAlgoOutputBGConfig         = 6,
    AECAlgoOutputAdditionalInfo   = 7,
    AECAlgoOutputVendorTag        = 8,
    AECAlgoOutputStretchControl   = 9,
    AECAlgoOutputBHistConfig      = 10,
    AECAlgoOutputLDMCmdQueue      = 11,
    AECAlgoOutputSkipStatsParse   = 12,
    AECAlgoOutputCount            = 13,
    AECAlgoOutputMax              = 0x7FFFFFFF
} AECAlgoOutputType;

/* ---- Set parameters, in the order of the core's dispatch and name tables ---- */

typedef enum AECAlgoSetParamType
{
    AECAlgoSetParamExpTableRange                  = 0,
    AECAlgoSetParamOperationMode                  = 1,
    AECAlgoSetParamSorentaData                    = 2,
    AECAlgoSetParamMeteringMode                   = 3,
    AECAlgoSetParamExposureCompensation           = 4,
    AECAlgoSetParamFlickerCompensation            = 5,
    AECAlgoSetParamManualSetting                  = 6,
    AECAlgoSetParamAECLock                        = 7,
    AECAlgoSetParamFPSRange                       = 8,
    AECAlgoSetParamLEDMode                        = 9,
    AECAlgoSetParamTouchROI                       = 10,
    AECAlgoSetParamFaceROI                        = 11,
    AECAlgoSetParamAWBState                       = 12,
    AECAlgoSetParamGyroInfo                       = 13,
    AECAlgoSetParamOverrideSetting                = 14,
    AECAlgoSetParamFlashMeasurement               = 15,
    AECAlgoSetParamFlashCalibrationData           = 16,
    AECAlgoSetParamDebugDataEnable                = 17,
    AECAlgoSetParamSensorInfo                     = 18,
    AECAlgoSetParamCameraInfo                     = 19,
    AECAlgoSetParamFlashMaximumCurrent            = 20,
    AECAlgoSetParamSetDiagTestConfig              = 21,
    AECAlgoSetParamStartUpExpSensitivity          = 22,
    AECAlgoSetParamStatsCapability                = 23,
    AECAlgoSetParamCropWindow                     = 24,
    AECAlgoSetParamPipelineDelay                  = 25,
    AECAlgoSetParamPeerInfo                       = 26,
    AECAlgoSetParamDualcamCalibrationInfo         = 27,
    AECAlgoSetParamDCGMode                        = 28,
    AECAlgoSetParamMultiExpSensorMode             = 29,
    AECAlgoSetParamIsDualCamera                   = 30,
    AECAlgoSetParamUnstabilizedFaceROI            = 31,
    AECAlgoSetParamControlPostRawSensitivityBoost = 32,
    AECAlgoSetParamCustomExposureTable            = 33,
    AECAlgoSetParamCustomMeteringTable            = 34,
    AECAlgoSetParamDisableADRC                    = 35,
    AECAlgoSetParamIRLedState                     = 36,
    AECAlgoSetParamIRLedSystemConfig              = 37,
    AECAlgoSetParamConvergenceSpeed               = 38,
    AECAlgoSetParamFlashInlineCalibrationData     = 39,
    AECAlgoSetParamIsFlashInfluencedStats         = 40,
    AECAlgoSetParamFlashInlineCalibrationMode     = 41,
    AECAlgoSetParamTrackerROI                     = 42,
    AECAlgoSetParamframeID                        = 43,
    AECAlgoSetParamApertureCalibrationInfo        = 44,
    AECAlgoSetParamAmbientRaw                     = 45,
    AECAlgoSetParamSaliencyMapData                = 46,
    AECAlgoSetParamZLLData                        = 47,
    AECAlgoSetParamMagnetometerInfo               = 48,
    AECAlgoSetParamLightInfo                      = 49,
    AECAlgoSetParamAFDFrameInfo                   = 50,
    AECAlgoSetParamBYRCamera                      = 51,
    AECAlgoSetParamLDMStateQueue                  = 52,
    AECAlgoSetParamDecompandSystemConfig          = 53,
    AECAlgoSetParamCount                          = 54,
    AECAlgoSetParamMax                            = 0x7FFFFFFF
} AECAlgoSetParamType;

/* ---- Get parameters ---- */

typedef enum AECAlgoGetParamType
{
    AECAlgoGetParamInvalid                  = 0,
    AECAlgoGetParamStartExposure            = 1,
    AECAlgoGetParamSnapshotExposure         = 2,
    AECAlgoGetParamGainFromISOPreview       = 3,
    AECAlgoGetParamGainFromISOSnapshot      = 4,
    AECAlgoGetParamEVCapabilities           = 5,
    AECAlgoGetParamDebugData                = 6,
    AECAlgoGetParamSWVersion                = 7,
    AECAlgoGetParamFlashMeasurementConfig   = 8,
    AECAlgoGetParamFlashMeasurementResult   = 9,
    AECAlgoGetParamPublishingVendorTagsInfo = 10,
    AECAlgoGetParamDependentVendorTags      = 11,
    AECAlgoGetParamBGStatsConfig            = 12,
    AECAlgoGetParamPeerInfo                 = 13,
    AECAlgoGetParamBHistStatsConfig         = 14,
    AECAlgoGetParamDynamicCalibrationData   = 15,
    AECAlgoGetParamSnapshotType             = 16,
    AECAlgoGetParamCount                    = 17,
    AECAlgoGetParamMax                      = 0x7FFFFFFF
} AECAlgoGetParamType;

/* IsFixedFocus follows Count: it was added after the list was closed. */
typedef enum AECAlgoGetParamInputType
{
    AECAlgoGetParamInputInvalid          = -1,
    AECAlgoGetParamInputCameraInfo       = 0,
    AECAlgoGetParamInputSnapshotType     = 1,
    AECAlgoGetParamInputISOValue         = 2,
    AECAlgoGetParamInputDebugDataPointer = 3,
    AECAlgoGetParamInputCount            = 4,
    AECAlgoGetParamInputIsFixedFocus     = 5,
    AECAlgoGetParamInputMax              = 0x7FFFFFFF
} AECAlgoGetParamInputType;

typedef enum AECAlgoGetParamOutputType
{
    AECAlgoGetParamOutputInvalid                = -1,
    AECAlgoGetParamOutputFrameControl           = 0,
    AECAlgoGetParamOutputExposureSets           = 1,
    AECAlgoGetParamOutputLEDCurrents            = 2,
    AECAlgoGetParamOutputEXIFApex               = 3,
    AECAlgoGetParamOutputGain                   = 4,
    AECAlgoGetParamOutputFlashMeasurementConfig = 5,
    AECAlgoGetParamOutputFlashMeasurementResult = 6,
    AECAlgoGetParamOutputDebugData              = 7,
    AECAlgoGetParamOutputSWVersion              = 8,
    AECAlgoGetParamOutputVendorTagInfoList      = 9,
    AECAlgoGetParamOutputBGStatsConfig          = 10,
    AECAlgoGetParamOutputEVCapabilities         = 11,
    AECGetParamOutputTypeDependentVendorTags    = 12,
    AECAlgoGetParamOutputPeerInfo               = 13,
    AECAlgoGetParamOutputBHistStatsConfig       = 14,
    AECAlgoGetParamOutputDynamicCalibrationData = 15,
    AECAlgoGetParamOutputAdditionalInfo         = 16,
    AECAlgoGetParamOutputSnapshotType           = 17,
    AECAlgoGetParamOutputCount                  = 18,
    AECAlgoGetParamOutputMax                    = 0x7FFFFFFF
} AECAlgoGetParamOutputType;

AECORE_EXTERN_C_END

#endif /* AECORE_AECORE_ENUMS_H */
