// Unit tests of exposure table lookups: clamping, knees, interpolation orders, truncation, dispatch, round trips.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "aecdefaulttuning.h"
#include "unit/arb/exptabletestsupport.h"

namespace
{

// Longest frame time of the tests: above every knee, so the active table is the raw one.
constexpr UINT64 NoFrameRateLimit = 1000000000U;

class ExpTableLookupTest : public ::testing::Test
{
protected:
    // Adopts a table with no frame-rate limit inside it.
    void Adopt(ArbTable& rTable)
    {
        ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
        ASSERT_GT(m_expTable.SetExpTable(rTable.Get()), 0.0F);
    }

    ExposureSetType LookUp(float index, ExpTableAccessType access = ActiveTable)
    {
        ExposureSetType expSet = {};
        expSet.expIndex        = index;
        EXPECT_EQ(AecSuccess, m_expTable.ExpTableEntryLookUp(access, &expSet, AECAlgoExposureSafe,
                                                             SHDRAECMODEDEFAULT));
        return expSet;
    }

    ExposureSetType LookUpTimeFirst(float index, ExpTableAccessType access = ActiveTable)
    {
        ExposureSetType expSet = {};
        expSet.expIndex        = index;
        EXPECT_EQ(AecSuccess, m_expTable.ExpTableEntryLookUpExpTimePrio(access, &expSet, AECAlgoExposureSafe));
        return expSet;
    }

