// Per-frame convergence: fixed exposure under lock, follow mode or post-raw gain, otherwise one converger step.
#include "aec/core/modules/mod_conv/caecmodconvergence.h"

#include <algorithm>
#include <cmath>

#include "aec/core/include/coremoduletuningdata.h"
#include "platform/statslogger.h"

namespace
{

// Upper bound first, so that a range with min above max yields min.
FLOAT ClampToRange(FLOAT value, const MinMaxRangeFloat& range)
{
    return std::max(std::min(value, range.max), range.min);
}

// Index offset of a linear gain; only gains above unity raise an exposure.
FLOAT PositiveGainOffset(FLOAT gain)
{
    return (gain > 1.0F)
               ? static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(gain)) * CAECModConvergence::IndexPerDecade)
               : 0.0F;
}

} // namespace

AecResult CAECModConvergence::ConvergeFrameExposure(const ConvergenceInput* pInput, ConvergenceOutput* pOutput)
{
    if ((nullptr == pInput) || (nullptr == pOutput) || (nullptr == pInput->pTargetIndices))
    {
        AEC_LOG_ERROR("convergence refused: input %p output %p", static_cast<const void*>(pInput),
                      static_cast<void*>(pOutput));
        return AecError;
    }

    const ModArbitrationContext* pLimitation = m_aecContext->getExposureLimitation();
    const MinMaxRangeFloat range = (nullptr != pLimitation) ? pLimitation->exposureLimitation.expIndex
                                                            : MinMaxRangeFloat{0.0F, 0.0F};
    const UINT32 skipCounter = m_aecContext->getConvFrameSkipCounter();
    if ((ConvIDPreflash != m_currAlgoID) && (0 == skipCounter))
    {
        // Preflash and skipped frames do not show the scene the next preflash decision is about.
        m_avgLuma = pInput->avgLuma;
    }

    UpdateFollowMode();
    UpdateSpeedAdjustment();

    pOutput->predictiveGain = 1.0F;
    pOutput->predictiveADRC = 1.0F;

    FLOAT        targets[AECAlgoExposureCount]  = {};
    BOOL         settled[AECAlgoExposureCount]  = {TRUE, TRUE, TRUE};
    FLOAT        compensated[AECAlgoExposureCount] = {};
    const FLOAT* pFixed = GetFixedIndices(pInput, compensated);
    if (nullptr != pFixed)
    {
        UpdateFixedTargetIndices(pInput, pFixed, range, pOutput);
        std::copy(pInput->pTargetIndices, pInput->pTargetIndices + AECAlgoExposureCount, targets);
    }
    else
    {
        const BOOL hdr3 = m_aecContext->getHDR3Enable();
        if ((FALSE != hdr3) && (m_previewEVOffset > 0.0F))
        {
            m_previewEVOffset = 0.0F;
        }
        // Preflash meters for the flash decision, which wants the scene without the user's EV.
        const FLOAT evOffset =
            (AECAlgoOperationModePreflash == m_aecContext->getOperationMode()) ? 0.0F : m_previewEVOffset;
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            targets[i] = pInput->pTargetIndices[i] + evOffset;
        }
        AEC_LOG_VERBOSE("conv tgts with EV %f safe,%f,short,%f,long,%f", evOffset, targets[AECAlgoExposureSafe],
                        targets[AECAlgoExposureShort], targets[AECAlgoExposureLong]);

        ConvergenceInput convIn = *pInput;
        convIn.pTargetIndices   = targets;

        ConvergenceSubmoduleInput subIn  = {};
        subIn.pConvIn                    = &convIn;
        subIn.pTuning                    = m_aecContext->getConvTuning();
        subIn.expTableRange.start        = range.min;
        subIn.expTableRange.end          = range.max;
        const TouchROIProcInfo* pTouch   = m_aecContext->getTouchROI();
        subIn.bIsTouchActive             = ((nullptr != pTouch) && (0 != pTouch->ROICount)) ? TRUE : FALSE;
        subIn.pGyro                      = m_aecContext->getGyroInfo();
        subIn.currentFPS                 = m_aecContext->getCurrentFPS();
        subIn.bHasEVChanged              = m_bEVChanged;
        m_bEVChanged                     = FALSE;
        subIn.bExternalSkip              = (0 != skipCounter) ? TRUE : FALSE;
        subIn.HDR3Enable                 = hdr3;
        subIn.bWaitForFDInPreflash       = m_bWaitForFDInPreflash;

        const AECFrameHistory* pPrevious = m_aecContext->getFrameHistory(1);
        const AECFrameHistory* pMatched  = m_aecContext->getFrameHistory(m_aecContext->getPipelineDelay());
        FillSubmoduleHistory(&subIn, pPrevious, pMatched);

        ConvergenceSubmoduleOutput subOut = {};
        ConvergenceSubmodule*      pCurrent = Current();
        if ((nullptr == pCurrent) || (AecSuccess != pCurrent->Converge(&subIn, &subOut)))
        {
            // Without a converger the exposure holds where it is, unsettled.
            AEC_LOG_ERROR("conv algo %d unavailable: exposure held", m_currAlgoID);
            subOut = ConvergenceSubmoduleOutput();
            std::copy(subIn.expIndices, subIn.expIndices + AECAlgoExposureCount, subOut.expIndices);
        }

        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            const FLOAT next                         = subOut.expIndices[i];
            pOutput->convExpSets[i].expIndex           = next;
            pOutput->convExpSets[i].expIndexDelta      = ClampToRange(targets[i], range) - next;
            pOutput->convExpSets[i].expIndexDeltaIdeal = targets[i] - next;
            pOutput->convExpSets[i].expIndexAdjustment = next - subIn.expIndices[i];
            settled[i]                                 = subOut.isSettled[i];
        }

        UpdateSettleBasedOnExtInput(pInput->settleType, settled);
        SetOutputSettleFlags(settled, pOutput);
        CalculatePrediction(pInput, subOut.darkBrightSafeTarget, pOutput, pPrevious, pMatched);
    }

    ExpTimePriorityConfig(pOutput);
    SHDRExpConfig(pOutput);
    AECLockContext* pLock = m_aecContext->getLockContext();
    if (nullptr != pLock)
    {
        pLock->bIsEVReflected = TRUE;
    }
    if (FALSE != m_aecContext->getDebugDataEnable())
    {
        UpdateDebugData(pInput, targets, range, settled, pOutput);
    }
    pOutput->previewEV = m_previewEV;
    const AECFrameHistory* pLast = m_aecContext->getFrameHistory(1);
    if (nullptr != pLast)
    {
        m_previousFrameFPS = pLast->FPS;
    }
    return AecSuccess;
}

