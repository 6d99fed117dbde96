// Module instances of the store: the common base of generated modules, what the file says of each, and the
// per-name list of instances made from one prototype.
#include "tuning/parser/parametermodule.h"

#include <cstring>
#include <new>

#include "platform/osutils.h"
#include "tuning/parser/modeentry.h"
#include "tuning/parser/parameterfilesymboltable.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parsercrc.h"

ModuleData::ModuleData(IModeTable* pModeTable, ParameterSetManager* pSetManager, ParameterFileSymbolTable* pSymbolTable,
                       UINT64 nameHash, UINT32 id, UINT32 duplicateId, VersionUnion version, UINT32 modeId,
                       const IParameterLoggingAPI* pLog)
    : NameHash(nameHash)
    , ID(id)
    , DuplicateID(duplicateId)
    , Version(version)
    , ModeId(modeId)
    , Mode(nullptr)
    , ModePath(nullptr)
    , SetManager(pSetManager)
    , SymbolTable(pSymbolTable)
    , m_ownsMode(false)
{
    if (nullptr == pModeTable)
    {
        ParameterLogging::Write(pLog, Error, "ModuleData called with nullptr modeTable parameter\n");
    }
    else
    {
        Mode = pModeTable->GetModeEntry(modeId);
    }
    if (nullptr == Mode)
    {
        if (nullptr != pModeTable)
        {
            ParameterLogging::Write(pLog, Error, "Failed to find ModeID %d in mode table when creating ModuleData\n",
                                    static_cast<INT32>(modeId));
        }
        Mode       = new (std::nothrow) ModeEntryInfo();
        m_ownsMode = (nullptr != Mode);
    }
    ModePath = new (std::nothrow) CHAR[ParameterModePathSize];
    if (nullptr != ModePath)
    {
        ModePath[0] = '\0';
        if ((nullptr != Mode) && (nullptr != Mode->Entry))
        {
            Mode->Entry->GetModePath(ModePath, ParameterModePathSize);
        }
    }
}

ModuleData::~ModuleData()
{
    if (m_ownsMode)
    {
        delete Mode;
    }
    delete[] ModePath;
}

ParameterModule::ParameterModule(const CHAR* pName, VersionUnion version, ModuleData* pData)
    : m_nameHash(ParserCRC64::GetNameHash(pName))
    , m_name(nullptr)
    , m_version(version)
    , m_mode()
    , m_pData(pData)
    , m_loaded(false)
    , m_modifiedCount(0)
    , m_key(0)
{
    const CHAR*  pText  = (nullptr != pName) ? pName : "";
    const SIZE_T length = std::strlen(pText);
    m_name              = new (std::nothrow) CHAR[length + 1];
    if (nullptr != m_name)
    {
        std::memcpy(m_name, pText, length + 1);
    }
    if ((nullptr != pData) && (nullptr != pData->Mode) && (nullptr != pData->Mode->Entry))
    {
        m_mode                = pData->Mode->Entry->Mode;
        m_mode.Mode.Group     = pData->Mode->Group;
    }
}

ParameterModule::~ParameterModule()
{
    delete[] m_name;
}

bool ParameterModule::GetValue(const CHAR*, CHAR*, UINT32)
{
    return false;
}

bool ParameterModule::SetValue(const CHAR*, const CHAR*)
{
    return false;
}

bool ParameterModule::GetInfo(const CHAR*, PList<ParameterParserInfo>&)
{
    return false;
}

ModeEntry* ParameterModule::GetOwnMode() const
{
    return ((nullptr != m_pData) && (nullptr != m_pData->Mode)) ? m_pData->Mode->Entry : nullptr;
}

bool ParameterModule::Release()
{
    if ((nullptr == m_pData) || (nullptr == m_pData->SetManager))
    {
        ParameterLogging::Write(nullptr, Error,
                                "Attempt to release module reference when Data or SetManager is nullptr. Module %s\n",
                                GetModuleName());
        return false;
    }
    return m_pData->SetManager->ReleaseModule(this);
}

void ParameterModule::NoteModified()
{
    UINT32 key = m_key.load();
    UINT32 top = (key >> 24) + 1;
    top        = (top > 0xFF) ? 1 : top;
    m_key      = (top << 24) | (key & 0xFFFFFFu);
    m_modifiedCount++;
}

