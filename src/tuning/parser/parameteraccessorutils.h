// What the generated tuning accessors share: member tables behind GetValue / SetValue / GetInfo, array loaders,
// block release and the common steps of the module classes, so that each generated record holds only its own list.
#ifndef AECORE_TUNING_PARSER_PARAMETERACCESSORUTILS_H
#define AECORE_TUNING_PARSER_PARAMETERACCESSORUTILS_H

#include <cstring>
#include <limits>
#include <mutex>
#include <new>
#include <type_traits>

#include "aecore/aecore_types.h"
#include "platform/osutils.h"
#include "platform/velaallocator.h"
#include "tuning/parser/parameterfilesymboltable.h"
#include "tuning/parser/parameterfilesymboltableentry.h"
#include "tuning/parser/parameterlogging.h"
#include "tuning/parser/parametermodule.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parameterutils.h"
#include "tuning/parser/plist.h"

// Element type of a record member as the value interface sees it.
enum class ParameterAccessorType : UINT8
{
    Int8, UInt8, Int16, UInt16, Int32, UInt32, Int64, UInt64, Float, Double, Bool, Char, Enum, String, Record
};

// The value interface of a nested record type, reached through its own generated functions.
struct ParameterAccessorRecordFunctions
{
    bool (*GetValue)(const void* pRecord, const CHAR* pPath, CHAR* pOut, UINT32 size);
    bool (*SetValue)(void* pRecord, const CHAR* pPath, const CHAR* pValue);
    bool (*GetInfo)(const void* pRecord, const CHAR* pPath, PList<ParameterParserInfo>& list);
};

template <typename T>
struct ParameterAccessorRecordOf
{
    static bool GetValue(const void* pRecord, const CHAR* pPath, CHAR* pOut, UINT32 size)
    {
        return static_cast<const T*>(pRecord)->GetValue(pPath, pOut, size);
    }
    static bool SetValue(void* pRecord, const CHAR* pPath, const CHAR* pValue)
    {
        return static_cast<T*>(pRecord)->SetValue(pPath, pValue);
    }
    static bool GetInfo(const void* pRecord, const CHAR* pPath, PList<ParameterParserInfo>& list)
    {
        return static_cast<const T*>(pRecord)->GetInfo(pPath, list);
    }
    static constexpr ParameterAccessorRecordFunctions Functions = {&GetValue, &SetValue, &GetInfo};
};

// One member of a generated record, in declaration order.
struct ParameterAccessorMember
{
    const CHAR*                             Name;
    ParameterAccessorType                   Type;
    // A fixed array (of any dimensions, addressed by its flat index) or a variable one.
    bool                                    IsArray;
    // A variable array: a pointer at Offset, its element count at CountOffset.
    bool                                    IsVariable;
    UINT32                                  Offset;
    // Elements of a fixed array (all dimensions), 1 for a single value.
    UINT32                                  Count;
    UINT32                                  CountOffset;
    UINT32                                  ElementSize;
    // The nested record type's functions for Type Record.
    const ParameterAccessorRecordFunctions* Record;
};

class ParameterAccessor
{
public:
    // Decimals of a value as text: floating-point values 10, whole numbers 0.
    static UINT32 Decimals(ParameterAccessorType type)
    {
        return ((ParameterAccessorType::Float == type) || (ParameterAccessorType::Double == type)) ? 10 : 0;
    }

    static const CHAR* TypeWord(ParameterAccessorType type)
    {
        static const CHAR* const words[] = {"Int8",   "UInt8",  "Int16", "UInt16", "Int32",  "UInt32",
                                            "Int64",  "UInt64", "Float", "Double", "Bool",   "Char",
                                            "Enum",   "String", "Structure"};
        return words[static_cast<UINT32>(type)];
    }

    static bool GetValue(const ParameterAccessorMember* pMembers, UINT32 memberCount, const void* pRecord,
                         const CHAR* pPath, CHAR* pOut, UINT32 size)
    {
        Address address;
        if ((nullptr == pOut) || !Resolve(pMembers, memberCount, pRecord, pPath, address))
        {
            return false;
        }
        const ParameterAccessorMember& member = *address.pMember;
        if (nullptr == address.pElement)
        {
            return false;
        }
        if (ParameterAccessorType::Record == member.Type)
        {
            return member.Record->GetValue(address.pElement, address.pRest, pOut, size);
        }
        if ('\0' != address.pRest[0])
        {
            return false;
        }
        if (ParameterAccessorType::String == member.Type)
        {
            const CHAR*  pText  = LoadPointer<const CHAR>(address.pElement);
            const CHAR*  pShown = (nullptr != pText) ? pText : "";
            return Vela::OsUtils::StrLCpy(pOut, pShown, size) < size;
        }
        bool truncated = false;
        ParameterUtils::DoubleToString(ToDouble(member.Type, address.pElement), pOut, size, Decimals(member.Type),
                                       truncated);
        return !truncated;
    }

