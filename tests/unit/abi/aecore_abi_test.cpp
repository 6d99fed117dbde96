// Checks the host interface's layout: sizes, offsets and enumerator values, and that C and C++ agree on them.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "aecore/aecore.h"
#include "unit/abi/abi_c_check.h"
#include "unit/abi/abi_layout_list.h"

namespace
{

struct CppTypeLayout
{
    const char* pName;
    size_t      size;
    size_t      alignment;
    size_t      contractSize;
    size_t      contractAlignment;
};

struct CppFieldOffset
{
    const char* pRecord;
    const char* pField;
    size_t      offset;
    size_t      contractOffset;
};

struct CppEnumerator
{
    const char* pName;
    long long   value;
    long long   contractValue;
};

#define ABI_CPP_TYPE(type, size, alignment) {#type, sizeof(type), alignof(type), size, alignment},
const CppTypeLayout kTypeLayouts[] = {AECORE_ABI_TYPES(ABI_CPP_TYPE)};

#define ABI_CPP_FIELD(record, field, offset) {#record, #field, offsetof(record, field), offset},
const CppFieldOffset kFieldOffsets[] = {AECORE_ABI_FIELDS(ABI_CPP_FIELD)};

#define ABI_CPP_ENUMERATOR(name, value) {#name, static_cast<long long>(name), value},
const CppEnumerator kEnumerators[] = {AECORE_ABI_ENUMERATORS(ABI_CPP_ENUMERATOR)};

// A payload and the byte count that its list entry must carry.
struct PayloadSize
{
    int    entryType;
    size_t payloadSize;
    size_t contractSize;
};

UINT32 CppGridFlagsWord(UINT32 usesY, UINT32 hasSatInfo, UINT32 onlyY)
{
    StatsBayerGrid grid{};
    grid.flags.usesY      = usesY;
    grid.flags.hasSatInfo = hasSatInfo;
    grid.flags.onlyY      = onlyY;
    UINT32 word           = 0;
    std::memcpy(&word, &grid.flags, sizeof(word));
    return word;
}

void ExpectPayloadSizes(const PayloadSize* pSizes, size_t count)
{
    for (size_t i = 0; i < count; i++)
    {
        EXPECT_EQ(pSizes[i].payloadSize, pSizes[i].contractSize) << "entry type " << pSizes[i].entryType;
    }
}

} // namespace

#if defined(__LP64__)

TEST(AecoreAbiTest, TypeSizesAndAlignmentsMatchTheHostContract)
{
    for (const CppTypeLayout& layout : kTypeLayouts)
    {
        EXPECT_EQ(layout.size, layout.contractSize) << layout.pName;
        EXPECT_EQ(layout.alignment, layout.contractAlignment) << layout.pName;
    }
}

TEST(AecoreAbiTest, FieldOffsetsMatchTheHostContract)
{
    for (const CppFieldOffset& field : kFieldOffsets)
    {
        EXPECT_EQ(field.offset, field.contractOffset) << field.pRecord << "::" << field.pField;
    }
}

TEST(AecoreAbiTest, InputEntriesHaveTheirRequiredSizes)
{
    const PayloadSize sizes[] = {
        {AECAlgoInputBayerGrid, sizeof(StatsBayerGrid), 112},
        {AECAlgoInputBayerHist, sizeof(StatsBayerHist), 72},
        {AECAlgoInputIHist, sizeof(StatsIHist), 64},
        {AECAlgoInputDebugData, sizeof(StatsDataPointer), 16},
        {AECAlgoInputHDRBHist, sizeof(StatsBayerHist), 72},
        {AECAlgoInputBayerGridROI, sizeof(StatsRectangle), 16},
        {AECAlgoInputRDIStats, sizeof(HDR3ExposureStats), 16},
        {AECAlgoInputBayerHistNonUniform, sizeof(StatsBayerHist), 72},
        {AECAlgoInputBayerGridLEF, sizeof(StatsBayerGrid), 112},
        {AECAlgoInputBayerHistLEF, sizeof(StatsBayerHist), 72},
        {AECAlgoInputHDRBHistLEF, sizeof(StatsBayerHist), 72},
        {AECAlgoInputSHDRInterPolatedData, sizeof(StatsSHDRParams), 1088},
        {AECAlgoInputBayerGridMEF, sizeof(StatsBayerGrid), 112},
        {AECAlgoInputHDRBHistMEF, sizeof(StatsBayerHist), 72},
    };
    ExpectPayloadSizes(sizes, sizeof(sizes) / sizeof(sizes[0]));
}

