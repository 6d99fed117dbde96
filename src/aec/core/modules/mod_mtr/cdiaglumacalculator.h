// Diagnostic luma: the mean luma of the exact centre of the frame, for bench exposure sweeps.
#ifndef AEC_CORE_MODULES_MOD_MTR_CDIAGLUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CDIAGLUMACALCULATOR_H

#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"

// Without diagnostics in force it passes the frame luma through, so aggregation may always take it.
class CDiagLumaCalculator final : public IAECLumaCalculator
{
public:
    static constexpr UINT32 TableSize = 256;

    explicit CDiagLumaCalculator(CStatsProcessor* pStatsProc);

    // Weights 1 on the central 4 x 4 block (rows and columns 6 to 9) of the 16 x 16 table, 0 elsewhere.
    VOID      Initialize() override;
    AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) override;

private:
    FLOAT m_diagMTRTable[TableSize];
};

#endif // AEC_CORE_MODULES_MOD_MTR_CDIAGLUMACALCULATOR_H
