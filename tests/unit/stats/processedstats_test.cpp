// Processed statistics view: percentile search, range means, clipped luma and the non-linear gain estimate.
#include <cmath>

#include "unit/stats/statstestsupport.h"

namespace
{
using Stats = CStatsProcessor::CProcessedStats;

class ProcessedStatsTest : public StatsTest
{
protected:
    VOID SetUp() override
    {
        StatsTest::SetUp();
        m_nonLin.enableNonLinearEstimate = 1;
        m_nonLin.errPct                  = 2.0f;
        m_nonLin.maxIterations           = 20;
    }

    const Stats& Concrete() { return *static_cast<const Stats*>(View()); }

    // Columns of 10-bit values 40, 80, ... 640: 8-bit 10 to 160 in equal shares.
    VOID RunRamp()
    {
        auto image = Image(16, 12);
        for (UINT32 y = 0; y < 12; y++)
        {
            for (UINT32 x = 0; x < 16; x++)
            {
                image->SetRegion(x, y, SyntheticRegion::Uniform(40 + x * 40));
            }
        }
        ASSERT_EQ(AecSuccess, Run(*image));
    }

    aecMetering::NonLinearEstimateType m_nonLin;
};
} // namespace

TEST_F(ProcessedStatsTest, PercentileInDetailCases)
{
    const FLOAT cdf[4] = {0.2f, 0.5f, 0.5f, 1.0f};
    UINT16      bin    = 99;
    FLOAT       frac   = -1.0f;
    Stats::GetHistPercentileInDetail(0.1f, cdf, 4, &bin, &frac);
    EXPECT_EQ(0, bin);
    EXPECT_FLOAT_EQ(0.5f, frac);
    Stats::GetHistPercentileInDetail(-0.1f, cdf, 4, &bin, &frac);
    EXPECT_EQ(0, bin);
    EXPECT_FLOAT_EQ(0.0f, frac);
    Stats::GetHistPercentileInDetail(1.5f, cdf, 4, &bin, &frac);
    EXPECT_EQ(3, bin);
    EXPECT_FLOAT_EQ(1.0f, frac);
    Stats::GetHistPercentileInDetail(0.35f, cdf, 4, &bin, &frac);
    EXPECT_EQ(1, bin);
    EXPECT_FLOAT_EQ(0.5f, frac);
    Stats::GetHistPercentileInDetail(0.75f, cdf, 4, &bin, &frac);
    EXPECT_EQ(3, bin);
    EXPECT_FLOAT_EQ(0.5f, frac);
    Stats::GetHistPercentileInDetail(0.5f, cdf, 0, &bin, &frac);
    EXPECT_EQ(0, bin);
}

TEST_F(ProcessedStatsTest, RangeMeanWithEqualPercentagesIsAnError)
{
    RunRamp();
    EXPECT_FLOAT_EQ(-1.0f, View()->GetBHistAvgForPctRange(0, 0.4f, 0.4f, FALSE));
    EXPECT_TRUE(LogContains("startPct (0.400000) needs to be smaller than endPct(0.400000)!"));
    EXPECT_FLOAT_EQ(-1.0f, View()->GetBHistAvgForPctRange(0, -0.1f, 0.4f, FALSE));
    EXPECT_FLOAT_EQ(-1.0f, View()->GetBHistAvgForPctRange(3, 0.1f, 0.4f, FALSE));
    EXPECT_TRUE(LogContains("Queried channel index (3) is out of the total number of processed channels 3!"));
}

TEST_F(ProcessedStatsTest, RangeMeanInsideASingleBinStaysInThatBin)
{
    auto image = Image(16, 12);
    image->Fill(SyntheticRegion::Uniform(500));
    ASSERT_EQ(AecSuccess, Run(*image));
    const FLOAT mean = View()->GetBHistAvgForPctRange(1, 0.2f, 0.8f, TRUE);
    EXPECT_GE(mean, 500.0f / 4.0f);
    EXPECT_LE(mean, 501.0f / 4.0f);
}

TEST_F(ProcessedStatsTest, RampPercentilesAndMeansMatchTheImage)
{
    RunRamp();
    // Sixteen equal columns: the 8-bit value of column k is 10 (k + 1), centred a bin higher.
    for (UINT32 k = 0; k < 16; k++)
    {
        const FLOAT pct   = (static_cast<FLOAT>(k) + 0.5f) / 16.0f;
        const FLOAT value = View()->GetBHistPercentile2Value(0, pct);
        EXPECT_GE(value, 10.0f * (k + 1)) << k;
        EXPECT_LE(value, 10.0f * (k + 1) + 0.5f) << k;
    }
    EXPECT_NEAR(8.0f / 16.0f, View()->GetBHistValue2Percentile(0, 85.0f), 1e-6f);
    // Mean of the top quarter: columns 12 to 15, 8-bit 130 to 160, at bin centres.
    EXPECT_NEAR(145.0f + 0.125f, View()->GetBHistAvgForPctRange(0, 0.75f, 1.0f, FALSE), 1e-3f);
    EXPECT_NEAR(85.0f + 0.125f, View()->GetBHistAvgForPctRange(0, 0.0f, 1.0f, FALSE), 1e-3f);
}

