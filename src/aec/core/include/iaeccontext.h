// Read access of the modules to the per-camera state store.
#ifndef AEC_CORE_INCLUDE_IAECCONTEXT_H
#define AEC_CORE_INCLUDE_IAECCONTEXT_H

#include "aecore/aecore.h"
#include "aec/core/include/aeccoredata.h"

// Per-module views of the tuning, defined in aec/core/include/coremoduletuningdata.h.
struct IRTuningDataType;
struct MeteringTuningDataType;
struct ConvergenceTuningDataType;
struct ArbitrationTuningDataType;
struct ExtensionTuningDataType;

// Application-supplied exposure table; its definition needs the generated exposure table record.
struct AECCustomExposureTableInfo;

namespace aecArbitration
{
struct ExposureTableType;
}

namespace aecglobalelements
{
// Index into the tuned exposure tables; 100 selects the application's custom table.
typedef INT32 ExposureTableIDType;
}

// Getters only, with no side effect unless noted. Pointers stay owned by the state store and remain valid until
// the value behind them is next set.
class IAECContext
{
public:
    virtual AECAlgoOperationModeType getOperationMode() = 0;
    virtual AECAlgoMeteringModeType getMeteringMode() = 0;
    virtual const EVContext* getEVInfo() = 0;
    virtual StatisticsAntibanding getFlickerCompMode() = 0;
    virtual const AECAlgoManualSetting* getManualSetting() = 0;
    virtual BOOL getIsAECLocked() = 0;
    // Writable: convergence records the lock state in it.
    virtual AECLockContext* getLockContext() = 0;
    virtual FLOAT getMinFPS() = 0;
    virtual FLOAT getMaxFPS() = 0;
    virtual AECAlgoLEDModeType getLEDMode() = 0;
    virtual UINT32 getFlashMeasIndex() = 0;
    virtual AECAlgoFlashMeasKindType getFlashMeasKind() = 0;
    virtual const AECAlgoWhiteBalanceState* getAWBState() = 0;
    virtual const AECAlgoOverrideSettingParam* getOverrideSetting() = 0;
    virtual BOOL getLEDCalibrationEnable() = 0;
    virtual BOOL getDebugDataEnable() = 0;
    // Writable: each module fills its part during the debug data event.
    virtual AECDebugData* getDebugData() = 0;
    virtual INT32 getFlashMaxCurrent() = 0;
    virtual const IRTuningDataType* getIRTuning() = 0;
    virtual const ConvergenceTuningDataType* getConvTuning() = 0;
    virtual const MeteringTuningDataType* getMtrTuning() = 0;
    virtual const ArbitrationTuningDataType* getArbTuning() = 0;
    virtual const ExtensionTuningDataType* getExtTuning() = 0;
    virtual const ModArbitrationContext* getExposureLimitation() = 0;
    // Newest history entry at least offset frame IDs old; the start configuration before the first frame;
    // null without a start configuration or with an offset beyond the history depth.
    virtual const AECFrameHistory* getFrameHistory(UINT8 offset) = 0;
    // Copies what the previous operation mode left behind; returns its isValid.
    virtual BOOL getPrevModeHistory(AECModeHistory* pModeHistory) = 0;
    virtual const TouchROIProcInfo* getTouchROI() = 0;
    virtual const FaceROIProcInfo* getFaceROI() = 0;
    virtual FLOAT getCurrentFPS() = 0;
    virtual BOOL getAreFlashLowStatsSaved() = 0;
    virtual const AECAlgoSensorInfo* getSensorInfo() = 0;
    virtual const AECAlgoDiagConfig* getDiagTestConfig() = 0;
    virtual const StatsGyroInfo* getGyroInfo() = 0;
    virtual BOOL getDRCEnable() = 0;
    virtual FLOAT getCompensationRatio() = 0;
    virtual BOOL getHDR3Enable() = 0;
    virtual FLOAT getRealDRCGainHDR3() = 0;
    virtual const AECAlgoStartupIndices* getStartUpExpIndex() = 0;
    virtual UINT8 getPipelineDelay() = 0;
    virtual AECAlgoMultiCamMeteringType getMeteringType() = 0;
    virtual AECAlgoMultiCamExposureType getExposureType() = 0;
    virtual const StatsCameraInfo* getCameraInfo() = 0;
    // The peer camera's record, owned by the peer's instance; null without a peer.
    virtual const AECMultiCamInfo* getPeerInfo() = 0;
    // Writable: the core publishes this camera's state in it for the peer.
    virtual AECMultiCamInfo* getMyOwnInfo() = 0;
    // Side effect: rescales the saturation thresholds from the newest history entry when tuning asks for it.
    virtual const StatsBayerGridBayerExposureConfig* getBGBEConfig() = 0;
    virtual const StatsBayerHistogramConfig* getBayerHistConfig() = 0;
    virtual FLOAT getDynamicConvergenceSpeed() = 0;
    virtual UINT32 getFlashMeasSwitchCounter() = 0;
    virtual AECDualcamCalibrationInfo getDCCalibrationInfo() = 0;
    virtual AECAlgoHDRType getMultiExposureSensorMode() = 0;
    virtual const AECDCGConfig* getDCGMode() = 0;
    virtual UINT32 getConvFrameSkipCounter() = 0;
    virtual INT32 getPostRawGain() = 0;
    virtual UINT32 getPostRawCounter() = 0;
    virtual const AECCustomMeteringTable& getCustomMeteringTable() = 0;
    virtual const AECCustomExposureTableInfo* getCustomExposureTableInfo() = 0;
    // Null without tuning; an unknown ID falls back on table 0.
    virtual aecArbitration::ExposureTableType* getExposureTableFromTableID(
        aecglobalelements::ExposureTableIDType tableID) = 0;
    virtual AECIRLedState getIRState() = 0;
    virtual FLOAT getManualIRIntensity() = 0;
    virtual UINT32 getIRCutSystemLatency() = 0;
    virtual UINT32 getIRLedSystemLatency() = 0;
    virtual FLOAT getPWMFrequency() = 0;
    // Non-const: the luma calculator input carries it as a plain pointer.
    virtual AECWeightingTable* getWeightTable() = 0;

protected:
    // The state store is owned and destroyed by the core, never through this interface.
    ~IAECContext() = default;
};

#endif // AEC_CORE_INCLUDE_IAECCONTEXT_H
