// Tests of the still exposure sets: plain and HDR3 queries, the in-sensor HDR snapshot and the low-light snapshot.
#include "unit/arb/carbitrator_exposure_testsupport.h"

namespace
{

class ArbitratorStillTest : public ArbitratorExposureTest
{
protected:
    ArbitrationOutput Query(CArbitrator& rArb, FLOAT shortIdx, FLOAT safeIdx, FLOAT longIdx, BOOL enableHDR3,
                            AecResult expected = AecSuccess)
    {
        FLOAT             indices[AECAlgoExposureCount] = {};
        ArbitrationOutput output                        = ZeroOutput();
        indices[AECAlgoExposureShort]                   = shortIdx;
        indices[AECAlgoExposureSafe]                    = safeIdx;
        indices[AECAlgoExposureLong]                    = longIdx;
        EXPECT_EQ(expected, rArb.ArbitrateExposure(indices, &output, enableHDR3));
        return output;
    }

    ArbitrationOutput Preview(CArbitrator& rArb, FLOAT shortIdx, FLOAT safeIdx, FLOAT longIdx, BOOL enableHDR3)
    {
        FLOAT             indices[AECAlgoExposureCount] = {};
        ArbitrationOutput output                        = ZeroOutput();
        indices[AECAlgoExposureShort]                   = shortIdx;
        indices[AECAlgoExposureSafe]                    = safeIdx;
        indices[AECAlgoExposureLong]                    = longIdx;
        EXPECT_EQ(AecSuccess, rArb.ArbitrateExposure(indices, 0, &output, enableHDR3));
        return output;
    }

    ParamExtInsensorHDRCtrl& InsensorHDR() { return m_pTuning->mtrTuningData.extInsensorHDR; }

    static AECAlgoExposureData Mapped(UINT64 time, FLOAT sensitivity, FLOAT fnumber)
    {
        AECAlgoExposureData data = {};
        data.exposureTime        = time;
        data.sensitivity         = sensitivity;
        data.fnumber             = fnumber;
        return data;
    }
};

TEST_F(ArbitratorStillTest, PlainQueryGivesThePreviewSetsAndMarksTheSnapshotPath)
{
    auto                    pStream = MakeOpenArbitrator();
    auto                    pStill  = MakeOpenArbitrator();
    const ArbitrationOutput preview = Preview(*pStream, 280.0F, 300.0F, 320.0F, FALSE);
    const ArbitrationOutput still   = Query(*pStill, 280.0F, 300.0F, 320.0F, FALSE);

    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        ExpectSameExposure(preview.expSets[i], still.expSets[i]);
    }
    EXPECT_FLOAT_EQ(preview.compenADRCGain, still.compenADRCGain);
    EXPECT_EQ(TRUE, CArbitratorTestPeer::IsOverallSnapshot(*pStill));
    EXPECT_EQ(FALSE, CArbitratorTestPeer::IsOverallSnapshot(*pStream));
    EXPECT_EQ(FALSE, still.isInsensorHDRSnapshot);
    EXPECT_TRUE(ArbLogContains("Insensor HDR snapshot status: cur 0 prev 0 final 0"));
}

TEST_F(ArbitratorStillTest, MappedQueriesLatchTheInSensorHDRSnapshot)
{
    auto pArb     = MakeOpenArbitrator();
    m_realDRCGain = 16.0F;

    const ArbitrationOutput first = Query(*pArb, 300.0F, 300.0F, 300.0F, FALSE);
    EXPECT_TRUE(ArbLogContains("Insensor HDR snapshot status: cur 1 prev 0 final 0"));
    EXPECT_EQ(FALSE, first.isInsensorHDRSnapshot);
    EXPECT_FLOAT_EQ(16.0F, first.realDRCGain);
    EXPECT_GT(first.prevMap3HDR[1].exposureTime, 0U);
    ExpectSameExposure(first.prevMap3HDR[1], CArbitratorTestPeer::PrevMap3HDR(*pArb)[1]);

    const ArbitrationOutput second = Query(*pArb, 300.0F, 300.0F, 300.0F, FALSE);
    EXPECT_TRUE(ArbLogContains("Insensor HDR snapshot status: cur 1 prev 1 final 1"));
    EXPECT_EQ(TRUE, second.isInsensorHDRSnapshot);

    // A query without the mapping clears the current flag; the snapshot state stays latched.
    m_realDRCGain                  = 1.0F;
    const ArbitrationOutput third  = Query(*pArb, 300.0F, 300.0F, 300.0F, FALSE);
    EXPECT_TRUE(ArbLogContains("Insensor HDR snapshot status: cur 0 prev 1 final 1"));
    EXPECT_EQ(TRUE, third.isInsensorHDRSnapshot);
    EXPECT_EQ(TRUE, pArb->GetInsensorHDRSnapshot());
}

