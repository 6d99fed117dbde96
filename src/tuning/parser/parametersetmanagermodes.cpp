// The parameter store: mode tables, walking a mode branch, loading and unloading modes, and finding modules.
#include <cstring>
#include <new>

#include "platform/osutils.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parameterutils.h"
#include "tuning/parser/parsercrc.h"

namespace
{
const UINT32 PreserveFlag   = 0x1;
const UINT32 MaxActiveModes = 5;
const UINT32 MinModeCache   = 5;

bool IsDefaultRoot(const TuningMode* pBranch, UINT32 count)
{
    return (nullptr == pBranch) || (0 == count) ||
           ((ModeType::Default == pBranch[0].mode) && (0 == pBranch[0].subMode.value));
}
} // namespace

bool ParameterSetManager::ReadModeSections(const BYTE* pBuffer, SIZE_T length, ParameterBinaryFile* pFile,
                                           BYTE alignment)
{
    const bool bufferMode = (nullptr == pFile);
    if (0 == m_modeSections.Count())
    {
        ParameterLogging::Write(this, Debug, "ReadModeSection: No mode tables in binary, creating default\n");
        ParameterModeTable* pTable = new (std::nothrow) ParameterModeTable(nullptr, 1);
        ModeEntry*          pRoot  = new (std::nothrow) ModeEntry(0, ModeUnion(), true, true, nullptr);
        if ((nullptr == pTable) || (nullptr == pRoot) || (0 == pTable->Count))
        {
            delete pTable;
            delete pRoot;
            return false;
        }
        pTable->Own(pRoot);
        pTable->Modes[0].Entry = pRoot;
        pTable->RootMode.Entry = pRoot;
        m_modeTables.Add(pTable);
        return true;
    }

    bool ok = true;
    for (UINT32 s = 0; s < m_modeSections.Count(); s++)
    {
        const SectionInfo section   = m_modeSections[s];
        const UINT32      nameBytes = (m_version >= VersionUnion::Make(7, 0, 0))   ? ParameterTableNameSize
                                      : (m_version >= VersionUnion::Make(4, 0, 0)) ? ParameterOldTableNameSize
                                                                                   : 0;
        const UINT32      entrySize = GetModeEntrySize(alignment, m_version);
        const UINT32      count     = (section.Size >= nameBytes) ? ((section.Size - nameBytes) / entrySize) : 0;
        const UINT64      expected  = static_cast<UINT64>(nameBytes) + static_cast<UINT64>(entrySize) * count;
        if ((section.Size < nameBytes) || (expected != section.Size))
        {
            ParameterLogging::Write(this, Error, "ReadModeSection: ModeSize %d does not match expected size %d\n",
                                    static_cast<INT32>(section.Size), static_cast<INT32>(expected));
            continue;
        }
        if (0 == section.Size)
        {
            ParameterLogging::Write(this, Error, "ReadModeSection: Failed, buffer length is 0\n");
            continue;
        }
        const BYTE* pSection = nullptr;
        BYTE*       pTemp    = nullptr;
        if (bufferMode)
        {
            if ((nullptr == pBuffer) || (static_cast<UINT64>(section.Offset) + section.Size > length))
            {
                ParameterLogging::Write(this, Error, "ReadModeSection: Failed, buffer is nullptr\n");
                ok = false;
                continue;
            }
            pSection = pBuffer + section.Offset;
        }
        else
        {
            pTemp = pFile->Read(section.Offset, section.Size);
            if (nullptr == pTemp)
            {
                ParameterLogging::Write(this, Error,
                                        "ReadModeSection(%u): Failed to read %d bytes for mode table from binary file\n",
                                        s, static_cast<INT32>(section.Size));
                ok = false;
                continue;
            }
            pSection = pTemp;
        }
        ok = ReadModeSection(pSection, section.Size, count, alignment, bufferMode) && ok;
        delete[] pTemp;
    }
    return ok;
}

