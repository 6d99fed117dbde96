// Folds parsed grid regions into the coarse legacy Y grid of at most 16 by 16 regions.
#ifndef AEC_CORE_MODULES_MOD_MTR_CLEGACYYGRID_H
#define AEC_CORE_MODULES_MOD_MTR_CLEGACYYGRID_H

#include "aec/core/modules/mod_mtr/statsprocrecords.h"

// Lives on the stack of one parse; writes into the result's YRegions, which the caller has cleared.
class CLegacyYGrid
{
public:
    // legacyW x legacyH legacy regions (at most 256), each covering blockW x blockH regions of a gridW x gridH grid.
    CLegacyYGrid(ParsedLegacyYRegionType* pYRegions, UINT32 legacyW, UINT32 legacyH, UINT32 blockW, UINT32 blockH,
                 UINT32 gridW, UINT32 gridH);

    VOID Add(UINT32 x, UINT32 y, const ParsedBGRegionType& region)
    {
        const UINT32 idx = static_cast<UINT32>(m_colIndex[x]) + m_rowBase[y];
        m_pYRegions[idx].Yval += region.rgnLuma;
        m_pYRegions[idx].Ysat += region.rgnSatRatio;
        m_count[idx]++;
    }
    // Turns the sums into means (Ysat only when divideSat); false when a legacy region got no grid region.
    BOOL Finish(BOOL divideSat);

private:
    ParsedLegacyYRegionType* m_pYRegions;
    UINT32                   m_legacyW;
    UINT32                   m_legacyH;
    UINT32                   m_blockW;
    UINT32                   m_blockH;
    UINT16                   m_count[BGMaxLegacyYRegions];
    // Legacy column of each grid column and first legacy region of each grid row, so that adding a region
    // costs no division. Legacy indices stay below 256.
    UINT8                    m_colIndex[BGMaxRegions];
    UINT8                    m_rowBase[BGMaxRegions];
};

#endif // AEC_CORE_MODULES_MOD_MTR_CLEGACYYGRID_H
