// Tests of the core's queries: the answer to each get parameter, the start exposure and the still capture exposure.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <vector>

#include "unit/core/coretestfixture.h"

namespace
{

using ::testing::_;
using ::testing::An;
using ::testing::DoAll;
using ::testing::InSequence;
using ::testing::Invoke;
using ::testing::Return;
using ::testing::SaveArg;
using ::testing::SetArgPointee;

// Index units of one EV and of a linear ratio of 2, as the queries use them.
constexpr FLOAT IndexPerEV = 23.449795F;
const DOUBLE    IndexPerLog10 = 77.89852905273438;

FLOAT IndexOffsetOfEV(DOUBLE ev)
{
    return static_cast<FLOAT>(std::log10(std::pow(2.0, ev)) * IndexPerLog10);
}

class CoreQueryTest : public CoreOnMocksTest
{
protected:
    void SetUp() override
    {
        CoreOnMocksTest::SetUp();
        // Every still arbitration is recorded and answered with distinct exposure sets.
        ON_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStillInput*>(), _))
            .WillByDefault(Invoke([this](ArbitrationStillInput* pIn, ArbitrationOutput* pOut) {
                m_stillInputs.push_back(*pIn);
                for (UINT32 i = 0; i < 3; i++)
                {
                    pOut->expSets[i].exposureTime      = 1000 * (i + 1);
                    pOut->expSets[i].linearGain        = 2.0F + i;
                    pOut->IdealexpSets[i].exposureTime = 3000 * (i + 1);
                }
                pOut->exif.ISOValue = 640;
                return AecSuccess;
            }));
    }

    // Streaming with frames whose targets, preview EV and lux index the snapshot query reads back.
    void StreamFrames(UINT64 lastFrameID, FLOAT previewEV)
    {
        ON_CALL(*m_factory.pMetering, ProcessFrameStats(_, _))
            .WillByDefault(Invoke([](const AECMeteringFrameProcInput*, AECMeteringFrameProcOutput* pOut) {
                pOut->targetIndices[0] = 100.0F;
                pOut->targetIndices[1] = 110.0F;
                pOut->targetIndices[2] = 120.0F;
                pOut->luxIndex         = 250.0F;
                return AecSuccess;
            }));
        ON_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _))
            .WillByDefault(Invoke([previewEV](const ConvergenceInput*, ConvergenceOutput* pOut) {
                pOut->previewEV = previewEV;
                return AecSuccess;
            }));
        StartStreaming();
        for (UINT64 frameID = 1; frameID <= lastFrameID; frameID++)
        {
            ASSERT_EQ(0, Process(frameID));
        }
    }

    KDKResult QuerySnapshot(AECAlgoSnapshotType type, BOOL bracketing, INT8 EVVal)
    {
        AECMetadataQuery query              = {};
        query.type                          = AECAlgoGetParamSnapshotExposure;
        query.input.snapshotConfig          = {type, bracketing, EVVal};
        // Values the query must overwrite.
        query.output.frameSetting.predictiveGain           = 5.0F;
        query.output.frameSetting.digitalGainForSimulation = 5.0F;
        query.output.frameSetting.LEDInfluenceRatio        = 5.0F;
        query.output.frameSetting.IRModeActivated          = 7;
        const KDKResult result = m_pCore->queryMetaData(&query);
        m_snapshot             = query.output.frameSetting;
        return result;
    }

    void SetBracketingTuning(FLOAT adjNeg2, FLOAT adjPos2)
    {
        m_snapshotTuning.snapCtrlArb.bracketingAdjForEVNeg2 = adjNeg2;
        m_snapshotTuning.snapCtrlArb.bracketingAdjForEVPos2 = adjPos2;
        m_tuningStore.modules.modSnapshotCtrl               = &m_snapshotTuning;
        CAECCoreTestPeer::UseTuning(Store(), m_tuningStore);
    }

    // Flash metering estimate of the snapshot.
    void EstimateFlashSnapshot(FLOAT flashInfluence)
    {
        AECMeteringSnapshotOutput estimate = {};
        estimate.snapshotExpIndices[0]     = 200.0F;
        estimate.snapshotExpIndices[1]     = 210.0F;
        estimate.snapshotExpIndices[2]     = 220.0F;
        estimate.snapshotLuxIndex          = 300.0F;
        estimate.flashInfluence            = flashInfluence;
        EXPECT_CALL(*m_factory.pMetering, GetSnapshotEstimation(_, _))
            .WillOnce(DoAll(SetArgPointee<1>(estimate), Return(AecSuccess)));
    }

    const ArbitrationStillInput& LastStillInput()
    {
        EXPECT_FALSE(m_stillInputs.empty());
        if (m_stillInputs.empty())
        {
            m_stillInputs.emplace_back();
        }
        return m_stillInputs.back();
    }

    std::vector<ArbitrationStillInput>           m_stillInputs;
    AECFrameControl                              m_snapshot       = {};
    aecSnapshotCtrl::AECSnapshotCtrlType m_snapshotTuning = {};
    CTestTuningStore                     m_tuningStore;
};

