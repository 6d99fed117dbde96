// Three-exposure in-sensor HDR luma: frame luma and lux index from the split histogram.
#ifndef AEC_CORE_MODULES_MOD_MTR_CHDR3HISTLUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CHDR3HISTLUMACALCULATOR_H

#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"

class CHDR3HistLumaCalculator final : public IAECLumaCalculator
{
public:
    explicit CHDR3HistLumaCalculator(CStatsProcessor* pStatsProc);

    VOID      Initialize() override;
    AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) override;

private:
    FLOAT CalculateLuxIndex(const AECLumaCalcInput* pInput);

    FLOAT m_LuxIndex;
    FLOAT m_hdr3FrameLuma;
    BOOL  m_isLuxIndexInitialized;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CHDR3HISTLUMACALCULATOR_H
