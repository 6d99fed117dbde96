// Shared helpers of the parameter store tests: managers with the test module, files on disk, branches.
#include "unit/tuningparser/tuningparsertesthelpers.h"

#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

CTestSetManager::CTestSetManager(bool fileMode, UINT32 cacheSize, const CHAR* pIdentifier)
    : ParameterSetManager(nullptr, 0, pIdentifier)
{
    if (fileMode)
    {
        ConfigureForFileMode(cacheSize);
    }
    AddDefaultModule(new TestModuleTypeClass("TestModule", nullptr));
    AddDefaultModule(new TestModuleTypeClass("OtherModule", nullptr));
}

std::unique_ptr<CTestSetManager> MakeManager(bool fileMode, UINT32 cacheSize)
{
    return std::unique_ptr<CTestSetManager>(new CTestSetManager(fileMode, cacheSize));
}

std::string WriteTempFile(const ByteVector& bytes)
{
    static std::atomic<UINT32> s_counter{0};
    const char*                pDir = std::getenv("TMPDIR");
    const std::string          name = std::string((nullptr != pDir) ? pDir : "/tmp") + "/aecore_tuningparser_" +
                             std::to_string(getpid()) + "_" + std::to_string(s_counter++) + ".bin";
    FILE* pFile = std::fopen(name.c_str(), "wb");
    if (nullptr != pFile)
    {
        std::fwrite(bytes.data(), 1, bytes.size(), pFile);
        std::fclose(pFile);
    }
    return name;
}

void RemoveFile(const std::string& name)
{
    std::remove(name.c_str());
}

TuningMode Mode(ModeType mode, UINT16 subMode)
{
    TuningMode result;
    result.mode          = mode;
    result.subMode.value = subMode;
    return result;
}

TestModuleTypeClass* AsTest(ParameterModule* pModule)
{
    return static_cast<TestModuleTypeClass*>(pModule);
}
