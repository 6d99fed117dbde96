// Iris control module stand-in: no P-iris motor commands are computed until the iris control stage lands.
#ifndef AEC_CORE_MODULES_MOD_IRIS_CAECMODIRISCTRL_H
#define AEC_CORE_MODULES_MOD_IRIS_CAECMODIRISCTRL_H

#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/include/iaecirisctrl.h"

// Minimal stand-in for the iris control module until its stage lands: it does nothing beyond returning success
// and neutral outputs. It commands no motor and reports the iris as settled.
class CAECModIrisCtrl final : public IAECIrisCtrl
{
public:
    CAECModIrisCtrl(IAECContext* pContext, IIrisCtrlCallback* pCallback);

    AecResult ProcessIris(const AECIrisFrameProcInput* pInput, AECIrisFrameProcOutput* pOutput) override;
    BOOL      QueryPIrisSettleInfo() override;
    AecResult OnLDMIrisTable(LDMIrisTableData irisTable) override;
};

#endif // AEC_CORE_MODULES_MOD_IRIS_CAECMODIRISCTRL_H
