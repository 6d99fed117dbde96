// A module that the tuning store knows by name only: it accepts the module's data in a file without reading it.
#ifndef AECORE_TUNING_CABSENTTUNINGMODULE_H
#define AECORE_TUNING_CABSENTTUNINGMODULE_H

#include "tuning/parser/parametermodule.h"

// Registered for the modules of the camera stack that the library does not read, so that a full camera tuning file
// loads cleanly. Any version is accepted since nothing is read; values are not available.
class CAbsentTuningModule : public ParameterModule
{
public:
    // The prototype of a module name.
    explicit CAbsentTuningModule(const CHAR* pName);
    // An instance for what the file says of the module.
    CAbsentTuningModule(const CHAR* pName, ModuleData* pData);

    ParameterModule* Create(ModuleData* pData, DefaultModule* pDefaults) const override;
    bool             LoadModule(ParameterFileSymbolTable* pSymbolTable) override;
    bool             UnloadModule() override;

private:
    static ParameterModule* MakeInstance(const CHAR* pName, ModuleData* pData, UINT32 key);
};

#endif // AECORE_TUNING_CABSENTTUNINGMODULE_H
