// Tests of the set-parameter translator: the size table, the pointer-only and empty types, and the sensor conversion.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "aec/wrapper/caecsetparamtranslator.h"
#include "unit/wrapper/wrapperlogcapture.h"

namespace
{

struct SizedType
{
    AECAlgoSetParamType type;
    UINT32              size;
};

// Every type that copies a record, with the payload size the host must send.
const SizedType SizeTable[] = {
    {AECAlgoSetParamPipelineDelay, 1},
    {AECAlgoSetParamOperationMode, 4},
    {AECAlgoSetParamMeteringMode, 4},
    {AECAlgoSetParamExposureCompensation, 4},
    {AECAlgoSetParamFlickerCompensation, 4},
    {AECAlgoSetParamAECLock, 4},
    {AECAlgoSetParamLEDMode, 4},
    {AECAlgoSetParamFlashMeasurement, 4},
    {AECAlgoSetParamDebugDataEnable, 4},
    {AECAlgoSetParamFlashMaximumCurrent, 4},
    {AECAlgoSetParamMultiExpSensorMode, 4},
    {AECAlgoSetParamIsDualCamera, 4},
    {AECAlgoSetParamControlPostRawSensitivityBoost, 4},
    {AECAlgoSetParamDisableADRC, 4},
    {AECAlgoSetParamConvergenceSpeed, 4},
    {AECAlgoSetParamFPSRange, 8},
    {AECAlgoSetParamCameraInfo, 8},
    {AECAlgoSetParamTouchROI, 16},
    {AECAlgoSetParamCropWindow, 16},
    {AECAlgoSetParamStartUpExpSensitivity, 20},
    {AECAlgoSetParamFlashCalibrationData, 24},
    {AECAlgoSetParamAWBState, 28},
    {AECAlgoSetParamSetDiagTestConfig, 28},
    {AECAlgoSetParamDualcamCalibrationInfo, 28},
    {AECAlgoSetParamManualSetting, 32},
    {AECAlgoSetParamLDMStateQueue, 40},
    {AECAlgoSetParamOverrideSetting, 48},
    {AECAlgoSetParamPeerInfo, 88},
    {AECAlgoSetParamUnstabilizedFaceROI, 400},
    {AECAlgoSetParamGyroInfo, 664},
    {AECAlgoSetParamCustomExposureTable, 1024},
    {AECAlgoSetParamCustomMeteringTable, 1028},
};

std::vector<UINT8> Pattern(size_t size)
{
    std::vector<UINT8> bytes(size);
    for (size_t index = 0; index < size; ++index)
    {
        bytes[index] = static_cast<UINT8>(0xA0 + (index % 31));
    }
    return bytes;
}

bool IsZero(const void* pData, size_t size)
{
    const UINT8* pBytes = static_cast<const UINT8*>(pData);
    for (size_t index = 0; index < size; ++index)
    {
        if (0 != pBytes[index])
        {
            return false;
        }
    }
    return true;
}

AECAlgoSetParam Entry(AECAlgoSetParamType type, void* pData, UINT32 size)
{
    AECAlgoSetParam entry   = {};
    entry.pAECSetParam      = pData;
    entry.sizeOfAECSetParam = size;
    entry.setParamType      = type;
    return entry;
}

class SetParamSizeTest : public ::testing::TestWithParam<SizedType>
{
protected:
    CAECSetParamTranslator m_translator;
};

} // namespace

TEST_P(SetParamSizeTest, ExactSizeCopiesThePayload)
{
    const SizedType    sized   = GetParam();
    std::vector<UINT8> payload = Pattern(sized.size);
    AECAlgoSetParam    entry   = Entry(sized.type, payload.data(), sized.size);

    const AECCoreSetParam* pParam = m_translator.translate(&entry);
    ASSERT_NE(nullptr, pParam);
    EXPECT_EQ(sized.type, pParam->paramType);
    EXPECT_EQ(0, std::memcmp(&pParam->data, payload.data(), sized.size));
}

TEST_P(SetParamSizeTest, ShortSizeReachesTheCoreAsZeros)
{
    const SizedType    sized   = GetParam();
    std::vector<UINT8> payload = Pattern(sized.size);
    AECAlgoSetParam    entry   = Entry(sized.type, payload.data(), sized.size - 1);

    // A previous call must not leave data behind either.
    AECAlgoSetParam full = Entry(sized.type, payload.data(), sized.size);
    ASSERT_NE(nullptr, m_translator.translate(&full));

    const AECCoreSetParam* pParam = m_translator.translate(&entry);
    ASSERT_NE(nullptr, pParam);
    EXPECT_EQ(sized.type, pParam->paramType);
    EXPECT_TRUE(IsZero(&pParam->data, sizeof(pParam->data)));
}

