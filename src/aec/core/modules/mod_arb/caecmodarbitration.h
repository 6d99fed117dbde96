// Arbitration module stand-in: exposure indices go through the tuned exposure table; limits, anti-banding and HDR wait for the arbitration stage.
#ifndef AEC_CORE_MODULES_MOD_ARB_CAECMODARBITRATION_H
#define AEC_CORE_MODULES_MOD_ARB_CAECMODARBITRATION_H

#include "aec/core/include/iaecarbitration.h"
#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/modules/mod_arb/cexptable.h"

// Minimal stand-in for the arbitration module until its stage lands: each exposure index is looked up in the
// raw exposure table of the tuning (table 0), so exposures are real sensor settings; the table's sensitivity
// (for the lux index) and its range (the streaming limitation that convergence clamps to) are published.
// Frame-rate and EV knees, limits from the sensor and manual settings, anti-banding, manual modes, HDR and
// multi-camera sync are not applied yet.
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

    AecResult OnTuningHeaderChange() override;

private:
    // Adopts table 0 of the tuning in force; FALSE while there is none.
    BOOL      UpdateExpTable();
    // Looks up the three indices into the exposure and ideal exposure sets of pOutput.
    AecResult LookUpExposures(const FLOAT* pExpIndices, ArbitrationOutput* pOutput);

    IArbitrationCallback* m_pCallback;
    CExpTable m_expTable;
    FLOAT     m_sensitivityCorrection; // of the adopted table, 0.0 while none is adopted
};

#endif // AEC_CORE_MODULES_MOD_ARB_CAECMODARBITRATION_H
