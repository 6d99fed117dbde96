// Frame luma: metering tables, bright and dark region de-weighting, budgets, zones and the luma floor.
#include <algorithm>
#include <cmath>

#include "aec/core/modules/mod_mtr/cframelumacalculator.h"
#include "unit/mtr/lumacalculatorstest.h"

namespace
{
// Index steps of one exposure doubling.
const FLOAT OneStop = static_cast<FLOAT>(std::log(2.0) / std::log(1.03));
} // namespace

class FrameLumaTest : public LumaCalcTest
{
protected:
    VOID SetUp() override
    {
        LumaCalcTest::SetUp();
        m_pCalc = std::make_unique<CFrameLumaCalculator>(m_pProc.get(), &m_context);
        m_customTable.meteringTableSize = AECORE_CUSTOM_METERING_TABLE_SIZE;
        m_result.luxIndex               = 100.0f;
    }

    // Parses the image and runs the calculator with the module's input.
    FLOAT Run()
    {
        EXPECT_EQ(AecSuccess, Parse(*m_pImage));
        const AECLumaCalcInput input = LumaInput();
        EXPECT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));
        return m_result.frameLuma;
    }

    AECDebugDataStatsLumaRegionType Debug()
    {
        m_pCalc->UpdateDebugData();
        auto pDebug = std::make_unique<AECDebugData>();
        std::memset(pDebug.get(), 0, sizeof(AECDebugData));
        m_pCalc->FillDebugData(pDebug.get());
        return pDebug->regionInfo;
    }

    // Left half (columns 0 to 7) and right half of the 16 x 16 image.
    VOID Halves(FLOAT left, FLOAT right)
    {
        SetBlock(0, 0, 7, 15, left);
        SetBlock(8, 0, 15, 15, right);
    }

    std::unique_ptr<CFrameLumaCalculator> m_pCalc;
};

TEST_F(FrameLumaTest, UniformFrameGivesItsLuma)
{
    EXPECT_NEAR(100.0f, Run(), 1e-3f);
    const AECDebugDataStatsLumaRegionType debug = Debug();
    EXPECT_EQ(0, +debug.brightRgnCount);
    EXPECT_EQ(0, +debug.darkRgnCount);
}

TEST_F(FrameLumaTest, FrameAverageTakesNoTableYetAdjustsRegions)
{
    // An all-zero custom table would give the floor if the average mode took any table.
    m_mtrMode = AECAlgoMeteringModeFrameAverage;
    Halves(100.0f, 240.0f);
    // 128 regions of weight 1 and 128 bright ones of weight 0.5.
    EXPECT_NEAR((128.0f * 100.0f + 128.0f * 240.0f * 0.5f) / 192.0f, Run(), 1e-3f);
    EXPECT_EQ(128, +Debug().brightRgnCount);
}

TEST_F(FrameLumaTest, DarkRegionWithoutBudgetKeepsPlainWeightAndIsNotTestedAsBright)
{
    // 40 lies under the dark end and above the bright end: only the dark test may see it.
    SetZone(0, 30.0f, 35.0f, 10.0f, 50.0f, 0.1f, 0.5f);
    RgnAdj().maxStatsPctForDark = 0.0f;
    Halves(40.0f, 100.0f);
    EXPECT_NEAR((128.0f * 40.0f + 128.0f * 100.0f * 0.1f) / (128.0f + 12.8f), Run(), 1e-3f);
    const AECDebugDataStatsLumaRegionType debug = Debug();
    EXPECT_EQ(0, +debug.darkRgnCount);
    EXPECT_EQ(128, +debug.brightRgnCount);
}

TEST_F(FrameLumaTest, DarkRegionWithBudgetIsRampedAndStillNotTestedAsBright)
{
    SetZone(0, 30.0f, 35.0f, 10.0f, 50.0f, 0.1f, 0.5f);
    Halves(40.0f, 100.0f);
    // r = (50 - 40) / (50 - 10) = 0.25: weight 0.5 * 0.25 + 0.75.
    const FLOAT w = 0.875f;
    EXPECT_NEAR((128.0f * 40.0f * w + 128.0f * 100.0f * 0.1f) / (128.0f * w + 12.8f), Run(), 1e-3f);
    const AECDebugDataStatsLumaRegionType debug = Debug();
    EXPECT_EQ(128, +debug.darkRgnCount);
    EXPECT_EQ(128, +debug.brightRgnCount);
}

