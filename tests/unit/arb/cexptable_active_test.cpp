// Unit tests of adopting exposure tables and folding the frame-rate and EV limits into the active table.
#include <gtest/gtest.h>

#include "unit/arb/exptabletestsupport.h"

namespace
{

constexpr UINT64 NoFrameRateLimit = 1000000000U;

class ExpTableActiveTest : public ::testing::Test
{
protected:
    const aecArbitration::ExposureTableType& Active() { return *m_expTable.GetExpTable(ActiveTable); }
    const aecArbitration::ExposureKneeType&  ActiveKnee(UINT32 i) { return Active().expKneeEntries[i]; }

    void ExpectActiveKnee(UINT32 i, float gain, UINT64 expTime, float fnumber, float expIndex)
    {
        ASSERT_LT(i, Active().expKneeEntriesCount);
        const aecArbitration::ExposureKneeType& rKnee = ActiveKnee(i);
        EXPECT_NEAR(gain, rKnee.gain, gain * 1e-5F) << "knee " << i;
        EXPECT_NEAR(static_cast<double>(expTime), static_cast<double>(rKnee.expTime), expTime * 1e-4) << "knee " << i;
        EXPECT_EQ(fnumber, rKnee.fnumber) << "knee " << i;
        EXPECT_NEAR(expIndex, rKnee.expIndex, 1e-3F) << "knee " << i;
    }

    // The active table equals the raw one knee for knee.
    void ExpectActiveIsRaw(const ArbTable& rRaw)
    {
        ASSERT_EQ(rRaw.Count(), Active().expKneeEntriesCount);
        for (UINT32 i = 0; i < rRaw.Count(); i++)
        {
            EXPECT_EQ(rRaw.Knee(i).gain, ActiveKnee(i).gain);
            EXPECT_EQ(rRaw.Knee(i).expTime, ActiveKnee(i).expTime);
            EXPECT_EQ(rRaw.Knee(i).fnumber, ActiveKnee(i).fnumber);
            EXPECT_EQ(rRaw.Knee(i).incrementPriority, ActiveKnee(i).incrementPriority);
            EXPECT_EQ(rRaw.Knee(i).expIndex, ActiveKnee(i).expIndex);
        }
    }

    CoreLogCapture m_logs;
    CExpTable      m_expTable;
};

} // namespace

TEST_F(ExpTableActiveTest, ConstructionLeavesNothingActive)
{
    EXPECT_EQ(nullptr, m_expTable.GetExpTable(RawTable));
    EXPECT_EQ(0U, Active().expKneeEntriesCount);
    EXPECT_NE(nullptr, Active().expKneeEntries);
    EXPECT_EQ(0.0F, m_expTable.GetThresAntiBandingMinExpTimePct());
    EXPECT_EQ(0.0F, CExpTableTestPeer::Settings(m_expTable).EV);
    EXPECT_EQ(1024.0F, CExpTableTestPeer::Settings(m_expTable).maxGainForEV);
    EXPECT_EQ(0, CExpTableTestPeer::Settings(m_expTable).enableEVMaxGain);
    for (UINT32 i = 0; i < ShdrExposureTableCount; i++)
    {
        ASSERT_NE(nullptr, m_expTable.GetActiveSHDRExpTable(i));
        EXPECT_NE(nullptr, m_expTable.GetActiveSHDRExpTable(i)->expKneeEntries);
        EXPECT_EQ(0U, m_expTable.GetActiveSHDRExpTable(i)->expKneeEntriesCount);
    }
    EXPECT_EQ(nullptr, m_expTable.GetActiveSHDRExpTable(3U));
}

