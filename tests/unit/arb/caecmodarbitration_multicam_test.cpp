// Tests of multi-camera exposure sync: publishing, mapping the peer's sensitivity, targets and the time match.
#include <cmath>

#include "unit/arb/arbtestsupport.h"

namespace
{

constexpr DOUBLE K = 77.89852905273438;

// A module with the default tuning (relative exchange, multiplier 1, no time match) and a peer camera.
class ArbMultiCamTest : public ArbitrationTest
{
protected:
    VOID SetUp() override
    {
        ArbitrationTest::SetUp();
        m_pModule = std::make_unique<CAECModArbitration>(&m_context, &m_callback);
        CAECModArbitrationTestPeer::Tuning(*m_pModule)           = &m_pTuning->arbTuningData;
        CAECModArbitrationTestPeer::TableZeroTuned(*m_pModule)   = TRUE;
        CAECModArbitrationTestPeer::TableIDStreaming(*m_pModule) = 0;
        CAECModArbitrationTestPeer::TableIDStill(*m_pModule)     = 0;
        m_hasPeer = TRUE;
    }

    aecSync::AECExposureSyncConfigType& Sync() { return Modules().modMultiCamSync->expSyncConfig; }

    VOID Map(const AECMultiCamExpInfo& rPeer, INT32 CCT, FLOAT lux, FLOAT* pOut)
    {
        CAECModArbitrationTestPeer::MapSensitivityInMultiCam(*m_pModule, rPeer, CCT, lux, pOut);
    }
    VOID Publish(const AECAlgoExposureData* pSets, FLOAT lux, AECMultiCamExpInfo& rOut)
    {
        CAECModArbitrationTestPeer::UpdateSensitivityForMultiCam(*m_pModule, pSets, lux, rOut);
    }
    VOID SyncTimes(ArbitrationOutput* pOutput)
    {
        CAECModArbitrationTestPeer::SyncUpExposureTimeForMultiCam(*m_pModule, pOutput);
    }
    VOID CCTComp(INT32 CCT, FLOAT* pSens)
    {
        CAECModArbitrationTestPeer::ApplyCCTBasedCompensationFactor(*m_pModule, CCT, pSens);
    }

    // Peer values of the three exposures, short, long, safe.
    static AECMultiCamExpInfo PeerInfo(BOOL relative, FLOAT shortSens, FLOAT longSens, FLOAT safeSens)
    {
        AECMultiCamExpInfo info                               = {};
        info.relativeSensEnable                               = relative;
        info.sensitivityTotalOrRatio[AECAlgoExposureShort]    = shortSens;
        info.sensitivityTotalOrRatio[AECAlgoExposureLong]     = longSens;
        info.sensitivityTotalOrRatio[AECAlgoExposureSafe]     = safeSens;
        return info;
    }

    // Index of sensitivity s in default table 0 (first knee: gain 1, 10040 ns, index 0).
    static FLOAT IndexInTableZero(FLOAT s)
    {
        return static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(s / (1.0F * 1.0F * 10040.0F))) * K) + 0.0F;
    }

    // All three sets with one time and gain.
    static VOID FillOutput(ArbitrationOutput* pOutput, UINT64 time, FLOAT gain)
    {
        for (AECAlgoExposureData& rSet : pOutput->expSets)
        {
            rSet.exposureTime = time;
            rSet.linearGain   = gain;
            rSet.sensitivity  = gain * static_cast<FLOAT>(time);
        }
    }

    VOID SetPeerTimes(UINT64 time)
    {
        for (UINT64& rTime : m_peer.exposureInfo.exposureTime)
        {
            rTime = time;
        }
    }

    RecordingArbitrationCallback        m_callback;
    std::unique_ptr<CAECModArbitration> m_pModule;
};

// ---- Target indices ----

TEST_F(ArbMultiCamTest, TargetWithoutPeerLeavesTheTargets)
{
    m_hasPeer = FALSE;
    FLOAT targets[AECAlgoExposureCount] = {11.0F, 22.0F, 33.0F};
    EXPECT_EQ(AecError, m_pModule->ComputeTargetIndexInMultiCam(200.0F, targets));
    EXPECT_TRUE(ArbLogContains("No peer information available for multi cam"));
    EXPECT_FLOAT_EQ(11.0F, targets[0]);
    EXPECT_FLOAT_EQ(22.0F, targets[1]);
    EXPECT_FLOAT_EQ(33.0F, targets[2]);
}

