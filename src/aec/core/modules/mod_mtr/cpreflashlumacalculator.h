// Preflash luma data: how much the LED lifts the scene and how many regions it drives into saturation.
#ifndef AEC_CORE_MODULES_MOD_MTR_CPREFLASHLUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CPREFLASHLUMACALCULATOR_H

#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"
#include "aec/core/modules/mod_mtr/statsprocrecords.h"

class CFlashSnapshotEstimator;

// The LED-off reference is class-level: the flash estimator sets it through ComputePreflashIsBrightTable when it
// backs up the LED-off statistics, and every preflash frame compares against it. Two cameras that flash at the
// same time share it; the frame threads take no lock for it.
class CPreflashLumaCalculator final : public IAECLumaCalculator
{
public:
    static constexpr UINT32 LegacyRegionCount = 256;

    explicit CPreflashLumaCalculator(CStatsProcessor* pStatsProc);

    VOID      Initialize() override;
    AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) override;

    // Remembers the estimator and marks the legacy regions that are bright with the LED off, holes filled.
    static VOID ComputePreflashIsBrightTable(const aecFlash::FlashStatsPreprocessingType* pTuning,
                                             const ParsedLegacyYRegionType* pYStats,
                                             CFlashSnapshotEstimator* pEstimator);
    // Forgets pEstimator if it is the remembered one; the estimator calls this before it goes away.
    static VOID ReleaseFlashEstimator(const CFlashSnapshotEstimator* pEstimator);

private:
    static CFlashSnapshotEstimator* s_pFlashEstimator;
    static INT32                    s_LEDOffDilatedBrightTable[LegacyRegionCount];
};

#endif // AEC_CORE_MODULES_MOD_MTR_CPREFLASHLUMACALCULATOR_H
