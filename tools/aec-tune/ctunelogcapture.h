// Collects the parameter store's log lines while a file is read, so the tool can report them as its own findings.
#ifndef AECTUNE_CTUNELOGCAPTURE_H
#define AECTUNE_CTUNELOGCAPTURE_H

#include <string>
#include <vector>

#include "platform/velalog.h"

namespace AecTune
{

// One line of the store: its level and its text without the frame.
struct TuneLogLine
{
    bool        isError;
    std::string text;
};

class CTuneLogCapture
{
public:
    // Redirects the log sink to this capture until destruction (one capture at a time).
    CTuneLogCapture();
    ~CTuneLogCapture();
    CTuneLogCapture(const CTuneLogCapture&) = delete;
    CTuneLogCapture& operator=(const CTuneLogCapture&) = delete;

    const std::vector<TuneLogLine>& Lines() const;

    // The text of a store line without level word, thread, logging object and identifier.
    static std::string StripFrame(const std::string& line);

private:
    static void Sink(Vela::Log::Level level, const CHAR* pLine);

    Vela::Log::LogSink       m_previous;
    std::vector<TuneLogLine> m_lines;
};

} // namespace AecTune

#endif // AECTUNE_CTUNELOGCAPTURE_H