TEST_F(ArbitratorStillTest, SingleMappedQueryDoesNotLatch)
{
    auto pArb     = MakeOpenArbitrator();
    m_realDRCGain = 16.0F;
    Query(*pArb, 300.0F, 300.0F, 300.0F, FALSE);
    m_realDRCGain = 1.0F;
    Query(*pArb, 300.0F, 300.0F, 300.0F, FALSE);
    m_realDRCGain = 16.0F;
    const ArbitrationOutput output = Query(*pArb, 300.0F, 300.0F, 300.0F, FALSE);
    EXPECT_EQ(FALSE, output.isInsensorHDRSnapshot);
    EXPECT_EQ(FALSE, pArb->GetInsensorHDRSnapshot());
}

TEST_F(ArbitratorStillTest, HDR3QueryWithoutInSensorHDRIsThePreviewHDR3Arbitration)
{
    InsensorHDR().enableInsensorHDR = FALSE;
    auto                    pStream = MakeOpenArbitrator();
    auto                    pStill  = MakeOpenArbitrator();
    const ArbitrationOutput preview = Preview(*pStream, 250.0F, 300.0F, 350.0F, TRUE);
    const ArbitrationOutput still   = Query(*pStill, 250.0F, 300.0F, 350.0F, TRUE);

    EXPECT_TRUE(ArbLogContains("FALSE == enableInsensorHDRSnapshot"));
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        ExpectSameExposure(preview.expSets[i], still.expSets[i]);
    }
    EXPECT_EQ(FALSE, CArbitratorTestPeer::CurMap3HDRSnapshot(*pStill));
}

TEST_F(ArbitratorStillTest, InSensorHDRSnapshotReusesTheStoredMappingInShortMiddleSafeOrder)
{
    InsensorHDR().enableInsensorHDR = TRUE;
    InsensorHDR().compenADRCGain    = 2.0F;
    ArbCore()->expTables[0].sensitivityCorrectionFactor = 2.0F;
    auto pArb = MakeOpenArbitrator();

    AECAlgoExposureData* pStored = CArbitratorTestPeer::PrevMap3HDR(*pArb);
    pStored[0]                   = Mapped(1000000U, 4.0e6F, 1.0F);  // short
    pStored[1]                   = Mapped(16000000U, 9.6e7F, 2.0F); // safe
    pStored[2]                   = Mapped(4000000U, 2.4e7F, 1.4F);  // middle

    const ArbitrationOutput output = Query(*pArb, 0.0F, 0.0F, 0.0F, TRUE);
    EXPECT_TRUE(ArbLogContains("Enter call 3HDR exposure in 3HDR mode"));

    const AECAlgoExposureData& rShort = output.expSets[AECAlgoExposureShort];
    const AECAlgoExposureData& rSafe  = output.expSets[AECAlgoExposureSafe];
    const AECAlgoExposureData& rLong  = output.expSets[AECAlgoExposureLong];
    EXPECT_EQ(1000000U, rShort.exposureTime);
    EXPECT_FLOAT_EQ(2.0e6F, rShort.sensitivity);
    EXPECT_FLOAT_EQ(2.0F, rShort.linearGain);
    EXPECT_FLOAT_EQ(1.0F, rShort.fnumber);

    EXPECT_EQ(4000000U, rSafe.exposureTime);
    EXPECT_FLOAT_EQ(1.2e7F, rSafe.sensitivity);
    EXPECT_FLOAT_EQ(3.0F, rSafe.linearGain);
    EXPECT_FLOAT_EQ(1.4F, rSafe.fnumber);

    EXPECT_EQ(16000000U, rLong.exposureTime);
    EXPECT_FLOAT_EQ(4.8e7F, rLong.sensitivity);
    EXPECT_FLOAT_EQ(3.0F, rLong.linearGain);
    EXPECT_FLOAT_EQ(2.0F, rLong.fnumber);

    for (const AECAlgoExposureData& rSet : output.expSets)
    {
        EXPECT_FLOAT_EQ(2.0F, rSet.compenADRCGain);
    }
    EXPECT_FLOAT_EQ(2.0F, output.compenADRCGain);
    EXPECT_EQ(TRUE, CArbitratorTestPeer::CurMap3HDRSnapshot(*pArb));
}

