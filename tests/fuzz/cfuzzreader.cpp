// Field reader of the fuzz targets.
#include "fuzz/cfuzzreader.h"

CFuzzReader::CFuzzReader(const UINT8* pData, size_t size)
    : m_pData(pData)
    , m_size((nullptr != pData) ? size : 0)
    , m_pos(0)
{
}

UINT8 CFuzzReader::U8()
{
    return (m_pos < m_size) ? m_pData[m_pos++] : 0;
}

UINT16 CFuzzReader::U16()
{
    const UINT16 lo = U8();
    return static_cast<UINT16>(lo | (static_cast<UINT16>(U8()) << 8));
}

UINT32 CFuzzReader::U32()
{
    const UINT32 lo = U16();
    return lo | (static_cast<UINT32>(U16()) << 16);
}

FLOAT CFuzzReader::Range(FLOAT lo, FLOAT hi)
{
    return lo + (hi - lo) * (static_cast<FLOAT>(U16()) / 65535.0f);
}
