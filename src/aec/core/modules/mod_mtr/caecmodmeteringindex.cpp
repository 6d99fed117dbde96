// Metering module: the short, long and safe target exposure indices from the final luma and the targets.
#include <cmath>

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_mtr/caecmodmetering.h"
#include "platform/statslogger.h"
#include "tuning_aecflash.h"
#include "tuning_aecmetering.h"

namespace
{
// Share of the 256 legacy regions that one region is.
constexpr FLOAT LegacyRegionShare = 0.00390625f;
// Floor of a luma that divides a target: frame-type lumas never go below it.
constexpr FLOAT MinLuma = 0.1f;
// Range used when the anti-banding trigger range is not positive.
constexpr FLOAT DefaultAntibandingRange = 10.0f;

// The index at which an exposure at index base meets the luma ratio: base + log10(ratio) * K.
FLOAT IndexOfRatio(FLOAT base, FLOAT ratio)
{
    return static_cast<FLOAT>(base + std::log10(static_cast<DOUBLE>(ratio)) * MeteringIndexPerDecade);
}
} // namespace

FLOAT CAECModMetering::PreflashTargetIndex(const AECLumaCalcResult* pLuma, const AECTargetCalcResult* pTarget,
                                           const AECFrameHistory* pMatched, const AECFrameHistory* pLast) const
{
    const aecFlash::FlashMeteringType* pFlash = m_aecContext->getMtrTuning()->pFlash;
    FLOAT                              idx    = pLast->expIndices[2];
    if ((nullptr == pFlash) || (0 == pLuma->saturatedRegions))
    {
        return idx;
    }
    const auto& rPre = pFlash->statsPreprocessing;
    if (!(pLuma->frameLuma >= rPre.minLuma) || !(pLuma->frameLuma > 0.0f))
    {
        return idx;
    }

    // The LED lit regions up to saturation: aim lower, the more so the more regions it saturated.
    FLOAT adj = rPre.minLumaAdj;
    if (1 == rPre.minLumaAdjDynamic.enableDynamicMinAdj)
    {
        const auto& rDyn  = rPre.minLumaAdjDynamic;
        const FLOAT perc  = static_cast<FLOAT>(pLuma->saturatedRegions) * LegacyRegionShare;
        const FLOAT start = rDyn.percThresh.start;
        const FLOAT end   = rDyn.percThresh.end;
        FLOAT       w     = 0.0f;
        if (start >= perc)
        {
            w = 0.0f;
        }
        else if (end < perc)
        {
            w = 1.0f;
        }
        else if (std::fabs(start - end) < 1e-7f)
        {
            w = 0.0f;
        }
        else
        {
            w = (perc - start) / (end - start);
        }
        adj = rPre.minLumaAdj + w * (rDyn.minLumaAdjEnd - rPre.minLumaAdj);
        AEC_LOG_VERBOSE("Threshold: minLumaAdj(Start:%0.2f End:%0.2f) sat(Start:%0.2f End:%0.2f)", rPre.minLumaAdj,
                        rDyn.minLumaAdjEnd, start, end);
        AEC_LOG_VERBOSE("Luma:%0.1f SafeTar:%0.1f curSatRegionPerc:%0.2f weight:%0.2f minLumaAdjFinal:%0.2f",
                        pLuma->frameLuma, pTarget->luxBasedSafeTarget, perc, w, adj);
    }
    const FLOAT t = std::fmax(std::fmin(pTarget->luxBasedSafeTarget, adj * pLuma->frameLuma), rPre.minLuma);
    idx           = IndexOfRatio(pMatched->expIndices[0], t / pLuma->frameLuma);
    return idx;
}

VOID CAECModMetering::AdjustShortIndexForAntibanding(FLOAT* pIdx)
{
    // Anti-banding outranks the ADRC gap between short and safe exposure.
    const aecMetering::HistLumaTargetType& rHist =
        m_aecContext->getMtrTuning()->pCore->mtrLumaTarget.histLumaTarget;
    const StatisticsAntibanding flicker = m_aecContext->getFlickerCompMode();
    const ModArbitrationContext* pLimit = m_aecContext->getExposureLimitation();
    if ((0 == rHist.enableAntiBandingPrioOverADRC) || (nullptr == pLimit) ||
        ((StatisticsAntibanding50Hz != flicker) && (StatisticsAntibanding60Hz != flicker)))
    {
        return;
    }
    const FLOAT L = pLimit->streamingMinExpIndexForATB;
    const FLOAT R = rHist.antiBandingPrioTriggerRange;
    if ((pIdx[2] < L) && (L < pIdx[2] + R))
    {
        pIdx[0] += (pIdx[2] - pIdx[0]) * (1.0f - (L - pIdx[2]) / ((R > 0.0f) ? R : DefaultAntibandingRange));
    }
    if ((pIdx[2] >= L) && (pIdx[0] < L))
    {
        pIdx[0] = L;
    }
}

AecResult CAECModMetering::EstimateTargetExposureIndex(const AECLumaCalcResult* pLuma,
                                                       const AECTargetCalcResult* pTarget, FLOAT* pIdx)
{
    const AECFrameHistory* pMatched = m_aecContext->getFrameHistory(m_aecContext->getPipelineDelay());
    const AECFrameHistory* pLast    = m_aecContext->getFrameHistory(1);
    if ((nullptr == pMatched) || (nullptr == pLast))
    {
        AEC_LOG_ERROR("ERROR: Failed to look up history");
        return AecError;
    }

    // A flash measurement window may report a luma of 0; an index must stay finite.
    const FLOAT finalLuma = std::fmax(pLuma->finalLuma, MinLuma);
    if (AECAlgoOperationModePreflash == m_aecContext->getOperationMode())
    {
        const FLOAT idx = PreflashTargetIndex(pLuma, pTarget, pMatched, pLast);
        pIdx[0]         = idx;
        pIdx[1]         = idx;
        pIdx[2]         = idx;
    }
    else if (pTarget->shdrBasedTarget[2] > 0.0f)
    {
        pIdx[0] = IndexOfRatio(pMatched->expIndices[0], pTarget->shortTarget / finalLuma);
        pIdx[1] = pMatched->expIndices[1];
        pIdx[2] = pMatched->expIndices[2];
    }
    else
    {
        // Every index starts from the short index of the matched frame: that is the exposure the statistics show.
        pIdx[0] = IndexOfRatio(pMatched->expIndices[0], pTarget->shortTarget / finalLuma);
        pIdx[1] = IndexOfRatio(pMatched->expIndices[0], pTarget->longTarget / finalLuma);
        pIdx[2] = IndexOfRatio(pMatched->expIndices[0], pTarget->safeTarget / finalLuma);
        AdjustShortIndexForAntibanding(pIdx);
    }

    AEC_LOG_VERBOSE("latency,%d,old,safe,%.3f,short,%.3f,long,%.3f,targets,safe,%.3f,short,%.3f,long,%.3f",
                    static_cast<INT32>(m_aecContext->getPipelineDelay()), pMatched->expIndices[2],
                    pMatched->expIndices[0], pMatched->expIndices[1], pIdx[2], pIdx[0], pIdx[1]);
    return AecSuccess;
}
