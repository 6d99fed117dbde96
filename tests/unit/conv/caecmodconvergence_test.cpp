// Tests of the convergence module's frame: lock, EV, follow, post-raw gain, settle flags, speeds and outputs.
#include <gtest/gtest.h>

#include <cmath>

#include "unit/conv/convmoduletestsupport.h"

namespace
{

// Index offset of one stop: log10(2) times the index units per decade.
const FLOAT OneStop = static_cast<FLOAT>(std::log10(2.0) * CAECModConvergence::IndexPerDecade);

ConvergenceSubmodule* CurrentOf(const CAECModConvergence& rModule)
{
    return rModule.GetSubmodule(rModule.GetCurrentAlgoID());
}

TEST_F(ConvModuleTest, NullRecordsAreRefused)
{
    ConvergenceOutput output;
    EXPECT_EQ(AecError, m_pModule->ConvergeFrameExposure(nullptr, &output));
    ConvergenceInput input = {};
    EXPECT_EQ(AecError, m_pModule->ConvergeFrameExposure(&input, &output)) << "no targets";
}

TEST_F(ConvModuleTest, LockedIndicesAreRoundedClampedAndSettledEveryFrame)
{
    Conv().unitStepSize = 0.5F;
    SetMode(AECAlgoOperationModeStreaming);
    m_lock.lockState                                  = AECAlgoLockOn;
    m_lock.expIndicesToUse[AECAlgoExposureShort]      = 100.4F;
    m_lock.expIndicesToUse[AECAlgoExposureLong]       = 500.0F;
    m_lock.expIndicesToUse[AECAlgoExposureSafe]       = -7.0F;
    const FLOAT targets[3][AECAlgoExposureCount]      = {{150.0F, 160.0F, 170.0F}, {10.0F, 20.0F, 30.0F},
                                                         {300.0F, 300.0F, 300.0F}};
    for (const FLOAT* pTargets : targets)
    {
        const ConvergenceOutput out = Frame(pTargets);
        EXPECT_FLOAT_EQ(100.5F, out.convExpSets[AECAlgoExposureShort].expIndex);
        EXPECT_FLOAT_EQ(400.0F, out.convExpSets[AECAlgoExposureLong].expIndex);
        EXPECT_FLOAT_EQ(0.0F, out.convExpSets[AECAlgoExposureSafe].expIndex);
        EXPECT_TRUE(out.isAECSettled);
        EXPECT_TRUE(out.isBrightnessSettled);
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            EXPECT_FLOAT_EQ(0.0F, out.convExpSets[i].expIndexAdjustment);
            EXPECT_FLOAT_EQ(pTargets[i] - out.convExpSets[i].expIndex, out.convExpSets[i].expIndexDelta);
            EXPECT_FLOAT_EQ(pTargets[i] - out.convExpSets[i].expIndex, out.convExpSets[i].expIndexDeltaIdeal);
        }
    }
}

TEST_F(ConvModuleTest, EVChangeDuringLockShiftsIndicesToUseWithoutConverging)
{
    SetMode(AECAlgoOperationModeStreaming);
    m_lock.lockState = AECAlgoLockOn;
    EXPECT_EQ(AecSuccess, m_pModule->OnAECLockChange());
    EXPECT_FLOAT_EQ(100.0F, m_lock.expIndicesWhenLockHappened[AECAlgoExposureSafe]);
    EXPECT_FLOAT_EQ(100.0F, m_lock.expIndicesToUse[AECAlgoExposureSafe]);

    SetEV(6);
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        EXPECT_NEAR(100.0F + OneStop, m_lock.expIndicesToUse[i], 1e-3F);
        EXPECT_FLOAT_EQ(100.0F, m_lock.expIndicesWhenLockHappened[i]);
    }
    EXPECT_TRUE(ConvLogContains("detected EV change during lock"));
    const ConvergenceOutput out = Frame(200.0F);
    EXPECT_FLOAT_EQ(std::round(100.0F + OneStop), out.convExpSets[AECAlgoExposureSafe].expIndex);
    EXPECT_TRUE(out.isAECSettled);

    // Back to the EV of the lock: back to the locked indices.
    SetEV(0);
    EXPECT_NEAR(100.0F, m_lock.expIndicesToUse[AECAlgoExposureSafe], 1e-4F);
}

