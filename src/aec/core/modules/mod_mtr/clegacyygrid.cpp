// Accumulation and averaging of the legacy Y grid.
#include "aec/core/modules/mod_mtr/clegacyygrid.h"

#include <cstring>

#include "platform/statslogger.h"

CLegacyYGrid::CLegacyYGrid(ParsedLegacyYRegionType* pYRegions, UINT32 legacyW, UINT32 legacyH, UINT32 blockW,
                           UINT32 blockH)
    : m_pYRegions(pYRegions)
    , m_legacyW((0 == legacyW) ? 1 : legacyW)
    , m_legacyH((0 == legacyH) ? 1 : legacyH)
    // A grid narrower than the legacy grid still maps one region to one legacy column instead of dividing by 0.
    , m_blockW((0 == blockW) ? 1 : blockW)
    , m_blockH((0 == blockH) ? 1 : blockH)
{
    std::memset(m_count, 0, sizeof(m_count));
}

VOID CLegacyYGrid::Add(UINT32 x, UINT32 y, const ParsedBGRegionType& region)
{
    // Grid counts that are no multiple of 16 leave extra columns or rows: they fold into the last legacy one.
    UINT32 lx = x / m_blockW;
    UINT32 ly = y / m_blockH;
    lx        = (lx < m_legacyW) ? lx : (m_legacyW - 1);
    ly        = (ly < m_legacyH) ? ly : (m_legacyH - 1);
    const UINT32 idx = lx + ly * m_legacyW;
    m_pYRegions[idx].Yval += region.rgnLuma;
    m_pYRegions[idx].Ysat += region.rgnSatRatio;
    m_count[idx]++;
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
