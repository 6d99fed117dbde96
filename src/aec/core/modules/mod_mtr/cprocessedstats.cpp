// Processed statistics view: accessors, raw lookups, percentile queries and percentile-range means.
#include <cmath>
#include <cstring>
#include <new>

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"

namespace
{
constexpr FLOAT StatsQueryError = -1.0f;

// The guards common to all histogram queries.
template <typename TInfo, typename TUseCase>
BOOL HistQueryValid(const TInfo& info, TUseCase invalid, UINT8 chnlIdx)
{
    if (invalid == info.useCase)
    {
        AEC_LOG_WARN("BHist buffer is not processed properly! ");
        return FALSE;
    }
    if (chnlIdx >= info.numOfChannels)
    {
        AEC_LOG_WARN("Queried channel index (%d) is out of the total number of processed channels %d!", chnlIdx,
                     info.numOfChannels);
        return FALSE;
    }
    return TRUE;
}

// Mean value of a percentile range from the cumulative share and the running value sum: two searches, no loop.
template <typename TRes>
FLOAT AvgForPctRange(const TRes& res, UINT8 chnlIdx, FLOAT startPct, FLOAT endPct, BOOL bIsWBCompensated)
{
    if ((startPct < 0.0f) || (startPct > 1.0f) || (endPct < 0.0f) || (endPct > 1.0f))
    {
        AEC_LOG_WARN("Either startPct (%f) or endPct (%f) values are invalid (needs to be within [0, 1])!",
                     static_cast<double>(startPct), static_cast<double>(endPct));
        return StatsQueryError;
    }
    if (startPct >= endPct)
    {
        AEC_LOG_WARN("startPct (%f) needs to be smaller than endPct(%f)!", static_cast<double>(startPct),
                     static_cast<double>(endPct));
        return StatsQueryError;
    }
    const FLOAT* pW     = (FALSE != bIsWBCompensated) ? res.weightedCDFWB[chnlIdx] : res.weightedCDF[chnlIdx];
    const UINT16 n      = static_cast<UINT16>(res.groupedNumOfBins);
    const FLOAT  pct[2] = {startPct, endPct};
    FLOAT        w[2];
    for (UINT32 i = 0; i < 2; i++)
    {
        UINT16 bin      = 0;
        FLOAT  fraction = 0.0f;
        CStatsProcessor::CProcessedStats::GetHistPercentileInDetail(pct[i], res.histCDF[chnlIdx], n, &bin,
                                                                    &fraction);
        const FLOAT prev = (0 == bin) ? 0.0f : pW[bin - 1];
        w[i]             = prev + fraction * (pW[bin] - prev);
    }
    return (w[1] - w[0]) / (endPct - startPct) / res.procInfo.valueScaler;
}
} // namespace

VOID CStatsProcessor::CProcessedStats::Initialize()
{
    std::memset(&m_BGRes, 0, sizeof(m_BGRes));
    std::memset(&m_BGLEFRes, 0, sizeof(m_BGLEFRes));
    std::memset(&m_BGMEFRes, 0, sizeof(m_BGMEFRes));
    std::memset(&m_BHistRes, 0, sizeof(m_BHistRes));
    std::memset(&m_BHistLEFRes, 0, sizeof(m_BHistLEFRes));
    std::memset(&m_BHistMEFRes, 0, sizeof(m_BHistMEFRes));
    std::memset(&m_HDR3HistRes, 0, sizeof(m_HDR3HistRes));
    m_BGRes.SWSubsmplFactor    = 1;
    m_BGLEFRes.SWSubsmplFactor = 1;
    m_BGMEFRes.SWSubsmplFactor = 1;
}

IProcessedStats* CStatsProcessor::CProcessedStats::Clone() const
{
    CProcessedStats* pCopy = new (std::nothrow) CProcessedStats(*this);
    if (nullptr == pCopy)
    {
        AEC_LOG_ERROR("Out of memory cloning the processed statistics");
    }
    return pCopy;
}

BGStatsIterator CStatsProcessor::CProcessedStats::GetBGStatsIterator(BGStatsIterationMode mode) const
{
    return BGStatsIterator(&m_BGRes, mode);
}

BGStatsIterator CStatsProcessor::CProcessedStats::GetBGStatsIterator(BGStatsIterationMode mode, FLOAT ULx, FLOAT ULy,
                                                                     FLOAT LRx, FLOAT LRy) const
{
    return BGStatsIterator(&m_BGRes, mode, ULx, ULy, LRx, LRy);
}

FLOAT CStatsProcessor::CProcessedStats::RegionRatio(UINT32 count) const
{
    // No region parsed yet: no share either, instead of a division by zero.
    return (0 == m_BGRes.numProcessedRegions)
               ? 0.0f
               : static_cast<FLOAT>(count) / static_cast<FLOAT>(m_BGRes.numProcessedRegions);
}

FLOAT CStatsProcessor::CProcessedStats::GetBrightRegionRatio() const
{
    return RegionRatio(m_BGRes.numBrightRegions);
}

