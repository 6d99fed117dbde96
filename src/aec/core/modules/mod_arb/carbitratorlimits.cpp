// The session limit of an arbitrator: its setters and its rebuild from table, manual mode, iris, sensor and EV.
#include <algorithm>
#include <cmath>
#include <limits>

#include "aec/core/include/aeccustomexposuretable.h"
#include "aec/core/modules/mod_arb/carbitrator.h"
#include "aec/core/modules/mod_arb/exptableknees.h"
#include "platform/statslogger.h"

namespace
{

// Float equality of the arbitration steps.
constexpr FLOAT FloatEqualityLimit = 1e-7F;

// Index distance an exposure must travel after an iris glide when the tuning does not say (about one stop).
constexpr FLOAT DefaultDecayTolerance = 23.5F;

// Index units per decade in single precision, for the limit's index range.
constexpr FLOAT ExpIndexPerDecadeF = 77.89853F;

// Nanoseconds per second, for the frame-rate limit.
constexpr DOUBLE NanosecondsPerSecond = 1e9;

const aecArbitration::AECCoreArbitrationType* CoreTuningOf(const ArbitrationTuningDataType* pTuning)
{
    return (nullptr != pTuning) ? pTuning->pCore : nullptr;
}

// Sensitivity of a time, gain and f-number, at least 1.0 so that its logarithm is not negative.
FLOAT LimitSensitivity(UINT64 expTime, FLOAT gain, FLOAT fnumber)
{
    const FLOAT sensitivity = static_cast<FLOAT>(expTime) * gain * (1.0F / (fnumber * fnumber));
    return std::max(sensitivity, 1.0F);
}

// A value inside a range; the lower bound is applied first, so a crossed range gives its maximum.
FLOAT ClampToRange(FLOAT value, const MinMaxRangeFloat& rRange)
{
    return std::min(std::max(value, rRange.min), rRange.max);
}

// Longest frame time of a minimum frame rate, truncated; saturates where the frame rate is too small for 64 bits.
UINT64 FrameTimeOfFPS(FLOAT minFPS)
{
    const DOUBLE frameTime = std::trunc(NanosecondsPerSecond / static_cast<DOUBLE>(minFPS));
    // 2^64 is exactly representable; every double below it converts without overflow.
    constexpr DOUBLE TimeRangeEnd = 18446744073709551616.0;
    return (frameTime >= TimeRangeEnd) ? std::numeric_limits<UINT64>::max() : static_cast<UINT64>(frameTime);
}

// The widest f-number of one zoom row of the iris calibration; 1.0 for a row that is missing or not positive.
FLOAT WidestFnOfRow(const LDMIrisTableData& rIris, UINT32 row)
{
    const FLOAT* pRow = rIris.irisFnTable[row];
    if ((nullptr == pRow) || !(pRow[0] > 0.0F))
    {
        AEC_LOG_ERROR("Iris table zoom row %u has no usable f-number, widest f-number taken as 1.0", row);
        return 1.0F;
    }
    return pRow[0];
}

// Widest f-number the lens offers at a zoom step, interpolated between zoom rows linearly in light (1 / fn^2).
FLOAT WidestFnAtZoom(const LDMIrisTableData& rIris, UINT32 zoomStep)
{
    const INT64  zoom     = static_cast<INT64>(zoomStep);
    const UINT32 lastZoom = rIris.irisTableZoomSize - 1U;
    if (zoom < rIris.zoomTable[0])
    {
        return WidestFnOfRow(rIris, 0U);
    }
    if (zoom > rIris.zoomTable[lastZoom])
    {
        return WidestFnOfRow(rIris, lastZoom);
    }
    for (UINT32 i = 0U; i < lastZoom; i++)
    {
        const INT64 zoomLo = rIris.zoomTable[i];
        const INT64 zoomHi = rIris.zoomTable[i + 1U];
        if ((zoomLo <= zoom) && (zoom <= zoomHi))
        {
            const FLOAT fnLo    = WidestFnOfRow(rIris, i);
            const FLOAT lightLo = 1.0F / (fnLo * fnLo);
            FLOAT       light   = lightLo;
            if (zoom != zoomLo)
            {
                const FLOAT fnHi    = WidestFnOfRow(rIris, i + 1U);
                const FLOAT lightHi = 1.0F / (fnHi * fnHi);
                light = ((static_cast<FLOAT>(zoomHi - zoom) * lightLo) + (static_cast<FLOAT>(zoom - zoomLo) * lightHi)) /
                        static_cast<FLOAT>(zoomHi - zoomLo);
            }
            return std::sqrt(1.0F / light);
        }
    }
    // A single zoom row has no segment to interpolate in.
    return 1.0F;
}

// What a manual mode fixes in the limit, and the log line of each fixed quantity (null: not logged).
struct ManualLimitRule
{
    AECAlgoModeType mode;
    BOOL            fixTime;
    BOOL            fixFnumber;
    BOOL            fixGain;
    BOOL            capMaxTime; // the priority modes: the longest time, when one is given
    const CHAR*     pTimeLog;
    const CHAR*     pMaxTimeLog;
    const CHAR*     pFnumberLog;
    const CHAR*     pGainLog;
};

constexpr ManualLimitRule ManualLimitRules[] = {
    {AECAlgoModeManualISO, FALSE, FALSE, TRUE, FALSE, nullptr, nullptr, nullptr,
     "AECAlgoModeManualISO/Gain, (%f, %f)"},
    {AECAlgoModeManualGain, FALSE, FALSE, TRUE, FALSE, nullptr, nullptr, nullptr,
     "AECAlgoModeManualISO/Gain, (%f, %f)"},
    {AECAlgoModeManualExpTime, TRUE, FALSE, FALSE, FALSE, "AECAlgoModeManualExpTime, (%llu, %llu)", nullptr, nullptr,
     nullptr},
    // Full manual states time and gain in one line of its own, below.
    {AECAlgoModeManualFull, TRUE, FALSE, TRUE, FALSE, nullptr, nullptr, nullptr, nullptr},
    {AECAlgoModePirisMaxExpPriority, FALSE, FALSE, FALSE, TRUE, nullptr,
     "AECAlgoModePirisMaxExpPriority, S max (%llu)", nullptr, nullptr},
    {AECAlgoModePASMIris, FALSE, TRUE, FALSE, TRUE, nullptr, nullptr, "AECAlgoModePASMIris, Fn (%f, %f)", nullptr},
    {AECAlgoModePASMISO, FALSE, FALSE, TRUE, FALSE, nullptr, nullptr, nullptr, "AECAlgoModePASMISO, (%f, %f)"},
    {AECAlgoModePASMIrisISO, FALSE, TRUE, TRUE, FALSE, nullptr, nullptr, "AECAlgoModePASMIrisISO, Fn (%f, %f)",
     "AECAlgoModePASMIrisISO, (%f, %f)"},
    {AECAlgoModePASMExpTime, TRUE, FALSE, FALSE, FALSE, "AECAlgoModeManualExpTime, (%llu, %llu)", nullptr, nullptr,
     nullptr},
    {AECAlgoModePASMExpTimeISO, TRUE, FALSE, TRUE, FALSE, "AECAlgoModePASMExpTimeISO, (%llu, %llu)", nullptr, nullptr,
     "AECAlgoModePASMExpTimeISO, (%f, %f)"},
    {AECAlgoModePASMExpTimeIris, TRUE, TRUE, FALSE, FALSE, "AECAlgoModePASMExpTimeIris, (%llu, %llu)", nullptr,
     "AECAlgoModePASMExpTimeIris, Fn (%f, %f)", nullptr},
    {AECAlgoModePASMFullManual, TRUE, TRUE, TRUE, FALSE, "AECAlgoModePASMFullManual, (%llu, %llu)", nullptr,
     "AECAlgoModePASMFullManual, Fn (%f, %f)", "AECAlgoModePASMFullManual, (%f, %f)"},
};

// Narrows the limit to what the manual mode fixes; the f-number is the requested one within the table's range.
VOID ApplyManualLimits(const ArbManualSetting& rManual, ExposureLimitationType* pLimit)
{
    const ManualLimitRule* pRule = nullptr;
    for (const ManualLimitRule& rRule : ManualLimitRules)
    {
        pRule = (rRule.mode == rManual.manualMode) ? &rRule : pRule;
    }
    if (nullptr == pRule)
    {
        AEC_LOG_VERBOSE("default: mode %d", rManual.manualMode);
        return;
    }
    ExposureLimitationType& rLimit = *pLimit;
    if (TRUE == pRule->fixTime)
    {
        rLimit.expTime.min = rManual.manualExpTime;
        rLimit.expTime.max = rManual.manualExpTime;
    }
    if ((TRUE == pRule->capMaxTime) && (0U != rManual.manualMaxExposureTime))
    {
        rLimit.expTime.max = rManual.manualMaxExposureTime;
    }
    if (TRUE == pRule->fixFnumber)
    {
        rLimit.fnumber.min = ClampToRange(rManual.manualFnumber, rLimit.fnumber);
        rLimit.fnumber.max = rLimit.fnumber.min;
    }
    if (TRUE == pRule->fixGain)
    {
        rLimit.gain.min = rManual.manualGain;
        rLimit.gain.max = rManual.manualGain;
    }

    const unsigned long long timeMin = rLimit.expTime.min;
    const unsigned long long timeMax = rLimit.expTime.max;
    const DOUBLE             fnMin   = rLimit.fnumber.min;
    const DOUBLE             fnMax   = rLimit.fnumber.max;
    const DOUBLE             gainMin = rLimit.gain.min;
    const DOUBLE             gainMax = rLimit.gain.max;
    if (AECAlgoModeManualFull == pRule->mode)
    {
        AEC_LOG_VERBOSE("AECAlgoModeManualFull, S(%llu, %llu) G (%f, %f)", timeMin, timeMax, gainMin, gainMax);
    }
    if (nullptr != pRule->pTimeLog)
    {
        AEC_LOG_VERBOSE(pRule->pTimeLog, timeMin, timeMax);
    }
    if (nullptr != pRule->pMaxTimeLog)
    {
        AEC_LOG_VERBOSE(pRule->pMaxTimeLog, timeMax);
    }
    if (nullptr != pRule->pFnumberLog)
    {
        AEC_LOG_VERBOSE(pRule->pFnumberLog, fnMin, fnMax);
    }
    if (nullptr != pRule->pGainLog)
    {
        AEC_LOG_VERBOSE(pRule->pGainLog, gainMin, gainMax);
    }
}

} // namespace