TEST(AecoreAbiTest, OutputEntriesHaveTheirRequiredSizes)
{
    const PayloadSize sizes[] = {
        {AECAlgoOutputFrameControl, offsetof(AECAlgoFrameControl, inSensorHDR3ExpTriggerOutput), 68},
        {AECAlgoOutputEXIFApex, sizeof(AECAlgoAPEXData), 20},
        {AECAlgoOutputLEDCurrents, sizeof(UINT32[2]), 8},
        {AECAlgoOutputExposureSets, sizeof(AECAlgoExposureSet), 24},
        {AECAlgoOutputRealExposureSets, sizeof(AECAlgoExposureSet), 24},
        {AECAlgoOutputBGConfig, sizeof(StatsBayerGridBayerExposureConfig), 92},
        {AECAlgoOutputBHistConfig, sizeof(StatsBayerHistogramConfig), 28},
    };
    ExpectPayloadSizes(sizes, sizeof(sizes) / sizeof(sizes[0]));
    EXPECT_EQ(AECORE_FRAME_CONTROL_OUTPUT_SIZE, 68u);
    EXPECT_EQ(AECORE_FRAME_INFO_OUTPUT_SIZE, 1072u);
}

TEST(AecoreAbiTest, GetParamEntriesHaveTheirRequiredSizes)
{
    const PayloadSize inputs[] = {
        {AECAlgoGetParamInputSnapshotType, sizeof(AECAlgoSnapshotConfig), 12},
        {AECAlgoGetParamInputISOValue, sizeof(UINT32), 4},
        {AECAlgoGetParamInputDebugDataPointer, sizeof(AECAlgoDebugDataConfig), 24},
    };
    ExpectPayloadSizes(inputs, sizeof(inputs) / sizeof(inputs[0]));

    const PayloadSize outputs[] = {
        {AECAlgoGetParamOutputFrameControl, offsetof(AECAlgoFrameControl, inSensorHDR3ExpTriggerOutput), 68},
        {AECAlgoGetParamOutputExposureSets, sizeof(AECAlgoExposureSet), 24},
        {AECAlgoGetParamOutputLEDCurrents, sizeof(UINT32[2]), 8},
        {AECAlgoGetParamOutputEXIFApex, sizeof(AECAlgoAPEXData), 20},
        {AECAlgoGetParamOutputGain, sizeof(FLOAT), 4},
        {AECAlgoGetParamOutputFlashMeasurementConfig, sizeof(AECAlgoFlashMeasurementConfig), 12},
        {AECAlgoGetParamOutputFlashMeasurementResult, sizeof(AECAlgoFlashMeasurementResult), 16},
        {AECAlgoGetParamOutputDebugData, sizeof(VOID*), 8},
        {AECAlgoGetParamOutputBGStatsConfig, sizeof(StatsBayerGridBayerExposureConfig), 92},
        {AECAlgoGetParamOutputEVCapabilities, sizeof(AECAlgoEVCapabilities), 3},
        {AECAlgoGetParamOutputPeerInfo, sizeof(VOID*), 8},
        {AECAlgoGetParamOutputBHistStatsConfig, sizeof(StatsBayerHistogramConfig), 28},
    };
    ExpectPayloadSizes(outputs, sizeof(outputs) / sizeof(outputs[0]));
}

TEST(AecoreAbiTest, SetParamPayloadsHaveTheirRequiredSizes)
{
    const PayloadSize sizes[] = {
        {AECAlgoSetParamPipelineDelay, sizeof(UINT8), 1},
        {AECAlgoSetParamOperationMode, sizeof(AECAlgoOperationModeType), 4},
        {AECAlgoSetParamMeteringMode, sizeof(AECAlgoMeteringModeType), 4},
        {AECAlgoSetParamExposureCompensation, sizeof(INT32), 4},
        {AECAlgoSetParamFlickerCompensation, sizeof(StatisticsAntibanding), 4},
        {AECAlgoSetParamAECLock, sizeof(AECAlgoLockType), 4},
        {AECAlgoSetParamLEDMode, sizeof(AECAlgoLEDModeType), 4},
        {AECAlgoSetParamFlashMeasurement, sizeof(AECAlgoFlashMeasKindType), 4},
        {AECAlgoSetParamDebugDataEnable, sizeof(BOOL), 4},
        {AECAlgoSetParamFlashMaximumCurrent, sizeof(INT32), 4},
        {AECAlgoSetParamMultiExpSensorMode, sizeof(AECAlgoHDRType), 4},
        {AECAlgoSetParamIsDualCamera, sizeof(BOOL), 4},
        {AECAlgoSetParamControlPostRawSensitivityBoost, sizeof(INT32), 4},
        {AECAlgoSetParamDisableADRC, sizeof(BOOL), 4},
        {AECAlgoSetParamConvergenceSpeed, sizeof(FLOAT), 4},
        {AECAlgoSetParamFPSRange, sizeof(AECAlgoFPSRange), 8},
        {AECAlgoSetParamCameraInfo, sizeof(StatsCameraInfo), 8},
        {AECAlgoSetParamTouchROI, sizeof(AECAlgoROIList), 16},
        {AECAlgoSetParamCropWindow, sizeof(StatsRectangle), 16},
        {AECAlgoSetParamStartUpExpSensitivity, sizeof(AECAlgoStartupSensitivity), 20},
        {AECAlgoSetParamFlashCalibrationData, sizeof(AECAlgoFlashCalibrationData), 24},
        {AECAlgoSetParamAWBState, sizeof(AECAlgoWhiteBalanceState), 28},
        {AECAlgoSetParamSetDiagTestConfig, sizeof(AECAlgoDiagConfig), 28},
        {AECAlgoSetParamDualcamCalibrationInfo, sizeof(AECAlgoDCCalibrationInfo), 28},
        {AECAlgoSetParamManualSetting, sizeof(AECAlgoManualSetting), 32},
        {AECAlgoSetParamLDMStateQueue, sizeof(LDMSetAECInputMotorInfo), 40},
        {AECAlgoSetParamOverrideSetting, sizeof(AECAlgoOverrideSettingParam), 48},
        {AECAlgoSetParamPeerInfo, sizeof(StatsPeerInfoCombo), 88},
        {AECAlgoSetParamUnstabilizedFaceROI, sizeof(UnstabilizedROIInformation), 400},
        {AECAlgoSetParamGyroInfo, sizeof(StatsGyroInfo), 664},
        {AECAlgoSetParamCustomExposureTable, sizeof(AECCustomExposureTable), 1024},
        {AECAlgoSetParamCustomMeteringTable, sizeof(AECCustomMeteringTable), 1028},
    };
    ExpectPayloadSizes(sizes, sizeof(sizes) / sizeof(sizes[0]));
}

