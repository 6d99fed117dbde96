// Flash measurement luma: mean luma and colour ratios of a small central window while the LED is measured.
#ifndef AEC_CORE_MODULES_MOD_MTR_FLASHMEASUREMENTLUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_FLASHMEASUREMENTLUMACALCULATOR_H

#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"

// Stateless between frames. Tiles that are saturated or too dark give no colour ratio; the window counts as dark
// only when every tile was too dark (or the window held none).
class FlashMeasurementLumaCalculator final : public IAECLumaCalculator
{
public:
    explicit FlashMeasurementLumaCalculator(CStatsProcessor* pStatsProc);

    VOID      Initialize() override;
    AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) override;
};

#endif // AEC_CORE_MODULES_MOD_MTR_FLASHMEASUREMENTLUMACALCULATOR_H
