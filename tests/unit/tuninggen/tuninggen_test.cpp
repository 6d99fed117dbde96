// Layout, default values and default storages of records generated from the fixture schema in fixtures/.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>

#include "aecdefaulttuning.h"
#include "aectuningrecords.h"
#include "tuning_fixmetering.h"

namespace
{
using fixMetering::FixMeteringType;

// offsetof on every field in schema order must rise: the generator keeps the declared member order.
TEST(TuningGenLayoutTest, ModuleStartsWithSymbolTableIDAndKeepsMemberOrder)
{
    static_assert(std::is_same_v<decltype(FixMeteringType::SymbolTableID), UINT32>);
    EXPECT_EQ(offsetof(FixMeteringType, SymbolTableID), 0u);
    const size_t offsets[] = {
        offsetof(FixMeteringType, SymbolTableID), offsetof(FixMeteringType, module_version),
        offsetof(FixMeteringType, table),         offsetof(FixMeteringType, zonesCount),
        offsetof(FixMeteringType, zonesID),       offsetof(FixMeteringType, zones),
        offsetof(FixMeteringType, name),          offsetof(FixMeteringType, range),
        offsetof(FixMeteringType, prio),          offsetof(FixMeteringType, prioByNumber),
        offsetof(FixMeteringType, id),            offsetof(FixMeteringType, bytes),
        offsetof(FixMeteringType, label),         offsetof(FixMeteringType, big),
        offsetof(FixMeteringType, ubig),          offsetof(FixMeteringType, precise),
        offsetof(FixMeteringType, flag),          offsetof(FixMeteringType, pairs),
        offsetof(FixMeteringType, levelsCount),   offsetof(FixMeteringType, levelsID),
        offsetof(FixMeteringType, levels),        offsetof(FixMeteringType, grid),
        offsetof(FixMeteringType, oursOnly),      offsetof(FixMeteringType, paramsCount),
        offsetof(FixMeteringType, paramsID),      offsetof(FixMeteringType, params),
        offsetof(FixMeteringType, namesCount),    offsetof(FixMeteringType, namesID),
        offsetof(FixMeteringType, names),
    };
    for (size_t i = 1; i < sizeof(offsets) / sizeof(offsets[0]); ++i)
    {
        EXPECT_LT(offsets[i - 1], offsets[i]) << "field " << i;
    }
}

TEST(TuningGenLayoutTest, VariableArrayIsCountIdPointerTriple)
{
    static_assert(std::is_same_v<decltype(FixMeteringType::zonesCount), UINT32>);
    static_assert(std::is_same_v<decltype(FixMeteringType::zonesID), UINT32>);
    static_assert(std::is_same_v<decltype(FixMeteringType::zones), fixMetering::FixZoneType*>);
    static_assert(std::is_same_v<decltype(FixMeteringType::names), CHAR**>);
    static_assert(std::is_same_v<decltype(statsglobalelements::FixExtensionParamType::data), FLOAT*>);
    EXPECT_EQ(offsetof(FixMeteringType, zonesID), offsetof(FixMeteringType, zonesCount) + sizeof(UINT32));
    EXPECT_LT(offsetof(FixMeteringType, zonesID), offsetof(FixMeteringType, zones));
}

TEST(TuningGenLayoutTest, NestedRecordsAreStructTypesInsideTheirOwner)
{
    static_assert(std::is_same_v<decltype(FixMeteringType::module_version), FixMeteringType::module_versionStruct>);
    static_assert(std::is_same_v<decltype(FixMeteringType::pairs), FixMeteringType::pairsStruct[2]>);
    static_assert(std::is_same_v<decltype(FixMeteringType::levels), FixMeteringType::levelsStruct*>);
    static_assert(std::is_same_v<decltype(FixMeteringType::levelsStruct::steps), UINT32*>);
    // A version record declared @symbol starts with its own SymbolTableID.
    EXPECT_EQ(offsetof(FixMeteringType::module_versionStruct, SymbolTableID), 0u);
    EXPECT_LT(offsetof(FixMeteringType::module_versionStruct, major_revision),
              offsetof(FixMeteringType::module_versionStruct, incr_revision));
}

TEST(TuningGenLayoutTest, ScalarTypesFollowTheSchema)
{
    static_assert(std::is_same_v<decltype(FixMeteringType::name), CHAR*>);
    static_assert(std::is_same_v<decltype(FixMeteringType::range), aecglobalelements::FixRangeType>);
    static_assert(std::is_same_v<decltype(FixMeteringType::prio), aecglobalelements::FixPrioType>);
    static_assert(std::is_same_v<std::underlying_type_t<aecglobalelements::FixPrioType>, INT32>);
    static_assert(std::is_same_v<aecglobalelements::FixIDType, INT32>);
    static_assert(std::is_same_v<decltype(FixMeteringType::grid), FLOAT[2][3]>);
    static_assert(std::is_same_v<decltype(FixMeteringType::label), CHAR[8]>);
    static_assert(std::is_same_v<decltype(FixMeteringType::flag), BOOL>);
    static_assert(std::is_trivial_v<FixMeteringType> && std::is_standard_layout_v<FixMeteringType>);
    SUCCEED();
}

class TuningGenDefaultsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // Garbage first: the filler must zero everything it does not set.
        memset(&m_module, 0xA5, sizeof(m_module));
        FillDefaultFixMeteringType(&m_module);
    }

    FixMeteringType m_module;
};

