// Shared fixture of the arbitration tests: default tuning, a mocked state store, a recording callback and a peer.
#ifndef TESTS_UNIT_ARB_ARBTESTSUPPORT_H
#define TESTS_UNIT_ARB_ARBTESTSUPPORT_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "aec/core/base/ctuningdataadapter.h"
#include "aec/core/include/aecdebugdata.h"
#include "aec/core/include/aeccustomexposuretable.h"
#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/modules/mod_arb/caecmodarbitration.h"
#include "aec/core/modules/mod_arb/carbitrator.h"
#include "support/corelogcapture.h"
#include "support/mockaeccontext.h"

// Records what arbitration publishes, as the state store would keep it.
class RecordingArbitrationCallback : public IArbitrationCallback
{
public:
    virtual ~RecordingArbitrationCallback() = default;

    VOID setSensitivity(FLOAT sensitivity) override;
    VOID SetStreamingLimitation(ExposureLimitationType* pLimitation) override;
    VOID SetSHDRStreamingLimitation(ExposureLimitationType* pLimitations) override;
    VOID SetCurentFPS(FLOAT FPS) override;
    VOID SetExpTableIdxOffsets(FLOAT* pStreamOffsets, FLOAT* pStillOffsets) override;
    VOID SetStreamingMinExpIndexForATB(FLOAT minExpIndex) override;

    ModArbitrationContext m_published = {};
    UINT32                m_limitationCalls = 0;
    UINT32                m_sensitivityCalls = 0;
    UINT32                m_FPSCalls = 0;
    UINT32                m_offsetCalls = 0;
    UINT32                m_ATBCalls = 0;
};

// Reaches the private state of an arbitrator.
class CArbitratorTestPeer
{
public:
    static ArbitrationSessionInfoType& Session(CArbitrator& rArb) { return rArb.m_session; }
    static MotorDecayType&             MotorDecay(CArbitrator& rArb) { return rArb.m_MotorDecayInfo; }
    static GyroInfoType&               Gyro(CArbitrator& rArb) { return rArb.m_gyroInfo; }
    static ExposureLimitationType*     ShdrExpLimit(CArbitrator& rArb) { return rArb.m_shdrExpLimit; }
    static AECAlgoExposureData*        PrevMap3HDR(CArbitrator& rArb) { return rArb.m_prevMap3HDR; }
    static FLOAT&    FnLimits(CArbitrator& rArb) { return rArb.m_FnLimits; }
    static UINT32&   ZoomStep(CArbitrator& rArb) { return rArb.m_currZoomStep; }
    static BOOL&     IsOverallSnapshot(CArbitrator& rArb) { return rArb.m_isOverallSnapshot; }
    static BOOL&     IsShdrActived(CArbitrator& rArb) { return rArb.m_isShdrActived; }
    static FLOAT&    ExpIdx(CArbitrator& rArb) { return rArb.m_expIdx; }
    static INT32&    IrisIsAborted(CArbitrator& rArb) { return rArb.m_irisIsAborted; }
    static FLOAT&    PLDGatingEnable(CArbitrator& rArb) { return rArb.m_PLDGatingEnable; }
    static FLOAT&    LuxIdx(CArbitrator& rArb) { return rArb.m_luxIdx; }
    static BOOL&     CurMap3HDRSnapshot(CArbitrator& rArb) { return rArb.m_isCurMap3HDRSnapshot; }
    static BOOL&     PrevMap3HDRSnapshot(CArbitrator& rArb) { return rArb.m_isPrevMap3HDRSnapshot; }
    static LDMIrisTableData& IrisTable(CArbitrator& rArb) { return rArb.m_IrisTble; }
    static LDMLensCap&       LensCap(CArbitrator& rArb) { return rArb.m_LensCap; }
    static ArbSensorLimits*  SensorLimit(CArbitrator& rArb) { return rArb.m_pSensorLimit; }

    static VOID UpdateArbitrationLimitation(CArbitrator& rArb) { rArb.UpdateArbitrationLimitation(); }
    static VOID UtilCalculateLimitationExpIndex(CArbitrator& rArb, ExposureLimitationType& rLimit,
                                                const aecArbitration::ExposureKneeType& rKnee)
    {
        rArb.UtilCalculateLimitationExpIndex(rLimit, rKnee);
    }
    static VOID IrisBoundryProcess(CArbitrator& rArb, BOOL hasIris, ExposureLimitationType& rLimit,
                                   AECExposureMode mode)
    {
        rArb.IrisBoundryProcess(hasIris, rLimit, mode);
    }
    static VOID DecayToleranceProcess(CArbitrator& rArb, ExposureLimitationType& rLimit, AECExposureMode mode)
    {
        rArb.DecayToleranceProcess(rLimit, mode);
    }
    static BOOL HasIris(CArbitrator& rArb) { return rArb.HasIris(); }
};

