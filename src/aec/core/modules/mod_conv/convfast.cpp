// Proportional converger: a share of the remaining distance per frame, with dark/bright speed heuristics.
#include "aec/core/modules/mod_conv/convfast.h"

#include <algorithm>
#include <cmath>

#include "platform/statslogger.h"

namespace
{
constexpr FLOAT kEpsilon = 1e-7F;

// Strength of a dark/bright heuristic; a value outside [0, 1] falls back to 0.25.
FLOAT HeuristicStrength(FLOAT strength)
{
    return ((strength >= 0.0F) && (strength <= 1.0F)) ? strength : 0.25F;
}

// Factor on the matched delta for a region ratio above its threshold; a threshold of 1.0 takes the full strength.
FLOAT RatioAdjustment(FLOAT ratio, FLOAT threshold, FLOAT strength)
{
    if (!(ratio > threshold))
    {
        return 1.0F;
    }
    if (std::fabs(1.0F - threshold) < kEpsilon)
    {
        return 1.0F + strength;
    }
    return 1.0F + strength * (ratio - threshold) / (1.0F - threshold);
}
} // namespace

ConvFast::ConvFast(ConvAlgoIdentity identity, const ConvergenceTuningDataType* pTuning)
    : ConvergenceSubmodule(identity, pTuning)
    , m_config()
    , m_settledCounter(0)
    , m_settledCountThFDPreflash(0)
{
    // Configured at once so that a frame before the first mode change still converges sensibly.
    static_cast<void>(SetConvEvent(ConvEventInitialize));
}

const aecConvergence::FastConvType* ConvFast::FastTuning(const ConvergenceTuningDataType* pTuning) const
{
    if ((nullptr == pTuning) || (nullptr == pTuning->pCore))
    {
        return nullptr;
    }
    return (ConvIDTorch == m_identity) ? &pTuning->pCore->torchConv.conv : &pTuning->pCore->fastConv;
}

AecResult ConvFast::SetConvEvent(ConvEventType event)
{
    if ((nullptr == m_pTuning) || (nullptr == m_pTuning->pCore) ||
        ((ConvIDPreflash == m_identity) && (nullptr == m_pTuning->pFlash)))
    {
        AEC_LOG_ERROR("fast conv %d: tuning missing, event %d ignored", static_cast<INT32>(m_identity),
                      static_cast<INT32>(event));
        return AecError;
    }

    const aecConvergence::AECCoreConvergenceType& core   = *m_pTuning->pCore;
    const aecConvergence::FastConvType&           torch  = core.torchConv.conv;
    AecResult                                     result = AecSuccess;

    if (ConvEventInitialize == event)
    {
        m_settledCounter           = 0;
        m_settledCountThFDPreflash = 0;
        m_speedAdjust              = 1.0F;
        const FLOAT unit           = UnitStepSize(m_pTuning);
        switch (m_identity)
        {
            case ConvIDPreflash:
            {
                const aecFlash::PreflashConvType& preflash = m_pTuning->pFlash->preflashConv;
                m_config.tolerance                         = 1.0F;
                m_config.doBrightDarkHeuristics            = 0;
                m_config.skipMethod                        = preflash.frameSkipMethod;
                m_config.frameSettledCountThres            = preflash.settledFrameCountThres;
                m_config.ADRCConvSpeed                     = core.fastConv.ADRCConvSpeed;
                m_settledCountThFDPreflash = (0 != m_pTuning->enableFDFlash) ? m_pTuning->FDFlashFrameCount : 0;
                break;
            }
            case ConvIDTorch:
                m_config.tolerance              = torch.tolMultUnitStepSize * unit;
                m_config.doBrightDarkHeuristics = torch.enableBrightDarkSpeedAdj;
                m_config.skipMethod             = torch.frameSkipMethod;
                m_config.frameSettledCountThres = 0;
                m_config.ADRCConvSpeed          = torch.ADRCConvSpeed;
                break;
            default:
                if (ConvIDFast != m_identity)
                {
                    AEC_LOG_ERROR("unexpected ID for fast conv: %d", static_cast<INT32>(m_identity));
                    result = AecError;
                }
                m_config.tolerance              = core.fastConv.tolMultUnitStepSize * unit;
                m_config.doBrightDarkHeuristics = core.fastConv.enableBrightDarkSpeedAdj;
                m_config.skipMethod             = core.fastConv.frameSkipMethod;
                m_config.frameSettledCountThres = 0;
                m_config.ADRCConvSpeed          = core.fastConv.ADRCConvSpeed;
                break;
        }
        // How far the matched delta is stale: the frames a step takes to show in the statistics.
        switch (m_config.skipMethod)
        {
            case aecglobalelements::SkipOne:
                m_config.delayAdj = std::max(static_cast<FLOAT>(m_sysLatency) - 1.0F, 1.0F);
                break;
            case aecglobalelements::SkipSystemLatency:
                m_config.delayAdj = 1.0F;
                break;
            default:
                m_config.delayAdj = static_cast<FLOAT>(m_sysLatency);
                break;
        }
    }

    const FLOAT flashAggressiveness = (nullptr != m_pTuning->pFlash) ? m_pTuning->pFlash->preflashConv.aggressiveness
                                                                     : 0.0F;
    FLOAT speed = m_baseSpeedOverride;
    if ((speed < 0.0F) || (std::fabs(speed) < kEpsilon))
    {
        switch (m_identity)
        {
            case ConvIDPreflash:
                speed = flashAggressiveness;
                break;
            case ConvIDTorch:
                speed = torch.aggressiveness;
                break;
            default:
                speed = core.fastConv.aggressiveness;
                break;
        }
    }
    m_config.aggressiveness = m_speedAdjust * speed;
    AEC_LOG_VERBOSE("algo %d final aggressiveness: %.3f speed adj: %.3f speed override: %.3f flash agg: %.3f "
                    "fast agg: %.3f torch: %.3f",
                    static_cast<INT32>(m_identity), m_config.aggressiveness, m_speedAdjust, m_baseSpeedOverride,
                    flashAggressiveness, core.fastConv.aggressiveness, torch.aggressiveness);
    return result;
}

