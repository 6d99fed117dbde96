// Frame luma with metering table weights and lux-dependent de-weighting of bright and dark regions.
#include "aec/core/modules/mod_mtr/cframelumacalculator.h"

#include <cmath>
#include <cstring>

#include "aec/core/base/ctuningtriggerhandler.h"
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "aec/core/modules/mod_mtr/lumacalculatorutil.h"
#include "platform/statslogger.h"

CFrameLumaCalculator::CFrameLumaCalculator(CStatsProcessor* pStatsProc, IAECContext* pContext)
    : IAECLumaCalculator(pStatsProc)
    , m_aecContext(pContext)
{
    Initialize();
}

VOID CFrameLumaCalculator::Initialize()
{
    m_pTuning      = nullptr;
    m_frameLuma    = 0.0f;
    m_LuxIndex     = 0.0f;
    m_brightRgnCnt = 0;
    m_darkRgnCnt   = 0;
    std::memset(&m_curZoneData, 0, sizeof(m_curZoneData));
    std::memset(&m_debugData, 0, sizeof(m_debugData));
}

AecResult CFrameLumaCalculator::calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pResult) || (nullptr == pInput->pTuning) ||
        (nullptr == pInput->pTuning->pCore) || (nullptr == pInput->matchingExpIndices) || (nullptr == m_pStatsProc))
    {
        AEC_LOG_ERROR("frame luma: missing input, tuning, matched exposure or statistics");
        return AecError;
    }
    m_pTuning  = pInput->pTuning;
    m_LuxIndex = pResult->luxIndex;

    const IProcessedStats* pStats = m_pStatsProc->GetStatsProcessingResult();
    BGStatsIterator        it     = pStats->GetBGStatsIterator(BGStatsIterationMode::Normal);
    const UINT32           est    = it.GetTotalNumOfRegions();

    const auto& rgnAdj            = m_pTuning->pCore->mtrLumaCalc.lumaRgnAdj;
    const FLOAT minWeightBright   = rgnAdj.minTableWeightForBright;
    const FLOAT maxStatsPctBright = rgnAdj.maxStatsPctForBright;
    const FLOAT minWeightDark     = rgnAdj.minTableWeightForDark;
    const FLOAT maxStatsPctDark   = rgnAdj.maxStatsPctForDark;
    BOOL        enableBright      = rgnAdj.enableBrightRgnAdj;
    BOOL        enableDark        = rgnAdj.enableDarkRgnAdj;
    const KDKResult zoneResult    = CTuningTriggerHandler::GetInterpZoneData(
        rgnAdj.rgnAdjZone, &m_curZoneData, m_LuxIndex, static_cast<INT32>(rgnAdj.rgnAdjZoneCount));
    if (VelaResultSuccess != zoneResult)
    {
        // The zone data still holds last frame's scaled thresholds: using them would scale them twice.
        AEC_LOG_ERROR("frame luma: no region adjustment zone for lux index %f (%d)", m_LuxIndex, zoneResult);
        std::memset(&m_curZoneData, 0, sizeof(m_curZoneData));
        enableBright = FALSE;
        enableDark   = FALSE;
    }

    // The thresholds are tuned for the safe exposure, the statistics show the short one.
    const UINT32 k                = (0 != pInput->enableHDR3) ? 1 : 2;
    const FLOAT  thresAdjustRatio = powf(1.03f, pInput->matchingExpIndices[0] - pInput->matchingExpIndices[k]);
    m_curZoneData.thresBrightRgn.start *= thresAdjustRatio;
    m_curZoneData.thresBrightRgn.end *= thresAdjustRatio;
    m_curZoneData.thresDarkRgn.start *= thresAdjustRatio;
    m_curZoneData.thresDarkRgn.end *= thresAdjustRatio;

    const AECCustomMeteringTable* pCustom = (nullptr != m_aecContext) ? &m_aecContext->getCustomMeteringTable()
                                                                       : nullptr;
    const FLOAT* pBiasTable = UtilGetBiasTable(pInput->mtrMode, &m_pTuning->pCore->mtrLumaCalc.mtrTables, pCustom);

    const INT maxRgnCntBright = static_cast<INT>(static_cast<FLOAT>(est) * maxStatsPctBright);
    const INT maxRgnCntDark   = static_cast<INT>(static_cast<FLOAT>(est) * maxStatsPctDark);

    const aecMetering::RgnAdjZoneDataType& zone = m_curZoneData;
    UINT16 brightRgnCnt = 0;
    UINT16 darkRgnCnt   = 0;
    FLOAT  lumaSum      = 0.0f;
    FLOAT  weightSum    = 0.0f;
    while (FALSE != it.HasNext())
    {
        const ParsedBGRegionType* pRgn = it.Next();
        if (nullptr == pRgn)
        {
            break;
        }
        const FLOAT luma   = pRgn->rgnLuma;
        FLOAT       weight = (nullptr != pBiasTable) ? pBiasTable[UtilGetMtrTableIndex(pRgn->xPos, pRgn->yPos)]
                                                     : 1.0f;
        if ((1 == enableDark) && (zone.thresDarkRgn.end > luma))
        {
            // A dark region is never also tested as bright, whether or not the dark budget is left.
            if ((static_cast<INT>(darkRgnCnt) < maxRgnCntDark) && (weight > minWeightDark))
            {
                darkRgnCnt++;
                if (zone.thresDarkRgn.start < luma)
                {
                    const FLOAT r = (zone.thresDarkRgn.end - luma) / (zone.thresDarkRgn.end - zone.thresDarkRgn.start);
                    weight *= zone.weightDarkRgnAdj * r + (1.0f - r);
                }
                else
                {
                    weight *= zone.weightDarkRgnAdj;
                }
            }
        }
        else if ((1 == enableBright) && (zone.thresBrightRgn.start < luma))
        {
            if ((static_cast<INT>(brightRgnCnt) < maxRgnCntBright) && (weight > minWeightBright))
            {
                brightRgnCnt++;
                if (zone.thresBrightRgn.end > luma)
                {
                    const FLOAT r =
                        (zone.thresBrightRgn.end - luma) / (zone.thresBrightRgn.end - zone.thresBrightRgn.start);
                    weight *= (1.0f - r) * zone.weightBrightRgnAdj + r;
                }
                else
                {
                    weight *= zone.weightBrightRgnAdj;
                }
            }
        }
        lumaSum += luma * weight;
        weightSum += weight;
    }

    if (std::fabs(weightSum) >= 1e-7f)
    {
        lumaSum /= weightSum;
    }
    m_brightRgnCnt     = brightRgnCnt;
    m_darkRgnCnt       = darkRgnCnt;
    m_frameLuma        = UtilClampFrameLuma(lumaSum);
    pResult->frameLuma = m_frameLuma;
    return AecSuccess;
}

