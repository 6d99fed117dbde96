// Tests of the convergence module's mode changes: converger choice, preflash frame skip and tuning changes.
#include <gtest/gtest.h>

#include "unit/conv/convmoduletestsupport.h"

using ::testing::Return;

namespace
{

TEST_F(ConvModuleTest, StreamingPicksTheTunedConvergerWrappedByTorch)
{
    EXPECT_EQ(ConvIDFast, m_pModule->GetCurrentAlgoID()) << "before any mode";
    EXPECT_EQ(AecSuccess, SetMode(AECAlgoOperationModeStreaming));
    EXPECT_EQ(ConvIDTorch, m_pModule->GetCurrentAlgoID());
    EXPECT_TRUE(ConvLogContains("conv algo set to ConvIDSlow"));
    EXPECT_TRUE(ConvLogContains("conv algo will use torch if enabled"));

    Conv().torchConv.enableTorchOffOn = FALSE;
    Conv().torchConv.enableTorchOnOff = FALSE;
    SetMode(AECAlgoOperationModeStreaming);
    EXPECT_EQ(ConvIDSlow, m_pModule->GetCurrentAlgoID());
    Conv().algoSelect = aecConvergence::AECConvFastConv;
    SetMode(AECAlgoOperationModeStreaming);
    EXPECT_EQ(ConvIDFast, m_pModule->GetCurrentAlgoID());

    // An unknown selection keeps the converger in place.
    Conv().algoSelect = static_cast<aecConvergence::AECConvAlgoType>(7);
    SetMode(AECAlgoOperationModeStreaming);
    EXPECT_EQ(ConvIDFast, m_pModule->GetCurrentAlgoID());
}

TEST_F(ConvModuleTest, TorchWrapperNeverWrapsItself)
{
    SetMode(AECAlgoOperationModeStreaming);
    ASSERT_EQ(ConvIDTorch, m_pModule->GetCurrentAlgoID());
    Conv().algoSelect = static_cast<aecConvergence::AECConvAlgoType>(7);
    SetMode(AECAlgoOperationModeStreaming);
    EXPECT_EQ(ConvIDTorch, m_pModule->GetCurrentAlgoID());
    EXPECT_FALSE(ConvLogContains("no usable normal converger"));
    const ConvergenceOutput out = Frame(100.0F);
    EXPECT_TRUE(out.isBrightnessSettled) << "the normal converger still runs";
}

TEST_F(ConvModuleTest, EveryModeHasItsConverger)
{
    EXPECT_EQ(AecSuccess, SetMode(AECAlgoOperationModePreflash));
    EXPECT_EQ(ConvIDPreflash, m_pModule->GetCurrentAlgoID());
    EXPECT_EQ(AecSuccess, SetMode(AECAlgoOperationModeFastAEC));
    EXPECT_EQ(ConvIDFastAEC, m_pModule->GetCurrentAlgoID());
    EXPECT_TRUE(ConvLogContains("conv algo set to ConvIDFastAEC"));
    EXPECT_EQ(AecSuccess, SetMode(AECAlgoOperationModeAggressiveAEC));
    EXPECT_EQ(ConvIDAggressiveAEC, m_pModule->GetCurrentAlgoID());
    EXPECT_EQ(AecSuccess, SetMode(AECAlgoOperationModeFlashMeasurement));
    EXPECT_EQ(ConvIDFlashMeas, m_pModule->GetCurrentAlgoID());
    EXPECT_EQ(AecSuccess, SetMode(AECAlgoOperationModeInit));
    EXPECT_EQ(ConvIDFlashMeas, m_pModule->GetCurrentAlgoID()) << "init leaves the converger";

    EXPECT_EQ(AecError, SetMode(static_cast<AECAlgoOperationModeType>(9)));
    EXPECT_EQ(ConvIDFast, m_pModule->GetCurrentAlgoID());
    EXPECT_TRUE(ConvLogContains("unexpected operation mode; defaulting to fast convergence"));
}

TEST_F(ConvModuleTest, OnlyTheStreamingFastConvergerGetsThePipelineDelay)
{
    m_pipelineDelay = 3;
    SetMode(AECAlgoOperationModeStreaming);
    EXPECT_EQ(3, m_pModule->GetSubmodule(ConvIDFast)->GetSysLatency());
    EXPECT_EQ(0, m_pModule->GetSubmodule(ConvIDPreflash)->GetSysLatency());
}

TEST_F(ConvModuleTest, PreflashWaitsForFacesUnlessTheSceneIsBright)
{
    SetMode(AECAlgoOperationModePreflash);
    EXPECT_TRUE(m_pModule->GetWaitForFDInPreflash()) << "no luma seen yet";
    SetMode(AECAlgoOperationModeStreaming);
    Frame(100.0F); // average luma 50, above the tuned 30
    SetMode(AECAlgoOperationModePreflash);
    EXPECT_FALSE(m_pModule->GetWaitForFDInPreflash());
    EXPECT_TRUE(ConvLogContains("Luma:50.000000, bWaitPreflash:0"));

    m_pTuning->convTuningData.dynamicFDDelay.enableFDDynamicDelay = FALSE;
    SetMode(AECAlgoOperationModePreflash);
    EXPECT_TRUE(m_pModule->GetWaitForFDInPreflash());
}

TEST_F(ConvModuleTest, PreflashLumaIsNotTakenFromPreflashOrSkippedFrames)
{
    SetMode(AECAlgoOperationModeStreaming);
    Frame(100.0F);
    SetMode(AECAlgoOperationModePreflash);
    ConvergenceInput  input   = {};
    const FLOAT       t[3]    = {100.0F, 100.0F, 100.0F};
    ConvergenceOutput output;
    input.pTargetIndices = t;
    input.avgLuma        = 5.0F;
    m_pModule->ConvergeFrameExposure(&input, &output);
    SetMode(AECAlgoOperationModePreflash);
    EXPECT_FALSE(m_pModule->GetWaitForFDInPreflash()) << "the preflash frame's dark luma was not taken";

    SetMode(AECAlgoOperationModeStreaming);
    m_skipCounter = 1;
    m_pModule->ConvergeFrameExposure(&input, &output);
    SetMode(AECAlgoOperationModePreflash);
    EXPECT_FALSE(m_pModule->GetWaitForFDInPreflash()) << "the skipped frame's dark luma was not taken";

    m_skipCounter = 0;
    SetMode(AECAlgoOperationModeStreaming);
    m_pModule->ConvergeFrameExposure(&input, &output);
    SetMode(AECAlgoOperationModePreflash);
    EXPECT_TRUE(m_pModule->GetWaitForFDInPreflash()) << "a streaming frame's dark luma is taken";
}

TEST_F(ConvModuleTest, PreflashSwitchesSetTheSkipCounter)
{
    SetMode(AECAlgoOperationModeStreaming);
    ASSERT_FALSE(m_callback.counters.empty());
    EXPECT_EQ(0u, m_callback.counters.back());

    SetMode(AECAlgoOperationModePreflash);
    EXPECT_EQ(2u, m_callback.counters.back()) << "pipeline delay";
    EXPECT_TRUE(ConvLogContains("Preflash In: Skip count:2"));

    aecFlash::PreflashConvType& rPreflash    = Flash().flashConv.preflashConv;
    rPreflash.preflashFrameCounterExit.type  = aecFlash::SwitchCounterCustomInteger;
    rPreflash.preflashFrameCounterExit.customInteger = 4;
    SetMode(AECAlgoOperationModeStreaming);
    EXPECT_EQ(4u, m_callback.counters.back());
    EXPECT_TRUE(ConvLogContains("Preflash Out: Skip count:4"));

    SetMode(AECAlgoOperationModeFastAEC);
    EXPECT_EQ(0u, m_callback.counters.back());

    rPreflash.preflashFrameCounterEnter.type          = aecFlash::SwitchCounterCustomInteger;
    rPreflash.preflashFrameCounterEnter.customInteger = -3;
    SetMode(AECAlgoOperationModePreflash);
    EXPECT_EQ(0u, m_callback.counters.back()) << "a negative count skips nothing";
}

TEST_F(ConvModuleTest, PreflashEntrySkipShrinksWithTheFrameRate)
{
    aecFlash::PreflashConvType& rPreflash             = Flash().flashConv.preflashConv;
    rPreflash.preflashFrameCounterEnter.type          = aecFlash::SwitchCounterCustomInteger;
    rPreflash.preflashFrameCounterEnter.customInteger = 5;
    rPreflash.dynamicEnterSkip.enableDynamicEnterSkip = TRUE;
    rPreflash.dynamicEnterSkip.preflashMinFrameSkip   = 1;
    rPreflash.dynamicEnterSkip.FPSRange.start         = 10.0F;
    rPreflash.dynamicEnterSkip.FPSRange.end           = 24.0F;

    const struct
    {
        FLOAT  fps;
        UINT32 skip;
    } cases[] = {{30.0F, 5u}, {24.0F, 5u}, {17.0F, 3u}, {11.0F, 2u}, {10.0F, 1u}, {5.0F, 1u}};
    for (const auto& rCase : cases)
    {
        SetMode(AECAlgoOperationModeStreaming);
        for (AECFrameHistory& rEntry : m_history)
        {
            rEntry.FPS = rCase.fps;
        }
        Frame(100.0F);
        SetMode(AECAlgoOperationModePreflash);
        EXPECT_EQ(rCase.skip, m_callback.counters.back()) << rCase.fps;
    }
    EXPECT_TRUE(ConvLogContains("Preflash skip: Min: 1 Max: 5 prevFPS: 17.0"));

    // A range of one point: the full count unless below it.
    rPreflash.dynamicEnterSkip.FPSRange.start = 24.0F;
    SetMode(AECAlgoOperationModeStreaming);
    SetMode(AECAlgoOperationModePreflash);
    EXPECT_EQ(1u, m_callback.counters.back()) << "5 fps from the last case is below the point";
}

TEST_F(ConvModuleTest, TuningArrivingAfterConstructionRebuildsTheConvergers)
{
    ON_CALL(m_context, getConvTuning()).WillByDefault(Return(nullptr));
    MakeModule();
    ON_CALL(m_context, getConvTuning()).WillByDefault(::testing::Invoke([this]() {
        return &m_pTuning->convTuningData;
    }));
    EXPECT_EQ(AecSuccess, m_pModule->OnTuningHeaderChange());
    EXPECT_TRUE(ConvLogContains("convergence tuning view changed: convergers rebuilt"));
    EXPECT_EQ(2, m_pModule->GetSubmodule(ConvIDFast)->GetSysLatency());

    // The same view again: no rebuild.
    ConvLogs().clear();
    EXPECT_EQ(AecSuccess, m_pModule->OnTuningHeaderChange());
    EXPECT_FALSE(ConvLogContains("rebuilt"));

    SetMode(AECAlgoOperationModeStreaming);
    EXPECT_TRUE(Frame(100.0F).isBrightnessSettled);
}

TEST_F(ConvModuleTest, TuningChangeKeepsTheTorchLink)
{
    SetMode(AECAlgoOperationModeStreaming);
    ASSERT_EQ(ConvIDTorch, m_pModule->GetCurrentAlgoID());
    CoreModuleTuningData copy = *m_pTuning;
    ON_CALL(m_context, getConvTuning()).WillByDefault(Return(&copy.convTuningData));
    EXPECT_EQ(AecSuccess, m_pModule->OnTuningHeaderChange());
    EXPECT_TRUE(ConvLogContains("rebuilt"));
    EXPECT_FALSE(ConvLogContains("no usable normal converger"));
    EXPECT_TRUE(Frame(100.0F).isBrightnessSettled);
}

} // namespace