TEST_F(ExpTableActiveTest, SetExpTableReturnsTheSensitivityScaleOfTheFirstKnee)
{
    ArbTable defaults(DefaultTableKnees(), 2.0F);
    EXPECT_FLOAT_EQ(20080.0F, m_expTable.SetExpTable(defaults.Get()));

    // f/4 at 1 ms: 1e6 / 16.
    ArbTable iris(IrisTableKnees());
    EXPECT_FLOAT_EQ(62500.0F, m_expTable.SetExpTable(iris.Get()));

    // A first knee at index 10 divides by 1.03^10.
    ArbTable shifted({{2.0F, 1000U, 1.0F, GainFirst, 10.0F}, {4.0F, 1000U, 1.0F, GainFirst, 10.0F + IndexOf(2.0)}});
    EXPECT_FLOAT_EQ(2000.0F / std::pow(1.03F, 10.0F), m_expTable.SetExpTable(shifted.Get()));

    // 1.03^-10000 is 0 in single precision; the floor 1e-7 keeps the scale finite.
    ArbTable far({{1.0F, 1000U, 1.0F, GainFirst, -10000.0F}, {2.0F, 1000U, 1.0F, GainFirst, -10000.0F + IndexOf(2.0)}});
    EXPECT_FLOAT_EQ(1000.0F / 1e-7F, m_expTable.SetExpTable(far.Get()));
}

TEST_F(ExpTableActiveTest, SetExpTableRaisesFNumbersInTheTunedRecord)
{
    ArbTable table({{1.0F, 1000U, 0.5F, GainFirst, 0.0F}, {2.0F, 1000U, 0.0F, GainFirst, IndexOf(2.0)}});
    EXPECT_FLOAT_EQ(1000.0F, m_expTable.SetExpTable(table.Get()));
    EXPECT_EQ(1.0F, table.Knee(0).fnumber);
    EXPECT_EQ(1.0F, table.Knee(1).fnumber);
}

TEST_F(ExpTableActiveTest, InvalidTablesAreRefusedAndChangeNothing)
{
    ArbTable valid(StepTableKnees(), 1.0F, 0.5F);
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
    ASSERT_GT(m_expTable.SetExpTable(valid.Get()), 0.0F);

    ArbTable oneKnee({{1.0F, 1000U, 0.0F, GainFirst, 0.0F}});
    ArbTable noKnees({});
    ArbTable noArray(StepTableKnees());
    noArray.Get()->expKneeEntries = nullptr;

    for (aecArbitration::ExposureTableType* pTable : {static_cast<aecArbitration::ExposureTableType*>(nullptr),
                                                      oneKnee.Get(), noKnees.Get(), noArray.Get()})
    {
        EXPECT_EQ(0.0F, m_expTable.SetExpTable(pTable));
    }
    EXPECT_EQ(4U, CoreLogCapture::Count("Invalid exposure table"));
    EXPECT_EQ(0.0F, oneKnee.Knee(0).fnumber) << "a refused table is not written";
    EXPECT_EQ(valid.Get(), m_expTable.GetExpTable(RawTable));
    ExpectActiveIsRaw(valid);
    EXPECT_EQ(0.5F, m_expTable.GetThresAntiBandingMinExpTimePct());
}

TEST_F(ExpTableActiveTest, FiftyKneesKeepThePreviousActiveTableAndStillReturnTheScale)
{
    ArbTable previous(StepTableKnees());
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
    ASSERT_GT(m_expTable.SetExpTable(previous.Get()), 0.0F);

    ArbTable fifty(ManyKnees(50));
    EXPECT_FLOAT_EQ(1000000.0F, m_expTable.SetExpTable(fifty.Get()));
    EXPECT_EQ(1U, CoreLogCapture::Count("ERROR : Number of knees exceeds max number of knees! Max : 50 raw knees 50"));
    EXPECT_EQ(fifty.Get(), m_expTable.GetExpTable(RawTable));
    ExpectActiveIsRaw(previous);

    ArbTable fortyNine(ManyKnees(49));
    EXPECT_FLOAT_EQ(1000000.0F, m_expTable.SetExpTable(fortyNine.Get()));
    ExpectActiveIsRaw(fortyNine);
}

TEST_F(ExpTableActiveTest, RebuildThatWouldExceedFiftyKneesKeepsTheActiveTable)
{
    // Fifty raw knees fit as they are, but a positive EV knee would be the 51st.
    ArbTable fifty(ManyKnees(50));
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
    m_expTable.SetExpTable(fifty.Get());
    ASSERT_EQ(AecSuccess, m_expTable.ApplyActiveTableEVFPSKnees());
    ExpectActiveIsRaw(fifty);

    CoreLogCapture::Clear();
    EXPECT_EQ(AecError, m_expTable.SetParamEV(1.0F, FALSE, 1024.0F, FALSE));
    EXPECT_EQ(1U, CoreLogCapture::Count("ERROR : Number of knees exceeds max number of knees! Max : 50 raw knees 50"));
    EXPECT_EQ(1U, CoreLogCapture::Count("Error Updating Active Exp Table"));
    ExpectActiveIsRaw(fifty);
}

