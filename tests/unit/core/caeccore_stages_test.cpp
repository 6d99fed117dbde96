// Tests of the core's run stages: metering paths, settle decisions, staggered-HDR and DCG steps, depth input.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <ostream>
#include <vector>

#include "aec/core/base/aecdcgpostprocess.h"
#include "unit/core/coretestfixture.h"

namespace
{

using ::testing::_;
using ::testing::An;
using ::testing::DoAll;
using ::testing::Invoke;
using ::testing::Return;
using ::testing::SetArrayArgument;

class CoreStagesTest : public CoreOnMocksTest
{
protected:
    // Records the target indices and settle type that convergence sees on each frame.
    void RecordConvergenceInput()
    {
        ON_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _))
            .WillByDefault(Invoke([this](const ConvergenceInput* pIn, ConvergenceOutput*) {
                m_seenTargets.emplace_back(pIn->pTargetIndices, pIn->pTargetIndices + 3);
                m_seenSettleTypes.push_back(pIn->settleType);
                return AecSuccess;
            }));
    }

    void SetArbitratedSets(const AECAlgoExposureData (&sets)[3], FLOAT expRatio = 1.0F)
    {
        std::memcpy(m_arbitrated, sets, sizeof(m_arbitrated));
        ON_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStreamInput*>(), _))
            .WillByDefault(Invoke([this, expRatio](ArbitrationStreamInput*, ArbitrationOutput* pOut) {
                std::memcpy(pOut->expSets, m_arbitrated, sizeof(m_arbitrated));
                pOut->expRatio = expRatio;
                return AecSuccess;
            }));
    }

    void InstallShdrTuning(INT32 mode, FLOAT cgRatio1, FLOAT cgRatio2, FLOAT LEFMaxGain = 1000.0F)
    {
        m_shdr.shdrMtr.enableShdr     = mode;
        m_shdr.shdrMtr.ExpRatioCapLow = cgRatio1;
        m_shdr.shdrMtr.reserved[0]    = cgRatio2;
        m_shdr.shdrMtr.LEFMaxGain     = LEFMaxGain;
        m_tuningStore.modules.modShdr = &m_shdr;
        CAECCoreTestPeer::UseTuning(Store(), m_tuningStore);
    }

    static AECAlgoExposureData Exposure(UINT64 time, FLOAT gain, FLOAT sensitivity)
    {
        AECAlgoExposureData data = {};
        data.exposureTime        = time;
        data.linearGain          = gain;
        data.sensitivity         = sensitivity;
        data.fnumber             = 1.0F;
        return data;
    }

    std::vector<std::vector<FLOAT>>    m_seenTargets;
    std::vector<AECAlgoSettleFlagType> m_seenSettleTypes;
    AECAlgoExposureData                m_arbitrated[3] = {};
    aecShdr::AECShdrType               m_shdr          = {};
    CTestTuningStore                   m_tuningStore;
};

// ---- Metering ----

TEST_F(CoreStagesTest, SnapshotQueryFrameKeepsTheMeteringOutputButStillConvergesAndArbitrates)
{
    ASSERT_EQ(0, SetPipelineDelay(1));
    StartStreaming();
    EXPECT_CALL(*m_factory.pMetering, ProcessFrameStats(_, _))
        .WillOnce(Invoke([](const AECMeteringFrameProcInput*, AECMeteringFrameProcOutput* pOut) {
            pOut->currentLuma      = 42.0F;
            pOut->targetIndices[2] = 123.0F;
            return AecSuccess;
        }));
    EXPECT_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _)).Times(2);
    EXPECT_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStreamInput*>(), _)).Times(2);

    ASSERT_EQ(0, Process(1));
    // The host's snapshot query marks the frame just processed.
    Store().setSnapshotQuery();
    ASSERT_EQ(0, Process(2));

    EXPECT_FLOAT_EQ(42.0F, CAECCoreTestPeer::MtrOut(Core()).currentLuma);
    EXPECT_FLOAT_EQ(123.0F, CAECCoreTestPeer::MtrOut(Core()).targetIndices[2]);
    EXPECT_EQ(1u, m_logs.Count("Snapshot Query, skipping stats processing"));
}

