// Tests of the core's state store: initial state, events, frame history, modes, faces, tuning-driven state.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <utility>
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

// Stands in for arbitration on a custom table change: adopts the table by reporting its sensitivity.
class TableAdopter : public IAECComponent
{
public:
    explicit TableAdopter(CAECCoreDataManager* pStore)
        : m_pStore(pStore)
    {
    }

    AecResult OnCustomExposureTableChange() override
    {
        events++;
        m_pStore->setSensitivity(sensitivity);
        return AecSuccess;
    }

    UINT32 events      = 0;
    FLOAT  sensitivity = 1.0F;

private:
    CAECCoreDataManager* m_pStore;
};

// Index units of a linear ratio, as the store computes them.
FLOAT IndexOfRatio(DOUBLE ratio)
{
    return static_cast<FLOAT>(std::log10(ratio) * 77.89852905273438);
}

class DataManagerTest : public ::testing::Test
{
protected:
    typedef aecStatsConfig::BHistStatsConfigType HistogramTuning;

    CAECCoreDataManager& Store() { return *m_pStore; }

    // Hands the test store's modules over as a tuning change does.
    void ApplyTuning()
    {
        const StatsTuningData tuning = m_tuningStore.TuningData();
        ASSERT_EQ(AecSuccess, Store().setSorenta(&tuning, nullptr));
    }

    void UseMeteringTuning()
    {
        m_tuningStore.modules.modMtr   = &m_meteringCore;
        m_tuningStore.modules.modFace  = &m_faceModule;
        m_tuningStore.modules.modFlash = &m_flashModule;
        ApplyTuning();
    }

    // Statistics tuning of a 12-bit grid of 32 x 24 regions with one histogram.
    void UseStatsTuning()
    {
        aecStatsConfig::AECStatsConfig::gridStatsConfigStruct& rGrid = m_statsConfig.gridStatsConfig;
        const FLOAT maxThresholds[4]      = {0.9F, 0.8F, 0.7F, 0.6F};
        const FLOAT minThresholds[4]      = {0.1F, 0.0F, 0.25F, 0.0F};
        for (UINT32 channel = 0; channel < 4; channel++)
        {
            rGrid.maxStatsChannelThreshold[channel] = maxThresholds[channel];
            rGrid.minStatsChannelThreshold[channel] = minThresholds[channel];
        }
        rGrid.bitDepth                   = 12;
        rGrid.YComputationColorWeight[0] = 0.25F;
        rGrid.YComputationColorWeight[1] = 0.5F;
        rGrid.YComputationColorWeight[2] = 0.25F;
        rGrid.numOfRegionsHorizontal     = 32;
        rGrid.numOfRegionsVertical       = 24;
        rGrid.ROIConfigControl           = 1;
        rGrid.enableYComputedStats       = TRUE;
        rGrid.enableSaturatedStats       = TRUE;
        rGrid.HWStatsSkipFactor          = 2;
        m_histogram.colorChannel         = 0;
        m_histogram.binUniformity        = 1;
        m_histogram.ROIConfigControl     = 0;
        m_statsConfig.histStatsConfig.histogramsCount = 1;
        m_statsConfig.histStatsConfig.histogramsID    = 1;
        m_statsConfig.histStatsConfig.histograms      = &m_histogram;
        m_tuningStore.pStatsConfig                    = &m_statsConfig;
        ApplyTuning();
    }

    void UseMtrAndExpModeTuning(INT32 master, INT32 slave)
    {
        m_mtrAndExpMode.master                = static_cast<aecglobalelements::AECMtrAndExpoConfigType>(master);
        m_mtrAndExpMode.slave                 = static_cast<aecglobalelements::AECMtrAndExpoConfigType>(slave);
        m_tuningStore.modules.modMultiCamSync = &m_multiCam;
        ApplyTuning();
    }

    void SetRole(UINT32 cameraId, StatsAlgoRole role)
    {
        StatsCameraInfo info = {};
        info.cameraId        = cameraId;
        info.algoRole        = role;
        ASSERT_EQ(AecSuccess, Store().setCameraInfo(info));
    }

    // Sends count faces of 400 x 200 pixels in a 4000 x 3000 image, the first one at (1500, 1000).
    void ShowFaces(UINT32 count)
    {
        AECAlgoSensorInfo sensor = *Store().getSensorInfo();
        sensor.sensorResWidth    = 4000;
        sensor.sensorResHeight   = 3000;
        ASSERT_EQ(AecSuccess, Store().SetSetSensorInfo(&sensor));
        UnstabilizedROIInformation faces = {};
        faces.roiCount                   = count;
        for (UINT32 i = 0; i < count; i++)
        {
            faces.roi[i].roiID       = i + 1;
            faces.roi[i].rect.left   = 1500 + 100 * i;
            faces.roi[i].rect.top    = 1000;
            faces.roi[i].rect.width  = 400;
            faces.roi[i].rect.height = 200;
            faces.roi[i].weight      = 10;
        }
        ASSERT_EQ(AecSuccess, Store().setFaceROI(faces));
    }

    void RunFaceFrames(UINT32 count)
    {
        for (UINT32 frame = 0; frame < count; frame++)
        {
            Store().processROIsPerFrame();
        }
    }

    // A three-knee table whose host indices are nonsense: the store derives its own.
    static AECCustomExposureTable ThreeKneeTable()
    {
        AECCustomExposureTable table                    = {};
        table.isValid                                   = TRUE;
        table.sensitivityCorrectionFactor               = 1.5F;
        table.antiBandingMinimumTimePercentageThreshold = 0.9F;
        table.kneeCount                                 = 3;
        const FLOAT  gains[3]                           = {1.0F, 2.0F, 2.0F};
        const UINT64 times[3]                           = {1000000, 1000000, 4000000};
        const INT32  priorities[3]                      = {0, 7, 1};
        for (UINT32 knee = 0; knee < 3; knee++)
        {
            table.gain[knee]              = gains[knee];
            table.expTime[knee]           = times[knee];
            table.incrementPriority[knee] = priorities[knee];
            table.expIndex[knee]          = 999.0F;
        }
        return table;
    }

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

