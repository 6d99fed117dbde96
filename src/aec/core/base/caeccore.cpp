// The per-camera exposure engine: owns the modules and the state store and runs the frame pipeline.
#include "aec/core/base/caeccore.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "aec/core/base/aecdcgpostprocess.h"
#include "aec/core/base/aecmodulecreator.h"
#include "aec/core/base/aecobjectalloc.h"
#include "aec/core/base/caeccoredatamanager.h"
#include "aec/core/base/statsconvergencekpi.h"
#include "platform/statslogger.h"

namespace
{

// Index units of a linear ratio: index delta = log10(ratio) x this.
constexpr DOUBLE AECIndexPerLog10 = 77.89852905273438;
// The single-precision form of the same constant, as the simulated lux index uses it.
constexpr FLOAT AECIndexPerLog10Float = 77.89853F;

// Ratio for the logs; 0 when there is nothing to divide by.
FLOAT LogRatio(FLOAT numerator, FLOAT denominator)
{
    return (0.0F != denominator) ? (numerator / denominator) : 0.0F;
}

// Any statistics that the pipeline marks as not yet valid after a start-up force a fresh settle decision.
// Only these five are consulted: the LEF and MEF grids, the luma histogram and the other HDR histograms
// follow the ones listed.
BOOL IsStartupStatsInvalid(const AECStatistics& rStats)
{
    return (StatisticsStartUpInvalid == rStats.bayerHist.startupMode) ||
           (StatisticsStartUpInvalid == rStats.bayerGrid.startupMode) ||
           (StatisticsStartUpInvalid == rStats.hdr3Stats.startupMode) ||
           (StatisticsStartUpInvalid == rStats.hdrBayerHist.startupMode) ||
           (StatisticsStartUpInvalid == rStats.nonUniformBayerHist.startupMode);
}

const CHAR* FlashStateName(AECAlgoFlashStateType flashState)
{
    switch (flashState)
    {
        case AECAlgoFlashStatePre:
            return "Preflash";
        case AECAlgoFlashStateMain:
            return "Main";
        case AECAlgoFlashStateCalibaration:
            return "Measurement";
        default:
            return "Off";
    }
}

} // namespace

// ---- Construction and destruction ----

CAECCore::CAECCore()
    : CAECCore(AECModuleCreator::DefaultFactory())
{
}

CAECCore::CAECCore(IAECModuleFactory& rFactory)
    : m_pIR(nullptr)
    , m_pMetering(nullptr)
    , m_pConvergence(nullptr)
    , m_pArbitration(nullptr)
    , m_pIrisCtrl(nullptr)
    , m_pExtension(nullptr)
    , m_pDiagnostic(nullptr)
    , m_pAecSkipCtrl(nullptr)
    , m_irIn()
    , m_irOut()
    , m_mtrIn()
    , m_mtrOut()
    , m_convIn()
    , m_convOut()
    , m_arbIn()
    , m_arbOut()
    , m_irisIn()
    , m_irisOut()
    , m_extIn()
    , m_extOut()
    , m_LDMIn()
    , m_LDMmotorSysParam()
    , m_LDMmotorPowerLevel(LDMPowerlevelOff)
    , m_LDMpirisTblParam()
    , m_LDMlensCap()
    , m_cameraID(0)
    , m_algoRole(StatsAlgoRoleDefault)
    , m_AECConvKPI()
    , m_pDataManager(nullptr)
    , m_pAecComponentList(nullptr)
    , m_isDual(FALSE)
    , m_simulation()
    , m_simDigitalGain(1.0F)
    , m_enableLiveTuning(FALSE)
{
    m_pDataManager = AECCreateObject<CAECCoreDataManager>();
    if (nullptr == m_pDataManager)
    {
        AEC_LOG_ERROR("Failed to create the AEC core data manager");
        return;
    }

    // The IR module is not created in this configuration: no IR processing runs per frame.
    m_pMetering    = rFactory.CreateMetering(m_pDataManager, m_pDataManager);
    m_pConvergence = rFactory.CreateConvergence(m_pDataManager, m_pDataManager);
    m_pArbitration = rFactory.CreateArbitration(m_pDataManager, m_pDataManager);
    m_pIrisCtrl    = rFactory.CreateIrisControl(m_pDataManager, m_pDataManager);
    m_pExtension   = rFactory.CreateExtension(m_pDataManager, m_pDataManager);
    m_pDiagnostic  = rFactory.CreateDiagnostic(m_pDataManager);
    m_pAecSkipCtrl = rFactory.CreateSkipCtrl(m_pDataManager);

    // The registration order is the order in which every change event reaches the modules.
    IAECComponent* const components[] = {m_pMetering, m_pConvergence, m_pArbitration, m_pIrisCtrl,
                                         m_pExtension, m_pDiagnostic, m_pAecSkipCtrl};
    for (IAECComponent* pComponent : components)
    {
        if (nullptr == pComponent)
        {
            AEC_LOG_ERROR("Failed to create an AEC module; the core refuses all calls");
            continue;
        }
        m_pDataManager->addComponent(pComponent);
    }

    m_AECConvKPI.kpi.frameCount = 0;
    m_AECConvKPI.kpi.bStartInit = FALSE;
    m_AECConvKPI.kpi.bEndInit   = FALSE;
    m_AECConvKPI.prevAECSettled = TRUE;
    m_AECConvKPI.isAECSettled   = FALSE;

    m_simulation.configure(m_pMetering, m_pDataManager, &m_mtrOut);
}

