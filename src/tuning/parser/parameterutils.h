// Byte-level read helpers of the parameter file and the text helpers of the value interface.
#ifndef AECORE_TUNING_PARSER_PARAMETERUTILS_H
#define AECORE_TUNING_PARSER_PARAMETERUTILS_H

#include <cstring>
#include <limits>
#include <type_traits>

#include "aecore/aecore_types.h"
#include "tuning/parser/parameterdefinition.h"
#include "tuning/parser/parameterlogging.h"
#include "tuning/parser/parametertypes.h"

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the file is little-endian and read in place");

class ParameterUtils
{
public:
    // Bytes that a field of natural size occupies behind the header.
    static UINT32 FieldSize(UINT32 size, BYTE alignment)
    {
        return (size >= alignment) ? size : ((0 == alignment) ? 1 : alignment);
    }

    // Bytes that a text or buffer of count bytes occupies behind the header.
    static UINT64 RoundUp(UINT64 count, BYTE alignment)
    {
        return (alignment <= 1) ? count : (((count + alignment - 1) / alignment) * alignment);
    }

    // Reads one little-endian field of size bytes occupying its aligned size; logs and fails past the end.
    static bool ReadField(void* pDest, UINT32 size, const BYTE* pBuffer, SIZE_T length, UINT32& pos,
                          BYTE alignment, const IParameterLoggingAPI* pLog);

    template <typename T>
    static bool ReadValue(T& dest, const BYTE* pBuffer, SIZE_T length, UINT32& pos, BYTE alignment,
                          const IParameterLoggingAPI* pLog)
    {
        return ReadField(&dest, sizeof(T), pBuffer, length, pos, alignment, pLog);
    }

    // New NUL-terminated copy (delete[]) of at most count bytes; null for a null buffer.
    static CHAR* ReadString(const BYTE* pBuffer, SIZE_T length, UINT32& pos, UINT32 count, BYTE alignment);
    static bool  ReadString(CHAR* pDest, const BYTE* pBuffer, SIZE_T length, UINT32& pos, UINT32 destSize,
                            UINT32 count, BYTE alignment, const IParameterLoggingAPI* pLog);
    static bool  ReadBuffer(BYTE* pDest, const BYTE* pBuffer, SIZE_T length, UINT32& pos, UINT32 count,
                            BYTE alignment, const IParameterLoggingAPI* pLog);
    static bool  WriteString(const CHAR* pString, BYTE* pBuffer, SIZE_T length, UINT32& pos, bool includeNul,
                             const IParameterLoggingAPI* pLog);

    static UINT32 GetStringPos(const CHAR* pString, CHAR ch);
    static UINT32 GetSubString(const CHAR* pString, CHAR delimiter, CHAR* pOut, UINT32 outSize);
    static double StringToDouble(const CHAR* pString, bool& ok);
    static UINT32 GetVariable(const CHAR* pPath, CHAR* pName, INT32& index, UINT32 nameSize);
    static UINT32 DoubleToString(double value, CHAR* pOut, UINT32 outSize, UINT32 decimals, bool& truncated);

    // The definition type that a value of type T has in the file.
    template <typename T>
    static constexpr ParameterDefinitionType TypeOf()
    {
        if (std::is_same<T, bool>::value) return ParameterDefinitionType_Boolean;
        if (std::is_floating_point<T>::value)
            return (sizeof(T) == 4) ? ParameterDefinitionType_Float : ParameterDefinitionType_Double;
        if (std::is_enum<T>::value) return ParameterDefinitionType_Enum;
        switch (sizeof(T))
        {
            case 1: return std::is_signed<T>::value ? ParameterDefinitionType_Signed8Bits
                                                    : ParameterDefinitionType_Unsigned8Bits;
            case 2: return std::is_signed<T>::value ? ParameterDefinitionType_Signed16Bits
                                                    : ParameterDefinitionType_Unsigned16Bits;
            case 4: return std::is_signed<T>::value ? ParameterDefinitionType_Signed32Bits
                                                    : ParameterDefinitionType_Unsigned32Bits;
            default: return std::is_signed<T>::value ? ParameterDefinitionType_Signed64Bits
                                                     : ParameterDefinitionType_Unsigned64Bits;
        }
    }

    // Reads one value; the file's description decides its width and signedness, then it is converted to T.
    template <typename T>
    static bool Read(T& dest, const ParameterDefinitionElement* pElement, const BYTE* pData, SIZE_T length,
                     UINT32& pos, BYTE alignment, const IParameterLoggingAPI* pLog)
    {
        return ReadOne<T>(dest, pElement, pData, length, pos, alignment, pLog, true, "Read",
                          "%s: Invalid read type %u\n");
    }

    template <typename T>
    static bool ReadArray(T* pDest, UINT32 count, const ParameterDefinitionElement* pElement, const BYTE* pData,
                          SIZE_T length, UINT32& pos, BYTE alignment, const IParameterLoggingAPI* pLog)
    {
        for (UINT32 i = 0; i < count; i++)
        {
            if (!ReadOne<T>(pDest[i], pElement, pData, length, pos, alignment, pLog, true, "ReadArray",
                            "%s: Invalid read type %u. XSD structure modified\n"))
            {
                return false;
            }
        }
        return true;
    }

