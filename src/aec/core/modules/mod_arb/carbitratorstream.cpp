// Exposure sets of a preview frame: table lookup, neighbour exposures and the in-sensor HDR mapping under ADRC.
#include "aec/core/modules/mod_arb/carbitrator.h"

#include <algorithm>
#include <cmath>

#include "aec/core/modules/mod_arb/exptablemath.h"
#include "platform/statslogger.h"

namespace
{

// Float equality limit of arbitration; also the smallest value worth dividing by.
constexpr FLOAT ArbEpsilon = 1e-7F;

// A set before its lookup: no exposure yet, the iris wide open.
constexpr ExposureSetType OpenIrisSet = {0.0F, 1.0F, 0U, 0.0F};

// Looks pSet->expIndex up in the active table: time first in the iris priority mode, otherwise as the table says.
AecResult LookUpActive(CExpTable& rTable, AECAlgoModeType manualMode, ExposureSetType* pSet)
{
    return (AECAlgoModePirisMaxExpPriority == manualMode)
               ? rTable.ExpTableEntryLookUpExpTimePrio(ActiveTable, pSet, AECAlgoExposureSafe)
               : rTable.ExpTableEntryLookUp(ActiveTable, pSet, AECAlgoExposureSafe, SHDRAECMODEDEFAULT);
}

// Where the in-sensor HDR mapping keeps each exposure (prevMap3HDR order).
enum InsensorHDRSlot
{
    MapShort  = 0,
    MapSafe   = 1,
    MapMiddle = 2,
};

// TRUE when the DRC gain reaches the tuned threshold of the in-sensor HDR mapping and can be mapped.
BOOL InsensorHDRMappingDue(const MeteringTuningDataType* pMtrTuning, FLOAT drcGain)
{
    if (nullptr == pMtrTuning)
    {
        AEC_LOG_WARN("No metering tuning: in-sensor HDR mapping skipped");
        return FALSE;
    }
    if (drcGain < pMtrTuning->extInsensorHDR.DRCGainThresh)
    {
        return FALSE;
    }
    AEC_LOG_INFO("Enter compute 3HDR exposure in ADRC mode");
    if (drcGain <= 0.0F)
    {
        // The mapping spreads the exposures by log10 of the DRC gain, which needs a positive gain.
        AEC_LOG_ERROR("DRC gain %f not positive, in-sensor HDR mapping skipped", drcGain);
        return FALSE;
    }
    return TRUE;
}

// Maps a frame whose DRC gain drcGain is large enough onto three in-sensor exposures around the safe index: the
// short one as far below safe as the DRC gain reaches, the middle one halfway. The safe exposure gives up the tuned
// compensation gain first (into time when it is below unity). pMapped receives short, safe, middle.
AecResult MapInsensorHDR(CArbitrator& rArb, CExpTable& rTable, AECAlgoModeType manualMode, FLOAT safeIndex,
                         FLOAT drcGain, FLOAT compenADRCGain, ExposureSetType* pMapped)
{
    const FLOAT shortIndex = safeIndex - ExpIndexDeltaFromRatio(static_cast<DOUBLE>(drcGain));
    const FLOAT d          = safeIndex - shortIndex;

    ExposureSetType& rSafe = pMapped[MapSafe];
    rSafe                  = OpenIrisSet;
    rSafe.expIndex         = safeIndex;
    if (AecSuccess != LookUpActive(rTable, manualMode, &rSafe))
    {
        AEC_LOG_ERROR("In-sensor HDR mapping: lookup of safe index %f failed", safeIndex);
        return AecError;
    }
    const FLOAT g = std::max(rSafe.gain / std::max(compenADRCGain, 1.0F), ArbEpsilon);
    if (g < 1.0F)
    {
        rSafe.gain    = 1.0F;
        rSafe.expTime = static_cast<UINT64>(static_cast<FLOAT>(rSafe.expTime) / g);
    }
    else
    {
        rSafe.gain = g;
    }
    rArb.ArbitrateExposureAdjusting(&rSafe, AECAlgoExposureSafe, HDR, SHDRAECMODEDEFAULT);

    pMapped[MapShort]          = OpenIrisSet;
    pMapped[MapMiddle]         = OpenIrisSet;
    pMapped[MapShort].fnumber  = rSafe.fnumber;
    pMapped[MapMiddle].fnumber = rSafe.fnumber;
    rArb.ArbitrateShortExposure(d, &pMapped[MapShort], &rSafe);
    rArb.ArbitrateMiddleExposure(d * 0.5F, &pMapped[MapMiddle], &rSafe);
    return AecSuccess;
}

} // namespace

