// Translation of one host set parameter into the core's AECCoreSetParam.
#ifndef AEC_WRAPPER_CAECSETPARAMTRANSLATOR_H
#define AEC_WRAPPER_CAECSETPARAMTRANSLATOR_H

#include "aecore/aecore.h"
#include "aec/core/include/iaeccore.h"
#include "aec/wrapper/caecinterfacetranslator.h"

class CAECSetParamTranslator : public CAECInterfaceTranslator
{
public:
    CAECSetParamTranslator();
    ~CAECSetParamTranslator() = default;

    // Fills the owned record from pParam. A payload shorter than its type's record leaves the data zeroed and is
    // no error; a longer one aborts. Returns null only when pParam or a payload the type needs is missing.
    AECCoreSetParam* translate(const AECAlgoSetParam* pParam);

private:
    // Sensor mode to exposure limits, with no size check on the host's record.
    VOID convertSensorInfo(const StatsSensorInfo* pSensorInfo);

    AECCoreSetParam m_setParam;
};

#endif // AEC_WRAPPER_CAECSETPARAMTRANSLATOR_H
