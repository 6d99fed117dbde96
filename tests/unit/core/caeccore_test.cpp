// Tests of the core's construction, set parameters and queries, and of a default core on its own modules.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "unit/core/coretestfixture.h"

namespace
{

using ::testing::_;
using ::testing::An;
using ::testing::DoAll;
using ::testing::Field;
using ::testing::InSequence;
using ::testing::Invoke;
using ::testing::Pointee;
using ::testing::Return;
using ::testing::SetArgPointee;
using ::testing::SetArrayArgument;

// ---- Construction ----

TEST_F(CoreOnMocksTest, CreatesTheModulesInOrderOnTheStateStoreAndNeverTheIRModule)
{
    const std::vector<std::string> expected = {"metering",  "convergence", "arbitration", "iris",
                                               "extension", "diagnostic",  "skip"};
    EXPECT_EQ(expected, m_factory.creationOrder);
    EXPECT_TRUE(m_factory.allOnOneStore);
    EXPECT_EQ(nullptr, CAECCoreTestPeer::IR(Core()));
    EXPECT_FLOAT_EQ(1.0F, CAECCoreTestPeer::SimDigitalGain(Core()));
}

TEST_F(CoreOnMocksTest, ChangeEventsReachTheModulesInRegistrationOrder)
{
    {
        InSequence sequence;
        EXPECT_CALL(*m_factory.pMetering, OnOperationModeChange());
        EXPECT_CALL(*m_factory.pConvergence, OnOperationModeChange());
        EXPECT_CALL(*m_factory.pArbitration, OnOperationModeChange());
        EXPECT_CALL(*m_factory.pIrisCtrl, OnOperationModeChange());
        EXPECT_CALL(*m_factory.pExtension, OnOperationModeChange());
        EXPECT_CALL(*m_factory.pDiagnostic, OnOperationModeChange());
        EXPECT_CALL(*m_factory.pSkipCtrl, OnOperationModeChange());
    }
    EXPECT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
}

TEST(CAECCoreDefaultTest, RunsTheHostPathOnItsOwnModules)
{
    CoreLogCapture logs;
    std::unique_ptr<CAECCore> pCore(new CAECCore());

    // Tuning without a parameter store: the core runs on its built-in default tuning.
    StatsTuningData tuning  = {};
    AECCoreSetParam sorenta = {};
    sorenta.paramType       = AECAlgoSetParamSorentaData;
    sorenta.data.pTuningData = &tuning;
    ASSERT_EQ(0, pCore->setInput(&sorenta));

    AECCoreSetParam mode = {};
    mode.paramType       = AECAlgoSetParamOperationMode;
    mode.data.opMode     = AECAlgoOperationModeStreaming;
    ASSERT_EQ(0, pCore->setInput(&mode));

    AECMetadataQuery query = {};
    query.type             = AECAlgoGetParamStartExposure;
    ASSERT_EQ(0, pCore->queryMetaData(&query));
    EXPECT_FLOAT_EQ(1.0F, query.output.frameSetting.digitalGainForSimulation);

    AECCoreInput  input  = {};
    AECCoreOutput output = {};
    output.frameSetting.flashState     = AECAlgoFlashStateMain;
    output.frameSetting.LEDCurrents[0] = 500;
    for (UINT64 frameID = 1; frameID <= 12; frameID++)
    {
        input.frameID = frameID;
        ASSERT_EQ(0, pCore->process(&input, &output));
        EXPECT_FLOAT_EQ(1.0F, output.frameSetting.digitalGainForSimulation);
    }
    // The extension stand-in turns the LEDs off at the start of each frame.
    EXPECT_EQ(AECAlgoFlashStateOff, output.frameSetting.flashState);
    EXPECT_EQ(0u, output.frameSetting.LEDCurrents[0]);
    EXPECT_FLOAT_EQ(1.0F, output.frameSetting.LEDInfluenceRatio);
    // The default start index 300 lies between the knees at 291.4 (13.8 ms, gain 4) and 328.6 (27.6 ms, gain 6),
    // where exposure time grows first: 17.8 ms at gain 4. The default 60 Hz antibanding moves it to the nearer
    // multiple of the 8.33 ms flicker period, 16.7 ms, and pays for it in gain.
    const AECAlgoExposureData& safe = output.frameSetting.exposureSets[AECAlgoExposureSafe];
    const double tableTime = 13825301.0 * std::pow(1.03, 300.0 - 291.418213);
    EXPECT_FLOAT_EQ(1.0F, safe.fnumber);
    EXPECT_EQ(16666666u, safe.exposureTime);
    EXPECT_NEAR(tableTime * 4.0, static_cast<double>(safe.exposureTime) * safe.linearGain, tableTime * 4.0 * 2e-3);

    CAECCoreDataManager& rStore = CAECCoreTestPeer::DataManager(*pCore);
    EXPECT_EQ(10u, CAECCoreTestPeer::HistorySize(rStore));
    ASSERT_NE(nullptr, rStore.getFrameHistory(0));
    EXPECT_EQ(12u, rStore.getFrameHistory(0)->frameID);
    EXPECT_FLOAT_EQ(1.0F, CAECCoreTestPeer::SimDigitalGain(*pCore));
}

// ---- Set parameters ----

TEST_F(CoreOnMocksTest, NullSetParameterIsRefused)
{
    EXPECT_EQ(1, m_pCore->setInput(nullptr));
    EXPECT_EQ(1u, m_logs.Count("SetParam is NULL!"));
}

TEST_F(CoreOnMocksTest, EachSetParameterIsLoggedByNameWithLargeValuesClamped)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    EXPECT_EQ(1u, m_logs.Count("AEC Set parameters (AECAlgoSetParamOperationMode)"));

