// Metering module stand-in: statistics to luma and targets are not computed until the metering stage lands.
#include "aec/core/modules/mod_mtr/caecmodmetering.h"

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/include/iaeccontext.h"
#include "tuning_aecmetering.h"

#include <cstring>

CAECModMetering::CAECModMetering(IAECContext* pContext, IMeteringCallback* pCallback)
    : m_pCallback(pCallback)
{
    m_aecContext = pContext;
}

AecResult CAECModMetering::OnTuningHeaderChange()
{
    // The EV range and step of the host's exposure compensation come from the tuned EV luma table.
    const MeteringTuningDataType* pTuning = (nullptr != m_aecContext) ? m_aecContext->getMtrTuning() : nullptr;
    if ((nullptr == pTuning) || (nullptr == pTuning->pCore) || (nullptr == m_pCallback))
    {
        return AecSuccess;
    }
    const aecMetering::EVLumaTargetType& rEV = pTuning->pCore->mtrLumaTarget.EVLumaTarget;
    m_pCallback->SetEVCapability(static_cast<INT8>(rEV.minEVValue), static_cast<INT8>(rEV.maxEVValue),
                                 static_cast<INT8>(rEV.stepsPerEV));
    return AecSuccess;
}

AecResult CAECModMetering::ProcessFrameStats(const AECMeteringFrameProcInput* /*pInput*/,
                                             AECMeteringFrameProcOutput* /*pOutput*/)
{
    // The caller zeroed the output and seeded the targets; they pass through unchanged.
    return AecSuccess;
}

AecResult CAECModMetering::GetSnapshotEstimation(const AECMeteringSnapshotInput* /*pInput*/,
                                                 AECMeteringSnapshotOutput* pOutput)
{
    std::memset(pOutput, 0, sizeof(*pOutput));
    return AecSuccess;
}

AecResult CAECModMetering::HandleFlashEstimationStages(AECMeteringFlashEstStage /*stage*/, FLOAT /*flux*/)
{
    return AecSuccess;
}

VOID CAECModMetering::EstimateLuxIndexForSlave(AECMeteringFrameProcOutput* /*pOutput*/)
{
}

VOID CAECModMetering::GetYStats(FLOAT* /*pYStats*/, UINT32 /*capacity*/, UINT32& count)
{
    count = 0;
}

AecResult CAECModMetering::ProcessFrameStatsForIR(AECIRFrameProcInput* /*pInput*/)
{
    return AecSuccess;
}
