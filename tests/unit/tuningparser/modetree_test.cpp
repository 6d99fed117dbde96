// Tests of the mode tree: finding modules along a mode branch, links, mode loading and trimming, texts and values.
#include <gtest/gtest.h>

#include <cstring>

#include "tuning/parser/parsercrc.h"
#include "unit/tuningparser/clogcapture.h"
#include "unit/tuningparser/tuningparsertesthelpers.h"

namespace
{
struct ModeRow
{
    UINT32 Index;
    UINT16 Mode;
    UINT16 SubMode;
    UINT32 Parent;
    UINT32 Link;
    UINT32 Flags;
    UINT32 Group;
};

struct ModuleRow
{
    UINT32      ModeIndex;
    UINT32      First;
    const CHAR* pName;
};

ModeRow M(UINT32 index, UINT16 mode, UINT16 subMode, UINT32 parent, UINT32 link = CParameterFileBuilder::NoLink,
           UINT32 flags = 0, UINT32 group = 0)
{
    return ModeRow{index, mode, subMode, parent, link, flags, group};
}

// One table of the given modes, TestModule instances by mode, padded so that file mode can read it.
ByteVector TreeFile(const std::vector<ModeRow>& modes, const std::vector<ModuleRow>& modules)
{
    CParameterFileBuilder builder(7, 0, 0);
    const UINT32          table = builder.AddModeTable("Main");
    for (const ModeRow& m : modes)
    {
        builder.AddMode(table, m.Index, m.Mode, m.SubMode, m.Parent, m.Link, m.Flags, m.Group);
    }
    for (const ModuleRow& module : modules)
    {
        TestModuleTypeClass::Values values;
        values.first = module.First;
        values.last  = module.First + 1000;
        builder.AddModule((nullptr != module.pName) ? module.pName : "TestModule", TestModuleTypeClass::SourceVersion,
                          CParameterFileBuilder::ModeId(0, module.ModeIndex),
                          TestModuleTypeClass::Write(builder, values));
    }
    builder.AddData(ByteVector(4000, 0));
    return builder.Build();
}

bool Load(ParameterSetManager& manager, const ByteVector& bytes)
{
    ByteVector copy = bytes;
    return manager.LoadBinaryParameters(copy.data(), copy.size());
}

UINT32 FirstOf(ParameterSetManager& manager, std::vector<TuningMode> branch, const CHAR* pName = "TestModule")
{
    TestModuleTypeClass* pModule =
        AsTest(manager.GetModuleInternal(0, pName, branch.data(), static_cast<UINT32>(branch.size()), nullptr, 1));
    const UINT32 first = (nullptr != pModule) ? pModule->first : 0xFFFFFFFFu;
    manager.ReleaseModule(pModule);
    return first;
}

const TuningMode D = {ModeType::Default, {0}};

// A manager in file mode over a file on disk, removed with the fixture.
class CFileModeTree
{
public:
    CFileModeTree(const ByteVector& bytes, UINT32 cacheSize = 17)
        : m_name(WriteTempFile(bytes))
        , m_manager(MakeManager(true, cacheSize))
    {
        m_loaded = m_manager->LoadBinaryParameters(m_name.c_str());
    }
    ~CFileModeTree() { RemoveFile(m_name); }

    CTestSetManager& Manager() { return *m_manager; }
    bool             Loaded() const { return m_loaded; }

private:
    std::string                      m_name;
    std::unique_ptr<CTestSetManager> m_manager;
    bool                             m_loaded;
};
} // namespace

TEST(ModeTree, TheDeepestModeHoldingTheModuleWins)
{
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, TreeFile({M(0, 0, 0, 0), M(1, 2, 2, 0), M(2, 5, 6, 1)}, {{0, 1, nullptr}, {1, 2, nullptr}})));
    EXPECT_EQ(2U, FirstOf(*manager, {D, Mode(ModeType::Usecase, 2), Mode(ModeType::Scene, 6)}));
    EXPECT_EQ(1U, FirstOf(*manager, {D}));
}

