// Tests of the convergence module's start indices: tuning per mode, host start settings, previous mode, flash.
#include <gtest/gtest.h>

#include <cmath>

#include "aec/core/modules/mod_conv/convflashmeasurement.h"
#include "unit/conv/convmoduletestsupport.h"

namespace
{

const FLOAT OneStop = static_cast<FLOAT>(std::log10(2.0) * CAECModConvergence::IndexPerDecade);

class ConvStartTest : public ConvModuleTest
{
protected:
    VOID SetUp() override
    {
        ConvModuleTest::SetUp();
        StartUp().generic.startExpIndex    = 210.0F;
        StartUp().fastAEC.startExpIndex    = 220.0F;
        StartUp().aggressive.startExpIndex = 230.0F;
        Flash().flashConv.flashMeasurementConv.startExpIndex = 300.0F;
        m_pModule->OnFlashMeasKindChange();
    }
    VOID TearDown() override
    {
        // The flash measurement state is shared by all cameras; leave none behind.
        m_pModule->OnFlashMeasKindChange();
        ConvModuleTest::TearDown();
    }

    AecResult Query(BOOL refuseFast = FALSE)
    {
        return m_pModule->GetStartExposureIndices(m_indices, &m_lux, refuseFast);
    }
    VOID ExpectIndices(FLOAT shortIndex, FLOAT longIndex, FLOAT safeIndex)
    {
        EXPECT_NEAR(shortIndex, m_indices[AECAlgoExposureShort], 1e-3F);
        EXPECT_NEAR(longIndex, m_indices[AECAlgoExposureLong], 1e-3F);
        EXPECT_NEAR(safeIndex, m_indices[AECAlgoExposureSafe], 1e-3F);
    }

