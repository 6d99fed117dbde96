// SHDR luma over a 9 x 13 weight table that leaves out the outermost ring of the frame.
#include "aec/core/modules/mod_mtr/cshdrlumacalculator.h"

#include <algorithm>
#include <cmath>

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "aec/core/modules/mod_mtr/lumacalculatorutil.h"
#include "platform/statslogger.h"

namespace
{
// 1 inside, 0 on row 0, row 8, column 0 and column 12.
constexpr FLOAT ShdrWeight(INT row, INT col)
{
    return ((0 == row) || ((CShdrLumaCalculator::WeightRows - 1) == row) || (0 == col) ||
            ((CShdrLumaCalculator::WeightCols - 1) == col))
               ? 0.0f
               : 1.0f;
}

struct ShdrWeightTable
{
    FLOAT weights[CShdrLumaCalculator::WeightRows * CShdrLumaCalculator::WeightCols];

    constexpr ShdrWeightTable()
        : weights()
    {
        for (INT row = 0; row < CShdrLumaCalculator::WeightRows; row++)
        {
            for (INT col = 0; col < CShdrLumaCalculator::WeightCols; col++)
            {
                weights[row * CShdrLumaCalculator::WeightCols + col] = ShdrWeight(row, col);
            }
        }
    }
};

constexpr ShdrWeightTable ShdrTable;
} // namespace

CShdrLumaCalculator::CShdrLumaCalculator(CStatsProcessor* pStatsProc)
    : IAECLumaCalculator(pStatsProc)
{
    Initialize();
}

VOID CShdrLumaCalculator::Initialize()
{
    m_pTuning  = nullptr;
    m_shdrLuma = 0.0f;
    m_LuxIndex = 0.0f;
}

AecResult CShdrLumaCalculator::calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == pInput->pTuning) ||
        (nullptr == pInput->pTuning->pShdr) || (nullptr == m_pStatsProc))
    {
        AEC_LOG_ERROR("shdr luma: missing input, SHDR tuning or statistics");
        return AecError;
    }
    m_pTuning  = pInput->pTuning;
    m_LuxIndex = pResult->luxIndex;
    if (0 == m_pTuning->pShdr->enableShdr)
    {
        pResult->shdrLuma = -1.0f;
        return AecSuccess;
    }

    const FLOAT*    table = ShdrTable.weights;
    BGStatsIterator it    = m_pStatsProc->GetStatsProcessingResult()->GetBGStatsIterator(BGStatsIterationMode::Normal);
    FLOAT           lumaSum   = 0.0f;
    FLOAT           weightSum = 0.0f;
    while (FALSE != it.HasNext())
    {
        const ParsedBGRegionType* pRgn = it.Next();
        if (nullptr == pRgn)
        {
            // A missing region stands in as a corner region: it adds the corner weight and no luma.
            weightSum += table[0];
            continue;
        }
        const INT row = std::min(std::max(static_cast<INT>(pRgn->yPos * WeightRows), 0), WeightRows - 1);
        const INT col = std::min(std::max(static_cast<INT>(pRgn->xPos * WeightCols), 0), WeightCols - 1);
        const FLOAT w = table[row * WeightCols + col];
        lumaSum += pRgn->rgnLuma * w;
        weightSum += w;
    }
    // A grid with no weighted region (none parsed, or all in the outer ring) has no mean: it gives the floor.
    const FLOAT mean  = (std::fabs(weightSum) >= 1e-7f) ? (lumaSum / weightSum) : 0.0f;
    m_shdrLuma        = UtilClampFrameLuma(mean);
    pResult->shdrLuma = m_shdrLuma;
    return AecSuccess;
}
