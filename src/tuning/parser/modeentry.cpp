// One node of a mode tree with the module instances it holds, and the mode table of such nodes.
#include "tuning/parser/modeentry.h"

#include <cstring>
#include <new>

#include "platform/osutils.h"
#include "tuning/parser/modenames.h"
#include "tuning/parser/parametermodule.h"
#include "tuning/parser/parametersetmanager.h"

ModeEntry::ModeEntry(UINT32 id, ModeUnion mode, bool loaded, bool preserve, ModeEntry** pLink)
    : Id(id)
    , Mode(mode)
    , Loaded(loaded)
    , Preserve(preserve)
    , Link(pLink)
    , Parent(nullptr)
    , FirstChild(nullptr)
    , LastChild(nullptr)
    , Next(nullptr)
    , TableIndex(GetModeTableIndex(id))
{
}

void ModeEntry::AddMode(ModeEntry* pChild)
{
    pChild->Parent = this;
    pChild->Next   = nullptr;
    if (nullptr == LastChild)
    {
        FirstChild = pChild;
    }
    else
    {
        LastChild->Next = pChild;
    }
    LastChild = pChild;
}

ModeEntry* ModeEntry::Resolve()
{
    // Link chains are checked for cycles when the table is read.
    ModeEntry* pMode = this;
    while ((nullptr != pMode->Link) && (nullptr != *pMode->Link) && (pMode != *pMode->Link))
    {
        pMode = *pMode->Link;
    }
    return pMode;
}

ModeEntry* ModeEntry::FindMode(const TuningMode* pMode)
{
    ModeEntry* pTarget = Resolve();
    for (ModeEntry* pChild = pTarget->FirstChild; nullptr != pChild; pChild = pChild->Next)
    {
        if ((pChild->Mode.Mode.Mode == static_cast<UINT32>(pMode->mode)) &&
            (pChild->Mode.Mode.SubMode == pMode->subMode.value))
        {
            return pChild;
        }
    }
    return nullptr;
}

ModeEntry* ModeEntry::FindMode(const TuningMode* pBranch, UINT32 count, UINT32 depth)
{
    ModeEntry* pTarget = Resolve();
    for (UINT32 i = 0; i < count; i++)
    {
        ModeEntry* pChild = pTarget->FindMode(&pBranch[i]);
        if (nullptr == pChild)
        {
            continue;
        }
        if (depth + 1 >= count)
        {
            return pChild;
        }
        ModeEntry* pFound = pChild->FindMode(pBranch, count, depth + 1);
        if (nullptr != pFound)
        {
            return pFound;
        }
    }
    return nullptr;
}

ParameterModule* ModeEntry::FindModule(UINT64 hash)
{
    ModeEntry* pTarget = Resolve();
    auto       found   = pTarget->ModuleMap.find(hash);
    return (pTarget->ModuleMap.end() != found) ? found->second.Module : nullptr;
}

void ModeEntry::AddModule(UINT64 hash, ParameterModule* pModule)
{
    ModuleMap.emplace(hash, pModule);
}

ParameterModule* ModeEntry::ReplaceModule(UINT64 hash, ParameterModule* pModule)
{
    auto found = ModuleMap.find(hash);
    if (ModuleMap.end() == found)
    {
        ModuleMap.emplace(hash, pModule);
        return nullptr;
    }
    ParameterModule* pReplaced = found->second.Module;
    found->second.Module       = pModule;
    found->second.RefCount     = 0;
    return pReplaced;
}

bool ModeEntry::IsOwnModule(const ParameterModule* pModule) const
{
    return (nullptr != pModule) && (this == pModule->GetOwnMode());
}

void ModeEntry::GetModules(PList<ParameterModule*>& list, bool local, bool inherited, const PipelineType* pPipeline,
                           const IParameterLoggingAPI* pLog)
{
    ReleaseModules(list, pLog);
    ModeEntry* pTarget = Resolve();
    for (auto& entry : pTarget->ModuleMap)
    {
        ParameterModule* pModule = entry.second.Module;
        if ((nullptr != pPipeline) && (pModule->GetMode().Mode.Group != static_cast<UINT32>(*pPipeline) + 1))
        {
            continue;
        }
        const bool own = pTarget->IsOwnModule(pModule);
        if ((own && local) || (!own && inherited))
        {
            list.Add(pModule);
            ModuleData* pData = pModule->GetData();
            if ((nullptr != pData) && (nullptr != pData->SetManager))
            {
                pData->SetManager->AddReference(pModule);
            }
        }
    }
}

void ModeEntry::ReleaseModules(PList<ParameterModule*>& list, const IParameterLoggingAPI* pLog)
{
    static_cast<void>(pLog);
    for (UINT32 i = 0; i < list.Count(); i++)
    {
        list[i]->Release();
    }
    list.Clear();
}

void ModeEntry::GetModePath(CHAR* pOut, UINT32 size) const
{
    if ((nullptr == pOut) || (0 == size))
    {
        return;
    }
    // The chain from this mode up, written from the root down.
    const ModeEntry* chain[64];
    UINT32           depth = 0;
    for (const ModeEntry* pMode = this; (nullptr != pMode) && (depth < 64); pMode = pMode->Parent)
    {
        chain[depth++] = pMode;
    }
    pOut[0] = '\0';
    for (UINT32 i = depth; i > 0; i--)
    {
        CHAR piece[32];
        Vela::OsUtils::SNPrintF(piece, sizeof(piece), "%s%u.%u", (i == depth) ? "" : "|",
                                static_cast<UINT32>(chain[i - 1]->Mode.Mode.Mode),
                                static_cast<UINT32>(chain[i - 1]->Mode.Mode.SubMode));
        Vela::OsUtils::StrLCat(pOut, piece, size);
    }
}

