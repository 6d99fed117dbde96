// One symbol or data table entry and the member readers that generated module loaders call on it.
#include "tuning/parser/parameterfilesymboltableentry.h"

#include <cstdio>

#include "platform/osutils.h"
#include "tuning/parser/parameterfilesymboltable.h"
#include "tuning/parser/parametermodule.h"

void ParameterFileSymbolTableEntry::CopyFrom(const ParameterFileSymbolTableEntry& other)
{
    FreeData();
    Table         = other.Table;
    ID            = other.ID;
    DuplicateID   = other.DuplicateID;
    Data          = other.Data;
    DataAllocated = false;
    Position      = 0;
    DataSize      = other.DataSize;
    Module        = nullptr;
    NameHash      = other.NameHash;
    Version       = other.Version;
    ModeId        = other.ModeId;
    DataOffset    = other.DataOffset;
    Present       = other.Present;
    IsModule      = other.IsModule;
}

void ParameterFileSymbolTableEntry::FreeData()
{
    if (DataAllocated)
    {
        delete[] Data;
    }
    Data          = nullptr;
    DataAllocated = false;
}

const IParameterLoggingAPI* ParameterFileSymbolTableEntry::Log() const
{
    return (nullptr != Table) ? Table->Log() : nullptr;
}

BYTE ParameterFileSymbolTableEntry::Alignment() const
{
    return (nullptr != Table) ? Table->Alignment() : 1;
}

bool ParameterFileSymbolTableEntry::VersionAtLeast(UINT16 major) const
{
    return (nullptr != Table) && (Table->FileVersion() >= VersionUnion::Make(major, 0, 0));
}

void ParameterFileSymbolTableEntry::LogMessage(bool isError, const CHAR* pFormat, ...)
{
    CHAR    text[4096];
    va_list args;
    va_start(args, pFormat);
    Vela::OsUtils::VSNPrintF(text, sizeof(text), pFormat, args);
    va_end(args);
    ParameterLogging::Write(Log(), isError ? Error : Warning, "%s", text);
}

bool ParameterFileSymbolTableEntry::Load(const BYTE* pBuffer, SIZE_T length, UINT32 pos, bool isModule,
                                         bool makeModuleData)
{
    const IParameterLoggingAPI* pLog      = Log();
    const BYTE                  alignment = Alignment();
    const VersionUnion          version   = Table->FileVersion();
    IsModule                              = isModule;
    bool ok                               = true;
    if (version < Table->StructSymbolsVersion)
    {
        ok = ParameterUtils::ReadValue(ID, pBuffer, length, pos, alignment, pLog);
    }
    if (ok && isModule)
    {
        if (version < Table->StructSymbolsVersion)
        {
            // Older files name the module in text; the text is not kept and the name hash stays 0.
            BYTE name[32];
            ok       = ParameterUtils::ReadBuffer(name, pBuffer, length, pos, sizeof(name), alignment, pLog);
            NameHash = 0;
        }
        else
        {
            ok = ParameterUtils::ReadValue(NameHash, pBuffer, length, pos, alignment, pLog);
        }
        ok = ok && ParameterUtils::ReadValue(Version.Value, pBuffer, length, pos, alignment, pLog);
        if (ok && (1 == alignment) && (version < Table->AlignedEndVersion))
        {
            UINT64 reserved = 0;
            ok              = ParameterUtils::ReadValue(reserved, pBuffer, length, pos, alignment, pLog);
        }
        ok = ok && ParameterUtils::ReadValue(ModeId, pBuffer, length, pos, alignment, pLog);
    }
    ok = ok && ParameterUtils::ReadValue(DataOffset, pBuffer, length, pos, alignment, pLog);
    ok = ok && ParameterUtils::ReadValue(DataSize, pBuffer, length, pos, alignment, pLog);
    if (!ok)
    {
        return false;
    }
    DuplicateID = ID;
    if (version > Table->AlignedEndVersion)
    {
        if (!ParameterUtils::ReadValue(DuplicateID, pBuffer, length, pos, alignment, pLog))
        {
            return false;
        }
        const UINT32 count = isModule ? Table->Count() : Table->DTCount();
        if (DuplicateID > count)
        {
            LogMessage(true,
                       isModule ? "Invalid DuplicateID value %u, should be less than module table count: %u\n"
                                : "Invalid DuplicateID value %u, should be less than data table count: %u\n",
                       DuplicateID, count);
        }
    }
    Present = true;
    if (isModule && makeModuleData && (ParameterNoLink != ModeId) && (ParameterNoLinkAlt != ModeId))
    {
        Module = Table->MakeModuleData(*this);
    }
    return true;
}

