// Tests of the tuning store's managers: registered modules, derived managers, absent modules.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "tuning/cabsenttuningmodule.h"
#include "tuning/parser/parsercrc.h"
#include "unit/tuningparser/clogcapture.h"
#include "unit/tuningstore/ctuningstoretestfile.h"

namespace
{

// The module names of the registry file, in its order.
std::vector<std::string> RegistryNames()
{
    std::ifstream            file(AECORE_MODULE_REGISTRY);
    std::vector<std::string> names;
    std::string              line;
    while (std::getline(file, line))
    {
        std::istringstream words(line.substr(0, line.find('#')));
        std::string        name;
        if (words >> name)
        {
            names.push_back(name);
        }
    }
    return names;
}

const std::string Empty = "[]";

std::string MeteringModule(const std::string& values)
{
    return SourceModule("Metering", "aecMetering::AECCoreMeteringType", "8.0.1",
                        "[ { \"name\": \"marker\", \"type\": \"UINT32\" } ]", values);
}

const std::string TwoTables = "[ { \"name\": \"Main\", \"modes\": [] }, { \"name\": \"Secondary\", \"modes\": [] } ]";

} // namespace

TEST(TuningSetManagerTest, MainManagerRegistersEveryModuleOfTheRegistryInItsOrder)
{
    const std::vector<std::string> names = RegistryNames();
    ASSERT_EQ(270U, names.size());
    ASSERT_EQ(270U, TuningSetManager::RegisteredModuleCount);
    TuningSetManager  store("registry");
    std::set<UINT64>  hashes;
    for (UINT32 index = 0; index < TuningSetManager::RegisteredModuleCount; index++)
    {
        std::unique_ptr<ParameterModule> prototype(TuningSetManager::CreatePrototype(index));
        ASSERT_NE(nullptr, prototype) << index;
        EXPECT_EQ(names[index], prototype->GetModuleName());
        const UINT64 hash = ParserCRC64::GetNameHash(names[index].c_str());
        EXPECT_EQ(hash, prototype->GetModuleNameHash()) << names[index];
        hashes.insert(hash);
        DefaultModule* pDefault = store.GetDefaultModule(hash);
        ASSERT_NE(nullptr, pDefault) << names[index];
        ASSERT_NE(nullptr, pDefault->Module);
        EXPECT_STREQ(names[index].c_str(), pDefault->Module->GetModuleName());
        EXPECT_EQ(nullptr, pDefault->first) << "no instances before a file is loaded";
    }
    EXPECT_EQ(270U, hashes.size()) << "every name hash is unique";
    EXPECT_EQ(nullptr, TuningSetManager::CreatePrototype(TuningSetManager::RegisteredModuleCount));
}

TEST(TuningSetManagerTest, ModulesTheLibraryDoesNotReadAreRegisteredAsAbsent)
{
    TuningSetManager store("registry");
    DefaultModule*   pGyro     = store.GetDefaultModule(ParserCRC64::GetNameHash("aecGyro"));
    DefaultModule*   pMetering = store.GetDefaultModule(ParserCRC64::GetNameHash("Metering"));
    ASSERT_NE(nullptr, pGyro);
    ASSERT_NE(nullptr, pMetering);
    EXPECT_NE(nullptr, dynamic_cast<CAbsentTuningModule*>(pGyro->Module));
    EXPECT_EQ(nullptr, dynamic_cast<CAbsentTuningModule*>(pMetering->Module));
}

