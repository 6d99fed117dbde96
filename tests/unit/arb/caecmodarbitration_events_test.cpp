// Tests of the arbitration module's events: tuning, table choice and offsets, mode, EV, FPS, flicker, manual, sensor.
#include "unit/arb/caecmodarbitration_testfixture.h"

#include <functional>
#include <string>
#include <vector>

using ::testing::Return;

namespace
{

using Peer = CAECModArbitrationTestPeer;

class ArbModuleEventsTest : public ArbModuleTest
{
};

// ---- Tuning ----

TEST_F(ArbModuleEventsTest, MissingTuningFailsWithLog)
{
    ON_CALL(m_context, getArbTuning()).WillByDefault(Return(nullptr));
    EXPECT_EQ(AecError, m_pModule->OnTuningHeaderChange());
    EXPECT_TRUE(ArbLogContains("NULL tuning!"));
    EXPECT_EQ(FALSE, Peer::TableZeroTuned(*m_pModule));
}

TEST_F(ArbModuleEventsTest, TuningWithoutCoreRecordFailsWithLog)
{
    m_pTuning->arbTuningData.pCore = nullptr;
    EXPECT_EQ(AecError, m_pModule->OnTuningHeaderChange());
    EXPECT_TRUE(ArbLogContains("NULL tuning!"));
    EXPECT_EQ(FALSE, Peer::TableZeroTuned(*m_pModule));
}

TEST_F(ArbModuleEventsTest, TuningWithoutTablesFailsWithLog)
{
    ArbCore()->expTablesCount = 0;
    EXPECT_EQ(AecError, m_pModule->OnTuningHeaderChange());
    EXPECT_TRUE(ArbLogContains("no exposure tables 0"));
    EXPECT_EQ(FALSE, Peer::TableZeroTuned(*m_pModule));
}

TEST_F(ArbModuleEventsTest, TableZeroWithoutKneesFailsWithLog)
{
    ArbCore()->expTables[0].expKneeEntriesCount = 0;
    EXPECT_EQ(AecError, m_pModule->OnTuningHeaderChange());
    EXPECT_TRUE(ArbLogContains("table 0 doesnt have knee points"));
    EXPECT_EQ(FALSE, Peer::TableZeroTuned(*m_pModule));
    EXPECT_EQ(0U, m_callback.m_offsetCalls);
}

TEST_F(ArbModuleEventsTest, TuningLogsKneesPublishesOffsetsAndAppliesTheMode)
{
    EXPECT_EQ(AecSuccess, m_pModule->OnTuningHeaderChange());
    EXPECT_EQ(TRUE, Peer::TableZeroTuned(*m_pModule));
    EXPECT_EQ(&m_pTuning->arbTuningData, Peer::Tuning(*m_pModule));
    EXPECT_TRUE(ArbLogContains("pK idx 291.418213"));
    EXPECT_TRUE(ArbLogContains("exp time 82931727"));
    EXPECT_EQ(1U, m_callback.m_offsetCalls);
    // The mode change that follows adopts the tables and publishes their sensitivity.
    EXPECT_EQ(1U, m_callback.m_sensitivityCalls);
    EXPECT_GE(m_callback.m_limitationCalls, 1U);
}

TEST_F(ArbModuleEventsTest, EveryEventButInitFailsWithLogBeforeTableZeroIsTuned)
{
    TestIrisTable iris({0}, {{2.0F, 4.0F}});
    const std::vector<std::pair<std::string, std::function<AecResult()>>> events = {
        {"OnOperationModeChange", [this]() { return m_pModule->OnOperationModeChange(); }},
        {"OnExposureCompChange", [this]() { return m_pModule->OnExposureCompChange(); }},
        {"OnFlickerCompModeChange", [this]() { return m_pModule->OnFlickerCompModeChange(); }},
        {"OnManualSettingChange", [this]() { return m_pModule->OnManualSettingChange(); }},
        {"OnFPSChange", [this]() { return m_pModule->OnFPSChange(); }},
        {"OnSensorInfoChange", [this]() { return m_pModule->OnSensorInfoChange(); }},
        {"OnZoomInfoChange", [this]() { return m_pModule->OnZoomInfoChange(); }},
        {"OnDebugDataUpdate", [this]() { return m_pModule->OnDebugDataUpdate(); }},
        {"OnCustomExposureTableChange", [this]() { return m_pModule->OnCustomExposureTableChange(); }},
        {"OnFnManualChange", [this]() { return m_pModule->OnFnManualChange(); }},
        {"OnLDMIrisTable", [this, &iris]() { return m_pModule->OnLDMIrisTable(iris.Data()); }},
    };
    for (const auto& rEvent : events)
    {
        CoreLogCapture::Clear();
        EXPECT_EQ(AecError, rEvent.second()) << rEvent.first;
        EXPECT_TRUE(ArbLogContains(rEvent.first + ": exposure table 0 is not tuned")) << rEvent.first;
    }

    m_opMode = AECAlgoOperationModeInit;
    EXPECT_EQ(AecSuccess, m_pModule->OnOperationModeChange());
    EXPECT_EQ(1U, m_callback.m_limitationCalls);
}

TEST_F(ArbModuleEventsTest, SensorModeArrivingBeforeTuningIsKept)
{
    EXPECT_EQ(AecError, m_pModule->OnSensorInfoChange());
    EXPECT_EQ(&Peer::SensorLimitStreaming(*m_pModule), CArbitratorTestPeer::SensorLimit(StreamArb()));
    EXPECT_FLOAT_EQ(64.0F, Peer::SensorLimitStreaming(*m_pModule).gain.max);
    EXPECT_EQ(0U, m_callback.m_limitationCalls);
}

// ---- Table choice ----

TEST_F(ArbModuleEventsTest, TableIDsFollowModeAndSnapshotKind)
{
    TuneModule();
    StartUpTuning()->expTableIDFastAEC      = 1;
    StartUpTuning()->expTableIDAggressive   = 1;
    FlashTuning()->expTableIDPreFlash       = 1;
    FlashTuning()->expTableIDFlashMeasurement = 1;
    FlashTuning()->expTableIDMainFlash      = 1;
    SnapshotTuning()->expTableIDSnapshot    = 0;

    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeInit, nullptr));
    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeStreaming, nullptr));
    EXPECT_EQ(1, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeFastAEC, nullptr));
    EXPECT_EQ(1, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeAggressiveAEC, nullptr));
    EXPECT_EQ(1, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModePreflash, nullptr));
    EXPECT_EQ(1, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeFlashMeasurement, nullptr));

    const AECSnapshotQueryParam flash  = {AECAlgoSnapshotFlash, AECAlgoOperationModeStreaming};
    const AECSnapshotQueryParam normal = {AECAlgoSnapshotNormal, AECAlgoOperationModeStreaming};
    const AECSnapshotQueryParam lls    = {AECAlgoSnapshotLLS, AECAlgoOperationModeStreaming};
    const AECSnapshotQueryParam zll    = {AECAlgoSnapshotZLL, AECAlgoOperationModeStreaming};
    EXPECT_EQ(1, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeStreaming, &flash));
    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeStreaming, &normal));
    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeStreaming, &lls));
    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeFastAEC, &zll));

    SnapshotTuning()->expTableIDSnapshot = 1;
    EXPECT_EQ(1, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeStreaming, &lls));
}