    // Tuning records the tests fill; the store keeps pointers to them, so they live as long as the fixture.
    aecMetering::AECCoreMeteringType       m_meteringCore    = {};
    aecFace::AECFaceType                   m_faceModule      = {};
    aecFace::FaceMeteringType&             m_face            = m_faceModule.faceMtr;
    aecFlash::AECFlashType                 m_flashModule     = {};
    aecFlash::FlashMeteringType&           m_flash           = m_flashModule.flashMtr;
    aecStatsConfig::AECStatsConfig         m_statsConfig     = {};
    HistogramTuning                        m_histogram       = {};
    aecSync::AECMultiCamType               m_multiCam        = {};
    aecSync::AECMeteringAndExpModeType&    m_mtrAndExpMode   = m_multiCam.mtrAndExpMode;
    aecArbitration::ExposureTableType      m_tables[2]       = {};
    aecArbitration::AECCoreArbitrationType m_arbitrationCore = {};
    CTestTuningStore                       m_tuningStore;
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
    ASSERT_NE(nullptr, Store().getCustomExposureTableInfo());
    EXPECT_FALSE(Store().getCustomExposureTableInfo()->isValid);
    EXPECT_EQ(nullptr, Store().getExposureTableFromTableID(0));
    EXPECT_EQ(nullptr, Store().getExposureTableFromTableID(100));
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
    // The peer's record is read as a consistent copy taken at each call, never handed out live.
    ASSERT_NE(nullptr, Store().getPeerInfo());
    EXPECT_NE(&peer, Store().getPeerInfo());
    EXPECT_FLOAT_EQ(4.0F, Store().getPeerInfo()->OTPInfo.OTPExpCompMultiplier);
    peer.meteringInfo.luxIndex = 123.0F;
    EXPECT_FLOAT_EQ(123.0F, Store().getPeerInfo()->meteringInfo.luxIndex);
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

TEST_F(DataManagerTest, EleventhEntryEvictsTheOldestAlsoWithGapsBetweenFrameIDs)
{
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    for (UINT64 frameID = 2; frameID <= 22; frameID += 2)
    {
        ASSERT_EQ(AecSuccess, ProcessFrame(frameID));
    }
    EXPECT_EQ(10u, CAECCoreTestPeer::HistorySize(Store()));
    // Ten IDs back from 22 is 12; frame 2 was evicted by the eleventh entry.
    EXPECT_EQ(12u, Store().getFrameHistory(10)->frameID);
    EXPECT_EQ(20u, Store().getFrameHistory(1)->frameID);
    EXPECT_EQ(20u, Store().getFrameHistory(2)->frameID);
    EXPECT_EQ(18u, Store().getFrameHistory(3)->frameID);
}

// ---- Tuning sources ----

TEST_F(DataManagerTest, TuningWithoutAStoreRunsOnFakeTuningWithItsExposureTables)
{
    EXPECT_EQ(nullptr, Store().getMtrTuning());
    EXPECT_EQ(nullptr, Store().getExposureTableFromTableID(0));
    StatsTuningData tuning = {};
    EXPECT_TRUE(Store().isTuningModeChange(&tuning)) << "no selectors and no tuning yet";
    ASSERT_EQ(AecSuccess, Store().setSorenta(&tuning, nullptr));
    EXPECT_EQ(1u, m_logs.Count("Tuning Pointer Null"));
    EXPECT_FALSE(Store().isTuningModeChange(&tuning)) << "no selectors once tuning is in force";

    ASSERT_NE(nullptr, Store().getMtrTuning());
    EXPECT_NE(nullptr, Store().getMtrTuning()->pCore);
    ASSERT_NE(nullptr, Store().getConvTuning());
    EXPECT_NE(nullptr, Store().getConvTuning()->pCore);
    ASSERT_NE(nullptr, Store().getIRTuning());
    EXPECT_NE(nullptr, Store().getIRTuning()->pIrLinear);
    ASSERT_NE(nullptr, Store().getExtTuning());
    EXPECT_NE(nullptr, Store().getExtTuning()->pMtrAndExpModeConfig);
    ASSERT_NE(nullptr, Store().getArbTuning());
    const aecArbitration::AECCoreArbitrationType* pArb = Store().getArbTuning()->pCore;
    ASSERT_NE(nullptr, pArb);
    EXPECT_EQ(&pArb->expTables[1], Store().getExposureTableFromTableID(1));
    EXPECT_FLOAT_EQ(2.0F, Store().getExposureTableFromTableID(1)->sensitivityCorrectionFactor);
}

TEST_F(DataManagerTest, RoleSetBeforeTuningIsLostButTakenAfterTheFakeTuning)
{
    SetRole(0, StatsAlgoRoleSlave);
    EXPECT_EQ(StatsAlgoRoleDefault, Store().getCameraInfo()->algoRole);
    StatsTuningData tuning = {};
    ASSERT_EQ(AecSuccess, Store().setSorenta(&tuning, nullptr));
    SetRole(0, StatsAlgoRoleSlave);
    EXPECT_EQ(StatsAlgoRoleSlave, Store().getCameraInfo()->algoRole);
    // The built-in multi-camera tuning lets the slave's exposure follow the master.
    EXPECT_EQ(AECAlgoExposureFollow, Store().getExposureType());
}

// ---- ROI priority ----

class ROIPriorityTuningTest : public DataManagerTest
{
protected:
    // ROI priority tuning that ranks regions by twice their size.
    void UseROIPriorityTuning(BOOL enable)
    {
        m_faceModule.statsROIProcess.enableROIPriority            = enable;
        m_faceModule.statsROIProcess.ROIPriorityTuning.sizeWeight   = 2.0F;
        m_faceModule.statsROIProcess.ROIPriorityTuning.centerWeight = 0.0F;
        m_tuningStore.modules.modFace                               = &m_faceModule;
        ApplyTuning();
    }

    // Share of the image of the first face of ShowFaces: 400 x 200 of 4000 x 3000.
    static constexpr FLOAT FaceShare = 0.1F * (200.0F / 3000.0F);
};

TEST_F(ROIPriorityTuningTest, EnabledROIPriorityTuningRanksTheFaces)
{
    UseROIPriorityTuning(TRUE);
    ShowFaces(1);
    EXPECT_FLOAT_EQ(2.0F * FaceShare, Store().getFaceROI()->inputROIPriority.GetScore(0));
}

TEST_F(ROIPriorityTuningTest, DisabledROIPriorityTuningLeavesPlainSizeRanking)
{
    UseROIPriorityTuning(TRUE);
    UseROIPriorityTuning(FALSE);
    ShowFaces(1);
    EXPECT_FLOAT_EQ(FaceShare, Store().getFaceROI()->inputROIPriority.GetScore(0));
}

// ---- Face presence ----

TEST_F(DataManagerTest, FaceTurnsActiveOnlyAfterTheTunedEnterTime)
{
    m_face.statsUpdateDelayTimeEnter = 0.11F;
    m_face.statsUpdateDelayTimeExit  = 0.21F;
    UseMeteringTuning();
    ShowFaces(1);

    // 30 frames per second: three frames are 0.1 s, not yet beyond the enter time.
    RunFaceFrames(3);
    const FaceROIProcInfo* pFace = Store().getFaceROI();
    EXPECT_FALSE(pFace->isActiveFace);
    EXPECT_NEAR(0.1F, pFace->faceHintDuration, 1e-5F);
    EXPECT_NEAR(0.1F, pFace->faceStatusDuration, 1e-5F);
    EXPECT_EQ(1u, pFace->filteredROIPriority.Size()) << "faces in view are always the faces in use";

    RunFaceFrames(1);
    EXPECT_TRUE(pFace->isActiveFace);
    EXPECT_FLOAT_EQ(0.0F, pFace->faceHintDuration);
    EXPECT_FLOAT_EQ(0.0F, pFace->faceStatusDuration);
}

TEST_F(DataManagerTest, FaceThatGoesAwayStaysActiveWithItsLastFacesUntilTheExitTimeIsExceeded)
{
    m_face.statsUpdateDelayTimeEnter = 0.0F;
    m_face.statsUpdateDelayTimeExit  = 0.21F;
    UseMeteringTuning();
    ShowFaces(2);
    RunFaceFrames(1);
    const FaceROIProcInfo* pFace = Store().getFaceROI();
    ASSERT_TRUE(pFace->isActiveFace);
    const AECAlgoROI lastFace = pFace->filteredROIPriority.GetNormalizeROI(1);

    ShowFaces(0);
    for (UINT32 frame = 1; frame <= 6; frame++)
    {
        RunFaceFrames(1);
        EXPECT_TRUE(pFace->isActiveFace) << "frame " << frame;
        ASSERT_EQ(2u, pFace->filteredROIPriority.Size()) << "frame " << frame;
        EXPECT_FLOAT_EQ(lastFace.x, pFace->filteredROIPriority.GetNormalizeROI(1).x);
    }
    EXPECT_NEAR(0.2F, pFace->faceHintDuration, 1e-5F);

    RunFaceFrames(1);
    EXPECT_FALSE(pFace->isActiveFace);
    EXPECT_EQ(0u, pFace->filteredROIPriority.Size());
    EXPECT_FLOAT_EQ(0.0F, pFace->faceHintDuration);
    EXPECT_FLOAT_EQ(0.0F, pFace->faceStatusDuration);
}

TEST_F(DataManagerTest, FaceMissingShorterThanTheExitTimeChangesNothing)
{
    m_face.statsUpdateDelayTimeExit = 0.21F;
    UseMeteringTuning();
    ShowFaces(1);
    RunFaceFrames(1);
    ShowFaces(0);
    RunFaceFrames(2);
    ShowFaces(1);
    RunFaceFrames(1);
    const FaceROIProcInfo* pFace = Store().getFaceROI();
    EXPECT_TRUE(pFace->isActiveFace);
    EXPECT_FLOAT_EQ(0.0F, pFace->faceHintDuration) << "the hint restarts once presence agrees again";
    EXPECT_NEAR(0.1F, pFace->faceStatusDuration, 1e-5F);
}

TEST_F(DataManagerTest, FaceTimeStepIsOneFramePeriodOfAtMostOneSecond)
{
    m_face.statsUpdateDelayTimeEnter = 5.0F;
    UseMeteringTuning();
    Store().SetCurentFPS(0.25F);
    ShowFaces(1);
    RunFaceFrames(1);
    EXPECT_FLOAT_EQ(1.0F, Store().getFaceROI()->faceStatusDuration);
    EXPECT_FLOAT_EQ(1.0F, Store().getFaceROI()->faceHintDuration);
    Store().SetCurentFPS(10.0F);
    RunFaceFrames(1);
    EXPECT_FLOAT_EQ(1.1F, Store().getFaceROI()->faceHintDuration);
    EXPECT_FALSE(Store().getFaceROI()->isActiveFace);
}

TEST_F(DataManagerTest, PreflashTakesTheFaceHoldTimesOfTheFlashTuning)
{
    m_face.statsUpdateDelayTimeEnter           = 10.0F;
    m_flash.FDFlash.statsUpdateDelayTimeEnter = 0.05F;
    m_flash.FDFlash.statsUpdateDelayTimeExit  = 10.0F;
    UseMeteringTuning();
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeStreaming));
    ShowFaces(1);
    RunFaceFrames(2);
    EXPECT_FALSE(Store().getFaceROI()->isActiveFace) << "streaming waits for the face tuning's 10 s";

    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModePreflash));
    RunFaceFrames(1);
    EXPECT_TRUE(Store().getFaceROI()->isActiveFace) << "0.1 s of hint is beyond the flash tuning's 0.05 s";
    ShowFaces(0);
    RunFaceFrames(5);
    EXPECT_TRUE(Store().getFaceROI()->isActiveFace) << "the flash tuning's exit time holds it";
}

