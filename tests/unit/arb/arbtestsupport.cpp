// Fixture of the arbitration tests: the mocked state store answers from the fixture's members.
#include "unit/arb/arbtestsupport.h"

#include <cstring>

using ::testing::_;
using ::testing::Invoke;
using ::testing::Return;

VOID RecordingArbitrationCallback::setSensitivity(FLOAT sensitivity)
{
    m_published.streamingExpTblSens = sensitivity;
    m_sensitivityCalls++;
}

VOID RecordingArbitrationCallback::SetStreamingLimitation(ExposureLimitationType* pLimitation)
{
    m_published.exposureLimitation = *pLimitation;
    m_limitationCalls++;
}

VOID RecordingArbitrationCallback::SetSHDRStreamingLimitation(ExposureLimitationType* pLimitations)
{
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        m_published.exposureShdrLimitation[i] = pLimitations[i];
    }
}

VOID RecordingArbitrationCallback::SetCurentFPS(FLOAT FPS)
{
    m_published.currentFPS = FPS;
    m_FPSCalls++;
}

VOID RecordingArbitrationCallback::SetExpTableIdxOffsets(FLOAT* pStreamOffsets, FLOAT* pStillOffsets)
{
    std::memcpy(m_published.streamModeExpIdxOffsets, pStreamOffsets, sizeof(m_published.streamModeExpIdxOffsets));
    // Only the snapshot kinds carry still offsets.
    std::memcpy(m_published.stillModeExpIdxOffsets, pStillOffsets, 4 * sizeof(FLOAT));
    m_offsetCalls++;
}

VOID RecordingArbitrationCallback::SetStreamingMinExpIndexForATB(FLOAT minExpIndex)
{
    m_published.streamingMinExpIndexForATB = minExpIndex;
    m_ATBCalls++;
}

TestIrisTable::TestIrisTable(std::initializer_list<INT32> zoomSteps,
                             std::initializer_list<std::initializer_list<FLOAT>> rows)
    : m_zoom(zoomSteps)
{
    for (const auto& rRow : rows)
    {
        m_fn.emplace_back(rRow);
        m_steps.emplace_back(rRow.size(), 0U);
    }
    for (size_t i = 0; i < m_fn.size(); i++)
    {
        for (size_t j = 0; j < m_steps[i].size(); j++)
        {
            m_steps[i][j] = static_cast<UINT32>(j * 10U);
        }
        m_fnRows.push_back(m_fn[i].data());
        m_stepRows.push_back(m_steps[i].data());
    }
}

LDMIrisTableData TestIrisTable::Data()
{
    LDMIrisTableData data  = {};
    data.irisTableZoomSize = static_cast<UINT32>(m_zoom.size());
    data.irisTableIrisSize = m_fn.empty() ? 0U : static_cast<UINT32>(m_fn[0].size());
    data.zoomTable         = m_zoom.data();
    data.irisFnTable       = m_fnRows.data();
    data.irisStepTable     = m_stepRows.data();
    return data;
}

BOOL ArbLogContains(const std::string& text)
{
    return (CoreLogCapture::CountContaining(text) > 0) ? TRUE : FALSE;
}

aecArbitration::AECCoreArbitrationType* ArbitrationTest::ArbCore() const
{
    return Modules().modArb;
}