    // For enumerations: a float flag of the file is not applied.
    template <typename T>
    static bool ReadArrayNoFloat(T* pDest, UINT32 count, const ParameterDefinitionElement* pElement,
                                 const BYTE* pData, SIZE_T length, UINT32& pos, BYTE alignment,
                                 const IParameterLoggingAPI* pLog)
    {
        for (UINT32 i = 0; i < count; i++)
        {
            if (!ReadOne<T>(pDest[i], pElement, pData, length, pos, alignment, pLog, false, "ReadArrayNoFloat",
                            "%s: Invalid read type %u. XSD structure modified\n"))
            {
                return false;
            }
        }
        return true;
    }

private:
    template <typename T, typename S>
    static bool ReadAs(T& dest, const BYTE* pData, SIZE_T length, UINT32& pos, BYTE alignment,
                       const IParameterLoggingAPI* pLog)
    {
        S value;
        if (!ReadValue(value, pData, length, pos, alignment, pLog))
        {
            return false;
        }
        dest = Convert<T>(value);
        return true;
    }

    // Value conversion that saturates instead of overflowing (a float out of an integer's range, NaN).
    template <typename T, typename S>
    static T Convert(S value)
    {
        typedef typename std::conditional<std::is_enum<T>::value, std::underlying_type<T>, std::common_type<T>>::type
            Wrapped;
        typedef typename Wrapped::type Arith;
        if (std::is_floating_point<S>::value && std::is_integral<Arith>::value && !std::is_same<Arith, bool>::value)
        {
            const long double v = static_cast<long double>(value);
            if (!(v == v))
            {
                return static_cast<T>(Arith());
            }
            if (v <= static_cast<long double>(std::numeric_limits<Arith>::min()))
            {
                return static_cast<T>(std::numeric_limits<Arith>::min());
            }
            if (v >= static_cast<long double>(std::numeric_limits<Arith>::max()))
            {
                return static_cast<T>(std::numeric_limits<Arith>::max());
            }
        }
        return static_cast<T>(static_cast<Arith>(value));
    }

    template <typename T>
    static bool ReadOne(T& dest, const ParameterDefinitionElement* pElement, const BYTE* pData, SIZE_T length,
                        UINT32& pos, BYTE alignment, const IParameterLoggingAPI* pLog, bool useFloat,
                        const CHAR* pName, const CHAR* pInvalidFormat)
    {
        typedef typename std::conditional<std::is_enum<T>::value, std::underlying_type<T>, std::common_type<T>>::type
            Wrapped;
        typedef typename Wrapped::type Arith;
        const ParameterDefinitionElementInfo* pInfo = (nullptr != pElement) ? pElement->Info : nullptr;
        if ((nullptr == pInfo) || (pInfo->Type == TypeOf<T>()))
        {
            return ReadValue(dest, pData, length, pos, alignment, pLog);
        }
        if (useFloat && pInfo->IsFloat())
        {
            // A member stored as a 4-byte float, whatever the code's type.
            return ReadAs<T, float>(dest, pData, length, pos, alignment, pLog);
        }
        Arith value = Arith();
        bool  ok    = false;
        switch (pInfo->Type)
        {
            case ParameterDefinitionType_Signed8Bits:    ok = ReadAs<Arith, INT8>(value, pData, length, pos, alignment, pLog); break;
            case ParameterDefinitionType_Unsigned8Bits:
            case ParameterDefinitionType_Hex8Bits:       ok = ReadAs<Arith, UINT8>(value, pData, length, pos, alignment, pLog); break;
            case ParameterDefinitionType_Signed16Bits:   ok = ReadAs<Arith, INT16>(value, pData, length, pos, alignment, pLog); break;
            case ParameterDefinitionType_Unsigned16Bits:
            case ParameterDefinitionType_Hex16Bits:      ok = ReadAs<Arith, UINT16>(value, pData, length, pos, alignment, pLog); break;
            case ParameterDefinitionType_Signed32Bits:
            case ParameterDefinitionType_Enum:           ok = ReadAs<Arith, INT32>(value, pData, length, pos, alignment, pLog); break;
            case ParameterDefinitionType_Unsigned32Bits:
            case ParameterDefinitionType_Hex32Bits:
            case ParameterDefinitionType_Boolean:        ok = ReadAs<Arith, UINT32>(value, pData, length, pos, alignment, pLog); break;
            case ParameterDefinitionType_Signed64Bits:   ok = ReadAs<Arith, INT64>(value, pData, length, pos, alignment, pLog); break;
            case ParameterDefinitionType_Unsigned64Bits:
            case ParameterDefinitionType_Hex64Bits:      ok = ReadAs<Arith, UINT64>(value, pData, length, pos, alignment, pLog); break;
            case ParameterDefinitionType_Float:          ok = ReadAs<Arith, float>(value, pData, length, pos, alignment, pLog); break;
            case ParameterDefinitionType_Double:         ok = ReadAs<Arith, double>(value, pData, length, pos, alignment, pLog); break;
            default:
                ParameterLogging::Write(pLog, Error, pInvalidFormat, pName, static_cast<UINT32>(pInfo->Type));
                return false;
        }
        if (ok)
        {
            dest = static_cast<T>(value);
        }
        return ok;
    }
};

#endif // AECORE_TUNING_PARSER_PARAMETERUTILS_H
