// Queries of the core: the start exposure of a mode, the exposure of a still capture and the plain read-outs.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "aec/core/base/caeccore.h"
#include "aec/core/base/caeccoredatamanager.h"
#include "platform/statslogger.h"

namespace
{

// Index units of a linear ratio: index delta = log10(ratio) x this.
constexpr DOUBLE AECIndexPerLog10 = 77.89852905273438;
// Index units of one EV.
constexpr FLOAT AECIndexPerEV = 23.449795F;
// Highest entry of the 49-entry EV compensation table, for the bracketing log.
constexpr INT32 AECEVCompTableLastIndex = 48;

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

// The start and snapshot queries answer success or failure only.
KDKResult FoldResult(KDKResult result)
{
    return (VelaResultSuccess == result) ? VelaResultSuccess : VelaResultEFailed;
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
            return FoldResult(queryStartExposure(&rOutput.frameSetting));
        case AECAlgoGetParamSnapshotExposure:
            return FoldResult(querySnapshotExposure(&pQuery->input.snapshotConfig, &rOutput.frameSetting));
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

VOID CAECCore::getBracketingEVOffset(INT8 EVVal, FLOAT* pEV, FLOAT* pEVOffset)
{
    const AECAlgoEVCapabilities& rCaps   = m_pDataManager->getEVInfo()->capabilities;
    const INT32                  steps   = rCaps.stepsPerEV;
    const INT32                  divisor = std::max(steps, 1);
    const INT32                  minUI   = rCaps.minEV * steps;
    const INT32                  maxUI   = rCaps.maxEV * steps;
    // Not std::clamp: capabilities with min above max must not be undefined behaviour.
    const INT32 desired = std::min(std::max(static_cast<INT32>(EVVal), minUI), maxUI);
    FLOAT       ev      = static_cast<FLOAT>(desired) / static_cast<FLOAT>(divisor);

    // Tuning may keep only a share of large bracketing steps: full at 0 EV, the tuned share from 2 EV on.
    const ArbitrationTuningDataType* pArbTuning = m_pDataManager->getArbTuning();
    if ((nullptr != pArbTuning) && (nullptr != pArbTuning->pSnapshotCtrl))
    {
        const FLOAT tuning = (desired < 1) ? pArbTuning->pSnapshotCtrl->bracketingAdjForEVNeg2
                                           : pArbTuning->pSnapshotCtrl->bracketingAdjForEVPos2;
        const FLOAT weight = std::max((2.0F - std::fabs(ev)) * 0.5F, 0.0F);
        const FLOAT adj    = (weight * (1.0F - tuning)) + tuning;
        ev *= adj;
        AEC_LOG_VERBOSE("snapshot EV adj: desired %d tuning %f weight %f adj %f EV %f", desired, tuning, weight, adj,
                        ev);
    }

    const FLOAT lumaMult = static_cast<FLOAT>(std::pow(2.0, static_cast<DOUBLE>(ev)));
    *pEVOffset           = static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(lumaMult)) * AECIndexPerLog10);
    const INT32 lumaIdx  = std::min(std::max(desired - minUI, 0), AECEVCompTableLastIndex);
    AEC_LOG_VERBOSE("capped desired EV %d min %d max %d; luma idx %d luma mult %f EV offset %f", desired, minUI,
                    maxUI, lumaIdx, lumaMult, *pEVOffset);
    *pEV = static_cast<FLOAT>(EVVal) / static_cast<FLOAT>(divisor);
}