CAECCore::~CAECCore()
{
    AECDestroyObject(m_pIR);
    AECDestroyObject(m_pMetering);
    AECDestroyObject(m_pConvergence);
    AECDestroyObject(m_pArbitration);
    AECDestroyObject(m_pIrisCtrl);
    AECDestroyObject(m_pExtension);
    AECDestroyObject(m_pDiagnostic);
    AECDestroyObject(m_pAecSkipCtrl);
    AECDestroyObject(m_pDataManager);

    // The iris tables are the core's deep copy of the lens driver's tables, made with malloc.
    releaseIrisTable(m_LDMpirisTblParam);
}

BOOL CAECCore::isConstructed() const
{
    return (nullptr != m_pDataManager) && (nullptr != m_pMetering) && (nullptr != m_pConvergence) &&
           (nullptr != m_pArbitration) && (nullptr != m_pIrisCtrl) && (nullptr != m_pExtension) &&
           (nullptr != m_pDiagnostic) && (nullptr != m_pAecSkipCtrl);
}

// ---- Frame pipeline ----

KDKResult CAECCore::process(const AECCoreInput* pInput, AECCoreOutput* pOutput)
{
    if ((nullptr == pInput) || (nullptr == pOutput) || (FALSE == isConstructed()))
    {
        AEC_LOG_ERROR("AEC process refused: input %p output %p constructed %d", static_cast<const void*>(pInput),
                      static_cast<void*>(pOutput), isConstructed());
        return VelaResultEFailed;
    }

    convergenceKPI(TRUE);

    // The LED fields start each frame as "off", before anything can refuse or skip the frame.
    m_pExtension->GetFlashCurrentEstimate(Off, &pOutput->frameSetting, FALSE);

    KDKResult result = preProcessing(pInput);
    if (VelaResultSuccess != result)
    {
        return result;
    }

    BOOL bSkipFrame = m_pAecSkipCtrl->CheckSkipFrame(pInput);
    if ((Running == m_pDiagnostic->GetDiagStatus().status) || (StatsAlgoRoleMaster == m_algoRole))
    {
        // A running diagnostic test and a multi-camera master never skip.
        bSkipFrame = FALSE;
    }
    else if (TRUE == bSkipFrame)
    {
        // The rest of the output keeps what the previous frame left there.
        return VelaResultSuccess;
    }

    AEC_LOG_INFO("====== AEC Process start, CamID:%d, Role:%d, FrameID:%llu ===========", m_cameraID, m_algoRole,
                 static_cast<unsigned long long>(pInput->frameID));

    m_LDMIn = pInput->IrisInputPerFrame;
    m_pDataManager->processROIsPerFrame();

    runIR(pInput);
    runMetering(pInput);
    runConvergence(pInput);
    runArbitration(pInput);
    runIrisControl(pInput);
    runExtensionModule(pInput);
    updateParamsForDiagnostic();
    updateHistory(pInput);
    handlePreflash(pInput, pOutput);
    populateOutput(pInput, pOutput);
    populateMulicamInfo(pInput);

    m_pDataManager->DebugDataSaveStats(pInput);
    result = m_pDataManager->PrepareDebugData(&pInput->debugData, &pOutput->frameInfo.DebugDataSizeWritten);

    convergenceKPI(FALSE);

    // Only a frame that was not skipped gets here.
    m_pAecSkipCtrl->ConfigFrameSkip(m_convOut, pInput);

    return result;
}

KDKResult CAECCore::preProcessing(const AECCoreInput* pInput)
{
    // The counters run on every frame the host sends, refused ones included.
    m_pDataManager->updateFrameCounters();

    if (FALSE == m_pDataManager->isStartConfigSaved())
    {
        AEC_LOG_ERROR("Need to always query start exposure before sending in stats for each opMode! ");
        return VelaResultEFailed;
    }
    if (AecSuccess != m_pDataManager->saveCurrentFrameID(pInput->frameID))
    {
        AEC_LOG_ERROR("Failed to save the stats frame ID to history!");
        return VelaResultEFailed;
    }
    return VelaResultSuccess;
}

