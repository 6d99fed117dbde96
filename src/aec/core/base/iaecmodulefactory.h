// The module set a core is built from: one factory per processing module.
#ifndef AEC_CORE_BASE_IAECMODULEFACTORY_H
#define AEC_CORE_BASE_IAECMODULEFACTORY_H

#include "aec/core/include/iaecarbitration.h"
#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/include/iaeccontext.h"
#include "aec/core/include/iaecconvergence.h"
#include "aec/core/include/iaecdiagnostic.h"
#include "aec/core/include/iaecextension.h"
#include "aec/core/include/iaecirisctrl.h"
#include "aec/core/include/iaecmetering.h"
#include "aec/core/include/iaecskipctrl.h"

// The module set a core is built from. The library always uses AECModuleCreator::DefaultFactory();
// unit tests build a core on stand-in modules through another implementation.
class IAECModuleFactory
{
public:
    virtual IAECMetering*    CreateMetering(IAECContext* pContext, IMeteringCallback* pCallback)       = 0;
    virtual IAECConvergence* CreateConvergence(IAECContext* pContext, IConvergenceCallback* pCallback) = 0;
    virtual IAECArbitration* CreateArbitration(IAECContext* pContext, IArbitrationCallback* pCallback) = 0;
    virtual IAECIrisCtrl*    CreateIrisControl(IAECContext* pContext, IIrisCtrlCallback* pCallback)    = 0;
    virtual IAECExtension*   CreateExtension(IAECContext* pContext, IExtensionCallback* pCallback)     = 0;
    virtual IAECDiagnostic*  CreateDiagnostic(IAECContext* pContext)                                   = 0;
    virtual IAECSkipCtrl*    CreateSkipCtrl(IAECContext* pContext)                                     = 0;

protected:
    ~IAECModuleFactory() = default;
};

#endif // AEC_CORE_BASE_IAECMODULEFACTORY_H
