// IR control module stand-in: IR LED and IR cut decisions are not computed until the IR control stage lands.
#include "aec/core/modules/mod_ir/caecmodir.h"

CAECModIR::CAECModIR(IAECContext* pContext)
{
    m_aecContext = pContext;
}

AecResult CAECModIR::ProcessIR(const AECIRFrameProcInput* /*pInput*/, AECIRFrameProcOutput* pOutput)
{
    pOutput->IRModeActivated = 0;
    pOutput->IRLedIntensity  = 0.0F;
    return AecSuccess;
}

AECLockRequestType CAECModIR::QueryAECLockRequestByIR()
{
    return AECLockRequestType{};
}

VOID CAECModIR::UpdateAECSettleFlag(BOOL /*isAECSettled*/)
{
}
