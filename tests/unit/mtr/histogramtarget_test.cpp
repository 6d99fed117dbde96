// Histogram target calculator and EV offset utility: bands, safe limits, ADRC targets, ROI and EV handling.
#include <cmath>
#include <cstring>
#include <memory>

#include "aec/core/modules/mod_mtr/aecutilevoffset.h"
#include "aec/core/modules/mod_mtr/chistogramtargetcalculator.h"
#include "unit/mtr/mtrtestsupport.h"

namespace
{
// Index units of one EV stop: log10(2) times the index steps per decade.
constexpr FLOAT OneStop = 23.449795f;

class HistogramTargetTest : public MeteringTest
{
protected:
    VOID SetUp() override
    {
        MeteringTest::SetUp();
        // The EV capabilities the module publishes from the default tuning: -4 .. +4 stops in sixths.
        m_ev.capabilities.minEV      = -4;
        m_ev.capabilities.maxEV      = 4;
        m_ev.capabilities.stepsPerEV = 6;
        // The default zone tables are shared by every test of the program: work on copies of them.
        ASSERT_LE(Hist().histLumaTargetZoneCount, MaxZones);
        std::memcpy(m_histZones, Hist().histLumaTargetZone, Hist().histLumaTargetZoneCount * sizeof(m_histZones[0]));
        Hist().histLumaTargetZone           = m_histZones;
        aecTouch::TouchMeteringType& rTouch = Modules().modTouch->touchMtr;
        ASSERT_LE(rTouch.ROIHistAdjZoneCount, MaxZones);
        std::memcpy(m_touchZones, rTouch.ROIHistAdjZone, rTouch.ROIHistAdjZoneCount * sizeof(m_touchZones[0]));
        rTouch.ROIHistAdjZone = m_touchZones;
        m_pCalc               = std::make_unique<CHistogramTargetCalculator>(m_pProc.get());
        std::memset(&m_luma, 0, sizeof(m_luma));
        m_luma.luxIndex  = 100.0f;
        m_luma.touchLuma = -1.0f;
        m_luma.faceLuma  = -1.0f;
        std::memset(&m_result, 0, sizeof(m_result));
    }

    aecMetering::HistLumaTargetType&         Hist() { return Modules().modMtr->mtrLumaTarget.histLumaTarget; }
    aecMetering::HistLumaTargetZoneDataType& Zone() { return Hist().histLumaTargetZone[0].zoneData; }
    ParamExtHistogramCtrl&                   Ext() { return m_pTuning->mtrTuningData.extHistogram; }

    // One zone, linear estimate, no filter, no dark boost, EV left to the index, limits that do not bind: the band
    // ends then equal the zone references on a uniform scene whose luma is the reference luma.
    VOID UseSimpleTuning()
    {
        Hist().enableNonLinearTargetEstimate = 0;
        Hist().targetFilterFactor            = 0.0f;
        Hist().enableDarkBoost               = 0;
        Hist().EVHandling                    = aecglobalelements::Legacy;
        Hist().histLumaTargetZoneCount       = 1;
        Zone().minTargetAdjRatio             = 0.001f;
        Zone().maxTargetAdjRatio             = 1000.0f;
        Zone().maxDRCGain                    = 16.0f;
        for (UINT32 c = 0; c < 3; ++c)
        {
            Zone().histSatPushupRange[c]   = {0.01f, 0.04f};
            Zone().histSatPushdownRange[c] = {0.0f, 0.01f};
            Zone().histDarkRange[c]        = {0.0f, 0.05f};
        }
    }

    VOID SetBands(FLOAT brightLow, FLOAT brightHigh, FLOAT darkLow, FLOAT darkHigh)
    {
        Zone().satRefLow   = brightLow;
        Zone().satRefHigh  = brightHigh;
        Zone().darkRefLow  = darkLow;
        Zone().darkRefHigh = darkHigh;
    }

    // A uniform scene of about the given 8-bit luma. Its final luma is the histogram's mean (the bin centre, a
    // fraction above the pixel value), so that every range mean equals the reference luma.
    VOID ParseUniform(FLOAT luma)
    {
        std::unique_ptr<CSyntheticStats> image = Image();
        image->Fill(SyntheticRegion::Uniform(static_cast<UINT32>(luma * 4.0f)));
        ASSERT_EQ(AecSuccess, Parse(*image));
        const FLOAT mean = m_pProc->GetStatsProcessingResult()->GetBHistAvgForPctRange(0, 0.0f, 1.0f, FALSE);
        ASSERT_NEAR(luma, mean, 0.5f);
        m_luma.finalLuma = mean;
        m_luma.frameLuma = mean;
    }

    AecResult Run(FLOAT luxTarget, BOOL enableADRC = FALSE)
    {
        std::memset(&m_result, 0, sizeof(m_result));
        m_result.luxBasedSafeTarget = luxTarget;
        AECTargetCalcInput input    = TargetInput(&m_luma);
        input.enableADRC            = enableADRC;
        return m_pCalc->calculateTarget(&input, &m_result);
    }

    AECDebugDataHistogramType Debug()
    {
        m_pCalc->UpdateDebugData();
        std::unique_ptr<AECDebugData> pDebug = std::make_unique<AECDebugData>();
        m_pCalc->FillDebugData(pDebug.get());
        return pDebug->histogramInfo;
    }

    static constexpr UINT32 MaxZones = 8;

