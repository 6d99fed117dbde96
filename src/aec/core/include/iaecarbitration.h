// Interface of the arbitration module: exposure indices to exposure time, gain and f-number.
#ifndef AEC_CORE_INCLUDE_IAECARBITRATION_H
#define AEC_CORE_INCLUDE_IAECARBITRATION_H

#include "aec/core/include/aecarbitrationrecords.h"
#include "aec/core/include/iaeccomponent.h"
#include "aecore/aecore.h"

class IAECArbitration : public IAECComponent
{
public:
    // Preview frame.
    virtual AecResult ArbitrateExposure(ArbitrationStreamInput* pInput, ArbitrationOutput* pOutput) = 0;
    // Still capture query.
    virtual AecResult ArbitrateExposure(ArbitrationStillInput* pInput, ArbitrationOutput* pOutput) = 0;
    virtual AecResult OnLDMIrisTable(LDMIrisTableData irisTable) = 0;
    virtual FLOAT     QueryISO2Gain(UINT32 ISOValue, BOOL isStill) = 0;
    virtual FLOAT     QueryExpTime2FPS(UINT64 exposureTime) = 0;
    // Converts three sensitivities to exposure indices of the table of operation mode mode.
    virtual AecResult QuerySensitivity2ExpIndex(const FLOAT*             pSensitivities,
                                                AECAlgoOperationModeType mode,
                                                FLOAT*                   pExpIndices) = 0;
    // Maps the peer camera's exposure to three target indices of this camera.
    virtual AecResult ComputeTargetIndexInMultiCam(FLOAT luxIndex, FLOAT* pTargetIndices) = 0;
};

#endif // AEC_CORE_INCLUDE_IAECARBITRATION_H