VOID CAECModConvergence::UpdateFollowMode()
{
    const BOOL follow = (AECAlgoExposureFollow == m_aecContext->getExposureType()) ? TRUE : FALSE;
    if (follow != m_isFollowMode)
    {
        SendEvent(ConvEventInitialize);
        m_isFollowMode = follow;
    }
    if ((FALSE != follow) && (ConvIDAggressiveAEC == m_currAlgoID))
    {
        // A follower takes its exposure from the leader; an aggressive start of its own makes no sense.
        const ConvergenceTuningDataType* pTuning = m_aecContext->getConvTuning();
        if ((nullptr != pTuning) && (nullptr != pTuning->pCore) &&
            (aecConvergence::AECConvFastConv == pTuning->pCore->algoSelect))
        {
            m_currAlgoID = ConvIDFast;
            AEC_LOG_INFO("follow mode: conv algo set to ConvIDFast");
        }
        else
        {
            m_currAlgoID = ConvIDSlow;
            AEC_LOG_INFO("follow mode: conv algo set to ConvIDSlow");
        }
    }
}

VOID CAECModConvergence::UpdateSpeedAdjustment()
{
    const ConvergenceTuningDataType* pTuning = m_aecContext->getConvTuning();
    const TouchROIProcInfo*          pTouch  = m_aecContext->getTouchROI();
    FLOAT                            speed   = 1.0F;
    if ((nullptr != pTouch) && (0 != pTouch->ROICount))
    {
        if ((nullptr != pTuning) && (nullptr != pTuning->pTouch))
        {
            speed = pTuning->pTouch->convSpeedAdjRatio;
        }
    }
    else
    {
        const FaceROIProcInfo* pFace       = m_aecContext->getFaceROI();
        BOOL                   faceCounts  = FALSE;
        if ((nullptr != pFace) && (nullptr != pTuning) && (nullptr != pTuning->pFace))
        {
            // Enter and exit delays keep a flickering face detection from flipping the speed every frame.
            if (1 == pFace->isActiveFace)
            {
                faceCounts = (pTuning->pFace->speedAdjDelayTimeEnter < pFace->faceStatusDuration) ? TRUE : FALSE;
            }
            else if (0 == pFace->isActiveFace)
            {
                faceCounts = ((FALSE != m_wasFaceROIActive) &&
                              (pFace->faceStatusDuration < pTuning->pFace->speedAdjDelayTimeExit))
                                 ? TRUE
                                 : FALSE;
            }
        }
        if (FALSE != faceCounts)
        {
            speed              = pTuning->pFace->convSpeedAdjRatio;
            m_wasFaceROIActive = TRUE;
        }
        else
        {
            m_wasFaceROIActive = FALSE;
        }
    }

    ConvergenceSubmodule* pCurrent = Current();
    if ((nullptr != pCurrent) && (std::fabs(speed - pCurrent->GetSpeedAdjust()) >= FloatLimit))
    {
        pCurrent->SetSpeedAdjust(speed);
        SendEvent(ConvEventSpeedAdjChanged);
    }
}