TEST_F(FrameLumaTest, DarkRegionAtOrBelowStartTakesTheFullDarkWeight)
{
    Halves(100.0f, 8.0f);
    EXPECT_NEAR((128.0f * 100.0f + 128.0f * 8.0f * 0.5f) / 192.0f, Run(), 1e-3f);
    EXPECT_EQ(128, +Debug().darkRgnCount);
}

TEST_F(FrameLumaTest, BrightRegionInsideTheRampTakesPartOfTheWeight)
{
    Halves(100.0f, 215.0f);
    // r = (230 - 215) / 30 = 0.5: weight 0.5 * 0.5 + 0.5.
    EXPECT_NEAR((128.0f * 100.0f + 128.0f * 215.0f * 0.75f) / (128.0f + 96.0f), Run(), 1e-3f);
}

TEST_F(FrameLumaTest, ThresholdRatioOfTwoDoublesAllFourThresholds)
{
    m_history[PipelineDelay].expIndices[0] = 200.0f + OneStop;
    m_history[PipelineDelay].expIndices[1] = 200.0f + OneStop; // only the safe exposure counts without HDR3
    SetZone(0, 100.0f, 110.0f, 10.0f, 20.0f, 0.5f, 0.5f);
    Halves(150.0f, 30.0f);
    // Bright from 200: 150 stays plain. Dark up to 40: 30 is in the ramp, r = 0.5, weight 0.75.
    EXPECT_NEAR((128.0f * 150.0f + 128.0f * 30.0f * 0.75f) / (128.0f + 96.0f), Run(), 1e-2f);
    const AECDebugDataStatsLumaRegionType debug = Debug();
    EXPECT_NEAR(200.0f, debug.brightRgnThres[0], 1e-2f);
    EXPECT_NEAR(220.0f, debug.brightRgnThres[1], 1e-2f);
    EXPECT_NEAR(20.0f, debug.darkRgnThres[0], 1e-3f);
    EXPECT_NEAR(40.0f, debug.darkRgnThres[1], 1e-3f);
    EXPECT_EQ(0, +debug.brightRgnCount);
    EXPECT_EQ(128, +debug.darkRgnCount);
}

TEST_F(FrameLumaTest, WithHdr3TheRatioComesFromTheLongExposure)
{
    m_history[PipelineDelay].expIndices[0] = 200.0f + OneStop;
    m_history[PipelineDelay].expIndices[1] = 200.0f + OneStop;
    SetZone(0, 100.0f, 110.0f, 10.0f, 20.0f, 0.5f, 0.5f);
    Halves(150.0f, 30.0f);
    ASSERT_EQ(AecSuccess, Parse(*m_pImage));
    AECLumaCalcInput input = LumaInput();
    input.enableHDR3       = TRUE;
    ASSERT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));
    // Ratio 1: 150 is bright at full weight 0.5, 30 is neither.
    EXPECT_NEAR((128.0f * 150.0f * 0.5f + 128.0f * 30.0f) / 192.0f, m_result.frameLuma, 1e-3f);
    EXPECT_NEAR(100.0f, Debug().brightRgnThres[0], 1e-4f);
}

TEST_F(FrameLumaTest, ZeroBrightShareDisablesBrightAdjustment)
{
    RgnAdj().maxStatsPctForBright = 0.0f;
    Halves(100.0f, 240.0f);
    EXPECT_NEAR(170.0f, Run(), 1e-3f);
    EXPECT_EQ(0, +Debug().brightRgnCount);
}

