// One symbol or data table entry and the member readers that generated module loaders call on it.
#ifndef AECORE_TUNING_PARSER_PARAMETERFILESYMBOLTABLEENTRY_H
#define AECORE_TUNING_PARSER_PARAMETERFILESYMBOLTABLEENTRY_H

#include <cstdarg>

#include "aecore/aecore_types.h"
#include "platform/velaallocator.h"
#include "tuning/parser/parameterdefinition.h"
#include "tuning/parser/parameterutils.h"

class ModuleData;
class ParameterFileSymbolTable;
class ParameterFileSymbolTableEntry;

// Where and how a generated loader reads one record.
struct ParameterLoadParameters
{
    ParameterFileSymbolTableEntry* Entry;
    UINT64                         NameHash;
    bool                           UseParent;
    bool                           UseParentOffset;
    ParameterDefinitionElement*    Element;
    UINT32                         Position;
    UINT32                         Index;
    UINT32                         LoadDataLimit;
};

// Loads count records of a generated type into dest, element i with params.Index = i.
typedef bool (*ParameterLoadArrayFn)(ParameterLoadParameters& params, void* pDest, UINT32 count);
// Zeroed storage (VelaCalloc) for count records of a generated type.
typedef void* (*ParameterAllocArrayFn)(UINT32 count);

class ParameterFileSymbolTableEntry
{
public:
    static const UINT32 NoLimit = 0xFFFFFFFFu;

    ParameterFileSymbolTableEntry() = default;
    ~ParameterFileSymbolTableEntry() { FreeData(); }
    ParameterFileSymbolTableEntry(const ParameterFileSymbolTableEntry&) = delete;
    ParameterFileSymbolTableEntry& operator=(const ParameterFileSymbolTableEntry&) = delete;

    // Makes this entry a view of another (its data stays owned by the other).
    void CopyFrom(const ParameterFileSymbolTableEntry& other);
    void FreeData();

    // Reads the entry at pos; module entries also read name or hash, version and mode, and may make a ModuleData.
    bool Load(const BYTE* pBuffer, SIZE_T length, UINT32 pos, bool isModule, bool makeModuleData);

    // Start of a generated record's load: places the entry where the file has the record, reads its limit and
    // prepares the parameters for its members. False (after a log line) if the file lacks the record.
    bool BeginStructure(ParameterLoadParameters& params, ParameterLoadParameters& members, UINT32& limit);
    // End of a generated record's load.
    void EndStructure(UINT32 limit) { UpdatePosition(limit); }
    // Start of a structure: returns where its bytes end, bounded by limit and the entry's size.
    UINT32 ReadLoadDataLimit(UINT32 limit);
    // End of a structure: jumps to its end as the file gives it.
    void   UpdatePosition(UINT32 limit);
    // The file's description of the member params names, with the position moved to where the file has it.
    ParameterDefinitionElement* AdjustPositionAndGetElement(ParameterLoadParameters& params, bool useOwn,
                                                            bool& drift);
    // Count and, for out-of-line members, the entry holding the elements, decided by the file's description.
    bool GetCountAndPointerEntry(UINT32& count, ParameterFileSymbolTableEntry*& pEntry,
                                 ParameterFileSymbolTableEntry& local, UINT32 minSize, UINT32 expectedCount,
                                 UINT64 nameHash, bool codeIsPointer, bool codeIsFixed, bool codeAllocates,
                                 const ParameterDefinitionElement* pElement, bool& adjusted, UINT32 limit,
                                 bool isStructure = false);
    // A shared block for this entry's duplicate group and a member kind, with a reference taken; null if none.
    // pCount, if given, receives the number of elements the shared block holds.
    void* SetFromDupObject(INT32 location, UINT32* pCount = nullptr);

