// Static factories of the processing modules.
#include "aec/core/base/aecmodulecreator.h"

#include "aec/core/base/aecobjectalloc.h"
#include "aec/core/modules/mod_arb/caecmodarbitration.h"
#include "aec/core/modules/mod_conv/caecmodconvergence.h"
#include "aec/core/modules/mod_diagnostic/caecmoddiagnostic.h"
#include "aec/core/modules/mod_ext/caecmodextension.h"
#include "aec/core/modules/mod_ext/caecskipctrl.h"
#include "aec/core/modules/mod_ir/caecmodir.h"
#include "aec/core/modules/mod_iris/caecmodirisctrl.h"
#include "aec/core/modules/mod_mtr/caecmodmetering.h"

IAECIR* AECModuleCreator::CreateModuleIR(IAECContext* pContext)
{
    return AECCreateObject<CAECModIR>(pContext);
}

IAECMetering* AECModuleCreator::CreateModuleMetering(IAECContext* pContext, IMeteringCallback* pCallback)
{
    return AECCreateObject<CAECModMetering>(pContext, pCallback);
}

IAECConvergence* AECModuleCreator::CreateModuleConvergence(IAECContext* pContext, IConvergenceCallback* pCallback)
{
    return AECCreateObject<CAECModConvergence>(pContext, pCallback);
}

IAECArbitration* AECModuleCreator::CreateModuleArbitration(IAECContext* pContext, IArbitrationCallback* pCallback)
{
    return AECCreateObject<CAECModArbitration>(pContext, pCallback);
}

IAECIrisCtrl* AECModuleCreator::CreateModuleIrisControl(IAECContext* pContext, IIrisCtrlCallback* pCallback)
{
    return AECCreateObject<CAECModIrisCtrl>(pContext, pCallback);
}

IAECExtension* AECModuleCreator::CreateModuleExtension(IAECContext* pContext, IExtensionCallback* pCallback)
{
    return AECCreateObject<CAECModExtension>(pContext, pCallback);
}

IAECDiagnostic* AECModuleCreator::CreateModuleDiagnostic(IAECContext* pContext)
{
    return AECCreateObject<CAECModDiagnostic>(pContext);
}

IAECSkipCtrl* AECModuleCreator::CreateModuleSkipCtrl(IAECContext* pContext)
{
    return AECCreateObject<CAECSkipCtrl>(pContext);
}

namespace
{

// The library's own module set: AECModuleCreator's factories.
class CAECDefaultModuleFactory final : public IAECModuleFactory
{
public:
    IAECMetering* CreateMetering(IAECContext* pContext, IMeteringCallback* pCallback) override
    {
        return AECModuleCreator::CreateModuleMetering(pContext, pCallback);
    }
    IAECConvergence* CreateConvergence(IAECContext* pContext, IConvergenceCallback* pCallback) override
    {
        return AECModuleCreator::CreateModuleConvergence(pContext, pCallback);
    }
    IAECArbitration* CreateArbitration(IAECContext* pContext, IArbitrationCallback* pCallback) override
    {
        return AECModuleCreator::CreateModuleArbitration(pContext, pCallback);
    }
    IAECIrisCtrl* CreateIrisControl(IAECContext* pContext, IIrisCtrlCallback* pCallback) override
    {
        return AECModuleCreator::CreateModuleIrisControl(pContext, pCallback);
    }
    IAECExtension* CreateExtension(IAECContext* pContext, IExtensionCallback* pCallback) override
    {
        return AECModuleCreator::CreateModuleExtension(pContext, pCallback);
    }
    IAECDiagnostic* CreateDiagnostic(IAECContext* pContext) override
    {
        return AECModuleCreator::CreateModuleDiagnostic(pContext);
    }
    IAECSkipCtrl* CreateSkipCtrl(IAECContext* pContext) override
    {
        return AECModuleCreator::CreateModuleSkipCtrl(pContext);
    }
};

} // namespace

IAECModuleFactory& AECModuleCreator::DefaultFactory()
{
    // Stateless, so one object serves every camera.
    static CAECDefaultModuleFactory s_factory;
    return s_factory;
}
