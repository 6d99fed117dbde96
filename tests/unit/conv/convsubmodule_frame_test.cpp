// The shared frame of the submodules: factory, skip rules, EV jumps, quantisation, clamping, HDR arrangement,
// and the short/long stepping.
#include <gtest/gtest.h>

#include <cmath>

#include "aec/core/modules/mod_conv/convfast.h"
#include "aec/core/modules/mod_conv/convflashmeasurement.h"
#include "aec/core/modules/mod_conv/convslow.h"
#include "aec/core/modules/mod_conv/convstartup.h"
#include "aec/core/modules/mod_conv/convtorch.h"
#include "unit/conv/convsubmoduletestsupport.h"

namespace
{
using ConvFrameTest = ConvSubmoduleTest;
} // namespace

TEST_F(ConvFrameTest, CreateInstanceMakesTheClassOfEachIdentity)
{
    for (INT32 id = ConvIDSlow; id < ConvIDMax; id++)
    {
        SubmodulePtr p = Create(static_cast<ConvAlgoIdentity>(id));
        ASSERT_NE(nullptr, p) << id;
        EXPECT_EQ(id, p->GetIdentity());
        EXPECT_FLOAT_EQ(1.0F, p->GetSpeedAdjust());
        EXPECT_FLOAT_EQ(-1.0F, p->GetBaseSpeedOverride());
        EXPECT_EQ(0, p->GetSysLatency());
    }
    EXPECT_NE(nullptr, dynamic_cast<ConvSlow*>(Create(ConvIDSlow).get()));
    EXPECT_NE(nullptr, dynamic_cast<ConvFast*>(Create(ConvIDFast).get()));
    EXPECT_NE(nullptr, dynamic_cast<ConvFast*>(Create(ConvIDPreflash).get()));
    EXPECT_NE(nullptr, dynamic_cast<ConvStartup*>(Create(ConvIDFastAEC).get()));
    EXPECT_NE(nullptr, dynamic_cast<ConvStartup*>(Create(ConvIDAggressiveAEC).get()));
    EXPECT_NE(nullptr, dynamic_cast<ConvFlashMeasurement*>(Create(ConvIDFlashMeas).get()));
    EXPECT_NE(nullptr, dynamic_cast<ConvTorch*>(Create(ConvIDTorch).get()));
}

TEST_F(ConvFrameTest, CreateInstanceRejectsAnUnknownIdentity)
{
    EXPECT_EQ(nullptr, Create(ConvIDMax));
    EXPECT_TRUE(ConvLogContains("unknown convergence submodule identity 7"));
    EXPECT_EQ(nullptr, Create(static_cast<ConvAlgoIdentity>(-1)));
}

TEST_F(ConvFrameTest, NullRecordsAreRefused)
{
    SubmodulePtr p     = Create(ConvIDFast);
    ConvergenceSubmoduleInput             input = Input(100.0F, 100.0F, 100.0F);
    ConvergenceSubmoduleOutput            out   = {};
    EXPECT_EQ(AecError, p->Converge(nullptr, &out));
    EXPECT_EQ(AecError, p->Converge(&input, nullptr));
    input.pConvIn = nullptr;
    EXPECT_EQ(AecError, p->Converge(&input, &out));
}

TEST_F(ConvFrameTest, SkipOneHoldsWhileTheLastAdjustmentIsPending)
{
    Conv().fastConv.frameSkipMethod = aecglobalelements::SkipOne;
    SubmodulePtr p     = Create(ConvIDFast);
    ConvergenceSubmoduleInput             input = Input(150.0F, 100.0F, 100.0F);
    input.expIndexPreviousAdj[AECAlgoExposureLong] = 1e-6F;
    ConvergenceSubmoduleOutput out = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(100.0F, out.expIndices[AECAlgoExposureSafe]);

    input.expIndexPreviousAdj[AECAlgoExposureLong] = 0.0F;
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_GT(out.expIndices[AECAlgoExposureSafe], 100.0F);
}

