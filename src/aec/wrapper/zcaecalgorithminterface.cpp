// Exported entry points of the library: callback tables, instance creation and destruction, and the per-call dispatch.
#include "aec/wrapper/zcaecalgorithminterface.h"

#include <cstdlib>
#include <new>

#include "aec/wrapper/caecinterfacehandler.h"
#include "aec/wrapper/querydepthaecenable.h"
#include "platform/osutils.h"
#include "platform/statslogger.h"
#include "platform/velaallocator.h"
#include "platform/velalog.h"

namespace Vela
{

LyrAlgorithmInterface g_LyrAlgoInterface = {};

} // namespace Vela

extern "C"
{
// For the host's own bookkeeping; the library never reads or writes it.
AECORE_API AECORE_THREAD_LOCAL UINT32 g_cameraId = 0xFFFFFFFF;
}

namespace
{

// Instances live in the library allocator's memory, 8-byte aligned like every long-lived object.
constexpr SIZE_T InstanceAlignment = 8;
static_assert(alignof(Vela::AECAlgorithm_Internal) <= InstanceAlignment, "the library allocator aligns to 8 bytes");

// Cameras the instance table holds; a camera id is the index.
constexpr UINT32 MaxCameraCount = 8;

// A host puts the camera info among the first entries of its create list.
constexpr UINT32 CameraInfoSearchCount = 5;

// A logger entry carries the function pointer itself.
constexpr UINT32 LoggerEntryMinSize = 8;

// The focus algorithm's section, whose depth tags depth AEC reads.
const CHAR AFAlgoSectionName[] = "com.kvr.stats.af";

// Depth tags in the order in which the core reads them from the per-frame vendor tag list.
const CHAR* const DepthVendorTagNames[] = {
    "horiCountTag",
    "vertCountTag",
    "widthRegionTag",
    "heightRegionTag",
    "horiOffsetTag",
    "vertOffsetTag",
    "PDMapTag",
    "ConfidenceMapTag",
    "DefocusRangeNearMapTag",
    "DefocusRangeFarMapTag",
    "DefocusMapTag",
    "DistanceMapTag",
    "AFSelectionMapTag",
};
constexpr UINT32 DepthVendorTagCount = sizeof(DepthVendorTagNames) / sizeof(DepthVendorTagNames[0]);
static_assert(13 == DepthVendorTagCount, "depth AEC depends on 13 vendor tags");

// Depth maps apply to the frame after the one they were requested for.
constexpr UINT32 DepthVendorTagAppliedDelay = 1;

// Instance of each camera, indexed by camera id.
Vela::AECAlgorithm_Internal* pAECAlgoHandler[MaxCameraCount] = {};

const CHAR* ResultName(KDKResult result)
{
    // In the order of the result codes.
    static const CHAR* const ResultNames[] = {
        "VelaResultSuccess",
        "VelaResultEFailed",
        "VelaResultEUnsupported",
        "VelaResultEInvalidState",
        "VelaResultEInvalidArg",
        "VelaResultEInvalidPointer",
        "VelaResultENoSuch",
        "VelaResultEOutOfBounds",
        "VelaResultENoMemory",
        "VelaResultETimeout",
    };
    constexpr KDKResult NameCount = static_cast<KDKResult>(sizeof(ResultNames) / sizeof(ResultNames[0]));
    return ((result >= 0) && (result < NameCount)) ? ResultNames[result] : "VelaResultUnknown";
}

Vela::AECAlgorithm_Internal* ToInternal(LYRAECAlgorithm* pAlgo)
{
    return static_cast<Vela::AECAlgorithm_Internal*>(pAlgo);
}

VOID AECAlgoSetNodeInterface(LyrAlgorithmInterface* pInterface)
{
    if (nullptr == pInterface)
    {
        AEC_VLOG_ERROR("Host algorithm interface is NULL");
        return;
    }
    Vela::g_LyrAlgoInterface = *pInterface;

    if (nullptr != pInterface->pGetVendorTagBase)
    {
        LyrVendorTagBaseInfo info = {};
        info.size                 = sizeof(info);
        info.vendorTagBase        = 0;
        info.pComponentName       = AFAlgoSectionName;
        info.pTagName             = nullptr;
        // The base is informational only: tags are resolved by name when they are needed.
        if (VelaResultSuccess == pInterface->pGetVendorTagBase(&info))
        {
            AEC_VLOG_INFO("VendorTagBaseForAF: %u", info.vendorTagBase);
        }
    }
}

// Camera id of a create list: the camera info among its first entries, else camera 0.
KDKResult FindCameraId(const AECAlgoCreateParamList* pCreateParams, UINT32* pCameraId)
{
    *pCameraId = 0;
    if ((nullptr == pCreateParams) || (nullptr == pCreateParams->pCreateParamList))
    {
        return VelaResultSuccess;
    }

    // Never past the host's list, even when it is shorter than the usual five entries.
    const UINT32 searchCount = (pCreateParams->numberOfCreateParams < CameraInfoSearchCount)
                                   ? pCreateParams->numberOfCreateParams
                                   : CameraInfoSearchCount;
    for (UINT32 index = 0; index < searchCount; ++index)
    {
        const AECAlgoCreateParam& entry = pCreateParams->pCreateParamList[index];
        if (AECAlgoCreateParamTypeCameraInfo != entry.createParamType)
        {
            continue;
        }
        if (nullptr == entry.pCreateParam)
        {
            AEC_VLOG_ERROR("Camera info create parameter has no data");
            return VelaResultEInvalidArg;
        }
        *pCameraId = static_cast<const StatsCameraInfo*>(entry.pCreateParam)->cameraId;
        break;
    }

    if (*pCameraId >= MaxCameraCount)
    {
        AEC_VLOG_ERROR("Camera id %u out of range: at most %u cameras", *pCameraId, MaxCameraCount);
        return VelaResultEInvalidArg;
    }
    return VelaResultSuccess;
}

// The core's log sink: the pointer of the first valid logger entry, which a host puts first in its list.
VOID SetLoggerFromCreateList(const AECAlgoCreateParamList* pCreateParams)
{
    if ((nullptr == pCreateParams) || (nullptr == pCreateParams->pCreateParamList))
    {
        return;
    }
    for (UINT32 index = 0; index < pCreateParams->numberOfCreateParams; ++index)
    {
        const AECAlgoCreateParam& entry = pCreateParams->pCreateParamList[index];
        if ((AECAlgoCreateParamsLoggerFunctionPtr == entry.createParamType) && (nullptr != entry.pCreateParam) &&
            (entry.sizeOfCreateParam >= LoggerEntryMinSize))
        {
            gStatsLogger = reinterpret_cast<StatsLoggingFunction>(entry.pCreateParam);
            return;
        }
    }
}

// Releases an instance with everything it owns.
VOID DestroyInstance(Vela::AECAlgorithm_Internal* pInstance)
{
    delete pInstance->pAlgo;
    pInstance->pAlgo = nullptr;
    std::free(pInstance->pLogs);
    pInstance->pLogs = nullptr;
    VelaFree(pInstance);
}

// Reports a vendor tag the host does not know, in the log and, when tracing is on, as a trace mark.
VOID ReportMissingVendorTag(const CHAR* pTagName)
{
    AEC_VLOG_ERROR("Failed to retrieve Vendor Tag %s.%s", AFAlgoSectionName, pTagName);
    if (0 != (Vela::g_traceInfo & Vela::Log::GroupStatsAEC))
    {
        CHAR mark[128];
        Vela::OsUtils::SNPrintF(mark, sizeof(mark), "[ERROR]Failed to retrieve Vendor Tag %s.%s", AFAlgoSectionName,
                                pTagName);
        Vela::OsUtils::TraceBegin(Vela::Log::GroupStatsAEC, mark);
        Vela::OsUtils::TraceEnd(Vela::Log::GroupStatsAEC);
    }
}

// Answers the host's question which vendor tags this instance depends on: the depth tags when the sensor
// focuses and the tuning enables depth AEC; otherwise the host's list stays as it is.
VOID FillDependentVendorTags(AECAlgoGetParam* pGetParam, BOOL bDepthAECEnable)
{
    UINT32                          isFixedFocus = 0;
    const AECAlgoGetParamInputList& inputs       = pGetParam->inputList;
    if (nullptr != inputs.pAECGetParamList)
    {
        for (UINT32 index = 0; index < inputs.numberOfAECGetInputParams; ++index)
        {
            const AECAlgoGetParamInput& entry = inputs.pAECGetParamList[index];
            if ((AECAlgoGetParamInputIsFixedFocus == entry.inputType) && (nullptr != entry.pInputData))
            {
                isFixedFocus = *static_cast<const UINT32*>(entry.pInputData);
            }
        }
    }
    AEC_VLOG_INFO("isFixedFocus:%d bDepthAECEnable:%d", isFixedFocus, bDepthAECEnable);

    if ((0 != isFixedFocus) || (TRUE != bDepthAECEnable))
    {
        return;
    }

    const AECAlgoGetParamOutputList& outputs = pGetParam->outputList;
    if ((nullptr == outputs.pAECOutputList) || (0 == outputs.numberOfAECOutputs) ||
        (nullptr == outputs.pAECOutputList[0].pOutputData))
    {
        AEC_VLOG_ERROR("Dependent vendor tag query has no output list");
        return;
    }
    if (nullptr == Vela::g_LyrAlgoInterface.pQueryVendorTagLocation)
    {
        AEC_VLOG_ERROR("Host gave no vendor tag query");
        return;
    }

    StatsVendorTagInfoList* pTagList = static_cast<StatsVendorTagInfoList*>(outputs.pAECOutputList[0].pOutputData);
    UINT32                  tagIds[DepthVendorTagCount];
    for (UINT32 index = 0; index < DepthVendorTagCount; ++index)
    {
        tagIds[index] = 0xFFFFFFFF;
    }
    for (UINT32 index = 0; index < DepthVendorTagCount; ++index)
    {
        if (VelaResultSuccess !=
            Vela::g_LyrAlgoInterface.pQueryVendorTagLocation(AFAlgoSectionName, DepthVendorTagNames[index], &tagIds[index]))
        {
            ReportMissingVendorTag(DepthVendorTagNames[index]);
            pTagList->vendorTagCount = 0;
            return;
        }
    }

    pTagList->vendorTagCount = DepthVendorTagCount;
    for (UINT32 index = 0; index < DepthVendorTagCount; ++index)
    {
        pTagList->vendorTag[index].vendorTagId  = tagIds[index];
        pTagList->vendorTag[index].appliedDelay = DepthVendorTagAppliedDelay;
    }
}

} // namespace

