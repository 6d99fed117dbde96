// Flash measurement converger: calibration keeps the manual index; a settled measurement stays where it settled.
#include "aec/core/modules/mod_conv/convflashmeasurement.h"

#include "aec/core/modules/mod_conv/convstartup.h"
#include "aec/core/base/aecobjectalloc.h"
#include "platform/statslogger.h"

std::atomic<FLOAT>                    ConvFlashMeasurement::s_previousFlashMeasTargetIndex(-1.0F);
std::atomic<UINT32>                   ConvFlashMeasurement::s_measIndex(0U);
std::atomic<AECAlgoFlashMeasKindType> ConvFlashMeasurement::s_measKind(AECAlgoFlashMeasKindOff);

ConvFlashMeasurement::ConvFlashMeasurement(const ConvergenceTuningDataType* pTuning, ConvStartup* pConverger)
    : ConvergenceSubmodule(ConvIDFlashMeas, pTuning)
    , m_measFrameCounter(0)
    , m_pConverger(pConverger)
    , m_measIndex(0U)
    , m_isManualIdx(FALSE)
    , m_settledIndex(-1.0F)
{
}

ConvFlashMeasurement::~ConvFlashMeasurement()
{
    AECDestroyObject(m_pConverger);
}

void ConvFlashMeasurement::SetMeasurement(UINT32 measIndex, AECAlgoFlashMeasKindType measKind)
{
    s_measIndex.store(measIndex);
    s_measKind.store(measKind);
}

AecResult ConvFlashMeasurement::SetConvEvent(ConvEventType event)
{
    if (ConvEventInitialize == event)
    {
        m_measFrameCounter = 0;
        m_settledIndex     = -1.0F;
    }
    return m_pConverger->SetConvEvent(event);
}

FLOAT ConvFlashMeasurement::ConvergeSafeExposure(const ConvergenceSubmoduleInput* pInput)
{
    m_measFrameCounter += 1;
    m_measIndex = s_measIndex.load();
    if (AECAlgoFlashMeasKindCalib == s_measKind.load())
    {
        // A calibration measures at the index the host chose.
        m_isManualIdx       = TRUE;
        const FLOAT current = pInput->expIndices[AECAlgoExposureSafe];
        AEC_LOG_VERBOSE("flashMeas: not converging; manual exposure index %f", current);
        return current;
    }
    const FLOAT next = m_pConverger->ConvergeSafeExposure(pInput);
    m_isManualIdx    = FALSE;
    AEC_LOG_VERBOSE("flashMeas: converging input target: %f output: %f",
                    pInput->pConvIn->pTargetIndices[AECAlgoExposureSafe], next);
    return next;
}

FLOAT ConvFlashMeasurement::ConvergeShortExposure(const ConvergenceSubmoduleInput* /* pInput */, FLOAT safeIndex)
{
    return safeIndex;
}

FLOAT ConvFlashMeasurement::ConvergeLongExposure(const ConvergenceSubmoduleInput* /* pInput */, FLOAT safeIndex)
{
    return safeIndex;
}

void ConvFlashMeasurement::GetIsSettled(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput)
{
    BOOL* pSettled = pOutput->isSettled;
    if (1 == m_isManualIdx)
    {
        pSettled[AECAlgoExposureSafe] = TRUE;
    }
    else
    {
        m_pConverger->GetIsSettled(pInput, pOutput);
    }

    // Once a measurement has settled it never moves again.
    if ((1 != pSettled[AECAlgoExposureSafe]) && (m_settledIndex > 0.0F))
    {
        AEC_LOG_VERBOSE("flashMeas: applying same exp index %f without converging", m_settledIndex);
        pSettled[AECAlgoExposureSafe] = TRUE;
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            pOutput->expIndices[i] = m_settledIndex;
        }
    }
    if ((0 != pSettled[AECAlgoExposureSafe]) && (m_settledIndex < 0.0F))
    {
        AEC_LOG_VERBOSE("flashMeas: settled first time: saving exp index %f",
                        pOutput->expIndices[AECAlgoExposureSafe]);
        s_previousFlashMeasTargetIndex.store(pInput->pConvIn->pTargetIndices[AECAlgoExposureSafe]);
        m_settledIndex = pOutput->expIndices[AECAlgoExposureSafe];
    }
    pSettled[AECAlgoExposureShort] = pSettled[AECAlgoExposureSafe];
    pSettled[AECAlgoExposureLong]  = pSettled[AECAlgoExposureSafe];
    AEC_LOG_VERBOSE("flashMeas: conv target in: %.3f out: %.3f settled: %s",
                    pInput->pConvIn->pTargetIndices[AECAlgoExposureSafe], pOutput->expIndices[AECAlgoExposureSafe],
                    (0 != pSettled[AECAlgoExposureSafe]) ? "TRUE" : "FALSE");
}

aecglobalelements::ConvFrameSkipType ConvFlashMeasurement::GetSkipType()
{
    return aecglobalelements::SkipSystemLatency;
}
