// Translation of a host get parameter into the core's AECMetadataQuery and of the answer back into the host's outputs.
#ifndef AEC_WRAPPER_CAECGETPARAMTRANSLATOR_H
#define AEC_WRAPPER_CAECGETPARAMTRANSLATOR_H

#include "aecore/aecore.h"
#include "aec/core/include/iaeccore.h"
#include "aec/wrapper/caecinterfacetranslator.h"

class CAECGetParamTranslator : public CAECInterfaceTranslator
{
public:
    CAECGetParamTranslator();
    ~CAECGetParamTranslator() = default;

    // Zeroes the owned query, stores the type and takes the inputs the type needs. Null only for a null pParam.
    AECMetadataQuery* prepareInput(const AECAlgoGetParam* pParam);

    // Writes the answer into the host's output entries in list order. Null when an entry is too small; the
    // entries before it stay written.
    AECMetadataQuery* prepareOutput(AECAlgoGetParam* pParam);

private:
    // Copies the data of every input entry of inputType into pDst; the last one that fits wins.
    static VOID copyInputs(const AECAlgoGetParam* pParam, AECAlgoGetParamInputType inputType, VOID* pDst, SIZE_T dstSize);

    // Writes one output entry; FALSE when the entry cannot take its record.
    BOOL writeOutput(AECAlgoGetParamOutput* pEntry);

    AECMetadataQuery m_getParam;
};

#endif // AEC_WRAPPER_CAECGETPARAMTRANSLATOR_H