    CoreLogCapture m_logs;
    CExpTable      m_expTable;
};

template <typename KneeT>
void ExpectKneeTriple(const KneeT& rKnee, const ExposureSetType& rSet)
{
    EXPECT_EQ(rKnee.gain, rSet.gain);
    EXPECT_EQ(rKnee.fnumber, rSet.fnumber);
    EXPECT_EQ(rKnee.expTime, rSet.expTime);
}

// Adopts the table without a frame-rate limit and walks its whole index range in 0.1 steps, raw and active, with
// both lookups: the exposure found maps back to its index within half an index step (1.0), and its sensitivity
// time x gain / f-number^2 never falls as the index rises.
void ExpectRoundTrip(aecArbitration::ExposureTableType* pTable)
{
    const float scf       = pTable->sensitivityCorrectionFactor;
    const float lastIndex = pTable->expKneeEntries[pTable->expKneeEntriesCount - 1U].expIndex;
    CExpTable   expTable;
    ASSERT_EQ(AecSuccess, expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
    const float scale = expTable.SetExpTable(pTable);
    EXPECT_FLOAT_EQ(10040.0F * scf, scale);
    for (UINT32 i = 0; i < pTable->expKneeEntriesCount; i++)
    {
        EXPECT_EQ(1.0F, pTable->expKneeEntries[i].fnumber) << "f-number 0 is raised to 1.0 in the tuned record";
    }
    ASSERT_EQ(pTable->expKneeEntriesCount, expTable.GetExpTable(ActiveTable)->expKneeEntriesCount);

    const ExpTableAccessType accesses[] = {RawTable, ActiveTable};
    for (const ExpTableAccessType access : accesses)
    {
        float previous[2] = {0.0F, 0.0F};
        for (float index = 0.0F; index <= lastIndex; index += 0.1F)
        {
            ExposureSetType sets[2] = {};
            sets[0].expIndex        = index;
            sets[1].expIndex        = index;
            ASSERT_EQ(AecSuccess,
                      expTable.ExpTableEntryLookUp(access, &sets[0], AECAlgoExposureSafe, SHDRAECMODEDEFAULT));
            ASSERT_EQ(AecSuccess, expTable.ExpTableEntryLookUpExpTimePrio(access, &sets[1], AECAlgoExposureSafe));
            for (int v = 0; v < 2; v++)
            {
                EXPECT_EQ(index, sets[v].expIndex);
                // Physical sensitivity = scale * 1.03^index, the table's sensitivity times its factor.
                const float sensitivity = SensitivityOf(sets[v]);
                const float back        = IndexOf(static_cast<double>(sensitivity) * scf / scale);
                EXPECT_NEAR(index, back, 0.5F) << "scf " << scf << " access " << access << " variant " << v;
                EXPECT_GE(sensitivity, previous[v]) << "index " << index << " variant " << v;
                previous[v] = sensitivity;
            }
        }
    }
}

} // namespace

TEST_F(ExpTableLookupTest, IndexBelowFirstKneeGivesFirstKneeAndItsIndex)
{
    ArbTable table(StepTableKnees());
    Adopt(table);

    for (const ExposureSetType& rSet : {LookUp(-50.0F), LookUpTimeFirst(-50.0F), LookUp(-50.0F, RawTable)})
    {
        ExpectKneeTriple(table.Knee(0), rSet);
        EXPECT_EQ(table.Knee(0).expIndex, rSet.expIndex);
    }
}

TEST_F(ExpTableLookupTest, IndexAboveLastKneeGivesLastKneeAndItsIndex)
{
    ArbTable table(StepTableKnees());
    Adopt(table);

    for (const ExposureSetType& rSet : {LookUp(1000.0F), LookUpTimeFirst(1000.0F), LookUp(1000.0F, RawTable)})
    {
        ExpectKneeTriple(table.Knee(3), rSet);
        EXPECT_EQ(table.Knee(3).expIndex, rSet.expIndex);
    }
}

TEST_F(ExpTableLookupTest, IndexOnAKneeGivesThatKneeWithoutInterpolation)
{
    ArbTable table(IrisTableKnees());
    Adopt(table);

    for (size_t i = 0; i < table.Count(); i++)
    {
        const float index = table.Knee(i).expIndex;
        ExpectKneeTriple(table.Knee(i), LookUp(index));
        ExpectKneeTriple(table.Knee(i), LookUpTimeFirst(index));
        EXPECT_EQ(index, LookUp(index).expIndex);
    }
}

TEST_F(ExpTableLookupTest, EqualFNumbersInASegmentNeverTouchTheFNumber)
{
    // f/2.8 throughout: the iris gives nothing, so all sensitivity goes to time and gain.
    ArbTable table({{1.0F, 1000000U, 2.8F, TimeFirst, 0.0F},
                    {1.0F, 10000000U, 2.8F, GainFirst, IndexOf(10.0)},
                    {8.0F, 10000000U, 2.8F, TimeFirst, IndexOf(80.0)}});
    Adopt(table);

    for (float index = 0.0F; index <= IndexOf(80.0); index += 0.37F)
    {
        EXPECT_EQ(2.8F, LookUp(index).fnumber) << index;
        EXPECT_EQ(2.8F, LookUpTimeFirst(index).fnumber) << index;
    }
    const ExposureSetType timeSegment = LookUp(IndexOf(4.0));
    EXPECT_EQ(1.0F, timeSegment.gain);
    EXPECT_NEAR(4000000.0, static_cast<double>(timeSegment.expTime), 1000.0);
    const ExposureSetType gainSegment = LookUp(IndexOf(40.0));
    EXPECT_NEAR(4.0F, gainSegment.gain, 1e-3F);
    EXPECT_EQ(10000000U, gainSegment.expTime);
}

TEST_F(ExpTableLookupTest, TimeFirstSegmentGrowsTimeUpToTheNextKneeThenGain)
{
    ArbTable table(StepTableKnees());
    Adopt(table);

    const ExposureSetType inTime = LookUp(IndexOf(10.0));
    EXPECT_EQ(1.0F, inTime.gain);
    EXPECT_NEAR(10000000.0, static_cast<double>(inTime.expTime), 2000.0);
    EXPECT_EQ(IndexOf(10.0), inTime.expIndex);

    // Knee 2 to 3: time first (x 100/33); the rest spills into gain.
    const ExposureSetType spilled = LookUp(table.Knee(2).expIndex + IndexOf(6.0));
    EXPECT_NEAR(100000000.0, static_cast<double>(spilled.expTime), 100.0);
    EXPECT_NEAR(8.0F * 6.0F * 33.0F / 100.0F, spilled.gain, 1e-3F);
}

TEST_F(ExpTableLookupTest, GainFirstSegmentGrowsGainThenSpillsIntoTime)
{
    ArbTable table(StepTableKnees());
    Adopt(table);

    const ExposureSetType inGain = LookUp(table.Knee(1).expIndex + IndexOf(2.0));
    EXPECT_NEAR(2.0F, inGain.gain, 1e-4F);
    EXPECT_EQ(33000000U, inGain.expTime);

    // Knee 1 says gain 2 at four times the sensitivity: the remaining factor 2 goes to time regardless of knee 1.
    ArbTable spill({{1.0F, 10000000U, 1.0F, GainFirst, 0.0F}, {2.0F, 10000000U, 1.0F, GainFirst, IndexOf(4.0)}});
    Adopt(spill);
    const ExposureSetType spilled = LookUp(IndexOf(3.0));
    EXPECT_EQ(2.0F, spilled.gain);
    EXPECT_NEAR(15000000.0, static_cast<double>(spilled.expTime), 100.0);
}

TEST_F(ExpTableLookupTest, IrisOpensFirstAndTheRestFollowsThePriority)
{
    ArbTable table({{1.0F, 1000000U, 4.0F, TimeFirst, 0.0F}, {1.0F, 10000000U, 2.0F, GainFirst, IndexOf(40.0)}});
    Adopt(table);

    // Twice the sensitivity: the iris alone (worth 4x in this segment) covers it.
    const ExposureSetType irisOnly = LookUp(IndexOf(2.0));
    EXPECT_NEAR(4.0F * std::sqrt(0.5F), irisOnly.fnumber, 1e-5F);
    EXPECT_EQ(1.0F, irisOnly.gain);
    EXPECT_EQ(1000000U, irisOnly.expTime);

    // Eight times: the iris is fully open (4x) and time doubles.
    const ExposureSetType irisAndTime = LookUp(IndexOf(8.0));
    EXPECT_NEAR(2.0F, irisAndTime.fnumber, 1e-5F);
    EXPECT_EQ(1.0F, irisAndTime.gain);
    EXPECT_NEAR(2000000.0, static_cast<double>(irisAndTime.expTime), 10.0);
}

TEST_F(ExpTableLookupTest, TimePriorityLookupGrowsTimeThenIrisThenGain)
{
    ArbTable table({{1.0F, 1000000U, 4.0F, GainFirst, 0.0F}, {2.0F, 10000000U, 2.0F, GainFirst, IndexOf(80.0)}});
    Adopt(table);

    const ExposureSetType timeOnly = LookUpTimeFirst(IndexOf(5.0));
    EXPECT_NEAR(5000000.0, static_cast<double>(timeOnly.expTime), 100.0);
    EXPECT_EQ(4.0F, timeOnly.fnumber);
    EXPECT_EQ(1.0F, timeOnly.gain);

    const ExposureSetType timeAndIris = LookUpTimeFirst(IndexOf(20.0));
    EXPECT_EQ(10000000U, timeAndIris.expTime);
    EXPECT_NEAR(4.0F * std::sqrt(0.5F), timeAndIris.fnumber, 1e-4F);
    EXPECT_EQ(1.0F, timeAndIris.gain);

    const ExposureSetType all = LookUpTimeFirst(IndexOf(60.0));
    EXPECT_EQ(10000000U, all.expTime);
    EXPECT_NEAR(2.0F, all.fnumber, 1e-5F);
    EXPECT_NEAR(1.5F, all.gain, 1e-4F);

    // The gain-first lookup of the same index opens the iris and raises the gain before the time.
    const ExposureSetType gainFirst = LookUp(IndexOf(5.0));
    EXPECT_NEAR(2.0F, gainFirst.fnumber, 1e-5F);
    EXPECT_NEAR(1.25F, gainFirst.gain, 1e-4F);
    EXPECT_EQ(1000000U, gainFirst.expTime);
}

TEST_F(ExpTableLookupTest, ExposureTimeGrowthIsTruncatedNeverRounded)
{
    ArbTable table({{1.0F, 10U, 1.0F, TimeFirst, 0.0F}, {1.0F, 100000U, 1.0F, GainFirst, IndexOf(10000.0)}});
    Adopt(table);

    // 10 ns * 1.55 = 15.5 ns -> 15 ns.
    const float index155 = static_cast<float>(std::log(1.55) / std::log(1.03));
    EXPECT_EQ(15U, LookUp(index155).expTime);
    EXPECT_EQ(15U, LookUpTimeFirst(index155).expTime);
    // Growth below one nanosecond adds nothing.
    EXPECT_EQ(10U, LookUp(0.5F).expTime);
    // 10 ns * 1.9999 = 19.999 ns -> 19 ns.
    const float index19999 = static_cast<float>(std::log(1.9999) / std::log(1.03));
    EXPECT_EQ(19U, LookUp(index19999).expTime);
}

TEST_F(ExpTableLookupTest, EachExposureTypeReadsItsTable)
{
    ArbTable  raw({{1.0F, 1000U, 1.0F, GainFirst, 0.0F}, {4.0F, 1000U, 1.0F, GainFirst, IndexOf(4.0)}});
    ShdrTable sef({{1.0F, 2000U, 1.0F, GainFirst, 0.0F}, {2.0F, 2000U, 1.0F, GainFirst, IndexOf(2.0)}});
    ShdrTable lef({{1.0F, 3000U, 1.0F, GainFirst, 0.0F}, {2.0F, 3000U, 1.0F, GainFirst, IndexOf(2.0)}});
    ShdrTable mef({{1.0F, 4000U, 1.0F, GainFirst, 0.0F}, {2.0F, 4000U, 1.0F, GainFirst, IndexOf(2.0)}});
    // Frame-rate limit 0: the active table is the first knee and then the gain knee at its time.
    ASSERT_GT(m_expTable.SetExpTable(raw.Get()), 0.0F);
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(sef.Get(), lef.Get(), mef.Get()));

