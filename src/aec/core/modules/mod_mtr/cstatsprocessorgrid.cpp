// Bayer grid path of the statistics parser: checks, per-frame parameters, region walk, classification and legacy grid.
#include <cstring>

#include "aec/core/modules/mod_mtr/clegacyygrid.h"
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"

namespace
{
// The classification of CStatsProcessor::ClassifyRegion without branches, for the frame pass: bright is tested
// first and dark only for the rest; normal is what remains of the parsed regions (a NaN luma included).
inline VOID CountBrightOrDark(FLOAT luma, UINT32* pBright, UINT32* pDark)
{
    const UINT32 isBright = (luma >= CStatsProcessor::YThresBrightStats) ? 1u : 0u;
    *pBright += isBright;
    *pDark += (1u - isBright) & ((luma <= CStatsProcessor::YThresDarkStats) ? 1u : 0u);
}
} // namespace

BOOL CStatsProcessor::CheckGridShape(const StatsBayerGrid* pGrid) const
{
    const UINT32 h = pGrid->horizontalRegionCount;
    const UINT32 v = pGrid->verticalRegionCount;
    // The product is checked in 64 bits so that huge counts cannot wrap into the valid range.
    if ((0 == h) || (0 == v) || ((static_cast<UINT64>(h) * v) > BGMaxRegions))
    {
        AEC_LOG_ERROR("Input BG stats grid has invalid sizes (%d, %d)!", h, v);
        return FALSE;
    }
    if (pGrid->bitDepth < 8)
    {
        AEC_LOG_ERROR("Input Bit Width less than consume bit width! %d expecting max %d", pGrid->bitDepth, 8);
        return FALSE;
    }
    return TRUE;
}

BOOL CStatsProcessor::CheckGridConsistency(const StatsBayerGrid* pGrid, BOOL requireRegions) const
{
    const UINT32 regions = pGrid->horizontalRegionCount * pGrid->verticalRegionCount;
    if (pGrid->bitDepth > BGMaxBitDepth)
    {
        AEC_LOG_ERROR("BG stats bit depth %d exceeds the supported %d", pGrid->bitDepth, BGMaxBitDepth);
        return FALSE;
    }
    if ((pGrid->totalRegionCount > regions) || (pGrid->numValidRegions > regions))
    {
        AEC_LOG_ERROR("BG stats region counts (total %u, valid %u) exceed the grid of %u regions",
                      pGrid->totalRegionCount, pGrid->numValidRegions, regions);
        return FALSE;
    }
    if ((FALSE != requireRegions) && (0 == pGrid->numValidRegions))
    {
        AEC_LOG_ERROR("BG stats carry no valid region");
        return FALSE;
    }
    if ((0 != pGrid->numValidRegions) && (nullptr == pGrid->m_pChannelData))
    {
        AEC_LOG_ERROR("BG stats channel data pointer is null");
        return FALSE;
    }
    if ((0 == pGrid->regionWidth) || (0 == pGrid->regionHeight))
    {
        AEC_LOG_ERROR("BG stats region size (%u x %u) is empty", pGrid->regionWidth, pGrid->regionHeight);
        return FALSE;
    }
    return TRUE;
}

BOOL CStatsProcessor::IdentifyBGStatsChannels(BGProcResult* pRes, const StatsBayerGrid* pGrid) const
{
    if (nullptr == pGrid)
    {
        pRes->procInfo.useCase = BGProcUseCase::Invalid;
        return FALSE;
    }
    if (0 != pGrid->flags.onlyY)
    {
        pRes->procInfo.useCase = BGProcUseCase::Y;
    }
    else
    {
        pRes->procInfo.useCase = (0 != pGrid->flags.usesY) ? BGProcUseCase::RGBY : BGProcUseCase::RGGB;
    }
    return TRUE;
}

VOID CStatsProcessor::SetupBGProcParam(BGProcParam* pParam, const StatsBayerGrid* pGrid, BGProcUseCase useCase) const
{
    pParam->lumaCalcScaler   = 1.0f / static_cast<FLOAT>(1u << (pGrid->bitDepth - 8));
    pParam->pixPerRgnAndChnl = static_cast<UINT64>(pGrid->regionWidth) * pGrid->regionHeight;
    if (BGProcUseCase::Y != useCase)
    {
        pParam->pixPerRgnAndChnl /= BayerChannelNum;
    }
    pParam->minNonSatCnt = static_cast<UINT64>(static_cast<FLOAT>(pParam->pixPerRgnAndChnl) * minNonSatPixelPct);
}

