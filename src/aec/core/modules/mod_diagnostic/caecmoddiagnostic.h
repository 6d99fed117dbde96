// Diagnostic module stand-in: no exposure sweeps run until the diagnostic stage lands.
#ifndef AEC_CORE_MODULES_MOD_DIAGNOSTIC_CAECMODDIAGNOSTIC_H
#define AEC_CORE_MODULES_MOD_DIAGNOSTIC_CAECMODDIAGNOSTIC_H

#include "aec/core/include/iaecdiagnostic.h"

// Minimal stand-in for the diagnostic module until its stage lands: it does nothing beyond returning success
// and neutral outputs. No sweep is ever running.
class CAECModDiagnostic final : public IAECDiagnostic
{
public:
    explicit CAECModDiagnostic(IAECContext* pContext);

    AECAlgoExposureData ProcessTests(DiagInput* pInput) override;
    DiagOutput          GetDiagStatus() override;
};

#endif // AEC_CORE_MODULES_MOD_DIAGNOSTIC_CAECMODDIAGNOSTIC_H
