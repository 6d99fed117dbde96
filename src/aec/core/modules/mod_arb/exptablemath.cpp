// Exposure index arithmetic shared by the exposure table steps: ratio to index delta, knee ratios, time growth.
#include "aec/core/modules/mod_arb/exptablemath.h"

#include <cmath>
#include <limits>

FLOAT ExpIndexDeltaFromRatio(DOUBLE ratio)
{
    return static_cast<FLOAT>(std::log10(ratio) * ExpIndexPerDecade);
}

FLOAT KneeRatio(FLOAT num, FLOAT den)
{
    return (0.0F != den) ? (num / den) : 1.0F;
}

DOUBLE KneeRatio(UINT64 num, UINT64 den)
{
    return (0U != den) ? (static_cast<DOUBLE>(num) / static_cast<DOUBLE>(den)) : 1.0;
}

UINT64 GrowExpTime(UINT64 time, FLOAT growth)
{
    constexpr UINT64 MaxTime = std::numeric_limits<UINT64>::max();
    // 2^64 is exactly representable; every float below it converts without overflow.
    constexpr FLOAT TimeRangeEnd = 18446744073709551616.0F;

    const FLOAT increment = growth * static_cast<FLOAT>(time);
    if (!(increment >= 1.0F))
    {
        return time;
    }
    if (increment >= TimeRangeEnd)
    {
        return MaxTime;
    }
    const UINT64 step = static_cast<UINT64>(increment);
    return (step > (MaxTime - time)) ? MaxTime : (time + step);
}
