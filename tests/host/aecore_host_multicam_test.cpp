// Two cameras of one device exchange their exposure records through the host and run on their own threads.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>

#include "chostharness.h"

namespace
{

bool LogContains(const CHostHarness& harness, const std::string& text)
{
    const std::vector<std::string>& log = harness.CoreLog();
    return std::any_of(log.begin(), log.end(), [&](const std::string& line) { return std::string::npos != line.find(text); });
}

} // namespace

TEST(HostMultiCamera, MasterAndSlaveExchangePeerInfoAndRunOnTheirOwnThreads)
{
    CHostHarness harness;
    std::string  error;
    ASSERT_TRUE(harness.Load(AECORE_LIBRARY_PATH, &error)) << error;
    harness.ClearCoreLog();

    const HostSensorConfig sensors[2] = {DefaultSensor(0, StatsAlgoRoleMaster), DefaultSensor(1, StatsAlgoRoleSlave)};
    LYRAECAlgorithm*       pAlgos[2]  = {};
    VOID*                  pInfos[2]  = {};
    for (UINT32 camera = 0; camera < 2; camera++)
    {
        ASSERT_EQ(VelaResultSuccess, harness.Create(camera, &pAlgos[camera]));
        ASSERT_EQ(VelaResultSuccess, harness.Configure(pAlgos[camera], sensors[camera], AECAlgoOperationModeStreaming));
        HostFrameResult start = {};
        ASSERT_EQ(VelaResultSuccess, harness.QueryStartExposure(pAlgos[camera], &start));
        ASSERT_EQ(VelaResultSuccess, harness.QueryPeerInfo(pAlgos[camera], &pInfos[camera]));
        ASSERT_NE(nullptr, pInfos[camera]);
    }
    EXPECT_NE(pInfos[0], pInfos[1]);

    // The host tells each camera about both pipelines; each picks its peer from the list.
    StatsPeerInfoCombo combo = {};
    combo.needSync           = TRUE;
    for (UINT32 camera = 0; camera < 2; camera++)
    {
        combo.isActive[camera]  = TRUE;
        combo.cameraId[camera]  = camera;
        combo.algoRole[camera]  = sensors[camera].role;
        combo.pPeerInfo[camera] = pInfos[camera];
    }
    EXPECT_EQ(VelaResultSuccess, harness.SetPeerInfo(pAlgos[0], combo));
    EXPECT_EQ(VelaResultSuccess, harness.SetPeerInfo(pAlgos[1], combo));
    EXPECT_TRUE(LogContains(harness, "AEC need sync: 1"));
    EXPECT_TRUE(LogContains(harness, "PeerPipeline:1 CamID:1 Active:1 Role:2"));

    // The roles came before the tuning and were lost; after the (fake) tuning the slave's role is taken.
    const std::string following = "CID:1, Role:SLAVE, Following Master CamID:0";
    EXPECT_FALSE(LogContains(harness, following));
    StatsCameraInfo slaveInfo = {StatsAlgoRoleSlave, 1};
    EXPECT_EQ(VelaResultSuccess, harness.SetParam(pAlgos[1], AECAlgoSetParamCameraInfo, &slaveInfo, sizeof(slaveInfo)));
    EXPECT_EQ(VelaResultSuccess, harness.SetPeerInfo(pAlgos[1], combo));
    EXPECT_TRUE(LogContains(harness, following));

    KDKResult failures[2] = {0, 0};
    auto      run         = [&](UINT32 camera) {
        CHostHarness    local;
        HostFrameResult frame = {};
        for (UINT64 id = 1; id <= 60; id++)
        {
            failures[camera] += (VelaResultSuccess != local.ProcessFrame(pAlgos[camera], sensors[camera], id, 80.0F, &frame));
        }
    };
    std::thread master(run, 0);
    std::thread slave(run, 1);
    master.join();
    slave.join();
    EXPECT_EQ(0, failures[0]);
    EXPECT_EQ(0, failures[1]);

    // Each camera's record stays where the peer was told it is.
    for (UINT32 camera = 0; camera < 2; camera++)
    {
        VOID* pInfo = nullptr;
        EXPECT_EQ(VelaResultSuccess, harness.QueryPeerInfo(pAlgos[camera], &pInfo));
        EXPECT_EQ(pInfos[camera], pInfo);
        harness.Destroy(pAlgos[camera], camera, true);
    }
}
