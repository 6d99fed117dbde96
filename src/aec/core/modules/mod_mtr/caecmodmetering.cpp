// Metering module: construction of the calculator lists, change events, Y statistics, flash stages and slave lux.
#include "aec/core/modules/mod_mtr/caecmodmetering.h"

#include <cmath>
#include <cstring>

#include "aec/core/base/aecobjectalloc.h"
#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_mtr/cdepthassislumacalculator.h"
#include "aec/core/modules/mod_mtr/cdiaglumacalculator.h"
#include "aec/core/modules/mod_mtr/cextrmclrtargetcalculator.h"
#include "aec/core/modules/mod_mtr/cfacelumacalculator.h"
#include "aec/core/modules/mod_mtr/cflashsnapshotestimator.h"
#include "aec/core/modules/mod_mtr/cframelumacalculator.h"
#include "aec/core/modules/mod_mtr/chdr3histlumacalculator.h"
#include "aec/core/modules/mod_mtr/chdr3histogramtargetcalculator.h"
#include "aec/core/modules/mod_mtr/chistogramtargetcalculator.h"
#include "aec/core/modules/mod_mtr/cirlumacalculator.h"
#include "aec/core/modules/mod_mtr/cluxlumacalculator.h"
#include "aec/core/modules/mod_mtr/cluxtargetcalculator.h"
#include "aec/core/modules/mod_mtr/cpreflashlumacalculator.h"
#include "aec/core/modules/mod_mtr/cshdrlumacalculator.h"
#include "aec/core/modules/mod_mtr/cshdrtargetcalculator.h"
#include "aec/core/modules/mod_mtr/ctouchlumacalculator.h"
#include "aec/core/modules/mod_mtr/flashmeasurementlumacalculator.h"
#include "platform/statslogger.h"
#include "tuning_aecmetering.h"
#include "tuning_aecsync.h"

namespace
{
template <typename TList>
VOID DestroyCalculators(TList* pList)
{
    for (UINT32 i = 0; i < pList->count; ++i)
    {
        AECDestroyObject(pList->items[i]);
    }
    pList->count = 0;
}
} // namespace

CAECModMetering::CAECModMetering(IAECContext* pContext, IMeteringCallback* pCallback)
    : m_pCallback(pCallback)
    , m_pLumaCalculators(&m_lumaCalculators)
    , m_pFlashEstimator(nullptr)
    , m_enableDiagnostic(FALSE)
    , m_flashSnapshotInfluence(-1.0f)
    , m_flux(0.0f)
    , m_maxUnderExposureRatio(1.0f)
    , m_prevMode(AECAlgoExposureIndependent)
    , m_DRCGainHDR3(1.0f)
    , m_settledCount(0)
    , m_settledCount_LEF(0)
    , m_convSkipCount(99)
    , m_flatSceneRatio(1.0f)
    , m_statsMaxValue(1024.0f)
{
    m_aecContext = pContext;
    std::memset(&m_lumaCalculators, 0, sizeof(m_lumaCalculators));
    std::memset(&m_lumaCalculatorsPreflash, 0, sizeof(m_lumaCalculatorsPreflash));
    std::memset(&m_lumaCalculatorsFlashMeasurement, 0, sizeof(m_lumaCalculatorsFlashMeasurement));
    std::memset(&m_targetCalculators, 0, sizeof(m_targetCalculators));
    std::memset(&m_targetCalcResult, 0, sizeof(m_targetCalcResult));
    std::memset(&m_lumaCalcResult, 0, sizeof(m_lumaCalcResult));
    std::memset(&m_debugData, 0, sizeof(m_debugData));
    std::memset(m_BGSatThres, 0, sizeof(m_BGSatThres));
    m_pFlashEstimator = AECCreateObject<CFlashSnapshotEstimator>(pContext);
    CreateCalculators();
}

CAECModMetering::~CAECModMetering()
{
    DestroyCalculators(&m_lumaCalculators);
    DestroyCalculators(&m_lumaCalculatorsPreflash);
    DestroyCalculators(&m_lumaCalculatorsFlashMeasurement);
    DestroyCalculators(&m_targetCalculators);
    if (nullptr != m_pFlashEstimator)
    {
        // The two cloned statistics views go before the estimator itself.
        m_pFlashEstimator->ResetAfterCapture();
        AECDestroyObject(m_pFlashEstimator);
    }
}

