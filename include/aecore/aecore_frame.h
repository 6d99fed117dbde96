/* Per-frame payloads of the process lists: frame statistics info, exposure sets, frame control and frame info. */
#ifndef AECORE_AECORE_FRAME_H
#define AECORE_AECORE_FRAME_H

#include "aecore/aecore_enums.h"
#include "aecore/aecore_stats.h"
#include "aecore/aecore_types.h"

AECORE_EXTERN_C_BEGIN

/* ---- Input ---- */

/* Frame identity and flags of one statistics input list; the library does not use statsWindowsSize. */
typedef struct AECAlgoInputStatsInfo
{
    UINT64         requestId;
    BOOL           prepareBeforePreflash;
    StatsDimension statsWindowsSize;
    BOOL           bIsTorchAEC;
} AECAlgoInputStatsInfo;

/* Least sizeOfAECInput of a statistics-info entry; bIsTorchAEC lies beyond it, at offset 20. */
#define AECORE_INPUT_STATS_INFO_MIN_SIZE 16u

/* Bytes taken over from a motor status entry: isMoving and motorCurPosition. */
#define AECORE_MOTOR_STATUS_COPY_SIZE 8u

/* ---- Exposure ---- */

/* One exposure: times in nanoseconds, linear gains (1.0 unity), sensitivity = time x gain / f-number^2. */
typedef struct AECAlgoExposureData
{
    UINT64 exposureTime;
    UINT64 snapshotExposureTime;
    FLOAT  linearGain;
    FLOAT  snapShotLinearGain;
    FLOAT  sensitivity;
    FLOAT  snapshotSensitivity;
    FLOAT  deltaEVFromTarget;
    FLOAT  compenADRCGain;
    FLOAT  fnumber;
} AECAlgoExposureData;

typedef struct AECAlgoExposureInfo
{
    AECAlgoExposureType exposureType;
    AECAlgoExposureData exposureData;
} AECAlgoExposureInfo;

/* Host array of exposure entries; the library writes AECAlgoExposureCount entries at a stride of exposureInfoSize. */
typedef struct AECAlgoExposureSet
{
    AECAlgoExposureInfo* pExposureInfo;
    UINT32               exposureInfoCount;
    UINT32               exposureInfoSize;
    UINT32               exposureInfoOutputCount;
    UINT32               exposureInfoOutputSize;
} AECAlgoExposureSet;

/*
 * Least exposureInfoSize accepted: the size of AECAlgoExposureData. Each written entry is a whole
 * AECAlgoExposureInfo, reported as exposureInfoOutputSize, so a host stride below that size overlaps entries.
 */
#define AECORE_EXPOSURE_INFO_MIN_SIZE    48u
#define AECORE_EXPOSURE_INFO_OUTPUT_SIZE 56u

/* Exif APEX values of the applied exposure. */
typedef struct AECAlgoAPEXData
{
    FLOAT brightnessValue;
    FLOAT apertureValue;
    FLOAT speedValue;
    FLOAT timeValue;
    FLOAT exposureValue;
} AECAlgoAPEXData;

/* Luma histogram stretch the pipeline is to apply. */
typedef struct AECYHistStretchData
{
    BOOL  enable;
    FLOAT clamp;
    FLOAT scaling;
} AECYHistStretchData;

/* ---- Frame control ---- */

typedef struct AECAlgoApertureData
{
    ApertureSwitchStateType apertureStatus;
    FLOAT                   currentFNumber;
} AECAlgoApertureData;

/* Host-defined layout: whether the in-sensor three-exposure capture is triggered, and at which light level and DRC gain. */
typedef struct InSensorHDR3ExpTriggerInfo
{
    BOOL  isTriggered;
    FLOAT luxIndex;
    FLOAT DRCGain;
} InSensorHDR3ExpTriggerInfo;

/* Companding curve of a companded sensor output and its inverse. */
typedef struct AECAlgoDecompandData
{
    FLOAT kneeStrength;
    FLOAT compandStrength;
    FLOAT compandTable[64];
    FLOAT decompandTable[64];
} AECAlgoDecompandData;

/*
 * What the sensor and LEDs are to use next, as the host receives it. The library writes flashState through
 * isInSensorHDR3ExpSnapshot, compensationDarkBoostGain, IRModeActivated and IRLedIntensity; everything else
 * belongs to the host. The frame-control size check covers only the first AECORE_FRAME_CONTROL_OUTPUT_SIZE
 * bytes, but the last three written fields lie beyond them: the host must always pass the full record.
 */
typedef struct AECAlgoFrameControl
{
    AECAlgoFlashStateType      flashState;
    FLOAT                      LEDInfluenceRatio;
    FLOAT                      LEDRGRatio;
    FLOAT                      LEDBGRatio;
    FLOAT                      luxIndex;
    UINT32                     ISOValue;
    AECYHistStretchData        stretchControl;
    FLOAT                      LEDFirstEntryRatio;
    FLOAT                      LEDLastEntryRatio;
    FLOAT                      predictiveGain;
    FLOAT                      digitalGainForSimulation;
    FLOAT                      compenADRCGain;
    BOOL                       isInSensorHDR3ExpSnapshot;
    AECAlgoApertureData        apertureSwitchInfo;
    InSensorHDR3ExpTriggerInfo inSensorHDR3ExpTriggerOutput;
    AECAlgoSnapshotType        snapshotIndicator;
    UINT64                     snapshotFlashDuration;
    FLOAT                      compensationDarkBoostGain;
    AECAlgoSeamlessMode        seamlessMode;
    UINT64                     meterTargetExp[3];
    FLOAT                      shortBlendRatio;
    INT32                      IRModeActivated;
    FLOAT                      IRLedIntensity;
    AECAlgoDecompandData       decompandData;
} AECAlgoFrameControl;

