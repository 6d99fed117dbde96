// Unit tests of an arbitrator's session limit: setters, manual modes, sensor limits, EV capping, iris and decay pinning.
#include <cmath>
#include <vector>

#include "unit/arb/arbtestsupport.h"
#include "unit/arb/exptabletestsupport.h"

namespace
{

// Both ends of a range are value: the quantity is fixed.
template <typename RangeT, typename ValueT>
void ExpectFixed(ValueT value, const RangeT& rRange)
{
    EXPECT_EQ(value, rRange.min);
    EXPECT_EQ(value, rRange.max);
}

// The default table 0: first and last knee.
constexpr UINT64 TableMinTime  = 10040U;
constexpr UINT64 TableMaxTime  = 82931727U;
constexpr FLOAT  TableMaxGain  = 60.0F;
constexpr FLOAT  TableMaxIndex = 443.642487F;

class ArbLimitsTest : public ArbitrationTest
{
protected:
    // An arbitrator on table 0 whose frame rate allows the whole table.
    std::unique_ptr<CArbitrator> MakeOpenArbitrator(BOOL withSensorLimits = TRUE)
    {
        std::unique_ptr<CArbitrator> pArb = MakeArbitrator(0, withSensorLimits);
        pArb->SetParamFPSRange(1.0F);
        return pArb;
    }

    // An arbitrator on a custom table that opens the iris from f/4 to f/2 before time grows.
    std::unique_ptr<CArbitrator> MakeIrisArbitrator()
    {
        m_customTable.expTable = *m_irisTable.Get();
        m_customTable.isValid  = TRUE;
        std::unique_ptr<CArbitrator> pArb = MakeArbitrator(CustomExposureTableID, TRUE);
        pArb->SetParamFPSRange(1.0F);
        return pArb;
    }

    ExposureLimitationType SetManual(CArbitrator& rArb, AECAlgoModeType mode, FLOAT gain, UINT64 time,
                                     UINT64 maxTime, FLOAT fnumber)
    {
        ArbManualSetting manual      = {};
        manual.manualMode            = mode;
        manual.manualGain            = gain;
        manual.manualExpTime         = time;
        manual.manualMaxExposureTime = maxTime;
        manual.manualFnumber         = fnumber;
        return rArb.SetManualSetting(&manual);
    }

    // Gives the arbitrator a lens with an iris and a calibration of it.
    VOID GiveIris(CArbitrator& rArb, TestIrisTable& rIris)
    {
        rArb.SetIrisTable(rIris.Data());
        LDMLensCap lensCap = {};
        lensCap.PIris      = TRUE;
        rArb.SetLensCap(lensCap);
    }

    ArbTable      m_irisTable{IrisTableKnees()};
    TestIrisTable m_iris{{0, 100}, {{2.0F, 2.8F, 4.0F}, {2.0F, 2.8F, 4.0F}}};
};

} // namespace

TEST_F(ArbLimitsTest, InitializeReturnsToTheSessionStart)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    SetManual(*pArb, AECAlgoModeManualISO, 4.0F, 0U, 0U, 0.0F);
    pArb->SetParamEV(1.0F, FALSE);
    CArbitratorTestPeer::FnLimits(*pArb)            = 2.0F;
    CArbitratorTestPeer::ZoomStep(*pArb)            = 40U;
    CArbitratorTestPeer::IsShdrActived(*pArb)       = TRUE;
    CArbitratorTestPeer::MotorDecay(*pArb).tarFn    = 3.0F;
    CArbitratorTestPeer::Gyro(*pArb).bufferCounter  = 12;
    CArbitratorTestPeer::IrisTable(*pArb)           = m_iris.Data();

    pArb->Initialize();

    const ArbitrationSessionInfoType& rSession = CArbitratorTestPeer::Session(*pArb);
    EXPECT_EQ(0.0F, rSession.EV);
    EXPECT_EQ(AECAlgoModeAuto, rSession.manualSettings.manualMode);
    EXPECT_EQ(0, pArb->GetTableID());
    EXPECT_EQ(0.0F, rSession.arbExpLimit.expIndex.min);
    EXPECT_EQ(0.0F, rSession.arbExpLimit.expIndex.max);
    EXPECT_EQ(1.0F, rSession.arbExpLimit.gain.min);
    EXPECT_EQ(1.0F, rSession.arbExpLimit.gain.max);
    EXPECT_EQ(0U, rSession.arbExpLimit.expTime.min);
    EXPECT_EQ(0U, rSession.arbExpLimit.expTime.max);
    EXPECT_EQ(nullptr, CArbitratorTestPeer::SensorLimit(*pArb));
    EXPECT_EQ(0, CArbitratorTestPeer::Gyro(*pArb).bufferCounter);
    EXPECT_EQ(0U, CArbitratorTestPeer::ZoomStep(*pArb));
    EXPECT_EQ(0, CArbitratorTestPeer::IsShdrActived(*pArb));
    EXPECT_EQ(nullptr, CArbitratorTestPeer::IrisTable(*pArb).zoomTable);
    EXPECT_EQ(nullptr, CArbitratorTestPeer::IrisTable(*pArb).irisFnTable);
    EXPECT_EQ(nullptr, CArbitratorTestPeer::IrisTable(*pArb).irisStepTable);
    EXPECT_EQ(0.0F, CArbitratorTestPeer::MotorDecay(*pArb).tarFn);
    EXPECT_EQ(0.0F, CArbitratorTestPeer::FnLimits(*pArb));
}

TEST_F(ArbLimitsTest, SensitivityCorrectionIsZeroBeforeATableIsAdopted)
{
    CArbitrator arb(&m_context);
    arb.Initialize();
    EXPECT_EQ(0.0F, arb.GetSensitivityCorrection());
    EXPECT_EQ(0, arb.GetTableID());
}

