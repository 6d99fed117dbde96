// Lux luma calculator: the frame's average luma and the filtered lux index, first of every luma list.
#ifndef AEC_CORE_MODULES_MOD_MTR_CLUXLUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CLUXLUMACALCULATOR_H

#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"

// Each instance keeps its own lux filter: the three luma lists hold one each, so a list that becomes active again
// resumes where it stopped.
class CLuxLumaCalculator final : public IAECLumaCalculator
{
public:
    explicit CLuxLumaCalculator(CStatsProcessor* pStatsProc, StatsAlgoRole role = StatsAlgoRoleDefault);

    // Forgets the filter: the next lux index is taken unfiltered.
    VOID Initialize() override;
    // Writes averageLuma and, unless the split HDR histogram supplies it, luxIndex.
    AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) override;

    // Index at which the scene would reach luma 50 (scaled by the compensation ratio), filtered over frames.
    FLOAT CalculateLuxIndex(const AECLumaCalcInput* pInput, FLOAT avgLuma);
    // Mean of the legacy Y grid, at least 0.1.
    FLOAT CalculateAverageLuma();

    // Role of the camera this calculator meters for; kept for the multi-camera setup, not used by the index.
    StatsAlgoRole GetRole() const { return m_role; }

private:
    FLOAT         m_LuxIndex;
    BOOL          m_isLuxIndexInitialized;
    StatsAlgoRole m_role;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CLUXLUMACALCULATOR_H
