// Generated accessors of the fixture records: values by path on every member kind, member lists, release of
// loaded blocks, and the Create rules, names and versions of the module classes.
#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>

#include "platform/velaallocator.h"
#include "tuning/parser/modeentry.h"
#include "tuning/parser/parsercrc.h"
#include "tuning_fixempty_module.h"
#include "tuning_fixmetering_module.h"
#include "unit/tuningparser/clogcapture.h"

namespace
{

using fixMetering::FixMeteringType;
using fixMetering::FixMeteringTypeClass;

// A block as Load allocates it (zeroed VelaCalloc storage).
template <typename T>
T* Block(std::initializer_list<T> values)
{
    T*     pBlock = static_cast<T*>(VelaCalloc(values.size(), sizeof(T), 8));
    size_t i      = 0;
    for (const T& value : values)
    {
        pBlock[i++] = value;
    }
    return pBlock;
}

CHAR* Text(const CHAR* pText)
{
    CHAR* pCopy = static_cast<CHAR*>(VelaCalloc(std::strlen(pText) + 1, 1, 8));
    std::memcpy(pCopy, pText, std::strlen(pText) + 1);
    return pCopy;
}

// Every mode ID resolves to one empty slot, so that module data can be made without a file.
class CNoModes : public IModeTable
{
public:
    ModeEntryInfo* GetModeEntry(UINT32) override { return &m_info; }

private:
    ModeEntryInfo m_info = {};
};

class FixtureAccessorsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_record                              = FixMeteringType();
        m_record.module_version.major_revision = 8;
        m_record.table[1]                     = 0.5f;
        m_record.zones = static_cast<fixMetering::FixZoneType*>(VelaCalloc(2, sizeof(fixMetering::FixZoneType), 8));
        m_record.zonesCount                   = 2;
        m_record.zonesID                      = 2;
        m_record.zones[1].zoneTrigger.end     = 400.0f;
        m_record.zones[1].target              = 40.5f;
        m_record.name                         = Text("fixture");
        m_record.range.start                  = 1.5f;
        m_record.prio                         = aecglobalelements::FixPrioTime;
        m_record.id                           = -7;
        m_record.bytes[1]                     = 255;
        m_record.label[0]                     = 'a';
        m_record.big                          = -9000000000LL;
        m_record.ubig                         = 18000000000ULL;
        m_record.precise                      = 0.1;
        m_record.flag                         = 1;
        m_record.pairs[1].a                   = -3;
        m_record.pairs[1].b[1]                = 1.5f;
        m_record.pairs[1].marks               = Block<UINT8>({7, 9});
        m_record.pairs[1].marksCount          = 2;
        m_record.pairs[1].marksID             = 2;
        m_record.levels = static_cast<FixMeteringType::levelsStruct*>(
            VelaCalloc(1, sizeof(FixMeteringType::levelsStruct), 8));
        m_record.levelsCount                  = 1;
        m_record.levelsID                     = 1;
        m_record.levels[0].steps              = Block<UINT32>({1, 2, 3});
        m_record.levels[0].stepsCount         = 3;
        m_record.levels[0].stepsID            = 3;
        m_record.grid[1][2]                   = 6.0f;
        m_record.params = static_cast<statsglobalelements::FixExtensionParamType*>(
            VelaCalloc(1, sizeof(statsglobalelements::FixExtensionParamType), 8));
        m_record.paramsCount                  = 1;
        m_record.paramsID                     = 1;
        m_record.params[0].Name               = Text("Depth AEC");
        m_record.params[0].data               = Block<FLOAT>({1.0f, 2.0f});
        m_record.params[0].dataCount          = 2;
        m_record.params[0].dataID             = 2;
        m_record.names                        = Block<CHAR*>({Text("first"), Text("second")});
        m_record.namesCount                   = 2;
        m_record.namesID                      = 2;
        m_record.limits.values                = Block<INT16>({-2, 2});
        m_record.limits.valuesCount           = 2;
        m_record.limits.valuesID              = 2;
    }

    void TearDown() override { m_record.Unload(nullptr); }

    std::string Get(const CHAR* pPath)
    {
        CHAR out[128] = {};
        EXPECT_TRUE(m_record.GetValue(pPath, out, sizeof(out))) << pPath;
        return out;
    }

    bool Fails(const CHAR* pPath)
    {
        CHAR out[128] = {};
        return !m_record.GetValue(pPath, out, sizeof(out));
    }

    FixMeteringType m_record;
};

