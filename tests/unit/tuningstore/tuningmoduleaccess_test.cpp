// Tests of the typed module accessors: references, refused module versions, instances shared by modes.
#include <gtest/gtest.h>

#include "tuning/parser/parsercrc.h"
#include "tuning_aecmetering_module.h"
#include "unit/tuningparser/clogcapture.h"
#include "unit/tuningstore/ctuningstoretestfile.h"

namespace
{

const std::string VideoTree = "[ { \"name\": \"Main\", \"modes\": [ { \"mode\": \"Usecase.Video\" } ] } ]";

std::string Metering(const std::string& version, const std::string& values)
{
    return SourceModule("Metering", "aecMetering::AECCoreMeteringType", version,
                        "[ { \"name\": \"marker\", \"type\": \"UINT32\" } ]", values);
}

aecMetering::AECCoreMeteringTypeClass* ModuleOf(aecMetering::AECCoreMeteringType* pRecord)
{
    return static_cast<aecMetering::AECCoreMeteringTypeClass*>(pRecord);
}

// References that the instance's own mode holds on it.
UINT32 References(aecMetering::AECCoreMeteringType* pRecord)
{
    aecMetering::AECCoreMeteringTypeClass* pModule = ModuleOf(pRecord);
    return pModule->GetOwnMode()->GetReferenceCount(pModule);
}

class TuningModuleAccessTest : public ::testing::Test
{
protected:
    const TuningMode m_default[1] = {Selector(ModeType::Default, 0)};
    const TuningMode m_video[2]   = {Selector(ModeType::Default, 0), Selector(ModeType::Usecase, 2)};
};

} // namespace

