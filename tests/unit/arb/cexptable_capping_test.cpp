// Unit tests of capping the active exposure tables to a limitation.
#include <gtest/gtest.h>

#include <cmath>

#include "unit/arb/exptabletestsupport.h"

namespace
{

constexpr UINT64 NoFrameRateLimit = 1000000000U;

// A limit that lets every knee of the test tables through.
ExposureLimitationType OpenLimit()
{
    ExposureLimitationType limit = {};
    limit.expTime.max            = NoFrameRateLimit;
    limit.gain.max               = 1000.0F;
    limit.fnumber.min            = 1.0F;
    limit.fnumber.max            = 100.0F;
    return limit;
}

class ExpTableCappingTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
        ASSERT_GT(m_expTable.SetExpTable(m_step.Get()), 0.0F);
    }

    AecResult Cap(const ExposureLimitationType& rLimit)
    {
        return m_expTable.ExpTableEntryCapping(&rLimit, AECAlgoExposureSafe, SHDRAECMODEDEFAULT);
    }

    const aecArbitration::ExposureKneeType& ActiveKnee(UINT32 i)
    {
        return m_expTable.GetExpTable(ActiveTable)->expKneeEntries[i];
    }

    CoreLogCapture m_logs;
    ArbTable       m_step{StepTableKnees()};
    CExpTable      m_expTable;
};

} // namespace

TEST_F(ExpTableCappingTest, LowerMaximumTimeLowersTheKneeIndexByTheExposureLost)
{
    ExposureLimitationType limit = OpenLimit();
    limit.expTime.max            = 50000000U;
    ASSERT_EQ(AecSuccess, Cap(limit));

    EXPECT_EQ(50000000U, ActiveKnee(3).expTime);
    EXPECT_FLOAT_EQ(m_step.Knee(3).expIndex + IndexOf(0.5), ActiveKnee(3).expIndex);
    EXPECT_EQ(16.0F, ActiveKnee(3).gain);
    for (UINT32 i = 0; i < 3; i++)
    {
        EXPECT_EQ(m_step.Knee(i).expIndex, ActiveKnee(i).expIndex) << "knee " << i << " is inside the limit";
        EXPECT_EQ(m_step.Knee(i).expTime, ActiveKnee(i).expTime);
    }
    EXPECT_EQ(100000000U, m_step.Knee(3).expTime) << "the raw table is not capped";
}

TEST_F(ExpTableCappingTest, GainLimitMovesTheIndexOfEveryKneeItClamps)
{
    ExposureLimitationType limit = OpenLimit();
    limit.gain.min               = 2.0F;
    limit.gain.max               = 4.0F;
    ASSERT_EQ(AecSuccess, Cap(limit));

    // Gain 1.0 is not above 1.0: the ratio is the new gain itself, 2.
    EXPECT_EQ(2.0F, ActiveKnee(0).gain);
    EXPECT_FLOAT_EQ(IndexOf(2.0), ActiveKnee(0).expIndex);
    EXPECT_FLOAT_EQ(m_step.Knee(1).expIndex + IndexOf(2.0), ActiveKnee(1).expIndex);
    EXPECT_EQ(4.0F, ActiveKnee(2).gain);
    EXPECT_FLOAT_EQ(m_step.Knee(2).expIndex + IndexOf(0.5), ActiveKnee(2).expIndex);
    EXPECT_FLOAT_EQ(m_step.Knee(3).expIndex + IndexOf(0.25), ActiveKnee(3).expIndex);
}

TEST_F(ExpTableCappingTest, CappingTwiceCapsTheCappedTableUntilARebuild)
{
    ExposureLimitationType limit = OpenLimit();
    limit.expTime.max            = 50000000U;
    ASSERT_EQ(AecSuccess, Cap(limit));
    limit.expTime.max = 25000000U;
    ASSERT_EQ(AecSuccess, Cap(limit));

    EXPECT_EQ(25000000U, ActiveKnee(3).expTime);
    EXPECT_NEAR(m_step.Knee(3).expIndex + IndexOf(0.25), ActiveKnee(3).expIndex, 1e-4F);
    EXPECT_NEAR(m_step.Knee(1).expIndex + IndexOf(25.0 / 33.0), ActiveKnee(1).expIndex, 1e-4F);

    ASSERT_EQ(AecSuccess, m_expTable.ApplyActiveTableEVFPSKnees());
    for (UINT32 i = 0; i < m_step.Count(); i++)
    {
        EXPECT_EQ(m_step.Knee(i).expIndex, ActiveKnee(i).expIndex);
        EXPECT_EQ(m_step.Knee(i).expTime, ActiveKnee(i).expTime);
    }
}

TEST_F(ExpTableCappingTest, OldTimeEntersWithItsLow32Bits)
{
    // 5 s is above 2^32 ns: the old time counts as 5e9 - 2^32 = 705032704 ns.
    ArbTable longTable({{1.0F, 1000000U, 1.0F, TimeFirst, 0.0F}, {1.0F, 5000000000U, 1.0F, GainFirst, IndexOf(5000.0)}});
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(10000000000U));
    ASSERT_GT(m_expTable.SetExpTable(longTable.Get()), 0.0F);

    ExposureLimitationType limit = OpenLimit();
    limit.expTime.max            = 4000000000U;
    ASSERT_EQ(AecSuccess, Cap(limit));
    EXPECT_EQ(4000000000U, ActiveKnee(1).expTime);
    EXPECT_NEAR(IndexOf(5000.0) + IndexOf(4000000000.0 / 705032704.0), ActiveKnee(1).expIndex, 1e-3F);
}

