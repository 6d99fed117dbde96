// Lux luma and lux target calculators: average luma, lux index and its filter, zone target and its clipping raise.
#include "unit/mtr/mtrtestsupport.h"

#include <cmath>
#include <cstring>

#include "aec/core/modules/mod_mtr/cluxlumacalculator.h"
#include "aec/core/modules/mod_mtr/cluxtargetcalculator.h"
#include "tuning_aecconvergence.h"
#include "tuning_aecir.h"
#include "tuning_aecmetering.h"
#include "tuning_aecsensorconfig.h"

namespace
{
// 10-bit grid values of the 8-bit lumas the tests use.
constexpr UINT32 Luma10  = 40;
constexpr UINT32 Luma50  = 200;
constexpr UINT32 Luma100 = 400;
constexpr UINT32 Luma255 = 1020;

const double IndexPerDoubling = std::log10(2.0) * MeteringIndexPerDecade;
} // namespace

class LuxLumaCalculatorTest : public MeteringTest
{
protected:
    VOID SetUp() override
    {
        MeteringTest::SetUp();
        m_pCalc = std::make_unique<CLuxLumaCalculator>(m_pProc.get());
        // Most tests look at the plain index: no table compensation, no filter.
        IndexCalc().enableLuxIndexComp   = FALSE;
        IndexCalc().luxIndexFilterFactor = 0.0f;
        std::memset(&m_result, 0, sizeof(m_result));
    }

    aecMetering::AECCoreMeteringType::mtrLumaCalcStruct::indexCalcStruct& IndexCalc()
    {
        return Modules().modMtr->mtrLumaCalc.indexCalc;
    }

    // Parses a uniform image of the given 10-bit value and runs the calculator with the matched index.
    FLOAT RunUniform(UINT32 value, FLOAT matchedIndex)
    {
        std::unique_ptr<CSyntheticStats> image = Image();
        image->Fill(SyntheticRegion::Uniform(value));
        EXPECT_EQ(AecSuccess, Parse(*image));
        m_history[PipelineDelay].expIndices[0] = matchedIndex;
        const AECLumaCalcInput input           = LumaInput();
        EXPECT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));
        return m_result.luxIndex;
    }

    std::unique_ptr<CLuxLumaCalculator> m_pCalc;
    AECLumaCalcResult                   m_result;
};

TEST_F(LuxLumaCalculatorTest, AverageLumaIsTheMeanOfTheLegacyGrid)
{
    std::unique_ptr<CSyntheticStats> image = Image();
    for (UINT32 y = 0; y < 12; ++y)
    {
        for (UINT32 x = 0; x < 16; ++x)
        {
            image->SetRegion(x, y, SyntheticRegion::Uniform((x < 8) ? Luma100 : Luma50));
        }
    }
    ASSERT_EQ(AecSuccess, Parse(*image));
    EXPECT_NEAR(75.0f, m_pCalc->CalculateAverageLuma(), 0.1f);

    const AECLumaCalcInput input = LumaInput();
    ASSERT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));
    EXPECT_NEAR(75.0f, m_result.averageLuma, 0.1f);
}

TEST_F(LuxLumaCalculatorTest, AverageLumaIsAtLeastOneTenth)
{
    std::unique_ptr<CSyntheticStats> image = Image();
    image->Fill(SyntheticRegion::Uniform(0));
    ASSERT_EQ(AecSuccess, Parse(*image));
    EXPECT_FLOAT_EQ(0.1f, m_pCalc->CalculateAverageLuma());
}

TEST_F(LuxLumaCalculatorTest, SceneAtFiftyOnIndexHundredHasLuxIndexHundred)
{
    EXPECT_NEAR(100.0f, RunUniform(Luma50, 100.0f), 0.01f);
}

TEST_F(LuxLumaCalculatorTest, TwiceTheLightLowersTheIndexByOneDoubling)
{
    const FLOAT dim = RunUniform(Luma50, 250.0f);
    m_pCalc->Initialize();
    const FLOAT bright = RunUniform(Luma100, 250.0f);
    EXPECT_NEAR(IndexPerDoubling, dim - bright, 0.01);
    EXPECT_NEAR(23.4498, dim - bright, 0.01);
}