TEST_F(ConvFrameTest, SkipSystemLatencyHoldsUntilThePipelineCaughtUp)
{
    Conv().fastConv.frameSkipMethod = aecglobalelements::SkipSystemLatency;
    SubmodulePtr p     = Create(ConvIDFast);
    ConvergenceSubmoduleInput             input = Input(150.0F, 100.0F, 100.0F);
    input.expIndexMatched[AECAlgoExposureShort] = 99.0F;
    ConvergenceSubmoduleOutput out = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(100.0F, out.expIndices[AECAlgoExposureSafe]);

    input.expIndexMatched[AECAlgoExposureShort] = 100.0F;
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(125.0F, out.expIndices[AECAlgoExposureSafe]); // half of the 50 remaining
}

TEST_F(ConvFrameTest, ExternalSkipHoldsEvenWithoutASkipMethod)
{
    SubmodulePtr p     = Create(ConvIDFast);
    ConvergenceSubmoduleInput             input = Input(150.0F, 100.0F, 100.0F);
    input.bExternalSkip                         = TRUE;
    ConvergenceSubmoduleOutput out              = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    for (FLOAT index : out.expIndices)
    {
        EXPECT_FLOAT_EQ(100.0F, index);
    }
}

TEST_F(ConvFrameTest, EVChangeInASkippedFrameJumpsToTheTargets)
{
    SubmodulePtr p     = Create(ConvIDSlow);
    ConvergenceSubmoduleInput             input = Input(0.0F, 100.0F, 100.0F);
    m_targets[AECAlgoExposureShort]             = 90.0F;
    m_targets[AECAlgoExposureLong]              = 110.0F;
    m_targets[AECAlgoExposureSafe]              = 100.4F;
    input.bExternalSkip                         = TRUE;
    input.bHasEVChanged                         = TRUE;
    ConvergenceSubmoduleOutput out              = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(90.0F, out.expIndices[AECAlgoExposureShort]);
    EXPECT_FLOAT_EQ(110.0F, out.expIndices[AECAlgoExposureLong]);
    EXPECT_FLOAT_EQ(100.0F, out.expIndices[AECAlgoExposureSafe]); // the safe one is rounded to the grid
}

TEST_F(ConvFrameTest, HeldFrameKeepsTheCommandedShortAndLongUnrounded)
{
    SubmodulePtr p     = Create(ConvIDFast);
    ConvergenceSubmoduleInput             input = Input(150.0F, 0.0F, 0.0F);
    input.expIndices[AECAlgoExposureShort]      = 90.3F;
    input.expIndices[AECAlgoExposureLong]       = 110.6F;
    input.expIndices[AECAlgoExposureSafe]       = 100.5F;
    input.bExternalSkip                         = TRUE;
    ConvergenceSubmoduleOutput out              = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(90.3F, out.expIndices[AECAlgoExposureShort]);
    EXPECT_FLOAT_EQ(110.6F, out.expIndices[AECAlgoExposureLong]);
    EXPECT_FLOAT_EQ(101.0F, out.expIndices[AECAlgoExposureSafe]); // half rounded away from zero
}

TEST_F(ConvFrameTest, SafeIndexIsQuantisedThenClampedToTheTable)
{
    Conv().unitStepSize                = 2.0F;
    Conv().fastConv.tolMultUnitStepSize = 0.5F;
    SubmodulePtr p     = Create(ConvIDFast);
    ConvergenceSubmoduleInput             input = Input(400.0F, 100.0F, 100.0F);
    input.expTableRange                         = {50.0F, 101.0F};
    ConvergenceSubmoduleOutput out              = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(101.0F, out.expIndices[AECAlgoExposureSafe]);

    // The upper bound goes first: an inverted range ends on its start.
    input.expTableRange = {120.0F, 110.0F};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(120.0F, out.expIndices[AECAlgoExposureSafe]);
}

TEST_F(ConvFrameTest, NonPositiveUnitStepFallsBackToOneUnit)
{
    Conv().unitStepSize = 0.0F;
    SubmodulePtr p     = Create(ConvIDSlow);
    ConvergenceSubmoduleInput             input = Input(0.0F, 100.3F, 100.3F);
    input.bExternalSkip                         = TRUE;
    ConvergenceSubmoduleOutput out              = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(100.0F, out.expIndices[AECAlgoExposureSafe]);
}

