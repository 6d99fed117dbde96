// Unit tests of the gyro exposure control: the sample buffer, the two-level trigger lookup and the time-for-gain trade.
#include <cmath>

#include "unit/arb/arbtestsupport.h"

namespace
{

class ArbGyroTest : public ArbitrationTest
{
protected:
    VOID SetUp() override
    {
        ArbitrationTest::SetUp();
        m_pArb = MakeArbitrator();
        m_pArb->SetParamFPSRange(1.0F);
    }

    ParamExtGyroExpCtrl& Gyro() { return m_pTuning->arbTuningData.extGyroExpCtrl; }

    // Gyro control with one zone per level covering everything; the trigger data is the target exposure time.
    VOID EnableSingleZone(FLOAT targetTime)
    {
        ParamExtGyroExpCtrl& rGyro       = Gyro();
        rGyro.enableGyroExpCtrl         = TRUE;
        rGyro.movingAvgFilterLength     = 4;
        rGyro.keyLevel2ZoneType         = GyroExpCtrlKeyCurExpTimeType;
        rGyro.triggerDataType           = GyroExpCtrlTriggerDataTargetExpTimeType;
        rGyro.numOfKeyLevel1TriggerZone = 1;
        rGyro.numOfKeyLevel2TriggerZone = 1;
        rGyro.keyLevel1TriggerZone[0]   = {0.0F, 100.0F};
        rGyro.keyLevel2TriggerZone[0]   = {0.0F, 1e9F};
        rGyro.triggerData[0][0]         = targetTime;
    }

    // Two zones per level, levels 1 [0, 1] and [2, 3], level 2 [0, 10] and [20, 30]; data 1 2 / 3 4.
    VOID SetTwoByTwoZones()
    {
        ParamExtGyroExpCtrl& rGyro       = Gyro();
        rGyro.numOfKeyLevel1TriggerZone = 2;
        rGyro.numOfKeyLevel2TriggerZone = 2;
        rGyro.keyLevel1TriggerZone[0]   = {0.0F, 1.0F};
        rGyro.keyLevel1TriggerZone[1]   = {2.0F, 3.0F};
        rGyro.keyLevel2TriggerZone[0]   = {0.0F, 10.0F};
        rGyro.keyLevel2TriggerZone[1]   = {20.0F, 30.0F};
        rGyro.triggerData[0][0]         = 1.0F;
        rGyro.triggerData[0][1]         = 2.0F;
        rGyro.triggerData[1][0]         = 3.0F;
        rGyro.triggerData[1][1]         = 4.0F;
    }

    // One frame of gyro samples; sample 0 is never taken.
    VOID FeedSamples(UINT16 count, FLOAT x, FLOAT y, FLOAT z)
    {
        m_gyro         = StatsGyroInfo{};
        m_gyro.enabled = TRUE;
        m_gyro.sampleCount = count;
        for (UINT16 i = 0; (i < count) && (i < AECORE_MAX_GYRO_SAMPLES); i++)
        {
            m_gyro.pAngularVelocityX[i] = x;
            m_gyro.pAngularVelocityY[i] = y;
            m_gyro.pAngularVelocityZ[i] = z;
            m_gyro.timeStamp[i]         = 1000U + (500U * i);
        }
        m_pArb->SetGyroInfo(&m_gyro);
    }

    static ExposureSetType Set(FLOAT gain, UINT64 expTime)
    {
        ExposureSetType set = {};
        set.gain            = gain;
        set.fnumber         = 1.0F;
        set.expTime         = expTime;
        return set;
    }

    std::unique_ptr<CArbitrator> m_pArb;
};

} // namespace

// ---- Buffer ----

