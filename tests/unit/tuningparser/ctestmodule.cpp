// A hand-written module in the form the generated accessors take, for exercising the store in tests.
#include "unit/tuningparser/ctestmodule.h"

#include <cstring>
#include <string>

#include "platform/velaallocator.h"
#include "tuning/parser/parameterfilesymboltable.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parameterutils.h"
#include "tuning/parser/parsercrc.h"

const VersionUnion TestModuleTypeClass::SourceVersion = VersionUnion::Make(1, 2, 3);

namespace
{
UINT64 Hash(const CHAR* pName)
{
    return ParserCRC64::GetNameHash(pName);
}

bool LoadRecord(ParameterLoadParameters& params, void* pDest)
{
    TestRecordType* pRecord = static_cast<TestRecordType*>(pDest);
    *pRecord                = TestRecordType();
    ParameterFileSymbolTableEntry* pEntry = params.Entry;
    ParameterLoadParameters        members;
    UINT32                         limit = 0;
    if (!pEntry->BeginStructure(params, members, limit))
    {
        return true;
    }
    members.NameHash = Hash("a");
    pEntry->ReadSimpleTypeFixedArray<UINT32>(&pRecord->a, 1, members);
    members.NameHash = Hash("b");
    pEntry->ReadSimpleTypeFixedArray<FLOAT>(&pRecord->b, 1, members);
    pEntry->EndStructure(limit);
    return true;
}

bool LoadTop(ParameterLoadParameters& params, void* pDest)
{
    TestModuleType* pRecord = static_cast<TestModuleType*>(pDest);
    const UINT32    key     = pRecord->SymbolTableID;
    *pRecord                = TestModuleType();
    pRecord->SymbolTableID  = key;
    ParameterFileSymbolTableEntry* pEntry = params.Entry;
    ParameterLoadParameters        members;
    UINT32                         limit = 0;
    if (!pEntry->BeginStructure(params, members, limit))
    {
        return true;
    }
    members.NameHash = Hash("first");
    pEntry->ReadSimpleTypeFixedArray<UINT32>(&pRecord->first, 1, members);
    members.NameHash = Hash("gain");
    pEntry->ReadSimpleTypeFixedArray<FLOAT>(&pRecord->gain, 1, members);
    members.NameHash = Hash("fixed");
    pEntry->ReadSimpleTypeFixedArray<UINT32>(pRecord->fixed, 8, members);
    members.NameHash = Hash("list");
    pEntry->ReadSimpleTypeArray<INT32>(pRecord->list, pRecord->listCount, pRecord->listID, 16, members,
                                       TestModuleTypeClass::LocationList);
    members.NameHash = Hash("label");
    pEntry->ReadString(pRecord->label, members, TestModuleTypeClass::LocationLabel);
    members.NameHash = Hash("nested");
    LoadRecord(members, &pRecord->nested);
    members.NameHash = Hash("last");
    pEntry->ReadSimpleTypeFixedArray<UINT32>(&pRecord->last, 1, members);
    pEntry->EndStructure(limit);
    return true;
}

ParameterParserInfo Info(const CHAR* pName, const CHAR* pType, double value, UINT32 decimals, bool isArray,
                         UINT32 count)
{
    ParameterParserInfo info = {};
    info.Name                = pName;
    info.Type                = pType;
    bool truncated           = false;
    ParameterUtils::DoubleToString(value, info.Value, sizeof(info.Value), decimals, truncated);
    info.isArray = isArray;
    info.Count   = count;
    return info;
}
} // namespace

bool TestModuleTypeClass::LoadRecordArray(ParameterLoadParameters& params, void* pDest, UINT32 count)
{
    TestRecordType* pRecords = static_cast<TestRecordType*>(pDest);
    for (UINT32 i = 0; i < count; i++)
    {
        params.Index = i;
        LoadRecord(params, &pRecords[i]);
    }
    return true;
}

void* TestModuleTypeClass::AllocRecords(UINT32 count)
{
    return VelaCalloc(count, sizeof(TestRecordType), 8);
}

TestModuleTypeClass::TestModuleTypeClass(const CHAR* pName, ModuleData* pData)
    : ParameterModule(pName, SourceVersion, pData)
    , TestModuleType()
{
}

TestModuleTypeClass::~TestModuleTypeClass()
{
    if (IsLoaded())
    {
        UnloadModule();
    }
}

ParameterModule* TestModuleTypeClass::Create(ModuleData* pData, DefaultModule* pDefaults) const
{
    return CreateInstance(pData, pDefaults, "TestModuleTypeClass", true, &MakeInstance);
}

ParameterModule* TestModuleTypeClass::MakeInstance(const CHAR* pName, ModuleData* pData, UINT32 key)
{
    TestModuleTypeClass* pNew = new TestModuleTypeClass(pName, pData);
    pNew->SymbolTableID       = key;
    return pNew;
}

bool TestModuleTypeClass::LoadModule(ParameterFileSymbolTable* pSymbolTable)
{
    return LoadFromSymbolTable(pSymbolTable, "TestModuleTypeClass", LoadTop, static_cast<TestModuleType*>(this));
}

bool TestModuleTypeClass::UnloadModule()
{
    std::lock_guard<ParameterMutex> lock(m_mutex);
    if (m_loaded.load())
    {
        ParameterFileSymbolTable* pTable = (nullptr != m_pData) ? m_pData->SymbolTable : nullptr;
        void*                     pList  = list;
        void*                     pLabel = label;
        ParameterFileSymbolTable::ReleaseBlock(pTable, pList);
        ParameterFileSymbolTable::ReleaseBlock(pTable, pLabel);
        list      = nullptr;
        label     = nullptr;
        listCount = 0;
        m_loaded  = false;
    }
    return true;
}

