// Fixture of the convergence module tests: default tuning, a mocked state store and a recording callback.
#ifndef TESTS_UNIT_CONV_CONVMODULETESTSUPPORT_H
#define TESTS_UNIT_CONV_CONVMODULETESTSUPPORT_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "aec/core/base/ctuningdataadapter.h"
#include "aec/core/include/coremoduletuningdata.h"
#include "support/corelogcapture.h"
#include "aec/core/modules/mod_conv/caecmodconvergence.h"
#include "support/mockaeccontext.h"

// Core log lines of the running test.
std::vector<std::string>& ConvLogs();
BOOL ConvLogContains(const std::string& text);

// Records every frame skip count the module asks for.
class RecordingConvCallback : public IConvergenceCallback
{
public:
    VOID SetConvFrameSkipCounter(UINT32 counter) override { counters.push_back(counter); }
    std::vector<UINT32> counters;
};

class ConvModuleTest : public ::testing::Test
{
protected:
    VOID SetUp() override;
    VOID TearDown() override;

    // Makes the module under test; tests that change tuning read at construction call it again.
    VOID MakeModule();
    // Every history entry (current, previous, ..., oldest) used these indices.
    VOID SetHistory(FLOAT shortIndex, FLOAT longIndex, FLOAT safeIndex, BOOL isStart = FALSE);
    // Streaming with the proportional converger alone, which moves (and so is unsettled) on every frame off target.
    VOID UseFastConverger();
    // Switches the mocked store to the mode and sends the change event.
    AecResult SetMode(AECAlgoOperationModeType mode);
    // One frame with the same target for all three exposures unless three are given.
    ConvergenceOutput Frame(FLOAT target, AECAlgoSettleFlagType settleType = AECAlgoSettleCompute);
    ConvergenceOutput Frame(const FLOAT* pTargets, AECAlgoSettleFlagType settleType = AECAlgoSettleCompute);
    // Sets the EV in UI steps (6 per stop) and sends the change event.
    VOID SetEV(INT32 uiSteps);

    aecConvergence::AECCoreConvergenceType& Conv() { return *m_adapter.GetTuningModules().modConv; }
    aecStartUp::StartUpConvergenceType&     StartUp() { return m_adapter.GetTuningModules().modStartUp->StartUpConv; }
    aecFlash::AECFlashType&                 Flash() { return *m_adapter.GetTuningModules().modFlash; }

    static constexpr UINT8 HistoryDepth = 11;

    ::testing::NiceMock<MockAECContext> m_context;
    RecordingConvCallback               m_callback;
    CTuningDataAdapter                  m_adapter;
    CoreModuleTuningData*               m_pTuning = nullptr;
    std::unique_ptr<CAECModConvergence> m_pModule;

    AECFrameHistory                  m_history[HistoryDepth];
    BOOL                             m_noHistory = FALSE;
    AECModeHistory                   m_prevMode;
    EVContext                        m_ev;
    AECLockContext                   m_lock;
    ModArbitrationContext            m_limit;
    TouchROIProcInfo                 m_touch;
    std::unique_ptr<FaceROIProcInfo> m_pFace;
    AECAlgoStartupIndices            m_start;
    AECAlgoOverrideSettingParam      m_override;
    StatsGyroInfo                    m_gyro;
    std::unique_ptr<AECDebugData>    m_pDebugData;
    AECAlgoOperationModeType         m_opMode         = AECAlgoOperationModeInit;
    AECAlgoMultiCamExposureType      m_exposureType   = AECAlgoExposureIndependent;
    UINT32                           m_skipCounter    = 0;
    INT32                            m_postRawGain    = 100;
    UINT32                           m_postRawCounter = 0;
    UINT8                            m_pipelineDelay  = 2;
    BOOL                             m_hdr3           = FALSE;
    FLOAT                            m_dynamicSpeed   = 0.0F;
    BOOL                             m_debugEnable    = FALSE;
    FLOAT                            m_fps            = 30.0F;
    UINT32                           m_flashMeasIndex = 0;
    AECAlgoFlashMeasKindType         m_flashMeasKind  = AECAlgoFlashMeasKindOff;
    std::unique_ptr<CoreLogCapture> m_pLogs; // installed from SetUp to TearDown
};

#endif // TESTS_UNIT_CONV_CONVMODULETESTSUPPORT_H
