// The metering module: frame failure, aggregation of lumas and targets, target indices, mixing and scenes.
#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <memory>

#include "aec/core/modules/mod_mtr/caecmodmetering.h"
#include "tuning_aecmetering.h"
#include "tuning_aecsync.h"
#include "tuning_aectouch.h"
#include "unit/mtr/mtrtestsupport.h"

using ::testing::_;
using ::testing::Return;

class CAECModMeteringTestAccess
{
public:
    static VOID AggregateLuma(CAECModMetering& m, AECLumaCalcResult* p) { m.aggregateLumaResult(p); }
    static VOID AggregateTarget(CAECModMetering& m, AECTargetCalcResult* p) { m.aggregateTargetResult(p); }
    static AecResult Index(CAECModMetering& m, const AECLumaCalcResult* l, const AECTargetCalcResult* t, FLOAT* p)
    {
        return m.EstimateTargetExposureIndex(l, t, p);
    }
    static VOID Mix(CAECModMetering& m, AECTargetCalcResult* t, AECLumaCalcResult* l)
    {
        m.HandleMultiCamMtrMixAndExpDynamic(t, l);
    }
    static const AECLumaCalcResult& Lumas(CAECModMetering& m) { return m.m_lumaCalcResult; }
    static const AECTargetCalcResult& Targets(CAECModMetering& m) { return m.m_targetCalcResult; }
};

namespace
{
constexpr FLOAT K = static_cast<FLOAT>(MeteringIndexPerDecade);

// The three aggregated targets: short, long, safe.
VOID ExpectTargets(const AECTargetCalcResult& targets, FLOAT shortTarget, FLOAT longTarget, FLOAT safeTarget)
{
    EXPECT_FLOAT_EQ(shortTarget, targets.shortTarget);
    EXPECT_FLOAT_EQ(longTarget, targets.longTarget);
    EXPECT_FLOAT_EQ(safeTarget, targets.safeTarget);
}

class MockMeteringCallback : public IMeteringCallback
{
public:
    MOCK_METHOD(VOID, SetAreFlashLowStatsSaved, (BOOL), (override));
    MOCK_METHOD(VOID, SetEVCapability, (INT8, INT8, INT8), (override));
    MOCK_METHOD(VOID, SetRealDRCGain, (FLOAT), (override));
};

class MeteringModuleTest : public MeteringTest
{
protected:
    VOID SetUp() override
    {
        MeteringTest::SetUp();
        std::memset(&m_diag, 0, sizeof(m_diag));
        std::memset(&m_override, 0, sizeof(m_override));
        std::memset(&m_peer, 0, sizeof(m_peer));
        ON_CALL(m_context, getDiagTestConfig()).WillByDefault(Return(&m_diag));
        ON_CALL(m_context, getOverrideSetting()).WillByDefault(Return(&m_override));
        ON_CALL(m_context, getExtTuning()).WillByDefault(Return(&m_pTuning->extTuningData));
        ON_CALL(m_context, getFlickerCompMode()).WillByDefault(Return(StatisticsAntibandingOff));
        m_pModule = std::make_unique<CAECModMetering>(&m_context, &m_callback);
        m_pModule->OnTuningHeaderChange();
        m_pImage = Image();
        std::memset(&m_in, 0, sizeof(m_in));
        std::memset(&m_out, 0, sizeof(m_out));
    }

    // Runs one frame of the image through the module.
    AecResult Frame()
    {
        m_pImage->Build();
        std::memset(&m_in, 0, sizeof(m_in));
        m_pImage->FillStatistics(&m_in.stats);
        std::memset(&m_out, 0, sizeof(m_out));
        return m_pModule->ProcessFrameStats(&m_in, &m_out);
    }

    VOID SetOperationMode(AECAlgoOperationModeType mode)
    {
        m_opMode = mode;
        m_pModule->OnOperationModeChange();
    }

    VOID SetPeer(FLOAT averageLuma, FLOAT currentLuma, FLOAT target)
    {
        m_peer.meteringInfo.averageLuma = averageLuma;
        m_peer.meteringInfo.currentLuma = currentLuma;
        m_peer.meteringInfo.luxIndex    = 321.0f;
        for (FLOAT& t : m_peer.meteringInfo.lumaTargets)
        {
            t = target;
        }
        ON_CALL(m_context, getPeerInfo()).WillByDefault(Return(&m_peer));
    }

