// Base of every processing module: the context it reads and the change events it may react to.
#ifndef AEC_CORE_INCLUDE_IAECCOMPONENT_H
#define AEC_CORE_INCLUDE_IAECCOMPONENT_H

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/iaeccontext.h"

// The state store sends each event to every registered module in registration order.
// Every event succeeds by default, so a module overrides only the events it cares about.
class IAECComponent
{
public:
    virtual ~IAECComponent() = default;

    virtual AecResult OnOperationModeChange() { return AecSuccess; }
    virtual AecResult OnMeteringModeChange() { return AecSuccess; }
    virtual AecResult OnExposureCompChange() { return AecSuccess; }
    virtual AecResult OnFlickerCompModeChange() { return AecSuccess; }
    virtual AecResult OnManualSettingChange() { return AecSuccess; }
    virtual AecResult OnFPSChange() { return AecSuccess; }
    virtual AecResult OnLEDModeChange() { return AecSuccess; }
    virtual AecResult OnFlashMeasKindChange() { return AecSuccess; }
    virtual AecResult OnFrameDimChange() { return AecSuccess; }
    virtual AecResult OnTouchROIChange() { return AecSuccess; }
    virtual AecResult OnFaceROIChange() { return AecSuccess; }
    virtual AecResult OnSensorInfoChange() { return AecSuccess; }
    virtual AecResult OnZoomInfoChange() { return AecSuccess; }
    virtual AecResult OnDiagTestConfigChange() { return AecSuccess; }
    virtual AecResult OnTuningHeaderChange() { return AecSuccess; }
    virtual AecResult OnAECLockChange() { return AecSuccess; }
    virtual AecResult OnDebugDataUpdate() { return AecSuccess; }
    virtual AecResult OnMultiExposureSensorModeChange() { return AecSuccess; }
    virtual AecResult OnDCGModeChange() { return AecSuccess; }
    virtual AecResult OnCustomExposureTableChange() { return AecSuccess; }
    virtual AecResult OnCustomMeteringTableChange() { return AecSuccess; }
    virtual AecResult OnDynamicConvergenceSpeedChange() { return AecSuccess; }
    virtual AecResult OnIRStateChange() { return AecSuccess; }
    virtual AecResult OnIRSystemConfigChange() { return AecSuccess; }
    virtual AecResult OnFnManualChange() { return AecSuccess; }

protected:
    // Module interfaces that declare no constructor of their own leave the context to the concrete module.
    explicit IAECComponent(IAECContext* pContext = nullptr)
        : m_aecContext(pContext)
    {
    }

    IAECContext* m_aecContext;
};

#endif // AEC_CORE_INCLUDE_IAECCOMPONENT_H
