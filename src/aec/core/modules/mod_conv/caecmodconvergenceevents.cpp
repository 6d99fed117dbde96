// Convergence module events: converger choice by mode, preflash frame skip, speeds, EV and lock.
#include "aec/core/modules/mod_conv/caecmodconvergence.h"

#include <cmath>

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_mtr/aecutilevoffset.h"
#include "platform/statslogger.h"

namespace
{

// Frames a preflash switch skips: the tuned count, or the pipeline delay; a negative count skips nothing.
UINT32 PreflashSwitchCount(const aecFlash::PreflashFrameCounterType& counter, UINT8 pipelineDelay)
{
    if (aecFlash::SwitchCounterCustomInteger != counter.type)
    {
        return pipelineDelay;
    }
    return (counter.customInteger > 0) ? static_cast<UINT32>(counter.customInteger) : 0U;
}

} // namespace

AecResult CAECModConvergence::OnOperationModeChange()
{
    const AECAlgoOperationModeType mode = m_aecContext->getOperationMode();

    // Only the streaming fast converger paces itself by the pipeline; its preflash and torch twins keep 0.
    ConvergenceSubmodule* pFast = GetSubmodule(ConvIDFast);
    if (nullptr != pFast)
    {
        pFast->SetSysLatency(m_aecContext->getPipelineDelay());
    }
    // Before the algorithm changes: leaving preflash is recognised by the old algorithm.
    InitializeFrameSkip(mode);

    const ConvergenceTuningDataType* pTuning = m_aecContext->getConvTuning();
    AecResult                        result  = AecSuccess;
    switch (mode)
    {
        case AECAlgoOperationModeInit:
            m_isCameraLaunch = TRUE;
            return AecSuccess;
        case AECAlgoOperationModeStreaming:
            SelectStreamingAlgo();
            break;
        case AECAlgoOperationModePreflash:
        {
            m_currAlgoID           = ConvIDPreflash;
            m_bWaitForFDInPreflash = TRUE;
            // A bright scene shows faces well enough without waiting for face detection.
            if ((nullptr != pTuning) && (TRUE == pTuning->dynamicFDDelay.enableFDDynamicDelay) &&
                (m_avgLuma > pTuning->dynamicFDDelay.minLumaToSkipPreFD))
            {
                m_bWaitForFDInPreflash = FALSE;
            }
            AEC_LOG_INFO("conv algo set to ConvIDPreflash");
            AEC_LOG_INFO("Luma:%f, bWaitPreflash:%d", m_avgLuma, m_bWaitForFDInPreflash);
            break;
        }
        case AECAlgoOperationModeFastAEC:
            m_currAlgoID = ConvIDFastAEC;
            AEC_LOG_INFO("conv algo set to ConvIDFastAEC");
            break;
        case AECAlgoOperationModeAggressiveAEC:
            m_currAlgoID = ConvIDAggressiveAEC;
            AEC_LOG_INFO("conv algo set to ConvIDAggressiveAEC");
            break;
        case AECAlgoOperationModeFlashMeasurement:
            m_currAlgoID = ConvIDFlashMeas;
            break;
        default:
            m_currAlgoID = ConvIDFast;
            result       = AecError;
            AEC_LOG_ERROR("unexpected operation mode; defaulting to fast convergence");
            break;
    }

    SendEvent(ConvEventInitialize);
    if (TRUE == m_isCameraLaunch)
    {
        SetNewBaseSpeed(TRUE);
    }
    return result;
}

VOID CAECModConvergence::SelectStreamingAlgo()
{
    const ConvergenceTuningDataType* pTuning = m_aecContext->getConvTuning();
    if ((nullptr == pTuning) || (nullptr == pTuning->pCore))
    {
        AEC_LOG_WARN("no convergence tuning: conv algo stays %d", m_currAlgoID);
        return;
    }
    if (aecConvergence::AECConvSlowConv == pTuning->pCore->algoSelect)
    {
        m_currAlgoID = ConvIDSlow;
        AEC_LOG_INFO("conv algo set to ConvIDSlow");
    }
    else if (aecConvergence::AECConvFastConv == pTuning->pCore->algoSelect)
    {
        m_currAlgoID = ConvIDFast;
        AEC_LOG_INFO("conv algo set to ConvIDFast");
    }

    const aecConvergence::TorchConvType& rTorch = pTuning->pCore->torchConv;
    if ((TRUE != rTorch.enableTorchOffOn) && (TRUE != rTorch.enableTorchOnOff))
    {
        return;
    }
    ConvergenceSubmodule* pTorch = GetSubmodule(ConvIDTorch);
    if (nullptr == pTorch)
    {
        AEC_LOG_ERROR("torch converger missing: conv algo stays %d", m_currAlgoID);
        return;
    }
    // With an unknown algorithm selection the torch wrapper may already be current; it keeps its normal
    // converger then instead of wrapping itself.
    if (ConvIDTorch != m_currAlgoID)
    {
        m_torchNormalAlgoID = m_currAlgoID;
        pTorch->SetSecondaryAlgo(GetSubmodule(m_torchNormalAlgoID));
    }
    m_currAlgoID = ConvIDTorch;
    AEC_LOG_INFO("conv algo will use torch if enabled");
}