FLOAT ConvFast::ConvergeSafeExposure(const ConvergenceSubmoduleInput* pInput)
{
    const FLOAT current = pInput->expIndices[AECAlgoExposureSafe];
    const aecConvergence::FastConvType* pFast = FastTuning(pInput->pTuning);
    if (nullptr == pFast)
    {
        AEC_LOG_ERROR("fast conv %d: no tuning, exposure kept", static_cast<INT32>(m_identity));
        return current;
    }

    const ConvergenceInput* pConvIn = pInput->pConvIn;
    const FLOAT             target  = pConvIn->pTargetIndices[AECAlgoExposureSafe];
    const FLOAT             matched = pInput->expIndexMatched[AECAlgoExposureSafe];
    const FLOAT             unit    = UnitStepSize(pInput->pTuning);
    const FLOAT             thresD  = pFast->thresDarkExpIndexDelta;
    const FLOAT             thresB  = pFast->thresBrightExpIndexDelta;
    FLOAT                   deltaP  = target - current;
    FLOAT                   deltaM  = target - matched;

    if (std::fabs(deltaP) < m_config.tolerance)
    {
        return current;
    }

    // Thresholds within [0, 1] are shares of dark/bright regions; otherwise they are index deltas.
    const bool ratioHeuristic = (thresD >= 0.0F) && (thresD <= 1.0F) && (thresB >= 0.0F) && (thresB <= 1.0F) &&
                                (1 == m_config.doBrightDarkHeuristics);
    if (ratioHeuristic)
    {
        const FLOAT strengthD = HeuristicStrength(pFast->darkRatioAdjStrength);
        const FLOAT strengthB = HeuristicStrength(pFast->brightRatioAdjStrength);
        AEC_LOG_VERBOSE("heuristic ( dark bright ): strength ( %.3f %.3f ) delta ( %.3f %.3f ) ratio ( %.3f %.3f ),"
                        "deltaTgtMatched %.1f",
                        strengthD, strengthB, thresD, thresB, pConvIn->ratioDark, pConvIn->ratioBright, deltaM);
        const FLOAT adjD = RatioAdjustment(pConvIn->ratioDark, thresD, strengthD);
        const FLOAT adjB = RatioAdjustment(pConvIn->ratioBright, thresB, strengthB);
        deltaM *= adjD;
        deltaM *= adjB;
        m_darkBrightSafeTarget = deltaM + matched;
        deltaP                 = m_darkBrightSafeTarget - current;
        AEC_LOG_VERBOSE("heuristic adj ( %.3f %.3f ) deltaTgtMatched %.1f deltaTgtPrevious %.1f tgt old %.1f new %.1f "
                        "diff %.1f",
                        adjD, adjB, deltaM, deltaP, target, m_darkBrightSafeTarget, m_darkBrightSafeTarget - target);
    }

    const FLOAT sign = deltaP * deltaM;
    FLOAT       step = 0.0F;
    if (aecglobalelements::SkipSystemLatency == m_config.skipMethod)
    {
        step = deltaM * m_config.aggressiveness;
    }
    else
    {
        if (sign < 0.0F)
        {
            // A step is in flight and already past the target.
            return current;
        }
        // The smaller of a share of the commanded distance and the matched distance spread over the delay;
        // without a delay the second candidate is unbounded and never chosen.
        step = deltaP * m_config.aggressiveness;
        if (m_config.delayAdj > 0.0F)
        {
            const FLOAT stepMatched = deltaM / m_config.delayAdj;
            if (std::fabs(stepMatched) < std::fabs(step))
            {
                step = stepMatched;
            }
        }
    }

    if ((1 == m_config.doBrightDarkHeuristics) && !ratioHeuristic)
    {
        if (step > thresD)
        {
            step *= pFast->darkRatioAdjStrength;
        }
        if ((step <= 0.0F) && (-step > thresB))
        {
            step *= pFast->brightRatioAdjStrength;
        }
    }

    FLOAT move = step;
    if ((std::fabs(step) < unit) && (sign >= 0.0F))
    {
        move = (step > 0.0F) ? unit : -unit;
    }
    return current + move;
}

