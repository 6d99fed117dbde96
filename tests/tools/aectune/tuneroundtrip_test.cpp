// Round trips through the library's parameter store: compile, read back with the store's readers, compile again.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>

#include "ctunedumper.h"
#include "ctunefilereader.h"
#include "ctunesourcereader.h"
#include "tunetesthelpers.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parsercrc.h"

using namespace AecTuneTest;
using AecTune::Json;

namespace
{

std::string ExampleText()
{
    std::string text;
    EXPECT_TRUE(AecTune::CTuneCommands::ReadFile(AECTUNE_EXAMPLE, &text));
    return text;
}

AecTune::TuneSource ExampleSource()
{
    AecTune::CTuneMessages     messages("example.json");
    AecTune::CTuneSourceReader reader(&messages);
    Json                       document;
    AecTune::TuneSource        source;
    EXPECT_TRUE(reader.ParseText(ExampleText(), &document) && reader.Read(document, &source));
    return source;
}

class TuneRoundTrip : public ::testing::TestWithParam<const char*>
{
protected:
    void SetUp() override
    {
        m_source = ExampleSource();
        ASSERT_TRUE(Compile(ExampleText(), GetParam(), true, 3388, &m_file));
        ASSERT_TRUE(AecTune::CTuneFileReader(&m_source).Read(m_file, &m_contents)) << m_contents.headerError;
        m_dump = AecTune::CTuneDumper(&m_contents).ToJson();
    }

    const Json& Values(const std::string& module, const std::string& mode) const
    {
        for (const Json& item : m_dump["modules"])
        {
            if (item["name"] == module)
            {
                return item["values"][mode];
            }
        }
        static const Json none;
        return none;
    }

    bool AtLeast(const char* version) const
    {
        AecTune::TuneVersion left{};
        AecTune::TuneVersion right{};
        AecTune::CTuneFormat::ParseVersion(GetParam(), &left);
        AecTune::CTuneFormat::ParseVersion(version, &right);
        return AecTune::CTuneFormat::Compare(left, right) >= 0;
    }

    AecTune::TuneSource       m_source;
    std::vector<UINT8>        m_file;
    AecTune::TuneFileContents m_contents;
    Json                      m_dump;
};

} // namespace

TEST_P(TuneRoundTrip, StoreLoadsTheFileWithoutComplaint)
{
    EXPECT_TRUE(m_contents.loaded) << m_contents.loadError;
    for (const AecTune::TuneLogLine& line : m_contents.log)
    {
        EXPECT_FALSE(line.isError) << line.text;
    }
    EXPECT_EQ(GetParam(), m_dump["file"]["version"].get<std::string>());
}

TEST_P(TuneRoundTrip, OnlyTheOldestFormatIsLoadedWithTheOlderFormatWarning)
{
    const std::string warning = "Warning: This is an older binary format, only Default mode data is supported. To "
                                "support multiple modes, please re-generate binary using the latest version of Sorenta";
    bool              warned  = false;
    for (const AecTune::TuneLogLine& line : m_contents.log)
    {
        warned = warned || (line.text == warning);
    }
    EXPECT_EQ(!AtLeast("1.0.2"), warned);
}

TEST_P(TuneRoundTrip, EveryModuleEntryBecomesAModuleAndThePlaceholderNone)
{
    // Default and Video of Touch; Default, Feature1, Portrait, the STATS group and the second table of the other.
    const size_t expected = !AtLeast("1.0.2") ? 2 : (AtLeast("7.0.0") ? 7 : 6);
    ASSERT_EQ(expected, m_contents.modules.size());
    for (const AecTune::TuneFileModule& module : m_contents.modules)
    {
        EXPECT_NE(0u, module.id);
        EXPECT_TRUE(module.hasValues);
    }
}

TEST_P(TuneRoundTrip, ReaderThatKeepsTheFileOpenLoadsThePaddedFileOnly)
{
    // ctest runs the versions side by side: each needs its own file.
    const std::string path = ::testing::TempDir() + "aectune_filemode_" + GetParam() + "_" +
                             std::to_string(static_cast<long>(getpid())) + ".bin";
    std::vector<UINT8> small;
    ASSERT_TRUE(Compile(ExampleText(), GetParam(), true, 0, &small));
    for (const auto* pBytes : { &m_file, &small })
    {
        ASSERT_TRUE(AecTune::CTuneCommands::WriteFile(path, *pBytes));
        AecTune::CTuneLogCapture quiet;
        ParameterSetManager      manager(nullptr, 0, "file mode");
        manager.ConfigureForFileMode(17);
        manager.SetIgnoreMissingModules(true);
        EXPECT_EQ(pBytes->size() >= 3388, manager.LoadBinaryParameters(path.c_str())) << pBytes->size();
    }
    std::remove(path.c_str());
}

