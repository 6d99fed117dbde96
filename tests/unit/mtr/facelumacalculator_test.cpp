// Face luma calculator: face luma of several faces, face weight by size and lux index, backlight and front light.
#include "unit/mtr/mtrtestsupport.h"

#include <cmath>
#include <cstring>

#include "aec/core/modules/mod_mtr/cfacelumacalculator.h"
#include "aec/core/modules/mod_mtr/cframelumacalculator.h"
#include "aec/core/modules/mod_mtr/cluxlumacalculator.h"
#include "tuning_aecface.h"

namespace
{
// 10-bit grid values of the 8-bit lumas the tests use.
constexpr UINT32 Luma30  = 120;
constexpr UINT32 Luma40  = 160;
constexpr UINT32 Luma100 = 400;
constexpr UINT32 Luma200 = 800;

// Face coordinates are pixels of this image size.
constexpr UINT32 ImageWidth  = 1600;
constexpr UINT32 ImageHeight = 1200;
} // namespace

class FaceLumaCalculatorTest : public MeteringTest
{
protected:
    VOID SetUp() override
    {
        MeteringTest::SetUp();
        m_pCalc = std::make_unique<CFaceLumaCalculator>(m_pProc.get());
        std::memset(&m_result, 0, sizeof(m_result));
        m_pFace->filteredROIPriority.SetImageResolution(ImageWidth, ImageHeight);
        std::memset(&m_faces, 0, sizeof(m_faces));
    }

    aecFace::FaceMeteringType& Face() { return Modules().modFace->faceMtr; }

    // Adds a face in pixels of the image.
    VOID AddFace(UINT32 left, UINT32 top, UINT32 width, UINT32 height)
    {
        StatsROIData& rROI = m_faces.roi[m_faces.roiCount];
        rROI.roiID         = m_faces.roiCount + 1;
        rROI.rect          = StatsRectangle{left, top, width, height};
        rROI.weight        = 1;
        m_faces.roiCount++;
        m_pFace->filteredROIPriority.UpdateROIData(&m_faces);
        m_pFace->isActiveFace = TRUE;
    }

    // A grid whose columns below splitColumn take the left value, the others the right value.
    VOID ParseColumns(UINT32 splitColumn, UINT32 left, UINT32 right)
    {
        std::unique_ptr<CSyntheticStats> image = Image();
        for (UINT32 y = 0; y < 12; ++y)
        {
            for (UINT32 x = 0; x < 16; ++x)
            {
                image->SetRegion(x, y, SyntheticRegion::Uniform((x < splitColumn) ? left : right));
            }
        }
        ASSERT_EQ(AecSuccess, Parse(*image));
    }

    AecResult Run(BOOL enableHDR3 = FALSE)
    {
        AECLumaCalcInput input = LumaInput();
        input.enableHDR3       = enableHDR3;
        return m_pCalc->calculateLuma(&input, &m_result);
    }

    FLOAT BackLit(FLOAT face, FLOAT frame)
    {
        m_result.faceLuma            = face;
        m_result.frameLuma           = frame;
        const AECLumaCalcInput input = LumaInput();
        return CFaceLumaCalculator::CalculateBackLitAdjustment(&input, &m_result);
    }

    FLOAT FrontLit(FLOAT face, FLOAT frame)
    {
        m_result.faceLuma            = face;
        m_result.frameLuma           = frame;
        const AECLumaCalcInput input = LumaInput();
        return CFaceLumaCalculator::CalculateFrontLitAdjustment(&input, &m_result);
    }

    FLOAT DominantWeight(FLOAT faceMaxSize)
    {
        m_result.faceMaxSize                 = faceMaxSize;
        AECDominantFaceWeightingType weights = {&Face().faceWeight, &Face().faceSize};
        return CFaceLumaCalculator::CalculateDominantFaceWeight(&weights, &Face(), &m_result);
    }

    std::unique_ptr<CFaceLumaCalculator> m_pCalc;
    AECLumaCalcResult                    m_result;
    UnstabilizedROIInformation           m_faces;
};

TEST_F(FaceLumaCalculatorTest, FaceMeteringOffGivesNoFaceLuma)
{
    ParseColumns(8, Luma100, Luma40);
    AddFace(0, 0, 640, 600);
    Face().enableFaceROI = FALSE;
    EXPECT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(-1.0f, m_result.faceLuma);
    EXPECT_FLOAT_EQ(0.0f, m_result.faceWeight);
}

