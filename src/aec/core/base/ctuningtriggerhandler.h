// Zone lookup of tuning tables: turns a trigger value (lux index, frame rate, ...) into one record of zone data.
#ifndef AEC_CORE_BASE_CTUNINGTRIGGERHANDLER_H
#define AEC_CORE_BASE_CTUNINGTRIGGERHANDLER_H

#include <cmath>

#include "aecore/aecore.h"
#include "platform/statslogger.h"

// Declared only: the records come from the generated tuning headers, which the blending code includes. Callers
// bring the complete types of the tables they look up, so this header stays free of any tuning definition.
namespace aecglobalelements
{
struct LuxLumaTargetZoneDataType;
struct LuxLumaTargetZoneType;
struct LuxFaceWeightZoneDataType;
struct LuxFaceWeightZoneType;
struct ROIHistAdjZoneDataType;
struct ROIHistAdjZoneType;
struct LuxFinalTMTargetZoneDataType;
struct LuxFinalTMTargetZoneType;
} // namespace aecglobalelements

namespace aecMetering
{
struct ExtrmClrLumaTargetZoneDataType;
struct ExtrmClrLumaTargetZoneType;
struct HistLumaTargetZoneDataType;
struct HistLumaTargetZoneType;
struct RgnAdjZoneDataType;
struct RgnAdjZoneType;
struct SuppressNonLinearZoneDataType;
struct SuppressNonLinearZoneType;
struct ADRCGainAdjustZoneDataType;
struct ADRCGainAdjustZoneType;
} // namespace aecMetering

namespace aecExtension
{
struct YHistStretchZoneDataType;
struct YHistStretchZoneType;
} // namespace aecExtension

namespace aecConvergence
{
struct PredictiveSaturationZoneDataType;
struct PredictiveSaturationZoneType;
struct PredictiveGainZoneType;
} // namespace aecConvergence

namespace aecSync
{
struct AbsSensitivityValueType;
struct MultiCamCCTExpCompType;
struct DynamicMixingZoneDataType;
struct DynamicMixingZoneType;
} // namespace aecSync

namespace aecSkip
{
struct DFSSkipCountZoneDataType;
struct DFSSkipCountZoneType;
} // namespace aecSkip

// Stateless. A zone table is an array of records with a `zoneTrigger` (`start`, `end`) and a `zoneData`, sorted
// along the trigger axis. A trigger inside a zone, below the first or above the last takes that zone's data; a
// trigger in the gap between two zones blends their data. Zones that touch switch without blending.
//
// The blending is type specific and lives in the overloads of InterpolateZone, one per zone data type; the
// per-table entry points (GetInterpZoneData) forward to GetInterpZoneDataGeneric.
class CTuningTriggerHandler
{
public:
    // Writes the zone data for triggerValue to pOutData. VelaResultEInvalidArg, with pOutData untouched, for a
    // null table or output or a zoneCount below 1.
    template <typename ZoneType, typename ZoneDataType>
    static KDKResult GetInterpZoneDataGeneric(const ZoneType* pZones, ZoneDataType* pOutData, FLOAT triggerValue,
                                              INT32 zoneCount);

    // Two-level table: each outer zone holds an inner zone table (`zoneDataCount` zones behind `zoneData`).
    // outerTrigger chooses or blends outer zones; each chosen outer zone yields its inner data for innerTrigger,
    // and two of them blend with the outer ratio. Predictive convergence passes (bright ratio, lux index).
    template <typename GainZoneType, typename ZoneDataType>
    static KDKResult GetDualInterpZoneData(const GainZoneType* pZones, ZoneDataType* pOutData, FLOAT outerTrigger,
                                           FLOAT innerTrigger, INT32 zoneCount);