const FLOAT* CAECModConvergence::GetFixedIndices(const ConvergenceInput* pInput, FLOAT* pCompensated)
{
    const AECLockContext* pLock = m_aecContext->getLockContext();
    if ((nullptr != pLock) && (AECAlgoLockOn == pLock->lockState))
    {
        return pLock->expIndicesToUse;
    }
    if (FALSE != m_isFollowMode)
    {
        return pInput->pTargetIndices;
    }

    // The frame whose post-raw gain the counter still compensates; the counter runs down over the pipeline.
    const UINT32 counter = m_aecContext->getPostRawCounter();
    const INT32  post    = m_aecContext->getPostRawGain();
    if ((0 == counter) || (post <= 0))
    {
        return nullptr;
    }
    const INT32 offset = static_cast<INT32>(m_aecContext->getPipelineDelay()) - static_cast<INT32>(counter) + 1;
    if ((offset < 0) || (offset > UINT8_MAX))
    {
        AEC_LOG_WARN("post-raw counter %u beyond the pipeline delay: no compensation", counter);
        return nullptr;
    }
    const AECFrameHistory* pHistory = m_aecContext->getFrameHistory(static_cast<UINT8>(offset));
    if ((nullptr == pHistory) || (pHistory->postRawGain <= 0))
    {
        return nullptr;
    }
    const FLOAT indexOffset = static_cast<FLOAT>(
        std::log10(static_cast<DOUBLE>(static_cast<FLOAT>(pHistory->postRawGain) / static_cast<FLOAT>(post))) *
        IndexPerDecade);
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        pCompensated[i] = pHistory->expIndices[i] + indexOffset;
        AEC_LOG_VERBOSE("exposure %d apply comp new %d old %d offset %.1f old exp %.1f new exp %.1f counter %d", i,
                        post, pHistory->postRawGain, indexOffset, pHistory->expIndices[i], pCompensated[i], counter);
    }
    return pCompensated;
}

VOID CAECModConvergence::UpdateFixedTargetIndices(const ConvergenceInput* pInput, const FLOAT* pIndices,
                                                  const MinMaxRangeFloat& range, ConvergenceOutput* pOutput)
{
    const FLOAT unit = UnitStepSize();
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        // Without a positive grid the index is used as it is rather than divided by zero.
        const FLOAT onGrid = (unit > 0.0F) ? unit * std::round(pIndices[i] / unit) : pIndices[i];
        const FLOAT index  = ClampToRange(onGrid, range);
        pOutput->convExpSets[i].expIndex           = index;
        pOutput->convExpSets[i].expIndexDelta      = pInput->pTargetIndices[i] - index;
        pOutput->convExpSets[i].expIndexDeltaIdeal = pInput->pTargetIndices[i] - index;
        pOutput->convExpSets[i].expIndexAdjustment = 0.0F;
    }
    // A fixed exposure is settled by definition.
    pOutput->isAECSettled        = TRUE;
    pOutput->isBrightnessSettled = TRUE;
}

