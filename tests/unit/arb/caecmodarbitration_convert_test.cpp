// Tests of the arbitration module's conversions: ISO and gain, frame rate, sensitivity to index, Exif values.
#include <cmath>

#include "unit/arb/arbtestsupport.h"

namespace
{

constexpr DOUBLE K = 77.89852905273438;

// A module with the default tuning in place of the tuning header event: table 0 streams, table 1 (twice the
// sensitivity scale) serves snapshots.
class ArbConvertTest : public ArbitrationTest
{
protected:
    VOID SetUp() override
    {
        ArbitrationTest::SetUp();
        m_pModule = std::make_unique<CAECModArbitration>(&m_context, &m_callback);
        CAECModArbitrationTestPeer::Tuning(*m_pModule)           = &m_pTuning->arbTuningData;
        CAECModArbitrationTestPeer::TableZeroTuned(*m_pModule)   = TRUE;
        CAECModArbitrationTestPeer::TableIDStreaming(*m_pModule) = 0;
        CAECModArbitrationTestPeer::TableIDStill(*m_pModule)     = 1;
    }

    VOID RemoveTuning() { CAECModArbitrationTestPeer::Tuning(*m_pModule) = nullptr; }

    UINT32 Gain2ISO(FLOAT gain, aecglobalelements::ExposureTableIDType a, aecglobalelements::ExposureTableIDType b)
    {
        return CAECModArbitrationTestPeer::UtilGain2ISO(*m_pModule, gain, a, b);
    }
    FLOAT ISO2Gain(UINT32 iso, aecglobalelements::ExposureTableIDType table)
    {
        return CAECModArbitrationTestPeer::UtilISO2Gain(*m_pModule, iso, table);
    }
    VOID Exif(AECExifInfo* pExif, const AECAlgoExposureData* pSets, aecglobalelements::ExposureTableIDType refTable,
              aecglobalelements::ExposureTableIDType stillTable, FLOAT EV)
    {
        CAECModArbitrationTestPeer::CalculateExifInfo(*m_pModule, pExif, pSets, refTable, stillTable, EV);
    }

    VOID EnableQuantization() { ArbCore()->ISOData.enableISOQuantization = TRUE; }

    // Index of sensitivity s in a table whose first knee is (gain, time, index) with correction c.
    static FLOAT ExpectedIndex(FLOAT s, FLOAT c, FLOAT gain0, UINT64 time0, FLOAT index0)
    {
        const FLOAT scale = c * gain0 * static_cast<FLOAT>(time0);
        return static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(s / scale)) * K) + index0;
    }

    // Short 10 ms at gain 2, safe twice as sensitive, long four times.
    static VOID FillSets(AECAlgoExposureData* pSets)
    {
        pSets[AECAlgoExposureShort].exposureTime = 10000000U;
        pSets[AECAlgoExposureShort].linearGain   = 2.0F;
        pSets[AECAlgoExposureShort].sensitivity  = 2.0e7F;
        pSets[AECAlgoExposureSafe].exposureTime  = 10000000U;
        pSets[AECAlgoExposureSafe].linearGain    = 4.0F;
        pSets[AECAlgoExposureSafe].sensitivity   = 4.0e7F;
        pSets[AECAlgoExposureLong].exposureTime  = 20000000U;
        pSets[AECAlgoExposureLong].linearGain    = 4.0F;
        pSets[AECAlgoExposureLong].sensitivity   = 8.0e7F;
    }

    RecordingArbitrationCallback        m_callback;
    std::unique_ptr<CAECModArbitration> m_pModule;
};

// ---- ISO and gain ----

TEST_F(ArbConvertTest, QueryISO2GainBeforeTuningIsISOOverHundred)
{
    RemoveTuning();
    EXPECT_FLOAT_EQ(4.0F, m_pModule->QueryISO2Gain(400U, FALSE));
    EXPECT_FLOAT_EQ(0.5F, m_pModule->QueryISO2Gain(50U, TRUE));
}

TEST_F(ArbConvertTest, QueryISO2GainUsesTheStreamingOrTheStillTable)
{
    EXPECT_FLOAT_EQ(4.0F, m_pModule->QueryISO2Gain(400U, FALSE));
    // The still table reports twice the sensitivity per gain, so the same ISO needs twice the gain.
    EXPECT_FLOAT_EQ(8.0F, m_pModule->QueryISO2Gain(400U, TRUE));
}

