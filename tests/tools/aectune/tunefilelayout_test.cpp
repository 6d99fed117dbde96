// Byte layout of written files at every version where the format changes: header, section table, entries, checksum.
#include <gtest/gtest.h>

#include "tunetesthelpers.h"
#include "tuning/parser/parsercrc.h"

using namespace AecTuneTest;

namespace
{

// One module with a UINT32 in Default and in Usecase.Video; no arrays, so no data table.
const char* const ProbeSource = R"({
  "header": { "createdBy": "layout test", "binaryTag": "tag 1" },
  "modeTables": [ { "name": "Main", "modes": [ { "mode": "Usecase.Video", "preserve": true } ] } ],
  "modules": [ { "name": "Probe", "version": "1.2.3", "members": [ { "name": "value", "type": "UINT32" } ],
                 "values": { "Default": { "value": 305419896 }, "Usecase.Video": { "value": 7 } } } ]
})";

// What the format tables say for one version.
struct Layout
{
    const char* version;
    UINT16      major;
    UINT16      minor;
    UINT32      patch;
    UINT32      headerSize;
    UINT32      alignment;
    UINT32      symbolEntrySize;
    UINT32      modeEntrySize;   // 0: no mode section
    UINT32      modeNameBytes;
    UINT32      checksumBytes;
};

const Layout Layouts[] = {
    { "1.0.1", 1, 0, 1, 48, 1, 64, 0, 0, 4 },     { "1.0.2", 1, 0, 2, 160, 1, 64, 16, 0, 4 },
    { "1.1.0", 1, 1, 0, 160, 8, 76, 24, 0, 4 },   { "2.0.0", 2, 0, 0, 160, 8, 76, 32, 0, 4 },
    { "3.0.0", 3, 0, 0, 168, 8, 76, 32, 0, 4 },   { "3.0.1", 3, 0, 1, 168, 1, 56, 20, 0, 4 },
    { "4.0.0", 4, 0, 0, 168, 1, 60, 20, 32, 4 },  { "5.0.0", 5, 0, 0, 168, 1, 60, 24, 32, 4 },
    { "6.0.0", 6, 0, 0, 168, 1, 32, 24, 32, 8 },  { "7.0.0", 7, 0, 0, 168, 1, 32, 24, 128, 8 },
};

class TuneFileLayout : public ::testing::TestWithParam<Layout>
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(Compile(ProbeSource, GetParam().version, false, 0, &m_file, &m_messages)) << m_messages;
    }

    // A section record's field: each of the three occupies max(4, alignment) bytes.
    UINT32 Record(UINT32 index, UINT32 field) const
    {
        const Layout& layout = GetParam();
        const UINT32  width  = (layout.alignment > 4) ? layout.alignment : 4;
        const size_t  at     = layout.headerSize + (index * 3 + field) * width;
        EXPECT_TRUE(AllZero(m_file, at + 4, width - 4));
        return U32(m_file, at);
    }

    std::vector<UINT8> m_file;
    std::string        m_messages;
};

} // namespace

TEST_P(TuneFileLayout, HeaderFieldsSitWhereTheVersionPutsThem)
{
    const Layout& layout = GetParam();
    EXPECT_EQ("KVR Sorenta Header", Text(m_file, 0, 28));
    EXPECT_TRUE(AllZero(m_file, 18, 10));
    EXPECT_EQ(m_file.size(), U32(m_file, 28));
    EXPECT_EQ(layout.major, Field(m_file, 32, 2));
    EXPECT_EQ(layout.minor, Field(m_file, 34, 2));
    EXPECT_EQ(layout.patch, Field(m_file, 36, 4));
    const bool hasModeTree = layout.headerSize > 48;
    if (hasModeTree)
    {
        EXPECT_EQ("layout test", Text(m_file, 40, 48));
        EXPECT_TRUE(AllZero(m_file, 40 + 11, 48 - 11));
        EXPECT_EQ("tag 1", Text(m_file, 88, 64));
    }
    if (layout.headerSize == 168)
    {
        EXPECT_EQ(0u, Field(m_file, 152, 8)); // flags
    }
    EXPECT_EQ(layout.headerSize, U32(m_file, layout.headerSize - 8));
    EXPECT_EQ(hasModeTree ? 3u : 2u, U32(m_file, layout.headerSize - 4));
}