VOID CStatsProcessor::CalculateLumaWeight()
{
    const auto& lumaWeight = m_pTuning->pCore->mtrLumaCalc.lumaWeight;
    FLOAT       weights[3] = {lumaWeight.weight[0], lumaWeight.weight[1], lumaWeight.weight[2]};
    if ((0 != lumaWeight.enableColorAndSensorComp) && (0 != m_wbState.isAuto))
    {
        const FLOAT gains[3] = {m_wbState.redGain, m_wbState.greenGain, m_wbState.blueGain};
        if (!((lumaWeight.refGain[0] > 0.0f) && (lumaWeight.refGain[1] > 0.0f) && (lumaWeight.refGain[2] > 0.0f)))
        {
            AEC_LOG_WARN("Tuned reference gain for luma weight calculation is invalid (non-positive)! Using default "
                         "luma weight... ");
        }
        else if (!((gains[0] > 0.0f) && (gains[1] > 0.0f) && (gains[2] > 0.0f)))
        {
            AEC_LOG_WARN("Invalid AWB gain input (%f, %f, %f)! Using default luma weight... ",
                         static_cast<double>(gains[0]), static_cast<double>(gains[1]),
                         static_cast<double>(gains[2]));
        }
        else
        {
            for (UINT32 i = 0; i < 3; i++)
            {
                weights[i] = gains[i] * lumaWeight.weight[i] / lumaWeight.refGain[i];
            }
        }
    }
    // The middle exposure's weights are left alone on purpose.
    m_BGProc.RWeight    = weights[0];
    m_BGProc.GWeight    = weights[1];
    m_BGProc.BWeight    = weights[2];
    m_BGProcLEF.RWeight = weights[0];
    m_BGProcLEF.GWeight = weights[1];
    m_BGProcLEF.BWeight = weights[2];
}

UINT8 CStatsProcessor::SelectSubsamplingFactor(UINT32 h, UINT32 v) const
{
    UINT8 factor = 1;
    switch (m_pTuning->pCore->mtrLumaCalc.indexCalc.bayerGridSubsmplSelect)
    {
    case aecMetering::SW2: factor = 2; break;
    case aecMetering::SW4: factor = 4; break;
    default: factor = 1; break;
    }
    const UINT32 minDim = (h < v) ? h : v;
    if (minDim < 32)
    {
        factor = 1;
        AEC_LOG_VERBOSE("forced sumbasmpling factor to 1 hrz %d vrt %d", h, v);
    }
    else if (minDim < 48)
    {
        factor = (factor > 2) ? 2 : factor;
        AEC_LOG_VERBOSE("forced sumbasmpling factor to %d hrz %d vrt %d", factor, h, v);
    }
    else if (!((64 == h) && (48 == v)))
    {
        factor = 1;
        AEC_LOG_VERBOSE("forcing subsampling to 1 vertical count %d horizontal count %d", v, h);
    }
    return factor;
}

VOID CStatsProcessor::UpdateGridSize(BGProcResult* pRes, const StatsBayerGrid* pGrid, BOOL fillPositions) const
{
    const UINT32 h = pGrid->horizontalRegionCount;
    const UINT32 v = pGrid->verticalRegionCount;
    if ((h == pRes->numHorizontalRegions) && (v == pRes->numVerticalRegions))
    {
        return;
    }
    pRes->numHorizontalRegions = h;
    pRes->numVerticalRegions   = v;
    pRes->numTotalRegions      = h * v;
    if (FALSE == fillPositions)
    {
        return;
    }
    for (UINT32 y = 0; y < v; y++)
    {
        for (UINT32 x = 0; x < h; x++)
        {
            ParsedBGRegionType& region = pRes->BGRegions[x + y * h];
            region.xPos                = (static_cast<FLOAT>(x) + 0.5f) / static_cast<FLOAT>(h);
            region.yPos                = (static_cast<FLOAT>(y) + 0.5f) / static_cast<FLOAT>(v);
        }
    }
}

