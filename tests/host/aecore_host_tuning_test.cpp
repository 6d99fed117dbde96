// default.bin in a host's own tuning store: load in both modes, values by text, a changed value reaching the core, and
// a module whose version the code does not know.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "aecdefaulttuning.h"
#include "chostharness.h"
#include "tools/aectune/tunetesthelpers.h"
#include "tuning/tuningsetmanager.h"

namespace
{

using Json = nlohmann::ordered_json;

const HostSensorConfig kSensor = DefaultSensor(0);

// One more exposure index unit is 3 % more sensitivity.
constexpr double IndexBase = 1.03;

// Text access to a record, whatever its type: the generated GetValue and GetInfo of the record.
struct RecordText
{
    const void* pRecord;
    bool (*pfnGetValue)(const void* pRecord, const CHAR* pPath, CHAR* pOut, UINT32 size);
    bool (*pfnGetInfo)(const void* pRecord, const CHAR* pPath, PList<ParameterParserInfo>& list);

    std::string Value(const std::string& path) const
    {
        CHAR text[4096] = {};
        return pfnGetValue(pRecord, path.c_str(), text, sizeof(text)) ? std::string(text) : std::string("<none>");
    }

    bool Info(const std::string& path, PList<ParameterParserInfo>* pList) const
    {
        return pfnGetInfo(pRecord, path.c_str(), *pList);
    }
};

// One of the 17 AEC modules: how the store hands it out and how the embedded defaults fill it.
struct ModuleCase
{
    const char* pName;
    const void* (*pfnFetch)(TuningSetManager* pStore, const TuningMode* pSelectors, UINT32 count);
    void (*pfnRelease)(const void* pRecord);
    UINT32 (*pfnModified)(const void* pRecord);
    UINT32 (*pfnSymbolTableID)(const void* pRecord);
    std::shared_ptr<void> (*pfnEmbedded)();  // a default storage, whose record comes first
    bool (*pfnGetValue)(const void* pRecord, const CHAR* pPath, CHAR* pOut, UINT32 size);
    bool (*pfnGetInfo)(const void* pRecord, const CHAR* pPath, PList<ParameterParserInfo>& list);