bool ParameterSetManager::ReadModeSection(const BYTE* pSection, UINT32 size, UINT32 count, BYTE alignment,
                                          bool bufferMode)
{
    const UINT32 nameBytes = (m_version >= VersionUnion::Make(7, 0, 0))   ? ParameterTableNameSize
                             : (m_version >= VersionUnion::Make(4, 0, 0)) ? ParameterOldTableNameSize
                                                                          : 0;
    UINT32 pos   = 0;
    CHAR*  pName = (0 != nameBytes) ? ParameterUtils::ReadString(pSection, size, pos, nameBytes, 1) : nullptr;
    ParameterModeTable* pTable = new (std::nothrow) ParameterModeTable(pName, count);
    delete[] pName;
    if ((nullptr == pTable) || (pTable->Count != count) || !m_modeTables.Add(pTable))
    {
        delete pTable;
        return false;
    }
    const UINT32 tableIndex = m_modeTables.Count() - 1;
    const bool   hasLink    = (m_version >= VersionUnion::Make(2, 0, 0));
    const bool   hasFlags   = (m_version >= VersionUnion::Make(5, 0, 0));
    const UINT32 entrySize  = GetModeEntrySize(alignment, m_version);

    bool ok = true;
    for (UINT32 i = 0; i < count; i++)
    {
        pos              = nameBytes + i * entrySize;
        UINT32    modeId = 0;
        ModeUnion mode   = {};
        UINT32    parent = 0;
        UINT32    link   = ParameterNoLinkAlt;
        UINT32    flags  = 0;
        bool      read   = ParameterUtils::ReadValue(modeId, pSection, size, pos, alignment, this) &&
                    ParameterUtils::ReadValue(mode.Value, pSection, size, pos, alignment, this) &&
                    ParameterUtils::ReadValue(parent, pSection, size, pos, alignment, this);
        read = read && (!hasLink || ParameterUtils::ReadValue(link, pSection, size, pos, alignment, this));
        read = read && (!hasFlags || ParameterUtils::ReadValue(flags, pSection, size, pos, alignment, this));
        if (!read)
        {
            ok = false;
            break;
        }
        const bool linked = (ParameterNoLink != link) && (ParameterNoLinkAlt != link);
        if (GetModeTableIndex(modeId) != tableIndex)
        {
            ParameterLogging::Write(this, Error,
                                    "ReadModeSection: Mode Table Index in Mode ID (%u) does not match expected (%u)\n",
                                    GetModeTableIndex(modeId), tableIndex);
            SetError("ReadModeSection: Index from Mode ID does not match expected");
            ok = false;
            continue;
        }
        if (GetModeTableIndex(parent) != tableIndex)
        {
            ParameterLogging::Write(this, Error,
                                    "ReadModeSection: Mode Table Index != Parent Table Index,Mode ID (%u), Parent ID (%u)\n",
                                    modeId, parent);
            SetError("ReadModeSection: Mode Table Index != Parent Table Index");
            ok = false;
            continue;
        }
        if (linked && (GetModeTableIndex(link) != tableIndex))
        {
            ParameterLogging::Write(this, Error,
                                    "ReadModeSection: Mode Table Index != Link Table Index, Mode ID (%u), Link ID (%u)\n",
                                    modeId, link);
            SetError("ReadModeSection: Mode Table Index != Link Table Index");
            ok = false;
            continue;
        }
        const UINT32 index       = GetModeIDValue(modeId);
        const UINT32 parentIndex = GetModeIDValue(parent);
        const UINT32 linkIndex   = GetModeIDValue(link);
        if (index >= count)
        {
            SetError("ReadModeSection: Mode ID exceeds mode count");
            ok = false;
            continue;
        }
        if (parentIndex >= count)
        {
            SetError("ReadModeSection: Parent Mode ID exceeds mode count");
            ok = false;
            continue;
        }
        if (linked && (linkIndex >= count))
        {
            SetError("ReadModeSection: Link Mode ID exceeds mode count");
            ok = false;
            continue;
        }

        ModeEntry* pParent = (parent == modeId) ? nullptr : pTable->Modes[parentIndex].Entry;
        ModeEntry* pEntry  = nullptr;
        if ((nullptr != pParent) && (pParent->Mode.Mode.Mode == mode.Mode.Mode) &&
            (pParent->Mode.Mode.SubMode == mode.Mode.SubMode))
        {
            // Only the group differs: the slot shares its parent's mode.
            pEntry = pParent;
        }
        else
        {
            pEntry = new (std::nothrow) ModeEntry(modeId, mode, bufferMode, 0 != (flags & PreserveFlag),
                                                  linked ? &pTable->Modes[linkIndex].Entry : nullptr);
            if (nullptr == pEntry)
            {
                ok = false;
                break;
            }
            pTable->Own(pEntry);
            if (nullptr == pTable->RootMode.Entry)
            {
                pEntry->Loaded  = true;
                pEntry->Preserve = true;
            }
            if ((mode.Mode.Mode == static_cast<UINT16>(ModeType::Default)) ||
                (mode.Mode.Mode == static_cast<UINT16>(ModeType::Sensor)))
            {
                pEntry->Loaded   = true;
                pEntry->Preserve = true;
            }
            if (nullptr != pParent)
            {
                pParent->AddMode(pEntry);
            }
        }
        pTable->Modes[index].Entry = pEntry;
        pTable->Modes[index].Group = static_cast<BYTE>(mode.Mode.Group & 0xFF);
        if (nullptr == pTable->RootMode.Entry)
        {
            pTable->RootMode = pTable->Modes[index];
        }
    }

    // A link chain that comes back to itself would never end: such links are dropped.
    PList<ModeEntry*>& owned = pTable->Owned();
    for (UINT32 i = 0; i < owned.Count(); i++)
    {
        ModeEntry* pMode = owned[i];
        UINT32     hops  = 0;
        while ((nullptr != pMode->Link) && (nullptr != *pMode->Link) && (hops <= owned.Count()))
        {
            pMode = *pMode->Link;
            hops++;
        }
        if (hops > owned.Count())
        {
            ParameterLogging::Write(this, Error, "ReadModeSection: Link cycle at Mode ID (%u), link removed\n",
                                    owned[i]->Id);
            owned[i]->Link = nullptr;
        }
    }
    return ok;
}

