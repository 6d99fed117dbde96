// The parameter store: construction, logging, errors, prototypes, instances and their references.
#include "tuning/parser/parametersetmanager.h"

#include <cstring>
#include <new>

#include "platform/osutils.h"
#include "tuning/parser/parsercrc.h"

ParameterSetManager::ParameterSetManager(ParameterSetManager* pParent, BYTE tableIndex, const CHAR* pIdentifier)
    : m_pParent(pParent)
    , m_tableIndex(tableIndex)
    , m_version()
    , m_flags(0)
    , m_alignment(1)
    , m_sectionTableOffset(0)
    , m_sectionCount(0)
    , m_symbolSection()
    , m_dataSection()
    , m_dataTableSection()
    , m_definitionSection()
    , m_lastError()
    , m_status(true)
    , m_pSymbolTable(nullptr)
    , m_fileName()
    , m_keepFile(false)
    , m_modeCacheSize(0)
    , m_logEnable{1, 1, 1}
    , m_pIdentifier(nullptr)
    , m_pLoggingIdentifier(nullptr)
    , m_binaryTag()
    , m_changeCount(0)
    , m_ignoreMissingModules(false)
{
    if (nullptr != pIdentifier)
    {
        const SIZE_T length = std::strlen(pIdentifier);
        m_pIdentifier       = new (std::nothrow) CHAR[length + 1];
        if (nullptr != m_pIdentifier)
        {
            std::memcpy(m_pIdentifier, pIdentifier, length + 1);
        }
    }
}

ParameterSetManager::~ParameterSetManager()
{
    FreeReplacedParameters();
    FreeBinaryParameters();
    for (auto& entry : m_defaultModules)
    {
        delete entry.second;
    }
    for (UINT32 i = 0; i < m_adoptedModules.Count(); i++)
    {
        delete m_adoptedModules[i];
    }
    for (UINT32 i = 0; i < m_adoptedSymbolTables.Count(); i++)
    {
        delete m_adoptedSymbolTables[i];
    }
    for (UINT32 i = 0; i < m_adoptedModeTables.Count(); i++)
    {
        delete m_adoptedModeTables[i];
    }
    delete[] m_pIdentifier;
}

ParameterSetManager* ParameterSetManager::Root() const
{
    const ParameterSetManager* pManager = this;
    while (nullptr != pManager->m_pParent)
    {
        pManager = pManager->m_pParent;
    }
    return const_cast<ParameterSetManager*>(pManager);
}

const CHAR* ParameterSetManager::GetLoggingIdentifier() const
{
    const ParameterSetManager* pRoot = Root();
    return (nullptr != pRoot->m_pLoggingIdentifier) ? pRoot->m_pLoggingIdentifier : pRoot->m_pIdentifier;
}

bool ParameterSetManager::LoggingEnabled(ParameterLogLevel level) const
{
    return (level <= Error) && (0 != Root()->m_logEnable[level]);
}

void ParameterSetManager::SetLogEnable(bool debug, bool warning, bool error)
{
    m_logEnable[Debug]   = debug ? 1 : 0;
    m_logEnable[Warning] = warning ? 1 : 0;
    m_logEnable[Error]   = error ? 1 : 0;
}

void ParameterSetManager::SetError(const CHAR* pText, const ModuleData* pModuleData)
{
    ParameterSetManager* pRoot = Root();
    const CHAR*          pBody = (nullptr != pText) ? pText : "";
    if (nullptr == pModuleData)
    {
        Vela::OsUtils::StrLCpy(pRoot->m_lastError, pBody, sizeof(pRoot->m_lastError));
    }
    else
    {
        DefaultModule* pDefault = pRoot->GetDefaultModule(pModuleData->NameHash);
        if ((nullptr != pDefault) && (nullptr != pDefault->Module))
        {
            Vela::OsUtils::SNPrintF(pRoot->m_lastError, sizeof(pRoot->m_lastError),
                                    "%s Name: %s, Major: %u, Minor: %u, Patch: %u, Mode: %u", pBody,
                                    pDefault->Module->GetModuleName(), pModuleData->Version.Version.Major,
                                    pModuleData->Version.Version.Minor, pModuleData->Version.Version.Patch,
                                    pModuleData->ModeId);
        }
        else
        {
            Vela::OsUtils::SNPrintF(pRoot->m_lastError, sizeof(pRoot->m_lastError),
                                    "%s Name Hash: %llx, Major: %u, Minor: %u, Patch: %u, Mode: %u", pBody,
                                    static_cast<unsigned long long>(pModuleData->NameHash),
                                    pModuleData->Version.Version.Major, pModuleData->Version.Version.Minor,
                                    pModuleData->Version.Version.Patch, pModuleData->ModeId);
        }
    }
    ParameterLogging::Write(this, Error, "%s\n", pRoot->m_lastError);
}

