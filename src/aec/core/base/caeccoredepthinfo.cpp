// Depth geometry and maps of a frame, taken from the autofocus vendor tags for depth-assisted metering.
#include <cstring>

#include "aec/core/base/caeccore.h"
#include "platform/statslogger.h"

namespace
{

// Positions in the vendor tag list, in the order in which the tags are requested from the host.
enum DepthTagPosition : UINT32
{
    DepthTagHoriNumOfRegion = 0,
    DepthTagVertNumOfRegion,
    DepthTagWidthOfRegion,
    DepthTagHeightOfRegion,
    DepthTagHoriRegionOffset,
    DepthTagVertRegionOffset,
    DepthTagPDMap,
    DepthTagConfidenceMap,
    DepthTagRangeNearMap,
    DepthTagRangeFarMap,
    DepthTagDefocusMap,
    DepthTagDistanceMap,
    DepthTagAFSelectMap,
};

VOID CopyScalar(const StatsVendorTagList& rTags, DepthTagPosition position, UINT32* pDestination)
{
    const VOID* pData = rTags.vendorTag[position].pData;
    if (nullptr != pData)
    {
        std::memcpy(pDestination, pData, sizeof(*pDestination));
    }
}

template <typename T>
VOID CopyMap(const StatsVendorTagList& rTags, DepthTagPosition position, UINT32 count, T* pDestination)
{
    const T* pSource = static_cast<const T*>(rTags.vendorTag[position].pData);
    if (nullptr != pSource)
    {
        for (UINT32 i = 0; i < count; i++)
        {
            pDestination[i] = pSource[i];
        }
    }
}

} // namespace

VOID CAECCore::processDepthInfo(const AECCoreInput* pInput)
{
    const StatsVendorTagList* pTags = pInput->pVendorTagList;
    if (nullptr == pTags)
    {
        AEC_LOG_VERBOSE("pVendorTagList is NULL");
        return;
    }
    if (nullptr == pTags->vendorTag[DepthTagHoriNumOfRegion].pData)
    {
        return;
    }
    UINT32 horiNumOfRegion = 0;
    std::memcpy(&horiNumOfRegion, pTags->vendorTag[DepthTagHoriNumOfRegion].pData, sizeof(horiNumOfRegion));
    if (0 == horiNumOfRegion)
    {
        AEC_LOG_VERBOSE("pVendorTagList is non valid! vendorTag[0] is 0");
        return;
    }

    DepthProcInfo& rDepth = m_mtrIn.m_DepthInfo;
    CopyScalar(*pTags, DepthTagHoriNumOfRegion, &rDepth.horiNumOfRegion);
    CopyScalar(*pTags, DepthTagVertNumOfRegion, &rDepth.vertNumOfRegion);
    CopyScalar(*pTags, DepthTagWidthOfRegion, &rDepth.widthOfRegion);
    CopyScalar(*pTags, DepthTagHeightOfRegion, &rDepth.heightOfRegion);
    CopyScalar(*pTags, DepthTagHoriRegionOffset, &rDepth.horiRegionOffset);
    CopyScalar(*pTags, DepthTagVertRegionOffset, &rDepth.vertRegionOffset);

    // The maps hold at most DepthMapMaxRegions entries: a larger grid is refused as a whole, and metering
    // then sees no depth at all rather than a geometry its maps do not cover.
    const UINT64 regionCount = static_cast<UINT64>(rDepth.horiNumOfRegion) * rDepth.vertNumOfRegion;
    if (regionCount > DepthMapMaxRegions)
    {
        AEC_LOG_ERROR("Depth grid of %u x %u regions exceeds the map capacity of %u; depth info dropped",
                      rDepth.horiNumOfRegion, rDepth.vertNumOfRegion, DepthMapMaxRegions);
        std::memset(&rDepth, 0, sizeof(rDepth));
        return;
    }

    const UINT32 count = static_cast<UINT32>(regionCount);
    CopyMap(*pTags, DepthTagPDMap, count, rDepth.PDMap);
    CopyMap(*pTags, DepthTagConfidenceMap, count, rDepth.ConfidenceMap);
    CopyMap(*pTags, DepthTagRangeNearMap, count, rDepth.RangeNearMap);
    CopyMap(*pTags, DepthTagRangeFarMap, count, rDepth.RangeFarMap);
    CopyMap(*pTags, DepthTagDefocusMap, count, rDepth.DefocusMap);
    CopyMap(*pTags, DepthTagDistanceMap, count, rDepth.DistanceMap);
    CopyMap(*pTags, DepthTagAFSelectMap, count, rDepth.AFSelectMap);
}
