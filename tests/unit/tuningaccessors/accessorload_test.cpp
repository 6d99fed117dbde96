// Generated accessors on real parameter files: members land in their fields, values by text, shared instances and
// modules of another version.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tools/aectune/tunetesthelpers.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning_aecmetering_module.h"
#include "tuning_aecparamextension_module.h"
#include "tuning_aecskip_module.h"
#include "unit/tuningparser/clogcapture.h"

namespace
{

// Types that the sources below declare; members that a source leaves out are missing from its file.
const CHAR* const s_types = R"(
  "types": [
    { "name": "aecMetering::AECBayerGridSubsmplType", "enum": { "Off": 0, "SW2": 1, "SW4": 2 } },
    { "name": "aecglobalelements::TriggerPointType",
      "members": [ { "name": "start", "type": "FLOAT" }, { "name": "end", "type": "FLOAT" } ] },
    { "name": "aecglobalelements::StartEndType",
      "members": [ { "name": "start", "type": "FLOAT" }, { "name": "end", "type": "FLOAT" } ] },
    { "name": "aecMetering::RgnAdjZoneDataType",
      "members": [ { "name": "thresBrightRgn", "type": "aecglobalelements::TriggerPointType" },
                   { "name": "thresDarkRgn", "type": "aecglobalelements::StartEndType" },
                   { "name": "weightBrightRgnAdj", "type": "FLOAT" },
                   { "name": "weightDarkRgnAdj", "type": "FLOAT" } ] },
    { "name": "aecMetering::RgnAdjZoneType",
      "members": [ { "name": "zoneTrigger", "type": "aecglobalelements::TriggerPointType" },
                   { "name": "zoneData", "type": "aecMetering::RgnAdjZoneDataType" } ] },
    { "name": "statsglobalelements::statsExtensionParamType",
      "members": [ { "name": "ID", "type": "INT32" }, { "name": "Name", "type": "STRING" },
                   { "name": "enableFlag", "type": "BOOL" }, { "name": "data", "type": "FLOAT[]" } ] },
    { "name": "aecSkip::DFSSkipCountZoneDataType",
      "members": [ { "name": "DFSSkipCount", "type": "INT32" },
                   { "name": "DFSMinSettleThreshold", "type": "INT32" } ] },
    { "name": "aecSkip::DFSSkipCountZoneType",
      "members": [ { "name": "zoneTrigger", "type": "aecglobalelements::TriggerPointType" },
                   { "name": "zoneData", "type": "aecSkip::DFSSkipCountZoneDataType" } ] }
  ],
  "modeTables": [ { "name": "Main", "modes": [ { "mode": "Usecase.Video" }, { "mode": "Usecase.Snapshot" } ] } ],
)";

const CHAR* const s_versionMembers = R"(
        { "name": "module_version", "members": [ { "name": "major_revision", "type": "INT32" },
            { "name": "minor_revision", "type": "INT32" }, { "name": "incr_revision", "type": "INT32" } ] },
        { "name": "parameter_version", "members": [ { "name": "revision", "type": "STRING" } ] },
)";

// Metering without mtrTables, mtrLumaTarget and indexCalc.enableLuxIndexComp.
std::string MeteringModule(const std::string& version)
{
    return std::string(R"(
    { "name": "Metering", "type": "aecMetering::AECCoreMeteringType", "version": ")") + version + R"(",
      "members": [)" + s_versionMembers + R"(
        { "name": "mtrLumaCalc", "members": [
            { "name": "lumaWeight", "members": [ { "name": "weight", "type": "FLOAT[3]" },
                { "name": "enableColorAndSensorComp", "type": "BOOL" }, { "name": "refGain", "type": "FLOAT[3]" } ] },
            { "name": "indexCalc", "members": [
                { "name": "bayerGridSubsmplSelect", "type": "aecMetering::AECBayerGridSubsmplType" },
                { "name": "refSensitivityForExpIndexZero", "type": "FLOAT" },
                { "name": "luxIndexFilterFactor", "type": "FLOAT" } ] },
            { "name": "enableBinGrouping", "type": "BOOL" },
            { "name": "lumaRgnAdj", "members": [ { "name": "enableBrightRgnAdj", "type": "BOOL" },
                { "name": "maxStatsPctForDark", "type": "FLOAT" },
                { "name": "rgnAdjZone", "type": "aecMetering::RgnAdjZoneType[]" } ] } ] } ],
      "values": { "Default": {
        "module_version": { "major_revision": 8, "minor_revision": 0, "incr_revision": 1 },
        "parameter_version": { "revision": "metering 3" },
        "mtrLumaCalc": {
          "lumaWeight": { "weight": [0.25, 0.5, 0.25], "enableColorAndSensorComp": true, "refGain": [1.5, 1.0, 2.0] },
          "indexCalc": { "bayerGridSubsmplSelect": "SW4", "refSensitivityForExpIndexZero": 0.25,
                         "luxIndexFilterFactor": 0.5 },
          "enableBinGrouping": 1,
          "lumaRgnAdj": { "enableBrightRgnAdj": true, "maxStatsPctForDark": 0.75, "rgnAdjZone": [
            { "zoneTrigger": { "start": 0, "end": 200 },
              "zoneData": { "thresBrightRgn": { "start": 200, "end": 240 }, "thresDarkRgn": { "start": 10, "end": 20 },
                            "weightBrightRgnAdj": 0.5, "weightDarkRgnAdj": 0.75 } },
            { "zoneTrigger": { "start": 200, "end": 400 }, "zoneData": { "weightBrightRgnAdj": 0.25 } } ] } } } } })";
}