TEST_F(LuxLumaCalculatorTest, IndexFollowsTheMatchedShortIndex)
{
    std::unique_ptr<CSyntheticStats> image = Image();
    image->Fill(SyntheticRegion::Uniform(Luma100));
    ASSERT_EQ(AecSuccess, Parse(*image));
    const FLOAT luma                       = m_pCalc->CalculateAverageLuma();
    m_history[PipelineDelay].expIndices[0] = 180.0f;
    m_history[PipelineDelay].expIndices[2] = 400.0f; // the safe index does not count
    const AECLumaCalcInput input           = LumaInput();
    const FLOAT expected =
        180.0f + static_cast<FLOAT>(std::log10(static_cast<double>(50.0f / luma)) * MeteringIndexPerDecade);
    EXPECT_FLOAT_EQ(expected, m_pCalc->CalculateLuxIndex(&input, luma));
}

TEST_F(LuxLumaCalculatorTest, CompensationRatioRaisesTheReferenceLuma)
{
    m_compensationRatio = 4.0f;
    EXPECT_NEAR(100.0 + std::log10(4.0) * MeteringIndexPerDecade, RunUniform(Luma50, 100.0f), 0.01);
}

TEST_F(LuxLumaCalculatorTest, CompensationRatioAtMostOneKeepsTheReference)
{
    m_compensationRatio = 0.25f;
    EXPECT_NEAR(100.0f, RunUniform(Luma50, 100.0f), 0.01f);
}

TEST_F(LuxLumaCalculatorTest, CompensationRatio512CountsAs256)
{
    m_compensationRatio = 256.0f;
    const FLOAT at256   = RunUniform(Luma50, 100.0f);
    m_pCalc->Initialize();
    m_compensationRatio = 512.0f;
    const FLOAT at512   = RunUniform(Luma50, 100.0f);
    EXPECT_FLOAT_EQ(at256, at512);
    EXPECT_NEAR(100.0 + std::log10(256.0) * MeteringIndexPerDecade, at512, 0.01);
}

TEST_F(LuxLumaCalculatorTest, TableSensitivityEqualToTheReferenceGivesNoOffset)
{
    IndexCalc().enableLuxIndexComp            = TRUE;
    IndexCalc().refSensitivityForExpIndexZero = 10040.0f;
    m_arbLimit.streamingExpTblSens            = 10040.0f;
    EXPECT_NEAR(100.0f, RunUniform(Luma50, 100.0f), 0.01f);
    EXPECT_TRUE(MtrLogContains("Index Compensation sens: 10040.000000 > 10040.000000, offset 0.000000"));
}

TEST_F(LuxLumaCalculatorTest, TableSensitivityShiftsTheIndexByItsRatio)
{
    IndexCalc().enableLuxIndexComp            = TRUE;
    IndexCalc().refSensitivityForExpIndexZero = 1000.0f;
    m_arbLimit.streamingExpTblSens            = 2000.0f;
    EXPECT_NEAR(100.0 + IndexPerDoubling, RunUniform(Luma50, 100.0f), 0.01);
}

TEST_F(LuxLumaCalculatorTest, CompensationOffIgnoresTheTableSensitivity)
{
    IndexCalc().refSensitivityForExpIndexZero = 1000.0f;
    m_arbLimit.streamingExpTblSens            = 2000.0f;
    EXPECT_NEAR(100.0f, RunUniform(Luma50, 100.0f), 0.01f);
    EXPECT_FALSE(MtrLogContains("Index Compensation"));
}

TEST_F(LuxLumaCalculatorTest, NonPositiveSensitivitySkipsTheCompensation)
{
    IndexCalc().enableLuxIndexComp            = TRUE;
    IndexCalc().refSensitivityForExpIndexZero = 0.0f;
    m_arbLimit.streamingExpTblSens            = 2000.0f;
    const FLOAT index                         = RunUniform(Luma50, 100.0f);
    EXPECT_FALSE(std::isnan(index));
    EXPECT_NEAR(100.0f, index, 0.01f);
    EXPECT_TRUE(MtrLogContains("lux index compensation skipped"));
}

TEST_F(LuxLumaCalculatorTest, IndexIsNeverNegative)
{
    EXPECT_FLOAT_EQ(0.0f, RunUniform(Luma255, 5.0f));
}

TEST_F(LuxLumaCalculatorTest, FirstFrameTakesTheRawIndexWhateverTheFilter)
{
    IndexCalc().luxIndexFilterFactor = 0.1f;
    EXPECT_NEAR(300.0f, RunUniform(Luma50, 300.0f), 0.01f);
}

TEST_F(LuxLumaCalculatorTest, FilterMovesByItsFactorTowardsTheNewIndex)
{
    IndexCalc().luxIndexFilterFactor = 0.25f;
    RunUniform(Luma50, 100.0f);
    EXPECT_NEAR(125.0f, RunUniform(Luma50, 200.0f), 0.01f);
    EXPECT_NEAR(143.75f, RunUniform(Luma50, 200.0f), 0.01f);
}

