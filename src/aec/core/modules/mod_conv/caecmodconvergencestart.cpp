// Start indices of an operation mode: flash measurement, host start setting, previous mode or tuning.
#include "aec/core/modules/mod_conv/caecmodconvergence.h"

#include <algorithm>
#include <cmath>

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_conv/convflashmeasurement.h"
#include "platform/statslogger.h"

namespace
{

// The lux index a start query reports when no source gave one.
constexpr FLOAT NoStartLuxIndex = -1.0F;

// Exponent on the LED power ratio: light output grows more slowly than the summed current settings.
constexpr FLOAT FlashPowerExponent = 0.8F;

// Tuned start index of a mode started without history; 0 where a mode has none.
FLOAT TunedStartIndex(AECAlgoOperationModeType mode, const aecStartUp::StartUpConvergenceType* pStartUp)
{
    switch (mode)
    {
        case AECAlgoOperationModeFastAEC:
            return (nullptr != pStartUp) ? pStartUp->fastAEC.startExpIndex : 0.0F;
        case AECAlgoOperationModeAggressiveAEC:
            return (nullptr != pStartUp) ? pStartUp->aggressive.startExpIndex : 0.0F;
        case AECAlgoOperationModeStreaming:
        case AECAlgoOperationModePreflash:
            return (nullptr != pStartUp) ? pStartUp->generic.startExpIndex : 0.0F;
        case AECAlgoOperationModeInit:
            AEC_LOG_WARN("no start index in init mode");
            return 0.0F;
        default:
            AEC_LOG_WARN("unexpected operation mode");
            return 0.0F;
    }
}

// Sum of the two LED settings of a mix; the measure of the LED power the fine tuning compares.
FLOAT MixPower(const aecFlash::LEDMixType& rMix)
{
    return static_cast<FLOAT>(rMix.LED1Setting) + static_cast<FLOAT>(rMix.LED2Setting);
}

} // namespace

AecResult CAECModConvergence::GetStartExposureIndices(FLOAT* pIndices, FLOAT* pLuxIndex, BOOL refuseFastStart)
{
    if ((nullptr == pIndices) || (nullptr == pLuxIndex))
    {
        AEC_LOG_ERROR("start indices refused: indices %p lux %p", static_cast<void*>(pIndices),
                      static_cast<void*>(pLuxIndex));
        return AecError;
    }

    *pLuxIndex = NoStartLuxIndex;
    const AECAlgoStartupIndices*     pStart  = m_aecContext->getStartUpExpIndex();
    const ConvergenceTuningDataType* pTuning = m_aecContext->getConvTuning();
    if ((nullptr != pTuning) && (nullptr != pTuning->pSensorHDR))
    {
        m_EsRatio = pTuning->pSensorHDR->esRatio;
    }
    const ModArbitrationContext* pLimitation = m_aecContext->getExposureLimitation();
    const MinMaxRangeFloat range = (nullptr != pLimitation) ? pLimitation->exposureLimitation.expIndex
                                                            : MinMaxRangeFloat{0.0F, 0.0F};
    const AECAlgoOperationModeType mode = m_aecContext->getOperationMode();
    const aecStartUp::StartUpConvergenceType* pStartUp = (nullptr != pTuning) ? pTuning->pStartUp : nullptr;

    const AECAlgoOverrideSettingParam* pOverride = m_aecContext->getOverrideSetting();
    const BOOL warmStartEnabled =
        (((nullptr != pStartUp) && (TRUE == pStartUp->warmStartUp.enableWarmStartUp)) ||
         ((nullptr != pOverride) && (TRUE == pOverride->enableWarmStart)))
            ? TRUE
            : FALSE;
    const BOOL hostStart = (nullptr != pStart) && (FALSE == m_isStartSettingUsed);
    const BOOL fastStart = hostStart && (AECAlgoStartupModeFastConvergence == pStart->startMode) &&
                           (FALSE == refuseFastStart);
    const BOOL warmStart = hostStart && (AECAlgoStartupModeWarmStart == pStart->startMode) &&
                           (FALSE != warmStartEnabled);

    AecResult      result = AecSuccess;
    AECModeHistory previous;
    if (AECAlgoOperationModeFlashMeasurement == mode)
    {
        AEC_LOG_INFO("Flash measurement startup exposure indices");
        result = EstimateFlashMeasurementStartExposure(pIndices);
    }
    else if (FALSE != fastStart)
    {
        AEC_LOG_INFO("FAST AEC based startup exposure indices");
        CapStartUpIndices(pStart, range.min, range.max, pIndices);
    }
    else if (FALSE != warmStart)
    {
        const FLOAT pct = (nullptr != pStartUp) ? pStartUp->warmStartUp.startExpIndexRangePct : 0.0F;
        AEC_LOG_INFO("Compute Warm Start based startup exposure indices. Tuning value: %.2f", pct);
        // The host's exposure is trusted only within a band around the middle of the table.
        FLOAT width = range.max - range.min;
        if (pct >= 0.0F)
        {
            width = ((pct > 1.0F) && (pct < 100.0F)) ? width * (1.0F - pct / 100.0F) : 0.0F;
        }
        CapStartUpIndices(pStart, range.min + width / 2.0F, range.max - width / 2.0F, pIndices);
    }
    else if (FALSE != m_aecContext->getPrevModeHistory(&previous))
    {
        // The previous mode's last exposure already had its EV in it; only the difference to the EV now counts.
        std::copy(previous.lastFrame.expIndices, previous.lastFrame.expIndices + AECAlgoExposureCount, pIndices);
        *pLuxIndex             = previous.lastFrame.luxIndex;
        const FLOAT oldOffset = previous.lastFrame.previewEV * IndexPerStop;
        const FLOAT newOffset = (AECAlgoOperationModePreflash == mode) ? 0.0F : CurrentEVOffset();
        if (std::fabs(oldOffset - newOffset) >= FloatLimit)
        {
            for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
            {
                pIndices[i] += newOffset - oldOffset;
            }
        }
        AEC_LOG_INFO("Previous mode startup exposure indices; mode %d EV new offset %.1f old offset %.1f", mode,
                     newOffset, oldOffset);
    }
    else
    {
        AEC_LOG_INFO("Tuning startup exposure indices");
        std::fill(pIndices, pIndices + AECAlgoExposureCount, TunedStartIndex(mode, pStartUp));
    }

    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        pIndices[i] = std::max(std::min(pIndices[i], range.max), range.min);
    }
    if (FALSE != m_aecContext->getHDR3Enable())
    {
        const FLOAT split = m_EsRatio + 1.0F;
        if (std::fabs(split) >= FloatLimit)
        {
            pIndices[AECAlgoExposureSafe] =
                (pIndices[AECAlgoExposureLong] - pIndices[AECAlgoExposureShort]) / split +
                pIndices[AECAlgoExposureShort];
        }
        else
        {
            AEC_LOG_ERROR("HDR exposure ratio %f leaves no split: safe start index kept", m_EsRatio);
        }
    }
    if (std::fabs(*pLuxIndex - NoStartLuxIndex) < FloatLimit)
    {
        *pLuxIndex = pIndices[AECAlgoExposureSafe];
    }
    return result;
}

