// Counts heap allocations of the whole process while a window is open, by interposing the C allocator.
#include "allocationcounter.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

extern "C"
{
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* pMemory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void  __libc_free(void* pMemory);
}

namespace
{

// Fixed storage: recording must not allocate.
const size_t        kMaxRecords = 256;
std::atomic<bool>   s_counting{false};
std::atomic<size_t> s_count{0};
std::atomic<size_t> s_bytes{0};
size_t              s_sizes[kMaxRecords];

void Record(size_t size)
{
    if (s_counting.load(std::memory_order_relaxed))
    {
        s_bytes.fetch_add(size, std::memory_order_relaxed);
        size_t index = s_count.fetch_add(1, std::memory_order_relaxed);
        if (index < kMaxRecords)
        {
            s_sizes[index] = size;
        }
    }
}

} // namespace

extern "C"
{

__attribute__((visibility("default"))) void* malloc(size_t size)
{
    Record(size);
    return __libc_malloc(size);
}

__attribute__((visibility("default"))) void* calloc(size_t count, size_t size)
{
    Record(count * size);
    return __libc_calloc(count, size);
}

__attribute__((visibility("default"))) void* realloc(void* pMemory, size_t size)
{
    Record(size);
    return __libc_realloc(pMemory, size);
}

__attribute__((visibility("default"))) void free(void* pMemory)
{
    __libc_free(pMemory);
}

__attribute__((visibility("default"))) int posix_memalign(void** ppMemory, size_t alignment, size_t size)
{
    Record(size);
    void* pMemory = __libc_memalign(alignment, size);
    if (nullptr == pMemory)
    {
        return ENOMEM;
    }
    *ppMemory = pMemory;
    return 0;
}

__attribute__((visibility("default"))) void* aligned_alloc(size_t alignment, size_t size)
{
    Record(size);
    return __libc_memalign(alignment, size);
}

__attribute__((visibility("default"))) void* memalign(size_t alignment, size_t size)
{
    Record(size);
    return __libc_memalign(alignment, size);
}

} // extern "C"

namespace AllocationCounter
{

void Begin()
{
    s_count.store(0);
    s_bytes.store(0);
    s_counting.store(true);
}

std::vector<size_t> End()
{
    s_counting.store(false);
    size_t count = s_count.load();
    return std::vector<size_t>(s_sizes, s_sizes + ((count < kMaxRecords) ? count : kMaxRecords));
}

size_t LastWindowBytes()
{
    return s_bytes.load();
}

size_t LastWindowCount()
{
    return s_count.load();
}

} // namespace AllocationCounter
