// Records of the exposure tables inside arbitration: the looked-up exposure, table selectors and table settings.
#ifndef AEC_CORE_MODULES_MOD_ARB_EXPTABLETYPES_H
#define AEC_CORE_MODULES_MOD_ARB_EXPTABLETYPES_H

#include "aecore/aecore.h"

// Largest number of knees an active table holds; the rebuild appends up to two knees to the raw ones.
constexpr UINT32 MaxExpTableKnees = 50;

// One exposure as it passes through the arbitration steps: looked up from expIndex, or written back to it.
struct ExposureSetType
{
    FLOAT  gain;
    FLOAT  fnumber;
    UINT64 expTime;  // ns
    FLOAT  expIndex;
};

// Which table of a CExpTable a lookup reads.
enum ExpTableAccessType
{
    RawTable       = 0,
    ActiveTable    = 1,
    ActiveSEFTable = 2,
    ActiveLEFTable = 3,
    ActiveMEFTable = 4,
};

// Settings folded into the active table as extra knees.
struct ExpTableSettingsType
{
    FLOAT  EV;              // stops
    UINT64 FPSMaxExpTime;   // ns, longest exposure the frame rate allows
    BOOL   enableEVMaxGain;
    FLOAT  maxGainForEV;
};

// Index of the staggered-HDR tables and their limitation entries.
enum ShdrExposureTableType
{
    SEF = 0,
    LEF = 1,
    MEF = 2,
};

constexpr UINT32 ShdrExposureTableCount = 3;

#endif // AEC_CORE_MODULES_MOD_ARB_EXPTABLETYPES_H
