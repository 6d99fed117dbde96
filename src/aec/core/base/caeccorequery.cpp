// Queries of the core: the start exposure of a mode and the plain read-outs of the host's get parameters.
#include <cstring>

#include "aec/core/base/caeccore.h"
#include "aec/core/base/caeccoredatamanager.h"
#include "platform/statslogger.h"

namespace
{

// Names of AECAlgoGetParamType in value order, for the log; the last entry stands for every larger value.
const CHAR* const GetParamNames[] = {
    "AECAlgoGetParamInvalid",
    "AECAlgoGetParamStartExposure",
    "AECAlgoGetParamSnapshotExposure",
    "AECAlgoGetParamGainFromISOPreview",
    "AECAlgoGetParamGainFromISOSnapshot",
    "AECAlgoGetParamEVCapabilities",
    "AECAlgoGetParamDebugData",
    "AECAlgoGetParamSWVersion",
    "AECAlgoGetParamFlashMeasurementConfig",
    "AECAlgoGetParamFlashMeasurementResult",
    "AECAlgoGetParamPublishingVendorTagsInfo",
    "AECAlgoGetParamDependentVendorTags",
    "AECAlgoGetParamBGStatsConfig",
    "AECAlgoGetParamPeerInfo",
    "AECAlgoGetParamBHistStatsConfig",
    "AECAlgoGetParamDynamicCalibrationData",
    "AECAlgoGetParamSnapshotType",
    "AECAlgoGetParamCount",
    "AECAlgoGetParamMax",
};
constexpr UINT32 GetParamNameCount = sizeof(GetParamNames) / sizeof(GetParamNames[0]);
static_assert(19 == GetParamNameCount, "one name per get parameter type, Count and Max");

const CHAR* GetParamName(AECAlgoGetParamType type)
{
    const UINT32 index = static_cast<UINT32>(type);
    return GetParamNames[(index < GetParamNameCount) ? index : (GetParamNameCount - 1)];
}

} // namespace

KDKResult CAECCore::queryMetaData(AECMetadataQuery* pQuery)
{
    if (nullptr == pQuery)
    {
        AEC_LOG_ERROR("Query is NULL");
        return VelaResultEFailed;
    }
    if (FALSE == isConstructed())
    {
        AEC_LOG_ERROR("AEC query refused: the core is not constructed");
        return VelaResultEFailed;
    }
    // A start query needs a mode: the host sets one first.
    if (AECAlgoOperationModeInit == m_pDataManager->getOperationMode())
    {
        AEC_LOG_WARN("Query under init mode is not allowed.");
        return VelaResultEFailed;
    }
    AEC_LOG_INFO("AEC Get parameters (%s)", GetParamName(pQuery->type));

    AECMetadataQueryOutput& rOutput = pQuery->output;
    switch (pQuery->type)
    {
        case AECAlgoGetParamStartExposure:
            return queryStartExposure(&rOutput.frameSetting);
        case AECAlgoGetParamSnapshotExposure:
            // Later stage: the snapshot query (EV bracketing, flash and normal captures, still arbitration).
            AEC_LOG_WARN("Snapshot exposure query is not available in this build");
            return VelaResultSuccess;
        case AECAlgoGetParamGainFromISOPreview:
            rOutput.gain = m_pArbitration->QueryISO2Gain(pQuery->input.ISOValue, FALSE);
            return VelaResultSuccess;
        case AECAlgoGetParamGainFromISOSnapshot:
            rOutput.gain = m_pArbitration->QueryISO2Gain(pQuery->input.ISOValue, TRUE);
            return VelaResultSuccess;
        case AECAlgoGetParamEVCapabilities:
            rOutput.EVCapabilities = m_pDataManager->getEVInfo()->capabilities;
            return VelaResultSuccess;
        case AECAlgoGetParamDebugData:
            return m_pDataManager->PrepareDebugData(&pQuery->input.debugData.debugData,
                                                    &pQuery->input.debugData.sizeofDebugDataWritten);
        case AECAlgoGetParamSWVersion:
            return VelaResultSuccess;
        case AECAlgoGetParamFlashMeasurementConfig:
            m_pExtension->GetFlashMeasurementConfig(&rOutput.flashMeasConfig);
            return VelaResultSuccess;
        case AECAlgoGetParamFlashMeasurementResult:
            m_pExtension->GetFlashMeasurementStatus(&rOutput.flashMeasResult);
            return VelaResultSuccess;
        case AECAlgoGetParamPublishingVendorTagsInfo:
        case AECAlgoGetParamDependentVendorTags:
            AEC_LOG_INFO("Nothing to handle for Vendor Tag :%d", pQuery->type);
            return VelaResultSuccess;
        case AECAlgoGetParamBGStatsConfig:
            rOutput.statsBGBEConfig = *m_pDataManager->getBGBEConfig();
            return VelaResultSuccess;
        case AECAlgoGetParamPeerInfo:
            rOutput.pPeerInfo = m_pDataManager->getMyOwnInfo();
            AEC_LOG_INFO("Multi Camera MyownInfo pointer: %p", static_cast<void*>(rOutput.pPeerInfo));
            return VelaResultSuccess;
        case AECAlgoGetParamBHistStatsConfig:
            rOutput.statsBHISTConfig = *m_pDataManager->getBayerHistConfig();
            return VelaResultSuccess;
        default:
            return VelaResultEUnsupported;
    }
}