    RecordText Text(const void* pRecord) const { return RecordText{pRecord, pfnGetValue, pfnGetInfo}; }
};

template <typename Record, typename Storage, Record* (TuningSetManager::*Get)(const TuningMode*, UINT32, Record*),
          void (*Fill)(Storage*)>
struct ModuleOf
{
    static const void* Fetch(TuningSetManager* pStore, const TuningMode* pSelectors, UINT32 count)
    {
        return (pStore->*Get)(pSelectors, count, nullptr);
    }
    static void Release(const void* pRecord)
    {
        const_cast<Record*>(static_cast<const Record*>(pRecord))->Release();
    }
    static UINT32 Modified(const void* pRecord) { return static_cast<const Record*>(pRecord)->GetModified(); }
    static UINT32 SymbolTableID(const void* pRecord) { return static_cast<const Record*>(pRecord)->SymbolTableID; }
    static std::shared_ptr<void> Embedded()
    {
        std::shared_ptr<Storage> storage = std::make_shared<Storage>();
        Fill(storage.get());
        return storage;
    }
    static bool GetValue(const void* pRecord, const CHAR* pPath, CHAR* pOut, UINT32 size)
    {
        return static_cast<const Record*>(pRecord)->GetValue(pPath, pOut, size);
    }
    static bool GetInfo(const void* pRecord, const CHAR* pPath, PList<ParameterParserInfo>& list)
    {
        return static_cast<const Record*>(pRecord)->GetInfo(pPath, list);
    }
    static ModuleCase Case(const char* pName)
    {
        return ModuleCase{pName, &Fetch, &Release, &Modified, &SymbolTableID, &Embedded, &GetValue, &GetInfo};
    }
};

const std::vector<ModuleCase>& AecModules()
{
    static const std::vector<ModuleCase> modules = {
        ModuleOf<aecArbitration::AECCoreArbitrationType, AECCoreArbitrationTypeDefaultStorage,
                 &TuningSetManager::GetModule_Arbitration, &FillDefaultAECCoreArbitrationTypeStorage>::Case(
            "Arbitration"),
        ModuleOf<aecConvergence::AECCoreConvergenceType, AECCoreConvergenceTypeDefaultStorage,
                 &TuningSetManager::GetModule_Convergence, &FillDefaultAECCoreConvergenceTypeStorage>::Case(
            "Convergence"),
        ModuleOf<aecDepth::AECDepthType, AECDepthTypeDefaultStorage, &TuningSetManager::GetModule_aecDepth,
                 &FillDefaultAECDepthTypeStorage>::Case("aecDepth"),
        ModuleOf<aecExtension::AECCoreExtensionType, AECCoreExtensionTypeDefaultStorage,
                 &TuningSetManager::GetModule_Extension, &FillDefaultAECCoreExtensionTypeStorage>::Case("Extension"),
        ModuleOf<aecFace::AECFaceType, AECFaceTypeDefaultStorage, &TuningSetManager::GetModule_Face,
                 &FillDefaultAECFaceTypeStorage>::Case("Face"),
        ModuleOf<aecFlash::AECFlashType, AECFlashTypeDefaultStorage, &TuningSetManager::GetModule_Flash,
                 &FillDefaultAECFlashTypeStorage>::Case("Flash"),
        ModuleOf<aecIr::AECIRType, AECIRTypeDefaultStorage, &TuningSetManager::GetModule_aecIr,
                 &FillDefaultAECIRTypeStorage>::Case("aecIr"),
        ModuleOf<aecMetering::AECCoreMeteringType, AECCoreMeteringTypeDefaultStorage,
                 &TuningSetManager::GetModule_Metering, &FillDefaultAECCoreMeteringTypeStorage>::Case("Metering"),
        ModuleOf<aecParamExtension::ParamExtensionType, ParamExtensionTypeDefaultStorage,
                 &TuningSetManager::GetModule_AECParamExtension, &FillDefaultParamExtensionTypeStorage>::Case(
            "AECParamExtension"),
        ModuleOf<aecSensorConfig::AECSensorHDRConfig, AECSensorHDRConfigDefaultStorage,
                 &TuningSetManager::GetModule_SensorHDRDefaultConfig, &FillDefaultAECSensorHDRConfigStorage>::Case(
            "SensorHDRDefaultConfig"),
        ModuleOf<aecShdr::AECShdrType, AECShdrTypeDefaultStorage, &TuningSetManager::GetModule_aecShdr,
                 &FillDefaultAECShdrTypeStorage>::Case("aecShdr"),
        ModuleOf<aecSkip::AECSkipCtrlType, AECSkipCtrlTypeDefaultStorage, &TuningSetManager::GetModule_aecSkipCtrl,
                 &FillDefaultAECSkipCtrlTypeStorage>::Case("aecSkipCtrl"),
        ModuleOf<aecSnapshotCtrl::AECSnapshotCtrlType, AECSnapshotCtrlTypeDefaultStorage,
                 &TuningSetManager::GetModule_SnapshotControl, &FillDefaultAECSnapshotCtrlTypeStorage>::Case(
            "SnapshotControl"),
        ModuleOf<aecStartUp::AECStartUpType, AECStartUpTypeDefaultStorage, &TuningSetManager::GetModule_StartUp,
                 &FillDefaultAECStartUpTypeStorage>::Case("StartUp"),
        ModuleOf<aecStatsConfig::AECStatsConfig, AECStatsConfigDefaultStorage,
                 &TuningSetManager::GetModule_StatsDefaultConfig, &FillDefaultAECStatsConfigStorage>::Case(
            "StatsDefaultConfig"),
        ModuleOf<aecSync::AECMultiCamType, AECMultiCamTypeDefaultStorage, &TuningSetManager::GetModule_aecMultiCamSync,
                 &FillDefaultAECMultiCamTypeStorage>::Case("aecMultiCamSync"),
        ModuleOf<aecTouch::AECTouchType, AECTouchTypeDefaultStorage, &TuningSetManager::GetModule_Touch,
                 &FillDefaultAECTouchTypeStorage>::Case("Touch"),
    };
    return modules;
}

std::string ReadText(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// The source default.bin was compiled from: the record descriptions that tell the paths of every member.
const Json& DefaultSource()
{
    static const Json source = Json::parse(ReadText(AECORE_DEFAULT_TUNING_SOURCE), nullptr, true, true);
    return source;
}

const Json& SourceModule(const std::string& name)
{
    for (const Json& module : DefaultSource()["modules"])
    {
        if (module["name"] == name)
        {
            return module;
        }
    }
    throw std::invalid_argument(name);
}

// The member list of a member's record, or null for a member of a scalar, enumeration or string type.
const Json* RecordMembers(const Json& member)
{
    if (member.contains("members"))
    {
        return &member["members"];
    }
    const std::string type = member["type"].get<std::string>();
    const std::string base = type.substr(0, type.find('['));
    for (const Json& declaration : DefaultSource()["types"])
    {
        if ((declaration["name"] == base) && declaration.contains("members"))
        {
            return &declaration["members"];
        }
    }
    return nullptr;
}

bool IsArray(const Json& member)
{
    return member.contains("type") && (std::string::npos != member["type"].get<std::string>().find('['));
}

// Walks every member path of a record (elements of arrays one by one, nested records member by member) and
// compares what two records say of it; returns the number of values compared.
class CRecordComparer
{
public:
    CRecordComparer(const RecordText& loaded, const RecordText& embedded) : m_loaded(loaded), m_embedded(embedded) {}

    UINT32 Compare(const Json& members, const std::string& prefix)
    {
        for (const Json& member : members)
        {
            const std::string path    = prefix + member["name"].get<std::string>();
            const Json*       pRecord = RecordMembers(member);
            if (!IsArray(member))
            {
                Visit(path, pRecord);
                continue;
            }
            const UINT32 count = Count(m_loaded, path);
            EXPECT_EQ(Count(m_embedded, path), count) << "element count of " << path;
            for (UINT32 i = 0; i < count; i++)
            {
                Visit(path + "[" + std::to_string(i) + "]", pRecord);
            }
        }
        return m_values;
    }

private:
    static UINT32 Count(const RecordText& record, const std::string& path)
    {
        PList<ParameterParserInfo> list;
        EXPECT_TRUE(record.Info(path, &list)) << path;
        EXPECT_EQ(1U, list.Count()) << path;
        EXPECT_TRUE((list.Count() > 0) && list[0].isArray) << path;
        return (list.Count() > 0) ? list[0].Count : 0;
    }

    void Visit(const std::string& path, const Json* pRecord)
    {
        if (nullptr != pRecord)
        {
            Compare(*pRecord, path + ".");
            return;
        }
        PList<ParameterParserInfo> loaded;
        PList<ParameterParserInfo> embedded;
        ASSERT_TRUE(m_loaded.Info(path, &loaded)) << path;
        ASSERT_TRUE(m_embedded.Info(path, &embedded)) << path;
        ASSERT_EQ(1U, loaded.Count()) << path;
        ASSERT_EQ(1U, embedded.Count()) << path;
        EXPECT_STREQ(embedded[0].Type, loaded[0].Type) << path;
        EXPECT_STREQ(embedded[0].Value, loaded[0].Value) << path;
        EXPECT_EQ(m_embedded.Value(path), m_loaded.Value(path)) << path;
        m_values++;
    }

    RecordText m_loaded;
    RecordText m_embedded;
    UINT32     m_values = 0;
};

// The member names GetInfo lists for a record, in order.
std::vector<std::string> InfoNames(const RecordText& record, const std::string& path)
{
    PList<ParameterParserInfo> list;
    EXPECT_TRUE(record.Info(path, &list)) << path;
    std::vector<std::string> names;
    for (UINT32 i = 0; i < list.Count(); i++)
    {
        names.emplace_back((nullptr != list[i].Name) ? list[i].Name : "");
    }
    return names;
}

std::vector<std::string> SourceNames(const Json& members)
{
    std::vector<std::string> names;
    for (const Json& member : members)
    {
        names.push_back(member["name"].get<std::string>());
    }
    return names;
}

// The first tuning value of a record (the version records aside), depth first, that is a single number (the first
// element of an array): a path that SetValue can change.
bool FirstNumberPath(const Json& members, const std::string& prefix, std::string* pPath)
{
    for (const Json& member : members)
    {
        const std::string name = member["name"].get<std::string>();
        if (prefix.empty() && ((name == "module_version") || (name == "parameter_version")))
        {
            continue;
        }
        const std::string path    = prefix + name + (IsArray(member) ? "[0]" : "");
        const Json*       pRecord = RecordMembers(member);
        const std::string type    = member.contains("type") ? member["type"].get<std::string>() : std::string();
        const std::string base    = type.substr(0, type.find('['));
        if ((nullptr != pRecord) && FirstNumberPath(*pRecord, path + ".", pPath))
        {
            return true;
        }
        if ((nullptr == pRecord) && (base != "STRING") && (base != "BOOL") && (std::string::npos == base.find("::")))
        {
            *pPath = path;
            return true;
        }
    }
    return false;
}

// A parameter file compiled from default.bin's source with one module's version changed.
std::vector<UINT8> CompileWithModuleVersion(const std::string& moduleName, const std::string& version)
{
    Json source = DefaultSource();
    for (Json& module : source["modules"])
    {
        if (module["name"] == moduleName)
        {
            module["version"] = version;
        }
    }
    std::vector<UINT8> file;
    std::string        messages;
    EXPECT_TRUE(AecTuneTest::Compile(source.dump(), "7.0.0", true, ParameterFileHeaderReadSize, &file, &messages))
        << messages;
    return file;
}

// A file of its own for one test, removed afterwards.
class CScratchFile
{
public:
    explicit CScratchFile(const std::vector<UINT8>& bytes)
    {
        char name[] = "/tmp/aecore_host_tuning_XXXXXX";
        const int descriptor = mkstemp(name);
        m_path               = name;
        if (descriptor >= 0)
        {
            close(descriptor);
        }
        std::ofstream(m_path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()),
                                                       static_cast<std::streamsize>(bytes.size()));
    }
    ~CScratchFile() { std::remove(m_path.c_str()); }
    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
};

// Sensitivity of an exposure: time x gain / f-number^2.
double Sensitivity(const AECAlgoExposureData& exposure)
{
    const double fNumber = (exposure.fnumber >= 1.0F) ? exposure.fnumber : 1.0;
    return static_cast<double>(exposure.exposureTime) * exposure.linearGain / (fNumber * fNumber);
}

std::string HowName(const ::testing::TestParamInfo<HostTuningLoad>& info)
{
    return (HostTuningLoad::File == info.param) ? "FileMode" : "BufferMode";
}

class DefaultTuningFileTest : public ::testing::TestWithParam<HostTuningLoad>
{
protected:
    void SetUp() override
    {
        std::string error;
        ASSERT_TRUE(m_tuning.Load(AECORE_DEFAULT_TUNING_FILE, GetParam(), &error)) << error;
        ASSERT_NE(nullptr, m_tuning.Store());
    }