    struct Case
    {
        ExpTableAccessType  access;
        AECAlgoExposureType expType;
        SHDRAECMODE         mode;
        UINT64              time;
    };
    const Case cases[] = {
        {RawTable, AECAlgoExposureShort, SHDRAECMODEDEFAULT, 2000U},
        {ActiveTable, AECAlgoExposureShort, SHDRAECMODEV38YUV3FRAME, 2000U},
        {RawTable, AECAlgoExposureLong, SHDRAECMODEDEFAULT, 3000U},
        {ActiveMEFTable, AECAlgoExposureLong, SHDRAECMODEV38YUV3FRAME, 3000U},
        {RawTable, AECAlgoExposureSafe, SHDRAECMODEV38YUV3FRAME, 1000U},
        {ActiveTable, AECAlgoExposureSafe, SHDRAECMODEV38YUV3FRAME, 4000U},
        {ActiveMEFTable, AECAlgoExposureSafe, SHDRAECMODEV38YUV3FRAME, 4000U},
        {ActiveTable, AECAlgoExposureSafe, SHDRAECMODEV38YUV2FRAME, 1000U},
    };
    for (const Case& rCase : cases)
    {
        ExposureSetType expSet = {};
        expSet.expIndex        = 1.0F;
        EXPECT_EQ(AecSuccess, m_expTable.ExpTableEntryLookUp(rCase.access, &expSet, rCase.expType, rCase.mode));
        EXPECT_EQ(rCase.time, expSet.expTime) << rCase.access << " " << rCase.expType << " " << rCase.mode;
    }