VOID CAECModConvergence::CapStartUpIndices(const AECAlgoStartupIndices* pStart, FLOAT capStart, FLOAT capEnd,
                                           FLOAT* pIndices)
{
    std::copy(pStart->startUpIndices, pStart->startUpIndices + AECAlgoExposureCount, pIndices);
    // A host start setting is used once in the module's life; the core clears this for a new one.
    m_isStartSettingUsed = TRUE;
    if ((capEnd > capStart) && (capStart >= 0.0F))
    {
        for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
        {
            pIndices[i] = std::max(std::min(pIndices[i], capEnd), capStart);
        }
    }
}

AecResult CAECModConvergence::EstimateFlashMeasurementStartExposure(FLOAT* pIndices)
{
    const UINT32                   measIndex = m_aecContext->getFlashMeasIndex();
    const AECAlgoFlashMeasKindType measKind  = m_aecContext->getFlashMeasKind();
    ConvFlashMeasurement::SetMeasurement(measIndex, measKind);

    const ConvergenceTuningDataType* pTuning = m_aecContext->getConvTuning();
    const ExtensionTuningDataType*   pExt    = m_aecContext->getExtTuning();
    const aecFlash::LEDMatchTableType* pLEDTable =
        ((nullptr != pExt) && (nullptr != pExt->pFlash)) ? &pExt->pFlash->LEDTable : nullptr;
    FLOAT     start  = ((nullptr != pTuning) && (nullptr != pTuning->pFlash))
                           ? pTuning->pFlash->flashMeasurementConv.startExpIndex
                           : 0.0F;
    AecResult result = AecSuccess;

    if (AECAlgoFlashMeasKindCalib == measKind)
    {
        // Calibration measures at fixed exposures so that the factory values compare across units.
        const UINT32 count = ((nullptr != pLEDTable) && (nullptr != pLEDTable->CCTTableCalibration.fixedExpIndex))
                                 ? pLEDTable->CCTTableCalibration.fixedExpIndexCount
                                 : 0U;
        if (measIndex < count)
        {
            start = pLEDTable->CCTTableCalibration.fixedExpIndex[measIndex];
        }
        else
        {
            AEC_LOG_ERROR("flashMeas: measurement index %d larger than fixedExpIndexCount %d", measIndex, count);
            result = AecError;
        }
    }
    else
    {
        const FLOAT previous = ConvFlashMeasurement::GetPreviousFlashMeasTargetIndex();
        if (previous >= 0.0F)
        {
            // The next measurement starts where the last one settled, corrected by the change of LED power.
            start = previous;
            if (measIndex > 0)
            {
                const UINT32 entries = ((nullptr != pLEDTable) && (nullptr != pLEDTable->CCTTables))
                                           ? pLEDTable->CCTTablesCount
                                           : 0U;
                const FLOAT prevPower = (measIndex < entries) ? MixPower(pLEDTable->CCTTables[measIndex - 1]) : 0.0F;
                const FLOAT currPower = (measIndex < entries) ? MixPower(pLEDTable->CCTTables[measIndex]) : 0.0F;
                if ((prevPower > 0.0F) && (currPower > 0.0F))
                {
                    const FLOAT offset = static_cast<FLOAT>(
                        std::log10(static_cast<DOUBLE>(std::pow(prevPower / currPower, FlashPowerExponent))) *
                        IndexPerDecade);
                    start += offset;
                    AEC_LOG_INFO("flashMeas: fine-tuned start index %.3f, prev power: %.0f curr power: %.0f, off: %.3f",
                                 start, prevPower, currPower, offset);
                }
                else
                {
                    AEC_LOG_WARN("flashMeas: could not use flux for fine tuning start index %.3f, prev: %.3f curr: %.3f",
                                 start, prevPower, currPower);
                }
            }
        }
    }

    std::fill(pIndices, pIndices + AECAlgoExposureCount, start);
    return result;
}