KDKResult CAECCore::getFlashSnapshotIndices(const AECAlgoSnapshotConfig* pConfig,
                                            FLOAT                        EVOffset,
                                            FLOAT*                       pExpIndices,
                                            AECFrameControl*             pFrameSetting)
{
    AEC_LOG_INFO("AECCoreFlash snapshot query");
    // Without bracketing the preview EV of the last frame is carried into the capture.
    const AECFrameHistory* pFrame = nullptr;
    if (FALSE == pConfig->bUseAEBracketing)
    {
        pFrame = m_pDataManager->getFrameHistory(1);
        if (nullptr == pFrame)
        {
            AEC_LOG_ERROR("Flash snapshot query without a frame history: query the start exposure first");
            return VelaResultEFailed;
        }
    }

    AECMeteringSnapshotInput  snapshotIn  = {};
    AECMeteringSnapshotOutput snapshotOut = {};
    snapshotIn.isFlashSnapshot            = TRUE;
    snapshotIn.mainToPreFluxRatio         = m_pExtension->GetFlashCurrentEstimate(High, pFrameSetting, TRUE);
    snapshotIn.preflashToStreamingOffset =
        m_pDataManager->getExposureLimitation()->streamModeExpIdxOffsets[AECAlgoOperationModePreflash];
    const KDKResult result = m_pMetering->GetSnapshotEstimation(&snapshotIn, &snapshotOut);

    if (FALSE != pConfig->bUseAEBracketing)
    {
        AEC_LOG_INFO("applying bracketing EV: %f and using safe index for all exposures: %f", EVOffset,
                     snapshotOut.snapshotExpIndices[AECAlgoExposureSafe]);
        const BOOL isHDR3 = m_pDataManager->getHDR3Enable();
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            pExpIndices[i] =
                ((FALSE != isHDR3) ? snapshotOut.snapshotExpIndices[i]
                                   : snapshotOut.snapshotExpIndices[AECAlgoExposureSafe]) + EVOffset;
        }
    }
    else
    {
        const FLOAT offset = pFrame->previewEV * AECIndexPerEV;
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            pExpIndices[i] = snapshotOut.snapshotExpIndices[i] + offset;
            AEC_LOG_VERBOSE("preview EV adding offset %f to %f", offset, snapshotOut.snapshotExpIndices[i]);
        }
    }
    // The LED raises the scene by at least nothing.
    pFrameSetting->LEDInfluenceRatio = std::max(snapshotOut.flashInfluence, 1.0F);
    pFrameSetting->luxIndex          = snapshotOut.snapshotLuxIndex;
    return result;
}

KDKResult CAECCore::getNormalSnapshotIndices(const AECAlgoSnapshotConfig* pConfig,
                                             FLOAT                        EVOffset,
                                             FLOAT*                       pExpIndices,
                                             AECFrameControl*             pFrameSetting)
{
    // During preflash the streaming mode's last frame is the scene without the LED.
    AECModeHistory         prevMode;
    const AECFrameHistory* pFrame = nullptr;
    if (AECAlgoOperationModePreflash == m_pDataManager->getOperationMode())
    {
        AEC_LOG_WARN("Normal snapshot query during preflash mode! ");
        if (FALSE == m_pDataManager->getPrevModeHistory(&prevMode))
        {
            AEC_LOG_ERROR("ERROR: Cannot recover previous setting!");
            return VelaResultEFailed;
        }
        pFrame = &prevMode.lastFrame;
    }
    else
    {
        pFrame = m_pDataManager->getFrameHistory(1);
        if (nullptr == pFrame)
        {
            AEC_LOG_ERROR("Snapshot query without a frame history: query the start exposure first");
            return VelaResultEFailed;
        }
    }

    if (FALSE != pConfig->bUseAEBracketing)
    {
        const BOOL isHDR3 = m_pDataManager->getHDR3Enable();
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            if (FALSE != isHDR3)
            {
                pExpIndices[i] = pFrame->expIndicesTargets[i] + EVOffset;
                AEC_LOG_VERBOSE("expIndicesTargets = %f,EVOffset = %f", pFrame->expIndicesTargets[i], EVOffset);
            }
            else
            {
                pExpIndices[i] = pFrame->expIndicesTargets[AECAlgoExposureSafe] + EVOffset;
            }
        }
    }
    else if (FALSE == m_pDataManager->getIsAECLocked())
    {
        // A slave takes its exposure from the master, which already carries the preview EV.
        const FLOAT offset = (StatsAlgoRoleSlave == m_algoRole) ? 0.0F : (pFrame->previewEV * AECIndexPerEV);
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            pExpIndices[i] = pFrame->expIndicesTargets[i] + offset;
            AEC_LOG_VERBOSE("no EV bracketing: %d, expIndicesTargets = %f", static_cast<INT32>(i),
                            pFrame->expIndicesTargets[i]);
        }
    }
    else
    {
        std::memcpy(pExpIndices, m_pDataManager->getLockContext()->expIndicesToUse,
                    sizeof(FLOAT) * AECAlgoExposureCount);
    }

    m_pExtension->GetFlashCurrentEstimate(Off, pFrameSetting, FALSE);
    pFrameSetting->LEDInfluenceRatio = 1.0F;
    pFrameSetting->luxIndex          = pFrame->luxIndex;
    return VelaResultSuccess;
}

