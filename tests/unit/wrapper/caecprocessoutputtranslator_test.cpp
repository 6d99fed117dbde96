// Tests of the per-frame output translator: entry sizes, exposure sets, ignored types and the lens command queue.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "aec/wrapper/caecprocessoutputtranslator.h"
#include "unit/wrapper/wrapperlogcapture.h"

namespace
{

AECAlgoOutput Output(AECAlgoOutputType type, void* pData, UINT32 size)
{
    AECAlgoOutput output   = {};
    output.outputType      = type;
    output.pAECOutput      = pData;
    output.sizeOfAECOutput = size;
    return output;
}

class CAECProcessOutputTranslatorTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        AECFrameControl& frame  = Record()->frameSetting;
        frame.flashState        = AECAlgoFlashStateMain;
        frame.LEDInfluenceRatio = 2.0F;
        frame.LEDCurrents[0]    = 100;
        frame.LEDCurrents[1]    = 200;
        frame.LEDRGRatio        = 0.5F;
        frame.LEDBGRatio        = 0.75F;
        frame.luxIndex          = 333.0F;
        frame.exifInfo.ISOValue = 640;
        frame.exifInfo.APEXValues.brightnessValue = 4.5F;
        frame.stretchControl    = {TRUE, 0.1F, 1.2F};
        frame.LEDFirstEntryRatio        = 0.2F;
        frame.LEDLastEntryRatio         = 0.8F;
        frame.predictiveGain            = 1.25F;
        frame.digitalGainForSimulation  = 1.5F;
        frame.isInsensorHDRSnapshot     = TRUE;
        frame.compenADRCGain            = 1.75F;
        frame.IRModeActivated           = 1;
        frame.IRLedIntensity            = 0.5F;
        frame.compensationDarkBoostGain = 1.125F;
        frame.statsBGBEConfig.horizontalRegionCount = 64;
        frame.statsBHISTConfig.channel              = ColorChannelY;
        for (UINT32 index = 0; index < 3; ++index)
        {
            frame.exposureSets[index].exposureTime     = 1000 * (index + 1);
            frame.exposureSets[index].fnumber          = 2.0F;
            frame.RealexposureSets[index].exposureTime = 7000 * (index + 1);
        }
        AECFrameInfo& info        = Record()->frameInfo;
        info.brightnessSettled    = TRUE;
        info.aecSettled           = TRUE;
        info.asdExtremeGreenRatio = 0.3F;
        info.snapshotIndicator    = AECAlgoSnapshotLLS;
        info.legacyYStats[255]    = 9.0F;
        info.DebugDataSizeWritten = 4096;
        info.frameLuma            = 55.0F;
        info.pixCntRatioLEF       = 0.125F;
    }

    AECCoreOutput* Record() { return static_cast<AECCoreOutput*>(m_translator.getDataAddress()); }

    AECCoreOutput* Translate(std::vector<AECAlgoOutput>& outputs)
    {
        m_list.pAECOutputList     = outputs.data();
        m_list.numberOfAECOutputs = static_cast<UINT32>(outputs.size());
        return m_translator.translate(&m_list);
    }

    WrapperLogCapture           m_logs;
    CAECProcessOutputTranslator m_translator;
    AECAlgoOutputList           m_list = {};
};

} // namespace

TEST_F(CAECProcessOutputTranslatorTest, ExposureSetsWriteThreeEntriesAtTheHostsStride)
{
    struct Stride
    {
        AECAlgoExposureInfo info;
        UINT8               gap[8];
    };
    Stride             entries[3];
    std::memset(entries, 0xCC, sizeof(entries));
    AECAlgoExposureSet sets = {};
    sets.pExposureInfo      = &entries[0].info;
    sets.exposureInfoCount  = 3;
    sets.exposureInfoSize   = sizeof(Stride);
    std::vector<AECAlgoOutput> outputs = {Output(AECAlgoOutputExposureSets, &sets, sizeof(sets))};

    ASSERT_NE(nullptr, Translate(outputs));
    EXPECT_EQ(24U, outputs[0].sizeOfWrittenAECOutput);
    EXPECT_EQ(3U, sets.exposureInfoOutputCount);
    EXPECT_EQ(56U, sets.exposureInfoOutputSize);
    for (UINT32 index = 0; index < 3; ++index)
    {
        EXPECT_EQ(static_cast<AECAlgoExposureType>(index), entries[index].info.exposureType);
        EXPECT_EQ(1000U * (index + 1), entries[index].info.exposureData.exposureTime);
        EXPECT_EQ(2.0F, entries[index].info.exposureData.fnumber);
        EXPECT_EQ(0xCC, entries[index].gap[0]);
    }

    outputs = {Output(AECAlgoOutputRealExposureSets, &sets, sizeof(sets))};
    ASSERT_NE(nullptr, Translate(outputs));
    EXPECT_EQ(14000U, entries[1].info.exposureData.exposureTime);
}