    aecMetering::HistLumaTargetZoneType         m_histZones[MaxZones];
    aecglobalelements::ROIHistAdjZoneType       m_touchZones[MaxZones];
    std::unique_ptr<CHistogramTargetCalculator> m_pCalc;
    AECLumaCalcResult                           m_luma;
    AECTargetCalcResult                         m_result;
};

// ---- EV offset utility ----

TEST_F(HistogramTargetTest, EVOffsetOfOneStopUpAndDownIsOneStopOfIndex)
{
    const aecMetering::EVLumaTargetType* pEVTuning = &Modules().modMtr->mtrLumaTarget.EVLumaTarget;
    // The table's +1 and -1 stop entries are 2 and 0.5; tolerance 1e-3 index units (float rounding only).
    EXPECT_NEAR(OneStop, AECUtilGetEVOffset(&m_ev, pEVTuning, 6), 1e-3f);
    EXPECT_NEAR(-OneStop, AECUtilGetEVOffset(&m_ev, pEVTuning, -6), 1e-3f);
    EXPECT_NEAR(0.0f, AECUtilGetEVOffset(&m_ev, pEVTuning, 0), 1e-6f);
    EXPECT_TRUE(MtrLogContains("capped desired EV -6 min -24 max 24; luma idx 18"));
}

TEST_F(HistogramTargetTest, EVOffsetCapsToTheCapabilitiesAndTheTable)
{
    const aecMetering::EVLumaTargetType* pEVTuning = &Modules().modMtr->mtrLumaTarget.EVLumaTarget;
    // +10 stops is capped to the +4 stop capability: table entry 48, a multiplier of 16.
    EXPECT_NEAR(4.0f * OneStop, AECUtilGetEVOffset(&m_ev, pEVTuning, 60), 1e-3f);
    EXPECT_NEAR(-4.0f * OneStop, AECUtilGetEVOffset(&m_ev, pEVTuning, -60), 1e-3f);
    // Capabilities wider than the table: EV 0 lies 72 steps above -12 stops, past the table's last entry.
    m_ev.capabilities.minEV = -12;
    m_ev.capabilities.maxEV = 12;
    EXPECT_NEAR(4.0f * OneStop, AECUtilGetEVOffset(&m_ev, pEVTuning, 0), 1e-3f);
    EXPECT_TRUE(MtrLogContains("luma idx 48"));
}

TEST_F(HistogramTargetTest, EVOffsetWithoutRecordsIsZero)
{
    EXPECT_EQ(0.0f, AECUtilGetEVOffset(nullptr, &Modules().modMtr->mtrLumaTarget.EVLumaTarget, 6));
    EXPECT_EQ(0.0f, AECUtilGetEVOffset(&m_ev, nullptr, 6));
}

TEST_F(HistogramTargetTest, EVOffsetOfANonPositiveTableEntryIsZero)
{
    aecMetering::EVLumaTargetType* pEVTuning       = &Modules().modMtr->mtrLumaTarget.EVLumaTarget;
    pEVTuning->EVCompTable.EVCompTableElements[30] = 0.0f;
    pEVTuning->EVCompTable.EVCompTableElements[18] = -0.5f;
    EXPECT_EQ(0.0f, AECUtilGetEVOffset(&m_ev, pEVTuning, 6));
    EXPECT_EQ(0.0f, AECUtilGetEVOffset(&m_ev, pEVTuning, -6));
    EXPECT_TRUE(MtrLogContains("EV table entry 30 is 0.000000: no EV offset"));
}

// ---- Early exits ----

TEST_F(HistogramTargetTest, HDR3LeavesTheResultUntouched)
{
    UseSimpleTuning();
    ParseUniform(100.0f);
    AECTargetCalcInput input   = TargetInput(&m_luma);
    input.enableHDR3           = TRUE;
    m_result.luxBasedSafeTarget  = 50.0f;
    m_result.histBasedSafeTarget = 77.0f;
    m_result.realDRCGain         = 3.0f;
    EXPECT_EQ(AecSuccess, m_pCalc->calculateTarget(&input, &m_result));
    EXPECT_EQ(77.0f, m_result.histBasedSafeTarget);
    EXPECT_EQ(0.0f, m_result.histBasedShortTarget);
    EXPECT_EQ(3.0f, m_result.realDRCGain);
}

TEST_F(HistogramTargetTest, HistMeteringOffGivesTheLuxTargetAndNoDRCGain)
{
    UseSimpleTuning();
    Hist().enableHistMetering = 0;
    SetBands(30.0f, 40.0f, 60.0f, 80.0f); // would move the target if it ran
    ParseUniform(100.0f);
    EXPECT_EQ(AecSuccess, Run(20.0f, TRUE));
    EXPECT_EQ(20.0f, m_result.histBasedSafeTarget);
    EXPECT_EQ(20.0f, m_result.histBasedShortTarget);
    EXPECT_EQ(20.0f, m_result.histBasedLongTarget);
    EXPECT_EQ(0.0f, m_result.realDRCGain);
    EXPECT_EQ(0, +Debug().bHistTargetEnable);
}

TEST_F(HistogramTargetTest, AWBGainsOfOneTenthRun)
{
    UseSimpleTuning();
    SetBands(30.0f, 40.0f, 60.0f, 80.0f);
    m_wb.redGain   = 0.1f;
    m_wb.greenGain = 0.1f;
    m_wb.blueGain  = 0.1f;
    ParseUniform(100.0f);
    EXPECT_EQ(AecSuccess, Run(20.0f));
    EXPECT_FALSE(MtrLogContains("cannot run hist target with such low WB gains"));
    // The bands ran: the reference is lifted to the bright band.
    EXPECT_GT(m_result.histBasedSafeTarget, 30.0f);
}

TEST_F(HistogramTargetTest, AWBGainBelowOneTenthInOneChannelFails)
{
    UseSimpleTuning();
    SetBands(30.0f, 40.0f, 60.0f, 80.0f);
    ParseUniform(100.0f);
    m_wb.blueGain = 0.09f;
    EXPECT_EQ(AecError, Run(20.0f));
    EXPECT_TRUE(MtrLogContains("cannot run hist target with such low WB gains: r 1.000000 g 1.000000 b 0.090000"));
    EXPECT_EQ(20.0f, m_result.histBasedSafeTarget);
    EXPECT_EQ(20.0f, m_result.histBasedShortTarget);
    EXPECT_EQ(20.0f, m_result.histBasedLongTarget);
}

TEST_F(HistogramTargetTest, UnprocessedHistogramKeepsTheLuxTarget)
{
    UseSimpleTuning();
    SetBands(30.0f, 40.0f, 60.0f, 80.0f);
    m_luma.finalLuma = 100.0f;
    // Nothing parsed: the histogram's use case is invalid.
    EXPECT_EQ(AecSuccess, Run(20.0f));
    EXPECT_TRUE(MtrLogContains("Invalid BHIST Usecase, Use default"));
    EXPECT_EQ(20.0f, m_result.histBasedSafeTarget);
}

TEST_F(HistogramTargetTest, NegativeRawTargetFailsWithTheLuxTarget)
{
    UseSimpleTuning();
    SetBands(-30.0f, 40.0f, 60.0f, 80.0f);
    ParseUniform(100.0f);
    EXPECT_EQ(AecError, Run(20.0f, TRUE));
    EXPECT_EQ(20.0f, m_result.histBasedSafeTarget);
    EXPECT_EQ(20.0f, m_result.histBasedShortTarget);
    EXPECT_EQ(20.0f, m_result.histBasedLongTarget);
}

TEST_F(HistogramTargetTest, EmptyZoneTableFailsWithTheLuxTarget)
{
    UseSimpleTuning();
    SetBands(30.0f, 40.0f, 60.0f, 80.0f);
    Hist().histLumaTargetZoneCount = 0;
    ParseUniform(100.0f);
    EXPECT_EQ(AecError, Run(20.0f, TRUE));
    EXPECT_EQ(20.0f, m_result.histBasedSafeTarget);
    EXPECT_EQ(20.0f, m_result.histBasedShortTarget);
    EXPECT_TRUE(MtrLogContains("hist target has no zone for lux index 100.000000"));
}

TEST_F(HistogramTargetTest, NullInputIsRefused)
{
    EXPECT_EQ(AecError, m_pCalc->calculateTarget(nullptr, &m_result));
    AECTargetCalcInput input = TargetInput(&m_luma);
    EXPECT_EQ(AecError, m_pCalc->calculateTarget(&input, nullptr));
    input.pEV = nullptr;
    EXPECT_EQ(AecError, m_pCalc->calculateTarget(&input, &m_result));
}

// ---- Range means and channels ----

TEST_F(HistogramTargetTest, OneChannelHistogramTakesTheFirstChannelRanges)
{
    UseSimpleTuning();
    SetBands(30.0f, 40.0f, 60.0f, 80.0f);
    // A sixth of the scene at luma 200, the rest at 50.
    std::unique_ptr<CSyntheticStats> image = Image();
    image->Fill(SyntheticRegion::Uniform(200));
    for (UINT32 x = 0; x < 16; ++x)
    {
        for (UINT32 y = 0; y < 12; y += 10)
        {
            image->SetRegion(x, y, SyntheticRegion::Uniform(800));
        }
    }
    image->Build();
    image->Hist().histDataType[1] = StatsColorChannelInvalid;
    image->Hist().histDataType[2] = StatsColorChannelInvalid;
    image->FillStatistics(m_pStats.get());
    ASSERT_EQ(AecSuccess, m_pProc->ProcessStats(m_pStats.get(), &m_wb, 1.0f));
    ASSERT_EQ(1, m_pProc->GetStatsProcessingResult()->GetBHistProcInfo().numOfChannels);
    m_luma.finalLuma = 100.0f;

    // Channel 0's push-up range lies in the bright sixth; the other channels' ranges in the mid tones.
    Zone().histSatPushupRange[0] = {0.0f, 0.05f};
    Zone().histSatPushupRange[1] = {0.5f, 0.6f};
    Zone().histSatPushupRange[2] = {0.5f, 0.6f};
    EXPECT_EQ(AecSuccess, Run(50.0f));
    AECDebugDataHistogramType debug = Debug();
    EXPECT_EQ(1.0f, +debug.numOfChannels);
    EXPECT_NEAR(200.0f, debug.satPushUpMeans[0], 0.5f);
    EXPECT_NEAR(200.0f, debug.satPushUpMeans[3], 0.5f);

    Zone().histSatPushupRange[0] = {0.5f, 0.6f};
    Zone().histSatPushupRange[1] = {0.0f, 0.05f};
    Zone().histSatPushupRange[2] = {0.0f, 0.05f};
    EXPECT_EQ(AecSuccess, Run(50.0f));
    debug = Debug();
    EXPECT_NEAR(50.0f, debug.satPushUpMeans[3], 0.5f);
}

TEST_F(HistogramTargetTest, BrightestChannelDecides)
{
    UseSimpleTuning();
    SetBands(30.0f, 40.0f, 60.0f, 80.0f);
    std::unique_ptr<CSyntheticStats> image = Image();
    // R, B, GR, GB slots: the blue channel is the brightest.
    image->Fill(SyntheticRegion{{200, 600, 400, 400}, {0.0f, 0.0f, 0.0f, 0.0f}});
    ASSERT_EQ(AecSuccess, Parse(*image));
    m_luma.finalLuma = 100.0f;
    EXPECT_EQ(AecSuccess, Run(50.0f));
    const AECDebugDataHistogramType debug = Debug();
    EXPECT_EQ(3.0f, +debug.numOfChannels);
    EXPECT_NEAR(150.0f, debug.satPushUpMeans[3], 0.5f);
    EXPECT_NEAR(150.0f, debug.darkMeans[3], 0.5f);
    // Bright band from the blue mean: 30 / 150 * 100.
    EXPECT_NEAR(20.0f, debug.brightLow, 0.1f);
}

// ---- Bands and safe target ----

struct BandCase
{
    FLOAT brightLow, brightHigh, darkLow, darkHigh;
    FLOAT lowTarget, highTarget;
};

class HistogramTargetBandTest : public HistogramTargetTest, public ::testing::WithParamInterface<BandCase>
{
};

TEST_P(HistogramTargetBandTest, ReferenceIsLimitedToTheBand)
{
    const BandCase& rCase = GetParam();
    UseSimpleTuning();
    SetBands(rCase.brightLow, rCase.brightHigh, rCase.darkLow, rCase.darkHigh);
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(1.0f));
    EXPECT_NEAR(rCase.lowTarget, m_result.histBasedSafeTarget, 0.05f);
    ASSERT_EQ(AecSuccess, Run(250.0f));
    EXPECT_NEAR(rCase.highTarget, m_result.histBasedSafeTarget, 0.05f);
}

