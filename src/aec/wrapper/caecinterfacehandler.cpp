// One camera's handler: the four translators and the core, held by value, between the host's lists and the core.
#include "aec/wrapper/caecinterfacehandler.h"

#include "platform/velaallocator.h"
#include "platform/velalog.h"

namespace
{

constexpr SIZE_T HandlerAlignment = 8;
static_assert(alignof(CAECInterfaceHandler) <= HandlerAlignment, "the library allocator aligns to 8 bytes");

} // namespace

void* CAECInterfaceHandler::operator new(std::size_t size) noexcept
{
    return VelaCalloc(1, size, HandlerAlignment);
}

void CAECInterfaceHandler::operator delete(void* pMemory) noexcept
{
    VelaFree(pMemory);
}

KDKResult CAECInterfaceHandler::setInput(const AECAlgoSetParam* pParam)
{
    const AECCoreSetParam* pCoreParam = AECSetInput.translate(pParam);
    if (nullptr == pCoreParam)
    {
        return VelaResultEFailed;
    }
    return hAec.setInput(pCoreParam);
}

KDKResult CAECInterfaceHandler::process(const AECAlgoInputList* pInputList, AECAlgoOutputList* pOutputList)
{
    const AECCoreInput* pCoreInput  = AECProcessInput.translate(pInputList);
    AECCoreOutput*      pCoreOutput = static_cast<AECCoreOutput*>(AECProcessOutput.getDataAddress());
    if ((nullptr == pCoreInput) || (nullptr == pCoreOutput))
    {
        return VelaResultEFailed;
    }

    const KDKResult result = hAec.process(pCoreInput, pCoreOutput);
    if (VelaResultSuccess != result)
    {
        // A refused frame leaves the host's outputs untouched.
        return result;
    }
    // A frame the core skipped is translated too: the host then gets the previous frame's data.
    return (nullptr == AECProcessOutput.translate(pOutputList)) ? VelaResultEFailed : VelaResultSuccess;
}

KDKResult CAECInterfaceHandler::getData(AECAlgoGetParam* pParam)
{
    AECMetadataQuery* pQuery = AECGetData.prepareInput(pParam);
    if (nullptr == pQuery)
    {
        return VelaResultEFailed;
    }
    const KDKResult result = hAec.queryMetaData(pQuery);
    if (VelaResultSuccess != result)
    {
        return result;
    }
    return (nullptr == AECGetData.prepareOutput(pParam)) ? VelaResultEFailed : VelaResultSuccess;
}

IAECInterfaceHandler* getAECInstance()
{
    CAECInterfaceHandler* pHandler = new CAECInterfaceHandler();
    if (nullptr == pHandler)
    {
        AEC_VLOG_ERROR("No memory for the AEC interface handler");
    }
    return pHandler;
}
