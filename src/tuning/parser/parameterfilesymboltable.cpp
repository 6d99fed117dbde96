// The symbol table and data table of a parameter file: entries, IDs, look-ups and shared duplicate blocks.
#include "tuning/parser/parameterfilesymboltable.h"

#include <mutex>
#include <new>

#include "platform/osutils.h"
#include "tuning/parser/parameterutils.h"

namespace
{
// Marks an ID whose entry the file does not have.
const UINT32 NoPosition = 0xFFFFFFFFu;
} // namespace

ParameterFileSymbolTable::ParameterFileSymbolTable(ParameterSetManager* pSetManager, const IParameterLoggingAPI* pLog,
                                                   VersionUnion version, BYTE alignment)
    : ModeTreeMinVersion(VersionUnion::Make(1, 0, 2))
    , LinkVersion(VersionUnion::Make(2, 0, 0))
    , AlignedEndVersion(VersionUnion::Make(3, 0, 1))
    , DataTableVersion(VersionUnion::Make(4, 0, 0))
    , ModeFlagsVersion(VersionUnion::Make(5, 0, 0))
    , StructSymbolsVersion(VersionUnion::Make(6, 0, 0))
    , MultiModeTableVersion(VersionUnion::Make(7, 0, 0))
    , m_pSetManager(pSetManager)
    , m_pLog(pLog)
    , m_version(version)
    , m_alignment(alignment)
    , FileName()
    , m_pFile(nullptr)
    , m_ownsFile(false)
    , FileLength(0)
    , m_dataSection()
    , Data(nullptr)
    , ModeTable(nullptr)
    , m_count(0)
    , m_dtCount(0)
    , m_symbols()
    , m_dataTable()
    , m_pDataTable(&m_symbols)
{
}

ParameterFileSymbolTable::~ParameterFileSymbolTable()
{
    if (!m_dupInfoMap.empty())
    {
        ParameterLogging::Write(m_pLog, Warning, "%d DupInfo object were not released\n",
                                static_cast<INT32>(m_dupInfoMap.size()));
    }
    for (UINT32 i = 0; i < m_allDupInfos.Count(); i++)
    {
        delete m_allDupInfos[i];
    }
    FreeTables();
    ClearDefinitions(true);
    for (UINT32 i = 0; i < m_modules.Count(); i++)
    {
        delete m_modules[i];
    }
    if (m_ownsFile)
    {
        delete m_pFile;
    }
}

UINT32 ParameterFileSymbolTable::GetSymbolEntrySize() const
{
    if (m_version > AlignedEndVersion)
    {
        return (m_version < StructSymbolsVersion) ? 60 : 32;
    }
    if (1 != m_alignment)
    {
        return 76;
    }
    return (m_version < AlignedEndVersion) ? 64 : 56;
}

UINT32 ParameterFileSymbolTable::GetDataTableEntrySize() const
{
    if (m_version < DataTableVersion)
    {
        return 0;
    }
    return (m_version < StructSymbolsVersion) ? 16 : 12;
}

ModuleData* ParameterFileSymbolTable::MakeModuleData(const ParameterFileSymbolTableEntry& entry)
{
    if ((0 == entry.ID) || (nullptr == ModeTable))
    {
        if (nullptr == ModeTable)
        {
            ParameterLogging::Write(m_pLog, Error, "ModuleData called with nullptr modeTable parameter\n");
        }
        return nullptr;
    }
    return new (std::nothrow) ModuleData(ModeTable, m_pSetManager, this, entry.NameHash, entry.ID,
                                         entry.DuplicateID, entry.Version, entry.ModeId, m_pLog);
}

