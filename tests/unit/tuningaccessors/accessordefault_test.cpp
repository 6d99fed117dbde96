// Every AEC module of the default tuning through a parameter file: each member that the generated accessors load
// reads back by text exactly as the built-in default record has it.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "aecdefaulttuning.h"
#include "platform/velaallocator.h"
#include "tools/aectune/tunetesthelpers.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning_aecarbitration_module.h"
#include "tuning_aecconvergence_module.h"
#include "tuning_aecdepth_module.h"
#include "tuning_aecextension_module.h"
#include "tuning_aecface_module.h"
#include "tuning_aecflash_module.h"
#include "tuning_aecir_module.h"
#include "tuning_aecmetering_module.h"
#include "tuning_aecparamextension_module.h"
#include "tuning_aecsensorconfig_module.h"
#include "tuning_aecshdr_module.h"
#include "tuning_aecskip_module.h"
#include "tuning_aecsnapshotctrl_module.h"
#include "tuning_aecstartup_module.h"
#include "tuning_aecstatsconfig_module.h"
#include "tuning_aecsync_module.h"
#include "tuning_aectouch_module.h"
#include "unit/tuningparser/clogcapture.h"

namespace
{

// Every value of a record as "path=text", found through GetInfo and read through GetValue.
template <typename TRecord>
void Collect(const TRecord& record, const std::string& path, std::vector<std::string>& lines)
{
    PList<ParameterParserInfo> members;
    ASSERT_TRUE(record.GetInfo(path.c_str(), members)) << path;
    for (UINT32 i = 0; i < members.Count(); i++)
    {
        const ParameterParserInfo& info  = members[i];
        const std::string          name  = (path.empty() ? "" : path + ".") + info.Name;
        const UINT32               count = info.isArray ? info.Count : 1;
        for (UINT32 e = 0; e < count; e++)
        {
            const std::string element = info.isArray ? name + "[" + std::to_string(e) + "]" : name;
            if (0 == std::strcmp(info.Type, "Structure"))
            {
                Collect(record, element, lines);
                continue;
            }
            CHAR text[1024] = {};
            EXPECT_TRUE(record.GetValue(element.c_str(), text, sizeof(text))) << element;
            lines.push_back(element + "=" + text);
        }
    }
}

std::string ReadText(const CHAR* pPath)
{
    std::ifstream      file(pPath);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

class AccessorDefaultTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string messages;
        ASSERT_TRUE(AecTuneTest::Compile(ReadText(AECORE_TUNING_DEFAULT_SOURCE), "7.0.0", true, 0, &m_file,
                                         &messages))
            << messages;
        m_pManager.reset(new ParameterSetManager(nullptr, 0, "defaults"));
    }

    template <typename TClass>
    void Register(const CHAR* pName)
    {
        ASSERT_TRUE(m_pManager->AddDefaultModule(new TClass(pName, nullptr)));
    }

    // Loads the module of the Default mode and compares it with the built-in default record, member by member.
    template <typename TClass>
    void Compare(const CHAR* pRecordName)
    {
        typedef typename TClass::RecordType Record;
        SCOPED_TRACE(pRecordName);
        const TuningMode root[]  = {{ModeType::Default, {0}}};
        ParameterModule* pModule = m_pManager->GetModuleInternal(0, Record::GetModuleName(), root, 1, nullptr, 1);
        ASSERT_NE(pModule, nullptr);
        EXPECT_TRUE(pModule->IsLoaded());

        const AECDefaultTuningModule* pDefault = nullptr;
        for (const AECDefaultTuningModule& module : g_aecDefaultTuningModules)
        {
            pDefault = (0 == std::strcmp(module.pName, pRecordName)) ? &module : pDefault;
        }
        ASSERT_NE(pDefault, nullptr);
        ASSERT_EQ(pDefault->size, sizeof(Record));
        void* pStorage = VelaCalloc(1, pDefault->storageSize, pDefault->storageAlignment);
        pDefault->pfnFillDefaultStorage(pStorage);

        std::vector<std::string> loaded;
        std::vector<std::string> expected;
        Collect(static_cast<const Record&>(*static_cast<TClass*>(pModule)), "", loaded);
        // The storage begins with the record, which points into the rest of it.
        Collect(*static_cast<const Record*>(pStorage), "", expected);
        EXPECT_GT(loaded.size(), 5u);
        EXPECT_EQ(loaded, expected);
        VelaFree(pStorage);
        m_pManager->ReleaseModule(pModule);
    }