const CHAR* ModeEntry::GetModeName() const
{
    return ModeNames::ModeName(Mode.Mode.Mode);
}

const CHAR* ModeEntry::GetSubModeName() const
{
    return ModeNames::SubModeName(Mode.Mode.Mode, Mode.Mode.SubMode);
}

ModuleReference* ModeEntry::FindOwnReference(ParameterModule* pModule, const IParameterLoggingAPI* pLog,
                                             const CHAR* pMissingFormat, const CHAR* pWrongModeFormat)
{
    auto found = ModuleMap.find(pModule->GetModuleNameHash());
    if (ModuleMap.end() == found)
    {
        ParameterLogging::Write(pLog, Error, pMissingFormat, Mode.Mode.Mode, Mode.Mode.SubMode,
                                pModule->GetModuleName());
        return nullptr;
    }
    if ((found->second.Module != pModule) || !IsOwnModule(pModule))
    {
        CHAR path[ParameterModePathSize];
        GetModePath(path, sizeof(path));
        ParameterLogging::Write(pLog, Error, pWrongModeFormat, Mode.Mode.Mode, Mode.Mode.SubMode,
                                pModule->GetModuleName(), path);
        return nullptr;
    }
    return &found->second;
}

bool ModeEntry::AddReference(ParameterModule* pModule, const IParameterLoggingAPI* pLog)
{
    ModuleReference* pReference = FindOwnReference(
        pModule, pLog, "Attempt to add reference to a non-existant module.  Mode: %d, SubMode: %d, Module %s\n",
        "Attempt to add module reference from wrong mode.  Mode: %d, SubMode: %d, Module %s, ModePath: %s\n");
    if (nullptr == pReference)
    {
        return false;
    }
    pReference->RefCount++;
    return true;
}

bool ModeEntry::ReleaseReference(ParameterModule* pModule, const IParameterLoggingAPI* pLog)
{
    ModuleReference* pReference = FindOwnReference(
        pModule, pLog, "Attempt to release a non-existant module.  Mode: %d, SubMode: %d, Module %s\n",
        "Attempt to release module reference from wrong mode.  Mode: %d, SubMode: %d, Module %s, ModePath: %s\n");
    if (nullptr == pReference)
    {
        return false;
    }
    if (0 == pReference->RefCount.load())
    {
        ParameterLogging::Write(pLog, Error,
                                "Attempt to release unreferenced module.  Mode: %d, SubMode: %d, Module %s\n",
                                Mode.Mode.Mode, Mode.Mode.SubMode, pModule->GetModuleName());
        return false;
    }
    pReference->RefCount--;
    return true;
}

void ModeEntry::ReleaseReferences(const IParameterLoggingAPI* pLog)
{
    for (auto& entry : ModuleMap)
    {
        if (IsOwnModule(entry.second.Module) && (entry.second.RefCount.load() > 0))
        {
            ParameterLogging::Write(pLog, Warning, "ReleaseReferences called with unreleased module: %s, RefCnt: %u\n",
                                    entry.second.Module->GetModuleName(), entry.second.RefCount.load());
            entry.second.RefCount = 0;
        }
    }
}

UINT32 ModeEntry::GetReferenceCount(ParameterModule* pModule)
{
    UINT32 count = 0;
    for (auto& entry : ModuleMap)
    {
        if (((nullptr == pModule) && IsOwnModule(entry.second.Module)) || (pModule == entry.second.Module))
        {
            count += entry.second.RefCount.load();
        }
    }
    return count;
}

bool ModeEntry::IsActive()
{
    return GetReferenceCount(nullptr) > 0;
}

bool ModeEntry::HasLocalModules()
{
    for (auto& entry : ModuleMap)
    {
        if (IsOwnModule(entry.second.Module))
        {
            return true;
        }
    }
    return false;
}

bool ModeEntry::IsParent(const ModeEntry* pCandidate) const
{
    for (const ModeEntry* pMode = Parent; nullptr != pMode; pMode = pMode->Parent)
    {
        if (pCandidate == pMode)
        {
            return true;
        }
    }
    return false;
}

ParameterModeTable::ParameterModeTable(const CHAR* pName, UINT32 count)
    : Name(nullptr)
    , RootMode()
    , Modes(nullptr)
    , Count(0)
{
    if (nullptr != pName)
    {
        const SIZE_T length = std::strlen(pName);
        Name                = new (std::nothrow) CHAR[length + 1];
        if (nullptr != Name)
        {
            std::memcpy(Name, pName, length + 1);
        }
    }
    Modes = new (std::nothrow) ModeEntryInfo[(0 == count) ? 1 : count]();
    Count = (nullptr != Modes) ? count : 0;
}

ParameterModeTable::~ParameterModeTable()
{
    for (UINT32 i = 0; i < m_owned.Count(); i++)
    {
        delete m_owned[i];
    }
    delete[] Modes;
    delete[] Name;
}