void ParameterSetManager::SetWarning(const CHAR* pText)
{
    ParameterSetManager* pRoot = Root();
    Vela::OsUtils::StrLCpy(pRoot->m_lastError, pText, sizeof(pRoot->m_lastError));
    ParameterLogging::Write(this, Warning, "%s\n", pRoot->m_lastError);
}

bool ParameterSetManager::AddDefaultModule(ParameterModule* pPrototype)
{
    if ((nullptr != m_pParent) || (nullptr == pPrototype))
    {
        ParameterLogging::Write(this, Error, "AddDefaultModule called on a derived set manager object\n");
        return false;
    }
    const UINT64 hash = pPrototype->GetModuleNameHash();
    if (0 != m_defaultModules.count(hash))
    {
        ParameterLogging::Write(this, Error, "AddDefaultModule: module %s already registered\n",
                                pPrototype->GetModuleName());
        return false;
    }
    DefaultModule* pDefault = new (std::nothrow) DefaultModule(pPrototype);
    if (nullptr == pDefault)
    {
        return false;
    }
    m_defaultModules[hash] = pDefault;
    return true;
}

DefaultModule* ParameterSetManager::GetDefaultModule(UINT64 nameHash)
{
    ParameterSetManager* pRoot = Root();
    auto                 found = pRoot->m_defaultModules.find(nameHash);
    return (pRoot->m_defaultModules.end() != found) ? found->second : nullptr;
}

void ParameterSetManager::SaveAndClearModules()
{
    ParameterSetManager* pRoot = Root();
    for (auto& entry : pRoot->m_defaultModules)
    {
        pRoot->SaveAndClearModule(entry.second);
    }
}

void ParameterSetManager::SaveAndClearModule(DefaultModule* pDefault)
{
    if (nullptr == pDefault)
    {
        return;
    }
    ParameterSetManager* pRoot = Root();
    ModuleLink*          pLink = pDefault->first;
    while (nullptr != pLink)
    {
        ModuleLink* pNext = pLink->Next;
        pRoot->m_replacedModules.Add(pLink->Module);
        delete pLink;
        pLink = pNext;
    }
    pDefault->first = nullptr;
    pDefault->last  = nullptr;
}

ModeEntryInfo* ParameterSetManager::GetModeEntry(UINT32 modeId)
{
    ParameterSetManager* pRoot      = Root();
    const UINT32         tableIndex = GetModeTableIndex(modeId);
    const UINT32         value      = GetModeIDValue(modeId);
    if (tableIndex >= pRoot->m_modeTables.Count())
    {
        ParameterLogging::Write(this, Error, "%s called with  Mode ID (%u) Table Index >= mode table count (%u)\n",
                                "GetModeEntry", modeId, pRoot->m_modeTables.Count());
        return nullptr;
    }
    ParameterModeTable* pTable = pRoot->m_modeTables[tableIndex];
    if (value >= pTable->Count)
    {
        ParameterLogging::Write(this, Error, "%s called with Mode ID Value (%u) that exceeds the mode table entries (%u)\n",
                                "GetModeEntry", value, pTable->Count);
        return nullptr;
    }
    return (nullptr != pTable->Modes[value].Entry) ? &pTable->Modes[value] : nullptr;
}

