// One arbitrator (streaming or still): exposure limits, exposure sets from indices, antibanding, iris and gyro steps.
#ifndef AEC_CORE_MODULES_MOD_ARB_CARBITRATOR_H
#define AEC_CORE_MODULES_MOD_ARB_CARBITRATOR_H

#include "aec/core/include/aecarbitrationrecords.h"
#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/include/iaeccontext.h"
#include "aec/core/modules/mod_arb/arbitratortypes.h"
#include "aec/core/modules/mod_arb/cexptable.h"
#include "aecore/aecore.h"

// Owns one exposure table and the session limit it is capped to. The limit is rebuilt from scratch by every
// setter that bounds exposure (UpdateArbitrationLimitation); what survives between rebuilds is the setters'
// values, the iris decay record and the fixed f-number. The module owns two of these and feeds them the same
// events; the arbitrator never calls back into the module.
class CArbitrator
{
public:
    explicit CArbitrator(IAECContext* pContext);

    // Back to the session start: EV 0, table 0, auto mode, unit gain, no sensor limit, no iris, empty gyro buffer.
    VOID Initialize();
    // Tuning the arbitrator reads; null until the tuning header arrives.
    VOID SetTuning(const ArbitrationTuningDataType* pTuning);

    // ---- Limit setters: each stores its value and rebuilds the session limit (carbitratorlimits.cpp) ----
    ExposureLimitationType SetExpTable(aecglobalelements::ExposureTableIDType tableID, FLOAT* pSensitivity);
    ExposureLimitationType SetManualSetting(const ArbManualSetting* pSetting);
    ExposureLimitationType SetSensorLimits(ArbSensorLimits* pSensorLimit);
    ExposureLimitationType SetZoomDependentIrisBoundary(UINT32 zoomStep);
    ExposureLimitationType SetFnLimits(FLOAT fnumber);
    VOID                   SetIrisTable(LDMIrisTableData irisTable);
    VOID                   SetLensCap(LDMLensCap lensCap);
    ExposureLimitationType SetParamEV(FLOAT EV, BOOL enableHDR3);
    ExposureLimitationType SetParamFPSRange(FLOAT minFPS);
    // Stores the mains mode; 50 Hz and 60 Hz also set the flicker half period. Auto states are resolved by the
    // caller.
    VOID                   SetFlcikerMode(StatisticsAntibanding flickerMode);

    ExposureLimitationType GetLimitation() const;
    // Lowest index antibanding can reach: the limit's minimum, or the index of one flicker half period.
    FLOAT                  GetMinExpIdxForATB();
    aecglobalelements::ExposureTableIDType GetTableID() const;
    // Sensitivity correction of the adopted table; 0.0 before one is adopted.
    FLOAT                  GetSensitivityCorrection();
    CExpTable*             GetExpTable();

    // ---- Streaming and still exposures (carbitratorstream.cpp, carbitratorstill.cpp) ----
    // Preview frame: indices short, long, safe into the output's expSets.
    AecResult ArbitrateExposure(FLOAT* pExpIndices, INT32 irisIsAborted, ArbitrationOutput* pOutput, BOOL enableHDR3);
    // Still query: as the preview with HDR adjusting, or the in-sensor HDR snapshot from the last preview mapping.
    AecResult ArbitrateExposure(FLOAT* pExpIndices, ArbitrationOutput* pOutput, BOOL enableHDR3);
    // Low-light snapshot: the exposure of index stretched to requiredTime (ns).
    AecResult ArbitrateLLSExposure(const ParamExtLLS* pExtLLS,
                                   FLOAT              expIndex,
                                   AECAlgoExposureData* pData,
                                   UINT64             requiredTime);
    // Neighbour exposures derived from a reference set (carbitratorneighbour.cpp).
    VOID ArbitrateShortExposure(FLOAT delta, ExposureSetType* pOut, ExposureSetType* pIn);
    VOID ArbitrateMiddleExposure(FLOAT delta, ExposureSetType* pOut, ExposureSetType* pIn);
    VOID ArbitrateLongExposure(FLOAT delta, ExposureSetType* pOut, ExposureSetType* pIn);
    VOID ArbitrateSafeExposureHDR3(FLOAT delta, ExposureSetType* pOut, ExposureSetType* pIn);
    // Index of an exposure in the active table's terms, from its first knee.
    FLOAT UtilExp2ExpIndex(const AECAlgoExposureData* pData);
    BOOL  GetInsensorHDRSnapshot() const;

