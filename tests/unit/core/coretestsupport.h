// Test support for the core: module mocks, a module factory of mocks and the core's test peer.
#ifndef TESTS_UNIT_CORE_CORETESTSUPPORT_H
#define TESTS_UNIT_CORE_CORETESTSUPPORT_H

#include <gmock/gmock.h>

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "aec/core/base/aecmodulecreator.h"
#include "aec/core/base/aecobjectalloc.h"
#include "aec/core/base/caeccore.h"
#include "aec/core/base/caeccoredatamanager.h"
#include "support/corelogcapture.h"
#include "unit/core/coretuningsupport.h"
#include "platform/statslogger.h"


// ---- Module mocks ----

class MockMetering : public IAECMetering
{
public:
    MOCK_METHOD(AecResult, OnOperationModeChange, (), (override));
    MOCK_METHOD(AecResult, ProcessFrameStats, (const AECMeteringFrameProcInput*, AECMeteringFrameProcOutput*),
                (override));
    MOCK_METHOD(AecResult, GetSnapshotEstimation, (const AECMeteringSnapshotInput*, AECMeteringSnapshotOutput*),
                (override));
    MOCK_METHOD(AecResult, HandleFlashEstimationStages, (AECMeteringFlashEstStage, FLOAT), (override));
    MOCK_METHOD(VOID, EstimateLuxIndexForSlave, (AECMeteringFrameProcOutput*), (override));
    MOCK_METHOD(VOID, GetYStats, (FLOAT*, UINT32, UINT32&), (override));
    MOCK_METHOD(AecResult, ProcessFrameStatsForIR, (AECIRFrameProcInput*), (override));
};

class MockConvergence : public IAECConvergence
{
public:
    MOCK_METHOD(AecResult, OnOperationModeChange, (), (override));
    MOCK_METHOD(AecResult, ConvergeFrameExposure, (const ConvergenceInput*, ConvergenceOutput*), (override));
    MOCK_METHOD(AecResult, GetStartExposureIndices, (FLOAT*, FLOAT*, BOOL), (override));
};

class MockArbitration : public IAECArbitration
{
public:
    MOCK_METHOD(AecResult, OnOperationModeChange, (), (override));
    MOCK_METHOD(AecResult, ArbitrateExposure, (ArbitrationStreamInput*, ArbitrationOutput*), (override));
    MOCK_METHOD(AecResult, ArbitrateExposure, (ArbitrationStillInput*, ArbitrationOutput*), (override));
    MOCK_METHOD(AecResult, OnLDMIrisTable, (LDMIrisTableData), (override));
    MOCK_METHOD(FLOAT, QueryISO2Gain, (UINT32, BOOL), (override));
    MOCK_METHOD(FLOAT, QueryExpTime2FPS, (UINT64), (override));
    MOCK_METHOD(AecResult, QuerySensitivity2ExpIndex, (const FLOAT*, AECAlgoOperationModeType, FLOAT*), (override));
    MOCK_METHOD(AecResult, ComputeTargetIndexInMultiCam, (FLOAT, FLOAT*), (override));
};

class MockIrisCtrl : public IAECIrisCtrl
{
public:
    MOCK_METHOD(AecResult, OnOperationModeChange, (), (override));
    MOCK_METHOD(AecResult, ProcessIris, (const AECIrisFrameProcInput*, AECIrisFrameProcOutput*), (override));
    MOCK_METHOD(BOOL, QueryPIrisSettleInfo, (), (override));
    MOCK_METHOD(AecResult, OnLDMIrisTable, (LDMIrisTableData), (override));
};

class MockExtension : public IAECExtension
{
public:
    MOCK_METHOD(AecResult, OnOperationModeChange, (), (override));
    MOCK_METHOD(AecResult, ExtensionProcess, (ExtensionInput*, ExtensionOutput*), (override));
    MOCK_METHOD(FLOAT, GetFlashCurrentEstimate, (ExtFlashCurrentType, AECFrameControl*, BOOL), (override));
    MOCK_METHOD(AecResult, SetFlashCalibrationData, (const AECAlgoFlashCalibrationData*), (override));
    MOCK_METHOD(AecResult, GetFlashMeasurementConfig, (AECAlgoFlashMeasurementConfig*), (override));
    MOCK_METHOD(AecResult, GetFlashMeasurementStatus, (AECAlgoFlashMeasurementResult*), (override));
    MOCK_METHOD(AecResult, GetHistStretchData, (AECYHistStretchData*), (override));
};

class MockDiagnostic : public IAECDiagnostic
{
public:
    MOCK_METHOD(AecResult, OnOperationModeChange, (), (override));
    MOCK_METHOD(AECAlgoExposureData, ProcessTests, (DiagInput*), (override));
    MOCK_METHOD(DiagOutput, GetDiagStatus, (), (override));
};

class MockSkipCtrl : public IAECSkipCtrl
{
public:
    MOCK_METHOD(AecResult, OnOperationModeChange, (), (override));
    MOCK_METHOD(VOID, ResetFrameSkip, (), (override));
    MOCK_METHOD(VOID, ConfigFrameSkip, (ConvergenceOutput, const AECCoreInput*), (override));
    MOCK_METHOD(BOOL, CheckSkipFrame, (const AECCoreInput*), (override));
};

// Builds a core on nice mocks, in the allocator's memory as the core expects of its modules, and records the
// order of creation. The core owns and destroys the mocks; the pointers here stay valid while it lives.
class MockModuleFactory final : public IAECModuleFactory
{
public:
    template <typename T>
    using Nice = ::testing::NiceMock<T>;

