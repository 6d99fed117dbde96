// Rapid start converger: jumps to the target in fast start modes and in flash measurement.
#ifndef AEC_CORE_MODULES_MOD_CONV_CONVSTARTUP_H
#define AEC_CORE_MODULES_MOD_CONV_CONVSTARTUP_H

#include "aec/core/modules/mod_conv/convergencesubmodule.h"

// Settings of the rapid start converger.
struct ConvAlgoConfigStartup
{
    FLOAT                                   tolerance;
    const aecglobalelements::RapidConvType* pTuning; // tuning of the start mode served
};

// Snaps to the target after an initial skip, reporting settled after enough frames in tolerance or a time-out.
class ConvStartup final : public ConvergenceSubmodule
{
public:
    // identity is ConvIDFastAEC, ConvIDAggressiveAEC or ConvIDFlashMeas.
    ConvStartup(ConvAlgoIdentity identity, const ConvergenceTuningDataType* pTuning);

    AecResult SetConvEvent(ConvEventType event) override;
    FLOAT     ConvergeSafeExposure(const ConvergenceSubmoduleInput* pInput) override;
    FLOAT     ConvergeShortExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex) override;
    FLOAT     ConvergeLongExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex) override;
    void      GetIsSettled(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput) override;
    aecglobalelements::ConvFrameSkipType GetSkipType() override;

    const ConvAlgoConfigStartup& GetConfig() const { return m_config; }

private:
    ConvAlgoConfigStartup m_config;
    INT32                 m_settledCounter;
    INT32                 m_runningCounter;
    INT32                 m_initialSkipCounter;
    BOOL                  m_isFirstFrame;
    BOOL                  m_bShortExpConvEnabled; // short exposure follows the safe one in start modes
};

#endif // AEC_CORE_MODULES_MOD_CONV_CONVSTARTUP_H
