// Frame entry of the statistics parser: checks, white-balance state and the fixed order of the grid and histogram paths.
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"

#include <cstring>

#include "platform/statslogger.h"

CStatsProcessor::CStatsProcessor()
{
    Initialize();
}

VOID CStatsProcessor::Initialize()
{
    m_pTuning = nullptr;
    std::memset(&m_wbState, 0, sizeof(m_wbState));
    m_wbState.redGain         = 1.0f;
    m_wbState.greenGain       = 1.0f;
    m_wbState.blueGain        = 1.0f;
    m_pInputStats             = nullptr;
    m_MultiExposureSensorMode = HDRDisabled;
    m_HDR3Type                = HDR3ExposureTypeUnknown;
    m_DRCGainHDR3             = 1.0f;
    m_BGProc                  = {};
    m_BGProcLEF               = {};
    m_BGProcMEF               = {};
    m_BHistProc               = {};
    m_HDR3HistProc            = {};
    m_BGProc.SWSubsmplFactor  = 1;
    m_ProcessedStats.Initialize();
}

VOID CStatsProcessor::SetTuning(const MeteringTuningDataType* pTuning)
{
    if (nullptr != pTuning)
    {
        m_pTuning = pTuning;
    }
}

UINT32 CStatsProcessor::LumaCalculationConfig() const
{
    // Without a sensor HDR module the grid has priority, as in the tuning's default.
    return ((nullptr != m_pTuning) && (nullptr != m_pTuning->pSensorHDR))
               ? static_cast<UINT32>(m_pTuning->pSensorHDR->LumaCalculationConfig)
               : static_cast<UINT32>(aecSensorConfig::LumaCalculationTypeGridPrio);
}

BOOL CStatsProcessor::IsHDR3GridCase() const
{
    return ((SensorHDR == m_MultiExposureSensorMode) && (HDR3ExposureType2 == m_HDR3Type) &&
            (aecSensorConfig::LumaCalculationTypeGridPrio == LumaCalculationConfig()))
               ? TRUE
               : FALSE;
}

AecResult CStatsProcessor::ProcessStats(const AECStatistics* pStats, const AECAlgoWhiteBalanceState* pAWBGains,
                                        FLOAT DRCGainHDR3)
{
    if (nullptr == pStats)
    {
        AEC_LOG_ERROR("%s pointer is null!", "Stats");
        return AecError;
    }
    if (nullptr == pAWBGains)
    {
        AEC_LOG_ERROR("%s pointer is null!", "AWBGain");
        return AecError;
    }
    if ((nullptr == m_pTuning) || (nullptr == m_pTuning->pCore))
    {
        AEC_LOG_ERROR("Metering tuning is not set! Skip stats processing !");
        return AecError;
    }
    if ((StatisticsStartUpInvalid == pStats->bayerHist.startupMode) ||
        (StatisticsStartUpInvalid == pStats->bayerGrid.startupMode) ||
        (StatisticsStartUpInvalid == pStats->hdr3Stats.startupMode) ||
        (StatisticsStartUpInvalid == pStats->hdrBayerHist.startupMode) ||
        (StatisticsStartUpInvalid == pStats->nonUniformBayerHist.startupMode))
    {
        AEC_LOG_WARN("Camera is in startup mode ! Skip stats processing !");
        return AecError;
    }

    m_wbState     = *pAWBGains;
    m_pInputStats = pStats;
    m_HDR3Type    = pStats->hdr3Stats.HDR3ExposureType;
    // A non-positive compensation gain would turn every luma infinite or negative.
    if (!(DRCGainHDR3 > 0.0f))
    {
        AEC_LOG_WARN("Invalid DRC gain %f, using 1.0", static_cast<double>(DRCGainHDR3));
        DRCGainHDR3 = 1.0f;
    }
    m_DRCGainHDR3 = DRCGainHDR3;

    AecResult result = ProcessBGStats();
    if (AecSuccess == result)
    {
        result = ProcessLEFBGStats();
    }
    if (AecSuccess == result)
    {
        result = ProcessMEFBGStats();
    }
    if (AecSuccess == result)
    {
        result = ProcessBHistStats();
    }
    if (AecSuccess == result)
    {
        result = ProcessSHDRLEFStats();
    }
    if (AecSuccess == result)
    {
        result = ProcessSHDRMEFStats();
    }
    if (AecSuccess == result)
    {
        result = ProcessHDR3Stats();
    }
    return result;
}

VOID CStatsProcessor::ReprocessBGStats(BGStatsIterationMode itrMode, FLOAT ULx, FLOAT ULy, FLOAT LRx, FLOAT LRy)
{
    if (nullptr == m_pInputStats)
    {
        AEC_LOG_WARN("No statistics frame to reprocess");
        return;
    }
    BGStatsIteratorInternal it(&m_ProcessedStats.m_BGRes, itrMode, ULx, ULy, LRx, LRy);
    while (FALSE != it.HasNext())
    {
        const UINT32 pos = it.NextInternal();
        if (AecSuccess == ProcessBGStatsRegion(pos))
        {
            CountRegion(m_ProcessedStats.m_BGRes.BGRegions[pos]);
        }
    }
}
