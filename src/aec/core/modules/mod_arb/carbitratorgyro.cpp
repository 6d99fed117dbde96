// Gyro-driven exposure control: the buffer of angular velocities and the trade of exposure time for gain under shake.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "aec/core/modules/mod_arb/carbitrator.h"
#include "platform/statslogger.h"

namespace
{

// Smallest distance between two zone edges that the lookup divides by.
constexpr FLOAT MinZoneDistance = 0.001F;

// A trigger zone table of one key level.
struct GyroZoneLevel
{
    const ParamExtGyroExpCtrlTriggerZoneType* pZones;
    INT32                                     count;
};

// Zones of one key level that bound key: lo is the highest-numbered zone starting at or below it (0 if none), hi the
// lowest-numbered zone ending at or above it (the last if none). Inside one zone lo == hi, in a gap lo < hi, in an
// overlap lo > hi.
VOID FindZones(const GyroZoneLevel& rLevel, FLOAT key, INT32* pLo, INT32* pHi)
{
    INT32 lo = 0;
    for (INT32 zone = rLevel.count - 1; zone >= 0; zone--)
    {
        if (rLevel.pZones[zone].start <= key)
        {
            lo = zone;
            break;
        }
    }
    INT32 hi = rLevel.count - 1;
    for (INT32 zone = 0; zone < rLevel.count; zone++)
    {
        if (rLevel.pZones[zone].end >= key)
        {
            hi = zone;
            break;
        }
    }
    *pLo = lo;
    *pHi = hi;
}

// Weight of key between edges u and v: 0 at the first edge of the blend, 1 at the second.
FLOAT EdgeWeight(FLOAT key, FLOAT from, FLOAT to)
{
    return (key - from) / std::max(to - from, MinZoneDistance);
}

// A float exposure time truncated to nanoseconds, saturating at the 64-bit range.
UINT64 TruncateExpTime(FLOAT time)
{
    // 2^64 is exactly representable; every float below it converts without overflow.
    constexpr FLOAT TimeRangeEnd = 18446744073709551616.0F;
    return (time >= TimeRangeEnd) ? std::numeric_limits<UINT64>::max() : static_cast<UINT64>(time);
}

} // namespace

VOID CArbitrator::SetGyroInfo(const StatsGyroInfo* pGyroInfo)
{
    m_gyroInfo.timeDuration = 0.0F;
    m_gyroInfo.gyroVal      = 0.0F;
    if (nullptr == pGyroInfo)
    {
        AEC_LOG_ERROR("Gyro info is NULL");
        return;
    }
    if (1 != pGyroInfo->enabled)
    {
        AEC_LOG_VERBOSE("Gyro info is not enabled");
        return;
    }

    UINT32 sampleCount = pGyroInfo->sampleCount;
    if (sampleCount > AECORE_MAX_GYRO_SAMPLES)
    {
        AEC_LOG_WARN("Gyro sample count %u above %d, using the first %d", sampleCount, AECORE_MAX_GYRO_SAMPLES,
                     AECORE_MAX_GYRO_SAMPLES);
        sampleCount = AECORE_MAX_GYRO_SAMPLES;
    }

    // Each sample goes to the front; the oldest drops off the end. Sample 0 is not taken.
    constexpr size_t ShiftBytes = (GyroBufferSize - 1U) * sizeof(FLOAT);
    for (UINT32 i = (sampleCount > 0U) ? (sampleCount - 1U) : 0U; i >= 1U; i--)
    {
        std::memmove(&m_gyroInfo.x[1], &m_gyroInfo.x[0], ShiftBytes);
        std::memmove(&m_gyroInfo.y[1], &m_gyroInfo.y[0], ShiftBytes);
        std::memmove(&m_gyroInfo.z[1], &m_gyroInfo.z[0], ShiftBytes);
        m_gyroInfo.x[0] = std::fabs(pGyroInfo->pAngularVelocityX[i]);
        m_gyroInfo.y[0] = std::fabs(pGyroInfo->pAngularVelocityY[i]);
        m_gyroInfo.z[0] = std::fabs(pGyroInfo->pAngularVelocityZ[i]);
        if (m_gyroInfo.bufferCounter < static_cast<INT32>(GyroBufferSize))
        {
            m_gyroInfo.bufferCounter++;
        }
    }

    if (sampleCount > 0U)
    {
        const UINT64 first = pGyroInfo->timeStamp[0];
        const UINT64 last  = pGyroInfo->timeStamp[sampleCount - 1U];
        m_gyroInfo.timeDuration =
            (last >= first) ? static_cast<FLOAT>(last - first) : -static_cast<FLOAT>(first - last);
    }
}

