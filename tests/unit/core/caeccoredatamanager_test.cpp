// Tests of the core's state store: initial state, events, frame history, mode changes and frame counters.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "unit/core/coretestsupport.h"

namespace
{

// A component that records the events it receives.
class RecordingComponent : public IAECComponent
{
public:
    RecordingComponent(std::vector<std::string>* pLog, const char* pName, AecResult result)
        : m_pLog(pLog)
        , m_pName(pName)
        , m_result(result)
    {
    }

    AecResult OnOperationModeChange() override
    {
        m_pLog->emplace_back(m_pName);
        return m_result;
    }

private:
    std::vector<std::string>* m_pLog;
    const char*               m_pName;
    AecResult                 m_result;
};

class DataManagerTest : public ::testing::Test
{
protected:
    CAECCoreDataManager& Store() { return *m_pStore; }

    // Enters mode with its start configuration recorded, as the start query leaves it.
    void EnterModeWithStart(AECAlgoOperationModeType mode)
    {
        ASSERT_EQ(AecSuccess, Store().setOperationMode(mode));
        const FLOAT indices[3] = {1.0F, 2.0F, 3.0F};
        Store().saveStartExposure(indices, 100.0F);
    }

    // What the core does for one processed frame.
    AecResult ProcessFrame(UINT64 frameID)
    {
        if (AecSuccess != Store().saveCurrentFrameID(frameID))
        {
            return AecError;
        }
        AECFrameHistory history;
        history.frameID    = frameID;
        history.luxIndex   = static_cast<FLOAT>(frameID);
        return Store().saveFrameHistoryInfo(history);
    }