TEST_F(ExpTableActiveTest, FrameRateLimitInsideTheTableEndsItThereAndAddsTheMaximumGain)
{
    ArbTable table(StepTableKnees());
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(20000000U));
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);

    ASSERT_EQ(3U, Active().expKneeEntriesCount);
    ExpectActiveKnee(0, 1.0F, 1000000U, 1.0F, 0.0F);
    ExpectActiveKnee(1, 1.0F, 20000000U, 1.0F, IndexOf(20.0));
    ExpectActiveKnee(2, 16.0F, 20000000U, 1.0F, IndexOf(20.0) + IndexOf(16.0));
    EXPECT_EQ(GainFirst, ActiveKnee(1).incrementPriority);
    EXPECT_EQ(GainFirst, ActiveKnee(2).incrementPriority);

    const ExposureLimitationType limit = m_expTable.GetLimitation();
    EXPECT_EQ(0.0F, limit.expIndex.min);
    EXPECT_EQ(ActiveKnee(2).expIndex, limit.expIndex.max);
    EXPECT_EQ(1000000U, limit.expTime.min);
    EXPECT_EQ(ActiveKnee(2).expTime, limit.expTime.max);
    EXPECT_EQ(1.0F, limit.gain.min);
    EXPECT_EQ(16.0F, limit.gain.max);
    EXPECT_EQ(1.0F, limit.fnumber.min);
    EXPECT_EQ(1.0F, limit.fnumber.max);

    // Above the limit exposure grows through gain at the limit's time.
    ExposureSetType expSet = {};
    expSet.expIndex        = IndexOf(20.0) + IndexOf(4.0);
    ASSERT_EQ(AecSuccess, m_expTable.ExpTableEntryLookUp(ActiveTable, &expSet, AECAlgoExposureSafe,
                                                         SHDRAECMODEDEFAULT));
    EXPECT_NEAR(4.0F, expSet.gain, 1e-4F);
    EXPECT_EQ(ActiveKnee(1).expTime, expSet.expTime);
}

TEST_F(ExpTableActiveTest, FrameRateLimitInATimeSegmentAfterGain)
{
    ArbTable table(StepTableKnees());
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(50000000U));
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);

    const float fpsIndex = table.Knee(2).expIndex + IndexOf(50.0 / 33.0);
    ASSERT_EQ(5U, Active().expKneeEntriesCount);
    ExpectActiveKnee(2, 8.0F, 33000000U, 1.0F, table.Knee(2).expIndex);
    ExpectActiveKnee(3, 8.0F, 50000000U, 1.0F, fpsIndex);
    ExpectActiveKnee(4, 16.0F, ActiveKnee(3).expTime, 1.0F, fpsIndex + IndexOf(2.0));
}

TEST_F(ExpTableActiveTest, FrameRateLimitAtOrAboveTheLastKneeKeepsTheRawTable)
{
    ArbTable table(StepTableKnees(), 1.0F, 0.8F);
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(100000000U));
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);
    ExpectActiveIsRaw(table);
    EXPECT_EQ(0.8F, m_expTable.GetThresAntiBandingMinExpTimePct());
    EXPECT_EQ(table.Knee(3).expIndex, CExpTableTestPeer::FPSKnee(m_expTable).expIndex);

    // Lowering the limit later rebuilds from the raw table.
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(20000000U));
    EXPECT_EQ(3U, Active().expKneeEntriesCount);
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
    ExpectActiveIsRaw(table);
}

TEST_F(ExpTableActiveTest, NoFrameRateLimitSetYetLeavesTheFirstKneeAndTheGainKnee)
{
    // The frame time starts at 0: the frame-rate knee is the first knee.
    ArbTable table(StepTableKnees());
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);
    ASSERT_EQ(2U, Active().expKneeEntriesCount);
    ExpectActiveKnee(0, 1.0F, 1000000U, 1.0F, 0.0F);
    ExpectActiveKnee(1, 16.0F, 1000000U, 1.0F, IndexOf(16.0));
}

