// Exposure index to exposure time, gain and f-number by interpolating between two knees of an exposure table.
#ifndef AEC_CORE_MODULES_MOD_ARB_EXPTABLELOOKUP_H
#define AEC_CORE_MODULES_MOD_ARB_EXPTABLELOOKUP_H

#include <cmath>

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/modules/mod_arb/exptableknees.h"
#include "aec/core/modules/mod_arb/exptablemath.h"
#include "aec/core/modules/mod_arb/exptabletypes.h"
#include "platform/statslogger.h"
#include "tuning_aecglobalelements.h"

// Shared start of both lookups: checks the table, clamps the index into it and finds its segment. Returns FALSE
// (after logging) when there is nothing to look up. When the index lies on knee lo, or past a table whose indices
// do not ascend, the set already holds knee lo's triple and *pDelta is not above 0.
template <typename TableT>
inline BOOL BeginExpTableLookup(const TableT* pTable, ExposureSetType* pSet, ExpTableSegment* pSegment, FLOAT* pDelta)
{
    if ((FALSE == IsValidExpTable(pTable)) || (nullptr == pSet))
    {
        AEC_LOG_ERROR("ERROR: Table capping Failed");
        return FALSE;
    }
    *pSegment        = FindExpTableSegment(pTable, pSet->expIndex);
    const auto& rLo  = pTable->expKneeEntries[pSegment->lo];
    pSet->gain       = rLo.gain;
    pSet->fnumber    = rLo.fnumber;
    pSet->expTime    = rLo.expTime;
    pSet->expIndex   = pSegment->index;
    *pDelta          = (pSegment->hi < pTable->expKneeEntriesCount) ? (pSegment->index - rLo.expIndex) : 0.0F;
    return TRUE;
}

// Index to triple, iris first, then gain or time as knee lo's incrementPriority says. The remainder spills into
// the other quantity without regard to knee hi's value of it.
template <typename TableT>
inline AecResult utilExpTblLookingUp(const TableT* pTable, ExposureSetType* pSet)
{
    ExpTableSegment segment;
    FLOAT           delta = 0.0F;
    if (FALSE == BeginExpTableLookup(pTable, pSet, &segment, &delta))
    {
        return AecError;
    }
    if (!(delta > 0.0F))
    {
        return AecSuccess;
    }

    const auto& rLo    = pTable->expKneeEntries[segment.lo];
    const auto& rHi    = pTable->expKneeEntries[segment.hi];
    const FLOAT needed = std::pow(ExpIndexBase, delta);
    const FLOAT iris   = SegmentIrisGain(rLo, rHi);

    if (iris > needed)
    {
        pSet->fnumber *= std::sqrt(KneeRatio(1.0F, needed));
        return AecSuccess;
    }

    pSet->fnumber *= std::sqrt(KneeRatio(1.0F, iris));
    const FLOAT rest = KneeRatio(needed, iris);
    if (aecglobalelements::AECExpIncGain != rLo.incrementPriority)
    {
        const FLOAT timeRatio = KneeRatio(static_cast<FLOAT>(rHi.expTime), static_cast<FLOAT>(rLo.expTime));
        if (timeRatio > rest)
        {
            pSet->expTime = GrowExpTime(pSet->expTime, rest - 1.0F);
        }
        else
        {
            pSet->gain *= KneeRatio(rest, timeRatio);
            pSet->expTime = GrowExpTime(pSet->expTime, timeRatio - 1.0F);
        }
    }
    else
    {
        const FLOAT gainRatio = KneeRatio(rHi.gain, rLo.gain);
        if (gainRatio > rest)
        {
            pSet->gain *= rest;
        }
        else
        {
            pSet->gain *= gainRatio;
            pSet->expTime = GrowExpTime(pSet->expTime, KneeRatio(rest, gainRatio) - 1.0F);
        }
    }
    return AecSuccess;
}

// Index to triple, exposure time first, then iris, then gain; knee lo's incrementPriority is not consulted.
template <typename TableT>
inline AecResult utilExpTblLookingUpExpTimePrio(const TableT* pTable, ExposureSetType* pSet)
{
    ExpTableSegment segment;
    FLOAT           delta = 0.0F;
    if (FALSE == BeginExpTableLookup(pTable, pSet, &segment, &delta))
    {
        return AecError;
    }
    if (!(delta > 0.0F))
    {
        return AecSuccess;
    }

    const auto& rLo       = pTable->expKneeEntries[segment.lo];
    const auto& rHi       = pTable->expKneeEntries[segment.hi];
    const FLOAT needed    = std::pow(ExpIndexBase, delta);
    const FLOAT timeRatio = KneeRatio(static_cast<FLOAT>(rHi.expTime), static_cast<FLOAT>(rLo.expTime));

    if (timeRatio > needed)
    {
        pSet->expTime = GrowExpTime(pSet->expTime, needed - 1.0F);
        return AecSuccess;
    }

    const FLOAT rest = KneeRatio(needed, timeRatio);
    const FLOAT iris = SegmentIrisGain(rLo, rHi);
    if (!(rest < iris))
    {
        pSet->gain *= KneeRatio(rest, iris);
    }
    pSet->fnumber *= std::sqrt(KneeRatio(1.0F, (rest < iris) ? rest : iris));
    pSet->expTime = GrowExpTime(pSet->expTime, timeRatio - 1.0F);
    return AecSuccess;
}

#endif // AEC_CORE_MODULES_MOD_ARB_EXPTABLELOOKUP_H
