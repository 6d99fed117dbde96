// Preview frame arbitration of the module: index conversion, iris and gyro inputs, time priority ramp, FPS, Exif.
#include "aec/core/modules/mod_arb/caecmodarbitration.h"

#include <algorithm>

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_arb/arbitrationoutpututil.h"
#include "platform/statslogger.h"

namespace
{

// Stops per exposure index unit (1 / 23.449795).
constexpr FLOAT StopsPerIndex = 0.042644296F;

// Debug data kind of a preview frame.
constexpr UINT8 PreviewExposureInstance = 1;

} // namespace

AecResult CAECModArbitration::ArbitrateExposure(ArbitrationStreamInput* pInput, ArbitrationOutput* pOutput)
{
    m_enableHDR3 = m_aecContext->getHDR3Enable();
    UtilInitializeOutput(pOutput);
    if (TRUE != m_bTableZeroTuned)
    {
        // A preview frame never fails: it goes out with the initial exposure.
        AEC_LOG_ERROR("no valid exposure table");
        return AecSuccess;
    }

    // Indices converged in another mode's table are moved into the current mode's table.
    const AECAlgoOperationModeType mode = m_aecContext->getOperationMode();
    const ModArbitrationContext*   pPublished = m_aecContext->getExposureLimitation();
    if ((pInput->refOpMode != mode) && (nullptr != pPublished))
    {
        const FLOAT offset =
            ExpIdxOffsetOf(pPublished->streamModeExpIdxOffsets, AECExpIdxOffsetCount, pInput->refOpMode) -
            ExpIdxOffsetOf(pPublished->streamModeExpIdxOffsets, AECExpIdxOffsetCount, mode);
        ConvertExpIndices(pInput->expIndices, pInput->refOpMode, mode, offset);
    }

    const StatsGyroInfo* pGyro = m_aecContext->getGyroInfo();
    if (nullptr != pGyro)
    {
        m_streaming.SetGyroInfo(pGyro);
    }
    else
    {
        AEC_LOG_WARN("Invalid Gyro Info");
    }
    m_streaming.SetLuxIndex(pInput->luxIdx);

    // The zoom position bounds the iris; while the iris move is aborted the old boundary stays.
    if ((0 == pInput->irisIsAborted) && (pInput->currZoomStep != m_ZoomStep))
    {
        m_ZoomStep = pInput->currZoomStep;
        OnZoomInfoChange();
    }
    if (pInput->lensCap.PIris != m_LensCap.PIris)
    {
        m_LensCap = pInput->lensCap;
        m_streaming.SetLensCap(m_LensCap);
    }
    m_irisIsAborted = pInput->irisIsAborted;

    if (TRUE == pInput->sHDRexpConfig.bIsActive)
    {
        ArbitrateShdrExposure(pInput, pOutput);
        const FLOAT shortSensitivity = pOutput->expSets[AECAlgoExposureShort].sensitivity;
        if (shortSensitivity > 0.0F)
        {
            pOutput->expRatio = pOutput->expSets[AECAlgoExposureLong].sensitivity / shortSensitivity;
        }
        else
        {
            AEC_LOG_ERROR("short exposure without sensitivity, exposure ratio 1");
            pOutput->expRatio = 1.0F;
        }
        const MeteringTuningDataType* pMtrTuning = m_aecContext->getMtrTuning();
        if ((nullptr != pMtrTuning) && (nullptr != pMtrTuning->pShdr))
        {
            const FLOAT capLow  = pMtrTuning->pShdr->ExpRatioCapLow;
            const FLOAT capHigh = pMtrTuning->pShdr->ExpRatioCapHigh;
            pOutput->expRatio   = std::min(std::max(pOutput->expRatio, capLow), capHigh);
            AEC_LOG_VERBOSE("Update shdr exposure ratio %f in (%f, %f)", pOutput->expRatio, capLow, capHigh);
        }
        // MINIMAL: the per-exposure staggered-HDR limits are published here once the staggered-HDR arbitration
        // provides them (SetSHDRStreamingLimitation).
    }
    else
    {
        m_streaming.ArbitrateExposure(pInput->expIndices, pInput->irisIsAborted, pOutput, m_enableHDR3);
    }

    // How far each exposure still is from its target, in stops. Set after the arbitrator filled the sets.
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        pOutput->expSets[i].deltaEVFromTarget = -pInput->expIndicesDelta[i] * StopsPerIndex;
    }

    if (TRUE == pInput->expTimePrioConfig.bIsActive)
    {
        ArbitrateExposureTimeConvergence(pInput->expTimePrioConfig.srcExpIdx, pInput->expTimePrioConfig.dstExpIdx,
                                         pOutput->expSets);
    }

    if ((AECAlgoExposureFollow == m_aecContext->getExposureType()) && (nullptr != m_aecContext->getPeerInfo()))
    {
        SyncUpExposureTimeForMultiCam(pOutput);
    }

    const EVContext* pEVContext = m_aecContext->getEVInfo();
    const FLOAT      EV         = (nullptr != pEVContext) ? pEVContext->EV : 0.0F;
    pOutput->FPS                = QueryExpTime2FPS(pOutput->expSets[AECAlgoExposureSafe].exposureTime);
    CalculateExifInfo(&pOutput->exif, pOutput->expSets, m_tableIDStreaming, m_tableIDStill, EV);
    m_pCallback->SetCurentFPS(pOutput->FPS);
    UpdateSensitivityForMultiCam(pOutput->expSets, pInput->luxIdx, pOutput->multiCamExpInfo);
    if (TRUE == m_aecContext->getDebugDataEnable())
    {
        UpdateDebugData(pOutput, PreviewExposureInstance);
    }

    const AECAlgoExposureData* pSets = pOutput->expSets;
    AEC_LOG_VERBOSE("Stream(short,safe,long): EI (%.1f %.1f %.1f) G (%.3f %.3f %.3f) Fn (%.3f %.3f %.3f) "
                    "ET (%lu %lu %lu) Sens (%.0f %.0f %.0f) DeltaEV (%.3f %.3f %.3f)",
                    pInput->expIndices[AECAlgoExposureShort], pInput->expIndices[AECAlgoExposureSafe],
                    pInput->expIndices[AECAlgoExposureLong], pSets[AECAlgoExposureShort].linearGain,
                    pSets[AECAlgoExposureSafe].linearGain, pSets[AECAlgoExposureLong].linearGain,
                    pSets[AECAlgoExposureShort].fnumber, pSets[AECAlgoExposureSafe].fnumber,
                    pSets[AECAlgoExposureLong].fnumber,
                    static_cast<unsigned long>(pSets[AECAlgoExposureShort].exposureTime),
                    static_cast<unsigned long>(pSets[AECAlgoExposureSafe].exposureTime),
                    static_cast<unsigned long>(pSets[AECAlgoExposureLong].exposureTime),
                    pSets[AECAlgoExposureShort].sensitivity, pSets[AECAlgoExposureSafe].sensitivity,
                    pSets[AECAlgoExposureLong].sensitivity, pSets[AECAlgoExposureShort].deltaEVFromTarget,
                    pSets[AECAlgoExposureSafe].deltaEVFromTarget, pSets[AECAlgoExposureLong].deltaEVFromTarget);
    return AecSuccess;
}

