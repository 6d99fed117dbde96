// Zone data blending of the tuning zone lookup and its entry points per tuned zone table.
#include "aec/core/base/ctuningtriggerhandler.h"

#include <cstddef>
#include <limits>

#include "tuning_aecconvergence.h"
#include "tuning_aecextension.h"
#include "tuning_aecglobalelements.h"
#include "tuning_aecmetering.h"
#include "tuning_aecskip.h"
#include "tuning_aecsync.h"

namespace
{

// One blend per member type: scalars directly, nested records and arrays member by member. Declared ahead of the
// templates below because ordinary lookup, not argument-dependent lookup, must find the scalar and record ones.
VOID BlendValue(FLOAT* pOut, FLOAT a, FLOAT b, FLOAT ratio);
VOID BlendValue(INT32* pOut, INT32 a, INT32 b, FLOAT ratio);
VOID BlendValue(aecglobalelements::TriggerPointType* pOut, const aecglobalelements::TriggerPointType& rA,
                const aecglobalelements::TriggerPointType& rB, FLOAT ratio);
VOID BlendValue(aecglobalelements::StartEndType* pOut, const aecglobalelements::StartEndType& rA,
                const aecglobalelements::StartEndType& rB, FLOAT ratio);
VOID BlendValue(aecglobalelements::HistTargetAdjustParamType*       pOut,
                const aecglobalelements::HistTargetAdjustParamType& rA,
                const aecglobalelements::HistTargetAdjustParamType& rB, FLOAT ratio);

template <typename ElementType, std::size_t Count>
VOID BlendValue(ElementType (*pOut)[Count], const ElementType (&rA)[Count], const ElementType (&rB)[Count],
                FLOAT ratio)
{
    for (std::size_t i = 0; i < Count; ++i)
    {
        BlendValue(&(*pOut)[i], rA[i], rB[i], ratio);
    }
}

// True when all three records are there; the blends are public, so a null record is refused rather than read.
bool HasBlendRecords(const void* pOut, const void* pZoneA, const void* pZoneB)
{
    if ((nullptr == pOut) || (nullptr == pZoneA) || (nullptr == pZoneB))
    {
        AEC_LOG_ERROR("null zone data to blend: out %p zone A %p zone B %p", pOut, pZoneA, pZoneB);
        return false;
    }
    return true;
}

// The blend of a record: the listed members, in order. Members not listed are not written.
template <typename RecordType, typename... MemberTypes>
VOID BlendMembers(RecordType* pOut, const RecordType* pZoneA, const RecordType* pZoneB, FLOAT ratio,
                  MemberTypes RecordType::*... pMembers)
{
    if (HasBlendRecords(pOut, pZoneA, pZoneB))
    {
        (BlendValue(&(pOut->*pMembers), pZoneA->*pMembers, pZoneB->*pMembers, ratio), ...);
    }
}

VOID BlendValue(FLOAT* pOut, FLOAT a, FLOAT b, FLOAT ratio)
{
    *pOut = CTuningTriggerHandler::Blend(a, b, ratio);
}

VOID BlendValue(INT32* pOut, INT32 a, INT32 b, FLOAT ratio)
{
    // Converting a FLOAT outside the INT32 range (or a NaN) to INT32 is undefined. Between two INT32 values with a
    // ratio in 0..1 only the rounding of values near the limits gets there, but a caller's ratio may lie anywhere.
    constexpr FLOAT Int32Low      = -2147483648.0f; // -2^31, exact in FLOAT
    constexpr FLOAT Int32HighOpen = 2147483648.0f;  // 2^31, the first value above the range

    const FLOAT blended = CTuningTriggerHandler::Blend(static_cast<FLOAT>(a), static_cast<FLOAT>(b), ratio);
    if (std::isnan(blended))
    {
        AEC_LOG_ERROR("integer zone member blend of %d and %d by ratio %f is not a number, keeping %d", a, b,
                      static_cast<double>(ratio), a);
        *pOut = a;
    }
    else if (blended < Int32Low)
    {
        *pOut = std::numeric_limits<INT32>::min();
    }
    else if (blended >= Int32HighOpen)
    {
        *pOut = std::numeric_limits<INT32>::max();
    }
    else
    {
        *pOut = static_cast<INT32>(blended);
    }
}

VOID BlendValue(aecglobalelements::TriggerPointType* pOut, const aecglobalelements::TriggerPointType& rA,
                const aecglobalelements::TriggerPointType& rB, FLOAT ratio)
{
    BlendMembers(pOut, &rA, &rB, ratio, &aecglobalelements::TriggerPointType::start,
                 &aecglobalelements::TriggerPointType::end);
}

VOID BlendValue(aecglobalelements::StartEndType* pOut, const aecglobalelements::StartEndType& rA,
                const aecglobalelements::StartEndType& rB, FLOAT ratio)
{
    BlendMembers(pOut, &rA, &rB, ratio, &aecglobalelements::StartEndType::start,
                 &aecglobalelements::StartEndType::end);
}

VOID BlendValue(aecglobalelements::HistTargetAdjustParamType*       pOut,
                const aecglobalelements::HistTargetAdjustParamType& rA,
                const aecglobalelements::HistTargetAdjustParamType& rB, FLOAT ratio)
{
    using Params = aecglobalelements::HistTargetAdjustParamType;
    BlendMembers(pOut, &rA, &rB, ratio, &Params::minTargetAdjRatio, &Params::maxTargetAdjRatio, &Params::darkRefLow,
                 &Params::satRefHigh);
}

} // namespace

