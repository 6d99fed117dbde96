// Arbitration module multi-camera sync: publishing own sensitivity, mapping the peer's into targets, time match.
#include <cmath>

#include "aec/core/base/ctuningtriggerhandler.h"
#include "aec/core/modules/mod_arb/caecmodarbitration.h"
#include "platform/statslogger.h"

namespace
{
// Exposure sync tuning, null before the tuning header arrives or when the tuning has none.
const aecSync::AECExposureSyncConfigType* SyncTuningOf(const ArbitrationTuningDataType* pTuning)
{
    return (nullptr != pTuning) ? pTuning->pExpSyncConfig : nullptr;
}

// This camera's reference sensitivity at luxIndex; FALSE when the tuning has no usable reference.
BOOL LookUpRefAbsSensitivity(const aecSync::AECExposureSyncConfigType& rSync, FLOAT luxIndex, FLOAT* pRef)
{
    FLOAT           ref    = 0.0F;
    const KDKResult result = CTuningTriggerHandler::GetInterpZoneData(
        rSync.refAbsSensitivity, &ref, luxIndex, static_cast<INT32>(rSync.refAbsSensitivityCount));
    if ((VelaResultSuccess != result) || !(ref > 0.0F))
    {
        AEC_LOG_ERROR("no reference sensitivity for lux index %f (count %u, value %f)", luxIndex,
                      rSync.refAbsSensitivityCount, ref);
        return FALSE;
    }
    *pRef = ref;
    return TRUE;
}
} // namespace

AecResult CAECModArbitration::ComputeTargetIndexInMultiCam(FLOAT luxIndex, FLOAT* pTargetIndices)
{
    const AECMultiCamInfo* pPeer = m_aecContext->getPeerInfo();
    if (nullptr == pPeer)
    {
        AEC_LOG_INFO("No peer information available for multi cam");
        return AecError;
    }
    if (nullptr == pTargetIndices)
    {
        AEC_LOG_ERROR("Error: Argument Null");
        return AecError;
    }

    // Zero stands for "not mapped": the index conversion refuses it, so a failed mapping leaves the caller's
    // targets as they were.
    FLOAT sensitivities[AECAlgoExposureCount] = {0.0F, 0.0F, 0.0F};
    MapSensitivityInMultiCam(pPeer->exposureInfo, pPeer->CCT, luxIndex, sensitivities);

    const AECAlgoOperationModeType mode   = m_aecContext->getOperationMode();
    const AecResult                result = QuerySensitivity2ExpIndex(sensitivities, mode, pTargetIndices);
    if (AecSuccess == result)
    {
        AEC_LOG_INFO("OpMode:%d, TargetIndex, Short:%.3f, Safe:%.3f, Long:%.3f", static_cast<INT32>(mode),
                     pTargetIndices[AECAlgoExposureShort], pTargetIndices[AECAlgoExposureSafe],
                     pTargetIndices[AECAlgoExposureLong]);
    }
    return result;
}

VOID CAECModArbitration::MapSensitivityInMultiCam(const AECMultiCamExpInfo& rPeer,
                                                  INT32                     CCT,
                                                  FLOAT                     luxIndex,
                                                  FLOAT*                    pOutSens)
{
    const aecSync::AECExposureSyncConfigType* pSync = SyncTuningOf(m_pTuning);
    if ((nullptr == pSync) || (nullptr == pOutSens))
    {
        AEC_LOG_ERROR("cannot map peer sensitivity: sync tuning %p output %p", static_cast<const VOID*>(pSync),
                      static_cast<VOID*>(pOutSens));
        return;
    }

    // Calibrated modules carry their measured own-over-peer ratio, which replaces the tuned one.
    const AECDualcamCalibrationInfo calibration = m_aecContext->getDCCalibrationInfo();
    const FLOAT multiplier = (0 != static_cast<INT32>(calibration.OTPStatus)) ? calibration.OTPExpCompMultiplier
                                                                              : pSync->expCompMultiplier;
    AEC_LOG_INFO("Comp multiplier, Tuning:%f, OTP Status:%d, Factor:%f", pSync->expCompMultiplier,
                 static_cast<INT32>(calibration.OTPStatus), multiplier);

    if (rPeer.relativeSensEnable != pSync->enableRelSensitivity)
    {
        AEC_LOG_ERROR("Sensitivity type: Tuning:%d, Other cam:%d, differs. All cameras must use same type",
                      pSync->enableRelSensitivity, rPeer.relativeSensEnable);
        return;
    }

    // Relative values scale by the module ratio; absolute ones were normalised by the peer's reference and take
    // this camera's reference instead.
    FLOAT factor = multiplier;
    if ((TRUE != pSync->enableRelSensitivity) && (TRUE != LookUpRefAbsSensitivity(*pSync, luxIndex, &factor)))
    {
        return;
    }

    for (UINT32 i = 0U; i < AECAlgoExposureCount; i++)
    {
        pOutSens[i] = rPeer.sensitivityTotalOrRatio[i] * factor;
    }
    ApplyCCTBasedCompensationFactor(CCT, pOutSens);
    AEC_LOG_INFO("Final adjusted sens, Short:%.3f, Safe:%.3f, Long:%.3f", pOutSens[AECAlgoExposureShort],
                 pOutSens[AECAlgoExposureSafe], pOutSens[AECAlgoExposureLong]);
}