TEST_F(LuxLumaCalculatorTest, FilterFactorZeroTakesEachNewIndex)
{
    RunUniform(Luma50, 100.0f);
    EXPECT_NEAR(200.0f, RunUniform(Luma50, 200.0f), 0.01f);
}

TEST_F(LuxLumaCalculatorTest, FilterFactorOneKeepsTheNewestOnly)
{
    IndexCalc().luxIndexFilterFactor = 1.0f;
    RunUniform(Luma50, 100.0f);
    EXPECT_NEAR(200.0f, RunUniform(Luma50, 200.0f), 0.01f);
}

TEST_F(LuxLumaCalculatorTest, InitializeRestartsTheFilter)
{
    IndexCalc().luxIndexFilterFactor = 0.25f;
    RunUniform(Luma50, 100.0f);
    m_pCalc->Initialize();
    EXPECT_NEAR(200.0f, RunUniform(Luma50, 200.0f), 0.01f);
}

TEST_F(LuxLumaCalculatorTest, SlaveToMasterSwitchRestartsFromTheRawIndex)
{
    IndexCalc().luxIndexFilterFactor = 0.25f;
    RunUniform(Luma50, 100.0f);

    std::unique_ptr<CSyntheticStats> image = Image();
    image->Fill(SyntheticRegion::Uniform(Luma50));
    ASSERT_EQ(AecSuccess, Parse(*image));
    m_history[PipelineDelay].expIndices[0] = 200.0f;
    AECLumaCalcInput input                 = LumaInput();
    input.bSlaveToMasterSwitch             = TRUE;
    ASSERT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));
    EXPECT_NEAR(200.0f, m_result.luxIndex, 0.01f);
    EXPECT_TRUE(MtrLogContains("Slave to master. Initialize lux:200.0"));
}

TEST_F(LuxLumaCalculatorTest, EachInstanceKeepsItsOwnFilter)
{
    IndexCalc().luxIndexFilterFactor = 0.25f;
    CLuxLumaCalculator other(m_pProc.get());
    RunUniform(Luma50, 100.0f);

    std::unique_ptr<CSyntheticStats> image = Image();
    image->Fill(SyntheticRegion::Uniform(Luma50));
    ASSERT_EQ(AecSuccess, Parse(*image));
    m_history[PipelineDelay].expIndices[0] = 200.0f;
    const AECLumaCalcInput input           = LumaInput();
    AECLumaCalcResult      otherResult     = {};
    ASSERT_EQ(AecSuccess, other.calculateLuma(&input, &otherResult));
    EXPECT_NEAR(200.0f, otherResult.luxIndex, 0.01f); // its first frame
    ASSERT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));
    EXPECT_NEAR(125.0f, m_result.luxIndex, 0.01f); // filtered from its own 100
}

TEST_F(LuxLumaCalculatorTest, SplitHistogramLumaLeavesTheIndexToTheHDRCalculator)
{
    Modules().modSensorHDRConfig->LumaCalculationConfig = aecSensorConfig::LumaCalculationTypeHistPrio;
    std::unique_ptr<CSyntheticStats> image              = Image();
    image->Fill(SyntheticRegion::Uniform(Luma100));
    ASSERT_EQ(AecSuccess, Parse(*image));
    AECLumaCalcInput input = LumaInput();
    input.enableHDR3       = TRUE;
    m_result.luxIndex      = 321.0f;
    ASSERT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));
    EXPECT_FLOAT_EQ(321.0f, m_result.luxIndex);
    EXPECT_NEAR(100.0f, m_result.averageLuma, 0.1f);

    // Grid-priority HDR still gives its own index.
    Modules().modSensorHDRConfig->LumaCalculationConfig = aecSensorConfig::LumaCalculationTypeGridPrio;
    ASSERT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));
    EXPECT_NE(321.0f, m_result.luxIndex);
}

TEST_F(LuxLumaCalculatorTest, MissingInputFails)
{
    EXPECT_EQ(AecError, m_pCalc->calculateLuma(nullptr, &m_result));
    AECLumaCalcInput input = LumaInput();
    EXPECT_EQ(AecError, m_pCalc->calculateLuma(&input, nullptr));
    input.matchingExpIndices = nullptr;
    EXPECT_FLOAT_EQ(0.0f, m_pCalc->CalculateLuxIndex(&input, 50.0f)); // keeps the last (initial) index
}

