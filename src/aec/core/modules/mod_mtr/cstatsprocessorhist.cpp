// Bayer histogram paths of the statistics parser: channel and format identification, bin grouping, CDF and sums.
#include <cstring>

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "aec/core/modules/mod_mtr/histaccumulate.h"
#include "platform/statslogger.h"

BOOL CStatsProcessor::IdentifyBHistStatsChannels(BHistProcInfo* pInfo, const StatsBayerHist* pHist)
{
    const HistChannelIndices channels = FindHistChannels(pHist->histDataType, TRUE);
    const INT32              ri       = channels.r;
    const INT32              gi       = channels.g;
    const INT32              bi       = channels.b;
    const INT32              yi       = channels.y;

    BOOL found = TRUE;
    if ((ri >= 0) && (gi >= 0) && (bi >= 0))
    {
        pInfo->useCase                = BHistProcUseCase::RGB;
        pInfo->numOfChannels          = 3;
        m_BHistProc.channelIndices[0] = static_cast<UINT8>(ri);
        m_BHistProc.channelIndices[1] = static_cast<UINT8>(gi);
        m_BHistProc.channelIndices[2] = static_cast<UINT8>(bi);
        m_BHistProc.channelGains[0]   = m_wbState.redGain;
        m_BHistProc.channelGains[1]   = m_wbState.greenGain;
        m_BHistProc.channelGains[2]   = m_wbState.blueGain;
    }
    else
    {
        struct Candidate
        {
            INT32            index;
            BHistProcUseCase useCase;
            const CHAR*      pLog;
        };
        const Candidate candidates[4] = {
            {yi, BHistProcUseCase::Y, "BHIST Y Channel selected"},
            {ri, BHistProcUseCase::R, "BHIST R Channel selected"},
            {gi, BHistProcUseCase::G, "BHIST G Channel selected"},
            {bi, BHistProcUseCase::B, "BHIST B Channel selected"},
        };
        pInfo->useCase       = BHistProcUseCase::Invalid;
        pInfo->numOfChannels = 0;
        found                = FALSE;
        for (const Candidate& candidate : candidates)
        {
            if (candidate.index >= 0)
            {
                pInfo->useCase                = candidate.useCase;
                pInfo->numOfChannels          = 1;
                m_BHistProc.channelIndices[0] = static_cast<UINT8>(candidate.index);
                m_BHistProc.channelGains[0]   = 1.0f;
                AEC_LOG_VERBOSE("%s", candidate.pLog);
                found = TRUE;
                break;
            }
        }
    }

    pInfo->valueScaler = 1.0f;
    if (256 == pHist->binCount)
    {
        pInfo->ID                = HistIdentifier::HistIDHDRBHIST;
        pInfo->maxHistPixelValue = 255;
        AEC_LOG_VERBOSE("HDR BHIST histogram %d x %d, scaler: %f", pHist->binCount, pInfo->numOfChannels,
                        static_cast<double>(pInfo->valueScaler));
    }
    else if (1024 == pHist->binCount)
    {
        const BOOL even          = (1 == pHist->uniform) ? TRUE : FALSE;
        pInfo->ID                = even ? HistIdentifier::HistIDBHISTEven : HistIdentifier::HistIDBHISTUneven;
        pInfo->maxHistPixelValue = even ? 1023 : 4095;
        pInfo->valueScaler       = even ? 4.0f : 16.0f;
        AEC_LOG_VERBOSE("BHIST histogram %d x %d, ID (1==even 2==uneven): %d, scaler: %f", pHist->binCount,
                        pInfo->numOfChannels, static_cast<INT32>(pInfo->ID),
                        static_cast<double>(pInfo->valueScaler));
    }
    else
    {
        AEC_LOG_ERROR("Unexpected bin count: %d", pHist->binCount);
        pInfo->ID                = HistIdentifier::Invalid;
        pInfo->maxHistPixelValue = 0;
        // Without a known format the arrays cannot be read: queries must see an unprocessed histogram.
        pInfo->useCase       = BHistProcUseCase::Invalid;
        pInfo->numOfChannels = 0;
        found                = FALSE;
    }
    return found;
}

