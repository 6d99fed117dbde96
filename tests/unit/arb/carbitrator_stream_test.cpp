// Tests of the preview exposure sets: table lookup, neighbours, sensitivity, HDR3 and the in-sensor HDR mapping.
#include "unit/arb/carbitrator_exposure_testsupport.h"

namespace
{

class ArbitratorStreamTest : public ArbitratorExposureTest
{
protected:
    ArbitrationOutput Arbitrate(CArbitrator& rArb, FLOAT shortIdx, FLOAT safeIdx, FLOAT longIdx, BOOL enableHDR3,
                                INT32 irisIsAborted = 0)
    {
        FLOAT             indices[AECAlgoExposureCount] = {};
        ArbitrationOutput output                        = ZeroOutput();
        indices[AECAlgoExposureShort]                   = shortIdx;
        indices[AECAlgoExposureSafe]                    = safeIdx;
        indices[AECAlgoExposureLong]                    = longIdx;
        EXPECT_EQ(AecSuccess, rArb.ArbitrateExposure(indices, irisIsAborted, &output, enableHDR3));
        return output;
    }

    ParamExtInsensorHDRCtrl& InsensorHDR() { return m_pTuning->mtrTuningData.extInsensorHDR; }
};

TEST_F(ArbitratorStreamTest, SafeExposureIsTheTableLookupOfTheSafeIndex)
{
    auto                    pArb   = MakeOpenArbitrator();
    const ArbitrationOutput output = Arbitrate(*pArb, 300.0F, 300.0F, 300.0F, FALSE);

    const ExposureSetType expected = TableSet(*pArb, 300.0F);
    EXPECT_EQ(expected.expTime, output.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_FLOAT_EQ(expected.gain, output.expSets[AECAlgoExposureSafe].linearGain);
    EXPECT_FLOAT_EQ(300.0F, CArbitratorTestPeer::ExpIdx(*pArb));
}

TEST_F(ArbitratorStreamTest, ZeroDeltaBetweenSafeAndShortGivesIdenticalSets)
{
    auto                    pArb   = MakeOpenArbitrator();
    const ArbitrationOutput output = Arbitrate(*pArb, 250.0F, 250.0F, 250.0F, FALSE);

    ExpectSameExposure(output.expSets[AECAlgoExposureSafe], output.expSets[AECAlgoExposureShort]);
    ExpectSameExposure(output.expSets[AECAlgoExposureSafe], output.expSets[AECAlgoExposureLong]);
}

TEST_F(ArbitratorStreamTest, ShortAndLongAreDerivedFromSafe)
{
    auto        pArb     = MakeOpenArbitrator();
    const FLOAT oneStop  = IndexOfRatio(2.0);
    const ArbitrationOutput output = Arbitrate(*pArb, 300.0F - oneStop, 300.0F, 300.0F + oneStop, FALSE);

    ExposureSetType safeSet  = TableSet(*pArb, 300.0F);
    ExposureSetType shortSet = {};
    ExposureSetType longSet  = {};
    pArb->ArbitrateShortExposure(oneStop, &shortSet, &safeSet);
    pArb->ArbitrateLongExposure(oneStop, &longSet, &safeSet);

    EXPECT_EQ(shortSet.expTime, output.expSets[AECAlgoExposureShort].exposureTime);
    EXPECT_FLOAT_EQ(shortSet.gain, output.expSets[AECAlgoExposureShort].linearGain);
    EXPECT_EQ(longSet.expTime, output.expSets[AECAlgoExposureLong].exposureTime);
    EXPECT_FLOAT_EQ(longSet.gain, output.expSets[AECAlgoExposureLong].linearGain);
}

TEST_F(ArbitratorStreamTest, SensitivityIsGainTimesCorrectionTimesTimeOverFnumberSquared)
{
    // Table 0 with an f/2 lens and a correction of 2.5; no iris is reported, so short and long state f/1. The iris
    // abort keeps the motor life saving from opening the safe exposure to f/1.
    aecArbitration::ExposureTableType& rTable = ArbCore()->expTables[0];
    rTable.sensitivityCorrectionFactor        = 2.5F;
    for (UINT32 i = 0; i < rTable.expKneeEntriesCount; i++)
    {
        rTable.expKneeEntries[i].fnumber = 2.0F;
    }
    auto                    pArb   = MakeOpenArbitrator();
    const ArbitrationOutput output = Arbitrate(*pArb, 280.0F, 300.0F, 320.0F, FALSE, 1);

    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        const AECAlgoExposureData& rSet = output.expSets[i];
        EXPECT_FLOAT_EQ(Sensitivity(rSet.linearGain, 2.5F, rSet.exposureTime, 2.0F), rSet.sensitivity) << i;
        EXPECT_FLOAT_EQ(rSet.sensitivity, rSet.snapshotSensitivity) << i;
        EXPECT_EQ(rSet.exposureTime, rSet.snapshotExposureTime) << i;
        EXPECT_FLOAT_EQ(rSet.linearGain, rSet.snapShotLinearGain) << i;
        EXPECT_FLOAT_EQ(1.0F, rSet.compenADRCGain) << i;
    }
    EXPECT_FLOAT_EQ(1.0F, output.expSets[AECAlgoExposureShort].fnumber);
    EXPECT_FLOAT_EQ(1.0F, output.expSets[AECAlgoExposureLong].fnumber);
    EXPECT_FLOAT_EQ(2.0F, output.expSets[AECAlgoExposureSafe].fnumber);
    for (FLOAT tarFnum : output.TarFnum)
    {
        EXPECT_FLOAT_EQ(2.0F, tarFnum);
    }
}

TEST_F(ArbitratorStreamTest, WithAnIrisShortAndLongKeepTheTableFnumber)
{
    aecArbitration::ExposureTableType& rTable = ArbCore()->expTables[0];
    for (UINT32 i = 0; i < rTable.expKneeEntriesCount; i++)
    {
        rTable.expKneeEntries[i].fnumber = 2.0F;
    }
    auto pArb                                   = MakeOpenArbitrator();
    CArbitratorTestPeer::LensCap(*pArb).PIris = TRUE;
    const ArbitrationOutput output              = Arbitrate(*pArb, 280.0F, 300.0F, 320.0F, FALSE, 1);

    for (const AECAlgoExposureData& rSet : output.expSets)
    {
        EXPECT_FLOAT_EQ(2.0F, rSet.fnumber);
    }
}

TEST_F(ArbitratorStreamTest, CompensationGainsAreSensitivityRatiosOfNeighbours)
{
    auto                    pArb   = MakeOpenArbitrator();
    const FLOAT             stop   = IndexOfRatio(2.0);
    const ArbitrationOutput output = Arbitrate(*pArb, 300.0F - stop, 300.0F, 300.0F + 2.0F * stop, FALSE);

    const AECAlgoExposureData* pSets = output.expSets;
    EXPECT_FLOAT_EQ(pSets[AECAlgoExposureSafe].sensitivity / pSets[AECAlgoExposureShort].sensitivity,
                    output.compenADRCGain);
    EXPECT_FLOAT_EQ(pSets[AECAlgoExposureLong].sensitivity / pSets[AECAlgoExposureSafe].sensitivity,
                    output.compensationDarkBoostGain);
    EXPECT_NEAR(2.0F, output.compenADRCGain, 1e-3F);
    EXPECT_NEAR(4.0F, output.compensationDarkBoostGain, 2e-3F);
}

TEST_F(ArbitratorStreamTest, CompensationGainDividesByAtLeastOne)
{
    // A tiny correction factor brings every sensitivity below 1: the ratio's divisor is held at 1.
    ArbCore()->expTables[0].sensitivityCorrectionFactor = 1e-9F;
    auto                    pArb   = MakeOpenArbitrator();
    const ArbitrationOutput output = Arbitrate(*pArb, 100.0F, 150.0F, 200.0F, FALSE);

    ASSERT_LT(output.expSets[AECAlgoExposureShort].sensitivity, 1.0F);
    ASSERT_LT(output.expSets[AECAlgoExposureSafe].sensitivity, 1.0F);
    EXPECT_FLOAT_EQ(output.expSets[AECAlgoExposureSafe].sensitivity, output.compenADRCGain);
    EXPECT_FLOAT_EQ(output.expSets[AECAlgoExposureLong].sensitivity, output.compensationDarkBoostGain);
}

TEST_F(ArbitratorStreamTest, DeltaEVFromTargetIsLeftToTheCaller)
{
    auto              pArb                       = MakeOpenArbitrator();
    FLOAT             indices[AECAlgoExposureCount] = {280.0F, 320.0F, 300.0F};
    ArbitrationOutput output                     = ZeroOutput();
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        output.expSets[i].deltaEVFromTarget = -0.25F * static_cast<FLOAT>(i + 1U);
    }
    ASSERT_EQ(AecSuccess, pArb->ArbitrateExposure(indices, 0, &output, FALSE));
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        EXPECT_FLOAT_EQ(-0.25F * static_cast<FLOAT>(i + 1U), output.expSets[i].deltaEVFromTarget);
    }
}

