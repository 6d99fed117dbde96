// Tests of the per-frame input translator: size rules, reference entries, motor status and the per-frame reset.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "aec/wrapper/caecprocessinputtranslator.h"
#include "unit/wrapper/wrapperlogcapture.h"

namespace
{

AECAlgoInput Input(AECAlgoInputType type, void* pData, UINT32 size)
{
    AECAlgoInput input   = {};
    input.inputType      = type;
    input.pAECInput      = pData;
    input.sizeOfAECInput = size;
    return input;
}

class CAECProcessInputTranslatorTest : public ::testing::Test
{
protected:
    AECCoreInput* Translate(std::vector<AECAlgoInput>& inputs)
    {
        m_list.pAECInputList     = inputs.data();
        m_list.numberOfAECInputs = static_cast<UINT32>(inputs.size());
        return m_translator.translate(&m_list);
    }

    WrapperLogCapture          m_logs;
    CAECProcessInputTranslator m_translator;
    AECAlgoInputList           m_list = {};
    AECAlgoInputStatsInfo      m_info = {42, TRUE, {640, 480}, TRUE};
};

} // namespace

TEST_F(CAECProcessInputTranslatorTest, OnlyAVendorTagEntryFails)
{
    StatsVendorTagList        tags   = {};
    std::vector<AECAlgoInput> inputs = {Input(AECAlgoInputVendorTag, &tags, sizeof(tags))};
    EXPECT_EQ(nullptr, Translate(inputs));
}

TEST_F(CAECProcessInputTranslatorTest, ReferenceEntriesBeforeAnyDataEntryFail)
{
    for (AECAlgoInputType type : {AECAlgoInputStatsLyrHandle, AECAlgoInputStatsRequestID})
    {
        std::vector<AECAlgoInput> inputs = {Input(type, nullptr, 0), Input(AECAlgoInputStatisticInfo, &m_info, 24)};
        EXPECT_EQ(nullptr, Translate(inputs)) << "type " << type;
        // Ignored types copy nothing, so they do not open the way either.
        inputs = {Input(AECAlgoInputCameraInfo, nullptr, 0), Input(type, nullptr, 0)};
        EXPECT_EQ(nullptr, Translate(inputs)) << "type " << type;
    }
}

TEST_F(CAECProcessInputTranslatorTest, VendorTagAfterADataEntryIsTakenWithAnySize)
{
    StatsVendorTagList tags = {};
    for (UINT32 size : {0U, 1U, 12345U})
    {
        std::vector<AECAlgoInput> inputs = {
            Input(AECAlgoInputStatisticInfo, &m_info, 24),
            Input(AECAlgoInputVendorTag, &tags, size),
            Input(AECAlgoInputStatsLyrHandle, nullptr, size),
            Input(AECAlgoInputStatsRequestID, nullptr, size),
        };
        AECCoreInput* pInput = Translate(inputs);
        ASSERT_NE(nullptr, pInput) << "size " << size;
        EXPECT_EQ(&tags, pInput->pVendorTagList);
    }
}

TEST_F(CAECProcessInputTranslatorTest, BayerGridMustHaveExactly112Bytes)
{
    std::vector<UINT8> bytes(113, 0x11);
    std::vector<AECAlgoInput> inputs = {Input(AECAlgoInputBayerGrid, bytes.data(), 111)};
    EXPECT_EQ(nullptr, Translate(inputs));

    inputs = {Input(AECAlgoInputBayerGrid, bytes.data(), 113)};
    // The abort message goes to the default sink, stderr, where the death test looks for it.
    EXPECT_DEATH(
        {
            Vela::Log::SetSink(nullptr);
            Translate(inputs);
        },
        "copySize >= srcSize");
}

TEST_F(CAECProcessInputTranslatorTest, StatisticsAreCopiedByValueWithTheHostsDataPointers)
{
    UINT16         gridData[4][4] = {};
    StatsBayerGrid grid           = {};
    for (UINT32 channel = 0; channel < 4; ++channel)
    {
        grid.pGridData[channel] = gridData[channel];
    }
    grid.horizontalRegionCount = 2;
    grid.verticalRegionCount   = 2;
    grid.bitDepth              = 10;
    std::vector<AECAlgoInput> inputs = {Input(AECAlgoInputBayerGrid, &grid, sizeof(grid))};

    AECCoreInput* pInput = Translate(inputs);
    ASSERT_NE(nullptr, pInput);
    EXPECT_EQ(0, std::memcmp(&grid, &pInput->aecStats.bayerGrid, sizeof(grid)));
    EXPECT_EQ(gridData[2], pInput->aecStats.bayerGrid.pGridData[2]);
}

