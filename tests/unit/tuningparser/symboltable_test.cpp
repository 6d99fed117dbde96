// Tests of the symbol, data and definition tables: IDs, references, drift between file and code, duplicates.
#include <gtest/gtest.h>

#include <cstring>
#include <utility>
#include <vector>

#include "platform/velaallocator.h"
#include "tuning/parser/parsercrc.h"
#include "unit/tuningparser/clogcapture.h"
#include "unit/tuningparser/tuningparsertesthelpers.h"

namespace
{
const TuningMode s_root[] = {{ModeType::Default, {0}}};

typedef CDefinitionWriter::Child Child;

TestModuleTypeClass::Values Values(UINT32 first = 5)
{
    TestModuleTypeClass::Values values;
    values.first = first;
    values.gain  = 2.5f;
    for (UINT32 i = 0; i < 8; i++)
    {
        values.fixed[i] = 10 + i;
    }
    values.list  = {4, 5, 6};
    values.label = "text";
    values.a     = 21;
    values.b     = 0.5f;
    values.last  = 77;
    return values;
}

void AddRoot(CParameterFileBuilder& builder)
{
    const UINT32 table = builder.AddModeTable("Main");
    builder.AddMode(table, 0, 0, 0, 0);
}

bool Load(ParameterSetManager& manager, const ByteVector& bytes)
{
    ByteVector copy = bytes;
    return manager.LoadBinaryParameters(copy.data(), copy.size());
}

TestModuleTypeClass* Get(ParameterSetManager& manager, const CHAR* pName = "TestModule")
{
    return AsTest(manager.GetModuleInternal(0, pName, s_root, 1, nullptr, 1));
}

std::string Hex(UINT64 value)
{
    CHAR text[32];
    std::snprintf(text, sizeof(text), "0x%llx", static_cast<unsigned long long>(value));
    return text;
}

// The test module's fixed array as the file holds it: its count, then 10, 11, ...
void WriteFixedArray(CRecordWriter& w, UINT32 count)
{
    w.U32(count);
    for (UINT32 i = 0; i < count; i++)
    {
        w.U32(10 + i);
    }
}

// An empty variable array and no label.
void WriteNoListNoLabel(CRecordWriter& w)
{
    w.U32(0).U32(0).U32(0).U32(0);
}

// The test module's record: two head values (gain 2.5 between them unless left out), the fixed array, no list or
// label, the nested record {21, 0.5} and the tail value.
void AddTestModule(CParameterFileBuilder& builder, UINT32 head, UINT32 tail, UINT32 fixedCount = 8,
                   bool withGain = true)
{
    CRecordWriter w = builder.Writer();
    w.Begin().U32(head);
    if (withGain)
    {
        w.F32(2.5f);
    }
    WriteFixedArray(w, fixedCount);
    WriteNoListNoLabel(w);
    w.Begin().U32(21).F32(0.5f).End();
    w.U32(tail).End();
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, w.Bytes());
}

// The test module's members as the code declares them; tests change one to make the file drift.
std::vector<Child> TestModuleMembers()
{
    return {{13, 0, "first", 0, 1, 1}, {16, 0, "gain", 1, 1, 1},  {13, 0, "fixed", 0, 8, 8},
            {12, 0, "list", 0, 0, 16}, {24, 0, "label", 0, 1, 1}, {5, 2, "nested", 0, 1, 1},
            {13, 0, "last", 0, 1, 1}};
}

// The file's descriptions of the nested record and of the module with these members.
void SetTestDefinitions(CParameterFileBuilder& builder, const std::vector<Child>& moduleMembers)
{
    CDefinitionWriter defs;
    defs.Structure(2, "TestRecordType", {{13, 0, "a", 0, 1, 1}, {16, 0, "b", 1, 1, 1}});
    defs.Structure(1, "TestModuleType", moduleMembers);
    defs.Module(1, "TestModule");
    builder.SetDefinitions(defs.Bytes());
}
} // namespace

