// Tests of the get-parameter translator: the inputs taken per query type and the outputs written per entry type.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "aec/wrapper/caecgetparamtranslator.h"
#include "unit/wrapper/wrapperlogcapture.h"

namespace
{

AECAlgoGetParamInput Input(AECAlgoGetParamInputType type, void* pData, UINT32 size)
{
    AECAlgoGetParamInput input = {};
    input.inputType            = type;
    input.pInputData           = pData;
    input.sizeOfInputData      = size;
    return input;
}

AECAlgoGetParamOutput Output(AECAlgoGetParamOutputType type, void* pData, UINT32 size)
{
    AECAlgoGetParamOutput output = {};
    output.outputType            = type;
    output.pOutputData           = pData;
    output.sizeOfOutputData      = size;
    return output;
}

class CAECGetParamTranslatorTest : public ::testing::Test
{
protected:
    AECMetadataQuery* Query() { return static_cast<AECMetadataQuery*>(m_translator.getDataAddress()); }

    AECMetadataQuery* PrepareInput(AECAlgoGetParamType type, std::vector<AECAlgoGetParamInput>& inputs)
    {
        m_param                                    = {};
        m_param.type                               = type;
        m_param.inputList.pAECGetParamList         = inputs.data();
        m_param.inputList.numberOfAECGetInputParams = static_cast<UINT32>(inputs.size());
        return m_translator.prepareInput(&m_param);
    }

    AECMetadataQuery* PrepareOutput(std::vector<AECAlgoGetParamOutput>& outputs)
    {
        m_param.outputList.pAECOutputList     = outputs.data();
        m_param.outputList.numberOfAECOutputs = static_cast<UINT32>(outputs.size());
        return m_translator.prepareOutput(&m_param);
    }

    CAECGetParamTranslator m_translator;
    AECAlgoGetParam        m_param = {};
};

} // namespace

TEST_F(CAECGetParamTranslatorTest, SnapshotQueryTakesTheLastFittingSnapshotConfig)
{
    AECAlgoSnapshotConfig first  = {AECAlgoSnapshotFlash, TRUE, 2};
    AECAlgoSnapshotConfig second = {AECAlgoSnapshotLLS, FALSE, -1};
    UINT32                iso    = 400;
    std::vector<AECAlgoGetParamInput> inputs = {
        Input(AECAlgoGetParamInputSnapshotType, &first, sizeof(first)),
        Input(AECAlgoGetParamInputISOValue, &iso, sizeof(iso)),
        Input(AECAlgoGetParamInputSnapshotType, &second, sizeof(second)),
        // Short and missing entries are skipped silently.
        Input(AECAlgoGetParamInputSnapshotType, &first, sizeof(first) - 1),
        Input(AECAlgoGetParamInputSnapshotType, nullptr, sizeof(first)),
    };

    WrapperLogCapture logs;
    AECMetadataQuery* pQuery = PrepareInput(AECAlgoGetParamSnapshotExposure, inputs);
    ASSERT_NE(nullptr, pQuery);
    EXPECT_EQ(AECAlgoGetParamSnapshotExposure, pQuery->type);
    EXPECT_EQ(AECAlgoSnapshotLLS, pQuery->input.snapshotConfig.snapshotType);
    EXPECT_EQ(FALSE, pQuery->input.snapshotConfig.bUseAEBracketing);
    EXPECT_EQ(-1, pQuery->input.snapshotConfig.EVVal);
    EXPECT_TRUE(logs.All().empty());
}

TEST_F(CAECGetParamTranslatorTest, GainQueriesTakeTheISOValue)
{
    UINT32                            iso    = 1600;
    std::vector<AECAlgoGetParamInput> inputs = {Input(AECAlgoGetParamInputISOValue, &iso, sizeof(iso))};
    for (AECAlgoGetParamType type : {AECAlgoGetParamGainFromISOPreview, AECAlgoGetParamGainFromISOSnapshot})
    {
        AECMetadataQuery* pQuery = PrepareInput(type, inputs);
        ASSERT_NE(nullptr, pQuery);
        EXPECT_EQ(type, pQuery->type);
        EXPECT_EQ(1600U, pQuery->input.ISOValue);
    }
}

