// Base of the convergence submodules: per-frame records, identities, events and the shared Converge frame.
#ifndef AEC_CORE_MODULES_MOD_CONV_CONVERGENCESUBMODULE_H
#define AEC_CORE_MODULES_MOD_CONV_CONVERGENCESUBMODULE_H

#include "aec/core/include/aecconvergencerecords.h"
#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/coremoduletuningdata.h"
#include "aecore/aecore.h"

// Which submodule; also the index of the module's submodule table.
enum ConvAlgoIdentity : INT32
{
    ConvIDSlow          = 0,
    ConvIDFast          = 1,
    ConvIDPreflash      = 2,
    ConvIDFastAEC       = 3,
    ConvIDAggressiveAEC = 4,
    ConvIDFlashMeas     = 5,
    ConvIDTorch         = 6,
    ConvIDMax           = 7,
};

// What changed for a submodule; every submodule reconfigures on these.
enum ConvEventType : INT32
{
    ConvEventInitialize       = 0,
    ConvEventSpeedAdjChanged  = 1,
    ConvEventSpeedBaseChanged = 2,
    ConvEventSetEV            = 3,
    ConvEventMax              = 4,
};

// One frame as a submodule sees it; arrays of three are short, long, safe.
struct ConvergenceSubmoduleInput
{
    const ConvergenceInput*          pConvIn;                                  // targets and scene ratios
    FLOAT                            expIndices[AECAlgoExposureCount];         // commanded in the last frame
    FLOAT                            expIndexMatched[AECAlgoExposureCount];    // exposure of the statistics in hand
    FLOAT                            expIndexPreviousAdj[AECAlgoExposureCount]; // last adjustments
    const StatsGyroInfo*             pGyro;
    const ConvergenceTuningDataType* pTuning;
    aecglobalelements::StartEndType  expTableRange;
    FLOAT                            currentFPS;
    BOOL                             bIsTouchActive;
    BOOL                             bHasEVChanged;
    BOOL                             bExternalSkip;
    BOOL                             bWaitForFDInPreflash;
    BOOL                             HDR3Enable;
};

// What a submodule decided for one frame.
struct ConvergenceSubmoduleOutput
{
    FLOAT expIndices[AECAlgoExposureCount];
    BOOL  isSettled[AECAlgoExposureCount];
    FLOAT darkBrightSafeTarget;
};

// Shared frame of all convergers: skip rule, quantisation, clamping, HDR arrangement and settle test.
// A derived class supplies the step of each exposure and its settle rule.
class ConvergenceSubmodule
{
public:
    // Makes the class that serves the identity (null for an unknown identity or a failed allocation).
    // The caller owns the result and deletes it.
    static ConvergenceSubmodule* CreateInstance(ConvAlgoIdentity identity, const ConvergenceTuningDataType* pTuning);

    virtual ~ConvergenceSubmodule() = default;

    ConvergenceSubmodule(const ConvergenceSubmodule&)            = delete;
    ConvergenceSubmodule& operator=(const ConvergenceSubmodule&) = delete;

    // One frame: the next short, long and safe index with their settled flags. AecError only for null records.
    virtual AecResult Converge(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput);

    // Reconfigures after a change; AecError for an identity the class does not serve.
    virtual AecResult SetConvEvent(ConvEventType event) = 0;

    virtual FLOAT ConvergeSafeExposure(const ConvergenceSubmoduleInput* pInput)                   = 0;
    virtual FLOAT ConvergeShortExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex) = 0;
    virtual FLOAT ConvergeLongExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex)  = 0;
    virtual void  GetIsSettled(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput) = 0;
    virtual aecglobalelements::ConvFrameSkipType GetSkipType() = 0;

    // The converger a wrapper hands over to; only the torch wrapper has one.
    virtual void SetSecondaryAlgo(ConvergenceSubmodule* pSecondary);

    // Steps a short or long exposure so its distance to the safe one approaches the target's.
    FLOAT SnapAndConvergeDelta(FLOAT tolerance, FLOAT speed, const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex,
                               AECAlgoExposureType type);

    FLOAT GetSpeedAdjust() const { return m_speedAdjust; }
    void  SetSpeedAdjust(FLOAT speedAdjust) { m_speedAdjust = speedAdjust; }
    FLOAT GetBaseSpeedOverride() const { return m_baseSpeedOverride; }
    void  SetBaseSpeedOverride(FLOAT baseSpeed) { m_baseSpeedOverride = baseSpeed; }
    void  SetSysLatency(UINT8 sysLatency) { m_sysLatency = sysLatency; }
    UINT8 GetSysLatency() const { return m_sysLatency; }
    ConvAlgoIdentity GetIdentity() const { return m_identity; }

protected:
    ConvergenceSubmodule(ConvAlgoIdentity identity, const ConvergenceTuningDataType* pTuning);

    // Index grid of the convergence tuning; 1.0 when the tuning has none or a non-positive one, so that the
    // quantisation never divides by zero.
    static FLOAT UnitStepSize(const ConvergenceTuningDataType* pTuning);
    // value on the grid of unit u, halves rounded away from zero.
    static FLOAT RoundToGrid(FLOAT value, FLOAT unit);
    // value within the table range, the upper bound applied first.
    static FLOAT ClampToRange(FLOAT value, const aecglobalelements::StartEndType& range);

    UINT8                            m_sysLatency;
    ConvAlgoIdentity                 m_identity;
    FLOAT                            m_speedAdjust;          // face/touch factor on the speed
    FLOAT                            m_baseSpeedOverride;    // above 0 replaces the tuned speed
    FLOAT                            m_darkBrightSafeTarget; // safe target after the dark/bright heuristics
    const ConvergenceTuningDataType* m_pTuning;              // the module's tuning view, read at events
};

#endif // AEC_CORE_MODULES_MOD_CONV_CONVERGENCESUBMODULE_H