VOID CAECModArbitration::ArbitrateExposureTimeConvergence(FLOAT srcExpIdx, FLOAT dstExpIdx, AECAlgoExposureData* pExpSets)
{
    // While converging, gain moves before time: the short exposure may not take a longer time than the
    // destination (or one frame at the top rate) needs, as long as gain can still rise towards the larger of the
    // source and destination gains. Both scratch runs also leave their index as the arbitrator's last index.
    ArbitrationOutput srcOut;
    ArbitrationOutput dstOut;
    UtilInitializeOutput(&srcOut);
    UtilInitializeOutput(&dstOut);
    FLOAT srcIndices[AECAlgoExposureCount] = {srcExpIdx, srcExpIdx, srcExpIdx};
    FLOAT dstIndices[AECAlgoExposureCount] = {dstExpIdx, dstExpIdx, dstExpIdx};
    m_streaming.ArbitrateExposure(srcIndices, m_irisIsAborted, &srcOut, m_enableHDR3);
    m_streaming.ArbitrateExposure(dstIndices, m_irisIsAborted, &dstOut, m_enableHDR3);

    const AECAlgoExposureData& rSrcShort = srcOut.expSets[AECAlgoExposureShort];
    const AECAlgoExposureData& rDstShort = dstOut.expSets[AECAlgoExposureShort];
    const FLOAT                maxFPS    = m_aecContext->getMaxFPS();
    UINT64                     frameTime = 0;
    if (maxFPS > 0.0F)
    {
        frameTime = static_cast<UINT64>(1e9 / static_cast<DOUBLE>(maxFPS));
    }
    else
    {
        AEC_LOG_ERROR("max FPS %f, time priority capped by the destination time only", maxFPS);
    }
    const UINT64 capTime = std::max(frameTime, rDstShort.exposureTime);
    const FLOAT  capGain = std::max(rSrcShort.linearGain, rDstShort.linearGain);

    AECAlgoExposureData& rShort = pExpSets[AECAlgoExposureShort];
    if ((rShort.exposureTime > capTime) && (rShort.linearGain < capGain))
    {
        const FLOAT  product = rShort.linearGain * static_cast<FLOAT>(rShort.exposureTime);
        const FLOAT  gain    = std::min(product / static_cast<FLOAT>(capTime), capGain);
        const UINT64 time    = (gain > 0.0F) ? static_cast<UINT64>(product / gain) : 0U;
        if (0U == time)
        {
            // A short exposure without gain has nothing to trade.
            AEC_LOG_ERROR("time priority: gain %f gives no exposure time, sets kept", gain);
            return;
        }
        rShort.linearGain   = gain;
        rShort.exposureTime = time;
        for (UINT32 i = AECAlgoExposureLong; i < AECAlgoExposureCount; i++)
        {
            pExpSets[i].linearGain *= static_cast<FLOAT>(pExpSets[i].exposureTime) / static_cast<FLOAT>(time);
            pExpSets[i].exposureTime = time;
        }
        AEC_LOG_VERBOSE("output: short gain %.3f time %lu", gain, static_cast<unsigned long>(time));
    }
    else
    {
        AEC_LOG_VERBOSE("output: no need to trade off");
    }
}

