// The symbol table, data table and definition table of a parameter file, and shared duplicate blocks.
#ifndef AECORE_TUNING_PARSER_PARAMETERFILESYMBOLTABLE_H
#define AECORE_TUNING_PARSER_PARAMETERFILESYMBOLTABLE_H

#include <map>
#include <shared_mutex>

#include "aecore/aecore_types.h"
#include "tuning/parser/parameterbinaryfile.h"
#include "tuning/parser/parameterdefinition.h"
#include "tuning/parser/parameterfilesymboltableentry.h"
#include "tuning/parser/parameterlogging.h"
#include "tuning/parser/parametermodule.h"
#include "tuning/parser/parametertypes.h"
#include "tuning/parser/plist.h"

class ParameterSetManager;

// Per ID: its duplicate group and where its entry lies in its table.
struct EntryData
{
    UINT32 Dup;
    UINT32 Position;
};

// A block shared by entries of one duplicate group, per member kind.
struct DupObjInfo
{
    void*             Object;
    INT32             Location;
    ParameterRefCount RefCount;
    // Elements the block holds, so that a sharer never reads past it.
    UINT32            Count;
};

class ParameterFileSymbolTable
{
public:
    ParameterFileSymbolTable(ParameterSetManager* pSetManager, const IParameterLoggingAPI* pLog,
                             VersionUnion version, BYTE alignment);
    ~ParameterFileSymbolTable();
    ParameterFileSymbolTable(const ParameterFileSymbolTable&) = delete;
    ParameterFileSymbolTable& operator=(const ParameterFileSymbolTable&) = delete;

    bool Load(const BYTE* pBuffer, SIZE_T length, const CHAR* pFileName, ParameterBinaryFile* pFile,
              UINT32 fileLength, SectionInfo symbols, SectionInfo dataTable, SectionInfo data,
              SectionInfo definitions, IModeTable* pModeTable, bool useDefinitions);

    bool Find(ParameterFileSymbolTableEntry& entry, UINT32 id, bool isModule);
    bool ReadPointerEntry(ParameterFileSymbolTableEntry& entry, ParameterFileSymbolTableEntry& owner);
    ParameterDefinitionStructure* FindStructure(UINT32 id);
    ParameterDefinitionStructure* FindModuleStructure(UINT64 nameHash);
    // A temporary element (delete it) viewing the module's top structure; null without definitions.
    ParameterDefinitionElement*   BuildModuleElement(UINT64 nameHash);

    // pCount, if given, receives the element count the block was entered with.
    void* GetDupObject(bool isModule, UINT32 id, INT32 location, UINT32* pCount = nullptr);
    void  SetDupObject(bool isModule, UINT32 id, void* pObject, INT32 location, UINT32 count = 0);
    // The ModuleData of a module entry just read; null for entry 0 of files that count IDs from 0.
    ModuleData* MakeModuleData(const ParameterFileSymbolTableEntry& entry);
    // True if the caller may free the block: its last reference is gone or it was never shared.
    bool  ReleaseDupObject(void* pObject);
    // Drops a loaded member's reference to its block (through pTable, which may be null): the block is freed, after
    // pUnload released what its count elements hold, only if that was the last reference or there is no table.
    // The pointer is cleared either way. True if the block was freed.
    typedef void (*BlockUnloadFn)(ParameterFileSymbolTable* pTable, void* pBlock, UINT32 count);
    static bool ReleaseBlock(ParameterFileSymbolTable* pTable, void*& pBlock, BlockUnloadFn pUnload = nullptr,
                             UINT32 count = 0);

    void   FreeEntryData();
    void   FreeLookupData();
    UINT32 FileReference(INT32 adjust);
    void   ClearDefinitions(bool all);
    bool   HasDefinitions() const { return !m_structureDefinitions.empty() || !m_moduleDefinitions.empty(); }

    ModuleData* GetModule(UINT32 index) { return m_modules[index]; }
    UINT32      Count() const { return m_count; }
    UINT32      DTCount() const { return m_dtCount; }
    UINT32      ModuleCount() const { return m_modules.Count(); }

