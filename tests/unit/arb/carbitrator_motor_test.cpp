// Unit tests of the iris motor adjustments: keeping the iris on table knees and its gradual glide between f-numbers.
#include <cmath>

#include "unit/arb/arbtestsupport.h"
#include "unit/arb/exptabletestsupport.h"

namespace
{

class ArbMotorTest : public ArbitrationTest
{
protected:
    VOID SetUp() override
    {
        ArbitrationTest::SetUp();
        m_limit.gain    = {1.0F, 64.0F};
        m_limit.expTime = {10000U, 1000000000U};
        m_limit.fnumber = {1.0F, 8.0F};
    }

    // An arbitrator on a custom table that opens the iris from f/4 to f/2 (knees at f/4, f/2, f/2).
    std::unique_ptr<CArbitrator> MakeIrisArbitrator(BOOL withLens)
    {
        m_customTable.expTable = *m_irisTable.Get();
        m_customTable.isValid  = TRUE;
        std::unique_ptr<CArbitrator> pArb = MakeArbitrator(CustomExposureTableID, TRUE);
        pArb->SetParamFPSRange(1.0F);
        if (TRUE == withLens)
        {
            pArb->SetIrisTable(m_iris.Data());
            LDMLensCap lensCap = {};
            lensCap.PIris      = TRUE;
            pArb->SetLensCap(lensCap);
        }
        return pArb;
    }

    static ExposureSetType Set(FLOAT gain, FLOAT fnumber, UINT64 expTime)
    {
        ExposureSetType set = {};
        set.gain            = gain;
        set.fnumber         = fnumber;
        set.expTime         = expTime;
        return set;
    }

    // One frame of the glide: the table asks for fnumber at gain and time; returns what the sensor and iris get.
    ExposureSetType DecayFrame(CArbitrator& rArb, FLOAT gain, FLOAT fnumber, UINT64 expTime,
                               AECExposureMode mode = Linear)
    {
        ExposureSetType set = Set(gain, fnumber, expTime);
        rArb.processMotorExpDecayAdjust(&set, m_limit, mode);
        return set;
    }

    ExposureLimitationType m_limit = {};
    ArbTable               m_irisTable{IrisTableKnees()};
    TestIrisTable          m_iris{{0, 100}, {{2.0F, 2.8F, 4.0F}, {2.0F, 2.8F, 4.0F}}};
};

} // namespace

// ---- Life save ----

TEST_F(ArbMotorTest, LifeSaveIsSkippedWhileTheIrisIsAborted)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator(TRUE);
    CArbitratorTestPeer::IrisIsAborted(*pArb) = 1;
    ExposureSetType set = Set(2.0F, 3.0F, 1000000U);
    pArb->processMotorLifeSaveAdjust(&set, m_limit, AECAlgoExposureSafe);
    EXPECT_EQ(2.0F, set.gain);
    EXPECT_EQ(3.0F, set.fnumber);
    EXPECT_EQ(1000000U, set.expTime);
    EXPECT_EQ(1.0F, m_limit.fnumber.min);
    EXPECT_EQ(8.0F, m_limit.fnumber.max);
}

TEST_F(ArbMotorTest, LifeSaveWithoutIrisProtectsTheSafeFNumberWithOne)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator(FALSE);
    ExposureSetType              set  = Set(2.0F, 3.0F, 1000000U);
    pArb->processMotorLifeSaveAdjust(&set, m_limit, AECAlgoExposureSafe);
    EXPECT_EQ(1.0F, set.fnumber);
    EXPECT_EQ(2.0F, set.gain);
    EXPECT_EQ(1000000U, set.expTime);
    EXPECT_EQ(1.0F, CArbitratorTestPeer::MotorDecay(*pArb).preFn);
    EXPECT_EQ(1.0F, m_limit.fnumber.min);
    EXPECT_EQ(1.0F, m_limit.fnumber.max);
    EXPECT_TRUE(ArbLogContains("[MLS] Protection of f-number with 1.0"));
}

