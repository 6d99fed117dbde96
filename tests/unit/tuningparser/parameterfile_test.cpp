// Tests of the parameter file's header, section table, versions, loading and reloading.
#include <gtest/gtest.h>

#include <cstring>

#include "tuning/parser/parsercrc.h"
#include "unit/tuningparser/clogcapture.h"
#include "unit/tuningparser/tuningparsertesthelpers.h"

namespace
{
const TuningMode s_root[] = {{ModeType::Default, {0}}};

TestModuleTypeClass::Values StandardValues(UINT32 first = 11)
{
    TestModuleTypeClass::Values values;
    values.first = first;
    values.gain  = 1.5f;
    for (UINT32 i = 0; i < 8; i++)
    {
        values.fixed[i] = i + 1;
    }
    values.list  = {-1, 2, -3};
    values.label = "hello";
    values.a     = 7;
    values.b     = 0.25f;
    values.last  = 99;
    return values;
}

// One mode table (where the version has them) with the root, and TestModule in the root.
ByteVector StandardFile(CParameterFileBuilder& builder, const std::string& module = "TestModule", UINT32 first = 11)
{
    if (builder.Version() >= VersionUnion::Make(1, 0, 2))
    {
        const UINT32 table = builder.AddModeTable("Main");
        builder.AddMode(table, 0, 0, 0, 0);
    }
    builder.AddModule(module, TestModuleTypeClass::SourceVersion, 0,
                      TestModuleTypeClass::Write(builder, StandardValues(first)));
    return builder.Build();
}

void ExpectStandardValues(const TestModuleTypeClass* pModule, UINT32 first = 11)
{
    ASSERT_NE(nullptr, pModule);
    EXPECT_EQ(first, pModule->first);
    EXPECT_EQ(1.5f, pModule->gain);
    for (UINT32 i = 0; i < 8; i++)
    {
        EXPECT_EQ(i + 1, pModule->fixed[i]);
    }
    ASSERT_EQ(3U, pModule->listCount);
    EXPECT_EQ(-1, pModule->list[0]);
    EXPECT_EQ(-3, pModule->list[2]);
    ASSERT_NE(nullptr, pModule->label);
    EXPECT_STREQ("hello", pModule->label);
    EXPECT_EQ(7U, pModule->nested.a);
    EXPECT_EQ(0.25f, pModule->nested.b);
    EXPECT_EQ(99U, pModule->last);
}

bool Load(ParameterSetManager& manager, ByteVector bytes)
{
    return manager.LoadBinaryParameters(bytes.data(), bytes.size());
}
} // namespace

TEST(ParameterFileHeader, ADifferentTagFailsBeforeAnyChecksumWork)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    builder.Tag           = "KVR Other Header";
    ByteVector bytes      = StandardFile(builder);
    bytes[bytes.size() - 1] ^= 0xFF;
    auto manager = MakeManager();
    EXPECT_FALSE(Load(*manager, bytes));
    EXPECT_STREQ("Invalid binary header tag: KVR Other Header", manager->GetLastError());
    EXPECT_FALSE(log.Contains("CRC validation failed"));
}

TEST(ParameterFileHeader, AnEmptyTagCannotBeRead)
{
    auto             manager = MakeManager();
    ByteVector       bytes(200, 0);
    EXPECT_FALSE(Load(*manager, bytes));
    EXPECT_STREQ("Failed to read binary header tag", manager->GetLastError());
    ByteVector tiny(10, 'K');
    EXPECT_FALSE(Load(*manager, tiny));
    EXPECT_STREQ("Failed to read binary header tag", manager->GetLastError());
}

TEST(ParameterFileHeader, Version701IsRejectedAnd700Accepted)
{
    CParameterFileBuilder newer(7, 0, 1);
    auto                  manager = MakeManager();
    EXPECT_FALSE(Load(*manager, StandardFile(newer)));
    EXPECT_STREQ("Unsupported binary header version : 7.0.1. Please re-generate parser code using the latest version "
                 "of ParameterParser",
                 manager->GetLastError());

    CParameterFileBuilder current(7, 0, 0);
    auto                  loaded = MakeManager();
    EXPECT_TRUE(Load(*loaded, StandardFile(current)));
    ExpectStandardValues(AsTest(loaded->GetModuleInternal(0, "TestModule", s_root, 1, nullptr, 1)));
}

