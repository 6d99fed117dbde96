// Metering module: the final luma and the three targets chosen and mixed from the calculator results.
#include <cmath>

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_mtr/caecmodmetering.h"
#include "platform/statslogger.h"
#include "tuning_aecmetering.h"
#include "tuning_aecsensorconfig.h"
#include "tuning_aectouch.h"

namespace
{
// Targets of the flash measurement mode and of a frame without lux target.
constexpr FLOAT FlashMeasurementTarget = 45.0f;
constexpr FLOAT FallbackTarget         = 50.0f;

// base + weight * (value - base), as one fused multiply-add.
inline FLOAT Mix(FLOAT base, FLOAT value, FLOAT weight)
{
    return std::fmaf(weight, value - base, base);
}

// 1 selects the luma of the split histogram for in-sensor HDR.
BOOL UsesHDR3HistLuma(const MeteringTuningDataType* pTuning)
{
    return ((nullptr != pTuning->pSensorHDR) && (1 == pTuning->pSensorHDR->LumaCalculationConfig)) ? TRUE : FALSE;
}

FLOAT TouchWeight(const MeteringTuningDataType* pTuning)
{
    return (nullptr != pTuning->pTouch) ? pTuning->pTouch->weightTouchROI : 0.0f;
}
} // namespace

VOID CAECModMetering::aggregateLumaResult(AECLumaCalcResult* pResult)
{
    const MeteringTuningDataType*  pTuning = m_aecContext->getMtrTuning();
    const AECAlgoOperationModeType op      = m_aecContext->getOperationMode();
    const BOOL isFlashMode = ((AECAlgoOperationModePreflash == op) || (AECAlgoOperationModeFlashMeasurement == op));

    if ((1 == m_aecContext->getHDR3Enable()) && (FALSE == isFlashMode) && (TRUE == UsesHDR3HistLuma(pTuning)))
    {
        aggregate3HDRType1LumaResult(pResult);
    }
    else if (AECAlgoOperationModePreflash == op)
    {
        pResult->finalLuma = pResult->averageLuma;
    }
    else if (AECAlgoOperationModeFlashMeasurement == op)
    {
        pResult->finalLuma = pResult->averageLumaFlashMeas;
        AEC_LOG_VERBOSE("MTR Lumas: flashMeas %.3f lux index %f is dark %d meas idx %d", pResult->finalLuma,
                        pResult->luxIndex, pResult->bIsFlashMeasDark,
                        static_cast<INT32>(m_aecContext->getFlashMeasIndex()));
    }
    else if (pResult->touchLuma > 0.0f)
    {
        // A touch outranks a face: the user pointed at it.
        pResult->finalLuma = Mix(pResult->frameLuma, pResult->touchLuma, TouchWeight(pTuning));
    }
    else if (pResult->faceLuma > 0.0f)
    {
        pResult->finalLuma = Mix(pResult->frameLuma, pResult->faceLuma, pResult->faceWeight);
    }
    else if (pResult->depthLuma > 0.0f)
    {
        pResult->finalLuma = Mix(pResult->frameLuma, pResult->depthLuma, pResult->depthWeight);
    }
    else if (pResult->irLuma > 0.0f)
    {
        pResult->finalLuma = pResult->irLuma;
    }
    else if (pResult->shdrLuma > 0.0f)
    {
        pResult->finalLuma = pResult->shdrLuma;
    }
    else
    {
        pResult->finalLuma = pResult->frameLuma;
    }

    if (TRUE == m_enableDiagnostic)
    {
        pResult->finalLuma = pResult->diagLuma;
    }
}

