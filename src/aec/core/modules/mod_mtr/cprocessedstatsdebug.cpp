// Copy of the main grid and histogram results into the packed debug data record.
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"

VOID CStatsProcessor::CProcessedStats::FillDebugData(AECDebugData* pDebugData) const
{
    if (nullptr == pDebugData)
    {
        return;
    }
    static_assert(AECDebugDataMaxBGRegions == BGMaxRegions, "debug grid table matches the result");
    static_assert(AECDebugDataMaxYRegions == BGMaxLegacyYRegions, "debug legacy table matches the result");
    static_assert(AECDebugDataMaxBHistLUTEntries == BHistMaxLUTEntries, "debug LUTs match the result");
    static_assert((AECDebugDataMaxBHistChannels == BHistMaxChannels) && (AECDebugDataMaxBHistGroups == BHistMaxGroups),
                  "debug histogram tables match the result");

    AECDebugDataBGProcResult& bg = pDebugData->BGProcResult;
    bg.procInfo.useCase          = static_cast<UINT32>(m_BGRes.procInfo.useCase);
    bg.procInfo.numOfChannels    = m_BGRes.procInfo.numOfChannels;
    bg.numHorizontalRegions      = m_BGRes.numHorizontalRegions;
    bg.numVerticalRegions        = m_BGRes.numVerticalRegions;
    bg.numTotalRegions           = m_BGRes.numTotalRegions;
    bg.numBrightRegions          = m_BGRes.numBrightRegions;
    bg.numDarkRegions            = m_BGRes.numDarkRegions;
    bg.numNormalRegions          = m_BGRes.numNormalRegions;
    bg.numProcessedRegions       = m_BGRes.numProcessedRegions;
    bg.SWSubsmplFactor           = m_BGRes.SWSubsmplFactor;
    for (UINT32 i = 0; i < BGMaxRegions; i++)
    {
        const ParsedBGRegionType& src = m_BGRes.BGRegions[i];
        bg.BGRegionsCalculated[i]     = (FALSE != m_BGRes.BGRegionsCalculated[i]) ? 1 : 0;
        bg.BGRegions[i].xPos          = src.xPos;
        bg.BGRegions[i].yPos          = src.yPos;
        bg.BGRegions[i].rgnLuma       = src.rgnLuma;
        bg.BGRegions[i].rgnSatRatio   = src.rgnSatRatio;
        bg.BGRegions[i].RGRatio       = src.RGRatio;
        bg.BGRegions[i].BGRatio       = src.BGRatio;
    }
    for (UINT32 i = 0; i < BGMaxLegacyYRegions; i++)
    {
        bg.YRegions[i].Yval = m_BGRes.YRegions[i].Yval;
        bg.YRegions[i].Ysat = m_BGRes.YRegions[i].Ysat;
    }

    AECDebugDataBHistProcResult& hist = pDebugData->BHistResult;
    hist.procInfo.useCase             = static_cast<UINT32>(m_BHistRes.procInfo.useCase);
    hist.procInfo.numOfChannels       = m_BHistRes.procInfo.numOfChannels;
    hist.procInfo.ID                  = static_cast<UINT32>(m_BHistRes.procInfo.ID);
    hist.procInfo.maxHistPixelValue   = m_BHistRes.procInfo.maxHistPixelValue;
    hist.procInfo.valueScaler         = m_BHistRes.procInfo.valueScaler;
    hist.numOfBins                    = m_BHistRes.numOfBins;
    hist.groupedNumOfBins             = m_BHistRes.groupedNumOfBins;
    for (UINT32 i = 0; i < BHistMaxLUTEntries; i++)
    {
        hist.binLUTs[i] = m_BHistRes.binLUTs[i];
        hist.valLUTs[i] = m_BHistRes.valLUTs[i];
    }
    for (UINT32 c = 0; c < BHistMaxChannels; c++)
    {
        for (UINT32 g = 0; g < BHistMaxGroups; g++)
        {
            hist.groupedHist[c][g]   = m_BHistRes.groupedHist[c][g];
            hist.histCDF[c][g]       = m_BHistRes.histCDF[c][g];
            hist.weightedCDF[c][g]   = m_BHistRes.weightedCDF[c][g];
            hist.weightedCDFWB[c][g] = m_BHistRes.weightedCDFWB[c][g];
        }
    }
    hist.isUniform = (FALSE != m_BHistRes.isUniform) ? 1 : 0;
}