class LuxTargetCalculatorTest : public MeteringTest
{
protected:
    VOID SetUp() override
    {
        MeteringTest::SetUp();
        m_pCalc = std::make_unique<CLuxTargetCalculator>(m_pProc.get());
        std::memset(&m_luma, 0, sizeof(m_luma));
        std::memset(&m_result, 0, sizeof(m_result));
    }

    aecMetering::AECCoreMeteringType::mtrLumaTargetStruct::advancedTargetStruct::advLuxTgtStruct& Adv()
    {
        return Modules().modMtr->mtrLumaTarget.advancedTarget.advLuxTgt;
    }

    // 12.5 % of the regions clip at full scale, the rest sit at luma 10: a linear gain to the target of 50 is
    // held back by the clipped share.
    VOID ParseClippedScene()
    {
        std::unique_ptr<CSyntheticStats> image = Image();
        for (UINT32 y = 0; y < 12; ++y)
        {
            for (UINT32 x = 0; x < 16; ++x)
            {
                image->SetRegion(x, y, SyntheticRegion::Uniform((x < 2) ? Luma255 : Luma10));
            }
        }
        ASSERT_EQ(AecSuccess, Parse(*image));
        m_luma.luxIndex    = 240.0f; // target 50
        m_luma.averageLuma = (2.0f * 255.0f + 14.0f * 10.0f) / 16.0f;
        m_luma.finalLuma   = m_luma.averageLuma;
    }

    AecResult Run()
    {
        const AECTargetCalcInput input = TargetInput(&m_luma);
        return m_pCalc->calculateTarget(&input, &m_result);
    }

    std::unique_ptr<CLuxTargetCalculator> m_pCalc;
    AECLumaCalcResult                     m_luma;
    AECTargetCalcResult                   m_result;
};

TEST_F(LuxTargetCalculatorTest, TargetComesFromTheLuxZones)
{
    Adv().nonLinLuxTgt.enableNonLinearEstimate = FALSE;
    m_luma.luxIndex                            = 100.0f;
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(52.0f, m_result.luxBasedSimpleTarget);
    EXPECT_FLOAT_EQ(52.0f, m_result.luxBasedSafeTarget);

    m_luma.luxIndex = 175.0f; // halfway between the zones of 52 and 50
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(51.0f, m_result.luxBasedSimpleTarget);

    m_luma.luxIndex = 460.0f;
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(36.0f, m_result.luxBasedSimpleTarget);
}

TEST_F(LuxTargetCalculatorTest, IRModeTakesTheIRTarget)
{
    Modules().modIr->IrLinear.luxLumaTargetForIR = 33.0f;
    m_luma.luxIndex                              = 100.0f;
    AECTargetCalcInput input                     = TargetInput(&m_luma);
    input.irModeActivated                        = 1;
    ASSERT_EQ(AecSuccess, m_pCalc->calculateTarget(&input, &m_result));
    EXPECT_FLOAT_EQ(33.0f, m_result.luxBasedSimpleTarget);
    EXPECT_FLOAT_EQ(33.0f, m_result.luxBasedSafeTarget);
}

TEST_F(LuxTargetCalculatorTest, MissingZoneTableFailsWithoutATarget)
{
    Modules().modMtr->mtrLumaTarget.luxLumaTarget.luxLumaTargetZoneCount = 0;
    m_luma.luxIndex                                                      = 100.0f;
    EXPECT_EQ(AecError, Run());
    EXPECT_FLOAT_EQ(0.0f, m_result.luxBasedSafeTarget);
    EXPECT_FLOAT_EQ(0.0f, m_result.luxBasedSimpleTarget);
}

TEST_F(LuxTargetCalculatorTest, ClippedSceneRaisesTheSafeTarget)
{
    ParseClippedScene();
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(50.0f, m_result.luxBasedSimpleTarget);
    EXPECT_GT(m_result.luxBasedSafeTarget, 50.0f);
    EXPECT_LE(m_result.luxBasedSafeTarget, 50.0f * 1.4f); // the largest tuned output gain
    EXPECT_TRUE(MtrLogContains("MTR simple"));
}

TEST_F(LuxTargetCalculatorTest, NonLinearEstimateOffKeepsSafeEqualToSimple)
{
    ParseClippedScene();
    Adv().nonLinLuxTgt.enableNonLinearEstimate = FALSE;
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(m_result.luxBasedSimpleTarget, m_result.luxBasedSafeTarget);
}