TEST_F(TuningGenDefaultsTest, ScalarsArraysAndEnums)
{
    EXPECT_EQ(m_module.SymbolTableID, 0u);
    EXPECT_EQ(m_module.module_version.SymbolTableID, 0u);
    EXPECT_EQ(m_module.module_version.major_revision, 8);
    EXPECT_EQ(m_module.module_version.minor_revision, 0);
    EXPECT_EQ(m_module.module_version.incr_revision, 1);
    EXPECT_FLOAT_EQ(m_module.table[0], 0.25f);
    EXPECT_FLOAT_EQ(m_module.table[1], 0.5f);
    EXPECT_EQ(m_module.table[2], 0.0f);  // a short array fills the leading elements only
    EXPECT_EQ(m_module.table[3], 0.0f);
    EXPECT_STREQ(m_module.name, "fixture");
    EXPECT_FLOAT_EQ(m_module.range.start, 1.5f);
    EXPECT_FLOAT_EQ(m_module.range.end, 2.5f);
    EXPECT_EQ(m_module.prio, aecglobalelements::FixPrioTime);
    EXPECT_EQ(m_module.prioByNumber, aecglobalelements::FixPrioMax);
    EXPECT_EQ(m_module.id, -7);
    EXPECT_EQ(m_module.bytes[0], 1u);
    EXPECT_EQ(m_module.bytes[1], 255u);
    EXPECT_EQ(m_module.bytes[2], 0u);
    EXPECT_STREQ(m_module.label, "abc");
    EXPECT_EQ(m_module.label[7], '\0');
    EXPECT_EQ(m_module.big, INT64_MIN);
    EXPECT_EQ(m_module.ubig, UINT64_MAX);
    EXPECT_DOUBLE_EQ(m_module.precise, 0.1);
    EXPECT_EQ(m_module.flag, 1);
    EXPECT_FLOAT_EQ(m_module.grid[0][2], 3.0f);
    EXPECT_FLOAT_EQ(m_module.grid[1][0], 4.0f);
    EXPECT_EQ(m_module.grid[1][1], 0.0f);
    EXPECT_FLOAT_EQ(m_module.oursOnly, 3.0f);
    EXPECT_EQ(m_module.pairs[0].a, -3);
    EXPECT_FLOAT_EQ(m_module.pairs[0].b[1], 1.5f);
    EXPECT_EQ(m_module.pairs[1].a, 0);  // the second pair is not given
}