TEST(ParameterFileHeader, Version101LoadsWithAWarningAndNoBinaryTag)
{
    CLogCapture           log;
    CParameterFileBuilder builder(1, 0, 1);
    auto                  manager = MakeManager();
    manager->AddDefaultModule(new TestModuleTypeClass("", nullptr));
    EXPECT_TRUE(Load(*manager, StandardFile(builder)));
    EXPECT_NE(nullptr, std::strstr(manager->GetLastError(), "Warning: This is an older binary format, only Default "
                                                             "mode data is supported."));
    EXPECT_STREQ("", manager->GetBinaryTag());
    EXPECT_TRUE(log.Contains("ReadModeSection: No mode tables in binary, creating default"));
    ExpectStandardValues(AsTest(manager->GetModuleInternal(0, "", s_root, 1, nullptr, 1)));
}

TEST(ParameterFileHeader, ALongerFileIsAccepted)
{
    CParameterFileBuilder builder(7, 0, 0);
    ByteVector            bytes = StandardFile(builder);
    bytes.insert(bytes.end() - 8, 100, 0xAB);
    CParameterFileBuilder::Reseal(bytes, true);
    auto manager = MakeManager();
    EXPECT_TRUE(Load(*manager, bytes));
}

TEST(ParameterFileHeader, AShorterFileIsRejectedUnlessCompressedWhichFailsLater)
{
    CParameterFileBuilder builder(7, 0, 0);
    builder.SetExpectedSize = true;
    builder.ExpectedSize    = 100000;
    ByteVector bytes        = StandardFile(builder);
    auto       manager      = MakeManager();
    EXPECT_FALSE(Load(*manager, bytes));
    CHAR expected[128];
    std::snprintf(expected, sizeof(expected), "Binary header data too small: Expected: 100000 bytes, Actual: %u bytes",
                  static_cast<UINT32>(bytes.size()));
    EXPECT_STREQ(expected, manager->GetLastError());

    CParameterFileBuilder compressed(7, 0, 0);
    compressed.SetExpectedSize = true;
    compressed.ExpectedSize    = 100000;
    compressed.Flags           = 2;
    auto other                 = MakeManager();
    EXPECT_FALSE(Load(*other, StandardFile(compressed)));
    EXPECT_STREQ("Compressed binary file not supported (support ended with V5.1.0)", other->GetLastError());
}

TEST(ParameterFileHeader, OneChangedByteFailsTheChecksum)
{
    CLogCapture log;
    for (UINT16 major : {5, 7})
    {
        CParameterFileBuilder builder(major, 0, 0);
        ByteVector            bytes = StandardFile(builder);
        bytes[bytes.size() / 2] ^= 0x10;
        auto manager = MakeManager();
        EXPECT_FALSE(Load(*manager, bytes));
        EXPECT_STREQ("Binary file CRC validation failed", manager->GetLastError());
    }
    EXPECT_EQ(2U, log.Count("Binary file CRC validation failed. Expected: "));
}

TEST(ParameterFileHeader, LoggingIdentifierCarriesTheBinaryTag)
{
    CParameterFileBuilder builder(7, 0, 0);
    CTestSetManager       named(false, 0, "CAM0");
    EXPECT_TRUE(Load(named, StandardFile(builder)));
    EXPECT_STREQ("CAM0;BinaryTag=TestBinary", named.GetLoggingIdentifier());
    CParameterFileBuilder other(7, 0, 0);
    auto                  plain = MakeManager();
    EXPECT_TRUE(Load(*plain, StandardFile(other)));
    EXPECT_STREQ("TestBinary", plain->GetLoggingIdentifier());
}

class ParameterFileVersions : public ::testing::TestWithParam<VersionUnion>
{
};