TEST_F(CAECGetParamTranslatorTest, DebugDataQueryTakesTheBufferConfig)
{
    UINT8                  buffer[64];
    AECAlgoDebugDataConfig config = {};
    config.debugData.pData        = buffer;
    config.debugData.dataSize     = sizeof(buffer);
    std::vector<AECAlgoGetParamInput> inputs = {Input(AECAlgoGetParamInputDebugDataPointer, &config, sizeof(config))};

    AECMetadataQuery* pQuery = PrepareInput(AECAlgoGetParamDebugData, inputs);
    ASSERT_NE(nullptr, pQuery);
    EXPECT_EQ(static_cast<void*>(buffer), pQuery->input.debugData.debugData.pData);
    EXPECT_EQ(sizeof(buffer), pQuery->input.debugData.debugData.dataSize);
}

TEST_F(CAECGetParamTranslatorTest, OversizedInputAbortsOnTheSizeContract)
{
    UINT64                            iso    = 100;
    std::vector<AECAlgoGetParamInput> inputs = {Input(AECAlgoGetParamInputISOValue, &iso, sizeof(iso))};
    EXPECT_DEATH(PrepareInput(AECAlgoGetParamGainFromISOPreview, inputs), "copySize >= srcSize");
}

TEST_F(CAECGetParamTranslatorTest, QueriesWithoutInputsAreSilent)
{
    std::vector<AECAlgoGetParamInput> inputs;
    WrapperLogCapture                 logs;
    for (AECAlgoGetParamType type :
         {AECAlgoGetParamStartExposure, AECAlgoGetParamEVCapabilities, AECAlgoGetParamFlashMeasurementConfig,
          AECAlgoGetParamFlashMeasurementResult, AECAlgoGetParamBGStatsConfig, AECAlgoGetParamPeerInfo,
          AECAlgoGetParamBHistStatsConfig})
    {
        AECMetadataQuery* pQuery = PrepareInput(type, inputs);
        ASSERT_NE(nullptr, pQuery);
        EXPECT_EQ(type, pQuery->type);
    }
    EXPECT_TRUE(logs.All().empty());
}

TEST_F(CAECGetParamTranslatorTest, OtherQueriesAreLoggedAndStillPassed)
{
    std::vector<AECAlgoGetParamInput> inputs;
    WrapperLogCapture                 logs;
    AECMetadataQuery*                 pQuery = PrepareInput(AECAlgoGetParamSWVersion, inputs);
    ASSERT_NE(nullptr, pQuery);
    EXPECT_EQ(AECAlgoGetParamSWVersion, pQuery->type);
    EXPECT_TRUE(logs.Has("AEC Core does not support this paramer: 7"));

    EXPECT_NE(nullptr, PrepareInput(AECAlgoGetParamDependentVendorTags, inputs));
    EXPECT_TRUE(logs.Has("AEC Core does not support this paramer: 11"));
}

TEST_F(CAECGetParamTranslatorTest, PrepareInputZeroesThePreviousQuery)
{
    UINT32                            iso    = 1600;
    std::vector<AECAlgoGetParamInput> inputs = {Input(AECAlgoGetParamInputISOValue, &iso, sizeof(iso))};
    ASSERT_NE(nullptr, PrepareInput(AECAlgoGetParamGainFromISOPreview, inputs));
    Query()->output.gain = 3.0F;

    std::vector<AECAlgoGetParamInput> none;
    AECMetadataQuery*                 pQuery = PrepareInput(AECAlgoGetParamStartExposure, none);
    ASSERT_NE(nullptr, pQuery);
    EXPECT_EQ(0U, pQuery->input.ISOValue);
    EXPECT_EQ(0.0F, pQuery->output.gain);
    WrapperLogCapture logs;
    EXPECT_EQ(nullptr, m_translator.prepareInput(nullptr));
    EXPECT_TRUE(logs.Has("Get parameter is NULL"));
    EXPECT_EQ(nullptr, m_translator.prepareOutput(nullptr));
}

