// Test helper: captures the wrapper's log lines so that tests can assert the exact message texts.
#ifndef TESTS_UNIT_WRAPPER_WRAPPERLOGCAPTURE_H
#define TESTS_UNIT_WRAPPER_WRAPPERLOGCAPTURE_H

#include <string>
#include <vector>

#include "platform/velalog.h"

class WrapperLogCapture
{
public:
    WrapperLogCapture()
    {
        Lines().clear();
        Levels().clear();
        m_previous = Vela::Log::SetSink(&Capture);
    }
    ~WrapperLogCapture() { Vela::Log::SetSink(m_previous); }

    WrapperLogCapture(const WrapperLogCapture&)            = delete;
    WrapperLogCapture& operator=(const WrapperLogCapture&) = delete;

    // Number of captured lines whose message, after the prefix, ends with text.
    size_t Count(const std::string& text) const
    {
        size_t count = 0;
        for (const std::string& line : Lines())
        {
            if ((line.size() >= text.size()) && (0 == line.compare(line.size() - text.size(), text.size(), text)))
            {
                count++;
            }
        }
        return count;
    }

    bool Has(const std::string& text) const { return 0 != Count(text); }

    // Level of the first line that ends with text; LevelVerbose when there is none.
    Vela::Log::Level LevelOf(const std::string& text) const
    {
        for (size_t index = 0; index < Lines().size(); ++index)
        {
            const std::string& line = Lines()[index];
            if ((line.size() >= text.size()) && (0 == line.compare(line.size() - text.size(), text.size(), text)))
            {
                return Levels()[index];
            }
        }
        return Vela::Log::LevelVerbose;
    }

    const std::vector<std::string>& All() const { return Lines(); }

private:
    static std::vector<std::string>& Lines()
    {
        static std::vector<std::string> lines;
        return lines;
    }
    static std::vector<Vela::Log::Level>& Levels()
    {
        static std::vector<Vela::Log::Level> levels;
        return levels;
    }
    static void Capture(Vela::Log::Level level, const CHAR* pLine)
    {
        Lines().emplace_back(pLine);
        Levels().push_back(level);
    }

    Vela::Log::LogSink m_previous = nullptr;
};

#endif // TESTS_UNIT_WRAPPER_WRAPPERLOGCAPTURE_H
