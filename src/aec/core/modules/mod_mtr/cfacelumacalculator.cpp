// Face luma calculator: luma of the metered faces and the weight with which it pulls the final luma.
#include "aec/core/modules/mod_mtr/cfacelumacalculator.h"

#include <algorithm>
#include <cmath>

#include "aec/core/base/ctuningtriggerhandler.h"
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "aec/core/modules/mod_mtr/lumacalculatorutil.h"
#include "platform/statslogger.h"
#include "tuning_aecface.h"

namespace
{
constexpr FLOAT FaceLumaRangeStart = 512.0f; // above any luma, so the first face sets the minimum
constexpr FLOAT MaxLuma            = 255.0f;
constexpr FLOAT MinFaceLuma        = 0.1f;
constexpr FLOAT RatioEpsilon       = 1e-7f;
} // namespace

CFaceLumaCalculator::CFaceLumaCalculator(CStatsProcessor* pStatsProc)
    : IAECLumaCalculator(pStatsProc)
{
    Initialize();
}

VOID CFaceLumaCalculator::Initialize()
{
    // Nothing carries over from frame to frame.
}

AECAlgoROI CFaceLumaCalculator::GetFaceROI(const ROIPriority& rFaces, UINT32 index, StatsROISelection selection)
{
    return (StatsROISelectionCroppedFOV == selection) ? rFaces.GetNormalizeROIInCrop(index)
                                                      : rFaces.GetNormalizeROI(index);
}

AecResult CFaceLumaCalculator::calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == pInput->pTuning) ||
        (nullptr == pInput->pTuning->pFace) || (nullptr == m_pStatsProc))
    {
        AEC_LOG_ERROR("face luma: missing input, result, face tuning or statistics");
        return AecError;
    }
    const aecFace::FaceMeteringType* pFace     = pInput->pTuning->pFace;
    const FaceROIProcInfo*           pFaceROIs = pInput->pFaceROIs;

    if ((0 == pFace->enableFaceROI) || (nullptr == pFaceROIs) || (0 == pFaceROIs->isActiveFace))
    {
        pResult->faceLuma = -1.0f;
        return AecSuccess;
    }

    const ROIPriority& rFaces = pFaceROIs->filteredROIPriority;
    if (0 == rFaces.Size())
    {
        AEC_LOG_WARN("Warning: No Face ROI while Face is Active! \n");
        return AecError;
    }
    if (nullptr == pInput->pBGBEConfig)
    {
        AEC_LOG_ERROR("face luma: missing statistics configuration");
        return AecError;
    }

    // Under sensor HDR the tuned factor enlarges the face window.
    const FLOAT tunedFactor = pFace->SensorHDRFaceMeteringType.FaceROIFactor;
    const FLOAT ROIFactor   = ((tunedFactor > RatioEpsilon) && (0 != pInput->enableHDR3)) ? tunedFactor : 1.0f;

    // The frame pass may have skipped regions under a face; the face sums need all of them.
    const StatsROISelection selection = pInput->pBGBEConfig->ROISelection;
    for (UINT32 i = 0; i < rFaces.Size(); ++i)
    {
        const AECAlgoROI roi = GetFaceROI(rFaces, i, selection);
        m_pStatsProc->ReprocessBGStats(BGStatsIterationMode::Exhaustive, roi.x, roi.y, roi.x + roi.dx, roi.y + roi.dy);
    }

    CalculateMultipleFaceROILuma(pFaceROIs, selection, pFace->centerWeightStrength,
                                 m_pStatsProc->GetStatsProcessingResult(), pResult, ROIFactor);

    // With the lux trigger on, the tuned weight range is rewritten in place: the tuning is this camera's own copy,
    // read-only to every other reader.
    AECDominantFaceWeightingType weights = {const_cast<aecglobalelements::StartEndType*>(&pFace->faceWeight),
                                            &pFace->faceSize};
    pResult->faceWeightByMaxSize     = CalculateDominantFaceWeight(&weights, pFace, pResult);
    pResult->faceWeightAdjByBackLit  = CalculateBackLitAdjustment(pInput, pResult);
    pResult->faceWeightAdjByFrontLit = (1 == pInput->enableHDR3) ? CalculateFrontLitAdjustment(pInput, pResult) : 1.0f;

    const FLOAT weight =
        pResult->faceWeightAdjByBackLit * pResult->faceWeightByMaxSize * pResult->faceWeightAdjByFrontLit;
    pResult->faceWeight = std::min(weight, 1.0f);
    return AecSuccess;
}

