// Tests of the zeroing aligned allocator.
#include <gtest/gtest.h>

#include <cstdint>

#include "platform/velaallocator.h"

TEST(VelaAllocator, ReturnsZeroedAlignedMemory)
{
    auto* pBytes = static_cast<UINT8*>(VelaCalloc(3, 100, 64));
    ASSERT_NE(nullptr, pBytes);
    EXPECT_EQ(0U, reinterpret_cast<uintptr_t>(pBytes) % 64);
    for (int i = 0; i < 300; i++)
    {
        ASSERT_EQ(0, pBytes[i]) << "byte " << i;
    }
    VelaFree(pBytes);
}

TEST(VelaAllocator, SmallOrOddAlignmentFallsBackToPointerAlignment)
{
    void* pMemory = VelaCalloc(1, 24, 3);
    ASSERT_NE(nullptr, pMemory);
    EXPECT_EQ(0U, reinterpret_cast<uintptr_t>(pMemory) % sizeof(void*));
    VelaFree(pMemory);
}

TEST(VelaAllocator, RefusesOverflowAndEmptyRequests)
{
    EXPECT_EQ(nullptr, VelaCalloc(SIZE_MAX / 2, 4, 8));
    EXPECT_EQ(nullptr, VelaCalloc(0, 4, 8));
    EXPECT_EQ(nullptr, VelaCalloc(4, 0, 8));
    VelaFree(nullptr);
}