TEST_F(ArbModuleEventsTest, UnknownOperationModeUsesTableZeroWithLog)
{
    TuneModule();
    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, static_cast<AECAlgoOperationModeType>(9), nullptr));
    EXPECT_TRUE(ArbLogContains("unexpected operation mode"));
}

TEST_F(ArbModuleEventsTest, TableIDBeyondTheCountIsForcedToZeroWithLog)
{
    TuneModule();
    StartUpTuning()->expTableIDFastAEC   = 5;
    SnapshotTuning()->expTableIDSnapshot = 7;
    FlashTuning()->expTableIDPreFlash    = -1;
    const AECSnapshotQueryParam normal   = {AECAlgoSnapshotNormal, AECAlgoOperationModeStreaming};

    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeFastAEC, nullptr));
    EXPECT_TRUE(ArbLogContains("operation mode 3 table index requested 5 exceed table count 2, forcing to zero"));
    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeStreaming, &normal));
    EXPECT_TRUE(ArbLogContains("snapshot mode 0 table index requested 7 exceed table count 2, forcing to zero"));
    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModePreflash, nullptr));
    EXPECT_TRUE(ArbLogContains("operation mode 2 table index requested -1 exceed table count 2, forcing to zero"));
}

TEST_F(ArbModuleEventsTest, EmptyTableIsForcedToZeroWithLog)
{
    TuneModule();
    ArbCore()->expTables[1].expKneeEntriesCount = 0;
    SnapshotTuning()->expTableIDSnapshot        = 1;
    StartUpTuning()->expTableIDAggressive       = 1;
    const AECSnapshotQueryParam normal          = {AECAlgoSnapshotNormal, AECAlgoOperationModeStreaming};

    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeStreaming, &normal));
    EXPECT_TRUE(ArbLogContains("snapshot mode 0 table index requested 1 is empty, forcing to table index zero"));
    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeAggressiveAEC, nullptr));
    EXPECT_TRUE(ArbLogContains("operation mode 4 table index requested 1 is empty, forcing to table index zero"));
}

