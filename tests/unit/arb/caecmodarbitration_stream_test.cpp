// Tests of the module's preview frame: initial output, index conversion, delta EV, time priority, FPS, manual modes.
#include "unit/arb/caecmodarbitration_testfixture.h"

#include <cmath>

using ::testing::Return;

namespace
{

using Peer = CAECModArbitrationTestPeer;

class ArbModuleStreamTest : public ArbModuleTest
{
protected:
    ArbitrationOutput Frame(ArbitrationStreamInput input)
    {
        ArbitrationOutput output = {};
        EXPECT_EQ(AecSuccess, m_pModule->ArbitrateExposure(&input, &output));
        return output;
    }

    // One preview frame in a manual mode that preview is tuned to follow.
    ArbitrationOutput ManualFrame(AECAlgoModeType mode, UINT32 ISO, FLOAT gain, UINT64 time)
    {
        m_manual.manualMode   = mode;
        m_manual.ISOValue     = ISO;
        m_manual.gain         = gain;
        m_manual.exposureTime = time;
        EXPECT_EQ(AecSuccess, m_pModule->OnManualSettingChange());
        return Frame(StreamInput(250.0F));
    }
};

TEST_F(ArbModuleStreamTest, WithoutTunedTableTheFrameGetsTheInitialOutput)
{
    ArbitrationStreamInput input  = StreamInput(200.0F);
    ArbitrationOutput      output = {};
    output.FPS                    = 99.0F;
    EXPECT_EQ(AecSuccess, m_pModule->ArbitrateExposure(&input, &output));
    EXPECT_TRUE(ArbLogContains("no valid exposure table"));
    ExpectInitialOutput(output);
    EXPECT_FLOAT_EQ(0.0F, output.FPS);
    EXPECT_EQ(0U, m_callback.m_FPSCalls);
}

TEST_F(ArbModuleStreamTest, IndicesOfAnotherModeAreConvertedToTheCurrentTable)
{
    StartUpTuning()->expTableIDFastAEC = 1;
    TuneModule();
    const FLOAT offset = OffsetForScale(2.0);

    // Converged in FastAEC (table 1) and arbitrated in streaming (table 0).
    ArbitrationStreamInput converted = StreamInput(200.0F);
    converted.refOpMode              = AECAlgoOperationModeFastAEC;
    const ArbitrationOutput outConverted = Frame(converted);
    EXPECT_TRUE(ArbLogContains("Converting Exposure ID[3]->[1]: Offset : -23.44"));

    const ArbitrationOutput outDirect = Frame(StreamInput(200.0F + offset));
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        EXPECT_EQ(outDirect.expSets[i].exposureTime, outConverted.expSets[i].exposureTime) << i;
        EXPECT_FLOAT_EQ(outDirect.expSets[i].linearGain, outConverted.expSets[i].linearGain) << i;
    }
}

TEST_F(ArbModuleStreamTest, IndicesOfAModeWithTheSameTableStayAsTheyAre)
{
    TuneModule();
    ArbitrationStreamInput input = StreamInput(200.0F);
    input.refOpMode              = AECAlgoOperationModeAggressiveAEC;
    const ArbitrationOutput out  = Frame(input);
    EXPECT_FALSE(ArbLogContains("Converting Exposure ID"));
    const ArbitrationOutput same = Frame(StreamInput(200.0F));
    EXPECT_EQ(same.expSets[AECAlgoExposureSafe].exposureTime, out.expSets[AECAlgoExposureSafe].exposureTime);
}

TEST_F(ArbModuleStreamTest, DeltaEVFromTargetIsTheIndexDeltaInStops)
{
    TuneModule();
    ArbitrationStreamInput input = StreamInput(200.0F);
    input.expIndicesDelta[AECAlgoExposureShort] = 23.449795F;
    input.expIndicesDelta[AECAlgoExposureLong]  = -11.7248975F;
    input.expIndicesDelta[AECAlgoExposureSafe]  = 0.0F;
    const ArbitrationOutput out = Frame(input);
    EXPECT_NEAR(-1.0F, out.expSets[AECAlgoExposureShort].deltaEVFromTarget, 1e-6F);
    EXPECT_NEAR(0.5F, out.expSets[AECAlgoExposureLong].deltaEVFromTarget, 1e-6F);
    EXPECT_FLOAT_EQ(0.0F, out.expSets[AECAlgoExposureSafe].deltaEVFromTarget);
}

