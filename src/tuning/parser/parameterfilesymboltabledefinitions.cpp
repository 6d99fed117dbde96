// The definition table of a parameter file: structure descriptions, their sizes and offsets, and their release.
#include "tuning/parser/parameterfilesymboltable.h"

#include <new>

#include "tuning/parser/parsercrc.h"

bool ParameterFileSymbolTable::ReadDefinitionString(const BYTE* pBuffer, SIZE_T length, UINT32& pos, CHAR** ppOut)
{
    UINT32 count = 0;
    if (!ParameterUtils::ReadValue(count, pBuffer, length, pos, m_alignment, m_pLog))
    {
        return false;
    }
    if (static_cast<UINT64>(pos) + count > length)
    {
        ParameterLogging::Write(m_pLog, Error, "Failed to read %lld bytes from binary file offset %d, length %d\n",
                                static_cast<long long>(count), static_cast<INT32>(pos), static_cast<INT32>(length));
        return false;
    }
    if (nullptr != ppOut)
    {
        *ppOut = ParameterUtils::ReadString(pBuffer, length, pos, count, m_alignment);
        return (nullptr != *ppOut);
    }
    pos = static_cast<UINT32>(pos + ParameterUtils::RoundUp(count, m_alignment));
    return true;
}

bool ParameterFileSymbolTable::SkipDefinition(UINT32 tag, const BYTE* pBuffer, SIZE_T length, UINT32& pos)
{
    BYTE   byte  = 0;
    UINT32 value = 0;
    UINT64 hash  = 0;
    bool   ok    = true;
    switch (tag)
    {
        case ParameterDefinitionType_ScenarioMode:
            ok = ParameterUtils::ReadValue(byte, pBuffer, length, pos, m_alignment, m_pLog) &&
                 ReadDefinitionString(pBuffer, length, pos, nullptr) &&
                 ParameterUtils::ReadValue(byte, pBuffer, length, pos, m_alignment, m_pLog);
            break;
        case ParameterDefinitionType_ScenarioSubMode:
            for (UINT32 i = 0; (i < 3) && ok; i++)
            {
                ok = ParameterUtils::ReadValue(byte, pBuffer, length, pos, m_alignment, m_pLog);
            }
            ok = ok && ReadDefinitionString(pBuffer, length, pos, nullptr) &&
                 ParameterUtils::ReadValue(byte, pBuffer, length, pos, m_alignment, m_pLog);
            break;
        case ParameterDefinitionType_Pipeline:
            ok = ParameterUtils::ReadValue(byte, pBuffer, length, pos, m_alignment, m_pLog) &&
                 ParameterUtils::ReadValue(byte, pBuffer, length, pos, m_alignment, m_pLog) &&
                 ReadDefinitionString(pBuffer, length, pos, nullptr) &&
                 ReadDefinitionString(pBuffer, length, pos, nullptr);
            break;
        default:  // ParameterDefinitionType_EnumDefinition
        {
            UINT32 count = 0;
            ok = ParameterUtils::ReadValue(value, pBuffer, length, pos, m_alignment, m_pLog) &&
                 ReadDefinitionString(pBuffer, length, pos, nullptr) &&
                 ParameterUtils::ReadValue(hash, pBuffer, length, pos, m_alignment, m_pLog) &&
                 ParameterUtils::ReadValue(count, pBuffer, length, pos, m_alignment, m_pLog);
            for (UINT32 i = 0; (i < count) && ok; i++)
            {
                ok = ParameterUtils::ReadValue(value, pBuffer, length, pos, m_alignment, m_pLog) &&
                     ParameterUtils::ReadValue(byte, pBuffer, length, pos, m_alignment, m_pLog) &&
                     ReadDefinitionString(pBuffer, length, pos, nullptr) &&
                     ReadDefinitionString(pBuffer, length, pos, nullptr);
            }
            break;
        }
    }
    return ok;
}

