// Fake tuning of the tuning data adapter: every module with its default values, for running without a tuning store.
#include "aec/core/base/ctuningdataadapter.h"

#include "aecdefaulttuning.h"
#include "platform/statslogger.h"
#include "platform/velaallocator.h"

namespace
{

// Allocates one zeroed module and fills it with its defaults; null (logged) when memory runs out.
template <typename ModuleType>
ModuleType* NewFakeModule(void (*pfnFillDefault)(ModuleType*))
{
    ModuleType* pModule = static_cast<ModuleType*>(VelaCalloc(1, sizeof(ModuleType), alignof(ModuleType)));
    if (nullptr == pModule)
    {
        AEC_LOG_ERROR("Fake tuning: no memory for a module of %zu bytes; it stays missing", sizeof(ModuleType));
        return nullptr;
    }
    pfnFillDefault(pModule);
    return pModule;
}

} // namespace

VOID CTuningDataAdapter::FakeTuningData()
{
    m_bInternallyCreated = TRUE;
    FakeTuningDataModMtr();
    FakeTuningDataModConv();
    FakeTuningDataModArb();
    FakeTuningDataModExt();
    FakeTuningDataModStartUp();
    FakeTuningDataModSnapshotCtrl();
    FakeTuningDataModSkip();
    FakeTuningDataModFlash();
    FakeTuningDataModTouch();
    FakeTuningDataModFace();
    FakeTuningDataModMultiCamSync();
    FakeTuningDataModDepth();
    FakeTuningDataModParamExt();
    FakeTuningDataModSensorHDRConfig();
    FakeTuningDataModShdr();
    FakeTuningDataModIr();
    FakeTuningDataModStatsConfig();
    m_tuningModulesPtrs                 = m_fakeModules;
    m_coreModuleTuningData.pStatsConfig = m_pFakeStatsConfig;
}

VOID CTuningDataAdapter::DeinitFakeTuningData()
{
    // The arrays that the defaults point to are static: only the module records were allocated.
    VOID* const pModules[] = {
        m_fakeModules.modMtr,      m_fakeModules.modConv,         m_fakeModules.modArb,
        m_fakeModules.modExt,      m_fakeModules.modStartUp,      m_fakeModules.modSnapshotCtrl,
        m_fakeModules.modSkip,     m_fakeModules.modFlash,        m_fakeModules.modTouch,
        m_fakeModules.modFace,     m_fakeModules.modMultiCamSync, m_fakeModules.modDepth,
        m_fakeModules.modParamExt, m_fakeModules.modSensorHDRConfig, m_fakeModules.modShdr,
        m_fakeModules.modIr,       m_pFakeStatsConfig,
    };
    for (VOID* pModule : pModules)
    {
        VelaFree(pModule);
    }
    m_fakeModules        = TuningModulesPointers{};
    m_pFakeStatsConfig   = nullptr;
    m_bInternallyCreated = FALSE;
}

// The defaults are the fake tuning: among them the exposure tables, the convergence step and the LED table of the
// built-in flash calibration (s_fakeFlashCalib).
VOID CTuningDataAdapter::FakeTuningDataModMtr() { m_fakeModules.modMtr = NewFakeModule(&FillDefaultAECCoreMeteringType); }
VOID CTuningDataAdapter::FakeTuningDataModConv() { m_fakeModules.modConv = NewFakeModule(&FillDefaultAECCoreConvergenceType); }
VOID CTuningDataAdapter::FakeTuningDataModArb() { m_fakeModules.modArb = NewFakeModule(&FillDefaultAECCoreArbitrationType); }
VOID CTuningDataAdapter::FakeTuningDataModExt() { m_fakeModules.modExt = NewFakeModule(&FillDefaultAECCoreExtensionType); }
VOID CTuningDataAdapter::FakeTuningDataModStartUp() { m_fakeModules.modStartUp = NewFakeModule(&FillDefaultAECStartUpType); }
VOID CTuningDataAdapter::FakeTuningDataModSnapshotCtrl()
{
    m_fakeModules.modSnapshotCtrl = NewFakeModule(&FillDefaultAECSnapshotCtrlType);
}
VOID CTuningDataAdapter::FakeTuningDataModSkip() { m_fakeModules.modSkip = NewFakeModule(&FillDefaultAECSkipCtrlType); }
VOID CTuningDataAdapter::FakeTuningDataModFlash() { m_fakeModules.modFlash = NewFakeModule(&FillDefaultAECFlashType); }
VOID CTuningDataAdapter::FakeTuningDataModTouch() { m_fakeModules.modTouch = NewFakeModule(&FillDefaultAECTouchType); }
VOID CTuningDataAdapter::FakeTuningDataModFace() { m_fakeModules.modFace = NewFakeModule(&FillDefaultAECFaceType); }
VOID CTuningDataAdapter::FakeTuningDataModMultiCamSync()
{
    m_fakeModules.modMultiCamSync = NewFakeModule(&FillDefaultAECMultiCamType);
}
VOID CTuningDataAdapter::FakeTuningDataModDepth() { m_fakeModules.modDepth = NewFakeModule(&FillDefaultAECDepthType); }
VOID CTuningDataAdapter::FakeTuningDataModParamExt()
{
    m_fakeModules.modParamExt = NewFakeModule(&FillDefaultParamExtensionType);
}
VOID CTuningDataAdapter::FakeTuningDataModSensorHDRConfig()
{
    m_fakeModules.modSensorHDRConfig = NewFakeModule(&FillDefaultAECSensorHDRConfig);
}
VOID CTuningDataAdapter::FakeTuningDataModShdr() { m_fakeModules.modShdr = NewFakeModule(&FillDefaultAECShdrType); }
VOID CTuningDataAdapter::FakeTuningDataModIr() { m_fakeModules.modIr = NewFakeModule(&FillDefaultAECIRType); }
VOID CTuningDataAdapter::FakeTuningDataModStatsConfig() { m_pFakeStatsConfig = NewFakeModule(&FillDefaultAECStatsConfig); }
