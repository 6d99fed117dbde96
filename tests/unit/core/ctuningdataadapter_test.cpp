// Tests of the tuning data adapter: fake tuning, the store's modules and the views into them, the parameter
// extension list and the exposure table check.
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "aecdefaulttuning.h"
#include "aecore/aecore.h"
#include "unit/core/coretestsupport.h"

namespace
{

typedef statsglobalelements::statsExtensionParamType ExtensionEntry;

// One extension entry with its own copies of name and data.
struct TestExtension
{
    std::string        name;
    std::vector<FLOAT> data;
    INT32              ID;
    BOOL               enableFlag;
};

class TuningDataAdapterTest : public ::testing::Test
{
protected:
    // Hands the adapter the tuning of no store (the host without a tuning store).
    CoreModuleTuningData* SetNoStore()
    {
        StatsTuningData tuning = {};
        m_adapter.SetSorenta(&tuning, &m_pData);
        return m_pData;
    }

    CoreModuleTuningData* SetStore()
    {
        const StatsTuningData tuning = m_store.TuningData();
        m_adapter.SetSorenta(&tuning, &m_pData);
        return m_pData;
    }

    // Parses the given entries into m_data, as a tuning change does.
    void Parse(const std::vector<TestExtension>& extensions)
    {
        m_extensions = extensions;
        m_entries.assign(m_extensions.size(), ExtensionEntry{});
        for (size_t i = 0; i < m_extensions.size(); i++)
        {
            m_entries[i].ID         = m_extensions[i].ID;
            m_entries[i].Name       = &m_extensions[i].name[0];
            m_entries[i].enableFlag = m_extensions[i].enableFlag;
            m_entries[i].dataCount  = static_cast<UINT32>(m_extensions[i].data.size());
            m_entries[i].data       = m_extensions[i].data.empty() ? nullptr : m_extensions[i].data.data();
        }
        m_paramExt.extensionParamCount = static_cast<UINT32>(m_entries.size());
        m_paramExt.extensionParam      = m_entries.empty() ? nullptr : m_entries.data();
        CTuningDataAdapter::ParseParamExtension(&m_paramExt, &m_data);
    }

    // The exact data of the gyro entry: counts rows x columns, zones i and 10 + i, trigger data 100 + n.
    static std::vector<FLOAT> GyroData(FLOAT rows, FLOAT columns)
    {
        std::vector<FLOAT> data = {4.0F, 1.0F, 1.0F, rows, columns};
        for (UINT32 zone = 0; zone < 16; zone++)
        {
            data.push_back(static_cast<FLOAT>(zone));
            data.push_back(static_cast<FLOAT>(zone) + 0.5F);
        }
        for (UINT32 n = 0; n < 64; n++)
        {
            data.push_back(100.0F + static_cast<FLOAT>(n));
        }
        return data;
    }

    static void ExpectExtensionDefaults(const CoreModuleTuningData& rData)
    {
        const MeteringTuningDataType& rMtr = rData.mtrTuningData;
        EXPECT_EQ(FALSE, rMtr.extDepthAEC.enable);
        EXPECT_EQ(FALSE, rMtr.ADRCSaturation.enableADRCSatCtrl);
        EXPECT_EQ(FALSE, rMtr.ADRCSaturation.enablePredictiveSatCtrl);
        EXPECT_EQ(FALSE, rMtr.extHistogram.enableHist);
        EXPECT_FLOAT_EQ(1.5F, rMtr.extHistogram.maxDarkBoostGain);
        EXPECT_FLOAT_EQ(16.0F, rMtr.extHistogram.maxDRCGain);
        EXPECT_FLOAT_EQ(6.0F, rMtr.extHistogram.maxADRCGainFace);
        EXPECT_EQ(0, rMtr.extHistogram.useLegacyTargets);
        EXPECT_EQ(FALSE, rMtr.extInsensorHDR.enableInsensorHDR);
        EXPECT_FLOAT_EQ(1.0F, rMtr.extInsensorHDR.compenADRCGain);
        EXPECT_FLOAT_EQ(8.0F, rMtr.extInsensorHDR.DRCGainThresh);
        EXPECT_EQ(FALSE, rData.convTuningData.extPredictive.enable);
        EXPECT_FLOAT_EQ(0.0F, rData.convTuningData.extPredictive.ADRCWeight);
        EXPECT_EQ(FALSE, rData.arbTuningData.extGyroExpCtrl.enableGyroExpCtrl);
        EXPECT_EQ(0, rData.arbTuningData.extGyroExpCtrl.numOfKeyLevel1TriggerZone);
        EXPECT_EQ(FALSE, rData.arbTuningData.paramExtLLS.enable);
        EXPECT_EQ(FALSE, rData.arbTuningData.paramExtLLS.bLLSEnableADRC);
    }

