// Unit tests of CTuningTriggerHandler on tuned zone tables: blending per zone data type, default tuning lookups.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>

#include "aec/core/base/ctuningtriggerhandler.h"
#include "aecdefaulttuning.h"
#include "aectuningrecords.h"
#include "unit/triggers/triggertestsupport.h"

namespace
{

// Every test blends a quarter of the way from zone A to zone B; the values are chosen so the results are exact.
constexpr FLOAT Quarter = 0.25f;

constexpr INT32 Int32Max = std::numeric_limits<INT32>::max();
constexpr INT32 Int32Min = std::numeric_limits<INT32>::min();

// Zone data records hold only 4-byte FLOAT and INT32 members, so equal bytes are equal records.
template <typename RecordType>
bool SameRecord(const RecordType& rA, const RecordType& rB)
{
    static_assert(std::is_trivially_copyable_v<RecordType> && (0 == (sizeof(RecordType) % 4)),
                  "zone data records are plain 4-byte members");
    return 0 == std::memcmp(&rA, &rB, sizeof(RecordType));
}

// ---- Member blending per zone data type ----

TEST(TuningTriggerRecordBlendTest, ExtrmClrLumaTargetBlendsEachChannel)
{
    const aecMetering::ExtrmClrLumaTargetZoneDataType zoneA = {{0.5f, 0.25f, 1.0f}};
    const aecMetering::ExtrmClrLumaTargetZoneDataType zoneB = {{1.0f, 0.75f, 0.0f}};
    aecMetering::ExtrmClrLumaTargetZoneDataType       out   = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(0.625f, out.channelAdjRatio[0]);
    EXPECT_EQ(0.375f, out.channelAdjRatio[1]);
    EXPECT_EQ(0.75f, out.channelAdjRatio[2]);
}

TEST(TuningTriggerRecordBlendTest, HistLumaTargetBlendsEveryMemberAndRange)
{
    aecMetering::HistLumaTargetZoneDataType zoneA = {};
    aecMetering::HistLumaTargetZoneDataType zoneB = {};
    zoneA.minTargetAdjRatio                       = 0.5f;
    zoneB.minTargetAdjRatio                       = 1.0f;
    zoneA.maxTargetAdjRatio                       = 2.0f;
    zoneB.maxTargetAdjRatio                       = 1.0f;
    zoneA.satRefLow                               = 200.0f;
    zoneB.satRefLow                               = 220.0f;
    zoneA.satRefHigh                              = 240.0f;
    zoneB.satRefHigh                              = 248.0f;
    zoneA.darkRefLow                              = 20.0f;
    zoneB.darkRefLow                              = 12.0f;
    zoneA.darkRefHigh                             = 60.0f;
    zoneB.darkRefHigh                             = 100.0f;
    for (INT32 c = 0; c < 3; ++c)
    {
        const FLOAT shift              = 0.0625f * static_cast<FLOAT>(c);
        zoneA.histSatPushupRange[c]    = {0.5f + shift, 0.75f + shift};
        zoneB.histSatPushupRange[c]    = {0.0f + shift, 0.25f + shift};
        zoneA.histSatPushdownRange[c]  = {0.125f + shift, 0.25f + shift};
        zoneB.histSatPushdownRange[c]  = {0.625f + shift, 0.5f + shift};
        zoneA.histDarkRange[c]         = {0.0f + shift, 0.5f + shift};
        zoneB.histDarkRange[c]         = {0.25f + shift, 0.0f + shift};
    }
    zoneA.maxDRCGain       = 4.0f;
    zoneB.maxDRCGain       = 8.0f;
    zoneA.maxADRCGain      = 2.0f;
    zoneB.maxADRCGain      = 6.0f;
    zoneA.maxDarkBoostGain = 1.0f;
    zoneB.maxDarkBoostGain = 3.0f;

    aecMetering::HistLumaTargetZoneDataType out = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(0.625f, out.minTargetAdjRatio);
    EXPECT_EQ(1.75f, out.maxTargetAdjRatio);
    EXPECT_EQ(205.0f, out.satRefLow);
    EXPECT_EQ(242.0f, out.satRefHigh);
    EXPECT_EQ(18.0f, out.darkRefLow);
    EXPECT_EQ(70.0f, out.darkRefHigh);
    for (INT32 c = 0; c < 3; ++c)
    {
        SCOPED_TRACE(c);
        const FLOAT shift = 0.0625f * static_cast<FLOAT>(c);
        EXPECT_EQ(0.375f + shift, out.histSatPushupRange[c].start);
        EXPECT_EQ(0.625f + shift, out.histSatPushupRange[c].end);
        EXPECT_EQ(0.25f + shift, out.histSatPushdownRange[c].start);
        EXPECT_EQ(0.3125f + shift, out.histSatPushdownRange[c].end);
        EXPECT_EQ(0.0625f + shift, out.histDarkRange[c].start);
        EXPECT_EQ(0.375f + shift, out.histDarkRange[c].end);
    }
    EXPECT_EQ(5.0f, out.maxDRCGain);
    EXPECT_EQ(3.0f, out.maxADRCGain);
    EXPECT_EQ(1.5f, out.maxDarkBoostGain);
}

TEST(TuningTriggerRecordBlendTest, RgnAdjBlendsThresholdRangesAndWeights)
{
    const aecMetering::RgnAdjZoneDataType zoneA = {{200.0f, 240.0f}, {20.0f, 40.0f}, 0.5f, 1.0f};
    const aecMetering::RgnAdjZoneDataType zoneB = {{180.0f, 248.0f}, {28.0f, 60.0f}, 0.0f, 0.5f};
    aecMetering::RgnAdjZoneDataType       out   = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(195.0f, out.thresBrightRgn.start);
    EXPECT_EQ(242.0f, out.thresBrightRgn.end);
    EXPECT_EQ(22.0f, out.thresDarkRgn.start);
    EXPECT_EQ(45.0f, out.thresDarkRgn.end);
    EXPECT_EQ(0.375f, out.weightBrightRgnAdj);
    EXPECT_EQ(0.875f, out.weightDarkRgnAdj);
}

TEST(TuningTriggerRecordBlendTest, LuxFaceWeightBlendsStartAndEnd)
{
    const aecglobalelements::LuxFaceWeightZoneDataType zoneA = {0.5f, 1.0f};
    const aecglobalelements::LuxFaceWeightZoneDataType zoneB = {0.25f, 0.5f};
    aecglobalelements::LuxFaceWeightZoneDataType       out   = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(0.4375f, out.start);
    EXPECT_EQ(0.875f, out.end);
}

TEST(TuningTriggerRecordBlendTest, LuxLumaTargetBlendsTheTarget)
{
    const aecglobalelements::LuxLumaTargetZoneDataType zoneA = {50.0f};
    const aecglobalelements::LuxLumaTargetZoneDataType zoneB = {30.0f};
    aecglobalelements::LuxLumaTargetZoneDataType       out   = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(45.0f, out.lumaTarget);
}

TEST(TuningTriggerRecordBlendTest, YHistStretchBlendsUpperBoundsScalingAndTruncatedLevels)
{
    const aecExtension::YHistStretchZoneDataType zoneA = {0.5f, 0.125f, 1.0f, 0.75f, 4, 235, 1.5f, 8};
    const aecExtension::YHistStretchZoneDataType zoneB = {0.25f, 0.0f, 0.5f, 0.5f, 10, 220, 2.5f, 15};
    // The lower window bounds are not blended: they keep what the output held.
    aecExtension::YHistStretchZoneDataType out = {};
    out.darkBinThresLow                        = -7.0f;
    out.satBinThresLow                         = 3.0f;
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(0.4375f, out.darkBinThres);
    EXPECT_EQ(0.875f, out.satBinThres);
    EXPECT_EQ(1.75f, out.satScalingMax);
    EXPECT_EQ(5, out.darkTargetLvL);     // 5.5
    EXPECT_EQ(231, out.satTargetLvL);    // 231.25
    EXPECT_EQ(9, out.darkClampingMax);   // 9.75
    EXPECT_EQ(-7.0f, out.darkBinThresLow);
    EXPECT_EQ(3.0f, out.satBinThresLow);
}

TEST(TuningTriggerRecordBlendTest, ROIHistAdjBlendsRangesAndAdjustLimits)
{
    const aecglobalelements::ROIHistAdjZoneDataType zoneA = {
        {0.25f, 0.75f}, {0.5f, 1.5f, 0.125f, 0.875f}, {1.0f, 2.0f}, {0.75f, 2.0f, 0.0f, 1.0f}};
    const aecglobalelements::ROIHistAdjZoneDataType zoneB = {
        {0.75f, 1.0f}, {1.0f, 2.5f, 0.625f, 0.375f}, {3.0f, 6.0f}, {0.25f, 4.0f, 0.5f, 0.5f}};
    aecglobalelements::ROIHistAdjZoneDataType out = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(0.375f, out.darkLumaRatioRange.start);
    EXPECT_EQ(0.8125f, out.darkLumaRatioRange.end);
    EXPECT_EQ(0.625f, out.darkROIAdjustParams.minTargetAdjRatio);
    EXPECT_EQ(1.75f, out.darkROIAdjustParams.maxTargetAdjRatio);
    EXPECT_EQ(0.25f, out.darkROIAdjustParams.darkRefLow);
    EXPECT_EQ(0.75f, out.darkROIAdjustParams.satRefHigh);
    EXPECT_EQ(1.5f, out.brightLumaRatioRange.start);
    EXPECT_EQ(3.0f, out.brightLumaRatioRange.end);
    EXPECT_EQ(0.625f, out.brightROIAdjustParams.minTargetAdjRatio);
    EXPECT_EQ(2.5f, out.brightROIAdjustParams.maxTargetAdjRatio);
    EXPECT_EQ(0.125f, out.brightROIAdjustParams.darkRefLow);
    EXPECT_EQ(0.875f, out.brightROIAdjustParams.satRefHigh);
}

TEST(TuningTriggerRecordBlendTest, LuxFinalTMTargetBlendsTheTarget)
{
    const aecglobalelements::LuxFinalTMTargetZoneDataType zoneA = {400.0f};
    const aecglobalelements::LuxFinalTMTargetZoneDataType zoneB = {600.0f};
    aecglobalelements::LuxFinalTMTargetZoneDataType       out   = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(450.0f, out.TMTarget);
}

TEST(TuningTriggerRecordBlendTest, SuppressNonLinearBlendsTheOutputGain)
{
    const aecMetering::SuppressNonLinearZoneDataType zoneA = {1.0f};
    const aecMetering::SuppressNonLinearZoneDataType zoneB = {2.0f};
    aecMetering::SuppressNonLinearZoneDataType       out   = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(1.25f, out.outputGain);
}

TEST(TuningTriggerRecordBlendTest, ADRCGainAdjustBlendsTheTolerance)
{
    const aecMetering::ADRCGainAdjustZoneDataType zoneA = {0.5f};
    const aecMetering::ADRCGainAdjustZoneDataType zoneB = {0.0f};
    aecMetering::ADRCGainAdjustZoneDataType       out   = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(0.375f, out.tolerance);
}

TEST(TuningTriggerRecordBlendTest, PredictiveSaturationBlendsStepSizeFactorAndDecay)
{
    const aecConvergence::PredictiveSaturationZoneDataType zoneA = {{15.0f, 40.0f}, 0.5f, 1.0f};
    const aecConvergence::PredictiveSaturationZoneDataType zoneB = {{5.0f, 20.0f}, 1.0f, 0.5f};
    aecConvergence::PredictiveSaturationZoneDataType       out   = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(12.5f, out.stepSize.start);
    EXPECT_EQ(35.0f, out.stepSize.end);
    EXPECT_EQ(0.625f, out.predictiveFactor);
    EXPECT_EQ(0.875f, out.decay);
}

TEST(TuningTriggerRecordBlendTest, DynamicMixingBlendsTheWeight)
{
    const aecSync::DynamicMixingZoneDataType zoneA = {1.0f};
    const aecSync::DynamicMixingZoneDataType zoneB = {0.5f};
    aecSync::DynamicMixingZoneDataType       out   = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(0.875f, out.weight);
}

TEST(TuningTriggerRecordBlendTest, DFSSkipCountBlendsAndTruncatesBothIntegers)
{
    const aecSkip::DFSSkipCountZoneDataType zoneA = {1, 15};
    const aecSkip::DFSSkipCountZoneDataType zoneB = {3, 60};
    aecSkip::DFSSkipCountZoneDataType       out   = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(1, out.DFSSkipCount);           // 1.5
    EXPECT_EQ(26, out.DFSMinSettleThreshold); // 26.25
}

TEST(TuningTriggerRecordBlendTest, IntegerMembersTruncateTowardsZero)
{
    // -5.5 truncates to -5 (not -6 as rounding down would give); 5.5 to 5.
    const aecSkip::DFSSkipCountZoneDataType zoneA = {-2, 0};
    const aecSkip::DFSSkipCountZoneDataType zoneB = {-9, 11};
    aecSkip::DFSSkipCountZoneDataType       out   = {};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, 0.5f);
    EXPECT_EQ(-5, out.DFSSkipCount);
    EXPECT_EQ(5, out.DFSMinSettleThreshold);
}

