// Module instances of the store: the common base of generated modules, what the file says of each, and the
// per-name list of instances made from one prototype.
#ifndef AECORE_TUNING_PARSER_PARAMETERMODULE_H
#define AECORE_TUNING_PARSER_PARAMETERMODULE_H

#include <atomic>

#include "aecore/aecore_types.h"
#include "tuning/parser/parameterlogging.h"
#include "tuning/parser/parametertypes.h"
#include "tuning/parser/plist.h"

class DefaultModule;
class ModeEntry;
class ParameterFileSymbolTable;
class ParameterSetManager;
struct ModeEntryInfo;
struct ParameterLoadParameters;

// One member as the value interface describes it.
struct ParameterParserInfo
{
    const CHAR* Name;
    const CHAR* Type;
    CHAR        Value[1024];
    bool        isArray;
    bool        isPointer;
    UINT32      Count;
};

// Resolves a packed mode ID to its mode table slot.
class IModeTable
{
public:
    virtual ~IModeTable() = default;
    virtual ModeEntryInfo* GetModeEntry(UINT32 modeId) = 0;
};

// What the file says of one module instance.
class ModuleData
{
public:
    ModuleData(IModeTable* pModeTable, ParameterSetManager* pSetManager, ParameterFileSymbolTable* pSymbolTable,
               UINT64 nameHash, UINT32 id, UINT32 duplicateId, VersionUnion version, UINT32 modeId,
               const IParameterLoggingAPI* pLog);
    ~ModuleData();
    ModuleData(const ModuleData&) = delete;
    ModuleData& operator=(const ModuleData&) = delete;

    UINT32 GetModeTableIndex() const { return ::GetModeTableIndex(ModeId); }
    UINT32 GetModeIDValue() const { return ::GetModeIDValue(ModeId); }

    UINT64                    NameHash;
    UINT32                    ID;
    UINT32                    DuplicateID;
    VersionUnion              Version;
    UINT32                    ModeId;
    ModeEntryInfo*            Mode;
    CHAR*                     ModePath;
    ParameterSetManager*      SetManager;
    ParameterFileSymbolTable* SymbolTable;

private:
    // A mode that the table did not have is a private empty one.
    bool m_ownsMode;
};

// Top-level load function of a generated module record.
typedef bool (*ParameterModuleLoadFn)(ParameterLoadParameters& params, void* pRecord);

// The base of all module instances.
class ParameterModule
{
public:
    ParameterModule(const CHAR* pName, VersionUnion version, ModuleData* pData);
    virtual ~ParameterModule();
    ParameterModule(const ParameterModule&) = delete;
    ParameterModule& operator=(const ParameterModule&) = delete;

    // A prototype makes or finds the instance for what the file says; null if the file's module differs.
    virtual ParameterModule* Create(ModuleData* pData, DefaultModule* pDefaults) const = 0;
    virtual bool             LoadModule(ParameterFileSymbolTable* pSymbolTable) = 0;
    virtual bool             UnloadModule() = 0;
    virtual bool             GetValue(const CHAR* pName, CHAR* pOut, UINT32 size);
    virtual bool             SetValue(const CHAR* pName, const CHAR* pValue);
    virtual bool             GetInfo(const CHAR* pName, PList<ParameterParserInfo>& list);
    virtual const CHAR*      GetModuleName() const { return m_name; }
    virtual UINT64           GetModuleNameHash() const { return m_nameHash; }

    // Drops a reference a caller holds on this instance (file mode only).
    bool Release();

    ModuleData*  GetData() const { return m_pData; }
    VersionUnion GetVersion() const { return m_version; }
    ModeUnion    GetMode() const { return m_mode; }
    bool         IsLoaded() const { return m_loaded.load(); }
    UINT32       GetModifiedCount() const { return m_modifiedCount.load(); }
    // The instance key: duplicate ID (or ID) of the file, top byte counting changes.
    UINT32       GetKey() const { return m_key.load(); }
    void         SetKey(UINT32 key) { m_key = key; }
    // The mode whose map owns this instance's references.
    ModeEntry*   GetOwnMode() const;

protected:
    // Makes a new, unlinked instance of a prototype's class for what the file says; key is the instance key.
    typedef ParameterModule* (*MakeInstanceFn)(const CHAR* pName, ModuleData* pData, UINT32 key);
    // The rules of every prototype's Create: the file's module must have this module's name hash and, with
    // checkVersion, its version (each refusal logged with the class name); modes whose data is the same (one
    // duplicate ID, else the ID) share one instance from the list; otherwise pfnMake makes it, keyed and listed.
    ParameterModule* CreateInstance(ModuleData* pData, DefaultModule* pDefaults, const CHAR* pClassName,
                                    bool checkVersion, MakeInstanceFn pfnMake) const;
    // The common part of a generated LoadModule: find the entry, build the definitions view, run the top load.
    bool LoadFromSymbolTable(ParameterFileSymbolTable* pSymbolTable, const CHAR* pClassName,
                             ParameterModuleLoadFn pLoad, void* pRecord);
    // Marks a value change: the key's top byte counts changes (1 to 255, then again 1).
    void NoteModified();

    UINT64                 m_nameHash;
    CHAR*                  m_name;
    VersionUnion           m_version;
    ModeUnion              m_mode;
    ModuleData*            m_pData;
    std::atomic<bool>      m_loaded;
    std::atomic<UINT32>    m_modifiedCount;
    std::atomic<UINT32>    m_key;
    ParameterMutex         m_mutex;
};

struct ModuleLink
{
    ParameterModule* Module;
    ModuleLink*      Next;
};

// Per module name: the prototype and the instances made from it.
class DefaultModule
{
public:
    explicit DefaultModule(ParameterModule* pPrototype);
    ~DefaultModule();
    DefaultModule(const DefaultModule&) = delete;
    DefaultModule& operator=(const DefaultModule&) = delete;

    // The instance whose key has this symbol ID, or null.
    ParameterModule* Find(UINT32 id) const;
    void             AddModule(ParameterModule* pModule);
    // Unlinks without deleting; false if the instance is not in the list.
    bool             RemoveModule(ParameterModule* pModule);
    // Deletes a chain of links with their modules.
    static void      DeleteChain(ModuleLink* pLink);
    // Deletes a chain of links, leaving their modules alone.
    static void      DeleteLinks(ModuleLink* pLink);

    ParameterModule* Module;
    ModuleLink*      first;
    ModuleLink*      last;
};

#endif // AECORE_TUNING_PARSER_PARAMETERMODULE_H
