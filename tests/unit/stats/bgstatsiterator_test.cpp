// Grid iterator: whole frame, windows, subsampling phases, capping and empty windows.
#include <cmath>
#include <cstring>
#include <vector>

#include "unit/stats/statstestsupport.h"

namespace
{
// A parsed grid of h x v regions, every region marked parsed, with the given subsampling factor.
std::unique_ptr<BGProcResult> ParsedGrid(UINT32 h, UINT32 v, UINT8 factor)
{
    auto pRes = std::make_unique<BGProcResult>();
    std::memset(pRes.get(), 0, sizeof(BGProcResult));
    pRes->procInfo.useCase       = BGProcUseCase::RGGB;
    pRes->numHorizontalRegions   = h;
    pRes->numVerticalRegions     = v;
    pRes->numTotalRegions        = h * v;
    pRes->SWSubsmplFactor        = factor;
    for (UINT32 i = 0; i < h * v; i++)
    {
        pRes->BGRegionsCalculated[i] = TRUE;
        pRes->BGRegions[i].rgnLuma   = static_cast<FLOAT>(i);
    }
    return pRes;
}

std::vector<UINT32> Walk(BGStatsIterator it)
{
    std::vector<UINT32> positions;
    while (FALSE != it.HasNext())
    {
        const ParsedBGRegionType* pRegion = it.Next();
        if (nullptr == pRegion)
        {
            break;
        }
        positions.push_back(static_cast<UINT32>(pRegion->rgnLuma));
    }
    return positions;
}
} // namespace

TEST_F(StatsTest, FullFrameIteratorCoversTheGridSilently)
{
    auto pRes = ParsedGrid(64, 48, 1);
    BGStatsIterator it(pRes.get(), BGStatsIterationMode::Exhaustive);
    EXPECT_EQ(3072u, it.GetTotalNumOfRegions());
    const std::vector<UINT32> positions = Walk(it);
    ASSERT_EQ(3072u, positions.size());
    EXPECT_EQ(0u, positions.front());
    // The lower right corner is (h-1, v-1).
    EXPECT_EQ(3071u, positions.back());
    EXPECT_TRUE(CapturedLogs().empty());
}

TEST_F(StatsTest, Factor4StaggersTheSampledColumnPerRow)
{
    auto pRes = ParsedGrid(64, 48, 4);
    const std::vector<UINT32> positions = Walk(BGStatsIterator(pRes.get(), BGStatsIterationMode::Normal));
    EXPECT_EQ(768u, BGStatsIterator(pRes.get(), BGStatsIterationMode::Normal).GetTotalNumOfRegions());
    ASSERT_EQ(768u, positions.size());
    // 16 columns per row; the first of each row shows the phase.
    EXPECT_EQ(0u, positions[0] % 64);
    EXPECT_EQ(1u, positions[16] % 64);
    EXPECT_EQ(3u, positions[32] % 64);
    EXPECT_EQ(2u, positions[48] % 64);
    EXPECT_EQ(2u, positions[32] / 64);
    EXPECT_EQ(positions[32] + 4, positions[33]);
    // Exhaustive mode ignores the factor.
    EXPECT_EQ(3072u, Walk(BGStatsIterator(pRes.get(), BGStatsIterationMode::Exhaustive)).size());
}

TEST_F(StatsTest, WindowIteratorStaysInsideTheWindow)
{
    auto pRes = ParsedGrid(16, 12, 1);
    const std::vector<UINT32> positions =
        Walk(BGStatsIterator(pRes.get(), BGStatsIterationMode::Exhaustive, 0.25f, 0.5f, 0.5f, 0.75f));
    // Columns 4..8, rows 6..9.
    ASSERT_EQ(20u, positions.size());
    for (UINT32 pos : positions)
    {
        EXPECT_GE(pos % 16, 4u);
        EXPECT_LE(pos % 16, 8u);
        EXPECT_GE(pos / 16, 6u);
        EXPECT_LE(pos / 16, 9u);
    }
}

TEST_F(StatsTest, IteratorSkipsRegionsNotParsedThisFrame)
{
    auto pRes = ParsedGrid(16, 12, 1);
    pRes->BGRegionsCalculated[1] = FALSE;
    pRes->BGRegionsCalculated[2] = FALSE;
    const std::vector<UINT32> positions = Walk(BGStatsIterator(pRes.get(), BGStatsIterationMode::Exhaustive));
    ASSERT_EQ(190u, positions.size());
    EXPECT_EQ(0u, positions[0]);
    EXPECT_EQ(3u, positions[1]);
}

TEST_F(StatsTest, CornersBeyondTheGridAreCappedWithAWarning)
{
    auto pRes = ParsedGrid(16, 12, 1);
    BGStatsIterator it(pRes.get(), BGStatsIterationMode::Exhaustive, 0.0f, 0.0f, 2.0f, 2.0f);
    EXPECT_TRUE(LogContains("warning: low right x is 32 capping to 15"));
    EXPECT_TRUE(LogContains("warning: low right y is 24 capping to 11"));
    EXPECT_EQ(192u, Walk(it).size());
    // Negative and NaN corners count as 0 rather than wrapping.
    EXPECT_EQ(192u, Walk(BGStatsIterator(pRes.get(), BGStatsIterationMode::Exhaustive, -3.0f, NAN, 1.0f, 1.0f))
                        .size());
}

TEST_F(StatsTest, EmptyWindowHasNoEstimateAndAtMostOnePosition)
{
    auto pRes = ParsedGrid(16, 12, 1);
    BGStatsIterator it(pRes.get(), BGStatsIterationMode::Exhaustive, 0.75f, 0.5f, 0.25f, 0.5f);
    EXPECT_EQ(0u, it.GetTotalNumOfRegions());
    EXPECT_LE(Walk(it).size(), 1u);
}

TEST_F(StatsTest, IteratorOnAnUnparsedGridIsEmpty)
{
    auto pRes = ParsedGrid(0, 0, 1);
    BGStatsIterator it(pRes.get(), BGStatsIterationMode::Normal);
    EXPECT_FALSE(it.HasNext());
    EXPECT_EQ(nullptr, it.Next());
    BGStatsIterator itNull(nullptr, BGStatsIterationMode::Normal);
    EXPECT_FALSE(itNull.HasNext());
}

TEST_F(StatsTest, IncrementPosOutsideTheWindowReturnsThePosition)
{
    auto pRes = ParsedGrid(16, 12, 1);
    BGStatsIterator it(pRes.get(), BGStatsIterationMode::Exhaustive, 0.5f, 0.5f, 1.0f, 1.0f);
    EXPECT_EQ(3u, it.IncrementPos(3, FALSE));
    // From the window's right edge to the next row's left edge.
    EXPECT_EQ(7u * 16u + 8u, it.IncrementPos(6 * 16 + 15, FALSE));
}