ExposureLimitationType CArbitrator::SetExpTable(aecglobalelements::ExposureTableIDType tableID, FLOAT* pSensitivity)
{
    const AECCustomExposureTableInfo* pCustom = m_pContext->getCustomExposureTableInfo();
    const BOOL useCustom = ((CustomExposureTableID == tableID) && (nullptr != pCustom) && (TRUE == pCustom->isValid))
                               ? TRUE
                               : FALSE;
    if (FALSE == useCustom)
    {
        const aecArbitration::AECCoreArbitrationType* pCore = CoreTuningOf(m_pTuning);
        const UINT32 tableCount = (nullptr != pCore) ? pCore->expTablesCount : 0U;
        if ((tableID < 0) || (static_cast<UINT32>(tableID) >= tableCount))
        {
            tableID = 0;
        }
    }
    m_TableID = tableID;
    AEC_LOG_INFO("Set Exposure table with Table ID %d", m_TableID);

    const FLOAT sensitivity = m_expTable.SetExpTable(m_pContext->getExposureTableFromTableID(m_TableID));
    if (nullptr != pSensitivity)
    {
        *pSensitivity = sensitivity;
    }
    else
    {
        AEC_LOG_ERROR("Exposure Table ID %d : no place for the table's sensitivity", m_TableID);
    }
    m_session.thresAntiBandingMinExpTimePct = m_expTable.GetThresAntiBandingMinExpTimePct();

    UpdateArbitrationLimitation();
    return m_session.arbExpLimit;
}

