// Wrapper-side log system: level word, process id, thread id, tag, file, line and function prefix.
#ifndef AECORE_PLATFORM_VELALOG_H
#define AECORE_PLATFORM_VELALOG_H

#include "aecore/aecore_types.h"

namespace Vela
{
namespace Log
{

// Group bits; each group prints its own tag.
static const UINT32 GroupStatsAEC  = 0x2000000;   // "[STATS_AEC]"
static const UINT32 GroupDebugData = 0x80000000;  // "[DD_FWK ]"

enum Level : UINT32
{
    LevelError   = 0x1,
    LevelWarning = 0x2,
    LevelInfo    = 0x4,
    LevelVerbose = 0x8,
};

// Receives every formatted line (prefix included, no trailing newline) whose level is enabled.
typedef void (*LogSink)(Level level, const CHAR* pLine);

// Last path component of a source file name.
const CHAR* GetFileName(const CHAR* pFilePath);

void LogSystem(UINT32 group, Level level, const CHAR* pFileName, INT32 line, const CHAR* pFunction,
               const CHAR* pFormat, ...) __attribute__((format(printf, 6, 7)));

// Replaces the sink (null restores the default, which writes to stderr) and returns the previous one.
LogSink SetSink(LogSink sink);

} // namespace Log

// Enabled level bits; the default enables errors and warnings.
extern UINT32 g_logInfo;
// Raised whenever g_logInfo changes, so that cached copies can be refreshed.
extern BOOL g_logInfoUpdated;
// Groups whose messages are also emitted as trace marks.
extern UINT32 g_traceInfo;

} // namespace Vela

#define VELA_LOG(group, level, fmt, ...)                                                               \
    ::Vela::Log::LogSystem((group), (level), ::Vela::Log::GetFileName(__FILE__), __LINE__, __func__,   \
                           fmt, ##__VA_ARGS__)

#define AEC_VLOG_ERROR(fmt, ...)   VELA_LOG(::Vela::Log::GroupStatsAEC, ::Vela::Log::LevelError, fmt, ##__VA_ARGS__)
#define AEC_VLOG_WARN(fmt, ...)    VELA_LOG(::Vela::Log::GroupStatsAEC, ::Vela::Log::LevelWarning, fmt, ##__VA_ARGS__)
#define AEC_VLOG_INFO(fmt, ...)    VELA_LOG(::Vela::Log::GroupStatsAEC, ::Vela::Log::LevelInfo, fmt, ##__VA_ARGS__)
#define AEC_VLOG_VERBOSE(fmt, ...) VELA_LOG(::Vela::Log::GroupStatsAEC, ::Vela::Log::LevelVerbose, fmt, ##__VA_ARGS__)

#endif // AECORE_PLATFORM_VELALOG_H
