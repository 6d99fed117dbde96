// Exposure sets of a still query: the preview arbitration as HDR, the in-sensor HDR snapshot and the low-light snapshot.
#include "aec/core/modules/mod_arb/carbitrator.h"

#include <algorithm>
#include <cmath>

#include "aec/core/modules/mod_arb/exptablemath.h"
#include "platform/statslogger.h"

namespace
{

// Float equality limit of arbitration; also the smallest value worth dividing by.
constexpr FLOAT ArbEpsilon = 1e-7F;

// Where an in-sensor HDR snapshot takes each exposure from the last mapping (stored short, safe, middle): the
// mapped middle exposure is the snapshot's safe one and the mapped safe exposure its long one.
struct InsensorHDRReuse
{
    AECAlgoExposureType target;
    UINT32              mappedSlot;
};
constexpr InsensorHDRReuse InsensorHDRReuseOrder[AECAlgoExposureCount] = {
    {AECAlgoExposureShort, 0U},
    {AECAlgoExposureSafe, 2U},
    {AECAlgoExposureLong, 1U},
};

} // namespace

AecResult CArbitrator::ArbitrateExposure(FLOAT* pExpIndices, ArbitrationOutput* pOutput, BOOL enableHDR3)
{
    if ((nullptr == pExpIndices) || (nullptr == pOutput))
    {
        AEC_LOG_ERROR("Invalid argument: indices %p output %p", static_cast<VOID*>(pExpIndices),
                      static_cast<VOID*>(pOutput));
        return AecError;
    }

    m_isPrevMap3HDRSnapshot = m_isCurMap3HDRSnapshot;
    m_isOverallSnapshot     = TRUE;
    m_isCurMap3HDRSnapshot  = FALSE;

    const MeteringTuningDataType* pMtrTuning       = m_pContext->getMtrTuning();
    const BOOL                    enableInsensorHDR =
        ((nullptr != pMtrTuning) && (TRUE == pMtrTuning->extInsensorHDR.enableInsensorHDR)) ? TRUE : FALSE;

    AecResult result = AecSuccess;
    if ((TRUE == enableHDR3) && (TRUE == enableInsensorHDR))
    {
        AEC_LOG_INFO("Enter call 3HDR exposure in 3HDR mode");
        const FLOAT sensCorr = m_expTable.GetExpTable(ActiveTable)->sensitivityCorrectionFactor;
        if (std::fabs(sensCorr) < ArbEpsilon)
        {
            AEC_LOG_ERROR("Sensor correction factor is 0!");
            result = AecError;
        }
        else
        {
            // The snapshot repeats the last in-sensor HDR mapping; stored sensitivities carry the correction factor,
            // the gains here do not.
            const FLOAT compenADRCGain = pMtrTuning->extInsensorHDR.compenADRCGain;
            for (const InsensorHDRReuse& rReuse : InsensorHDRReuseOrder)
            {
                const AECAlgoExposureData& rMapped = m_prevMap3HDR[rReuse.mappedSlot];
                AECAlgoExposureData&       rSet    = pOutput->expSets[rReuse.target];
                const FLOAT sensitivity            = rMapped.sensitivity / sensCorr;
                const FLOAT gain = sensitivity / std::max(static_cast<FLOAT>(rMapped.exposureTime), 1.0F);

                rSet.exposureTime         = rMapped.exposureTime;
                rSet.snapshotExposureTime = rMapped.exposureTime;
                rSet.fnumber              = rMapped.fnumber;
                rSet.sensitivity          = sensitivity;
                rSet.snapshotSensitivity  = sensitivity;
                rSet.linearGain           = gain;
                rSet.snapShotLinearGain   = gain;
                rSet.compenADRCGain       = compenADRCGain;
            }
            pOutput->compenADRCGain = compenADRCGain;
            m_isCurMap3HDRSnapshot  = TRUE;
        }
    }
    else
    {
        if (TRUE == enableHDR3)
        {
            AEC_LOG_INFO("FALSE == enableInsensorHDRSnapshot");
        }
        result = ArbitrateExposureSets(pExpIndices, pOutput, enableHDR3, TRUE);
    }

    // Once two snapshots in a row were mapped, the in-sensor HDR snapshot stays on.
    if ((TRUE == m_isCurMap3HDRSnapshot) && (TRUE == m_isPrevMap3HDRSnapshot))
    {
        m_isInsensorHDRSnapshot = TRUE;
    }
    AEC_LOG_INFO("Insensor HDR snapshot status: cur %d prev %d final %d", m_isCurMap3HDRSnapshot,
                 m_isPrevMap3HDRSnapshot, m_isInsensorHDRSnapshot);
    pOutput->isInsensorHDRSnapshot = m_isInsensorHDRSnapshot;
    return result;
}