TEST_F(ArbGyroTest, SamplesGoToTheFrontAsMagnitudesWithoutSampleZero)
{
    m_gyro             = StatsGyroInfo{};
    m_gyro.enabled     = TRUE;
    m_gyro.sampleCount = 4;
    const FLOAT values[4] = {9.0F, -1.0F, 2.0F, -3.0F};
    for (UINT32 i = 0; i < 4U; i++)
    {
        m_gyro.pAngularVelocityX[i] = values[i];
        m_gyro.pAngularVelocityY[i] = 2.0F * values[i];
        m_gyro.pAngularVelocityZ[i] = -values[i];
        m_gyro.timeStamp[i]         = 1000U + (250U * i);
    }
    m_pArb->SetGyroInfo(&m_gyro);

    const GyroInfoType& rBuffer = CArbitratorTestPeer::Gyro(*m_pArb);
    EXPECT_EQ(3, rBuffer.bufferCounter);
    // Taken from the last sample down to sample 1, each pushed to the front.
    EXPECT_EQ(1.0F, rBuffer.x[0]);
    EXPECT_EQ(2.0F, rBuffer.x[1]);
    EXPECT_EQ(3.0F, rBuffer.x[2]);
    EXPECT_EQ(0.0F, rBuffer.x[3]);
    EXPECT_EQ(2.0F, rBuffer.y[0]);
    EXPECT_EQ(6.0F, rBuffer.y[2]);
    EXPECT_EQ(1.0F, rBuffer.z[0]);
    EXPECT_EQ(3.0F, rBuffer.z[2]);
    EXPECT_EQ(750.0F, rBuffer.timeDuration);

    // The next frame pushes the older ones back.
    FeedSamples(2, 5.0F, 0.0F, 0.0F);
    EXPECT_EQ(4, rBuffer.bufferCounter);
    EXPECT_EQ(5.0F, rBuffer.x[0]);
    EXPECT_EQ(1.0F, rBuffer.x[1]);
    EXPECT_EQ(3.0F, rBuffer.x[3]);
}

TEST_F(ArbGyroTest, BufferHoldsAtMostThreeHundredSamples)
{
    for (UINT32 frame = 0; frame < 11U; frame++)
    {
        FeedSamples(AECORE_MAX_GYRO_SAMPLES, static_cast<FLOAT>(frame), 0.0F, 0.0F);
    }
    const GyroInfoType& rBuffer = CArbitratorTestPeer::Gyro(*m_pArb);
    EXPECT_EQ(300, rBuffer.bufferCounter);
    EXPECT_EQ(10.0F, rBuffer.x[0]);
    EXPECT_EQ(1.0F, rBuffer.x[299]);
}

TEST_F(ArbGyroTest, DisabledGyroClearsTheValuesButKeepsTheBuffer)
{
    FeedSamples(3, 1.0F, 1.0F, 1.0F);
    GyroInfoType& rBuffer = CArbitratorTestPeer::Gyro(*m_pArb);
    rBuffer.gyroVal       = 5.0F;

    m_gyro.enabled = FALSE;
    m_pArb->SetGyroInfo(&m_gyro);
    EXPECT_EQ(0.0F, rBuffer.gyroVal);
    EXPECT_EQ(0.0F, rBuffer.timeDuration);
    EXPECT_EQ(2, rBuffer.bufferCounter);
    EXPECT_EQ(1.0F, rBuffer.x[0]);
}

TEST_F(ArbGyroTest, SampleCountAboveTheRecordIsCut)
{
    FeedSamples(AECORE_MAX_GYRO_SAMPLES + 10, 1.0F, 0.0F, 0.0F);
    EXPECT_EQ(static_cast<INT32>(AECORE_MAX_GYRO_SAMPLES - 1), CArbitratorTestPeer::Gyro(*m_pArb).bufferCounter);
    EXPECT_TRUE(ArbLogContains("Gyro sample count 42 above 32"));
}

TEST_F(ArbGyroTest, NullGyroInfoIsRefused)
{
    m_pArb->SetGyroInfo(nullptr);
    EXPECT_EQ(0, CArbitratorTestPeer::Gyro(*m_pArb).bufferCounter);
    EXPECT_TRUE(ArbLogContains("Gyro info is NULL"));
}

TEST_F(ArbGyroTest, LuxIndexIsStored)
{
    m_pArb->SetLuxIndex(321.5F);
    EXPECT_EQ(321.5F, CArbitratorTestPeer::LuxIdx(*m_pArb));
}

// ---- Lookup ----

