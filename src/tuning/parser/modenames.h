// Names of the modes and sub-modes of the tree, as the tuning tool shows them.
#ifndef AECORE_TUNING_PARSER_MODENAMES_H
#define AECORE_TUNING_PARSER_MODENAMES_H

#include "aecore/aecore_types.h"

class ModeNames
{
public:
    // Name of a mode value, or null if unknown.
    static const CHAR* ModeName(UINT32 mode);
    // Enumeration name of a sub-mode of a mode, or null for an unknown value or a mode without sub-modes.
    static const CHAR* SubModeName(UINT32 mode, UINT32 subMode);
    // Number of named sub-modes of a mode.
    static UINT32      SubModeCount(UINT32 mode);
};

#endif // AECORE_TUNING_PARSER_MODENAMES_H
