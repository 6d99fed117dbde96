// The module classes of the 17 AEC modules: registered names, their literal hashes and the schema's versions.
#include <gtest/gtest.h>

#include "tuning/parser/parsercrc.h"
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

namespace
{

template <typename TClass>
void ExpectModule(const CHAR* pName, UINT16 major, UINT16 minor, UINT32 patch)
{
    SCOPED_TRACE(pName);
    typedef typename TClass::RecordType Record;
    EXPECT_STREQ(Record::GetModuleName(), pName);
    EXPECT_EQ(Record::GetModuleNameHash(), ParserCRC64::GetNameHash(Record::GetModuleName()));
    EXPECT_EQ(TClass::SourceVersion, VersionUnion::Make(major, minor, patch));

    // A prototype as the set manager registers it.
    TClass prototype(pName, nullptr);
    EXPECT_EQ(prototype.GetVersion(), TClass::SourceVersion);
    EXPECT_EQ(prototype.GetModuleNameHash(), Record::GetModuleNameHash());
    EXPECT_STREQ(prototype.GetModuleName(), pName);
    EXPECT_FALSE(prototype.IsLoaded());
    EXPECT_TRUE(prototype.UnloadModule());
}

TEST(AccessorModulesTest, EveryModuleClassHasItsRegisteredNameHashAndSourceVersion)
{
    ExpectModule<aecArbitration::AECCoreArbitrationTypeClass>("Arbitration", 8, 0, 0);
    ExpectModule<aecConvergence::AECCoreConvergenceTypeClass>("Convergence", 8, 0, 0);
    ExpectModule<aecDepth::AECDepthTypeClass>("aecDepth", 8, 0, 0);
    ExpectModule<aecExtension::AECCoreExtensionTypeClass>("Extension", 8, 0, 0);
    ExpectModule<aecFace::AECFaceTypeClass>("Face", 8, 0, 0);
    ExpectModule<aecFlash::AECFlashTypeClass>("Flash", 8, 0, 0);
    ExpectModule<aecIr::AECIRTypeClass>("aecIr", 8, 0, 0);
    ExpectModule<aecMetering::AECCoreMeteringTypeClass>("Metering", 8, 0, 1);
    ExpectModule<aecParamExtension::ParamExtensionTypeClass>("AECParamExtension", 1, 0, 0);
    ExpectModule<aecSensorConfig::AECSensorHDRConfigClass>("SensorHDRDefaultConfig", 1, 0, 0);
    ExpectModule<aecShdr::AECShdrTypeClass>("aecShdr", 8, 0, 0);
    ExpectModule<aecSkip::AECSkipCtrlTypeClass>("aecSkipCtrl", 1, 0, 0);
    ExpectModule<aecSnapshotCtrl::AECSnapshotCtrlTypeClass>("SnapshotControl", 8, 0, 0);
    ExpectModule<aecStartUp::AECStartUpTypeClass>("StartUp", 8, 0, 0);
    ExpectModule<aecStatsConfig::AECStatsConfigClass>("StatsDefaultConfig", 1, 0, 0);
    ExpectModule<aecSync::AECMultiCamTypeClass>("aecMultiCamSync", 1, 0, 0);
    ExpectModule<aecTouch::AECTouchTypeClass>("Touch", 8, 0, 0);
}

TEST(AccessorModulesTest, MemberNameHashesAreTheStoresHashes)
{
    EXPECT_EQ(ParserCRC64::GetNameHash("revision"), 0xD594EED07A5650C5ull);
    EXPECT_EQ(ParserCRC64::GetNameHash("mtrLumaCalc"), 0x866A355C62D13A6Full);
}

} // namespace