template <typename TCalculator, typename TList, typename... Args>
VOID CAECModMetering::AddCalculator(TList* pList, Args... args)
{
    TCalculator* pCalculator = AECCreateObject<TCalculator>(args...);
    if (nullptr == pCalculator)
    {
        // The list runs on without it: a missing calculator leaves its result fields at their zeroed values.
        AEC_LOG_ERROR("Out of memory creating a metering calculator (list position %u)", pList->count);
        return;
    }
    pList->items[pList->count] = pCalculator;
    pList->count++;
}

VOID CAECModMetering::CreateCalculators()
{
    CStatsProcessor* pProc    = &m_statsParser;
    IAECContext*     pContext = m_aecContext;

    // Order matters: later calculators read what earlier ones wrote, the lux index above all.
    AddCalculator<CLuxLumaCalculator>(&m_lumaCalculators, pProc);
    AddCalculator<CHDR3HistLumaCalculator>(&m_lumaCalculators, pProc);
    AddCalculator<CFrameLumaCalculator>(&m_lumaCalculators, pProc, pContext);
    AddCalculator<CFaceLumaCalculator>(&m_lumaCalculators, pProc);
    AddCalculator<CTouchLumaCalculator>(&m_lumaCalculators, pProc);
    AddCalculator<CDepthAssisLumaCalculator>(&m_lumaCalculators, pProc);
    AddCalculator<CShdrLumaCalculator>(&m_lumaCalculators, pProc);
    AddCalculator<CIrLumaCalculator>(&m_lumaCalculators, pProc);
    AddCalculator<CDiagLumaCalculator>(&m_lumaCalculators, pProc);

    AddCalculator<CLuxLumaCalculator>(&m_lumaCalculatorsPreflash, pProc);
    AddCalculator<CHDR3HistLumaCalculator>(&m_lumaCalculatorsPreflash, pProc);
    AddCalculator<CFrameLumaCalculator>(&m_lumaCalculatorsPreflash, pProc, pContext);
    AddCalculator<CPreflashLumaCalculator>(&m_lumaCalculatorsPreflash, pProc);

    AddCalculator<CLuxLumaCalculator>(&m_lumaCalculatorsFlashMeasurement, pProc);
    AddCalculator<FlashMeasurementLumaCalculator>(&m_lumaCalculatorsFlashMeasurement, pProc);

    AddCalculator<CLuxTargetCalculator>(&m_targetCalculators, pProc);
    AddCalculator<CHistogramTargetCalculator>(&m_targetCalculators, pProc);
    AddCalculator<CShdrTargetCalculator>(&m_targetCalculators, pProc);
    AddCalculator<CExtrmClrTargetCalculator>(&m_targetCalculators, pProc);
    AddCalculator<CHDR3HistogramTargetCalculator>(&m_targetCalculators, pProc);
}

AecResult CAECModMetering::OnOperationModeChange()
{
    switch (m_aecContext->getOperationMode())
    {
        case AECAlgoOperationModeFlashMeasurement:
            m_pLumaCalculators = &m_lumaCalculatorsFlashMeasurement;
            break;
        case AECAlgoOperationModePreflash:
            m_pLumaCalculators = &m_lumaCalculatorsPreflash;
            break;
        default:
            m_pLumaCalculators = &m_lumaCalculators;
            break;
    }
    return AecSuccess;
}

AecResult CAECModMetering::OnDiagTestConfigChange()
{
    const AECAlgoDiagConfig* pDiag = m_aecContext->getDiagTestConfig();
    m_enableDiagnostic             = ((nullptr != pDiag) && (1 == pDiag->enable)) ? TRUE : FALSE;
    return AecSuccess;
}

AecResult CAECModMetering::OnMultiExposureSensorModeChange()
{
    m_statsParser.SetMultiExposureSensorMode(m_aecContext->getMultiExposureSensorMode());
    return AecSuccess;
}