TEST_F(ArbModuleEventsTest, ValidCustomTableOverridesEveryChoice)
{
    TuneModule();
    m_customTable.isValid              = TRUE;
    const AECSnapshotQueryParam flash  = {AECAlgoSnapshotFlash, AECAlgoOperationModeStreaming};
    EXPECT_EQ(CustomExposureTableID, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeStreaming, nullptr));
    EXPECT_EQ(CustomExposureTableID, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeFastAEC, nullptr));
    EXPECT_EQ(CustomExposureTableID, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeStreaming, &flash));
}

TEST_F(ArbModuleEventsTest, TableChoiceBeforeTuningIsZeroWithLog)
{
    EXPECT_EQ(0, Peer::UtilGetExpTableID(*m_pModule, AECAlgoOperationModeFastAEC, nullptr));
    EXPECT_TRUE(ArbLogContains("Warning : Tuning Header not ready, cannot Get Table ID"));
}

// ---- Index offsets ----

TEST_F(ArbModuleEventsTest, OffsetsConvertIndicesOfEachTableToTableZero)
{
    StartUpTuning()->expTableIDFastAEC   = 1;
    FlashTuning()->expTableIDPreFlash    = 1;
    SnapshotTuning()->expTableIDSnapshot = 1;
    TuneModule();

    // Table 1 has twice the sensitivity scale: the same knees give twice the sensitivity.
    const FLOAT   half      = OffsetForScale(2.0);
    const FLOAT*  pStream   = m_callback.m_published.streamModeExpIdxOffsets;
    const FLOAT*  pStill    = m_callback.m_published.stillModeExpIdxOffsets;
    EXPECT_NEAR(-23.4498F, half, 1e-3F);
    EXPECT_FLOAT_EQ(0.0F, pStream[AECAlgoOperationModeInit]);
    EXPECT_FLOAT_EQ(0.0F, pStream[AECAlgoOperationModeStreaming]);
    EXPECT_FLOAT_EQ(half, pStream[AECAlgoOperationModePreflash]);
    EXPECT_FLOAT_EQ(half, pStream[AECAlgoOperationModeFastAEC]);
    EXPECT_FLOAT_EQ(0.0F, pStream[AECAlgoOperationModeAggressiveAEC]);
    EXPECT_FLOAT_EQ(0.0F, pStream[AECAlgoOperationModeFlashMeasurement]);
    EXPECT_FLOAT_EQ(half, pStill[AECAlgoSnapshotNormal]);
    EXPECT_FLOAT_EQ(0.0F, pStill[AECAlgoSnapshotFlash]);
    EXPECT_FLOAT_EQ(half, pStill[AECAlgoSnapshotLLS]);
    EXPECT_FLOAT_EQ(half, pStill[AECAlgoSnapshotZLL]);
}