TEST_P(ParameterFileVersions, EveryVersionLoadsItsModule)
{
    const VersionUnion    version = GetParam();
    CParameterFileBuilder builder(version.Version.Major, version.Version.Minor, version.Version.Patch);
    const bool            hashes  = version >= VersionUnion::Make(6, 0, 0);
    auto                  manager = MakeManager();
    manager->AddDefaultModule(new TestModuleTypeClass("", nullptr));
    ASSERT_TRUE(Load(*manager, StandardFile(builder)));
    EXPECT_TRUE(manager->GetStatus());
    ExpectStandardValues(AsTest(manager->GetModuleInternal(0, hashes ? "TestModule" : "", s_root, 1, nullptr, 1)));
}

INSTANTIATE_TEST_SUITE_P(AllFormats, ParameterFileVersions,
                         ::testing::Values(VersionUnion::Make(1, 0, 0), VersionUnion::Make(1, 0, 1),
                                           VersionUnion::Make(1, 0, 2), VersionUnion::Make(1, 1, 0),
                                           VersionUnion::Make(2, 0, 0), VersionUnion::Make(3, 0, 0),
                                           VersionUnion::Make(3, 0, 1), VersionUnion::Make(3, 0, 2),
                                           VersionUnion::Make(4, 0, 0), VersionUnion::Make(5, 0, 0),
                                           VersionUnion::Make(6, 0, 0), VersionUnion::Make(7, 0, 0)));

TEST(ParameterFileSections, TooFewSectionsAreRefused)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    builder.OmitData           = true;
    builder.SectionCountAdjust = 0;
    const UINT32 table         = builder.AddModeTable("Main");
    builder.AddMode(table, 0, 0, 0, 0);
    // Symbol table and one mode table remain: two sections. Drop one more by count.
    builder.SectionCountAdjust = -1;
    auto manager               = MakeManager();
    EXPECT_FALSE(Load(*manager, builder.Build()));
    EXPECT_TRUE(log.Contains("ReadSectionInfo: Section count 1 is less than Min sections 2"));
    EXPECT_STREQ("Invalid binary file section count", manager->GetLastError());
}

TEST(ParameterFileSections, UnknownTypesAndTruncatedTablesAreRefused)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    builder.ExtraSections.push_back({9, 0, 0});
    auto manager = MakeManager();
    EXPECT_FALSE(Load(*manager, StandardFile(builder)));
    EXPECT_TRUE(log.Contains("Invalid binary section type 9"));

    // A compressed file may be shorter than it says: cut it inside its section table.
    CParameterFileBuilder truncated(7, 0, 0);
    truncated.Flags  = 2;
    ByteVector bytes = StandardFile(truncated);
    bytes.resize(168 + 20);
    bytes.resize(bytes.size() + 8);
    CParameterFileBuilder::Reseal(bytes, true);
    auto other = MakeManager();
    EXPECT_FALSE(Load(*other, bytes));
    EXPECT_TRUE(log.Contains("Error reading data from header sections"));
    EXPECT_STREQ("Invalid binary file section count", other->GetLastError());
}

TEST(ParameterFileSections, AMissingSymbolTableBuildsNothing)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    builder.OmitSymbols = true;
    auto manager        = MakeManager();
    EXPECT_TRUE(Load(*manager, StandardFile(builder)));
    EXPECT_TRUE(log.Contains("ReadModeSections: Binary missing symbol table or data SymbolOffset(0) && SymbolSize(0)"));
    EXPECT_EQ(nullptr, manager->GetModuleInternal(0, "TestModule", s_root, 1, nullptr, 1));
}

TEST(ParameterFileSections, SectionsOutsideTheFileAreRefused)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    builder.ExtraSections.push_back({4, 100, 0xFFFFFF00u});
    auto manager = MakeManager();
    EXPECT_FALSE(Load(*manager, StandardFile(builder)));
    EXPECT_TRUE(log.Contains("exceeds binary length"));
}