bool ParameterFileSymbolTable::ReadSection(const BYTE* pBuffer, SectionInfo section, const CHAR* pFailText,
                                           BYTE*& pTemp, const BYTE*& pOut)
{
    pTemp = nullptr;
    pOut  = nullptr;
    if (nullptr == m_pFile)
    {
        pOut = pBuffer + section.Offset;
        return true;
    }
    pTemp = m_pFile->Read(section.Offset, section.Size);
    if (nullptr == pTemp)
    {
        ParameterLogging::Write(m_pLog, Error, pFailText, static_cast<INT32>(section.Offset),
                                static_cast<INT32>(section.Size));
        return false;
    }
    pOut = pTemp;
    return true;
}

bool ParameterFileSymbolTable::Load(const BYTE* pBuffer, SIZE_T length, const CHAR* pFileName,
                                    ParameterBinaryFile* pFile, UINT32 fileLength, SectionInfo symbols,
                                    SectionInfo dataTable, SectionInfo data, SectionInfo definitions,
                                    IModeTable* pModeTable, bool useDefinitions)
{
    ModeTable  = pModeTable;
    m_pFile    = pFile;
    FileLength = fileLength;
    Vela::OsUtils::StrLCpy(FileName, (nullptr != pFileName) ? pFileName : "", sizeof(FileName));
    m_dataSection = data;

    // Every section must lie in the file; the reader relies on it for all later offsets.
    const UINT64 total = (nullptr != pFile) ? fileLength : length;
    for (const SectionInfo* pSection : {&symbols, &dataTable, &data, &definitions})
    {
        if (static_cast<UINT64>(pSection->Offset) + pSection->Size > total)
        {
            ParameterLogging::Write(m_pLog, Error, "Section (offset: %u, size: %u) exceeds binary length %llu\n",
                                    pSection->Offset, pSection->Size, static_cast<unsigned long long>(total));
            return false;
        }
    }
    if ((nullptr == pFile) && (nullptr == pBuffer))
    {
        return false;
    }

    const UINT32 entrySize = GetSymbolEntrySize();
    if (0 != (symbols.Size % entrySize))
    {
        ParameterLogging::Write(m_pLog, Error, "Invalid symbol table size: %d, expected: %d\n",
                                static_cast<INT32>(symbols.Size),
                                static_cast<INT32>((symbols.Size / entrySize + 1) * entrySize));
        return false;
    }
    m_count                 = symbols.Size / entrySize;
    const bool hasDataTable = (0 != dataTable.Size) && (0 != dataTable.Offset);
    if (hasDataTable)
    {
        const UINT32 dtEntrySize = GetDataTableEntrySize();
        if (0 == dtEntrySize)
        {
            ParameterLogging::Write(m_pLog, Error, "Data table entry size is zero\n");
            return false;
        }
        if (0 != (dataTable.Size % dtEntrySize))
        {
            ParameterLogging::Write(m_pLog, Error, "Invalid data table size: %d, expected: %d\n",
                                    static_cast<INT32>(dataTable.Size),
                                    static_cast<INT32>((dataTable.Size / dtEntrySize + 1) * dtEntrySize));
            return false;
        }
        m_dtCount = dataTable.Size / dtEntrySize;
    }
    else
    {
        m_dtCount = m_count;
    }

    m_symbols.Count   = m_count;
    m_symbols.Section = symbols;
    m_symbols.Entries = new (std::nothrow) ParameterFileSymbolTableEntry[m_count + 1];
    m_symbols.Lookup  = new (std::nothrow) EntryData[m_count + 1];
    m_pDataTable      = &m_symbols;
    bool allocated    = (nullptr != m_symbols.Entries) && (nullptr != m_symbols.Lookup);
    if (hasDataTable)
    {
        m_dataTable.Count   = m_dtCount;
        m_dataTable.Section = dataTable;
        m_dataTable.Entries = new (std::nothrow) ParameterFileSymbolTableEntry[m_dtCount + 1];
        m_dataTable.Lookup  = new (std::nothrow) EntryData[m_dtCount + 1];
        m_pDataTable        = &m_dataTable;
        allocated           = allocated && (nullptr != m_dataTable.Entries) && (nullptr != m_dataTable.Lookup);
    }
    if (!allocated)
    {
        ParameterLogging::Write(m_pLog, Error, "Failed to allocate entry/lookup tables\n");
        return false;
    }

    if (nullptr != m_pFile)
    {
        FileReference(1);
    }
    else
    {
        Data = pBuffer + data.Offset;
    }

    bool        ok    = true;
    BYTE*       pTemp = nullptr;
    const BYTE* pSection;
    if (useDefinitions && (0 != definitions.Size) && (0 != definitions.Offset))
    {
        ok = ReadSection(pBuffer, definitions,
                         "Failed to read definition table buffer (offset: %d, size: %d) from binary file\n", pTemp,
                         pSection);
        if (ok && !LoadDefinitions(pSection, definitions.Size))
        {
            ParameterLogging::Write(m_pLog, Error, "Failed to read definition table from binary file\n");
            ok = false;
        }
        delete[] pTemp;
    }
    if (ok)
    {
        ok = ReadSection(pBuffer, symbols, "Failed to read symbol table buffer (offset: %d, size: %d) from binary file\n",
                         pTemp, pSection);
        if (ok && !ReadTable(pSection, symbols.Size, m_count, m_symbols, true))
        {
            ParameterLogging::Write(m_pLog, Error, "Failed to read symbol table from binary file\n");
            ok = false;
        }
        delete[] pTemp;
    }
    if (ok && hasDataTable)
    {
        ok = ReadSection(pBuffer, dataTable,
                         "Failed to read data table buffer (offset: %d, size: %d) from binary file\n", pTemp,
                         pSection);
        if (ok && !ReadTable(pSection, dataTable.Size, m_dtCount, m_dataTable, false))
        {
            ParameterLogging::Write(m_pLog, Error, "Failed to read data table from binary file\n");
            ok = false;
        }
        delete[] pTemp;
    }
    if (nullptr != m_pFile)
    {
        FileReference(-1);
    }
    return ok;
}

