// Tests of the core's frame pipeline: refusals, skipping, module order, and what a frame leaves in history and output.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "unit/core/coretestfixture.h"

namespace
{

using ::testing::_;
using ::testing::An;
using ::testing::Field;
using ::testing::InSequence;
using ::testing::Invoke;
using ::testing::Return;

class CoreProcessTest : public CoreOnMocksTest
{
protected:
    DiagOutput RunningDiag(FLOAT startingExpIndex)
    {
        DiagOutput output       = {};
        output.status           = Running;
        output.startingExpIndex = startingExpIndex;
        return output;
    }

    // Gives every module distinct outputs, so that each copied field can be traced to its source.
    void SetDistinctModuleOutputs()
    {
        ON_CALL(*m_factory.pMetering, ProcessFrameStats(_, _))
            .WillByDefault(Invoke([](const AECMeteringFrameProcInput*, AECMeteringFrameProcOutput* pOut) {
                for (UINT32 i = 0; i < 3; i++)
                {
                    pOut->targetIndices[i] = 1.0F + i;
                    pOut->sHdrIndices[i]   = 4.0F + i;
                    pOut->lumaTargets[i]   = 21.0F + i;
                }
                pOut->currentLuma       = 7.0F;
                pOut->luxIndex          = 8.0F;
                pOut->averageLuma       = 9.0F;
                pOut->frameLuma         = 10.0F;
                pOut->extremeGreenRatio = 0.25F;
                pOut->extremeBlueRatio  = 0.125F;
                pOut->pixCntRatioLEF    = 0.5F;
                for (UINT32 i = 0; i < AECMeteringYStatsCount; i++)
                {
                    pOut->Ystats[i] = static_cast<FLOAT>(i);
                }
                return AecSuccess;
            }));
        ON_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _))
            .WillByDefault(Invoke([](const ConvergenceInput*, ConvergenceOutput* pOut) {
                for (UINT32 i = 0; i < 3; i++)
                {
                    pOut->convExpSets[i].expIndex           = 11.0F + i;
                    pOut->convExpSets[i].expIndexAdjustment = 14.0F + i;
                }
                pOut->isAECSettled        = TRUE;
                pOut->isBrightnessSettled = TRUE;
                pOut->previewEV           = 0.5F;
                pOut->predictiveGain      = 1.25F;
                pOut->predictiveADRC      = 1.5F;
                return AecSuccess;
            }));
        ON_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStreamInput*>(), _))
            .WillByDefault(Invoke([](ArbitrationStreamInput*, ArbitrationOutput* pOut) {
                for (UINT32 i = 0; i < 3; i++)
                {
                    pOut->expSets[i].linearGain        = 2.0F + i;
                    pOut->expSets[i].fnumber           = 1.4F + i;
                    pOut->expSets[i].exposureTime      = 100 * (i + 1);
                    pOut->expSets[i].sensitivity       = 10.0F * (i + 1);
                    pOut->IdealexpSets[i].linearGain   = 5.0F + i;
                    pOut->IdealexpSets[i].exposureTime = 1000 * (i + 1);
                }
                pOut->FPS                           = 24.0F;
                pOut->expRatio                      = 4.0F;
                pOut->exif.ISOValue                 = 400;
                pOut->exif.APEXValues.apertureValue = 2.5F;
                pOut->isInsensorHDRSnapshot         = TRUE;
                pOut->compenADRCGain                = 1.75F;
                pOut->compensationDarkBoostGain     = 2.25F;
                pOut->multiCamExpInfo.relativeSensEnable = TRUE;
                pOut->multiCamExpInfo.sensitivityTotalOrRatio[1] = 3.5F;
                pOut->multiCamExpInfo.exposureTime[2]            = 333;
                return AecSuccess;
            }));
        ON_CALL(*m_factory.pExtension, ExtensionProcess(_, _))
            .WillByDefault(Invoke([](ExtensionInput*, ExtensionOutput* pOut) {
                pOut->triggeredFlags.LLSExpTime           = 999;
                pOut->triggeredFlags.isLEDAFNeeded        = TRUE;
                pOut->triggeredFlags.isFDFlashDelayNeeded = TRUE;
                pOut->touchEVSceneMonitorOut              = AECAlgoTouchEVSettled;
                pOut->YHistStretchOut.enable              = TRUE;
                pOut->YHistStretchOut.clamp               = 0.1F;
                pOut->YHistStretchOut.scaling             = 1.2F;
                return AecSuccess;
            }));
        ON_CALL(*m_factory.pIrisCtrl, ProcessIris(_, _))
            .WillByDefault(Invoke([](const AECIrisFrameProcInput*, AECIrisFrameProcOutput* pOut) {
                pOut->motorData.motorSetFlag.motorMoveAbs_is_available = true;
                pOut->motorData.motorMoveAbsData.absolutePosition      = 42;
                return AecSuccess;
            }));
    }
};

