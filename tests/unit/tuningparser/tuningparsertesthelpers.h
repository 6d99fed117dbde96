// Shared helpers of the parameter store tests: managers with the test module, files on disk, branches.
#ifndef AECORE_TESTS_UNIT_TUNINGPARSER_TUNINGPARSERTESTHELPERS_H
#define AECORE_TESTS_UNIT_TUNINGPARSER_TUNINGPARSERTESTHELPERS_H

#include <memory>
#include <string>
#include <vector>

#include "tuning/parser/parametersetmanager.h"
#include "unit/tuningparser/cparameterfilebuilder.h"
#include "unit/tuningparser/ctestmodule.h"

// A plain manager (buffer mode), or with fileMode the form the main tuning manager takes (file mode, cache).
class CTestSetManager : public ParameterSetManager
{
public:
    explicit CTestSetManager(bool fileMode = false, UINT32 cacheSize = 17, const CHAR* pIdentifier = nullptr);
};

std::unique_ptr<CTestSetManager> MakeManager(bool fileMode = false, UINT32 cacheSize = 17);

// Writes bytes to a new temporary file and returns its name; the file is removed by RemoveFile.
std::string WriteTempFile(const ByteVector& bytes);
void        RemoveFile(const std::string& name);

TuningMode Mode(ModeType mode, UINT16 subMode);
TestModuleTypeClass* AsTest(ParameterModule* pModule);

#endif // AECORE_TESTS_UNIT_TUNINGPARSER_TUNINGPARSERTESTHELPERS_H