TEST_F(ArbMotorTest, LifeSaveWithoutIrisGivesOtherExposuresTheSEFTablesFirstFNumber)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator(FALSE);
    ShdrTable sef({{1.0F, 1000000U, 2.8F, TimeFirst, 0.0F}, {1.0F, 10000000U, 2.8F, GainFirst, IndexOf(10.0)}});
    ShdrTable lef({{1.0F, 1000000U, 2.8F, TimeFirst, 0.0F}, {1.0F, 10000000U, 2.8F, GainFirst, IndexOf(10.0)}});
    ASSERT_EQ(AecSuccess, pArb->GetExpTable()->SetSHDRExpTable(sef.Get(), lef.Get(), nullptr));

    ExposureSetType set = Set(2.0F, 3.0F, 1000000U);
    pArb->processMotorLifeSaveAdjust(&set, m_limit, AECAlgoExposureShort);
    EXPECT_EQ(2.8F, set.fnumber);
    EXPECT_EQ(2.8F, CArbitratorTestPeer::MotorDecay(*pArb).preFn);
    EXPECT_EQ(2.8F, m_limit.fnumber.min);
    EXPECT_EQ(2.8F, m_limit.fnumber.max);
}

TEST_F(ArbMotorTest, LifeSaveReturnsTheIrisToTheKneeAndCompensatesWithGain)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator(TRUE);
    ExposureSetType              set  = Set(2.0F, 3.0F, 1000000U);
    pArb->processMotorLifeSaveAdjust(&set, m_limit, AECAlgoExposureSafe);

    // f/3 lies between the knees at f/4 and f/2: the iris goes back to f/4, gain makes up (4 / 3)^2.
    const FLOAT ratio = 1.0F / ((3.0F / 4.0F) * (3.0F / 4.0F));
    EXPECT_EQ(4.0F, set.fnumber);
    EXPECT_FLOAT_EQ(2.0F * ratio, set.gain);
    EXPECT_EQ(1000000U, set.expTime);
    EXPECT_EQ(4.0F, m_limit.fnumber.min);
    EXPECT_EQ(4.0F, m_limit.fnumber.max);
    EXPECT_TRUE(ArbLogContains("[MLS] FnRatio 0.750000 FnKneeRatio 1.777778"));
    EXPECT_TRUE(ArbLogContains("[MLS] Apply to gain, kneeIndex 0 preKneeFn(use) 3.000000 postKneeFn 4.000000"));
}

TEST_F(ArbMotorTest, LifeSaveUsesTimeWhenGainWouldLeaveItsLimit)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator(TRUE);
    ExposureSetType              set  = Set(40.0F, 3.0F, 1000000U);
    pArb->processMotorLifeSaveAdjust(&set, m_limit, AECAlgoExposureSafe);

    const FLOAT ratio = 1.0F / ((3.0F / 4.0F) * (3.0F / 4.0F));
    EXPECT_EQ(4.0F, set.fnumber);
    EXPECT_EQ(40.0F, set.gain);
    EXPECT_EQ(static_cast<UINT64>(1000000.0F * ratio), set.expTime);
    EXPECT_TRUE(ArbLogContains("[MLS] Gain exceed limits, apply to shutter"));
}

TEST_F(ArbMotorTest, LifeSaveLeavesTheSetWhenGainAndTimeWouldLeaveTheirLimits)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator(TRUE);
    m_limit.expTime.max               = 1500000U;
    ExposureSetType set               = Set(40.0F, 3.0F, 1000000U);
    pArb->processMotorLifeSaveAdjust(&set, m_limit, AECAlgoExposureSafe);
    EXPECT_EQ(3.0F, set.fnumber);
    EXPECT_EQ(40.0F, set.gain);
    EXPECT_EQ(1000000U, set.expTime);
    // The iris is held where it is.
    EXPECT_EQ(3.0F, m_limit.fnumber.min);
    EXPECT_EQ(3.0F, m_limit.fnumber.max);
    EXPECT_TRUE(ArbLogContains("[MLS] Gain and Shutter exceed their limits, not apply this module!"));
}

TEST_F(ArbMotorTest, LifeSaveBelowEveryKneeUsesTheLastKnee)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator(TRUE);
    ExposureSetType              set  = Set(2.0F, 1.5F, 1000000U);
    pArb->processMotorLifeSaveAdjust(&set, m_limit, AECAlgoExposureSafe);
    EXPECT_EQ(2.0F, set.fnumber);
    EXPECT_FLOAT_EQ(2.0F * (1.0F / (0.75F * 0.75F)), set.gain);
}