ExposureLimitationType CArbitrator::SetManualSetting(const ArbManualSetting* pSetting)
{
    if (nullptr == pSetting)
    {
        AEC_LOG_ERROR("Manual setting is NULL, keeping mode %d", m_session.manualSettings.manualMode);
        return m_session.arbExpLimit;
    }
    m_session.manualSettings = *pSetting;
    m_expTable.ApplyActiveTableEVFPSKnees();
    UpdateArbitrationLimitation();
    return m_session.arbExpLimit;
}

ExposureLimitationType CArbitrator::SetSensorLimits(ArbSensorLimits* pSensorLimit)
{
    m_pSensorLimit = pSensorLimit;
    m_expTable.ApplyActiveTableEVFPSKnees();
    UpdateArbitrationLimitation();
    return m_session.arbExpLimit;
}

ExposureLimitationType CArbitrator::SetZoomDependentIrisBoundary(UINT32 zoomStep)
{
    m_currZoomStep = zoomStep;
    m_expTable.ApplyActiveTableEVFPSKnees();
    UpdateArbitrationLimitation();
    return m_session.arbExpLimit;
}

ExposureLimitationType CArbitrator::SetFnLimits(FLOAT fnumber)
{
    m_FnLimits = fnumber;
    m_expTable.ApplyActiveTableEVFPSKnees();
    UpdateArbitrationLimitation();
    return m_session.arbExpLimit;
}