// The same values in Default and Video (one data block, one instance); Snapshot differs in one ID.
const CHAR* const s_extensionModule = R"(
    { "name": "AECParamExtension", "type": "aecParamExtension::ParamExtensionType", "version": "1.0.0",
      "members": [ { "name": "extensionParam", "type": "statsglobalelements::statsExtensionParamType[]" } ],
      "values": {
        "Default": { "extensionParam": [ { "ID": 1, "Name": "Depth AEC", "enableFlag": true, "data": [1.5, 2.5] },
                                         { "ID": 2, "Name": "Night", "data": [] } ] },
        "Usecase.Video": { "extensionParam": [ { "ID": 1, "Name": "Depth AEC", "enableFlag": true,
                                                 "data": [1.5, 2.5] },
                                               { "ID": 2, "Name": "Night", "data": [] } ] },
        "Usecase.Snapshot": { "extensionParam": [ { "ID": 1, "Name": "Depth AEC", "enableFlag": true,
                                                    "data": [1.5, 2.5] },
                                                  { "ID": 3, "Name": "Night", "data": [] } ] } } })";

const CHAR* const s_skipModule = R"(
    { "name": "aecSkipCtrl", "type": "aecSkip::AECSkipCtrlType", "version": "1.0.0",
      "members": [ { "name": "DFSEnable", "type": "BOOL" }, { "name": "DFSExpIndexTolerance", "type": "FLOAT" },
                   { "name": "DFSSkipCountZone", "type": "aecSkip::DFSSkipCountZoneType[]" } ],
      "values": { "Default": { "DFSEnable": true, "DFSExpIndexTolerance": 2.5, "DFSSkipCountZone": [
          { "zoneTrigger": { "start": 1, "end": 2 },
            "zoneData": { "DFSSkipCount": 3, "DFSMinSettleThreshold": 4 } } ] } } })";

std::vector<UINT8> Compile(const std::vector<std::string>& modules)
{
    std::string text = std::string("{") + s_types + "\"modules\": [";
    for (size_t i = 0; i < modules.size(); i++)
    {
        text += ((0 == i) ? "" : ",") + modules[i];
    }
    text += "] }";
    std::vector<UINT8> file;
    std::string        messages;
    EXPECT_TRUE(AecTuneTest::Compile(text, "7.0.0", true, 0, &file, &messages)) << messages;
    return file;
}

TuningMode Branch(ModeType mode, UINT16 subMode)
{
    TuningMode selector    = {};
    selector.mode          = mode;
    selector.subMode.value = subMode;
    return selector;
}

const TuningMode s_default[]  = {Branch(ModeType::Default, 0)};
const TuningMode s_video[]    = {Branch(ModeType::Default, 0), Branch(ModeType::Usecase, 2)};
const TuningMode s_snapshot[] = {Branch(ModeType::Default, 0), Branch(ModeType::Usecase, 1)};

