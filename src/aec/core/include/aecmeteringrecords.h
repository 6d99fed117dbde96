// Per-frame, snapshot and flash-stage records exchanged between the core and the metering module.
#ifndef AEC_CORE_INCLUDE_AECMETERINGRECORDS_H
#define AEC_CORE_INCLUDE_AECMETERINGRECORDS_H

#include <type_traits>

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aecirrecords.h"
#include "aec/core/include/depthprocinfo.h"
#include "aecore/aecore.h"

// Number of legacy luma regions reported in AECMeteringFrameProcOutput::Ystats.
constexpr UINT32 AECMeteringYStatsCount = 256;

// Stage of the two-step flash estimation; the value doubles as the "LED on" flag.
enum AECMeteringFlashEstStage
{
    PreflashToStart = 0,
    PreflashToEnd   = 1,
};

// Statistics and side information of one frame, built by the core before metering runs.
struct AECMeteringFrameProcInput
{
    AECStatistics      stats;
    DepthProcInfo      m_DepthInfo;
    StatsSHDRParams    shdrTuningParams;
    AECLockRequestType IRLockAECtype;
};

// Luma, targets and target exposure indices of one frame; arrays of three are short, long, safe.
struct AECMeteringFrameProcOutput
{
    FLOAT               targetIndices[AECAlgoExposureCount];
    FLOAT               ratioDark;
    FLOAT               ratioBright;
    FLOAT               luxIndex;
    FLOAT               flashInfluence;
    FLOAT               currentLuma;
    FLOAT               Ystats[AECMeteringYStatsCount];
    FLOAT               RGRatio;
    FLOAT               BGRatio;
    FLOAT               extremeGreenRatio;
    FLOAT               extremeBlueRatio;
    FLOAT               averageLuma;
    FLOAT               frameLuma;
    FLOAT               VisibleLightRatio;
    FLOAT               lumaTargets[AECAlgoExposureCount];
    FLOAT               origLuxIndex;
    FLOAT               pixCntRatioLEF;
    BOOL                sHDROutput;
    BOOL                isSHDRAECSettled;
    BOOL                isSHDRSEFSettled;
    FLOAT               sHdrIndices[AECAlgoExposureCount];
    AECAlgoExposureData idealShdrExpSets[AECAlgoExposureCount];  // reserved: nothing writes or reads it
    AECAlgoExposureData sensorShdrExpSets[AECAlgoExposureCount]; // reserved: nothing writes or reads it
    FLOAT               expRatio;
};

// Request for the exposure of a still capture.
struct AECMeteringSnapshotInput
{
    BOOL  isFlashSnapshot;
    FLOAT mainToPreFluxRatio;
    FLOAT preflashToStreamingOffset;
};

// Estimated exposure of a still capture.
struct AECMeteringSnapshotOutput
{
    FLOAT snapshotExpIndices[AECAlgoExposureCount];
    FLOAT snapshotLuxIndex;
    FLOAT flashInfluence;
};

static_assert(std::is_trivial<AECMeteringFrameProcInput>::value, "zeroed by memset");
static_assert(std::is_trivial<AECMeteringFrameProcOutput>::value, "zeroed by memset");
static_assert(std::is_trivial<AECMeteringSnapshotInput>::value, "zeroed by memset");
static_assert(std::is_trivial<AECMeteringSnapshotOutput>::value, "zeroed by memset");

#endif // AEC_CORE_INCLUDE_AECMETERINGRECORDS_H