TEST(SymbolTable, Version6EntryZeroIsNeverAModuleAndReferenceZeroReadsEmpty)
{
    CParameterFileBuilder builder(6, 0, 0);
    builder.PlaceholderModule = "TestModule";
    AddRoot(builder);
    TestModuleTypeClass::Values values = Values();
    values.list.clear();
    values.label.clear();
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(builder, values));
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, builder.Build()));
    EXPECT_TRUE(manager->GetStatus());
    DefaultModule* pDefault = manager->GetDefaultModule(ParserCRC64::GetNameHash("TestModule"));
    ASSERT_NE(nullptr, pDefault->first);
    EXPECT_EQ(nullptr, pDefault->first->Next);
    EXPECT_EQ(nullptr, pDefault->Find(0));
    TestModuleTypeClass* pModule = Get(*manager);
    ASSERT_NE(nullptr, pModule);
    EXPECT_EQ(1U, pModule->SymbolTableID);
    EXPECT_EQ(nullptr, pModule->list);
    EXPECT_EQ(0U, pModule->listCount);
    EXPECT_EQ(nullptr, pModule->label);
    EXPECT_EQ(77U, pModule->last);
}

TEST(SymbolTable, OlderFilesLoadTheirTreeButFindNoModules)
{
    CLogCapture           log;
    CParameterFileBuilder builder(5, 0, 0);
    AddRoot(builder);
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(builder, Values()));
    builder.AddModule("OtherModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(builder, Values()));
    auto manager = MakeManager();
    EXPECT_TRUE(Load(*manager, builder.Build()));
    EXPECT_FALSE(manager->GetStatus());
    EXPECT_EQ(2U, log.Count("Failed to find header module:  Name Hash: 0,"));
    EXPECT_NE(nullptr, manager->GetModeTable(0)->RootMode.Entry);
    EXPECT_EQ(nullptr, Get(*manager));

    CParameterFileBuilder again(5, 0, 0);
    AddRoot(again);
    again.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(again, Values()));
    auto quiet = MakeManager();
    quiet->SetIgnoreMissingModules(true);
    log.Clear();
    EXPECT_TRUE(Load(*quiet, again.Build()));
    EXPECT_FALSE(log.Contains("Failed to find header module"));
}

TEST(SymbolTableDrift, AMemberTheFileLacksStaysZeroAndLaterMembersStayInPlace)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    // The file's structure has no "gain".
    AddTestModule(builder, 5, 77, 8, false);
    std::vector<Child> members = TestModuleMembers();
    members.erase(members.begin() + 1); // no "gain"
    SetTestDefinitions(builder, members);
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, builder.Build()));
    TestModuleTypeClass* pModule = Get(*manager);
    ASSERT_NE(nullptr, pModule);
    EXPECT_EQ(5U, pModule->first);
    EXPECT_EQ(0.0f, pModule->gain);
    EXPECT_EQ(1U, log.Count("ReadSimpleTypeFixedArray: " + Hex(ParserCRC64::GetNameHash("gain")) +
                            " entry not found in the binary file, all values will be 0"));
    EXPECT_EQ(10U, pModule->fixed[0]);
    EXPECT_EQ(17U, pModule->fixed[7]);
    EXPECT_EQ(21U, pModule->nested.a);
    EXPECT_EQ(0.5f, pModule->nested.b);
    EXPECT_EQ(77U, pModule->last);
}

TEST(SymbolTableDrift, AMemberTheCodeLacksIsPassedOver)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    // No definitions: the nested structure carries an extra member that only its limit tells about.
    CRecordWriter w = builder.Writer();
    w.Begin().U32(5).F32(2.5f);
    WriteFixedArray(w, 8);
    WriteNoListNoLabel(w);
    w.Begin().U32(21).F32(0.5f).U32(0xDEAD).End();
    w.U32(77).End();
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, w.Bytes());
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, builder.Build()));
    TestModuleTypeClass* pModule = Get(*manager);
    ASSERT_NE(nullptr, pModule);
    EXPECT_EQ(21U, pModule->nested.a);
    EXPECT_EQ(77U, pModule->last);
    // The nested structure starts at 64: its limit says it ends at 80, the code read up to 76.
    EXPECT_TRUE(log.Contains("Binary file structure bytes (80) does not match expected bytes (76). XSD structure "
                             "modified"));
}