    AECCoreSetParam param = {};
    param.paramType       = static_cast<AECAlgoSetParamType>(999);
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(1u, m_logs.Count("AEC Set parameters (AECAlgoSetParamMax)"));
    EXPECT_EQ(1u, m_logs.Count("Unhandled AEC set input type 999"));
}

TEST_F(CoreOnMocksTest, RefusedModeChangeStillReturnsZero)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    EXPECT_EQ(0, SetMode(AECAlgoOperationModeFastAEC));
    EXPECT_EQ(AECAlgoOperationModeStreaming, Store().getOperationMode());
    EXPECT_EQ(1u, m_logs.Count("Error: cannot set fast  AEC without going to Init mode first!\n"));
}

TEST_F(CoreOnMocksTest, IRLedStateIsUnhandledAndChangesNothing)
{
    AECCoreSetParam param = {};
    param.paramType       = AECAlgoSetParamIRLedState;
    param.data.IRLedState = AECIRLedON;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(AECIRLedMAX, Store().getIRState());
    EXPECT_EQ(1u, m_logs.Count("Unhandled AEC set input type 36"));
}

TEST_F(CoreOnMocksTest, CameraInfoSetsTheCoresIdentityEvenWhenTheStoreDropsTheRole)
{
    EXPECT_EQ(0, SetCameraInfo(2, StatsAlgoRoleMaster));
    EXPECT_EQ(2u, CAECCoreTestPeer::CameraID(Core()));
    EXPECT_EQ(static_cast<UINT32>(StatsAlgoRoleMaster), CAECCoreTestPeer::AlgoRole(Core()));
    EXPECT_EQ(2u, Store().getCameraInfo()->cameraId);
    EXPECT_EQ(StatsAlgoRoleDefault, Store().getCameraInfo()->algoRole);
}

TEST_F(CoreOnMocksTest, SensorInfoIsStoredAndResetsFrameSkipping)
{
    AECCoreSetParam param              = {};
    param.paramType                    = AECAlgoSetParamSensorInfo;
    param.data.sensorInfo.fNumber      = 1.8F;
    param.data.sensorInfo.maximumStreamGain = 64.0F;
    EXPECT_CALL(*m_factory.pSkipCtrl, ResetFrameSkip()).Times(1);
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_FLOAT_EQ(1.8F, Store().getSensorInfo()->fNumber);
    EXPECT_FLOAT_EQ(64.0F, Store().getSensorInfo()->maximumStreamGain);
}