TEST_F(CAECProcessOutputTranslatorTest, ExposureStrideBelowTheEntrySizeStaysInsideTheHostsArray)
{
    UINT8 array[3 * 48 + 16];
    std::memset(array, 0xCC, sizeof(array));
    AECAlgoExposureSet sets = {};
    sets.pExposureInfo      = reinterpret_cast<AECAlgoExposureInfo*>(array);
    sets.exposureInfoCount  = 3;
    sets.exposureInfoSize   = 48;
    std::vector<AECAlgoOutput> outputs = {Output(AECAlgoOutputExposureSets, &sets, sizeof(sets))};

    ASSERT_NE(nullptr, Translate(outputs));
    AECAlgoExposureInfo third;
    std::memcpy(&third, array + 2 * 48, 48);
    EXPECT_EQ(AECAlgoExposureSafe, third.exposureType);
    EXPECT_EQ(3000U, third.exposureData.exposureTime);
    for (size_t index = 3 * 48; index < sizeof(array); ++index)
    {
        EXPECT_EQ(0xCC, array[index]) << "byte " << index;
    }
}

TEST_F(CAECProcessOutputTranslatorTest, TwoExposureEntriesFailTheOutputAfterTheEarlierEntries)
{
    AECAlgoFrameControl control = {};
    AECAlgoExposureInfo infos[3] = {};
    AECAlgoExposureSet  sets     = {};
    sets.pExposureInfo           = infos;
    sets.exposureInfoCount       = 2;
    sets.exposureInfoSize        = sizeof(AECAlgoExposureInfo);
    UINT32 currents[2]           = {};
    std::vector<AECAlgoOutput> outputs = {
        Output(AECAlgoOutputFrameControl, &control, sizeof(control)),
        Output(AECAlgoOutputExposureSets, &sets, sizeof(sets)),
        Output(AECAlgoOutputLEDCurrents, currents, sizeof(currents)),
    };

    WrapperLogCapture logs;
    EXPECT_EQ(nullptr, Translate(outputs));
    EXPECT_EQ(AECAlgoFlashStateMain, control.flashState);
    EXPECT_EQ(68U, outputs[0].sizeOfWrittenAECOutput);
    EXPECT_EQ(0U, infos[0].exposureData.exposureTime);
    EXPECT_EQ(0U, sets.exposureInfoOutputCount);
    EXPECT_EQ(0U, currents[0]);
    EXPECT_TRUE(logs.Has(" count 2 size 56"));
}

TEST_F(CAECProcessOutputTranslatorTest, OnlyIgnoredTypesSucceedAndWriteNothing)
{
    UINT8 untouched[32];
    std::memset(untouched, 0x77, sizeof(untouched));
    std::vector<AECAlgoOutput> outputs = {
        Output(AECAlgoOutputAdditionalInfo, untouched, 0),
        Output(AECAlgoOutputVendorTag, untouched, 1),
        Output(AECAlgoOutputStretchControl, untouched, 2),
        Output(AECAlgoOutputSkipStatsParse, untouched, 3),
    };
    for (AECAlgoOutput& output : outputs)
    {
        output.sizeOfWrittenAECOutput = 0xABCD;
    }
    ASSERT_NE(nullptr, Translate(outputs));
    for (const AECAlgoOutput& output : outputs)
    {
        EXPECT_EQ(0xABCDU, output.sizeOfWrittenAECOutput);
        EXPECT_EQ(static_cast<void*>(untouched), output.pAECOutput);
    }
    for (UINT8 byte : untouched)
    {
        EXPECT_EQ(0x77, byte);
    }
}

