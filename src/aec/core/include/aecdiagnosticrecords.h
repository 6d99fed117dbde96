// Records exchanged between the core and the diagnostic module.
#ifndef AEC_CORE_INCLUDE_AECDIAGNOSTICRECORDS_H
#define AEC_CORE_INCLUDE_AECDIAGNOSTICRECORDS_H

#include <type_traits>

#include "aecore/aecore.h"

// Whether an exposure sweep is in progress.
enum DiagStatus
{
    Inactive = 0,
    Running  = 1,
};

// Measurement of the current frame that a sweep logs.
struct DiagInput
{
    FLOAT currentLuma;
};

// State of the diagnostic module as the core sees it.
struct DiagOutput
{
    DiagStatus          status;
    AECAlgoExposureData ExpSet;
    FLOAT               startingExpIndex;
};

static_assert(std::is_trivial<DiagInput>::value, "zeroed by memset");
static_assert(std::is_trivial<DiagOutput>::value, "zeroed by memset");

#endif // AEC_CORE_INCLUDE_AECDIAGNOSTICRECORDS_H
