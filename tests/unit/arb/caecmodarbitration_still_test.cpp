// Tests of the module's still query: table switch, index conversion, EV offset, grid, clamp, LLS, DRC, debug data.
#include "unit/arb/caecmodarbitration_testfixture.h"

#include <cmath>

namespace
{

using Peer = CAECModArbitrationTestPeer;

class ArbModuleStillTest : public ArbModuleTest
{
protected:
    ArbitrationOutput Query(ArbitrationStillInput input, AecResult expected = AecSuccess)
    {
        ArbitrationOutput output = {};
        EXPECT_EQ(expected, m_pModule->ArbitrateExposure(&input, &output));
        return output;
    }

    static VOID ExpectSameExposure(const ArbitrationOutput& rA, const ArbitrationOutput& rB)
    {
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            EXPECT_EQ(rA.expSets[i].exposureTime, rB.expSets[i].exposureTime) << i;
            EXPECT_FLOAT_EQ(rA.expSets[i].linearGain, rB.expSets[i].linearGain) << i;
        }
    }

    static DOUBLE Product(const AECAlgoExposureData& rSet)
    {
        return static_cast<DOUBLE>(rSet.exposureTime) * static_cast<DOUBLE>(rSet.linearGain);
    }

    ConvergenceTuningDataType& ConvTuning() { return m_pTuning->convTuningData; }
};

TEST_F(ArbModuleStillTest, WithoutTunedTableTheQueryGetsTheInitialOutput)
{
    const ArbitrationOutput out = Query(StillInput(200.0F), AecError);
    EXPECT_TRUE(ArbLogContains("no valid exposure table"));
    ExpectInitialOutput(out);
}

TEST_F(ArbModuleStillTest, InvalidQueryTypeLeavesTheInitialValues)
{
    TuneModule();
    const ArbitrationOutput out = Query(StillInput(200.0F, static_cast<AECAlgoSnapshotType>(7)), AecError);
    EXPECT_TRUE(ArbLogContains("Warning: invalid snapshot query type"));
    ExpectInitialOutput(out);
}

TEST_F(ArbModuleStillTest, NormalQueryIsLoggedAndArbitratedByTheStillArbitrator)
{
    TuneModule();
    const ArbitrationOutput out = Query(StillInput(250.0F));
    EXPECT_TRUE(ArbLogContains("Normal exposure Query"));
    EXPECT_NE(1000000U, out.expSets[AECAlgoExposureSafe].exposureTime);
    for (const AECAlgoExposureData& rSet : out.expSets)
    {
        EXPECT_FLOAT_EQ(0.0F, rSet.deltaEVFromTarget);
    }
    EXPECT_GT(out.FPS, 0.0F);
}

TEST_F(ArbModuleStillTest, SnapshotKindWithAnotherTableSwitchesTheStillTable)
{
    TuneModule();
    FlashTuning()->expTableIDMainFlash = 1;
    Query(StillInput(250.0F, AECAlgoSnapshotFlash));
    EXPECT_TRUE(ArbLogContains("Switched Snapshot Exposure table to 1, sensitivity"));
    EXPECT_EQ(1, Peer::TableIDStill(*m_pModule));
    EXPECT_EQ(1, StillArb().GetTableID());

    CoreLogCapture::Clear();
    Query(StillInput(250.0F, AECAlgoSnapshotFlash));
    EXPECT_FALSE(ArbLogContains("Switched Snapshot Exposure table"));
}

TEST_F(ArbModuleStillTest, IndicesOfTheReferenceModeAreConvertedToTheSnapshotTable)
{
    StartUpTuning()->expTableIDFastAEC = 1;
    TuneModule();
    ArbitrationStillInput converted   = StillInput(250.0F);
    converted.snapshotQuery.refOpMode = AECAlgoOperationModeFastAEC;
    const ArbitrationOutput outConverted = Query(converted);
    EXPECT_TRUE(ArbLogContains("Converting Exposure ID[3]->[0]: Offset : -23.44"));

    // The converted index lies on the unit grid again.
    const FLOAT expectedIndex = std::round(250.0F + OffsetForScale(2.0));
    ExpectSameExposure(Query(StillInput(expectedIndex)), outConverted);
}

TEST_F(ArbModuleStillTest, IndicesAreRoundedToTheUnitStep)
{
    TuneModule();
    auto* pConv         = const_cast<aecConvergence::AECCoreConvergenceType*>(ConvTuning().pCore);
    pConv->unitStepSize = 2.0F;
    ExpectSameExposure(Query(StillInput(102.0F)), Query(StillInput(101.2F)));
    ExpectSameExposure(Query(StillInput(102.0F)), Query(StillInput(101.0F)));
}

TEST_F(ArbModuleStillTest, IndexAboveTheStillLimitIsClamped)
{
    TuneModule();
    // An index on the grid just beyond the limit lands exactly on it, as any index further out must.
    const FLOAT max = StillArb().GetLimitation().expIndex.max;
    ExpectSameExposure(Query(StillInput(std::ceil(max))), Query(StillInput(max + 40.0F)));
    const FLOAT min = StillArb().GetLimitation().expIndex.min;
    ExpectSameExposure(Query(StillInput(std::floor(min))), Query(StillInput(min - 40.0F)));
}

