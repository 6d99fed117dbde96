// One Bayer grid region: saturated pixels, colour ratios, saturation ratio and luma on the 8-bit scale.
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"

namespace
{
// Channel order of the saturation thresholds and of the per-region saturated values.
enum : UINT32
{
    ChR  = 0,
    ChB  = 1,
    ChGR = 2,
    ChGB = 3,
};

struct RegionSaturation
{
    UINT64 count[4];
    UINT64 sum[4];
};

// The region record; the element is larger when the grid carries saturation sums.
const StatsBayerGridChannelInfoS* RegionRecord(const StatsBayerGrid* pGrid, UINT32 idx)
{
    if (0 != pGrid->flags.hasSatInfo)
    {
        return &reinterpret_cast<const StatsBayerGridChannelInfoS_Sat*>(pGrid->m_pChannelData)[idx].base;
    }
    return &pGrid->m_pChannelData[idx];
}

VOID RegionCounts(const StatsBayerGridChannelInfoS& rec, UINT64 counts[4])
{
    counts[ChR]  = rec.RCount;
    counts[ChB]  = rec.BCount;
    counts[ChGR] = rec.GRCount;
    counts[ChGB] = rec.GBCount;
}

// Sums and counts stay far below 2^63: the signed conversion is one instruction, the unsigned one a branch.
inline FLOAT ToFloat(UINT64 value)
{
    return static_cast<FLOAT>(static_cast<INT64>(value));
}

// A colour mean over a green mean; a zero count or green leaves the ratio unset (-1).
FLOAT ColourRatio(UINT32 sum, UINT16 count, FLOAT green)
{
    return ((0 != count) && (green > 0.0f))
               ? (static_cast<FLOAT>(sum) / static_cast<FLOAT>(count)) / green
               : -1.0f;
}

// Ratios, saturation ratio and luma from the sums, shared by all exposures.
AecResult ComputeRegion(const BGProcParam& param, BGProcUseCase useCase, const StatsBayerGridChannelInfoS& rec,
                        const RegionSaturation& sat, FLOAT DRCGain, ParsedBGRegionType* pOut)
{
    const FLOAT pix       = ToFloat(param.pixPerRgnAndChnl);
    const FLOAT lumaScale = param.lumaCalcScaler;
    pOut->RGRatio         = -1.0f;
    pOut->BGRatio         = -1.0f;
    if (BGProcUseCase::RGBY == useCase)
    {
        UINT64 m = (rec.RCount < rec.BCount) ? rec.RCount : rec.BCount;
        m        = (rec.GCount < m) ? rec.GCount : m;
        if (param.minNonSatCnt < m)
        {
            const FLOAT g = static_cast<FLOAT>(rec.GSum) / static_cast<FLOAT>(rec.GCount);
            pOut->RGRatio = ColourRatio(rec.RSum, rec.RCount, g);
            pOut->BGRatio = ColourRatio(rec.BSum, rec.BCount, g);
        }
    }
    else if (BGProcUseCase::Y == useCase)
    {
        if (rec.RCount > param.minNonSatCnt)
        {
            pOut->RGRatio = 1.0f;
            pOut->BGRatio = 1.0f;
        }
    }
    else if (BGProcUseCase::RGGB == useCase)
    {
        const UINT64 maxBG  = (rec.BCount > rec.GRCount) ? rec.BCount : rec.GRCount;
        const UINT64 minRGB = (rec.RCount < rec.GBCount) ? rec.RCount : rec.GBCount;
        // Deliberately asymmetric: blue may be starved while green red is not, hence the zero-count guard below.
        if ((param.minNonSatCnt < maxBG) && (param.minNonSatCnt < minRGB))
        {
            const FLOAT g = ToFloat(static_cast<UINT64>(rec.GRSum) + rec.GBSum) /
                            static_cast<FLOAT>(static_cast<UINT32>(rec.GRCount) + rec.GBCount);
            pOut->RGRatio = ColourRatio(rec.RSum, rec.RCount, g);
            pOut->BGRatio = ColourRatio(rec.BSum, rec.BCount, g);
        }
        const UINT64 satCount = sat.count[ChR] + sat.count[ChB] + sat.count[ChGR] + sat.count[ChGB];
        pOut->rgnSatRatio =
            ToFloat(satCount) / (static_cast<FLOAT>(CStatsProcessor::BayerChannelNum) * pix);
        const UINT64 R = rec.RSum + sat.sum[ChR];
        const UINT64 B = rec.BSum + sat.sum[ChB];
        const UINT64 G =
            (static_cast<UINT64>(rec.GRSum) + rec.GBSum + sat.sum[ChGR] + sat.sum[ChGB]) >> 1;
        pOut->rgnLuma = (ToFloat(G) * param.GWeight + ToFloat(R) * param.RWeight + ToFloat(B) * param.BWeight) *
                        lumaScale / (pix * DRCGain);
        return AecSuccess;
    }
    else
    {
        return AecError;
    }
    pOut->rgnSatRatio = ToFloat(sat.count[ChGB]) / pix;
    pOut->rgnLuma     = ToFloat(rec.YSum + sat.sum[ChGB]) * lumaScale / (pix * DRCGain);
    return AecSuccess;
}
} // namespace

