// Tests of antibanding: snapping safe, short, long and middle exposure to the flicker or IR period, the long
// exposure's gain cap and the longest banding-free shutter.
#include "unit/arb/arbtestsupport.h"

#include <cmath>

namespace
{

constexpr UINT64 Period50Hz = 10000000U;
constexpr UINT64 Period60Hz = 8333333U;
constexpr UINT64 Blanking   = 200800U; // minPreviewVertBlankTime of the default tuning

ExposureSetType MakeSet(FLOAT gain, UINT64 expTime)
{
    ExposureSetType set = {};
    set.gain            = gain;
    set.fnumber         = 1.0F;
    set.expTime         = expTime;
    return set;
}

ExposureLimitationType MakeLimit(UINT64 minTime, UINT64 maxTime, FLOAT minGain, FLOAT maxGain)
{
    ExposureLimitationType limit = {};
    limit.expTime                = {minTime, maxTime};
    limit.gain                   = {minGain, maxGain};
    limit.fnumber                = {1.0F, 1.0F};
    return limit;
}

// The gain that keeps time x gain when the time moves from 'from' to 'to', as the arbitrator computes it.
FLOAT MovedGain(UINT64 from, UINT64 to, FLOAT gain)
{
    return static_cast<FLOAT>(from) / static_cast<FLOAT>(to) * gain;
}

class AntibandingTest : public ArbitrationTest
{
protected:
    VOID SetUp() override
    {
        ArbitrationTest::SetUp();
        m_pArb = MakeArbitrator(0, TRUE);
    }

    VOID ExpectUnchanged(const ExposureSetType& rBefore, const ExposureSetType& rAfter)
    {
        EXPECT_EQ(rBefore.expTime, rAfter.expTime);
        EXPECT_FLOAT_EQ(rBefore.gain, rAfter.gain);
    }

    VOID EnterIRMode(FLOAT PWMFrequency)
    {
        m_history[1].IRModeActivated = 1U;
        m_PWMFrequency               = PWMFrequency;
    }

    std::unique_ptr<CArbitrator> m_pArb;
    // Frame limit of 39.9 ms: 40 ms lies within it only with the blanking added.
    ExposureLimitationType m_limit = MakeLimit(10000U, 39900000U, 1.0F, 64.0F);
};

// ---- Safe exposure ----

TEST_F(AntibandingTest, TimeBelowOnePeriodMovesUpToOnePeriodWithGainLowered)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(4.0F, 9800000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    EXPECT_EQ(Period50Hz, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(9800000U, Period50Hz, 4.0F), set.gain);
    EXPECT_LT(set.gain, 4.0F);
    EXPECT_EQ(Period50Hz, m_limit.expTime.min);
    EXPECT_EQ(Period50Hz, m_limit.expTime.max);
    EXPECT_TRUE(ArbLogContains(" Input : 4.000000 9800000 ; Output"));
}

TEST_F(AntibandingTest, TimeBelowOnePeriodIsKeptWhenTheLoweredGainFallsBelowTheMinimum)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    const ExposureSetType before = MakeSet(1.0F, 9800000U);
    ExposureSetType       set    = before;

    m_pArb->processAntibandingAdjust(&set, m_limit);

    ExpectUnchanged(before, set);
    EXPECT_TRUE(ArbLogContains("warning: could not apply antibanding"));
    // Only the blanking the frame reserved was added to the local limit before the candidates were rejected.
    EXPECT_EQ(10000U, m_limit.expTime.min);
    EXPECT_EQ(39900000U + Blanking, m_limit.expTime.max);
}

TEST_F(AntibandingTest, TimeUnderTheThresholdPercentageOfAPeriodIsLeftAlone)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    // The default table's threshold is 0.95 of a period: 9.5 ms at 50 Hz.
    const ExposureSetType before = MakeSet(2.0F, 9500000U);
    ExposureSetType       set    = before;
    const ExposureLimitationType limitBefore = m_limit;

    m_pArb->processAntibandingAdjust(&set, m_limit);

    ExpectUnchanged(before, set);
    EXPECT_EQ(limitBefore.expTime.max, m_limit.expTime.max);
    EXPECT_TRUE(ArbLogContains("cannot apply: curr exp time 9500000 smaller than flicker period 10000000 * tuning pct 0.95"));
}