AecResult CArbitrator::ArbitrateExposure(FLOAT* pExpIndices, INT32 irisIsAborted, ArbitrationOutput* pOutput,
                                         BOOL enableHDR3)
{
    if ((nullptr == pExpIndices) || (nullptr == pOutput))
    {
        AEC_LOG_ERROR("Invalid argument: indices %p output %p", static_cast<VOID*>(pExpIndices),
                      static_cast<VOID*>(pOutput));
        return AecError;
    }

    m_isOverallSnapshot = FALSE;
    m_irisIsAborted     = irisIsAborted;
    return ArbitrateExposureSets(pExpIndices, pOutput, enableHDR3, FALSE);
}

AecResult CArbitrator::ArbitrateExposureSets(FLOAT* pExpIndices, ArbitrationOutput* pOutput, BOOL enableHDR3,
                                             BOOL isSnapshot)
{
    // A still query adjusts the safe exposure as an HDR one and records whether it made the in-sensor HDR mapping.
    const AECExposureMode safeMode   = (TRUE == isSnapshot) ? HDR : Linear;
    const AECAlgoModeType manualMode = m_session.manualSettings.manualMode;

    m_expIdx = pExpIndices[AECAlgoExposureSafe];

    const FLOAT deltaShort = pExpIndices[AECAlgoExposureSafe] - pExpIndices[AECAlgoExposureShort];
    const FLOAT deltaLong  = pExpIndices[AECAlgoExposureLong] - pExpIndices[AECAlgoExposureSafe];

    ExposureSetType shortSet = OpenIrisSet;
    ExposureSetType safeSet  = OpenIrisSet;
    ExposureSetType longSet  = OpenIrisSet;

    if (TRUE == enableHDR3)
    {
        // Three-exposure HDR hangs every exposure below the long one.
        longSet.expIndex = pExpIndices[AECAlgoExposureLong];
        if (AecSuccess != LookUpActive(m_expTable, manualMode, &longSet))
        {
            AEC_LOG_ERROR("Lookup of long index %f failed", longSet.expIndex);
            return AecError;
        }
        ArbitrateExposureAdjusting(&longSet, AECAlgoExposureSafe, HDR, SHDRAECMODEDEFAULT);
        safeSet.fnumber  = longSet.fnumber;
        shortSet.fnumber = longSet.fnumber;
        ArbitrateSafeExposureHDR3(deltaLong, &safeSet, &longSet);
        ArbitrateShortExposure(deltaShort, &shortSet, &safeSet);
    }
    else
    {
        safeSet.expIndex = pExpIndices[AECAlgoExposureSafe];
        if (AecSuccess != LookUpActive(m_expTable, manualMode, &safeSet))
        {
            AEC_LOG_ERROR("Lookup of safe index %f failed", safeSet.expIndex);
            return AecError;
        }
        ArbitrateExposureAdjusting(&safeSet, AECAlgoExposureSafe, safeMode, SHDRAECMODEDEFAULT);
        shortSet.fnumber = safeSet.fnumber;
        longSet.fnumber  = safeSet.fnumber;
        ArbitrateShortExposure(deltaShort, &shortSet, &safeSet);
        ArbitrateLongExposure(deltaLong, &longSet, &safeSet);
    }

    AECAlgoExposureData* pSets = pOutput->expSets;
    FillExposureData(shortSet, &pSets[AECAlgoExposureShort]);
    FillExposureData(longSet, &pSets[AECAlgoExposureLong]);
    FillExposureData(safeSet, &pSets[AECAlgoExposureSafe]);

    if (FALSE == enableHDR3)
    {
        for (FLOAT& rTarFnum : pOutput->TarFnum)
        {
            rTarFnum = safeSet.fnumber;
        }
        pOutput->compenADRCGain =
            pSets[AECAlgoExposureSafe].sensitivity / std::max(pSets[AECAlgoExposureShort].sensitivity, 1.0F);
        pOutput->compensationDarkBoostGain =
            pSets[AECAlgoExposureLong].sensitivity / std::max(pSets[AECAlgoExposureSafe].sensitivity, 1.0F);

        // A large DRC gain also maps the frame for the in-sensor HDR snapshot; the frame's own sets stay as they are.
        const MeteringTuningDataType* pMtrTuning = m_pContext->getMtrTuning();
        const FLOAT                   drcGain    = m_pContext->getRealDRCGainHDR3();
        ExposureSetType               mapped[AECAlgoExposureCount];
        if ((TRUE == InsensorHDRMappingDue(pMtrTuning, drcGain)) &&
            (AecSuccess == MapInsensorHDR(*this, m_expTable, manualMode, pExpIndices[AECAlgoExposureSafe],
                                          drcGain, pMtrTuning->extInsensorHDR.compenADRCGain, mapped)))
        {
            for (UINT32 slot = 0; slot < AECAlgoExposureCount; slot++)
            {
                FillExposureData(mapped[slot], &m_prevMap3HDR[slot]);
                FillExposureData(mapped[slot], &pOutput->prevMap3HDR[slot]);
            }
            pOutput->realDRCGain = drcGain;
            if (TRUE == isSnapshot)
            {
                m_isCurMap3HDRSnapshot = TRUE;
            }
        }
    }

    // Without an iris the short and long exposures report an open aperture; safe keeps the table's f-number.
    if (1 != m_LensCap.PIris)
    {
        pOutput->expSets[AECAlgoExposureShort].fnumber = 1.0F;
        pOutput->expSets[AECAlgoExposureLong].fnumber  = 1.0F;
    }
    return AecSuccess;
}

