// Byte-level read helpers of the parameter file and the text helpers of the value interface.
#include "tuning/parser/parameterutils.h"

#include <cmath>
#include <cstdio>

#include "platform/osutils.h"

bool ParameterUtils::ReadField(void* pDest, UINT32 size, const BYTE* pBuffer, SIZE_T length, UINT32& pos,
                               BYTE alignment, const IParameterLoggingAPI* pLog)
{
    if ((nullptr == pBuffer) || (static_cast<UINT64>(pos) + size > length))
    {
        ParameterLogging::Write(pLog, Error, "Failed to read %lld bytes from binary file offset %d, length %d\n",
                                static_cast<long long>(size), static_cast<INT32>(pos), static_cast<INT32>(length));
        return false;
    }
    std::memcpy(pDest, pBuffer + pos, size);
    pos += FieldSize(size, alignment);
    return true;
}

CHAR* ParameterUtils::ReadString(const BYTE* pBuffer, SIZE_T length, UINT32& pos, UINT32 count, BYTE alignment)
{
    if (nullptr == pBuffer)
    {
        return nullptr;
    }
    CHAR* pString = new (std::nothrow) CHAR[static_cast<SIZE_T>(count) + 1];
    if (nullptr != pString)
    {
        UINT32 copied = 0;
        while ((copied < count) && (static_cast<UINT64>(pos) + copied < length) && ('\0' != pBuffer[pos + copied]))
        {
            pString[copied] = static_cast<CHAR>(pBuffer[pos + copied]);
            copied++;
        }
        pString[copied] = '\0';
    }
    pos = static_cast<UINT32>(pos + RoundUp(count, alignment));
    return pString;
}

bool ParameterUtils::ReadString(CHAR* pDest, const BYTE* pBuffer, SIZE_T length, UINT32& pos, UINT32 destSize,
                                UINT32 count, BYTE alignment, const IParameterLoggingAPI* pLog)
{
    if ((nullptr == pDest) || (0 == destSize))
    {
        ParameterLogging::Write(pLog, Error, "ReadBuffer failed to allocate space for a string of %d length\n",
                                static_cast<INT32>(count));
        pos = static_cast<UINT32>(pos + RoundUp(count, alignment));
        return false;
    }
    // Bounded by what is left of the buffer and by the destination.
    UINT64 copy = (nullptr == pBuffer || pos >= length) ? 0 : (length - pos);
    copy        = (copy < count) ? copy : count;
    copy        = (copy < destSize) ? copy : destSize;
    if (copy > 0)
    {
        std::memcpy(pDest, pBuffer + pos, static_cast<SIZE_T>(copy));
    }
    pDest[(copy < destSize) ? copy : (destSize - 1)] = '\0';
    pDest[destSize - 1]                             = '\0';
    pos = static_cast<UINT32>(pos + RoundUp(count, alignment));
    return true;
}

bool ParameterUtils::ReadBuffer(BYTE* pDest, const BYTE* pBuffer, SIZE_T length, UINT32& pos, UINT32 count,
                                BYTE alignment, const IParameterLoggingAPI* pLog)
{
    if (nullptr == pBuffer)
    {
        ParameterLogging::Write(pLog, Error, "ReadBuffer called with nullptr buffer\n");
        return false;
    }
    if (nullptr == pDest)
    {
        ParameterLogging::Write(pLog, Error, "ReadBuffer called with nullptr value\n");
        return false;
    }
    UINT64 copy = (pos >= length) ? 0 : (length - pos);
    copy        = (copy < count) ? copy : count;
    if (copy > 0)
    {
        std::memcpy(pDest, pBuffer + pos, static_cast<SIZE_T>(copy));
    }
    pos = static_cast<UINT32>(pos + RoundUp(count, alignment));
    if (copy != count)
    {
        ParameterLogging::Write(pLog, Error, "ReadBuffer failed, read %d bytes, expected %d bytes\n",
                                static_cast<INT32>(copy), static_cast<INT32>(count));
        return false;
    }
    return true;
}

bool ParameterUtils::WriteString(const CHAR* pString, BYTE* pBuffer, SIZE_T length, UINT32& pos, bool includeNul,
                                 const IParameterLoggingAPI* pLog)
{
    const CHAR*  pText = (nullptr != pString) ? pString : "";
    const SIZE_T size  = std::strlen(pText);
    if ((nullptr == pBuffer) || (static_cast<UINT64>(pos) + 1 + size >= length))
    {
        if (nullptr != pString)
        {
            ParameterLogging::Write(pLog, Error, "Insufficient space in buffer to write string: %s\n", pString);
        }
        else
        {
            ParameterLogging::Write(pLog, Error, "Insufficient space in buffer to write string\n");
        }
        return false;
    }
    std::memcpy(pBuffer + pos, pText, size + 1);
    pos = static_cast<UINT32>(pos + size + (includeNul ? 1 : 0));
    return true;
}

UINT32 ParameterUtils::GetStringPos(const CHAR* pString, CHAR ch)
{
    if (nullptr != pString)
    {
        for (UINT32 i = 0; '\0' != pString[i]; i++)
        {
            if (ch == pString[i])
            {
                return i;
            }
        }
    }
    return 0xFFFFFFFFu;
}