VOID CAECModArbitration::UpdateSensitivityForMultiCam(const AECAlgoExposureData* pSets,
                                                      FLOAT                      luxIndex,
                                                      AECMultiCamExpInfo&        rOut)
{
    const aecSync::AECExposureSyncConfigType* pSync = SyncTuningOf(m_pTuning);
    if ((nullptr == pSync) || (nullptr == pSets))
    {
        AEC_LOG_WARN("no sensitivity published for the peer: sync tuning %p exposure sets %p",
                     static_cast<const VOID*>(pSync), static_cast<const VOID*>(pSets));
        return;
    }

    // Absolute exchange normalises by this camera's reference; without one, zero tells the peer there is nothing
    // to follow. Relative values go out as they are.
    FLOAT ref   = 1.0F;
    BOOL  valid = TRUE;
    if (TRUE != pSync->enableRelSensitivity)
    {
        valid = LookUpRefAbsSensitivity(*pSync, luxIndex, &ref);
    }
    for (UINT32 i = 0U; i < AECAlgoExposureCount; i++)
    {
        rOut.sensitivityTotalOrRatio[i] = (TRUE == valid) ? (pSets[i].sensitivity / ref) : 0.0F;
        rOut.exposureTime[i]            = pSets[i].exposureTime;
    }
    rOut.relativeSensEnable = pSync->enableRelSensitivity;
    const FLOAT* pSens = rOut.sensitivityTotalOrRatio;
    AEC_LOG_VERBOSE("RelativeEn=%d, Total/Rel sens, Short:%.3f, Safe:%.3f, Long:%.3f", rOut.relativeSensEnable,
                    pSens[AECAlgoExposureShort], pSens[AECAlgoExposureSafe], pSens[AECAlgoExposureLong]);
}

VOID CAECModArbitration::SyncUpExposureTimeForMultiCam(ArbitrationOutput* pOutput)
{
    const aecSync::AECExposureSyncConfigType* pSync = SyncTuningOf(m_pTuning);
    if ((nullptr == pSync) || (TRUE != pSync->enableExposureTimeMatch))
    {
        return;
    }
    const AECMultiCamInfo* pPeer = m_aecContext->getPeerInfo();
    if ((nullptr == pPeer) || (nullptr == pOutput))
    {
        AEC_LOG_ERROR("exposure time match without peer %p or output %p", static_cast<const VOID*>(pPeer),
                      static_cast<VOID*>(pOutput));
        return;
    }

    const FLOAT maxFPS = m_aecContext->getMaxFPS();
    for (UINT32 i = 0U; i < AECAlgoExposureCount; i++)
    {
        AECAlgoExposureData& rSet     = pOutput->expSets[i];
        const UINT64         peerTime = pPeer->exposureInfo.exposureTime[i];
        const FLOAT          ownFPS   = QueryExpTime2FPS(rSet.exposureTime);
        const FLOAT          peerFPS  = QueryExpTime2FPS(peerTime);
        AEC_LOG_VERBOSE(
            "exposure %d current (capped) fps %.1f max fps %.1f exp time %llu gain %.1f peer exp time fps %.1f",
            static_cast<INT32>(i), ownFPS, maxFPS, static_cast<unsigned long long>(rSet.exposureTime), rSet.linearGain,
            peerFPS);

        // While both run at the top rate their times need not agree; once either is slower, both frames must
        // span the same time or their rates drift apart.
        if (!((maxFPS > ownFPS) || (maxFPS > peerFPS)))
        {
            continue;
        }
        if (0U == peerTime)
        {
            AEC_LOG_ERROR("exposure %d peer exposure time 0, own time kept", static_cast<INT32>(i));
            continue;
        }

        UINT64 newTime = peerTime;
        FLOAT  newGain = static_cast<FLOAT>(rSet.exposureTime) / static_cast<FLOAT>(peerTime) * rSet.linearGain;
        if (newGain < 1.0F)
        {
            // Gain cannot go below unity: the rest of the reduction comes out of time.
            AEC_LOG_WARN("exposure %d warning: newGain %f is < 1 cannot set exposure to %llu", static_cast<INT32>(i),
                         newGain, static_cast<unsigned long long>(peerTime));
            newTime = static_cast<UINT64>(static_cast<FLOAT>(peerTime) * newGain);
            newGain = 1.0F;
        }
        AEC_LOG_VERBOSE("exposure %d adjusting Old ET %llu New ET %llu Old Gain %.2f New Gain %.2f",
                        static_cast<INT32>(i), static_cast<unsigned long long>(rSet.exposureTime),
                        static_cast<unsigned long long>(newTime), rSet.linearGain, newGain);
        rSet.exposureTime = newTime;
        rSet.linearGain   = newGain;
    }
}

VOID CAECModArbitration::ApplyCCTBasedCompensationFactor(INT32 CCT, FLOAT* pSens)
{
    const aecSync::AECExposureSyncConfigType* pSync = SyncTuningOf(m_pTuning);
    if ((nullptr == pSync) || (nullptr == pSens))
    {
        AEC_LOG_ERROR("no CCT compensation: sync tuning %p sensitivities %p", static_cast<const VOID*>(pSync),
                      static_cast<VOID*>(pSens));
        return;
    }

    // A failed lookup leaves 0, which the unity fallback below takes care of.
    FLOAT factor = 0.0F;
    CTuningTriggerHandler::GetInterpZoneData(pSync->CCTBasedExpComp, &factor, static_cast<FLOAT>(CCT),
                                             static_cast<INT32>(pSync->CCTBasedExpCompCount));
    AEC_LOG_VERBOSE("CCT based compensation factor is %.4f for CCT %d. Max CCT Count %d", factor, CCT,
                    static_cast<INT32>(pSync->CCTBasedExpCompCount));
    if (!(factor > 0.0F))
    {
        AEC_LOG_WARN("CCT based compensation factor is %f, safer side use unity", factor);
        factor = 1.0F;
    }
    for (UINT32 i = 0U; i < AECAlgoExposureCount; i++)
    {
        pSens[i] *= factor;
    }
}
