// Metering module, one frame: statistics, luma calculators, target calculators, target indices and the output.
#include <cmath>
#include <cstring>

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_mtr/caecmodmetering.h"
#include "platform/statslogger.h"
#include "tuning_aecmetering.h"
#include "tuning_aecshdr.h"

namespace
{
// Limits of the gain that brings in-sensor HDR statistics back to the short exposure.
constexpr FLOAT MinCompensationGain = 1.0f;
constexpr FLOAT MaxCompensationGain = 64.0f;
} // namespace

FLOAT CAECModMetering::CompensationGain(const AECFrameHistory* pFrame) const
{
    const MeteringTuningDataType* pTuning = m_aecContext->getMtrTuning();
    if ((1 != m_aecContext->getHDR3Enable()) || (0 != pTuning->extInsensorHDR.enableInsensorHDR))
    {
        return 1.0f;
    }
    const FLOAT g = powf(1.03f, pFrame->expIndices[1] - pFrame->expIndices[0]);
    return std::fmax(std::fmin(g, MaxCompensationGain), MinCompensationGain);
}

AecResult CAECModMetering::RepeatLastFrame(AECMeteringFrameProcOutput* pOutput) const
{
    std::memset(pOutput, 0, sizeof(*pOutput));
    const AECFrameHistory* pLast = m_aecContext->getFrameHistory(1);
    if (nullptr == pLast)
    {
        AEC_LOG_ERROR("issue processing stats and no previous frame to copy");
        return AecError;
    }
    std::memcpy(pOutput->targetIndices, pLast->expIndicesTargets, sizeof(pOutput->targetIndices));
    pOutput->currentLuma = pLast->luma;
    pOutput->luxIndex    = pLast->luxIndex;
    AEC_LOG_WARN("issue processing stats, copying previous frame luma %.1f target indices %.1f %.1f %.1f and lux %.1f",
                 pOutput->currentLuma, pOutput->targetIndices[0], pOutput->targetIndices[1],
                 pOutput->targetIndices[2], pOutput->luxIndex);
    const MeteringTuningDataType* pTuning = m_aecContext->getMtrTuning();
    if ((nullptr != pTuning) && (nullptr != pTuning->pShdr) && (1 == pTuning->pShdr->enableShdr))
    {
        pOutput->sHDROutput = 1;
        pOutput->expRatio   = pLast->expRatio;
        std::memcpy(pOutput->sHdrIndices, pLast->sHDRExpIndices, sizeof(pOutput->sHdrIndices));
        AEC_LOG_WARN("issue processing stats, copying previous sHDR target indices %.1f %.1f %.1f",
                     pOutput->sHdrIndices[0], pOutput->sHdrIndices[1], pOutput->sHdrIndices[2]);
    }
    return AecError;
}

VOID CAECModMetering::FillLumaInput(const AECFrameHistory* pFrame, BOOL bSlaveToMasterSwitch, FLOAT compensationGain,
                                    const AECMeteringFrameProcInput* pInput, AECLumaCalcInput* pLumaInput)
{
    std::memset(pLumaInput, 0, sizeof(*pLumaInput));
    pLumaInput->matchingExpIndices   = pFrame->expIndices;
    pLumaInput->mtrMode              = m_aecContext->getMeteringMode();
    pLumaInput->pTuning              = m_aecContext->getMtrTuning();
    pLumaInput->enableADRC           = m_aecContext->getDRCEnable();
    pLumaInput->enableHDR3           = m_aecContext->getHDR3Enable();
    pLumaInput->pTouchROIs           = m_aecContext->getTouchROI();
    pLumaInput->pFaceROIs            = m_aecContext->getFaceROI();
    pLumaInput->pArbitrationLimit    = m_aecContext->getExposureLimitation();
    pLumaInput->pBGBEConfig          = m_aecContext->getBGBEConfig();
    pLumaInput->enableDiag           = m_enableDiagnostic;
    pLumaInput->bSlaveToMasterSwitch = bSlaveToMasterSwitch;
    pLumaInput->pDepthInfo           = &pInput->m_DepthInfo;
    pLumaInput->PrevDRCGainHDR3      = compensationGain;
    // The split histogram is the first member of the in-sensor HDR statistics.
    pLumaInput->splitHist         = (nullptr != pInput->stats.hdr3Stats.pHDR3ExposureStats)
                                        ? &pInput->stats.hdr3Stats.pHDR3ExposureStats->splitBayerHist
                                        : nullptr;
    pLumaInput->irModeActivated   = static_cast<INT32>(pFrame->IRModeActivated);
    pLumaInput->compensationRatio = m_aecContext->getCompensationRatio();
    pLumaInput->pEisWeightTable   = m_aecContext->getWeightTable();
    const AECAlgoSensorInfo* pSensor = m_aecContext->getSensorInfo();
    if (nullptr != pSensor)
    {
        pLumaInput->frnWidth  = pSensor->sensorResWidth;
        pLumaInput->frnHeight = pSensor->sensorResHeight;
    }
}