VOID CAECCore::runIR(const AECCoreInput* /*pInput*/)
{
    // No IR processing in this configuration: m_irIn and m_irOut stay as created.
}

VOID CAECCore::runMetering(const AECCoreInput* pInput)
{
    const AECAlgoMultiCamMeteringType meteringType = m_pDataManager->getMeteringType();
    const AECAlgoMultiCamExposureType exposureType = m_pDataManager->getExposureType();
    if ((AECAlgoMeteringDisabled == meteringType) &&
        ((AECAlgoExposureIndependent == exposureType) || (AECAlgoExposureDynamic == exposureType)))
    {
        // Not a failure of the frame: the rest of the pipeline runs on the previous metering output.
        AEC_LOG_WARN("Metering disabled and dynamic/independent exposure is not allowed");
        return;
    }

    std::memset(&m_mtrIn, 0, sizeof(m_mtrIn));
    processDepthInfo(pInput);
    m_mtrIn.stats            = pInput->aecStats;
    m_mtrIn.shdrTuningParams = pInput->shdrTuningParams;

    // The statistics of this frame were exposed with the settings of the frame a pipeline delay back.
    const AECFrameHistory* pFrame = m_pDataManager->getFrameHistory(m_pDataManager->getPipelineDelay());
    if ((nullptr != pFrame) && (TRUE == pFrame->isSnapshotQuery))
    {
        // A snapshot exposure was in the pipeline: these statistics do not show the preview exposure,
        // so the output of the last metered frame stands.
        AEC_LOG_INFO("Snapshot Query, skipping stats processing");
    }
    else
    {
        std::memset(&m_mtrOut, 0, sizeof(m_mtrOut));
        const AECFrameHistory* pLastFrame = m_pDataManager->getFrameHistory(1);
        if (nullptr != pLastFrame)
        {
            std::memcpy(m_mtrOut.targetIndices, pLastFrame->expIndicesTargets, sizeof(m_mtrOut.targetIndices));
        }
        if (AECAlgoMeteringDisabled != meteringType)
        {
            m_pMetering->ProcessFrameStats(&m_mtrIn, &m_mtrOut);
        }
    }

    if ((AECAlgoExposureFollow == exposureType) && (nullptr != m_pDataManager->getPeerInfo()))
    {
        m_pArbitration->ComputeTargetIndexInMultiCam(m_mtrOut.origLuxIndex, m_mtrOut.targetIndices);
        m_pMetering->EstimateLuxIndexForSlave(&m_mtrOut);
        AEC_LOG_INFO("Slave Mode !!");
    }

    if (TRUE == m_mtrIn.IRLockAECtype.irAECLockRequest)
    {
        const UINT8            lockType   = m_mtrIn.IRLockAECtype.SetAECLockType;
        const AECFrameHistory* pLastFrame = m_pDataManager->getFrameHistory(1);
        if (nullptr == pLastFrame)
        {
            AEC_LOG_ERROR("Fail to lock metering process as requested by IR: no valid history buffer");
        }
        else
        {
            AEC_LOG_INFO("Locking metering process as requested by IR");
            for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
            {
                m_mtrOut.targetIndices[i] = (IRAECLockTypeTuning == lockType) ? m_mtrIn.IRLockAECtype.TuningexpIdx
                                                                              : pLastFrame->expIndicesTargets[i];
            }
        }
    }

    const FLOAT* pExpIndices = (nullptr != pFrame) ? pFrame->expIndices : m_mtrOut.sHdrIndices;
    AEC_LOG_VERBOSE("MtrOut:CID:%d,Frame:%lu, Lux:%0.3f, Luma(Final:%0.3f, Avg:%0.3f, Mtr:%0.3f), (Short, Safe, "
                    "Long)Targets(%.0f, %.0f, %.0f) ExpIndex(%.1f,%.1f,%.1f) pixCntRatioLEF %f",
                    m_cameraID, static_cast<unsigned long>(pInput->frameID), m_mtrOut.luxIndex, m_mtrOut.currentLuma,
                    m_mtrOut.averageLuma, m_mtrOut.frameLuma, m_mtrOut.targetIndices[AECAlgoExposureShort],
                    m_mtrOut.targetIndices[AECAlgoExposureSafe], m_mtrOut.targetIndices[AECAlgoExposureLong],
                    pExpIndices[AECAlgoExposureShort], pExpIndices[AECAlgoExposureSafe],
                    pExpIndices[AECAlgoExposureLong], m_mtrOut.pixCntRatioLEF);
}