// Reaches the private state and helpers of the arbitration module.
class CAECModArbitrationTestPeer
{
public:
    static const ArbitrationTuningDataType*& Tuning(CAECModArbitration& rMod) { return rMod.m_pTuning; }
    static ExposureLimitationType& Limitation(CAECModArbitration& rMod) { return rMod.m_limitation; }
    static CArbitrator&            Streaming(CAECModArbitration& rMod) { return rMod.m_streaming; }
    static CArbitrator&            Still(CAECModArbitration& rMod) { return rMod.m_still; }
    static BOOL&                   EnableHDR3(CAECModArbitration& rMod) { return rMod.m_enableHDR3; }
    static BOOL&                   TableZeroTuned(CAECModArbitration& rMod) { return rMod.m_bTableZeroTuned; }
    static aecglobalelements::ExposureTableIDType& TableIDStreaming(CAECModArbitration& rMod)
    {
        return rMod.m_tableIDStreaming;
    }
    static aecglobalelements::ExposureTableIDType& TableIDStill(CAECModArbitration& rMod)
    {
        return rMod.m_tableIDStill;
    }
    static ArbSensorLimits&             SensorLimitStreaming(CAECModArbitration& rMod) { return rMod.m_sensorLimitStreaming; }
    static AECDebugDataArbitrationType& DebugData(CAECModArbitration& rMod) { return rMod.m_debugData; }
    static UINT32&                      ZoomStep(CAECModArbitration& rMod) { return rMod.m_ZoomStep; }
    static FLOAT&                       FixFn(CAECModArbitration& rMod) { return rMod.m_FixFn; }
    static INT32&                       IrisIsAborted(CAECModArbitration& rMod) { return rMod.m_irisIsAborted; }

    static aecglobalelements::ExposureTableIDType UtilGetExpTableID(CAECModArbitration& rMod,
                                                                    AECAlgoOperationModeType mode,
                                                                    const AECSnapshotQueryParam* pSnapshot)
    {
        return rMod.UtilGetExpTableID(mode, pSnapshot);
    }
    static VOID CalculateExpTableIdxOffsets(CAECModArbitration& rMod, FLOAT* pStream, FLOAT* pStill)
    {
        rMod.CalculateExpTableIdxOffsets(pStream, pStill);
    }
    static BOOL isEnforcedManualSettings(CAECModArbitration& rMod, ArbInstance instance)
    {
        return rMod.isEnforcedManualSettings(instance);
    }
    static BOOL isEnforcedFPS(CAECModArbitration& rMod, ArbInstance instance) { return rMod.isEnforcedFPS(instance); }
    static BOOL isEnforcedFlicker(CAECModArbitration& rMod, ArbInstance instance)
    {
        return rMod.isEnforcedFlicker(instance);
    }
    static VOID ArbitrateExposureTimeConvergence(CAECModArbitration& rMod, FLOAT src, FLOAT dst,
                                                 AECAlgoExposureData* pSets)
    {
        rMod.ArbitrateExposureTimeConvergence(src, dst, pSets);
    }
    static UINT32 UtilGain2ISO(CAECModArbitration& rMod, FLOAT gain, aecglobalelements::ExposureTableIDType a,
                               aecglobalelements::ExposureTableIDType b)
    {
        return rMod.UtilGain2ISO(gain, a, b);
    }
    static FLOAT UtilISO2Gain(CAECModArbitration& rMod, UINT32 iso, aecglobalelements::ExposureTableIDType table)
    {
        return rMod.UtilISO2Gain(iso, table);
    }
    static VOID CalculateExifInfo(CAECModArbitration& rMod, AECExifInfo* pExif, const AECAlgoExposureData* pSets,
                                  aecglobalelements::ExposureTableIDType refTable,
                                  aecglobalelements::ExposureTableIDType stillTable, FLOAT EV)
    {
        rMod.CalculateExifInfo(pExif, pSets, refTable, stillTable, EV);
    }
    static FLOAT SensitivityCorrectionOf(CAECModArbitration& rMod, aecglobalelements::ExposureTableIDType table)
    {
        return rMod.SensitivityCorrectionOf(table);
    }
    static VOID MapSensitivityInMultiCam(CAECModArbitration& rMod, const AECMultiCamExpInfo& rPeer, INT32 CCT,
                                         FLOAT lux, FLOAT* pOut)
    {
        rMod.MapSensitivityInMultiCam(rPeer, CCT, lux, pOut);
    }
    static VOID UpdateSensitivityForMultiCam(CAECModArbitration& rMod, const AECAlgoExposureData* pSets, FLOAT lux,
                                             AECMultiCamExpInfo& rOut)
    {
        rMod.UpdateSensitivityForMultiCam(pSets, lux, rOut);
    }
    static VOID SyncUpExposureTimeForMultiCam(CAECModArbitration& rMod, ArbitrationOutput* pOutput)
    {
        rMod.SyncUpExposureTimeForMultiCam(pOutput);
    }
    static VOID ApplyCCTBasedCompensationFactor(CAECModArbitration& rMod, INT32 CCT, FLOAT* pSens)
    {
        rMod.ApplyCCTBasedCompensationFactor(CCT, pSens);
    }
};