    // One entry point per tuned zone table, each GetInterpZoneDataGeneric over that table's zone type.
    static KDKResult GetInterpZoneData(const aecMetering::ExtrmClrLumaTargetZoneType* pZones,
                                       aecMetering::ExtrmClrLumaTargetZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecMetering::HistLumaTargetZoneType* pZones,
                                       aecMetering::HistLumaTargetZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecMetering::RgnAdjZoneType* pZones,
                                       aecMetering::RgnAdjZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecglobalelements::LuxFaceWeightZoneType* pZones,
                                       aecglobalelements::LuxFaceWeightZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecglobalelements::LuxLumaTargetZoneType* pZones,
                                       aecglobalelements::LuxLumaTargetZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecExtension::YHistStretchZoneType* pZones,
                                       aecExtension::YHistStretchZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecglobalelements::ROIHistAdjZoneType* pZones,
                                       aecglobalelements::ROIHistAdjZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecglobalelements::LuxFinalTMTargetZoneType* pZones,
                                       aecglobalelements::LuxFinalTMTargetZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecMetering::SuppressNonLinearZoneType* pZones,
                                       aecMetering::SuppressNonLinearZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecMetering::ADRCGainAdjustZoneType* pZones,
                                       aecMetering::ADRCGainAdjustZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecConvergence::PredictiveSaturationZoneType* pZones,
                                       aecConvergence::PredictiveSaturationZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecSync::AbsSensitivityValueType* pZones, FLOAT* pOutData,
                                       FLOAT triggerValue, INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecSync::MultiCamCCTExpCompType* pZones, FLOAT* pOutData,
                                       FLOAT triggerValue, INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecSync::DynamicMixingZoneType* pZones,
                                       aecSync::DynamicMixingZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);
    static KDKResult GetInterpZoneData(const aecSkip::DFSSkipCountZoneType* pZones,
                                       aecSkip::DFSSkipCountZoneDataType* pOutData, FLOAT triggerValue,
                                       INT32 zoneCount);

    // Blends zone A towards zone B by ratio into pOut, member by member with Blend. Integer members blend as FLOAT
    // and truncate towards zero, saturating at the INT32 range; a NaN blend keeps zone A's value. Members outside
    // a type's blended set keep what pOut holds. pOut may be one of the zones. A null record leaves pOut untouched
    // and is logged.
    //
    // The single value of absolute sensitivity and multi-camera CCT compensation tables.
    static VOID InterpolateZone(FLOAT* pOut, const FLOAT* pZoneA, const FLOAT* pZoneB, FLOAT ratio);
    // channelAdjRatio[3].
    static VOID InterpolateZone(aecMetering::ExtrmClrLumaTargetZoneDataType*       pOut,
                                const aecMetering::ExtrmClrLumaTargetZoneDataType* pZoneA,
                                const aecMetering::ExtrmClrLumaTargetZoneDataType* pZoneB, FLOAT ratio);
    // Every member, the percentile ranges included: all are FLOAT.
    static VOID InterpolateZone(aecMetering::HistLumaTargetZoneDataType*       pOut,
                                const aecMetering::HistLumaTargetZoneDataType* pZoneA,
                                const aecMetering::HistLumaTargetZoneDataType* pZoneB, FLOAT ratio);
    // Both threshold ranges and both weights.
    static VOID InterpolateZone(aecMetering::RgnAdjZoneDataType* pOut, const aecMetering::RgnAdjZoneDataType* pZoneA,
                                const aecMetering::RgnAdjZoneDataType* pZoneB, FLOAT ratio);
    // start and end.
    static VOID InterpolateZone(aecglobalelements::LuxFaceWeightZoneDataType*       pOut,
                                const aecglobalelements::LuxFaceWeightZoneDataType* pZoneA,
                                const aecglobalelements::LuxFaceWeightZoneDataType* pZoneB, FLOAT ratio);
    // lumaTarget.
    static VOID InterpolateZone(aecglobalelements::LuxLumaTargetZoneDataType*       pOut,
                                const aecglobalelements::LuxLumaTargetZoneDataType* pZoneA,
                                const aecglobalelements::LuxLumaTargetZoneDataType* pZoneB, FLOAT ratio);
    // The upper window bounds darkBinThres and satBinThres, satScalingMax, and the integer levels darkTargetLvL,
    // satTargetLvL and darkClampingMax. The lower window bounds darkBinThresLow and satBinThresLow are not blended.
    static VOID InterpolateZone(aecExtension::YHistStretchZoneDataType*       pOut,
                                const aecExtension::YHistStretchZoneDataType* pZoneA,
                                const aecExtension::YHistStretchZoneDataType* pZoneB, FLOAT ratio);
    // Both luma ratio ranges and both sets of adjustment limits.
    static VOID InterpolateZone(aecglobalelements::ROIHistAdjZoneDataType*       pOut,
                                const aecglobalelements::ROIHistAdjZoneDataType* pZoneA,
                                const aecglobalelements::ROIHistAdjZoneDataType* pZoneB, FLOAT ratio);
    // TMTarget.
    static VOID InterpolateZone(aecglobalelements::LuxFinalTMTargetZoneDataType*       pOut,
                                const aecglobalelements::LuxFinalTMTargetZoneDataType* pZoneA,
                                const aecglobalelements::LuxFinalTMTargetZoneDataType* pZoneB, FLOAT ratio);
    // outputGain.
    static VOID InterpolateZone(aecMetering::SuppressNonLinearZoneDataType*       pOut,
                                const aecMetering::SuppressNonLinearZoneDataType* pZoneA,
                                const aecMetering::SuppressNonLinearZoneDataType* pZoneB, FLOAT ratio);
    // tolerance.
    static VOID InterpolateZone(aecMetering::ADRCGainAdjustZoneDataType*       pOut,
                                const aecMetering::ADRCGainAdjustZoneDataType* pZoneA,
                                const aecMetering::ADRCGainAdjustZoneDataType* pZoneB, FLOAT ratio);
    // stepSize.start, stepSize.end, predictiveFactor and decay.
    static VOID InterpolateZone(aecConvergence::PredictiveSaturationZoneDataType*       pOut,
                                const aecConvergence::PredictiveSaturationZoneDataType* pZoneA,
                                const aecConvergence::PredictiveSaturationZoneDataType* pZoneB, FLOAT ratio);
    // weight.
    static VOID InterpolateZone(aecSync::DynamicMixingZoneDataType*       pOut,
                                const aecSync::DynamicMixingZoneDataType* pZoneA,
                                const aecSync::DynamicMixingZoneDataType* pZoneB, FLOAT ratio);
    // The integers DFSSkipCount and DFSMinSettleThreshold.
    static VOID InterpolateZone(aecSkip::DFSSkipCountZoneDataType*       pOut,
                                const aecSkip::DFSSkipCountZoneDataType* pZoneA,
                                const aecSkip::DFSSkipCountZoneDataType* pZoneB, FLOAT ratio);

