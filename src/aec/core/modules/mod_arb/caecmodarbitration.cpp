// Arbitration module events: tuning, mode, EV, frame rate, flicker, manual, sensor and iris changes, table choice.
#include "aec/core/modules/mod_arb/caecmodarbitration.h"


#include "aec/core/include/aeccustomexposuretable.h"
#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_arb/exptablemath.h"
#include "platform/statslogger.h"

namespace
{

// Snapshot kinds whose tables get an index offset to table 0.
constexpr UINT32 SnapshotKindCount = 4;

// Until table 0 is tuned no arbitrator has a table to work with: the event is refused and says so.
BOOL RequireTableZero(BOOL tableZeroTuned, const CHAR* pEvent)
{
    if (TRUE != tableZeroTuned)
    {
        AEC_LOG_ERROR("%s: exposure table 0 is not tuned, event refused", pEvent);
        return FALSE;
    }
    return TRUE;
}

// The preview follows the session settings except in the start-up modes, which converge freely.
BOOL IsStartUpMode(AECAlgoOperationModeType mode)
{
    return ((AECAlgoOperationModeFastAEC == mode) || (AECAlgoOperationModeAggressiveAEC == mode)) ? TRUE : FALSE;
}

// Auto antibanding arrives resolved to the detected mains frequency; the arbitrators only know 50 and 60 Hz.
StatisticsAntibanding ResolveFlickerMode(StatisticsAntibanding mode)
{
    switch (mode)
    {
        case StatisticsAntibandingAuto_50HZ:
            return StatisticsAntibanding50Hz;
        case StatisticsAntibandingAuto_60HZ:
            return StatisticsAntibanding60Hz;
        default:
            return mode;
    }
}

// Index offset that moves an index of table rTable to the equivalent index of table 0 (first knees compared).
FLOAT IndexOffsetToTableZero(const aecArbitration::ExposureTableType& rTable0,
                             const aecArbitration::ExposureTableType* pTable,
                             aecglobalelements::ExposureTableIDType   tableID)
{
    if ((nullptr == pTable) || (0U == pTable->expKneeEntriesCount) || (nullptr == pTable->expKneeEntries))
    {
        AEC_LOG_WARN("table %d has no knees, index offset 0", tableID);
        return 0.0F;
    }
    const aecArbitration::ExposureKneeType& rK0 = rTable0.expKneeEntries[0];
    const aecArbitration::ExposureKneeType& rK  = pTable->expKneeEntries[0];

    const FLOAT sens0 = static_cast<FLOAT>(rK0.expTime) * rK0.gain * rTable0.sensitivityCorrectionFactor;
    const FLOAT sens  = static_cast<FLOAT>(rK.expTime) * rK.gain * pTable->sensitivityCorrectionFactor;
    if ((sens0 <= 0.0F) || (sens <= 0.0F))
    {
        // A first knee without time or gain, or a table without sensitivity correction, has no sensitivity to
        // compare: the logarithm would be infinite.
        AEC_LOG_ERROR("table %d: first knee sensitivity %f against table 0 %f, index offset 0", tableID, sens, sens0);
        return 0.0F;
    }
    return ExpIndexDeltaFromRatio(static_cast<DOUBLE>(sens0 / sens)) + (rK.expIndex - rK0.expIndex);
}

} // namespace

CAECModArbitration::CAECModArbitration(IAECContext* pContext, IArbitrationCallback* pCallback)
    : m_pCallback(pCallback),
      m_pTuning(nullptr),
      m_limitation(),
      m_streaming(pContext),
      m_enableHDR3(FALSE),
      m_still(pContext),
      m_tableIDStreaming(0),
      m_tableIDStill(0),
      m_sensorLimitStreaming(),
      m_sensorLimitStill(),
      m_debugData(),
      m_bTableZeroTuned(FALSE),
      m_ZoomStep(0),
      m_IrisTble(),
      m_LensCap(),
      m_FixFn(0.0F),
      m_irisIsAborted(0)
{
    m_aecContext = pContext;
    m_streaming.Initialize();
    m_still.Initialize();
}

