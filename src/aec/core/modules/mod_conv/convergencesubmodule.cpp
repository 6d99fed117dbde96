// Shared frame of the convergence submodules, their factory and the short/long exposure stepping.
#include "aec/core/modules/mod_conv/convergencesubmodule.h"

#include <algorithm>
#include <cmath>

#include "aec/core/base/aecobjectalloc.h"
#include "aec/core/modules/mod_conv/convfast.h"
#include "aec/core/modules/mod_conv/convflashmeasurement.h"
#include "aec/core/modules/mod_conv/convslow.h"
#include "aec/core/modules/mod_conv/convstartup.h"
#include "aec/core/modules/mod_conv/convtorch.h"
#include "platform/statslogger.h"

namespace
{
constexpr FLOAT kEpsilon = 1e-7F;

// Whether the frame has to keep the last exposure under the skip rule.
bool MustHold(aecglobalelements::ConvFrameSkipType skip, const ConvergenceSubmoduleInput* pInput)
{
    if (0 != pInput->bExternalSkip)
    {
        return true;
    }
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        // SkipOne: the last adjustment has to pass first; SkipSystemLatency: the pipeline must have caught up.
        if ((aecglobalelements::SkipOne == skip) && (std::fabs(pInput->expIndexPreviousAdj[i]) >= kEpsilon))
        {
            return true;
        }
        if ((aecglobalelements::SkipSystemLatency == skip) &&
            (std::fabs(pInput->expIndexMatched[i] - pInput->expIndices[i]) >= kEpsilon))
        {
            return true;
        }
    }
    return false;
}
} // namespace

ConvergenceSubmodule::ConvergenceSubmodule(ConvAlgoIdentity identity, const ConvergenceTuningDataType* pTuning)
    : m_sysLatency(0)
    , m_identity(identity)
    , m_speedAdjust(1.0F)
    , m_baseSpeedOverride(-1.0F)
    , m_darkBrightSafeTarget(0.0F)
    , m_pTuning(pTuning)
{
}

ConvergenceSubmodule* ConvergenceSubmodule::CreateInstance(ConvAlgoIdentity identity,
                                                           const ConvergenceTuningDataType* pTuning)
{
    switch (identity)
    {
        case ConvIDSlow:
            return AECCreateObject<ConvSlow>(pTuning);
        case ConvIDFast:
        case ConvIDPreflash:
            return AECCreateObject<ConvFast>(identity, pTuning);
        case ConvIDFastAEC:
        case ConvIDAggressiveAEC:
            return AECCreateObject<ConvStartup>(identity, pTuning);
        case ConvIDFlashMeas:
        {
            ConvStartup* pInner = AECCreateObject<ConvStartup>(ConvIDFlashMeas, pTuning);
            if (nullptr == pInner)
            {
                return nullptr;
            }
            ConvergenceSubmodule* pOuter = AECCreateObject<ConvFlashMeasurement>(pTuning, pInner);
            if (nullptr == pOuter)
            {
                AECDestroyObject(pInner);
            }
            return pOuter;
        }
        case ConvIDTorch:
        {
            ConvFast* pInner = AECCreateObject<ConvFast>(ConvIDTorch, pTuning);
            if (nullptr == pInner)
            {
                return nullptr;
            }
            ConvergenceSubmodule* pOuter = AECCreateObject<ConvTorch>(pTuning, pInner);
            if (nullptr == pOuter)
            {
                AECDestroyObject(pInner);
            }
            return pOuter;
        }
        default:
            AEC_LOG_ERROR("unknown convergence submodule identity %d", static_cast<INT32>(identity));
            return nullptr;
    }
}

FLOAT ConvergenceSubmodule::UnitStepSize(const ConvergenceTuningDataType* pTuning)
{
    if ((nullptr == pTuning) || (nullptr == pTuning->pCore) || !(pTuning->pCore->unitStepSize > 0.0F))
    {
        return 1.0F;
    }
    return pTuning->pCore->unitStepSize;
}

FLOAT ConvergenceSubmodule::RoundToGrid(FLOAT value, FLOAT unit)
{
    return unit * std::round(value / unit);
}

FLOAT ConvergenceSubmodule::ClampToRange(FLOAT value, const aecglobalelements::StartEndType& range)
{
    return std::max(std::min(value, range.end), range.start);
}

void ConvergenceSubmodule::SetSecondaryAlgo(ConvergenceSubmodule* /* pSecondary */)
{
}

