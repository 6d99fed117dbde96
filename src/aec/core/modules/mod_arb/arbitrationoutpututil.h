// Steps the module's preview and still paths share: the initial output and the move of indices between tables.
#ifndef AEC_CORE_MODULES_MOD_ARB_ARBITRATIONOUTPUTUTIL_H
#define AEC_CORE_MODULES_MOD_ARB_ARBITRATIONOUTPUTUTIL_H

#include <cstring>

#include "aec/core/include/aecarbitrationrecords.h"
#include "platform/statslogger.h"

// What a frame or query reports when nothing could be arbitrated: 1 ms at unity gain on every exposure.
inline VOID UtilInitializeOutput(ArbitrationOutput* pOutput)
{
    std::memset(pOutput, 0, sizeof(*pOutput));
    for (AECAlgoExposureData& rSet : pOutput->expSets)
    {
        rSet.exposureTime = 1000000U;
        rSet.linearGain   = 1.0F;
        rSet.sensitivity  = 1e6F;
    }
}

// Entry index of a published offset table; an index the table does not have (a mode or snapshot kind out of range)
// counts as offset 0, i.e. as table 0.
inline FLOAT ExpIdxOffsetOf(const FLOAT* pOffsets, UINT32 count, INT32 index)
{
    if ((index < 0) || (static_cast<UINT32>(index) >= count))
    {
        AEC_LOG_WARN("no exposure index offset for entry %d of %u, using 0", index, count);
        return 0.0F;
    }
    return pOffsets[index];
}

// Moves three indices from the table of fromID to the table of toID; offset is the difference of the two tables'
// offsets to table 0. A zero offset (same table) leaves them untouched.
inline VOID ConvertExpIndices(FLOAT* pExpIndices, INT32 fromID, INT32 toID, FLOAT offset)
{
    if (0.0F != offset)
    {
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            pExpIndices[i] += offset;
        }
        AEC_LOG_VERBOSE("Converting Exposure ID[%d]->[%d]: Offset : %f , New Index %f %f %f", fromID, toID, offset,
                        pExpIndices[0], pExpIndices[1], pExpIndices[2]);
    }
}

#endif // AEC_CORE_MODULES_MOD_ARB_ARBITRATIONOUTPUTUTIL_H
