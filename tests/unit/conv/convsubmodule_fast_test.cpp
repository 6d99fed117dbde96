// The proportional converger: configuration by identity, speeds, heuristics, the step rules and its settle test.
#include <gtest/gtest.h>

#include "aec/core/modules/mod_conv/convfast.h"
#include "unit/conv/convsubmoduletestsupport.h"

namespace
{
class ConvFastTest : public ConvSubmoduleTest
{
protected:
    std::unique_ptr<ConvFast> Make(ConvAlgoIdentity identity)
    {
        return std::unique_ptr<ConvFast>(new ConvFast(identity, &Tuning()));
    }

    // Heuristics off unless a test wants them.
    void SetUp() override
    {
        ConvSubmoduleTest::SetUp();
        Conv().fastConv.enableBrightDarkSpeedAdj = FALSE;
    }
};
} // namespace

TEST_F(ConvFastTest, InitialiseConfiguresTheStreamingInstance)
{
    Conv().unitStepSize = 0.5F;
    std::unique_ptr<ConvFast> p = Make(ConvIDFast);
    p->SetSysLatency(3);
    p->SetSpeedAdjust(0.3F);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    const ConvAlgoConfigFast& c = p->GetConfig();
    EXPECT_FLOAT_EQ(1.0F, c.tolerance); // 2.0 units of 0.5
    EXPECT_EQ(0, c.doBrightDarkHeuristics);
    EXPECT_EQ(aecglobalelements::SmoothNoSkip, c.skipMethod);
    EXPECT_EQ(0, c.frameSettledCountThres);
    EXPECT_FLOAT_EQ(Conv().fastConv.ADRCConvSpeed, c.ADRCConvSpeed);
    EXPECT_FLOAT_EQ(3.0F, c.delayAdj);
    EXPECT_FLOAT_EQ(1.0F, p->GetSpeedAdjust());
    EXPECT_FLOAT_EQ(Conv().fastConv.aggressiveness, c.aggressiveness);
}

TEST_F(ConvFastTest, DelayFollowsTheSkipMethod)
{
    std::unique_ptr<ConvFast> p = Make(ConvIDFast);
    p->SetSysLatency(3);
    Conv().fastConv.frameSkipMethod = aecglobalelements::SkipOne;
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    EXPECT_FLOAT_EQ(2.0F, p->GetConfig().delayAdj);
    p->SetSysLatency(1);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    EXPECT_FLOAT_EQ(1.0F, p->GetConfig().delayAdj);
    Conv().fastConv.frameSkipMethod = aecglobalelements::SkipSystemLatency;
    p->SetSysLatency(4);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    EXPECT_FLOAT_EQ(1.0F, p->GetConfig().delayAdj);
}

TEST_F(ConvFastTest, InitialiseConfiguresThePreflashInstance)
{
    Flash().flashConv.preflashConv.frameSkipMethod        = aecglobalelements::SkipOne;
    Flash().flashConv.preflashConv.settledFrameCountThres = 2;
    Flash().flashConv.preflashConv.aggressiveness         = 0.7F;
    Tuning().enableFDFlash                                = TRUE;
    Tuning().FDFlashFrameCount                            = 3;
    Conv().fastConv.enableBrightDarkSpeedAdj              = TRUE;
    std::unique_ptr<ConvFast> p = Make(ConvIDPreflash);
    const ConvAlgoConfigFast& c = p->GetConfig();
    EXPECT_FLOAT_EQ(1.0F, c.tolerance);
    EXPECT_EQ(0, c.doBrightDarkHeuristics);
    EXPECT_EQ(aecglobalelements::SkipOne, c.skipMethod);
    EXPECT_EQ(2, c.frameSettledCountThres);
    EXPECT_FLOAT_EQ(Conv().fastConv.ADRCConvSpeed, c.ADRCConvSpeed);
    EXPECT_FLOAT_EQ(0.7F, c.aggressiveness);
}