TEST_F(DataManagerTest, FaceStateFollowsAtOnceWithoutTuning)
{
    ShowFaces(1);
    RunFaceFrames(1);
    EXPECT_TRUE(Store().getFaceROI()->isActiveFace);
    ShowFaces(0);
    RunFaceFrames(1);
    EXPECT_FALSE(Store().getFaceROI()->isActiveFace);
    EXPECT_EQ(0u, Store().getFaceROI()->filteredROIPriority.Size());
}

TEST_F(DataManagerTest, FaceDebugDataIsNormalisedInTheCropWindowOrTheFullFrame)
{
    StatsRectangle crop = {1000, 750, 2000, 1500};
    Store().setCropWindow(crop);
    ShowFaces(1);
    RunFaceFrames(1);
    const AECDebugDataConfigurationType& rConfig = Store().getDebugData()->configInfo;
    EXPECT_EQ(1, rConfig.bIsFaceActive);
    EXPECT_EQ(1, rConfig.validFaceROICount);
    EXPECT_FLOAT_EQ(0.0F, rConfig.faceHintDuration);
    EXPECT_NEAR(0.25F, rConfig.faceROIs[0].left, 1e-6F);
    EXPECT_NEAR(250.0F / 1500.0F, rConfig.faceROIs[0].top, 1e-6F);
    EXPECT_NEAR(0.2F, rConfig.faceROIs[0].width, 1e-6F);
    EXPECT_NEAR(200.0F / 1500.0F, rConfig.faceROIs[0].height, 1e-6F);
    EXPECT_FLOAT_EQ(10.0F, rConfig.faceROIs[0].weight);

    // The statistics tuning selects the full field of view.
    UseStatsTuning();
    ASSERT_EQ(StatsROISelectionFullFOV, Store().getBGBEConfig()->ROISelection);
    RunFaceFrames(1);
    EXPECT_NEAR(0.375F, rConfig.faceROIs[0].left, 1e-6F);
    EXPECT_NEAR(1000.0F / 3000.0F, rConfig.faceROIs[0].top, 1e-6F);
    EXPECT_NEAR(0.1F, rConfig.faceROIs[0].width, 1e-6F);

    // The debug record holds ten faces.
    ShowFaces(16);
    RunFaceFrames(1);
    EXPECT_EQ(10, rConfig.validFaceROICount);
    EXPECT_NEAR(2400.0F / 4000.0F, rConfig.faceROIs[9].left, 1e-6F);
}

TEST_F(DataManagerTest, FaceDebugDataIsLeftAloneWithDebugDataOff)
{
    Store().setDebugDataEnable(FALSE);
    ShowFaces(1);
    RunFaceFrames(1);
    EXPECT_TRUE(Store().getFaceROI()->isActiveFace);
    EXPECT_EQ(0, Store().getDebugData()->configInfo.bIsFaceActive);
    EXPECT_EQ(0, Store().getDebugData()->configInfo.validFaceROICount);
}

TEST_F(DataManagerTest, EnteringInitClearsTouchAndFaceRegions)
{
    AECAlgoROI     touch     = {0.1F, 0.1F, 0.2F, 0.2F, 1.0F};
    AECAlgoROIList touchList = {&touch, 1};
    ASSERT_EQ(AecSuccess, Store().setTouchROI(touchList));
    ShowFaces(1);
    RunFaceFrames(1);
    Store().getDebugData()->configInfo.bIsTouchActive = 1;
    ASSERT_TRUE(Store().getFaceROI()->isActiveFace);

    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeInit));
    EXPECT_EQ(0u, Store().getTouchROI()->ROICount);
    EXPECT_EQ(0u, Store().getFaceROI()->inputROIPriority.Size());
    EXPECT_EQ(0u, Store().getFaceROI()->filteredROIPriority.Size());
    EXPECT_FALSE(Store().getFaceROI()->isActiveFace);
    EXPECT_FLOAT_EQ(0.0F, Store().getFaceROI()->faceStatusDuration);
    EXPECT_EQ(0, Store().getDebugData()->configInfo.bIsTouchActive);
    EXPECT_EQ(0, Store().getDebugData()->configInfo.bIsFaceActive);
}

// ---- Statistics configuration ----