TEST_F(ArbModuleEventsTest, OffsetIncludesTheFirstKneeIndexDifference)
{
    TuneModule();
    StartUpTuning()->expTableIDFastAEC = 1;
    // Table 1 starting 5 index units higher with the same first exposure: its index 5 is table 0's index 0.
    ArbCore()->expTables[1].sensitivityCorrectionFactor = 1.0F;
    ArbCore()->expTables[1].expKneeEntries[0].expIndex  = 5.0F;

    FLOAT stream[AECExpIdxOffsetCount] = {};
    FLOAT still[AECExpIdxOffsetCount]  = {};
    Peer::CalculateExpTableIdxOffsets(*m_pModule, stream, still);
    EXPECT_FLOAT_EQ(5.0F, stream[AECAlgoOperationModeFastAEC]);
    EXPECT_FLOAT_EQ(0.0F, stream[AECAlgoOperationModeStreaming]);
}

TEST_F(ArbModuleEventsTest, TableWithoutSensitivityCorrectionGetsNoOffset)
{
    TuneModule();
    StartUpTuning()->expTableIDFastAEC                  = 1;
    ArbCore()->expTables[1].sensitivityCorrectionFactor = 0.0F;

    FLOAT stream[AECExpIdxOffsetCount] = {};
    FLOAT still[AECExpIdxOffsetCount]  = {};
    Peer::CalculateExpTableIdxOffsets(*m_pModule, stream, still);
    EXPECT_FLOAT_EQ(0.0F, stream[AECAlgoOperationModeFastAEC]);
    EXPECT_TRUE(ArbLogContains("index offset 0"));
}

TEST_F(ArbModuleEventsTest, ValidCustomTableSendsZeroOffsetsAndInvalidRecomputes)
{
    StartUpTuning()->expTableIDFastAEC = 1;
    TuneModule();
    ASSERT_NE(0.0F, m_callback.m_published.streamModeExpIdxOffsets[AECAlgoOperationModeFastAEC]);

    m_customTable.isValid  = TRUE;
    m_customTable.expTable = ArbCore()->expTables[1];
    EXPECT_EQ(AecSuccess, m_pModule->OnCustomExposureTableChange());
    EXPECT_EQ(2U, m_callback.m_offsetCalls);
    for (FLOAT offset : m_callback.m_published.streamModeExpIdxOffsets)
    {
        EXPECT_FLOAT_EQ(0.0F, offset);
    }
    EXPECT_EQ(CustomExposureTableID, Peer::TableIDStreaming(*m_pModule));

    m_customTable.isValid = FALSE;
    EXPECT_EQ(AecSuccess, m_pModule->OnCustomExposureTableChange());
    EXPECT_FLOAT_EQ(OffsetForScale(2.0), m_callback.m_published.streamModeExpIdxOffsets[AECAlgoOperationModeFastAEC]);
    EXPECT_EQ(0, Peer::TableIDStreaming(*m_pModule));
}

// ---- Mode ----

TEST_F(ArbModuleEventsTest, ModeChangeAdoptsTheTablesOfTheModeAndPublishesSensitivity)
{
    StartUpTuning()->expTableIDFastAEC   = 1;
    SnapshotTuning()->expTableIDSnapshot = 1;
    TuneModule();
    const FLOAT table0Sensitivity = m_callback.m_published.streamingExpTblSens;
    EXPECT_EQ(0, Peer::TableIDStreaming(*m_pModule));
    EXPECT_EQ(1, Peer::TableIDStill(*m_pModule));
    EXPECT_EQ(1, StillArb().GetTableID());

    m_opMode = AECAlgoOperationModeFastAEC;
    EXPECT_EQ(AecSuccess, m_pModule->OnOperationModeChange());
    EXPECT_EQ(1, Peer::TableIDStreaming(*m_pModule));
    EXPECT_EQ(1, StreamArb().GetTableID());
    EXPECT_EQ(2U, m_callback.m_sensitivityCalls);
    // Twice the table scale, twice the published sensitivity.
    EXPECT_FLOAT_EQ(2.0F * table0Sensitivity, m_callback.m_published.streamingExpTblSens);
}

TEST_F(ArbModuleEventsTest, InitModeDropsTheFrameRateBoundAndPublishesTheHeldLimit)
{
    TuneModule();
    const UINT32 calls = m_callback.m_limitationCalls;
    m_opMode           = AECAlgoOperationModeInit;
    EXPECT_EQ(AecSuccess, m_pModule->OnOperationModeChange());
    EXPECT_EQ(calls + 1U, m_callback.m_limitationCalls);
    EXPECT_FLOAT_EQ(1.0F, CArbitratorTestPeer::Session(StreamArb()).minFPS);
    EXPECT_FLOAT_EQ(1.0F, CArbitratorTestPeer::Session(StillArb()).minFPS);
}

