// Bayer grid regions to luma, saturation and colour ratios: one region at a time, or a run in vector lanes.
#include <cmath>
#include <cstddef>

#include "aec/core/modules/mod_mtr/clegacyygrid.h"
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

// The frame pass parses runs of main grid regions several at a time in vector lanes: four with the portable
// kernel, eight where the CPU has AVX2. Every lane performs the IEEE single-precision operations of ComputeRegion
// in the same order, and nothing is contracted into fused multiply-adds (the file is built without contraction).
// The integer sums that ComputeRegion forms in 64 bits stay below 2^31 when every input sum is below 2^29 (the
// batch checks this), so 32-bit lanes form them exactly and the signed conversion rounds them once, as the 64-bit
// conversion does. So the batch gives the same bits as the one-region parse.
#define AEC_LANES_INLINE inline __attribute__((always_inline))

// Unsigned, signed and float lanes of one kernel width. Helpers take vectors by reference: a wide vector passed by
// value outside an AVX2 function would change the calling convention.
template <UINT32 W>
struct BGLanes
{
    typedef UINT32 U __attribute__((vector_size(4 * W)));
    typedef INT32  I __attribute__((vector_size(4 * W)));
    typedef FLOAT  F __attribute__((vector_size(4 * W)));
};

// A 16-byte row of the record at pRaw in every 128-bit half: half k takes the record k * 4 records further on.
// The halves are joined in registers, so that a wide load never waits for narrower stores.
template <UINT32 W, typename V>
AEC_LANES_INLINE VOID LoadRows(V& lanes, const UINT8* pRaw, UINT32 stride)
{
    typedef typename BGLanes<4>::U Half;
    Half low;
    __builtin_memcpy(&low, pRaw, sizeof(low));
    if constexpr (W == 4)
    {
        lanes = low;
    }
    else
    {
        Half high;
        __builtin_memcpy(&high, pRaw + (4 * stride), sizeof(high));
        lanes = __builtin_shufflevector(low, high, 0, 1, 2, 3, 4, 5, 6, 7);
    }
}

// Rows a..d of a 4x4 matrix become its columns, in every 128-bit half.
template <typename V>
AEC_LANES_INLINE VOID Transpose(V& a, V& b, V& c, V& d)
{
    if constexpr (sizeof(V) == 16)
    {
        const V ab01 = __builtin_shufflevector(a, b, 0, 4, 1, 5);
        const V cd01 = __builtin_shufflevector(c, d, 0, 4, 1, 5);
        const V ab23 = __builtin_shufflevector(a, b, 2, 6, 3, 7);
        const V cd23 = __builtin_shufflevector(c, d, 2, 6, 3, 7);
        a            = __builtin_shufflevector(ab01, cd01, 0, 1, 4, 5);
        b            = __builtin_shufflevector(ab01, cd01, 2, 3, 6, 7);
        c            = __builtin_shufflevector(ab23, cd23, 0, 1, 4, 5);
        d            = __builtin_shufflevector(ab23, cd23, 2, 3, 6, 7);
    }
    else
    {
        const V ab01 = __builtin_shufflevector(a, b, 0, 8, 1, 9, 4, 12, 5, 13);
        const V cd01 = __builtin_shufflevector(c, d, 0, 8, 1, 9, 4, 12, 5, 13);
        const V ab23 = __builtin_shufflevector(a, b, 2, 10, 3, 11, 6, 14, 7, 15);
        const V cd23 = __builtin_shufflevector(c, d, 2, 10, 3, 11, 6, 14, 7, 15);
        a            = __builtin_shufflevector(ab01, cd01, 0, 1, 8, 9, 4, 5, 12, 13);
        b            = __builtin_shufflevector(ab01, cd01, 2, 3, 10, 11, 6, 7, 14, 15);
        c            = __builtin_shufflevector(ab23, cd23, 0, 1, 8, 9, 4, 5, 12, 13);
        d            = __builtin_shufflevector(ab23, cd23, 2, 3, 10, 11, 6, 7, 14, 15);
    }
}

// Per-frame constants and destinations of one run of main grid regions.
struct BGRunArgs
{
    const UINT8*        pRecords; // the run's first record
    ParsedBGRegionType* pOut;     // the run's first result
    BOOL*               pCalculated;
    CLegacyYGrid*       pLegacy;
    UINT32              x;     // grid column of the run's first region
    UINT32              y;     // its grid row
    UINT32              count; // regions of the run, all in row y
    FLOAT               satDen;
    FLOAT               satRecip;
    FLOAT               lumaDen;
    FLOAT               lumaRecip;
    FLOAT               RWeight;
    FLOAT               GWeight;
    FLOAT               BWeight;
    FLOAT               lumaCalcScaler;
    INT32               minNonSatCnt;
};

