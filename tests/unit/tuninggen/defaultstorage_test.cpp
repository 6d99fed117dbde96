// Default storages of every module of g_aecDefaultTuningModules: size, alignment, and pointers into their own storage.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <string>

#include "aecdefaulttuning.h"

namespace
{

// One module's storage, allocated with the table's size and alignment, garbage first, then filled by the table's
// filler.
class FilledStorage
{
public:
    FilledStorage(const AECDefaultTuningModule& rModule, unsigned char garbage)
        : m_rModule(rModule)
        , m_pBytes(static_cast<unsigned char*>(::operator new(rModule.storageSize,
                                                              std::align_val_t(rModule.storageAlignment))))
    {
        std::memset(m_pBytes, garbage, rModule.storageSize);
        rModule.pfnFillDefaultStorage(m_pBytes);
    }
    ~FilledStorage() { ::operator delete(m_pBytes, std::align_val_t(m_rModule.storageAlignment)); }

    FilledStorage(const FilledStorage&)            = delete;
    FilledStorage& operator=(const FilledStorage&) = delete;

    const unsigned char* Bytes() const { return m_pBytes; }

    // The pointer-sized word at byte offset.
    std::uintptr_t Word(size_t offset) const
    {
        std::uintptr_t word;
        std::memcpy(&word, m_pBytes + offset, sizeof(word));
        return word;
    }

    std::uintptr_t Address() const { return reinterpret_cast<std::uintptr_t>(m_pBytes); }

private:
    const AECDefaultTuningModule& m_rModule;
    unsigned char*                m_pBytes;
};

std::string NameOf(const AECDefaultTuningModule& rModule)
{
    return std::string(rModule.pNamespace) + "::" + rModule.pName;
}

TEST(DefaultStorageTableTest, EveryStorageHoldsItsRecordAndIsAlignedForIt)
{
    ASSERT_FALSE(g_aecDefaultTuningModules.empty());
    for (const AECDefaultTuningModule& rModule : g_aecDefaultTuningModules)
    {
        SCOPED_TRACE(NameOf(rModule));
        EXPECT_GE(rModule.storageSize, rModule.size);
        ASSERT_NE(rModule.storageAlignment, 0u);
        EXPECT_EQ(rModule.storageAlignment & (rModule.storageAlignment - 1), 0u) << "a power of two";
        EXPECT_EQ(rModule.storageSize % rModule.storageAlignment, 0u) << "storages may stand in an array";
        EXPECT_NE(rModule.pfnFillDefaultStorage, nullptr);
    }
}

// Two storages filled from different garbage differ only in their pointers, and each of those leads to the same
// place behind the record of its own storage: the fill writes every byte, and no storage points into another one,
// into its own record, or anywhere else.
TEST(DefaultStorageTableTest, TwoStoragesDifferOnlyInPointersIntoThemselves)
{
    for (const AECDefaultTuningModule& rModule : g_aecDefaultTuningModules)
    {
        SCOPED_TRACE(NameOf(rModule));
        const FilledStorage first(rModule, 0xA5);
        const FilledStorage second(rModule, 0x5A);
        size_t              pointers = 0;
        size_t              offset   = 0;
        // A storage with pointers is aligned for them; one without is compared in steps of its own alignment.
        const size_t step = rModule.storageAlignment < sizeof(void*) ? rModule.storageAlignment : sizeof(void*);
        for (; offset + sizeof(void*) <= rModule.storageSize; offset += step)
        {
            const std::uintptr_t a = first.Word(offset);
            const std::uintptr_t b = second.Word(offset);
            if (a == b)
            {
                continue;
            }
            ASSERT_EQ(offset % alignof(void*), 0u) << "only pointers differ, at byte " << offset;
            ASSERT_GE(a, first.Address()) << "byte " << offset;
            ASSERT_GE(b, second.Address()) << "byte " << offset;
            EXPECT_EQ(a - first.Address(), b - second.Address()) << "byte " << offset;
            EXPECT_GE(a - first.Address(), rModule.size) << "byte " << offset << " points into the record";
            EXPECT_LT(a - first.Address(), rModule.storageSize) << "byte " << offset;
            pointers++;
        }
        EXPECT_EQ(std::memcmp(first.Bytes() + offset, second.Bytes() + offset, rModule.storageSize - offset), 0);
        if (rModule.storageSize > rModule.size)
        {
            EXPECT_GT(pointers, 0u) << "arrays behind the record without a pointer to them";
        }
    }
}

TEST(DefaultStorageTableTest, NullStorageIsIgnored)
{
    for (const AECDefaultTuningModule& rModule : g_aecDefaultTuningModules)
    {
        rModule.pfnFillDefaultStorage(nullptr);
    }
    SUCCEED();
}

} // namespace