TEST_F(CAECGetParamTranslatorTest, FrameControlAndExposureSetsComeFromTheFrameSetting)
{
    std::vector<AECAlgoGetParamInput> none;
    ASSERT_NE(nullptr, PrepareInput(AECAlgoGetParamStartExposure, none));
    AECFrameControl& frame  = Query()->output.frameSetting;
    frame.flashState        = AECAlgoFlashStatePre;
    frame.LEDInfluenceRatio = 1.5F;
    frame.luxIndex          = 250.0F;
    frame.exifInfo.ISOValue = 320;
    frame.IRLedIntensity    = 0.25F;
    for (UINT32 index = 0; index < 3; ++index)
    {
        frame.exposureSets[index].exposureTime = 1000 * (index + 1);
        frame.exposureSets[index].linearGain   = 1.0F + index;
    }

    AECAlgoFrameControl control = {};
    control.snapshotFlashDuration = 77; // the host's own field
    AECAlgoExposureInfo infos[3]  = {};
    AECAlgoExposureSet  sets      = {};
    sets.pExposureInfo            = infos;
    sets.exposureInfoCount        = 3;
    sets.exposureInfoSize         = sizeof(AECAlgoExposureInfo);
    std::vector<AECAlgoGetParamOutput> outputs = {
        Output(AECAlgoGetParamOutputFrameControl, &control, sizeof(control)),
        Output(AECAlgoGetParamOutputExposureSets, &sets, sizeof(sets)),
    };
    ASSERT_NE(nullptr, PrepareOutput(outputs));

    EXPECT_EQ(AECAlgoFlashStatePre, control.flashState);
    EXPECT_EQ(1.5F, control.LEDInfluenceRatio);
    EXPECT_EQ(250.0F, control.luxIndex);
    EXPECT_EQ(320U, control.ISOValue);
    EXPECT_EQ(0.25F, control.IRLedIntensity);
    EXPECT_EQ(77U, control.snapshotFlashDuration);
    EXPECT_EQ(68U, outputs[0].sizeOfWrittenOutputData);

    EXPECT_EQ(24U, outputs[1].sizeOfWrittenOutputData);
    EXPECT_EQ(3U, sets.exposureInfoOutputCount);
    EXPECT_EQ(56U, sets.exposureInfoOutputSize);
    for (UINT32 index = 0; index < 3; ++index)
    {
        EXPECT_EQ(static_cast<AECAlgoExposureType>(index), infos[index].exposureType);
        EXPECT_EQ(1000U * (index + 1), infos[index].exposureData.exposureTime);
        EXPECT_EQ(1.0F + index, infos[index].exposureData.linearGain);
    }
}

TEST_F(CAECGetParamTranslatorTest, PlainOutputsAreWrittenWithTheirSizes)
{
    std::vector<AECAlgoGetParamInput> none;
    ASSERT_NE(nullptr, PrepareInput(AECAlgoGetParamGainFromISOPreview, none));
    Query()->output.gain = 2.5F;

    FLOAT gain = 0.0F;
    std::vector<AECAlgoGetParamOutput> outputs = {Output(AECAlgoGetParamOutputGain, &gain, sizeof(gain))};
    ASSERT_NE(nullptr, PrepareOutput(outputs));
    EXPECT_EQ(2.5F, gain);
    EXPECT_EQ(4U, outputs[0].sizeOfWrittenOutputData);

    // The records that share the union are checked one query at a time.
    struct Case
    {
        AECAlgoGetParamOutputType type;
        UINT32                    size;
    };
    const Case cases[] = {
        {AECAlgoGetParamOutputLEDCurrents, 8},         {AECAlgoGetParamOutputEXIFApex, 20},
        {AECAlgoGetParamOutputFlashMeasurementConfig, 12}, {AECAlgoGetParamOutputFlashMeasurementResult, 16},
        {AECAlgoGetParamOutputDebugData, 8},           {AECAlgoGetParamOutputBGStatsConfig, 92},
        {AECAlgoGetParamOutputEVCapabilities, 3},      {AECAlgoGetParamOutputPeerInfo, 8},
        {AECAlgoGetParamOutputBHistStatsConfig, 28},
    };
    for (const Case& entry : cases)
    {
        ASSERT_NE(nullptr, PrepareInput(AECAlgoGetParamStartExposure, none));
        UINT8* pOutput = reinterpret_cast<UINT8*>(&Query()->output);
        for (size_t index = 0; index < sizeof(Query()->output); ++index)
        {
            pOutput[index] = static_cast<UINT8>(index + 1);
        }

        std::vector<UINT8> host(entry.size + 4, 0xEE);
        outputs = {Output(entry.type, host.data(), entry.size)};
        ASSERT_NE(nullptr, PrepareOutput(outputs)) << "type " << entry.type;
        EXPECT_EQ(entry.size, outputs[0].sizeOfWrittenOutputData) << "type " << entry.type;
        // Bytes beyond the record stay the host's.
        EXPECT_EQ(0xEE, host[entry.size]) << "type " << entry.type;
        const AECMetadataQueryOutput& output = Query()->output;
        const void*                   pExpected;
        switch (entry.type)
        {
            case AECAlgoGetParamOutputLEDCurrents:              pExpected = output.frameSetting.LEDCurrents; break;
            case AECAlgoGetParamOutputEXIFApex:                 pExpected = &output.frameSetting.exifInfo.APEXValues; break;
            case AECAlgoGetParamOutputFlashMeasurementConfig:   pExpected = &output.flashMeasConfig; break;
            case AECAlgoGetParamOutputFlashMeasurementResult:   pExpected = &output.flashMeasResult; break;
            case AECAlgoGetParamOutputDebugData:                pExpected = &output.pDebugData; break;
            case AECAlgoGetParamOutputBGStatsConfig:            pExpected = &output.statsBGBEConfig; break;
            case AECAlgoGetParamOutputEVCapabilities:           pExpected = &output.EVCapabilities; break;
            case AECAlgoGetParamOutputPeerInfo:                 pExpected = &output.pPeerInfo; break;
            default:                                            pExpected = &output.statsBHISTConfig; break;
        }
        EXPECT_EQ(0, std::memcmp(host.data(), pExpected, entry.size)) << "type " << entry.type;
    }
}

