// Interface of frame skip control: skips processing while exposure has been stable for a while.
#ifndef AEC_CORE_INCLUDE_IAECSKIPCTRL_H
#define AEC_CORE_INCLUDE_IAECSKIPCTRL_H

#include "aec/core/include/aecconvergencerecords.h"
#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/iaeccomponent.h"
#include "aecore/aecore.h"

class IAECSkipCtrl : public IAECComponent
{
public:
    virtual VOID ResetFrameSkip() = 0;
    // Runs after each processed frame and decides how many of the next frames may be skipped.
    virtual VOID ConfigFrameSkip(ConvergenceOutput convergence, const AECCoreInput* pInput) = 0;
    // TRUE when the core may skip this frame; counts the pending skips down.
    virtual BOOL CheckSkipFrame(const AECCoreInput* pInput) = 0;
};

#endif // AEC_CORE_INCLUDE_IAECSKIPCTRL_H
