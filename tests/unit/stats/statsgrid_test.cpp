// Bayer grid parsing on synthetic images: lumas, saturation and colour ratios, classification, legacy grid, layouts.
#include <cmath>

#include "unit/stats/statstestsupport.h"

namespace
{
using Access = CProcessedStatsTestAccess;

// The mean pixel value of a slot: non-saturated pixels at their value, saturated ones at the threshold.
double SlotMean(const CSyntheticStats& image, const SyntheticRegion& r, UINT32 slot)
{
    const double pix   = static_cast<double>(image.PixelsPerSlot());
    const double count = image.NonSatCount(r, slot);
    return (count * r.value[slot] + (pix - count) * image.SatThreshold()) / pix;
}

// Region luma of the Bayer layout with weights 0.25, 0.5, 0.25, on the 8-bit scale.
double ExpectedBayerLuma(const CSyntheticStats& image, const SyntheticRegion& r, UINT16 bitDepth, double drc = 1.0)
{
    const double g = 0.5 * (SlotMean(image, r, 2) + SlotMean(image, r, 3));
    return (0.25 * SlotMean(image, r, 0) + 0.5 * g + 0.25 * SlotMean(image, r, 1)) / std::pow(2.0, bitDepth - 8) /
           drc;
}
} // namespace

TEST_F(StatsTest, UniformBayerImageGivesItsLumaEverywhere)
{
    auto image = Image(64, 48);
    image->Fill(SyntheticRegion::Uniform(400));
    ASSERT_EQ(AecSuccess, Run(*image));
    const BGProcResult& bg = Access::BG(*m_pProc);
    EXPECT_EQ(BGProcUseCase::RGGB, bg.procInfo.useCase);
    EXPECT_EQ(3072u, bg.numProcessedRegions);
    EXPECT_EQ(3072u, bg.numNormalRegions);
    for (UINT32 i = 0; i < 3072; i++)
    {
        ASSERT_NEAR(100.0f, bg.BGRegions[i].rgnLuma, 1e-3f) << i;
        ASSERT_FLOAT_EQ(0.0f, bg.BGRegions[i].rgnSatRatio);
        ASSERT_FLOAT_EQ(1.0f, bg.BGRegions[i].RGRatio);
        ASSERT_FLOAT_EQ(1.0f, bg.BGRegions[i].BGRatio);
    }
    INT size = 0;
    const ParsedLegacyYRegionType* pY = View()->GetLegacyYRegionStats(size);
    EXPECT_EQ(256, size);
    for (INT i = 0; i < size; i++)
    {
        ASSERT_NEAR(100.0f, pY[i].Yval, 1e-3f);
    }
    EXPECT_FLOAT_EQ(1.0f, View()->GetNormalRegionRatio());
    EXPECT_FLOAT_EQ((10.5f / 64.0f), bg.BGRegions[10].xPos);
    EXPECT_FLOAT_EQ((1.5f / 48.0f), bg.BGRegions[64].yPos);
}

TEST_F(StatsTest, RampImageLumasFollowTheColumns)
{
    auto image = Image(16, 12);
    for (UINT32 y = 0; y < 12; y++)
    {
        for (UINT32 x = 0; x < 16; x++)
        {
            image->SetRegion(x, y, SyntheticRegion::Uniform(x * 60));
        }
    }
    ASSERT_EQ(AecSuccess, Run(*image));
    const BGProcResult& bg = Access::BG(*m_pProc);
    for (UINT32 y = 0; y < 12; y++)
    {
        for (UINT32 x = 0; x < 16; x++)
        {
            const double expected = ExpectedBayerLuma(*image, image->Region(x, y), 10);
            ASSERT_NEAR(expected, bg.BGRegions[x + y * 16].rgnLuma, 1e-3) << x << "," << y;
        }
    }
    // Column 0 is black: dark, and its colour ratios have no green to divide by.
    EXPECT_EQ(12u, bg.numDarkRegions);
    EXPECT_EQ(0u, bg.numBrightRegions);
    EXPECT_FLOAT_EQ(-1.0f, bg.BGRegions[0].RGRatio);
    // 192 regions: the legacy grid is the grid itself.
    INT size = 0;
    const ParsedLegacyYRegionType* pY = View()->GetLegacyYRegionStats(size);
    EXPECT_EQ(192, size);
    EXPECT_NEAR(ExpectedBayerLuma(*image, image->Region(5, 3), 10), pY[5 + 3 * 16].Yval, 1e-3);
}