VOID ArbitrationTest::SetUp()
{
    m_pLogs = std::make_unique<CoreLogCapture>();

    // No tuning store: the adapter serves the embedded default tuning, whose records the tests may change.
    StatsTuningData tuning = {};
    m_adapter.SetSorenta(&tuning, &m_pTuning);

    m_pDebugData = std::make_unique<AECDebugData>();
    std::memset(m_pDebugData.get(), 0, sizeof(AECDebugData));

    m_sensorInfo.fNumber              = 2.0F;
    m_sensorInfo.minimumStreamGain    = 1.0F;
    m_sensorInfo.maximumStreamGain    = 64.0F;
    m_sensorInfo.minimumStillGain     = 1.0F;
    m_sensorInfo.maximumStillGain     = 64.0F;
    m_sensorInfo.minimumStreamExpTime = 10000U;
    m_sensorInfo.maximumStreamExpTime = 1000000000U;
    m_sensorInfo.minimumStillExpTime  = 10000U;
    m_sensorInfo.maximumStillExpTime  = 1000000000U;
    m_sensorInfo.minSEFExpTime        = 10000U;
    m_sensorInfo.maxSEFExpTime        = 33000000U;
    m_sensorInfo.minMEFExpTime        = 10000U;
    m_sensorInfo.maxMEFExpTime        = 33000000U;
    m_sensorInfo.minLEFExpTime        = 10000U;
    m_sensorInfo.maxLEFExpTime        = 33000000U;

    m_sensorLimits.gain       = {1.0F, 64.0F};
    m_sensorLimits.expTime    = {10000U, 1000000000U};
    m_sensorLimits.SEFexpTime = {10000U, 33000000U};
    m_sensorLimits.MEFexpTime = {10000U, 33000000U};
    m_sensorLimits.LEFexpTime = {10000U, 33000000U};

    m_manual.manualMode = AECAlgoModeAuto;
    for (AECFrameHistory& rEntry : m_history)
    {
        rEntry = AECFrameHistory();
    }

    ON_CALL(m_context, getArbTuning()).WillByDefault(Invoke([this]() { return &m_pTuning->arbTuningData; }));
    ON_CALL(m_context, getMtrTuning()).WillByDefault(Invoke([this]() { return &m_pTuning->mtrTuningData; }));
    ON_CALL(m_context, getConvTuning()).WillByDefault(Invoke([this]() { return &m_pTuning->convTuningData; }));
    ON_CALL(m_context, getExtTuning()).WillByDefault(Invoke([this]() { return &m_pTuning->extTuningData; }));
    ON_CALL(m_context, getOperationMode()).WillByDefault(Invoke([this]() { return m_opMode; }));
    ON_CALL(m_context, getFlickerCompMode()).WillByDefault(Invoke([this]() { return m_flickerMode; }));
    ON_CALL(m_context, getMinFPS()).WillByDefault(Invoke([this]() { return m_minFPS; }));
    ON_CALL(m_context, getMaxFPS()).WillByDefault(Invoke([this]() { return m_maxFPS; }));
    ON_CALL(m_context, getPWMFrequency()).WillByDefault(Invoke([this]() { return m_PWMFrequency; }));
    ON_CALL(m_context, getHDR3Enable()).WillByDefault(Invoke([this]() { return m_HDR3Enable; }));
    ON_CALL(m_context, getRealDRCGainHDR3()).WillByDefault(Invoke([this]() { return m_realDRCGain; }));
    ON_CALL(m_context, getDRCEnable()).WillByDefault(Invoke([this]() { return m_DRCEnable; }));
    ON_CALL(m_context, getSensorInfo()).WillByDefault(Return(&m_sensorInfo));
    ON_CALL(m_context, getManualSetting()).WillByDefault(Return(&m_manual));
    ON_CALL(m_context, getGyroInfo()).WillByDefault(Return(&m_gyro));
    ON_CALL(m_context, getExposureLimitation()).WillByDefault(Return(&m_published));
    ON_CALL(m_context, getOverrideSetting()).WillByDefault(Return(&m_override));
    ON_CALL(m_context, getDCCalibrationInfo()).WillByDefault(Invoke([this]() { return m_calibration; }));
    ON_CALL(m_context, getMyOwnInfo()).WillByDefault(Return(&m_own));
    ON_CALL(m_context, getPeerInfo()).WillByDefault(Invoke([this]() -> const AECMultiCamInfo* {
        return (TRUE == m_hasPeer) ? &m_peer : nullptr;
    }));
    ON_CALL(m_context, getFrameHistory(_)).WillByDefault(Invoke([this](UINT8 offset) -> const AECFrameHistory* {
        return ((TRUE == m_hasHistory) && (offset < 4U)) ? &m_history[offset] : nullptr;
    }));
    ON_CALL(m_context, getDebugDataEnable()).WillByDefault(Invoke([this]() { return m_debugEnable; }));
    ON_CALL(m_context, getDebugData()).WillByDefault(Invoke([this]() { return m_pDebugData.get(); }));
    ON_CALL(m_context, getCustomExposureTableInfo()).WillByDefault(Return(&m_customTable));
    ON_CALL(m_context, getExposureTableFromTableID(_))
        .WillByDefault(Invoke([this](aecglobalelements::ExposureTableIDType tableID) -> aecArbitration::ExposureTableType* {
            if ((CustomExposureTableID == tableID) && (TRUE == m_customTable.isValid))
            {
                return &m_customTable.expTable;
            }
            aecArbitration::AECCoreArbitrationType* pCore = ArbCore();
            if ((nullptr == pCore) || (0U == pCore->expTablesCount))
            {
                return nullptr;
            }
            const BOOL known = (tableID >= 0) && (static_cast<UINT32>(tableID) < pCore->expTablesCount);
            return &pCore->expTables[(TRUE == known) ? tableID : 0];
        }));
}

VOID ArbitrationTest::TearDown()
{
    m_pLogs.reset();
}

std::unique_ptr<CArbitrator> ArbitrationTest::MakeArbitrator(aecglobalelements::ExposureTableIDType tableID,
                                                             BOOL withSensorLimits)
{
    auto pArb = std::make_unique<CArbitrator>(&m_context);
    pArb->Initialize();
    pArb->SetTuning(&m_pTuning->arbTuningData);
    FLOAT sensitivity = 0.0F;
    pArb->SetExpTable(tableID, &sensitivity);
    if (TRUE == withSensorLimits)
    {
        pArb->SetSensorLimits(&m_sensorLimits);
    }
    return pArb;
}
