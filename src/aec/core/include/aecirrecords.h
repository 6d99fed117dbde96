// Per-frame input and output records of the IR control module, and the exposure lock it may request.
#ifndef AEC_CORE_INCLUDE_AECIRRECORDS_H
#define AEC_CORE_INCLUDE_AECIRRECORDS_H

#include <type_traits>

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aeccoredata.h"
#include "aecore/aecore.h"

// Values of AECLockRequestType::SetAECLockType.
enum IRAECLockType : UINT8
{
    IRAECLockTypePrev   = 0, // keep the targets of the last frame
    IRAECLockTypeTuning = 1, // lock at TuningexpIdx
};

// Exposure lock that IR control asks metering to apply while it measures IR reflectance.
struct AECLockRequestType
{
    BOOL  irAECLockRequest;
    UINT8 SetAECLockType; // an IRAECLockType value
    FLOAT TuningexpIdx;
};

// What IR control needs of one frame.
struct AECIRFrameProcInput
{
    AECStatistics         stats;
    IRPerFrameInputParams IRInputPerFrame;
    FLOAT                 CurAvgLuma;
    FLOAT                 BGStats[AECMaxBGStatsRegions]; // luma per grid region, 8-bit scale
    BOOL                  sHDROutput;
    BOOL                  isSHDRAECSettled;
    StatsSHDRParams       shdrTuningParams;
};

// IR mode and LED intensity decided for one frame.
struct AECIRFrameProcOutput
{
    UINT32 IRModeActivated;
    FLOAT  IRLedIntensity;
};

static_assert(std::is_trivial<AECLockRequestType>::value, "zeroed by memset");
static_assert(std::is_trivial<AECIRFrameProcInput>::value, "zeroed by memset");
static_assert(std::is_trivial<AECIRFrameProcOutput>::value, "zeroed by memset");

#endif // AEC_CORE_INCLUDE_AECIRRECORDS_H