    CHostTuning m_tuning;
};

TEST_P(DefaultTuningFileTest, EveryAecModuleIsPresent)
{
    ASSERT_EQ(17U, AecModules().size());
    for (const ModuleCase& module : AecModules())
    {
        const void* pRecord = module.pfnFetch(m_tuning.Store(), m_tuning.Selectors(), HostTuningSelectorCount);
        EXPECT_NE(nullptr, pRecord) << module.pName;
        if (nullptr != pRecord)
        {
            module.pfnRelease(pRecord);
        }
    }
}

TEST_P(DefaultTuningFileTest, EveryLoadedRecordEqualsTheEmbeddedDefault)
{
    UINT32 total = 0;
    for (const ModuleCase& module : AecModules())
    {
        SCOPED_TRACE(module.pName);
        const void* pRecord = module.pfnFetch(m_tuning.Store(), m_tuning.Selectors(), HostTuningSelectorCount);
        ASSERT_NE(nullptr, pRecord);
        const std::shared_ptr<void> embedded = module.pfnEmbedded();
        const RecordText            loaded   = module.Text(pRecord);
        const RecordText            defaults = module.Text(embedded.get());
        const Json&                 members  = SourceModule(module.pName)["members"];

        EXPECT_EQ(SourceNames(members), InfoNames(loaded, ""));
        EXPECT_EQ(SourceNames(members), InfoNames(defaults, ""));
        CRecordComparer comparer(loaded, defaults);
        const UINT32    values = comparer.Compare(members, "");
        EXPECT_LT(0U, values);
        total += values;
        module.pfnRelease(pRecord);
    }
    // Every module has at least its version numbers; the whole default tuning has hundreds of values.
    EXPECT_LT(500U, total);
    RecordProperty("comparedValues", static_cast<int>(total));
}

TEST_P(DefaultTuningFileTest, ValuesOfEveryModuleByTextThroughTheStore)
{
    TuningSetManager* pStore = m_tuning.Store();
    for (const ModuleCase& module : AecModules())
    {
        SCOPED_TRACE(module.pName);
        const Json& members = SourceModule(module.pName)["members"];
        std::string path;
        ASSERT_TRUE(FirstNumberPath(members, "", &path));
        const std::string::size_type dot   = path.rfind('.');
        const std::string            name  = (std::string::npos == dot) ? module.pName
                                                                        : module.pName + ("." + path.substr(0, dot));
        const std::string            field = (std::string::npos == dot) ? path : path.substr(dot + 1);

        // GetInfo lists the module's members in schema order.
        PList<ParameterParserInfo> info;
        ASSERT_TRUE(pStore->GetInfo(0, "0.0", module.pName, info));
        std::vector<std::string> names;
        for (UINT32 i = 0; i < info.Count(); i++)
        {
            names.emplace_back(info[i].Name);
        }
        EXPECT_EQ(SourceNames(members), names);
        PList<ParameterParserInfo> branchInfo;
        ASSERT_TRUE(pStore->GetInfo(0, m_tuning.Selectors(), HostTuningSelectorCount, module.pName, branchInfo));
        EXPECT_EQ(info.Count(), branchInfo.Count());

        // GetValue by mode path and by the host's selectors says what the record holds.
        const void* pRecord = module.pfnFetch(pStore, m_tuning.Selectors(), HostTuningSelectorCount);
        ASSERT_NE(nullptr, pRecord);
        const RecordText record = module.Text(pRecord);
        CHAR             text[4096] = {};
        ASSERT_TRUE(pStore->GetValue(0, "0.0", name.c_str(), field.c_str(), text, sizeof(text))) << path;
        EXPECT_EQ(field + "=" + record.Value(path), text);
        ASSERT_TRUE(pStore->GetValue(0, m_tuning.Selectors(), HostTuningSelectorCount, name.c_str(), field.c_str(),
                                     text, sizeof(text)));
        EXPECT_EQ(field + "=" + record.Value(path), text);

        // SetValue changes the record the core holds, counts the change and marks the key as changed.
        const UINT32 modified = module.pfnModified(pRecord);
        const UINT32 key      = module.pfnSymbolTableID(pRecord);
        const double before   = std::stod(record.Value(path));
        const std::string value = std::to_string((before > 100.0) ? before - 1.0 : before + 1.0);
        ASSERT_TRUE(pStore->SetValue(0, "0.0", name.c_str(), field.c_str(), value.c_str())) << path;
        EXPECT_NEAR(std::stod(value), std::stod(record.Value(path)), 1e-5 * std::fabs(std::stod(value)));
        EXPECT_EQ(modified + 1, module.pfnModified(pRecord));
        EXPECT_EQ(key + 0x1000000U, module.pfnSymbolTableID(pRecord));
        EXPECT_EQ(key & 0xFFFFFFU, module.pfnSymbolTableID(pRecord) & 0xFFFFFFU);

        // Names the module does not have are refused.
        EXPECT_FALSE(pStore->SetValue(0, "0.0", module.pName, "noSuchMember", "1"));
        EXPECT_FALSE(pStore->GetValue(0, "0.0", module.pName, "noSuchMember", text, sizeof(text)));
        module.pfnRelease(pRecord);
    }
}

TEST_P(DefaultTuningFileTest, TheCoreRunsOnTheFileAsOnItsFakeTuning)
{
    // The same start exposure and the same first frames, whether the tuning comes from the file or is built in.
    std::vector<HostFrameResult> runs[2];
    for (UINT32 run = 0; run < 2; run++)
    {
        CHostHarness harness;
        harness.SetTuningFile((0 == run) ? std::string(AECORE_DEFAULT_TUNING_FILE) : std::string(), GetParam());
        std::string error;
        ASSERT_TRUE(harness.Load(AECORE_LIBRARY_PATH, &error)) << error;
        EXPECT_EQ((0 == run), nullptr != harness.Tuning().Store());
        LYRAECAlgorithm* pAlgo = nullptr;
        ASSERT_EQ(VelaResultSuccess, harness.Create(0, &pAlgo));
        ASSERT_EQ(VelaResultSuccess, harness.Configure(pAlgo, kSensor, AECAlgoOperationModeStreaming));
        HostFrameResult frame = {};
        ASSERT_EQ(VelaResultSuccess, harness.QueryStartExposure(pAlgo, &frame));
        runs[run].push_back(frame);
        for (UINT64 id = 1; id <= 8; id++)
        {
            ASSERT_EQ(VelaResultSuccess, harness.ProcessFrame(pAlgo, kSensor, id, 30.0F, &frame));
            runs[run].push_back(frame);
        }
        harness.Destroy(pAlgo, 0, true);
    }
    ASSERT_EQ(runs[0].size(), runs[1].size());
    for (size_t i = 0; i < runs[0].size(); i++)
    {
        const AECAlgoExposureData& file = runs[0][i].exposures[AECAlgoExposureSafe].exposureData;
        const AECAlgoExposureData& fake = runs[1][i].exposures[AECAlgoExposureSafe].exposureData;
        EXPECT_EQ(fake.exposureTime, file.exposureTime) << "frame " << i;
        EXPECT_FLOAT_EQ(fake.linearGain, file.linearGain) << "frame " << i;
        EXPECT_FLOAT_EQ(runs[1][i].frameInfo.frameLuma, runs[0][i].frameInfo.frameLuma) << "frame " << i;
        EXPECT_FLOAT_EQ(runs[1][i].frameControl.luxIndex, runs[0][i].frameControl.luxIndex) << "frame " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, DefaultTuningFileTest, ::testing::Values(HostTuningLoad::Buffer, HostTuningLoad::File),
                         HowName);

class HostTuningTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        LYRAECAlgorithm* pAlgo = nullptr;
        if ((nullptr != m_harness.Callbacks().pfnCreate) && (VelaResultSuccess == m_harness.Create(0, &pAlgo)))
        {
            m_harness.Destroy(pAlgo, 0, true);
        }
    }

