// End-to-end tests of the depth tag path on a real tuning store: AECSetParam reads the depth module's enable flag,
// and AECGetParam asks the host for the depth tags only when it is set.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "aecore/aecore.h"
#include "aec/wrapper/zcaecalgorithminterface.h"
#include "platform/statslogger.h"
#include "unit/tuningstore/ctuningstoretestfile.h"
#include "unit/wrapper/wrapperlogcapture.h"

namespace
{

std::vector<std::string> s_queriedTags;

KDKResult QueryVendorTagLocation(const CHAR*, const CHAR* pTagName, UINT32* pTagLocation)
{
    s_queriedTags.emplace_back(pTagName);
    *pTagLocation = 0x2000 + static_cast<UINT32>(s_queriedTags.size());
    return VelaResultSuccess;
}

std::string DepthModule(bool enable)
{
    return SourceModule("aecDepth", "aecDepth::AECDepthType", "8.0.0",
                        "[ { \"name\": \"enableFlag\", \"type\": \"BOOL\" } ]",
                        std::string("{ \"Default\": { \"enableFlag\": ") + (enable ? "true" : "false") + " } }");
}

std::string SkipModule()
{
    return SourceModule("aecSkipCtrl", "aecSkip::AECSkipCtrlType", "1.0.0",
                        "[ { \"name\": \"marker\", \"type\": \"UINT32\" } ]", "{ \"Default\": { \"marker\": 1 } }");
}

class DepthTuningTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_savedLogger    = gStatsLogger;
        m_savedInterface = Vela::g_LyrAlgoInterface;
        gStatsLogger     = nullptr;
        s_queriedTags.clear();
        LyrAECAlgorithmCallbacks callbacks = {};
        LyrAECAlgorithmEntry(&callbacks);
        LyrAlgorithmInterface host   = {};
        host.size                    = sizeof(host);
        host.pQueryVendorTagLocation = &QueryVendorTagLocation;
        callbacks.pfnSetAlgoInterface(&host);

        StatsCameraInfo    info    = {StatsAlgoRoleDefault, 0};
        AECAlgoCreateParam entry   = {};
        entry.createParamType      = AECAlgoCreateParamTypeCameraInfo;
        entry.pCreateParam         = &info;
        entry.sizeOfCreateParam    = sizeof(info);
        AECAlgoCreateParamList list = {&entry, 1};
        ASSERT_EQ(VelaResultSuccess, CreateAECAlgorithm(&list, &m_pAlgo));
    }

    void TearDown() override
    {
        UINT32              mask       = 1;
        StatsCameraInfo     info       = {StatsAlgoRoleDefault, 0};
        AECAlgoDestroyParam entries[2] = {
            {AECDestroyParamTypeCameraCloseIndicator, &mask, sizeof(mask)},
            {AECDestroyParamTypeCameraInfo, &info, sizeof(info)},
        };
        AECAlgoDestroyParamList list = {entries, 2};
        AECDestroy(m_pAlgo, &list);
        gStatsLogger             = m_savedLogger;
        Vela::g_LyrAlgoInterface = m_savedInterface;
    }

    // Hands the instance the store with the host's seven selectors of Default modes.
    KDKResult SetTuning(TuningSetManager* pStore)
    {
        m_tuning                   = {pStore, m_selectors, 7};
        AECAlgoSetParam entry      = {};
        entry.setParamType         = AECAlgoSetParamSorentaData;
        entry.pAECSetParam         = &m_tuning;
        entry.sizeOfAECSetParam    = sizeof(m_tuning);
        AECAlgoSetParamList list   = {&entry, 1};
        return AECSetParam(m_pAlgo, &list);
    }

    KDKResult QueryDependentTags()
    {
        m_tagList                           = {};
        AECAlgoGetParamOutput output        = {};
        output.pOutputData                  = &m_tagList;
        output.sizeOfOutputData             = sizeof(m_tagList);
        output.outputType                   = AECGetParamOutputTypeDependentVendorTags;
        AECAlgoGetParam param               = {};
        param.type                          = AECAlgoGetParamDependentVendorTags;
        param.outputList.pAECOutputList     = &output;
        param.outputList.numberOfAECOutputs = 1;
        return AECGetParam(m_pAlgo, &param);
    }

    BOOL DepthEnabled() const { return static_cast<Vela::AECAlgorithm_Internal*>(m_pAlgo)->bDepthAECEnable; }

    // A tuning of this source turns depth AEC off: no depth tags are asked of the host.
    void ExpectNoDepthTagsWith(const std::string& source)
    {
        CTuningStoreTestFile file(source);
        ASSERT_TRUE(file.IsValid()) << file.Messages();
        std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
        ASSERT_NE(nullptr, store);
        ASSERT_EQ(VelaResultSuccess, SetTuning(store.get()));
        EXPECT_EQ(FALSE, DepthEnabled());
        EXPECT_TRUE(m_logs.Has("bDepthAECEnable:0"));

        QueryDependentTags();
        EXPECT_TRUE(s_queriedTags.empty());
        EXPECT_EQ(0U, m_tagList.vendorTagCount);
    }

    LYRAECAlgorithm*       m_pAlgo          = nullptr;
    StatsLoggingFunction   m_savedLogger    = nullptr;
    LyrAlgorithmInterface  m_savedInterface = {};
    TuningMode             m_selectors[7]   = {};
    StatsTuningData        m_tuning         = {};
    StatsVendorTagInfoList m_tagList        = {};
    WrapperLogCapture      m_logs;
};

} // namespace

TEST_F(DepthTuningTest, TuningThatEnablesDepthAECRequestsTheDepthTags)
{
    CTuningStoreTestFile file(Source("", {DepthModule(true), SkipModule()}));
    ASSERT_TRUE(file.IsValid()) << file.Messages();
    std::unique_ptr<TuningSetManager> store = file.LoadFileMode();
    ASSERT_NE(nullptr, store);
    ASSERT_EQ(VelaResultSuccess, SetTuning(store.get()));
    EXPECT_EQ(TRUE, DepthEnabled());
    EXPECT_TRUE(m_logs.Has("bDepthAECEnable:1"));

    QueryDependentTags();
    EXPECT_EQ(13U, s_queriedTags.size());
    EXPECT_EQ(13U, m_tagList.vendorTagCount);
    EXPECT_TRUE(m_logs.Has("isFixedFocus:0 bDepthAECEnable:1"));
}

TEST_F(DepthTuningTest, TuningWithoutTheDepthModuleRequestsNoDepthTags)
{
    ExpectNoDepthTagsWith(Source("", {SkipModule()}));
}

TEST_F(DepthTuningTest, TuningThatDisablesDepthAECRequestsNoDepthTags)
{
    ExpectNoDepthTagsWith(Source("", {DepthModule(false)}));
}