TEST_F(FrameLumaTest, BrightBudgetCapsTheAdjustedRegions)
{
    RgnAdj().maxStatsPctForBright = 0.25f;
    Halves(100.0f, 240.0f);
    // 64 of the 128 bright regions are de-weighted.
    EXPECT_NEAR((128.0f * 100.0f + 64.0f * 240.0f * 0.5f + 64.0f * 240.0f) / 224.0f, Run(), 1e-3f);
    EXPECT_EQ(64, +Debug().brightRgnCount);
}

TEST_F(FrameLumaTest, BudgetIsAShareOfTheRegionsTheSubsampledWalkEstimates)
{
    // The parser subsamples only grids of at least 32 regions a side.
    Modules().modMtr->mtrLumaCalc.indexCalc.bayerGridSubsmplSelect = aecMetering::SW2;
    ApplyTuning();
    RgnAdj().maxStatsPctForBright = 0.25f;
    m_pImage = Image(32, 32);
    m_pImage->Fill(SyntheticRegion::Uniform(Code(240.0f)));
    Run();
    // Every second region: 512 estimated, a quarter of them adjusted.
    EXPECT_EQ(128, +Debug().brightRgnCount);
}

TEST_F(FrameLumaTest, AllZeroCustomTableGivesTheFloor)
{
    m_mtrMode = AECAlgoMeteringModeCustom;
    EXPECT_FLOAT_EQ(0.1f, Run());
}

TEST_F(FrameLumaTest, CustomTableWeighsTheRegionUnderEachEntry)
{
    m_mtrMode                            = AECAlgoMeteringModeCustom;
    m_customTable.meteringTable[3 + 16 * 5] = 1.0f;
    SetLuma(3, 5, 77.0f);
    EXPECT_NEAR(77.0f, Run(), 1e-3f);
}

TEST_F(FrameLumaTest, CenterWeightedAndSpotModesTakeTheirTunedTables)
{
    aecMetering::MtrTableType& tables = Modules().modMtr->mtrLumaCalc.mtrTables;
    std::memset(&tables, 0, sizeof(tables));
    tables.centerWeighted.weights[7 + 16 * 7] = 1.0f;
    tables.spotWeighted.weights[2 + 16 * 9]   = 1.0f;
    SetLuma(7, 7, 60.0f);
    SetLuma(2, 9, 150.0f);
    m_mtrMode = AECAlgoMeteringModeCenterWeighted;
    EXPECT_NEAR(60.0f, Run(), 1e-3f);
    m_mtrMode = AECAlgoMeteringModeSpot;
    EXPECT_NEAR(150.0f, Run(), 1e-3f);
}

TEST_F(FrameLumaTest, OnlyRegionsAboveTheMinimumTableWeightAreAdjusted)
{
    m_mtrMode = AECAlgoMeteringModeCustom;
    std::fill(m_customTable.meteringTable, m_customTable.meteringTable + 256, 1.0f);
    SetZone(0, 200.0f, 230.0f, 10.0f, 20.0f, 0.5f, 0.25f);
    Halves(5.0f, 240.0f);
    RgnAdj().minTableWeightForBright = 1.0f;
    RgnAdj().minTableWeightForDark   = 1.0f;
    EXPECT_NEAR(122.5f, Run(), 1e-3f);
    EXPECT_EQ(0, +Debug().brightRgnCount);
    EXPECT_EQ(0, +Debug().darkRgnCount);

    RgnAdj().minTableWeightForBright = 0.99f;
    RgnAdj().minTableWeightForDark   = 0.99f;
    EXPECT_NEAR((128.0f * 5.0f * 0.25f + 128.0f * 240.0f * 0.5f) / 96.0f, Run(), 1e-3f);
    EXPECT_EQ(128, +Debug().brightRgnCount);
    EXPECT_EQ(128, +Debug().darkRgnCount);
}