TEST_F(CoreStagesTest, MeteringDisabledAndFollowingTakesTargetsFromHistoryThenFromThePeer)
{
    CAECCoreTestPeer::SetMultiCamTypes(Store(), AECAlgoMeteringDisabled, AECAlgoExposureFollow);
    const FLOAT startIndices[3] = {10.0F, 20.0F, 30.0F};
    ON_CALL(*m_factory.pConvergence, GetStartExposureIndices(_, _, _))
        .WillByDefault(DoAll(SetArrayArgument<0>(startIndices, startIndices + 3), Return(AecSuccess)));
    StartStreaming();
    RecordConvergenceInput();
    EXPECT_CALL(*m_factory.pMetering, ProcessFrameStats(_, _)).Times(0);
    EXPECT_CALL(*m_factory.pArbitration, ComputeTargetIndexInMultiCam(_, _)).Times(0);

    ASSERT_EQ(0, Process(1));
    ASSERT_EQ(1u, m_seenTargets.size());
    EXPECT_EQ(std::vector<FLOAT>({10.0F, 20.0F, 30.0F}), m_seenTargets[0]);

    ::testing::Mock::VerifyAndClearExpectations(m_factory.pArbitration);
    AECMultiCamInfo peer = {};
    Store().setPeerInfo(&peer);
    const FLOAT peerTargets[3] = {50.0F, 60.0F, 70.0F};
    EXPECT_CALL(*m_factory.pArbitration, ComputeTargetIndexInMultiCam(_, _))
        .WillOnce(DoAll(SetArrayArgument<1>(peerTargets, peerTargets + 3), Return(AecSuccess)));
    EXPECT_CALL(*m_factory.pMetering, EstimateLuxIndexForSlave(&CAECCoreTestPeer::MtrOut(Core())));

    ASSERT_EQ(0, Process(2));
    ASSERT_EQ(2u, m_seenTargets.size());
    EXPECT_EQ(std::vector<FLOAT>({50.0F, 60.0F, 70.0F}), m_seenTargets[1]);
    EXPECT_EQ(1u, m_logs.Count("Slave Mode !!"));
}

TEST_F(CoreStagesTest, MeteringDisabledWithIndependentExposureIsRefusedAndTheFrameRunsOnStaleOutput)
{
    StartStreaming();
    CAECCoreTestPeer::SetMultiCamTypes(Store(), AECAlgoMeteringDisabled, AECAlgoExposureIndependent);
    CAECCoreTestPeer::MtrOut(Core()).currentLuma = 17.0F;
    EXPECT_CALL(*m_factory.pMetering, ProcessFrameStats(_, _)).Times(0);
    EXPECT_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _)).Times(1);

    EXPECT_EQ(0, Process(1));
    EXPECT_FLOAT_EQ(17.0F, CAECCoreTestPeer::MtrOut(Core()).currentLuma);
    EXPECT_EQ(1u, m_logs.Count("Metering disabled and dynamic/independent exposure is not allowed"));
}

TEST_F(CoreStagesTest, MeteredFrameStartsFromTheLastTargets)
{
    StartStreaming();
    ON_CALL(*m_factory.pMetering, ProcessFrameStats(_, _))
        .WillByDefault(Invoke([](const AECMeteringFrameProcInput*, AECMeteringFrameProcOutput* pOut) {
            pOut->targetIndices[0] += 1.0F;
            return AecSuccess;
        }));
    ASSERT_EQ(0, Process(1));
    ASSERT_EQ(0, Process(2));
    EXPECT_FLOAT_EQ(2.0F, CAECCoreTestPeer::MtrOut(Core()).targetIndices[0]);
}

// ---- Convergence ----