TEST_F(ArbitratorStillTest, InSensorHDRSnapshotAfterAMappedPreviewRepeatsThatMapping)
{
    InsensorHDR().enableInsensorHDR = TRUE;
    m_realDRCGain                   = 16.0F;
    auto                    pArb    = MakeOpenArbitrator();
    const ArbitrationOutput preview = Preview(*pArb, 300.0F, 300.0F, 300.0F, FALSE);
    const ArbitrationOutput still   = Query(*pArb, 300.0F, 300.0F, 300.0F, TRUE);

    // Correction factor 1: the snapshot states the mapped times and sensitivities.
    EXPECT_EQ(preview.prevMap3HDR[0].exposureTime, still.expSets[AECAlgoExposureShort].exposureTime);
    EXPECT_EQ(preview.prevMap3HDR[2].exposureTime, still.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_EQ(preview.prevMap3HDR[1].exposureTime, still.expSets[AECAlgoExposureLong].exposureTime);
    EXPECT_FLOAT_EQ(preview.prevMap3HDR[1].sensitivity, still.expSets[AECAlgoExposureLong].sensitivity);
    EXPECT_FLOAT_EQ(preview.prevMap3HDR[1].linearGain, still.expSets[AECAlgoExposureLong].linearGain);
}

TEST_F(ArbitratorStillTest, InSensorHDRSnapshotWithoutCorrectionFactorIsRefused)
{
    InsensorHDR().enableInsensorHDR = TRUE;
    auto pArb                       = MakeOpenArbitrator();
    pArb->GetExpTable()->GetExpTable(ActiveTable)->sensitivityCorrectionFactor = 0.0F;
    CArbitratorTestPeer::CurMap3HDRSnapshot(*pArb)                             = TRUE;

    const ArbitrationOutput output = Query(*pArb, 300.0F, 300.0F, 300.0F, TRUE, AecError);
    EXPECT_TRUE(ArbLogContains("Sensor correction factor is 0!"));
    EXPECT_EQ(FALSE, CArbitratorTestPeer::CurMap3HDRSnapshot(*pArb));
    EXPECT_EQ(TRUE, CArbitratorTestPeer::PrevMap3HDRSnapshot(*pArb));
    EXPECT_EQ(0U, output.expSets[AECAlgoExposureSafe].exposureTime);
    EXPECT_TRUE(ArbLogContains("Insensor HDR snapshot status: cur 0 prev 1 final 0"));
}

TEST_F(ArbitratorStillTest, MissingArgumentsAreRefused)
{
    auto              pArb                          = MakeOpenArbitrator();
    FLOAT             indices[AECAlgoExposureCount] = {300.0F, 300.0F, 300.0F};
    ArbitrationOutput output                        = ZeroOutput();
    EXPECT_EQ(AecError, pArb->ArbitrateExposure(nullptr, &output, FALSE));
    EXPECT_EQ(AecError, pArb->ArbitrateExposure(indices, nullptr, FALSE));
    EXPECT_TRUE(ArbLogContains("Invalid argument: indices"));
    EXPECT_EQ(FALSE, CArbitratorTestPeer::IsOverallSnapshot(*pArb));
}

// ---- Low-light snapshot ----

class ArbitratorLLSTest : public ArbitratorStillTest
{
protected:
    VOID SetUp() override
    {
        ArbitratorStillTest::SetUp();
        m_pArb = MakeOpenArbitrator();
    }

    AECAlgoExposureData LLS(FLOAT index, UINT64 requiredTime, BOOL enableMaxSI, AecResult expected = AecSuccess)
    {
        ParamExtLLS ext     = {};
        ext.enable          = TRUE;
        ext.bEnableLLSMaxSI = enableMaxSI;
        AECAlgoExposureData data = {};
        EXPECT_EQ(expected, m_pArb->ArbitrateLLSExposure(&ext, index, &data, requiredTime));
        return data;
    }

    FLOAT MaxIndex() { return CArbitratorTestPeer::Session(*m_pArb).arbExpLimit.expIndex.max; }

    std::unique_ptr<CArbitrator> m_pArb;
};

TEST_F(ArbitratorLLSTest, ExposureIsStretchedToTheRequiredTimeAtTheSameProduct)
{
    const ExposureSetType     table = TableSet(*m_pArb, 300.0F);
    const AECAlgoExposureData data  = LLS(300.0F, 50000000U, FALSE);

    const FLOAT product = static_cast<FLOAT>(table.expTime) * table.gain;
    const FLOAT gain    = product / 5.0e7F;
    ASSERT_GT(gain, 1.0F);
    EXPECT_FLOAT_EQ(gain, data.linearGain);
    EXPECT_EQ(static_cast<UINT64>(product / gain), data.exposureTime);
    EXPECT_NEAR(50000000.0, static_cast<DOUBLE>(data.exposureTime), 20.0);
    EXPECT_FLOAT_EQ(Sensitivity(data.linearGain, 1.0F, data.exposureTime, 1.0F), data.sensitivity);
}

TEST_F(ArbitratorLLSTest, IndexAboveTheLimitIsNotClampedWithMaxSensitivityAndGainGrowsByTheExcess)
{
    // Two index units beyond the table's end, four times the last knee's time: the gain is 60 / 4 = 15 grown by
    // 1.03^2, still below the extended maximum 16.
    const FLOAT           excess   = 2.0F;
    const FLOAT           index    = MaxIndex() + excess;
    const ExposureSetType last     = TableSet(*m_pArb, MaxIndex());
    const UINT64          required = 4U * last.expTime;

    const AECAlgoExposureData grown = LLS(index, required, TRUE);
    const FLOAT product = static_cast<FLOAT>(last.expTime) * (last.gain * powf(ExpIndexBase, index - MaxIndex()));
    EXPECT_FLOAT_EQ(product / static_cast<FLOAT>(required), grown.linearGain);
    EXPECT_NEAR(15.0F * 1.0609F, grown.linearGain, 1e-3F);

    const AECAlgoExposureData clamped = LLS(index, required, FALSE);
    EXPECT_NEAR(15.0F, clamped.linearGain, 1e-4F);
    EXPECT_GT(grown.linearGain, clamped.linearGain);
}

TEST_F(ArbitratorLLSTest, GainAboveTheExtendedMaximumIsCappedAndTimeFollowsOnlyWithoutMaxSensitivity)
{
    // The last knee (gain 60, 82.9 ms) at twice its time wants gain 30: capped at 16.
    const ExposureSetType last     = TableSet(*m_pArb, MaxIndex());
    const UINT64          required = 2U * last.expTime;
    const FLOAT           product  = static_cast<FLOAT>(last.expTime) * last.gain;

    const AECAlgoExposureData plain = LLS(MaxIndex(), required, FALSE);
    EXPECT_FLOAT_EQ(16.0F, plain.linearGain);
    EXPECT_EQ(static_cast<UINT64>(product / 16.0F), plain.exposureTime);

    const AECAlgoExposureData maxSI = LLS(MaxIndex(), required, TRUE);
    EXPECT_FLOAT_EQ(16.0F, maxSI.linearGain);
    EXPECT_EQ(static_cast<UINT64>(product / (product / static_cast<FLOAT>(required))), maxSI.exposureTime);
}

TEST_F(ArbitratorLLSTest, SessionLimitIsRestoredAfterTheAdjustingStep)
{
    const ExposureLimitationType before = CArbitratorTestPeer::Session(*m_pArb).arbExpLimit;
    LLS(MaxIndex(), 1000000000U, FALSE);
    const ExposureLimitationType after = CArbitratorTestPeer::Session(*m_pArb).arbExpLimit;
    EXPECT_EQ(before.expTime.max, after.expTime.max);
    EXPECT_FLOAT_EQ(before.gain.max, after.gain.max);
}

TEST_F(ArbitratorLLSTest, SensitivityUsesTheCorrectionOfTheTunedTable)
{
    // The tuned record changes after adoption: the active copy keeps 1.0, the LLS sensitivity follows the record.
    ArbCore()->expTables[0].sensitivityCorrectionFactor = 3.0F;
    const AECAlgoExposureData data = LLS(300.0F, 50000000U, FALSE);
    EXPECT_FLOAT_EQ(Sensitivity(data.linearGain, 3.0F, data.exposureTime, 1.0F), data.sensitivity);
    EXPECT_FLOAT_EQ(data.sensitivity, data.snapshotSensitivity);
}

TEST_F(ArbitratorLLSTest, ZeroRequiredTimeIsRefusedAndLeavesTheData)
{
    const AECAlgoExposureData data = LLS(300.0F, 0U, FALSE, AecError);
    EXPECT_TRUE(ArbLogContains("required exposure time is 0"));
    EXPECT_EQ(0U, data.exposureTime);
}

TEST_F(ArbitratorLLSTest, MissingArgumentsAreRefused)
{
    ParamExtLLS         ext  = {};
    AECAlgoExposureData data = {};
    EXPECT_EQ(AecError, m_pArb->ArbitrateLLSExposure(nullptr, 300.0F, &data, 1000000U));
    EXPECT_EQ(AecError, m_pArb->ArbitrateLLSExposure(&ext, 300.0F, nullptr, 1000000U));
    EXPECT_TRUE(ArbLogContains("Invalid argument: LLS tuning"));
}

} // namespace