ParameterModule* ParameterModule::CreateInstance(ModuleData* pData, DefaultModule* pDefaults, const CHAR* pClassName,
                                                 bool checkVersion, MakeInstanceFn pfnMake) const
{
    if ((nullptr == pData) || (nullptr == pDefaults) || (nullptr == pfnMake))
    {
        ParameterLogging::Write(nullptr, Error, "%s::Create called with nullptr data or default module\n", pClassName);
        return nullptr;
    }
    const IParameterLoggingAPI* pLog = pData->SetManager;
    if (checkVersion && (pData->Version.Value != m_version.Value))
    {
        ParameterLogging::Write(pLog, Error,
                                "Unable to create %s, binary version (%lld) does not match source version (%lld)\n",
                                pClassName, static_cast<long long>(pData->Version.Value),
                                static_cast<long long>(m_version.Value));
        return nullptr;
    }
    if (pData->NameHash != m_nameHash)
    {
        ParameterLogging::Write(pLog, Error,
                                "Unable to create %s, binary name hash (0x%016llx) does not match source name hash "
                                "(0x%016llx)\n",
                                pClassName, static_cast<unsigned long long>(pData->NameHash),
                                static_cast<unsigned long long>(m_nameHash));
        return nullptr;
    }
    const UINT32     key       = (0 != pData->DuplicateID) ? pData->DuplicateID : pData->ID;
    ParameterModule* pExisting = pDefaults->Find(key);
    if (nullptr != pExisting)
    {
        return pExisting;
    }
    ParameterModule* pNew = pfnMake(m_name, pData, key);
    if (nullptr == pNew)
    {
        return nullptr;
    }
    pNew->SetKey(key);
    pDefaults->AddModule(pNew);
    // The list deletes an instance it could not link: what it holds afterwards is the answer.
    return pDefaults->Find(key);
}

bool ParameterModule::LoadFromSymbolTable(ParameterFileSymbolTable* pSymbolTable, const CHAR* pClassName,
                                          ParameterModuleLoadFn pLoad, void* pRecord)
{
    std::lock_guard<ParameterMutex> lock(m_mutex);
    if (m_loaded.load())
    {
        return true;
    }
    if ((nullptr == pSymbolTable) || (nullptr == pLoad))
    {
        return false;
    }
    ParameterFileSymbolTableEntry entry;
    if (!pSymbolTable->Find(entry, m_key.load() & 0xFFFFFFu, true))
    {
        ParameterLogging::Write(pSymbolTable->Log(), Error, "%s::LoadModule Failed to find module ID (%d) in Symbol Table\n",
                                pClassName, static_cast<INT32>(m_key.load() & 0xFFFFFFu));
        UnloadModule();
        return false;
    }
    ParameterDefinitionElement* pElement = pSymbolTable->HasDefinitions()
                                               ? pSymbolTable->BuildModuleElement(m_nameHash)
                                               : nullptr;
    ParameterLoadParameters params;
    params.Entry           = &entry;
    params.NameHash        = m_nameHash;
    params.UseParent       = true;
    params.UseParentOffset = true;
    params.Element         = pElement;
    params.Position        = entry.Position;
    params.Index           = 0;
    params.LoadDataLimit   = ParameterFileSymbolTableEntry::NoLimit;
    pLoad(params, pRecord);
    delete pElement;
    m_modifiedCount++;
    m_loaded = true;
    return true;
}

DefaultModule::DefaultModule(ParameterModule* pPrototype)
    : Module(pPrototype)
    , first(nullptr)
    , last(nullptr)
{
}

DefaultModule::~DefaultModule()
{
    DeleteChain(first);
    delete Module;
}

void DefaultModule::DeleteChain(ModuleLink* pLink)
{
    // Iterative, so that a long chain cannot exhaust the stack.
    while (nullptr != pLink)
    {
        ModuleLink* pNext = pLink->Next;
        delete pLink->Module;
        delete pLink;
        pLink = pNext;
    }
}

void DefaultModule::DeleteLinks(ModuleLink* pLink)
{
    while (nullptr != pLink)
    {
        ModuleLink* pNext = pLink->Next;
        delete pLink;
        pLink = pNext;
    }
}

ParameterModule* DefaultModule::Find(UINT32 id) const
{
    for (ModuleLink* pLink = first; nullptr != pLink; pLink = pLink->Next)
    {
        if ((pLink->Module->GetKey() & 0xFFFFFFu) == (id & 0xFFFFFFu))
        {
            return pLink->Module;
        }
    }
    return nullptr;
}

void DefaultModule::AddModule(ParameterModule* pModule)
{
    ModuleLink* pLink = new (std::nothrow) ModuleLink{pModule, nullptr};
    if (nullptr == pLink)
    {
        delete pModule;
        return;
    }
    if (nullptr == last)
    {
        first = pLink;
    }
    else
    {
        last->Next = pLink;
    }
    last = pLink;
}

bool DefaultModule::RemoveModule(ParameterModule* pModule)
{
    ModuleLink* pPrevious = nullptr;
    for (ModuleLink* pLink = first; nullptr != pLink; pLink = pLink->Next)
    {
        if (pModule == pLink->Module)
        {
            if (nullptr == pPrevious)
            {
                first = pLink->Next;
            }
            else
            {
                pPrevious->Next = pLink->Next;
            }
            if (last == pLink)
            {
                last = pPrevious;
            }
            delete pLink;
            return true;
        }
        pPrevious = pLink;
    }
    return false;
}