TEST_F(ArbMultiCamTest, TargetWithPeerIsThePeersSensitivityInThisCamerasTable)
{
    m_peer.exposureInfo = PeerInfo(TRUE, 20080.0F, 80320.0F, 40160.0F);
    Sync().expCompMultiplier = 2.0F;
    FLOAT targets[AECAlgoExposureCount] = {};
    ASSERT_EQ(AecSuccess, m_pModule->ComputeTargetIndexInMultiCam(200.0F, targets));
    EXPECT_FLOAT_EQ(IndexInTableZero(40160.0F), targets[AECAlgoExposureShort]);
    EXPECT_FLOAT_EQ(IndexInTableZero(160640.0F), targets[AECAlgoExposureLong]);
    EXPECT_FLOAT_EQ(IndexInTableZero(80320.0F), targets[AECAlgoExposureSafe]);
    EXPECT_NEAR(2.0F * 23.449795F, targets[AECAlgoExposureShort], 1e-3F);
    EXPECT_TRUE(ArbLogContains("OpMode:"));
    EXPECT_TRUE(ArbLogContains("TargetIndex, Short:"));
}

TEST_F(ArbMultiCamTest, PeerAbsoluteWithOwnRelativeTuningLeavesTheTargets)
{
    m_peer.exposureInfo = PeerInfo(FALSE, 1.0F, 2.0F, 1.5F);
    FLOAT targets[AECAlgoExposureCount] = {11.0F, 22.0F, 33.0F};
    EXPECT_NE(AecSuccess, m_pModule->ComputeTargetIndexInMultiCam(200.0F, targets));
    EXPECT_TRUE(ArbLogContains("Sensitivity type: Tuning:1, Other cam:0, differs. All cameras must use same type"));
    EXPECT_FLOAT_EQ(11.0F, targets[0]);
    EXPECT_FLOAT_EQ(22.0F, targets[1]);
    EXPECT_FLOAT_EQ(33.0F, targets[2]);
}

// ---- Mapping ----

TEST_F(ArbMultiCamTest, MappingOfDifferentSensitivityTypesGivesNoOutput)
{
    const AECMultiCamExpInfo peer = PeerInfo(FALSE, 1.0F, 2.0F, 1.5F);
    FLOAT out[AECAlgoExposureCount] = {-1.0F, -1.0F, -1.0F};
    Map(peer, 5000, 200.0F, out);
    for (FLOAT value : out)
    {
        EXPECT_FLOAT_EQ(-1.0F, value);
    }
    EXPECT_FALSE(ArbLogContains("Final adjusted sens"));
}

TEST_F(ArbMultiCamTest, RelativeMappingScalesByTheTunedMultiplier)
{
    Sync().expCompMultiplier = 3.0F;
    const AECMultiCamExpInfo peer = PeerInfo(TRUE, 100.0F, 400.0F, 200.0F);
    FLOAT out[AECAlgoExposureCount] = {};
    Map(peer, 5000, 200.0F, out);
    EXPECT_FLOAT_EQ(300.0F, out[AECAlgoExposureShort]);
    EXPECT_FLOAT_EQ(1200.0F, out[AECAlgoExposureLong]);
    EXPECT_FLOAT_EQ(600.0F, out[AECAlgoExposureSafe]);
    EXPECT_TRUE(ArbLogContains("Comp multiplier, Tuning:3.000000, OTP Status:0, Factor:3.000000"));
    EXPECT_TRUE(ArbLogContains("Final adjusted sens, Short:300.000, Safe:600.000, Long:1200.000"));
}

TEST_F(ArbMultiCamTest, OTPMultiplierReplacesTheTunedOne)
{
    Sync().expCompMultiplier           = 3.0F;
    m_calibration.OTPStatus            = AECAlgoDualcamOTPSet;
    m_calibration.OTPExpCompMultiplier = 0.5F;
    const AECMultiCamExpInfo peer = PeerInfo(TRUE, 100.0F, 400.0F, 200.0F);
    FLOAT out[AECAlgoExposureCount] = {};
    Map(peer, 5000, 200.0F, out);
    EXPECT_FLOAT_EQ(50.0F, out[AECAlgoExposureShort]);
    EXPECT_FLOAT_EQ(200.0F, out[AECAlgoExposureLong]);
    EXPECT_FLOAT_EQ(100.0F, out[AECAlgoExposureSafe]);
    EXPECT_TRUE(ArbLogContains("OTP Status:1, Factor:0.500000"));
}

