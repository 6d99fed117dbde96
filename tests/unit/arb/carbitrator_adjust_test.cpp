// Tests of the adjustment order after the table lookup and of the HDR exposure guard against sensor limits.
#include "unit/arb/arbtestsupport.h"

#include <string>
#include <vector>

namespace
{

ExposureSetType MakeSet(FLOAT gain, UINT64 expTime)
{
    ExposureSetType set = {};
    set.gain            = gain;
    set.fnumber         = 1.0F;
    set.expTime         = expTime;
    return set;
}

// Names the adjustment step a core log line comes from; empty for other lines.
std::string StepOf(const std::string& rLine)
{
    if (std::string::npos != rLine.find("Gyro Exposure Control is not enabled."))
    {
        return "gyro";
    }
    if (0U == rLine.rfind("[MLSS]", 0))
    {
        return "decay";
    }
    if (0U == rLine.rfind("[MLS]", 0))
    {
        return "lifesave";
    }
    if ((0U == rLine.rfind(" Input : ", 0)) || (0U == rLine.rfind("cannot apply:", 0)) ||
        (0U == rLine.rfind("warning: could not apply antibanding", 0)))
    {
        return "antibanding";
    }
    return std::string();
}

// The steps that logged, in order, each named once per run of lines.
std::vector<std::string> StepsLogged()
{
    std::vector<std::string> steps;
    for (const std::string& rLine : CoreLogCapture::Lines())
    {
        const std::string step = StepOf(rLine);
        if (!step.empty() && (steps.empty() || (steps.back() != step)))
        {
            steps.push_back(step);
        }
    }
    return steps;
}

class AdjustTest : public ArbitrationTest
{
protected:
    VOID SetUp() override
    {
        ArbitrationTest::SetUp();
        m_pArb = MakeArbitrator(0, TRUE);
        m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
        // A generous session limit, so that every step that runs can act and log.
        ExposureLimitationType& rLimit = CArbitratorTestPeer::Session(*m_pArb).arbExpLimit;
        rLimit.expTime                 = {10000U, 100000000U};
        rLimit.gain                    = {1.0F, 64.0F};
        rLimit.fnumber                 = {1.0F, 1.0F};
    }

    // An iris glide in progress from f/1.0 towards f/2.0, so that motor decay logs each frame it runs.
    VOID StartDecay()
    {
        MotorDecayType& rDecay  = CArbitratorTestPeer::MotorDecay(*m_pArb);
        rDecay.decay_state      = TRUE;
        rDecay.preFn            = 1.0F;
        rDecay.tarFn            = 2.0F;
        rDecay.Fn_magnification = 1.01F;
        rDecay.sensor_comp      = 1.0F;
    }

    VOID SetManualMode(AECAlgoModeType mode)
    {
        CArbitratorTestPeer::Session(*m_pArb).manualSettings.manualMode = mode;
    }