    // Above the top the raw table ends at its last knee and the active one at the gain knee: both gain 4.
    EXPECT_EQ(4.0F, LookUp(100.0F, RawTable).gain);
    EXPECT_EQ(4.0F, LookUp(100.0F, ActiveTable).gain);
}

TEST_F(ExpTableLookupTest, TimePriorityLookupHasNoMiddleExposureCase)
{
    ArbTable  raw({{1.0F, 1000U, 1.0F, GainFirst, 0.0F}, {4.0F, 1000U, 1.0F, GainFirst, IndexOf(4.0)}});
    ShdrTable sef({{1.0F, 2000U, 1.0F, GainFirst, 0.0F}, {2.0F, 2000U, 1.0F, GainFirst, IndexOf(2.0)}});
    ShdrTable lef({{1.0F, 3000U, 1.0F, GainFirst, 0.0F}, {2.0F, 3000U, 1.0F, GainFirst, IndexOf(2.0)}});
    ShdrTable mef({{1.0F, 4000U, 1.0F, GainFirst, 0.0F}, {2.0F, 4000U, 1.0F, GainFirst, IndexOf(2.0)}});
    ASSERT_GT(m_expTable.SetExpTable(raw.Get()), 0.0F);
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(sef.Get(), lef.Get(), mef.Get()));

    ExposureSetType expSet = {};
    EXPECT_EQ(AecSuccess, m_expTable.ExpTableEntryLookUpExpTimePrio(ActiveMEFTable, &expSet, AECAlgoExposureSafe));
    EXPECT_EQ(1000U, expSet.expTime);
    EXPECT_EQ(AecSuccess, m_expTable.ExpTableEntryLookUpExpTimePrio(RawTable, &expSet, AECAlgoExposureShort));
    EXPECT_EQ(2000U, expSet.expTime);
    EXPECT_EQ(AecSuccess, m_expTable.ExpTableEntryLookUpExpTimePrio(RawTable, &expSet, AECAlgoExposureLong));
    EXPECT_EQ(3000U, expSet.expTime);
}