    static bool SetValue(const ParameterAccessorMember* pMembers, UINT32 memberCount, void* pRecord,
                         const CHAR* pPath, const CHAR* pValue)
    {
        Address address;
        if (!Resolve(pMembers, memberCount, pRecord, pPath, address))
        {
            return false;
        }
        const ParameterAccessorMember& member = *address.pMember;
        void* pElement = const_cast<void*>(address.pElement);
        if (nullptr == pElement)
        {
            return false;
        }
        if (ParameterAccessorType::Record == member.Type)
        {
            return member.Record->SetValue(pElement, address.pRest, pValue);
        }
        // Texts are blocks of the file that several instances may share: they are not changed in place.
        if (('\0' != address.pRest[0]) || (ParameterAccessorType::String == member.Type))
        {
            return false;
        }
        bool         ok    = false;
        const double value = ParameterUtils::StringToDouble(pValue, ok);
        if (!ok)
        {
            return false;
        }
        FromDouble(member.Type, pElement, value);
        return true;
    }

    static bool GetInfo(const ParameterAccessorMember* pMembers, UINT32 memberCount, const void* pRecord,
                        const CHAR* pPath, PList<ParameterParserInfo>& list)
    {
        if ((nullptr == pPath) || ('\0' == pPath[0]))
        {
            bool ok = true;
            for (UINT32 i = 0; i < memberCount; i++)
            {
                const ParameterAccessorMember& member = pMembers[i];
                const void* pElement = member.IsArray ? nullptr : static_cast<const BYTE*>(pRecord) + member.Offset;
                ok = AddInfo(list, member, member.Name, pElement, ElementCount(member, pRecord)) && ok;
            }
            return ok;
        }
        Address address;
        if (!Resolve(pMembers, memberCount, pRecord, pPath, address))
        {
            return false;
        }
        const ParameterAccessorMember& member = *address.pMember;
        if ((ParameterAccessorType::Record == member.Type) && (nullptr != address.pElement))
        {
            // The rest of the path goes on in the record; at its end the record lists its members.
            return member.Record->GetInfo(address.pElement, address.pRest, list);
        }
        if ('\0' != address.pRest[0])
        {
            return false;
        }
        const UINT32 count = (nullptr != address.pElement) ? 1 : ElementCount(member, pRecord);
        return AddInfo(list, member, "", address.pElement, count);
    }

    // LoadArray of a generated record: element i is loaded with params.Index = i.
    template <typename T>
    static bool LoadArray(ParameterLoadParameters& params, void* pDest, UINT32 count)
    {
        T*   pRecords = static_cast<T*>(pDest);
        bool ok       = (nullptr != pRecords) || (0 == count);
        for (UINT32 i = 0; (i < count) && ok; i++)
        {
            params.Index = i;
            ok           = pRecords[i].Load(params);
        }
        return ok;
    }

    template <typename T>
    static void* AllocArray(UINT32 count)
    {
        return VelaCalloc(count, sizeof(T), 8);
    }

    // The load function the module base calls with the top record.
    template <typename T>
    static bool LoadTop(ParameterLoadParameters& params, void* pRecord)
    {
        return static_cast<T*>(pRecord)->Load(params);
    }

    // Releases a loaded block of values or one text.
    template <typename T>
    static void Release(ParameterFileSymbolTable* pTable, T*& pBlock)
    {
        void* pAny = const_cast<void*>(static_cast<const void*>(pBlock));
        ParameterFileSymbolTable::ReleaseBlock(pTable, pAny);
        pBlock = nullptr;
    }

    // Releases a variable array of records; what the records hold goes with the last reference to the array.
    template <typename T>
    static void ReleaseRecords(ParameterFileSymbolTable* pTable, T*& pRecords, UINT32& count, UINT32& allocated)
    {
        void* pAny = pRecords;
        ParameterFileSymbolTable::ReleaseBlock(pTable, pAny, &UnloadRecords<T>, allocated);
        pRecords  = nullptr;
        count     = 0;
        allocated = 0;
    }