bool ParameterFileSymbolTableEntry::ReadRaw(void* pDest, UINT32 size, UINT32 limit)
{
    const UINT32 bound = (limit < DataSize) ? limit : DataSize;
    if ((nullptr == Data) || (static_cast<UINT64>(Position) + size > bound))
    {
        LogMessage(true, "Insufficient data to read variable from symbol table entry\n");
        return false;
    }
    std::memcpy(pDest, Data + Position, size);
    Position += ParameterUtils::FieldSize(size, Alignment());
    return true;
}

UINT32 ParameterFileSymbolTableEntry::ReadLoadDataLimit(UINT32 limit)
{
    if (!VersionAtLeast(6))
    {
        return NoLimit;
    }
    const UINT32 bound = (limit < DataSize) ? limit : DataSize;
    UINT32       size  = 0;
    if (!ReadRaw(&size, sizeof(size), bound))
    {
        return (Position < bound) ? Position : bound;
    }
    const UINT64 result = static_cast<UINT64>(Position) + size;
    if (result > bound)
    {
        LogMessage(false, "Load limit (%u) exceeds available size (%u). XSD structure modified\n",
                   static_cast<UINT32>((result > 0xFFFFFFFFull) ? 0xFFFFFFFFull : result), bound);
        return bound;
    }
    return static_cast<UINT32>(result);
}

void ParameterFileSymbolTableEntry::UpdatePosition(UINT32 limit)
{
    if (limit >= 0xFFFFFFFEu)
    {
        return;
    }
    if (Position != limit)
    {
        LogMessage(false, "Binary file structure bytes (%u) does not match expected bytes (%u). XSD structure modified\n",
                   limit, Position);
    }
    Position = limit;
}

ParameterDefinitionElement* ParameterFileSymbolTableEntry::AdjustPositionAndGetElement(ParameterLoadParameters& params,
                                                                                       bool useOwn, bool& drift)
{
    drift = false;
    if (nullptr == params.Element)
    {
        return nullptr;
    }
    ParameterDefinitionElement* pElement = nullptr;
    if (params.UseParent)
    {
        pElement = params.Element;
        if (pElement->NameHash != params.NameHash)
        {
            LogMessage(false,
                       "%s: Use Parent requested, but parent name hash (0x%llx) does not match variable name hash "
                       "(0x%llx)\n",
                       "AdjustPositionAndGetElement", static_cast<unsigned long long>(pElement->NameHash),
                       static_cast<unsigned long long>(params.NameHash));
        }
    }
    else
    {
        const ParameterDefinitionElementInfo* pInfo = params.Element->Info;
        if ((nullptr == pInfo) || (nullptr == pInfo->Structure))
        {
            return nullptr;
        }
        auto found = pInfo->Structure->Children.find(params.NameHash);
        if (pInfo->Structure->Children.end() == found)
        {
            return nullptr;
        }
        pElement = found->second;
    }
    if (nullptr == pElement->Info)
    {
        // Matched the code on an earlier load: the code's layout holds.
        return pElement;
    }
    const UINT64 structureSize = (nullptr != pElement->Info->Structure) ? pElement->Info->Structure->Size : 0;
    const UINT64 expected      = params.Position + structureSize * params.Index +
                            (params.UseParentOffset ? pElement->Info->ParentOffset : 0);
    if (expected != Position)
    {
        drift = true;
        LogMessage(false, "Binary file position (%u) differs from expected (%u), XSD structure modified\n", Position,
                   static_cast<UINT32>(expected));
        if ((expected < params.LoadDataLimit) && (expected <= DataSize))
        {
            Position = static_cast<UINT32>(expected);
        }
        else
        {
            LogMessage(true, "Error Reading 0x%llx: Adjusted position (%u) exceeds load limit (%u)\n",
                       static_cast<unsigned long long>(params.NameHash), static_cast<UINT32>(expected),
                       params.LoadDataLimit);
        }
    }
    else if (useOwn)
    {
        pElement->Verified = true;
    }
    return pElement;
}