TEST(ModeTree, SameTypeModesMatchInAnyOrder)
{
    auto below = MakeManager();
    ASSERT_TRUE(Load(*below, TreeFile({M(0, 0, 0, 0), M(1, 3, 1, 0), M(2, 3, 2, 1)}, {{0, 1, nullptr}, {2, 32, nullptr}})));
    EXPECT_EQ(32U, FirstOf(*below, {D, Mode(ModeType::Feature1, 1), Mode(ModeType::Feature1, 2)}));
    EXPECT_EQ(32U, FirstOf(*below, {D, Mode(ModeType::Feature1, 2), Mode(ModeType::Feature1, 1)}));

    auto above = MakeManager();
    ASSERT_TRUE(Load(*above, TreeFile({M(0, 0, 0, 0), M(1, 3, 2, 0), M(2, 3, 1, 1)}, {{0, 1, nullptr}, {2, 31, nullptr}})));
    EXPECT_EQ(31U, FirstOf(*above, {D, Mode(ModeType::Feature1, 1), Mode(ModeType::Feature1, 2)}));
    const TuningMode branch[] = {D, Mode(ModeType::Feature1, 1), Mode(ModeType::Feature1, 2)};
    ModeEntry*       pEntry   = above->GetModeEntry(0, branch, 3);
    ASSERT_NE(nullptr, pEntry);
    EXPECT_EQ(2U, GetModeIDValue(pEntry->Id));
}

TEST(ModeTree, AModeTheTreeLacksEndsTheWalkAtTheDeepestFound)
{
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, TreeFile({M(0, 0, 0, 0), M(1, 2, 2, 0), M(2, 5, 6, 1)}, {{0, 1, nullptr}, {1, 2, nullptr}, {2, 3, nullptr}})));
    EXPECT_EQ(2U, FirstOf(*manager, {D, Mode(ModeType::Usecase, 2), Mode(ModeType::Scene, 9), Mode(ModeType::Effect, 1)}));
    EXPECT_EQ(1U, FirstOf(*manager, {D, Mode(ModeType::Usecase, 5)}));
    const TuningMode missing[] = {D, Mode(ModeType::Usecase, 5)};
    EXPECT_EQ(nullptr, manager->GetModeEntry(0, missing, 2));
}

TEST(ModeTree, ALinkedModeReadsItsModulesFromTheTarget)
{
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, TreeFile({M(0, 0, 0, 0), M(1, 2, 1, 0), M(2, 2, 3, 0, 1), M(3, 5, 1, 1)},
                                        {{0, 1, nullptr}, {1, 5, nullptr}, {3, 6, nullptr}})));
    EXPECT_EQ(5U, FirstOf(*manager, {D, Mode(ModeType::Usecase, 3)}));
    EXPECT_EQ(6U, FirstOf(*manager, {D, Mode(ModeType::Usecase, 3), Mode(ModeType::Scene, 1)}));
}

TEST(ModeTree, AnEntryLikeItsParentMakesNoNode)
{
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, TreeFile({M(0, 0, 0, 0), M(1, 2, 2, 0, CParameterFileBuilder::NoLink, 0, 1),
                                         M(2, 2, 2, 1, CParameterFileBuilder::NoLink, 0, 5)},
                                        {{0, 1, nullptr}})));
    ParameterModeTable* pTable = manager->GetModeTable(0);
    EXPECT_EQ(pTable->Modes[1].Entry, pTable->Modes[2].Entry);
    EXPECT_EQ(1, pTable->Modes[1].Group);
    EXPECT_EQ(5, pTable->Modes[2].Group);
    EXPECT_EQ(2U, pTable->Owned().Count());
    EXPECT_EQ(pTable->Modes[1].Entry, pTable->RootMode.Entry->FirstChild);
    EXPECT_EQ(nullptr, pTable->Modes[1].Entry->FirstChild);
}

