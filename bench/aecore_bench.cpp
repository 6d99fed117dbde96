// Measures the library through its C ABI: one frame of AECProcess, the instance's heap footprint, and
// create/configure/destroy.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "allocationcounter.h"
#include "chostharness.h"
#if defined(AECORE_BENCH_WITH_SIM)
#include "simmodel.h"
#endif

namespace
{

// The frame the pipeline is sized for: a 64 x 48 Bayer grid and a 256-bin histogram.
HostSensorConfig BenchSensor()
{
    HostSensorConfig sensor = DefaultSensor(0);
    sensor.histogramBins    = 256;
    return sensor;
}

const HostSensorConfig kSensor = BenchSensor();

VOID SilentLogger(const CHAR*, UINT32, const CHAR*, StatsLogGroup, StatsLog, const CHAR*, ...)
{
}

CHostHarness& Harness()
{
    static CHostHarness harness;
    static bool         loaded = false;
    if (!loaded)
    {
        std::string error;
        if (!harness.Load(AECORE_LIBRARY_PATH, &error))
        {
            std::abort();
        }
        loaded = true;
    }
    return harness;
}

// Metering, convergence, arbitration and the output list of one preview frame, on the harness's grid without
// saturation records (the grid parser's one-region path).
void BM_ProcessFrame(benchmark::State& state)
{
    CHostHarness&    harness = Harness();
    LYRAECAlgorithm* pAlgo   = nullptr;
    HostFrameResult  frame   = {};
    harness.Create(0, &pAlgo, &SilentLogger);
    harness.Configure(pAlgo, kSensor, AECAlgoOperationModeStreaming);
    harness.QueryStartExposure(pAlgo, &frame);

    UINT64 frameId = 0;
    for (auto _ : state)
    {
        state.PauseTiming();
        harness.PrepareFrame(kSensor, ++frameId, 100.0F, &frame);
        state.ResumeTiming();
        benchmark::DoNotOptimize(harness.RunPreparedFrame(pAlgo, &frame));
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
    harness.Destroy(pAlgo, 0, true);
}
BENCHMARK(BM_ProcessFrame);

#if defined(AECORE_BENCH_WITH_SIM)
// The same frame as an ISP delivers it: the simulator's grid with saturation records (which the batched grid
// kernels take) and a 256-bin histogram of a grey card, exposed near the target.
void BM_ProcessFrameIspStatistics(benchmark::State& state)
{
    CHostHarness&    harness = Harness();
    LYRAECAlgorithm* pAlgo   = nullptr;
    HostFrameResult  frame   = {};
    harness.Create(0, &pAlgo, &SilentLogger);
    harness.Configure(pAlgo, kSensor, AECAlgoOperationModeStreaming);
    harness.QueryStartExposure(pAlgo, &frame);

    SimSensorDesc desc = {};
    desc.histogramBins = 256;
    std::string                error;
    SimSceneSpec               spec   = {};
    std::unique_ptr<ISimScene> pScene = CreateScene(spec, desc.simWidth, desc.simHeight, &error);
    SimImage                   image;
    pScene->Render(0.0F, 1.0F, &image);
    CSimSensor  sensor(desc, 1U);
    SimRawFrame raw;
    sensor.Capture(image, pScene->Flicker(), SimExposure{16666666U, 2.0F, 0.0F}, 0U, &raw);
    CStatsGenerator stats(desc);
    stats.Generate(raw);

    UINT64 frameId = 0;
    for (auto _ : state)
    {
        state.PauseTiming();
        harness.PrepareFrame(++frameId, stats.Grid(), stats.Hist(), &frame);
        state.ResumeTiming();
        benchmark::DoNotOptimize(harness.RunPreparedFrame(pAlgo, &frame));
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
    harness.Destroy(pAlgo, 0, true);
}
BENCHMARK(BM_ProcessFrameIspStatistics);
#endif

// Heap bytes an instance takes: by create alone, and once configured with its tuning and start exposure.
void BM_InstanceFootprint(benchmark::State& state)
{
    CHostHarness& harness       = Harness();
    size_t        createBytes   = 0;
    size_t        createBlocks  = 0;
    size_t        configuredBytes = 0;
    for (auto _ : state)
    {
        LYRAECAlgorithm* pAlgo = nullptr;
        HostFrameResult  start = {};
        AllocationCounter::Begin();
        harness.Create(2, &pAlgo, &SilentLogger);
        AllocationCounter::End();
        createBytes  = AllocationCounter::LastWindowBytes();
        createBlocks = AllocationCounter::LastWindowCount();
        AllocationCounter::Begin();
        harness.Configure(pAlgo, kSensor, AECAlgoOperationModeStreaming);
        harness.QueryStartExposure(pAlgo, &start);
        AllocationCounter::End();
        configuredBytes = createBytes + AllocationCounter::LastWindowBytes();
        harness.Destroy(pAlgo, 2, true);
    }
    state.counters["create_bytes"]     = static_cast<double>(createBytes);
    state.counters["create_blocks"]    = static_cast<double>(createBlocks);
    state.counters["configured_bytes"] = static_cast<double>(configuredBytes);
}
BENCHMARK(BM_InstanceFootprint)->Iterations(20);

void BM_CreateConfigureDestroy(benchmark::State& state)
{
    CHostHarness&   harness = Harness();
    HostFrameResult start   = {};
    for (auto _ : state)
    {
        LYRAECAlgorithm* pAlgo = nullptr;
        harness.Create(1, &pAlgo, &SilentLogger);
        harness.Configure(pAlgo, kSensor, AECAlgoOperationModeStreaming);
        harness.QueryStartExposure(pAlgo, &start);
        harness.Destroy(pAlgo, 1, true);
    }
}
BENCHMARK(BM_CreateConfigureDestroy);

} // namespace

BENCHMARK_MAIN();