TEST_F(FixtureAccessorsTest, GetValueReadsEveryKindOfMember)
{
    EXPECT_EQ(Get("module_version.major_revision"), "8");
    EXPECT_EQ(Get("table[1]"), "0.5");
    EXPECT_EQ(Get("name"), "fixture");
    EXPECT_EQ(Get("range.start"), "1.5");
    EXPECT_EQ(Get("prio"), "1");
    EXPECT_EQ(Get("id"), "-7");
    EXPECT_EQ(Get("bytes[1]"), "255");
    EXPECT_EQ(Get("label[0]"), "97");
    EXPECT_EQ(Get("big"), "-9000000000");
    EXPECT_EQ(Get("ubig"), "18000000000");
    EXPECT_EQ(Get("precise"), "0.1");
    // Ten decimals for floating-point values; trailing zeros are not shown.
    m_record.table[0] = 0.1f;
    EXPECT_EQ(Get("table[0]"), "0.1000000015");
    EXPECT_EQ(Get("flag"), "1");
    EXPECT_EQ(Get("oursOnly"), "0");
}

TEST_F(FixtureAccessorsTest, GetValueFollowsRecordsArraysAndFlatMultiDimensionalIndices)
{
    EXPECT_EQ(Get("zones[1].target"), "40.5");
    EXPECT_EQ(Get("zones[1].zoneTrigger.end"), "400");
    EXPECT_EQ(Get("pairs[1].a"), "-3");
    EXPECT_EQ(Get("pairs[1].b[1]"), "1.5");
    EXPECT_EQ(Get("pairs[1].marks[1]"), "9");
    EXPECT_EQ(Get("levels[0].steps[2]"), "3");
    EXPECT_EQ(Get("params[0].Name"), "Depth AEC");
    EXPECT_EQ(Get("params[0].data[1]"), "2");
    EXPECT_EQ(Get("names[1]"), "second");
    EXPECT_EQ(Get("limits.values[0]"), "-2");
    // grid[2][3]: element [1][2] has the flat index 1 * 3 + 2.
    EXPECT_EQ(Get("grid[5]"), "6");
}

TEST_F(FixtureAccessorsTest, UnknownNamesBadIndicesAndIncompletePathsFail)
{
    EXPECT_TRUE(Fails("nope"));
    EXPECT_TRUE(Fails(""));
    EXPECT_TRUE(Fails("table[4]"));
    EXPECT_TRUE(Fails("table"));
    EXPECT_TRUE(Fails("grid[6]"));
    EXPECT_TRUE(Fails("zones[2].target"));
    EXPECT_TRUE(Fails("zones[1]"));
    EXPECT_TRUE(Fails("zones[1].nope"));
    EXPECT_TRUE(Fails("zones[1].target.more"));
    EXPECT_TRUE(Fails("range"));
    EXPECT_TRUE(Fails("prio[0]"));
    EXPECT_TRUE(Fails("pairs[1].marks[2]"));
    EXPECT_TRUE(Fails("pairs[0].marks[0]"));
    EXPECT_TRUE(Fails("levels[1].gain"));
    EXPECT_TRUE(Fails("names[2]"));
    CHAR out[128] = {};
    EXPECT_FALSE(m_record.GetValue(nullptr, out, sizeof(out)));
    EXPECT_FALSE(m_record.GetValue("id", nullptr, 8));
}

TEST_F(FixtureAccessorsTest, GetValueFailsWhenTheTextDoesNotFit)
{
    CHAR small[4] = {};
    EXPECT_FALSE(m_record.GetValue("name", small, sizeof(small)));
    EXPECT_FALSE(m_record.GetValue("big", small, sizeof(small)));
    CHAR exact[8] = {};
    EXPECT_TRUE(m_record.GetValue("name", exact, sizeof(exact)));
    EXPECT_STREQ(exact, "fixture");
}

