// Translation of a host get parameter into the core's AECMetadataQuery and of the answer back into the host's outputs.
#include "aec/wrapper/caecgetparamtranslator.h"

#include "platform/velalog.h"

namespace
{

// Bytes of the host's frame-control record that the size check covers.
constexpr UINT32 FrameControlSize = AECORE_FRAME_CONTROL_OUTPUT_SIZE;
constexpr UINT32 ExposureSetSize  = sizeof(AECAlgoExposureSet);

} // namespace

CAECGetParamTranslator::CAECGetParamTranslator()
    : m_getParam()
{
    updatePrivateData(&m_getParam, sizeof(m_getParam));
}

AECMetadataQuery* CAECGetParamTranslator::prepareInput(const AECAlgoGetParam* pParam)
{
    reset();
    if (nullptr == pParam)
    {
        AEC_VLOG_ERROR("Get parameter is NULL");
        return nullptr;
    }
    m_getParam.type = pParam->type;

    AECMetadataQueryInput& input = m_getParam.input;
    switch (pParam->type)
    {
        case AECAlgoGetParamSnapshotExposure:
            copyInputs(pParam, AECAlgoGetParamInputSnapshotType, &input.snapshotConfig, sizeof(input.snapshotConfig));
            break;
        case AECAlgoGetParamGainFromISOPreview:
        case AECAlgoGetParamGainFromISOSnapshot:
            copyInputs(pParam, AECAlgoGetParamInputISOValue, &input.ISOValue, sizeof(input.ISOValue));
            break;
        case AECAlgoGetParamDebugData:
            copyInputs(pParam, AECAlgoGetParamInputDebugDataPointer, &input.debugData, sizeof(input.debugData));
            break;
        case AECAlgoGetParamStartExposure:
        case AECAlgoGetParamEVCapabilities:
        case AECAlgoGetParamFlashMeasurementConfig:
        case AECAlgoGetParamFlashMeasurementResult:
        case AECAlgoGetParamBGStatsConfig:
        case AECAlgoGetParamPeerInfo:
        case AECAlgoGetParamBHistStatsConfig:
            break;
        default:
            // The core still sees the type and answers it on its own terms.
            AEC_VLOG_WARN("AEC Core does not support this paramer: %d", pParam->type);
            break;
    }
    return &m_getParam;
}

VOID CAECGetParamTranslator::copyInputs(const AECAlgoGetParam* pParam, AECAlgoGetParamInputType inputType, VOID* pDst,
                                        SIZE_T dstSize)
{
    const AECAlgoGetParamInputList& list = pParam->inputList;
    if (nullptr == list.pAECGetParamList)
    {
        return;
    }
    for (UINT32 index = 0; index < list.numberOfAECGetInputParams; ++index)
    {
        const AECAlgoGetParamInput& entry = list.pAECGetParamList[index];
        if ((inputType == entry.inputType) && (nullptr != entry.pInputData))
        {
            copyData(pDst, dstSize, entry.pInputData, entry.sizeOfInputData);
        }
    }
}

AECMetadataQuery* CAECGetParamTranslator::prepareOutput(AECAlgoGetParam* pParam)
{
    if (nullptr == pParam)
    {
        return nullptr;
    }
    AECAlgoGetParamOutputList& list = pParam->outputList;
    if (nullptr == list.pAECOutputList)
    {
        return &m_getParam;
    }
    for (UINT32 index = 0; index < list.numberOfAECOutputs; ++index)
    {
        AECAlgoGetParamOutput* pEntry = &list.pAECOutputList[index];
        if (FALSE == writeOutput(pEntry))
        {
            m_getParam.type = AECAlgoGetParamInvalid;
            AEC_VLOG_ERROR("Copy Failed Input Params size mismatch: %d.", pEntry->outputType);
            return nullptr;
        }
    }
    return &m_getParam;
}

BOOL CAECGetParamTranslator::writeOutput(AECAlgoGetParamOutput* pEntry)
{
    const AECMetadataQueryOutput& output = m_getParam.output;
    VOID* const                   pDst   = pEntry->pOutputData;
    const UINT32                  size   = pEntry->sizeOfOutputData;

    // Plain records are copied whole; the frame control and the exposure sets are converted.
    const VOID* pRecord    = nullptr;
    UINT32      recordSize = 0;
    switch (pEntry->outputType)
    {
        case AECAlgoGetParamOutputFrameControl:
            if (FALSE == canWrite(pDst, size, FrameControlSize))
            {
                return FALSE;
            }
            copyDataFrameControl(static_cast<AECAlgoFrameControl*>(pDst), size, &output.frameSetting);
            pEntry->sizeOfWrittenOutputData = FrameControlSize;
            return TRUE;
        case AECAlgoGetParamOutputExposureSets:
            if ((FALSE == canWrite(pDst, size, ExposureSetSize)) ||
                (FALSE == copyDataExposureData(static_cast<AECAlgoExposureSet*>(pDst), output.frameSetting.exposureSets)))
            {
                return FALSE;
            }
            pEntry->sizeOfWrittenOutputData = ExposureSetSize;
            return TRUE;
        case AECAlgoGetParamOutputLEDCurrents:
            pRecord    = output.frameSetting.LEDCurrents;
            recordSize = sizeof(output.frameSetting.LEDCurrents);
            break;
        case AECAlgoGetParamOutputEXIFApex:
            pRecord    = &output.frameSetting.exifInfo.APEXValues;
            recordSize = sizeof(output.frameSetting.exifInfo.APEXValues);
            break;
        case AECAlgoGetParamOutputGain:
            pRecord    = &output.gain;
            recordSize = sizeof(output.gain);
            break;
        case AECAlgoGetParamOutputFlashMeasurementConfig:
            pRecord    = &output.flashMeasConfig;
            recordSize = sizeof(output.flashMeasConfig);
            break;
        case AECAlgoGetParamOutputFlashMeasurementResult:
            pRecord    = &output.flashMeasResult;
            recordSize = sizeof(output.flashMeasResult);
            break;
        case AECAlgoGetParamOutputDebugData:
            // The host receives the pointer itself.
            pRecord    = &output.pDebugData;
            recordSize = sizeof(output.pDebugData);
            break;
        case AECAlgoGetParamOutputBGStatsConfig:
            pRecord    = &output.statsBGBEConfig;
            recordSize = sizeof(output.statsBGBEConfig);
            break;
        case AECAlgoGetParamOutputEVCapabilities:
            pRecord    = &output.EVCapabilities;
            recordSize = sizeof(output.EVCapabilities);
            break;
        case AECAlgoGetParamOutputPeerInfo:
            pRecord    = &output.pPeerInfo;
            recordSize = sizeof(output.pPeerInfo);
            break;
        case AECAlgoGetParamOutputBHistStatsConfig:
            pRecord    = &output.statsBHISTConfig;
            recordSize = sizeof(output.statsBHISTConfig);
            break;
        default:
            // Includes the dependent vendor tags, which the entry point fills itself.
            AEC_VLOG_VERBOSE("Unhandled Get Output type: %d.", pEntry->outputType);
            return TRUE;
    }

    if (FALSE == copyRecordToHost(pDst, size, pRecord, recordSize))
    {
        return FALSE;
    }
    pEntry->sizeOfWrittenOutputData = recordSize;
    return TRUE;
}