TEST_F(ArbModuleStreamTest, FrameRateOfTheSafeExposureIsPublished)
{
    TuneModule();
    const ArbitrationOutput out = Frame(StreamInput(300.0F));
    const UINT64            t   = out.expSets[AECAlgoExposureSafe].exposureTime;
    const FLOAT expected = std::min(static_cast<FLOAT>(1e9 / static_cast<FLOAT>(t + 200800U)), m_maxFPS);
    EXPECT_NEAR(expected, out.FPS, 1e-3F);
    EXPECT_EQ(1U, m_callback.m_FPSCalls);
    EXPECT_FLOAT_EQ(out.FPS, m_callback.m_published.currentFPS);
    EXPECT_TRUE(ArbLogContains("Stream(short,safe,long): EI (300.0 300.0 300.0)"));
}

TEST_F(ArbModuleStreamTest, ZoomStepChangeMovesTheIrisBoundaryUnlessTheIrisIsAborted)
{
    TuneModule();
    ArbitrationStreamInput input = StreamInput(200.0F);
    input.currZoomStep           = 50;
    input.irisIsAborted          = 1;
    Frame(input);
    EXPECT_EQ(0U, Peer::ZoomStep(*m_pModule));
    EXPECT_EQ(1, Peer::IrisIsAborted(*m_pModule));

    input.irisIsAborted = 0;
    Frame(input);
    EXPECT_EQ(50U, Peer::ZoomStep(*m_pModule));
    EXPECT_EQ(50U, CArbitratorTestPeer::ZoomStep(StreamArb()));
    EXPECT_EQ(50U, CArbitratorTestPeer::ZoomStep(StillArb()));
    EXPECT_EQ(0, Peer::IrisIsAborted(*m_pModule));
}

TEST_F(ArbModuleStreamTest, LensCapabilityChangeReachesThePreviewArbitrator)
{
    TuneModule();
    ArbitrationStreamInput input = StreamInput(200.0F);
    input.lensCap.PIris          = TRUE;
    input.lensCap.zoom           = TRUE;
    Frame(input);
    EXPECT_EQ(TRUE, CArbitratorTestPeer::LensCap(StreamArb()).PIris);
    EXPECT_EQ(TRUE, CArbitratorTestPeer::LensCap(StreamArb()).zoom);
    EXPECT_EQ(FALSE, CArbitratorTestPeer::LensCap(StillArb()).PIris);
}

TEST_F(ArbModuleStreamTest, MissingGyroInfoIsLogged)
{
    TuneModule();
    ON_CALL(m_context, getGyroInfo()).WillByDefault(Return(nullptr));
    Frame(StreamInput(200.0F));
    EXPECT_TRUE(ArbLogContains("Invalid Gyro Info"));
}

TEST_F(ArbModuleStreamTest, LuxIndexReachesThePreviewArbitrator)
{
    TuneModule();
    ArbitrationStreamInput input = StreamInput(200.0F);
    input.luxIdx                 = 321.5F;
    Frame(input);
    EXPECT_FLOAT_EQ(321.5F, CArbitratorTestPeer::LuxIdx(StreamArb()));
}

TEST_F(ArbModuleStreamTest, StaggeredHDRFrameReportsTheCappedExposureRatio)
{
    TuneModule();
    ArbitrationStreamInput input        = StreamInput(200.0F);
    input.sHDRexpConfig.bIsActive       = TRUE;
    input.expIndices[AECAlgoExposureLong] = 260.0F;
    const ArbitrationOutput out         = Frame(input);
    const FLOAT ratio = out.expSets[AECAlgoExposureLong].sensitivity / out.expSets[AECAlgoExposureShort].sensitivity;
    ASSERT_GT(ratio, 1.0F);
    EXPECT_FLOAT_EQ(std::min(ratio, 16.0F), out.expRatio);
    EXPECT_TRUE(ArbLogContains("Update shdr exposure ratio"));

    auto* pShdr           = const_cast<aecShdr::ShdrMeteringType*>(m_pTuning->mtrTuningData.pShdr);
    pShdr->ExpRatioCapHigh = 2.0F;
    EXPECT_FLOAT_EQ(2.0F, Frame(input).expRatio);
    pShdr->ExpRatioCapLow  = 100.0F;
    pShdr->ExpRatioCapHigh = 200.0F;
    EXPECT_FLOAT_EQ(100.0F, Frame(input).expRatio);
}