TEST_F(ConvModuleTest, LockRightAfterAnEVChangeBakesInThePreviewOffset)
{
    SetMode(AECAlgoOperationModeStreaming);
    SetEV(6);
    EXPECT_FALSE(m_lock.bIsEVReflected);
    m_lock.lockState = AECAlgoLockOn;
    EXPECT_EQ(AecSuccess, m_pModule->OnAECLockChange());
    EXPECT_TRUE(m_lock.bIsEVReflected);
    EXPECT_NEAR(100.0F + OneStop, m_lock.expIndicesWhenLockHappened[AECAlgoExposureSafe], 1e-3F);
    EXPECT_NEAR(100.0F + OneStop, m_lock.expIndicesToUse[AECAlgoExposureShort], 1e-3F);
    EXPECT_FLOAT_EQ(m_ev.EV, m_lock.EVCtxtWhenLockHappened.EV);
}

TEST_F(ConvModuleTest, LockAfterAFrameTakesTheFrameIndicesAsTheyAre)
{
    SetMode(AECAlgoOperationModeStreaming);
    SetEV(6);
    Frame(100.0F);
    EXPECT_TRUE(m_lock.bIsEVReflected) << "the frame reflected the EV";
    m_lock.lockState = AECAlgoLockOn;
    EXPECT_EQ(AecSuccess, m_pModule->OnAECLockChange());
    EXPECT_FLOAT_EQ(100.0F, m_lock.expIndicesWhenLockHappened[AECAlgoExposureSafe]);
    EXPECT_FLOAT_EQ(m_ev.EV, m_lock.EVCtxtWhenLockHappened.EV);
    m_lock.lockState = AECAlgoLockOFF;
    EXPECT_EQ(AecSuccess, m_pModule->OnAECLockChange());
    EXPECT_TRUE(ConvLogContains("unlocked"));
}

TEST_F(ConvModuleTest, EVChangeJumpsToTheTargetInsteadOfConverging)
{
    SetMode(AECAlgoOperationModeStreaming);
    SetEV(6);
    EXPECT_NEAR(OneStop, m_pModule->GetPreviewEVOffset(), 1e-3F);
    const ConvergenceOutput jump = Frame(100.0F);
    EXPECT_FLOAT_EQ(std::round(100.0F + OneStop), jump.convExpSets[AECAlgoExposureSafe].expIndex);
    EXPECT_NEAR(100.0F + OneStop, jump.convExpSets[AECAlgoExposureLong].expIndex, 1e-3F);
    EXPECT_FLOAT_EQ(1.0F, jump.previewEV);

    // Without a new EV change the same distance is converged, not jumped.
    const ConvergenceOutput step = Frame(100.0F);
    EXPECT_LT(step.convExpSets[AECAlgoExposureSafe].expIndex, std::round(100.0F + OneStop));
}

TEST_F(ConvModuleTest, PositiveEVOffsetIsDroppedWithHDR3)
{
    m_hdr3 = TRUE;
    SetEV(6);
    EXPECT_FLOAT_EQ(0.0F, m_pModule->GetPreviewEVOffset());
    SetEV(-6);
    EXPECT_NEAR(-OneStop, m_pModule->GetPreviewEVOffset(), 1e-3F);
}

TEST_F(ConvModuleTest, PreflashTargetsIgnoreTheEVOffset)
{
    SetEV(6);
    SetMode(AECAlgoOperationModePreflash);
    m_skipCounter               = 0;
    const ConvergenceOutput out = Frame(100.0F);
    EXPECT_FLOAT_EQ(100.0F, out.convExpSets[AECAlgoExposureSafe].expIndex);
    EXPECT_TRUE(ConvLogContains("conv tgts with EV 0.000000"));
}

TEST_F(ConvModuleTest, SkipCounterClearsTheFlagsEvenWhenForcedSet)
{
    SetMode(AECAlgoOperationModeStreaming);
    m_skipCounter               = 2;
    const ConvergenceOutput out = Frame(100.0F, AECAlgoSettleForceSet);
    EXPECT_FALSE(out.isAECSettled);
    EXPECT_FALSE(out.isBrightnessSettled);
    EXPECT_TRUE(ConvLogContains("SettleType:0, SettleState(Safe:0 Short:0 Long:0)"));
    // The forced state is stored: a later frame that uses the previous flags sees the cleared ones.
    m_skipCounter                = 0;
    const ConvergenceOutput next = Frame(100.0F, AECAlgoSettleUsePrevious);
    EXPECT_FALSE(next.isBrightnessSettled);
}

