// Exposure table of one arbitrator: exposure index to exposure time, gain and f-number, and back.
#include "aec/core/modules/mod_arb/cexptable.h"

#include <cmath>

#include "aec/core/modules/mod_arb/exptablecapping.h"
#include "aec/core/modules/mod_arb/exptableknees.h"
#include "aec/core/modules/mod_arb/exptablelookup.h"
#include "aec/core/modules/mod_arb/exptablemath.h"
#include "platform/statslogger.h"

namespace
{

// Gain limit of exposure compensation until the arbitrator sets one.
constexpr FLOAT DefaultMaxGainForEV = 1024.0F;

// Floor of 1.03^index in the sensitivity scale, so that a very negative first index cannot divide by zero.
constexpr FLOAT MinIndexSensitivity = 1e-7F;

const CHAR* const ShdrTableNames[ShdrExposureTableCount] = {"SEF", "LEF", "MEF"};

// A folded-in knee: the looked-up triple at its index, gain growing first towards whatever knee follows.
aecArbitration::ExposureKneeType KneeFromExposureSet(const ExposureSetType& rSet)
{
    aecArbitration::ExposureKneeType knee = {};
    knee.gain              = rSet.gain;
    knee.expTime           = rSet.expTime;
    knee.fnumber           = rSet.fnumber;
    knee.incrementPriority = aecglobalelements::AECExpIncGain;
    knee.expIndex          = rSet.expIndex;
    return knee;
}

// The range a table spans, from its first knee to its last; the f-number falls as exposure grows.
template <typename TableT>
ExposureLimitationType LimitationOfTable(const TableT& rTable)
{
    const auto& rFirst = rTable.expKneeEntries[0];
    const auto& rLast  = rTable.expKneeEntries[rTable.expKneeEntriesCount - 1U];

    ExposureLimitationType limitation = {};
    limitation.expIndex.min = rFirst.expIndex;
    limitation.expIndex.max = rLast.expIndex;
    limitation.expTime.min  = rFirst.expTime;
    limitation.expTime.max  = rLast.expTime;
    limitation.gain.min     = rFirst.gain;
    limitation.gain.max     = rLast.gain;
    limitation.fnumber.min  = rLast.fnumber;
    limitation.fnumber.max  = rFirst.fnumber;
    return limitation;
}

// Header values of a table, without its knee array pointer.
template <typename DstTableT, typename SrcTableT>
VOID CopyTableHeader(DstTableT* pDst, const SrcTableT& rSrc, UINT32 count)
{
    pDst->sensitivityCorrectionFactor   = rSrc.sensitivityCorrectionFactor;
    pDst->expKneeEntriesCount           = count;
    pDst->thresAntiBandingMinExpTimePct = rSrc.thresAntiBandingMinExpTimePct;
}

template <typename KneeT>
VOID RaiseFNumbers(KneeT* pKnees, UINT32 count)
{
    for (UINT32 i = 0U; i < count; i++)
    {
        pKnees[i].fnumber = (pKnees[i].fnumber < 1.0F) ? 1.0F : pKnees[i].fnumber;
    }
}

} // namespace

CExpTable::CExpTable()
    : m_pExpTable(nullptr),
      m_activeTbl(),
      m_activeSHDRTbl(),
      m_activeTblKnees(),
      m_activeSEFTblKnees(),
      m_activeLEFTblKnees(),
      m_activeMEFTblKnees(),
      m_FPSKnee(),
      m_EVKnee(),
      m_limitation(),
      m_sHDRlimitation(),
      m_currentSettings(),
      m_ExpIndexDelta(0.0F),
      m_enableHDR3(FALSE)
{
    m_activeTbl.expKneeEntries          = m_activeTblKnees;
    m_activeSHDRTbl[SEF].expKneeEntries = m_activeSEFTblKnees;
    m_activeSHDRTbl[LEF].expKneeEntries = m_activeLEFTblKnees;
    m_activeSHDRTbl[MEF].expKneeEntries = m_activeMEFTblKnees;
    m_currentSettings.EV                = 0.0F;
    m_currentSettings.enableEVMaxGain   = FALSE;
    m_currentSettings.maxGainForEV      = DefaultMaxGainForEV;
}

