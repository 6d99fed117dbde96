// Video converger: dead zones, speed-dependent steps, slow-down near the target and the hold time.
#include "aec/core/modules/mod_conv/convslow.h"

#include <algorithm>
#include <cmath>

#include "platform/statslogger.h"

namespace
{
// Steps and thresholds before the first configuration.
constexpr SlowConvStepSize kInitialSteps = {5.0F, 5.0F, 5.0F, 5.0F, 5.0F};

// Share of the desired short/long distance to the safe exposure taken per step.
FLOAT ADRCConvSpeed(const ConvergenceSubmoduleInput* pInput)
{
    return ((nullptr != pInput->pTuning) && (nullptr != pInput->pTuning->pCore))
               ? pInput->pTuning->pCore->slowConv.ADRCConvSpeed
               : 0.0F;
}

// Value of x mapped from [a, b] onto [p, q]: p below a, q above b, linear between.
FLOAT Interpolate(FLOAT x, const aecglobalelements::StartEndType& in, const aecglobalelements::StartEndType& out)
{
    if (x <= in.start)
    {
        return out.start;
    }
    if (x >= in.end)
    {
        return out.end;
    }
    return out.start + (x - in.start) / (in.end - in.start) * (out.end - out.start);
}

// Value at speed v of a range tuned at speed 0 (start) and speed 1 (end).
FLOAT AtSpeed(const aecglobalelements::StartEndType& range, FLOAT speed)
{
    return range.start + speed * (range.end - range.start);
}

// Value at speed v of a threshold that falls from start to end as the speed rises.
FLOAT ThresholdAtSpeed(const aecglobalelements::StartEndType& range, FLOAT speed)
{
    return range.end + speed * (range.start - range.end);
}
} // namespace

ConvSlow::ConvSlow(const ConvergenceTuningDataType* pTuning)
    : ConvergenceSubmodule(ConvIDSlow, pTuning)
    , m_slowState()
    , m_tolerance(0.0F)
    , m_skipType(aecglobalelements::SmoothNoSkip)
{
    m_slowState.stepSize = kInitialSteps;
    // Configured at once so that a frame before the first mode change still converges sensibly.
    static_cast<void>(SetConvEvent(ConvEventInitialize));
}

void ConvSlow::ResetHoldTime()
{
    m_slowState.settledTime           = 0.0F;
    m_slowState.absDeltaEIMax         = 0.0F;
    m_slowState.htAllowed             = FALSE;
    m_slowState.timeElapsedOutsideTol = 0.0F;
}

void ConvSlow::ConfigureBasedOnEvent()
{
    const aecConvergence::SlowConvType& slow = m_pTuning->pCore->slowConv;
    const FLOAT speed = m_speedAdjust * ((m_baseSpeedOverride > 0.0F) ? m_baseSpeedOverride : slow.convSpeed);

    // Steps rise with the speed, slow-down thresholds fall with it.
    SlowConvStepSize& steps   = m_slowState.stepSize;
    steps.stepRegular         = AtSpeed(slow.stepRegular, speed);
    steps.stepBright          = AtSpeed(slow.stepBright, speed);
    steps.stepDark            = AtSpeed(slow.stepDark, speed);
    steps.thresSlowDownBright = ThresholdAtSpeed(slow.thresSlowDownAbsExpIndexDeltaBright, speed);
    steps.thresSlowDownDark   = ThresholdAtSpeed(slow.thresSlowDownAbsExpIndexDeltaDark, speed);
    m_tolerance               = slow.tolMultUnitStepSize * UnitStepSize(m_pTuning);
}

AecResult ConvSlow::SetConvEvent(ConvEventType event)
{
    if ((nullptr == m_pTuning) || (nullptr == m_pTuning->pCore))
    {
        AEC_LOG_ERROR("slow conv: tuning missing, event %d ignored", static_cast<INT32>(event));
        return AecError;
    }

    switch (event)
    {
        case ConvEventInitialize:
            m_slowState          = SlowContext();
            m_slowState.stepSize = kInitialSteps;
            ConfigureBasedOnEvent();
            break;
        case ConvEventSpeedAdjChanged:
        case ConvEventSpeedBaseChanged:
            ConfigureBasedOnEvent();
            break;
        default:
            ResetHoldTime();
            break;
    }
    // Any skip method behaves as skipping one frame here.
    m_skipType = (0 != m_pTuning->pCore->slowConv.frameSkipMethod) ? aecglobalelements::SkipOne
                                                                    : aecglobalelements::SmoothNoSkip;
    return AecSuccess;
}

bool ConvSlow::IsHolding(const ConvergenceSubmoduleInput* pInput, const aecConvergence::SlowConvType* pSlow)
{
    const aecConvergence::HoldTimeType& hold = pSlow->holdTimeTuning;
    if ((1 != hold.enableHoldTime) || (0 != pInput->bIsTouchActive))
    {
        return false;
    }
    const FLOAT fps = pInput->currentFPS;
    if (!(fps > 0.0F))
    {
        AEC_LOG_WARN("slow conv: no frame rate (%.3f), hold time not advanced", fps);
        return false;
    }

    const FLOAT framePeriod = 1.0F / fps;
    const FLOAT target      = pInput->pConvIn->pTargetIndices[AECAlgoExposureSafe];
    const FLOAT error       = std::fabs(target - pInput->expIndexMatched[AECAlgoExposureSafe]);
    SlowContext& state      = m_slowState;

    if (error < pSlow->tolMultUnitStepSize * UnitStepSize(pInput->pTuning) * pSlow->tolAdjFactor)
    {
        state.gyroMax               = 0.0F;
        state.absDeltaEIMax         = 0.0F;
        state.timeElapsedOutsideTol = 0.0F;
        state.htAllowed             = (state.settledTime > hold.holdTimeEnterDelay) ? TRUE : FALSE;
        state.settledTime += framePeriod;
    }
    else
    {
        state.settledTime = 0.0F;
    }

    if (0 == state.htAllowed)
    {
        return false;
    }
    FLOAT holdTime = hold.maxHoldTime;
    if (1 == hold.enableGyroBasedHT)
    {
        state.gyroMax = std::max(0.0F, state.gyroMax);
        holdTime *= Interpolate(state.gyroMax, hold.thresGyroMagnitude, hold.gyroBasedHTAdjFactor);
    }
    state.absDeltaEIMax = std::max(state.absDeltaEIMax, error);
    holdTime *= Interpolate(state.absDeltaEIMax, hold.thresAbsExpDelta, hold.expDeltaBasedHTAdjFactor);
    state.timeElapsedOutsideTol += framePeriod;
    return state.timeElapsedOutsideTol < holdTime;
}