TEST_F(ArbLimitsTest, SetExpTableAdoptsTheTableAndHandsOnItsSensitivityScale)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator(0, FALSE);
    FLOAT                        sensitivity = 0.0F;
    pArb->SetExpTable(1, &sensitivity);

    // 10040 ns x gain 1 x correction 2 at index 0.
    EXPECT_FLOAT_EQ(20080.0F, sensitivity);
    EXPECT_EQ(1, pArb->GetTableID());
    EXPECT_EQ(2.0F, pArb->GetSensitivityCorrection());
    EXPECT_FLOAT_EQ(0.95F, CArbitratorTestPeer::Session(*pArb).thresAntiBandingMinExpTimePct);
    EXPECT_EQ(&ArbCore()->expTables[1], pArb->GetExpTable()->GetExpTable(RawTable));
    EXPECT_TRUE(ArbLogContains("Set Exposure table with Table ID 1"));
}

TEST_F(ArbLimitsTest, SetExpTableFallsBackOnTableZeroForAnUnknownID)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator(1, FALSE);
    FLOAT                        sensitivity = 0.0F;

    pArb->SetExpTable(2, &sensitivity);
    EXPECT_EQ(0, pArb->GetTableID());
    EXPECT_EQ(&ArbCore()->expTables[0], pArb->GetExpTable()->GetExpTable(RawTable));
    EXPECT_FLOAT_EQ(10040.0F, sensitivity);
    EXPECT_TRUE(ArbLogContains("Set Exposure table with Table ID 0"));

    pArb->SetExpTable(1, &sensitivity);
    pArb->SetExpTable(-3, &sensitivity);
    EXPECT_EQ(0, pArb->GetTableID());

    // The custom table ID means table 0 while no valid custom table exists.
    pArb->SetExpTable(1, &sensitivity);
    pArb->SetExpTable(CustomExposureTableID, &sensitivity);
    EXPECT_EQ(0, pArb->GetTableID());
    EXPECT_EQ(&ArbCore()->expTables[0], pArb->GetExpTable()->GetExpTable(RawTable));
}

TEST_F(ArbLimitsTest, SetExpTableTakesAValidCustomTable)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    EXPECT_EQ(CustomExposureTableID, pArb->GetTableID());
    EXPECT_EQ(&m_customTable.expTable, pArb->GetExpTable()->GetExpTable(RawTable));
    EXPECT_TRUE(ArbLogContains("Set Exposure table with Table ID 100"));
}

TEST_F(ArbLimitsTest, SetExpTableWithoutASensitivityPointerStillAdoptsTheTable)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator(0, FALSE);
    pArb->SetExpTable(1, nullptr);
    EXPECT_EQ(1, pArb->GetTableID());
    EXPECT_EQ(2.0F, pArb->GetSensitivityCorrection());
}

TEST_F(ArbLimitsTest, FPSRangeLimitsTimeToTheFrameLessTheBlanking)
{
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator(0, TRUE);
    const ExposureLimitationType limit = pArb->SetParamFPSRange(30.0F);

    // trunc(1e9 / 30) - 200800; the limit is the table's knee at that time, up to the lookup's float rounding.
    EXPECT_NEAR(33132533.0, static_cast<double>(limit.expTime.max), 100.0);
    EXPECT_EQ(30.0F, CArbitratorTestPeer::Session(*pArb).minFPS);
    EXPECT_TRUE(ArbLogContains("Exposure Table ID 0 : Update table using FPS Range 33132533"));
}

TEST_F(ArbLimitsTest, FPSRangeKeepsTheFrameTimeWhenTheBlankingIsNotSmaller)
{
    ArbCore()->minPreviewVertBlankTime = 2000000000U;
    std::unique_ptr<CArbitrator> pArb = MakeArbitrator(0, TRUE);
    pArb->SetParamFPSRange(20.0F);
    EXPECT_TRUE(ArbLogContains("Exposure Table ID 0 : Update table using FPS Range 50000000"));
    EXPECT_NEAR(50000000.0, static_cast<double>(pArb->GetLimitation().expTime.max), 100.0);
}

TEST_F(ArbLimitsTest, FPSRangeOfZeroIsRefusedAndKeepsTheLimit)
{
    std::unique_ptr<CArbitrator> pArb   = MakeOpenArbitrator();
    const ExposureLimitationType before = pArb->GetLimitation();
    const ExposureLimitationType after  = pArb->SetParamFPSRange(0.0F);
    EXPECT_EQ(before.expTime.max, after.expTime.max);
    EXPECT_EQ(1.0F, CArbitratorTestPeer::Session(*pArb).minFPS);
    EXPECT_TRUE(ArbLogContains("minimum FPS 0.000000 is not positive"));
}

TEST_F(ArbLimitsTest, OpenFrameRateGivesTheTableRangeWithinTheSensor)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = pArb->GetLimitation();
    EXPECT_EQ(TableMinTime, limit.expTime.min);
    EXPECT_EQ(TableMaxTime, limit.expTime.max);
    EXPECT_EQ(1.0F, limit.gain.min);
    EXPECT_EQ(TableMaxGain, limit.gain.max);
    ExpectFixed(1.0F, limit.fnumber);
    EXPECT_NEAR(0.0F, limit.expIndex.min, 1e-3F);
    EXPECT_NEAR(TableMaxIndex, limit.expIndex.max, 1e-3F);
    EXPECT_EQ(m_sensorLimits.SEFexpTime.max, limit.SEFexpTime.max);
    EXPECT_EQ(m_sensorLimits.MEFexpTime.min, limit.MEFexpTime.min);
    EXPECT_EQ(m_sensorLimits.LEFexpTime.max, limit.LEFexpTime.max);
}

TEST_F(ArbLimitsTest, WithoutSensorLimitsTheLimitIsTheTables)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator(FALSE);
    const ExposureLimitationType table = pArb->GetExpTable()->GetLimitation();
    const ExposureLimitationType limit = pArb->GetLimitation();
    EXPECT_EQ(table.expTime.min, limit.expTime.min);
    EXPECT_EQ(table.expTime.max, limit.expTime.max);
    EXPECT_EQ(table.gain.max, limit.gain.max);
    EXPECT_EQ(0U, limit.SEFexpTime.max);
}

