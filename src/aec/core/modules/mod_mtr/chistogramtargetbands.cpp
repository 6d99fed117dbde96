// Histogram target bands: percentile range means, the bright and dark bands, their filter and the safe target.
#include <algorithm>

#include "aec/core/modules/mod_mtr/chistogramtargetcalculator.h"
#include "platform/statslogger.h"

namespace
{
// Range means are lifted to this before they divide a reference.
constexpr FLOAT MinRangeMean = 0.1f;

// The push-up and push-down ranges are tuned from the top of the histogram: 0 is the brightest pixel.
MinMaxRangeFloat FromTop(const aecglobalelements::StartEndType& rRange)
{
    return MinMaxRangeFloat{1.0f - rRange.end, 1.0f - rRange.start};
}

MinMaxRangeFloat FromBottom(const aecglobalelements::StartEndType& rRange)
{
    return MinMaxRangeFloat{rRange.start, rRange.end};
}

// One percentile family: a channel's WB mean above the best so far makes that channel the deciding one.
VOID TakeIfBrighter(FLOAT meanWB, FLOAT mean, UINT8 c, FLOAT* pPosWB, FLOAT* pPos, UINT8* pChnl)
{
    if (meanWB > *pPosWB)
    {
        *pPosWB = meanWB;
        *pPos   = mean;
        *pChnl  = c;
    }
}
} // namespace

CHistogramTargetCalculator::DecidingChannels CHistogramTargetCalculator::CalculateRangeMeans()
{
    DecidingChannels chnl = {0, 0, 0};
    for (UINT8 c = 0; c < m_numOfChannels; ++c)
    {
        const MinMaxRangeFloat pushUp   = FromTop(m_tuningZone.histSatPushupRange[c]);
        const MinMaxRangeFloat pushDown = FromTop(m_tuningZone.histSatPushdownRange[c]);
        const MinMaxRangeFloat dark     = FromBottom(m_tuningZone.histDarkRange[c]);

        m_satPushupMeanWB[c]   = m_pStats->GetBHistAvgForPctRange(c, pushUp.min, pushUp.max, TRUE);
        m_satPushupMean[c]     = m_pStats->GetBHistAvgForPctRange(c, pushUp.min, pushUp.max, FALSE);
        m_satPushdownMeanWB[c] = m_pStats->GetBHistAvgForPctRange(c, pushDown.min, pushDown.max, TRUE);
        m_satPushdownMean[c]   = m_pStats->GetBHistAvgForPctRange(c, pushDown.min, pushDown.max, FALSE);
        m_darkMeanWB[c]        = m_pStats->GetBHistAvgForPctRange(c, dark.min, dark.max, TRUE);
        m_darkMean[c]          = m_pStats->GetBHistAvgForPctRange(c, dark.min, dark.max, FALSE);

        TakeIfBrighter(m_satPushupMeanWB[c], m_satPushupMean[c], c, &m_satPushupPosWB, &m_satPushupPos, &chnl.pushUp);
        TakeIfBrighter(m_satPushdownMeanWB[c], m_satPushdownMean[c], c, &m_satPushdownPosWB, &m_satPushdownPos,
                       &chnl.pushDown);
        TakeIfBrighter(m_darkMeanWB[c], m_darkMean[c], c, &m_darkPosWB, &m_darkPos, &chnl.dark);
    }
    m_satPushupPosWB   = std::max(m_satPushupPosWB, MinRangeMean);
    m_satPushdownPosWB = std::max(m_satPushdownPosWB, MinRangeMean);
    m_darkPosWB        = std::max(m_darkPosWB, MinRangeMean);
    return chnl;
}

