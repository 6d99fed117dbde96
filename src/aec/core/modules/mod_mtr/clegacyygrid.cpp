// Accumulation and averaging of the legacy Y grid.
#include "aec/core/modules/mod_mtr/clegacyygrid.h"

#include <cstring>

#include "platform/statslogger.h"

CLegacyYGrid::CLegacyYGrid(ParsedLegacyYRegionType* pYRegions, UINT32 legacyW, UINT32 legacyH, UINT32 blockW,
                           UINT32 blockH, UINT32 gridW, UINT32 gridH)
    : m_pYRegions(pYRegions)
    , m_legacyW((0 == legacyW) ? 1 : legacyW)
    , m_legacyH((0 == legacyH) ? 1 : legacyH)
    // A grid narrower than the legacy grid still maps one region to one legacy column instead of dividing by 0.
    , m_blockW((0 == blockW) ? 1 : blockW)
    , m_blockH((0 == blockH) ? 1 : blockH)
{
    std::memset(m_count, 0, sizeof(m_count));
    // Grid counts that are no multiple of 16 leave extra columns or rows: they fold into the last legacy one.
    const UINT32 cols = (gridW < BGMaxRegions) ? gridW : BGMaxRegions;
    const UINT32 rows = (gridH < BGMaxRegions) ? gridH : BGMaxRegions;
    for (UINT32 x = 0; x < cols; x++)
    {
        const UINT32 lx = x / m_blockW;
        m_colIndex[x]   = static_cast<UINT8>((lx < m_legacyW) ? lx : (m_legacyW - 1));
    }
    for (UINT32 y = 0; y < rows; y++)
    {
        const UINT32 ly = y / m_blockH;
        m_rowBase[y]    = static_cast<UINT8>(((ly < m_legacyH) ? ly : (m_legacyH - 1)) * m_legacyW);
    }
}

BOOL CLegacyYGrid::Finish(BOOL divideSat)
{
    const UINT32 total = m_legacyW * m_legacyH;
    for (UINT32 i = 0; i < total; i++)
    {
        if (0 == m_count[i])
        {
            AEC_LOG_ERROR("Subsampling too sparse! No Y in Region (%d)!", i);
            return FALSE;
        }
        const FLOAT count = static_cast<FLOAT>(m_count[i]);
        m_pYRegions[i].Yval /= count;
        if (FALSE != divideSat)
        {
            m_pYRegions[i].Ysat /= count;
        }
    }
    return TRUE;
}
