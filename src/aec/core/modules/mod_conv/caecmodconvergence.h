// Convergence module stand-in: exposure stepping and settle decisions are not computed until the convergence stage lands.
#ifndef AEC_CORE_MODULES_MOD_CONV_CAECMODCONVERGENCE_H
#define AEC_CORE_MODULES_MOD_CONV_CAECMODCONVERGENCE_H

#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/include/iaecconvergence.h"

// Minimal stand-in for the convergence module until its stage lands: it does nothing beyond returning success
// and neutral outputs. A frame takes its targets as exposure indices at once and is never reported settled;
// every mode starts from the tuned start index of an ordinary start.
class CAECModConvergence final : public IAECConvergence
{
public:
    CAECModConvergence(IAECContext* pContext, IConvergenceCallback* pCallback);

    AecResult ConvergeFrameExposure(const ConvergenceInput* pInput, ConvergenceOutput* pOutput) override;
    AecResult GetStartExposureIndices(FLOAT* pIndices, FLOAT* pLuxIndex, BOOL refuseFastStart) override;
};

#endif // AEC_CORE_MODULES_MOD_CONV_CAECMODCONVERGENCE_H