VOID CAECModArbitration::ArbitrateShdrExposure(ArbitrationStreamInput* pInput, ArbitrationOutput* pOutput)
{
    // MINIMAL: arbitrated as a plain frame until the staggered-HDR arbitration lands.
    m_streaming.ArbitrateExposure(pInput->expIndices, pInput->irisIsAborted, pOutput, m_enableHDR3);
}

VOID CAECModArbitration::UpdateDebugData(const ArbitrationOutput* pOutput, UINT8 exposureInstance)
{
    const aecglobalelements::ExposureTableIDType tableID =
        (PreviewExposureInstance == exposureInstance) ? m_tableIDStreaming : m_tableIDStill;
    m_debugData.sceneBV          = pOutput->exif.APEXValues.brightnessValue;
    m_debugData.sceneAV          = pOutput->exif.APEXValues.apertureValue;
    m_debugData.sceneSV          = pOutput->exif.APEXValues.speedValue;
    m_debugData.sceneTV          = pOutput->exif.APEXValues.timeValue;
    m_debugData.exposureInstance = exposureInstance;
    m_debugData.exposureTableID  = static_cast<UINT8>(tableID);
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        m_debugData.exposureGain[i] = pOutput->expSets[i].linearGain;
        m_debugData.exposureTime[i] = pOutput->expSets[i].exposureTime;
    }
    m_debugData.ISOValue = static_cast<FLOAT>(pOutput->exif.ISOValue);
}
