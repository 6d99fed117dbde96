// Interface of the diagnostic module: scripted exposure sweeps for bench measurement.
#ifndef AEC_CORE_INCLUDE_IAECDIAGNOSTIC_H
#define AEC_CORE_INCLUDE_IAECDIAGNOSTIC_H

#include "aec/core/include/aecdiagnosticrecords.h"
#include "aec/core/include/iaeccomponent.h"
#include "aecore/aecore.h"

class IAECDiagnostic : public IAECComponent
{
public:
    // Advances the running sweep by one frame and returns the exposure the sensor is to use.
    virtual AECAlgoExposureData ProcessTests(DiagInput* pInput) = 0;
    virtual DiagOutput          GetDiagStatus() = 0;
};

#endif // AEC_CORE_INCLUDE_IAECDIAGNOSTIC_H