TEST_F(CoreProcessTest, FrameBeforeAnyStartQueryIsRefusedYetResetsTheLEDsAndCountsTheFramesDown)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    ASSERT_EQ(0, SetPipelineDelay(2));
    // Arm the three counters: flash measurement (calibration kind) to the pipeline delay, post-raw to the delay.
    AECCoreSetParam kind          = {};
    kind.paramType                = AECAlgoSetParamFlashMeasurement;
    kind.data.flashMeasurementState = AECAlgoFlashMeasKindCalib;
    ASSERT_EQ(0, SetParameter(kind));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeFlashMeasurement));
    AECCoreSetParam postRaw  = {};
    postRaw.paramType        = AECAlgoSetParamControlPostRawSensitivityBoost;
    postRaw.data.postRawGain = 150;
    ASSERT_EQ(0, SetParameter(postRaw));
    Store().SetConvFrameSkipCounter(3);
    ASSERT_EQ(2u, Store().getFlashMeasSwitchCounter());
    ASSERT_EQ(2u, Store().getPostRawCounter());

    m_output.frameSetting.flashState     = AECAlgoFlashStateMain;
    m_output.frameSetting.LEDCurrents[0] = 100;
    m_output.frameSetting.LEDCurrents[1] = 200;
    EXPECT_CALL(*m_factory.pExtension, GetFlashCurrentEstimate(Off, &m_output.frameSetting, FALSE))
        .WillOnce(Invoke([](ExtFlashCurrentType, AECFrameControl* pControl, BOOL) {
            pControl->flashState     = AECAlgoFlashStateOff;
            pControl->LEDCurrents[0] = 0;
            pControl->LEDCurrents[1] = 0;
            return 0.0F;
        }));
    EXPECT_CALL(*m_factory.pSkipCtrl, CheckSkipFrame(_)).Times(0);
    EXPECT_CALL(*m_factory.pMetering, ProcessFrameStats(_, _)).Times(0);
    EXPECT_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _)).Times(0);
    EXPECT_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStreamInput*>(), _)).Times(0);
    EXPECT_CALL(*m_factory.pSkipCtrl, ConfigFrameSkip(_, _)).Times(0);

    EXPECT_EQ(1, Process(1));

    EXPECT_EQ(AECAlgoFlashStateOff, m_output.frameSetting.flashState);
    EXPECT_EQ(0u, m_output.frameSetting.LEDCurrents[0]);
    EXPECT_EQ(0u, m_output.frameSetting.LEDCurrents[1]);
    EXPECT_EQ(1u, Store().getFlashMeasSwitchCounter());
    EXPECT_EQ(1u, Store().getPostRawCounter());
    EXPECT_EQ(2u, Store().getConvFrameSkipCounter());
    EXPECT_EQ(1u, m_logs.Count("Need to always query start exposure before sending in stats for each opMode! "));
}