// An iris calibration the tests own: rows of f-numbers per zoom step, entry 0 the widest.
class TestIrisTable
{
public:
    TestIrisTable(std::initializer_list<INT32> zoomSteps, std::initializer_list<std::initializer_list<FLOAT>> rows);
    LDMIrisTableData Data();

private:
    std::vector<INT32>               m_zoom;
    std::vector<std::vector<FLOAT>>  m_fn;
    std::vector<std::vector<UINT32>> m_steps;
    std::vector<FLOAT*>              m_fnRows;
    std::vector<UINT32*>             m_stepRows;
};

// Every log line of the core while a test runs.
BOOL ArbLogContains(const std::string& text);

// Base of the arbitration tests. The state store is a NiceMock whose getters return the members below, so a test
// changes a member to change what arbitration reads. The tuning is the embedded default, private to the fixture
// and free to modify through Modules() / m_pTuning.
class ArbitrationTest : public ::testing::Test
{
protected:
    VOID SetUp() override;
    VOID TearDown() override;

    const TuningModulesPointers& Modules() const { return m_adapter.GetTuningModules(); }
    // The writable core arbitration record of the default tuning.
    aecArbitration::AECCoreArbitrationType* ArbCore() const;

    // An arbitrator with the default tuning, table tableID adopted, and the sensor limits of m_sensorLimits.
    std::unique_ptr<CArbitrator> MakeArbitrator(aecglobalelements::ExposureTableIDType tableID = 0,
                                                BOOL withSensorLimits = TRUE);

    ::testing::NiceMock<MockAECContext> m_context;
    CTuningDataAdapter                  m_adapter;
    CoreModuleTuningData*               m_pTuning = nullptr;
    std::unique_ptr<CoreLogCapture>     m_pLogs;

    // What the getters return.
    AECAlgoOperationModeType m_opMode       = AECAlgoOperationModeStreaming;
    StatisticsAntibanding    m_flickerMode  = StatisticsAntibandingOff;
    FLOAT                    m_minFPS       = 15.0F;
    FLOAT                    m_maxFPS       = 30.0F;
    FLOAT                    m_PWMFrequency = 0.0F;
    BOOL                     m_HDR3Enable   = FALSE;
    FLOAT                    m_realDRCGain  = 1.0F;
    BOOL                     m_DRCEnable    = TRUE;
    AECAlgoSensorInfo        m_sensorInfo   = {};
    AECAlgoManualSetting     m_manual       = {};
    StatsGyroInfo            m_gyro         = {};
    AECFrameHistory          m_history[4];   // entry k is the frame k ago
    BOOL                     m_hasHistory   = TRUE;
    ModArbitrationContext    m_published    = {};
    AECMultiCamInfo          m_peer         = {};
    BOOL                     m_hasPeer      = FALSE;
    AECMultiCamInfo          m_own          = {};
    AECDualcamCalibrationInfo m_calibration = {};
    AECAlgoOverrideSettingParam m_override  = {};
    std::unique_ptr<AECDebugData> m_pDebugData;
    AECCustomExposureTableInfo    m_customTable = {};
    BOOL                     m_debugEnable  = FALSE;

    // Sensor limits handed to arbitrators by MakeArbitrator: gain 1..64, time 10 us..1 s, HDR ranges alike.
    ArbSensorLimits m_sensorLimits = {};
};

#endif // TESTS_UNIT_ARB_ARBTESTSUPPORT_H
