// Real sensor exposures through the C ABI: manual modes, and a slave camera that follows its master on threads.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "chostharness.h"

namespace
{

// The harness's sensor runs 33.3 us lines (10000 clocks at 300 MHz), 1 to 1000 lines: 33.3 us to 33.3 ms.
constexpr UINT64 kSensorMinTime = 33333;

class HostArbitrationTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string error;
        ASSERT_TRUE(m_harness.Load(AECORE_LIBRARY_PATH, &error)) << error;
        m_harness.ClearCoreLog();
        ASSERT_EQ(VelaResultSuccess, m_harness.Create(0, &m_pAlgo));
        ASSERT_EQ(VelaResultSuccess, m_harness.Configure(m_pAlgo, m_sensor, AECAlgoOperationModeStreaming));
        HostFrameResult start = {};
        ASSERT_EQ(VelaResultSuccess, m_harness.QueryStartExposure(m_pAlgo, &start));
    }

    void TearDown() override { m_harness.Destroy(m_pAlgo, 0, true); }

    // Sets a manual request and returns the safe exposure of the fifth frame after it.
    AECAlgoExposureData RunManual(AECAlgoModeType mode, UINT64 time, UINT32 ISO, FLOAT gain)
    {
        AECAlgoManualSetting manual = {};
        manual.manualMode           = mode;
        manual.exposureTime         = time;
        manual.ISOValue             = ISO;
        manual.gain                 = gain;
        EXPECT_EQ(VelaResultSuccess, m_harness.SetParam(m_pAlgo, AECAlgoSetParamManualSetting, &manual, sizeof(manual)));
        HostFrameResult frame = {};
        for (int i = 0; i < 5; i++)
        {
            EXPECT_EQ(VelaResultSuccess, m_harness.ProcessFrame(m_pAlgo, m_sensor, ++m_frameId, 80.0F, &frame));
        }
        return frame.exposures[AECAlgoExposureSafe].exposureData;
    }

    CHostHarness     m_harness;
    HostSensorConfig m_sensor  = DefaultSensor(0);
    LYRAECAlgorithm* m_pAlgo   = nullptr;
    UINT64           m_frameId = 0;
};

} // namespace

TEST_F(HostArbitrationTest, ManualExposureTimeIsAppliedExactly)
{
    const AECAlgoExposureData safe = RunManual(AECAlgoModeManualExpTime, 20000000, 0, 0.0F);
    EXPECT_EQ(20000000U, safe.exposureTime);
    EXPECT_GE(safe.linearGain, 1.0F);
}

TEST_F(HostArbitrationTest, ManualExposureTimeBelowTheSensorIsRaisedToItsMinimum)
{
    const AECAlgoExposureData safe = RunManual(AECAlgoModeManualExpTime, 1000, 0, 0.0F);
    EXPECT_NEAR(static_cast<double>(kSensorMinTime), static_cast<double>(safe.exposureTime), 1.0);
}

TEST_F(HostArbitrationTest, ManualExposureTimeAboveTheSensorKeepsTheRequestedTime)
{
    // The lower bound wins when the request crosses the sensor's maximum: the time stays as commanded.
    const AECAlgoExposureData safe = RunManual(AECAlgoModeManualExpTime, 50000000, 0, 0.0F);
    EXPECT_EQ(50000000U, safe.exposureTime);
}

TEST_F(HostArbitrationTest, ManualISOGivesItsGainExactly)
{
    // ISO 100 is unit gain in the default tuning.
    const AECAlgoExposureData safe = RunManual(AECAlgoModeManualISO, 0, 800, 0.0F);
    EXPECT_FLOAT_EQ(8.0F, safe.linearGain);
}

TEST_F(HostArbitrationTest, ManualGainIsAppliedExactly)
{
    const AECAlgoExposureData safe = RunManual(AECAlgoModeManualGain, 0, 0, 2.5F);
    EXPECT_FLOAT_EQ(2.5F, safe.linearGain);
}

TEST_F(HostArbitrationTest, FullManualGivesTimeAndGainExactly)
{
    const AECAlgoExposureData safe = RunManual(AECAlgoModeManualFull, 10000000, 400, 0.0F);
    EXPECT_EQ(10000000U, safe.exposureTime);
    EXPECT_FLOAT_EQ(4.0F, safe.linearGain);
}

TEST_F(HostArbitrationTest, ManualGainBelowTheSensorIsRaisedToItsMinimum)
{
    const AECAlgoExposureData safe = RunManual(AECAlgoModeManualGain, 0, 0, 0.5F);
    EXPECT_FLOAT_EQ(1.0F, safe.linearGain);
}

TEST_F(HostArbitrationTest, BackToAutoFreesTheExposureAgain)
{
    RunManual(AECAlgoModeManualFull, 10000000, 400, 0.0F);
    const AECAlgoExposureData safe = RunManual(AECAlgoModeAuto, 0, 0, 0.0F);
    EXPECT_FALSE((10000000U == safe.exposureTime) && (4.0F == safe.linearGain));
}

namespace
{

// A camera looking at a scene: the grey level of a frame is proportional to the exposure the sensor applied two
// frames after the library chose it.
struct SceneCamera
{
    LYRAECAlgorithm*                 pAlgo;
    HostSensorConfig                 sensor;
    std::vector<AECAlgoExposureData> chosen;
    UINT64                           frameId;
    KDKResult                        failures;
};

// Grey per (ns x gain) of a scene at relative brightness 1: grey 50 at 17.8 ms and gain 4.
constexpr FLOAT kRadiance = 50.0F / (17817260.0F * 4.0F);

// Both cameras of a device run at one frame rate: each starts a frame when the other does.
class FrameClock
{
public:
    explicit FrameClock(UINT32 cameras) : m_cameras(cameras) {}

