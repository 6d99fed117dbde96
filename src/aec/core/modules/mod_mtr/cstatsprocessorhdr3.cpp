// Three-exposure in-sensor HDR histograms: split and merged channel identification, log-to-linear spread, CDF.
#include <cstring>

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "aec/core/modules/mod_mtr/histaccumulate.h"
#include "platform/statslogger.h"

namespace
{
constexpr UINT32 HDR3LogBinCount    = 16;
constexpr UINT32 HDR3LinearBinCount = 256;

// Spreads a logarithmic 16-bin histogram over 256 linear positions. Bins 8 to 15 cover the ranges between the
// boundaries below, evenly; bins 8 to 10 overwrite positions 1 to 7 that bins 1 to 7 wrote first.
VOID SpreadLogHistogram(const UINT32* pLog, UINT32* pLinear)
{
    static const UINT32 boundary[9] = {0, 1, 3, 7, 15, 31, 63, 127, 255};
    std::memset(pLinear, 0, HDR3LinearBinCount * sizeof(UINT32));
    for (UINT32 i = 0; i < 8; i++)
    {
        pLinear[i] += pLog[i];
    }
    for (UINT32 k = 0; k < 8; k++)
    {
        const UINT32 share = pLog[8 + k] / (boundary[k + 1] - boundary[k]);
        for (UINT32 pos = boundary[k] + 1; pos <= boundary[k + 1]; pos++)
        {
            pLinear[pos] = share;
        }
    }
}
} // namespace

BOOL CStatsProcessor::IdentifyHDR3HistStatsChannels(const StatsHDR3ExposureHistStats* pHist)
{
    const HistChannelIndices channels = FindHistChannels(pHist->histDataType, FALSE);
    const INT32              ri       = channels.r;
    const INT32              gi       = channels.g;
    const INT32              bi       = channels.b;
    const INT32              yi       = channels.y;
    struct Candidate
    {
        INT32               index;
        HDR3HistProcUseCase useCase;
        const CHAR*         pLog;
    };
    const Candidate candidates[4] = {
        {yi, HDR3HistProcUseCase::Y, "HDR3HIST Y Channel selected"},
        {ri, HDR3HistProcUseCase::R, "HDR3HIST R Channel selected"},
        {gi, HDR3HistProcUseCase::G, "HDR3HIST G Channel selected"},
        {bi, HDR3HistProcUseCase::B, "HDR3HIST B Channel selected"},
    };
    HDR3HistProcInfo& info = m_ProcessedStats.m_HDR3HistRes.procInfo;
    for (const Candidate& candidate : candidates)
    {
        if (candidate.index >= 0)
        {
            info.useCase                     = candidate.useCase;
            info.numOfChannels               = 1;
            m_HDR3HistProc.channelIndices[0] = static_cast<UINT8>(candidate.index);
            m_HDR3HistProc.channelGains[0]   = 1.0f;
            AEC_LOG_VERBOSE("%s", candidate.pLog);
            return TRUE;
        }
    }
    info.useCase       = HDR3HistProcUseCase::Invalid;
    info.numOfChannels = 0;
    return FALSE;
}

BOOL CStatsProcessor::UtilIdentifyHDR3Histogram(const StatsHDR3ExposureHistStats* pHist, UINT32 channelCount)
{
    HDR3HistProcInfo& info = m_ProcessedStats.m_HDR3HistRes.procInfo;
    info.valueScaler       = 1.0f;
    info.totalHistCount    = pHist->totalHistCount;
    if (HDR3LinearBinCount == pHist->binCount)
    {
        info.maxHistPixelValue = 255;
        info.mergedBinCount    = 256;
        info.splitBinCount     = 256;
        info.histWeightUnit    = 1;
        AEC_LOG_VERBOSE("Linear HIST histogram %d x %d,scaler: %f", pHist->binCount, channelCount,
                        static_cast<double>(info.valueScaler));
        return TRUE;
    }
    if (HDR3LogBinCount == pHist->binCount)
    {
        info.maxHistPixelValue = 256;
        info.mergedBinCount    = 256;
        info.splitBinCount     = 128;
        info.histWeightUnit    = 2;
        AEC_LOG_VERBOSE("Log histogram  %d x %d, scaler: %f", pHist->binCount, channelCount,
                        static_cast<double>(info.valueScaler));
        return TRUE;
    }
    AEC_LOG_ERROR("Unexpected bin count: %d", pHist->binCount);
    AEC_LOG_ERROR("StatsChannel is not Valid!");
    return FALSE;
}

