// Frame skip control stand-in: dynamic frame skipping stays off until the frame skip stage lands.
#include "aec/core/modules/mod_ext/caecskipctrl.h"

CAECSkipCtrl::CAECSkipCtrl(IAECContext* pContext)
{
    m_aecContext = pContext;
}

VOID CAECSkipCtrl::ResetFrameSkip()
{
}

VOID CAECSkipCtrl::ConfigFrameSkip(ConvergenceOutput /*convergence*/, const AECCoreInput* /*pInput*/)
{
}

BOOL CAECSkipCtrl::CheckSkipFrame(const AECCoreInput* /*pInput*/)
{
    return FALSE;
}