TEST_F(CoreOnMocksTest, PipelineDelayOverrideAndDualCameraAreStored)
{
    EXPECT_EQ(0, SetPipelineDelay(3));
    EXPECT_EQ(3, Store().getPipelineDelay());
    EXPECT_EQ(1u, m_logs.Count("System Latency: 3"));

    AECCoreSetParam overrideParam                 = {};
    overrideParam.paramType                       = AECAlgoSetParamOverrideSetting;
    overrideParam.data.OverrideSetting.profile3A  = 7;
    EXPECT_EQ(0, SetParameter(overrideParam));
    EXPECT_EQ(7u, Store().getOverrideSetting()->profile3A);

    AECCoreSetParam dual = {};
    dual.paramType       = AECAlgoSetParamIsDualCamera;
    dual.data.isDual     = TRUE;
    EXPECT_EQ(0, SetParameter(dual));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    EXPECT_CALL(*m_factory.pConvergence, GetStartExposureIndices(_, _, TRUE)).Times(1);
    EXPECT_EQ(0, QueryStart());
}

TEST_F(CoreOnMocksTest, PeerInfoWithoutARoleKeepsThePeerUnknown)
{
    AECMultiCamInfo peer                     = {};
    AECCoreSetParam param                    = {};
    param.paramType                          = AECAlgoSetParamPeerInfo;
    param.data.PeerInfoCombo.needSync        = TRUE;
    param.data.PeerInfoCombo.isActive[1]     = TRUE;
    param.data.PeerInfoCombo.cameraId[1]     = 5;
    param.data.PeerInfoCombo.algoRole[1]     = StatsAlgoRoleMaster;
    param.data.PeerInfoCombo.pPeerInfo[1]    = &peer;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(nullptr, Store().getPeerInfo());
    EXPECT_EQ(1u, m_logs.Count("AEC need sync: 1"));
    EXPECT_EQ(4u, m_logs.CountContaining("PeerPipeline:"));
}

// ---- Queries ----

TEST_F(CoreOnMocksTest, NullQueryIsRefused)
{
    EXPECT_EQ(1, m_pCore->queryMetaData(nullptr));
    EXPECT_EQ(1u, m_logs.Count("Query is NULL"));
}

TEST_F(CoreOnMocksTest, EveryQueryIsRefusedInInitMode)
{
    for (INT32 type = AECAlgoGetParamInvalid; type <= 18; type++)
    {
        AECMetadataQuery query = {};
        query.type             = static_cast<AECAlgoGetParamType>(type);
        EXPECT_EQ(1, m_pCore->queryMetaData(&query)) << "type " << type;
    }
    EXPECT_EQ(19u, m_logs.Count("Query under init mode is not allowed."));
}

TEST_F(CoreOnMocksTest, StartQueryArbitratesTheStartIndicesAndRecordsTheStartConfiguration)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    const FLOAT startIndices[3] = {10.0F, 20.0F, 30.0F};
    EXPECT_CALL(*m_factory.pConvergence, GetStartExposureIndices(_, _, FALSE))
        .WillOnce(DoAll(SetArrayArgument<0>(startIndices, startIndices + 3), SetArgPointee<1>(55.0F),
                        Return(AecSuccess)));
    EXPECT_CALL(*m_factory.pArbitration,
                ArbitrateExposure(::testing::Matcher<ArbitrationStreamInput*>(
                                  Pointee(Field(&ArbitrationStreamInput::refOpMode, AECAlgoOperationModeStreaming))),
                              _))
        .WillOnce(Invoke([](ArbitrationStreamInput* pIn, ArbitrationOutput* pOut) {
            EXPECT_FLOAT_EQ(20.0F, pIn->expIndices[1]);
            EXPECT_FLOAT_EQ(0.0F, pIn->expIndicesDelta[1]);
            pOut->expSets[2].exposureTime = 5000;
            pOut->exif.ISOValue           = 200;
            return AecSuccess;
        }));
    EXPECT_CALL(*m_factory.pExtension, GetFlashCurrentEstimate(Off, _, FALSE)).Times(1);

    ASSERT_EQ(0, QueryStart());
    EXPECT_EQ(5000u, m_startSetting.exposureSets[2].exposureTime);
    EXPECT_EQ(200u, m_startSetting.exifInfo.ISOValue);
    EXPECT_FLOAT_EQ(55.0F, m_startSetting.luxIndex);
    EXPECT_FLOAT_EQ(1.0F, m_startSetting.LEDInfluenceRatio);
    EXPECT_FLOAT_EQ(1.0F, m_startSetting.predictiveGain);
    EXPECT_FLOAT_EQ(1.0F, m_startSetting.digitalGainForSimulation);

    ASSERT_TRUE(Store().isStartConfigSaved());
    const AECFrameHistory* pStart = Store().getFrameHistory(0);
    ASSERT_NE(nullptr, pStart);
    EXPECT_TRUE(pStart->isStartConfig);
    EXPECT_FLOAT_EQ(30.0F, pStart->expIndices[2]);
    EXPECT_FLOAT_EQ(30.0F, pStart->expIndicesTargets[2]);
    EXPECT_FLOAT_EQ(30.0F, pStart->sHDRExpIndices[2]);
    EXPECT_FLOAT_EQ(55.0F, pStart->luxIndex);
    EXPECT_FLOAT_EQ(-1.0F, pStart->luma);
}

