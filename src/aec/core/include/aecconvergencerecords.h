// Per-frame input and output records of the convergence module.
#ifndef AEC_CORE_INCLUDE_AECCONVERGENCERECORDS_H
#define AEC_CORE_INCLUDE_AECCONVERGENCERECORDS_H

#include <type_traits>

#include "aec/core/include/aeccorecommon.h"
#include "aecore/aecore.h"

// What convergence needs of one frame; built by the core from the metering output.
struct ConvergenceInput
{
    const FLOAT*          pTargetIndices; // three target indices: short, long, safe
    FLOAT                 ratioDark;
    FLOAT                 ratioBright;
    AECAlgoSettleFlagType settleType;
    BOOL                  bIsTorchAEC;
    FLOAT                 luxIndex;
    FLOAT                 avgLuma;
};

// Exposure index decided for one exposure of the frame.
struct ConvergenceExposureSetOutput
{
    FLOAT expIndex;
    FLOAT expIndexDelta;      // target clamped to the table range, minus expIndex
    FLOAT expIndexDeltaIdeal; // unclamped target minus expIndex
    FLOAT expIndexAdjustment; // expIndex minus the index of the last frame
};

// Ramp from srcExpIdx to dstExpIdx that arbitration follows with exposure time priority.
struct ExpTimePrioConvConfig
{
    BOOL  bIsActive;
    FLOAT srcExpIdx;
    FLOAT dstExpIdx;
};

// Whether arbitration is to take the staggered-HDR path.
struct SHDRExpConvConfig
{
    BOOL  bIsActive;
    INT32 sHDRConvType; // kind of staggered-HDR convergence; no reader interprets it yet
};

// Exposure indices and settle state of one frame; arrays of three are short, long, safe.
// Every member starts at zero; the core resets the record by assigning ConvergenceOutput().
struct ConvergenceOutput
{
    ConvergenceExposureSetOutput convExpSets[AECAlgoExposureCount] = {};
    BOOL                         isAECSettled                      = FALSE;
    BOOL                         isBrightnessSettled               = FALSE;
    ExpTimePrioConvConfig        expTimePriorConfig                = {};
    FLOAT                        previewEV                         = 0.0F;
    FLOAT                        predictiveGain                    = 0.0F;
    FLOAT                        predictiveADRC                    = 0.0F;
    SHDRExpConvConfig            sHDRexpConfig                     = {};
};

static_assert(std::is_trivial<ConvergenceInput>::value, "zeroed by memset");
static_assert(std::is_trivially_copyable<ConvergenceOutput>::value, "passed by value to frame skip control");

#endif // AEC_CORE_INCLUDE_AECCONVERGENCERECORDS_H
