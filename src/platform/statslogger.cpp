// The core's log sink, exported so that the host can see and replace it.
#include "platform/statslogger.h"

extern "C"
{
AECORE_API StatsLoggingFunction gStatsLogger = nullptr;
}
