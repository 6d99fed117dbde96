// Metering bias table choice and elliptic ROI luma sums shared by the luma calculators.
#include "aec/core/modules/mod_mtr/lumacalculatorutil.h"

#include <algorithm>

#include "platform/statslogger.h"

const FLOAT* UtilGetBiasTable(AECAlgoMeteringModeType mode, const aecMetering::MtrTableType* pTables,
                              const AECCustomMeteringTable* pCustom)
{
    switch (mode)
    {
        case AECAlgoMeteringModeFrameAverage:
            return nullptr;
        case AECAlgoMeteringModeCenterWeighted:
            return (nullptr != pTables) ? pTables->centerWeighted.weights : nullptr;
        case AECAlgoMeteringModeSpot:
            return (nullptr != pTables) ? pTables->spotWeighted.weights : nullptr;
        case AECAlgoMeteringModeCustom:
            return (nullptr != pCustom) ? pCustom->meteringTable : nullptr;
        default:
            AEC_LOG_ERROR("unknown metering mode");
            return nullptr;
    }
}

UINT32 UtilGetMtrTableIndex(FLOAT xPos, FLOAT yPos)
{
    const INT col = std::min(std::max(static_cast<INT>(xPos * MtrTableSide), 0), MtrTableSide - 1);
    const INT row = std::min(std::max(static_cast<INT>(yPos * MtrTableSide), 0), MtrTableSide - 1);
    return static_cast<UINT32>(col + MtrTableSide * row);
}

FLOAT UtilClampFrameLuma(FLOAT luma)
{
    return std::max(std::min(luma, MaxFrameLuma), MinFrameLuma);
}

FLOAT UtilCalcDistSquare(FLOAT x, FLOAT y, FLOAT cx, FLOAT cy, FLOAT w, FLOAT h)
{
    if ((0.0f == w) || (0.0f == h))
    {
        return 0.0f;
    }
    const FLOAT nx = 2.0f * (x - cx) / w;
    const FLOAT ny = 2.0f * (y - cy) / h;
    return nx * nx + ny * ny;
}

VOID UtilCalcCircularROILuma(IProcessedStats* pStats, const AECAlgoROI* pROI, FLOAT strength, FLOAT* pLumaSum,
                             FLOAT* pWeightSum)
{
    UtilCalcCircularROILuma(pStats, pROI, strength, pLumaSum, pWeightSum, 1.0f);
}

VOID UtilCalcCircularROILuma(IProcessedStats* pStats, const AECAlgoROI* pROI, FLOAT strength, FLOAT* pLumaSum,
                             FLOAT* pWeightSum, FLOAT roiFactor)
{
    if ((nullptr == pLumaSum) || (nullptr == pWeightSum))
    {
        AEC_LOG_ERROR("ROI luma: null output sums");
        return;
    }
    FLOAT lumaSum   = 0.0f;
    FLOAT weightSum = 0.0f;
    if ((nullptr == pStats) || (nullptr == pROI))
    {
        AEC_LOG_ERROR("ROI luma: null statistics %p or ROI %p", static_cast<const VOID*>(pStats),
                      static_cast<const VOID*>(pROI));
    }
    else
    {
        const FLOAT     w  = pROI->dx * roiFactor;
        const FLOAT     h  = pROI->dy * roiFactor;
        const FLOAT     cx = pROI->x + 0.5f * pROI->dx;
        const FLOAT     cy = pROI->y + 0.5f * pROI->dy;
        BGStatsIterator it = pStats->GetBGStatsIterator(BGStatsIterationMode::Exhaustive, pROI->x, pROI->y,
                                                        pROI->x + w, pROI->y + h);
        while (FALSE != it.HasNext())
        {
            const ParsedBGRegionType* pRgn = it.Next();
            if (nullptr == pRgn)
            {
                break;
            }
            const FLOAT d = UtilCalcDistSquare(pRgn->xPos, pRgn->yPos, cx, cy, w, h);
            if (d <= 1.0f)
            {
                const FLOAT weight = std::max(1.0f - d * strength, 0.0f);
                lumaSum += pRgn->rgnLuma * weight;
                weightSum += weight;
            }
        }
    }
    *pLumaSum   = lumaSum;
    *pWeightSum = weightSum;
}
