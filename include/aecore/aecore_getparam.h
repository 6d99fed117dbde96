/* Input and output payload records of the get parameters. */
#ifndef AECORE_AECORE_GETPARAM_H
#define AECORE_AECORE_GETPARAM_H

#include "aecore/aecore_enums.h"
#include "aecore/aecore_stats.h"
#include "aecore/aecore_types.h"

AECORE_EXTERN_C_BEGIN

/*
 * Input payloads: SnapshotType AECAlgoSnapshotConfig; ISOValue and IsFixedFocus UINT32;
 * DebugDataPointer AECAlgoDebugDataConfig; CameraInfo StatsCameraInfo.
 * Output payloads: FrameControl AECAlgoFrameControl; ExposureSets AECAlgoExposureSet; LEDCurrents UINT32[2];
 * EXIFApex AECAlgoAPEXData; Gain FLOAT; FlashMeasurementConfig and FlashMeasurementResult the records below;
 * DebugData a pointer to the library's debug data; BGStatsConfig StatsBayerGridBayerExposureConfig;
 * EVCapabilities AECAlgoEVCapabilities; PeerInfo a pointer to this camera's exposure record, which the host
 * hands to the peer camera; BHistStatsConfig StatsBayerHistogramConfig; dependent vendor tags StatsVendorTagInfoList.
 */

/* Kind of still capture to compute the exposure for; EVVal is the bracketing step in EV steps. */
typedef struct AECAlgoSnapshotConfig
{
    AECAlgoSnapshotType snapshotType;
    BOOL                bUseAEBracketing;
    INT8                EVVal;
} AECAlgoSnapshotConfig;

/* Buffer for the debug data and, on return, the bytes written into it. */
typedef struct AECAlgoDebugDataConfig
{
    StatsDataPointer debugData;
    SIZE_T           sizeofDebugDataWritten;
} AECAlgoDebugDataConfig;

/* Supported exposure compensation: range in EV and steps per EV. */
typedef struct AECAlgoEVCapabilities
{
    INT8 minEV;
    INT8 maxEV;
    INT8 stepsPerEV;
} AECAlgoEVCapabilities;

typedef struct AECAlgoFlashMeasurementConfig
{
    INT32 measurementsCount;
    INT32 allowedReTriesCount;
    INT32 flashOnFrameCount;
} AECAlgoFlashMeasurementConfig;

/* One measured LED point. */
typedef struct FlashMeasurement
{
    FLOAT                      RGRatio;
    FLOAT                      BGRatio;
    FLOAT                      flux;
    AECAlgoFlashMeasStatusType status;
} FlashMeasurement;

/* State of a flash measurement session; pFlashPoints has measurementCount entries owned by the library. */
typedef struct AECAlgoFlashMeasurementResult
{
    AECAlgoFlashMeasStatusType status;
    UINT32                     measurementCount;
    FlashMeasurement*          pFlashPoints;
} AECAlgoFlashMeasurementResult;

#if defined(__LP64__)
AECORE_STATIC_ASSERT(sizeof(AECAlgoSnapshotConfig) == 12, "AECAlgoSnapshotConfig must be 12 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoDebugDataConfig) == 24, "AECAlgoDebugDataConfig must be 24 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoEVCapabilities) == 3, "AECAlgoEVCapabilities must be 3 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoFlashMeasurementConfig) == 12, "AECAlgoFlashMeasurementConfig must be 12 bytes");
AECORE_STATIC_ASSERT(sizeof(AECAlgoFlashMeasurementResult) == 16, "AECAlgoFlashMeasurementResult must be 16 bytes");
AECORE_STATIC_ASSERT(sizeof(FlashMeasurement) == 16, "FlashMeasurement is 16 bytes");
#endif

AECORE_EXTERN_C_END

#endif /* AECORE_AECORE_GETPARAM_H */