// A plain store with the prototypes of the three modules under their registered names.
class AccessorLoadTest : public ::testing::Test
{
protected:
    bool Load(const std::vector<std::string>& modules)
    {
        m_file = Compile(modules);
        m_pManager.reset(new ParameterSetManager(nullptr, 0, "accessors"));
        m_pManager->AddDefaultModule(new aecMetering::AECCoreMeteringTypeClass("Metering", nullptr));
        m_pManager->AddDefaultModule(new aecParamExtension::ParamExtensionTypeClass("AECParamExtension", nullptr));
        m_pManager->AddDefaultModule(new aecSkip::AECSkipCtrlTypeClass("aecSkipCtrl", nullptr));
        return !m_file.empty() && m_pManager->LoadBinaryParameters(m_file.data(), m_file.size());
    }

    template <typename TClass>
    TClass* Get(const CHAR* pName, const TuningMode* pBranch, UINT32 count)
    {
        ParameterModule* pModule = m_pManager->GetModuleInternal(0, pName, pBranch, count, nullptr, 1);
        if (nullptr != pModule)
        {
            m_held.push_back(pModule);
        }
        return static_cast<TClass*>(pModule);
    }

    void TearDown() override
    {
        for (ParameterModule* pModule : m_held)
        {
            m_pManager->ReleaseModule(pModule);
        }
        m_pManager.reset();
    }

    std::string Value(ParameterModule* pModule, const CHAR* pPath)
    {
        CHAR out[256] = {};
        EXPECT_TRUE(pModule->GetValue(pPath, out, sizeof(out))) << pPath;
        return out;
    }

    bool Fails(ParameterModule* pModule, const CHAR* pPath)
    {
        CHAR out[256] = {};
        return !pModule->GetValue(pPath, out, sizeof(out));
    }

    CLogCapture                          m_log;
    std::vector<UINT8>                   m_file;
    std::unique_ptr<ParameterSetManager> m_pManager;
    std::vector<ParameterModule*>        m_held;
};

TEST_F(AccessorLoadTest, MeteringValuesLandInTheirFieldsAndMissingMembersAreZero)
{
    ASSERT_TRUE(Load({MeteringModule("8.0.1")}));
    auto* pMetering = Get<aecMetering::AECCoreMeteringTypeClass>("Metering", s_default, 1);
    ASSERT_NE(pMetering, nullptr);
    const aecMetering::AECCoreMeteringType& record = *pMetering;
    EXPECT_EQ(record.module_version.major_revision, 8);
    EXPECT_EQ(record.module_version.incr_revision, 1);
    ASSERT_NE(record.parameter_version.revision, nullptr);
    EXPECT_STREQ(record.parameter_version.revision, "metering 3");
    EXPECT_FLOAT_EQ(record.mtrLumaCalc.lumaWeight.weight[1], 0.5f);
    EXPECT_EQ(record.mtrLumaCalc.lumaWeight.enableColorAndSensorComp, 1);
    EXPECT_FLOAT_EQ(record.mtrLumaCalc.lumaWeight.refGain[2], 2.0f);
    EXPECT_EQ(record.mtrLumaCalc.indexCalc.bayerGridSubsmplSelect, aecMetering::SW4);
    EXPECT_FLOAT_EQ(record.mtrLumaCalc.indexCalc.refSensitivityForExpIndexZero, 0.25f);
    EXPECT_FLOAT_EQ(record.mtrLumaCalc.indexCalc.luxIndexFilterFactor, 0.5f);
    EXPECT_EQ(record.mtrLumaCalc.enableBinGrouping, 1);
    EXPECT_FLOAT_EQ(record.mtrLumaCalc.lumaRgnAdj.maxStatsPctForDark, 0.75f);
    ASSERT_EQ(record.mtrLumaCalc.lumaRgnAdj.rgnAdjZoneCount, 2u);
    EXPECT_EQ(record.mtrLumaCalc.lumaRgnAdj.rgnAdjZoneID, 2u);
    EXPECT_FLOAT_EQ(record.mtrLumaCalc.lumaRgnAdj.rgnAdjZone[0].zoneData.thresBrightRgn.end, 240.0f);
    EXPECT_FLOAT_EQ(record.mtrLumaCalc.lumaRgnAdj.rgnAdjZone[0].zoneData.weightDarkRgnAdj, 0.75f);
    EXPECT_FLOAT_EQ(record.mtrLumaCalc.lumaRgnAdj.rgnAdjZone[1].zoneTrigger.end, 400.0f);
    EXPECT_FLOAT_EQ(record.mtrLumaCalc.lumaRgnAdj.rgnAdjZone[1].zoneData.weightBrightRgnAdj, 0.25f);

    // Members the file lacks.
    EXPECT_EQ(record.mtrLumaCalc.indexCalc.enableLuxIndexComp, 0);
    EXPECT_EQ(record.mtrLumaCalc.lumaRgnAdj.enableDarkRgnAdj, 0);
    EXPECT_FLOAT_EQ(record.mtrLumaCalc.mtrTables.centerWeighted.weights[0], 0.0f);
    EXPECT_EQ(record.mtrLumaTarget.histLumaTarget.histLumaTargetZoneCount, 0u);
    EXPECT_EQ(record.mtrLumaTarget.histLumaTarget.histLumaTargetZone, nullptr);
    EXPECT_EQ(record.mtrLumaTarget.EVLumaTarget.stepsPerEV, 0);
    EXPECT_TRUE(m_log.Contains("entry not found in the binary file, all values will be 0"));

    // The record handed out is the instance's, keyed by its symbol entry.
    EXPECT_EQ(record.SymbolTableID, pMetering->GetKey());
    EXPECT_NE(record.SymbolTableID, 0u);
    EXPECT_TRUE(pMetering->IsLoaded());
    EXPECT_EQ(record.GetModified(), pMetering->GetModifiedCount());
}

