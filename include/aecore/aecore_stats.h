/* Statistics, sensor and vendor-tag records that the host hands to the library and gets configured. */
#ifndef AECORE_AECORE_STATS_H
#define AECORE_AECORE_STATS_H

#include "aecore/aecore_enums.h"
#include "aecore/aecore_types.h"

AECORE_EXTERN_C_BEGIN

/* ---- Geometry and plain buffers ---- */

typedef struct StatsRectangle
{
    UINT32 left;
    UINT32 top;
    UINT32 width;
    UINT32 height;
} StatsRectangle;

typedef struct StatsDimension
{
    UINT32 width;
    UINT32 height;
} StatsDimension;

/* A host buffer and its capacity in bytes. */
typedef struct StatsDataPointer
{
    VOID*  pData;
    UINT32 dataSize;
} StatsDataPointer;

/* Host-defined layout: an inclusive range of a sensor quantity, in the quantity's own unit. */
typedef struct StatsRange
{
    INT64 min;
    INT64 max;
} StatsRange;

/* Per-exposure time limits of a staggered-HDR sensor, in nanoseconds. */
typedef struct StatsAECCapInfo
{
    INT64 minSEFExposureTime;
    INT64 maxSEFExposureTime;
    INT64 minMEFExposureTime;
    INT64 maxMEFExposureTime;
    INT64 minLEFExposureTime;
    INT64 maxLEFExposureTime;
} StatsAECCapInfo;

/* Sensor mode as the host reports it; converted into the core's exposure limits on set. */
typedef struct StatsSensorInfo
{
    UINT32          currentFPS;
    UINT32          maxFPS;
    UINT32          currentLinesPerFrame;
    UINT32          currentMaxLineCount;
    UINT32          currentMinLineCount;
    FLOAT           maxGain;
    FLOAT           minGain;
    UINT32          pixelClock;
    UINT32          pixelClockPerLine;
    UINT64          sensorCapabilities;
    UINT32          sensorResWidth;
    UINT32          sensorResHeight;
    UINT16          pixelSumFactor;
    FLOAT           fNumber;
    UINT32          sensorActiveResWidth;
    UINT32          sensorActiveResHeight;
    FLOAT           focalLength;
    UINT64          rollingShutterSkew;
    StatsRange      exposureTime;
    StatsRange      middleExposureTime;
    StatsRange      shortExposureTime;
    StatsAECCapInfo sensorAECCapstime;
} StatsSensorInfo;

/* Identity of a camera in a multi-camera setup. */
typedef struct StatsCameraInfo
{
    StatsAlgoRole algoRole;
    UINT32        cameraId;
} StatsCameraInfo;

/* ---- Bayer grid ---- */

/* Bit 0 usesY, bit 1 hasSatInfo, bit 2 onlyY of a grid's 32-bit flag word. */
typedef struct StatsBayerGridFlags
{
    UINT32 usesY      : 1;
    UINT32 hasSatInfo : 1;
    UINT32 onlyY      : 1;
    UINT32 reserved   : 29;
} StatsBayerGridFlags;

/* One grid region: sums and counts of the pixels under each channel's saturation threshold. */
typedef struct StatsBayerGridChannelInfo
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
} StatsBayerGridChannelInfo;

/* The name the grid parser uses for one region without saturation data. */
typedef StatsBayerGridChannelInfo StatsBayerGridChannelInfoS;

/* One grid region when hasSatInfo is set: the plain region followed by the saturated pixels' sums and counts. */
typedef struct StatsBayerGridChannelInfoS_Sat
{
    StatsBayerGridChannelInfoS base;
    UINT32                     saturatedRSum;
    UINT32                     saturatedBSum;
    UINT32                     saturatedGRSum;
    UINT32                     saturatedGBSum;
    UINT16                     saturatedRCount;
    UINT16                     saturatedBCount;
    UINT16                     saturatedGRCount;
    UINT16                     saturatedGBCount;
} StatsBayerGridChannelInfoS_Sat;

typedef struct StatsBayerGrid
{
    UINT16*                    pGridData[4];
    StatsColorChannelType      gridDataType[4];
    UINT32                     horizontalRegionCount;
    UINT32                     verticalRegionCount;
    UINT32                     totalRegionCount;
    UINT32                     regionWidth;
    UINT32                     regionHeight;
    UINT16                     bitDepth;
    StatsBayerGridFlags        flags;
    UINT32                     satThreshold[4];
    UINT32                     numValidRegions;
    StatisticsStartUp          startupMode;
    AECAlgoExposureType        exposureType;
    StatsBayerGridChannelInfo* m_pChannelData;
} StatsBayerGrid;

/* ---- Histograms ---- */

typedef struct StatsBayerHist
{
    UINT32                channelCount;
    const UINT32*         pHistData[4];
    StatsColorChannelType histDataType[4];
    UINT32                binCount;
    StatisticsStartUp     startupMode;
    BOOL                  uniform;
    AECAlgoExposureType   exposureType;
} StatsBayerHist;

typedef struct StatsIHist
{
    UINT16              arraySize;
    UINT32              numBins;
    UINT32              validChannelsMask;
    UINT16*             channelData[5];
    StatisticsStartUp   startupMode;
    AECAlgoExposureType exposureType;
} StatsIHist;

typedef struct StatsHDR3ExposureHistStats
{
    UINT32*                pHistData[4];
    StatsColorChannelType  histDataType[4];
    UINT32                 binCount;
    UINT32                 totalHistCount;
    UINT16                 histWeightUnit;
    MeasurementRegionType  measurementRegion;
    StatsRectangle         measurementRegionCoordinate;
    HDR3ExposureMergedType mergedType;
} StatsHDR3ExposureHistStats;

