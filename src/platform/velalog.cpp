// Wrapper-side log system: level word, process id, thread id, tag, file, line and function prefix.
#include "platform/velalog.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "platform/osutils.h"

namespace Vela
{

UINT32 g_logInfo        = Log::LevelError | Log::LevelWarning;
BOOL   g_logInfoUpdated = FALSE;
UINT32 g_traceInfo      = 0;

namespace Log
{

namespace
{

void WriteToStderr(Level, const CHAR* pLine)
{
    std::fprintf(stderr, "%s\n", pLine);
}

std::atomic<LogSink> s_sink{&WriteToStderr};

const CHAR* LevelWord(Level level)
{
    switch (level)
    {
        case LevelError:   return "[ERROR]";
        case LevelWarning: return "[ WARN]";
        case LevelInfo:    return "[ INFO]";
        default:           return "[VERB ]";
    }
}

const CHAR* GroupTag(UINT32 group)
{
    return (0 != (group & GroupDebugData)) ? "[DD_FWK ]" : "[STATS_AEC]";
}

} // namespace

const CHAR* GetFileName(const CHAR* pFilePath)
{
    const CHAR* pSlash = std::strrchr(pFilePath, '/');
    return (nullptr != pSlash) ? (pSlash + 1) : pFilePath;
}

void LogSystem(UINT32 group, Level level, const CHAR* pFileName, INT32 line, const CHAR* pFunction,
               const CHAR* pFormat, ...)
{
    // A sink replaced by a test receives every level, so that tests can assert verbose messages.
    LogSink sink = s_sink.load(std::memory_order_acquire);
    if ((&WriteToStderr == sink) && (0 == (g_logInfo & level)))
    {
        return;
    }

    CHAR  buffer[1024];
    INT32 prefix = OsUtils::SNPrintF(buffer, sizeof(buffer), "%s%d %d %s %s:%d %s() ", LevelWord(level),
                                     OsUtils::GetProcessID(), OsUtils::GetThreadID(), GroupTag(group), pFileName,
                                     line, pFunction);
    if ((prefix > 0) && (static_cast<SIZE_T>(prefix) < sizeof(buffer)))
    {
        va_list args;
        va_start(args, pFormat);
        OsUtils::VSNPrintF(buffer + prefix, sizeof(buffer) - prefix, pFormat, args);
        va_end(args);
    }
    sink(level, buffer);
}

LogSink SetSink(LogSink sink)
{
    return s_sink.exchange((nullptr != sink) ? sink : &WriteToStderr, std::memory_order_acq_rel);
}

} // namespace Log
} // namespace Vela