TEST_F(ExpTableActiveTest, FrameRateLimitSetBeforeTheTableIsKeptForIt)
{
    EXPECT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(20000000U));
    EXPECT_EQ(20000000U, CExpTableTestPeer::Settings(m_expTable).FPSMaxExpTime);
    EXPECT_EQ(0U, Active().expKneeEntriesCount);

    ArbTable table(StepTableKnees());
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);
    EXPECT_EQ(3U, Active().expKneeEntriesCount);
}

TEST_F(ExpTableActiveTest, EvZeroAppendsNoKnee)
{
    ArbTable table(StepTableKnees());
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);
    ASSERT_EQ(AecSuccess, m_expTable.SetParamEV(0.0F, FALSE, 1024.0F, FALSE));

    EXPECT_EQ(0.0F, CExpTableTestPeer::ExpIndexDelta(m_expTable));
    EXPECT_EQ(CExpTableTestPeer::FPSKnee(m_expTable).expIndex, CExpTableTestPeer::EVKnee(m_expTable).expIndex);
    ExpectActiveIsRaw(table);
}

TEST_F(ExpTableActiveTest, PositiveEvAppendsAKneeWithMoreGain)
{
    ArbTable table(StepTableKnees());
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);
    ASSERT_EQ(AecSuccess, m_expTable.SetParamEV(1.0F, FALSE, 1024.0F, FALSE));

    EXPECT_NEAR(23.449795F, CExpTableTestPeer::ExpIndexDelta(m_expTable), 1e-4F);
    ASSERT_EQ(5U, Active().expKneeEntriesCount);
    ExpectActiveKnee(4, 32.0F, 100000000U, 1.0F, table.Knee(3).expIndex + IndexOf(2.0));
    EXPECT_EQ(32.0F, m_expTable.GetLimitation().gain.max);
}

TEST_F(ExpTableActiveTest, EvGainIsLimitedToMaxGainOverTheFrameRateKneeGain)
{
    ArbTable table(StepTableKnees());
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);

    // 24 / 16 = 1.5 instead of 2.
    ASSERT_EQ(AecSuccess, m_expTable.SetParamEV(1.0F, TRUE, 24.0F, FALSE));
    EXPECT_EQ(IndexOf(1.5), CExpTableTestPeer::ExpIndexDelta(m_expTable));
    ExpectActiveKnee(4, 24.0F, 100000000U, 1.0F, table.Knee(3).expIndex + IndexOf(1.5));

    // Only exactly 1 enables the limit.
    ASSERT_EQ(AecSuccess, m_expTable.SetParamEV(1.0F, 2, 24.0F, FALSE));
    ExpectActiveKnee(4, 32.0F, 100000000U, 1.0F, table.Knee(3).expIndex + IndexOf(2.0));
}

TEST_F(ExpTableActiveTest, NegativeEvIsLookedUpNotScaled)
{
    ArbTable table(StepTableKnees());
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(20000000U));
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);
    ASSERT_EQ(AecSuccess, m_expTable.SetParamEV(-1.0F, FALSE, 1024.0F, FALSE));

    const aecArbitration::ExposureKneeType& rEV = CExpTableTestPeer::EVKnee(m_expTable);
    EXPECT_NEAR(IndexOf(10.0), rEV.expIndex, 1e-3F);
    EXPECT_EQ(1.0F, rEV.gain);
    EXPECT_NEAR(10000000.0, static_cast<double>(rEV.expTime), 1000.0);
    EXPECT_EQ(GainFirst, rEV.incrementPriority);
    EXPECT_EQ(3U, Active().expKneeEntriesCount) << "a knee below the frame-rate knee is not appended";

    // Far below the table the EV knee stops at the first knee.
    ASSERT_EQ(AecSuccess, m_expTable.SetParamEV(-20.0F, FALSE, 1024.0F, FALSE));
    EXPECT_EQ(0.0F, CExpTableTestPeer::EVKnee(m_expTable).expIndex);
    EXPECT_EQ(1000000U, CExpTableTestPeer::EVKnee(m_expTable).expTime);
}