TEST_F(ArbLimitsTest, FlickerModeSetsTheHalfPeriodOfTheMains)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    EXPECT_EQ(10000000U, CArbitratorTestPeer::Session(*pArb).flickerHalfPeriod);
    pArb->SetFlcikerMode(StatisticsAntibanding60Hz);
    EXPECT_EQ(8333333U, CArbitratorTestPeer::Session(*pArb).flickerHalfPeriod);

    // Other modes leave the period as it was.
    pArb->SetFlcikerMode(StatisticsAntibandingAuto);
    EXPECT_EQ(StatisticsAntibandingAuto, CArbitratorTestPeer::Session(*pArb).flickerMode);
    EXPECT_EQ(8333333U, CArbitratorTestPeer::Session(*pArb).flickerHalfPeriod);
    pArb->SetFlcikerMode(StatisticsAntibandingOff);
    EXPECT_EQ(StatisticsAntibandingOff, CArbitratorTestPeer::Session(*pArb).flickerMode);
    EXPECT_EQ(8333333U, CArbitratorTestPeer::Session(*pArb).flickerHalfPeriod);
}

TEST_F(ArbLimitsTest, MinIndexForAntibandingIsOneHalfPeriodWithAMainsMode)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    const FLOAT                  limitMin = pArb->GetLimitation().expIndex.min;

    pArb->SetFlcikerMode(StatisticsAntibandingOff);
    EXPECT_EQ(limitMin, pArb->GetMinExpIdxForATB());
    pArb->SetFlcikerMode(StatisticsAntibandingAuto);
    EXPECT_EQ(limitMin, pArb->GetMinExpIdxForATB());

    pArb->SetFlcikerMode(StatisticsAntibanding50Hz);
    const FLOAT at50Hz = pArb->GetExpTable()->GetMinExpIndexFromExpTime(10000000U);
    EXPECT_EQ(at50Hz, pArb->GetMinExpIdxForATB());
    EXPECT_GT(at50Hz, limitMin + 100.0F);

    // A resolved auto state uses the half period the caller set before.
    pArb->SetFlcikerMode(StatisticsAntibandingAuto_60HZ);
    EXPECT_EQ(at50Hz, pArb->GetMinExpIdxForATB());
}

TEST_F(ArbLimitsTest, LimitIndexRangeFollowsThePhysicalLimitsAgainstTheFirstKnee)
{
    std::unique_ptr<CArbitrator>     pArb = MakeOpenArbitrator();
    aecArbitration::ExposureKneeType knee = {};
    knee.gain     = 2.0F;
    knee.expTime  = 1000000U;
    knee.fnumber  = 2.0F;
    knee.expIndex = 10.0F;

    ExposureLimitationType limit = {};
    limit.expTime = {500000U, 40000000U};
    limit.gain    = {1.0F, 16.0F};
    limit.fnumber = {2.0F, 4.0F};
    CArbitratorTestPeer::UtilCalculateLimitationExpIndex(*pArb, limit, knee);

    const FLOAT kneeSens = 1000000.0F * 2.0F * (1.0F / 4.0F);
    const FLOAT minSens  = 500000.0F * 1.0F * (1.0F / 16.0F);
    const FLOAT maxSens  = 40000000.0F * 16.0F * (1.0F / 4.0F);
    EXPECT_EQ(std::fma(std::log10(minSens) - std::log10(kneeSens), 77.89853F, 10.0F), limit.expIndex.min);
    EXPECT_EQ(std::fma(std::log10(maxSens) - std::log10(kneeSens), 77.89853F, 10.0F), limit.expIndex.max);
    // Half the time, half the gain and twice the f-number: a factor 16 below the knee; 40 times the time and
    // 8 times the gain at the knee's f-number above it.
    EXPECT_NEAR(10.0F - IndexOf(16.0), limit.expIndex.min, 1e-3F);
    EXPECT_NEAR(10.0F + IndexOf(40.0 * 8.0), limit.expIndex.max, 1e-3F);
    EXPECT_TRUE(ArbLogContains("KneePt_0 (G 2.000000, F 2.000000, S 1000000, idx 10.000000) ; MinPt (G 1.000000, F "
                               "4.000000, S 500000"));
}

TEST_F(ArbLimitsTest, LimitIndexRangeRaisesSensitivitiesBelowOneToOne)
{
    std::unique_ptr<CArbitrator>     pArb = MakeOpenArbitrator();
    aecArbitration::ExposureKneeType knee = {};
    knee.gain     = 1.0F;
    knee.expTime  = 10000U;
    knee.fnumber  = 1.0F;
    knee.expIndex = 0.0F;

    ExposureLimitationType limit = {};
    limit.expTime = {0U, 10000U};
    limit.gain    = {1.0F, 1.0F};
    limit.fnumber = {1.0F, 1.0F};
    CArbitratorTestPeer::UtilCalculateLimitationExpIndex(*pArb, limit, knee);
    // A zero time counts as sensitivity 1: four decades below the knee.
    EXPECT_NEAR(-4.0F * 77.89853F, limit.expIndex.min, 1e-3F);
    EXPECT_NEAR(0.0F, limit.expIndex.max, 1e-4F);
}

TEST_F(ArbLimitsTest, LimitIndexRangeWithAZeroFNumberIsKept)
{
    std::unique_ptr<CArbitrator>     pArb = MakeOpenArbitrator();
    aecArbitration::ExposureKneeType knee = {};
    knee.gain    = 1.0F;
    knee.expTime = 10000U;
    knee.fnumber = 0.0F;

    ExposureLimitationType limit = {};
    limit.expIndex = {3.0F, 7.0F};
    limit.expTime  = {10000U, 20000U};
    limit.gain     = {1.0F, 2.0F};
    limit.fnumber  = {1.0F, 1.0F};
    CArbitratorTestPeer::UtilCalculateLimitationExpIndex(*pArb, limit, knee);
    EXPECT_EQ(3.0F, limit.expIndex.min);
    EXPECT_EQ(7.0F, limit.expIndex.max);
    EXPECT_TRUE(ArbLogContains("f-number not positive"));
}