TEST_F(ArbMultiCamTest, OTPMultiplierTakenFromThePeerAlsoReplacesTheTunedOne)
{
    m_calibration.OTPStatus            = AECAlgoDualcamOTPSetUsingPeer;
    m_calibration.OTPExpCompMultiplier = 4.0F;
    const AECMultiCamExpInfo peer = PeerInfo(TRUE, 100.0F, 100.0F, 100.0F);
    FLOAT out[AECAlgoExposureCount] = {};
    Map(peer, 5000, 200.0F, out);
    EXPECT_FLOAT_EQ(400.0F, out[AECAlgoExposureSafe]);
}

TEST_F(ArbMultiCamTest, AbsoluteMappingUsesTheLuxInterpolatedOwnReference)
{
    Sync().enableRelSensitivity = FALSE;
    Sync().expCompMultiplier    = 3.0F; // not used by the absolute exchange
    const AECMultiCamExpInfo peer = PeerInfo(FALSE, 0.5F, 2.0F, 1.0F);
    FLOAT out[AECAlgoExposureCount] = {};

    // Lux 125 lies half-way in the gap between the zones ending at 100 (44000) and starting at 150 (3700000).
    Map(peer, 5000, 125.0F, out);
    const FLOAT ref = std::fmaf(0.5F, 3700000.0F - 44000.0F, 44000.0F);
    EXPECT_FLOAT_EQ(0.5F * ref, out[AECAlgoExposureShort]);
    EXPECT_FLOAT_EQ(2.0F * ref, out[AECAlgoExposureLong]);
    EXPECT_FLOAT_EQ(ref, out[AECAlgoExposureSafe]);

    // Inside a zone: that zone's reference.
    Map(peer, 5000, 50.0F, out);
    EXPECT_FLOAT_EQ(44000.0F, out[AECAlgoExposureSafe]);
    Map(peer, 5000, 400.0F, out);
    EXPECT_FLOAT_EQ(650000000.0F, out[AECAlgoExposureSafe]);
}

TEST_F(ArbMultiCamTest, AbsoluteMappingWithoutReferenceGivesNoOutput)
{
    Sync().enableRelSensitivity   = FALSE;
    Sync().refAbsSensitivityCount = 0U;
    const AECMultiCamExpInfo peer = PeerInfo(FALSE, 0.5F, 2.0F, 1.0F);
    FLOAT out[AECAlgoExposureCount] = {-1.0F, -1.0F, -1.0F};
    Map(peer, 5000, 125.0F, out);
    EXPECT_FLOAT_EQ(-1.0F, out[AECAlgoExposureSafe]);
    EXPECT_TRUE(ArbLogContains("no reference sensitivity for lux index"));
}

TEST_F(ArbMultiCamTest, AbsoluteTargetIsThePeerRatioTimesOwnReferenceInThisCamerasTable)
{
    Sync().enableRelSensitivity = FALSE;
    m_peer.exposureInfo         = PeerInfo(FALSE, 0.5F, 2.0F, 1.0F);
    FLOAT targets[AECAlgoExposureCount] = {};
    ASSERT_EQ(AecSuccess, m_pModule->ComputeTargetIndexInMultiCam(50.0F, targets));
    EXPECT_FLOAT_EQ(IndexInTableZero(44000.0F), targets[AECAlgoExposureSafe]);
    EXPECT_FLOAT_EQ(IndexInTableZero(22000.0F), targets[AECAlgoExposureShort]);
}

TEST_F(ArbMultiCamTest, MappingWithoutSyncTuningGivesNoOutput)
{
    m_pTuning->arbTuningData.pExpSyncConfig = nullptr;
    const AECMultiCamExpInfo peer = PeerInfo(TRUE, 100.0F, 100.0F, 100.0F);
    FLOAT out[AECAlgoExposureCount] = {-1.0F, -1.0F, -1.0F};
    Map(peer, 5000, 200.0F, out);
    EXPECT_FLOAT_EQ(-1.0F, out[AECAlgoExposureSafe]);
    EXPECT_TRUE(ArbLogContains("cannot map peer sensitivity"));
}

