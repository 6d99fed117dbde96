// Arbitration module stand-in: exposure tables and limits are not applied until the arbitration stage lands.
#include "aec/core/modules/mod_arb/caecmodarbitration.h"

#include <cstring>

CAECModArbitration::CAECModArbitration(IAECContext* pContext, IArbitrationCallback* /*pCallback*/)
{
    m_aecContext = pContext;
}

VOID CAECModArbitration::FillNeutralOutput(ArbitrationOutput* pOutput)
{
    std::memset(pOutput, 0, sizeof(*pOutput));
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        pOutput->expSets[i].linearGain      = 1.0F;
        pOutput->expSets[i].fnumber         = 1.0F;
        pOutput->IdealexpSets[i].linearGain = 1.0F;
        pOutput->IdealexpSets[i].fnumber    = 1.0F;
    }
}

AecResult CAECModArbitration::ArbitrateExposure(ArbitrationStreamInput* /*pInput*/, ArbitrationOutput* pOutput)
{
    FillNeutralOutput(pOutput);
    return AecSuccess;
}

AecResult CAECModArbitration::ArbitrateExposure(ArbitrationStillInput* /*pInput*/, ArbitrationOutput* pOutput)
{
    FillNeutralOutput(pOutput);
    return AecSuccess;
}

AecResult CAECModArbitration::OnLDMIrisTable(LDMIrisTableData /*irisTable*/)
{
    return AecSuccess;
}

FLOAT CAECModArbitration::QueryISO2Gain(UINT32 /*ISOValue*/, BOOL /*isStill*/)
{
    return 1.0F;
}

FLOAT CAECModArbitration::QueryExpTime2FPS(UINT64 /*exposureTime*/)
{
    return 0.0F;
}

AecResult CAECModArbitration::QuerySensitivity2ExpIndex(const FLOAT* /*pSensitivities*/,
                                                        AECAlgoOperationModeType /*mode*/,
                                                        FLOAT* pExpIndices)
{
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        pExpIndices[i] = 0.0F;
    }
    return AecSuccess;
}

AecResult CAECModArbitration::ComputeTargetIndexInMultiCam(FLOAT /*luxIndex*/, FLOAT* /*pTargetIndices*/)
{
    // The targets stay as metering left them.
    return AecSuccess;
}