AecResult CAECModArbitration::OnLDMIrisTable(LDMIrisTableData irisTable)
{
    // The table is kept even before tuning: the lens reports it once, and the limits read it when they are built.
    m_IrisTble = irisTable;
    m_streaming.SetIrisTable(m_IrisTble);
    return (TRUE == RequireTableZero(m_bTableZeroTuned, "OnLDMIrisTable")) ? AecSuccess : AecError;
}

AecResult CAECModArbitration::OnTuningHeaderChange()
{
    m_bTableZeroTuned = FALSE;
    m_pTuning         = m_aecContext->getArbTuning();
    if ((nullptr == m_pTuning) || (nullptr == m_pTuning->pCore))
    {
        AEC_LOG_ERROR("NULL tuning!");
        return AecError;
    }
    const aecArbitration::AECCoreArbitrationType* pCore = m_pTuning->pCore;
    if ((0U == pCore->expTablesCount) || (nullptr == pCore->expTables))
    {
        AEC_LOG_ERROR("no exposure tables %d", static_cast<INT32>(pCore->expTablesCount));
        return AecError;
    }
    if ((0U == pCore->expTables[0].expKneeEntriesCount) || (nullptr == pCore->expTables[0].expKneeEntries))
    {
        AEC_LOG_ERROR("table 0 doesnt have knee points");
        return AecError;
    }

    m_bTableZeroTuned = TRUE;
    m_streaming.SetTuning(m_pTuning);
    m_still.SetTuning(m_pTuning);

    for (UINT32 table = 0; table < pCore->expTablesCount; table++)
    {
        const aecArbitration::ExposureTableType& rTable = pCore->expTables[table];
        for (UINT32 knee = 0; (nullptr != rTable.expKneeEntries) && (knee < rTable.expKneeEntriesCount); knee++)
        {
            const aecArbitration::ExposureKneeType& rKnee = rTable.expKneeEntries[knee];
            AEC_LOG_VERBOSE("pK idx %f Fn %f gain %f exp time %llu", rKnee.expIndex, rKnee.fnumber, rKnee.gain,
                            static_cast<unsigned long long>(rKnee.expTime));
        }
    }

    FLOAT streamOffsets[AECExpIdxOffsetCount] = {};
    FLOAT stillOffsets[AECExpIdxOffsetCount]  = {};
    CalculateExpTableIdxOffsets(streamOffsets, stillOffsets);
    m_pCallback->SetExpTableIdxOffsets(streamOffsets, stillOffsets);

    return OnOperationModeChange();
}

AecResult CAECModArbitration::OnOperationModeChange()
{
    const AECAlgoOperationModeType mode = m_aecContext->getOperationMode();
    if (AECAlgoOperationModeInit == mode)
    {
        // Init precedes tuning: the limit published is whatever the module holds, with no frame-rate bound.
        OnFlickerCompModeChange();
        m_streaming.SetParamFPSRange(1.0F);
        m_still.SetParamFPSRange(1.0F);
        m_pCallback->SetStreamingLimitation(&m_limitation);
        return AecSuccess;
    }
    if (TRUE != RequireTableZero(m_bTableZeroTuned, "OnOperationModeChange"))
    {
        return AecError;
    }

    const AECSnapshotQueryParam normalSnapshot = {AECAlgoSnapshotNormal, mode};
    m_tableIDStreaming = UtilGetExpTableID(mode, nullptr);
    m_tableIDStill     = UtilGetExpTableID(mode, &normalSnapshot);

    FLOAT streamingSensitivity = 0.0F;
    FLOAT stillSensitivity     = 0.0F;
    m_limitation               = m_streaming.SetExpTable(m_tableIDStreaming, &streamingSensitivity);
    m_still.SetExpTable(m_tableIDStill, &stillSensitivity);
    m_pCallback->setSensitivity(streamingSensitivity);

    // Every session setting is applied again to the new tables, in this order.
    BOOL failed = FALSE;
    failed |= (AecSuccess != OnExposureCompChange()) ? TRUE : FALSE;
    failed |= (AecSuccess != OnFPSChange()) ? TRUE : FALSE;
    failed |= (AecSuccess != OnFlickerCompModeChange()) ? TRUE : FALSE;
    failed |= (AecSuccess != OnManualSettingChange()) ? TRUE : FALSE;
    return (TRUE == failed) ? AecError : AecSuccess;
}