TEST_F(ArbModuleStreamTest, DebugDataRecordsThePreviewFrame)
{
    TuneModule();
    m_debugEnable               = TRUE;
    const ArbitrationOutput out = Frame(StreamInput(300.0F));
    const AECDebugDataArbitrationType& rRecord = Peer::DebugData(*m_pModule);
    EXPECT_EQ(1U, +rRecord.exposureInstance);
    EXPECT_EQ(0U, +rRecord.exposureTableID);
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        EXPECT_FLOAT_EQ(out.expSets[i].linearGain, +rRecord.exposureGain[i]);
        EXPECT_EQ(out.expSets[i].exposureTime, +rRecord.exposureTime[i]);
    }
    EXPECT_FLOAT_EQ(static_cast<FLOAT>(out.exif.ISOValue), +rRecord.ISOValue);
    EXPECT_FLOAT_EQ(out.exif.APEXValues.brightnessValue, +rRecord.sceneBV);
    EXPECT_FLOAT_EQ(out.exif.APEXValues.timeValue, +rRecord.sceneTV);
}

TEST_F(ArbModuleStreamTest, DebugDataIsLeftAloneWhenDisabled)
{
    TuneModule();
    Frame(StreamInput(300.0F));
    EXPECT_EQ(0U, +Peer::DebugData(*m_pModule).exposureInstance);
}

TEST_F(ArbModuleStreamTest, FollowerWithPeerMatchesExposureTimes)
{
    TuneModule();
    auto* pSync = const_cast<aecSync::AECExposureSyncConfigType*>(m_pTuning->arbTuningData.pExpSyncConfig);
    ASSERT_NE(nullptr, pSync);
    pSync->enableExposureTimeMatch = 1;
    m_peer.exposureInfo.exposureTime[AECAlgoExposureSafe] = 40000000U;

    m_hasPeer      = TRUE;
    m_exposureType = AECAlgoExposureIndependent;
    Frame(StreamInput(300.0F));
    EXPECT_FALSE(ArbLogContains("current (capped) fps"));

    m_exposureType = AECAlgoExposureFollow;
    m_hasPeer      = FALSE;
    Frame(StreamInput(300.0F));
    EXPECT_FALSE(ArbLogContains("current (capped) fps"));

    m_hasPeer = TRUE;
    Frame(StreamInput(300.0F));
    EXPECT_TRUE(ArbLogContains("current (capped) fps"));
}

// ---- Time priority ramp ----

TEST_F(ArbModuleStreamTest, TimePriorityTradesShortTimeForGainUpToTheCap)
{
    TuneModule();
    // Destination short exposure of index 300 of table 0: gain 4 or more, time below one frame at 30 fps.
    AECAlgoExposureData dstRef[AECAlgoExposureCount] = {};
    {
        const ArbitrationOutput dst = Frame(StreamInput(300.0F));
        std::copy(std::begin(dst.expSets), std::end(dst.expSets), dstRef);
    }
    const UINT64 frameTime = static_cast<UINT64>(1e9 / static_cast<DOUBLE>(m_maxFPS));
    ASSERT_LT(dstRef[AECAlgoExposureShort].exposureTime, frameTime);
    ASSERT_GE(dstRef[AECAlgoExposureShort].linearGain, 2.0F);

    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    sets[AECAlgoExposureShort].exposureTime = 66000000U;
    sets[AECAlgoExposureShort].linearGain   = 1.0F;
    sets[AECAlgoExposureLong].exposureTime  = 66000000U;
    sets[AECAlgoExposureLong].linearGain    = 2.0F;
    sets[AECAlgoExposureSafe].exposureTime  = 33000000U;
    sets[AECAlgoExposureSafe].linearGain    = 1.5F;
    Peer::ArbitrateExposureTimeConvergence(*m_pModule, 300.0F, 300.0F, sets);

    const FLOAT  product = 1.0F * 66000000.0F;
    const FLOAT  gain    = product / static_cast<FLOAT>(frameTime);
    const UINT64 time    = static_cast<UINT64>(product / gain);
    EXPECT_FLOAT_EQ(gain, sets[AECAlgoExposureShort].linearGain);
    EXPECT_EQ(time, sets[AECAlgoExposureShort].exposureTime);
    EXPECT_EQ(time, sets[AECAlgoExposureLong].exposureTime);
    EXPECT_EQ(time, sets[AECAlgoExposureSafe].exposureTime);
    EXPECT_FLOAT_EQ(2.0F * (66000000.0F / static_cast<FLOAT>(time)), sets[AECAlgoExposureLong].linearGain);
    EXPECT_FLOAT_EQ(1.5F * (33000000.0F / static_cast<FLOAT>(time)), sets[AECAlgoExposureSafe].linearGain);
    EXPECT_TRUE(ArbLogContains("output: short gain"));
}