TEST_F(CoreProcessTest, ProcessedFrameCountsTheFramesDownOnce)
{
    ASSERT_EQ(0, SetPipelineDelay(3));
    StartStreaming();
    Store().SetConvFrameSkipCounter(3);
    AECCoreSetParam postRaw  = {};
    postRaw.paramType        = AECAlgoSetParamControlPostRawSensitivityBoost;
    postRaw.data.postRawGain = 150;
    ASSERT_EQ(0, SetParameter(postRaw));
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(2u, Store().getConvFrameSkipCounter());
    EXPECT_EQ(2u, Store().getPostRawCounter());
}

TEST_F(CoreProcessTest, SkippedFrameOfAnOrdinaryCameraReturnsZeroWithoutRunningAnything)
{
    StartStreaming();
    ON_CALL(*m_factory.pSkipCtrl, CheckSkipFrame(_)).WillByDefault(Return(TRUE));
    EXPECT_CALL(*m_factory.pExtension, GetFlashCurrentEstimate(Off, _, FALSE)).Times(1);
    EXPECT_CALL(*m_factory.pMetering, ProcessFrameStats(_, _)).Times(0);
    EXPECT_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _)).Times(0);
    EXPECT_CALL(*m_factory.pSkipCtrl, ConfigFrameSkip(_, _)).Times(0);

    EXPECT_EQ(0, Process(1));
    EXPECT_EQ(0u, CAECCoreTestPeer::HistorySize(Store()));
}

TEST_F(CoreProcessTest, MasterCameraProcessesAFrameThatSkipControlWouldSkip)
{
    ASSERT_EQ(0, SetCameraInfo(1, StatsAlgoRoleMaster));
    StartStreaming();
    ON_CALL(*m_factory.pSkipCtrl, CheckSkipFrame(_)).WillByDefault(Return(TRUE));
    EXPECT_CALL(*m_factory.pMetering, ProcessFrameStats(_, _)).Times(1);
    EXPECT_CALL(*m_factory.pSkipCtrl, ConfigFrameSkip(_, &m_input)).Times(1);

    EXPECT_EQ(0, Process(1));
    EXPECT_EQ(1u, CAECCoreTestPeer::HistorySize(Store()));
}

TEST_F(CoreProcessTest, RunningDiagnosticProcessesAFrameThatSkipControlWouldSkip)
{
    StartStreaming();
    ON_CALL(*m_factory.pSkipCtrl, CheckSkipFrame(_)).WillByDefault(Return(TRUE));
    ON_CALL(*m_factory.pDiagnostic, GetDiagStatus()).WillByDefault(Return(RunningDiag(0.0F)));
    EXPECT_CALL(*m_factory.pMetering, ProcessFrameStats(_, _)).Times(1);
    EXPECT_CALL(*m_factory.pSkipCtrl, ConfigFrameSkip(_, &m_input)).Times(1);

    EXPECT_EQ(0, Process(1));
    EXPECT_EQ(1u, CAECCoreTestPeer::HistorySize(Store()));
}

TEST_F(CoreProcessTest, RunsTheModulesInTheFixedOrder)
{
    StartStreaming();
    {
        InSequence sequence;
        EXPECT_CALL(*m_factory.pExtension, GetFlashCurrentEstimate(Off, &m_output.frameSetting, FALSE));
        EXPECT_CALL(*m_factory.pSkipCtrl, CheckSkipFrame(&m_input)).WillOnce(Return(FALSE));
        EXPECT_CALL(*m_factory.pDiagnostic, GetDiagStatus());
        EXPECT_CALL(*m_factory.pMetering, ProcessFrameStats(_, _));
        EXPECT_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _));
        EXPECT_CALL(*m_factory.pIrisCtrl, QueryPIrisSettleInfo());
        EXPECT_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStreamInput*>(), _));
        EXPECT_CALL(*m_factory.pIrisCtrl, QueryPIrisSettleInfo());
        EXPECT_CALL(*m_factory.pIrisCtrl, ProcessIris(_, _));
        EXPECT_CALL(*m_factory.pExtension, ExtensionProcess(_, _));
        EXPECT_CALL(*m_factory.pDiagnostic, GetDiagStatus());
        EXPECT_CALL(*m_factory.pDiagnostic, GetDiagStatus());
        EXPECT_CALL(*m_factory.pSkipCtrl, ConfigFrameSkip(_, &m_input));
    }
    EXPECT_EQ(0, Process(1));
}

