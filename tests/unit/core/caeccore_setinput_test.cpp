// Tests of the core's set parameters: dispatch, setter guards, change events, frame-skip resets and lens state.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "unit/core/coretestfixture.h"

namespace
{

using ::testing::_;
using ::testing::An;
using ::testing::DoAll;
using ::testing::ElementsAre;
using ::testing::Invoke;
using ::testing::Return;
using ::testing::SaveArg;

// Index units of one decade of sensitivity.
constexpr DOUBLE IndexPerLog10 = 77.89852905273438;

// Registered after the modules: records every change event the state store sends, in order.
class EventRecorder final : public IAECComponent
{
public:
#define AEC_RECORD_EVENT(name)                 \
    AecResult name() override                  \
    {                                          \
        events.emplace_back(#name);            \
        return AecSuccess;                     \
    }
    AEC_RECORD_EVENT(OnOperationModeChange)
    AEC_RECORD_EVENT(OnMeteringModeChange)
    AEC_RECORD_EVENT(OnExposureCompChange)
    AEC_RECORD_EVENT(OnFlickerCompModeChange)
    AEC_RECORD_EVENT(OnManualSettingChange)
    AEC_RECORD_EVENT(OnFPSChange)
    AEC_RECORD_EVENT(OnLEDModeChange)
    AEC_RECORD_EVENT(OnFlashMeasKindChange)
    AEC_RECORD_EVENT(OnTouchROIChange)
    AEC_RECORD_EVENT(OnFaceROIChange)
    AEC_RECORD_EVENT(OnSensorInfoChange)
    AEC_RECORD_EVENT(OnDiagTestConfigChange)
    AEC_RECORD_EVENT(OnTuningHeaderChange)
    AEC_RECORD_EVENT(OnAECLockChange)
    AEC_RECORD_EVENT(OnMultiExposureSensorModeChange)
    AEC_RECORD_EVENT(OnDCGModeChange)
    AEC_RECORD_EVENT(OnCustomExposureTableChange)
    AEC_RECORD_EVENT(OnCustomMeteringTableChange)
    AEC_RECORD_EVENT(OnDynamicConvergenceSpeedChange)
    AEC_RECORD_EVENT(OnIRStateChange)
    AEC_RECORD_EVENT(OnIRSystemConfigChange)
#undef AEC_RECORD_EVENT

    size_t Count(const std::string& name) const
    {
        size_t count = 0;
        for (const std::string& rEvent : events)
        {
            count += (rEvent == name) ? 1 : 0;
        }
        return count;
    }

    std::vector<std::string> events;
};

// One of the host's tuning mode selectors: the mode, then the sub-mode, 32 bits each.
struct Selector
{
    UINT32 mode;
    UINT32 subMode;
};

class CoreSetInputTest : public CoreOnMocksTest
{
protected:
    void SetUp() override
    {
        CoreOnMocksTest::SetUp();
        Store().addComponent(&m_events);
        ON_CALL(*m_factory.pSkipCtrl, ResetFrameSkip()).WillByDefault(Invoke([this]() { m_resets++; }));
    }

    static AECCoreSetParam Param(AECAlgoSetParamType type)
    {
        AECCoreSetParam param = {};
        param.paramType       = type;
        return param;
    }

    KDKResult SetEV(INT32 EVVal)
    {
        AECCoreSetParam param = Param(AECAlgoSetParamExposureCompensation);
        param.data.EVVal      = EVVal;
        return SetParameter(param);
    }

    KDKResult SetFlicker(StatisticsAntibanding flickerComp)
    {
        AECCoreSetParam param  = Param(AECAlgoSetParamFlickerCompensation);
        param.data.flickerComp = flickerComp;
        return SetParameter(param);
    }

    KDKResult SetLock(AECAlgoLockType lockState)
    {
        AECCoreSetParam param = Param(AECAlgoSetParamAECLock);
        param.data.bAECLock   = lockState;
        return SetParameter(param);
    }

    KDKResult SetManual(const AECAlgoManualSetting& manualSetting)
    {
        AECCoreSetParam param    = Param(AECAlgoSetParamManualSetting);
        param.data.manualSetting = manualSetting;
        return SetParameter(param);
    }

    KDKResult SetTouch(AECAlgoROI* pROIs, UINT32 count)
    {
        AECCoreSetParam param        = Param(AECAlgoSetParamTouchROI);
        param.data.touchROI.ROIs     = pROIs;
        param.data.touchROI.ROICount = count;
        return SetParameter(param);
    }

    KDKResult SetSpeed(FLOAT speed)
    {
        AECCoreSetParam param       = Param(AECAlgoSetParamConvergenceSpeed);
        param.data.convergenceSpeed = speed;
        return SetParameter(param);
    }

    KDKResult SetDiag(BOOL enable, UINT32 testCase, BOOL testCaseEnable)
    {
        AECCoreSetParam param                               = Param(AECAlgoSetParamSetDiagTestConfig);
        param.data.diagTestConfig.enable                    = enable;
        param.data.diagTestConfig.testCaseEnable[testCase] = testCaseEnable;
        return SetParameter(param);
    }

    KDKResult SetTuning(const Selector* pSelectors, UINT numSelectors)
    {
        m_tuning.pTuningSetManager    = m_pTuningManager;
        m_tuning.pTuningModeSelectors = const_cast<Selector*>(pSelectors);
        m_tuning.numSelectors         = numSelectors;
        AECCoreSetParam param         = Param(AECAlgoSetParamSorentaData);
        param.data.pTuningData        = &m_tuning;
        return SetParameter(param);
    }

    KDKResult SetLens(const LDMSetAECInputMotorInfo& motorInfo)
    {
        AECCoreSetParam param        = Param(AECAlgoSetParamLDMStateQueue);
        param.data.LDMInputMotorInfo = motorInfo;
        return SetParameter(param);
    }

    KDKResult SetFlashMeasKind(AECAlgoFlashMeasKindType kind)
    {
        AECCoreSetParam param            = Param(AECAlgoSetParamFlashMeasurement);
        param.data.flashMeasurementState = kind;
        return SetParameter(param);
    }