VOID CAECCore::runConvergence(const AECCoreInput* pInput)
{
    std::memset(&m_convIn, 0, sizeof(m_convIn));
    m_convOut = ConvergenceOutput();

    m_convIn.settleType     = (TRUE == IsStartupStatsInvalid(pInput->aecStats)) ? AECAlgoSettleForceReset
                                                                                : AECAlgoSettleCompute;
    m_convIn.pTargetIndices = m_mtrOut.targetIndices;
    m_convIn.ratioDark      = m_mtrOut.ratioDark;
    m_convIn.ratioBright    = m_mtrOut.ratioBright;
    m_convIn.luxIndex       = m_mtrOut.luxIndex;
    m_convIn.bIsTorchAEC    = pInput->bIsTorchAEC;
    m_convIn.avgLuma        = m_mtrOut.averageLuma;

    m_pConvergence->ConvergeFrameExposure(&m_convIn, &m_convOut);

    if (TRUE == m_simulation.IsEnabled())
    {
        GetSimExposureAndConfig(pInput);
    }

    if (1 == m_mtrOut.sHDROutput)
    {
        // In staggered HDR the exposure indices come straight from metering.
        m_convOut.isAECSettled = m_mtrOut.isSHDRAECSettled;
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            m_convOut.convExpSets[i].expIndex = m_mtrOut.sHdrIndices[i];
        }
    }

    // AEC is never reported settled while a moving iris is unsettled.
    if ((FALSE == m_pIrisCtrl->QueryPIrisSettleInfo()) && (1 == m_LDMlensCap.PIris))
    {
        m_convOut.isAECSettled = FALSE;
    }

    const ConvergenceExposureSetOutput* pSets = m_convOut.convExpSets;
    AEC_LOG_VERBOSE("ConvOut:CID %d Frame %lu Settle %d BrightSettle %d, prevEV %.1f (Short, Safe, Long) ExpIndex "
                    "%.1f %.1f %.1f  Adjust %.1f %.1f %.1f mode %d lock %d",
                    m_cameraID, static_cast<unsigned long>(pInput->frameID), m_convOut.isAECSettled,
                    m_convOut.isBrightnessSettled, m_convOut.previewEV, pSets[AECAlgoExposureShort].expIndex,
                    pSets[AECAlgoExposureSafe].expIndex, pSets[AECAlgoExposureLong].expIndex,
                    pSets[AECAlgoExposureShort].expIndexAdjustment, pSets[AECAlgoExposureSafe].expIndexAdjustment,
                    pSets[AECAlgoExposureLong].expIndexAdjustment, m_pDataManager->getOperationMode(),
                    m_pDataManager->getIsAECLocked());
}

VOID CAECCore::GetSimExposureAndConfig(const AECCoreInput* pInput)
{
    FLOAT simExpIndex = 0.0F;
    if (TRUE == m_simulation.ConfigSimulationExp(pInput, simExpIndex, m_simDigitalGain))
    {
        std::memset(m_convOut.convExpSets, 0, sizeof(m_convOut.convExpSets));
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            m_convOut.convExpSets[i].expIndex = simExpIndex;
            m_mtrOut.targetIndices[i]         = simExpIndex;
        }
        m_convOut.isAECSettled                 = TRUE;
        m_convOut.isBrightnessSettled          = TRUE;
        m_convOut.expTimePriorConfig.bIsActive = FALSE;
        m_convOut.predictiveGain               = 1.0F;
        m_mtrOut.luxIndex = std::fma(std::log10(m_simDigitalGain), AECIndexPerLog10Float, simExpIndex);
    }
}