VOID CArbitrator::SetIrisTable(LDMIrisTableData irisTable)
{
    m_IrisTble = irisTable;
    m_expTable.ApplyActiveTableEVFPSKnees();
    UpdateArbitrationLimitation();
}

VOID CArbitrator::SetLensCap(LDMLensCap lensCap)
{
    m_LensCap = lensCap;
    m_expTable.ApplyActiveTableEVFPSKnees();
    UpdateArbitrationLimitation();
}

ExposureLimitationType CArbitrator::SetParamEV(FLOAT EV, BOOL enableHDR3)
{
    m_session.EV = EV;
    const aecArbitration::AECCoreArbitrationType* pCore = CoreTuningOf(m_pTuning);
    if ((nullptr != pCore) && (1 == pCore->enableEVExpTableAdj))
    {
        m_expTable.SetParamEV(EV, pCore->enableEVGainCapping, pCore->maxEVCappingGain, enableHDR3);
        AEC_LOG_INFO("Exposure Table ID %d : Update table using EV %f", m_TableID, static_cast<DOUBLE>(EV));
    }
    UpdateArbitrationLimitation();
    return m_session.arbExpLimit;
}

ExposureLimitationType CArbitrator::SetParamFPSRange(FLOAT minFPS)
{
    if (!(minFPS > 0.0F))
    {
        AEC_LOG_ERROR("Exposure Table ID %d : minimum FPS %f is not positive, frame-rate limit unchanged", m_TableID,
                      static_cast<DOUBLE>(minFPS));
        return m_session.arbExpLimit;
    }
    m_session.minFPS = minFPS;

    // The frame also carries the vertical blanking, which exposure cannot use.
    const aecArbitration::AECCoreArbitrationType* pCore = CoreTuningOf(m_pTuning);
    const UINT64 blankTime  = (nullptr != pCore) ? pCore->minPreviewVertBlankTime : 0U;
    UINT64       maxExpTime = FrameTimeOfFPS(minFPS);
    if (blankTime < maxExpTime)
    {
        maxExpTime -= blankTime;
    }
    AEC_LOG_INFO("Exposure Table ID %d : Update table using FPS Range %llu", m_TableID,
                 static_cast<unsigned long long>(maxExpTime));
    m_expTable.SetFPSMaxExposureTime(maxExpTime);
    UpdateArbitrationLimitation();
    return m_session.arbExpLimit;
}