FLOAT CTuningTriggerHandler::Blend(FLOAT a, FLOAT b, FLOAT ratio)
{
    return std::fmaf(ratio, b - a, a);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecMetering::ExtrmClrLumaTargetZoneType* pZones,
                                                   aecMetering::ExtrmClrLumaTargetZoneDataType* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecMetering::HistLumaTargetZoneType* pZones,
                                                   aecMetering::HistLumaTargetZoneDataType* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecMetering::RgnAdjZoneType* pZones,
                                                   aecMetering::RgnAdjZoneDataType* pOutData, FLOAT triggerValue,
                                                   INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecglobalelements::LuxFaceWeightZoneType* pZones,
                                                   aecglobalelements::LuxFaceWeightZoneDataType* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecglobalelements::LuxLumaTargetZoneType* pZones,
                                                   aecglobalelements::LuxLumaTargetZoneDataType* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecExtension::YHistStretchZoneType* pZones,
                                                   aecExtension::YHistStretchZoneDataType* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecglobalelements::ROIHistAdjZoneType* pZones,
                                                   aecglobalelements::ROIHistAdjZoneDataType* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecglobalelements::LuxFinalTMTargetZoneType* pZones,
                                                   aecglobalelements::LuxFinalTMTargetZoneDataType* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecMetering::SuppressNonLinearZoneType* pZones,
                                                   aecMetering::SuppressNonLinearZoneDataType* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecMetering::ADRCGainAdjustZoneType* pZones,
                                                   aecMetering::ADRCGainAdjustZoneDataType* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecConvergence::PredictiveSaturationZoneType* pZones,
                                                   aecConvergence::PredictiveSaturationZoneDataType* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecSync::AbsSensitivityValueType* pZones, FLOAT* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecSync::MultiCamCCTExpCompType* pZones, FLOAT* pOutData,
                                                   FLOAT triggerValue, INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecSync::DynamicMixingZoneType* pZones,
                                                   aecSync::DynamicMixingZoneDataType* pOutData, FLOAT triggerValue,
                                                   INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

KDKResult CTuningTriggerHandler::GetInterpZoneData(const aecSkip::DFSSkipCountZoneType* pZones,
                                                   aecSkip::DFSSkipCountZoneDataType* pOutData, FLOAT triggerValue,
                                                   INT32 zoneCount)
{
    return GetInterpZoneDataGeneric(pZones, pOutData, triggerValue, zoneCount);
}

VOID CTuningTriggerHandler::InterpolateZone(FLOAT* pOut, const FLOAT* pZoneA, const FLOAT* pZoneB, FLOAT ratio)
{
    if (HasBlendRecords(pOut, pZoneA, pZoneB))
    {
        BlendValue(pOut, *pZoneA, *pZoneB, ratio);
    }
}

VOID CTuningTriggerHandler::InterpolateZone(aecMetering::ExtrmClrLumaTargetZoneDataType*       pOut,
                                            const aecMetering::ExtrmClrLumaTargetZoneDataType* pZoneA,
                                            const aecMetering::ExtrmClrLumaTargetZoneDataType* pZoneB, FLOAT ratio)
{
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &aecMetering::ExtrmClrLumaTargetZoneDataType::channelAdjRatio);
}

VOID CTuningTriggerHandler::InterpolateZone(aecMetering::HistLumaTargetZoneDataType*       pOut,
                                            const aecMetering::HistLumaTargetZoneDataType* pZoneA,
                                            const aecMetering::HistLumaTargetZoneDataType* pZoneB, FLOAT ratio)
{
    using Data = aecMetering::HistLumaTargetZoneDataType;
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &Data::minTargetAdjRatio, &Data::maxTargetAdjRatio, &Data::satRefLow,
                 &Data::satRefHigh, &Data::darkRefLow, &Data::darkRefHigh, &Data::histSatPushupRange,
                 &Data::histSatPushdownRange, &Data::histDarkRange, &Data::maxDRCGain, &Data::maxADRCGain,
                 &Data::maxDarkBoostGain);
}

VOID CTuningTriggerHandler::InterpolateZone(aecMetering::RgnAdjZoneDataType*       pOut,
                                            const aecMetering::RgnAdjZoneDataType* pZoneA,
                                            const aecMetering::RgnAdjZoneDataType* pZoneB, FLOAT ratio)
{
    using Data = aecMetering::RgnAdjZoneDataType;
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &Data::thresBrightRgn, &Data::thresDarkRgn, &Data::weightBrightRgnAdj,
                 &Data::weightDarkRgnAdj);
}

