// Property test of anti-flicker over the whole index range of table 0: safe exposures land on the mains grid with
// exposure kept, or are left alone for a reason the limits explain.
#include "unit/arb/arbtestsupport.h"

#include <cmath>

namespace
{

// What happened to one looked-up exposure.
struct SweepCounts
{
    UINT32 samples          = 0;
    UINT32 snapped          = 0; // moved to or kept on a multiple of the period
    UINT32 movedToOnePeriod = 0; // below one period, raised to it with gain lowered
    UINT32 underThreshold   = 0; // below the threshold percentage of a period, left alone
    UINT32 noCandidate      = 0; // neither neighbouring multiple admissible, left alone
    UINT32 gainTooLow       = 0; // of those, below one period: one period would need a gain under the minimum
    UINT32 limitBelowPeriod = 0; // the frame limit is shorter than one period, left alone
};

// Each time x gain passes through four single-precision roundings (time to float, period to float, the quotient,
// the product with the gain), each within 2^-24 relative, so the product stays within 2.4e-7 of the original.
constexpr DOUBLE ProductTolerance = 1e-6;

constexpr FLOAT IndexStep = 0.25F;

class AntiflickerPropertyTest : public ArbitrationTest
{
protected:
    VOID SetUp() override
    {
        ArbitrationTest::SetUp();
        m_pTuning->arbTuningData.extGyroExpCtrl.enableGyroExpCtrl = 0;
    }

    // An arbitrator in auto mode with the given sensor time range, antibanding method and minimum frame rate.
    std::unique_ptr<CArbitrator> Prepare(UINT64 sensorMaxTime, aecglobalelements::AECAntibandingVsFPSMethod method,
                                         FLOAT minFPS)
    {
        m_sensorLimits.expTime.max        = sensorMaxTime;
        ArbCore()->antibandingVsFPSMethod = method;
        std::unique_ptr<CArbitrator> pArb = MakeArbitrator(0, TRUE);
        pArb->SetParamFPSRange(minFPS);
        return pArb;
    }

    // Sweeps the raw index range of table 0 and checks each outcome against the rule the limits imply.
    SweepCounts Sweep(CArbitrator& rArb, StatisticsAntibanding mode, UINT64 period)
    {
        rArb.SetFlcikerMode(mode);
        const aecArbitration::ExposureTableType& rRaw = ArbCore()->expTables[0];
        const FLOAT  firstIndex = rRaw.expKneeEntries[0].expIndex;
        const FLOAT  lastIndex  = rRaw.expKneeEntries[rRaw.expKneeEntriesCount - 1U].expIndex;
        const FLOAT  pct        = rArb.GetExpTable()->GetThresAntiBandingMinExpTimePct();
        const UINT64 blanking   = (aecglobalelements::StrictlyEnforceFPS == ArbCore()->antibandingVsFPSMethod)
                                      ? 0U
                                      : ArbCore()->minPreviewVertBlankTime;

        SweepCounts counts;
        const UINT32 steps = static_cast<UINT32>((lastIndex - firstIndex) / IndexStep);
        for (UINT32 i = 0; i <= steps; i++)
        {
            ExposureSetType lookedUp = {};
            lookedUp.expIndex        = firstIndex + (static_cast<FLOAT>(i) * IndexStep);
            EXPECT_EQ(AecSuccess, rArb.GetExpTable()->ExpTableEntryLookUp(ActiveTable, &lookedUp,
                                                                         AECAlgoExposureSafe, SHDRAECMODEDEFAULT));
            ExposureSetType set = lookedUp;
            CoreLogCapture::Clear();

            rArb.ArbitrateExposureAdjusting(&set, AECAlgoExposureSafe, Linear, SHDRAECMODEDEFAULT);

            const ExposureLimitationType limit = rArb.GetLimitation();
            CheckOne(lookedUp, set, limit, period, pct, blanking, counts);
            if (HasFailure())
            {
                ADD_FAILURE() << "first failing index " << lookedUp.expIndex << " time " << lookedUp.expTime
                              << " gain " << lookedUp.gain;
                break;
            }
        }
        return counts;
    }