TEST_F(DataManagerTest, StatisticsConfigurationFromTuning)
{
    UseStatsTuning();
    const StatsBayerGridBayerExposureConfig* pGrid = Store().getBGBEConfig();
    EXPECT_EQ(3686u, pGrid->channelGainThreshold[0]) << "0.9 of 4096";
    EXPECT_EQ(static_cast<UINT32>(0.8F * 4096.0F), pGrid->channelGainThreshold[1]);
    EXPECT_EQ(static_cast<UINT32>(0.7F * 4096.0F), pGrid->channelGainThreshold[2]);
    EXPECT_EQ(static_cast<UINT32>(0.6F * 4096.0F), pGrid->channelGainThreshold[3]);
    EXPECT_EQ(409u, pGrid->minChannelLumaThreshold[0]);
    EXPECT_EQ(1024u, pGrid->minChannelLumaThreshold[2]);
    EXPECT_EQ(32u, pGrid->horizontalRegionCount);
    EXPECT_EQ(24u, pGrid->verticalRegionCount);
    EXPECT_EQ(12, pGrid->outputBitDepth);
    EXPECT_EQ(StatsROISelectionFullFOV, pGrid->ROISelection);
    EXPECT_TRUE(pGrid->enableYStatsComputation);
    EXPECT_FLOAT_EQ(0.5F, pGrid->YStatsWeights[1]);
    EXPECT_TRUE(pGrid->enableSaturationStats);
    EXPECT_EQ(2, pGrid->HWStatsSkippingFactor);

    const StatsBayerHistogramConfig* pHist = Store().getBayerHistConfig();
    EXPECT_EQ(ColorChannelR, pHist->channel);
    EXPECT_FALSE(pHist->uniform) << "non-uniform bins in tuning";
    EXPECT_EQ(StatsROISelectionCroppedFOV, pHist->ROISelection) << "the histogram's own ROI control";
    EXPECT_EQ(1u, m_logs.Count("histogram uniformity configured to 0"));

    // Tuning without statistics configuration returns to the defaults.
    m_tuningStore.pStatsConfig = nullptr;
    ApplyTuning();
    EXPECT_EQ(15296u, Store().getBGBEConfig()->channelGainThreshold[0]);
    EXPECT_EQ(64u, Store().getBGBEConfig()->horizontalRegionCount);
    EXPECT_EQ(ColorChannelY, Store().getBayerHistConfig()->channel);
    EXPECT_TRUE(Store().getBayerHistConfig()->uniform);
}

TEST_F(DataManagerTest, StatisticsTuningWithAZeroFirstThresholdIsNotUsedButItsUniformityIs)
{
    m_statsConfig.gridStatsConfig.maxStatsChannelThreshold[0] = 0.0F;
    m_statsConfig.gridStatsConfig.maxStatsChannelThreshold[1] = 0.5F;
    m_statsConfig.gridStatsConfig.bitDepth                    = 10;
    m_histogram.colorChannel                                  = 1;
    m_histogram.binUniformity                                 = 1;
    m_statsConfig.histStatsConfig.histogramsCount             = 1;
    m_statsConfig.histStatsConfig.histograms                  = &m_histogram;
    m_tuningStore.pStatsConfig                                = &m_statsConfig;
    ApplyTuning();
    EXPECT_EQ(15296u, Store().getBGBEConfig()->channelGainThreshold[1]);
    EXPECT_EQ(14, Store().getBGBEConfig()->outputBitDepth);
    EXPECT_EQ(ColorChannelY, Store().getBayerHistConfig()->channel);
    EXPECT_FALSE(Store().getBayerHistConfig()->uniform) << "a tuning change takes the uniformity in any case";
}

TEST_F(DataManagerTest, StatisticsTuningThatCannotBeUsedGivesTheDefaults)
{
    m_statsConfig.gridStatsConfig.bitDepth = 40;
    UseStatsTuning();
    m_statsConfig.gridStatsConfig.bitDepth = 40;
    ApplyTuning();
    EXPECT_EQ(1u, m_logs.Count("Statistics tuning refused: bit depth 40 above 31; using the default configuration"));
    EXPECT_EQ(15296u, Store().getBGBEConfig()->channelGainThreshold[0]);
    EXPECT_EQ(14, Store().getBGBEConfig()->outputBitDepth);

    m_statsConfig.gridStatsConfig.bitDepth        = 12;
    m_statsConfig.histStatsConfig.histogramsCount = 0;
    ApplyTuning();
    EXPECT_EQ(1u, m_logs.Count("Statistics tuning refused: no histogram configuration; using the default "
                               "configuration"));
    EXPECT_EQ(64u, Store().getBGBEConfig()->horizontalRegionCount);
    EXPECT_TRUE(Store().getBayerHistConfig()->uniform);
}

TEST_F(DataManagerTest, StatisticsThresholdsSaturateInsteadOfOverflowing)
{
    m_statsConfig.gridStatsConfig.maxStatsChannelThreshold[1] = 1e30F;
    m_statsConfig.gridStatsConfig.minStatsChannelThreshold[1] = -3.0F;
    UseStatsTuning();
    m_statsConfig.gridStatsConfig.maxStatsChannelThreshold[1] = 1e30F;
    m_statsConfig.gridStatsConfig.minStatsChannelThreshold[1] = -3.0F;
    ApplyTuning();
    EXPECT_EQ(std::numeric_limits<UINT32>::max(), Store().getBGBEConfig()->channelGainThreshold[1]);
    EXPECT_EQ(0u, Store().getBGBEConfig()->minChannelLumaThreshold[1]);
}

class HistogramChannelTest : public DataManagerTest, public ::testing::WithParamInterface<std::pair<INT32, ColorChannel>>
{
};

TEST_P(HistogramChannelTest, TunedChannelNumberSelectsTheHistogramChannel)
{
    UseStatsTuning();
    m_histogram.colorChannel = GetParam().first;
    ApplyTuning();
    EXPECT_EQ(GetParam().second, Store().getBayerHistConfig()->channel);
    const bool isMapped = (3 != GetParam().first) && (GetParam().first >= 0) && (GetParam().first <= 5);
    EXPECT_EQ(isMapped ? 0u : 1u,
              m_logs.Count("hist color channel not mapped: " + std::to_string(GetParam().first) + ", forcing to Y 6"));
}

INSTANTIATE_TEST_SUITE_P(Channels, HistogramChannelTest,
                         ::testing::Values(std::make_pair(0, ColorChannelR), std::make_pair(1, ColorChannelGR),
                                           std::make_pair(2, ColorChannelGB), std::make_pair(3, ColorChannelY),
                                           std::make_pair(4, ColorChannelB), std::make_pair(5, ColorChannelY),
                                           std::make_pair(6, ColorChannelY), std::make_pair(-1, ColorChannelY)));

// ---- Saturation thresholds, DRC, HDR3 ----

class SaturationThresholdTest : public DataManagerTest
{
protected:
    // A frame whose short exposure lies 10 index units above the safe one, with predictive gains 2 and 1.5.
    void ProcessSaturatedFrame()
    {
        EnterModeWithStart(AECAlgoOperationModeStreaming);
        ASSERT_EQ(AecSuccess, Store().saveCurrentFrameID(1));
        AECFrameHistory history;
        history.frameID        = 1;
        history.expIndices[0]  = 110.0F;
        history.expIndices[2]  = 100.0F;
        history.predictiveGain = 2.0F;
        history.predictiveADRC = 1.5F;
        ASSERT_EQ(AecSuccess, Store().saveFrameHistoryInfo(history));
    }

    void UseSaturationControl(BOOL enable, BOOL predictive)
    {
        // Saturation control comes from the "ADRCSat" entry of the parameter extension list.
        m_saturationData                        = static_cast<FLOAT>(predictive);
        m_saturationEntry.ID                    = 2;
        m_saturationEntry.Name                  = m_saturationName;
        m_saturationEntry.enableFlag            = enable;
        m_saturationEntry.dataCount             = 1;
        m_saturationEntry.data                  = &m_saturationData;
        m_paramExt.extensionParamCount          = 1;
        m_paramExt.extensionParam               = &m_saturationEntry;
        m_tuningStore.modules.modParamExt       = &m_paramExt;
        UseMeteringTuning();
    }

    CHAR                                         m_saturationName[8] = "ADRCSat";
    FLOAT                                        m_saturationData    = 0.0F;
    statsglobalelements::statsExtensionParamType m_saturationEntry   = {};
    aecParamExtension::ParamExtensionType        m_paramExt          = {};
};

