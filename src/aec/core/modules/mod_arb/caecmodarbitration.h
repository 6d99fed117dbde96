// Arbitration module: the streaming and still arbitrators, session events, table offsets and multi-camera sync.
#ifndef AEC_CORE_MODULES_MOD_ARB_CAECMODARBITRATION_H
#define AEC_CORE_MODULES_MOD_ARB_CAECMODARBITRATION_H

#include "aec/core/include/aecdebugdata.h"
#include "aec/core/include/iaecarbitration.h"
#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/modules/mod_arb/carbitrator.h"

// Turns converged indices into exposure sets: every preview frame through m_streaming, every snapshot query
// through m_still. Session changes (mode, EV, frame rate, flicker, manual settings, sensor, zoom, iris) reach
// both arbitrators here; the streaming limit, the table sensitivity, the frame rate and the table offsets are
// published to the state store through the callback.
class CAECModArbitration final : public IAECArbitration
{
public:
    CAECModArbitration(IAECContext* pContext, IArbitrationCallback* pCallback);

    // ---- Frames and queries (caecmodarbitrationstream.cpp, caecmodarbitrationstill.cpp) ----
    AecResult ArbitrateExposure(ArbitrationStreamInput* pInput, ArbitrationOutput* pOutput) override;
    AecResult ArbitrateExposure(ArbitrationStillInput* pInput, ArbitrationOutput* pOutput) override;

    // ---- Conversions (caecmodarbitrationconvert.cpp) ----
    FLOAT     QueryISO2Gain(UINT32 ISOValue, BOOL isStill) override;
    FLOAT     QueryExpTime2FPS(UINT64 exposureTime) override;
    AecResult QuerySensitivity2ExpIndex(const FLOAT*             pSensitivities,
                                        AECAlgoOperationModeType mode,
                                        FLOAT*                   pExpIndices) override;

    // ---- Multi-camera (caecmodarbitrationmulticam.cpp) ----
    AecResult ComputeTargetIndexInMultiCam(FLOAT luxIndex, FLOAT* pTargetIndices) override;

    // ---- Events (caecmodarbitration.cpp) ----
    AecResult OnLDMIrisTable(LDMIrisTableData irisTable) override;
    AecResult OnTuningHeaderChange() override;
    AecResult OnOperationModeChange() override;
    AecResult OnExposureCompChange() override;
    AecResult OnFlickerCompModeChange() override;
    AecResult OnManualSettingChange() override;
    AecResult OnFPSChange() override;
    AecResult OnSensorInfoChange() override;
    AecResult OnZoomInfoChange() override;
    AecResult OnDebugDataUpdate() override;
    AecResult OnCustomExposureTableChange() override;
    AecResult OnFnManualChange() override;

private:
    friend class CAECModArbitrationTestPeer;

    // Event helpers (caecmodarbitration.cpp).
    aecglobalelements::ExposureTableIDType UtilGetExpTableID(AECAlgoOperationModeType mode,
                                                             const AECSnapshotQueryParam* pSnapshot);
    VOID CalculateExpTableIdxOffsets(FLOAT* pStreamOffsets, FLOAT* pStillOffsets);
    BOOL isEnforcedManualSettings(ArbInstance instance);
    BOOL isEnforcedFPS(ArbInstance instance);
    BOOL isEnforcedFlicker(ArbInstance instance);
    // Copies the streaming limit and publishes it.
    VOID PublishStreamingLimitation(const ExposureLimitationType& rLimit);

    // Frame helpers (caecmodarbitrationstream.cpp).
    VOID ArbitrateExposureTimeConvergence(FLOAT srcExpIdx, FLOAT dstExpIdx, AECAlgoExposureData* pExpSets);
    // Staggered-HDR frame: arbitrated as a plain frame until the staggered-HDR arbitration is built.
    VOID ArbitrateShdrExposure(ArbitrationStreamInput* pInput, ArbitrationOutput* pOutput);
    VOID UpdateDebugData(const ArbitrationOutput* pOutput, UINT8 exposureInstance);

    // Conversion helpers (caecmodarbitrationconvert.cpp).
    UINT32 UtilGain2ISO(FLOAT gain,
                        aecglobalelements::ExposureTableIDType tableA,
                        aecglobalelements::ExposureTableIDType tableB);
    FLOAT  UtilISO2Gain(UINT32 ISOValue, aecglobalelements::ExposureTableIDType table);
    VOID   CalculateExifInfo(AECExifInfo*                            pExif,
                             const AECAlgoExposureData*              pExpSets,
                             aecglobalelements::ExposureTableIDType  refTable,
                             aecglobalelements::ExposureTableIDType  stillTable,
                             FLOAT                                   EV);
    // Sensitivity correction of a tuned (or the custom) table; 0.0 when there is none.
    FLOAT  SensitivityCorrectionOf(aecglobalelements::ExposureTableIDType table);

    // Multi-camera helpers (caecmodarbitrationmulticam.cpp).
    VOID MapSensitivityInMultiCam(const AECMultiCamExpInfo& rPeer, INT32 CCT, FLOAT luxIndex, FLOAT* pOutSens);
    VOID UpdateSensitivityForMultiCam(const AECAlgoExposureData* pSets, FLOAT luxIndex, AECMultiCamExpInfo& rOut);
    VOID SyncUpExposureTimeForMultiCam(ArbitrationOutput* pOutput);
    VOID ApplyCCTBasedCompensationFactor(INT32 CCT, FLOAT* pSens);

    IArbitrationCallback*                  m_pCallback;
    const ArbitrationTuningDataType*       m_pTuning;
    ExposureLimitationType                 m_limitation; // copy of the streaming limit
    CArbitrator                            m_streaming;
    BOOL                                   m_enableHDR3;
    CArbitrator                            m_still;
    aecglobalelements::ExposureTableIDType m_tableIDStreaming;
    aecglobalelements::ExposureTableIDType m_tableIDStill;
    ArbSensorLimits                        m_sensorLimitStreaming;
    ArbSensorLimits                        m_sensorLimitStill;
    AECDebugDataArbitrationType            m_debugData;
    BOOL                                   m_bTableZeroTuned;
    UINT32                                 m_ZoomStep;
    LDMIrisTableData                       m_IrisTble;
    LDMLensCap                             m_LensCap;
    FLOAT                                  m_FixFn; // fixed f-number the application asks for; 0 leaves the iris free
    INT32                                  m_irisIsAborted;
};

#endif // AEC_CORE_MODULES_MOD_ARB_CAECMODARBITRATION_H