KDKResult CAECCore::queryStartExposure(AECFrameControl* pFrameSetting)
{
    const AECAlgoOperationModeType opMode = m_pDataManager->getOperationMode();
    if (FALSE == m_pDataManager->isFrameHistoryEmpty())
    {
        AEC_LOG_ERROR("Start exposure can only be queried immediately after switching to a valid operation mode!");
        return VelaResultEFailed;
    }
    if (AECAlgoOperationModeInit == opMode)
    {
        AEC_LOG_ERROR("AEC is not in valid mode for startup exposure query!");
        return VelaResultEFailed;
    }

    pFrameSetting->digitalGainForSimulation = 1.0F;
    FLOAT startLuxIndex                     = -1.0F;
    FLOAT expIndices[AECAlgoExposureCount]  = {};

    const AECAlgoMultiCamExposureType exposureType = m_pDataManager->getExposureType();
    const AECMultiCamInfo*            pPeerInfo    = m_pDataManager->getPeerInfo();
    AEC_LOG_INFO("CID %d exposure type %d", m_cameraID, exposureType);
    if ((AECAlgoExposureFollow == exposureType) && (nullptr != pPeerInfo))
    {
        startLuxIndex = pPeerInfo->meteringInfo.luxIndex;
        m_pArbitration->ComputeTargetIndexInMultiCam(startLuxIndex, expIndices);
        AEC_LOG_INFO("CID %d follow exposure startup: use master sensitivity converted to indices %.1f %.1f %.1f",
                     m_cameraID, expIndices[0], expIndices[1], expIndices[2]);
    }
    else
    {
        m_pConvergence->GetStartExposureIndices(expIndices, &startLuxIndex, m_isDual);
    }

    ArbitrationStreamInput arbIn = {};
    ArbitrationOutput      arbOut = {};
    std::memcpy(arbIn.expIndices, expIndices, sizeof(arbIn.expIndices));
    arbIn.refOpMode = opMode;
    m_pArbitration->ArbitrateExposure(&arbIn, &arbOut);

    pFrameSetting->LEDInfluenceRatio = 1.0F;
    AEC_LOG_INFO("GetFlashCurrentEstimate for start");
    if ((AECAlgoOperationModePreflash == opMode) || (AECAlgoOperationModeFlashMeasurement == opMode))
    {
        m_pExtension->GetFlashCurrentEstimate(Low, pFrameSetting, TRUE);
    }
    else
    {
        m_pExtension->GetFlashCurrentEstimate(Off, pFrameSetting, FALSE);
    }

    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        pFrameSetting->exposureSets[i]     = arbOut.expSets[i];
        pFrameSetting->RealexposureSets[i] = arbOut.IdealexpSets[i];
    }
    pFrameSetting->exifInfo       = arbOut.exif;
    pFrameSetting->luxIndex       = startLuxIndex;
    pFrameSetting->predictiveGain = 1.0F;

    m_pDataManager->saveStartExposure(expIndices, startLuxIndex);
    populateMulicamInfo(nullptr);
    printFrameControl("Start", 0, *pFrameSetting);
    return VelaResultSuccess;
}