TEST_F(FixtureAccessorsTest, SetValueConvertsToTheFieldType)
{
    EXPECT_TRUE(m_record.SetValue("table[2]", "3.5"));
    EXPECT_FLOAT_EQ(m_record.table[2], 3.5f);
    EXPECT_TRUE(m_record.SetValue("zones[0].zoneTrigger.start", "-4.25"));
    EXPECT_FLOAT_EQ(m_record.zones[0].zoneTrigger.start, -4.25f);
    EXPECT_TRUE(m_record.SetValue("id", "12.9"));
    EXPECT_EQ(m_record.id, 12);
    EXPECT_TRUE(m_record.SetValue("prio", "5"));
    EXPECT_EQ(m_record.prio, aecglobalelements::FixPrioMax);
    EXPECT_TRUE(m_record.SetValue("precise", "0.25"));
    EXPECT_DOUBLE_EQ(m_record.precise, 0.25);
    EXPECT_TRUE(m_record.SetValue("levels[0].steps[1]", "20"));
    EXPECT_EQ(m_record.levels[0].steps[1], 20u);
    EXPECT_TRUE(m_record.SetValue("grid[5]", "7"));
    EXPECT_FLOAT_EQ(m_record.grid[1][2], 7.0f);
    EXPECT_EQ(Get("grid[5]"), "7");
}

TEST_F(FixtureAccessorsTest, SetValueClampsValuesOutsideTheFieldRange)
{
    EXPECT_TRUE(m_record.SetValue("bytes[0]", "300"));
    EXPECT_EQ(m_record.bytes[0], 255);
    EXPECT_TRUE(m_record.SetValue("bytes[0]", "-1"));
    EXPECT_EQ(m_record.bytes[0], 0);
    EXPECT_TRUE(m_record.SetValue("id", "99999999999"));
    EXPECT_EQ(m_record.id, 2147483647);
    EXPECT_TRUE(m_record.SetValue("pairs[0].a", "-40000"));
    EXPECT_EQ(m_record.pairs[0].a, -32768);
}

TEST_F(FixtureAccessorsTest, SetValueRefusesTextsRecordsBadNumbersAndBadPaths)
{
    EXPECT_FALSE(m_record.SetValue("name", "other"));
    EXPECT_FALSE(m_record.SetValue("names[0]", "other"));
    EXPECT_FALSE(m_record.SetValue("range", "1"));
    EXPECT_FALSE(m_record.SetValue("table", "1"));
    EXPECT_FALSE(m_record.SetValue("id", "abc"));
    EXPECT_FALSE(m_record.SetValue("id", ""));
    EXPECT_FALSE(m_record.SetValue("nope", "1"));
    EXPECT_FALSE(m_record.SetValue("table[9]", "1"));
    EXPECT_FALSE(m_record.SetValue("zones[2].target", "1"));
    EXPECT_EQ(m_record.id, -7);
    EXPECT_STREQ(m_record.name, "fixture");
}

