/* Measures the host interface with the C compiler, proving that a C11 host can include it and sees the same layout. */
#include "unit/abi/abi_c_check.h"

#include <string.h>

#include "unit/abi/abi_layout_list.h"

#define ABI_C_TYPE(type, size, alignment) {#type, sizeof(type), _Alignof(type)},
static const AbiCTypeLayout s_typeLayouts[] = {AECORE_ABI_TYPES(ABI_C_TYPE)};

#define ABI_C_FIELD(record, field, offset) {#record, #field, offsetof(record, field)},
static const AbiCFieldOffset s_fieldOffsets[] = {AECORE_ABI_FIELDS(ABI_C_FIELD)};

#define ABI_C_ENUMERATOR(name, value) {#name, (long long)(name)},
static const AbiCEnumerator s_enumerators[] = {AECORE_ABI_ENUMERATORS(ABI_C_ENUMERATOR)};

const AbiCTypeLayout* AbiCTypeLayouts(size_t* pCount)
{
    *pCount = sizeof(s_typeLayouts) / sizeof(s_typeLayouts[0]);
    return s_typeLayouts;
}

const AbiCFieldOffset* AbiCFieldOffsets(size_t* pCount)
{
    *pCount = sizeof(s_fieldOffsets) / sizeof(s_fieldOffsets[0]);
    return s_fieldOffsets;
}

const AbiCEnumerator* AbiCEnumerators(size_t* pCount)
{
    *pCount = sizeof(s_enumerators) / sizeof(s_enumerators[0]);
    return s_enumerators;
}

UINT32 AbiCGridFlagsWord(UINT32 usesY, UINT32 hasSatInfo, UINT32 onlyY)
{
    StatsBayerGrid grid;
    UINT32         word = 0;
    memset(&grid, 0, sizeof(grid));
    grid.flags.usesY      = usesY;
    grid.flags.hasSatInfo = hasSatInfo;
    grid.flags.onlyY      = onlyY;
    memcpy(&word, &grid.flags, sizeof(word));
    return word;
}

UINT32* AbiCCameraIdAddress(void)
{
    return &g_cameraId;
}

const AECLEDSettingPair* AbiCFakeFlashCalib(void)
{
    return s_fakeFlashCalib;
}

StatsLoggingFunction* AbiCStatsLoggerAddress(void)
{
    return &gStatsLogger;
}
