// Bayer histogram parsing: formats, value tables, CDF and running sums, channel identification, HDR paths.
#include <cstring>

#include "unit/stats/statstestsupport.h"

namespace
{
using Access = CProcessedStatsTestAccess;

// A valid grid plus a histogram of the given bins and channels; data arrays are owned by the fixture.
class StatsHistTest : public StatsTest
{
protected:
    VOID SetUp() override
    {
        StatsTest::SetUp();
        m_pImage = Image(16, 12);
        m_pImage->Fill(SyntheticRegion::Uniform(400));
        m_pImage->Build();
        m_pImage->FillStatistics(m_pStats.get());
        std::memset(m_data, 0, sizeof(m_data));
    }

    StatsBayerHist& UseHist(UINT32 bins, BOOL uniform, std::initializer_list<StatsColorChannelType> types)
    {
        StatsBayerHist& hist = m_pStats->bayerHist;
        std::memset(&hist, 0, sizeof(hist));
        hist.binCount = bins;
        hist.uniform  = uniform;
        UINT32 i      = 0;
        for (StatsColorChannelType& t : hist.histDataType)
        {
            t = StatsColorChannelInvalid;
        }
        for (StatsColorChannelType type : types)
        {
            hist.histDataType[i] = type;
            hist.pHistData[i]    = m_data[i];
            i++;
        }
        hist.channelCount = i;
        return hist;
    }

    std::unique_ptr<CSyntheticStats> m_pImage;
    UINT32                           m_data[4][1024];
};
} // namespace

TEST_F(StatsHistTest, UnevenHistogramValuesFollowTheCompanding)
{
    UseHist(1024, FALSE, {StatsColorChannelY});
    m_data[0][100] = 10;
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    const BHistProcResult& res = Access::BHist(*m_pProc);
    EXPECT_EQ(HistIdentifier::HistIDBHISTUneven, res.procInfo.ID);
    EXPECT_EQ(BHistProcUseCase::Y, res.procInfo.useCase);
    EXPECT_FLOAT_EQ(16.0f, res.procInfo.valueScaler);
    EXPECT_FLOAT_EQ(static_cast<FLOAT>(8 * 1023 - 4089), res.valLUTs[1023]);
    EXPECT_FLOAT_EQ(4095.0f, res.valLUTs[1023]);
    EXPECT_FLOAT_EQ(4096.0f, res.valLUTs[1024]);
    EXPECT_FLOAT_EQ(511.0f, res.valLUTs[511]);
    EXPECT_FLOAT_EQ(4.0f * 600 - 1533, res.valLUTs[600]);
}

TEST_F(StatsHistTest, EvenHistogramGroupZeroIsHalfABin)
{
    UseHist(1024, TRUE, {StatsColorChannelY});
    m_data[0][0] = 10;
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    const BHistProcResult& res = Access::BHist(*m_pProc);
    EXPECT_EQ(HistIdentifier::HistIDBHISTEven, res.procInfo.ID);
    EXPECT_FLOAT_EQ(0.5f, res.valLUTs[0]);
    EXPECT_FLOAT_EQ(1024.0f, res.valLUTs[1024]);
    EXPECT_EQ(1024, res.groupedNumOfBins);
}

TEST_F(StatsHistTest, AllPixelsInTheLastBin)
{
    UseHist(1024, TRUE, {StatsColorChannelY});
    m_data[0][1023] = 5000;
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    const BHistProcResult& res = Access::BHist(*m_pProc);
    for (UINT32 i = 0; i < 1023; i++)
    {
        ASSERT_FLOAT_EQ(0.0f, res.histCDF[0][i]) << i;
    }
    EXPECT_FLOAT_EQ(1.0f, res.histCDF[0][1023]);
    EXPECT_FLOAT_EQ(1023.5f, res.weightedCDF[0][1023]);
}