AecResult CStatsProcessor::UpdateHDR3HistBinGrouping()
{
    HDR3HistProcResult& res    = m_ProcessedStats.m_HDR3HistRes;
    AecResult           result = AecSuccess;
    std::memset(res.binLUTs, 0, sizeof(res.binLUTs));
    std::memset(res.valLUTs, 0, sizeof(res.valLUTs));
    if (res.numOfBins > HDR3HistMaxLUTEntries)
    {
        AEC_LOG_WARN("warning: histogram size %d exceeds code limitation %d", res.numOfBins, HDR3HistMaxLUTEntries);
        res.numOfBins = HDR3HistMaxLUTEntries;
        result        = AecError;
    }
    else if (0 == res.numOfBins)
    {
        AEC_LOG_WARN("warning: histogram size %d is too small", res.numOfBins);
        result = AecError;
    }
    // A bin granularity of 0 makes every bin its own group; the tables hold at most 256 groups.
    const UINT32 mergedBins =
        (res.procInfo.mergedBinCount < HDR3HistMaxGroups) ? res.procInfo.mergedBinCount : HDR3HistMaxGroups;
    UINT32 g = 0;
    for (UINT32 i = 0; i < mergedBins; i++)
    {
        res.binLUTs[g++] = i;
    }
    res.groupedNumOfBins = g;
    res.binLUTs[g]       = mergedBins;
    for (UINT32 i = 0; i < g; i++)
    {
        res.valLUTs[i] = static_cast<FLOAT>(res.binLUTs[i]);
    }
    res.valLUTs[g] = static_cast<FLOAT>(res.procInfo.maxHistPixelValue + 1);
    return result;
}

AecResult CStatsProcessor::ProcessHDR3Stats()
{
    if (!((SensorHDR == m_MultiExposureSensorMode) && (1 != m_pTuning->extInsensorHDR.enableInsensorHDR)))
    {
        return AecSuccess;
    }
    if ((nullptr == m_pInputStats) || (nullptr == m_pInputStats->hdr3Stats.pHDR3ExposureStats))
    {
        AEC_LOG_ERROR("HDR3 statistics pointer is null!");
        return AecError;
    }
    const StatsHDR3ExposureDataType* pExp   = m_pInputStats->hdr3Stats.pHDR3ExposureStats;
    const UINT32                     config = LumaCalculationConfig();
    BOOL                             split  = (HDR3ExposureType1 == m_HDR3Type) ? TRUE : FALSE;
    if (HDR3ExposureType2 == m_HDR3Type)
    {
        if (aecSensorConfig::LumaCalculationTypeGridPrio == config)
        {
            const AecResult gridResult = ProcessHDR3BGStats();
            if (AecSuccess != gridResult)
            {
                return gridResult;
            }
        }
        split = (aecSensorConfig::LumaCalculationTypeHistPrio == config) ? TRUE : FALSE;
    }
    if (FALSE != split)
    {
        if (FALSE == IdentifyHDR3HistStatsChannels(&pExp->splitBayerHist))
        {
            AEC_LOG_ERROR("ERROR: missing splitHist channels (need Y)!\n");
            return AecError;
        }
        if (0 == pExp->splitBayerHist.binCount)
        {
            AEC_LOG_ERROR("no bins in split histogram!");
            return AecError;
        }
    }

    const StatsHDR3ExposureHistStats* pMerged = &pExp->mergedBayerHist;
    if (FALSE == IdentifyHDR3HistStatsChannels(pMerged))
    {
        AEC_LOG_ERROR("ERROR: missing MergedHist channels (need Y)!\n");
        return AecError;
    }
    if (0 == pMerged->binCount)
    {
        AEC_LOG_ERROR("no bins in merged histogram!");
        return AecError;
    }
    if (FALSE == UtilIdentifyHDR3Histogram(pMerged, pExp->mergedHistchannelCount))
    {
        return AecError;
    }
    HDR3HistProcResult& res = m_ProcessedStats.m_HDR3HistRes;
    if (pMerged->binCount != res.numOfBins)
    {
        AEC_LOG_INFO("about to update number of hist bins from %d to %d", res.numOfBins, pMerged->binCount);
        res.numOfBins = static_cast<UINT16>(pMerged->binCount);
        (void)UpdateHDR3HistBinGrouping();
    }
    if (0 == pExp->mergedHistchannelCount)
    {
        return AecSuccess;
    }
    // The host may claim more channels than the four the record holds.
    const UINT32 channelCount =
        (pExp->mergedHistchannelCount < HDR3HistMaxChannels) ? pExp->mergedHistchannelCount : HDR3HistMaxChannels;
    const UINT32 mergedBins = (res.procInfo.mergedBinCount < HDR3HistMaxGroups) ? res.procInfo.mergedBinCount
                                                                                : HDR3HistMaxGroups;
    if (0 == mergedBins)
    {
        AEC_LOG_ERROR("Empty histogram encountered!");
        return AecError;
    }
    const BOOL logHist  = (HDR3LogBinCount == pMerged->binCount) ? TRUE : FALSE;
    const BOOL useGains = (HDR3HistProcUseCase::RGB == res.procInfo.useCase) ? TRUE : FALSE;
    UINT32     linear[HDR3HistMaxChannels][HDR3LinearBinCount];
    for (UINT32 c = 0; c < channelCount; c++)
    {
        const UINT8   index = m_HDR3HistProc.channelIndices[c] % HDR3HistMaxChannels;
        const UINT32* pData = pMerged->pHistData[index];
        if ((FALSE != logHist) && (nullptr != pData))
        {
            SpreadLogHistogram(pData, linear[c]);
            pData = linear[c];
        }
        const FLOAT gain = useGains ? m_HDR3HistProc.channelGains[c] : 1.0f;
        if (0 == AccumulateHistChannel(&res, c, pData, mergedBins, gain, index))
        {
            AEC_LOG_ERROR("Empty histogram encountered!");
            return AecError;
        }
    }
    return AecSuccess;
}
