// IR luma placeholder of the streaming list.
#include "aec/core/modules/mod_mtr/cirlumacalculator.h"

#include "platform/statslogger.h"

namespace
{
constexpr FLOAT NoIrLuma = -1.0f;
}

CIrLumaCalculator::CIrLumaCalculator(CStatsProcessor* pStatsProc)
    : IAECLumaCalculator(pStatsProc)
{
    Initialize();
}

VOID CIrLumaCalculator::Initialize()
{
    m_pTuning  = nullptr;
    m_irLuma   = NoIrLuma;
    m_LuxIndex = 0.0f;
}

AecResult CIrLumaCalculator::calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult))
    {
        AEC_LOG_ERROR("ir luma: missing input or result");
        return AecError;
    }
    m_pTuning                  = pInput->pTuning;
    m_LuxIndex                 = pResult->luxIndex;
    m_irLuma                   = NoIrLuma;
    pResult->VisibleLightRatio = 1.0f;
    pResult->irLuma            = m_irLuma;
    return AecSuccess;
}