VOID CArbitrator::UpdateArbitrationLimitation()
{
    ExposureLimitationType&          rLimit  = m_session.arbExpLimit;
    const ArbManualSetting&          rManual = m_session.manualSettings;
    const aecArbitration::AECCoreArbitrationType* pCore = CoreTuningOf(m_pTuning);

    rLimit             = m_expTable.GetLimitation();
    const BOOL hasIris = HasIris();

    ApplyManualLimits(rManual, &rLimit);

    // A manual exposure says nothing about where the iris rests: the next move starts a fresh decay.
    if (AECAlgoModeAuto != rManual.manualMode)
    {
        m_MotorDecayInfo.tolerance_state = BeforeDecay;
    }

    rLimit.fnumber.min = std::max(rLimit.fnumber.min, 1.0F);
    rLimit.fnumber.max = std::max(rLimit.fnumber.max, 1.0F);

    if ((1 == m_isOverallSnapshot) || (1 == m_isShdrActived))
    {
        // A snapshot and a staggered-HDR frame keep the iris where it is.
        if (TRUE == hasIris)
        {
            rLimit.fnumber.max = rLimit.fnumber.min;
        }
        else
        {
            rLimit.fnumber.min = rLimit.fnumber.max;
        }
    }
    else
    {
        IrisBoundryProcess(hasIris, rLimit, Linear);
    }

    if (nullptr != m_pSensorLimit)
    {
        const ArbSensorLimits& rSensor = *m_pSensorLimit;

        rLimit.expTime.min = std::max(rLimit.expTime.min, rSensor.expTime.min);
        rLimit.expTime.max = (0U != rLimit.expTime.max) ? std::min(rLimit.expTime.max, rSensor.expTime.max)
                                                         : rSensor.expTime.max;
        rLimit.SEFexpTime  = rSensor.SEFexpTime;
        rLimit.MEFexpTime  = rSensor.MEFexpTime;
        rLimit.LEFexpTime  = rSensor.LEFexpTime;

        rLimit.gain.min = std::max(rLimit.gain.min, rSensor.gain.min);
        // A nonzero maximum gain comes from the table or a manual gain, which the sensor's maximum must not lower.
        if (std::fabs(rLimit.gain.max) < FloatEqualityLimit)
        {
            rLimit.gain.max = rSensor.gain.max;
            AEC_LOG_VERBOSE("max gain capped using sensor limit: %f", static_cast<DOUBLE>(rLimit.gain.max));
        }
        else if ((nullptr == pCore) || (1 != pCore->enableEVExpTableAdj) || !(m_session.EV > 0.0F))
        {
            AEC_LOG_VERBOSE("max gain controlled by exp table or manual setting, not capping: %f",
                            static_cast<DOUBLE>(rLimit.gain.max));
        }
        else if (1 != pCore->enableEVGainCapping)
        {
            AEC_LOG_VERBOSE("max gain controlled by EV: %f", static_cast<DOUBLE>(rLimit.gain.max));
        }
        else
        {
            rLimit.gain.max = std::min(rLimit.gain.max, pCore->maxEVCappingGain);
            AEC_LOG_VERBOSE("max gain apply EV and capped to: %f max tuned gain: %f",
                            static_cast<DOUBLE>(rLimit.gain.max), static_cast<DOUBLE>(pCore->maxEVCappingGain));
        }

        // Crossed ranges keep their lower bound.
        if (rLimit.expTime.min > rLimit.expTime.max)
        {
            AEC_LOG_WARN("requires attention: exp time min %llu max %llu crossed, sensor limits: %llu %llu",
                         static_cast<unsigned long long>(rLimit.expTime.min),
                         static_cast<unsigned long long>(rLimit.expTime.max),
                         static_cast<unsigned long long>(rSensor.expTime.min),
                         static_cast<unsigned long long>(rSensor.expTime.max));
            rLimit.expTime.max = rLimit.expTime.min;
        }
        if (rLimit.gain.min > rLimit.gain.max)
        {
            AEC_LOG_WARN("requires attention: gain min %f max %f crossed, sensor limits: %f %f",
                         static_cast<DOUBLE>(rLimit.gain.min), static_cast<DOUBLE>(rLimit.gain.max),
                         static_cast<DOUBLE>(rSensor.gain.min), static_cast<DOUBLE>(rSensor.gain.max));
            rLimit.gain.max = rLimit.gain.min;
        }
        if ((rLimit.SEFexpTime.min > rLimit.SEFexpTime.max) || (rLimit.MEFexpTime.min > rLimit.MEFexpTime.max) ||
            (rLimit.LEFexpTime.min > rLimit.LEFexpTime.max))
        {
            AEC_LOG_WARN("shdr exp limit err: sef %llu %llu, mef %llu %llu, lef %llu %llu",
                         static_cast<unsigned long long>(rLimit.SEFexpTime.min),
                         static_cast<unsigned long long>(rLimit.SEFexpTime.max),
                         static_cast<unsigned long long>(rLimit.MEFexpTime.min),
                         static_cast<unsigned long long>(rLimit.MEFexpTime.max),
                         static_cast<unsigned long long>(rLimit.LEFexpTime.min),
                         static_cast<unsigned long long>(rLimit.LEFexpTime.max));
        }
    }

    const aecArbitration::ExposureTableType* pRawTable = m_expTable.GetExpTable(RawTable);
    if (TRUE == IsValidExpTable(pRawTable))
    {
        UtilCalculateLimitationExpIndex(rLimit, pRawTable->expKneeEntries[0]);
    }

    m_expTable.ExpTableEntryCapping(&rLimit, AECAlgoExposureSafe, SHDRAECMODEDEFAULT);
}

