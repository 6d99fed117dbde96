// Staggered-HDR target: the SHDR exposure pair is decided apart, so this target stays out of the aggregation.
#ifndef AEC_CORE_MODULES_MOD_MTR_CSHDRTARGETCALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CSHDRTARGETCALCULATOR_H

#include "aec/core/modules/mod_mtr/iaectargetcalculator.h"

class CShdrTargetCalculator final : public IAECTargetCalculator
{
public:
    explicit CShdrTargetCalculator(CStatsProcessor* pStatsProc);

    VOID      initialize() override;
    // Sets shdrBasedTarget to -1, -1, -1, which keeps the aggregation on the histogram and lux targets.
    AecResult calculateTarget(const AECTargetCalcInput* pInput, AECTargetCalcResult* pResult) override;

private:
    BOOL  m_bIsFirstFrame;
    FLOAT m_brightLowTarget;
    FLOAT m_brightHighTarget;
    FLOAT m_darkLowTarget;
    FLOAT m_darkHighTarget;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CSHDRTARGETCALCULATOR_H
