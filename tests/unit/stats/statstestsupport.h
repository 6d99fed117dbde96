// Shared fixture of the statistics parser tests: tuning, log capture, processor and access to the result records.
#ifndef TESTS_UNIT_STATS_STATSTESTSUPPORT_H
#define TESTS_UNIT_STATS_STATSTESTSUPPORT_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "aecdefaulttuning.h"
#include "support/corelogcapture.h"
#include "support/syntheticstats.h"

// Reads the private result records of the processed statistics.
class CProcessedStatsTestAccess
{
public:
    static const BGProcResult& BG(CStatsProcessor& p) { return Stats(p).m_BGRes; }
    static const BGProcResult& BGLEF(CStatsProcessor& p) { return Stats(p).m_BGLEFRes; }
    static const BHistProcResult& BHist(CStatsProcessor& p) { return Stats(p).m_BHistRes; }
    static const BHistProcResult& BHistLEF(CStatsProcessor& p) { return Stats(p).m_BHistLEFRes; }
    static const HDR3HistProcResult& HDR3(CStatsProcessor& p) { return Stats(p).m_HDR3HistRes; }
    // Lets a test clear the parsed marks, so that the one-region parse runs again.
    static BGProcResult& MutableBG(CStatsProcessor& p) { return Stats(p).m_BGRes; }

private:
    static CStatsProcessor::CProcessedStats& Stats(CStatsProcessor& p)
    {
        return *static_cast<CStatsProcessor::CProcessedStats*>(p.GetStatsProcessingResult());
    }
};

// Every log line of the core while a test runs.
std::vector<std::string>& CapturedLogs();
BOOL LogContains(const std::string& text);

class StatsTest : public ::testing::Test
{
protected:
    VOID SetUp() override;
    VOID TearDown() override;

    // Builds the statistics of a described image and runs one frame.
    AecResult Run(CSyntheticStats& image, FLOAT drcGain = 1.0f);
    AecResult Run(const AECStatistics& stats, FLOAT drcGain = 1.0f);
    std::unique_ptr<CSyntheticStats> Image(UINT32 h, UINT32 v, UINT16 bitDepth = 10,
                                           SyntheticLayout layout = SyntheticLayout::RGGB, BOOL sat = FALSE,
                                           UINT32 regionW = 32, UINT32 regionH = 32);
    IProcessedStats* View() { return m_pProc->GetStatsProcessingResult(); }

    aecMetering::AECCoreMeteringType         m_core;
    aecSensorConfig::AECSensorHDRConfig      m_sensorHDR;
    MeteringTuningDataType                   m_tuning;
    AECAlgoWhiteBalanceState                 m_wb;
    std::unique_ptr<CStatsProcessor>         m_pProc;
    std::unique_ptr<AECStatistics>           m_pStats;
    std::unique_ptr<CoreLogCapture>          m_pLogs; // installed from SetUp to TearDown
};

#endif // TESTS_UNIT_STATS_STATSTESTSUPPORT_H