bool ParameterFileSymbolTable::ReadModuleDefinition(const BYTE* pBuffer, SIZE_T length, UINT32& pos)
{
    ParameterDefinitionModule* pModule = new (std::nothrow) ParameterDefinitionModule();
    if (nullptr == pModule)
    {
        return false;
    }
    const bool ok = ParameterUtils::ReadValue(pModule->StructureID, pBuffer, length, pos, m_alignment, m_pLog) &&
                    ParameterUtils::ReadValue(pModule->NameHash, pBuffer, length, pos, m_alignment, m_pLog) &&
                    ReadDefinitionString(pBuffer, length, pos, &pModule->Name) &&
                    ReadDefinitionString(pBuffer, length, pos, nullptr);
    if (!ok || (0 != m_moduleDefinitions.count(pModule->NameHash)))
    {
        if (ok)
        {
            ParameterLogging::Write(m_pLog, Warning, "Module definition 0x%llx appears twice, later one ignored\n",
                                    static_cast<unsigned long long>(pModule->NameHash));
        }
        delete pModule;
        return ok;
    }
    m_moduleDefinitions[pModule->NameHash] = pModule;
    return true;
}

bool ParameterFileSymbolTable::ReadStructureDefinition(const BYTE* pBuffer, SIZE_T length, UINT32& pos)
{
    ParameterDefinitionStructure* pStructure = new (std::nothrow) ParameterDefinitionStructure();
    if (nullptr == pStructure)
    {
        return false;
    }
    UINT32 children = 0;
    bool   ok = ParameterUtils::ReadValue(pStructure->StructureID, pBuffer, length, pos, m_alignment, m_pLog) &&
              ReadDefinitionString(pBuffer, length, pos, &pStructure->TypeName) &&
              ParameterUtils::ReadValue(pStructure->StructureHash, pBuffer, length, pos, m_alignment, m_pLog) &&
              ParameterUtils::ReadValue(children, pBuffer, length, pos, m_alignment, m_pLog);
    for (UINT32 i = 0; (i < children) && ok; i++)
    {
        BYTE   type     = 0;
        UINT32 id       = 0;
        CHAR*  pName    = nullptr;
        UINT16 flags    = 0;
        UINT32 minCount = 0;
        UINT32 maxCount = 0;
        ok = ParameterUtils::ReadValue(type, pBuffer, length, pos, m_alignment, m_pLog) &&
             ParameterUtils::ReadValue(id, pBuffer, length, pos, m_alignment, m_pLog) &&
             ReadDefinitionString(pBuffer, length, pos, &pName) &&
             ParameterUtils::ReadValue(flags, pBuffer, length, pos, m_alignment, m_pLog) &&
             ParameterUtils::ReadValue(minCount, pBuffer, length, pos, m_alignment, m_pLog) &&
             ParameterUtils::ReadValue(maxCount, pBuffer, length, pos, m_alignment, m_pLog) &&
             ReadDefinitionString(pBuffer, length, pos, nullptr);
        const UINT64 nameHash = ParserCRC64::GetNameHash(pName);
        delete[] pName;
        if (!ok)
        {
            break;
        }
        if (0 != pStructure->Children.count(nameHash))
        {
            // Two members of one name cannot both be found by it.
            ParameterLogging::Write(m_pLog, Error, "Structure %u has two members of name hash 0x%llx\n",
                                    pStructure->StructureID, static_cast<unsigned long long>(nameHash));
            ok = false;
            break;
        }
        ParameterDefinitionElement* pElement = new (std::nothrow) ParameterDefinitionElement();
        if (nullptr == pElement)
        {
            ok = false;
            break;
        }
        pElement->NameHash = nameHash;
        pElement->Info     = new (std::nothrow) ParameterDefinitionElementInfo(
            static_cast<ParameterDefinitionType>(type), id, flags, minCount, maxCount);
        pStructure->Children[nameHash] = pElement;
        ok = (nullptr != pElement->Info) && pStructure->ChildOrder.Add(pElement);
    }
    if (!ok || (0 != m_structureDefinitions.count(pStructure->StructureID)))
    {
        if (ok)
        {
            ParameterLogging::Write(m_pLog, Warning, "Structure definition %u appears twice, later one ignored\n",
                                    pStructure->StructureID);
        }
        delete pStructure;
        return ok;
    }
    m_structureDefinitions[pStructure->StructureID] = pStructure;
    return true;
}