    CoreLogCapture                       m_logs;
    std::unique_ptr<CAECCoreDataManager> m_pStore{new CAECCoreDataManager()};
};

TEST_F(DataManagerTest, StartsWithTheDocumentedInitialState)
{
    EXPECT_EQ(AECAlgoOperationModeInit, Store().getOperationMode());
    EXPECT_EQ(AECAlgoMeteringModeCenterWeighted, Store().getMeteringMode());
    EXPECT_EQ(-12, Store().getEVInfo()->capabilities.minEV);
    EXPECT_EQ(12, Store().getEVInfo()->capabilities.maxEV);
    EXPECT_EQ(6, Store().getEVInfo()->capabilities.stepsPerEV);
    EXPECT_EQ(StatisticsAntibanding60Hz, Store().getFlickerCompMode());
    EXPECT_EQ(AECAlgoModeAuto, Store().getManualSetting()->manualMode);
    EXPECT_FLOAT_EQ(1.0F, Store().getMinFPS());
    EXPECT_FLOAT_EQ(30.0F, Store().getMaxFPS());
    EXPECT_EQ(AECAlgoLEDModeOff, Store().getLEDMode());
    EXPECT_EQ(AECAlgoFlashMeasKindOff, Store().getFlashMeasKind());
    EXPECT_EQ(0u, Store().getFlashMeasIndex());
    EXPECT_FLOAT_EQ(1.0F, Store().getAWBState()->redGain);
    EXPECT_FLOAT_EQ(1.0F, Store().getAWBState()->greenGain);
    EXPECT_FLOAT_EQ(1.0F, Store().getAWBState()->blueGain);
    EXPECT_FALSE(Store().getAWBState()->isAuto);
    EXPECT_FALSE(Store().getOverrideSetting()->autoSwitchHDR);
    EXPECT_FALSE(Store().getLEDCalibrationEnable());
    EXPECT_TRUE(Store().getDebugDataEnable());
    EXPECT_EQ(900, Store().getFlashMaxCurrent());
    EXPECT_FLOAT_EQ(1.0F, Store().getExposureLimitation()->streamingExpTblSens);
    EXPECT_FLOAT_EQ(30.0F, Store().getCurrentFPS());
    EXPECT_EQ(1, Store().getGyroInfo()->sampleCount);
    EXPECT_EQ(0u, Store().getFlashMeasSwitchCounter());
    EXPECT_EQ(0u, Store().getConvFrameSkipCounter());
    EXPECT_EQ(0u, Store().getPostRawCounter());
    EXPECT_EQ(AECAlgoMeteringIndependent, Store().getMeteringType());
    EXPECT_EQ(AECAlgoExposureIndependent, Store().getExposureType());
    EXPECT_EQ(nullptr, Store().getPeerInfo());
    EXPECT_EQ(StatsAlgoRoleDefault, Store().getCameraInfo()->algoRole);
    EXPECT_EQ(0u, Store().getCameraInfo()->cameraId);
    EXPECT_EQ(0u, Store().getTouchROI()->ROICount);
    EXPECT_FALSE(Store().getFaceROI()->isActiveFace);
    EXPECT_FALSE(Store().getAreFlashLowStatsSaved());
    EXPECT_FLOAT_EQ(2.0F, Store().getSensorInfo()->fNumber);
    EXPECT_FLOAT_EQ(1.0F, Store().getSensorInfo()->minimumStreamGain);
    EXPECT_FLOAT_EQ(256.0F, Store().getSensorInfo()->maximumStreamGain);
    EXPECT_FLOAT_EQ(1.0F, Store().getSensorInfo()->minimumStillGain);
    EXPECT_FLOAT_EQ(256.0F, Store().getSensorInfo()->maximumStillGain);
    EXPECT_EQ(1u, Store().getSensorInfo()->minimumStreamExpTime);
    EXPECT_EQ(0xFFFFFFFFu, Store().getSensorInfo()->maximumStreamExpTime);
    EXPECT_EQ(1u, Store().getSensorInfo()->minimumStillExpTime);
    EXPECT_EQ(0xFFFFFFFFu, Store().getSensorInfo()->maximumStillExpTime);
    EXPECT_FALSE(Store().isStartConfigSaved());
    EXPECT_FALSE(Store().getPrevModeHistory(nullptr));
    EXPECT_EQ(0, Store().getPipelineDelay());
    EXPECT_FALSE(Store().getIsAECLocked());
    EXPECT_EQ(AECAlgoDualcamOTPInvalid, Store().getDCCalibrationInfo().OTPStatus);
    EXPECT_EQ(HDRDisabled, Store().getMultiExposureSensorMode());
    EXPECT_FALSE(Store().getHDR3Enable());
    EXPECT_EQ(1u, Store().getDCGMode()->numOfExposures);
    EXPECT_FLOAT_EQ(0.0F, Store().getDynamicConvergenceSpeed());
    EXPECT_EQ(100, Store().getPostRawGain());
    EXPECT_EQ(AECIRLedMAX, Store().getIRState());
    EXPECT_FLOAT_EQ(1.0F, Store().getManualIRIntensity());
    EXPECT_EQ(1u, Store().getIRCutSystemLatency());
    EXPECT_EQ(1u, Store().getIRLedSystemLatency());
    EXPECT_FLOAT_EQ(1.0F, Store().getPWMFrequency());
    EXPECT_FALSE(Store().getDRCEnable());
    EXPECT_EQ(nullptr, Store().getMtrTuning());
    EXPECT_EQ(nullptr, Store().getConvTuning());
    EXPECT_EQ(nullptr, Store().getCustomExposureTableInfo());
    EXPECT_EQ(nullptr, Store().getExposureTableFromTableID(0));
}

TEST_F(DataManagerTest, StatisticsConfigurationWithoutTuning)
{
    const StatsBayerGridBayerExposureConfig* pGrid = Store().getBGBEConfig();
    for (UINT32 channel = 0; channel < 4; channel++)
    {
        EXPECT_EQ(15296u, pGrid->channelGainThreshold[channel]);
        EXPECT_EQ(0u, pGrid->minChannelLumaThreshold[channel]);
    }
    EXPECT_EQ(64u, pGrid->horizontalRegionCount);
    EXPECT_EQ(48u, pGrid->verticalRegionCount);
    EXPECT_EQ(14, pGrid->outputBitDepth);
    EXPECT_EQ(StatsROISelectionCroppedFOV, pGrid->ROISelection);
    EXPECT_FALSE(pGrid->enableYStatsComputation);
    EXPECT_FALSE(pGrid->enableSaturationStats);
    EXPECT_EQ(0, pGrid->HWStatsSkippingFactor);

    const StatsBayerHistogramConfig* pHist = Store().getBayerHistConfig();
    EXPECT_EQ(ColorChannelY, pHist->channel);
    EXPECT_TRUE(pHist->uniform);
    EXPECT_EQ(StatsROISelectionCroppedFOV, pHist->ROISelection);
}

TEST_F(DataManagerTest, EventsReachEveryComponentInOrderAndAnyFailureIsReported)
{
    std::vector<std::string> log;
    RecordingComponent       first(&log, "first", AecSuccess);
    RecordingComponent       failing(&log, "failing", AecError);
    RecordingComponent       last(&log, "last", AecSuccess);
    Store().addComponent(&first);
    Store().addComponent(&failing);
    Store().addComponent(&last);

    EXPECT_EQ(AecError, Store().notifyComponents(&IAECComponent::OnOperationModeChange));
    EXPECT_EQ(std::vector<std::string>({"first", "failing", "last"}), log);
    EXPECT_EQ(AecSuccess, Store().notifyComponents(&IAECComponent::OnFPSChange));
}

// ---- Frame history ----

TEST_F(DataManagerTest, HistoryWithoutAStartConfigurationIsNull)
{
    EXPECT_EQ(nullptr, Store().getFrameHistory(0));
    EXPECT_EQ(1u, m_logs.Count("No start configuration is recorded in the history! "));
}

TEST_F(DataManagerTest, HistoryBeforeTheFirstFrameIsTheStartConfiguration)
{
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    const AECFrameHistory* pEntry = Store().getFrameHistory(3);
    ASSERT_NE(nullptr, pEntry);
    EXPECT_TRUE(pEntry->isStartConfig);
    EXPECT_FLOAT_EQ(100.0F, pEntry->luxIndex);
}

TEST_F(DataManagerTest, HistoryOfTheFirstProcessedFrameIsTheStartConfiguration)
{
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    ASSERT_EQ(AecSuccess, Store().saveCurrentFrameID(1));
    const AECFrameHistory* pEntry = Store().getFrameHistory(0);
    ASSERT_NE(nullptr, pEntry);
    EXPECT_TRUE(pEntry->isStartConfig);
}

TEST_F(DataManagerTest, HistoryKeepsTenFramesNewestFirst)
{
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    for (UINT64 frameID = 1; frameID <= 11; frameID++)
    {
        ASSERT_EQ(AecSuccess, ProcessFrame(frameID));
    }
    EXPECT_EQ(10u, CAECCoreTestPeer::HistorySize(Store()));
    for (UINT8 offset = 0; offset <= 9; offset++)
    {
        const AECFrameHistory* pEntry = Store().getFrameHistory(offset);
        ASSERT_NE(nullptr, pEntry);
        EXPECT_EQ(11u - offset, pEntry->frameID);
    }
    // Frame 1, ten IDs back, was evicted by the eleventh entry: the walk runs past the end.
    const AECFrameHistory* pOldest = Store().getFrameHistory(10);
    ASSERT_NE(nullptr, pOldest);
    EXPECT_TRUE(pOldest->isStartConfig);

    EXPECT_EQ(nullptr, Store().getFrameHistory(11));
    EXPECT_EQ(1u, m_logs.Count("Input offset (11) is bigger than the frame history buffer size (10)!"));
}

TEST_F(DataManagerTest, HistoryOffsetsCountFrameIDsNotEntries)
{
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    for (UINT64 frameID : {10u, 20u, 30u})
    {
        ASSERT_EQ(AecSuccess, ProcessFrame(frameID));
    }
    EXPECT_EQ(30u, Store().getFrameHistory(0)->frameID);
    EXPECT_EQ(20u, Store().getFrameHistory(1)->frameID);
    EXPECT_EQ(20u, Store().getFrameHistory(10)->frameID);
}

TEST_F(DataManagerTest, GetFrameHistoryCanReachBackTenFrameIDs)
{
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    for (UINT64 frameID = 1; frameID <= 10; frameID++)
    {
        ASSERT_EQ(AecSuccess, ProcessFrame(frameID));
    }
    ASSERT_EQ(AecSuccess, Store().saveCurrentFrameID(11));
    const AECFrameHistory* pEntry = Store().getFrameHistory(10);
    ASSERT_NE(nullptr, pEntry);
    EXPECT_EQ(1u, pEntry->frameID);
}

TEST_F(DataManagerTest, HistoryRefusesAFrameIDThatDoesNotRise)
{
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    ASSERT_EQ(AecSuccess, ProcessFrame(5));
    AECFrameHistory history;
    history.frameID = 5;
    EXPECT_EQ(AecError, Store().saveFrameHistoryInfo(history));
    EXPECT_EQ(1u, CAECCoreTestPeer::HistorySize(Store()));
}

TEST_F(DataManagerTest, SteadyStateReusesTheHistoryNodes)
{
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    for (UINT64 frameID = 1; frameID <= 10; frameID++)
    {
        ASSERT_EQ(AecSuccess, ProcessFrame(frameID));
    }
    std::set<const AECFrameHistory*> nodes;
    for (UINT8 offset = 0; offset < 10; offset++)
    {
        nodes.insert(Store().getFrameHistory(offset));
    }
    for (UINT64 frameID = 11; frameID <= 25; frameID++)
    {
        ASSERT_EQ(AecSuccess, ProcessFrame(frameID));
        EXPECT_EQ(1u, nodes.count(Store().getFrameHistory(0))) << "frame " << frameID;
    }
    EXPECT_FLOAT_EQ(25.0F, Store().getFrameHistory(0)->luxIndex);
}

TEST_F(DataManagerTest, FrameIDMustRiseUnlessAutoSwitchHDR)
{
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    ASSERT_EQ(AecSuccess, Store().saveCurrentFrameID(8));
    EXPECT_EQ(AecError, Store().saveCurrentFrameID(8));
    EXPECT_EQ(1u, m_logs.Count("Current stats frame ID (8) is invalid, not larger than previous (8)!"));

    AECAlgoOverrideSettingParam overrideSetting = {};
    overrideSetting.autoSwitchHDR               = TRUE;
    Store().setOverrideSetting(overrideSetting);
    EXPECT_EQ(AecSuccess, Store().saveCurrentFrameID(8));
    EXPECT_EQ(AecSuccess, Store().saveCurrentFrameID(2));
}

TEST_F(DataManagerTest, SnapshotQueryMarksTheNewestEntry)
{
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    Store().setSnapshotQuery();
    EXPECT_FALSE(Store().getFrameHistory(0)->isSnapshotQuery) << "no entry yet: nothing is marked";
    ASSERT_EQ(AecSuccess, ProcessFrame(1));
    ASSERT_EQ(AecSuccess, ProcessFrame(2));
    Store().setSnapshotQuery();
    EXPECT_TRUE(Store().getFrameHistory(0)->isSnapshotQuery);
    EXPECT_FALSE(Store().getFrameHistory(1)->isSnapshotQuery);
}

TEST_F(DataManagerTest, StartConfigurationTakesTheEVOutsidePreflash)
{
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeStreaming));
    Store().setSensitivity(3.0F);
    const FLOAT indices[3] = {4.0F, 5.0F, 6.0F};
    Store().saveStartExposure(indices, -1.0F);
    const AECFrameHistory* pStart = Store().getFrameHistory(0);
    ASSERT_NE(nullptr, pStart);
    EXPECT_FLOAT_EQ(6.0F, pStart->expIndicesTargets[2]);
    EXPECT_FLOAT_EQ(3.0F, pStart->tableSensitivity);
    EXPECT_FLOAT_EQ(Store().getEVInfo()->EV, pStart->previewEV);
    EXPECT_FALSE(pStart->isSnapshotQuery);
    EXPECT_EQ(1u, m_logs.CountContaining("expIdx 4.0 5.0 6.0 targIdx 4.0 5.0 6.0 cur EV 0.0 EV offset 0.0 op 1"));
}

