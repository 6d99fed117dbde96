// Unit tests of the exposure index arithmetic: index deltas, knee ratios and truncated exposure time growth.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "aec/core/modules/mod_arb/exptablemath.h"

TEST(ExpTableMathTest, OneStopIsAboutTwentyThreeAndAHalfIndexUnits)
{
    EXPECT_NEAR(23.449795F, ExpIndexDeltaFromRatio(2.0), 1e-5F);
    EXPECT_EQ(0.0F, ExpIndexDeltaFromRatio(1.0));
    EXPECT_NEAR(-23.449795F, ExpIndexDeltaFromRatio(0.5), 1e-5F);
    // The constant is the single-precision 77.89853, not 1 / log10(1.03).
    EXPECT_EQ(static_cast<double>(77.89853F), ExpIndexPerDecade);
}

TEST(ExpTableMathTest, KneeRatioOfAZeroQuantityIsOne)
{
    EXPECT_EQ(4.0F, KneeRatio(8.0F, 2.0F));
    EXPECT_EQ(1.0F, KneeRatio(8.0F, 0.0F));
    EXPECT_EQ(2.5, KneeRatio(UINT64{25}, UINT64{10}));
    EXPECT_EQ(1.0, KneeRatio(UINT64{25}, UINT64{0}));
}

TEST(ExpTableMathTest, TimeGrowthIsTruncatedTowardZero)
{
    EXPECT_EQ(15U, GrowExpTime(10U, 0.55F));
    EXPECT_EQ(19U, GrowExpTime(10U, 0.9999F));
    EXPECT_EQ(10U, GrowExpTime(10U, 0.05F));
    EXPECT_EQ(10U, GrowExpTime(10U, 0.0F));
    EXPECT_EQ(2000000U, GrowExpTime(1000000U, 1.0F));
}

TEST(ExpTableMathTest, TimeGrowthOutsideTheUnsignedRangeIsBounded)
{
    constexpr UINT64 MaxTime = std::numeric_limits<UINT64>::max();
    EXPECT_EQ(1000U, GrowExpTime(1000U, -0.5F)) << "a negative increment adds nothing";
    EXPECT_EQ(1000U, GrowExpTime(1000U, std::numeric_limits<float>::quiet_NaN()));
    EXPECT_EQ(MaxTime, GrowExpTime(1000U, std::numeric_limits<float>::infinity()));
    EXPECT_EQ(MaxTime, GrowExpTime(1000U, 1e30F));
    EXPECT_EQ(MaxTime, GrowExpTime(MaxTime - 10U, 0.5F)) << "the sum saturates";
}