TEST_F(SaturationThresholdTest, ThresholdsFollowTheShortExposureAndThePredictiveGains)
{
    UseSaturationControl(TRUE, FALSE);
    ProcessSaturatedFrame();
    FLOAT scale = powf(1.03F, 10.0F);
    scale *= 2.0F * 1.5F;
    const UINT32 expected = static_cast<UINT32>(15296.0F * scale);
    EXPECT_NEAR(61669.0, static_cast<DOUBLE>(expected), 1.0) << "15296 x 1.03^10 x 3";
    for (UINT32 channel = 0; channel < 4; channel++)
    {
        EXPECT_EQ(expected, Store().getBGBEConfig()->channelGainThreshold[channel]);
    }
}

TEST_F(SaturationThresholdTest, PredictiveSaturationControlLeavesThePredictiveGainsOut)
{
    UseSaturationControl(TRUE, TRUE);
    ProcessSaturatedFrame();
    EXPECT_EQ(static_cast<UINT32>(15296.0F * powf(1.03F, 10.0F)), Store().getBGBEConfig()->channelGainThreshold[0]);
    EXPECT_EQ(20556u, Store().getBGBEConfig()->channelGainThreshold[0]);
}

TEST_F(SaturationThresholdTest, ThresholdsStayWithoutControlOrWithoutHistory)
{
    UseSaturationControl(TRUE, FALSE);
    EXPECT_EQ(15296u, Store().getBGBEConfig()->channelGainThreshold[0]) << "no start configuration yet";
    UseSaturationControl(FALSE, FALSE);
    ProcessSaturatedFrame();
    EXPECT_EQ(15296u, Store().getBGBEConfig()->channelGainThreshold[0]);
}

TEST_F(SaturationThresholdTest, ThresholdsSaturateOnAHugeExposureSpread)
{
    UseSaturationControl(TRUE, TRUE);
    EnterModeWithStart(AECAlgoOperationModeStreaming);
    ASSERT_EQ(AecSuccess, Store().saveCurrentFrameID(1));
    AECFrameHistory history;
    history.frameID       = 1;
    history.expIndices[0] = 5000.0F;
    ASSERT_EQ(AecSuccess, Store().saveFrameHistoryInfo(history));
    EXPECT_EQ(std::numeric_limits<UINT32>::max(), Store().getBGBEConfig()->channelGainThreshold[0]);
}

TEST_F(DataManagerTest, DRCIsEnabledByTuningInAutoModeUnlessDisabled)
{
    EXPECT_FALSE(Store().getDRCEnable()) << "without tuning";
    m_meteringCore.mtrLumaTarget.histLumaTarget.enableADRC = TRUE;
    UseMeteringTuning();
    EXPECT_TRUE(Store().getDRCEnable());
    EXPECT_EQ(1u, m_logs.Count("Enable:1 m_disableADRC:0 manualMode:0 tuning:1"));

    Store().setADRCInfo(TRUE);
    EXPECT_FALSE(Store().getDRCEnable());
    Store().setADRCInfo(FALSE);

    AECAlgoManualSetting manual = *Store().getManualSetting();
    manual.manualMode           = AECAlgoModeManualExpTime;
    manual.exposureTime         = 1000;
    ASSERT_EQ(AecSuccess, Store().setManualSetting(manual));
    EXPECT_FALSE(Store().getDRCEnable());

    manual.manualMode = AECAlgoModeAuto;
    ASSERT_EQ(AecSuccess, Store().setManualSetting(manual));
    m_meteringCore.mtrLumaTarget.histLumaTarget.enableADRC = FALSE;
    EXPECT_FALSE(Store().getDRCEnable());
}

TEST_F(DataManagerTest, HDR3IsOnWithTheSensorHDRMode)
{
    ASSERT_EQ(AecSuccess, Store().setMultiExposureSensorMode(SensorHDR));
    EXPECT_TRUE(Store().getHDR3Enable());
    ASSERT_EQ(AecSuccess, Store().setMultiExposureSensorMode(HDRDisabled));
    EXPECT_FALSE(Store().getHDR3Enable());
}

// ---- Start exposure ----

TEST_F(DataManagerTest, StartTargetsLieBelowTheStartIndicesByTheTunedEVOffset)
{
    m_meteringCore.mtrLumaTarget.EVLumaTarget.EVCompTable.EVCompTableElements[36] = 2.0F;
    m_meteringCore.mtrLumaTarget.EVLumaTarget.EVCompTable.EVCompTableElements[48] = 4.0F;
    UseMeteringTuning();
    Store().SetEVCapability(-2, 2, 12);
    ASSERT_EQ(AecSuccess, Store().setEVVal(12));
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeStreaming));

    const FLOAT indices[3] = {100.0F, 110.0F, 120.0F};
    Store().saveStartExposure(indices, 50.0F);
    const AECFrameHistory* pStart = Store().getFrameHistory(0);
    ASSERT_NE(nullptr, pStart);
    // EV +1 at 12 steps per EV is step 36 counted from -2 EV: multiplier 2, one stop.
    const FLOAT offset = IndexOfRatio(2.0);
    EXPECT_NEAR(23.4498F, offset, 1e-3F);
    EXPECT_FLOAT_EQ(100.0F - offset, pStart->expIndicesTargets[0]);
    EXPECT_FLOAT_EQ(120.0F - offset, pStart->expIndicesTargets[2]);
    EXPECT_FLOAT_EQ(120.0F, pStart->sHDRExpIndices[2]);
    EXPECT_FLOAT_EQ(1.0F, pStart->previewEV);
    EXPECT_FLOAT_EQ(50.0F, pStart->luxIndex);
    EXPECT_FLOAT_EQ(-1.0F, pStart->luma);
    EXPECT_EQ(1u, m_logs.CountContaining("cur EV 1.0 EV offset 23.4 op 1"));

    // A value beyond the capabilities takes the last step.
    ASSERT_EQ(AecSuccess, Store().setEVVal(40));
    Store().saveStartExposure(indices, 50.0F);
    EXPECT_FLOAT_EQ(120.0F - IndexOfRatio(4.0), Store().getFrameHistory(0)->expIndicesTargets[2]);
}

TEST_F(DataManagerTest, PreflashStartTargetsHaveNoEVOffset)
{
    m_meteringCore.mtrLumaTarget.EVLumaTarget.EVCompTable.EVCompTableElements[36] = 2.0F;
    UseMeteringTuning();
    Store().SetEVCapability(-2, 2, 12);
    ASSERT_EQ(AecSuccess, Store().setEVVal(12));
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeStreaming));
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModePreflash));
    const FLOAT indices[3] = {100.0F, 110.0F, 120.0F};
    Store().saveStartExposure(indices, 50.0F);
    EXPECT_FLOAT_EQ(120.0F, Store().getFrameHistory(0)->expIndicesTargets[2]);
    EXPECT_FLOAT_EQ(0.0F, Store().getFrameHistory(0)->previewEV);
}

TEST_F(DataManagerTest, StartTargetsIgnoreANonPositiveEVMultiplier)
{
    UseMeteringTuning();
    Store().SetEVCapability(-2, 2, 12);
    ASSERT_EQ(AecSuccess, Store().setEVVal(12));
    ASSERT_EQ(AecSuccess, Store().setOperationMode(AECAlgoOperationModeStreaming));
    const FLOAT indices[3] = {100.0F, 110.0F, 120.0F};
    Store().saveStartExposure(indices, 50.0F);
    EXPECT_FLOAT_EQ(120.0F, Store().getFrameHistory(0)->expIndicesTargets[2]);
    EXPECT_EQ(1u, m_logs.Count("EV compensation multiplier 0.000000 at step 36 is not positive: no EV offset"));
}

// ---- Exposure tables ----