TEST_F(ArbGyroTest, KeysInsideAZoneGiveItsTriggerData)
{
    SetTwoByTwoZones();
    EXPECT_EQ(1.0F, m_pArb->GyroExposureControlLUT(0.5F, 5.0F, &Gyro()));
    EXPECT_EQ(2.0F, m_pArb->GyroExposureControlLUT(0.5F, 25.0F, &Gyro()));
    EXPECT_EQ(3.0F, m_pArb->GyroExposureControlLUT(2.5F, 5.0F, &Gyro()));
    EXPECT_EQ(4.0F, m_pArb->GyroExposureControlLUT(2.5F, 25.0F, &Gyro()));
    EXPECT_TRUE(ArbLogContains("keyLevel1 0.500000, keyLevel2 5.000000, outTriggerData 1.000000"));
}

TEST_F(ArbGyroTest, KeysOutsideAllZonesGiveTheNearestZone)
{
    SetTwoByTwoZones();
    EXPECT_EQ(1.0F, m_pArb->GyroExposureControlLUT(-1.0F, -5.0F, &Gyro()));
    EXPECT_EQ(4.0F, m_pArb->GyroExposureControlLUT(10.0F, 50.0F, &Gyro()));
}

TEST_F(ArbGyroTest, KeyInALevelOneGapIsInterpolated)
{
    SetTwoByTwoZones();
    // Halfway between the end of zone 0 (1) and the start of zone 1 (2).
    EXPECT_FLOAT_EQ(2.0F, m_pArb->GyroExposureControlLUT(1.5F, 5.0F, &Gyro()));
    EXPECT_FLOAT_EQ(1.5F, m_pArb->GyroExposureControlLUT(1.25F, 5.0F, &Gyro()));
}

TEST_F(ArbGyroTest, KeysInGapsOfBothLevelsAreInterpolatedInBoth)
{
    SetTwoByTwoZones();
    // Level 2 halfway: 1.5 on row 0, 3.5 on row 1; level 1 halfway between them.
    EXPECT_FLOAT_EQ(2.5F, m_pArb->GyroExposureControlLUT(1.5F, 15.0F, &Gyro()));
    EXPECT_FLOAT_EQ(1.5F, m_pArb->GyroExposureControlLUT(0.5F, 15.0F, &Gyro()));
}

TEST_F(ArbGyroTest, KeyInALevelOneOverlapBlendsOverBothZones)
{
    SetTwoByTwoZones();
    Gyro().keyLevel1TriggerZone[0] = {0.0F, 2.0F};
    Gyro().keyLevel1TriggerZone[1] = {1.0F, 3.0F};
    // lo = zone 1 (ends at 3), hi = zone 0 (starts at 0): from 1 at 0 to 3 at 3.
    EXPECT_FLOAT_EQ(2.0F, m_pArb->GyroExposureControlLUT(1.5F, 5.0F, &Gyro()));
    EXPECT_FLOAT_EQ(1.0F + (2.0F * 1.2F / 3.0F), m_pArb->GyroExposureControlLUT(1.2F, 5.0F, &Gyro()));
}

TEST_F(ArbGyroTest, KeyInALevelTwoOverlapBlendsOverBothZones)
{
    SetTwoByTwoZones();
    Gyro().keyLevel2TriggerZone[0] = {0.0F, 20.0F};
    Gyro().keyLevel2TriggerZone[1] = {10.0F, 30.0F};
    // lo = zone 1 (ends at 30), hi = zone 0 (starts at 0): weight of zone 1 is 15 / 30.
    EXPECT_FLOAT_EQ(1.5F, m_pArb->GyroExposureControlLUT(0.5F, 15.0F, &Gyro()));
    EXPECT_FLOAT_EQ(0.4F * 2.0F + 0.6F * 1.0F, m_pArb->GyroExposureControlLUT(0.5F, 12.0F, &Gyro()));
}