TEST_F(ConvFrameTest, OvershootIsOnlyRoundedNotClippedAtTheTarget)
{
    // A step that lands beyond the target stays beyond it.
    Conv().fastConv.aggressiveness = 1.5F;
    SubmodulePtr p     = Create(ConvIDFast);
    ConvergenceSubmoduleInput             input = Input(110.0F, 100.0F, 100.0F);
    ConvergenceSubmoduleOutput            out   = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(115.0F, out.expIndices[AECAlgoExposureSafe]);
}

TEST_F(ConvFrameTest, HDR3OverridesTheSafeIndexAfterRoundingOffTheGrid)
{
    m_adapter.GetTuningModules().modSensorHDRConfig->esRatio = 3.0F;
    SubmodulePtr p     = Create(ConvIDSlow);
    ConvergenceSubmoduleInput             input = Input(0.0F, 100.0F, 100.0F);
    m_targets[AECAlgoExposureShort]             = 90.0F;
    m_targets[AECAlgoExposureLong]              = 111.0F;
    m_targets[AECAlgoExposureSafe]              = 100.0F;
    input.bHasEVChanged                         = TRUE;
    input.HDR3Enable                            = TRUE;
    ConvergenceSubmoduleOutput out              = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(95.25F, out.expIndices[AECAlgoExposureSafe]);
    EXPECT_FLOAT_EQ(90.0F, out.expIndices[AECAlgoExposureShort]);
    EXPECT_FLOAT_EQ(111.0F, out.expIndices[AECAlgoExposureLong]);
}

TEST_F(ConvFrameTest, HDR3WithoutAUsableRatioKeepsTheSafeIndex)
{
    m_adapter.GetTuningModules().modSensorHDRConfig->esRatio = -1.0F;
    SubmodulePtr p     = Create(ConvIDSlow);
    ConvergenceSubmoduleInput             input = Input(100.0F, 100.0F, 100.0F);
    m_targets[AECAlgoExposureShort]             = 90.0F;
    m_targets[AECAlgoExposureLong]              = 110.0F;
    input.bHasEVChanged                         = TRUE;
    input.HDR3Enable                            = TRUE;
    ConvergenceSubmoduleOutput out              = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(100.0F, out.expIndices[AECAlgoExposureSafe]);
    EXPECT_TRUE(ConvLogContains("HDR3 safe index kept"));
}

TEST_F(ConvFrameTest, ShortNeverExceedsSafeAndLongNeverFallsBelowIt)
{
    SubmodulePtr p     = Create(ConvIDSlow);
    ConvergenceSubmoduleInput             input = Input(0.0F, 100.0F, 100.0F);
    m_targets[AECAlgoExposureShort]             = 120.0F;
    m_targets[AECAlgoExposureLong]              = 80.0F;
    m_targets[AECAlgoExposureSafe]              = 100.0F;
    input.bHasEVChanged                         = TRUE;
    ConvergenceSubmoduleOutput out              = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(100.0F, out.expIndices[AECAlgoExposureShort]);
    EXPECT_FLOAT_EQ(100.0F, out.expIndices[AECAlgoExposureLong]);
}

TEST_F(ConvFrameTest, FrameLogsTargetsInputsOutputsAndFlags)
{
    SubmodulePtr p     = Create(ConvIDFast);
    ConvergenceSubmoduleInput             input = Input(100.0F, 100.0F, 100.0F);
    ConvergenceSubmoduleOutput            out   = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_TRUE(ConvLogContains("tgt 100.0 100.0 100.0 in 100.0 100.0 100.0 out 100.0 100.0 100.0 dark bright safe "
                                "target 100.0 settled 1 1 1"));
    EXPECT_FLOAT_EQ(100.0F, out.darkBrightSafeTarget);
}

// Short and long exposures step their distance to the safe one.
class ConvSnapTest : public ConvSubmoduleTest
{
protected:
    void SetUp() override
    {
        ConvSubmoduleTest::SetUp();
        m_pFast = Create(ConvIDFast);
        // Safe exposure settled at 100, short at 90 commanded and shown.
        m_input                                     = Input(100.0F, 100.0F, 100.0F);
        m_input.expIndices[AECAlgoExposureShort]    = 90.0F;
        m_input.expIndexMatched[AECAlgoExposureShort] = 90.0F;
    }

