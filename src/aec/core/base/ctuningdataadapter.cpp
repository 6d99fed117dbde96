// The tuning data adapter: fetching the modules of the selected modes, the views into them, and their validation.
#include "aec/core/base/ctuningdataadapter.h"

#include <cmath>

#include "platform/statslogger.h"

namespace
{

// Index units of a linear ratio: index delta = log10(ratio) x this.
constexpr DOUBLE AECIndexPerLog10 = 77.89852905273438;
// Tuned knee indices are written with six decimals: a recomputed index within this of the tuned one agrees.
constexpr FLOAT KneeIndexTolerance = 1e-3F;

} // namespace

CTuningDataAdapter::CTuningDataAdapter()
    : m_bInternallyCreated(FALSE)
    , m_tuningModulesPtrs()
    , m_pTuningSetManager(nullptr)
    , m_pSelectors(nullptr)
    , m_numSelectors(0)
    , m_coreModuleTuningData()
    , m_fakeModules()
    , m_pFakeStatsConfig(nullptr)
    , m_pFetchedStore(nullptr)
{
}

CTuningDataAdapter::~CTuningDataAdapter()
{
    if (TRUE == m_bInternallyCreated)
    {
        DeinitFakeTuningData();
    }
}

VOID CTuningDataAdapter::SetSorenta(const StatsTuningData* pTuning, CoreModuleTuningData** ppCoreTuningData)
{
    if ((nullptr == pTuning) || (nullptr == ppCoreTuningData))
    {
        AEC_LOG_ERROR("Tuning refused: tuning data %p, destination %p", pTuning, ppCoreTuningData);
        return;
    }
    if ((FALSE == m_bInternallyCreated) && (nullptr == pTuning->pTuningSetManager))
    {
        AEC_LOG_ERROR("Tuning Pointer Null");
        FakeTuningData();
        // The modules held from now on are fake ones: no store may be handed them back.
        m_pFetchedStore = nullptr;
    }
    else
    {
        m_pTuningSetManager = static_cast<TuningSetManager*>(pTuning->pTuningSetManager);
        m_pSelectors        = static_cast<TuningMode*>(pTuning->pTuningModeSelectors);
        m_numSelectors      = pTuning->numSelectors;
        if ((nullptr != m_pTuningSetManager) && (nullptr != m_pSelectors))
        {
            FetchTuningModules();
        }
    }
    FillTuningViews();
    ParseParamExtension(m_tuningModulesPtrs.modParamExt, &m_coreModuleTuningData);
    *ppCoreTuningData = &m_coreModuleTuningData;
    ValidateTuningData();
    DebugPrintTuningData();
}

