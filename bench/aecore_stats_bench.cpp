// Measures the statistics parser: a 64 x 48 grid with saturation data and a 1024-bin histogram per frame.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "aecdefaulttuning.h"
#include "platform/statslogger.h"
#include "support/syntheticstats.h"

namespace
{
constexpr UINT32 kGridW  = 64;
constexpr UINT32 kGridH  = 48;
constexpr UINT16 kDepth  = 10;
constexpr UINT32 kRegion = 32; // pixels per region side: a 2048 x 1536 image

// Tuning, white balance, processor and one frame of statistics, built once; only the parse is timed.
class CStatsBenchFrame
{
public:
    // gridW x gridH regions; without a histogram the frame's histogram has no bins and the parser passes over it.
    CStatsBenchFrame(UINT32 gridW, UINT32 gridH, BOOL withHist)
        : m_pImage(std::make_unique<CSyntheticStats>(gridW, gridH, kRegion, kRegion, kDepth, SyntheticLayout::RGGB,
                                                     TRUE))
        , m_pProc(std::make_unique<CStatsProcessor>())
        , m_pStats(std::make_unique<AECStatistics>())
    {
        // A diagonal ramp with a saturated corner, so regions fall in all three brightness classes.
        for (UINT32 y = 0; y < gridH; y++)
        {
            for (UINT32 x = 0; x < gridW; x++)
            {
                const UINT32 value = ((x + y) * 1023) / (gridW + gridH);
                const FLOAT  sat   = (x + y > gridW) ? 0.25f : 0.0f;
                m_pImage->SetRegion(x, y, SyntheticRegion::Uniform(value, sat));
            }
        }
        m_pImage->Build();
        m_pImage->FillStatistics(m_pStats.get());
        if (FALSE == withHist)
        {
            std::memset(&m_pStats->bayerHist, 0, sizeof(m_pStats->bayerHist));
        }

        FillDefaultAECCoreMeteringType(&m_core);
        FillDefaultAECSensorHDRConfig(&m_sensorHDR);
        std::memset(&m_tuning, 0, sizeof(m_tuning));
        m_tuning.pCore      = &m_core;
        m_tuning.pSensorHDR = &m_sensorHDR;
        std::memset(&m_wb, 0, sizeof(m_wb));
        m_wb.isAuto    = TRUE;
        m_wb.redGain   = 1.8f;
        m_wb.greenGain = 1.0f;
        m_wb.blueGain  = 1.5f;

        gStatsLogger = nullptr;
        m_pProc->Initialize();
        m_pProc->SetTuning(&m_tuning);
        m_pProc->SetMultiExposureSensorMode(HDRDisabled);
    }

    AecResult Parse() { return m_pProc->ProcessStats(m_pStats.get(), &m_wb, 1.0f); }

private:
    std::unique_ptr<CSyntheticStats>    m_pImage;
    std::unique_ptr<CStatsProcessor>    m_pProc;
    std::unique_ptr<AECStatistics>      m_pStats;
    aecMetering::AECCoreMeteringType    m_core;
    aecSensorConfig::AECSensorHDRConfig m_sensorHDR;
    MeteringTuningDataType              m_tuning;
    AECAlgoWhiteBalanceState            m_wb;
};

// Counters: seconds per frame, and per grid region where the grid is what is measured.
VOID RunParse(benchmark::State& state, UINT32 gridW, UINT32 gridH, BOOL withHist, BOOL perRegion)
{
    CStatsBenchFrame frame(gridW, gridH, withHist);
    if (AecSuccess != frame.Parse())
    {
        state.SkipWithError("the benchmark frame does not parse");
        return;
    }
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(frame.Parse());
    }
    const auto perItem      = benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert;
    state.counters["frame"] = benchmark::Counter(1.0, perItem);
    if (FALSE != perRegion)
    {
        state.counters["region"] = benchmark::Counter(static_cast<double>(gridW * gridH), perItem);
    }
}

void BM_ParseGridAndHist(benchmark::State& state)
{
    RunParse(state, kGridW, kGridH, TRUE, TRUE);
}
BENCHMARK(BM_ParseGridAndHist);

void BM_ParseGridOnly(benchmark::State& state)
{
    RunParse(state, kGridW, kGridH, FALSE, TRUE);
}
BENCHMARK(BM_ParseGridOnly);

// A frame cannot go without a grid: the smallest one (1 x 1) leaves the histogram as nearly all of the cost.
void BM_ParseHistOnly(benchmark::State& state)
{
    RunParse(state, 1, 1, TRUE, FALSE);
}
BENCHMARK(BM_ParseHistOnly);
} // namespace

BENCHMARK_MAIN();