struct StartupCase
{
    const char* name;
    void (*markInvalid)(AECStatistics&);
    AECAlgoSettleFlagType expected;
};

void PrintTo(const StartupCase& rCase, std::ostream* pStream)
{
    *pStream << rCase.name;
}

class CoreStartupStatsTest : public CoreStagesTest, public ::testing::WithParamInterface<StartupCase>
{
};

TEST_P(CoreStartupStatsTest, OnlyTheFiveListedStatisticsForceASettleReset)
{
    StartStreaming();
    RecordConvergenceInput();
    GetParam().markInvalid(m_input.aecStats);
    ASSERT_EQ(0, Process(1));
    ASSERT_EQ(1u, m_seenSettleTypes.size());
    EXPECT_EQ(GetParam().expected, m_seenSettleTypes[0]);
}

INSTANTIATE_TEST_SUITE_P(
    Statistics, CoreStartupStatsTest,
    ::testing::Values(
        StartupCase{"none", [](AECStatistics&) {}, AECAlgoSettleCompute},
        StartupCase{"bayerHist", [](AECStatistics& s) { s.bayerHist.startupMode = StatisticsStartUpInvalid; },
                    AECAlgoSettleForceReset},
        StartupCase{"bayerGrid", [](AECStatistics& s) { s.bayerGrid.startupMode = StatisticsStartUpInvalid; },
                    AECAlgoSettleForceReset},
        StartupCase{"hdr3Stats", [](AECStatistics& s) { s.hdr3Stats.startupMode = StatisticsStartUpInvalid; },
                    AECAlgoSettleForceReset},
        StartupCase{"hdrBayerHist", [](AECStatistics& s) { s.hdrBayerHist.startupMode = StatisticsStartUpInvalid; },
                    AECAlgoSettleForceReset},
        StartupCase{"nonUniformBayerHist",
                    [](AECStatistics& s) { s.nonUniformBayerHist.startupMode = StatisticsStartUpInvalid; },
                    AECAlgoSettleForceReset},
        StartupCase{"bayerGridLEF", [](AECStatistics& s) { s.bayerGridLEF.startupMode = StatisticsStartUpInvalid; },
                    AECAlgoSettleCompute},
        StartupCase{"bayerGridMEF", [](AECStatistics& s) { s.bayerGridMEF.startupMode = StatisticsStartUpInvalid; },
                    AECAlgoSettleCompute},
        StartupCase{"IHist", [](AECStatistics& s) { s.IHist.startupMode = StatisticsStartUpInvalid; },
                    AECAlgoSettleCompute},
        StartupCase{"bayerHistLEF", [](AECStatistics& s) { s.bayerHistLEF.startupMode = StatisticsStartUpInvalid; },
                    AECAlgoSettleCompute},
        StartupCase{"hdrBayerHistLEF",
                    [](AECStatistics& s) { s.hdrBayerHistLEF.startupMode = StatisticsStartUpInvalid; },
                    AECAlgoSettleCompute},
        StartupCase{"hdrBayerHistMEF",
                    [](AECStatistics& s) { s.hdrBayerHistMEF.startupMode = StatisticsStartUpInvalid; },
                    AECAlgoSettleCompute}),
    [](const ::testing::TestParamInfo<StartupCase>& info) { return std::string(info.param.name); });