bool ParameterFileSymbolTableEntry::GetCountAndPointerEntry(UINT32& count, ParameterFileSymbolTableEntry*& pEntry,
                                                            ParameterFileSymbolTableEntry& local, UINT32 minSize,
                                                            UINT32 expectedCount, UINT64 nameHash, bool codeIsPointer,
                                                            bool codeIsFixed, bool codeAllocates,
                                                            const ParameterDefinitionElement* pElement,
                                                            bool& adjusted, UINT32 limit, bool isStructure)
{
    static_cast<void>(nameHash);
    adjusted                                    = false;
    pEntry                                      = this;
    const ParameterDefinitionElementInfo* pInfo = (nullptr != pElement) ? pElement->Info : nullptr;
    bool                                  outOfLine;
    if (nullptr != pInfo)
    {
        outOfLine = pInfo->IsPointer() || (pInfo->IsString() && !codeIsFixed && !codeAllocates);
        if (!outOfLine)
        {
            if (VersionAtLeast(7))
            {
                if (pInfo->IsFixed())
                {
                    if (!ReadRaw(&count, sizeof(count), limit))
                    {
                        return false;
                    }
                    adjusted = (count != pInfo->MaxCount);
                }
                else
                {
                    count = pInfo->MaxCount;
                }
            }
            return true;
        }
    }
    else
    {
        outOfLine = codeIsPointer;
        if (!outOfLine)
        {
            if (codeIsFixed && (expectedCount >= 2) && VersionAtLeast(7))
            {
                return ReadRaw(&count, sizeof(count), limit);
            }
            return true;
        }
    }

    if (!ReadRaw(&count, sizeof(count), limit))
    {
        return false;
    }
    if (!Table->ReadPointerEntry(local, *this))
    {
        // A null or unknown reference reads as empty.
        count  = 0;
        pEntry = nullptr;
        return true;
    }
    pEntry      = &local;
    UINT32 size = minSize;
    if (nullptr != pInfo)
    {
        size = pInfo->IsFloat() ? 4 : pInfo->GetSize();
    }
    else if (isStructure && !VersionAtLeast(6) && (size > 4))
    {
        size -= 4;
    }
    size = (0 == size) ? 1 : size;
    if (static_cast<UINT64>(count) * size > local.DataSize)
    {
        const UINT32 fits     = local.DataSize / size;
        const UINT32 newCount = (fits > expectedCount) ? fits : expectedCount;
        LogMessage(false,
                   "Minimun %ld size (%u) * count (%u) exceeds avaialable data (%u), setting count to %u to prevent "
                   "allocation errors\n",
                   static_cast<long>(minSize), size, count, local.DataSize, newCount);
        count    = newCount;
        adjusted = true;
    }
    return true;
}

void* ParameterFileSymbolTableEntry::SetFromDupObject(INT32 location, UINT32* pCount)
{
    return (nullptr != Table) ? Table->GetDupObject(IsModule, ID, location, pCount) : nullptr;
}

void ParameterFileSymbolTableEntry::SetDupObject(INT32 location, void* pObject, UINT32 count)
{
    if (nullptr != Table)
    {
        Table->SetDupObject(IsModule, ID, pObject, location, count);
    }
}

bool ParameterFileSymbolTableEntry::BeginStructure(ParameterLoadParameters& params, ParameterLoadParameters& members,
                                                   UINT32& limit)
{
    ParameterDefinitionElement* pElement = nullptr;
    if ((nullptr != params.Element) && ((nullptr != params.Element->Info) || params.UseParent))
    {
        bool drift = false;
        pElement   = AdjustPositionAndGetElement(params, true, drift);
        if (nullptr == pElement)
        {
            LogMessage(false, "%s: 0x%llx entry not found in the binary file, all values will be 0\n", "Load",
                       static_cast<unsigned long long>(params.NameHash));
            return false;
        }
    }
    const UINT32 start     = Position;
    limit                  = ReadLoadDataLimit(params.LoadDataLimit);
    members                = params;
    members.Entry          = this;
    members.UseParent      = false;
    members.UseParentOffset = true;
    // A record that matched the code before has no description left: its members follow the code's layout.
    members.Element        = ((nullptr != pElement) && (nullptr != pElement->Info)) ? pElement : nullptr;
    members.Position       = start;
    members.Index          = 0;
    members.LoadDataLimit  = limit;
    return true;
}

bool ParameterFileSymbolTableEntry::FindMember(ParameterLoadParameters& params, const CHAR* pReader,
                                               ParameterDefinitionElement*& pElement, bool& drift)
{
    pElement = nullptr;
    drift    = false;
    if ((nullptr == params.Element) || (nullptr == params.Element->Info))
    {
        return true;
    }
    pElement = AdjustPositionAndGetElement(params, false, drift);
    if (nullptr == pElement)
    {
        LogMessage(false, "%s: 0x%llx entry not found in the binary file, all values will be 0\n", pReader,
                   static_cast<unsigned long long>(params.NameHash));
        return false;
    }
    return true;
}

