// Convergence time measurement: from the first unsettled frame to the frame on which exposure settles.
#ifndef AEC_CORE_BASE_STATSCONVERGENCEKPI_H
#define AEC_CORE_BASE_STATSCONVERGENCEKPI_H

#include "aec/core/include/aeccorecommon.h"

// With isFrameStart TRUE: marks the start of a frame (and counts it while a measurement runs).
// With FALSE: closes the running measurement once and logs it under pName.
VOID StatsConvergenceKPIMeasure(BOOL isFrameStart, StatsConvergenceKPIType* pKPI, const CHAR* pName);

// Starts a new measurement at the start of the current frame.
VOID StatsRestartConvergenceKPI(StatsConvergenceKPIType* pKPI);

#endif // AEC_CORE_BASE_STATSCONVERGENCEKPI_H
