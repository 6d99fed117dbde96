// Window set-up and stepping of the parsed Bayer grid iterator.
#include "aec/core/modules/mod_mtr/bgstatsiterator.h"

#include "platform/statslogger.h"

const UINT16 BGStatsIterator::subsmpl_LUT[4][4] = {
    {0, 0, 0, 0},
    {0, 1, 0, 0},
    {0, 1, 2, 0},
    {0, 1, 3, 2},
};

namespace
{
// Scales a normalised corner to region units; NaN and negative corners give 0 and the float-to-integer conversion
// never leaves the UINT16 range.
UINT16 CornerToRegion(UINT32 count, FLOAT corner)
{
    FLOAT scaled = static_cast<FLOAT>(count) * corner;
    if (!(scaled > 0.0f))
    {
        return 0;
    }
    return (scaled >= 65535.0f) ? 65535 : static_cast<UINT16>(scaled);
}

// Caps a corner to the last region of its axis; only a value beyond the grid is worth a warning.
UINT16 CapCorner(UINT16 value, UINT32 count, const CHAR* pFormat)
{
    if (value > count)
    {
        AEC_LOG_WARN(pFormat, value, count - 1);
        return static_cast<UINT16>(count - 1);
    }
    return (value == count) ? static_cast<UINT16>(count - 1) : value;
}
} // namespace

BGStatsIterator::BGStatsIterator(const BGProcResult* pBGRes, BGStatsIterationMode mode)
{
    InitializeIterator(pBGRes, mode, 0.0f, 0.0f, 1.0f, 1.0f);
}

BGStatsIterator::BGStatsIterator(const BGProcResult* pBGRes, BGStatsIterationMode mode, FLOAT ULx, FLOAT ULy,
                                 FLOAT LRx, FLOAT LRy)
{
    InitializeIterator(pBGRes, mode, ULx, ULy, LRx, LRy);
}

VOID BGStatsIterator::InitializeIterator(const BGProcResult* pBGRes, BGStatsIterationMode mode, FLOAT ULx, FLOAT ULy,
                                         FLOAT LRx, FLOAT LRy)
{
    m_pBGRes          = pBGRes;
    m_upperLeft       = {0, 0};
    m_lowerRight      = {0, 0};
    m_SWSubsmplFactor = 1;
    m_pPhase          = subsmpl_LUT[0];
    m_estNumOfRegions = 0;
    // An empty iterator: the first position lies past the last.
    m_ROIFirstPos = 1;
    m_ROILastPos  = 0;
    m_nextPos     = 1;

    if (nullptr == pBGRes)
    {
        AEC_LOG_ERROR("BG stats iterator built on a null result");
        return;
    }
    const UINT32 h = pBGRes->numHorizontalRegions;
    const UINT32 v = pBGRes->numVerticalRegions;
    if ((0 == h) || (0 == v) || ((h * v) > BGMaxRegions))
    {
        AEC_LOG_WARN("BG stats iterator on an unparsed grid (%u, %u)", h, v);
        return;
    }

    UINT8 factor = (BGStatsIterationMode::Exhaustive == mode) ? 1 : pBGRes->SWSubsmplFactor;
    if ((factor < 1) || (factor > 4))
    {
        factor = 1;
    }
    m_SWSubsmplFactor = factor;

    m_upperLeft.x  = CapCorner(CornerToRegion(h, ULx), h, "warning: up left x is %d capping to %d");
    m_upperLeft.y  = CapCorner(CornerToRegion(v, ULy), v, "warning: up left y is %d capping to %d");
    m_lowerRight.x = CapCorner(CornerToRegion(h, LRx), h, "warning: low right x is %d capping to %d");
    m_lowerRight.y = CapCorner(CornerToRegion(v, LRy), v, "warning: low right y is %d capping to %d");

    const UINT32 x1 = m_upperLeft.x;
    const UINT32 y1 = m_upperLeft.y;
    const UINT32 x2 = m_lowerRight.x;
    const UINT32 y2 = m_lowerRight.y;
    m_estNumOfRegions = ((x2 >= x1) && (y2 >= y1)) ? ((x2 - x1 + 1) * (y2 - y1 + 1) / factor) : 0;

    m_ROIFirstPos = x1 + y1 * h;
    m_ROILastPos  = x2 + y2 * h;
    if (m_ROILastPos >= h * v)
    {
        AEC_LOG_WARN("last pos exceeds %d, capping", h * v - 1);
        m_ROILastPos = h * v - 1;
    }
    if (m_ROIFirstPos > m_ROILastPos)
    {
        AEC_LOG_ERROR("error in ROI coordinates: first %d last %d", m_ROIFirstPos, m_ROILastPos);
        m_ROIFirstPos = m_ROILastPos;
    }
    m_pPhase = subsmpl_LUT[factor - 1];
    ResetToStart();
}

VOID BGStatsIterator::ResetToStart()
{
    if ((nullptr == m_pBGRes) || (m_ROIFirstPos > m_ROILastPos))
    {
        return;
    }
    m_nextPos = FindNextSubsamplePosition(m_upperLeft.x + m_upperLeft.y * m_pBGRes->numHorizontalRegions);
}

UINT32 BGStatsIterator::FindNextSubsamplePosition(UINT32 pos) const
{
    const UINT32 factor = m_SWSubsmplFactor;
    if (factor < 2)
    {
        return pos;
    }
    const UINT32 h = m_pBGRes->numHorizontalRegions;
    const UINT32 y = pos / h;
    const UINT32 x = pos % h;
    const UINT32 d = m_pPhase[y % factor] + factor - (x % factor);
    return pos + d % factor;
}

UINT32 BGStatsIterator::IncrementPos(UINT32 pos, BOOL skipNonCalculated) const
{
    if ((nullptr == m_pBGRes) || (pos < m_ROIFirstPos) || (pos > m_ROILastPos))
    {
        return pos;
    }
    const UINT32 h = m_pBGRes->numHorizontalRegions;
    if (0 == h)
    {
        AEC_LOG_ERROR("Invalid BG stats horizontal region count of 0");
        return pos;
    }
    for (;;)
    {
        const UINT32 oldCol = pos % h;
        const UINT32 n      = pos + m_SWSubsmplFactor;
        const UINT32 line   = n / h;
        const UINT32 col    = n % h;
        if (col > m_lowerRight.x)
        {
            pos = FindNextSubsamplePosition((line + 1) * h + m_upperLeft.x);
        }
        else if (col < m_upperLeft.x)
        {
            pos = FindNextSubsamplePosition(line * h + m_upperLeft.x);
        }
        else if ((0 == col) || (col < oldCol))
        {
            pos = FindNextSubsamplePosition(line * h);
        }
        else
        {
            pos = n;
        }
        if ((FALSE == skipNonCalculated) || (pos > m_ROILastPos) || (FALSE != m_pBGRes->BGRegionsCalculated[pos]))
        {
            return pos;
        }
    }
}

const ParsedBGRegionType* BGStatsIterator::Next()
{
    if (m_nextPos > m_ROILastPos)
    {
        return nullptr;
    }
    const ParsedBGRegionType* pRegion = &m_pBGRes->BGRegions[m_nextPos];
    m_nextPos                         = IncrementPos(m_nextPos, TRUE);
    return pRegion;
}