TEST(TuningTriggerRecordBlendTest, OutputMayBeOneOfTheZones)
{
    aecConvergence::PredictiveSaturationZoneDataType       zoneA = {{15.0f, 40.0f}, 0.5f, 1.0f};
    const aecConvergence::PredictiveSaturationZoneDataType zoneB = {{5.0f, 20.0f}, 1.0f, 0.5f};
    CTuningTriggerHandler::InterpolateZone(&zoneA, &zoneA, &zoneB, Quarter);
    EXPECT_EQ(12.5f, zoneA.stepSize.start);
    EXPECT_EQ(35.0f, zoneA.stepSize.end);
    EXPECT_EQ(0.625f, zoneA.predictiveFactor);
    EXPECT_EQ(0.875f, zoneA.decay);
}

// ---- Guards of the blending ----

TEST(TuningTriggerRecordBlendTest, IntegerBlendBeyondInt32RangeSaturates)
{
    TriggerLogCapture                       capture;
    const aecSkip::DFSSkipCountZoneDataType zoneA = {0, 0};
    const aecSkip::DFSSkipCountZoneDataType zoneB = {Int32Max, Int32Min};
    aecSkip::DFSSkipCountZoneDataType       out   = {};
    // A caller's ratio of 2 overshoots zone B.
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, 2.0f);
    EXPECT_EQ(Int32Max, out.DFSSkipCount);
    EXPECT_EQ(Int32Min, out.DFSMinSettleThreshold);

    // INT32 max itself rounds up to 2^31 as FLOAT.
    const aecSkip::DFSSkipCountZoneDataType limits = {Int32Max, Int32Min};
    CTuningTriggerHandler::InterpolateZone(&out, &limits, &limits, 0.5f);
    EXPECT_EQ(Int32Max, out.DFSSkipCount);
    EXPECT_EQ(Int32Min, out.DFSMinSettleThreshold);
}

