// Extreme colour target: lowers the safe target for scenes full of strongly saturated colour.
#ifndef AEC_CORE_MODULES_MOD_MTR_CEXTRMCLRTARGETCALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CEXTRMCLRTARGETCALCULATOR_H

#include "aec/core/modules/mod_mtr/iaectargetcalculator.h"

// Minimal until the extreme colour stage lands: it holds its place in the target list and reports no colour
// target (clrBasedSafeTarget 0, which the aggregation ignores) and no extreme green or blue share.
class CExtrmClrTargetCalculator final : public IAECTargetCalculator
{
public:
    explicit CExtrmClrTargetCalculator(CStatsProcessor* pStatsProc);

    VOID      initialize() override;
    AecResult calculateTarget(const AECTargetCalcInput* pInput, AECTargetCalcResult* pResult) override;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CEXTRMCLRTARGETCALCULATOR_H