TEST_F(AccessorLoadTest, ValuesByTextOnScalarsArraysNestedRecordsRecordArraysStringsAndEnums)
{
    ASSERT_TRUE(Load({MeteringModule("8.0.1")}));
    auto* pMetering = Get<aecMetering::AECCoreMeteringTypeClass>("Metering", s_default, 1);
    ASSERT_NE(pMetering, nullptr);
    EXPECT_EQ(Value(pMetering, "module_version.minor_revision"), "0");
    EXPECT_EQ(Value(pMetering, "mtrLumaCalc.lumaWeight.weight[1]"), "0.5");
    EXPECT_EQ(Value(pMetering, "mtrLumaCalc.indexCalc.bayerGridSubsmplSelect"), "2");
    EXPECT_EQ(Value(pMetering, "mtrLumaCalc.lumaRgnAdj.rgnAdjZone[1].zoneTrigger.end"), "400");
    EXPECT_EQ(Value(pMetering, "parameter_version.revision"), "metering 3");
    EXPECT_EQ(Value(pMetering, "mtrLumaTarget.EVLumaTarget.EVCompTable.EVCompTableElements[48]"), "0");

    EXPECT_TRUE(Fails(pMetering, "mtrLumaCalc.nope"));
    EXPECT_TRUE(Fails(pMetering, "nope"));
    EXPECT_TRUE(Fails(pMetering, "mtrLumaCalc.lumaWeight.weight[3]"));
    EXPECT_TRUE(Fails(pMetering, "mtrLumaCalc.lumaRgnAdj.rgnAdjZone[2].zoneTrigger.end"));
    EXPECT_TRUE(Fails(pMetering, "mtrLumaTarget.histLumaTarget.histLumaTargetZone[0].zoneData.satRefLow"));
    EXPECT_TRUE(Fails(pMetering, "mtrLumaCalc"));

    PList<ParameterParserInfo> top;
    ASSERT_TRUE(pMetering->GetInfo("", top));
    ASSERT_EQ(top.Count(), 4u);
    EXPECT_STREQ(top[0].Name, "module_version");
    EXPECT_STREQ(top[2].Name, "mtrLumaCalc");
    EXPECT_STREQ(top[3].Type, "Structure");

    PList<ParameterParserInfo> zones;
    ASSERT_TRUE(pMetering->GetInfo("mtrLumaCalc.lumaRgnAdj.rgnAdjZone", zones));
    ASSERT_EQ(zones.Count(), 1u);
    EXPECT_STREQ(zones[0].Name, "");
    EXPECT_TRUE(zones[0].isArray);
    EXPECT_TRUE(zones[0].isPointer);
    EXPECT_EQ(zones[0].Count, 2u);

    PList<ParameterParserInfo> selector;
    ASSERT_TRUE(pMetering->GetInfo("mtrLumaCalc.indexCalc.bayerGridSubsmplSelect", selector));
    EXPECT_STREQ(selector[0].Type, "Enum");
    EXPECT_STREQ(selector[0].Value, "2");
    EXPECT_FALSE(pMetering->GetInfo("mtrLumaCalc.indexCalc.nope", selector));

    // The store's text interface reaches the same accessors.
    CHAR out[256] = {};
    ASSERT_TRUE(m_pManager->GetValue(0, s_default, 1, "Metering.mtrLumaCalc.indexCalc", "luxIndexFilterFactor", out,
                                     sizeof(out)));
    EXPECT_STREQ(out, "luxIndexFilterFactor=0.5");
}

