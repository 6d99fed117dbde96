// Snapshot query of the module: table of the snapshot kind, index conversion and clamping, normal, flash and LLS.
#include "aec/core/modules/mod_arb/caecmodarbitration.h"

#include <algorithm>
#include <cmath>

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_arb/arbitrationoutpututil.h"
#include "platform/statslogger.h"

namespace
{

// Snapshot kinds that have an entry in the still offset table.
constexpr UINT32 SnapshotKindCount = 4;

// Debug data kinds of a still query.
constexpr UINT8 SnapshotExposureInstance      = 2;
constexpr UINT8 FlashSnapshotExposureInstance = 3;

} // namespace

AecResult CAECModArbitration::ArbitrateExposure(ArbitrationStillInput* pInput, ArbitrationOutput* pOutput)
{
    UtilInitializeOutput(pOutput);
    if (TRUE != m_bTableZeroTuned)
    {
        AEC_LOG_ERROR("no valid exposure table");
        return AecError;
    }

    const AECSnapshotQueryParam&                 rQuery  = pInput->snapshotQuery;
    const aecglobalelements::ExposureTableIDType tableID = UtilGetExpTableID(m_aecContext->getOperationMode(), &rQuery);
    if (tableID != m_tableIDStill)
    {
        m_tableIDStill          = tableID;
        FLOAT sensitivity       = 0.0F;
        m_still.SetExpTable(m_tableIDStill, &sensitivity);
        AEC_LOG_INFO("Switched Snapshot Exposure table to %d, sensitivity %f", m_tableIDStill, sensitivity);
    }

    // The query's indices refer to the table of refOpMode; move them into the snapshot kind's table.
    const ModArbitrationContext* pPublished = m_aecContext->getExposureLimitation();
    if (nullptr != pPublished)
    {
        const FLOAT offset =
            ExpIdxOffsetOf(pPublished->streamModeExpIdxOffsets, AECExpIdxOffsetCount, rQuery.refOpMode) -
            ExpIdxOffsetOf(pPublished->stillModeExpIdxOffsets, SnapshotKindCount, rQuery.queryType);
        ConvertExpIndices(pInput->expIndices, rQuery.refOpMode, rQuery.queryType, offset);
    }

    const ExposureLimitationType    limit        = m_still.GetLimitation();
    const ConvergenceTuningDataType* pConvTuning = m_aecContext->getConvTuning();
    const FLOAT unitStep = ((nullptr != pConvTuning) && (nullptr != pConvTuning->pCore)) ? pConvTuning->pCore->unitStepSize
                                                                                        : 0.0F;
    if (unitStep <= 0.0F)
    {
        AEC_LOG_ERROR("unit step size %f, snapshot indices not put on the grid", unitStep);
    }
    const ParamExtLLS& rLLS       = m_pTuning->paramExtLLS;
    const BOOL         unclamped  = ((AECAlgoSnapshotLLS == rQuery.queryType) && (1 == rLLS.bEnableLLSMaxSI)) ? TRUE
                                                                                                          : FALSE;
    for (FLOAT& rIndex : pInput->expIndices)
    {
        // A table already exhausted at the top still honours a negative EV, counted from its top.
        if ((pInput->TargetIndex > limit.expIndex.max) && (pInput->EVOffset < 0.0F))
        {
            rIndex = std::max(limit.expIndex.max + pInput->EVOffset, limit.expIndex.min);
        }
        if (unitStep > 0.0F)
        {
            rIndex = unitStep * std::round(rIndex / unitStep);
        }
        // A low light snapshot with the extended sensitivity takes the excess as gain beyond the table.
        if (TRUE != unclamped)
        {
            rIndex = std::min(std::max(rIndex, limit.expIndex.min), limit.expIndex.max);
        }
    }

    AecResult result = AecSuccess;
    switch (rQuery.queryType)
    {
        case AECAlgoSnapshotNormal:
        case AECAlgoSnapshotFlash:
            if (AECAlgoSnapshotNormal == rQuery.queryType)
            {
                AEC_LOG_VERBOSE("Normal exposure Query");
            }
            result = m_still.ArbitrateExposure(pInput->expIndices, pOutput, m_enableHDR3);
            break;
        case AECAlgoSnapshotLLS:
        {
            AEC_LOG_VERBOSE("LLS exposure Query");
            const AECFrameHistory* pLastFrame = m_aecContext->getFrameHistory(1);
            if (nullptr == pLastFrame)
            {
                AEC_LOG_ERROR("LLS query: no previous frame");
                result = AecError;
                break;
            }
            const UINT64 requiredTime = pLastFrame->LLSRequiredExpTime;
            if (1 == rLLS.bLLSEnableADRC)
            {
                for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
                {
                    m_still.ArbitrateLLSExposure(&rLLS, pInput->expIndices[i], &pOutput->expSets[i], requiredTime);
                }
            }
            else
            {
                AECAlgoExposureData& rSafe = pOutput->expSets[AECAlgoExposureSafe];
                m_still.ArbitrateLLSExposure(&rLLS, pInput->expIndices[AECAlgoExposureSafe], &rSafe, requiredTime);
                pOutput->expSets[AECAlgoExposureShort] = rSafe;
                pOutput->expSets[AECAlgoExposureLong]  = rSafe;
            }
            break;
        }
        default:
            AEC_LOG_WARN("Warning: invalid snapshot query type");
            result = AecError;
            break;
    }

    // A snapshot is the end of convergence; without DRC there is one exposure, that of the long set.
    for (AECAlgoExposureData& rSet : pOutput->expSets)
    {
        rSet.deltaEVFromTarget = 0.0F;
    }
    if (FALSE == m_aecContext->getDRCEnable())
    {
        const AECAlgoExposureData& rLong = pOutput->expSets[AECAlgoExposureLong];
        for (UINT32 i : {static_cast<UINT32>(AECAlgoExposureShort), static_cast<UINT32>(AECAlgoExposureSafe)})
        {
            pOutput->expSets[i].exposureTime = rLong.exposureTime;
            pOutput->expSets[i].linearGain   = rLong.linearGain;
            pOutput->expSets[i].sensitivity  = rLong.sensitivity;
        }
    }

    pOutput->FPS = QueryExpTime2FPS(pOutput->expSets[AECAlgoExposureSafe].exposureTime);
    CalculateExifInfo(&pOutput->exif, pOutput->expSets, m_tableIDStill, m_tableIDStill, pInput->EV);
    if (TRUE == m_aecContext->getDebugDataEnable())
    {
        UpdateDebugData(pOutput, (AECAlgoSnapshotFlash == rQuery.queryType) ? FlashSnapshotExposureInstance
                                                                            : SnapshotExposureInstance);
    }
    return result;
}
