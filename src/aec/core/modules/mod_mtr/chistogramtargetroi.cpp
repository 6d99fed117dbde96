// Histogram target ROI adjustments: a touch or a face region changes the zone's target limits and references.
#include <algorithm>

#include "aec/core/base/ctuningtriggerhandler.h"
#include "aec/core/modules/mod_mtr/chistogramtargetcalculator.h"
#include "platform/statslogger.h"

VOID CHistogramTargetCalculator::adjustTuningParamByTouchROI(const AECTargetCalcInput*                pInput,
                                                             aecMetering::HistLumaTargetZoneDataType* pHistParam)
{
    const aecTouch::TouchMeteringType* pTouch = pInput->pTuning->pTouch;
    if ((nullptr == pTouch) || (0 == pTouch->enableTouchROIHistAdj))
    {
        return;
    }

    aecglobalelements::ROIHistAdjZoneDataType zone = {};
    if (VelaResultSuccess != CTuningTriggerHandler::GetInterpZoneData(pTouch->ROIHistAdjZone, &zone, m_luxIndex,
                                                                      static_cast<INT32>(pTouch->ROIHistAdjZoneCount)))
    {
        AEC_LOG_WARN("touch hist adjustment has no zone for lux index %f", m_luxIndex);
        return;
    }
    const AECLumaCalcResult* pLuma = pInput->pLumaCalcResult;
    if (pLuma->frameLuma <= 0.0f)
    {
        AEC_LOG_WARN("touch hist adjustment without frame luma %f", pLuma->frameLuma);
        return;
    }

    const FLOAT r = pLuma->touchLuma / pLuma->frameLuma;
    const FLOAT a = zone.darkLumaRatioRange.start;
    const FLOAT b = zone.darkLumaRatioRange.end;
    const FLOAT c = zone.brightLumaRatioRange.start;
    const FLOAT d = zone.brightLumaRatioRange.end;

    const aecglobalelements::HistTargetAdjustParamType* pAdjust = nullptr;
    FLOAT                                               w       = 0.0f;
    if (r < b)
    {
        // Touch darker than the frame. The weight rises towards b, the range end nearest the frame luma: existing
        // tunings rely on this direction.
        pAdjust = &zone.darkROIAdjustParams;
        w       = ((r <= a) || (r >= d)) ? 1.0f : ((r - a) / (b - a));
    }
    else if (r <= c)
    {
        return;
    }
    else
    {
        pAdjust = &zone.brightROIAdjustParams;
        if ((r <= a) || (r >= d))
        {
            w = 1.0f;
        }
        else if ((b >= r) || (c <= r))
        {
            w = (r - c) / (d - c);
        }
    }

    AEC_LOG_VERBOSE("LumaRatio: %f, interpRatio %f", r, w);
    pHistParam->minTargetAdjRatio += w * (pAdjust->minTargetAdjRatio - pHistParam->minTargetAdjRatio);
    pHistParam->maxTargetAdjRatio += w * (pAdjust->maxTargetAdjRatio - pHistParam->maxTargetAdjRatio);
    pHistParam->darkRefLow += w * (pAdjust->darkRefLow - pHistParam->darkRefLow);
    pHistParam->satRefHigh += w * (pAdjust->satRefHigh - pHistParam->satRefHigh);
}

VOID CHistogramTargetCalculator::adjustTuningParamByFaceROI(const AECTargetCalcInput*                pInput,
                                                            aecMetering::HistLumaTargetZoneDataType* pHistParam)
{
    const aecFace::FaceMeteringType* pFace = pInput->pTuning->pFace;
    if ((nullptr == pFace) || (1 != pFace->enableFaceROI) || (1 != pFace->enableHistLumaTargetSuppression))
    {
        return;
    }

    const FLOAT start = pFace->faceSize.start;
    const FLOAT end   = pFace->faceSize.end;
    if (end <= start)
    {
        // An empty size range has no ramp to place the face on.
        AEC_LOG_WARN("face hist suppression skipped: face size range (%f, %f) is empty", start, end);
        return;
    }

    const FLOAT faceSize   = std::max(start, std::min(pInput->pLumaCalcResult->faceMaxSize, end));
    const FLOAT allowRatio = (end - faceSize) / (end - start);
    AEC_LOG_VERBOSE("allowRatio: %f", allowRatio);
    pHistParam->minTargetAdjRatio = 1.0f + allowRatio * (pHistParam->minTargetAdjRatio - 1.0f);
    pHistParam->maxTargetAdjRatio = 1.0f + allowRatio * (pHistParam->maxTargetAdjRatio - 1.0f);
}