VOID CArbitrator::FillExposureData(const ExposureSetType& rSet, AECAlgoExposureData* pData)
{
    if (nullptr == pData)
    {
        AEC_LOG_ERROR("Invalid argument: exposure data is NULL");
        return;
    }
    FLOAT fnumber = rSet.fnumber;
    if (fnumber < ArbEpsilon)
    {
        // Tables raise every f-number to at least 1.0; a set without one is counted as fully open.
        AEC_LOG_WARN("F-number %f invalid, sensitivity computed at 1.0", fnumber);
        fnumber = 1.0F;
    }
    const FLOAT sensCorr    = m_expTable.GetExpTable(ActiveTable)->sensitivityCorrectionFactor;
    const FLOAT sensitivity = rSet.gain * sensCorr * static_cast<FLOAT>(rSet.expTime) * (1.0F / (fnumber * fnumber));

    pData->exposureTime         = rSet.expTime;
    pData->snapshotExposureTime = rSet.expTime;
    pData->linearGain           = rSet.gain;
    pData->snapShotLinearGain   = rSet.gain;
    pData->sensitivity          = sensitivity;
    pData->snapshotSensitivity  = sensitivity;
    pData->compenADRCGain       = 1.0F;
    pData->fnumber              = rSet.fnumber;
}

FLOAT CArbitrator::UtilExp2ExpIndex(const AECAlgoExposureData* pData)
{
    const aecArbitration::ExposureTableType* pTable = m_expTable.GetExpTable(ActiveTable);
    if ((nullptr == pData) || (pTable->expKneeEntriesCount < 2U) || (nullptr == pTable->expKneeEntries))
    {
        AEC_LOG_ERROR("Cannot convert exposure to index: data %p, active table knees %u",
                      static_cast<const VOID*>(pData), pTable->expKneeEntriesCount);
        return 0.0F;
    }
    const aecArbitration::ExposureKneeType& rKnee0 = pTable->expKneeEntries[0];
    const FLOAT reference = static_cast<FLOAT>(rKnee0.expTime) * rKnee0.gain;
    const FLOAT exposure  = static_cast<FLOAT>(pData->exposureTime) * pData->linearGain;
    if ((reference < ArbEpsilon) || (exposure < ArbEpsilon))
    {
        // The index is a logarithm of the exposure ratio; without exposure it has no value, the table's start is
        // the nearest meaningful one.
        AEC_LOG_ERROR("Exposure %f or first knee %f without exposure, index of the first knee used", exposure,
                      reference);
        return rKnee0.expIndex;
    }
    return ExpIndexDeltaFromRatio(static_cast<DOUBLE>(exposure / reference)) + rKnee0.expIndex;
}