AecResult CAECModMetering::OnTuningHeaderChange()
{
    const MeteringTuningDataType* pTuning = m_aecContext->getMtrTuning();
    if ((nullptr == pTuning) || (nullptr == pTuning->pCore))
    {
        AEC_LOG_ERROR("Metering tuning is NULL");
        return AecError;
    }
    m_statsParser.SetTuning(pTuning);

    // The EV range and step of the host's exposure compensation come from the tuned EV luma table.
    const aecMetering::EVLumaTargetType& rEV = pTuning->pCore->mtrLumaTarget.EVLumaTarget;
    m_pCallback->SetEVCapability(static_cast<INT8>(rEV.minEVValue), static_cast<INT8>(rEV.maxEVValue),
                                 static_cast<INT8>(rEV.stepsPerEV));

    // The deepest underexposure any zone may ask for: the safe target's floor, times the ADRC gain that restores it.
    m_maxUnderExposureRatio                     = 1.0f;
    const aecMetering::HistLumaTargetType& rHist = pTuning->pCore->mtrLumaTarget.histLumaTarget;
    if (1 == rHist.enableHistMetering)
    {
        for (UINT32 i = 0; (nullptr != rHist.histLumaTargetZone) && (i < rHist.histLumaTargetZoneCount); ++i)
        {
            const aecMetering::HistLumaTargetZoneDataType& rZone = rHist.histLumaTargetZone[i].zoneData;
            FLOAT r = 1.0f / std::fmax(rZone.minTargetAdjRatio, 1e-7f);
            if (1 == rHist.enableADRC)
            {
                r *= std::fmax(rZone.maxDRCGain, rZone.maxADRCGain);
            }
            m_maxUnderExposureRatio = std::fmax(m_maxUnderExposureRatio, r);
        }
    }
    return AecSuccess;
}

AecResult CAECModMetering::OnDebugDataUpdate()
{
    AECDebugData* pDebugData = m_aecContext->getDebugData();
    if (nullptr == pDebugData)
    {
        return AecSuccess;
    }
    pDebugData->meteringInfo = m_debugData;
    for (UINT32 i = 0; i < m_pLumaCalculators->count; ++i)
    {
        m_pLumaCalculators->items[i]->FillDebugData(pDebugData);
    }
    for (UINT32 i = 0; i < m_targetCalculators.count; ++i)
    {
        m_targetCalculators.items[i]->FillDebugData(pDebugData);
    }
    m_statsParser.GetStatsProcessingResult()->FillDebugData(pDebugData);
    return AecSuccess;
}

VOID CAECModMetering::UpdateDebugData()
{
    m_debugData.luxIndex            = m_lumaCalcResult.luxIndex;
    m_debugData.averageLuma         = m_lumaCalcResult.averageLuma;
    m_debugData.frameLuma           = m_lumaCalcResult.frameLuma;
    m_debugData.touchLuma           = m_lumaCalcResult.touchLuma;
    m_debugData.faceLuma            = m_lumaCalcResult.faceLuma;
    m_debugData.faceLumaMin         = m_lumaCalcResult.faceLumaRange.min;
    m_debugData.faceLumaMax         = m_lumaCalcResult.faceLumaRange.max;
    m_debugData.faceWeight          = m_lumaCalcResult.faceWeight;
    m_debugData.finalLuma           = m_lumaCalcResult.finalLuma;
    m_debugData.luxBasedSafeTarget  = m_targetCalcResult.luxBasedSafeTarget;
    m_debugData.clrBasedSafeTarget  = m_targetCalcResult.clrBasedSafeTarget;
    m_debugData.histBasedTargets[0] = m_targetCalcResult.histBasedShortTarget;
    m_debugData.histBasedTargets[1] = m_targetCalcResult.histBasedLongTarget;
    m_debugData.histBasedTargets[2] = m_targetCalcResult.histBasedSafeTarget;
    m_debugData.finalTargets[0]     = m_targetCalcResult.shortTarget;
    m_debugData.finalTargets[1]     = m_targetCalcResult.longTarget;
    m_debugData.finalTargets[2]     = m_targetCalcResult.safeTarget;
    for (UINT32 i = 0; i < 4; ++i)
    {
        // The record holds 16 bits, the widest statistics bit depth.
        m_debugData.BGStatsSatThres[i] = static_cast<UINT16>((m_BGSatThres[i] < 0xFFFFu) ? m_BGSatThres[i] : 0xFFFFu);
    }
}