FLOAT CExpTable::SetExpTable(aecArbitration::ExposureTableType* pExpTable)
{
    if (FALSE == IsValidExpTable(pExpTable))
    {
        AEC_LOG_ERROR("Invalid exposure table");
        return 0.0F;
    }

    // The tuning store hands out writable records: the raised f-numbers stay in the tuned table.
    RaiseFNumbers(pExpTable->expKneeEntries, pExpTable->expKneeEntriesCount);

    const aecArbitration::ExposureKneeType& rFirst = pExpTable->expKneeEntries[0];
    const FLOAT indexSensitivity = std::pow(ExpIndexBase, rFirst.expIndex);
    const FLOAT sensitivityScale =
        (static_cast<FLOAT>(rFirst.expTime) * pExpTable->sensitivityCorrectionFactor * rFirst.gain *
         (1.0F / (rFirst.fnumber * rFirst.fnumber))) /
        ((indexSensitivity > MinIndexSensitivity) ? indexSensitivity : MinIndexSensitivity);

    m_pExpTable = pExpTable;
    UpdateFPSKnee();
    UpdateEVKnee();

    if (pExpTable->expKneeEntriesCount < MaxExpTableKnees)
    {
        ApplyActiveTableEVFPSKnees();
    }
    else
    {
        AEC_LOG_ERROR("ERROR : Number of knees exceeds max number of knees! Max : %d raw knees %d",
                      static_cast<INT32>(MaxExpTableKnees), static_cast<INT32>(pExpTable->expKneeEntriesCount));
    }
    return sensitivityScale;
}

AecResult CExpTable::SetSHDRExpTable(const aecShdr::SHDRExposureTableType* pSEF,
                                     const aecShdr::SHDRExposureTableType* pLEF,
                                     const aecShdr::SHDRExposureTableType* pMEF)
{
    const aecShdr::SHDRExposureTableType* const pTables[ShdrExposureTableCount] = {pSEF, pLEF, pMEF};
    const UINT32 tableCount = (nullptr == pMEF) ? 2U : 3U;

    // All tables are checked before any is copied, so that a fault changes nothing. The knee limit is checked here
    // too: the active copies have room for MaxExpTableKnees knees only.
    for (UINT32 i = 0U; i < tableCount; i++)
    {
        if ((FALSE == IsValidExpTable(pTables[i])) || (pTables[i]->expKneeEntriesCount > MaxExpTableKnees))
        {
            AEC_LOG_ERROR("ERROR: %s Table Validation Failed (Pointer: %p)", ShdrTableNames[i],
                          static_cast<const VOID*>(pTables[i]));
            return AecError;
        }
    }

    for (UINT32 i = 0U; i < tableCount; i++)
    {
        const aecShdr::SHDRExposureTableType& rSrc = *pTables[i];
        aecShdr::SHDRExposureTableType&       rDst = m_activeSHDRTbl[i];
        CopyTableHeader(&rDst, rSrc, rSrc.expKneeEntriesCount);
        for (UINT32 k = 0U; k < rSrc.expKneeEntriesCount; k++)
        {
            rDst.expKneeEntries[k] = rSrc.expKneeEntries[k];
        }
        RaiseFNumbers(rDst.expKneeEntries, rDst.expKneeEntriesCount);
        m_sHDRlimitation[i] = LimitationOfTable(rDst);
    }

    if (2U == tableCount)
    {
        // The header is cleared but keeps pointing at its knee array, so that a later three-table set can fill it.
        CopyTableHeader(&m_activeSHDRTbl[MEF], aecShdr::SHDRExposureTableType{}, 0U);
        for (aecShdr::SHDRExposureKneeType& rKnee : m_activeMEFTblKnees)
        {
            rKnee = aecShdr::SHDRExposureKneeType{};
        }
        m_sHDRlimitation[MEF] = ExposureLimitationType{};
    }
    return AecSuccess;
}

AecResult CExpTable::SetParamEV(FLOAT EV, BOOL enableEVMaxGain, FLOAT maxGainForEV, BOOL enableHDR3)
{
    m_currentSettings.EV              = EV;
    m_currentSettings.enableEVMaxGain = enableEVMaxGain;
    m_currentSettings.maxGainForEV    = maxGainForEV;
    m_enableHDR3                      = enableHDR3;

    if (AecSuccess != UpdateEVKnee())
    {
        AEC_LOG_ERROR("Error Updating EV Knee");
        return AecError;
    }
    if (AecSuccess != ApplyActiveTableEVFPSKnees())
    {
        AEC_LOG_ERROR("Error Updating Active Exp Table");
        return AecError;
    }
    return AecSuccess;
}

AecResult CExpTable::SetFPSMaxExposureTime(UINT64 maxExpTime)
{
    m_currentSettings.FPSMaxExpTime = maxExpTime;
    if (nullptr == m_pExpTable)
    {
        // Taken into account when a table is set.
        return AecSuccess;
    }

    AecResult result = UpdateFPSKnee();
    if (AecSuccess == result)
    {
        result = UpdateEVKnee();
    }
    if (AecSuccess == result)
    {
        result = ApplyActiveTableEVFPSKnees();
    }
    return result;
}