// ---- Operation modes ----

TEST_F(DataManagerTest, ModeTransitionsFollowTheirPreconditions)
{
    EXPECT_EQ(AecError, Store().setOperationMode(AECAlgoOperationModePreflash));
    EXPECT_EQ(1u, m_logs.Count("Error, can only transition into Preflash from Preview/Preflash!\n"));
    EXPECT_EQ(AecError, Store().setOperationMode(AECAlgoOperationModeFlashMeasurement));
    EXPECT_EQ(1u, m_logs.Count("Cannot enter flash measurement operation mode from this op mode: 0\n"));
    EXPECT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeFastAEC));
    EXPECT_EQ(AecError, Store().setOperationMode(AECAlgoOperationModeAggressiveAEC));
    EXPECT_EQ(1u, m_logs.Count("Error: cannot set aggressive AEC without going to Init mode first!\n"));
    EXPECT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeStreaming));
    EXPECT_EQ(1u, m_logs.Count("entering streaming op mode"));
    EXPECT_EQ(AecError, Store().setOperationMode(AECAlgoOperationModeFastAEC));
    EXPECT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeStreaming));
    EXPECT_EQ(1u, m_logs.Count("Streaming to Streaming\n"));
    EXPECT_EQ(1u, m_logs.Count("warning: setting same opmode to AEC (1)!"));
    EXPECT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModePreflash));
    EXPECT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModePreflash));
    EXPECT_EQ(AecError, Store().setOperationMode(static_cast<AECAlgoOperationModeType>(42)));
    EXPECT_EQ(1u, m_logs.Count("Error: Invalid Mode 42 \n"));
    EXPECT_EQ(AECAlgoOperationModePreflash, Store().getOperationMode());
    EXPECT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeInit));
    EXPECT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeAggressiveAEC));
}

