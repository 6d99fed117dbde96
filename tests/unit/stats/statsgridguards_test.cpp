// Bad statistics fail only the call, with a log line: pointers, counts, sizes and bit depths that don't agree.
#include <functional>

#include "unit/stats/statstestsupport.h"

namespace
{
using Access = CProcessedStatsTestAccess;

class StatsGuardTest : public StatsTest
{
protected:
    VOID SetUp() override
    {
        StatsTest::SetUp();
        m_pImage = Image(16, 12);
        m_pImage->Fill(SyntheticRegion::Uniform(400));
        m_pImage->Build();
        m_pImage->FillStatistics(m_pStats.get());
    }

    // Breaks a good frame in one way and expects the call to fail with the given log.
    VOID ExpectFailure(const std::function<VOID(StatsBayerGrid&)>& breakIt, const std::string& log)
    {
        m_pImage->FillStatistics(m_pStats.get());
        breakIt(m_pStats->bayerGrid);
        CapturedLogs().clear();
        EXPECT_EQ(AecError, Run(*m_pStats)) << log;
        EXPECT_TRUE(LogContains(log)) << log;
    }

    std::unique_ptr<CSyntheticStats> m_pImage;
};
} // namespace

TEST_F(StatsGuardTest, NullInputsFail)
{
    EXPECT_EQ(AecError, m_pProc->ProcessStats(nullptr, &m_wb, 1.0f));
    EXPECT_TRUE(LogContains("Stats pointer is null!"));
    EXPECT_EQ(AecError, m_pProc->ProcessStats(m_pStats.get(), nullptr, 1.0f));
    EXPECT_TRUE(LogContains("AWBGain pointer is null!"));
}

TEST_F(StatsGuardTest, MissingTuningFails)
{
    auto pProc = std::make_unique<CStatsProcessor>();
    pProc->SetTuning(nullptr);
    EXPECT_EQ(AecError, pProc->ProcessStats(m_pStats.get(), &m_wb, 1.0f));
    EXPECT_TRUE(LogContains("Metering tuning is not set!"));
}

TEST_F(StatsGuardTest, StartupModeSkipsTheFrame)
{
    m_pStats->nonUniformBayerHist.startupMode = StatisticsStartUpInvalid;
    EXPECT_EQ(AecError, Run(*m_pStats));
    EXPECT_TRUE(LogContains("Camera is in startup mode ! Skip stats processing !"));
}

TEST_F(StatsGuardTest, InconsistentGridsFailTheCall)
{
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    ExpectFailure([](StatsBayerGrid& g) { g.horizontalRegionCount = 0; },
                  "Input BG stats grid has invalid sizes (0, 12)!");
    ExpectFailure([](StatsBayerGrid& g) { g.verticalRegionCount = 0x10000; },
                  "Input BG stats grid has invalid sizes");
    ExpectFailure([](StatsBayerGrid& g) { g.totalRegionCount = 193; }, "exceed the grid of 192 regions");
    ExpectFailure([](StatsBayerGrid& g) { g.numValidRegions = 4000; }, "exceed the grid of 192 regions");
    ExpectFailure([](StatsBayerGrid& g) { g.numValidRegions = 0; }, "BG stats carry no valid region");
    ExpectFailure([](StatsBayerGrid& g) { g.m_pChannelData = nullptr; }, "BG stats channel data pointer is null");
    ExpectFailure([](StatsBayerGrid& g) { g.bitDepth = 0; },
                  "Input Bit Width less than consume bit width! 0 expecting max 8");
    ExpectFailure([](StatsBayerGrid& g) { g.bitDepth = 7; }, "Input Bit Width less than consume bit width! 7");
    ExpectFailure([](StatsBayerGrid& g) { g.bitDepth = 17; }, "BG stats bit depth 17 exceeds the supported 16");
    ExpectFailure([](StatsBayerGrid& g) { g.regionWidth = 0; }, "BG stats region size (0 x 32) is empty");
    // The last good frame's results stay for the caller to reuse.
    EXPECT_NEAR(100.0f, Access::BG(*m_pProc).BGRegions[0].rgnLuma, 1e-3f);
}

TEST_F(StatsGuardTest, BitDepth16IsSupported)
{
    auto image = Image(16, 12, 16);
    image->Fill(SyntheticRegion::Uniform(25600));
    ASSERT_EQ(AecSuccess, Run(*image));
    EXPECT_NEAR(100.0f, Access::BG(*m_pProc).BGRegions[0].rgnLuma, 1e-3f);
}

TEST_F(StatsGuardTest, FewerValidRegionsThanTheGridLeaveLegacyHoles)
{
    // Regions past numValidRegions are not parsed; a 192-region grid has one legacy region per region.
    m_pStats->bayerGrid.numValidRegions = 100;
    EXPECT_EQ(AecError, Run(*m_pStats));
    EXPECT_TRUE(LogContains("Invalid index being processed: statsIdx = 100, max = 100"));
    EXPECT_TRUE(LogContains("Subsampling too sparse! No Y in Region (100)!"));
}

TEST_F(StatsGuardTest, CountAbovePixelsPerRegionIsAConflict)
{
    auto* pRec = m_pStats->bayerGrid.m_pChannelData;
    pRec[0].RCount = 300; // 256 pixels per region and channel
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_TRUE(LogContains("BG Stats reporting information conflict: number of pixels per region(300) is bigger "
                            "than pixel counts(256)!"));
    pRec[0].RCount = 256;
}

TEST_F(StatsGuardTest, LongExposureGridGuards)
{
    auto lef = Image(16, 12);
    lef->Fill(SyntheticRegion::Uniform(400));
    lef->Build();
    // Missing exposure: fine.
    m_pStats->bayerGridLEF.horizontalRegionCount = 0;
    EXPECT_EQ(AecSuccess, Run(*m_pStats));
    // An inconsistent one fails the call.
    m_pStats->bayerGridLEF                 = lef->Grid();
    m_pStats->bayerGridLEF.m_pChannelData  = nullptr;
    EXPECT_EQ(AecError, Run(*m_pStats));
    m_pStats->bayerGridLEF                  = lef->Grid();
    m_pStats->bayerGridLEF.numValidRegions  = 5000;
    EXPECT_EQ(AecError, Run(*m_pStats));
    // An over-full count is clamped, and the region is parsed as unsaturated.
    m_pStats->bayerGridLEF = lef->Grid();
    lef->Grid().m_pChannelData[0].RCount = 300;
    EXPECT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_TRUE(LogContains("BG stats conflict: non-sat pixel count(300) exceeds pixels per region(256)."));
}

TEST_F(StatsGuardTest, NonPositiveDRCGainIsTreatedAsOne)
{
    EXPECT_EQ(AecSuccess, Run(*m_pStats, 0.0f));
    EXPECT_TRUE(LogContains("Invalid DRC gain"));
    EXPECT_NEAR(100.0f, Access::BG(*m_pProc).BGRegions[0].rgnLuma, 1e-3f);
}

TEST_F(StatsGuardTest, ReprocessWithoutAFrameDoesNothing)
{
    auto pProc = std::make_unique<CStatsProcessor>();
    pProc->ReprocessBGStats(BGStatsIterationMode::Exhaustive, 0.0f, 0.0f, 1.0f, 1.0f);
    EXPECT_TRUE(LogContains("No statistics frame to reprocess"));
}
