// Byte layout of module data: load limits, fixed-array counts, out-of-line blocks, alignment, data table entries.
#include <cstring>

#include <gtest/gtest.h>

#include "tunetesthelpers.h"
#include "tuning/parser/parsercrc.h"

using namespace AecTuneTest;

namespace
{

// A fixed array, a variable array, a string and a nested record, all in Default.
const char* const ShapesSource = R"({
  "modules": [ { "name": "Shapes", "version": "1.0.0",
    "members": [ { "name": "fixed", "type": "UINT16[3]" }, { "name": "var", "type": "UINT8[]" },
                 { "name": "text", "type": "STRING" }, { "name": "inner", "members": [ { "name": "f", "type": "FLOAT" } ] } ],
    "values": { "Default": { "fixed": [1, 2, 3], "var": [9, 8], "text": "ab", "inner": { "f": 1.5 } } } } ]
})";

UINT32 FloatBits(float value)
{
    UINT32 bits = 0;
    std::memcpy(&bits, &value, 4);
    return bits;
}

std::vector<UINT8> Slice(const std::vector<UINT8>& bytes, UINT32 offset, UINT32 size)
{
    return std::vector<UINT8>(bytes.begin() + offset, bytes.begin() + offset + size);
}

} // namespace

TEST(TuneDataLayout, Version7RecordsStartWithLimitsAndFixedArraysWithCounts)
{
    std::vector<UINT8> file;
    ASSERT_TRUE(Compile(ShapesSource, "7.0.0", false, 0, &file));
    UINT32 offset = 0;
    UINT32 size   = 0;
    ASSERT_TRUE(FindSection(file, 168, 1, 1, &offset, &size));
    std::vector<UINT8> expected;
    Put(&expected, 34, 4);                          // bytes of the module record after its limit
    Put(&expected, 3, 4);                           // count of the fixed array
    Put(&expected, 1, 2), Put(&expected, 2, 2), Put(&expected, 3, 2);
    Put(&expected, 2, 4), Put(&expected, 1, 4);     // variable array: count, data table ID 1
    Put(&expected, 3, 4), Put(&expected, 2, 4);     // string: bytes with NUL, data table ID 2
    Put(&expected, 4, 4), Put(&expected, FloatBits(1.5f), 4); // nested record: its limit, its float
    Put(&expected, 9, 1), Put(&expected, 8, 1);     // block 1
    expected.push_back('a'), expected.push_back('b'), expected.push_back(0); // block 2
    EXPECT_EQ(expected, Slice(file, offset, size));

    ASSERT_TRUE(FindSection(file, 168, 1, 3, &offset, &size));
    std::vector<UINT8> table;
    Put(&table, 0, 12);                             // ID 0, the null reference
    Put(&table, 38, 4), Put(&table, 2, 4), Put(&table, 1, 4);
    Put(&table, 40, 4), Put(&table, 3, 4), Put(&table, 2, 4);
    EXPECT_EQ(table, Slice(file, offset, size));
}

TEST(TuneDataLayout, Version6HasLimitsButNoFixedArrayCounts)
{
    std::vector<UINT8> file;
    ASSERT_TRUE(Compile(ShapesSource, "6.0.0", false, 0, &file));
    UINT32 offset = 0;
    UINT32 size   = 0;
    ASSERT_TRUE(FindSection(file, 168, 1, 1, &offset, &size));
    EXPECT_EQ(30u, U32(file, offset));
    EXPECT_EQ(1u, Field(file, offset + 4, 2));
    EXPECT_EQ(2u, U32(file, offset + 10));
}

TEST(TuneDataLayout, Version5HasNeitherLimitsNorCountsAndIdsInTheDataTable)
{
    std::vector<UINT8> file;
    ASSERT_TRUE(Compile(ShapesSource, "5.0.0", false, 0, &file));
    UINT32 offset = 0;
    UINT32 size   = 0;
    ASSERT_TRUE(FindSection(file, 168, 1, 1, &offset, &size));
    std::vector<UINT8> expected;
    Put(&expected, 1, 2), Put(&expected, 2, 2), Put(&expected, 3, 2);
    Put(&expected, 2, 4), Put(&expected, 1, 4);
    Put(&expected, 3, 4), Put(&expected, 2, 4);
    Put(&expected, FloatBits(1.5f), 4);
    Put(&expected, 9, 1), Put(&expected, 8, 1);
    expected.push_back('a'), expected.push_back('b'), expected.push_back(0);
    EXPECT_EQ(expected, Slice(file, offset, size));
    ASSERT_TRUE(FindSection(file, 168, 1, 3, &offset, &size));
    std::vector<UINT8> table;
    Put(&table, 1, 4), Put(&table, 26, 4), Put(&table, 2, 4), Put(&table, 1, 4);
    Put(&table, 2, 4), Put(&table, 28, 4), Put(&table, 3, 4), Put(&table, 2, 4);
    EXPECT_EQ(table, Slice(file, offset, size));
}