TEST_P(SetParamSizeTest, LargerSizeAbortsOnTheSizeContract)
{
    const SizedType    sized   = GetParam();
    std::vector<UINT8> payload = Pattern(sized.size + 1);
    AECAlgoSetParam    entry   = Entry(sized.type, payload.data(), sized.size + 1);
    EXPECT_DEATH(m_translator.translate(&entry), "copySize >= srcSize");
}

INSTANTIATE_TEST_SUITE_P(AllCopiedTypes, SetParamSizeTest, ::testing::ValuesIn(SizeTable),
                         [](const ::testing::TestParamInfo<SizedType>& info) {
                             return "Type" + std::to_string(info.param.type) + "Size" + std::to_string(info.param.size);
                         });

TEST(CAECSetParamTranslatorTest, ManualSettingOf31BytesIsAnAllZeroManualSetting)
{
    CAECSetParamTranslator translator;
    AECAlgoManualSetting   manual = {};
    manual.manualMode             = AECAlgoModeManualFull;
    manual.ISOValue               = 800;
    manual.exposureTime           = 33000000;
    manual.gain                   = 4.0F;
    manual.fnumber                = 2.0F;
    AECAlgoSetParam entry         = Entry(AECAlgoSetParamManualSetting, &manual, 31);

    const AECCoreSetParam* pParam = translator.translate(&entry);
    ASSERT_NE(nullptr, pParam);
    EXPECT_EQ(AECAlgoSetParamManualSetting, pParam->paramType);
    EXPECT_EQ(AECAlgoModeAuto, pParam->data.manualSetting.manualMode);
    EXPECT_EQ(0U, pParam->data.manualSetting.ISOValue);
    EXPECT_EQ(0U, pParam->data.manualSetting.exposureTime);
    EXPECT_EQ(0.0F, pParam->data.manualSetting.gain);
    EXPECT_EQ(0.0F, pParam->data.manualSetting.fnumber);
    EXPECT_EQ(0U, pParam->data.manualSetting.prioMaxExpTime);
}

TEST(CAECSetParamTranslatorTest, TuningDataPassesAsPointerWithoutSizeCheck)
{
    CAECSetParamTranslator translator;
    StatsTuningData        tuning = {};
    AECAlgoSetParam        entry  = Entry(AECAlgoSetParamSorentaData, &tuning, 0);

    const AECCoreSetParam* pParam = translator.translate(&entry);
    ASSERT_NE(nullptr, pParam);
    EXPECT_EQ(AECAlgoSetParamSorentaData, pParam->paramType);
    EXPECT_EQ(&tuning, pParam->data.pTuningData);
}

TEST(CAECSetParamTranslatorTest, TypesWithoutPayloadReachTheCoreWithZeroData)
{
    const AECAlgoSetParamType emptyTypes[] = {
        AECAlgoSetParamExpTableRange,   AECAlgoSetParamFaceROI,          AECAlgoSetParamStatsCapability,
        AECAlgoSetParamDCGMode,         AECAlgoSetParamIRLedState,       AECAlgoSetParamIRLedSystemConfig,
        AECAlgoSetParamFlashInlineCalibrationData, AECAlgoSetParamTrackerROI, AECAlgoSetParamBYRCamera,
        AECAlgoSetParamDecompandSystemConfig,      static_cast<AECAlgoSetParamType>(99),
    };
    CAECSetParamTranslator translator;
    std::vector<UINT8>     payload = Pattern(2048);
    for (AECAlgoSetParamType type : emptyTypes)
    {
        // Even an oversized payload is ignored: nothing is copied, so nothing is checked.
        AECAlgoSetParam        entry  = Entry(type, payload.data(), 2048);
        const AECCoreSetParam* pParam = translator.translate(&entry);
        ASSERT_NE(nullptr, pParam) << "type " << type;
        EXPECT_EQ(type, pParam->paramType);
        EXPECT_TRUE(IsZero(&pParam->data, sizeof(pParam->data))) << "type " << type;
    }
}

TEST(CAECSetParamTranslatorTest, NullParameterFails)
{
    WrapperLogCapture      logs;
    CAECSetParamTranslator translator;
    EXPECT_EQ(nullptr, translator.translate(nullptr));
    EXPECT_TRUE(logs.Has("Set parameter is NULL"));
}

