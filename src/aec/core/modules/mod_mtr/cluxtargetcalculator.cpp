// Lux target calculator: the plain safe target by lux index, raised where highlight clipping holds the frame back.
#include "aec/core/modules/mod_mtr/cluxtargetcalculator.h"

#include <algorithm>

#include "aec/core/base/ctuningtriggerhandler.h"
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"
#include "tuning_aecconvergence.h"
#include "tuning_aecir.h"
#include "tuning_aecmetering.h"

namespace
{
// A raised target stays clear of the clipping level.
constexpr FLOAT MaxNonLinearLuxTarget = 220.0f;
} // namespace

CLuxTargetCalculator::CLuxTargetCalculator(CStatsProcessor* pStatsProc)
    : IAECTargetCalculator(pStatsProc)
    , m_luxIndex(0.0f)
    , m_luxBasedSafeTarget(0.0f)
{
    initialize();
}

VOID CLuxTargetCalculator::initialize()
{
    m_luxIndex           = 0.0f;
    m_luxBasedSafeTarget = 0.0f;
}

AecResult CLuxTargetCalculator::calculateTarget(const AECTargetCalcInput* pInput, AECTargetCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == pInput->pLumaCalcResult) ||
        (nullptr == pInput->pTuning) || (nullptr == pInput->pTuning->pCore))
    {
        AEC_LOG_ERROR("lux target: missing input, result, lumas or tuning");
        return AecError;
    }
    const aecMetering::AECCoreMeteringType::mtrLumaTargetStruct::luxLumaTargetStruct& rLuxTarget =
        pInput->pTuning->pCore->mtrLumaTarget.luxLumaTarget;

    m_luxIndex                                        = pInput->pLumaCalcResult->luxIndex;
    aecglobalelements::LuxLumaTargetZoneDataType zone = {};
    if (VelaResultSuccess !=
        CTuningTriggerHandler::GetInterpZoneData(rLuxTarget.luxLumaTargetZone, &zone, m_luxIndex,
                                                 static_cast<INT32>(rLuxTarget.luxLumaTargetZoneCount)))
    {
        // Without a target the aggregation falls back to its fixed target.
        AEC_LOG_ERROR("lux target: no luma target zone for lux index %f", static_cast<double>(m_luxIndex));
        return AecError;
    }
    FLOAT target = zone.lumaTarget;

    if (1 == pInput->irModeActivated)
    {
        if ((nullptr != pInput->pIrTuning) && (nullptr != pInput->pIrTuning->pIrLinear))
        {
            target = pInput->pIrTuning->pIrLinear->luxLumaTargetForIR;
        }
        else
        {
            AEC_LOG_WARN("lux target: IR mode without IR tuning, keeping %f", static_cast<double>(target));
        }
    }

    m_luxBasedSafeTarget          = target;
    pResult->luxBasedSafeTarget   = target;
    pResult->luxBasedSimpleTarget = target;

    calculateNonLinearLuxTarget(pInput, pResult);
    return AecSuccess;
}

VOID CLuxTargetCalculator::calculateNonLinearLuxTarget(const AECTargetCalcInput* pInput, AECTargetCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == pInput->pLumaCalcResult) ||
        (nullptr == pInput->pTuning) || (nullptr == pInput->pTuning->pCore) || (nullptr == pInput->pEV) ||
        (nullptr == m_pStatsProc))
    {
        return;
    }
    const aecMetering::AECCoreMeteringType::mtrLumaTargetStruct::advancedTargetStruct::advLuxTgtStruct& rAdv =
        pInput->pTuning->pCore->mtrLumaTarget.advancedTarget.advLuxTgt;

    // Exposure compensation asks for a deliberately different brightness: no clipping correction then.
    if ((0 != pInput->pEV->EVUIVal) || (0 == rAdv.nonLinLuxTgt.enableNonLinearEstimate))
    {
        return;
    }

    // Scenes with many bright or dark regions have their own handling in convergence.
    const aecConvergence::FastConvType* pFast = pInput->pFast;
    if ((nullptr != pFast) && (1 == pFast->enableBrightDarkSpeedAdj) && (pFast->thresDarkExpIndexDelta <= 1.0f) &&
        (pFast->thresBrightExpIndexDelta <= 1.0f))
    {
        if ((pInput->ratioBright > pFast->thresBrightExpIndexDelta) ||
            (pInput->ratioDark > pFast->thresDarkExpIndexDelta))
        {
            return;
        }
    }

    IProcessedStats* pStats = m_pStatsProc->GetStatsProcessingResult();
    UINT8            chnl   = 0;
    switch (pStats->GetBHistProcInfo().useCase)
    {
        case BHistProcUseCase::Y:
            chnl = 0;
            break;
        case BHistProcUseCase::RGB:
            if (1 == rAdv.enableForYOnly)
            {
                return;
            }
            chnl = 1;
            break;
        case BHistProcUseCase::G:
            if (1 == rAdv.enableForYOnly)
            {
                return;
            }
            chnl = 0;
            break;
        default:
            return;
    }

    const FLOAT finalLuma = pInput->pLumaCalcResult->finalLuma;
    if (finalLuma <= 0.0f)
    {
        // No luma to compare with (the flash measurement luma may be 0): the linear gain is undefined.
        return;
    }
    const FLOAT t      = m_luxBasedSafeTarget / std::max(pInput->maxUnderexposure, 1.0f);
    const FLOAT linear = t / finalLuma;
    const FLOAT nl     = (linear > 1.0f) ? pStats->EstimateNonLinGain(finalLuma, t, MinMaxRangeFloat{0.0f, 1.0f}, chnl,
                                                                      &rAdv.nonLinLuxTgt)
                                         : -1.0f;
    if (!(nl > linear))
    {
        return;
    }

    const FLOAT r = nl / linear;
    const aecMetering::AECCoreMeteringType::mtrLumaTargetStruct::advancedTargetStruct::advLuxTgtStruct::
        suppressNonLinearLumaStruct&           rSuppress = rAdv.suppressNonLinearLuma;
    aecMetering::SuppressNonLinearZoneDataType zone      = {};
    if (VelaResultSuccess !=
        CTuningTriggerHandler::GetInterpZoneData(rSuppress.suppressNonLinearZone, &zone, r,
                                                 static_cast<INT32>(rSuppress.suppressNonLinearZoneCount)))
    {
        return;
    }

    const FLOAT raised          = std::max(zone.outputGain, 1.0f) * m_luxBasedSafeTarget;
    pResult->luxBasedSafeTarget = std::min(raised, MaxNonLinearLuxTarget);
    AEC_LOG_VERBOSE("MTR simple %.1f nonlin %.1f gain %.1f new %.1f final %.1f channel %d avg luma %.1f final luma "
                    "%.1f improvement %.1f%%",
                    static_cast<double>(linear), static_cast<double>(nl), static_cast<double>(zone.outputGain),
                    static_cast<double>(raised), static_cast<double>(pResult->luxBasedSafeTarget),
                    static_cast<INT32>(chnl), static_cast<double>(pInput->pLumaCalcResult->averageLuma),
                    static_cast<double>(finalLuma),
                    static_cast<double>((pResult->luxBasedSafeTarget / m_luxBasedSafeTarget - 1.0f) * 100.0f));
}