TEST_F(DataManagerTest, ExposureTableIDSelectsATunedTableOrFallsBackOnTableZero)
{
    m_arbitrationCore.expTablesCount = 2;
    m_arbitrationCore.expTables      = m_tables;
    m_tuningStore.modules.modArb     = &m_arbitrationCore;
    ApplyTuning();

    EXPECT_EQ(&m_tables[0], Store().getExposureTableFromTableID(0));
    EXPECT_EQ(&m_tables[1], Store().getExposureTableFromTableID(1));
    EXPECT_EQ(&m_tables[0], Store().getExposureTableFromTableID(2));
    EXPECT_EQ(1u, m_logs.Count("Invalid exposure table ID 2 (table count 2), using table 0"));
    EXPECT_EQ(&m_tables[0], Store().getExposureTableFromTableID(-1));
    EXPECT_EQ(&m_tables[0], Store().getExposureTableFromTableID(100)) << "no valid custom table";

    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(ThreeKneeTable()));
    EXPECT_EQ(&Store().getCustomExposureTableInfo()->expTable, Store().getExposureTableFromTableID(100));

    m_arbitrationCore.expTablesCount = 0;
    EXPECT_EQ(nullptr, Store().getExposureTableFromTableID(1));
    EXPECT_EQ(1u, m_logs.Count("Exposure table 1 requested, but the tuning holds no exposure table"));
}

TEST_F(DataManagerTest, CustomTableDerivesItsIndicesFromTheKneesAndIgnoresTheHostIndices)
{
    TableAdopter adopter(m_pStore.get());
    Store().addComponent(&adopter);
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(ThreeKneeTable()));
    EXPECT_EQ(1u, adopter.events);
    EXPECT_EQ(1u, m_logs.Count("Custom Exposure Table is Valid, hence set and stored in data manager"));

    const AECCustomExposureTableInfo* pInfo = Store().getCustomExposureTableInfo();
    ASSERT_TRUE(pInfo->isValid);
    const aecArbitration::ExposureTableType& rTable = pInfo->expTable;
    EXPECT_EQ(&rTable, Store().getExposureTableFromTableID(100));
    ASSERT_EQ(3u, rTable.expKneeEntriesCount);
    ASSERT_NE(nullptr, rTable.expKneeEntries);
    EXPECT_FLOAT_EQ(1.5F, rTable.sensitivityCorrectionFactor);
    EXPECT_FLOAT_EQ(0.9F, rTable.thresAntiBandingMinExpTimePct);
    EXPECT_FLOAT_EQ(0.0F, rTable.expKneeEntries[0].expIndex);
    EXPECT_FLOAT_EQ(IndexOfRatio(2.0), rTable.expKneeEntries[1].expIndex);
    EXPECT_FLOAT_EQ(IndexOfRatio(2.0) + IndexOfRatio(4.0), rTable.expKneeEntries[2].expIndex);
    EXPECT_NEAR(70.349F, rTable.expKneeEntries[2].expIndex, 1e-3F);
    EXPECT_EQ(aecglobalelements::AECExpIncGain, rTable.expKneeEntries[0].incrementPriority);
    EXPECT_EQ(aecglobalelements::AECExpIncExpTime, rTable.expKneeEntries[1].incrementPriority);
    EXPECT_EQ(aecglobalelements::AECExpIncExpTime, rTable.expKneeEntries[2].incrementPriority);
    EXPECT_EQ(4000000u, rTable.expKneeEntries[2].expTime);
    EXPECT_FLOAT_EQ(2.0F, rTable.expKneeEntries[2].gain);

    // The same table again is no change, even with other host indices and another non-zero priority.
    AECCustomExposureTable same = ThreeKneeTable();
    same.expIndex[1]            = 5.0F;
    same.incrementPriority[1]   = 1;
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(same));
    EXPECT_EQ(1u, adopter.events);

    // A longer table takes a new knee array.
    AECCustomExposureTable longer = ThreeKneeTable();
    longer.kneeCount              = 4;
    longer.gain[3]                = 8.0F;
    longer.expTime[3]             = 4000000;
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(longer));
    EXPECT_EQ(2u, adopter.events);
    ASSERT_EQ(4u, rTable.expKneeEntriesCount);
    EXPECT_FLOAT_EQ(rTable.expKneeEntries[2].expIndex + IndexOfRatio(4.0), rTable.expKneeEntries[3].expIndex);
}

TEST_F(DataManagerTest, CustomTableOfFiftyKneesIsRefusedAlthoughFiftyIsNamedAsMaximum)
{
    TableAdopter adopter(m_pStore.get());
    Store().addComponent(&adopter);
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(ThreeKneeTable()));

    AECCustomExposureTable fifty = ThreeKneeTable();
    fifty.kneeCount              = 50;
    for (UINT32 knee = 0; knee < 50; knee++)
    {
        fifty.gain[knee]    = 1.0F + static_cast<FLOAT>(knee);
        fifty.expTime[knee] = 1000;
    }
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(fifty));
    EXPECT_EQ(1u, m_logs.Count("Invalid Custom Exposure Table Size, Size = 50, Min = 2, Max Size = 50"));
    EXPECT_EQ(1u, adopter.events);
    EXPECT_TRUE(Store().getCustomExposureTableInfo()->isValid) << "the table in force stays";
    EXPECT_EQ(3u, Store().getCustomExposureTableInfo()->expTable.expKneeEntriesCount);

    fifty.kneeCount = 49;
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(fifty));
    EXPECT_EQ(2u, adopter.events);
    EXPECT_EQ(49u, Store().getCustomExposureTableInfo()->expTable.expKneeEntriesCount);

    AECCustomExposureTable single = ThreeKneeTable();
    single.kneeCount              = 1;
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(single));
    EXPECT_EQ(1u, m_logs.Count("Invalid Custom Exposure Table Size, Size = 1, Min = 2, Max Size = 50"));
}

TEST_F(DataManagerTest, InvalidCustomTableWhileTheStoredOneIsInvalidChangesNothing)
{
    TableAdopter adopter(m_pStore.get());
    Store().addComponent(&adopter);
    AECCustomExposureTable invalid = ThreeKneeTable();
    invalid.isValid                = FALSE;
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(invalid));
    EXPECT_EQ(0u, adopter.events);
    EXPECT_EQ(0u, m_logs.CountContaining("Custom Exposure Table is"));
    EXPECT_FALSE(Store().getCustomExposureTableInfo()->isValid);
    EXPECT_EQ(0u, Store().getCustomExposureTableInfo()->expTable.expKneeEntriesCount);

    // After a valid one, an invalid table returns to the tuned tables.
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(ThreeKneeTable()));
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(invalid));
    EXPECT_EQ(2u, adopter.events);
    EXPECT_EQ(1u, m_logs.Count("Custom Exposure Table is not Valid, hence changed to Tunning Exposure Tables"));
    EXPECT_FALSE(Store().getCustomExposureTableInfo()->isValid);
    EXPECT_EQ(nullptr, Store().getExposureTableFromTableID(100)) << "no tuning to fall back on";
}

TEST_F(DataManagerTest, CustomTableWithANotANumberIsRefused)
{
    AECCustomExposureTable table = ThreeKneeTable();
    table.gain[0]                = std::numeric_limits<FLOAT>::quiet_NaN();
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(table));
    EXPECT_EQ(1u, m_logs.CountContaining("Index:0, EI: 999.000000, Invalid Gain: "));
    EXPECT_FALSE(Store().getCustomExposureTableInfo()->isValid);

    table                             = ThreeKneeTable();
    table.sensitivityCorrectionFactor = std::numeric_limits<FLOAT>::quiet_NaN();
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(table));
    EXPECT_EQ(1u, m_logs.CountContaining("Invalid Sensitivity Correction Factor: "));
    EXPECT_FALSE(Store().getCustomExposureTableInfo()->isValid);
}