TEST_F(ExpTableActiveTest, PositiveEvUnderAFrameRateLimitIsFollowedByTheGainKnee)
{
    ArbTable table(StepTableKnees());
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(20000000U));
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);
    ASSERT_EQ(AecSuccess, m_expTable.SetParamEV(1.0F, FALSE, 1024.0F, FALSE));

    ASSERT_EQ(4U, Active().expKneeEntriesCount);
    ExpectActiveKnee(1, 1.0F, 20000000U, 1.0F, IndexOf(20.0));
    ExpectActiveKnee(2, 2.0F, 20000000U, 1.0F, IndexOf(20.0) + IndexOf(2.0));
    ExpectActiveKnee(3, 16.0F, 20000000U, 1.0F, IndexOf(20.0) + IndexOf(2.0) + IndexOf(8.0));
}

TEST_F(ExpTableActiveTest, Hdr3EvMovesTheIndexButNotTheGain)
{
    ArbTable table(StepTableKnees());
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);
    ASSERT_EQ(AecSuccess, m_expTable.SetParamEV(1.0F, FALSE, 1024.0F, TRUE));

    ASSERT_EQ(5U, Active().expKneeEntriesCount);
    ExpectActiveKnee(4, 16.0F, 100000000U, 1.0F, table.Knee(3).expIndex + IndexOf(2.0));
}

TEST_F(ExpTableActiveTest, EvSetBeforeTheTableIsStoredAndUsedLater)
{
    EXPECT_EQ(AecError, m_expTable.SetParamEV(1.0F, FALSE, 1024.0F, FALSE));
    EXPECT_EQ(1U, CoreLogCapture::Count("Error Updating EV Knee"));
    EXPECT_EQ(1.0F, CExpTableTestPeer::Settings(m_expTable).EV);

    ArbTable table(StepTableKnees());
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);
    EXPECT_EQ(5U, Active().expKneeEntriesCount);
}

TEST_F(ExpTableActiveTest, RebuildStepsFailWithoutATable)
{
    EXPECT_EQ(AecError, m_expTable.ApplyActiveTableEVFPSKnees());
    EXPECT_EQ(1U, CoreLogCapture::Count("ERROR: ExpTable not initialized"));
    EXPECT_EQ(AecError, m_expTable.UpdateEVKnee());
    EXPECT_EQ(AecError, m_expTable.UpdateFPSKnee());
}

TEST_F(ExpTableActiveTest, GetExpTableGivesRawOrActive)
{
    ArbTable table(StepTableKnees());
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);
    EXPECT_EQ(table.Get(), m_expTable.GetExpTable(RawTable));
    aecArbitration::ExposureTableType* pActive = m_expTable.GetExpTable(ActiveTable);
    EXPECT_NE(table.Get(), pActive);
    for (ExpTableAccessType access : {ActiveSEFTable, ActiveLEFTable, ActiveMEFTable})
    {
        EXPECT_EQ(pActive, m_expTable.GetExpTable(access));
    }
}