TEST_F(StatsHistTest, BlueGainDoublesTheBlueWhiteBalancedSums)
{
    m_wb.blueGain = 2.0f;
    UseHist(256, FALSE, {StatsColorChannelR, StatsColorChannelGR, StatsColorChannelB});
    for (UINT32 c = 0; c < 3; c++)
    {
        for (UINT32 b = 0; b < 256; b++)
        {
            m_data[c][b] = (b * 7 + c) % 13;
        }
    }
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    const BHistProcResult& res = Access::BHist(*m_pProc);
    EXPECT_EQ(BHistProcUseCase::RGB, res.procInfo.useCase);
    EXPECT_EQ(HistIdentifier::HistIDHDRBHIST, res.procInfo.ID);
    EXPECT_EQ(3, res.procInfo.numOfChannels);
    for (UINT32 g = 0; g < 256; g++)
    {
        ASSERT_FLOAT_EQ(2.0f * res.weightedCDF[2][g], res.weightedCDFWB[2][g]) << g;
        ASSERT_FLOAT_EQ(res.weightedCDF[0][g], res.weightedCDFWB[0][g]) << g;
    }
}

TEST_F(StatsHistTest, ChannelPriorityFallsBackToYThenSingleColours)
{
    UseHist(256, FALSE, {StatsColorChannelR, StatsColorChannelGR, StatsColorChannelY});
    m_data[0][10] = m_data[1][10] = m_data[2][10] = 1;
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_EQ(BHistProcUseCase::Y, View()->GetBHistProcInfo().useCase);
    EXPECT_EQ(1, View()->GetBHistProcInfo().numOfChannels);

    UseHist(256, FALSE, {StatsColorChannelB, StatsColorChannelG});
    m_data[0][10] = m_data[1][10] = 1;
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_EQ(BHistProcUseCase::G, View()->GetBHistProcInfo().useCase);
    EXPECT_TRUE(LogContains("BHIST G Channel selected"));
}

TEST_F(StatsHistTest, MissingChannelsAndBadBinCounts)
{
    UseHist(256, FALSE, {});
    EXPECT_EQ(AecError, Run(*m_pStats));
    EXPECT_TRUE(LogContains("ERROR: missing BHist channels (need RGB or Y)!"));

    // Zero bins: no histogram this frame, which is not a failure.
    UseHist(0, FALSE, {StatsColorChannelY});
    EXPECT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_TRUE(LogContains("binCount is Zero"));

    // More bins than the tables hold, or any other unknown format, fail the call.
    for (UINT32 bins : {512u, 4097u, 70000u})
    {
        UseHist(bins, FALSE, {StatsColorChannelY});
        EXPECT_EQ(AecError, Run(*m_pStats)) << bins;
        EXPECT_TRUE(LogContains("Unexpected bin count: " + std::to_string(bins)));
        EXPECT_FLOAT_EQ(-1.0f, View()->GetBHistPercentile2Value(0, 0.5f));
    }
}

TEST_F(StatsHistTest, EmptyOrNullHistogramDataFails)
{
    UseHist(256, FALSE, {StatsColorChannelY});
    EXPECT_EQ(AecError, Run(*m_pStats));
    EXPECT_TRUE(LogContains("Empty histogram encountered!"));

    UseHist(256, FALSE, {StatsColorChannelY});
    m_pStats->bayerHist.pHistData[0] = nullptr;
    EXPECT_EQ(AecError, Run(*m_pStats));
    EXPECT_TRUE(LogContains("Invalid BHIST data curRawBin:0 chnlIndices:0"));

    // A null pointer on one channel alone adds nothing to that channel, and an empty channel fails the frame.
    UseHist(256, FALSE, {StatsColorChannelR, StatsColorChannelGR, StatsColorChannelB});
    m_data[0][5] = m_data[2][5] = 3;
    m_data[1][5]                = 3;
    m_pStats->bayerHist.pHistData[1] = nullptr;
    EXPECT_EQ(AecError, Run(*m_pStats));
}

TEST_F(StatsHistTest, SensorHDRParsesNoBayerHistogram)
{
    m_pProc->SetMultiExposureSensorMode(SensorHDR);
    m_tuning.extInsensorHDR.enableInsensorHDR = 1;
    UseHist(256, FALSE, {StatsColorChannelY});
    m_data[0][10] = 100;
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_FLOAT_EQ(-1.0f, View()->GetBHistPercentile2Value(0, 0.5f));
    EXPECT_FLOAT_EQ(-1.0f, View()->GetBHistValue2Percentile(0, 10.0f));
    EXPECT_TRUE(LogContains("BHist buffer is not processed properly! "));
}