    UINT32       GetSymbolEntrySize() const;
    UINT32       GetDataTableEntrySize() const;
    VersionUnion FileVersion() const { return m_version; }
    BYTE         Alignment() const { return m_alignment; }
    const IParameterLoggingAPI* Log() const { return m_pLog; }
    ParameterBinaryFile* File() const { return m_pFile; }
    // Hands the file object to the table, which then deletes it.
    void TakeFile(ParameterBinaryFile* pFile) { m_pFile = pFile; m_ownsFile = true; }

    const VersionUnion ModeTreeMinVersion;
    const VersionUnion LinkVersion;
    const VersionUnion AlignedEndVersion;
    const VersionUnion DataTableVersion;
    const VersionUnion ModeFlagsVersion;
    const VersionUnion StructSymbolsVersion;
    const VersionUnion MultiModeTableVersion;

private:
    struct TableState
    {
        UINT32                          Count;
        ParameterFileSymbolTableEntry*  Entries;
        EntryData*                      Lookup;
        UINT32                          DupCount;
        PList<DupObjInfo*>*             DupEntries;
        SectionInfo                     Section;
    };

    TableState& State(bool isModule) { return isModule ? m_symbols : *m_pDataTable; }
    bool ReadTable(const BYTE* pBuffer, SIZE_T length, UINT32 count, TableState& state, bool isModule);
    bool ReadSection(const BYTE* pBuffer, SectionInfo section, const CHAR* pFailText, BYTE*& pTemp,
                     const BYTE*& pOut);
    bool ReadEntryData(ParameterFileSymbolTableEntry& entry);
    bool LoadDefinitions(const BYTE* pBuffer, SIZE_T length);
    bool ReadDefinitionString(const BYTE* pBuffer, SIZE_T length, UINT32& pos, CHAR** ppOut);
    bool ReadStructureDefinition(const BYTE* pBuffer, SIZE_T length, UINT32& pos);
    bool ReadModuleDefinition(const BYTE* pBuffer, SIZE_T length, UINT32& pos);
    bool SkipDefinition(UINT32 tag, const BYTE* pBuffer, SIZE_T length, UINT32& pos);
    void PopulateOffsetSizeStructure(ParameterDefinitionStructure* pStructure, PList<UINT32>& inProgress);
    void FreeTables();
    // The group of an ID; 0 (no sharing) with a log line for invalid arguments.
    UINT32      DupGroup(bool isModule, UINT32 id, INT32 location);
    DupObjInfo* FindDupInfo(bool isModule, UINT32 group, INT32 location);
    void*       GetDupObjectLocked(bool isModule, UINT32 id, INT32 location, UINT32* pCount);

    ParameterSetManager*        m_pSetManager;
    const IParameterLoggingAPI* m_pLog;
    VersionUnion                m_version;
    BYTE                        m_alignment;
    CHAR                        FileName[ParameterFileNameSize];
    ParameterBinaryFile*        m_pFile;
    bool                        m_ownsFile;
    UINT32                      FileLength;
    SectionInfo                 m_dataSection;
    const BYTE*                 Data;
    IModeTable*                 ModeTable;
    UINT32                      m_count;
    UINT32                      m_dtCount;
    PList<ModuleData*>          m_modules;
    TableState                  m_symbols;
    TableState                  m_dataTable;
    // The data table's state, or the symbol table's when the file has no data table.
    TableState*                 m_pDataTable;
    std::shared_mutex           m_dupInfoMutex;
    std::map<void*, DupObjInfo*> m_dupInfoMap;
    PList<DupObjInfo*>          m_allDupInfos;
    std::map<UINT64, ParameterDefinitionModule*>    m_moduleDefinitions;
    std::map<UINT32, ParameterDefinitionStructure*> m_structureDefinitions;
};

#endif // AECORE_TUNING_PARSER_PARAMETERFILESYMBOLTABLE_H