TEST_P(TuneFileLayout, SectionTableListsSymbolsDataAndModesWithExactSizes)
{
    const Layout& layout       = GetParam();
    const UINT32  sectionCount = U32(m_file, layout.headerSize - 4);
    // Symbols: two modules (one in a file without mode tree), plus the placeholder of ID 0 from 6.0.0 on.
    const bool   hasModeTree = layout.modeEntrySize != 0;
    const UINT32 modules     = hasModeTree ? 2 : 1;
    const UINT32 placeholder = (layout.checksumBytes == 8) ? 1 : 0;
    EXPECT_EQ(0u, Record(0, 0));
    EXPECT_EQ((modules + placeholder) * layout.symbolEntrySize, Record(0, 2));
    // Data: one UINT32 per module, a field of the alignment, behind a 4-byte load limit from 6.0.0 on.
    EXPECT_EQ(1u, Record(1, 0));
    const UINT32 valueBytes = (layout.alignment > 4) ? layout.alignment : 4;
    EXPECT_EQ(modules * (valueBytes + placeholder * 4), Record(1, 2));
    if (hasModeTree)
    {
        ASSERT_EQ(3u, sectionCount);
        EXPECT_EQ(2u, Record(2, 0));
        EXPECT_EQ(layout.modeNameBytes + 2 * layout.modeEntrySize, Record(2, 2));
    }
    // Every section lies inside the file, behind the section table, aligned.
    const UINT32 tableEnd = layout.headerSize + sectionCount * 3 * ((layout.alignment > 4) ? layout.alignment : 4);
    for (UINT32 i = 0; i < sectionCount; i++)
    {
        EXPECT_GE(Record(i, 1), tableEnd);
        EXPECT_EQ(0u, Record(i, 1) % layout.alignment);
        EXPECT_LE(Record(i, 1) + Record(i, 2), m_file.size() - layout.checksumBytes);
    }
}

TEST_P(TuneFileLayout, TrailerIsTheChecksumOfAllBytesBeforeIt)
{
    const Layout& layout = GetParam();
    const size_t  body   = m_file.size() - layout.checksumBytes;
    if (layout.checksumBytes == 8)
    {
        EXPECT_EQ(ParserCRC64::GetCRC(m_file.data(), body, true, 0), Field(m_file, body, 8));
        EXPECT_TRUE(ParserCRC64::Validate(m_file.data(), m_file.size(), true, nullptr));
    }
    else
    {
        EXPECT_EQ(ParserCRC32::GetCRC(m_file.data(), body, 0), U32(m_file, body));
        EXPECT_TRUE(ParserCRC32::Validate(m_file.data(), m_file.size(), nullptr));
    }
}

