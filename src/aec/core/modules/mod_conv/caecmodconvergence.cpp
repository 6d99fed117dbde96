// Convergence module stand-in: exposure stepping and settle decisions are not computed until the convergence stage lands.
#include "aec/core/modules/mod_conv/caecmodconvergence.h"

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/include/iaeccontext.h"
#include "tuning_aecstartup.h"

CAECModConvergence::CAECModConvergence(IAECContext* pContext, IConvergenceCallback* /*pCallback*/)
{
    m_aecContext = pContext;
}

AecResult CAECModConvergence::ConvergeFrameExposure(const ConvergenceInput* pInput, ConvergenceOutput* pOutput)
{
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        pOutput->convExpSets[i].expIndex = pInput->pTargetIndices[i];
    }
    // Unity gains are the neutral values every reader of the predictive fields expects.
    pOutput->predictiveGain = 1.0F;
    pOutput->predictiveADRC = 1.0F;
    return AecSuccess;
}

AecResult CAECModConvergence::GetStartExposureIndices(FLOAT* pIndices, FLOAT* pLuxIndex, BOOL /*refuseFastStart*/)
{
    // Until the convergence stage lands every mode starts from the tuned start index of an ordinary start.
    const ConvergenceTuningDataType* pTuning    = (nullptr != m_aecContext) ? m_aecContext->getConvTuning() : nullptr;
    FLOAT                            startIndex = 0.0F;
    if ((nullptr != pTuning) && (nullptr != pTuning->pStartUp))
    {
        startIndex = pTuning->pStartUp->generic.startExpIndex;
    }
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        pIndices[i] = startIndex;
    }
    *pLuxIndex = startIndex;
    return AecSuccess;
}