AecResult CAECModArbitration::OnExposureCompChange()
{
    if (TRUE != RequireTableZero(m_bTableZeroTuned, "OnExposureCompChange"))
    {
        return AecError;
    }
    m_enableHDR3                = m_aecContext->getHDR3Enable();
    const EVContext* pEVContext = m_aecContext->getEVInfo();
    FLOAT            EV         = 0.0F;
    if (nullptr != pEVContext)
    {
        EV = pEVContext->EV;
    }
    else
    {
        AEC_LOG_WARN("no exposure compensation state, EV 0");
    }
    const ExposureLimitationType limit = m_streaming.SetParamEV(EV, m_enableHDR3);
    m_still.SetParamEV(EV, m_enableHDR3);
    PublishStreamingLimitation(limit);
    return AecSuccess;
}

AecResult CAECModArbitration::OnFlickerCompModeChange()
{
    if (TRUE != RequireTableZero(m_bTableZeroTuned, "OnFlickerCompModeChange"))
    {
        return AecError;
    }
    // Plain Auto (no frequency detected yet) passes through: the arbitrators treat it as no flicker grid.
    const StatisticsAntibanding mode = ResolveFlickerMode(m_aecContext->getFlickerCompMode());
    m_streaming.SetFlcikerMode((TRUE == isEnforcedFlicker(Streaming)) ? mode : StatisticsAntibandingOff);
    m_still.SetFlcikerMode(mode);
    m_pCallback->SetStreamingMinExpIndexForATB(m_streaming.GetMinExpIdxForATB());
    return AecSuccess;
}

AecResult CAECModArbitration::OnManualSettingChange()
{
    if (TRUE != RequireTableZero(m_bTableZeroTuned, "OnManualSettingChange"))
    {
        return AecError;
    }
    const AECAlgoManualSetting* pSetting = m_aecContext->getManualSetting();
    if (nullptr == pSetting)
    {
        AEC_LOG_ERROR("NULL setting!");
        return AecError;
    }

    ArbManualSetting setting      = {};
    setting.manualMode            = pSetting->manualMode;
    setting.manualExpTime         = pSetting->exposureTime;
    setting.manualMaxExposureTime = pSetting->prioMaxExpTime;
    setting.manualFnumber         = pSetting->fnumber;

    if (TRUE == isEnforcedManualSettings(Streaming))
    {
        setting.manualGain = (AECAlgoModeManualGain == pSetting->manualMode)
                                 ? pSetting->gain
                                 : UtilISO2Gain(pSetting->ISOValue, m_tableIDStreaming);
        PublishStreamingLimitation(m_streaming.SetManualSetting(&setting));
    }
    else
    {
        AEC_LOG_INFO("because of tuning manual mode %d is not enforced in preview",
                     static_cast<INT32>(pSetting->manualMode));
    }

    if (TRUE == isEnforcedManualSettings(Still))
    {
        // A snapshot states its sensitivity as ISO in every mode, manual gain included.
        setting.manualGain = UtilISO2Gain(pSetting->ISOValue, m_tableIDStill);
        m_still.SetManualSetting(&setting);
    }
    else
    {
        AEC_LOG_INFO("because of tuning manual mode %d is not enforced in snapshot",
                     static_cast<INT32>(pSetting->manualMode));
    }
    return AecSuccess;
}

AecResult CAECModArbitration::OnFPSChange()
{
    if (TRUE != RequireTableZero(m_bTableZeroTuned, "OnFPSChange"))
    {
        return AecError;
    }
    const FLOAT minFPS = m_aecContext->getMinFPS();
    if (TRUE == isEnforcedFPS(Streaming))
    {
        PublishStreamingLimitation(m_streaming.SetParamFPSRange(minFPS));
    }
    m_still.SetParamFPSRange(minFPS);
    return AecSuccess;
}

