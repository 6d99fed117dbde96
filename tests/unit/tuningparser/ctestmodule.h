// A hand-written module in the form the generated accessors take, for exercising the store in tests.
#ifndef AECORE_TESTS_UNIT_TUNINGPARSER_CTESTMODULE_H
#define AECORE_TESTS_UNIT_TUNINGPARSER_CTESTMODULE_H

#include "tuning/parser/parametermodule.h"
#include "tuning/parser/parameterfilesymboltableentry.h"
#include "unit/tuningparser/cparameterfilebuilder.h"

struct TestRecordType
{
    UINT32 a;
    FLOAT  b;
};

struct TestModuleType
{
    UINT32         SymbolTableID;
    UINT32         first;
    FLOAT          gain;
    UINT32         fixed[8];
    UINT32         listCount;
    UINT32         listID;
    INT32*         list;
    CHAR*          label;
    TestRecordType nested;
    UINT32         last;
};

class TestModuleTypeClass : public ParameterModule, public TestModuleType
{
public:
    static const VersionUnion SourceVersion;

    TestModuleTypeClass(const CHAR* pName, ModuleData* pData);
    ~TestModuleTypeClass() override;

    ParameterModule* Create(ModuleData* pData, DefaultModule* pDefaults) const override;
    bool             LoadModule(ParameterFileSymbolTable* pSymbolTable) override;
    bool             UnloadModule() override;
    bool             GetValue(const CHAR* pName, CHAR* pOut, UINT32 size) override;
    bool             SetValue(const CHAR* pName, const CHAR* pValue) override;
    bool             GetInfo(const CHAR* pName, PList<ParameterParserInfo>& list) override;

    // The record of one instance as the source layout writes it, for files made by tests.
    struct Values
    {
        UINT32              first   = 0;
        FLOAT               gain    = 0.0f;
        UINT32              fixed[8] = {};
        std::vector<INT32>  list;
        std::string         label;
        UINT32              a       = 0;
        FLOAT               b       = 0.0f;
        UINT32              last    = 0;
    };
    // Writes the record into builder data (out-of-line blocks are added to the builder).
    static ByteVector Write(CParameterFileBuilder& builder, const Values& values, UINT32 listDup = 0,
                            UINT32 labelDup = 0);
    // The definitions of the source layout (module name given).
    static CDefinitionWriter& Define(CDefinitionWriter& writer, const std::string& moduleName);

    // Array loaders of the nested record, as generated code has them.
    static bool  LoadRecordArray(ParameterLoadParameters& params, void* pDest, UINT32 count);
    static void* AllocRecords(UINT32 count);

    static ParameterModule* MakeInstance(const CHAR* pName, ModuleData* pData, UINT32 key);

    static const INT32 LocationList  = 1;
    static const INT32 LocationLabel = 2;
};

#endif // AECORE_TESTS_UNIT_TUNINGPARSER_CTESTMODULE_H
