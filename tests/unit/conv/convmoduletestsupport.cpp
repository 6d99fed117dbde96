// Fixture of the convergence module tests.
#include "unit/conv/convmoduletestsupport.h"

#include <cstring>

#include "platform/statslogger.h"

using ::testing::_;
using ::testing::Invoke;
using ::testing::Return;

std::vector<std::string>& ConvLogs()
{
    return CoreLogCapture::Lines();
}

BOOL ConvLogContains(const std::string& text)
{
    return (CoreLogCapture::CountContaining(text) > 0) ? TRUE : FALSE;
}

VOID ConvModuleTest::SetUp()
{
    m_pLogs = std::make_unique<CoreLogCapture>();

    // No tuning store: the adapter serves the embedded default tuning, which the tests may change.
    StatsTuningData tuning = {};
    m_adapter.SetSorenta(&tuning, &m_pTuning);
    // The module tests tune the video converger for streaming; UseFastConverger switches to the proportional one.
    Conv().algoSelect = aecConvergence::AECConvSlowConv;

    SetHistory(100.0F, 100.0F, 100.0F);
    m_prevMode = AECModeHistory();
    std::memset(&m_ev, 0, sizeof(m_ev));
    m_ev.capabilities.minEV      = -4;
    m_ev.capabilities.maxEV      = 4;
    m_ev.capabilities.stepsPerEV = 6;
    std::memset(&m_lock, 0, sizeof(m_lock));
    m_lock.lockState      = AECAlgoLockOFF;
    m_lock.bIsEVReflected = TRUE;
    std::memset(&m_limit, 0, sizeof(m_limit));
    m_limit.exposureLimitation.expIndex.min = 0.0F;
    m_limit.exposureLimitation.expIndex.max = 400.0F;
    std::memset(&m_touch, 0, sizeof(m_touch));
    m_pFace = std::make_unique<FaceROIProcInfo>();
    std::memset(&m_start, 0, sizeof(m_start));
    m_start.startMode = AECAlgoStartupModeNormal;
    std::memset(&m_override, 0, sizeof(m_override));
    std::memset(&m_gyro, 0, sizeof(m_gyro));
    m_pDebugData = std::make_unique<AECDebugData>();
    std::memset(m_pDebugData.get(), 0, sizeof(AECDebugData));

    ON_CALL(m_context, getConvTuning()).WillByDefault(Invoke([this]() { return &m_pTuning->convTuningData; }));
    ON_CALL(m_context, getMtrTuning()).WillByDefault(Invoke([this]() { return &m_pTuning->mtrTuningData; }));
    ON_CALL(m_context, getExtTuning()).WillByDefault(Invoke([this]() { return &m_pTuning->extTuningData; }));
    ON_CALL(m_context, getOperationMode()).WillByDefault(Invoke([this]() { return m_opMode; }));
    ON_CALL(m_context, getExposureType()).WillByDefault(Invoke([this]() { return m_exposureType; }));
    ON_CALL(m_context, getEVInfo()).WillByDefault(Return(&m_ev));
    ON_CALL(m_context, getLockContext()).WillByDefault(Return(&m_lock));
    ON_CALL(m_context, getExposureLimitation()).WillByDefault(Return(&m_limit));
    ON_CALL(m_context, getTouchROI()).WillByDefault(Return(&m_touch));
    ON_CALL(m_context, getFaceROI()).WillByDefault(Invoke([this]() { return m_pFace.get(); }));
    ON_CALL(m_context, getStartUpExpIndex()).WillByDefault(Return(&m_start));
    ON_CALL(m_context, getOverrideSetting()).WillByDefault(Return(&m_override));
    ON_CALL(m_context, getGyroInfo()).WillByDefault(Return(&m_gyro));
    ON_CALL(m_context, getDebugData()).WillByDefault(Invoke([this]() { return m_pDebugData.get(); }));
    ON_CALL(m_context, getDebugDataEnable()).WillByDefault(Invoke([this]() { return m_debugEnable; }));
    ON_CALL(m_context, getConvFrameSkipCounter()).WillByDefault(Invoke([this]() { return m_skipCounter; }));
    ON_CALL(m_context, getPostRawGain()).WillByDefault(Invoke([this]() { return m_postRawGain; }));
    ON_CALL(m_context, getPostRawCounter()).WillByDefault(Invoke([this]() { return m_postRawCounter; }));
    ON_CALL(m_context, getPipelineDelay()).WillByDefault(Invoke([this]() { return m_pipelineDelay; }));
    ON_CALL(m_context, getHDR3Enable()).WillByDefault(Invoke([this]() { return m_hdr3; }));
    ON_CALL(m_context, getDynamicConvergenceSpeed()).WillByDefault(Invoke([this]() { return m_dynamicSpeed; }));
    ON_CALL(m_context, getCurrentFPS()).WillByDefault(Invoke([this]() { return m_fps; }));
    ON_CALL(m_context, getFlashMeasIndex()).WillByDefault(Invoke([this]() { return m_flashMeasIndex; }));
    ON_CALL(m_context, getFlashMeasKind()).WillByDefault(Invoke([this]() { return m_flashMeasKind; }));
    ON_CALL(m_context, getFrameHistory(_)).WillByDefault(Invoke([this](UINT8 offset) -> const AECFrameHistory* {
        return ((FALSE != m_noHistory) || (offset >= HistoryDepth)) ? nullptr : &m_history[offset];
    }));
    ON_CALL(m_context, getPrevModeHistory(_)).WillByDefault(Invoke([this](AECModeHistory* pHistory) {
        if (nullptr != pHistory)
        {
            *pHistory = m_prevMode;
        }
        return m_prevMode.isValid;
    }));

    MakeModule();
}