bool ParameterFileSymbolTable::ReadTable(const BYTE* pBuffer, SIZE_T length, UINT32 count, TableState& state,
                                         bool isModule)
{
    const UINT32 entrySize = isModule ? GetSymbolEntrySize() : GetDataTableEntrySize();
    const bool   countsIDs = (m_version < StructSymbolsVersion);
    UINT32*      pUses     = new (std::nothrow) UINT32[count + 1]();
    if (nullptr == pUses)
    {
        ParameterLogging::Write(m_pLog, Error, "Failed to allocate entry/lookup tables\n");
        return false;
    }
    for (UINT32 id = 0; id <= count; id++)
    {
        state.Lookup[id].Dup      = 0;
        state.Lookup[id].Position = NoPosition;
    }

    bool ok = true;
    for (UINT32 i = 0; (i < count) && ok; i++)
    {
        const UINT32                  pos = i * entrySize;
        ParameterFileSymbolTableEntry entry;
        entry.Table = this;
        entry.ID    = i;
        if (!entry.Load(pBuffer, length, pos, isModule, true))
        {
            ok = false;
            break;
        }
        const UINT32 id = entry.ID;
        if ((countsIDs && ((id < 1) || (id > count))) || (id > count))
        {
            ParameterLogging::Write(m_pLog, Error, "Symbol table entry ID %d out of range 1 - %d\n",
                                    static_cast<INT32>(id), static_cast<INT32>(count));
            delete entry.Module;
            continue;
        }
        if (state.Entries[id].Present)
        {
            // A second entry of one ID would orphan the first one's module.
            ParameterLogging::Write(m_pLog, Error, "Symbol table entry ID %u appears twice, later entry ignored\n", id);
            delete entry.Module;
            continue;
        }
        if (nullptr == m_pFile)
        {
            if (static_cast<UINT64>(entry.DataOffset) + entry.DataSize > m_dataSection.Size)
            {
                ParameterLogging::Write(m_pLog, Error,
                                        "Symbol table entry ID %u data (offset: %u, size: %u) exceeds data section "
                                        "size %u\n",
                                        id, entry.DataOffset, entry.DataSize, m_dataSection.Size);
                delete entry.Module;
                ok = false;
                break;
            }
            entry.Data = const_cast<BYTE*>(Data) + entry.DataOffset;
        }
        state.Lookup[id].Position = pos;
        state.Lookup[id].Dup      = entry.DuplicateID;
        if ((entry.DuplicateID >= 1) && (entry.DuplicateID <= count))
        {
            pUses[entry.DuplicateID]++;
        }
        ParameterFileSymbolTableEntry& slot = state.Entries[id];
        slot.CopyFrom(entry);
        slot.Module  = entry.Module;
        entry.Module = nullptr;
    }

    // Group numbers from 1 for duplicate IDs used by two or more entries; 0 means not shared.
    state.DupCount = 1;
    for (UINT32 d = 1; d <= count; d++)
    {
        pUses[d] = (pUses[d] >= 2) ? state.DupCount++ : 0;
    }
    for (UINT32 id = 0; id <= count; id++)
    {
        const UINT32 dup     = state.Lookup[id].Dup;
        state.Lookup[id].Dup = ((dup >= 1) && (dup <= count)) ? pUses[dup] : 0;
    }
    delete[] pUses;
    if (state.DupCount >= 2)
    {
        state.DupEntries = new (std::nothrow) PList<DupObjInfo*>[state.DupCount];
    }
    for (UINT32 id = 1; id <= count; id++)
    {
        if (nullptr != state.Entries[id].Module)
        {
            m_modules.Add(state.Entries[id].Module);
            state.Entries[id].Module = nullptr;
        }
    }
    // Entry 0 of files that count IDs from 0 is reachable by nobody.
    delete state.Entries[0].Module;
    state.Entries[0].Module = nullptr;
    return ok;
}

