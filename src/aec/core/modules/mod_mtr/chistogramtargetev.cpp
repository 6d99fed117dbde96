// Histogram target EV handling: takes the EV back out of the targets, or holds them against an EV change.
#include <algorithm>

#include "aec/core/modules/mod_mtr/chistogramtargetcalculator.h"
#include "platform/statslogger.h"

namespace
{
// The EV-scaled targets stay within these lumas.
constexpr FLOAT MaxEVScaledTarget = 220.0f;
constexpr FLOAT MinEVScaledTarget = 1.0f;

// Smallest reference target that the frozen ratios are taken against.
constexpr FLOAT MinFreezeRefTarget = 1e-7f;

// Share of the EV multiplier by which a frozen ratio above 1 moves back towards 1 on a brighter EV.
constexpr FLOAT FreezeEVWeight = 0.25f;
} // namespace

VOID CHistogramTargetCalculator::HandleEVCompensation(FLOAT EVMultiplier, AECTargetCalcResult* pResult,
                                                      aecglobalelements::HistogramTargetEVMethodType EVHandling,
                                                      const EVContext* pEV)
{
    if ((nullptr == pResult) || (nullptr == pEV))
    {
        AEC_LOG_ERROR("EV handling without result %p or EV %p", static_cast<const void*>(pResult),
                      static_cast<const void*>(pEV));
        return;
    }
    if (EVMultiplier <= 0.0f)
    {
        AEC_LOG_WARN("EV multiplier out of range %.3f; not applying", EVMultiplier);
        return;
    }

    FLOAT* const pTargets[AECAlgoExposureCount] = {&pResult->histBasedShortTarget, &pResult->histBasedLongTarget,
                                                   &pResult->histBasedSafeTarget};
    if (aecglobalelements::Compensated == EVHandling)
    {
        for (FLOAT* pTarget : pTargets)
        {
            *pTarget /= EVMultiplier;
        }
        AEC_LOG_VERBOSE("Compensated: Hist safe target readjusted by EV multiplier %f", EVMultiplier);
    }
    else if (aecglobalelements::Freeze == EVHandling)
    {
        if ((TRUE == m_bIsFirstFrame) || (0 == pEV->EVUIVal) || (pEV->EVUIVal == m_EV.EVUIVal))
        {
            m_EV.capabilities = pEV->capabilities;
            m_EV.EVUIVal      = pEV->EVUIVal;
            m_EV.EV           = pEV->EV;
            const FLOAT ref   = std::max(m_refTarget, MinFreezeRefTarget);
            for (UINT32 i = 0; i < AECAlgoExposureCount; ++i)
            {
                m_EV.histTargetRatios[i] = *pTargets[i] / ref;
            }
        }
        else
        {
            // The frozen ratios stay stored; a brighter EV eases the ones above 1 towards 1 for this frame.
            const FLOAT w = std::min(EVMultiplier * FreezeEVWeight, 1.0f);
            for (UINT32 i = 0; i < AECAlgoExposureCount; ++i)
            {
                FLOAT ratio = m_EV.histTargetRatios[i];
                if ((EVMultiplier > 1.0f) && (ratio > 1.0f))
                {
                    ratio = (1.0f - w) * ratio + w;
                }
                *pTargets[i] = ratio * m_refTarget;
            }
            AEC_LOG_VERBOSE("Freeze EV %d applied", pEV->EVUIVal);
        }
    }
    else
    {
        AEC_LOG_VERBOSE("no special adjustments for this EV handling method %d", static_cast<INT32>(EVHandling));
        if (aecglobalelements::Legacy == EVHandling)
        {
            return;
        }
    }

    // Once the EV is applied again downstream, each target stays within the luma range.
    for (FLOAT* pTarget : pTargets)
    {
        if (EVMultiplier * *pTarget > MaxEVScaledTarget)
        {
            *pTarget = MaxEVScaledTarget / EVMultiplier;
        }
        else if (EVMultiplier * *pTarget < MinEVScaledTarget)
        {
            *pTarget = MinEVScaledTarget / EVMultiplier;
        }
    }
}