    std::unique_ptr<CArbitrator> m_pArb;
};

// ---- Order of the steps ----

struct OrderCase
{
    AECAlgoModeType          mode;
    BOOL                     antibandingVsISOPrio;
    std::vector<std::string> steps;
};

class SafeAdjustOrderTest : public AdjustTest, public ::testing::WithParamInterface<OrderCase>
{
};

TEST_P(SafeAdjustOrderTest, RunsTheStepsOfTheManualMode)
{
    ArbCore()->ISOData.enableAntiBandingVsISOPrio = GetParam().antibandingVsISOPrio;
    SetManualMode(GetParam().mode);
    StartDecay();
    ExposureSetType set = MakeSet(2.0F, 25000000U);
    CoreLogCapture::Clear();

    m_pArb->ArbitrateExposureAdjusting(&set, AECAlgoExposureSafe, Linear, SHDRAECMODEDEFAULT);

    EXPECT_EQ(GetParam().steps, StepsLogged());
}

const std::vector<std::string> AutoSteps        = {"gyro", "lifesave", "decay", "antibanding"};
const std::vector<std::string> DecayOnly        = {"decay"};
const std::vector<std::string> DecayAntibanding = {"decay", "antibanding"};
const std::vector<std::string> GyroDecayBanding = {"gyro", "decay", "antibanding"};
const std::vector<std::string> DecayGyro        = {"decay", "gyro"};

INSTANTIATE_TEST_SUITE_P(
    ManualModes,
    SafeAdjustOrderTest,
    ::testing::Values(OrderCase{AECAlgoModeAuto, FALSE, AutoSteps},
                      OrderCase{AECAlgoModeManualISO, FALSE, DecayOnly},
                      OrderCase{AECAlgoModeManualISO, TRUE, DecayAntibanding},
                      OrderCase{AECAlgoModeManualGain, FALSE, DecayOnly},
                      OrderCase{AECAlgoModeManualGain, TRUE, DecayAntibanding},
                      OrderCase{AECAlgoModeManualExpTime, TRUE, DecayOnly},
                      OrderCase{AECAlgoModeManualFull, TRUE, DecayOnly},
                      OrderCase{AECAlgoModeManualAperture, TRUE, DecayOnly},
                      OrderCase{AECAlgoModePirisMaxExpPriority, FALSE, GyroDecayBanding},
                      OrderCase{AECAlgoModePASMIris, FALSE, GyroDecayBanding},
                      OrderCase{AECAlgoModePASMISO, FALSE, GyroDecayBanding},
                      OrderCase{AECAlgoModePASMIrisISO, FALSE, GyroDecayBanding},
                      OrderCase{AECAlgoModePASMExpTime, TRUE, DecayGyro},
                      OrderCase{AECAlgoModePASMExpTimeISO, TRUE, DecayGyro},
                      OrderCase{AECAlgoModePASMExpTimeIris, TRUE, DecayGyro},
                      OrderCase{AECAlgoModePASMFullManual, TRUE, DecayGyro},
                      OrderCase{static_cast<AECAlgoModeType>(42), TRUE, DecayOnly}));

TEST_F(AdjustTest, SafeExposureSnapsOnALocalCopyOfTheSessionLimit)
{
    const ExposureLimitationType before = m_pArb->GetLimitation();
    ExposureSetType              set    = MakeSet(2.0F, 25000000U);

    m_pArb->ArbitrateExposureAdjusting(&set, AECAlgoExposureSafe, Linear, SHDRAECMODEDEFAULT);

    EXPECT_EQ(30000000U, set.expTime);
    EXPECT_FLOAT_EQ(static_cast<FLOAT>(25000000U) / static_cast<FLOAT>(30000000U) * 2.0F, set.gain);
    const ExposureLimitationType after = m_pArb->GetLimitation();
    EXPECT_EQ(before.expTime.min, after.expTime.min);
    EXPECT_EQ(before.expTime.max, after.expTime.max);
}

TEST_F(AdjustTest, SafeExposureInThreeFrameStaggeredHDRSnapsAsMiddleExposureOnly)
{
    StartDecay();
    ExposureLimitationType& rMiddle = CArbitratorTestPeer::ShdrExpLimit(*m_pArb)[MEF];
    rMiddle.expTime                 = {10000U, 33000000U};
    ExposureSetType set             = MakeSet(2.0F, 25000000U);
    CoreLogCapture::Clear();

    m_pArb->ArbitrateExposureAdjusting(&set, AECAlgoExposureSafe, HDR, SHDRAECMODEV38YUV3FRAME);

    EXPECT_EQ(30000000U, set.expTime);
    EXPECT_EQ(30000000U, rMiddle.expTime.min);
    EXPECT_EQ(30000000U, rMiddle.expTime.max);
    EXPECT_TRUE(ArbLogContains("[SHDR]anti-banding mode: Hz50"));
    EXPECT_EQ(std::vector<std::string>{"antibanding"}, StepsLogged());
}

TEST_F(AdjustTest, SafeExposureInTwoFrameStaggeredHDRRunsTheNormalSteps)
{
    StartDecay();
    ExposureSetType set = MakeSet(2.0F, 25000000U);
    CoreLogCapture::Clear();

    m_pArb->ArbitrateExposureAdjusting(&set, AECAlgoExposureSafe, HDR, SHDRAECMODEV38YUV2FRAME);

    EXPECT_EQ(AutoSteps, StepsLogged());
    EXPECT_FALSE(ArbLogContains("[SHDR]anti-banding mode"));
}

TEST_F(AdjustTest, LongExposureSnapsAndCapsGainOnTheLongLimit)
{
    ExposureLimitationType& rLong = CArbitratorTestPeer::ShdrExpLimit(*m_pArb)[LEF];
    rLong.expTime                 = {10000U, 33000000U};
    rLong.gain                    = {1.0F, 64.0F};
    const ExposureLimitationType session = m_pArb->GetLimitation();
    ExposureSetType              set     = MakeSet(10.0F, 25000000U);
    CoreLogCapture::Clear();

    m_pArb->ArbitrateExposureAdjusting(&set, AECAlgoExposureLong, HDR, SHDRAECMODEV38YUV3FRAME);

    // Snapped to 30 ms (gain 8.33), then capped at the tuned 8.0 plus the rounding guard.
    const FLOAT capped = static_cast<FLOAT>(8.0 * 1.0001);
    EXPECT_EQ(30000000U, set.expTime);
    EXPECT_EQ(capped, set.gain);
    EXPECT_EQ(30000000U, rLong.expTime.max);
    EXPECT_EQ(capped, rLong.gain.max);
    EXPECT_EQ(session.expTime.max, m_pArb->GetLimitation().expTime.max);
    EXPECT_TRUE(ArbLogContains("[SHDR]anti-banding mode: Hz50"));
    EXPECT_TRUE(ArbLogContains("Apply max gain for LEF"));
    EXPECT_FALSE(ArbLogContains("[MLS"));
    EXPECT_FALSE(ArbLogContains("Gyro Exposure Control"));
}

TEST_F(AdjustTest, ShortExposureRunsLifeSaveDecayAndAntibandingOnTheShortLimit)
{
    // A fixed-iris short-exposure table at f/2.0: life save without an iris takes its first knee's f-number.
    aecShdr::SHDRExposureKneeType knees[2] = {{1.0F, 10000U, 2.0F, aecglobalelements::AECExpIncPrioType{}, 0.0F},
                                              {8.0F, 33000000U, 2.0F, aecglobalelements::AECExpIncPrioType{}, 350.0F}};
    aecShdr::SHDRExposureTableType shortTable = {1.0F, 2U, 0U, knees, 0.95F};
    ASSERT_EQ(AecSuccess, m_pArb->GetExpTable()->SetSHDRExpTable(&shortTable, &shortTable, nullptr));
    ExposureLimitationType& rShort = CArbitratorTestPeer::ShdrExpLimit(*m_pArb)[SEF];
    rShort.expTime                 = {10000U, 33000000U};
    rShort.gain                    = {1.0F, 64.0F};
    rShort.fnumber                 = {1.0F, 16.0F};
    // A glide from f/2.0 towards f/3.0 in progress.
    StartDecay();
    CArbitratorTestPeer::MotorDecay(*m_pArb).preFn = 2.0F;
    CArbitratorTestPeer::MotorDecay(*m_pArb).tarFn = 3.0F;
    ExposureSetType set                            = MakeSet(2.0F, 25000000U);
    CoreLogCapture::Clear();

    m_pArb->ArbitrateExposureAdjusting(&set, AECAlgoExposureShort, HDR, SHDRAECMODEV38YUV3FRAME);

    // Life save (silent for the short exposure) pinned the short limit's f-number at the table's f/2.0; decay
    // then moved on from there by one step, so it ran after life save.
    EXPECT_EQ(2.0F, rShort.fnumber.min);
    EXPECT_EQ(2.0F, rShort.fnumber.max);
    EXPECT_FLOAT_EQ(2.0F * 1.01F, set.fnumber);
    EXPECT_EQ((std::vector<std::string>{"decay", "antibanding"}), StepsLogged());
    // Antibanding with the session half period on the short sensor range.
    EXPECT_EQ(30000000U, set.expTime);
    EXPECT_EQ(30000000U, rShort.expTime.min);
    EXPECT_EQ(30000000U, rShort.expTime.max);
    // The session limit is not the one the short exposure works on.
    EXPECT_NE(30000000U, m_pArb->GetLimitation().expTime.max);
}

TEST_F(AdjustTest, ShortExposureRunsDecayWhileLifeSaveIsSkipped)
{
    // With the iris aborted life save does nothing, and decay adopts the set's f-number.
    CArbitratorTestPeer::IrisIsAborted(*m_pArb)        = 1;
    CArbitratorTestPeer::MotorDecay(*m_pArb).preFn     = 2.0F;
    ExposureSetType set                                = MakeSet(2.0F, 25000000U);

    m_pArb->ArbitrateExposureAdjusting(&set, AECAlgoExposureShort, HDR, SHDRAECMODEV38YUV3FRAME);

    EXPECT_EQ(1.0F, CArbitratorTestPeer::MotorDecay(*m_pArb).preFn);
    EXPECT_EQ(1.0F, set.fnumber);
}

TEST_F(AdjustTest, OtherExposureTypesAreLeftAlone)
{
    StartDecay();
    for (AECAlgoExposureType type : {AECAlgoExposureCount, AECAlgoExposureInvalid})
    {
        const ExposureSetType before = MakeSet(2.0F, 25000000U);
        ExposureSetType       set    = before;
        CoreLogCapture::Clear();

        m_pArb->ArbitrateExposureAdjusting(&set, type, Linear, SHDRAECMODEDEFAULT);

        EXPECT_EQ(before.expTime, set.expTime);
        EXPECT_EQ(before.gain, set.gain);
        EXPECT_TRUE(StepsLogged().empty());
        EXPECT_EQ(TRUE, CArbitratorTestPeer::MotorDecay(*m_pArb).decay_state);
    }
}

// ---- Guard against the sensor's HDR ranges ----

class LimitProtectingTest : public ArbitrationTest
{
protected:
    VOID SetUp() override
    {
        ArbitrationTest::SetUp();
        m_sensorLimits.gain       = {1.0F, 64.0F};
        m_sensorLimits.SEFexpTime = {1000000U, 10000000U};
        m_sensorLimits.LEFexpTime = {1000000U, 33000000U};
        m_sensorLimits.MEFexpTime = {1000000U, 20000000U};
        m_pArb                    = MakeArbitrator(0, TRUE);
    }