TEST(TuneDataLayout, AlignedVersionPadsEveryFieldAndKeepsBlocksInTheSymbolTable)
{
    std::vector<UINT8> file;
    ASSERT_TRUE(Compile(ShapesSource, "2.0.0", false, 0, &file));
    UINT32 offset = 0;
    UINT32 size   = 0;
    ASSERT_TRUE(FindSection(file, 160, 8, 1, &offset, &size));
    std::vector<UINT8> expected;
    Put(&expected, 1, 8), Put(&expected, 2, 8), Put(&expected, 3, 8); // each element a field of 8 bytes
    Put(&expected, 2, 8), Put(&expected, 2, 8);     // count; symbol ID 2, behind the one module
    Put(&expected, 3, 8), Put(&expected, 3, 8);
    Put(&expected, FloatBits(1.5f), 8);
    Put(&expected, 9, 8), Put(&expected, 8, 8);     // block of two UINT8 fields
    expected.push_back('a'), expected.push_back('b');
    Put(&expected, 0, 6);                           // text padded to the alignment
    EXPECT_EQ(expected, Slice(file, offset, size));
    EXPECT_FALSE(FindSection(file, 160, 8, 3, &offset, &size));
    ASSERT_TRUE(FindSection(file, 160, 8, 0, &offset, &size));
    ASSERT_EQ(3u * 76u, size);
    // The block entries: ID, empty name, version 0, no mode, offset and size in the data section.
    const UINT32 block = offset + 76;
    EXPECT_EQ(2u, U32(file, block));
    EXPECT_TRUE(AllZero(file, block + 8, 40));
    EXPECT_EQ(0xFFFFFFFFu, U32(file, block + 48));
    EXPECT_EQ(64u, U32(file, block + 56));
    EXPECT_EQ(16u, U32(file, block + 64));
    EXPECT_EQ(3u, U32(file, block + 76));
    EXPECT_EQ(80u, U32(file, block + 76 + 56));
    EXPECT_EQ(8u, U32(file, block + 76 + 64));
}

TEST(TuneDataLayout, EqualModuleDataIsStoredOnceAndFormsADuplicateGroup)
{
    const char* const source = R"({
      "modeTables": [ { "modes": [ { "mode": "Scene.Night" }, { "mode": "Scene.Snow" } ] } ],
      "modules": [ { "name": "Same", "version": "1.0.0", "members": [ { "name": "v", "type": "INT32" } ],
                     "values": { "Default": { "v": 5 }, "Scene.Night": { "v": 6 }, "Scene.Snow": { "v": 5 } } } ]
    })";
    std::vector<UINT8> file;
    ASSERT_TRUE(Compile(source, "7.0.0", false, 0, &file));
    UINT32 offset = 0;
    UINT32 size   = 0;
    ASSERT_TRUE(FindSection(file, 168, 1, 0, &offset, &size));
    ASSERT_EQ(4u * 32u, size);
    // Entries 1..3: ModeId at +16, DataOffset +20, DataSize +24, DuplicateID +28.
    EXPECT_EQ(0u, U32(file, offset + 32 + 20));
    EXPECT_EQ(1u, U32(file, offset + 32 + 28));
    EXPECT_EQ(8u, U32(file, offset + 64 + 20));
    EXPECT_EQ(2u, U32(file, offset + 64 + 28));
    EXPECT_EQ(2u, U32(file, offset + 96 + 16));   // Scene.Snow is slot 2
    EXPECT_EQ(0u, U32(file, offset + 96 + 20));   // shares the Default data
    EXPECT_EQ(1u, U32(file, offset + 96 + 28));   // and its duplicate group
    ASSERT_TRUE(FindSection(file, 168, 1, 1, &offset, &size));
    EXPECT_EQ(16u, size);
}

TEST(TuneDataLayout, DefinitionTableDescribesRecordsMembersAndModules)
{
    const char* const source = R"({
      "types": [ { "name": "E", "enum": { "A": 0, "B": 7 } } ],
      "modules": [ { "name": "M", "type": "MType", "version": "1.0.0",
                     "members": [ { "name": "x", "type": "FLOAT[2]" }, { "name": "e", "type": "E[]" } ],
                     "values": { "Default": {} } } ]
    })";
    std::vector<UINT8> file;
    ASSERT_TRUE(Compile(source, "7.0.0", true, 0, &file));
    UINT32 offset = 0;
    UINT32 size   = 0;
    ASSERT_TRUE(FindSection(file, 168, 1, 4, &offset, &size));
    std::vector<UINT8> expected;
    auto string = [&](const std::string& text) {
        Put(&expected, text.size() + 1, 4);
        expected.insert(expected.end(), text.begin(), text.end());
        expected.push_back(0);
    };
    expected.push_back(6); // enumeration 1
    Put(&expected, 1, 4), string("E"), Put(&expected, ParserCRC64::GetNameHash("E"), 8), Put(&expected, 2, 4);
    Put(&expected, 0, 4), expected.push_back(0), string("A"), string("");
    Put(&expected, 7, 4), expected.push_back(0), string("B"), string("");
    expected.push_back(5); // structure 1, the module's record
    Put(&expected, 1, 4), string("MType"), Put(&expected, ParserCRC64::GetNameHash("MType"), 8), Put(&expected, 2, 4);
    expected.push_back(16), Put(&expected, 0, 4), string("x"), Put(&expected, 0x80, 2), Put(&expected, 2, 4);
    Put(&expected, 2, 4), string("");
    expected.push_back(23), Put(&expected, 1, 4), string("e"), Put(&expected, 0x2, 2), Put(&expected, 0, 4);
    Put(&expected, 0xFFFFFFFFu, 4), string("");
    expected.push_back(4); // the module
    Put(&expected, 1, 4), Put(&expected, ParserCRC64::GetNameHash("M"), 8), string("M"), string("");
    EXPECT_EQ(expected, Slice(file, offset, size));
}
