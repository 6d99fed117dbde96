// Walks the parsed Bayer grid regions of a frame or a window, every region or following the software subsampling.
#ifndef AEC_CORE_MODULES_MOD_MTR_BGSTATSITERATOR_H
#define AEC_CORE_MODULES_MOD_MTR_BGSTATSITERATOR_H

#include "aec/core/modules/mod_mtr/statsprocrecords.h"

class BGStatsIterator
{
public:
    // Whole frame.
    BGStatsIterator(const BGProcResult* pBGRes, BGStatsIterationMode mode);
    // Window with normalised corners (0..1); corners beyond the grid are capped to it.
    BGStatsIterator(const BGProcResult* pBGRes, BGStatsIterationMode mode, FLOAT ULx, FLOAT ULy, FLOAT LRx, FLOAT LRy);

    BOOL HasNext() const { return (m_nextPos <= m_ROILastPos) ? TRUE : FALSE; }
    // The region at the current position, or null past the window; moves on to the next parsed region.
    const ParsedBGRegionType* Next();
    UINT32 GetTotalNumOfRegions() const { return m_estNumOfRegions; }
    VOID   ResetToStart();
    // The next window position after pos; with skipNonCalculated it passes over regions not parsed this frame.
    UINT32 IncrementPos(UINT32 pos, BOOL skipNonCalculated) const;

protected:
    UINT32 m_nextPos;

private:
    VOID   InitializeIterator(const BGProcResult* pBGRes, BGStatsIterationMode mode, FLOAT ULx, FLOAT ULy, FLOAT LRx,
                              FLOAT LRy);
    UINT32 FindNextSubsamplePosition(UINT32 pos) const;

    // Sampled column phase per row, one row per subsampling factor minus 1, indexed by grid row % factor.
    static const UINT16 subsmpl_LUT[4][4];

    const BGProcResult* m_pBGRes;
    Coord2D             m_upperLeft;
    Coord2D             m_lowerRight;
    UINT8               m_SWSubsmplFactor;
    const UINT16*       m_pPhase;
    UINT32              m_ROIFirstPos;
    UINT32              m_ROILastPos;
    UINT32              m_estNumOfRegions;
};

#endif // AEC_CORE_MODULES_MOD_MTR_BGSTATSITERATOR_H
