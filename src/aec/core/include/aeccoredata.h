// Records of the per-camera state store: EV, lock, frame history, ROIs, limits and multi-camera exchange.
#ifndef AEC_CORE_INCLUDE_AECCOREDATA_H
#define AEC_CORE_INCLUDE_AECCOREDATA_H

#include <list>

#include "aecore/aecore.h"
#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aecdebugdata.h"
#include "platform/roipriority.h"

// Depth of the frame history, and so the largest offset getFrameHistory accepts.
constexpr UINT32 AECFrameHistoryMaxCount = 10;
// Number of touch regions the core keeps.
constexpr UINT32 AECMaxTouchROIs = 10;
// Luma cells of one grid statistics frame.
constexpr UINT32 AECMaxBGStatsRegions = 3072;
// Entries of the exposure index offset tables, one per operation mode.
constexpr UINT32 AECExpIdxOffsetCount = 6;
// Tuning selectors the state store compares to detect a tuning mode change.
constexpr UINT32 AECTuningModeCount = 7;

// Low byte of one tuning mode selector as last seen; 0xFF means no tuning seen yet.
typedef UINT8 AECTuningMode;

enum AECAlgoMultiCamMeteringType
{
    AECAlgoMeteringDisabled,
    AECAlgoMeteringIndependent,
    AECAlgoMeteringMix,
};

enum AECAlgoMultiCamExposureType
{
    AECAlgoExposureIndependent,
    AECAlgoExposureFollow,
    AECAlgoExposureDynamic,
};

enum AECAlgoDualcamOTPDataStatus
{
    AECAlgoDualcamOTPInvalid,
    AECAlgoDualcamOTPSet,
    AECAlgoDualcamOTPSetUsingPeer,
};

// Exposure compensation state.
struct EVContext
{
    AECAlgoEVCapabilities capabilities;
    INT32                 EVUIVal;
    FLOAT                 EV;
    FLOAT                 histTargetRatios[3];
};

// State of the AEC lock; convergence writes it through the context.
struct AECLockContext
{
    AECAlgoLockType       lockState;
    BOOL                  bIsEVReflected;
    EVContext             EVCtxtWhenLockHappened;
    FLOAT                 expIndicesWhenLockHappened[AECAlgoExposureCount];
    FLOAT                 expIndicesToUse[AECAlgoExposureCount];
    StatisticsAntibanding atb;
};

// What one processed frame (or a start configuration) used and measured.
// Every member has an initialiser, so a declared history is always fully defined; the non-zero ones are
// the neutral values a frame starts from (unity sensitivity and gains, a post-raw gain of 100 percent).
struct AECFrameHistory
{
    UINT64 frameID                                       = 0;
    BOOL   isStartConfig                                 = FALSE;
    FLOAT  expIndices[AECAlgoExposureCount]              = {};
    FLOAT  expIndicesAdjustments[AECAlgoExposureCount]   = {};
    FLOAT  expIndicesTargets[AECAlgoExposureCount]       = {};
    FLOAT  sHDRExpIndices[AECAlgoExposureCount]          = {};
    FLOAT  gain[AECAlgoExposureCount]                    = {};
    FLOAT  fnumber[AECAlgoExposureCount]                 = {};
    UINT64 expTime[AECAlgoExposureCount]                 = {};
    FLOAT  sensitivities[AECAlgoExposureCount]           = {};
    FLOAT  FPS                                           = 0.0F;
    FLOAT  luma                                          = 0.0F;
    FLOAT  luxIndex                                      = 0.0F;
    UINT64 LLSRequiredExpTime                            = 0;
    BOOL   bisAECSettled                                 = FALSE;
    FLOAT  previewEV                                     = 0.0F;
    FLOAT  tableSensitivity                              = 1.0F;
    FLOAT  predictiveGain                                = 1.0F;
    FLOAT  predictiveADRC                                = 1.0F;
    INT32  postRawGain                                   = 100;
    BOOL   isSnapshotQuery                               = FALSE;
    UINT32 IRModeActivated                               = 0;
    FLOAT  IRLedIntensity                                = 0.0F;
    FLOAT  BGStats[AECMaxBGStatsRegions]                 = {};
    FLOAT  expRatio                                      = 0.0F;
};