    FLOAT m_indices[AECAlgoExposureCount] = {};
    FLOAT m_lux                           = 0.0F;
};

TEST_F(ConvStartTest, NullDestinationsAreRefused)
{
    EXPECT_EQ(AecError, m_pModule->GetStartExposureIndices(nullptr, &m_lux, FALSE));
    EXPECT_EQ(AecError, m_pModule->GetStartExposureIndices(m_indices, nullptr, FALSE));
}

TEST_F(ConvStartTest, WithoutHistoryEachModeStartsFromItsTuning)
{
    const struct
    {
        AECAlgoOperationModeType mode;
        FLOAT                    index;
    } cases[] = {{AECAlgoOperationModeStreaming, 210.0F},
                 {AECAlgoOperationModePreflash, 210.0F},
                 {AECAlgoOperationModeFastAEC, 220.0F},
                 {AECAlgoOperationModeAggressiveAEC, 230.0F},
                 {AECAlgoOperationModeInit, 0.0F},
                 {static_cast<AECAlgoOperationModeType>(9), 0.0F}};
    for (const auto& rCase : cases)
    {
        m_opMode = rCase.mode;
        EXPECT_EQ(AecSuccess, Query());
        ExpectIndices(rCase.index, rCase.index, rCase.index);
        EXPECT_FLOAT_EQ(rCase.index, m_lux) << "the lux index follows the safe start index";
    }
    EXPECT_TRUE(ConvLogContains("Tuning startup exposure indices"));
    EXPECT_TRUE(ConvLogContains("no start index in init mode"));
    EXPECT_TRUE(ConvLogContains("unexpected operation mode"));
}

TEST_F(ConvStartTest, StartIndicesAreClampedToTheTable)
{
    m_opMode                        = AECAlgoOperationModeStreaming;
    StartUp().generic.startExpIndex = 500.0F;
    Query();
    ExpectIndices(400.0F, 400.0F, 400.0F);
    m_limit.exposureLimitation.expIndex.min = 250.0F;
    StartUp().generic.startExpIndex         = 100.0F;
    Query();
    ExpectIndices(250.0F, 250.0F, 250.0F);
}

TEST_F(ConvStartTest, PreviousModeBridgesWithTheEVDifference)
{
    m_opMode                                          = AECAlgoOperationModeStreaming;
    m_prevMode.isValid                                = TRUE;
    m_prevMode.lastFrame.expIndices[AECAlgoExposureShort] = 150.0F;
    m_prevMode.lastFrame.expIndices[AECAlgoExposureLong]  = 160.0F;
    m_prevMode.lastFrame.expIndices[AECAlgoExposureSafe]  = 170.0F;
    m_prevMode.lastFrame.luxIndex                     = 180.0F;
    m_prevMode.lastFrame.previewEV                    = 1.0F;

    // The previous mode ran one stop up; the EV now is 0, so the stop comes off.
    EXPECT_EQ(AecSuccess, Query());
    ExpectIndices(150.0F - OneStop, 160.0F - OneStop, 170.0F - OneStop);
    EXPECT_FLOAT_EQ(180.0F, m_lux);
    EXPECT_TRUE(ConvLogContains("Previous mode startup exposure indices; mode 1"));

    // The same EV now: nothing to correct.
    m_ev.EVUIVal = 6;
    Query();
    ExpectIndices(150.0F, 160.0F, 170.0F);

    // Preflash meters without EV: the stop comes off whatever the EV.
    m_opMode = AECAlgoOperationModePreflash;
    Query();
    ExpectIndices(150.0F - OneStop, 160.0F - OneStop, 170.0F - OneStop);
}

TEST_F(ConvStartTest, WarmStartIsCappedToTheMiddleBandAndUsedOnce)
{
    m_opMode                                    = AECAlgoOperationModeStreaming;
    m_start.startMode                           = AECAlgoStartupModeWarmStart;
    m_start.startUpIndices[AECAlgoExposureShort] = 50.0F;
    m_start.startUpIndices[AECAlgoExposureLong]  = 350.0F;
    m_start.startUpIndices[AECAlgoExposureSafe]  = 200.0F;
    StartUp().warmStartUp.enableWarmStartUp     = TRUE;
    StartUp().warmStartUp.startExpIndexRangePct = 20.0F; // band 400 * 0.8 = 320 trimmed: [160, 240]

    EXPECT_FALSE(m_pModule->m_isStartSettingUsed);
    Query();
    ExpectIndices(160.0F, 240.0F, 200.0F);
    EXPECT_TRUE(m_pModule->m_isStartSettingUsed);
    EXPECT_TRUE(ConvLogContains("Compute Warm Start based startup exposure indices. Tuning value: 20.00"));

    Query();
    ExpectIndices(210.0F, 210.0F, 210.0F);

    // Percentages of 1 and below leave no band: the host's indices pass unclamped.
    m_pModule->m_isStartSettingUsed             = FALSE;
    StartUp().warmStartUp.startExpIndexRangePct = 0.0F;
    Query();
    ExpectIndices(50.0F, 350.0F, 200.0F);

    // A negative percentage keeps the full width: the band is a point and no cap applies.
    m_pModule->m_isStartSettingUsed             = FALSE;
    StartUp().warmStartUp.startExpIndexRangePct = -1.0F;
    Query();
    ExpectIndices(50.0F, 350.0F, 200.0F);
}

TEST_F(ConvStartTest, WarmStartNeedsTuningOrTheOverride)
{
    m_opMode                                = AECAlgoOperationModeStreaming;
    m_start.startMode                       = AECAlgoStartupModeWarmStart;
    m_start.startUpIndices[0]               = 180.0F;
    m_start.startUpIndices[1]               = 180.0F;
    m_start.startUpIndices[2]               = 180.0F;
    StartUp().warmStartUp.enableWarmStartUp = FALSE;
    Query();
    ExpectIndices(210.0F, 210.0F, 210.0F);
    EXPECT_FALSE(m_pModule->m_isStartSettingUsed);

    m_override.enableWarmStart = TRUE;
    Query();
    ExpectIndices(180.0F, 180.0F, 180.0F);
}

TEST_F(ConvStartTest, FastConvergenceStartUnlessRefused)
{
    m_opMode                  = AECAlgoOperationModeStreaming;
    m_start.startMode         = AECAlgoStartupModeFastConvergence;
    m_start.startUpIndices[0] = -5.0F;
    m_start.startUpIndices[1] = 450.0F;
    m_start.startUpIndices[2] = 200.0F;

    Query(TRUE);
    ExpectIndices(210.0F, 210.0F, 210.0F);
    EXPECT_FALSE(m_pModule->m_isStartSettingUsed);

    Query(FALSE);
    ExpectIndices(0.0F, 400.0F, 200.0F);
    EXPECT_TRUE(ConvLogContains("FAST AEC based startup exposure indices"));
}

TEST_F(ConvStartTest, HDR3PlacesTheSafeStartBetweenShortAndLong)
{
    m_opMode                                              = AECAlgoOperationModeStreaming;
    m_hdr3                                                = TRUE;
    m_prevMode.isValid                                    = TRUE;
    m_prevMode.lastFrame.expIndices[AECAlgoExposureShort] = 100.0F;
    m_prevMode.lastFrame.expIndices[AECAlgoExposureLong]  = 200.0F;
    m_prevMode.lastFrame.expIndices[AECAlgoExposureSafe]  = 300.0F;
    m_adapter.GetTuningModules().modSensorHDRConfig->esRatio = 3.0F;
    Query();
    ExpectIndices(100.0F, 200.0F, 125.0F);
}

TEST_F(ConvStartTest, FlashCalibrationStartsFromTheFixedIndex)
{
    FLOAT fixed[3] = {111.0F, 222.0F, 333.0F};
    aecFlash::LEDMixCalibType& rCalib = Flash().flashExt.LEDTable.CCTTableCalibration;
    rCalib.fixedExpIndex              = fixed;
    rCalib.fixedExpIndexCount         = 3;
    m_opMode                          = AECAlgoOperationModeFlashMeasurement;
    m_flashMeasKind                   = AECAlgoFlashMeasKindCalib;
    m_flashMeasIndex                  = 1;
    EXPECT_EQ(AecSuccess, Query());
    ExpectIndices(222.0F, 222.0F, 222.0F);
    EXPECT_TRUE(ConvLogContains("Flash measurement startup exposure indices"));
    EXPECT_EQ(1u, ConvFlashMeasurement::GetMeasIndex());
    EXPECT_EQ(AECAlgoFlashMeasKindCalib, ConvFlashMeasurement::GetMeasKind());

    m_flashMeasIndex = 3;
    EXPECT_EQ(AecError, Query());
    ExpectIndices(300.0F, 300.0F, 300.0F);
    EXPECT_TRUE(ConvLogContains("flashMeas: measurement index 3 larger than fixedExpIndexCount 3"));
}

TEST_F(ConvStartTest, FlashMeasurementStartsFromTheLastSettledTargetScaledByLEDPower)
{
    aecFlash::LEDMixType mixes[2] = {};
    mixes[0].LED1Setting          = 10;
    mixes[0].LED2Setting          = 10;
    mixes[1].LED1Setting          = 5;
    aecFlash::LEDMatchTableType& rTable = Flash().flashExt.LEDTable;
    rTable.CCTTables                    = mixes;
    rTable.CCTTablesCount               = 2;
    m_flashMeasKind                     = AECAlgoFlashMeasKindTuning;

    m_opMode = AECAlgoOperationModeFlashMeasurement;
    Query();
    ExpectIndices(300.0F, 300.0F, 300.0F); // no measurement settled yet

    // Run a measurement until it settles at its target.
    SetMode(AECAlgoOperationModeFlashMeasurement);
    SetHistory(250.0F, 250.0F, 250.0F);
    BOOL settled = FALSE;
    for (UINT32 frame = 0; (frame < 40) && (FALSE == settled); frame++)
    {
        settled = Frame(250.0F).isBrightnessSettled;
    }
    ASSERT_TRUE(settled);
    ASSERT_FLOAT_EQ(250.0F, ConvFlashMeasurement::GetPreviousFlashMeasTargetIndex());

    m_flashMeasIndex = 0;
    Query();
    ExpectIndices(250.0F, 250.0F, 250.0F);

    // From a mix of power 20 to one of power 5 the exposure rises by (20 / 5)^0.8.
    m_flashMeasIndex     = 1;
    const FLOAT expected = 250.0F + static_cast<FLOAT>(std::log10(std::pow(4.0, 0.8)) * CAECModConvergence::IndexPerDecade);
    Query();
    ExpectIndices(expected, expected, expected);
    EXPECT_TRUE(ConvLogContains("flashMeas: fine-tuned start index"));

    // An index past the LED table cannot be fine-tuned.
    m_flashMeasIndex = 2;
    Query();
    ExpectIndices(250.0F, 250.0F, 250.0F);
    EXPECT_TRUE(ConvLogContains("flashMeas: could not use flux"));

    // A change of measurement kind forgets the last target.
    EXPECT_EQ(AecSuccess, m_pModule->OnFlashMeasKindChange());
    Query();
    ExpectIndices(300.0F, 300.0F, 300.0F);
}

} // namespace