TEST(ParameterFileLoad, ASecondLoadIsRefused)
{
    CParameterFileBuilder builder(7, 0, 0);
    const ByteVector      bytes   = StandardFile(builder);
    auto                  manager = MakeManager();
    EXPECT_TRUE(Load(*manager, bytes));
    EXPECT_FALSE(Load(*manager, bytes));
    EXPECT_STREQ("Binary file already loaded", manager->GetLastError());
}

TEST(ParameterFileLoad, AFailedLoadLeavesAnEmptyManagerThatCanLoadAgain)
{
    CParameterFileBuilder builder(7, 0, 0);
    ByteVector            bytes   = StandardFile(builder);
    ByteVector            broken  = bytes;
    broken[40] ^= 1;
    auto manager = MakeManager();
    EXPECT_FALSE(Load(*manager, broken));
    EXPECT_FALSE(manager->GetStatus());
    EXPECT_TRUE(Load(*manager, bytes));
    EXPECT_TRUE(manager->GetStatus());
}

TEST(ParameterFileLoad, FileNameChecks)
{
    CLogCapture log;
    auto        manager = MakeManager();
    EXPECT_FALSE(manager->LoadBinaryParameters(static_cast<const CHAR*>(nullptr)));
    EXPECT_STREQ("LoadBinaryParameters called with nullptr file name", manager->GetLastError());
    const std::string longName(1023, 'x');
    EXPECT_FALSE(manager->LoadBinaryParameters(longName.c_str()));
    EXPECT_TRUE(log.Contains("File name length (1023) exceeds max file name length of 1023"));
    EXPECT_FALSE(manager->LoadBinaryParameters("/nonexistent/file.bin"));
    EXPECT_STREQ("Unable to allocate space to read binary file", manager->GetLastError());
}

TEST(ParameterFileLoad, PlainManagerReadsAFileInBufferMode)
{
    CParameterFileBuilder builder(7, 0, 0);
    const std::string     name    = WriteTempFile(StandardFile(builder));
    auto                  manager = MakeManager();
    EXPECT_TRUE(manager->LoadBinaryParameters(name.c_str()));
    EXPECT_FALSE(manager->IsFileMode());
    ExpectStandardValues(AsTest(manager->GetModuleInternal(0, "TestModule", s_root, 1, nullptr, 1)));
    RemoveFile(name);
}

TEST(ParameterFileLoad, FileModeNeedsTheFirst3388Bytes)
{
    CLogCapture           log;
    CParameterFileBuilder builder(7, 0, 0);
    const ByteVector      bytes = StandardFile(builder);
    ASSERT_LT(bytes.size(), 3388U);
    const std::string name    = WriteTempFile(bytes);
    auto              manager = MakeManager(true);
    EXPECT_FALSE(manager->LoadBinaryParameters(name.c_str()));
    EXPECT_TRUE(log.Contains("Failed to read 3388 bytes from binary file " + name));
    RemoveFile(name);
}

TEST(ParameterFileLoad, FileModeLoadsPreserveModesAndClosesTheFile)
{
    CParameterFileBuilder builder(7, 0, 0);
    ByteVector            padding(4000, 0x5A);
    builder.AddData(padding);
    const std::string name    = WriteTempFile(StandardFile(builder));
    auto              manager = MakeManager(true);
    ASSERT_TRUE(manager->LoadBinaryParameters(name.c_str()));
    EXPECT_TRUE(manager->IsFileMode());
    EXPECT_EQ(0U, manager->GetSymbolTable()->File()->RefCount());
    TestModuleTypeClass* pModule = AsTest(manager->GetModuleInternal(0, "TestModule", s_root, 1, nullptr, 1));
    ExpectStandardValues(pModule);
    EXPECT_EQ(1U, manager->GetModeTable(0)->RootMode.Entry->GetReferenceCount(pModule));
    EXPECT_TRUE(manager->ReleaseModule(pModule));
    RemoveFile(name);
}