FLOAT CStatsProcessor::CProcessedStats::GetDarkRegionRatio() const
{
    return RegionRatio(m_BGRes.numDarkRegions);
}

FLOAT CStatsProcessor::CProcessedStats::GetNormalRegionRatio() const
{
    return RegionRatio(m_BGRes.numNormalRegions);
}

const ParsedLegacyYRegionType* CStatsProcessor::CProcessedStats::GetLegacyYRegionStats() const
{
    return m_BGRes.YRegions;
}

const ParsedLegacyYRegionType* CStatsProcessor::CProcessedStats::GetLegacyYRegionStats(INT& size) const
{
    const UINT32 regions = m_BGRes.numHorizontalRegions * m_BGRes.numVerticalRegions;
    size                 = static_cast<INT>((regions < BGMaxLegacyYRegions) ? regions : BGMaxLegacyYRegions);
    return m_BGRes.YRegions;
}

BHistProcInfo CStatsProcessor::CProcessedStats::GetBHistProcInfo() const
{
    return m_BHistRes.procInfo;
}

HDR3HistProcInfo CStatsProcessor::CProcessedStats::GetHDR3HistProcInfo() const
{
    return m_HDR3HistRes.procInfo;
}

VOID CStatsProcessor::CProcessedStats::GetHistPercentileInDetail(FLOAT percentile, const FLOAT* pCdf, UINT16 numBins,
                                                                 UINT16* pBin, FLOAT* pFraction)
{
    if (0 == numBins)
    {
        *pBin      = 0;
        *pFraction = 0.0f;
        return;
    }
    if (pCdf[0] > percentile)
    {
        *pBin      = 0;
        *pFraction = (pCdf[0] > 0.0f) ? (((percentile > 0.0f) ? percentile : 0.0f) / pCdf[0]) : 0.0f;
        return;
    }
    if (percentile > 1.0f)
    {
        *pBin      = static_cast<UINT16>(numBins - 1);
        *pFraction = 1.0f;
        return;
    }
    INT32 lo    = 0;
    INT32 hi    = numBins - 1;
    INT32 limit = numBins - 2;
    while (lo < limit)
    {
        const INT32 mid = (lo + hi) / 2;
        if (percentile <= pCdf[mid])
        {
            hi    = mid;
            limit = mid - 1;
        }
        else
        {
            lo = mid;
            if (mid >= limit)
            {
                break;
            }
        }
    }
    const FLOAT d = pCdf[hi] - pCdf[lo];
    *pBin         = static_cast<UINT16>(hi);
    *pFraction    = (d > 0.0f) ? ((percentile - pCdf[lo]) / d) : 0.0f;
}

FLOAT CStatsProcessor::CProcessedStats::GetBHistPercentile2Value(UINT8 chnlIdx, FLOAT pct) const
{
    if (FALSE == HistQueryValid(m_BHistRes.procInfo, BHistProcUseCase::Invalid, chnlIdx))
    {
        return StatsQueryError;
    }
    UINT16 bin      = 0;
    FLOAT  fraction = 0.0f;
    GetHistPercentileInDetail(pct, m_BHistRes.histCDF[chnlIdx], m_BHistRes.groupedNumOfBins, &bin, &fraction);
    const FLOAT lowVal  = m_BHistRes.valLUTs[m_BHistRes.binLUTs[bin]];
    const FLOAT highVal = m_BHistRes.valLUTs[m_BHistRes.binLUTs[bin + 1]];
    return (lowVal + (highVal - lowVal) * fraction) / m_BHistRes.procInfo.valueScaler;
}

FLOAT CStatsProcessor::CProcessedStats::Value2Percentile(const BHistProcResult& res, UINT8 chnlIdx,
                                                         FLOAT scaledValue) const
{
    // Converting a negative, NaN or huge value to UINT16 would be undefined: the target is clamped first.
    FLOAT ceilValue = std::ceil(scaledValue);
    ceilValue       = (ceilValue > 0.0f) ? ((ceilValue < 65535.0f) ? ceilValue : 65535.0f) : 0.0f;
    const FLOAT  t  = static_cast<FLOAT>(static_cast<UINT16>(ceilValue));
    const UINT32 n  = res.groupedNumOfBins;
    if (n < 2)
    {
        return StatsQueryError;
    }
    UINT32 i = n - 1;
    // A linear walk down from the top.
    if ((res.valLUTs[n - 1] >= t) && (i > 1))
    {
        i = n - 2;
        while ((res.valLUTs[i] >= t) && (i > 1))
        {
            i--;
        }
    }
    const UINT32 b  = res.binLUTs[i];
    const FLOAT  c0 = (0 == b) ? 0.0f : res.histCDF[chnlIdx][b - 1];
    const FLOAT  c1 = res.histCDF[chnlIdx][b];
    return c0 + (c1 - c0) * (scaledValue - static_cast<FLOAT>(res.binLUTs[b])) /
                    static_cast<FLOAT>(res.binLUTs[b + 1] - res.binLUTs[b]);
}

