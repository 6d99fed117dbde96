// Per-frame input and output records of the extension module and its flash current estimate.
#ifndef AEC_CORE_INCLUDE_AECEXTENSIONRECORDS_H
#define AEC_CORE_INCLUDE_AECEXTENSIONRECORDS_H

#include <type_traits>

#include "aec/core/include/iaeccallbacks.h"
#include "aecore/aecore.h"

// LED current level a flash estimate is asked for.
enum ExtFlashCurrentType
{
    Low  = 0,
    High = 1,
    Full = 2,
    Off  = 3,
};

// One mix of the two LEDs with its estimated colour ratios and flux.
struct AECLEDCombination
{
    INT32 LED1Setting;
    INT32 LED2Setting;
    FLOAT RGRatio;
    FLOAT BGRatio;
    FLOAT flux;
    FLOAT firstEntryRatio;
    FLOAT lastEntryRatio;
};

// LED mix chosen for a requested current, with the table positions it was blended from.
struct FlashCurrentEstimate
{
    AECLEDCombination LEDCombination;
    INT32             powIdx1;
    INT32             powIdx2;
    INT32             mixIdx1;
    INT32             mixIdx2;
};

// Capture recommendations of the triggered-flags monitor.
struct ExtTriggeredFlagsMonitorOut
{
    BOOL   isFlashNeeded;
    BOOL   isFDFlashDelayNeeded;
    BOOL   isLEDAFNeeded;
    BOOL   isLLSNeeded;
    UINT64 LLSExpTime;
};

// What the extension monitors need of one frame; the module itself sets pFlashCalib and pExtCallback.
struct ExtensionInput
{
    FLOAT                              currentLuma;
    BOOL                               isAECSettled;
    FLOAT                              luxIndex;
    ExtFlashCurrentType                flashCurrentType;
    const AECAlgoFlashCalibrationData* pFlashCalib;
    FLOAT                              RGRatio;
    FLOAT                              BGRatio;
    const AECAlgoWhiteBalanceState*    pWBFlashOff;
    INT32                              maxFlashCurrent;
    FLOAT                              safeExpIndexTgt;
    const StatsIHist*                  pIHistStats;
    IExtensionCallback*                pExtCallback;
};

// Side information of one frame. Every member starts at zero; the core resets the record by assigning
// ExtensionOutput().
struct ExtensionOutput
{
    AECYHistStretchData            YHistStretchOut        = {};
    AECAlgoTouchEVType             touchEVSceneMonitorOut = {};
    ExtTriggeredFlagsMonitorOut    triggeredFlags         = {};
    FlashCurrentEstimate           flashCurrentOut        = {};
    AECAlgoFlashMeasurementResult* pFlashMeasStatus       = nullptr;
    INT32                          flashMeasIndex         = 0;
};

static_assert(std::is_trivial<FlashCurrentEstimate>::value, "zeroed by memset");
static_assert(std::is_trivial<ExtensionInput>::value, "zeroed by memset");
static_assert(std::is_trivially_copyable<ExtensionOutput>::value, "copied as a plain record");

#endif // AEC_CORE_INCLUDE_AECEXTENSIONRECORDS_H