    // a + ratio * (b - a) as one fused multiply-add in single precision: the blend of every numeric member.
    static FLOAT Blend(FLOAT a, FLOAT b, FLOAT ratio);

private:
    // Outcome of the zone search: zoneA alone, or zoneA blended towards zoneB by ratio.
    struct ZoneChoice
    {
        INT32 zoneA;
        INT32 zoneB; // -1: no blending
        FLOAT ratio;
    };

    // Ratios this close to 0 or 1 take the zone itself rather than a blend.
    static constexpr FLOAT RatioTolerance = 1e-7f;

    template <typename ZoneType>
    static KDKResult ChooseZone(const ZoneType* pZones, FLOAT triggerValue, INT32 zoneCount, ZoneChoice* pChoice);
};

template <typename ZoneType>
KDKResult CTuningTriggerHandler::ChooseZone(const ZoneType* pZones, FLOAT triggerValue, INT32 zoneCount,
                                            ZoneChoice* pChoice)
{
    if ((nullptr == pZones) || (zoneCount < 1))
    {
        AEC_LOG_ERROR("invalid zone table %p count %d", static_cast<const void*>(pZones), zoneCount);
        return VelaResultEInvalidArg;
    }

    const INT32 lastZone = zoneCount - 1;
    *pChoice             = ZoneChoice{lastZone, -1, 0.0f};

    if (triggerValue >= pZones[lastZone].zoneTrigger.start)
    {
        return VelaResultSuccess;
    }

    for (INT32 i = 0; i < zoneCount; ++i)
    {
        const ZoneType& rA = pZones[i];
        if (triggerValue < rA.zoneTrigger.end)
        {
            // Within A, or below the first zone.
            pChoice->zoneA = i;
            return VelaResultSuccess;
        }
        // A single zone has no neighbour to blend with; a trigger that gets here is not inside the table.
        if (i == lastZone)
        {
            break;
        }

        const ZoneType& rB = pZones[i + 1];
        if (triggerValue < rB.zoneTrigger.start)
        {
            const FLOAT ratio = (rA.zoneTrigger.end - triggerValue) / (rA.zoneTrigger.end - rB.zoneTrigger.start);
            if (ratio < 0.0f)
            {
                break;
            }
            if (std::fabs(ratio) < RatioTolerance)
            {
                pChoice->zoneA = i;
            }
            else if (std::fabs(ratio - 1.0f) < RatioTolerance)
            {
                pChoice->zoneA = i + 1;
            }
            else
            {
                *pChoice = ZoneChoice{i, i + 1, ratio};
            }
            return VelaResultSuccess;
        }
    }

    // Only an unordered table or a trigger that is not a number gets here; the last zone stands.
    AEC_LOG_ERROR("did not find an appropriate zone!");
    return VelaResultSuccess;
}