TEST(SymbolTableDrift, ReorderedMembersAreFoundByTheirDescription)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    // The file has "last" first and "first" last.
    AddTestModule(builder, 77, 5);
    std::vector<Child> members = TestModuleMembers();
    std::swap(members.front(), members.back()); // "last" first, "first" last
    SetTestDefinitions(builder, members);
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, builder.Build()));
    TestModuleTypeClass* pModule = Get(*manager);
    ASSERT_NE(nullptr, pModule);
    EXPECT_EQ(5U, pModule->first);
    EXPECT_EQ(77U, pModule->last);
    EXPECT_EQ(2.5f, pModule->gain);
    EXPECT_EQ(21U, pModule->nested.a);
    EXPECT_TRUE(log.Contains("differs from expected"));
}

TEST(SymbolTableDrift, AFixedArrayOfTenReadIntoEightTakesEight)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    AddTestModule(builder, 5, 77, 10);
    std::vector<Child> members = TestModuleMembers();
    members[2]                 = {13, 0, "fixed", 0, 10, 10};
    SetTestDefinitions(builder, members);
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, builder.Build()));
    TestModuleTypeClass* pModule = Get(*manager);
    ASSERT_NE(nullptr, pModule);
    EXPECT_EQ(10U, pModule->fixed[0]);
    EXPECT_EQ(17U, pModule->fixed[7]);
    EXPECT_EQ(1U, log.Count(Hex(ParserCRC64::GetNameHash("fixed")) +
                            " expected count (8) != the binary count (10), the binary XSD != the source XSD"));
    EXPECT_EQ(21U, pModule->nested.a);
    EXPECT_EQ(77U, pModule->last);
}

TEST(SymbolTableDrift, WithoutDefinitionsAVersion7CountStillGovernsTheFixedArray)
{
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    AddTestModule(builder, 5, 77, 10);
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, builder.Build()));
    TestModuleTypeClass* pModule = Get(*manager);
    ASSERT_NE(nullptr, pModule);
    EXPECT_EQ(17U, pModule->fixed[7]);
    EXPECT_EQ(21U, pModule->nested.a);
    EXPECT_EQ(77U, pModule->last);
}

TEST(SymbolTableDrift, AVariableArrayTooBigForItsDataIsClipped)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    CRecordWriter elements(1, false);
    elements.I32(4).I32(5).I32(6);
    const UINT32  reference = builder.AddData(elements.Bytes());
    CRecordWriter w         = builder.Writer();
    w.Begin().U32(5).F32(2.5f);
    WriteFixedArray(w, 8);
    w.U32(100).U32(reference).U32(0).U32(0);
    w.Begin().U32(21).F32(0.5f).End();
    w.U32(77).End();
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, w.Bytes());
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, builder.Build()));
    TestModuleTypeClass* pModule = Get(*manager);
    ASSERT_NE(nullptr, pModule);
    ASSERT_EQ(3U, pModule->listCount);
    EXPECT_EQ(6, pModule->list[2]);
    EXPECT_TRUE(log.Contains("Minimun 4 size (4) * count (100) exceeds avaialable data (12), setting count to 3 to "
                             "prevent allocation errors"));
}

