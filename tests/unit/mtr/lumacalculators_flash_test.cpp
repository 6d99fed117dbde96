// Preflash luma: influence of the LED against the LED-off backup, and regions that only the LED made bright.
#include <cmath>

#include "aec/core/modules/mod_mtr/cflashsnapshotestimator.h"
#include "aec/core/modules/mod_mtr/cpreflashlumacalculator.h"
#include "unit/mtr/lumacalculatorstest.h"

namespace
{
class NullMeteringCallback final : public IMeteringCallback
{
public:
    VOID SetAreFlashLowStatsSaved(BOOL) override {}
    VOID SetEVCapability(INT8, INT8, INT8) override {}
    VOID SetRealDRCGain(FLOAT) override {}
};

const FLOAT OneStop = static_cast<FLOAT>(std::log(2.0) / std::log(1.03));
} // namespace

class PreflashLumaTest : public LumaCalcTest
{
protected:
    VOID SetUp() override
    {
        LumaCalcTest::SetUp();
        m_pEstimator = std::make_unique<CFlashSnapshotEstimator>(&m_context);
        m_pCalc      = std::make_unique<CPreflashLumaCalculator>(m_pProc.get());
        std::memset(m_yOff, 0, sizeof(m_yOff));
    }

    VOID TearDown() override
    {
        CPreflashLumaCalculator::ReleaseFlashEstimator(m_pEstimator.get());
        LumaCalcTest::TearDown();
    }

    const aecFlash::FlashStatsPreprocessingType& Thresholds() const
    {
        return m_pTuning->mtrTuningData.pFlash->statsPreprocessing;
    }

    // Backs up the current image as the LED-off frame, with the given average luma.
    VOID BackupLedOff(FLOAT averageLuma)
    {
        ASSERT_EQ(AecSuccess, Parse(*m_pImage));
        AECLumaCalcResult   lumas   = {};
        AECTargetCalcResult targets = {};
        lumas.averageLuma           = averageLuma;
        m_pEstimator->BackupFlashStats(FALSE, &targets, &lumas, m_pProc.get(), &m_callback);
    }

    // Marks legacy region (x, y) as bright in the LED-off statistics given to the bright table.
    VOID BrightOff(UINT32 x, UINT32 y)
    {
        m_yOff[x + 16 * y].Yval = Thresholds().thresBrightLevel + 1.0f;
        m_yOff[x + 16 * y].Ysat = Thresholds().thresBrightSat + 0.01f;
    }

    AecResult RunPreflash()
    {
        EXPECT_EQ(AecSuccess, Parse(*m_pImage));
        const AECLumaCalcInput input = LumaInput();
        return m_pCalc->calculateLuma(&input, &m_result);
    }

    NullMeteringCallback                     m_callback;
    std::unique_ptr<CFlashSnapshotEstimator> m_pEstimator;
    std::unique_ptr<CPreflashLumaCalculator> m_pCalc;
    ParsedLegacyYRegionType                  m_yOff[256];
};

TEST_F(PreflashLumaTest, WithoutLedOffBackupInfluenceIsOneAndNothingSaturates)
{
    CPreflashLumaCalculator::ComputePreflashIsBrightTable(&Thresholds(), m_yOff, nullptr);
    m_pImage->Fill(SyntheticRegion::Uniform(Code(250.0f)));
    EXPECT_EQ(AecError, RunPreflash());
    EXPECT_FLOAT_EQ(1.0f, m_result.preflashInfluence);
    EXPECT_EQ(0u, m_result.saturatedRegions);
    EXPECT_TRUE(MtrLogContains("preflash luma: no LED-off backup"));
}

TEST_F(PreflashLumaTest, InfluenceIsTheLumaGainAtEqualExposure)
{
    BackupLedOff(50.0f);
    m_result.averageLuma = 100.0f;
    EXPECT_EQ(AecSuccess, RunPreflash());
    EXPECT_NEAR(2.0f, m_result.preflashInfluence, 1e-5f);

    // The preflash frame had one stop less exposure: at equal exposure it would have been twice as bright.
    m_history[PipelineDelay].expIndices[0] = 200.0f - OneStop;
    EXPECT_EQ(AecSuccess, RunPreflash());
    EXPECT_NEAR(4.0f, m_result.preflashInfluence, 1e-3f);
}

TEST_F(PreflashLumaTest, InfluenceIsAtLeastOne)
{
    BackupLedOff(50.0f);
    m_result.averageLuma = 20.0f;
    EXPECT_EQ(AecSuccess, RunPreflash());
    EXPECT_FLOAT_EQ(1.0f, m_result.preflashInfluence);
}