INSTANTIATE_TEST_SUITE_P(BandOrder, HistogramTargetBandTest,
                         ::testing::Values(BandCase{30, 40, 60, 80, 40, 60},   // bright band below the dark band: gap
                                           BandCase{50, 90, 60, 80, 60, 80},   // bright band starts below dark
                                           BandCase{50, 70, 60, 90, 60, 70},   // ... and ends inside it
                                           BandCase{60, 70, 50, 80, 60, 70},   // dark band around the bright one
                                           BandCase{60, 90, 40, 70, 60, 70},   // dark band reaches into bright
                                           BandCase{80, 90, 40, 60, 60, 80})); // dark band below bright: gap

TEST_F(HistogramTargetTest, ReferenceBelowApartBandsTakesBrightHigh)
{
    UseSimpleTuning();
    SetBands(30.0f, 40.0f, 60.0f, 80.0f);
    ParseUniform(100.0f);
    EXPECT_EQ(AecSuccess, Run(20.0f));
    EXPECT_NEAR(40.0f, m_result.histBasedSafeTarget, 0.05f);
    EXPECT_TRUE(MtrLogContains("Target: refluma 100.1"));
}

TEST_F(HistogramTargetTest, MinimumRatioWinsOverALowerMaximum)
{
    UseSimpleTuning();
    SetBands(20.0f, 240.0f, 10.0f, 200.0f); // the band holds the reference
    Zone().maxTargetAdjRatio = 0.8f;
    Zone().minTargetAdjRatio = 0.9f;
    ParseUniform(100.0f);
    EXPECT_EQ(AecSuccess, Run(50.0f));
    EXPECT_NEAR(45.0f, m_result.histBasedSafeTarget, 1e-4f);
}