// ---- Manual modes ----

TEST_F(ArbLimitsTest, ManualISOFixesTheGain)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModeManualISO, 8.0F, 0U, 0U, 0.0F);
    ExpectFixed(8.0F, limit.gain);
    EXPECT_EQ(TableMaxTime, limit.expTime.max);
    EXPECT_TRUE(ArbLogContains("AECAlgoModeManualISO/Gain, (8.000000, 8.000000)"));
}

TEST_F(ArbLimitsTest, ManualGainFixesTheGain)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModeManualGain, 3.0F, 0U, 0U, 0.0F);
    ExpectFixed(3.0F, limit.gain);
    EXPECT_TRUE(ArbLogContains("AECAlgoModeManualISO/Gain, (3.000000, 3.000000)"));
}

TEST_F(ArbLimitsTest, ManualISOAboveTheTableFixesThatGainAndRaisesEveryKnee)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModeManualISO, 100.0F, 0U, 0U, 0.0F);
    // The sensor's maximum of 64 does not lower a manual gain.
    ExpectFixed(100.0F, limit.gain);

    const aecArbitration::ExposureTableType* pActive = pArb->GetExpTable()->GetExpTable(ActiveTable);
    const aecArbitration::ExposureTableType* pRaw    = pArb->GetExpTable()->GetExpTable(RawTable);
    ASSERT_EQ(pRaw->expKneeEntriesCount, pActive->expKneeEntriesCount);
    for (UINT32 i = 0; i < pActive->expKneeEntriesCount; i++)
    {
        EXPECT_EQ(100.0F, pActive->expKneeEntries[i].gain) << "knee " << i;
        EXPECT_GT(pActive->expKneeEntries[i].expIndex, pRaw->expKneeEntries[i].expIndex) << "knee " << i;
    }
}

TEST_F(ArbLimitsTest, ManualExpTimeFixesTheTime)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModeManualExpTime, 0.0F, 5000000U, 0U, 0.0F);
    ExpectFixed(5000000U, limit.expTime);
    EXPECT_EQ(TableMaxGain, limit.gain.max);
    EXPECT_TRUE(ArbLogContains("AECAlgoModeManualExpTime, (5000000, 5000000)"));
}

TEST_F(ArbLimitsTest, ManualFullFixesTimeAndGain)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModeManualFull, 8.0F, 5000000U, 0U, 0.0F);
    ExpectFixed(5000000U, limit.expTime);
    ExpectFixed(8.0F, limit.gain);
    EXPECT_TRUE(ArbLogContains("AECAlgoModeManualFull, S(5000000, 5000000) G (8.000000, 8.000000)"));
}

TEST_F(ArbLimitsTest, MaxExposurePriorityLowersTheLongestTime)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    ExposureLimitationType       limit = SetManual(*pArb, AECAlgoModePirisMaxExpPriority, 0.0F, 0U, 20000000U, 0.0F);
    EXPECT_EQ(TableMinTime, limit.expTime.min);
    EXPECT_EQ(20000000U, limit.expTime.max);
    EXPECT_TRUE(ArbLogContains("AECAlgoModePirisMaxExpPriority, S max (20000000)"));

    // Zero leaves the table's longest time.
    limit = SetManual(*pArb, AECAlgoModePirisMaxExpPriority, 0.0F, 0U, 0U, 0.0F);
    EXPECT_EQ(TableMaxTime, limit.expTime.max);
}

TEST_F(ArbLimitsTest, PASMIrisFixesTheFNumberWithinTheTableAndLowersTheLongestTime)
{
    std::unique_ptr<CArbitrator> pArb  = MakeIrisArbitrator();
    ExposureLimitationType       limit = SetManual(*pArb, AECAlgoModePASMIris, 0.0F, 0U, 5000000U, 2.8F);
    ExpectFixed(2.8F, limit.fnumber);
    EXPECT_EQ(5000000U, limit.expTime.max);
    EXPECT_TRUE(ArbLogContains("AECAlgoModePASMIris, Fn (2.800000, 2.800000)"));

    // Clamped to the table's f/2 .. f/4.
    limit = SetManual(*pArb, AECAlgoModePASMIris, 0.0F, 0U, 0U, 8.0F);
    ExpectFixed(4.0F, limit.fnumber);
    EXPECT_EQ(10000000U, limit.expTime.max);
    limit = SetManual(*pArb, AECAlgoModePASMIris, 0.0F, 0U, 0U, 1.4F);
    ExpectFixed(2.0F, limit.fnumber);
}

TEST_F(ArbLimitsTest, PASMISOFixesTheGain)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModePASMISO, 6.0F, 0U, 0U, 0.0F);
    ExpectFixed(6.0F, limit.gain);
    EXPECT_TRUE(ArbLogContains("AECAlgoModePASMISO, (6.000000, 6.000000)"));
}

TEST_F(ArbLimitsTest, PASMIrisISOFixesFNumberAndGain)
{
    std::unique_ptr<CArbitrator> pArb  = MakeIrisArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModePASMIrisISO, 6.0F, 0U, 0U, 2.8F);
    ExpectFixed(2.8F, limit.fnumber);
    ExpectFixed(6.0F, limit.gain);
    EXPECT_TRUE(ArbLogContains("AECAlgoModePASMIrisISO, Fn (2.800000, 2.800000)"));
    EXPECT_TRUE(ArbLogContains("AECAlgoModePASMIrisISO, (6.000000, 6.000000)"));
}