TEST_F(LuxTargetCalculatorTest, ExposureCompensationKeepsSafeEqualToSimple)
{
    ParseClippedScene();
    m_ev.EVUIVal = 3;
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(m_result.luxBasedSimpleTarget, m_result.luxBasedSafeTarget);
}

TEST_F(LuxTargetCalculatorTest, BrightSceneLeftToConvergence)
{
    ParseClippedScene();
    aecConvergence::FastConvType& rFast = Modules().modConv->fastConv;
    rFast.enableBrightDarkSpeedAdj      = TRUE;
    rFast.thresBrightExpIndexDelta      = 0.1f;
    rFast.thresDarkExpIndexDelta        = 0.5f;
    AECTargetCalcInput input            = TargetInput(&m_luma);
    input.ratioBright                   = 0.125f;
    ASSERT_EQ(AecSuccess, m_pCalc->calculateTarget(&input, &m_result));
    EXPECT_FLOAT_EQ(m_result.luxBasedSimpleTarget, m_result.luxBasedSafeTarget);

    // Thresholds above 1 are index deltas, not shares: the share test does not apply.
    rFast.thresDarkExpIndexDelta = 5.0f;
    ASSERT_EQ(AecSuccess, m_pCalc->calculateTarget(&input, &m_result));
    EXPECT_GT(m_result.luxBasedSafeTarget, m_result.luxBasedSimpleTarget);
}

TEST_F(LuxTargetCalculatorTest, DarkSceneLeftToConvergence)
{
    ParseClippedScene();
    AECTargetCalcInput input = TargetInput(&m_luma);
    input.ratioDark          = 0.9f; // default dark threshold 0.5
    ASSERT_EQ(AecSuccess, m_pCalc->calculateTarget(&input, &m_result));
    EXPECT_FLOAT_EQ(m_result.luxBasedSimpleTarget, m_result.luxBasedSafeTarget);
}

TEST_F(LuxTargetCalculatorTest, YOnlySettingSkipsAColourHistogram)
{
    ParseClippedScene();
    ASSERT_EQ(BHistProcUseCase::RGB, m_pProc->GetStatsProcessingResult()->GetBHistProcInfo().useCase);
    Adv().enableForYOnly = TRUE;
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(m_result.luxBasedSimpleTarget, m_result.luxBasedSafeTarget);
}

TEST_F(LuxTargetCalculatorTest, FrameAlreadyAtTheTargetIsNotRaised)
{
    ParseClippedScene();
    m_luma.finalLuma = 60.0f; // linear gain below 1
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(m_result.luxBasedSimpleTarget, m_result.luxBasedSafeTarget);
}

TEST_F(LuxTargetCalculatorTest, UnderexposureAllowanceLowersTheGainCompared)
{
    ParseClippedScene();
    AECTargetCalcInput input = TargetInput(&m_luma);
    input.maxUnderexposure   = 4.0f; // 50 / 4 is below the frame luma: no raise
    ASSERT_EQ(AecSuccess, m_pCalc->calculateTarget(&input, &m_result));
    EXPECT_FLOAT_EQ(m_result.luxBasedSimpleTarget, m_result.luxBasedSafeTarget);
}

TEST_F(LuxTargetCalculatorTest, RaisedTargetNeverExceeds220)
{
    ParseClippedScene();
    aecMetering::AECCoreMeteringType::mtrLumaTargetStruct::advancedTargetStruct::advLuxTgtStruct::
        suppressNonLinearLumaStruct& rSuppress = Adv().suppressNonLinearLuma;
    for (UINT32 i = 0; i < rSuppress.suppressNonLinearZoneCount; ++i)
    {
        rSuppress.suppressNonLinearZone[i].zoneData.outputGain = 10.0f;
    }
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(220.0f, m_result.luxBasedSafeTarget);
    EXPECT_FLOAT_EQ(50.0f, m_result.luxBasedSimpleTarget);
}

TEST_F(LuxTargetCalculatorTest, OutputGainBelowOneNeverLowersTheTarget)
{
    ParseClippedScene();
    aecMetering::AECCoreMeteringType::mtrLumaTargetStruct::advancedTargetStruct::advLuxTgtStruct::
        suppressNonLinearLumaStruct& rSuppress = Adv().suppressNonLinearLuma;
    for (UINT32 i = 0; i < rSuppress.suppressNonLinearZoneCount; ++i)
    {
        rSuppress.suppressNonLinearZone[i].zoneData.outputGain = 0.5f;
    }
    ASSERT_EQ(AecSuccess, Run());
    EXPECT_FLOAT_EQ(50.0f, m_result.luxBasedSafeTarget);
}
