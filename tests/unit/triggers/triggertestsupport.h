// Test support of the tuning zone lookup tests: capture of the core's log lines.
#ifndef TESTS_UNIT_TRIGGERS_TRIGGERTESTSUPPORT_H
#define TESTS_UNIT_TRIGGERS_TRIGGERTESTSUPPORT_H

#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/statslogger.h"

struct CapturedLine
{
    StatsLog    level;
    std::string text;
};

// Collects the core's log lines while installed.
class TriggerLogCapture
{
public:
    TriggerLogCapture()
    {
        Lines().clear();
        m_pPrevious  = gStatsLogger;
        gStatsLogger = &TriggerLogCapture::Sink;
    }
    ~TriggerLogCapture() { gStatsLogger = m_pPrevious; }

    TriggerLogCapture(const TriggerLogCapture&)            = delete;
    TriggerLogCapture& operator=(const TriggerLogCapture&) = delete;

    static std::vector<CapturedLine>& Lines()
    {
        static std::vector<CapturedLine> s_lines;
        return s_lines;
    }

    static size_t Count(StatsLog level, const std::string& text)
    {
        size_t count = 0;
        for (const CapturedLine& rLine : Lines())
        {
            count += ((rLine.level == level) && (rLine.text == text)) ? 1 : 0;
        }
        return count;
    }

private:
    static VOID Sink(const CHAR* /*pFileName*/, UINT32 /*lineNum*/, const CHAR* /*pFunctionName*/,
                     StatsLogGroup /*group*/, StatsLog level, const CHAR* pFormat, ...)
    {
        char    line[512];
        va_list args;
        va_start(args, pFormat);
        std::vsnprintf(line, sizeof(line), pFormat, args);
        va_end(args);
        Lines().push_back(CapturedLine{level, line});
    }

    StatsLoggingFunction m_pPrevious;
};

// Error line of a zone search that found no zone.
inline const char* const NoZoneMessage = "did not find an appropriate zone!";

#endif // TESTS_UNIT_TRIGGERS_TRIGGERTESTSUPPORT_H
