// The tuning store of the AEC library: main and derived managers, prototype registration, mode table managers.
#include "tuning/tuningsetmanager.h"

#include <cstring>
#include <new>

namespace
{
// Modes whose modules stay loaded after their last reference is released, before the oldest are unloaded.
constexpr UINT32 MainModeCacheSize = 17;
} // namespace

TuningSetManager::TuningSetManager(const CHAR* pIdentifier)
    : ParameterSetManager(nullptr, 0, pIdentifier)
{
    // The live tuning worker, which the main manager would start after a successful load, is not part of this
    // store yet; the store is used by the camera threads only.
    SetModeCacheSize(MainModeCacheSize);
    SetKeepFile(true);
    SetLogEnable(false, true, true);
    for (UINT32 index = 0; index < RegisteredModuleCount; index++)
    {
        ParameterModule* pPrototype = CreatePrototype(index);
        if ((nullptr != pPrototype) && !AddDefaultModule(pPrototype))
        {
            delete pPrototype;
        }
    }
}

TuningSetManager::TuningSetManager(TuningSetManager* pMain, BYTE tableIndex)
    : ParameterSetManager(pMain, tableIndex, nullptr)
{
    if (nullptr == pMain)
    {
        ParameterLogging::Write(this, Error, "%s called with null main parameter\n", "TuningSetManager");
    }
}

TuningSetManager::~TuningSetManager() = default;

TuningSetManager* TuningSetManager::GetMainSetManager()
{
    // Every parent in the chain is a TuningSetManager: the derived constructor takes no other.
    return static_cast<TuningSetManager*>(Root());
}

TuningSetManager* TuningSetManager::CreateSetManager(BYTE tableIndex)
{
    TuningSetManager* pMain = GetMainSetManager();
    const UINT32      count = pMain->GetModeTableCount();
    if (tableIndex >= count)
    {
        ParameterLogging::Write(this, Error, "%s called mode table index (%u) >= mode table count (%u)\n",
                                "CreateSetManager", static_cast<UINT32>(tableIndex), count);
        return nullptr;
    }
    return new (std::nothrow) TuningSetManager(pMain, tableIndex);
}

TuningSetManager* TuningSetManager::CreateSetManager(const CHAR* pTableName)
{
    TuningSetManager*  pMain = GetMainSetManager();
    PList<const CHAR*> names;
    pMain->GetModeTableNames(names);
    // A table index is a byte: tables past 255 cannot have a manager.
    for (UINT32 index = 0; (nullptr != pTableName) && (index < names.Count()) && (index <= 0xFFu); index++)
    {
        if (0 == std::strcmp(names[index], pTableName))
        {
            return pMain->CreateSetManager(static_cast<BYTE>(index));
        }
    }
    ParameterLogging::Write(this, Error, "%s unable to find mode table %s\n", "CreateSetManager",
                            (nullptr != pTableName) ? pTableName : "(null)");
    return nullptr;
}

bool TuningSetManager::UpdateBinaryParameters(BYTE*, SIZE_T)
{
    ParameterLogging::Write(this, Error,
                            "%s not available.  To enable, add --update when generating parser utility code\n",
                            "UpdateBinaryParameters");
    return false;
}