// ---- Table sensitivity rebase ----

class TableSensitivityTest : public DataManagerTest
{
protected:
    // Start configuration and two frames taken with a table of sensitivity 1.
    void RecordHistoryAtSensitivityOne()
    {
        Store().setSensitivity(1.0F);
        EnterModeWithStart(AECAlgoOperationModeStreaming);
        for (UINT64 frameID = 1; frameID <= 2; frameID++)
        {
            ASSERT_EQ(AecSuccess, Store().saveCurrentFrameID(frameID));
            AECFrameHistory history;
            history.frameID              = frameID;
            history.expIndices[2]        = 200.0F;
            history.expIndicesTargets[2] = 210.0F;
            history.luxIndex             = 300.0F;
            ASSERT_EQ(AecSuccess, Store().saveFrameHistoryInfo(history));
        }
    }
};

TEST_F(TableSensitivityTest, CustomTableRebasesTheHistoryOnTheNewTableSensitivity)
{
    TableAdopter adopter(m_pStore.get());
    adopter.sensitivity = 2.0F;
    Store().addComponent(&adopter);
    RecordHistoryAtSensitivityOne();
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(ThreeKneeTable()));

    // Twice the table sensitivity: the same exposure lies one stop lower in the new table.
    const FLOAT            offset  = IndexOfRatio(0.5);
    const AECFrameHistory* pNewest = Store().getFrameHistory(0);
    EXPECT_FLOAT_EQ(200.0F + offset, pNewest->expIndices[2]);
    EXPECT_FLOAT_EQ(210.0F + offset, pNewest->expIndicesTargets[2]);
    EXPECT_FLOAT_EQ(300.0F + offset, pNewest->luxIndex);
    EXPECT_FLOAT_EQ(2.0F, pNewest->tableSensitivity);
    EXPECT_FLOAT_EQ(200.0F + offset, Store().getFrameHistory(1)->expIndices[2]);
    EXPECT_EQ(3u, m_logs.Count("table sensitivity has changed: adding offset -23.4 curr SI 2.0 frame SI 1.0"))
        << "start configuration and both frames";

    // Nothing to do when the sensitivity stays.
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(ThreeKneeTable()));
    AECCustomExposureTable longer = ThreeKneeTable();
    longer.kneeCount              = 4;
    longer.gain[3]                = 4.0F;
    longer.expTime[3]             = 4000000;
    ASSERT_EQ(AecSuccess, Store().setCustomExposureTable(longer));
    EXPECT_FLOAT_EQ(200.0F + offset, Store().getFrameHistory(0)->expIndices[2]);
}

TEST_F(TableSensitivityTest, CompensatedLuxIndexStaysOnATuningChange)
{
    RecordHistoryAtSensitivityOne();
    m_meteringCore.mtrLumaCalc.indexCalc.enableLuxIndexComp = 1;
    Store().setSensitivity(0.5F);
    UseMeteringTuning();
    const FLOAT offset = IndexOfRatio(2.0);
    EXPECT_FLOAT_EQ(200.0F + offset, Store().getFrameHistory(0)->expIndices[2]);
    EXPECT_FLOAT_EQ(300.0F, Store().getFrameHistory(0)->luxIndex);
}

TEST_F(TableSensitivityTest, HistoryWithoutAStartConfigurationOrSensitivityIsNotRebased)
{
    Store().setSensitivity(2.0F);
    ApplyTuning();
    EXPECT_EQ(0u, m_logs.CountContaining("table sensitivity has changed"));

    RecordHistoryAtSensitivityOne();
    ASSERT_EQ(AecSuccess, Store().saveCurrentFrameID(3));
    AECFrameHistory unknown;
    unknown.frameID          = 3;
    unknown.tableSensitivity = 0.0F;
    unknown.expIndices[2]    = 200.0F;
    ASSERT_EQ(AecSuccess, Store().saveFrameHistoryInfo(unknown));
    Store().setSensitivity(2.0F);
    ApplyTuning();
    EXPECT_FLOAT_EQ(200.0F, Store().getFrameHistory(0)->expIndices[2]) << "a record without sensitivity";
    EXPECT_FLOAT_EQ(200.0F + IndexOfRatio(0.5), Store().getFrameHistory(1)->expIndices[2]);
}

// ---- Multi-camera ----

struct MtrExpRow
{
    INT32                       tuned;
    AECAlgoMultiCamMeteringType metering;
    AECAlgoMultiCamExposureType exposure;
};

class MtrExpMappingTest : public DataManagerTest,
                          public ::testing::WithParamInterface<std::tuple<MtrExpRow, StatsAlgoRole>>
{
};

TEST_P(MtrExpMappingTest, RoleTakesTheTunedKindsOfItsRow)
{
    const MtrExpRow     row  = std::get<0>(GetParam());
    const StatsAlgoRole role = std::get<1>(GetParam());
    // The other role's entry is unusable: the mapping must read the entry of the role being set.
    if (StatsAlgoRoleSlave == role)
    {
        UseMtrAndExpModeTuning(99, row.tuned);
    }
    else
    {
        UseMtrAndExpModeTuning(row.tuned, 99);
    }
    SetRole(3, role);
    EXPECT_EQ(role, Store().getCameraInfo()->algoRole);
    EXPECT_EQ(row.metering, Store().getMeteringType());
    EXPECT_EQ(row.exposure, Store().getExposureType());
    EXPECT_EQ(1u, m_logs.Count("Metering set to " + std::to_string(row.metering) + " exposure set to " +
                               std::to_string(row.exposure)));
    EXPECT_EQ(1u, m_logs.Count("CID: 3, Role changed to " + std::to_string(role) + ", from 0"));
}

INSTANTIATE_TEST_SUITE_P(
    Table, MtrExpMappingTest,
    ::testing::Combine(
        ::testing::Values(MtrExpRow{0, AECAlgoMeteringIndependent, AECAlgoExposureIndependent},
                          MtrExpRow{1, AECAlgoMeteringIndependent, AECAlgoExposureFollow},
                          MtrExpRow{2, AECAlgoMeteringIndependent, AECAlgoExposureIndependent},
                          MtrExpRow{3, AECAlgoMeteringMix, AECAlgoExposureIndependent},
                          MtrExpRow{4, AECAlgoMeteringIndependent, AECAlgoExposureDynamic}),
        ::testing::Values(StatsAlgoRoleMaster, StatsAlgoRoleSlave)));

TEST_F(DataManagerTest, RoleChangeBeforeTuningIsLostUnlessRepeated)
{
    SetRole(3, StatsAlgoRoleSlave);
    EXPECT_EQ(3u, Store().getCameraInfo()->cameraId) << "the camera ID is taken at once";
    EXPECT_EQ(StatsAlgoRoleDefault, Store().getCameraInfo()->algoRole);
    EXPECT_EQ(0u, m_logs.CountContaining("Role changed"));

    UseMtrAndExpModeTuning(0, 1);
    EXPECT_EQ(StatsAlgoRoleDefault, Store().getCameraInfo()->algoRole) << "tuning does not bring the role back";
    EXPECT_EQ(AECAlgoExposureIndependent, Store().getExposureType());

    SetRole(3, StatsAlgoRoleSlave);
    EXPECT_EQ(StatsAlgoRoleSlave, Store().getCameraInfo()->algoRole);
    EXPECT_EQ(AECAlgoExposureFollow, Store().getExposureType());

    // The same role again maps nothing.
    m_logs.Clear();
    SetRole(3, StatsAlgoRoleSlave);
    EXPECT_EQ(0u, m_logs.CountContaining("Metering set to"));
}