TEST_F(ArbModuleStillTest, NegativeEVOffsetIsHonouredFromAnExhaustedTable)
{
    TuneModule();
    const ExposureLimitationType limit = StillArb().GetLimitation();
    ArbitrationStillInput        input = StillInput(limit.expIndex.max + 50.0F);
    input.TargetIndex                  = limit.expIndex.max + 50.0F;
    input.EVOffset                     = -23.449795F;
    const ArbitrationOutput out        = Query(input);
    ExpectSameExposure(Query(StillInput(std::round(limit.expIndex.max - 23.449795F))), out);

    // A positive offset, or a target the table still reaches, takes the index as it is (clamped).
    input.EVOffset = 10.0F;
    ExpectSameExposure(Query(StillInput(std::ceil(limit.expIndex.max))), Query(input));
}

TEST_F(ArbModuleStillTest, LLSQueryWithExtendedSensitivityIsNotClampedAndGainGrowsByTheExcess)
{
    TuneModule();
    m_pTuning->arbTuningData.paramExtLLS.bEnableLLSMaxSI = 0;
    m_pTuning->arbTuningData.paramExtLLS.bLLSEnableADRC  = 0;
    m_history[1].LLSRequiredExpTime                      = 1000000000U;
    const FLOAT limitMax                                 = StillArb().GetLimitation().expIndex.max;
    const FLOAT index                                    = std::round(limitMax) + 20.0F;
    const FLOAT excess                                   = index - limitMax;

    const ArbitrationOutput clamped = Query(StillInput(index, AECAlgoSnapshotLLS));
    EXPECT_TRUE(ArbLogContains("LLS exposure Query"));
    m_pTuning->arbTuningData.paramExtLLS.bEnableLLSMaxSI = 1;
    const ArbitrationOutput extended = Query(StillInput(index, AECAlgoSnapshotLLS));

    const DOUBLE ratio = Product(extended.expSets[AECAlgoExposureSafe]) / Product(clamped.expSets[AECAlgoExposureSafe]);
    EXPECT_NEAR(static_cast<DOUBLE>(std::pow(1.03F, excess)), ratio, 1e-3);
    // Without the in-sensor ADRC the safe exposure serves all three.
    EXPECT_EQ(extended.expSets[AECAlgoExposureSafe].exposureTime, extended.expSets[AECAlgoExposureShort].exposureTime);
    EXPECT_EQ(extended.expSets[AECAlgoExposureSafe].exposureTime, extended.expSets[AECAlgoExposureLong].exposureTime);
}

TEST_F(ArbModuleStillTest, LLSQueryWithoutPreviousFrameLeavesTheInitialValues)
{
    TuneModule();
    m_hasHistory                = FALSE;
    const ArbitrationOutput out = Query(StillInput(250.0F, AECAlgoSnapshotLLS), AecError);
    EXPECT_TRUE(ArbLogContains("LLS query: no previous frame"));
    ExpectInitialOutput(out);
}

TEST_F(ArbModuleStillTest, LLSQueryWithADRCArbitratesEachExposure)
{
    TuneModule();
    m_pTuning->arbTuningData.paramExtLLS.bLLSEnableADRC = 1;
    m_history[1].LLSRequiredExpTime                     = 200000000U;
    ArbitrationStillInput input                         = StillInput(250.0F, AECAlgoSnapshotLLS);
    input.expIndices[AECAlgoExposureShort]              = 200.0F;
    const ArbitrationOutput out                         = Query(input);
    EXPECT_LT(Product(out.expSets[AECAlgoExposureShort]), Product(out.expSets[AECAlgoExposureSafe]));
}

TEST_F(ArbModuleStillTest, WithoutDRCShortAndSafeTakeTheLongExposure)
{
    TuneModule();
    m_DRCEnable                          = FALSE;
    ArbitrationStillInput input          = StillInput(250.0F);
    input.expIndices[AECAlgoExposureLong] = 280.0F;
    const ArbitrationOutput out          = Query(input);
    const AECAlgoExposureData& rLong     = out.expSets[AECAlgoExposureLong];
    for (UINT32 i : {static_cast<UINT32>(AECAlgoExposureShort), static_cast<UINT32>(AECAlgoExposureSafe)})
    {
        EXPECT_EQ(rLong.exposureTime, out.expSets[i].exposureTime);
        EXPECT_FLOAT_EQ(rLong.linearGain, out.expSets[i].linearGain);
        EXPECT_FLOAT_EQ(rLong.sensitivity, out.expSets[i].sensitivity);
    }
}

TEST_F(ArbModuleStillTest, DebugDataRecordsTheSnapshotKind)
{
    TuneModule();
    m_debugEnable               = TRUE;
    const ArbitrationOutput out = Query(StillInput(250.0F));
    EXPECT_EQ(2U, +Peer::DebugData(*m_pModule).exposureInstance);
    EXPECT_EQ(out.expSets[AECAlgoExposureSafe].exposureTime, +Peer::DebugData(*m_pModule).exposureTime[2]);

    FlashTuning()->expTableIDMainFlash = 1;
    Query(StillInput(250.0F, AECAlgoSnapshotFlash));
    EXPECT_EQ(3U, +Peer::DebugData(*m_pModule).exposureInstance);
    EXPECT_EQ(1U, +Peer::DebugData(*m_pModule).exposureTableID);
}

TEST_F(ArbModuleStillTest, ExifStatesTheQueryEV)
{
    TuneModule();
    ArbitrationStillInput input = StillInput(250.0F);
    input.EV                    = -1.5F;
    EXPECT_FLOAT_EQ(-1.5F, Query(input).exif.APEXValues.exposureValue);
}

} // namespace
