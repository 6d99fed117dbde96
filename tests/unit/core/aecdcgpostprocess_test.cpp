// Tests of the dual conversion gain post-processing of the arbitrated exposures.
#include <gtest/gtest.h>

#include <cstring>

#include "aec/core/base/aecdcgpostprocess.h"
#include "unit/core/coretestsupport.h"

namespace
{

AECAlgoExposureData Exposure(UINT64 time, FLOAT gain, FLOAT sensitivity)
{
    AECAlgoExposureData data = {};
    data.exposureTime        = time;
    data.linearGain          = gain;
    data.sensitivity         = sensitivity;
    data.fnumber             = 2.0F;
    return data;
}

class DCGPostProcessTest : public ::testing::Test
{
protected:
    void Apply(INT32 mode, FLOAT cgRatio1, FLOAT cgRatio2)
    {
        m_ratios = {cgRatio1, cgRatio2};
        AECApplyDCGPostProcessing(mode, &m_ratios, m_sets);
    }

    void ExpectUnchanged(const AECAlgoExposureData (&original)[3])
    {
        EXPECT_EQ(0, std::memcmp(original, m_sets, sizeof(m_sets)));
    }

    CoreLogCapture      m_logs;
    AECDCGRatios        m_ratios  = {};
    AECAlgoExposureData m_sets[3] = {};
};

TEST_F(DCGPostProcessTest, ModesWithoutDCGLeaveTheSetsUntouched)
{
    const AECAlgoExposureData original[3] = {Exposure(1000, 2.0F, 1.0F), Exposure(3000, 5.0F, 2.0F),
                                             Exposure(2000, 3.0F, 3.0F)};
    for (INT32 mode : {static_cast<INT32>(LinearMode), static_cast<INT32>(ShdrMode), 7})
    {
        std::memcpy(m_sets, original, sizeof(m_sets));
        Apply(mode, 2.0F, 2.0F);
        ExpectUnchanged(original);
    }
}

TEST_F(DCGPostProcessTest, VSModeWithRatioBelowUnityLeavesTheSetsUntouched)
{
    const AECAlgoExposureData original[3] = {Exposure(1000, 2.0F, 1.0F), Exposure(3000, 5.0F, 2.0F),
                                             Exposure(2000, 3.0F, 3.0F)};
    std::memcpy(m_sets, original, sizeof(m_sets));
    Apply(DCGplusVSMode, 0.99F, 2.0F);
    ExpectUnchanged(original);
}

TEST_F(DCGPostProcessTest, VSModeDividesAGainAboveTheRatio)
{
    m_sets[0] = Exposure(1000, 2.0F, 1.0F);
    m_sets[1] = Exposure(3000, 8.0F, 24000.0F);
    m_sets[2] = Exposure(2000, 3.0F, 3.0F);
    Apply(DCGplusVSMode, 4.0F, 0.0F);
    EXPECT_FLOAT_EQ(2.0F, m_sets[1].linearGain);
    EXPECT_EQ(3000u, m_sets[1].exposureTime);
    EXPECT_FLOAT_EQ(2.0F, m_sets[2].linearGain);
    EXPECT_EQ(3000u, m_sets[2].exposureTime);
    EXPECT_FLOAT_EQ(6000.0F, m_sets[2].sensitivity);
    EXPECT_FLOAT_EQ(2.0F, m_sets[0].linearGain) << "the short exposure is not part of the split";
}

TEST_F(DCGPostProcessTest, VSModeShortensTheTimeWhenTheGainIsBelowTheRatio)
{
    m_sets[1] = Exposure(3001, 2.0F, 6002.0F);
    Apply(DCGplusVSMode, 4.0F, 0.0F);
    // 3001 x 0.5 = 1500.5, truncated.
    EXPECT_EQ(1500u, m_sets[1].exposureTime);
    EXPECT_FLOAT_EQ(1.0F, m_sets[1].linearGain);
    EXPECT_EQ(1500u, m_sets[2].exposureTime);
    EXPECT_FLOAT_EQ(1.0F, m_sets[2].linearGain);
    EXPECT_FLOAT_EQ(1500.5F, m_sets[2].sensitivity);
}

TEST_F(DCGPostProcessTest, LoficModeUsesAnIntegerTimeRatio)
{
    m_sets[0] = Exposure(1000, 1.0F, 1000.0F);
    m_sets[1] = Exposure(2500, 1.5F, 1500.0F);
    m_sets[2] = Exposure(2000, 3.0F, 6000.0F);
    // sensRatio 1.5 stays below cgTotal 4: only the time sharing applies.
    Apply(DCGplusLoficMode, 2.0F, 2.0F);
    EXPECT_FLOAT_EQ(3.0F, m_sets[1].linearGain) << "2500 / 1000 is 2 in integers";
    EXPECT_EQ(1000u, m_sets[1].exposureTime);
    EXPECT_EQ(1000u, m_sets[2].exposureTime);
    EXPECT_FLOAT_EQ(3.0F, m_sets[2].linearGain);
    EXPECT_FLOAT_EQ(1.0F, m_sets[0].linearGain);
}

TEST_F(DCGPostProcessTest, LoficModeWithAZeroShortTimeTakesARatioOfZero)
{
    m_sets[0] = Exposure(0, 1.0F, 1000.0F);
    m_sets[1] = Exposure(2500, 1.5F, 1500.0F);
    Apply(DCGplusLoficMode, 2.0F, 2.0F);
    EXPECT_FLOAT_EQ(0.0F, m_sets[1].linearGain);
    EXPECT_EQ(0u, m_sets[1].exposureTime);
}

TEST_F(DCGPostProcessTest, LoficModeMovesTheConversionGainIntoTheTimeOfAllExposures)
{
    m_sets[0] = Exposure(1000, 2.0F, 1000.0F);
    m_sets[1] = Exposure(3000, 1.0F, 8000.0F);
    m_sets[2] = Exposure(2000, 3.0F, 6000.0F);
    // r = 3: long gain 3.0 < cgTotal 4, so t = 1000 x 3/4 = 750; short gain = (1000 / 750 = 1) x 2.
    Apply(DCGplusLoficMode, 2.0F, 2.0F);
    EXPECT_EQ(750u, m_sets[0].exposureTime);
    EXPECT_FLOAT_EQ(2.0F, m_sets[0].linearGain);
    EXPECT_EQ(750u, m_sets[1].exposureTime);
    EXPECT_FLOAT_EQ(1.0F, m_sets[1].linearGain);
    EXPECT_EQ(750u, m_sets[2].exposureTime);
    EXPECT_FLOAT_EQ(1.0F, m_sets[2].linearGain);
    EXPECT_FLOAT_EQ(4000.0F, m_sets[2].sensitivity);
}

TEST_F(DCGPostProcessTest, LoficModeDividesALongGainAboveTheTotalRatio)
{
    m_sets[0] = Exposure(1000, 2.0F, 1000.0F);
    m_sets[1] = Exposure(3000, 4.0F, 8000.0F);
    Apply(DCGplusLoficMode, 2.0F, 2.0F);
    EXPECT_FLOAT_EQ(3.0F, m_sets[1].linearGain) << "12 / 4";
    EXPECT_EQ(1000u, m_sets[0].exposureTime);
    EXPECT_EQ(1000u, m_sets[2].exposureTime);
}

TEST_F(DCGPostProcessTest, LoficModeWithAZeroShortenedTimeGivesAZeroShortGain)
{
    m_sets[0] = Exposure(1, 2.0F, 1000.0F);
    m_sets[1] = Exposure(1, 1.0F, 8000.0F);
    // r = 1, t = truncate(1 x 1/4) = 0.
    Apply(DCGplusLoficMode, 2.0F, 2.0F);
    EXPECT_EQ(0u, m_sets[0].exposureTime);
    EXPECT_FLOAT_EQ(0.0F, m_sets[0].linearGain);
    EXPECT_EQ(1u, m_logs.Count("DCG Lofic: shortened exposure time is 0; short gain set to 0"));
}

TEST_F(DCGPostProcessTest, LoficModeWithoutCGRatio2LogsAndWorksWithUnity)
{
    m_sets[0] = Exposure(1000, 2.0F, 1000.0F);
    m_sets[1] = Exposure(3000, 4.0F, 8000.0F);
    Apply(DCGplusLoficMode, 2.0F, 0.0F);
    EXPECT_FLOAT_EQ(1.0F, m_ratios.CGRatio2);
    EXPECT_FLOAT_EQ(6.0F, m_sets[1].linearGain) << "12 / (2 x 1)";
    EXPECT_EQ(1u, m_logs.Count("Need to fill the correct CGRatio2 in reserve0"));
}

TEST_F(DCGPostProcessTest, LoficModeWithCGRatio1BelowUnityLeavesTheSafeExposureAlone)
{
    m_sets[0] = Exposure(1000, 2.0F, 1000.0F);
    m_sets[1] = Exposure(3000, 4.0F, 8000.0F);
    m_sets[2] = Exposure(2000, 3.0F, 6000.0F);
    Apply(DCGplusLoficMode, 0.5F, 4.0F);
    EXPECT_FLOAT_EQ(6.0F, m_sets[1].linearGain) << "12 / (0.5 x 4)";
    EXPECT_FLOAT_EQ(3.0F, m_sets[2].linearGain);
    EXPECT_FLOAT_EQ(6000.0F, m_sets[2].sensitivity);
    EXPECT_EQ(1000u, m_sets[2].exposureTime) << "the time sharing applies all the same";
}

} // namespace