AecResult CStatsProcessor::ProcessBGStatsRegion(UINT32 idx)
{
    return (FALSE != IsHDR3GridCase()) ? ProcessHDR3BGStatsRegion(idx) : ProcessMainBGStatsRegion(idx);
}

AecResult CStatsProcessor::ProcessMainBGStatsRegion(UINT32 idx)
{
    BGProcResult& res = m_ProcessedStats.m_BGRes;
    if (nullptr == m_pInputStats)
    {
        AEC_LOG_ERROR("Invalid memory: pBG = %p, pRes = %p", static_cast<const void*>(nullptr),
                      static_cast<const void*>(&res));
        return AecError;
    }
    const StatsBayerGrid* pGrid = &m_pInputStats->bayerGrid;
    // The result table bounds the index as well, whatever the host claims.
    if ((idx >= pGrid->numValidRegions) || (idx >= BGMaxRegions))
    {
        AEC_LOG_ERROR("Invalid index being processed: statsIdx = %d, max = %d", idx, pGrid->numValidRegions);
        return AecError;
    }
    if (nullptr == pGrid->m_pChannelData)
    {
        AEC_LOG_ERROR("Invalid channel Pointer");
        return AecError;
    }
    if (FALSE != res.BGRegionsCalculated[idx])
    {
        return AecError;
    }

    const StatsBayerGridChannelInfoS* pRec = RegionRecord(pGrid, idx);
    RegionSaturation                  sat  = {};
    if ((0 != pGrid->flags.hasSatInfo) && (0 == m_pTuning->ADRCSaturation.enableADRCSatCtrl))
    {
        const auto* pSat = reinterpret_cast<const StatsBayerGridChannelInfoS_Sat*>(pRec);
        sat.sum[ChR]     = pSat->saturatedRSum;
        sat.sum[ChB]     = pSat->saturatedBSum;
        sat.sum[ChGR]    = pSat->saturatedGRSum;
        sat.sum[ChGB]    = pSat->saturatedGBSum;
        sat.count[ChR]   = pSat->saturatedRCount;
        sat.count[ChB]   = pSat->saturatedBCount;
        sat.count[ChGR]  = pSat->saturatedGRCount;
        sat.count[ChGB]  = pSat->saturatedGBCount;
    }
    else
    {
        // Saturated pixels count at their channel's threshold.
        UINT64 counts[4];
        RegionCounts(*pRec, counts);
        for (UINT32 c = 0; c < 4; c++)
        {
            if (counts[c] > m_BGProc.pixPerRgnAndChnl)
            {
                AEC_LOG_WARN("BG Stats reporting information conflict: number of pixels per region(%lu) is bigger "
                             "than pixel counts(%lu)!",
                             static_cast<unsigned long>(counts[c]),
                             static_cast<unsigned long>(m_BGProc.pixPerRgnAndChnl));
                continue;
            }
            sat.count[c] = m_BGProc.pixPerRgnAndChnl - counts[c];
            sat.sum[c]   = sat.count[c] * pGrid->satThreshold[c];
        }
    }
    if (AecSuccess != ComputeRegion(m_BGProc, res.procInfo.useCase, *pRec, sat, m_DRCGainHDR3, &res.BGRegions[idx]))
    {
        return AecError;
    }
    res.BGRegionsCalculated[idx] = TRUE;
    return AecSuccess;
}

AecResult CStatsProcessor::ProcessExtraExposureBGRegion(const GridJob& job, UINT32 idx)
{
    const StatsBayerGrid* pGrid = job.pGrid;
    if ((idx >= pGrid->numValidRegions) || (idx >= BGMaxRegions))
    {
        AEC_LOG_ERROR("Invalid index being processed: statsIdx = %d, max = %d", idx, pGrid->numValidRegions);
        return AecError;
    }
    if (nullptr == pGrid->m_pChannelData)
    {
        AEC_LOG_ERROR("Invalid channel Pointer");
        return AecError;
    }
    // A local copy, because an over-full count is clamped before the formulas use it.
    StatsBayerGridChannelInfoS rec = *RegionRecord(pGrid, idx);
    UINT16* const pCounts[4]       = {&rec.RCount, &rec.BCount, &rec.GRCount, &rec.GBCount};
    RegionSaturation sat           = {};
    const UINT64     pix           = job.pParam->pixPerRgnAndChnl;
    for (UINT32 c = 0; c < 4; c++)
    {
        if (*pCounts[c] > pix)
        {
            AEC_LOG_WARN("BG stats conflict: non-sat pixel count(%lu) exceeds pixels per region(%lu). Clamping count "
                         "to prevent underflow.",
                         static_cast<unsigned long>(*pCounts[c]), static_cast<unsigned long>(pix));
            *pCounts[c] = static_cast<UINT16>(pix);
            continue;
        }
        sat.count[c] = pix - *pCounts[c];
        sat.sum[c]   = sat.count[c] * pGrid->satThreshold[c];
    }
    ParsedBGRegionType* pOut = &job.pRes->BGRegions[idx];
    if (AecSuccess != ComputeRegion(*job.pParam, job.pRes->procInfo.useCase, rec, sat, m_DRCGainHDR3, pOut))
    {
        return AecError;
    }
    job.pRes->BGRegionsCalculated[idx] = TRUE;
    return AecSuccess;
}
