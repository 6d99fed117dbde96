// Interface of the extension module: monitors, flash current estimates and flash measurement.
#ifndef AEC_CORE_INCLUDE_IAECEXTENSION_H
#define AEC_CORE_INCLUDE_IAECEXTENSION_H

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aecextensionrecords.h"
#include "aec/core/include/iaeccomponent.h"
#include "aecore/aecore.h"

class IAECExtension : public IAECComponent
{
public:
    virtual AecResult ExtensionProcess(ExtensionInput* pInput, ExtensionOutput* pOutput) = 0;
    // Writes the LED settings of type into pFrameControl and returns the main-to-preflash flux ratio;
    // isFirstQuery makes a fresh estimate instead of reusing the stored one.
    virtual FLOAT     GetFlashCurrentEstimate(ExtFlashCurrentType type,
                                              AECFrameControl*    pFrameControl,
                                              BOOL                isFirstQuery) = 0;
    virtual AecResult SetFlashCalibrationData(const AECAlgoFlashCalibrationData* pCalibration) = 0;
    virtual AecResult GetFlashMeasurementConfig(AECAlgoFlashMeasurementConfig* pConfig) = 0;
    virtual AecResult GetFlashMeasurementStatus(AECAlgoFlashMeasurementResult* pResult) = 0;
    virtual AecResult GetHistStretchData(AECYHistStretchData* pStretch) = 0;
};

#endif // AEC_CORE_INCLUDE_IAECEXTENSION_H
