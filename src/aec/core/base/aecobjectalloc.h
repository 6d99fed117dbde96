// Creation and destruction of the core's long-lived objects in zeroed memory of the platform allocator.
#ifndef AEC_CORE_BASE_AECOBJECTALLOC_H
#define AEC_CORE_BASE_AECOBJECTALLOC_H

#include <new>
#include <type_traits>
#include <utility>

#include "platform/velaallocator.h"

// Alignment of every object the core allocates.
constexpr SIZE_T AECObjectAlignment = 8;

// Constructs T in zeroed memory; null when the allocator has none left.
template <typename T, typename... Args>
T* AECCreateObject(Args&&... args)
{
    static_assert(alignof(T) <= AECObjectAlignment, "the core allocates with 8-byte alignment");
    void* pMemory = VelaCalloc(1, sizeof(T), AECObjectAlignment);
    return (nullptr != pMemory) ? new (pMemory) T(std::forward<Args>(args)...) : nullptr;
}

// Destroys an object of AECCreateObject, of its own type or through any of its polymorphic bases, and clears the
// pointer. The most-derived address is taken before the destructor runs, since that is the block the allocator
// handed out.
template <typename T>
void AECDestroyObject(T*& pObject)
{
    if (nullptr != pObject)
    {
        void* pMemory = nullptr;
        if constexpr (std::is_polymorphic<T>::value)
        {
            pMemory = dynamic_cast<void*>(pObject);
        }
        else
        {
            pMemory = static_cast<void*>(pObject);
        }
        pObject->~T();
        VelaFree(pMemory);
        pObject = nullptr;
    }
}

#endif // AEC_CORE_BASE_AECOBJECTALLOC_H