TEST_F(TuningGenDefaultsTest, VariableArraysPointToTheirElements)
{
    ASSERT_EQ(m_module.zonesCount, 2u);
    EXPECT_EQ(m_module.zonesID, 2u);
    ASSERT_NE(m_module.zones, nullptr);
    EXPECT_FLOAT_EQ(m_module.zones[0].zoneTrigger.end, 120.0f);
    EXPECT_FLOAT_EQ(m_module.zones[0].target, 55.0f);
    EXPECT_FLOAT_EQ(m_module.zones[1].zoneTrigger.start, 120.0f);
    EXPECT_FLOAT_EQ(m_module.zones[1].target, 40.5f);

    ASSERT_EQ(m_module.levelsCount, 2u);
    ASSERT_EQ(m_module.levels[0].stepsCount, 3u);
    EXPECT_EQ(m_module.levels[0].steps[2], 3u);
    EXPECT_EQ(m_module.levels[1].stepsCount, 0u);  // an empty array stays null
    EXPECT_EQ(m_module.levels[1].steps, nullptr);

    ASSERT_EQ(m_module.paramsCount, 1u);
    EXPECT_EQ(m_module.params[0].ID, 1);
    EXPECT_STREQ(m_module.params[0].Name, "Depth AEC");
    ASSERT_EQ(m_module.params[0].dataCount, 2u);
    EXPECT_FLOAT_EQ(m_module.params[0].data[1], 2.0f);

    ASSERT_EQ(m_module.namesCount, 2u);
    EXPECT_STREQ(m_module.names[1], "second \"quoted\"");

    ASSERT_EQ(m_module.pairs[0].marksCount, 2u);
    EXPECT_EQ(m_module.pairs[0].marks[1], 9u);
    EXPECT_EQ(m_module.pairs[1].marks, nullptr);
    ASSERT_EQ(m_module.limits.valuesCount, 2u);
    EXPECT_EQ(m_module.limits.values[0], -2);
}

TEST_F(TuningGenDefaultsTest, FillingTwiceGivesTheSameBytes)
{
    FixMeteringType again;
    memset(&again, 0x5A, sizeof(again));
    FillDefaultFixMeteringType(&again);
    EXPECT_EQ(memcmp(&again, &m_module, sizeof(again)), 0);
}

TEST(TuningGenDefaultsModuleTest, ModuleWithoutDefaultsIsZeroFilled)
{
    fixEmpty::FixEmptyType module;
    memset(&module, 0xA5, sizeof(module));
    FillDefaultFixEmptyType(&module);
    fixEmpty::FixEmptyType zero;
    memset(&zero, 0, sizeof(zero));
    EXPECT_EQ(memcmp(&module, &zero, sizeof(module)), 0);
}

TEST(TuningGenDefaultsModuleTest, NullModuleIsIgnored)
{
    FillDefaultFixMeteringType(nullptr);
    FillDefaultFixEmptyType(nullptr);
    SUCCEED();
}

TEST(TuningGenDefaultsModuleTest, RecordsOfTheRecordFillerShareTheirArrays)
{
    FixMeteringType first;
    FixMeteringType second;
    FillDefaultFixMeteringType(&first);
    FillDefaultFixMeteringType(&second);
    EXPECT_EQ(first.zones, second.zones);
    EXPECT_EQ(first.levels[0].steps, second.levels[0].steps);
}