TEST_F(StatsTest, HalfSaturatedImageWithAndWithoutSaturationData)
{
    for (BOOL sat : {FALSE, TRUE})
    {
        auto image = Image(64, 48, 10, SyntheticLayout::RGGB, sat);
        image->Fill(SyntheticRegion::Uniform(200, 0.5f));
        ASSERT_EQ(AecSuccess, Run(*image));
        const BGProcResult& bg = Access::BG(*m_pProc);
        const double expected  = ExpectedBayerLuma(*image, image->Region(0, 0), 10);
        EXPECT_NEAR((0.5 * 200 + 0.5 * 1023) / 4.0, expected, 1e-9);
        for (UINT32 i = 0; i < 3072; i++)
        {
            ASSERT_NEAR(expected, bg.BGRegions[i].rgnLuma, 1e-3) << i;
            ASSERT_NEAR(0.5f, bg.BGRegions[i].rgnSatRatio, 1e-6f);
            ASSERT_FLOAT_EQ(1.0f, bg.BGRegions[i].RGRatio);
        }
    }
}

TEST_F(StatsTest, HardwareSaturationSumsAreUsedUnlessTheSaturationControlIsOn)
{
    auto image = Image(16, 12, 10, SyntheticLayout::RGGB, TRUE);
    image->Fill(SyntheticRegion::Uniform(200, 0.5f));
    image->Build();
    image->FillStatistics(m_pStats.get());
    // The hardware says its saturated pixels sum to 0.
    auto* pSat = reinterpret_cast<StatsBayerGridChannelInfoS_Sat*>(m_pStats->bayerGrid.m_pChannelData);
    for (UINT32 i = 0; i < 192; i++)
    {
        pSat[i].saturatedRSum = pSat[i].saturatedBSum = pSat[i].saturatedGRSum = pSat[i].saturatedGBSum = 0;
    }
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_NEAR(0.5 * 200 / 4.0, Access::BG(*m_pProc).BGRegions[7].rgnLuma, 1e-3);

    m_tuning.ADRCSaturation.enableADRCSatCtrl = 1;
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_NEAR((0.5 * 200 + 0.5 * 1023) / 4.0, Access::BG(*m_pProc).BGRegions[7].rgnLuma, 1e-3);
}

TEST_F(StatsTest, SingleBrightRegionIsCountedBright)
{
    auto image = Image(16, 12);
    image->Fill(SyntheticRegion::Uniform(100));
    image->SetRegion(3, 4, SyntheticRegion::Uniform(1000));
    ASSERT_EQ(AecSuccess, Run(*image));
    const BGProcResult& bg = Access::BG(*m_pProc);
    EXPECT_EQ(1u, bg.numBrightRegions);
    EXPECT_EQ(0u, bg.numDarkRegions);
    EXPECT_EQ(191u, bg.numNormalRegions);
    EXPECT_NEAR(250.0f, bg.BGRegions[3 + 4 * 16].rgnLuma, 1e-3f);
    EXPECT_FLOAT_EQ(1.0f / 192.0f, View()->GetBrightRegionRatio());
    EXPECT_FLOAT_EQ(0.0f, View()->GetDarkRegionRatio());
}

TEST_F(StatsTest, FullySaturatedRegionHasNoRatiosAndLumaFromThresholds)
{
    auto image = Image(16, 12);
    image->Fill(SyntheticRegion::Uniform(100));
    image->SetRegion(0, 0, SyntheticRegion::Uniform(100, 1.0f));
    ASSERT_EQ(AecSuccess, Run(*image));
    const ParsedBGRegionType& r = Access::BG(*m_pProc).BGRegions[0];
    EXPECT_FLOAT_EQ(-1.0f, r.RGRatio);
    EXPECT_FLOAT_EQ(-1.0f, r.BGRatio);
    EXPECT_FLOAT_EQ(1.0f, r.rgnSatRatio);
    EXPECT_NEAR(1023.0f / 4.0f, r.rgnLuma, 1e-3f);
}

TEST_F(StatsTest, BitDepth14ScalesBy1Over64)
{
    auto image = Image(16, 12, 14);
    image->Fill(SyntheticRegion::Uniform(6400));
    ASSERT_EQ(AecSuccess, Run(*image));
    EXPECT_NEAR(100.0f, Access::BG(*m_pProc).BGRegions[0].rgnLuma, 1e-3f);
}