// ---- Refusals and the type table ----

TEST_F(CoreQueryTest, InitModeRefusesEveryTypeSoCapabilitiesNeedAModeChange)
{
    for (INT32 type = AECAlgoGetParamInvalid; type <= 20; type++)
    {
        AECMetadataQuery query                = {};
        query.type                            = static_cast<AECAlgoGetParamType>(type);
        query.output.EVCapabilities.stepsPerEV = 99;
        EXPECT_EQ(1, m_pCore->queryMetaData(&query)) << "type " << type;
        EXPECT_EQ(99, query.output.EVCapabilities.stepsPerEV) << "type " << type;
    }
    EXPECT_EQ(21u, m_logs.Count("Query under init mode is not allowed."));
    EXPECT_EQ(0u, m_logs.CountContaining("AEC Get parameters"));

    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    AECMetadataQuery query = {};
    query.type             = AECAlgoGetParamEVCapabilities;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(Store().getEVInfo()->capabilities.stepsPerEV, query.output.EVCapabilities.stepsPerEV);
}

TEST_F(CoreQueryTest, TypesWithoutAnAnswerReturnUnsupportedAndLogTheClampedName)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    for (INT32 type : {0, 15, 16, 17, 18, 19, 1000})
    {
        AECMetadataQuery query = {};
        query.type             = static_cast<AECAlgoGetParamType>(type);
        EXPECT_EQ(2, m_pCore->queryMetaData(&query)) << "type " << type;
    }
    EXPECT_EQ(1u, m_logs.Count("AEC Get parameters (AECAlgoGetParamInvalid)"));
    EXPECT_EQ(1u, m_logs.Count("AEC Get parameters (AECAlgoGetParamDynamicCalibrationData)"));
    EXPECT_EQ(1u, m_logs.Count("AEC Get parameters (AECAlgoGetParamSnapshotType)"));
    EXPECT_EQ(1u, m_logs.Count("AEC Get parameters (AECAlgoGetParamCount)"));
    // 18 and everything beyond share the last name.
    EXPECT_EQ(3u, m_logs.Count("AEC Get parameters (AECAlgoGetParamMax)"));
}

TEST_F(CoreQueryTest, SoftwareVersionAndVendorTagsAnswerSuccessWithoutOutput)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    for (AECAlgoGetParamType type : {AECAlgoGetParamSWVersion, AECAlgoGetParamPublishingVendorTagsInfo,
                                     AECAlgoGetParamDependentVendorTags})
    {
        AECMetadataQuery query = {};
        query.type             = type;
        query.output.gain      = 3.5F;
        EXPECT_EQ(0, m_pCore->queryMetaData(&query)) << "type " << type;
        EXPECT_FLOAT_EQ(3.5F, query.output.gain) << "type " << type;
    }
    EXPECT_EQ(1u, m_logs.Count("Nothing to handle for Vendor Tag :10"));
    EXPECT_EQ(1u, m_logs.Count("Nothing to handle for Vendor Tag :11"));
}