bool ParameterSetManager::ValidateMode(const CHAR* pCaller, const TuningMode* pBranch, UINT32 index)
{
    const UINT32 mode = static_cast<UINT32>(pBranch[index].mode);
    if (mode > static_cast<UINT32>(ModeType::Effect))
    {
        ParameterLogging::Write(this, Error,
                                "%s Error: Invalid Mode value (%u) found in modeBranch[%u]. Expected range: %u to %u\n",
                                pCaller, mode, index, 0u, static_cast<UINT32>(ModeType::Effect));
        return false;
    }
    if ((index > 0) && (ModeType::Default == pBranch[index].mode))
    {
        ParameterLogging::Write(this, Error,
                                "%s Error: Default mode found in modeBranch at an index > 0 (%u). Index 0 must be "
                                "Default, but only index 0 may be Default\n",
                                pCaller, index);
        return false;
    }
    return true;
}

template <typename Visit>
ParameterSetManager::WalkResult ParameterSetManager::WalkBranch(ParameterModeTable* pTable, const TuningMode* pBranch,
                                                                UINT32 count, const CHAR* pCaller, Visit visit)
{
    WalkResult result = {pTable->RootMode.Entry, true};
    UINT32     i      = 1;
    while ((nullptr != pBranch) && (nullptr != result.Last) && (i < count))
    {
        if (!ValidateMode(pCaller, pBranch, i))
        {
            result.Complete = false;
            break;
        }
        // Same-type modes (stacked features) match in any order.
        UINT32 run = 1;
        while ((i + run < count) && (pBranch[i + run].mode == pBranch[i].mode))
        {
            run++;
        }
        ModeEntry* pNext = result.Last->FindMode(&pBranch[i], run, 0);
        if (nullptr == pNext)
        {
            result.Complete = false;
            break;
        }
        result.Last = pNext;
        if (!visit(pNext))
        {
            result.Complete = false;
            break;
        }
        i += run;
    }
    return result;
}

bool ParameterSetManager::CheckTable(UINT32 tableIndex, const CHAR* pCaller)
{
    const UINT32 tableCount = Root()->m_modeTables.Count();
    if (tableIndex >= tableCount)
    {
        ParameterLogging::Write(this, Error, "%s called with mode table index (%u) >= mode table count (%u)\n", pCaller,
                                tableIndex, tableCount);
        return false;
    }
    return true;
}

