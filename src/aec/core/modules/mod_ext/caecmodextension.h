// Extension module stand-in: monitors and flash estimates are not computed until the extension stage lands.
#ifndef AEC_CORE_MODULES_MOD_EXT_CAECMODEXTENSION_H
#define AEC_CORE_MODULES_MOD_EXT_CAECMODEXTENSION_H

#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/include/iaecextension.h"

// Minimal stand-in for the extension module until its stage lands: it does nothing beyond returning success
// and neutral outputs. Every flash estimate leaves the LEDs off, which is what the core needs at the start of
// each frame; no measurement is configured and no histogram stretch is applied.
class CAECModExtension final : public IAECExtension
{
public:
    CAECModExtension(IAECContext* pContext, IExtensionCallback* pCallback);

    AecResult ExtensionProcess(ExtensionInput* pInput, ExtensionOutput* pOutput) override;
    FLOAT     GetFlashCurrentEstimate(ExtFlashCurrentType type, AECFrameControl* pFrameControl, BOOL isFirstQuery) override;
    AecResult SetFlashCalibrationData(const AECAlgoFlashCalibrationData* pCalibration) override;
    AecResult GetFlashMeasurementConfig(AECAlgoFlashMeasurementConfig* pConfig) override;
    AecResult GetFlashMeasurementStatus(AECAlgoFlashMeasurementResult* pResult) override;
    AecResult GetHistStretchData(AECYHistStretchData* pStretch) override;
};

#endif // AEC_CORE_MODULES_MOD_EXT_CAECMODEXTENSION_H