AecResult CExpTable::ExpTableEntryLookUp(ExpTableAccessType  access,
                                         ExposureSetType*    pExpSet,
                                         AECAlgoExposureType expType,
                                         SHDRAECMODE         shdrMode)
{
    switch (expType)
    {
        case AECAlgoExposureShort:
            return utilExpTblLookingUp(&m_activeSHDRTbl[SEF], pExpSet);
        case AECAlgoExposureLong:
            return utilExpTblLookingUp(&m_activeSHDRTbl[LEF], pExpSet);
        case AECAlgoExposureSafe:
            if (RawTable == access)
            {
                return utilExpTblLookingUp(m_pExpTable, pExpSet);
            }
            if (SHDRAECMODEV38YUV3FRAME == shdrMode)
            {
                return utilExpTblLookingUp(&m_activeSHDRTbl[MEF], pExpSet);
            }
            return utilExpTblLookingUp(&m_activeTbl, pExpSet);
        default:
            return AecSuccess;
    }
}

AecResult CExpTable::ExpTableEntryLookUpExpTimePrio(ExpTableAccessType  access,
                                                    ExposureSetType*    pExpSet,
                                                    AECAlgoExposureType expType)
{
    switch (expType)
    {
        case AECAlgoExposureShort:
            return utilExpTblLookingUpExpTimePrio(&m_activeSHDRTbl[SEF], pExpSet);
        case AECAlgoExposureLong:
            return utilExpTblLookingUpExpTimePrio(&m_activeSHDRTbl[LEF], pExpSet);
        case AECAlgoExposureSafe:
            if (RawTable == access)
            {
                return utilExpTblLookingUpExpTimePrio(m_pExpTable, pExpSet);
            }
            return utilExpTblLookingUpExpTimePrio(&m_activeTbl, pExpSet);
        default:
            return AecSuccess;
    }
}

AecResult CExpTable::ExpTableEntryCapping(const ExposureLimitationType* pArbExpLimit,
                                          AECAlgoExposureType           expType,
                                          SHDRAECMODE                   shdrMode)
{
    if (nullptr == pArbExpLimit)
    {
        AEC_LOG_ERROR("[Capping] arbExpLimit is NULL, expType=%d shdrmode=%d", static_cast<INT32>(expType),
                      static_cast<INT32>(shdrMode));
        return AecError;
    }

    switch (expType)
    {
        case AECAlgoExposureShort:
            return utilExpTblCapping(&m_activeSHDRTbl[SEF], pArbExpLimit);
        case AECAlgoExposureLong:
            return utilExpTblCapping(&m_activeSHDRTbl[LEF], pArbExpLimit);
        case AECAlgoExposureSafe:
            if (SHDRAECMODEV38YUV3FRAME == shdrMode)
            {
                return utilExpTblCapping(&m_activeSHDRTbl[MEF], pArbExpLimit);
            }
            return utilExpTblCapping(&m_activeTbl, pArbExpLimit);
        default:
            AEC_LOG_ERROR("[Capping] Unsupported expType=%d shdrmode=%d", static_cast<INT32>(expType),
                          static_cast<INT32>(shdrMode));
            return AecError;
    }
}

ExposureLimitationType CExpTable::GetLimitation() const
{
    return m_limitation;
}

ExposureLimitationType CExpTable::GetRawLimitation() const
{
    return (TRUE == IsValidExpTable(m_pExpTable)) ? LimitationOfTable(*m_pExpTable) : ExposureLimitationType{};
}

ExposureLimitationType CExpTable::GetSHDRLimitation(UINT32 tableType) const
{
    if (tableType >= ShdrExposureTableCount)
    {
        AEC_LOG_ERROR("No HDR exposure table %u: empty limitation", tableType);
        return ExposureLimitationType{};
    }
    return m_sHDRlimitation[tableType];
}

