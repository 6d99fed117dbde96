// IR control module stand-in: IR LED and IR cut decisions are not computed until the IR control stage lands.
#ifndef AEC_CORE_MODULES_MOD_IR_CAECMODIR_H
#define AEC_CORE_MODULES_MOD_IR_CAECMODIR_H

#include "aec/core/include/iaecir.h"

// Minimal stand-in for the IR control module until its stage lands: it does nothing beyond returning success
// and neutral outputs. The core never creates it in this configuration.
class CAECModIR final : public IAECIR
{
public:
    explicit CAECModIR(IAECContext* pContext);

    AecResult          ProcessIR(const AECIRFrameProcInput* pInput, AECIRFrameProcOutput* pOutput) override;
    AECLockRequestType QueryAECLockRequestByIR() override;
    VOID               UpdateAECSettleFlag(BOOL isAECSettled) override;
};

#endif // AEC_CORE_MODULES_MOD_IR_CAECMODIR_H