AecResult CFaceLumaCalculator::CalculateMultipleFaceROILuma(const FaceROIProcInfo* pCfg, StatsROISelection selection,
                                                            FLOAT cntrWt, IProcessedStats* pStats,
                                                            AECLumaCalcResult* pResult, FLOAT ROIFactor)
{
    if ((nullptr == pCfg) || (nullptr == pStats) || (nullptr == pResult))
    {
        AEC_LOG_ERROR("face ROI luma: missing faces, statistics or result");
        return AecError;
    }
    if (StatsROISelectionCroppedFOV != selection)
    {
        AEC_LOG_WARN("AEC expecting cropped FOV");
    }

    const ROIPriority& rFaces   = pCfg->filteredROIPriority;
    FLOAT              minLuma  = FaceLumaRangeStart;
    FLOAT              maxLuma  = 0.0f;
    FLOAT              sum      = 0.0f;
    FLOAT              scoreSum = 0.0f;
    FLOAT              maxSize  = 0.0f;
    for (UINT32 i = 0; i < rFaces.Size(); ++i)
    {
        const AECAlgoROI roi       = GetFaceROI(rFaces, i, selection);
        const FLOAT      score     = rFaces.GetScore(i);
        FLOAT            lumaSum   = 0.0f;
        FLOAT            weightSum = 0.0f;
        UtilCalcCircularROILuma(pStats, &roi, cntrWt, &lumaSum, &weightSum, ROIFactor);

        const FLOAT luma = (weightSum > 0.0f) ? (lumaSum / weightSum) : lumaSum;
        sum += luma * score;
        scoreSum += score;
        minLuma = std::min(minLuma, luma);
        maxLuma = std::max(maxLuma, luma);
        maxSize = std::max(maxSize, score);
    }

    pResult->faceMaxSize       = maxSize;
    pResult->faceLuma          = (scoreSum > 0.0f) ? (sum / scoreSum) : sum;
    pResult->faceLumaRange.min = minLuma;
    pResult->faceLumaRange.max = maxLuma;
    return AecSuccess;
}

FLOAT CFaceLumaCalculator::CalculateDominantFaceWeight(AECDominantFaceWeightingType*    pWeights,
                                                       const aecFace::FaceMeteringType* pFace,
                                                       AECLumaCalcResult*               pResult)
{
    if ((nullptr == pWeights) || (nullptr == pWeights->weightRange) || (nullptr == pWeights->sizeRange) ||
        (nullptr == pFace) || (nullptr == pResult))
    {
        AEC_LOG_ERROR("face weight: missing ranges, face tuning or result");
        return 0.0f;
    }
    aecglobalelements::StartEndType*       pWeight = pWeights->weightRange;
    const aecglobalelements::StartEndType* pSize   = pWeights->sizeRange;

    if ((pSize->end - pSize->start) <= 0.0f)
    {
        AEC_LOG_ERROR("ERROR: Invalid Size Range");
        return 0.0f;
    }

    const aecFace::FaceMeteringType::faceLumaWeightLuxIndexTriggerStruct& rTrigger =
        pFace->faceLumaWeightLuxIndexTrigger;
    if (1 == rTrigger.enableFaceLumaTrigger)
    {
        // A table that can't be looked up leaves the range as it is.
        aecglobalelements::LuxFaceWeightZoneDataType zone = {pWeight->start, pWeight->end};
        CTuningTriggerHandler::GetInterpZoneData(rTrigger.LuxFaceLumaWeight, &zone, pResult->luxIndex,
                                                 static_cast<INT32>(rTrigger.LuxFaceLumaWeightCount));
        pWeight->start = zone.start;
        pWeight->end   = zone.end;
        AEC_LOG_VERBOSE("FACE_Weight:lux_idx %f, weight [%f, %f]", static_cast<double>(pResult->luxIndex),
                        static_cast<double>(pWeight->start), static_cast<double>(pWeight->end));
    }

    const FLOAT size = std::min(std::max(pResult->faceMaxSize, pSize->start), pSize->end);
    const FLOAT weight =
        pWeight->start + (size - pSize->start) / (pSize->end - pSize->start) * (pWeight->end - pWeight->start);
    AEC_LOG_VERBOSE("Origin face size %f weight [%f , %f] weight final: %f ; size [%f , %f] size final: %f",
                    static_cast<double>(pResult->faceMaxSize), static_cast<double>(pWeight->start),
                    static_cast<double>(pWeight->end), static_cast<double>(weight), static_cast<double>(pSize->start),
                    static_cast<double>(pSize->end), static_cast<double>(size));
    return weight;
}