TEST_F(ArbMotorTest, LifeSaveOnAKneeChangesNothingButPinsTheIris)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator(TRUE);
    ExposureSetType              set  = Set(2.0F, 4.0F, 1000000U);
    pArb->processMotorLifeSaveAdjust(&set, m_limit, AECAlgoExposureSafe);
    EXPECT_EQ(4.0F, set.fnumber);
    EXPECT_EQ(2.0F, set.gain);
    EXPECT_EQ(4.0F, m_limit.fnumber.max);

    set = Set(2.0F, 2.0F, 1000000U);
    pArb->processMotorLifeSaveAdjust(&set, m_limit, AECAlgoExposureSafe);
    EXPECT_EQ(2.0F, set.fnumber);
    EXPECT_EQ(2.0F, set.gain);
}

TEST_F(ArbMotorTest, LifeSaveOfTheShortExposureUsesTheSEFTable)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator(TRUE);
    ShdrTable sef({{1.0F, 1000000U, 5.6F, TimeFirst, 0.0F}, {1.0F, 1000000U, 4.0F, GainFirst, IndexOf(1.96)}});
    ShdrTable lef({{1.0F, 1000000U, 5.6F, TimeFirst, 0.0F}, {1.0F, 1000000U, 4.0F, GainFirst, IndexOf(1.96)}});
    ASSERT_EQ(AecSuccess, pArb->GetExpTable()->SetSHDRExpTable(sef.Get(), lef.Get(), nullptr));

    ExposureSetType set = Set(2.0F, 4.5F, 1000000U);
    pArb->processMotorLifeSaveAdjust(&set, m_limit, AECAlgoExposureShort);
    EXPECT_EQ(5.6F, set.fnumber);
    EXPECT_FLOAT_EQ(2.0F * (1.0F / ((4.5F / 5.6F) * (4.5F / 5.6F))), set.gain);
}

TEST_F(ArbMotorTest, LifeSaveWithoutAnActiveTableLeavesTheSet)
{
    CArbitrator arb(&m_context);
    arb.Initialize();
    ExposureSetType set = Set(2.0F, 3.0F, 1000000U);
    arb.processMotorLifeSaveAdjust(&set, m_limit, AECAlgoExposureSafe);
    EXPECT_EQ(3.0F, set.fnumber);
    EXPECT_EQ(2.0F, set.gain);
    EXPECT_TRUE(ArbLogContains("[MLS] active table not valid"));
}

// ---- Decay ----

TEST_F(ArbMotorTest, FirstFrameOnlyRemembersTheFNumber)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    const ExposureSetType        out  = DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);
    EXPECT_EQ(2.0F, out.fnumber);
    EXPECT_EQ(2.0F, out.gain);
    EXPECT_EQ(10000000U, out.expTime);
    EXPECT_EQ(2.0F, CArbitratorTestPeer::MotorDecay(*pArb).preFn);
    EXPECT_EQ(0, CArbitratorTestPeer::MotorDecay(*pArb).decay_state);
}

TEST_F(ArbMotorTest, TenPercentFNumberChangeGlidesOverAboutTenFramesAtConstantExposure)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    CArbitratorTestPeer::ExpIdx(*pArb) = 150.0F;
    DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);

    const FLOAT     light  = 2.0F / (2.2F * 2.2F);
    MotorDecayType& rDecay = CArbitratorTestPeer::MotorDecay(*pArb);
    ExposureSetType out    = DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    EXPECT_EQ(1, rDecay.decay_state);
    EXPECT_FLOAT_EQ(1.01F, rDecay.Fn_magnification);
    EXPECT_EQ(2.2F, rDecay.tarFn);
    EXPECT_EQ(2.0F, rDecay.tarGain);
    EXPECT_EQ(150.0F, rDecay.exp_idx_base);
    EXPECT_TRUE(ArbLogContains("[MLSS] Fn_magnification 1.010000 preFn 2.000000 tarFn 2.200000 outExp.gain 2.000000 "
                               "exp_equ_speed 10  outExp.expTime 10000000 decay_state 1 sensor_comp 0.826446"));

    UINT32 frames = 1U;
    FLOAT  lastFn = 2.0F;
    while ((1 == rDecay.decay_state) && (frames < 50U))
    {
        EXPECT_GT(out.fnumber, lastFn);
        EXPECT_LE(out.fnumber, 2.2F);
        EXPECT_NEAR(light, out.gain / (out.fnumber * out.fnumber), light * 1e-4F) << "frame " << frames;
        EXPECT_EQ(10000000U, out.expTime);
        lastFn = out.fnumber;
        out    = DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
        frames++;
    }
    EXPECT_GE(frames, 9U);
    EXPECT_LE(frames, 11U);

    // Arrived: the target f-number with the table's gain, and the iris rests.
    EXPECT_EQ(2.2F, out.fnumber);
    EXPECT_EQ(2.0F, out.gain);
    EXPECT_EQ(AfterDecay, rDecay.tolerance_state);
    EXPECT_EQ(1.0F, rDecay.sensor_comp);
    EXPECT_EQ(2.2F, rDecay.preFn);
}