VOID CAECModMetering::FillTargetInput(const AECFrameHistory* pFrame, EVContext* pEV, AECTargetCalcInput* pTargetInput)
{
    const MeteringTuningDataType*    pTuning = m_aecContext->getMtrTuning();
    const ConvergenceTuningDataType* pConv   = m_aecContext->getConvTuning();

    // The target is judged against the EV in force when the frame was exposed, unless the EV is frozen.
    *pEV = *m_aecContext->getEVInfo();
    if (aecglobalelements::Freeze != pTuning->pCore->mtrLumaTarget.histLumaTarget.EVHandling)
    {
        pEV->EV      = pFrame->previewEV;
        pEV->EVUIVal = static_cast<INT32>(pEV->capabilities.stepsPerEV * pFrame->previewEV);
    }

    std::memset(pTargetInput, 0, sizeof(*pTargetInput));
    const IProcessedStats* pStats  = m_statsParser.GetStatsProcessingResult();
    pTargetInput->pLumaCalcResult  = &m_lumaCalcResult;
    pTargetInput->pAWBGains        = m_aecContext->getAWBState();
    pTargetInput->pTuning          = pTuning;
    pTargetInput->enableADRC       = m_aecContext->getDRCEnable();
    pTargetInput->enableHDR3       = m_aecContext->getHDR3Enable();
    pTargetInput->pEV              = pEV;
    pTargetInput->maxUnderexposure = m_maxUnderExposureRatio;
    pTargetInput->ratioBright      = pStats->GetBrightRegionRatio();
    pTargetInput->ratioDark        = pStats->GetDarkRegionRatio();
    pTargetInput->pFast            = ((nullptr != pConv) && (nullptr != pConv->pCore)) ? &pConv->pCore->fastConv : nullptr;
    pTargetInput->irModeActivated  = static_cast<INT32>(pFrame->IRModeActivated);
    pTargetInput->pIrTuning        = m_aecContext->getIRTuning();
}

AecResult CAECModMetering::ProcessFrameStats(const AECMeteringFrameProcInput* pInput,
                                             AECMeteringFrameProcOutput* pOutput)
{
    const MeteringTuningDataType* pTuning = m_aecContext->getMtrTuning();
    const AECFrameHistory*        pFrame  = m_aecContext->getFrameHistory(m_aecContext->getPipelineDelay());
    if ((nullptr == pTuning) || (nullptr == pTuning->pCore) || (nullptr == pFrame))
    {
        // Without tuning or the frame that exposed these statistics nothing can be metered.
        AEC_LOG_ERROR("Metering input incomplete: tuning %p, matched frame %p", static_cast<const void*>(pTuning),
                      static_cast<const void*>(pFrame));
        return RepeatLastFrame(pOutput);
    }

    // 1-3. Statistics, brought back to the short exposure for in-sensor HDR.
    m_DRCGainHDR3 = CompensationGain(pFrame);
    if (AecSuccess != m_statsParser.ProcessStats(&pInput->stats, m_aecContext->getAWBState(), m_DRCGainHDR3))
    {
        return RepeatLastFrame(pOutput);
    }

    // 4. Exposure type switch and saturation thresholds.
    const AECAlgoMultiCamExposureType exposureType = m_aecContext->getExposureType();
    const BOOL bSlaveToMasterSwitch =
        ((AECAlgoExposureIndependent == exposureType) && (AECAlgoExposureIndependent != m_prevMode)) ? TRUE : FALSE;
    m_prevMode = exposureType;
    std::memcpy(m_BGSatThres, pInput->stats.bayerGrid.satThreshold, sizeof(m_BGSatThres));

    // 5-6. Lumas.
    AECLumaCalcInput lumaInput;
    FillLumaInput(pFrame, bSlaveToMasterSwitch, m_DRCGainHDR3, pInput, &lumaInput);
    std::memset(&m_lumaCalcResult, 0, sizeof(m_lumaCalcResult));
    for (UINT32 i = 0; i < m_pLumaCalculators->count; ++i)
    {
        // A calculator that fails leaves its fields; the others run on.
        m_pLumaCalculators->items[i]->calculateLuma(&lumaInput, &m_lumaCalcResult);
    }
    aggregateLumaResult(&m_lumaCalcResult);
    AEC_LOG_VERBOSE("MTR Lumas: lux %.3f avg %.3f frame %.3f shdr %.3f ir %.3f touch %.3f face %.3f final %.3f",
                    m_lumaCalcResult.luxIndex, m_lumaCalcResult.averageLuma, m_lumaCalcResult.frameLuma,
                    m_lumaCalcResult.shdrLuma, m_lumaCalcResult.irLuma, m_lumaCalcResult.touchLuma,
                    m_lumaCalcResult.faceLuma, m_lumaCalcResult.finalLuma);

    // 7-10. Targets.
    EVContext          ev;
    AECTargetCalcInput targetInput;
    FillTargetInput(pFrame, &ev, &targetInput);
    std::memset(&m_targetCalcResult, 0, sizeof(m_targetCalcResult));
    for (UINT32 i = 0; i < m_targetCalculators.count; ++i)
    {
        m_targetCalculators.items[i]->calculateTarget(&targetInput, &m_targetCalcResult);
    }
    m_pCallback->SetRealDRCGain(m_targetCalcResult.realDRCGain);
    aggregateTargetResult(&m_targetCalcResult);

    // 11-12. Multi-camera mixing.
    if ((AECAlgoMeteringMix == m_aecContext->getMeteringType()) ||
        (AECAlgoExposureDynamic == m_aecContext->getExposureType()))
    {
        HandleMultiCamMtrMixAndExpDynamic(&m_targetCalcResult, &m_lumaCalcResult);
    }
    AEC_LOG_VERBOSE("MTR Targets: lux (%.2f), hist (%.2f %.2f %.2f), clr (%.2f), final (%.2f %.2f %.2f)",
                    m_targetCalcResult.luxBasedSafeTarget, m_targetCalcResult.histBasedShortTarget,
                    m_targetCalcResult.histBasedLongTarget, m_targetCalcResult.histBasedSafeTarget,
                    m_targetCalcResult.clrBasedSafeTarget, m_targetCalcResult.shortTarget,
                    m_targetCalcResult.longTarget, m_targetCalcResult.safeTarget);

    // 13-14. Target indices, then the staggered-HDR pair.
    EstimateTargetExposureIndex(&m_lumaCalcResult, &m_targetCalcResult, pOutput->targetIndices);
    AECShdrResult shdr;
    std::memset(&shdr, 0, sizeof(shdr));
    AdjustShdrExposure(pInput, pTuning, &shdr);

    // 15-17. Output.
    FillOutput(shdr, pOutput);

    // 18. Debug data.
    if (1 == m_aecContext->getDebugDataEnable())
    {
        UpdateDebugData();
        for (UINT32 i = 0; i < m_pLumaCalculators->count; ++i)
        {
            m_pLumaCalculators->items[i]->UpdateDebugData();
        }
        for (UINT32 i = 0; i < m_targetCalculators.count; ++i)
        {
            m_targetCalculators.items[i]->UpdateDebugData();
        }
    }
    return AecSuccess;
}