VOID CTuningDataAdapter::FetchTuningModules()
{
    TuningSetManager*      pStore = m_pTuningSetManager;
    const TuningMode*      pModes = m_pSelectors;
    const UINT32           count  = m_numSelectors;
    TuningModulesPointers& rMods  = m_tuningModulesPtrs;
    // Each fetch takes a reference in the store. The modules held now are handed back with the next fetch of the
    // same store, which releases them; those of another store, or fake ones, are not the store's to release.
    const bool sameStore = (pStore == m_pFetchedStore);
    auto       previous  = [sameStore](auto* pModule) { return sameStore ? pModule : nullptr; };

    rMods.modMtr             = pStore->GetModule_Metering(pModes, count, previous(rMods.modMtr));
    rMods.modConv            = pStore->GetModule_Convergence(pModes, count, previous(rMods.modConv));
    rMods.modArb             = pStore->GetModule_Arbitration(pModes, count, previous(rMods.modArb));
    rMods.modExt             = pStore->GetModule_Extension(pModes, count, previous(rMods.modExt));
    rMods.modStartUp         = pStore->GetModule_StartUp(pModes, count, previous(rMods.modStartUp));
    rMods.modSnapshotCtrl    = pStore->GetModule_SnapshotControl(pModes, count, previous(rMods.modSnapshotCtrl));
    rMods.modSkip            = pStore->GetModule_aecSkipCtrl(pModes, count, previous(rMods.modSkip));
    rMods.modFlash           = pStore->GetModule_Flash(pModes, count, previous(rMods.modFlash));
    rMods.modTouch           = pStore->GetModule_Touch(pModes, count, previous(rMods.modTouch));
    rMods.modFace            = pStore->GetModule_Face(pModes, count, previous(rMods.modFace));
    rMods.modMultiCamSync    = pStore->GetModule_aecMultiCamSync(pModes, count, previous(rMods.modMultiCamSync));
    rMods.modDepth           = pStore->GetModule_aecDepth(pModes, count, previous(rMods.modDepth));
    rMods.modParamExt        = pStore->GetModule_AECParamExtension(pModes, count, previous(rMods.modParamExt));
    rMods.modSensorHDRConfig =
        pStore->GetModule_SensorHDRDefaultConfig(pModes, count, previous(rMods.modSensorHDRConfig));
    rMods.modShdr = pStore->GetModule_aecShdr(pModes, count, previous(rMods.modShdr));
    rMods.modIr   = pStore->GetModule_aecIr(pModes, count, previous(rMods.modIr));
    // The view is read-only; the store takes the record back only to release it.
    aecStatsConfig::AECStatsConfig* pStatsConfig =
        const_cast<aecStatsConfig::AECStatsConfig*>(m_coreModuleTuningData.pStatsConfig);
    m_coreModuleTuningData.pStatsConfig = pStore->GetModule_StatsDefaultConfig(pModes, count, previous(pStatsConfig));
    m_pFetchedStore = pStore;
}

VOID CTuningDataAdapter::FillTuningViews()
{
    const TuningModulesPointers& rMods = m_tuningModulesPtrs;
    CoreModuleTuningData&        rData = m_coreModuleTuningData;
    // Address of a part of a module, null without the module.
    auto partOf = [](auto* pModule, auto member) { return (nullptr != pModule) ? &(pModule->*member) : nullptr; };

    rData.IRTuningData.pIrLinear = partOf(rMods.modIr, &aecIr::AECIRType::IrLinear);
    rData.IRTuningData.pIrShdr   = partOf(rMods.modIr, &aecIr::AECIRType::IrShdr);

    MeteringTuningDataType& rMtr = rData.mtrTuningData;
    rMtr.pCore                   = rMods.modMtr;
    rMtr.pFlash                  = partOf(rMods.modFlash, &aecFlash::AECFlashType::flashMtr);
    rMtr.pTouch                  = partOf(rMods.modTouch, &aecTouch::AECTouchType::touchMtr);
    rMtr.pFace                   = partOf(rMods.modFace, &aecFace::AECFaceType::faceMtr);
    rMtr.pMtrMixConfig           = partOf(rMods.modMultiCamSync, &aecSync::AECMultiCamType::mtrMixConfig);
    rMtr.pDepth                  = rMods.modDepth;
    rMtr.pAECParamExt            = rMods.modParamExt;
    rMtr.pSensorHDR              = rMods.modSensorHDRConfig;
    rMtr.pShdr                   = partOf(rMods.modShdr, &aecShdr::AECShdrType::shdrMtr);
    rMtr.pIr                     = partOf(rMods.modIr, &aecIr::AECIRType::IrMtr);

    ConvergenceTuningDataType& rConv = rData.convTuningData;
    rConv.pCore                      = rMods.modConv;
    rConv.pStartUp                   = partOf(rMods.modStartUp, &aecStartUp::AECStartUpType::StartUpConv);
    rConv.pFlash                     = partOf(rMods.modFlash, &aecFlash::AECFlashType::flashConv);
    rConv.pTouch                     = partOf(rMods.modTouch, &aecTouch::AECTouchType::touchConv);
    rConv.pFace                      = partOf(rMods.modFace, &aecFace::AECFaceType::faceConv);
    if (nullptr != rMods.modFlash)
    {
        const aecFlash::FlashMeteringType::FDFlashStruct& rFDFlash = rMods.modFlash->flashMtr.FDFlash;
        rConv.enableFDFlash                                         = rFDFlash.enableFDFlash;
        rConv.FDFlashFrameCount                                     = rFDFlash.FDFlashFrameCount;
        rConv.dynamicFDDelay                                        = rFDFlash.dynamicFDDelay;
    }
    else
    {
        rConv.enableFDFlash     = FALSE;
        rConv.FDFlashFrameCount = 0;
        rConv.dynamicFDDelay    = {};
    }
    rConv.pDepth     = partOf(rMods.modDepth, &aecDepth::AECDepthType::depthConv);
    rConv.pSensorHDR = rMods.modSensorHDRConfig;

    ArbitrationTuningDataType& rArb = rData.arbTuningData;
    rArb.pCore                      = rMods.modArb;
    rArb.pStartUp                   = partOf(rMods.modStartUp, &aecStartUp::AECStartUpType::StartUpArb);
    rArb.pSnapshotCtrl  = partOf(rMods.modSnapshotCtrl, &aecSnapshotCtrl::AECSnapshotCtrlType::snapCtrlArb);
    rArb.pFlash         = partOf(rMods.modFlash, &aecFlash::AECFlashType::flashArb);
    rArb.pExpSyncConfig = partOf(rMods.modMultiCamSync, &aecSync::AECMultiCamType::expSyncConfig);

    ExtensionTuningDataType& rExt = rData.extTuningData;
    rExt.pCore                    = rMods.modExt;
    rExt.pSnapshotCtrl = partOf(rMods.modSnapshotCtrl, &aecSnapshotCtrl::AECSnapshotCtrlType::snapCtrlExt);
    rExt.pFlash        = partOf(rMods.modFlash, &aecFlash::AECFlashType::flashExt);
    rExt.pMtrAndExpModeConfig  = partOf(rMods.modMultiCamSync, &aecSync::AECMultiCamType::mtrAndExpMode);
    rExt.pSlaveLuxIdxSelection = partOf(rMods.modMultiCamSync, &aecSync::AECMultiCamType::luxIndexSelection);
    rExt.pSkip                 = rMods.modSkip;

    rData.pStatsROIProcess = partOf(rMods.modFace, &aecFace::AECFaceType::statsROIProcess);
}