TEST_F(ArbMotorTest, ClosingTheIrisGlidesWithPointNineNine)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    const ExposureSetType out = DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);
    EXPECT_FLOAT_EQ(0.99F, CArbitratorTestPeer::MotorDecay(*pArb).Fn_magnification);
    EXPECT_FLOAT_EQ(2.2F * 0.99F, out.fnumber);
    EXPECT_NEAR(2.0F / 4.0F, out.gain / (out.fnumber * out.fnumber), 1e-4F);
}

TEST_F(ArbMotorTest, DecayAtTheGainLimitGoesOnInTime)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    m_limit.gain = {1.0F, 2.0F};
    DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    const ExposureSetType out = DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);

    // The iris is still nearly at f/2.2: gain would have to exceed 2, so time makes up the rest.
    const FLOAT comp = (2.2F / 2.0F) * (2.2F / 2.0F) * 0.99F * 0.99F;
    EXPECT_EQ(2.0F, out.gain);
    EXPECT_NEAR(10000000.0 * comp, static_cast<double>(out.expTime), 10.0);
    EXPECT_FALSE(ArbLogContains("[MLSS] compensate to sensor limit"));
}

TEST_F(ArbMotorTest, DecayClampedByTheTimeLimitLogsIt)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    m_limit.gain            = {1.0F, 2.0F};
    m_limit.expTime.max     = 11000000U;
    DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    const ExposureSetType out = DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);
    EXPECT_EQ(2.0F, out.gain);
    EXPECT_EQ(11000000U, out.expTime);
    EXPECT_TRUE(ArbLogContains("[MLSS] compensate to sensor limit"));
    EXPECT_TRUE(ArbLogContains("[MLSS] sensor_comp "));
}

TEST_F(ArbMotorTest, DecayBelowTheMinimumGainGoesOnInTime)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    DecayFrame(*pArb, 1.0F, 2.0F, 10000000U);
    // Opening from f/2 to f/2.2 with unity gain: gain would drop below 1, so time shortens.
    const ExposureSetType out  = DecayFrame(*pArb, 1.0F, 2.2F, 10000000U);
    const FLOAT           comp = (2.0F / 2.2F) * (2.0F / 2.2F) * 1.01F * 1.01F;
    EXPECT_EQ(1.0F, out.gain);
    EXPECT_NEAR(10000000.0 * comp, static_cast<double>(out.expTime), 10.0);
}

TEST_F(ArbMotorTest, IrisAbortedDuringDecayJumpsToTheFixedFNumber)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);
    DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    ASSERT_EQ(1, CArbitratorTestPeer::MotorDecay(*pArb).decay_state);

    CArbitratorTestPeer::IrisIsAborted(*pArb) = 1;
    CArbitratorTestPeer::FnLimits(*pArb)      = 3.0F;
    const ExposureSetType out                 = DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    EXPECT_EQ(3.0F, out.fnumber);
    EXPECT_EQ(2.0F, out.gain);
    EXPECT_EQ(0, CArbitratorTestPeer::MotorDecay(*pArb).decay_state);
    EXPECT_EQ(AfterDecay, CArbitratorTestPeer::MotorDecay(*pArb).tolerance_state);
    EXPECT_EQ(1.0F, CArbitratorTestPeer::MotorDecay(*pArb).sensor_comp);
    EXPECT_EQ(3.0F, CArbitratorTestPeer::MotorDecay(*pArb).preFn);
}

TEST_F(ArbMotorTest, IrisAbortedWithoutAFixedFNumberKeepsTheTarget)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);
    DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    CArbitratorTestPeer::IrisIsAborted(*pArb) = 1;
    const ExposureSetType out                 = DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    EXPECT_EQ(2.2F, out.fnumber);
    EXPECT_EQ(0, CArbitratorTestPeer::MotorDecay(*pArb).decay_state);
    EXPECT_TRUE(ArbLogContains("[MLSS] iris aborted without a fixed f-number, keeping target 2.200000"));
}