VOID CAECModConvergence::InitializeFrameSkip(AECAlgoOperationModeType newMode)
{
    const ConvergenceTuningDataType* pTuning = m_aecContext->getConvTuning();
    const aecFlash::PreflashConvType* pPreflash =
        ((nullptr != pTuning) && (nullptr != pTuning->pFlash)) ? &pTuning->pFlash->preflashConv : nullptr;
    const UINT8 delay = m_aecContext->getPipelineDelay();

    if (AECAlgoOperationModePreflash == newMode)
    {
        UINT32 count = (nullptr != pPreflash) ? PreflashSwitchCount(pPreflash->preflashFrameCounterEnter, delay)
                                              : delay;
        if ((nullptr != pPreflash) && (TRUE == pPreflash->dynamicEnterSkip.enableDynamicEnterSkip) &&
            (pPreflash->dynamicEnterSkip.preflashMinFrameSkip < static_cast<INT64>(count)))
        {
            // At low frame rates every skipped frame costs more time, so fewer are skipped.
            const INT32 minSkip = pPreflash->dynamicEnterSkip.preflashMinFrameSkip;
            const FLOAT low     = pPreflash->dynamicEnterSkip.FPSRange.start;
            const FLOAT high    = pPreflash->dynamicEnterSkip.FPSRange.end;
            const FLOAT fps     = m_previousFrameFPS;
            AEC_LOG_INFO("Preflash skip: Min: %d Max: %d prevFPS: %.1f", minSkip, count, fps);
            if (fps > high)
            {
                // Fast enough: the full count.
            }
            else if (fps <= low)
            {
                count = (minSkip > 0) ? static_cast<UINT32>(minSkip) : 0U;
            }
            else if (std::fabs(high - low) >= FloatLimit)
            {
                const FLOAT span   = static_cast<FLOAT>(static_cast<INT64>(count) - minSkip);
                const FLOAT scaled = std::ceil(static_cast<FLOAT>(minSkip) + (fps - low) / (high - low) * span);
                count = (scaled > 0.0F) ? static_cast<UINT32>(scaled) : 0U;
            }
        }
        SetFrameSkipCounter(count);
        AEC_LOG_INFO("Preflash In: Skip count:%d", count);
    }
    else if (ConvIDPreflash == m_currAlgoID)
    {
        const UINT32 count = (nullptr != pPreflash) ? PreflashSwitchCount(pPreflash->preflashFrameCounterExit, delay)
                                                    : delay;
        SetFrameSkipCounter(count);
        AEC_LOG_INFO("Preflash Out: Skip count:%d", count);
    }
    else
    {
        SetFrameSkipCounter(0);
    }
}

VOID CAECModConvergence::SetFrameSkipCounter(UINT32 counter)
{
    if (nullptr == m_pCallback)
    {
        AEC_LOG_ERROR("no convergence callback: frame skip %u not set", counter);
        return;
    }
    m_pCallback->SetConvFrameSkipCounter(counter);
}

VOID CAECModConvergence::SetNewBaseSpeed(BOOL launch)
{
    if (std::fabs(m_aecContext->getDynamicConvergenceSpeed()) >= FloatLimit)
    {
        // An application speed beats both the launch and the tuned speed.
        OnDynamicConvergenceSpeedChange();
        return;
    }
    ConvergenceSubmodule* pCurrent = Current();
    if (nullptr == pCurrent)
    {
        AEC_LOG_ERROR("conv algo %d missing: base speed not set", m_currAlgoID);
        return;
    }
    const ConvergenceTuningDataType* pTuning = m_aecContext->getConvTuning();
    FLOAT                            speed   = 0.0F;
    if ((FALSE != launch) && (nullptr != pTuning) && (nullptr != pTuning->pStartUp))
    {
        speed = pTuning->pStartUp->generic.startUpAggressiveness;
    }
    pCurrent->SetBaseSpeedOverride(speed);
    SendEvent(ConvEventSpeedBaseChanged);
}

