// Tests of the core's use of a real tuning store: the tuning data adapter's references and the depth query.
#include <gtest/gtest.h>

#include "aec/core/base/ctuningdataadapter.h"
#include "aec/wrapper/querydepthaecenable.h"
#include "tuning_aecdepth_module.h"
#include "tuning_aecmetering_module.h"
#include "unit/tuningstore/ctuningstoretestfile.h"

namespace
{

// The host's selectors descend through the sensor mode.
const std::string VideoTree = "[ { \"name\": \"Main\", \"modes\": [ { \"mode\": \"Sensor.0\", \"children\": [ "
                              "{ \"mode\": \"Usecase.Video\" } ] } ] } ]";

std::string Metering(const std::string& values)
{
    return SourceModule("Metering", "aecMetering::AECCoreMeteringType", "8.0.1",
                        "[ { \"name\": \"marker\", \"type\": \"UINT32\" } ]", values);
}

std::string Depth(const std::string& values)
{
    return SourceModule("aecDepth", "aecDepth::AECDepthType", "8.0.0",
                        "[ { \"name\": \"enableFlag\", \"type\": \"BOOL\" } ]", values);
}

template <typename RecordType, typename ModuleType>
UINT32 References(RecordType* pRecord)
{
    ModuleType* pModule = static_cast<ModuleType*>(pRecord);
    return pModule->GetOwnMode()->GetReferenceCount(pModule);
}

// The host's seven selectors: Default, then the sub-mode of each further mode.
struct HostSelectors
{
    explicit HostSelectors(UINT16 usecase)
        : modes{Selector(ModeType::Default, 0),  Selector(ModeType::Sensor, 0),   Selector(ModeType::Usecase, usecase),
                Selector(ModeType::Feature1, 0), Selector(ModeType::Feature2, 0), Selector(ModeType::Scene, 0),
                Selector(ModeType::Effect, 0)}
    {
    }
    TuningMode modes[7];
};

} // namespace

TEST(TuningStoreUseTest, TuningChangesWithTheSameStoreKeepOneReferencePerModule)
{
    CTuningStoreTestFile file(Source(VideoTree, {Metering("{ \"Default\": { \"marker\": 1 }, "
                                                          "\"Sensor.0|Usecase.Video\": { \"marker\": 2 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    HostSelectors         preview(0);
    HostSelectors         video(2);
    StatsTuningData       previewTuning = {store.get(), preview.modes, 7};
    StatsTuningData       videoTuning   = {store.get(), video.modes, 7};
    CTuningDataAdapter    adapter;
    CoreModuleTuningData* pViews = nullptr;

    using MeteringClass = aecMetering::AECCoreMeteringTypeClass;
    adapter.SetSorenta(&previewTuning, &pViews);
    aecMetering::AECCoreMeteringType* pPreview = adapter.GetTuningModules().modMtr;
    ASSERT_NE(nullptr, pPreview);
    EXPECT_EQ(1U, (References<aecMetering::AECCoreMeteringType, MeteringClass>(pPreview)));
    adapter.SetSorenta(&previewTuning, &pViews);
    EXPECT_EQ(pPreview, adapter.GetTuningModules().modMtr);
    EXPECT_EQ(1U, (References<aecMetering::AECCoreMeteringType, MeteringClass>(pPreview)));

    adapter.SetSorenta(&videoTuning, &pViews);
    aecMetering::AECCoreMeteringType* pVideo = adapter.GetTuningModules().modMtr;
    ASSERT_NE(nullptr, pVideo);
    EXPECT_NE(pPreview, pVideo);
    EXPECT_EQ(0U, (References<aecMetering::AECCoreMeteringType, MeteringClass>(pPreview)));
    EXPECT_EQ(1U, (References<aecMetering::AECCoreMeteringType, MeteringClass>(pVideo)));
    EXPECT_EQ(pVideo, pViews->mtrTuningData.pCore);
    EXPECT_EQ(nullptr, adapter.GetTuningModules().modConv) << "a module missing in the store stays null";
    EXPECT_EQ(nullptr, pViews->convTuningData.pCore);
}

TEST(TuningStoreUseTest, AStoreAfterFakeTuningIsNotHandedTheFakeModules)
{
    CTuningStoreTestFile file(Source("", {Metering("{ \"Default\": { \"marker\": 1 } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    HostSelectors         preview(0);
    StatsTuningData       none        = {};
    StatsTuningData       storeTuning = {store.get(), preview.modes, 7};
    CTuningDataAdapter    adapter;
    CoreModuleTuningData* pViews = nullptr;

    adapter.SetSorenta(&none, &pViews);
    ASSERT_TRUE(adapter.IsInternallyCreated());
    adapter.SetSorenta(&storeTuning, &pViews);
    aecMetering::AECCoreMeteringType* pModule = adapter.GetTuningModules().modMtr;
    ASSERT_NE(nullptr, pModule);
    EXPECT_EQ(1U, (References<aecMetering::AECCoreMeteringType, aecMetering::AECCoreMeteringTypeClass>(pModule)));
}

TEST(TuningStoreUseTest, DepthQueryReadsTheEnableFlagAndReleasesTheModule)
{
    CTuningStoreTestFile file(Source("", {Depth("{ \"Default\": { \"enableFlag\": true } }")}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    HostSelectors   preview(0);
    StatsTuningData tuning = {store.get(), preview.modes, 7};
    EXPECT_EQ(TRUE, QueryDepthAECEnable(&tuning));

    aecDepth::AECDepthType* pDepth = store->GetModule_aecDepth(preview.modes, 7, nullptr);
    ASSERT_NE(nullptr, pDepth);
    EXPECT_EQ(1U, (References<aecDepth::AECDepthType, aecDepth::AECDepthTypeClass>(pDepth)))
        << "the query kept no reference";
    pDepth->Release();
}

TEST(TuningStoreUseTest, DepthQueryIsOffWithoutTheModuleOrTheStore)
{
    CTuningStoreTestFile disabled(Source("", {Depth("{ \"Default\": { \"enableFlag\": false } }")}));
    CTuningStoreTestFile missing(Source("", {Metering("{ \"Default\": { \"marker\": 1 } }")}));
    ASSERT_TRUE(disabled.IsValid()) << disabled.Messages();
    ASSERT_TRUE(missing.IsValid()) << missing.Messages();
    std::unique_ptr<TuningSetManager> disabledStore = disabled.LoadFileMode();
    std::unique_ptr<TuningSetManager> missingStore  = missing.LoadFileMode();
    ASSERT_NE(nullptr, disabledStore);
    ASSERT_NE(nullptr, missingStore);
    HostSelectors   preview(0);
    StatsTuningData off        = {disabledStore.get(), preview.modes, 7};
    StatsTuningData noModule   = {missingStore.get(), preview.modes, 7};
    StatsTuningData noStore    = {nullptr, preview.modes, 7};
    StatsTuningData noSelector = {missingStore.get(), nullptr, 7};
    EXPECT_EQ(FALSE, QueryDepthAECEnable(&off));
    EXPECT_EQ(FALSE, QueryDepthAECEnable(&noModule));
    EXPECT_EQ(FALSE, QueryDepthAECEnable(&noStore));
    EXPECT_EQ(FALSE, QueryDepthAECEnable(&noSelector));
    EXPECT_EQ(FALSE, QueryDepthAECEnable(nullptr));
}
