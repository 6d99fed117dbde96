// Flash measurement converger: a rapid start converger that freezes once a measurement has settled.
#ifndef AEC_CORE_MODULES_MOD_CONV_CONVFLASHMEASUREMENT_H
#define AEC_CORE_MODULES_MOD_CONV_CONVFLASHMEASUREMENT_H

#include <atomic>

#include "aec/core/modules/mod_conv/convergencesubmodule.h"

class ConvStartup;

// Wraps a rapid start converger; calibration measurements keep the manual index instead of converging.
class ConvFlashMeasurement final : public ConvergenceSubmodule
{
public:
    // pConverger is owned from here on and may not be null.
    ConvFlashMeasurement(const ConvergenceTuningDataType* pTuning, ConvStartup* pConverger);
    ~ConvFlashMeasurement() override;

    AecResult SetConvEvent(ConvEventType event) override;
    FLOAT     ConvergeSafeExposure(const ConvergenceSubmoduleInput* pInput) override;
    FLOAT     ConvergeShortExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex) override;
    FLOAT     ConvergeLongExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex) override;
    void      GetIsSettled(const ConvergenceSubmoduleInput* pInput, ConvergenceSubmoduleOutput* pOutput) override;
    aecglobalelements::ConvFrameSkipType GetSkipType() override;

    // Measurement index and kind requested by the host; shared by all cameras.
    static void SetMeasurement(UINT32 measIndex, AECAlgoFlashMeasKindType measKind);
    static UINT32                   GetMeasIndex() { return s_measIndex.load(); }
    static AECAlgoFlashMeasKindType GetMeasKind() { return s_measKind.load(); }
    // Safe target of the last measurement that settled; -1.0 when none since the last reset.
    static FLOAT GetPreviousFlashMeasTargetIndex() { return s_previousFlashMeasTargetIndex.load(); }
    static void  ResetPreviousFlashMeasTargetIndex() { s_previousFlashMeasTargetIndex.store(-1.0F); }

    FLOAT GetSettledIndex() const { return m_settledIndex; }
    // Measurement index in force at the last converged frame.
    UINT32 GetFrameMeasIndex() const { return m_measIndex; }

private:
    INT32        m_measFrameCounter;
    ConvStartup* m_pConverger;
    UINT32       m_measIndex;
    BOOL         m_isManualIdx;  // this frame kept the manual index of a calibration
    FLOAT        m_settledIndex; // safe index of the first settle, -1.0 before it

    // Class-wide so that the next measurement, on any camera, starts from the last one; atomic because
    // cameras may run on different threads.
    static std::atomic<FLOAT>                    s_previousFlashMeasTargetIndex;
    static std::atomic<UINT32>                   s_measIndex;
    static std::atomic<AECAlgoFlashMeasKindType> s_measKind;
};

#endif // AEC_CORE_MODULES_MOD_CONV_CONVFLASHMEASUREMENT_H