FLOAT CFaceLumaCalculator::CalculateBackLitAdjustment(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == pInput->pTuning) ||
        (nullptr == pInput->pTuning->pFace))
    {
        AEC_LOG_ERROR("backlight adjustment: missing input, result or face tuning");
        return 1.0f;
    }
    const aecFace::FaceMeteringType* pFace = pInput->pTuning->pFace;
    if (0 == pFace->enableBackLitComp)
    {
        return 1.0f;
    }

    const FLOAT face  = pResult->faceLuma;
    const FLOAT frame = pResult->frameLuma;
    // hi: frame/face ratio of full adjustment; lo: ratio where the adjustment begins.
    FLOAT       hi    = std::max(pFace->thresBackLitLumaRatio.start, 1.0f);
    FLOAT       lo    = std::max(pFace->thresBackLitLumaRatio.end, 1.0f);
    const FLOAT adjHi = pFace->backlitWeighttAdjSettings.start;
    const FLOAT adjLo = pFace->backlitWeighttAdjSettings.end;

    if (lo > hi)
    {
        AEC_LOG_WARN("face luma thres low %.f larger than high %.1f; swapping", static_cast<double>(lo),
                     static_cast<double>(hi));
        std::swap(lo, hi);
    }

    if (face >= frame)
    {
        return 1.0f;
    }
    if (frame >= std::min(hi * face, MaxLuma))
    {
        return adjHi;
    }
    const FLOAT t = std::min(lo * face, MaxLuma);
    if (frame > t)
    {
        const FLOAT r =
            (std::fabs(hi - lo) < RatioEpsilon) ? 1.0f : (((frame - t) / std::max(face, MinFaceLuma)) / (hi - lo));
        return adjLo + r * (adjHi - adjLo);
    }
    const FLOAT r =
        (std::fabs(lo - 1.0f) < RatioEpsilon) ? 1.0f : (((frame - face) / std::max(face, MinFaceLuma)) / (lo - 1.0f));
    return 1.0f + r * (adjLo - 1.0f);
}

FLOAT CFaceLumaCalculator::CalculateFrontLitAdjustment(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == pInput->pTuning) ||
        (nullptr == pInput->pTuning->pFace))
    {
        AEC_LOG_ERROR("front light adjustment: missing input, result or face tuning");
        return 1.0f;
    }
    const aecFace::FaceMeteringType::SensorHDRFaceMeteringTypeStruct& rHDR =
        pInput->pTuning->pFace->SensorHDRFaceMeteringType;
    if (0 == rHDR.enableFrontLitComp)
    {
        return 1.0f;
    }

    const FLOAT faceLuma  = pResult->faceLuma;
    const FLOAT frameLuma = pResult->frameLuma;
    const FLOAT a         = std::max(rHDR.thresFrontLitLumaRatio.start, 1.0f);
    const FLOAT b         = std::max(rHDR.thresFrontLitLumaRatio.end, 1.0f);
    const FLOAT adjA      = rHDR.frontlitWeighttAdjSettings.start;
    const FLOAT adjB      = rHDR.frontlitWeighttAdjSettings.end;

    if (faceLuma <= frameLuma)
    {
        return 1.0f;
    }
    // With the face brighter than the frame and a >= 1 this holds for any frame luma below full scale.
    if (frameLuma < std::min(faceLuma * a, MaxLuma))
    {
        return adjA;
    }
    // Only a frame at full scale gets here, and t (at most full scale) never lies above it: the last step decides.
    const FLOAT t = std::min(faceLuma * b, MaxLuma);
    if (frameLuma < t)
    {
        return adjB + ((frameLuma - t) / faceLuma / (a - b)) * (adjA - adjB);
    }
    // A second ratio of 1 would divide by zero; it counts as the full step, as in the backlight adjustment.
    const FLOAT r = (std::fabs(b - 1.0f) < RatioEpsilon) ? 1.0f : ((frameLuma - faceLuma) / faceLuma / (b - 1.0f));
    return 1.0f + r * (adjB - 1.0f);
}
