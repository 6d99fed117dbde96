// Test support of the tuning store: parameter files compiled from JSON sources, and stores loaded from them.
#include "unit/tuningstore/ctuningstoretestfile.h"

#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "tools/aectune/tunetesthelpers.h"
#include "tuning/parser/parsercrc.h"

CTuningStoreTestFile::CTuningStoreTestFile(const std::string& sourceText)
    : m_valid(false)
{
    static std::atomic<UINT32> s_counter{0};
    m_valid          = AecTuneTest::Compile(sourceText, "7.0.0", true, ParameterFileHeaderReadSize, &m_bytes,
                                            &m_messages);
    const char* pDir = std::getenv("TMPDIR");
    m_name = std::string((nullptr != pDir) ? pDir : "/tmp") + "/aecore_tuningstore_" + std::to_string(getpid()) +
             "_" + std::to_string(s_counter++) + ".bin";
    WriteFile();
}

void CTuningStoreTestFile::WriteFile()
{
    FILE* pFile = m_valid ? std::fopen(m_name.c_str(), "wb") : nullptr;
    m_valid     = (nullptr != pFile) && (m_bytes.size() == std::fwrite(m_bytes.data(), 1, m_bytes.size(), pFile));
    if (nullptr != pFile)
    {
        std::fclose(pFile);
    }
}

void CTuningStoreTestFile::RenameModule(const std::string& from, const std::string& to)
{
    const UINT64 fromHash = ParserCRC64::GetNameHash(from.c_str());
    const UINT64 toHash   = ParserCRC64::GetNameHash(to.c_str());
    const size_t body     = m_bytes.size() - sizeof(UINT64);
    for (size_t at = 0; at + sizeof(UINT64) <= body; at++)
    {
        if (0 == std::memcmp(&m_bytes[at], &fromHash, sizeof(UINT64)))
        {
            std::memcpy(&m_bytes[at], &toHash, sizeof(UINT64));
        }
    }
    const UINT64 checksum = ParserCRC64::GetCRC(m_bytes.data(), body, true, 0);
    std::memcpy(&m_bytes[body], &checksum, sizeof(UINT64));
    WriteFile();
}

CTuningStoreTestFile::~CTuningStoreTestFile()
{
    std::remove(m_name.c_str());
}

std::unique_ptr<TuningSetManager> CTuningStoreTestFile::LoadFileMode() const
{
    std::unique_ptr<TuningSetManager> store(new TuningSetManager("tuningstore test"));
    return store->LoadBinaryParameters(m_name.c_str()) ? std::move(store) : nullptr;
}

std::unique_ptr<TuningSetManager> CTuningStoreTestFile::LoadBufferMode()
{
    std::unique_ptr<TuningSetManager> store(new TuningSetManager("tuningstore test"));
    return store->LoadBinaryParameters(m_bytes.data(), m_bytes.size()) ? std::move(store) : nullptr;
}

std::string SourceModule(const std::string& name, const std::string& type, const std::string& version,
                         const std::string& members, const std::string& values)
{
    return "{ \"name\": \"" + name + "\", \"type\": \"" + type + "\", \"version\": \"" + version +
           "\", \"members\": " + members + ", \"values\": " + values + " }";
}

std::string Source(const std::string& modeTables, const std::vector<std::string>& modules)
{
    std::string text = "{ " + (modeTables.empty() ? std::string() : "\"modeTables\": " + modeTables + ", ") +
                       "\"modules\": [";
    for (size_t i = 0; i < modules.size(); i++)
    {
        text += ((0 == i) ? "" : ", ") + modules[i];
    }
    return text + "] }";
}

TuningMode Selector(ModeType mode, UINT16 subMode)
{
    TuningMode selector;
    selector.mode          = mode;
    selector.subMode.value = subMode;
    return selector;
}