bool ParameterSetManager::LoadModules(ModeEntry* pMode, bool load, const CHAR* pCaller, const TuningMode* pBranch,
                                      UINT32 count, UINT32& references)
{
    ParameterSetManager* pRoot = Root();
    if (nullptr == pMode)
    {
        ParameterLogging::Write(this, Error, "LoadModules: mode is nullptr\n");
        return true;
    }
    if (pMode->TableIndex >= pRoot->m_modeTables.Count())
    {
        ParameterLogging::Write(this, Error, "LoadModules: Mode's table index (%u) >= mode table count (%u)\n",
                                pMode->TableIndex, pRoot->m_modeTables.Count());
        return true;
    }
    ParameterModeTable* pTable  = pRoot->m_modeTables[pMode->TableIndex];
    ModeEntry*          pTarget = pMode->Resolve();
    if (!load && pTarget->Preserve)
    {
        return true;
    }
    const bool        fileMode = IsFileMode();
    bool              result   = true;
    PList<ModeEntry*> activate;
    {
        std::unique_lock<ParameterMutex> modeLock(pTarget->Mutex, std::defer_lock);
        if (fileMode)
        {
            modeLock.lock();
        }
        if (load && !pTarget->Loaded && fileMode)
        {
            references++;
            pRoot->m_pSymbolTable->FileReference(1);
        }
        if (load && (pTarget->Mode.Mode.Mode >= static_cast<UINT16>(ModeType::Usecase)) && pTarget->HasLocalModules())
        {
            activate.Add(pTarget);
        }
        if (load && pTarget->Loaded && (pTarget->Mode.Mode.Mode < static_cast<UINT16>(ModeType::Usecase)))
        {
            return true;
        }
        if (pTarget->Loaded != load)
        {
            CHAR path[ParameterModePathSize];
            CHAR branchPath[ParameterModePathSize] = "";
            pTarget->GetModePath(path, sizeof(path));
            GetPathFromModeBranch(pBranch, count, branchPath, sizeof(branchPath));
            // A linked mode names itself and the target it reads from.
            CHAR source[ParameterModePathSize] = "";
            if (pTarget != pMode)
            {
                pMode->GetModePath(source, sizeof(source));
                Vela::OsUtils::StrLCat(source, "->", sizeof(source));
            }
            ParameterLogging::Write(this, Debug, "%s%soading modules (GetModule:%s:%s): %s%s\n", "",
                                    load ? "L" : "Unl", (nullptr != pCaller) ? pCaller : "Unknown", branchPath, source,
                                    path);
            for (auto& entry : pTarget->ModuleMap)
            {
                ParameterModule* pModule = entry.second.Module;
                if (load)
                {
                    if (!pModule->LoadModule(pRoot->m_pSymbolTable))
                    {
                        pTarget->Loaded = false;
                        result          = false;
                        break;
                    }
                    ModeEntry* pOwn = pModule->GetOwnMode();
                    if ((nullptr != pOwn) && (pOwn->Mode.Mode.Mode >= static_cast<UINT16>(ModeType::Usecase)) &&
                        !activate.Contains(pOwn))
                    {
                        activate.Add(pOwn);
                    }
                }
                else if (pTarget->IsOwnModule(pModule))
                {
                    const UINT32 refs = entry.second.RefCount.load();
                    if (refs > 0)
                    {
                        ParameterLogging::Write(this, Warning, "%sUnloading referenced module %s, Mode: %s, Ref count: %u\n",
                                                "", pModule->GetModuleName(), path, refs);
                    }
                    pModule->UnloadModule();
                }
            }
            if (result)
            {
                pTarget->Loaded = load;
            }
        }
    }

    std::lock_guard<ParameterMutex> activeLock(pTable->ActModeMutex);
    if (!load)
    {
        const UINT32 unreleased = pTarget->GetReferenceCount(nullptr);
        if (unreleased > 0)
        {
            CHAR path[ParameterModePathSize];
            pTarget->GetModePath(path, sizeof(path));
            ParameterLogging::Write(this, Warning, "%sUnloading mode with %u unreleased modules: %s\n", "", unreleased,
                                    path);
            pTarget->ReleaseReferences(this);
        }
        pTable->ActiveModes.Remove(pTarget);
        return true;
    }
    for (UINT32 i = 0; i < activate.Count(); i++)
    {
        pTable->ActiveModes.Remove(activate[i]);
        pTable->ActiveModes.Insert(0, activate[i]);
    }
    if (pRoot->m_modeCacheSize > 0)
    {
        const UINT32 limit = (pRoot->m_modeCacheSize > MinModeCache) ? pRoot->m_modeCacheSize : MinModeCache;
        for (UINT32 i = pTable->ActiveModes.Count(); i > limit; i--)
        {
            ModeEntry* pCandidate = pTable->ActiveModes[i - 1];
            if (pCandidate->Preserve)
            {
                pTable->ActiveModes.RemoveAt(i - 1);
            }
            else if (!pCandidate->IsActive())
            {
                UINT32 none = 0;
                LoadModules(pCandidate, false, pCaller, nullptr, 0, none);
            }
        }
    }
    return result;
}