UINT32 ParameterSetManager::GetModeTableCount()
{
    return Root()->m_modeTables.Count();
}

bool ParameterSetManager::GetModeTableNames(PList<const CHAR*>& names)
{
    ParameterSetManager* pRoot = Root();
    names.Clear();
    for (UINT32 i = 0; i < pRoot->m_modeTables.Count(); i++)
    {
        const CHAR* pName = pRoot->m_modeTables[i]->Name;
        names.Add((nullptr != pName) ? pName : "");
    }
    return true;
}

ParameterModule* ParameterSetManager::CreateModule(ModuleData* pModuleData, bool load)
{
    ParameterSetManager* pRoot    = Root();
    DefaultModule*       pDefault = pRoot->GetDefaultModule(pModuleData->NameHash);
    if ((nullptr == pDefault) || (nullptr == pDefault->Module))
    {
        if (!pRoot->m_ignoreMissingModules)
        {
            SetError("Failed to find header module: ", pModuleData);
        }
        return nullptr;
    }
    ParameterModule* pModule = pDefault->Module->Create(pModuleData, pDefault);
    if (nullptr == pModule)
    {
        SetError("Failed to parse binary header data for: ", pModuleData);
        return nullptr;
    }
    if (load && !pModule->LoadModule(pRoot->m_pSymbolTable))
    {
        SetError("Failed to parse binary header data for: ", pModuleData);
    }
    return pModule;
}

bool ParameterSetManager::AddModule(ModuleData* pModuleData, ParameterModule* pModule)
{
    ParameterSetManager* pRoot      = Root();
    const UINT32         tableIndex = pModuleData->GetModeTableIndex();
    const UINT32         value      = pModuleData->GetModeIDValue();
    ParameterModeTable*  pTable     = pRoot->m_modeTables[tableIndex];
    if ((nullptr == pTable) || (value >= pTable->Count))
    {
        ParameterLogging::Write(this, Error, "AddModule: moduleData->ModeId(%d) >= m_modeCount(%d)\n",
                                static_cast<INT32>(pModuleData->ModeId),
                                static_cast<INT32>((nullptr != pTable) ? pTable->Count : 0));
        return false;
    }
    if ((nullptr == pTable->RootMode.Entry) || (nullptr == pTable->Modes[value].Entry))
    {
        ParameterLogging::Write(this, Error, "AddModule: RootMode is nullptr\n");
        return false;
    }
    pTable->Modes[value].Entry->AddModule(pModule->GetModuleNameHash(), pModule);
    return true;
}

bool ParameterSetManager::ChangeReference(ParameterModule* pModule, ReferenceChange pfnChange)
{
    ParameterSetManager* pRoot = Root();
    if ((nullptr == pModule) || !IsFileMode())
    {
        return false;
    }
    ModuleData*  pData      = pModule->GetData();
    const UINT32 tableIndex = (nullptr != pData) ? pData->GetModeTableIndex() : 0xFFFFFFFFu;
    ModeEntry*   pOwn       = pModule->GetOwnMode();
    if ((nullptr == pData) || (tableIndex >= pRoot->m_modeTables.Count()) || (nullptr == pOwn))
    {
        ParameterLogging::Write(this, Error,
                                "Attempt to lock Active Mode Mutex failed, mode table not found for ModeID: %u\n",
                                (nullptr != pData) ? pData->ModeId : 0);
        return false;
    }
    std::lock_guard<ParameterMutex> lock(pRoot->m_modeTables[tableIndex]->ActModeMutex);
    return (pOwn->*pfnChange)(pModule, this);
}

bool ParameterSetManager::AddReference(ParameterModule* pModule)
{
    return ChangeReference(pModule, &ModeEntry::AddReference);
}

bool ParameterSetManager::ReleaseModule(ParameterModule* pModule)
{
    return ChangeReference(pModule, &ModeEntry::ReleaseReference);
}

void ParameterSetManager::ReleaseModules(PList<ParameterModule*>& list)
{
    for (UINT32 i = 0; i < list.Count(); i++)
    {
        ReleaseModule(list[i]);
    }
    list.Clear();
}