TEST_F(ArbConvertTest, ISO2GainScalesByTheISO100GainAndNeverGoesBelowUnity)
{
    ArbCore()->ISOData.previewISO100Gain = 2.0F;
    EXPECT_FLOAT_EQ(2.0F, ISO2Gain(100U, 0));
    EXPECT_FLOAT_EQ(8.0F, ISO2Gain(200U, 1));
    EXPECT_FLOAT_EQ(1.0F, ISO2Gain(20U, 0));
    EXPECT_FLOAT_EQ(1.0F, ISO2Gain(0U, 0));
}

TEST_F(ArbConvertTest, ISO2GainWithoutTuningTakesUnityAsISO100Gain)
{
    RemoveTuning();
    EXPECT_FLOAT_EQ(3.0F, ISO2Gain(300U, 0));
}

TEST_F(ArbConvertTest, Gain2ISOWithinOneTableIsGainTimesHundredOverISO100Gain)
{
    EXPECT_EQ(400U, Gain2ISO(4.0F, 0, 0));
    EXPECT_EQ(400U, Gain2ISO(4.0F, 1, 1));
    ArbCore()->ISOData.previewISO100Gain = 2.0F;
    EXPECT_EQ(200U, Gain2ISO(4.0F, 0, 0));
}

TEST_F(ArbConvertTest, Gain2ISOBetweenTablesOfDifferentSensitivityCorrection)
{
    // Table 1 states twice the sensitivity of table 0: a table-0 gain is half the ISO on table 1's scale.
    EXPECT_EQ(200U, Gain2ISO(4.0F, 0, 1));
    EXPECT_EQ(800U, Gain2ISO(4.0F, 1, 0));
}

TEST_F(ArbConvertTest, GainToISOAndBackAcrossTablesReturnsTheGain)
{
    const UINT32 iso = Gain2ISO(4.0F, 0, 1);
    EXPECT_FLOAT_EQ(4.0F, ISO2Gain(iso, 1));
}

TEST_F(ArbConvertTest, Gain2ISOWithoutTuningIsGainTimesHundred)
{
    RemoveTuning();
    EXPECT_EQ(250U, Gain2ISO(2.5F, 0, 1));
    EXPECT_TRUE(ArbLogContains("Converting Gain to ISO without tuning, iso = gain * 100"));
}

TEST_F(ArbConvertTest, Gain2ISOTruncates)
{
    EXPECT_EQ(129U, Gain2ISO(1.299F, 0, 0));
}

TEST_F(ArbConvertTest, Gain2ISOSaturatesOutOfRangeGains)
{
    EXPECT_EQ(4294967295U, Gain2ISO(1.0e9F, 0, 0));
    EXPECT_EQ(0U, Gain2ISO(-2.0F, 0, 0));
    EXPECT_EQ(0U, Gain2ISO(std::nanf(""), 0, 0));
}

TEST_F(ArbConvertTest, QuantizedISOAboveTheLastThresholdIsTheLastQuantizedValue)
{
    EnableQuantization();
    EXPECT_EQ(5000U, Gain2ISO(60.0F, 0, 0));
    EXPECT_EQ(5000U, Gain2ISO(57.0F, 0, 0));
}

TEST_F(ArbConvertTest, QuantizedISOBetweenThresholdsTakesTheValueOfTheNextThresholdAbove)
{
    EnableQuantization();
    EXPECT_EQ(100U, Gain2ISO(0.5F, 0, 0));  // 50, below the first threshold 112
    EXPECT_EQ(160U, Gain2ISO(1.5F, 0, 0));  // 150, first threshold above is 178
    EXPECT_EQ(200U, Gain2ISO(2.0F, 0, 0));  // 200, threshold 224
    EXPECT_EQ(125U, Gain2ISO(1.40F, 0, 0)); // 140, threshold 141
}

