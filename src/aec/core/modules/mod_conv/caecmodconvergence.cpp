// Convergence module lifetime: the converger table, tuning changes, flash measurement reset and debug data.
#include "aec/core/modules/mod_conv/caecmodconvergence.h"

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_conv/convflashmeasurement.h"
#include "aec/core/base/aecobjectalloc.h"
#include "platform/statslogger.h"

CAECModConvergence::CAECModConvergence(IAECContext* pContext, IConvergenceCallback* pCallback)
    : m_pCallback(pCallback)
    , m_pSubmoduleTuning(nullptr)
    , m_pConvAlgoTable()
    , m_currAlgoID(ConvIDFast)
    , m_isCameraLaunch(TRUE)
    , m_wasFaceROIActive(FALSE)
    , m_expPrioConvStartIdx(0.0F)
    , m_bEVChanged(FALSE)
    , m_debugData()
    , m_previewEVOffset(0.0F)
    , m_previewEV(0.0F)
    , m_isFollowMode(FALSE)
    , m_settleFlagStatus()
    , m_previousFrameFPS(0.0F)
    , m_avgLuma(0.0F)
    , m_bWaitForFDInPreflash(FALSE)
    , m_EsRatio(0.0F)
    , m_torchNormalAlgoID(ConvIDFast)
{
    m_aecContext         = pContext;
    m_isStartSettingUsed = FALSE;
    CreateSubmodules((nullptr != pContext) ? pContext->getConvTuning() : nullptr);
}

CAECModConvergence::~CAECModConvergence()
{
    DestroySubmodules();
}

VOID CAECModConvergence::CreateSubmodules(const ConvergenceTuningDataType* pTuning)
{
    m_pSubmoduleTuning = pTuning;
    for (INT32 id = 0; id < ConvIDMax; id++)
    {
        // The flash measurement and torch wrappers own their inner converger, so deleting them frees it too.
        m_pConvAlgoTable[id] = ConvergenceSubmodule::CreateInstance(static_cast<ConvAlgoIdentity>(id), pTuning);
        if (nullptr == m_pConvAlgoTable[id])
        {
            AEC_LOG_ERROR("conv algo %d could not be created; it will not run", id);
        }
    }
}

VOID CAECModConvergence::DestroySubmodules()
{
    for (ConvergenceSubmodule*& rpSubmodule : m_pConvAlgoTable)
    {
        AECDestroyObject(rpSubmodule);
        rpSubmodule = nullptr;
    }
}

ConvergenceSubmodule* CAECModConvergence::GetSubmodule(ConvAlgoIdentity identity) const
{
    return ((identity >= 0) && (identity < ConvIDMax)) ? m_pConvAlgoTable[identity] : nullptr;
}

ConvergenceSubmodule* CAECModConvergence::Current() const
{
    return GetSubmodule(m_currAlgoID);
}

VOID CAECModConvergence::SendEvent(ConvEventType event)
{
    ConvergenceSubmodule* pCurrent = Current();
    if (nullptr == pCurrent)
    {
        AEC_LOG_ERROR("conv algo %d missing: event %d dropped", m_currAlgoID, event);
        return;
    }
    if (AecSuccess != pCurrent->SetConvEvent(event))
    {
        AEC_LOG_WARN("conv algo %d refused event %d", m_currAlgoID, event);
    }
}

FLOAT CAECModConvergence::UnitStepSize() const
{
    const ConvergenceTuningDataType* pTuning = m_aecContext->getConvTuning();
    return ((nullptr != pTuning) && (nullptr != pTuning->pCore)) ? pTuning->pCore->unitStepSize : 0.0F;
}

AecResult CAECModConvergence::OnTuningHeaderChange()
{
    const ConvergenceTuningDataType* pTuning = m_aecContext->getConvTuning();
    if (pTuning != m_pSubmoduleTuning)
    {
        // The convergers keep the tuning view they were made with; the core makes the module before its first
        // tuning arrives, so a new view means new convergers, linked up again as the mode had them.
        AEC_LOG_INFO("convergence tuning view changed: convergers rebuilt");
        DestroySubmodules();
        CreateSubmodules(pTuning);
        ConvergenceSubmodule* pFast = GetSubmodule(ConvIDFast);
        if (nullptr != pFast)
        {
            pFast->SetSysLatency(m_aecContext->getPipelineDelay());
        }
        ConvergenceSubmodule* pTorch = GetSubmodule(ConvIDTorch);
        if ((ConvIDTorch == m_currAlgoID) && (nullptr != pTorch))
        {
            pTorch->SetSecondaryAlgo(GetSubmodule(m_torchNormalAlgoID));
        }
    }
    SendEvent(ConvEventInitialize);
    return AecSuccess;
}

AecResult CAECModConvergence::OnFlashMeasKindChange()
{
    // A new kind of measurement must not start from the index the previous kind settled on.
    ConvFlashMeasurement::ResetPreviousFlashMeasTargetIndex();
    return AecSuccess;
}

AecResult CAECModConvergence::OnDebugDataUpdate()
{
    AECDebugData* pDebugData = m_aecContext->getDebugData();
    if (nullptr != pDebugData)
    {
        pDebugData->convergenceInfo = m_debugData;
    }
    return AecSuccess;
}