bool ParameterFileSymbolTable::ReadEntryData(ParameterFileSymbolTableEntry& entry)
{
    if (static_cast<UINT64>(entry.DataOffset) + entry.DataSize > m_dataSection.Size)
    {
        ParameterLogging::Write(m_pLog, Error,
                                "Symbol table entry ID %u data (offset: %u, size: %u) exceeds data section size %u\n",
                                entry.ID, entry.DataOffset, entry.DataSize, m_dataSection.Size);
        return false;
    }
    if (0 == entry.DataSize)
    {
        return true;
    }
    entry.Data = m_pFile->Read(m_dataSection.Offset + entry.DataOffset, entry.DataSize);
    if (nullptr == entry.Data)
    {
        return false;
    }
    entry.DataAllocated = true;
    return true;
}

bool ParameterFileSymbolTable::Find(ParameterFileSymbolTableEntry& entry, UINT32 id, bool isModule)
{
    TableState& state = State(isModule);
    if ((id < 1) || (id > state.Count))
    {
        ParameterLogging::Write(m_pLog, Error, "Find: Symbol table entry ID %d out of range 1 - %d\n",
                                static_cast<INT32>(id), static_cast<INT32>(state.Count));
        return false;
    }
    if (nullptr != state.Entries)
    {
        if (!state.Entries[id].Present)
        {
            return false;
        }
        entry.CopyFrom(state.Entries[id]);
        return true;
    }
    if ((nullptr == m_pFile) || ('\0' == FileName[0]) || (nullptr == state.Lookup) ||
        (NoPosition == state.Lookup[id].Position))
    {
        return false;
    }

    // Entries are not kept in file mode: read this one again.
    const UINT32 entrySize = isModule ? GetSymbolEntrySize() : GetDataTableEntrySize();
    FileReference(1);
    BYTE* pBytes = m_pFile->Read(state.Section.Offset + state.Lookup[id].Position, entrySize);
    bool  ok     = (nullptr != pBytes);
    if (ok)
    {
        entry.FreeData();
        entry.Table    = this;
        entry.ID       = id;
        entry.Position = 0;
        entry.Module   = nullptr;
        ok             = entry.Load(pBytes, entrySize, 0, isModule, false) && (entry.ID == id) && ReadEntryData(entry);
        delete[] pBytes;
    }
    FileReference(-1);
    return ok;
}