TEST_F(CoreQueryTest, ISOToGainAsksArbitrationForPreviewOrSnapshot)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    EXPECT_CALL(*m_factory.pArbitration, QueryISO2Gain(100u, FALSE)).WillOnce(Return(1.5F));
    EXPECT_CALL(*m_factory.pArbitration, QueryISO2Gain(1600u, TRUE)).WillOnce(Return(16.0F));

    AECMetadataQuery query = {};
    query.type             = AECAlgoGetParamGainFromISOPreview;
    query.input.ISOValue   = 100;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_FLOAT_EQ(1.5F, query.output.gain);

    query                = {};
    query.type           = AECAlgoGetParamGainFromISOSnapshot;
    query.input.ISOValue = 1600;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_FLOAT_EQ(16.0F, query.output.gain);
}

TEST_F(CoreQueryTest, FlashMeasurementQueriesFillTheOutputAndSucceedWhateverTheModuleSays)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    AECMetadataQuery query = {};
    EXPECT_CALL(*m_factory.pExtension, GetFlashMeasurementConfig(&query.output.flashMeasConfig))
        .WillOnce(Invoke([](AECAlgoFlashMeasurementConfig* pConfig) {
            pConfig->measurementsCount   = 4;
            pConfig->allowedReTriesCount = 2;
            pConfig->flashOnFrameCount   = 3;
            return AecError;
        }));
    query.type = AECAlgoGetParamFlashMeasurementConfig;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(4, query.output.flashMeasConfig.measurementsCount);
    EXPECT_EQ(2, query.output.flashMeasConfig.allowedReTriesCount);
    EXPECT_EQ(3, query.output.flashMeasConfig.flashOnFrameCount);

    query = {};
    EXPECT_CALL(*m_factory.pExtension, GetFlashMeasurementStatus(&query.output.flashMeasResult))
        .WillOnce(Invoke([](AECAlgoFlashMeasurementResult* pResult) {
            pResult->measurementCount = 5;
            return AecError;
        }));
    query.type = AECAlgoGetParamFlashMeasurementResult;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(5, query.output.flashMeasResult.measurementCount);
}

TEST_F(CoreQueryTest, PeerInfoQueryHandsOutTheOwnRecordAndLogsIt)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    AECMetadataQuery query = {};
    query.type             = AECAlgoGetParamPeerInfo;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(Store().getMyOwnInfo(), query.output.pPeerInfo);
    char expected[64];
    std::snprintf(expected, sizeof(expected), "Multi Camera MyownInfo pointer: %p",
                  static_cast<void*>(Store().getMyOwnInfo()));
    EXPECT_EQ(1u, m_logs.Count(expected));
}

TEST_F(CoreQueryTest, StatisticsConfigurationsAreCopiedFromTheStore)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    AECMetadataQuery query = {};
    query.type             = AECAlgoGetParamBGStatsConfig;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(Store().getBGBEConfig()->horizontalRegionCount, query.output.statsBGBEConfig.horizontalRegionCount);
    EXPECT_EQ(Store().getBGBEConfig()->verticalRegionCount, query.output.statsBGBEConfig.verticalRegionCount);

    query      = {};
    query.type = AECAlgoGetParamBHistStatsConfig;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(Store().getBayerHistConfig()->channel, query.output.statsBHISTConfig.channel);
}

// ---- Start exposure ----

TEST_F(CoreQueryTest, StartQueryWorksOncePerModeAndAgainAfterAModeChange)
{
    StartStreaming();
    // Before the first frame it may be repeated.
    EXPECT_EQ(0, QueryStart());
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(1, QueryStart());
    EXPECT_EQ(1u, m_logs.Count(
                      "Start exposure can only be queried immediately after switching to a valid operation mode!"));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModePreflash));
    EXPECT_EQ(0, QueryStart());
    ASSERT_EQ(0, Process(2));
    EXPECT_EQ(1, QueryStart());
}

TEST_F(CoreQueryTest, StartQueryLogsTheExposureTypeAndTheFlashEstimate)
{
    ASSERT_EQ(0, SetCameraInfo(3, StatsAlgoRoleDefault));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    ASSERT_EQ(0, QueryStart());
    EXPECT_EQ(1u, m_logs.Count("CID 3 exposure type 0"));
    EXPECT_EQ(1u, m_logs.Count("GetFlashCurrentEstimate for start"));
}

// ---- Snapshot exposure: EV ----

