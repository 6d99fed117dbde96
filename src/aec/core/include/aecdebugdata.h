// Debug data records of the core, packed exactly as they are written into the host's debug buffer.
#ifndef AEC_CORE_INCLUDE_AECDEBUGDATA_H
#define AEC_CORE_INCLUDE_AECDEBUGDATA_H

#include <cstddef>

#include "aecore/aecore_types.h"

// Sizes of the fixed arrays of the debug records.
constexpr UINT32 AECDebugDataMaxHistoryEntries  = 10;
constexpr UINT32 AECDebugDataMaxFaceROIs        = 10;
constexpr UINT32 AECDebugDataMaxLEDCalibEntries = 4;
constexpr UINT32 AECDebugDataMaxBGRegions       = 3072;
constexpr UINT32 AECDebugDataMaxYRegions        = 256;
constexpr UINT32 AECDebugDataMaxHistBins        = 1024;
constexpr UINT32 AECDebugDataMaxHistChannels    = 4;
constexpr UINT32 AECDebugDataMaxBHistLUTEntries = 4097;
constexpr UINT32 AECDebugDataMaxBHistChannels   = 3;
constexpr UINT32 AECDebugDataMaxBHistGroups     = 4096;

// The records mirror the wire format byte for byte: no padding anywhere, BOOL-like flags take one byte.
#pragma pack(push, 1)

struct AECDebugDataROIDim
{
    FLOAT left;
    FLOAT top;
    FLOAT width;
    FLOAT height;
    FLOAT weight;
};

struct AECDebugDataConfigurationType
{
    UINT8              operationMode;
    UINT8              manualAECMode;
    UINT32             manualISOvalue;
    UINT64             manualExpTime;
    UINT8              flickerCompMode;
    FLOAT              EV;
    FLOAT              FPSMin;
    FLOAT              FPSMax;
    UINT8              meteringMode;
    UINT8              LEDMode;
    UINT8              bIsAECLockEnabled;
    UINT8              bIsADRCDisableOverride;
    UINT8              bIsAutoWB;
    FLOAT              WBGains[3];
    FLOAT              gyroX;
    FLOAT              gyroY;
    FLOAT              gyroZ;
    FLOAT              fNumber;
    FLOAT              sensorAspectRatio;
    FLOAT              minSensorStreamGain;
    FLOAT              maxSensorStreamGain;
    UINT64             minSensorStreamExpTime;
    UINT64             maxSensorStreamExpTime;
    FLOAT              minSensorStillGain;
    FLOAT              maxSensorStillGain;
    UINT64             minSensorStillExpTime;
    UINT64             maxSensorStillExpTime;
    FLOAT              minStreamingGain;
    FLOAT              maxStreamingGain;
    UINT64             minStreamingExpTime;
    UINT64             maxStreamingExpTime;
    UINT8              bIsTouchActive;
    AECDebugDataROIDim touchROIs;
    UINT8              bIsFaceActive;
    FLOAT              faceHintDuration;
    FLOAT              faceStatusDuration;
    UINT8              validFaceROICount;
    AECDebugDataROIDim faceROIs[AECDebugDataMaxFaceROIs];
};

struct AECDebugDataFrameHistoryType
{
    UINT32 frameID;
    UINT8  bIsStartConfig;
    FLOAT  expIndices[3];
    FLOAT  expIndicesAdjustments[3];
    FLOAT  expIndicesTargets[3];
    FLOAT  gain[3];
    UINT64 expTime[3];
    FLOAT  finalLuma;
    FLOAT  luxIndex;
    UINT8  bIsAECSettled;
};

struct AECDebugDataModeHistoryType
{
    UINT8                        bIsValid;
    AECDebugDataFrameHistoryType startConfig;
    AECDebugDataFrameHistoryType lastFrame;
};

struct AECDebugDataMeteringType
{
    FLOAT  luxIndex;
    FLOAT  averageLuma;
    FLOAT  frameLuma;
    FLOAT  touchLuma;
    FLOAT  faceLuma;
    FLOAT  faceLumaMin;
    FLOAT  faceLumaMax;
    FLOAT  faceWeight;
    FLOAT  finalLuma;
    FLOAT  luxBasedSafeTarget;
    FLOAT  clrBasedSafeTarget;
    FLOAT  histBasedTargets[3];
    FLOAT  finalTargets[3];
    UINT16 BGStatsSatThres[4];
};

