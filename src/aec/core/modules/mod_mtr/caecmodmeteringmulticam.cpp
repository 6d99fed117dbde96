// Metering module: lumas and targets mixed with the peer camera's, for metering mix and dynamic exposure.
#include <cmath>

#include "aec/core/base/ctuningtriggerhandler.h"
#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_mtr/caecmodmetering.h"
#include "platform/statslogger.h"
#include "tuning_aecsync.h"

namespace
{
// peer + weight * (own - peer): the weight is the own share.
inline FLOAT MixWithPeer(FLOAT own, FLOAT peer, FLOAT weight)
{
    return peer + weight * (own - peer);
}

// Weights outside [0, 1) leave the values unmixed.
inline BOOL IsMixingWeight(FLOAT weight)
{
    return ((weight >= 0.0f) && (weight < 1.0f)) ? TRUE : FALSE;
}
} // namespace

VOID CAECModMetering::HandleMultiCamMtrMixAndExpDynamic(AECTargetCalcResult* pTarget, AECLumaCalcResult* pLuma)
{
    if (nullptr == m_aecContext->getPeerInfo())
    {
        return;
    }
    if (AECAlgoMeteringMix == m_aecContext->getMeteringType())
    {
        MultiCamMtrMixCalc(pTarget, pLuma);
    }
    else if (AECAlgoExposureDynamic == m_aecContext->getExposureType())
    {
        MultiCamExpDynamicCalc(pTarget);
    }
}

VOID CAECModMetering::MultiCamMtrMixCalc(AECTargetCalcResult* pTarget, AECLumaCalcResult* pLuma)
{
    const AECMultiCamMtrInfo&            rPeer = m_aecContext->getPeerInfo()->meteringInfo;
    const aecSync::AECMeteringMixConfigType* pMix = m_aecContext->getMtrTuning()->pMtrMixConfig;
    if (nullptr == pMix)
    {
        AEC_LOG_ERROR("Metering mix tuning is NULL");
        return;
    }

    const FLOAT wl = pMix->staticMixingConfig.lumaMixingWeight;
    if (TRUE == IsMixingWeight(wl))
    {
        const FLOAT own     = pLuma->finalLuma;
        pLuma->averageLuma = MixWithPeer(pLuma->averageLuma, rPeer.averageLuma, wl);
        pLuma->finalLuma   = MixWithPeer(pLuma->finalLuma, rPeer.currentLuma, wl);
        AEC_LOG_VERBOSE("Luma: Current:%.3f, Other:%.3f, FinalOut:%.3f, Weight: %.3f", own, rPeer.currentLuma,
                        pLuma->finalLuma, wl);
    }

    const FLOAT wt = pMix->staticMixingConfig.targetMixingWeight;
    if (TRUE == IsMixingWeight(wt))
    {
        const FLOAT safe     = pTarget->safeTarget;
        const FLOAT shortT   = pTarget->shortTarget;
        const FLOAT longT    = pTarget->longTarget;
        pTarget->shortTarget = MixWithPeer(shortT, rPeer.lumaTargets[AECAlgoExposureShort], wt);
        pTarget->safeTarget  = MixWithPeer(safe, rPeer.lumaTargets[AECAlgoExposureSafe], wt);
        pTarget->longTarget  = MixWithPeer(longT, rPeer.lumaTargets[AECAlgoExposureLong], wt);
        AEC_LOG_VERBOSE("Target: (Safe, Short, Long) Current (%.3f, %.3f, %.3f) Other (%.3f %.3f %.3f)Final (%.3f "
                        "%.3f %.3f) weight %.3f",
                        safe, shortT, longT, rPeer.lumaTargets[AECAlgoExposureSafe],
                        rPeer.lumaTargets[AECAlgoExposureShort], rPeer.lumaTargets[AECAlgoExposureLong],
                        pTarget->safeTarget, pTarget->shortTarget, pTarget->longTarget, wt);
    }
}

VOID CAECModMetering::MultiCamExpDynamicCalc(AECTargetCalcResult* pTarget)
{
    const AECMultiCamMtrInfo&                rPeer = m_aecContext->getPeerInfo()->meteringInfo;
    const aecSync::AECMeteringMixConfigType* pMix  = m_aecContext->getMtrTuning()->pMtrMixConfig;
    if (nullptr == pMix)
    {
        AEC_LOG_ERROR("Metering mix tuning is NULL");
        return;
    }
    const FLOAT diff = std::fabs(rPeer.lumaTargets[AECAlgoExposureSafe] - pTarget->safeTarget);
    aecSync::DynamicMixingZoneDataType zone;
    zone.weight = 1.0f;
    if (VelaResultSuccess != CTuningTriggerHandler::GetInterpZoneData(pMix->dynamicMixingConfig, &zone, diff,
                                                                      static_cast<INT32>(pMix->dynamicMixingConfigCount)))
    {
        // Without zones the own targets stand (own share 1).
        AEC_LOG_WARN("Dynamic mixing zones missing: own targets kept");
    }
    const FLOAT w      = zone.weight;
    const FLOAT safe   = pTarget->safeTarget;
    const FLOAT shortT = pTarget->shortTarget;
    const FLOAT longT  = pTarget->longTarget;
    pTarget->safeTarget  = MixWithPeer(safe, rPeer.lumaTargets[AECAlgoExposureSafe], w);
    pTarget->shortTarget = MixWithPeer(shortT, rPeer.lumaTargets[AECAlgoExposureShort], w);
    pTarget->longTarget  = MixWithPeer(longT, rPeer.lumaTargets[AECAlgoExposureLong], w);
    AEC_LOG_VERBOSE("Interpolation used %d (Safe, Short,Long)Current target (%.3f, %.3f %.3f), Other target (%.3f "
                    "%.3f %.3f)targetDiff %.3f, Final (%.3f, %.3f, %.3f)Weight:%.3f",
                    1, safe, shortT, longT, rPeer.lumaTargets[AECAlgoExposureSafe],
                    rPeer.lumaTargets[AECAlgoExposureShort], rPeer.lumaTargets[AECAlgoExposureLong], diff,
                    pTarget->safeTarget, pTarget->shortTarget, pTarget->longTarget, w);
}