bool ParameterFileSymbolTable::ReadPointerEntry(ParameterFileSymbolTableEntry& entry,
                                                ParameterFileSymbolTableEntry& owner)
{
    UINT32 reference = 0;
    if ((nullptr == owner.Data) || (static_cast<UINT64>(owner.Position) + sizeof(reference) > owner.DataSize))
    {
        ParameterLogging::Write(m_pLog, Error, "Insufficient data to read variable from symbol table entry\n");
        return false;
    }
    std::memcpy(&reference, owner.Data + owner.Position, sizeof(reference));
    owner.Position += ParameterUtils::FieldSize(sizeof(reference), m_alignment);
    if (0 == reference)
    {
        ParameterLogging::Write(m_pLog, Debug, "ReadPointerEntry: Unable to read pointer entry from Symbol table\n");
        return false;
    }
    if (!Find(entry, reference, false))
    {
        ParameterLogging::Write(m_pLog, Error, "ReadPointerEntry: Unable to find pointer entry ID %u in Symbol table%d\n",
                                reference, 0);
        return false;
    }
    return true;
}

UINT32 ParameterFileSymbolTable::DupGroup(bool isModule, UINT32 id, INT32 location)
{
    TableState& state = State(isModule);
    if ((nullptr == state.Lookup) || (id < 1) || (id > state.Count) ||
        ((state.DupCount >= 2) && (nullptr == state.DupEntries)))
    {
        ParameterLogging::Write(m_pLog, Error,
                                "GetDupObject called with invalid values, This: %p, IsModule: %d, ID: %u, DupCount: "
                                "%u, LookupCnt: %u, DupEntries: %p, EntryLookup: %p, Loc: %d\n",
                                static_cast<void*>(this), isModule ? 1 : 0, id, state.DupCount, state.Count,
                                static_cast<void*>(state.DupEntries), static_cast<void*>(state.Lookup), location);
        return 0;
    }
    const UINT32 group = state.Lookup[id].Dup;
    return (group < state.DupCount) ? group : 0;
}

DupObjInfo* ParameterFileSymbolTable::FindDupInfo(bool isModule, UINT32 group, INT32 location)
{
    PList<DupObjInfo*>& infos = State(isModule).DupEntries[group];
    for (UINT32 i = 0; i < infos.Count(); i++)
    {
        if (location == infos[i]->Location)
        {
            return infos[i];
        }
    }
    return nullptr;
}

void* ParameterFileSymbolTable::GetDupObjectLocked(bool isModule, UINT32 id, INT32 location, UINT32* pCount)
{
    const UINT32 group = DupGroup(isModule, id, location);
    if (0 == group)
    {
        return nullptr;
    }
    DupObjInfo* pInfo = FindDupInfo(isModule, group, location);
    if ((nullptr == pInfo) || (nullptr == pInfo->Object))
    {
        return nullptr;
    }
    pInfo->RefCount++;
    if (nullptr != pCount)
    {
        *pCount = pInfo->Count;
    }
    return pInfo->Object;
}

void* ParameterFileSymbolTable::GetDupObject(bool isModule, UINT32 id, INT32 location, UINT32* pCount)
{
    // A look-up; the reference count it takes is atomic.
    std::shared_lock<std::shared_mutex> lock(m_dupInfoMutex);
    return GetDupObjectLocked(isModule, id, location, pCount);
}

