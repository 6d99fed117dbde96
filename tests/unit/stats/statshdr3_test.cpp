// Three-exposure in-sensor HDR statistics: merged histogram formats, log spread and the per-channel luma grid.
#include <cstring>

#include "unit/stats/statstestsupport.h"

namespace
{
using Access = CProcessedStatsTestAccess;

class StatsHDR3Test : public StatsTest
{
protected:
    VOID SetUp() override
    {
        StatsTest::SetUp();
        m_pProc->SetMultiExposureSensorMode(SensorHDR);
        m_tuning.extInsensorHDR.enableInsensorHDR = 0;
        m_pImage = Image(16, 12);
        m_pImage->Fill(SyntheticRegion::Uniform(400));
        m_pImage->Build();
        m_pImage->FillStatistics(m_pStats.get());
        m_pExp = std::make_unique<StatsHDR3ExposureDataType>();
        std::memset(m_pExp.get(), 0, sizeof(StatsHDR3ExposureDataType));
        std::memset(m_merged, 0, sizeof(m_merged));
        StatsHDR3ExposureHistStats& merged = m_pExp->mergedBayerHist;
        for (StatsColorChannelType& t : merged.histDataType)
        {
            t = StatsColorChannelInvalid;
        }
        merged.histDataType[0]          = StatsColorChannelY;
        merged.pHistData[0]             = m_merged;
        merged.binCount                 = 256;
        m_pExp->mergedHistchannelCount  = 1;
        m_pExp->splitBayerHist          = merged;
        m_pStats->hdr3Stats.pHDR3ExposureStats = m_pExp.get();
        m_pStats->hdr3Stats.HDR3ExposureType   = HDR3ExposureType1;
    }

    std::unique_ptr<CSyntheticStats>           m_pImage;
    std::unique_ptr<StatsHDR3ExposureDataType> m_pExp;
    UINT32                                     m_merged[256];
};
} // namespace

TEST_F(StatsHDR3Test, LinearMergedHistogramIsParsed)
{
    m_merged[100] = 50;
    m_merged[200] = 50;
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    const HDR3HistProcResult& res = Access::HDR3(*m_pProc);
    EXPECT_EQ(HDR3HistProcUseCase::Y, res.procInfo.useCase);
    EXPECT_EQ(255u, res.procInfo.maxHistPixelValue);
    EXPECT_EQ(256u, res.groupedNumOfBins);
    EXPECT_FLOAT_EQ(256.0f, res.valLUTs[256]);
    EXPECT_FLOAT_EQ(0.5f, res.histCDF[0][150]);
    EXPECT_FLOAT_EQ(1.0f, res.histCDF[0][255]);
    EXPECT_NEAR(150.0f, View()->GetmergeHistAvgForPctRange(0, 0.0f, 1.0f, FALSE), 1e-3f);
    EXPECT_EQ(HDR3HistProcUseCase::Y, View()->GetHDR3HistProcInfo().useCase);
}

TEST_F(StatsHDR3Test, LogHistogramWithAllPixelsInBin15SpreadsOver128PositionsLosingTheRemainder)
{
    m_pExp->mergedBayerHist.binCount = 16;
    m_merged[15]                     = 1000;
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    const HDR3HistProcResult& res = Access::HDR3(*m_pProc);
    EXPECT_EQ(256u, res.procInfo.maxHistPixelValue);
    EXPECT_EQ(128u, res.procInfo.splitBinCount);
    EXPECT_EQ(2u, res.procInfo.histWeightUnit);
    for (UINT32 pos = 0; pos < 128; pos++)
    {
        ASSERT_EQ(0u, res.groupedHist[0][pos]) << pos;
    }
    for (UINT32 pos = 128; pos < 256; pos++)
    {
        ASSERT_EQ(1000u / 128u, res.groupedHist[0][pos]) << pos;
    }
    EXPECT_FLOAT_EQ(257.0f, res.valLUTs[256]);
}

TEST_F(StatsHDR3Test, LogHistogramHighBinsOverwriteTheLowPositions)
{
    m_pExp->mergedBayerHist.binCount = 16;
    m_merged[1]                      = 77;  // position 1, overwritten by bin 8
    m_merged[8]                      = 5;   // position 1
    m_merged[9]                      = 10;  // positions 2 and 3
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    const HDR3HistProcResult& res = Access::HDR3(*m_pProc);
    EXPECT_EQ(5u, res.groupedHist[0][1]);
    EXPECT_EQ(5u, res.groupedHist[0][2]);
    EXPECT_EQ(5u, res.groupedHist[0][3]);
}