    IAECMetering* CreateMetering(IAECContext* pContext, IMeteringCallback* pCallback) override
    {
        Record("metering", pContext, pCallback);
        return pMetering = AECCreateObject<Nice<MockMetering>>();
    }
    IAECConvergence* CreateConvergence(IAECContext* pContext, IConvergenceCallback* pCallback) override
    {
        Record("convergence", pContext, pCallback);
        return pConvergence = AECCreateObject<Nice<MockConvergence>>();
    }
    IAECArbitration* CreateArbitration(IAECContext* pContext, IArbitrationCallback* pCallback) override
    {
        Record("arbitration", pContext, pCallback);
        return pArbitration = AECCreateObject<Nice<MockArbitration>>();
    }
    IAECIrisCtrl* CreateIrisControl(IAECContext* pContext, IIrisCtrlCallback* pCallback) override
    {
        Record("iris", pContext, pCallback);
        return pIrisCtrl = AECCreateObject<Nice<MockIrisCtrl>>();
    }
    IAECExtension* CreateExtension(IAECContext* pContext, IExtensionCallback* pCallback) override
    {
        Record("extension", pContext, pCallback);
        return pExtension = AECCreateObject<Nice<MockExtension>>();
    }
    IAECDiagnostic* CreateDiagnostic(IAECContext* pContext) override
    {
        Record("diagnostic", pContext, pContext);
        return pDiagnostic = AECCreateObject<Nice<MockDiagnostic>>();
    }
    IAECSkipCtrl* CreateSkipCtrl(IAECContext* pContext) override
    {
        Record("skip", pContext, pContext);
        return pSkipCtrl = AECCreateObject<Nice<MockSkipCtrl>>();
    }

    Nice<MockMetering>*    pMetering    = nullptr;
    Nice<MockConvergence>* pConvergence = nullptr;
    Nice<MockArbitration>* pArbitration = nullptr;
    Nice<MockIrisCtrl>*    pIrisCtrl    = nullptr;
    Nice<MockExtension>*   pExtension   = nullptr;
    Nice<MockDiagnostic>*  pDiagnostic  = nullptr;
    Nice<MockSkipCtrl>*    pSkipCtrl    = nullptr;

    std::vector<std::string> creationOrder;
    // Each module must be built on the one state store, both as context and as its callback.
    BOOL allOnOneStore = TRUE;

private:
    // The context and the callback must both be the one state store of the core.
    template <typename C>
    void Record(const char* pName, IAECContext* pContext, C* pCallback)
    {
        creationOrder.emplace_back(pName);
        const void* pStore         = dynamic_cast<const void*>(pContext);
        const void* pCallbackStore = dynamic_cast<const void*>(pCallback);
        const bool  isStore        = (nullptr != dynamic_cast<CAECCoreDataManager*>(pContext));
        if ((false == isStore) || (pStore != pCallbackStore) || ((nullptr != m_pStore) && (pStore != m_pStore)))
        {
            allOnOneStore = FALSE;
        }
        m_pStore = pStore;
    }

    const void* m_pStore = nullptr;
};

// ---- Test peer of the core and its state store ----

// Builds cores on other module sets and reaches the per-frame records and the state that no set parameter
// reaches in this configuration.
class CAECCoreTestPeer
{
public:
    static std::unique_ptr<CAECCore> Create(IAECModuleFactory& rFactory)
    {
        return std::unique_ptr<CAECCore>(new CAECCore(rFactory));
    }

    static CAECCoreDataManager&        DataManager(CAECCore& rCore) { return *rCore.m_pDataManager; }
    static IAECIR*                     IR(CAECCore& rCore) { return rCore.m_pIR; }
    static AECMeteringFrameProcInput&  MtrIn(CAECCore& rCore) { return rCore.m_mtrIn; }
    static AECMeteringFrameProcOutput& MtrOut(CAECCore& rCore) { return rCore.m_mtrOut; }
    static ConvergenceOutput&          ConvOut(CAECCore& rCore) { return rCore.m_convOut; }
    static ArbitrationOutput&          ArbOut(CAECCore& rCore) { return rCore.m_arbOut; }
    static AECIrisFrameProcInput&      IrisIn(CAECCore& rCore) { return rCore.m_irisIn; }
    static AECConvergenceKPIType&      KPI(CAECCore& rCore) { return rCore.m_AECConvKPI; }
    static LDMLensCap&                 LensCap(CAECCore& rCore) { return rCore.m_LDMlensCap; }
    static FLOAT                       SimDigitalGain(CAECCore& rCore) { return rCore.m_simDigitalGain; }
    static UINT32                      CameraID(CAECCore& rCore) { return rCore.m_cameraID; }
    static UINT32                      AlgoRole(CAECCore& rCore) { return rCore.m_algoRole; }

    static void SetMultiCamTypes(CAECCoreDataManager&        rStore,
                                 AECAlgoMultiCamMeteringType meteringType,
                                 AECAlgoMultiCamExposureType exposureType)
    {
        rStore.m_meteringType = meteringType;
        rStore.m_exposureType = exposureType;
    }

    static void SetDCCalibration(CAECCoreDataManager& rStore, const AECDualcamCalibrationInfo& rInfo)
    {
        rStore.m_dualcamCalibrationInfo = rInfo;
    }

    static size_t HistorySize(CAECCoreDataManager& rStore) { return rStore.m_curModeInfo.frameHistories.size(); }

    // Puts the store's modules in force as the tuning change does first, without the change's other steps.
    static void UseTuning(CAECCoreDataManager& rStore, CTestTuningStore& rTuningStore)
    {
        const StatsTuningData tuning = rTuningStore.TuningData();
        rStore.m_tuningManager.SetSorenta(&tuning, &rStore.m_pCoreTuningData);
    }
};

#endif // TESTS_UNIT_CORE_CORETESTSUPPORT_H