TEST_F(StatsTest, DRCGainOf4DividesEveryLuma)
{
    auto image = Image(16, 12);
    image->Fill(SyntheticRegion::Uniform(400));
    ASSERT_EQ(AecSuccess, Run(*image, 4.0f));
    for (UINT32 i = 0; i < 192; i++)
    {
        ASSERT_NEAR(25.0f, Access::BG(*m_pProc).BGRegions[i].rgnLuma, 1e-4f);
    }
}

TEST_F(StatsTest, RGBYLayoutReadsYAndGreen)
{
    auto image = Image(16, 12, 10, SyntheticLayout::RGBY);
    image->Fill({{300, 200, 400, 360}, {0.0f, 0.0f, 0.0f, 0.25f}});
    ASSERT_EQ(AecSuccess, Run(*image));
    const BGProcResult& bg = Access::BG(*m_pProc);
    EXPECT_EQ(BGProcUseCase::RGBY, bg.procInfo.useCase);
    const ParsedBGRegionType& r = bg.BGRegions[20];
    EXPECT_NEAR((0.75 * 360 + 0.25 * 1023) / 4.0, r.rgnLuma, 1e-3);
    EXPECT_NEAR(0.25f, r.rgnSatRatio, 1e-6f);
    EXPECT_NEAR(0.75f, r.RGRatio, 1e-6f);
    EXPECT_NEAR(0.5f, r.BGRatio, 1e-6f);
}

TEST_F(StatsTest, OnlyYLayoutUsesAllPixelsOfTheRegion)
{
    auto image = Image(16, 12, 10, SyntheticLayout::OnlyY, TRUE);
    image->Fill({{800, 0, 0, 800}, {0.0f, 0.0f, 0.0f, 0.0f}});
    ASSERT_EQ(AecSuccess, Run(*image));
    const BGProcResult& bg = Access::BG(*m_pProc);
    EXPECT_EQ(BGProcUseCase::Y, bg.procInfo.useCase);
    EXPECT_EQ(32u * 32u, image->PixelsPerSlot());
    EXPECT_NEAR(200.0f, bg.BGRegions[0].rgnLuma, 1e-3f);
    EXPECT_FLOAT_EQ(1.0f, bg.BGRegions[0].RGRatio);
    EXPECT_FLOAT_EQ(1.0f, bg.BGRegions[0].BGRatio);
}

TEST_F(StatsTest, GridOf3073RegionsFailsAnd64By48Passes)
{
    auto big = Image(64, 48);
    big->Fill(SyntheticRegion::Uniform(400));
    big->Build();
    big->FillStatistics(m_pStats.get());
    m_pStats->bayerGrid.horizontalRegionCount = 3073;
    m_pStats->bayerGrid.verticalRegionCount   = 1;
    m_pStats->bayerGrid.totalRegionCount      = 3072;
    EXPECT_EQ(AecError, Run(*m_pStats));
    EXPECT_TRUE(LogContains("Input BG stats grid has invalid sizes (3073, 1)!"));
    EXPECT_EQ(AecSuccess, Run(*big));
}

TEST_F(StatsTest, SubsamplingFactorFollowsTheGridSize)
{
    m_core.mtrLumaCalc.indexCalc.bayerGridSubsmplSelect = aecMetering::SW4;
    struct Case
    {
        UINT32 h;
        UINT32 v;
        UINT8  factor;
    };
    for (const Case& c : {Case{32, 32, 2}, Case{48, 48, 1}, Case{64, 48, 4}, Case{16, 12, 1}})
    {
        auto image = Image(c.h, c.v);
        image->Fill(SyntheticRegion::Uniform(400));
        ASSERT_EQ(AecSuccess, Run(*image));
        EXPECT_EQ(c.factor, Access::BG(*m_pProc).SWSubsmplFactor) << c.h << "x" << c.v;
        // The frame pass itself parses every region, whatever the factor.
        EXPECT_EQ(c.h * c.v, Access::BG(*m_pProc).numProcessedRegions);
    }
}

TEST_F(StatsTest, LegacyGridOf15By15Has225Regions)
{
    auto image = Image(15, 15);
    image->Fill(SyntheticRegion::Uniform(400));
    ASSERT_EQ(AecSuccess, Run(*image));
    INT size = 0;
    View()->GetLegacyYRegionStats(size);
    EXPECT_EQ(225, size);
}

