// Metering module: one frame of statistics to the frame luma, the short/long/safe targets and their exposure indices.
#ifndef AEC_CORE_MODULES_MOD_MTR_CAECMODMETERING_H
#define AEC_CORE_MODULES_MOD_MTR_CAECMODMETERING_H

#include "aec/core/include/aecdebugdata.h"
#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/include/iaecmetering.h"
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"
#include "aec/core/modules/mod_mtr/iaectargetcalculator.h"
#include "aec/core/modules/mod_mtr/meteringcalcrecords.h"

class CFlashSnapshotEstimator;

// Calculators in the order in which they run. Fixed capacity: the lists are built once, at construction.
template <typename TCalculator, UINT32 Capacity>
struct AECCalculatorList
{
    TCalculator* items[Capacity];
    UINT32       count;
};

// The longest luma list is the streaming one; all three share the type so that one pointer selects any of them.
typedef AECCalculatorList<IAECLumaCalculator, 9>   AECLumaCalculatorList;
typedef AECCalculatorList<IAECTargetCalculator, 5> AECTargetCalculatorList;

// Staggered-HDR exposure decision of one frame.
struct AECShdrResult
{
    BOOL                Enable;
    FLOAT               ExpIndex[AECAlgoExposureCount]; // SEF, LEF, MEF
    AECAlgoExposureData IdealOutput[AECAlgoExposureCount];
    AECAlgoExposureData SensorOutput[AECAlgoExposureCount];
    BOOL                IsSettled;
    BOOL                IsLEFSettled;
    BOOL                IsFlatScene;
    FLOAT               TM_Factor;
    FLOAT               pixCntRatioLEF;
    FLOAT               expRatio;
};

class CAECModMetering final : public IAECMetering
{
public:
    CAECModMetering(IAECContext* pContext, IMeteringCallback* pCallback);
    ~CAECModMetering() override;

    CAECModMetering(const CAECModMetering&)            = delete;
    CAECModMetering& operator=(const CAECModMetering&) = delete;

    AecResult ProcessFrameStats(const AECMeteringFrameProcInput* pInput, AECMeteringFrameProcOutput* pOutput) override;
    AecResult GetSnapshotEstimation(const AECMeteringSnapshotInput* pInput, AECMeteringSnapshotOutput* pOutput) override;
    AecResult HandleFlashEstimationStages(AECMeteringFlashEstStage stage, FLOAT flux) override;
    VOID      EstimateLuxIndexForSlave(AECMeteringFrameProcOutput* pOutput) override;
    VOID      GetYStats(FLOAT* pYStats, UINT32 capacity, UINT32& count) override;
    AecResult ProcessFrameStatsForIR(AECIRFrameProcInput* pInput) override;

    AecResult OnOperationModeChange() override;
    AecResult OnDiagTestConfigChange() override;
    AecResult OnMultiExposureSensorModeChange() override;
    AecResult OnTuningHeaderChange() override;
    AecResult OnDebugDataUpdate() override;

private:
    friend class CAECModMeteringTestAccess;

    VOID CreateCalculators();
    template <typename TCalculator, typename TList, typename... Args>
    VOID AddCalculator(TList* pList, Args... args);

    // Frame steps.
    FLOAT     CompensationGain(const AECFrameHistory* pFrame) const;
    AecResult RepeatLastFrame(AECMeteringFrameProcOutput* pOutput) const;
    VOID      FillLumaInput(const AECFrameHistory* pFrame, BOOL bSlaveToMasterSwitch, FLOAT compensationGain,
                            const AECMeteringFrameProcInput* pInput, AECLumaCalcInput* pLumaInput);
    VOID      FillTargetInput(const AECFrameHistory* pFrame, EVContext* pEV, AECTargetCalcInput* pTargetInput);
    VOID      FillOutput(const AECShdrResult& shdr, AECMeteringFrameProcOutput* pOutput);

    // Aggregation of the calculator results.
    VOID aggregateLumaResult(AECLumaCalcResult* pResult);
    VOID aggregate3HDRType1LumaResult(AECLumaCalcResult* pResult);
    VOID aggregateTargetResult(AECTargetCalcResult* pTarget);

    // Target exposure indices from lumas and targets.
    AecResult EstimateTargetExposureIndex(const AECLumaCalcResult* pLuma, const AECTargetCalcResult* pTarget,
                                          FLOAT* pIdx);
    FLOAT     PreflashTargetIndex(const AECLumaCalcResult* pLuma, const AECTargetCalcResult* pTarget,
                                  const AECFrameHistory* pMatched, const AECFrameHistory* pLast) const;
    VOID      AdjustShortIndexForAntibanding(FLOAT* pIdx);

    // Multi-camera mixing with the peer's metering.
    VOID HandleMultiCamMtrMixAndExpDynamic(AECTargetCalcResult* pTarget, AECLumaCalcResult* pLuma);
    VOID MultiCamMtrMixCalc(AECTargetCalcResult* pTarget, AECLumaCalcResult* pLuma);
    VOID MultiCamExpDynamicCalc(AECTargetCalcResult* pTarget);

    // Staggered-HDR exposure decision.
    VOID AdjustShdrExposure(const AECMeteringFrameProcInput* pInput, const MeteringTuningDataType* pTuning,
                            AECShdrResult* pResult);

    VOID UpdateDebugData();

    IMeteringCallback*       m_pCallback;
    AECLumaCalculatorList    m_lumaCalculators;
    AECLumaCalculatorList    m_lumaCalculatorsPreflash;
    AECLumaCalculatorList    m_lumaCalculatorsFlashMeasurement;
    AECLumaCalculatorList*   m_pLumaCalculators;
    AECTargetCalculatorList  m_targetCalculators;
    CStatsProcessor          m_statsParser;
    AECTargetCalcResult      m_targetCalcResult;
    AECLumaCalcResult        m_lumaCalcResult;
    CFlashSnapshotEstimator* m_pFlashEstimator;
    BOOL                     m_enableDiagnostic;
    AECDebugDataMeteringType m_debugData;
    UINT32                   m_BGSatThres[4];
    FLOAT                    m_flashSnapshotInfluence;
    FLOAT                    m_flux;
    FLOAT                    m_maxUnderExposureRatio;
    AECAlgoMultiCamExposureType m_prevMode;
    FLOAT                    m_DRCGainHDR3;
    UINT32                   m_settledCount;
    UINT32                   m_settledCount_LEF;
    UINT32                   m_convSkipCount;
    FLOAT                    m_flatSceneRatio;
    FLOAT                    m_statsMaxValue;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CAECMODMETERING_H
