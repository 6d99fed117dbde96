// Little-endian byte output in which every field occupies its size padded to the file's alignment.
#include "ctunebytewriter.h"

namespace AecTune
{

CTuneByteWriter::CTuneByteWriter(UINT32 alignment)
    : m_alignment((alignment == 0) ? 1 : alignment)
{
}

void CTuneByteWriter::Field(UINT64 value, UINT32 size)
{
    for (UINT32 i = 0; i < size; i++)
    {
        m_bytes.push_back(static_cast<UINT8>(value >> (8 * i)));
    }
    for (UINT32 i = size; i < m_alignment; i++)
    {
        m_bytes.push_back(0);
    }
}

void CTuneByteWriter::U8(UINT8 value)
{
    Field(value, 1);
}

void CTuneByteWriter::U16(UINT16 value)
{
    Field(value, 2);
}

void CTuneByteWriter::U32(UINT32 value)
{
    Field(value, 4);
}

void CTuneByteWriter::U64(UINT64 value)
{
    Field(value, 8);
}

void CTuneByteWriter::Buffer(const void* pData, size_t count)
{
    const UINT8* pBytes = static_cast<const UINT8*>(pData);
    m_bytes.insert(m_bytes.end(), pBytes, pBytes + count);
    while (count % m_alignment != 0)
    {
        m_bytes.push_back(0);
        count++;
    }
}

void CTuneByteWriter::FixedText(const std::string& text, UINT32 count)
{
    std::vector<UINT8> field(count, 0);
    for (size_t i = 0; i < text.size() && i < count; i++)
    {
        field[i] = static_cast<UINT8>(text[i]);
    }
    Buffer(field.data(), field.size());
}

void CTuneByteWriter::CountedString(const std::string& text)
{
    U32(static_cast<UINT32>(text.size() + 1));
    Buffer(text.c_str(), text.size() + 1);
}

void CTuneByteWriter::PadTo(size_t size)
{
    if (m_bytes.size() < size)
    {
        m_bytes.resize(size, 0);
    }
}

void CTuneByteWriter::PatchU32(size_t offset, UINT32 value)
{
    for (UINT32 i = 0; i < 4; i++)
    {
        m_bytes[offset + i] = static_cast<UINT8>(value >> (8 * i));
    }
}

size_t CTuneByteWriter::Size() const
{
    return m_bytes.size();
}

UINT32 CTuneByteWriter::Alignment() const
{
    return m_alignment;
}

const std::vector<UINT8>& CTuneByteWriter::Bytes() const
{
    return m_bytes;
}

std::vector<UINT8>& CTuneByteWriter::Bytes()
{
    return m_bytes;
}

} // namespace AecTune
