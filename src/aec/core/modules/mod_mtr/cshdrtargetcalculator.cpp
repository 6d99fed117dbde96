// Staggered-HDR target: marks the SHDR target as not computed.
#include "aec/core/modules/mod_mtr/cshdrtargetcalculator.h"

CShdrTargetCalculator::CShdrTargetCalculator(CStatsProcessor* pStatsProc)
    : IAECTargetCalculator(pStatsProc)
{
    initialize();
}

VOID CShdrTargetCalculator::initialize()
{
    m_bIsFirstFrame    = TRUE;
    m_brightLowTarget  = 0.0f;
    m_brightHighTarget = 0.0f;
    m_darkLowTarget    = 0.0f;
    m_darkHighTarget   = 0.0f;
}

AecResult CShdrTargetCalculator::calculateTarget(const AECTargetCalcInput* /*pInput*/, AECTargetCalcResult* pResult)
{
    for (FLOAT& target : pResult->shdrBasedTarget)
    {
        target = -1.0f;
    }
    return AecSuccess;
}