VOID ConvModuleTest::TearDown()
{
    m_pModule.reset();
    m_pLogs.reset();
}

VOID ConvModuleTest::MakeModule()
{
    m_pModule.reset();
    m_pModule = std::make_unique<CAECModConvergence>(&m_context, &m_callback);
}

VOID ConvModuleTest::SetHistory(FLOAT shortIndex, FLOAT longIndex, FLOAT safeIndex, BOOL isStart)
{
    for (AECFrameHistory& rEntry : m_history)
    {
        rEntry                                             = AECFrameHistory();
        rEntry.isStartConfig                               = isStart;
        rEntry.expIndices[AECAlgoExposureShort]            = shortIndex;
        rEntry.expIndices[AECAlgoExposureLong]             = longIndex;
        rEntry.expIndices[AECAlgoExposureSafe]             = safeIndex;
        rEntry.FPS                                         = 30.0F;
    }
}

VOID ConvModuleTest::UseFastConverger()
{
    Conv().algoSelect                 = aecConvergence::AECConvFastConv;
    Conv().torchConv.enableTorchOffOn = FALSE;
    Conv().torchConv.enableTorchOnOff = FALSE;
}

AecResult ConvModuleTest::SetMode(AECAlgoOperationModeType mode)
{
    m_opMode = mode;
    return m_pModule->OnOperationModeChange();
}

ConvergenceOutput ConvModuleTest::Frame(FLOAT target, AECAlgoSettleFlagType settleType)
{
    const FLOAT targets[AECAlgoExposureCount] = {target, target, target};
    return Frame(targets, settleType);
}

ConvergenceOutput ConvModuleTest::Frame(const FLOAT* pTargets, AECAlgoSettleFlagType settleType)
{
    ConvergenceInput input = {};
    input.pTargetIndices   = pTargets;
    input.settleType       = settleType;
    input.avgLuma          = 50.0F;
    ConvergenceOutput output;
    EXPECT_EQ(AecSuccess, m_pModule->ConvergeFrameExposure(&input, &output));
    return output;
}

VOID ConvModuleTest::SetEV(INT32 uiSteps)
{
    m_ev.EVUIVal = uiSteps;
    m_ev.EV      = static_cast<FLOAT>(uiSteps) / static_cast<FLOAT>(m_ev.capabilities.stepsPerEV);
    EXPECT_EQ(AecSuccess, m_pModule->OnExposureCompChange());
}
