// Log lines of the parameter store, framed with thread name, logging object and its identifier.
#ifndef AECORE_TUNING_PARSER_PARAMETERLOGGING_H
#define AECORE_TUNING_PARSER_PARAMETERLOGGING_H

#include <cstdarg>

#include "aecore/aecore_types.h"

enum ParameterLogLevel : UINT32
{
    Debug   = 0,
    Warning = 1,
    Error   = 2,
};

// What a logging object tells the store's log lines: its name and which levels it wants.
class IParameterLoggingAPI
{
public:
    virtual ~IParameterLoggingAPI() = default;
    virtual const CHAR* GetLoggingIdentifier() const        = 0;
    virtual bool        LoggingEnabled(ParameterLogLevel level) const = 0;
};

class ParameterLogging
{
public:
    // Formats and emits one line; a logging object that disables the level suppresses it.
    static void Write(const IParameterLoggingAPI* pLog, ParameterLogLevel level, const CHAR* pFormat, ...)
        __attribute__((format(printf, 3, 4)));
    static void WriteV(const IParameterLoggingAPI* pLog, ParameterLogLevel level, const CHAR* pFormat, va_list args);
};

#endif // AECORE_TUNING_PARSER_PARAMETERLOGGING_H