TEST_F(DataManagerTest, LeavingAStreamingModeKeepsItsLastFrameForTheNextMode)
{
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    ASSERT_EQ(AecSuccess, ProcessFrame(1));
    ASSERT_EQ(AecSuccess, ProcessFrame(2));
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModePreflash));

    AECModeHistory previous;
    ASSERT_TRUE(Store().getPrevModeHistory(&previous));
    EXPECT_EQ(2u, previous.lastFrame.frameID);
    EXPECT_EQ(2u, previous.lastFrameOrig.frameID);
    EXPECT_FLOAT_EQ(100.0F, previous.startConfig.luxIndex);
    EXPECT_FALSE(Store().isStartConfigSaved());
    EXPECT_EQ(0u, CAECCoreTestPeer::HistorySize(Store()));

    // Leaving preflash does not replace the streaming mode's record.
    const FLOAT indices[3] = {7.0F, 8.0F, 9.0F};
    Store().saveStartExposure(indices, 50.0F);
    ASSERT_EQ(AecSuccess, ProcessFrame(3));
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeStreaming));
    ASSERT_TRUE(Store().getPrevModeHistory(&previous));
    EXPECT_EQ(2u, previous.lastFrame.frameID);

    // A mode left without frames keeps the record too, and says so.
    m_logs.Clear();
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeStreaming));
    EXPECT_EQ(1u, m_logs.Count("No frames in history!"));
    ASSERT_TRUE(Store().getPrevModeHistory(&previous));

    // Init forgets it.
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeInit));
    EXPECT_FALSE(Store().getPrevModeHistory(&previous));
}