TEST_F(PreflashLumaTest, BackupRegistersTheEstimatorAndItsBrightTable)
{
    // LED off: region (3, 3) bright by level and saturation.
    m_pImage = Image(16, 16, 10, TRUE);
    m_pImage->Fill(SyntheticRegion::Uniform(Code(100.0f)));
    m_pImage->SetRegion(3, 3, SyntheticRegion::Uniform(Code(250.0f), 0.5f));
    BackupLedOff(50.0f);
    const ParsedLegacyYRegionType* pY = m_pProc->GetStatsProcessingResult()->GetLegacyYRegionStats();
    ASSERT_GT(pY[3 + 16 * 3].Ysat, Thresholds().thresBrightSat + Thresholds().thresBrightSatDiff);
    // The same region stays bright under preflash, and (9, 9) turns bright: only the latter counts.
    m_pImage->SetRegion(9, 9, SyntheticRegion::Uniform(Code(250.0f), 0.5f));
    EXPECT_EQ(AecSuccess, RunPreflash());
    EXPECT_EQ(1u, m_result.saturatedRegions);
}

TEST_F(PreflashLumaTest, RegionsBrightOrEnclosedByBrightOnesBeforeTheFlashDoNotCount)
{
    BackupLedOff(50.0f);
    // LED off: a ring of four bright regions around (5, 5).
    BrightOff(4, 5);
    BrightOff(6, 5);
    BrightOff(5, 4);
    BrightOff(5, 6);
    CPreflashLumaCalculator::ComputePreflashIsBrightTable(&Thresholds(), m_yOff, m_pEstimator.get());
    // Preflash: ring and hole bright, and (7, 5), next to the ring but not enclosed, too.
    SetLuma(4, 5, 240.0f);
    SetLuma(6, 5, 240.0f);
    SetLuma(5, 4, 240.0f);
    SetLuma(5, 6, 240.0f);
    SetLuma(5, 5, 240.0f);
    SetLuma(7, 5, 240.0f);
    EXPECT_EQ(AecSuccess, RunPreflash());
    EXPECT_EQ(1u, m_result.saturatedRegions);
}

TEST_F(PreflashLumaTest, LedOffBrightNeedsBothLevelAndSaturation)
{
    BackupLedOff(50.0f);
    m_yOff[2].Yval = Thresholds().thresBrightLevel + 1.0f; // level only
    m_yOff[3].Ysat = Thresholds().thresBrightSat + 0.01f;  // saturation only
    m_yOff[4].Yval = Thresholds().thresBrightLevel;        // at the thresholds: not above
    m_yOff[4].Ysat = Thresholds().thresBrightSat;
    CPreflashLumaCalculator::ComputePreflashIsBrightTable(&Thresholds(), m_yOff, m_pEstimator.get());
    for (UINT32 x = 2; x <= 4; x++)
    {
        SetLuma(x, 0, 240.0f);
    }
    EXPECT_EQ(AecSuccess, RunPreflash());
    EXPECT_EQ(3u, m_result.saturatedRegions);
}

TEST_F(PreflashLumaTest, LedBrightNeedsTheLevelOrSaturationPlusTheirMargins)
{
    BackupLedOff(50.0f);
    CPreflashLumaCalculator::ComputePreflashIsBrightTable(&Thresholds(), m_yOff, m_pEstimator.get());
    const FLOAT level = Thresholds().thresBrightLevel + Thresholds().thresBrightLevelDiff;
    SetLuma(0, 0, level + 1.0f); // above level and margin
    SetLuma(1, 0, level - 1.0f); // above the level, within the margin
    EXPECT_EQ(AecSuccess, RunPreflash());
    EXPECT_EQ(1u, m_result.saturatedRegions);
}

TEST_F(PreflashLumaTest, MissingLedOffStatisticsMarkNothingBright)
{
    BackupLedOff(50.0f);
    CPreflashLumaCalculator::ComputePreflashIsBrightTable(&Thresholds(), nullptr, m_pEstimator.get());
    EXPECT_TRUE(MtrLogContains("LED-off bright table"));
    m_pImage->Fill(SyntheticRegion::Uniform(Code(240.0f)));
    EXPECT_EQ(AecSuccess, RunPreflash());
    EXPECT_EQ(256u, m_result.saturatedRegions);
}

TEST_F(PreflashLumaTest, ReleasedEstimatorIsForgotten)
{
    BackupLedOff(50.0f);
    CFlashSnapshotEstimator other(&m_context);
    CPreflashLumaCalculator::ReleaseFlashEstimator(&other); // not the registered one: no effect
    EXPECT_EQ(AecSuccess, RunPreflash());
    CPreflashLumaCalculator::ReleaseFlashEstimator(m_pEstimator.get());
    EXPECT_EQ(AecError, RunPreflash());
}
