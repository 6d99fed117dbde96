// Metering module stand-in: statistics to luma and targets are not computed until the metering stage lands.
#include "aec/core/modules/mod_mtr/caecmodmetering.h"

#include <cstring>

CAECModMetering::CAECModMetering(IAECContext* pContext, IMeteringCallback* /*pCallback*/)
{
    m_aecContext = pContext;
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
