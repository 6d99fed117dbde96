// Checks that C and C++ reach the same exported data objects, and the data's initial contents.
#include <gtest/gtest.h>

#include <thread>

#include "aecore/aecore.h"
#include "unit/abi/abi_c_check.h"

TEST(AecoreExportedDataTest, CAndCppReachTheSameStatsLogger)
{
    EXPECT_EQ(AbiCStatsLoggerAddress(), &gStatsLogger);
}

TEST(AecoreExportedDataTest, CAndCppReachTheSameThreadLocalCameraId)
{
    EXPECT_EQ(AbiCCameraIdAddress(), &g_cameraId);
}

// Each thread has its own camera id, unset until the host writes it.
TEST(AecoreExportedDataTest, CameraIdStartsUnsetOnEveryThread)
{
    const UINT32 savedId = g_cameraId;
    g_cameraId           = 3;
    UINT32  otherThreadId       = 0;
    UINT32* pOtherThreadCAddress = nullptr;
    UINT32* pOtherThreadAddress  = nullptr;
    std::thread worker([&]() {
        otherThreadId        = g_cameraId;
        pOtherThreadCAddress = AbiCCameraIdAddress();
        pOtherThreadAddress  = &g_cameraId;
    });
    worker.join();
    EXPECT_EQ(g_cameraId, 3u);
    g_cameraId = savedId;

    EXPECT_EQ(otherThreadId, 0xFFFFFFFFu);
    EXPECT_EQ(pOtherThreadCAddress, pOtherThreadAddress);
    EXPECT_NE(pOtherThreadAddress, &g_cameraId);
}

TEST(AecoreExportedDataTest, FakeFlashCalibrationHoldsTheSixFallbackLEDSettings)
{
    const AECLEDSettingPair expected[AECORE_FAKE_FLASH_CALIB_COUNT] = {{4, 0}, {4, 5}, {4, 10}, {2, 0}, {2, 5}, {2, 10}};
    ASSERT_EQ(AbiCFakeFlashCalib(), s_fakeFlashCalib);
    for (int i = 0; i < AECORE_FAKE_FLASH_CALIB_COUNT; i++)
    {
        EXPECT_EQ(s_fakeFlashCalib[i].LED1Setting, expected[i].LED1Setting) << "setting " << i;
        EXPECT_EQ(s_fakeFlashCalib[i].LED2Setting, expected[i].LED2Setting) << "setting " << i;
    }
}
