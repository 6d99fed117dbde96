// Drives libaecore.so through dlopen and its C ABI only, as a camera framework would.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>

#include "chostharness.h"

namespace
{

const HostSensorConfig kSensor = DefaultSensor(0);

class HostTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string error;
        ASSERT_TRUE(m_harness.Load(AECORE_LIBRARY_PATH, &error)) << error;
        m_harness.ClearCoreLog();
    }

    void TearDown() override
    {
        for (UINT32 camera = 0; camera < 8; camera++)
        {
            LYRAECAlgorithm* pAlgo = nullptr;
            if (VelaResultSuccess == m_harness.Create(camera, &pAlgo))
            {
                m_harness.Destroy(pAlgo, camera, true);
            }
        }
    }

    LYRAECAlgorithm* CreateStreaming(UINT32 camera)
    {
        LYRAECAlgorithm* pAlgo = nullptr;
        EXPECT_EQ(VelaResultSuccess, m_harness.Create(camera, &pAlgo));
        HostSensorConfig sensor = kSensor;
        sensor.cameraId         = camera;
        EXPECT_EQ(VelaResultSuccess, m_harness.Configure(pAlgo, sensor, AECAlgoOperationModeStreaming));
        HostFrameResult start = {};
        EXPECT_EQ(VelaResultSuccess, m_harness.QueryStartExposure(pAlgo, &start));
        return pAlgo;
    }

    bool CoreLogContains(const std::string& text) const
    {
        const std::vector<std::string>& log = m_harness.CoreLog();
        return std::any_of(log.begin(), log.end(),
                           [&](const std::string& line) { return std::string::npos != line.find(text); });
    }

    CHostHarness m_harness;
};

} // namespace

TEST_F(HostTest, EntryFillsTheCallbackTableAndAsksForTheVendorTagBase)
{
    const LyrAECAlgorithmCallbacks& callbacks = m_harness.Callbacks();
    EXPECT_EQ(48U, callbacks.size);
    EXPECT_NE(nullptr, callbacks.pfnGetCapabilities);
    EXPECT_NE(nullptr, callbacks.pfnCreate);
    EXPECT_NE(nullptr, callbacks.pfnSetAlgoInterface);
    EXPECT_EQ(nullptr, callbacks.pfnQueryVendorTag);
    EXPECT_GE(m_harness.VendorTagBaseCalls(), 1U);
}

TEST_F(HostTest, CapabilitiesQueryLeavesTheRecordAlone)
{
    LyrAlgorithmCapsInfo caps = {77, 0x5A5A};
    EXPECT_EQ(VelaResultSuccess, m_harness.Callbacks().pfnGetCapabilities(&caps));
    EXPECT_EQ(77U, caps.size);
    EXPECT_EQ(0x5A5AU, caps.algorithmCapsMask);
}

TEST_F(HostTest, SecondCreateForOneCameraReturnsTheSameInstance)
{
    LYRAECAlgorithm* pFirst  = nullptr;
    LYRAECAlgorithm* pSecond = nullptr;
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(2, &pFirst));
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(2, &pSecond));
    EXPECT_EQ(pFirst, pSecond);
    EXPECT_NE(nullptr, pFirst->AECProcess);
    EXPECT_NE(nullptr, pFirst->AECGetParam);
    EXPECT_NE(nullptr, pFirst->AECSetParam);
    EXPECT_NE(nullptr, pFirst->AECDestroy);
    EXPECT_EQ(nullptr, pFirst->AECGetFeatureCapability);
}

TEST_F(HostTest, CreateInstallsTheHostLogger)
{
    LYRAECAlgorithm* pAlgo = nullptr;
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(0, &pAlgo));
    auto* pLogger = static_cast<StatsLoggingFunction*>(m_harness.Resolve("gStatsLogger"));
    ASSERT_NE(nullptr, pLogger);
    EXPECT_EQ(&HostLogger, *pLogger);
}

TEST_F(HostTest, ExportedDataIsReachable)
{
    auto* pCalib = static_cast<const AECLEDSettingPair*>(m_harness.Resolve("s_fakeFlashCalib"));
    ASSERT_NE(nullptr, pCalib);
    const INT32 expected[6][2] = {{4, 0}, {4, 5}, {4, 10}, {2, 0}, {2, 5}, {2, 10}};
    for (int i = 0; i < 6; i++)
    {
        EXPECT_EQ(expected[i][0], pCalib[i].LED1Setting);
        EXPECT_EQ(expected[i][1], pCalib[i].LED2Setting);
    }
    EXPECT_NE(nullptr, m_harness.Resolve("g_cameraId"));
}

