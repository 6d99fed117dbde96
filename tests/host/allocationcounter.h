// Counts heap allocations of the whole process while a window is open, by interposing the C allocator.
#ifndef AECORE_TESTS_ALLOCATIONCOUNTER_H
#define AECORE_TESTS_ALLOCATIONCOUNTER_H

#include <cstddef>
#include <vector>

namespace AllocationCounter
{

// Opens a counting window; sizes of the allocations made inside it are recorded.
void Begin();
// Closes the window and returns the sizes of the allocations made inside it.
std::vector<size_t> End();
// Bytes and number of all allocations of the last window, also those beyond what End() can list.
size_t LastWindowBytes();
size_t LastWindowCount();

} // namespace AllocationCounter

#endif // AECORE_TESTS_ALLOCATIONCOUNTER_H
