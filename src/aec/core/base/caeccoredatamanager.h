// The per-camera state store of the core: settings, tuning views, frame history, ROIs and multi-camera exchange.
#ifndef AEC_CORE_BASE_CAECCOREDATAMANAGER_H
#define AEC_CORE_BASE_CAECCOREDATAMANAGER_H

#include <list>

#include "aec/core/base/ctuningdataadapter.h"
#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aeccoredata.h"
#include "aec/core/include/aeccustomexposuretable.h"
#include "aec/core/include/aecdebugdata.h"
#include "aec/core/include/iaecarbitration.h"
#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/include/iaeccomponent.h"
#include "aec/core/include/iaeccontext.h"

// Modules read the store through IAECContext, write back through their callback interface and learn of
// changes through the IAECComponent events; the core drives it through the non-virtual operations.
//
// Later stage: the debug data writer records the statistics and fills the host's buffer.
class CAECCoreDataManager final : public IAECContext,
                                  public IMeteringCallback,
                                  public IConvergenceCallback,
                                  public IArbitrationCallback,
                                  public IIrisCtrlCallback,
                                  public IExtensionCallback
{
public:
    // One of the IAECComponent events, as notifyComponents takes it.
    typedef AecResult (IAECComponent::*ComponentEvent)();

    CAECCoreDataManager();
    ~CAECCoreDataManager();

    CAECCoreDataManager(const CAECCoreDataManager&)            = delete;
    CAECCoreDataManager& operator=(const CAECCoreDataManager&) = delete;

    // ---- Components ----

    // Appends; the registration order is the order in which every event reaches the components.
    VOID addComponent(IAECComponent* pComponent);
    // Sends the event to every component in order, also past a failure; AecError if any of them failed.
    AecResult notifyComponents(ComponentEvent event);

    // ---- Per-frame bookkeeping of the core ----

    // Counts each pending frame counter down by one.
    VOID updateFrameCounters();
    BOOL isStartConfigSaved() const;
    // Records the start configuration of the current operation mode.
    VOID saveStartExposure(const FLOAT* pExpIndices, FLOAT luxIndex);
    // Takes the frame ID of the frame being processed; 1 when it does not rise (unless autoSwitchHDR is set).
    AecResult saveCurrentFrameID(UINT64 frameID);
    // Puts a processed frame in front of the history; 1 when its frame ID is not above the newest entry's.
    AecResult saveFrameHistoryInfo(const AECFrameHistory& frameHistory);
    // Marks the newest history entry as taken while a snapshot exposure was in the pipeline.
    VOID setSnapshotQuery();
    BOOL isFrameHistoryEmpty() const;
    VOID processROIsPerFrame();
    VOID DebugDataSaveStats(const AECCoreInput* pInput);
    // Writes the debug data of the frame into the host's buffer and reports the bytes written.
    KDKResult PrepareDebugData(const StatsDataPointer* pDebugBuffer, SIZE_T* pSizeWritten);

    // ---- Setters ----

    AecResult setOperationMode(AECAlgoOperationModeType mode);
    AecResult setCameraInfo(const StatsCameraInfo& cameraInfo);
    AecResult SetSetSensorInfo(const AECAlgoSensorInfo* pSensorInfo);
    VOID      setPipelineDelay(UINT8 systemLatency);
    VOID      setOverrideSetting(const AECAlgoOverrideSettingParam& overrideSetting);
    VOID      setAWBState(const AECAlgoWhiteBalanceState& AWBState);
    VOID      setDebugDataEnable(BOOL enable);
    VOID      setFlashMaxCurrent(INT32 maxCurrent);
    AecResult setFlashMeasurement(AECAlgoFlashMeasKindType kind);
    VOID      setPostRawGain(INT32 postRawGain);
    VOID      setADRCInfo(BOOL disableADRC);
    VOID      setCropWindow(const StatsRectangle& cropWindow);
    // Selects the peer's record from the host's pipeline list by this camera's role; 1 when there is none.
    AecResult MapMultiCamPeerInfo(const StatsPeerInfoCombo* pCombo, const AECMultiCamInfo** ppPeerInfo);
    // Takes the peer's record (owned by the peer's instance) and its dual-camera calibration if own is missing.
    VOID      setPeerInfo(const AECMultiCamInfo* pPeerInfo);
    // Replaces the record the peer camera reads, under the lock that its reads take.
    VOID      publishMyOwnInfo(const AECMultiCamInfo& info);
    // TRUE when the host's tuning mode selectors differ from those last seen; then they are taken over. A host
    // without a tuning store sends no selectors at all: that counts as a change only while no tuning is in force.
    BOOL      isTuningModeChange(const StatsTuningData* pTuning);
    // Re-reads the tuning after a change of tuning mode (fake tuning without a tuning store) and carries the
    // previous mode and the current history over to the new exposure tables of arbitration.
    AecResult setSorenta(const StatsTuningData* pTuning, IAECArbitration* pArbitration);
    AecResult setMeteringMode(AECAlgoMeteringModeType mode);
    // EVVal counts steps of the EV capabilities.
    AecResult setEVVal(INT32 EVVal);
    // While AEC is locked the mode waits in the lock context until the unlock.
    AecResult setFlickerCompMode(StatisticsAntibanding flickerComp);
    AecResult setAECLockSetting(AECAlgoLockType lockState);
    AecResult setManualSetting(const AECAlgoManualSetting& manualSetting);
    // TRUE when any of the six fields differs from the stored manual setting.
    BOOL      isManualSettingChanged(const AECAlgoManualSetting& manualSetting) const;
    AecResult setFPSRange(const AECAlgoFPSRange& FPSRange);
    AecResult setLEDMode(AECAlgoLEDModeType LEDMode);
    // Keeps at most AECMaxTouchROIs regions, each repaired to lie within the frame; 1 when some were dropped
    // or the list is unusable.
    AecResult setTouchROI(const AECAlgoROIList& touchROI);
    AecResult setFaceROI(const UnstabilizedROIInformation& faceROI);
    VOID      setGyro(const StatsGyroInfo& gyro);
    AecResult setDiagTestConfig(const AECAlgoDiagConfig* pDiagConfig);
    VOID      setStartUpExpIndex(const AECAlgoStartupIndices& startUpExpIndex);
    AecResult setDCCalibrationInfo(const AECAlgoDCCalibrationInfo& calibrationInfo);
    AecResult setMultiExposureSensorMode(AECAlgoHDRType multiExposureSensorMode);
    AecResult setDCGMode(const AECDCGConfig& dcgMode);
    // A valid table replaces the tuned exposure tables; an invalid one returns to them.
    AecResult setCustomExposureTable(const AECCustomExposureTable& customExposureTable);
    AecResult setCustomMeteringTable(const AECCustomMeteringTable& customMeteringTable);
    // 0 returns to the tuned speed; otherwise a speed in (0, 1].
    AecResult setConvergenceSpeed(FLOAT convergenceSpeed);
    // IR path: reached from no set parameter in this configuration.
    AecResult setIRLedState(AECIRLedState IRLedState);
    AecResult setIRLedSystemConfig(const AECIRLedSystemConfig& IRLedSystemConfig);
    VOID      setCompensationRatio(FLOAT compensationRatio);
    VOID      setWeightTable(const AECWeightingTable& weightTable);

    // ---- IAECContext ----

    AECAlgoOperationModeType getOperationMode() override;
    AECAlgoMeteringModeType getMeteringMode() override;
    const EVContext* getEVInfo() override;
    StatisticsAntibanding getFlickerCompMode() override;
    const AECAlgoManualSetting* getManualSetting() override;
    BOOL getIsAECLocked() override;
    AECLockContext* getLockContext() override;
    FLOAT getMinFPS() override;
    FLOAT getMaxFPS() override;
    AECAlgoLEDModeType getLEDMode() override;
    UINT32 getFlashMeasIndex() override;
    AECAlgoFlashMeasKindType getFlashMeasKind() override;
    const AECAlgoWhiteBalanceState* getAWBState() override;
    const AECAlgoOverrideSettingParam* getOverrideSetting() override;
    BOOL getLEDCalibrationEnable() override;
    BOOL getDebugDataEnable() override;
    AECDebugData* getDebugData() override;
    INT32 getFlashMaxCurrent() override;
    const IRTuningDataType* getIRTuning() override;
    const ConvergenceTuningDataType* getConvTuning() override;
    const MeteringTuningDataType* getMtrTuning() override;
    const ArbitrationTuningDataType* getArbTuning() override;
    const ExtensionTuningDataType* getExtTuning() override;
    const ModArbitrationContext* getExposureLimitation() override;
    const AECFrameHistory* getFrameHistory(UINT8 offset) override;
    BOOL getPrevModeHistory(AECModeHistory* pModeHistory) override;
    const TouchROIProcInfo* getTouchROI() override;
    const FaceROIProcInfo* getFaceROI() override;
    FLOAT getCurrentFPS() override;
    BOOL getAreFlashLowStatsSaved() override;
    const AECAlgoSensorInfo* getSensorInfo() override;
    const AECAlgoDiagConfig* getDiagTestConfig() override;
    const StatsGyroInfo* getGyroInfo() override;
    BOOL getDRCEnable() override;
    FLOAT getCompensationRatio() override;
    BOOL getHDR3Enable() override;
    FLOAT getRealDRCGainHDR3() override;
    const AECAlgoStartupIndices* getStartUpExpIndex() override;
    UINT8 getPipelineDelay() override;
    AECAlgoMultiCamMeteringType getMeteringType() override;
    AECAlgoMultiCamExposureType getExposureType() override;
    const StatsCameraInfo* getCameraInfo() override;
    const AECMultiCamInfo* getPeerInfo() override;
    AECMultiCamInfo* getMyOwnInfo() override;
    const StatsBayerGridBayerExposureConfig* getBGBEConfig() override;
    const StatsBayerHistogramConfig* getBayerHistConfig() override;
    FLOAT getDynamicConvergenceSpeed() override;
    UINT32 getFlashMeasSwitchCounter() override;
    AECDualcamCalibrationInfo getDCCalibrationInfo() override;
    AECAlgoHDRType getMultiExposureSensorMode() override;
    const AECDCGConfig* getDCGMode() override;
    UINT32 getConvFrameSkipCounter() override;
    INT32 getPostRawGain() override;
    UINT32 getPostRawCounter() override;
    const AECCustomMeteringTable& getCustomMeteringTable() override;
    const AECCustomExposureTableInfo* getCustomExposureTableInfo() override;
    aecArbitration::ExposureTableType* getExposureTableFromTableID(
        aecglobalelements::ExposureTableIDType tableID) override;
    AECIRLedState getIRState() override;
    FLOAT getManualIRIntensity() override;
    UINT32 getIRCutSystemLatency() override;
    UINT32 getIRLedSystemLatency() override;
    FLOAT getPWMFrequency() override;
    AECWeightingTable* getWeightTable() override;

    // ---- IMeteringCallback ----

    VOID SetAreFlashLowStatsSaved(BOOL areSaved) override;
    VOID SetEVCapability(INT8 minEV, INT8 maxEV, INT8 stepsPerEV) override;
    VOID SetRealDRCGain(FLOAT realDRCGain) override;

    // ---- IConvergenceCallback ----

    VOID SetConvFrameSkipCounter(UINT32 counter) override;

    // ---- IArbitrationCallback ----

    VOID setSensitivity(FLOAT sensitivity) override;
    VOID SetStreamingLimitation(ExposureLimitationType* pLimitation) override;
    VOID SetSHDRStreamingLimitation(ExposureLimitationType* pLimitations) override;
    VOID SetCurentFPS(FLOAT FPS) override;
    VOID SetExpTableIdxOffsets(FLOAT* pStreamOffsets, FLOAT* pStillOffsets) override;
    VOID SetStreamingMinExpIndexForATB(FLOAT minExpIndex) override;

    // ---- IIrisCtrlCallback ----

    VOID IrisCtrlCallbackPlaceholder(BOOL placeholder) override;

    // ---- IExtensionCallback ----

    VOID SetFlashMeasurementIndex(INT32 index) override;
    VOID SetMaxFlashCurrent(UINT32 maxCurrent) override;

private:
    // Unit tests set state that no set parameter reaches in this configuration (metering and exposure kinds).
    friend class CAECCoreTestPeer;

    // Keeps what a streaming-type mode leaves behind, then forgets the mode's start configuration and history.
    VOID saveAndClearCurrentModeInfo();
    VOID initializeHistoryInfo();
    VOID clearROIInfo();
    // Statistics configuration from the statistics tuning, or the defaults without it.
    VOID InitStatsConfig();
    VOID InitStatsConfigDefaults();
    // FALSE when the tuning cannot be used (bit depth beyond 31, no histogram entry); the caller takes the defaults.
    BOOL InitStatsConfigFromTuning(const aecStatsConfig::AECStatsConfig& rTuning);
    // Maps the tuned metering and exposure kinds of the camera's role; FALSE without that tuning.
    BOOL MapTuningToMtrExpConfig(const StatsCameraInfo& cameraInfo);
    // Without own dual-camera calibration, takes the peer's from this camera's side.
    VOID setDCCalibrationUsingPeerInfo();
    // Arms the flash measurement frame counter on entering the flash measurement mode.
    VOID armFlashMeasSwitchCounter();
    // The metering view of the tuning in force; null without tuning.
    const MeteringTuningDataType* meteringTuning() const;
    // The face regions' ranking from the tuning's ROI priority, or plain size ranking when it is off.
    VOID applyROIPriorityTuning();
    // Index offset of the EV compensation in force, from the metering tuning's EV compensation table; 0 without it.
    FLOAT getStartEVOffset() const;
    // Seconds a change of face presence must last before the face state follows it.
    FLOAT getFaceHoldTime() const;
    // Publishes the face state and the faces in use in the debug data.
    VOID publishFaceDebugData();
    BOOL      isExposureTableChanged(const AECCustomExposureTable& customExposureTable) const;
    AecResult ValidateExposureTable(const AECCustomExposureTable& customExposureTable) const;
    // Takes the host's knees into the custom table, deriving each knee's index from the exposure products.
    AecResult CopyExposureTable(const AECCustomExposureTable& customExposureTable);
    // Moves the indices of one history record from the table sensitivity it was taken with to the current one.
    VOID AECUtilUpdateFrameTableSI(AECFrameHistory& rHistory);
    // The same for the start configuration and every history entry, when a start configuration is saved.
    VOID updateHistoryTableSI();
    // Re-derives the indices of the previous mode's last frame in the exposure tables now in force.
    VOID rederivePrevModeIndices(IAECArbitration* pArbitration);

    std::list<IAECComponent*>   m_componentList;
    CTuningDataAdapter          m_tuningManager;
    // The adapter's views; null until the first tuning, then the same address for the store's lifetime.
    CoreModuleTuningData*       m_pCoreTuningData;
    AECTuningMode               currentTuningMode[AECTuningModeCount];
    AECAlgoOperationModeType    m_opMode;
    AECAlgoMeteringModeType     m_mtrMode;
    EVContext                   m_contextEV;
    StatisticsAntibanding       m_flickerComp;
    AECAlgoManualSetting        m_manualSetting;
    FLOAT                       m_minFPS;
    FLOAT                       m_maxFPS;
    AECAlgoLEDModeType          m_LEDMode;
    AECAlgoFlashMeasKindType    m_flashMeasState;
    UINT32                      m_flashMeasIndex;
    AECAlgoWhiteBalanceState    m_AWBState;
    AECAlgoOverrideSettingParam m_OverrideSetting;
    BOOL                        m_LEDCalibrationEnable;
    BOOL                        m_debugDataEnable;
    INT32                       m_flashMaxCurrent;
    ModArbitrationContext       m_arbitrationContext;
    AECAlgoDiagConfig           m_diagConfig;
    StatsGyroInfo               m_gyroInfo;
    AECAlgoStartupIndices       m_startUpExpIndice;
    UINT32                      m_flashMeasSwitchCounter;
    UINT32                      m_convFrameSkipCounter;
    UINT32                      m_postRawCounter;
    AECAlgoMultiCamMeteringType m_meteringType;
    AECAlgoMultiCamExposureType m_exposureType;
    const AECMultiCamInfo*      m_pPeerInfo;
    AECMultiCamInfo             m_myOwnInfo;
    AECMultiCamInfo             m_peerInfoSnapshot; // the peer's record as of the last getPeerInfo()
    StatsCameraInfo             m_cameraInfo;
    TouchROIProcInfo            m_touchROIs;
    FaceROIProcInfo             m_faceROIs;
    BOOL                        m_areFlashLowStatsSaved;
    AECAlgoSensorInfo           m_sensorInfo;
    AECCurrentModeInfo          m_curModeInfo;
    AECModeHistory              m_prevMode;
    UINT8                       m_systemLatency;
    // Later stage: the debug data writer (m_pDebugDataWriter) comes with the debug data format.
    AECDebugData                m_debugData;
    AECLockContext              m_lockContext;
    AECDualcamCalibrationInfo   m_dualcamCalibrationInfo;
    AECAlgoHDRType              m_MultiExpSensorMode;
    AECDCGConfig                m_dcgMode;
    // The application's exposure table; its knee array (expKneeEntries, expKneeEntriesID allocated) is owned here.
    AECCustomExposureTableInfo  m_customExposureTableInfo;
    HDR3ExposureType            m_HDR3Type;
    FLOAT                       m_DRCGainHDR3;
    StatsRectangle              m_cropWindow;
    StatsBayerGridBayerExposureConfig m_BGBEConfig;
    StatsBayerHistogramConfig   m_BayerHistConfig;
    FLOAT                       m_dynamicConvergenceSpeed;
    AECCustomMeteringTable      m_CustomMeteringTable;
    UINT32                      m_BGBESatThresholds[4];
    INT32                       m_postRawGain;
    BOOL                        m_disableADRC;
    FLOAT                       m_realDRCGain;
    BOOL                        m_enableInSensorHDRSnapshot;
    BOOL                        m_isMultiExpSensorMode;
    AECIRLedState               m_IRLedState;
    FLOAT                       m_ManualIRIntensity;
    UINT32                      m_IRCutSystemLatency;
    UINT32                      m_IRLedSystemLatency;
    FLOAT                       m_PWMFrequency;
    FLOAT                       m_compensationRatio;
    AECWeightingTable           m_weightTable;
};

#endif // AEC_CORE_BASE_CAECCOREDATAMANAGER_H