// ---- EV, FPS, flicker ----

TEST_F(ArbModuleEventsTest, ExposureCompensationReachesBothArbitrators)
{
    TuneModule();
    m_EV.EV      = 1.0F;
    m_HDR3Enable = TRUE;
    const UINT32 calls = m_callback.m_limitationCalls;
    EXPECT_EQ(AecSuccess, m_pModule->OnExposureCompChange());
    EXPECT_EQ(TRUE, Peer::EnableHDR3(*m_pModule));
    EXPECT_FLOAT_EQ(1.0F, CArbitratorTestPeer::Session(StreamArb()).EV);
    EXPECT_FLOAT_EQ(1.0F, CArbitratorTestPeer::Session(StillArb()).EV);
    EXPECT_EQ(calls + 1U, m_callback.m_limitationCalls);
}

TEST_F(ArbModuleEventsTest, FrameRateIsEnforcedForPreviewExceptInStartUpModes)
{
    TuneModule();
    EXPECT_EQ(TRUE, Peer::isEnforcedFPS(*m_pModule, Still));
    EXPECT_EQ(TRUE, Peer::isEnforcedFPS(*m_pModule, Streaming));
    EXPECT_EQ(TRUE, Peer::isEnforcedFlicker(*m_pModule, Streaming));
    m_opMode = AECAlgoOperationModePreflash;
    EXPECT_EQ(TRUE, Peer::isEnforcedFPS(*m_pModule, Streaming));
    for (AECAlgoOperationModeType mode : {AECAlgoOperationModeFastAEC, AECAlgoOperationModeAggressiveAEC})
    {
        m_opMode = mode;
        EXPECT_EQ(FALSE, Peer::isEnforcedFPS(*m_pModule, Streaming));
        EXPECT_EQ(FALSE, Peer::isEnforcedFlicker(*m_pModule, Streaming));
        EXPECT_EQ(TRUE, Peer::isEnforcedFPS(*m_pModule, Still));
        EXPECT_EQ(TRUE, Peer::isEnforcedFlicker(*m_pModule, Still));
    }
}

TEST_F(ArbModuleEventsTest, FPSChangeReachesPreviewOnlyWhenEnforced)
{
    TuneModule();
    m_minFPS = 24.0F;
    UINT32 calls = m_callback.m_limitationCalls;
    EXPECT_EQ(AecSuccess, m_pModule->OnFPSChange());
    EXPECT_FLOAT_EQ(24.0F, CArbitratorTestPeer::Session(StreamArb()).minFPS);
    EXPECT_FLOAT_EQ(24.0F, CArbitratorTestPeer::Session(StillArb()).minFPS);
    EXPECT_EQ(calls + 1U, m_callback.m_limitationCalls);

    m_opMode = AECAlgoOperationModeFastAEC;
    m_minFPS = 10.0F;
    calls    = m_callback.m_limitationCalls;
    EXPECT_EQ(AecSuccess, m_pModule->OnFPSChange());
    EXPECT_FLOAT_EQ(24.0F, CArbitratorTestPeer::Session(StreamArb()).minFPS);
    EXPECT_FLOAT_EQ(10.0F, CArbitratorTestPeer::Session(StillArb()).minFPS);
    EXPECT_EQ(calls, m_callback.m_limitationCalls);
}

TEST_F(ArbModuleEventsTest, AutoFlickerStatesResolveToTheirMainsFrequency)
{
    TuneModule();
    m_flickerMode = StatisticsAntibandingAuto_50HZ;
    EXPECT_EQ(AecSuccess, m_pModule->OnFlickerCompModeChange());
    EXPECT_EQ(StatisticsAntibanding50Hz, CArbitratorTestPeer::Session(StreamArb()).flickerMode);
    EXPECT_EQ(StatisticsAntibanding50Hz, CArbitratorTestPeer::Session(StillArb()).flickerMode);

    m_flickerMode = StatisticsAntibandingAuto_60HZ;
    EXPECT_EQ(AecSuccess, m_pModule->OnFlickerCompModeChange());
    EXPECT_EQ(StatisticsAntibanding60Hz, CArbitratorTestPeer::Session(StreamArb()).flickerMode);

    // Plain Auto has no frequency yet and passes through.
    m_flickerMode = StatisticsAntibandingAuto;
    EXPECT_EQ(AecSuccess, m_pModule->OnFlickerCompModeChange());
    EXPECT_EQ(StatisticsAntibandingAuto, CArbitratorTestPeer::Session(StreamArb()).flickerMode);
}