TEST(TuningGenDefaultsModuleTest, TableNamesEveryModuleWithVersionAndStorage)
{
    ASSERT_EQ(g_aecDefaultTuningModules.size(), 2u);
    const AECDefaultTuningModule& empty = g_aecDefaultTuningModules[0];
    EXPECT_STREQ(empty.pNamespace, "fixEmpty");
    EXPECT_STREQ(empty.pName, "FixEmptyType");
    EXPECT_EQ(empty.versionMajor, 1u);
    EXPECT_EQ(empty.versionMinor, 2u);
    EXPECT_EQ(empty.versionPatch, 3u);
    EXPECT_EQ(empty.size, sizeof(fixEmpty::FixEmptyType));
    EXPECT_EQ(empty.storageSize, sizeof(FixEmptyTypeDefaultStorage));
    EXPECT_EQ(empty.storageAlignment, alignof(FixEmptyTypeDefaultStorage));

    const AECDefaultTuningModule& metering = g_aecDefaultTuningModules[1];
    EXPECT_STREQ(metering.pName, "FixMeteringType");
    EXPECT_EQ(metering.versionMajor, 8u);
    EXPECT_EQ(metering.versionMinor, 0u);
    EXPECT_EQ(metering.versionPatch, 1u);
    EXPECT_EQ(metering.size, sizeof(FixMeteringType));
    ASSERT_EQ(metering.storageSize, sizeof(FixMeteringTypeDefaultStorage));
    EXPECT_EQ(metering.storageAlignment, alignof(FixMeteringTypeDefaultStorage));
    FixMeteringTypeDefaultStorage generic;
    memset(&generic, 0x11, sizeof(generic));
    metering.pfnFillDefaultStorage(&generic);
    EXPECT_EQ(generic.module.zones, generic.zones);
    EXPECT_FLOAT_EQ(generic.module.zones[1].target, 40.5f);
}

// ---- Default storages: every owner has its own arrays ----

class TuningGenStorageTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        memset(&m_first, 0xA5, sizeof(m_first));
        memset(&m_second, 0x5A, sizeof(m_second));
        FillDefaultFixMeteringTypeStorage(&m_first);
        FillDefaultFixMeteringTypeStorage(&m_second);
    }

    // Every pointer of the storage's record (nested ones too) leads to the matching array of that storage.
    static void ExpectPointersIntoOwnStorage(const FixMeteringTypeDefaultStorage& rStorage)
    {
        const FixMeteringType& rModule = rStorage.module;
        EXPECT_EQ(static_cast<const void*>(&rModule), static_cast<const void*>(&rStorage)) << "the record comes first";
        EXPECT_EQ(rModule.zones, rStorage.zones);
        EXPECT_EQ(rModule.name, rStorage.name);
        EXPECT_EQ(rModule.pairs[0].marks, rStorage.pairs_0_marks);
        EXPECT_EQ(rModule.pairs[1].marks, nullptr) << "an array without elements stays null";
        EXPECT_EQ(rModule.levels, rStorage.levels);
        EXPECT_EQ(rModule.levels[0].steps, rStorage.levels_0_steps);
        EXPECT_EQ(rModule.levels[1].steps, nullptr);
        EXPECT_EQ(rModule.params, rStorage.params);
        EXPECT_EQ(rModule.params[0].Name, rStorage.params_0_Name);
        EXPECT_EQ(rModule.params[0].data, rStorage.params_0_data);
        EXPECT_EQ(rModule.names, rStorage.names);
        EXPECT_EQ(rModule.names[0], rStorage.names_0);
        EXPECT_EQ(rModule.names[1], rStorage.names_1);
        EXPECT_EQ(rModule.limits.values, rStorage.limits_values);
    }

    // The values of a storage against the record filler's: the same defaults, wherever they are kept.
    static void ExpectDefaults(const FixMeteringTypeDefaultStorage& rStorage)
    {
        FixMeteringType expected;
        FillDefaultFixMeteringType(&expected);
        const FixMeteringType& rModule = rStorage.module;
        for (UINT32 i = 0; i < expected.zonesCount; i++)
        {
            EXPECT_FLOAT_EQ(rModule.zones[i].zoneTrigger.start, expected.zones[i].zoneTrigger.start);
            EXPECT_FLOAT_EQ(rModule.zones[i].target, expected.zones[i].target);
        }
        EXPECT_STREQ(rModule.name, expected.name);
        EXPECT_EQ(memcmp(rModule.pairs[0].marks, expected.pairs[0].marks, 2), 0);
        EXPECT_FLOAT_EQ(rModule.levels[0].gain, expected.levels[0].gain);
        EXPECT_EQ(memcmp(rModule.levels[0].steps, expected.levels[0].steps, 3 * sizeof(UINT32)), 0);
        EXPECT_STREQ(rModule.params[0].Name, expected.params[0].Name);
        EXPECT_FLOAT_EQ(rModule.params[0].data[1], expected.params[0].data[1]);
        EXPECT_STREQ(rModule.names[0], expected.names[0]);
        EXPECT_STREQ(rModule.names[1], expected.names[1]);
        EXPECT_EQ(rModule.limits.values[1], expected.limits.values[1]);

        // Apart from its pointers the record is the record filler's, byte for byte.
        FixMeteringType relinked;
        memcpy(&relinked, &rModule, sizeof(relinked));
        relinked.zones           = expected.zones;
        relinked.name            = expected.name;
        relinked.pairs[0].marks  = expected.pairs[0].marks;
        relinked.levels          = expected.levels;
        relinked.params          = expected.params;
        relinked.names           = expected.names;
        relinked.limits.values   = expected.limits.values;
        EXPECT_EQ(memcmp(&relinked, &expected, sizeof(expected)), 0);
    }

    FixMeteringTypeDefaultStorage m_first;
    FixMeteringTypeDefaultStorage m_second;
};