TEST(TuningTriggerRecordBlendTest, IntegerBlendThatIsNotANumberKeepsZoneAAndLogs)
{
    TriggerLogCapture                       capture;
    const aecSkip::DFSSkipCountZoneDataType zoneA = {2, 30};
    const aecSkip::DFSSkipCountZoneDataType zoneB = {4, 60};
    aecSkip::DFSSkipCountZoneDataType       out   = {-1, -1};
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, &zoneB, std::numeric_limits<FLOAT>::quiet_NaN());
    EXPECT_EQ(2, out.DFSSkipCount);
    EXPECT_EQ(30, out.DFSMinSettleThreshold);
    EXPECT_EQ(2u, TriggerLogCapture::Lines().size());
    for (const CapturedLine& rLine : TriggerLogCapture::Lines())
    {
        EXPECT_EQ(StatsLogError, rLine.level);
    }
}

TEST(TuningTriggerRecordBlendTest, NullRecordsAreRefusedAndOutputUntouched)
{
    TriggerLogCapture                                   capture;
    const aecMetering::RgnAdjZoneDataType               zoneA   = {{200.0f, 240.0f}, {20.0f, 40.0f}, 0.5f, 1.0f};
    const aecMetering::RgnAdjZoneDataType*              pNoZone = nullptr;
    aecMetering::RgnAdjZoneDataType* const              pNoOut  = nullptr;
    aecMetering::RgnAdjZoneDataType                     out     = {{-1.0f, -1.0f}, {-1.0f, -1.0f}, -1.0f, -1.0f};
    const aecMetering::RgnAdjZoneDataType               before  = out;
    CTuningTriggerHandler::InterpolateZone(&out, pNoZone, &zoneA, Quarter);
    CTuningTriggerHandler::InterpolateZone(&out, &zoneA, pNoZone, Quarter);
    CTuningTriggerHandler::InterpolateZone(pNoOut, &zoneA, &zoneA, Quarter);
    EXPECT_TRUE(SameRecord(before, out));

    FLOAT        value    = -3.0f;
    const FLOAT* pNoValue = nullptr;
    CTuningTriggerHandler::InterpolateZone(&value, pNoValue, &value, Quarter);
    EXPECT_EQ(-3.0f, value);
    EXPECT_EQ(4u, TriggerLogCapture::Lines().size());
}