    CoreLogCapture        m_logs;
    CTuningDataAdapter    m_adapter;
    CoreModuleTuningData* m_pData = nullptr;
    CTestTuningStore      m_store;

    CoreModuleTuningData                  m_data       = {};
    std::vector<TestExtension>            m_extensions;
    std::vector<ExtensionEntry>           m_entries;
    aecParamExtension::ParamExtensionType m_paramExt   = {};
};

// ---- Fake tuning ----

TEST_F(TuningDataAdapterTest, NoStoreOnTheFirstTuningRunsOnFakeDataAndLogsOnlyThen)
{
    EXPECT_EQ(FALSE, m_adapter.IsInternallyCreated());
    CoreModuleTuningData* pFirst = SetNoStore();
    ASSERT_NE(nullptr, pFirst);
    EXPECT_EQ(TRUE, m_adapter.IsInternallyCreated());
    EXPECT_EQ(1u, m_logs.Count("Tuning Pointer Null"));
    const TuningModulesPointers modules = m_adapter.GetTuningModules();

    EXPECT_EQ(pFirst, SetNoStore()) << "the views keep their address";
    EXPECT_EQ(1u, m_logs.Count("Tuning Pointer Null")) << "fake data is in use: no second message";
    EXPECT_EQ(modules.modMtr, m_adapter.GetTuningModules().modMtr) << "no second fake tuning";
    EXPECT_EQ(modules.modArb, m_adapter.GetTuningModules().modArb);
}

TEST_F(TuningDataAdapterTest, FakeDataViewsAreAllSetAndPointIntoTheFakeModules)
{
    const CoreModuleTuningData& rData = *SetNoStore();
    const TuningModulesPointers& rMods = m_adapter.GetTuningModules();
    const void* const modules[] = {rMods.modMtr,   rMods.modConv,         rMods.modArb,      rMods.modExt,
                                   rMods.modStartUp, rMods.modSnapshotCtrl, rMods.modSkip,   rMods.modFlash,
                                   rMods.modTouch, rMods.modFace,         rMods.modMultiCamSync, rMods.modDepth,
                                   rMods.modParamExt, rMods.modSensorHDRConfig, rMods.modShdr, rMods.modIr,
                                   rData.pStatsConfig};
    std::set<const void*> distinct;
    for (const void* pModule : modules)
    {
        ASSERT_NE(nullptr, pModule);
        distinct.insert(pModule);
    }
    EXPECT_EQ(17u, distinct.size());

    EXPECT_EQ(&rMods.modIr->IrLinear, rData.IRTuningData.pIrLinear);
    EXPECT_EQ(&rMods.modIr->IrShdr, rData.IRTuningData.pIrShdr);

    const MeteringTuningDataType& rMtr = rData.mtrTuningData;
    EXPECT_EQ(rMods.modMtr, rMtr.pCore);
    EXPECT_EQ(&rMods.modFlash->flashMtr, rMtr.pFlash);
    EXPECT_EQ(&rMods.modTouch->touchMtr, rMtr.pTouch);
    EXPECT_EQ(&rMods.modFace->faceMtr, rMtr.pFace);
    EXPECT_EQ(&rMods.modMultiCamSync->mtrMixConfig, rMtr.pMtrMixConfig);
    EXPECT_EQ(rMods.modDepth, rMtr.pDepth);
    EXPECT_EQ(rMods.modParamExt, rMtr.pAECParamExt);
    EXPECT_EQ(rMods.modSensorHDRConfig, rMtr.pSensorHDR);
    EXPECT_EQ(&rMods.modShdr->shdrMtr, rMtr.pShdr);
    EXPECT_EQ(&rMods.modIr->IrMtr, rMtr.pIr);

    const ConvergenceTuningDataType& rConv = rData.convTuningData;
    EXPECT_EQ(rMods.modConv, rConv.pCore);
    EXPECT_EQ(&rMods.modStartUp->StartUpConv, rConv.pStartUp);
    EXPECT_EQ(&rMods.modFlash->flashConv, rConv.pFlash);
    EXPECT_EQ(&rMods.modTouch->touchConv, rConv.pTouch);
    EXPECT_EQ(&rMods.modFace->faceConv, rConv.pFace);
    EXPECT_EQ(&rMods.modDepth->depthConv, rConv.pDepth);
    EXPECT_EQ(rMods.modSensorHDRConfig, rConv.pSensorHDR);
    const aecFlash::FlashMeteringType::FDFlashStruct& rFDFlash = rMods.modFlash->flashMtr.FDFlash;
    EXPECT_EQ(rFDFlash.enableFDFlash, rConv.enableFDFlash);
    EXPECT_EQ(rFDFlash.FDFlashFrameCount, rConv.FDFlashFrameCount);
    EXPECT_EQ(rFDFlash.dynamicFDDelay.enableFDDynamicDelay, rConv.dynamicFDDelay.enableFDDynamicDelay);
    EXPECT_FLOAT_EQ(rFDFlash.dynamicFDDelay.minLumaToSkipPreFD, rConv.dynamicFDDelay.minLumaToSkipPreFD);

    const ArbitrationTuningDataType& rArb = rData.arbTuningData;
    EXPECT_EQ(rMods.modArb, rArb.pCore);
    EXPECT_EQ(&rMods.modStartUp->StartUpArb, rArb.pStartUp);
    EXPECT_EQ(&rMods.modSnapshotCtrl->snapCtrlArb, rArb.pSnapshotCtrl);
    EXPECT_EQ(&rMods.modFlash->flashArb, rArb.pFlash);
    EXPECT_EQ(&rMods.modMultiCamSync->expSyncConfig, rArb.pExpSyncConfig);

    const ExtensionTuningDataType& rExt = rData.extTuningData;
    EXPECT_EQ(rMods.modExt, rExt.pCore);
    EXPECT_EQ(&rMods.modSnapshotCtrl->snapCtrlExt, rExt.pSnapshotCtrl);
    EXPECT_EQ(&rMods.modFlash->flashExt, rExt.pFlash);
    EXPECT_EQ(&rMods.modMultiCamSync->mtrAndExpMode, rExt.pMtrAndExpModeConfig);
    EXPECT_EQ(&rMods.modMultiCamSync->luxIndexSelection, rExt.pSlaveLuxIdxSelection);
    EXPECT_EQ(rMods.modSkip, rExt.pSkip);

    EXPECT_EQ(&rMods.modFace->statsROIProcess, rData.pStatsROIProcess);
}

TEST_F(TuningDataAdapterTest, FakeTuningHoldsTheBuiltInExposureTablesConvergenceStepAndLEDSettings)
{
    SetNoStore();
    const TuningModulesPointers& rMods = m_adapter.GetTuningModules();

    const aecArbitration::AECCoreArbitrationType& rArb = *rMods.modArb;
    ASSERT_EQ(2u, rArb.expTablesCount);
    EXPECT_EQ(200800u, rArb.minPreviewVertBlankTime);
    const FLOAT  gains[5]      = {1.0F, 4.0F, 6.0F, 8.0F, 60.0F};
    const UINT64 times[5]      = {10040, 13825301, 27640562, 41465863, 82931727};
    const INT32  priorities[5] = {1, 1, 1, 1, 0};
    const FLOAT  indices[5]    = {0.0F, 291.418213F, 328.572906F, 352.026794F, 443.642487F};
    const FLOAT  factors[2]    = {1.0F, 2.0F};
    for (UINT32 table = 0; table < 2; table++)
    {
        const aecArbitration::ExposureTableType& rTable = rArb.expTables[table];
        EXPECT_FLOAT_EQ(factors[table], rTable.sensitivityCorrectionFactor);
        EXPECT_FLOAT_EQ(0.95F, rTable.thresAntiBandingMinExpTimePct);
        ASSERT_EQ(5u, rTable.expKneeEntriesCount);
        for (UINT32 knee = 0; knee < 5; knee++)
        {
            const aecArbitration::ExposureKneeType& rKnee = rTable.expKneeEntries[knee];
            EXPECT_FLOAT_EQ(gains[knee], rKnee.gain);
            EXPECT_EQ(times[knee], rKnee.expTime);
            EXPECT_EQ(priorities[knee], static_cast<INT32>(rKnee.incrementPriority));
            EXPECT_FLOAT_EQ(indices[knee], rKnee.expIndex);
            EXPECT_FLOAT_EQ(0.0F, rKnee.fnumber);
        }
    }

    EXPECT_EQ(aecConvergence::AECConvFastConv, rMods.modConv->algoSelect);
    EXPECT_FLOAT_EQ(1.0F, rMods.modConv->unitStepSize);

    // The LED table holds exactly the exported built-in LED settings.
    const aecFlash::LEDMatchTableType& rLED = rMods.modFlash->flashExt.LEDTable;
    std::set<std::pair<INT32, INT32>> tuned;
    for (UINT32 i = 0; i < rLED.CCTTablesCount; i++)
    {
        tuned.insert({rLED.CCTTables[i].LED1Setting, rLED.CCTTables[i].LED2Setting});
    }
    std::set<std::pair<INT32, INT32>> builtIn;
    for (UINT32 i = 0; i < AECORE_FAKE_FLASH_CALIB_COUNT; i++)
    {
        builtIn.insert({s_fakeFlashCalib[i].LED1Setting, s_fakeFlashCalib[i].LED2Setting});
    }
    EXPECT_EQ(6u, builtIn.size());
    EXPECT_EQ(builtIn, tuned);
}

// The library writes into its tuning (the exposure table raises the knees' f-numbers in place): each adapter's fake
// tuning keeps its arrays in storages of its own, so those writes reach neither another camera nor a later one.
TEST_F(TuningDataAdapterTest, FakeTuningOfEveryAdapterIsItsOwn)
{
    SetNoStore();
    const TuningModulesPointers& rMine = m_adapter.GetTuningModules();
    aecArbitration::ExposureKneeType& rKnee = rMine.modArb->expTables[1].expKneeEntries[4];
    aecFlash::LEDMixType&             rLED  = rMine.modFlash->flashExt.LEDTable.CCTTables[0];
    const INT32                       led1  = rLED.LED1Setting;

    StatsTuningData       tuning = {};
    CoreModuleTuningData* pData  = nullptr;
    CTuningDataAdapter    other;
    other.SetSorenta(&tuning, &pData);
    rKnee.fnumber    = 2.0F;
    rLED.LED1Setting = led1 + 1;

    CTuningDataAdapter later;
    later.SetSorenta(&tuning, &pData);
    for (const CTuningDataAdapter* pAdapter : {&other, &later})
    {
        const TuningModulesPointers& rMods = pAdapter->GetTuningModules();
        EXPECT_NE(rMine.modArb->expTables, rMods.modArb->expTables);
        EXPECT_FLOAT_EQ(0.0F, rMods.modArb->expTables[1].expKneeEntries[4].fnumber);
        EXPECT_EQ(led1, rMods.modFlash->flashExt.LEDTable.CCTTables[0].LED1Setting);
    }
}

// The arrays of a fake module stand in the block of its record, which the adapter frees with the record.
TEST_F(TuningDataAdapterTest, FakeModuleArraysLieInTheirModulesStorage)
{
    SetNoStore();
    const TuningModulesPointers& rMods = m_adapter.GetTuningModules();
    const auto inStorage = [](const void* pModule, const char* pName, const void* pArray) {
        for (const AECDefaultTuningModule& rModule : g_aecDefaultTuningModules)
        {
            if (std::string(rModule.pName) == pName)
            {
                const char* const pStart = static_cast<const char*>(pModule);
                const char* const pAt    = static_cast<const char*>(pArray);
                return (pAt >= pStart + rModule.size) && (pAt < pStart + rModule.storageSize);
            }
        }
        return false;
    };
    EXPECT_TRUE(inStorage(rMods.modArb, "AECCoreArbitrationType", rMods.modArb->expTables));
    EXPECT_TRUE(inStorage(rMods.modArb, "AECCoreArbitrationType", rMods.modArb->expTables[1].expKneeEntries));
    EXPECT_TRUE(inStorage(rMods.modFlash, "AECFlashType", rMods.modFlash->flashExt.LEDTable.CCTTables));
    EXPECT_TRUE(inStorage(rMods.modFace, "AECFaceType",
                          rMods.modFace->faceMtr.faceLumaWeightLuxIndexTrigger.LuxFaceLumaWeight));
}

TEST_F(TuningDataAdapterTest, DefaultExposureTablesPassTheKneeCheckSilently)
{
    SetNoStore();
    EXPECT_EQ(0u, m_logs.CountContaining("Mismatch"));
    EXPECT_EQ(0u, m_logs.CountContaining("has no exposure"));
}

// A store's modules replace the fake ones; only the fake ones are freed (an address sanitizer run checks both).
TEST_F(TuningDataAdapterTest, StoreAfterFakeTuningTakesOverAndKeepsItsModules)
{
    SetNoStore();
    aecMetering::AECCoreMeteringType metering = {};
    m_store.modules.modMtr                    = &metering;
    CoreModuleTuningData* pData               = SetStore();
    EXPECT_EQ(&metering, pData->mtrTuningData.pCore);
    EXPECT_EQ(nullptr, pData->arbTuningData.pCore) << "the store holds no arbitration tuning";
    EXPECT_EQ(TRUE, m_adapter.IsInternallyCreated());
}

TEST_F(TuningDataAdapterTest, FakeTuningIsFreedWithTheAdapter)
{
    CTuningDataAdapter*   pAdapter = new CTuningDataAdapter();
    StatsTuningData       tuning   = {};
    CoreModuleTuningData* pData    = nullptr;
    pAdapter->SetSorenta(&tuning, &pData);
    ASSERT_NE(nullptr, pData);
    EXPECT_NE(nullptr, pData->pStatsConfig);
    delete pAdapter;
}

// ---- The store's modules ----

TEST_F(TuningDataAdapterTest, StoreModulesAreFetchedWithTheSelectorsAndViewed)
{
    aecFlash::AECFlashType         flash       = {};
    aecSync::AECMultiCamType       multiCam    = {};
    aecStatsConfig::AECStatsConfig statsConfig = {};
    flash.flashMtr.FDFlash.enableFDFlash       = TRUE;
    flash.flashMtr.FDFlash.FDFlashFrameCount   = 7;
    m_store.modules.modFlash                   = &flash;
    m_store.modules.modMultiCamSync            = &multiCam;
    m_store.pStatsConfig                       = &statsConfig;

    const CoreModuleTuningData& rData = *SetStore();
    EXPECT_EQ(17u, m_store.fetches);
    EXPECT_EQ(0u, m_store.foreignFetches);
    EXPECT_EQ(0u, m_logs.Count("Tuning Pointer Null"));
    EXPECT_EQ(FALSE, m_adapter.IsInternallyCreated());

    EXPECT_EQ(&flash.flashMtr, rData.mtrTuningData.pFlash);
    EXPECT_EQ(&flash.flashArb, rData.arbTuningData.pFlash);
    EXPECT_EQ(TRUE, rData.convTuningData.enableFDFlash);
    EXPECT_EQ(7, rData.convTuningData.FDFlashFrameCount);
    EXPECT_EQ(&multiCam.mtrAndExpMode, rData.extTuningData.pMtrAndExpModeConfig);
    EXPECT_EQ(&statsConfig, rData.pStatsConfig);
    // Modules the store does not hold leave their views null.
    EXPECT_EQ(nullptr, rData.mtrTuningData.pCore);
    EXPECT_EQ(nullptr, rData.mtrTuningData.pFace);
    EXPECT_EQ(nullptr, rData.IRTuningData.pIrLinear);
    EXPECT_EQ(nullptr, rData.convTuningData.pDepth);
    EXPECT_EQ(nullptr, rData.extTuningData.pSnapshotCtrl);
    EXPECT_EQ(nullptr, rData.pStatsROIProcess);
    ExpectExtensionDefaults(rData);
}

TEST_F(TuningDataAdapterTest, StoreWithoutSelectorsFetchesNothing)
{
    StatsTuningData tuning = m_store.TuningData();
    tuning.pTuningModeSelectors = nullptr;
    m_adapter.SetSorenta(&tuning, &m_pData);
    ASSERT_NE(nullptr, m_pData);
    EXPECT_EQ(0u, m_store.fetches + m_store.foreignFetches);
    EXPECT_EQ(nullptr, m_pData->mtrTuningData.pCore);
}

TEST_F(TuningDataAdapterTest, MissingTuningOrDestinationIsRefused)
{
    m_adapter.SetSorenta(nullptr, &m_pData);
    EXPECT_EQ(nullptr, m_pData);
    const StatsTuningData tuning = m_store.TuningData();
    m_adapter.SetSorenta(&tuning, nullptr);
    EXPECT_EQ(0u, m_store.fetches);
    EXPECT_EQ(2u, m_logs.CountContaining("Tuning refused:"));
}

TEST_F(TuningDataAdapterTest, KneeIndexMismatchIsWarnedAndTheTableKept)
{
    AECCoreArbitrationTypeDefaultStorage storage;
    FillDefaultAECCoreArbitrationTypeStorage(&storage);
    aecArbitration::AECCoreArbitrationType& arbitration = storage.module;
    aecArbitration::ExposureKneeType knees[5] = {};
    for (UINT32 knee = 0; knee < 5; knee++)
    {
        knees[knee] = arbitration.expTables[1].expKneeEntries[knee];
    }
    knees[1].expIndex                       = 300.0F;
    aecArbitration::ExposureTableType tables[2] = {arbitration.expTables[0], arbitration.expTables[1]};
    tables[1].expKneeEntries                = knees;
    arbitration.expTables                   = tables;
    m_store.modules.modArb                  = &arbitration;

    const CoreModuleTuningData& rData = *SetStore();
    EXPECT_EQ(1u, m_logs.Count("Warning: knee(1) Exp index(300.000000)->(291.418457) Mismatch (table1)! "));
    // Knee 2 follows from the tuned index of knee 1, which is off as well.
    EXPECT_EQ(1u, m_logs.CountContaining("Warning: knee(2) Exp index(328.572906)->(337.154"));
    EXPECT_EQ(2u, m_logs.CountContaining("Mismatch"));
    EXPECT_EQ(&arbitration, rData.arbTuningData.pCore);
}

// ---- Parameter extensions ----

TEST_F(TuningDataAdapterTest, PredictiveExtensionIsLoaded)
{
    Parse({{"Predictive", {1.0F, 0.25F}, 0, TRUE}});
    const ParamExtPredictive& rExt = m_data.convTuningData.extPredictive;
    EXPECT_EQ(TRUE, rExt.enable);
    EXPECT_EQ(1, rExt.enableCombineDarkBright);
    EXPECT_FLOAT_EQ(0.25F, rExt.ADRCWeight);
    EXPECT_EQ(1u, m_logs.Count("found predictive parameter extension 1 1 0.250000"));
}

TEST_F(TuningDataAdapterTest, DepthAECExtensionIsLoadedInItsOrder)
{
    Parse({{"Depth AEC", {2.5F, 0.75F, 3.9F, 5.2F, 0.5F, 1.0F}, 1, TRUE}});
    const ParamExtDepthAEC& rExt = m_data.mtrTuningData.extDepthAEC;
    EXPECT_EQ(TRUE, rExt.enable);
    EXPECT_FLOAT_EQ(2.5F, rExt.LumaDiffThres);
    EXPECT_FLOAT_EQ(0.75F, rExt.DecisionMapValidGridCntThres);
    EXPECT_EQ(3, rExt.ConsecInvalidFrameCntThres) << "truncated";
    EXPECT_EQ(5, rExt.InitValidFrameCntThres) << "truncated";
    EXPECT_FLOAT_EQ(0.5F, rExt.SelectMapValidGridCntThres);
    EXPECT_EQ(1, rExt.DisplayDebugMsg);
    EXPECT_EQ(1u, m_logs.Count("found depth AEC parameter extension 1 2.500000 0.750000 3 5 0.500000 1"));
}

TEST_F(TuningDataAdapterTest, ADRCSaturationExtensionIsLoaded)
{
    Parse({{"ADRCSat", {1.0F}, 2, TRUE}});
    EXPECT_EQ(TRUE, m_data.mtrTuningData.ADRCSaturation.enableADRCSatCtrl);
    EXPECT_EQ(1, m_data.mtrTuningData.ADRCSaturation.enablePredictiveSatCtrl);
    EXPECT_EQ(1u, m_logs.Count("found ADRC saturation parameter extension 1 1"));
}

TEST_F(TuningDataAdapterTest, GyroExtensionLoadsZonesAndPackedTriggerData)
{
    Parse({{"GyroAEC", GyroData(2.0F, 3.0F), 3, TRUE}});
    const ParamExtGyroExpCtrl& rExt = m_data.arbTuningData.extGyroExpCtrl;
    EXPECT_EQ(TRUE, rExt.enableGyroExpCtrl);
    EXPECT_EQ(4, rExt.movingAvgFilterLength);
    EXPECT_EQ(GyroExpCtrlKeyLuxIndexType, rExt.keyLevel2ZoneType);
    EXPECT_EQ(GyroExpCtrlTriggerDataAdjRatioType, rExt.triggerDataType);
    EXPECT_EQ(2, rExt.numOfKeyLevel1TriggerZone);
    EXPECT_EQ(3, rExt.numOfKeyLevel2TriggerZone);
    for (UINT32 zone = 0; zone < 8; zone++)
    {
        EXPECT_FLOAT_EQ(static_cast<FLOAT>(zone), rExt.keyLevel1TriggerZone[zone].start);
        EXPECT_FLOAT_EQ(static_cast<FLOAT>(zone) + 0.5F, rExt.keyLevel1TriggerZone[zone].end);
        EXPECT_FLOAT_EQ(static_cast<FLOAT>(zone + 8), rExt.keyLevel2TriggerZone[zone].start);
        EXPECT_FLOAT_EQ(static_cast<FLOAT>(zone + 8) + 0.5F, rExt.keyLevel2TriggerZone[zone].end);
    }
    // Two rows of three values, packed.
    EXPECT_FLOAT_EQ(100.0F, rExt.triggerData[0][0]);
    EXPECT_FLOAT_EQ(102.0F, rExt.triggerData[0][2]);
    EXPECT_FLOAT_EQ(103.0F, rExt.triggerData[1][0]);
    EXPECT_FLOAT_EQ(105.0F, rExt.triggerData[1][2]);
    EXPECT_FLOAT_EQ(0.0F, rExt.triggerData[0][3]);
    EXPECT_FLOAT_EQ(0.0F, rExt.triggerData[2][0]);
    EXPECT_EQ(1u, m_logs.Count("Gyro AEC extensions parameters are loaded"));
}

TEST_F(TuningDataAdapterTest, GyroExtensionWithZoneCountsOutOfRangeLeavesTriggerDataUnloaded)
{
    for (const std::pair<FLOAT, FLOAT>& counts :
         {std::make_pair(0.0F, 3.0F), std::make_pair(9.0F, 3.0F), std::make_pair(2.0F, 0.0F), std::make_pair(2.0F, 9.0F)})
    {
        Parse({{"GyroAEC", GyroData(counts.first, counts.second), 3, TRUE}});
        const ParamExtGyroExpCtrl& rExt = m_data.arbTuningData.extGyroExpCtrl;
        EXPECT_FLOAT_EQ(0.0F, rExt.triggerData[0][0]);
        EXPECT_EQ(static_cast<INT>(counts.first), rExt.numOfKeyLevel1TriggerZone);
        EXPECT_EQ(static_cast<INT>(counts.second), rExt.numOfKeyLevel2TriggerZone);
        const std::string message = "Not valid numOfKeyLevel1TriggerZone " +
                                    std::to_string(static_cast<INT>(counts.first)) +
                                    " or numOfKeyLevel2TriggerZone " + std::to_string(static_cast<INT>(counts.second));
        EXPECT_EQ(1u, m_logs.Count(message));
    }
}

TEST_F(TuningDataAdapterTest, HistogramExtensionIsLoaded)
{
    Parse({{"HistExt", {2.0F, 12.0F, 4.0F, 1.0F}, 4, TRUE}});
    const ParamExtHistogramCtrl& rExt = m_data.mtrTuningData.extHistogram;
    EXPECT_EQ(TRUE, rExt.enableHist);
    EXPECT_FLOAT_EQ(2.0F, rExt.maxDarkBoostGain);
    EXPECT_FLOAT_EQ(12.0F, rExt.maxDRCGain);
    EXPECT_FLOAT_EQ(4.0F, rExt.maxADRCGainFace);
    EXPECT_EQ(1, rExt.useLegacyTargets);
    EXPECT_EQ(1u, m_logs.Count("Histogram parameter extension: enable 1 maxDarkBoostGain 2.000000 maxADRCGainFace "
                               "4.000000 maxDRCGain 12.000000 useLegacyTargets 1"));
}

TEST_F(TuningDataAdapterTest, InsensorHDRExtensionIsLoaded)
{
    Parse({{"InsensorHDRExt", {2.0F, 4.0F}, 5, TRUE}});
    const ParamExtInsensorHDRCtrl& rExt = m_data.mtrTuningData.extInsensorHDR;
    EXPECT_EQ(TRUE, rExt.enableInsensorHDR);
    EXPECT_FLOAT_EQ(2.0F, rExt.compenADRCGain);
    EXPECT_FLOAT_EQ(4.0F, rExt.DRCGainThresh);
    EXPECT_EQ(1u, m_logs.Count("Insensor HDR snapshot parameter extension: enable 1 Exp Time factor 2.000000"));
}

TEST_F(TuningDataAdapterTest, LLSExtensionIsRecognisedByNameWhateverItsID)
{
    Parse({{"LLS", {1.0F, 0.0F}, 42, TRUE}});
    const ParamExtLLS& rExt = m_data.arbTuningData.paramExtLLS;
    EXPECT_EQ(TRUE, rExt.enable);
    EXPECT_EQ(TRUE, rExt.bLLSEnableADRC);
    EXPECT_EQ(FALSE, rExt.bEnableLLSMaxSI);
    EXPECT_EQ(1u, m_logs.Count("LLS parameter extension: enable 1 bLLSEnableADRC 1 bEnableLLSMaxSI 0"));
}

TEST_F(TuningDataAdapterTest, KnownNameWithAWrongCountKeepsTheDefaults)
{
    Parse({{"Predictive", {1.0F}, 0, TRUE},
           {"Depth AEC", {1.0F}, 1, TRUE},
           {"ADRCSat", {1.0F, 1.0F}, 2, TRUE},
           {"GyroAEC", {1.0F}, 3, TRUE},
           {"HistExt", {9.0F}, 4, TRUE},
           {"InsensorHDRExt", {9.0F}, 5, TRUE},
           {"LLS", {1.0F}, 6, TRUE}});
    ExpectExtensionDefaults(m_data);
    EXPECT_EQ(1u, m_logs.Count("not loading predictive extension: index 0 ID 0 name is Predictive data count 1"));
    EXPECT_EQ(1u, m_logs.Count("not loading depth AEC extension: index 1 ID 1 name is Depth AEC data count 1"));
    EXPECT_EQ(1u,
              m_logs.Count("not loading ADRC Saturation AEC extension: index 2 ID 2 name is ADRCSat data count 2"));
    EXPECT_EQ(1u, m_logs.Count(" not loading Gyro AEC extension: index 3 ID 3 name is GyroAEC data count 1"));
    EXPECT_EQ(1u, m_logs.Count("not valid Histogram extension: index 4 ID 4 name is HistExt data count 1"));
    EXPECT_EQ(1u, m_logs.Count(
                      "not valid Insensor HDR snapshot extension: index 5 ID 5 name is InsensorHDRExt data count 1"));
    EXPECT_EQ(1u, m_logs.Count("not valid LLS extension: index 6 ID 6 name is LLS data count 1"));
}

TEST_F(TuningDataAdapterTest, TwoExtensionsOfOneNameLetTheLaterWin)
{
    Parse({{"HistExt", {2.0F, 12.0F, 4.0F, 0.0F}, 4, TRUE}, {"HistExt", {3.0F, 10.0F, 5.0F, 1.0F}, 4, FALSE}});
    const ParamExtHistogramCtrl& rExt = m_data.mtrTuningData.extHistogram;
    EXPECT_EQ(FALSE, rExt.enableHist);
    EXPECT_FLOAT_EQ(3.0F, rExt.maxDarkBoostGain);
    EXPECT_FLOAT_EQ(10.0F, rExt.maxDRCGain);
    EXPECT_FLOAT_EQ(5.0F, rExt.maxADRCGainFace);
    EXPECT_EQ(1, rExt.useLegacyTargets);
}

TEST_F(TuningDataAdapterTest, NameWithAnotherIDOrAnUnknownNameIsIgnored)
{
    Parse({{"HistExt", {2.0F, 12.0F, 4.0F, 0.0F}, 5, TRUE}, {"Unknown", {1.0F}, 4, TRUE}});
    ExpectExtensionDefaults(m_data);
    EXPECT_EQ(0u, m_logs.CountContaining("Histogram"));
}

TEST_F(TuningDataAdapterTest, EveryTuningStartsFromTheExtensionDefaults)
{
    Parse({{"HistExt", {2.0F, 12.0F, 4.0F, 1.0F}, 4, TRUE},
           {"InsensorHDRExt", {2.0F, 4.0F}, 5, TRUE},
           {"Predictive", {1.0F, 0.25F}, 0, TRUE},
           {"ADRCSat", {1.0F}, 2, TRUE},
           {"Depth AEC", {2.5F, 0.75F, 3.0F, 5.0F, 0.5F, 1.0F}, 1, TRUE},
           {"GyroAEC", GyroData(2.0F, 3.0F), 3, TRUE},
           {"LLS", {1.0F, 1.0F}, 6, TRUE}});
    EXPECT_EQ(TRUE, m_data.mtrTuningData.extHistogram.enableHist);
    CTuningDataAdapter::ParseParamExtension(nullptr, &m_data);
    ExpectExtensionDefaults(m_data);
    EXPECT_FLOAT_EQ(0.0F, m_data.arbTuningData.extGyroExpCtrl.triggerData[0][0]);
    EXPECT_FLOAT_EQ(0.0F, m_data.mtrTuningData.extDepthAEC.LumaDiffThres);
}

TEST_F(TuningDataAdapterTest, EntriesWithoutNameOrDataAreSkipped)
{
    Parse({{"HistExt", {2.0F, 12.0F, 4.0F, 1.0F}, 4, TRUE}});
    m_entries[0].data = nullptr;
    CTuningDataAdapter::ParseParamExtension(&m_paramExt, &m_data);
    m_entries[0].Name = nullptr;
    CTuningDataAdapter::ParseParamExtension(&m_paramExt, &m_data);
    ExpectExtensionDefaults(m_data);
    EXPECT_EQ(2u, m_logs.CountContaining("Parameter extension 0 (ID 4) skipped"));

    m_paramExt.extensionParam = nullptr;
    CTuningDataAdapter::ParseParamExtension(&m_paramExt, &m_data);
    EXPECT_EQ(1u, m_logs.Count("Parameter extension list of 1 entries has no entries: none loaded"));
}

TEST_F(TuningDataAdapterTest, FakeTuningParsesItsOwnParameterExtensions)
{
    const CoreModuleTuningData& rData = *SetNoStore();
    EXPECT_EQ(TRUE, rData.convTuningData.extPredictive.enable);
    EXPECT_FLOAT_EQ(0.5F, rData.convTuningData.extPredictive.ADRCWeight);
    EXPECT_EQ(1u, m_logs.Count("found predictive parameter extension 1 0 0.500000"));
}

} // namespace
