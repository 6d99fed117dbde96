// Tests of the ROI list normalisation and the dominant-region ranking.
#include <gtest/gtest.h>

#include "platform/roipriority.h"

namespace
{

UnstabilizedROIInformation MakeFaces(std::initializer_list<StatsROIData> faces)
{
    UnstabilizedROIInformation info = {};
    for (const StatsROIData& face : faces)
    {
        info.roi[info.roiCount++] = face;
    }
    return info;
}

class ROIPriorityTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_priority = ROIPriority{};
        m_priority.Clear();
        m_priority.SetImageResolution(1000, 500);
    }

    ROIPriority m_priority;
};

} // namespace

TEST_F(ROIPriorityTest, NormalisesToTheImage)
{
    UnstabilizedROIInformation info = MakeFaces({{7, {100, 50, 200, 100}, 1}});
    m_priority.UpdateROIData(&info);
    ASSERT_EQ(1U, m_priority.Size());
    AECAlgoROI roi = m_priority.GetNormalizeROI(0);
    EXPECT_FLOAT_EQ(0.1F, roi.x);
    EXPECT_FLOAT_EQ(0.1F, roi.y);
    EXPECT_FLOAT_EQ(0.2F, roi.dx);
    EXPECT_FLOAT_EQ(0.2F, roi.dy);
}

TEST_F(ROIPriorityTest, NormalisesToTheCropWindowAndClipsToIt)
{
    StatsRectangle crop = {500, 0, 500, 500};
    m_priority.SetCropWindow(&crop);
    UnstabilizedROIInformation info = MakeFaces({{1, {400, 100, 200, 100}, 1}});
    m_priority.UpdateROIData(&info);
    AECAlgoROI roi = m_priority.GetNormalizeROIInCrop(0);
    EXPECT_FLOAT_EQ(0.0F, roi.x);
    EXPECT_FLOAT_EQ(0.2F, roi.y);
    EXPECT_FLOAT_EQ(0.2F, roi.dx);
    EXPECT_FLOAT_EQ(0.2F, roi.dy);
}

TEST_F(ROIPriorityTest, IndexBeyondSizeGivesEmptyRegion)
{
    AECAlgoROI roi = m_priority.GetNormalizeROI(3);
    EXPECT_FLOAT_EQ(0.0F, roi.dx);
    EXPECT_FLOAT_EQ(0.0F, m_priority.GetScore(3));
    EXPECT_EQ(-1, m_priority.GetDominantIndex());
    EXPECT_EQ(ROIPriority::InvalidID, m_priority.GetDominantID());
}

TEST_F(ROIPriorityTest, ScoreIsTheShareOfTheImageAndLargestFaceDominates)
{
    UnstabilizedROIInformation info = MakeFaces({{3, {0, 0, 10, 10}, 1}, {9, {100, 100, 40, 20}, 1}});
    m_priority.UpdateROIData(&info);
    EXPECT_FLOAT_EQ(100.0F / 500000.0F, m_priority.GetScore(0));
    EXPECT_FLOAT_EQ(800.0F / 500000.0F, m_priority.GetScore(1));
    EXPECT_EQ(1, m_priority.GetDominantIndex());
    EXPECT_EQ(9U, m_priority.GetDominantID());
    EXPECT_TRUE(m_priority.IsDominantIDChange());

    m_priority.UpdateROIData(&info);
    EXPECT_FALSE(m_priority.IsDominantIDChange());
}

TEST_F(ROIPriorityTest, TuningBlendsSizeWithClosenessToTheCentre)
{
    ROIPriorityTuning tuning = {1.0F, 1.0F};
    m_priority.SetTuningData(&tuning);
    // A small face in the centre outranks a larger one in the corner.
    UnstabilizedROIInformation info = MakeFaces({{1, {0, 0, 200, 100}, 1}, {2, {475, 225, 50, 50}, 1}});
    m_priority.UpdateROIData(&info);
    EXPECT_NEAR(0.04F + 0.2F, m_priority.GetScore(0), 1e-5F);
    EXPECT_NEAR(1.0F + 0.005F, m_priority.GetScore(1), 1e-5F);
    EXPECT_EQ(2U, m_priority.GetDominantID());
}

TEST_F(ROIPriorityTest, MoreThanSixteenRegionsAreCut)
{
    UnstabilizedROIInformation info = MakeFaces({{1, {0, 0, 1, 1}, 1}});
    info.roiCount = 40;
    m_priority.UpdateROIData(&info);
    EXPECT_EQ(16U, m_priority.Size());
}

TEST_F(ROIPriorityTest, ClearForgetsRegionsButKeepsResolution)
{
    UnstabilizedROIInformation info = MakeFaces({{1, {100, 50, 100, 50}, 1}});
    m_priority.UpdateROIData(&info);
    m_priority.Clear();
    EXPECT_EQ(0U, m_priority.Size());
    m_priority.UpdateROIData(&info);
    EXPECT_FLOAT_EQ(0.1F, m_priority.GetNormalizeROI(0).x);
}

TEST_F(ROIPriorityTest, CopiesKeepTheirRegions)
{
    UnstabilizedROIInformation info = MakeFaces({{5, {0, 0, 20, 20}, 1}});
    m_priority.UpdateROIData(&info);
    ROIPriority copy = m_priority;
    m_priority.Clear();
    EXPECT_EQ(1U, copy.Size());
    EXPECT_EQ(5U, copy.GetDominantID());
}