    // A face of w x h pixels at (x, y) on a 640 x 480 image, active and filtered.
    VOID SetFace(UINT32 x, UINT32 y, UINT32 w, UINT32 h)
    {
        UnstabilizedROIInformation faces;
        std::memset(&faces, 0, sizeof(faces));
        faces.roiCount    = 1;
        faces.roi[0].rect = {x, y, w, h};
        m_pFace->filteredROIPriority.SetImageResolution(640, 480);
        m_pFace->filteredROIPriority.UpdateROIData(&faces);
        m_pFace->isActiveFace = TRUE;
    }

    aecMetering::AECCoreMeteringType& Mtr() { return *Modules().modMtr; }

    ::testing::NiceMock<MockMeteringCallback> m_callback;
    AECAlgoDiagConfig                         m_diag;
    AECAlgoOverrideSettingParam               m_override;
    AECMultiCamInfo                           m_peer;
    std::unique_ptr<CAECModMetering>          m_pModule;
    std::unique_ptr<CSyntheticStats>          m_pImage;
    AECMeteringFrameProcInput                 m_in;
    AECMeteringFrameProcOutput                m_out;
};

// --- Frame failure ---------------------------------------------------------------------------------------------

TEST_F(MeteringModuleTest, StartUpStatisticsRepeatTheLastFrame)
{
    m_pImage->Fill(SyntheticRegion::Uniform(400));
    m_history[1].expIndicesTargets[0] = 111.0f;
    m_history[1].expIndicesTargets[1] = 122.0f;
    m_history[1].expIndicesTargets[2] = 133.0f;
    m_history[1].luma                 = 42.0f;
    m_history[1].luxIndex             = 321.0f;
    m_pImage->Build();
    m_pImage->FillStatistics(&m_in.stats);
    m_in.stats.bayerGrid.startupMode = StatisticsStartUpInvalid;
    EXPECT_CALL(m_callback, SetRealDRCGain(_)).Times(0); // no calculator runs
    EXPECT_EQ(AecError, m_pModule->ProcessFrameStats(&m_in, &m_out));
    EXPECT_FLOAT_EQ(111.0f, m_out.targetIndices[0]);
    EXPECT_FLOAT_EQ(122.0f, m_out.targetIndices[1]);
    EXPECT_FLOAT_EQ(133.0f, m_out.targetIndices[2]);
    EXPECT_FLOAT_EQ(42.0f, m_out.currentLuma);
    EXPECT_FLOAT_EQ(321.0f, m_out.luxIndex);
    EXPECT_TRUE(MtrLogContains("issue processing stats, copying previous frame luma 42.0 target indices 111.0 122.0 "
                               "133.0 and lux 321.0"));
}

TEST_F(MeteringModuleTest, FailedFrameLeavesTheResultRecordsAsTheyWere)
{
    m_pImage->Fill(SyntheticRegion::Uniform(400));
    ASSERT_EQ(AecSuccess, Frame());
    const FLOAT finalLuma = CAECModMeteringTestAccess::Lumas(*m_pModule).finalLuma;
    m_in.stats.bayerHist.startupMode = StatisticsStartUpInvalid;
    EXPECT_EQ(AecError, m_pModule->ProcessFrameStats(&m_in, &m_out));
    EXPECT_FLOAT_EQ(finalLuma, CAECModMeteringTestAccess::Lumas(*m_pModule).finalLuma);
}

TEST_F(MeteringModuleTest, FailedFrameWithShdrRepeatsTheShdrIndices)
{
    ASSERT_NE(nullptr, m_pTuning->mtrTuningData.pShdr);
    Modules().modShdr->shdrMtr.enableShdr = 1;
    m_history[1].expRatio                      = 4.0f;
    m_history[1].sHDRExpIndices[0]             = 150.0f;
    m_history[1].sHDRExpIndices[1]             = 210.0f;
    m_history[1].sHDRExpIndices[2]             = 180.0f;
    m_pImage->Build();
    m_pImage->FillStatistics(&m_in.stats);
    m_in.stats.bayerGrid.startupMode = StatisticsStartUpInvalid;
    EXPECT_EQ(AecError, m_pModule->ProcessFrameStats(&m_in, &m_out));
    EXPECT_EQ(1, m_out.sHDROutput);
    EXPECT_FLOAT_EQ(4.0f, m_out.expRatio);
    EXPECT_FLOAT_EQ(210.0f, m_out.sHdrIndices[1]);
    EXPECT_TRUE(MtrLogContains("issue processing stats, copying previous sHDR target indices 150.0 210.0 180.0"));
}

// --- Aggregation of lumas --------------------------------------------------------------------------------------

TEST_F(MeteringModuleTest, TouchOutranksAFace)
{
    Modules().modTouch->touchMtr.weightTouchROI = 0.5f;
    AECLumaCalcResult lumas;
    std::memset(&lumas, 0, sizeof(lumas));
    lumas.frameLuma  = 40.0f;
    lumas.touchLuma  = 80.0f;
    lumas.faceLuma   = 10.0f;
    lumas.faceWeight = 1.0f;
    lumas.irLuma     = -1.0f;
    lumas.shdrLuma   = -1.0f;
    CAECModMeteringTestAccess::AggregateLuma(*m_pModule, &lumas);
    EXPECT_FLOAT_EQ(60.0f, lumas.finalLuma);
}

TEST_F(MeteringModuleTest, FaceMixesByItsWeightWithoutTouch)
{
    AECLumaCalcResult lumas;
    std::memset(&lumas, 0, sizeof(lumas));
    lumas.frameLuma  = 40.0f;
    lumas.touchLuma  = -1.0f;
    lumas.faceLuma   = 10.0f;
    lumas.faceWeight = 0.25f;
    CAECModMeteringTestAccess::AggregateLuma(*m_pModule, &lumas);
    EXPECT_FLOAT_EQ(32.5f, lumas.finalLuma);
}

TEST_F(MeteringModuleTest, IrLumaNeverDecides)
{
    m_pImage->Fill(SyntheticRegion::Uniform(400));
    ASSERT_EQ(AecSuccess, Frame());
    const AECLumaCalcResult& lumas = CAECModMeteringTestAccess::Lumas(*m_pModule);
    EXPECT_FLOAT_EQ(-1.0f, lumas.irLuma);
    EXPECT_FLOAT_EQ(lumas.frameLuma, lumas.finalLuma);
    EXPECT_FLOAT_EQ(lumas.frameLuma, m_out.currentLuma);
}

TEST_F(MeteringModuleTest, ShdrLumaDecidesLastAndDiagnosticOverridesAll)
{
    AECLumaCalcResult lumas;
    std::memset(&lumas, 0, sizeof(lumas));
    lumas.frameLuma = 40.0f;
    lumas.touchLuma = -1.0f;
    lumas.faceLuma  = -1.0f;
    lumas.depthLuma = -1.0f;
    lumas.irLuma    = -1.0f;
    lumas.shdrLuma  = 70.0f;
    lumas.diagLuma  = 90.0f;
    CAECModMeteringTestAccess::AggregateLuma(*m_pModule, &lumas);
    EXPECT_FLOAT_EQ(70.0f, lumas.finalLuma);

    m_diag.enable = 1;
    m_pModule->OnDiagTestConfigChange();
    CAECModMeteringTestAccess::AggregateLuma(*m_pModule, &lumas);
    EXPECT_FLOAT_EQ(90.0f, lumas.finalLuma);
}

TEST_F(MeteringModuleTest, PreflashAndFlashMeasurementTakeTheirOwnLuma)
{
    AECLumaCalcResult lumas;
    std::memset(&lumas, 0, sizeof(lumas));
    lumas.frameLuma            = 40.0f;
    lumas.averageLuma          = 33.0f;
    lumas.averageLumaFlashMeas = 21.0f;
    lumas.touchLuma            = 80.0f;
    SetOperationMode(AECAlgoOperationModePreflash);
    CAECModMeteringTestAccess::AggregateLuma(*m_pModule, &lumas);
    EXPECT_FLOAT_EQ(33.0f, lumas.finalLuma);
    SetOperationMode(AECAlgoOperationModeFlashMeasurement);
    CAECModMeteringTestAccess::AggregateLuma(*m_pModule, &lumas);
    EXPECT_FLOAT_EQ(21.0f, lumas.finalLuma);
}

TEST_F(MeteringModuleTest, InSensorHdrCarriesTheTouchLumaOverByItsRatio)
{
    ON_CALL(m_context, getHDR3Enable()).WillByDefault(Return(TRUE));
    Modules().modSensorHDRConfig->LumaCalculationConfig = aecSensorConfig::LumaCalculationTypeHistPrio;
    Modules().modTouch->touchMtr.weightTouchROI    = 1.0f;
    AECLumaCalcResult lumas;
    std::memset(&lumas, 0, sizeof(lumas));
    lumas.frameLuma     = 40.0f;
    lumas.touchLuma     = 80.0f;
    lumas.hdr3Frameluma = 20.0f;
    CAECModMeteringTestAccess::AggregateLuma(*m_pModule, &lumas);
    EXPECT_FLOAT_EQ(40.0f, lumas.hdr3touchLuma);
    EXPECT_FLOAT_EQ(20.0f, lumas.frameLuma);
    EXPECT_FLOAT_EQ(40.0f, lumas.finalLuma);
}

// --- Aggregation of targets ------------------------------------------------------------------------------------

TEST_F(MeteringModuleTest, FlashMeasurementTargetsAre45WhateverTheCalculatorsWrote)
{
    m_pImage->Fill(SyntheticRegion::Uniform(400));
    SetOperationMode(AECAlgoOperationModeFlashMeasurement);
    ASSERT_EQ(AecSuccess, Frame());
    EXPECT_FLOAT_EQ(45.0f, m_out.lumaTargets[0]);
    EXPECT_FLOAT_EQ(45.0f, m_out.lumaTargets[1]);
    EXPECT_FLOAT_EQ(45.0f, m_out.lumaTargets[2]);
}

TEST_F(MeteringModuleTest, NoLuxTargetGives50AndAnErrorEvenWithAHistogramTarget)
{
    AECTargetCalcResult targets;
    std::memset(&targets, 0, sizeof(targets));
    targets.luxBasedSafeTarget  = 0.0f;
    targets.histBasedSafeTarget = 60.0f;
    targets.histBasedShortTarget = 30.0f;
    targets.histBasedLongTarget  = 70.0f;
    CAECModMeteringTestAccess::AggregateTarget(*m_pModule, &targets);
    ExpectTargets(targets, 50.0f, 50.0f, 50.0f);
    EXPECT_TRUE(MtrLogContains("Lux index based luma target is not calculated!"));
}

TEST_F(MeteringModuleTest, TargetsComeFromShdrThenHistogramThenLux)
{
    AECTargetCalcResult targets;
    std::memset(&targets, 0, sizeof(targets));
    targets.luxBasedSafeTarget = 48.0f;
    targets.shdrBasedTarget[0] = -1.0f;
    targets.shdrBasedTarget[1] = -1.0f;
    targets.shdrBasedTarget[2] = -1.0f;
    CAECModMeteringTestAccess::AggregateTarget(*m_pModule, &targets);
    EXPECT_FLOAT_EQ(48.0f, targets.shortTarget);
    EXPECT_FLOAT_EQ(48.0f, targets.safeTarget);

    targets.histBasedShortTarget = 30.0f;
    targets.histBasedLongTarget  = 70.0f;
    targets.histBasedSafeTarget  = 60.0f;
    CAECModMeteringTestAccess::AggregateTarget(*m_pModule, &targets);
    ExpectTargets(targets, 30.0f, 70.0f, 60.0f);

    targets.shdrBasedTarget[0] = 20.0f;
    targets.shdrBasedTarget[1] = 90.0f;
    targets.shdrBasedTarget[2] = 55.0f;
    CAECModMeteringTestAccess::AggregateTarget(*m_pModule, &targets);
    ExpectTargets(targets, 20.0f, 90.0f, 55.0f);
}

TEST_F(MeteringModuleTest, ColourTargetBecomesSafeAndKeepsTheProportions)
{
    Mtr().mtrLumaTarget.extrmClrLumaTarget.enableExtrmClr = 1;
    AECTargetCalcResult targets;
    std::memset(&targets, 0, sizeof(targets));
    targets.luxBasedSafeTarget   = 50.0f;
    targets.histBasedShortTarget = 30.0f;
    targets.histBasedLongTarget  = 90.0f;
    targets.histBasedSafeTarget  = 60.0f;
    targets.clrBasedSafeTarget   = 45.0f;
    CAECModMeteringTestAccess::AggregateTarget(*m_pModule, &targets);
    ExpectTargets(targets, 22.5f, 67.5f, 45.0f);
    EXPECT_TRUE(MtrLogContains("Color adj: safe 60.000000 => 45.000000!"));
}

// --- Target indices --------------------------------------------------------------------------------------------

TEST_F(MeteringModuleTest, IndicesStartFromTheMatchedShortIndex)
{
    m_history[PipelineDelay].expIndices[0] = 100.0f;
    m_history[PipelineDelay].expIndices[2] = 180.0f; // not the base: the statistics show the short exposure
    AECLumaCalcResult lumas;
    std::memset(&lumas, 0, sizeof(lumas));
    lumas.finalLuma = 25.0f;
    AECTargetCalcResult targets;
    std::memset(&targets, 0, sizeof(targets));
    targets.shortTarget = 25.0f;
    targets.safeTarget  = 50.0f;
    targets.longTarget  = 100.0f;
    FLOAT idx[3]        = {};
    ASSERT_EQ(AecSuccess, CAECModMeteringTestAccess::Index(*m_pModule, &lumas, &targets, idx));
    EXPECT_NEAR(100.0f, idx[0], 1e-4f);
    EXPECT_NEAR(100.0f + std::log10(2.0f) * K, idx[2], 1e-3f);
    EXPECT_NEAR(100.0f + std::log10(4.0f) * K, idx[1], 1e-3f);
}

TEST_F(MeteringModuleTest, MissingHistoryLeavesTheIndicesUntouched)
{
    ON_CALL(m_context, getFrameHistory(_)).WillByDefault(Return(nullptr));
    AECLumaCalcResult   lumas   = {};
    AECTargetCalcResult targets = {};
    FLOAT               idx[3]  = {7.0f, 8.0f, 9.0f};
    EXPECT_EQ(AecError, CAECModMeteringTestAccess::Index(*m_pModule, &lumas, &targets, idx));
    EXPECT_FLOAT_EQ(7.0f, idx[0]);
    EXPECT_FLOAT_EQ(9.0f, idx[2]);
    EXPECT_TRUE(MtrLogContains("ERROR: Failed to look up history"));
}

TEST_F(MeteringModuleTest, PreflashWithoutSaturatedRegionsRepeatsTheLastSafeIndex)
{
    m_history[1].expIndices[2] = 123.0f;
    SetOperationMode(AECAlgoOperationModePreflash);
    AECLumaCalcResult lumas;
    std::memset(&lumas, 0, sizeof(lumas));
    lumas.frameLuma        = 80.0f;
    lumas.saturatedRegions = 0;
    AECTargetCalcResult targets;
    std::memset(&targets, 0, sizeof(targets));
    targets.luxBasedSafeTarget = 50.0f;
    FLOAT idx[3]               = {};
    ASSERT_EQ(AecSuccess, CAECModMeteringTestAccess::Index(*m_pModule, &lumas, &targets, idx));
    EXPECT_FLOAT_EQ(123.0f, idx[0]);
    EXPECT_FLOAT_EQ(123.0f, idx[1]);
    EXPECT_FLOAT_EQ(123.0f, idx[2]);
}

TEST_F(MeteringModuleTest, PreflashWithSaturatedRegionsAimsBelowTheLuma)
{
    aecFlash::FlashMeteringType& rFlash                        = Modules().modFlash->flashMtr;
    rFlash.statsPreprocessing.minLuma                           = 10.0f;
    rFlash.statsPreprocessing.minLumaAdj                        = 0.5f;
    rFlash.statsPreprocessing.minLumaAdjDynamic.enableDynamicMinAdj = 0;
    m_history[PipelineDelay].expIndices[0]                     = 200.0f;
    SetOperationMode(AECAlgoOperationModePreflash);
    AECLumaCalcResult lumas;
    std::memset(&lumas, 0, sizeof(lumas));
    lumas.frameLuma        = 80.0f;
    lumas.saturatedRegions = 12;
    AECTargetCalcResult targets;
    std::memset(&targets, 0, sizeof(targets));
    targets.luxBasedSafeTarget = 50.0f;
    FLOAT idx[3]               = {};
    ASSERT_EQ(AecSuccess, CAECModMeteringTestAccess::Index(*m_pModule, &lumas, &targets, idx));
    // t = max(min(50, 0.5 * 80), 10) = 40: half the luma, one stop down from the matched short index.
    EXPECT_NEAR(200.0f + std::log10(0.5f) * K, idx[2], 1e-3f);
    EXPECT_FLOAT_EQ(idx[2], idx[0]);
}

class AntibandingIndexTest : public MeteringModuleTest
{
protected:
    // Short target a quarter of safe: the short index lies two stops below the safe one.
    VOID Compute(FLOAT range, FLOAT limit, FLOAT* pIdx)
    {
        Mtr().mtrLumaTarget.histLumaTarget.enableAntiBandingPrioOverADRC = 1;
        Mtr().mtrLumaTarget.histLumaTarget.antiBandingPrioTriggerRange   = range;
        m_arbLimit.streamingMinExpIndexForATB                           = limit;
        ON_CALL(m_context, getFlickerCompMode()).WillByDefault(Return(StatisticsAntibanding50Hz));
        m_history[PipelineDelay].expIndices[0] = 100.0f;
        AECLumaCalcResult lumas;
        std::memset(&lumas, 0, sizeof(lumas));
        lumas.finalLuma = 50.0f;
        AECTargetCalcResult targets;
        std::memset(&targets, 0, sizeof(targets));
        targets.shortTarget = 12.5f;
        targets.safeTarget  = 50.0f;
        targets.longTarget  = 50.0f;
        ASSERT_EQ(AecSuccess, CAECModMeteringTestAccess::Index(*m_pModule, &lumas, &targets, pIdx));
    }
};

TEST_F(AntibandingIndexTest, ZeroTriggerRangeGivesNoInterpolation)
{
    FLOAT idx[3] = {};
    Compute(0.0f, 105.0f, idx); // safe 100 lies below the banding limit 105
    EXPECT_NEAR(100.0f + std::log10(0.25f) * K, idx[0], 1e-3f);
}

TEST_F(AntibandingIndexTest, InsideTheTriggerRangeShortMovesTowardsSafe)
{
    FLOAT idx[3] = {};
    Compute(10.0f, 105.0f, idx);
    const FLOAT shortIdx = 100.0f + std::log10(0.25f) * K;
    EXPECT_NEAR(shortIdx + (100.0f - shortIdx) * 0.5f, idx[0], 1e-3f); // half way: (105 - 100) / 10
}

TEST_F(AntibandingIndexTest, SafeAboveTheLimitLiftsShortToIt)
{
    FLOAT idx[3] = {};
    Compute(10.0f, 90.0f, idx);
    EXPECT_FLOAT_EQ(90.0f, idx[0]);
    EXPECT_NEAR(100.0f, idx[2], 1e-4f);
}

// --- Multi-camera mixing ---------------------------------------------------------------------------------------

TEST_F(MeteringModuleTest, MixModesChangeNothingWithoutAPeer)
{
    ON_CALL(m_context, getMeteringType()).WillByDefault(Return(AECAlgoMeteringMix));
    AECLumaCalcResult lumas   = {};
    lumas.finalLuma           = 40.0f;
    lumas.averageLuma         = 30.0f;
    AECTargetCalcResult targets = {};
    targets.safeTarget          = 50.0f;
    CAECModMeteringTestAccess::Mix(*m_pModule, &targets, &lumas);
    EXPECT_FLOAT_EQ(40.0f, lumas.finalLuma);
    EXPECT_FLOAT_EQ(30.0f, lumas.averageLuma);
    EXPECT_FLOAT_EQ(50.0f, targets.safeTarget);
}

TEST_F(MeteringModuleTest, LumaMixingWeightOfOneOrBelowZeroLeavesTheLumasUnmixed)
{
    ON_CALL(m_context, getMeteringType()).WillByDefault(Return(AECAlgoMeteringMix));
    SetPeer(100.0f, 100.0f, 80.0f);
    for (const FLOAT weight : {1.0f, -0.5f})
    {
        Modules().modMultiCamSync->mtrMixConfig.staticMixingConfig.lumaMixingWeight   = weight;
        Modules().modMultiCamSync->mtrMixConfig.staticMixingConfig.targetMixingWeight = 0.5f;
        AECLumaCalcResult lumas     = {};
        lumas.finalLuma             = 40.0f;
        lumas.averageLuma           = 30.0f;
        AECTargetCalcResult targets = {};
        targets.safeTarget          = 50.0f;
        CAECModMeteringTestAccess::Mix(*m_pModule, &targets, &lumas);
        EXPECT_FLOAT_EQ(40.0f, lumas.finalLuma) << weight;
        EXPECT_FLOAT_EQ(30.0f, lumas.averageLuma) << weight;
        EXPECT_FLOAT_EQ(65.0f, targets.safeTarget) << weight; // the targets still mix, half and half
    }
}

TEST_F(MeteringModuleTest, LumaMixingWeightIsTheOwnShare)
{
    ON_CALL(m_context, getMeteringType()).WillByDefault(Return(AECAlgoMeteringMix));
    SetPeer(100.0f, 80.0f, 80.0f);
    Modules().modMultiCamSync->mtrMixConfig.staticMixingConfig.lumaMixingWeight   = 0.25f;
    Modules().modMultiCamSync->mtrMixConfig.staticMixingConfig.targetMixingWeight = 1.0f;
    AECLumaCalcResult lumas     = {};
    lumas.finalLuma             = 40.0f;
    lumas.averageLuma           = 20.0f;
    AECTargetCalcResult targets = {};
    targets.safeTarget          = 50.0f;
    CAECModMeteringTestAccess::Mix(*m_pModule, &targets, &lumas);
    EXPECT_FLOAT_EQ(70.0f, lumas.finalLuma);
    EXPECT_FLOAT_EQ(80.0f, lumas.averageLuma);
    EXPECT_FLOAT_EQ(50.0f, targets.safeTarget);
}

// --- Slave lux index -------------------------------------------------------------------------------------------

TEST_F(MeteringModuleTest, SlaveTakesThePeerLuxIndexOrDerivesItFromThePeerLuma)
{
    SetPeer(25.0f, 25.0f, 50.0f);
    AECMeteringFrameProcOutput out = {};
    out.luxIndex                   = 10.0f;
    Modules().modMultiCamSync->luxIndexSelection.luxIndexSelectionMethod = 1;
    m_pModule->EstimateLuxIndexForSlave(&out);
    EXPECT_FLOAT_EQ(321.0f, out.luxIndex);

    Modules().modMultiCamSync->luxIndexSelection.luxIndexSelectionMethod = 2;
    m_history[PipelineDelay].expIndices[0]                                 = 200.0f;
    m_compensationRatio                                                    = 512.0f; // counts as 12800
    m_pModule->EstimateLuxIndexForSlave(&out);
    EXPECT_NEAR(200.0f + std::log10(12800.0f / 25.0f) * K, out.luxIndex, 1e-3f);

    Modules().modMultiCamSync->luxIndexSelection.luxIndexSelectionMethod = 0;
    out.luxIndex                                                           = 10.0f;
    m_pModule->EstimateLuxIndexForSlave(&out);
    EXPECT_FLOAT_EQ(10.0f, out.luxIndex);
}

// --- Events and queries ----------------------------------------------------------------------------------------

TEST_F(MeteringModuleTest, TuningChangePublishesTheEVCapabilityAndTheUnderexposureRatio)
{
    Mtr().mtrLumaTarget.EVLumaTarget.minEVValue = -12;
    Mtr().mtrLumaTarget.EVLumaTarget.maxEVValue = 12;
    Mtr().mtrLumaTarget.EVLumaTarget.stepsPerEV = 6;
    EXPECT_CALL(m_callback, SetEVCapability(-12, 12, 6));
    EXPECT_EQ(AecSuccess, m_pModule->OnTuningHeaderChange());
}

TEST_F(MeteringModuleTest, YStatsStopAtTheCapacity)
{
    m_pImage->Fill(SyntheticRegion::Uniform(400));
    ASSERT_EQ(AecSuccess, Frame());
    FLOAT  ystats[300] = {};
    UINT32 count       = 0;
    m_pModule->GetYStats(ystats, 300, count);
    EXPECT_EQ(16u * 12u, count);
    EXPECT_NEAR(100.0f, ystats[0], 0.01f);
    m_pModule->GetYStats(ystats, 10, count);
    EXPECT_EQ(10u, count);
    EXPECT_TRUE(MtrLogContains("Source stats size is more than destination"));
}

TEST_F(MeteringModuleTest, FlashStagesAndSnapshotRequestsAreChecked)
{
    EXPECT_EQ(AecError, m_pModule->HandleFlashEstimationStages(static_cast<AECMeteringFlashEstStage>(2), 1.0f));
    EXPECT_TRUE(MtrLogContains("ERROR: Bad Estimation Stage!"));
    AECMeteringSnapshotInput  in  = {};
    AECMeteringSnapshotOutput out = {};
    EXPECT_EQ(AecError, m_pModule->GetSnapshotEstimation(&in, &out));
    EXPECT_TRUE(MtrLogContains("Non flash snapshot estimation is not implemented yet!"));
}

TEST_F(MeteringModuleTest, OutputCarriesLegacyYAndRegionRatios)
{
    m_pImage->Fill(SyntheticRegion::Uniform(400));
    m_pImage->SetRegion(0, 0, SyntheticRegion::Uniform(1000));
    ASSERT_EQ(AecSuccess, Frame());
    EXPECT_NEAR(100.0f, m_out.Ystats[1], 0.01f);
    EXPECT_NEAR(250.0f, m_out.Ystats[0], 0.01f);
    EXPECT_FLOAT_EQ(0.0f, m_out.Ystats[16 * 12]); // only h * v legacy regions
    EXPECT_GT(m_out.ratioBright, 0.0f);
    EXPECT_FLOAT_EQ(m_out.luxIndex, m_out.origLuxIndex);
}

// --- Scenes ----------------------------------------------------------------------------------------------------

TEST_F(MeteringModuleTest, TwiceTheLightLowersTheTargetIndexByOneStop)
{
    // Both scenes meter into the same lux zone (index 250 at luma 25 and 50): the target luma is the same, so the
    // index moves by exactly the luma ratio.
    for (AECFrameHistory& entry : m_history)
    {
        for (FLOAT& idx : entry.expIndices)
        {
            idx = 250.0f;
        }
    }
    m_pImage->Fill(SyntheticRegion::Uniform(100)); // luma 25
    ASSERT_EQ(AecSuccess, Frame());
    const FLOAT dim = m_out.targetIndices[2];

    CAECModMetering bright(&m_context, &m_callback);
    bright.OnTuningHeaderChange();
    m_pImage->Fill(SyntheticRegion::Uniform(200)); // luma 50
    m_pImage->Build();
    m_pImage->FillStatistics(&m_in.stats);
    ASSERT_EQ(AecSuccess, bright.ProcessFrameStats(&m_in, &m_out));
    EXPECT_NEAR(dim - std::log10(2.0f) * K, m_out.targetIndices[2], 0.5f);
}

TEST_F(MeteringModuleTest, FaceOnABacklitSubjectRaisesTheTargetIndex)
{
    // Bright background, dark subject in the middle of the 16 x 12 grid.
    m_pImage->Fill(SyntheticRegion::Uniform(800));
    for (UINT32 y = 3; y < 9; ++y)
    {
        for (UINT32 x = 5; x < 11; ++x)
        {
            m_pImage->SetRegion(x, y, SyntheticRegion::Uniform(80));
        }
    }
    ASSERT_EQ(AecSuccess, Frame());
    const FLOAT withoutFace = m_out.targetIndices[2];

    CAECModMetering withFace(&m_context, &m_callback);
    withFace.OnTuningHeaderChange();
    SetFace(240, 160, 160, 160); // on the subject
    m_pImage->Build();
    m_pImage->FillStatistics(&m_in.stats);
    ASSERT_EQ(AecSuccess, withFace.ProcessFrameStats(&m_in, &m_out));
    EXPECT_GT(CAECModMeteringTestAccess::Lumas(withFace).faceLuma, 0.0f);
    EXPECT_GT(m_out.targetIndices[2], withoutFace + 1.0f);
}

TEST_F(MeteringModuleTest, ClippedHighlightsGiveAShortTargetBelowTheSafeOne)
{
    Mtr().mtrLumaTarget.histLumaTarget.enableADRC = 1;
    ON_CALL(m_context, getDRCEnable()).WillByDefault(Return(TRUE));
    m_pModule->OnTuningHeaderChange();
    m_pImage = Image(16, 12, 10, TRUE);
    m_pImage->Fill(SyntheticRegion::Uniform(160));
    for (UINT32 y = 0; y < 4; ++y)
    {
        for (UINT32 x = 0; x < 16; ++x)
        {
            m_pImage->SetRegion(x, y, SyntheticRegion::Uniform(1000, 0.6f)); // a clipped sky
        }
    }
    ASSERT_EQ(AecSuccess, Frame());
    EXPECT_LT(m_out.lumaTargets[0], m_out.lumaTargets[2]);
    EXPECT_LT(m_out.targetIndices[0], m_out.targetIndices[2]);
}
} // namespace
