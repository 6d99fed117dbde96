// Unit tests of the staggered-HDR exposure tables: adoption, validation, limitations.
#include <gtest/gtest.h>

#include "unit/arb/exptabletestsupport.h"

namespace
{

std::vector<KneeValues> ShortKnees()
{
    return {{1.0F, 100000U, 0.0F, TimeFirst, 0.0F}, {2.0F, 1000000U, 0.5F, GainFirst, IndexOf(20.0)}};
}

std::vector<KneeValues> LongKnees()
{
    return {{1.0F, 1000000U, 2.0F, TimeFirst, 10.0F},
            {1.0F, 10000000U, 2.0F, GainFirst, 10.0F + IndexOf(10.0)},
            {8.0F, 10000000U, 1.4F, GainFirst, 10.0F + IndexOf(80.0 * 4.0 / 1.96)}};
}

class ExpTableShdrTest : public ::testing::Test
{
protected:
    const aecShdr::SHDRExposureTableType& Active(UINT32 type) { return *m_expTable.GetActiveSHDRExpTable(type); }

    template <typename TableT>
    void ExpectCopied(const ShdrTable& rSource, const TableT& rActive)
    {
        ASSERT_EQ(rSource.Count(), rActive.expKneeEntriesCount);
        for (UINT32 i = 0; i < rActive.expKneeEntriesCount; i++)
        {
            EXPECT_EQ(rSource.Knee(i).gain, rActive.expKneeEntries[i].gain);
            EXPECT_EQ(rSource.Knee(i).expTime, rActive.expKneeEntries[i].expTime);
            EXPECT_EQ(rSource.Knee(i).fnumber < 1.0F ? 1.0F : rSource.Knee(i).fnumber, rActive.expKneeEntries[i].fnumber);
            EXPECT_EQ(rSource.Knee(i).incrementPriority, rActive.expKneeEntries[i].incrementPriority);
            EXPECT_EQ(rSource.Knee(i).expIndex, rActive.expKneeEntries[i].expIndex);
        }
    }

    CoreLogCapture m_logs;
    CExpTable      m_expTable;
    ShdrTable      m_sef{ShortKnees(), 1.5F, 0.25F};
    ShdrTable      m_lef{LongKnees(), 2.5F, 0.75F};
    ShdrTable      m_mef{StepTableKnees(), 3.5F, 0.5F};
};

} // namespace

TEST_F(ExpTableShdrTest, TwoTablesAreCopiedAndTheMiddleOneIsCleared)
{
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(m_sef.Get(), m_lef.Get(), m_mef.Get()));
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(m_sef.Get(), m_lef.Get(), nullptr));

    ExpectCopied(m_sef, Active(SEF));
    ExpectCopied(m_lef, Active(LEF));
    EXPECT_EQ(1.5F, Active(SEF).sensitivityCorrectionFactor);
    EXPECT_EQ(0.25F, Active(SEF).thresAntiBandingMinExpTimePct);
    EXPECT_EQ(2.5F, Active(LEF).sensitivityCorrectionFactor);
    EXPECT_EQ(0.75F, Active(LEF).thresAntiBandingMinExpTimePct);

    EXPECT_EQ(0U, Active(MEF).expKneeEntriesCount);
    EXPECT_EQ(0.0F, Active(MEF).sensitivityCorrectionFactor);
    EXPECT_EQ(0.0F, Active(MEF).thresAntiBandingMinExpTimePct);
    ASSERT_NE(nullptr, Active(MEF).expKneeEntries) << "the header keeps its knee array";
    EXPECT_EQ(0U, Active(MEF).expKneeEntries[0].expTime);
    EXPECT_EQ(0.0F, Active(MEF).expKneeEntries[3].expIndex);
    const ExposureLimitationType mefLimit = m_expTable.GetSHDRLimitation(MEF);
    EXPECT_EQ(0U, mefLimit.expTime.max);
    EXPECT_EQ(0.0F, mefLimit.gain.max);
}

TEST_F(ExpTableShdrTest, ThreeTablesAreCopied)
{
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(m_sef.Get(), m_lef.Get(), m_mef.Get()));
    ExpectCopied(m_sef, Active(SEF));
    ExpectCopied(m_lef, Active(LEF));
    ExpectCopied(m_mef, Active(MEF));
    EXPECT_EQ(3.5F, Active(MEF).sensitivityCorrectionFactor);
}

TEST_F(ExpTableShdrTest, FNumbersAreRaisedInTheActiveCopyOnly)
{
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(m_sef.Get(), m_lef.Get(), nullptr));
    EXPECT_EQ(1.0F, Active(SEF).expKneeEntries[0].fnumber);
    EXPECT_EQ(1.0F, Active(SEF).expKneeEntries[1].fnumber);
    EXPECT_EQ(0.0F, m_sef.Knee(0).fnumber);
    EXPECT_EQ(0.5F, m_sef.Knee(1).fnumber);
}