TEST_F(HostTest, CameraIdBeyondTheTableIsRefused)
{
    LYRAECAlgorithm* pAlgo = reinterpret_cast<LYRAECAlgorithm*>(0x1);
    EXPECT_NE(VelaResultSuccess, m_harness.Create(8, &pAlgo));
    EXPECT_EQ(nullptr, pAlgo);
}

TEST_F(HostTest, FramesAreProcessedAfterTheStartQueryAndTheOutputListIsWalked)
{
    LYRAECAlgorithm* pAlgo = CreateStreaming(0);
    HostFrameResult  frame = {};
    for (UINT64 id = 1; id <= 5; id++)
    {
        ASSERT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, id, 100.0F, &frame)) << "frame " << id;
    }
    EXPECT_EQ(3U, frame.exposureSet.exposureInfoOutputCount);
    EXPECT_EQ(56U, frame.exposureSet.exposureInfoOutputSize);
    for (UINT32 i = 0; i < 3; i++)
    {
        EXPECT_EQ(static_cast<AECAlgoExposureType>(i), frame.exposures[i].exposureType);
    }
    ASSERT_NE(nullptr, frame.pLDMQueue);
    EXPECT_EQ(0U, frame.pLDMQueue->numberOfSetCmd);
    EXPECT_GE(frame.frameControl.LEDInfluenceRatio, 1.0F);
    EXPECT_GE(frame.frameControl.predictiveGain, 1.0F);
}

TEST_F(HostTest, StartQueryAnswersWithAnExposureFromTheTable)
{
    LYRAECAlgorithm* pAlgo = nullptr;
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(0, &pAlgo));
    ASSERT_EQ(VelaResultSuccess, m_harness.Configure(pAlgo, kSensor, AECAlgoOperationModeStreaming));
    HostFrameResult start = {};
    ASSERT_EQ(VelaResultSuccess, m_harness.QueryStartExposure(pAlgo, &start));

    // The built-in tuning starts at index 300: 4x gain with the time grown from the 13.8 ms knee to 17.8 ms. The
    // default 60 Hz antibanding puts the time on the flicker grid (two 8.33 ms periods) and keeps the exposure
    // with gain.
    const FLOAT tableExposure = 17817260.0F * 4.0F;
    for (UINT32 i = 0; i < 3; i++)
    {
        const AECAlgoExposureData& exposure = start.exposures[i].exposureData;
        EXPECT_EQ(16666666u, exposure.exposureTime) << "entry " << i;
        EXPECT_NEAR(tableExposure, static_cast<FLOAT>(exposure.exposureTime) * exposure.linearGain,
                    tableExposure * 1e-3F) << "entry " << i;
        EXPECT_FLOAT_EQ(1.0F, exposure.fnumber) << "entry " << i;
        EXPECT_FLOAT_EQ(static_cast<FLOAT>(exposure.exposureTime) * exposure.linearGain, exposure.sensitivity)
            << "entry " << i;
    }
}

TEST_F(HostTest, FrameBeforeTheStartQueryIsRefused)
{
    LYRAECAlgorithm* pAlgo = nullptr;
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(1, &pAlgo));
    HostSensorConfig sensor = kSensor;
    sensor.cameraId         = 1;
    ASSERT_EQ(VelaResultSuccess, m_harness.Configure(pAlgo, sensor, AECAlgoOperationModeStreaming));
    HostFrameResult frame = {};
    EXPECT_EQ(VelaResultEFailed, m_harness.ProcessFrame(pAlgo, sensor, 1, 100.0F, &frame));
    EXPECT_TRUE(CoreLogContains("Need to always query start exposure before sending in stats for each opMode!"));
}