VOID CAECModMetering::FillOutput(const AECShdrResult& shdr, AECMeteringFrameProcOutput* pOutput)
{
    const IProcessedStats* pStats = m_statsParser.GetStatsProcessingResult();
    pOutput->ratioDark            = pStats->GetDarkRegionRatio();
    pOutput->ratioBright          = pStats->GetBrightRegionRatio();
    pOutput->luxIndex             = m_lumaCalcResult.luxIndex;
    pOutput->origLuxIndex         = m_lumaCalcResult.luxIndex;
    if ((1 == m_aecContext->getAreFlashLowStatsSaved()) &&
        (AECAlgoOperationModePreflash == m_aecContext->getOperationMode()))
    {
        pOutput->flashInfluence = (m_flashSnapshotInfluence >= 0.0f)
                                      ? m_flashSnapshotInfluence
                                      : (m_lumaCalcResult.preflashInfluence * m_flux);
    }
    else
    {
        pOutput->flashInfluence = m_lumaCalcResult.preflashInfluence;
    }
    pOutput->currentLuma       = m_lumaCalcResult.finalLuma;
    pOutput->RGRatio           = m_lumaCalcResult.RGRatio;
    pOutput->BGRatio           = m_lumaCalcResult.BGRatio;
    pOutput->averageLuma       = m_lumaCalcResult.averageLuma;
    pOutput->frameLuma         = m_lumaCalcResult.frameLuma;
    pOutput->VisibleLightRatio = m_lumaCalcResult.VisibleLightRatio;
    pOutput->extremeBlueRatio  = m_targetCalcResult.asdResult.extremeBlueRatio;
    pOutput->extremeGreenRatio = m_targetCalcResult.asdResult.extremeGreenRatio;
    pOutput->lumaTargets[AECAlgoExposureShort] = m_targetCalcResult.shortTarget;
    pOutput->lumaTargets[AECAlgoExposureLong]  = m_targetCalcResult.longTarget;
    pOutput->lumaTargets[AECAlgoExposureSafe]  = m_targetCalcResult.safeTarget;

    pOutput->pixCntRatioLEF = 0.0f;
    pOutput->sHDROutput     = 0;
    if (1 == shdr.Enable)
    {
        pOutput->sHDROutput = 1;
        std::memcpy(pOutput->sHdrIndices, shdr.ExpIndex, sizeof(pOutput->sHdrIndices));
        pOutput->pixCntRatioLEF   = shdr.pixCntRatioLEF;
        pOutput->isSHDRAECSettled = shdr.IsLEFSettled;
        pOutput->isSHDRSEFSettled = shdr.IsSettled;
        pOutput->expRatio         = shdr.expRatio;
        AEC_LOG_VERBOSE("pixCntRatioLEF %f", pOutput->pixCntRatioLEF);
    }

    INT                            legacyCount = 0;
    const ParsedLegacyYRegionType* pY          = pStats->GetLegacyYRegionStats(legacyCount);
    for (INT i = 0; (nullptr != pY) && (i < legacyCount); ++i)
    {
        pOutput->Ystats[i] = pY[i].Yval;
    }
}
