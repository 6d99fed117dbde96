// Exposure table of one arbitrator: exposure index to exposure time, gain and f-number, and back.
#ifndef AEC_CORE_MODULES_MOD_ARB_CEXPTABLE_H
#define AEC_CORE_MODULES_MOD_ARB_CEXPTABLE_H

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aeccoredata.h"
#include "aec/core/modules/mod_arb/exptabletypes.h"
#include "aecore/aecore.h"
#include "tuning_aecarbitration.h"
#include "tuning_aecshdr.h"

// Keeps the tuned (raw) table it was given, an active copy into which the frame-rate limit and the exposure
// compensation are folded as extra knees, and active copies of the staggered-HDR tables. The active copies live
// in fixed arrays inside the object: nothing is allocated.
class CExpTable
{
public:
    CExpTable();

    // Adopts a raw table and returns the scale s with physical sensitivity = s * 1.03^index; 0.0 for an invalid
    // table. Raises the tuned knees' f-numbers to 1.0 in the tuning record itself.
    FLOAT     SetExpTable(aecArbitration::ExposureTableType* pExpTable);
    // Adopts the HDR tables; pMEF may be null for two-exposure sensors.
    AecResult SetSHDRExpTable(const aecShdr::SHDRExposureTableType* pSEF,
                              const aecShdr::SHDRExposureTableType* pLEF,
                              const aecShdr::SHDRExposureTableType* pMEF);
    AecResult SetParamEV(FLOAT EV, BOOL enableEVMaxGain, FLOAT maxGainForEV, BOOL enableHDR3);
    AecResult SetFPSMaxExposureTime(UINT64 maxExpTime);

    AecResult ExpTableEntryLookUp(ExpTableAccessType access,
                                  ExposureSetType*   pExpSet,
                                  AECAlgoExposureType expType,
                                  SHDRAECMODE        shdrMode);
    AecResult ExpTableEntryLookUpExpTimePrio(ExpTableAccessType access,
                                             ExposureSetType*   pExpSet,
                                             AECAlgoExposureType expType);
    AecResult ExpTableEntryCapping(const ExposureLimitationType* pArbExpLimit,
                                   AECAlgoExposureType           expType,
                                   SHDRAECMODE                   shdrMode);

    ExposureLimitationType GetLimitation() const;
    // The range of the raw tuned table, before the frame-rate and EV knees; empty without a valid table.
    ExposureLimitationType GetRawLimitation() const;
    ExposureLimitationType GetSHDRLimitation(UINT32 tableType) const;
    FLOAT                  GetMaxExpIndexFromExpTime(UINT64 expTime) const;
    FLOAT                  GetMinExpIndexFromExpTime(UINT64 expTime) const;
    aecArbitration::ExposureTableType* GetExpTable(ExpTableAccessType access);
    aecShdr::SHDRExposureTableType*    GetActiveSHDRExpTable(UINT32 tableType);
    FLOAT                              GetThresAntiBandingMinExpTimePct() const;

    AecResult ApplyActiveTableEVFPSKnees();
    AecResult UpdateEVKnee();
    AecResult UpdateFPSKnee();

    CExpTable(const CExpTable&)            = delete;
    CExpTable& operator=(const CExpTable&) = delete;

private:
    friend class CExpTableTestPeer;

    aecArbitration::ExposureTableType* m_pExpTable; // raw table, borrowed from the tuning store
    aecArbitration::ExposureTableType  m_activeTbl;
    aecShdr::SHDRExposureTableType     m_activeSHDRTbl[ShdrExposureTableCount]; // by ShdrExposureTableType
    aecArbitration::ExposureKneeType   m_activeTblKnees[MaxExpTableKnees];
    aecShdr::SHDRExposureKneeType      m_activeSEFTblKnees[MaxExpTableKnees];
    aecShdr::SHDRExposureKneeType      m_activeLEFTblKnees[MaxExpTableKnees];
    aecShdr::SHDRExposureKneeType      m_activeMEFTblKnees[MaxExpTableKnees];
    aecArbitration::ExposureKneeType   m_FPSKnee;
    aecArbitration::ExposureKneeType   m_EVKnee;
    ExposureLimitationType             m_limitation;
    ExposureLimitationType             m_sHDRlimitation[ShdrExposureTableCount];
    ExpTableSettingsType               m_currentSettings;
    FLOAT                              m_ExpIndexDelta; // index distance of the EV knee from the FPS knee
    BOOL                               m_enableHDR3;
};

#endif // AEC_CORE_MODULES_MOD_ARB_CEXPTABLE_H
