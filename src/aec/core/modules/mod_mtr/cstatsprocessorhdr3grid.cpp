// Grid parse of a three-exposure in-sensor HDR frame: per-channel luma arrays, subsampled, 16 by 16 legacy grid.
#include <cstring>

#include "aec/core/modules/mod_mtr/clegacyygrid.h"
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"

AecResult CStatsProcessor::ProcessHDR3BGStats()
{
    const StatsBayerGrid* pGrid = &m_pInputStats->hdr3Stats.pHDR3ExposureStats->gridBayerStats;
    BGProcResult&         res   = m_ProcessedStats.m_BGRes;
    // The grid size is checked as on the main path, so the result tables and iterator stay in bounds.
    if (FALSE == CheckGridShape(pGrid))
    {
        return AecError;
    }
    if (pGrid->bitDepth > BGMaxBitDepth)
    {
        AEC_LOG_ERROR("BG stats bit depth %d exceeds the supported %d", pGrid->bitDepth, BGMaxBitDepth);
        return AecError;
    }
    if (FALSE == IdentifyBGStatsChannels(&res, pGrid))
    {
        AEC_LOG_ERROR("ERROR: missing BG stats channels!\n");
        return AecError;
    }
    const UINT32 h = pGrid->horizontalRegionCount;
    const UINT32 v = pGrid->verticalRegionCount;
    m_BGProc.lumaCalcScaler  = 1.0f / static_cast<FLOAT>(1u << (pGrid->bitDepth - 8));
    m_BGProc.SWSubsmplFactor = SelectSubsamplingFactor(h, v);

    // numProcessedRegions keeps growing from frame to frame in this mode.
    res.numBrightRegions = 0;
    res.numDarkRegions   = 0;
    res.numNormalRegions = 0;
    std::memset(res.YRegions, 0, sizeof(res.YRegions));
    std::memset(res.BGRegionsCalculated, 0, sizeof(res.BGRegionsCalculated));
    UpdateGridSize(&res, pGrid, TRUE);
    res.SWSubsmplFactor = m_BGProc.SWSubsmplFactor;

    CLegacyYGrid legacy(res.YRegions, BGLegacyGridDim, BGLegacyGridDim, h >> 4, v >> 4, h, v);
    BGStatsIteratorInternal it(&res, BGStatsIterationMode::Normal);
    while (FALSE != it.HasNext())
    {
        const UINT32 pos = it.NextInternal();
        if (AecSuccess == ProcessHDR3BGStatsRegion(pos))
        {
            const ParsedBGRegionType& region = res.BGRegions[pos];
            legacy.Add(pos % h, pos / h, region);
            CountRegion(region);
        }
    }
    // Ysat stays a sum in this mode.
    return (FALSE != legacy.Finish(FALSE)) ? AecSuccess : AecError;
}

AecResult CStatsProcessor::ProcessHDR3BGStatsRegion(UINT32 idx)
{
    BGProcResult&                    res    = m_ProcessedStats.m_BGRes;
    const UINT32                     maxIdx = m_pInputStats->bayerGrid.numValidRegions;
    const StatsHDR3ExposureDataType* pExp   = m_pInputStats->hdr3Stats.pHDR3ExposureStats;
    // The per-channel arrays hold one entry per region of the HDR3 grid, which bounds the index as well.
    if ((idx >= maxIdx) || (nullptr == pExp) || (idx >= res.numTotalRegions) || (idx >= BGMaxRegions))
    {
        AEC_LOG_ERROR("Invalid index being processed: statsIdx = %d, max = %d", idx, maxIdx);
        return AecError;
    }
    ParsedBGRegionType& rg = res.BGRegions[idx];
    rg.RGRatio             = -1.0f;
    rg.BGRatio             = -1.0f;
    UINT16* const* pData   = pExp->gridBayerStats.pGridData;
    const BOOL     onlyLuma = (BGProcUseCase::Y == res.procInfo.useCase) ? TRUE : FALSE;
    if ((nullptr == pData[0]) ||
        ((FALSE == onlyLuma) && ((nullptr == pData[1]) || (nullptr == pData[2]) || (nullptr == pData[3]))))
    {
        AEC_LOG_ERROR("Invalid channel Pointer");
        return AecError;
    }
    if (FALSE != res.BGRegionsCalculated[idx])
    {
        return AecError;
    }
    if (FALSE != onlyLuma)
    {
        rg.RGRatio = 1.0f;
        rg.BGRatio = 1.0f;
    }
    else if (0 != pData[2][idx])
    {
        // A zero green would make both ratios infinite; they stay unset instead.
        const FLOAT g = static_cast<FLOAT>(pData[2][idx]);
        rg.RGRatio    = static_cast<FLOAT>(pData[1][idx]) / g;
        rg.BGRatio    = static_cast<FLOAT>(pData[3][idx]) / g;
    }
    rg.rgnLuma                   = static_cast<FLOAT>(pData[0][idx]) * m_BGProc.lumaCalcScaler / m_DRCGainHDR3;
    rg.rgnSatRatio               = (rg.rgnLuma > 240.0f) ? 1.0f : 0.0f;
    res.BGRegionsCalculated[idx] = TRUE;
    return AecSuccess;
}