TEST_F(ArbModuleStreamTest, TimePriorityGainStopsAtTheLargerOfSourceAndDestinationGain)
{
    TuneModule();
    const ArbitrationOutput dst = Frame(StreamInput(300.0F));
    const FLOAT             capGain = dst.expSets[AECAlgoExposureShort].linearGain;

    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    sets[AECAlgoExposureShort].exposureTime = 900000000U;
    sets[AECAlgoExposureShort].linearGain   = 1.0F;
    Peer::ArbitrateExposureTimeConvergence(*m_pModule, 300.0F, 300.0F, sets);
    EXPECT_FLOAT_EQ(capGain, sets[AECAlgoExposureShort].linearGain);
    EXPECT_EQ(static_cast<UINT64>(900000000.0F / capGain), sets[AECAlgoExposureShort].exposureTime);
}

TEST_F(ArbModuleStreamTest, TimePriorityLeavesShortTimesWithinTheCap)
{
    TuneModule();
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    sets[AECAlgoExposureShort].exposureTime = 10000000U;
    sets[AECAlgoExposureShort].linearGain   = 1.0F;
    Peer::ArbitrateExposureTimeConvergence(*m_pModule, 300.0F, 300.0F, sets);
    EXPECT_EQ(10000000U, sets[AECAlgoExposureShort].exposureTime);
    EXPECT_FLOAT_EQ(1.0F, sets[AECAlgoExposureShort].linearGain);
    EXPECT_TRUE(ArbLogContains("output: no need to trade off"));
}

TEST_F(ArbModuleStreamTest, TimePriorityWithoutMaximumFrameRateUsesTheDestinationTime)
{
    TuneModule();
    m_maxFPS = 0.0F;
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    sets[AECAlgoExposureShort].exposureTime = 10000000U;
    sets[AECAlgoExposureShort].linearGain   = 1.0F;
    Peer::ArbitrateExposureTimeConvergence(*m_pModule, 300.0F, 300.0F, sets);
    EXPECT_TRUE(ArbLogContains("time priority capped by the destination time only"));
}

TEST_F(ArbModuleStreamTest, TimePriorityRunsOnFramesThatAskForIt)
{
    TuneModule();
    ArbitrationStreamInput input      = StreamInput(300.0F);
    input.expTimePrioConfig.bIsActive = TRUE;
    input.expTimePrioConfig.srcExpIdx = 250.0F;
    input.expTimePrioConfig.dstExpIdx = 300.0F;
    Frame(input);
    EXPECT_TRUE(ArbLogContains("output: no need to trade off"));
}

// ---- Manual modes through the module ----