bool TestModuleTypeClass::GetValue(const CHAR* pName, CHAR* pOut, UINT32 size)
{
    CHAR         name[129];
    INT32        index    = -1;
    const UINT32 consumed = ParameterUtils::GetVariable(pName, name, index, sizeof(name));
    bool         truncated = false;
    double       value     = 0.0;
    UINT32       decimals  = 0;
    if (0 == std::strcmp(name, "first"))
    {
        value = first;
    }
    else if (0 == std::strcmp(name, "gain"))
    {
        value    = gain;
        decimals = 10;
    }
    else if ((0 == std::strcmp(name, "fixed")) && (index >= 0) && (index < 8))
    {
        value = fixed[index];
    }
    else if ((0 == std::strcmp(name, "list")) && (index >= 0) && (static_cast<UINT32>(index) < listCount))
    {
        value = list[index];
    }
    else if (0 == std::strcmp(name, "last"))
    {
        value = last;
    }
    else if (0 == std::strcmp(name, "label"))
    {
        if ((nullptr == label) || (std::strlen(label) >= size))
        {
            return false;
        }
        std::memcpy(pOut, label, std::strlen(label) + 1);
        return true;
    }
    else if (0 == std::strcmp(name, "nested"))
    {
        const CHAR* pRest = pName + consumed;
        if (0 == std::strcmp(pRest, "a"))
        {
            value = nested.a;
        }
        else if (0 == std::strcmp(pRest, "b"))
        {
            value    = nested.b;
            decimals = 10;
        }
        else
        {
            return false;
        }
    }
    else
    {
        return false;
    }
    ParameterUtils::DoubleToString(value, pOut, size, decimals, truncated);
    return !truncated;
}

bool TestModuleTypeClass::SetValue(const CHAR* pName, const CHAR* pValue)
{
    CHAR         name[129];
    INT32        index = -1;
    ParameterUtils::GetVariable(pName, name, index, sizeof(name));
    bool         ok    = false;
    const double value = ParameterUtils::StringToDouble(pValue, ok);
    if (!ok)
    {
        return false;
    }
    if (0 == std::strcmp(name, "first"))
    {
        first = static_cast<UINT32>(value);
    }
    else if (0 == std::strcmp(name, "gain"))
    {
        gain = static_cast<FLOAT>(value);
    }
    else if ((0 == std::strcmp(name, "fixed")) && (index >= 0) && (index < 8))
    {
        fixed[index] = static_cast<UINT32>(value);
    }
    else if (0 == std::strcmp(name, "last"))
    {
        last = static_cast<UINT32>(value);
    }
    else
    {
        return false;
    }
    NoteModified();
    SymbolTableID = GetKey();
    return true;
}

bool TestModuleTypeClass::GetInfo(const CHAR* pName, PList<ParameterParserInfo>& infos)
{
    if ((nullptr != pName) && ('\0' != pName[0]))
    {
        return false;
    }
    infos.Add(Info("first", "UInt32", first, 0, false, 1));
    infos.Add(Info("gain", "Float", gain, 10, false, 1));
    infos.Add(Info("fixed", "UInt32", 0, 0, true, 8));
    infos.Add(Info("list", "Int32", 0, 0, true, listCount));
    infos.Add(Info("nested", "Structure", 0, 0, false, 1));
    infos.Add(Info("last", "UInt32", last, 0, false, 1));
    return true;
}

ByteVector TestModuleTypeClass::Write(CParameterFileBuilder& builder, const Values& values, UINT32 listDup,
                                      UINT32 labelDup)
{
    const bool    v7 = builder.Version() >= VersionUnion::Make(7, 0, 0);
    CRecordWriter w  = builder.Writer();
    w.Begin();
    w.U32(values.first).F32(values.gain);
    if (v7)
    {
        w.U32(8);
    }
    for (UINT32 v : values.fixed)
    {
        w.U32(v);
    }
    UINT32 listRef = 0;
    if (!values.list.empty())
    {
        CRecordWriter elements(builder.Alignment(), false);
        for (INT32 v : values.list)
        {
            elements.I32(v);
        }
        listRef = builder.AddData(elements.Bytes(), listDup);
    }
    w.U32(static_cast<UINT32>(values.list.size())).U32(listRef);
    UINT32 labelRef = 0;
    if (!values.label.empty())
    {
        ByteVector text(values.label.begin(), values.label.end());
        text.push_back(0);
        labelRef = builder.AddData(text, labelDup);
    }
    w.U32(values.label.empty() ? 0 : static_cast<UINT32>(values.label.size() + 1)).U32(labelRef);
    w.Begin().U32(values.a).F32(values.b).End();
    w.U32(values.last);
    w.End();
    return w.Bytes();
}

CDefinitionWriter& TestModuleTypeClass::Define(CDefinitionWriter& writer, const std::string& moduleName)
{
    writer.Structure(2, "TestRecordType", {{13, 0, "a", 0, 1, 1}, {16, 0, "b", 1, 1, 1}});
    writer.Structure(1, "TestModuleType",
                     {{13, 0, "first", 0, 1, 1},
                      {16, 0, "gain", 1, 1, 1},
                      {13, 0, "fixed", 0, 8, 8},
                      {12, 0, "list", 0, 0, 16},
                      {24, 0, "label", 0, 1, 1},
                      {5, 2, "nested", 0, 1, 1},
                      {13, 0, "last", 0, 1, 1}});
    writer.Module(1, moduleName);
    return writer;
}