TEST_F(DataManagerTest, UnknownTunedMtrExpConfigurationKeepsRoleAndKinds)
{
    UseMtrAndExpModeTuning(9, 9);
    SetRole(5, StatsAlgoRoleMaster);
    EXPECT_EQ(StatsAlgoRoleDefault, Store().getCameraInfo()->algoRole);
    EXPECT_EQ(AECAlgoMeteringIndependent, Store().getMeteringType());
    EXPECT_EQ(AECAlgoExposureIndependent, Store().getExposureType());
    EXPECT_EQ(1u, m_logs.Count("Unknown metering and exposure configuration 9 in tuning; kinds unchanged"));
}

TEST_F(DataManagerTest, MasterSelectsTheFirstActivePeerOfAnotherCamera)
{
    UseMtrAndExpModeTuning(0, 1);
    SetRole(3, StatsAlgoRoleMaster);
    AECMultiCamInfo    peers[4] = {};
    StatsPeerInfoCombo combo    = {};
    combo.needSync              = TRUE;
    const UINT32 ids[4]         = {3, 5, 7, 9};
    const BOOL   active[4]      = {TRUE, FALSE, TRUE, TRUE};
    for (UINT32 i = 0; i < 4; i++)
    {
        combo.isActive[i]  = active[i];
        combo.cameraId[i]  = ids[i];
        combo.algoRole[i]  = StatsAlgoRoleSlave;
        combo.pPeerInfo[i] = &peers[i];
    }
    const AECMultiCamInfo* pPeer = nullptr;
    EXPECT_EQ(AecSuccess, Store().MapMultiCamPeerInfo(&combo, &pPeer));
    EXPECT_EQ(&peers[2], pPeer);
    EXPECT_EQ(1u, m_logs.Count("CID:3, Role:MASTER, Selecting the Slave of CID:7"));

    combo.isActive[2] = FALSE;
    combo.isActive[3] = FALSE;
    pPeer             = nullptr;
    EXPECT_EQ(AecError, Store().MapMultiCamPeerInfo(&combo, &pPeer));
    EXPECT_EQ(nullptr, pPeer);
    EXPECT_EQ(1u, m_logs.Count("CID:3, Slave Info is not found"));
}

TEST_F(DataManagerTest, SlaveFollowsTheFirstActiveMaster)
{
    UseMtrAndExpModeTuning(0, 1);
    SetRole(4, StatsAlgoRoleSlave);
    AECMultiCamInfo    peers[4] = {};
    StatsPeerInfoCombo combo    = {};
    combo.needSync              = TRUE;
    const UINT32        ids[4]   = {4, 9, 3, 2};
    const StatsAlgoRole roles[4] = {StatsAlgoRoleSlave, StatsAlgoRoleMaster, StatsAlgoRoleMaster, StatsAlgoRoleMaster};
    const BOOL          active[4] = {TRUE, FALSE, TRUE, TRUE};
    for (UINT32 i = 0; i < 4; i++)
    {
        combo.isActive[i]  = active[i];
        combo.cameraId[i]  = ids[i];
        combo.algoRole[i]  = roles[i];
        combo.pPeerInfo[i] = &peers[i];
    }
    const AECMultiCamInfo* pPeer = nullptr;
    EXPECT_EQ(AecSuccess, Store().MapMultiCamPeerInfo(&combo, &pPeer));
    EXPECT_EQ(&peers[2], pPeer);
    EXPECT_EQ(1u, m_logs.Count("CID:4, Role:SLAVE, Following Master CamID:3"));

    combo.algoRole[2] = StatsAlgoRoleSlave;
    combo.algoRole[3] = StatsAlgoRoleSlave;
    EXPECT_EQ(AecError, Store().MapMultiCamPeerInfo(&combo, &pPeer));
    EXPECT_EQ(1u, m_logs.Count("CID:4, Master Info is not found"));
}

TEST_F(DataManagerTest, DefaultRoleSelectsNoPeer)
{
    StatsPeerInfoCombo combo = {};
    AECMultiCamInfo    peer  = {};
    combo.needSync           = TRUE;
    combo.isActive[0]        = TRUE;
    combo.cameraId[0]        = 1;
    combo.pPeerInfo[0]       = &peer;
    const AECMultiCamInfo* pPeer = nullptr;
    EXPECT_EQ(AecError, Store().MapMultiCamPeerInfo(&combo, &pPeer));
    EXPECT_EQ(nullptr, pPeer);
}

TEST_F(DataManagerTest, OTPCalibrationGivesTheCompensationMultiplierOnce)
{
    AECAlgoDCCalibrationInfo calibration  = {};
    calibration.relative.brightnessRatio  = 2.0F;
    calibration.relative.slaveGain        = 3.0F;
    calibration.relative.slaveTimeUnit    = 4.0F;
    calibration.relative.masterGain       = 1.5F;
    calibration.relative.masterTimeUnit   = 2.0F;

    AECAlgoDCCalibrationInfo zero = calibration;
    zero.relative.masterGain      = 0.0F;
    EXPECT_EQ(AecError, Store().setDCCalibrationInfo(zero));
    EXPECT_EQ(1u, m_logs.Count("Incorrect OTP data"));
    zero.relative.masterGain = std::numeric_limits<FLOAT>::quiet_NaN();
    EXPECT_EQ(AecError, Store().setDCCalibrationInfo(zero));
    EXPECT_EQ(2u, m_logs.Count("Incorrect OTP data"));

    // (3 x 4) / (1.5 x 2 x 2)
    EXPECT_EQ(AecSuccess, Store().setDCCalibrationInfo(calibration));
    EXPECT_EQ(AECAlgoDualcamOTPSet, Store().getDCCalibrationInfo().OTPStatus);
    EXPECT_FLOAT_EQ(2.0F, Store().getDCCalibrationInfo().OTPExpCompMultiplier);
    EXPECT_EQ(1u, m_logs.Count("AEC-OTP calibrated compensation multiplier:2.000000"));

    calibration.relative.slaveGain = 6.0F;
    EXPECT_EQ(AecSuccess, Store().setDCCalibrationInfo(calibration));
    EXPECT_EQ(1u, m_logs.Count("OTP data already set, skip update"));
    EXPECT_FLOAT_EQ(2.0F, Store().getDCCalibrationInfo().OTPExpCompMultiplier);

    // Own calibration wins over the peer's.
    AECMultiCamInfo peer              = {};
    peer.OTPInfo.OTPStatus            = AECAlgoDualcamOTPSet;
    peer.OTPInfo.OTPExpCompMultiplier = 4.0F;
    Store().setPeerInfo(&peer);
    EXPECT_EQ(AECAlgoDualcamOTPSet, Store().getDCCalibrationInfo().OTPStatus);
    EXPECT_FLOAT_EQ(2.0F, Store().getDCCalibrationInfo().OTPExpCompMultiplier);
}

TEST_F(DataManagerTest, PeerCalibrationIsUsedOnlyWhenSetWithAPositiveMultiplier)
{
    AECMultiCamInfo peer              = {};
    peer.OTPInfo.OTPStatus            = AECAlgoDualcamOTPSetUsingPeer;
    peer.OTPInfo.OTPExpCompMultiplier = 4.0F;
    Store().setPeerInfo(&peer);
    EXPECT_EQ(AECAlgoDualcamOTPInvalid, Store().getDCCalibrationInfo().OTPStatus);
    peer.OTPInfo.OTPStatus            = AECAlgoDualcamOTPSet;
    peer.OTPInfo.OTPExpCompMultiplier = 0.0F;
    Store().setPeerInfo(&peer);
    EXPECT_EQ(AECAlgoDualcamOTPInvalid, Store().getDCCalibrationInfo().OTPStatus);
    Store().setPeerInfo(nullptr);
    EXPECT_EQ(nullptr, Store().getPeerInfo());
}

} // namespace
