// Stand-alone driver for fuzz targets where libFuzzer is not available: runs a corpus, then seeded random mutations.
//
// Usage: <program> [--iterations=N] [--seconds=S] [--seed=N] [--artifact=PATH] CORPUS_DIR_OR_FILE...
// The mutation loop ends after N mutated inputs or S seconds, whichever comes first; the same seed gives the same
// inputs in the same order. An input that crashes is written to PATH (default ./fuzz-crash.bin) before the process
// dies, to be replayed by passing that file as the corpus.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size);
// Present when a sanitizer runtime is linked in: called before the runtime ends the process on a finding.
extern "C" void __sanitizer_set_death_callback(void (*pCallback)(void)) __attribute__((weak));

namespace
{
using Input = std::vector<uint8_t>;

// The input being run and where to save it, for the crash handlers (which may only make async-signal-safe calls).
const Input* g_pCurrent = nullptr;
char         g_artifactPath[4096] = "fuzz-crash.bin";

void SaveCurrentInput()
{
    if (nullptr == g_pCurrent)
    {
        return;
    }
    const int fd = open(g_artifactPath, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd >= 0)
    {
        size_t done = 0;
        while (done < g_pCurrent->size())
        {
            const ssize_t n = write(fd, g_pCurrent->data() + done, g_pCurrent->size() - done);
            if (n <= 0)
            {
                break;
            }
            done += static_cast<size_t>(n);
        }
        close(fd);
    }
    static const char kNote[] = "fuzz driver: crashing input saved to the artifact path\n";
    static_cast<void>(write(STDERR_FILENO, kNote, sizeof(kNote) - 1));
    g_pCurrent = nullptr;
}

void OnFatalSignal(int signal)
{
    SaveCurrentInput();
    raise(signal);
}

void InstallCrashHandler(int signal)
{
    struct sigaction action;
    std::memset(&action, 0, sizeof(action));
    action.sa_handler = OnFatalSignal;
    action.sa_flags   = SA_RESETHAND;
    sigaction(signal, &action, nullptr);
}

void InstallCrashHandlers()
{
    // A sanitizer reports faults itself and then calls back; taking its signals would lose its report.
    if (nullptr != __sanitizer_set_death_callback)
    {
        __sanitizer_set_death_callback(SaveCurrentInput);
    }
    else
    {
        for (int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        {
            InstallCrashHandler(signal);
        }
    }
    // An abort (a failed check of the fuzz target) is not a sanitizer finding.
    InstallCrashHandler(SIGABRT);
}

bool ReadFile(const std::filesystem::path& path, Input* pInput)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
    {
        return false;
    }
    pInput->assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    return true;
}

bool LoadCorpus(const std::string& location, std::vector<Input>* pCorpus)
{
    std::error_code ec;
    if (!std::filesystem::is_directory(location, ec))
    {
        Input input;
        if (!ReadFile(location, &input))
        {
            return false;
        }
        pCorpus->push_back(std::move(input));
        return true;
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(location, ec))
    {
        if (entry.is_regular_file())
        {
            files.push_back(entry.path());
        }
    }
    // Sorted, so that the run does not depend on the order of the directory.
    std::sort(files.begin(), files.end());
    for (const auto& path : files)
    {
        Input input;
        if (!ReadFile(path, &input))
        {
            return false;
        }
        pCorpus->push_back(std::move(input));
    }
    return !ec;
}

void Run(const Input& input)
{
    g_pCurrent = &input;
    LLVMFuzzerTestOneInput(input.data(), input.size());
    g_pCurrent = nullptr;
}

// Values at the edges of the sizes and counts a parser checks.
const uint32_t kInteresting32[] = {0u,     1u,     2u,     3u,     4u,          8u,          15u,        16u,
                                   32u,    47u,    48u,    64u,    255u,        256u,        257u,       1023u,
                                   1024u,  1025u,  3072u,  3073u,  4096u,       4097u,       65535u,     65536u,
                                   0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFEu, 0xFFFFFFFFu};
const uint8_t  kInteresting8[]  = {0u, 1u, 2u, 4u, 7u, 8u, 16u, 0x7Fu, 0x80u, 0xFEu, 0xFFu};

// The fixed headers of a statistics input come first; mutating them mostly is what moves the parser around.
constexpr size_t kHeaderBytes = 512;

class CMutator
{
public:
    CMutator(uint64_t seed, const std::vector<Input>& corpus)
        : m_rng(seed)
        , m_corpus(corpus)
    {
    }

    Input Next()
    {
        Input input = m_corpus[Pick(m_corpus.size())];
        const size_t rounds = 1 + Pick(8);
        for (size_t i = 0; i < rounds; i++)
        {
            Mutate(&input);
        }
        return input;
    }

private:
    size_t Pick(size_t n) { return (0 == n) ? 0 : static_cast<size_t>(m_rng() % n); }