TEST_F(CoreQueryTest, SnapshotWithoutBracketingUsesTheCurrentEVAndNoOffset)
{
    Store().SetEVCapability(-2, 2, 6);
    ASSERT_EQ(0, Store().setEVVal(9));
    StreamFrames(3, 0.0F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, FALSE, 6));
    EXPECT_FLOAT_EQ(1.5F, LastStillInput().EV);
    EXPECT_FLOAT_EQ(0.0F, LastStillInput().EVOffset);
    EXPECT_EQ(1u, m_logs.Count("Get Snapshot exposure : type: 0, enable EV: 0, EV: 6"));
}

TEST_F(CoreQueryTest, BracketingWithoutTuningOffsetsByTheFullEV)
{
    Store().SetEVCapability(-2, 2, 6);
    StreamFrames(3, 0.5F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, TRUE, 6));
    const ArbitrationStillInput& rIn = LastStillInput();
    EXPECT_NEAR(IndexOffsetOfEV(1.0), rIn.EVOffset, 1e-4);
    EXPECT_NEAR(23.4498F, rIn.EVOffset, 1e-3);
    EXPECT_FLOAT_EQ(1.0F, rIn.EV);
    EXPECT_EQ(0u, m_logs.CountContaining("snapshot EV adj"));
    EXPECT_EQ(1u, m_logs.CountContaining("capped desired EV 6 min -12 max 12; luma idx 18 luma mult 2.000000"));
    // Without HDR3 the safe target serves all three exposures; the preview EV is not added.
    for (UINT32 i = 0; i < 3; i++)
    {
        EXPECT_FLOAT_EQ(120.0F + rIn.EVOffset, rIn.expIndices[i]) << i;
    }
}

TEST_F(CoreQueryTest, BracketingWithHDR3KeepsEachExposuresOwnTarget)
{
    Store().SetEVCapability(-2, 2, 6);
    StreamFrames(3, 0.5F);
    ASSERT_EQ(0, Store().setMultiExposureSensorMode(SensorHDR));
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, TRUE, 6));
    const ArbitrationStillInput& rIn = LastStillInput();
    EXPECT_FLOAT_EQ(100.0F + rIn.EVOffset, rIn.expIndices[0]);
    EXPECT_FLOAT_EQ(110.0F + rIn.EVOffset, rIn.expIndices[1]);
    EXPECT_FLOAT_EQ(120.0F + rIn.EVOffset, rIn.expIndices[2]);
    EXPECT_EQ(3u, m_logs.CountContaining("expIndicesTargets = "));
}

TEST_F(CoreQueryTest, BracketingOfPlusTwoEVWithHalfTuningGivesOneEV)
{
    Store().SetEVCapability(-2, 2, 6);
    SetBracketingTuning(0.25F, 0.5F);
    StreamFrames(3, 0.0F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, TRUE, 12));
    // weight (2 - 2) x 0.5 = 0, adj 0 x (1 - 0.5) + 0.5 = 0.5, ev 2 x 0.5 = 1.
    EXPECT_EQ(1u, m_logs.Count("snapshot EV adj: desired 12 tuning 0.500000 weight 0.000000 adj 0.500000 EV 1.000000"));
    EXPECT_NEAR(IndexOffsetOfEV(1.0), LastStillInput().EVOffset, 1e-4);
    // The EV handed to arbitration is the requested one, unadjusted.
    EXPECT_FLOAT_EQ(2.0F, LastStillInput().EV);
}

TEST_F(CoreQueryTest, BracketingOfMinusOneEVBlendsTheNegativeTuning)
{
    Store().SetEVCapability(-2, 2, 6);
    SetBracketingTuning(0.5F, 0.25F);
    StreamFrames(3, 0.0F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, TRUE, -6));
    // ev -1: weight 0.5, adj 0.5 x 0.5 + 0.5 = 0.75, ev -0.75.
    EXPECT_EQ(1u,
              m_logs.Count("snapshot EV adj: desired -6 tuning 0.500000 weight 0.500000 adj 0.750000 EV -0.750000"));
    EXPECT_NEAR(IndexOffsetOfEV(-0.75), LastStillInput().EVOffset, 1e-4);
    EXPECT_FLOAT_EQ(-1.0F, LastStillInput().EV);
}