TEST_F(ArbLimitsTest, PASMExpTimeFixesTheTime)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModePASMExpTime, 0.0F, 4000000U, 0U, 0.0F);
    ExpectFixed(4000000U, limit.expTime);
    EXPECT_EQ(TableMaxGain, limit.gain.max);
    EXPECT_TRUE(ArbLogContains("AECAlgoModeManualExpTime, (4000000, 4000000)"));
}

TEST_F(ArbLimitsTest, PASMExpTimeISOFixesTimeAndGain)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModePASMExpTimeISO, 6.0F, 4000000U, 0U, 0.0F);
    ExpectFixed(4000000U, limit.expTime);
    ExpectFixed(6.0F, limit.gain);
    EXPECT_TRUE(ArbLogContains("AECAlgoModePASMExpTimeISO, (4000000, 4000000)"));
    EXPECT_TRUE(ArbLogContains("AECAlgoModePASMExpTimeISO, (6.000000, 6.000000)"));
}

TEST_F(ArbLimitsTest, PASMExpTimeIrisFixesTimeAndFNumber)
{
    std::unique_ptr<CArbitrator> pArb  = MakeIrisArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModePASMExpTimeIris, 0.0F, 4000000U, 0U, 2.8F);
    ExpectFixed(4000000U, limit.expTime);
    ExpectFixed(2.8F, limit.fnumber);
    EXPECT_TRUE(ArbLogContains("AECAlgoModePASMExpTimeIris, (4000000, 4000000)"));
    EXPECT_TRUE(ArbLogContains("AECAlgoModePASMExpTimeIris, Fn (2.800000, 2.800000)"));
}

TEST_F(ArbLimitsTest, PASMFullManualFixesTimeFNumberAndGain)
{
    std::unique_ptr<CArbitrator> pArb  = MakeIrisArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModePASMFullManual, 6.0F, 4000000U, 0U, 2.8F);
    ExpectFixed(4000000U, limit.expTime);
    ExpectFixed(2.8F, limit.fnumber);
    ExpectFixed(6.0F, limit.gain);
    EXPECT_TRUE(ArbLogContains("AECAlgoModePASMFullManual, (4000000, 4000000)"));
    EXPECT_TRUE(ArbLogContains("AECAlgoModePASMFullManual, Fn (2.800000, 2.800000)"));
    EXPECT_TRUE(ArbLogContains("AECAlgoModePASMFullManual, (6.000000, 6.000000)"));
}

TEST_F(ArbLimitsTest, ManualApertureLeavesTheLimitAsInAuto)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    const ExposureLimitationType autoLimit = pArb->GetLimitation();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModeManualAperture, 6.0F, 4000000U, 3000000U, 2.8F);
    EXPECT_EQ(autoLimit.gain.max, limit.gain.max);
    EXPECT_EQ(autoLimit.expTime.min, limit.expTime.min);
    EXPECT_EQ(autoLimit.expTime.max, limit.expTime.max);
    EXPECT_EQ(autoLimit.fnumber.min, limit.fnumber.min);
    EXPECT_EQ(autoLimit.expIndex.max, limit.expIndex.max);
    EXPECT_TRUE(ArbLogContains("default: mode 5"));
}

TEST_F(ArbLimitsTest, ManualSettingRebuildsTheActiveTableBeforeCapping)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    SetManual(*pArb, AECAlgoModeManualISO, 100.0F, 0U, 0U, 0.0F);
    SetManual(*pArb, AECAlgoModeAuto, 0.0F, 0U, 0U, 0.0F);

    const aecArbitration::ExposureTableType* pActive = pArb->GetExpTable()->GetExpTable(ActiveTable);
    const aecArbitration::ExposureTableType* pRaw    = pArb->GetExpTable()->GetExpTable(RawTable);
    ASSERT_EQ(pRaw->expKneeEntriesCount, pActive->expKneeEntriesCount);
    for (UINT32 i = 0; i < pActive->expKneeEntriesCount; i++)
    {
        EXPECT_EQ(pRaw->expKneeEntries[i].gain, pActive->expKneeEntries[i].gain) << "knee " << i;
        EXPECT_EQ(pRaw->expKneeEntries[i].expIndex, pActive->expKneeEntries[i].expIndex) << "knee " << i;
    }
    EXPECT_EQ(TableMaxGain, pArb->GetLimitation().gain.max);
}

TEST_F(ArbLimitsTest, ANullManualSettingIsRefused)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    SetManual(*pArb, AECAlgoModeManualISO, 8.0F, 0U, 0U, 0.0F);
    const ExposureLimitationType limit = pArb->SetManualSetting(nullptr);
    EXPECT_EQ(8.0F, limit.gain.max);
    EXPECT_EQ(AECAlgoModeManualISO, CArbitratorTestPeer::Session(*pArb).manualSettings.manualMode);
    EXPECT_TRUE(ArbLogContains("Manual setting is NULL"));
}

TEST_F(ArbLimitsTest, AManualModeResetsTheDecayTolerance)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    CArbitratorTestPeer::MotorDecay(*pArb).tolerance_state = AfterDecay;
    SetManual(*pArb, AECAlgoModeAuto, 0.0F, 0U, 0U, 0.0F);
    EXPECT_EQ(AfterDecay, CArbitratorTestPeer::MotorDecay(*pArb).tolerance_state);
    SetManual(*pArb, AECAlgoModeManualExpTime, 0.0F, 4000000U, 0U, 0.0F);
    EXPECT_EQ(BeforeDecay, CArbitratorTestPeer::MotorDecay(*pArb).tolerance_state);
}

// ---- Sensor limits ----

TEST_F(ArbLimitsTest, SensorMaxGainBelowTheTablesIsIgnored)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    m_sensorLimits.gain = {2.0F, 32.0F};
    const ExposureLimitationType limit = pArb->SetSensorLimits(&m_sensorLimits);
    EXPECT_EQ(2.0F, limit.gain.min);
    EXPECT_EQ(TableMaxGain, limit.gain.max);
    EXPECT_TRUE(ArbLogContains("max gain controlled by exp table or manual setting, not capping: 60.000000"));
    EXPECT_EQ(&m_sensorLimits, CArbitratorTestPeer::SensorLimit(*pArb));
}

