// Touch, diagnostic, SHDR, IR and flash measurement lumas.
#include "aec/core/modules/mod_mtr/cdiaglumacalculator.h"
#include "aec/core/modules/mod_mtr/cirlumacalculator.h"
#include "aec/core/modules/mod_mtr/cshdrlumacalculator.h"
#include "aec/core/modules/mod_mtr/ctouchlumacalculator.h"
#include "aec/core/modules/mod_mtr/flashmeasurementlumacalculator.h"
#include "unit/mtr/lumacalculatorstest.h"

class RoiLumaTest : public LumaCalcTest
{
protected:
    AecResult Run(IAECLumaCalculator& calc, BOOL parse = TRUE)
    {
        if (FALSE != parse)
        {
            EXPECT_EQ(AecSuccess, Parse(*m_pImage));
        }
        const AECLumaCalcInput input = LumaInput();
        return calc.calculateLuma(&input, &m_result);
    }

    VOID AddTouch(FLOAT x, FLOAT y, FLOAT dx, FLOAT dy)
    {
        m_touch.ROIs[m_touch.ROICount++] = {x, y, dx, dy, 1.0f};
    }
};

// ---- touch ----

TEST_F(RoiLumaTest, TouchWithoutRoiOrDisabledGivesMinusOne)
{
    CTouchLumaCalculator calc(m_pProc.get());
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_FLOAT_EQ(-1.0f, m_result.touchLuma);

    AddTouch(0.25f, 0.25f, 0.25f, 0.25f);
    Modules().modTouch->touchMtr.enableTouchROI = FALSE;
    m_result.touchLuma                          = 0.0f;
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_FLOAT_EQ(-1.0f, m_result.touchLuma);
}

TEST_F(RoiLumaTest, TouchLumaIsTheMeanInsideTheTouchedEllipse)
{
    // The ellipse takes regions of columns and rows 0 to 3; column and row 4, still in the window, lie outside it.
    SetBlock(0, 0, 3, 3, 245.0f);
    SetBlock(4, 0, 4, 4, 10.0f);
    SetBlock(0, 4, 4, 4, 10.0f);
    AddTouch(0.0f, 0.0f, 0.25f, 0.25f);
    CTouchLumaCalculator calc(m_pProc.get());
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_NEAR(245.0f, m_result.touchLuma, 1e-3f);
}

TEST_F(RoiLumaTest, TouchAddsTheSumsOfAllRois)
{
    SetBlock(0, 0, 3, 3, 100.0f);
    SetBlock(8, 8, 11, 11, 200.0f);
    AddTouch(0.0f, 0.0f, 0.25f, 0.25f);
    AddTouch(0.5f, 0.5f, 0.25f, 0.25f);
    CTouchLumaCalculator calc(m_pProc.get());
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_NEAR(150.0f, m_result.touchLuma, 1e-3f);
}

TEST_F(RoiLumaTest, TouchRoiOutsideTheParsedWindowGivesZero)
{
    AddTouch(1.2f, 1.2f, 0.2f, 0.2f);
    CTouchLumaCalculator calc(m_pProc.get());
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_FLOAT_EQ(0.0f, m_result.touchLuma);
}

TEST_F(RoiLumaTest, TouchCentreWeightStrengthShapesTheMean)
{
    // Ellipse over regions 2 to 6 of row and column, centred on (4, 4); the rim regions are bright.
    SetLuma(2, 4, 200.0f);
    SetLuma(6, 4, 200.0f);
    SetLuma(4, 2, 200.0f);
    SetLuma(4, 6, 200.0f);
    AddTouch(2.5f / 16.0f, 2.5f / 16.0f, 0.25f, 0.25f);
    CTouchLumaCalculator calc(m_pProc.get());
    Modules().modTouch->touchMtr.centerWeightStrength = 1.0f;
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_NEAR(100.0f, m_result.touchLuma, 1e-3f);
    Modules().modTouch->touchMtr.centerWeightStrength = 0.0f;
    EXPECT_EQ(AecSuccess, Run(calc));
    // 13 regions of weight 1, four of them at 200.
    EXPECT_NEAR((9.0f * 100.0f + 4.0f * 200.0f) / 13.0f, m_result.touchLuma, 1e-3f);
}

TEST_F(RoiLumaTest, TouchTakesAtMostTheCapacityOfRois)
{
    for (UINT32 i = 0; i < AECMaxTouchROIs; i++)
    {
        AddTouch(0.0f, 0.0f, 0.25f, 0.25f);
    }
    m_touch.ROICount = AECMaxTouchROIs + 1;
    CTouchLumaCalculator calc(m_pProc.get());
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_NEAR(100.0f, m_result.touchLuma, 1e-3f);
    EXPECT_TRUE(MtrLogContains("only the first 10 are used"));
}

// ---- diagnostic ----

