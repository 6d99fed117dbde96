// Tests of the file checksums and the 64-bit name hash.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "tuning/parser/parsercrc.h"
#include "unit/tuningparser/clogcapture.h"

TEST(ParserCRC32, MatchesTheIeeeCheckValue)
{
    const CHAR* pText = "123456789";
    EXPECT_EQ(0xCBF43926u, ParserCRC32::GetCRC(reinterpret_cast<const BYTE*>(pText), 9));
}

TEST(ParserCRC32, ZeroLengthReturnsTheSeed)
{
    const BYTE byte = 0x55;
    EXPECT_EQ(0x12345678u, ParserCRC32::GetCRC(&byte, 0, 0x12345678u));
}

TEST(ParserCRC32, SeedContinuesACrc)
{
    const BYTE data[] = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(ParserCRC32::GetCRC(data, 6), ParserCRC32::GetCRC(data + 3, 3, ParserCRC32::GetCRC(data, 3)));
}

namespace
{

// The checksums one bit at a time, as the polynomials define them.
template <typename CrcT>
CrcT BitwiseCrc(CrcT polynomial, const BYTE* pData, SIZE_T length, CrcT seed)
{
    CrcT crc = ~seed;
    for (SIZE_T i = 0; i < length; i++)
    {
        crc ^= pData[i];
        for (UINT32 k = 0; k < 8; k++)
        {
            crc = (0 != (crc & 1)) ? (polynomial ^ (crc >> 1)) : (crc >> 1);
        }
    }
    return ~crc;
}

} // namespace

TEST(ParserCRC, EightBytesAtATimeEqualsTheBitwiseDefinitionAtEveryLengthAndOffset)
{
    std::mt19937      random(7);
    std::vector<BYTE> data(300);
    for (BYTE& rByte : data)
    {
        rByte = static_cast<BYTE>(random());
    }
    for (SIZE_T offset = 0; offset < 8; offset++)
    {
        for (SIZE_T length = 0; length + offset <= 100; length++)
        {
            const BYTE*  pData  = data.data() + offset;
            const UINT64 seed64 = (0 == (length & 1)) ? 0 : 0x0123456789ABCDEFull;
            const UINT32 seed32 = static_cast<UINT32>(seed64);
            EXPECT_EQ(BitwiseCrc<UINT64>(0x42F0E1EBA9EA3693ull, pData, length, seed64),
                      ParserCRC64::GetCRC(pData, length, false, seed64))
                << "offset " << offset << " length " << length;
            EXPECT_EQ(BitwiseCrc<UINT32>(0xEDB88320u, pData, length, seed32), ParserCRC32::GetCRC(pData, length, seed32))
                << "offset " << offset << " length " << length;
        }
    }
}

TEST(ParserCRC64, TableIsBuiltFromTheUnreversedPolynomial)
{
    EXPECT_EQ(0x42F0E1EBA9EA3693ull, ParserCRC64::GetTableValue(128));
    EXPECT_EQ(0x3C3B78E888D80FE1ull, ParserCRC64::GetTableValue(1));
    EXPECT_EQ(0ull, ParserCRC64::GetTableValue(0));
}

TEST(ParserCRC64, LengthIsFedAfterTheDataLowByteFirst)
{
    const CHAR* pName = "mtrLumaCalc";
    const SIZE_T length = std::strlen(pName);
    // The same loop over the text followed by its 32-bit length equals the hash with length.
    BYTE buffer[64];
    std::memcpy(buffer, pName, length);
    const UINT32 length32 = static_cast<UINT32>(length);
    std::memcpy(buffer + length, &length32, 4);
    const UINT64 withoutNot = ~ParserCRC64::GetCRC(buffer, length + 4, false);
    EXPECT_EQ(~withoutNot, ParserCRC64::GetCRC(pName, length, true));
    EXPECT_NE(ParserCRC64::GetCRC(pName, length, false), ParserCRC64::GetCRC(pName, length, true));
    EXPECT_EQ(ParserCRC64::GetCRC(pName, length, true), ParserCRC64::GetNameHash(pName));
}

TEST(ParserCRC64, MemberNameHashesOfTheGeneratedCode)
{
    EXPECT_EQ(0xD594EED07A5650C5ull, ParserCRC64::GetNameHash("revision"));
    EXPECT_EQ(0x866A355C62D13A6Full, ParserCRC64::GetNameHash("mtrLumaCalc"));
}

TEST(ParserCRCValidate, TooSmallBuffersAreRefused)
{
    CLogCapture log;
    const BYTE  data[8] = {};
    EXPECT_FALSE(ParserCRC32::Validate(data, 4, nullptr));
    EXPECT_FALSE(ParserCRC64::Validate(data, 8, true, nullptr));
    EXPECT_EQ(2U, log.Count("Binary file CRC validation failed. Buffer too small"));
}

TEST(ParserCRCValidate, ComparesTheTrailerAndReportsComputedThenStored)
{
    CLogCapture log;
    BYTE        data[12] = {1, 2, 3, 4};
    const UINT32 crc32   = ParserCRC32::GetCRC(data, 4);
    std::memcpy(data + 4, &crc32, 4);
    EXPECT_TRUE(ParserCRC32::Validate(data, 8, nullptr));
    data[0] ^= 1;
    EXPECT_FALSE(ParserCRC32::Validate(data, 8, nullptr));
    CHAR expected[128];
    std::snprintf(expected, sizeof(expected), "Expected: %08x, Actual: %08x", ParserCRC32::GetCRC(data, 4), crc32);
    EXPECT_TRUE(log.Contains(expected));

    data[0] ^= 1;
    const UINT64 crc64 = ParserCRC64::GetCRC(data, 4, true);
    std::memcpy(data + 4, &crc64, 8);
    EXPECT_TRUE(ParserCRC64::Validate(data, 12, true, nullptr));
    data[2] ^= 0x80;
    EXPECT_FALSE(ParserCRC64::Validate(data, 12, true, nullptr));
    std::snprintf(expected, sizeof(expected), "Expected: %016llx, Actual: %016llx",
                  static_cast<unsigned long long>(ParserCRC64::GetCRC(data, 4, true)),
                  static_cast<unsigned long long>(crc64));
    EXPECT_TRUE(log.Contains(expected));
}
