// Zone lookup of tuning tables: turns a trigger value (lux index, frame rate, ...) into one record of zone data.
#ifndef AEC_CORE_BASE_CTUNINGTRIGGERHANDLER_H
#define AEC_CORE_BASE_CTUNINGTRIGGERHANDLER_H

#include <cmath>

#include "aecore/aecore.h"
#include "platform/statslogger.h"

// Stateless. A zone table is an array of records with a `zoneTrigger` (`start`, `end`) and a `zoneData`, sorted
// along the trigger axis. A trigger inside a zone, below the first or above the last takes that zone's data; a
// trigger in the gap between two zones blends their data. Zones that touch switch without blending.
//
// The blending is type specific and lives in the overloads of InterpolateZone, one per zone data type; the
// per-table entry points (GetInterpZoneData) forward to GetInterpZoneDataGeneric. Both come with the tuning
// records they serve; FLOAT zone data needs no record and is served here.
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

    // Serves the tables whose zone data is a single value (absolute sensitivity, multi-camera CCT compensation).
    static VOID InterpolateZone(FLOAT* pOut, const FLOAT* pZoneA, const FLOAT* pZoneB, FLOAT ratio);

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

#endif // AEC_CORE_BASE_CTUNINGTRIGGERHANDLER_H