TEST_F(StatsHistTest, ISPHDRReadsTheHDRHistogramAndOtherModesFail)
{
    m_pProc->SetMultiExposureSensorMode(ISPHDR);
    UseHist(256, FALSE, {StatsColorChannelY});
    m_data[0][10] = 100;
    m_pStats->hdrBayerHist = m_pStats->bayerHist;
    std::memset(&m_pStats->bayerHist, 0, sizeof(StatsBayerHist));
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_EQ(BHistProcUseCase::Y, View()->GetBHistProcInfo().useCase);

    m_pProc->SetMultiExposureSensorMode(StaggeredHDR);
    EXPECT_EQ(AecError, Run(*m_pStats));
    EXPECT_TRUE(LogContains("unexpected sensor mode 3 not parsing histogram"));
}

TEST_F(StatsHistTest, LongAndMiddleExposureHistogramsAreOptional)
{
    UseHist(256, FALSE, {StatsColorChannelY});
    m_data[0][10] = 100;
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_FLOAT_EQ(-1.0f, View()->GetBHistLEFValue2Percentile(0, 10.0f));

    m_pStats->hdrBayerHistLEF = m_pStats->bayerHist;
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_FLOAT_EQ(1.0f, View()->GetBHistLEFValue2Percentile(0, 200.0f));
    EXPECT_FLOAT_EQ(100.0f, View()->GetRawSHDRLefHist(0, 10));
    EXPECT_FLOAT_EQ(-1.0f, View()->GetRawSHDRLefHist(0, 256));
    EXPECT_FLOAT_EQ(-1.0f, View()->GetRawSHDRMefHist(0, 10));

    // An exposure with channels but no pixels fails.
    m_pStats->hdrBayerHistMEF = m_pStats->bayerHist;
    m_pStats->hdrBayerHistMEF.pHistData[0] = m_data[3];
    EXPECT_EQ(AecError, Run(*m_pStats));
}

TEST_F(StatsHistTest, SyntheticImageHistogramPercentilesMatchThePixels)
{
    // Half the image at 10-bit value 200, half at 600; no saturation.
    auto image = Image(16, 12);
    for (UINT32 y = 0; y < 12; y++)
    {
        for (UINT32 x = 0; x < 16; x++)
        {
            image->SetRegion(x, y, SyntheticRegion::Uniform((x < 8) ? 200 : 600));
        }
    }
    ASSERT_EQ(AecSuccess, Run(*image));
    // Independently: bin 200 covers 8-bit values 50..50.5, bin 600 covers 150..150.5.
    const FLOAT p25 = View()->GetBHistPercentile2Value(0, 0.25f);
    EXPECT_GE(p25, 50.0f);
    EXPECT_LE(p25, 50.5f);
    const FLOAT p75 = View()->GetBHistPercentile2Value(1, 0.75f);
    EXPECT_GE(p75, 150.0f);
    EXPECT_LE(p75, 150.5f);
    EXPECT_NEAR(0.5f, View()->GetBHistValue2Percentile(2, 100.0f), 1e-6f);
    EXPECT_NEAR(1.0f, View()->GetBHistValue2Percentile(2, 200.0f), 1e-6f);
    // Mean of the whole range is the image mean on the 8-bit scale (bin centres).
    EXPECT_NEAR((50.125f + 150.125f) / 2.0f, View()->GetBHistAvgForPctRange(0, 0.0f, 1.0f, FALSE), 1e-3f);
    // Bottom half: all at 50.125.
    EXPECT_NEAR(50.125f, View()->GetBHistAvgForPctRange(0, 0.0f, 0.5f, FALSE), 1e-3f);
}

TEST_F(StatsHistTest, HalfSaturatedImageHistogramPutsHalfThePixelsAtTheThreshold)
{
    auto image = Image(16, 12);
    image->Fill(SyntheticRegion::Uniform(200, 0.5f));
    ASSERT_EQ(AecSuccess, Run(*image));
    EXPECT_NEAR(0.5f, View()->GetBHistValue2Percentile(0, 100.0f), 1e-6f);
    const FLOAT top = View()->GetBHistPercentile2Value(0, 0.9f);
    EXPECT_GE(top, 1023.0f / 4.0f);
    EXPECT_LE(top, 256.0f);
}
