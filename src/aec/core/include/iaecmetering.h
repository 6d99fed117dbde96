// Interface of the metering module: statistics to luma, targets and target exposure indices.
#ifndef AEC_CORE_INCLUDE_IAECMETERING_H
#define AEC_CORE_INCLUDE_IAECMETERING_H

#include "aec/core/include/aecirrecords.h"
#include "aec/core/include/aecmeteringrecords.h"
#include "aec/core/include/iaeccomponent.h"
#include "aecore/aecore.h"

class IAECMetering : public IAECComponent
{
public:
    virtual AecResult ProcessFrameStats(const AECMeteringFrameProcInput* pInput,
                                        AECMeteringFrameProcOutput*      pOutput) = 0;
    virtual AecResult GetSnapshotEstimation(const AECMeteringSnapshotInput* pInput,
                                            AECMeteringSnapshotOutput*      pOutput) = 0;
    virtual AecResult HandleFlashEstimationStages(AECMeteringFlashEstStage stage, FLOAT flux) = 0;
    // Replaces the lux index of a camera that follows its peer's exposure.
    virtual VOID EstimateLuxIndexForSlave(AECMeteringFrameProcOutput* pOutput) = 0;
    // Copies at most capacity region lumas of the last grid to pYStats; count receives how many.
    virtual VOID GetYStats(FLOAT* pYStats, UINT32 capacity, UINT32& count) = 0;
    // Fills CurAvgLuma and BGStats of the IR input from the frame's statistics.
    virtual AecResult ProcessFrameStatsForIR(AECIRFrameProcInput* pInput) = 0;
};

#endif // AEC_CORE_INCLUDE_IAECMETERING_H