VOID CAECCore::runArbitration(const AECCoreInput* pInput)
{
    std::memset(&m_arbIn, 0, sizeof(m_arbIn));
    std::memset(&m_arbOut, 0, sizeof(m_arbOut));

    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        m_arbIn.expIndices[i]      = m_convOut.convExpSets[i].expIndex;
        m_arbIn.expIndicesDelta[i] = m_convOut.convExpSets[i].expIndexDelta;
    }
    m_arbIn.refOpMode         = m_pDataManager->getOperationMode();
    m_arbIn.luxIdx            = m_mtrOut.origLuxIndex;
    m_arbIn.VisibleLightRatio = m_mtrOut.VisibleLightRatio;
    m_arbIn.expTimePrioConfig = m_convOut.expTimePriorConfig;
    m_arbIn.sHDRexpConfig     = m_convOut.sHDRexpConfig;
    m_arbIn.currZoomStep      = static_cast<UINT32>(m_LDMIn.zoomMotorStatus.motorCurPosition);
    m_arbIn.lensCap           = m_LDMlensCap;
    m_arbIn.irisIsAborted     = 0;

    m_pArbitration->ArbitrateExposure(&m_arbIn, &m_arbOut);
    const BOOL irisSettled = m_pIrisCtrl->QueryPIrisSettleInfo();

    // The long-exposure limit and the DCG split are steered by the staggered-HDR metering tuning.
    const MeteringTuningDataType*    pMtrTuning = m_pDataManager->getMtrTuning();
    const aecShdr::ShdrMeteringType* pShdr      = (nullptr != pMtrTuning) ? pMtrTuning->pShdr : nullptr;
    if (nullptr == pShdr)
    {
        AEC_LOG_VERBOSE("No staggered-HDR metering tuning: LEF limit and DCG post-processing skipped");
    }
    else if ((1 == m_mtrOut.sHDROutput) && (m_arbOut.expSets[AECAlgoExposureLong].linearGain >= pShdr->LEFMaxGain))
    {
        ConvergenceExposureSetOutput* pSets = m_convOut.convExpSets;
        pSets[AECAlgoExposureLong].expIndex = static_cast<FLOAT>(
            std::log10(static_cast<DOUBLE>(m_arbOut.expRatio)) * AECIndexPerLog10 + pSets[AECAlgoExposureShort].expIndex);
        BOOL settled = (0 != m_mtrOut.isSHDRSEFSettled) ? TRUE : FALSE;
        if (FALSE == irisSettled)
        {
            settled = ((TRUE == settled) && (1 != m_LDMlensCap.PIris)) ? TRUE : FALSE;
        }
        m_mtrOut.isSHDRAECSettled = settled;
        m_convOut.isAECSettled    = settled;
        AEC_LOG_INFO("LEF meets exposure limitation. Update isAECSettled %d and LEF ExpIdx %f", settled,
                     pSets[AECAlgoExposureLong].expIndex);
    }

    AECAlgoExposureData* pE            = m_arbOut.expSets;
    const FLOAT          sensCorrection = m_pDataManager->getExposureLimitation()->streamingExpTblSens;
    AEC_LOG_VERBOSE("ArbitOut[Before DCG process]:CID:%d,Frame:%lu, FPS:%0.2f, (Short, Safe, Long)  G (%.3f %.3f %.3f) "
                    "Fnumber: (%.3f %.3f %.3f) TarFnumber: (%.3f %.3f %.3f)ET (%lu %lu %lu) SensCorrF:%.2f  Safe/short "
                    "sensitivity = %f Long/short sensitivity = %f",
                    m_cameraID, static_cast<unsigned long>(pInput->frameID), m_arbOut.FPS, pE[0].linearGain,
                    pE[2].linearGain, pE[1].linearGain, pE[0].fnumber, pE[2].fnumber, pE[1].fnumber,
                    m_arbOut.TarFnum[0], m_arbOut.TarFnum[2], m_arbOut.TarFnum[1],
                    static_cast<unsigned long>(pE[0].exposureTime), static_cast<unsigned long>(pE[2].exposureTime),
                    static_cast<unsigned long>(pE[1].exposureTime), sensCorrection,
                    LogRatio(pE[2].sensitivity, pE[0].sensitivity), LogRatio(pE[1].sensitivity, pE[0].sensitivity));

    AECDCGRatios ratios   = {0.0F, 0.0F};
    INT32        shdrMode = LinearMode;
    if (nullptr != pShdr)
    {
        // The tuning file reuses ExpRatioCapLow and reserved[0] as the two conversion gain ratios.
        ratios.CGRatio1 = pShdr->ExpRatioCapLow;
        ratios.CGRatio2 = pShdr->reserved[0];
        shdrMode        = pShdr->enableShdr;
        AECApplyDCGPostProcessing(shdrMode, &ratios, m_arbOut.expSets);
    }

    AEC_LOG_VERBOSE("ArbitOut[After DCG process]:CID:%d,Frame:%lu, FPS:%0.2f, (Short, Safe, Long)  G (%.3f %.3f %.3f) "
                    "Fnumber: (%.3f %.3f %.3f) TarFnumber: (%.3f %.3f %.3f)ET (%lu %lu %lu) SensCorrF:%.2f  Safe/short "
                    "sensitivity = %f  CGRatio1 %f CGRatio2 %f shdr_mode %d",
                    m_cameraID, static_cast<unsigned long>(pInput->frameID), m_arbOut.FPS, pE[0].linearGain,
                    pE[2].linearGain, pE[1].linearGain, pE[0].fnumber, pE[2].fnumber, pE[1].fnumber,
                    m_arbOut.TarFnum[0], m_arbOut.TarFnum[2], m_arbOut.TarFnum[1],
                    static_cast<unsigned long>(pE[0].exposureTime), static_cast<unsigned long>(pE[2].exposureTime),
                    static_cast<unsigned long>(pE[1].exposureTime), sensCorrection,
                    LogRatio(pE[2].sensitivity, pE[0].sensitivity), ratios.CGRatio1, ratios.CGRatio2, shdrMode);
}