TEST_F(HostTest, FrameIdsMustRise)
{
    LYRAECAlgorithm* pAlgo = CreateStreaming(0);
    HostFrameResult  frame = {};
    ASSERT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, 10, 100.0F, &frame));
    EXPECT_EQ(VelaResultEFailed, m_harness.ProcessFrame(pAlgo, kSensor, 10, 100.0F, &frame));
    EXPECT_EQ(VelaResultEFailed, m_harness.ProcessFrame(pAlgo, kSensor, 9, 100.0F, &frame));
    EXPECT_TRUE(CoreLogContains("Failed to save the stats frame ID to history!"));
    EXPECT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, 11, 100.0F, &frame));
}

TEST_F(HostTest, FullCallingOrderOfACameraSession)
{
    LYRAECAlgorithm* pAlgo = CreateStreaming(0);
    HostFrameResult  frame = {};
    for (UINT64 id = 1; id <= 30; id++)
    {
        ASSERT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, id, 100.0F, &frame)) << "frame " << id;
    }

    // A frame out of order is refused and leaves the session as it was.
    EXPECT_EQ(VelaResultEFailed, m_harness.ProcessFrame(pAlgo, kSensor, 15, 100.0F, &frame));
    EXPECT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, 31, 100.0F, &frame));

    // A still capture between frames; streaming goes on afterwards.
    HostFrameResult       snapshot = {};
    AECAlgoSnapshotConfig config   = {AECAlgoSnapshotNormal, FALSE, 0};
    EXPECT_EQ(VelaResultSuccess, m_harness.QuerySnapshotExposure(pAlgo, config, &snapshot));
    EXPECT_EQ(3U, snapshot.exposureSet.exposureInfoOutputCount);
    EXPECT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, 32, 100.0F, &frame));

    // A start query is only taken right after a mode change.
    HostFrameResult start = {};
    EXPECT_EQ(VelaResultEFailed, m_harness.QueryStartExposure(pAlgo, &start));

    // A refused transition is not reported to the host, and the mode stays as it was.
    AECAlgoOperationModeType mode = AECAlgoOperationModeFastAEC;
    EXPECT_EQ(VelaResultSuccess, m_harness.SetParam(pAlgo, AECAlgoSetParamOperationMode, &mode, sizeof(mode)));
    EXPECT_TRUE(CoreLogContains("Error: cannot set fast  AEC without going to Init mode first!"));
    EXPECT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, 33, 100.0F, &frame));

    // A real mode change needs a new start query before frames are taken again.
    mode = AECAlgoOperationModeInit;
    EXPECT_EQ(VelaResultSuccess, m_harness.SetParam(pAlgo, AECAlgoSetParamOperationMode, &mode, sizeof(mode)));
    mode = AECAlgoOperationModeStreaming;
    EXPECT_EQ(VelaResultSuccess, m_harness.SetParam(pAlgo, AECAlgoSetParamOperationMode, &mode, sizeof(mode)));
    EXPECT_EQ(VelaResultEFailed, m_harness.ProcessFrame(pAlgo, kSensor, 34, 100.0F, &frame));
    EXPECT_EQ(VelaResultSuccess, m_harness.QueryStartExposure(pAlgo, &start));
    EXPECT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, 1, 100.0F, &frame));
}

TEST_F(HostTest, StartQueryInInitModeIsRefused)
{
    LYRAECAlgorithm* pAlgo = nullptr;
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(3, &pAlgo));
    HostFrameResult start = {};
    EXPECT_EQ(VelaResultEFailed, m_harness.QueryStartExposure(pAlgo, &start));
}

TEST_F(HostTest, DestroyWithoutTheCloseBitKeepsTheInstance)
{
    LYRAECAlgorithm* pAlgo = CreateStreaming(0);
    m_harness.Destroy(pAlgo, 0, false);
    HostFrameResult frame = {};
    EXPECT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, 1, 100.0F, &frame));
    LYRAECAlgorithm* pAgain = nullptr;
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(0, &pAgain));
    EXPECT_EQ(pAlgo, pAgain);
}

TEST_F(HostTest, DestroyWithTheCloseBitEndsTheInstance)
{
    LYRAECAlgorithm* pAlgo = CreateStreaming(0);
    HostFrameResult  frame = {};
    ASSERT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, 1, 100.0F, &frame));
    m_harness.Destroy(pAlgo, 0, true);

    // A new instance starts in Init mode: its first frame needs a fresh start query.
    LYRAECAlgorithm* pNew = nullptr;
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(0, &pNew));
    ASSERT_EQ(VelaResultSuccess, m_harness.SetParam(pNew, AECAlgoSetParamOperationMode,
                                                    &(const AECAlgoOperationModeType&)AECAlgoOperationModeStreaming,
                                                    sizeof(AECAlgoOperationModeType)));
    EXPECT_EQ(VelaResultEFailed, m_harness.ProcessFrame(pNew, kSensor, 2, 100.0F, &frame));
}