FLOAT CExpTable::GetMaxExpIndexFromExpTime(UINT64 expTime) const
{
    if (FALSE == IsValidExpTable(m_pExpTable))
    {
        return 0.0F;
    }

    const aecArbitration::ExposureKneeType* pKnees = m_pExpTable->expKneeEntries;
    const aecArbitration::ExposureKneeType& rLast  = pKnees[m_pExpTable->expKneeEntriesCount - 1U];
    if (rLast.expTime <= expTime)
    {
        return rLast.expIndex;
    }

    // The last knee's time is above expTime, so the scan stops at a knee of the table.
    UINT32 reaching = 0U;
    while (pKnees[reaching].expTime < expTime)
    {
        reaching++;
    }
    const UINT32                            lo  = (0U == reaching) ? 0U : (reaching - 1U);
    const aecArbitration::ExposureKneeType& rLo = pKnees[lo];
    const aecArbitration::ExposureKneeType& rHi = pKnees[lo + 1U];

    // Within the segment the iris, and the gain when it comes first, are fully spent once time reaches expTime.
    FLOAT index = rLo.expIndex + ExpIndexDeltaFromRatio(SegmentIrisGain(rLo, rHi));
    if (aecglobalelements::AECExpIncGain == rLo.incrementPriority)
    {
        index += ExpIndexDeltaFromRatio(KneeRatio(rHi.gain, rLo.gain));
    }
    return ExpIndexDeltaFromRatio(KneeRatio(expTime, rLo.expTime)) + index;
}

FLOAT CExpTable::GetMinExpIndexFromExpTime(UINT64 expTime) const
{
    if (FALSE == IsValidExpTable(m_pExpTable))
    {
        return 0.0F;
    }

    const UINT32                            count  = m_pExpTable->expKneeEntriesCount;
    const aecArbitration::ExposureKneeType* pKnees = m_pExpTable->expKneeEntries;
    if (pKnees[0].expTime >= expTime)
    {
        return pKnees[0].expIndex;
    }
    if (expTime > pKnees[count - 1U].expTime)
    {
        return pKnees[count - 1U].expIndex;
    }

    UINT32 k = 0U;
    for (UINT32 i = count - 2U; i >= 1U; i--)
    {
        if (pKnees[i].expTime <= expTime)
        {
            k = i;
            break;
        }
    }
    const aecArbitration::ExposureKneeType& rKnee = pKnees[k];

    // Gain that comes first in this segment is spent before time grows; the iris is not counted.
    FLOAT index = ExpIndexDeltaFromRatio(KneeRatio(expTime, rKnee.expTime)) + rKnee.expIndex;
    if (aecglobalelements::AECExpIncGain == rKnee.incrementPriority)
    {
        index += ExpIndexDeltaFromRatio(KneeRatio(pKnees[k + 1U].gain, rKnee.gain));
    }
    return index;
}

aecArbitration::ExposureTableType* CExpTable::GetExpTable(ExpTableAccessType access)
{
    return (RawTable == access) ? m_pExpTable : &m_activeTbl;
}

aecShdr::SHDRExposureTableType* CExpTable::GetActiveSHDRExpTable(UINT32 tableType)
{
    return (tableType < ShdrExposureTableCount) ? &m_activeSHDRTbl[tableType] : nullptr;
}

FLOAT CExpTable::GetThresAntiBandingMinExpTimePct() const
{
    return m_activeTbl.thresAntiBandingMinExpTimePct;
}

