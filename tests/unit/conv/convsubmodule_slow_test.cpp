// The video converger: speed-placed steps, dead zone, slow-down, frame-rate scaling and the hold time.
#include <gtest/gtest.h>

#include "aec/core/modules/mod_conv/convslow.h"
#include "unit/conv/convsubmoduletestsupport.h"

namespace
{
class ConvSlowTest : public ConvSubmoduleTest
{
protected:
    // Hold time off unless a test wants it.
    void SetUp() override
    {
        ConvSubmoduleTest::SetUp();
        Conv().slowConv.holdTimeTuning.enableHoldTime = FALSE;
    }

    std::unique_ptr<ConvSlow> Make() { return std::unique_ptr<ConvSlow>(new ConvSlow(&Tuning())); }

    // Frames in a row at the target until the hold time is armed.
    void ArmHoldTime(ConvSlow* p)
    {
        ConvergenceSubmoduleInput input = Input(100.0F, 100.0F, 100.0F);
        for (UINT32 n = 0; n < 40; n++)
        {
            EXPECT_FLOAT_EQ(100.0F, p->ConvergeSafeExposure(&input));
        }
        ASSERT_EQ(TRUE, p->GetContext().htAllowed);
    }

    // Frames the exposure stays at 100 after the target jumped to 110 (matched staying at 100).
    UINT32 FramesHeld(ConvSlow* p, BOOL touch = FALSE)
    {
        ConvergenceSubmoduleInput input = Input(110.0F, 100.0F, 100.0F);
        input.bIsTouchActive            = touch;
        UINT32 held                     = 0;
        while ((held < 100) && (100.0F == p->ConvergeSafeExposure(&input)))
        {
            held++;
        }
        return held;
    }
};
} // namespace

TEST_F(ConvSlowTest, StepsAndThresholdsArePlacedByTheSpeed)
{
    std::unique_ptr<ConvSlow> p = Make();
    const SlowConvStepSize&   s = p->GetContext().stepSize;
    EXPECT_FLOAT_EQ(1.25F, s.stepRegular);
    EXPECT_FLOAT_EQ(2.5F, s.stepBright);
    EXPECT_FLOAT_EQ(1.875F, s.stepDark);
    EXPECT_FLOAT_EQ(14.0F, s.thresSlowDownBright);
    EXPECT_FLOAT_EQ(14.0F, s.thresSlowDownDark);
    EXPECT_FLOAT_EQ(2.0F, p->GetTolerance());

    p->SetBaseSpeedOverride(1.0F);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventSpeedBaseChanged));
    EXPECT_FLOAT_EQ(2.0F, s.stepRegular);
    EXPECT_FLOAT_EQ(8.0F, s.thresSlowDownBright);
    p->SetSpeedAdjust(0.5F);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventSpeedAdjChanged));
    EXPECT_FLOAT_EQ(1.25F, s.stepRegular);
    EXPECT_FLOAT_EQ(14.0F, s.thresSlowDownDark);
}

TEST_F(ConvSlowTest, AnySkipMethodBehavesAsSkipOne)
{
    std::unique_ptr<ConvSlow> p = Make();
    EXPECT_EQ(aecglobalelements::SmoothNoSkip, p->GetSkipType());
    Conv().slowConv.frameSkipMethod = aecglobalelements::SkipSystemLatency;
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventSetEV));
    EXPECT_EQ(aecglobalelements::SkipOne, p->GetSkipType());
}

TEST_F(ConvSlowTest, DeltaBelowToleranceHoldsEvenFarFromTheMatchedExposure)
{
    std::unique_ptr<ConvSlow> p     = Make();
    ConvergenceSubmoduleInput input = Input(101.5F, 100.0F, 60.0F);
    EXPECT_FLOAT_EQ(100.0F, p->ConvergeSafeExposure(&input));
}

TEST_F(ConvSlowTest, InFlightPastTheTargetHolds)
{
    std::unique_ptr<ConvSlow> p     = Make();
    ConvergenceSubmoduleInput input = Input(110.0F, 100.0F, 120.0F);
    EXPECT_FLOAT_EQ(100.0F, p->ConvergeSafeExposure(&input));
}

