// SHDR luma: the frame luma without the outermost ring of regions, when staggered HDR is in use.
#ifndef AEC_CORE_MODULES_MOD_MTR_CSHDRLUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CSHDRLUMACALCULATOR_H

#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"

// -1 while SHDR is off; the last SHDR luma is kept across frames with SHDR off.
class CShdrLumaCalculator final : public IAECLumaCalculator
{
public:
    static constexpr INT WeightRows = 9;
    static constexpr INT WeightCols = 13;

    explicit CShdrLumaCalculator(CStatsProcessor* pStatsProc);

    VOID      Initialize() override;
    AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) override;

private:
    const MeteringTuningDataType* m_pTuning;
    FLOAT                         m_shdrLuma;
    FLOAT                         m_LuxIndex;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CSHDRLUMACALCULATOR_H