TEST_F(CoreQueryTest, BracketingOfZeroEVTakesTheNegativeTuningAtFullWeight)
{
    Store().SetEVCapability(-2, 2, 6);
    SetBracketingTuning(0.5F, 0.25F);
    StreamFrames(3, 0.0F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, TRUE, 0));
    EXPECT_EQ(1u, m_logs.Count("snapshot EV adj: desired 0 tuning 0.500000 weight 1.000000 adj 1.000000 EV 0.000000"));
    EXPECT_FLOAT_EQ(0.0F, LastStillInput().EVOffset);
}

TEST_F(CoreQueryTest, BracketingIsCappedToTheCapabilitiesButTheEVIsNot)
{
    Store().SetEVCapability(-2, 2, 6);
    StreamFrames(3, 0.0F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, TRUE, 30));
    EXPECT_EQ(1u, m_logs.CountContaining("capped desired EV 12 min -12 max 12; luma idx 24 luma mult 4.000000"));
    EXPECT_NEAR(IndexOffsetOfEV(2.0), LastStillInput().EVOffset, 1e-4);
    EXPECT_FLOAT_EQ(5.0F, LastStillInput().EV);
}

TEST_F(CoreQueryTest, BracketingWithoutStepsPerEVGivesNoOffsetAndDividesByOne)
{
    Store().SetEVCapability(-2, 2, 0);
    StreamFrames(3, 0.0F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, TRUE, 3));
    EXPECT_FLOAT_EQ(0.0F, LastStillInput().EVOffset);
    EXPECT_FLOAT_EQ(3.0F, LastStillInput().EV);
}

// ---- Snapshot exposure: normal and LLS ----

TEST_F(CoreQueryTest, NormalSnapshotAddsThePreviewEVAndArbitratesInTheCurrentMode)
{
    StreamFrames(4, 0.5F);
    EXPECT_CALL(*m_factory.pExtension, GetFlashCurrentEstimate(Off, _, FALSE)).Times(1);
    EXPECT_CALL(*m_factory.pExtension, GetHistStretchData(_))
        .WillOnce(DoAll(SetArgPointee<0>(AECYHistStretchData{TRUE, 0.25F, 1.5F}), Return(AecSuccess)));
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, FALSE, 0));

    ASSERT_EQ(1u, m_stillInputs.size());
    const ArbitrationStillInput& rIn = m_stillInputs[0];
    EXPECT_FLOAT_EQ(100.0F + (0.5F * IndexPerEV), rIn.expIndices[0]);
    EXPECT_FLOAT_EQ(110.0F + (0.5F * IndexPerEV), rIn.expIndices[1]);
    EXPECT_FLOAT_EQ(120.0F + (0.5F * IndexPerEV), rIn.expIndices[2]);
    EXPECT_EQ(AECAlgoSnapshotNormal, rIn.snapshotQuery.queryType);
    EXPECT_EQ(AECAlgoOperationModeStreaming, rIn.snapshotQuery.refOpMode);
    EXPECT_FLOAT_EQ(CAECCoreTestPeer::MtrOut(Core()).targetIndices[2], rIn.TargetIndex);
    EXPECT_FLOAT_EQ(120.0F, rIn.TargetIndex);

    EXPECT_EQ(3000u, m_snapshot.exposureSets[2].exposureTime);
    EXPECT_FLOAT_EQ(4.0F, m_snapshot.exposureSets[2].linearGain);
    EXPECT_EQ(9000u, m_snapshot.RealexposureSets[2].exposureTime);
    EXPECT_EQ(640u, m_snapshot.exifInfo.ISOValue);
    EXPECT_FLOAT_EQ(250.0F, m_snapshot.luxIndex);
    EXPECT_FLOAT_EQ(1.0F, m_snapshot.LEDInfluenceRatio);
    EXPECT_FLOAT_EQ(1.0F, m_snapshot.predictiveGain);
    EXPECT_FLOAT_EQ(1.0F, m_snapshot.digitalGainForSimulation);
    EXPECT_EQ(0u, m_snapshot.IRModeActivated);
    EXPECT_EQ(TRUE, m_snapshot.stretchControl.enable);
    EXPECT_FLOAT_EQ(1.5F, m_snapshot.stretchControl.scaling);
}

