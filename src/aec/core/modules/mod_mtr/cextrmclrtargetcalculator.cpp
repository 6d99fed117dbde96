// Extreme colour target, minimal: no colour target yet.
#include "aec/core/modules/mod_mtr/cextrmclrtargetcalculator.h"

CExtrmClrTargetCalculator::CExtrmClrTargetCalculator(CStatsProcessor* pStatsProc)
    : IAECTargetCalculator(pStatsProc)
{
}

VOID CExtrmClrTargetCalculator::initialize()
{
}

AecResult CExtrmClrTargetCalculator::calculateTarget(const AECTargetCalcInput* /*pInput*/,
                                                     AECTargetCalcResult* pResult)
{
    pResult->clrBasedSafeTarget           = 0.0f;
    pResult->asdResult.extremeGreenRatio = 0.0f;
    pResult->asdResult.extremeBlueRatio  = 0.0f;
    return AecSuccess;
}