TEST_F(ArbConvertTest, QuantizedISOEqualToAThresholdTakesTheNextThreshold)
{
    EnableQuantization();
    UINT32 thresholds[] = {150U, 300U, 600U};
    UINT32 quantized[]  = {160U, 320U, 640U};
    ArbCore()->ISOData.thresQuantizationISOValue      = thresholds;
    ArbCore()->ISOData.thresQuantizationISOValueCount = 3U;
    ArbCore()->ISOData.quantizedISOValue              = quantized;
    ArbCore()->ISOData.quantizedISOValueCount         = 3U;
    EXPECT_EQ(320U, Gain2ISO(1.5F, 0, 0)); // 150 is not above itself
    EXPECT_EQ(640U, Gain2ISO(3.0F, 0, 0));
}

TEST_F(ArbConvertTest, QuantizedISOPositionIsCappedAtTheLastQuantizedEntry)
{
    EnableQuantization();
    ArbCore()->ISOData.quantizedISOValueCount = 3U; // 100, 125, 160
    EXPECT_EQ(160U, Gain2ISO(3.0F, 0, 0));          // threshold 355 is entry 5
    EXPECT_EQ(125U, Gain2ISO(1.2F, 0, 0));
    EXPECT_EQ(160U, Gain2ISO(60.0F, 0, 0));
}

TEST_F(ArbConvertTest, QuantizedISOExactlyAtTheLastThresholdHasNoThresholdAboveAndStays)
{
    EnableQuantization();
    UINT32 thresholds[] = {150U, 300U};
    UINT32 quantized[]  = {160U, 320U};
    ArbCore()->ISOData.thresQuantizationISOValue      = thresholds;
    ArbCore()->ISOData.thresQuantizationISOValueCount = 2U;
    ArbCore()->ISOData.quantizedISOValue              = quantized;
    ArbCore()->ISOData.quantizedISOValueCount         = 2U;
    EXPECT_EQ(300U, Gain2ISO(3.0F, 0, 0));
    EXPECT_EQ(320U, Gain2ISO(4.0F, 0, 0));
}

TEST_F(ArbConvertTest, QuantizationWithoutValuesKeepsTheISO)
{
    EnableQuantization();
    ArbCore()->ISOData.quantizedISOValueCount = 0U;
    EXPECT_EQ(150U, Gain2ISO(1.5F, 0, 0));
    EXPECT_TRUE(ArbLogContains("ISO quantization without thresholds"));
}

TEST_F(ArbConvertTest, Gain2ISOWithAZeroCorrectionOfTheReferenceTableIgnoresTheTableRatio)
{
    ArbCore()->expTables[0].sensitivityCorrectionFactor = 0.0F;
    EXPECT_EQ(400U, Gain2ISO(4.0F, 0, 1));
    EXPECT_TRUE(ArbLogContains("ISO stated without table ratio"));
}

TEST_F(ArbConvertTest, Gain2ISOWithAZeroScaleGivesISOZero)
{
    ArbCore()->expTables[1].sensitivityCorrectionFactor = 0.0F;
    EXPECT_EQ(0U, Gain2ISO(4.0F, 0, 1));
    EXPECT_TRUE(ArbLogContains("is not positive, ISO 0"));

    ArbCore()->ISOData.previewISO100Gain = 0.0F;
    EXPECT_EQ(0U, Gain2ISO(4.0F, 0, 0));
}

TEST_F(ArbConvertTest, ISO2GainWithAZeroCorrectionOfTableZeroIgnoresTheTableRatio)
{
    ArbCore()->expTables[0].sensitivityCorrectionFactor = 0.0F;
    EXPECT_FLOAT_EQ(4.0F, ISO2Gain(400U, 1));
    EXPECT_TRUE(ArbLogContains("without table ratio"));
}

TEST_F(ArbConvertTest, SensitivityCorrectionComesFromTheTableOfTheID)
{
    EXPECT_FLOAT_EQ(1.0F, CAECModArbitrationTestPeer::SensitivityCorrectionOf(*m_pModule, 0));
    EXPECT_FLOAT_EQ(2.0F, CAECModArbitrationTestPeer::SensitivityCorrectionOf(*m_pModule, 1));
    m_customTable.isValid                                = TRUE;
    m_customTable.expTable.sensitivityCorrectionFactor = 3.0F;
    EXPECT_FLOAT_EQ(3.0F, CAECModArbitrationTestPeer::SensitivityCorrectionOf(*m_pModule, CustomExposureTableID));
}

TEST_F(ArbConvertTest, SensitivityCorrectionWithoutTablesIsZero)
{
    ArbCore()->expTablesCount = 0U;
    EXPECT_FLOAT_EQ(0.0F, CAECModArbitrationTestPeer::SensitivityCorrectionOf(*m_pModule, 0));
}