UINT32 ParameterUtils::GetSubString(const CHAR* pString, CHAR delimiter, CHAR* pOut, UINT32 outSize)
{
    if ((nullptr == pOut) || (0 == outSize))
    {
        return 0;
    }
    UINT32 count = 0;
    while ((nullptr != pString) && ('\0' != pString[count]) && (delimiter != pString[count]) &&
           (count + 1 < outSize))
    {
        pOut[count] = pString[count];
        count++;
    }
    pOut[count] = '\0';
    return count;
}

double ParameterUtils::StringToDouble(const CHAR* pString, bool& ok)
{
    ok = false;
    if ((nullptr == pString) || ('\0' == pString[0]))
    {
        return 0.0;
    }
    // Everything up to the first '-' is ignored; a '-' anywhere negates.
    const UINT32 minus    = GetStringPos(pString, '-');
    const bool   negative = (0xFFFFFFFFu != minus);
    const CHAR*  p        = negative ? (pString + minus + 1) : pString;

    double value    = 0.0;
    double scale    = 1.0;
    bool   fraction = false;
    for (; '\0' != *p; p++)
    {
        if (('0' <= *p) && ('9' >= *p))
        {
            if (fraction)
            {
                scale /= 10.0;
                value += (*p - '0') * scale;
            }
            else
            {
                value = value * 10.0 + (*p - '0');
            }
        }
        else if (('.' == *p) && !fraction)
        {
            fraction = true;
        }
        else
        {
            return 0.0;
        }
    }
    ok = true;
    return negative ? -value : value;
}

UINT32 ParameterUtils::GetVariable(const CHAR* pPath, CHAR* pName, INT32& index, UINT32 nameSize)
{
    if ((nullptr == pPath) || (nullptr == pName) || (0 == nameSize))
    {
        return 0;
    }
    CHAR         part[129];
    const UINT32 length   = GetSubString(pPath, '.', part, sizeof(part));
    const UINT32 consumed = length + (('.' == pPath[length]) ? 1 : 0);

    const UINT32 bracket = GetStringPos(part, '[');
    if (0xFFFFFFFFu != bracket)
    {
        INT64  value  = 0;
        bool   digits = false;
        UINT32 i      = bracket + 1;
        for (; ('0' <= part[i]) && ('9' >= part[i]); i++)
        {
            value  = (value < 0x7FFFFFFF) ? (value * 10 + (part[i] - '0')) : value;
            digits = true;
        }
        if (digits && (']' == part[i]))
        {
            index = static_cast<INT32>((value > 0x7FFFFFFF) ? 0x7FFFFFFF : value);
        }
        part[bracket] = '\0';
    }
    Vela::OsUtils::StrLCpy(pName, part, nameSize);
    return consumed;
}

UINT32 ParameterUtils::DoubleToString(double value, CHAR* pOut, UINT32 outSize, UINT32 decimals, bool& truncated)
{
    truncated = false;
    if ((nullptr == pOut) || (0 == outSize))
    {
        truncated = true;
        return 0;
    }
    if (!std::isfinite(value))
    {
        const CHAR* pText = std::isnan(value) ? "nan" : ((value < 0) ? "-inf" : "inf");
        truncated         = (Vela::OsUtils::StrLCpy(pOut, pText, outSize) >= outSize);
        return static_cast<UINT32>(std::strlen(pOut));
    }
    decimals = (decimals > 20) ? 20 : decimals;

    // Exact digits with some to spare; the digit behind the last kept one rounds the text up.
    CHAR digits[400];
    std::snprintf(digits, sizeof(digits), "%.*f", static_cast<int>(decimals + 6), std::fabs(value));
    CHAR*        pDot     = std::strchr(digits, '.');
    const SIZE_T intCount = (nullptr != pDot) ? static_cast<SIZE_T>(pDot - digits) : std::strlen(digits);

    CHAR   text[400];
    SIZE_T n = 0;
    text[n++] = '0';  // room for a carry out of the top digit
    for (SIZE_T i = 0; i < intCount; i++)
    {
        text[n++] = digits[i];
    }
    for (UINT32 i = 0; i < decimals; i++)
    {
        text[n++] = pDot[1 + i];
    }
    if (pDot[1 + decimals] >= '5')
    {
        SIZE_T i = n;
        while (i > 0)
        {
            i--;
            if ('9' == text[i])
            {
                text[i] = '0';
            }
            else
            {
                text[i]++;
                break;
            }
        }
    }
    // Integer part without leading zeros, fraction without trailing zeros.
    SIZE_T intStart = 0;
    while ((intStart < intCount) && ('0' == text[intStart]))
    {
        intStart++;
    }
    SIZE_T fracEnd = n;
    while ((fracEnd > intCount + 1) && ('0' == text[fracEnd - 1]))
    {
        fracEnd--;
    }
    bool allZero = true;
    for (SIZE_T i = intStart; i < fracEnd; i++)
    {
        allZero = allZero && ('0' == text[i]);
    }

    CHAR   result[420];
    SIZE_T r = 0;
    if (std::signbit(value) && !allZero)
    {
        result[r++] = '-';
    }
    for (SIZE_T i = intStart; i <= intCount; i++)
    {
        result[r++] = text[i];
    }
    if (fracEnd > intCount + 1)
    {
        result[r++] = '.';
        for (SIZE_T i = intCount + 1; i < fracEnd; i++)
        {
            result[r++] = text[i];
        }
    }
    result[r] = '\0';
    truncated = (Vela::OsUtils::StrLCpy(pOut, result, outSize) >= outSize);
    return static_cast<UINT32>(std::strlen(pOut));
}