AecResult CArbitrator::ArbitrateLLSExposure(const ParamExtLLS*   pExtLLS,
                                            FLOAT                expIndex,
                                            AECAlgoExposureData* pData,
                                            UINT64               requiredTime)
{
    if ((nullptr == pExtLLS) || (nullptr == pData))
    {
        AEC_LOG_ERROR("Invalid argument: LLS tuning %p data %p", static_cast<const VOID*>(pExtLLS),
                      static_cast<VOID*>(pData));
        return AecError;
    }
    if ((nullptr == m_pTuning) || (nullptr == m_pTuning->pSnapshotCtrl))
    {
        AEC_LOG_ERROR("LLS exposure without snapshot tuning");
        return AecError;
    }
    if (0U == requiredTime)
    {
        // The low-light exposure is stretched to the required time; without one there is nothing to stretch to.
        AEC_LOG_ERROR("LLS exposure: required exposure time is 0");
        return AecError;
    }

    ExposureSetType set = {0.0F, 1.0F, 0U, expIndex};
    if (AecSuccess != m_expTable.ExpTableEntryLookUp(ActiveTable, &set, AECAlgoExposureSafe, SHDRAECMODEDEFAULT))
    {
        AEC_LOG_ERROR("LLS exposure: lookup of index %f failed", expIndex);
        return AecError;
    }

    const BOOL  enableMaxSI        = (TRUE == pExtLLS->bEnableLLSMaxSI) ? TRUE : FALSE;
    const FLOAT maxLLSExtendedGain = m_pTuning->pSnapshotCtrl->maxLLSExtendedGain;
    // With the maximum sensitivity extension, what the table could not give above its end is taken as gain.
    if ((set.expIndex < expIndex) && (TRUE == enableMaxSI))
    {
        set.gain *= powf(ExpIndexBase, expIndex - set.expIndex);
    }

    const FLOAT product = static_cast<FLOAT>(set.expTime) * set.gain;
    set.gain            = std::max(product / static_cast<FLOAT>(requiredTime), m_session.arbExpLimit.gain.min);
    if (set.gain < ArbEpsilon)
    {
        AEC_LOG_ERROR("LLS exposure: index %f gives no exposure", expIndex);
        return AecError;
    }
    set.expTime = static_cast<UINT64>(product / set.gain);
    if (set.gain > maxLLSExtendedGain)
    {
        if (maxLLSExtendedGain < ArbEpsilon)
        {
            // A zero cap would leave the exposure without gain; the stretched exposure is kept uncapped.
            AEC_LOG_ERROR("LLS exposure: maxLLSExtendedGain %f invalid, gain not capped", maxLLSExtendedGain);
        }
        else
        {
            set.gain = maxLLSExtendedGain;
            if (FALSE == enableMaxSI)
            {
                set.expTime = static_cast<UINT64>(product / maxLLSExtendedGain);
            }
        }
    }

    // The stretched exposure may lie beyond the session limit; the adjusting steps see a limit that admits it.
    ExposureLimitationType& rLimit      = m_session.arbExpLimit;
    const UINT64            savedTime   = rLimit.expTime.max;
    const FLOAT             savedGain   = rLimit.gain.max;
    rLimit.expTime.max                  = std::max(rLimit.expTime.max, requiredTime);
    rLimit.gain.max                     = std::max(rLimit.gain.max, maxLLSExtendedGain);
    ArbitrateExposureAdjusting(&set, AECAlgoExposureSafe, Linear, SHDRAECMODEDEFAULT);
    rLimit.expTime.max = savedTime;
    rLimit.gain.max    = savedGain;

    FillExposureData(set, pData);
    // The sensitivity is stated on the scale of the tuned table, whatever the active one carries.
    const aecArbitration::ExposureTableType* pTuned = m_pContext->getExposureTableFromTableID(m_TableID);
    if (nullptr == pTuned)
    {
        AEC_LOG_WARN("LLS exposure: no tuned table %d, sensitivity on the active table's scale", m_TableID);
    }
    else
    {
        const FLOAT fnumber = (set.fnumber < ArbEpsilon) ? 1.0F : set.fnumber;
        pData->sensitivity  = set.gain * pTuned->sensitivityCorrectionFactor * static_cast<FLOAT>(set.expTime) *
                             (1.0F / (fnumber * fnumber));
        pData->snapshotSensitivity = pData->sensitivity;
    }
    return AecSuccess;
}

BOOL CArbitrator::GetInsensorHDRSnapshot() const
{
    return m_isInsensorHDRSnapshot;
}