// ---- Frame rate ----

TEST_F(ArbConvertTest, QueryExpTime2FPSCountsTheBlankingTime)
{
    const FLOAT expected = static_cast<FLOAT>(1.0e9 / static_cast<DOUBLE>(static_cast<FLOAT>(100000000U + 200800U)));
    EXPECT_FLOAT_EQ(expected, m_pModule->QueryExpTime2FPS(100000000U));
    EXPECT_NEAR(9.98, m_pModule->QueryExpTime2FPS(100000000U), 0.01);
}

TEST_F(ArbConvertTest, QueryExpTime2FPSIsCappedAtTheMaximumFrameRate)
{
    EXPECT_FLOAT_EQ(30.0F, m_pModule->QueryExpTime2FPS(10000000U));
    m_maxFPS = 120.0F;
    EXPECT_NEAR(98.03, m_pModule->QueryExpTime2FPS(10000000U), 0.01);
}

TEST_F(ArbConvertTest, QueryExpTime2FPSWithoutTuningHasNoBlanking)
{
    RemoveTuning();
    EXPECT_FLOAT_EQ(10.0F, m_pModule->QueryExpTime2FPS(100000000U));
}

TEST_F(ArbConvertTest, QueryExpTime2FPSOfAZeroFrameTimeIsTheMaximumFrameRate)
{
    RemoveTuning();
    EXPECT_FLOAT_EQ(30.0F, m_pModule->QueryExpTime2FPS(0U));
    EXPECT_TRUE(ArbLogContains("frame rate taken as max fps"));
}

// ---- Sensitivity to index ----

TEST_F(ArbConvertTest, SensitivityOfTheFirstKneeGivesItsIndex)
{
    const aecArbitration::ExposureKneeType& rKnee = ArbCore()->expTables[0].expKneeEntries[0];
    const FLOAT correction = ArbCore()->expTables[0].sensitivityCorrectionFactor;
    const FLOAT s0         = correction * rKnee.gain * static_cast<FLOAT>(rKnee.expTime);
    const FLOAT sens[AECAlgoExposureCount] = {s0, s0, s0};
    FLOAT       indices[AECAlgoExposureCount] = {-1.0F, -1.0F, -1.0F};
    ASSERT_EQ(AecSuccess, m_pModule->QuerySensitivity2ExpIndex(sens, AECAlgoOperationModeStreaming, indices));
    for (FLOAT index : indices)
    {
        EXPECT_FLOAT_EQ(rKnee.expIndex, index);
    }
}

TEST_F(ArbConvertTest, SensitivityToIndexRoundTripsThroughTheFirstKnee)
{
    aecArbitration::ExposureKneeType& rKnee = ArbCore()->expTables[0].expKneeEntries[0];
    rKnee.expIndex                          = 5.0F;
    const FLOAT s0 = rKnee.gain * static_cast<FLOAT>(rKnee.expTime);
    const FLOAT sens[AECAlgoExposureCount] = {2.0F * s0, 4.0F * s0, 10.0F * s0}; // short, long, safe
    FLOAT       indices[AECAlgoExposureCount] = {};
    ASSERT_EQ(AecSuccess, m_pModule->QuerySensitivity2ExpIndex(sens, AECAlgoOperationModeStreaming, indices));
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        EXPECT_FLOAT_EQ(ExpectedIndex(sens[i], 1.0F, rKnee.gain, rKnee.expTime, 5.0F), indices[i]);
        // Back from the index: sensitivity = first knee's sensitivity * 1.03^(index - index0).
        EXPECT_NEAR(sens[i] / (s0 * std::pow(1.03F, indices[i] - 5.0F)), 1.0F, 1e-4F);
    }
    EXPECT_NEAR(5.0F + 23.449795F, indices[AECAlgoExposureShort], 1e-4F);
    EXPECT_NEAR(5.0F + 77.898529F, indices[AECAlgoExposureSafe], 1e-4F);
}