TEST_F(CoreProcessTest, FrameSkipControlGetsTheConvergenceOutputOfTheFrame)
{
    StartStreaming();
    SetDistinctModuleOutputs();
    EXPECT_CALL(*m_factory.pSkipCtrl,
                ConfigFrameSkip(Field(&ConvergenceOutput::previewEV, 0.5F), &m_input));
    EXPECT_EQ(0, Process(1));
}

TEST_F(CoreProcessTest, FrameIDMustRiseWithinAMode)
{
    StartStreaming();
    EXPECT_EQ(0, Process(5));
    EXPECT_EQ(1, Process(5));
    EXPECT_EQ(1u, m_logs.Count("Current stats frame ID (5) is invalid, not larger than previous (5)!"));
    EXPECT_EQ(1u, m_logs.Count("Failed to save the stats frame ID to history!"));
    EXPECT_EQ(1, Process(4));
    EXPECT_EQ(0, Process(7));
    EXPECT_EQ(2u, CAECCoreTestPeer::HistorySize(Store()));
}

TEST_F(CoreProcessTest, AutoSwitchHDRAcceptsAFrameIDThatDoesNotRise)
{
    AECCoreSetParam overrideParam                    = {};
    overrideParam.paramType                          = AECAlgoSetParamOverrideSetting;
    overrideParam.data.OverrideSetting.autoSwitchHDR = TRUE;
    ASSERT_EQ(0, SetParameter(overrideParam));
    StartStreaming();
    EXPECT_EQ(0, Process(5));
    EXPECT_EQ(0, Process(5));
    EXPECT_EQ(0, Process(3));
    EXPECT_EQ(0u, m_logs.CountContaining("Failed to save the stats frame ID"));
}

TEST_F(CoreProcessTest, HistoryEntryTakesEachFieldFromItsSource)
{
    StartStreaming();
    SetDistinctModuleOutputs();
    Store().setSensitivity(2.0F);
    AECCoreSetParam postRaw  = {};
    postRaw.paramType        = AECAlgoSetParamControlPostRawSensitivityBoost;
    postRaw.data.postRawGain = 150;
    ASSERT_EQ(0, SetParameter(postRaw));

    ASSERT_EQ(0, Process(9));
    const AECFrameHistory* pEntry = Store().getFrameHistory(0);
    ASSERT_NE(nullptr, pEntry);
    EXPECT_EQ(9u, pEntry->frameID);
    EXPECT_FALSE(pEntry->isStartConfig);
    for (UINT32 i = 0; i < 3; i++)
    {
        EXPECT_FLOAT_EQ(11.0F + i, pEntry->expIndices[i]);
        EXPECT_FLOAT_EQ(14.0F + i, pEntry->expIndicesAdjustments[i]);
        EXPECT_FLOAT_EQ(1.0F + i, pEntry->expIndicesTargets[i]);
        EXPECT_FLOAT_EQ(4.0F + i, pEntry->sHDRExpIndices[i]);
        EXPECT_FLOAT_EQ(2.0F + i, pEntry->gain[i]);
        EXPECT_FLOAT_EQ(1.4F + i, pEntry->fnumber[i]);
        EXPECT_EQ(100u * (i + 1), pEntry->expTime[i]);
        EXPECT_FLOAT_EQ(10.0F * (i + 1), pEntry->sensitivities[i]);
    }
    EXPECT_FLOAT_EQ(24.0F, pEntry->FPS);
    EXPECT_FLOAT_EQ(7.0F, pEntry->luma);
    EXPECT_FLOAT_EQ(8.0F, pEntry->luxIndex);
    EXPECT_EQ(999u, pEntry->LLSRequiredExpTime);
    EXPECT_TRUE(pEntry->bisAECSettled);
    EXPECT_FLOAT_EQ(0.5F, pEntry->previewEV);
    EXPECT_FLOAT_EQ(2.0F, pEntry->tableSensitivity);
    EXPECT_FLOAT_EQ(1.25F, pEntry->predictiveGain);
    EXPECT_FLOAT_EQ(1.5F, pEntry->predictiveADRC);
    EXPECT_EQ(150, pEntry->postRawGain);
    EXPECT_FALSE(pEntry->isSnapshotQuery);
    EXPECT_EQ(0u, pEntry->IRModeActivated);
    EXPECT_FLOAT_EQ(0.0F, pEntry->IRLedIntensity);
    EXPECT_FLOAT_EQ(0.0F, pEntry->BGStats[0]);
    EXPECT_FLOAT_EQ(4.0F, pEntry->expRatio);
}