template <typename ZoneType, typename ZoneDataType>
KDKResult CTuningTriggerHandler::GetInterpZoneDataGeneric(const ZoneType* pZones, ZoneDataType* pOutData,
                                                          FLOAT triggerValue, INT32 zoneCount)
{
    if (nullptr == pOutData)
    {
        AEC_LOG_ERROR("null zone data output");
        return VelaResultEInvalidArg;
    }

    ZoneChoice      choice;
    const KDKResult result = ChooseZone(pZones, triggerValue, zoneCount, &choice);
    if (VelaResultSuccess != result)
    {
        return result;
    }

    if (choice.zoneB < 0)
    {
        *pOutData = pZones[choice.zoneA].zoneData;
    }
    else
    {
        InterpolateZone(pOutData, &pZones[choice.zoneA].zoneData, &pZones[choice.zoneB].zoneData, choice.ratio);
    }
    return VelaResultSuccess;
}

template <typename GainZoneType, typename ZoneDataType>
KDKResult CTuningTriggerHandler::GetDualInterpZoneData(const GainZoneType* pZones, ZoneDataType* pOutData,
                                                       FLOAT outerTrigger, FLOAT innerTrigger, INT32 zoneCount)
{
    if (nullptr == pOutData)
    {
        AEC_LOG_ERROR("null zone data output");
        return VelaResultEInvalidArg;
    }

    ZoneChoice choice;
    KDKResult  result = ChooseZone(pZones, outerTrigger, zoneCount, &choice);
    if (VelaResultSuccess != result)
    {
        return result;
    }

    const GainZoneType& rA = pZones[choice.zoneA];
    if (choice.zoneB < 0)
    {
        return GetInterpZoneDataGeneric(rA.zoneData, pOutData, innerTrigger, static_cast<INT32>(rA.zoneDataCount));
    }

    // Both inner results are complete before either is written out, so a failing inner table leaves pOutData as
    // it was.
    const GainZoneType& rB = pZones[choice.zoneB];
    ZoneDataType        dataA{};
    ZoneDataType        dataB{};
    result = GetInterpZoneDataGeneric(rA.zoneData, &dataA, innerTrigger, static_cast<INT32>(rA.zoneDataCount));
    if (VelaResultSuccess == result)
    {
        result = GetInterpZoneDataGeneric(rB.zoneData, &dataB, innerTrigger, static_cast<INT32>(rB.zoneDataCount));
    }
    if (VelaResultSuccess == result)
    {
        InterpolateZone(pOutData, &dataA, &dataB, choice.ratio);
    }
    return result;
}

// Predictive convergence's two-level table is instantiated once, with the blending code.
extern template KDKResult
CTuningTriggerHandler::GetDualInterpZoneData<aecConvergence::PredictiveGainZoneType,
                                             aecConvergence::PredictiveSaturationZoneDataType>(
    const aecConvergence::PredictiveGainZoneType* pZones, aecConvergence::PredictiveSaturationZoneDataType* pOutData,
    FLOAT outerTrigger, FLOAT innerTrigger, INT32 zoneCount);

#endif // AEC_CORE_BASE_CTUNINGTRIGGERHANDLER_H