namespace
{
// 19 modes below the root (Usecase 0..7, Scene 0..10), each with its own instance.
std::vector<ModeRow> ManyModes(std::vector<ModuleRow>& modules, std::vector<std::vector<TuningMode>>& branches)
{
    std::vector<ModeRow> modes = {M(0, 0, 0, 0)};
    modules.push_back({0, 1, nullptr});
    for (UINT32 i = 0; i < 19; i++)
    {
        const UINT16 mode = (i < 8) ? 2 : 5;
        const UINT16 sub  = static_cast<UINT16>((i < 8) ? i : (i - 8));
        modes.push_back(M(i + 1, mode, sub, 0));
        modules.push_back({i + 1, 100 + i, nullptr});
        branches.push_back({D, Mode(static_cast<ModeType>(mode), sub)});
    }
    return modes;
}
} // namespace

TEST(ModeTreeCache, EighteenUsedModesTrimTheOldestUnused)
{
    std::vector<ModuleRow>              modules;
    std::vector<std::vector<TuningMode>> branches;
    const std::vector<ModeRow>          modes = ManyModes(modules, branches);
    CFileModeTree                        tree(TreeFile(modes, modules));
    ASSERT_TRUE(tree.Loaded());
    ParameterSetManager& manager = tree.Manager();
    ParameterModeTable*  pTable  = manager.GetModeTable(0);
    ParameterModule*     pHeld   = nullptr;
    for (UINT32 i = 0; i < 18; i++)
    {
        pHeld = manager.GetModuleInternal(0, "TestModule", branches[i].data(), 2, pHeld, 1);
        ASSERT_NE(nullptr, pHeld);
        EXPECT_EQ(100 + i, AsTest(pHeld)->first);
    }
    EXPECT_FALSE(pTable->Modes[1].Entry->Loaded);
    EXPECT_FALSE(pTable->Modes[1].Entry->ModuleMap.begin()->second.Module->IsLoaded());
    EXPECT_TRUE(pTable->Modes[2].Entry->Loaded);
    EXPECT_TRUE(pTable->Modes[18].Entry->Loaded);
    EXPECT_EQ(17U, pTable->ActiveModes.Count());
    manager.ReleaseModule(pHeld);
}

TEST(ModeTreeCache, AModeWhoseModuleIsReferencedStays)
{
    std::vector<ModuleRow>              modules;
    std::vector<std::vector<TuningMode>> branches;
    const std::vector<ModeRow>          modes = ManyModes(modules, branches);
    CFileModeTree                        tree(TreeFile(modes, modules));
    ASSERT_TRUE(tree.Loaded());
    ParameterSetManager& manager = tree.Manager();
    ParameterModeTable*  pTable  = manager.GetModeTable(0);
    ParameterModule*     pKept   = manager.GetModuleInternal(0, "TestModule", branches[0].data(), 2, nullptr, 1);
    ParameterModule*     pHeld   = nullptr;
    for (UINT32 i = 1; i < 19; i++)
    {
        pHeld = manager.GetModuleInternal(0, "TestModule", branches[i].data(), 2, pHeld, 1);
    }
    EXPECT_TRUE(pTable->Modes[1].Entry->Loaded);
    EXPECT_TRUE(pKept->IsLoaded());
    EXPECT_EQ(100U, AsTest(pKept)->first);
    EXPECT_FALSE(pTable->Modes[2].Entry->Loaded);
    manager.ReleaseModule(pKept);
    manager.ReleaseModule(pHeld);
}

