// Core-side logging through the host's gStatsLogger sink.
#ifndef AECORE_PLATFORM_STATSLOGGER_H
#define AECORE_PLATFORM_STATSLOGGER_H

#include "aecore/aecore_types.h"

extern "C" AECORE_API StatsLoggingFunction gStatsLogger;

// Calls gStatsLogger when a host supplied one; a null sink drops the message.
#define AEC_LOG(level, fmt, ...)                                                                       \
    do                                                                                                 \
    {                                                                                                  \
        StatsLoggingFunction pLogger_ = gStatsLogger;                                                  \
        if (nullptr != pLogger_)                                                                       \
        {                                                                                              \
            pLogger_(__FILE__, __LINE__, __func__, StatsLogGroupAEC, (level), fmt, ##__VA_ARGS__);     \
        }                                                                                              \
    } while (0)

#define AEC_LOG_ERROR(fmt, ...)   AEC_LOG(StatsLogError, fmt, ##__VA_ARGS__)
#define AEC_LOG_WARN(fmt, ...)    AEC_LOG(StatsLogWarning, fmt, ##__VA_ARGS__)
#define AEC_LOG_INFO(fmt, ...)    AEC_LOG(StatsLogInfo, fmt, ##__VA_ARGS__)
#define AEC_LOG_VERBOSE(fmt, ...) AEC_LOG(StatsLogVerbose, fmt, ##__VA_ARGS__)

#endif // AECORE_PLATFORM_STATSLOGGER_H
