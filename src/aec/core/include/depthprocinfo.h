// Depth geometry and maps of one frame, copied from the autofocus vendor tags for depth-assisted metering.
#ifndef AEC_CORE_INCLUDE_DEPTHPROCINFO_H
#define AEC_CORE_INCLUDE_DEPTHPROCINFO_H

#include <type_traits>

#include "aecore/aecore_types.h"

// Capacity of each depth map, in grid regions.
constexpr UINT32 DepthMapMaxRegions = 3072;

// Maps hold horiNumOfRegion x vertNumOfRegion valid entries in row order; absent tags leave a map at zero.
struct DepthProcInfo
{
    UINT32 horiNumOfRegion;
    UINT32 vertNumOfRegion;
    UINT32 widthOfRegion;
    UINT32 heightOfRegion;
    UINT32 horiRegionOffset;
    UINT32 vertRegionOffset;
    FLOAT  PDMap[DepthMapMaxRegions];
    UINT   ConfidenceMap[DepthMapMaxRegions];
    INT16  RangeNearMap[DepthMapMaxRegions];
    INT16  RangeFarMap[DepthMapMaxRegions];
    INT    DefocusMap[DepthMapMaxRegions];
    UINT   DistanceMap[DepthMapMaxRegions];
    BOOL   AFSelectMap[DepthMapMaxRegions];
};

static_assert(std::is_trivial<DepthProcInfo>::value, "DepthProcInfo is zeroed with memset");

#endif // AEC_CORE_INCLUDE_DEPTHPROCINFO_H
