// Lux target calculator: the plain safe target by lux index, raised where highlight clipping holds the frame back.
#ifndef AEC_CORE_MODULES_MOD_MTR_CLUXTARGETCALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CLUXTARGETCALCULATOR_H

#include "aec/core/modules/mod_mtr/iaectargetcalculator.h"

class CLuxTargetCalculator final : public IAECTargetCalculator
{
public:
    explicit CLuxTargetCalculator(CStatsProcessor* pStatsProc);

    VOID initialize() override;
    // Writes luxBasedSimpleTarget and luxBasedSafeTarget; the safe one may exceed the simple one (up to 220).
    AecResult calculateTarget(const AECTargetCalcInput* pInput, AECTargetCalcResult* pResult) override;

    // Raises luxBasedSafeTarget when clipped highlights keep a linear gain from reaching the target.
    VOID calculateNonLinearLuxTarget(const AECTargetCalcInput* pInput, AECTargetCalcResult* pResult);

private:
    FLOAT m_luxIndex;
    FLOAT m_luxBasedSafeTarget;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CLUXTARGETCALCULATOR_H