    // Releases a variable array of texts: the texts may be shared, the array of pointers is the instance's own.
    static void ReleaseStrings(ParameterFileSymbolTable* pTable, CHAR**& pTexts, UINT32& count, UINT32& allocated)
    {
        void* pAny = static_cast<void*>(pTexts);
        ParameterFileSymbolTable::ReleaseBlock(pTable, pAny, &UnloadStrings, allocated);
        pTexts    = nullptr;
        count     = 0;
        allocated = 0;
    }

    static void ReleaseStringArray(ParameterFileSymbolTable* pTable, CHAR** pTexts, UINT32 count)
    {
        UnloadStrings(pTable, pTexts, count);
    }

    // A new instance of a generated module class for ParameterModule::CreateInstance, its record keyed like it.
    template <typename TClass>
    static ParameterModule* MakeInstance(const CHAR* pName, ModuleData* pData, UINT32 key)
    {
        TClass* pNew = new (std::nothrow) TClass(pName, pData);
        if (nullptr != pNew)
        {
            pNew->SymbolTableID = key;
        }
        return pNew;
    }

    // UnloadModule of a module class, under the module's mutex.
    template <typename TRecord>
    static bool UnloadModule(ParameterMutex& mutex, std::atomic<bool>& loaded, const ModuleData* pData,
                             const CHAR* pName, TRecord& record)
    {
        std::lock_guard<ParameterMutex> lock(mutex);
        if (loaded.load())
        {
            ParameterFileSymbolTable* pTable = (nullptr != pData) ? pData->SymbolTable : nullptr;
            if (nullptr == pTable)
            {
                ParameterLogging::Write((nullptr != pData) ? pData->SetManager : nullptr, Error,
                                        "UnloadModule %s called with nullptr Data->SymbolTable object\n", pName);
            }
            record.Unload(pTable);
            loaded = false;
        }
        return true;
    }

private:
    struct Address
    {
        const ParameterAccessorMember* pMember;
        // The addressed element; null for a whole array.
        const void*                    pElement;
        // The path behind the member's part.
        const CHAR*                    pRest;
    };

    template <typename T>
    static T* LoadPointer(const void* pField)
    {
        T* pValue = nullptr;
        std::memcpy(&pValue, pField, sizeof(pValue));
        return pValue;
    }

    static UINT32 ElementCount(const ParameterAccessorMember& member, const void* pRecord)
    {
        if (!member.IsVariable)
        {
            return member.Count;
        }
        UINT32 count = 0;
        std::memcpy(&count, static_cast<const BYTE*>(pRecord) + member.CountOffset, sizeof(count));
        return count;
    }

    // Splits off the first name of the path and finds its member and element. An array takes an index below its
    // count (a whole array only for GetInfo, which Resolve leaves to its caller); a single value takes none.
    static bool Resolve(const ParameterAccessorMember* pMembers, UINT32 memberCount, const void* pRecord,
                        const CHAR* pPath, Address& address)
    {
        if ((nullptr == pPath) || (nullptr == pRecord))
        {
            return false;
        }
        CHAR         name[129];
        INT32        index    = -1;
        const UINT32 consumed = ParameterUtils::GetVariable(pPath, name, index, sizeof(name));
        address.pRest         = pPath + consumed;
        for (UINT32 i = 0; i < memberCount; i++)
        {
            const ParameterAccessorMember& member = pMembers[i];
            if (0 != std::strcmp(name, member.Name))
            {
                continue;
            }
            address.pMember    = &member;
            const BYTE* pField = static_cast<const BYTE*>(pRecord) + member.Offset;
            if (!member.IsArray)
            {
                address.pElement = pField;
                return (index < 0);
            }
            if (index < 0)
            {
                // A whole array has no value of its own and no members to descend into.
                address.pElement = nullptr;
                return ('\0' == address.pRest[0]);
            }
            if (static_cast<UINT32>(index) >= ElementCount(member, pRecord))
            {
                return false;
            }
            const BYTE* pBase = member.IsVariable ? LoadPointer<const BYTE>(pField) : pField;
            if (nullptr == pBase)
            {
                return false;
            }
            address.pElement = pBase + static_cast<SIZE_T>(index) * member.ElementSize;
            return true;
        }
        return false;
    }

