// Zeroing, aligned allocator for the library's long-lived objects.
#include "platform/velaallocator.h"

#include <cstdlib>
#include <cstring>

void* VelaCalloc(SIZE_T num, SIZE_T size, SIZE_T alignment)
{
    if ((0 == num) || (0 == size) || (size > (SIZE_MAX / num)))
    {
        return nullptr;
    }
    if ((alignment < sizeof(void*)) || (0 != (alignment & (alignment - 1))))
    {
        alignment = sizeof(void*);
    }

    SIZE_T bytes   = num * size;
    void*  pMemory = nullptr;
    if (0 != posix_memalign(&pMemory, alignment, bytes))
    {
        return nullptr;
    }
    std::memset(pMemory, 0, bytes);
    return pMemory;
}

void VelaFree(void* pMemory)
{
    std::free(pMemory);
}