TEST(SymbolTableDrift, AnExpectedCountLargerThanTheDataWins)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    CRecordWriter elements(1, false);
    elements.I32(4).I32(5);
    const UINT32  reference = builder.AddData(elements.Bytes());
    CRecordWriter owner     = builder.Writer();
    owner.U32(50).U32(reference).U32(50).U32(reference);
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(builder, Values()));
    const UINT32 ownerId = builder.AddModule("OtherModule", TestModuleTypeClass::SourceVersion, 0xFFFFFFFEu, owner.Bytes());
    builder.AddData(ByteVector(4000, 0));
    const std::string name    = WriteTempFile(builder.Build());
    auto              manager = MakeManager(true);
    ASSERT_TRUE(manager->LoadBinaryParameters(name.c_str()));
    // File mode reads entries again on demand.
    ParameterFileSymbolTableEntry entry;
    ASSERT_TRUE(manager->GetSymbolTable()->Find(entry, ownerId, true));
    UINT32                         count    = 0;
    ParameterFileSymbolTableEntry* pSource  = nullptr;
    ParameterFileSymbolTableEntry  local;
    bool                           adjusted = false;
    ASSERT_TRUE(entry.GetCountAndPointerEntry(count, pSource, local, 4, 5, 0, true, false, false, nullptr, adjusted,
                                              ParameterFileSymbolTableEntry::NoLimit));
    EXPECT_EQ(&local, pSource);
    EXPECT_EQ(5U, count);
    EXPECT_TRUE(adjusted);
    ASSERT_TRUE(entry.GetCountAndPointerEntry(count, pSource, local, 4, 0, 0, true, false, false, nullptr, adjusted,
                                              ParameterFileSymbolTableEntry::NoLimit));
    EXPECT_EQ(2U, count);
    EXPECT_TRUE(log.Contains("setting count to 5 to prevent allocation errors"));
    EXPECT_TRUE(log.Contains("setting count to 2 to prevent allocation errors"));
    RemoveFile(name);
}

TEST(SymbolTableDuplicates, TwoMembersSharingABlockFreeItWithTheLastRelease)
{
    CParameterFileBuilder builder(7, 0, 0);
    const UINT32          table = builder.AddModeTable("Main");
    builder.AddMode(table, 0, 0, 0, 0);
    builder.AddMode(table, 1, 2, 2, 0);
    TestModuleTypeClass::Values first  = Values(1);
    TestModuleTypeClass::Values second = Values(2);
    // Both lists are one duplicate group: the data entries name the first one as their duplicate.
    const UINT32 firstList = 1;
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0,
                      TestModuleTypeClass::Write(builder, first, firstList));
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, CParameterFileBuilder::ModeId(0, 1),
                      TestModuleTypeClass::Write(builder, second, firstList));
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, builder.Build()));
    TestModuleTypeClass* pRootModule = Get(*manager);
    const TuningMode     video[]     = {{ModeType::Default, {0}}, {ModeType::Usecase, {2}}};
    TestModuleTypeClass* pVideo      = AsTest(manager->GetModuleInternal(0, "TestModule", video, 2, nullptr, 1));
    ASSERT_NE(nullptr, pRootModule);
    ASSERT_NE(nullptr, pVideo);
    ASSERT_NE(pRootModule, pVideo);
    EXPECT_EQ(pRootModule->list, pVideo->list);
    EXPECT_NE(pRootModule->label, pVideo->label);

    ParameterFileSymbolTable* pTable = manager->GetSymbolTable();
    INT32*                    pList  = pVideo->list;
    pRootModule->UnloadModule();
    EXPECT_EQ(nullptr, pRootModule->list);
    // Still held by the second member: readable (a sanitizer would see a freed block).
    EXPECT_EQ(6, pList[2]);
    pVideo->UnloadModule();
    EXPECT_FALSE(pTable->ReleaseDupObject(nullptr));
}

TEST(SymbolTableDuplicates, ReleaseCountsDownAndUnknownBlocksAreTheCallers)
{
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    builder.AddData(ByteVector(4, 1), 1);
    builder.AddData(ByteVector(4, 1), 1);
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(builder, Values()));
    auto manager = MakeManager(true);
    builder.AddData(ByteVector(4000, 0));
    const std::string name = WriteTempFile(builder.Build());
    ASSERT_TRUE(manager->LoadBinaryParameters(name.c_str()));
    ParameterFileSymbolTable* pTable = manager->GetSymbolTable();
    int                       block  = 0;
    EXPECT_EQ(nullptr, pTable->GetDupObject(false, 1, 9));
    pTable->SetDupObject(false, 1, &block, 9, 1);
    UINT32 count = 0;
    EXPECT_EQ(&block, pTable->GetDupObject(false, 2, 9, &count));
    EXPECT_EQ(1U, count);
    EXPECT_EQ(nullptr, pTable->GetDupObject(false, 2, 10));
    EXPECT_FALSE(pTable->ReleaseDupObject(&block));
    EXPECT_TRUE(pTable->ReleaseDupObject(&block));
    int other = 0;
    EXPECT_TRUE(pTable->ReleaseDupObject(&other));
    // After its last release the slot takes a new block.
    pTable->SetDupObject(false, 2, &other, 9, 1);
    EXPECT_EQ(&other, pTable->GetDupObject(false, 1, 9));
    EXPECT_FALSE(pTable->ReleaseDupObject(&other));
    EXPECT_TRUE(pTable->ReleaseDupObject(&other));
    RemoveFile(name);
}