    void WaitForFrame()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        const UINT64 generation = m_generation;
        if (++m_waiting == m_cameras)
        {
            m_waiting = 0;
            m_generation++;
            m_tick.notify_all();
            return;
        }
        m_tick.wait(lock, [&] { return generation != m_generation; });
    }

private:
    std::mutex              m_mutex;
    std::condition_variable m_tick;
    UINT32                  m_cameras;
    UINT32                  m_waiting    = 0;
    UINT64                  m_generation = 0;
};

void RunScene(SceneCamera* pCamera, FrameClock* pClock, FLOAT brightness, UINT32 frames)
{
    CHostHarness    local;
    HostFrameResult frame = {};
    for (UINT32 i = 0; i < frames; i++)
    {
        pClock->WaitForFrame();
        const AECAlgoExposureData& applied = pCamera->chosen[pCamera->chosen.size() - 2];
        const FLOAT grey = std::min(brightness * kRadiance * static_cast<FLOAT>(applied.exposureTime) * applied.linearGain,
                                    255.0F);
        pCamera->failures += (VelaResultSuccess != local.ProcessFrame(pCamera->pAlgo, pCamera->sensor,
                                                                      ++pCamera->frameId, grey, &frame));
        pCamera->chosen.push_back(frame.exposures[AECAlgoExposureSafe].exposureData);
    }
}

} // namespace

TEST(HostMultiCameraSync, SlaveExposureFollowsTheMasterThroughASceneChange)
{
    CHostHarness harness;
    std::string  error;
    ASSERT_TRUE(harness.Load(AECORE_LIBRARY_PATH, &error)) << error;

    SceneCamera cameras[2] = {};
    const StatsAlgoRole roles[2] = {StatsAlgoRoleMaster, StatsAlgoRoleSlave};
    VOID* pInfos[2] = {};
    for (UINT32 camera = 0; camera < 2; camera++)
    {
        cameras[camera].sensor = DefaultSensor(camera, roles[camera]);
        ASSERT_EQ(VelaResultSuccess, harness.Create(camera, &cameras[camera].pAlgo));
        ASSERT_EQ(VelaResultSuccess,
                  harness.Configure(cameras[camera].pAlgo, cameras[camera].sensor, AECAlgoOperationModeStreaming));
        // The role is taken once the tuning is there.
        StatsCameraInfo info = {roles[camera], camera};
        ASSERT_EQ(VelaResultSuccess,
                  harness.SetParam(cameras[camera].pAlgo, AECAlgoSetParamCameraInfo, &info, sizeof(info)));
        HostFrameResult start = {};
        ASSERT_EQ(VelaResultSuccess, harness.QueryStartExposure(cameras[camera].pAlgo, &start));
        cameras[camera].chosen.assign(2, start.exposures[AECAlgoExposureSafe].exposureData);
        ASSERT_EQ(VelaResultSuccess, harness.QueryPeerInfo(cameras[camera].pAlgo, &pInfos[camera]));
    }
    StatsPeerInfoCombo combo = {};
    combo.needSync           = TRUE;
    for (UINT32 camera = 0; camera < 2; camera++)
    {
        combo.isActive[camera]  = TRUE;
        combo.cameraId[camera]  = camera;
        combo.algoRole[camera]  = roles[camera];
        combo.pPeerInfo[camera] = pInfos[camera];
    }
    ASSERT_EQ(VelaResultSuccess, harness.SetPeerInfo(cameras[0].pAlgo, combo));
    ASSERT_EQ(VelaResultSuccess, harness.SetPeerInfo(cameras[1].pAlgo, combo));

    // The slave's own view is twice as bright as the master's: left alone it would choose half the exposure.
    const FLOAT slaveView = 2.0F;
    FLOAT       settled[2][2] = {};
    const FLOAT sceneBrightness[2] = {1.0F, 0.25F}; // the light falls by two stops between the phases
    for (UINT32 phase = 0; phase < 2; phase++)
    {
        FrameClock  clock(2);
        std::thread master(RunScene, &cameras[0], &clock, sceneBrightness[phase], 60U);
        std::thread slave(RunScene, &cameras[1], &clock, sceneBrightness[phase] * slaveView, 60U);
        master.join();
        slave.join();
        settled[phase][0] = cameras[0].chosen.back().sensitivity;
        settled[phase][1] = cameras[1].chosen.back().sensitivity;
    }
    EXPECT_EQ(0, cameras[0].failures);
    EXPECT_EQ(0, cameras[1].failures);

    // The master followed the scene: about four times the exposure after the light fell by two stops.
    ASSERT_GT(settled[0][0], 0.0F);
    EXPECT_NEAR(4.0F, settled[1][0] / settled[0][0], 0.8F);
    // The slave follows the master's exposure, not its own brighter view, in both phases.
    for (UINT32 phase = 0; phase < 2; phase++)
    {
        EXPECT_NEAR(1.0F, settled[phase][1] / settled[phase][0], 0.05F) << "phase " << phase;
    }

    for (UINT32 camera = 0; camera < 2; camera++)
    {
        harness.Destroy(cameras[camera].pAlgo, camera, true);
    }
}