TEST(ModeTreeCache, AChangedModeStaysLoadedAcrossTrimming)
{
    std::vector<ModuleRow>              modules;
    std::vector<std::vector<TuningMode>> branches;
    const std::vector<ModeRow>          modes = ManyModes(modules, branches);
    CFileModeTree                        tree(TreeFile(modes, modules));
    ASSERT_TRUE(tree.Loaded());
    ParameterSetManager& manager = tree.Manager();
    ParameterModeTable*  pTable  = manager.GetModeTable(0);
    EXPECT_TRUE(manager.SetValue(0, "0.0|2.0", "TestModule", "first", "4242"));
    EXPECT_EQ(1U, manager.GetChangeCount());
    EXPECT_TRUE(pTable->Modes[1].Entry->Preserve);
    ParameterModule* pHeld = nullptr;
    for (UINT32 i = 1; i < 19; i++)
    {
        pHeld = manager.GetModuleInternal(0, "TestModule", branches[i].data(), 2, pHeld, 1);
    }
    manager.ReleaseModule(pHeld);
    EXPECT_TRUE(pTable->Modes[1].Entry->Loaded);
    EXPECT_EQ(4242U, FirstOf(manager, branches[0]));
    TestModuleTypeClass* pChanged = AsTest(pTable->Modes[1].Entry->FindModule(ParserCRC64::GetNameHash("TestModule")));
    EXPECT_EQ(0x01000000u, pChanged->GetKey() & 0xFF000000u);
}

TEST(ModeTreeBufferMode, LoadAndUnloadModeFailButGetModuleWorks)
{
    CLogCapture log;
    auto        manager = MakeManager();
    ASSERT_TRUE(Load(*manager, TreeFile({M(0, 0, 0, 0), M(1, 2, 2, 0)}, {{0, 1, nullptr}, {1, 2, nullptr}})));
    const TuningMode branch[] = {D, Mode(ModeType::Usecase, 2)};
    EXPECT_FALSE(manager->LoadMode(0, branch, 2, "test"));
    EXPECT_TRUE(log.Contains("LoadMode is not valid in buffer mode"));
    EXPECT_FALSE(manager->UnloadMode(0, branch, 2));
    EXPECT_TRUE(log.Contains("UnloadMode is not valid in buffer mode"));
    EXPECT_EQ(2U, FirstOf(*manager, {D, Mode(ModeType::Usecase, 2)}));
    auto empty = MakeManager();
    EXPECT_FALSE(empty->LoadMode(0, branch, 2, "test"));
    EXPECT_STREQ("LoadMode called with no binary file loaded", empty->GetLastError());
}

TEST(ModeTreeFileMode, ModesLoadOnDemandAndUnload)
{
    CLogCapture   log;
    CFileModeTree tree(TreeFile({M(0, 0, 0, 0), M(1, 2, 2, 0), M(2, 1, 3, 0)}, {{0, 1, nullptr}, {1, 2, nullptr}, {2, 3, nullptr}}));
    ASSERT_TRUE(tree.Loaded());
    ParameterSetManager& manager = tree.Manager();
    ParameterModeTable*  pTable  = manager.GetModeTable(0);
    EXPECT_FALSE(pTable->Modes[1].Entry->Loaded);
    EXPECT_TRUE(pTable->Modes[2].Entry->Loaded);
    EXPECT_TRUE(pTable->Modes[2].Entry->Preserve);
    const TuningMode branch[] = {D, Mode(ModeType::Usecase, 2)};
    EXPECT_TRUE(manager.LoadMode(0, branch, 2, "test"));
    EXPECT_TRUE(pTable->Modes[1].Entry->Loaded);
    EXPECT_TRUE(log.Contains("Loading modules (GetModule:test:0.0|2.2): 0.0|2.2"));
    EXPECT_EQ(0U, manager.GetSymbolTable()->File()->RefCount());

    ParameterModule* pModule = manager.GetModuleInternal(0, "TestModule", branch, 2, nullptr, 1);
    EXPECT_TRUE(manager.UnloadMode(0, branch, 2));
    EXPECT_FALSE(pTable->Modes[1].Entry->Loaded);
    EXPECT_TRUE(log.Contains("Unloading referenced module TestModule, Mode: 0.0|2.2, Ref count: 1"));
    EXPECT_TRUE(log.Contains("ReleaseReferences called with unreleased module: TestModule, RefCnt: 1"));
    EXPECT_FALSE(manager.ReleaseModule(pModule));
    EXPECT_TRUE(log.Contains("Attempt to release unreferenced module."));
    // The root is preserved: unloading it does nothing.
    EXPECT_TRUE(manager.UnloadMode(0, branch, 1));
    EXPECT_TRUE(pTable->RootMode.Entry->Loaded);
}

