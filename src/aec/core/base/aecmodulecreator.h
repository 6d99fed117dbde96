// Static factories of the processing modules.
#ifndef AEC_CORE_BASE_AECMODULECREATOR_H
#define AEC_CORE_BASE_AECMODULECREATOR_H

#include "aec/core/base/iaecmodulefactory.h"
#include "aec/core/include/iaecarbitration.h"
#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/include/iaeccontext.h"
#include "aec/core/include/iaecconvergence.h"
#include "aec/core/include/iaecdiagnostic.h"
#include "aec/core/include/iaecextension.h"
#include "aec/core/include/iaecir.h"
#include "aec/core/include/iaecirisctrl.h"
#include "aec/core/include/iaecmetering.h"
#include "aec/core/include/iaecskipctrl.h"

// Static factories of the concrete modules. Each module lives in zeroed memory of the platform allocator
// and is released with AECDestroyObject; a null result means the allocator had no memory left.
class AECModuleCreator
{
public:
    // IR control has no callback interface; the core does not create it in this configuration.
    static IAECIR*          CreateModuleIR(IAECContext* pContext);
    static IAECMetering*    CreateModuleMetering(IAECContext* pContext, IMeteringCallback* pCallback);
    static IAECConvergence* CreateModuleConvergence(IAECContext* pContext, IConvergenceCallback* pCallback);
    static IAECArbitration* CreateModuleArbitration(IAECContext* pContext, IArbitrationCallback* pCallback);
    static IAECIrisCtrl*    CreateModuleIrisControl(IAECContext* pContext, IIrisCtrlCallback* pCallback);
    static IAECExtension*   CreateModuleExtension(IAECContext* pContext, IExtensionCallback* pCallback);
    static IAECDiagnostic*  CreateModuleDiagnostic(IAECContext* pContext);
    static IAECSkipCtrl*    CreateModuleSkipCtrl(IAECContext* pContext);

    // The library's own module set, as a core is built from it.
    static IAECModuleFactory& DefaultFactory();
};

#endif // AEC_CORE_BASE_AECMODULECREATOR_H