TEST_P(TuneRoundTrip, DumpCompilesBackToTheSameFile)
{
    // Records are written inline by a dump, so the definitions differ in form; everything else is identical.
    std::vector<UINT8> original;
    std::vector<UINT8> again;
    std::string        messages;
    ASSERT_TRUE(Compile(ExampleText(), GetParam(), false, 3388, &original));
    ASSERT_TRUE(Compile(m_dump.dump(), GetParam(), false, 3388, &again, &messages)) << messages;
    EXPECT_EQ(original, again);
}

TEST_P(TuneRoundTrip, ValuesComeBackAsWritten)
{
    const Json& touch = Values("Touch", "Default");
    EXPECT_EQ(0.5, touch["touchMtr"]["centerWeightStrength"].get<double>());
    EXPECT_EQ(true, touch["touchMtr"]["enableTouchROI"].get<bool>());
    EXPECT_EQ(500.0, touch["touchMtr"]["ROIHistAdjZone"][1]["zoneTrigger"]["end"].get<double>());
    EXPECT_EQ(0.9, touch["touchMtr"]["ROIHistAdjZone"][1]["minTargetAdjRatio"].get<double>());
    EXPECT_EQ("1.0", touch["parameter_version"]["revision"].get<std::string>());
    const Json& types = Values("ExampleTypes", "Default");
    EXPECT_EQ(-8, types["s8"].get<int>());
    EXPECT_EQ(60000, types["u16"].get<int>());
    EXPECT_EQ(4000000000u, types["u32"].get<UINT32>());
    EXPECT_EQ(-6400000000ll, types["s64"].get<INT64>());
    EXPECT_EQ(18000000000000000000ull, types["u64"].get<UINT64>());
    EXPECT_EQ(0.1, types["precise"].get<double>());
    EXPECT_EQ("AECExpIncExpTime", types["priority"].get<std::string>());
    EXPECT_EQ("default", types["label"].get<std::string>());
    EXPECT_EQ(Json::parse("[1.0, 0.0, 0.0, 1.0, 0.5, 0.5]"), types["matrix"]);
    EXPECT_EQ(Json::parse(R"(["AECExpIncGain", "AECExpIncExpTime", "AECExpIncPrioMax"])"), types["priorities"]);
    EXPECT_EQ(Json::parse("[1, 2, 3, 4]"), types["counts"]);
    EXPECT_EQ(Json::parse(R"(["low", "mid", "high"])"), types["names"]);
    EXPECT_EQ(Json::parse(R"(["left", null])"), types["pair"]);
    EXPECT_EQ(Json::parse(R"([{ "start": 5.0, "end": 6.0 }])"), types["optionalZone"]);
    if (AtLeast("1.0.2"))
    {
        const Json& portrait = Values("ExampleTypes", "Usecase.Video|Scene.Portrait");
        EXPECT_EQ(2.25, portrait["gain"].get<double>());
        EXPECT_EQ(Json::array(), portrait["names"]);
        EXPECT_EQ("stats", Values("ExampleTypes", "Usecase.Video|Usecase.Video@STATS")["label"].get<std::string>());
        EXPECT_EQ(0.75, Values("Touch", "Usecase.Video")["convSpeedAdjRatio"].get<double>());
    }
}