TEST_F(ArbModuleEventsTest, FlickerInStartUpModeTurnsPreviewAntibandingOffAndPublishesATBIndex)
{
    TuneModule();
    m_opMode           = AECAlgoOperationModeFastAEC;
    m_flickerMode      = StatisticsAntibanding60Hz;
    const UINT32 calls = m_callback.m_ATBCalls;
    EXPECT_EQ(AecSuccess, m_pModule->OnFlickerCompModeChange());
    EXPECT_EQ(StatisticsAntibandingOff, CArbitratorTestPeer::Session(StreamArb()).flickerMode);
    EXPECT_EQ(StatisticsAntibanding60Hz, CArbitratorTestPeer::Session(StillArb()).flickerMode);
    EXPECT_EQ(calls + 1U, m_callback.m_ATBCalls);
    EXPECT_FLOAT_EQ(StreamArb().GetMinExpIdxForATB(), m_callback.m_published.streamingMinExpIndexForATB);
}

// ---- Manual settings ----

TEST_F(ArbModuleEventsTest, ManualSettingsAreEnforcedByModeAndTuning)
{
    TuneModule();
    EXPECT_EQ(TRUE, Peer::isEnforcedManualSettings(*m_pModule, Still));
    m_manual.manualMode = AECAlgoModeAuto;
    EXPECT_EQ(TRUE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));

    m_manual.manualMode = AECAlgoModeManualISO;
    EXPECT_EQ(TRUE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));
    m_override.disablePreviewManualISO = TRUE;
    EXPECT_EQ(FALSE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));
    m_override.disablePreviewManualISO = FALSE;
    ArbCore()->enablePreviewManualISO  = FALSE;
    EXPECT_EQ(FALSE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));
    m_manual.manualMode = AECAlgoModeManualGain;
    EXPECT_EQ(FALSE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));
    EXPECT_EQ(TRUE, Peer::isEnforcedManualSettings(*m_pModule, Still));

    m_manual.manualMode = AECAlgoModeManualExpTime;
    EXPECT_EQ(TRUE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));
    ArbCore()->enablePreviewManualExpTime = FALSE;
    EXPECT_EQ(FALSE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));

    m_manual.manualMode = AECAlgoModeManualFull;
    EXPECT_EQ(TRUE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));
    m_override.disablePreviewManualFull = TRUE;
    EXPECT_EQ(FALSE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));

    for (AECAlgoModeType mode : {AECAlgoModePirisMaxExpPriority, AECAlgoModePASMIris, AECAlgoModePASMExpTime,
                                 AECAlgoModePASMExpTimeISO, AECAlgoModePASMExpTimeIris, AECAlgoModePASMFullManual})
    {
        m_manual.manualMode = mode;
        EXPECT_EQ(TRUE, Peer::isEnforcedManualSettings(*m_pModule, Streaming)) << mode;
    }
    m_manual.manualMode = AECAlgoModeManualAperture;
    EXPECT_EQ(TRUE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));
    EXPECT_TRUE(ArbLogContains("warning: Unexpected Manual AEC Mode"));

    // The start-up modes converge freely; the other non-preview modes take every manual setting.
    m_manual.manualMode = AECAlgoModeManualFull;
    m_opMode            = AECAlgoOperationModeAggressiveAEC;
    EXPECT_EQ(FALSE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));
    m_opMode = AECAlgoOperationModeFlashMeasurement;
    EXPECT_EQ(TRUE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));
}

TEST_F(ArbModuleEventsTest, ManualSettingsBeforeTuningAreEnforcedWithLog)
{
    EXPECT_EQ(TRUE, Peer::isEnforcedManualSettings(*m_pModule, Streaming));
    EXPECT_TRUE(ArbLogContains("Tuning Not Ready"));
}

