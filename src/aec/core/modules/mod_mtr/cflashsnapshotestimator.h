// Flash snapshot estimator: backs up the LED-off and preflash measurements that the snapshot exposure comes from.
#ifndef AEC_CORE_MODULES_MOD_MTR_CFLASHSNAPSHOTESTIMATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CFLASHSNAPSHOTESTIMATOR_H

#include "aec/core/include/aecmeteringrecords.h"
#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/include/iaeccontext.h"
#include "aec/core/include/iprocessedstats.h"
#include "aec/core/modules/mod_mtr/meteringcalcrecords.h"

class CStatsProcessor;

// Minimal until the flash snapshot stage lands: the two backups are complete (lumas, targets, matched frame, a
// clone of the statistics, the dilated bright table), the snapshot extrapolation is not yet built and reports
// failure.
class CFlashSnapshotEstimator
{
public:
    static constexpr UINT32 LegacyRegionCount = 256;

    struct FlashStatsBackup
    {
        AECLumaCalcResult   lumas;
        AECTargetCalcResult targets;
        AECFrameHistory     matchedFrameData;
        IProcessedStats*    pStats; // clone owned here
        BOOL                isValid;
    };

    struct FlashDataBackup
    {
        FLOAT            flux;
        FlashStatsBackup statsOff;
        FlashStatsBackup statsLow;
        INT32            isBrightTable[LegacyRegionCount];
        FLOAT            kStats[LegacyRegionCount];
        FLOAT            kStatsSorted[LegacyRegionCount];
        FLOAT            flashBiasTable[LegacyRegionCount];
        FLOAT            smartYStatsOff[LegacyRegionCount];
        FLOAT            smartYStatsLow[LegacyRegionCount];
        FLOAT            preflashToStreamingOffset;
        UINT8            faceROICount;
        FLOAT            maxFaceSize;
    };

    explicit CFlashSnapshotEstimator(IAECContext* pContext);
    ~CFlashSnapshotEstimator();

    CFlashSnapshotEstimator(const CFlashSnapshotEstimator&)            = delete;
    CFlashSnapshotEstimator& operator=(const CFlashSnapshotEstimator&) = delete;

    VOID BackupFlashStats(BOOL isLEDOn, AECTargetCalcResult* pTargets, AECLumaCalcResult* pLumas,
                          CStatsProcessor* pProc, IMeteringCallback* pCallback);
    AecResult GetExposureEstimation(FLOAT flux, FLOAT preflashToStreamingOffset, AECMeteringSnapshotOutput* pOutput);
    VOID      ResetAfterCapture();

    const FlashDataBackup& GetFlashData() const { return m_flashData; }

    // Fills the holes of a 16 x 16 mask: an interior 0 whose four neighbours are 1 becomes 1; nothing grows.
    static VOID UtilDilateBinaryMask(INT32* pMask);

private:
    VOID ReleaseBackup(FlashStatsBackup* pBackup);

    IAECContext*    m_pContext;
    FlashDataBackup m_flashData;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CFLASHSNAPSHOTESTIMATOR_H
