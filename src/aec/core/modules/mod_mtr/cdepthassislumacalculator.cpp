// Depth-assisted luma: reports that depth metering is off, every frame.
#include "aec/core/modules/mod_mtr/cdepthassislumacalculator.h"

#include <cstring>

#include "platform/statslogger.h"

CDepthAssisLumaCalculator::CDepthAssisLumaCalculator(CStatsProcessor* pStatsProc)
    : IAECLumaCalculator(pStatsProc)
{
    Initialize();
}

VOID CDepthAssisLumaCalculator::Initialize()
{
    std::memset(m_confidenceMap, 0, sizeof(m_confidenceMap));
    std::memset(m_distanceMap, 0, sizeof(m_distanceMap));
    std::memset(m_AFSelectMap, 0, sizeof(m_AFSelectMap));
    m_curDepthLumaMtrMode   = MtrModeDisabled;
    m_prevDepthLumaMtrMode  = MtrModeDisabled;
    m_validDepthLuma        = -1.0f;
    m_depthWeightAdjustment = 0.0f;
    m_curDepthLuma          = -1.0f;
}

AecResult CDepthAssisLumaCalculator::calculateLuma(const AECLumaCalcInput* /*pInput*/, AECLumaCalcResult* pResult)
{
    AEC_LOG_VERBOSE("Depth Luma Metering is disabled !");
    pResult->depthLuma   = -1.0f;
    pResult->depthWeight = 0.0f;
    AEC_LOG_VERBOSE("[In] frameLuma %f, [Estim] mode %d, curDepthLuma %f depthWeightAdjustment %f, [Out] depthLuma %f, "
                    "weight %f",
                    pResult->frameLuma, static_cast<INT32>(m_curDepthLumaMtrMode), m_curDepthLuma,
                    m_depthWeightAdjustment, pResult->depthLuma, pResult->depthWeight);
    return AecSuccess;
}
