// Squeezing the knees of an exposure table into a limitation, keeping each knee's index true to what it lost.
#ifndef AEC_CORE_MODULES_MOD_ARB_EXPTABLECAPPING_H
#define AEC_CORE_MODULES_MOD_ARB_EXPTABLECAPPING_H

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aeccoredata.h"
#include "aec/core/modules/mod_arb/exptableknees.h"
#include "aec/core/modules/mod_arb/exptablemath.h"
#include "platform/statslogger.h"

// Lower bound first, then upper: a crossed range ends at its maximum.
template <typename T>
inline T CapToRange(T value, T lower, T upper)
{
    const T raised = (value < lower) ? lower : value;
    return (raised > upper) ? upper : raised;
}

// Clamps every knee's time, gain and f-number into the limit, in place, and moves its index by the exposure the
// clamp took or added. Capping twice without a rebuild caps the capped table.
template <typename TableT>
inline AecResult utilExpTblCapping(TableT* pTable, const ExposureLimitationType* pLimit)
{
    if ((FALSE == IsValidExpTable(pTable)) || (nullptr == pLimit))
    {
        AEC_LOG_ERROR("ERROR: Table capping Failed");
        return AecError;
    }

    for (UINT32 i = 0U; i < pTable->expKneeEntriesCount; i++)
    {
        auto& rKnee = pTable->expKneeEntries[i];

        const UINT64 newTime = CapToRange(rKnee.expTime, pLimit->expTime.min, pLimit->expTime.max);
        const FLOAT  newGain = CapToRange(rKnee.gain, pLimit->gain.min, pLimit->gain.max);
        // A table's f-number never drops below 1.0, whatever the limit says; this also keeps 1 / fn^2 finite.
        FLOAT newFn = CapToRange(rKnee.fnumber, pLimit->fnumber.min, pLimit->fnumber.max);
        newFn       = (newFn < 1.0F) ? 1.0F : newFn;

        const FLOAT gainRatio = (rKnee.gain > 1.0F) ? (newGain / rKnee.gain) : newGain;
        // The old time counts with its low 32 bits only; that is how the ratio is defined for these tables.
        const FLOAT oldTime   = static_cast<FLOAT>(static_cast<UINT32>(rKnee.expTime));
        const FLOAT timeRatio = (oldTime > 1.0F) ? (static_cast<FLOAT>(newTime) / oldTime) : static_cast<FLOAT>(newTime);
        const DOUBLE fnRatio  = (rKnee.fnumber > 1.0F) ? (static_cast<DOUBLE>(newFn) / rKnee.fnumber) : newFn;
        const FLOAT  sens     = timeRatio * gainRatio * static_cast<FLOAT>(1.0 / (fnRatio * fnRatio));

        rKnee.expIndex += ExpIndexDeltaFromRatio((0.0F == sens) ? 1.0 : static_cast<DOUBLE>(sens));
        rKnee.expTime = newTime;
        rKnee.gain    = newGain;
        rKnee.fnumber = newFn;
    }
    return AecSuccess;
}

#endif // AEC_CORE_MODULES_MOD_ARB_EXPTABLECAPPING_H