VOID CAECModConvergence::FillSubmoduleHistory(ConvergenceSubmoduleInput* pSubInput, const AECFrameHistory* pPrevious,
                                              const AECFrameHistory* pMatched)
{
    const FLOAT* pTargets = pSubInput->pConvIn->pTargetIndices;
    if (nullptr != pPrevious)
    {
        const BOOL isStart = (TRUE == pPrevious->isStartConfig) ? TRUE : FALSE;
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            pSubInput->expIndices[i]          = pPrevious->expIndices[i];
            pSubInput->expIndexPreviousAdj[i] = (FALSE != isStart) ? 0.0F : pPrevious->expIndicesAdjustments[i];
        }
        // The exposure the last frame really used already included its prediction.
        pSubInput->expIndices[AECAlgoExposureShort] +=
            PositiveGainOffset(pPrevious->predictiveGain * pPrevious->predictiveADRC);
    }
    else
    {
        // The core queries a start exposure before any frame, so this is only a store without history: the
        // exposure counts as being at the target rather than at index 0.
        AEC_LOG_WARN("no previous frame: converging from the targets");
        std::copy(pTargets, pTargets + AECAlgoExposureCount, pSubInput->expIndices);
    }

    if (nullptr != pMatched)
    {
        std::copy(pMatched->expIndices, pMatched->expIndices + AECAlgoExposureCount, pSubInput->expIndexMatched);
        pSubInput->expIndexMatched[AECAlgoExposureShort] += PositiveGainOffset(pMatched->predictiveGain);
    }
    else
    {
        AEC_LOG_WARN("no frame matches the statistics: taking the last commanded exposure");
        std::copy(pSubInput->expIndices, pSubInput->expIndices + AECAlgoExposureCount, pSubInput->expIndexMatched);
    }
}

VOID CAECModConvergence::UpdateSettleBasedOnExtInput(AECAlgoSettleFlagType settleType, BOOL* pSettled)
{
    const BOOL skipping = (0 != m_aecContext->getConvFrameSkipCounter()) ? TRUE : FALSE;
    if ((FALSE == skipping) && (AECAlgoSettleCompute == settleType))
    {
        std::copy(pSettled, pSettled + AECAlgoExposureCount, m_settleFlagStatus);
        return;
    }

    if (FALSE != skipping)
    {
        // A skipped frame shows an exposure that is being replaced: it can never be settled.
        std::fill(pSettled, pSettled + AECAlgoExposureCount, FALSE);
    }
    else if (AECAlgoSettleForceSet == settleType)
    {
        std::fill(pSettled, pSettled + AECAlgoExposureCount, TRUE);
    }
    else if (AECAlgoSettleForceReset == settleType)
    {
        std::fill(pSettled, pSettled + AECAlgoExposureCount, FALSE);
    }
    else if (AECAlgoSettleUsePrevious == settleType)
    {
        std::copy(m_settleFlagStatus, m_settleFlagStatus + AECAlgoExposureCount, pSettled);
    }
    else
    {
        AEC_LOG_WARN("unknown settle type %d: keeping the computed flags", settleType);
    }
    AEC_LOG_VERBOSE("SettleType:%d, SettleState(Safe:%d Short:%d Long:%d)", settleType,
                    pSettled[AECAlgoExposureSafe], pSettled[AECAlgoExposureShort], pSettled[AECAlgoExposureLong]);
    std::copy(pSettled, pSettled + AECAlgoExposureCount, m_settleFlagStatus);
}

VOID CAECModConvergence::SetOutputSettleFlags(const BOOL* pSettled, ConvergenceOutput* pOutput)
{
    const BOOL shortSettled = pSettled[AECAlgoExposureShort];
    const BOOL longSettled  = pSettled[AECAlgoExposureLong];
    const BOOL safeSettled  = pSettled[AECAlgoExposureSafe];
    if (FALSE == shortSettled)
    {
        pOutput->isAECSettled        = FALSE;
        pOutput->isBrightnessSettled = safeSettled;
    }
    else if (FALSE != safeSettled)
    {
        pOutput->isAECSettled        = (FALSE != longSettled) ? TRUE : FALSE;
        pOutput->isBrightnessSettled = safeSettled;
    }
    else
    {
        // A settled short exposure around an unsettled safe one is not a settled frame in any sense.
        pOutput->isAECSettled        = FALSE;
        pOutput->isBrightnessSettled = FALSE;
        return;
    }

    if ((TRUE == safeSettled) && (TRUE == m_isCameraLaunch))
    {
        // The launch aggressiveness ends with the first settle.
        m_isCameraLaunch = FALSE;
        SetNewBaseSpeed(FALSE);
    }
}