TEST_F(HistogramTargetTest, RatiosLimitTheSafeTarget)
{
    UseSimpleTuning();
    SetBands(150.0f, 240.0f, 120.0f, 200.0f); // band (150, 200)
    Zone().maxTargetAdjRatio = 1.2f;
    ParseUniform(100.0f);
    EXPECT_EQ(AecSuccess, Run(50.0f));
    EXPECT_NEAR(60.0f, m_result.histBasedSafeTarget, 1e-4f);
}

TEST_F(HistogramTargetTest, BandFilterWeighsTheLastFrameFromTheSecondFrameOn)
{
    UseSimpleTuning();
    Hist().targetFilterFactor = 0.5f;
    SetBands(30.0f, 40.0f, 60.0f, 80.0f);
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(20.0f));
    AECDebugDataHistogramType debug = Debug();
    EXPECT_NEAR(30.0f, debug.brightLow, 0.05f); // first frame unfiltered
    EXPECT_NEAR(80.0f, debug.darkHigh, 0.05f);

    SetBands(50.0f, 60.0f, 100.0f, 120.0f);
    ASSERT_EQ(AecSuccess, Run(20.0f));
    debug = Debug();
    EXPECT_NEAR(40.0f, debug.brightLow, 0.05f);
    EXPECT_NEAR(50.0f, debug.brightHigh, 0.05f);
    EXPECT_NEAR(80.0f, debug.darkLow, 0.05f);
    EXPECT_NEAR(100.0f, debug.darkHigh, 0.05f);
    EXPECT_NEAR(50.0f, m_result.histBasedSafeTarget, 0.05f);
}

TEST_F(HistogramTargetTest, FailedFirstFrameLeavesTheFilterUnprimed)
{
    UseSimpleTuning();
    Hist().targetFilterFactor = 0.5f;
    SetBands(-30.0f, 40.0f, 60.0f, 80.0f);
    ParseUniform(100.0f);
    ASSERT_EQ(AecError, Run(20.0f));
    SetBands(30.0f, 40.0f, 60.0f, 80.0f);
    ASSERT_EQ(AecSuccess, Run(20.0f));
    EXPECT_NEAR(30.0f, Debug().brightLow, 0.05f);
}

TEST_F(HistogramTargetTest, NonLinearEstimateMatchesLinearWithoutClipping)
{
    UseSimpleTuning();
    SetBands(30.0f, 40.0f, 60.0f, 80.0f);
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(20.0f));
    const FLOAT linear = m_result.histBasedSafeTarget;
    Hist().enableNonLinearTargetEstimate = 1;
    std::unique_ptr<CHistogramTargetCalculator> pFresh = std::make_unique<CHistogramTargetCalculator>(m_pProc.get());
    m_pCalc.swap(pFresh);
    ASSERT_EQ(AecSuccess, Run(20.0f));
    EXPECT_NEAR(linear, m_result.histBasedSafeTarget, 0.1f);
}

// ---- ADRC short and long target ----

TEST_F(HistogramTargetTest, ClippedHighlightsGiveAShortTargetBelowSafeWithADRC)
{
    // Default tuning: clipping-aware estimate, daylight zone. A dark scene (luma 8) whose top row is clipped at
    // full scale: the dark band asks for more exposure than the highlights allow.
    std::unique_ptr<CSyntheticStats> image = Image();
    image->Fill(SyntheticRegion::Uniform(32));
    for (UINT32 x = 0; x < 16; ++x)
    {
        image->SetRegion(x, 0, SyntheticRegion::Uniform(1023));
    }
    ASSERT_EQ(AecSuccess, Parse(*image));
    m_luma.finalLuma = 28.6f; // 11/12 at 8, 1/12 at full scale
    m_luma.frameLuma = 28.6f;

    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_GT(m_result.histBasedSafeTarget, 0.0f);
    EXPECT_LT(m_result.histBasedShortTarget, m_result.histBasedSafeTarget * 0.95f);
    EXPECT_GT(m_result.realDRCGain, 1.0f);
    EXPECT_TRUE(MtrLogContains("m_realDRCGain="));

    // The same scene without ADRC: one target for all three exposures.
    std::unique_ptr<CHistogramTargetCalculator> pFresh = std::make_unique<CHistogramTargetCalculator>(m_pProc.get());
    m_pCalc.swap(pFresh);
    ASSERT_EQ(AecSuccess, Run(50.0f, FALSE));
    EXPECT_EQ(m_result.histBasedSafeTarget, m_result.histBasedShortTarget);
    EXPECT_EQ(m_result.histBasedSafeTarget, m_result.histBasedLongTarget);
}

