// Test support for tuning: a tuning store that hands out the modules a test points it to.
#ifndef TESTS_UNIT_CORE_CORETUNINGSUPPORT_H
#define TESTS_UNIT_CORE_CORETUNINGSUPPORT_H

#include "aec/core/base/ctuningdataadapter.h"

// Hands out the modules of `modules` and `pStatsConfig` for any mode (null: the store holds none) and counts the
// fetches, in place of the real accessors of an (empty) main store. The records stay owned by the test; they are not
// store modules, so nothing may release them through the store.
class CTestTuningStore : public TuningSetManager
{
public:
    CTestTuningStore()
        : TuningSetManager("CTestTuningStore")
    {
    }

    // The tuning the host sends with this store: seven selectors of mode 0.
    StatsTuningData TuningData() { return StatsTuningData{this, m_selectors, SelectorCount}; }

    aecMetering::AECCoreMeteringType* GetModule_Metering(const TuningMode* pSelectors, UINT32 numSelectors,
                                                         aecMetering::AECCoreMeteringType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modMtr);
    }
    aecConvergence::AECCoreConvergenceType* GetModule_Convergence(const TuningMode* pSelectors, UINT32 numSelectors,
                                                                  aecConvergence::AECCoreConvergenceType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modConv);
    }
    aecArbitration::AECCoreArbitrationType* GetModule_Arbitration(const TuningMode* pSelectors, UINT32 numSelectors,
                                                                  aecArbitration::AECCoreArbitrationType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modArb);
    }
    aecExtension::AECCoreExtensionType* GetModule_Extension(const TuningMode* pSelectors, UINT32 numSelectors,
                                                            aecExtension::AECCoreExtensionType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modExt);
    }
    aecStartUp::AECStartUpType* GetModule_StartUp(const TuningMode* pSelectors, UINT32 numSelectors,
                                                  aecStartUp::AECStartUpType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modStartUp);
    }
    aecSnapshotCtrl::AECSnapshotCtrlType* GetModule_SnapshotControl(const TuningMode* pSelectors, UINT32 numSelectors,
                                                                    aecSnapshotCtrl::AECSnapshotCtrlType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modSnapshotCtrl);
    }
    aecSkip::AECSkipCtrlType* GetModule_aecSkipCtrl(const TuningMode* pSelectors, UINT32 numSelectors,
                                                    aecSkip::AECSkipCtrlType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modSkip);
    }
    aecFlash::AECFlashType* GetModule_Flash(const TuningMode* pSelectors, UINT32 numSelectors,
                                            aecFlash::AECFlashType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modFlash);
    }
    aecTouch::AECTouchType* GetModule_Touch(const TuningMode* pSelectors, UINT32 numSelectors,
                                            aecTouch::AECTouchType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modTouch);
    }
    aecFace::AECFaceType* GetModule_Face(const TuningMode* pSelectors, UINT32 numSelectors,
                                         aecFace::AECFaceType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modFace);
    }
    aecSync::AECMultiCamType* GetModule_aecMultiCamSync(const TuningMode* pSelectors, UINT32 numSelectors,
                                                        aecSync::AECMultiCamType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modMultiCamSync);
    }
    aecDepth::AECDepthType* GetModule_aecDepth(const TuningMode* pSelectors, UINT32 numSelectors,
                                               aecDepth::AECDepthType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modDepth);
    }
    aecParamExtension::ParamExtensionType* GetModule_AECParamExtension(const TuningMode* pSelectors,
                                                                       UINT32 numSelectors,
                                                                       aecParamExtension::ParamExtensionType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modParamExt);
    }
    aecSensorConfig::AECSensorHDRConfig* GetModule_SensorHDRDefaultConfig(const TuningMode* pSelectors,
                                                                          UINT32 numSelectors,
                                                                          aecSensorConfig::AECSensorHDRConfig*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modSensorHDRConfig);
    }
    aecShdr::AECShdrType* GetModule_aecShdr(const TuningMode* pSelectors, UINT32 numSelectors,
                                            aecShdr::AECShdrType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modShdr);
    }
    aecIr::AECIRType* GetModule_aecIr(const TuningMode* pSelectors, UINT32 numSelectors, aecIr::AECIRType*) override
    {
        return Fetched(pSelectors, numSelectors, modules.modIr);
    }
    aecStatsConfig::AECStatsConfig* GetModule_StatsDefaultConfig(const TuningMode* pSelectors, UINT32 numSelectors,
                                                                 aecStatsConfig::AECStatsConfig*) override
    {
        return Fetched(pSelectors, numSelectors, pStatsConfig);
    }

    TuningModulesPointers           modules      = {};
    aecStatsConfig::AECStatsConfig* pStatsConfig = nullptr;
    // Modules fetched with this store's own selectors, and with any other.
    UINT32 fetches       = 0;
    UINT32 foreignFetches = 0;

private:
    static constexpr UINT SelectorCount = 7;

    template <typename ModuleType>
    ModuleType* Fetched(const TuningMode* pSelectors, UINT32 numSelectors, ModuleType* pModule)
    {
        const bool own = (m_selectors == pSelectors) && (SelectorCount == numSelectors);
        (own ? fetches : foreignFetches)++;
        return pModule;
    }

    TuningMode m_selectors[SelectorCount] = {};
};

#endif // TESTS_UNIT_CORE_CORETUNINGSUPPORT_H
