// Fuzz target of the parameter store: a parameter file loaded from memory, then modules, values and modes queried.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "platform/velalog.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parsercrc.h"
#include "unit/tuningparser/ctestmodule.h"

namespace
{
// Formats nothing further: the lines are already formatted when they arrive.
void DropLine(Vela::Log::Level, const CHAR*)
{
}

class CFuzzSetManager : public ParameterSetManager
{
public:
    // In file mode modes load on demand from the file, with a small mode cache so that trimming runs too.
    explicit CFuzzSetManager(bool fileMode)
        : ParameterSetManager(nullptr, 0, "fuzz")
    {
        if (fileMode)
        {
            ConfigureForFileMode(5);
        }
        AddDefaultModule(new TestModuleTypeClass("TestModule", nullptr));
        AddDefaultModule(new TestModuleTypeClass("OtherModule", nullptr));
        // Files before 6.0.0 name no module: their instances carry name hash 0, the hash of "".
        AddDefaultModule(new TestModuleTypeClass("", nullptr));
    }
};

// Mutations would almost never keep the checksum and the size right; fixing both lets them reach the tables.
void Reseal(std::vector<BYTE>& bytes)
{
    if (bytes.size() < 48)
    {
        return;
    }
    const UINT32 size = static_cast<UINT32>(bytes.size());
    std::memcpy(&bytes[28], &size, 4);
    UINT16 major = 0;
    std::memcpy(&major, &bytes[32], 2);
    if (major >= 6)
    {
        const UINT64 crc = ParserCRC64::GetCRC(bytes.data(), bytes.size() - 8, true);
        std::memcpy(&bytes[bytes.size() - 8], &crc, 8);
    }
    else
    {
        const UINT32 crc = ParserCRC32::GetCRC(bytes.data(), bytes.size() - 4);
        std::memcpy(&bytes[bytes.size() - 4], &crc, 4);
    }
}

void Query(CFuzzSetManager& manager)
{
    static const TuningMode s_branches[][4] = {
        {{ModeType::Default, {0}}},
        {{ModeType::Default, {0}}, {ModeType::Usecase, {2}}, {ModeType::Scene, {6}}},
        {{ModeType::Default, {0}}, {ModeType::Feature1, {1}}, {ModeType::Feature1, {2}}},
        {{ModeType::Default, {0}}, {ModeType::Usecase, {1}}, {ModeType::Effect, {3}}, {ModeType::Scene, {1}}},
    };
    static const UINT32 s_counts[] = {1, 3, 3, 4};
    const UINT32        tables     = manager.GetModeTableCount();
    for (UINT32 table = 0; (table < tables) && (table < 4); table++)
    {
        for (UINT32 b = 0; b < 4; b++)
        {
            for (const CHAR* pName : {"TestModule", "OtherModule", ""})
            {
                ParameterModule* pModule = manager.GetModuleInternal(table, pName, s_branches[b], s_counts[b], nullptr, 1);
                manager.ReleaseModule(pModule);
            }
        }
        CHAR text[2048];
        manager.GetValue(table, "0.0|2.2|5.6", "TestModule", nullptr, text, sizeof(text));
        const TuningMode branch[] = {{ModeType::Default, {0}}, {ModeType::Usecase, {2}}};
        manager.LoadMode(table, branch, 2, "fuzz");
        manager.UnloadMode(table, branch, 2);
        manager.GetValue(table, "0.0", "TestModule.nested", "a,b", text, sizeof(text));
        manager.SetValue(table, "0.0|2.2", "TestModule", "first", "12");
        manager.GetChildModes(table, "0.0", text, sizeof(text));
        manager.GetActiveModes(table, text, sizeof(text));
        PList<const CHAR*> names;
        manager.GetModeTableNames(names);
    }
}

// The same file through an in-memory file in file mode, grown past the header read of file mode.
void LoadFromFile(std::vector<BYTE> bytes)
{
    if (bytes.size() < 48)
    {
        return;
    }
    UINT16 major = 0;
    std::memcpy(&major, &bytes[32], 2);
    const size_t trailer = (major >= 6) ? 8 : 4;
    bytes.insert(bytes.end() - static_cast<std::ptrdiff_t>(trailer), 4000, 0);
    Reseal(bytes);
    const int fd = memfd_create("tuningparser_fuzz", 0);
    if (fd < 0)
    {
        return;
    }
    if (static_cast<ssize_t>(bytes.size()) == write(fd, bytes.data(), bytes.size()))
    {
        const std::string name = "/proc/self/fd/" + std::to_string(fd);
        CFuzzSetManager   manager(true);
        if (manager.LoadBinaryParameters(name.c_str()))
        {
            Query(manager);
        }
    }
    close(fd);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size)
{
    Vela::Log::SetSink(&DropLine);
    std::vector<BYTE> bytes(pData, pData + size);
    Reseal(bytes);
    CFuzzSetManager manager(false);
    if (manager.LoadBinaryParameters(bytes.data(), bytes.size()))
    {
        Query(manager);
    }
    // Every fourth input also in file mode (it costs a file per input).
    if (0 == (size & 3))
    {
        LoadFromFile(bytes);
    }
    return 0;
}
