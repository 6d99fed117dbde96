// Reads the values of one module instance through the parameter store's member readers, for a given record layout.
#include "ctunevalueloader.h"

#include <cstdio>
#include <cstdlib>
#include <type_traits>

#include "platform/velaallocator.h"

namespace AecTune
{

namespace
{

// The loader and record type that a nested record read in progress belongs to.
struct LoadContext
{
    CTuneValueLoader* pLoader;
    size_t            structIndex;
};

thread_local LoadContext t_context = { nullptr, 0 };

// Sets the context for one call of the store's record readers and restores the caller's afterwards.
class CContextScope
{
public:
    CContextScope(CTuneValueLoader* pLoader, size_t structIndex)
        : m_saved(t_context)
    {
        t_context = LoadContext{ pLoader, structIndex };
    }
    ~CContextScope()
    {
        t_context = m_saved;
    }
    CContextScope(const CContextScope&) = delete;
    CContextScope& operator=(const CContextScope&) = delete;

private:
    LoadContext m_saved;
};

// Shortest decimal text that reads back as the same float, as a JSON number.
Json FloatJson(float value)
{
    char text[32];
    for (int digits = 6; digits <= 9; digits++)
    {
        std::snprintf(text, sizeof(text), "%.*g", digits, static_cast<double>(value));
        if (std::strtof(text, nullptr) == value)
        {
            break;
        }
    }
    return Json(std::strtod(text, nullptr));
}

bool IsCharacterArray(const TuneMember& member)
{
    return member.typeText.compare(0, 4, "CHAR") == 0 && (member.variable || !member.dims.empty());
}

} // namespace

CTuneValueLoader::CTuneValueLoader(const TuneSource* pLayout, ParameterFileSymbolTable* pTable)
    : m_pLayout(pLayout)
    , m_pTable(pTable)
{
}

void CTuneValueLoader::Release(void* pBlock)
{
    if (pBlock != nullptr && m_pTable->ReleaseDupObject(pBlock))
    {
        VelaFree(pBlock);
    }
}

bool CTuneValueLoader::LoadModule(UINT32 id, UINT64 nameHash, size_t structIndex, Json* pValues)
{
    ParameterFileSymbolTableEntry entry;
    if (!m_pTable->Find(entry, id, true))
    {
        return false;
    }
    // The same start as a module's own load: the module's element of the definitions, if the file has them.
    ParameterDefinitionElement* pElement = m_pTable->HasDefinitions() ? m_pTable->BuildModuleElement(nameHash) : nullptr;
    ParameterLoadParameters     params;
    params.Entry           = &entry;
    params.NameHash        = nameHash;
    params.UseParent       = true;
    params.UseParentOffset = true;
    params.Element         = pElement;
    params.Position        = entry.Position;
    params.Index           = 0;
    params.LoadDataLimit   = ParameterFileSymbolTableEntry::NoLimit;
    const bool ok          = LoadRecord(params, structIndex, pValues);
    delete pElement;
    return ok;
}

bool CTuneValueLoader::LoadRecord(ParameterLoadParameters& params, size_t structIndex, Json* pValue)
{
    const TuneStruct&       record = m_pLayout->structs[structIndex];
    ParameterLoadParameters members;
    UINT32                  limit = 0;
    *pValue                       = Json::object();
    if (!params.Entry->BeginStructure(params, members, limit))
    {
        return true; // the file lacks the record: it stays empty, as a module's record stays zero
    }
    bool ok = true;
    for (const TuneMember& member : record.members)
    {
        members.NameHash = member.nameHash;
        Json value;
        ok                          = LoadMember(member, members, &value) && ok;
        (*pValue)[member.name]      = value;
    }
    params.Entry->EndStructure(limit);
    return ok;
}

bool CTuneValueLoader::LoadMember(const TuneMember& member, ParameterLoadParameters& members, Json* pValue)
{
    switch (member.kind)
    {
        case TuneElementKind::String:
            return LoadStrings(member, members, pValue);
        case TuneElementKind::Struct:
            return LoadRecords(member, members, pValue);
        default:
            return LoadScalars(member, members, pValue);
    }
}

bool CTuneValueLoader::LoadScalars(const TuneMember& member, ParameterLoadParameters& members, Json* pValue)
{
    switch (member.definitionType)
    {
        case ParameterDefinitionType_Signed8Bits:    return LoadTyped<INT8>(member, members, pValue);
        case ParameterDefinitionType_Unsigned8Bits:
        case ParameterDefinitionType_Hex8Bits:       return LoadTyped<UINT8>(member, members, pValue);
        case ParameterDefinitionType_Signed16Bits:   return LoadTyped<INT16>(member, members, pValue);
        case ParameterDefinitionType_Unsigned16Bits:
        case ParameterDefinitionType_Hex16Bits:      return LoadTyped<UINT16>(member, members, pValue);
        case ParameterDefinitionType_Unsigned32Bits:
        case ParameterDefinitionType_Hex32Bits:      return LoadTyped<UINT32>(member, members, pValue);
        case ParameterDefinitionType_Signed64Bits:   return LoadTyped<INT64>(member, members, pValue);
        case ParameterDefinitionType_Unsigned64Bits:
        case ParameterDefinitionType_Hex64Bits:      return LoadTyped<UINT64>(member, members, pValue);
        case ParameterDefinitionType_Float:          return LoadTyped<FLOAT>(member, members, pValue);
        case ParameterDefinitionType_Double:         return LoadTyped<DOUBLE>(member, members, pValue);
        default:                                     return LoadTyped<INT32>(member, members, pValue);
    }
}

template <typename T>
Json CTuneValueLoader::ScalarToJson(const TuneMember& member, T value) const
{
    if (std::is_same<T, FLOAT>::value)
    {
        return FloatJson(static_cast<float>(value));
    }
    if (member.definitionType == ParameterDefinitionType_Boolean && (value == 0 || value == 1))
    {
        return Json(value != 0);
    }
    if (member.kind == TuneElementKind::Enum)
    {
        for (const TuneEnumValue& named : m_pLayout->enums[member.typeIndex].values)
        {
            if (static_cast<T>(named.value) == value)
            {
                return Json(named.name);
            }
        }
    }
    return Json(value);
}

template <typename T>
bool CTuneValueLoader::LoadTyped(const TuneMember& member, ParameterLoadParameters& members, Json* pValue)
{
    ParameterFileSymbolTableEntry* pEntry = members.Entry;
    std::vector<T>                 values;
    bool                           ok     = true;
    if (member.variable)
    {
        T*     pArray    = nullptr;
        UINT32 count     = 0;
        UINT32 allocated = 0;
        ok = pEntry->ReadSimpleTypeArray<T>(pArray, count, allocated, member.maxCount, members, -1);
        values.assign(pArray, pArray + ((pArray != nullptr) ? count : 0));
        Release(pArray);
    }
    else
    {
        values.assign(member.minCount, T{});
        ok = pEntry->ReadSimpleTypeFixedArray<T>(values.data(), member.minCount, members);
    }
    if (IsCharacterArray(member))
    {
        // Characters read back as the text they hold.
        std::string text;
        for (size_t i = 0; i < values.size() && values[i] != 0; i++)
        {
            text += static_cast<char>(values[i]);
        }
        *pValue = text;
        return ok;
    }
    Json array = Json::array();
    for (const T& value : values)
    {
        array.push_back(ScalarToJson(member, value));
    }
    *pValue = (!member.variable && member.dims.empty()) ? array[0] : array;
    return ok;
}

bool CTuneValueLoader::LoadStrings(const TuneMember& member, ParameterLoadParameters& members, Json* pValue)
{
    ParameterFileSymbolTableEntry* pEntry = members.Entry;
    std::vector<CHAR*>             texts;
    bool                           ok     = true;
    if (member.variable)
    {
        CHAR** pArray    = nullptr;
        UINT32 count     = 0;
        UINT32 allocated = 0;
        ok = pEntry->ReadStringArray(pArray, count, allocated, member.maxCount, members, -1);
        texts.assign(pArray, pArray + ((pArray != nullptr) ? count : 0));
        VelaFree(pArray);
    }
    else if (member.dims.empty())
    {
        texts.assign(1, nullptr);
        ok = pEntry->ReadString(texts[0], members, -1);
    }
    else
    {
        texts.assign(member.minCount, nullptr);
        ok = pEntry->ReadStringFixedArray(texts.data(), member.minCount, members, -1);
    }
    Json array = Json::array();
    for (CHAR* pText : texts)
    {
        array.push_back((pText != nullptr) ? Json(std::string(pText)) : Json());
        Release(pText);
    }
    *pValue = (!member.variable && member.dims.empty()) ? array[0] : array;
    return ok;
}

bool CTuneValueLoader::LoadRecords(const TuneMember& member, ParameterLoadParameters& members, Json* pValue)
{
    ParameterFileSymbolTableEntry* pEntry = members.Entry;
    CContextScope                  scope(this, member.typeIndex);
    if (member.variable)
    {
        UINT32 count     = 0;
        UINT32 allocated = 0;
        void*  pArray    = pEntry->ReadStructureArray(LoadArray, AllocArray, count, allocated, member.maxCount,
                                                      sizeof(LoadedRecord), members, -1);
        *pValue = RecordsToJson(static_cast<LoadedRecord*>(pArray), (pArray != nullptr) ? count : 0);
        Release(pArray);
        return true;
    }
    std::vector<LoadedRecord> records(member.minCount, LoadedRecord{ nullptr });
    const bool ok = pEntry->ReadStructureFixedArray(LoadArray, records.data(), member.minCount, members);
    Json array    = RecordsToJson(records.data(), member.minCount);
    *pValue       = member.dims.empty() ? array[0] : array;
    return ok;
}

Json CTuneValueLoader::RecordsToJson(LoadedRecord* pRecords, UINT32 count)
{
    Json array = Json::array();
    for (UINT32 i = 0; i < count; i++)
    {
        // A record that the file does not hold reads as an empty one (all members zero).
        array.push_back((pRecords[i].pValue != nullptr) ? *pRecords[i].pValue : Json::object());
        delete pRecords[i].pValue;
        pRecords[i].pValue = nullptr;
    }
    return array;
}

bool CTuneValueLoader::LoadArray(ParameterLoadParameters& params, void* pDest, UINT32 count)
{
    const LoadContext context  = t_context;
    LoadedRecord*     pRecords = static_cast<LoadedRecord*>(pDest);
    bool              ok       = (context.pLoader != nullptr);
    for (UINT32 i = 0; i < count && ok; i++)
    {
        params.Index        = i;
        pRecords[i].pValue  = new Json();
        ok                  = context.pLoader->LoadRecord(params, context.structIndex, pRecords[i].pValue);
    }
    return ok;
}

void* CTuneValueLoader::AllocArray(UINT32 count)
{
    return VelaCalloc(count, sizeof(LoadedRecord), 8);
}

} // namespace AecTune
