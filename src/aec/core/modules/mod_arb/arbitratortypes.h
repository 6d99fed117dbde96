// Records one arbitrator keeps between frames: sensor limits, manual settings, session, iris decay and gyro buffer.
#ifndef AEC_CORE_MODULES_MOD_ARB_ARBITRATORTYPES_H
#define AEC_CORE_MODULES_MOD_ARB_ARBITRATORTYPES_H

#include "aec/core/include/aeccoredata.h"
#include "aecore/aecore.h"

// Which of the module's two arbitrators a rule is asked for.
enum ArbInstance
{
    Streaming = 0,
    Still     = 1,
};

// Whether an adjustment works for a single exposure or for one exposure of an HDR frame; it selects the tuning
// record (core or staggered-HDR) the iris decay reads.
enum AECExposureMode
{
    Linear = 0,
    HDR    = 1,
};

// The sensor mode's ranges, supplied by the module and borrowed by the arbitrator.
struct ArbSensorLimits
{
    MinMaxRangeFloat  gain;
    MinMaxRangeUINT64 expTime;
    MinMaxRangeUINT64 SEFexpTime;
    MinMaxRangeUINT64 MEFexpTime;
    MinMaxRangeUINT64 LEFexpTime;
};

// The application's manual request in the arbitrator's terms (gain instead of ISO).
struct ArbManualSetting
{
    AECAlgoModeType manualMode;
    FLOAT           manualGain;
    UINT64          manualExpTime;         // ns
    UINT64          manualMaxExposureTime; // ns, longest time of the priority modes; 0 leaves the table's
    FLOAT           manualFnumber;
};

// What bounds exposure in this session; arbExpLimit is rebuilt from scratch on every change.
struct ArbitrationSessionInfoType
{
    FLOAT                  minFPS;
    ArbManualSetting       manualSettings;
    FLOAT                  EV;
    StatisticsAntibanding  flickerMode;
    UINT64                 flickerHalfPeriod; // ns
    FLOAT                  thresAntiBandingMinExpTimePct;
    ExposureLimitationType arbExpLimit;
};

enum ToleranceState
{
    BeforeDecay = 0, // the iris may move
    AfterDecay  = 1, // the iris rests until exposure has travelled the tolerance
};

// The iris motor's glide from preFn to tarFn while the sensor compensates.
struct MotorDecayType
{
    BOOL           decay_state;
    ToleranceState tolerance_state;
    FLOAT          sensor_comp;
    FLOAT          preFn;
    FLOAT          tarFn;
    FLOAT          tarGain;
    FLOAT          Fn_magnification;
    FLOAT          exp_idx_base;
};

constexpr UINT32 GyroBufferSize = 300;

// Magnitudes of the angular velocity, newest sample first.
struct GyroInfoType
{
    FLOAT x[GyroBufferSize];
    FLOAT y[GyroBufferSize];
    FLOAT z[GyroBufferSize];
    FLOAT timeDuration;
    FLOAT gyroVal;
    INT32 bufferCounter;
};

#endif // AEC_CORE_MODULES_MOD_ARB_ARBITRATORTYPES_H
