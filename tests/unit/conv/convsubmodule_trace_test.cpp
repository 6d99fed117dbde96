// Closed-loop traces of every submodule with the default tuning: 3 EV steps up and down through a sensor model.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "aec/core/modules/mod_conv/convflashmeasurement.h"
#include "aec/core/modules/mod_conv/convslow.h"
#include "unit/conv/convsubmoduletestsupport.h"

namespace
{
constexpr UINT32 kPipelineDelay = 2;
constexpr FLOAT  kStartTarget   = 250.0F;
constexpr FLOAT  kThreeEVDown   = 1.0F / 8.0F; // scene 3 EV darker: the exposure has to go up
constexpr FLOAT  kThreeEVUp     = 1.0F;        // back to the start scene

class ConvTraceTest : public ConvSubmoduleTest
{
protected:
    // One scene step (brightness relative to the start scene), checked for target, oscillation and settle.
    // flagUpThroughout: the safe flag may stay up all along, since it compares the commanded with the matched
    // exposure and a converger whose steps never open a gap of twice its tolerance never lowers it.
    void CheckStep(ConvergenceSubmodule* pSubmodule, SensorLoop& loop, FLOAT brightness, FLOAT tolerance,
                   const char* pName, bool flagUpThroughout = false)
    {
        const StepTrace trace    = RunStep(loop, pSubmodule, brightness, 200, tolerance);
        const bool      exposeUp = brightness < 1.0F;
        std::printf("[ trace    ] %s %s: index within tolerance from frame %d, settle flag up for good from "
                    "frame %d, final index %.2f target %.2f, crossings %u\n",
                    pName, exposeUp ? "+3 EV (darker scene)" : "-3 EV (brighter scene)", trace.targetFrames,
                    trace.settleFrames, trace.finalIndex, trace.finalTarget, trace.crossings);
        EXPECT_NEAR(kStartTarget + (exposeUp ? 70.3468F : 0.0F), trace.finalTarget, 0.01F) << pName;
        EXPECT_LE(std::fabs(trace.finalIndex - trace.finalTarget), tolerance) << pName;
        EXPECT_LE(trace.crossings, 1U) << pName;
        EXPECT_GE(trace.targetFrames, 0) << pName;
        EXPECT_LT(trace.targetFrames, 150) << pName;
        if (flagUpThroughout)
        {
            EXPECT_EQ(0, trace.settleFrames) << pName;
        }
        else
        {
            EXPECT_GT(trace.settleFrames, 0) << pName;
            EXPECT_LT(trace.settleFrames, 150) << pName;
        }
    }

    // The scene steps 3 EV darker, then back. restart sends the initialisation a new mode gets at each step
    // (start modes, flash measurement).
    void CheckSteps(ConvergenceSubmodule* pSubmodule, SensorLoop& loop, FLOAT tolerance, bool restart,
                    const char* pName, bool flagUpThroughout = false)
    {
        for (FLOAT brightness : {kThreeEVDown, kThreeEVUp})
        {
            if (restart)
            {
                ASSERT_EQ(AecSuccess, pSubmodule->SetConvEvent(ConvEventInitialize));
            }
            CheckStep(pSubmodule, loop, brightness, tolerance, pName, flagUpThroughout);
        }
    }
};
} // namespace

TEST_F(ConvTraceTest, FastConvergerSettlesOnThreeEVStepsWithoutOscillation)
{
    SubmodulePtr pFast = Create(ConvIDFast);
    pFast->SetSysLatency(kPipelineDelay);
    ASSERT_EQ(AecSuccess, pFast->SetConvEvent(ConvEventInitialize));
    SensorLoop loop(&Tuning(), kPipelineDelay, kStartTarget, kStartTarget);
    RunStep(loop, pFast.get(), 1.0F, 10, 0.0F);
    CheckSteps(pFast.get(), loop, Conv().fastConv.tolMultUnitStepSize * Conv().unitStepSize, false, "ConvFast");
}