TEST_F(DataManagerTest, EnteringFlashMeasurementArmsItsFrameCounter)
{
    Store().setPipelineDelay(2);
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeStreaming));
    ASSERT_EQ(AecSuccess, Store().setFlashMeasurement(AECAlgoFlashMeasKindCalib));
    Store().SetFlashMeasurementIndex(1);
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeFlashMeasurement));
    EXPECT_EQ(5u, Store().getFlashMeasSwitchCounter()) << "latency + 3 for a measurement index";

    // An armed counter is not re-armed.
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeFlashMeasurement));
    EXPECT_EQ(5u, Store().getFlashMeasSwitchCounter());

    for (UINT32 frame = 0; frame < 5; frame++)
    {
        Store().updateFrameCounters();
    }
    ASSERT_EQ(0u, Store().getFlashMeasSwitchCounter());
    ASSERT_EQ(AecSuccess, Store().setFlashMeasurement(AECAlgoFlashMeasKindTuning));
    Store().SetCurentFPS(15.0F);
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeFlashMeasurement));
    EXPECT_EQ(62u, Store().getFlashMeasSwitchCounter()) << "FPS x 4 + latency";
}

// ---- Counters and plain setters ----

TEST_F(DataManagerTest, FrameCountersStopAtZero)
{
    Store().setPipelineDelay(1);
    Store().setPostRawGain(120);
    Store().SetConvFrameSkipCounter(2);
    Store().updateFrameCounters();
    EXPECT_EQ(0u, Store().getPostRawCounter());
    EXPECT_EQ(1u, Store().getConvFrameSkipCounter());
    Store().updateFrameCounters();
    Store().updateFrameCounters();
    EXPECT_EQ(0u, Store().getPostRawCounter());
    EXPECT_EQ(0u, Store().getConvFrameSkipCounter());
    EXPECT_EQ(0u, Store().getFlashMeasSwitchCounter());
}

