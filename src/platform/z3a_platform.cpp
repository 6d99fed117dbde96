// Millisecond clock shared by the statistics algorithms.
#include "platform/z3a_platform.h"

#include <sys/time.h>

UINT32 z3a_get_time_ms()
{
    struct timeval now = {};
    gettimeofday(&now, nullptr);
    return static_cast<UINT32>((static_cast<UINT64>(now.tv_sec) * 1000U) + (static_cast<UINT64>(now.tv_usec) / 1000U));
}
