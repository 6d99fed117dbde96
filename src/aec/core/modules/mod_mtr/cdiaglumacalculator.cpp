// Diagnostic luma over the central block of the metering grid.
#include "aec/core/modules/mod_mtr/cdiaglumacalculator.h"

#include <cmath>

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "aec/core/modules/mod_mtr/lumacalculatorutil.h"
#include "platform/statslogger.h"

CDiagLumaCalculator::CDiagLumaCalculator(CStatsProcessor* pStatsProc)
    : IAECLumaCalculator(pStatsProc)
{
    Initialize();
}

VOID CDiagLumaCalculator::Initialize()
{
    constexpr INT FirstCentral = 6;
    constexpr INT LastCentral  = 9;
    for (INT row = 0; row < MtrTableSide; row++)
    {
        for (INT col = 0; col < MtrTableSide; col++)
        {
            const BOOL central = ((row >= FirstCentral) && (row <= LastCentral) && (col >= FirstCentral) &&
                                  (col <= LastCentral))
                                     ? TRUE
                                     : FALSE;
            m_diagMTRTable[row * MtrTableSide + col] = (FALSE != central) ? 1.0f : 0.0f;
        }
    }
}

AecResult CDiagLumaCalculator::calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == m_pStatsProc))
    {
        AEC_LOG_ERROR("diag luma: missing input, result or statistics");
        return AecError;
    }
    pResult->diagLuma = MinFrameLuma;
    if (0 == pInput->enableDiag)
    {
        pResult->diagLuma = pResult->frameLuma;
        return AecSuccess;
    }

    BGStatsIterator it = m_pStatsProc->GetStatsProcessingResult()->GetBGStatsIterator(BGStatsIterationMode::Normal);
    FLOAT           lumaSum   = 0.0f;
    FLOAT           weightSum = 0.0f;
    while (FALSE != it.HasNext())
    {
        const ParsedBGRegionType* pRgn = it.Next();
        if (nullptr == pRgn)
        {
            break;
        }
        const FLOAT w = m_diagMTRTable[UtilGetMtrTableIndex(pRgn->xPos, pRgn->yPos)];
        lumaSum += pRgn->rgnLuma * w;
        weightSum += w;
    }
    if (std::fabs(weightSum) >= 1e-7f)
    {
        pResult->diagLuma = UtilClampFrameLuma(lumaSum / weightSum);
    }
    return AecSuccess;
}
