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

// Divides the entries [start, end) by total, four lanes at a time: the same IEEE division per entry with a
// quarter of the instructions.
inline VOID NormalizeHistRange(FLOAT* pValues, UINT32 start, UINT32 end, UINT64 total)
{
    typedef FLOAT Vec4 __attribute__((vector_size(16)));
    const FLOAT  norm    = static_cast<FLOAT>(total);
    const Vec4   divisor = {norm, norm, norm, norm};
    UINT32       i       = start;
    for (; (i + 4) <= end; i += 4)
    {
        Vec4 lanes;
        __builtin_memcpy(&lanes, &pValues[i], sizeof(lanes));
        lanes /= divisor;
        __builtin_memcpy(&pValues[i], &lanes, sizeof(lanes));
    }
    for (; i < end; i++)
    {
        pValues[i] /= norm;
    }
}

// Divides the first count entries (at most N) by total.
template <UINT32 N>
VOID NormalizeHistArray(FLOAT (&values)[N], UINT32 count, UINT64 total)
{
    NormalizeHistRange(values, 0, (count < N) ? count : N, total);
}

// Running values of one channel's walk.
struct HistChannelRun
{
    UINT64 total;
    FLOAT  sum;
    FLOAT  sumWB;
};

// A completed group of one channel: its pixels, cumulative count and the two value-weighted running sums.
template <typename TRes>
inline VOID HistChannelStep(TRes* pRes, UINT32 c, UINT32 g, UINT64 binCount, FLOAT v, FLOAT gain, HistChannelRun& run)
{
    const FLOAT count = static_cast<FLOAT>(static_cast<INT64>(binCount));
    run.total += binCount;
    run.sum                   = FusedMultiplyAdd(count, v, run.sum);
    run.sumWB                 = FusedMultiplyAdd(count, v * gain, run.sumWB);
    pRes->groupedHist[c][g]   = binCount;
    pRes->histCDF[c][g]       = static_cast<FLOAT>(static_cast<INT64>(run.total));
    pRes->weightedCDF[c][g]   = run.sum;
    pRes->weightedCDFWB[c][g] = run.sumWB;
}

// Walks numRawBins raw bins of pData into channel c's groups of pRes and normalises the three running arrays by
// the pixel count. gain scales the value in the white-balanced sum. A null pData adds nothing. Returns the
// pixel count; 0 leaves the arrays unnormalised and the caller fails the frame.
template <typename TRes>
UINT64 AccumulateHistChannel(TRes* pRes, UINT32 c, const UINT32* pData, UINT32 numRawBins, FLOAT gain,
                             UINT32 chnlIndex)
{
    HistChannelRun run = {0, 0.0f, 0.0f};
    UINT32         g   = 0;
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
            HistChannelStep(pRes, c, g, pRes->groupedHist[c][g], pRes->valLUTs[g], gain, run);
            g++;
        }
    }
    const UINT64 total = run.total;
    if (0 == total)
    {
        return 0;
    }
    NormalizeHistArray(pRes->histCDF[c], pRes->groupedNumOfBins, total);
    NormalizeHistArray(pRes->weightedCDF[c], pRes->groupedNumOfBins, total);
    NormalizeHistArray(pRes->weightedCDFWB[c], pRes->groupedNumOfBins, total);
    return total;
}