    CHostHarness m_harness;
};

TEST_F(HostTuningTest, ASetValueIsSeenByTheCoreOnItsNextTuningChange)
{
    std::string error;
    ASSERT_TRUE(m_harness.Load(AECORE_LIBRARY_PATH, &error)) << error;
    ASSERT_NE(nullptr, m_harness.Tuning().Store());
    LYRAECAlgorithm* pAlgo = nullptr;
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(0, &pAlgo));
    ASSERT_EQ(VelaResultSuccess, m_harness.Configure(pAlgo, kSensor, AECAlgoOperationModeStreaming));
    HostFrameResult before = {};
    ASSERT_EQ(VelaResultSuccess, m_harness.QueryStartExposure(pAlgo, &before));

    // The tuning tool lowers the streaming start index by 50 (about two stops), then the host's use case changes.
    TuningSetManager* pStore = m_harness.Tuning().Store();
    CHAR              text[256] = {};
    ASSERT_TRUE(pStore->GetValue(0, "0.0", "StartUp.StartUpConv.generic", "startExpIndex", text, sizeof(text)));
    const double startIndex = std::stod(std::string(text).substr(std::string("startExpIndex=").size()));
    ASSERT_TRUE(pStore->SetValue(0, "0.0", "StartUp.StartUpConv.generic", "startExpIndex",
                                 std::to_string(startIndex - 50.0).c_str()));
    m_harness.Tuning().SetSubMode(ModeType::Usecase, static_cast<UINT16>(ModeUsecaseSubModeType::Video));
    m_harness.ClearCoreLog();
    ASSERT_EQ(VelaResultSuccess, m_harness.SendTuning(pAlgo));
    bool changed = false;
    for (const std::string& line : m_harness.CoreLog())
    {
        changed = changed || (line == "is tuning changed:1");
    }
    EXPECT_TRUE(changed);

    HostFrameResult after = {};
    ASSERT_EQ(VelaResultSuccess, m_harness.QueryStartExposure(pAlgo, &after));
    const double ratio = Sensitivity(after.exposures[AECAlgoExposureSafe].exposureData) /
                         Sensitivity(before.exposures[AECAlgoExposureSafe].exposureData);
    EXPECT_NEAR(std::pow(IndexBase, -50.0), ratio, 0.02 * std::pow(IndexBase, -50.0));
}