VOID CFrameLumaCalculator::UpdateDebugData()
{
    if (nullptr != m_pTuning)
    {
        const auto& rgnAdj           = m_pTuning->pCore->mtrLumaCalc.lumaRgnAdj;
        m_debugData.bBrightRgnEnable = static_cast<UINT8>(rgnAdj.enableBrightRgnAdj);
        m_debugData.bDarkRgnEnable   = static_cast<UINT8>(rgnAdj.enableDarkRgnAdj);
    }
    m_debugData.brightRgnCount    = m_brightRgnCnt;
    m_debugData.brightRgnWeight   = m_curZoneData.weightBrightRgnAdj;
    m_debugData.brightRgnThres[0] = m_curZoneData.thresBrightRgn.start;
    m_debugData.brightRgnThres[1] = m_curZoneData.thresBrightRgn.end;
    m_debugData.darkRgnCount      = m_darkRgnCnt;
    m_debugData.darkRgnWeight     = m_curZoneData.weightDarkRgnAdj;
    m_debugData.darkRgnThres[0]   = m_curZoneData.thresDarkRgn.start;
    m_debugData.darkRgnThres[1]   = m_curZoneData.thresDarkRgn.end;
}

VOID CFrameLumaCalculator::FillDebugData(AECDebugData* pDebugData)
{
    if (nullptr != pDebugData)
    {
        pDebugData->regionInfo = m_debugData;
    }
}