TEST_F(FixtureAccessorsTest, GetInfoWithoutPathListsEveryMember)
{
    PList<ParameterParserInfo> list;
    ASSERT_TRUE(m_record.GetInfo("", list));
    const CHAR* const names[] = {"module_version", "table", "zones", "name", "range", "prio", "prioByNumber", "id",
                                 "bytes", "label", "big", "ubig", "precise", "flag", "pairs", "levels", "grid",
                                 "oursOnly", "params", "names", "limits"};
    ASSERT_EQ(list.Count(), sizeof(names) / sizeof(names[0]));
    for (UINT32 i = 0; i < list.Count(); i++)
    {
        EXPECT_STREQ(list[i].Name, names[i]);
    }
    EXPECT_STREQ(list[1].Type, "Float");
    EXPECT_TRUE(list[1].isArray);
    EXPECT_FALSE(list[1].isPointer);
    EXPECT_EQ(list[1].Count, 4u);
    EXPECT_STREQ(list[2].Type, "Structure");
    EXPECT_TRUE(list[2].isArray);
    EXPECT_TRUE(list[2].isPointer);
    EXPECT_EQ(list[2].Count, 2u);
    EXPECT_STREQ(list[3].Type, "String");
    EXPECT_STREQ(list[3].Value, "fixture");
    EXPECT_STREQ(list[4].Type, "Structure");
    EXPECT_FALSE(list[4].isArray);
    EXPECT_STREQ(list[5].Type, "Enum");
    EXPECT_STREQ(list[5].Value, "1");
    EXPECT_STREQ(list[7].Type, "Int32");
    EXPECT_STREQ(list[7].Value, "-7");
    EXPECT_STREQ(list[10].Type, "Int64");
    EXPECT_STREQ(list[12].Type, "Double");
    EXPECT_STREQ(list[13].Type, "Bool");
    EXPECT_EQ(list[16].Count, 6u);
    EXPECT_STREQ(list[19].Type, "String");
    EXPECT_TRUE(list[19].isArray);
    EXPECT_EQ(list[19].Count, 2u);

    PList<ParameterParserInfo> nested;
    ASSERT_TRUE(m_record.GetInfo(nullptr, nested));
    EXPECT_EQ(nested.Count(), list.Count());
}

TEST_F(FixtureAccessorsTest, GetInfoWithPathDescribesTheAddressedMemberWithoutName)
{
    PList<ParameterParserInfo> list;
    ASSERT_TRUE(m_record.GetInfo("zones[1].target", list));
    ASSERT_EQ(list.Count(), 1u);
    EXPECT_STREQ(list[0].Name, "");
    EXPECT_STREQ(list[0].Type, "Float");
    EXPECT_STREQ(list[0].Value, "40.5");
    EXPECT_FALSE(list[0].isArray);

    ASSERT_TRUE(m_record.GetInfo("zones", list));
    ASSERT_EQ(list.Count(), 2u);
    EXPECT_STREQ(list[1].Name, "");
    EXPECT_TRUE(list[1].isArray);
    EXPECT_EQ(list[1].Count, 2u);

    ASSERT_TRUE(m_record.GetInfo("names[0]", list));
    EXPECT_STREQ(list[2].Value, "first");

    EXPECT_FALSE(m_record.GetInfo("nope", list));
    EXPECT_FALSE(m_record.GetInfo("zones[3]", list));
    EXPECT_FALSE(m_record.GetInfo("id.more", list));
    EXPECT_EQ(list.Count(), 3u);
}

TEST_F(FixtureAccessorsTest, GetInfoOfARecordListsItsMembers)
{
    PList<ParameterParserInfo> list;
    ASSERT_TRUE(m_record.GetInfo("zones[1]", list));
    ASSERT_EQ(list.Count(), 2u);
    EXPECT_STREQ(list[0].Name, "zoneTrigger");
    EXPECT_STREQ(list[0].Type, "Structure");
    EXPECT_STREQ(list[1].Name, "target");
    EXPECT_STREQ(list[1].Value, "40.5");

    ASSERT_TRUE(m_record.GetInfo("zones[1].zoneTrigger", list));
    ASSERT_EQ(list.Count(), 4u);
    EXPECT_STREQ(list[2].Name, "start");
    EXPECT_STREQ(list[3].Name, "end");
    EXPECT_STREQ(list[3].Value, "400");

    ASSERT_TRUE(m_record.GetInfo("pairs[1].marks[1]", list));
    ASSERT_EQ(list.Count(), 5u);
    EXPECT_STREQ(list[4].Name, "");
    EXPECT_STREQ(list[4].Type, "UInt8");
    EXPECT_STREQ(list[4].Value, "9");
}