// ---- CCT compensation ----

TEST_F(ArbMultiCamTest, CCTFactorZeroCountsAsUnity)
{
    aecSync::MultiCamCCTExpCompType zones[] = {{{2000.0F, 3000.0F}, 0.0F}, {{5000.0F, 7500.0F}, 0.0F}};
    Sync().CCTBasedExpComp      = zones;
    Sync().CCTBasedExpCompCount = 2U;
    FLOAT sens[AECAlgoExposureCount] = {100.0F, 200.0F, 300.0F};
    CCTComp(6000, sens);
    EXPECT_FLOAT_EQ(100.0F, sens[0]);
    EXPECT_FLOAT_EQ(200.0F, sens[1]);
    EXPECT_FLOAT_EQ(300.0F, sens[2]);
    EXPECT_TRUE(ArbLogContains("CCT based compensation factor is 0.000000, safer side use unity"));
}

TEST_F(ArbMultiCamTest, CCTFactorScalesAllThreeAndBlendsBetweenZones)
{
    aecSync::MultiCamCCTExpCompType zones[] = {{{2000.0F, 3000.0F}, 1.0F}, {{5000.0F, 7500.0F}, 2.0F}};
    Sync().CCTBasedExpComp      = zones;
    Sync().CCTBasedExpCompCount = 2U;

    FLOAT sens[AECAlgoExposureCount] = {100.0F, 200.0F, 300.0F};
    CCTComp(6000, sens);
    EXPECT_FLOAT_EQ(200.0F, sens[0]);
    EXPECT_FLOAT_EQ(400.0F, sens[1]);
    EXPECT_FLOAT_EQ(600.0F, sens[2]);
    EXPECT_TRUE(ArbLogContains("CCT based compensation factor is 2.0000 for CCT 6000. Max CCT Count 2"));

    FLOAT mid[AECAlgoExposureCount] = {100.0F, 100.0F, 100.0F};
    CCTComp(4000, mid);
    EXPECT_FLOAT_EQ(150.0F, mid[AECAlgoExposureSafe]);
}

TEST_F(ArbMultiCamTest, MappingAppliesTheCCTFactorOfThePeersCCT)
{
    aecSync::MultiCamCCTExpCompType zones[] = {{{2000.0F, 3000.0F}, 1.0F}, {{5000.0F, 7500.0F}, 1.25F}};
    Sync().CCTBasedExpComp      = zones;
    Sync().CCTBasedExpCompCount = 2U;
    m_peer.exposureInfo = PeerInfo(TRUE, 100.0F, 100.0F, 100.0F);
    FLOAT out[AECAlgoExposureCount] = {};
    Map(m_peer.exposureInfo, 2500, 200.0F, out);
    EXPECT_FLOAT_EQ(100.0F, out[AECAlgoExposureSafe]);
    Map(m_peer.exposureInfo, 6500, 200.0F, out);
    EXPECT_FLOAT_EQ(125.0F, out[AECAlgoExposureSafe]);
}

TEST_F(ArbMultiCamTest, CCTCompensationWithoutZonesIsUnity)
{
    Sync().CCTBasedExpCompCount = 0U;
    FLOAT sens[AECAlgoExposureCount] = {100.0F, 200.0F, 300.0F};
    CCTComp(6000, sens);
    EXPECT_FLOAT_EQ(300.0F, sens[2]);
    EXPECT_TRUE(ArbLogContains("safer side use unity"));
}

// ---- Publishing ----

TEST_F(ArbMultiCamTest, RelativePublishingCopiesSensitivitiesAndTimes)
{
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        sets[i].sensitivity  = 1000.0F * static_cast<FLOAT>(i + 1U);
        sets[i].exposureTime = 1000000U * (i + 1U);
    }
    AECMultiCamExpInfo out = {};
    Publish(sets, 200.0F, out);
    EXPECT_EQ(TRUE, out.relativeSensEnable);
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        EXPECT_FLOAT_EQ(sets[i].sensitivity, out.sensitivityTotalOrRatio[i]);
        EXPECT_EQ(sets[i].exposureTime, out.exposureTime[i]);
    }
    EXPECT_TRUE(ArbLogContains("RelativeEn=1, Total/Rel sens, Short:1000.000, Safe:3000.000, Long:2000.000"));
}