TEST(CAECSetParamTranslatorTest, MissingPayloadOfTheRightSizeFailsWithALog)
{
    WrapperLogCapture      logs;
    CAECSetParamTranslator translator;
    AECAlgoSetParam        entry = Entry(AECAlgoSetParamFPSRange, nullptr, sizeof(AECAlgoFPSRange));
    EXPECT_EQ(nullptr, translator.translate(&entry));
    EXPECT_TRUE(logs.Has("Set parameter 8 has no data"));

    // A short missing payload is the ordinary zero case.
    entry.sizeOfAECSetParam = 0;
    EXPECT_NE(nullptr, translator.translate(&entry));
}

namespace
{

StatsSensorInfo SensorInfo()
{
    StatsSensorInfo info     = {};
    info.currentMaxLineCount = 2000;
    info.currentMinLineCount = 3;
    info.maxGain             = 16.0F;
    info.minGain             = 1.5F;
    // 1024 / 1048576 s: a line time of exactly 2^-10 s, so every product below is exact.
    info.pixelClock          = 1048576;
    info.pixelClockPerLine   = 1024;
    info.sensorResWidth      = 4000;
    info.sensorResHeight     = 3000;
    info.fNumber             = 1.8F;
    info.rollingShutterSkew  = 12345;
    info.sensorAECCapstime   = {11, 22, 33, 44, 55, 66};
    return info;
}

} // namespace

TEST(CAECSetParamTranslatorTest, SensorInfoBecomesExposureLimits)
{
    CAECSetParamTranslator translator;
    StatsSensorInfo        sensor = SensorInfo();
    // The sensor record is taken whatever size the entry claims.
    AECAlgoSetParam entry = Entry(AECAlgoSetParamSensorInfo, &sensor, 0);

    const AECCoreSetParam* pParam = translator.translate(&entry);
    ASSERT_NE(nullptr, pParam);
    const AECAlgoSensorInfo& info = pParam->data.sensorInfo;
    EXPECT_EQ(1953125000U, info.maximumStreamExpTime); // 2000 lines of 976562.5 ns
    EXPECT_EQ(1953125000U, info.maximumStillExpTime);
    EXPECT_EQ(2929687U, info.minimumStreamExpTime); // 3 lines, truncated
    EXPECT_EQ(2929687U, info.minimumStillExpTime);
    EXPECT_EQ(1.8F, info.fNumber);
    EXPECT_EQ(4000U, info.sensorResWidth);
    EXPECT_EQ(3000U, info.sensorResHeight);
    EXPECT_EQ(4000.0F / 3000.0F, info.statsWindowAspectRatio);
    EXPECT_EQ(1.5F, info.minimumStreamGain);
    EXPECT_EQ(1.5F, info.minimumStillGain);
    EXPECT_EQ(16.0F, info.maximumStreamGain);
    EXPECT_EQ(16.0F, info.maximumStillGain);
    EXPECT_EQ(11U, info.minSEFExpTime);
    EXPECT_EQ(22U, info.maxSEFExpTime);
    EXPECT_EQ(33U, info.minMEFExpTime);
    EXPECT_EQ(44U, info.maxMEFExpTime);
    EXPECT_EQ(55U, info.minLEFExpTime);
    EXPECT_EQ(66U, info.maxLEFExpTime);
    EXPECT_EQ(0U, info.rollingShutterSkew);
    EXPECT_EQ(0U, info.flashDelay);
}

TEST(CAECSetParamTranslatorTest, SensorWithoutMinimumLineCountExposesAtLeastOneLine)
{
    CAECSetParamTranslator translator;
    StatsSensorInfo        sensor = SensorInfo();
    sensor.currentMinLineCount    = 0;
    AECAlgoSetParam entry         = Entry(AECAlgoSetParamSensorInfo, &sensor, sizeof(sensor));

    const AECCoreSetParam* pParam = translator.translate(&entry);
    ASSERT_NE(nullptr, pParam);
    EXPECT_EQ(976562U, pParam->data.sensorInfo.minimumStreamExpTime);
    EXPECT_EQ(976562U, pParam->data.sensorInfo.minimumStillExpTime);
}

TEST(CAECSetParamTranslatorTest, SensorInfoWithoutDataOrPixelClockFails)
{
    WrapperLogCapture      logs;
    CAECSetParamTranslator translator;
    AECAlgoSetParam        entry = Entry(AECAlgoSetParamSensorInfo, nullptr, sizeof(StatsSensorInfo));
    EXPECT_EQ(nullptr, translator.translate(&entry));
    EXPECT_TRUE(logs.Has("Sensor info set parameter has no data"));

    StatsSensorInfo sensor = SensorInfo();
    sensor.pixelClock      = 0;
    entry.pAECSetParam     = &sensor;
    EXPECT_EQ(nullptr, translator.translate(&entry));
    EXPECT_TRUE(logs.Has("Sensor info with pixel clock 0 refused"));
}