TEST_F(StatsTest, GridNotAMultipleOf16FoldsIntoTheLastLegacyRegions)
{
    auto image = Image(40, 40);
    image->Fill(SyntheticRegion::Uniform(400));
    image->SetRegion(39, 39, SyntheticRegion::Uniform(0));
    ASSERT_EQ(AecSuccess, Run(*image));
    INT size = 0;
    const ParsedLegacyYRegionType* pY = View()->GetLegacyYRegionStats(size);
    EXPECT_EQ(256, size);
    // The last legacy region covers columns and rows 30 to 39: 100 regions, one of them black.
    EXPECT_NEAR(100.0f * 99.0f / 100.0f, pY[255].Yval, 1e-3f);
    EXPECT_NEAR(100.0f, pY[0].Yval, 1e-3f);
}

TEST_F(StatsTest, AWBCompensatedWeightsScaleTheLuma)
{
    m_core.mtrLumaCalc.lumaWeight.enableColorAndSensorComp = 1;
    m_core.mtrLumaCalc.lumaWeight.refGain[0]               = 1.0f;
    m_core.mtrLumaCalc.lumaWeight.refGain[1]               = 1.0f;
    m_core.mtrLumaCalc.lumaWeight.refGain[2]               = 1.0f;
    m_wb.isAuto                                            = 1;
    m_wb.redGain                                           = 2.0f;
    auto image = Image(16, 12);
    image->Fill(SyntheticRegion::Uniform(400));
    ASSERT_EQ(AecSuccess, Run(*image));
    EXPECT_NEAR(125.0f, Access::BG(*m_pProc).BGRegions[0].rgnLuma, 1e-3f);

    // A non-positive reference gain keeps the tuned weights.
    m_core.mtrLumaCalc.lumaWeight.refGain[1] = 0.0f;
    ASSERT_EQ(AecSuccess, Run(*image));
    EXPECT_NEAR(100.0f, Access::BG(*m_pProc).BGRegions[0].rgnLuma, 1e-3f);
    EXPECT_TRUE(LogContains("Tuned reference gain for luma weight calculation is invalid"));
}

TEST_F(StatsTest, LongExposureGridIsParsedWhenPresentAndOptionalOtherwise)
{
    auto image = Image(16, 12);
    image->Fill(SyntheticRegion::Uniform(400));
    ASSERT_EQ(AecSuccess, Run(*image));
    EXPECT_FLOAT_EQ(-1.0f, View()->GetRawSHDRLEFBGstats(0));
    EXPECT_TRUE(LogContains("LEF BG stats buffer is not processed properly! "));

    auto lef = Image(16, 12);
    lef->Fill(SyntheticRegion::Uniform(800));
    lef->Build();
    image->Build();
    image->FillStatistics(m_pStats.get());
    m_pStats->bayerGridLEF = lef->Grid();
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    EXPECT_NEAR(200.0f, View()->GetRawSHDRLEFBGstats(5), 1e-3f);
    EXPECT_NEAR(100.0f, View()->GetRawSHDRSEFBGstats(5), 1e-3f);
    // The middle exposure was absent: its grid stays unprocessed.
    EXPECT_FLOAT_EQ(-1.0f, View()->GetRawSHDRMEFBGstats(5));
    EXPECT_FLOAT_EQ(-1.0f, View()->GetRawSHDRSEFBGstats(192));
}

TEST_F(StatsTest, ReprocessingAFullyParsedFrameCountsNothingTwice)
{
    auto image = Image(16, 12);
    image->Fill(SyntheticRegion::Uniform(400));
    ASSERT_EQ(AecSuccess, Run(*image));
    m_pProc->ReprocessBGStats(BGStatsIterationMode::Exhaustive, 0.0f, 0.0f, 1.0f, 1.0f);
    EXPECT_EQ(192u, Access::BG(*m_pProc).numProcessedRegions);
}

TEST_F(StatsTest, CloneIsADeepCopy)
{
    auto image = Image(16, 12);
    image->Fill(SyntheticRegion::Uniform(400));
    ASSERT_EQ(AecSuccess, Run(*image));
    std::unique_ptr<IProcessedStats> pClone(View()->Clone());
    ASSERT_NE(nullptr, pClone);
    image->Fill(SyntheticRegion::Uniform(800));
    ASSERT_EQ(AecSuccess, Run(*image));
    EXPECT_NEAR(100.0f, pClone->GetRawSHDRSEFBGstats(3), 1e-3f);
    EXPECT_NEAR(200.0f, View()->GetRawSHDRSEFBGstats(3), 1e-3f);
}