TEST_F(FaceLumaCalculatorTest, InactiveFaceGivesNoFaceLuma)
{
    ParseColumns(8, Luma100, Luma40);
    AddFace(0, 0, 640, 600);
    m_pFace->isActiveFace = FALSE;
    EXPECT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(-1.0f, m_result.faceLuma);
}

TEST_F(FaceLumaCalculatorTest, ActiveFaceWithoutRegionsFails)
{
    ParseColumns(8, Luma100, Luma40);
    m_pFace->isActiveFace = TRUE;
    EXPECT_EQ(AecError, Run());
    EXPECT_FLOAT_EQ(0.0f, m_result.faceLuma);
    EXPECT_TRUE(MtrLogContains("Warning: No Face ROI while Face is Active! \n"));
}

TEST_F(FaceLumaCalculatorTest, MissingFaceStateCountsAsNoFace)
{
    AECLumaCalcInput input = LumaInput();
    input.pFaceROIs        = nullptr;
    EXPECT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));
    EXPECT_FLOAT_EQ(-1.0f, m_result.faceLuma);
}

TEST_F(FaceLumaCalculatorTest, TwoFacesAreWeightedByTheirScores)
{
    // Face A (score 0.2) lies on luma 100, face B (score 0.1) on luma 40.
    ParseColumns(8, Luma100, Luma40);
    AddFace(0, 0, 640, 600);
    AddFace(1000, 600, 400, 480);
    ASSERT_NEAR(0.2f, m_pFace->filteredROIPriority.GetScore(0), 1e-6f);
    ASSERT_NEAR(0.1f, m_pFace->filteredROIPriority.GetScore(1), 1e-6f);

    ASSERT_EQ(AecSuccess, Run());
    EXPECT_NEAR(80.0f, m_result.faceLuma, 0.05f);
    EXPECT_NEAR(0.2f, m_result.faceMaxSize, 1e-6f);
    EXPECT_NEAR(40.0f, m_result.faceLumaRange.min, 0.05f);
    EXPECT_NEAR(100.0f, m_result.faceLumaRange.max, 0.05f);
}

TEST_F(FaceLumaCalculatorTest, MultipleFaceLumaWarnsOnAFullViewSelection)
{
    ParseColumns(8, Luma100, Luma40);
    AddFace(0, 0, 640, 600);
    ASSERT_EQ(AecSuccess,
              CFaceLumaCalculator::CalculateMultipleFaceROILuma(m_pFace.get(), StatsROISelectionFullFOV, 0.5f,
                                                                m_pProc->GetStatsProcessingResult(), &m_result, 1.0f));
    EXPECT_TRUE(MtrLogContains("AEC expecting cropped FOV"));
    EXPECT_NEAR(100.0f, m_result.faceLuma, 0.05f);
}

TEST_F(FaceLumaCalculatorTest, FacesAreNormalisedToTheCropWindowOfCroppedStatistics)
{
    // The left half of the image is cropped away: the face at x 800..1200 lies in the crop's left half.
    ParseColumns(8, Luma100, Luma40);
    const StatsRectangle crop = {800, 0, 800, 1200};
    m_pFace->filteredROIPriority.SetCropWindow(&crop);
    AddFace(800, 0, 400, 600);
    m_bgbe.ROISelection = StatsROISelectionCroppedFOV;
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_NEAR(100.0f, m_result.faceLuma, 0.05f);

    m_bgbe.ROISelection = StatsROISelectionFullFOV;
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_NEAR(40.0f, m_result.faceLuma, 0.05f);
}

TEST_F(FaceLumaCalculatorTest, HDRFaceFactorEnlargesTheFaceWindow)
{
    // The face covers columns 0..3 (luma 40); the enlarged window reaches the luma 200 columns beside it.
    ParseColumns(4, Luma40, Luma200);
    AddFace(0, 300, 400, 600);
    Face().SensorHDRFaceMeteringType.FaceROIFactor      = 2.0f;
    Face().SensorHDRFaceMeteringType.enableFrontLitComp = FALSE;

    ASSERT_EQ(AecSuccess, Run(FALSE));
    EXPECT_NEAR(40.0f, m_result.faceLuma, 0.05f);
    ASSERT_EQ(AecSuccess, Run(TRUE));
    EXPECT_GT(m_result.faceLuma, 45.0f);

    // A factor of 0 means no enlargement.
    Face().SensorHDRFaceMeteringType.FaceROIFactor = 0.0f;
    ASSERT_EQ(AecSuccess, Run(TRUE));
    EXPECT_NEAR(40.0f, m_result.faceLuma, 0.05f);
}