TEST_F(HostTuningTest, EmptyTuningPathLeavesTheStoreNullAndTheLibraryOnFakeTuning)
{
    m_harness.SetTuningFile("", HostTuningLoad::Buffer);
    std::string error;
    ASSERT_TRUE(m_harness.Load(AECORE_LIBRARY_PATH, &error)) << error;
    EXPECT_EQ(nullptr, m_harness.Tuning().Store());
    const StatsTuningData data = m_harness.Tuning().Data();
    EXPECT_EQ(nullptr, data.pTuningSetManager);
    EXPECT_EQ(nullptr, data.pTuningModeSelectors);
    EXPECT_EQ(0U, data.numSelectors);
    LYRAECAlgorithm* pAlgo = nullptr;
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(0, &pAlgo));
    ASSERT_EQ(VelaResultSuccess, m_harness.Configure(pAlgo, kSensor, AECAlgoOperationModeStreaming));
    bool fake = false;
    for (const std::string& line : m_harness.CoreLog())
    {
        fake = fake || (line == "Tuning Pointer Null");
    }
    EXPECT_TRUE(fake);
}

TEST_F(HostTuningTest, AMissingTuningFileFailsTheLoadAndSaysWhy)
{
    m_harness.SetTuningFile("/nonexistent/default.bin", HostTuningLoad::File);
    std::string error;
    EXPECT_FALSE(m_harness.Load(AECORE_LIBRARY_PATH, &error));
    EXPECT_NE(std::string::npos, error.find("/nonexistent/default.bin")) << error;
    EXPECT_EQ(nullptr, m_harness.Tuning().Store());
}

