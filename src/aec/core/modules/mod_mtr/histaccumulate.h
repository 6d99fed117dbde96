// Grouped histogram, cumulative share and value-weighted running sums of one channel, for either result layout.
#ifndef AEC_CORE_MODULES_MOD_MTR_HISTACCUMULATE_H
#define AEC_CORE_MODULES_MOD_MTR_HISTACCUMULATE_H

#include "aec/core/modules/mod_mtr/statsprocrecords.h"
#include "platform/statslogger.h"

// a * b + c rounded once to float: the product of two floats is exact in double, so only the sum is rounded
// before the final rounding. This keeps the per-bin cost off the library fmaf on targets without an FMA unit.
inline FLOAT FusedMultiplyAdd(FLOAT a, FLOAT b, FLOAT c)
{
    return static_cast<FLOAT>(static_cast<double>(a) * static_cast<double>(b) + static_cast<double>(c));
}

// Divides the first count entries by total, four lanes at a time: the same IEEE division per entry with a
// quarter of the instructions.
template <UINT32 N>
VOID NormalizeHistArray(FLOAT (&values)[N], UINT32 count, UINT64 total)
{
    typedef FLOAT Vec4 __attribute__((vector_size(16)));
    const FLOAT  norm    = static_cast<FLOAT>(total);
    const Vec4   divisor = {norm, norm, norm, norm};
    const UINT32 limit   = (count < N) ? count : N;
    UINT32       i       = 0;
    for (; (i + 4) <= limit; i += 4)
    {
        Vec4 lanes;
        __builtin_memcpy(&lanes, &values[i], sizeof(lanes));
        lanes /= divisor;
        __builtin_memcpy(&values[i], &lanes, sizeof(lanes));
    }
    for (; i < limit; i++)
    {
        values[i] /= norm;
    }
}

// Walks numRawBins raw bins of pData into channel c's groups of pRes and normalises the three running arrays by
// the pixel count. gain scales the value in the white-balanced sum. A null pData adds nothing. Returns the
// pixel count; 0 leaves the arrays unnormalised and the caller fails the frame.
template <typename TRes>
UINT64 AccumulateHistChannel(TRes* pRes, UINT32 c, const UINT32* pData, UINT32 numRawBins, FLOAT gain,
                             UINT32 chnlIndex)
{
    UINT64 total = 0;
    FLOAT  sum   = 0.0f;
    FLOAT  sumWB = 0.0f;
    UINT32 g     = 0;
    for (UINT32 r = 0; (r < numRawBins) && (g < pRes->groupedNumOfBins); r++)
    {
        if (r == pRes->binLUTs[g])
        {
            pRes->groupedHist[c][g] = 0;
        }
        if (nullptr != pData)
        {
            pRes->groupedHist[c][g] += pData[r];
        }
        else
        {
            AEC_LOG_ERROR("Invalid BHIST data curRawBin:%d chnlIndices:%d", r, chnlIndex);
        }
        if (r == static_cast<UINT32>(pRes->binLUTs[g + 1]) - 1)
        {
            // Counts stay far below 2^63: the signed conversion is one instruction, the unsigned one a branch.
            const FLOAT count = static_cast<FLOAT>(static_cast<INT64>(pRes->groupedHist[c][g]));
            const FLOAT v     = pRes->valLUTs[g];
            total += pRes->groupedHist[c][g];
            sum                       = FusedMultiplyAdd(count, v, sum);
            sumWB                     = FusedMultiplyAdd(count, v * gain, sumWB);
            pRes->histCDF[c][g]       = static_cast<FLOAT>(total);
            pRes->weightedCDF[c][g]   = sum;
            pRes->weightedCDFWB[c][g] = sumWB;
            g++;
        }
    }
    if (0 == total)
    {
        return 0;
    }
    NormalizeHistArray(pRes->histCDF[c], pRes->groupedNumOfBins, total);
    NormalizeHistArray(pRes->weightedCDF[c], pRes->groupedNumOfBins, total);
    NormalizeHistArray(pRes->weightedCDFWB[c], pRes->groupedNumOfBins, total);
    return total;
}

#endif // AEC_CORE_MODULES_MOD_MTR_HISTACCUMULATE_H