TEST_F(CoreProcessTest, OutputTakesEachFieldFromItsSourceAndLeavesTheLEDFieldsAlone)
{
    StartStreaming();
    SetDistinctModuleOutputs();
    // The LED fields come from the per-frame reset alone.
    ON_CALL(*m_factory.pExtension, GetFlashCurrentEstimate(Off, _, FALSE))
        .WillByDefault(Invoke([](ExtFlashCurrentType, AECFrameControl* pControl, BOOL) {
            pControl->flashState         = AECAlgoFlashStateOff;
            pControl->LEDCurrents[0]     = 7;
            pControl->LEDCurrents[1]     = 8;
            pControl->LEDRGRatio         = 0.7F;
            pControl->LEDBGRatio         = 0.8F;
            pControl->LEDFirstEntryRatio = 0.9F;
            pControl->LEDLastEntryRatio  = 0.1F;
            return 0.0F;
        }));

    ASSERT_EQ(0, Process(1));

    const AECFrameControl& rControl = m_output.frameSetting;
    EXPECT_EQ(AECAlgoFlashStateOff, rControl.flashState);
    EXPECT_EQ(7u, rControl.LEDCurrents[0]);
    EXPECT_EQ(8u, rControl.LEDCurrents[1]);
    EXPECT_FLOAT_EQ(0.7F, rControl.LEDRGRatio);
    EXPECT_FLOAT_EQ(0.8F, rControl.LEDBGRatio);
    EXPECT_FLOAT_EQ(0.9F, rControl.LEDFirstEntryRatio);
    EXPECT_FLOAT_EQ(0.1F, rControl.LEDLastEntryRatio);
    EXPECT_FLOAT_EQ(1.0F, rControl.LEDInfluenceRatio);
    for (UINT32 i = 0; i < 3; i++)
    {
        EXPECT_FLOAT_EQ(2.0F + i, rControl.exposureSets[i].linearGain);
        EXPECT_EQ(100u * (i + 1), rControl.exposureSets[i].exposureTime);
        EXPECT_FLOAT_EQ(5.0F + i, rControl.RealexposureSets[i].linearGain);
        EXPECT_EQ(1000u * (i + 1), rControl.RealexposureSets[i].exposureTime);
    }
    EXPECT_EQ(400u, rControl.exifInfo.ISOValue);
    EXPECT_FLOAT_EQ(2.5F, rControl.exifInfo.APEXValues.apertureValue);
    EXPECT_EQ(0, std::memcmp(Store().getBGBEConfig(), &rControl.statsBGBEConfig, sizeof(rControl.statsBGBEConfig)));
    EXPECT_EQ(0,
              std::memcmp(Store().getBayerHistConfig(), &rControl.statsBHISTConfig, sizeof(rControl.statsBHISTConfig)));
    EXPECT_FLOAT_EQ(8.0F, rControl.luxIndex);
    EXPECT_TRUE(rControl.stretchControl.enable);
    EXPECT_FLOAT_EQ(1.2F, rControl.stretchControl.scaling);
    EXPECT_FLOAT_EQ(1.25F, rControl.predictiveGain);
    EXPECT_FLOAT_EQ(1.0F, rControl.digitalGainForSimulation);
    EXPECT_TRUE(rControl.isInsensorHDRSnapshot);
    EXPECT_FLOAT_EQ(1.75F, rControl.compenADRCGain);
    EXPECT_FLOAT_EQ(2.25F, rControl.compensationDarkBoostGain);
    EXPECT_EQ(0u, rControl.IRModeActivated);
    EXPECT_TRUE(m_output.LDMcmd.SetInfo.motorSetFlag.motorMoveAbs_is_available);
    EXPECT_EQ(42, m_output.LDMcmd.SetInfo.motorMoveAbsData.absolutePosition);

    const AECFrameInfo& rInfo = m_output.frameInfo;
    EXPECT_TRUE(rInfo.brightnessSettled);
    EXPECT_TRUE(rInfo.aecSettled);
    EXPECT_FLOAT_EQ(0.0F, rInfo.legacyYStats[0]);
    EXPECT_FLOAT_EQ(255.0F, rInfo.legacyYStats[255]);
    EXPECT_FLOAT_EQ(0.25F, rInfo.asdExtremeGreenRatio);
    EXPECT_FLOAT_EQ(0.125F, rInfo.asdExtremeBlueRatio);
    EXPECT_EQ(AECAlgoSnapshotNormal, rInfo.snapshotIndicator);
    EXPECT_EQ(AECAlgoTouchEVSettled, rInfo.touchEVIndicator);
    EXPECT_TRUE(rInfo.LEDAFRequired);
    EXPECT_TRUE(rInfo.LEDFDDelayRequired);
    EXPECT_EQ(0u, rInfo.DebugDataSizeWritten);
    EXPECT_FLOAT_EQ(10.0F, rInfo.frameLuma);
    EXPECT_FLOAT_EQ(0.5F, rInfo.pixCntRatioLEF);
}