// ---- Lookups in tuned zone tables ----

TEST(TuningTriggerTableLookupTest, GapBetweenTunedZonesBlendsTheirRecords)
{
    const aecSkip::DFSSkipCountZoneType zones[] = {
        {{10.0f, 20.0f}, {1, 15}},
        {{30.0f, 40.0f}, {3, 60}},
    };
    aecSkip::DFSSkipCountZoneDataType out = {};
    // ratio (20 - 25) / (20 - 30) = 0.5
    EXPECT_EQ(VelaResultSuccess, CTuningTriggerHandler::GetInterpZoneData(zones, &out, 25.0f, 2));
    EXPECT_EQ(2, out.DFSSkipCount);
    EXPECT_EQ(37, out.DFSMinSettleThreshold); // 37.5
    EXPECT_EQ(VelaResultSuccess, CTuningTriggerHandler::GetInterpZoneData(zones, &out, 35.0f, 2));
    EXPECT_EQ(3, out.DFSSkipCount);
    EXPECT_EQ(60, out.DFSMinSettleThreshold);
}

TEST(TuningTriggerTableLookupTest, EmptyTunedTableIsRefusedAndOutputUntouched)
{
    TriggerLogCapture                             capture;
    const aecglobalelements::LuxLumaTargetZoneType zones[] = {{{0.0f, 100.0f}, {50.0f}}};
    aecglobalelements::LuxLumaTargetZoneDataType   out     = {-1.0f};
    EXPECT_EQ(VelaResultEInvalidArg, CTuningTriggerHandler::GetInterpZoneData(zones, &out, 50.0f, 0));
    EXPECT_EQ(-1.0f, out.lumaTarget);
}