TEST_F(ArbitratorStreamTest, PreviewRecordsAbortClearsTheSnapshotPathAndLeavesTheMappingFlags)
{
    auto pArb                                        = MakeOpenArbitrator();
    CArbitratorTestPeer::IsOverallSnapshot(*pArb) = TRUE;
    Arbitrate(*pArb, 300.0F, 300.0F, 300.0F, FALSE, 1);
    EXPECT_EQ(1, CArbitratorTestPeer::IrisIsAborted(*pArb));
    EXPECT_EQ(FALSE, CArbitratorTestPeer::IsOverallSnapshot(*pArb));

    m_realDRCGain = 16.0F;
    Arbitrate(*pArb, 300.0F, 300.0F, 300.0F, FALSE, 0);
    EXPECT_EQ(0, CArbitratorTestPeer::IrisIsAborted(*pArb));
    EXPECT_EQ(FALSE, CArbitratorTestPeer::CurMap3HDRSnapshot(*pArb));
    EXPECT_EQ(FALSE, pArb->GetInsensorHDRSnapshot());
}

TEST_F(ArbitratorStreamTest, IrisPriorityModeLooksTheSafeIndexUpTimeFirst)
{
    // Between the last two knees the table is made to raise gain first; time first gives a longer time there.
    ArbCore()->expTables[0].expKneeEntries[3].incrementPriority = aecglobalelements::AECExpIncGain;
    auto pArb = MakeOpenArbitrator();
    CArbitratorTestPeer::Session(*pArb).manualSettings.manualMode = AECAlgoModePirisMaxExpPriority;
    const ArbitrationOutput output = Arbitrate(*pArb, 400.0F, 400.0F, 400.0F, FALSE);

    ExposureSetType expected = {0.0F, 1.0F, 0U, 400.0F};
    pArb->GetExpTable()->ExpTableEntryLookUpExpTimePrio(ActiveTable, &expected, AECAlgoExposureSafe);
    const ExposureSetType gainFirst = TableSet(*pArb, 400.0F);
    ASSERT_GT(expected.expTime, gainFirst.expTime);
    EXPECT_EQ(expected.expTime, output.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_FLOAT_EQ(expected.gain, output.expSets[AECAlgoExposureSafe].linearGain);
}

TEST_F(ArbitratorStreamTest, ThreeExposureHDRLooksUpLongAndDerivesSafeAndShort)
{
    auto                    pArb   = MakeOpenArbitrator();
    const ArbitrationOutput output = Arbitrate(*pArb, 250.0F, 300.0F, 350.0F, TRUE);

    ExposureSetType longSet  = TableSet(*pArb, 350.0F);
    ExposureSetType safeSet  = {};
    ExposureSetType shortSet = {};
    pArb->ArbitrateSafeExposureHDR3(50.0F, &safeSet, &longSet);
    pArb->ArbitrateShortExposure(50.0F, &shortSet, &safeSet);

    EXPECT_EQ(longSet.expTime, output.expSets[AECAlgoExposureLong].exposureTime);
    EXPECT_FLOAT_EQ(longSet.gain, output.expSets[AECAlgoExposureLong].linearGain);
    EXPECT_EQ(safeSet.expTime, output.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_FLOAT_EQ(safeSet.gain, output.expSets[AECAlgoExposureSafe].linearGain);
    EXPECT_EQ(shortSet.expTime, output.expSets[AECAlgoExposureShort].exposureTime);
    EXPECT_FLOAT_EQ(shortSet.gain, output.expSets[AECAlgoExposureShort].linearGain);
    // Safe is not the table's exposure at its own index: it hangs below long and keeps unity gain at least.
    EXPECT_GE(output.expSets[AECAlgoExposureSafe].linearGain, 1.0F);
    EXPECT_FLOAT_EQ(0.0F, output.realDRCGain);
}

TEST_F(ArbitratorStreamTest, LargeDRCGainMapsShortSafeAndMiddleForInSensorHDR)
{
    auto                    pArb  = MakeOpenArbitrator();
    const ArbitrationOutput plain = Arbitrate(*pArb, 280.0F, 300.0F, 320.0F, FALSE);
    EXPECT_FALSE(ArbLogContains("Enter compute 3HDR exposure in ADRC mode"));
    m_realDRCGain                  = 16.0F; // above the default threshold 8
    const ArbitrationOutput mapped = Arbitrate(*pArb, 280.0F, 300.0F, 320.0F, FALSE);

    EXPECT_TRUE(ArbLogContains("Enter compute 3HDR exposure in ADRC mode"));
    EXPECT_FLOAT_EQ(16.0F, mapped.realDRCGain);

    // Short sits log10(16) * K below safe, middle halfway; the safe exposure is the table's (compensation gain 1).
    const FLOAT     d        = 300.0F - (300.0F - IndexOfRatio(16.0));
    ExposureSetType safeSet  = TableSet(*pArb, 300.0F);
    ExposureSetType shortSet = {};
    ExposureSetType middle   = {};
    pArb->ArbitrateShortExposure(d, &shortSet, &safeSet);
    pArb->ArbitrateMiddleExposure(d * 0.5F, &middle, &safeSet);

    const AECAlgoExposureData* pMap = mapped.prevMap3HDR;
    EXPECT_EQ(shortSet.expTime, pMap[0].exposureTime);
    EXPECT_FLOAT_EQ(shortSet.gain, pMap[0].linearGain);
    EXPECT_EQ(safeSet.expTime, pMap[1].exposureTime);
    EXPECT_FLOAT_EQ(safeSet.gain, pMap[1].linearGain);
    EXPECT_EQ(middle.expTime, pMap[2].exposureTime);
    EXPECT_FLOAT_EQ(middle.gain, pMap[2].linearGain);
    for (UINT32 slot = 0; slot < AECAlgoExposureCount; slot++)
    {
        EXPECT_FLOAT_EQ(Sensitivity(pMap[slot].linearGain, 1.0F, pMap[slot].exposureTime, 1.0F),
                        pMap[slot].sensitivity);
        ExpectSameExposure(pMap[slot], CArbitratorTestPeer::PrevMap3HDR(*pArb)[slot]);
    }
    // About four stops between short and safe.
    EXPECT_NEAR(16.0F, pMap[1].sensitivity / pMap[0].sensitivity, 0.02F);
    EXPECT_NEAR(4.0F, pMap[1].sensitivity / pMap[2].sensitivity, 0.01F);

    // The frame's own sets are those of the unmapped arbitration.
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        ExpectSameExposure(plain.expSets[i], mapped.expSets[i]);
    }
}

TEST_F(ArbitratorStreamTest, DRCGainBelowTheThresholdMapsNothing)
{
    m_realDRCGain  = 7.9F;
    auto pArb      = MakeOpenArbitrator();
    const ArbitrationOutput output = Arbitrate(*pArb, 280.0F, 300.0F, 320.0F, FALSE);

    EXPECT_FALSE(ArbLogContains("Enter compute 3HDR exposure in ADRC mode"));
    EXPECT_FLOAT_EQ(0.0F, output.realDRCGain);
    EXPECT_EQ(0U, output.prevMap3HDR[1].exposureTime);
    EXPECT_EQ(0U, CArbitratorTestPeer::PrevMap3HDR(*pArb)[1].exposureTime);
}

TEST_F(ArbitratorStreamTest, MappedSafeBelowCompensationGainTradesTheGainIntoTime)
{
    // At index 100 the table is still at unity gain; a compensation gain of 2 leaves g = 0.5: time doubles.
    m_realDRCGain                  = 16.0F;
    InsensorHDR().compenADRCGain   = 2.0F;
    auto                    pArb   = MakeOpenArbitrator();
    const ArbitrationOutput output = Arbitrate(*pArb, 100.0F, 100.0F, 100.0F, FALSE);

    const ExposureSetType table = TableSet(*pArb, 100.0F);
    ASSERT_FLOAT_EQ(1.0F, table.gain);
    EXPECT_FLOAT_EQ(1.0F, output.prevMap3HDR[1].linearGain);
    EXPECT_EQ(static_cast<UINT64>(static_cast<FLOAT>(table.expTime) / 0.5F), output.prevMap3HDR[1].exposureTime);
}

TEST_F(ArbitratorStreamTest, MappedSafeAboveCompensationGainGivesUpThatGain)
{
    m_realDRCGain                  = 16.0F;
    InsensorHDR().compenADRCGain   = 2.0F;
    auto                    pArb   = MakeOpenArbitrator();
    const ArbitrationOutput output = Arbitrate(*pArb, 420.0F, 420.0F, 420.0F, FALSE);

    const ExposureSetType table = TableSet(*pArb, 420.0F);
    ASSERT_GT(table.gain, 2.0F);
    EXPECT_FLOAT_EQ(table.gain / 2.0F, output.prevMap3HDR[1].linearGain);
    EXPECT_EQ(table.expTime, output.prevMap3HDR[1].exposureTime);
}

TEST_F(ArbitratorStreamTest, NonPositiveDRCGainIsNotMappedEvenUnderAZeroThreshold)
{
    m_realDRCGain                 = 0.0F;
    InsensorHDR().DRCGainThresh   = 0.0F;
    auto                    pArb  = MakeOpenArbitrator();
    const ArbitrationOutput output = Arbitrate(*pArb, 300.0F, 300.0F, 300.0F, FALSE);

    EXPECT_TRUE(ArbLogContains("in-sensor HDR mapping skipped"));
    EXPECT_FLOAT_EQ(0.0F, output.realDRCGain);
    EXPECT_EQ(0U, output.prevMap3HDR[0].exposureTime);
}

TEST_F(ArbitratorStreamTest, ExposureIndexRoundTripsThroughTheTable)
{
    auto pArb = MakeOpenArbitrator();
    for (FLOAT index : {80.0F, 150.0F, 291.0F, 300.0F, 340.0F, 400.0F, 443.0F})
    {
        const ArbitrationOutput output = Arbitrate(*pArb, index, index, index, FALSE);
        EXPECT_NEAR(index, pArb->UtilExp2ExpIndex(&output.expSets[AECAlgoExposureSafe]), 1e-3F) << index;
    }
}

TEST_F(ArbitratorStreamTest, IndexOfAnExposureWithoutExposureIsTheFirstKnee)
{
    auto                pArb = MakeOpenArbitrator();
    AECAlgoExposureData data = {};
    EXPECT_FLOAT_EQ(0.0F, pArb->UtilExp2ExpIndex(&data));
    EXPECT_TRUE(ArbLogContains("index of the first knee used"));
    EXPECT_FLOAT_EQ(0.0F, pArb->UtilExp2ExpIndex(nullptr));
    EXPECT_TRUE(ArbLogContains("Cannot convert exposure to index"));
}

TEST_F(ArbitratorStreamTest, MissingArgumentsAreRefused)
{
    auto              pArb                       = MakeOpenArbitrator();
    FLOAT             indices[AECAlgoExposureCount] = {300.0F, 300.0F, 300.0F};
    ArbitrationOutput output                     = ZeroOutput();
    EXPECT_EQ(AecError, pArb->ArbitrateExposure(nullptr, 0, &output, FALSE));
    EXPECT_EQ(AecError, pArb->ArbitrateExposure(indices, 0, nullptr, FALSE));
    EXPECT_TRUE(ArbLogContains("Invalid argument: indices"));
    EXPECT_EQ(0U, output.expSets[AECAlgoExposureSafe].exposureTime);
}

TEST_F(ArbitratorStreamTest, ArbitratorWithoutATableFailsAndLeavesTheOutput)
{
    CArbitrator       arb(&m_context);
    FLOAT             indices[AECAlgoExposureCount] = {300.0F, 300.0F, 300.0F};
    ArbitrationOutput output                     = ZeroOutput();
    EXPECT_EQ(AecError, arb.ArbitrateExposure(indices, 0, &output, FALSE));
    EXPECT_EQ(AecError, arb.ArbitrateExposure(indices, 0, &output, TRUE));
    EXPECT_TRUE(ArbLogContains("Lookup of safe index"));
    EXPECT_TRUE(ArbLogContains("Lookup of long index"));
    EXPECT_EQ(0U, output.expSets[AECAlgoExposureSafe].exposureTime);
}

} // namespace