TEST_F(ConvTraceTest, SlowConvergerSettlesOnThreeEVStepsWithoutOscillation)
{
    SubmodulePtr pSlow = Create(ConvIDSlow);
    ASSERT_EQ(AecSuccess, pSlow->SetConvEvent(ConvEventInitialize));
    SensorLoop loop(&Tuning(), kPipelineDelay, kStartTarget, kStartTarget);
    // Long enough on the start scene to arm the hold time.
    RunStep(loop, pSlow.get(), 1.0F, 60, 0.0F);
    ASSERT_EQ(TRUE, static_cast<ConvSlow*>(pSlow.get())->GetContext().htAllowed);
    // Its unit steps keep the commanded index within twice the tolerance of the matched one, so the flag never
    // falls; the index still has to reach the target.
    CheckSteps(pSlow.get(), loop, Conv().slowConv.tolMultUnitStepSize * Conv().unitStepSize, false, "ConvSlow",
               true);
}

TEST_F(ConvTraceTest, FastStartSettlesOnThreeEVStepsWithoutOscillation)
{
    SubmodulePtr pStartup = Create(ConvIDFastAEC);
    SensorLoop loop(&Tuning(), kPipelineDelay, kStartTarget, kStartTarget);
    CheckSteps(pStartup.get(), loop, StartUp().StartUpConv.fastAEC.tolMultUnitStepSize * Conv().unitStepSize, true,
               "ConvStartup (fast AEC)");
}

TEST_F(ConvTraceTest, AggressiveStartSettlesOnThreeEVStepsWithoutOscillation)
{
    SubmodulePtr pStartup = Create(ConvIDAggressiveAEC);
    SensorLoop loop(&Tuning(), kPipelineDelay, kStartTarget, kStartTarget);
    CheckSteps(pStartup.get(), loop, StartUp().StartUpConv.aggressive.tolMultUnitStepSize * Conv().unitStepSize,
               true, "ConvStartup (aggressive AEC)");
}

TEST_F(ConvTraceTest, FlashMeasurementSettlesOnThreeEVStepsWithoutOscillation)
{
    ConvFlashMeasurement::SetMeasurement(0U, AECAlgoFlashMeasKindTuning);
    SubmodulePtr pMeas = Create(ConvIDFlashMeas);
    SensorLoop loop(&Tuning(), kPipelineDelay, kStartTarget, kStartTarget);
    CheckSteps(pMeas.get(), loop, Flash().flashConv.flashMeasurementConv.tolMultUnitStepSize * Conv().unitStepSize,
               true, "ConvFlashMeasurement");
    ConvFlashMeasurement::SetMeasurement(0U, AECAlgoFlashMeasKindOff);
    ConvFlashMeasurement::ResetPreviousFlashMeasTargetIndex();
}

TEST_F(ConvTraceTest, TorchSettlesOnTorchSwitchesWithoutOscillation)
{
    // The torch turning off darkens the scene 3 EV, turning on brightens it again; the normal converger is the
    // default streaming one.
    SubmodulePtr pNormal = Create(ConvIDSlow);
    SubmodulePtr pTorch  = Create(ConvIDTorch);
    pTorch->SetSecondaryAlgo(pNormal.get());
    ASSERT_EQ(AecSuccess, pTorch->SetConvEvent(ConvEventInitialize));
    SensorLoop loop(&Tuning(), kPipelineDelay, kStartTarget, kStartTarget);
    loop.SetTorch(TRUE);
    RunStep(loop, pTorch.get(), 1.0F, 60, 0.0F);
    const FLOAT tolerance = Conv().torchConv.conv.tolMultUnitStepSize * Conv().unitStepSize;
    loop.SetTorch(FALSE);
    CheckStep(pTorch.get(), loop, kThreeEVDown, tolerance, "ConvTorch (torch off)");
    loop.SetTorch(TRUE);
    CheckStep(pTorch.get(), loop, kThreeEVUp, tolerance, "ConvTorch (torch on)");
}