// Looks up a tuned table below its first zone, inside it, between its first two zones and at its last zone, and
// compares with the zones' own data or their blend.
template <typename ZoneType>
void ExpectTableLookup(const ZoneType* pZones, UINT32 count)
{
    using DataType = std::remove_cv_t<decltype(pZones->zoneData)>;
    ASSERT_NE(nullptr, pZones);
    ASSERT_GE(count, 2u);
    const INT32     zoneCount = static_cast<INT32>(count);
    const ZoneType& rFirst    = pZones[0];
    const ZoneType& rSecond   = pZones[1];
    const ZoneType& rLast     = pZones[zoneCount - 1];

    DataType out = {};
    EXPECT_EQ(VelaResultSuccess,
              CTuningTriggerHandler::GetInterpZoneData(pZones, &out, rFirst.zoneTrigger.start - 1.0f, zoneCount));
    EXPECT_TRUE(SameRecord(rFirst.zoneData, out)) << "below the first zone";

    out = DataType{};
    const FLOAT inFirst = 0.5f * (rFirst.zoneTrigger.start + rFirst.zoneTrigger.end);
    EXPECT_EQ(VelaResultSuccess, CTuningTriggerHandler::GetInterpZoneData(pZones, &out, inFirst, zoneCount));
    EXPECT_TRUE(SameRecord(rFirst.zoneData, out)) << "inside the first zone";

    out = DataType{};
    EXPECT_EQ(VelaResultSuccess,
              CTuningTriggerHandler::GetInterpZoneData(pZones, &out, rLast.zoneTrigger.start, zoneCount));
    EXPECT_TRUE(SameRecord(rLast.zoneData, out)) << "at the last zone's start";

    if (rFirst.zoneTrigger.end < rSecond.zoneTrigger.start)
    {
        const FLOAT trigger  = 0.5f * (rFirst.zoneTrigger.end + rSecond.zoneTrigger.start);
        const FLOAT ratio =
            (rFirst.zoneTrigger.end - trigger) / (rFirst.zoneTrigger.end - rSecond.zoneTrigger.start);
        DataType    expected = {};
        CTuningTriggerHandler::InterpolateZone(&expected, &rFirst.zoneData, &rSecond.zoneData, ratio);
        out = DataType{};
        EXPECT_EQ(VelaResultSuccess, CTuningTriggerHandler::GetInterpZoneData(pZones, &out, trigger, zoneCount));
        EXPECT_TRUE(SameRecord(expected, out)) << "in the gap after the first zone";
    }
    else
    {
        out = DataType{};
        EXPECT_EQ(VelaResultSuccess, CTuningTriggerHandler::GetInterpZoneData(
                                         pZones, &out, std::nextafter(rFirst.zoneTrigger.end, -1e9f), zoneCount));
        EXPECT_TRUE(SameRecord(rFirst.zoneData, out)) << "just below the end of the first zone";
        out = DataType{};
        EXPECT_EQ(VelaResultSuccess,
                  CTuningTriggerHandler::GetInterpZoneData(pZones, &out, rSecond.zoneTrigger.start, zoneCount));
        EXPECT_TRUE(SameRecord(rSecond.zoneData, out)) << "at the start of the touching second zone";
    }
}