TEST_F(ExpTableCappingTest, FNumberLimitMovesTheIndexByTheIrisChange)
{
    ArbTable iris(IrisTableKnees());
    ASSERT_GT(m_expTable.SetExpTable(iris.Get()), 0.0F);

    ExposureLimitationType limit = OpenLimit();
    limit.fnumber.min            = 2.8F;
    limit.fnumber.max            = 2.8F;
    ASSERT_EQ(AecSuccess, Cap(limit));

    // f/4 -> f/2.8 gains (4 / 2.8)^2, f/2 -> f/2.8 loses (2 / 2.8)^2.
    EXPECT_EQ(2.8F, ActiveKnee(0).fnumber);
    EXPECT_NEAR(IndexOf((4.0 / 2.8) * (4.0 / 2.8)), ActiveKnee(0).expIndex, 1e-3F);
    EXPECT_NEAR(iris.Knee(1).expIndex + IndexOf((2.0 / 2.8) * (2.0 / 2.8)), ActiveKnee(1).expIndex, 1e-3F);
}

TEST_F(ExpTableCappingTest, FNumberNeverDropsBelowOneWhateverTheLimit)
{
    ArbTable iris(IrisTableKnees());
    ASSERT_GT(m_expTable.SetExpTable(iris.Get()), 0.0F);

    ExposureLimitationType limit = OpenLimit();
    limit.fnumber.min            = 0.0F;
    limit.fnumber.max            = 0.0F;
    ASSERT_EQ(AecSuccess, Cap(limit));
    for (UINT32 i = 0; i < iris.Count(); i++)
    {
        EXPECT_EQ(1.0F, ActiveKnee(i).fnumber);
        EXPECT_TRUE(std::isfinite(ActiveKnee(i).expIndex));
    }
    EXPECT_NEAR(IndexOf(16.0), ActiveKnee(0).expIndex, 1e-3F);
}

TEST_F(ExpTableCappingTest, ZeroSensitivityLeavesTheIndex)
{
    ExposureLimitationType limit = OpenLimit();
    limit.gain.max               = 0.0F;
    ASSERT_EQ(AecSuccess, Cap(limit));
    for (UINT32 i = 0; i < m_step.Count(); i++)
    {
        EXPECT_EQ(0.0F, ActiveKnee(i).gain);
        EXPECT_EQ(m_step.Knee(i).expIndex, ActiveKnee(i).expIndex);
    }
}

TEST_F(ExpTableCappingTest, NullLimitAndOtherExposureTypesFail)
{
    EXPECT_EQ(AecError, m_expTable.ExpTableEntryCapping(nullptr, AECAlgoExposureSafe, SHDRAECMODEV38YUV3FRAME));
    EXPECT_EQ(1U, CoreLogCapture::Count("[Capping] arbExpLimit is NULL, expType=2 shdrmode=3"));

    const ExposureLimitationType limit = OpenLimit();
    EXPECT_EQ(AecError, m_expTable.ExpTableEntryCapping(&limit, AECAlgoExposureCount, SHDRAECMODEDEFAULT));
    EXPECT_EQ(1U, CoreLogCapture::Count("[Capping] Unsupported expType=3 shdrmode=0"));
}

TEST_F(ExpTableCappingTest, EachExposureTypeCapsItsTable)
{
    ShdrTable sef(StepTableKnees());
    ShdrTable lef(StepTableKnees());
    ShdrTable mef(StepTableKnees());
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(sef.Get(), lef.Get(), mef.Get()));

    ExposureLimitationType limit = OpenLimit();
    limit.expTime.max            = 50000000U;
    auto lastTime = [](const aecShdr::SHDRExposureTableType* pTable) { return pTable->expKneeEntries[3].expTime; };

    ASSERT_EQ(AecSuccess, m_expTable.ExpTableEntryCapping(&limit, AECAlgoExposureShort, SHDRAECMODEV38YUV3FRAME));
    EXPECT_EQ(50000000U, lastTime(m_expTable.GetActiveSHDRExpTable(SEF)));
    EXPECT_EQ(100000000U, lastTime(m_expTable.GetActiveSHDRExpTable(LEF)));

    ASSERT_EQ(AecSuccess, m_expTable.ExpTableEntryCapping(&limit, AECAlgoExposureLong, SHDRAECMODEDEFAULT));
    EXPECT_EQ(50000000U, lastTime(m_expTable.GetActiveSHDRExpTable(LEF)));

    ASSERT_EQ(AecSuccess, m_expTable.ExpTableEntryCapping(&limit, AECAlgoExposureSafe, SHDRAECMODEV38YUV3FRAME));
    EXPECT_EQ(50000000U, lastTime(m_expTable.GetActiveSHDRExpTable(MEF)));
    EXPECT_EQ(100000000U, ActiveKnee(3).expTime) << "mode 3 caps the middle table, not the active one";

    ASSERT_EQ(AecSuccess, m_expTable.ExpTableEntryCapping(&limit, AECAlgoExposureSafe, SHDRAECMODEV38YUV2FRAME));
    EXPECT_EQ(50000000U, ActiveKnee(3).expTime);
}

TEST_F(ExpTableCappingTest, CappingAnInvalidTableFails)
{
    CExpTable                    empty;
    const ExposureLimitationType limit = OpenLimit();
    EXPECT_EQ(AecError, empty.ExpTableEntryCapping(&limit, AECAlgoExposureSafe, SHDRAECMODEDEFAULT));
    EXPECT_EQ(AecError, empty.ExpTableEntryCapping(&limit, AECAlgoExposureShort, SHDRAECMODEDEFAULT));
    EXPECT_EQ(2U, CoreLogCapture::Count("ERROR: Table capping Failed"));
}
