// Frame skip control stand-in: dynamic frame skipping stays off until the frame skip stage lands.
#ifndef AEC_CORE_MODULES_MOD_EXT_CAECSKIPCTRL_H
#define AEC_CORE_MODULES_MOD_EXT_CAECSKIPCTRL_H

#include "aec/core/include/iaecskipctrl.h"

// Minimal stand-in for frame skip control until its stage lands: it does nothing beyond returning success
// and neutral outputs. No frame is ever skipped.
class CAECSkipCtrl final : public IAECSkipCtrl
{
public:
    explicit CAECSkipCtrl(IAECContext* pContext);

    VOID ResetFrameSkip() override;
    VOID ConfigFrameSkip(ConvergenceOutput convergence, const AECCoreInput* pInput) override;
    BOOL CheckSkipFrame(const AECCoreInput* pInput) override;
};

#endif // AEC_CORE_MODULES_MOD_EXT_CAECSKIPCTRL_H