FLOAT ConvSlow::Step(const ConvergenceSubmoduleInput* pInput, const aecConvergence::SlowConvType* pSlow,
                     FLOAT delta) const
{
    const ConvergenceInput* pConvIn = pInput->pConvIn;
    const SlowConvStepSize& steps   = m_slowState.stepSize;
    const FLOAT             fps     = pInput->currentFPS;
    const FLOAT             unit    = UnitStepSize(pInput->pTuning);
    const bool              up      = (delta >= 0.0F);
    const FLOAT             dist    = std::fabs(delta);

    FLOAT adj = (fps > 0.0F) ? (pSlow->refFrameRate / fps) : 1.0F;
    if (0 != pSlow->frameSkipMethod)
    {
        adj *= pSlow->stepFactorWhenFrameSkipEnabled;
    }
    if (pSlow->maxRawStepAdj > 0.0F)
    {
        adj = std::min(std::max(adj, 1.0F / pSlow->maxRawStepAdj), pSlow->maxRawStepAdj);
    }

    // Dark scenes mix in the dark step when going up, bright scenes the bright step when going down.
    const FLOAT ratio      = up ? pConvIn->ratioDark : pConvIn->ratioBright;
    const FLOAT ratioThres = up ? pSlow->thresNumDarkRgn : pSlow->thresNumBrightRgn;
    const FLOAT sideStep   = up ? steps.stepDark : steps.stepBright;
    const FLOAT slowDown   = up ? steps.thresSlowDownDark : steps.thresSlowDownBright;

    FLOAT step = (steps.stepRegular + std::max(ratio - ratioThres, 0.0F) * (sideStep - steps.stepRegular)) * adj;
    if ((slowDown > 0.0F) && (dist <= slowDown))
    {
        step *= dist / slowDown;
    }
    FLOAT quantised = RoundToGrid(std::min(dist, step), unit);
    if (dist < quantised)
    {
        quantised -= unit;
    }
    if (quantised >= unit)
    {
        return up ? quantised : -quantised;
    }
    // A sub-unit step still moves one unit when the pipeline has caught up or the distance is large.
    const FLOAT current = pInput->expIndices[AECAlgoExposureSafe];
    if ((std::fabs(pInput->expIndexMatched[AECAlgoExposureSafe] - current) < unit) ||
        (dist > pSlow->tolExpIndexDeltaForceAdj))
    {
        return up ? unit : -unit;
    }
    return 0.0F;
}

FLOAT ConvSlow::ConvergeSafeExposure(const ConvergenceSubmoduleInput* pInput)
{
    const FLOAT current = pInput->expIndices[AECAlgoExposureSafe];
    if ((nullptr == pInput->pTuning) || (nullptr == pInput->pTuning->pCore))
    {
        AEC_LOG_ERROR("slow conv: no tuning, exposure kept");
        return current;
    }
    const aecConvergence::SlowConvType* pSlow = &pInput->pTuning->pCore->slowConv;
    m_slowState.pGyro                         = pInput->pGyro;
    m_slowState.actualSensorFPS               = pInput->currentFPS;

    // A scene that was stable for a while must stay out of tolerance for a time before exposure follows.
    if (IsHolding(pInput, pSlow))
    {
        return current;
    }

    const FLOAT target = pInput->pConvIn->pTargetIndices[AECAlgoExposureSafe];
    const FLOAT delta  = target - current;
    if ((std::fabs(delta) < m_tolerance) ||
        (delta * (target - pInput->expIndexMatched[AECAlgoExposureSafe]) < 0.0F))
    {
        return current;
    }
    return current + Step(pInput, pSlow, delta);
}

FLOAT ConvSlow::ConvergeShortExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex)
{
    return SnapAndConvergeDelta(m_tolerance, ADRCConvSpeed(pInput), pInput, safeIndex, AECAlgoExposureShort);
}

FLOAT ConvSlow::ConvergeLongExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex)
{
    return SnapAndConvergeDelta(m_tolerance, ADRCConvSpeed(pInput), pInput, safeIndex, AECAlgoExposureLong);
}

void ConvSlow::GetIsSettled(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput)
{
    const FLOAT                            tolerance = 2.0F * m_tolerance;
    const aecglobalelements::StartEndType& range     = pInput->expTableRange;
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        const FLOAT out       = pOutput->expIndices[i];
        pOutput->isSettled[i] = ((out + tolerance >= range.end) || (out - tolerance <= range.start) ||
                                 (tolerance >= std::fabs(out - pInput->expIndexMatched[i])))
                                    ? TRUE
                                    : FALSE;
    }
}

aecglobalelements::ConvFrameSkipType ConvSlow::GetSkipType()
{
    return m_skipType;
}