// History of the operation mode in use.
// The frame list is a std::list so that saving a frame allocates exactly one node and evicting the oldest
// frees exactly one; no other per-frame allocation happens. Because of the list this record must be
// constructed, never zeroed with memset.
struct AECCurrentModeInfo
{
    BOOL                       isStartConfigSaved = FALSE;
    AECFrameHistory            startConfig;
    BOOL                       isCurFrameIDValid  = FALSE;
    UINT64                     curFrameID         = 0;
    std::list<AECFrameHistory> frameHistories; // newest first, at most AECFrameHistoryMaxCount entries
};

// What the last streaming-type mode left behind; the only bridge between operation modes.
struct AECModeHistory
{
    BOOL            isValid = FALSE;
    AECFrameHistory startConfig;
    AECFrameHistory lastFrame;
    AECFrameHistory lastFrameOrig;
};

struct AECMultiCamMtrInfo
{
    BOOL  aecSettled;
    FLOAT luxIndex;
    FLOAT averageLuma;
    FLOAT currentLuma;
    FLOAT lumaTargets[AECAlgoExposureCount];
};

// Exposure one camera used; relative values when relativeSensEnable is set, absolute otherwise.
struct AECMultiCamExpInfo
{
    BOOL   relativeSensEnable;
    FLOAT  sensitivityTotalOrRatio[AECAlgoExposureCount];
    UINT64 exposureTime[AECAlgoExposureCount];
};

struct AECDualcamCalibrationInfo
{
    AECAlgoDualcamOTPDataStatus OTPStatus;
    FLOAT                       OTPExpCompMultiplier;
};

// What one camera publishes for its peer each frame.
struct AECMultiCamInfo
{
    UINT64                    statsFrameId;
    UINT32                    cameraID;
    AECMultiCamMtrInfo        meteringInfo;
    AECMultiCamExpInfo        exposureInfo;
    INT32                     CCT;
    UINT32                    algoRole;
    AECDualcamCalibrationInfo OTPInfo;
};

struct TouchROIProcInfo
{
    UINT32     ROICount;
    AECAlgoROI ROIs[AECMaxTouchROIs];
};

// Face regions as the host sent them and as metering uses them after debouncing.
struct FaceROIProcInfo
{
    ROIPriority inputROIPriority;
    BOOL        isActiveFace;
    ROIPriority filteredROIPriority;
    FLOAT       faceHintDuration;
    FLOAT       faceStatusDuration;
    FLOAT       FaceROIFactor;
};

// Ranges of exposure index, gain, f-number and exposure times an exposure table allows.
struct ExposureLimitationType
{
    MinMaxRangeFloat  expIndex;
    MinMaxRangeFloat  gain;
    MinMaxRangeFloat  fnumber;
    MinMaxRangeUINT64 expTime;
    MinMaxRangeUINT64 SEFexpTime;
    MinMaxRangeUINT64 MEFexpTime;
    MinMaxRangeUINT64 LEFexpTime;
};

// What arbitration publishes for the other modules; read through getExposureLimitation.
// The still offsets are indexed by snapshot kind and use only the first entries.
struct ModArbitrationContext
{
    ExposureLimitationType exposureLimitation;
    ExposureLimitationType exposureShdrLimitation[AECAlgoExposureCount];
    FLOAT                  streamingExpTblSens;
    FLOAT                  streamingMinExpIndexForATB;
    FLOAT                  currentFPS;
    FLOAT                  streamModeExpIdxOffsets[AECExpIdxOffsetCount];
    FLOAT                  stillModeExpIdxOffsets[AECExpIdxOffsetCount];
};

// Region weights for the IR path; carried along, no calculator reads them yet.
struct AECWeightingTable
{
    FLOAT  weights[256];
    UINT32 weightCount;
};

// Timing of the IR cut and IR LED hardware.
struct AECIRLedSystemConfig
{
    UINT32 IRCutSystemLatency;
    UINT32 IRLedSystemLatency;
    FLOAT  PWMFrequency;
};

#endif // AEC_CORE_INCLUDE_AECCOREDATA_H