TEST_F(ArbMotorTest, AbortedIrisStartsNoDecay)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);
    CArbitratorTestPeer::IrisIsAborted(*pArb) = 1;
    const ExposureSetType out                 = DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    EXPECT_EQ(2.2F, out.fnumber);
    EXPECT_EQ(2.0F, out.gain);
    EXPECT_EQ(0, CArbitratorTestPeer::MotorDecay(*pArb).decay_state);
    EXPECT_EQ(2.2F, CArbitratorTestPeer::MotorDecay(*pArb).preFn);
}

TEST_F(ArbMotorTest, GatingSweepEndsTheDecayAtOnce)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    CArbitratorTestPeer::PLDGatingEnable(*pArb) = 1.0F;
    DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);
    const ExposureSetType out = DecayFrame(*pArb, 2.0F, 2.8F, 10000000U);
    EXPECT_EQ(2.8F, out.fnumber);
    EXPECT_EQ(2.0F, out.gain);
    EXPECT_EQ(0, CArbitratorTestPeer::MotorDecay(*pArb).decay_state);
    EXPECT_EQ(AfterDecay, CArbitratorTestPeer::MotorDecay(*pArb).tolerance_state);
}

TEST_F(ArbMotorTest, HDRDecaySpeedComesFromTheStaggeredHDRTuning)
{
    aecShdr::ShdrMeteringType shdr = {};
    shdr.exp_equ_speed             = 20;
    m_pTuning->mtrTuningData.pShdr = &shdr;
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    DecayFrame(*pArb, 2.0F, 2.0F, 10000000U, HDR);
    DecayFrame(*pArb, 2.0F, 2.2F, 10000000U, HDR);
    EXPECT_FLOAT_EQ(1.02F, CArbitratorTestPeer::MotorDecay(*pArb).Fn_magnification);
}

TEST_F(ArbMotorTest, DecaySpeedComesFromTheCoreTuningAndIsOnePercentWithout)
{
    ArbCore()->exp_equ_speed = 50;
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);
    DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    EXPECT_FLOAT_EQ(1.05F, CArbitratorTestPeer::MotorDecay(*pArb).Fn_magnification);

    std::unique_ptr<CArbitrator> pUntuned = MakeArbitrator();
    pUntuned->SetTuning(nullptr);
    DecayFrame(*pUntuned, 2.0F, 2.0F, 10000000U);
    DecayFrame(*pUntuned, 2.0F, 2.2F, 10000000U);
    EXPECT_FLOAT_EQ(1.01F, CArbitratorTestPeer::MotorDecay(*pUntuned).Fn_magnification);
}

TEST_F(ArbMotorTest, DecayPinsTheLimitUntilExposureHasTravelledTheTolerance)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    CArbitratorTestPeer::ExpIdx(*pArb) = 100.0F;
    DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);
    DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    while (1 == CArbitratorTestPeer::MotorDecay(*pArb).decay_state)
    {
        DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    }

    ExposureLimitationType limit = {};
    limit.fnumber                = {1.0F, 4.0F};
    CArbitratorTestPeer::ExpIdx(*pArb) = 110.0F;
    CArbitratorTestPeer::DecayToleranceProcess(*pArb, limit, Linear);
    EXPECT_EQ(2.2F, limit.fnumber.min);
    EXPECT_EQ(2.2F, limit.fnumber.max);

    limit.fnumber                      = {1.0F, 4.0F};
    CArbitratorTestPeer::ExpIdx(*pArb) = 130.0F;
    CArbitratorTestPeer::DecayToleranceProcess(*pArb, limit, Linear);
    EXPECT_EQ(1.0F, limit.fnumber.min);
    EXPECT_EQ(BeforeDecay, CArbitratorTestPeer::MotorDecay(*pArb).tolerance_state);
}

TEST_F(ArbMotorTest, ManualDecayParametersChangeNothing)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator();
    DecayFrame(*pArb, 2.0F, 2.0F, 10000000U);
    DecayFrame(*pArb, 2.0F, 2.2F, 10000000U);
    const MotorDecayType before = CArbitratorTestPeer::MotorDecay(*pArb);
    pArb->PirisManualDecayParam();
    const MotorDecayType& rAfter = CArbitratorTestPeer::MotorDecay(*pArb);
    EXPECT_EQ(before.decay_state, rAfter.decay_state);
    EXPECT_EQ(before.preFn, rAfter.preFn);
    EXPECT_EQ(before.sensor_comp, rAfter.sensor_comp);
}