TEST_F(ArbGyroTest, InvalidZoneCountsGiveNoTriggerData)
{
    SetTwoByTwoZones();
    Gyro().numOfKeyLevel2TriggerZone = 0;
    EXPECT_EQ(0.0F, m_pArb->GyroExposureControlLUT(0.5F, 5.0F, &Gyro()));
    Gyro().numOfKeyLevel2TriggerZone = 2;
    Gyro().numOfKeyLevel1TriggerZone = 9;
    EXPECT_EQ(0.0F, m_pArb->GyroExposureControlLUT(0.5F, 5.0F, &Gyro()));
    EXPECT_TRUE(ArbLogContains("Gyro trigger zones not valid (9, 2)"));
}

// ---- Exposure ----

TEST_F(ArbGyroTest, DisabledControlLeavesTheSet)
{
    EnableSingleZone(10000000.0F);
    Gyro().enableGyroExpCtrl = FALSE;
    FeedSamples(3, 1.0F, 0.0F, 0.0F);
    ExposureSetType set = Set(2.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    EXPECT_EQ(2.0F, set.gain);
    EXPECT_EQ(40000000U, set.expTime);
    EXPECT_TRUE(ArbLogContains("Gyro Exposure Control is not enabled."));
}

TEST_F(ArbGyroTest, ShakeTradesTimeForGainAtConstantExposure)
{
    EnableSingleZone(10000000.0F);
    FeedSamples(3, 1.0F, 0.5F, 0.25F);
    ExposureSetType set = Set(2.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    EXPECT_EQ(10000000U, set.expTime);
    EXPECT_FLOAT_EQ(8.0F, set.gain);
    EXPECT_FLOAT_EQ(2.0F * 40000000.0F, set.gain * static_cast<FLOAT>(set.expTime));
    EXPECT_FLOAT_EQ(1.75F, CArbitratorTestPeer::Gyro(*m_pArb).gyroVal);
    EXPECT_TRUE(ArbLogContains("Input: 2.000000 40000000, Output: 8.000000 10000000"));
    EXPECT_TRUE(ArbLogContains("Gyro AEC: gyro orig 1.750000 filtered 1.750000, tuned [10000000, 8.000000], curr "
                               "[40000000, 2.000000]"));
}

TEST_F(ArbGyroTest, FewerSamplesThanTheFilterAverageWhatThereIs)
{
    EnableSingleZone(10000000.0F);
    Gyro().movingAvgFilterLength = 10;
    FeedSamples(2, 4.0F, 0.0F, 0.0F);
    FeedSamples(3, 1.0F, 0.0F, 0.0F);
    ExposureSetType set = Set(2.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    // Three samples: 1, 1, 4.
    EXPECT_FLOAT_EQ(2.0F, CArbitratorTestPeer::Gyro(*m_pArb).gyroVal);
}

TEST_F(ArbGyroTest, FilterAveragesOnlyTheNewestSamples)
{
    EnableSingleZone(10000000.0F);
    Gyro().movingAvgFilterLength = 2;
    FeedSamples(3, 4.0F, 0.0F, 0.0F);
    FeedSamples(2, 1.0F, 0.0F, 0.0F);
    ExposureSetType set = Set(2.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    EXPECT_FLOAT_EQ(2.5F, CArbitratorTestPeer::Gyro(*m_pArb).gyroVal);
}

TEST_F(ArbGyroTest, NoSamplesGiveNaNAndLeaveTheSet)
{
    EnableSingleZone(10000000.0F);
    ExposureSetType set = Set(2.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    EXPECT_TRUE(std::isnan(CArbitratorTestPeer::Gyro(*m_pArb).gyroVal));
    EXPECT_EQ(2.0F, set.gain);
    EXPECT_EQ(40000000U, set.expTime);
}

TEST_F(ArbGyroTest, RatioTriggerDataScalesTheCurrentTime)
{
    EnableSingleZone(0.25F);
    Gyro().triggerDataType = GyroExpCtrlTriggerDataAdjRatioType;
    FeedSamples(3, 1.0F, 0.0F, 0.0F);
    ExposureSetType set = Set(2.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    EXPECT_EQ(10000000U, set.expTime);
    EXPECT_FLOAT_EQ(8.0F, set.gain);
}

TEST_F(ArbGyroTest, LuxIndexCanBeTheSecondKey)
{
    EnableSingleZone(0.0F);
    ParamExtGyroExpCtrl& rGyro       = Gyro();
    rGyro.keyLevel2ZoneType         = GyroExpCtrlKeyLuxIndexType;
    rGyro.numOfKeyLevel2TriggerZone = 2;
    rGyro.keyLevel2TriggerZone[0]   = {0.0F, 100.0F};
    rGyro.keyLevel2TriggerZone[1]   = {200.0F, 500.0F};
    rGyro.triggerData[0][0]         = 20000000.0F;
    rGyro.triggerData[0][1]         = 10000000.0F;
    FeedSamples(3, 1.0F, 0.0F, 0.0F);

    m_pArb->SetLuxIndex(300.0F);
    ExposureSetType set = Set(2.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    EXPECT_EQ(10000000U, set.expTime);

    m_pArb->SetLuxIndex(50.0F);
    set = Set(2.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    EXPECT_EQ(20000000U, set.expTime);
}

TEST_F(ArbGyroTest, UnknownKeyOrDataTypeLeavesTheSet)
{
    EnableSingleZone(10000000.0F);
    FeedSamples(3, 1.0F, 0.0F, 0.0F);
    Gyro().keyLevel2ZoneType = static_cast<GyroExpCtrlKeyLevel2ZoneType>(7);
    ExposureSetType set      = Set(2.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    EXPECT_EQ(40000000U, set.expTime);
    EXPECT_TRUE(ArbLogContains("No Matched Level 2 Key Type"));

    Gyro().keyLevel2ZoneType = GyroExpCtrlKeyCurExpTimeType;
    Gyro().triggerDataType   = static_cast<GyroExpCtrlTriggerDataType>(7);
    m_pArb->processGyroBasedExposureAdjust(&set);
    EXPECT_EQ(40000000U, set.expTime);
    EXPECT_EQ(2.0F, set.gain);
    EXPECT_TRUE(ArbLogContains("No Matched Trigger Data Type"));
}

TEST_F(ArbGyroTest, TunedTimeBelowOneNanosecondLeavesTheSet)
{
    EnableSingleZone(0.5F);
    FeedSamples(3, 1.0F, 0.0F, 0.0F);
    ExposureSetType set = Set(2.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    EXPECT_EQ(2.0F, set.gain);
    EXPECT_EQ(40000000U, set.expTime);
}

TEST_F(ArbGyroTest, TunedTimeNeedingTooMuchGainStopsAtTheMaximumGain)
{
    // 1 ms would need gain 80, above the table's 60.
    EnableSingleZone(1000000.0F);
    FeedSamples(3, 1.0F, 0.0F, 0.0F);
    ExposureSetType set = Set(2.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    EXPECT_FLOAT_EQ(60.0F, set.gain);
    EXPECT_EQ(static_cast<UINT64>(80000000.0F / 60.0F), set.expTime);
    EXPECT_NEAR(80000000.0F, set.gain * static_cast<FLOAT>(set.expTime), 100.0F);
}

TEST_F(ArbGyroTest, TunedTimeAboveTheLimitStopsAtTheLongestTime)
{
    EnableSingleZone(200000000.0F);
    FeedSamples(3, 1.0F, 0.0F, 0.0F);
    ExposureSetType set = Set(4.0F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    // The trade works in single precision: the longest time is the limit's as a float.
    const FLOAT longest = static_cast<FLOAT>(CArbitratorTestPeer::Session(*m_pArb).arbExpLimit.expTime.max);
    EXPECT_EQ(static_cast<UINT64>(longest), set.expTime);
    EXPECT_FLOAT_EQ(160000000.0F / longest, set.gain);
}

TEST_F(ArbGyroTest, TunedTimeNeedingLessThanTheMinimumGainStopsAtTheMinimumGain)
{
    EnableSingleZone(70000000.0F);
    FeedSamples(3, 1.0F, 0.0F, 0.0F);
    ExposureSetType set = Set(1.5F, 40000000U);
    m_pArb->processGyroBasedExposureAdjust(&set);
    // 70 ms would need gain 0.857: time grows only until gain reaches 1.
    EXPECT_EQ(60000000U, set.expTime);
    EXPECT_FLOAT_EQ(1.0F, set.gain);
}