AecResult CStatsProcessor::UpdateBHistBinGrouping(BHistProcResult* pRes)
{
    AecResult result = AecSuccess;
    std::memset(pRes->binLUTs, 0, sizeof(pRes->binLUTs));
    std::memset(pRes->valLUTs, 0, sizeof(pRes->valLUTs));
    // The group tables hold one entry more than groups, so the groups stop at their capacity.
    if (pRes->numOfBins > BHistMaxGroups)
    {
        AEC_LOG_WARN("warning: histogram size %d exceeds code limitation %d", pRes->numOfBins, BHistMaxGroups);
        pRes->numOfBins = BHistMaxGroups;
        result          = AecError;
    }
    else if (0 == pRes->numOfBins)
    {
        AEC_LOG_WARN("warning: histogram size %d is too small", pRes->numOfBins);
        result = AecError;
    }
    // With a bin granularity of 0 (no grouping) each raw bin is its own group.
    for (UINT32 i = 0; i < pRes->numOfBins; i++)
    {
        pRes->binLUTs[i] = static_cast<UINT16>(i);
    }
    pRes->groupedNumOfBins              = pRes->numOfBins;
    pRes->binLUTs[pRes->groupedNumOfBins] = pRes->numOfBins;
    for (UINT32 i = 0; i < pRes->groupedNumOfBins; i++)
    {
        const INT32 b = pRes->binLUTs[i];
        if (HistIdentifier::HistIDBHISTUneven == pRes->procInfo.ID)
        {
            // Piecewise-linear companding of the hardware's uneven bins.
            pRes->valLUTs[i] = static_cast<FLOAT>((b <= 511) ? b : ((b <= 639) ? (4 * b - 1533) : (8 * b - 4089)));
        }
        else
        {
            pRes->valLUTs[i] = static_cast<FLOAT>(pRes->binLUTs[i] + pRes->binLUTs[i + 1]) * 0.5f;
        }
    }
    pRes->valLUTs[pRes->groupedNumOfBins] = static_cast<FLOAT>(pRes->procInfo.maxHistPixelValue + 1);
    return result;
}

AecResult CStatsProcessor::AccumulateBHist(const StatsBayerHist* pHist, BHistProcResult* pRes)
{
    const BOOL useGains = (BHistProcUseCase::RGB == pRes->procInfo.useCase) ? TRUE : FALSE;
    for (UINT32 c = 0; c < pRes->procInfo.numOfChannels; c++)
    {
        const UINT8  index = m_BHistProc.channelIndices[c];
        const FLOAT  gain  = useGains ? m_BHistProc.channelGains[c] : 1.0f;
        const UINT64 total = AccumulateHistChannel(pRes, c, pHist->pHistData[index], pRes->numOfBins, gain, index);
        if (0 == total)
        {
            AEC_LOG_ERROR("Empty histogram encountered!");
            return AecError;
        }
    }
    return AecSuccess;
}

AecResult CStatsProcessor::ProcessBHistStats()
{
    const StatsBayerHist* pHist = nullptr;
    switch (m_MultiExposureSensorMode)
    {
    case HDRDisabled: pHist = &m_pInputStats->bayerHist; break;
    case ISPHDR: pHist = &m_pInputStats->hdrBayerHist; break;
    case SensorHDR: return AecSuccess; // the in-sensor HDR path is in charge
    default:
        AEC_LOG_ERROR("unexpected sensor mode %d not parsing histogram", m_MultiExposureSensorMode);
        return AecError;
    }
    AEC_LOG_VERBOSE("selected histogram bin count %d", pHist->binCount);

    BHistProcResult& res = m_ProcessedStats.m_BHistRes;
    if (FALSE == IdentifyBHistStatsChannels(&res.procInfo, pHist))
    {
        if (0 == pHist->binCount)
        {
            AEC_LOG_WARN("binCount is Zero");
            return AecSuccess;
        }
        AEC_LOG_ERROR("ERROR: missing BHist channels (need RGB or Y)!\n");
        return AecError;
    }
    if ((pHist->binCount != res.numOfBins) || (pHist->uniform != res.isUniform))
    {
        AEC_LOG_INFO("update number of hist bins from %d to %d uniform from %d to %d", res.numOfBins,
                     pHist->binCount, res.isUniform, pHist->uniform);
        res.numOfBins = static_cast<UINT16>(pHist->binCount);
        res.isUniform = pHist->uniform;
        (void)UpdateBHistBinGrouping(&res);
    }
    res.isUniform = pHist->uniform;
    return AccumulateBHist(pHist, &res);
}

AecResult CStatsProcessor::ProcessExtraExposureHist(const StatsBayerHist* pHist, BHistProcResult* pRes)
{
    if (0 == pHist->channelCount)
    {
        // The frame has no such exposure.
        return AecSuccess;
    }
    if (FALSE == IdentifyBHistStatsChannels(&pRes->procInfo, pHist))
    {
        AEC_LOG_ERROR("ERROR: missing BHist channels (need RGB or Y)!\n");
        return AecError;
    }
    if (pHist->binCount != pRes->numOfBins)
    {
        AEC_LOG_INFO("about to update number of hist bins from %d to %d", pRes->numOfBins, pHist->binCount);
        pRes->numOfBins = static_cast<UINT16>(pHist->binCount);
        (void)UpdateBHistBinGrouping(pRes);
    }
    return AccumulateBHist(pHist, pRes);
}

AecResult CStatsProcessor::ProcessSHDRLEFStats()
{
    return ProcessExtraExposureHist(&m_pInputStats->hdrBayerHistLEF, &m_ProcessedStats.m_BHistLEFRes);
}

AecResult CStatsProcessor::ProcessSHDRMEFStats()
{
    return ProcessExtraExposureHist(&m_pInputStats->hdrBayerHistMEF, &m_ProcessedStats.m_BHistMEFRes);
}