TEST_F(ArbConvertTest, SensitivityOfALaterKneeGivesThatKneesIndex)
{
    const aecArbitration::ExposureKneeType& rKnee = ArbCore()->expTables[0].expKneeEntries[1];
    const FLOAT s = rKnee.gain * static_cast<FLOAT>(rKnee.expTime);
    const FLOAT sens[AECAlgoExposureCount] = {s, s, s};
    FLOAT       indices[AECAlgoExposureCount] = {};
    ASSERT_EQ(AecSuccess, m_pModule->QuerySensitivity2ExpIndex(sens, AECAlgoOperationModeStreaming, indices));
    EXPECT_NEAR(rKnee.expIndex, indices[AECAlgoExposureSafe], 0.01F);
}

TEST_F(ArbConvertTest, SensitivityToIndexRefusesNullArguments)
{
    const FLOAT sens[AECAlgoExposureCount] = {1.0e5F, 1.0e5F, 1.0e5F};
    FLOAT       indices[AECAlgoExposureCount] = {};
    EXPECT_EQ(AecError, m_pModule->QuerySensitivity2ExpIndex(nullptr, AECAlgoOperationModeStreaming, indices));
    EXPECT_EQ(AecError, m_pModule->QuerySensitivity2ExpIndex(sens, AECAlgoOperationModeStreaming, nullptr));
    EXPECT_TRUE(ArbLogContains("Error: Argument Null"));
}

TEST_F(ArbConvertTest, SensitivityToIndexWithoutTuningFails)
{
    RemoveTuning();
    const FLOAT sens[AECAlgoExposureCount] = {1.0e5F, 1.0e5F, 1.0e5F};
    FLOAT       indices[AECAlgoExposureCount] = {7.0F, 7.0F, 7.0F};
    EXPECT_EQ(AecError, m_pModule->QuerySensitivity2ExpIndex(sens, AECAlgoOperationModeStreaming, indices));
    EXPECT_TRUE(ArbLogContains("Look up Fail. Invalid Tuning"));
    EXPECT_FLOAT_EQ(7.0F, indices[0]);
}

TEST_F(ArbConvertTest, SensitivityToIndexWithATableWithoutKneesFails)
{
    ArbCore()->expTables[0].expKneeEntriesCount = 0U;
    const FLOAT sens[AECAlgoExposureCount] = {1.0e5F, 1.0e5F, 1.0e5F};
    FLOAT       indices[AECAlgoExposureCount] = {};
    EXPECT_EQ(AecError, m_pModule->QuerySensitivity2ExpIndex(sens, AECAlgoOperationModeStreaming, indices));
    EXPECT_TRUE(ArbLogContains("Look up Fail. Invalid Tuning"));
}

TEST_F(ArbConvertTest, SensitivityToIndexWithAZeroScaleFirstKneeFailsAndLeavesTheIndices)
{
    const FLOAT sens[AECAlgoExposureCount] = {1.0e5F, 1.0e5F, 1.0e5F};
    FLOAT       indices[AECAlgoExposureCount] = {7.0F, 7.0F, 7.0F};

    ArbCore()->expTables[0].sensitivityCorrectionFactor = 0.0F;
    EXPECT_EQ(AecError, m_pModule->QuerySensitivity2ExpIndex(sens, AECAlgoOperationModeStreaming, indices));
    ArbCore()->expTables[0].sensitivityCorrectionFactor = 1.0F;

    ArbCore()->expTables[0].expKneeEntries[0].gain = 0.0F;
    EXPECT_EQ(AecError, m_pModule->QuerySensitivity2ExpIndex(sens, AECAlgoOperationModeStreaming, indices));
    ArbCore()->expTables[0].expKneeEntries[0].gain = 1.0F;

    ArbCore()->expTables[0].expKneeEntries[0].expTime = 0U;
    EXPECT_EQ(AecError, m_pModule->QuerySensitivity2ExpIndex(sens, AECAlgoOperationModeStreaming, indices));

    EXPECT_TRUE(ArbLogContains("has no sensitivity scale"));
    EXPECT_FLOAT_EQ(7.0F, indices[0]);
}

TEST_F(ArbConvertTest, SensitivityToIndexRefusesAZeroSensitivity)
{
    const FLOAT sens[AECAlgoExposureCount] = {1.0e5F, 0.0F, 1.0e5F};
    FLOAT       indices[AECAlgoExposureCount] = {7.0F, 7.0F, 7.0F};
    EXPECT_EQ(AecError, m_pModule->QuerySensitivity2ExpIndex(sens, AECAlgoOperationModeStreaming, indices));
    EXPECT_TRUE(ArbLogContains("no exposure index for it"));
    for (FLOAT index : indices)
    {
        EXPECT_FLOAT_EQ(7.0F, index);
    }
}

