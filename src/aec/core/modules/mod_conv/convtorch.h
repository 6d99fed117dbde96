// Torch converger: a fast converger for the frames around an LED torch switch, the normal one otherwise.
#ifndef AEC_CORE_MODULES_MOD_CONV_CONVTORCH_H
#define AEC_CORE_MODULES_MOD_CONV_CONVTORCH_H

#include "aec/core/modules/mod_conv/convergencesubmodule.h"

class ConvFast;

// Switches to its own fast converger when the torch turns on or off, and back once that has settled.
class ConvTorch final : public ConvergenceSubmodule
{
public:
    // pFastConverger is owned from here on and may not be null.
    ConvTorch(const ConvergenceTuningDataType* pTuning, ConvFast* pFastConverger);
    ~ConvTorch() override;

    AecResult SetConvEvent(ConvEventType event) override;
    FLOAT     ConvergeSafeExposure(const ConvergenceSubmoduleInput* pInput) override;
    FLOAT     ConvergeShortExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex) override;
    FLOAT     ConvergeLongExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex) override;
    void      GetIsSettled(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput) override;
    aecglobalelements::ConvFrameSkipType GetSkipType() override;
    // The normal converger (borrowed) becomes the current one.
    void SetSecondaryAlgo(ConvergenceSubmodule* pSecondary) override;

    bool IsUsingFastConverger() const;

private:
    ConvFast*             m_pFastConverger;
    ConvergenceSubmodule* m_pNormalConverger;
    ConvergenceSubmodule* m_pCurrentConverger;
    BOOL                  m_bPreviousIsTorch;
    INT32                 m_frameCounter;
    INT32                 m_frameThres;
};

#endif // AEC_CORE_MODULES_MOD_CONV_CONVTORCH_H