TEST_F(ConvModuleTest, UsePreviousBeforeAnyStoredStateGivesUnsettled)
{
    SetMode(AECAlgoOperationModeStreaming);
    const ConvergenceOutput first = Frame(100.0F, AECAlgoSettleUsePrevious);
    EXPECT_FALSE(first.isAECSettled);
    EXPECT_FALSE(first.isBrightnessSettled);

    // The same frame computed is settled, and that state is what a later frame restores.
    const ConvergenceOutput computed = Frame(100.0F, AECAlgoSettleCompute);
    EXPECT_TRUE(computed.isAECSettled);
    EXPECT_TRUE(computed.isBrightnessSettled);
    const ConvergenceOutput restored = Frame(300.0F, AECAlgoSettleUsePrevious);
    EXPECT_TRUE(restored.isAECSettled);
    EXPECT_TRUE(restored.isBrightnessSettled);
}

TEST_F(ConvModuleTest, SettleTypesForceOrComputeTheFlags)
{
    UseFastConverger();
    SetMode(AECAlgoOperationModeStreaming);
    const ConvergenceOutput reset = Frame(100.0F, AECAlgoSettleForceReset);
    EXPECT_FALSE(reset.isAECSettled);
    EXPECT_FALSE(reset.isBrightnessSettled);
    EXPECT_TRUE(ConvLogContains("SettleType:1, SettleState(Safe:0 Short:0 Long:0)"));

    const ConvergenceOutput set = Frame(300.0F, AECAlgoSettleForceSet);
    EXPECT_TRUE(set.isAECSettled);
    EXPECT_TRUE(set.isBrightnessSettled);
    EXPECT_TRUE(ConvLogContains("SettleType:0, SettleState(Safe:1 Short:1 Long:1)"));

    const ConvergenceOutput far = Frame(300.0F, AECAlgoSettleCompute);
    EXPECT_FALSE(far.isAECSettled);
    EXPECT_FALSE(far.isBrightnessSettled);
}

TEST_F(ConvModuleTest, TargetBeyondTheTableClampsTheDeltaButNotTheIdealDelta)
{
    SetMode(AECAlgoOperationModeStreaming);
    const ConvergenceOutput out = Frame(1000.0F);
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        const FLOAT index = out.convExpSets[i].expIndex;
        EXPECT_FLOAT_EQ(400.0F - index, out.convExpSets[i].expIndexDelta);
        EXPECT_FLOAT_EQ(1000.0F - index, out.convExpSets[i].expIndexDeltaIdeal);
        EXPECT_FLOAT_EQ(index - 100.0F, out.convExpSets[i].expIndexAdjustment);
    }
}

TEST_F(ConvModuleTest, FollowModeFixesTheTargetsAndLeavesAggressiveStart)
{
    SetMode(AECAlgoOperationModeAggressiveAEC);
    EXPECT_EQ(ConvIDAggressiveAEC, m_pModule->GetCurrentAlgoID());
    m_exposureType                               = AECAlgoExposureFollow;
    const FLOAT             targets[3]           = {150.4F, 160.0F, 170.6F};
    const ConvergenceOutput out                  = Frame(targets);
    EXPECT_EQ(ConvIDSlow, m_pModule->GetCurrentAlgoID());
    EXPECT_TRUE(ConvLogContains("follow mode: conv algo set to ConvIDSlow"));
    EXPECT_FLOAT_EQ(150.0F, out.convExpSets[AECAlgoExposureShort].expIndex);
    EXPECT_FLOAT_EQ(171.0F, out.convExpSets[AECAlgoExposureSafe].expIndex);
    EXPECT_TRUE(out.isAECSettled);
    EXPECT_TRUE(out.isBrightnessSettled);

    Conv().algoSelect = aecConvergence::AECConvFastConv;
    SetMode(AECAlgoOperationModeAggressiveAEC);
    Frame(targets);
    EXPECT_EQ(ConvIDFast, m_pModule->GetCurrentAlgoID());
    EXPECT_TRUE(ConvLogContains("follow mode: conv algo set to ConvIDFast"));
}

