// Parameters and results of the statistics parser: parsed Bayer grid regions and grouped histograms.
#ifndef AEC_CORE_MODULES_MOD_MTR_STATSPROCRECORDS_H
#define AEC_CORE_MODULES_MOD_MTR_STATSPROCRECORDS_H

#include "aecore/aecore.h"

// Capacities of the fixed result tables; the host's grid is at most 64 by 48 regions.
constexpr UINT32 BGMaxRegions          = 3072;
constexpr UINT32 BGMaxLegacyYRegions   = 256;
constexpr UINT32 BGLegacyGridDim       = 16;
constexpr UINT32 BHistMaxChannels      = 3;
constexpr UINT32 BHistMaxGroups        = 4096;
constexpr UINT32 BHistMaxLUTEntries    = 4097;
constexpr UINT32 HDR3HistMaxChannels   = 4;
constexpr UINT32 HDR3HistMaxGroups     = 256;
constexpr UINT32 HDR3HistMaxLUTEntries = 257;
constexpr UINT16 BGMaxBitDepth         = 16;

enum class BGProcUseCase : UINT32
{
    Invalid = 0,
    RGGB    = 1,
    RGBY    = 2,
    Y       = 3,
};

enum class BGStatsIterationMode : UINT32
{
    Normal     = 0, // follows the frame's software subsampling
    Exhaustive = 1, // every region of the window
};

enum class BHistProcUseCase : UINT32
{
    Invalid = 0,
    R       = 1,
    G       = 2,
    B       = 3,
    Y       = 4,
    RGB     = 5,
};

enum class HDR3HistProcUseCase : UINT32
{
    Invalid = 0,
    Y       = 1,
    R       = 2,
    G       = 3,
    B       = 4,
    RGB     = 5,
};

enum class HistIdentifier : UINT32
{
    Invalid           = 0,
    HistIDBHISTEven   = 1,
    HistIDBHISTUneven = 2,
    HistIDHDRBHIST    = 3,
};

// A grid position in region units.
struct Coord2D
{
    UINT16 x;
    UINT16 y;
};

struct BGProcParam
{
    UINT64 pixPerRgnAndChnl;
    UINT64 minNonSatCnt;
    FLOAT  lumaCalcScaler;
    FLOAT  RWeight;
    FLOAT  GWeight;
    FLOAT  BWeight;
    UINT8  SWSubsmplFactor;
};

struct ParsedBGRegionType
{
    FLOAT xPos;
    FLOAT yPos;
    FLOAT rgnLuma;
    FLOAT rgnSatRatio;
    FLOAT RGRatio;
    FLOAT BGRatio;
};

struct ParsedLegacyYRegionType
{
    FLOAT Yval;
    FLOAT Ysat;
};

struct BGProcInfo
{
    BGProcUseCase useCase;
    UINT8         numOfChannels;
};

struct BGProcResult
{
    BGProcInfo              procInfo;
    UINT32                  numHorizontalRegions;
    UINT32                  numVerticalRegions;
    UINT32                  numTotalRegions;
    UINT32                  numBrightRegions;
    UINT32                  numDarkRegions;
    UINT32                  numNormalRegions;
    UINT32                  numProcessedRegions;
    UINT8                   SWSubsmplFactor;
    BOOL                    BGRegionsCalculated[BGMaxRegions];
    ParsedBGRegionType      BGRegions[BGMaxRegions];
    ParsedLegacyYRegionType YRegions[BGMaxLegacyYRegions];
};

struct BHistProcParam
{
    UINT8 channelIndices[BHistMaxChannels];
    FLOAT channelGains[BHistMaxChannels];
};

struct BHistProcInfo
{
    BHistProcUseCase useCase;
    UINT8            numOfChannels;
    HistIdentifier   ID;
    UINT32           maxHistPixelValue;
    FLOAT            valueScaler;
};

struct BHistProcResult
{
    BHistProcInfo procInfo;
    UINT16        numOfBins;
    UINT16        groupedNumOfBins;
    UINT16        binLUTs[BHistMaxLUTEntries];
    FLOAT         valLUTs[BHistMaxLUTEntries];
    UINT64        groupedHist[BHistMaxChannels][BHistMaxGroups];
    FLOAT         histCDF[BHistMaxChannels][BHistMaxGroups];
    FLOAT         weightedCDF[BHistMaxChannels][BHistMaxGroups];
    FLOAT         weightedCDFWB[BHistMaxChannels][BHistMaxGroups];
    BOOL          isUniform;
};

struct HDR3HistProcParam
{
    UINT8 channelIndices[HDR3HistMaxChannels];
    FLOAT channelGains[HDR3HistMaxChannels];
};

struct HDR3HistProcInfo
{
    HDR3HistProcUseCase useCase;
    UINT8               numOfChannels;
    UINT32              maxHistPixelValue;
    FLOAT               valueScaler;
    UINT32              totalHistCount;
    UINT16              histWeightUnit;
    UINT32              mergedBinCount;
    UINT32              splitBinCount;
};

struct HDR3HistProcResult
{
    HDR3HistProcInfo procInfo;
    UINT16           numOfBins;
    UINT32           groupedNumOfBins;
    UINT32           binLUTs[HDR3HistMaxLUTEntries];
    FLOAT            valLUTs[HDR3HistMaxLUTEntries];
    UINT64           groupedHist[HDR3HistMaxChannels][HDR3HistMaxGroups];
    FLOAT            histCDF[HDR3HistMaxChannels][HDR3HistMaxGroups];
    FLOAT            weightedCDF[HDR3HistMaxChannels][HDR3HistMaxGroups];
    FLOAT            weightedCDFWB[HDR3HistMaxChannels][HDR3HistMaxGroups];
};

#endif // AEC_CORE_MODULES_MOD_MTR_STATSPROCRECORDS_H