TEST_F(ProcessedStatsTest, InvalidHistogramGivesTheLinearGain)
{
    const MinMaxRangeFloat range = {0.0f, 1.0f};
    EXPECT_FLOAT_EQ(2.0f, View()->EstimateNonLinGain(50.0f, 100.0f, range, 0, &m_nonLin));
    EXPECT_TRUE(LogContains("warning umaThresRange.min"));
}

TEST_F(ProcessedStatsTest, NoClippingInTheWayGivesTheLinearGain)
{
    RunRamp();
    const MinMaxRangeFloat range = {0.0f, 1.0f};
    EXPECT_FLOAT_EQ(100.0f / 85.0f, View()->EstimateNonLinGain(85.0f, 100.0f, range, 1, &m_nonLin));
}

TEST_F(ProcessedStatsTest, ClippingNeedsMoreThanTheLinearGain)
{
    RunRamp();
    const MinMaxRangeFloat range = {0.0f, 1.0f};
    const FLOAT            gain  = View()->EstimateNonLinGain(85.0f, 200.0f, range, 1, &m_nonLin);
    EXPECT_GT(gain, 200.0f / 85.0f);
    const FLOAT luma = Concrete().CalculateNonLinearHistLuma(range, 256.0f / gain, 1);
    EXPECT_LE(std::fabs(luma - 200.0f) * 100.0f / 200.0f, m_nonLin.errPct);
}

TEST_F(ProcessedStatsTest, ZeroIterationsReturnsTheFirstGuess)
{
    RunRamp();
    m_nonLin.maxIterations          = 0;
    const MinMaxRangeFloat range    = {0.0f, 1.0f};
    const MinMaxRangeFloat thresholds = {10.0f, 200.0f};
    EXPECT_FLOAT_EQ(256.0f / 200.0f, Concrete().SearchHistLumaGain(thresholds, range, 1, 230.0f, &m_nonLin));
}

TEST_F(ProcessedStatsTest, HighThresholdMakesTheFirstGuessExactly103)
{
    RunRamp();
    m_nonLin.maxIterations            = 0;
    const MinMaxRangeFloat range      = {0.0f, 1.0f};
    const MinMaxRangeFloat thresholds = {10.0f, 255.0f};
    EXPECT_FLOAT_EQ(1.03f, Concrete().SearchHistLumaGain(thresholds, range, 1, 230.0f, &m_nonLin));
}

TEST_F(ProcessedStatsTest, RangeStartAboveTheThresholdPercentileIsAllClipped)
{
    RunRamp();
    // 50 stands at percentile 0.25; the range starts at 0.5.
    const MinMaxRangeFloat range = {0.5f, 1.0f};
    EXPECT_FLOAT_EQ(256.0f, Concrete().CalculateNonLinearHistLuma(range, 50.0f, 0));
}

TEST_F(ProcessedStatsTest, EmptyRangeOrZeroThresholdHasNoClippedLuma)
{
    RunRamp();
    EXPECT_FLOAT_EQ(-1.0f, Concrete().CalculateNonLinearHistLuma({0.5f, 0.5f}, 50.0f, 0));
    EXPECT_FLOAT_EQ(-1.0f, Concrete().CalculateNonLinearHistLuma({0.0f, 1.0f}, 0.0f, 0));
}

TEST_F(ProcessedStatsTest, RawHistogramQueriesAreGuarded)
{
    RunRamp();
    EXPECT_FLOAT_EQ(192.0f * 256.0f / 16.0f, View()->GetRawSHDRSefHist(0, 40));
    EXPECT_FLOAT_EQ(-1.0f, View()->GetRawSHDRSefHist(0, 1024));
    EXPECT_TRUE(LogContains("Queried hist index (1024) is out of the total number of processed hist bins 1024!"));
    EXPECT_FLOAT_EQ(-1.0f, View()->GetRawSHDRSefHist(3, 0));
}

TEST_F(ProcessedStatsTest, ValueQueriesClampOutOfRangeValues)
{
    RunRamp();
    EXPECT_FLOAT_EQ(0.0f, View()->GetBHistValue2Percentile(0, -50.0f));
    EXPECT_FLOAT_EQ(1.0f, View()->GetBHistValue2Percentile(0, 1e9f));
}

TEST_F(ProcessedStatsTest, DebugDataCopiesTheResults)
{
    RunRamp();
    auto pDebug = std::make_unique<AECDebugData>();
    View()->FillDebugData(pDebug.get());
    // The debug record is packed: its fields are read by value, never bound to references.
    const auto regions    = pDebug->BGProcResult.numProcessedRegions;
    const auto calculated = pDebug->BGProcResult.BGRegionsCalculated[191];
    const auto bins       = pDebug->BHistResult.numOfBins;
    const auto cdf        = pDebug->BHistResult.histCDF[0][1023];
    const auto uniform    = pDebug->BHistResult.isUniform;
    EXPECT_EQ(192u, regions);
    EXPECT_EQ(1, calculated);
    EXPECT_EQ(1024, bins);
    EXPECT_FLOAT_EQ(1.0f, cdf);
    EXPECT_EQ(1, uniform);
}