    FLOAT Snap(FLOAT shortTarget, FLOAT tolerance, FLOAT speed, FLOAT safe)
    {
        m_targets[AECAlgoExposureShort] = shortTarget;
        return m_pFast->SnapAndConvergeDelta(tolerance, speed, &m_input, safe, AECAlgoExposureShort);
    }

    SubmodulePtr m_pFast;
    ConvergenceSubmoduleInput             m_input = {};
};

TEST_F(ConvSnapTest, WithinToleranceTheDistanceToSafeIsKept)
{
    EXPECT_FLOAT_EQ(93.0F, Snap(91.0F, 2.0F, 0.5F, 103.0F));
}

TEST_F(ConvSnapTest, StepsAShareOfTheDistanceError)
{
    // want -30, current -10: half of the -20 error.
    EXPECT_FLOAT_EQ(80.0F, Snap(70.0F, 2.0F, 0.5F, 100.0F));
    EXPECT_TRUE(ConvLogContains("ADRC boundary for short conv: curr abs delta 10.000 and desired abs delta 30.000"));
}

TEST_F(ConvSnapTest, TakesTheWholeErrorWhenTheRemainderWouldBeInTolerance)
{
    // 0.9 of -5 leaves 0.5, within tolerance: take all of it.
    EXPECT_FLOAT_EQ(85.0F, Snap(85.0F, 1.0F, 0.9F, 100.0F));
}

TEST_F(ConvSnapTest, SubUnitStepMovesOneUnit)
{
    EXPECT_FLOAT_EQ(89.0F, Snap(87.0F, 2.0F, 0.1F, 100.0F));
    EXPECT_FLOAT_EQ(91.0F, Snap(93.0F, 2.0F, 0.1F, 100.0F));
}

TEST_F(ConvSnapTest, InFlightPastTheTargetKeepsTheDistance)
{
    // The statistics show 80 (below the 85 target) while 90 was commanded (above it).
    m_input.expIndexMatched[AECAlgoExposureShort] = 80.0F;
    EXPECT_FLOAT_EQ(95.0F, Snap(85.0F, 2.0F, 0.5F, 105.0F));
    // Within tolerance it keeps the commanded index itself.
    EXPECT_FLOAT_EQ(90.0F, Snap(89.0F, 2.0F, 0.5F, 105.0F));
}

TEST_F(ConvSnapTest, NoDistanceErrorKeepsTheDistance)
{
    // The safe target moved with the short one: the distance is already right.
    m_targets[AECAlgoExposureSafe] = 120.0F;
    EXPECT_FLOAT_EQ(110.0F, Snap(110.0F, 2.0F, 0.5F, 120.0F));
}

TEST_F(ConvSnapTest, StepThatWouldOpenTheDistanceTooFarTakesBackOneUnit)
{
    // want -3, current 0 (short at the safe 90): the least move on a grid of 4 would open the distance to 4,
    // beyond both the current and the desired one, so the unit comes back.
    Conv().unitStepSize                         = 4.0F;
    m_input.expIndices[AECAlgoExposureSafe]     = 90.0F;
    m_input.expIndexMatched[AECAlgoExposureSafe] = 90.0F;
    m_targets[AECAlgoExposureSafe]              = 90.0F;
    EXPECT_FLOAT_EQ(90.0F, Snap(87.0F, 1.0F, 0.5F, 90.0F));
}

TEST_F(ConvSnapTest, MissingFrameOrBadExposureFollowsTheSafeIndex)
{
    EXPECT_FLOAT_EQ(103.0F, m_pFast->SnapAndConvergeDelta(2.0F, 0.5F, nullptr, 103.0F, AECAlgoExposureShort));
    EXPECT_FLOAT_EQ(103.0F, m_pFast->SnapAndConvergeDelta(2.0F, 0.5F, &m_input, 103.0F, AECAlgoExposureCount));
    EXPECT_TRUE(ConvLogContains("no frame for exposure 3, it follows the safe one"));
}