TEST_F(RoiLumaTest, DiagWithoutDiagnosticsPassesTheFrameLumaThrough)
{
    CDiagLumaCalculator calc(m_pProc.get());
    m_result.frameLuma = 77.0f;
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_FLOAT_EQ(77.0f, m_result.diagLuma);
}

TEST_F(RoiLumaTest, DiagLooksAtTheCentralBlockOnly)
{
    SetBlock(6, 6, 9, 9, 200.0f);
    // Just outside the block.
    SetBlock(5, 5, 5, 10, 10.0f);
    SetBlock(10, 5, 10, 10, 10.0f);
    CDiagLumaCalculator calc(m_pProc.get());
    ASSERT_EQ(AecSuccess, Parse(*m_pImage));
    AECLumaCalcInput input = LumaInput();
    input.enableDiag       = TRUE;
    EXPECT_EQ(AecSuccess, calc.calculateLuma(&input, &m_result));
    EXPECT_NEAR(200.0f, m_result.diagLuma, 1e-3f);
}

TEST_F(RoiLumaTest, DiagWithoutRegionsKeepsTheFloorAndIsCappedAt255)
{
    CDiagLumaCalculator calc(m_pProc.get());
    AECLumaCalcInput    input = LumaInput();
    input.enableDiag          = TRUE;
    m_result.frameLuma        = 77.0f;
    EXPECT_EQ(AecSuccess, calc.calculateLuma(&input, &m_result));
    EXPECT_FLOAT_EQ(0.1f, m_result.diagLuma);

    m_pImage->Fill(SyntheticRegion::Uniform(1023));
    ASSERT_EQ(AecSuccess, Parse(*m_pImage));
    EXPECT_EQ(AecSuccess, calc.calculateLuma(&input, &m_result));
    EXPECT_FLOAT_EQ(255.0f, m_result.diagLuma);
}

// ---- SHDR and IR ----

TEST_F(RoiLumaTest, ShdrOffGivesMinusOne)
{
    Modules().modShdr->shdrMtr.enableShdr = 0;
    CShdrLumaCalculator calc(m_pProc.get());
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_FLOAT_EQ(-1.0f, m_result.shdrLuma);
}

TEST_F(RoiLumaTest, ShdrLeavesOutTheOuterRing)
{
    Modules().modShdr->shdrMtr.enableShdr = 1;
    // On the 9 x 13 table, rows 0, 1, 14, 15 and columns 0, 15 of the 16 x 16 grid fall into the outer ring.
    m_pImage->Fill(SyntheticRegion::Uniform(Code(250.0f)));
    SetBlock(1, 2, 14, 13, 100.0f);
    CShdrLumaCalculator calc(m_pProc.get());
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_NEAR(100.0f, m_result.shdrLuma, 1e-3f);
}

TEST_F(RoiLumaTest, ShdrWithoutRegionsGivesTheFloor)
{
    Modules().modShdr->shdrMtr.enableShdr = 1;
    CShdrLumaCalculator calc(m_pProc.get());
    EXPECT_EQ(AecSuccess, Run(calc, FALSE));
    EXPECT_FLOAT_EQ(0.1f, m_result.shdrLuma);
}

TEST_F(RoiLumaTest, IrReportsNoLumaAndFullVisibleLight)
{
    CIrLumaCalculator calc(m_pProc.get());
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_FLOAT_EQ(-1.0f, m_result.irLuma);
    EXPECT_FLOAT_EQ(1.0f, m_result.VisibleLightRatio);
}

// ---- flash measurement: the central window holds regions 7 and 8 of each axis ----

class FlashMeasLumaTest : public RoiLumaTest
{
protected:
    VOID SetUp() override
    {
        RoiLumaTest::SetUp();
        m_pImage = Image(16, 16, 10, TRUE);
        m_pImage->Fill(SyntheticRegion::Uniform(Code(30.0f)));
    }

    VOID SetCentre(UINT32 i, const SyntheticRegion& region)
    {
        m_pImage->SetRegion(7 + (i % 2), 7 + (i / 2), region);
    }

    // Mean of a ratio over the window regions that are neither saturated nor dark.
    FLOAT WindowRatio(BOOL rg)
    {
        BGStatsIterator it = m_pProc->GetStatsProcessingResult()->GetBGStatsIterator(
            BGStatsIterationMode::Exhaustive, 0.4375f, 0.4375f, 0.5525f, 0.5525f);
        FLOAT sum = 0.0f;
        INT32 n   = 0;
        while (FALSE != it.HasNext())
        {
            const ParsedBGRegionType* pRgn = it.Next();
            if ((pRgn->rgnSatRatio <= 0.05f) && (pRgn->rgnLuma >= 20.0f))
            {
                sum += (FALSE != rg) ? pRgn->RGRatio : pRgn->BGRatio;
                n++;
            }
        }
        return sum / static_cast<FLOAT>(n);
    }
};

