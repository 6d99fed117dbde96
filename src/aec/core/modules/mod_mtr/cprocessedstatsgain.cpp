// Gain estimate of the processed statistics view when the histogram clips: clipped range mean and secant search.
#include <cmath>

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"

namespace
{
constexpr FLOAT FullScale = 256.0f;

FLOAT ErrorPct(FLOAT target, FLOAT luma)
{
    return std::fabs(target - luma) * 100.0f / target;
}
} // namespace

FLOAT CStatsProcessor::CProcessedStats::CalculateNonLinearHistLuma(MinMaxRangeFloat pctlRange, FLOAT lumaThreshold,
                                                                   UINT8 chnl) const
{
    // An empty range or a non-positive threshold has no mean; the division would give NaN or infinity.
    if (!(pctlRange.max > pctlRange.min) || !(lumaThreshold > 0.0f))
    {
        AEC_LOG_WARN("Invalid clipped luma query: range (%f, %f) threshold %f", static_cast<double>(pctlRange.min),
                     static_cast<double>(pctlRange.max), static_cast<double>(lumaThreshold));
        return -1.0f;
    }
    FLOAT pctlThres = GetBHistValue2Percentile(chnl, lumaThreshold);
    pctlThres       = (pctlThres < pctlRange.min) ? pctlRange.min : pctlThres;
    pctlThres       = (pctlThres > pctlRange.max) ? pctlRange.max : pctlThres;
    const FLOAT gain = FullScale / lumaThreshold;
    // With pctlThres at the range's start the mean query fails, but then the linear part has no weight.
    const FLOAT linearMean = gain * GetBHistAvgForPctRange(chnl, pctlRange.min, pctlThres, TRUE);
    return (linearMean * (pctlThres - pctlRange.min) + FullScale * (pctlRange.max - pctlThres)) /
           (pctlRange.max - pctlRange.min);
}

FLOAT CStatsProcessor::CProcessedStats::SearchHistLumaGain(MinMaxRangeFloat lumaThresRange, MinMaxRangeFloat pctlRange,
                                                           UINT8 chnl, FLOAT target,
                                                           const aecMetering::NonLinearEstimateType* pTuning) const
{
    FLOAT prevGain = 1.0f;
    FLOAT prevLuma = CalculateNonLinearHistLuma(pctlRange, FullScale, chnl);
    FLOAT maxThres = (lumaThresRange.max < FullScale) ? lumaThresRange.max : FullScale;
    FLOAT currGain = FullScale / maxThres;
    currGain       = (currGain > 1.03f) ? currGain : 1.03f;
    FLOAT currLuma = CalculateNonLinearHistLuma(pctlRange, FullScale / currGain, chnl);
    if (nullptr == pTuning)
    {
        AEC_LOG_WARN("No non-linear estimate tuning, using the first guess");
        return currGain;
    }
    if (ErrorPct(target, currLuma) <= pTuning->errPct)
    {
        return currGain;
    }
    for (INT32 iteration = 0;; iteration++)
    {
        // Equal gains would make the slope a division by zero; equal lumas a flat slope.
        if ((std::fabs(currLuma - prevLuma) < 1e-7f) || (iteration >= pTuning->maxIterations) ||
            (currGain == prevGain))
        {
            return currGain;
        }
        const FLOAT slope = (currLuma - prevLuma) / (currGain - prevGain);
        const FLOAT g     = (target - currLuma) / slope + currGain;
        if (!(g > 0.0f))
        {
            // A non-positive gain has no threshold; keep the best gain found so far.
            AEC_LOG_WARN("Secant step left the positive gains (%f)", static_cast<double>(g));
            return currGain;
        }
        const FLOAT thres   = FullScale / g;
        const FLOAT newGain = FullScale / thres;
        const FLOAT newLuma = CalculateNonLinearHistLuma(pctlRange, thres, chnl);
        prevGain            = currGain;
        prevLuma            = currLuma;
        if (ErrorPct(target, newLuma) <= pTuning->errPct)
        {
            return newGain;
        }
        currGain = newGain;
        currLuma = newLuma;
    }
}

FLOAT CStatsProcessor::CProcessedStats::EstimateNonLinGain(FLOAT lumaAverage, FLOAT target, MinMaxRangeFloat pctlRange,
                                                           UINT8 chnl,
                                                           const aecMetering::NonLinearEstimateType* pTuning) const
{
    // Frame lumas are at least 0.1, which also keeps the linear gain finite.
    const FLOAT linearGain = target / ((lumaAverage > 0.1f) ? lumaAverage : 0.1f);
    MinMaxRangeFloat lumaThresRange;
    lumaThresRange.min = GetBHistPercentile2Value(chnl, pctlRange.min);
    lumaThresRange.max = GetBHistPercentile2Value(chnl, pctlRange.max);
    lumaThresRange.min = (lumaThresRange.min < FullScale) ? lumaThresRange.min : FullScale;
    lumaThresRange.max = (lumaThresRange.max < FullScale) ? lumaThresRange.max : FullScale;
    if ((lumaThresRange.min < 0.0f) || (lumaThresRange.max < 0.0f))
    {
        AEC_LOG_WARN("warning umaThresRange.min %f lumaThresRange.max %f", static_cast<double>(lumaThresRange.min),
                     static_cast<double>(lumaThresRange.max));
        return linearGain;
    }
    const FLOAT maxLinearLuma = CalculateNonLinearHistLuma(pctlRange, lumaThresRange.max, chnl);
    if (target <= maxLinearLuma)
    {
        return linearGain;
    }
    return SearchHistLumaGain(lumaThresRange, pctlRange, chnl, target, pTuning);
}