    EventRecorder   m_events;
    UINT32          m_resets = 0;
    StatsTuningData m_tuning = {};
    // The tuning store SetTuning names; null: the core runs on its fake tuning.
    TuningSetManager* m_pTuningManager = nullptr;
};

// ---- Dispatch ----

TEST_F(CoreSetInputTest, UnhandledTypesAreLoggedByNameAndChangeNothing)
{
    const std::vector<std::pair<INT32, std::string>> unhandled = {
        {0, "AECAlgoSetParamExpTableRange"},
        {23, "AECAlgoSetParamStatsCapability"},
        {36, "AECAlgoSetParamIRLedState"},
        {37, "AECAlgoSetParamIRLedSystemConfig"},
        {39, "AECAlgoSetParamFlashInlineCalibrationData"},
        {43, "AECAlgoSetParamframeID"},
        {51, "AECAlgoSetParamBYRCamera"},
        {53, "AECAlgoSetParamDecompandSystemConfig"},
        {54, "AECAlgoSetParamCount"},
        {55, "AECAlgoSetParamMax"},
        {0x7FFFFFFF, "AECAlgoSetParamMax"},
    };
    for (const auto& rEntry : unhandled)
    {
        m_logs.Clear();
        AECCoreSetParam param = Param(static_cast<AECAlgoSetParamType>(rEntry.first));
        param.data.IRLedState = AECIRLedON;
        EXPECT_EQ(0, SetParameter(param)) << rEntry.first;
        EXPECT_EQ(1u, m_logs.Count("AEC Set parameters (" + rEntry.second + ")")) << rEntry.first;
        EXPECT_EQ(1u, m_logs.Count("Unhandled AEC set input type " + std::to_string(rEntry.first))) << rEntry.first;
    }
    for (INT32 type = 39; type <= 51; type++)
    {
        m_logs.Clear();
        EXPECT_EQ(0, SetParameter(Param(static_cast<AECAlgoSetParamType>(type))));
        EXPECT_EQ(1u, m_logs.Count("Unhandled AEC set input type " + std::to_string(type)));
    }
    EXPECT_EQ(AECIRLedMAX, Store().getIRState());
    EXPECT_TRUE(m_events.events.empty());
    EXPECT_EQ(0u, m_resets);
}

TEST_F(CoreSetInputTest, HandledTypesAreLoggedByNameAndNotAsUnhandled)
{
    EXPECT_EQ(0, SetParameter(Param(AECAlgoSetParamLDMStateQueue)));
    EXPECT_EQ(1u, m_logs.Count("AEC Set parameters (AECAlgoSetParamLDMStateQueue)"));
    EXPECT_EQ(0, SetParameter(Param(AECAlgoSetParamConvergenceSpeed)));
    EXPECT_EQ(1u, m_logs.Count("AEC Set parameters (AECAlgoSetParamConvergenceSpeed)"));
    EXPECT_EQ(0, SetParameter(Param(AECAlgoSetParamControlPostRawSensitivityBoost)));
    EXPECT_EQ(1u, m_logs.Count("AEC Set parameters (AECAlgoSetParamControlPostRawSensitivityBoost)"));
    EXPECT_EQ(0u, m_logs.CountContaining("Unhandled AEC set input type"));
}

// ---- Operation mode ----

struct ModeTransition
{
    std::vector<AECAlgoOperationModeType> path; // modes set before, the last one is the current mode
    AECAlgoOperationModeType              target;
    bool                                  isAllowed;
    const char*                           pMessage; // logged on the transition, or null
};

class CoreModeTransitionTest : public CoreSetInputTest, public ::testing::WithParamInterface<ModeTransition>
{
};

TEST_P(CoreModeTransitionTest, AllowedModesChangeAndNotifyRefusedOnesKeepTheModeAndTheHostSeesZero)
{
    const ModeTransition& rCase = GetParam();
    for (AECAlgoOperationModeType mode : rCase.path)
    {
        ASSERT_EQ(0, SetMode(mode));
        ASSERT_EQ(mode, Store().getOperationMode());
    }
    const AECAlgoOperationModeType before = Store().getOperationMode();
    m_logs.Clear();
    m_events.events.clear();

    EXPECT_EQ(0, SetMode(rCase.target));
    EXPECT_EQ(rCase.isAllowed ? rCase.target : before, Store().getOperationMode());
    EXPECT_EQ(rCase.isAllowed ? 1u : 0u, m_events.Count("OnOperationModeChange"));
    if (nullptr != rCase.pMessage)
    {
        EXPECT_EQ(1u, m_logs.Count(rCase.pMessage));
    }
    EXPECT_EQ(0u, m_resets);
}

const AECAlgoOperationModeType Init        = AECAlgoOperationModeInit;
const AECAlgoOperationModeType Streaming   = AECAlgoOperationModeStreaming;
const AECAlgoOperationModeType Preflash    = AECAlgoOperationModePreflash;
const AECAlgoOperationModeType FastAEC     = AECAlgoOperationModeFastAEC;
const AECAlgoOperationModeType Aggressive  = AECAlgoOperationModeAggressiveAEC;
const AECAlgoOperationModeType FlashMeas   = AECAlgoOperationModeFlashMeasurement;
const AECAlgoOperationModeType InvalidMode = static_cast<AECAlgoOperationModeType>(9);

const char* const PreflashRefused   = "Error, can only transition into Preflash from Preview/Preflash!\n";
const char* const FastRefused       = "Error: cannot set fast  AEC without going to Init mode first!\n";
const char* const AggressiveRefused = "Error: cannot set aggressive AEC without going to Init mode first!\n";

INSTANTIATE_TEST_SUITE_P(
    Transitions, CoreModeTransitionTest,
    ::testing::Values(
        ModeTransition{{}, Init, true, "warning: setting same opmode to AEC (0)!"},
        ModeTransition{{Streaming}, Init, true, nullptr},
        ModeTransition{{}, Streaming, true, "entering streaming op mode"},
        ModeTransition{{Streaming}, Streaming, true, "Streaming to Streaming\n"},
        ModeTransition{{Streaming, Preflash}, Streaming, true, "entering streaming op mode"},
        ModeTransition{{Streaming}, Preflash, true, nullptr},
        ModeTransition{{Streaming, Preflash}, Preflash, true, "warning: setting same opmode to AEC (2)!"},
        ModeTransition{{}, Preflash, false, PreflashRefused},
        ModeTransition{{FastAEC}, Preflash, false, PreflashRefused},
        ModeTransition{{Streaming, FlashMeas}, Preflash, false, PreflashRefused},
        ModeTransition{{}, FastAEC, true, nullptr},
        ModeTransition{{Streaming}, FastAEC, false, FastRefused},
        ModeTransition{{FastAEC}, FastAEC, false, FastRefused},
        ModeTransition{{}, Aggressive, true, nullptr},
        ModeTransition{{Streaming, Preflash}, Aggressive, false, AggressiveRefused},
        ModeTransition{{Streaming}, FlashMeas, true, nullptr},
        ModeTransition{{Streaming, FlashMeas}, FlashMeas, true, nullptr},
        ModeTransition{{}, FlashMeas, false, "Cannot enter flash measurement operation mode from this op mode: 0\n"},
        ModeTransition{{Streaming, Preflash}, FlashMeas, false,
                       "Cannot enter flash measurement operation mode from this op mode: 2\n"},
        ModeTransition{{Streaming}, InvalidMode, false, "Error: Invalid Mode 9 \n"}));

TEST_F(CoreSetInputTest, RefusedModeKeepsTheModesHistory)
{
    StartStreaming();
    ASSERT_EQ(0, Process(1));
    ASSERT_EQ(0, Process(2));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeAggressiveAEC));
    EXPECT_EQ(AECAlgoOperationModeStreaming, Store().getOperationMode());
    EXPECT_TRUE(Store().isStartConfigSaved());
    EXPECT_EQ(2u, CAECCoreTestPeer::HistorySize(Store()));
    EXPECT_EQ(0, Process(3));
}

TEST_F(CoreSetInputTest, LeavingStreamingKeepsItsLastFrameAndInitForgetsIt)
{
    StartStreaming();
    ASSERT_EQ(0, Process(1));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModePreflash));
    EXPECT_FALSE(Store().isStartConfigSaved());
    EXPECT_EQ(0u, CAECCoreTestPeer::HistorySize(Store()));
    AECModeHistory history;
    ASSERT_TRUE(Store().getPrevModeHistory(&history));
    EXPECT_EQ(1u, history.lastFrame.frameID);

    // Leaving preflash keeps nothing new but also loses nothing.
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    EXPECT_TRUE(Store().getPrevModeHistory(nullptr));

    AECAlgoROI roi = {0.1F, 0.1F, 0.2F, 0.2F, 1.0F};
    ASSERT_EQ(0, SetTouch(&roi, 1));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeInit));
    EXPECT_FALSE(Store().getPrevModeHistory(nullptr));
    EXPECT_EQ(0u, Store().getTouchROI()->ROICount);
}

TEST_F(CoreSetInputTest, FlashMeasurementArmsItsSwitchCounterOnce)
{
    ASSERT_EQ(0, SetPipelineDelay(2));
    ASSERT_EQ(0, SetFlashMeasKind(AECAlgoFlashMeasKindCalib));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeFlashMeasurement));
    EXPECT_EQ(2u, Store().getFlashMeasSwitchCounter());

    // Armed already: a repeated request leaves the count running.
    Store().SetFlashMeasurementIndex(1);
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeFlashMeasurement));
    EXPECT_EQ(2u, Store().getFlashMeasSwitchCounter());
    Store().updateFrameCounters();
    Store().updateFrameCounters();
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeFlashMeasurement));
    EXPECT_EQ(5u, Store().getFlashMeasSwitchCounter());
}

TEST_F(CoreSetInputTest, TuningFlashMeasurementWaitsFourSecondsOnlyPastTheFirstPoint)
{
    ASSERT_EQ(0, SetPipelineDelay(2));
    ASSERT_EQ(0, SetFlashMeasKind(AECAlgoFlashMeasKindTuning));
    EXPECT_EQ(1u, m_events.Count("OnFlashMeasKindChange"));
    ASSERT_EQ(0, SetFlashMeasKind(AECAlgoFlashMeasKindTuning));
    EXPECT_EQ(1u, m_events.Count("OnFlashMeasKindChange"));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeFlashMeasurement));
    EXPECT_EQ(0u, Store().getFlashMeasSwitchCounter());
    Store().SetFlashMeasurementIndex(1);
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeFlashMeasurement));
    EXPECT_EQ(122u, Store().getFlashMeasSwitchCounter());
}

// ---- Values with events and frame-skip resets ----