TEST_F(FrameLumaTest, LuxIndexSelectsTheZone)
{
    m_zones[0].zoneTrigger = {0.0f, 100.0f};
    m_zones[1].zoneTrigger = {200.0f, 300.0f};
    SetZone(1, 200.0f, 230.0f, 10.0f, 20.0f, 0.0f, 0.5f);
    RgnAdj().rgnAdjZoneCount = 2;
    Halves(100.0f, 240.0f);
    m_result.luxIndex = 250.0f;
    EXPECT_NEAR(100.0f, Run(), 1e-3f);
    EXPECT_FLOAT_EQ(0.0f, Debug().brightRgnWeight);
    m_result.luxIndex = 50.0f;
    EXPECT_NEAR((128.0f * 100.0f + 128.0f * 240.0f * 0.5f) / 192.0f, Run(), 1e-3f);
    EXPECT_FLOAT_EQ(0.5f, Debug().brightRgnWeight);
}

TEST_F(FrameLumaTest, MissingZoneTableTurnsRegionAdjustmentOff)
{
    RgnAdj().rgnAdjZoneCount = 0;
    Halves(100.0f, 240.0f);
    EXPECT_NEAR(170.0f, Run(), 1e-3f);
    EXPECT_TRUE(MtrLogContains("no region adjustment zone"));
    EXPECT_EQ(0, +Debug().brightRgnCount);
}

TEST_F(FrameLumaTest, ThresholdsAreScaledOncePerFrame)
{
    m_history[PipelineDelay].expIndices[0] = 200.0f + OneStop;
    m_history[PipelineDelay].expIndices[1] = 200.0f + OneStop;
    Run();
    Run();
    EXPECT_NEAR(400.0f, Debug().brightRgnThres[0], 1e-2f);
}

TEST_F(FrameLumaTest, NoParsedRegionGivesTheFloor)
{
    // The processor has not parsed any frame.
    const AECLumaCalcInput input = LumaInput();
    ASSERT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));
    EXPECT_FLOAT_EQ(0.1f, m_result.frameLuma);
}

TEST_F(FrameLumaTest, LumaIsCappedAt255)
{
    m_pImage->Fill(SyntheticRegion::Uniform(1023));
    ASSERT_EQ(AecSuccess, Parse(*m_pImage));
    BGStatsIterator it = m_pProc->GetStatsProcessingResult()->GetBGStatsIterator(BGStatsIterationMode::Normal);
    ASSERT_GT(it.Next()->rgnLuma, 255.0f);
    const AECLumaCalcInput input = LumaInput();
    ASSERT_EQ(AecSuccess, m_pCalc->calculateLuma(&input, &m_result));
    EXPECT_FLOAT_EQ(255.0f, m_result.frameLuma);
}

TEST_F(FrameLumaTest, DebugRecordCarriesEnablesCountsWeightsAndThresholds)
{
    RgnAdj().enableDarkRgnAdj = FALSE;
    Halves(5.0f, 240.0f);
    Run();
    const AECDebugDataStatsLumaRegionType debug = Debug();
    EXPECT_EQ(1, +debug.bBrightRgnEnable);
    EXPECT_EQ(0, +debug.bDarkRgnEnable);
    EXPECT_EQ(128, +debug.brightRgnCount);
    EXPECT_EQ(0, +debug.darkRgnCount);
    EXPECT_FLOAT_EQ(0.5f, debug.brightRgnWeight);
    EXPECT_FLOAT_EQ(0.5f, debug.darkRgnWeight);
    EXPECT_FLOAT_EQ(200.0f, debug.brightRgnThres[0]);
    EXPECT_FLOAT_EQ(230.0f, debug.brightRgnThres[1]);
    EXPECT_FLOAT_EQ(10.0f, debug.darkRgnThres[0]);
    EXPECT_FLOAT_EQ(20.0f, debug.darkRgnThres[1]);
}

TEST_F(FrameLumaTest, MissingInputFails)
{
    AECLumaCalcInput input = LumaInput();
    EXPECT_EQ(AecError, m_pCalc->calculateLuma(nullptr, &m_result));
    EXPECT_EQ(AecError, m_pCalc->calculateLuma(&input, nullptr));
    input.matchingExpIndices = nullptr;
    EXPECT_EQ(AecError, m_pCalc->calculateLuma(&input, &m_result));
    EXPECT_FLOAT_EQ(0.0f, m_result.frameLuma);
}