VOID CAECModConvergence::CalculatePrediction(const ConvergenceInput* /*pInput*/, FLOAT /*darkBrightSafeTarget*/,
                                             ConvergenceOutput* pOutput, const AECFrameHistory* /*pPrevious*/,
                                             const AECFrameHistory* /*pMatched*/)
{
    // Minimal hook for predictive convergence, which a later change fills in: no prediction yet, so the
    // predictive gains stay at unity.
    pOutput->predictiveGain = 1.0F;
    pOutput->predictiveADRC = 1.0F;
}

VOID CAECModConvergence::ExpTimePriorityConfig(ConvergenceOutput* pOutput)
{
    const ConvergenceTuningDataType* pTuning = m_aecContext->getConvTuning();
    const BOOL gainFirst = ((nullptr != pTuning) && (nullptr != pTuning->pCore) &&
                            (FALSE != pTuning->pCore->enableConvergeGainFirst))
                               ? TRUE
                               : FALSE;
    if ((FALSE == gainFirst) || (FALSE != pOutput->isAECSettled))
    {
        pOutput->expTimePriorConfig.bIsActive = FALSE;
        return;
    }

    // The ramp starts where the exposure last stood still: a start configuration or a settled frame.
    const AECFrameHistory* pLast = m_aecContext->getFrameHistory(1);
    if (nullptr == pLast)
    {
        m_expPrioConvStartIdx = pOutput->convExpSets[AECAlgoExposureSafe].expIndex;
    }
    else if ((TRUE == pLast->isStartConfig) || (FALSE != pLast->bisAECSettled))
    {
        m_expPrioConvStartIdx = pLast->expIndices[AECAlgoExposureSafe];
    }
    pOutput->expTimePriorConfig.bIsActive = TRUE;
    pOutput->expTimePriorConfig.dstExpIdx =
        pOutput->convExpSets[AECAlgoExposureSafe].expIndex + pOutput->convExpSets[AECAlgoExposureSafe].expIndexDelta;
    pOutput->expTimePriorConfig.srcExpIdx = m_expPrioConvStartIdx;
}

VOID CAECModConvergence::SHDRExpConfig(ConvergenceOutput* pOutput)
{
    const MeteringTuningDataType* pMtrTuning = m_aecContext->getMtrTuning();
    if ((nullptr == pMtrTuning) || (nullptr == pMtrTuning->pShdr))
    {
        AEC_LOG_WARN("SHDR Tuning pointer is NULL");
        return;
    }
    pOutput->sHDRexpConfig.bIsActive = (0 != pMtrTuning->pShdr->enableShdr) ? TRUE : FALSE;
}

VOID CAECModConvergence::UpdateDebugData(const ConvergenceInput* pInput, const FLOAT* pTargets,
                                         const MinMaxRangeFloat& range, const BOOL* pSettled,
                                         const ConvergenceOutput* pOutput)
{
    const TouchROIProcInfo*     pTouch   = m_aecContext->getTouchROI();
    const ConvergenceSubmodule* pCurrent = Current();
    const UINT32                skip     = m_aecContext->getConvFrameSkipCounter();
    AECDebugDataConvergenceType record   = {};
    record.currentFPS                    = m_aecContext->getCurrentFPS();
    record.expIndexMin                   = range.min;
    record.expIndexMax                   = range.max;
    record.ratioBright                   = pInput->ratioBright;
    record.ratioDark                     = pInput->ratioDark;
    record.bIsTouchActive                = ((nullptr != pTouch) && (0 != pTouch->ROICount)) ? 1 : 0;
    record.convAlgoIdentity              = static_cast<UINT8>(m_currAlgoID);
    record.frameSkip                     = static_cast<UINT8>(std::min<UINT32>(skip, UINT8_MAX));
    record.speedFinal                    = (nullptr != pCurrent) ? pCurrent->GetSpeedAdjust() : 1.0F;
    record.bIsCameraLaunch               = (FALSE != m_isCameraLaunch) ? 1 : 0;
    record.bIsAECSettled                 = (FALSE != pOutput->isAECSettled) ? 1 : 0;
    record.bIsBrightnessSettled          = (FALSE != pOutput->isBrightnessSettled) ? 1 : 0;
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        record.expIndexTarget[i] = pTargets[i];
        record.bIsSettled[i]     = (FALSE != pSettled[i]) ? 1 : 0;
        record.expIndexOutput[i] = pOutput->convExpSets[i].expIndex;
        record.expIndexAdjust[i] = pOutput->convExpSets[i].expIndexAdjustment;
    }
    m_debugData = record;
}