TEST_F(CoreSetInputTest, MeteringModeNotifiesAndResetsOnlyOnChange)
{
    AECCoreSetParam param = Param(AECAlgoSetParamMeteringMode);
    param.data.mtrMode    = AECAlgoMeteringModeCenterWeighted;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(0u, m_events.Count("OnMeteringModeChange"));
    EXPECT_EQ(0u, m_resets);

    param.data.mtrMode = AECAlgoMeteringModeSpot;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(AECAlgoMeteringModeSpot, Store().getMeteringMode());
    EXPECT_EQ(1u, m_events.Count("OnMeteringModeChange"));
    EXPECT_EQ(1u, m_resets);
}

TEST_F(CoreSetInputTest, ExposureCompensationIsStepsOfTheCapabilitiesAndNotifiesOnChange)
{
    EXPECT_EQ(0, SetEV(0));
    EXPECT_EQ(0u, m_events.Count("OnExposureCompChange"));
    EXPECT_EQ(0u, m_resets);

    EXPECT_EQ(0, SetEV(3));
    EXPECT_EQ(3, Store().getEVInfo()->EVUIVal);
    EXPECT_FLOAT_EQ(0.5F, Store().getEVInfo()->EV);
    EXPECT_FLOAT_EQ(0.5F, Store().getDebugData()->configInfo.EV);
    EXPECT_EQ(1u, m_events.Count("OnExposureCompChange"));
    EXPECT_EQ(1u, m_resets);

    EXPECT_EQ(0, SetEV(3));
    EXPECT_EQ(1u, m_events.Count("OnExposureCompChange"));
    EXPECT_EQ(1u, m_resets);
}

TEST_F(CoreSetInputTest, ExposureCompensationBeyondTheCapabilitiesIsClamped)
{
    EXPECT_EQ(0, SetEV(100));
    EXPECT_EQ(1u, m_logs.Count("Set EV value (16.666666) exceed max supported range (-12, 12)!"));
    EXPECT_EQ(100, Store().getEVInfo()->EVUIVal);
    EXPECT_FLOAT_EQ(12.0F, Store().getEVInfo()->EV);

    EXPECT_EQ(0, SetEV(-73));
    EXPECT_EQ(2u, m_logs.CountContaining("exceed max supported range (-12, 12)!"));
    EXPECT_FLOAT_EQ(-12.0F, Store().getEVInfo()->EV);
    EXPECT_EQ(2u, m_events.Count("OnExposureCompChange"));
}

TEST_F(CoreSetInputTest, ExposureCompensationWithoutCapabilitiesIsRefused)
{
    Store().SetEVCapability(-2, 2, 0);
    EXPECT_EQ(0, SetEV(6));
    EXPECT_EQ(1u, m_logs.Count("ERROR: EV capabilities are not populated!"));
    EXPECT_EQ(0, Store().getEVInfo()->EVUIVal);
    EXPECT_EQ(0u, m_events.Count("OnExposureCompChange"));
    // The reset follows the request, not the store.
    EXPECT_EQ(1u, m_resets);
}

TEST_F(CoreSetInputTest, AntibandingNotifiesAndResetsOnlyOnChange)
{
    EXPECT_EQ(0, SetFlicker(StatisticsAntibanding60Hz));
    EXPECT_EQ(0u, m_events.Count("OnFlickerCompModeChange"));
    EXPECT_EQ(0u, m_resets);
    EXPECT_EQ(0, SetFlicker(StatisticsAntibanding50Hz));
    EXPECT_EQ(StatisticsAntibanding50Hz, Store().getFlickerCompMode());
    EXPECT_EQ(1u, m_events.Count("OnFlickerCompModeChange"));
    EXPECT_EQ(1u, m_resets);
}

TEST_F(CoreSetInputTest, LockOnlyWhileStreaming)
{
    EXPECT_EQ(0, SetLock(AECAlgoLockOn));
    EXPECT_EQ(1u, m_logs.Count("Warning: Cannot Lock AEC during OpMode 0"));
    EXPECT_FALSE(Store().getIsAECLocked());
    EXPECT_EQ(0u, m_events.Count("OnAECLockChange"));

    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    m_resets = 0;
    EXPECT_EQ(0, SetLock(AECAlgoLockOn));
    EXPECT_TRUE(Store().getIsAECLocked());
    EXPECT_EQ(1u, m_logs.Count("AEC Lock set to 1"));
    EXPECT_EQ(1u, m_events.Count("OnAECLockChange"));
    EXPECT_EQ(StatisticsAntibanding60Hz, Store().getLockContext()->atb);
    EXPECT_EQ(1u, m_resets);

    EXPECT_EQ(0, SetLock(AECAlgoLockOn));
    EXPECT_EQ(1u, m_events.Count("OnAECLockChange"));
    EXPECT_EQ(1u, m_resets);
}

TEST_F(CoreSetInputTest, AntibandingChangeDuringLockIsAppliedAtUnlock)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    ASSERT_EQ(0, SetLock(AECAlgoLockOn));
    m_events.events.clear();

    EXPECT_EQ(0, SetFlicker(StatisticsAntibanding50Hz));
    EXPECT_EQ(StatisticsAntibanding60Hz, Store().getFlickerCompMode());
    EXPECT_EQ(StatisticsAntibanding50Hz, Store().getLockContext()->atb);
    EXPECT_TRUE(m_events.events.empty());

    EXPECT_EQ(0, SetLock(AECAlgoLockOFF));
    EXPECT_FALSE(Store().getIsAECLocked());
    EXPECT_EQ(StatisticsAntibanding50Hz, Store().getFlickerCompMode());
    EXPECT_THAT(m_events.events, ElementsAre("OnFlickerCompModeChange", "OnAECLockChange"));
    EXPECT_EQ(1u, m_logs.Count("AEC Lock set to 0"));
}

TEST_F(CoreSetInputTest, UnlockWithoutAntibandingChangeSendsOnlyTheLockEvent)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    ASSERT_EQ(0, SetLock(AECAlgoLockOn));
    m_events.events.clear();
    EXPECT_EQ(0, SetLock(AECAlgoLockOFF));
    EXPECT_THAT(m_events.events, ElementsAre("OnAECLockChange"));
}

TEST_F(CoreSetInputTest, ManualSettingWarnsOnTimesBeyondTheSensorButStoresThem)
{
    AECCoreSetParam sensor                        = Param(AECAlgoSetParamSensorInfo);
    sensor.data.sensorInfo.minimumStreamExpTime   = 1000;
    sensor.data.sensorInfo.maximumStreamExpTime   = 100000000;
    ASSERT_EQ(0, SetParameter(sensor));
    m_resets = 0;

    AECAlgoManualSetting manual = {};
    manual.manualMode           = AECAlgoModeManualExpTime;
    manual.exposureTime         = 200000000;
    EXPECT_EQ(0, SetManual(manual));
    EXPECT_EQ(1u, m_logs.Count("Warning: Manual Exposure time exceeded sensor Capabilities"));
    EXPECT_EQ(200000000u, Store().getManualSetting()->exposureTime);
    EXPECT_EQ(1u, m_events.Count("OnManualSettingChange"));
    EXPECT_EQ(1u, m_resets);

    for (AECAlgoModeType mode : {AECAlgoModeManualFull, AECAlgoModePASMExpTime, AECAlgoModePASMExpTimeISO,
                                 AECAlgoModePASMExpTimeIris, AECAlgoModePASMFullManual})
    {
        m_logs.Clear();
        manual.manualMode   = mode;
        manual.exposureTime = 10;
        EXPECT_EQ(0, SetManual(manual));
        EXPECT_EQ(1u, m_logs.Count("Warning: Manual Exposure time exceeded sensor Capabilities")) << mode;
    }

    m_logs.Clear();
    manual.manualMode = AECAlgoModeManualISO;
    EXPECT_EQ(0, SetManual(manual));
    EXPECT_EQ(0u, m_logs.CountContaining("exceeded sensor Capabilities"));

    manual.manualMode     = AECAlgoModePirisMaxExpPriority;
    manual.prioMaxExpTime = 500;
    EXPECT_EQ(0, SetManual(manual));
    EXPECT_EQ(1u, m_logs.Count("Warning: Manual Priority Max Exposure time exceeded sensor Capabilities"));
    EXPECT_EQ(500u, Store().getManualSetting()->prioMaxExpTime);
}