TEST_F(DataManagerTest, PostRawGainArmsItsCounterOnlyOnAChange)
{
    Store().setPipelineDelay(3);
    Store().setPostRawGain(100);
    EXPECT_EQ(0u, Store().getPostRawCounter());
    Store().setPostRawGain(200);
    EXPECT_EQ(3u, Store().getPostRawCounter());
    EXPECT_EQ(200, Store().getPostRawGain());
}

TEST_F(DataManagerTest, DebugDataWritesNothingYet)
{
    SIZE_T           written = 77;
    StatsDataPointer buffer  = {};
    EXPECT_EQ(0, Store().PrepareDebugData(&buffer, &written));
    EXPECT_EQ(0u, written);
}

TEST_F(DataManagerTest, PeerCalibrationIsTakenInverseWhenOwnIsMissing)
{
    AECMultiCamInfo peer              = {};
    peer.OTPInfo.OTPStatus            = AECAlgoDualcamOTPSet;
    peer.OTPInfo.OTPExpCompMultiplier = 4.0F;
    Store().setPeerInfo(&peer);
    EXPECT_EQ(&peer, Store().getPeerInfo());
    EXPECT_EQ(AECAlgoDualcamOTPSetUsingPeer, Store().getDCCalibrationInfo().OTPStatus);
    EXPECT_FLOAT_EQ(0.25F, Store().getDCCalibrationInfo().OTPExpCompMultiplier);
}

TEST_F(DataManagerTest, PeerSelectionNeedsTheListAndSync)
{
    const AECMultiCamInfo* pPeer = nullptr;
    EXPECT_EQ(AecError, Store().MapMultiCamPeerInfo(nullptr, &pPeer));
    EXPECT_EQ(1u, m_logs.Count("CID:0, Multi-Camera Info is not provided!"));
    StatsPeerInfoCombo combo = {};
    EXPECT_EQ(AecError, Store().MapMultiCamPeerInfo(&combo, &pPeer));
    EXPECT_EQ(1u, m_logs.Count("CID:0, AEC Sync is not enabled"));
    EXPECT_EQ(nullptr, pPeer);
}

TEST_F(DataManagerTest, CallbacksFillTheArbitrationContext)
{
    ExposureLimitationType limit = {};
    limit.expIndex.max           = 400.0F;
    Store().SetStreamingLimitation(&limit);
    FLOAT stream[6] = {1, 2, 3, 4, 5, 6};
    FLOAT still[6]  = {7, 8, 9, 10, 11, 12};
    Store().SetExpTableIdxOffsets(stream, still);
    Store().SetStreamingMinExpIndexForATB(12.5F);
    Store().SetEVCapability(-6, 6, 3);

    const ModArbitrationContext* pContext = Store().getExposureLimitation();
    EXPECT_FLOAT_EQ(400.0F, pContext->exposureLimitation.expIndex.max);
    EXPECT_FLOAT_EQ(6.0F, pContext->streamModeExpIdxOffsets[5]);
    EXPECT_FLOAT_EQ(10.0F, pContext->stillModeExpIdxOffsets[3]);
    EXPECT_FLOAT_EQ(0.0F, pContext->stillModeExpIdxOffsets[4]) << "one still offset per snapshot kind";
    EXPECT_FLOAT_EQ(12.5F, pContext->streamingMinExpIndexForATB);
    EXPECT_EQ(3, Store().getEVInfo()->capabilities.stepsPerEV);
}

} // namespace