TEST_F(FaceLumaCalculatorTest, FaceSizeBelowTheRangeGivesTheStartWeight)
{
    Face().faceLumaWeightLuxIndexTrigger.enableFaceLumaTrigger = FALSE;
    Face().faceWeight                                          = {0.4f, 0.8f};
    Face().faceSize                                            = {0.01f, 0.2f};
    EXPECT_FLOAT_EQ(0.4f, DominantWeight(0.001f));
    EXPECT_TRUE(MtrLogContains("Origin face size"));
}

TEST_F(FaceLumaCalculatorTest, FaceSizeAboveTheRangeGivesTheEndWeight)
{
    Face().faceLumaWeightLuxIndexTrigger.enableFaceLumaTrigger = FALSE;
    Face().faceWeight                                          = {0.4f, 0.8f};
    Face().faceSize                                            = {0.01f, 0.2f};
    EXPECT_FLOAT_EQ(0.8f, DominantWeight(0.5f));
}

TEST_F(FaceLumaCalculatorTest, FaceWeightFollowsTheSizeLinearly)
{
    Face().faceLumaWeightLuxIndexTrigger.enableFaceLumaTrigger = FALSE;
    Face().faceWeight                                          = {0.4f, 0.8f};
    Face().faceSize                                            = {0.0f, 0.2f};
    EXPECT_NEAR(0.6f, DominantWeight(0.1f), 1e-6f);
    EXPECT_NEAR(0.5f, DominantWeight(0.05f), 1e-6f);
}

TEST_F(FaceLumaCalculatorTest, EmptySizeRangeGivesNoWeight)
{
    Face().faceLumaWeightLuxIndexTrigger.enableFaceLumaTrigger = FALSE;
    Face().faceSize                                            = {0.2f, 0.2f};
    EXPECT_FLOAT_EQ(0.0f, DominantWeight(0.1f));
    EXPECT_TRUE(MtrLogContains("ERROR: Invalid Size Range"));
}

TEST_F(FaceLumaCalculatorTest, LuxTriggerWritesTheWeightRangeIntoTheTuning)
{
    Face().faceLumaWeightLuxIndexTrigger.enableFaceLumaTrigger = TRUE;
    Face().faceWeight                                          = {0.1f, 0.1f};
    Face().faceSize                                            = {0.0f, 0.2f};
    m_result.luxIndex                                          = 250.0f; // zone 200..300: 0.5 .. 0.85
    EXPECT_NEAR(0.5f, DominantWeight(0.0f), 1e-6f);
    EXPECT_FLOAT_EQ(0.5f, Face().faceWeight.start);
    EXPECT_FLOAT_EQ(0.85f, Face().faceWeight.end);
    EXPECT_TRUE(MtrLogContains("FACE_Weight:lux_idx 250.000000, weight [0.500000, 0.850000]"));
}

TEST_F(FaceLumaCalculatorTest, LuxTriggerWithoutZonesKeepsTheTunedRange)
{
    Face().faceLumaWeightLuxIndexTrigger.enableFaceLumaTrigger  = TRUE;
    Face().faceLumaWeightLuxIndexTrigger.LuxFaceLumaWeightCount = 0;
    Face().faceWeight                                           = {0.4f, 0.8f};
    Face().faceSize                                             = {0.0f, 0.2f};
    EXPECT_NEAR(0.8f, DominantWeight(0.2f), 1e-6f);
    EXPECT_FLOAT_EQ(0.4f, Face().faceWeight.start);
    EXPECT_FLOAT_EQ(0.8f, Face().faceWeight.end);
}

TEST_F(FaceLumaCalculatorTest, BackLitDarkFaceGetsTheFullAdjustment)
{
    Face().enableBackLitComp         = TRUE;
    Face().thresBackLitLumaRatio     = {4.0f, 1.5f};
    Face().backlitWeighttAdjSettings = {1.5f, 1.2f};
    EXPECT_FLOAT_EQ(1.5f, BackLit(20.0f, 200.0f));
    EXPECT_FLOAT_EQ(1.5f, BackLit(20.0f, 80.0f)); // exactly at the high ratio
}

TEST_F(FaceLumaCalculatorTest, BackLitBrightOrEqualFaceGetsOne)
{
    Face().enableBackLitComp         = TRUE;
    Face().thresBackLitLumaRatio     = {4.0f, 1.5f};
    Face().backlitWeighttAdjSettings = {1.5f, 1.2f};
    EXPECT_FLOAT_EQ(1.0f, BackLit(120.0f, 60.0f));
    EXPECT_FLOAT_EQ(1.0f, BackLit(60.0f, 60.0f));
}