TEST_F(CoreStagesTest, StaggeredHDRTakesIndicesAndSettleStateFromMetering)
{
    StartStreaming();
    ON_CALL(*m_factory.pMetering, ProcessFrameStats(_, _))
        .WillByDefault(Invoke([](const AECMeteringFrameProcInput*, AECMeteringFrameProcOutput* pOut) {
            pOut->sHDROutput       = 1;
            pOut->isSHDRAECSettled = TRUE;
            pOut->sHdrIndices[0]   = 5.0F;
            pOut->sHdrIndices[1]   = 6.0F;
            pOut->sHdrIndices[2]   = 7.0F;
            return AecSuccess;
        }));
    ON_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _))
        .WillByDefault(Invoke([](const ConvergenceInput*, ConvergenceOutput* pOut) {
            pOut->convExpSets[0].expIndex = 1.0F;
            pOut->isAECSettled            = FALSE;
            return AecSuccess;
        }));
    ASSERT_EQ(0, Process(1));
    const ConvergenceOutput& rOut = CAECCoreTestPeer::ConvOut(Core());
    EXPECT_TRUE(rOut.isAECSettled);
    EXPECT_FLOAT_EQ(5.0F, rOut.convExpSets[0].expIndex);
    EXPECT_FLOAT_EQ(6.0F, rOut.convExpSets[1].expIndex);
    EXPECT_FLOAT_EQ(7.0F, rOut.convExpSets[2].expIndex);
}

TEST_F(CoreStagesTest, UnsettledMovingIrisKeepsAECUnsettled)
{
    StartStreaming();
    ON_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _))
        .WillByDefault(Invoke([](const ConvergenceInput*, ConvergenceOutput* pOut) {
            pOut->isAECSettled = TRUE;
            return AecSuccess;
        }));
    ON_CALL(*m_factory.pIrisCtrl, QueryPIrisSettleInfo()).WillByDefault(Return(FALSE));

    ASSERT_EQ(0, Process(1));
    EXPECT_TRUE(m_output.frameInfo.aecSettled) << "without a P-iris the iris state does not matter";

    CAECCoreTestPeer::LensCap(Core()).PIris = TRUE;
    ASSERT_EQ(0, Process(2));
    EXPECT_FALSE(m_output.frameInfo.aecSettled);

    ON_CALL(*m_factory.pIrisCtrl, QueryPIrisSettleInfo()).WillByDefault(Return(TRUE));
    ASSERT_EQ(0, Process(3));
    EXPECT_TRUE(m_output.frameInfo.aecSettled);
}

// ---- Arbitration: long-exposure limit and DCG ----

TEST_F(CoreStagesTest, LongExposureAtItsGainLimitFollowsTheShortOneByTheExposureRatio)
{
    InstallShdrTuning(ShdrMode, 1.0F, 0.0F, 4.0F);
    StartStreaming();
    ON_CALL(*m_factory.pMetering, ProcessFrameStats(_, _))
        .WillByDefault(Invoke([](const AECMeteringFrameProcInput*, AECMeteringFrameProcOutput* pOut) {
            pOut->sHDROutput       = 1;
            pOut->isSHDRSEFSettled = TRUE;
            pOut->sHdrIndices[0]   = 100.0F;
            return AecSuccess;
        }));
    const AECAlgoExposureData sets[3] = {Exposure(1000, 1.0F, 1.0F), Exposure(1000, 8.0F, 8.0F),
                                         Exposure(1000, 1.0F, 1.0F)};
    SetArbitratedSets(sets, 10.0F);
    ON_CALL(*m_factory.pIrisCtrl, QueryPIrisSettleInfo()).WillByDefault(Return(TRUE));

    ASSERT_EQ(0, Process(1));
    const FLOAT expected = static_cast<FLOAT>(std::log10(10.0) * 77.89852905273438 + 100.0F);
    EXPECT_FLOAT_EQ(expected, CAECCoreTestPeer::ConvOut(Core()).convExpSets[1].expIndex);
    EXPECT_TRUE(CAECCoreTestPeer::ConvOut(Core()).isAECSettled);
    EXPECT_TRUE(CAECCoreTestPeer::MtrOut(Core()).isSHDRAECSettled);
    EXPECT_EQ(1u, m_logs.CountContaining("LEF meets exposure limitation. Update isAECSettled 1 and LEF ExpIdx 177.8"));

    // With the iris of a P-iris lens still moving, the long exposure is not settled.
    CAECCoreTestPeer::LensCap(Core()).PIris = TRUE;
    ON_CALL(*m_factory.pIrisCtrl, QueryPIrisSettleInfo()).WillByDefault(Return(FALSE));
    ASSERT_EQ(0, Process(2));
    EXPECT_FALSE(CAECCoreTestPeer::ConvOut(Core()).isAECSettled);
    EXPECT_FALSE(CAECCoreTestPeer::MtrOut(Core()).isSHDRAECSettled);
}