TEST(TuningTriggerDefaultTuningTest, MeteringTablesLookUpByLuxIndexAndGain)
{
    auto pMetering = std::make_unique<aecMetering::AECCoreMeteringType>();
    FillDefaultAECCoreMeteringType(pMetering.get());
    const auto& rTarget = pMetering->mtrLumaTarget;
    {
        SCOPED_TRACE("luxLumaTargetZone");
        ExpectTableLookup(rTarget.luxLumaTarget.luxLumaTargetZone, rTarget.luxLumaTarget.luxLumaTargetZoneCount);
    }
    {
        SCOPED_TRACE("histLumaTargetZone");
        ExpectTableLookup(rTarget.histLumaTarget.histLumaTargetZone, rTarget.histLumaTarget.histLumaTargetZoneCount);
    }
    {
        SCOPED_TRACE("ADRCGainAdjustZone");
        ExpectTableLookup(rTarget.histLumaTarget.SensorHDRGainAdjust.ADRCGainAdjustZone,
                          rTarget.histLumaTarget.SensorHDRGainAdjust.ADRCGainAdjustZoneCount);
    }
    {
        SCOPED_TRACE("extrmClrLumaTargetZone");
        ExpectTableLookup(rTarget.extrmClrLumaTarget.extrmClrLumaTargetZone,
                          rTarget.extrmClrLumaTarget.extrmClrLumaTargetZoneCount);
    }
    {
        SCOPED_TRACE("suppressNonLinearZone");
        const auto& rSuppress = rTarget.advancedTarget.advLuxTgt.suppressNonLinearLuma;
        ExpectTableLookup(rSuppress.suppressNonLinearZone, rSuppress.suppressNonLinearZoneCount);
    }
    {
        SCOPED_TRACE("rgnAdjZone");
        const auto& rRgnAdj = pMetering->mtrLumaCalc.lumaRgnAdj;
        ExpectTableLookup(rRgnAdj.rgnAdjZone, rRgnAdj.rgnAdjZoneCount);
    }
}

