// Antibanding of the arbitrator: snapping exposure time to the flicker (or IR PWM) period, paid for in gain.
#include <cmath>

#include "aec/core/modules/mod_arb/carbitrator.h"
#include "platform/statslogger.h"

namespace
{

constexpr UINT64 HalfPeriod50Hz = 10000000U; // ns, half period of 50 Hz mains
constexpr UINT64 HalfPeriod60Hz = 8333333U;  // ns, half period of 60 Hz mains

// A long exposure's gain is capped a little above the tuned maximum so that a rounded register value cannot fall
// below it.
constexpr DOUBLE LEFMaxGainDecimalGuard = 1.0001;

// The period an antibanding step snaps to; apply FALSE leaves the exposure alone.
struct BandingPeriod
{
    BOOL   apply;
    UINT64 period; // ns
};

// In IR mode the IR LED's PWM period replaces the mains period. Returns TRUE when the last frame ran in IR mode;
// rPeriod then says whether and to what the exposure snaps.
BOOL ResolveIRPeriod(IAECContext* pContext, BandingPeriod& rPeriod)
{
    const AECFrameHistory* pLast = pContext->getFrameHistory(1);
    if ((nullptr == pLast) || (1U != pLast->IRModeActivated))
    {
        return FALSE;
    }

    const FLOAT frequency = pContext->getPWMFrequency();
    UINT64      pwm       = 0U;
    // A zero, negative or non-finite frequency has no period; converting its infinite or negative reciprocal to
    // an integer would be undefined.
    if ((frequency > 0.0F) && std::isfinite(frequency))
    {
        const DOUBLE rounded = std::trunc(std::fma(static_cast<DOUBLE>(1.0F / frequency), 1e9, 0.5));
        if (rounded < 18446744073709551616.0) // 2^64: a longer period does not fit the time type
        {
            pwm = static_cast<UINT64>(rounded);
        }
    }
    AEC_LOG_VERBOSE("IR mode turns on, PWM period: %lld", static_cast<long long>(pwm));
    if (0U == pwm)
    {
        AEC_LOG_WARN("cannot apply: PWM period is invalid");
    }
    rPeriod = {(0U != pwm) ? TRUE : FALSE, pwm};
    return TRUE;
}

// Safe and short exposure: the IR period, else the session's flicker half period unless antibanding is off.
BandingPeriod SessionPeriod(IAECContext* pContext, const ArbitrationSessionInfoType& rSession, BOOL logOff)
{
    BandingPeriod result = {FALSE, 0U};
    if (TRUE == ResolveIRPeriod(pContext, result))
    {
        return result;
    }
    if (StatisticsAntibandingOff == rSession.flickerMode)
    {
        if (TRUE == logOff)
        {
            AEC_LOG_VERBOSE("StatisticsAntibandingOff");
        }
        return result;
    }
    // A mode that never set a half period (auto before it was resolved) has nothing to snap to, and a zero period
    // would divide by zero below.
    if (0U == rSession.flickerHalfPeriod)
    {
        AEC_LOG_WARN("cannot apply: flicker half period is 0 in mode %d", static_cast<INT32>(rSession.flickerMode));
        return result;
    }
    return {TRUE, rSession.flickerHalfPeriod};
}

// Long and middle exposure of staggered HDR: the IR period, else the mains mode mapped here, auto states included.
BandingPeriod MappedPeriod(IAECContext* pContext, StatisticsAntibanding mode)
{
    BandingPeriod result = {FALSE, 0U};
    if (TRUE == ResolveIRPeriod(pContext, result))
    {
        return result;
    }
    switch (mode)
    {
        case StatisticsAntibanding50Hz:
        case StatisticsAntibandingAuto_50HZ:
            AEC_LOG_VERBOSE("[SHDR]anti-banding mode: Hz50");
            return {TRUE, HalfPeriod50Hz};
        case StatisticsAntibanding60Hz:
        case StatisticsAntibandingAuto_60HZ:
            AEC_LOG_VERBOSE("[SHDR]anti-banding mode: Hz60");
            return {TRUE, HalfPeriod60Hz};
        case StatisticsAntibandingOff:
            AEC_LOG_VERBOSE("skip antibanding due to mode selection");
            return result;
        case StatisticsAntibandingInvalid:
            AEC_LOG_VERBOSE("skip antibanding due to Invalid antibanding mode");
            return result;
        default:
            AEC_LOG_VERBOSE("skip antibanding due to Invalid antibanding mode, banding mode: %d",
                            static_cast<INT32>(mode));
            return result;
    }
}

BOOL IsAdmissible(UINT64 expTime, FLOAT gain, const ExposureLimitationType& rLimit)
{
    return ((gain >= rLimit.gain.min) && (gain <= rLimit.gain.max) && (expTime >= rLimit.expTime.min) &&
            (expTime <= rLimit.expTime.max))
               ? TRUE
               : FALSE;
}

VOID LogAntibandingResult(FLOAT inGain, UINT64 inTime, const ExposureSetType* pExpSet)
{
    AEC_LOG_VERBOSE(" Input : %f %lu ; Output %f %lu", inGain, static_cast<unsigned long>(inTime), pExpSet->gain,
                    static_cast<unsigned long>(pExpSet->expTime));
}

// An HDR exposure snaps within the sensor's own range for its kind, sensorMax. The gain may not fall below unity,
// so a time that would need it takes the multiple below.
VOID SnapToSensorRange(ExposureSetType* pExpSet, ExposureLimitationType& rLimit, UINT64 period, UINT64 sensorMax)
{
    if (sensorMax < period)
    {
        AEC_LOG_VERBOSE("cannot apply: limit.expTime.max %llu is less than banding period",
                        static_cast<unsigned long long>(sensorMax));
        return;
    }

    const FLOAT  gain     = pExpSet->gain;
    const UINT64 expTime  = pExpSet->expTime;
    UINT64       multiple = period;
    UINT64       previous = period;
    if (period < sensorMax)
    {
        // Smallest multiple at or above the time, or the highest one the sensor range still leaves room for.
        while (expTime > multiple)
        {
            previous = multiple;
            if (sensorMax <= (multiple + period))
            {
                break;
            }
            multiple += period;
        }
    }

    FLOAT newGain = static_cast<FLOAT>(expTime) / static_cast<FLOAT>(multiple) * gain;
    if (newGain < 1.0F)
    {
        newGain  = static_cast<FLOAT>(expTime) / static_cast<FLOAT>(previous) * gain;
        multiple = previous;
        if (newGain < 1.0F)
        {
            AEC_LOG_VERBOSE("skip antibanding due to gain too small");
        }
    }

    rLimit.expTime.min = multiple;
    rLimit.expTime.max = multiple;
    pExpSet->expTime   = multiple;
    pExpSet->gain      = newGain;
    LogAntibandingResult(gain, expTime, pExpSet);
}

} // namespace

