// Histogram target ADRC: the short target below safe, made up by ADRC gain, and the dark-boosted long target.
#include <algorithm>

#include "aec/core/modules/mod_mtr/chistogramtargetcalculator.h"
#include "platform/statslogger.h"

VOID CHistogramTargetCalculator::CalculateADRCTargets(const AECTargetCalcInput* pInput, TargetBand band,
                                                      BOOL bIsTargetSwap, const GainLimits& limits)
{
    const FLOAT safe = m_histBasedSafeTarget;

    // The short target keeps the highlights: the bright band end that bounds them (or the band's top, by legacy).
    FLOAT candidate = 0.0f;
    if (TRUE == limits.useLegacyTargets)
    {
        candidate = std::min(safe, band.highTarget);
    }
    else if (TRUE == bIsTargetSwap)
    {
        candidate = std::min(safe, m_brightLowTarget);
    }
    else
    {
        candidate = std::min(safe, m_brightHighTarget);
    }

    // With a face the zone copy keeps the lower ceiling until the next zone interpolation.
    if (pInput->pLumaCalcResult->faceLuma > 0.0f)
    {
        m_tuningZone.maxDRCGain = std::min(limits.maxADRCGainFace, m_tuningZone.maxDRCGain);
    }

    m_realDRCGain        = safe / std::max(candidate, 1.0f);
    const FLOAT adrcGain = std::min({m_realDRCGain, m_tuningZone.maxDRCGain, limits.maxDRCGain});
    m_histBasedShortTarget = safe / std::max(adrcGain, 1.0f);
    AEC_LOG_VERBOSE("m_realDRCGain=%f, adrcGain=%f, m_histBasedSafeTarget=%f, m_histBasedShortTarget=%f",
                    m_realDRCGain, adrcGain, safe, m_histBasedShortTarget);

    // Dark scenes: what ADRC gain is left lifts the long target towards the dark band, within the boost limit.
    // A safe target or ADRC gain of 0 would divide by zero; boosting 0 gives 0 and no ADRC gain leaves no cap.
    if ((1 == pInput->pTuning->pCore->mtrLumaTarget.histLumaTarget.enableDarkBoost) && (safe < m_darkLowTarget) &&
        (adrcGain < limits.maxDRCGain) && (safe > 0.0f))
    {
        FLOAT darkBoost = std::min(m_darkLowTarget / safe, limits.maxDarkBoostGain);
        if (adrcGain > 0.0f)
        {
            darkBoost = std::min(limits.maxDRCGain / adrcGain, darkBoost);
        }
        m_histBasedLongTarget = darkBoost * safe;
    }

    if (m_histBasedShortTarget > safe)
    {
        AEC_LOG_WARN("warning: need to cap short %f because of safe %f", m_histBasedShortTarget, safe);
        m_histBasedShortTarget = safe;
    }
    if (m_histBasedLongTarget < safe)
    {
        AEC_LOG_WARN("warning: need to cap long %f because of safe %f", m_histBasedLongTarget, safe);
        m_histBasedLongTarget = safe;
    }
}
