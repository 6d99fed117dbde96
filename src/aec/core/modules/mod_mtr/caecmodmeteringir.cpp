// Metering module: per-region lumas and their mean for the IR control, which decides before metering runs.
#include <cstring>

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_mtr/caecmodmetering.h"
#include "platform/statslogger.h"
#include "tuning_aecshdr.h"

namespace
{
// Walks the whole grid in order; each region's luma goes through toLuma. Fails on a missing region.
template <typename TToLuma>
AecResult CollectRegionLumas(IProcessedStats* pStats, AECIRFrameProcInput* pInput, UINT32* pCount, TToLuma toLuma)
{
    BGStatsIterator iterator = pStats->GetBGStatsIterator(BGStatsIterationMode::Exhaustive);
    DOUBLE          sum      = 0.0;
    UINT32          count    = 0;
    while ((TRUE == iterator.HasNext()) && (count < AECMaxBGStatsRegions))
    {
        const ParsedBGRegionType* pRegion = iterator.Next();
        if (nullptr == pRegion)
        {
            AEC_LOG_ERROR("ERROR: Failed, curRgn is NULL");
            return AecError;
        }
        pInput->BGStats[count] = toLuma(pRegion->rgnLuma);
        sum += pInput->BGStats[count];
        count++;
    }
    pInput->CurAvgLuma = (count > 0) ? static_cast<FLOAT>(sum / count) : 0.0f;
    *pCount            = count;
    return AecSuccess;
}
} // namespace

AecResult CAECModMetering::ProcessFrameStatsForIR(AECIRFrameProcInput* pInput)
{
    if (AecSuccess != m_statsParser.ProcessStats(&pInput->stats, m_aecContext->getAWBState(), 1.0f))
    {
        const AECFrameHistory* pLast = m_aecContext->getFrameHistory(1);
        if (nullptr != pLast)
        {
            pInput->CurAvgLuma = pLast->luma;
            std::memcpy(pInput->BGStats, pLast->BGStats, sizeof(pInput->BGStats));
        }
        AEC_LOG_WARN("issue processing stats, copying previous frame luma %.1f", pInput->CurAvgLuma);
        return AecError;
    }

    IProcessedStats* pStats = m_statsParser.GetStatsProcessingResult();
    UINT32           count  = 0;
    if (0 == pInput->sHDROutput)
    {
        const AecResult result = CollectRegionLumas(pStats, pInput, &count, [](FLOAT luma) { return luma; });
        if (AecSuccess == result)
        {
            AEC_LOG_VERBOSE("Number of stats: %d, Cur avg luma: %f", static_cast<INT32>(count), pInput->CurAvgLuma);
        }
        return result;
    }

    // Staggered HDR: the statistics show the fused exposures; bring them back to the short one.
    const AECFrameHistory*        pFrame   = m_aecContext->getFrameHistory(m_aecContext->getPipelineDelay());
    const MeteringTuningDataType* pTuning  = m_aecContext->getMtrTuning();
    FLOAT                         expRatio = 1.0f;
    if (nullptr != pFrame)
    {
        expRatio = pFrame->expRatio;
    }
    else if ((nullptr != pTuning) && (nullptr != pTuning->pShdr))
    {
        expRatio = pTuning->pShdr->ExpRatioCapLow;
    }

    const AECAlgoOverrideSettingParam* pOverride = m_aecContext->getOverrideSetting();
    if ((nullptr != pOverride) && (SHDRAECMODEV2RAW2FRAME == pOverride->shdrmode))
    {
        // The inverse tone mapping of fused statistics comes with the staggered-HDR metering stage.
        AEC_LOG_ERROR("Tone-mapped SHDR statistics for IR are not supported in this build");
        return AecError;
    }

    // A long-exposure value at or below the fusion threshold is what the short exposure shows times the ratio.
    const FLOAT fusionThreshold =
        static_cast<FLOAT>(static_cast<UINT16>(pInput->shdrTuningParams.fusionLUMAThres2exp0 * 0.25));
    DOUBLE sum = 0.0;
    for (count = 0; count < AECMaxBGStatsRegions; ++count)
    {
        FLOAT       s = pStats->GetRawSHDRSEFBGstats(static_cast<UINT16>(count));
        const FLOAT l = pStats->GetRawSHDRLEFBGstats(static_cast<UINT16>(count));
        if ((-1.0f == s) || (-1.0f == l))
        {
            break;
        }
        if (fusionThreshold >= l)
        {
            s = l / expRatio;
        }
        pInput->BGStats[count] = s;
        sum += s;
    }
    pInput->CurAvgLuma = (count > 0) ? static_cast<FLOAT>(sum / count) : 0.0f;
    AEC_LOG_VERBOSE("Number of stats: %d, Cur avg luma: %f, expRatio: %f", static_cast<INT32>(count),
                    pInput->CurAvgLuma, expRatio);
    return AecSuccess;
}