TEST_F(ArbModuleEventsTest, ManualISOInPreviewNotEnabledChangesOnlyTheStillArbitrator)
{
    TuneModule();
    ArbCore()->enablePreviewManualISO = FALSE;
    m_manual.manualMode               = AECAlgoModeManualISO;
    m_manual.ISOValue                 = 800;
    const UINT32 calls                = m_callback.m_limitationCalls;

    EXPECT_EQ(AecSuccess, m_pModule->OnManualSettingChange());
    EXPECT_TRUE(ArbLogContains("because of tuning manual mode 1 is not enforced in preview"));
    EXPECT_EQ(AECAlgoModeAuto, CArbitratorTestPeer::Session(StreamArb()).manualSettings.manualMode);
    EXPECT_EQ(AECAlgoModeManualISO, CArbitratorTestPeer::Session(StillArb()).manualSettings.manualMode);
    EXPECT_FLOAT_EQ(8.0F, CArbitratorTestPeer::Session(StillArb()).manualSettings.manualGain);
    EXPECT_EQ(calls, m_callback.m_limitationCalls);
}

TEST_F(ArbModuleEventsTest, ManualGainGoesToPreviewAsGivenAndToStillFromISO)
{
    TuneModule();
    m_manual.manualMode     = AECAlgoModeManualGain;
    m_manual.gain           = 3.5F;
    m_manual.ISOValue       = 200;
    m_manual.exposureTime   = 5000000U;
    m_manual.prioMaxExpTime = 40000000U;
    m_manual.fnumber        = 2.8F;

    EXPECT_EQ(AecSuccess, m_pModule->OnManualSettingChange());
    const ArbManualSetting& rStream = CArbitratorTestPeer::Session(StreamArb()).manualSettings;
    const ArbManualSetting& rStill  = CArbitratorTestPeer::Session(StillArb()).manualSettings;
    EXPECT_EQ(AECAlgoModeManualGain, rStream.manualMode);
    EXPECT_FLOAT_EQ(3.5F, rStream.manualGain);
    EXPECT_EQ(5000000U, rStream.manualExpTime);
    EXPECT_EQ(40000000U, rStream.manualMaxExposureTime);
    EXPECT_FLOAT_EQ(2.8F, rStream.manualFnumber);
    EXPECT_FLOAT_EQ(2.0F, rStill.manualGain);
    EXPECT_FLOAT_EQ(3.5F, m_callback.m_published.exposureLimitation.gain.min);
    EXPECT_FLOAT_EQ(3.5F, m_callback.m_published.exposureLimitation.gain.max);
}

TEST_F(ArbModuleEventsTest, ManualISOConvertsWithTheTableOfEachArbitrator)
{
    FlashTuning()->expTableIDPreFlash = 1;
    TuneModule();
    m_opMode = AECAlgoOperationModePreflash;
    ASSERT_EQ(AecSuccess, m_pModule->OnOperationModeChange());
    m_manual.manualMode = AECAlgoModeManualISO;
    m_manual.ISOValue   = 400;
    EXPECT_EQ(AecSuccess, m_pModule->OnManualSettingChange());
    // The preflash table has twice the scale of table 0, the snapshot table is table 0.
    EXPECT_FLOAT_EQ(8.0F, CArbitratorTestPeer::Session(StreamArb()).manualSettings.manualGain);
    EXPECT_FLOAT_EQ(4.0F, CArbitratorTestPeer::Session(StillArb()).manualSettings.manualGain);
}

TEST_F(ArbModuleEventsTest, MissingManualSettingFailsWithLog)
{
    TuneModule();
    ON_CALL(m_context, getManualSetting()).WillByDefault(Return(nullptr));
    EXPECT_EQ(AecError, m_pModule->OnManualSettingChange());
    EXPECT_TRUE(ArbLogContains("NULL setting!"));
}

// ---- Sensor, zoom, iris, debug data ----