struct SnapshotIndicatorCase
{
    BOOL                isFlashNeeded;
    BOOL                isLLSNeeded;
    AECAlgoSnapshotType expected;
};

class CoreSnapshotIndicatorTest : public CoreProcessTest, public ::testing::WithParamInterface<SnapshotIndicatorCase>
{
};

TEST_P(CoreSnapshotIndicatorTest, FlashWinsOverLowLightWhichWinsOverNormal)
{
    StartStreaming();
    const SnapshotIndicatorCase flags = GetParam();
    ON_CALL(*m_factory.pExtension, ExtensionProcess(_, _))
        .WillByDefault(Invoke([flags](ExtensionInput*, ExtensionOutput* pOut) {
            pOut->triggeredFlags.isFlashNeeded = flags.isFlashNeeded;
            pOut->triggeredFlags.isLLSNeeded   = flags.isLLSNeeded;
            return AecSuccess;
        }));
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(flags.expected, m_output.frameInfo.snapshotIndicator);
}

INSTANTIATE_TEST_SUITE_P(Priority, CoreSnapshotIndicatorTest,
                         ::testing::Values(SnapshotIndicatorCase{TRUE, TRUE, AECAlgoSnapshotFlash},
                                           SnapshotIndicatorCase{TRUE, FALSE, AECAlgoSnapshotFlash},
                                           SnapshotIndicatorCase{FALSE, TRUE, AECAlgoSnapshotLLS},
                                           SnapshotIndicatorCase{FALSE, FALSE, AECAlgoSnapshotNormal}));