    template <typename T>
    bool ReadSimpleTypeFixedArray(T* pDest, UINT32 count, ParameterLoadParameters& params);
    template <typename T>
    bool ReadSimpleTypeArray(T*& pDest, UINT32& count, UINT32& allocated, UINT32 maxCount,
                             ParameterLoadParameters& params, INT32 location);
    bool  ReadStructureFixedArray(ParameterLoadArrayFn loadFn, void* pDest, UINT32 count,
                                  ParameterLoadParameters& params);
    void* ReadStructureArray(ParameterLoadArrayFn loadFn, ParameterAllocArrayFn allocFn, UINT32& count,
                             UINT32& allocated, UINT32 maxCount, UINT32 recordSize, ParameterLoadParameters& params,
                             INT32 location);
    void* ReadOptionalStructure(ParameterLoadArrayFn loadFn, ParameterAllocArrayFn allocFn, UINT32& count,
                                UINT32& allocated, UINT32 recordSize, ParameterLoadParameters& params);
    bool  ReadString(CHAR*& pDest, ParameterLoadParameters& params, INT32 location);
    bool  ReadStringFixedArray(CHAR** pDest, UINT32 count, ParameterLoadParameters& params, INT32 location);
    bool  ReadStringArray(CHAR**& pDest, UINT32& count, UINT32& allocated, UINT32 maxCount,
                          ParameterLoadParameters& params, INT32 location);
    bool  ReadOptionalString(CHAR*& pDest, UINT32& count, UINT32& allocated, ParameterLoadParameters& params,
                             INT32 location);

    void LogMessage(bool isError, const CHAR* pFormat, ...) __attribute__((format(printf, 3, 4)));
    // Elements to read when the file and the code disagree on a count: the smaller one, with a log line.
    UINT32 ReadableCount(UINT32 binaryCount, UINT32 count, UINT64 nameHash);

    const IParameterLoggingAPI* Log() const;
    BYTE                        Alignment() const;
    bool                        VersionAtLeast(UINT16 major) const;

    ParameterFileSymbolTable* Table        = nullptr;
    UINT32                    ID           = 0;
    UINT32                    DuplicateID  = 0;
    BYTE*                     Data         = nullptr;
    bool                      DataAllocated = false;
    UINT32                    Position     = 0;
    UINT32                    DataSize     = 0;
    ModuleData*               Module       = nullptr;
    // Fields of a module entry as read.
    UINT64                    NameHash     = 0;
    VersionUnion              Version      = {};
    UINT32                    ModeId       = 0;
    UINT32                    DataOffset   = 0;
    bool                      Present      = false;
    bool                      IsModule     = false;

private:
    // The binary's element of the member, or null with the "entry not found" line when the file lacks it.
    bool  FindMember(ParameterLoadParameters& params, const CHAR* pReader, ParameterDefinitionElement*& pElement,
                     bool& drift);
    // Out-of-line text at this entry's position: UINT32 byte count and reference.
    bool  ReadStringAt(CHAR*& pDest, const ParameterDefinitionElement* pElement, UINT32 limit, INT32 location,
                       bool& adjusted);
    bool  ReadStrings(CHAR** pDest, UINT32 count, UINT32 limit, INT32 location);
    void  MarkVerified(ParameterDefinitionElement* pElement, bool drift, bool adjusted, bool codeIsPointer,
                       bool codeIsFixed, UINT32 codeCount, ParameterDefinitionType codeType);
    void  SetDupObject(INT32 location, void* pObject, UINT32 count);
    bool  ReadRaw(void* pDest, UINT32 size, UINT32 limit);
    ParameterLoadParameters NestedParams(const ParameterLoadParameters& params, ParameterFileSymbolTableEntry* pEntry,
                                         ParameterDefinitionElement* pElement, bool outOfLine, UINT32 shift) const;
};

