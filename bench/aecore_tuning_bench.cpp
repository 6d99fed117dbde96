// Measures the parameter store: loading a 10 MB parameter file from a buffer and from a file, CRC-64 speed, and
// default.bin as a host loads it (buffer and file mode, with and without the first fetch of all 17 AEC modules).
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tools/aectune/tunetesthelpers.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parsercrc.h"
#include "tuning/tuningsetmanager.h"

namespace
{
// One module whose record holds a counted array of 2.6 million INT32 values: a 10 MB file.
constexpr UINT32 kValues = 2621440;

const std::vector<UINT8>& BigFile()
{
    static std::vector<UINT8> file;
    if (file.empty())
    {
        std::ostringstream source;
        source << R"({ "header": { "createdBy": "aecore_tuning_bench", "binaryTag": "bench", "flags": 0 },
  "modeTables": [ { "name": "Main", "modes": [ { "mode": "Usecase.Video" } ] } ],
  "modules": [ { "name": "Big", "type": "bench::BigType", "version": "1.0.0",
      "members": [ { "name": "values", "type": "INT32[]" } ],
      "values": { "Default": { "values": [)";
        for (UINT32 i = 0; i < kValues; i++)
        {
            source << ((0 == i) ? "" : ",") << (i & 0xFFFF);
        }
        source << "] } } } ] }";
        std::string messages;
        if (!AecTuneTest::Compile(source.str(), "7.0.0", true, ParameterFileHeaderReadSize, &file, &messages))
        {
            std::fprintf(stderr, "aecore_tuning_bench: compile failed: %s\n", messages.c_str());
            file.clear();
        }
    }
    return file;
}

void BM_LoadFromBuffer(benchmark::State& state)
{
    std::vector<UINT8> file = BigFile();
    for (auto _ : state)
    {
        ParameterSetManager manager(nullptr, 0, "bench");
        manager.SetIgnoreMissingModules(true);
        benchmark::DoNotOptimize(manager.LoadBinaryParameters(file.data(), file.size()));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(file.size()));
    state.counters["MB"] = static_cast<double>(file.size()) / 1e6;
}
BENCHMARK(BM_LoadFromBuffer)->Unit(benchmark::kMillisecond);

void BM_LoadFromFile(benchmark::State& state)
{
    const std::vector<UINT8>& file = BigFile();
    const std::string path = "/tmp/aecore_tuning_bench_" + std::to_string(static_cast<long>(getpid())) + ".bin";
    AecTune::CTuneCommands::WriteFile(path, file);
    for (auto _ : state)
    {
        ParameterSetManager manager(nullptr, 0, "bench");
        manager.ConfigureForFileMode(17);
        manager.SetIgnoreMissingModules(true);
        benchmark::DoNotOptimize(manager.LoadBinaryParameters(path.c_str()));
    }
    std::remove(path.c_str());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(file.size()));
}
BENCHMARK(BM_LoadFromFile)->Unit(benchmark::kMillisecond);

void BM_Crc64(benchmark::State& state)
{
    const std::vector<UINT8>& file = BigFile();
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(ParserCRC64::GetCRC(file.data(), file.size(), true));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(file.size()));
}
BENCHMARK(BM_Crc64)->Unit(benchmark::kMillisecond);
#ifdef AECORE_DEFAULT_TUNING_FILE
// The selectors a host sends: Default, then each mode type with sub-mode 0 (Usecase Preview).
const TuningMode kSelectors[7] = {
    {ModeType::Default, {0}},  {ModeType::Sensor, {0}}, {ModeType::Usecase, {0}}, {ModeType::Feature1, {0}},
    {ModeType::Feature2, {0}}, {ModeType::Scene, {0}},  {ModeType::Effect, {0}},
};

// Fetches one module and hands the reference back; 1 if the store had it.
template <typename Record>
UINT32 FetchAndRelease(Record* pRecord)
{
    if (nullptr == pRecord)
    {
        return 0;
    }
    pRecord->Release();
    return 1;
}

// The first fetch of the 17 modules the core reads; in file mode this loads their data from the file.
UINT32 FetchAecModules(TuningSetManager* pStore)
{
    return FetchAndRelease(pStore->GetModule_Arbitration(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_Convergence(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_aecDepth(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_Extension(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_Face(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_Flash(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_aecIr(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_Metering(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_AECParamExtension(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_SensorHDRDefaultConfig(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_aecShdr(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_aecSkipCtrl(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_SnapshotControl(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_StartUp(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_StatsDefaultConfig(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_aecMultiCamSync(kSelectors, 7, nullptr)) +
           FetchAndRelease(pStore->GetModule_Touch(kSelectors, 7, nullptr));
}

const std::vector<UINT8>& DefaultBin()
{
    static const std::vector<UINT8> file = [] {
        std::ifstream stream(AECORE_DEFAULT_TUNING_FILE, std::ios::binary);
        return std::vector<UINT8>(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }();
    return file;
}

// A new main store (it registers all 270 module prototypes): what a host pays before it loads a file.
void BM_DefaultBinNewStore(benchmark::State& state)
{
    for (auto _ : state)
    {
        std::unique_ptr<TuningSetManager> store(new TuningSetManager("bench"));
        benchmark::DoNotOptimize(store.get());
    }
}
BENCHMARK(BM_DefaultBinNewStore)->Unit(benchmark::kMicrosecond);

// default.bin into a new store, from memory (range 0) or from the file (range 1); with the second argument 1 also
// the first fetch of all 17 AEC modules. Making and deleting the store is not timed.
void BM_DefaultBinLoad(benchmark::State& state)
{
    const bool                fileMode = (1 == state.range(0));
    const bool                fetch    = (1 == state.range(1));
    std::vector<UINT8>        buffer   = DefaultBin();
    UINT32                    modules  = 0;
    for (auto _ : state)
    {
        state.PauseTiming();
        std::unique_ptr<TuningSetManager> store(new TuningSetManager("bench"));
        state.ResumeTiming();
        const bool loaded = fileMode ? store->LoadBinaryParameters(AECORE_DEFAULT_TUNING_FILE)
                                     : store->LoadBinaryParameters(buffer.data(), buffer.size());
        benchmark::DoNotOptimize(loaded);
        modules = fetch ? FetchAecModules(store.get()) : 0;
        state.PauseTiming();
        store.reset();
        state.ResumeTiming();
    }
    state.counters["fileBytes"] = static_cast<double>(buffer.size());
    state.counters["modules"]   = static_cast<double>(modules);
    state.SetLabel(std::string(fileMode ? "file mode" : "buffer mode") + (fetch ? ", first fetch of 17" : ""));
}
BENCHMARK(BM_DefaultBinLoad)->ArgsProduct({{0, 1}, {0, 1}})->Unit(benchmark::kMicrosecond);
#endif
} // namespace

BENCHMARK_MAIN();