TEST_F(CAECProcessInputTranslatorTest, EveryDataTypeGoesToItsField)
{
    struct Case
    {
        AECAlgoInputType type;
        UINT32           size;
        size_t           offset;
    };
    const Case cases[] = {
        {AECAlgoInputBayerGrid, 112, offsetof(AECCoreInput, aecStats.bayerGrid)},
        {AECAlgoInputBayerHist, 72, offsetof(AECCoreInput, aecStats.bayerHist)},
        {AECAlgoInputIHist, 64, offsetof(AECCoreInput, aecStats.IHist)},
        {AECAlgoInputDebugData, 16, offsetof(AECCoreInput, debugData)},
        {AECAlgoInputHDRBHist, 72, offsetof(AECCoreInput, aecStats.hdrBayerHist)},
        {AECAlgoInputBayerGridROI, 16, offsetof(AECCoreInput, aecStats.bayerGridROI)},
        {AECAlgoInputRDIStats, 16, offsetof(AECCoreInput, aecStats.hdr3Stats)},
        {AECAlgoInputBayerHistNonUniform, 72, offsetof(AECCoreInput, aecStats.nonUniformBayerHist)},
        {AECAlgoInputBayerGridLEF, 112, offsetof(AECCoreInput, aecStats.bayerGridLEF)},
        {AECAlgoInputBayerHistLEF, 72, offsetof(AECCoreInput, aecStats.bayerHistLEF)},
        {AECAlgoInputHDRBHistLEF, 72, offsetof(AECCoreInput, aecStats.hdrBayerHistLEF)},
        {AECAlgoInputSHDRInterPolatedData, 1088, offsetof(AECCoreInput, shdrTuningParams)},
        {AECAlgoInputBayerGridMEF, 112, offsetof(AECCoreInput, aecStats.bayerGridMEF)},
        {AECAlgoInputHDRBHistMEF, 72, offsetof(AECCoreInput, aecStats.hdrBayerHistMEF)},
    };
    for (const Case& entry : cases)
    {
        std::vector<UINT8> bytes(entry.size);
        for (size_t index = 0; index < bytes.size(); ++index)
        {
            bytes[index] = static_cast<UINT8>(index * 7 + 3);
        }
        std::vector<AECAlgoInput> inputs = {Input(entry.type, bytes.data(), entry.size)};
        AECCoreInput*             pInput = Translate(inputs);
        ASSERT_NE(nullptr, pInput) << "type " << entry.type;
        EXPECT_EQ(0, std::memcmp(reinterpret_cast<UINT8*>(pInput) + entry.offset, bytes.data(), entry.size))
            << "type " << entry.type;

        // One byte short fails the frame, with no message.
        WrapperLogCapture logs;
        inputs = {Input(entry.type, bytes.data(), entry.size - 1)};
        EXPECT_EQ(nullptr, Translate(inputs)) << "type " << entry.type;
        EXPECT_TRUE(logs.All().empty()) << "type " << entry.type;
    }
}

TEST_F(CAECProcessInputTranslatorTest, DataEntryWithoutDataFails)
{
    WrapperLogCapture         logs;
    std::vector<AECAlgoInput> inputs = {Input(AECAlgoInputBayerHist, nullptr, sizeof(StatsBayerHist))};
    EXPECT_EQ(nullptr, Translate(inputs));
    EXPECT_TRUE(logs.Has("Copy of 72 bytes refused: null source pointer"));

    inputs = {Input(AECAlgoInputStatisticInfo, nullptr, 24)};
    EXPECT_EQ(nullptr, Translate(inputs));
    EXPECT_TRUE(logs.Has("Statistics info entry of 24 bytes has no data"));
}

TEST_F(CAECProcessInputTranslatorTest, StatisticsInfoNeedsAtLeast16Bytes)
{
    std::vector<AECAlgoInput> inputs = {Input(AECAlgoInputStatisticInfo, &m_info, 15)};
    EXPECT_EQ(nullptr, Translate(inputs));

    // 16 bytes carry the request id and the preflash flag; the torch flag lies beyond them.
    inputs               = {Input(AECAlgoInputStatisticInfo, &m_info, 16)};
    AECCoreInput* pInput = Translate(inputs);
    ASSERT_NE(nullptr, pInput);
    EXPECT_EQ(42U, pInput->frameID);
    EXPECT_EQ(TRUE, pInput->prepareBeforePreflash);
    EXPECT_EQ(FALSE, pInput->bIsTorchAEC);

    inputs = {Input(AECAlgoInputStatisticInfo, &m_info, sizeof(m_info))};
    pInput = Translate(inputs);
    ASSERT_NE(nullptr, pInput);
    EXPECT_EQ(TRUE, pInput->bIsTorchAEC);

    // Larger host records are accepted: only the known fields are read.
    std::vector<UINT8> larger(64, 0);
    std::memcpy(larger.data(), &m_info, sizeof(m_info));
    inputs = {Input(AECAlgoInputStatisticInfo, larger.data(), 64), Input(AECAlgoInputStatsLyrHandle, nullptr, 0)};
    pInput = Translate(inputs);
    ASSERT_NE(nullptr, pInput);
    EXPECT_EQ(42U, pInput->frameID);
}

