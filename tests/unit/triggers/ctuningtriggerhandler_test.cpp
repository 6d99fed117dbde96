// Unit tests of CTuningTriggerHandler: zone choice along the trigger axis, blending in gaps, two-level tables.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "aec/core/base/ctuningtriggerhandler.h"
#include "unit/triggers/triggertestsupport.h"

namespace
{

// Zone records shaped like the tuned ones: a trigger range and the data of the zone.
struct TestTriggerPoint
{
    FLOAT start;
    FLOAT end;
};

struct TestFloatZone
{
    TestTriggerPoint zoneTrigger;
    FLOAT            zoneData;
};

// An outer zone of a two-level table, holding its own inner zone table.
struct TestGainZone
{
    TestTriggerPoint     zoneTrigger;
    UINT32               zoneDataCount;
    UINT32               zoneDataID;
    const TestFloatZone* zoneData;
};

// Three zones on a lux-like axis: [100, 200] and [300, 400] leave a gap, [400, 500] touches its neighbour.
const TestFloatZone ThreeZones[] = {
    {{100.0f, 200.0f}, 10.0f},
    {{300.0f, 400.0f}, 20.0f},
    {{400.0f, 500.0f}, 40.0f},
};
constexpr INT32 ThreeZoneCount = 3;

FLOAT Lookup(const TestFloatZone* pZones, INT32 count, FLOAT trigger)
{
    FLOAT out = -1.0f;
    EXPECT_EQ(VelaResultSuccess, CTuningTriggerHandler::GetInterpZoneDataGeneric(pZones, &out, trigger, count));
    return out;
}

TEST(TuningTriggerZoneTest, TriggerBelowFirstZoneTakesFirstZone)
{
    TriggerLogCapture capture;
    EXPECT_EQ(10.0f, Lookup(ThreeZones, ThreeZoneCount, -50.0f));
    EXPECT_EQ(10.0f, Lookup(ThreeZones, ThreeZoneCount, 99.0f));
    EXPECT_EQ(0u, TriggerLogCapture::Count(StatsLogError, NoZoneMessage));
}

TEST(TuningTriggerZoneTest, TriggerAtOrAboveLastZoneStartTakesLastZone)
{
    EXPECT_EQ(40.0f, Lookup(ThreeZones, ThreeZoneCount, 400.0f));
    EXPECT_EQ(40.0f, Lookup(ThreeZones, ThreeZoneCount, 450.0f));
    EXPECT_EQ(40.0f, Lookup(ThreeZones, ThreeZoneCount, 10000.0f));
}

TEST(TuningTriggerZoneTest, TriggerInsideZoneTakesThatZone)
{
    EXPECT_EQ(10.0f, Lookup(ThreeZones, ThreeZoneCount, 150.0f));
    EXPECT_EQ(20.0f, Lookup(ThreeZones, ThreeZoneCount, 350.0f));
}

TEST(TuningTriggerZoneTest, TriggerAtEndOfZoneBeforeGapGivesRatioZeroAndFirstZoneData)
{
    TriggerLogCapture capture;
    EXPECT_EQ(10.0f, Lookup(ThreeZones, ThreeZoneCount, 200.0f));
    EXPECT_EQ(0u, TriggerLogCapture::Count(StatsLogError, NoZoneMessage));
}

TEST(TuningTriggerZoneTest, TriggerInGapBlendsLinearly)
{
    // ratio = (200 - 250) / (200 - 300) = 0.5
    EXPECT_EQ(15.0f, Lookup(ThreeZones, ThreeZoneCount, 250.0f));
    // ratio = 0.25
    EXPECT_EQ(12.5f, Lookup(ThreeZones, ThreeZoneCount, 225.0f));
}

TEST(TuningTriggerZoneTest, TriggerJustBelowNextZoneStartBlendsAlmostFullyToNextZone)
{
    const TestFloatZone zones[] = {
        {{0.0f, 1.0f}, 0.0f},
        {{2.0f, 3.0f}, 1000.0f},
    };
    // ratio = 0.999: a blend, close to the upper zone but not equal to it.
    const FLOAT blended = Lookup(zones, 2, 1.999f);
    EXPECT_GT(blended, 998.0f);
    EXPECT_LT(blended, 1000.0f);
    EXPECT_EQ(CTuningTriggerHandler::Blend(0.0f, 1000.0f, (1.0f - 1.999f) / (1.0f - 2.0f)), blended);
}

TEST(TuningTriggerZoneTest, RatioWithinToleranceOfOneTakesNextZoneData)
{
    const TestFloatZone zones[] = {
        {{-1.0f, 0.0f}, 3.0f},
        {{1.0f, 2.0f}, 7.0f},
    };
    // The float just below 1.0 gives ratio 1 - 2^-24, within 1e-7 of 1.
    const FLOAT trigger = std::nextafter(1.0f, 0.0f);
    EXPECT_EQ(7.0f, Lookup(zones, 2, trigger));
}

TEST(TuningTriggerZoneTest, TouchingZonesSwitchWithoutBlending)
{
    // [300, 400] and [400, 500] touch: just below 400 is still the lower zone, 400 itself the upper one.
    EXPECT_EQ(20.0f, Lookup(ThreeZones, ThreeZoneCount, std::nextafter(400.0f, 0.0f)));
    EXPECT_EQ(40.0f, Lookup(ThreeZones, ThreeZoneCount, 400.0f));
}

TEST(TuningTriggerZoneTest, SingleZoneAboveStartTakesItByLastZoneRule)
{
    const TestFloatZone zone[] = {{{100.0f, 200.0f}, 5.0f}};
    EXPECT_EQ(5.0f, Lookup(zone, 1, 150.0f));
    EXPECT_EQ(5.0f, Lookup(zone, 1, 1000.0f));
}

TEST(TuningTriggerZoneTest, SingleZoneBelowStartTakesItByWithinZoneRule)
{
    TriggerLogCapture   capture;
    const TestFloatZone zone[] = {{{100.0f, 200.0f}, 5.0f}};
    EXPECT_EQ(5.0f, Lookup(zone, 1, 0.0f));
    EXPECT_EQ(0u, TriggerLogCapture::Count(StatsLogError, NoZoneMessage));
}

TEST(TuningTriggerZoneTest, SingleInvertedZoneFallsBackToItWithoutLookingPastTheTable)
{
    // end below start: a trigger between them is neither at or above the start nor below the end. The search
    // must not look for a second zone; it ends on the only one and reports it.
    TriggerLogCapture   capture;
    const TestFloatZone zone[] = {{{200.0f, 100.0f}, 5.0f}};
    EXPECT_EQ(5.0f, Lookup(zone, 1, 150.0f));
    EXPECT_EQ(1u, TriggerLogCapture::Count(StatsLogError, NoZoneMessage));
}

TEST(TuningTriggerZoneTest, TriggerThatIsNotANumberTakesLastZoneAndLogs)
{
    TriggerLogCapture capture;
    EXPECT_EQ(40.0f, Lookup(ThreeZones, ThreeZoneCount, std::numeric_limits<FLOAT>::quiet_NaN()));
    EXPECT_EQ(1u, TriggerLogCapture::Count(StatsLogError, NoZoneMessage));
}

TEST(TuningTriggerZoneTest, EmptyTableIsRefusedAndOutputUntouched)
{
    TriggerLogCapture capture;
    FLOAT             out = -3.0f;
    EXPECT_EQ(VelaResultEInvalidArg, CTuningTriggerHandler::GetInterpZoneDataGeneric(ThreeZones, &out, 150.0f, 0));
    EXPECT_EQ(VelaResultEInvalidArg, CTuningTriggerHandler::GetInterpZoneDataGeneric(ThreeZones, &out, 150.0f, -2));
    EXPECT_EQ(-3.0f, out);
    EXPECT_EQ(2u, TriggerLogCapture::Lines().size());
}

TEST(TuningTriggerZoneTest, NullTableOrOutputIsRefused)
{
    TriggerLogCapture          capture;
    FLOAT                      out       = -3.0f;
    const TestFloatZone* const pNoZones  = nullptr;
    FLOAT* const               pNoOutput = nullptr;
    EXPECT_EQ(VelaResultEInvalidArg, CTuningTriggerHandler::GetInterpZoneDataGeneric(pNoZones, &out, 150.0f, 3));
    EXPECT_EQ(VelaResultEInvalidArg,
              CTuningTriggerHandler::GetInterpZoneDataGeneric(ThreeZones, pNoOutput, 150.0f, ThreeZoneCount));
    EXPECT_EQ(-3.0f, out);
    EXPECT_EQ(2u, TriggerLogCapture::Lines().size());
}

TEST(TuningTriggerInterpolateTest, FloatBlendsAsFusedMultiplyAdd)
{
    FLOAT       out = 0.0f;
    const FLOAT a   = 10.0f;
    const FLOAT b   = 20.0f;
    CTuningTriggerHandler::InterpolateZone(&out, &a, &b, 0.25f);
    EXPECT_EQ(12.5f, out);

    // Values whose product is not representable: the fused form rounds once.
    const FLOAT x     = 1.0f / 3.0f;
    const FLOAT y     = 7.0f / 3.0f;
    const FLOAT ratio = 0.1f;
    CTuningTriggerHandler::InterpolateZone(&out, &x, &y, ratio);
    EXPECT_EQ(std::fmaf(ratio, y - x, x), out);
}

TEST(TuningTriggerInterpolateTest, RatioEndsReproduceTheZones)
{
    EXPECT_EQ(-4.0f, CTuningTriggerHandler::Blend(-4.0f, 9.0f, 0.0f));
    EXPECT_EQ(9.0f, CTuningTriggerHandler::Blend(-4.0f, 9.0f, 1.0f));
}

// Inner tables of a two-level table; the inner axis is lux-like, the outer one a ratio.
const TestFloatZone InnerLow[] = {
    {{100.0f, 200.0f}, 1.0f},
    {{300.0f, 400.0f}, 3.0f},
};
const TestFloatZone InnerHigh[] = {
    {{100.0f, 200.0f}, 10.0f},
    {{300.0f, 400.0f}, 30.0f},
};
const TestGainZone GainZones[] = {
    {{0.0f, 0.2f}, 2u, 0u, InnerLow},
    {{0.6f, 1.0f}, 2u, 1u, InnerHigh},
};
constexpr INT32 GainZoneCount = 2;

FLOAT DualLookup(const TestGainZone* pZones, INT32 count, FLOAT outerTrigger, FLOAT innerTrigger)
{
    FLOAT out = -1.0f;
    EXPECT_EQ(VelaResultSuccess,
              CTuningTriggerHandler::GetDualInterpZoneData(pZones, &out, outerTrigger, innerTrigger, count));
    return out;
}

TEST(TuningTriggerDualTest, OuterZoneChosenThenInnerTableSearched)
{
    EXPECT_EQ(1.0f, DualLookup(GainZones, GainZoneCount, 0.1f, 150.0f));
    EXPECT_EQ(2.0f, DualLookup(GainZones, GainZoneCount, 0.1f, 250.0f));
    EXPECT_EQ(30.0f, DualLookup(GainZones, GainZoneCount, 0.8f, 1000.0f));
    EXPECT_EQ(20.0f, DualLookup(GainZones, GainZoneCount, 0.8f, 250.0f));
}

TEST(TuningTriggerDualTest, OuterGapBlendsTheTwoInnerResults)
{
    // Outer ratio (0.2 - 0.4) / (0.2 - 0.6) = 0.5 in float; inner results 2 and 20.
    const FLOAT outerRatio = (0.2f - 0.4f) / (0.2f - 0.6f);
    EXPECT_EQ(CTuningTriggerHandler::Blend(2.0f, 20.0f, outerRatio),
              DualLookup(GainZones, GainZoneCount, 0.4f, 250.0f));
    EXPECT_NEAR(11.0f, DualLookup(GainZones, GainZoneCount, 0.4f, 250.0f), 1e-4f);
}

TEST(TuningTriggerDualTest, OuterRatioZeroTakesLowerOuterZoneOnly)
{
    EXPECT_EQ(3.0f, DualLookup(GainZones, GainZoneCount, 0.2f, 350.0f));
}

TEST(TuningTriggerDualTest, EmptyInnerTableIsRefusedAndOutputUntouched)
{
    TriggerLogCapture  capture;
    const TestGainZone zones[] = {
        {{0.0f, 0.2f}, 2u, 0u, InnerLow},
        {{0.6f, 1.0f}, 0u, 1u, InnerHigh},
    };
    FLOAT out = -3.0f;
    // Directly in the empty zone, and blended with it.
    EXPECT_EQ(VelaResultEInvalidArg, CTuningTriggerHandler::GetDualInterpZoneData(zones, &out, 0.8f, 150.0f, 2));
    EXPECT_EQ(VelaResultEInvalidArg, CTuningTriggerHandler::GetDualInterpZoneData(zones, &out, 0.4f, 150.0f, 2));
    EXPECT_EQ(-3.0f, out);
}

TEST(TuningTriggerDualTest, EmptyOrNullOuterTableIsRefused)
{
    TriggerLogCapture         capture;
    FLOAT                     out       = -3.0f;
    const TestGainZone* const pNoZones  = nullptr;
    FLOAT* const              pNoOutput = nullptr;
    EXPECT_EQ(VelaResultEInvalidArg, CTuningTriggerHandler::GetDualInterpZoneData(GainZones, &out, 0.1f, 150.0f, 0));
    EXPECT_EQ(VelaResultEInvalidArg, CTuningTriggerHandler::GetDualInterpZoneData(pNoZones, &out, 0.1f, 150.0f, 2));
    EXPECT_EQ(VelaResultEInvalidArg,
              CTuningTriggerHandler::GetDualInterpZoneData(GainZones, pNoOutput, 0.1f, 150.0f, GainZoneCount));
    EXPECT_EQ(-3.0f, out);
}

} // namespace