    std::unique_ptr<CArbitrator> m_pArb;
};

TEST_F(LimitProtectingTest, ShortExposureAboveItsRangeTradesTimeForGain)
{
    const ExposureSetType in  = MakeSet(2.0F, 30000000U);
    ExposureSetType       out = {};

    m_pArb->ArbitrateExposureLimitProtecting(&in, &out, AECAlgoExposureShort);

    EXPECT_EQ(10000000U, out.expTime);
    EXPECT_FLOAT_EQ(6.0F, out.gain);
    EXPECT_EQ(in.fnumber, out.fnumber);
    EXPECT_TRUE(ArbLogContains("SEF : ExpTime : 10000000 in (1000000, 10000000)  Gain : 6.000000 in (1.000000, 64.000000)"));
}

TEST_F(LimitProtectingTest, LongExposureWithinItsRangeIsKept)
{
    const ExposureSetType in  = MakeSet(2.0F, 30000000U);
    ExposureSetType       out = {};

    m_pArb->ArbitrateExposureLimitProtecting(&in, &out, AECAlgoExposureLong);

    EXPECT_EQ(30000000U, out.expTime);
    EXPECT_EQ(2.0F, out.gain);
    EXPECT_TRUE(ArbLogContains("LEF : ExpTime : 30000000 in (1000000, 33000000)  Gain : 2.000000 in (1.000000, 64.000000)"));
}

TEST_F(LimitProtectingTest, SafeExposureIsGuardedByTheMiddleRange)
{
    const ExposureSetType in  = MakeSet(2.0F, 30000000U);
    ExposureSetType       out = {};

    m_pArb->ArbitrateExposureLimitProtecting(&in, &out, AECAlgoExposureSafe);

    EXPECT_EQ(20000000U, out.expTime);
    EXPECT_FLOAT_EQ(3.0F, out.gain);
    EXPECT_TRUE(ArbLogContains("MEF : ExpTime : 20000000 in (1000000, 20000000)"));
}

TEST_F(LimitProtectingTest, TimeBelowTheRangeRisesAndGainFalls)
{
    const ExposureSetType in  = MakeSet(4.0F, 500000U);
    ExposureSetType       out = {};

    m_pArb->ArbitrateExposureLimitProtecting(&in, &out, AECAlgoExposureShort);

    EXPECT_EQ(1000000U, out.expTime);
    EXPECT_FLOAT_EQ(2.0F, out.gain);
}

TEST_F(LimitProtectingTest, GainIsClampedToTheSensorRangeAfterCompensation)
{
    const ExposureSetType in  = MakeSet(40.0F, 30000000U);
    ExposureSetType       out = {};
    const ExposureSetType low = MakeSet(0.5F, 5000000U);
    ExposureSetType       lowOut = {};

    m_pArb->ArbitrateExposureLimitProtecting(&in, &out, AECAlgoExposureShort);
    m_pArb->ArbitrateExposureLimitProtecting(&low, &lowOut, AECAlgoExposureShort);

    EXPECT_EQ(10000000U, out.expTime);
    EXPECT_EQ(64.0F, out.gain);
    EXPECT_EQ(5000000U, lowOut.expTime);
    EXPECT_EQ(1.0F, lowOut.gain);
}

TEST_F(LimitProtectingTest, ProtectsASetInPlace)
{
    ExposureSetType set = MakeSet(2.0F, 30000000U);

    m_pArb->ArbitrateExposureLimitProtecting(&set, &set, AECAlgoExposureShort);

    EXPECT_EQ(10000000U, set.expTime);
    EXPECT_FLOAT_EQ(6.0F, set.gain);
}

TEST_F(LimitProtectingTest, ZeroRangeMaximumKeepsTheGainUncompensated)
{
    m_sensorLimits.SEFexpTime = {0U, 0U};
    const ExposureSetType in  = MakeSet(2.0F, 30000000U);
    ExposureSetType       out = {};

    m_pArb->ArbitrateExposureLimitProtecting(&in, &out, AECAlgoExposureShort);

    EXPECT_EQ(0U, out.expTime);
    EXPECT_EQ(2.0F, out.gain);
    EXPECT_TRUE(ArbLogContains("SEF : sensor range max 0, gain 2.000000 not compensated"));
}

TEST_F(LimitProtectingTest, OtherExposureTypeCopiesTheSet)
{
    const ExposureSetType in  = MakeSet(200.0F, 90000000U);
    ExposureSetType       out = {};

    m_pArb->ArbitrateExposureLimitProtecting(&in, &out, AECAlgoExposureCount);

    EXPECT_EQ(in.expTime, out.expTime);
    EXPECT_EQ(in.gain, out.gain);
}

TEST_F(LimitProtectingTest, WithoutSensorLimitsTheSetIsCopied)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator(0, FALSE);
    const ExposureSetType        in   = MakeSet(2.0F, 90000000U);
    ExposureSetType              out  = {};

    pArb->ArbitrateExposureLimitProtecting(&in, &out, AECAlgoExposureShort);

    EXPECT_EQ(in.expTime, out.expTime);
    EXPECT_EQ(in.gain, out.gain);
    EXPECT_TRUE(ArbLogContains("no sensor limits, exposure type 0 not protected"));
}

} // namespace
