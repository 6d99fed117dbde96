// The iris motor's adjustments: keeping the iris on table knees (life save) and its gradual glide (decay).
#include <cmath>

#include "aec/core/modules/mod_arb/carbitrator.h"
#include "aec/core/modules/mod_arb/exptableknees.h"
#include "platform/statslogger.h"

namespace
{

// Float equality of the arbitration steps.
constexpr FLOAT FloatEqualityLimit = 1e-7F;

// Glide speed when the tuning does not say: 1 percent of f-number per frame.
constexpr INT32 DefaultExpEquSpeed = 10;

// The glide is done once the f-number is within 1 percent of its target.
constexpr FLOAT DecayDonePercent = 1.0F;

// Knee the iris returns to: the last knee whose f-number is not below fnumber, knee 0 when even that one is below,
// the last knee when none is below.
template <typename TableT>
UINT32 LifeSaveKnee(const TableT& rTable, FLOAT fnumber)
{
    const UINT32 count = rTable.expKneeEntriesCount;
    for (UINT32 k = 0U; k < count; k++)
    {
        if (rTable.expKneeEntries[k].fnumber < fnumber)
        {
            return (0U == k) ? 0U : (k - 1U);
        }
    }
    return count - 1U;
}

BOOL IsWithin(FLOAT value, FLOAT low, FLOAT high)
{
    return ((value >= low) && (value <= high)) ? TRUE : FALSE;
}

// Time scaled by factor, truncated; a result outside the 64-bit range or not a number keeps time.
UINT64 ScaleExpTime(UINT64 time, FLOAT factor)
{
    // 2^64 is exactly representable; every float below it converts without overflow.
    constexpr FLOAT TimeRangeEnd = 18446744073709551616.0F;
    const FLOAT     scaled       = static_cast<FLOAT>(time) * factor;
    return ((scaled >= 0.0F) && (scaled < TimeRangeEnd)) ? static_cast<UINT64>(scaled) : time;
}

} // namespace

VOID CArbitrator::processMotorLifeSaveAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit, UINT32 expType)
{
    if ((nullptr == pExpSet) || (1 == m_irisIsAborted))
    {
        return;
    }

    const BOOL isSafe = (static_cast<UINT32>(AECAlgoExposureSafe) == expType) ? TRUE : FALSE;
    FLOAT      firstKneeFn = 1.0F;
    UINT32     kneeIndex   = 0U;
    FLOAT      kneeFn      = 1.0F;
    const FLOAT fnumber    = pExpSet->fnumber;
    if (TRUE == isSafe)
    {
        const aecArbitration::ExposureTableType* pTable = m_expTable.GetExpTable(ActiveTable);
        if (FALSE == IsValidExpTable(pTable))
        {
            AEC_LOG_ERROR("[MLS] active table not valid, not apply this module!");
            return;
        }
        kneeIndex = LifeSaveKnee(*pTable, fnumber);
        kneeFn    = pTable->expKneeEntries[kneeIndex].fnumber;
    }
    else
    {
        const aecShdr::SHDRExposureTableType* pTable = m_expTable.GetActiveSHDRExpTable(SEF);
        if (FALSE == IsValidExpTable(pTable))
        {
            AEC_LOG_ERROR("[MLS] active SEF table not valid, not apply this module!");
            return;
        }
        kneeIndex   = LifeSaveKnee(*pTable, fnumber);
        kneeFn      = pTable->expKneeEntries[kneeIndex].fnumber;
        firstKneeFn = pTable->expKneeEntries[0].fnumber;
    }

    FLOAT  gain    = pExpSet->gain;
    UINT64 expTime = pExpSet->expTime;
    FLOAT  outFn   = fnumber;
    if ((1 != m_LensCap.PIris) || (FALSE == IsIrisCalibrated()))
    {
        // Without an iris the f-number is whatever the lens has: unity for the safe exposure, the table's for others.
        outFn = firstKneeFn;
        m_MotorDecayInfo.preFn = outFn;
        if (TRUE == isSafe)
        {
            AEC_LOG_VERBOSE("[MLS] Protection of f-number with 1.0");
        }
    }
    else if (!(fnumber > 0.0F) || !(kneeFn > 0.0F))
    {
        AEC_LOG_ERROR("[MLS] f-number %f or knee f-number %f not positive, not apply this module!",
                      static_cast<DOUBLE>(fnumber), static_cast<DOUBLE>(kneeFn));
        return;
    }
    else
    {
        const FLOAT fnRatio = fnumber / kneeFn;
        const FLOAT ratio   = 1.0F / (fnRatio * fnRatio);
        AEC_LOG_VERBOSE("[MLS] FnRatio %f FnKneeRatio %f", static_cast<DOUBLE>(fnRatio), static_cast<DOUBLE>(ratio));

        const FLOAT scaledTime = static_cast<FLOAT>(expTime) * ratio;
        if (TRUE == IsWithin(gain * ratio, rLimit.gain.min, rLimit.gain.max))
        {
            gain *= ratio;
            outFn = kneeFn;
            AEC_LOG_VERBOSE("[MLS] Apply to gain, kneeIndex %d preKneeFn(use) %f postKneeFn %f",
                            static_cast<INT32>(kneeIndex), static_cast<DOUBLE>(fnumber), static_cast<DOUBLE>(kneeFn));
        }
        else if (TRUE == IsWithin(scaledTime, static_cast<FLOAT>(rLimit.expTime.min),
                                  static_cast<FLOAT>(rLimit.expTime.max)))
        {
            expTime = ScaleExpTime(expTime, ratio);
            outFn   = kneeFn;
            AEC_LOG_VERBOSE("[MLS] Gain exceed limits, apply to shutter");
        }
        else
        {
            AEC_LOG_VERBOSE("[MLS] Gain and Shutter exceed their limits, not apply this module!");
        }
    }

    rLimit.fnumber.min = outFn;
    rLimit.fnumber.max = outFn;
    pExpSet->expTime   = expTime;
    pExpSet->gain      = gain;
    pExpSet->fnumber   = outFn;
}