void ParameterFileSymbolTableEntry::MarkVerified(ParameterDefinitionElement* pElement, bool drift, bool adjusted,
                                                 bool codeIsPointer, bool codeIsFixed, UINT32 codeCount,
                                                 ParameterDefinitionType codeType)
{
    if ((nullptr == pElement) || (nullptr == pElement->Info) || drift || adjusted)
    {
        return;
    }
    const ParameterDefinitionElementInfo* pInfo = pElement->Info;
    if (ParameterDefinitionType_String == codeType)
    {
        // A single text is out of line whatever its flags say.
        if (pInfo->IsString() && (codeIsFixed == pInfo->IsFixed()) &&
            (!codeIsFixed || (codeCount == pInfo->MaxCount)))
        {
            pElement->Verified = true;
        }
        return;
    }
    bool same = (codeIsPointer == pInfo->IsPointer()) && (codeIsFixed == pInfo->IsFixed());
    if (!codeIsPointer)
    {
        same = same && (codeCount == (codeIsFixed ? pInfo->MaxCount : ((0 == codeCount) ? 0 : 1)));
    }
    if (ParameterDefinitionType_Float == codeType)
    {
        same = same && !codeIsPointer && (pInfo->IsFloat() || (ParameterDefinitionType_Float == pInfo->Type));
    }
    else
    {
        same = same && (codeType == pInfo->Type);
    }
    if (same)
    {
        pElement->Verified = true;
    }
}

ParameterLoadParameters ParameterFileSymbolTableEntry::NestedParams(const ParameterLoadParameters& params,
                                                                    ParameterFileSymbolTableEntry* pEntry,
                                                                    ParameterDefinitionElement* pElement,
                                                                    bool outOfLine, UINT32 shift) const
{
    ParameterLoadParameters nested = params;
    nested.Entry                   = pEntry;
    nested.Index                   = 0;
    if (nullptr == pElement)
    {
        nested.Element = nullptr;
    }
    if (outOfLine)
    {
        // The records are the whole data of another entry, described by the member's own element.
        nested.Element         = pElement;
        nested.UseParent       = (nullptr != pElement);
        nested.UseParentOffset = false;
        nested.Position        = 0;
        nested.LoadDataLimit   = pEntry->DataSize;
    }
    else
    {
        nested.UseParent       = false;
        nested.UseParentOffset = true;
        nested.Position        = params.Position + shift;
    }
    return nested;
}

bool ParameterFileSymbolTableEntry::ReadStructureFixedArray(ParameterLoadArrayFn loadFn, void* pDest, UINT32 count,
                                                            ParameterLoadParameters& params)
{
    ParameterDefinitionElement* pElement = nullptr;
    bool                        drift    = false;
    if ((nullptr == loadFn) || !FindMember(params, "ReadStructureFixedArray", pElement, drift))
    {
        return true;
    }
    UINT32                         binaryCount = count;
    ParameterFileSymbolTableEntry* pSource     = this;
    ParameterFileSymbolTableEntry  local;
    bool                           adjusted    = false;
    const UINT32                   before      = Position;
    if (!GetCountAndPointerEntry(binaryCount, pSource, local, 0, count, params.NameHash, false, count >= 2, false,
                                 pElement, adjusted, params.LoadDataLimit, true))
    {
        return false;
    }
    if (nullptr == pSource)
    {
        return true;
    }
    const UINT32            readCount = ReadableCount(binaryCount, count, params.NameHash);
    const bool              outOfLine = (pSource != this);
    ParameterLoadParameters nested    = NestedParams(params, pSource, pElement, outOfLine, Position - before);
    bool                    ok        = loadFn(nested, pDest, readCount);
    if (ok && !outOfLine && (binaryCount > readCount) && VersionAtLeast(6))
    {
        // Records of the file beyond what the code holds: each says its own size.
        for (UINT32 i = readCount; i < binaryCount; i++)
        {
            const UINT32 end = ReadLoadDataLimit(params.LoadDataLimit);
            if (end <= Position)
            {
                break;
            }
            Position = end;
        }
    }
    MarkVerified(pElement, drift, adjusted, false, count >= 2, (binaryCount == count) ? count : 0,
                 ParameterDefinitionType_Structure);
    return ok;
}