TEST_F(CoreQueryTest, LLSSnapshotTakesTheNormalPath)
{
    StreamFrames(2, 0.0F);
    EXPECT_CALL(*m_factory.pExtension, GetFlashCurrentEstimate(Off, _, FALSE)).Times(1);
    EXPECT_CALL(*m_factory.pMetering, GetSnapshotEstimation(_, _)).Times(0);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotLLS, FALSE, 0));
    EXPECT_EQ(AECAlgoSnapshotLLS, LastStillInput().snapshotQuery.queryType);
    EXPECT_FLOAT_EQ(120.0F, LastStillInput().expIndices[2]);
}

TEST_F(CoreQueryTest, SlaveCameraAddsNoPreviewEV)
{
    ASSERT_EQ(0, SetCameraInfo(1, StatsAlgoRoleSlave));
    StreamFrames(3, 1.0F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, FALSE, 0));
    EXPECT_FLOAT_EQ(100.0F, LastStillInput().expIndices[0]);
    EXPECT_FLOAT_EQ(110.0F, LastStillInput().expIndices[1]);
    EXPECT_FLOAT_EQ(120.0F, LastStillInput().expIndices[2]);
}

TEST_F(CoreQueryTest, MasterCameraAddsThePreviewEV)
{
    ASSERT_EQ(0, SetCameraInfo(0, StatsAlgoRoleMaster));
    StreamFrames(3, 1.0F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, FALSE, 0));
    EXPECT_FLOAT_EQ(120.0F + IndexPerEV, LastStillInput().expIndices[2]);
}

TEST_F(CoreQueryTest, LockedAECUsesTheLockedIndicesUnlessBracketing)
{
    StreamFrames(3, 0.5F);
    AECLockContext* pLock     = Store().getLockContext();
    pLock->lockState          = AECAlgoLockOn;
    pLock->expIndicesToUse[0] = 50.0F;
    pLock->expIndicesToUse[1] = 60.0F;
    pLock->expIndicesToUse[2] = 70.0F;
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, FALSE, 0));
    EXPECT_FLOAT_EQ(50.0F, LastStillInput().expIndices[0]);
    EXPECT_FLOAT_EQ(60.0F, LastStillInput().expIndices[1]);
    EXPECT_FLOAT_EQ(70.0F, LastStillInput().expIndices[2]);

    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, TRUE, 0));
    EXPECT_FLOAT_EQ(120.0F, LastStillInput().expIndices[0]);
}

TEST_F(CoreQueryTest, NormalSnapshotInPreflashFallsBackOnTheStreamingLastFrame)
{
    StreamFrames(3, 0.5F);
    ASSERT_EQ(0, SetMode(AECAlgoOperationModePreflash));
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, FALSE, 0));
    EXPECT_EQ(1u, m_logs.Count("Normal snapshot query during preflash mode! "));
    EXPECT_FLOAT_EQ(120.0F + (0.5F * IndexPerEV), LastStillInput().expIndices[2]);
    EXPECT_EQ(AECAlgoOperationModePreflash, LastStillInput().snapshotQuery.refOpMode);
    EXPECT_FLOAT_EQ(250.0F, m_snapshot.luxIndex);
}

TEST_F(CoreQueryTest, NormalSnapshotInPreflashWithoutAStreamingFrameFails)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModePreflash));
    EXPECT_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStillInput*>(), _)).Times(0);
    EXPECT_EQ(1, QuerySnapshot(AECAlgoSnapshotNormal, FALSE, 0));
    EXPECT_EQ(1u, m_logs.Count("ERROR: Cannot recover previous setting!"));
}

TEST_F(CoreQueryTest, SnapshotWithoutStartConfigurationFailsInsteadOfReadingNoHistory)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    EXPECT_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStillInput*>(), _)).Times(0);
    EXPECT_CALL(*m_factory.pMetering, GetSnapshotEstimation(_, _)).Times(0);
    EXPECT_EQ(1, QuerySnapshot(AECAlgoSnapshotNormal, FALSE, 0));
    EXPECT_EQ(1, QuerySnapshot(AECAlgoSnapshotFlash, FALSE, 0));
    EXPECT_EQ(1u, m_logs.Count("Snapshot query without a frame history: query the start exposure first"));
    EXPECT_EQ(1u, m_logs.Count("Flash snapshot query without a frame history: query the start exposure first"));
}

