// Arbitration module stand-in: exposure tables and limits are not applied until the arbitration stage lands.
#ifndef AEC_CORE_MODULES_MOD_ARB_CAECMODARBITRATION_H
#define AEC_CORE_MODULES_MOD_ARB_CAECMODARBITRATION_H

#include "aec/core/include/iaecarbitration.h"
#include "aec/core/include/iaeccallbacks.h"

// Minimal stand-in for the arbitration module until its stage lands: it does nothing beyond returning success
// and neutral outputs. Every exposure comes out with unity gain and f-number 1.0 and no exposure time.
class CAECModArbitration final : public IAECArbitration
{
public:
    CAECModArbitration(IAECContext* pContext, IArbitrationCallback* pCallback);

    AecResult ArbitrateExposure(ArbitrationStreamInput* pInput, ArbitrationOutput* pOutput) override;
    AecResult ArbitrateExposure(ArbitrationStillInput* pInput, ArbitrationOutput* pOutput) override;
    AecResult OnLDMIrisTable(LDMIrisTableData irisTable) override;
    FLOAT     QueryISO2Gain(UINT32 ISOValue, BOOL isStill) override;
    FLOAT     QueryExpTime2FPS(UINT64 exposureTime) override;
    AecResult QuerySensitivity2ExpIndex(const FLOAT*             pSensitivities,
                                        AECAlgoOperationModeType mode,
                                        FLOAT*                   pExpIndices) override;
    AecResult ComputeTargetIndexInMultiCam(FLOAT luxIndex, FLOAT* pTargetIndices) override;

private:
    static VOID FillNeutralOutput(ArbitrationOutput* pOutput);
};

#endif // AEC_CORE_MODULES_MOD_ARB_CAECMODARBITRATION_H