// ---- Exif ----

TEST_F(ArbConvertTest, ExifStatesISOAndAPEXValuesOfTheShortExposureAtSafeSensitivity)
{
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    FillSets(sets);
    sets[AECAlgoExposureSafe].deltaEVFromTarget = 0.5F;
    AECExifInfo exif = {};
    Exif(&exif, sets, 0, 0, -1.0F);

    EXPECT_EQ(400U, exif.ISOValue); // gain 2 carried up to twice the short sensitivity
    const DOUBLE c = 3.321928024291992;
    const FLOAT  aperture = static_cast<FLOAT>(std::log10(4.0) * c);
    const FLOAT  speed    = static_cast<FLOAT>(std::log10(400.0 * 0.3) * c);
    const FLOAT  time     = static_cast<FLOAT>(std::log10(1.0e9 / 1.0e7) * c);
    EXPECT_FLOAT_EQ(aperture, exif.APEXValues.apertureValue);
    EXPECT_FLOAT_EQ(speed, exif.APEXValues.speedValue);
    EXPECT_FLOAT_EQ(time, exif.APEXValues.timeValue);
    EXPECT_FLOAT_EQ(-1.0F, exif.APEXValues.exposureValue);
    EXPECT_FLOAT_EQ(aperture - speed + time - 0.5F, exif.APEXValues.brightnessValue);
    EXPECT_NEAR(2.0F, exif.APEXValues.apertureValue, 1e-5F);
    EXPECT_NEAR(6.6439F, exif.APEXValues.timeValue, 1e-3F);
}

TEST_F(ArbConvertTest, ExifWithExposureTimeZeroHasTimeValueZero)
{
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    FillSets(sets);
    sets[AECAlgoExposureShort].exposureTime = 0U;
    AECExifInfo exif = {};
    exif.APEXValues.timeValue = 99.0F;
    Exif(&exif, sets, 0, 0, 0.0F);
    EXPECT_FLOAT_EQ(0.0F, exif.APEXValues.timeValue);
    EXPECT_FLOAT_EQ(exif.APEXValues.apertureValue - exif.APEXValues.speedValue, exif.APEXValues.brightnessValue);
}

TEST_F(ArbConvertTest, ExifISOIsStatedOnTheStillTablesScale)
{
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    FillSets(sets);
    AECExifInfo exif = {};
    Exif(&exif, sets, 0, 1, 0.0F);
    EXPECT_EQ(200U, exif.ISOValue);
}

TEST_F(ArbConvertTest, ExifWithAZeroShortSensitivityUsesTheShortGain)
{
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    FillSets(sets);
    sets[AECAlgoExposureShort].sensitivity = 0.0F;
    AECExifInfo exif = {};
    Exif(&exif, sets, 0, 0, 0.0F);
    EXPECT_EQ(200U, exif.ISOValue);
    EXPECT_TRUE(ArbLogContains("Exif ISO from the short gain alone"));
}

TEST_F(ArbConvertTest, ExifWithoutSensorFNumberHasApertureValueZero)
{
    m_sensorInfo.fNumber = 0.0F;
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    FillSets(sets);
    AECExifInfo exif = {};
    Exif(&exif, sets, 0, 0, 0.0F);
    EXPECT_FLOAT_EQ(0.0F, exif.APEXValues.apertureValue);
    EXPECT_TRUE(std::isfinite(exif.APEXValues.brightnessValue));
    EXPECT_TRUE(ArbLogContains("Exif aperture value 0"));
}

TEST_F(ArbConvertTest, ExifWithISOZeroHasSpeedValueZero)
{
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    FillSets(sets);
    sets[AECAlgoExposureShort].linearGain = 0.0F;
    AECExifInfo exif = {};
    Exif(&exif, sets, 0, 0, 0.0F);
    EXPECT_EQ(0U, exif.ISOValue);
    EXPECT_FLOAT_EQ(0.0F, exif.APEXValues.speedValue);
    EXPECT_TRUE(std::isfinite(exif.APEXValues.brightnessValue));
}

} // namespace