/* Least sizeOfAECOutput and reported size of a frame-control entry: the record up to apertureSwitchInfo. */
#define AECORE_FRAME_CONTROL_OUTPUT_SIZE 68u

/* ---- Frame info ---- */

/* A region of interest in normalised image coordinates, 0 to 1. */
typedef struct AECAlgoROI
{
    FLOAT x;
    FLOAT y;
    FLOAT dx;
    FLOAT dy;
    FLOAT weight;
} AECAlgoROI;

/*
 * Per-frame information for the host. processedROI is never written. The frame-info size check and the
 * reported size are AECORE_FRAME_INFO_OUTPUT_SIZE, which is less than the record: pixCntRatioLEF lies
 * beyond it, so the host must always pass the full record.
 */
typedef struct AECAlgoFrameInfo
{
    BOOL                brightnessSettled;
    BOOL                aecSettled;
    FLOAT               asdExtremeGreenRatio;
    FLOAT               asdExtremeBlueRatio;
    AECAlgoSnapshotType snapshotIndicator;
    AECAlgoTouchEVType  touchEVIndicator;
    BOOL                LEDAFRequired;
    FLOAT               legacyYStats[256];
    BOOL                LEDFDDelayRequired;
    SIZE_T              DebugDataSizeWritten;
    FLOAT               frameLuma;
    AECAlgoROI          processedROI;
    FLOAT               pixCntRatioLEF;
} AECAlgoFrameInfo;

/* Least sizeOfAECOutput and reported size of a frame-info entry. */
#define AECORE_FRAME_INFO_OUTPUT_SIZE 1072u

#if defined(__LP64__)
AECORE_STATIC_ASSERT(sizeof(AECAlgoInputStatsInfo) == 24, "AECAlgoInputStatsInfo is 24 bytes");
AECORE_STATIC_ASSERT(offsetof(AECAlgoInputStatsInfo, prepareBeforePreflash) == 8, "prepareBeforePreflash at 8");
AECORE_STATIC_ASSERT(offsetof(AECAlgoInputStatsInfo, bIsTorchAEC) == 20, "bIsTorchAEC at 20");
AECORE_STATIC_ASSERT(offsetof(AECAlgoInputStatsInfo, bIsTorchAEC) >= AECORE_INPUT_STATS_INFO_MIN_SIZE,
                     "bIsTorchAEC lies beyond the least accepted statistics-info size");

AECORE_STATIC_ASSERT(sizeof(AECAlgoExposureData) == AECORE_EXPOSURE_INFO_MIN_SIZE, "AECAlgoExposureData must be 48 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoExposureInfo) == AECORE_EXPOSURE_INFO_OUTPUT_SIZE, "AECAlgoExposureInfo must be 56 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoExposureSet) == 24, "AECAlgoExposureSet must be 24 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoAPEXData) == 20, "AECAlgoAPEXData must be 20 bytes");
AECORE_STATIC_ASSERT(sizeof(AECYHistStretchData) == 12, "AECYHistStretchData is 12 bytes");

AECORE_STATIC_ASSERT(offsetof(AECAlgoFrameControl, inSensorHDR3ExpTriggerOutput) == AECORE_FRAME_CONTROL_OUTPUT_SIZE,
                     "the checked frame-control bytes end after apertureSwitchInfo");
AECORE_STATIC_ASSERT(offsetof(AECAlgoFrameControl, compensationDarkBoostGain) >= AECORE_FRAME_CONTROL_OUTPUT_SIZE,
                     "compensationDarkBoostGain lies beyond the checked frame-control bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoFrameControl) == 664, "AECAlgoFrameControl is 664 bytes");

AECORE_STATIC_ASSERT(sizeof(AECAlgoROI) == 20, "AECAlgoROI is 20 bytes");
AECORE_STATIC_ASSERT(offsetof(AECAlgoFrameInfo, legacyYStats) == 28, "legacyYStats at 28");
AECORE_STATIC_ASSERT(offsetof(AECAlgoFrameInfo, frameLuma) == 1064, "frameLuma at 1064");
AECORE_STATIC_ASSERT(offsetof(AECAlgoFrameInfo, pixCntRatioLEF) == 1088, "pixCntRatioLEF at 1088");
AECORE_STATIC_ASSERT(sizeof(AECAlgoFrameInfo) == 1096, "AECAlgoFrameInfo is 1096 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoFrameInfo) > AECORE_FRAME_INFO_OUTPUT_SIZE,
                     "the frame-info record is larger than its checked size");
#endif

AECORE_EXTERN_C_END

#endif /* AECORE_AECORE_FRAME_H */