TEST_F(CoreStagesTest, DCGplusVSModeWithARatioBelowUnityLeavesTheSetsUntouched)
{
    InstallShdrTuning(DCGplusVSMode, 0.5F, 2.0F);
    StartStreaming();
    const AECAlgoExposureData sets[3] = {Exposure(1000, 1.5F, 1500.0F), Exposure(4000, 2.0F, 8000.0F),
                                         Exposure(2000, 3.0F, 6000.0F)};
    SetArbitratedSets(sets);
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(0, std::memcmp(sets, m_output.frameSetting.exposureSets, sizeof(sets)));
}

TEST_F(CoreStagesTest, DCGplusVSModeSplitsTheLongGain)
{
    InstallShdrTuning(DCGplusVSMode, 4.0F, 0.0F);
    StartStreaming();
    const AECAlgoExposureData sets[3] = {Exposure(1000, 1.5F, 1500.0F), Exposure(4000, 8.0F, 32000.0F),
                                         Exposure(2000, 3.0F, 6000.0F)};
    SetArbitratedSets(sets);
    ASSERT_EQ(0, Process(1));
    const AECAlgoExposureData* pOut = m_output.frameSetting.exposureSets;
    EXPECT_FLOAT_EQ(2.0F, pOut[1].linearGain);
    EXPECT_EQ(4000u, pOut[1].exposureTime);
    EXPECT_FLOAT_EQ(2.0F, pOut[2].linearGain);
    EXPECT_EQ(4000u, pOut[2].exposureTime);
    EXPECT_FLOAT_EQ(8000.0F, pOut[2].sensitivity);
}

TEST_F(CoreStagesTest, DCGplusLoficModeWithoutCGRatio2LogsEachFrameAndWorksWithUnity)
{
    InstallShdrTuning(DCGplusLoficMode, 2.0F, 0.0F);
    StartStreaming();
    const AECAlgoExposureData sets[3] = {Exposure(1000, 1.0F, 1000.0F), Exposure(4000, 1.5F, 6000.0F),
                                         Exposure(2000, 3.0F, 6000.0F)};
    SetArbitratedSets(sets);

    AECAlgoExposureData expected[3];
    std::memcpy(expected, sets, sizeof(expected));
    AECDCGRatios unity = {2.0F, 1.0F};
    AECApplyDCGPostProcessing(DCGplusLoficMode, &unity, expected);
    m_logs.Clear();

    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(0, std::memcmp(expected, m_output.frameSetting.exposureSets, sizeof(expected)));
    EXPECT_EQ(1u, m_logs.Count("Need to fill the correct CGRatio2 in reserve0"));
    EXPECT_EQ(1u, m_logs.CountContaining("CGRatio1 2.000000 CGRatio2 1.000000 shdr_mode 3"));

    ASSERT_EQ(0, Process(2));
    EXPECT_EQ(2u, m_logs.Count("Need to fill the correct CGRatio2 in reserve0"));
}

TEST_F(CoreStagesTest, WithoutMeteringTuningTheLongLimitAndDCGStepsAreSkipped)
{
    StartStreaming();
    ON_CALL(*m_factory.pMetering, ProcessFrameStats(_, _))
        .WillByDefault(Invoke([](const AECMeteringFrameProcInput*, AECMeteringFrameProcOutput* pOut) {
            pOut->sHDROutput = 1;
            return AecSuccess;
        }));
    const AECAlgoExposureData sets[3] = {Exposure(1000, 1.0F, 1000.0F), Exposure(4000, 64.0F, 6000.0F),
                                         Exposure(2000, 3.0F, 6000.0F)};
    SetArbitratedSets(sets);
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(0, std::memcmp(sets, m_output.frameSetting.exposureSets, sizeof(sets)));
    EXPECT_EQ(0u, m_logs.CountContaining("LEF meets exposure limitation"));
    EXPECT_EQ(1u, m_logs.Count("No staggered-HDR metering tuning: LEF limit and DCG post-processing skipped"));
}