bool ParameterSetManager::LoadModeInternal(ParameterModeTable* pTable, const TuningMode* pBranch, UINT32 count,
                                           const CHAR* pCaller)
{
    UINT32 references = 0;
    bool   ok         = LoadModules(pTable->RootMode.Entry, true, pCaller, pBranch, count, references);
    if (ok)
    {
        const WalkResult walk = WalkBranch(pTable, pBranch, count, pCaller, [&](ModeEntry* pMode) {
            ok = LoadModules(pMode, true, pCaller, pBranch, count, references);
            return ok;
        });
        ok = ok && walk.Complete;
    }
    if (references > 0)
    {
        Root()->m_pSymbolTable->FileReference(-static_cast<INT32>(references));
    }
    return ok;
}

bool ParameterSetManager::LoadMode(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pCaller)
{
    ParameterSetManager* pRoot = Root();
    if (nullptr == pRoot->m_pSymbolTable)
    {
        SetError("LoadMode called with no binary file loaded");
        return false;
    }
    if (!IsFileMode())
    {
        SetError("LoadMode is not valid in buffer mode");
        return false;
    }
    if (!CheckTable(tableIndex, "LoadMode") || (nullptr == pRoot->m_modeTables[tableIndex]->RootMode.Entry))
    {
        return false;
    }
    return LoadModeInternal(pRoot->m_modeTables[tableIndex], pBranch, count, pCaller);
}

bool ParameterSetManager::UnloadMode(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count)
{
    ParameterSetManager* pRoot = Root();
    if (!IsFileMode())
    {
        SetError("UnloadMode is not valid in buffer mode");
        return false;
    }
    if (!CheckTable(tableIndex, "UnloadMode"))
    {
        return false;
    }
    ParameterModeTable* pTable = pRoot->m_modeTables[tableIndex];
    if (nullptr == pTable->RootMode.Entry)
    {
        SetError("UnloadMode root mode is nullptr");
        return false;
    }
    const WalkResult walk = WalkBranch(pTable, pBranch, count, "UnloadMode", [](ModeEntry*) { return true; });
    if (!walk.Complete)
    {
        return false;
    }
    UINT32 none = 0;
    return LoadModules(walk.Last, false, "UnloadMode", pBranch, count, none);
}

ModeEntry* ParameterSetManager::GetModeEntry(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count)
{
    if (!CheckTable(tableIndex, "GetModeEntry"))
    {
        return nullptr;
    }
    ParameterModeTable* pTable = Root()->m_modeTables[tableIndex];
    const WalkResult    walk   = WalkBranch(pTable, pBranch, count, "GetModeEntry", [](ModeEntry*) { return true; });
    return walk.Complete ? walk.Last : nullptr;
}

ModeEntry* ParameterSetManager::GetModeEntry(UINT32 tableIndex, const CHAR* pPath)
{
    PList<TuningMode> branch;
    if (!GetModeBranchFromPath(pPath, branch))
    {
        return nullptr;
    }
    return GetModeEntry(tableIndex, branch.ToArray(), branch.Count());
}