TEST_F(FlashMeasLumaTest, WellExposedWindowGivesLumaAndColourRatios)
{
    FlashMeasurementLumaCalculator calc(m_pProc.get());
    for (UINT32 i = 0; i < 4; i++)
    {
        SetCentre(i, {{Code(120.0f), Code(60.0f), Code(100.0f), Code(100.0f)}, {0.0f, 0.0f, 0.0f, 0.0f}});
    }
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_GT(m_result.averageLumaFlashMeas, 90.0f);
    EXPECT_FALSE(m_result.bIsFlashMeasDark);
    EXPECT_NEAR(WindowRatio(TRUE), m_result.RGRatio, 1e-5f);
    EXPECT_NEAR(WindowRatio(FALSE), m_result.BGRatio, 1e-5f);
    EXPECT_NE(1.0f, m_result.RGRatio);
    EXPECT_TRUE(MtrLogContains("counter: 4"));
    EXPECT_TRUE(MtrLogContains("flashMeas: average central luma"));
}

TEST_F(FlashMeasLumaTest, AllTilesTooDarkLeaveTheWindowDarkWithoutRatios)
{
    FlashMeasurementLumaCalculator calc(m_pProc.get());
    for (UINT32 i = 0; i < 4; i++)
    {
        SetCentre(i, SyntheticRegion::Uniform(Code(10.0f)));
    }
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_TRUE(m_result.bIsFlashMeasDark);
    EXPECT_FLOAT_EQ(-1.0f, m_result.RGRatio);
    EXPECT_FLOAT_EQ(-1.0f, m_result.BGRatio);
    EXPECT_NEAR(10.0f, m_result.averageLumaFlashMeas, 1e-3f);
    EXPECT_TRUE(MtrLogContains("flashmeas: exposure too dark for this tile"));
    EXPECT_TRUE(MtrLogContains("flashMeas: no region was properly exposed to make a measurement!"));
}

TEST_F(FlashMeasLumaTest, SaturatedTileClearsDarkButGivesNoRatio)
{
    FlashMeasurementLumaCalculator calc(m_pProc.get());
    for (UINT32 i = 0; i < 4; i++)
    {
        SetCentre(i, SyntheticRegion::Uniform(Code(10.0f)));
    }
    SetCentre(3, SyntheticRegion::Uniform(Code(100.0f), 0.5f));
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_FALSE(m_result.bIsFlashMeasDark);
    EXPECT_FLOAT_EQ(-1.0f, m_result.RGRatio);
    EXPECT_TRUE(MtrLogContains("flashmeas: exposure too bright for this tile"));
}

TEST_F(FlashMeasLumaTest, RatiosComeFromTheWellExposedTilesOnly)
{
    FlashMeasurementLumaCalculator calc(m_pProc.get());
    SetCentre(0, SyntheticRegion::Uniform(Code(10.0f)));
    SetCentre(1, SyntheticRegion::Uniform(Code(10.0f)));
    SetCentre(2, {{Code(120.0f), Code(60.0f), Code(100.0f), Code(100.0f)}, {0.0f, 0.0f, 0.0f, 0.0f}});
    SetCentre(3, {{Code(80.0f), Code(90.0f), Code(100.0f), Code(100.0f)}, {0.0f, 0.0f, 0.0f, 0.0f}});
    EXPECT_EQ(AecSuccess, Run(calc));
    EXPECT_TRUE(MtrLogContains("counter: 2"));
    EXPECT_NEAR(WindowRatio(TRUE), m_result.RGRatio, 1e-5f);
    EXPECT_NEAR(WindowRatio(FALSE), m_result.BGRatio, 1e-5f);
    // The luma mean takes every tile, dark ones included.
    BGStatsIterator it = m_pProc->GetStatsProcessingResult()->GetBGStatsIterator(
        BGStatsIterationMode::Exhaustive, 0.4375f, 0.4375f, 0.5525f, 0.5525f);
    FLOAT sum = 0.0f;
    while (FALSE != it.HasNext())
    {
        sum += it.Next()->rgnLuma;
    }
    EXPECT_NEAR(sum / 4.0f, m_result.averageLumaFlashMeas, 1e-3f);
}

TEST_F(FlashMeasLumaTest, EmptyWindowIsDarkWithZeroLuma)
{
    FlashMeasurementLumaCalculator calc(m_pProc.get());
    m_result.averageLumaFlashMeas = 5.0f;
    EXPECT_EQ(AecSuccess, Run(calc, FALSE));
    EXPECT_TRUE(m_result.bIsFlashMeasDark);
    EXPECT_FLOAT_EQ(0.0f, m_result.averageLumaFlashMeas);
    EXPECT_TRUE(MtrLogContains("flashMeas: luma counter is zero: issue with ROI size"));
}