TEST_F(FixtureAccessorsTest, UnloadWithoutSymbolTableFreesEveryBlockAndClearsTheMembers)
{
    m_record.Unload(nullptr);
    EXPECT_EQ(m_record.zones, nullptr);
    EXPECT_EQ(m_record.zonesCount, 0u);
    EXPECT_EQ(m_record.name, nullptr);
    EXPECT_EQ(m_record.pairs[1].marks, nullptr);
    EXPECT_EQ(m_record.pairs[1].marksCount, 0u);
    EXPECT_EQ(m_record.levels, nullptr);
    EXPECT_EQ(m_record.params, nullptr);
    EXPECT_EQ(m_record.names, nullptr);
    EXPECT_EQ(m_record.namesCount, 0u);
    EXPECT_EQ(m_record.limits.values, nullptr);
    // Values that are not blocks stay.
    EXPECT_EQ(m_record.id, -7);
}

TEST(FixtureModuleClassTest, NamesHashesAndVersionsComeFromRegistryAndSchema)
{
    EXPECT_STREQ(FixMeteringType::GetModuleName(), "FixMetering");
    EXPECT_EQ(FixMeteringType::GetModuleNameHash(), ParserCRC64::GetNameHash("FixMetering"));
    EXPECT_STREQ(fixEmpty::FixEmptyType::GetModuleName(), "FixEmpty");
    EXPECT_EQ(fixEmpty::FixEmptyType::GetModuleNameHash(), ParserCRC64::GetNameHash("FixEmpty"));
    EXPECT_EQ(FixMeteringTypeClass::SourceVersion, VersionUnion::Make(8, 0, 1));
    EXPECT_EQ(fixEmpty::FixEmptyTypeClass::SourceVersion, VersionUnion::Make(1, 2, 3));

    FixMeteringTypeClass prototype("FixMetering", nullptr);
    EXPECT_EQ(prototype.GetVersion(), FixMeteringTypeClass::SourceVersion);
    EXPECT_EQ(prototype.GetModuleNameHash(), FixMeteringType::GetModuleNameHash());
    EXPECT_STREQ(prototype.GetModuleName(), "FixMetering");
    EXPECT_FALSE(prototype.IsLoaded());
}

class FixtureCreateTest : public ::testing::Test
{
protected:
    ModuleData* Data(UINT32 id, UINT32 duplicateId, VersionUnion version, const CHAR* pName = "FixMetering")
    {
        m_pData[m_count] = new ModuleData(&m_modes, nullptr, nullptr, ParserCRC64::GetNameHash(pName), id,
                                          duplicateId, version, 0, nullptr);
        return m_pData[m_count++];
    }

    void TearDown() override
    {
        for (UINT32 i = 0; i < m_count; i++)
        {
            delete m_pData[i];
        }
    }

    CNoModes      m_modes;
    DefaultModule m_defaults{new FixMeteringTypeClass("FixMetering", nullptr)};
    ModuleData*   m_pData[8] = {};
    UINT32        m_count    = 0;
    CLogCapture   m_log;
};

TEST_F(FixtureCreateTest, AnotherVersionIsRefusedWhateverTheHash)
{
    EXPECT_EQ(m_defaults.Module->Create(Data(3, 0, VersionUnion::Make(8, 0, 2)), &m_defaults), nullptr);
    EXPECT_TRUE(m_log.Contains("Unable to create FixMeteringTypeClass, binary version (" +
                               std::to_string(VersionUnion::Make(8, 0, 2).Value) +
                               ") does not match source version (" +
                               std::to_string(VersionUnion::Make(8, 0, 1).Value) + ")"));
    m_log.Clear();
    EXPECT_EQ(m_defaults.Module->Create(Data(3, 0, VersionUnion::Make(7, 0, 1), "Other"), &m_defaults), nullptr);
    EXPECT_TRUE(m_log.Contains("Unable to create FixMeteringTypeClass, binary version ("));
    EXPECT_FALSE(m_log.Contains("binary name hash"));
    EXPECT_EQ(m_defaults.first, nullptr);
}

