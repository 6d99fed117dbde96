// Histogram target calculator: the frame's run from lux target to safe, short and long target, and its debug record.
#include "aec/core/modules/mod_mtr/chistogramtargetcalculator.h"

#include <cmath>
#include <cstring>

#include "aec/core/base/ctuningtriggerhandler.h"
#include "aec/core/modules/mod_mtr/aecutilevoffset.h"
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"

namespace
{
// White-balance gains below this leave the compensated histogram meaningless.
constexpr FLOAT MinAWBGain = 0.1f;

// Defaults of the gain limits while the histogram extension is off.
constexpr FLOAT DefaultMaxDarkBoostGain = 1.5f;
constexpr FLOAT DefaultMaxDRCGain       = 16.0f;
constexpr FLOAT DefaultMaxADRCGainFace  = 6.0f;
} // namespace

CHistogramTargetCalculator::CHistogramTargetCalculator(CStatsProcessor* pStatsProc)
    : IAECTargetCalculator(pStatsProc)
    , m_pStats(nullptr)
    , m_luxIndex(0.0f)
    , m_refTarget(0.0f)
    , m_refLuma(0.0f)
    , m_numOfChannels(0)
    , m_satPushupMean{}
    , m_satPushdownMean{}
    , m_darkMean{}
    , m_satPushupMeanWB{}
    , m_satPushdownMeanWB{}
    , m_darkMeanWB{}
    , m_satPushupPos(0.0f)
    , m_satPushdownPos(0.0f)
    , m_darkPos(0.0f)
    , m_satPushupPosWB(0.0f)
    , m_satPushdownPosWB(0.0f)
    , m_darkPosWB(0.0f)
    , m_shortTargetCapRatio(0.0f)
    , m_longTargetCapRatio(0.0f)
    , m_histBasedSafeTarget(0.0f)
    , m_histBasedShortTarget(0.0f)
    , m_histBasedLongTarget(0.0f)
    , m_brightLowTarget(0.0f)
    , m_brightHighTarget(0.0f)
    , m_darkLowTarget(0.0f)
    , m_darkHighTarget(0.0f)
    , m_debugData{}
    , m_histTargetEnable(FALSE)
    , m_ADRCEnable(FALSE)
    , m_tuningZone{}
    , m_bIsFirstFrame(TRUE)
    , m_EV{}
    , m_realDRCGain(0.0f)
{
}

VOID CHistogramTargetCalculator::initialize()
{
    // All state is set at construction: the band filter and the EV freeze run for the life of the object.
}

CHistogramTargetCalculator::GainLimits CHistogramTargetCalculator::GetGainLimits(const MeteringTuningDataType* pTuning)
{
    const ParamExtHistogramCtrl& rExt = pTuning->extHistogram;
    if (1 == rExt.enableHist)
    {
        return GainLimits{rExt.maxDarkBoostGain, rExt.maxDRCGain, rExt.maxADRCGainFace,
                          (0 != rExt.useLegacyTargets) ? TRUE : FALSE};
    }
    return GainLimits{DefaultMaxDarkBoostGain, DefaultMaxDRCGain, DefaultMaxADRCGainFace, FALSE};
}

VOID CHistogramTargetCalculator::WriteTargets(AECTargetCalcResult* pResult) const
{
    pResult->histBasedSafeTarget  = m_histBasedSafeTarget;
    pResult->histBasedShortTarget = m_histBasedShortTarget;
    pResult->histBasedLongTarget  = m_histBasedLongTarget;
}

