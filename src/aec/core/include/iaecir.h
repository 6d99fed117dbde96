// Interface of the IR control module: IR LED and IR cut decisions, and the exposure lock they need.
#ifndef AEC_CORE_INCLUDE_IAECIR_H
#define AEC_CORE_INCLUDE_IAECIR_H

#include "aec/core/include/aecirrecords.h"
#include "aec/core/include/iaeccomponent.h"
#include "aecore/aecore.h"

class IAECIR : public IAECComponent
{
public:
    virtual AecResult          ProcessIR(const AECIRFrameProcInput* pInput, AECIRFrameProcOutput* pOutput) = 0;
    virtual AECLockRequestType QueryAECLockRequestByIR() = 0;
    // Gives the module the settle flag the core decided for the frame.
    virtual VOID               UpdateAECSettleFlag(BOOL isAECSettled) = 0;
};

#endif // AEC_CORE_INCLUDE_IAECIR_H