TEST_F(ConvSlowTest, RegularStepScalesWithTheFrameRateWithinItsLimit)
{
    std::unique_ptr<ConvSlow> p     = Make();
    ConvergenceSubmoduleInput input = Input(150.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(101.0F, p->ConvergeSafeExposure(&input)); // 1.25 rounds to 1
    input.currentFPS = 15.0F;
    EXPECT_FLOAT_EQ(103.0F, p->ConvergeSafeExposure(&input)); // 2.5 rounds away to 3
    input.currentFPS = 5.0F;
    EXPECT_FLOAT_EQ(105.0F, p->ConvergeSafeExposure(&input)); // factor 6 limited to 4
    input.currentFPS = 0.0F;
    EXPECT_FLOAT_EQ(101.0F, p->ConvergeSafeExposure(&input)); // no frame rate: factor 1
    Conv().slowConv.frameSkipMethod = aecglobalelements::SkipOne;
    input.currentFPS                = 30.0F;
    EXPECT_FLOAT_EQ(103.0F, p->ConvergeSafeExposure(&input)); // skip factor 2
}

TEST_F(ConvSlowTest, DarkAndBrightRegionsMixInTheirSteps)
{
    std::unique_ptr<ConvSlow> p     = Make();
    ConvergenceSubmoduleInput input = Input(150.0F, 100.0F, 100.0F);
    m_convIn.ratioDark              = 0.8F; // 1.25 + 0.5 * 0.625
    EXPECT_FLOAT_EQ(102.0F, p->ConvergeSafeExposure(&input));
    input                = Input(50.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(99.0F, p->ConvergeSafeExposure(&input));
    m_convIn.ratioBright = 1.0F; // 1.25 + 0.8 * 1.25
    EXPECT_FLOAT_EQ(98.0F, p->ConvergeSafeExposure(&input));
}

TEST_F(ConvSlowTest, StepSlowsDownNearTheTargetAndForcesAUnitWhenCaughtUp)
{
    std::unique_ptr<ConvSlow> p     = Make();
    ConvergenceSubmoduleInput input = Input(107.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(101.0F, p->ConvergeSafeExposure(&input)); // 1.25 * 7 / 14 rounds to 1
    input = Input(103.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(101.0F, p->ConvergeSafeExposure(&input)); // sub-unit, pipeline caught up
    input = Input(103.0F, 100.0F, 97.5F);
    EXPECT_FLOAT_EQ(100.0F, p->ConvergeSafeExposure(&input)); // sub-unit, a step still in flight
    input = Input(103.5F, 100.0F, 97.5F);
    EXPECT_FLOAT_EQ(101.0F, p->ConvergeSafeExposure(&input)); // beyond the forced-adjust delta
    input = Input(96.5F, 100.0F, 102.5F);
    EXPECT_FLOAT_EQ(99.0F, p->ConvergeSafeExposure(&input));
}

TEST_F(ConvSlowTest, RoundedStepNeverPassesTheTarget)
{
    Conv().slowConv.stepRegular                         = {3.0F, 3.0F};
    Conv().slowConv.thresSlowDownAbsExpIndexDeltaDark   = {0.0F, 0.0F};
    std::unique_ptr<ConvSlow> p     = Make();
    ConvergenceSubmoduleInput input = Input(102.6F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(102.0F, p->ConvergeSafeExposure(&input)); // 2.6 rounds to 3, one unit back
}

TEST_F(ConvSlowTest, HoldTimeDelaysTheFirstMoveAfterAStableScene)
{
    Conv().slowConv.holdTimeTuning.enableHoldTime = TRUE;
    std::unique_ptr<ConvSlow> p = Make();
    ArmHoldTime(p.get());
    // 1 s scaled by the delta of 10 on [5, 20] -> [1, 0.1]: 0.7 s, 21 frames at 30 fps, of which the last frame
    // in the zone already counted one.
    const UINT32 held = FramesHeld(p.get());
    EXPECT_GE(held, 19U);
    EXPECT_LE(held, 20U);
    EXPECT_FLOAT_EQ(10.0F, p->GetContext().absDeltaEIMax);
}

TEST_F(ConvSlowTest, HoldTimeNeedsTheEnterDelayAndIsOffWhileTouching)
{
    Conv().slowConv.holdTimeTuning.enableHoldTime = TRUE;
    std::unique_ptr<ConvSlow> p     = Make();
    ConvergenceSubmoduleInput input = Input(100.0F, 100.0F, 100.0F);
    for (UINT32 n = 0; n < 10; n++)
    {
        p->ConvergeSafeExposure(&input);
    }
    EXPECT_EQ(FALSE, p->GetContext().htAllowed);
    EXPECT_EQ(0U, FramesHeld(p.get()));

    std::unique_ptr<ConvSlow> pTouched = Make();
    ArmHoldTime(pTouched.get());
    EXPECT_EQ(0U, FramesHeld(pTouched.get(), TRUE));
}

TEST_F(ConvSlowTest, GyroFactorScalesTheHoldTime)
{
    Conv().slowConv.holdTimeTuning.enableHoldTime       = TRUE;
    Conv().slowConv.holdTimeTuning.enableGyroBasedHT    = TRUE;
    Conv().slowConv.holdTimeTuning.gyroBasedHTAdjFactor = {0.5F, 0.2F};
    std::unique_ptr<ConvSlow> p = Make();
    ArmHoldTime(p.get());
    // gyroMax stays 0: the factor of the range start halves the 0.7 s.
    const UINT32 held = FramesHeld(p.get());
    EXPECT_GE(held, 9U);
    EXPECT_LE(held, 10U);
    EXPECT_FLOAT_EQ(0.0F, p->GetContext().gyroMax);
}

TEST_F(ConvSlowTest, HoldTimeIsSkippedWithoutAFrameRate)
{
    Conv().slowConv.holdTimeTuning.enableHoldTime = TRUE;
    std::unique_ptr<ConvSlow> p = Make();
    ArmHoldTime(p.get());
    ConvergenceSubmoduleInput input = Input(110.0F, 100.0F, 100.0F);
    input.currentFPS                = 0.0F;
    EXPECT_FLOAT_EQ(101.0F, p->ConvergeSafeExposure(&input));
    EXPECT_TRUE(ConvLogContains("slow conv: no frame rate"));
}

TEST_F(ConvSlowTest, EventsClearTheHoldState)
{
    Conv().slowConv.holdTimeTuning.enableHoldTime = TRUE;
    std::unique_ptr<ConvSlow> p = Make();
    ArmHoldTime(p.get());
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventSetEV));
    EXPECT_EQ(FALSE, p->GetContext().htAllowed);
    EXPECT_FLOAT_EQ(0.0F, p->GetContext().settledTime);
    EXPECT_EQ(0U, FramesHeld(p.get()));

    ArmHoldTime(p.get());
    const StatsGyroInfo       gyro  = {};
    ConvergenceSubmoduleInput input = Input(100.0F, 100.0F, 100.0F);
    input.pGyro                     = &gyro;
    p->ConvergeSafeExposure(&input);
    EXPECT_EQ(input.pGyro, p->GetContext().pGyro);
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    EXPECT_EQ(FALSE, p->GetContext().htAllowed);
    EXPECT_EQ(nullptr, p->GetContext().pGyro);
    EXPECT_FLOAT_EQ(1.25F, p->GetContext().stepSize.stepRegular);
}

TEST_F(ConvSlowTest, SettledWithinTwiceTheToleranceWithoutACounter)
{
    std::unique_ptr<ConvSlow>  p     = Make();
    ConvergenceSubmoduleInput  input = Input(100.0F, 100.0F, 96.0F);
    ConvergenceSubmoduleOutput out   = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_EQ(TRUE, out.isSettled[AECAlgoExposureSafe]);
    input.expIndexMatched[AECAlgoExposureSafe] = 95.5F;
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_EQ(FALSE, out.isSettled[AECAlgoExposureSafe]);
    EXPECT_EQ(TRUE, out.isSettled[AECAlgoExposureShort]);
}

TEST_F(ConvSlowTest, MissingTuningIsReportedAndKeepsExposure)
{
    ConvergenceTuningDataType empty = {};
    ConvSlow                  p(&empty);
    EXPECT_EQ(AecError, p.SetConvEvent(ConvEventInitialize));
    ConvergenceSubmoduleInput  input = Input(150.0F, 100.0F, 100.0F);
    input.pTuning                    = &empty;
    ConvergenceSubmoduleOutput out   = {};
    ASSERT_EQ(AecSuccess, p.Converge(&input, &out));
    EXPECT_FLOAT_EQ(100.0F, out.expIndices[AECAlgoExposureSafe]);
    EXPECT_TRUE(ConvLogContains("slow conv: no tuning, exposure kept"));
}