AecResult ConvergenceSubmodule::Converge(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput)
{
    if ((nullptr == pInput) || (nullptr == pOutput) || (nullptr == pInput->pConvIn) ||
        (nullptr == pInput->pConvIn->pTargetIndices))
    {
        AEC_LOG_ERROR("convergence submodule %d: missing frame input or output", static_cast<INT32>(m_identity));
        return AecError;
    }

    const FLOAT*                           pTarget = pInput->pConvIn->pTargetIndices;
    const aecglobalelements::StartEndType& range   = pInput->expTableRange;
    const FLOAT                            unit    = UnitStepSize(pInput->pTuning);
    FLOAT*                                 pOut    = pOutput->expIndices;

    const aecglobalelements::ConvFrameSkipType skip = GetSkipType();
    m_darkBrightSafeTarget                          = pTarget[AECAlgoExposureSafe];

    if (!MustHold(skip, pInput) && (0 == pInput->bHasEVChanged))
    {
        pOut[AECAlgoExposureSafe]  = ConvergeSafeExposure(pInput);
        pOut[AECAlgoExposureSafe]  = ClampToRange(RoundToGrid(pOut[AECAlgoExposureSafe], unit), range);
        pOut[AECAlgoExposureShort] = ConvergeShortExposure(pInput, pOut[AECAlgoExposureSafe]);
        pOut[AECAlgoExposureLong]  = ConvergeLongExposure(pInput, pOut[AECAlgoExposureSafe]);
    }
    else
    {
        // An EV change jumps to the targets even in a held frame; a plain hold keeps what was commanded.
        const FLOAT* pSource = (1 == pInput->bHasEVChanged) ? pTarget : pInput->expIndices;
        std::copy(pSource, pSource + AECAlgoExposureCount, pOut);
        pOut[AECAlgoExposureSafe] = ClampToRange(RoundToGrid(pOut[AECAlgoExposureSafe], unit), range);
    }

    if (1 == pInput->HDR3Enable)
    {
        const aecSensorConfig::AECSensorHDRConfig* pHDR =
            (nullptr != pInput->pTuning) ? pInput->pTuning->pSensorHDR : nullptr;
        if ((nullptr == pHDR) || (std::fabs(pHDR->esRatio + 1.0F) < kEpsilon))
        {
            AEC_LOG_ERROR("HDR3 safe index kept: no usable exposure ratio in the sensor HDR tuning");
        }
        else
        {
            // The safe exposure sits between short and long by the sensor's exposure ratio, off the unit grid.
            pOut[AECAlgoExposureSafe] = (pOut[AECAlgoExposureLong] - pOut[AECAlgoExposureShort]) /
                                            (pHDR->esRatio + 1.0F) +
                                        pOut[AECAlgoExposureShort];
        }
    }

    const FLOAT safe            = pOut[AECAlgoExposureSafe];
    pOut[AECAlgoExposureShort]  = std::min(ClampToRange(pOut[AECAlgoExposureShort], range), safe);
    pOut[AECAlgoExposureLong]   = std::max(ClampToRange(pOut[AECAlgoExposureLong], range), safe);

    GetIsSettled(pInput, pOutput);
    pOutput->darkBrightSafeTarget = m_darkBrightSafeTarget;

    AEC_LOG_VERBOSE("tgt %.1f %.1f %.1f in %.1f %.1f %.1f out %.1f %.1f %.1f dark bright safe target %.1f settled %d %d %d",
                    pTarget[AECAlgoExposureShort], pTarget[AECAlgoExposureLong], pTarget[AECAlgoExposureSafe],
                    pInput->expIndices[AECAlgoExposureShort], pInput->expIndices[AECAlgoExposureLong],
                    pInput->expIndices[AECAlgoExposureSafe], pOut[AECAlgoExposureShort], pOut[AECAlgoExposureLong],
                    pOut[AECAlgoExposureSafe], pOutput->darkBrightSafeTarget,
                    pOutput->isSettled[AECAlgoExposureShort], pOutput->isSettled[AECAlgoExposureLong],
                    pOutput->isSettled[AECAlgoExposureSafe]);
    return AecSuccess;
}

FLOAT ConvergenceSubmodule::SnapAndConvergeDelta(FLOAT tolerance, FLOAT speed, const ConvergenceSubmoduleInput* pInput,
                                                 FLOAT safeIndex, AECAlgoExposureType type)
{
    if ((nullptr == pInput) || (nullptr == pInput->pConvIn) || (nullptr == pInput->pConvIn->pTargetIndices) ||
        (type < AECAlgoExposureShort) || (type > AECAlgoExposureSafe))
    {
        AEC_LOG_ERROR("convergence submodule %d: no frame for exposure %d, it follows the safe one",
                      static_cast<INT32>(m_identity), static_cast<INT32>(type));
        return safeIndex;
    }
    const FLOAT* pTarget  = pInput->pConvIn->pTargetIndices;
    const FLOAT  unit     = UnitStepSize(pInput->pTuning);
    const FLOAT  target   = pTarget[type];
    const FLOAT  current  = pInput->expIndices[type];
    const FLOAT  error    = std::fabs(target - current);
    const FLOAT  curDelta = current - pInput->expIndices[AECAlgoExposureSafe];
    // By default the exposure keeps its distance to the safe one.
    FLOAT out = curDelta + safeIndex;

    if ((aecglobalelements::SkipSystemLatency != GetSkipType()) &&
        ((target - pInput->expIndexMatched[type]) * (target - current) < 0.0F))
    {
        // A step is in flight and already past the target.
        return (error < tolerance) ? current : out;
    }
    if (error < tolerance)
    {
        return out;
    }

    const FLOAT want = target - pTarget[AECAlgoExposureSafe];
    const FLOAT diff = want - curDelta;
    if (std::fabs(diff) < kEpsilon)
    {
        return out;
    }

    FLOAT step = (std::fabs(diff - speed * diff) < tolerance) ? diff : speed * diff;
    step       = RoundToGrid(step, unit);
    if (std::fabs(step) < unit)
    {
        step = (diff > 0.0F) ? unit : -unit;
    }
    out += step;
    AEC_LOG_VERBOSE("ADRC boundary for %s conv: curr abs delta %.3f and desired abs delta %.3f",
                    (AECAlgoExposureShort == type) ? "short" : "long", std::fabs(curDelta), std::fabs(want));

    // Never open the distance to the safe exposure beyond both the current and the desired one.
    if (std::fabs(safeIndex - out) > std::max(std::fabs(curDelta), std::fabs(want)))
    {
        out += (step > 0.0F) ? -unit : unit;
    }
    return out;
}
