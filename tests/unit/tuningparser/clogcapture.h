// Test helper that captures the library's log lines for the duration of a test.
#ifndef AECORE_TESTS_UNIT_TUNINGPARSER_CLOGCAPTURE_H
#define AECORE_TESTS_UNIT_TUNINGPARSER_CLOGCAPTURE_H

#include <string>
#include <vector>

#include "platform/velalog.h"

class CLogCapture
{
public:
    CLogCapture();
    ~CLogCapture();
    CLogCapture(const CLogCapture&) = delete;
    CLogCapture& operator=(const CLogCapture&) = delete;

    // Number of captured lines that contain text.
    size_t                   Count(const std::string& text) const;
    bool                     Contains(const std::string& text) const { return Count(text) > 0; }
    std::vector<std::string> Lines() const;
    void                     Clear();

private:
    static void Capture(Vela::Log::Level level, const CHAR* pLine);

    Vela::Log::LogSink m_previous;
};

#endif // AECORE_TESTS_UNIT_TUNINGPARSER_CLOGCAPTURE_H
