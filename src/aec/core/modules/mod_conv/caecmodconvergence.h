// Convergence module: steps the exposure indices of each frame towards the metering targets and decides settle.
#ifndef AEC_CORE_MODULES_MOD_CONV_CAECMODCONVERGENCE_H
#define AEC_CORE_MODULES_MOD_CONV_CAECMODCONVERGENCE_H

#include "aec/core/include/aecdebugdata.h"
#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/include/iaecconvergence.h"
#include "aec/core/modules/mod_conv/convergencesubmodule.h"

// Owns one converger per identity and picks the one that runs from the operation mode. Lock, follow mode and
// post-raw gain compensation fix the exposure instead of converging; touch and face scale the speed; the module
// also knows where a mode starts and how many frames a preflash switch skips.
class CAECModConvergence final : public IAECConvergence
{
public:
    // Index units per decade of sensitivity: the single-precision 77.89853 widened.
    static constexpr DOUBLE IndexPerDecade = 77.89852905273438;
    // Index units per stop, the unit in which a frame records its preview EV.
    static constexpr FLOAT IndexPerStop = 23.449795F;
    // Float equality limit of the exposure indices and speeds.
    static constexpr FLOAT FloatLimit = 1e-7F;

    CAECModConvergence(IAECContext* pContext, IConvergenceCallback* pCallback);
    ~CAECModConvergence() override;

    CAECModConvergence(const CAECModConvergence&)            = delete;
    CAECModConvergence& operator=(const CAECModConvergence&) = delete;

    // Per frame; fails only for null records.
    AecResult ConvergeFrameExposure(const ConvergenceInput* pInput, ConvergenceOutput* pOutput) override;
    AecResult GetStartExposureIndices(FLOAT* pIndices, FLOAT* pLuxIndex, BOOL refuseFastStart) override;

    AecResult OnOperationModeChange() override;
    AecResult OnExposureCompChange() override;
    AecResult OnAECLockChange() override;
    AecResult OnDynamicConvergenceSpeedChange() override;
    AecResult OnTuningHeaderChange() override;
    AecResult OnFlashMeasKindChange() override;
    AecResult OnDebugDataUpdate() override;

    // Read access for diagnostics and tests.
    ConvAlgoIdentity      GetCurrentAlgoID() const { return m_currAlgoID; }
    ConvergenceSubmodule* GetSubmodule(ConvAlgoIdentity identity) const;
    BOOL                  IsCameraLaunch() const { return m_isCameraLaunch; }
    FLOAT                 GetPreviewEVOffset() const { return m_previewEVOffset; }
    BOOL                  GetWaitForFDInPreflash() const { return m_bWaitForFDInPreflash; }

private:
    // Frame steps (caecmodconvergenceframe.cpp).
    VOID UpdateFollowMode();
    VOID UpdateSpeedAdjustment();
    const FLOAT* GetFixedIndices(const ConvergenceInput* pInput, FLOAT* pCompensated);
    VOID UpdateFixedTargetIndices(const ConvergenceInput* pInput, const FLOAT* pIndices,
                                  const MinMaxRangeFloat& range, ConvergenceOutput* pOutput);
    VOID FillSubmoduleHistory(ConvergenceSubmoduleInput* pSubInput, const AECFrameHistory* pPrevious,
                              const AECFrameHistory* pMatched);
    VOID UpdateSettleBasedOnExtInput(AECAlgoSettleFlagType settleType, BOOL* pSettled);
    VOID SetOutputSettleFlags(const BOOL* pSettled, ConvergenceOutput* pOutput);
    VOID CalculatePrediction(const ConvergenceInput* pInput, FLOAT darkBrightSafeTarget, ConvergenceOutput* pOutput,
                             const AECFrameHistory* pPrevious, const AECFrameHistory* pMatched);
    VOID ExpTimePriorityConfig(ConvergenceOutput* pOutput);
    VOID SHDRExpConfig(ConvergenceOutput* pOutput);
    VOID UpdateDebugData(const ConvergenceInput* pInput, const FLOAT* pTargets, const MinMaxRangeFloat& range,
                         const BOOL* pSettled, const ConvergenceOutput* pOutput);

    // Start indices (caecmodconvergencestart.cpp).
    VOID CapStartUpIndices(const AECAlgoStartupIndices* pStart, FLOAT capStart, FLOAT capEnd, FLOAT* pIndices);
    AecResult EstimateFlashMeasurementStartExposure(FLOAT* pIndices);

    // Mode and speed changes (caecmodconvergenceevents.cpp).
    VOID InitializeFrameSkip(AECAlgoOperationModeType newMode);
    VOID SetFrameSkipCounter(UINT32 counter);
    VOID SetNewBaseSpeed(BOOL launch);
    VOID SelectStreamingAlgo();
    // Index offset of the EV setting in force; 0 without metering tuning.
    FLOAT CurrentEVOffset();

    // Submodule table (caecmodconvergence.cpp).
    VOID CreateSubmodules(const ConvergenceTuningDataType* pTuning);
    VOID DestroySubmodules();
    // The converger in charge; null only when its creation failed, which the callers log and survive.
    ConvergenceSubmodule* Current() const;
    VOID SendEvent(ConvEventType event);
    FLOAT UnitStepSize() const;

    IConvergenceCallback*            m_pCallback;
    const ConvergenceTuningDataType* m_pSubmoduleTuning; // the tuning view the submodules were made with

    ConvergenceSubmodule*       m_pConvAlgoTable[ConvIDMax];
    ConvAlgoIdentity            m_currAlgoID;
    BOOL                        m_isCameraLaunch;
    BOOL                        m_wasFaceROIActive;
    FLOAT                       m_expPrioConvStartIdx;
    BOOL                        m_bEVChanged;
    AECDebugDataConvergenceType m_debugData;
    FLOAT                       m_previewEVOffset;
    FLOAT                       m_previewEV;
    BOOL                        m_isFollowMode;
    BOOL                        m_settleFlagStatus[AECAlgoExposureCount];
    FLOAT                       m_previousFrameFPS;
    FLOAT                       m_avgLuma;
    BOOL                        m_bWaitForFDInPreflash;
    FLOAT                       m_EsRatio;
    ConvAlgoIdentity            m_torchNormalAlgoID; // the converger the torch wrapper hands back to
};

#endif // AEC_CORE_MODULES_MOD_CONV_CAECMODCONVERGENCE_H