VOID CTuningTriggerHandler::InterpolateZone(aecglobalelements::LuxFaceWeightZoneDataType*       pOut,
                                            const aecglobalelements::LuxFaceWeightZoneDataType* pZoneA,
                                            const aecglobalelements::LuxFaceWeightZoneDataType* pZoneB, FLOAT ratio)
{
    using Data = aecglobalelements::LuxFaceWeightZoneDataType;
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &Data::start, &Data::end);
}

VOID CTuningTriggerHandler::InterpolateZone(aecglobalelements::LuxLumaTargetZoneDataType*       pOut,
                                            const aecglobalelements::LuxLumaTargetZoneDataType* pZoneA,
                                            const aecglobalelements::LuxLumaTargetZoneDataType* pZoneB, FLOAT ratio)
{
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &aecglobalelements::LuxLumaTargetZoneDataType::lumaTarget);
}

VOID CTuningTriggerHandler::InterpolateZone(aecExtension::YHistStretchZoneDataType*       pOut,
                                            const aecExtension::YHistStretchZoneDataType* pZoneA,
                                            const aecExtension::YHistStretchZoneDataType* pZoneB, FLOAT ratio)
{
    using Data = aecExtension::YHistStretchZoneDataType;
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &Data::darkBinThres, &Data::satBinThres, &Data::darkTargetLvL,
                 &Data::satTargetLvL, &Data::satScalingMax, &Data::darkClampingMax);
}

VOID CTuningTriggerHandler::InterpolateZone(aecglobalelements::ROIHistAdjZoneDataType*       pOut,
                                            const aecglobalelements::ROIHistAdjZoneDataType* pZoneA,
                                            const aecglobalelements::ROIHistAdjZoneDataType* pZoneB, FLOAT ratio)
{
    using Data = aecglobalelements::ROIHistAdjZoneDataType;
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &Data::darkLumaRatioRange, &Data::darkROIAdjustParams,
                 &Data::brightLumaRatioRange, &Data::brightROIAdjustParams);
}

VOID CTuningTriggerHandler::InterpolateZone(aecglobalelements::LuxFinalTMTargetZoneDataType*       pOut,
                                            const aecglobalelements::LuxFinalTMTargetZoneDataType* pZoneA,
                                            const aecglobalelements::LuxFinalTMTargetZoneDataType* pZoneB,
                                            FLOAT                                                  ratio)
{
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &aecglobalelements::LuxFinalTMTargetZoneDataType::TMTarget);
}

VOID CTuningTriggerHandler::InterpolateZone(aecMetering::SuppressNonLinearZoneDataType*       pOut,
                                            const aecMetering::SuppressNonLinearZoneDataType* pZoneA,
                                            const aecMetering::SuppressNonLinearZoneDataType* pZoneB, FLOAT ratio)
{
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &aecMetering::SuppressNonLinearZoneDataType::outputGain);
}

VOID CTuningTriggerHandler::InterpolateZone(aecMetering::ADRCGainAdjustZoneDataType*       pOut,
                                            const aecMetering::ADRCGainAdjustZoneDataType* pZoneA,
                                            const aecMetering::ADRCGainAdjustZoneDataType* pZoneB, FLOAT ratio)
{
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &aecMetering::ADRCGainAdjustZoneDataType::tolerance);
}

VOID CTuningTriggerHandler::InterpolateZone(aecConvergence::PredictiveSaturationZoneDataType*       pOut,
                                            const aecConvergence::PredictiveSaturationZoneDataType* pZoneA,
                                            const aecConvergence::PredictiveSaturationZoneDataType* pZoneB,
                                            FLOAT                                                   ratio)
{
    using Data = aecConvergence::PredictiveSaturationZoneDataType;
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &Data::stepSize, &Data::predictiveFactor, &Data::decay);
}

VOID CTuningTriggerHandler::InterpolateZone(aecSync::DynamicMixingZoneDataType*       pOut,
                                            const aecSync::DynamicMixingZoneDataType* pZoneA,
                                            const aecSync::DynamicMixingZoneDataType* pZoneB, FLOAT ratio)
{
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &aecSync::DynamicMixingZoneDataType::weight);
}

VOID CTuningTriggerHandler::InterpolateZone(aecSkip::DFSSkipCountZoneDataType*       pOut,
                                            const aecSkip::DFSSkipCountZoneDataType* pZoneA,
                                            const aecSkip::DFSSkipCountZoneDataType* pZoneB, FLOAT ratio)
{
    using Data = aecSkip::DFSSkipCountZoneDataType;
    BlendMembers(pOut, pZoneA, pZoneB, ratio, &Data::DFSSkipCount, &Data::DFSMinSettleThreshold);
}

template KDKResult
CTuningTriggerHandler::GetDualInterpZoneData<aecConvergence::PredictiveGainZoneType,
                                             aecConvergence::PredictiveSaturationZoneDataType>(
    const aecConvergence::PredictiveGainZoneType* pZones, aecConvergence::PredictiveSaturationZoneDataType* pOutData,
    FLOAT outerTrigger, FLOAT innerTrigger, INT32 zoneCount);