TEST_F(HistogramTargetTest, ShortTargetKeepsTheBrightHighEnd)
{
    UseSimpleTuning();
    SetBands(4.0f, 10.0f, 60.0f, 80.0f); // band (10, 60): the reference 50 stays
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_NEAR(50.0f, m_result.histBasedSafeTarget, 0.01f);
    EXPECT_NEAR(10.0f, m_result.histBasedShortTarget, 0.01f);
    EXPECT_NEAR(5.0f, m_result.realDRCGain, 0.01f);
    EXPECT_EQ(m_result.histBasedSafeTarget, m_result.histBasedLongTarget); // no dark boost tuned
}

TEST_F(HistogramTargetTest, SwappedBrightBandTakesTheLowerEndForShort)
{
    UseSimpleTuning();
    SetBands(10.0f, 4.0f, 60.0f, 80.0f); // swapped: the bright band is (4, 10)
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_NEAR(4.0f, Debug().brightLow, 0.01f);
    EXPECT_NEAR(4.0f, m_result.histBasedShortTarget, 0.01f);
    EXPECT_TRUE(MtrLogContains("target_swap=1"));
}

TEST_F(HistogramTargetTest, LegacyTargetsTakeTheBandTopForShort)
{
    UseSimpleTuning();
    Ext().enableHist       = 1;
    Ext().maxDRCGain       = 16.0f;
    Ext().maxDarkBoostGain = 1.5f;
    Ext().maxADRCGainFace  = 6.0f;
    Ext().useLegacyTargets = 1;
    SetBands(4.0f, 10.0f, 20.0f, 30.0f); // band (10, 20), reference 50 above it: safe 20
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_NEAR(20.0f, m_result.histBasedSafeTarget, 0.01f);
    EXPECT_NEAR(20.0f, m_result.histBasedShortTarget, 0.01f); // min(safe, band top)

    Ext().useLegacyTargets = 0;
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_NEAR(10.0f, m_result.histBasedShortTarget, 0.01f); // min(safe, bright high)
}

TEST_F(HistogramTargetTest, ZoneAndExtensionCapTheADRCGain)
{
    UseSimpleTuning();
    SetBands(1.0f, 2.0f, 60.0f, 80.0f); // real DRC gain 25
    Zone().maxDRCGain = 4.0f;
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_NEAR(25.0f, m_result.realDRCGain, 0.01f);
    EXPECT_NEAR(12.5f, m_result.histBasedShortTarget, 0.01f);

    Zone().maxDRCGain     = 32.0f;
    Ext().enableHist      = 1;
    Ext().maxDRCGain      = 5.0f;
    Ext().maxADRCGainFace = 6.0f;
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_NEAR(10.0f, m_result.histBasedShortTarget, 0.01f);

    // Extension off: its values are not used, the default ceiling 16 applies.
    Ext().enableHist = 0;
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_NEAR(50.0f / 16.0f, m_result.histBasedShortTarget, 0.01f);
}

TEST_F(HistogramTargetTest, FaceLimitsTheADRCGainUntilTheNextInterpolation)
{
    UseSimpleTuning();
    SetBands(4.0f, 5.0f, 60.0f, 80.0f); // real DRC gain 10
    Zone().maxDRCGain     = 8.0f;
    Ext().enableHist      = 1;
    Ext().maxDRCGain      = 16.0f;
    Ext().maxDarkBoostGain = 1.5f;
    Ext().maxADRCGainFace = 6.0f;
    ParseUniform(100.0f);
    m_luma.faceLuma = 80.0f;
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_NEAR(50.0f / 6.0f, m_result.histBasedShortTarget, 0.01f);
    EXPECT_EQ(6.0f, +Debug().maxDRCGain); // the zone copy holds the face ceiling

    m_luma.faceLuma = -1.0f;
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_NEAR(50.0f / 8.0f, m_result.histBasedShortTarget, 0.01f);
    EXPECT_EQ(8.0f, +Debug().maxDRCGain);
}

TEST_F(HistogramTargetTest, DarkBoostRaisesLongTowardsTheDarkBand)
{
    UseSimpleTuning();
    Hist().enableDarkBoost = 1;
    SetBands(1.0f, 2.0f, 60.0f, 80.0f); // real DRC gain 25, safe 50 below darkLow 60
    Zone().maxDRCGain = 8.0f;
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    // min(16 / 8, min(60 / 50, 1.5)) = 1.2
    EXPECT_NEAR(60.0f, m_result.histBasedLongTarget, 0.01f);
    EXPECT_TRUE(MtrLogContains("DarkBoost_enable=1"));
}

TEST_F(HistogramTargetTest, ADRCGainAtTheCeilingGivesNoDarkBoost)
{
    UseSimpleTuning();
    Hist().enableDarkBoost = 1;
    SetBands(1.0f, 2.0f, 60.0f, 80.0f); // real DRC gain 25: the gain reaches the ceiling of 16
    Zone().maxDRCGain = 16.0f;
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_NEAR(50.0f / 16.0f, m_result.histBasedShortTarget, 0.01f);
    EXPECT_EQ(m_result.histBasedSafeTarget, m_result.histBasedLongTarget);
}

TEST_F(HistogramTargetTest, RealDRCGainKeepsItsValueWithoutADRC)
{
    UseSimpleTuning();
    SetBands(4.0f, 10.0f, 60.0f, 80.0f);
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    ASSERT_NEAR(5.0f, m_result.realDRCGain, 0.01f);
    ASSERT_EQ(AecSuccess, Run(50.0f, FALSE));
    EXPECT_NEAR(5.0f, m_result.realDRCGain, 0.01f);
    EXPECT_EQ(m_result.histBasedSafeTarget, m_result.histBasedShortTarget);
}

