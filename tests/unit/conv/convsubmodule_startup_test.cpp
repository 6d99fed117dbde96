// The rapid start converger and the flash measurement wrapper around it.
#include <gtest/gtest.h>

#include "aec/core/modules/mod_conv/convflashmeasurement.h"
#include "aec/core/modules/mod_conv/convstartup.h"
#include "unit/conv/convsubmoduletestsupport.h"

namespace
{
class ConvStartupTest : public ConvSubmoduleTest
{
protected:
    std::unique_ptr<ConvStartup> Make(ConvAlgoIdentity identity)
    {
        return std::unique_ptr<ConvStartup>(new ConvStartup(identity, &Tuning()));
    }
};

class ConvFlashMeasurementTest : public ConvSubmoduleTest
{
protected:
    void SetUp() override
    {
        ConvSubmoduleTest::SetUp();
        ConvFlashMeasurement::SetMeasurement(0U, AECAlgoFlashMeasKindTuning);
        ConvFlashMeasurement::ResetPreviousFlashMeasTargetIndex();
        m_pMeas = Create(ConvIDFlashMeas);
    }
    void TearDown() override
    {
        ConvFlashMeasurement::SetMeasurement(0U, AECAlgoFlashMeasKindOff);
        ConvFlashMeasurement::ResetPreviousFlashMeasTargetIndex();
        ConvSubmoduleTest::TearDown();
    }

    ConvergenceSubmoduleOutput Frame(FLOAT target, FLOAT current)
    {
        ConvergenceSubmoduleInput  input = Input(target, current, current);
        ConvergenceSubmoduleOutput out   = {};
        EXPECT_EQ(AecSuccess, m_pMeas->Converge(&input, &out));
        return out;
    }

    SubmodulePtr m_pMeas;
};
} // namespace

TEST_F(ConvStartupTest, InitialiseTakesTheTuningOfTheMode)
{
    std::unique_ptr<ConvStartup> pFast = Make(ConvIDFastAEC);
    EXPECT_EQ(&StartUp().StartUpConv.fastAEC, pFast->GetConfig().pTuning);
    EXPECT_FLOAT_EQ(3.0F, pFast->GetConfig().tolerance);
    std::unique_ptr<ConvStartup> pAggressive = Make(ConvIDAggressiveAEC);
    EXPECT_EQ(&StartUp().StartUpConv.aggressive, pAggressive->GetConfig().pTuning);
    EXPECT_FLOAT_EQ(4.0F, pAggressive->GetConfig().tolerance);
    std::unique_ptr<ConvStartup> pMeas = Make(ConvIDFlashMeas);
    EXPECT_EQ(&Flash().flashConv.flashMeasurementConv, pMeas->GetConfig().pTuning);

    std::unique_ptr<ConvStartup> pOther = Make(ConvIDSlow);
    EXPECT_EQ(AecError, pOther->SetConvEvent(ConvEventInitialize));
    EXPECT_EQ(&StartUp().StartUpConv.fastAEC, pOther->GetConfig().pTuning);
}

TEST_F(ConvStartupTest, EveryEventResetsTheSpeedAdjustment)
{
    std::unique_ptr<ConvStartup> p = Make(ConvIDFastAEC);
    p->SetSpeedAdjust(0.3F);
    EXPECT_EQ(AecSuccess, p->SetConvEvent(ConvEventSpeedAdjChanged));
    EXPECT_FLOAT_EQ(1.0F, p->GetSpeedAdjust());
}

TEST_F(ConvStartupTest, InitialSkipHoldsThenJumpsToTheTarget)
{
    std::unique_ptr<ConvStartup> p     = Make(ConvIDFastAEC);
    ConvergenceSubmoduleInput    input = Input(200.0F, 100.0F, 100.0F);
    EXPECT_EQ(aecglobalelements::SmoothNoSkip, p->GetSkipType());
    EXPECT_FLOAT_EQ(100.0F, p->ConvergeSafeExposure(&input));
    EXPECT_TRUE(ConvLogContains("initial skip new value 0"));
    EXPECT_EQ(aecglobalelements::SkipSystemLatency, p->GetSkipType());
    EXPECT_FLOAT_EQ(200.0F, p->ConvergeSafeExposure(&input));
    EXPECT_EQ(aecglobalelements::SkipSystemLatency, p->GetSkipType());
}