TEST_F(FaceLumaCalculatorTest, BackLitBetweenTheRatiosInterpolates)
{
    Face().enableBackLitComp         = TRUE;
    Face().thresBackLitLumaRatio     = {4.0f, 2.0f};
    Face().backlitWeighttAdjSettings = {1.6f, 1.2f};
    // Ratio 3, halfway between 2 and 4.
    EXPECT_NEAR(1.4f, BackLit(20.0f, 60.0f), 1e-5f);
    // Ratio 1.5, halfway between 1 and the low ratio 2.
    EXPECT_NEAR(1.1f, BackLit(20.0f, 30.0f), 1e-5f);
}

TEST_F(FaceLumaCalculatorTest, BackLitThresholdsAreCappedByFullScale)
{
    Face().enableBackLitComp         = TRUE;
    Face().thresBackLitLumaRatio     = {4.0f, 2.0f};
    Face().backlitWeighttAdjSettings = {1.6f, 1.2f};
    // 4 * 100 is beyond full scale: a frame at 255 already counts as fully backlit.
    EXPECT_FLOAT_EQ(1.6f, BackLit(100.0f, 255.0f));
}

TEST_F(FaceLumaCalculatorTest, BackLitSwapsThresholdsGivenTheWrongWayRound)
{
    Face().enableBackLitComp         = TRUE;
    Face().thresBackLitLumaRatio     = {2.0f, 4.0f};
    Face().backlitWeighttAdjSettings = {1.6f, 1.2f};
    EXPECT_NEAR(1.4f, BackLit(20.0f, 60.0f), 1e-5f);
    EXPECT_TRUE(MtrLogContains("face luma thres low 4 larger than high 2.0; swapping"));
}

TEST_F(FaceLumaCalculatorTest, BackLitEqualThresholdsTakeTheFullStep)
{
    Face().enableBackLitComp         = TRUE;
    Face().thresBackLitLumaRatio     = {1.0f, 1.0f};
    Face().backlitWeighttAdjSettings = {1.6f, 1.2f};
    // Any darker face is at or beyond the high ratio 1.
    EXPECT_FLOAT_EQ(1.6f, BackLit(20.0f, 21.0f));
}

TEST_F(FaceLumaCalculatorTest, BackLitOffGivesOne)
{
    Face().enableBackLitComp = FALSE;
    EXPECT_FLOAT_EQ(1.0f, BackLit(20.0f, 200.0f));
}

TEST_F(FaceLumaCalculatorTest, FrontLitBrightFaceGetsTheFirstAdjustment)
{
    Face().SensorHDRFaceMeteringType.enableFrontLitComp         = TRUE;
    Face().SensorHDRFaceMeteringType.thresFrontLitLumaRatio     = {1.5f, 3.0f};
    Face().SensorHDRFaceMeteringType.frontlitWeighttAdjSettings = {1.1f, 0.5f};
    EXPECT_FLOAT_EQ(1.1f, FrontLit(200.0f, 50.0f));
}

TEST_F(FaceLumaCalculatorTest, FrontLitEqualOrDarkerFaceGetsOne)
{
    Face().SensorHDRFaceMeteringType.enableFrontLitComp         = TRUE;
    Face().SensorHDRFaceMeteringType.thresFrontLitLumaRatio     = {1.5f, 3.0f};
    Face().SensorHDRFaceMeteringType.frontlitWeighttAdjSettings = {1.1f, 0.5f};
    EXPECT_FLOAT_EQ(1.0f, FrontLit(50.0f, 50.0f));
    EXPECT_FLOAT_EQ(1.0f, FrontLit(20.0f, 50.0f));
}

TEST_F(FaceLumaCalculatorTest, FrontLitAtFullScaleInterpolatesTowardsOne)
{
    Face().SensorHDRFaceMeteringType.enableFrontLitComp         = TRUE;
    Face().SensorHDRFaceMeteringType.thresFrontLitLumaRatio     = {1.0f, 3.0f};
    Face().SensorHDRFaceMeteringType.frontlitWeighttAdjSettings = {1.1f, 0.5f};
    // Frame at full scale, face above it: 1 + ((255 - 300) / 300 / (3 - 1)) * (0.5 - 1).
    EXPECT_NEAR(1.0375f, FrontLit(300.0f, 255.0f), 1e-5f);
    // Equal ratios of 1 would divide by zero: the full step to the second adjustment.
    Face().SensorHDRFaceMeteringType.thresFrontLitLumaRatio = {1.0f, 1.0f};
    EXPECT_FLOAT_EQ(0.5f, FrontLit(300.0f, 255.0f));
}

