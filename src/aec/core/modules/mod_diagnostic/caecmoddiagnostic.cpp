// Diagnostic module stand-in: no exposure sweeps run until the diagnostic stage lands.
#include "aec/core/modules/mod_diagnostic/caecmoddiagnostic.h"

CAECModDiagnostic::CAECModDiagnostic(IAECContext* pContext)
{
    m_aecContext = pContext;
}

AECAlgoExposureData CAECModDiagnostic::ProcessTests(DiagInput* /*pInput*/)
{
    return AECAlgoExposureData{};
}

DiagOutput CAECModDiagnostic::GetDiagStatus()
{
    DiagOutput output{};
    output.status = Inactive;
    return output;
}