TEST_F(AntibandingTest, ExactMultipleKeepsTimeAndGain)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(2.0F, 20000000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    EXPECT_EQ(20000000U, set.expTime);
    EXPECT_EQ(2.0F, set.gain);
    EXPECT_EQ(20000000U, m_limit.expTime.min);
    EXPECT_EQ(20000000U, m_limit.expTime.max);
}

TEST_F(AntibandingTest, TimeMidwayBetweenMultiplesGoesUp)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(2.0F, 25000000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    EXPECT_EQ(30000000U, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(25000000U, 30000000U, 2.0F), set.gain);
}

TEST_F(AntibandingTest, TimeNearerTheLowerMultipleGoesDown)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(2.0F, 22000000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    EXPECT_EQ(20000000U, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(22000000U, 20000000U, 2.0F), set.gain);
}

TEST_F(AntibandingTest, LegacyMethodSpendsTheBlankingOnTheHigherMultiple)
{
    ArbCore()->antibandingVsFPSMethod = aecglobalelements::LegacyAllowFPSToDrop;
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(2.0F, 36000000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    // 40 ms is above the 39.9 ms frame limit but within it plus the blanking.
    EXPECT_EQ(40000000U, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(36000000U, 40000000U, 2.0F), set.gain);
}

TEST_F(AntibandingTest, StrictlyEnforcedFrameRateRejectsAMultipleBeyondTheFrameLimit)
{
    ArbCore()->antibandingVsFPSMethod = aecglobalelements::StrictlyEnforceFPS;
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(2.0F, 36000000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    // 40 ms is nearer but no blanking was added, so only 30 ms is admissible.
    EXPECT_EQ(30000000U, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(36000000U, 30000000U, 2.0F), set.gain);
    EXPECT_EQ(30000000U, m_limit.expTime.max);
}

TEST_F(AntibandingTest, MaximizeExposureTimeReplacesAMultipleAboveTheFrameLimitByTheLimit)
{
    ArbCore()->antibandingVsFPSMethod = aecglobalelements::MaximizeExposureTime;
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(2.0F, 36000000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    EXPECT_EQ(39900000U, set.expTime);
    EXPECT_FLOAT_EQ(static_cast<FLOAT>(36000000U) * 2.0F / static_cast<FLOAT>(39900000U), set.gain);
    EXPECT_EQ(39900000U, m_limit.expTime.min);
    EXPECT_EQ(39900000U, m_limit.expTime.max);
}

TEST_F(AntibandingTest, MaximizeExposureTimeKeepsAMultipleWithinTheFrameLimit)
{
    ArbCore()->antibandingVsFPSMethod = aecglobalelements::MaximizeExposureTime;
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(2.0F, 26000000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    EXPECT_EQ(30000000U, set.expTime);
}

TEST_F(AntibandingTest, NoAdmissibleCandidateKeepsTheSet)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    // 30 ms needs gain 66 and 40 ms lies beyond the limit even with blanking.
    m_limit                      = MakeLimit(10000U, 35000000U, 1.0F, 64.0F);
    const ExposureSetType before = MakeSet(60.0F, 33000000U);
    ExposureSetType       set    = before;

    m_pArb->processAntibandingAdjust(&set, m_limit);

    ExpectUnchanged(before, set);
    EXPECT_TRUE(ArbLogContains("warning: could not apply antibanding"));
}

TEST_F(AntibandingTest, FrameLimitShorterThanOnePeriodLeavesTheSet)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    m_limit                      = MakeLimit(10000U, 9000000U, 1.0F, 64.0F);
    const ExposureSetType before = MakeSet(2.0F, 8000000U);
    ExposureSetType       set    = before;

    m_pArb->processAntibandingAdjust(&set, m_limit);

    ExpectUnchanged(before, set);
    EXPECT_EQ(9000000U, m_limit.expTime.max);
    EXPECT_TRUE(ArbLogContains("cannot apply: limit.expTime.max 9000000 is less than banding period"));
}

TEST_F(AntibandingTest, SixtyHertzSnapsToItsHalfPeriod)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding60Hz);
    ExposureSetType set = MakeSet(2.0F, 20000000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    // 16.67 ms is 3.3 ms away, 25 ms is 5 ms away.
    EXPECT_EQ(2U * Period60Hz, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(20000000U, 2U * Period60Hz, 2.0F), set.gain);
}

TEST_F(AntibandingTest, AntibandingOffLeavesTheSafeExposure)
{
    m_pArb->SetFlcikerMode(StatisticsAntibandingOff);
    const ExposureSetType before = MakeSet(2.0F, 25000000U);
    ExposureSetType       set    = before;

    m_pArb->processAntibandingAdjust(&set, m_limit);

    ExpectUnchanged(before, set);
    EXPECT_EQ(39900000U, m_limit.expTime.max);
}

TEST_F(AntibandingTest, IRModeSnapsToThePWMPeriodEvenWithAntibandingOff)
{
    m_pArb->SetFlcikerMode(StatisticsAntibandingOff);
    EnterIRMode(50.0F);
    ExposureSetType set = MakeSet(2.0F, 25000000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    EXPECT_EQ(20000000U, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(25000000U, 20000000U, 2.0F), set.gain);
    EXPECT_TRUE(ArbLogContains("IR mode turns on, PWM period: 20000000"));
}

TEST_F(AntibandingTest, PWMPeriodIsRoundedFromTheSinglePrecisionReciprocal)
{
    EnterIRMode(60.0F);
    ExposureSetType set = MakeSet(2.0F, 30000000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    // 1 / 60 in single precision is 0.016666668, so the period is 16666668 ns rather than 16666667.
    EXPECT_TRUE(ArbLogContains("IR mode turns on, PWM period: 16666668"));
    EXPECT_EQ(2U * 16666668U, set.expTime);
}

TEST_F(AntibandingTest, IRModeWithoutAValidPWMFrequencyLeavesTheSet)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    // Zero, negative, not a number, and so low that the period overflows the time type.
    for (FLOAT frequency : {0.0F, -50.0F, std::nanf(""), 1e-20F})
    {
        EnterIRMode(frequency);
        const ExposureSetType before = MakeSet(2.0F, 25000000U);
        ExposureSetType       set    = before;
        CoreLogCapture::Clear();

        m_pArb->processAntibandingAdjust(&set, m_limit);

        ExpectUnchanged(before, set);
        EXPECT_TRUE(ArbLogContains("cannot apply: PWM period is invalid")) << frequency;
        EXPECT_TRUE(ArbLogContains("IR mode turns on, PWM period: 0")) << frequency;
    }
}

TEST_F(AntibandingTest, MissingFrameHistoryMeansNoIRMode)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    EnterIRMode(50.0F);
    m_hasHistory        = FALSE;
    ExposureSetType set = MakeSet(2.0F, 25000000U);

    m_pArb->processAntibandingAdjust(&set, m_limit);

    EXPECT_EQ(30000000U, set.expTime);
    EXPECT_FALSE(ArbLogContains("IR mode turns on"));
}

TEST_F(AntibandingTest, MissingTuningLeavesTheSet)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    m_pTuning->arbTuningData.pCore = nullptr;
    const ExposureSetType before   = MakeSet(2.0F, 25000000U);
    ExposureSetType       set      = before;

    m_pArb->processAntibandingAdjust(&set, m_limit);

    ExpectUnchanged(before, set);
    EXPECT_TRUE(ArbLogContains("cannot apply: no arbitration tuning"));
}

