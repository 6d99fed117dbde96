// Video converger: small steps with dead zones, slow-down near the target and a hold time after a stable scene.
#ifndef AEC_CORE_MODULES_MOD_CONV_CONVSLOW_H
#define AEC_CORE_MODULES_MOD_CONV_CONVSLOW_H

#include "aec/core/modules/mod_conv/convergencesubmodule.h"

// Step sizes and slow-down thresholds of the video converger at its current speed.
struct SlowConvStepSize
{
    FLOAT stepRegular;
    FLOAT stepBright;
    FLOAT stepDark;
    FLOAT thresSlowDownBright;
    FLOAT thresSlowDownDark;
};

// Timers and hold state of the video converger.
struct SlowContext
{
    FLOAT                actualSensorFPS;
    FLOAT                settledTime;           // seconds within the hold-time tolerance
    FLOAT                gyroMax;
    FLOAT                absDeltaEIMax;
    BOOL                 htAllowed;             // the scene was stable long enough to arm the hold time
    FLOAT                timeElapsedOutsideTol; // seconds spent out of tolerance while holding
    const StatsGyroInfo* pGyro;                 // stored only; the gyro factor is driven by gyroMax
    SlowConvStepSize     stepSize;
};

// Moves by tuned steps that scale with the speed, the frame rate and the share of dark or bright regions.
class ConvSlow final : public ConvergenceSubmodule
{
public:
    explicit ConvSlow(const ConvergenceTuningDataType* pTuning);

    AecResult SetConvEvent(ConvEventType event) override;
    FLOAT     ConvergeSafeExposure(const ConvergenceSubmoduleInput* pInput) override;
    FLOAT     ConvergeShortExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex) override;
    FLOAT     ConvergeLongExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex) override;
    void      GetIsSettled(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput) override;
    aecglobalelements::ConvFrameSkipType GetSkipType() override;

    const SlowContext& GetContext() const { return m_slowState; }
    FLOAT              GetTolerance() const { return m_tolerance; }

private:
    // Places steps and thresholds for the current speed.
    void ConfigureBasedOnEvent();
    // Clears the timers and the hold state.
    void ResetHoldTime();
    // Seconds of hold still due; true while the exposure is to stay.
    bool IsHolding(const ConvergenceSubmoduleInput* pInput, const aecConvergence::SlowConvType* pSlow);
    // One step of at most |delta| towards the target, by the rule of the direction.
    FLOAT Step(const ConvergenceSubmoduleInput* pInput, const aecConvergence::SlowConvType* pSlow, FLOAT delta) const;

    SlowContext                          m_slowState;
    FLOAT                                m_tolerance;
    aecglobalelements::ConvFrameSkipType m_skipType;
};

#endif // AEC_CORE_MODULES_MOD_CONV_CONVSLOW_H