VOID CArbitrator::SetLuxIndex(FLOAT luxIndex)
{
    m_luxIdx = luxIndex;
}

FLOAT CArbitrator::GyroExposureControlLUT(FLOAT keyLevel1, FLOAT keyLevel2, const ParamExtGyroExpCtrl* pTuning)
{
    constexpr INT32 MaxZones = static_cast<INT32>(GyroExpCtrlMaxTriggerZones);
    if ((nullptr == pTuning) || (pTuning->numOfKeyLevel1TriggerZone < 1) ||
        (pTuning->numOfKeyLevel1TriggerZone > MaxZones) || (pTuning->numOfKeyLevel2TriggerZone < 1) ||
        (pTuning->numOfKeyLevel2TriggerZone > MaxZones))
    {
        AEC_LOG_ERROR("Gyro trigger zones not valid (%d, %d): no trigger data",
                      (nullptr != pTuning) ? pTuning->numOfKeyLevel1TriggerZone : 0,
                      (nullptr != pTuning) ? pTuning->numOfKeyLevel2TriggerZone : 0);
        return 0.0F;
    }

    const GyroZoneLevel level1 = {pTuning->keyLevel1TriggerZone, pTuning->numOfKeyLevel1TriggerZone};
    const GyroZoneLevel level2 = {pTuning->keyLevel2TriggerZone, pTuning->numOfKeyLevel2TriggerZone};
    INT32 lo1 = 0;
    INT32 hi1 = 0;
    INT32 lo2 = 0;
    INT32 hi2 = 0;
    FindZones(level1, keyLevel1, &lo1, &hi1);
    FindZones(level2, keyLevel2, &lo2, &hi2);

    const auto& rData = pTuning->triggerData;
    FLOAT       a     = rData[lo1][lo2];
    FLOAT       b     = rData[hi1][hi2];
    if (lo2 != hi2)
    {
        const FLOAT u = level2.pZones[lo2].end;
        const FLOAT v = level2.pZones[hi2].start;
        if (u >= v)
        {
            // Overlap: zone hi2 holds from its start, zone lo2 up to its end.
            const FLOAT w = EdgeWeight(keyLevel2, v, u);
            a = (w * a) + ((1.0F - w) * rData[lo1][hi2]);
            b = (w * rData[hi1][lo2]) + ((1.0F - w) * b);
        }
        else
        {
            // Gap: from zone lo2 at its end to zone hi2 at its start.
            const FLOAT w = EdgeWeight(keyLevel2, u, v);
            a = ((1.0F - w) * a) + (w * rData[lo1][hi2]);
            b = ((1.0F - w) * rData[hi1][lo2]) + (w * b);
        }
    }

    FLOAT result = a;
    if (lo1 != hi1)
    {
        const FLOAT u = level1.pZones[lo1].end;
        const FLOAT v = level1.pZones[hi1].start;
        if (u >= v)
        {
            result = b + ((a - b) * EdgeWeight(keyLevel1, v, u));
        }
        else
        {
            result = a + ((b - a) * EdgeWeight(keyLevel1, u, v));
        }
    }

    AEC_LOG_VERBOSE("keyLevel1 %f, keyLevel2 %f, outTriggerData %f", static_cast<DOUBLE>(keyLevel1),
                    static_cast<DOUBLE>(keyLevel2), static_cast<DOUBLE>(result));
    return result;
}

