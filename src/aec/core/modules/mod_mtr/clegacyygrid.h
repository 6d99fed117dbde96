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
    // Adds count parsed regions that follow each other in grid row y from column x on, in the order of Add. The
    // sums of one legacy region stay in registers while the run stays in it.
    VOID AddRun(UINT32 x, UINT32 y, const ParsedBGRegionType* pRegions, UINT32 count)
    {
        const UINT32 rowBase = m_rowBase[y];
        UINT32       i       = 0;
        while (i < count)
        {
            const UINT32 col = m_colIndex[x + i];
            const UINT32 idx = col + rowBase;
            FLOAT        sumY   = m_pYRegions[idx].Yval;
            FLOAT        sumSat = m_pYRegions[idx].Ysat;
            UINT32       n      = 0;
            for (; (i < count) && (m_colIndex[x + i] == col); i++, n++)
            {
                sumY += pRegions[i].rgnLuma;
                sumSat += pRegions[i].rgnSatRatio;
            }
            m_pYRegions[idx].Yval = sumY;
            m_pYRegions[idx].Ysat = sumSat;
            m_count[idx] = static_cast<UINT16>(m_count[idx] + n);
        }
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