TEST_F(ConvModuleTest, PostRawGainKeepsTheSensitivityOfTheFrameInFlight)
{
    UseFastConverger();
    SetMode(AECAlgoOperationModeStreaming);
    m_postRawCounter            = 1;
    m_postRawGain               = 100;
    m_history[2].postRawGain    = 200; // delay 2 - counter 1 + 1
    const ConvergenceOutput out = Frame(300.0F);
    EXPECT_FLOAT_EQ(std::round(100.0F + OneStop), out.convExpSets[AECAlgoExposureSafe].expIndex);
    EXPECT_TRUE(out.isAECSettled);
    EXPECT_TRUE(ConvLogContains("apply comp new 100 old 200"));

    // Without a post-raw gain the frame converges.
    m_postRawGain                 = 0;
    const ConvergenceOutput moved = Frame(300.0F);
    EXPECT_FALSE(moved.isBrightnessSettled);
}

TEST_F(ConvModuleTest, TouchAndFaceScaleTheSpeed)
{
    SetMode(AECAlgoOperationModeStreaming);
    ConvergenceSubmodule* pCurrent = CurrentOf(*m_pModule);
    ASSERT_NE(nullptr, pCurrent);

    m_touch.ROICount = 1;
    Frame(100.0F);
    EXPECT_FLOAT_EQ(1.5F, pCurrent->GetSpeedAdjust()) << "touch ratio";

    m_touch.ROICount               = 0;
    m_pFace->isActiveFace          = 1;
    m_pFace->faceStatusDuration    = 0.4F;
    Frame(100.0F);
    EXPECT_FLOAT_EQ(1.0F, pCurrent->GetSpeedAdjust()) << "face not yet long enough";
    m_pFace->faceStatusDuration = 0.6F;
    Frame(100.0F);
    EXPECT_FLOAT_EQ(1.2F, pCurrent->GetSpeedAdjust()) << "face counts";

    m_pFace->isActiveFace       = 0;
    m_pFace->faceStatusDuration = 0.5F;
    Frame(100.0F);
    EXPECT_FLOAT_EQ(1.2F, pCurrent->GetSpeedAdjust()) << "lost face within the exit delay";
    m_pFace->faceStatusDuration = 1.5F;
    Frame(100.0F);
    EXPECT_FLOAT_EQ(1.0F, pCurrent->GetSpeedAdjust()) << "exit delay passed";

    m_pFace->isActiveFace       = 2;
    m_pFace->faceStatusDuration = 5.0F;
    Frame(100.0F);
    EXPECT_FLOAT_EQ(1.0F, pCurrent->GetSpeedAdjust()) << "an unknown face state never counts";
}

TEST_F(ConvModuleTest, FirstBrightnessSettleEndsTheLaunchSpeed)
{
    UseFastConverger();
    StartUp().generic.startUpAggressiveness = 0.7F;
    SetMode(AECAlgoOperationModeStreaming);
    ConvergenceSubmodule* pCurrent = CurrentOf(*m_pModule);
    ASSERT_NE(nullptr, pCurrent);
    EXPECT_TRUE(m_pModule->IsCameraLaunch());
    EXPECT_FLOAT_EQ(0.7F, pCurrent->GetBaseSpeedOverride());

    Frame(300.0F);
    EXPECT_TRUE(m_pModule->IsCameraLaunch()) << "not settled yet";
    const ConvergenceOutput out = Frame(100.0F);
    ASSERT_TRUE(out.isBrightnessSettled);
    EXPECT_FALSE(m_pModule->IsCameraLaunch());
    EXPECT_FLOAT_EQ(0.0F, pCurrent->GetBaseSpeedOverride());

    // Init mode marks a new launch.
    SetMode(AECAlgoOperationModeInit);
    EXPECT_TRUE(m_pModule->IsCameraLaunch());
}

