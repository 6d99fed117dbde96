// Names of modes, sub-modes and pipelines, and the text form of one mode selector ("Usecase.Video@STATS").
#include "ctunemodenames.h"

#include <strings.h>

#include <cctype>

#include "tuning/parser/modenames.h"

namespace AecTune
{

namespace
{

// Pipelines in the order of their values; a mode's Group holds pipeline + 1.
const char* const PipelineNames[] = { "BYR", "FRN", "PST", "SW_CONTROL", "STATS", "Preproc", "PSTPreproc", "Postproc",
                                      "TLN", "OFL", "MISC" };
constexpr UINT32 PipelineCount = sizeof(PipelineNames) / sizeof(PipelineNames[0]);

} // namespace

bool CTuneModeNames::ParseNumber(const std::string& text, UINT32 limit, UINT32* pValue)
{
    if (text.empty() || text.size() > 10)
    {
        return false;
    }
    UINT64 value = 0;
    for (char c : text)
    {
        if (!std::isdigit(static_cast<unsigned char>(c)))
        {
            return false;
        }
        value = value * 10 + static_cast<UINT64>(c - '0');
    }
    if (value > limit)
    {
        return false;
    }
    *pValue = static_cast<UINT32>(value);
    return true;
}

bool CTuneModeNames::ParseGroup(const std::string& text, UINT32* pGroup)
{
    for (UINT32 i = 0; i < PipelineCount; i++)
    {
        if (strcasecmp(PipelineNames[i], text.c_str()) == 0)
        {
            *pGroup = i + 1;
            return true;
        }
    }
    UINT32 pipeline = 0;
    if (ParseNumber(text, 0xFFFFFFFEu, &pipeline))
    {
        *pGroup = pipeline + 1;
        return true;
    }
    return false;
}

bool CTuneModeNames::Parse(const std::string& text, TuneModeSelector* pSelector, std::string* pError)
{
    std::string selector = text;
    pSelector->group     = 0;
    size_t at            = selector.find('@');
    if (at != std::string::npos)
    {
        if (!ParseGroup(selector.substr(at + 1), &pSelector->group))
        {
            *pError = "unknown pipeline '" + selector.substr(at + 1) + "' (a name such as STATS, or a number)";
            return false;
        }
        selector.resize(at);
    }
    const size_t      dot      = selector.find('.');
    const std::string modeText = selector.substr(0, dot);
    UINT32            mode     = ModeCount;
    for (UINT32 i = 0; i < ModeCount; i++)
    {
        mode = (strcasecmp(ModeNames::ModeName(i), modeText.c_str()) == 0) ? i : mode;
    }
    if (mode == ModeCount && !ParseNumber(modeText, ModeCount - 1, &mode))
    {
        *pError = "unknown mode '" + modeText + "' (Default, Sensor, Usecase, Feature1, Feature2, Scene, Effect or 0..6)";
        return false;
    }
    UINT32 subMode = 0;
    if (dot == std::string::npos)
    {
        if (mode != 0)
        {
            *pError = "mode '" + selector + "' needs a sub-mode, as in 'Usecase.Video'";
            return false;
        }
    }
    else
    {
        const std::string subText = selector.substr(dot + 1);
        bool              named   = false;
        for (UINT32 i = 0; i < ModeNames::SubModeCount(mode) && !named; i++)
        {
            named   = (strcasecmp(ModeNames::SubModeName(mode, i), subText.c_str()) == 0);
            subMode = named ? i : subMode;
        }
        if (!named && !ParseNumber(subText, 0xFFFF, &subMode))
        {
            *pError = "unknown sub-mode '" + subText + "' of mode " + ModeNames::ModeName(mode);
            return false;
        }
    }
    pSelector->mode    = static_cast<UINT16>(mode);
    pSelector->subMode = static_cast<UINT16>(subMode);
    return true;
}

std::string CTuneModeNames::Format(const TuneModeSelector* pSelector)
{
    const CHAR* pMode = ModeNames::ModeName(pSelector->mode);
    std::string text  = (pMode != nullptr) ? pMode : std::to_string(pSelector->mode);
    if (pSelector->mode != 0 || pSelector->subMode != 0)
    {
        const CHAR* pSub = ModeNames::SubModeName(pSelector->mode, pSelector->subMode);
        text += "." + ((pSub != nullptr) ? std::string(pSub) : std::to_string(pSelector->subMode));
    }
    if (pSelector->group != 0)
    {
        text += "@" + FormatGroup(pSelector->group);
    }
    return text;
}

std::string CTuneModeNames::FormatGroup(UINT32 group)
{
    const UINT32 pipeline = group - 1;
    return (pipeline < PipelineCount) ? std::string(PipelineNames[pipeline]) : std::to_string(pipeline);
}

} // namespace AecTune
