// Shared luma helpers: bias table choice, elliptic distance, elliptic ROI sums, and the hole filling of masks.
#include <algorithm>

#include "aec/core/modules/mod_mtr/cflashsnapshotestimator.h"
#include "aec/core/modules/mod_mtr/lumacalculatorutil.h"
#include "unit/mtr/lumacalculatorstest.h"

namespace
{
// Region (x, y) of a 16 x 16 grid in normalised units: its left or top edge.
constexpr FLOAT Edge(FLOAT regions) { return regions / 16.0f; }
} // namespace

class LumaUtilTest : public LumaCalcTest
{
protected:
    VOID Sums(const AECAlgoROI& roi, FLOAT strength, FLOAT* pLuma, FLOAT* pWeight)
    {
        UtilCalcCircularROILuma(m_pProc->GetStatsProcessingResult(), &roi, strength, pLuma, pWeight);
    }
};

TEST_F(LumaUtilTest, BiasTableFollowsTheMeteringMode)
{
    aecMetering::MtrTableType tables = {};
    AECCustomMeteringTable    custom = {};
    EXPECT_EQ(nullptr, UtilGetBiasTable(AECAlgoMeteringModeFrameAverage, &tables, &custom));
    EXPECT_EQ(tables.centerWeighted.weights, UtilGetBiasTable(AECAlgoMeteringModeCenterWeighted, &tables, &custom));
    EXPECT_EQ(tables.spotWeighted.weights, UtilGetBiasTable(AECAlgoMeteringModeSpot, &tables, &custom));
    EXPECT_EQ(custom.meteringTable, UtilGetBiasTable(AECAlgoMeteringModeCustom, &tables, &custom));
    EXPECT_FALSE(MtrLogContains("unknown metering mode"));
}

TEST_F(LumaUtilTest, UnknownMeteringModeLogsAndTakesNoTable)
{
    aecMetering::MtrTableType tables = {};
    AECCustomMeteringTable    custom = {};
    EXPECT_EQ(nullptr, UtilGetBiasTable(static_cast<AECAlgoMeteringModeType>(7), &tables, &custom));
    EXPECT_TRUE(MtrLogContains("unknown metering mode"));
}

TEST_F(LumaUtilTest, MissingTablesGiveNoTable)
{
    EXPECT_EQ(nullptr, UtilGetBiasTable(AECAlgoMeteringModeSpot, nullptr, nullptr));
    EXPECT_EQ(nullptr, UtilGetBiasTable(AECAlgoMeteringModeCustom, nullptr, nullptr));
}

TEST_F(LumaUtilTest, DistanceIsNormalisedToTheInscribedEllipse)
{
    EXPECT_FLOAT_EQ(0.0f, UtilCalcDistSquare(0.3f, 0.7f, 0.5f, 0.5f, 0.0f, 0.2f));
    EXPECT_FLOAT_EQ(0.0f, UtilCalcDistSquare(0.3f, 0.7f, 0.5f, 0.5f, 0.2f, 0.0f));
    EXPECT_FLOAT_EQ(1.0f, UtilCalcDistSquare(0.6f, 0.5f, 0.5f, 0.5f, 0.2f, 0.4f));
    EXPECT_FLOAT_EQ(1.0f, UtilCalcDistSquare(0.5f, 0.3f, 0.5f, 0.5f, 0.2f, 0.4f));
    // (2 * 0.05 / 0.2)^2 + (2 * 0.1 / 0.4)^2
    EXPECT_NEAR(0.5f, UtilCalcDistSquare(0.55f, 0.6f, 0.5f, 0.5f, 0.2f, 0.4f), 1e-6f);
}

TEST_F(LumaUtilTest, RegionOnTheEllipseWeighsNothingAtFullStrength)
{
    ASSERT_EQ(AecSuccess, Parse(*m_pImage));
    // Centre on region (4, 4); region (2, 4) lies exactly on the rim.
    const AECAlgoROI roi = {Edge(2.5f), Edge(2.5f), Edge(4.0f), Edge(4.0f), 1.0f};
    FLOAT            luma1 = 0.0f, weight1 = 0.0f, luma2 = 0.0f, weight2 = 0.0f;
    Sums(roi, 1.0f, &luma1, &weight1);
    SetLuma(2, 4, 200.0f);
    ASSERT_EQ(AecSuccess, Parse(*m_pImage));
    Sums(roi, 1.0f, &luma2, &weight2);
    EXPECT_GT(weight1, 0.0f);
    EXPECT_FLOAT_EQ(weight1, weight2);
    EXPECT_FLOAT_EQ(luma1, luma2);
    // At strength 0.5 the rim region weighs 0.5.
    Sums(roi, 0.5f, &luma2, &weight2);
    SetLuma(2, 4, 100.0f);
    ASSERT_EQ(AecSuccess, Parse(*m_pImage));
    Sums(roi, 0.5f, &luma1, &weight1);
    EXPECT_NEAR(0.5f * 100.0f, luma2 - luma1, 1e-2f);
}

