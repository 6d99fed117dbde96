// Log lines of the parameter store, framed with thread name, logging object and its identifier.
#include "tuning/parser/parameterlogging.h"

#include <pthread.h>

#include <cstdio>

#include "platform/osutils.h"
#include "platform/velalog.h"

void ParameterLogging::Write(const IParameterLoggingAPI* pLog, ParameterLogLevel level, const CHAR* pFormat, ...)
{
    va_list args;
    va_start(args, pFormat);
    WriteV(pLog, level, pFormat, args);
    va_end(args);
}

void ParameterLogging::WriteV(const IParameterLoggingAPI* pLog, ParameterLogLevel level, const CHAR* pFormat,
                              va_list args)
{
    if ((nullptr != pLog) && !pLog->LoggingEnabled(level))
    {
        return;
    }

    CHAR text[4096];
    Vela::OsUtils::VSNPrintF(text, sizeof(text), pFormat, args);

    CHAR threadName[32] = "";
    if (0 != pthread_getname_np(pthread_self(), threadName, sizeof(threadName)))
    {
        threadName[0] = '\0';
    }

    const CHAR*          pWord      = "[VERBOSE]";
    Vela::Log::Level     velaLevel  = Vela::Log::LevelVerbose;
    if (Error == level)
    {
        pWord     = "[ERROR]";
        velaLevel = Vela::Log::LevelError;
    }
    else if (Warning == level)
    {
        pWord     = "[WARNING]";
        velaLevel = Vela::Log::LevelWarning;
    }

    CHAR        line[4608];
    const CHAR* pIdentifier = (nullptr != pLog) ? pLog->GetLoggingIdentifier() : nullptr;
    if (nullptr == pLog)
    {
        Vela::OsUtils::SNPrintF(line, sizeof(line), "%s ParameterParser (Thread %s): %s", pWord, threadName, text);
    }
    else if ((nullptr != pIdentifier) && ('\0' != pIdentifier[0]))
    {
        Vela::OsUtils::SNPrintF(line, sizeof(line), "%s ParameterParser (Thread %s): %p (%s): %s", pWord,
                                threadName, static_cast<const void*>(pLog), pIdentifier, text);
    }
    else
    {
        Vela::OsUtils::SNPrintF(line, sizeof(line), "%s ParameterParser (Thread %s): %p %s", pWord, threadName,
                                static_cast<const void*>(pLog), text);
    }
    VELA_LOG(Vela::Log::GroupStatsAEC, velaLevel, "%s", line);
}
