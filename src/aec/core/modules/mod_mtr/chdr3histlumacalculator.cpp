// Three-exposure in-sensor HDR luma: the split histogram's mean, with the pixels it does not hold counted as
// saturated, and the lux index of that luma.
#include "aec/core/modules/mod_mtr/chdr3histlumacalculator.h"

#include <cmath>

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"

CHDR3HistLumaCalculator::CHDR3HistLumaCalculator(CStatsProcessor* pStatsProc)
    : IAECLumaCalculator(pStatsProc)
    , m_LuxIndex(0.0f)
    , m_hdr3FrameLuma(0.0f)
    , m_isLuxIndexInitialized(FALSE)
{
    Initialize();
}

VOID CHDR3HistLumaCalculator::Initialize()
{
    m_isLuxIndexInitialized = FALSE;
}

AecResult CHDR3HistLumaCalculator::calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    const MeteringTuningDataType* pTuning = pInput->pTuning;
    if ((0 == pInput->enableHDR3) || (1 == pTuning->extInsensorHDR.enableInsensorHDR) ||
        (nullptr == pTuning->pSensorHDR) || (0 == pTuning->pSensorHDR->LumaCalculationConfig))
    {
        return AecSuccess;
    }
    const StatsHDR3ExposureHistStats* pSplit = pInput->splitHist;
    if ((nullptr == pSplit) || (nullptr == pSplit->pHistData[0]) || (nullptr == m_pStatsProc))
    {
        AEC_LOG_ERROR("HDR3 split histogram missing: pHist = %p", static_cast<const void*>(pSplit));
        return AecError;
    }

    const HDR3HistProcInfo info  = m_pStatsProc->GetStatsProcessingResult()->GetHDR3HistProcInfo();
    const DOUBLE           w     = static_cast<DOUBLE>(info.histWeightUnit);
    const DOUBLE           total = static_cast<DOUBLE>(info.totalHistCount);
    DOUBLE                 count = 0.0;
    DOUBLE                 sum   = 0.0;
    for (UINT32 i = 0; i < pSplit->binCount; ++i)
    {
        const DOUBLE bin = static_cast<DOUBLE>(pSplit->pHistData[0][i]);
        count += bin;
        sum += (static_cast<DOUBLE>(i) * w + 1.0) * bin;
    }

    FLOAT luma = 0.0f;
    if (total < count)
    {
        AEC_LOG_WARN("bin_count is larger than total_hist_count! bin_count = %d, total_hist_count = %d",
                     static_cast<INT32>(count), static_cast<INT32>(total));
        luma = static_cast<FLOAT>(sum / count);
    }
    else if (total > 0.0)
    {
        // Pixels the histogram does not hold lie above its range: they count as saturated.
        luma = static_cast<FLOAT>((sum + (total - count) * 255.0) / total);
    }
    AEC_LOG_VERBOSE("bin_count = %d, Luma = %f", static_cast<INT32>(count), luma);

    m_hdr3FrameLuma        = luma / pInput->PrevDRCGainHDR3;
    pResult->hdr3Frameluma = m_hdr3FrameLuma;
    pResult->luxIndex      = CalculateLuxIndex(pInput);
    AEC_LOG_VERBOSE("3HDR_luma = %f, index = %f,LastFrameDRCgain = %f", m_hdr3FrameLuma, m_LuxIndex,
                    pInput->PrevDRCGainHDR3);
    return AecSuccess;
}

FLOAT CHDR3HistLumaCalculator::CalculateLuxIndex(const AECLumaCalcInput* pInput)
{
    const aecMetering::AECCoreMeteringType& rCore = *pInput->pTuning->pCore;
    const auto&                             rCalc = rCore.mtrLumaCalc.indexCalc;
    FLOAT idx = static_cast<FLOAT>(pInput->matchingExpIndices[0] +
                                   std::log10(50.0 / static_cast<DOUBLE>(m_hdr3FrameLuma)) * MeteringIndexPerDecade);
    if ((1 == rCalc.enableLuxIndexComp) && (nullptr != pInput->pArbitrationLimit))
    {
        // The quotient is the reverse of the Bayer-grid lux index's; both are kept as tuned.
        idx += static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(rCalc.refSensitivityForExpIndexZero) /
                                             static_cast<DOUBLE>(pInput->pArbitrationLimit->streamingExpTblSens)) *
                                  MeteringIndexPerDecade);
    }
    if ((TRUE == m_isLuxIndexInitialized) && (rCalc.luxIndexFilterFactor > 0.0f))
    {
        m_LuxIndex += rCalc.luxIndexFilterFactor * (idx - m_LuxIndex);
    }
    else
    {
        m_isLuxIndexInitialized = TRUE;
        m_LuxIndex              = idx;
    }
    return m_LuxIndex;
}