void* ParameterFileSymbolTableEntry::ReadStructureArray(ParameterLoadArrayFn loadFn, ParameterAllocArrayFn allocFn,
                                                        UINT32& count, UINT32& allocated, UINT32 maxCount,
                                                        UINT32 recordSize, ParameterLoadParameters& params,
                                                        INT32 location)
{
    count     = 0;
    allocated = 0;
    static_cast<void>(maxCount);
    ParameterDefinitionElement* pElement = nullptr;
    bool                        drift    = false;
    if ((nullptr == loadFn) || (nullptr == allocFn) || !FindMember(params, "ReadStructureArray", pElement, drift))
    {
        return nullptr;
    }
    UINT32                         binaryCount = 0;
    ParameterFileSymbolTableEntry* pSource     = this;
    ParameterFileSymbolTableEntry  local;
    bool                           adjusted    = false;
    if (!GetCountAndPointerEntry(binaryCount, pSource, local, recordSize, 0, params.NameHash, true, false, true,
                                 pElement, adjusted, params.LoadDataLimit, true) ||
        (nullptr == pSource) || (0 == binaryCount))
    {
        return nullptr;
    }
    const bool outOfLine = (pSource != this);
    if (outOfLine && (location >= 0))
    {
        UINT32 sharedCount = 0;
        void*  pShared     = pSource->SetFromDupObject(location, &sharedCount);
        if (nullptr != pShared)
        {
            count     = (binaryCount < sharedCount) ? binaryCount : sharedCount;
            allocated = count;
            return pShared;
        }
    }
    void* pArray = allocFn(binaryCount);
    if (nullptr == pArray)
    {
        LogMessage(true, "Failed to allocate %u records for 0x%llx\n", binaryCount,
                   static_cast<unsigned long long>(params.NameHash));
        return nullptr;
    }
    ParameterLoadParameters nested = NestedParams(params, pSource, pElement, outOfLine, 0);
    loadFn(nested, pArray, binaryCount);
    if (outOfLine && (location >= 0))
    {
        pSource->SetDupObject(location, pArray, binaryCount);
    }
    count     = binaryCount;
    allocated = binaryCount;
    MarkVerified(pElement, drift, adjusted, true, false, binaryCount, ParameterDefinitionType_Structure);
    return pArray;
}

void* ParameterFileSymbolTableEntry::ReadOptionalStructure(ParameterLoadArrayFn loadFn, ParameterAllocArrayFn allocFn,
                                                           UINT32& count, UINT32& allocated, UINT32 recordSize,
                                                           ParameterLoadParameters& params)
{
    void* pRecord = ReadStructureArray(loadFn, allocFn, count, allocated, 1, recordSize, params, -1);
    // An optional member holds at most one record.
    count = (count > 1) ? 1 : count;
    return pRecord;
}

bool ParameterFileSymbolTableEntry::ReadStringAt(CHAR*& pDest, const ParameterDefinitionElement* pElement,
                                                 UINT32 limit, INT32 location, bool& adjusted)
{
    pDest                                  = nullptr;
    UINT32                         count   = 0;
    ParameterFileSymbolTableEntry* pSource = this;
    ParameterFileSymbolTableEntry  local;
    if (!GetCountAndPointerEntry(count, pSource, local, 1, 0, 0, true, false, false, pElement, adjusted, limit))
    {
        return false;
    }
    if ((nullptr == pSource) || (pSource == this))
    {
        return true;
    }
    void* pShared = pSource->SetFromDupObject(location);
    if (nullptr != pShared)
    {
        pDest = static_cast<CHAR*>(pShared);
        return true;
    }
    // Sized by the entry, so that a block shared with another count still holds every text of its group.
    CHAR* pText = static_cast<CHAR*>(VelaCalloc(static_cast<SIZE_T>(pSource->DataSize) + 1, 1, 8));
    if (nullptr == pText)
    {
        return false;
    }
    const UINT32 copy = (count < pSource->DataSize) ? count : pSource->DataSize;
    if (copy > 0)
    {
        std::memcpy(pText, pSource->Data, copy);
    }
    pSource->SetDupObject(location, pText, pSource->DataSize + 1);
    pDest = pText;
    return true;
}

bool ParameterFileSymbolTableEntry::ReadStrings(CHAR** pDest, UINT32 count, UINT32 limit, INT32 location)
{
    bool ok = true;
    for (UINT32 i = 0; (i < count) && ok; i++)
    {
        bool adjusted = false;
        ok            = ReadStringAt(pDest[i], nullptr, limit, location, adjusted);
    }
    return ok;
}