KDKResult CAECCore::querySnapshotExposure(const AECAlgoSnapshotConfig* pConfig, AECFrameControl* pFrameSetting)
{
    pFrameSetting->digitalGainForSimulation = 1.0F;
    pFrameSetting->predictiveGain           = 1.0F;

    ArbitrationStillInput stillIn = {};
    if (FALSE != pConfig->bUseAEBracketing)
    {
        getBracketingEVOffset(pConfig->EVVal, &stillIn.EV, &stillIn.EVOffset);
    }
    else
    {
        stillIn.EVOffset = 0.0F;
        stillIn.EV       = m_pDataManager->getEVInfo()->EV;
    }
    AEC_LOG_INFO("Get Snapshot exposure : type: %d, enable EV: %d, EV: %d", pConfig->snapshotType,
                 pConfig->bUseAEBracketing, pConfig->EVVal);

    stillIn.snapshotQuery.queryType = pConfig->snapshotType;
    stillIn.snapshotQuery.refOpMode = m_pDataManager->getOperationMode();
    KDKResult result                = VelaResultSuccess;
    switch (pConfig->snapshotType)
    {
        case AECAlgoSnapshotFlash:
            result = getFlashSnapshotIndices(pConfig, stillIn.EVOffset, stillIn.expIndices, pFrameSetting);
            // The flash estimate is relative to the streaming exposure before the preflash.
            stillIn.snapshotQuery.refOpMode = AECAlgoOperationModeStreaming;
            break;
        case AECAlgoSnapshotNormal:
        case AECAlgoSnapshotLLS:
            result = getNormalSnapshotIndices(pConfig, stillIn.EVOffset, stillIn.expIndices, pFrameSetting);
            break;
        default:
            AEC_LOG_ERROR("Non supported snapshot query!");
            result = VelaResultEFailed;
            break;
    }

    if (VelaResultSuccess == result)
    {
        stillIn.TargetIndex    = m_mtrOut.targetIndices[AECAlgoExposureSafe];
        ArbitrationOutput arbOut = {};
        m_pArbitration->ArbitrateExposure(&stillIn, &arbOut);
        pFrameSetting->IRModeActivated = m_irOut.IRModeActivated;
        pFrameSetting->IRLedIntensity  = m_irOut.IRLedIntensity;
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            pFrameSetting->exposureSets[i]     = arbOut.expSets[i];
            pFrameSetting->RealexposureSets[i] = arbOut.IdealexpSets[i];
        }
        pFrameSetting->exifInfo = arbOut.exif;
        // The frames exposed while the capture runs do not show the preview scene: metering skips them.
        m_pDataManager->setSnapshotQuery();
        m_pExtension->GetHistStretchData(&pFrameSetting->stretchControl);
        printFrameControl("Snapshot", 0, *pFrameSetting);
    }
    return result;
}