TEST_F(ArbModuleStreamTest, ManualExposureTimeIsExactInsideTheSensorRange)
{
    TuneModule();
    const ArbitrationOutput out = ManualFrame(AECAlgoModeManualExpTime, 0, 0.0F, 20000000U);
    EXPECT_EQ(20000000U, out.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_EQ(20000000U, m_callback.m_published.exposureLimitation.expTime.min);
    EXPECT_EQ(20000000U, m_callback.m_published.exposureLimitation.expTime.max);
}

TEST_F(ArbModuleStreamTest, ManualISOIsExactInsideTheSensorRange)
{
    TuneModule();
    const ArbitrationOutput out = ManualFrame(AECAlgoModeManualISO, 800, 0.0F, 0U);
    EXPECT_FLOAT_EQ(8.0F, out.expSets[AECAlgoExposureSafe].linearGain);
    EXPECT_FLOAT_EQ(8.0F, m_callback.m_published.exposureLimitation.gain.min);
    EXPECT_FLOAT_EQ(8.0F, m_callback.m_published.exposureLimitation.gain.max);
}

TEST_F(ArbModuleStreamTest, ManualGainIsExactInsideTheSensorRange)
{
    TuneModule();
    const ArbitrationOutput out = ManualFrame(AECAlgoModeManualGain, 0, 3.5F, 0U);
    EXPECT_FLOAT_EQ(3.5F, out.expSets[AECAlgoExposureSafe].linearGain);
    EXPECT_FLOAT_EQ(3.5F, m_callback.m_published.exposureLimitation.gain.max);
}

TEST_F(ArbModuleStreamTest, FullManualIsExactInsideTheSensorRange)
{
    TuneModule();
    const ArbitrationOutput out = ManualFrame(AECAlgoModeManualFull, 400, 0.0F, 30000000U);
    EXPECT_EQ(30000000U, out.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_FLOAT_EQ(4.0F, out.expSets[AECAlgoExposureSafe].linearGain);
    const ExposureLimitationType& rLimit = m_callback.m_published.exposureLimitation;
    EXPECT_EQ(30000000U, rLimit.expTime.min);
    EXPECT_EQ(30000000U, rLimit.expTime.max);
    EXPECT_FLOAT_EQ(4.0F, rLimit.gain.min);
    EXPECT_FLOAT_EQ(4.0F, rLimit.gain.max);
}

TEST_F(ArbModuleStreamTest, ManualExposureTimeAboveTheSensorMaximumIsKeptAsTheLowerBoundWins)
{
    TuneModule();
    const ArbitrationOutput out = ManualFrame(AECAlgoModeManualExpTime, 0, 0.0F, 2000000000U);
    EXPECT_EQ(2000000000U, out.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_EQ(2000000000U, m_callback.m_published.exposureLimitation.expTime.min);
    EXPECT_EQ(2000000000U, m_callback.m_published.exposureLimitation.expTime.max);
    EXPECT_TRUE(ArbLogContains("requires attention: exp time min"));
}

TEST_F(ArbModuleStreamTest, ManualExposureTimeBelowTheSensorMinimumRisesToIt)
{
    TuneModule();
    const ArbitrationOutput out = ManualFrame(AECAlgoModeManualExpTime, 0, 0.0F, 1000U);
    EXPECT_EQ(10000U, out.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_EQ(10000U, m_callback.m_published.exposureLimitation.expTime.min);
    EXPECT_EQ(10000U, m_callback.m_published.exposureLimitation.expTime.max);
}

TEST_F(ArbModuleStreamTest, ManualGainAboveTheSensorMaximumIsKept)
{
    TuneModule();
    const ArbitrationOutput out = ManualFrame(AECAlgoModeManualGain, 0, 100.0F, 0U);
    EXPECT_FLOAT_EQ(100.0F, out.expSets[AECAlgoExposureSafe].linearGain);
    EXPECT_FLOAT_EQ(100.0F, m_callback.m_published.exposureLimitation.gain.max);
}

TEST_F(ArbModuleStreamTest, ManualGainBelowTheSensorMinimumRisesToIt)
{
    TuneModule();
    const ArbitrationOutput out = ManualFrame(AECAlgoModeManualGain, 0, 0.5F, 0U);
    EXPECT_FLOAT_EQ(1.0F, out.expSets[AECAlgoExposureSafe].linearGain);
    EXPECT_FLOAT_EQ(1.0F, m_callback.m_published.exposureLimitation.gain.min);
    EXPECT_FLOAT_EQ(1.0F, m_callback.m_published.exposureLimitation.gain.max);
    EXPECT_TRUE(ArbLogContains("requires attention: gain min"));
}

TEST_F(ArbModuleStreamTest, ManualISOInPreviewNotEnabledLeavesThePreviewAutomatic)
{
    TuneModule();
    const ArbitrationOutput autoOut = Frame(StreamInput(250.0F));
    ArbCore()->enablePreviewManualISO = FALSE;
    const ArbitrationOutput out       = ManualFrame(AECAlgoModeManualISO, 3200, 0.0F, 0U);
    EXPECT_EQ(autoOut.expSets[AECAlgoExposureSafe].exposureTime, out.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_FLOAT_EQ(autoOut.expSets[AECAlgoExposureSafe].linearGain, out.expSets[AECAlgoExposureSafe].linearGain);
}

} // namespace