FLOAT CStatsProcessor::CProcessedStats::GetBHistValue2Percentile(UINT8 chnlIdx, FLOAT value) const
{
    if (FALSE == HistQueryValid(m_BHistRes.procInfo, BHistProcUseCase::Invalid, chnlIdx))
    {
        return StatsQueryError;
    }
    return Value2Percentile(m_BHistRes, chnlIdx, value * m_BHistRes.procInfo.valueScaler);
}

FLOAT CStatsProcessor::CProcessedStats::GetBHistLEFValue2Percentile(UINT8 chnlIdx, FLOAT value) const
{
    if (FALSE == HistQueryValid(m_BHistLEFRes.procInfo, BHistProcUseCase::Invalid, chnlIdx))
    {
        return StatsQueryError;
    }
    return Value2Percentile(m_BHistLEFRes, chnlIdx, value);
}

FLOAT CStatsProcessor::CProcessedStats::GetBHistMEFValue2Percentile(UINT8 chnlIdx, FLOAT value) const
{
    if (FALSE == HistQueryValid(m_BHistMEFRes.procInfo, BHistProcUseCase::Invalid, chnlIdx))
    {
        return StatsQueryError;
    }
    return Value2Percentile(m_BHistMEFRes, chnlIdx, value);
}

FLOAT CStatsProcessor::CProcessedStats::GetBHistAvgForPctRange(UINT8 chnlIdx, FLOAT startPct, FLOAT endPct,
                                                               BOOL bIsWBCompensated) const
{
    if (FALSE == HistQueryValid(m_BHistRes.procInfo, BHistProcUseCase::Invalid, chnlIdx))
    {
        return StatsQueryError;
    }
    return AvgForPctRange(m_BHistRes, chnlIdx, startPct, endPct, bIsWBCompensated);
}

FLOAT CStatsProcessor::CProcessedStats::GetmergeHistAvgForPctRange(UINT8 chnlIdx, FLOAT startPct, FLOAT endPct,
                                                                   BOOL bIsWBCompensated) const
{
    if (FALSE == HistQueryValid(m_HDR3HistRes.procInfo, HDR3HistProcUseCase::Invalid, chnlIdx))
    {
        return StatsQueryError;
    }
    return AvgForPctRange(m_HDR3HistRes, chnlIdx, startPct, endPct, bIsWBCompensated);
}

FLOAT CStatsProcessor::CProcessedStats::RawHist(const BHistProcResult& res, UINT8 chnl, UINT16 bin) const
{
    if (FALSE == HistQueryValid(res.procInfo, BHistProcUseCase::Invalid, chnl))
    {
        return StatsQueryError;
    }
    if (bin >= res.groupedNumOfBins)
    {
        AEC_LOG_WARN("Queried hist index (%d) is out of the total number of processed hist bins %d!", bin,
                     res.groupedNumOfBins);
        return StatsQueryError;
    }
    return static_cast<FLOAT>(res.groupedHist[chnl][bin]);
}

FLOAT CStatsProcessor::CProcessedStats::GetRawSHDRSefHist(UINT8 chnl, UINT16 bin) const
{
    return RawHist(m_BHistRes, chnl, bin);
}

FLOAT CStatsProcessor::CProcessedStats::GetRawSHDRLefHist(UINT8 chnl, UINT16 bin) const
{
    return RawHist(m_BHistLEFRes, chnl, bin);
}

FLOAT CStatsProcessor::CProcessedStats::GetRawSHDRMefHist(UINT8 chnl, UINT16 bin) const
{
    return RawHist(m_BHistMEFRes, chnl, bin);
}

FLOAT CStatsProcessor::CProcessedStats::RawGridLuma(const BGProcResult& res, UINT16 idx,
                                                    const CHAR* pNotProcessedLog) const
{
    if (BGProcUseCase::Invalid == res.procInfo.useCase)
    {
        AEC_LOG_WARN("%s", pNotProcessedLog);
        return StatsQueryError;
    }
    if ((idx >= res.numTotalRegions) || (idx >= BGMaxRegions))
    {
        AEC_LOG_WARN("index is bigger than or equal to total BG region %d", res.numTotalRegions);
        return StatsQueryError;
    }
    if (FALSE == res.BGRegionsCalculated[idx])
    {
        AEC_LOG_WARN("Did not process stat[%d]", idx);
        return StatsQueryError;
    }
    return res.BGRegions[idx].rgnLuma;
}

FLOAT CStatsProcessor::CProcessedStats::GetRawSHDRLEFBGstats(UINT16 idx) const
{
    return RawGridLuma(m_BGLEFRes, idx, "LEF BG stats buffer is not processed properly! ");
}

FLOAT CStatsProcessor::CProcessedStats::GetRawSHDRSEFBGstats(UINT16 idx) const
{
    return RawGridLuma(m_BGRes, idx, "SEF BG stats buffer is not processed properly! ");
}

FLOAT CStatsProcessor::CProcessedStats::GetRawSHDRMEFBGstats(UINT16 idx) const
{
    return RawGridLuma(m_BGMEFRes, idx, "LEF BG stats buffer is not processed properly! ");
}
