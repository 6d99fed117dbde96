// Fixture of the statistics parser tests.
#include "unit/stats/statstestsupport.h"

#include <cstring>

#include "platform/statslogger.h"

std::vector<std::string>& CapturedLogs()
{
    return CoreLogCapture::Lines();
}

BOOL LogContains(const std::string& text)
{
    return (CoreLogCapture::CountContaining(text) > 0) ? TRUE : FALSE;
}

VOID StatsTest::SetUp()
{
    m_pLogs = std::make_unique<CoreLogCapture>();
    FillDefaultAECCoreMeteringType(&m_core);
    m_core.mtrLumaCalc.lumaWeight.weight[0]                = 0.25f;
    m_core.mtrLumaCalc.lumaWeight.weight[1]                = 0.5f;
    m_core.mtrLumaCalc.lumaWeight.weight[2]                = 0.25f;
    m_core.mtrLumaCalc.lumaWeight.enableColorAndSensorComp = 0;
    m_core.mtrLumaCalc.indexCalc.bayerGridSubsmplSelect    = aecMetering::Off;
    FillDefaultAECSensorHDRConfig(&m_sensorHDR);
    std::memset(&m_tuning, 0, sizeof(m_tuning));
    m_tuning.pCore      = &m_core;
    m_tuning.pSensorHDR = &m_sensorHDR;
    std::memset(&m_wb, 0, sizeof(m_wb));
    m_wb.redGain   = 1.0f;
    m_wb.greenGain = 1.0f;
    m_wb.blueGain  = 1.0f;
    m_pProc        = std::make_unique<CStatsProcessor>();
    m_pProc->SetTuning(&m_tuning);
    m_pStats = std::make_unique<AECStatistics>();
    std::memset(m_pStats.get(), 0, sizeof(AECStatistics));
}

VOID StatsTest::TearDown()
{
    m_pLogs.reset();
}

AecResult StatsTest::Run(CSyntheticStats& image, FLOAT drcGain)
{
    image.Build();
    image.FillStatistics(m_pStats.get());
    return m_pProc->ProcessStats(m_pStats.get(), &m_wb, drcGain);
}

AecResult StatsTest::Run(const AECStatistics& stats, FLOAT drcGain)
{
    return m_pProc->ProcessStats(&stats, &m_wb, drcGain);
}

std::unique_ptr<CSyntheticStats> StatsTest::Image(UINT32 h, UINT32 v, UINT16 bitDepth, SyntheticLayout layout,
                                                  BOOL sat, UINT32 regionW, UINT32 regionH)
{
    return std::make_unique<CSyntheticStats>(h, v, regionW, regionH, bitDepth, layout, sat);
}