TEST(ModeTreeTexts, PathsAndNames)
{
    PList<TuningMode> branch;
    ASSERT_TRUE(ParameterSetManager::GetModeBranchFromPath("0.0|2.2|5.6", branch));
    ASSERT_EQ(3U, branch.Count());
    EXPECT_EQ(ModeType::Scene, branch[2].mode);
    EXPECT_EQ(6, branch[2].subMode.value);
    PList<TuningMode> bad;
    EXPECT_FALSE(ParameterSetManager::GetModeBranchFromPath("0.0|x.1", bad));
    EXPECT_FALSE(ParameterSetManager::GetModeBranchFromPath("", bad));
    CHAR text[128];
    EXPECT_TRUE(ParameterSetManager::GetPathFromModeBranch(branch.ToArray(), 3, text, sizeof(text)));
    EXPECT_STREQ("0.0|2.2|5.6", text);
    EXPECT_EQ(2U, ParameterSetManager::GetModeIndex("usecase"));
    EXPECT_EQ(0U, ParameterSetManager::GetModeIndex("Use"));
    EXPECT_EQ(6U, ParameterSetManager::GetModeIndex("EFFECT"));
    EXPECT_EQ(6U, ParameterSetManager::GetSubModeIndex(5, "portrait"));
    EXPECT_EQ(7U, ParameterSetManager::GetSubModeIndex(5, "7"));
    EXPECT_EQ(0U, ParameterSetManager::GetSubModeIndex(5, "Nowhere"));
    auto manager = MakeManager();
    EXPECT_TRUE(manager->GetModeShorthand("Usecase.Video|Scene.Portrait", text, sizeof(text)));
    EXPECT_STREQ("2.2|5.6", text);
    EXPECT_TRUE(manager->GetModeShorthand("Default|Feature2.HDR10", text, sizeof(text)));
    EXPECT_STREQ("0|4.3", text);
    EXPECT_TRUE(ParameterSetManager::GetDorvikModesString("0.0|2.2|5.6;0.0|3.99", text, sizeof(text)));
    EXPECT_STREQ("Default|Usecase.Video|Scene.Portrait;Default|Feature1.99", text);
}

TEST(ModeTreeTexts, ChildModesAndActiveModes)
{
    CLogCapture   log;
    CFileModeTree tree(TreeFile({M(0, 0, 0, 0), M(1, 2, 2, 0), M(2, 5, 6, 1), M(3, 5, 30, 0)},
                                {{0, 1, nullptr}, {1, 2, nullptr}, {2, 3, nullptr}}));
    ASSERT_TRUE(tree.Loaded());
    ParameterSetManager& manager = tree.Manager();
    CHAR                 text[128];
    EXPECT_EQ(std::strlen("Usecase.Video,Scene.30") + 1, manager.GetChildModes(0, "", text, sizeof(text)));
    EXPECT_STREQ("Usecase.Video,Scene.30", text);
    EXPECT_GT(manager.GetChildModes(0, "0.0|2.2", text, sizeof(text)), 0U);
    EXPECT_STREQ("Scene.Portrait", text);
    EXPECT_EQ(0U, manager.GetChildModes(0, "", text, 4));
    EXPECT_TRUE(log.Contains("Failed to write 23 bytes to binary offset 0, length 4"));

    const TuningMode deep[]    = {D, Mode(ModeType::Usecase, 2), Mode(ModeType::Scene, 6)};
    const TuningMode shallow[] = {D, Mode(ModeType::Usecase, 2)};
    ParameterModule* pDeep     = manager.GetModuleInternal(0, "TestModule", deep, 3, nullptr, 1);
    ParameterModule* pShallow  = manager.GetModuleInternal(0, "TestModule", shallow, 2, nullptr, 1);
    ASSERT_TRUE(manager.GetActiveModes(0, text, sizeof(text)));
    EXPECT_STREQ("Default|Usecase.Video|Scene.Portrait", text);
    manager.ReleaseModule(pDeep);
    ASSERT_TRUE(manager.GetActiveModes(0, text, sizeof(text)));
    EXPECT_STREQ("Default|Usecase.Video", text);
    manager.ReleaseModule(pShallow);
}