ParameterModule* ParameterSetManager::GetModuleInternal(UINT32 tableIndex, const CHAR* pName, const TuningMode* pBranch,
                                                        UINT32 count, ParameterModule* pPrevious, UINT32 flag)
{
    static_cast<void>(flag);
    ParameterSetManager* pRoot = Root();
    const CHAR*          pText = (nullptr != pName) ? pName : "";
    if (!CheckTable(tableIndex, "GetModule"))
    {
        ReleaseModule(pPrevious);
        return nullptr;
    }
    if ((nullptr == pBranch) && (0 != count))
    {
        ParameterLogging::Write(this, Warning,
                                "GetModule(%s) called with modeBranch == null and modeCount = %d, will return default "
                                "mode module data\n",
                                pText, static_cast<INT32>(count));
        count = 0;
    }
    CHAR path[ParameterModePathSize] = "";
    GetPathFromModeBranch(pBranch, count, path, sizeof(path));
    if (!IsDefaultRoot(pBranch, count))
    {
        ParameterLogging::Write(this, Warning,
                                "GetModule(%s) called with first mode != Default, might not return module data from "
                                "the desired mode path: %s\n",
                                pText, path);
    }
    ParameterModeTable* pTable = pRoot->m_modeTables[tableIndex];
    if ((nullptr == pRoot->m_pSymbolTable) || (nullptr == pTable->RootMode.Entry))
    {
        ParameterLogging::Write(this, Warning,
                                "GetModule(%s) Uninitialized Set Manager. this: %lx, SymbolTable: %lx, Modes: %lx, "
                                "ModeCount: %d, RootMode: %lx\n",
                                pText, reinterpret_cast<unsigned long>(this),
                                reinterpret_cast<unsigned long>(pRoot->m_pSymbolTable),
                                reinterpret_cast<unsigned long>(pTable->Modes), static_cast<INT32>(pTable->Count),
                                reinterpret_cast<unsigned long>(pTable->RootMode.Entry));
        ReleaseModule(pPrevious);
        return nullptr;
    }
    const bool fileMode = IsFileMode();
    if (fileMode)
    {
        LoadModeInternal(pTable, pBranch, count, pText);
    }

    const UINT64     hash       = ParserCRC64::GetNameHash(pText);
    ParameterModule* pCandidate = pTable->RootMode.Entry->FindModule(hash);
    if (nullptr == pCandidate)
    {
        ParameterLogging::Write(this, Warning, "GetModule %s module not found in default scenario (%s), mode path: %s\n",
                                pText, (nullptr != pTable->Name) ? pTable->Name : "", path);
    }
    if (count >= 2)
    {
        WalkBranch(pTable, pBranch, count, "GetModule", [&](ModeEntry* pMode) {
            ParameterModule* pFound = pMode->FindModule(hash);
            pCandidate              = (nullptr != pFound) ? pFound : pCandidate;
            return true;
        });
    }
    if (nullptr == pCandidate)
    {
        ReleaseModule(pPrevious);
        return nullptr;
    }
    const bool referenced = fileMode && AddReference(pCandidate);
    if (!pCandidate->LoadModule(pRoot->m_pSymbolTable))
    {
        if (referenced)
        {
            ReleaseModule(pCandidate);
        }
        ParameterLogging::Write(this, Error, "Failed to load module %s, path: %s, skipping\n", pText, path);
    }
    ReleaseModule(pPrevious);
    if (pCandidate->IsLoaded())
    {
        return pCandidate;
    }
    ParameterLogging::Write(this, Error, "GetModule %s failed to find a loaded module in %s, returning null\n", pText,
                            path);
    return nullptr;
}

bool ParameterSetManager::GetModules(UINT32 tableIndex, PList<ParameterModule*>& list, const TuningMode* pBranch,
                                     UINT32 count, bool includeLocal, bool includeInherited,
                                     const PipelineType* pPipeline)
{
    ParameterSetManager* pRoot = Root();
    if (!CheckTable(tableIndex, "GetModules()"))
    {
        return false;
    }
    if ((nullptr == pBranch) && (0 != count))
    {
        ParameterLogging::Write(this, Warning,
                                "GetModules() called with modeBranch == null and modeCount = %d, will return default "
                                "mode module data\n",
                                static_cast<INT32>(count));
        count = 0;
    }
    CHAR path[ParameterModePathSize] = "";
    GetPathFromModeBranch(pBranch, count, path, sizeof(path));
    if (!IsDefaultRoot(pBranch, count))
    {
        ParameterLogging::Write(this, Warning,
                                "GetModules() called with first mode != Default, might not return module data from the "
                                "desired mode path: %s\n",
                                path);
    }
    ParameterModeTable* pTable = pRoot->m_modeTables[tableIndex];
    if ((nullptr == pRoot->m_pSymbolTable) || (nullptr == pTable->RootMode.Entry))
    {
        ParameterLogging::Write(this, Warning, "GetModules() Uninitialized Set Manager\n");
        return false;
    }
    if (IsFileMode())
    {
        LoadModeInternal(pTable, pBranch, count, "GetModules()");
    }
    const WalkResult walk = WalkBranch(pTable, pBranch, count, "GetModules()", [](ModeEntry*) { return true; });
    walk.Last->GetModules(list, includeLocal, includeInherited, pPipeline, this);
    for (UINT32 i = 0; i < list.Count(); i++)
    {
        list[i]->LoadModule(pRoot->m_pSymbolTable);
    }
    return true;
}