AecResult CAECModArbitration::OnSensorInfoChange()
{
    const AECAlgoSensorInfo* pInfo = m_aecContext->getSensorInfo();
    if (nullptr == pInfo)
    {
        AEC_LOG_ERROR("no sensor info");
        return AecError;
    }
    m_sensorLimitStreaming.gain       = {pInfo->minimumStreamGain, pInfo->maximumStreamGain};
    m_sensorLimitStreaming.expTime    = {pInfo->minimumStreamExpTime, pInfo->maximumStreamExpTime};
    m_sensorLimitStreaming.SEFexpTime = {pInfo->minSEFExpTime, pInfo->maxSEFExpTime};
    m_sensorLimitStreaming.MEFexpTime = {pInfo->minMEFExpTime, pInfo->maxMEFExpTime};
    m_sensorLimitStreaming.LEFexpTime = {pInfo->minLEFExpTime, pInfo->maxLEFExpTime};
    // The still ranges of the sensor are not used: a snapshot runs in the streaming sensor mode.
    m_sensorLimitStill.gain    = m_sensorLimitStreaming.gain;
    m_sensorLimitStill.expTime = m_sensorLimitStreaming.expTime;

    // Both arbitrators borrow the streaming ranges; handing them over before tuning keeps a sensor mode that
    // arrives first, and the limits built later read them.
    const ExposureLimitationType limit = m_streaming.SetSensorLimits(&m_sensorLimitStreaming);
    m_still.SetSensorLimits(&m_sensorLimitStreaming);
    if (TRUE != RequireTableZero(m_bTableZeroTuned, "OnSensorInfoChange"))
    {
        return AecError;
    }
    PublishStreamingLimitation(limit);
    return AecSuccess;
}

AecResult CAECModArbitration::OnZoomInfoChange()
{
    if (TRUE != RequireTableZero(m_bTableZeroTuned, "OnZoomInfoChange"))
    {
        return AecError;
    }
    const ExposureLimitationType limit = m_streaming.SetZoomDependentIrisBoundary(m_ZoomStep);
    m_still.SetZoomDependentIrisBoundary(m_ZoomStep);
    PublishStreamingLimitation(limit);
    return AecSuccess;
}

AecResult CAECModArbitration::OnDebugDataUpdate()
{
    if (TRUE != RequireTableZero(m_bTableZeroTuned, "OnDebugDataUpdate"))
    {
        return AecError;
    }
    AECDebugData* pDebugData = m_aecContext->getDebugData();
    if (nullptr != pDebugData)
    {
        pDebugData->arbitrationInfo = m_debugData;
    }
    return AecSuccess;
}

AecResult CAECModArbitration::OnCustomExposureTableChange()
{
    if (TRUE != RequireTableZero(m_bTableZeroTuned, "OnCustomExposureTableChange"))
    {
        return AecError;
    }
    // A valid custom table serves every mode, so indices need no conversion between modes: all offsets 0.
    FLOAT                             streamOffsets[AECExpIdxOffsetCount] = {};
    FLOAT                             stillOffsets[AECExpIdxOffsetCount]  = {};
    const AECCustomExposureTableInfo* pCustom = m_aecContext->getCustomExposureTableInfo();
    if ((nullptr == pCustom) || (TRUE != pCustom->isValid))
    {
        CalculateExpTableIdxOffsets(streamOffsets, stillOffsets);
    }
    m_pCallback->SetExpTableIdxOffsets(streamOffsets, stillOffsets);
    return OnOperationModeChange();
}

AecResult CAECModArbitration::OnFnManualChange()
{
    if (TRUE != RequireTableZero(m_bTableZeroTuned, "OnFnManualChange"))
    {
        return AecError;
    }
    PublishStreamingLimitation(m_streaming.SetFnLimits(m_FixFn));
    return AecSuccess;
}