VOID CAECCore::runIrisControl(const AECCoreInput* /*pInput*/)
{
    std::memset(&m_irisOut, 0, sizeof(m_irisOut));
    m_irisIn.irisIsAborted = 0;

    m_irisIn.CurrZoomStep    = static_cast<UINT32>(m_LDMIn.zoomMotorStatus.motorCurPosition);
    m_irisIn.CurrIrisPos     = static_cast<UINT32>(m_LDMIn.pirisMotorStatus.motorCurPosition);
    m_irisIn.isMoving        = m_LDMIn.pirisMotorStatus.isMoving;
    m_irisIn.TarFn           = m_arbOut.expSets[AECAlgoExposureSafe].fnumber;
    m_irisIn.motorSysConfig  = m_LDMmotorSysParam;
    m_irisIn.motorPowerLevel = m_LDMmotorPowerLevel;
    m_irisIn.lensCap         = m_LDMlensCap;
    AEC_LOG_VERBOSE("[LDM] [Input] TarFn %f CurrZoomStep %u CurrIrisPos %u isMoving %d PIris %d zoom %d",
                    m_irisIn.TarFn, m_irisIn.CurrZoomStep, m_irisIn.CurrIrisPos, m_irisIn.isMoving,
                    m_irisIn.lensCap.PIris, m_irisIn.lensCap.zoom);

    m_pIrisCtrl->ProcessIris(&m_irisIn, &m_irisOut);

    const IrisPerFrameOutputParams& rMotor = m_irisOut.motorData;
    AEC_LOG_VERBOSE("[LDM] [Output]irisOut: TarFnumber %f moveAbs %d (%d) moveRel %d (%d %u) ctrl %d", m_irisOut.TarFnumber,
                    rMotor.motorSetFlag.motorMoveAbs_is_available, rMotor.motorMoveAbsData.absolutePosition,
                    rMotor.motorSetFlag.motorMoveRel_is_available, rMotor.motorMoveRelData.direction,
                    rMotor.motorMoveRelData.step, rMotor.motorSetFlag.motorCtrl_is_available);
}

VOID CAECCore::runExtensionModule(const AECCoreInput* pInput)
{
    std::memset(&m_extIn, 0, sizeof(m_extIn));
    m_extOut = ExtensionOutput();

    m_extIn.pIHistStats     = &pInput->aecStats.IHist;
    m_extIn.isAECSettled    = m_convOut.isAECSettled;
    m_extIn.luxIndex        = m_mtrOut.luxIndex;
    m_extIn.currentLuma     = m_mtrOut.currentLuma;
    m_extIn.RGRatio         = m_mtrOut.RGRatio;
    m_extIn.BGRatio         = m_mtrOut.BGRatio;
    m_extIn.safeExpIndexTgt = m_mtrOut.targetIndices[AECAlgoExposureSafe];

    m_pExtension->ExtensionProcess(&m_extIn, &m_extOut);
}

VOID CAECCore::updateParamsForDiagnostic()
{
    if (Running != m_pDiagnostic->GetDiagStatus().status)
    {
        return;
    }

    DiagInput                 diagInput = {m_mtrOut.currentLuma};
    const AECAlgoExposureData exposure  = m_pDiagnostic->ProcessTests(&diagInput);
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        m_arbOut.expSets[i] = exposure;
    }

    // The sweep may have started on this frame: its starting index is read afterwards.
    const FLOAT startingExpIndex = m_pDiagnostic->GetDiagStatus().startingExpIndex;
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        m_mtrOut.targetIndices[i]         = startingExpIndex;
        m_convOut.convExpSets[i].expIndex = startingExpIndex;
    }
    AEC_LOG_INFO("Diagnostic: Use settings from EI:%0.1f", startingExpIndex);
}

VOID CAECCore::updateHistory(const AECCoreInput* pInput)
{
    static_assert(sizeof(AECFrameHistory::BGStats) == sizeof(AECIRFrameProcInput::BGStats),
                  "the history keeps the IR input's grid lumas");

    AECFrameHistory history;
    history.frameID       = pInput->frameID;
    history.isStartConfig = FALSE;
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        history.expIndices[i]            = m_convOut.convExpSets[i].expIndex;
        history.expIndicesAdjustments[i] = m_convOut.convExpSets[i].expIndexAdjustment;
        history.expIndicesTargets[i]     = m_mtrOut.targetIndices[i];
        history.sHDRExpIndices[i]        = m_mtrOut.sHdrIndices[i];
        history.gain[i]                  = m_arbOut.expSets[i].linearGain;
        history.fnumber[i]               = m_arbOut.expSets[i].fnumber;
        history.expTime[i]               = m_arbOut.expSets[i].exposureTime;
        history.sensitivities[i]         = m_arbOut.expSets[i].sensitivity;
    }
    history.FPS                = m_arbOut.FPS;
    history.luma               = m_mtrOut.currentLuma;
    history.luxIndex           = m_mtrOut.luxIndex;
    history.LLSRequiredExpTime = m_extOut.triggeredFlags.LLSExpTime;
    history.bisAECSettled      = m_convOut.isAECSettled;
    history.previewEV          = m_convOut.previewEV;
    history.tableSensitivity   = m_pDataManager->getExposureLimitation()->streamingExpTblSens;
    history.predictiveGain     = std::fmax(m_convOut.predictiveGain, 1.0F);
    history.predictiveADRC     = std::fmax(m_convOut.predictiveADRC, 1.0F);
    history.postRawGain        = m_pDataManager->getPostRawGain();
    // The snapshot query raises it later on the newest entry.
    history.isSnapshotQuery = FALSE;
    history.IRModeActivated = m_irOut.IRModeActivated;
    history.IRLedIntensity  = m_irOut.IRLedIntensity;
    std::memcpy(history.BGStats, m_irIn.BGStats, sizeof(history.BGStats));
    history.expRatio = m_arbOut.expRatio;

    m_pDataManager->saveFrameHistoryInfo(history);
}