TEST_F(CoreSetInputTest, ManualSettingNotifiesAndResetsOnlyWhenAFieldDiffers)
{
    AECAlgoManualSetting manual = {};
    manual.manualMode           = AECAlgoModeAuto;
    EXPECT_EQ(0, SetManual(manual));
    EXPECT_EQ(0u, m_events.Count("OnManualSettingChange"));
    EXPECT_EQ(0u, m_resets);

    manual.fnumber = 2.8F;
    EXPECT_EQ(0, SetManual(manual));
    EXPECT_EQ(1u, m_events.Count("OnManualSettingChange"));
    EXPECT_EQ(1u, m_resets);
    EXPECT_EQ(0, SetManual(manual));
    EXPECT_EQ(1u, m_events.Count("OnManualSettingChange"));
    EXPECT_EQ(1u, m_resets);
}

TEST_F(CoreSetInputTest, FPSRangeNotifiesAndResetsOnlyOnChange)
{
    AECCoreSetParam param          = Param(AECAlgoSetParamFPSRange);
    param.data.FPSRange.minimumFPS = 1.0F;
    param.data.FPSRange.maximumFPS = 30.0F;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(0u, m_events.Count("OnFPSChange"));
    EXPECT_EQ(0u, m_resets);

    param.data.FPSRange.minimumFPS = 15.0F;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_FLOAT_EQ(15.0F, Store().getMinFPS());
    EXPECT_FLOAT_EQ(30.0F, Store().getMaxFPS());
    EXPECT_EQ(1u, m_events.Count("OnFPSChange"));
    EXPECT_EQ(1u, m_resets);
}

TEST_F(CoreSetInputTest, LEDModeNotifiesOnChangeWithoutReset)
{
    AECCoreSetParam param = Param(AECAlgoSetParamLEDMode);
    param.data.LEDMode    = AECAlgoLEDModeOff;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(0u, m_events.Count("OnLEDModeChange"));
    param.data.LEDMode = AECAlgoLEDModeAuto;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(AECAlgoLEDModeAuto, Store().getLEDMode());
    EXPECT_EQ(1u, m_events.Count("OnLEDModeChange"));
    EXPECT_EQ(0u, m_resets);
}

// ---- Regions ----

TEST_F(CoreSetInputTest, TouchROIsBeyondTenAreDropped)
{
    AECAlgoROI rois[12] = {};
    for (UINT32 i = 0; i < 12; i++)
    {
        rois[i] = {0.05F * i, 0.1F, 0.1F, 0.1F, 1.0F};
    }
    EXPECT_EQ(0, SetTouch(rois, 12));
    EXPECT_EQ(1u, m_logs.Count("Too many touch ROIs (12) than AEC can handle (10)!"));
    ASSERT_EQ(10u, Store().getTouchROI()->ROICount);
    EXPECT_FLOAT_EQ(0.45F, Store().getTouchROI()->ROIs[9].x);
    EXPECT_EQ(1u, m_events.Count("OnTouchROIChange"));
    EXPECT_EQ(1u, m_resets);
}

TEST_F(CoreSetInputTest, TouchROIsAreRepairedIntoTheFrame)
{
    AECAlgoROI rois[4] = {
        {1.5F, -0.5F, 0.1F, 0.1F, 1.0F},
        {-0.5F, 1.5F, 0.1F, 0.1F, 1.0F},
        {0.6F, 0.7F, 0.6F, 0.5F, 1.0F},
        {0.2F, 0.2F, -0.2F, -0.3F, 1.0F},
    };
    EXPECT_EQ(0, SetTouch(rois, 4));
    EXPECT_EQ(1u, m_logs.Count("x coord 1.5 rounding to 1"));
    EXPECT_EQ(1u, m_logs.Count("y coord -0.5 rounding to 0"));
    EXPECT_EQ(1u, m_logs.Count("x coord -0.5 rounding to 0"));
    EXPECT_EQ(1u, m_logs.Count("y coord 1.5 rounding to 1"));
    EXPECT_EQ(1u, m_logs.Count("x 0.6 + dx 0.6 rounding to 1"));
    EXPECT_EQ(1u, m_logs.Count("y 0.7 + dy 0.5 rounding to 1"));
    EXPECT_EQ(1u, m_logs.Count("dx -0.2 cap to 0"));
    EXPECT_EQ(1u, m_logs.Count("dy -0.3 cap to 0"));

    const TouchROIProcInfo* pTouch = Store().getTouchROI();
    ASSERT_EQ(4u, pTouch->ROICount);
    EXPECT_FLOAT_EQ(1.0F, pTouch->ROIs[0].x);
    EXPECT_FLOAT_EQ(0.0F, pTouch->ROIs[0].y);
    EXPECT_FLOAT_EQ(0.0F, pTouch->ROIs[0].dx); // 1 + 0.1 is past the edge
    EXPECT_FLOAT_EQ(0.0F, pTouch->ROIs[1].x);
    EXPECT_FLOAT_EQ(1.0F, pTouch->ROIs[1].y);
    EXPECT_NEAR(0.4F, pTouch->ROIs[2].dx, 1e-6F);
    EXPECT_NEAR(0.3F, pTouch->ROIs[2].dy, 1e-6F);
    EXPECT_FLOAT_EQ(0.0F, pTouch->ROIs[3].dx);
    EXPECT_FLOAT_EQ(0.0F, pTouch->ROIs[3].dy);
    EXPECT_FLOAT_EQ(1.0F, pTouch->ROIs[3].weight);
}

TEST_F(CoreSetInputTest, TouchROIsResetSkippingOnlyWhenTheCountChanges)
{
    AECAlgoROI roi = {0.1F, 0.1F, 0.2F, 0.2F, 1.0F};
    EXPECT_EQ(0, SetTouch(&roi, 1));
    EXPECT_EQ(1u, m_resets);
    roi.x = 0.3F;
    EXPECT_EQ(0, SetTouch(&roi, 1));
    EXPECT_FLOAT_EQ(0.3F, Store().getTouchROI()->ROIs[0].x);
    EXPECT_EQ(2u, m_events.Count("OnTouchROIChange"));
    EXPECT_EQ(1u, m_resets);
    EXPECT_EQ(0, SetTouch(nullptr, 0));
    EXPECT_EQ(0u, Store().getTouchROI()->ROICount);
    EXPECT_EQ(2u, m_resets);
}

TEST_F(CoreSetInputTest, TouchROIThatIsNotANumberIsTakenAsEmpty)
{
    AECAlgoROI rois[2] = {{0.5F, std::numeric_limits<FLOAT>::quiet_NaN(), 0.2F, 0.2F, 1.0F},
                          {0.1F, 0.1F, 0.2F, 0.2F, 1.0F}};
    EXPECT_EQ(0, SetTouch(rois, 2));
    EXPECT_EQ(1u, m_logs.Count("Touch ROI 0 is not a number; taken as empty"));
    const TouchROIProcInfo* pTouch = Store().getTouchROI();
    ASSERT_EQ(2u, pTouch->ROICount);
    EXPECT_FLOAT_EQ(0.0F, pTouch->ROIs[0].x);
    EXPECT_FLOAT_EQ(0.0F, pTouch->ROIs[0].y);
    EXPECT_FLOAT_EQ(0.0F, pTouch->ROIs[0].dx);
    EXPECT_FLOAT_EQ(0.1F, pTouch->ROIs[1].x);
}

TEST_F(CoreSetInputTest, TouchROICountWithoutRegionsIsRefused)
{
    EXPECT_EQ(0, SetTouch(nullptr, 3));
    EXPECT_EQ(1u, m_logs.Count("Touch ROI list refused: 3 ROIs without a region array"));
    EXPECT_EQ(0u, Store().getTouchROI()->ROICount);
    EXPECT_EQ(0u, m_events.Count("OnTouchROIChange"));
}

TEST_F(CoreSetInputTest, FaceROIsNotifyAndOnlyTheFaceTypeResetsOnACountChange)
{
    AECCoreSetParam faces                 = Param(AECAlgoSetParamUnstabilizedFaceROI);
    faces.data.faceROI.roiCount           = 2;
    faces.data.faceROI.roi[0].rect.width  = 10;
    faces.data.faceROI.roi[0].rect.height = 10;
    faces.data.faceROI.roi[1].rect.width  = 20;
    faces.data.faceROI.roi[1].rect.height = 20;
    EXPECT_EQ(0, SetParameter(faces));
    EXPECT_EQ(2u, Store().getFaceROI()->inputROIPriority.Size());
    EXPECT_EQ(1u, m_events.Count("OnFaceROIChange"));
    EXPECT_EQ(0u, m_resets);

    // The face type carries no data: it clears the faces.
    EXPECT_EQ(0, SetParameter(Param(AECAlgoSetParamFaceROI)));
    EXPECT_EQ(0u, Store().getFaceROI()->inputROIPriority.Size());
    EXPECT_EQ(2u, m_events.Count("OnFaceROIChange"));
    EXPECT_EQ(1u, m_resets);
    EXPECT_EQ(0, SetParameter(Param(AECAlgoSetParamFaceROI)));
    EXPECT_EQ(3u, m_events.Count("OnFaceROIChange"));
    EXPECT_EQ(1u, m_resets);
}