TEST_F(ConvModuleTest, LaunchWithAnApplicationSpeedNeverUsesTheStartUpAggressiveness)
{
    StartUp().generic.startUpAggressiveness = 0.7F;
    m_dynamicSpeed                          = 0.3F;
    SetMode(AECAlgoOperationModeStreaming);
    ConvergenceSubmodule* pCurrent = CurrentOf(*m_pModule);
    ASSERT_NE(nullptr, pCurrent);
    EXPECT_FLOAT_EQ(0.3F, pCurrent->GetBaseSpeedOverride());
    EXPECT_FLOAT_EQ(1.0F, pCurrent->GetSpeedAdjust());
    const ConvergenceOutput out = Frame(100.0F);
    ASSERT_TRUE(out.isBrightnessSettled);
    EXPECT_FLOAT_EQ(0.3F, pCurrent->GetBaseSpeedOverride());

    m_dynamicSpeed = 0.6F;
    EXPECT_EQ(AecSuccess, m_pModule->OnDynamicConvergenceSpeedChange());
    EXPECT_FLOAT_EQ(0.6F, pCurrent->GetBaseSpeedOverride());
}

TEST_F(ConvModuleTest, GainFirstRampsFromTheLastStillExposure)
{
    UseFastConverger();
    Conv().enableConvergeGainFirst = TRUE;
    SetMode(AECAlgoOperationModeStreaming);
    for (AECFrameHistory& rEntry : m_history)
    {
        rEntry.bisAECSettled = TRUE;
    }
    const ConvergenceOutput moving = Frame(300.0F);
    ASSERT_FALSE(moving.isAECSettled);
    EXPECT_TRUE(moving.expTimePriorConfig.bIsActive);
    EXPECT_FLOAT_EQ(100.0F, moving.expTimePriorConfig.srcExpIdx);
    EXPECT_FLOAT_EQ(300.0F, moving.expTimePriorConfig.dstExpIdx);

    const ConvergenceOutput still = Frame(100.0F);
    ASSERT_TRUE(still.isAECSettled);
    EXPECT_FALSE(still.expTimePriorConfig.bIsActive);

    Conv().enableConvergeGainFirst = FALSE;
    EXPECT_FALSE(Frame(300.0F).expTimePriorConfig.bIsActive);
}

TEST_F(ConvModuleTest, StaggeredHDRFollowsTheTuning)
{
    SetMode(AECAlgoOperationModeStreaming);
    EXPECT_FALSE(Frame(100.0F).sHDRexpConfig.bIsActive);
    m_adapter.GetTuningModules().modShdr->shdrMtr.enableShdr = 1;
    EXPECT_TRUE(Frame(100.0F).sHDRexpConfig.bIsActive);
}

TEST_F(ConvModuleTest, PredictionHookLeavesUnityGains)
{
    SetMode(AECAlgoOperationModeStreaming);
    const ConvergenceOutput out = Frame(300.0F);
    EXPECT_FLOAT_EQ(1.0F, out.predictiveGain);
    EXPECT_FLOAT_EQ(1.0F, out.predictiveADRC);
}

TEST_F(ConvModuleTest, DebugDataCarriesTheFrame)
{
    UseFastConverger();
    m_debugEnable = TRUE;
    SetMode(AECAlgoOperationModeStreaming);
    m_touch.ROICount            = 1;
    const ConvergenceOutput out = Frame(300.0F);
    EXPECT_EQ(AecSuccess, m_pModule->OnDebugDataUpdate());
    const AECDebugDataConvergenceType& rInfo = m_pDebugData->convergenceInfo;
    EXPECT_FLOAT_EQ(out.convExpSets[AECAlgoExposureSafe].expIndex, +rInfo.expIndexOutput[AECAlgoExposureSafe]);
    EXPECT_FLOAT_EQ(300.0F, +rInfo.expIndexTarget[AECAlgoExposureSafe]);
    EXPECT_FLOAT_EQ(400.0F, +rInfo.expIndexMax);
    EXPECT_EQ(static_cast<UINT8>(m_pModule->GetCurrentAlgoID()), +rInfo.convAlgoIdentity);
    EXPECT_EQ(1, +rInfo.bIsTouchActive);
    EXPECT_EQ(1, +rInfo.bIsCameraLaunch);
    EXPECT_EQ(0, +rInfo.bIsBrightnessSettled);
}

TEST_F(ConvModuleTest, MissingHistoryConvergesFromTheTargets)
{
    SetMode(AECAlgoOperationModeStreaming);
    m_noHistory                 = TRUE;
    const ConvergenceOutput out = Frame(150.0F);
    EXPECT_FLOAT_EQ(150.0F, out.convExpSets[AECAlgoExposureSafe].expIndex);
    EXPECT_FLOAT_EQ(0.0F, out.convExpSets[AECAlgoExposureSafe].expIndexAdjustment);
}

} // namespace
