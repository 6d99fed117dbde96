// The exported fallback LED settings that the built-in flash tuning uses when the host supplies no tuning.
#include "aecore/aecore.h"

// LED 1 at settings 4 and 2, each combined with LED 2 at 0, 5 and 10.
extern "C" AECORE_API const AECLEDSettingPair s_fakeFlashCalib[AECORE_FAKE_FLASH_CALIB_COUNT] = {
    {4, 0}, {4, 5}, {4, 10}, {2, 0}, {2, 5}, {2, 10},
};