// ---- Plain stores ----

TEST_F(CoreSetInputTest, GyroIsStoredAndLogged)
{
    AECCoreSetParam param              = Param(AECAlgoSetParamGyroInfo);
    param.data.gyro.enabled            = TRUE;
    param.data.gyro.sampleCount        = 3;
    for (UINT32 i = 0; i < 3; i++)
    {
        param.data.gyro.pAngularVelocityX[i] = 1.0F + i;
        param.data.gyro.pAngularVelocityY[i] = 4.0F + i;
        param.data.gyro.pAngularVelocityZ[i] = 7.0F + i;
    }
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(1u, m_logs.Count("AECCore's Gyro: x=1.000000 2.000000 3.000000, y=4.000000 5.000000 6.000000, "
                               "z=7.000000 8.000000 9.000000"));
    EXPECT_EQ(3u, Store().getGyroInfo()->sampleCount);
    EXPECT_FLOAT_EQ(9.0F, Store().getGyroInfo()->pAngularVelocityZ[2]);
    EXPECT_EQ(0u, m_resets);
}

TEST_F(CoreSetInputTest, StoresWithoutEvents)
{
    AECCoreSetParam awb      = Param(AECAlgoSetParamAWBState);
    awb.data.AWBState.isAuto = TRUE;
    awb.data.AWBState.CCT    = 5000;
    EXPECT_EQ(0, SetParameter(awb));
    EXPECT_EQ(5000u, Store().getAWBState()->CCT);

    AECCoreSetParam current    = Param(AECAlgoSetParamFlashMaximumCurrent);
    current.data.LEDMaxCurrent = 750;
    EXPECT_EQ(0, SetParameter(current));
    EXPECT_EQ(750, Store().getFlashMaxCurrent());

    AECCoreSetParam debug        = Param(AECAlgoSetParamDebugDataEnable);
    debug.data.debugDataEnable   = FALSE;
    EXPECT_EQ(0, SetParameter(debug));
    EXPECT_FALSE(Store().getDebugDataEnable());

    EXPECT_EQ(0, SetPipelineDelay(2));
    AECCoreSetParam postRaw  = Param(AECAlgoSetParamControlPostRawSensitivityBoost);
    postRaw.data.postRawGain = 150;
    EXPECT_EQ(0, SetParameter(postRaw));
    EXPECT_EQ(150, Store().getPostRawGain());
    EXPECT_EQ(2u, Store().getPostRawCounter());
    Store().updateFrameCounters();
    EXPECT_EQ(0, SetParameter(postRaw));
    EXPECT_EQ(1u, Store().getPostRawCounter());

    EXPECT_TRUE(m_events.events.empty());
    EXPECT_EQ(0u, m_resets);
}

TEST_F(CoreSetInputTest, SensorInfoNotifiesAndResetsEveryTime)
{
    AECCoreSetParam param         = Param(AECAlgoSetParamSensorInfo);
    param.data.sensorInfo.fNumber = 2.0F;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(2u, m_events.Count("OnSensorInfoChange"));
    EXPECT_EQ(2u, m_resets);
}

TEST_F(CoreSetInputTest, FlashCalibrationGoesToTheExtension)
{
    FLOAT           ratios[2] = {1.0F, 2.0F};
    AECCoreSetParam param     = Param(AECAlgoSetParamFlashCalibrationData);
    param.data.flashCalibrationData.count     = 2;
    param.data.flashCalibrationData.pRGRatios = ratios;
    param.data.flashCalibrationData.pBGRatios = ratios;
    EXPECT_CALL(*m_factory.pExtension, SetFlashCalibrationData(::testing::Pointee(
                                           ::testing::Field(&AECAlgoFlashCalibrationData::count, 2u))))
        .WillOnce(Return(AecError));
    EXPECT_EQ(0, SetParameter(param));
}

TEST_F(CoreSetInputTest, DCGAndMultiExposureModesAreStoredAndNotified)
{
    AECCoreSetParam dcg          = Param(AECAlgoSetParamDCGMode);
    dcg.data.dcgMode.numOfExposures = 2;
    dcg.data.dcgMode.dcgMode        = static_cast<LYRHDRDCGMODE>(1);
    EXPECT_EQ(0, SetParameter(dcg));
    EXPECT_EQ(1u, m_logs.Count("DCGMode updated: dcgMode=1"));
    EXPECT_EQ(2u, Store().getDCGMode()->numOfExposures);
    EXPECT_EQ(1u, m_events.Count("OnDCGModeChange"));

    AECCoreSetParam hdr              = Param(AECAlgoSetParamMultiExpSensorMode);
    hdr.data.multiExposureSensorMode = SensorHDR;
    EXPECT_EQ(0, SetParameter(hdr));
    EXPECT_EQ(0, SetParameter(hdr));
    EXPECT_TRUE(Store().getHDR3Enable());
    EXPECT_EQ(2u, m_events.Count("OnMultiExposureSensorModeChange"));
    EXPECT_EQ(0u, m_resets);
}

TEST_F(CoreSetInputTest, DualCameraCalibrationIsTakenOnce)
{
    AECCoreSetParam param                           = Param(AECAlgoSetParamDualcamCalibrationInfo);
    param.data.calibrationInfo.relative.brightnessRatio = 2.0F;
    param.data.calibrationInfo.relative.slaveGain       = 4.0F;
    param.data.calibrationInfo.relative.slaveTimeUnit   = 1.0F;
    param.data.calibrationInfo.relative.masterGain      = 1.0F;
    param.data.calibrationInfo.relative.masterTimeUnit  = 0.0F;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(1u, m_logs.Count("Incorrect OTP data"));
    EXPECT_EQ(AECAlgoDualcamOTPInvalid, Store().getDCCalibrationInfo().OTPStatus);

    param.data.calibrationInfo.relative.masterTimeUnit = 1.0F;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(AECAlgoDualcamOTPSet, Store().getDCCalibrationInfo().OTPStatus);
    EXPECT_FLOAT_EQ(2.0F, Store().getDCCalibrationInfo().OTPExpCompMultiplier);
    EXPECT_EQ(1u, m_logs.Count("AEC-OTP calibrated compensation multiplier:2.000000"));

    param.data.calibrationInfo.relative.slaveGain = 8.0F;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(1u, m_logs.Count("OTP data already set, skip update"));
    EXPECT_FLOAT_EQ(2.0F, Store().getDCCalibrationInfo().OTPExpCompMultiplier);
}

TEST_F(CoreSetInputTest, IRPathSettersStoreAndNotify)
{
    EXPECT_EQ(AecSuccess, Store().setIRLedState(AECIRLedMAX));
    EXPECT_EQ(0u, m_events.Count("OnIRStateChange"));
    EXPECT_EQ(AecSuccess, Store().setIRLedState(AECIRLedON));
    EXPECT_EQ(AECIRLedON, Store().getIRState());
    EXPECT_EQ(1u, m_events.Count("OnIRStateChange"));

    const AECIRLedSystemConfig config = {3, 4, 50.0F};
    EXPECT_EQ(AecSuccess, Store().setIRLedSystemConfig(config));
    EXPECT_EQ(3u, Store().getIRCutSystemLatency());
    EXPECT_EQ(4u, Store().getIRLedSystemLatency());
    EXPECT_FLOAT_EQ(50.0F, Store().getPWMFrequency());
    EXPECT_EQ(1u, m_events.Count("OnIRSystemConfigChange"));

    Store().setCompensationRatio(0.75F);
    EXPECT_FLOAT_EQ(0.75F, Store().getCompensationRatio());
    AECWeightingTable weights = {};
    weights.weightCount       = 2;
    weights.weights[1]        = 0.5F;
    Store().setWeightTable(weights);
    EXPECT_EQ(2u, Store().getWeightTable()->weightCount);
    EXPECT_FLOAT_EQ(0.5F, Store().getWeightTable()->weights[1]);
}