void ParameterFileSymbolTable::SetDupObject(bool isModule, UINT32 id, void* pObject, INT32 location, UINT32 count)
{
    std::unique_lock<std::shared_mutex> lock(m_dupInfoMutex);
    const UINT32 group = DupGroup(isModule, id, location);
    if ((0 == group) || (nullptr == pObject))
    {
        return;
    }
    DupObjInfo* pInfo = FindDupInfo(isModule, group, location);
    if (nullptr != pInfo)
    {
        if (nullptr != pInfo->Object)
        {
            // Another loader was first; this block stays private to its owner.
            return;
        }
        if (pInfo->RefCount.load() > 0)
        {
            ParameterLogging::Write(m_pLog, Error,
                                    "SetDuplicateObject called on existing object with nullptr Object and RefCount %u: "
                                    "ID: %d, DupID: %d, Loc: %s:%d, ignored\n",
                                    pInfo->RefCount.load(), static_cast<INT32>(id), static_cast<INT32>(group), "",
                                    location);
            return;
        }
        pInfo->Object   = pObject;
        pInfo->RefCount = 1;
        pInfo->Count    = count;
        m_dupInfoMap[pObject] = pInfo;
        return;
    }
    pInfo = new (std::nothrow) DupObjInfo();
    if (nullptr == pInfo)
    {
        return;
    }
    pInfo->Object   = pObject;
    pInfo->Location = location;
    pInfo->RefCount = 1;
    pInfo->Count    = count;
    m_allDupInfos.Add(pInfo);
    State(isModule).DupEntries[group].Add(pInfo);
    m_dupInfoMap[pObject] = pInfo;
}

bool ParameterFileSymbolTable::ReleaseDupObject(void* pObject)
{
    if (nullptr == pObject)
    {
        return false;
    }
    std::unique_lock<std::shared_mutex> lock(m_dupInfoMutex);
    auto found = m_dupInfoMap.find(pObject);
    if (m_dupInfoMap.end() == found)
    {
        return true;
    }
    DupObjInfo* pInfo = found->second;
    if (pInfo->RefCount.load() > 0)
    {
        pInfo->RefCount--;
    }
    if (pInfo->RefCount.load() > 0)
    {
        return false;
    }
    pInfo->Object = nullptr;
    m_dupInfoMap.erase(found);
    return true;
}

bool ParameterFileSymbolTable::ReleaseBlock(ParameterFileSymbolTable* pTable, void*& pBlock, BlockUnloadFn pUnload,
                                            UINT32 count)
{
    const bool last = (nullptr != pBlock) && ((nullptr == pTable) || pTable->ReleaseDupObject(pBlock));
    if (last)
    {
        if (nullptr != pUnload)
        {
            pUnload(pTable, pBlock, count);
        }
        VelaFree(pBlock);
    }
    pBlock = nullptr;
    return last;
}

void ParameterFileSymbolTable::FreeEntryData()
{
    delete[] m_symbols.Entries;
    m_symbols.Entries = nullptr;
    delete[] m_dataTable.Entries;
    m_dataTable.Entries = nullptr;
}

void ParameterFileSymbolTable::FreeLookupData()
{
    std::unique_lock<std::shared_mutex> lock(m_dupInfoMutex);
    for (TableState* pState : {&m_symbols, &m_dataTable})
    {
        delete[] pState->Lookup;
        pState->Lookup = nullptr;
        delete[] pState->DupEntries;
        pState->DupEntries = nullptr;
        pState->DupCount   = 0;
    }
    // The caller's buffer is not needed any more.
    Data = nullptr;
}

void ParameterFileSymbolTable::FreeTables()
{
    FreeEntryData();
    FreeLookupData();
}

UINT32 ParameterFileSymbolTable::FileReference(INT32 adjust)
{
    if (nullptr == m_pFile)
    {
        return 0;
    }
    return m_pFile->Reference(adjust);
}