TEST_F(AntibandingTest, UnresolvedModeWithoutHalfPeriodLeavesTheSet)
{
    CArbitratorTestPeer::Session(*m_pArb).flickerMode       = StatisticsAntibandingAuto;
    CArbitratorTestPeer::Session(*m_pArb).flickerHalfPeriod = 0U;
    const ExposureSetType before = MakeSet(2.0F, 25000000U);
    ExposureSetType       set    = before;

    m_pArb->processAntibandingAdjust(&set, m_limit);
    m_pArb->processAntibandingSEFAdjust(&set, m_limit);

    ExpectUnchanged(before, set);
    EXPECT_EQ(2U, CoreLogCapture::CountContaining("cannot apply: flicker half period is 0"));
}

// ---- Short, long and middle exposure ----

TEST_F(AntibandingTest, LongExposureTakesTheMultipleAtOrAboveItsTime)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(2.0F, 25000000U);

    m_pArb->processAntibandingLEFAdjust(&set, m_limit);

    EXPECT_EQ(30000000U, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(25000000U, 30000000U, 2.0F), set.gain);
    EXPECT_EQ(30000000U, m_limit.expTime.min);
    EXPECT_EQ(30000000U, m_limit.expTime.max);
    EXPECT_TRUE(ArbLogContains("[SHDR]anti-banding mode: Hz50"));
}