    // ---- Adjustments after the table lookup (carbitratoradjust.cpp, carbitratorantibanding.cpp) ----
    VOID ArbitrateExposureAdjusting(ExposureSetType*    pExpSet,
                                    AECAlgoExposureType expType,
                                    AECExposureMode     mode,
                                    SHDRAECMODE         shdrMode);
    VOID processAntibandingAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit);
    VOID processAntibandingSEFAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit);
    VOID processAntibandingLEFAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit);
    VOID processAntibandingMEFAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit);
    VOID processLEFMaxGainAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit);
    // Longest exposure time on the flicker grid that the published long-exposure limit allows.
    UINT64 getMaxBandingShutter();
    // Keeps an HDR exposure inside the sensor's own range for its kind, trading time for gain.
    VOID ArbitrateExposureLimitProtecting(const ExposureSetType* pIn, ExposureSetType* pOut, AECAlgoExposureType expType);

    // ---- Iris motor (carbitratormotor.cpp) ----
    VOID processMotorLifeSaveAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit, UINT32 expType);
    VOID processMotorExpDecayAdjust(ExposureSetType* pExpSet, ExposureLimitationType& rLimit, AECExposureMode mode);
    // Manual iris decay parameters: nothing to do, the decay works the same in every mode.
    VOID PirisManualDecayParam();

    // ---- Gyro (carbitratorgyro.cpp) ----
    VOID  SetGyroInfo(const StatsGyroInfo* pGyroInfo);
    VOID  SetLuxIndex(FLOAT luxIndex);
    FLOAT GyroExposureControlLUT(FLOAT keyLevel1, FLOAT keyLevel2, const ParamExtGyroExpCtrl* pTuning);
    // Trades time for gain under shake, within the session limit.
    VOID  processGyroBasedExposureAdjust(ExposureSetType* pExpSet);

    CArbitrator(const CArbitrator&)            = delete;
    CArbitrator& operator=(const CArbitrator&) = delete;

private:
    friend class CArbitratorTestPeer;

    // Rebuilds the session limit and caps the active table to it (carbitratorlimits.cpp).
    VOID UpdateArbitrationLimitation();
    VOID UtilCalculateLimitationExpIndex(ExposureLimitationType& rLimit, const aecArbitration::ExposureKneeType& rKnee);
    VOID IrisBoundryProcess(BOOL hasIris, ExposureLimitationType& rLimit, AECExposureMode mode);
    VOID DecayToleranceProcess(ExposureLimitationType& rLimit, AECExposureMode mode);
    // TRUE when the lens reports an iris, its tables are complete and the raw table moves the f-number.
    BOOL HasIris();
    // TRUE when the iris calibration has both sizes and all three tables.
    BOOL IsIrisCalibrated() const;
    // The exposure sets of indices short, long, safe, shared by preview frames and still queries; a query adjusts
    // the safe exposure as an HDR one and marks an in-sensor HDR mapping it makes.
    AecResult ArbitrateExposureSets(FLOAT* pExpIndices, ArbitrationOutput* pOutput, BOOL enableHDR3, BOOL isSnapshot);
    // The exposure set the table gives for an index, with sensitivity, as an output record.
    VOID FillExposureData(const ExposureSetType& rSet, AECAlgoExposureData* pData);

    IAECContext*                           m_pContext;
    const ArbitrationTuningDataType*       m_pTuning;
    CExpTable                              m_expTable;
    aecglobalelements::ExposureTableIDType m_TableID;
    ArbitrationSessionInfoType             m_session;
    ArbSensorLimits*                       m_pSensorLimit; // borrowed from the module
    ExposureLimitationType                 m_shdrExpLimit[ShdrExposureTableCount]; // SEF, LEF, MEF
    MotorDecayType                         m_MotorDecayInfo;
    LDMIrisTableData                       m_IrisTble; // borrowed from the core's deep copy
    LDMLensCap                             m_LensCap;
    GyroInfoType                           m_gyroInfo;
    FLOAT                                  m_luxIdx;
    FLOAT                                  m_FnLimits;   // fixed f-number from the application when above 0
    UINT32                                 m_currZoomStep;
    BOOL                                   m_isOverallSnapshot;
    BOOL                                   m_isShdrActived;
    FLOAT                                  m_expIdx;     // safe index of the last arbitration
    FLOAT                                  m_currSEFfnum;
    INT32                                  m_irisIsAborted;
    FLOAT                                  m_PLDGatingEnable; // set only by the laboratory gating sweep
    // Last in-sensor HDR mapping, in the order short, safe, middle; a snapshot reuses it.
    AECAlgoExposureData                    m_prevMap3HDR[AECAlgoExposureCount];
    BOOL                                   m_isPrevMap3HDRSnapshot;
    BOOL                                   m_isCurMap3HDRSnapshot;
    BOOL                                   m_isInsensorHDRSnapshot;
};

#endif // AEC_CORE_MODULES_MOD_ARB_CARBITRATOR_H