VOID CAECModMetering::aggregate3HDRType1LumaResult(AECLumaCalcResult* pResult)
{
    // The histogram's frame luma replaces the grid's; touch and face lumas carry over by their ratio to it.
    const MeteringTuningDataType* pTuning = m_aecContext->getMtrTuning();
    if (pResult->touchLuma > 0.0f)
    {
        pResult->hdr3touchLuma = pResult->touchLuma / pResult->frameLuma * pResult->hdr3Frameluma;
        AEC_LOG_VERBOSE("3HDR_Luma: Q_Touch:%.3f, Q_Frame:%.3f, Q_Touch:%.3f, S_Frame:%.3f", pResult->touchLuma,
                        pResult->frameLuma, pResult->hdr3touchLuma, pResult->hdr3Frameluma);
        pResult->frameLuma = pResult->hdr3Frameluma;
        pResult->touchLuma = pResult->hdr3touchLuma;
        pResult->finalLuma = Mix(pResult->frameLuma, pResult->touchLuma, TouchWeight(pTuning));
    }
    else if (pResult->faceLuma > 0.0f)
    {
        pResult->hdr3Faceluma = pResult->faceLuma / pResult->frameLuma * pResult->hdr3Frameluma;
        AEC_LOG_VERBOSE("3HDR_Luma: Q_Face:%.3f, Q_Frame:%.3f, S_face:%.3f, S_Frame:%.3f", pResult->faceLuma,
                        pResult->frameLuma, pResult->hdr3Faceluma, pResult->hdr3Frameluma);
        pResult->frameLuma = pResult->hdr3Frameluma;
        pResult->faceLuma  = pResult->hdr3Faceluma;
        pResult->finalLuma = Mix(pResult->frameLuma, pResult->faceLuma, pResult->faceWeight);
    }
    else
    {
        AEC_LOG_VERBOSE("Luma: Q_Frame:%.3f, S_Frame:%.3f", pResult->frameLuma, pResult->hdr3Frameluma);
        pResult->frameLuma = pResult->hdr3Frameluma;
        pResult->finalLuma = pResult->hdr3Frameluma;
    }
}

VOID CAECModMetering::aggregateTargetResult(AECTargetCalcResult* pTarget)
{
    if (AECAlgoOperationModeFlashMeasurement == m_aecContext->getOperationMode())
    {
        pTarget->shortTarget = FlashMeasurementTarget;
        pTarget->longTarget  = FlashMeasurementTarget;
        pTarget->safeTarget  = FlashMeasurementTarget;
        return;
    }
    if (pTarget->luxBasedSafeTarget <= 0.0f)
    {
        pTarget->shortTarget = FallbackTarget;
        pTarget->longTarget  = FallbackTarget;
        pTarget->safeTarget  = FallbackTarget;
        AEC_LOG_ERROR("Lux index based luma target is not calculated!");
        return;
    }

    if (pTarget->shdrBasedTarget[2] > 0.0f)
    {
        pTarget->shortTarget = pTarget->shdrBasedTarget[0];
        pTarget->longTarget  = pTarget->shdrBasedTarget[1];
        pTarget->safeTarget  = pTarget->shdrBasedTarget[2];
    }
    else if (pTarget->histBasedSafeTarget > 0.0f)
    {
        pTarget->shortTarget = pTarget->histBasedShortTarget;
        pTarget->longTarget  = pTarget->histBasedLongTarget;
        pTarget->safeTarget  = pTarget->histBasedSafeTarget;
    }
    else
    {
        pTarget->shortTarget = pTarget->luxBasedSafeTarget;
        pTarget->longTarget  = pTarget->luxBasedSafeTarget;
        pTarget->safeTarget  = pTarget->luxBasedSafeTarget;
    }

    // The colour target becomes the safe one; short and long keep their proportion to it.
    const MeteringTuningDataType* pTuning = m_aecContext->getMtrTuning();
    if ((1 == pTuning->pCore->mtrLumaTarget.extrmClrLumaTarget.enableExtrmClr) &&
        (pTarget->clrBasedSafeTarget > 0.0f) && (pTarget->safeTarget > 0.0f))
    {
        const FLOAT ratio = pTarget->clrBasedSafeTarget / pTarget->safeTarget;
        if (pTarget->clrBasedSafeTarget != pTarget->safeTarget)
        {
            AEC_LOG_VERBOSE("Color adj: safe %f => %f!", pTarget->safeTarget, pTarget->clrBasedSafeTarget);
        }
        pTarget->shortTarget *= ratio;
        pTarget->longTarget *= ratio;
        pTarget->safeTarget *= ratio;
    }
}