AecResult CStatsProcessor::ProcessBGStats()
{
    if (FALSE != IsHDR3GridCase())
    {
        // The in-sensor HDR path parses its own grid.
        return AecSuccess;
    }
    const StatsBayerGrid* pGrid = &m_pInputStats->bayerGrid;
    BGProcResult&         res   = m_ProcessedStats.m_BGRes;
    if (FALSE == CheckGridShape(pGrid))
    {
        return AecError;
    }
    if (FALSE == IdentifyBGStatsChannels(&res, pGrid))
    {
        AEC_LOG_ERROR("ERROR: missing BG stats channels!\n");
        return AecError;
    }
    if (FALSE == CheckGridConsistency(pGrid, TRUE))
    {
        return AecError;
    }
    const UINT32 h = pGrid->horizontalRegionCount;
    const UINT32 v = pGrid->verticalRegionCount;
    SetupBGProcParam(&m_BGProc, pGrid, res.procInfo.useCase);
    CalculateLumaWeight();
    m_BGProc.SWSubsmplFactor = SelectSubsamplingFactor(h, v);

    res.numBrightRegions    = 0;
    res.numDarkRegions      = 0;
    res.numNormalRegions    = 0;
    res.numProcessedRegions = 0;
    std::memset(res.YRegions, 0, sizeof(res.YRegions));
    std::memset(res.BGRegionsCalculated, 0, sizeof(res.BGRegionsCalculated));
    UpdateGridSize(&res, pGrid, TRUE);
    res.SWSubsmplFactor = m_BGProc.SWSubsmplFactor;

    const BOOL   oneToOne = ((h * v) < BGMaxLegacyYRegions) ? TRUE : FALSE;
    CLegacyYGrid legacy(res.YRegions, oneToOne ? h : BGLegacyGridDim, oneToOne ? v : BGLegacyGridDim,
                        oneToOne ? 1 : (h / BGLegacyGridDim), oneToOne ? 1 : (v / BGLegacyGridDim), h, v);

    // Every region in raster order, the same positions an exhaustive whole-frame iterator visits: runs in vector
    // lanes, and one region at a time where a run stops.
    BGBlockSetup setup;
    SetupBGBlock(&setup);
    // The counts run in registers and land in the result once; the counts start at 0 every frame.
    UINT32 bright    = 0;
    UINT32 dark      = 0;
    UINT32 processed = 0;
    for (UINT32 y = 0; y < v; y++)
    {
        UINT32 x = 0;
        while (x < h)
        {
            const UINT32 run = ParseMainBGRun(setup, x, y, h - x, &legacy, &bright, &dark);
            processed += run;
            x += run;
            if (x == h)
            {
                break;
            }
            const UINT32 pos = x + (y * h);
            if (AecSuccess == ProcessMainBGStatsRegion(pos))
            {
                const ParsedBGRegionType& region = res.BGRegions[pos];
                legacy.Add(x, y, region);
                CountBrightOrDark(region.rgnLuma, &bright, &dark);
                processed++;
            }
            x++;
        }
    }
    res.numBrightRegions    = bright;
    res.numDarkRegions      = dark;
    res.numNormalRegions    = processed - bright - dark;
    res.numProcessedRegions = processed;
    return (FALSE != legacy.Finish(TRUE)) ? AecSuccess : AecError;
}

AecResult CStatsProcessor::ProcessLEFBGStats()
{
    const GridJob job = {&m_pInputStats->bayerGridLEF, &m_BGProcLEF, &m_ProcessedStats.m_BGLEFRes};
    return ProcessExtraExposureBGStats(job, "ERROR: missing LEF BG stats channels!\n");
}

AecResult CStatsProcessor::ProcessMEFBGStats()
{
    const GridJob job = {&m_pInputStats->bayerGridMEF, &m_BGProcMEF, &m_ProcessedStats.m_BGMEFRes};
    return ProcessExtraExposureBGStats(job, "ERROR: missing MEF BG stats channels!\n");
}

AecResult CStatsProcessor::ProcessExtraExposureBGStats(const GridJob& job, const CHAR* pMissingChannelsLog)
{
    // A frame without this exposure is normal, so a missing grid is no failure.
    if (FALSE == CheckGridShape(job.pGrid))
    {
        return AecSuccess;
    }
    if (FALSE == IdentifyBGStatsChannels(job.pRes, job.pGrid))
    {
        AEC_LOG_ERROR("%s", pMissingChannelsLog);
        return AecSuccess;
    }
    if (FALSE == CheckGridConsistency(job.pGrid, FALSE))
    {
        return AecError;
    }
    SetupBGProcParam(job.pParam, job.pGrid, job.pRes->procInfo.useCase);
    UpdateGridSize(job.pRes, job.pGrid, FALSE);
    for (UINT32 idx = 0; idx < job.pGrid->numValidRegions; idx++)
    {
        const AecResult result = ProcessExtraExposureBGRegion(job, idx);
        if (AecSuccess != result)
        {
            return result;
        }
    }
    return AecSuccess;
}