AecResult CAECModConvergence::OnDynamicConvergenceSpeedChange()
{
    ConvergenceSubmodule* pCurrent = Current();
    if (nullptr == pCurrent)
    {
        AEC_LOG_ERROR("conv algo %d missing: application speed not set", m_currAlgoID);
        return AecSuccess;
    }
    pCurrent->SetSpeedAdjust(1.0F);
    SendEvent(ConvEventSpeedAdjChanged);
    pCurrent->SetBaseSpeedOverride(m_aecContext->getDynamicConvergenceSpeed());
    SendEvent(ConvEventSpeedBaseChanged);
    return AecSuccess;
}

FLOAT CAECModConvergence::CurrentEVOffset()
{
    const MeteringTuningDataType* pMtrTuning = m_aecContext->getMtrTuning();
    const EVContext*              pEV        = m_aecContext->getEVInfo();
    if ((nullptr == pMtrTuning) || (nullptr == pMtrTuning->pCore) || (nullptr == pEV))
    {
        return 0.0F;
    }
    return AECUtilGetEVOffset(pEV, &pMtrTuning->pCore->mtrLumaTarget.EVLumaTarget, pEV->EVUIVal);
}

AecResult CAECModConvergence::OnExposureCompChange()
{
    const EVContext* pEV = m_aecContext->getEVInfo();
    if (nullptr == pEV)
    {
        AEC_LOG_ERROR("no EV context: EV change ignored");
        return AecSuccess;
    }
    const FLOAT offset = CurrentEVOffset();
    // With in-sensor HDR a brighter EV would only clip the long exposure.
    m_previewEVOffset      = ((FALSE != m_aecContext->getHDR3Enable()) && (offset > 0.0F)) ? 0.0F : offset;
    m_bEVChanged           = TRUE;
    const FLOAT previousEV = m_previewEV;
    m_previewEV            = pEV->EV;

    AECLockContext* pLock = m_aecContext->getLockContext();
    if (nullptr == pLock)
    {
        AEC_LOG_ERROR("no lock context: EV change not applied to the lock");
        SendEvent(ConvEventSetEV);
        return AecSuccess;
    }
    if (AECAlgoLockOn == pLock->lockState)
    {
        const FLOAT lockEV = pLock->EVCtxtWhenLockHappened.EV;
        if ((std::fabs(pEV->EV - lockEV) >= FloatLimit) || (std::fabs(previousEV - pEV->EV) >= FloatLimit))
        {
            // A locked exposure follows the EV by whole stops from where it was locked, without converging.
            const FLOAT diff = pEV->EV - lockEV;
            const FLOAT delta =
                static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(std::pow(2.0F, diff))) * IndexPerDecade);
            for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
            {
                pLock->expIndicesToUse[i] = pLock->expIndicesWhenLockHappened[i] + delta;
            }
            AEC_LOG_INFO("detected EV change during lock: old %f new %f diff %f applying offset %f", lockEV,
                         pEV->EV, diff, delta);
        }
    }
    SendEvent(ConvEventSetEV);
    // The next frame reflects the EV; a lock arriving before it must add the offset itself.
    pLock->bIsEVReflected = FALSE;
    return AecSuccess;
}

AecResult CAECModConvergence::OnAECLockChange()
{
    AECLockContext* pLock = m_aecContext->getLockContext();
    if (nullptr == pLock)
    {
        AEC_LOG_ERROR("no lock context: lock change ignored");
        return AecSuccess;
    }
    if (AECAlgoLockOn != pLock->lockState)
    {
        AEC_LOG_INFO("unlocked");
    }
    else
    {
        const EVContext* pEV = m_aecContext->getEVInfo();
        if (nullptr != pEV)
        {
            pLock->EVCtxtWhenLockHappened = *pEV;
        }
        const AECFrameHistory* pLast = m_aecContext->getFrameHistory(1);
        if (nullptr != pLast)
        {
            if (TRUE == pLock->bIsEVReflected)
            {
                for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
                {
                    pLock->expIndicesWhenLockHappened[i] = pLast->expIndices[i];
                    pLock->expIndicesToUse[i]            = pLast->expIndices[i];
                }
            }
            else
            {
                // An EV change has not reached a frame yet: the locked exposure takes it in now.
                pLock->bIsEVReflected = TRUE;
                for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
                {
                    const FLOAT index                    = m_previewEVOffset + pLast->expIndices[i];
                    pLock->expIndicesWhenLockHappened[i] = index;
                    pLock->expIndicesToUse[i]            = index;
                    AEC_LOG_INFO("locked exp indices & apply EV %d; offset %f frame exp idx %f final %f", i,
                                 m_previewEVOffset, pLast->expIndices[i], index);
                }
            }
        }
    }
    SendEvent(ConvEventSetEV);
    return AecSuccess;
}