TEST_F(CAECProcessOutputTranslatorTest, FrameControlWritesItsFieldsAndLeavesTheHostsOwn)
{
    AECAlgoFrameControl control   = {};
    control.snapshotFlashDuration = 99;
    control.shortBlendRatio       = 0.5F;
    std::vector<AECAlgoOutput> outputs = {Output(AECAlgoOutputFrameControl, &control, sizeof(control))};

    ASSERT_NE(nullptr, Translate(outputs));
    EXPECT_EQ(68U, outputs[0].sizeOfWrittenAECOutput);
    EXPECT_EQ(AECAlgoFlashStateMain, control.flashState);
    EXPECT_EQ(2.0F, control.LEDInfluenceRatio);
    EXPECT_EQ(0.5F, control.LEDRGRatio);
    EXPECT_EQ(0.75F, control.LEDBGRatio);
    EXPECT_EQ(333.0F, control.luxIndex);
    EXPECT_EQ(640U, control.ISOValue);
    EXPECT_EQ(TRUE, control.stretchControl.enable);
    EXPECT_EQ(1.2F, control.stretchControl.scaling);
    EXPECT_EQ(0.2F, control.LEDFirstEntryRatio);
    EXPECT_EQ(0.8F, control.LEDLastEntryRatio);
    EXPECT_EQ(1.25F, control.predictiveGain);
    EXPECT_EQ(1.5F, control.digitalGainForSimulation);
    EXPECT_EQ(1.75F, control.compenADRCGain);
    EXPECT_EQ(TRUE, control.isInSensorHDR3ExpSnapshot);
    EXPECT_EQ(1.125F, control.compensationDarkBoostGain);
    EXPECT_EQ(1, control.IRModeActivated);
    EXPECT_EQ(0.5F, control.IRLedIntensity);
    EXPECT_EQ(99U, control.snapshotFlashDuration);
    EXPECT_EQ(0.5F, control.shortBlendRatio);

    outputs = {Output(AECAlgoOutputFrameControl, &control, 67)};
    EXPECT_EQ(nullptr, Translate(outputs));
}

TEST_F(CAECProcessOutputTranslatorTest, ShortFrameControlKeepsTheFieldsBeyondItsSize)
{
    AECAlgoFrameControl control       = {};
    control.compensationDarkBoostGain = -1.0F;
    control.IRModeActivated           = -1;
    control.IRLedIntensity            = -1.0F;
    std::vector<AECAlgoOutput> outputs = {Output(AECAlgoOutputFrameControl, &control, 68)};

    ASSERT_NE(nullptr, Translate(outputs));
    EXPECT_EQ(68U, outputs[0].sizeOfWrittenAECOutput);
    EXPECT_EQ(1.25F, control.predictiveGain);
    EXPECT_EQ(-1.0F, control.compensationDarkBoostGain);
    EXPECT_EQ(-1, control.IRModeActivated);
    EXPECT_EQ(-1.0F, control.IRLedIntensity);
}

TEST_F(CAECProcessOutputTranslatorTest, FrameInfoWritesEverythingButTheProcessedROI)
{
    AECAlgoFrameInfo info   = {};
    info.processedROI.weight = 3.0F;
    std::vector<AECAlgoOutput> outputs = {Output(AECAlgoOutputFrameInfo, &info, sizeof(info))};

    ASSERT_NE(nullptr, Translate(outputs));
    EXPECT_EQ(1072U, outputs[0].sizeOfWrittenAECOutput);
    EXPECT_EQ(TRUE, info.brightnessSettled);
    EXPECT_EQ(TRUE, info.aecSettled);
    EXPECT_EQ(0.3F, info.asdExtremeGreenRatio);
    EXPECT_EQ(AECAlgoSnapshotLLS, info.snapshotIndicator);
    EXPECT_EQ(9.0F, info.legacyYStats[255]);
    EXPECT_EQ(4096U, info.DebugDataSizeWritten);
    EXPECT_EQ(55.0F, info.frameLuma);
    EXPECT_EQ(0.125F, info.pixCntRatioLEF);
    EXPECT_EQ(3.0F, info.processedROI.weight);

    outputs = {Output(AECAlgoOutputFrameInfo, &info, 1071)};
    EXPECT_EQ(nullptr, Translate(outputs));
}

TEST_F(CAECProcessOutputTranslatorTest, ShortFrameInfoKeepsTheFieldBeyondItsSize)
{
    AECAlgoFrameInfo info = {};
    info.pixCntRatioLEF   = -1.0F;
    std::vector<AECAlgoOutput> outputs = {Output(AECAlgoOutputFrameInfo, &info, 1072)};

    ASSERT_NE(nullptr, Translate(outputs));
    EXPECT_EQ(1072U, outputs[0].sizeOfWrittenAECOutput);
    EXPECT_EQ(55.0F, info.frameLuma);
    EXPECT_EQ(-1.0F, info.pixCntRatioLEF);
}

