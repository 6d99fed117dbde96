// Names of modes, sub-modes and pipelines, and the text form of one mode selector ("Usecase.Video@STATS").
#ifndef AECTUNE_CTUNEMODENAMES_H
#define AECTUNE_CTUNEMODENAMES_H

#include <string>

#include "aecore/aecore_types.h"

namespace AecTune
{

// One step of a mode path: mode, sub-mode and group (pipeline + 1, 0 for none).
struct TuneModeSelector
{
    UINT16 mode;
    UINT16 subMode;
    UINT32 group;
};

class CTuneModeNames
{
public:
    // Number of mode values; Default is 0 and only the root may be Default.
    static constexpr UINT16 ModeCount = 7;

    // Parses "Mode.SubMode" or "Mode.SubMode@Pipeline" in names or decimal numbers (case-insensitive names);
    // "Default" alone is the root. Returns false with a reason in error.
    static bool Parse(const std::string& text, TuneModeSelector* pSelector, std::string* pError);
    // Canonical names form: "Usecase.Video", "Sensor.1", "Default", with "@PIPELINE" when a group is set.
    static std::string Format(const TuneModeSelector* pSelector);

    // The pipeline name of a group value ("STATS" for pipeline 4, group 5), or its number if unknown.
    static std::string FormatGroup(UINT32 group);
    // Parses a pipeline name (BYR, STATS, ...) or number into a group value (pipeline + 1).
    static bool ParseGroup(const std::string& text, UINT32* pGroup);

private:
    static bool ParseNumber(const std::string& text, UINT32 limit, UINT32* pValue);
};

} // namespace AecTune

#endif // AECTUNE_CTUNEMODENAMES_H
