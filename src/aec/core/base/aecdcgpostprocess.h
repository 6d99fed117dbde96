// Dual conversion gain post-processing: splits the arbitrated exposures between the sensor's conversion gains.
#ifndef AEC_CORE_BASE_AECDCGPOSTPROCESS_H
#define AEC_CORE_BASE_AECDCGPOSTPROCESS_H

#include "aecore/aecore.h"

// Conversion gain ratios of a DCG sensor; the tuning carries them in the staggered-HDR metering record.
struct AECDCGRatios
{
    FLOAT CGRatio1;
    FLOAT CGRatio2; // 0 in the tuning means "not filled"; the Lofic mode then works with 1.0 and writes it back
};

// Rewrites the three exposure sets (short, long, safe) for the sensor mode shdrMode (an HDRSensorType value).
// Modes other than DCGplusVSMode and DCGplusLoficMode leave the sets untouched.
VOID AECApplyDCGPostProcessing(INT32 shdrMode, AECDCGRatios* pRatios, AECAlgoExposureData* pExpSets);

#endif // AEC_CORE_BASE_AECDCGPOSTPROCESS_H
