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
    // Any version: nothing of the module is read.
    return CreateInstance(pData, pDefaults, "CAbsentTuningModule", false, &MakeInstance);
}

ParameterModule* CAbsentTuningModule::MakeInstance(const CHAR* pName, ModuleData* pData, UINT32)
{
    return new (std::nothrow) CAbsentTuningModule(pName, pData);
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
