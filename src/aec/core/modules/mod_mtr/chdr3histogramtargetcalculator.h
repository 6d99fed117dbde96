// Three-exposure in-sensor HDR target: the histogram targets from the merged histogram.
#ifndef AEC_CORE_MODULES_MOD_MTR_CHDR3HISTOGRAMTARGETCALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CHDR3HISTOGRAMTARGETCALCULATOR_H

#include "aec/core/modules/mod_mtr/iaectargetcalculator.h"

// Minimal until the in-sensor HDR stage lands: it keeps its start state and writes no histogram target, so an
// in-sensor HDR frame is metered on the lux target.
class CHDR3HistogramTargetCalculator final : public IAECTargetCalculator
{
public:
    explicit CHDR3HistogramTargetCalculator(CStatsProcessor* pStatsProc);

    VOID      initialize() override;
    AecResult calculateTarget(const AECTargetCalcInput* pInput, AECTargetCalcResult* pResult) override;

private:
    BOOL  m_bIsFirstFrame;
    FLOAT m_brightLowTarget;
    FLOAT m_brightHighTarget;
    FLOAT m_darkLowTarget;
    FLOAT m_darkHighTarget;
    FLOAT m_adrcGain;
    FLOAT m_lumaEstPrecision;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CHDR3HISTOGRAMTARGETCALCULATOR_H