TEST_F(LumaUtilTest, EveryRegionInsideWeighsOneAtZeroStrength)
{
    ASSERT_EQ(AecSuccess, Parse(*m_pImage));
    const AECAlgoROI roi    = {Edge(2.5f), Edge(2.5f), Edge(4.0f), Edge(4.0f), 1.0f};
    FLOAT            luma   = 0.0f;
    FLOAT            weight = 0.0f;
    Sums(roi, 0.0f, &luma, &weight);
    // Offsets -2 .. 2 regions on both axes around (4, 4): 13 of the 25 lie inside or on the ellipse.
    EXPECT_FLOAT_EQ(13.0f, weight);
    EXPECT_NEAR(1300.0f, luma, 1e-2f);
}

TEST_F(LumaUtilTest, RoiFactorScalesWindowAndEllipseButNotTheCentre)
{
    ASSERT_EQ(AecSuccess, Parse(*m_pImage));
    const AECAlgoROI roi     = {0.25f, 0.25f, 0.125f, 0.125f, 1.0f};
    FLOAT            luma    = 0.0f;
    FLOAT            weight1 = 0.0f;
    FLOAT            weight2 = 0.0f;
    UtilCalcCircularROILuma(m_pProc->GetStatsProcessingResult(), &roi, 0.0f, &luma, &weight1, 1.0f);
    UtilCalcCircularROILuma(m_pProc->GetStatsProcessingResult(), &roi, 0.0f, &luma, &weight2, 2.0f);
    // Centre 5/16: factor 1 takes regions 4 and 5 on each axis; factor 2 regions 4 to 6 less the far corner.
    EXPECT_FLOAT_EQ(4.0f, weight1);
    EXPECT_FLOAT_EQ(8.0f, weight2);
    FLOAT weight5 = 0.0f;
    Sums(roi, 0.0f, &luma, &weight5);
    EXPECT_FLOAT_EQ(weight1, weight5);
}

TEST_F(LumaUtilTest, RoiOutsideTheGridGivesZeroSums)
{
    ASSERT_EQ(AecSuccess, Parse(*m_pImage));
    const AECAlgoROI roi    = {1.5f, 1.5f, 0.2f, 0.2f, 1.0f};
    FLOAT            luma   = -1.0f;
    FLOAT            weight = -1.0f;
    Sums(roi, 0.5f, &luma, &weight);
    EXPECT_FLOAT_EQ(0.0f, luma);
    EXPECT_FLOAT_EQ(0.0f, weight);
}

TEST_F(LumaUtilTest, MissingRoiGivesZeroSumsAndALog)
{
    FLOAT luma   = -1.0f;
    FLOAT weight = -1.0f;
    UtilCalcCircularROILuma(m_pProc->GetStatsProcessingResult(), nullptr, 0.5f, &luma, &weight);
    EXPECT_FLOAT_EQ(0.0f, luma);
    EXPECT_FLOAT_EQ(0.0f, weight);
    EXPECT_TRUE(MtrLogContains("ROI luma: null"));
}

TEST(DilateBinaryMaskTest, FillsAnEnclosedHole)
{
    INT32 mask[256] = {};
    const INT32 centre = 5 + 16 * 5;
    mask[centre - 1] = mask[centre + 1] = mask[centre - 16] = mask[centre + 16] = 1;
    CFlashSnapshotEstimator::UtilDilateBinaryMask(mask);
    EXPECT_EQ(1, mask[centre]);
    // Nothing grows: the diagonal neighbours and the outside stay 0.
    INT32 ones = 0;
    for (INT32 v : mask)
    {
        ones += v;
    }
    EXPECT_EQ(5, ones);
}

TEST(DilateBinaryMaskTest, ThreeNeighboursAreNotEnough)
{
    INT32 mask[256] = {};
    const INT32 centre = 5 + 16 * 5;
    mask[centre - 1] = mask[centre + 1] = mask[centre - 16] = 1;
    CFlashSnapshotEstimator::UtilDilateBinaryMask(mask);
    EXPECT_EQ(0, mask[centre]);
}

TEST(DilateBinaryMaskTest, EdgeColumnsAndRowsAreNeverFilled)
{
    INT32 mask[256];
    std::fill(mask, mask + 256, 1);
    // Holes on the left and right edge columns (their wrapped neighbours are 1) and in the first and last rows.
    const INT32 holes[] = {16 * 5, 15 + 16 * 5, 5, 5 + 16 * 15};
    for (INT32 h : holes)
    {
        mask[h] = 0;
    }
    mask[7 + 16 * 7] = 0;
    CFlashSnapshotEstimator::UtilDilateBinaryMask(mask);
    for (INT32 h : holes)
    {
        EXPECT_EQ(0, mask[h]) << h;
    }
    EXPECT_EQ(1, mask[7 + 16 * 7]);
}

TEST_F(LumaUtilTest, NullMaskIsRefusedWithALog)
{
    CFlashSnapshotEstimator::UtilDilateBinaryMask(nullptr);
    EXPECT_TRUE(MtrLogContains("dilate: null mask"));
}