TEST(ParameterFileLoad, ModeTableEntryExistsLooksAtVersion7TableNames)
{
    CParameterFileBuilder v7(7, 0, 0);
    const std::string     name7 = WriteTempFile(StandardFile(v7));
    EXPECT_TRUE(ParameterSetManager::ModeTableEntryExists(name7.c_str(), "Main"));
    EXPECT_FALSE(ParameterSetManager::ModeTableEntryExists(name7.c_str(), "Other"));
    CParameterFileBuilder v6(6, 0, 0);
    const std::string     name6 = WriteTempFile(StandardFile(v6));
    EXPECT_FALSE(ParameterSetManager::ModeTableEntryExists(name6.c_str(), "Main"));
    EXPECT_FALSE(ParameterSetManager::ModeTableEntryExists("/nonexistent/file.bin", "Main"));
    RemoveFile(name7);
    RemoveFile(name6);
}

TEST(ParameterFileReload, BufferModeManagerHasNothingToReload)
{
    CParameterFileBuilder builder(7, 0, 0);
    auto                  manager = MakeManager();
    EXPECT_TRUE(Load(*manager, StandardFile(builder)));
    EXPECT_FALSE(manager->ReloadBinaryParameters(false));
    EXPECT_STREQ("ReloadBinaryParameters called with empty file name", manager->GetLastError());
}

TEST(ParameterFileReload, ReloadKeepsOldModulesAliveAndTransfersReferences)
{
    CParameterFileBuilder builder(7, 0, 0);
    builder.AddData(ByteVector(4000, 1));
    const std::string name    = WriteTempFile(StandardFile(builder));
    auto              manager = MakeManager(true);
    ASSERT_TRUE(manager->LoadBinaryParameters(name.c_str()));
    TestModuleTypeClass* pOld = AsTest(manager->GetModuleInternal(0, "TestModule", s_root, 1, nullptr, 1));
    ASSERT_NE(nullptr, pOld);

    CParameterFileBuilder changed(7, 0, 0);
    changed.AddData(ByteVector(4000, 1));
    const ByteVector newer = StandardFile(changed, "TestModule", 12);
    FILE*            pFile = std::fopen(name.c_str(), "wb");
    std::fwrite(newer.data(), 1, newer.size(), pFile);
    std::fclose(pFile);

    ASSERT_TRUE(manager->ReloadBinaryParameters(false));
    // The caller's old instance stays readable until the next reload.
    EXPECT_EQ(11U, pOld->first);
    ParameterModule* pNew = manager->GetModuleInternal(0, "TestModule", s_root, 1, nullptr, 1);
    ASSERT_NE(nullptr, pNew);
    EXPECT_EQ(12U, AsTest(pNew)->first);
    // One reference came over from the old module, one was just taken.
    EXPECT_EQ(2U, manager->GetModeTable(0)->RootMode.Entry->GetReferenceCount(pNew));

    ASSERT_TRUE(manager->ReloadBinaryParameters(true));
    EXPECT_FALSE(manager->IsFileMode());
    ExpectStandardValues(AsTest(manager->GetModuleInternal(0, "TestModule", s_root, 1, nullptr, 1)), 12);
    RemoveFile(name);
}

TEST(ParameterFileErrors, SetErrorWithAModuleNamesIt)
{
    auto       manager = MakeManager();
    ModuleData data(nullptr, manager.get(), nullptr, ParserCRC64::GetNameHash("TestModule"), 3, 3,
                    VersionUnion::Make(1, 2, 3), 5, manager.get());
    manager->SetError("Failed to find header module: ", &data);
    EXPECT_STREQ("Failed to find header module:  Name: TestModule, Major: 1, Minor: 2, Patch: 3, Mode: 5",
                 manager->GetLastError());
    ModuleData unknown(nullptr, manager.get(), nullptr, 0xABCull, 3, 3, VersionUnion::Make(1, 2, 3), 5, manager.get());
    manager->SetError("x", &unknown);
    EXPECT_STREQ("x Name Hash: abc, Major: 1, Minor: 2, Patch: 3, Mode: 5", manager->GetLastError());
}