TEST_F(ArbLimitsTest, SensorMaxGainAppliesWhenTheLimitHasNone)
{
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = SetManual(*pArb, AECAlgoModeManualISO, 0.0F, 0U, 0U, 0.0F);
    EXPECT_EQ(1.0F, limit.gain.min);
    EXPECT_EQ(64.0F, limit.gain.max);
    EXPECT_TRUE(ArbLogContains("max gain capped using sensor limit: 64.000000"));
}

TEST_F(ArbLimitsTest, SensorTimeRangeNarrowsTheTables)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    m_sensorLimits.expTime = {20000U, 50000000U};
    const ExposureLimitationType limit = pArb->SetSensorLimits(&m_sensorLimits);
    EXPECT_EQ(20000U, limit.expTime.min);
    EXPECT_EQ(50000000U, limit.expTime.max);

    // The active table is squeezed into the limit.
    const aecArbitration::ExposureTableType* pActive = pArb->GetExpTable()->GetExpTable(ActiveTable);
    for (UINT32 i = 0; i < pActive->expKneeEntriesCount; i++)
    {
        EXPECT_GE(pActive->expKneeEntries[i].expTime, 20000U) << "knee " << i;
        EXPECT_LE(pActive->expKneeEntries[i].expTime, 50000000U) << "knee " << i;
    }
}

TEST_F(ArbLimitsTest, PositiveEVWithoutGainCappingKeepsTheMaxGain)
{
    ArbCore()->enableEVGainCapping = FALSE;
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = pArb->SetParamEV(1.0F, FALSE);
    EXPECT_GE(limit.gain.max, TableMaxGain);
    EXPECT_TRUE(ArbLogContains("max gain controlled by EV: "));
    EXPECT_TRUE(ArbLogContains("Exposure Table ID 0 : Update table using EV 1.000000"));
}

TEST_F(ArbLimitsTest, PositiveEVWithGainCappingCapsTheMaxGain)
{
    ArbCore()->maxEVCappingGain = 16.0F;
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = pArb->SetParamEV(1.0F, FALSE);
    EXPECT_EQ(16.0F, limit.gain.max);
    EXPECT_TRUE(ArbLogContains("max gain apply EV and capped to: 16.000000 max tuned gain: 16.000000"));
}

TEST_F(ArbLimitsTest, EVWithoutTableAdjustmentOnlyStoresTheEV)
{
    ArbCore()->enableEVExpTableAdj = FALSE;
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = pArb->SetParamEV(1.0F, FALSE);
    EXPECT_EQ(1.0F, CArbitratorTestPeer::Session(*pArb).EV);
    EXPECT_EQ(TableMaxGain, limit.gain.max);
    EXPECT_FALSE(ArbLogContains("Update table using EV"));
    EXPECT_TRUE(ArbLogContains("max gain controlled by exp table or manual setting, not capping: 60.000000"));
}

TEST_F(ArbLimitsTest, NegativeEVDoesNotCapTheMaxGain)
{
    ArbCore()->maxEVCappingGain = 16.0F;
    std::unique_ptr<CArbitrator> pArb  = MakeOpenArbitrator();
    const ExposureLimitationType limit = pArb->SetParamEV(-1.0F, FALSE);
    EXPECT_EQ(TableMaxGain, limit.gain.max);
    EXPECT_TRUE(ArbLogContains("Exposure Table ID 0 : Update table using EV -1.000000"));
}

TEST_F(ArbLimitsTest, CrossedTimeRangeRaisesTheMaximumToTheMinimum)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    m_sensorLimits.expTime = {100000000U, 1000000000U};
    const ExposureLimitationType limit = pArb->SetSensorLimits(&m_sensorLimits);
    ExpectFixed(100000000U, limit.expTime);
    EXPECT_TRUE(ArbLogContains(
        "requires attention: exp time min 100000000 max 82931727 crossed, sensor limits: 100000000 1000000000"));
}

TEST_F(ArbLimitsTest, CrossedGainRangeRaisesTheMaximumToTheMinimum)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    m_sensorLimits.gain = {100.0F, 200.0F};
    const ExposureLimitationType limit = pArb->SetSensorLimits(&m_sensorLimits);
    ExpectFixed(100.0F, limit.gain);
    EXPECT_TRUE(ArbLogContains(
        "requires attention: gain min 100.000000 max 60.000000 crossed, sensor limits: 100.000000 200.000000"));
}

TEST_F(ArbLimitsTest, ReversedHDRRangesAreLoggedAndKept)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    m_sensorLimits.SEFexpTime = {40000000U, 10000000U};
    const ExposureLimitationType limit = pArb->SetSensorLimits(&m_sensorLimits);
    EXPECT_EQ(40000000U, limit.SEFexpTime.min);
    EXPECT_EQ(10000000U, limit.SEFexpTime.max);
    EXPECT_TRUE(ArbLogContains(
        "shdr exp limit err: sef 40000000 10000000, mef 10000 33000000, lef 10000 33000000"));
}

// ---- Iris ----

TEST_F(ArbLimitsTest, WithoutIrisTheFNumberCollapsesToTheTablesFirst)
{
    std::unique_ptr<CArbitrator> pArb  = MakeIrisArbitrator();
    const ExposureLimitationType limit = pArb->GetLimitation();
    ExpectFixed(4.0F, limit.fnumber);
    EXPECT_TRUE(ArbLogContains("checkLensCap 0, checkIrisTblData 0 checkAECTblHasIris 1"));
}

