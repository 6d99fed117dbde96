// Records of the per-frame pipeline: what the core takes in for one statistics frame and what it gives back.
#ifndef AEC_CORE_INCLUDE_AECCORECOMMON_H
#define AEC_CORE_INCLUDE_AECCORECOMMON_H

#include "aecore/aecore.h"

// Result of module operations, change events and data manager setters.
enum AecResult
{
    AecSuccess = 0,
    AecError   = 1,
};

// How convergence is to decide the settle flags of a frame.
enum AECAlgoSettleFlagType
{
    AECAlgoSettleForceSet,
    AECAlgoSettleForceReset,
    AECAlgoSettleUsePrevious,
    AECAlgoSettleCompute,
};

struct MinMaxRangeFloat
{
    FLOAT min;
    FLOAT max;
};

struct MinMaxRangeUINT64
{
    UINT64 min;
    UINT64 max;
};

// All statistics of one frame, by value; the data pointers inside stay the host's.
struct AECStatistics
{
    StatsBayerGrid     bayerGrid;
    StatsBayerGrid     bayerGridLEF;
    StatsBayerGrid     bayerGridMEF;
    StatsBayerHist     bayerHist;
    StatsBayerHist     bayerHistLEF;
    StatsIHist         IHist;
    StatsBayerHist     hdrBayerHist;
    StatsBayerHist     hdrBayerHistLEF;
    StatsBayerHist     hdrBayerHistMEF;
    StatsBayerHist     nonUniformBayerHist;
    StatsRectangle     bayerGridROI;
    HDR3ExposureStats  hdr3Stats;
};

// IR cut and ambient light input of one frame.
struct IRPerFrameInputParams
{
    BOOL   IRCutStatus;
    FLOAT  ALSValue;
    UINT32 sampleCount;
};

// One-time lens configuration handed to the host; each pointer is valid only with its flag set.
struct IrisOneTimeInputParams
{
    bool                   motorSysConfig_is_available;
    LDMMotorSystemConfig*  pMotorSysConfig;
    bool                   irisTable_is_available;
    LDMIrisTableData**     ppIrisTable;
    bool                   motorPowerLevel_is_available;
    LDMLensPowerLevelData* pMotorPowerLevel;
    bool                   lensCap_is_available;
    LDMLensCap*            pLensCap;
};

// Motor status of the lens for one frame.
struct IrisPerFrameInputParams
{
    UINT32*            pIRCutStatus;
    LDMMotorStatusInfo zoomMotorStatus;
    LDMMotorStatusInfo pirisMotorStatus;
};

// Which motor commands of IrisPerFrameOutputParams are to be queued.
struct MotorSetFlag
{
    bool motorIRCut_is_available;
    bool motorMoveAbs_is_available;
    bool motorMoveRel_is_available;
    bool motorCtrl_is_available;
};

// Motor commands decided for one frame.
struct IrisPerFrameOutputParams
{
    MotorSetFlag             motorSetFlag;
    UINT32                   motorIRCutData;
    LDMMotorMoveRelativeData motorMoveRelData;
    LDMMotorMoveAbsoluteData motorMoveAbsData;
    LDMMotorControlData      motorCtrlData;
};

// Exif values of one exposure decision.
struct AECExifInfo
{
    UINT32          ISOValue;
    AECAlgoAPEXData APEXValues;
};

// What the sensor, the LEDs and the statistics engine are to use next; also the answer of start and snapshot queries.
struct AECFrameControl
{
    AECAlgoFlashStateType             flashState;
    FLOAT                             LEDInfluenceRatio;
    UINT32                            LEDCurrents[2];
    FLOAT                             LEDRGRatio;
    FLOAT                             LEDBGRatio;
    AECAlgoExposureData               exposureSets[AECAlgoExposureCount];
    AECAlgoExposureData               RealexposureSets[AECAlgoExposureCount];
    FLOAT                             luxIndex;
    AECExifInfo                       exifInfo;
    AECYHistStretchData               stretchControl;
    FLOAT                             LEDFirstEntryRatio;
    FLOAT                             LEDLastEntryRatio;
    StatsBayerGridBayerExposureConfig statsBGBEConfig;
    StatsBayerHistogramConfig         statsBHISTConfig;
    FLOAT                             predictiveGain;
    FLOAT                             digitalGainForSimulation;
    BOOL                              isInsensorHDRSnapshot;
    FLOAT                             compenADRCGain;
    UINT32                            IRModeActivated;
    FLOAT                             IRLedIntensity;
    FLOAT                             compensationDarkBoostGain;
};

// Per-frame information for the host: settle state, luma, recommendations.
struct AECFrameInfo
{
    BOOL                brightnessSettled;
    BOOL                aecSettled;
    FLOAT               legacyYStats[256];
    FLOAT               asdExtremeGreenRatio;
    FLOAT               asdExtremeBlueRatio;
    AECAlgoSnapshotType snapshotIndicator;
    AECAlgoTouchEVType  touchEVIndicator;
    BOOL                LEDAFRequired;
    BOOL                LEDFDDelayRequired;
    SIZE_T              DebugDataSizeWritten;
    FLOAT               frameLuma;
    FLOAT               pixCntRatioLEF;
};

// Lens commands of one frame.
struct AECFrameLDMCmd
{
    IrisOneTimeInputParams   SetParamInfo;
    IrisPerFrameInputParams  SetQueryInfo;
    IrisPerFrameOutputParams SetInfo;
};

// Everything the core needs for one statistics frame; filled by the process input translator.
struct AECCoreInput
{
    UINT64                  frameID;
    AECStatistics           aecStats;
    StatsSHDRParams         shdrTuningParams;
    IRPerFrameInputParams   IRInputPerFrame;
    IrisPerFrameInputParams IrisInputPerFrame;
    BOOL                    prepareBeforePreflash;
    StatsDataPointer        debugData;
    BOOL                    bIsTorchAEC;
    StatsVendorTagList*     pVendorTagList;
};

// Everything the core produces for one statistics frame.
struct AECCoreOutput
{
    AECFrameControl frameSetting;
    AECFrameInfo    frameInfo;
    AECFrameLDMCmd  LDMcmd;
};

// Convergence timing measurement; times in milliseconds.
struct StatsConvergenceKPIType
{
    UINT32 startTime;
    UINT32 startTimeOfEachFrame;
    UINT32 endTime;
    UINT32 totalTime;
    UINT32 frameCount;
    BOOL   bStartInit;
    BOOL   bEndInit;
};

// Convergence timing of the core. The core resets it at construction: prevAECSettled TRUE, isAECSettled FALSE.
struct AECConvergenceKPIType
{
    StatsConvergenceKPIType kpi;
    BOOL                    prevAECSettled;
    BOOL                    isAECSettled;
};

#endif // AEC_CORE_INCLUDE_AECCORECOMMON_H
