// Measures the library through its C ABI: one frame of AECProcess, and create/configure/destroy.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "chostharness.h"

namespace
{

const HostSensorConfig kSensor = DefaultSensor(0);

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