TEST_F(ExpTableLookupTest, OtherExposureTypesDoNothingAndSucceed)
{
    ArbTable table(StepTableKnees());
    Adopt(table);

    ExposureSetType expSet = {2.0F, 3.0F, 4U, 5.0F};
    EXPECT_EQ(AecSuccess, m_expTable.ExpTableEntryLookUp(ActiveTable, &expSet, AECAlgoExposureCount,
                                                         SHDRAECMODEDEFAULT));
    EXPECT_EQ(AecSuccess, m_expTable.ExpTableEntryLookUpExpTimePrio(ActiveTable, &expSet, AECAlgoExposureInvalid));
    EXPECT_EQ(2.0F, expSet.gain);
    EXPECT_EQ(3.0F, expSet.fnumber);
    EXPECT_EQ(4U, expSet.expTime);
    EXPECT_EQ(5.0F, expSet.expIndex);
}

TEST_F(ExpTableLookupTest, LookupsWithoutAValidTableFail)
{
    ExposureSetType expSet = {};
    EXPECT_EQ(AecError, m_expTable.ExpTableEntryLookUp(RawTable, &expSet, AECAlgoExposureSafe, SHDRAECMODEDEFAULT));
    EXPECT_EQ(AecError,
              m_expTable.ExpTableEntryLookUp(ActiveTable, &expSet, AECAlgoExposureSafe, SHDRAECMODEDEFAULT));
    EXPECT_EQ(AecError, m_expTable.ExpTableEntryLookUpExpTimePrio(RawTable, &expSet, AECAlgoExposureShort));
    EXPECT_EQ(AecError, m_expTable.ExpTableEntryLookUpExpTimePrio(ActiveTable, &expSet, AECAlgoExposureLong));
    EXPECT_EQ(4U, CoreLogCapture::Count("ERROR: Table capping Failed"));

    // A table is set but no HDR tables: the HDR lookups still fail.
    ArbTable table(StepTableKnees());
    Adopt(table);
    EXPECT_EQ(AecError, m_expTable.ExpTableEntryLookUp(ActiveTable, &expSet, AECAlgoExposureShort,
                                                       SHDRAECMODEDEFAULT));
    EXPECT_EQ(AecError, m_expTable.ExpTableEntryLookUp(ActiveTable, &expSet, AECAlgoExposureSafe,
                                                       SHDRAECMODEV38YUV3FRAME));
}

TEST_F(ExpTableLookupTest, NullExposureSetFailsWithoutTouchingMemory)
{
    ArbTable table(StepTableKnees());
    Adopt(table);
    EXPECT_EQ(AecError, m_expTable.ExpTableEntryLookUp(ActiveTable, nullptr, AECAlgoExposureSafe,
                                                       SHDRAECMODEDEFAULT));
    EXPECT_EQ(AecError, m_expTable.ExpTableEntryLookUpExpTimePrio(ActiveTable, nullptr, AECAlgoExposureSafe));
}

TEST_F(ExpTableLookupTest, DescendingKneeIndicesStayInsideTheTable)
{
    // Not a valid tuning, but it must not read past the last knee.
    ArbTable table({{1.0F, 1000U, 1.0F, GainFirst, 10.0F}, {2.0F, 2000U, 1.0F, GainFirst, 5.0F}});
    ASSERT_GT(m_expTable.SetExpTable(table.Get()), 0.0F);

    const ExposureSetType expSet = LookUp(3.0F, RawTable);
    ExpectKneeTriple(table.Knee(1), expSet);
    EXPECT_EQ(10.0F, expSet.expIndex);
    ExpectKneeTriple(table.Knee(1), LookUpTimeFirst(3.0F, RawTable));
}

