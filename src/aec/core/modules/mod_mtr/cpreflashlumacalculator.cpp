// Preflash influence and LED-saturated regions against the LED-off backup of the flash estimator.
#include "aec/core/modules/mod_mtr/cpreflashlumacalculator.h"

#include <algorithm>
#include <cmath>

#include "aec/core/modules/mod_mtr/cflashsnapshotestimator.h"
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"

CFlashSnapshotEstimator* CPreflashLumaCalculator::s_pFlashEstimator = nullptr;
INT32                    CPreflashLumaCalculator::s_LEDOffDilatedBrightTable[LegacyRegionCount] = {};

CPreflashLumaCalculator::CPreflashLumaCalculator(CStatsProcessor* pStatsProc)
    : IAECLumaCalculator(pStatsProc)
{
}

VOID CPreflashLumaCalculator::Initialize()
{
    // The only state is class-level and belongs to the flash sequence, not to one calculator.
}

VOID CPreflashLumaCalculator::ComputePreflashIsBrightTable(const aecFlash::FlashStatsPreprocessingType* pTuning,
                                                           const ParsedLegacyYRegionType* pYStats,
                                                           CFlashSnapshotEstimator* pEstimator)
{
    s_pFlashEstimator = pEstimator;
    if ((nullptr == pTuning) || (nullptr == pYStats))
    {
        // Without the LED-off statistics nothing counts as bright beforehand.
        AEC_LOG_ERROR("preflash: no tuning %p or legacy Y statistics %p for the LED-off bright table",
                      static_cast<const VOID*>(pTuning), static_cast<const VOID*>(pYStats));
        std::fill(s_LEDOffDilatedBrightTable, s_LEDOffDilatedBrightTable + LegacyRegionCount, 0);
        return;
    }
    for (UINT32 i = 0; i < LegacyRegionCount; i++)
    {
        s_LEDOffDilatedBrightTable[i] =
            ((pYStats[i].Ysat > pTuning->thresBrightSat) && (pYStats[i].Yval > pTuning->thresBrightLevel)) ? 1 : 0;
    }
    CFlashSnapshotEstimator::UtilDilateBinaryMask(s_LEDOffDilatedBrightTable);
}

VOID CPreflashLumaCalculator::ReleaseFlashEstimator(const CFlashSnapshotEstimator* pEstimator)
{
    if (pEstimator == s_pFlashEstimator)
    {
        s_pFlashEstimator = nullptr;
    }
}

AecResult CPreflashLumaCalculator::calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == pInput->pTuning) ||
        (nullptr == pInput->pTuning->pFlash) || (nullptr == pInput->matchingExpIndices) || (nullptr == m_pStatsProc))
    {
        AEC_LOG_ERROR("preflash luma: missing input, flash tuning, matched exposure or statistics");
        return AecError;
    }
    if (nullptr == s_pFlashEstimator)
    {
        // No LED-off backup yet: the LED has gained nothing that could be measured.
        AEC_LOG_ERROR("preflash luma: no LED-off backup, influence 1 and no saturated regions");
        pResult->preflashInfluence = 1.0f;
        pResult->saturatedRegions  = 0;
        return AecError;
    }
    const CFlashSnapshotEstimator::FlashStatsBackup& off = s_pFlashEstimator->GetFlashData().statsOff;

    // Luma gained by the LED at equal exposure.
    const FLOAT equalExposureLuma =
        pResult->averageLuma * powf(1.03f, off.matchedFrameData.expIndices[0] - pInput->matchingExpIndices[0]);
    pResult->preflashInfluence = std::max((equalExposureLuma + 1e-7f) / (off.lumas.averageLuma + 1e-7f), 1.0f);

    const aecFlash::FlashStatsPreprocessingType& thres  = pInput->pTuning->pFlash->statsPreprocessing;
    const ParsedLegacyYRegionType*               pYStats = m_pStatsProc->GetStatsProcessingResult()->GetLegacyYRegionStats();
    UINT32                                       saturatedRegions = 0;
    for (UINT32 i = 0; i < LegacyRegionCount; i++)
    {
        const BOOL litBright = ((pYStats[i].Ysat > thres.thresBrightSat + thres.thresBrightSatDiff) ||
                                (pYStats[i].Yval > thres.thresBrightLevel + thres.thresBrightLevelDiff))
                                   ? TRUE
                                   : FALSE;
        // Only regions that the LED made bright count; those bright before the flash are the scene's own.
        if ((FALSE != litBright) && (0 == s_LEDOffDilatedBrightTable[i]))
        {
            saturatedRegions++;
        }
    }
    pResult->saturatedRegions = saturatedRegions;
    return AecSuccess;
}