TEST_F(CAECGetParamTranslatorTest, ShortOutputFailsAfterWritingTheEntriesBeforeIt)
{
    std::vector<AECAlgoGetParamInput> none;
    ASSERT_NE(nullptr, PrepareInput(AECAlgoGetParamGainFromISOPreview, none));
    Query()->output.gain = 2.5F;

    FLOAT gain  = 0.0F;
    FLOAT other = 0.0F;
    std::vector<AECAlgoGetParamOutput> outputs = {
        Output(AECAlgoGetParamOutputGain, &gain, sizeof(gain)),
        Output(AECAlgoGetParamOutputGain, &other, 3),
        Output(AECAlgoGetParamOutputGain, &other, sizeof(other)),
    };
    WrapperLogCapture logs;
    EXPECT_EQ(nullptr, PrepareOutput(outputs));
    EXPECT_EQ(2.5F, gain);
    EXPECT_EQ(0.0F, other);
    EXPECT_EQ(AECAlgoGetParamInvalid, Query()->type);
    EXPECT_TRUE(logs.Has("Copy Failed Input Params size mismatch: 4."));
}

TEST_F(CAECGetParamTranslatorTest, ExposureSetsTheHostCannotHoldAreRefused)
{
    std::vector<AECAlgoGetParamInput> none;
    AECAlgoExposureInfo               infos[3] = {};
    struct Case
    {
        AECAlgoExposureInfo* pInfo;
        UINT32               count;
        UINT32               size;
    };
    const Case cases[] = {{nullptr, 3, 56}, {infos, 2, 56}, {infos, 3, 47}};
    for (const Case& entry : cases)
    {
        ASSERT_NE(nullptr, PrepareInput(AECAlgoGetParamStartExposure, none));
        AECAlgoExposureSet sets = {};
        sets.pExposureInfo      = entry.pInfo;
        sets.exposureInfoCount  = entry.count;
        sets.exposureInfoSize   = entry.size;
        std::vector<AECAlgoGetParamOutput> outputs = {Output(AECAlgoGetParamOutputExposureSets, &sets, sizeof(sets))};
        WrapperLogCapture                  logs;
        EXPECT_EQ(nullptr, PrepareOutput(outputs));
        EXPECT_TRUE(logs.Has("Copy Failed Input Params size mismatch: 1."));
        EXPECT_EQ(0U, sets.exposureInfoOutputCount);
    }
}

TEST_F(CAECGetParamTranslatorTest, UnhandledOutputTypesAreLoggedAndSkipped)
{
    std::vector<AECAlgoGetParamInput> none;
    ASSERT_NE(nullptr, PrepareInput(AECAlgoGetParamGainFromISOPreview, none));
    Query()->output.gain = 2.0F;

    UINT8 untouched[16];
    std::memset(untouched, 0x5A, sizeof(untouched));
    FLOAT gain = 0.0F;
    std::vector<AECAlgoGetParamOutput> outputs = {
        Output(AECAlgoGetParamOutputSWVersion, untouched, 0),
        Output(AECGetParamOutputTypeDependentVendorTags, untouched, 0),
        Output(AECAlgoGetParamOutputSnapshotType, untouched, 0),
        Output(AECAlgoGetParamOutputGain, &gain, sizeof(gain)),
    };
    WrapperLogCapture logs;
    ASSERT_NE(nullptr, PrepareOutput(outputs));
    EXPECT_TRUE(logs.Has("Unhandled Get Output type: 8."));
    EXPECT_TRUE(logs.Has("Unhandled Get Output type: 12."));
    EXPECT_TRUE(logs.Has("Unhandled Get Output type: 17."));
    EXPECT_EQ(2.0F, gain);
    EXPECT_EQ(0x5A, untouched[0]);
    EXPECT_EQ(0U, outputs[0].sizeOfWrittenOutputData);
}