AecResult CExpTable::ApplyActiveTableEVFPSKnees()
{
    if (FALSE == IsValidExpTable(m_pExpTable))
    {
        AEC_LOG_ERROR("ERROR: ExpTable not initialized");
        return AecError;
    }

    const UINT32                            rawCount  = m_pExpTable->expKneeEntriesCount;
    const aecArbitration::ExposureKneeType* pRaw      = m_pExpTable->expKneeEntries;
    const aecArbitration::ExposureKneeType& rRawFinal = pRaw[rawCount - 1U];

    // Plan the table first, so that a table that would not fit leaves the active one as it was.
    // The table ends at the frame-rate limit: the first knee not below it is replaced by the FPS knee.
    UINT32 keptRaw = rawCount;
    if (m_FPSKnee.expIndex < rRawFinal.expIndex)
    {
        keptRaw = 0U;
        while (pRaw[keptRaw].expIndex < m_FPSKnee.expIndex)
        {
            keptRaw++;
        }
    }
    const BOOL cutAtFPS = (keptRaw < rawCount) ? TRUE : FALSE;
    const aecArbitration::ExposureKneeType* pLast = (TRUE == cutAtFPS) ? &m_FPSKnee : &rRawFinal;

    const BOOL appendEV = (m_EVKnee.expIndex > pLast->expIndex) ? TRUE : FALSE;
    pLast               = (TRUE == appendEV) ? &m_EVKnee : pLast;

    // Even under a tight frame-rate limit the table stays open upwards through gain (and iris) at the last time.
    const BOOL appendGain =
        ((rRawFinal.gain > pLast->gain) || (rRawFinal.fnumber > pLast->fnumber)) ? TRUE : FALSE;

    const UINT32 count = keptRaw + static_cast<UINT32>(cutAtFPS) + static_cast<UINT32>(appendEV) +
                         static_cast<UINT32>(appendGain);
    if (count > MaxExpTableKnees)
    {
        AEC_LOG_ERROR("ERROR : Number of knees exceeds max number of knees! Max : %d raw knees %d",
                      static_cast<INT32>(MaxExpTableKnees), static_cast<INT32>(rawCount));
        return AecError;
    }

    UINT32 n = 0U;
    for (; n < keptRaw; n++)
    {
        m_activeTblKnees[n] = pRaw[n];
    }
    if (TRUE == cutAtFPS)
    {
        m_activeTblKnees[n++] = m_FPSKnee;
    }
    if (TRUE == appendEV)
    {
        m_activeTblKnees[n++] = m_EVKnee;
    }
    if (TRUE == appendGain)
    {
        const aecArbitration::ExposureKneeType& rCur = m_activeTblKnees[n - 1U];
        const FLOAT fnRatio = KneeRatio(rRawFinal.fnumber, rCur.fnumber);

        aecArbitration::ExposureKneeType knee = {};
        knee.gain              = rRawFinal.gain;
        knee.expTime           = rCur.expTime;
        knee.fnumber           = rRawFinal.fnumber;
        knee.incrementPriority = aecglobalelements::AECExpIncGain;
        knee.expIndex          = rCur.expIndex + ExpIndexDeltaFromRatio(KneeRatio(1.0F, fnRatio * fnRatio)) +
                        ExpIndexDeltaFromRatio(KneeRatio(rRawFinal.gain, rCur.gain));
        m_activeTblKnees[n++] = knee;
    }

    CopyTableHeader(&m_activeTbl, *m_pExpTable, n);
    m_limitation = LimitationOfTable(m_activeTbl);
    return AecSuccess;
}

AecResult CExpTable::UpdateEVKnee()
{
    if (FALSE == IsValidExpTable(m_pExpTable))
    {
        AEC_LOG_ERROR("ERROR: EV knee needs a valid exposure table");
        return AecError;
    }

    FLOAT evGain = static_cast<FLOAT>(std::pow(2.0, static_cast<DOUBLE>(m_currentSettings.EV)));
    // A zero gain at the FPS knee would make the cap undefined; the EV gain then stays uncapped.
    if ((1 == m_currentSettings.enableEVMaxGain) && (0.0F != m_FPSKnee.gain))
    {
        const FLOAT maxEVGain = m_currentSettings.maxGainForEV / m_FPSKnee.gain;
        evGain                = (evGain < maxEVGain) ? evGain : maxEVGain;
    }

    const FLOAT delta = ExpIndexDeltaFromRatio(static_cast<DOUBLE>(evGain));
    m_ExpIndexDelta   = delta;

    ExposureSetType expSet = {};
    expSet.gain            = m_FPSKnee.gain;
    expSet.fnumber         = m_FPSKnee.fnumber;
    expSet.expTime         = m_FPSKnee.expTime;
    expSet.expIndex        = m_FPSKnee.expIndex + delta;

    if (delta < 0.0F)
    {
        // Less exposure than at the frame-rate limit is an ordinary point of the raw table.
        const FLOAT firstIndex = m_pExpTable->expKneeEntries[0].expIndex;
        expSet.expIndex        = (expSet.expIndex > firstIndex) ? expSet.expIndex : firstIndex;
        ExpTableEntryLookUp(RawTable, &expSet, AECAlgoExposureSafe, SHDRAECMODEDEFAULT);
    }
    else if ((FALSE == m_enableHDR3) && (delta > 0.0F))
    {
        // More exposure than the frame rate allows comes from gain; with HDR3 the gain stays and only the index moves.
        expSet.gain *= evGain;
    }

    m_EVKnee = KneeFromExposureSet(expSet);
    return AecSuccess;
}

AecResult CExpTable::UpdateFPSKnee()
{
    if (FALSE == IsValidExpTable(m_pExpTable))
    {
        AEC_LOG_ERROR("ERROR: FPS knee needs a valid exposure table");
        return AecError;
    }

    ExposureSetType expSet = {};
    expSet.expIndex        = GetMaxExpIndexFromExpTime(m_currentSettings.FPSMaxExpTime);
    ExpTableEntryLookUp(RawTable, &expSet, AECAlgoExposureSafe, SHDRAECMODEDEFAULT);
    m_FPSKnee = KneeFromExposureSet(expSet);
    return AecSuccess;
}
