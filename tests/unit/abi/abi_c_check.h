/* Layout facts and exported-symbol addresses as a C11 translation unit sees them, for comparison from C++. */
#ifndef AECORE_TESTS_UNIT_ABI_ABI_C_CHECK_H
#define AECORE_TESTS_UNIT_ABI_ABI_C_CHECK_H

#include "aecore/aecore.h"

AECORE_EXTERN_C_BEGIN

typedef struct AbiCTypeLayout
{
    const char* pName;
    size_t      size;
    size_t      alignment;
} AbiCTypeLayout;

typedef struct AbiCFieldOffset
{
    const char* pRecord;
    const char* pField;
    size_t      offset;
} AbiCFieldOffset;

typedef struct AbiCEnumerator
{
    const char* pName;
    long long   value;
} AbiCEnumerator;

/* Each returns the C compiler's measurements of the corresponding list in abi_layout_list.h, in list order. */
const AbiCTypeLayout*  AbiCTypeLayouts(size_t* pCount);
const AbiCFieldOffset* AbiCFieldOffsets(size_t* pCount);
const AbiCEnumerator*  AbiCEnumerators(size_t* pCount);

/* The raw 32-bit word of a grid flag field that C filled with the given bits. */
UINT32 AbiCGridFlagsWord(UINT32 usesY, UINT32 hasSatInfo, UINT32 onlyY);

/* Addresses of the exported data as C resolves them; g_cameraId is that of the calling thread. */
UINT32*                  AbiCCameraIdAddress(void);
const AECLEDSettingPair* AbiCFakeFlashCalib(void);
StatsLoggingFunction*    AbiCStatsLoggerAddress(void);

AECORE_EXTERN_C_END

#endif /* AECORE_TESTS_UNIT_ABI_ABI_C_CHECK_H */