TEST(ModeTreeTexts, InvalidBranchesAreReported)
{
    CLogCapture log;
    auto        manager = MakeManager();
    ASSERT_TRUE(Load(*manager, TreeFile({M(0, 0, 0, 0), M(1, 2, 2, 0)}, {{0, 1, nullptr}, {1, 2, nullptr}})));
    EXPECT_EQ(1U, FirstOf(*manager, {D, {static_cast<ModeType>(9), {1}}}));
    EXPECT_TRUE(log.Contains("GetModule Error: Invalid Mode value (9) found in modeBranch[1]. Expected range: 0 to 6"));
    EXPECT_EQ(1U, FirstOf(*manager, {D, D}));
    EXPECT_TRUE(log.Contains("GetModule Error: Default mode found in modeBranch at an index > 0 (1). Index 0 must be "
                             "Default, but only index 0 may be Default"));
    EXPECT_EQ(2U, FirstOf(*manager, {Mode(ModeType::Sensor, 0), Mode(ModeType::Usecase, 2)}));
    EXPECT_TRUE(log.Contains("GetModule(TestModule) called with first mode != Default, might not return module data "
                             "from the desired mode path: 1.0|2.2"));
    EXPECT_NE(nullptr, manager->GetModuleInternal(0, "TestModule", nullptr, 2, nullptr, 1));
    EXPECT_TRUE(log.Contains("GetModule(TestModule) called with modeBranch == null and modeCount = 2"));
    EXPECT_EQ(nullptr, manager->GetModuleInternal(3, "TestModule", nullptr, 0, nullptr, 1));
    EXPECT_TRUE(log.Contains("GetModule called with mode table index (3) >= mode table count (1)"));
    EXPECT_EQ(nullptr, manager->GetModuleInternal(0, "Absent", nullptr, 0, nullptr, 1));
    EXPECT_TRUE(log.Contains("GetModule Absent module not found in default scenario (Main), mode path: "));
}

TEST(ModeTreeSections, BrokenEntriesAreSkippedWithTheirTexts)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    const UINT32          table = builder.AddModeTable("Main");
    builder.AddMode(table, 0, 0, 0, 0);
    builder.AddRawMode(table, CParameterFileBuilder::ModeId(1, 1), 2, 1, 0, CParameterFileBuilder::NoLink);
    builder.AddRawMode(table, 2, 2, 2, CParameterFileBuilder::ModeId(1, 0), CParameterFileBuilder::NoLink);
    builder.AddRawMode(table, 3, 2, 3, 0, CParameterFileBuilder::ModeId(1, 0));
    builder.AddRawMode(table, 9, 2, 4, 0, CParameterFileBuilder::NoLink);
    builder.AddRawMode(table, 5, 2, 5, 9, CParameterFileBuilder::NoLink);
    builder.AddRawMode(table, 6, 2, 6, 0, 9);
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0,
                      TestModuleTypeClass::Write(builder, TestModuleTypeClass::Values()));
    auto manager = MakeManager();
    EXPECT_FALSE(Load(*manager, builder.Build()));
    EXPECT_TRUE(log.Contains("ReadModeSection: Mode Table Index in Mode ID (1) does not match expected (0)"));
    EXPECT_TRUE(log.Contains("ReadModeSection: Index from Mode ID does not match expected"));
    EXPECT_TRUE(log.Contains("ReadModeSection: Mode Table Index != Parent Table Index,Mode ID (2), Parent ID (16777216)"));
    EXPECT_TRUE(log.Contains("ReadModeSection: Mode Table Index != Link Table Index, Mode ID (3), Link ID (16777216)"));
    EXPECT_TRUE(log.Contains("ReadModeSection: Mode ID exceeds mode count"));
    EXPECT_TRUE(log.Contains("ReadModeSection: Parent Mode ID exceeds mode count"));
    EXPECT_TRUE(log.Contains("ReadModeSection: Link Mode ID exceeds mode count"));
}