TEST_F(AntibandingTest, LongExposureWalkStopsBelowTheSensorMaximum)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    // Sensor long range ends at 33 ms: 30 ms is the highest multiple that fits.
    ExposureSetType set = MakeSet(2.0F, 45000000U);

    m_pArb->processAntibandingLEFAdjust(&set, m_limit);

    EXPECT_EQ(30000000U, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(45000000U, 30000000U, 2.0F), set.gain);
}

TEST_F(AntibandingTest, LongExposureWithGainNearUnityUsesTheLowerMultiple)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(1.1F, 25000000U);

    m_pArb->processAntibandingLEFAdjust(&set, m_limit);

    // 30 ms would need gain 0.92; 20 ms needs 1.375.
    EXPECT_EQ(20000000U, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(25000000U, 20000000U, 1.1F), set.gain);
    EXPECT_FALSE(ArbLogContains("skip antibanding due to gain too small"));
}

TEST_F(AntibandingTest, LongExposureGainBelowUnityOnBothMultiplesStillSnapsDown)
{
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(0.7F, 25000000U);

    m_pArb->processAntibandingLEFAdjust(&set, m_limit);

    EXPECT_EQ(20000000U, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(25000000U, 20000000U, 0.7F), set.gain);
    EXPECT_TRUE(ArbLogContains("skip antibanding due to gain too small"));
}

TEST_F(AntibandingTest, LongExposureSensorRangeShorterThanOnePeriodLeavesTheSet)
{
    m_sensorLimits.LEFexpTime.max = 9000000U;
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    const ExposureSetType before = MakeSet(2.0F, 25000000U);
    ExposureSetType       set    = before;

    m_pArb->processAntibandingLEFAdjust(&set, m_limit);

    ExpectUnchanged(before, set);
    EXPECT_TRUE(ArbLogContains("cannot apply: limit.expTime.max 9000000 is less than banding period"));
}

TEST_F(AntibandingTest, LongExposureSensorRangeOfExactlyOnePeriodSnapsToIt)
{
    m_sensorLimits.LEFexpTime.max = Period50Hz;
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(2.0F, 25000000U);

    m_pArb->processAntibandingLEFAdjust(&set, m_limit);

    EXPECT_EQ(Period50Hz, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(25000000U, Period50Hz, 2.0F), set.gain);
}

TEST_F(AntibandingTest, LongExposureMapsAutoStatesItself)
{
    // The session half period stays at 60 Hz; the long form maps the auto 50 Hz state to 10 ms on its own.
    m_pArb->SetFlcikerMode(StatisticsAntibanding60Hz);
    m_pArb->SetFlcikerMode(StatisticsAntibandingAuto_50HZ);
    ExposureSetType longSet  = MakeSet(2.0F, 25000000U);
    ExposureSetType shortSet = MakeSet(2.0F, 25000000U);
    ExposureLimitationType shortLimit = m_limit;

    m_pArb->processAntibandingLEFAdjust(&longSet, m_limit);
    m_pArb->processAntibandingSEFAdjust(&shortSet, shortLimit);

    EXPECT_EQ(30000000U, longSet.expTime);
    EXPECT_EQ(3U * Period60Hz, shortSet.expTime);
}

TEST_F(AntibandingTest, LongExposureAutoSixtyHertzState)
{
    m_pArb->SetFlcikerMode(StatisticsAntibandingAuto_60HZ);
    ExposureSetType set = MakeSet(2.0F, 20000000U);

    m_pArb->processAntibandingLEFAdjust(&set, m_limit);

    EXPECT_EQ(3U * Period60Hz, set.expTime);
    EXPECT_TRUE(ArbLogContains("[SHDR]anti-banding mode: Hz60"));
}

struct SkippedMode
{
    StatisticsAntibanding mode;
    const char*           pLog;
};

class LongExposureSkippedModeTest : public AntibandingTest, public ::testing::WithParamInterface<SkippedMode>
{
};