TEST_F(ConvFastTest, InitialiseConfiguresTheTorchInstance)
{
    Conv().torchConv.conv.tolMultUnitStepSize      = 3.0F;
    Conv().torchConv.conv.enableBrightDarkSpeedAdj = TRUE;
    Conv().torchConv.conv.frameSkipMethod          = aecglobalelements::SkipSystemLatency;
    Conv().torchConv.conv.ADRCConvSpeed            = 0.6F;
    Conv().torchConv.conv.aggressiveness           = 0.9F;
    std::unique_ptr<ConvFast> p = Make(ConvIDTorch);
    const ConvAlgoConfigFast& c = p->GetConfig();
    EXPECT_FLOAT_EQ(3.0F, c.tolerance);
    EXPECT_EQ(1, c.doBrightDarkHeuristics);
    EXPECT_EQ(aecglobalelements::SkipSystemLatency, c.skipMethod);
    EXPECT_FLOAT_EQ(0.6F, c.ADRCConvSpeed);
    EXPECT_FLOAT_EQ(0.9F, c.aggressiveness);
}

TEST_F(ConvFastTest, UnexpectedIdentityIsTreatedAsStreamingAndReported)
{
    std::unique_ptr<ConvFast> p = Make(ConvIDSlow);
    ConvLogs().clear();
    EXPECT_EQ(AecError, p->SetConvEvent(ConvEventInitialize));
    EXPECT_TRUE(ConvLogContains("unexpected ID for fast conv: 0"));
    EXPECT_FLOAT_EQ(Conv().fastConv.tolMultUnitStepSize, p->GetConfig().tolerance);
}

TEST_F(ConvFastTest, SpeedOverrideAndAdjustSetTheAggressiveness)
{
    std::unique_ptr<ConvFast> p = Make(ConvIDFast);
    p->SetBaseSpeedOverride(0.8F);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventSpeedBaseChanged));
    EXPECT_FLOAT_EQ(0.8F, p->GetConfig().aggressiveness);
    p->SetSpeedAdjust(0.5F);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventSpeedAdjChanged));
    EXPECT_FLOAT_EQ(0.4F, p->GetConfig().aggressiveness);
    EXPECT_TRUE(ConvLogContains("algo 1 final aggressiveness: 0.400 speed adj: 0.500 speed override: 0.800"));
    // An override of zero or below falls back to the tuned aggressiveness.
    p->SetBaseSpeedOverride(0.0F);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventSetEV));
    EXPECT_FLOAT_EQ(0.5F * Conv().fastConv.aggressiveness, p->GetConfig().aggressiveness);
    // Initialisation resets the adjustment.
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    EXPECT_FLOAT_EQ(Conv().fastConv.aggressiveness, p->GetConfig().aggressiveness);
}

TEST_F(ConvFastTest, DeltaJustInsideToleranceKeepsExposureYetSettlesWithTwiceTheTolerance)
{
    std::unique_ptr<ConvFast> p     = Make(ConvIDFast);
    ConvergenceSubmoduleInput input = Input(101.9F, 100.0F, 96.5F);
    EXPECT_FLOAT_EQ(100.0F, p->ConvergeSafeExposure(&input));

    ConvergenceSubmoduleOutput out = {};
    out.expIndices[AECAlgoExposureSafe] = 100.0F;
    out.expIndices[AECAlgoExposureShort] = 100.0F;
    out.expIndices[AECAlgoExposureLong]  = 100.0F;
    p->GetIsSettled(&input, &out);
    // 3.5 from the matched exposure: outside the tolerance of 2, inside twice it.
    EXPECT_EQ(TRUE, out.isSettled[AECAlgoExposureSafe]);
    input.expIndexMatched[AECAlgoExposureSafe] = 95.9F;
    p->GetIsSettled(&input, &out);
    EXPECT_EQ(FALSE, out.isSettled[AECAlgoExposureSafe]);
}

TEST_F(ConvFastTest, InFlightPastTheTargetHoldsUnlessSkippingForTheLatency)
{
    std::unique_ptr<ConvFast> p     = Make(ConvIDFast);
    ConvergenceSubmoduleInput input = Input(100.0F, 110.0F, 90.0F);
    EXPECT_FLOAT_EQ(110.0F, p->ConvergeSafeExposure(&input));

    Conv().fastConv.frameSkipMethod = aecglobalelements::SkipOne;
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    EXPECT_FLOAT_EQ(110.0F, p->ConvergeSafeExposure(&input));

    // With the latency skip the matched delta alone drives the step.
    Conv().fastConv.frameSkipMethod = aecglobalelements::SkipSystemLatency;
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    EXPECT_FLOAT_EQ(115.0F, p->ConvergeSafeExposure(&input));
}

