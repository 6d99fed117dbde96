// Dual conversion gain post-processing: splits the arbitrated exposures between the sensor's conversion gains.
#include "aec/core/base/aecdcgpostprocess.h"

#include "platform/statslogger.h"

namespace
{

// Integer quotient of two exposure times; a zero divisor gives 0 instead of a trap.
UINT64 ExposureTimeQuotient(UINT64 dividend, UINT64 divisor)
{
    return (0 != divisor) ? (dividend / divisor) : 0;
}

// Exposure time scaled by a gain ratio, truncated as the sensor takes whole nanoseconds.
UINT64 ScaleExposureTime(UINT64 exposureTime, FLOAT ratio)
{
    return static_cast<UINT64>(static_cast<FLOAT>(exposureTime) * ratio);
}

// The safe exposure repeats the long one at the low conversion gain.
VOID DeriveSafeFromLong(FLOAT cgRatio1, AECAlgoExposureData* pExpSets)
{
    AECAlgoExposureData& rLong = pExpSets[AECAlgoExposureLong];
    AECAlgoExposureData& rSafe = pExpSets[AECAlgoExposureSafe];
    rSafe.linearGain   = rLong.linearGain;
    rSafe.exposureTime = rLong.exposureTime;
    rSafe.sensitivity  = rLong.sensitivity / cgRatio1;
}

// DCG with a very short exposure: the long exposure moves the first cgRatio1 of its gain into the conversion gain.
VOID ApplyVSMode(FLOAT cgRatio1, AECAlgoExposureData* pExpSets)
{
    if (cgRatio1 < 1.0F)
    {
        return;
    }
    AECAlgoExposureData& rLong = pExpSets[AECAlgoExposureLong];
    if (rLong.linearGain < cgRatio1)
    {
        // Not enough analog gain to give up: shorten the time instead.
        rLong.exposureTime = ScaleExposureTime(rLong.exposureTime, rLong.linearGain / cgRatio1);
        rLong.linearGain   = 1.0F;
    }
    else
    {
        rLong.linearGain /= cgRatio1;
    }
    DeriveSafeFromLong(cgRatio1, pExpSets);
}

// DCG with a lateral overflow capacitor: all three exposures share the short exposure's time.
VOID ApplyLoficMode(AECDCGRatios* pRatios, AECAlgoExposureData* pExpSets)
{
    AECAlgoExposureData& rShort = pExpSets[AECAlgoExposureShort];
    AECAlgoExposureData& rLong  = pExpSets[AECAlgoExposureLong];
    AECAlgoExposureData& rSafe  = pExpSets[AECAlgoExposureSafe];

    UINT64 timeRatio = ExposureTimeQuotient(rLong.exposureTime, rShort.exposureTime);
    rLong.linearGain *= static_cast<FLOAT>(timeRatio);
    rLong.exposureTime = rShort.exposureTime;
    rSafe.exposureTime = rShort.exposureTime;

    FLOAT sensRatio = rLong.sensitivity / rShort.sensitivity;
    if (0.0F == pRatios->CGRatio2)
    {
        AEC_LOG_WARN("Need to fill the correct CGRatio2 in reserve0");
        pRatios->CGRatio2 = 1.0F;
    }
    FLOAT cgTotal = pRatios->CGRatio1 * pRatios->CGRatio2;
    if (sensRatio < cgTotal)
    {
        return;
    }
    if (cgTotal >= 1.0F)
    {
        if (rLong.linearGain < cgTotal)
        {
            UINT64 time = ScaleExposureTime(rLong.exposureTime, rLong.linearGain / cgTotal);
            if (0 == time)
            {
                AEC_LOG_WARN("DCG Lofic: shortened exposure time is 0; short gain set to 0");
            }
            rShort.linearGain   = static_cast<FLOAT>(ExposureTimeQuotient(rShort.exposureTime, time)) * rShort.linearGain;
            rShort.exposureTime = time;
            rLong.exposureTime  = time;
            rLong.linearGain    = 1.0F;
        }
        else
        {
            rLong.linearGain /= cgTotal;
        }
    }
    if (pRatios->CGRatio1 >= 1.0F)
    {
        DeriveSafeFromLong(pRatios->CGRatio1, pExpSets);
    }
}

} // namespace

VOID AECApplyDCGPostProcessing(INT32 shdrMode, AECDCGRatios* pRatios, AECAlgoExposureData* pExpSets)
{
    switch (shdrMode)
    {
        case DCGplusVSMode:
            ApplyVSMode(pRatios->CGRatio1, pExpSets);
            break;
        case DCGplusLoficMode:
            ApplyLoficMode(pRatios, pExpSets);
            break;
        default:
            break;
    }
}
