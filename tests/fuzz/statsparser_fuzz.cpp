// Fuzz target of the statistics parser: a decoded frame through the grid and histogram paths, then every query.
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "fuzz/cfuzzreader.h"
#include "fuzz/cfuzzstatistics.h"
#include "platform/statslogger.h"

namespace
{
// Formats every line, so that a format that does not match its arguments shows up under the sanitizers.
VOID FormattingLogger(const CHAR*, UINT32, const CHAR*, StatsLogGroup, StatsLog, const CHAR* pFormat, ...)
{
    CHAR    line[1024];
    va_list args;
    va_start(args, pFormat);
    std::vsnprintf(line, sizeof(line), pFormat, args);
    va_end(args);
}

// The harness's own invariants; a breach is a parser bug, reported like a crash.
VOID Require(bool condition, const CHAR* pWhat)
{
    if (!condition)
    {
        std::fprintf(stderr, "statsparser_fuzz: %s\n", pWhat);
        std::abort();
    }
}

// Walks an iterator to its end; positions only grow, so it cannot yield more regions than the grid has.
VOID Walk(BGStatsIterator iterator)
{
    UINT32 steps = 0;
    FLOAT  sum   = 0.0f;
    while (FALSE != iterator.HasNext())
    {
        const ParsedBGRegionType* pRegion = iterator.Next();
        if (nullptr != pRegion)
        {
            sum += pRegion->rgnLuma + pRegion->rgnSatRatio + pRegion->RGRatio + pRegion->BGRatio;
        }
        steps++;
        Require(steps <= CFuzzStatistics::MaxGridRegions + 1, "region iterator does not terminate");
    }
    static_cast<VOID>(sum);
    static_cast<VOID>(iterator.GetTotalNumOfRegions());
}

FLOAT Unit(UINT8 raw)
{
    // -0.25 .. 1.25: inside and outside the valid percentage range.
    return -0.25f + 1.5f * (static_cast<FLOAT>(raw) / 255.0f);
}

FLOAT Luma(UINT8 raw)
{
    // 0 .. 320 on the 8-bit scale, a little beyond full scale as calculators may ask.
    return 320.0f * (static_cast<FLOAT>(raw) / 255.0f);
}

VOID Query(const IProcessedStats* pView, const UINT8* q)
{
    const BGStatsIterationMode mode = (0 != (q[15] & 1)) ? BGStatsIterationMode::Exhaustive
                                                         : BGStatsIterationMode::Normal;
    const BOOL wbCompensated = (q[15] >> 1) & 1;
    Walk(pView->GetBGStatsIterator(BGStatsIterationMode::Normal));
    Walk(pView->GetBGStatsIterator(BGStatsIterationMode::Exhaustive));
    Walk(pView->GetBGStatsIterator(mode, Unit(q[11]), Unit(q[12]), Unit(q[13]), Unit(q[14])));

    static_cast<VOID>(pView->GetBrightRegionRatio());
    static_cast<VOID>(pView->GetDarkRegionRatio());
    static_cast<VOID>(pView->GetNormalRegionRatio());
    static_cast<VOID>(pView->GetLegacyYRegionStats());
    INT                            size     = -1;
    const ParsedLegacyYRegionType* pLegacy  = pView->GetLegacyYRegionStats(size);
    Require(size >= 0 && size <= 256, "legacy grid size out of range");
    FLOAT legacySum = 0.0f;
    for (INT i = 0; (nullptr != pLegacy) && (i < size); i++)
    {
        legacySum += pLegacy[i].Yval + pLegacy[i].Ysat;
    }
    static_cast<VOID>(legacySum);

    static_cast<VOID>(pView->GetBHistProcInfo());
    static_cast<VOID>(pView->GetHDR3HistProcInfo());
    aecMetering::NonLinearEstimateType estimate = {};
    estimate.enableNonLinearEstimate            = q[16] & 1;
    estimate.errPct                             = q[17] / 10.0f;
    estimate.maxIterations                      = q[18] % 16;
    const MinMaxRangeFloat pctlRange            = {Unit(q[19]), Unit(q[20])};
    const UINT16           bin                  = static_cast<UINT16>(q[7] | (q[8] << 8));
    const UINT16           idx                  = static_cast<UINT16>(q[9] | (q[10] << 8));
    const UINT8            channels[5]          = {0, 1, 2, 3, q[0]};
    for (UINT8 chnl : channels)
    {
        static_cast<VOID>(pView->GetBHistPercentile2Value(chnl, Unit(q[1])));
        static_cast<VOID>(pView->GetBHistPercentile2Value(chnl, Unit(q[2])));
        static_cast<VOID>(pView->GetBHistValue2Percentile(chnl, Luma(q[5])));
        static_cast<VOID>(pView->GetBHistLEFValue2Percentile(chnl, Luma(q[5])));
        static_cast<VOID>(pView->GetBHistMEFValue2Percentile(chnl, Luma(q[6])));
        static_cast<VOID>(pView->GetBHistAvgForPctRange(chnl, Unit(q[1]), Unit(q[2]), wbCompensated));
        static_cast<VOID>(pView->GetBHistAvgForPctRange(chnl, 0.0f, 1.0f, wbCompensated));
        static_cast<VOID>(pView->GetmergeHistAvgForPctRange(chnl, Unit(q[3]), Unit(q[4]), wbCompensated));
        static_cast<VOID>(pView->GetmergeHistAvgForPctRange(chnl, 0.0f, 1.0f, wbCompensated));
        static_cast<VOID>(pView->EstimateNonLinGain(0.5f + Luma(q[21]), 1.0f + Luma(q[22]), pctlRange, chnl,
                                                    &estimate));
        static_cast<VOID>(pView->GetRawSHDRSefHist(chnl, bin));
        static_cast<VOID>(pView->GetRawSHDRLefHist(chnl, bin));
        static_cast<VOID>(pView->GetRawSHDRMefHist(chnl, bin));
        static_cast<VOID>(pView->GetRawSHDRSefHist(chnl, 0));
    }
    static_cast<VOID>(pView->GetRawSHDRLEFBGstats(idx));
    static_cast<VOID>(pView->GetRawSHDRSEFBGstats(idx));
    static_cast<VOID>(pView->GetRawSHDRMEFBGstats(idx));
    static_cast<VOID>(pView->GetRawSHDRSEFBGstats(0));
}

// The copies of the whole result are costly, so they run once, after the last frame.
VOID Copy(const IProcessedStats* pView, const UINT8* q)
{
    std::unique_ptr<AECDebugData> pDebug(new AECDebugData());
    pView->FillDebugData(pDebug.get());
    std::unique_ptr<IProcessedStats> pClone(pView->Clone());
    if (nullptr != pClone)
    {
        Walk(pClone->GetBGStatsIterator(BGStatsIterationMode::Normal));
        static_cast<VOID>(pClone->GetBHistAvgForPctRange(q[0], Unit(q[1]), Unit(q[2]), FALSE));
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size)
{
    gStatsLogger = FormattingLogger;
    CFuzzReader     reader(pData, size);
    CFuzzStatistics input(reader);
    const UINT8*    q = input.Query();

    std::unique_ptr<CStatsProcessor> pProc(new CStatsProcessor());
    pProc->Initialize();
    pProc->SetTuning(input.Tuning());
    pProc->SetMultiExposureSensorMode(input.SensorMode());
    // A fresh processor answers queries before its first frame as well.
    Query(pProc->GetStatsProcessingResult(), q);
    for (UINT32 frame = 0; frame < input.FrameCount(); frame++)
    {
        static_cast<VOID>(pProc->ProcessStats(input.Stats(), input.WhiteBalance(), input.DRCGain()));
        pProc->ReprocessBGStats((0 != (q[15] & 4)) ? BGStatsIterationMode::Exhaustive : BGStatsIterationMode::Normal,
                                Unit(q[23]), Unit(q[24]), Unit(q[25]), Unit(q[26]));
        Query(pProc->GetStatsProcessingResult(), q);
    }
    Copy(pProc->GetStatsProcessingResult(), q);
    gStatsLogger = nullptr;
    return 0;
}