    static VOID CheckOne(const ExposureSetType&        rIn,
                         const ExposureSetType&        rOut,
                         const ExposureLimitationType& rLimit,
                         UINT64                        period,
                         FLOAT                         pct,
                         UINT64                        blanking,
                         SweepCounts&                  rCounts)
    {
        rCounts.samples++;
        const UINT64 time   = rIn.expTime;
        const FLOAT  gain   = rIn.gain;
        const BOOL   warned = ArbLogContains("warning: could not apply antibanding");

        if (rLimit.expTime.max < period)
        {
            rCounts.limitBelowPeriod++;
            ExpectUnchanged(rIn, rOut);
            return;
        }
        if (static_cast<FLOAT>(time) <= (static_cast<FLOAT>(period) * pct))
        {
            rCounts.underThreshold++;
            ExpectUnchanged(rIn, rOut);
            EXPECT_LT(time, period);
            return;
        }

        // The two neighbouring multiples and whether the limit (with the blanking the method allows) admits them.
        const UINT64 maxTime  = rLimit.expTime.max + blanking;
        const UINT64 higher   = ((time / period) + 1U) * period;
        const UINT64 lower    = higher - period;
        const FLOAT  gainHigh = static_cast<FLOAT>(time) / static_cast<FLOAT>(higher) * gain;
        const BOOL   highOk   = (gainHigh >= rLimit.gain.min) && (gainHigh <= rLimit.gain.max) &&
                                (higher >= rLimit.expTime.min) && (higher <= maxTime);
        BOOL lowOk = FALSE;
        if (lower >= period)
        {
            const FLOAT gainLow = static_cast<FLOAT>(time) / static_cast<FLOAT>(lower) * gain;
            lowOk = (gainLow >= rLimit.gain.min) && (gainLow <= rLimit.gain.max) && (lower >= rLimit.expTime.min) &&
                    (lower <= maxTime);
        }

        if ((FALSE == highOk) && (FALSE == lowOk))
        {
            rCounts.noCandidate++;
            if (time < period)
            {
                rCounts.gainTooLow++;
                EXPECT_LT(gainHigh, rLimit.gain.min);
            }
            EXPECT_TRUE(warned);
            ExpectUnchanged(rIn, rOut);
            return;
        }

        EXPECT_FALSE(warned);
        EXPECT_GE(rOut.expTime, period);
        EXPECT_EQ(0U, rOut.expTime % period) << rOut.expTime << " is off the grid of " << period;
        EXPECT_TRUE((rOut.expTime == lower) || (rOut.expTime == higher));
        const DOUBLE before = static_cast<DOUBLE>(time) * static_cast<DOUBLE>(gain);
        const DOUBLE after  = static_cast<DOUBLE>(rOut.expTime) * static_cast<DOUBLE>(rOut.gain);
        EXPECT_LE(std::fabs(after - before) / before, ProductTolerance);
        if (time < period)
        {
            rCounts.movedToOnePeriod++;
            EXPECT_EQ(period, rOut.expTime);
            EXPECT_LT(rOut.gain, gain);
        }
        else
        {
            rCounts.snapped++;
        }
    }

    // Room for the grid: of the exposures antibanding acts on, nearly all land on it. Below one period the table
    // runs at unity gain, so there one period is out of reach and the exposure stays.
    static VOID ExpectMostlySnapped(const SweepCounts& rCounts)
    {
        const UINT32 acted = rCounts.samples - rCounts.underThreshold - rCounts.limitBelowPeriod;
        EXPECT_GT(rCounts.snapped + rCounts.movedToOnePeriod, (acted * 9U) / 10U);
        EXPECT_GT(rCounts.underThreshold, 0U);
        EXPECT_GT(rCounts.gainTooLow, 0U);
    }

    // A short frame without blanking: a good part of the exposures antibanding acts on has no admissible multiple.
    static VOID ExpectOftenUnsnapped(const SweepCounts& rCounts)
    {
        const UINT32 acted = rCounts.samples - rCounts.underThreshold - rCounts.limitBelowPeriod;
        EXPECT_GT(rCounts.noCandidate, acted / 4U);
        EXPECT_GT(rCounts.snapped, acted / 4U);
    }

    static VOID ExpectUnchanged(const ExposureSetType& rIn, const ExposureSetType& rOut)
    {
        EXPECT_EQ(rIn.expTime, rOut.expTime);
        EXPECT_EQ(rIn.gain, rOut.gain);
    }
};

TEST_F(AntiflickerPropertyTest, FiftyHertzWithRoomForTheGridSnapsMostOfTheRange)
{
    std::unique_ptr<CArbitrator> pArb = Prepare(1000000000U, aecglobalelements::LegacyAllowFPSToDrop, 10.0F);

    const SweepCounts counts = Sweep(*pArb, StatisticsAntibanding50Hz, 10000000U);

    ExpectMostlySnapped(counts);
    EXPECT_EQ(0U, counts.limitBelowPeriod);
}

TEST_F(AntiflickerPropertyTest, SixtyHertzWithRoomForTheGridSnapsMostOfTheRange)
{
    std::unique_ptr<CArbitrator> pArb = Prepare(1000000000U, aecglobalelements::LegacyAllowFPSToDrop, 10.0F);

    const SweepCounts counts = Sweep(*pArb, StatisticsAntibanding60Hz, 8333333U);

    ExpectMostlySnapped(counts);
}

TEST_F(AntiflickerPropertyTest, FiftyHertzWithAShortStrictFrameLeavesMuchOfTheRangeUnsnapped)
{
    // 15 ms sensor maximum, no blanking to spend: at high gain neither 10 ms nor 20 ms is admissible.
    std::unique_ptr<CArbitrator> pArb = Prepare(15000000U, aecglobalelements::StrictlyEnforceFPS, 30.0F);

    const SweepCounts counts = Sweep(*pArb, StatisticsAntibanding50Hz, 10000000U);

    ExpectOftenUnsnapped(counts);
}

TEST_F(AntiflickerPropertyTest, SixtyHertzWithAShortStrictFrameLeavesMuchOfTheRangeUnsnapped)
{
    std::unique_ptr<CArbitrator> pArb = Prepare(15000000U, aecglobalelements::StrictlyEnforceFPS, 30.0F);

    const SweepCounts counts = Sweep(*pArb, StatisticsAntibanding60Hz, 8333333U);

    ExpectOftenUnsnapped(counts);
}

TEST_F(AntiflickerPropertyTest, FrameShorterThanOnePeriodLeavesTheWholeRange)
{
    std::unique_ptr<CArbitrator> pArb = Prepare(8000000U, aecglobalelements::StrictlyEnforceFPS, 30.0F);

    const SweepCounts counts = Sweep(*pArb, StatisticsAntibanding50Hz, 10000000U);

    EXPECT_EQ(counts.samples, counts.limitBelowPeriod);
}

} // namespace