TEST(SymbolTableErrors, BadTableSizesAndIdsAreReported)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    builder.SymbolPadding = 5;
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(builder, Values()));
    auto manager = MakeManager();
    EXPECT_FALSE(Load(*manager, builder.Build()));
    EXPECT_TRUE(log.Contains("Invalid symbol table size: 69, expected: 96"));

    CParameterFileBuilder ids(5, 0, 0);
    AddRoot(ids);
    ids.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(ids, Values()));
    ids.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(ids, Values()), 9);
    ids.IdOverrides.push_back({0, 7});
    auto other = MakeManager();
    other->SetIgnoreMissingModules(true);
    EXPECT_TRUE(Load(*other, ids.Build()));
    EXPECT_TRUE(log.Contains("Symbol table entry ID 7 out of range 1 - 2"));
    EXPECT_TRUE(log.Contains("Invalid DuplicateID value 9, should be less than module table count: 2"));
}

TEST(SymbolTableErrors, UnknownReferencesAndIdsReadAsEmpty)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    CRecordWriter w = builder.Writer();
    w.Begin().U32(5).F32(2.5f).U32(8);
    for (UINT32 i = 0; i < 8; i++)
    {
        w.U32(i);
    }
    w.U32(3).U32(99).U32(0).U32(0);
    w.Begin().U32(21).F32(0.5f).End();
    w.U32(77).End();
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, w.Bytes());
    builder.AddData(ByteVector(4, 0));
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, builder.Build()));
    TestModuleTypeClass* pModule = Get(*manager);
    ASSERT_NE(nullptr, pModule);
    EXPECT_EQ(nullptr, pModule->list);
    EXPECT_EQ(77U, pModule->last);
    EXPECT_TRUE(log.Contains("Find: Symbol table entry ID 99 out of range 1 - 2"));
    EXPECT_TRUE(log.Contains("ReadPointerEntry: Unable to find pointer entry ID 99 in Symbol table0"));
}

TEST(SymbolTableErrors, AnUnexpectedDefinitionTagFailsTheLoad)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(builder, Values()));
    CDefinitionWriter defs;
    defs.ScenarioMode().EnumDefinition().Tag(3);
    builder.SetDefinitions(defs.Bytes());
    auto manager = MakeManager();
    EXPECT_FALSE(Load(*manager, builder.Build()));
    EXPECT_TRUE(log.Contains("Error: Unexpected type found in definition table (3)"));
    EXPECT_TRUE(log.Contains("Failed to read definition table from binary file"));
}

TEST(SymbolTableErrors, MissingStructuresAndSelfContainingStructuresAreReported)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0, TestModuleTypeClass::Write(builder, Values()));
    CDefinitionWriter defs;
    defs.Structure(1, "TestModuleType", {{13, 0, "first", 0, 1, 1}, {5, 42, "nested", 0, 1, 1}});
    defs.Structure(3, "Loop", {{5, 3, "self", 0, 1, 1}});
    defs.Module(1, "TestModule");
    builder.SetDefinitions(defs.Bytes());
    auto manager = MakeManager();
    ASSERT_TRUE(Load(*manager, builder.Build()));
    EXPECT_TRUE(log.Contains("PopulateOffsetSizeStructure structure not found: ID: 42, NameHash: "));
    EXPECT_TRUE(log.Contains("PopulateOffsetSizeStructure structure 3 contains itself"));
    EXPECT_EQ(5U, Get(*manager)->first);
}