// ---- Diagnostics ----

TEST_F(CoreSetInputTest, DiagnosticConfigIsTakenOnlyWhileStreaming)
{
    EXPECT_EQ(0, SetDiag(TRUE, 0, TRUE));
    EXPECT_FALSE(Store().getDiagTestConfig()->enable);
    EXPECT_EQ(AecError, Store().setDiagTestConfig(nullptr));
    EXPECT_EQ(0u, m_events.Count("OnDiagTestConfigChange"));
}

TEST_F(CoreSetInputTest, DiagnosticConfigChangesByItsEnableOrWhileEnabledByItsTestCases)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    EXPECT_EQ(0, SetDiag(FALSE, 1, TRUE));
    EXPECT_EQ(0u, m_events.Count("OnDiagTestConfigChange"));
    EXPECT_FALSE(Store().getDiagTestConfig()->testCaseEnable[1]);

    EXPECT_EQ(0, SetDiag(TRUE, 1, TRUE));
    EXPECT_TRUE(Store().getDiagTestConfig()->enable);
    EXPECT_EQ(1u, m_events.Count("OnDiagTestConfigChange"));

    EXPECT_EQ(0, SetDiag(TRUE, 1, TRUE));
    EXPECT_EQ(1u, m_events.Count("OnDiagTestConfigChange"));

    // While enabled only the test cases count.
    EXPECT_EQ(0, SetDiag(FALSE, 1, TRUE));
    EXPECT_TRUE(Store().getDiagTestConfig()->enable);
    EXPECT_EQ(1u, m_events.Count("OnDiagTestConfigChange"));

    EXPECT_EQ(0, SetDiag(FALSE, 2, TRUE));
    EXPECT_FALSE(Store().getDiagTestConfig()->enable);
    EXPECT_TRUE(Store().getDiagTestConfig()->testCaseEnable[2]);
    EXPECT_EQ(2u, m_events.Count("OnDiagTestConfigChange"));
}

// ---- Convergence speed ----

TEST_F(CoreSetInputTest, ConvergenceSpeedRules)
{
    EXPECT_EQ(0, SetSpeed(0.0F));
    EXPECT_EQ(0u, m_events.Count("OnDynamicConvergenceSpeedChange"));

    EXPECT_EQ(0, SetSpeed(0.5F));
    EXPECT_EQ(1u, m_logs.Count("Changed AEC convergence speed to 0.500000"));
    EXPECT_FLOAT_EQ(0.5F, Store().getDynamicConvergenceSpeed());
    EXPECT_EQ(1u, m_events.Count("OnDynamicConvergenceSpeedChange"));

    EXPECT_EQ(0, SetSpeed(0.50000001F));
    EXPECT_EQ(1u, m_events.Count("OnDynamicConvergenceSpeedChange"));

    EXPECT_EQ(0, SetSpeed(1.5F));
    EXPECT_EQ(1u, m_logs.Count("Invalid convergence speed 1.500000"));
    EXPECT_EQ(0, SetSpeed(-0.25F));
    EXPECT_EQ(1u, m_logs.Count("Invalid convergence speed -0.250000"));
    EXPECT_EQ(0, SetSpeed(std::numeric_limits<FLOAT>::quiet_NaN()));
    EXPECT_EQ(3u, m_logs.CountContaining("Invalid convergence speed"));
    EXPECT_FLOAT_EQ(0.5F, Store().getDynamicConvergenceSpeed());
    EXPECT_EQ(1u, m_events.Count("OnDynamicConvergenceSpeedChange"));

    EXPECT_EQ(0, SetSpeed(1.0F));
    EXPECT_FLOAT_EQ(1.0F, Store().getDynamicConvergenceSpeed());
    EXPECT_EQ(0, SetSpeed(0.0F));
    EXPECT_EQ(1u, m_logs.Count("Reset AEC convergence speed with tuning value"));
    EXPECT_FLOAT_EQ(0.0F, Store().getDynamicConvergenceSpeed());
    EXPECT_EQ(3u, m_events.Count("OnDynamicConvergenceSpeedChange"));
    EXPECT_EQ(0u, m_resets);
}

// ---- Custom tables ----

TEST_F(CoreSetInputTest, CustomMeteringTableIsTakenOnlyInCustomModeWithItsFullSize)
{
    AECCoreSetParam table                             = Param(AECAlgoSetParamCustomMeteringTable);
    table.data.customMeteringTable.meteringTableSize = 256;
    table.data.customMeteringTable.meteringTable[5]  = 3.0F;
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_FLOAT_EQ(0.0F, Store().getCustomMeteringTable().meteringTable[5]);
    EXPECT_EQ(1u, m_events.Count("OnCustomMeteringTableChange"));

    AECCoreSetParam mode = Param(AECAlgoSetParamMeteringMode);
    mode.data.mtrMode    = AECAlgoMeteringModeCustom;
    ASSERT_EQ(0, SetParameter(mode));
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_FLOAT_EQ(3.0F, Store().getCustomMeteringTable().meteringTable[5]);

    table.data.customMeteringTable.meteringTableSize = 100;
    table.data.customMeteringTable.meteringTable[5]  = 4.0F;
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_EQ(1u, m_logs.Count("Invalid Custom Metering Table Size : 100.000000"));
    EXPECT_FLOAT_EQ(3.0F, Store().getCustomMeteringTable().meteringTable[5]);
    EXPECT_EQ(3u, m_events.Count("OnCustomMeteringTableChange"));
}

AECCoreSetParam ThreeKneeTable()
{
    AECCoreSetParam param = {};
    param.paramType       = AECAlgoSetParamCustomExposureTable;
    AECCustomExposureTable& rTable    = param.data.customExposureTable;
    rTable.isValid                    = TRUE;
    rTable.sensitivityCorrectionFactor = 1.0F;
    rTable.kneeCount                  = 3;
    for (UINT32 knee = 0; knee < 3; knee++)
    {
        rTable.gain[knee]    = 1.0F + knee;
        rTable.expTime[knee] = 1000000 * (knee + 1);
    }
    return param;
}

TEST_F(CoreSetInputTest, CustomExposureTableNotifiesOnlyOnChange)
{
    AECCoreSetParam invalid = Param(AECAlgoSetParamCustomExposureTable);
    invalid.data.customExposureTable.kneeCount = 7;
    EXPECT_EQ(0, SetParameter(invalid));
    EXPECT_EQ(0u, m_events.Count("OnCustomExposureTableChange"));
    EXPECT_EQ(0u, m_logs.CountContaining("Custom Exposure Table is"));

    AECCoreSetParam table = ThreeKneeTable();
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_EQ(1u, m_logs.Count("Custom Exposure Table is Valid, hence set and stored in data manager"));
    EXPECT_EQ(1u, m_events.Count("OnCustomExposureTableChange"));
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_EQ(1u, m_events.Count("OnCustomExposureTableChange"));

    table.data.customExposureTable.incrementPriority[2] = 1;
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_EQ(2u, m_events.Count("OnCustomExposureTableChange"));

    EXPECT_EQ(0, SetParameter(invalid));
    EXPECT_EQ(1u, m_logs.Count("Custom Exposure Table is not Valid, hence changed to Tunning Exposure Tables"));
    EXPECT_EQ(3u, m_events.Count("OnCustomExposureTableChange"));
    EXPECT_EQ(0u, m_resets);
}

TEST_F(CoreSetInputTest, CustomExposureTableOfFiftyKneesIsRefused)
{
    AECCoreSetParam table                      = ThreeKneeTable();
    table.data.customExposureTable.kneeCount   = 50;
    for (UINT32 knee = 0; knee < 50; knee++)
    {
        table.data.customExposureTable.gain[knee]    = 1.0F;
        table.data.customExposureTable.expTime[knee] = 1000;
    }
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_EQ(1u, m_logs.Count("Invalid Custom Exposure Table Size, Size = 50, Min = 2, Max Size = 50"));
    EXPECT_EQ(0u, m_events.Count("OnCustomExposureTableChange"));

    table.data.customExposureTable.kneeCount = 49;
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_EQ(1u, m_events.Count("OnCustomExposureTableChange"));
}

