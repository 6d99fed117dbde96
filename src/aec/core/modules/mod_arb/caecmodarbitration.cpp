// Arbitration stand-in: indices through the tuned exposure table, whose sensitivity and range it publishes.
#include "aec/core/modules/mod_arb/caecmodarbitration.h"

#include <cstring>

#include "aec/core/include/iaeccontext.h"
#include "platform/statslogger.h"

CAECModArbitration::CAECModArbitration(IAECContext* pContext, IArbitrationCallback* pCallback)
    : m_pCallback(pCallback), m_expTable(), m_sensitivityCorrection(0.0F)
{
    m_aecContext = pContext;
}

AecResult CAECModArbitration::OnTuningHeaderChange()
{
    UpdateExpTable();
    return AecSuccess;
}

BOOL CAECModArbitration::UpdateExpTable()
{
    aecArbitration::ExposureTableType* pTable =
        (nullptr != m_aecContext) ? m_aecContext->getExposureTableFromTableID(0) : nullptr;
    m_sensitivityCorrection = 0.0F;
    const FLOAT tableSensitivity = (nullptr != pTable) ? m_expTable.SetExpTable(pTable) : 0.0F;
    if (tableSensitivity > 0.0F)
    {
        m_sensitivityCorrection = pTable->sensitivityCorrectionFactor;
        // Metering's lux index is compensated by the table's sensitivity; convergence steps within the range of
        // the table the indices are looked up in.
        ExposureLimitationType limitation = m_expTable.GetRawLimitation();
        if (nullptr != m_pCallback)
        {
            m_pCallback->setSensitivity(tableSensitivity);
            m_pCallback->SetStreamingLimitation(&limitation);
        }
    }
    return (m_sensitivityCorrection > 0.0F) ? TRUE : FALSE;
}

AecResult CAECModArbitration::LookUpExposures(const FLOAT* pExpIndices, ArbitrationOutput* pOutput)
{
    std::memset(pOutput, 0, sizeof(*pOutput));
    if ((m_sensitivityCorrection <= 0.0F) && (FALSE == UpdateExpTable()))
    {
        AEC_LOG_ERROR("No valid exposure table in the tuning: exposures stay empty");
        return AecError;
    }
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        ExposureSetType set = {};
        set.expIndex        = pExpIndices[i];
        // Without staggered HDR every entry is a safe (single) exposure of the one table.
        if (AecSuccess != m_expTable.ExpTableEntryLookUp(RawTable, &set, AECAlgoExposureSafe, SHDRAECMODEDEFAULT))
        {
            return AecError;
        }
        AECAlgoExposureData& exposure = pOutput->expSets[i];
        exposure.exposureTime         = set.expTime;
        exposure.linearGain           = set.gain;
        exposure.fnumber              = set.fnumber;
        exposure.sensitivity          = static_cast<FLOAT>(set.expTime) * set.gain / (set.fnumber * set.fnumber) *
                               m_sensitivityCorrection;
        exposure.snapshotExposureTime = exposure.exposureTime;
        exposure.snapShotLinearGain   = exposure.linearGain;
        exposure.snapshotSensitivity  = exposure.sensitivity;
        exposure.compenADRCGain       = 1.0F;
        pOutput->IdealexpSets[i]      = exposure;
    }
    return AecSuccess;
}

AecResult CAECModArbitration::ArbitrateExposure(ArbitrationStreamInput* pInput, ArbitrationOutput* pOutput)
{
    return LookUpExposures(pInput->expIndices, pOutput);
}

AecResult CAECModArbitration::ArbitrateExposure(ArbitrationStillInput* pInput, ArbitrationOutput* pOutput)
{
    return LookUpExposures(pInput->expIndices, pOutput);
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