bool ParameterFileSymbolTableEntry::ReadString(CHAR*& pDest, ParameterLoadParameters& params, INT32 location)
{
    pDest                                = nullptr;
    ParameterDefinitionElement* pElement = nullptr;
    bool                        drift    = false;
    if (!FindMember(params, "ReadString", pElement, drift))
    {
        return true;
    }
    bool       adjusted = false;
    const bool ok       = ReadStringAt(pDest, pElement, params.LoadDataLimit, location, adjusted);
    MarkVerified(pElement, drift, adjusted, true, false, 1, ParameterDefinitionType_String);
    return ok;
}

bool ParameterFileSymbolTableEntry::ReadStringFixedArray(CHAR** pDest, UINT32 count, ParameterLoadParameters& params,
                                                         INT32 location)
{
    ParameterDefinitionElement* pElement = nullptr;
    bool                        drift    = false;
    if ((nullptr == pDest) || !FindMember(params, "ReadStringFixedArray", pElement, drift))
    {
        return true;
    }
    UINT32                         binaryCount = count;
    ParameterFileSymbolTableEntry* pSource     = this;
    ParameterFileSymbolTableEntry  local;
    bool                           adjusted    = false;
    if (!GetCountAndPointerEntry(binaryCount, pSource, local, 8, count, params.NameHash, false, count >= 2, false,
                                 pElement, adjusted, params.LoadDataLimit))
    {
        return false;
    }
    if (nullptr == pSource)
    {
        return true;
    }
    const UINT32 readCount = ReadableCount(binaryCount, count, params.NameHash);
    const UINT32 limit     = (pSource == this) ? params.LoadDataLimit : pSource->DataSize;
    const bool   ok        = pSource->ReadStrings(pDest, readCount, limit, location);
    MarkVerified(pElement, drift, adjusted, false, count >= 2, (binaryCount == count) ? count : 0,
                 ParameterDefinitionType_String);
    return ok;
}

bool ParameterFileSymbolTableEntry::ReadStringArray(CHAR**& pDest, UINT32& count, UINT32& allocated, UINT32 maxCount,
                                                    ParameterLoadParameters& params, INT32 location)
{
    pDest     = nullptr;
    count     = 0;
    allocated = 0;
    static_cast<void>(maxCount);
    ParameterDefinitionElement* pElement = nullptr;
    bool                        drift    = false;
    if (!FindMember(params, "ReadStringArray", pElement, drift))
    {
        return true;
    }
    UINT32                         binaryCount = 0;
    ParameterFileSymbolTableEntry* pSource     = this;
    ParameterFileSymbolTableEntry  local;
    bool                           adjusted    = false;
    if (!GetCountAndPointerEntry(binaryCount, pSource, local, 8, 0, params.NameHash, true, false, true, pElement,
                                 adjusted, params.LoadDataLimit))
    {
        return false;
    }
    if ((nullptr == pSource) || (0 == binaryCount))
    {
        return true;
    }
    // The pointer array itself is never shared; the texts are.
    CHAR** pArray = static_cast<CHAR**>(VelaCalloc(binaryCount, sizeof(CHAR*), 8));
    if (nullptr == pArray)
    {
        return false;
    }
    const UINT32 limit = (pSource == this) ? params.LoadDataLimit : pSource->DataSize;
    const bool   ok    = pSource->ReadStrings(pArray, binaryCount, limit, location);
    pDest              = pArray;
    count              = binaryCount;
    allocated          = binaryCount;
    MarkVerified(pElement, drift, adjusted, true, false, binaryCount, ParameterDefinitionType_String);
    return ok;
}

bool ParameterFileSymbolTableEntry::ReadOptionalString(CHAR*& pDest, UINT32& count, UINT32& allocated,
                                                       ParameterLoadParameters& params, INT32 location)
{
    pDest     = nullptr;
    count     = 0;
    allocated = 0;
    const bool ok = ReadString(pDest, params, location);
    if (nullptr != pDest)
    {
        count     = 1;
        allocated = 1;
    }
    return ok;
}

UINT32 ParameterFileSymbolTableEntry::ReadableCount(UINT32 binaryCount, UINT32 count, UINT64 nameHash)
{
    if (binaryCount != count)
    {
        LogMessage(false, "0x%llx expected count (%u) != the binary count (%u), the binary XSD != the source XSD\n",
                   static_cast<unsigned long long>(nameHash), count, binaryCount);
    }
    return (binaryCount < count) ? binaryCount : count;
}