VOID CArbitrator::processGyroBasedExposureAdjust(ExposureSetType* pExpSet)
{
    if ((nullptr == pExpSet) || (nullptr == m_pTuning))
    {
        return;
    }
    const ParamExtGyroExpCtrl& rTuning = m_pTuning->extGyroExpCtrl;
    if (1 != rTuning.enableGyroExpCtrl)
    {
        AEC_LOG_VERBOSE("Gyro Exposure Control is not enabled.");
        return;
    }

    const INT32 filterLength = std::min(rTuning.movingAvgFilterLength, m_gyroInfo.bufferCounter);
    if (filterLength < 1)
    {
        // No sample to average: the gyro value is not a number and says nothing about shake.
        m_gyroInfo.gyroVal = std::numeric_limits<FLOAT>::quiet_NaN();
        AEC_LOG_WARN("Gyro AEC: no gyro samples (filter length %d, buffered %d), exposure kept",
                     rTuning.movingAvgFilterLength, m_gyroInfo.bufferCounter);
        return;
    }
    FLOAT sum = 0.0F;
    for (INT32 i = 0; i < filterLength; i++)
    {
        sum += m_gyroInfo.x[i] + m_gyroInfo.y[i] + m_gyroInfo.z[i];
    }
    m_gyroInfo.gyroVal = sum / static_cast<FLOAT>(filterLength);

    const FLOAT curTime = static_cast<FLOAT>(pExpSet->expTime);
    FLOAT       key2    = 0.0F;
    if (GyroExpCtrlKeyCurExpTimeType == rTuning.keyLevel2ZoneType)
    {
        key2 = curTime;
    }
    else if (GyroExpCtrlKeyLuxIndexType == rTuning.keyLevel2ZoneType)
    {
        key2 = m_luxIdx;
    }
    else
    {
        AEC_LOG_WARN("No Matched Level 2 Key Type");
        return;
    }

    FLOAT tunedTime = 0.0F;
    if (GyroExpCtrlTriggerDataTargetExpTimeType == rTuning.triggerDataType)
    {
        tunedTime = GyroExposureControlLUT(m_gyroInfo.gyroVal, key2, &rTuning);
    }
    else if (GyroExpCtrlTriggerDataAdjRatioType == rTuning.triggerDataType)
    {
        tunedTime = curTime * GyroExposureControlLUT(m_gyroInfo.gyroVal, key2, &rTuning);
    }
    else
    {
        AEC_LOG_WARN("No Matched Trigger Data Type");
        return;
    }
    // A tuned time that truncates to 0 (or is not a number) asks for nothing.
    if (!(tunedTime >= 1.0F))
    {
        return;
    }

    const ExposureLimitationType& rLimit  = m_session.arbExpLimit;
    const FLOAT                   timeMin = static_cast<FLOAT>(rLimit.expTime.min);
    const FLOAT                   timeMax = static_cast<FLOAT>(rLimit.expTime.max);
    const FLOAT                   product = curTime * pExpSet->gain;
    FLOAT                         newTime = tunedTime;
    FLOAT                         newGain = product / tunedTime;
    const BOOL inLimit = ((newGain >= rLimit.gain.min) && (newGain <= rLimit.gain.max) && (tunedTime >= timeMin) &&
                          (tunedTime <= timeMax))
                             ? TRUE
                             : FALSE;
    if (FALSE == inLimit)
    {
        // The longest time the minimum gain allows; a shorter tuned time than that goes to the shortest the
        // maximum gain allows.
        const FLOAT longest = std::min(product / std::max(rLimit.gain.min, 1.0F), timeMax);
        newTime             = (tunedTime >= longest) ? longest
                                                     : std::max(product / std::max(rLimit.gain.max, 1.0F), timeMin);
        if (!(newTime > 0.0F))
        {
            AEC_LOG_WARN("Gyro AEC: no exposure time left for exposure %f, exposure kept", static_cast<DOUBLE>(product));
            return;
        }
        newGain = product / newTime;
    }

    AEC_LOG_VERBOSE("Gyro AEC: gyro orig %f filtered %f, tuned [%llu, %f], curr [%llu, %f]",
                    static_cast<DOUBLE>(m_gyroInfo.x[0] + m_gyroInfo.y[0] + m_gyroInfo.z[0]),
                    static_cast<DOUBLE>(m_gyroInfo.gyroVal), static_cast<unsigned long long>(TruncateExpTime(tunedTime)),
                    static_cast<DOUBLE>(product / tunedTime), static_cast<unsigned long long>(pExpSet->expTime),
                    static_cast<DOUBLE>(pExpSet->gain));
    const FLOAT  inGain = pExpSet->gain;
    const UINT64 inTime = pExpSet->expTime;
    pExpSet->expTime    = TruncateExpTime(newTime);
    pExpSet->gain       = newGain;
    AEC_LOG_VERBOSE("Input: %f %llu, Output: %f %llu", static_cast<DOUBLE>(inGain),
                    static_cast<unsigned long long>(inTime), static_cast<DOUBLE>(pExpSet->gain),
                    static_cast<unsigned long long>(pExpSet->expTime));
}