TEST_F(CAECProcessOutputTranslatorTest, PlainRecordsNeedTheirSize)
{
    AECAlgoAPEXData                   apex      = {};
    UINT32                            currents[2] = {};
    StatsBayerGridBayerExposureConfig bgConfig  = {};
    StatsBayerHistogramConfig         histConfig = {};
    std::vector<AECAlgoOutput> outputs = {
        Output(AECAlgoOutputEXIFApex, &apex, 20),
        Output(AECAlgoOutputLEDCurrents, currents, 8),
        Output(AECAlgoOutputBGConfig, &bgConfig, 92),
        Output(AECAlgoOutputBHistConfig, &histConfig, 28),
    };
    ASSERT_NE(nullptr, Translate(outputs));
    EXPECT_EQ(4.5F, apex.brightnessValue);
    EXPECT_EQ(200U, currents[1]);
    EXPECT_EQ(64U, bgConfig.horizontalRegionCount);
    EXPECT_EQ(ColorChannelY, histConfig.channel);
    const UINT32 written[] = {20, 8, 92, 28};
    for (size_t index = 0; index < outputs.size(); ++index)
    {
        EXPECT_EQ(written[index], outputs[index].sizeOfWrittenAECOutput);

        std::vector<AECAlgoOutput> shortOutput = {outputs[index]};
        shortOutput[0].sizeOfAECOutput--;
        EXPECT_EQ(nullptr, Translate(shortOutput)) << "type " << outputs[index].outputType;

        std::vector<AECAlgoOutput> missing = {outputs[index]};
        missing[0].pAECOutput              = nullptr;
        EXPECT_EQ(nullptr, Translate(missing)) << "type " << outputs[index].outputType;
    }
}

TEST_F(CAECProcessOutputTranslatorTest, NoMotorFlagLeavesTheQueueEmptyAndReportsTheGivenSize)
{
    EXPECT_TRUE(Record()->LDMcmd.SetParamInfo.lensCap_is_available);
    EXPECT_FALSE(Record()->LDMcmd.SetParamInfo.motorSysConfig_is_available);

    AECAlgoOutput entry = Output(AECAlgoOutputLDMCmdQueue, nullptr, 16);
    EXPECT_EQ(16U, m_translator.copyLDMQueue(&entry));
    const LDMSetMotorInfoList* pQueue = static_cast<const LDMSetMotorInfoList*>(entry.pAECOutput);
    ASSERT_NE(nullptr, pQueue);
    EXPECT_EQ(0U, pQueue->numberOfSetCmd);
    EXPECT_EQ(nullptr, pQueue->pLDMCmd[0].pData);

    // Through the list the queue pointer and the size are reported the same way.
    std::vector<AECAlgoOutput> outputs = {Output(AECAlgoOutputLDMCmdQueue, nullptr, 24)};
    ASSERT_NE(nullptr, Translate(outputs));
    EXPECT_EQ(pQueue, outputs[0].pAECOutput);
    EXPECT_EQ(24U, outputs[0].sizeOfWrittenAECOutput);
}

TEST_F(CAECProcessOutputTranslatorTest, EachMotorFlagQueuesItsCommand)
{
    IrisPerFrameOutputParams& commands = Record()->LDMcmd.SetInfo;
    commands.motorCtrlData             = {LDMMotorPIris, 300, LDMPowerlevelStrong, -4};
    commands.motorMoveAbsData          = {LDMMotorZoom, 1234};
    commands.motorMoveRelData          = {LDMMotorPIris, -1, 17};

    struct Case
    {
        bool                      MotorSetFlag::*pFlag;
        UINT32                    size;
        LDMSetStepMotorConfigType type;
        const void*               pPayload;
    };
    const Case cases[] = {
        {&MotorSetFlag::motorCtrl_is_available, 16, LDMSetMotorControl, &commands.motorCtrlData},
        {&MotorSetFlag::motorMoveAbs_is_available, 8, LDMSetMotorMovingAbsolute, &commands.motorMoveAbsData},
        {&MotorSetFlag::motorMoveRel_is_available, 12, LDMSetMotorMovingRelative, &commands.motorMoveRelData},
    };
    for (const Case& entry : cases)
    {
        commands.motorSetFlag               = {};
        commands.motorSetFlag.*entry.pFlag  = true;
        AECAlgoOutput output                = Output(AECAlgoOutputLDMCmdQueue, nullptr, 0);
        EXPECT_EQ(entry.size, m_translator.copyLDMQueue(&output)) << "type " << entry.type;
        const LDMSetMotorInfoList* pQueue = static_cast<const LDMSetMotorInfoList*>(output.pAECOutput);
        ASSERT_EQ(1U, pQueue->numberOfSetCmd);
        EXPECT_EQ(entry.size, pQueue->pLDMCmd[0].sizeOfData);
        EXPECT_EQ(entry.type, pQueue->pLDMCmd[0].dataType);
        ASSERT_NE(nullptr, pQueue->pLDMCmd[0].pData);
        EXPECT_NE(entry.pPayload, pQueue->pLDMCmd[0].pData);
        EXPECT_EQ(0, std::memcmp(entry.pPayload, pQueue->pLDMCmd[0].pData, entry.size));
    }
}

