// Test helper that captures the library's log lines for the duration of a test.
#include "unit/tuningparser/clogcapture.h"

#include <mutex>

namespace
{
std::mutex               s_mutex;
std::vector<std::string> s_lines;
} // namespace

CLogCapture::CLogCapture()
{
    Clear();
    m_previous = Vela::Log::SetSink(&CLogCapture::Capture);
}

CLogCapture::~CLogCapture()
{
    Vela::Log::SetSink(m_previous);
}

void CLogCapture::Capture(Vela::Log::Level, const CHAR* pLine)
{
    std::lock_guard<std::mutex> lock(s_mutex);
    s_lines.emplace_back(pLine);
}

size_t CLogCapture::Count(const std::string& text) const
{
    std::lock_guard<std::mutex> lock(s_mutex);
    size_t                      count = 0;
    for (const std::string& line : s_lines)
    {
        count += (std::string::npos != line.find(text)) ? 1 : 0;
    }
    return count;
}

std::vector<std::string> CLogCapture::Lines() const
{
    std::lock_guard<std::mutex> lock(s_mutex);
    return s_lines;
}

void CLogCapture::Clear()
{
    std::lock_guard<std::mutex> lock(s_mutex);
    s_lines.clear();
}