TEST_F(ArbMultiCamTest, AbsolutePublishingDividesByTheOwnReference)
{
    Sync().enableRelSensitivity = FALSE;
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    sets[AECAlgoExposureSafe].sensitivity  = 88000.0F;
    sets[AECAlgoExposureSafe].exposureTime = 5000000U;
    AECMultiCamExpInfo out = {};
    out.relativeSensEnable = TRUE;
    Publish(sets, 50.0F, out);
    EXPECT_EQ(FALSE, out.relativeSensEnable);
    EXPECT_FLOAT_EQ(2.0F, out.sensitivityTotalOrRatio[AECAlgoExposureSafe]);
    EXPECT_EQ(5000000U, out.exposureTime[AECAlgoExposureSafe]);
}

TEST_F(ArbMultiCamTest, PublishedAbsoluteValuesMapBackToTheSameSensitivityOnAnIdenticalPeer)
{
    Sync().enableRelSensitivity = FALSE;
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    for (AECAlgoExposureData& rSet : sets)
    {
        rSet.sensitivity = 123456.0F;
    }
    AECMultiCamExpInfo published = {};
    Publish(sets, 125.0F, published);
    FLOAT mapped[AECAlgoExposureCount] = {};
    Map(published, 5000, 125.0F, mapped);
    EXPECT_FLOAT_EQ(123456.0F, mapped[AECAlgoExposureSafe]);
}

TEST_F(ArbMultiCamTest, AbsolutePublishingWithoutReferencePublishesZero)
{
    Sync().enableRelSensitivity   = FALSE;
    Sync().refAbsSensitivityCount = 0U;
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    sets[AECAlgoExposureSafe].sensitivity  = 88000.0F;
    sets[AECAlgoExposureSafe].exposureTime = 5000000U;
    AECMultiCamExpInfo out = {};
    Publish(sets, 50.0F, out);
    EXPECT_FLOAT_EQ(0.0F, out.sensitivityTotalOrRatio[AECAlgoExposureSafe]);
    EXPECT_EQ(5000000U, out.exposureTime[AECAlgoExposureSafe]);
}

TEST_F(ArbMultiCamTest, PublishingWithoutSyncTuningLeavesTheRecord)
{
    m_pTuning->arbTuningData.pExpSyncConfig = nullptr;
    AECAlgoExposureData sets[AECAlgoExposureCount] = {};
    sets[AECAlgoExposureSafe].sensitivity = 88000.0F;
    AECMultiCamExpInfo out = {};
    out.sensitivityTotalOrRatio[AECAlgoExposureSafe] = 7.0F;
    Publish(sets, 50.0F, out);
    EXPECT_FLOAT_EQ(7.0F, out.sensitivityTotalOrRatio[AECAlgoExposureSafe]);
}

// ---- Exposure time match ----

TEST_F(ArbMultiCamTest, BothCamerasAtTheTopRateKeepIndependentTimes)
{
    Sync().enableExposureTimeMatch = TRUE;
    ArbitrationOutput output = {};
    FillOutput(&output, 10000000U, 2.0F);
    SetPeerTimes(20000000U);
    SyncTimes(&output);
    for (const AECAlgoExposureData& rSet : output.expSets)
    {
        EXPECT_EQ(10000000U, rSet.exposureTime);
        EXPECT_FLOAT_EQ(2.0F, rSet.linearGain);
    }
}

TEST_F(ArbMultiCamTest, WithoutTimeMatchTimesStayIndependent)
{
    ArbitrationOutput output = {};
    FillOutput(&output, 10000000U, 2.0F);
    SetPeerTimes(100000000U);
    SyncTimes(&output);
    EXPECT_EQ(10000000U, output.expSets[AECAlgoExposureSafe].exposureTime);
}

