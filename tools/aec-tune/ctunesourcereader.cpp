// Reads a JSON tuning source into the source model, reporting every problem with its file:line or JSON path.
#include "ctunesourcereader.h"

#include <functional>
#include <set>

#include "ctuneformat.h"
#include "ctunemodenames.h"
#include "tuning/parser/parsercrc.h"

namespace AecTune
{

namespace
{

// The document builder of the JSON library, keeping the first syntax error instead of throwing it.
class CDocumentBuilder : public nlohmann::detail::json_sax_dom_parser<Json>
{
public:
    explicit CDocumentBuilder(Json* pDocument)
        : nlohmann::detail::json_sax_dom_parser<Json>(*pDocument, false)
    {
    }

    template <class Exception>
    bool parse_error(std::size_t position, const std::string& /*lastToken*/, const Exception& ex)
    {
        m_position = position;
        m_what     = ex.what();
        return false;
    }

    size_t      m_position = 0;
    std::string m_what;
};

// A scalar word of the source and its definition type and size.
struct ScalarWord
{
    const char*        pWord;
    ParameterDefinitionType type;
    UINT32             size;
};

const ScalarWord ScalarWords[] = {
    { "INT8", ParameterDefinitionType_Signed8Bits, 1 },
    { "UINT8", ParameterDefinitionType_Unsigned8Bits, 1 },
    { "CHAR", ParameterDefinitionType_Signed8Bits, 1 },
    { "INT16", ParameterDefinitionType_Signed16Bits, 2 },
    { "UINT16", ParameterDefinitionType_Unsigned16Bits, 2 },
    { "INT32", ParameterDefinitionType_Signed32Bits, 4 },
    { "INT", ParameterDefinitionType_Signed32Bits, 4 },
    { "UINT32", ParameterDefinitionType_Unsigned32Bits, 4 },
    { "UINT", ParameterDefinitionType_Unsigned32Bits, 4 },
    { "INT64", ParameterDefinitionType_Signed64Bits, 8 },
    { "UINT64", ParameterDefinitionType_Unsigned64Bits, 8 },
    { "FLOAT", ParameterDefinitionType_Float, 4 },
    { "DOUBLE", ParameterDefinitionType_Double, 8 },
    { "BOOL", ParameterDefinitionType_Boolean, 4 },
    { "HEX8", ParameterDefinitionType_Hex8Bits, 1 },
    { "HEX16", ParameterDefinitionType_Hex16Bits, 2 },
    { "HEX32", ParameterDefinitionType_Hex32Bits, 4 },
    { "HEX64", ParameterDefinitionType_Hex64Bits, 8 },
    { "STRING", ParameterDefinitionType_String, 0 },
    { "ALPHANUMERIC", ParameterDefinitionType_AlphaNumeric, 0 },
    { "IDSTRING", ParameterDefinitionType_IDString, 0 },
    { "IDSTRINGREF", ParameterDefinitionType_IDStringRef, 0 },
    { "ATTRIBUTE", ParameterDefinitionType_Attribute, 0 },
};

// A variable array without bounds in its type accepts any count.
constexpr UINT32 UnboundedCount = 0xFFFFFFFFu;

std::string Trim(const std::string& text)
{
    size_t first = text.find_first_not_of(" \t");
    size_t last  = text.find_last_not_of(" \t");
    return (first == std::string::npos) ? std::string() : text.substr(first, last - first + 1);
}

bool ParseCount(const std::string& text, UINT32* pValue)
{
    if (text.empty() || text.size() > 10)
    {
        return false;
    }
    UINT64 value = 0;
    for (char c : text)
    {
        if (c < '0' || c > '9')
        {
            return false;
        }
        value = value * 10 + static_cast<UINT64>(c - '0');
    }
    *pValue = static_cast<UINT32>(value);
    return value <= 0xFFFFFFFFu;
}

} // namespace

CTuneSourceReader::CTuneSourceReader(CTuneMessages* pMessages)
    : m_pMessages(pMessages)
{
}

bool CTuneSourceReader::ParseText(const std::string& text, Json* pDocument)
{
    CDocumentBuilder builder(pDocument);
    if (Json::sax_parse(text, &builder, nlohmann::detail::input_format_t::json, true, true))
    {
        return true;
    }
    size_t line   = 1;
    size_t column = 1;
    // The parser's position counts the character it stopped at.
    for (size_t i = 0; i + 1 < builder.m_position && i < text.size(); i++)
    {
        column = (text[i] == '\n') ? 1 : column + 1;
        line   = (text[i] == '\n') ? line + 1 : line;
    }
    // The library's text starts with its own position; keep only what follows it.
    std::string what   = builder.m_what;
    size_t      column_ = what.find("column ");
    size_t      colon  = (column_ == std::string::npos) ? std::string::npos : what.find(": ", column_);
    m_pMessages->ErrorAt(line, column, (colon == std::string::npos) ? what : what.substr(colon + 2));
    return false;
}

bool CTuneSourceReader::CheckKeys(const Json& object, const std::string& path, const std::vector<std::string>& allowed)
{
    if (!object.is_object())
    {
        m_pMessages->Error(path, "expected an object");
        return false;
    }
    bool ok = true;
    for (auto it = object.begin(); it != object.end(); ++it)
    {
        bool known = false;
        for (const std::string& key : allowed)
        {
            known = known || (key == it.key());
        }
        if (!known)
        {
            std::string list;
            for (const std::string& key : allowed)
            {
                list += (list.empty() ? "" : ", ") + key;
            }
            m_pMessages->Error(CTuneMessages::Child(path, it.key()), "unknown key (allowed: " + list + ")");
            ok = false;
        }
    }
    return ok;
}

bool CTuneSourceReader::GetString(const Json& object, const std::string& key, const std::string& path, bool required,
                                  std::string* pValue)
{
    auto it = object.find(key);
    if (it == object.end())
    {
        if (required)
        {
            m_pMessages->Error(path, "missing \"" + key + "\"");
        }
        return !required;
    }
    if (!it->is_string())
    {
        m_pMessages->Error(CTuneMessages::Child(path, key), "expected a string");
        return false;
    }
    *pValue = it->get<std::string>();
    return true;
}

bool CTuneSourceReader::Read(const Json& document, TuneSource* pSource)
{
    *pSource = TuneSource{};
    m_types.clear();
    if (!document.is_object())
    {
        m_pMessages->Error("", "expected a JSON object with header, types, modeTables and modules");
        return false;
    }
    // "file" is what a dump adds about the file it read; a source made from a dump may keep it.
    bool ok = CheckKeys(document, "", { "header", "types", "modeTables", "modules", "file" });
    ok      = ReadHeader(document.contains("header") ? document["header"] : Json::object(), "header", pSource) && ok;
    // Modules refer to types and modes: they are read only once those are sound, to spare follow-up errors.
    bool declarations = ReadTypes(document.contains("types") ? document["types"] : Json::array(), "types", pSource);
    declarations      = ReadModeTables(document.contains("modeTables") ? document["modeTables"] : Json::array(),
                                       "modeTables", pSource) && declarations;
    declarations      = declarations &&
                   ReadModules(document.contains("modules") ? document["modules"] : Json::array(), "modules", pSource);
    ok = declarations && CheckNesting(*pSource) && ok;
    return ok && !m_pMessages->HasErrors();
}

bool CTuneSourceReader::ReadHeader(const Json& header, const std::string& path, TuneSource* pSource)
{
    if (!CheckKeys(header, path, { "createdBy", "binaryTag", "flags" }))
    {
        return false;
    }
    pSource->createdBy = "aec-tune";
    bool ok            = GetString(header, "createdBy", path, false, &pSource->createdBy);
    ok                 = GetString(header, "binaryTag", path, false, &pSource->binaryTag) && ok;
    if (pSource->createdBy.size() >= CTuneFormat::CreatedByBytes)
    {
        m_pMessages->Error(CTuneMessages::Child(path, "createdBy"),
                           "longer than " + std::to_string(CTuneFormat::CreatedByBytes - 1) + " characters");
        ok = false;
    }
    if (pSource->binaryTag.size() >= CTuneFormat::BinaryTagBytes)
    {
        m_pMessages->Error(CTuneMessages::Child(path, "binaryTag"),
                           "longer than " + std::to_string(CTuneFormat::BinaryTagBytes - 1) + " characters");
        ok = false;
    }
    pSource->flags = 0;
    if (header.contains("flags"))
    {
        const Json& flags = header["flags"];
        if (!flags.is_number_unsigned())
        {
            m_pMessages->Error(CTuneMessages::Child(path, "flags"), "expected an unsigned 64-bit number");
            return false;
        }
        pSource->flags = flags.get<UINT64>();
    }
    return ok;
}

bool CTuneSourceReader::FindType(const std::string& name, TypeName* pType) const
{
    auto it = m_types.find(name);
    if (it != m_types.end())
    {
        *pType = it->second;
        return true;
    }
    // An unqualified name matches one qualified declaration ending in "::name".
    const std::string suffix  = "::" + name;
    int               matches = 0;
    for (const auto& entry : m_types)
    {
        const std::string& key = entry.first;
        if (key.size() > suffix.size() && key.compare(key.size() - suffix.size(), suffix.size(), suffix) == 0)
        {
            *pType = entry.second;
            matches++;
        }
    }
    return matches == 1;
}

bool CTuneSourceReader::ReadTypes(const Json& types, const std::string& path, TuneSource* pSource)
{
    if (!types.is_array())
    {
        m_pMessages->Error(path, "expected an array of type declarations");
        return false;
    }
    bool ok = true;
    // First every name, so that declarations may refer to each other in any order.
    std::vector<std::pair<size_t, size_t>> records; // declaration index, struct index
    for (size_t i = 0; i < types.size(); i++)
    {
        const std::string itemPath = CTuneMessages::Index(path, i);
        const Json&       item     = types[i];
        std::string       name;
        if (!CheckKeys(item, itemPath, { "name", "doc", "members", "enum", "typedef" }) ||
            !GetString(item, "name", itemPath, true, &name))
        {
            ok = false;
            continue;
        }
        const int kinds = (item.contains("members") ? 1 : 0) + (item.contains("enum") ? 1 : 0) +
                          (item.contains("typedef") ? 1 : 0);
        if (kinds != 1 || m_types.count(name) != 0)
        {
            m_pMessages->Error(itemPath, (kinds != 1) ? "needs exactly one of \"members\", \"enum\", \"typedef\""
                                                      : "type '" + name + "' declared twice");
            ok = false;
            continue;
        }
        if (item.contains("members"))
        {
            m_types[name] = TypeName{ TuneElementKind::Struct, pSource->structs.size(), std::string() };
            records.emplace_back(i, pSource->structs.size());
            pSource->structs.push_back(TuneStruct{ name, itemPath, {} });
        }
        else if (item.contains("enum"))
        {
            TuneEnum typeEnum{ name, itemPath, {} };
            ok = ReadEnum(item["enum"], CTuneMessages::Child(itemPath, "enum"), &typeEnum) && ok;
            m_types[name] = TypeName{ TuneElementKind::Enum, pSource->enums.size(), std::string() };
            pSource->enums.push_back(typeEnum);
        }
        else
        {
            std::string word;
            TuneMember  probe{};
            if (!GetString(item, "typedef", itemPath, true, &word) || !SetScalar(word, &probe))
            {
                m_pMessages->Error(CTuneMessages::Child(itemPath, "typedef"), "expected a scalar type word");
                ok = false;
                continue;
            }
            m_types[name] = TypeName{ TuneElementKind::Scalar, 0, word };
        }
    }
    for (const auto& record : records)
    {
        const std::string itemPath = CTuneMessages::Index(path, record.first);
        ok = ReadMembers(types[record.first]["members"], CTuneMessages::Child(itemPath, "members"), record.second,
                         pSource) && ok;
    }
    return ok;
}

bool CTuneSourceReader::ReadEnum(const Json& values, const std::string& path, TuneEnum* pEnum)
{
    if (!values.is_object() || values.empty())
    {
        m_pMessages->Error(path, "expected an object of names and 32-bit values");
        return false;
    }
    bool ok = true;
    for (auto it = values.begin(); it != values.end(); ++it)
    {
        const Json& value = it.value();
        if (!value.is_number_integer() || value.get<INT64>() < INT32_MIN || value.get<INT64>() > INT32_MAX)
        {
            m_pMessages->Error(CTuneMessages::Child(path, it.key()), "expected a 32-bit integer");
            ok = false;
            continue;
        }
        pEnum->values.push_back(TuneEnumValue{ it.key(), static_cast<INT32>(value.get<INT64>()) });
    }
    return ok;
}

const char* CTuneSourceReader::ScalarWordOf(ParameterDefinitionType type)
{
    for (const ScalarWord& scalar : ScalarWords)
    {
        if (scalar.type == type)
        {
            return scalar.pWord;
        }
    }
    return nullptr;
}

bool CTuneSourceReader::SetScalar(const std::string& word, TuneMember* pMember)
{
    for (const ScalarWord& scalar : ScalarWords)
    {
        if (word == scalar.pWord)
        {
            pMember->kind           = (scalar.size == 0) ? TuneElementKind::String : TuneElementKind::Scalar;
            pMember->definitionType = scalar.type;
            pMember->elementSize    = scalar.size;
            return true;
        }
    }
    return false;
}

bool CTuneSourceReader::ParseDims(const std::string& text, const std::string& path, TuneMember* pMember)
{
    size_t pos = 0;
    while (pos < text.size())
    {
        size_t close = text.find(']', pos);
        if (text[pos] != '[' || close == std::string::npos)
        {
            m_pMessages->Error(path, "bad array suffix '" + text.substr(pos) + "' (use [N], [N][M], [], [min..max])");
            return false;
        }
        const std::string inner = Trim(text.substr(pos + 1, close - pos - 1));
        const size_t      range = inner.find("..");
        if (inner.empty() || range != std::string::npos)
        {
            UINT32 minCount = 0;
            UINT32 maxCount = UnboundedCount;
            bool   good     = pMember->dims.empty() && close + 1 == text.size();
            if (range != std::string::npos)
            {
                const std::string low  = Trim(inner.substr(0, range));
                const std::string high = Trim(inner.substr(range + 2));
                good = good && (low.empty() || ParseCount(low, &minCount)) &&
                       (high.empty() || ParseCount(high, &maxCount)) && minCount <= maxCount && maxCount > 0;
            }
            if (good && minCount == maxCount && maxCount >= 2)
            {
                // The file calls equal bounds of two or more a fixed array, which lies in line.
                m_pMessages->Error(path, "'[" + inner + "]' has one count: write it as a fixed array '[" +
                                             std::to_string(maxCount) + "]'");
                return false;
            }
            if (!good)
            {
                m_pMessages->Error(path, "a variable array '[]' or '[min..max]' must be the only dimension, "
                                         "with min <= max and max > 0");
                return false;
            }
            pMember->variable = true;
            pMember->minCount = minCount;
            pMember->maxCount = maxCount;
        }
        else
        {
            UINT32 size = 0;
            if (!ParseCount(inner, &size) || size == 0)
            {
                m_pMessages->Error(path, "array size '" + inner + "' must be a positive integer");
                return false;
            }
            pMember->dims.push_back(size);
        }
        pos = close + 1;
    }
    UINT64 count = 1;
    for (UINT32 dim : pMember->dims)
    {
        count *= dim;
        if (count > 0xFFFFFFFFu)
        {
            m_pMessages->Error(path, "array has more than 4294967295 elements");
            return false;
        }
    }
    if (!pMember->variable)
    {
        pMember->minCount = static_cast<UINT32>(count);
        pMember->maxCount = static_cast<UINT32>(count);
    }
    return true;
}

bool CTuneSourceReader::ParseType(const std::string& text, const std::string& path, bool inlineRecord,
                                  TuneMember* pMember)
{
    const std::string type    = Trim(text);
    const size_t      bracket = type.find('[');
    const std::string base    = Trim(type.substr(0, bracket));
    if (!ParseDims((bracket == std::string::npos) ? std::string() : type.substr(bracket), path, pMember))
    {
        return false;
    }
    if (inlineRecord)
    {
        if (!base.empty())
        {
            m_pMessages->Error(path, "a member with \"members\" declares its record inline: its \"type\" may only "
                                     "give array dimensions, as in \"[4]\"");
            return false;
        }
        return true;
    }
    if (SetScalar(base, pMember))
    {
        return true;
    }
    TypeName found{};
    if (!FindType(base, &found))
    {
        m_pMessages->Error(path, "unknown type '" + base + "'");
        return false;
    }
    if (found.kind == TuneElementKind::Scalar)
    {
        return SetScalar(found.scalarWord, pMember);
    }
    pMember->kind      = found.kind;
    pMember->typeIndex = found.index;
    if (found.kind == TuneElementKind::Enum)
    {
        pMember->definitionType = ParameterDefinitionType_Enum;
        pMember->elementSize    = 4;
    }
    else
    {
        pMember->definitionType = ParameterDefinitionType_Structure;
        pMember->elementSize    = 0;
    }
    return true;
}

bool CTuneSourceReader::ReadMember(const Json& member, const std::string& path, TuneSource* pSource,
                                   TuneMember* pMember)
{
    if (!CheckKeys(member, path, { "name", "type", "doc", "members", "typeName" }))
    {
        return false;
    }
    *pMember      = TuneMember{};
    pMember->path = path;
    bool ok       = GetString(member, "name", path, true, &pMember->name);
    ok            = GetString(member, "doc", path, false, &pMember->doc) && ok;
    const bool isInline = member.contains("members");
    ok = GetString(member, "type", path, !isInline, &pMember->typeText) && ok;
    if (!ok)
    {
        return false;
    }
    if (!ParseType(pMember->typeText, CTuneMessages::Child(path, "type"), isInline, pMember))
    {
        return false;
    }
    pMember->nameHash = ParserCRC64::GetNameHash(pMember->name.c_str());
    if (isInline)
    {
        // An inline record is named after its member unless the source names it.
        std::string typeName = pMember->name + "Struct";
        if (!GetString(member, "typeName", path, false, &typeName))
        {
            return false;
        }
        pMember->kind           = TuneElementKind::Struct;
        pMember->definitionType = ParameterDefinitionType_Structure;
        pMember->typeIndex      = pSource->structs.size();
        pSource->structs.push_back(TuneStruct{ typeName, path, {} });
        return ReadMembers(member["members"], CTuneMessages::Child(path, "members"), pMember->typeIndex, pSource);
    }
    if (member.contains("typeName"))
    {
        m_pMessages->Error(CTuneMessages::Child(path, "typeName"), "only a member with inline \"members\" names a type");
        return false;
    }
    return true;
}

bool CTuneSourceReader::ReadMembers(const Json& members, const std::string& path, size_t structIndex,
                                    TuneSource* pSource)
{
    if (!members.is_array())
    {
        m_pMessages->Error(path, "expected an array of members");
        return false;
    }
    bool                  ok = true;
    std::set<std::string> names;
    for (size_t i = 0; i < members.size(); i++)
    {
        TuneMember member{};
        if (!ReadMember(members[i], CTuneMessages::Index(path, i), pSource, &member))
        {
            ok = false;
            continue;
        }
        if (!names.insert(member.name).second)
        {
            m_pMessages->Error(CTuneMessages::Index(path, i), "member '" + member.name + "' declared twice");
            ok = false;
            continue;
        }
        // Inline records append to the list, so the record is looked up again after each member.
        pSource->structs[structIndex].members.push_back(member);
    }
    return ok;
}

bool CTuneSourceReader::CheckNesting(const TuneSource& source)
{
    // A record that holds itself in line, directly or through others, has no finite size.
    std::vector<int> state(source.structs.size(), 0);
    bool             ok = true;
    std::function<void(size_t)> visit = [&](size_t index) {
        state[index] = 1;
        for (const TuneMember& member : source.structs[index].members)
        {
            if (member.kind != TuneElementKind::Struct || member.variable)
            {
                continue;
            }
            if (state[member.typeIndex] == 1)
            {
                m_pMessages->Error(member.path, "record '" + source.structs[member.typeIndex].typeName +
                                                    "' contains itself; only a variable array may refer back to it");
                ok = false;
            }
            else if (state[member.typeIndex] == 0)
            {
                visit(member.typeIndex);
            }
        }
        state[index] = 2;
    };
    for (size_t i = 0; i < source.structs.size(); i++)
    {
        if (state[i] == 0)
        {
            visit(i);
        }
    }
    return ok;
}

bool CTuneSourceReader::ReadModeTables(const Json& tables, const std::string& path, TuneSource* pSource)
{
    if (!tables.is_array())
    {
        m_pMessages->Error(path, "expected an array of mode tables");
        return false;
    }
    bool ok = true;
    for (size_t t = 0; t < tables.size(); t++)
    {
        const std::string tablePath = CTuneMessages::Index(path, t);
        const Json&       table     = tables[t];
        TuneModeTable     modeTable;
        if (!CheckKeys(table, tablePath, { "name", "modes" }) ||
            !GetString(table, "name", tablePath, false, &modeTable.name))
        {
            ok = false;
            continue;
        }
        for (const TuneModeTable& other : pSource->modeTables)
        {
            if (other.name == modeTable.name)
            {
                m_pMessages->Error(tablePath, "mode table name '" + modeTable.name + "' used twice");
                ok = false;
            }
        }
        TuneModeSlot root{};
        root.parentSlot = TuneNoSlot;
        root.linkSlot   = TuneNoSlot;
        root.preserve   = true;
        root.modePath   = "Default";
        root.path       = tablePath;
        modeTable.slots.push_back(root);
        std::vector<std::pair<std::string, std::string>> links; // link text, path of the linking mode
        if (table.contains("modes"))
        {
            ok = ReadModes(table["modes"], CTuneMessages::Child(tablePath, "modes"), 0, &modeTable, &links) && ok;
        }
        pSource->modeTables.push_back(modeTable);
        // Links are resolved once the whole table is known: a link may name a mode declared after it.
        for (auto& link : links)
        {
            TuneModeTable& added = pSource->modeTables.back();
            for (TuneModeSlot& slot : added.slots)
            {
                if (slot.path != link.second)
                {
                    continue;
                }
                size_t      tableIndex = 0;
                UINT32      target     = 0;
                std::string error;
                const std::string reference = added.name.empty() ? link.first : added.name + ":" + link.first;
                if (!ResolveMode(*pSource, reference, &tableIndex, &target, &error) ||
                    tableIndex != pSource->modeTables.size() - 1)
                {
                    m_pMessages->Error(CTuneMessages::Child(link.second, "link"),
                                       error.empty() ? "a link must stay in its mode table" : error);
                    ok = false;
                }
                else if (&added.slots[target] == &slot)
                {
                    m_pMessages->Error(CTuneMessages::Child(link.second, "link"), "a mode cannot link to itself");
                    ok = false;
                }
                else
                {
                    slot.linkSlot = static_cast<INT32>(target);
                }
            }
        }
    }
    if (pSource->modeTables.empty())
    {
        // Without mode tables every module lives in the Default mode of one nameless table.
        TuneModeTable table;
        TuneModeSlot  root{};
        root.parentSlot = TuneNoSlot;
        root.linkSlot   = TuneNoSlot;
        root.preserve   = true;
        root.modePath   = "Default";
        root.path       = path;
        table.slots.push_back(root);
        pSource->modeTables.push_back(table);
    }
    return ok;
}

bool CTuneSourceReader::ReadModes(const Json& modes, const std::string& path, INT32 parentSlot, TuneModeTable* pTable,
                                  std::vector<std::pair<std::string, std::string>>* pLinks)
{
    if (!modes.is_array())
    {
        m_pMessages->Error(path, "expected an array of modes");
        return false;
    }
    bool ok = true;
    for (size_t i = 0; i < modes.size(); i++)
    {
        const std::string modePath = CTuneMessages::Index(path, i);
        const Json&       item     = modes[i];
        std::string       selectorText;
        std::string       groupText;
        std::string       link;
        TuneModeSlot      slot{};
        if (!CheckKeys(item, modePath, { "mode", "group", "label", "preserve", "link", "children" }) ||
            !GetString(item, "mode", modePath, true, &selectorText) ||
            !GetString(item, "group", modePath, false, &groupText) ||
            !GetString(item, "label", modePath, false, &slot.label) ||
            !GetString(item, "link", modePath, false, &link))
        {
            ok = false;
            continue;
        }
        TuneModeSelector selector{};
        std::string      error;
        if (selectorText.find('@') != std::string::npos)
        {
            m_pMessages->Error(CTuneMessages::Child(modePath, "mode"), "give the pipeline in \"group\"");
            ok = false;
            continue;
        }
        if (!CTuneModeNames::Parse(selectorText, &selector, &error))
        {
            m_pMessages->Error(CTuneMessages::Child(modePath, "mode"), error);
            ok = false;
            continue;
        }
        if (!groupText.empty() && !CTuneModeNames::ParseGroup(groupText, &selector.group))
        {
            m_pMessages->Error(CTuneMessages::Child(modePath, "group"), "unknown pipeline '" + groupText + "'");
            ok = false;
            continue;
        }
        if (selector.mode == 0)
        {
            m_pMessages->Error(CTuneMessages::Child(modePath, "mode"), "only the root of a table is Default");
            ok = false;
            continue;
        }
        if (item.contains("preserve") && !item["preserve"].is_boolean())
        {
            m_pMessages->Error(CTuneMessages::Child(modePath, "preserve"), "expected true or false");
            ok = false;
            continue;
        }
        const TuneModeSlot& parent = pTable->slots[static_cast<size_t>(parentSlot)];
        slot.mode       = selector.mode;
        slot.subMode    = selector.subMode;
        slot.group      = selector.group;
        slot.preserve   = item.value("preserve", false);
        slot.alias      = (parent.mode == slot.mode && parent.subMode == slot.subMode);
        slot.parentSlot = parentSlot;
        slot.linkSlot   = TuneNoSlot;
        slot.path       = modePath;
        slot.modePath   = (parentSlot == 0 ? std::string() : parent.modePath + "|") + CTuneModeNames::Format(&selector);
        if (slot.alias && (item.contains("children") || item.contains("preserve") || !link.empty()))
        {
            // The reader makes no node for it: it shares its parent's node, children, link and Preserve.
            m_pMessages->Error(modePath, "a mode equal to its parent only adds a group; it takes no children, "
                                         "link or preserve of its own");
            ok = false;
            continue;
        }
        for (const TuneModeSlot& other : pTable->slots)
        {
            if (other.modePath == slot.modePath || (!slot.label.empty() && other.label == slot.label))
            {
                m_pMessages->Error(modePath, "mode '" + (other.label == slot.label && !slot.label.empty()
                                                             ? slot.label : slot.modePath) + "' declared twice");
                ok = false;
            }
        }
        if (pTable->slots.size() >= 0x1000000u)
        {
            m_pMessages->Error(modePath, "a mode table holds at most 16777216 modes");
            return false;
        }
        const INT32 index = static_cast<INT32>(pTable->slots.size());
        pTable->slots.push_back(slot);
        if (!link.empty())
        {
            pLinks->emplace_back(link, modePath);
        }
        if (item.contains("children"))
        {
            ok = ReadModes(item["children"], CTuneMessages::Child(modePath, "children"), index, pTable, pLinks) && ok;
        }
    }
    return ok;
}

bool CTuneSourceReader::ResolveMode(const TuneSource& source, const std::string& reference, size_t* pTable,
                                    UINT32* pSlot, std::string* pError)
{
    // "table:" selects a table by name; without it the first table is meant.
    size_t      table = 0;
    std::string rest  = reference;
    size_t      colon = reference.find(':');
    if (colon != std::string::npos)
    {
        const std::string name  = reference.substr(0, colon);
        bool              found = false;
        for (size_t t = 0; t < source.modeTables.size() && !found; t++)
        {
            found = (source.modeTables[t].name == name);
            table = found ? t : table;
        }
        if (!found)
        {
            *pError = "unknown mode table '" + name + "'";
            return false;
        }
        rest = reference.substr(colon + 1);
    }
    const TuneModeTable& modeTable = source.modeTables[table];
    for (size_t s = 0; s < modeTable.slots.size(); s++)
    {
        if (!modeTable.slots[s].label.empty() && modeTable.slots[s].label == rest)
        {
            *pTable = table;
            *pSlot  = static_cast<UINT32>(s);
            return true;
        }
    }
    // A path: each step parsed and printed again, so that numbers, names and case all compare equal.
    std::string canonical;
    size_t      start = 0;
    while (!rest.empty() && rest != "Default" && start <= rest.size())
    {
        size_t            bar  = rest.find('|', start);
        const std::string step = rest.substr(start, (bar == std::string::npos) ? std::string::npos : bar - start);
        TuneModeSelector  selector{};
        if (!CTuneModeNames::Parse(step, &selector, pError))
        {
            *pError = "mode reference '" + reference + "': " + *pError;
            return false;
        }
        if (!(selector.mode == 0 && selector.subMode == 0 && selector.group == 0 && start == 0))
        {
            canonical += (canonical.empty() ? "" : "|") + CTuneModeNames::Format(&selector);
        }
        start = (bar == std::string::npos) ? rest.size() + 1 : bar + 1;
    }
    canonical = canonical.empty() ? "Default" : canonical;
    for (size_t s = 0; s < modeTable.slots.size(); s++)
    {
        if (modeTable.slots[s].modePath == canonical)
        {
            *pTable = table;
            *pSlot  = static_cast<UINT32>(s);
            return true;
        }
    }
    *pError = "no mode '" + canonical + "' in mode table '" + modeTable.name + "'";
    return false;
}

bool CTuneSourceReader::ReadModules(const Json& modules, const std::string& path, TuneSource* pSource)
{
    if (!modules.is_array())
    {
        m_pMessages->Error(path, "expected an array of modules");
        return false;
    }
    bool ok = true;
    for (size_t i = 0; i < modules.size(); i++)
    {
        const std::string modulePath = CTuneMessages::Index(path, i);
        const Json&       item       = modules[i];
        TuneModule        module{};
        std::string       versionText;
        std::string       typeName;
        if (!CheckKeys(item, modulePath, { "name", "type", "version", "description", "members", "values" }) ||
            !GetString(item, "name", modulePath, true, &module.name) ||
            !GetString(item, "type", modulePath, false, &typeName) ||
            !GetString(item, "description", modulePath, false, &module.description) ||
            !GetString(item, "version", modulePath, true, &versionText))
        {
            ok = false;
            continue;
        }
        if (!CTuneFormat::ParseVersion(versionText, &module.version))
        {
            m_pMessages->Error(CTuneMessages::Child(modulePath, "version"), "expected MAJOR.MINOR.PATCH");
            ok = false;
            continue;
        }
        for (const TuneModule& other : pSource->modules)
        {
            if (other.name == module.name)
            {
                m_pMessages->Error(CTuneMessages::Child(modulePath, "name"), "module '" + module.name +
                                                                                 "' declared twice");
                ok = false;
            }
        }
        if (!item.contains("members"))
        {
            m_pMessages->Error(modulePath, "missing \"members\" (the definition of the module's record)");
            ok = false;
            continue;
        }
        // The module's top record, named by "type" or after the module.
        module.structIndex = pSource->structs.size();
        pSource->structs.push_back(TuneStruct{ typeName.empty() ? module.name : typeName, modulePath, {} });
        if (!ReadMembers(item["members"], CTuneMessages::Child(modulePath, "members"), module.structIndex, pSource))
        {
            ok = false;
            continue;
        }
        const std::string valuesPath = CTuneMessages::Child(modulePath, "values");
        const Json&       values     = item.contains("values") ? item["values"] : Json::object();
        if (!values.is_object())
        {
            m_pMessages->Error(valuesPath, "expected an object of mode references and values");
            ok = false;
            continue;
        }
        for (auto it = values.begin(); it != values.end(); ++it)
        {
            TuneModuleInstance instance{};
            std::string        error;
            instance.path = CTuneMessages::Child(valuesPath, it.key());
            if (!ResolveMode(*pSource, it.key(), &instance.table, &instance.slot, &error))
            {
                m_pMessages->Error(instance.path, error);
                ok = false;
                continue;
            }
            for (const TuneModuleInstance& other : module.instances)
            {
                if (other.table == instance.table && other.slot == instance.slot)
                {
                    m_pMessages->Error(instance.path, "values for this mode given twice");
                    ok = false;
                }
            }
            instance.values = it.value();
            module.instances.push_back(instance);
        }
        pSource->modules.push_back(module);
    }
    return ok;
}

} // namespace AecTune
