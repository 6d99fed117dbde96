// Zeroing, aligned allocator for the library's long-lived objects.
#ifndef AECORE_PLATFORM_VELAALLOCATOR_H
#define AECORE_PLATFORM_VELAALLOCATOR_H

#include "aecore/aecore_types.h"

// Returns num * size bytes, zero filled, aligned to alignment (a power of two, at least 8),
// or null on overflow or exhaustion.
void* VelaCalloc(SIZE_T num, SIZE_T size, SIZE_T alignment);

// Releases a block of VelaCalloc; null is accepted.
void VelaFree(void* pMemory);

#endif // AECORE_PLATFORM_VELAALLOCATOR_H