// ---- ROI adjustments ----

class HistogramTargetRoiTest : public HistogramTargetTest
{
protected:
    VOID SetUp() override
    {
        HistogramTargetTest::SetUp();
        UseSimpleTuning();
        Zone().minTargetAdjRatio = 0.5f;
        Zone().maxTargetAdjRatio = 1.2f;
        Zone().darkRefLow        = 12.0f;
        Zone().satRefHigh        = 240.0f;
        aecTouch::TouchMeteringType& rTouch = Modules().modTouch->touchMtr;
        rTouch.enableTouchROIHistAdj        = 1;
        rTouch.ROIHistAdjZoneCount          = 1;
        aecglobalelements::ROIHistAdjZoneDataType& rZone = rTouch.ROIHistAdjZone[0].zoneData;
        rZone.darkLumaRatioRange    = {0.3f, 0.8f};
        rZone.darkROIAdjustParams   = {0.8f, 1.6f, 20.0f, 250.0f};
        rZone.brightLumaRatioRange  = {1.25f, 3.0f};
        rZone.brightROIAdjustParams = {0.4f, 1.1f, 8.0f, 220.0f};
        m_input = TargetInput(&m_luma);
        m_luma.frameLuma = 100.0f;
        m_zone           = Zone();
    }

    aecMetering::HistLumaTargetZoneDataType Touch(FLOAT touchLuma)
    {
        m_luma.touchLuma                               = touchLuma;
        aecMetering::HistLumaTargetZoneDataType zone   = m_zone;
        m_pCalc->adjustTuningParamByTouchROI(&m_input, &zone);
        return zone;
    }

    AECTargetCalcInput                      m_input;
    aecMetering::HistLumaTargetZoneDataType m_zone;
};

TEST_F(HistogramTargetRoiTest, VeryDarkTouchTakesTheDarkParameters)
{
    const aecMetering::HistLumaTargetZoneDataType zone = Touch(20.0f); // ratio 0.2
    EXPECT_FLOAT_EQ(0.8f, zone.minTargetAdjRatio);
    EXPECT_FLOAT_EQ(1.6f, zone.maxTargetAdjRatio);
    EXPECT_FLOAT_EQ(20.0f, zone.darkRefLow);
    EXPECT_FLOAT_EQ(250.0f, zone.satRefHigh);
    EXPECT_FLOAT_EQ(m_zone.darkRefHigh, zone.darkRefHigh);
    EXPECT_TRUE(MtrLogContains("LumaRatio: 0.200000, interpRatio 1.000000"));
}

TEST_F(HistogramTargetRoiTest, DarkRampRisesTowardsTheRangeEnd)
{
    // Ratio 0.55, halfway through the dark range (0.3, 0.8): weight 0.5; at 0.7 the weight is 0.8.
    aecMetering::HistLumaTargetZoneDataType zone = Touch(55.0f);
    EXPECT_NEAR(0.65f, zone.minTargetAdjRatio, 1e-5f);
    EXPECT_NEAR(1.4f, zone.maxTargetAdjRatio, 1e-5f);
    zone = Touch(70.0f);
    EXPECT_NEAR(0.5f + 0.8f * 0.3f, zone.minTargetAdjRatio, 1e-5f);
}

TEST_F(HistogramTargetRoiTest, TouchNearTheFrameLumaChangesNothing)
{
    const aecMetering::HistLumaTargetZoneDataType zone = Touch(110.0f); // ratio 1.1, between 0.8 and 1.25
    EXPECT_EQ(0, std::memcmp(&zone, &m_zone, sizeof(zone)));
    EXPECT_FALSE(MtrLogContains("LumaRatio"));
}

TEST_F(HistogramTargetRoiTest, BrightTouchRampsTowardsTheBrightParameters)
{
    // Ratio 2.125, halfway through the bright range (1.25, 3): weight 0.5.
    aecMetering::HistLumaTargetZoneDataType zone = Touch(212.5f);
    EXPECT_NEAR(0.45f, zone.minTargetAdjRatio, 1e-5f);
    EXPECT_NEAR(1.15f, zone.maxTargetAdjRatio, 1e-5f);
    EXPECT_NEAR(10.0f, zone.darkRefLow, 1e-4f);
    EXPECT_NEAR(230.0f, zone.satRefHigh, 1e-4f);
    zone = Touch(400.0f); // ratio 4, beyond the range: full weight
    EXPECT_FLOAT_EQ(0.4f, zone.minTargetAdjRatio);
}

TEST_F(HistogramTargetRoiTest, TouchWithoutFrameLumaChangesNothing)
{
    m_luma.frameLuma                                   = 0.0f;
    const aecMetering::HistLumaTargetZoneDataType zone = Touch(20.0f);
    EXPECT_EQ(0, std::memcmp(&zone, &m_zone, sizeof(zone)));
    EXPECT_TRUE(MtrLogContains("touch hist adjustment without frame luma"));
}

TEST_F(HistogramTargetRoiTest, DisabledTouchAdjustmentChangesNothing)
{
    Modules().modTouch->touchMtr.enableTouchROIHistAdj = 0;
    const aecMetering::HistLumaTargetZoneDataType zone = Touch(20.0f);
    EXPECT_EQ(0, std::memcmp(&zone, &m_zone, sizeof(zone)));
}