template <typename T>
bool ParameterFileSymbolTableEntry::ReadSimpleTypeFixedArray(T* pDest, UINT32 count, ParameterLoadParameters& params)
{
    ParameterDefinitionElement* pElement = nullptr;
    bool                        drift    = false;
    if (!FindMember(params, "ReadSimpleTypeFixedArray", pElement, drift))
    {
        return true;
    }
    UINT32                         binaryCount = count;
    ParameterFileSymbolTableEntry* pSource     = this;
    ParameterFileSymbolTableEntry  local;
    bool                           adjusted    = false;
    if (!GetCountAndPointerEntry(binaryCount, pSource, local, sizeof(T), count, params.NameHash, false,
                                 count >= 2, false, pElement, adjusted, params.LoadDataLimit))
    {
        return false;
    }
    if (nullptr == pSource)
    {
        return true;
    }
    const UINT32 readCount = ReadableCount(binaryCount, count, params.NameHash);
    // Inline elements end at the structure's limit; out-of-line ones at their entry's size.
    const SIZE_T length = ((pSource != this) || (DataSize < params.LoadDataLimit)) ? pSource->DataSize
                                                                                  : params.LoadDataLimit;
    const ParameterDefinitionElement* pRead = ((nullptr != pElement) && (nullptr != pElement->Info)) ? pElement
                                                                                                    : nullptr;
    bool ok = true;
    for (UINT32 i = 0; (i < readCount) && ok; i++)
    {
        ok = ParameterUtils::Read<T>(pDest[i], pRead, pSource->Data, length, pSource->Position, Alignment(), Log());
    }
    // Elements of the file beyond what the code holds are passed over.
    if (ok && (pSource == this) && (binaryCount > readCount))
    {
        const UINT32 size = (nullptr != pRead) ? pRead->Info->GetSize() : static_cast<UINT32>(sizeof(T));
        const UINT64 skip = static_cast<UINT64>(binaryCount - readCount) * ParameterUtils::FieldSize(size, Alignment());
        Position = static_cast<UINT32>(((Position + skip) > DataSize) ? DataSize : (Position + skip));
    }
    MarkVerified(pElement, drift, adjusted, false, count >= 2, (binaryCount == count) ? count : 0,
                 ParameterUtils::TypeOf<T>());
    return ok;
}

template <typename T>
bool ParameterFileSymbolTableEntry::ReadSimpleTypeArray(T*& pDest, UINT32& count, UINT32& allocated,
                                                        UINT32 maxCount, ParameterLoadParameters& params,
                                                        INT32 location)
{
    pDest     = nullptr;
    count     = 0;
    allocated = 0;
    ParameterDefinitionElement* pElement = nullptr;
    bool                        drift    = false;
    if (!FindMember(params, "ReadSimpleTypeArray", pElement, drift))
    {
        return true;
    }
    UINT32                         binaryCount = 0;
    ParameterFileSymbolTableEntry* pSource     = this;
    ParameterFileSymbolTableEntry  local;
    bool                           adjusted    = false;
    if (!GetCountAndPointerEntry(binaryCount, pSource, local, sizeof(T), 0, params.NameHash, true, false, true,
                                 pElement, adjusted, params.LoadDataLimit))
    {
        return false;
    }
    if ((nullptr == pSource) || (0 == binaryCount))
    {
        return true;
    }
    static_cast<void>(maxCount);
    const bool outOfLine = (pSource != this);
    if (outOfLine)
    {
        UINT32 sharedCount = 0;
        void*  pShared     = pSource->SetFromDupObject(location, &sharedCount);
        if (nullptr != pShared)
        {
            // Never more than the shared block holds.
            pDest     = static_cast<T*>(pShared);
            count     = (binaryCount < sharedCount) ? binaryCount : sharedCount;
            allocated = count;
            return true;
        }
    }
    T* pArray = static_cast<T*>(VelaCalloc(binaryCount, sizeof(T), 8));
    if (nullptr == pArray)
    {
        LogMessage(true, "Failed to allocate %u elements for 0x%llx\n", binaryCount,
                   static_cast<unsigned long long>(params.NameHash));
        return false;
    }
    const ParameterDefinitionElement* pRead = ((nullptr != pElement) && (nullptr != pElement->Info)) ? pElement
                                                                                                    : nullptr;
    const bool ok = ParameterUtils::ReadArray<T>(pArray, binaryCount, pRead, pSource->Data, pSource->DataSize,
                                                 pSource->Position, Alignment(), Log());
    if (outOfLine)
    {
        pSource->SetDupObject(location, pArray, binaryCount);
    }
    pDest     = pArray;
    count     = binaryCount;
    allocated = binaryCount;
    MarkVerified(pElement, drift, adjusted, true, false, binaryCount, ParameterUtils::TypeOf<T>());
    return ok;
}

#endif // AECORE_TUNING_PARSER_PARAMETERFILESYMBOLTABLEENTRY_H
