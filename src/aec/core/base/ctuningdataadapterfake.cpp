// Fake tuning of the tuning data adapter: every module with its default values, for running without a tuning store.
#include "aec/core/base/ctuningdataadapter.h"

#include "aecdefaulttuning.h"
#include "platform/statslogger.h"
#include "platform/velaallocator.h"

namespace
{

// Allocates the default storage of one module and fills it: the record and its own copy of every array it points
// to, so that this instance's writes into its tuning reach no other instance. Returns the record, which starts the
// storage (freeing the record frees it all); null (logged) when memory runs out.
template <typename StorageType>
auto NewFakeModule(void (*pfnFillDefaultStorage)(StorageType*)) -> decltype(StorageType::module)*
{
    StorageType* pStorage = static_cast<StorageType*>(VelaCalloc(1, sizeof(StorageType), alignof(StorageType)));
    if (nullptr == pStorage)
    {
        AEC_LOG_ERROR("Fake tuning: no memory for a module of %zu bytes; it stays missing", sizeof(StorageType));
        return nullptr;
    }
    pfnFillDefaultStorage(pStorage);
    return &pStorage->module;
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
    // Each record starts the storage that also holds its arrays: freeing the record frees them too.
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
VOID CTuningDataAdapter::FakeTuningDataModMtr()
{
    m_fakeModules.modMtr = NewFakeModule(&FillDefaultAECCoreMeteringTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModConv()
{
    m_fakeModules.modConv = NewFakeModule(&FillDefaultAECCoreConvergenceTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModArb()
{
    m_fakeModules.modArb = NewFakeModule(&FillDefaultAECCoreArbitrationTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModExt()
{
    m_fakeModules.modExt = NewFakeModule(&FillDefaultAECCoreExtensionTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModStartUp()
{
    m_fakeModules.modStartUp = NewFakeModule(&FillDefaultAECStartUpTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModSnapshotCtrl()
{
    m_fakeModules.modSnapshotCtrl = NewFakeModule(&FillDefaultAECSnapshotCtrlTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModSkip()
{
    m_fakeModules.modSkip = NewFakeModule(&FillDefaultAECSkipCtrlTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModFlash()
{
    m_fakeModules.modFlash = NewFakeModule(&FillDefaultAECFlashTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModTouch()
{
    m_fakeModules.modTouch = NewFakeModule(&FillDefaultAECTouchTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModFace()
{
    m_fakeModules.modFace = NewFakeModule(&FillDefaultAECFaceTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModMultiCamSync()
{
    m_fakeModules.modMultiCamSync = NewFakeModule(&FillDefaultAECMultiCamTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModDepth()
{
    m_fakeModules.modDepth = NewFakeModule(&FillDefaultAECDepthTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModParamExt()
{
    m_fakeModules.modParamExt = NewFakeModule(&FillDefaultParamExtensionTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModSensorHDRConfig()
{
    m_fakeModules.modSensorHDRConfig = NewFakeModule(&FillDefaultAECSensorHDRConfigStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModShdr()
{
    m_fakeModules.modShdr = NewFakeModule(&FillDefaultAECShdrTypeStorage);
}
VOID CTuningDataAdapter::FakeTuningDataModIr() { m_fakeModules.modIr = NewFakeModule(&FillDefaultAECIRTypeStorage); }
VOID CTuningDataAdapter::FakeTuningDataModStatsConfig()
{
    m_pFakeStatsConfig = NewFakeModule(&FillDefaultAECStatsConfigStorage);
}