struct AECDebugDataConvergenceType
{
    FLOAT currentFPS;
    FLOAT expIndexMin;
    FLOAT expIndexMax;
    FLOAT expIndexTarget[3];
    FLOAT ratioBright;
    FLOAT ratioDark;
    UINT8 bIsTouchActive;
    UINT8 convAlgoIdentity;
    UINT8 frameSkip;
    FLOAT speedFinal;
    UINT8 bIsCameraLaunch;
    UINT8 bIsAECSettled;
    UINT8 bIsBrightnessSettled;
    UINT8 bIsSettled[3];
    FLOAT expIndexOutput[3];
    FLOAT expIndexAdjust[3];
};

struct AECDebugDataArbitrationType
{
    UINT32 frameID;
    FLOAT  sceneBV;
    FLOAT  sceneAV;
    FLOAT  sceneSV;
    FLOAT  sceneTV;
    UINT8  exposureInstance;
    UINT8  exposureTableID;
    FLOAT  exposureGain[3];
    UINT64 exposureTime[3];
    FLOAT  ISOValue;
};

struct AECDebugDataExtensionType
{
    UINT32 touchEVState;
    FLOAT  touchEVLumaCurr;
    FLOAT  touchEVLumaPrev;
    FLOAT  touchEVTmpAvgLuma;
    UINT32 zone;
    FLOAT  YHistClamp;
    FLOAT  YHistScaling;
    FLOAT  ratio;
    FLOAT  darkBinThres;
    FLOAT  satBinThres;
    FLOAT  darkTargetLvL;
    FLOAT  satTargetLvL;
    FLOAT  satScalingMax;
    FLOAT  darkClampingMax;
    UINT32 darkBinCount;
    UINT32 satBinCount;
    UINT8  bIsFlashNeeded;
    UINT8  bIsFDFlashDelayNeeded;
    UINT8  bIsLEDAFNeeded;
    UINT8  bIsLLSNeeded;
    UINT64 LLSExpTime;
    FLOAT  darkLumaLevel;
    FLOAT  satLumaLevel;
};

struct AECDebugDataStatsLumaRegionType
{
    UINT8  bBrightRgnEnable;
    UINT16 brightRgnCount;
    FLOAT  brightRgnWeight;
    FLOAT  brightRgnThres[2];
    UINT8  bDarkRgnEnable;
    UINT16 darkRgnCount;
    FLOAT  darkRgnWeight;
    FLOAT  darkRgnThres[2];
};

struct AECDebugDataExtremeColorType
{
    UINT8 bEnable;
    FLOAT extrmPct[3];
    FLOAT targetAdj[3];
    FLOAT targetAdjFinal;
};

struct AECDebugDataHistogramType
{
    UINT8 bHistTargetEnable;
    UINT8 bADRCEnable;
    FLOAT refLuma;
    FLOAT refTarget;
    FLOAT numOfChannels;
    FLOAT satPushUpMeans[4];
    FLOAT satPushDownMeans[4];
    FLOAT darkMeans[4];
    FLOAT satRefs[2];
    FLOAT darkRefs[2];
    FLOAT safeTargetAdjustRatios[2];
    FLOAT maxDRCGain;
    FLOAT adjustedTargets[3];
    FLOAT brightLow;
    FLOAT brightHigh;
    FLOAT darkLow;
    FLOAT darkHigh;
};

struct AECDebugDataLEDSetting
{
    FLOAT  flux;
    FLOAT  LEDRGRatio;
    FLOAT  LEDBGRatio;
    UINT32 LED1Setting;
    UINT32 LED2Setting;
};

struct AECDebugDataLEDTableType
{
    AECDebugDataLEDSetting preFlashSetting;
    AECDebugDataLEDSetting mainFlashSetting;
    AECDebugDataLEDSetting flashCalib[AECDebugDataMaxLEDCalibEntries];
    INT32                  maxSupportedCurrent;
    FLOAT                  preFlashLEDOffRGain;
    FLOAT                  preFlashLEDOffGGain;
    FLOAT                  preFlashLEDOffBGain;
    FLOAT                  mainFlashLEDOffRGain;
    FLOAT                  mainFlashLEDOffGGain;
    FLOAT                  mainFlashLEDOffBGain;
    FLOAT                  preFlashLEDSlope;
    FLOAT                  mainFlashLEDSlope;
    FLOAT                  preFlashFirstEntryRatio;
    FLOAT                  mainFlashFirstEntryRatio;
    FLOAT                  flashFluxLow;
    FLOAT                  flashFluxHigh;
};

