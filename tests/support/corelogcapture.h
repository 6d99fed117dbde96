// Collects the core's log lines (gStatsLogger) while an instance lives, for tests that assert on log texts.
#ifndef TESTS_SUPPORT_CORELOGCAPTURE_H
#define TESTS_SUPPORT_CORELOGCAPTURE_H

#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/statslogger.h"

// Collects the formatted lines of gStatsLogger while installed.
class CoreLogCapture
{
public:
    CoreLogCapture()
    {
        Lines().clear();
        m_pPrevious = gStatsLogger;
        gStatsLogger = &CoreLogCapture::Sink;
    }
    ~CoreLogCapture() { gStatsLogger = m_pPrevious; }

    CoreLogCapture(const CoreLogCapture&)            = delete;
    CoreLogCapture& operator=(const CoreLogCapture&) = delete;

    static std::vector<std::string>& Lines()
    {
        static std::vector<std::string> s_lines;
        return s_lines;
    }

    // Number of captured lines equal to text.
    static size_t Count(const std::string& text)
    {
        size_t count = 0;
        for (const std::string& rLine : Lines())
        {
            count += (rLine == text) ? 1 : 0;
        }
        return count;
    }

    // Number of captured lines that contain text.
    static size_t CountContaining(const std::string& text)
    {
        size_t count = 0;
        for (const std::string& rLine : Lines())
        {
            count += (std::string::npos != rLine.find(text)) ? 1 : 0;
        }
        return count;
    }

    static void Clear() { Lines().clear(); }

private:
    static VOID Sink(const CHAR* /*pFileName*/, UINT32 /*lineNum*/, const CHAR* /*pFunctionName*/,
                     StatsLogGroup /*group*/, StatsLog /*level*/, const CHAR* pFormat, ...)
    {
        char    line[2048];
        va_list args;
        va_start(args, pFormat);
        std::vsnprintf(line, sizeof(line), pFormat, args);
        va_end(args);
        Lines().emplace_back(line);
    }

    StatsLoggingFunction m_pPrevious;
};

#endif // TESTS_SUPPORT_CORELOGCAPTURE_H