// ---- Depth input ----

class CoreDepthTest : public CoreStagesTest
{
protected:
    void SetUp() override
    {
        CoreStagesTest::SetUp();
        StartStreaming();
        m_input.pVendorTagList = &m_tags;
    }

    void SetScalar(UINT32 position, UINT32* pValue) { m_tags.vendorTag[position].pData = pValue; }

    const DepthProcInfo& Depth() { return CAECCoreTestPeer::MtrIn(Core()).m_DepthInfo; }

    StatsVendorTagList m_tags = {};
};

TEST_F(CoreDepthTest, WithoutATagListNothingIsCopied)
{
    m_input.pVendorTagList = nullptr;
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(0u, Depth().horiNumOfRegion);
    EXPECT_EQ(1u, m_logs.Count("pVendorTagList is NULL"));
}

TEST_F(CoreDepthTest, WithoutTheFirstTagNothingIsCopiedSilently)
{
    UINT32 rows = 3;
    SetScalar(1, &rows);
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(0u, Depth().vertNumOfRegion);
    EXPECT_EQ(0u, m_logs.CountContaining("pVendorTagList"));
}

TEST_F(CoreDepthTest, ZeroColumnsMakeTheListInvalid)
{
    UINT32 columns = 0;
    UINT32 rows    = 3;
    SetScalar(0, &columns);
    SetScalar(1, &rows);
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(0u, Depth().vertNumOfRegion);
    EXPECT_EQ(1u, m_logs.Count("pVendorTagList is non valid! vendorTag[0] is 0"));
}

TEST_F(CoreDepthTest, CopiesTheGeometryAndThePresentMapsOverTheGrid)
{
    UINT32 columns = 4;
    UINT32 rows    = 3;
    UINT32 width   = 16;
    SetScalar(0, &columns);
    SetScalar(1, &rows);
    SetScalar(2, &width);
    std::vector<FLOAT> PD(13, 1.5F);
    std::vector<INT16> nearRange(13, -7);
    std::vector<BOOL>  selected(13, TRUE);
    m_tags.vendorTag[6].pData  = PD.data();
    m_tags.vendorTag[8].pData  = nearRange.data();
    m_tags.vendorTag[12].pData = selected.data();

    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(4u, Depth().horiNumOfRegion);
    EXPECT_EQ(3u, Depth().vertNumOfRegion);
    EXPECT_EQ(16u, Depth().widthOfRegion);
    EXPECT_EQ(0u, Depth().heightOfRegion);
    EXPECT_FLOAT_EQ(1.5F, Depth().PDMap[11]);
    EXPECT_FLOAT_EQ(0.0F, Depth().PDMap[12]) << "only columns x rows entries are copied";
    EXPECT_EQ(-7, Depth().RangeNearMap[11]);
    EXPECT_TRUE(Depth().AFSelectMap[0]);
    EXPECT_EQ(0u, Depth().ConfidenceMap[0]) << "an absent map stays zero";
}

TEST_F(CoreDepthTest, AGridLargerThanTheMapCapacityIsRefused)
{
    UINT32 columns = 64;
    UINT32 rows    = 64;
    SetScalar(0, &columns);
    SetScalar(1, &rows);
    std::vector<FLOAT> PD(64 * 64, 1.0F);
    m_tags.vendorTag[6].pData = PD.data();

    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(0u, Depth().horiNumOfRegion);
    EXPECT_FLOAT_EQ(0.0F, Depth().PDMap[0]);
    EXPECT_EQ(1u, m_logs.Count("Depth grid of 64 x 64 regions exceeds the map capacity of 3072; depth info dropped"));
}

} // namespace