TEST_F(CoreQueryTest, SnapshotRightAfterTheStartQueryReadsTheStartConfiguration)
{
    StartStreaming();
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, FALSE, 0));
    EXPECT_EQ(1u, m_stillInputs.size());
}

TEST_F(CoreQueryTest, UnsupportedSnapshotTypesFailWithoutArbitration)
{
    StreamFrames(2, 0.0F);
    EXPECT_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStillInput*>(), _)).Times(0);
    EXPECT_CALL(*m_factory.pExtension, GetHistStretchData(_)).Times(0);
    EXPECT_EQ(1, QuerySnapshot(AECAlgoSnapshotZLL, FALSE, 0));
    EXPECT_EQ(1, QuerySnapshot(static_cast<AECAlgoSnapshotType>(42), FALSE, 0));
    EXPECT_EQ(2u, m_logs.Count("Non supported snapshot query!"));
    EXPECT_FALSE(Store().getFrameHistory(0)->isSnapshotQuery);
}

TEST_F(CoreQueryTest, SnapshotMarksTheNewestFrameSoMeteringSkipsItsStatistics)
{
    ASSERT_EQ(0, SetPipelineDelay(1));
    StreamFrames(3, 0.0F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotNormal, FALSE, 0));
    ASSERT_NE(nullptr, Store().getFrameHistory(0));
    EXPECT_EQ(3u, Store().getFrameHistory(0)->frameID);
    EXPECT_TRUE(Store().getFrameHistory(0)->isSnapshotQuery);

    EXPECT_CALL(*m_factory.pMetering, ProcessFrameStats(_, _)).Times(0);
    ASSERT_EQ(0, Process(4));
    EXPECT_EQ(1u, m_logs.Count("Snapshot Query, skipping stats processing"));
}

// ---- Snapshot exposure: flash ----

TEST_F(CoreQueryTest, FlashSnapshotCallsTheModulesInOrderAndArbitratesAgainstStreaming)
{
    StreamFrames(3, 0.5F);
    ASSERT_EQ(0, SetMode(AECAlgoOperationModePreflash));
    ASSERT_EQ(0, QueryStart());
    ASSERT_EQ(0, Process(10));
    FLOAT streamOffsets[6] = {0.0F, 1.0F, -7.5F, 3.0F, 4.0F, 5.0F};
    Store().SetExpTableIdxOffsets(streamOffsets, nullptr);

    AECMeteringSnapshotInput seen = {};
    {
        InSequence order;
        EXPECT_CALL(*m_factory.pExtension, GetFlashCurrentEstimate(High, _, TRUE)).WillOnce(Return(3.25F));
        AECMeteringSnapshotOutput estimate = {};
        estimate.snapshotExpIndices[0]     = 200.0F;
        estimate.snapshotExpIndices[1]     = 210.0F;
        estimate.snapshotExpIndices[2]     = 220.0F;
        estimate.snapshotLuxIndex          = 300.0F;
        estimate.flashInfluence            = 2.5F;
        EXPECT_CALL(*m_factory.pMetering, GetSnapshotEstimation(_, _))
            .WillOnce(DoAll(Invoke([&seen](const AECMeteringSnapshotInput* pIn, AECMeteringSnapshotOutput*) {
                                seen = *pIn;
                            }),
                            SetArgPointee<1>(estimate), Return(AecSuccess)));
        EXPECT_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStillInput*>(), _));
        EXPECT_CALL(*m_factory.pExtension, GetHistStretchData(_));
    }
    EXPECT_CALL(*m_factory.pExtension, GetFlashCurrentEstimate(Off, _, _)).Times(0);

    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotFlash, FALSE, 0));
    EXPECT_EQ(1u, m_logs.Count("AECCoreFlash snapshot query"));
    EXPECT_EQ(TRUE, seen.isFlashSnapshot);
    EXPECT_FLOAT_EQ(3.25F, seen.mainToPreFluxRatio);
    EXPECT_FLOAT_EQ(-7.5F, seen.preflashToStreamingOffset);
    EXPECT_FLOAT_EQ(2.5F, m_snapshot.LEDInfluenceRatio);
    EXPECT_FLOAT_EQ(300.0F, m_snapshot.luxIndex);
}