TEST_F(CAECProcessOutputTranslatorTest, CommandsQueueInControlAbsoluteRelativeOrderUntilTheNextFrame)
{
    IrisPerFrameOutputParams& commands = Record()->LDMcmd.SetInfo;
    commands.motorCtrlData             = {LDMMotorPIris, 250, LDMPowerlevelWeak, 6};
    commands.motorSetFlag              = {false, true, true, true};

    WrapperLogCapture logs;
    AECAlgoOutput     output = Output(AECAlgoOutputLDMCmdQueue, nullptr, 4);
    EXPECT_EQ(36U, m_translator.copyLDMQueue(&output));
    const LDMSetMotorInfoList* pQueue = static_cast<const LDMSetMotorInfoList*>(output.pAECOutput);
    ASSERT_EQ(3U, pQueue->numberOfSetCmd);
    EXPECT_EQ(LDMSetMotorControl, pQueue->pLDMCmd[0].dataType);
    EXPECT_EQ(LDMSetMotorMovingAbsolute, pQueue->pLDMCmd[1].dataType);
    EXPECT_EQ(LDMSetMotorMovingRelative, pQueue->pLDMCmd[2].dataType);
    EXPECT_TRUE(logs.Has("[LDM] Previous commend number 0 "));
    EXPECT_TRUE(logs.Has("[copyLDMQueue] LDM_SET_MOTOR_CONTROL BacklashStep = 6"));
    EXPECT_TRUE(logs.Has("[copyLDMQueue] LDM_SET_MOTOR_CONTROL Speed = 250"));

    // The given size wins when it is larger.
    output = Output(AECAlgoOutputLDMCmdQueue, nullptr, 100);
    EXPECT_EQ(100U, m_translator.copyLDMQueue(&output));
    EXPECT_TRUE(logs.Has("[LDM] Previous commend number 3 "));

    // Next frame without commands: last frame's are released and the slots marked empty.
    commands.motorSetFlag = {};
    output                = Output(AECAlgoOutputLDMCmdQueue, nullptr, 8);
    EXPECT_EQ(8U, m_translator.copyLDMQueue(&output));
    EXPECT_EQ(0U, pQueue->numberOfSetCmd);
    for (UINT32 slot = 0; slot < 3; ++slot)
    {
        EXPECT_EQ(nullptr, pQueue->pLDMCmd[slot].pData);
        EXPECT_EQ(0U, pQueue->pLDMCmd[slot].sizeOfData);
        EXPECT_EQ(LDMSetMax, pQueue->pLDMCmd[slot].dataType);
    }
}

TEST_F(CAECProcessOutputTranslatorTest, QueueClearsOneTimePointersAndKeepsOneIRCutBlock)
{
    LDMLensCap            cap    = {};
    LDMMotorSystemConfig  config = {};
    IrisOneTimeInputParams& once = Record()->LDMcmd.SetParamInfo;
    once.pLensCap                = &cap;
    once.pMotorSysConfig         = &config;

    AECAlgoOutput output = Output(AECAlgoOutputLDMCmdQueue, nullptr, 16);
    ASSERT_NE(0U, m_translator.copyLDMQueue(&output));
    EXPECT_EQ(nullptr, once.pLensCap);
    EXPECT_EQ(nullptr, once.pMotorSysConfig);
    UINT32* pIRCutStatus = Record()->LDMcmd.SetQueryInfo.pIRCutStatus;
    ASSERT_NE(nullptr, pIRCutStatus);
    EXPECT_EQ(0U, *pIRCutStatus);

    // The status block is reused every frame rather than allocated anew.
    ASSERT_NE(0U, m_translator.copyLDMQueue(&output));
    EXPECT_EQ(pIRCutStatus, Record()->LDMcmd.SetQueryInfo.pIRCutStatus);
}

TEST_F(CAECProcessOutputTranslatorTest, MissingListFails)
{
    EXPECT_EQ(nullptr, m_translator.translate(nullptr));
    AECAlgoOutputList missing   = {};
    missing.numberOfAECOutputs = 1;
    EXPECT_EQ(nullptr, m_translator.translate(&missing));
    EXPECT_TRUE(m_logs.Has("Output list names 1 entries but has none"));
    AECAlgoOutputList empty = {};
    EXPECT_NE(nullptr, m_translator.translate(&empty));
}
