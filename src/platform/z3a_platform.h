// Millisecond clock and convergence KPI measurement helpers shared by the statistics algorithms.
#ifndef AECORE_PLATFORM_Z3A_PLATFORM_H
#define AECORE_PLATFORM_Z3A_PLATFORM_H

#include "aecore/aecore_types.h"

// Wall clock in milliseconds (gettimeofday), truncated to 32 bits.
UINT32 z3a_get_time_ms();

#endif // AECORE_PLATFORM_Z3A_PLATFORM_H
