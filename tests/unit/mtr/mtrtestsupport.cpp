// Fixture of the metering tests.
#include "unit/mtr/mtrtestsupport.h"

#include <cstring>

#include "platform/statslogger.h"

using ::testing::_;
using ::testing::Invoke;
using ::testing::Return;
using ::testing::ReturnRef;

std::vector<std::string>& MtrLogs()
{
    return CoreLogCapture::Lines();
}

BOOL MtrLogContains(const std::string& text)
{
    return (CoreLogCapture::CountContaining(text) > 0) ? TRUE : FALSE;
}

VOID MeteringTest::SetUp()
{
    m_pLogs = std::make_unique<CoreLogCapture>();

    // No tuning store: the adapter serves the embedded default tuning, whose records the tests may change.
    StatsTuningData tuning = {};
    m_adapter.SetSorenta(&tuning, &m_pTuning);

    std::memset(&m_wb, 0, sizeof(m_wb));
    m_wb.redGain   = 1.0f;
    m_wb.greenGain = 1.0f;
    m_wb.blueGain  = 1.0f;
    std::memset(&m_ev, 0, sizeof(m_ev));
    m_ev.capabilities.minEV      = -12;
    m_ev.capabilities.maxEV      = 12;
    m_ev.capabilities.stepsPerEV = 6;
    std::memset(&m_touch, 0, sizeof(m_touch));
    m_pFace = std::make_unique<FaceROIProcInfo>();
    std::memset(&m_arbLimit, 0, sizeof(m_arbLimit));
    m_arbLimit.streamingExpTblSens = 1.0f;
    std::memset(&m_bgbe, 0, sizeof(m_bgbe));
    m_bgbe.ROISelection = StatsROISelectionCroppedFOV;
    std::memset(&m_customTable, 0, sizeof(m_customTable));
    for (AECFrameHistory& entry : m_history)
    {
        entry = AECFrameHistory();
        for (UINT32 i = 0; i < AECAlgoExposureCount; ++i)
        {
            entry.expIndices[i]        = 200.0f;
            entry.expIndicesTargets[i] = 200.0f;
        }
        entry.luma     = 50.0f;
        entry.luxIndex = 200.0f;
    }

    ON_CALL(m_context, getMtrTuning()).WillByDefault(Return(&m_pTuning->mtrTuningData));
    ON_CALL(m_context, getConvTuning()).WillByDefault(Return(&m_pTuning->convTuningData));
    ON_CALL(m_context, getIRTuning()).WillByDefault(Return(&m_pTuning->IRTuningData));
    ON_CALL(m_context, getAWBState()).WillByDefault(Return(&m_wb));
    ON_CALL(m_context, getEVInfo()).WillByDefault(Return(&m_ev));
    ON_CALL(m_context, getTouchROI()).WillByDefault(Return(&m_touch));
    ON_CALL(m_context, getFaceROI()).WillByDefault(Invoke([this]() { return m_pFace.get(); }));
    ON_CALL(m_context, getExposureLimitation()).WillByDefault(Return(&m_arbLimit));
    ON_CALL(m_context, getBGBEConfig()).WillByDefault(Return(&m_bgbe));
    ON_CALL(m_context, getCustomMeteringTable()).WillByDefault(ReturnRef(m_customTable));
    ON_CALL(m_context, getPipelineDelay()).WillByDefault(Return(PipelineDelay));
    ON_CALL(m_context, getFrameHistory(_)).WillByDefault(Invoke([this](UINT8 offset) -> const AECFrameHistory* {
        return (offset < 4) ? &m_history[offset] : nullptr;
    }));
    ON_CALL(m_context, getOperationMode()).WillByDefault(Invoke([this]() { return m_opMode; }));
    ON_CALL(m_context, getMeteringMode()).WillByDefault(Invoke([this]() { return m_mtrMode; }));
    ON_CALL(m_context, getCompensationRatio()).WillByDefault(Invoke([this]() { return m_compensationRatio; }));
    ON_CALL(m_context, getExposureType()).WillByDefault(Return(AECAlgoExposureIndependent));
    ON_CALL(m_context, getMeteringType()).WillByDefault(Return(AECAlgoMeteringIndependent));
    ON_CALL(m_context, getMultiExposureSensorMode()).WillByDefault(Return(HDRDisabled));

    m_pProc = std::make_unique<CStatsProcessor>();
    ApplyTuning();
    m_pStats = std::make_unique<AECStatistics>();
    std::memset(m_pStats.get(), 0, sizeof(AECStatistics));
}

VOID MeteringTest::TearDown()
{
    m_pLogs.reset();
}

VOID MeteringTest::ApplyTuning()
{
    m_pProc->SetTuning(&m_pTuning->mtrTuningData);
}

std::unique_ptr<CSyntheticStats> MeteringTest::Image(UINT32 h, UINT32 v, UINT16 bitDepth, BOOL sat)
{
    return std::make_unique<CSyntheticStats>(h, v, 32, 32, bitDepth, SyntheticLayout::RGGB, sat);
}

AecResult MeteringTest::Parse(CSyntheticStats& image, FLOAT drcGain)
{
    image.Build();
    image.FillStatistics(m_pStats.get());
    return m_pProc->ProcessStats(m_pStats.get(), &m_wb, drcGain);
}

AECLumaCalcInput MeteringTest::LumaInput()
{
    AECLumaCalcInput input;
    std::memset(&input, 0, sizeof(input));
    const AECFrameHistory* pFrame = m_context.getFrameHistory(m_context.getPipelineDelay());
    input.matchingExpIndices      = pFrame->expIndices;
    input.mtrMode                 = m_context.getMeteringMode();
    input.pTuning                 = m_context.getMtrTuning();
    input.pTouchROIs              = m_context.getTouchROI();
    input.pFaceROIs               = m_context.getFaceROI();
    input.pArbitrationLimit       = m_context.getExposureLimitation();
    input.pBGBEConfig             = m_context.getBGBEConfig();
    input.pDepthInfo              = nullptr;
    input.PrevDRCGainHDR3         = 1.0f;
    input.irModeActivated         = static_cast<INT32>(pFrame->IRModeActivated);
    input.compensationRatio       = m_context.getCompensationRatio();
    return input;
}

AECTargetCalcInput MeteringTest::TargetInput(const AECLumaCalcResult* pLuma)
{
    AECTargetCalcInput input;
    std::memset(&input, 0, sizeof(input));
    input.pLumaCalcResult  = pLuma;
    input.pAWBGains        = m_context.getAWBState();
    input.pTuning          = m_context.getMtrTuning();
    input.pEV              = m_context.getEVInfo();
    input.maxUnderexposure = 1.0f;
    input.pFast            = &m_pTuning->convTuningData.pCore->fastConv;
    input.pIrTuning        = m_context.getIRTuning();
    return input;
}
