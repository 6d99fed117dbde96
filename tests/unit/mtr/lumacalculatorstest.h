// Fixture of the frame and ROI luma calculator tests: 16 x 16 images and a region adjustment zone of the test's own.
#ifndef TESTS_UNIT_MTR_LUMACALCULATORSTEST_H
#define TESTS_UNIT_MTR_LUMACALCULATORSTEST_H

#include <cstring>
#include <memory>

#include "unit/mtr/mtrtestsupport.h"

// Every region parsed; the image's regions map one to one onto the metering tables and the legacy Y grid.
class LumaCalcTest : public MeteringTest
{
protected:
    // 10-bit code of an 8-bit luma in the synthetic images.
    static constexpr UINT32 Code(FLOAT luma) { return static_cast<UINT32>(luma * 4.0f); }

    VOID SetUp() override
    {
        MeteringTest::SetUp();
        aecMetering::AECCoreMeteringType* pMtr = Modules().modMtr;
        pMtr->mtrLumaCalc.indexCalc.bayerGridSubsmplSelect = aecMetering::Off;
        // The default zone tables are shared static data: the tests point at zones of their own.
        m_zones[0].zoneTrigger = {0.0f, 1000.0f};
        SetZone(0, 200.0f, 230.0f, 10.0f, 20.0f, 0.5f, 0.5f);
        auto& rgnAdj                   = pMtr->mtrLumaCalc.lumaRgnAdj;
        rgnAdj.rgnAdjZone              = m_zones;
        rgnAdj.rgnAdjZoneCount         = 1;
        rgnAdj.enableBrightRgnAdj      = TRUE;
        rgnAdj.enableDarkRgnAdj        = TRUE;
        rgnAdj.minTableWeightForBright = 0.0f;
        rgnAdj.minTableWeightForDark   = 0.0f;
        rgnAdj.maxStatsPctForBright    = 1.0f;
        rgnAdj.maxStatsPctForDark      = 1.0f;
        ApplyTuning();
        m_pImage = Image(16, 16);
        m_pImage->Fill(SyntheticRegion::Uniform(Code(100.0f)));
        std::memset(&m_result, 0, sizeof(m_result));
    }

    VOID SetZone(UINT32 i, FLOAT brightStart, FLOAT brightEnd, FLOAT darkStart, FLOAT darkEnd, FLOAT weightBright,
                 FLOAT weightDark)
    {
        m_zones[i].zoneData.thresBrightRgn     = {brightStart, brightEnd};
        m_zones[i].zoneData.thresDarkRgn       = {darkStart, darkEnd};
        m_zones[i].zoneData.weightBrightRgnAdj = weightBright;
        m_zones[i].zoneData.weightDarkRgnAdj   = weightDark;
    }

    aecMetering::AECCoreMeteringType::mtrLumaCalcStruct::lumaRgnAdjStruct& RgnAdj()
    {
        return Modules().modMtr->mtrLumaCalc.lumaRgnAdj;
    }

    // Sets region (x, y) of the image to an 8-bit luma.
    VOID SetLuma(UINT32 x, UINT32 y, FLOAT luma) { m_pImage->SetRegion(x, y, SyntheticRegion::Uniform(Code(luma))); }

    // Regions x0 .. x1, y0 .. y1 (inclusive) to an 8-bit luma.
    VOID SetBlock(UINT32 x0, UINT32 y0, UINT32 x1, UINT32 y1, FLOAT luma)
    {
        for (UINT32 y = y0; y <= y1; y++)
        {
            for (UINT32 x = x0; x <= x1; x++)
            {
                SetLuma(x, y, luma);
            }
        }
    }

    aecMetering::RgnAdjZoneType      m_zones[2] = {};
    std::unique_ptr<CSyntheticStats> m_pImage;
    AECLumaCalcResult                m_result;
};

#endif // TESTS_UNIT_MTR_LUMACALCULATORSTEST_H
