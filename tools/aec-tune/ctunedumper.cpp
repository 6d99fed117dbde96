// Turns what was read from a parameter file into JSON in the source format (plus file facts) or into plain text.
#include "ctunedumper.h"

#include <algorithm>
#include <cstdio>

#include "ctuneformat.h"
#include "ctunemodenames.h"
#include "ctunesourcereader.h"
#include "tuning/parser/parametertypes.h"

namespace AecTune
{

namespace
{

std::string Hex(UINT64 value, int digits)
{
    char text[32];
    std::snprintf(text, sizeof(text), "0x%0*llx", digits, static_cast<unsigned long long>(value));
    return text;
}

// The array part of a member's type: "[3][2]", "[]", "[0..1]".
std::string Dimensions(const TuneMember& member)
{
    std::string text;
    for (UINT32 dim : member.dims)
    {
        text += "[" + std::to_string(dim) + "]";
    }
    if (member.variable)
    {
        const bool bounded = member.minCount != 0 || member.maxCount != 0xFFFFFFFFu;
        text += bounded ? "[" + std::to_string(member.minCount) + ".." + std::to_string(member.maxCount) + "]" : "[]";
    }
    return text;
}

} // namespace

CTuneDumper::CTuneDumper(const TuneFileContents* pContents)
    : m_pContents(pContents)
{
}

const char* CTuneDumper::SectionName(UINT32 type)
{
    switch (type)
    {
        case ParameterSectionType_SymbolTable:     return "symbols";
        case ParameterSectionType_Data:            return "data";
        case ParameterSectionType_ModeTable:       return "modes";
        case ParameterSectionType_DataTable:       return "dataTable";
        case ParameterSectionType_DefinitionTable: return "definitions";
        default:                                   return "unknown";
    }
}

std::string CTuneDumper::ModuleName(const TuneFileModule& module) const
{
    return module.name.empty() ? Hex(module.nameHash, 16) : module.name;
}

std::string CTuneDumper::ModeReference(UINT32 modeId) const
{
    const UINT32 table = GetModeTableIndex(modeId);
    const UINT32 slot  = GetModeIDValue(modeId);
    const auto&  tables = m_pContents->layout.modeTables;
    if (table >= tables.size() || slot >= tables[table].slots.size())
    {
        return Hex(modeId, 8);
    }
    // The first table is the one a reference without a table name means.
    const std::string path = tables[table].slots[slot].modePath;
    return (table == 0) ? path : tables[table].name + ":" + path;
}

Json CTuneDumper::FileJson() const
{
    const TuneFileContents& contents = *m_pContents;
    Json                    file;
    file["size"]         = contents.length;
    file["expectedSize"] = contents.expectedSize;
    file["version"]      = CTuneFormat::FormatVersion(contents.version);
    file["alignment"]    = contents.alignment;
    file["checksum"]     = Hex(contents.checksum, CTuneFormat(contents.version).ChecksumBytes() * 2);
    file["definitions"]  = contents.hasDefinitions;
    Json sections        = Json::array();
    for (const TuneFileSection& section : contents.sections)
    {
        sections.push_back(Json{ { "type", SectionName(section.type) }, { "offset", section.offset },
                                 { "size", section.size } });
    }
    file["sections"] = sections;
    Json symbols     = Json::array();
    for (const TuneFileModule& module : contents.modules)
    {
        symbols.push_back(Json{ { "id", module.id }, { "name", ModuleName(module) },
                                { "nameHash", Hex(module.nameHash, 16) },
                                { "version", CTuneFormat::FormatVersion(module.version) },
                                { "mode", ModeReference(module.modeId) }, { "duplicateId", module.duplicateId },
                                { "dataSize", module.dataSize } });
    }
    file["modules"] = symbols;
    Json log        = Json::array();
    for (const TuneLogLine& line : contents.log)
    {
        log.push_back((line.isError ? "error: " : "warning: ") + line.text);
    }
    file["log"] = log;
    return file;
}

Json CTuneDumper::ModesJson(size_t table, INT32 parent) const
{
    const TuneModeTable& modeTable = m_pContents->layout.modeTables[table];
    Json                 modes     = Json::array();
    for (size_t s = 1; s < modeTable.slots.size(); s++)
    {
        const TuneModeSlot& slot = modeTable.slots[s];
        if (slot.parentSlot != parent)
        {
            continue;
        }
        const TuneModeSelector selector{ slot.mode, slot.subMode, 0 };
        Json                   mode;
        mode["mode"] = CTuneModeNames::Format(&selector);
        if (slot.group != 0)
        {
            mode["group"] = CTuneModeNames::FormatGroup(slot.group);
        }
        if (!slot.alias)
        {
            // Default and Sensor modes are kept loaded whatever the file says; the flag is shown as read.
            if (slot.preserve)
            {
                mode["preserve"] = true;
            }
            if (slot.linkSlot != TuneNoSlot)
            {
                mode["link"] = modeTable.slots[static_cast<size_t>(slot.linkSlot)].modePath;
            }
            Json children = ModesJson(table, static_cast<INT32>(s));
            if (!children.empty())
            {
                mode["children"] = children;
            }
        }
        modes.push_back(mode);
    }
    return modes;
}

Json CTuneDumper::MembersJson(size_t structIndex, std::vector<size_t>* pStack) const
{
    const TuneSource& layout  = m_pContents->layout;
    Json              members = Json::array();
    if (std::find(pStack->begin(), pStack->end(), structIndex) != pStack->end())
    {
        return members; // a record that refers back to itself is written once
    }
    pStack->push_back(structIndex);
    for (const TuneMember& member : layout.structs[structIndex].members)
    {
        Json item;
        item["name"] = member.name;
        if (member.kind == TuneElementKind::Struct)
        {
            item["typeName"] = layout.structs[member.typeIndex].typeName;
            if (!Dimensions(member).empty())
            {
                item["type"] = Dimensions(member);
            }
            item["members"] = MembersJson(member.typeIndex, pStack);
        }
        else if (member.kind == TuneElementKind::Enum)
        {
            item["type"] = layout.enums[member.typeIndex].typeName + Dimensions(member);
        }
        else
        {
            // A typedef of the source is written as the scalar it stands for.
            const std::string base  = member.typeText.substr(0, member.typeText.find('['));
            TuneMember        probe = {};
            const char*       pWord = CTuneSourceReader::ScalarWordOf(member.definitionType);
            item["type"] = (CTuneSourceReader::SetScalar(base, &probe) || pWord == nullptr ? base : std::string(pWord)) +
                           Dimensions(member);
        }
        if (!member.doc.empty())
        {
            item["doc"] = member.doc;
        }
        members.push_back(item);
    }
    pStack->pop_back();
    return members;
}

Json CTuneDumper::ToJson() const
{
    const TuneFileContents& contents = *m_pContents;
    Json                    document;
    document["file"]   = FileJson();
    document["header"] = Json{ { "createdBy", contents.createdBy }, { "binaryTag", contents.binaryTag },
                               { "flags", contents.flags } };
    Json types         = Json::array();
    for (const TuneEnum& typeEnum : contents.layout.enums)
    {
        Json values = Json::object();
        for (const TuneEnumValue& value : typeEnum.values)
        {
            values[value.name] = value.value;
        }
        types.push_back(Json{ { "name", typeEnum.typeName }, { "enum", values } });
    }
    document["types"] = types;
    Json tables       = Json::array();
    for (size_t t = 0; t < contents.layout.modeTables.size(); t++)
    {
        tables.push_back(Json{ { "name", contents.layout.modeTables[t].name }, { "modes", ModesJson(t, 0) } });
    }
    document["modeTables"] = tables;
    // One module per name and version, with its values in every mode that has an instance.
    Json modules = Json::array();
    std::vector<std::string> done;
    for (const TuneFileModule& module : contents.modules)
    {
        const std::string key = ModuleName(module) + "@" + CTuneFormat::FormatVersion(module.version);
        if (!module.hasValues || std::find(done.begin(), done.end(), key) != done.end())
        {
            continue;
        }
        done.push_back(key);
        const TuneStruct&   record = contents.layout.structs[static_cast<size_t>(module.structIndex)];
        std::vector<size_t> stack;
        Json                item;
        item["name"]    = ModuleName(module);
        item["type"]    = record.typeName;
        item["version"] = CTuneFormat::FormatVersion(module.version);
        item["members"] = MembersJson(static_cast<size_t>(module.structIndex), &stack);
        Json values     = Json::object();
        for (const TuneFileModule& instance : contents.modules)
        {
            if (instance.hasValues && ModuleName(instance) + "@" + CTuneFormat::FormatVersion(instance.version) == key)
            {
                values[ModeReference(instance.modeId)] = instance.values;
            }
        }
        item["values"] = values;
        modules.push_back(item);
    }
    document["modules"] = modules;
    return document;
}

void CTuneDumper::Flatten(const Json& value, const std::string& path, std::ostream& out)
{
    if (value.is_object())
    {
        for (auto it = value.begin(); it != value.end(); ++it)
        {
            Flatten(it.value(), path.empty() ? it.key() : path + "." + it.key(), out);
        }
        return;
    }
    const bool scalars = value.is_array() && std::all_of(value.begin(), value.end(), [](const Json& element) {
                             return element.is_primitive();
                         });
    if (value.is_array() && !scalars)
    {
        for (size_t i = 0; i < value.size(); i++)
        {
            Flatten(value[i], path + "[" + std::to_string(i) + "]", out);
        }
        return;
    }
    out << "    " << path << " = " << value.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
}

void CTuneDumper::WriteText(std::ostream& out) const
{
    const TuneFileContents& contents = *m_pContents;
    out << "version " << CTuneFormat::FormatVersion(contents.version) << ", " << contents.length << " bytes (header: "
        << contents.expectedSize << "), alignment " << contents.alignment << ", checksum "
        << Hex(contents.checksum, CTuneFormat(contents.version).ChecksumBytes() * 2) << "\n";
    out << "created by \"" << contents.createdBy << "\", binary tag \"" << contents.binaryTag << "\", flags "
        << Hex(contents.flags, 1) << "\n";
    out << "sections (table at " << contents.sectionTableOffset << "):\n";
    for (const TuneFileSection& section : contents.sections)
    {
        out << "  " << SectionName(section.type) << ": offset " << section.offset << ", size " << section.size << "\n";
    }
    for (const TuneModeTable& table : contents.layout.modeTables)
    {
        out << "mode table \"" << table.name << "\":\n";
        for (size_t s = 0; s < table.slots.size(); s++)
        {
            const TuneModeSlot& slot = table.slots[s];
            out << "  " << s << ": " << slot.modePath << (slot.preserve && !slot.alias ? " [preserve]" : "");
            if (slot.linkSlot != TuneNoSlot)
            {
                out << " -> " << table.slots[static_cast<size_t>(slot.linkSlot)].modePath;
            }
            out << "\n";
        }
    }
    out << "modules:\n";
    for (const TuneFileModule& module : contents.modules)
    {
        out << "  " << ModuleName(module) << " " << CTuneFormat::FormatVersion(module.version) << " in "
            << ModeReference(module.modeId) << " (id " << module.id << ", duplicate " << module.duplicateId << ", "
            << module.dataSize << " bytes)" << (module.hasValues ? "" : ": no record layout, values not shown")
            << "\n";
        if (module.hasValues)
        {
            Flatten(module.values, std::string(), out);
        }
    }
    for (const TuneLogLine& line : contents.log)
    {
        out << (line.isError ? "error: " : "warning: ") << line.text << "\n";
    }
}

} // namespace AecTune
