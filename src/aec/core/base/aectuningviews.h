// Tuning views of the modules as far as the frame pipeline reads them; the tuning data adapter replaces this.
#ifndef AEC_CORE_BASE_AECTUNINGVIEWS_H
#define AEC_CORE_BASE_AECTUNINGVIEWS_H

#include "aec/core/include/iaeccontext.h"
#include "aecore/aecore.h"

// Later stage: the generated tuning records and the full views come with the tuning data adapter and the
// parameter store. Until then these declare only the fields that CAECCore itself reads.

namespace aecShdr
{
// Staggered-HDR metering tuning.
struct ShdrMeteringType
{
    INT32 enableShdr;      // an HDRSensorType value
    FLOAT ExpRatioCapHigh;
    FLOAT ExpRatioCapLow;  // a DCG sensor's tuning reuses it as CGRatio1
    FLOAT LEFMaxGain;
    FLOAT reserved[4];     // a DCG sensor's tuning reuses reserved[0] as CGRatio2
};
} // namespace aecShdr

// The metering module's view of the tuning.
struct MeteringTuningDataType
{
    const aecShdr::ShdrMeteringType* pShdr;
};

namespace aecSnapshotCtrl
{
// Snapshot control tuning of arbitration.
struct SnapshotCtrlArbitrationType
{
    FLOAT bracketingAdjForEVNeg2; // share of an AE bracketing step kept at -2 EV and beyond
    FLOAT bracketingAdjForEVPos2; // share of an AE bracketing step kept at +2 EV and beyond
};
} // namespace aecSnapshotCtrl

// The arbitration module's view of the tuning.
struct ArbitrationTuningDataType
{
    const aecSnapshotCtrl::SnapshotCtrlArbitrationType* pSnapshotCtrl;
};

// The per-module tuning views the state store hands out; null until tuning is set.
struct AECCoreTuningViews
{
    const IRTuningDataType*          pIR;
    const MeteringTuningDataType*    pMtr;
    const ConvergenceTuningDataType* pConv;
    const ArbitrationTuningDataType* pArb;
    const ExtensionTuningDataType*   pExt;
};

#endif // AEC_CORE_BASE_AECTUNINGVIEWS_H