AecResult CHistogramTargetCalculator::calculateTarget(const AECTargetCalcInput* pInput, AECTargetCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == pInput->pLumaCalcResult) ||
        (nullptr == pInput->pTuning) || (nullptr == pInput->pTuning->pCore) || (nullptr == pInput->pAWBGains) ||
        (nullptr == pInput->pEV) || (nullptr == m_pStatsProc))
    {
        AEC_LOG_ERROR("hist target without input %p, result %p or statistics %p", static_cast<const void*>(pInput),
                      static_cast<const void*>(pResult), static_cast<const void*>(m_pStatsProc));
        return AecError;
    }

    // The three-exposure HDR target takes over.
    if (1 == pInput->enableHDR3)
    {
        return AecSuccess;
    }

    const AECLumaCalcResult*                pLuma       = pInput->pLumaCalcResult;
    const aecMetering::AECCoreMeteringType* pCore       = pInput->pTuning->pCore;
    const aecMetering::HistLumaTargetType*  pHistTuning = &pCore->mtrLumaTarget.histLumaTarget;

    // Until the histogram decides, all three targets are the lux target.
    m_histBasedSafeTarget  = pResult->luxBasedSafeTarget;
    m_histBasedShortTarget = pResult->luxBasedSafeTarget;
    m_histBasedLongTarget  = pResult->luxBasedSafeTarget;
    WriteTargets(pResult);
    m_histTargetEnable = pHistTuning->enableHistMetering;
    m_ADRCEnable       = pInput->enableADRC;
    if (0 == pHistTuning->enableHistMetering)
    {
        return AecSuccess;
    }

    const AECAlgoWhiteBalanceState* pWB = pInput->pAWBGains;
    if ((pWB->redGain < MinAWBGain) || (pWB->greenGain < MinAWBGain) || (pWB->blueGain < MinAWBGain))
    {
        AEC_LOG_WARN("cannot run hist target with such low WB gains: r %f g %f b %f", pWB->redGain, pWB->greenGain,
                     pWB->blueGain);
        return AecError;
    }

    m_pStats                     = m_pStatsProc->GetStatsProcessingResult();
    const BHistProcInfo histInfo = m_pStats->GetBHistProcInfo();
    m_numOfChannels              = histInfo.numOfChannels;
    if (BHistProcUseCase::Invalid == histInfo.useCase)
    {
        AEC_LOG_WARN("Invalid BHIST Usecase, Use default");
        return AecSuccess;
    }
    if (m_numOfChannels > 3)
    {
        // The zone tuning has three channel ranges; further channels have nothing to be measured against.
        AEC_LOG_WARN("hist target uses the first 3 of %d histogram channels", m_numOfChannels);
        m_numOfChannels = 3;
    }

    const FLOAT EVMultiplier =
        powf(1.03f, AECUtilGetEVOffset(pInput->pEV, &pCore->mtrLumaTarget.EVLumaTarget, pInput->pEV->EVUIVal));

    m_refTarget = pResult->luxBasedSafeTarget;
    if (aecglobalelements::Compensated == pHistTuning->EVHandling)
    {
        // The bands judge the scene against the EV-raised reference; the EV is taken back out at the end.
        if (m_refTarget > 0.0f)
        {
            m_refTarget *= EVMultiplier;
        }
        AEC_LOG_VERBOSE("Targets, Lux:%f EVMulti:%f Final:%f", pResult->luxBasedSafeTarget, EVMultiplier,
                        m_refTarget);
    }

    m_satPushupPos     = -1.0f;
    m_satPushdownPos   = -1.0f;
    m_darkPos          = -1.0f;
    m_satPushupPosWB   = -1.0f;
    m_satPushdownPosWB = -1.0f;
    m_darkPosWB        = -1.0f;
    m_refLuma          = pLuma->finalLuma;
    m_luxIndex         = pLuma->luxIndex;
    if (VelaResultSuccess !=
        CTuningTriggerHandler::GetInterpZoneData(pHistTuning->histLumaTargetZone, &m_tuningZone, m_luxIndex,
                                                 static_cast<INT32>(pHistTuning->histLumaTargetZoneCount)))
    {
        AEC_LOG_ERROR("hist target has no zone for lux index %f", m_luxIndex);
        return AecError;
    }

    if (pLuma->touchLuma > 0.0f)
    {
        adjustTuningParamByTouchROI(pInput, &m_tuningZone);
    }
    else if (pLuma->faceLuma > 0.0f)
    {
        adjustTuningParamByFaceROI(pInput, &m_tuningZone);
    }
    AEC_LOG_VERBOSE("zoneParam: lux %f, targetCap (%f %f), DarkRef (%f, %f), BrightRef(%f, %f)", m_luxIndex,
                    m_tuningZone.minTargetAdjRatio, m_tuningZone.maxTargetAdjRatio, m_tuningZone.darkRefLow,
                    m_tuningZone.darkRefHigh, m_tuningZone.satRefLow, m_tuningZone.satRefHigh);

    const DecidingChannels chnl = CalculateRangeMeans();

    FLOAT brightLow  = 0.0f;
    FLOAT brightHigh = 0.0f;
    FLOAT darkLow    = 0.0f;
    FLOAT darkHigh   = 0.0f;
    if (FALSE == CalculateRawTargets(pHistTuning, &pCore->mtrLumaTarget.advancedTarget.advHistTgt.nonLinHistTgt, chnl,
                                     &brightLow, &brightHigh, &darkLow, &darkHigh))
    {
        return AecError;
    }

    const BOOL       bIsTargetSwap = FilterBands(pHistTuning->targetFilterFactor, brightLow, brightHigh, darkLow,
                                                 darkHigh);
    const TargetBand band          = SelectBand();
    const FLOAT      safe          = LimitSafeTarget(band);

    m_histBasedSafeTarget  = safe;
    m_histBasedShortTarget = safe;
    m_histBasedLongTarget  = safe;
    AEC_LOG_VERBOSE("Mean Position with WB: Dark (%f, %f, %f), SatPushUp (%f, %f, %f), SatPushDown(%f, %f, %f)",
                    m_darkMeanWB[0], m_darkMeanWB[1], m_darkMeanWB[2], m_satPushupMeanWB[0], m_satPushupMeanWB[1],
                    m_satPushupMeanWB[2], m_satPushdownMeanWB[0], m_satPushdownMeanWB[1], m_satPushdownMeanWB[2]);
    AEC_LOG_VERBOSE("Target: refluma %f, Dark (%f, %f), Bright (%f, %f), Ref %f -> Final %f", m_refLuma,
                    m_darkLowTarget, m_darkHighTarget, m_brightLowTarget, m_brightHighTarget, m_refTarget, safe);

    const GainLimits limits = GetGainLimits(pInput->pTuning);
    if (1 == m_ADRCEnable)
    {
        CalculateADRCTargets(pInput, band, bIsTargetSwap, limits);
    }

    WriteTargets(pResult);
    pResult->realDRCGain = m_realDRCGain;

    HandleEVCompensation(EVMultiplier, pResult, pHistTuning->EVHandling, pInput->pEV);
    m_histBasedSafeTarget  = pResult->histBasedSafeTarget;
    m_histBasedShortTarget = pResult->histBasedShortTarget;
    m_histBasedLongTarget  = pResult->histBasedLongTarget;

    m_bIsFirstFrame = FALSE;

    // What the targets finally carry: ADRC gain between short and safe, dark boost between safe and long.
    const FLOAT shortTarget = m_histBasedShortTarget;
    const FLOAT safeTarget  = m_histBasedSafeTarget;
    const FLOAT longTarget  = m_histBasedLongTarget;
    m_shortTargetCapRatio   = (shortTarget > 0.0f) ? (safeTarget / shortTarget) : 1.0f;
    m_longTargetCapRatio    = (safeTarget > 0.0f) ? (longTarget / safeTarget) : 1.0f;
    AEC_LOG_VERBOSE("ADRC_enable=%d DarkBoost_enable=%d, (Short,Safe,Long)=(%f,%f,%f) drc gain= %f, darkboost gain= "
                    "%f, total DRC= %f, maxDRCgain (adrc)= %f maxDarkBoostgain= %f ref_luma %f lux %f refTarget %f "
                    "target_swap=%d real drc gain = %f",
                    m_ADRCEnable, pHistTuning->enableDarkBoost, shortTarget, safeTarget, longTarget,
                    m_shortTargetCapRatio, m_longTargetCapRatio, m_shortTargetCapRatio * m_longTargetCapRatio,
                    m_tuningZone.maxDRCGain, limits.maxDarkBoostGain, m_refLuma, m_luxIndex, m_refTarget,
                    bIsTargetSwap, m_realDRCGain);
    return AecSuccess;
}

