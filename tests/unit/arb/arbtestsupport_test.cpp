// Tests of the arbitration fixture itself: the mocked store serves the tables and settings the tests rely on.
#include "unit/arb/arbtestsupport.h"

namespace
{

class ArbTestSupportTest : public ArbitrationTest
{
};

TEST_F(ArbTestSupportTest, TablesComeFromTheDefaultTuningAndUnknownIDsFallBackOnTableZero)
{
    aecArbitration::ExposureTableType* pTable0 = m_context.getExposureTableFromTableID(0);
    ASSERT_NE(nullptr, pTable0);
    EXPECT_EQ(&ArbCore()->expTables[0], pTable0);
    EXPECT_EQ(&ArbCore()->expTables[1], m_context.getExposureTableFromTableID(1));
    EXPECT_EQ(pTable0, m_context.getExposureTableFromTableID(7));
    EXPECT_EQ(pTable0, m_context.getExposureTableFromTableID(CustomExposureTableID));

    m_customTable.isValid = TRUE;
    EXPECT_EQ(&m_customTable.expTable, m_context.getExposureTableFromTableID(CustomExposureTableID));
}

TEST_F(ArbTestSupportTest, GettersFollowTheMembers)
{
    m_opMode      = AECAlgoOperationModeFastAEC;
    m_flickerMode = StatisticsAntibanding60Hz;
    m_hasPeer     = TRUE;
    m_peer.CCT    = 5000;
    EXPECT_EQ(AECAlgoOperationModeFastAEC, m_context.getOperationMode());
    EXPECT_EQ(StatisticsAntibanding60Hz, m_context.getFlickerCompMode());
    ASSERT_NE(nullptr, m_context.getPeerInfo());
    EXPECT_EQ(5000, m_context.getPeerInfo()->CCT);
    m_hasPeer = FALSE;
    EXPECT_EQ(nullptr, m_context.getPeerInfo());
    EXPECT_EQ(nullptr, m_context.getFrameHistory(4));
}

TEST_F(ArbTestSupportTest, RecordingCallbackKeepsWhatIsPublished)
{
    RecordingArbitrationCallback callback;
    ExposureLimitationType       limit = {};
    limit.gain.max                     = 8.0F;
    callback.SetStreamingLimitation(&limit);
    callback.setSensitivity(3.0F);
    EXPECT_FLOAT_EQ(8.0F, callback.m_published.exposureLimitation.gain.max);
    EXPECT_FLOAT_EQ(3.0F, callback.m_published.streamingExpTblSens);
    EXPECT_EQ(1U, callback.m_limitationCalls);
}

TEST_F(ArbTestSupportTest, IrisTableRowsPointIntoTheFixture)
{
    TestIrisTable    table({0, 100}, {{1.8F, 2.8F, 4.0F}, {2.4F, 3.5F, 5.6F}});
    LDMIrisTableData data = table.Data();
    EXPECT_EQ(2U, data.irisTableZoomSize);
    EXPECT_EQ(3U, data.irisTableIrisSize);
    EXPECT_EQ(100, data.zoomTable[1]);
    EXPECT_FLOAT_EQ(2.4F, data.irisFnTable[1][0]);
    EXPECT_EQ(20U, data.irisStepTable[0][2]);
}

} // namespace
