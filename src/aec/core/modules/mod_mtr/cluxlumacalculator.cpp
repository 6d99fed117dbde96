// Lux luma calculator: the frame's average luma and the filtered lux index, first of every luma list.
#include "aec/core/modules/mod_mtr/cluxlumacalculator.h"

#include <algorithm>
#include <cmath>

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"
#include "tuning_aecmetering.h"
#include "tuning_aecsensorconfig.h"

namespace
{
// Luma that the lux index refers to, and the largest compensation ratio that scales it.
constexpr FLOAT LuxReferenceLuma     = 50.0f;
constexpr FLOAT MaxCompensationRatio = 256.0f;
constexpr FLOAT MinAverageLuma       = 0.1f;
} // namespace

CLuxLumaCalculator::CLuxLumaCalculator(CStatsProcessor* pStatsProc, StatsAlgoRole role)
    : IAECLumaCalculator(pStatsProc)
    , m_LuxIndex(0.0f)
    , m_isLuxIndexInitialized(FALSE)
    , m_role(role)
{
    Initialize();
}

VOID CLuxLumaCalculator::Initialize()
{
    m_isLuxIndexInitialized = FALSE;
}

FLOAT CLuxLumaCalculator::CalculateAverageLuma()
{
    INT                            size = 0;
    const ParsedLegacyYRegionType* pY   = m_pStatsProc->GetStatsProcessingResult()->GetLegacyYRegionStats(size);

    FLOAT sum = 0.0f;
    for (INT i = 0; i < size; ++i)
    {
        sum += pY[i].Yval;
    }
    // An empty grid has no mean; it counts as the darkest frame luma.
    const FLOAT average = (size > 0) ? (sum / static_cast<FLOAT>(size)) : 0.0f;
    return std::max(average, MinAverageLuma);
}

AecResult CLuxLumaCalculator::calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == pInput->pTuning) ||
        (nullptr == pInput->pTuning->pCore) || (nullptr == m_pStatsProc))
    {
        AEC_LOG_ERROR("lux luma: missing input, result, tuning or statistics");
        return AecError;
    }

    const FLOAT averageLuma = CalculateAverageLuma();
    pResult->averageLuma    = averageLuma;

    // Sensor HDR with the split histogram as luma source: the HDR3 histogram calculator gives the lux index.
    const aecSensorConfig::AECSensorHDRConfig* pSensorHDR = pInput->pTuning->pSensorHDR;
    if ((TRUE == pInput->enableHDR3) && (nullptr != pSensorHDR) &&
        (aecSensorConfig::LumaCalculationTypeGridPrio != pSensorHDR->LumaCalculationConfig))
    {
        return AecSuccess;
    }

    pResult->luxIndex = CalculateLuxIndex(pInput, averageLuma);
    return AecSuccess;
}

FLOAT CLuxLumaCalculator::CalculateLuxIndex(const AECLumaCalcInput* pInput, FLOAT avgLuma)
{
    if ((nullptr == pInput) || (nullptr == pInput->matchingExpIndices) || (nullptr == pInput->pTuning) ||
        (nullptr == pInput->pTuning->pCore))
    {
        AEC_LOG_ERROR("lux index: missing exposure indices or tuning, keeping %f", static_cast<double>(m_LuxIndex));
        return m_LuxIndex;
    }
    const aecMetering::AECCoreMeteringType::mtrLumaCalcStruct::indexCalcStruct& rIndexCalc =
        pInput->pTuning->pCore->mtrLumaCalc.indexCalc;

    // Exposure compensation raises the luma the scene is metered against.
    FLOAT ref = LuxReferenceLuma;
    if (pInput->compensationRatio > 1.0f)
    {
        ref = LuxReferenceLuma * std::min(pInput->compensationRatio, MaxCompensationRatio);
    }
    const FLOAT luma = std::max(avgLuma, MinAverageLuma);
    FLOAT       idx  = pInput->matchingExpIndices[0] +
                static_cast<FLOAT>(std::log10(static_cast<double>(ref / luma)) * MeteringIndexPerDecade);

    if (TRUE == rIndexCalc.enableLuxIndexComp)
    {
        // The index is tuned for one sensor's table; another table's sensitivity shifts it.
        const FLOAT sens =
            (nullptr != pInput->pArbitrationLimit) ? pInput->pArbitrationLimit->streamingExpTblSens : 0.0f;
        const FLOAT refSens = rIndexCalc.refSensitivityForExpIndexZero;
        if ((sens > 0.0f) && (refSens > 0.0f))
        {
            const double offset = std::log10(static_cast<double>(sens / refSens)) * MeteringIndexPerDecade;
            idx                 = static_cast<FLOAT>(static_cast<double>(idx) + offset);
            AEC_LOG_VERBOSE("Index Compensation sens: %f > %f, offset %f new index %f", static_cast<double>(sens),
                            static_cast<double>(refSens), offset, static_cast<double>(idx));
        }
        else
        {
            // A logarithm of a non-positive ratio would turn the filtered index into NaN for good.
            AEC_LOG_WARN("lux index compensation skipped: sensitivity %f reference %f", static_cast<double>(sens),
                         static_cast<double>(refSens));
        }
    }

    idx = std::max(idx, 0.0f);

    if (TRUE == pInput->bSlaveToMasterSwitch)
    {
        AEC_LOG_INFO("Slave to master. Initialize lux:%f", static_cast<double>(idx));
        m_LuxIndex = idx;
    }

    const FLOAT filterFactor = rIndexCalc.luxIndexFilterFactor;
    if ((TRUE == m_isLuxIndexInitialized) && (filterFactor > 0.0f))
    {
        m_LuxIndex += filterFactor * (idx - m_LuxIndex);
    }
    else
    {
        m_isLuxIndexInitialized = TRUE;
        m_LuxIndex              = idx;
    }
    return m_LuxIndex;
}