TEST_P(LongExposureSkippedModeTest, LeavesLongAndMiddleExposure)
{
    m_pArb->SetFlcikerMode(GetParam().mode);
    const ExposureSetType before = MakeSet(2.0F, 25000000U);
    ExposureSetType       longSet = before;
    ExposureSetType       midSet  = before;

    m_pArb->processAntibandingLEFAdjust(&longSet, m_limit);
    m_pArb->processAntibandingMEFAdjust(&midSet, m_limit);

    ExpectUnchanged(before, longSet);
    ExpectUnchanged(before, midSet);
    EXPECT_EQ(2U, CoreLogCapture::Count(GetParam().pLog));
}

INSTANTIATE_TEST_SUITE_P(
    Modes,
    LongExposureSkippedModeTest,
    ::testing::Values(SkippedMode{StatisticsAntibandingOff, "skip antibanding due to mode selection"},
                      SkippedMode{StatisticsAntibandingInvalid, "skip antibanding due to Invalid antibanding mode"},
                      SkippedMode{StatisticsAntibandingAuto,
                                  "skip antibanding due to Invalid antibanding mode, banding mode: 3"}));

TEST_F(AntibandingTest, MiddleExposureUsesTheMiddleSensorRange)
{
    m_sensorLimits.MEFexpTime.max = 25000000U;
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType        midSet   = MakeSet(2.0F, 35000000U);
    ExposureSetType        longSet  = MakeSet(2.0F, 35000000U);
    ExposureLimitationType midLimit = m_limit;

    m_pArb->processAntibandingMEFAdjust(&midSet, midLimit);
    m_pArb->processAntibandingLEFAdjust(&longSet, m_limit);

    EXPECT_EQ(20000000U, midSet.expTime);
    EXPECT_EQ(20000000U, midLimit.expTime.max);
    EXPECT_EQ(30000000U, longSet.expTime);
}

TEST_F(AntibandingTest, ShortExposureUsesTheShortSensorRange)
{
    m_sensorLimits.SEFexpTime.max = 15000000U;
    m_pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    ExposureSetType set = MakeSet(2.0F, 25000000U);

    m_pArb->processAntibandingSEFAdjust(&set, m_limit);

    EXPECT_EQ(Period50Hz, set.expTime);
    EXPECT_FLOAT_EQ(MovedGain(25000000U, Period50Hz, 2.0F), set.gain);
}

TEST_F(AntibandingTest, ShortExposureWithAntibandingOffIsLeftAndLogged)
{
    m_pArb->SetFlcikerMode(StatisticsAntibandingOff);
    const ExposureSetType before = MakeSet(2.0F, 25000000U);
    ExposureSetType       set    = before;

    m_pArb->processAntibandingSEFAdjust(&set, m_limit);

    ExpectUnchanged(before, set);
    EXPECT_TRUE(ArbLogContains("StatisticsAntibandingOff"));
}

TEST_F(AntibandingTest, ShortAndLongExposureSnapToThePWMPeriodInIRMode)
{
    m_pArb->SetFlcikerMode(StatisticsAntibandingOff);
    EnterIRMode(100.0F);
    ExposureSetType        shortSet   = MakeSet(2.0F, 25000000U);
    ExposureSetType        longSet    = MakeSet(2.0F, 25000000U);
    ExposureLimitationType shortLimit = m_limit;

    m_pArb->processAntibandingSEFAdjust(&shortSet, shortLimit);
    m_pArb->processAntibandingLEFAdjust(&longSet, m_limit);

    EXPECT_EQ(30000000U, shortSet.expTime);
    EXPECT_EQ(30000000U, longSet.expTime);
    EXPECT_FALSE(ArbLogContains("skip antibanding due to mode selection"));
}

TEST_F(AntibandingTest, HDRFormsWithoutSensorLimitsLeaveTheSet)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator(0, FALSE);
    pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    const ExposureSetType before = MakeSet(2.0F, 25000000U);
    ExposureSetType       set    = before;

    pArb->processAntibandingSEFAdjust(&set, m_limit);
    pArb->processAntibandingLEFAdjust(&set, m_limit);
    pArb->processAntibandingMEFAdjust(&set, m_limit);

    ExpectUnchanged(before, set);
    EXPECT_EQ(3U, CoreLogCapture::CountContaining("cannot apply: no sensor limits"));
}