TEST_F(AccessorLoadTest, SetValueChangesTheFieldCountsTheChangeAndMarksTheKey)
{
    ASSERT_TRUE(Load({MeteringModule("8.0.1")}));
    auto* pMetering = Get<aecMetering::AECCoreMeteringTypeClass>("Metering", s_default, 1);
    ASSERT_NE(pMetering, nullptr);
    const UINT32 key      = pMetering->GetKey();
    const UINT32 modified = pMetering->GetModified();
    ASSERT_TRUE(pMetering->SetValue("mtrLumaCalc.lumaRgnAdj.rgnAdjZone[1].zoneData.weightBrightRgnAdj", "0.125"));
    EXPECT_FLOAT_EQ(pMetering->mtrLumaCalc.lumaRgnAdj.rgnAdjZone[1].zoneData.weightBrightRgnAdj, 0.125f);
    EXPECT_EQ(pMetering->GetKey(), key + 0x1000000u);
    EXPECT_EQ(pMetering->SymbolTableID, pMetering->GetKey());
    EXPECT_EQ(pMetering->GetModified(), modified + 1);

    ASSERT_TRUE(pMetering->SetValue("mtrLumaCalc.indexCalc.bayerGridSubsmplSelect", "1"));
    EXPECT_EQ(pMetering->mtrLumaCalc.indexCalc.bayerGridSubsmplSelect, aecMetering::SW2);
    EXPECT_EQ(pMetering->GetKey(), key + 0x2000000u);

    // Wraps from 0xFF back to 1 in the top byte; the symbol ID stays.
    pMetering->SetKey(0xFF000000u | (key & 0xFFFFFFu));
    ASSERT_TRUE(pMetering->SetValue("mtrLumaCalc.enableBinGrouping", "0"));
    EXPECT_EQ(pMetering->GetKey(), 0x01000000u | (key & 0xFFFFFFu));
    EXPECT_EQ(pMetering->SymbolTableID, pMetering->GetKey());

    EXPECT_FALSE(pMetering->SetValue("parameter_version.revision", "other"));
    EXPECT_FALSE(pMetering->SetValue("mtrLumaCalc.lumaWeight.weight[7]", "1"));
    EXPECT_FALSE(pMetering->SetValue("mtrLumaCalc.lumaWeight.weight[0]", "x"));
    EXPECT_EQ(pMetering->GetModified(), modified + 3);

    ASSERT_TRUE(m_pManager->SetValue(0, s_default, 1, "Metering.mtrLumaCalc.lumaWeight", "refGain[0]", "4"));
    EXPECT_FLOAT_EQ(pMetering->mtrLumaCalc.lumaWeight.refGain[0], 4.0f);
    EXPECT_EQ(pMetering->GetModified(), modified + 4);
}