TEST(TuningSetManagerTest, MainManagerLogsWarningsAndErrorsButNoDebugLines)
{
    CTuningStoreTestFile file(Source("", {MeteringModule("{ \"Default\": { \"marker\": 1 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    TuningSetManager store("levels");
    EXPECT_FALSE(store.LoggingEnabled(Debug));
    EXPECT_TRUE(store.LoggingEnabled(Warning));
    EXPECT_TRUE(store.LoggingEnabled(Error));
    CLogCapture logs;
    ASSERT_TRUE(store.LoadBinaryParameters(file.Name().c_str()));
    EXPECT_FALSE(logs.Contains("Load Binary Parameters completed")) << "a debug line";
}

TEST(TuningSetManagerTest, DerivedManagerWithoutMainLogs)
{
    CLogCapture      logs;
    TuningSetManager derived(nullptr, 0);
    EXPECT_TRUE(logs.Contains("TuningSetManager called with null main parameter"));
}

TEST(TuningSetManagerTest, CreateSetManagerRefusesATableIndexPastTheTables)
{
    CTuningStoreTestFile file(Source("", {MeteringModule("{ \"Default\": { \"marker\": 1 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    CLogCapture logs;
    EXPECT_EQ(nullptr, store->CreateSetManager(static_cast<BYTE>(1)));
    EXPECT_TRUE(logs.Contains("CreateSetManager called mode table index (1) >= mode table count (1)"));
}

TEST(TuningSetManagerTest, CreateSetManagerRefusesAnUnknownTableName)
{
    CTuningStoreTestFile file(Source(TwoTables, {MeteringModule("{ \"Default\": { \"marker\": 1 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    CLogCapture logs;
    EXPECT_EQ(nullptr, store->CreateSetManager("Tertiary"));
    EXPECT_TRUE(logs.Contains("CreateSetManager unable to find mode table Tertiary"));
    EXPECT_EQ(nullptr, store->CreateSetManager(static_cast<const CHAR*>(nullptr)));
}

TEST(TuningSetManagerTest, DerivedManagersServeTheirTableAndLeadBackToTheMain)
{
    CTuningStoreTestFile file(Source(TwoTables, {MeteringModule("{ \"Default\": { \"marker\": 1 }, "
                                                               "\"Secondary:Default\": { \"marker\": 2 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    std::unique_ptr<TuningSetManager> secondary(store->CreateSetManager("Secondary"));
    ASSERT_NE(nullptr, secondary);
    EXPECT_EQ(1, secondary->GetTableIndex());
    EXPECT_EQ(store.get(), secondary->GetMainSetManager());
    EXPECT_EQ(store.get(), store->GetMainSetManager());

    // A derived manager creates through the main manager: the new one's parent is the main one.
    std::unique_ptr<TuningSetManager> first(secondary->CreateSetManager(static_cast<BYTE>(0)));
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(0, first->GetTableIndex());
    EXPECT_EQ(store.get(), first->GetMainSetManager());
    EXPECT_EQ(store.get(), first->Root());

    const TuningMode                  branch[] = {Selector(ModeType::Default, 0)};
    aecMetering::AECCoreMeteringType* pMain    = store->GetModule_Metering(branch, 1, nullptr);
    aecMetering::AECCoreMeteringType* pOther   = secondary->GetModule_Metering(branch, 1, nullptr);
    ASSERT_NE(nullptr, pMain);
    ASSERT_NE(nullptr, pOther);
    EXPECT_NE(pMain, pOther) << "each table has its own instance";
    pMain->Release();
    pOther->Release();
}

TEST(TuningSetManagerTest, AddDefaultModuleIsRefusedOnADerivedManagerAndForNull)
{
    TuningSetManager main("main");
    TuningSetManager derived(&main, 0);
    CLogCapture      logs;
    CAbsentTuningModule prototype("aecTestOnly");
    EXPECT_FALSE(derived.AddDefaultModule(&prototype));
    EXPECT_FALSE(main.AddDefaultModule(nullptr));
    EXPECT_EQ(2U, logs.Count("AddDefaultModule called on a derived set manager object"));
    // The derived manager looks modules up in the main manager's map.
    EXPECT_EQ(main.GetDefaultModule(ParserCRC64::GetNameHash("Touch")),
              derived.GetDefaultModule(ParserCRC64::GetNameHash("Touch")));
}

TEST(TuningSetManagerTest, UpdateBinaryParametersIsNotAvailable)
{
    TuningSetManager store("update");
    CLogCapture      logs;
    BYTE             buffer[16] = {};
    EXPECT_FALSE(store.UpdateBinaryParameters(buffer, sizeof(buffer)));
    EXPECT_TRUE(logs.Contains(
        "UpdateBinaryParameters not available.  To enable, add --update when generating parser utility code"));
}

TEST(TuningSetManagerTest, SaveAndClearModulesEmptiesEveryInstanceList)
{
    CTuningStoreTestFile file(Source("", {MeteringModule("{ \"Default\": { \"marker\": 1 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    DefaultModule* pDefault = store->GetDefaultModule(ParserCRC64::GetNameHash("Metering"));
    ASSERT_NE(nullptr, pDefault);
    ASSERT_NE(nullptr, pDefault->first);
    TuningSetManager derived(store.get(), 0);
    derived.SaveAndClearModules();
    EXPECT_EQ(nullptr, pDefault->first) << "a derived manager forwards to the main one";
    EXPECT_EQ(nullptr, pDefault->last);
}

TEST(TuningSetManagerTest, AFileWithAModuleTheLibraryDoesNotReadLoadsCleanly)
{
    const std::string gyro = SourceModule("aecGyro", "aecGyro::GyroType", "3.1.4",
                                          "[ { \"name\": \"rate\", \"type\": \"FLOAT\" } ]",
                                          "{ \"Default\": { \"rate\": 2.5 } }");
    CTuningStoreTestFile file(Source("", {gyro, MeteringModule("{ \"Default\": { \"marker\": 1 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    CLogCapture                       logs;
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    EXPECT_TRUE(store->GetStatus()) << store->GetLastError();
    EXPECT_EQ(0U, logs.Count("[ERROR]"));

    const TuningMode branch[] = {Selector(ModeType::Default, 0)};
    ParameterModule* pGyro    = store->GetModule_aecGyro(branch, 1, nullptr);
    ASSERT_NE(nullptr, pGyro);
    EXPECT_NE(nullptr, dynamic_cast<CAbsentTuningModule*>(pGyro));
    EXPECT_TRUE(pGyro->IsLoaded());
    EXPECT_EQ(VersionUnion::Make(3, 1, 4), pGyro->GetVersion()) << "any version is taken";
    CHAR                       value[64] = {};
    PList<ParameterParserInfo> infos;
    EXPECT_FALSE(pGyro->GetValue("rate", value, sizeof(value)));
    EXPECT_FALSE(pGyro->SetValue("rate", "1.0"));
    EXPECT_FALSE(pGyro->GetInfo("", infos));
    // The accessor hands back and releases the previous instance like the typed ones.
    EXPECT_EQ(pGyro, store->GetModule_aecGyro(branch, 1, pGyro));
    EXPECT_EQ(1U, pGyro->GetOwnMode()->GetReferenceCount(pGyro));
    EXPECT_TRUE(pGyro->Release());
    EXPECT_EQ(0U, pGyro->GetOwnMode()->GetReferenceCount(pGyro));
}

TEST(TuningSetManagerTest, AnAbsentModuleOfAnotherNameHashIsRefused)
{
    TuningSetManager    store("absent");
    CAbsentTuningModule prototype("aecGyro");
    ModuleData          data(nullptr, &store, nullptr, ParserCRC64::GetNameHash("Tracker"), 1, 0,
                             VersionUnion::Make(1, 0, 0), 0, &store);
    DefaultModule       list(nullptr);
    CLogCapture         logs;
    EXPECT_EQ(nullptr, prototype.Create(&data, &list));
    EXPECT_TRUE(logs.Contains("Unable to create CAbsentTuningModule, binary name hash"));
    EXPECT_EQ(nullptr, list.first);
}

TEST(TuningSetManagerTest, AbsentModulesShareTheInstanceOfADuplicateID)
{
    TuningSetManager    store("absent");
    CAbsentTuningModule prototype("aecGyro");
    const UINT64        hash = ParserCRC64::GetNameHash("aecGyro");
    ModuleData          first(nullptr, &store, nullptr, hash, 4, 0, VersionUnion::Make(1, 0, 0), 0, &store);
    ModuleData          same(nullptr, &store, nullptr, hash, 9, 4, VersionUnion::Make(1, 0, 0), 0, &store);
    ModuleData          other(nullptr, &store, nullptr, hash, 10, 0, VersionUnion::Make(2, 0, 0), 0, &store);
    DefaultModule       list(nullptr);
    ParameterModule*    pFirst = prototype.Create(&first, &list);
    ASSERT_NE(nullptr, pFirst);
    EXPECT_EQ(4U, pFirst->GetKey());
    EXPECT_EQ(pFirst, prototype.Create(&same, &list));
    ParameterModule* pOther = prototype.Create(&other, &list);
    ASSERT_NE(nullptr, pOther);
    EXPECT_NE(pFirst, pOther);
    EXPECT_EQ(10U, pOther->GetKey());
}