TEST_F(ExpTableLookupTest, KneesWithoutTimeOrGainGiveFiniteExposures)
{
    // Zero time and zero gain at knee lo count as "no change" instead of dividing by zero.
    ArbTable table({{0.0F, 0U, 1.0F, TimeFirst, 0.0F}, {1.0F, 10000U, 1.0F, GainFirst, 10.0F}});
    ASSERT_EQ(AecSuccess, m_expTable.SetFPSMaxExposureTime(NoFrameRateLimit));
    m_expTable.SetExpTable(table.Get());
    ASSERT_EQ(table.Get(), m_expTable.GetExpTable(RawTable));

    for (const ExposureSetType& rSet : {LookUp(5.0F, RawTable), LookUpTimeFirst(5.0F, RawTable)})
    {
        EXPECT_TRUE(std::isfinite(rSet.gain));
        EXPECT_TRUE(std::isfinite(rSet.fnumber));
        EXPECT_EQ(0U, rSet.expTime);
    }
}

TEST_F(ExpTableLookupTest, BuiltInTablesRoundTripOverTheirWholeIndexRange)
{
    const float scaleFactors[] = {1.0F, 2.0F};
    for (const float scf : scaleFactors)
    {
        ArbTable table(DefaultTableKnees(), scf, 0.95F);
        ExpectRoundTrip(table.Get());
    }
}

TEST_F(ExpTableLookupTest, DefaultTuningTablesRoundTripOverTheirWholeIndexRange)
{
    aecArbitration::AECCoreArbitrationType tuning;
    FillDefaultAECCoreArbitrationType(&tuning);
    ASSERT_EQ(2U, tuning.expTablesCount);
    ASSERT_NE(nullptr, tuning.expTables);

    const std::vector<KneeValues> knees = DefaultTableKnees();
    for (UINT32 t = 0; t < tuning.expTablesCount; t++)
    {
        aecArbitration::ExposureTableType* pTable = &tuning.expTables[t];
        EXPECT_EQ(static_cast<float>(t + 1U), pTable->sensitivityCorrectionFactor);
        EXPECT_EQ(0.95F, pTable->thresAntiBandingMinExpTimePct);
        ASSERT_EQ(knees.size(), pTable->expKneeEntriesCount);
        for (UINT32 i = 0; i < pTable->expKneeEntriesCount; i++)
        {
            EXPECT_EQ(knees[i].gain, pTable->expKneeEntries[i].gain);
            EXPECT_EQ(knees[i].expTime, pTable->expKneeEntries[i].expTime);
            EXPECT_EQ(knees[i].incrementPriority, pTable->expKneeEntries[i].incrementPriority);
            EXPECT_EQ(knees[i].expIndex, pTable->expKneeEntries[i].expIndex);
        }
        ExpectRoundTrip(pTable);
    }
}

TEST_F(ExpTableLookupTest, LookupsFromHdrTablesInterpolateLikeTheMainTable)
{
    ArbTable  raw(StepTableKnees());
    ShdrTable lef(StepTableKnees());
    Adopt(raw);
    ASSERT_EQ(AecSuccess, m_expTable.SetSHDRExpTable(lef.Get(), lef.Get(), nullptr));

    const float index = raw.Knee(2).expIndex + IndexOf(6.0);
    ExposureSetType hdrSet = {};
    hdrSet.expIndex        = index;
    ASSERT_EQ(AecSuccess, m_expTable.ExpTableEntryLookUp(RawTable, &hdrSet, AECAlgoExposureLong, SHDRAECMODEDEFAULT));
    const ExposureSetType mainSet = LookUp(index);
    EXPECT_EQ(mainSet.gain, hdrSet.gain);
    EXPECT_EQ(mainSet.fnumber, hdrSet.fnumber);
    EXPECT_EQ(mainSet.expTime, hdrSet.expTime);
}