TEST_F(FaceLumaCalculatorTest, FrontLitOffGivesOne)
{
    Face().SensorHDRFaceMeteringType.enableFrontLitComp = FALSE;
    EXPECT_FLOAT_EQ(1.0f, FrontLit(200.0f, 50.0f));
}

TEST_F(FaceLumaCalculatorTest, FrontLitCountsOnlyUnderSensorHDR)
{
    ParseColumns(8, Luma200, Luma40);
    AddFace(0, 0, 640, 600);
    Face().SensorHDRFaceMeteringType.enableFrontLitComp         = TRUE;
    Face().SensorHDRFaceMeteringType.thresFrontLitLumaRatio     = {1.5f, 3.0f};
    Face().SensorHDRFaceMeteringType.frontlitWeighttAdjSettings = {0.5f, 0.5f};
    Face().SensorHDRFaceMeteringType.FaceROIFactor              = 1.0f;
    m_result.frameLuma                                          = 50.0f;

    ASSERT_EQ(AecSuccess, Run(FALSE));
    EXPECT_FLOAT_EQ(1.0f, m_result.faceWeightAdjByFrontLit);
    ASSERT_EQ(AecSuccess, Run(TRUE));
    EXPECT_FLOAT_EQ(0.5f, m_result.faceWeightAdjByFrontLit);
    EXPECT_FLOAT_EQ(m_result.faceWeightAdjByBackLit * m_result.faceWeightByMaxSize * 0.5f, m_result.faceWeight);
}

TEST_F(FaceLumaCalculatorTest, FaceWeightNeverExceedsOne)
{
    ParseColumns(8, Luma30, Luma200);
    AddFace(0, 0, 640, 600);
    Face().faceLumaWeightLuxIndexTrigger.enableFaceLumaTrigger = FALSE;
    Face().faceWeight                                          = {0.8f, 0.8f};
    Face().enableBackLitComp                                   = TRUE;
    Face().thresBackLitLumaRatio                               = {2.0f, 1.5f};
    Face().backlitWeighttAdjSettings                           = {3.0f, 2.0f};
    m_result.frameLuma                                         = 200.0f;
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(3.0f, m_result.faceWeightAdjByBackLit);
    EXPECT_FLOAT_EQ(0.8f, m_result.faceWeightByMaxSize);
    EXPECT_FLOAT_EQ(1.0f, m_result.faceWeight);
}

TEST_F(FaceLumaCalculatorTest, BackLitSubjectPullsTheFinalLumaDown)
{
    // Bright background at 200, a dark subject at 30 in the middle columns with the face on it.
    std::unique_ptr<CSyntheticStats> image = Image();
    for (UINT32 y = 0; y < 12; ++y)
    {
        for (UINT32 x = 0; x < 16; ++x)
        {
            const BOOL subject = ((x >= 5) && (x <= 10) && (y >= 3)) ? TRUE : FALSE;
            image->SetRegion(x, y, SyntheticRegion::Uniform((TRUE == subject) ? Luma30 : Luma200));
        }
    }
    ASSERT_EQ(AecSuccess, Parse(*image));
    AddFace(600, 300, 400, 400);

    // The calculators in the order of the streaming list.
    CLuxLumaCalculator     lux(m_pProc.get());
    CFrameLumaCalculator   frame(m_pProc.get(), &m_context);
    const AECLumaCalcInput input = LumaInput();
    ASSERT_EQ(AecSuccess, lux.calculateLuma(&input, &m_result));
    ASSERT_EQ(AecSuccess, frame.calculateLuma(&input, &m_result));
    ASSERT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));

    EXPECT_NEAR(30.0f, m_result.faceLuma, 0.5f);
    EXPECT_GT(m_result.frameLuma, 4.0f * m_result.faceLuma);
    // Fully backlit: the tuned high adjustment raises the size weight.
    EXPECT_FLOAT_EQ(Face().backlitWeighttAdjSettings.start, m_result.faceWeightAdjByBackLit);
    EXPECT_GT(m_result.faceWeight, m_result.faceWeightByMaxSize);
    EXPECT_GT(m_result.faceWeight, 0.5f);
    EXPECT_LE(m_result.faceWeight, 1.0f);

    // The mix the module makes: the final luma moves from the frame luma most of the way to the face.
    const FLOAT finalLuma = std::fma(m_result.faceWeight, m_result.faceLuma - m_result.frameLuma, m_result.frameLuma);
    EXPECT_LT(finalLuma, m_result.frameLuma);
    EXPECT_LT(finalLuma - m_result.faceLuma, 0.5f * (m_result.frameLuma - m_result.faceLuma));
}
