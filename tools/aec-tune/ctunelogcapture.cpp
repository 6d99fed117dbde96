// Collects the parameter store's log lines while a file is read, so the tool can report them as its own findings.
#include "ctunelogcapture.h"

namespace AecTune
{

namespace
{

// The sink is a plain function; it appends to the lines of the capture that is active.
std::vector<TuneLogLine>* s_pLines = nullptr;

} // namespace

CTuneLogCapture::CTuneLogCapture()
    : m_previous(Vela::Log::SetSink(&CTuneLogCapture::Sink))
{
    s_pLines = &m_lines;
}

CTuneLogCapture::~CTuneLogCapture()
{
    Vela::Log::SetSink(m_previous);
    s_pLines = nullptr;
}

const std::vector<TuneLogLine>& CTuneLogCapture::Lines() const
{
    return m_lines;
}

void CTuneLogCapture::Sink(Vela::Log::Level level, const CHAR* pLine)
{
    // Verbose store lines narrate the load; errors and warnings are findings.
    const bool finding = (level == Vela::Log::LevelError || level == Vela::Log::LevelWarning);
    if (s_pLines != nullptr && pLine != nullptr && finding)
    {
        s_pLines->push_back(TuneLogLine{ level == Vela::Log::LevelError, StripFrame(pLine) });
    }
}

std::string CTuneLogCapture::StripFrame(const std::string& line)
{
    // "... ParameterParser (Thread T): [0xPTR [(identifier)]] text"
    const std::string marker = "ParameterParser (Thread ";
    std::string       text   = line;
    size_t            at     = line.find(marker);
    if (at != std::string::npos)
    {
        size_t end = line.find("): ", at + marker.size());
        text       = (end == std::string::npos) ? line.substr(at) : line.substr(end + 3);
        if (text.compare(0, 2, "0x") == 0)
        {
            const size_t space = text.find(' ');
            text               = (space == std::string::npos) ? std::string() : text.substr(space + 1);
            if (!text.empty() && text[0] == '(')
            {
                const size_t close = text.find("): ");
                text               = (close == std::string::npos) ? text : text.substr(close + 3);
            }
        }
    }
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
    {
        text.pop_back();
    }
    return text;
}

} // namespace AecTune