TEST_F(CoreSetInputTest, CustomExposureTableWithBadKneesIsRefused)
{
    AECCoreSetParam table                          = ThreeKneeTable();
    table.data.customExposureTable.gain[1]         = 0.5F;
    table.data.customExposureTable.expIndex[1]     = 7.0F;
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_EQ(1u, m_logs.Count("Index:1, EI: 7.000000, Invalid Gain: 0.500000"));

    table                                      = ThreeKneeTable();
    table.data.customExposureTable.expTime[2]  = 0;
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_EQ(1u, m_logs.Count("Index:2, EI: 0.000000, Invalid ET: 0.000000"));

    table                                                        = ThreeKneeTable();
    table.data.customExposureTable.sensitivityCorrectionFactor = -1.0F;
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_EQ(1u, m_logs.Count("Invalid Sensitivity Correction Factor: -1.000000"));

    table                                                                      = ThreeKneeTable();
    table.data.customExposureTable.antiBandingMinimumTimePercentageThreshold = -2.0F;
    EXPECT_EQ(0, SetParameter(table));
    EXPECT_EQ(1u, m_logs.Count("Invalid anti-Banding Minimum Time Percentage Threshold: -2.000000"));
    EXPECT_EQ(0u, m_events.Count("OnCustomExposureTableChange"));
}

// ---- Start-up exposure ----

TEST_F(CoreSetInputTest, StartUpSensitivitiesBecomeIndicesForTheNextStartQuery)
{
    ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
    m_factory.pConvergence->m_isStartSettingUsed = TRUE;
    const FLOAT indices[3] = {100.0F, 110.0F, 120.0F};
    FLOAT       given[3]   = {};
    EXPECT_CALL(*m_factory.pArbitration, QuerySensitivity2ExpIndex(_, AECAlgoOperationModeStreaming, _))
        .WillOnce(Invoke([&](const FLOAT* pSensitivities, AECAlgoOperationModeType, FLOAT* pIndices) {
            std::copy(pSensitivities, pSensitivities + 3, given);
            std::copy(indices, indices + 3, pIndices);
            return AecSuccess;
        }));

    AECCoreSetParam param                             = Param(AECAlgoSetParamStartUpExpSensitivity);
    param.data.startUpExpData.startUpSensitivity[0] = 1.0F;
    param.data.startUpExpData.startUpSensitivity[1] = 2.0F;
    param.data.startUpExpData.startUpSensitivity[2] = 3.0F;
    param.data.startUpExpData.startMode             = AECAlgoStartupModeWarmStart;
    param.data.startUpExpData.startUpLuxIndex       = 250.0F;
    EXPECT_EQ(0, SetParameter(param));

    EXPECT_THAT(given, ElementsAre(1.0F, 2.0F, 3.0F));
    const AECAlgoStartupIndices* pStartUp = Store().getStartUpExpIndex();
    EXPECT_THAT(pStartUp->startUpIndices, ElementsAre(100.0F, 110.0F, 120.0F));
    EXPECT_EQ(AECAlgoStartupModeWarmStart, pStartUp->startMode);
    EXPECT_FLOAT_EQ(250.0F, pStartUp->startUpLuxIndex);
    EXPECT_FALSE(m_factory.pConvergence->m_isStartSettingUsed);
    EXPECT_EQ(0u, m_logs.CountContaining("serves the next start query"));
}

TEST_F(CoreSetInputTest, StartUpSensitivitiesOutsideStreamingAreStoredWithAWarning)
{
    EXPECT_EQ(0, SetParameter(Param(AECAlgoSetParamStartUpExpSensitivity)));
    EXPECT_EQ(1u, m_logs.Count("Start-up exposure set in op mode 0: it serves the next start query of streaming"));
}

TEST_F(CoreSetInputTest, StartUpSensitivitiesThatArbitrationCannotConvertAreDropped)
{
    m_factory.pConvergence->m_isStartSettingUsed = TRUE;
    EXPECT_CALL(*m_factory.pArbitration, QuerySensitivity2ExpIndex(_, _, _)).WillOnce(Return(AecError));
    AECCoreSetParam param                       = Param(AECAlgoSetParamStartUpExpSensitivity);
    param.data.startUpExpData.startUpLuxIndex = 250.0F;
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_FLOAT_EQ(0.0F, Store().getStartUpExpIndex()->startUpLuxIndex);
    EXPECT_TRUE(m_factory.pConvergence->m_isStartSettingUsed);
}

// ---- Tuning ----

TEST_F(CoreSetInputTest, SameTuningSelectorsTwiceApplyTheTuningOnce)
{
    const Selector selectors[7] = {{0, 9}, {1, 2}, {2, 1}, {3, 0}, {4, 0}, {5, 0}, {6, 0}};
    EXPECT_EQ(0, SetTuning(selectors, 7));
    EXPECT_EQ(1u, m_logs.Count("is tuning changed:1"));
    EXPECT_EQ(1u, m_events.Count("OnTuningHeaderChange"));
    EXPECT_EQ(1u, m_resets);

    EXPECT_EQ(0, SetTuning(selectors, 7));
    EXPECT_EQ(1u, m_logs.Count("is tuning changed:0"));
    EXPECT_EQ(1u, m_events.Count("OnTuningHeaderChange"));
    EXPECT_EQ(1u, m_resets);
}

TEST_F(CoreSetInputTest, TuningSelectorsCompareTheLowByteOfTheModeThenOfTheSubModes)
{
    Selector selectors[7] = {{0, 0}, {1, 2}, {2, 1}, {3, 0}, {4, 0}, {5, 0}, {6, 0}};
    ASSERT_EQ(0, SetTuning(selectors, 7));
    ASSERT_EQ(1u, m_events.Count("OnTuningHeaderChange"));

    selectors[0].subMode = 5;     // the first selector counts by its mode
    selectors[1].mode    = 7;     // the others by their sub-mode
    selectors[2].subMode = 0x101; // only the low byte counts
    EXPECT_EQ(0, SetTuning(selectors, 7));
    EXPECT_EQ(1u, m_events.Count("OnTuningHeaderChange"));

    selectors[6].subMode = 3;
    EXPECT_EQ(0, SetTuning(selectors, 7));
    EXPECT_EQ(2u, m_events.Count("OnTuningHeaderChange"));
    EXPECT_EQ(2u, m_resets);
}

TEST_F(CoreSetInputTest, TuningWithoutSevenSelectorsIsNotApplied)
{
    const Selector selectors[7] = {};
    EXPECT_EQ(0, SetTuning(selectors, 6));
    EXPECT_EQ(0, SetTuning(nullptr, 7));
    EXPECT_EQ(2u, m_logs.CountContaining("Tuning mode selectors refused:"));
    AECCoreSetParam param = Param(AECAlgoSetParamSorentaData);
    EXPECT_EQ(0, SetParameter(param));
    EXPECT_EQ(0u, m_events.Count("OnTuningHeaderChange"));
    EXPECT_EQ(0u, m_resets);
}