TEST_F(ArbLimitsTest, LensWithIrisAndCalibrationKeepsTheTablesFNumberRange)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    GiveIris(*pArb, m_iris);
    EXPECT_EQ(TRUE, CArbitratorTestPeer::HasIris(*pArb));
    const ExposureLimitationType limit = pArb->GetLimitation();
    EXPECT_EQ(2.0F, limit.fnumber.min);
    EXPECT_EQ(4.0F, limit.fnumber.max);
    EXPECT_TRUE(ArbLogContains("Current zoom step : 0, checkLensCap 1, checkIrisTblData 1 checkAECTblHasIris 1"));
    EXPECT_TRUE(ArbLogContains("Zoom step 0"));
}

TEST_F(ArbLimitsTest, TableWithFirstFNumberOneCountsAsNoIris)
{
    std::unique_ptr<CArbitrator> pArb = MakeOpenArbitrator();
    GiveIris(*pArb, m_iris);
    EXPECT_EQ(FALSE, CArbitratorTestPeer::HasIris(*pArb));
    EXPECT_TRUE(ArbLogContains("checkLensCap 1, checkIrisTblData 1 checkAECTblHasIris 0"));
}

TEST_F(ArbLimitsTest, IncompleteIrisCalibrationCountsAsNoIris)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    LDMIrisTableData             data = m_iris.Data();
    data.irisStepTable                = nullptr;
    pArb->SetIrisTable(data);
    LDMLensCap lensCap = {};
    lensCap.PIris      = TRUE;
    pArb->SetLensCap(lensCap);
    EXPECT_EQ(FALSE, CArbitratorTestPeer::HasIris(*pArb));
    EXPECT_EQ(4.0F, pArb->GetLimitation().fnumber.min);
}

TEST_F(ArbLimitsTest, WidestFNumberBelowTheZoomTableIsTheFirstRows)
{
    TestIrisTable                iris({10, 110}, {{2.5F, 4.0F}, {3.0F, 4.0F}});
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    GiveIris(*pArb, iris);
    const ExposureLimitationType limit = pArb->SetZoomDependentIrisBoundary(5U);
    EXPECT_EQ(2.5F, limit.fnumber.min);
    EXPECT_EQ(4.0F, limit.fnumber.max);
    EXPECT_TRUE(ArbLogContains("Zoom step 5"));
}

TEST_F(ArbLimitsTest, WidestFNumberAboveTheZoomTableIsTheLastRows)
{
    TestIrisTable                iris({10, 110}, {{2.5F, 4.0F}, {3.0F, 4.0F}});
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    GiveIris(*pArb, iris);
    EXPECT_EQ(3.0F, pArb->SetZoomDependentIrisBoundary(200U).fnumber.min);
}

TEST_F(ArbLimitsTest, WidestFNumberInsideTheZoomTableIsInterpolatedInLight)
{
    TestIrisTable                iris({10, 110}, {{2.5F, 4.0F}, {3.0F, 4.0F}});
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    GiveIris(*pArb, iris);

    EXPECT_EQ(2.5F, pArb->SetZoomDependentIrisBoundary(10U).fnumber.min);
    EXPECT_FLOAT_EQ(3.0F, pArb->SetZoomDependentIrisBoundary(110U).fnumber.min);

    // Halfway: the mean of 1 / 2.5^2 and 1 / 3^2.
    const FLOAT light = (50.0F * (1.0F / 6.25F) + 50.0F * (1.0F / 9.0F)) / 100.0F;
    const FLOAT limitFn = pArb->SetZoomDependentIrisBoundary(60U).fnumber.min;
    EXPECT_FLOAT_EQ(std::sqrt(1.0F / light), limitFn);
    EXPECT_GT(limitFn, 2.5F);
    EXPECT_LT(limitFn, 2.75F);
    EXPECT_EQ(60U, CArbitratorTestPeer::ZoomStep(*pArb));
}

TEST_F(ArbLimitsTest, WidestFNumberAboveTheTablesRaisesTheMaximumToo)
{
    TestIrisTable                iris({0, 100}, {{5.0F}, {5.6F}});
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    GiveIris(*pArb, iris);
    const ExposureLimitationType limit = pArb->GetLimitation();
    ExpectFixed(5.0F, limit.fnumber);
}

TEST_F(ArbLimitsTest, SingleZoomRowGivesTheFirstRowOutsideAndOneAtItsStep)
{
    TestIrisTable                iris({10}, {{3.0F, 4.0F}});
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    GiveIris(*pArb, iris);
    EXPECT_EQ(3.0F, pArb->SetZoomDependentIrisBoundary(5U).fnumber.min);
    EXPECT_EQ(3.0F, pArb->SetZoomDependentIrisBoundary(20U).fnumber.min);
    // At the row's own step there is no segment: the widest f-number counts as 1.0 and the table's f/2 stays.
    EXPECT_EQ(2.0F, pArb->SetZoomDependentIrisBoundary(10U).fnumber.min);
}

TEST_F(ArbLimitsTest, ZoomRowWithoutAPositiveFNumberCountsAsOne)
{
    TestIrisTable                iris({0, 100}, {{0.0F, 4.0F}, {0.0F, 4.0F}});
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    GiveIris(*pArb, iris);
    EXPECT_EQ(2.0F, pArb->SetZoomDependentIrisBoundary(50U).fnumber.min);
    EXPECT_TRUE(ArbLogContains("has no usable f-number"));
}

TEST_F(ArbLimitsTest, FixedFNumberOverridesTheRange)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    GiveIris(*pArb, m_iris);
    ExposureLimitationType limit = pArb->SetFnLimits(2.8F);
    ExpectFixed(2.8F, limit.fnumber);
    limit = pArb->SetFnLimits(0.0F);
    EXPECT_EQ(2.0F, limit.fnumber.min);
    EXPECT_EQ(4.0F, limit.fnumber.max);
}