aecglobalelements::ExposureTableIDType CAECModArbitration::UtilGetExpTableID(AECAlgoOperationModeType     mode,
                                                                             const AECSnapshotQueryParam* pSnapshot)
{
    const AECCustomExposureTableInfo* pCustom = m_aecContext->getCustomExposureTableInfo();
    if ((nullptr != pCustom) && (TRUE == pCustom->isValid))
    {
        return CustomExposureTableID;
    }
    if ((nullptr == m_pTuning) || (nullptr == m_pTuning->pCore))
    {
        AEC_LOG_WARN("Warning : Tuning Header not ready, cannot Get Table ID");
        return 0;
    }

    aecglobalelements::ExposureTableIDType tableID = 0;
    const BOOL                             missing = (nullptr != pSnapshot)
                                                         ? ((nullptr == m_pTuning->pFlash) || (nullptr == m_pTuning->pSnapshotCtrl))
                                                         : ((nullptr == m_pTuning->pFlash) || (nullptr == m_pTuning->pStartUp));
    if (TRUE == missing)
    {
        AEC_LOG_WARN("table ID tuning missing, using table 0");
    }
    else if (nullptr != pSnapshot)
    {
        tableID = (AECAlgoSnapshotFlash == pSnapshot->queryType) ? m_pTuning->pFlash->expTableIDMainFlash
                                                                 : m_pTuning->pSnapshotCtrl->expTableIDSnapshot;
    }
    else
    {
        switch (mode)
        {
            case AECAlgoOperationModeFastAEC:
                tableID = m_pTuning->pStartUp->expTableIDFastAEC;
                break;
            case AECAlgoOperationModeAggressiveAEC:
                tableID = m_pTuning->pStartUp->expTableIDAggressive;
                break;
            case AECAlgoOperationModePreflash:
                tableID = m_pTuning->pFlash->expTableIDPreFlash;
                break;
            case AECAlgoOperationModeFlashMeasurement:
                tableID = m_pTuning->pFlash->expTableIDFlashMeasurement;
                break;
            case AECAlgoOperationModeStreaming:
            case AECAlgoOperationModeInit:
                tableID = 0;
                break;
            default:
                AEC_LOG_WARN("unexpected operation mode");
                tableID = 0;
                break;
        }
    }

    const aecArbitration::AECCoreArbitrationType* pCore   = m_pTuning->pCore;
    const INT32                                   kind    = (nullptr != pSnapshot) ? static_cast<INT32>(pSnapshot->queryType)
                                                                                   : static_cast<INT32>(mode);
    // A negative ID is as unknown as one beyond the count.
    if ((tableID < 0) || (static_cast<UINT32>(tableID) >= pCore->expTablesCount))
    {
        if (nullptr != pSnapshot)
        {
            AEC_LOG_WARN("snapshot mode %d table index requested %d exceed table count %d, forcing to zero", kind,
                         tableID, static_cast<INT32>(pCore->expTablesCount));
        }
        else
        {
            AEC_LOG_WARN("operation mode %d table index requested %d exceed table count %d, forcing to zero", kind,
                         tableID, static_cast<INT32>(pCore->expTablesCount));
        }
        return 0;
    }
    if ((nullptr == pCore->expTables) || (0U == pCore->expTables[tableID].expKneeEntriesCount))
    {
        if (nullptr != pSnapshot)
        {
            AEC_LOG_WARN("snapshot mode %d table index requested %d is empty, forcing to table index zero", kind,
                         tableID);
        }
        else
        {
            AEC_LOG_WARN("operation mode %d table index requested %d is empty, forcing to table index zero", kind,
                         tableID);
        }
        return 0;
    }
    return tableID;
}