bool ParameterFileSymbolTable::LoadDefinitions(const BYTE* pBuffer, SIZE_T length)
{
    UINT32 pos = 0;
    bool   ok  = true;
    while (ok && (pos < length))
    {
        BYTE tag = 0;
        ok       = ParameterUtils::ReadValue(tag, pBuffer, length, pos, m_alignment, m_pLog);
        if (!ok)
        {
            break;
        }
        switch (tag)
        {
            case ParameterDefinitionType_ScenarioMode:
            case ParameterDefinitionType_ScenarioSubMode:
            case ParameterDefinitionType_Pipeline:
            case ParameterDefinitionType_EnumDefinition:
                ok = SkipDefinition(tag, pBuffer, length, pos);
                break;
            case ParameterDefinitionType_Module:
                ok = ReadModuleDefinition(pBuffer, length, pos);
                break;
            case ParameterDefinitionType_Structure:
                ok = ReadStructureDefinition(pBuffer, length, pos);
                break;
            default:
                ParameterLogging::Write(m_pLog, Error, "Error: Unexpected type found in definition table (%u)\n",
                                        static_cast<UINT32>(tag));
                ok = false;
                break;
        }
    }
    if (ok)
    {
        PList<UINT32> inProgress;
        for (auto& structure : m_structureDefinitions)
        {
            PopulateOffsetSizeStructure(structure.second, inProgress);
        }
        for (auto& structure : m_structureDefinitions)
        {
            structure.second->ChildOrder.Clear();
        }
    }
    return ok;
}

void ParameterFileSymbolTable::PopulateOffsetSizeStructure(ParameterDefinitionStructure* pStructure,
                                                           PList<UINT32>& inProgress)
{
    if (pStructure->Populated)
    {
        return;
    }
    if (inProgress.Contains(pStructure->StructureID))
    {
        // A structure that contains itself has no size; its members are then read where the code expects them.
        ParameterLogging::Write(m_pLog, Error, "PopulateOffsetSizeStructure structure %u contains itself\n",
                                pStructure->StructureID);
        return;
    }
    inProgress.Add(pStructure->StructureID);
    const UINT64 maxSize = 0xFFFFFFFFull;
    UINT64       size    = 4;
    for (UINT32 i = 0; i < pStructure->ChildOrder.Count(); i++)
    {
        ParameterDefinitionElement*     pChild = pStructure->ChildOrder[i];
        ParameterDefinitionElementInfo* pInfo  = pChild->Info;
        pInfo->ParentOffset                    = static_cast<UINT32>(size);
        if (ParameterDefinitionType_Structure == pInfo->Type)
        {
            pInfo->Structure = FindStructure(pInfo->ID);
            if (nullptr == pInfo->Structure)
            {
                ParameterLogging::Write(m_pLog, Error,
                                        "PopulateOffsetSizeStructure structure not found: ID: %u, NameHash: %lld\n",
                                        pInfo->ID, static_cast<long long>(pChild->NameHash));
            }
            else
            {
                PopulateOffsetSizeStructure(pInfo->Structure, inProgress);
            }
        }
        if (pInfo->IsPointer() || pInfo->IsString())
        {
            size += pInfo->IsFixed() ? (static_cast<UINT64>(pInfo->MaxCount) * 8) : 8;
        }
        else if (pInfo->IsFloat())
        {
            size += static_cast<UINT64>(pInfo->MaxCount) * 4;
        }
        else
        {
            size += static_cast<UINT64>(pInfo->MaxCount) * pInfo->GetSize();
        }
        // Fixed arrays carry their count in the data only from the version that introduced it.
        if (pInfo->IsFixed() && !pInfo->IsPointer() && (m_version >= MultiModeTableVersion))
        {
            size += 4;
        }
        size = (size > maxSize) ? maxSize : size;
    }
    pStructure->Size      = static_cast<UINT32>(size);
    pStructure->Populated = true;
    inProgress.Remove(pStructure->StructureID);
}