TEST_F(ExpTableShdrTest, EachTableGetsItsOwnLimitation)
{
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(m_sef.Get(), m_lef.Get(), m_mef.Get()));

    const ExposureLimitationType lef = m_expTable.GetSHDRLimitation(LEF);
    EXPECT_EQ(10.0F, lef.expIndex.min);
    EXPECT_EQ(m_lef.Knee(2).expIndex, lef.expIndex.max);
    EXPECT_EQ(1.0F, lef.gain.min);
    EXPECT_EQ(8.0F, lef.gain.max);
    EXPECT_EQ(1.4F, lef.fnumber.min);
    EXPECT_EQ(2.0F, lef.fnumber.max);
    EXPECT_EQ(1000000U, lef.expTime.min);
    EXPECT_EQ(10000000U, lef.expTime.max);

    const ExposureLimitationType sef = m_expTable.GetSHDRLimitation(SEF);
    EXPECT_EQ(1.0F, sef.fnumber.min) << "from the raised f-numbers";
    EXPECT_EQ(1.0F, sef.fnumber.max);
    EXPECT_EQ(100000U, sef.expTime.min);
    EXPECT_EQ(1000000U, sef.expTime.max);

    EXPECT_EQ(16.0F, m_expTable.GetSHDRLimitation(MEF).gain.max);
}

TEST_F(ExpTableShdrTest, AFaultyTableIsNamedAndNothingChanges)
{
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(m_sef.Get(), m_lef.Get(), m_mef.Get()));

    ShdrTable oneKnee({{1.0F, 1000U, 1.0F, GainFirst, 0.0F}});
    ShdrTable noArray(StepTableKnees());
    noArray.Get()->expKneeEntries = nullptr;

    EXPECT_EQ(AecError, m_expTable.SetSHDRExpTable(nullptr, m_lef.Get(), nullptr));
    EXPECT_EQ(1U, CoreLogCapture::Count("ERROR: SEF Table Validation Failed (Pointer: (nil))"));
    EXPECT_EQ(AecError, m_expTable.SetSHDRExpTable(m_mef.Get(), oneKnee.Get(), nullptr));
    EXPECT_EQ(1U, CoreLogCapture::CountContaining("ERROR: LEF Table Validation Failed (Pointer: 0x"));
    EXPECT_EQ(AecError, m_expTable.SetSHDRExpTable(m_mef.Get(), m_mef.Get(), noArray.Get()));
    EXPECT_EQ(1U, CoreLogCapture::CountContaining("ERROR: MEF Table Validation Failed (Pointer: 0x"));
    EXPECT_EQ(AecError, m_expTable.SetSHDRExpTable(m_mef.Get(), nullptr, m_mef.Get()));
    EXPECT_EQ(1U, CoreLogCapture::Count("ERROR: LEF Table Validation Failed (Pointer: (nil))"));

    ExpectCopied(m_sef, Active(SEF));
    ExpectCopied(m_lef, Active(LEF));
    ExpectCopied(m_mef, Active(MEF));
}

TEST_F(ExpTableShdrTest, MoreThanFiftyKneesAreRefused)
{
    ShdrTable fifty(ManyKnees(50));
    ShdrTable fiftyOne(ManyKnees(51));
    EXPECT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(fifty.Get(), m_lef.Get(), nullptr));
    EXPECT_EQ(50U, Active(SEF).expKneeEntriesCount);
    EXPECT_EQ(AecError, m_expTable.SetSHDRExpTable(m_sef.Get(), m_lef.Get(), fiftyOne.Get()));
    EXPECT_EQ(1U, CoreLogCapture::CountContaining("ERROR: MEF Table Validation Failed"));
    EXPECT_EQ(50U, Active(SEF).expKneeEntriesCount);
}

TEST_F(ExpTableShdrTest, FrameRateAndEvAreNotFoldedIntoHdrTables)
{
    ArbTable raw(StepTableKnees());
    ASSERT_GT(m_expTable.SetExpTable(raw.Get()), 0.0F);
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(m_sef.Get(), m_lef.Get(), m_mef.Get()));
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(2000000U));
    ASSERT_EQ(AecSuccess, m_expTable.SetParamEV(2.0F, FALSE, 1024.0F, FALSE));
    ExpectCopied(m_lef, Active(LEF));
    ExpectCopied(m_mef, Active(MEF));
}

TEST_F(ExpTableShdrTest, UnknownHdrTableHasNoTableAndAnEmptyLimitation)
{
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(m_sef.Get(), m_lef.Get(), m_mef.Get()));
    EXPECT_EQ(nullptr, m_expTable.GetActiveSHDRExpTable(3U));
    const ExposureLimitationType limit = m_expTable.GetSHDRLimitation(3U);
    EXPECT_EQ(0.0F, limit.expIndex.max);
    EXPECT_EQ(0U, limit.expTime.max);
    EXPECT_EQ(1U, CoreLogCapture::CountContaining("No HDR exposure table 3"));
}
