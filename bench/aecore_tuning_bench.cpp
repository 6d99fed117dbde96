// Measures the parameter store: loading a 10 MB parameter file from a buffer and from a file, and CRC-64 speed.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "ctunecommands.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parsercrc.h"

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
        std::ostringstream      out;
        std::ostringstream      err;
        AecTune::CTuneCommands  commands(&out, &err);
        AecTune::TuneFileOptions options{};
        AecTune::CTuneFormat::ParseVersion("7.0.0", &options.version);
        options.definitions = true;
        options.minimumSize = 3388;
        if (!commands.CompileText("bench.json", source.str(), options, &file))
        {
            std::fprintf(stderr, "aecore_tuning_bench: compile failed: %s\n", err.str().c_str());
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
} // namespace

BENCHMARK_MAIN();
