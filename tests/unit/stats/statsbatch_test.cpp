// The vector paths give the same results as one region or one group at a time, with the kernel this CPU runs.
#include <cmath>
#include <cstring>
#include <vector>

#include "aec/core/modules/mod_mtr/histaccumulate.h"
#include "unit/stats/statstestsupport.h"

namespace
{
using Access = CProcessedStatsTestAccess;

// A fixed pseudo-random sequence, so that failures reproduce.
class CSequence
{
public:
    UINT32 Next(UINT32 range)
    {
        m_state = (m_state * 1103515245u) + 12345u;
        return (m_state >> 8) % range;
    }

private:
    UINT32 m_state = 7;
};

// The four result fields of every region, as bits.
std::vector<UINT32> RegionBits(const BGProcResult& bg, UINT32 regions)
{
    std::vector<UINT32> bits(regions * 4);
    for (UINT32 i = 0; i < regions; i++)
    {
        std::memcpy(&bits[i * 4], &bg.BGRegions[i].rgnLuma, 4 * sizeof(FLOAT));
    }
    return bits;
}

class StatsBatchTest : public StatsTest
{
protected:
    // A 64 x 48 Bayer grid with saturation data whose regions cover the cases the vector lanes must agree on:
    // ordinary sums, starved channels, zero counts, fully saturated regions, and sums too large for 32-bit lanes.
    VOID BuildMixedGrid()
    {
        m_pImage = Image(64, 48, 10, SyntheticLayout::RGGB, TRUE);
        m_pImage->Fill(SyntheticRegion::Uniform(400));
        m_pImage->Build();
        m_pImage->FillStatistics(m_pStats.get());
        auto*     pRec = reinterpret_cast<StatsBayerGridChannelInfoS_Sat*>(m_pStats->bayerGrid.m_pChannelData);
        CSequence seq;
        for (UINT32 i = 0; i < 3072; i++)
        {
            StatsBayerGridChannelInfoS_Sat& r = pRec[i];
            UINT16* const counts[4]    = {&r.base.RCount, &r.base.BCount, &r.base.GRCount, &r.base.GBCount};
            UINT32* const sums[4]      = {&r.base.RSum, &r.base.BSum, &r.base.GRSum, &r.base.GBSum};
            UINT16* const satCounts[4] = {&r.saturatedRCount, &r.saturatedBCount, &r.saturatedGRCount,
                                          &r.saturatedGBCount};
            UINT32* const satSums[4]   = {&r.saturatedRSum, &r.saturatedBSum, &r.saturatedGRSum, &r.saturatedGBSum};
            const UINT32  kind         = seq.Next(16);
            for (UINT32 c = 0; c < 4; c++)
            {
                UINT32 count = seq.Next(257);
                if (0 == kind)
                {
                    count = 0; // fully saturated
                }
                else if ((1 == kind) && (0 == c))
                {
                    count = 0; // no red at all
                }
                else if ((2 == kind) && (c >= 2))
                {
                    count = seq.Next(30); // starved green
                }
                *counts[c]    = static_cast<UINT16>(count);
                *sums[c]      = count * seq.Next(1024) + seq.Next(count + 1);
                *satCounts[c] = static_cast<UINT16>(256 - count);
                *satSums[c]   = (256 - count) * 1023;
            }
            if (3 == kind)
            {
                r.base.GRSum = (1u << 29) + seq.Next(1000); // past the 32-bit lanes' exact range
            }
        }
    }

    // Parses the frame, then every region again on its own, and expects the same bits.
    VOID ExpectBatchMatchesOneByOne(FLOAT drcGain)
    {
        ASSERT_EQ(AecSuccess, Run(*m_pStats, drcGain));
        const std::vector<UINT32> batch = RegionBits(Access::BG(*m_pProc), 3072);
        BGProcResult&             bg    = Access::MutableBG(*m_pProc);
        std::memset(bg.BGRegionsCalculated, 0, sizeof(bg.BGRegionsCalculated));
        std::memset(bg.BGRegions, 0xFF, sizeof(bg.BGRegions));
        m_pProc->ReprocessBGStats(BGStatsIterationMode::Exhaustive, 0.0f, 0.0f, 1.0f, 1.0f);
        const std::vector<UINT32> single = RegionBits(Access::BG(*m_pProc), 3072);
        for (UINT32 i = 0; i < single.size(); i++)
        {
            ASSERT_EQ(single[i], batch[i]) << "region " << (i / 4) << " field " << (i % 4) << " gain " << drcGain;
        }
    }

    std::unique_ptr<CSyntheticStats> m_pImage;
};
} // namespace

TEST_F(StatsBatchTest, FramePassMatchesTheOneRegionParseBitForBit)
{
    BuildMixedGrid();
    // 1 and 4 make the per-frame divisions exact reciprocals; 3 keeps them divisions.
    for (FLOAT gain : {1.0f, 4.0f, 3.0f})
    {
        ExpectBatchMatchesOneByOne(gain);
    }
}