TEST_F(CoreSetInputTest, NewTuningCarriesThePreviousModeAndTheHistoryToTheNewTables)
{
    ON_CALL(*m_factory.pMetering, ProcessFrameStats(_, _))
        .WillByDefault(Invoke([](const AECMeteringFrameProcInput*, AECMeteringFrameProcOutput* pOut) {
            pOut->luxIndex = 300.0F;
            return AecSuccess;
        }));
    ON_CALL(*m_factory.pConvergence, ConvergeFrameExposure(_, _))
        .WillByDefault(Invoke([](const ConvergenceInput*, ConvergenceOutput* pOut) {
            for (UINT32 i = 0; i < 3; i++)
            {
                pOut->convExpSets[i].expIndex = 200.0F + i;
            }
            return AecSuccess;
        }));
    ON_CALL(*m_factory.pArbitration, ArbitrateExposure(An<ArbitrationStreamInput*>(), _))
        .WillByDefault(Invoke([](ArbitrationStreamInput*, ArbitrationOutput* pOut) {
            for (UINT32 i = 0; i < 3; i++)
            {
                pOut->expSets[i].sensitivity = 5.0F * (i + 1);
            }
            return AecSuccess;
        }));
    StartStreaming();
    ASSERT_EQ(0, Process(1));
    ASSERT_EQ(0, SetMode(AECAlgoOperationModePreflash));
    ASSERT_EQ(0, QueryStart());

    // The new tables are twice as sensitive.
    Store().setSensitivity(2.0F);
    const FLOAT newIndices[3] = {190.0F, 191.0F, 192.0F};
    FLOAT       given[3]      = {};
    EXPECT_CALL(*m_factory.pArbitration, QuerySensitivity2ExpIndex(_, AECAlgoOperationModePreflash, _))
        .WillOnce(Invoke([&](const FLOAT* pSensitivities, AECAlgoOperationModeType, FLOAT* pIndices) {
            std::copy(pSensitivities, pSensitivities + 3, given);
            std::copy(newIndices, newIndices + 3, pIndices);
            return AecSuccess;
        }));
    const AECFrameHistory startBefore = *Store().getFrameHistory(0);

    // A store without metering tuning: the lux index is not compensated for the table sensitivity.
    CTestTuningStore tuningStore;
    m_pTuningManager            = &tuningStore;
    const Selector selectors[7] = {{0, 0}, {1, 1}, {2, 0}, {3, 0}, {4, 0}, {5, 0}, {6, 0}};
    EXPECT_EQ(0, SetTuning(selectors, 7));

    EXPECT_THAT(given, ElementsAre(5.0F, 10.0F, 15.0F));
    AECModeHistory history;
    ASSERT_TRUE(Store().getPrevModeHistory(&history));
    EXPECT_THAT(history.lastFrame.expIndices, ElementsAre(190.0F, 191.0F, 192.0F));
    EXPECT_THAT(history.lastFrameOrig.expIndices, ElementsAre(200.0F, 201.0F, 202.0F));
    EXPECT_FLOAT_EQ(300.0F - (202.0F - 192.0F), history.lastFrame.luxIndex);
    EXPECT_EQ(1u, m_logs.Count("EI:2, Prev:202.0 New:192.0"));
    EXPECT_EQ(1u, m_logs.Count("Lux Prev:300.0 New:290.0"));

    const FLOAT offset = static_cast<FLOAT>(std::log10(0.5) * IndexPerLog10);
    const AECFrameHistory* pStart = Store().getFrameHistory(0);
    ASSERT_NE(nullptr, pStart);
    EXPECT_FLOAT_EQ(startBefore.expIndices[2] + offset, pStart->expIndices[2]);
    EXPECT_FLOAT_EQ(startBefore.expIndicesTargets[0] + offset, pStart->expIndicesTargets[0]);
    EXPECT_FLOAT_EQ(startBefore.luxIndex + offset, pStart->luxIndex);
    EXPECT_FLOAT_EQ(2.0F, pStart->tableSensitivity);
    EXPECT_EQ(1u, m_logs.CountContaining("table sensitivity has changed: adding offset -23.4 curr SI 2.0 frame SI 1.0"));
}

// ---- Lens state ----

struct IrisTableSource
{
    INT32           zoom[2]     = {10, 20};
    FLOAT           fn[2][3]    = {{1.4F, 2.0F, 2.8F}, {1.8F, 2.4F, 3.2F}};
    UINT32          step[2][3]  = {{0, 50, 100}, {5, 55, 105}};
    FLOAT*          fnRows[2]   = {fn[0], fn[1]};
    UINT32*         stepRows[2] = {step[0], step[1]};
    LDMIrisTableData table      = {2, 3, zoom, fnRows, stepRows};
};

LDMSetAECInputMotorInfo PIrisLens(LDMIrisTableData* pTable, UINT32 microSteps)
{
    LDMSetAECInputMotorInfo info                  = {};
    info.LensCap.PIris                            = 1;
    info.MotorSystemConfig.microStepPerMotorFullStep = microSteps;
    info.DeviceCharacData.pIrisTable              = pTable;
    return info;
}

TEST_F(CoreSetInputTest, LensWithoutPIrisOnlyTellsItsCapabilities)
{
    IrisTableSource         source;
    LDMSetAECInputMotorInfo info = PIrisLens(&source.table, 8);
    info.LensCap.PIris           = 0;
    info.LensCap.zoom            = 1;
    EXPECT_CALL(*m_factory.pArbitration, OnLDMIrisTable(_)).Times(0);
    EXPECT_CALL(*m_factory.pIrisCtrl, OnLDMIrisTable(_)).Times(0);
    EXPECT_EQ(0, SetLens(info));
    EXPECT_EQ(1, CAECCoreTestPeer::LensCap(Core()).zoom);
}

TEST_F(CoreSetInputTest, LensStateTwiceKeepsTheFirstMotorConfigurationAndADeepCopyOfTheFirstTable)
{
    IrisTableSource  source;
    LDMIrisTableData toArbitration = {};
    LDMIrisTableData toIris        = {};
    EXPECT_CALL(*m_factory.pArbitration, OnLDMIrisTable(_)).WillOnce(DoAll(SaveArg<0>(&toArbitration), Return(AecSuccess)));
    EXPECT_CALL(*m_factory.pIrisCtrl, OnLDMIrisTable(_)).WillOnce(DoAll(SaveArg<0>(&toIris), Return(AecSuccess)));
    EXPECT_EQ(0, SetLens(PIrisLens(&source.table, 8)));

    IrisTableSource other;
    other.fn[0][0] = 9.0F;
    EXPECT_EQ(0, SetLens(PIrisLens(&other.table, 16)));

    ASSERT_EQ(2u, toArbitration.irisTableZoomSize);
    ASSERT_EQ(3u, toArbitration.irisTableIrisSize);
    EXPECT_EQ(toArbitration.irisFnTable, toIris.irisFnTable);
    EXPECT_NE(source.table.zoomTable, toArbitration.zoomTable);
    EXPECT_NE(source.table.irisFnTable, toArbitration.irisFnTable);
    EXPECT_NE(source.table.irisFnTable[1], toArbitration.irisFnTable[1]);
    EXPECT_NE(source.table.irisStepTable[1], toArbitration.irisStepTable[1]);

    // The lens driver's table may go away: the copy stays as it was.
    source.fn[1][2]   = 0.0F;
    source.step[0][1] = 0;
    source.zoom[1]    = 0;
    EXPECT_EQ(20, toArbitration.zoomTable[1]);
    EXPECT_FLOAT_EQ(1.4F, toArbitration.irisFnTable[0][0]);
    EXPECT_FLOAT_EQ(3.2F, toArbitration.irisFnTable[1][2]);
    EXPECT_EQ(50u, toArbitration.irisStepTable[0][1]);
    EXPECT_EQ(105u, toArbitration.irisStepTable[1][2]);

    StartStreaming();
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(8u, CAECCoreTestPeer::IrisIn(Core()).motorSysConfig.microStepPerMotorFullStep);
    EXPECT_EQ(1, CAECCoreTestPeer::IrisIn(Core()).lensCap.PIris);
}

TEST_F(CoreSetInputTest, LensStateWithoutATableTakesTheMotorAndCopiesTheTableLater)
{
    EXPECT_CALL(*m_factory.pArbitration, OnLDMIrisTable(_)).Times(1);
    EXPECT_CALL(*m_factory.pIrisCtrl, OnLDMIrisTable(_)).Times(1);
    EXPECT_EQ(0, SetLens(PIrisLens(nullptr, 8)));
    IrisTableSource source;
    EXPECT_EQ(0, SetLens(PIrisLens(&source.table, 16)));
    StartStreaming();
    ASSERT_EQ(0, Process(1));
    EXPECT_EQ(8u, CAECCoreTestPeer::IrisIn(Core()).motorSysConfig.microStepPerMotorFullStep);
}

TEST_F(CoreSetInputTest, IrisTablesThatCannotBeReadAreRefused)
{
    EXPECT_CALL(*m_factory.pArbitration, OnLDMIrisTable(_)).Times(0);
    EXPECT_CALL(*m_factory.pIrisCtrl, OnLDMIrisTable(_)).Times(0);

    IrisTableSource empty;
    empty.table.irisTableIrisSize = 0;
    EXPECT_EQ(0, SetLens(PIrisLens(&empty.table, 8)));
    EXPECT_EQ(1u, m_logs.Count("Iris table refused: sizes 2 x 0 or its rows are missing"));

    IrisTableSource holed;
    holed.stepRows[1] = nullptr;
    EXPECT_EQ(0, SetLens(PIrisLens(&holed.table, 8)));
    EXPECT_EQ(1u, m_logs.Count("Iris table refused: sizes 2 x 3 or its rows are missing"));

    IrisTableSource noZoom;
    noZoom.table.zoomTable = nullptr;
    EXPECT_EQ(0, SetLens(PIrisLens(&noZoom.table, 8)));
    EXPECT_EQ(2u, m_logs.Count("Iris table refused: sizes 2 x 3 or its rows are missing"));
}

} // namespace