struct AECDebugDataFlashType
{
    AECDebugDataFrameHistoryType frameHistoryOff;
    AECDebugDataFrameHistoryType frameHistoryLow;
    FLOAT                        averageLumaOff;
    FLOAT                        averageLumaLow;
    UINT8                        YFlashOff[256];
    UINT8                        YFlashLow[256];
    FLOAT                        preflashToStreamingOffset;
    FLOAT                        mainToPreFluxRatio;
    FLOAT                        simpleLumaOff;
    FLOAT                        simpleLumaLow;
    FLOAT                        simpleExtrapolatedLumaHigh;
    FLOAT                        simpleFlashInfluence;
    FLOAT                        simpleLumaTarget;
    FLOAT                        smartLumaOff;
    FLOAT                        smartLumaLow;
    FLOAT                        smartExtrapolatedLumaHigh;
    FLOAT                        smartFlashInfluence;
    FLOAT                        smartLumaTarget;
    FLOAT                        flashSmartBiasTable[256];
    FLOAT                        FDLumaOff;
    FLOAT                        FDLumaLow;
    FLOAT                        FDExtrapolatedLumaHigh;
    FLOAT                        FDFlashInfluence;
    FLOAT                        FDLumaTarget;
    UINT8                        faceROICount;
    FLOAT                        maxFaceSize;
    FLOAT                        aggLumaOff;
    FLOAT                        aggLumaLow;
    FLOAT                        aggExtrapolatedLumaHigh;
    FLOAT                        aggFlashInfluence;
    FLOAT                        aggLumaTarget;
    FLOAT                        highlightDiscrepancyRatio;
    FLOAT                        lumaOfFinalLuma;
    FLOAT                        expIndexTargetOff[3];
    FLOAT                        lumaTarget[3];
    FLOAT                        flashLuxIndex;
};

struct AECDebugDataBayerHistogramChannel
{
    INT32  colorChannel;
    UINT32 histogram[AECDebugDataMaxHistBins];
};

struct AECDebugDataBayerHistogramType
{
    UINT32                            numChannelsUsed;
    UINT32                            numBinsUsed;
    UINT32                            totalNumBins;
    AECDebugDataBayerHistogramChannel channels[AECDebugDataMaxHistChannels];
    UINT8                             startupMode;
};

struct AECDebugDataBayerChannelInfoType
{
    UINT32 RSum;
    UINT32 BSum;
    union
    {
        UINT32 GRSum;
        UINT32 GSum;
    };
    union
    {
        UINT32 GBSum;
        UINT32 YSum;
    };
    UINT16 RCount;
    UINT16 BCount;
    union
    {
        UINT16 GRCount;
        UINT16 GCount;
    };
    union
    {
        UINT16 GBCount;
        UINT16 YCount;
    };
    UINT32 saturatedRSum;
    UINT32 saturatedBSum;
    UINT32 saturatedGRSum;
    UINT32 saturatedGBSum;
    UINT16 saturatedRCount;
    UINT16 saturatedBCount;
    UINT16 saturatedGRCount;
    UINT16 saturatedGBCount;
};

struct AECDebugDataStatsRectangle
{
    UINT32 left;
    UINT32 top;
    UINT32 width;
    UINT32 height;
};

struct AECDebugDataStatsBayerType
{
    UINT32 horizontalRegionCount;
    UINT32 verticalRegionCount;
    UINT32 totalRegionCount;
    UINT32 regionWidth;
    UINT32 regionHeight;
    UINT16 bitDepth;
    union
    {
        UINT32 usesY;
        UINT32 hasSatInfo;
        UINT32 reserved;
    } flags;
    UINT32                           satThreshold[4];
    UINT32                           numValidRegions;
    AECDebugDataBayerChannelInfoType channelData[AECDebugDataMaxBGRegions];
    AECDebugDataStatsRectangle       statsROI;
    UINT8                            startupMode;
};