BOOL CHistogramTargetCalculator::CalculateRawTargets(const aecMetering::HistLumaTargetType*    pHistTuning,
                                                     const aecMetering::NonLinearEstimateType* pNonLin,
                                                     DecidingChannels chnl, FLOAT* pBrightLow, FLOAT* pBrightHigh,
                                                     FLOAT* pDarkLow, FLOAT* pDarkHigh)
{
    if (1 == pHistTuning->enableNonLinearTargetEstimate)
    {
        // Clipping-aware: the gain that brings each range to its reference with everything above full scale clipped.
        m_satPushupPos   = std::max(m_satPushupPos, MinRangeMean);
        m_satPushdownPos = std::max(m_satPushdownPos, MinRangeMean);
        m_darkPos        = std::max(m_darkPos, MinRangeMean);
        const MinMaxRangeFloat pushUpPctls = FromTop(m_tuningZone.histSatPushupRange[chnl.pushUp]);
        const MinMaxRangeFloat pushDnPctls = FromTop(m_tuningZone.histSatPushdownRange[chnl.pushDown]);
        const MinMaxRangeFloat darkPctls   = FromBottom(m_tuningZone.histDarkRange[chnl.dark]);

        *pBrightLow = m_refLuma * m_pStats->EstimateNonLinGain(m_satPushupPos, m_tuningZone.satRefLow, pushUpPctls,
                                                               chnl.pushUp, pNonLin);
        *pBrightHigh = m_refLuma * m_pStats->EstimateNonLinGain(m_satPushdownPos, m_tuningZone.satRefHigh,
                                                                pushDnPctls, chnl.pushDown, pNonLin);
        *pDarkLow = m_refLuma *
                    m_pStats->EstimateNonLinGain(m_darkPos, m_tuningZone.darkRefLow, darkPctls, chnl.dark, pNonLin);
        *pDarkHigh = m_refLuma *
                     m_pStats->EstimateNonLinGain(m_darkPos, m_tuningZone.darkRefHigh, darkPctls, chnl.dark, pNonLin);
    }
    else
    {
        *pBrightLow  = m_tuningZone.satRefLow / m_satPushupPosWB * m_refLuma;
        *pBrightHigh = m_tuningZone.satRefHigh / m_satPushdownPosWB * m_refLuma;
        *pDarkLow    = m_tuningZone.darkRefLow / m_darkPosWB * m_refLuma;
        *pDarkHigh   = m_tuningZone.darkRefHigh / m_darkPosWB * m_refLuma;
    }

    if ((*pBrightLow < 0.0f) || (*pBrightHigh < 0.0f) || (*pDarkLow < 0.0f) || (*pDarkHigh < 0.0f))
    {
        AEC_LOG_WARN("hist target: negative raw target, bright (%f, %f) dark (%f, %f); lux target kept", *pBrightLow,
                     *pBrightHigh, *pDarkLow, *pDarkHigh);
        return FALSE;
    }
    return TRUE;
}

BOOL CHistogramTargetCalculator::FilterBands(FLOAT targetFilterFactor, FLOAT brightLow, FLOAT brightHigh,
                                             FLOAT darkLow, FLOAT darkHigh)
{
    const BOOL bIsTargetSwap = (brightLow > brightHigh) ? TRUE : FALSE;
    if (TRUE == bIsTargetSwap)
    {
        std::swap(brightLow, brightHigh);
    }

    if ((targetFilterFactor > 0.0f) && (FALSE == m_bIsFirstFrame))
    {
        // A first-order filter of each band end against the last frame's.
        brightLow  = brightLow + targetFilterFactor * (m_brightLowTarget - brightLow);
        brightHigh = brightHigh + targetFilterFactor * (m_brightHighTarget - brightHigh);
        darkLow    = darkLow + targetFilterFactor * (m_darkLowTarget - darkLow);
        darkHigh   = darkHigh + targetFilterFactor * (m_darkHighTarget - darkHigh);
    }
    m_brightLowTarget  = brightLow;
    m_brightHighTarget = brightHigh;
    m_darkLowTarget    = darkLow;
    m_darkHighTarget   = darkHigh;
    return bIsTargetSwap;
}

CHistogramTargetCalculator::TargetBand CHistogramTargetCalculator::SelectBand() const
{
    // Overlapping bands give their overlap; bands apart give the gap between them.
    if (m_brightHighTarget < m_darkLowTarget)
    {
        return TargetBand{m_brightHighTarget, m_darkLowTarget};
    }
    if (m_brightLowTarget < m_darkLowTarget)
    {
        return TargetBand{m_darkLowTarget, std::min(m_darkHighTarget, m_brightHighTarget)};
    }
    if (m_darkHighTarget > m_brightHighTarget)
    {
        return TargetBand{m_brightLowTarget, m_brightHighTarget};
    }
    if (m_brightLowTarget < m_darkHighTarget)
    {
        return TargetBand{m_brightLowTarget, m_darkHighTarget};
    }
    return TargetBand{m_darkHighTarget, m_brightLowTarget};
}

FLOAT CHistogramTargetCalculator::LimitSafeTarget(TargetBand band) const
{
    FLOAT safe = m_refTarget;
    if (safe < band.lowTarget)
    {
        safe = band.lowTarget;
    }
    else if (safe > band.highTarget)
    {
        safe = band.highTarget;
    }
    // The minimum is applied last, so it wins over a maximum tuned below it.
    safe = std::min(safe, m_refTarget * m_tuningZone.maxTargetAdjRatio);
    safe = std::max(safe, m_refTarget * m_tuningZone.minTargetAdjRatio);
    return safe;
}