TEST(SymbolTableDefinitions, MatchingDefinitionsAreDroppedAfterAFileModeLoad)
{
    for (bool drift : {false, true})
    {
        CParameterFileBuilder builder(7, 0, 0);
        AddRoot(builder);
        builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0,
                          TestModuleTypeClass::Write(builder, Values()));
        builder.AddData(ByteVector(4000, 0));
        CDefinitionWriter defs;
        TestModuleTypeClass::Define(defs, "TestModule");
        if (drift)
        {
            defs.Structure(7, "Unused", {{13, 0, "x", 0, 1, 1}});
        }
        builder.SetDefinitions(defs.Bytes());
        const std::string name    = WriteTempFile(builder.Build());
        auto              manager = MakeManager(true);
        ASSERT_TRUE(manager->LoadBinaryParameters(name.c_str()));
        EXPECT_EQ(drift, manager->GetSymbolTable()->HasDefinitions());
        TestModuleTypeClass* pModule = Get(*manager);
        ASSERT_NE(nullptr, pModule);
        EXPECT_EQ(77U, pModule->last);
        EXPECT_STREQ("text", pModule->label);
        RemoveFile(name);
    }
}

TEST(SymbolTableModules, ModulesOfAnotherVersionOrAnUnknownModeAreRefused)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    builder.AddModule("TestModule", VersionUnion::Make(9, 9, 9), 0, TestModuleTypeClass::Write(builder, Values()));
    builder.AddModule("OtherModule", TestModuleTypeClass::SourceVersion, CParameterFileBuilder::ModeId(3, 0),
                      TestModuleTypeClass::Write(builder, Values()));
    builder.AddModule("OtherModule", TestModuleTypeClass::SourceVersion, CParameterFileBuilder::ModeId(0, 7),
                      TestModuleTypeClass::Write(builder, Values()));
    auto manager = MakeManager();
    EXPECT_TRUE(Load(*manager, builder.Build()));
    EXPECT_FALSE(manager->GetStatus());
    EXPECT_TRUE(log.Contains("Unable to create TestModuleTypeClass, binary version (" +
                             std::to_string(VersionUnion::Make(9, 9, 9).Value) + ") does not match source version"));
    EXPECT_TRUE(log.Contains("Failed to parse binary header data for:  Name: TestModule, Major: 9, Minor: 9, Patch: 9"));
    EXPECT_TRUE(log.Contains("GetModeEntry called with  Mode ID (50331648) Table Index >= mode table count (1)"));
    EXPECT_TRUE(log.Contains("GetModeEntry called with Mode ID Value (7) that exceeds the mode table entries (1)"));
    EXPECT_EQ(2U, log.Count("Failed to find ModeID"));
    EXPECT_TRUE(log.Contains("AddModule: moduleData->ModeId(50331648) >= m_modeCount(0)"));
    EXPECT_EQ(nullptr, Get(*manager));
    EXPECT_EQ(nullptr, Get(*manager, "OtherModule"));
}

namespace
{
void FreeShared(ParameterFileSymbolTable* pTable, void* pBlock)
{
    if ((nullptr != pBlock) && pTable->ReleaseDupObject(pBlock))
    {
        VelaFree(pBlock);
    }
}

UINT32 Text(CParameterFileBuilder& builder, const std::string& text)
{
    ByteVector bytes(text.begin(), text.end());
    bytes.push_back(0);
    return builder.AddData(bytes);
}
} // namespace

