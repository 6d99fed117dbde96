// Fetches the AEC tuning modules from the tuning store (or builds fake ones) and presents them as the core's views.
#ifndef AEC_CORE_BASE_CTUNINGDATAADAPTER_H
#define AEC_CORE_BASE_CTUNINGDATAADAPTER_H

#include "aec/core/include/coremoduletuningdata.h"
#include "aecore/aecore.h"
#include "tuning/tuningsetmanager.h"

// The tuning modules the core uses, as fetched for the selected modes.
struct TuningModulesPointers
{
    aecMetering::AECCoreMeteringType*      modMtr;
    aecConvergence::AECCoreConvergenceType* modConv;
    aecArbitration::AECCoreArbitrationType* modArb;
    aecExtension::AECCoreExtensionType*    modExt;
    aecStartUp::AECStartUpType*            modStartUp;
    aecSnapshotCtrl::AECSnapshotCtrlType*  modSnapshotCtrl;
    aecSkip::AECSkipCtrlType*              modSkip;
    aecFlash::AECFlashType*                modFlash;
    aecTouch::AECTouchType*                modTouch;
    aecFace::AECFaceType*                  modFace;
    aecSync::AECMultiCamType*              modMultiCamSync;
    aecDepth::AECDepthType*                modDepth;
    aecParamExtension::ParamExtensionType* modParamExt;
    aecSensorConfig::AECSensorHDRConfig*   modSensorHDRConfig;
    aecShdr::AECShdrType*                  modShdr;
    aecIr::AECIRType*                      modIr;
};

// Owned by the data manager. The modules stay owned by the store; the fake ones, built when no store is given,
// are owned here until destruction.
class CTuningDataAdapter
{
public:
    CTuningDataAdapter();
    ~CTuningDataAdapter();

    CTuningDataAdapter(const CTuningDataAdapter&)            = delete;
    CTuningDataAdapter& operator=(const CTuningDataAdapter&) = delete;

    // Takes the host's tuning: fake tuning on the first call without a store, otherwise the modules of the selected
    // modes. Sets *ppCoreTuningData to the views, which keep their address from then on. A null pTuning or
    // ppCoreTuningData is refused with a log line.
    VOID SetSorenta(const StatsTuningData* pTuning, CoreModuleTuningData** ppCoreTuningData);

    // Resets the extension records to their defaults, then takes the recognised entries of the extension list
    // (null: none) into them.
    static VOID ParseParamExtension(const aecParamExtension::ParamExtensionType* pParamExt,
                                    CoreModuleTuningData*                        pCoreTuningData);

    // TRUE while the fake tuning is in use.
    BOOL IsInternallyCreated() const { return m_bInternallyCreated; }
    const TuningModulesPointers& GetTuningModules() const { return m_tuningModulesPtrs; }

private:
    VOID FakeTuningData();
    VOID DeinitFakeTuningData();
    VOID FakeTuningDataModMtr();
    VOID FakeTuningDataModConv();
    VOID FakeTuningDataModArb();
    VOID FakeTuningDataModExt();
    VOID FakeTuningDataModStartUp();
    VOID FakeTuningDataModSnapshotCtrl();
    VOID FakeTuningDataModSkip();
    VOID FakeTuningDataModFlash();
    VOID FakeTuningDataModTouch();
    VOID FakeTuningDataModFace();
    VOID FakeTuningDataModMultiCamSync();
    VOID FakeTuningDataModDepth();
    VOID FakeTuningDataModParamExt();
    VOID FakeTuningDataModSensorHDRConfig();
    VOID FakeTuningDataModShdr();
    VOID FakeTuningDataModIr();
    VOID FakeTuningDataModStatsConfig();

    // Fetches every module of the selected modes from the store.
    VOID FetchTuningModules();
    // Points the views into the modules; a missing module leaves its views null.
    VOID FillTuningViews();
    // Warns about exposure table knees whose index does not follow from the knee before.
    VOID ValidateTuningData() const;

    VOID DebugPrintTuningData() const;
    VOID DebugPrintTuningDataModMtr() const;
    VOID DebugPrintTuningDataModConv() const;
    VOID DebugPrintTuningDataModArb() const;
    VOID DebugPrintTuningDataModExt() const;
    VOID DebugPrintTuningDataModStartUp() const;
    VOID DebugPrintTuningDataModSnapshotCtrl() const;
    VOID DebugPrintTuningDataModSkip() const;
    VOID DebugPrintTuningDataModFlash() const;
    VOID DebugPrintTuningDataModTouch() const;
    VOID DebugPrintTuningDataModFace() const;
    VOID DebugPrintTuningDataModMultiCamSync() const;
    VOID DebugPrintTuningDataModDepth() const;
    VOID DebugPrintTuningDataModParamExt() const;
    VOID DebugPrintTuningDataModSensorHDRConfig() const;
    VOID DebugPrintTuningDataModShdr() const;
    VOID DebugPrintTuningDataModIr() const;
    VOID DebugPrintTuningDataModStatsConfig() const;

    BOOL                  m_bInternallyCreated;
    TuningModulesPointers m_tuningModulesPtrs;
    TuningSetManager*     m_pTuningSetManager;
    TuningMode*           m_pSelectors;
    UINT                  m_numSelectors;
    CoreModuleTuningData  m_coreModuleTuningData;
    // The fake modules, apart from m_tuningModulesPtrs: a store's modules may replace those later, and only these
    // are freed.
    TuningModulesPointers           m_fakeModules;
    aecStatsConfig::AECStatsConfig* m_pFakeStatsConfig;
    // The store that the modules held now were fetched from (null: none, or fake ones); it holds a reference on each.
    TuningSetManager* m_pFetchedStore;
};

#endif // AEC_CORE_BASE_CTUNINGDATAADAPTER_H
