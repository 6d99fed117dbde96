// Metering module stand-in: statistics to luma and targets are not computed until the metering stage lands.
#ifndef AEC_CORE_MODULES_MOD_MTR_CAECMODMETERING_H
#define AEC_CORE_MODULES_MOD_MTR_CAECMODMETERING_H

#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/include/iaecmetering.h"

// Minimal stand-in for the metering module until its stage lands: it publishes the tuned EV capabilities and
// otherwise returns success and neutral outputs, so the pipeline runs on the targets the core seeds from the
// frame history.
class CAECModMetering final : public IAECMetering
{
public:
    CAECModMetering(IAECContext* pContext, IMeteringCallback* pCallback);

    AecResult ProcessFrameStats(const AECMeteringFrameProcInput* pInput, AECMeteringFrameProcOutput* pOutput) override;
    AecResult GetSnapshotEstimation(const AECMeteringSnapshotInput* pInput, AECMeteringSnapshotOutput* pOutput) override;
    AecResult HandleFlashEstimationStages(AECMeteringFlashEstStage stage, FLOAT flux) override;
    VOID      EstimateLuxIndexForSlave(AECMeteringFrameProcOutput* pOutput) override;
    VOID      GetYStats(FLOAT* pYStats, UINT32 capacity, UINT32& count) override;
    AecResult ProcessFrameStatsForIR(AECIRFrameProcInput* pInput) override;
    AecResult OnTuningHeaderChange() override;

private:
    IMeteringCallback* m_pCallback;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CAECMODMETERING_H