TEST_F(HostTest, EmptySetListIsRefusedWithInvalidPointer)
{
    LYRAECAlgorithm* pAlgo = nullptr;
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(0, &pAlgo));
    AECAlgoSetParamList empty = {nullptr, 0};
    EXPECT_EQ(VelaResultEInvalidPointer, pAlgo->AECSetParam(pAlgo, &empty));
    EXPECT_EQ(VelaResultEInvalidPointer, pAlgo->AECProcess(pAlgo, nullptr, nullptr));
    EXPECT_EQ(VelaResultEInvalidPointer, pAlgo->AECGetParam(pAlgo, nullptr));
}

TEST_F(HostTest, CamerasRunSideBySideOnTheirOwnThreads)
{
    LYRAECAlgorithm* pInstances[2] = {CreateStreaming(0), CreateStreaming(1)};
    ASSERT_NE(pInstances[0], pInstances[1]);

    KDKResult failures[2] = {0, 0};
    // Set-up ran on this thread; each camera thread only builds its own frames and processes them.
    auto run = [&](UINT32 camera) {
        CHostHarness     local;
        HostSensorConfig sensor = kSensor;
        sensor.cameraId         = camera;
        HostFrameResult  frame  = {};
        for (UINT64 id = 1; id <= 50; id++)
        {
            failures[camera] += (VelaResultSuccess != local.ProcessFrame(pInstances[camera], sensor, id, 90.0F, &frame));
        }
    };
    std::thread first(run, 0);
    std::thread second(run, 1);
    first.join();
    second.join();
    EXPECT_EQ(0, failures[0]);
    EXPECT_EQ(0, failures[1]);
}

namespace
{
// A fixed scene: the grey level a frame shows is proportional to the exposure the sensor applied to it. At the
// built-in start exposure (index 300: about 17.8 ms at 4x gain) the scene shows grey 50.
FLOAT SceneGrey(const AECAlgoExposureData& applied)
{
    constexpr FLOAT kRadiance = 50.0F / (17817260.0F * 4.0F); // grey level per nanosecond at unit gain
    return std::min(kRadiance * static_cast<FLOAT>(applied.exposureTime) * applied.linearGain, 255.0F);
}
} // namespace

TEST_F(HostTest, FixedSceneGivesConstantTargetExposure)
{
    LYRAECAlgorithm* pAlgo = CreateStreaming(0);
    HostFrameResult  start = {};
    ASSERT_EQ(VelaResultSuccess, m_harness.QueryStartExposure(pAlgo, &start));

    // The sensor applies an exposure two frames after the library chose it.
    std::vector<AECAlgoExposureData> chosen(2, start.exposures[AECAlgoExposureSafe].exposureData);
    HostFrameResult                  frame = {};
    for (UINT64 id = 1; id <= 60; id++)
    {
        const FLOAT grey = SceneGrey(chosen[chosen.size() - 2]);
        ASSERT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, id, grey, &frame)) << "frame " << id;
        chosen.push_back(frame.exposures[AECAlgoExposureSafe].exposureData);
    }

    // Metering of a consistent scene lands on the same target whatever exposure a frame had, so the camera asks
    // for the same exposure frame after frame (within the quantisation of the grid values) and the scene stays
    // at the target.
    const FLOAT settled = chosen.back().sensitivity;
    ASSERT_GT(settled, 0.0F);
    for (size_t i = 2; i < chosen.size(); i++)
    {
        EXPECT_NEAR(settled, chosen[i].sensitivity, settled * 0.03F) << "frame " << i - 1;
    }
    EXPECT_NEAR(50.0F, frame.frameInfo.frameLuma, 5.0F);
    // The scene meets luma 50 at about the start index, 300: that is its lux index.
    EXPECT_NEAR(300.0F, frame.frameControl.luxIndex, 5.0F);
}
