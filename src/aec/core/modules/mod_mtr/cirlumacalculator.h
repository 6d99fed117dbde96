// IR luma: keeps its place in the streaming list but reports no luma; IR control meters its own statistics.
#ifndef AEC_CORE_MODULES_MOD_MTR_CIRLUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CIRLUMACALCULATOR_H

#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"

// Every frame: IR luma -1, so aggregation never takes it, and a visible light ratio of 1.
class CIrLumaCalculator final : public IAECLumaCalculator
{
public:
    explicit CIrLumaCalculator(CStatsProcessor* pStatsProc);

    VOID      Initialize() override;
    AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) override;

private:
    const MeteringTuningDataType* m_pTuning;
    FLOAT                         m_irLuma;
    FLOAT                         m_LuxIndex;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CIRLUMACALCULATOR_H