TEST_F(CoreProcessTest, RunningDiagnosticDrivesTheExposureAndHidesTheSettledState)
{
    StartStreaming();
    SetDistinctModuleOutputs();
    AECAlgoExposureData sweep = {};
    sweep.exposureTime        = 123;
    sweep.linearGain          = 4.0F;
    ON_CALL(*m_factory.pDiagnostic, GetDiagStatus()).WillByDefault(Return(RunningDiag(77.0F)));
    EXPECT_CALL(*m_factory.pDiagnostic, ProcessTests(Field(&DiagInput::currentLuma, 7.0F))).WillOnce(Return(sweep));

    ASSERT_EQ(0, Process(1));

    for (UINT32 i = 0; i < 3; i++)
    {
        EXPECT_EQ(123u, m_output.frameSetting.exposureSets[i].exposureTime);
        EXPECT_FLOAT_EQ(4.0F, m_output.frameSetting.exposureSets[i].linearGain);
    }
    const AECFrameHistory* pEntry = Store().getFrameHistory(0);
    ASSERT_NE(nullptr, pEntry);
    for (UINT32 i = 0; i < 3; i++)
    {
        EXPECT_FLOAT_EQ(77.0F, pEntry->expIndices[i]);
        EXPECT_FLOAT_EQ(77.0F, pEntry->expIndicesTargets[i]);
    }
    EXPECT_FALSE(m_output.frameInfo.brightnessSettled);
    EXPECT_FALSE(m_output.frameInfo.aecSettled);
    EXPECT_EQ(1u, m_logs.Count("Diagnostic: Use settings from EI:77.0"));
}

TEST_F(CoreProcessTest, PredictiveGainsBelowUnityAreReportedAsUnity)
{
    StartStreaming();
    ON_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _))
        .WillByDefault(Invoke([](const ConvergenceInput*, ConvergenceOutput* pOut) {
            pOut->predictiveGain = 0.5F;
            pOut->predictiveADRC = 0.25F;
            return AecSuccess;
        }));
    ASSERT_EQ(0, Process(1));
    EXPECT_FLOAT_EQ(1.0F, m_output.frameSetting.predictiveGain);
    const AECFrameHistory* pEntry = Store().getFrameHistory(0);
    ASSERT_NE(nullptr, pEntry);
    EXPECT_FLOAT_EQ(1.0F, pEntry->predictiveGain);
    EXPECT_FLOAT_EQ(1.0F, pEntry->predictiveADRC);
}

TEST_F(CoreProcessTest, FlashInfluenceBelowUnityGivesAnInfluenceRatioOfUnity)
{
    StartStreaming();
    FLOAT influence = 0.5F;
    ON_CALL(*m_factory.pMetering, ProcessFrameStats(_, _))
        .WillByDefault(Invoke([&influence](const AECMeteringFrameProcInput*, AECMeteringFrameProcOutput* pOut) {
            pOut->flashInfluence = influence;
            return AecSuccess;
        }));
    ASSERT_EQ(0, Process(1));
    EXPECT_FLOAT_EQ(1.0F, m_output.frameSetting.LEDInfluenceRatio);

    influence = 2.5F;
    ASSERT_EQ(0, Process(2));
    EXPECT_FLOAT_EQ(2.5F, m_output.frameSetting.LEDInfluenceRatio);
}