VOID CAECModArbitration::CalculateExpTableIdxOffsets(FLOAT* pStreamOffsets, FLOAT* pStillOffsets)
{
    const aecArbitration::ExposureTableType* pTable0 = m_aecContext->getExposureTableFromTableID(0);
    if ((nullptr == pTable0) || (0U == pTable0->expKneeEntriesCount) || (nullptr == pTable0->expKneeEntries))
    {
        AEC_LOG_ERROR("table 0 doesnt have knee points");
        return;
    }
    const AECAlgoOperationModeType mode = m_aecContext->getOperationMode();
    for (UINT32 kind = 0; kind < SnapshotKindCount; kind++)
    {
        const AECSnapshotQueryParam                  query   = {static_cast<AECAlgoSnapshotType>(kind), mode};
        const aecglobalelements::ExposureTableIDType tableID = UtilGetExpTableID(mode, &query);
        pStillOffsets[kind] = IndexOffsetToTableZero(*pTable0, m_aecContext->getExposureTableFromTableID(tableID), tableID);
    }
    for (UINT32 opMode = 0; opMode < AECExpIdxOffsetCount; opMode++)
    {
        const aecglobalelements::ExposureTableIDType tableID =
            UtilGetExpTableID(static_cast<AECAlgoOperationModeType>(opMode), nullptr);
        pStreamOffsets[opMode] =
            IndexOffsetToTableZero(*pTable0, m_aecContext->getExposureTableFromTableID(tableID), tableID);
    }
}

BOOL CAECModArbitration::isEnforcedManualSettings(ArbInstance instance)
{
    if ((nullptr == m_pTuning) || (nullptr == m_pTuning->pCore))
    {
        AEC_LOG_WARN("Tuning Not Ready");
        return TRUE;
    }
    if (Still == instance)
    {
        return TRUE;
    }
    const AECAlgoOperationModeType mode = m_aecContext->getOperationMode();
    if (TRUE == IsStartUpMode(mode))
    {
        return FALSE;
    }
    if (AECAlgoOperationModeStreaming != mode)
    {
        return TRUE;
    }

    const AECAlgoManualSetting*        pSetting  = m_aecContext->getManualSetting();
    const AECAlgoOverrideSettingParam* pOverride = m_aecContext->getOverrideSetting();
    const AECAlgoOverrideSettingParam  noOverride = {};
    if (nullptr == pOverride)
    {
        pOverride = &noOverride;
    }
    const aecArbitration::AECCoreArbitrationType* pCore = m_pTuning->pCore;
    const AECAlgoModeType manualMode = (nullptr != pSetting) ? pSetting->manualMode : AECAlgoModeAuto;
    switch (manualMode)
    {
        case AECAlgoModeAuto:
            return TRUE;
        case AECAlgoModeManualISO:
        case AECAlgoModeManualGain:
            return ((0 != pCore->enablePreviewManualISO) && (0 == pOverride->disablePreviewManualISO)) ? TRUE : FALSE;
        case AECAlgoModeManualExpTime:
            return ((0 != pCore->enablePreviewManualExpTime) && (0 == pOverride->disablePreviewManualExpTime)) ? TRUE
                                                                                                              : FALSE;
        case AECAlgoModeManualFull:
            return ((0 != pCore->enablePreviewManualFull) && (0 == pOverride->disablePreviewManualFull)) ? TRUE : FALSE;
        case AECAlgoModePirisMaxExpPriority:
        case AECAlgoModePASMIris:
        case AECAlgoModePASMExpTime:
        case AECAlgoModePASMExpTimeISO:
        case AECAlgoModePASMExpTimeIris:
        case AECAlgoModePASMFullManual:
            return TRUE;
        default:
            AEC_LOG_WARN("warning: Unexpected Manual AEC Mode");
            return TRUE;
    }
}

BOOL CAECModArbitration::isEnforcedFPS(ArbInstance instance)
{
    return ((Still == instance) || (TRUE != IsStartUpMode(m_aecContext->getOperationMode()))) ? TRUE : FALSE;
}

BOOL CAECModArbitration::isEnforcedFlicker(ArbInstance instance)
{
    // Antibanding follows the same rule as the frame rate: the start-up modes may leave the flicker grid.
    return isEnforcedFPS(instance);
}

VOID CAECModArbitration::PublishStreamingLimitation(const ExposureLimitationType& rLimit)
{
    m_limitation = rLimit;
    m_pCallback->SetStreamingLimitation(&m_limitation);
}