TEST_F(TuningGenStorageTest, PointersLeadIntoTheirOwnStorage)
{
    ExpectPointersIntoOwnStorage(m_first);
    ExpectPointersIntoOwnStorage(m_second);
    ExpectDefaults(m_first);
    ExpectDefaults(m_second);
}

TEST_F(TuningGenStorageTest, WritesIntoOneStorageReachNeitherAnotherNorALaterOne)
{
    // Through the record's pointers, as the library writes into its tuning.
    FixMeteringType& rFirst = m_first.module;
    rFirst.zones[1].target   = -1.0f;
    rFirst.name[0]           = 'X';
    rFirst.pairs[0].marks[1] = 0;
    rFirst.levels[0].steps[2] = 99;
    rFirst.params[0].Name[0]  = 'x';
    rFirst.params[0].data[1]  = -5.0f;
    rFirst.names[1][0]        = 'S';
    rFirst.limits.values[0]   = 100;

    ExpectDefaults(m_second);
    FixMeteringTypeDefaultStorage later;
    FillDefaultFixMeteringTypeStorage(&later);
    ExpectDefaults(later);
    EXPECT_FLOAT_EQ(m_second.module.zones[1].target, 40.5f);
    EXPECT_EQ(m_second.module.levels[0].steps[2], 3u);
    EXPECT_STREQ(m_second.module.names[1], "second \"quoted\"");
    EXPECT_EQ(later.module.limits.values[0], -2);
}

TEST_F(TuningGenStorageTest, RefillingRestoresTheDefaults)
{
    m_first.module.zones[0].target = 0.0f;
    m_first.module.zones           = nullptr;
    FillDefaultFixMeteringTypeStorage(&m_first);
    ExpectPointersIntoOwnStorage(m_first);
    ExpectDefaults(m_first);
}

TEST(TuningGenStorageModuleTest, ModuleWithoutDefaultsHasAZeroStorage)
{
    FixEmptyTypeDefaultStorage storage;
    memset(&storage, 0xA5, sizeof(storage));
    FillDefaultFixEmptyTypeStorage(&storage);
    FixEmptyTypeDefaultStorage zero;
    memset(&zero, 0, sizeof(zero));
    EXPECT_EQ(memcmp(&storage, &zero, sizeof(storage)), 0);
}

TEST(TuningGenStorageModuleTest, NullStorageIsIgnored)
{
    FillDefaultFixMeteringTypeStorage(nullptr);
    FillDefaultFixEmptyTypeStorage(nullptr);
    SUCCEED();
}
} // namespace
