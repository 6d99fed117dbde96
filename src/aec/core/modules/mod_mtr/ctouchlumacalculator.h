// Touch luma: the centre-weighted luma of the touched regions of interest.
#ifndef AEC_CORE_MODULES_MOD_MTR_CTOUCHLUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CTOUCHLUMACALCULATOR_H

#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"

// Stateless between frames: -1 without touch, 0 when no region falls inside the touched ellipses.
class CTouchLumaCalculator final : public IAECLumaCalculator
{
public:
    explicit CTouchLumaCalculator(CStatsProcessor* pStatsProc);

    VOID      Initialize() override;
    AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) override;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CTOUCHLUMACALCULATOR_H