// Parses the longest prefix of the run that the batch can take, whole vectors only, folds each vector into the
// legacy grid and the brightness counts, and returns its length. The caller parses the region where it stopped
// on its own. Folding vector by vector lets the legacy sums' chains of adds overlap the next vector's work.
template <UINT32 W>
AEC_LANES_INLINE UINT32 ParseBGRunLanes(const BGRunArgs& args, UINT32* pBright, UINT32* pDark)
{
    typedef typename BGLanes<W>::U U;
    typedef typename BGLanes<W>::I I;
    typedef typename BGLanes<W>::F F;
    static_assert((offsetof(StatsBayerGridChannelInfoS_Sat, base.RCount) == 16) &&
                      (offsetof(StatsBayerGridChannelInfoS_Sat, saturatedRSum) == 24) &&
                      (offsetof(StatsBayerGridChannelInfoS_Sat, saturatedGRSum) == 32) &&
                      (offsetof(StatsBayerGridChannelInfoS_Sat, saturatedRCount) == 40),
                  "the batch reads the region record in three 16-byte rows");
    static_assert((offsetof(ParsedBGRegionType, rgnSatRatio) == offsetof(ParsedBGRegionType, rgnLuma) + 4) &&
                      (offsetof(ParsedBGRegionType, RGRatio) == offsetof(ParsedBGRegionType, rgnLuma) + 8) &&
                      (offsetof(ParsedBGRegionType, BGRatio) == offsetof(ParsedBGRegionType, rgnLuma) + 12),
                  "the batch writes luma, saturation and ratios as one row");
    constexpr UINT32 Stride = sizeof(StatsBayerGridChannelInfoS_Sat);
    const U          low16  = U{} + 0xFFFFu;
    const I          minCnt = I{} + args.minNonSatCnt;
    const I          zero   = I{};
    const F          minus1 = F{} - 1.0f;
    I                bright = I{};
    I                dark   = I{};
    UINT32           done   = 0;
    for (; (done + W) <= args.count; done += W)
    {
        const UINT8* pRaw = args.pRecords + (done * Stride);
        // Row 0: R, B, GR, GB sums. Row 1: R|B counts, GR|GB counts, saturated R and B sums. Row 2: saturated GR
        // and GB sums, saturated R|B counts, saturated GR|GB counts.
        U sumR, sumB, sumGR, sumGB, cntRB, cntGRGB, satR, satB, satGR, satGB, sCntRB, sCntGG;
        LoadRows<W>(sumR, pRaw, Stride);
        LoadRows<W>(sumB, pRaw + Stride, Stride);
        LoadRows<W>(sumGR, pRaw + 2 * Stride, Stride);
        LoadRows<W>(sumGB, pRaw + 3 * Stride, Stride);
        LoadRows<W>(cntRB, pRaw + 16, Stride);
        LoadRows<W>(cntGRGB, pRaw + Stride + 16, Stride);
        LoadRows<W>(satR, pRaw + 2 * Stride + 16, Stride);
        LoadRows<W>(satB, pRaw + 3 * Stride + 16, Stride);
        LoadRows<W>(satGR, pRaw + 32, Stride);
        LoadRows<W>(satGB, pRaw + Stride + 32, Stride);
        LoadRows<W>(sCntRB, pRaw + 2 * Stride + 32, Stride);
        LoadRows<W>(sCntGG, pRaw + 3 * Stride + 32, Stride);
        Transpose(sumR, sumB, sumGR, sumGB);
        Transpose(cntRB, cntGRGB, satR, satB);
        Transpose(satGR, satGB, sCntRB, sCntGG);

        // Larger sums could leave the 32-bit lanes: the caller parses this region on its own.
        const U wide = (sumR | sumB | sumGR | sumGB | satR | satB | satGR | satGB) >> 29;
        UINT64  parts[W / 2];
        __builtin_memcpy(parts, &wide, sizeof(parts));
        UINT64 anyWide = 0;
        for (UINT32 i = 0; i < (W / 2); i++)
        {
            anyWide |= parts[i];
        }
        const BOOL fits = (0 == anyWide) ? TRUE : FALSE;
        if (FALSE == fits)
        {
            break;
        }

        const I cntR   = reinterpret_cast<I>(cntRB & low16);
        const I cntB   = reinterpret_cast<I>(cntRB >> 16);
        const I cntGR  = reinterpret_cast<I>(cntGRGB & low16);
        const I cntGB  = reinterpret_cast<I>(cntGRGB >> 16);
        const I satCnt = reinterpret_cast<I>((sCntRB & low16) + (sCntRB >> 16) + (sCntGG & low16) + (sCntGG >> 16));
        const I maxBG  = (cntB > cntGR) ? cntB : cntGR;
        const I minRGB = (cntR < cntGB) ? cntR : cntGB;
        const I ratios = (minCnt < maxBG) & (minCnt < minRGB);
        const F g      = __builtin_convertvector(reinterpret_cast<I>(sumGR + sumGB), F) /
                    __builtin_convertvector(cntGR + cntGB, F);
        const I greenOk = ratios & (g > 0.0f);
        const F rg      = (__builtin_convertvector(reinterpret_cast<I>(sumR), F) / __builtin_convertvector(cntR, F)) / g;
        const F bg      = (__builtin_convertvector(reinterpret_cast<I>(sumB), F) / __builtin_convertvector(cntB, F)) / g;
        const F RG      = ((greenOk & (cntR != zero)) != zero) ? rg : minus1;
        const F BG      = ((greenOk & (cntB != zero)) != zero) ? bg : minus1;
        const F satNum  = __builtin_convertvector(satCnt, F);
        const F sat     = (0.0f != args.satRecip) ? (satNum * args.satRecip) : (satNum / args.satDen);
        const F G       = __builtin_convertvector(reinterpret_cast<I>((sumGR + sumGB + satGR + satGB) >> 1), F);
        const F R       = __builtin_convertvector(reinterpret_cast<I>(sumR + satR), F);
        const F B       = __builtin_convertvector(reinterpret_cast<I>(sumB + satB), F);
        const F lumaNum = (G * args.GWeight + R * args.RWeight + B * args.BWeight) * args.lumaCalcScaler;
        const F luma    = (0.0f != args.lumaRecip) ? (lumaNum * args.lumaRecip) : (lumaNum / args.lumaDen);

        // Bright first, dark only for the rest; a NaN luma is neither and counts as normal.
        const I isBright = (luma >= CStatsProcessor::YThresBrightStats);
        bright -= isBright;
        dark -= ~isBright & (luma <= CStatsProcessor::YThresDarkStats);

        // Back to one record per region: luma, saturation ratio and the two colour ratios are adjacent fields.
        U rows[4] = {reinterpret_cast<U>(luma), reinterpret_cast<U>(sat), reinterpret_cast<U>(RG),
                     reinterpret_cast<U>(BG)};
        Transpose(rows[0], rows[1], rows[2], rows[3]);
        ParsedBGRegionType* pOut = args.pOut + done;
        for (UINT32 k = 0; k < (W / 4); k++)
        {
            for (UINT32 i = 0; i < 4; i++)
            {
                __builtin_memcpy(&pOut[(4 * k) + i].rgnLuma, reinterpret_cast<const UINT8*>(&rows[i]) + (16 * k), 16);
            }
        }
        const I parsed = I{} + TRUE;
        __builtin_memcpy(args.pCalculated + done, &parsed, sizeof(parsed));
        args.pLegacy->AddRun(args.x + done, args.y, pOut, W);
    }
    for (UINT32 i = 0; i < W; i++)
    {
        *pBright += static_cast<UINT32>(bright[i]);
        *pDark += static_cast<UINT32>(dark[i]);
    }
    return done;
}