TEST_F(ArbMultiCamTest, ASlowPeerGivesItsTimeAndGainCarriesTheExposure)
{
    Sync().enableExposureTimeMatch = TRUE;
    ArbitrationOutput output = {};
    FillOutput(&output, 40000000U, 2.0F);
    SetPeerTimes(50000000U);
    SyncTimes(&output);
    for (const AECAlgoExposureData& rSet : output.expSets)
    {
        EXPECT_EQ(50000000U, rSet.exposureTime);
        EXPECT_FLOAT_EQ(40000000.0F / 50000000.0F * 2.0F, rSet.linearGain);
    }
    EXPECT_TRUE(ArbLogContains("adjusting Old ET 40000000 New ET 50000000"));
}

TEST_F(ArbMultiCamTest, ASlowOwnCameraTakesTheFasterPeersTime)
{
    Sync().enableExposureTimeMatch = TRUE;
    ArbitrationOutput output = {};
    FillOutput(&output, 50000000U, 1.0F);
    SetPeerTimes(25000000U);
    SyncTimes(&output);
    EXPECT_EQ(25000000U, output.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_FLOAT_EQ(2.0F, output.expSets[AECAlgoExposureSafe].linearGain);
}

TEST_F(ArbMultiCamTest, AMuchLongerPeerTakesGainToUnityThenShortensTime)
{
    Sync().enableExposureTimeMatch = TRUE;
    ArbitrationOutput output = {};
    FillOutput(&output, 10000000U, 2.0F);
    SetPeerTimes(100000000U);
    SyncTimes(&output);
    const FLOAT  g        = 10000000.0F / 100000000.0F * 2.0F;
    const UINT64 expected = static_cast<UINT64>(100000000.0F * g);
    for (const AECAlgoExposureData& rSet : output.expSets)
    {
        EXPECT_FLOAT_EQ(1.0F, rSet.linearGain);
        EXPECT_EQ(expected, rSet.exposureTime);
        EXPECT_NEAR(20000000.0, static_cast<DOUBLE>(rSet.exposureTime), 2.0);
    }
    EXPECT_TRUE(ArbLogContains("warning: newGain 0.200000 is < 1 cannot set exposure to 100000000"));
}

TEST_F(ArbMultiCamTest, TimeMatchMatchesEachExposureWithThePeersOwn)
{
    Sync().enableExposureTimeMatch = TRUE;
    ArbitrationOutput output = {};
    FillOutput(&output, 40000000U, 4.0F);
    m_peer.exposureInfo.exposureTime[AECAlgoExposureShort] = 40000000U;
    m_peer.exposureInfo.exposureTime[AECAlgoExposureLong]  = 80000000U;
    m_peer.exposureInfo.exposureTime[AECAlgoExposureSafe]  = 20000000U;
    SyncTimes(&output);
    EXPECT_EQ(40000000U, output.expSets[AECAlgoExposureShort].exposureTime);
    EXPECT_FLOAT_EQ(4.0F, output.expSets[AECAlgoExposureShort].linearGain);
    EXPECT_EQ(80000000U, output.expSets[AECAlgoExposureLong].exposureTime);
    EXPECT_FLOAT_EQ(2.0F, output.expSets[AECAlgoExposureLong].linearGain);
    EXPECT_EQ(20000000U, output.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_FLOAT_EQ(8.0F, output.expSets[AECAlgoExposureSafe].linearGain);
}

TEST_F(ArbMultiCamTest, TimeMatchWithAPeerTimeOfZeroKeepsTheOwnTime)
{
    Sync().enableExposureTimeMatch = TRUE;
    ArbitrationOutput output = {};
    FillOutput(&output, 50000000U, 2.0F);
    SetPeerTimes(0U);
    SyncTimes(&output);
    EXPECT_EQ(50000000U, output.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_FLOAT_EQ(2.0F, output.expSets[AECAlgoExposureSafe].linearGain);
    EXPECT_TRUE(ArbLogContains("peer exposure time 0, own time kept"));
}

TEST_F(ArbMultiCamTest, TimeMatchWithoutPeerChangesNothing)
{
    Sync().enableExposureTimeMatch = TRUE;
    m_hasPeer = FALSE;
    ArbitrationOutput output = {};
    FillOutput(&output, 50000000U, 2.0F);
    SyncTimes(&output);
    EXPECT_EQ(50000000U, output.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_TRUE(ArbLogContains("exposure time match without peer"));
}

} // namespace