TEST(TuningTriggerDefaultTuningTest, FaceWeightLooksUpByLuxIndex)
{
    auto pFace = std::make_unique<aecFace::AECFaceType>();
    FillDefaultAECFaceType(pFace.get());
    const auto& rTrigger = pFace->faceMtr.faceLumaWeightLuxIndexTrigger;
    ExpectTableLookup(rTrigger.LuxFaceLumaWeight, rTrigger.LuxFaceLumaWeightCount);
}

TEST(TuningTriggerDefaultTuningTest, FlashTargetLooksUpByLuxIndex)
{
    auto pFlash = std::make_unique<aecFlash::AECFlashType>();
    FillDefaultAECFlashType(pFlash.get());
    const auto& rTarget = pFlash->flashMtr.flashLumaTarget;
    ExpectTableLookup(rTarget.flashTarget, rTarget.flashTargetCount);
}

TEST(TuningTriggerDefaultTuningTest, HistogramStretchLooksUpByLuxIndex)
{
    auto pExtension = std::make_unique<aecExtension::AECCoreExtensionType>();
    FillDefaultAECCoreExtensionType(pExtension.get());
    ExpectTableLookup(pExtension->YHistStretch.yHistStretchZone, pExtension->YHistStretch.yHistStretchZoneCount);
}

TEST(TuningTriggerDefaultTuningTest, TouchHistogramAdjustmentLooksUpByLuxIndex)
{
    auto pTouch = std::make_unique<aecTouch::AECTouchType>();
    FillDefaultAECTouchType(pTouch.get());
    ExpectTableLookup(pTouch->touchMtr.ROIHistAdjZone, pTouch->touchMtr.ROIHistAdjZoneCount);
}

TEST(TuningTriggerDefaultTuningTest, ToneMappedTargetLooksUpByLuxIndex)
{
    auto pShdr = std::make_unique<aecShdr::AECShdrType>();
    FillDefaultAECShdrType(pShdr.get());
    ExpectTableLookup(pShdr->shdrMtr.LuxFinalTMTarget, pShdr->shdrMtr.LuxFinalTMTargetCount);
}

TEST(TuningTriggerDefaultTuningTest, MultiCameraTablesLookUp)
{
    auto pMultiCam = std::make_unique<aecSync::AECMultiCamType>();
    FillDefaultAECMultiCamType(pMultiCam.get());
    {
        SCOPED_TRACE("dynamicMixingConfig");
        const auto& rMix = pMultiCam->mtrMixConfig;
        ExpectTableLookup(rMix.dynamicMixingConfig, rMix.dynamicMixingConfigCount);
    }
    const auto& rSync = pMultiCam->expSyncConfig;
    {
        SCOPED_TRACE("refAbsSensitivity");
        ExpectTableLookup(rSync.refAbsSensitivity, rSync.refAbsSensitivityCount);
    }
    {
        SCOPED_TRACE("CCTBasedExpComp");
        ExpectTableLookup(rSync.CCTBasedExpComp, rSync.CCTBasedExpCompCount);
    }
}

TEST(TuningTriggerDefaultTuningTest, SkipCountLooksUpByFrameRate)
{
    auto pSkip = std::make_unique<aecSkip::AECSkipCtrlType>();
    FillDefaultAECSkipCtrlType(pSkip.get());
    ExpectTableLookup(pSkip->DFSSkipCountZone, pSkip->DFSSkipCountZoneCount);
}

TEST(TuningTriggerDefaultTuningTest, PredictiveInnerTablesLookUpByLuxIndex)
{
    auto pConvergence = std::make_unique<aecConvergence::AECCoreConvergenceType>();
    FillDefaultAECCoreConvergenceType(pConvergence.get());
    const auto& rPredictive = pConvergence->fastConv.predictiveConvergence;
    ASSERT_GE(rPredictive.predictiveTriggerCount, 1u);
    for (UINT32 i = 0; i < rPredictive.predictiveTriggerCount; ++i)
    {
        SCOPED_TRACE(i);
        ExpectTableLookup(rPredictive.predictiveTrigger[i].zoneData, rPredictive.predictiveTrigger[i].zoneDataCount);
    }
}