TEST_F(CoreQueryTest, FlashSnapshotWithoutBracketingAddsThePreviewEVAndUsesStreamingAsReference)
{
    StreamFrames(3, 0.5F);
    EstimateFlashSnapshot(1.5F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotFlash, FALSE, 0));
    const ArbitrationStillInput& rIn = LastStillInput();
    EXPECT_FLOAT_EQ(200.0F + (0.5F * IndexPerEV), rIn.expIndices[0]);
    EXPECT_FLOAT_EQ(210.0F + (0.5F * IndexPerEV), rIn.expIndices[1]);
    EXPECT_FLOAT_EQ(220.0F + (0.5F * IndexPerEV), rIn.expIndices[2]);
    EXPECT_EQ(AECAlgoSnapshotFlash, rIn.snapshotQuery.queryType);
    EXPECT_EQ(AECAlgoOperationModeStreaming, rIn.snapshotQuery.refOpMode);
    EXPECT_FLOAT_EQ(0.0F, rIn.EVOffset);
    EXPECT_FLOAT_EQ(1.5F, m_snapshot.LEDInfluenceRatio);
}

TEST_F(CoreQueryTest, FlashSnapshotWithBracketingUsesTheSafeIndexPlusTheEVOffset)
{
    Store().SetEVCapability(-2, 2, 6);
    StreamFrames(3, 0.5F);
    EstimateFlashSnapshot(1.0F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotFlash, TRUE, -6));
    const ArbitrationStillInput& rIn = LastStillInput();
    EXPECT_NEAR(IndexOffsetOfEV(-1.0), rIn.EVOffset, 1e-4);
    for (UINT32 i = 0; i < 3; i++)
    {
        EXPECT_FLOAT_EQ(220.0F + rIn.EVOffset, rIn.expIndices[i]) << i;
    }
    EXPECT_EQ(1u, m_logs.CountContaining("applying bracketing EV: "));
}

TEST_F(CoreQueryTest, FlashSnapshotWithBracketingAndHDR3KeepsEachEstimatedIndex)
{
    Store().SetEVCapability(-2, 2, 6);
    StreamFrames(3, 0.5F);
    ASSERT_EQ(0, Store().setMultiExposureSensorMode(SensorHDR));
    EstimateFlashSnapshot(1.0F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotFlash, TRUE, 6));
    const ArbitrationStillInput& rIn = LastStillInput();
    EXPECT_FLOAT_EQ(200.0F + rIn.EVOffset, rIn.expIndices[0]);
    EXPECT_FLOAT_EQ(210.0F + rIn.EVOffset, rIn.expIndices[1]);
    EXPECT_FLOAT_EQ(220.0F + rIn.EVOffset, rIn.expIndices[2]);
}

TEST_F(CoreQueryTest, FlashInfluenceBelowOneGivesAnInfluenceRatioOfOne)
{
    StreamFrames(2, 0.0F);
    EstimateFlashSnapshot(0.25F);
    ASSERT_EQ(0, QuerySnapshot(AECAlgoSnapshotFlash, FALSE, 0));
    EXPECT_FLOAT_EQ(1.0F, m_snapshot.LEDInfluenceRatio);
}

TEST_F(CoreQueryTest, FailedFlashEstimationFailsTheQueryBeforeArbitration)
{
    StreamFrames(2, 0.0F);
    EXPECT_CALL(*m_factory.pMetering, GetSnapshotEstimation(_, _)).WillOnce(Return(AecError));
    EXPECT_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStillInput*>(), _)).Times(0);
    EXPECT_EQ(1, QuerySnapshot(AECAlgoSnapshotFlash, FALSE, 0));
    EXPECT_FALSE(Store().getFrameHistory(0)->isSnapshotQuery);
}

} // namespace