struct AECDebugDataBGProcInfo
{
    UINT32 useCase;
    UINT8  numOfChannels;
};

struct AECDebugDataParsedBGRegionType
{
    FLOAT xPos;
    FLOAT yPos;
    FLOAT rgnLuma;
    FLOAT rgnSatRatio;
    FLOAT RGRatio;
    FLOAT BGRatio;
};

struct AECDebugDataParsedLegacyYRegionType
{
    FLOAT Yval;
    FLOAT Ysat;
};

struct AECDebugDataBGProcResult
{
    AECDebugDataBGProcInfo              procInfo;
    UINT32                              numHorizontalRegions;
    UINT32                              numVerticalRegions;
    UINT32                              numTotalRegions;
    UINT32                              numBrightRegions;
    UINT32                              numDarkRegions;
    UINT32                              numNormalRegions;
    UINT32                              numProcessedRegions;
    UINT8                               SWSubsmplFactor;
    UINT8                               BGRegionsCalculated[AECDebugDataMaxBGRegions];
    AECDebugDataParsedBGRegionType      BGRegions[AECDebugDataMaxBGRegions];
    AECDebugDataParsedLegacyYRegionType YRegions[AECDebugDataMaxYRegions];
};

struct AECDebugDataBHistProcInfo
{
    UINT32 useCase;
    UINT8  numOfChannels;
    UINT32 ID;
    UINT32 maxHistPixelValue;
    FLOAT  valueScaler;
};

struct AECDebugDataBHistProcResult
{
    AECDebugDataBHistProcInfo procInfo;
    UINT16                    numOfBins;
    UINT16                    groupedNumOfBins;
    UINT16                    binLUTs[AECDebugDataMaxBHistLUTEntries];
    FLOAT                     valLUTs[AECDebugDataMaxBHistLUTEntries];
    UINT64                    groupedHist[AECDebugDataMaxBHistChannels][AECDebugDataMaxBHistGroups];
    FLOAT                     histCDF[AECDebugDataMaxBHistChannels][AECDebugDataMaxBHistGroups];
    FLOAT                     weightedCDF[AECDebugDataMaxBHistChannels][AECDebugDataMaxBHistGroups];
    FLOAT                     weightedCDFWB[AECDebugDataMaxBHistChannels][AECDebugDataMaxBHistGroups];
    UINT8                     isUniform;
};

// Everything the core publishes per frame; the modules fill their parts in their debug data event.
struct AECDebugData
{
    AECDebugDataConfigurationType   configInfo;
    AECDebugDataFrameHistoryType    frameHistoryInfo[AECDebugDataMaxHistoryEntries];
    AECDebugDataModeHistoryType     lastModeInfo;
    AECDebugDataMeteringType        meteringInfo;
    AECDebugDataConvergenceType     convergenceInfo;
    AECDebugDataArbitrationType     arbitrationInfo;
    AECDebugDataExtensionType       extensionInfo;
    AECDebugDataStatsLumaRegionType regionInfo;
    AECDebugDataExtremeColorType    extremeColorInfo;
    AECDebugDataHistogramType       histogramInfo;
    AECDebugDataLEDTableType        LEDTableInfo;
    AECDebugDataFlashType           flashInfo;
    AECDebugDataBGProcResult        BGProcResult;
    AECDebugDataBHistProcResult     BHistResult;
    AECDebugDataStatsBayerType      bayerExposureStats;
    AECDebugDataBayerHistogramType  BHistogram;
};

#pragma pack(pop)

