// Flash snapshot estimator: the LED-off and preflash backups; the snapshot extrapolation is still to come.
#include "aec/core/modules/mod_mtr/cflashsnapshotestimator.h"

#include <cstring>

#include "aec/core/modules/mod_mtr/cpreflashlumacalculator.h"
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"

CFlashSnapshotEstimator::CFlashSnapshotEstimator(IAECContext* pContext)
    : m_pContext(pContext)
    , m_flashData()
{
    m_flashData.maxFaceSize = -1.0f;
}

CFlashSnapshotEstimator::~CFlashSnapshotEstimator()
{
    ResetAfterCapture();
    // The preflash calculators keep the estimator of the last LED-off backup at class level.
    CPreflashLumaCalculator::ReleaseFlashEstimator(this);
}

VOID CFlashSnapshotEstimator::ReleaseBackup(FlashStatsBackup* pBackup)
{
    delete pBackup->pStats;
    pBackup->pStats  = nullptr;
    pBackup->isValid = FALSE;
}

VOID CFlashSnapshotEstimator::ResetAfterCapture()
{
    ReleaseBackup(&m_flashData.statsOff);
    ReleaseBackup(&m_flashData.statsLow);
}

VOID CFlashSnapshotEstimator::BackupFlashStats(BOOL isLEDOn, AECTargetCalcResult* pTargets, AECLumaCalcResult* pLumas,
                                               CStatsProcessor* pProc, IMeteringCallback* pCallback)
{
    FlashStatsBackup* pBackup = (TRUE == isLEDOn) ? &m_flashData.statsLow : &m_flashData.statsOff;
    if (TRUE == isLEDOn)
    {
        pCallback->SetAreFlashLowStatsSaved(TRUE);
        ReleaseBackup(&m_flashData.statsLow);
    }
    else
    {
        pCallback->SetAreFlashLowStatsSaved(FALSE);
        ResetAfterCapture();
    }

    const AECFrameHistory* pMatched = m_pContext->getFrameHistory(m_pContext->getPipelineDelay());
    AEC_LOG_INFO("AECCoreFlash BackupFlashStats LED is in %s state, avg luma: %f", (TRUE == isLEDOn) ? "LOW" : "OFF",
                 pLumas->averageLuma);
    pBackup->lumas   = *pLumas;
    pBackup->targets = *pTargets;
    if (nullptr != pMatched)
    {
        pBackup->matchedFrameData = *pMatched;
    }

    // The whole frame is parsed, so that the clone holds every region whatever the frame pass skipped.
    pProc->ReprocessBGStats(BGStatsIterationMode::Exhaustive, 0.0f, 0.0f, 1.0f, 1.0f);
    pBackup->pStats = pProc->GetStatsProcessingResult()->Clone();

    if (FALSE == isLEDOn)
    {
        const MeteringTuningDataType* pTuning = m_pContext->getMtrTuning();
        if ((nullptr != pTuning) && (nullptr != pTuning->pFlash))
        {
            CPreflashLumaCalculator::ComputePreflashIsBrightTable(
                &pTuning->pFlash->statsPreprocessing, pProc->GetStatsProcessingResult()->GetLegacyYRegionStats(),
                this);
        }
    }
    pBackup->isValid = (nullptr != pBackup->pStats) ? TRUE : FALSE;
}

AecResult CFlashSnapshotEstimator::GetExposureEstimation(FLOAT flux, FLOAT preflashToStreamingOffset,
                                                         AECMeteringSnapshotOutput* pOutput)
{
    if ((FALSE == m_flashData.statsOff.isValid) || (FALSE == m_flashData.statsLow.isValid))
    {
        AEC_LOG_ERROR("Flash sequence error, m_flashData.statsoff.isValid: %d m_flashData.statsLow.isValid %d",
                      m_flashData.statsOff.isValid, m_flashData.statsLow.isValid);
        return AecError;
    }
    m_flashData.flux                      = flux;
    m_flashData.preflashToStreamingOffset = preflashToStreamingOffset;
    // The extrapolation to full flash power comes with the flash snapshot stage; until then no estimate is given.
    std::memset(pOutput, 0, sizeof(*pOutput));
    AEC_LOG_ERROR("Flash snapshot estimation is not available in this build");
    return AecError;
}