TEST_P(TuneRoundTrip, ModeTreeAsTheStoreBuiltIt)
{
    const auto& tables = m_contents.layout.modeTables;
    if (!AtLeast("1.0.2"))
    {
        // Before the mode tree the store makes one nameless table with the Default root alone.
        ASSERT_EQ(1u, tables.size());
        EXPECT_EQ(1u, tables[0].slots.size());
        return;
    }
    ASSERT_EQ(AtLeast("7.0.0") ? 2u : 1u, tables.size());
    const auto& slots = tables[0].slots;
    ASSERT_EQ(6u, slots.size());
    EXPECT_EQ(AtLeast("4.0.0") ? "Main" : "", tables[0].name);
    EXPECT_EQ("Usecase.Video|Usecase.Video@STATS", slots[3].modePath);
    EXPECT_TRUE(slots[3].alias);
    EXPECT_EQ(5u, slots[3].group);
    EXPECT_EQ(AtLeast("2.0.0") ? 1 : AecTune::TuneNoSlot, slots[4].linkSlot);
    EXPECT_EQ(AtLeast("5.0.0"), slots[1].preserve);
    EXPECT_FALSE(slots[2].preserve);
}

TEST_P(TuneRoundTrip, EqualDataSharesOneBlockAndDuplicateGroup)
{
    const AecTune::TuneFileModule* pDefault = nullptr;
    const AecTune::TuneFileModule* pHdr     = nullptr;
    for (const AecTune::TuneFileModule& module : m_contents.modules)
    {
        pDefault = (module.name == "ExampleTypes" && module.modeId == 0) ? &module : pDefault;
        pHdr     = (module.name == "ExampleTypes" && module.modeId == 5) ? &module : pHdr;
    }
    ASSERT_NE(nullptr, pDefault);
    if (!AtLeast("1.0.2"))
    {
        EXPECT_EQ(nullptr, pHdr);
        return;
    }
    ASSERT_NE(nullptr, pHdr);
    // Files up to 3.0.1 carry no DuplicateID: each entry is its own group there.
    EXPECT_EQ(AtLeast("3.0.2") ? pDefault->id : pHdr->id, pHdr->duplicateId);
    EXPECT_EQ(pDefault->values, pHdr->values);
}

INSTANTIATE_TEST_SUITE_P(EveryFormatChange, TuneRoundTrip,
                         ::testing::Values("1.0.1", "1.0.2", "1.1.0", "2.0.0", "3.0.0", "3.0.1", "4.0.0", "5.0.0",
                                           "6.0.0", "7.0.0"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             std::string name = std::string("V") + info.param;
                             for (char& c : name)
                             {
                                 c = (c == '.') ? '_' : c;
                             }
                             return name;
                         });

TEST(TuneRoundTrip, WithoutASourceTheFileDefinitionsLayOutTheValues)
{
    std::vector<UINT8> file;
    ASSERT_TRUE(Compile(ExampleText(), "7.0.0", true, 0, &file));
    AecTune::TuneFileContents contents;
    ASSERT_TRUE(AecTune::CTuneFileReader(nullptr).Read(file, &contents));
    ASSERT_TRUE(contents.hasDefinitions);
    auto name = [](const char* pName) {
        char text[24];
        std::snprintf(text, sizeof(text), "0x%016llx",
                      static_cast<unsigned long long>(ParserCRC64::GetNameHash(pName)));
        return std::string(text);
    };
    const AecTune::TuneFileModule& touch = contents.modules.at(0);
    EXPECT_TRUE(touch.hasValues);
    EXPECT_EQ(ParserCRC64::GetNameHash("Touch"), touch.nameHash);
    EXPECT_EQ(0.5, touch.values[name("touchMtr")][name("centerWeightStrength")].get<double>());
    EXPECT_EQ(380.0,
              touch.values[name("touchMtr")][name("ROIHistAdjZone")][1][name("zoneTrigger")][name("start")]
                  .get<double>());
    // Names of structures are kept by the store; member names are known by their hashes only.
    EXPECT_EQ("aecTouch::AECTouchType", contents.layout.structs[static_cast<size_t>(touch.structIndex)].typeName);
}

TEST(TuneRoundTrip, FilesBeforeNameHashesNameTheirModulesInText)
{
    std::vector<UINT8> file;
    ASSERT_TRUE(Compile(ExampleText(), "5.0.0", true, 0, &file));
    AecTune::TuneFileContents contents;
    ASSERT_TRUE(AecTune::CTuneFileReader(nullptr).Read(file, &contents));
    ASSERT_FALSE(contents.modules.empty());
    EXPECT_EQ(0u, contents.modules[0].nameHash);
    EXPECT_EQ("Touch", contents.modules[0].name);
    // Without name hashes the file's definitions are found for no module: values need the source.
    EXPECT_FALSE(contents.modules[0].hasValues);
}
