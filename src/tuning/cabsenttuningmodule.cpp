// A module that the tuning store knows by name only: it accepts the module's data in a file without reading it.
#include "tuning/cabsenttuningmodule.h"

#include <mutex>
#include <new>

#include "tuning/parser/parametersetmanager.h"

CAbsentTuningModule::CAbsentTuningModule(const CHAR* pName)
    : ParameterModule(pName, VersionUnion::Make(0, 0, 0), nullptr)
{
}

CAbsentTuningModule::CAbsentTuningModule(const CHAR* pName, ModuleData* pData)
    : ParameterModule(pName, pData->Version, pData)
{
}

ParameterModule* CAbsentTuningModule::Create(ModuleData* pData, DefaultModule* pDefaults) const
{
    if ((nullptr == pData) || (nullptr == pDefaults))
    {
        ParameterLogging::Write(nullptr, Error, "Unable to create CAbsentTuningModule %s without module data\n",
                                GetModuleName());
        return nullptr;
    }
    if (pData->NameHash != m_nameHash)
    {
        ParameterLogging::Write(pData->SetManager, Error,
                                "Unable to create CAbsentTuningModule, binary name hash (0x%016llx) does not match "
                                "source name hash (0x%016llx)\n",
                                static_cast<unsigned long long>(pData->NameHash),
                                static_cast<unsigned long long>(m_nameHash));
        return nullptr;
    }
    // Modes that share the file's data share the instance, as with the modules the library reads.
    const UINT32     key      = (0 != pData->DuplicateID) ? pData->DuplicateID : pData->ID;
    ParameterModule* pModule  = pDefaults->Find(key);
    if (nullptr != pModule)
    {
        return pModule;
    }
    CAbsentTuningModule* pNew = new (std::nothrow) CAbsentTuningModule(m_name, pData);
    if (nullptr == pNew)
    {
        return nullptr;
    }
    pNew->SetKey(key);
    // The list deletes an instance that it has no room for: what it holds afterwards is the answer.
    pDefaults->AddModule(pNew);
    return pDefaults->Find(key);
}

bool CAbsentTuningModule::LoadModule(ParameterFileSymbolTable*)
{
    std::lock_guard<ParameterMutex> lock(m_mutex);
    if (!m_loaded.load())
    {
        m_modifiedCount++;
        m_loaded = true;
    }
    return true;
}

bool CAbsentTuningModule::UnloadModule()
{
    std::lock_guard<ParameterMutex> lock(m_mutex);
    m_loaded = false;
    return true;
}