VOID CAECCore::handlePreflash(const AECCoreInput* /*pInput*/, AECCoreOutput* pOutput)
{
    // Later stage: preflash sequencing (LED state, low and high LED estimates, the two-stage flash estimation
    // of metering). Until then only the influence floor stands: the LEDs are as process reset them.
    pOutput->frameSetting.LEDInfluenceRatio = (m_mtrOut.flashInfluence >= 1.0F) ? m_mtrOut.flashInfluence : 1.0F;
}

VOID CAECCore::populateOutput(const AECCoreInput* pInput, AECCoreOutput* pOutput)
{
    // The LED fields already stand (process, handlePreflash) and are not touched here.
    AECFrameControl& rControl = pOutput->frameSetting;
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        rControl.exposureSets[i]     = m_arbOut.expSets[i];
        rControl.RealexposureSets[i] = m_arbOut.IdealexpSets[i];
    }
    rControl.exifInfo                  = m_arbOut.exif;
    rControl.statsBGBEConfig           = *m_pDataManager->getBGBEConfig();
    rControl.statsBHISTConfig          = *m_pDataManager->getBayerHistConfig();
    rControl.luxIndex                  = m_mtrOut.luxIndex;
    rControl.stretchControl            = m_extOut.YHistStretchOut;
    rControl.predictiveGain            = std::fmax(m_convOut.predictiveGain, 1.0F);
    rControl.IRModeActivated           = m_irOut.IRModeActivated;
    rControl.IRLedIntensity            = m_irOut.IRLedIntensity;
    rControl.digitalGainForSimulation  = m_simDigitalGain;
    rControl.isInsensorHDRSnapshot     = m_arbOut.isInsensorHDRSnapshot;
    rControl.compenADRCGain            = m_arbOut.compenADRCGain;
    rControl.compensationDarkBoostGain = m_arbOut.compensationDarkBoostGain;

    pOutput->LDMcmd.SetInfo = m_irisOut.motorData;

    // A running sweep owns the exposure: the host must not take it as settled.
    const BOOL isDiagRunning = (Running == m_pDiagnostic->GetDiagStatus().status) ? TRUE : FALSE;

    AECFrameInfo& rInfo     = pOutput->frameInfo;
    rInfo.brightnessSettled = (TRUE == isDiagRunning) ? FALSE : m_convOut.isBrightnessSettled;
    rInfo.aecSettled        = (TRUE == isDiagRunning) ? FALSE : m_convOut.isAECSettled;
    static_assert(sizeof(rInfo.legacyYStats) == sizeof(m_mtrOut.Ystats), "one legacy luma per metering region");
    std::memcpy(rInfo.legacyYStats, m_mtrOut.Ystats, sizeof(rInfo.legacyYStats));
    rInfo.asdExtremeGreenRatio = m_mtrOut.extremeGreenRatio;
    rInfo.asdExtremeBlueRatio  = m_mtrOut.extremeBlueRatio;

    const ExtTriggeredFlagsMonitorOut& rFlags = m_extOut.triggeredFlags;
    if (1 == rFlags.isFlashNeeded)
    {
        rInfo.snapshotIndicator = AECAlgoSnapshotFlash;
    }
    else if (1 == rFlags.isLLSNeeded)
    {
        rInfo.snapshotIndicator = AECAlgoSnapshotLLS;
    }
    else
    {
        rInfo.snapshotIndicator = AECAlgoSnapshotNormal;
    }
    rInfo.touchEVIndicator   = m_extOut.touchEVSceneMonitorOut;
    rInfo.LEDAFRequired      = rFlags.isLEDAFNeeded;
    rInfo.LEDFDDelayRequired = rFlags.isFDFlashDelayNeeded;
    rInfo.frameLuma          = m_mtrOut.frameLuma;
    rInfo.pixCntRatioLEF     = m_mtrOut.pixCntRatioLEF;

    printFrameControl("PerFrame", pInput->frameID, rControl);
    printFrameInfo(pInput->frameID, pOutput);
}

