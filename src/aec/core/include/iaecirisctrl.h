// Interface of the iris control module: target f-number to P-iris motor commands.
#ifndef AEC_CORE_INCLUDE_IAECIRISCTRL_H
#define AEC_CORE_INCLUDE_IAECIRISCTRL_H

#include "aec/core/include/aecirisrecords.h"
#include "aec/core/include/iaeccomponent.h"
#include "aecore/aecore.h"

class IAECIrisCtrl : public IAECComponent
{
public:
    virtual AecResult ProcessIris(const AECIrisFrameProcInput* pInput, AECIrisFrameProcOutput* pOutput) = 0;
    // TRUE once the iris stands at the position of the last processed frame.
    virtual BOOL      QueryPIrisSettleInfo() = 0;
    virtual AecResult OnLDMIrisTable(LDMIrisTableData irisTable) = 0;
};

#endif // AEC_CORE_INCLUDE_IAECIRISCTRL_H
