// The tuning store of the AEC library: the parameter store with every registered module and typed module accessors.
#ifndef AECORE_TUNING_TUNINGSETMANAGER_H
#define AECORE_TUNING_TUNINGSETMANAGER_H

#include "aectuningrecords.h"
#include "tuning/parser/parametersetmanager.h"

// The main manager registers a prototype of every module the camera's tuning files may hold; a derived manager
// serves one further mode table of its main manager's file. Module records stay owned by the store and valid as long
// as it lives.
class TuningSetManager : public ParameterSetManager
{
public:
    // The main manager. The live tuning link is not part of this store yet: no worker is started.
    explicit TuningSetManager(const CHAR* pIdentifier);
    // A derived manager of one mode table of pMain's file.
    TuningSetManager(TuningSetManager* pMain, BYTE tableIndex);
    ~TuningSetManager() override;

    // New derived managers of the main manager (the caller deletes them); null for a table the file does not have.
    TuningSetManager* CreateSetManager(BYTE tableIndex);
    TuningSetManager* CreateSetManager(const CHAR* pTableName);
    TuningSetManager* GetMainSetManager();

    // Updating a loaded store from a new file is not built into this store: logs and returns false.
    bool UpdateBinaryParameters(BYTE* pBuffer, SIZE_T length);

#include "tuningmoduleregistry.h"
};

#endif // AECORE_TUNING_TUNINGSETMANAGER_H