    size_t Offset(const Input& input)
    {
        const bool header = (0 != Pick(4));
        return Pick(header ? std::min(input.size(), kHeaderBytes) : input.size());
    }

    void Mutate(Input* pInput)
    {
        Input& in = *pInput;
        switch (Pick(8))
        {
        case 0:
            if (!in.empty())
            {
                in[Offset(in)] ^= static_cast<uint8_t>(1u << Pick(8));
            }
            break;
        case 1:
            if (!in.empty())
            {
                in[Offset(in)] = static_cast<uint8_t>(m_rng());
            }
            break;
        case 2:
            if (!in.empty())
            {
                in[Offset(in)] = kInteresting8[Pick(std::size(kInteresting8))];
            }
            break;
        case 3:
            if (in.size() >= 4)
            {
                const size_t   at    = std::min(Offset(in), in.size() - 4);
                const uint32_t value = kInteresting32[Pick(std::size(kInteresting32))];
                for (size_t b = 0; b < 4; b++)
                {
                    in[at + b] = static_cast<uint8_t>(value >> (8 * b));
                }
            }
            break;
        case 4:
        {
            const size_t at = Pick(in.size() + 1);
            Input        bytes(1 + Pick(16));
            for (uint8_t& b : bytes)
            {
                b = static_cast<uint8_t>(m_rng());
            }
            in.insert(in.begin() + static_cast<std::ptrdiff_t>(at), bytes.begin(), bytes.end());
            break;
        }
        case 5:
            if (!in.empty())
            {
                const size_t at    = Pick(in.size());
                const size_t count = std::min(in.size() - at, 1 + Pick(16));
                in.erase(in.begin() + static_cast<std::ptrdiff_t>(at),
                         in.begin() + static_cast<std::ptrdiff_t>(at + count));
            }
            break;
        case 6:
            in.resize(Pick(in.size() + 1));
            break;
        default:
        {
            // Splice: a stretch of another corpus entry at the same offset.
            const Input& other = m_corpus[Pick(m_corpus.size())];
            if (!other.empty() && !in.empty())
            {
                const size_t at    = Pick(std::min(in.size(), other.size()));
                const size_t count = std::min({in.size() - at, other.size() - at, 1 + Pick(64)});
                std::copy_n(other.begin() + static_cast<std::ptrdiff_t>(at), count,
                            in.begin() + static_cast<std::ptrdiff_t>(at));
            }
            break;
        }
        }
    }

    std::mt19937_64            m_rng;
    const std::vector<Input>&  m_corpus;
};

bool ParseNumber(const std::string& arg, const char* pPrefix, uint64_t* pValue)
{
    const std::string prefix(pPrefix);
    if (0 != arg.compare(0, prefix.size(), prefix))
    {
        return false;
    }
    *pValue = std::strtoull(arg.c_str() + prefix.size(), nullptr, 10);
    return true;
}
} // namespace

int main(int argc, char** argv)
{
    uint64_t                 iterations = 0;
    uint64_t                 seconds    = 0;
    uint64_t                 seed       = 1;
    std::vector<std::string> locations;
    for (int i = 1; i < argc; i++)
    {
        const std::string arg(argv[i]);
        if (ParseNumber(arg, "--iterations=", &iterations) || ParseNumber(arg, "--seconds=", &seconds) ||
            ParseNumber(arg, "--seed=", &seed))
        {
            continue;
        }
        if (0 == arg.compare(0, 11, "--artifact="))
        {
            std::snprintf(g_artifactPath, sizeof(g_artifactPath), "%s", arg.c_str() + 11);
            continue;
        }
        locations.push_back(arg);
    }
    if (locations.empty())
    {
        std::fprintf(stderr, "usage: %s [--iterations=N] [--seconds=S] [--seed=N] [--artifact=PATH] CORPUS...\n",
                     argv[0]);
        return 2;
    }

    std::vector<Input> corpus;
    for (const std::string& location : locations)
    {
        if (!LoadCorpus(location, &corpus))
        {
            std::fprintf(stderr, "cannot read corpus %s\n", location.c_str());
            return 2;
        }
    }
    if (corpus.empty())
    {
        std::fprintf(stderr, "the corpus is empty\n");
        return 2;
    }

    InstallCrashHandlers();
    for (const Input& input : corpus)
    {
        Run(input);
    }

    // Without a limit the loop would never end: no limit given means corpus only.
    const bool     timed = (0 != seconds);
    const uint64_t limit = (0 != iterations) ? iterations : (timed ? UINT64_MAX : 0);
    const auto     end   = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    CMutator       mutator(seed, corpus);
    uint64_t       done = 0;
    while (done < limit && (!timed || std::chrono::steady_clock::now() < end))
    {
        const Input input = mutator.Next();
        Run(input);
        done++;
    }
    std::printf("fuzz driver: %zu corpus inputs and %llu mutated inputs (seed %llu) ran without a finding\n",
                corpus.size(), static_cast<unsigned long long>(done), static_cast<unsigned long long>(seed));
    return 0;
}