TEST_F(AccessorLoadTest, RecordArraysWithStringsAndVariableArrays)
{
    ASSERT_TRUE(Load({s_extensionModule, s_skipModule}));
    auto* pExtension = Get<aecParamExtension::ParamExtensionTypeClass>("AECParamExtension", s_default, 1);
    ASSERT_NE(pExtension, nullptr);
    ASSERT_EQ(pExtension->extensionParamCount, 2u);
    const statsglobalelements::statsExtensionParamType* pParams = pExtension->extensionParam;
    EXPECT_EQ(pParams[0].ID, 1);
    EXPECT_STREQ(pParams[0].Name, "Depth AEC");
    EXPECT_EQ(pParams[0].enableFlag, 1);
    ASSERT_EQ(pParams[0].dataCount, 2u);
    EXPECT_FLOAT_EQ(pParams[0].data[1], 2.5f);
    EXPECT_STREQ(pParams[1].Name, "Night");
    EXPECT_EQ(pParams[1].dataCount, 0u);
    EXPECT_EQ(pParams[1].data, nullptr);
    // The version records are not in this file.
    EXPECT_EQ(pExtension->parameter_version.revision, nullptr);
    EXPECT_EQ(Value(pExtension, "extensionParam[1].Name"), "Night");
    EXPECT_EQ(Value(pExtension, "extensionParam[0].data[0]"), "1.5");
    EXPECT_EQ(Value(pExtension, "parameter_version.revision"), "");
    EXPECT_TRUE(Fails(pExtension, "extensionParam[1].data[0]"));
    EXPECT_TRUE(Fails(pExtension, "extensionParam[2].ID"));

    auto* pSkip = Get<aecSkip::AECSkipCtrlTypeClass>("aecSkipCtrl", s_default, 1);
    ASSERT_NE(pSkip, nullptr);
    EXPECT_EQ(pSkip->DFSEnable, 1);
    EXPECT_FLOAT_EQ(pSkip->DFSExpIndexTolerance, 2.5f);
    ASSERT_EQ(pSkip->DFSSkipCountZoneCount, 1u);
    EXPECT_EQ(pSkip->DFSSkipCountZone[0].zoneData.DFSMinSettleThreshold, 4);
    EXPECT_EQ(Value(pSkip, "DFSSkipCountZone[0].zoneTrigger.end"), "2");
}

TEST_F(AccessorLoadTest, ModesWithOneDuplicateIdShareOneInstance)
{
    ASSERT_TRUE(Load({s_extensionModule}));
    auto* pDefault  = Get<aecParamExtension::ParamExtensionTypeClass>("AECParamExtension", s_default, 1);
    auto* pVideo    = Get<aecParamExtension::ParamExtensionTypeClass>("AECParamExtension", s_video, 2);
    auto* pSnapshot = Get<aecParamExtension::ParamExtensionTypeClass>("AECParamExtension", s_snapshot, 2);
    ASSERT_NE(pDefault, nullptr);
    ASSERT_NE(pSnapshot, nullptr);
    EXPECT_EQ(pDefault, pVideo);
    EXPECT_NE(pDefault, pSnapshot);
    EXPECT_EQ(pDefault->GetData()->DuplicateID, pDefault->GetKey());
    EXPECT_EQ(pSnapshot->extensionParam[1].ID, 3);
    EXPECT_EQ(pDefault->extensionParam[1].ID, 2);

    // Unloading one instance leaves the other's blocks alone.
    ASSERT_TRUE(pSnapshot->UnloadModule());
    EXPECT_EQ(pSnapshot->extensionParam, nullptr);
    EXPECT_EQ(pSnapshot->extensionParamCount, 0u);
    EXPECT_STREQ(pDefault->extensionParam[0].Name, "Depth AEC");
    EXPECT_FLOAT_EQ(pDefault->extensionParam[0].data[1], 2.5f);
}

TEST_F(AccessorLoadTest, AModuleOfAnotherVersionIsAbsent)
{
    ASSERT_TRUE(Load({MeteringModule("8.0.2"), s_skipModule}));
    EXPECT_EQ(Get<aecMetering::AECCoreMeteringTypeClass>("Metering", s_default, 1), nullptr);
    EXPECT_TRUE(m_log.Contains("Unable to create AECCoreMeteringTypeClass, binary version ("));
    EXPECT_NE(Get<aecSkip::AECSkipCtrlTypeClass>("aecSkipCtrl", s_default, 1), nullptr);
}

TEST_F(AccessorLoadTest, UnloadModuleWithoutSymbolTableLogsAndStillReleases)
{
    ASSERT_TRUE(Load({s_skipModule}));
    auto* pSkip = Get<aecSkip::AECSkipCtrlTypeClass>("aecSkipCtrl", s_default, 1);
    ASSERT_NE(pSkip, nullptr);
    ParameterFileSymbolTable* pTable = pSkip->GetData()->SymbolTable;
    pSkip->GetData()->SymbolTable    = nullptr;
    EXPECT_TRUE(pSkip->UnloadModule());
    pSkip->GetData()->SymbolTable = pTable;
    EXPECT_TRUE(m_log.Contains("UnloadModule aecSkipCtrl called with nullptr Data->SymbolTable object"));
    EXPECT_FALSE(pSkip->IsLoaded());
    EXPECT_EQ(pSkip->DFSSkipCountZone, nullptr);
    EXPECT_EQ(pSkip->DFSSkipCountZoneCount, 0u);
}

} // namespace