VOID CHistogramTargetCalculator::FillDebugData(AECDebugData* pDebugData)
{
    if (nullptr != pDebugData)
    {
        pDebugData->histogramInfo = m_debugData;
    }
}

VOID CHistogramTargetCalculator::UpdateDebugData()
{
    m_debugData.bHistTargetEnable = static_cast<UINT8>(m_histTargetEnable);
    m_debugData.bADRCEnable       = static_cast<UINT8>(m_ADRCEnable);
    m_debugData.refLuma           = m_refLuma;
    m_debugData.refTarget         = m_refTarget;
    m_debugData.numOfChannels     = static_cast<FLOAT>(m_numOfChannels);
    // Three channel means, then the mean of the channel that decided.
    for (UINT32 c = 0; c < 3; ++c)
    {
        m_debugData.satPushUpMeans[c]   = m_satPushupMean[c];
        m_debugData.satPushDownMeans[c] = m_satPushdownMean[c];
        m_debugData.darkMeans[c]        = m_darkMean[c];
    }
    m_debugData.satPushUpMeans[3]         = m_satPushupPos;
    m_debugData.satPushDownMeans[3]       = m_satPushdownPos;
    m_debugData.darkMeans[3]              = m_darkPos;
    m_debugData.satRefs[0]                = m_tuningZone.satRefLow;
    m_debugData.satRefs[1]                = m_tuningZone.satRefHigh;
    m_debugData.darkRefs[0]               = m_tuningZone.darkRefLow;
    m_debugData.darkRefs[1]               = m_tuningZone.darkRefHigh;
    m_debugData.safeTargetAdjustRatios[0] = m_tuningZone.minTargetAdjRatio;
    m_debugData.safeTargetAdjustRatios[1] = m_tuningZone.maxTargetAdjRatio;
    m_debugData.maxDRCGain                = m_tuningZone.maxDRCGain;
    m_debugData.adjustedTargets[AECAlgoExposureShort] = m_histBasedShortTarget;
    m_debugData.adjustedTargets[AECAlgoExposureLong]  = m_histBasedLongTarget;
    m_debugData.adjustedTargets[AECAlgoExposureSafe]  = m_histBasedSafeTarget;
    m_debugData.brightLow                 = m_brightLowTarget;
    m_debugData.brightHigh                = m_brightHighTarget;
    m_debugData.darkLow                   = m_darkLowTarget;
    m_debugData.darkHigh                  = m_darkHighTarget;
}
