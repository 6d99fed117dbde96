// One camera's handler: the four translators and the core, held by value, between the host's lists and the core.
#ifndef AEC_WRAPPER_CAECINTERFACEHANDLER_H
#define AEC_WRAPPER_CAECINTERFACEHANDLER_H

#include <cstddef>

#include "aecore/aecore.h"
#include "aec/core/base/caeccore.h"
#include "aec/wrapper/caecgetparamtranslator.h"
#include "aec/wrapper/caecprocessinputtranslator.h"
#include "aec/wrapper/caecprocessoutputtranslator.h"
#include "aec/wrapper/caecsetparamtranslator.h"
#include "aec/wrapper/iaecinterfacehandler.h"

class CAECInterfaceHandler : public IAECInterfaceHandler
{
public:
    CAECInterfaceHandler()           = default;
    ~CAECInterfaceHandler() override = default;

    CAECInterfaceHandler(const CAECInterfaceHandler&)            = delete;
    CAECInterfaceHandler& operator=(const CAECInterfaceHandler&) = delete;

    // Instances live in the library allocator's zeroed memory, so that deleting one through the interface
    // returns it there. A failed allocation yields null instead of a constructed object.
    static void* operator new(std::size_t size) noexcept;
    static void  operator delete(void* pMemory) noexcept;

    KDKResult setInput(const AECAlgoSetParam* pParam) override;
    KDKResult process(const AECAlgoInputList* pInputList, AECAlgoOutputList* pOutputList) override;
    KDKResult getData(AECAlgoGetParam* pParam) override;

private:
    CAECSetParamTranslator      AECSetInput;
    CAECGetParamTranslator      AECGetData;
    CAECProcessInputTranslator  AECProcessInput;
    CAECProcessOutputTranslator AECProcessOutput;
    CAECCore                    hAec;
};

// Creates one camera's handler with its translators and core; null when no memory is left.
IAECInterfaceHandler* getAECInstance();

#endif // AEC_WRAPPER_CAECINTERFACEHANDLER_H