// ---- Long exposure gain cap ----

TEST_F(AntibandingTest, LongExposureGainAboveTheTunedMaximumIsCappedSlightlyAboveIt)
{
    // Default LEFMaxGain is 8.0.
    ExposureSetType set = MakeSet(10.0F, 30000000U);

    m_pArb->processLEFMaxGainAdjust(&set, m_limit);

    const FLOAT capped = static_cast<FLOAT>(8.0 * 1.0001);
    EXPECT_EQ(capped, set.gain);
    EXPECT_GT(set.gain, 8.0F);
    EXPECT_EQ(capped, m_limit.gain.min);
    EXPECT_EQ(capped, m_limit.gain.max);
    EXPECT_EQ(30000000U, set.expTime);
    EXPECT_TRUE(ArbLogContains("Apply max gain for LEF 8.000000 DelDecimalError 8.000800"));
}

TEST_F(AntibandingTest, LongExposureGainAtOrBelowTheTunedMaximumIsKept)
{
    ExposureSetType atMax   = MakeSet(8.0F, 30000000U);
    ExposureSetType belowMax = MakeSet(7.0F, 30000000U);

    m_pArb->processLEFMaxGainAdjust(&atMax, m_limit);
    m_pArb->processLEFMaxGainAdjust(&belowMax, m_limit);

    EXPECT_EQ(8.0F, atMax.gain);
    EXPECT_EQ(7.0F, belowMax.gain);
    EXPECT_EQ(64.0F, m_limit.gain.max);
    EXPECT_FALSE(ArbLogContains("Apply max gain for LEF"));
}

TEST_F(AntibandingTest, LongExposureGainCapWithoutHDRTuningLeavesTheSet)
{
    m_pTuning->mtrTuningData.pShdr = nullptr;
    ExposureSetType set            = MakeSet(10.0F, 30000000U);

    m_pArb->processLEFMaxGainAdjust(&set, m_limit);

    EXPECT_EQ(10.0F, set.gain);
    EXPECT_TRUE(ArbLogContains("cannot apply max gain for LEF"));
}

// ---- Longest banding-free shutter ----

struct ShutterCase
{
    StatisticsAntibanding mode;
    UINT64                longMax;
    UINT64                expected;
};

class MaxBandingShutterTest : public AntibandingTest, public ::testing::WithParamInterface<ShutterCase>
{
};

TEST_P(MaxBandingShutterTest, FollowsThePublishedLongExposureLimit)
{
    m_flickerMode                                  = GetParam().mode;
    m_published.exposureLimitation.LEFexpTime.max = GetParam().longMax;

    EXPECT_EQ(GetParam().expected, m_pArb->getMaxBandingShutter());
}

INSTANTIATE_TEST_SUITE_P(
    Modes,
    MaxBandingShutterTest,
    ::testing::Values(ShutterCase{StatisticsAntibanding50Hz, 33000000U, 30000000U},
                      ShutterCase{StatisticsAntibandingAuto_50HZ, 33000000U, 30000000U},
                      ShutterCase{StatisticsAntibanding50Hz, 40000000U, 40000000U},
                      ShutterCase{StatisticsAntibanding50Hz, 5000000U, Period50Hz},
                      ShutterCase{StatisticsAntibanding60Hz, 33000000U, 3U * Period60Hz},
                      ShutterCase{StatisticsAntibandingAuto_60HZ, 33400000U, 4U * Period60Hz},
                      ShutterCase{StatisticsAntibandingAuto_60HZ, 5000000U, Period60Hz},
                      ShutterCase{StatisticsAntibandingOff, 33000000U, 33000000U},
                      ShutterCase{StatisticsAntibandingAuto, 33000000U, 33000000U},
                      ShutterCase{StatisticsAntibandingInvalid, 33000000U, 33000000U}));

TEST_F(AntibandingTest, MaxBandingShutterWithoutPublishedLimitIsZero)
{
    EXPECT_CALL(m_context, getExposureLimitation()).WillRepeatedly(::testing::Return(nullptr));
    m_flickerMode = StatisticsAntibanding50Hz;

    EXPECT_EQ(0U, m_pArb->getMaxBandingShutter());
    EXPECT_TRUE(ArbLogContains("no published exposure limitation"));
}

} // namespace
