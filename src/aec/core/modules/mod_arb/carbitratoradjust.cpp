// Adjustments of the arbitrator after the table lookup: which steps run for each exposure kind, and the HDR guard.
#include "aec/core/modules/mod_arb/carbitrator.h"
#include "platform/statslogger.h"

namespace
{

// Which steps a safe exposure runs, by manual mode; motor life save runs in auto mode only.
struct SafeAdjustSteps
{
    BOOL gyroFirst;   // gyro before the motor steps
    BOOL lifeSave;
    BOOL antibanding;
    BOOL gyroLast;    // gyro after motor decay
};

SafeAdjustSteps StepsForMode(AECAlgoModeType manualMode, BOOL antibandingVsISOPrio)
{
    switch (manualMode)
    {
        case AECAlgoModeAuto:
            return {TRUE, TRUE, TRUE, FALSE};
        case AECAlgoModeManualISO:
        case AECAlgoModeManualGain:
            return {FALSE, FALSE, antibandingVsISOPrio, FALSE};
        case AECAlgoModePirisMaxExpPriority:
        case AECAlgoModePASMIris:
        case AECAlgoModePASMISO:
        case AECAlgoModePASMIrisISO:
            return {TRUE, FALSE, TRUE, FALSE};
        case AECAlgoModePASMExpTime:
        case AECAlgoModePASMExpTimeISO:
        case AECAlgoModePASMExpTimeIris:
        case AECAlgoModePASMFullManual:
            return {FALSE, FALSE, FALSE, TRUE};
        default:
            // Manual time, full manual, manual aperture and unknown modes: the iris glide only.
            return {FALSE, FALSE, FALSE, FALSE};
    }
}

// Clamps value into [rangeMin, rangeMax]; a reversed range yields rangeMin for values below it, else rangeMax.
template <typename T>
T ClampToRange(T value, T rangeMin, T rangeMax)
{
    if (value < rangeMin)
    {
        return rangeMin;
    }
    return (value > rangeMax) ? rangeMax : value;
}

} // namespace

VOID CArbitrator::ArbitrateExposureAdjusting(ExposureSetType*    pExpSet,
                                             AECAlgoExposureType expType,
                                             AECExposureMode     mode,
                                             SHDRAECMODE         shdrMode)
{
    if (AECAlgoExposureLong == expType)
    {
        processAntibandingLEFAdjust(pExpSet, m_shdrExpLimit[LEF]);
        processLEFMaxGainAdjust(pExpSet, m_shdrExpLimit[LEF]);
        return;
    }
    if (AECAlgoExposureShort == expType)
    {
        processMotorLifeSaveAdjust(pExpSet, m_shdrExpLimit[SEF], static_cast<UINT32>(expType));
        processMotorExpDecayAdjust(pExpSet, m_shdrExpLimit[SEF], mode);
        processAntibandingSEFAdjust(pExpSet, m_shdrExpLimit[SEF]);
        return;
    }
    if (AECAlgoExposureSafe != expType)
    {
        return;
    }
    if (SHDRAECMODEV38YUV3FRAME == shdrMode)
    {
        processAntibandingMEFAdjust(pExpSet, m_shdrExpLimit[MEF]);
        return;
    }

    BOOL antibandingVsISOPrio = FALSE;
    if ((nullptr != m_pTuning) && (nullptr != m_pTuning->pCore))
    {
        antibandingVsISOPrio = (1 == m_pTuning->pCore->ISOData.enableAntiBandingVsISOPrio) ? TRUE : FALSE;
    }
    const SafeAdjustSteps steps = StepsForMode(m_session.manualSettings.manualMode, antibandingVsISOPrio);

    // Antibanding narrows the limit to the chosen time; that must not outlive this exposure.
    ExposureLimitationType limit = m_session.arbExpLimit;
    if (TRUE == steps.gyroFirst)
    {
        processGyroBasedExposureAdjust(pExpSet);
    }
    if (TRUE == steps.lifeSave)
    {
        processMotorLifeSaveAdjust(pExpSet, limit, static_cast<UINT32>(expType));
    }
    processMotorExpDecayAdjust(pExpSet, limit, mode);
    if (TRUE == steps.gyroLast)
    {
        processGyroBasedExposureAdjust(pExpSet);
    }
    if (TRUE == steps.antibanding)
    {
        processAntibandingAdjust(pExpSet, limit);
    }
}

VOID CArbitrator::ArbitrateExposureLimitProtecting(const ExposureSetType* pIn,
                                                   ExposureSetType*       pOut,
                                                   AECAlgoExposureType    expType)
{
    // The input is read from a copy: the caller may protect a set in place.
    const ExposureSetType in = *pIn;
    *pOut                    = in;
    if (nullptr == m_pSensorLimit)
    {
        AEC_LOG_ERROR("no sensor limits, exposure type %d not protected", static_cast<INT32>(expType));
        return;
    }

    const MinMaxRangeUINT64* pRange = nullptr;
    const CHAR*              pName  = nullptr;
    switch (expType)
    {
        case AECAlgoExposureShort:
            pRange = &m_pSensorLimit->SEFexpTime;
            pName  = "SEF";
            break;
        case AECAlgoExposureLong:
            pRange = &m_pSensorLimit->LEFexpTime;
            pName  = "LEF";
            break;
        case AECAlgoExposureSafe:
            pRange = &m_pSensorLimit->MEFexpTime;
            pName  = "MEF";
            break;
        default:
            return;
    }

    pOut->expTime = ClampToRange(in.expTime, pRange->min, pRange->max);
    if (pOut->expTime != in.expTime)
    {
        if (0U != pOut->expTime)
        {
            // Exposure is kept: what the time loses, the gain makes up.
            pOut->gain *= static_cast<FLOAT>(in.expTime) / static_cast<FLOAT>(pOut->expTime);
        }
        else
        {
            AEC_LOG_WARN("%s : sensor range max 0, gain %f not compensated", pName, pOut->gain);
        }
    }
    pOut->gain = ClampToRange(pOut->gain, m_pSensorLimit->gain.min, m_pSensorLimit->gain.max);
    AEC_LOG_VERBOSE("%s : ExpTime : %lu in (%lu, %lu)  Gain : %f in (%f, %f)", pName,
                    static_cast<unsigned long>(pOut->expTime), static_cast<unsigned long>(pRange->min),
                    static_cast<unsigned long>(pRange->max), pOut->gain, m_pSensorLimit->gain.min,
                    m_pSensorLimit->gain.max);
}
