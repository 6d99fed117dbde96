// Checksums of parameter files and the 64-bit name hash of modules and members.
#include "tuning/parser/parsercrc.h"

#include <cstring>

#include "tuning/parser/parameterlogging.h"

namespace
{

struct Crc32Table
{
    UINT32 Value[256];
    Crc32Table()
    {
        for (UINT32 i = 0; i < 256; i++)
        {
            UINT32 c = i;
            for (UINT32 k = 0; k < 8; k++)
            {
                c = (0 != (c & 1)) ? (0xEDB88320u ^ (c >> 1)) : (c >> 1);
            }
            Value[i] = c;
        }
    }
};

struct Crc64Table
{
    UINT64 Value[256];
    Crc64Table()
    {
        for (UINT64 i = 0; i < 256; i++)
        {
            UINT64 c = i;
            for (UINT32 k = 0; k < 8; k++)
            {
                c = (0 != (c & 1)) ? (0x42F0E1EBA9EA3693ull ^ (c >> 1)) : (c >> 1);
            }
            Value[i] = c;
        }
    }
};

const Crc32Table s_crc32;
const Crc64Table s_crc64;

inline UINT64 Crc64Step(UINT64 crc, BYTE byte)
{
    return s_crc64.Value[(byte ^ crc) & 0xFF] ^ (crc >> 8);
}

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
    UINT32 crc = ~seed;
    for (SIZE_T i = 0; i < length; i++)
    {
        crc = s_crc32.Value[(pData[i] ^ crc) & 0xFF] ^ (crc >> 8);
    }
    return ~crc;
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
    const BYTE* pBytes = static_cast<const BYTE*>(pData);
    UINT64      crc    = ~seed;
    for (SIZE_T i = 0; i < length; i++)
    {
        crc = Crc64Step(crc, pBytes[i]);
    }
    if (includeLength)
    {
        const UINT32 length32 = static_cast<UINT32>(length);
        for (UINT32 b = 0; b < 4; b++)
        {
            crc = Crc64Step(crc, static_cast<BYTE>(length32 >> (8 * b)));
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
    return s_crc64.Value[index & 0xFF];
}
