// Proportional converger: streaming fast convergence, preflash, and the fast half of torch convergence.
#ifndef AEC_CORE_MODULES_MOD_CONV_CONVFAST_H
#define AEC_CORE_MODULES_MOD_CONV_CONVFAST_H

#include "aec/core/modules/mod_conv/convergencesubmodule.h"

// Settings of the proportional converger, derived from tuning at every event.
struct ConvAlgoConfigFast
{
    FLOAT                                delayAdj;               // divisor of the matched-delta candidate
    FLOAT                                tolerance;
    BOOL                                 doBrightDarkHeuristics;
    FLOAT                                aggressiveness;         // speed adjust times the base speed
    aecglobalelements::ConvFrameSkipType skipMethod;
    INT32                                frameSettledCountThres; // extra frames before the safe flag rises
    FLOAT                                ADRCConvSpeed;
};

// Takes a share of the remaining distance each frame, at least one index unit.
class ConvFast final : public ConvergenceSubmodule
{
public:
    // identity is ConvIDFast, ConvIDPreflash or ConvIDTorch.
    ConvFast(ConvAlgoIdentity identity, const ConvergenceTuningDataType* pTuning);

    AecResult SetConvEvent(ConvEventType event) override;
    FLOAT     ConvergeSafeExposure(const ConvergenceSubmoduleInput* pInput) override;
    FLOAT     ConvergeShortExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex) override;
    FLOAT     ConvergeLongExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex) override;
    void      GetIsSettled(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput) override;
    aecglobalelements::ConvFrameSkipType GetSkipType() override;

    const ConvAlgoConfigFast& GetConfig() const { return m_config; }

private:
    // The converger's own tuning record: torch convergence for the torch instance, else fast convergence.
    const aecConvergence::FastConvType* FastTuning(const ConvergenceTuningDataType* pTuning) const;

    ConvAlgoConfigFast m_config;
    INT32              m_settledCounter;
    INT32              m_settledCountThFDPreflash; // extra settled frames while preflash waits for faces
};

#endif // AEC_CORE_MODULES_MOD_CONV_CONVFAST_H
