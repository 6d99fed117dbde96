// Tests of the neighbour exposures: shorter ones spend gain before time, longer ones gain up to the maximum first.
#include "unit/arb/carbitrator_exposure_testsupport.h"

namespace
{

class ArbitratorNeighbourTest : public ArbitratorExposureTest
{
protected:
    VOID SetUp() override
    {
        ArbitratorExposureTest::SetUp();
        m_pArb = MakeOpenArbitrator();
    }

    ExposureLimitationType& Limit() { return CArbitratorTestPeer::Session(*m_pArb).arbExpLimit; }

    static ExposureSetType Reference(FLOAT gain, UINT64 time, FLOAT expIndex)
    {
        return ExposureSetType{gain, 1.0F, time, expIndex};
    }

    std::unique_ptr<CArbitrator> m_pArb;
};

// Exactly one stop in index units, and the ratio the arbitrator derives from it.
const FLOAT OneStop      = ExpIndexDeltaFromRatio(2.0);
const FLOAT OneStopRatio = powf(ExpIndexBase, OneStop);

TEST_F(ArbitratorNeighbourTest, ZeroOrNegativeDeltaCopiesTheReference)
{
    ExposureSetType ref = Reference(4.0F, 20000000U, 300.0F);
    for (FLOAT delta : {0.0F, -5.0F})
    {
        ExposureSetType shortSet  = {};
        ExposureSetType middleSet = {};
        ExposureSetType safeSet   = {};
        ExposureSetType longSet   = {};
        m_pArb->ArbitrateShortExposure(delta, &shortSet, &ref);
        m_pArb->ArbitrateMiddleExposure(delta, &middleSet, &ref);
        m_pArb->ArbitrateSafeExposureHDR3(delta, &safeSet, &ref);
        m_pArb->ArbitrateLongExposure(delta, &longSet, &ref);
        for (const ExposureSetType& rSet : {shortSet, middleSet, safeSet, longSet})
        {
            EXPECT_FLOAT_EQ(ref.gain, rSet.gain);
            EXPECT_EQ(ref.expTime, rSet.expTime);
            EXPECT_FLOAT_EQ(ref.fnumber, rSet.fnumber);
            EXPECT_FLOAT_EQ(ref.expIndex, rSet.expIndex);
        }
    }
}

TEST_F(ArbitratorNeighbourTest, ShortSpendsGainFirstAndKeepsTheTime)
{
    ExposureSetType ref = Reference(4.0F, 20000000U, 300.0F);
    ExposureSetType out = {};
    m_pArb->ArbitrateShortExposure(OneStop, &out, &ref);

    EXPECT_FLOAT_EQ(4.0F / OneStopRatio, out.gain);
    EXPECT_NEAR(2.0F, out.gain, 1e-4F);
    EXPECT_EQ(20000000U, out.expTime);
    EXPECT_FLOAT_EQ(300.0F - OneStop, out.expIndex);
    EXPECT_FLOAT_EQ(1.0F, out.fnumber);
}

TEST_F(ArbitratorNeighbourTest, ShortSpendsTimeOnceGainReachesTheMinimum)
{
    // Three stops below a set with gain 2: one stop from gain (down to 1.0), two from time (20 ms to 5 ms).
    ExposureSetType ref = Reference(2.0F, 20000000U, 300.0F);
    ExposureSetType out = {};
    const FLOAT     d   = ExpIndexDeltaFromRatio(8.0);
    m_pArb->ArbitrateShortExposure(d, &out, &ref);

    const FLOAT r = powf(ExpIndexBase, d);
    EXPECT_FLOAT_EQ(1.0F, out.gain);
    EXPECT_EQ(static_cast<UINT64>(20000000.0F / (r / 2.0F)), out.expTime);
    EXPECT_NEAR(5000000.0, static_cast<DOUBLE>(out.expTime), 100.0);
    EXPECT_FLOAT_EQ(300.0F - d, out.expIndex);
}

TEST_F(ArbitratorNeighbourTest, ShortStopsAtTheTableMinimumIndex)
{
    ExposureSetType ref = Reference(1.0F, 1000000U, 10.0F);
    ExposureSetType out = {};
    m_pArb->ArbitrateShortExposure(50.0F, &out, &ref);

    // Only the 10 index units down to the limit are spent.
    EXPECT_FLOAT_EQ(Limit().expIndex.min, out.expIndex);
    EXPECT_FLOAT_EQ(0.0F, out.expIndex);
    EXPECT_EQ(static_cast<UINT64>(1000000.0F / powf(ExpIndexBase, 10.0F)), out.expTime);
    EXPECT_FLOAT_EQ(1.0F, out.gain);
}

TEST_F(ArbitratorNeighbourTest, ShortGainFloorIsTheLimitMinimumAndTimeStaysWhenOnlyTheFloorIsReached)
{
    Limit().gain.min    = 2.0F;
    ExposureSetType ref = Reference(4.0F, 20000000U, 300.0F);
    ExposureSetType out = {};
    m_pArb->ArbitrateShortExposure(ExpIndexDeltaFromRatio(4.0), &out, &ref);

    // g / r is 1.0, below the floor 2.0; r / g is about 1.0, also below the floor, so the time is not touched.
    EXPECT_FLOAT_EQ(2.0F, out.gain);
    EXPECT_EQ(20000000U, out.expTime);
}

TEST_F(ArbitratorNeighbourTest, MiddleNeverGoesBelowUnityGainWhileShortFollowsTheLimit)
{
    Limit().gain.min    = 0.5F;
    ExposureSetType ref = Reference(1.0F, 20000000U, 300.0F);
    ExposureSetType shortSet  = {};
    ExposureSetType middleSet = {};
    m_pArb->ArbitrateShortExposure(OneStop, &shortSet, &ref);
    m_pArb->ArbitrateMiddleExposure(OneStop, &middleSet, &ref);

    // The short rule divides the time by r / g whenever that exceeds the floor, so below unity both shrink.
    EXPECT_FLOAT_EQ(0.5F, shortSet.gain);
    EXPECT_EQ(static_cast<UINT64>(20000000.0F / OneStopRatio), shortSet.expTime);

    EXPECT_FLOAT_EQ(1.0F, middleSet.gain);
    EXPECT_EQ(static_cast<UINT64>(20000000.0F / OneStopRatio), middleSet.expTime);
    EXPECT_FLOAT_EQ(300.0F - OneStop, middleSet.expIndex);
}

TEST_F(ArbitratorNeighbourTest, SafeBelowLongInThreeExposureHDRFollowsTheMiddleRule)
{
    ExposureSetType ref     = Reference(2.0F, 20000000U, 350.0F);
    ExposureSetType middle  = {};
    ExposureSetType safeSet = {};
    const FLOAT     d       = ExpIndexDeltaFromRatio(8.0);
    m_pArb->ArbitrateMiddleExposure(d, &middle, &ref);
    m_pArb->ArbitrateSafeExposureHDR3(d, &safeSet, &ref);

    EXPECT_FLOAT_EQ(1.0F, safeSet.gain);
    EXPECT_EQ(static_cast<UINT64>(20000000.0F / (powf(ExpIndexBase, d) / 2.0F)), safeSet.expTime);
    EXPECT_FLOAT_EQ(350.0F - d, safeSet.expIndex);
    EXPECT_FLOAT_EQ(middle.gain, safeSet.gain);
    EXPECT_EQ(middle.expTime, safeSet.expTime);
}

TEST_F(ArbitratorNeighbourTest, LongSpendsGainBelowTheMaximumAndKeepsTheTime)
{
    ExposureSetType ref = Reference(2.0F, 20000000U, 300.0F);
    ExposureSetType out = {};
    const FLOAT     d   = ExpIndexDeltaFromRatio(4.0);
    m_pArb->ArbitrateLongExposure(d, &out, &ref);

    EXPECT_FLOAT_EQ(2.0F * powf(ExpIndexBase, d), out.gain);
    EXPECT_NEAR(8.0F, out.gain, 1e-3F);
    EXPECT_EQ(20000000U, out.expTime);
    EXPECT_FLOAT_EQ(300.0F + d, out.expIndex);
}

TEST_F(ArbitratorNeighbourTest, LongSpendsGainUpToTheMaximumThenTime)
{
    // Gain 30 and two stops: the gain stops at 60, the other stop lengthens the time from 20 ms to 40 ms.
    ASSERT_FLOAT_EQ(60.0F, Limit().gain.max);
    ExposureSetType ref = Reference(30.0F, 20000000U, 300.0F);
    ExposureSetType out = {};
    const FLOAT     d   = ExpIndexDeltaFromRatio(4.0);
    m_pArb->ArbitrateLongExposure(d, &out, &ref);

    const FLOAT r = powf(ExpIndexBase, d);
    EXPECT_FLOAT_EQ(60.0F, out.gain);
    EXPECT_EQ(static_cast<UINT64>(20000000.0F * (30.0F * r / 60.0F)), out.expTime);
    EXPECT_NEAR(40000000.0, static_cast<DOUBLE>(out.expTime), 200.0);
}

TEST_F(ArbitratorNeighbourTest, LongStopsAtTheTableMaximumIndex)
{
    ExposureSetType ref = Reference(2.0F, 20000000U, 440.0F);
    ExposureSetType out = {};
    m_pArb->ArbitrateLongExposure(50.0F, &out, &ref);

    EXPECT_FLOAT_EQ(Limit().expIndex.max, out.expIndex);
    EXPECT_FLOAT_EQ(2.0F * powf(ExpIndexBase, Limit().expIndex.max - 440.0F), out.gain);
}

TEST_F(ArbitratorNeighbourTest, LongWithoutGainRangeKeepsTheReferenceAndLogs)
{
    Limit().gain.max    = 0.0F;
    ExposureSetType ref = Reference(2.0F, 20000000U, 300.0F);
    ExposureSetType out = {};
    m_pArb->ArbitrateLongExposure(OneStop, &out, &ref);

    EXPECT_FLOAT_EQ(2.0F, out.gain);
    EXPECT_EQ(20000000U, out.expTime);
    EXPECT_FLOAT_EQ(300.0F, out.expIndex);
    EXPECT_TRUE(ArbLogContains("longer exposure kept at the reference"));
}

TEST_F(ArbitratorNeighbourTest, ShortOfAReferenceWithoutGainKeepsTheReferenceAndLogs)
{
    ExposureSetType ref = Reference(0.0F, 20000000U, 300.0F);
    ExposureSetType out = {};
    m_pArb->ArbitrateShortExposure(OneStop, &out, &ref);

    EXPECT_EQ(20000000U, out.expTime);
    EXPECT_FLOAT_EQ(300.0F, out.expIndex);
    EXPECT_TRUE(ArbLogContains("shorter exposure kept at the reference"));
}

TEST_F(ArbitratorNeighbourTest, MissingSetsAreRefusedWithALog)
{
    ExposureSetType ref = Reference(2.0F, 20000000U, 300.0F);
    m_pArb->ArbitrateShortExposure(OneStop, nullptr, &ref);
    m_pArb->ArbitrateLongExposure(OneStop, &ref, nullptr);
    EXPECT_EQ(2U, CoreLogCapture::CountContaining("Invalid argument: out"));
    EXPECT_FLOAT_EQ(2.0F, ref.gain);
}

} // namespace