UINT32 ParseBGRunPortable(const BGRunArgs& args, UINT32* pBright, UINT32* pDark)
{
    return ParseBGRunLanes<CStatsProcessor::BGBlockLanes>(args, pBright, pDark);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) UINT32 ParseBGRunAVX2(const BGRunArgs& args, UINT32* pBright, UINT32* pDark)
{
    return ParseBGRunLanes<8>(args, pBright, pDark);
}
#endif

typedef UINT32 (*ParseBGRunFn)(const BGRunArgs& args, UINT32* pBright, UINT32* pDark);

// The widest kernel this CPU runs, chosen once.
ParseBGRunFn SelectParseBGRun()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
    {
        return &ParseBGRunAVX2;
    }
#endif
    return &ParseBGRunPortable;
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

UINT32 CStatsProcessor::ParseMainBGRun(const BGBlockSetup& setup, UINT32 x, UINT32 y, UINT32 count,
                                       CLegacyYGrid* pLegacy, UINT32* pBright, UINT32* pDark)
{
    static const ParseBGRunFn pParseRun = SelectParseBGRun();
    BGProcResult&             res       = m_ProcessedStats.m_BGRes;
    const StatsBayerGrid*     pGrid     = &m_pInputStats->bayerGrid;
    const UINT32              first     = x + (y * res.numHorizontalRegions);
    // Guards and logs of the one-region parse stay with it: the batch takes only valid regions of a cleared frame.
    const UINT32 limit = (pGrid->numValidRegions < BGMaxRegions) ? pGrid->numValidRegions : BGMaxRegions;
    if ((FALSE == setup.batched) || (nullptr == pGrid->m_pChannelData) || (first >= limit))
    {
        return 0;
    }
    const BGRunArgs args = {
        reinterpret_cast<const UINT8*>(
            reinterpret_cast<const StatsBayerGridChannelInfoS_Sat*>(pGrid->m_pChannelData) + first),
        &res.BGRegions[first],
        &res.BGRegionsCalculated[first],
        pLegacy,
        x,
        y,
        ((limit - first) < count) ? (limit - first) : count,
        setup.satDen,
        setup.satRecip,
        setup.lumaDen,
        setup.lumaRecip,
        m_BGProc.RWeight,
        m_BGProc.GWeight,
        m_BGProc.BWeight,
        m_BGProc.lumaCalcScaler,
        setup.minNonSatCnt,
    };
    return pParseRun(args, pBright, pDark);
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