#endif // __LP64__

TEST(AecoreAbiTest, EnumeratorsHaveTheirContractValues)
{
    for (const CppEnumerator& enumerator : kEnumerators)
    {
        EXPECT_EQ(enumerator.value, enumerator.contractValue) << enumerator.pName;
    }
}

TEST(AecoreAbiTest, CAndCppAgreeOnTypeLayouts)
{
    size_t                count    = 0;
    const AbiCTypeLayout* pCLayout = AbiCTypeLayouts(&count);
    ASSERT_EQ(count, sizeof(kTypeLayouts) / sizeof(kTypeLayouts[0]));
    for (size_t i = 0; i < count; i++)
    {
        EXPECT_STREQ(pCLayout[i].pName, kTypeLayouts[i].pName);
        EXPECT_EQ(pCLayout[i].size, kTypeLayouts[i].size) << kTypeLayouts[i].pName;
        EXPECT_EQ(pCLayout[i].alignment, kTypeLayouts[i].alignment) << kTypeLayouts[i].pName;
    }
}

TEST(AecoreAbiTest, CAndCppAgreeOnFieldOffsets)
{
    size_t                 count   = 0;
    const AbiCFieldOffset* pCField = AbiCFieldOffsets(&count);
    ASSERT_EQ(count, sizeof(kFieldOffsets) / sizeof(kFieldOffsets[0]));
    for (size_t i = 0; i < count; i++)
    {
        EXPECT_STREQ(pCField[i].pField, kFieldOffsets[i].pField);
        EXPECT_EQ(pCField[i].offset, kFieldOffsets[i].offset) << kFieldOffsets[i].pRecord << "::" << kFieldOffsets[i].pField;
    }
}

TEST(AecoreAbiTest, CAndCppAgreeOnEnumerators)
{
    size_t                count        = 0;
    const AbiCEnumerator* pCEnumerator = AbiCEnumerators(&count);
    ASSERT_EQ(count, sizeof(kEnumerators) / sizeof(kEnumerators[0]));
    for (size_t i = 0; i < count; i++)
    {
        EXPECT_STREQ(pCEnumerator[i].pName, kEnumerators[i].pName);
        EXPECT_EQ(pCEnumerator[i].value, kEnumerators[i].value) << kEnumerators[i].pName;
    }
}

// The grid parser reads the flags as bit 0 usesY, bit 1 hasSatInfo, bit 2 onlyY of one word.
TEST(AecoreAbiTest, GridFlagBitsSitAtTheirPositionsInCAndCpp)
{
    EXPECT_EQ(AbiCGridFlagsWord(1, 0, 0), 1u);
    EXPECT_EQ(AbiCGridFlagsWord(0, 1, 0), 2u);
    EXPECT_EQ(AbiCGridFlagsWord(0, 0, 1), 4u);
    EXPECT_EQ(CppGridFlagsWord(1, 0, 0), 1u);
    EXPECT_EQ(CppGridFlagsWord(0, 1, 0), 2u);
    EXPECT_EQ(CppGridFlagsWord(0, 0, 1), 4u);
}