TEST(SymbolTableReaders, StructureAndStringArraysInAndOutOfLine)
{
    CParameterFileBuilder builder(7, 0, 0);
    AddRoot(builder);
    CRecordWriter records = builder.Writer();
    for (UINT32 i = 0; i < 3; i++)
    {
        records.Begin().U32(30 + i).F32(0.5f * i).End();
    }
    const UINT32  recordsRef = builder.AddData(records.Bytes());
    CRecordWriter single     = builder.Writer();
    single.Begin().U32(40).F32(4.0f).End();
    const UINT32  singleRef = builder.AddData(single.Bytes());
    const UINT32  alpha     = Text(builder, "alpha");
    const UINT32  beta      = Text(builder, "beta");
    CRecordWriter textList(1, false);
    textList.U32(6).U32(alpha).U32(5).U32(beta);
    const UINT32  textListRef = builder.AddData(textList.Bytes());
    const UINT32  gamma       = Text(builder, "gamma");

    CRecordWriter w = builder.Writer();
    w.U32(2).Begin().U32(20).F32(1.0f).End().Begin().U32(21).F32(2.0f).End();
    w.U32(3).U32(recordsRef);
    w.U32(1).U32(singleRef);
    w.U32(2).U32(6).U32(alpha).U32(5).U32(beta);
    w.U32(2).U32(textListRef);
    w.U32(6).U32(gamma);
    builder.AddModule("TestModule", TestModuleTypeClass::SourceVersion, 0,
                      TestModuleTypeClass::Write(builder, Values()));
    const UINT32 ownerId = builder.AddModule("OtherModule", TestModuleTypeClass::SourceVersion, 0xFFFFFFFEu, w.Bytes());
    builder.AddData(ByteVector(4000, 0));
    const std::string name    = WriteTempFile(builder.Build());
    auto              manager = MakeManager(true);
    ASSERT_TRUE(manager->LoadBinaryParameters(name.c_str()));
    ParameterFileSymbolTable*     pTable = manager->GetSymbolTable();
    ParameterFileSymbolTableEntry entry;
    ASSERT_TRUE(pTable->Find(entry, ownerId, true));
    ParameterLoadParameters params = {&entry, 0, false, true, nullptr, 0, 0, ParameterFileSymbolTableEntry::NoLimit};

    TestRecordType fixed[2] = {};
    EXPECT_TRUE(entry.ReadStructureFixedArray(TestModuleTypeClass::LoadRecordArray, fixed, 2, params));
    EXPECT_EQ(20U, fixed[0].a);
    EXPECT_EQ(2.0f, fixed[1].b);

    UINT32 count     = 0;
    UINT32 allocated = 0;
    auto*  pRecords  = static_cast<TestRecordType*>(entry.ReadStructureArray(
        TestModuleTypeClass::LoadRecordArray, TestModuleTypeClass::AllocRecords, count, allocated, 8, 12, params, 5));
    ASSERT_NE(nullptr, pRecords);
    EXPECT_EQ(3U, count);
    EXPECT_EQ(32U, pRecords[2].a);
    EXPECT_EQ(1.0f, pRecords[2].b);
    auto* pOptional = static_cast<TestRecordType*>(entry.ReadOptionalStructure(
        TestModuleTypeClass::LoadRecordArray, TestModuleTypeClass::AllocRecords, count, allocated, 12, params));
    ASSERT_NE(nullptr, pOptional);
    EXPECT_EQ(1U, count);
    EXPECT_EQ(40U, pOptional->a);

    CHAR* texts[2] = {};
    EXPECT_TRUE(entry.ReadStringFixedArray(texts, 2, params, 6));
    EXPECT_STREQ("alpha", texts[0]);
    EXPECT_STREQ("beta", texts[1]);
    CHAR** pList = nullptr;
    EXPECT_TRUE(entry.ReadStringArray(pList, count, allocated, 4, params, 6));
    ASSERT_EQ(2U, count);
    EXPECT_STREQ("beta", pList[1]);
    CHAR* pOptionalText = nullptr;
    EXPECT_TRUE(entry.ReadOptionalString(pOptionalText, count, allocated, params, 7));
    EXPECT_STREQ("gamma", pOptionalText);
    EXPECT_EQ(1U, count);

    FreeShared(pTable, pRecords);
    VelaFree(pOptional);
    for (CHAR* pText : {texts[0], texts[1], pList[0], pList[1], pOptionalText})
    {
        FreeShared(pTable, pText);
    }
    VelaFree(pList);
    RemoveFile(name);
}
