// The metering fixture itself: synthetic statistics parse, and the calculator inputs follow the state store.
#include "unit/mtr/mtrtestsupport.h"

TEST_F(MeteringTest, UniformImageParsesToItsLuma)
{
    std::unique_ptr<CSyntheticStats> image = Image();
    image->Fill(SyntheticRegion::Uniform(400)); // 10 bits: 400 / 4 = 100 on the 8-bit scale
    ASSERT_EQ(AecSuccess, Parse(*image));
    const ParsedLegacyYRegionType* pY = m_pProc->GetStatsProcessingResult()->GetLegacyYRegionStats();
    ASSERT_NE(nullptr, pY);
    EXPECT_NEAR(100.0f, pY[0].Yval, 0.01f);
}

TEST_F(MeteringTest, LumaInputTakesTheFrameThatExposedTheStatistics)
{
    m_history[PipelineDelay].expIndices[0] = 123.0f;
    m_compensationRatio                    = 4.0f;
    const AECLumaCalcInput input           = LumaInput();
    EXPECT_FLOAT_EQ(123.0f, input.matchingExpIndices[0]);
    EXPECT_FLOAT_EQ(4.0f, input.compensationRatio);
    EXPECT_EQ(&m_pTuning->mtrTuningData, input.pTuning);
    EXPECT_NE(nullptr, input.pTuning->pCore);
}