TEST_F(HistogramTargetRoiTest, LargeFacePullsTheLimitsToTheReference)
{
    aecFace::FaceMeteringType& rFace      = Modules().modFace->faceMtr;
    rFace.enableFaceROI                   = 1;
    rFace.enableHistLumaTargetSuppression = 1;
    rFace.faceSize                        = {0.1f, 0.3f};

    m_luma.faceMaxSize                           = 0.2f; // halfway: allowRatio 0.5
    aecMetering::HistLumaTargetZoneDataType zone = m_zone;
    m_pCalc->adjustTuningParamByFaceROI(&m_input, &zone);
    EXPECT_NEAR(0.75f, zone.minTargetAdjRatio, 1e-5f);
    EXPECT_NEAR(1.1f, zone.maxTargetAdjRatio, 1e-5f);
    EXPECT_TRUE(MtrLogContains("allowRatio: 0.500000"));

    m_luma.faceMaxSize = 0.5f; // larger than the range: the safe target is the reference
    zone               = m_zone;
    m_pCalc->adjustTuningParamByFaceROI(&m_input, &zone);
    EXPECT_FLOAT_EQ(1.0f, zone.minTargetAdjRatio);
    EXPECT_FLOAT_EQ(1.0f, zone.maxTargetAdjRatio);

    m_luma.faceMaxSize = 0.01f; // smaller than the range: no suppression
    zone               = m_zone;
    m_pCalc->adjustTuningParamByFaceROI(&m_input, &zone);
    EXPECT_FLOAT_EQ(0.5f, zone.minTargetAdjRatio);

    rFace.enableHistLumaTargetSuppression = 0;
    m_luma.faceMaxSize                    = 0.5f;
    zone                                  = m_zone;
    m_pCalc->adjustTuningParamByFaceROI(&m_input, &zone);
    EXPECT_FLOAT_EQ(0.5f, zone.minTargetAdjRatio);
}

TEST_F(HistogramTargetRoiTest, EmptyFaceSizeRangeSkipsTheSuppression)
{
    aecFace::FaceMeteringType& rFace      = Modules().modFace->faceMtr;
    rFace.enableFaceROI                   = 1;
    rFace.enableHistLumaTargetSuppression = 1;
    rFace.faceSize                        = {0.2f, 0.2f};
    m_luma.faceMaxSize                    = 0.2f;
    aecMetering::HistLumaTargetZoneDataType zone = m_zone;
    m_pCalc->adjustTuningParamByFaceROI(&m_input, &zone);
    EXPECT_FLOAT_EQ(0.5f, zone.minTargetAdjRatio);
    EXPECT_TRUE(MtrLogContains("face size range"));
}

TEST_F(HistogramTargetRoiTest, TouchOutranksFaceInTheFrame)
{
    aecFace::FaceMeteringType& rFace      = Modules().modFace->faceMtr;
    rFace.enableFaceROI                   = 1;
    rFace.enableHistLumaTargetSuppression = 1;
    rFace.faceSize                        = {0.1f, 0.3f};
    m_luma.faceMaxSize                    = 0.5f;
    m_luma.faceLuma                       = 80.0f;
    m_luma.touchLuma                      = 20.0f;
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(50.0f));
    const AECDebugDataHistogramType debug = Debug();
    EXPECT_FLOAT_EQ(0.8f, debug.safeTargetAdjustRatios[0]); // touch's dark parameters, not the face's 1.0
    EXPECT_FLOAT_EQ(1.6f, debug.safeTargetAdjustRatios[1]);
    EXPECT_FALSE(MtrLogContains("allowRatio"));
}

// ---- EV handling ----

TEST_F(HistogramTargetTest, CompensatedEVMovesTheTargetByOneStop)
{
    UseSimpleTuning();
    Hist().EVHandling = aecglobalelements::Compensated;
    SetBands(20.0f, 240.0f, 10.0f, 200.0f); // band (20, 200): holds 25, 50 and 100
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(50.0f));
    const FLOAT base = m_result.histBasedSafeTarget;

    // The EV comes back downstream through the index offset: the target in force is target * EV multiplier.
    // Tolerance 0.1 % of the target: the table holds exact powers of two, only float rounding remains.
    const aecMetering::EVLumaTargetType* pEVTuning = &Modules().modMtr->mtrLumaTarget.EVLumaTarget;
    for (INT32 stops : {1, -1})
    {
        m_ev.EVUIVal      = stops * 6;
        const FLOAT mult  = powf(1.03f, AECUtilGetEVOffset(&m_ev, pEVTuning, m_ev.EVUIVal));
        ASSERT_EQ(AecSuccess, Run(50.0f));
        const FLOAT inForce = m_result.histBasedSafeTarget * mult;
        EXPECT_NEAR(base * std::pow(2.0f, static_cast<FLOAT>(stops)), inForce, base * 1e-3f) << stops;
    }
    EXPECT_TRUE(MtrLogContains("Compensated: Hist safe target readjusted by EV multiplier"));
    EXPECT_TRUE(MtrLogContains("Targets, Lux:50.000000 EVMulti:"));
}

TEST_F(HistogramTargetTest, CompensatedEVIsJudgedAgainstTheBands)
{
    UseSimpleTuning();
    Hist().EVHandling = aecglobalelements::Compensated;
    SetBands(20.0f, 240.0f, 10.0f, 80.0f); // band (20, 80): +1 stop of 50 is held at 80
    ParseUniform(100.0f);
    m_ev.EVUIVal = 6;
    ASSERT_EQ(AecSuccess, Run(50.0f));
    EXPECT_NEAR(40.0f, m_result.histBasedSafeTarget, 0.05f);
}

TEST_F(HistogramTargetTest, LegacyEVLeavesTheTargetsToTheIndex)
{
    UseSimpleTuning();
    SetBands(20.0f, 240.0f, 10.0f, 200.0f);
    ParseUniform(100.0f);
    m_ev.EVUIVal = 6;
    ASSERT_EQ(AecSuccess, Run(50.0f));
    EXPECT_NEAR(50.0f, m_result.histBasedSafeTarget, 1e-4f);
    EXPECT_TRUE(MtrLogContains("no special adjustments for this EV handling method 0"));
}

TEST_F(HistogramTargetTest, EVHandlingRefusesANonPositiveMultiplier)
{
    m_result.histBasedSafeTarget = 500.0f;
    m_pCalc->HandleEVCompensation(0.0f, &m_result, aecglobalelements::Compensated, &m_ev);
    EXPECT_EQ(500.0f, m_result.histBasedSafeTarget);
    EXPECT_TRUE(MtrLogContains("EV multiplier out of range 0.000; not applying"));
}

