// Quality metrics of a closed-loop run: settling, overshoot, target crossings, luma error, anti-flicker, lock, manual.
#ifndef AECORE_TOOLS_AECSIM_SIMMETRICS_H
#define AECORE_TOOLS_AECSIM_SIMMETRICS_H

#include <cstdint>
#include <string>
#include <vector>

#include "csimscenario.h"
#include "simtypes.h"

// The host settings in force when the library processed a frame, and what it reported beyond SimFrameRecord.
struct SimFrameContext
{
    uint32_t        flickerHz      = 0;     // 50 or 60 while that anti-banding mode is set, else 0
    bool            locked         = false;
    float           evCompensation = 0.0F;  // stops
    AECAlgoModeType manualMode     = AECAlgoModeAuto;
    uint64_t        manualTime     = 0;     // ns
    uint32_t        manualISO      = 0;
    float           manualGain     = 0.0F;
    uint32_t        reportedISO    = 0;     // the ISO the library reported for its choice on this frame
};

// How the loop answered one event (events of one frame are measured together).
struct SimEventMetrics
{
    uint32_t    frame       = 0;
    std::string label;
    bool        converging  = false; // the library is expected to move to a (new) target after it
    bool        start       = false; // the run's first frames, before any event
    int32_t     settleFrames = -1;   // frames from the event until the luma stays near the target; -1 never
    double      overshootEV = 0.0;   // furthest the luma went past the target it ends at, in stops
    uint32_t    crossings   = 0;     // times the luma crossed the target it ends at
};

struct SimMetrics
{
    std::vector<SimEventMetrics> events;
    double   finalLumaError = 0.0;      // |luma / target - 1| of the last frame; 0 without a target
    bool     hasTarget      = false;
    uint32_t flickerChecked = 0;        // applied times under a 50/60 Hz mode that are at least one period
    uint32_t flickerViolations = 0;     // of these, the ones off a whole multiple by more than 1 us
    uint32_t lockedFrames    = 0;
    uint32_t lockViolations  = 0;       // locked frames whose chosen exposure differs from the first locked one
    bool     hasEVCompensation = false;
    double   evCompensationError = 0.0; // largest |settled luma ratio / 2^EV - 1|
    uint32_t manualFrames    = 0;
    uint32_t manualViolations = 0;
    uint64_t minTime = 0;               // applied exposure times and gains over the run
    uint64_t maxTime = 0;
    float    minGain = 0.0F;
    float    maxGain = 0.0F;
};

// Everything the metrics are computed from; contexts and records run in parallel.
struct SimRunData
{
    std::vector<SimFrameRecord>  records;
    std::vector<SimFrameContext> contexts;
    std::vector<SimEvent>        events;
    uint32_t                     pipelineDelay = 2;
};

// log2(luma / target): positive when too bright; 0 when no target is known.
double LumaErrorEV(const SimFrameRecord& record);

// Whether the library is expected to converge to a target after this event, given the settings then in force.
bool IsConvergingEvent(const SimEvent& event, const SimFrameContext& context);

// Settle frames (against each frame's target), overshoot and crossings (against the target of the last frames) of
// the records [begin, end) after an event at begin.
SimEventMetrics MeasureResponse(const std::vector<SimFrameRecord>& records, size_t begin, size_t end,
                                double settleToleranceEV, double crossingBandEV);

// Applied exposure times under a 50/60 Hz mode (the mode in force when they were chosen, pipelineDelay earlier):
// those of at least one flicker period must be whole multiples of it within 1 us.
void CheckAntiFlicker(const SimRunData& run, SimMetrics* pMetrics);
// While locked, the chosen exposure stays what it was on the first locked frame.
void CheckLock(const SimRunData& run, SimMetrics* pMetrics);
// In manual modes the chosen time, gain or reported ISO is the one asked for.
void CheckManual(const SimRunData& run, const SimExpectations& expect, SimMetrics* pMetrics);
// The settled luma after each compensation change against the settled luma at EV 0, relative to 2^EV.
void CheckEVCompensation(const SimRunData& run, SimMetrics* pMetrics);

SimMetrics ComputeMetrics(const SimRunData& run, const SimExpectations& expect);

// The thresholds the metrics miss, one readable line each; empty when all are met.
std::vector<std::string> CheckExpectations(const SimMetrics& metrics, const SimExpectations& expect);

#endif // AECORE_TOOLS_AECSIM_SIMMETRICS_H