bool ParameterSetManager::GetActiveModes(UINT32 tableIndex, CHAR* pOut, UINT32 size)
{
    if ((nullptr == pOut) || (0 == size) || !CheckTable(tableIndex, "GetActiveModes"))
    {
        return false;
    }
    ParameterModeTable* pTable = Root()->m_modeTables[tableIndex];
    PList<ModeEntry*>   held;
    {
        std::lock_guard<ParameterMutex> lock(pTable->ActModeMutex);
        for (UINT32 i = 0; (i < pTable->ActiveModes.Count()) && (held.Count() < MaxActiveModes); i++)
        {
            ModeEntry* pMode = pTable->ActiveModes[i];
            if (!pMode->IsActive() || ((held.Count() > 0) && pMode->Preserve))
            {
                continue;
            }
            bool below = false;
            for (UINT32 h = 0; h < held.Count(); h++)
            {
                below = below || held[h]->IsParent(pMode);
            }
            if (below)
            {
                continue;
            }
            bool replaced = false;
            for (UINT32 h = 0; h < held.Count(); h++)
            {
                if (pMode->IsParent(held[h]))
                {
                    held[h]  = pMode;
                    replaced = true;
                    break;
                }
            }
            if (!replaced)
            {
                held.Add(pMode);
            }
        }
    }
    CHAR paths[1024] = "";
    for (UINT32 h = 0; h < held.Count(); h++)
    {
        CHAR path[ParameterModePathSize];
        held[h]->GetModePath(path, sizeof(path));
        if (h > 0)
        {
            Vela::OsUtils::StrLCat(paths, ";", sizeof(paths));
        }
        Vela::OsUtils::StrLCat(paths, path, sizeof(paths));
    }
    return GetDorvikModesString(paths, pOut, size);
}

void ParameterSetManager::ProtectMode(ParameterModule* pModule)
{
    ModeEntry*   pOwn       = pModule->GetOwnMode();
    ModuleData*  pData      = pModule->GetData();
    const UINT32 tableIndex = (nullptr != pData) ? pData->GetModeTableIndex() : 0xFFFFFFFFu;
    if ((nullptr == pOwn) || (tableIndex >= Root()->m_modeTables.Count()))
    {
        return;
    }
    ParameterModeTable*             pTable = Root()->m_modeTables[tableIndex];
    std::lock_guard<ParameterMutex> lock(pTable->ActModeMutex);
    pOwn->Preserve = true;
    pTable->ActiveModes.Remove(pOwn);
}