TEST_F(StatsHDR3Test, MissingChannelsUnknownBinsAndEmptyHistogramsFail)
{
    m_merged[3] = 1;
    m_pExp->splitBayerHist.histDataType[0] = StatsColorChannelGR;
    EXPECT_EQ(AecError, Run(*m_pStats));
    EXPECT_TRUE(LogContains("ERROR: missing splitHist channels (need Y)!"));

    m_pExp->splitBayerHist.histDataType[0] = StatsColorChannelY;
    m_pExp->mergedBayerHist.binCount       = 64;
    EXPECT_EQ(AecError, Run(*m_pStats));
    EXPECT_TRUE(LogContains("Unexpected bin count: 64"));

    m_pExp->mergedBayerHist.binCount = 0;
    EXPECT_EQ(AecError, Run(*m_pStats));
    EXPECT_TRUE(LogContains("no bins in merged histogram!"));

    m_pExp->mergedBayerHist.binCount = 256;
    m_merged[3]                      = 0;
    EXPECT_EQ(AecError, Run(*m_pStats));
    EXPECT_TRUE(LogContains("Empty histogram encountered!"));

    // More channels claimed than the record holds are capped, not read past the table.
    m_merged[3]                    = 1;
    m_pExp->mergedHistchannelCount = 9;
    EXPECT_EQ(AecSuccess, Run(*m_pStats));

    m_pStats->hdr3Stats.pHDR3ExposureStats = nullptr;
    EXPECT_EQ(AecError, Run(*m_pStats));
}

TEST_F(StatsHDR3Test, InSensorHDREnabledSkipsThePath)
{
    m_tuning.extInsensorHDR.enableInsensorHDR = 1;
    m_pStats->hdr3Stats.pHDR3ExposureStats    = nullptr;
    EXPECT_EQ(AecSuccess, Run(*m_pStats));
}

TEST_F(StatsHDR3Test, GridPriorityParsesTheLumaArraysSubsampled)
{
    m_core.mtrLumaCalc.indexCalc.bayerGridSubsmplSelect = aecMetering::SW4;
    m_sensorHDR.LumaCalculationConfig                    = aecSensorConfig::LumaCalculationTypeGridPrio;
    m_pStats->hdr3Stats.HDR3ExposureType                 = HDR3ExposureType2;
    m_merged[3]                                          = 1;
    static UINT16 luma[3072];
    static UINT16 red[3072];
    static UINT16 green[3072];
    static UINT16 blue[3072];
    for (UINT32 i = 0; i < 3072; i++)
    {
        luma[i]  = 400;
        red[i]   = 300;
        green[i] = 600;
        blue[i]  = 150;
    }
    luma[5] = 1000;
    StatsBayerGrid& grid = m_pExp->gridBayerStats;
    grid                 = m_pStats->bayerGrid;
    grid.horizontalRegionCount = 64;
    grid.verticalRegionCount   = 48;
    grid.pGridData[0]          = luma;
    grid.pGridData[1]          = red;
    grid.pGridData[2]          = green;
    grid.pGridData[3]          = blue;
    m_pStats->bayerGrid.numValidRegions = 3072;
    ASSERT_EQ(AecSuccess, Run(*m_pStats, 2.0f));
    const BGProcResult& bg = Access::BG(*m_pProc);
    EXPECT_EQ(4, bg.SWSubsmplFactor);
    EXPECT_EQ(768u, bg.numProcessedRegions);
    EXPECT_NEAR(50.0f, bg.BGRegions[0].rgnLuma, 1e-4f);
    EXPECT_NEAR(0.5f, bg.BGRegions[0].RGRatio, 1e-6f);
    EXPECT_NEAR(0.25f, bg.BGRegions[0].BGRatio, 1e-6f);
    EXPECT_FALSE(bg.BGRegionsCalculated[1]);
    // A second frame keeps counting the processed regions in this mode.
    ASSERT_EQ(AecSuccess, Run(*m_pStats, 2.0f));
    EXPECT_EQ(1536u, Access::BG(*m_pProc).numProcessedRegions);
    // Reprocessing a window fills in the regions the subsampled pass skipped.
    m_pProc->ReprocessBGStats(BGStatsIterationMode::Exhaustive, 0.0f, 0.0f, 0.1f, 0.05f);
    EXPECT_TRUE(Access::BG(*m_pProc).BGRegionsCalculated[1]);
    EXPECT_NEAR(125.0f, Access::BG(*m_pProc).BGRegions[5].rgnLuma, 1e-4f);
    EXPECT_FLOAT_EQ(0.0f, Access::BG(*m_pProc).BGRegions[5].rgnSatRatio);

    // A null luma array fails the grid, so the frame.
    grid.pGridData[0] = nullptr;
    EXPECT_EQ(AecError, Run(*m_pStats, 2.0f));
}