TEST_F(CoreProcessTest, PublishesThisCameraForItsPeer)
{
    ASSERT_EQ(0, SetCameraInfo(3, StatsAlgoRoleDefault));
    AECCoreSetParam awb     = {};
    awb.paramType           = AECAlgoSetParamAWBState;
    awb.data.AWBState.CCT   = 5000;
    ASSERT_EQ(0, SetParameter(awb));
    AECDualcamCalibrationInfo calibration = {AECAlgoDualcamOTPSet, 1.5F};
    CAECCoreTestPeer::SetDCCalibration(Store(), calibration);
    StartStreaming();
    SetDistinctModuleOutputs();

    ASSERT_EQ(0, Process(9));

    const AECMultiCamInfo* pOwn = Store().getMyOwnInfo();
    EXPECT_EQ(9u, pOwn->statsFrameId);
    EXPECT_EQ(3u, pOwn->cameraID);
    EXPECT_EQ(static_cast<UINT32>(StatsAlgoRoleDefault), pOwn->algoRole);
    EXPECT_TRUE(pOwn->meteringInfo.aecSettled);
    EXPECT_FLOAT_EQ(8.0F, pOwn->meteringInfo.luxIndex);
    EXPECT_FLOAT_EQ(9.0F, pOwn->meteringInfo.averageLuma);
    EXPECT_FLOAT_EQ(7.0F, pOwn->meteringInfo.currentLuma);
    EXPECT_FLOAT_EQ(22.0F, pOwn->meteringInfo.lumaTargets[1]);
    EXPECT_TRUE(pOwn->exposureInfo.relativeSensEnable);
    EXPECT_FLOAT_EQ(3.5F, pOwn->exposureInfo.sensitivityTotalOrRatio[1]);
    EXPECT_EQ(333u, pOwn->exposureInfo.exposureTime[2]);
    EXPECT_EQ(5000, pOwn->CCT);
    EXPECT_EQ(AECAlgoDualcamOTPSet, pOwn->OTPInfo.OTPStatus);
    EXPECT_FLOAT_EQ(1.5F, pOwn->OTPInfo.OTPExpCompMultiplier);
}

TEST_F(CoreProcessTest, WithMeteringDisabledThePeerSeesNoNewMeteringButTheNewExposure)
{
    StartStreaming();
    SetDistinctModuleOutputs();
    ASSERT_EQ(0, Process(1));

    CAECCoreTestPeer::SetMultiCamTypes(Store(), AECAlgoMeteringDisabled, AECAlgoExposureFollow);
    ON_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStreamInput*>(), _))
        .WillByDefault(Invoke([](ArbitrationStreamInput*, ArbitrationOutput* pOut) {
            pOut->multiCamExpInfo.exposureTime[2] = 444;
            return AecSuccess;
        }));
    ON_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _)).WillByDefault(Return(AecSuccess));
    ASSERT_EQ(0, Process(2));

    const AECMultiCamInfo* pOwn = Store().getMyOwnInfo();
    EXPECT_EQ(2u, pOwn->statsFrameId);
    EXPECT_TRUE(pOwn->meteringInfo.aecSettled);
    EXPECT_FLOAT_EQ(7.0F, pOwn->meteringInfo.currentLuma);
    EXPECT_EQ(444u, pOwn->exposureInfo.exposureTime[2]);
}

TEST_F(CoreProcessTest, ConvergenceKPIRestartsOnTheFirstFrameAndThenOnlyCounts)
{
    const AECConvergenceKPIType& rKPI = CAECCoreTestPeer::KPI(Core());
    EXPECT_TRUE(rKPI.prevAECSettled);
    EXPECT_FALSE(rKPI.isAECSettled);
    EXPECT_EQ(0u, rKPI.kpi.frameCount);

    StartStreaming();
    // Settled frames do not matter: nothing in the core reports its settle state to the measurement.
    ON_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _))
        .WillByDefault(Invoke([](const ConvergenceInput*, ConvergenceOutput* pOut) {
            pOut->isAECSettled = TRUE;
            return AecSuccess;
        }));
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(1u, rKPI.kpi.frameCount);
    EXPECT_FALSE(rKPI.kpi.bStartInit);
    EXPECT_FALSE(rKPI.prevAECSettled);
    EXPECT_EQ(rKPI.kpi.startTimeOfEachFrame, rKPI.kpi.startTime);

    ASSERT_EQ(0, Process(2));
    ASSERT_EQ(0, Process(3));
    EXPECT_EQ(3u, rKPI.kpi.frameCount);
    EXPECT_FALSE(rKPI.kpi.bEndInit);
    EXPECT_EQ(0u, m_logs.CountContaining("KPI:"));
}

} // namespace