class ModuleVersionMismatchTest : public ::testing::TestWithParam<HostTuningLoad>
{
};

TEST_P(ModuleVersionMismatchTest, TheModuleIsAbsentAndTheOthersLoad)
{
    const CScratchFile file(CompileWithModuleVersion("Metering", "8.0.2"));
    CHostTuning        tuning;
    std::string        error;
    ASSERT_TRUE(tuning.Load(file.Path(), GetParam(), &error)) << error;
    for (const ModuleCase& module : AecModules())
    {
        const void* pRecord = module.pfnFetch(tuning.Store(), tuning.Selectors(), HostTuningSelectorCount);
        EXPECT_EQ(std::string("Metering") != module.pName, nullptr != pRecord) << module.pName;
        if (nullptr != pRecord)
        {
            module.pfnRelease(pRecord);
        }
    }
    // The store names the module it could not make and the version the file has.
    const std::string lastError = tuning.Store()->GetLastError();
    EXPECT_NE(std::string::npos, lastError.find("Name: Metering, Major: 8, Minor: 0, Patch: 2")) << lastError;
}

INSTANTIATE_TEST_SUITE_P(Modes, ModuleVersionMismatchTest,
                         ::testing::Values(HostTuningLoad::Buffer, HostTuningLoad::File), HowName);