TEST_F(ArbLimitsTest, FixedFNumberWinsEvenDuringDecay)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    GiveIris(*pArb, m_iris);
    CArbitratorTestPeer::MotorDecay(*pArb).decay_state = 1;
    CArbitratorTestPeer::MotorDecay(*pArb).tarFn       = 2.5F;
    EXPECT_EQ(2.5F, pArb->SetFnLimits(0.0F).fnumber.min);
    EXPECT_TRUE(ArbLogContains("Fixed Fn 2.500000 while decaying"));

    const ExposureLimitationType limit = pArb->SetFnLimits(3.5F);
    ExpectFixed(3.5F, limit.fnumber);
}

TEST_F(ArbLimitsTest, SnapshotPinsTheIrisAtItsWidestWithIrisAndAtTheTablesOtherwise)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    CArbitratorTestPeer::IsOverallSnapshot(*pArb) = TRUE;
    pArb->SetFnLimits(0.0F);
    ExpectFixed(4.0F, pArb->GetLimitation().fnumber);

    GiveIris(*pArb, m_iris);
    ExpectFixed(2.0F, pArb->GetLimitation().fnumber);
}

TEST_F(ArbLimitsTest, StaggeredHDRPinsTheIrisAndIgnoresTheFixedFNumber)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    GiveIris(*pArb, m_iris);
    CArbitratorTestPeer::IsShdrActived(*pArb) = TRUE;
    const ExposureLimitationType limit = pArb->SetFnLimits(3.5F);
    ExpectFixed(2.0F, limit.fnumber);
}

// ---- Decay tolerance ----

TEST_F(ArbLimitsTest, AfterDecayTheFNumberStaysPinnedWithinTheTolerance)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    MotorDecayType&              rDecay = CArbitratorTestPeer::MotorDecay(*pArb);
    rDecay.tolerance_state = AfterDecay;
    rDecay.tarFn           = 2.8F;
    rDecay.exp_idx_base    = 100.0F;
    CArbitratorTestPeer::ExpIdx(*pArb) = 120.0F;

    ExposureLimitationType limit = {};
    limit.fnumber                = {2.0F, 4.0F};
    CArbitratorTestPeer::DecayToleranceProcess(*pArb, limit, Linear);
    ExpectFixed(2.8F, limit.fnumber);
    EXPECT_EQ(AfterDecay, rDecay.tolerance_state);
    EXPECT_TRUE(ArbLogContains("Fixed Fn 2.800000 Curr idx 120.000000 Base idx 100.000000 tol 23.500000"));
}

TEST_F(ArbLimitsTest, TravelBeyondTheToleranceFreesTheIris)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    MotorDecayType&              rDecay = CArbitratorTestPeer::MotorDecay(*pArb);
    rDecay.tolerance_state = AfterDecay;
    rDecay.tarFn           = 2.8F;
    rDecay.exp_idx_base    = 100.0F;
    CArbitratorTestPeer::ExpIdx(*pArb) = 76.0F;

    ExposureLimitationType limit = {};
    limit.fnumber                = {2.0F, 4.0F};
    CArbitratorTestPeer::DecayToleranceProcess(*pArb, limit, Linear);
    EXPECT_EQ(2.0F, limit.fnumber.min);
    EXPECT_EQ(4.0F, limit.fnumber.max);
    EXPECT_EQ(BeforeDecay, rDecay.tolerance_state);
    EXPECT_TRUE(ArbLogContains("Reset the decay tolerance, m_expIdx 76.000000 exp_idx_base 100.000000 tol 23.500000"));
}

TEST_F(ArbLimitsTest, DecayToleranceOfHDRComesFromTheStaggeredHDRTuning)
{
    aecShdr::ShdrMeteringType shdr = {};
    shdr.decay_tolerance           = 5.0F;
    m_pTuning->mtrTuningData.pShdr = &shdr;

    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    MotorDecayType&              rDecay = CArbitratorTestPeer::MotorDecay(*pArb);
    rDecay.tolerance_state = AfterDecay;
    rDecay.tarFn           = 2.8F;
    rDecay.exp_idx_base    = 100.0F;
    CArbitratorTestPeer::ExpIdx(*pArb) = 110.0F;

    ExposureLimitationType limit = {};
    limit.fnumber                = {2.0F, 4.0F};
    CArbitratorTestPeer::DecayToleranceProcess(*pArb, limit, HDR);
    EXPECT_EQ(BeforeDecay, rDecay.tolerance_state);
    EXPECT_TRUE(ArbLogContains("tol 5.000000"));
}

TEST_F(ArbLimitsTest, DecayToleranceWithoutTuningIsOneStop)
{
    m_pTuning->mtrTuningData.pShdr = nullptr;
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    MotorDecayType&              rDecay = CArbitratorTestPeer::MotorDecay(*pArb);
    rDecay.tolerance_state = AfterDecay;
    rDecay.tarFn           = 2.8F;
    rDecay.exp_idx_base    = 100.0F;
    CArbitratorTestPeer::ExpIdx(*pArb) = 123.4F;

    ExposureLimitationType limit = {};
    limit.fnumber                = {2.0F, 4.0F};
    CArbitratorTestPeer::DecayToleranceProcess(*pArb, limit, HDR);
    EXPECT_EQ(AfterDecay, rDecay.tolerance_state);
    EXPECT_EQ(2.8F, limit.fnumber.min);

    CArbitratorTestPeer::ExpIdx(*pArb) = 123.6F;
    CArbitratorTestPeer::DecayToleranceProcess(*pArb, limit, HDR);
    EXPECT_EQ(BeforeDecay, rDecay.tolerance_state);
}

TEST_F(ArbLimitsTest, BeforeDecayTheToleranceLeavesTheRange)
{
    std::unique_ptr<CArbitrator> pArb = MakeIrisArbitrator();
    CArbitratorTestPeer::MotorDecay(*pArb).tarFn = 2.8F;
    ExposureLimitationType limit = {};
    limit.fnumber                = {2.0F, 4.0F};
    CArbitratorTestPeer::DecayToleranceProcess(*pArb, limit, Linear);
    EXPECT_EQ(2.0F, limit.fnumber.min);
    EXPECT_EQ(4.0F, limit.fnumber.max);
}