TEST_F(TuningModuleAccessTest, PassingThePreviousModuleReleasesItsReference)
{
    CTuningStoreTestFile file(Source("", {Metering("8.0.1", "{ \"Default\": { \"marker\": 1 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);

    aecMetering::AECCoreMeteringType* pFirst = store->GetModule_Metering(m_default, 1, nullptr);
    ASSERT_NE(nullptr, pFirst);
    EXPECT_EQ(1U, References(pFirst));
    aecMetering::AECCoreMeteringType* pAgain = store->GetModule_Metering(m_default, 1, pFirst);
    EXPECT_EQ(pFirst, pAgain);
    EXPECT_EQ(1U, References(pAgain)) << "the previous reference was released";
    aecMetering::AECCoreMeteringType* pMore = store->GetModule_Metering(m_default, 1, nullptr);
    EXPECT_EQ(2U, References(pMore)) << "without a previous module every fetch adds one";
    EXPECT_TRUE(pMore->Release());
    EXPECT_TRUE(pAgain->Release());
    EXPECT_EQ(0U, References(pFirst));
}

TEST_F(TuningModuleAccessTest, PassingThePreviousModuleReleasesItWhenAnotherModeIsServed)
{
    CTuningStoreTestFile file(
        Source(VideoTree, {Metering("8.0.1", "{ \"Default\": { \"marker\": 1 }, \"Usecase.Video\": { \"marker\": 2 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);

    aecMetering::AECCoreMeteringType* pDefault = store->GetModule_Metering(m_default, 1, nullptr);
    aecMetering::AECCoreMeteringType* pVideo   = store->GetModule_Metering(m_video, 2, pDefault);
    ASSERT_NE(nullptr, pDefault);
    ASSERT_NE(nullptr, pVideo);
    EXPECT_NE(pDefault, pVideo);
    EXPECT_EQ(0U, References(pDefault));
    EXPECT_EQ(1U, References(pVideo));
    EXPECT_TRUE(pVideo->Release());
}

TEST_F(TuningModuleAccessTest, AModuleOfAnotherVersionIsRefusedAndStaysAbsent)
{
    CTuningStoreTestFile file(Source("", {Metering("8.0.0", "{ \"Default\": { \"marker\": 1 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    CLogCapture                       logs;
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    EXPECT_TRUE(logs.Contains("Unable to create AECCoreMeteringTypeClass, binary version"));
    EXPECT_FALSE(store->GetStatus());
    DefaultModule* pDefault = store->GetDefaultModule(ParserCRC64::GetNameHash("Metering"));
    ASSERT_NE(nullptr, pDefault);
    EXPECT_EQ(nullptr, pDefault->first) << "no instance was made";
    EXPECT_EQ(nullptr, store->GetModule_Metering(m_default, 1, nullptr));
}

TEST_F(TuningModuleAccessTest, AModeWithARefusedVersionFallsBackToItsParentsInstance)
{
    // Two entries of one module name with different versions: Default's is the code's, Video's is not.
    const std::string newer = SourceModule("MeteringNext", "aecMetering::AECCoreMeteringType", "9.0.0",
                                           "[ { \"name\": \"marker\", \"type\": \"UINT32\" } ]",
                                           "{ \"Usecase.Video\": { \"marker\": 2 } }");
    CTuningStoreTestFile file(Source(VideoTree, {Metering("8.0.1", "{ \"Default\": { \"marker\": 1 } }"), newer}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    file.RenameModule("MeteringNext", "Metering");
    ASSERT_TRUE(file.IsValid());
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    aecMetering::AECCoreMeteringType* pDefault = store->GetModule_Metering(m_default, 1, nullptr);
    ASSERT_NE(nullptr, pDefault);
    EXPECT_FALSE(store->GetStatus()) << "the newer module was refused";
    DefaultModule* pList = store->GetDefaultModule(ParserCRC64::GetNameHash("Metering"));
    EXPECT_EQ(pList->first, pList->last) << "one instance, Default's";
    EXPECT_EQ(pDefault, store->GetModule_Metering(m_video, 2, pDefault)) << "the parent's instance serves the mode";
    EXPECT_EQ(VersionUnion::Make(8, 0, 1), ModuleOf(pDefault)->GetVersion());
    EXPECT_TRUE(pDefault->Release());
}

TEST_F(TuningModuleAccessTest, ModesWithTheSameDataShareOneInstanceInBothMaps)
{
    CTuningStoreTestFile file(
        Source(VideoTree, {Metering("8.0.1", "{ \"Default\": { \"marker\": 7 }, \"Usecase.Video\": { \"marker\": 7 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    const UINT64 hash = ParserCRC64::GetNameHash("Metering");

    ModeEntry* pDefaultMode = store->GetModeEntry(0, m_default, 1);
    ModeEntry* pVideoMode   = store->GetModeEntry(0, m_video, 2);
    ASSERT_NE(nullptr, pDefaultMode);
    ASSERT_NE(nullptr, pVideoMode);
    ASSERT_NE(pDefaultMode, pVideoMode);
    ParameterModule* pInDefault = pDefaultMode->FindModule(hash);
    ASSERT_NE(nullptr, pInDefault);
    EXPECT_EQ(pInDefault, pVideoMode->FindModule(hash));

    DefaultModule* pDefault = store->GetDefaultModule(hash);
    ASSERT_NE(nullptr, pDefault->first);
    EXPECT_EQ(pDefault->first, pDefault->last) << "one instance in the prototype's list";

    aecMetering::AECCoreMeteringType* pVideo = store->GetModule_Metering(m_video, 2, nullptr);
    EXPECT_EQ(static_cast<aecMetering::AECCoreMeteringTypeClass*>(pInDefault), pVideo);
    pVideo->Release();
}

TEST_F(TuningModuleAccessTest, BufferModeHandsOutModulesWithoutReferences)
{
    CTuningStoreTestFile file(Source("", {Metering("8.0.1", "{ \"Default\": { \"marker\": 1 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadBufferMode();
    ASSERT_NE(nullptr, store);
    aecMetering::AECCoreMeteringType* pModule = store->GetModule_Metering(m_default, 1, nullptr);
    ASSERT_NE(nullptr, pModule);
    EXPECT_EQ(pModule, store->GetModule_Metering(m_default, 1, pModule));
    EXPECT_EQ(0U, References(pModule));
}