// The metering view stays null: metering refuses its tuning change and every frame's input, so the core holds
// the start exposure (the tuned start index) frame after frame, with no frame luma, and reports it settled.
TEST_F(HostTuningTest, WithoutItsMeteringModuleTheCoreHoldsTheStartExposure)
{
    const CScratchFile file(CompileWithModuleVersion("Metering", "8.0.2"));
    m_harness.SetTuningFile(file.Path(), HostTuningLoad::Buffer);
    std::string error;
    ASSERT_TRUE(m_harness.Load(AECORE_LIBRARY_PATH, &error)) << error;
    LYRAECAlgorithm* pAlgo = nullptr;
    ASSERT_EQ(VelaResultSuccess, m_harness.Create(0, &pAlgo));
    m_harness.ClearCoreLog();
    ASSERT_EQ(VelaResultSuccess, m_harness.Configure(pAlgo, kSensor, AECAlgoOperationModeStreaming));
    HostFrameResult start = {};
    ASSERT_EQ(VelaResultSuccess, m_harness.QueryStartExposure(pAlgo, &start));
    const AECAlgoExposureData& startExposure = start.exposures[AECAlgoExposureSafe].exposureData;
    ASSERT_LT(0U, startExposure.exposureTime);

    // Frames of a scene far brighter than the start exposure expects: a working metering would step down.
    HostFrameResult frame = {};
    for (UINT64 id = 1; id <= 10; id++)
    {
        ASSERT_EQ(VelaResultSuccess, m_harness.ProcessFrame(pAlgo, kSensor, id, 200.0F, &frame)) << "frame " << id;
        const AECAlgoExposureData& exposure = frame.exposures[AECAlgoExposureSafe].exposureData;
        EXPECT_EQ(startExposure.exposureTime, exposure.exposureTime) << "frame " << id;
        EXPECT_FLOAT_EQ(startExposure.linearGain, exposure.linearGain) << "frame " << id;
        EXPECT_FLOAT_EQ(0.0F, frame.frameInfo.frameLuma) << "frame " << id;
        EXPECT_TRUE(frame.frameInfo.aecSettled) << "frame " << id;
    }
    // A still capture is answered from the held exposure too.
    HostFrameResult       snapshot = {};
    AECAlgoSnapshotConfig config   = {AECAlgoSnapshotNormal, FALSE, 0};
    EXPECT_EQ(VelaResultSuccess, m_harness.QuerySnapshotExposure(pAlgo, config, &snapshot));
    EXPECT_LT(0U, snapshot.exposures[AECAlgoExposureSafe].exposureData.exposureTime);

    UINT32 refusedTuning = 0;
    UINT32 refusedFrames = 0;
    for (const std::string& line : m_harness.CoreLog())
    {
        refusedTuning += (line == "Metering tuning is NULL") ? 1 : 0;
        refusedFrames += (0 == line.rfind("Metering input incomplete", 0)) ? 1 : 0;
    }
    EXPECT_EQ(1U, refusedTuning);
    EXPECT_LE(10U, refusedFrames);
}

} // namespace