TEST_F(ConvFastTest, StepSmallerThanOneUnitMovesOneUnit)
{
    Conv().fastConv.aggressiveness = 0.1F;
    std::unique_ptr<ConvFast> p     = Make(ConvIDFast);
    ConvergenceSubmoduleInput input = Input(102.5F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(101.0F, p->ConvergeSafeExposure(&input));
    input = Input(97.5F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(99.0F, p->ConvergeSafeExposure(&input));
}

TEST_F(ConvFastTest, SmallerOfTheTwoCandidatesIsTaken)
{
    std::unique_ptr<ConvFast> p = Make(ConvIDFast);
    p->SetSysLatency(2);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    // dP 20 * 0.5 = 10 against dM 12 / 2 = 6.
    ConvergenceSubmoduleInput input = Input(120.0F, 100.0F, 108.0F);
    EXPECT_FLOAT_EQ(106.0F, p->ConvergeSafeExposure(&input));
    // dP 20 * 0.5 = 10 against dM 40 / 2 = 20.
    input = Input(120.0F, 100.0F, 80.0F);
    EXPECT_FLOAT_EQ(110.0F, p->ConvergeSafeExposure(&input));
}

TEST_F(ConvFastTest, ZeroStepAtTheTargetOfTheStatisticsCountsAsDownward)
{
    // dM is 0: the candidate dM / delay wins at 0 and the least move is one unit down.
    std::unique_ptr<ConvFast> p = Make(ConvIDFast);
    p->SetSysLatency(2);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    ConvergenceSubmoduleInput input = Input(110.0F, 100.0F, 110.0F);
    EXPECT_FLOAT_EQ(99.0F, p->ConvergeSafeExposure(&input));
}

TEST_F(ConvFastTest, RatioHeuristicScalesTheMatchedDelta)
{
    Conv().fastConv.enableBrightDarkSpeedAdj = TRUE;
    Conv().fastConv.thresDarkExpIndexDelta   = 0.5F;
    Conv().fastConv.thresBrightExpIndexDelta = 0.3F;
    Conv().fastConv.darkRatioAdjStrength     = 0.4F;
    Conv().fastConv.brightRatioAdjStrength   = 2.0F; // out of range: 0.25
    std::unique_ptr<ConvFast> p = Make(ConvIDFast);
    p->SetSysLatency(1);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    ConvergenceSubmoduleInput input = Input(120.0F, 100.0F, 100.0F);
    m_convIn.ratioDark   = 0.75F; // 1 + 0.4 * 0.25 / 0.5 = 1.2
    m_convIn.ratioBright = 0.3F;  // not above its threshold
    ConvergenceSubmoduleOutput out = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    // dM 24, dP 24: min(24 * 0.5, 24 / 1) = 12.
    EXPECT_FLOAT_EQ(124.0F, out.darkBrightSafeTarget);
    EXPECT_FLOAT_EQ(112.0F, out.expIndices[AECAlgoExposureSafe]);
    EXPECT_TRUE(ConvLogContains("heuristic ( dark bright ): strength ( 0.400 0.250 )"));
    EXPECT_TRUE(ConvLogContains("heuristic adj ( 1.200 1.000 )"));
}

TEST_F(ConvFastTest, RatioHeuristicWithBrightThresholdOneTakesTheStrengthUnscaled)
{
    Conv().fastConv.enableBrightDarkSpeedAdj = TRUE;
    Conv().fastConv.thresDarkExpIndexDelta   = 1.0F;
    Conv().fastConv.thresBrightExpIndexDelta = 1.0F;
    Conv().fastConv.brightRatioAdjStrength   = 0.5F;
    std::unique_ptr<ConvFast> p = Make(ConvIDFast);
    ConvergenceSubmoduleInput input = Input(80.0F, 100.0F, 100.0F);
    m_convIn.ratioBright = 1.5F;
    ConvergenceSubmoduleOutput out = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(70.0F, out.darkBrightSafeTarget); // dM -20 * 1.5
    EXPECT_FLOAT_EQ(85.0F, out.expIndices[AECAlgoExposureSafe]);
}

TEST_F(ConvFastTest, DeltaHeuristicScalesTheStepBeyondIndexThresholds)
{
    Conv().fastConv.enableBrightDarkSpeedAdj = TRUE;
    Conv().fastConv.thresDarkExpIndexDelta   = 5.0F;
    Conv().fastConv.thresBrightExpIndexDelta = 8.0F;
    Conv().fastConv.darkRatioAdjStrength     = 0.5F;
    Conv().fastConv.brightRatioAdjStrength   = 1.5F;
    std::unique_ptr<ConvFast> p = Make(ConvIDFast);
    ConvergenceSubmoduleInput input = Input(120.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(105.0F, p->ConvergeSafeExposure(&input)); // 10 * 0.5
    input = Input(80.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(85.0F, p->ConvergeSafeExposure(&input)); // -10 * 1.5
    input = Input(90.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(95.0F, p->ConvergeSafeExposure(&input)); // -5: within the bright threshold
}

TEST_F(ConvFastTest, PreflashSettlesAfterItsFrameCountPlusTheFaceWait)
{
    Flash().flashConv.preflashConv.settledFrameCountThres = 1;
    Tuning().enableFDFlash                                = TRUE;
    Tuning().FDFlashFrameCount                            = 2;
    std::unique_ptr<ConvFast> p     = Make(ConvIDPreflash);
    ConvergenceSubmoduleInput input = Input(100.0F, 100.0F, 100.0F);
    input.bWaitForFDInPreflash      = TRUE;
    ConvergenceSubmoduleOutput out  = {};
    std::vector<BOOL>          flags;
    for (UINT32 n = 0; n < 5; n++)
    {
        ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
        flags.push_back(out.isSettled[AECAlgoExposureSafe]);
        EXPECT_EQ(TRUE, out.isSettled[AECAlgoExposureShort]); // only the safe flag is delayed
    }
    EXPECT_EQ((std::vector<BOOL>{FALSE, FALSE, FALSE, TRUE, TRUE}), flags);

    // Without the face wait one frame; a frame out of tolerance restarts the count.
    input.bWaitForFDInPreflash = FALSE;
    input.expIndexMatched[AECAlgoExposureSafe] = 90.0F;
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_EQ(FALSE, out.isSettled[AECAlgoExposureSafe]);
    input.expIndexMatched[AECAlgoExposureSafe] = 100.0F;
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_EQ(FALSE, out.isSettled[AECAlgoExposureSafe]);
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_EQ(TRUE, out.isSettled[AECAlgoExposureSafe]);
}

TEST_F(ConvFastTest, ExhaustedTableCountsAsSettled)
{
    std::unique_ptr<ConvFast>  p     = Make(ConvIDFast);
    ConvergenceSubmoduleInput  input = Input(600.0F, 498.0F, 450.0F);
    ConvergenceSubmoduleOutput out   = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(500.0F, out.expIndices[AECAlgoExposureSafe]);
    EXPECT_EQ(TRUE, out.isSettled[AECAlgoExposureSafe]);
    input = Input(-100.0F, 3.0F, 40.0F);
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_EQ(TRUE, out.isSettled[AECAlgoExposureSafe]);
}

TEST_F(ConvFastTest, MissingTuningIsReportedAndKeepsExposure)
{
    ConvergenceTuningDataType empty = {};
    ConvFast                  p(ConvIDFast, &empty);
    EXPECT_EQ(AecError, p.SetConvEvent(ConvEventSpeedAdjChanged));
    ConvergenceSubmoduleInput input = Input(150.0F, 100.0F, 100.0F);
    input.pTuning                   = &empty;
    EXPECT_FLOAT_EQ(100.0F, p.ConvergeSafeExposure(&input));
    EXPECT_TRUE(ConvLogContains("fast conv 1: no tuning, exposure kept"));
}