TEST_F(CAECProcessInputTranslatorTest, MotorStatusTakesMovementAndPosition)
{
    LDMMotorStatusInfo iris = {LDMMotorPIris, TRUE, -12};
    LDMMotorStatusInfo zoom = {LDMMotorZoom, FALSE, 340};
    std::vector<AECAlgoInput> inputs = {
        Input(AECAlgoInputPIrisMotorSatus, &iris, 0),
        Input(AECAlgoInputZoomMotorSatus, &zoom, 0),
        Input(AECAlgoInputVendorTag, nullptr, 0),
    };
    WrapperLogCapture logs;
    AECCoreInput*     pInput = Translate(inputs);
    ASSERT_NE(nullptr, pInput);
    EXPECT_EQ(TRUE, pInput->IrisInputPerFrame.pirisMotorStatus.isMoving);
    EXPECT_EQ(-12, pInput->IrisInputPerFrame.pirisMotorStatus.motorCurPosition);
    EXPECT_EQ(FALSE, pInput->IrisInputPerFrame.zoomMotorStatus.isMoving);
    EXPECT_EQ(340, pInput->IrisInputPerFrame.zoomMotorStatus.motorCurPosition);
    EXPECT_TRUE(logs.Has("Copy Motor Status Data for motorId: 0 isMoving 1 motorCurPosition -12"));
    EXPECT_TRUE(logs.Has("Copy Motor Status Data for motorId: 2 isMoving 0 motorCurPosition 340"));
}

TEST_F(CAECProcessInputTranslatorTest, MissingMotorStatusFails)
{
    for (AECAlgoInputType type : {AECAlgoInputPIrisMotorSatus, AECAlgoInputZoomMotorSatus})
    {
        WrapperLogCapture         logs;
        std::vector<AECAlgoInput> inputs = {Input(AECAlgoInputStatisticInfo, &m_info, 24), Input(type, nullptr, 12)};
        EXPECT_EQ(nullptr, Translate(inputs));
        EXPECT_TRUE(logs.Has("MotorStatusData copy failed"));
        EXPECT_EQ(Vela::Log::LevelError, logs.LevelOf("MotorStatusData copy failed"));
    }
}

TEST_F(CAECProcessInputTranslatorTest, IgnoredTypesPassWithoutChecks)
{
    std::vector<AECAlgoInput> inputs = {
        Input(AECAlgoInputInvalid, nullptr, 1),          Input(AECAlgoInputCameraInfo, nullptr, 2),
        Input(AECAlgoInputTintlessBGStats, nullptr, 3),  Input(AECAlgoInputLensShadingInfo, nullptr, 4),
        Input(AECAlgoInputHDRStatsCount, nullptr, 5),    Input(AECAlgoInputIRCutALS, nullptr, 6),
        Input(AECAlgoInputCount, nullptr, 7),            Input(AECAlgoInputMax, nullptr, 8),
    };
    EXPECT_NE(nullptr, Translate(inputs));
}

TEST_F(CAECProcessInputTranslatorTest, EachFrameStartsFromZeroAndGetsTheDefaultALS)
{
    StatsVendorTagList        tags   = {};
    StatsRectangle            roi    = {1, 2, 3, 4};
    std::vector<AECAlgoInput> inputs = {
        Input(AECAlgoInputStatisticInfo, &m_info, 24),
        Input(AECAlgoInputBayerGridROI, &roi, sizeof(roi)),
        Input(AECAlgoInputVendorTag, &tags, 0),
    };
    ASSERT_NE(nullptr, Translate(inputs));

    WrapperLogCapture         logs;
    std::vector<AECAlgoInput> next   = {Input(AECAlgoInputBayerGridROI, &roi, sizeof(roi))};
    AECCoreInput*             pInput = Translate(next);
    ASSERT_NE(nullptr, pInput);
    EXPECT_EQ(0U, pInput->frameID);
    EXPECT_EQ(FALSE, pInput->bIsTorchAEC);
    EXPECT_EQ(nullptr, pInput->pVendorTagList);
    EXPECT_EQ(3U, pInput->aecStats.bayerGridROI.width);
    EXPECT_EQ(100.0F, pInput->IRInputPerFrame.ALSValue);
    EXPECT_TRUE(logs.Has("Update ALS to input parameter per frame"));
}

TEST_F(CAECProcessInputTranslatorTest, EmptyAndMissingLists)
{
    AECAlgoInputList empty = {};
    AECCoreInput*    pInput = m_translator.translate(&empty);
    ASSERT_NE(nullptr, pInput);
    EXPECT_EQ(100.0F, pInput->IRInputPerFrame.ALSValue);

    AECAlgoInputList missing  = {};
    missing.numberOfAECInputs = 2;
    EXPECT_EQ(nullptr, m_translator.translate(&missing));
    EXPECT_EQ(nullptr, m_translator.translate(nullptr));
}