TEST_F(ArbModuleEventsTest, SensorInfoTakesTheStreamingRangesForBothArbitrators)
{
    m_sensorInfo.minimumStillGain    = 2.0F;
    m_sensorInfo.maximumStillGain    = 16.0F;
    m_sensorInfo.minimumStillExpTime = 20000U;
    m_sensorInfo.maximumStillExpTime = 2000000000U;
    m_sensorInfo.minSEFExpTime       = 11000U;
    m_sensorInfo.maxLEFExpTime       = 44000000U;
    ASSERT_EQ(AecSuccess, m_pModule->OnTuningHeaderChange());
    const UINT32 calls = m_callback.m_limitationCalls;
    EXPECT_EQ(AecSuccess, m_pModule->OnSensorInfoChange());

    const ArbSensorLimits& rLimits = Peer::SensorLimitStreaming(*m_pModule);
    EXPECT_FLOAT_EQ(1.0F, rLimits.gain.min);
    EXPECT_FLOAT_EQ(64.0F, rLimits.gain.max);
    EXPECT_EQ(10000U, rLimits.expTime.min);
    EXPECT_EQ(1000000000U, rLimits.expTime.max);
    EXPECT_EQ(11000U, rLimits.SEFexpTime.min);
    EXPECT_EQ(44000000U, rLimits.LEFexpTime.max);
    EXPECT_EQ(&rLimits, CArbitratorTestPeer::SensorLimit(StreamArb()));
    EXPECT_EQ(&rLimits, CArbitratorTestPeer::SensorLimit(StillArb()));
    EXPECT_EQ(calls + 1U, m_callback.m_limitationCalls);
    EXPECT_EQ(StreamArb().GetLimitation().expTime.max, m_callback.m_published.exposureLimitation.expTime.max);
}

TEST_F(ArbModuleEventsTest, ZoomChangeMovesBothArbitratorsAndPublishes)
{
    TuneModule();
    Peer::ZoomStep(*m_pModule) = 120;
    const UINT32 calls         = m_callback.m_limitationCalls;
    EXPECT_EQ(AecSuccess, m_pModule->OnZoomInfoChange());
    EXPECT_EQ(120U, CArbitratorTestPeer::ZoomStep(StreamArb()));
    EXPECT_EQ(120U, CArbitratorTestPeer::ZoomStep(StillArb()));
    EXPECT_EQ(calls + 1U, m_callback.m_limitationCalls);
}

TEST_F(ArbModuleEventsTest, IrisTableGoesToThePreviewArbitratorOnly)
{
    TuneModule();
    TestIrisTable    iris({0, 100}, {{1.8F, 2.8F}, {2.4F, 3.5F}});
    LDMIrisTableData data = iris.Data();
    EXPECT_EQ(AecSuccess, m_pModule->OnLDMIrisTable(data));
    EXPECT_EQ(data.irisFnTable, CArbitratorTestPeer::IrisTable(StreamArb()).irisFnTable);
    EXPECT_EQ(nullptr, CArbitratorTestPeer::IrisTable(StillArb()).irisFnTable);
}

TEST_F(ArbModuleEventsTest, FixedFNumberGoesToThePreviewArbitrator)
{
    TuneModule();
    Peer::FixFn(*m_pModule) = 2.8F;
    const UINT32 calls      = m_callback.m_limitationCalls;
    EXPECT_EQ(AecSuccess, m_pModule->OnFnManualChange());
    EXPECT_FLOAT_EQ(2.8F, CArbitratorTestPeer::FnLimits(StreamArb()));
    EXPECT_FLOAT_EQ(0.0F, CArbitratorTestPeer::FnLimits(StillArb()));
    EXPECT_EQ(calls + 1U, m_callback.m_limitationCalls);
}

TEST_F(ArbModuleEventsTest, DebugDataUpdateCopiesTheArbitrationRecord)
{
    TuneModule();
    AECDebugDataArbitrationType& rRecord = Peer::DebugData(*m_pModule);
    rRecord.sceneBV                      = 4.5F;
    rRecord.exposureTableID              = 1;
    rRecord.exposureTime[2]              = 33000000U;
    EXPECT_EQ(AecSuccess, m_pModule->OnDebugDataUpdate());
    const AECDebugDataArbitrationType& rOut = m_pDebugData->arbitrationInfo;
    EXPECT_FLOAT_EQ(4.5F, +rOut.sceneBV);
    EXPECT_EQ(1U, +rOut.exposureTableID);
    EXPECT_EQ(33000000U, +rOut.exposureTime[2]);
}

} // namespace