VOID CArbitrator::UtilCalculateLimitationExpIndex(ExposureLimitationType&                 rLimit,
                                                  const aecArbitration::ExposureKneeType& rKnee)
{
    if (!(rKnee.fnumber > 0.0F) || !(rLimit.fnumber.min > 0.0F) || !(rLimit.fnumber.max > 0.0F))
    {
        AEC_LOG_ERROR("f-number not positive (knee %f, limit %f %f): exposure index range kept",
                      static_cast<DOUBLE>(rKnee.fnumber), static_cast<DOUBLE>(rLimit.fnumber.min),
                      static_cast<DOUBLE>(rLimit.fnumber.max));
        return;
    }
    const FLOAT kneeSens = LimitSensitivity(rKnee.expTime, rKnee.gain, rKnee.fnumber);
    const FLOAT minSens  = LimitSensitivity(rLimit.expTime.min, rLimit.gain.min, rLimit.fnumber.max);
    const FLOAT maxSens  = LimitSensitivity(rLimit.expTime.max, rLimit.gain.max, rLimit.fnumber.min);

    rLimit.expIndex.min = std::fma(std::log10(minSens) - std::log10(kneeSens), ExpIndexPerDecadeF, rKnee.expIndex);
    rLimit.expIndex.max = std::fma(std::log10(maxSens) - std::log10(kneeSens), ExpIndexPerDecadeF, rKnee.expIndex);

    AEC_LOG_VERBOSE("KneePt_0 (G %f, F %f, S %d, idx %f) ; MinPt (G %f, F %f, S %d, idx %f) ; MaxPt (G %f, F %f, S "
                    "%d, idx %f)",
                    static_cast<DOUBLE>(rKnee.gain), static_cast<DOUBLE>(rKnee.fnumber),
                    static_cast<INT32>(rKnee.expTime), static_cast<DOUBLE>(rKnee.expIndex),
                    static_cast<DOUBLE>(rLimit.gain.min), static_cast<DOUBLE>(rLimit.fnumber.max),
                    static_cast<INT32>(rLimit.expTime.min), static_cast<DOUBLE>(rLimit.expIndex.min),
                    static_cast<DOUBLE>(rLimit.gain.max), static_cast<DOUBLE>(rLimit.fnumber.min),
                    static_cast<INT32>(rLimit.expTime.max), static_cast<DOUBLE>(rLimit.expIndex.max));
}

VOID CArbitrator::IrisBoundryProcess(BOOL hasIris, ExposureLimitationType& rLimit, AECExposureMode mode)
{
    if (TRUE == hasIris)
    {
        const FLOAT widestFn = WidestFnAtZoom(m_IrisTble, m_currZoomStep);
        rLimit.fnumber.min   = std::max(rLimit.fnumber.min, widestFn);
        rLimit.fnumber.max   = std::max(rLimit.fnumber.max, rLimit.fnumber.min);
        AEC_LOG_VERBOSE("Zoom step %d", static_cast<INT32>(m_currZoomStep));
    }
    else
    {
        rLimit.fnumber.min = rLimit.fnumber.max;
    }

    DecayToleranceProcess(rLimit, mode);

    // The application's fixed f-number overrides even a running decay.
    if (m_FnLimits > 0.0F)
    {
        rLimit.fnumber.min = m_FnLimits;
        rLimit.fnumber.max = m_FnLimits;
    }
}