/* In-sensor three-exposure statistics; the split histogram stands first. */
typedef struct StatsHDR3ExposureDataType
{
    StatsHDR3ExposureHistStats splitBayerHist;
    UINT32                     splitHistchannelCount;
    StatsHDR3ExposureHistStats mergedBayerHist;
    UINT32                     mergedHistchannelCount;
    StatsBayerGrid             gridBayerStats;
    StatsHDR3ExposureHistStats ROIBayerHist;
} StatsHDR3ExposureDataType;

/* The member shares its name with its type, so the type is named through its tag. */
typedef struct HDR3ExposureStats
{
    const StatsHDR3ExposureDataType* pHDR3ExposureStats;
    enum HDR3ExposureType            HDR3ExposureType;
    StatisticsStartUp                startupMode;
} HDR3ExposureStats;

/* Interpolated staggered-HDR fusion and tone-mapping parameters. */
typedef struct StatsSHDRParams
{
    UINT32 fusionLUMAThres1exp0;
    UINT32 fusionLUMAThres2exp0;
    UINT32 fusionLUMAThres1exp1;
    UINT32 fusionLUMAThres2exp1;
    FLOAT  tmFactor;
    FLOAT  tmBoostStrength;
    FLOAT  tmPreGamma;
    FLOAT  tmMaxGain;
    FLOAT  tmMinGain;
    FLOAT  tmMaxTotalGain;
    FLOAT  swSHDRLTMCompTarget;
    FLOAT  swSHDRLTMMaxGain;
    FLOAT  swSHDRLTMInverseTonePerc;
    FLOAT  swSHDRGTMGamma[256];
    UINT32 swSHDRNumGammaRange;
    UINT32 swSHDRGammaEntries;
    UINT32 darkN1;
} StatsSHDRParams;

/* ---- Statistics configuration the library asks the pipeline to program ---- */

typedef struct StatsBayerGridBayerExposureConfig
{
    UINT32            horizontalRegionCount;
    UINT32            verticalRegionCount;
    StatsRectangle    ROI;
    UINT32            channelGainThreshold[4];
    UINT32            minChannelLumaThreshold[4];
    StatsROISelection ROISelection;
    UINT8             outputBitDepth;
    BOOL              enableYStatsComputation;
    FLOAT             YStatsWeights[3];
    BOOL              enableSaturationStats;
    BOOL              enableQuadSync;
    UINT8             HWStatsSkippingFactor;
} StatsBayerGridBayerExposureConfig;

typedef struct StatsBayerHistogramConfig
{
    ColorChannel      channel;
    BOOL              uniform;
    StatsRectangle    ROI;
    StatsROISelection ROISelection;
} StatsBayerHistogramConfig;

/* ---- Vendor tags ---- */

#define AECORE_MAX_VENDOR_TAGS 50

/* A vendor tag the host resolved for this frame. */
typedef struct StatsVendorTag
{
    UINT32 vendorTagId;
    VOID*  pData;
    UINT32 dataSize;
    UINT32 sizeOfWrittenData;
    INT32  appliedDelay;
} StatsVendorTag;

typedef struct StatsVendorTagList
{
    UINT32         vendorTagCount;
    StatsVendorTag vendorTag[AECORE_MAX_VENDOR_TAGS];
} StatsVendorTagList;

/* A vendor tag the library depends on, answered to the host's dependency query. */
typedef struct StatsVendorTagInfo
{
    UINT32                    vendorTagId;
    UINT32                    appliedDelay;
    StatsVendorTagPublishType publishType;
} StatsVendorTagInfo;

typedef struct StatsVendorTagInfoList
{
    UINT32             vendorTagCount;
    StatsVendorTagInfo vendorTag[AECORE_MAX_VENDOR_TAGS];
} StatsVendorTagInfoList;

#if defined(__LP64__)
/* Sizes that the process input list requires for each statistics entry. */
AECORE_STATIC_ASSERT(sizeof(StatsBayerGrid) == 112, "StatsBayerGrid must be 112 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsBayerHist) == 72, "StatsBayerHist must be 72 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsIHist) == 64, "StatsIHist must be 64 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsDataPointer) == 16, "StatsDataPointer must be 16 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsRectangle) == 16, "StatsRectangle must be 16 bytes");
AECORE_STATIC_ASSERT(sizeof(HDR3ExposureStats) == 16, "HDR3ExposureStats must be 16 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsSHDRParams) == 1088, "StatsSHDRParams must be 1088 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsBayerGridFlags) == 4, "the grid flags are one 32-bit word");
AECORE_STATIC_ASSERT(offsetof(StatsBayerGrid, flags) == 72, "grid flags follow bitDepth at a word boundary");
AECORE_STATIC_ASSERT(sizeof(StatsBayerGridChannelInfoS) == 24, "a plain grid region is 24 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsBayerGridChannelInfoS_Sat) == 48, "a grid region with saturation data is 48 bytes");
/* Sizes of the configuration outputs and of the camera-info set parameter. */
AECORE_STATIC_ASSERT(sizeof(StatsBayerGridBayerExposureConfig) == 92, "StatsBayerGridBayerExposureConfig must be 92 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsBayerHistogramConfig) == 28, "StatsBayerHistogramConfig must be 28 bytes");
AECORE_STATIC_ASSERT(sizeof(StatsCameraInfo) == 8, "StatsCameraInfo must be 8 bytes");
#endif

AECORE_EXTERN_C_END

#endif /* AECORE_AECORE_STATS_H */