TEST(ModeTreeSections, AWrongSizeSkipsTheSectionAndLinkCyclesAreCut)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    const UINT32          table = builder.AddModeTable("Main");
    builder.AddMode(table, 0, 0, 0, 0);
    builder.AddMode(table, 1, 2, 1, 0, 2);
    builder.AddMode(table, 2, 2, 2, 0, 1);
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0,
                      TestModuleTypeClass::Write(builder, TestModuleTypeClass::Values()));
    builder.ExtraSections.push_back({2, 200, 130});
    auto manager = MakeManager();
    EXPECT_TRUE(Load(*manager, builder.Build()));
    EXPECT_TRUE(log.Contains("ReadModeSection: ModeSize 130 does not match expected size 128"));
    EXPECT_TRUE(log.Contains("ReadModeSection: Link cycle at Mode ID (1), link removed"));
    EXPECT_EQ(0U, FirstOf(*manager, {D, Mode(ModeType::Usecase, 2), Mode(ModeType::Scene, 1)}));
}

TEST(ModeTreeValues, GetSetAndInfoByText)
{
    CLogCapture log;
    auto        manager = MakeManager();
    ASSERT_TRUE(Load(*manager, TreeFile({M(0, 0, 0, 0), M(1, 2, 2, 0)}, {{0, 11, nullptr}, {1, 12, nullptr}})));
    CHAR text[1024];
    EXPECT_TRUE(manager->GetValue(0, "0.0|2.2", "TestModule", "first,last", text, sizeof(text)));
    EXPECT_STREQ("first=12;last=1012", text);
    EXPECT_TRUE(manager->GetValue(0, "0.0|2.2", "TestModule.nested", "a,b", text, sizeof(text)));
    EXPECT_STREQ("a=0;b=0", text);
    EXPECT_TRUE(manager->GetValue(0, "0.0", "TestModule", nullptr, text, sizeof(text)));
    EXPECT_STREQ("first=11;gain=0;fixed=0,0,0,0,0,0,0,0;list=;nested;last=1011", text);
    EXPECT_FALSE(manager->GetValue(0, "0.0", "TestModule", "missing", text, sizeof(text)));

    EXPECT_TRUE(manager->SetValue(0, "0.0|2.2", "TestModule", "gain", "0.125"));
    EXPECT_TRUE(manager->GetValue(0, "0.0|2.2", "TestModule", "gain", text, sizeof(text)));
    EXPECT_STREQ("gain=0.125", text);
    EXPECT_FALSE(manager->SetValue(0, "0.0|2.2", "TestModule", "gain", "1a"));
    EXPECT_STREQ("Dorvik SetValues failed: Variable not found: \n", manager->GetLastError());
    EXPECT_FALSE(manager->SetValue(0, "0.0", "Absent", "gain", "1"));
    EXPECT_STREQ("Dorvik SetValues failed: Module not found: \n", manager->GetLastError());

    PList<ParameterParserInfo> infos;
    EXPECT_TRUE(manager->GetInfo(0, "0.0", "TestModule", infos));
    ASSERT_EQ(6U, infos.Count());
    EXPECT_STREQ("gain", infos[1].Name);
    EXPECT_STREQ("Float", infos[1].Type);
    EXPECT_TRUE(infos[2].isArray);
    EXPECT_EQ(8U, infos[2].Count);
    EXPECT_FALSE(manager->GetInfo(0, static_cast<const TuningMode*>(nullptr), 0, "TestModule", infos));
    EXPECT_TRUE(log.Contains("GetInfo called with null or empty modeBranch"));
}