// The debug data reader depends on these exact sizes and offsets.
static_assert(sizeof(AECDebugDataROIDim) == 20, "AECDebugDataROIDim size");
static_assert(sizeof(AECDebugDataConfigurationType) == 367, "AECDebugDataConfigurationType size");
static_assert(offsetof(AECDebugDataConfigurationType, touchROIs) == 137, "touchROIs offset");
static_assert(offsetof(AECDebugDataConfigurationType, faceROIs) == 167, "faceROIs offset");
static_assert(sizeof(AECDebugDataFrameHistoryType) == 86, "AECDebugDataFrameHistoryType size");
static_assert(offsetof(AECDebugDataFrameHistoryType, expTime) == 53, "expTime offset");
static_assert(sizeof(AECDebugDataModeHistoryType) == 173, "AECDebugDataModeHistoryType size");
static_assert(sizeof(AECDebugDataMeteringType) == 76, "AECDebugDataMeteringType size");
static_assert(sizeof(AECDebugDataConvergenceType) == 69, "AECDebugDataConvergenceType size");
static_assert(offsetof(AECDebugDataConvergenceType, speedFinal) == 35, "speedFinal offset");
static_assert(sizeof(AECDebugDataArbitrationType) == 62, "AECDebugDataArbitrationType size");
static_assert(sizeof(AECDebugDataExtensionType) == 84, "AECDebugDataExtensionType size");
static_assert(offsetof(AECDebugDataExtensionType, LLSExpTime) == 68, "LLSExpTime offset");
static_assert(sizeof(AECDebugDataStatsLumaRegionType) == 30, "AECDebugDataStatsLumaRegionType size");
static_assert(sizeof(AECDebugDataExtremeColorType) == 29, "AECDebugDataExtremeColorType size");
static_assert(sizeof(AECDebugDataHistogramType) == 118, "AECDebugDataHistogramType size");
static_assert(sizeof(AECDebugDataLEDSetting) == 20, "AECDebugDataLEDSetting size");
static_assert(sizeof(AECDebugDataLEDTableType) == 172, "AECDebugDataLEDTableType size");
static_assert(sizeof(AECDebugDataFlashType) == 1845, "AECDebugDataFlashType size");
static_assert(offsetof(AECDebugDataFlashType, faceROICount) == 1784, "faceROICount offset");
static_assert(sizeof(AECDebugDataBayerHistogramChannel) == 4100, "AECDebugDataBayerHistogramChannel size");
static_assert(sizeof(AECDebugDataBayerHistogramType) == 16413, "AECDebugDataBayerHistogramType size");
static_assert(sizeof(AECDebugDataBayerChannelInfoType) == 48, "AECDebugDataBayerChannelInfoType size");
static_assert(sizeof(AECDebugDataStatsRectangle) == 16, "AECDebugDataStatsRectangle size");
static_assert(sizeof(AECDebugDataStatsBayerType) == 147519, "AECDebugDataStatsBayerType size");
static_assert(offsetof(AECDebugDataStatsBayerType, statsROI) == 147502, "statsROI offset");
static_assert(sizeof(AECDebugDataBGProcInfo) == 5, "AECDebugDataBGProcInfo size");
static_assert(sizeof(AECDebugDataParsedBGRegionType) == 24, "AECDebugDataParsedBGRegionType size");
static_assert(sizeof(AECDebugDataParsedLegacyYRegionType) == 8, "AECDebugDataParsedLegacyYRegionType size");
static_assert(sizeof(AECDebugDataBGProcResult) == 78882, "AECDebugDataBGProcResult size");
static_assert(offsetof(AECDebugDataBGProcResult, YRegions) == 76834, "YRegions offset");
static_assert(sizeof(AECDebugDataBHistProcInfo) == 17, "AECDebugDataBHistProcInfo size");
static_assert(sizeof(AECDebugDataBHistProcResult) == 270364, "AECDebugDataBHistProcResult size");
static_assert(offsetof(AECDebugDataBHistProcResult, groupedHist) == 24603, "groupedHist offset");
static_assert(offsetof(AECDebugDataBHistProcResult, weightedCDFWB) == 221211, "weightedCDFWB offset");
static_assert(sizeof(AECDebugData) == 517063, "AECDebugData size");
static_assert(offsetof(AECDebugData, frameHistoryInfo) == 367, "frameHistoryInfo offset");
static_assert(offsetof(AECDebugData, flashInfo) == 2040, "flashInfo offset");
static_assert(offsetof(AECDebugData, BGProcResult) == 3885, "BGProcResult offset");
static_assert(offsetof(AECDebugData, BHistResult) == 82767, "BHistResult offset");
static_assert(offsetof(AECDebugData, bayerExposureStats) == 353131, "bayerExposureStats offset");
static_assert(offsetof(AECDebugData, BHistogram) == 500650, "BHistogram offset");

#endif // AEC_CORE_INCLUDE_AECDEBUGDATA_H