VOID CArbitrator::processAntibandingAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit)
{
    if ((nullptr == m_pTuning) || (nullptr == m_pTuning->pCore))
    {
        AEC_LOG_ERROR("cannot apply: no arbitration tuning");
        return;
    }
    const BandingPeriod banding = SessionPeriod(m_pContext, m_session, FALSE);
    if (FALSE == banding.apply)
    {
        return;
    }
    const UINT64 period = banding.period;

    if (rLimit.expTime.max < period)
    {
        AEC_LOG_VERBOSE("cannot apply: limit.expTime.max %llu is less than banding period",
                        static_cast<unsigned long long>(rLimit.expTime.max));
        return;
    }

    const FLOAT  gain    = pExpSet->gain;
    const UINT64 expTime = pExpSet->expTime;
    const FLOAT  pct     = m_expTable.GetThresAntiBandingMinExpTimePct();
    // Short times under bright light are left alone: the banding there is weak and snapping would cost much gain.
    if (static_cast<FLOAT>(expTime) <= (static_cast<FLOAT>(period) * pct))
    {
        AEC_LOG_VERBOSE("cannot apply: curr exp time %llu smaller than flicker period %llu * tuning pct %f",
                        static_cast<unsigned long long>(expTime), static_cast<unsigned long long>(period), pct);
        return;
    }

    const aecglobalelements::AECAntibandingVsFPSMethod method = m_pTuning->pCore->antibandingVsFPSMethod;
    const UINT64 frameMaxTime = rLimit.expTime.max;
    if ((aecglobalelements::LegacyAllowFPSToDrop == method) || (aecglobalelements::MaximizeExposureTime == method))
    {
        // The blanking reserved for the frame may be spent on a banding-free time.
        rLimit.expTime.max += m_pTuning->pCore->minPreviewVertBlankTime;
    }

    const UINT64 multiples = expTime / period;
    const UINT64 higher    = (multiples + 1U) * period;
    const FLOAT  gainHigh  = static_cast<FLOAT>(expTime) / static_cast<FLOAT>(higher) * gain;
    const BOOL   highOk    = IsAdmissible(higher, gainHigh, rLimit);
    const UINT64 lower     = higher - period;
    FLOAT        gainLow   = 0.0F;
    BOOL         lowOk     = FALSE;
    if (multiples >= 1U)
    {
        gainLow = static_cast<FLOAT>(expTime) / static_cast<FLOAT>(lower) * gain;
        lowOk   = IsAdmissible(lower, gainLow, rLimit);
    }

    UINT64 newTime = 0U;
    FLOAT  newGain = 0.0F;
    if ((TRUE == lowOk) && ((FALSE == highOk) || ((expTime - lower) < (higher - expTime))))
    {
        newTime = lower;
        newGain = gainLow;
    }
    else if (TRUE == highOk)
    {
        newTime = higher;
        newGain = gainHigh;
    }
    else
    {
        AEC_LOG_WARN("warning: could not apply antibanding");
        return;
    }

    if ((aecglobalelements::MaximizeExposureTime == method) && (newTime > frameMaxTime))
    {
        // The frame rate wins over the grid: the longest time the frame allows, even if it bands a little.
        newTime = frameMaxTime;
        newGain = static_cast<FLOAT>(expTime) * gain / static_cast<FLOAT>(frameMaxTime);
    }

    rLimit.expTime.min = newTime;
    rLimit.expTime.max = newTime;
    pExpSet->expTime   = newTime;
    pExpSet->gain      = newGain;
    LogAntibandingResult(gain, expTime, pExpSet);
}