// ---- The two-level predictive table ----

TEST(TuningTriggerPredictiveTest, OuterGapBlendsTheInnerRecordsOfBothOuterZones)
{
    aecConvergence::PredictiveSaturationZoneType innerLow[]  = {{{0.0f, 100.0f}, {{10.0f, 20.0f}, 0.5f, 0.25f}}};
    aecConvergence::PredictiveSaturationZoneType innerHigh[] = {{{0.0f, 100.0f}, {{30.0f, 60.0f}, 1.0f, 0.75f}}};
    const aecConvergence::PredictiveGainZoneType zones[]     = {
        {{0.0f, 0.25f}, 1u, 1u, innerLow},
        {{0.75f, 1.0f}, 1u, 1u, innerHigh},
    };
    aecConvergence::PredictiveSaturationZoneDataType out = {};
    // Outer ratio (0.25 - 0.5) / (0.25 - 0.75) = 0.5.
    EXPECT_EQ(VelaResultSuccess, CTuningTriggerHandler::GetDualInterpZoneData(zones, &out, 0.5f, 50.0f, 2));
    EXPECT_EQ(20.0f, out.stepSize.start);
    EXPECT_EQ(40.0f, out.stepSize.end);
    EXPECT_EQ(0.75f, out.predictiveFactor);
    EXPECT_EQ(0.5f, out.decay);

    // Inside an outer zone only its inner table counts.
    EXPECT_EQ(VelaResultSuccess, CTuningTriggerHandler::GetDualInterpZoneData(zones, &out, 0.9f, 50.0f, 2));
    EXPECT_TRUE(SameRecord(innerHigh[0].zoneData, out));
}

TEST(TuningTriggerPredictiveTest, DefaultTuningBlendsAcrossBrightRatioZones)
{
    auto pConvergence = std::make_unique<aecConvergence::AECCoreConvergenceType>();
    FillDefaultAECCoreConvergenceType(pConvergence.get());
    const auto& rPredictive = pConvergence->fastConv.predictiveConvergence;
    ASSERT_GE(rPredictive.predictiveTriggerCount, 2u);
    const aecConvergence::PredictiveGainZoneType& rLow  = rPredictive.predictiveTrigger[0];
    const aecConvergence::PredictiveGainZoneType& rHigh = rPredictive.predictiveTrigger[1];
    ASSERT_LT(rLow.zoneTrigger.end, rHigh.zoneTrigger.start) << "the default bright ratio zones leave a gap";

    const FLOAT luxIndex    = 300.0f;
    const FLOAT brightRatio = 0.5f * (rLow.zoneTrigger.end + rHigh.zoneTrigger.start);
    const FLOAT outerRatio =
        (rLow.zoneTrigger.end - brightRatio) / (rLow.zoneTrigger.end - rHigh.zoneTrigger.start);

    aecConvergence::PredictiveSaturationZoneDataType innerLow  = {};
    aecConvergence::PredictiveSaturationZoneDataType innerHigh = {};
    aecConvergence::PredictiveSaturationZoneDataType expected  = {};
    ASSERT_EQ(VelaResultSuccess, CTuningTriggerHandler::GetInterpZoneData(rLow.zoneData, &innerLow, luxIndex,
                                                                          static_cast<INT32>(rLow.zoneDataCount)));
    ASSERT_EQ(VelaResultSuccess, CTuningTriggerHandler::GetInterpZoneData(rHigh.zoneData, &innerHigh, luxIndex,
                                                                          static_cast<INT32>(rHigh.zoneDataCount)));
    CTuningTriggerHandler::InterpolateZone(&expected, &innerLow, &innerHigh, outerRatio);

    aecConvergence::PredictiveSaturationZoneDataType out = {};
    EXPECT_EQ(VelaResultSuccess,
              CTuningTriggerHandler::GetDualInterpZoneData(rPredictive.predictiveTrigger, &out, brightRatio, luxIndex,
                                                           static_cast<INT32>(rPredictive.predictiveTriggerCount)));
    EXPECT_TRUE(SameRecord(expected, out));
}

} // namespace
