// Stream and still input records and the output record of the arbitration module.
#ifndef AEC_CORE_INCLUDE_AECARBITRATIONRECORDS_H
#define AEC_CORE_INCLUDE_AECARBITRATIONRECORDS_H

#include <type_traits>

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aeccoredata.h"
#include "aec/core/include/aecconvergencerecords.h"
#include "aecore/aecore.h"

// Converged indices of one preview frame; arrays of three are short, long, safe.
struct ArbitrationStreamInput
{
    FLOAT                    expIndices[AECAlgoExposureCount];
    FLOAT                    expIndicesDelta[AECAlgoExposureCount];
    AECAlgoOperationModeType refOpMode; // mode whose exposure table the indices refer to
    ExpTimePrioConvConfig    expTimePrioConfig;
    FLOAT                    luxIdx;
    SHDRExpConvConfig        sHDRexpConfig;
    FLOAT                    VisibleLightRatio;
    UINT32                   currZoomStep;
    LDMLensCap               lensCap;
    INT32                    irisIsAborted;
};

// Kind of still capture and the mode whose table the query's indices refer to.
struct AECSnapshotQueryParam
{
    AECAlgoSnapshotType      queryType;
    AECAlgoOperationModeType refOpMode;
};

// Indices of a still capture query.
struct ArbitrationStillInput
{
    FLOAT                 expIndices[AECAlgoExposureCount];
    AECSnapshotQueryParam snapshotQuery;
    FLOAT                 EV;
    FLOAT                 EVOffset;
    FLOAT                 TargetIndex;
    UINT32                currZoomStep;
};

// Exposure sets of one frame or query, indexed by AECAlgoExposureType.
struct ArbitrationOutput
{
    AECAlgoExposureData expSets[AECAlgoExposureCount];
    AECAlgoExposureData IdealexpSets[AECAlgoExposureCount];
    AECExifInfo         exif;
    FLOAT               FPS;
    AECMultiCamExpInfo  multiCamExpInfo;
    BOOL                isInsensorHDRSnapshot;
    FLOAT               compenADRCGain;
    FLOAT               realDRCGain;
    // In-sensor HDR mapping in the order short, safe, middle; only exposureTime, linearGain, fnumber and
    // sensitivity are used.
    AECAlgoExposureData prevMap3HDR[AECAlgoExposureCount];
    FLOAT               TarFnum[AECAlgoExposureCount];
    FLOAT               compensationDarkBoostGain;
    FLOAT               expRatio;
};

static_assert(std::is_trivial<ArbitrationStreamInput>::value, "zeroed by memset");
static_assert(std::is_trivial<ArbitrationStillInput>::value, "zeroed by memset");
static_assert(std::is_trivial<ArbitrationOutput>::value, "zeroed by memset");

#endif // AEC_CORE_INCLUDE_AECARBITRATIONRECORDS_H