VOID CAECCore::printFrameControl(const CHAR* pTag, UINT64 frameID, const AECFrameControl& rFrameControl)
{
    AEC_LOG_VERBOSE("%s FrameControl: CID:%d FID:%llu flash %s LEDInfluence %.3f LEDCurrents (%u %u) "
                    "LEDRatios (%.3f %.3f) LuxIdx %.2f ISO %u predictiveGain %.3f",
                    pTag, m_cameraID, static_cast<unsigned long long>(frameID),
                    FlashStateName(rFrameControl.flashState), rFrameControl.LEDInfluenceRatio,
                    rFrameControl.LEDCurrents[0], rFrameControl.LEDCurrents[1], rFrameControl.LEDRGRatio,
                    rFrameControl.LEDBGRatio, rFrameControl.luxIndex, rFrameControl.exifInfo.ISOValue,
                    rFrameControl.predictiveGain);
}

VOID CAECCore::printFrameInfo(UINT64 frameID, const AECCoreOutput* pOutput)
{
    const AECAlgoExposureData* pSets = pOutput->frameSetting.exposureSets;
    AEC_LOG_INFO("[ExpSets] CID:%d FID:%d G(%.2f %.2f %.2f) Fn (%.2f %.2f %.2f) ET(%lu %lu %lu) LuxIdx(%.2f) Luma(%.2f)",
                 m_cameraID, static_cast<INT32>(frameID), pSets[0].linearGain, pSets[1].linearGain,
                 pSets[2].linearGain, pSets[0].fnumber, pSets[1].fnumber, pSets[2].fnumber,
                 static_cast<unsigned long>(pSets[0].exposureTime), static_cast<unsigned long>(pSets[1].exposureTime),
                 static_cast<unsigned long>(pSets[2].exposureTime), pOutput->frameSetting.luxIndex,
                 m_mtrOut.currentLuma);
}

VOID CAECCore::populateMulicamInfo(const AECCoreInput* pInput)
{
    // Built apart and published at once: the peer camera may read the record at any time.
    AECMultiCamInfo  ownInfo  = *m_pDataManager->getMyOwnInfo();
    AECMultiCamInfo* pOwnInfo = &ownInfo;
    if (nullptr != pInput)
    {
        pOwnInfo->statsFrameId = pInput->frameID;
    }
    const StatsCameraInfo* pCameraInfo = m_pDataManager->getCameraInfo();
    pOwnInfo->cameraID                 = pCameraInfo->cameraId;
    pOwnInfo->algoRole                 = pCameraInfo->algoRole;

    if (AECAlgoMeteringDisabled != m_pDataManager->getMeteringType())
    {
        AECMultiCamMtrInfo& rMetering = pOwnInfo->meteringInfo;
        rMetering.aecSettled          = m_convOut.isAECSettled;
        rMetering.luxIndex            = m_mtrOut.luxIndex;
        rMetering.averageLuma         = m_mtrOut.averageLuma;
        rMetering.currentLuma         = m_mtrOut.currentLuma;
        std::memcpy(rMetering.lumaTargets, m_mtrOut.lumaTargets, sizeof(rMetering.lumaTargets));
    }
    pOwnInfo->exposureInfo = m_arbOut.multiCamExpInfo;
    pOwnInfo->CCT          = static_cast<INT32>(m_pDataManager->getAWBState()->CCT);
    pOwnInfo->OTPInfo      = m_pDataManager->getDCCalibrationInfo();
    m_pDataManager->publishMyOwnInfo(ownInfo);
}

VOID CAECCore::convergenceKPI(BOOL isFrameStart)
{
    if (TRUE == isFrameStart)
    {
        StatsConvergenceKPIMeasure(TRUE, &m_AECConvKPI.kpi, "AEC CORE");
        return;
    }

    // Nothing in the core writes m_AECConvKPI.isAECSettled: the measurement restarts on the first frame and
    // does not report. The hook stays for a core that publishes its settle state here.
    if (1 == m_AECConvKPI.isAECSettled)
    {
        StatsConvergenceKPIMeasure(FALSE, &m_AECConvKPI.kpi, "AEC CORE");
        m_AECConvKPI.prevAECSettled = TRUE;
    }
    else if (FALSE != m_AECConvKPI.prevAECSettled)
    {
        StatsRestartConvergenceKPI(&m_AECConvKPI.kpi);
    }
    m_AECConvKPI.prevAECSettled = m_AECConvKPI.isAECSettled;
}