TEST_F(HistogramTargetTest, EVScaledTargetsStayWithinTheLumaRangeExceptLegacy)
{
    m_result.histBasedShortTarget = 0.2f;
    m_result.histBasedLongTarget  = 300.0f;
    m_result.histBasedSafeTarget  = 50.0f;
    m_pCalc->HandleEVCompensation(2.0f, &m_result, aecglobalelements::Advanced1, &m_ev);
    EXPECT_FLOAT_EQ(0.5f, m_result.histBasedShortTarget);
    EXPECT_FLOAT_EQ(110.0f, m_result.histBasedLongTarget);
    EXPECT_FLOAT_EQ(50.0f, m_result.histBasedSafeTarget);

    m_result.histBasedShortTarget = 0.2f;
    m_result.histBasedLongTarget  = 300.0f;
    m_pCalc->HandleEVCompensation(2.0f, &m_result, aecglobalelements::Legacy, &m_ev);
    EXPECT_FLOAT_EQ(0.2f, m_result.histBasedShortTarget);
    EXPECT_FLOAT_EQ(300.0f, m_result.histBasedLongTarget);
}

TEST_F(HistogramTargetTest, FreezeRefreshesTheRatiosWhileEVIsZero)
{
    UseSimpleTuning();
    Hist().EVHandling = aecglobalelements::Freeze;
    SetBands(20.0f, 240.0f, 10.0f, 200.0f);
    ParseUniform(100.0f);
    // The first frame stores the ratios at EV +1: safe 0.8 of the reference.
    Zone().maxTargetAdjRatio = 0.8f;
    m_ev.EVUIVal             = 6;
    ASSERT_EQ(AecSuccess, Run(50.0f));
    EXPECT_NEAR(40.0f, m_result.histBasedSafeTarget, 1e-4f);

    // EV 0, though not the stored EV: each frame's scene decision replaces the stored ratios.
    m_ev.EVUIVal             = 0;
    Zone().maxTargetAdjRatio = 0.9f;
    ASSERT_EQ(AecSuccess, Run(50.0f));
    EXPECT_NEAR(45.0f, m_result.histBasedSafeTarget, 1e-4f);
    Zone().maxTargetAdjRatio = 0.7f;
    ASSERT_EQ(AecSuccess, Run(50.0f));
    EXPECT_NEAR(35.0f, m_result.histBasedSafeTarget, 1e-4f);

    // EV changes: the ratios of the last EV-0 frame hold, whatever the scene now says.
    Zone().maxTargetAdjRatio = 0.5f;
    m_ev.EVUIVal             = -6;
    ASSERT_EQ(AecSuccess, Run(60.0f));
    EXPECT_NEAR(0.7f * 60.0f, m_result.histBasedSafeTarget, 1e-4f);
    EXPECT_TRUE(MtrLogContains("Freeze EV -6 applied"));

    // While the EV stays the hold stays; back at EV 0 the scene decides again.
    ASSERT_EQ(AecSuccess, Run(60.0f));
    EXPECT_NEAR(0.7f * 60.0f, m_result.histBasedSafeTarget, 1e-4f);
    m_ev.EVUIVal = 0;
    ASSERT_EQ(AecSuccess, Run(60.0f));
    EXPECT_NEAR(30.0f, m_result.histBasedSafeTarget, 1e-4f);
}

TEST_F(HistogramTargetTest, FreezeEasesRatiosAboveOneOnABrighterEV)
{
    UseSimpleTuning();
    Hist().EVHandling = aecglobalelements::Freeze;
    Hist().enableDarkBoost = 1;
    SetBands(1.0f, 2.0f, 60.0f, 80.0f); // long 60 over reference 50: ratio 1.2
    Zone().maxDRCGain = 8.0f;
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    ASSERT_NEAR(60.0f, m_result.histBasedLongTarget, 0.01f);

    m_ev.EVUIVal = 6; // multiplier 2: w = 0.5, ratio 1.2 eases to 1.1; ratios up to 1 stay
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    EXPECT_NEAR(55.0f, m_result.histBasedLongTarget, 0.01f);
    EXPECT_NEAR(50.0f, m_result.histBasedSafeTarget, 0.01f);
    EXPECT_NEAR(50.0f / 8.0f, m_result.histBasedShortTarget, 0.01f);
}

// ---- Debug data ----

TEST_F(HistogramTargetTest, DebugDataCarriesTheFrame)
{
    UseSimpleTuning();
    SetBands(4.0f, 10.0f, 60.0f, 80.0f);
    ParseUniform(100.0f);
    ASSERT_EQ(AecSuccess, Run(50.0f, TRUE));
    const AECDebugDataHistogramType debug = Debug();
    EXPECT_EQ(1, +debug.bHistTargetEnable);
    EXPECT_EQ(1, +debug.bADRCEnable);
    EXPECT_FLOAT_EQ(m_luma.finalLuma, debug.refLuma);
    EXPECT_FLOAT_EQ(50.0f, debug.refTarget);
    EXPECT_FLOAT_EQ(4.0f, debug.satRefs[0]);
    EXPECT_FLOAT_EQ(10.0f, debug.satRefs[1]);
    EXPECT_FLOAT_EQ(60.0f, debug.darkRefs[0]);
    EXPECT_FLOAT_EQ(80.0f, debug.darkRefs[1]);
    EXPECT_FLOAT_EQ(16.0f, debug.maxDRCGain);
    EXPECT_NEAR(10.0f, debug.adjustedTargets[AECAlgoExposureShort], 0.01f);
    EXPECT_NEAR(50.0f, debug.adjustedTargets[AECAlgoExposureLong], 0.01f);
    EXPECT_NEAR(50.0f, debug.adjustedTargets[AECAlgoExposureSafe], 0.01f);
    EXPECT_NEAR(100.0f, debug.satPushDownMeans[0], 0.5f);
}
} // namespace