TEST_F(CoreOnMocksTest, StartQueryInPreflashAsksForTheLowLEDEstimate)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModePreflash));
    EXPECT_CALL(*m_factory.pExtension, GetFlashCurrentEstimate(Low, _, TRUE)).Times(1);
    EXPECT_EQ(0, QueryStart());
}

TEST_F(CoreOnMocksTest, FollowingCameraStartsFromThePeersLuxIndex)
{
    CAECCoreTestPeer::SetMultiCamTypes(Store(), AECAlgoMeteringIndependent, AECAlgoExposureFollow);
    AECMultiCamInfo peer       = {};
    peer.meteringInfo.luxIndex = 250.0F;
    Store().setPeerInfo(&peer);
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    EXPECT_CALL(*m_factory.pArbitration, ComputeTargetIndexInMultiCam(250.0F, _)).Times(1);
    EXPECT_CALL(*m_factory.pConvergence, GetStartExposureIndices(_, _, _)).Times(0);
    EXPECT_EQ(0, QueryStart());
    EXPECT_FLOAT_EQ(250.0F, m_startSetting.luxIndex);
}

TEST_F(CoreOnMocksTest, StartQueryOnlyBeforeTheFirstFrameOfAMode)
{
    StartStreaming();
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(1, QueryStart());
    EXPECT_EQ(1u, m_logs.Count(
                      "Start exposure can only be queried immediately after switching to a valid operation mode!"));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    EXPECT_EQ(0, QueryStart());
}

TEST_F(CoreOnMocksTest, PlainReadOutsAnswerFromTheStore)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));

    AECMetadataQuery query = {};
    query.type             = AECAlgoGetParamEVCapabilities;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(-12, query.output.EVCapabilities.minEV);
    EXPECT_EQ(12, query.output.EVCapabilities.maxEV);
    EXPECT_EQ(6, query.output.EVCapabilities.stepsPerEV);
    EXPECT_EQ(1u, m_logs.Count("AEC Get parameters (AECAlgoGetParamEVCapabilities)"));

    query      = {};
    query.type = AECAlgoGetParamBGStatsConfig;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(64u, query.output.statsBGBEConfig.horizontalRegionCount);

    query      = {};
    query.type = AECAlgoGetParamBHistStatsConfig;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(ColorChannelY, query.output.statsBHISTConfig.channel);

    query      = {};
    query.type = AECAlgoGetParamPeerInfo;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(Store().getMyOwnInfo(), query.output.pPeerInfo);

    query                = {};
    query.type           = AECAlgoGetParamGainFromISOSnapshot;
    query.input.ISOValue = 800;
    EXPECT_CALL(*m_factory.pArbitration, QueryISO2Gain(800u, TRUE)).WillOnce(Return(8.0F));
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_FLOAT_EQ(8.0F, query.output.gain);

    query      = {};
    query.type = AECAlgoGetParamDependentVendorTags;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(1u, m_logs.Count("Nothing to handle for Vendor Tag :11"));

    query                                       = {};
    query.type                                  = AECAlgoGetParamDebugData;
    query.input.debugData.sizeofDebugDataWritten = 99;
    EXPECT_EQ(0, m_pCore->queryMetaData(&query));
    EXPECT_EQ(0u, query.input.debugData.sizeofDebugDataWritten);
}

TEST_F(CoreOnMocksTest, QueriesWithoutAnAnswerAreUnsupported)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    for (AECAlgoGetParamType type : {AECAlgoGetParamInvalid, AECAlgoGetParamDynamicCalibrationData,
                                     AECAlgoGetParamSnapshotType, AECAlgoGetParamCount})
    {
        AECMetadataQuery query = {};
        query.type             = type;
        EXPECT_EQ(2, m_pCore->queryMetaData(&query)) << "type " << type;
    }
}

} // namespace
