// Reads a parameter file through the parameter store: header, sections, mode tables, modules and their values.
#include "ctunefilereader.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include "ctuneformat.h"
#include "ctunemodenames.h"
#include "ctunesourcereader.h"
#include "ctunevalueloader.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parameterutils.h"
#include "tuning/parser/parsercrc.h"

namespace AecTune
{

namespace
{

UINT64 RawField(const std::vector<UINT8>& bytes, size_t offset, size_t size)
{
    UINT64 value = 0;
    for (size_t i = 0; i < size && offset + i < bytes.size(); i++)
    {
        value |= static_cast<UINT64>(bytes[offset + i]) << (8 * i);
    }
    return value;
}

std::string RawText(const std::vector<UINT8>& bytes, size_t offset, size_t size)
{
    std::string text;
    for (size_t i = 0; i < size && offset + i < bytes.size() && bytes[offset + i] != 0; i++)
    {
        text += static_cast<char>(bytes[offset + i]);
    }
    return text;
}

TuneVersion ToVersion(const VersionUnion& version)
{
    return TuneVersion{ version.Version.Major, version.Version.Minor, version.Version.Patch };
}

// The sections of a file, by what the store read from its section table.
struct Sections
{
    SectionInfo        symbols;
    SectionInfo        dataTable;
    SectionInfo        data;
    SectionInfo        definitions;
    PList<SectionInfo> modes;
};

} // namespace

CTuneFileReader::CTuneFileReader(const TuneSource* pSource)
    : m_pSource(pSource)
{
}

std::string CTuneFileReader::MemberName(UINT64 nameHash) const
{
    if (m_pSource != nullptr)
    {
        for (const TuneStruct& record : m_pSource->structs)
        {
            for (const TuneMember& member : record.members)
            {
                if (ParserCRC64::GetNameHash(member.name.c_str()) == nameHash)
                {
                    return member.name;
                }
            }
        }
    }
    char text[24];
    std::snprintf(text, sizeof(text), "0x%016llx", static_cast<unsigned long long>(nameHash));
    return text;
}

bool CTuneFileReader::Read(const std::vector<UINT8>& bytes, TuneFileContents* pContents)
{
    *pContents        = TuneFileContents{};
    pContents->length = static_cast<UINT32>(bytes.size());
    if (m_pSource != nullptr)
    {
        pContents->layout.structs = m_pSource->structs;
        pContents->layout.enums   = m_pSource->enums;
        pContents->layout.modules = m_pSource->modules;
    }
    CTuneLogCapture     capture;
    ParameterSetManager manager(nullptr, 0, "aec-tune");
    manager.SetIgnoreMissingModules(true);

    UINT32       pos          = 0;
    UINT32       tableOffset  = 0;
    UINT32       sectionCount = 0;
    BYTE         alignment    = 1;
    VersionUnion version      = {};
    UINT64       flags        = 0;
    CHAR         binaryTag[ParameterBinaryTagSize + 1] = "";
    CHAR         errorText[ParameterErrorTextSize]     = "";
    const bool   headerOk = ParameterSetManager::ReadHeader(bytes.data(), bytes.size(), pos, tableOffset, alignment,
                                                            version, binaryTag, flags, sectionCount, errorText,
                                                            &manager);
    pContents->version            = ToVersion(version);
    pContents->alignment          = alignment;
    pContents->flags              = flags;
    pContents->binaryTag          = binaryTag;
    pContents->sectionTableOffset = tableOffset;
    pContents->expectedSize       = static_cast<UINT32>(RawField(bytes, ParameterTagSize, 4));
    if (!headerOk)
    {
        pContents->headerError = ('\0' != errorText[0]) ? errorText : "the header cannot be read";
        pContents->log         = capture.Lines();
        return false;
    }
    if ('\0' != errorText[0])
    {
        pContents->log.push_back(TuneLogLine{ false, errorText });
    }
    // Created By is shown but not kept by the store: it is read from its fixed place behind the version.
    const CTuneFormat format(pContents->version);
    if (format.HasModeTree())
    {
        pContents->createdBy = RawText(bytes, ParameterTagSize + 12, ParameterCreatedBySize);
    }
    pContents->checksum = RawField(bytes, bytes.size() - format.ChecksumBytes(), format.ChecksumBytes());

    Sections sections{};
    UINT32   sectionPos = tableOffset;
    errorText[0]        = '\0';
    if (!ParameterSetManager::ReadSectionInfo(bytes.data(), bytes.size(), sectionPos, alignment, sectionCount,
                                              sections.symbols, sections.dataTable, sections.modes, sections.data,
                                              sections.definitions, errorText, &manager))
    {
        pContents->headerError = ('\0' != errorText[0]) ? errorText : "the section table cannot be read";
        pContents->log         = capture.Lines();
        return false;
    }
    // The section records in file order, as the section table lists them.
    const UINT32 width = ParameterUtils::FieldSize(4, alignment);
    for (UINT32 i = 0; i < sectionCount; i++)
    {
        const size_t at = static_cast<size_t>(tableOffset) + static_cast<size_t>(i) * 3 * width;
        pContents->sections.push_back(TuneFileSection{ static_cast<UINT32>(RawField(bytes, at, 4)),
                                                       static_cast<UINT32>(RawField(bytes, at + width, 4)),
                                                       static_cast<UINT32>(RawField(bytes, at + 2 * width, 4)) });
    }

    // The whole load, as the library does it for a camera; it checks every table on the way.
    std::vector<UINT8> copy(bytes);
    pContents->loaded    = manager.LoadBinaryParameters(copy.data(), copy.size());
    pContents->loadError = pContents->loaded ? "" : manager.GetLastError();
    ReadModeTables(&manager, pContents);

    ParameterFileSymbolTable table(&manager, &manager, version, alignment);
    if (table.Load(bytes.data(), bytes.size(), nullptr, nullptr, static_cast<UINT32>(bytes.size()), sections.symbols,
                   sections.dataTable, sections.data, sections.definitions, &manager, true))
    {
        pContents->hasDefinitions = table.HasDefinitions();
        ReadModules(bytes, sections.symbols, &table, pContents);
    }
    pContents->log.insert(pContents->log.end(), capture.Lines().begin(), capture.Lines().end());
    return true;
}

void CTuneFileReader::ReadModeTables(ParameterSetManager* pManager, TuneFileContents* pContents)
{
    for (UINT32 t = 0; t < pManager->GetModeTableCount(); t++)
    {
        ParameterModeTable* pTable = pManager->GetModeTable(t);
        TuneModeTable       table;
        table.name = (pTable->Name != nullptr) ? pTable->Name : "";
        for (UINT32 s = 0; s < pTable->Count; s++)
        {
            const ModeEntryInfo& info = pTable->Modes[s];
            TuneModeSlot         slot{};
            slot.parentSlot           = TuneNoSlot;
            slot.linkSlot             = TuneNoSlot;
            if (info.Entry == nullptr)
            {
                // A slot the store refused: kept so that later slots keep their numbers.
                slot.modePath = "?" + std::to_string(s);
                table.slots.push_back(slot);
                continue;
            }
            const ModeEntry* pEntry = info.Entry;
            for (UINT32 k = 0; k < s && slot.parentSlot == TuneNoSlot; k++)
            {
                // A slot that shares an earlier slot's node differs from it only in its group.
                slot.alias      = (pTable->Modes[k].Entry == pEntry);
                slot.parentSlot = slot.alias ? static_cast<INT32>(k) : TuneNoSlot;
            }
            for (UINT32 k = 0; k < s && slot.parentSlot == TuneNoSlot && pEntry->Parent != nullptr; k++)
            {
                slot.parentSlot = (pTable->Modes[k].Entry == pEntry->Parent) ? static_cast<INT32>(k) : TuneNoSlot;
            }
            for (UINT32 k = 0; k < pTable->Count && pEntry->Link != nullptr; k++)
            {
                slot.linkSlot = (&pTable->Modes[k].Entry == pEntry->Link) ? static_cast<INT32>(k) : slot.linkSlot;
            }
            slot.mode     = pEntry->Mode.Mode.Mode;
            slot.subMode  = pEntry->Mode.Mode.SubMode;
            slot.group    = info.Group;
            slot.preserve = pEntry->Preserve.load();
            const TuneModeSelector selector{ slot.mode, slot.subMode, slot.group };
            if (slot.parentSlot == TuneNoSlot)
            {
                slot.modePath = "Default";
            }
            else
            {
                const TuneModeSlot& parent = table.slots[static_cast<size_t>(slot.parentSlot)];
                slot.modePath = (slot.parentSlot == 0 ? std::string() : parent.modePath + "|") +
                                CTuneModeNames::Format(&selector);
            }
            table.slots.push_back(slot);
        }
        pContents->layout.modeTables.push_back(table);
    }
}

size_t CTuneFileReader::AddDefinedStructure(const ParameterDefinitionStructure* pStructure, TuneSource* pLayout)
{
    for (size_t i = 0; i < pLayout->structs.size(); i++)
    {
        if (pLayout->structs[i].path == "definition " + std::to_string(pStructure->StructureID))
        {
            return i;
        }
    }
    const size_t index = pLayout->structs.size();
    pLayout->structs.push_back(TuneStruct{ (pStructure->TypeName != nullptr) ? pStructure->TypeName : "",
                                           "definition " + std::to_string(pStructure->StructureID), {} });
    // Members in the order the file lays them out.
    std::vector<const ParameterDefinitionElement*> children;
    for (const auto& child : pStructure->Children)
    {
        if (child.second->Info != nullptr)
        {
            children.push_back(child.second);
        }
    }
    std::sort(children.begin(), children.end(), [](const ParameterDefinitionElement* pLeft,
                                                   const ParameterDefinitionElement* pRight) {
        return pLeft->Info->ParentOffset < pRight->Info->ParentOffset;
    });
    for (const ParameterDefinitionElement* pChild : children)
    {
        const ParameterDefinitionElementInfo* pInfo = pChild->Info;
        TuneMember                            member{};
        member.name           = MemberName(pChild->NameHash);
        member.nameHash       = pChild->NameHash;
        member.definitionType = pInfo->Type;
        if (pInfo->Type == ParameterDefinitionType_Structure)
        {
            if (pInfo->Structure == nullptr)
            {
                continue;
            }
            member.kind      = TuneElementKind::Struct;
            member.typeIndex = AddDefinedStructure(pInfo->Structure, pLayout);
        }
        else if (pInfo->Type == ParameterDefinitionType_Enum)
        {
            // The store keeps no enumeration names: the values read as their numbers.
            CTuneSourceReader::SetScalar("INT32", &member);
            member.definitionType = ParameterDefinitionType_Enum;
        }
        else
        {
            const char* pWord = CTuneSourceReader::ScalarWordOf(pInfo->Type);
            if (pWord == nullptr)
            {
                continue;
            }
            CTuneSourceReader::SetScalar(pWord, &member);
        }
        const char* pWord = CTuneSourceReader::ScalarWordOf(member.definitionType);
        member.typeText   = (member.kind == TuneElementKind::Struct) ? std::string()
                            : (pWord != nullptr)                     ? pWord
                                                                     : "INT32";
        if (pInfo->IsPointer())
        {
            member.variable = true;
            member.minCount = 0;
            member.maxCount = pInfo->MaxCount;
        }
        else if (pInfo->IsFixed())
        {
            member.dims.push_back(pInfo->MaxCount);
            member.minCount = pInfo->MaxCount;
            member.maxCount = pInfo->MaxCount;
        }
        else
        {
            member.minCount = 1;
            member.maxCount = 1;
        }
        pLayout->structs[index].members.push_back(member);
    }
    return index;
}

void CTuneFileReader::ReadModules(const std::vector<UINT8>& bytes, const SectionInfo& symbols,
                                  ParameterFileSymbolTable* pTable, TuneFileContents* pContents)
{
    const CTuneFormat format(pContents->version);
    CTuneValueLoader  loader(&pContents->layout, pTable);
    for (UINT32 i = 0; i < pTable->ModuleCount(); i++)
    {
        const ModuleData* pData = pTable->GetModule(i);
        if (pData == nullptr)
        {
            continue;
        }
        TuneFileModule module{};
        module.id          = pData->ID;
        module.nameHash    = pData->NameHash;
        module.version     = ToVersion(pData->Version);
        module.modeId      = pData->ModeId;
        module.duplicateId = pData->DuplicateID;
        module.structIndex = -1;
        ParameterFileSymbolTableEntry entry;
        module.dataSize = pTable->Find(entry, pData->ID, true) ? entry.DataSize : 0;
        if (!format.HasNameHashes())
        {
            // Before name hashes the entry names its module in text, which the store passes over.
            const UINT32 entrySize = pTable->GetSymbolEntrySize();
            const UINT32 idWidth   = ParameterUtils::FieldSize(4, static_cast<BYTE>(pContents->alignment));
            for (UINT32 at = symbols.Offset; entrySize != 0 && at + entrySize <= symbols.Offset + symbols.Size;
                 at += entrySize)
            {
                module.name = (RawField(bytes, at, 4) == pData->ID) ? RawText(bytes, at + idWidth, 32) : module.name;
            }
        }
        // The layout: the source's module of that name and version, else the file's own definitions.
        for (const TuneModule& known : pContents->layout.modules)
        {
            const bool named = format.HasNameHashes() ? (ParserCRC64::GetNameHash(known.name.c_str()) == module.nameHash)
                                                      : (known.name == module.name);
            if (named)
            {
                module.name = known.name;
                if (CTuneFormat::Compare(known.version, module.version) == 0)
                {
                    module.structIndex = static_cast<INT32>(known.structIndex);
                }
            }
        }
        if (module.structIndex < 0 && pTable->HasDefinitions())
        {
            const ParameterDefinitionStructure* pStructure = pTable->FindModuleStructure(module.nameHash);
            module.structIndex = (pStructure != nullptr) ? static_cast<INT32>(AddDefinedStructure(pStructure,
                                                                                                  &pContents->layout))
                                                         : -1;
        }
        if (module.structIndex >= 0)
        {
            module.hasValues = loader.LoadModule(module.id, module.nameHash, static_cast<size_t>(module.structIndex),
                                                 &module.values);
        }
        pContents->modules.push_back(module);
    }
}

} // namespace AecTune