ParameterDefinitionStructure* ParameterFileSymbolTable::FindStructure(UINT32 id)
{
    auto found = m_structureDefinitions.find(id);
    return (m_structureDefinitions.end() != found) ? found->second : nullptr;
}

ParameterDefinitionStructure* ParameterFileSymbolTable::FindModuleStructure(UINT64 nameHash)
{
    auto found = m_moduleDefinitions.find(nameHash);
    return (m_moduleDefinitions.end() != found) ? FindStructure(found->second->StructureID) : nullptr;
}

ParameterDefinitionElement* ParameterFileSymbolTable::BuildModuleElement(UINT64 nameHash)
{
    ParameterDefinitionStructure* pStructure = FindModuleStructure(nameHash);
    if (nullptr == pStructure)
    {
        return nullptr;
    }
    ParameterDefinitionElement* pElement = new (std::nothrow) ParameterDefinitionElement();
    if (nullptr == pElement)
    {
        return nullptr;
    }
    pElement->NameHash = nameHash;
    pElement->Info     = new (std::nothrow) ParameterDefinitionElementInfo(ParameterDefinitionType_Structure,
                                                                       pStructure->StructureID, 0, 1, 1);
    if (nullptr == pElement->Info)
    {
        delete pElement;
        return nullptr;
    }
    pElement->Info->Structure = pStructure;
    return pElement;
}

void ParameterFileSymbolTable::ClearDefinitions(bool all)
{
    if (all)
    {
        for (auto& module : m_moduleDefinitions)
        {
            delete module.second;
        }
        m_moduleDefinitions.clear();
        for (auto& structure : m_structureDefinitions)
        {
            delete structure.second;
        }
        m_structureDefinitions.clear();
        return;
    }

    // Structures to keep: those with an unverified member, and those that such members refer to.
    PList<UINT32> keep;
    for (auto& structure : m_structureDefinitions)
    {
        for (auto& child : structure.second->Children)
        {
            ParameterDefinitionElement* pChild = child.second;
            if (nullptr == pChild->Info)
            {
                continue;
            }
            PList<UINT32> visited;
            const bool    verified = pChild->Verified.load() && ((nullptr == pChild->Info->Structure) ||
                                                               pChild->Info->Structure->IsVerified(visited));
            if (!verified)
            {
                if (!keep.Contains(structure.first))
                {
                    keep.Add(structure.first);
                }
                if ((nullptr != pChild->Info->Structure) && !keep.Contains(pChild->Info->ID))
                {
                    keep.Add(pChild->Info->ID);
                }
            }
        }
    }
    for (auto& structure : m_structureDefinitions)
    {
        for (auto& child : structure.second->Children)
        {
            ParameterDefinitionElement* pChild = child.second;
            if ((nullptr == pChild->Info) || !pChild->Verified.load())
            {
                continue;
            }
            PList<UINT32> visited;
            if ((nullptr == pChild->Info->Structure) || pChild->Info->Structure->IsVerified(visited) ||
                !keep.Contains(pChild->Info->ID))
            {
                delete pChild->Info;
                pChild->Info = nullptr;
            }
        }
    }
    for (auto it = m_structureDefinitions.begin(); it != m_structureDefinitions.end();)
    {
        if (keep.Contains(it->first))
        {
            ++it;
        }
        else
        {
            delete it->second;
            it = m_structureDefinitions.erase(it);
        }
    }
    for (auto it = m_moduleDefinitions.begin(); it != m_moduleDefinitions.end();)
    {
        if (keep.Contains(it->second->StructureID))
        {
            ++it;
        }
        else
        {
            delete it->second;
            it = m_moduleDefinitions.erase(it);
        }
    }
}