VOID CArbitrator::processAntibandingSEFAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit)
{
    if (nullptr == m_pSensorLimit)
    {
        AEC_LOG_ERROR("cannot apply: no sensor limits for the short exposure");
        return;
    }
    const BandingPeriod banding = SessionPeriod(m_pContext, m_session, TRUE);
    if (TRUE == banding.apply)
    {
        SnapToSensorRange(pExpSet, rLimit, banding.period, m_pSensorLimit->SEFexpTime.max);
    }
}

VOID CArbitrator::processAntibandingLEFAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit)
{
    if (nullptr == m_pSensorLimit)
    {
        AEC_LOG_ERROR("cannot apply: no sensor limits for the long exposure");
        return;
    }
    const BandingPeriod banding = MappedPeriod(m_pContext, m_session.flickerMode);
    if (TRUE == banding.apply)
    {
        SnapToSensorRange(pExpSet, rLimit, banding.period, m_pSensorLimit->LEFexpTime.max);
    }
}

VOID CArbitrator::processAntibandingMEFAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit)
{
    if (nullptr == m_pSensorLimit)
    {
        AEC_LOG_ERROR("cannot apply: no sensor limits for the middle exposure");
        return;
    }
    const BandingPeriod banding = MappedPeriod(m_pContext, m_session.flickerMode);
    if (TRUE == banding.apply)
    {
        SnapToSensorRange(pExpSet, rLimit, banding.period, m_pSensorLimit->MEFexpTime.max);
    }
}

VOID CArbitrator::processLEFMaxGainAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit)
{
    const MeteringTuningDataType* pMtrTuning = m_pContext->getMtrTuning();
    if ((nullptr == pMtrTuning) || (nullptr == pMtrTuning->pShdr))
    {
        AEC_LOG_ERROR("cannot apply max gain for LEF: no staggered-HDR tuning");
        return;
    }
    const FLOAT maxGain = pMtrTuning->pShdr->LEFMaxGain;
    if (maxGain < pExpSet->gain)
    {
        const FLOAT cappedGain = static_cast<FLOAT>(static_cast<DOUBLE>(maxGain) * LEFMaxGainDecimalGuard);
        rLimit.gain.min        = cappedGain;
        rLimit.gain.max        = cappedGain;
        pExpSet->gain          = cappedGain;
        AEC_LOG_VERBOSE("Apply max gain for LEF %f DelDecimalError %f", maxGain, cappedGain);
    }
}

UINT64 CArbitrator::getMaxBandingShutter()
{
    const ModArbitrationContext* pPublished = m_pContext->getExposureLimitation();
    if (nullptr == pPublished)
    {
        AEC_LOG_ERROR("no published exposure limitation, max banding shutter 0");
        return 0U;
    }
    const UINT64 longMax = pPublished->exposureLimitation.LEFexpTime.max;

    UINT64 period = 0U;
    switch (m_pContext->getFlickerCompMode())
    {
        case StatisticsAntibanding50Hz:
        case StatisticsAntibandingAuto_50HZ:
            period = HalfPeriod50Hz;
            break;
        case StatisticsAntibanding60Hz:
        case StatisticsAntibandingAuto_60HZ:
            period = HalfPeriod60Hz;
            break;
        default:
            return longMax;
    }
    const UINT64 shutter = (longMax / period) * period;
    return (shutter > period) ? shutter : period;
}