VOID CArbitrator::DecayToleranceProcess(ExposureLimitationType& rLimit, AECExposureMode mode)
{
    FLOAT tolerance = DefaultDecayTolerance;
    if (HDR == mode)
    {
        const MeteringTuningDataType* pMtrTuning = m_pContext->getMtrTuning();
        if ((nullptr != pMtrTuning) && (nullptr != pMtrTuning->pShdr))
        {
            tolerance = pMtrTuning->pShdr->decay_tolerance;
        }
    }
    else
    {
        const aecArbitration::AECCoreArbitrationType* pCore = CoreTuningOf(m_pTuning);
        if (nullptr != pCore)
        {
            tolerance = pCore->decay_tolerance;
        }
    }

    if (1 == m_MotorDecayInfo.decay_state)
    {
        rLimit.fnumber.min = m_MotorDecayInfo.tarFn;
        rLimit.fnumber.max = m_MotorDecayInfo.tarFn;
        AEC_LOG_VERBOSE("Fixed Fn %f while decaying", static_cast<DOUBLE>(m_MotorDecayInfo.tarFn));
    }
    else if (AfterDecay == m_MotorDecayInfo.tolerance_state)
    {
        if (tolerance < std::fabs(m_expIdx - m_MotorDecayInfo.exp_idx_base))
        {
            m_MotorDecayInfo.tolerance_state = BeforeDecay;
            AEC_LOG_VERBOSE("Reset the decay tolerance, m_expIdx %f exp_idx_base %f tol %f",
                            static_cast<DOUBLE>(m_expIdx), static_cast<DOUBLE>(m_MotorDecayInfo.exp_idx_base),
                            static_cast<DOUBLE>(tolerance));
        }
        else
        {
            rLimit.fnumber.min = m_MotorDecayInfo.tarFn;
            rLimit.fnumber.max = m_MotorDecayInfo.tarFn;
            AEC_LOG_VERBOSE("Fixed Fn %f Curr idx %f Base idx %f tol %f", static_cast<DOUBLE>(m_MotorDecayInfo.tarFn),
                            static_cast<DOUBLE>(m_expIdx), static_cast<DOUBLE>(m_MotorDecayInfo.exp_idx_base),
                            static_cast<DOUBLE>(tolerance));
        }
    }
}

BOOL CArbitrator::IsIrisCalibrated() const
{
    return ((0U != m_IrisTble.irisTableZoomSize) && (0U != m_IrisTble.irisTableIrisSize) &&
            (nullptr != m_IrisTble.zoomTable) && (nullptr != m_IrisTble.irisFnTable) &&
            (nullptr != m_IrisTble.irisStepTable))
               ? TRUE
               : FALSE;
}

BOOL CArbitrator::HasIris()
{
    const BOOL checkLensCap = (1 == m_LensCap.PIris) ? TRUE : FALSE;
    const BOOL checkIrisTblData = IsIrisCalibrated();
    // A table whose first knee is at f/1.0 was tuned for a fixed aperture.
    const aecArbitration::ExposureTableType* pRawTable = m_expTable.GetExpTable(RawTable);
    const BOOL checkAECTblHasIris =
        ((TRUE == IsValidExpTable(pRawTable)) &&
         (std::fabs(pRawTable->expKneeEntries[0].fnumber - 1.0F) >= FloatEqualityLimit))
            ? TRUE
            : FALSE;
    AEC_LOG_VERBOSE("Current zoom step : %d, checkLensCap %d, checkIrisTblData %d checkAECTblHasIris %d",
                    static_cast<INT32>(m_currZoomStep), checkLensCap, checkIrisTblData, checkAECTblHasIris);
    return ((TRUE == checkLensCap) && (TRUE == checkIrisTblData) && (TRUE == checkAECTblHasIris)) ? TRUE : FALSE;
}