TEST_F(StatsBatchTest, FramePassCountsAndLegacyGridMatchTheRegions)
{
    BuildMixedGrid();
    ASSERT_EQ(AecSuccess, Run(*m_pStats));
    const BGProcResult& bg     = Access::BG(*m_pProc);
    UINT32              bright = 0;
    UINT32              dark   = 0;
    // Legacy region (lx, ly) covers columns 4 lx .. 4 lx + 3 and rows 3 ly .. 3 ly + 2, summed in raster order.
    FLOAT sums[256]    = {};
    FLOAT satSums[256] = {};
    for (UINT32 i = 0; i < 3072; i++)
    {
        const FLOAT luma = bg.BGRegions[i].rgnLuma;
        bright += (luma >= 238.0f) ? 1u : 0u;
        dark += ((luma < 238.0f) && (luma <= 8.0f)) ? 1u : 0u;
        const UINT32 legacy = ((i % 64) / 4) + (((i / 64) / 3) * 16);
        sums[legacy] += luma;
        satSums[legacy] += bg.BGRegions[i].rgnSatRatio;
    }
    EXPECT_EQ(3072u, bg.numProcessedRegions);
    EXPECT_EQ(bright, bg.numBrightRegions);
    EXPECT_EQ(dark, bg.numDarkRegions);
    EXPECT_EQ(3072u - bright - dark, bg.numNormalRegions);
    for (UINT32 l = 0; l < 256; l++)
    {
        ASSERT_EQ(sums[l] / 12.0f, bg.YRegions[l].Yval) << l;
        ASSERT_EQ(satSums[l] / 12.0f, bg.YRegions[l].Ysat) << l;
    }
}

TEST(HistCumulateTest, VectorGroupsMatchTheLastGroupsOneByOne)
{
    // n = 16 runs all groups in vector lanes; n = 13 runs groups 8 to 12 one at a time. The last three groups are
    // empty, so both see the same total.
    const UINT32 counts[16] = {3, 0, 4000000000u, 17, 5, 0, 0, 1, 99, 123456, 7, 8, 9, 0, 0, 0};
    FLOAT        values[17];
    for (UINT32 i = 0; i < 17; i++)
    {
        values[i] = static_cast<FLOAT>(8 * i) + 0.5f;
    }
    UINT64                groupedA[16], groupedB[16];
    FLOAT                 cdfA[16], cdfB[16], wA[16], wB[16], wbA[16], wbB[16];
    const HistCumulateOut outA   = {groupedA, values, cdfA, wA, wbA};
    const HistCumulateOut outB   = {groupedB, values, cdfB, wB, wbB};
    const UINT64          totalA = HistCumulate(counts, 16, 1.7f, outA);
    const UINT64          totalB = HistCumulate(counts, 13, 1.7f, outB);
    EXPECT_EQ(4000000000ull + 3 + 17 + 5 + 1 + 99 + 123456 + 7 + 8 + 9, totalA);
    EXPECT_EQ(totalA, totalB);
    for (UINT32 g = 0; g < 13; g++)
    {
        EXPECT_EQ(groupedA[g], groupedB[g]) << g;
        EXPECT_EQ(cdfA[g], cdfB[g]) << g;
        EXPECT_EQ(wA[g], wB[g]) << g;
        EXPECT_EQ(wbA[g], wbB[g]) << g;
    }
}

TEST(HistCumulateTest, SumsAreExactAndRoundedOnce)
{
    // Each running value is rounded once: the share as the count over the total in float, the weighted sums
    // from the exact integer sum in double.
    constexpr UINT32 n = 1024;
    std::vector<UINT32> counts(n);
    std::vector<FLOAT>  values(n + 1);
    CSequence           seq;
    for (UINT32 g = 0; g < n; g++)
    {
        counts[g] = (0 == (g % 7)) ? 0 : seq.Next(100000);
        values[g] = static_cast<FLOAT>(g) + 0.5f;
    }
    values[n] = static_cast<FLOAT>(n);
    std::vector<UINT64>   grouped(n);
    std::vector<FLOAT>    cdf(n), weighted(n), weightedWB(n);
    const HistCumulateOut out   = {grouped.data(), values.data(), cdf.data(), weighted.data(), weightedWB.data()};
    const UINT64          total = HistCumulate(counts.data(), n, 2.0f, out);
    UINT64                running = 0;
    UINT64                twice   = 0; // value times count in half units, exact
    for (UINT32 g = 0; g < n; g++)
    {
        running += counts[g];
        twice += static_cast<UINT64>(counts[g]) * (2 * g + 1);
        ASSERT_EQ(grouped[g], counts[g]);
        ASSERT_EQ(static_cast<FLOAT>(running) / static_cast<FLOAT>(total), cdf[g]) << g;
        const double exact = 0.5 * static_cast<double>(twice) / static_cast<double>(total);
        ASSERT_NEAR(exact, weighted[g], std::ldexp(std::fabs(exact), -24)) << g;
        // A gain of 2 doubles the white-balanced sum exactly.
        ASSERT_EQ(2.0f * weighted[g], weightedWB[g]) << g;
    }
    EXPECT_EQ(1.0f, cdf[n - 1]);
}
