// Bayer grid regions to luma, saturation and colour ratios: one region at a time, or four in vector lanes.
#include <cmath>
#include <cstddef>

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

// The frame pass parses the main grid four regions at a time in vector lanes. Every lane performs the IEEE
// single-precision operations of ComputeRegion in the same order. The integer sums that ComputeRegion forms in
// 64 bits stay below 2^31 when every input sum is below 2^29 (the batch checks this), so 32-bit lanes form them
// exactly and the signed conversion rounds them once, as the 64-bit conversion does. So the batch gives the same
// bits as the one-region parse.
typedef UINT32 VecU __attribute__((vector_size(16)));
typedef INT32  VecI __attribute__((vector_size(16)));
typedef FLOAT  VecF __attribute__((vector_size(16)));
constexpr UINT32 VecLanes = 4;
static_assert(CStatsProcessor::BGBlockLanes == VecLanes, "a batch is one vector");

inline VecF ToFloat(VecU x)
{
    return __builtin_convertvector(reinterpret_cast<VecI>(x), VecF);
}

inline VecU LoadVec(const void* pSource)
{
    VecU lanes;
    __builtin_memcpy(&lanes, pSource, sizeof(lanes));
    return lanes;
}

// Rows a..d of a 4x4 matrix become its columns.
inline VOID Transpose(VecU& a, VecU& b, VecU& c, VecU& d)
{
    const VecU ab01 = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const VecU cd01 = __builtin_shufflevector(c, d, 0, 4, 1, 5);
    const VecU ab23 = __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const VecU cd23 = __builtin_shufflevector(c, d, 2, 6, 3, 7);
    a               = __builtin_shufflevector(ab01, cd01, 0, 1, 4, 5);
    b               = __builtin_shufflevector(ab01, cd01, 2, 3, 6, 7);
    c               = __builtin_shufflevector(ab23, cd23, 0, 1, 4, 5);
    d               = __builtin_shufflevector(ab23, cd23, 2, 3, 6, 7);
}

inline VecF Select(VecI mask, VecF yes, VecF no)
{
    return reinterpret_cast<VecF>((reinterpret_cast<VecI>(yes) & mask) | (reinterpret_cast<VecI>(no) & ~mask));
}

inline VecI Max(VecI a, VecI b)
{
    return b ^ ((a ^ b) & (a > b));
}

inline VecI Min(VecI a, VecI b)
{
    return b ^ ((a ^ b) & (a < b));
}

// x / d for a power-of-two d whose reciprocal is a normal float equals x * (1 / d): both are the correctly rounded
// value of the same real number. Returns 0 when the division has to stay a division.
FLOAT ExactReciprocal(FLOAT d)
{
    INT32 exponent = 0;
    if (!(d > 0.0f) || !std::isfinite(d) || (0.5f != std::frexp(d, &exponent)))
    {
        return 0.0f;
    }
    const FLOAT reciprocal = 1.0f / d;
    return std::isnormal(reciprocal) ? reciprocal : 0.0f;
}

// Divides by a per-frame constant, by its exact reciprocal when there is one.
inline VecF DivideByConstant(VecF num, FLOAT den, FLOAT reciprocal)
{
    return (0.0f != reciprocal) ? (num * reciprocal) : (num / den);
}
} // namespace

VOID CStatsProcessor::SetupBGBlock(BGBlockSetup* pSetup) const
{
    const StatsBayerGrid* pGrid = &m_pInputStats->bayerGrid;
    pSetup->pix                 = ToFloat(m_BGProc.pixPerRgnAndChnl);
    pSetup->satDen              = static_cast<FLOAT>(BayerChannelNum) * pSetup->pix;
    pSetup->lumaDen             = pSetup->pix * m_DRCGainHDR3;
    pSetup->satRecip            = ExactReciprocal(pSetup->satDen);
    pSetup->lumaRecip           = ExactReciprocal(pSetup->lumaDen);
    // Counts are 16 bits: a larger threshold never lets a colour ratio through, and neither does 65535.
    pSetup->minNonSatCnt = static_cast<INT32>((m_BGProc.minNonSatCnt < 65535) ? m_BGProc.minNonSatCnt : 65535);
    // The batch covers the four-channel Bayer layout with the host's saturation sums; the rest goes region by
    // region.
    pSetup->batched = ((BGProcUseCase::RGGB == m_ProcessedStats.m_BGRes.procInfo.useCase) &&
                       (0 != pGrid->flags.hasSatInfo) && (0 == m_pTuning->ADRCSaturation.enableADRCSatCtrl))
                          ? TRUE
                          : FALSE;
}