AecResult CAECModMetering::GetSnapshotEstimation(const AECMeteringSnapshotInput* pInput,
                                                 AECMeteringSnapshotOutput* pOutput)
{
    if (FALSE == pInput->isFlashSnapshot)
    {
        AEC_LOG_ERROR("Non flash snapshot estimation is not implemented yet!");
        return AecError;
    }
    if (nullptr == m_pFlashEstimator)
    {
        AEC_LOG_ERROR("Flash snapshot estimator unavailable");
        return AecError;
    }
    const AecResult result = m_pFlashEstimator->GetExposureEstimation(pInput->mainToPreFluxRatio,
                                                                      pInput->preflashToStreamingOffset, pOutput);
    m_flashSnapshotInfluence = pOutput->flashInfluence;
    return result;
}

AecResult CAECModMetering::HandleFlashEstimationStages(AECMeteringFlashEstStage stage, FLOAT flux)
{
    if (stage > PreflashToEnd)
    {
        AEC_LOG_ERROR("ERROR: Bad Estimation Stage!");
        return AecError;
    }
    if (nullptr == m_pFlashEstimator)
    {
        AEC_LOG_ERROR("Flash snapshot estimator unavailable");
        return AecError;
    }
    m_flashSnapshotInfluence = -1.0f;
    m_flux                   = flux;
    // The stage value doubles as the "LED on" flag.
    m_pFlashEstimator->BackupFlashStats(static_cast<BOOL>(stage), &m_targetCalcResult, &m_lumaCalcResult,
                                        &m_statsParser, m_pCallback);
    return AecSuccess;
}

VOID CAECModMetering::EstimateLuxIndexForSlave(AECMeteringFrameProcOutput* pOutput)
{
    const AECMultiCamInfo*         pPeer   = m_aecContext->getPeerInfo();
    const ExtensionTuningDataType* pExt    = m_aecContext->getExtTuning();
    const FLOAT                    prevLux = pOutput->luxIndex;
    if ((nullptr == pPeer) || (nullptr == pExt) || (nullptr == pExt->pSlaveLuxIdxSelection))
    {
        AEC_LOG_WARN("Slave lux index: no peer information or tuning, own lux index kept");
        return;
    }
    switch (pExt->pSlaveLuxIdxSelection->luxIndexSelectionMethod)
    {
        case 1:
            pOutput->luxIndex = pPeer->meteringInfo.luxIndex;
            break;
        case 2:
        {
            const AECFrameHistory* pFrame = m_aecContext->getFrameHistory(m_aecContext->getPipelineDelay());
            if ((nullptr == pFrame) || !(pPeer->meteringInfo.averageLuma > 0.0f))
            {
                AEC_LOG_WARN("Slave lux index: no history or peer luma, own lux index kept");
                break;
            }
            const FLOAT c = m_aecContext->getCompensationRatio();
            const FLOAT v = (c > 256.0f) ? 12800.0f : (std::fmax(c, 1.0f) * 50.0f);
            pOutput->luxIndex =
                static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(v / pPeer->meteringInfo.averageLuma)) *
                                       MeteringIndexPerDecade +
                                   pFrame->expIndices[0]);
            break;
        }
        default:
            break;
    }
    AEC_LOG_INFO("Prev Lux Idx %f New lux idx %f", prevLux, pOutput->luxIndex);
}

VOID CAECModMetering::GetYStats(FLOAT* pYStats, UINT32 capacity, UINT32& count)
{
    count                              = 0;
    BGStatsIterator           iterator = m_statsParser.GetStatsProcessingResult()->GetBGStatsIterator(
        BGStatsIterationMode::Normal);
    const ParsedBGRegionType* pRegion  = iterator.Next();
    while (nullptr != pRegion)
    {
        if (count >= capacity)
        {
            AEC_LOG_WARN("Source stats size is more than destination");
            break;
        }
        pYStats[count] = pRegion->rgnLuma;
        count++;
        pRegion = iterator.Next();
    }
}
