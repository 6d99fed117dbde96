// Extension module stand-in: monitors and flash estimates are not computed until the extension stage lands.
#include "aec/core/modules/mod_ext/caecmodextension.h"

CAECModExtension::CAECModExtension(IAECContext* pContext, IExtensionCallback* /*pCallback*/)
{
    m_aecContext = pContext;
}

AecResult CAECModExtension::ExtensionProcess(ExtensionInput* /*pInput*/, ExtensionOutput* /*pOutput*/)
{
    // The caller zeroed the output: no monitor has anything to report.
    return AecSuccess;
}

FLOAT CAECModExtension::GetFlashCurrentEstimate(ExtFlashCurrentType type,
                                                AECFrameControl*    pFrameControl,
                                                BOOL /*isFirstQuery*/)
{
    // The LED fields of an "off" estimate: no current, full first entry, unknown colour ratios.
    pFrameControl->flashState         = AECAlgoFlashStateOff;
    pFrameControl->LEDCurrents[0]     = 0;
    pFrameControl->LEDCurrents[1]     = 0;
    pFrameControl->LEDFirstEntryRatio = 1.0F;
    pFrameControl->LEDLastEntryRatio  = 0.0F;
    pFrameControl->LEDRGRatio         = -1.0F;
    pFrameControl->LEDBGRatio         = -1.0F;
    // No flux is known: "off" has none, and a lit estimate gives the neutral main-to-preflash ratio.
    return (Off == type) ? 0.0F : 1.0F;
}

AecResult CAECModExtension::SetFlashCalibrationData(const AECAlgoFlashCalibrationData* /*pCalibration*/)
{
    return AecSuccess;
}

AecResult CAECModExtension::GetFlashMeasurementConfig(AECAlgoFlashMeasurementConfig* pConfig)
{
    // No measurement kind is configured.
    pConfig->measurementsCount   = -1;
    pConfig->allowedReTriesCount = -1;
    pConfig->flashOnFrameCount   = -1;
    return AecSuccess;
}

AecResult CAECModExtension::GetFlashMeasurementStatus(AECAlgoFlashMeasurementResult* pResult)
{
    pResult->status           = AECAlgoFlashMeasStatusFail;
    pResult->measurementCount = 0;
    pResult->pFlashPoints     = nullptr;
    return AecSuccess;
}

AecResult CAECModExtension::GetHistStretchData(AECYHistStretchData* pStretch)
{
    pStretch->enable  = FALSE;
    pStretch->clamp   = 0.0F;
    pStretch->scaling = 1.0F;
    return AecSuccess;
}
