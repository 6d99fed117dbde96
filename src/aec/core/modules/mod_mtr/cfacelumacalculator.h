// Face luma calculator: luma of the metered faces and the weight with which it pulls the final luma.
#ifndef AEC_CORE_MODULES_MOD_MTR_CFACELUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CFACELUMACALCULATOR_H

#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"

class IProcessedStats;

// Face weight range and the face size range it spans. weightRange is written when the lux trigger is on, and
// points into the tuning, so the tuned range follows the trigger.
struct AECDominantFaceWeightingType
{
    aecglobalelements::StartEndType*       weightRange;
    const aecglobalelements::StartEndType* sizeRange;
};

// Runs after the frame luma calculator (it compares against frameLuma) and after the lux calculators (the face
// weight follows the lux index). The helpers are class-level so that the flash snapshot estimator can measure the
// faces of its backed-up statistics without a calculator.
class CFaceLumaCalculator final : public IAECLumaCalculator
{
public:
    explicit CFaceLumaCalculator(CStatsProcessor* pStatsProc);

    VOID Initialize() override;
    // Writes faceLuma (-1 without an active face), faceLumaRange, faceMaxSize, faceWeight and its three factors.
    // Fails when the face state is active but no face is left after filtering.
    AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) override;

    // Score-weighted mean of the faces' centre-weighted lumas into faceLuma, with faceLumaRange and faceMaxSize
    // (the largest score, that is the largest face size). The face windows are scaled by ROIFactor.
    static AecResult CalculateMultipleFaceROILuma(const FaceROIProcInfo* pCfg, StatsROISelection selection,
                                                  FLOAT cntrWt, IProcessedStats* pStats, AECLumaCalcResult* pResult,
                                                  FLOAT ROIFactor);
    // Face weight by faceMaxSize over the size range; 0 for an empty size range. With the lux trigger on, the
    // weight range is first taken from the lux zones and written through pWeights->weightRange.
    static FLOAT CalculateDominantFaceWeight(AECDominantFaceWeightingType*    pWeights,
                                             const aecFace::FaceMeteringType* pFace, AECLumaCalcResult* pResult);
    // Multiplier of the face weight for a face darker than the frame; 1 when off or the face is not darker.
    static FLOAT CalculateBackLitAdjustment(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult);
    // Multiplier of the face weight for a face brighter than the frame (sensor HDR); 1 when off or not brighter.
    static FLOAT CalculateFrontLitAdjustment(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult);

private:
    // Face i normalised to the crop window when the statistics cover it, else to the full image.
    static AECAlgoROI GetFaceROI(const ROIPriority& rFaces, UINT32 index, StatsROISelection selection);
};

#endif // AEC_CORE_MODULES_MOD_MTR_CFACELUMACALCULATOR_H