FLOAT ConvFast::ConvergeShortExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex)
{
    return SnapAndConvergeDelta(m_config.tolerance, m_config.ADRCConvSpeed, pInput, safeIndex, AECAlgoExposureShort);
}

FLOAT ConvFast::ConvergeLongExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex)
{
    return SnapAndConvergeDelta(m_config.tolerance, m_config.ADRCConvSpeed, pInput, safeIndex, AECAlgoExposureLong);
}

void ConvFast::GetIsSettled(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput)
{
    const bool  preflash  = (ConvIDPreflash == m_identity);
    const FLOAT tolerance = preflash ? m_config.tolerance : 2.0F * m_config.tolerance;
    const INT32 threshold = (preflash && (1 == pInput->bWaitForFDInPreflash))
                                ? m_config.frameSettledCountThres + m_settledCountThFDPreflash
                                : m_config.frameSettledCountThres;
    const aecglobalelements::StartEndType& range = pInput->expTableRange;

    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        const FLOAT out = pOutput->expIndices[i];
        // Settled once the statistics show the exposure, or when the table has nothing further to give.
        pOutput->isSettled[i] = ((out + tolerance >= range.end) || (out - tolerance <= range.start) ||
                                 (std::fabs(out - pInput->expIndexMatched[i]) <= tolerance))
                                    ? TRUE
                                    : FALSE;
    }

    if (0 != pOutput->isSettled[AECAlgoExposureSafe])
    {
        m_settledCounter += 1;
        if (m_settledCounter <= threshold)
        {
            pOutput->isSettled[AECAlgoExposureSafe] = FALSE;
        }
        else
        {
            m_settledCounter = threshold;
        }
    }
    else
    {
        m_settledCounter = 0;
    }
}

aecglobalelements::ConvFrameSkipType ConvFast::GetSkipType()
{
    return m_config.skipMethod;
}
