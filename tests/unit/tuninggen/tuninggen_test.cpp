// Layout and default values of records generated from the fixture schema in fixtures/.
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

TEST(TuningGenDefaultsModuleTest, TableNamesEveryModuleWithVersionAndFiller)
{
    ASSERT_EQ(g_aecDefaultTuningModules.size(), 2u);
    const AECDefaultTuningModule& empty = g_aecDefaultTuningModules[0];
    EXPECT_STREQ(empty.pNamespace, "fixEmpty");
    EXPECT_STREQ(empty.pName, "FixEmptyType");
    EXPECT_EQ(empty.versionMajor, 1u);
    EXPECT_EQ(empty.versionMinor, 2u);
    EXPECT_EQ(empty.versionPatch, 3u);
    EXPECT_EQ(empty.size, sizeof(fixEmpty::FixEmptyType));

    const AECDefaultTuningModule& metering = g_aecDefaultTuningModules[1];
    EXPECT_STREQ(metering.pName, "FixMeteringType");
    EXPECT_EQ(metering.versionMajor, 8u);
    EXPECT_EQ(metering.versionMinor, 0u);
    EXPECT_EQ(metering.versionPatch, 1u);
    ASSERT_EQ(metering.size, sizeof(FixMeteringType));
    FixMeteringType generic;
    memset(&generic, 0x11, sizeof(generic));
    metering.pfnFillDefault(&generic);
    FixMeteringType direct;
    FillDefaultFixMeteringType(&direct);
    EXPECT_EQ(memcmp(&generic, &direct, sizeof(generic)), 0);
}
} // namespace
