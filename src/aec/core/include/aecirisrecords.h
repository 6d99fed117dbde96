// Per-frame input and output records of the iris control module.
#ifndef AEC_CORE_INCLUDE_AECIRISRECORDS_H
#define AEC_CORE_INCLUDE_AECIRISRECORDS_H

#include <type_traits>

#include "aec/core/include/aeccorecommon.h"
#include "aecore/aecore.h"

// Target f-number of the frame and the lens state iris control works from.
struct AECIrisFrameProcInput
{
    FLOAT                TarFn;
    UINT32               CurrZoomStep;
    UINT32               CurrIrisPos;
    BOOL                 isMoving;
    INT32                irisIsAborted;
    LDMLensCap           lensCap;
    LDMMotorSystemConfig motorSysConfig;
    LDMLensPowerLevel    motorPowerLevel;
};

// Motor commands of the frame and the f-number they lead to.
struct AECIrisFrameProcOutput
{
    IrisPerFrameOutputParams motorData;
    FLOAT                    TarFnumber;
};

static_assert(std::is_trivial<AECIrisFrameProcInput>::value, "zeroed by memset");
static_assert(std::is_trivial<AECIrisFrameProcOutput>::value, "zeroed by memset");

#endif // AEC_CORE_INCLUDE_AECIRISRECORDS_H
