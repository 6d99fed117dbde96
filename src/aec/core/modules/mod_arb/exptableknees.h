// Knee-level helpers for both table record types: validity, the segment that holds an index, a segment's iris gain.
#ifndef AEC_CORE_MODULES_MOD_ARB_EXPTABLEKNEES_H
#define AEC_CORE_MODULES_MOD_ARB_EXPTABLEKNEES_H

#include "aec/core/modules/mod_arb/exptablemath.h"
#include "aecore/aecore.h"

// A table needs a knee array and at least two knees to span a segment.
template <typename TableT>
inline BOOL IsValidExpTable(const TableT* pTable)
{
    return ((nullptr != pTable) && (nullptr != pTable->expKneeEntries) && (pTable->expKneeEntriesCount >= 2U))
               ? TRUE
               : FALSE;
}

// Segment of a table that holds an index: knees lo and hi = lo + 1, and the index clamped to the table's range.
struct ExpTableSegment
{
    FLOAT  index;
    UINT32 lo;
    UINT32 hi;
};

// Clamps index to [first knee, last knee] and finds the first knee strictly above it; the segment starts one knee
// before that (knee 0 when it is the first). With no knee above, the clamped index equals the last knee's index,
// so hi (== count) is not read: the lookups return knee lo when index - knee[lo] is not above 0. Only a table whose
// indices do not ascend can leave hi == count with a positive delta; the lookups check hi against the count for it.
// The bounds are applied one after the other, never as std::clamp, which is undefined for reversed bounds.
template <typename TableT>
inline ExpTableSegment FindExpTableSegment(const TableT* pTable, FLOAT index)
{
    const UINT32 count = pTable->expKneeEntriesCount;
    const auto*  pKnees = pTable->expKneeEntries;

    ExpTableSegment segment = {index, 0U, 1U};
    if (segment.index < pKnees[0].expIndex)
    {
        segment.index = pKnees[0].expIndex;
    }
    else if (segment.index > pKnees[count - 1U].expIndex)
    {
        segment.index = pKnees[count - 1U].expIndex;
    }

    UINT32 above = 0U;
    while ((above < count) && !(pKnees[above].expIndex > segment.index))
    {
        above++;
    }
    segment.lo = (0U == above) ? 0U : (above - 1U);
    segment.hi = segment.lo + 1U;
    return segment;
}

// Sensitivity that the whole iris move from knee lo to knee hi gives: 1 / (fnHi / fnLo)^2.
template <typename KneeT>
inline FLOAT SegmentIrisGain(const KneeT& rLo, const KneeT& rHi)
{
    const FLOAT fnRatio = KneeRatio(rHi.fnumber, rLo.fnumber);
    return KneeRatio(1.0F, fnRatio * fnRatio);
}

#endif // AEC_CORE_MODULES_MOD_ARB_EXPTABLEKNEES_H
