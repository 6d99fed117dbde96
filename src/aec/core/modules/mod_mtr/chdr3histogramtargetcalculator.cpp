// Three-exposure in-sensor HDR target, minimal: start state only.
#include "aec/core/modules/mod_mtr/chdr3histogramtargetcalculator.h"

CHDR3HistogramTargetCalculator::CHDR3HistogramTargetCalculator(CStatsProcessor* pStatsProc)
    : IAECTargetCalculator(pStatsProc)
{
    initialize();
}

VOID CHDR3HistogramTargetCalculator::initialize()
{
    m_bIsFirstFrame    = TRUE;
    m_brightLowTarget  = 0.0f;
    m_brightHighTarget = 0.0f;
    m_darkLowTarget    = 0.0f;
    m_darkHighTarget   = 0.0f;
    m_adrcGain         = 0.1f;
    m_lumaEstPrecision = 0.1f;
}

AecResult CHDR3HistogramTargetCalculator::calculateTarget(const AECTargetCalcInput* /*pInput*/,
                                                          AECTargetCalcResult* /*pResult*/)
{
    return AecSuccess;
}
