// Grouped histogram, cumulative share and value-weighted running sums of one channel, for either result layout.
#ifndef AEC_CORE_MODULES_MOD_MTR_HISTACCUMULATE_H
#define AEC_CORE_MODULES_MOD_MTR_HISTACCUMULATE_H

#include "aec/core/modules/mod_mtr/statsprocrecords.h"
#include "platform/statslogger.h"

// Destinations of one channel's running arrays, and its group values.
struct HistCumulateOut
{
    UINT64*      pGrouped;
    const FLOAT* pValues;
    FLOAT*       pCDF;
    FLOAT*       pWeighted;
    FLOAT*       pWeightedWB;
};

// Copies the pixel counts of n groups to pGrouped and fills the three running arrays from them, normalised by
// their total: the cumulative share of pixels, and the cumulative sum of value times count over the total,
// without and with gain on the value. The running sums are doubles; with group values that are multiples of 0.5
// below 2^13, as the bin groupings make them, they are exact integers (in half units) up to 2^52, far beyond any
// frame. Each entry is rounded to float once: the share as the count converted to float over the total as float,
// the weighted sums as the exact sum times the reciprocal of the total (and the gain) in double.
// Returns the total; 0 leaves the running arrays as they were.
UINT64 HistCumulate(const UINT32* pCounts, UINT32 n, FLOAT gain, const HistCumulateOut& out);
UINT64 HistCumulate(const UINT64* pCounts, UINT32 n, FLOAT gain, const HistCumulateOut& out);

// True when raw bin i is group i for all numRawBins bins, the grouping with no bin granularity. Group starts rise
// strictly from 0, so numRawBins groups that close at numRawBins are the bins themselves.
template <typename TRes>
BOOL HistGroupsAreBins(const TRes* pRes, UINT32 numRawBins)
{
    return ((numRawBins == pRes->groupedNumOfBins) &&
            (numRawBins < (sizeof(pRes->binLUTs) / sizeof(pRes->binLUTs[0]))) && (0 == pRes->binLUTs[0]) &&
            (numRawBins == static_cast<UINT32>(pRes->binLUTs[numRawBins])))
               ? TRUE
               : FALSE;
}

// Walks numRawBins raw bins of pData into channel c's groups of pRes and fills the three running arrays from them.
// gain scales the value in the white-balanced sum. A null pData adds nothing. Returns the pixel count; 0 leaves
// the running arrays as they were and the caller fails the frame.
template <typename TRes>
UINT64 AccumulateHistChannel(TRes* pRes, UINT32 c, const UINT32* pData, UINT32 numRawBins, FLOAT gain,
                             UINT32 chnlIndex)
{
    const UINT32          maxGroups = sizeof(pRes->groupedHist[c]) / sizeof(pRes->groupedHist[c][0]);
    const UINT32          groups    = (pRes->groupedNumOfBins < maxGroups) ? pRes->groupedNumOfBins : maxGroups;
    const HistCumulateOut out       = {pRes->groupedHist[c], pRes->valLUTs, pRes->histCDF[c], pRes->weightedCDF[c],
                                 pRes->weightedCDFWB[c]};
    if ((nullptr != pData) && (groups == numRawBins) && (FALSE != HistGroupsAreBins(pRes, numRawBins)))
    {
        // Each raw bin is its own group.
        return HistCumulate(pData, groups, gain, out);
    }
    // Only completed groups count: raw bins that end inside a group leave it out.
    UINT32 g = 0;
    for (UINT32 r = 0; (r < numRawBins) && (g < groups); r++)
    {
        if (r == pRes->binLUTs[g])
        {
            out.pGrouped[g] = 0;
        }
        if (nullptr != pData)
        {
            out.pGrouped[g] += pData[r];
        }
        else
        {
            AEC_LOG_ERROR("Invalid BHIST data curRawBin:%d chnlIndices:%d", r, chnlIndex);
        }
        if (r == static_cast<UINT32>(pRes->binLUTs[g + 1]) - 1)
        {
            g++;
        }
    }
    return HistCumulate(out.pGrouped, g, gain, out);
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
