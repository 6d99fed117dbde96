// Torch converger: hands the frames around a torch switch to a fast converger, then back to the normal one.
#include "aec/core/modules/mod_conv/convtorch.h"

#include "aec/core/modules/mod_conv/convfast.h"
#include "aec/core/base/aecobjectalloc.h"
#include "platform/statslogger.h"

ConvTorch::ConvTorch(const ConvergenceTuningDataType* pTuning, ConvFast* pFastConverger)
    : ConvergenceSubmodule(ConvIDTorch, pTuning)
    , m_pFastConverger(pFastConverger)
    , m_pNormalConverger(nullptr)
    , m_pCurrentConverger(pFastConverger)
    , m_bPreviousIsTorch(FALSE)
    , m_frameCounter(0)
    , m_frameThres(0)
{
}

ConvTorch::~ConvTorch()
{
    AECDestroyObject(m_pFastConverger);
}

bool ConvTorch::IsUsingFastConverger() const
{
    return m_pCurrentConverger == m_pFastConverger;
}

void ConvTorch::SetSecondaryAlgo(ConvergenceSubmodule* pSecondary)
{
    if ((nullptr == pSecondary) || (this == pSecondary))
    {
        AEC_LOG_ERROR("torch conv: no usable normal converger; the fast one stays in charge");
        m_pNormalConverger  = nullptr;
        m_pCurrentConverger = m_pFastConverger;
        return;
    }
    m_pNormalConverger  = pSecondary;
    m_pCurrentConverger = pSecondary;
}

AecResult ConvTorch::SetConvEvent(ConvEventType event)
{
    if ((nullptr != m_pTuning) && (nullptr != m_pTuning->pCore))
    {
        m_frameThres = m_pTuning->pCore->torchConv.minFrameCount;
    }
    if ((ConvEventInitialize == event) && (nullptr != m_pNormalConverger))
    {
        m_pCurrentConverger = m_pNormalConverger;
    }

    ConvergenceSubmodule* const convergers[] = {m_pNormalConverger, m_pFastConverger};
    AecResult                   result       = AecSuccess;
    for (ConvergenceSubmodule* pConverger : convergers)
    {
        if (nullptr == pConverger)
        {
            continue;
        }
        if (ConvEventSpeedAdjChanged == event)
        {
            pConverger->SetSpeedAdjust(m_speedAdjust);
        }
        else if (ConvEventSpeedBaseChanged == event)
        {
            pConverger->SetBaseSpeedOverride(m_baseSpeedOverride);
        }
        if (AecSuccess != pConverger->SetConvEvent(event))
        {
            result = AecError;
        }
    }
    return result;
}

FLOAT ConvTorch::ConvergeSafeExposure(const ConvergenceSubmoduleInput* pInput)
{
    const BOOL isTorch = (0 != pInput->pConvIn->bIsTorchAEC) ? TRUE : FALSE;
    if ((nullptr != m_pTuning) && (nullptr != m_pTuning->pCore))
    {
        const aecConvergence::TorchConvType& torch = m_pTuning->pCore->torchConv;
        if (((1 == m_bPreviousIsTorch) && (0 == isTorch) && (1 == torch.enableTorchOnOff)) ||
            ((0 == m_bPreviousIsTorch) && (1 == isTorch) && (1 == torch.enableTorchOffOn)))
        {
            m_pCurrentConverger = m_pFastConverger;
            m_frameCounter      = 0;
        }
    }
    m_bPreviousIsTorch = isTorch;

    if (m_pCurrentConverger != m_pNormalConverger)
    {
        // The normal converger keeps running on the side so that its timers and counters stay current.
        if (nullptr != m_pNormalConverger)
        {
            static_cast<void>(m_pNormalConverger->ConvergeSafeExposure(pInput));
        }
        AEC_LOG_VERBOSE("using torch fast convergence");
    }
    else
    {
        AEC_LOG_VERBOSE("using torch normal convergence");
    }
    m_frameCounter += 1;
    return m_pCurrentConverger->ConvergeSafeExposure(pInput);
}

FLOAT ConvTorch::ConvergeShortExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex)
{
    return m_pCurrentConverger->ConvergeShortExposure(pInput, safeIndex);
}

FLOAT ConvTorch::ConvergeLongExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex)
{
    return m_pCurrentConverger->ConvergeLongExposure(pInput, safeIndex);
}

void ConvTorch::GetIsSettled(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput)
{
    m_pCurrentConverger->GetIsSettled(pInput, pOutput);
    const BOOL* pSettled = pOutput->isSettled;
    // Back to the normal converger once the fast one has run its minimum and settled all exposures.
    if ((m_pCurrentConverger != m_pNormalConverger) && (nullptr != m_pNormalConverger) &&
        (m_frameCounter >= m_frameThres) && (1 == pSettled[AECAlgoExposureShort]) &&
        (1 == pSettled[AECAlgoExposureLong]) && (1 == pSettled[AECAlgoExposureSafe]))
    {
        m_pCurrentConverger = m_pNormalConverger;
    }
}

aecglobalelements::ConvFrameSkipType ConvTorch::GetSkipType()
{
    return m_pCurrentConverger->GetSkipType();
}
