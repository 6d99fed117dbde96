// Checksums of parameter files and the 64-bit name hash of modules and members.
#include "tuning/parser/parsercrc.h"

#include <cstring>

#include "tuning/parser/parameterlogging.h"

namespace
{

// A reflected (right-shifting) CRC table and its seven derived slices: eight bytes per step instead of one, which
// makes checking a large parameter file several times faster. Slice k maps a byte to its effect k bytes later.
template <typename CrcT, CrcT Polynomial>
struct SlicedCrcTable
{
    CrcT Value[8][256];

    SlicedCrcTable()
    {
        for (UINT32 i = 0; i < 256; i++)
        {
            CrcT c = i;
            for (UINT32 k = 0; k < 8; k++)
            {
                c = (0 != (c & 1)) ? (Polynomial ^ (c >> 1)) : (c >> 1);
            }
            Value[0][i] = c;
        }
        for (UINT32 slice = 1; slice < 8; slice++)
        {
            for (UINT32 i = 0; i < 256; i++)
            {
                const CrcT previous = Value[slice - 1][i];
                Value[slice][i]     = Value[0][previous & 0xFF] ^ (previous >> 8);
            }
        }
    }

    CrcT Step(CrcT crc, BYTE byte) const { return Value[0][(byte ^ crc) & 0xFF] ^ (crc >> 8); }

    // crc is the running (inverted) register.
    CrcT Update(CrcT crc, const BYTE* pBytes, SIZE_T length) const
    {
        for (; length >= 8; length -= 8, pBytes += 8)
        {
            // Bytes are combined in file order, so the result does not depend on the host's byte order.
            UINT64 word = 0;
            for (UINT32 b = 0; b < 8; b++)
            {
                word |= static_cast<UINT64>(pBytes[b]) << (8 * b);
            }
            word ^= static_cast<UINT64>(crc);
            CrcT next = 0;
            for (UINT32 b = 0; b < 8; b++)
            {
                next ^= Value[7 - b][(word >> (8 * b)) & 0xFF];
            }
            crc = next;
        }
        for (; length > 0; length--, pBytes++)
        {
            crc = Step(crc, *pBytes);
        }
        return crc;
    }
};

const SlicedCrcTable<UINT32, 0xEDB88320u>           s_crc32;
const SlicedCrcTable<UINT64, 0x42F0E1EBA9EA3693ull> s_crc64;

UINT32 ReadLE32(const BYTE* p)
{
    return static_cast<UINT32>(p[0]) | (static_cast<UINT32>(p[1]) << 8) | (static_cast<UINT32>(p[2]) << 16) |
           (static_cast<UINT32>(p[3]) << 24);
}

} // namespace

UINT32 ParserCRC32::GetCRC(const BYTE* pData, SIZE_T length, UINT32 seed)
{
    if ((0 == length) || (nullptr == pData))
    {
        return seed;
    }
    return ~s_crc32.Update(~seed, pData, length);
}

bool ParserCRC32::Validate(const BYTE* pData, SIZE_T length, const IParameterLoggingAPI* pLog)
{
    if ((nullptr == pData) || (length < 5))
    {
        ParameterLogging::Write(pLog, Error, "Binary file CRC validation failed. Buffer too small\n");
        return false;
    }
    const UINT32 computed = GetCRC(pData, length - 4);
    const UINT32 stored   = ReadLE32(pData + length - 4);
    if (computed != stored)
    {
        ParameterLogging::Write(pLog, Error, "Binary file CRC validation failed. Expected: %08x, Actual: %08x\n",
                                computed, stored);
        return false;
    }
    return true;
}

UINT64 ParserCRC64::GetCRC(const void* pData, SIZE_T length, bool includeLength, UINT64 seed)
{
    if ((0 == length) || (nullptr == pData))
    {
        return seed;
    }
    UINT64 crc = s_crc64.Update(~seed, static_cast<const BYTE*>(pData), length);
    if (includeLength)
    {
        const UINT32 length32 = static_cast<UINT32>(length);
        for (UINT32 b = 0; b < 4; b++)
        {
            crc = s_crc64.Step(crc, static_cast<BYTE>(length32 >> (8 * b)));
        }
    }
    return ~crc;
}

bool ParserCRC64::Validate(const BYTE* pData, SIZE_T length, bool includeLength, const IParameterLoggingAPI* pLog)
{
    if ((nullptr == pData) || (length < 9))
    {
        ParameterLogging::Write(pLog, Error, "Binary file CRC validation failed. Buffer too small\n");
        return false;
    }
    const UINT64 computed = GetCRC(pData, length - 8, includeLength);
    const UINT64 stored   = static_cast<UINT64>(ReadLE32(pData + length - 8)) |
                          (static_cast<UINT64>(ReadLE32(pData + length - 4)) << 32);
    if (computed != stored)
    {
        ParameterLogging::Write(pLog, Error,
                                "Binary file CRC validation failed. Expected: %016llx, Actual: %016llx\n",
                                static_cast<unsigned long long>(computed), static_cast<unsigned long long>(stored));
        return false;
    }
    return true;
}

UINT64 ParserCRC64::GetNameHash(const CHAR* pName)
{
    return (nullptr == pName) ? 0 : GetCRC(pName, std::strlen(pName), true, 0);
}

UINT64 ParserCRC64::GetTableValue(UINT32 index)
{
    return s_crc64.Value[0][index & 0xFF];
}