    static bool AddInfo(PList<ParameterParserInfo>& list, const ParameterAccessorMember& member, const CHAR* pName,
                        const void* pElement, UINT32 count)
    {
        ParameterParserInfo info = {};
        info.Name                = pName;
        info.Type                = TypeWord(member.Type);
        info.isArray             = member.IsArray && (nullptr == pElement);
        info.isPointer           = member.IsVariable || (ParameterAccessorType::String == member.Type);
        info.Count               = count;
        if ((nullptr != pElement) && (ParameterAccessorType::Record != member.Type))
        {
            if (ParameterAccessorType::String == member.Type)
            {
                const CHAR* pText = LoadPointer<const CHAR>(pElement);
                Vela::OsUtils::StrLCpy(info.Value, (nullptr != pText) ? pText : "", sizeof(info.Value));
            }
            else
            {
                bool truncated = false;
                ParameterUtils::DoubleToString(ToDouble(member.Type, pElement), info.Value, sizeof(info.Value),
                                               Decimals(member.Type), truncated);
            }
        }
        return list.Add(info);
    }

    template <typename T>
    static double Get(const void* pElement)
    {
        T value;
        std::memcpy(&value, pElement, sizeof(value));
        return static_cast<double>(value);
    }

    // Stores a number in a field of type T; values outside T's range are clamped, never undefined.
    template <typename T>
    static void Put(void* pElement, double value)
    {
        T stored = T();
        if constexpr (std::is_floating_point<T>::value)
        {
            const double limit = static_cast<double>(std::numeric_limits<T>::max());
            stored = static_cast<T>((value > limit) ? limit : ((value < -limit) ? -limit : value));
        }
        else
        {
            if (value != value)
            {
                stored = T();
            }
            else if (value <= static_cast<double>(std::numeric_limits<T>::min()))
            {
                stored = std::numeric_limits<T>::min();
            }
            else if (value >= static_cast<double>(std::numeric_limits<T>::max()))
            {
                stored = std::numeric_limits<T>::max();
            }
            else
            {
                stored = static_cast<T>(value);
            }
        }
        std::memcpy(pElement, &stored, sizeof(stored));
    }

    static double ToDouble(ParameterAccessorType type, const void* pElement)
    {
        switch (type)
        {
            case ParameterAccessorType::Int8:   return Get<INT8>(pElement);
            case ParameterAccessorType::UInt8:  return Get<UINT8>(pElement);
            case ParameterAccessorType::Int16:  return Get<INT16>(pElement);
            case ParameterAccessorType::UInt16: return Get<UINT16>(pElement);
            case ParameterAccessorType::UInt32: return Get<UINT32>(pElement);
            case ParameterAccessorType::Int64:  return Get<INT64>(pElement);
            case ParameterAccessorType::UInt64: return Get<UINT64>(pElement);
            case ParameterAccessorType::Float:  return Get<FLOAT>(pElement);
            case ParameterAccessorType::Double: return Get<DOUBLE>(pElement);
            case ParameterAccessorType::Char:   return Get<CHAR>(pElement);
            default:                            return Get<INT32>(pElement);  // Int32, Bool, Enum
        }
    }

    static void FromDouble(ParameterAccessorType type, void* pElement, double value)
    {
        switch (type)
        {
            case ParameterAccessorType::Int8:   Put<INT8>(pElement, value); break;
            case ParameterAccessorType::UInt8:  Put<UINT8>(pElement, value); break;
            case ParameterAccessorType::Int16:  Put<INT16>(pElement, value); break;
            case ParameterAccessorType::UInt16: Put<UINT16>(pElement, value); break;
            case ParameterAccessorType::UInt32: Put<UINT32>(pElement, value); break;
            case ParameterAccessorType::Int64:  Put<INT64>(pElement, value); break;
            case ParameterAccessorType::UInt64: Put<UINT64>(pElement, value); break;
            case ParameterAccessorType::Float:  Put<FLOAT>(pElement, value); break;
            case ParameterAccessorType::Double: Put<DOUBLE>(pElement, value); break;
            case ParameterAccessorType::Char:   Put<CHAR>(pElement, value); break;
            default:                            Put<INT32>(pElement, value); break;  // Int32, Bool, Enum
        }
    }

    template <typename T>
    static void UnloadRecords(ParameterFileSymbolTable* pTable, void* pBlock, UINT32 count)
    {
        T* pRecords = static_cast<T*>(pBlock);
        for (UINT32 i = 0; i < count; i++)
        {
            pRecords[i].Unload(pTable);
        }
    }

    static void UnloadStrings(ParameterFileSymbolTable* pTable, void* pBlock, UINT32 count)
    {
        CHAR** pTexts = static_cast<CHAR**>(pBlock);
        for (UINT32 i = 0; i < count; i++)
        {
            Release(pTable, pTexts[i]);
        }
    }
};

#endif // AECORE_TUNING_PARSER_PARAMETERACCESSORUTILS_H