    CLogCapture                          m_log;
    std::vector<UINT8>                   m_file;
    std::unique_ptr<ParameterSetManager> m_pManager;
};

TEST_F(AccessorDefaultTest, EveryModuleReadsBackItsDefaultValues)
{
    Register<aecArbitration::AECCoreArbitrationTypeClass>("Arbitration");
    Register<aecConvergence::AECCoreConvergenceTypeClass>("Convergence");
    Register<aecDepth::AECDepthTypeClass>("aecDepth");
    Register<aecExtension::AECCoreExtensionTypeClass>("Extension");
    Register<aecFace::AECFaceTypeClass>("Face");
    Register<aecFlash::AECFlashTypeClass>("Flash");
    Register<aecIr::AECIRTypeClass>("aecIr");
    Register<aecMetering::AECCoreMeteringTypeClass>("Metering");
    Register<aecParamExtension::ParamExtensionTypeClass>("AECParamExtension");
    Register<aecSensorConfig::AECSensorHDRConfigClass>("SensorHDRDefaultConfig");
    Register<aecShdr::AECShdrTypeClass>("aecShdr");
    Register<aecSkip::AECSkipCtrlTypeClass>("aecSkipCtrl");
    Register<aecSnapshotCtrl::AECSnapshotCtrlTypeClass>("SnapshotControl");
    Register<aecStartUp::AECStartUpTypeClass>("StartUp");
    Register<aecStatsConfig::AECStatsConfigClass>("StatsDefaultConfig");
    Register<aecSync::AECMultiCamTypeClass>("aecMultiCamSync");
    Register<aecTouch::AECTouchTypeClass>("Touch");
    // The file may hold modules the library does not read.
    m_pManager->SetIgnoreMissingModules(true);
    ASSERT_TRUE(m_pManager->LoadBinaryParameters(m_file.data(), m_file.size()));

    Compare<aecArbitration::AECCoreArbitrationTypeClass>("AECCoreArbitrationType");
    Compare<aecConvergence::AECCoreConvergenceTypeClass>("AECCoreConvergenceType");
    Compare<aecDepth::AECDepthTypeClass>("AECDepthType");
    Compare<aecExtension::AECCoreExtensionTypeClass>("AECCoreExtensionType");
    Compare<aecFace::AECFaceTypeClass>("AECFaceType");
    Compare<aecFlash::AECFlashTypeClass>("AECFlashType");
    Compare<aecIr::AECIRTypeClass>("AECIRType");
    Compare<aecMetering::AECCoreMeteringTypeClass>("AECCoreMeteringType");
    Compare<aecParamExtension::ParamExtensionTypeClass>("ParamExtensionType");
    Compare<aecSensorConfig::AECSensorHDRConfigClass>("AECSensorHDRConfig");
    Compare<aecShdr::AECShdrTypeClass>("AECShdrType");
    Compare<aecSkip::AECSkipCtrlTypeClass>("AECSkipCtrlType");
    Compare<aecSnapshotCtrl::AECSnapshotCtrlTypeClass>("AECSnapshotCtrlType");
    Compare<aecStartUp::AECStartUpTypeClass>("AECStartUpType");
    Compare<aecStatsConfig::AECStatsConfigClass>("AECStatsConfig");
    Compare<aecSync::AECMultiCamTypeClass>("AECMultiCamType");
    Compare<aecTouch::AECTouchTypeClass>("AECTouchType");

    // The file's records match the code's: nothing was missing, moved or resized.
    EXPECT_FALSE(m_log.Contains("entry not found in the binary file"));
    EXPECT_FALSE(m_log.Contains("XSD"));
}

} // namespace
