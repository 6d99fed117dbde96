// Rapid start converger: an initial skip, then straight jumps to the target, settled by count or time-out.
#include "aec/core/modules/mod_conv/convstartup.h"

#include <cmath>

#include "platform/statslogger.h"

ConvStartup::ConvStartup(ConvAlgoIdentity identity, const ConvergenceTuningDataType* pTuning)
    : ConvergenceSubmodule(identity, pTuning)
    , m_config()
    , m_settledCounter(0)
    , m_runningCounter(0)
    , m_initialSkipCounter(0)
    , m_isFirstFrame(TRUE)
    , m_bShortExpConvEnabled(FALSE)
{
    // Configured at once so that a frame before the first mode change still converges sensibly.
    static_cast<void>(SetConvEvent(ConvEventInitialize));
}

AecResult ConvStartup::SetConvEvent(ConvEventType event)
{
    m_speedAdjust = 1.0F;
    if (ConvEventInitialize != event)
    {
        return AecSuccess;
    }

    AecResult                               result  = AecSuccess;
    const aecglobalelements::RapidConvType* pRapid  = nullptr;
    if (nullptr != m_pTuning)
    {
        switch (m_identity)
        {
            case ConvIDAggressiveAEC:
                pRapid = (nullptr != m_pTuning->pStartUp) ? &m_pTuning->pStartUp->aggressive : nullptr;
                break;
            case ConvIDFlashMeas:
                pRapid = (nullptr != m_pTuning->pFlash) ? &m_pTuning->pFlash->flashMeasurementConv : nullptr;
                break;
            default:
                if (ConvIDFastAEC != m_identity)
                {
                    AEC_LOG_ERROR("unexpected ID for start-up conv: %d", static_cast<INT32>(m_identity));
                    result = AecError;
                }
                pRapid = (nullptr != m_pTuning->pStartUp) ? &m_pTuning->pStartUp->fastAEC : nullptr;
                break;
        }
    }
    if (nullptr == pRapid)
    {
        AEC_LOG_ERROR("start-up conv %d: tuning missing, not initialised", static_cast<INT32>(m_identity));
        return AecError;
    }

    m_config.pTuning     = pRapid;
    m_config.tolerance   = pRapid->tolMultUnitStepSize * UnitStepSize(m_pTuning);
    m_settledCounter     = 0;
    m_runningCounter     = 0;
    m_isFirstFrame       = TRUE;
    m_initialSkipCounter = pRapid->frameSkipInit;
    return result;
}

FLOAT ConvStartup::ConvergeSafeExposure(const ConvergenceSubmoduleInput* pInput)
{
    const FLOAT current = pInput->expIndices[AECAlgoExposureSafe];
    if (nullptr == m_config.pTuning)
    {
        AEC_LOG_ERROR("start-up conv %d: no tuning, exposure kept", static_cast<INT32>(m_identity));
        return current;
    }
    if (m_initialSkipCounter > 0)
    {
        m_initialSkipCounter -= 1;
        AEC_LOG_VERBOSE("initial skip new value %d", m_initialSkipCounter);
        return current;
    }

    const aecglobalelements::RapidConvType::firstFrameBiasStruct& bias = m_config.pTuning->firstFrameBias;
    const FLOAT                            tolerance = m_config.tolerance;
    const aecglobalelements::StartEndType& range     = pInput->expTableRange;
    FLOAT delta = pInput->pConvIn->pTargetIndices[AECAlgoExposureSafe] - current;
    FLOAT next  = current;

    if (std::fabs(delta) >= tolerance)
    {
        m_settledCounter = 0;
        next             = current + delta;
        if (1 == bias.enableStartUpBias)
        {
            // A bright first frame overstates how far down to go: shorten the first jump down.
            if ((0 != m_isFirstFrame) && (delta <= 0.0F))
            {
                const FLOAT lower  = bias.stepSizeBrightAdjRange.start;
                const FLOAT upper  = bias.stepSizeBrightAdjRange.end;
                const FLOAT factor = bias.maxAdjFactor;
                if (-delta >= upper)
                {
                    delta *= factor;
                }
                else if (-delta >= lower)
                {
                    delta *= factor + (1.0F - factor) * (upper + delta) / (upper - lower);
                }
                next = current + delta;
            }
            m_isFirstFrame = FALSE;
        }
    }

    const bool exhausted = (next + tolerance >= range.end) || (next - tolerance <= range.start);
    const bool inTol     = (std::fabs(delta) < tolerance);
    m_settledCounter     = (exhausted || inTol) ? (m_settledCounter + 1) : 0;
    AEC_LOG_VERBOSE("delta %f will be in tolerance %d tentative index %f table is exhausted %d", delta,
                    static_cast<INT32>(inTol), next, static_cast<INT32>(exhausted));
    return next;
}

FLOAT ConvStartup::ConvergeShortExposure(const ConvergenceSubmoduleInput* pInput, FLOAT safeIndex)
{
    if ((0 != m_bShortExpConvEnabled) && (nullptr != pInput->pTuning) && (nullptr != pInput->pTuning->pCore))
    {
        return SnapAndConvergeDelta(m_config.tolerance, pInput->pTuning->pCore->fastConv.ADRCConvSpeed, pInput,
                                    safeIndex, AECAlgoExposureShort);
    }
    return safeIndex;
}

FLOAT ConvStartup::ConvergeLongExposure(const ConvergenceSubmoduleInput* /* pInput */, FLOAT safeIndex)
{
    return safeIndex;
}

void ConvStartup::GetIsSettled(const ConvergenceSubmoduleInput* /* pInput */, ConvergenceSubmoduleOutput* pOutput)
{
    BOOL settled = FALSE;
    if (nullptr != m_config.pTuning)
    {
        settled = (m_settledCounter >= m_config.pTuning->minSettledCount) ? TRUE : FALSE;
        m_runningCounter += 1;
        // A start mode may not take forever: after the time-out it counts as settled.
        if (m_runningCounter >= m_config.pTuning->maxFrameConvTimeOut)
        {
            settled = TRUE;
        }
    }
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        pOutput->isSettled[i] = settled;
    }
}

aecglobalelements::ConvFrameSkipType ConvStartup::GetSkipType()
{
    // After a jump the pipeline has to catch up; within tolerance or during the initial skip, every frame runs.
    return ((0 != m_settledCounter) || (m_initialSkipCounter > 0)) ? aecglobalelements::SmoothNoSkip
                                                                    : aecglobalelements::SkipSystemLatency;
}