VOID CArbitrator::processMotorExpDecayAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit,
                                             AECExposureMode mode)
{
    if (nullptr == pExpSet)
    {
        return;
    }

    INT32 speed = DefaultExpEquSpeed;
    if (HDR == mode)
    {
        const MeteringTuningDataType* pMtrTuning = m_pContext->getMtrTuning();
        if ((nullptr != pMtrTuning) && (nullptr != pMtrTuning->pShdr))
        {
            speed = pMtrTuning->pShdr->exp_equ_speed;
        }
    }
    else if ((nullptr != m_pTuning) && (nullptr != m_pTuning->pCore))
    {
        speed = m_pTuning->pCore->exp_equ_speed;
    }

    MotorDecayType& rDecay  = m_MotorDecayInfo;
    const FLOAT     fnumber = pExpSet->fnumber;
    const FLOAT     gain    = pExpSet->gain;
    const UINT64    expTime = pExpSet->expTime;

    if ((std::fabs(rDecay.preFn) >= FloatEqualityLimit) && (std::fabs(rDecay.preFn - fnumber) >= FloatEqualityLimit) &&
        (0 == rDecay.decay_state))
    {
        if (1 == m_irisIsAborted)
        {
            rDecay.preFn = fnumber;
            return;
        }
        // The iris glides from where it is to the new f-number while gain makes up the difference in light.
        rDecay.tarFn        = fnumber;
        rDecay.tarGain      = gain;
        rDecay.exp_idx_base = m_expIdx;
        const FLOAT fnRatio = fnumber / rDecay.preFn;
        rDecay.Fn_magnification = (fnRatio > 1.0F) ? ((1000.0F + static_cast<FLOAT>(speed)) / 1000.0F)
                                                   : ((1000.0F - static_cast<FLOAT>(speed)) / 1000.0F);
        rDecay.sensor_comp = 1.0F / (fnRatio * fnRatio);
        rDecay.decay_state = 1;
        AEC_LOG_VERBOSE("[MLSS] Fn_magnification %f preFn %f tarFn %f outExp.gain %f exp_equ_speed %d  outExp.expTime "
                        "%lu decay_state %d sensor_comp %f",
                        static_cast<DOUBLE>(rDecay.Fn_magnification), static_cast<DOUBLE>(rDecay.preFn),
                        static_cast<DOUBLE>(rDecay.tarFn), static_cast<DOUBLE>(gain), speed,
                        static_cast<unsigned long>(expTime), rDecay.decay_state, static_cast<DOUBLE>(rDecay.sensor_comp));
    }

    if (0 == rDecay.decay_state)
    {
        rDecay.preFn = fnumber;
        return;
    }

    FLOAT  outGain = gain;
    UINT64 outTime = expTime;
    FLOAT  outFn   = fnumber;
    const BOOL arrived =
        ((std::fabs(((rDecay.preFn / rDecay.tarFn) * 100.0F) - 100.0F) < DecayDonePercent) || (0.0F != m_PLDGatingEnable))
            ? TRUE
            : FALSE;
    if ((TRUE == arrived) || (1 == m_irisIsAborted))
    {
        rDecay.decay_state     = 0;
        rDecay.tolerance_state = AfterDecay;
        rDecay.sensor_comp     = 1.0F;
        outFn                  = rDecay.tarFn;
        if (1 == m_irisIsAborted)
        {
            if (m_FnLimits > 0.0F)
            {
                outFn = m_FnLimits;
            }
            else
            {
                AEC_LOG_WARN("[MLSS] iris aborted without a fixed f-number, keeping target %f",
                             static_cast<DOUBLE>(rDecay.tarFn));
            }
        }
    }
    else
    {
        const FLOAT magnification = rDecay.Fn_magnification;
        FLOAT       nextFn        = rDecay.preFn * magnification;
        // Never glide past the target.
        if (((magnification > 1.0F) && (nextFn > rDecay.tarFn)) || ((magnification <= 1.0F) && (nextFn < rDecay.tarFn)))
        {
            nextFn = rDecay.tarFn;
        }
        rDecay.sensor_comp *= magnification * magnification;

        const FLOAT compGain = gain * rDecay.sensor_comp;
        if (TRUE == IsWithin(compGain, rLimit.gain.min, rLimit.gain.max))
        {
            outGain = compGain;
        }
        else
        {
            // Gain stops at its bound and the rest of the compensation goes to time.
            const FLOAT bound = (compGain > rLimit.gain.max) ? rLimit.gain.max : rLimit.gain.min;
            outGain           = bound;
            if (bound > 0.0F)
            {
                const FLOAT timeMin = static_cast<FLOAT>(rLimit.expTime.min);
                const FLOAT timeMax = static_cast<FLOAT>(rLimit.expTime.max);
                const FLOAT compTime = static_cast<FLOAT>(expTime) * rDecay.sensor_comp * (gain / bound);
                if (compTime < timeMin)
                {
                    outTime = rLimit.expTime.min;
                    AEC_LOG_VERBOSE("[MLSS] compensate to sensor limit");
                }
                else if (!(compTime <= timeMax))
                {
                    outTime = rLimit.expTime.max;
                    AEC_LOG_VERBOSE("[MLSS] compensate to sensor limit");
                }
                else
                {
                    outTime = static_cast<UINT64>(compTime);
                }
            }
            else
            {
                AEC_LOG_ERROR("[MLSS] gain bound %f not positive, exposure time kept", static_cast<DOUBLE>(bound));
            }
        }
        outFn = nextFn;
    }

    AEC_LOG_VERBOSE("[MLSS] sensor_comp %f outExp.fnumber %f outExp.gain %f outExp.expTime %lu ",
                    static_cast<DOUBLE>(rDecay.sensor_comp), static_cast<DOUBLE>(outFn), static_cast<DOUBLE>(outGain),
                    static_cast<unsigned long>(outTime));
    rDecay.preFn      = outFn;
    pExpSet->fnumber  = outFn;
    pExpSet->gain     = outGain;
    pExpSet->expTime  = outTime;
}

VOID CArbitrator::PirisManualDecayParam()
{
    // The glide needs no parameters of its own in manual modes: it runs the same way in every mode.
}