extern "C"
{

AECORE_API VOID LyrAECAlgorithmEntry(LyrAECAlgorithmCallbacks* pCallbacks)
{
    if (nullptr == pCallbacks)
    {
        AEC_VLOG_ERROR("Algorithm callbacks are NULL");
        return;
    }
    // Versions and the vendor tag query stay as the host set them: this library publishes no vendor tags.
    pCallbacks->size                = sizeof(LyrAECAlgorithmCallbacks);
    pCallbacks->pfnGetCapabilities  = AECGetCapabilities;
    pCallbacks->pfnCreate           = CreateAECAlgorithm;
    pCallbacks->pfnSetAlgoInterface = AECAlgoSetNodeInterface;
}

AECORE_API KDKResult AECGetCapabilities(LyrAlgorithmCapsInfo* pCapsInfo)
{
    if (nullptr == pCapsInfo)
    {
        AEC_VLOG_ERROR("Capabilities record is NULL");
        return VelaResultEInvalidPointer;
    }
    AEC_VLOG_INFO("Get supported Capabilities size:%d, algomaks: %d", pCapsInfo->size, pCapsInfo->algorithmCapsMask);
    return VelaResultSuccess;
}

AECORE_API KDKResult CreateAECAlgorithm(const AECAlgoCreateParamList* pCreateParams, LYRAECAlgorithm** ppAlgo)
{
    const KDKResult result = CreateAECAlgoHandler(pCreateParams, ppAlgo);
    AEC_VLOG_INFO("CreateAECAlgorithm result %s", ResultName(result));
    return result;
}

AECORE_API KDKResult CreateAECAlgoHandler(const AECAlgoCreateParamList* pCreateParams, LYRAECAlgorithm** ppAlgo)
{
    if (nullptr == ppAlgo)
    {
        AEC_VLOG_ERROR("CreateAECAlgoHandler failed with result:%s", ResultName(VelaResultEInvalidPointer));
        return VelaResultEInvalidPointer;
    }

    UINT32    cameraId = 0;
    KDKResult result   = FindCameraId(pCreateParams, &cameraId);
    if (VelaResultSuccess != result)
    {
        *ppAlgo = nullptr;
        AEC_VLOG_ERROR("CreateAECAlgoHandler failed with result:%s", ResultName(result));
        return result;
    }

    if (nullptr != pAECAlgoHandler[cameraId])
    {
        // No reference count: every create of a running camera shares its one instance, and its logger stays.
        *ppAlgo = pAECAlgoHandler[cameraId];
        AEC_VLOG_INFO("Instance of AEC Algo for CameraID %d already running", cameraId);
        return VelaResultSuccess;
    }

    Vela::AECAlgorithm_Internal* pInstance = nullptr;
    VOID*                        pMemory   = VelaCalloc(1, sizeof(Vela::AECAlgorithm_Internal), InstanceAlignment);
    if (nullptr == pMemory)
    {
        result = VelaResultENoMemory;
    }
    else
    {
        pInstance = new (pMemory) Vela::AECAlgorithm_Internal();
        AEC_VLOG_INFO("New AEC Algo Instance Created");
        SetLoggerFromCreateList(pCreateParams);

        pInstance->AECProcess  = AECProcess;
        pInstance->AECGetParam = AECGetParam;
        pInstance->AECSetParam = AECSetParam;
        pInstance->AECDestroy  = AECDestroy;
        pInstance->pAlgo       = getAECInstance();
        if (nullptr == pInstance->pAlgo)
        {
            result = VelaResultEFailed;
        }
        else
        {
            *ppAlgo                   = pInstance;
            pAECAlgoHandler[cameraId] = pInstance;
            result                    = SetOperationModeTypeInit(pInstance);
            if (VelaResultSuccess == result)
            {
                return VelaResultSuccess;
            }
        }
    }

    // A failed instance is released at once: nobody else holds it.
    if (nullptr != pInstance)
    {
        DestroyInstance(pInstance);
    }
    *ppAlgo                   = nullptr;
    pAECAlgoHandler[cameraId] = nullptr;
    AEC_VLOG_ERROR("CreateAECAlgoHandler failed with result:%s", ResultName(result));
    return result;
}

AECORE_API KDKResult SetOperationModeTypeInit(LYRAECAlgorithm* pAlgo)
{
    if ((nullptr == pAlgo) || (nullptr == pAlgo->AECSetParam))
    {
        return VelaResultEInvalidPointer;
    }
    AECAlgoOperationModeType mode  = AECAlgoOperationModeInit;
    AECAlgoSetParam          param = {};
    param.pAECSetParam             = &mode;
    param.sizeOfAECSetParam        = sizeof(mode);
    param.setParamType             = AECAlgoSetParamOperationMode;
    AECAlgoSetParamList list       = {};
    list.pAECSetParamList          = &param;
    list.numberOfAECSetParams      = 1;
    return pAlgo->AECSetParam(pAlgo, &list);
}

AECORE_API KDKResult AECProcess(LYRAECAlgorithm* pAlgo, const AECAlgoInputList* pInputList, AECAlgoOutputList* pOutputList)
{
    if ((nullptr == pAlgo) || (nullptr == pInputList) || (nullptr == pOutputList) ||
        (nullptr == ToInternal(pAlgo)->pAlgo))
    {
        return VelaResultEInvalidPointer;
    }
    return ToInternal(pAlgo)->pAlgo->process(pInputList, pOutputList);
}

AECORE_API KDKResult AECSetParam(LYRAECAlgorithm* pAlgo, const AECAlgoSetParamList* pSetParams)
{
    if ((nullptr == pAlgo) || (nullptr == pSetParams) || (nullptr == pSetParams->pAECSetParamList) ||
        (0 == pSetParams->numberOfAECSetParams) || (nullptr == ToInternal(pAlgo)->pAlgo))
    {
        return VelaResultEInvalidPointer;
    }

    Vela::AECAlgorithm_Internal* pInstance = ToInternal(pAlgo);
    for (UINT32 index = 0; index < pSetParams->numberOfAECSetParams; ++index)
    {
        // Entries before a failing one stay applied; the ones after it are not tried.
        const AECAlgoSetParam* pEntry = &pSetParams->pAECSetParamList[index];
        const KDKResult        result = pInstance->pAlgo->setInput(pEntry);
        if (VelaResultSuccess != result)
        {
            return result;
        }
        if (AECAlgoSetParamSorentaData == pEntry->setParamType)
        {
            pInstance->bDepthAECEnable = QueryDepthAECEnable(static_cast<const StatsTuningData*>(pEntry->pAECSetParam));
            AEC_VLOG_INFO("bDepthAECEnable:%d", pInstance->bDepthAECEnable);
        }
    }
    return VelaResultSuccess;
}

AECORE_API KDKResult AECGetParam(LYRAECAlgorithm* pAlgo, AECAlgoGetParam* pGetParam)
{
    if ((nullptr == pAlgo) || (nullptr == pGetParam) || (nullptr == ToInternal(pAlgo)->pAlgo))
    {
        return VelaResultEInvalidPointer;
    }
    Vela::AECAlgorithm_Internal* pInstance = ToInternal(pAlgo);
    if (AECAlgoGetParamDependentVendorTags == pGetParam->type)
    {
        FillDependentVendorTags(pGetParam, pInstance->bDepthAECEnable);
    }
    return pInstance->pAlgo->getData(pGetParam);
}

AECORE_API VOID AECDestroy(LYRAECAlgorithm* pAlgo, const AECAlgoDestroyParamList* pDestroyParams)
{
    if (nullptr == pDestroyParams)
    {
        AEC_VLOG_ERROR("pDestroyParams is NULL");
        return;
    }
    // The list is positional: the close mask, then the camera info.
    if ((nullptr == pDestroyParams->pParamList) || (pDestroyParams->paramCount < 2) ||
        (nullptr == pDestroyParams->pParamList[0].pParam) || (nullptr == pDestroyParams->pParamList[1].pParam))
    {
        AEC_VLOG_ERROR("Destroy list needs a close mask and a camera info (%u entries)", pDestroyParams->paramCount);
        return;
    }

    const UINT32 overrideCameraClose = *static_cast<const UINT32*>(pDestroyParams->pParamList[0].pParam);
    const UINT32 cameraId = static_cast<const StatsCameraInfo*>(pDestroyParams->pParamList[1].pParam)->cameraId;
    if (cameraId >= MaxCameraCount)
    {
        AEC_VLOG_ERROR("Camera id %u out of range: at most %u cameras", cameraId, MaxCameraCount);
        return;
    }
    if (0 == (overrideCameraClose & (1U << cameraId)))
    {
        AEC_VLOG_INFO("overrideCameraClose is FALSE");
        return;
    }

    // The table decides which instance goes, whatever instance the host passed.
    AEC_VLOG_INFO("overrideCameraClose in AECDestroy %d, pAec(%p)", overrideCameraClose, static_cast<VOID*>(pAlgo));
    Vela::AECAlgorithm_Internal* pInstance = pAECAlgoHandler[cameraId];
    if (nullptr == pInstance)
    {
        AEC_VLOG_ERROR("pAECAlgoHandler[%d] is NULL", cameraId);
        return;
    }
    DestroyInstance(pInstance);
    pAECAlgoHandler[cameraId] = nullptr;
}

} // extern "C"