TEST_F(ExpTableActiveTest, LargestIndexForATimeSpendsIrisAndLeadingGain)
{
    ArbTable step(StepTableKnees());
    ASSERT_GT(m_expTable.SetExpTable(step.Get()), 0.0F);
    EXPECT_NEAR(IndexOf(20.0), m_expTable.GetMaxExpIndexFromExpTime(20000000U), 1e-4F);
    EXPECT_NEAR(step.Knee(1).expIndex, m_expTable.GetMaxExpIndexFromExpTime(33000000U), 1e-4F);
    EXPECT_NEAR(step.Knee(2).expIndex + IndexOf(50.0 / 33.0), m_expTable.GetMaxExpIndexFromExpTime(50000000U), 1e-4F);
    EXPECT_EQ(step.Knee(3).expIndex, m_expTable.GetMaxExpIndexFromExpTime(100000000U));
    EXPECT_EQ(step.Knee(3).expIndex, m_expTable.GetMaxExpIndexFromExpTime(NoFrameRateLimit));
    EXPECT_NEAR(IndexOf(0.5), m_expTable.GetMaxExpIndexFromExpTime(500000U), 1e-4F);

    // Gain first from 10 ms: at 20 ms the whole gain (4x) is spent as well.
    ArbTable gainFirst({{1.0F, 10000000U, 1.0F, GainFirst, 0.0F}, {4.0F, 40000000U, 1.0F, GainFirst, IndexOf(16.0)}});
    ASSERT_GT(m_expTable.SetExpTable(gainFirst.Get()), 0.0F);
    EXPECT_NEAR(IndexOf(8.0), m_expTable.GetMaxExpIndexFromExpTime(20000000U), 1e-4F);

    // Iris f/4 to f/2 with time 1 ms to 10 ms: at 5 ms the iris (4x) is spent.
    ArbTable iris({{1.0F, 1000000U, 4.0F, TimeFirst, 0.0F}, {1.0F, 10000000U, 2.0F, GainFirst, IndexOf(40.0)},
                   {2.0F, 10000000U, 2.0F, GainFirst, IndexOf(80.0)}});
    ASSERT_GT(m_expTable.SetExpTable(iris.Get()), 0.0F);
    EXPECT_NEAR(IndexOf(20.0), m_expTable.GetMaxExpIndexFromExpTime(5000000U), 1e-4F);
}

TEST_F(ExpTableActiveTest, SmallestIndexForATimeSpendsLeadingGainButNoIris)
{
    ArbTable step(StepTableKnees());
    ASSERT_GT(m_expTable.SetExpTable(step.Get()), 0.0F);
    EXPECT_EQ(0.0F, m_expTable.GetMinExpIndexFromExpTime(500000U));
    EXPECT_EQ(0.0F, m_expTable.GetMinExpIndexFromExpTime(1000000U));
    EXPECT_EQ(step.Knee(3).expIndex, m_expTable.GetMinExpIndexFromExpTime(200000000U));
    EXPECT_NEAR(IndexOf(20.0), m_expTable.GetMinExpIndexFromExpTime(20000000U), 1e-4F);
    EXPECT_NEAR(step.Knee(2).expIndex, m_expTable.GetMinExpIndexFromExpTime(33000000U), 1e-4F);
    EXPECT_NEAR(step.Knee(2).expIndex + IndexOf(50.0 / 33.0), m_expTable.GetMinExpIndexFromExpTime(50000000U), 1e-4F);

    ArbTable gainFirst({{1.0F, 10000000U, 1.0F, GainFirst, 0.0F}, {4.0F, 40000000U, 1.0F, GainFirst, IndexOf(16.0)}});
    ASSERT_GT(m_expTable.SetExpTable(gainFirst.Get()), 0.0F);
    EXPECT_NEAR(IndexOf(8.0), m_expTable.GetMinExpIndexFromExpTime(20000000U), 1e-4F);

    ArbTable iris({{1.0F, 1000000U, 4.0F, TimeFirst, 0.0F}, {1.0F, 10000000U, 2.0F, GainFirst, IndexOf(40.0)},
                   {2.0F, 10000000U, 2.0F, GainFirst, IndexOf(80.0)}});
    ASSERT_GT(m_expTable.SetExpTable(iris.Get()), 0.0F);
    EXPECT_NEAR(IndexOf(5.0), m_expTable.GetMinExpIndexFromExpTime(5000000U), 1e-4F);
}

TEST_F(ExpTableActiveTest, IndexForATimeIsZeroWithoutATable)
{
    EXPECT_EQ(0.0F, m_expTable.GetMaxExpIndexFromExpTime(20000000U));
    EXPECT_EQ(0.0F, m_expTable.GetMinExpIndexFromExpTime(20000000U));
}

TEST_F(ExpTableActiveTest, ZeroTimeFirstKneeGivesAFiniteLargestIndex)
{
    ArbTable table({{1.0F, 0U, 1.0F, TimeFirst, 0.0F}, {1.0F, 10000U, 1.0F, GainFirst, 10.0F}});
    m_expTable.SetExpTable(table.Get());
    EXPECT_TRUE(std::isfinite(m_expTable.GetMaxExpIndexFromExpTime(5000U)));
}