VOID CTuningDataAdapter::ValidateTuningData() const
{
    const aecArbitration::AECCoreArbitrationType* pArb = m_tuningModulesPtrs.modArb;
    if ((nullptr == pArb) || (nullptr == pArb->expTables))
    {
        return;
    }
    for (UINT32 table = 0; table < pArb->expTablesCount; table++)
    {
        const aecArbitration::ExposureTableType& rTable = pArb->expTables[table];
        if (nullptr == rTable.expKneeEntries)
        {
            continue;
        }
        for (UINT32 knee = 1; knee < rTable.expKneeEntriesCount; knee++)
        {
            const aecArbitration::ExposureKneeType& rPrev = rTable.expKneeEntries[knee - 1];
            const aecArbitration::ExposureKneeType& rKnee = rTable.expKneeEntries[knee];
            const DOUBLE previous = static_cast<DOUBLE>(rPrev.expTime) * static_cast<DOUBLE>(rPrev.gain);
            const DOUBLE current  = static_cast<DOUBLE>(rKnee.expTime) * static_cast<DOUBLE>(rKnee.gain);
            // A knee without exposure has no index to recompute; the comparison below would see NaN or infinity.
            if (!(previous > 0.0) || !(current > 0.0))
            {
                AEC_LOG_WARN("Warning: knee(%u) of table %u has no exposure: index not checked", knee, table);
                continue;
            }
            const FLOAT expected =
                rPrev.expIndex + static_cast<FLOAT>(std::log10(current / previous) * AECIndexPerLog10);
            if (std::fabs(expected - rKnee.expIndex) > KneeIndexTolerance)
            {
                AEC_LOG_WARN("Warning: knee(%d) Exp index(%f)->(%f) Mismatch (table%d)! ", knee, rKnee.expIndex,
                             expected, table);
            }
        }
    }
}
