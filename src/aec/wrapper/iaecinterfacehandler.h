// Interface between the exported entry points and one camera's translators and core.
#ifndef AEC_WRAPPER_IAECINTERFACEHANDLER_H
#define AEC_WRAPPER_IAECINTERFACEHANDLER_H

#include "aecore/aecore.h"

class IAECInterfaceHandler
{
public:
    virtual ~IAECInterfaceHandler() = default;

    virtual KDKResult setInput(const AECAlgoSetParam* pParam)                                  = 0;
    virtual KDKResult process(const AECAlgoInputList* pInputList, AECAlgoOutputList* pOutputList) = 0;
    virtual KDKResult getData(AECAlgoGetParam* pParam)                                         = 0;
};

#endif // AEC_WRAPPER_IAECINTERFACEHANDLER_H