TEST(ModeTreeModules, GetModulesTakesLocalOnesWithAReference)
{
    CFileModeTree tree(TreeFile({M(0, 0, 0, 0), M(1, 2, 2, 0, CParameterFileBuilder::NoLink, 0, 3)},
                                {{0, 1, nullptr}, {1, 2, nullptr}, {1, 3, "OtherModule"}}));
    ASSERT_TRUE(tree.Loaded());
    ParameterSetManager&    manager  = tree.Manager();
    const TuningMode        branch[] = {D, Mode(ModeType::Usecase, 2)};
    PList<ParameterModule*> list;
    ASSERT_TRUE(manager.GetModules(0, list, branch, 2, true, false, nullptr));
    ASSERT_EQ(2U, list.Count());
    EXPECT_TRUE(list[0]->IsLoaded());
    ModeEntry* pMode = manager.GetModeTable(0)->Modes[1].Entry;
    EXPECT_EQ(2U, pMode->GetReferenceCount(nullptr));
    EXPECT_TRUE(pMode->IsActive());
    manager.ReleaseModules(list);
    EXPECT_EQ(0U, pMode->GetReferenceCount(nullptr));
    const PipelineType stats = PipelineType::STATS;
    const PipelineType byr   = PipelineType::BYR;
    ASSERT_TRUE(manager.GetModules(0, list, branch, 2, true, false, &stats));
    EXPECT_EQ(0U, list.Count());
    ASSERT_TRUE(manager.GetModules(0, list, branch, 2, true, false, &byr));
    EXPECT_EQ(0U, list.Count());
    ASSERT_TRUE(manager.GetModules(0, list, branch, 2, false, true, nullptr));
    EXPECT_EQ(0U, list.Count());
}

TEST(ModeTreeUpdate, AnotherManagerReplacesModulesOfMatchingModes)
{
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, TreeFile({M(0, 0, 0, 0), M(1, 2, 2, 0)}, {{0, 1, nullptr}, {1, 2, nullptr}})));
    {
        auto update = MakeManager();
        ASSERT_TRUE(Load(*update, TreeFile({M(0, 0, 0, 0), M(1, 2, 2, 0), M(2, 5, 1, 0)}, {{1, 50, nullptr}, {2, 60, nullptr}})));
        EXPECT_TRUE(manager->UpdateParameters(update.get()));
    }
    EXPECT_EQ(1U, FirstOf(*manager, {D}));
    EXPECT_EQ(50U, FirstOf(*manager, {D, Mode(ModeType::Usecase, 2)}));
    EXPECT_EQ(1U, FirstOf(*manager, {D, Mode(ModeType::Scene, 1)}));

    CParameterFileBuilder named(7, 0, 0);
    const UINT32          table = named.AddModeTable("Other");
    named.AddMode(table, 0, 0, 0, 0);
    named.AddMode(table, 0, 0, 0, 0);
    const UINT32 second = named.AddModeTable("Second");
    named.AddMode(second, 0, 0, 0, 0);
    auto other = MakeManager();
    ASSERT_TRUE(Load(*other, named.Build()));
    EXPECT_FALSE(manager->UpdateParameters(other.get()));
    EXPECT_STREQ("UpdateParameters: Error: No matching module tables names found, unable to update parameters",
                 manager->GetLastError());
}