TEST_F(FixtureCreateTest, AnotherNameHashIsRefused)
{
    EXPECT_EQ(m_defaults.Module->Create(Data(3, 0, VersionUnion::Make(8, 0, 1), "Other"), &m_defaults), nullptr);
    CHAR expected[160];
    std::snprintf(expected, sizeof(expected),
                  "Unable to create FixMeteringTypeClass, binary name hash (0x%016llx) does not match source name "
                  "hash (0x%016llx)",
                  static_cast<unsigned long long>(ParserCRC64::GetNameHash("Other")),
                  static_cast<unsigned long long>(ParserCRC64::GetNameHash("FixMetering")));
    EXPECT_TRUE(m_log.Contains(expected));
    EXPECT_EQ(m_defaults.first, nullptr);
}

TEST_F(FixtureCreateTest, OneDuplicateIdGivesOneInstanceKeyedByIt)
{
    ParameterModule* pFirst  = m_defaults.Module->Create(Data(4, 2, FixMeteringTypeClass::SourceVersion), &m_defaults);
    ParameterModule* pSecond = m_defaults.Module->Create(Data(7, 2, FixMeteringTypeClass::SourceVersion), &m_defaults);
    ASSERT_NE(pFirst, nullptr);
    EXPECT_EQ(pFirst, pSecond);
    EXPECT_EQ(pFirst->GetKey(), 2u);
    EXPECT_EQ(static_cast<FixMeteringTypeClass*>(pFirst)->SymbolTableID, 2u);
    EXPECT_STREQ(pFirst->GetModuleName(), "FixMetering");

    // Without a duplicate ID the entry's own ID is the key.
    ParameterModule* pThird = m_defaults.Module->Create(Data(9, 0, FixMeteringTypeClass::SourceVersion), &m_defaults);
    ASSERT_NE(pThird, nullptr);
    EXPECT_NE(pThird, pFirst);
    EXPECT_EQ(pThird->GetKey(), 9u);
    EXPECT_EQ(pThird->GetData()->ID, 9u);
}

TEST_F(FixtureCreateTest, CreateWithoutDataOrDefaultsIsRefused)
{
    EXPECT_EQ(m_defaults.Module->Create(nullptr, &m_defaults), nullptr);
    EXPECT_EQ(m_defaults.Module->Create(Data(1, 0, FixMeteringTypeClass::SourceVersion), nullptr), nullptr);
    EXPECT_TRUE(m_log.Contains("FixMeteringTypeClass::Create called with nullptr data or default module"));
}

TEST_F(FixtureCreateTest, SetValueCountsChangesInTheKeysTopByte)
{
    auto* pModule = static_cast<FixMeteringTypeClass*>(
        m_defaults.Module->Create(Data(5, 0, FixMeteringTypeClass::SourceVersion), &m_defaults));
    ASSERT_NE(pModule, nullptr);
    const UINT32 before = pModule->GetModifiedCount();
    ASSERT_TRUE(pModule->SetValue("table[0]", "2"));
    EXPECT_EQ(pModule->GetKey(), 0x01000005u);
    EXPECT_EQ(pModule->SymbolTableID, 0x01000005u);
    EXPECT_EQ(pModule->GetModifiedCount(), before + 1);
    EXPECT_EQ(pModule->GetModified(), before + 1);
    CHAR out[32];
    ASSERT_TRUE(pModule->GetValue("table[0]", out, sizeof(out)));
    EXPECT_STREQ(out, "2");

    pModule->SetKey(0xFF000005u);
    ASSERT_TRUE(pModule->SetValue("table[0]", "3"));
    EXPECT_EQ(pModule->GetKey(), 0x01000005u);
    EXPECT_EQ(pModule->SymbolTableID, 0x01000005u);

    // A refused change changes nothing.
    EXPECT_FALSE(pModule->SetValue("nope", "3"));
    EXPECT_EQ(pModule->GetKey(), 0x01000005u);
    EXPECT_EQ(pModule->GetModifiedCount(), before + 2);

    PList<ParameterParserInfo> list;
    EXPECT_TRUE(pModule->GetInfo("table[0]", list));
    EXPECT_STREQ(list[0].Value, "3");
    EXPECT_TRUE(pModule->UnloadModule());
}

} // namespace