VOID CStatsProcessor::ParseMainBGBlock(const BGBlockSetup& setup, UINT32 first, UINT32 count, BOOL* pParsed)
{
    BGProcResult&         res      = m_ProcessedStats.m_BGRes;
    const StatsBayerGrid* pGrid    = &m_pInputStats->bayerGrid;
    // Guards, logs, a short tail, large sums and the other layouts: the one-region parse.
    const auto            oneByOne = [this, first, count, pParsed]() {
        for (UINT32 i = 0; i < count; i++)
        {
            pParsed[i] = (AecSuccess == ProcessMainBGStatsRegion(first + i)) ? TRUE : FALSE;
        }
    };
    BOOL batch = ((FALSE != setup.batched) && (VecLanes == count) && ((first + count) <= pGrid->numValidRegions) &&
                  ((first + count) <= BGMaxRegions))
                     ? TRUE
                     : FALSE;
    for (UINT32 i = 0; (FALSE != batch) && (i < count); i++)
    {
        batch = (FALSE == res.BGRegionsCalculated[first + i]) ? TRUE : FALSE;
    }
    if (FALSE == batch)
    {
        oneByOne();
        return;
    }

    static_assert((offsetof(StatsBayerGridChannelInfoS_Sat, base.RCount) == 16) &&
                      (offsetof(StatsBayerGridChannelInfoS_Sat, saturatedRSum) == 24) &&
                      (offsetof(StatsBayerGridChannelInfoS_Sat, saturatedGRSum) == 32) &&
                      (offsetof(StatsBayerGridChannelInfoS_Sat, saturatedRCount) == 40),
                  "the batch reads the region record in three 16-byte rows");
    const auto* pRec = reinterpret_cast<const StatsBayerGridChannelInfoS_Sat*>(pGrid->m_pChannelData) + first;
    const auto* pRaw = reinterpret_cast<const UINT8*>(pRec);
    constexpr UINT32 Stride = sizeof(StatsBayerGridChannelInfoS_Sat);
    // Row 0: R, B, GR, GB sums. Row 1: R|B counts, GR|GB counts, saturated R and B sums. Row 2: saturated GR and
    // GB sums, saturated R|B counts, saturated GR|GB counts.
    VecU sumR    = LoadVec(pRaw);
    VecU sumB    = LoadVec(pRaw + Stride);
    VecU sumGR   = LoadVec(pRaw + 2 * Stride);
    VecU sumGB   = LoadVec(pRaw + 3 * Stride);
    VecU cntRB   = LoadVec(pRaw + 16);
    VecU cntGRGB = LoadVec(pRaw + Stride + 16);
    VecU satR    = LoadVec(pRaw + 2 * Stride + 16);
    VecU satB    = LoadVec(pRaw + 3 * Stride + 16);
    VecU satGR   = LoadVec(pRaw + 32);
    VecU satGB   = LoadVec(pRaw + Stride + 32);
    VecU sCntRB  = LoadVec(pRaw + 2 * Stride + 32);
    VecU sCntGG  = LoadVec(pRaw + 3 * Stride + 32);
    Transpose(sumR, sumB, sumGR, sumGB);
    Transpose(cntRB, cntGRGB, satR, satB);
    Transpose(satGR, satGB, sCntRB, sCntGG);
    const VecU low16  = {0xFFFFu, 0xFFFFu, 0xFFFFu, 0xFFFFu};
    const VecI cntR   = reinterpret_cast<VecI>(cntRB & low16);
    const VecI cntB   = reinterpret_cast<VecI>(cntRB >> 16);
    const VecI cntGR  = reinterpret_cast<VecI>(cntGRGB & low16);
    const VecI cntGB  = reinterpret_cast<VecI>(cntGRGB >> 16);
    const VecI satCnt = reinterpret_cast<VecI>((sCntRB & low16) + (sCntRB >> 16) + (sCntGG & low16) + (sCntGG >> 16));

    // Larger sums could leave the 32-bit lanes: such a batch goes region by region.
    const VecU wide = (sumR | sumB | sumGR | sumGB | satR | satB | satGR | satGB) >> 29;
    if (0 != (wide[0] | wide[1] | wide[2] | wide[3]))
    {
        oneByOne();
        return;
    }

    const BGProcParam& param   = m_BGProc;
    const VecI         minCnt  = {setup.minNonSatCnt, setup.minNonSatCnt, setup.minNonSatCnt, setup.minNonSatCnt};
    const VecI         zero    = {0, 0, 0, 0};
    const VecI         ratios  = (minCnt < Max(cntB, cntGR)) & (minCnt < Min(cntR, cntGB));
    const VecF         g       = ToFloat(sumGR + sumGB) / __builtin_convertvector(cntGR + cntGB, VecF);
    const VecF         minus1  = {-1.0f, -1.0f, -1.0f, -1.0f};
    const VecI         greenOk = ratios & (g > 0.0f);
    const VecF RG = Select(greenOk & (cntR != zero), (ToFloat(sumR) / __builtin_convertvector(cntR, VecF)) / g,
                           minus1);
    const VecF BG = Select(greenOk & (cntB != zero), (ToFloat(sumB) / __builtin_convertvector(cntB, VecF)) / g,
                           minus1);
    const VecF sat = DivideByConstant(__builtin_convertvector(satCnt, VecF), setup.satDen, setup.satRecip);
    const VecF G   = ToFloat((sumGR + sumGB + satGR + satGB) >> 1);
    const VecF R   = ToFloat(sumR + satR);
    const VecF B   = ToFloat(sumB + satB);
    const VecF luma = DivideByConstant(
        (G * param.GWeight + R * param.RWeight + B * param.BWeight) * param.lumaCalcScaler, setup.lumaDen,
        setup.lumaRecip);

    // Back to one record per region: luma, saturation ratio and the two colour ratios are adjacent fields.
    static_assert((offsetof(ParsedBGRegionType, rgnSatRatio) == offsetof(ParsedBGRegionType, rgnLuma) + 4) &&
                      (offsetof(ParsedBGRegionType, RGRatio) == offsetof(ParsedBGRegionType, rgnLuma) + 8) &&
                      (offsetof(ParsedBGRegionType, BGRatio) == offsetof(ParsedBGRegionType, rgnLuma) + 12),
                  "the batch writes luma, saturation and ratios as one row");
    VecU rows[VecLanes] = {reinterpret_cast<VecU>(luma), reinterpret_cast<VecU>(sat), reinterpret_cast<VecU>(RG),
                           reinterpret_cast<VecU>(BG)};
    Transpose(rows[0], rows[1], rows[2], rows[3]);
    for (UINT32 i = 0; i < VecLanes; i++)
    {
        __builtin_memcpy(&res.BGRegions[first + i].rgnLuma, &rows[i], sizeof(rows[i]));
        res.BGRegionsCalculated[first + i] = TRUE;
        pParsed[i]                         = TRUE;
    }
}

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