// The same walk as AccumulateHistChannel for three channels at once, when each raw bin is its own group, every
// channel has data and none is empty (the caller checks these with HistChannelsInterleavable). The running sums
// of the channels are independent chains: walking them side by side, in registers, overlaps their latencies. The
// pixel counts are known up front, so each block of groups is normalised right after it is walked: the vector
// divisions then overlap the latency of the next block's chains. Per channel the operations and their order are
// those of the single-channel walk, so the results are the same bits.
template <typename TRes>
VOID AccumulateHistChannels3(TRes* pRes, const UINT32* const pData[3], const FLOAT gains[3], const UINT64 totals[3])
{
    constexpr UINT32    Block  = 16;
    HistChannelRun      run0   = {0, 0.0f, 0.0f};
    HistChannelRun      run1   = {0, 0.0f, 0.0f};
    HistChannelRun      run2   = {0, 0.0f, 0.0f};
    const UINT32* const pData0 = pData[0];
    const UINT32* const pData1 = pData[1];
    const UINT32* const pData2 = pData[2];
    const FLOAT         gain0  = gains[0];
    const FLOAT         gain1  = gains[1];
    const FLOAT         gain2  = gains[2];
    const UINT32        n      = pRes->groupedNumOfBins;
    for (UINT32 start = 0; start < n; start += Block)
    {
        const UINT32 end = ((n - start) < Block) ? n : (start + Block);
        for (UINT32 g = start; g < end; g++)
        {
            const FLOAT v = pRes->valLUTs[g];
            HistChannelStep(pRes, 0, g, pData0[g], v, gain0, run0);
            HistChannelStep(pRes, 1, g, pData1[g], v, gain1, run1);
            HistChannelStep(pRes, 2, g, pData2[g], v, gain2, run2);
        }
        for (UINT32 c = 0; c < 3; c++)
        {
            NormalizeHistRange(pRes->histCDF[c], start, end, totals[c]);
            NormalizeHistRange(pRes->weightedCDF[c], start, end, totals[c]);
            NormalizeHistRange(pRes->weightedCDFWB[c], start, end, totals[c]);
        }
    }
}

// True when the grouping maps raw bin i to group i for all numRawBins bins, and every channel has data and pixels;
// fills the channels' pixel counts.
template <typename TRes>
BOOL HistChannelsInterleavable(const TRes* pRes, const UINT32* const pData[3], UINT32 numRawBins, UINT64 totals[3])
{
    if ((numRawBins != pRes->groupedNumOfBins) || (numRawBins >= (sizeof(pRes->binLUTs) / sizeof(pRes->binLUTs[0]))))
    {
        return FALSE;
    }
    UINT32 identity = 1;
    for (UINT32 i = 0; i <= numRawBins; i++)
    {
        identity &= (static_cast<UINT32>(pRes->binLUTs[i]) == i) ? 1u : 0u;
    }
    if (0 == identity)
    {
        return FALSE;
    }
    for (UINT32 c = 0; c < 3; c++)
    {
        if (nullptr == pData[c])
        {
            return FALSE;
        }
        UINT64 total = 0;
        for (UINT32 i = 0; i < numRawBins; i++)
        {
            total += pData[c][i];
        }
        if (0 == total)
        {
            return FALSE;
        }
        totals[c] = total;
    }
    return TRUE;
}

// First index of each colour among the four channels of a histogram record, -1 where a colour is absent.
struct HistChannelIndices
{
    INT32 r;
    INT32 g;
    INT32 b;
    INT32 y;
};

// Bayer histograms count GR, GB and G as green; HDR3 histograms only G (acceptBayerGreens FALSE).
inline HistChannelIndices FindHistChannels(const StatsColorChannelType* pTypes, BOOL acceptBayerGreens)
{
    HistChannelIndices found = {-1, -1, -1, -1};
    for (INT32 i = 0; i < 4; i++)
    {
        const StatsColorChannelType type    = pTypes[i];
        const BOOL                  isGreen = (StatsColorChannelG == type) ||
                             ((TRUE == acceptBayerGreens) &&
                              ((StatsColorChannelGR == type) || (StatsColorChannelGB == type)));
        if ((StatsColorChannelY == type) && (found.y < 0))
        {
            found.y = i;
        }
        else if ((StatsColorChannelR == type) && (found.r < 0))
        {
            found.r = i;
        }
        else if ((TRUE == isGreen) && (found.g < 0))
        {
            found.g = i;
        }
        else if ((StatsColorChannelB == type) && (found.b < 0))
        {
            found.b = i;
        }
        AEC_LOG_VERBOSE("channel: %d ri: %d gi: %d bi: %d yi: %d i %d", type, found.r, found.g, found.b, found.y, i);
    }
    return found;
}

#endif // AEC_CORE_MODULES_MOD_MTR_HISTACCUMULATE_H