TEST_P(TuneFileLayout, ModuleSymbolEntryHoldsTheFieldsOfTheVersion)
{
    const Layout& layout  = GetParam();
    const UINT32  offset  = Record(0, 1);
    const bool    hashes  = layout.checksumBytes == 8;
    const UINT32  width8  = 8;
    const UINT32  width4  = (layout.alignment > 4) ? layout.alignment : 4;
    size_t        at      = offset + (hashes ? layout.symbolEntrySize : 0); // the first module entry
    if (hashes)
    {
        EXPECT_EQ(ParserCRC64::GetNameHash("Probe"), Field(m_file, at, 8));
        at += 8;
    }
    else
    {
        EXPECT_EQ(1u, U32(m_file, at));
        at += width4;
        EXPECT_EQ("Probe", Text(m_file, at, 32));
        at += 32;
    }
    EXPECT_EQ(0x0000000300020001ull, Field(m_file, at, 8)); // module version 1.2.3
    at += width8;
    const bool reserved = layout.alignment == 1 && layout.symbolEntrySize == 64;
    if (reserved)
    {
        EXPECT_EQ(0u, Field(m_file, at, 8));
        at += 8;
    }
    EXPECT_EQ(0u, U32(m_file, at)); // ModeId: table 0, slot 0 (Default)
    at += width4;
    EXPECT_EQ(0u, U32(m_file, at)); // DataOffset
    at += width4;
    EXPECT_EQ(hashes ? 8u : width4, U32(m_file, at)); // DataSize
    at += width4;
    const bool duplicate = layout.symbolEntrySize == 60 || layout.symbolEntrySize == 32;
    if (duplicate)
    {
        EXPECT_EQ(1u, U32(m_file, at));
        at += 4;
    }
    EXPECT_LE(at, offset + (hashes ? 2 : 1) * layout.symbolEntrySize);
    EXPECT_TRUE(AllZero(m_file, at, offset + (hashes ? 2 : 1) * layout.symbolEntrySize - at));
}

TEST_P(TuneFileLayout, ModeEntriesPackIdsModesParentsLinksAndFlags)
{
    const Layout& layout = GetParam();
    if (layout.modeEntrySize == 0)
    {
        // Files before the mode tree carry no mode table: symbols and data only.
        EXPECT_EQ(2u, U32(m_file, layout.headerSize - 4));
        EXPECT_EQ(1u, Record(1, 0));
        return;
    }
    const UINT32 width4 = (layout.alignment > 4) ? layout.alignment : 4;
    const bool   links  = layout.modeEntrySize == 32 || (layout.alignment == 1 && layout.modeEntrySize >= 20);
    const bool   flags  = layout.alignment == 1 && layout.modeEntrySize == 24;
    const size_t start  = Record(2, 1) + layout.modeNameBytes;
    if (layout.modeNameBytes != 0)
    {
        EXPECT_EQ("Main", Text(m_file, Record(2, 1), layout.modeNameBytes));
    }
    for (UINT32 slot = 0; slot < 2; slot++)
    {
        size_t at = start + slot * layout.modeEntrySize;
        EXPECT_EQ(slot, U32(m_file, at));
        at += width4;
        EXPECT_EQ((slot == 0) ? 0u : 0x00020002u, Field(m_file, at, 8)); // Usecase.Video, no group
        at += 8;
        EXPECT_EQ(0u, U32(m_file, at)); // the root is its own parent, and the parent of slot 1
        at += width4;
        if (links)
        {
            EXPECT_EQ(0xFFFFFFFFu, U32(m_file, at));
            at += width4;
        }
        if (flags)
        {
            EXPECT_EQ(1u, U32(m_file, at)); // Preserve: the root always, Usecase.Video as the source says
            at += 4;
        }
        EXPECT_EQ(start + (slot + 1) * layout.modeEntrySize, at);
    }
}

INSTANTIATE_TEST_SUITE_P(EveryFormatChange, TuneFileLayout, ::testing::ValuesIn(Layouts),
                         [](const ::testing::TestParamInfo<Layout>& info) {
                             std::string name = std::string("V") + info.param.version;
                             for (char& c : name)
                             {
                                 c = (c == '.') ? '_' : c;
                             }
                             return name;
                         });

TEST(TuneFileLayout, PaddingToTheMinimumSizeLiesBeforeTheChecksum)
{
    std::vector<UINT8> file;
    ASSERT_TRUE(Compile(ProbeSource, "7.0.0", false, 3388, &file));
    ASSERT_EQ(3388u, file.size());
    EXPECT_EQ(3388u, U32(file, 28));
    EXPECT_EQ(ParserCRC64::GetCRC(file.data(), 3380, true, 0), Field(file, 3380, 8));
}