TEST_F(ConvStartupTest, FirstJumpDownIsShortenedOnce)
{
    std::unique_ptr<ConvStartup> p     = Make(ConvIDAggressiveAEC);
    ConvergenceSubmoduleInput    input = Input(50.0F, 100.0F, 100.0F);
    // -50 on [10, 60] with factor 0.8 at the end: 0.8 + 0.2 * 10 / 50 = 0.84.
    EXPECT_FLOAT_EQ(58.0F, p->ConvergeSafeExposure(&input));
    EXPECT_FLOAT_EQ(50.0F, p->ConvergeSafeExposure(&input));

    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    input = Input(30.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(44.0F, p->ConvergeSafeExposure(&input)); // beyond the range: 0.8
    ASSERT_EQ(AecSuccess, p->SetConvEvent(ConvEventInitialize));
    input = Input(94.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(94.0F, p->ConvergeSafeExposure(&input)); // below the range: full jump
}

TEST_F(ConvStartupTest, FirstJumpUpIsNotShortenedButEndsTheFirstFrame)
{
    std::unique_ptr<ConvStartup> p     = Make(ConvIDAggressiveAEC);
    ConvergenceSubmoduleInput    input = Input(150.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(150.0F, p->ConvergeSafeExposure(&input));
    input = Input(50.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(50.0F, p->ConvergeSafeExposure(&input));
}

TEST_F(ConvStartupTest, SettlesAfterItsCountInTolerance)
{
    std::unique_ptr<ConvStartup> p     = Make(ConvIDFastAEC); // two frames in tolerance
    ConvergenceSubmoduleInput    input = Input(102.0F, 100.0F, 100.0F);
    ConvergenceSubmoduleOutput   out   = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out)); // initial skip
    EXPECT_EQ(FALSE, out.isSettled[AECAlgoExposureSafe]);
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_EQ(FALSE, out.isSettled[AECAlgoExposureSafe]);
    EXPECT_EQ(aecglobalelements::SmoothNoSkip, p->GetSkipType());
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    for (BOOL settled : out.isSettled)
    {
        EXPECT_EQ(TRUE, settled);
    }
    EXPECT_TRUE(ConvLogContains("will be in tolerance 1 tentative index 100.000000 table is exhausted 0"));
    // Short and long follow the safe index in start modes.
    EXPECT_FLOAT_EQ(100.0F, out.expIndices[AECAlgoExposureShort]);
    EXPECT_FLOAT_EQ(100.0F, out.expIndices[AECAlgoExposureLong]);
}

TEST_F(ConvStartupTest, ExhaustedTableCountsTowardsSettling)
{
    std::unique_ptr<ConvStartup> p     = Make(ConvIDAggressiveAEC); // one frame
    ConvergenceSubmoduleInput    input = Input(600.0F, 100.0F, 100.0F);
    ConvergenceSubmoduleOutput   out   = {};
    ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
    EXPECT_FLOAT_EQ(500.0F, out.expIndices[AECAlgoExposureSafe]);
    EXPECT_EQ(TRUE, out.isSettled[AECAlgoExposureSafe]);
}

TEST_F(ConvStartupTest, TimeOutReportsSettledRegardlessOfExposure)
{
    std::unique_ptr<ConvStartup> p     = Make(ConvIDAggressiveAEC); // time-out after 10 frames
    ConvergenceSubmoduleInput    input = Input(300.0F, 100.0F, 100.0F);
    input.bExternalSkip                = TRUE;
    ConvergenceSubmoduleOutput out     = {};
    for (UINT32 n = 1; n <= 12; n++)
    {
        ASSERT_EQ(AecSuccess, p->Converge(&input, &out));
        EXPECT_FLOAT_EQ(100.0F, out.expIndices[AECAlgoExposureSafe]);
        for (BOOL settled : out.isSettled)
        {
            EXPECT_EQ((n >= 10) ? TRUE : FALSE, settled) << n;
        }
    }
}

TEST_F(ConvFlashMeasurementTest, CalibrationKeepsTheManualIndexAndIsSettled)
{
    ConvFlashMeasurement::SetMeasurement(4U, AECAlgoFlashMeasKindCalib);
    EXPECT_EQ(4U, ConvFlashMeasurement::GetMeasIndex());
    EXPECT_EQ(aecglobalelements::SkipSystemLatency, m_pMeas->GetSkipType());
    const ConvergenceSubmoduleOutput out = Frame(200.0F, 120.0F);
    EXPECT_FLOAT_EQ(120.0F, out.expIndices[AECAlgoExposureSafe]);
    for (BOOL settled : out.isSettled)
    {
        EXPECT_EQ(TRUE, settled);
    }
    EXPECT_TRUE(ConvLogContains("flashMeas: not converging; manual exposure index 120.000000"));
    EXPECT_TRUE(ConvLogContains("flashMeas: conv target in: 200.000 out: 120.000 settled: TRUE"));
    EXPECT_EQ(4U, static_cast<ConvFlashMeasurement*>(m_pMeas.get())->GetFrameMeasIndex());
}

TEST_F(ConvFlashMeasurementTest, SettledMeasurementStaysAtItsIndexWhenTheTargetMoves)
{
    // Two initial skips, then the jump.
    EXPECT_FLOAT_EQ(100.0F, Frame(120.0F, 100.0F).expIndices[AECAlgoExposureSafe]);
    EXPECT_FLOAT_EQ(100.0F, Frame(120.0F, 100.0F).expIndices[AECAlgoExposureSafe]);
    ConvergenceSubmoduleOutput out = Frame(120.0F, 100.0F);
    EXPECT_FLOAT_EQ(120.0F, out.expIndices[AECAlgoExposureSafe]);
    EXPECT_EQ(FALSE, out.isSettled[AECAlgoExposureSafe]);
    EXPECT_TRUE(ConvLogContains("flashMeas: converging input target: 120.000000 output: 120.000000"));
    // Three frames in tolerance settle it.
    EXPECT_EQ(FALSE, Frame(120.0F, 120.0F).isSettled[AECAlgoExposureSafe]);
    EXPECT_EQ(FALSE, Frame(120.0F, 120.0F).isSettled[AECAlgoExposureSafe]);
    out = Frame(121.0F, 120.0F);
    EXPECT_EQ(TRUE, out.isSettled[AECAlgoExposureSafe]);
    EXPECT_TRUE(ConvLogContains("flashMeas: settled first time: saving exp index 120.000000"));
    EXPECT_FLOAT_EQ(121.0F, ConvFlashMeasurement::GetPreviousFlashMeasTargetIndex());
    EXPECT_FLOAT_EQ(120.0F, static_cast<ConvFlashMeasurement*>(m_pMeas.get())->GetSettledIndex());

    // The target moves: the measurement stays.
    out = Frame(160.0F, 120.0F);
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        EXPECT_FLOAT_EQ(120.0F, out.expIndices[i]);
        EXPECT_EQ(TRUE, out.isSettled[i]);
    }
    EXPECT_TRUE(ConvLogContains("flashMeas: applying same exp index 120.000000 without converging"));
    EXPECT_FLOAT_EQ(121.0F, ConvFlashMeasurement::GetPreviousFlashMeasTargetIndex());

    // A new measurement starts afresh.
    ASSERT_EQ(AecSuccess, m_pMeas->SetConvEvent(ConvEventInitialize));
    EXPECT_FLOAT_EQ(-1.0F, static_cast<ConvFlashMeasurement*>(m_pMeas.get())->GetSettledIndex());
    EXPECT_FLOAT_EQ(120.0F, Frame(160.0F, 120.0F).expIndices[AECAlgoExposureSafe]); // initial skip again
}
