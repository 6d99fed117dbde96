// Touch luma over all touch ROIs, each region weighted by its distance from the centre of its ROI.
#include "aec/core/modules/mod_mtr/ctouchlumacalculator.h"

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "aec/core/modules/mod_mtr/lumacalculatorutil.h"
#include "platform/statslogger.h"

CTouchLumaCalculator::CTouchLumaCalculator(CStatsProcessor* pStatsProc)
    : IAECLumaCalculator(pStatsProc)
{
}

VOID CTouchLumaCalculator::Initialize()
{
    // Nothing is kept from frame to frame.
}

AecResult CTouchLumaCalculator::calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == pInput->pTuning) ||
        (nullptr == pInput->pTuning->pTouch) || (nullptr == m_pStatsProc))
    {
        AEC_LOG_ERROR("touch luma: missing input, touch tuning or statistics");
        return AecError;
    }
    const aecTouch::TouchMeteringType* pTouch = pInput->pTuning->pTouch;
    const TouchROIProcInfo*            pROIs  = pInput->pTouchROIs;
    if ((0 == pTouch->enableTouchROI) || (nullptr == pROIs) || (0 == pROIs->ROICount))
    {
        pResult->touchLuma = -1.0f;
        return AecSuccess;
    }

    UINT32 count = pROIs->ROICount;
    if (count > AECMaxTouchROIs)
    {
        AEC_LOG_WARN("touch luma: %u touch ROIs, only the first %u are used", count, AECMaxTouchROIs);
        count = AECMaxTouchROIs;
    }
    FLOAT lumaSum   = 0.0f;
    FLOAT weightSum = 0.0f;
    for (UINT32 i = 0; i < count; i++)
    {
        const AECAlgoROI& roi = pROIs->ROIs[i];
        // The frame pass may have subsampled the grid; the touched window needs every region.
        m_pStatsProc->ReprocessBGStats(BGStatsIterationMode::Exhaustive, roi.x, roi.y, roi.x + roi.dx,
                                       roi.y + roi.dy);
        FLOAT roiLumaSum   = 0.0f;
        FLOAT roiWeightSum = 0.0f;
        UtilCalcCircularROILuma(m_pStatsProc->GetStatsProcessingResult(), &roi, pTouch->centerWeightStrength,
                                &roiLumaSum, &roiWeightSum);
        lumaSum += roiLumaSum;
        weightSum += roiWeightSum;
    }
    pResult->touchLuma = (weightSum > 0.0f) ? (lumaSum / weightSum) : 0.0f;
    return AecSuccess;
}
