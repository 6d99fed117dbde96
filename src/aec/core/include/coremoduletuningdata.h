// The core's tuning: per-module views into the tuning modules and the records parsed from the extension list.
#ifndef AEC_CORE_INCLUDE_COREMODULETUNINGDATA_H
#define AEC_CORE_INCLUDE_COREMODULETUNINGDATA_H

#include "aectuningrecords.h"

// The views point into the tuning modules, which the tuning store (or the fake tuning) owns; a view pointer is null
// when the store holds no module for it. The extension records are copies, rebuilt on every tuning change.

// Depth-assisted metering, extension "Depth AEC".
struct ParamExtDepthAEC
{
    BOOL  enable;
    FLOAT SelectMapValidGridCntThres;
    INT   InitValidFrameCntThres;
    FLOAT LumaDiffThres;
    FLOAT DecisionMapValidGridCntThres;
    INT   ConsecInvalidFrameCntThres;
    INT   DisplayDebugMsg;
};

// Saturation-driven scaling of the grid thresholds, extension "ADRCSat".
struct ParamExtADRCSatCtrl
{
    BOOL enableADRCSatCtrl;
    BOOL enablePredictiveSatCtrl;
};

// Limits of the histogram target's gains, extension "HistExt".
struct ParamExtHistogramCtrl
{
    BOOL  enableHist;
    FLOAT maxDarkBoostGain;
    FLOAT maxDRCGain;
    FLOAT maxADRCGainFace;
    INT   useLegacyTargets;
};

// In-sensor HDR snapshot, extension "InsensorHDRExt".
struct ParamExtInsensorHDRCtrl
{
    BOOL  enableInsensorHDR;
    FLOAT compenADRCGain;
    FLOAT DRCGainThresh;
    INT   modIr; // not part of the extension entry: stays 0
};

// Predictive convergence, extension "Predictive".
struct ParamExtPredictive
{
    BOOL  enable;
    BOOL  enableCombineDarkBright;
    FLOAT ADRCWeight;
};

// Low-light snapshot, extension "LLS".
struct ParamExtLLS
{
    BOOL enable;
    BOOL bLLSEnableADRC;
    BOOL bEnableLLSMaxSI;
};

// What the second key level of the gyro exposure control is.
enum GyroExpCtrlKeyLevel2ZoneType : INT32
{
    GyroExpCtrlKeyCurExpTimeType = 0,
    GyroExpCtrlKeyLuxIndexType   = 1,
};

// What the gyro exposure control's trigger data are.
enum GyroExpCtrlTriggerDataType : INT32
{
    GyroExpCtrlTriggerDataTargetExpTimeType = 0,
    GyroExpCtrlTriggerDataAdjRatioType      = 1,
};

// One trigger zone of the gyro exposure control.
struct ParamExtGyroExpCtrlTriggerZoneType
{
    FLOAT start;
    FLOAT end;
};

// Most trigger zones per key level of the gyro exposure control.
constexpr UINT32 GyroExpCtrlMaxTriggerZones = 8;

// Exposure time limits by camera motion, extension "GyroAEC".
struct ParamExtGyroExpCtrl
{
    BOOL                               enableGyroExpCtrl;
    INT                                movingAvgFilterLength;
    GyroExpCtrlKeyLevel2ZoneType       keyLevel2ZoneType;
    GyroExpCtrlTriggerDataType         triggerDataType;
    INT                                numOfKeyLevel1TriggerZone;
    INT                                numOfKeyLevel2TriggerZone;
    ParamExtGyroExpCtrlTriggerZoneType keyLevel1TriggerZone[GyroExpCtrlMaxTriggerZones];
    ParamExtGyroExpCtrlTriggerZoneType keyLevel2TriggerZone[GyroExpCtrlMaxTriggerZones];
    FLOAT                              triggerData[GyroExpCtrlMaxTriggerZones][GyroExpCtrlMaxTriggerZones];
};

// The IR control's view.
struct IRTuningDataType
{
    const aecIr::IRLinearType* pIrLinear;
    const aecIr::IRShdrType*   pIrShdr;
};

// The metering module's view.
struct MeteringTuningDataType
{
    const aecMetering::AECCoreMeteringType*      pCore;
    const aecFlash::FlashMeteringType*           pFlash;
    const aecTouch::TouchMeteringType*           pTouch;
    const aecFace::FaceMeteringType*             pFace;
    const aecSync::AECMeteringMixConfigType*     pMtrMixConfig;
    const aecDepth::AECDepthType*                pDepth;
    const aecParamExtension::ParamExtensionType* pAECParamExt;
    const aecSensorConfig::AECSensorHDRConfig*   pSensorHDR;
    ParamExtDepthAEC                             extDepthAEC;
    ParamExtADRCSatCtrl                          ADRCSaturation;
    ParamExtHistogramCtrl                        extHistogram;
    ParamExtInsensorHDRCtrl                      extInsensorHDR;
    const aecShdr::ShdrMeteringType*             pShdr;
    const aecIr::IRMeteringType*                 pIr;
};

// The convergence module's view; the face-assisted flash values are copies of the flash metering tuning.
struct ConvergenceTuningDataType
{
    const aecConvergence::AECCoreConvergenceType*                       pCore;
    const aecStartUp::StartUpConvergenceType*                           pStartUp;
    const aecFlash::FlashConvergenceType*                               pFlash;
    const aecTouch::TouchConvergenceType*                               pTouch;
    const aecFace::FaceConvergenceType*                                 pFace;
    BOOL                                                                enableFDFlash;
    INT32                                                               FDFlashFrameCount;
    aecFlash::FlashMeteringType::FDFlashStruct::dynamicFDDelayStruct dynamicFDDelay;
    const aecDepth::DepthConvergenceType*                               pDepth;
    const aecSensorConfig::AECSensorHDRConfig*                          pSensorHDR;
    ParamExtPredictive                                                  extPredictive;
};

// The arbitration module's view.
struct ArbitrationTuningDataType
{
    const aecArbitration::AECCoreArbitrationType*       pCore;
    const aecStartUp::StartUpArbitrationType*           pStartUp;
    const aecSnapshotCtrl::SnapshotCtrlArbitrationType* pSnapshotCtrl;
    const aecFlash::FlashArbitrationType*               pFlash;
    const aecSync::AECExposureSyncConfigType*           pExpSyncConfig;
    ParamExtGyroExpCtrl                                 extGyroExpCtrl;
    ParamExtLLS                                         paramExtLLS;
};

// The extension module's view, with the multi-camera configuration and the frame skip control.
struct ExtensionTuningDataType
{
    const aecExtension::AECCoreExtensionType*         pCore;
    const aecSnapshotCtrl::SnapshotCtrlExtensionType* pSnapshotCtrl;
    const aecFlash::FlashExtensionType*               pFlash;
    const aecSync::AECMeteringAndExpModeType*         pMtrAndExpModeConfig;
    const aecSync::AECSlaveLuxIndexSelectionType*     pSlaveLuxIdxSelection;
    const aecSkip::AECSkipCtrlType*                   pSkip;
};

// All tuning the core and its modules read.
struct CoreModuleTuningData
{
    IRTuningDataType                      IRTuningData;
    MeteringTuningDataType                mtrTuningData;
    ConvergenceTuningDataType             convTuningData;
    ArbitrationTuningDataType             arbTuningData;
    ExtensionTuningDataType               extTuningData;
    const aecFace::StatsROIProcessType*   pStatsROIProcess;
    const aecStatsConfig::AECStatsConfig* pStatsConfig;
};

#endif // AEC_CORE_INCLUDE_COREMODULETUNINGDATA_H