void ParameterSetManager::UpdateMode(ParameterModeTable* pTable, UINT32 tableIndex, ModeEntry* pMine,
                                     ModeEntry* pTheirs, ParameterSetManager* pOther)
{
    ParameterSetManager* pRoot = Root();
    UINT32               slot  = 0;
    while ((slot < pTable->Count) && (pMine != pTable->Modes[slot].Entry))
    {
        slot++;
    }
    for (auto it = pTheirs->ModuleMap.begin(); (slot < pTable->Count) && (it != pTheirs->ModuleMap.end());)
    {
        ParameterModule* pModule = it->second.Module;
        if (!pTheirs->IsOwnModule(pModule))
        {
            ++it;
            continue;
        }
        // The instance now lives in this tree: its mode, manager and default list are this manager's.
        ModuleData* pData = pModule->GetData();
        pData->Mode       = &pTable->Modes[slot];
        pData->ModeId     = (tableIndex << 24) | slot;
        pData->SetManager = pRoot;
        ParameterModule* pReplaced     = pMine->ReplaceModule(it->first, pModule);
        DefaultModule*   pTheirDefault = pOther->GetDefaultModule(it->first);
        DefaultModule*   pMyDefault    = pRoot->GetDefaultModule(it->first);
        if ((nullptr != pTheirDefault) && pTheirDefault->RemoveModule(pModule))
        {
            if (nullptr != pMyDefault)
            {
                pMyDefault->AddModule(pModule);
            }
            else
            {
                pRoot->m_adoptedModules.Add(pModule);
            }
        }
        if ((nullptr != pReplaced) && (nullptr != pMyDefault) && pMyDefault->RemoveModule(pReplaced))
        {
            pRoot->m_replacedModules.Add(pReplaced);
        }
        it = pTheirs->ModuleMap.erase(it);
    }
    for (ModeEntry* pChild = pTheirs->FirstChild; nullptr != pChild; pChild = pChild->Next)
    {
        TuningMode mode;
        mode.mode          = static_cast<ModeType>(pChild->Mode.Mode.Mode);
        mode.subMode.value = pChild->Mode.Mode.SubMode;
        ModeEntry* pMatch  = pMine->FindMode(&mode);
        if (nullptr != pMatch)
        {
            UpdateMode(pTable, tableIndex, pMatch, pChild, pOther);
        }
    }
}

bool ParameterSetManager::UpdateParameters(ParameterSetManager* pOther)
{
    ParameterSetManager* pRoot = Root();
    if ((nullptr == pOther) || (pOther->Root() == pRoot))
    {
        return false;
    }
    ParameterSetManager* pOtherRoot = pOther->Root();
    bool                 matched    = false;
    for (UINT32 t = 0; t < pOtherRoot->m_modeTables.Count(); t++)
    {
        ParameterModeTable* pTheirs = pOtherRoot->m_modeTables[t];
        for (UINT32 m = 0; m < pRoot->m_modeTables.Count(); m++)
        {
            ParameterModeTable* pMine     = pRoot->m_modeTables[m];
            const bool          bothNone  = (nullptr == pMine->Name) && (nullptr == pTheirs->Name);
            const bool          sameName  = (nullptr != pMine->Name) && (nullptr != pTheirs->Name) &&
                                   (0 == std::strcmp(pMine->Name, pTheirs->Name));
            const bool          singleOne = (1 == pRoot->m_modeTables.Count()) && (1 == pOtherRoot->m_modeTables.Count());
            if ((bothNone || sameName || singleOne) && (nullptr != pMine->RootMode.Entry) &&
                (nullptr != pTheirs->RootMode.Entry))
            {
                UpdateMode(pMine, m, pMine->RootMode.Entry, pTheirs->RootMode.Entry, pOtherRoot);
                matched = true;
                break;
            }
        }
    }
    if (!matched)
    {
        SetError("UpdateParameters: Error: No matching module tables names found, unable to update parameters");
        return false;
    }
    // Moved instances keep their file data in the other manager's symbol table: it stays alive with this manager.
    if (nullptr != pOtherRoot->m_pSymbolTable)
    {
        for (UINT32 i = 0; i < pOtherRoot->m_pSymbolTable->ModuleCount(); i++)
        {
            pOtherRoot->m_pSymbolTable->GetModule(i)->SetManager = pRoot;
        }
        pRoot->m_adoptedSymbolTables.Add(pOtherRoot->m_pSymbolTable);
        pOtherRoot->m_pSymbolTable = nullptr;
    }
    // Instances that were not moved point into that table too, so they come along.
    for (auto& entry : pOtherRoot->m_defaultModules)
    {
        for (ModuleLink* pLink = entry.second->first; nullptr != pLink; pLink = pLink->Next)
        {
            pRoot->m_adoptedModules.Add(pLink->Module);
        }
        DefaultModule::DeleteLinks(entry.second->first);
        entry.second->first = nullptr;
        entry.second->last  = nullptr;
    }
    for (UINT32 i = 0; i < pOtherRoot->m_modeTables.Count(); i++)
    {
        pRoot->m_adoptedModeTables.Add(pOtherRoot->m_modeTables[i]);
    }
    pOtherRoot->m_modeTables.Clear();
    return true;
}
