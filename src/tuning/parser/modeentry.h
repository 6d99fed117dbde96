// One node of a mode tree with the module instances it holds, and the mode table of such nodes.
#ifndef AECORE_TUNING_PARSER_MODEENTRY_H
#define AECORE_TUNING_PARSER_MODEENTRY_H

#include <atomic>
#include <map>

#include "aecore/aecore_types.h"
#include "tuning/parser/parameterlogging.h"
#include "tuning/parser/parametertypes.h"
#include "tuning/parser/plist.h"

class ParameterModule;

struct ModuleReference
{
    explicit ModuleReference(ParameterModule* pModule)
        : Module(pModule)
        , RefCount(0)
    {
    }
    ParameterModule*  Module;
    ParameterRefCount RefCount;
};

class ModeEntry
{
public:
    ModeEntry(UINT32 id, ModeUnion mode, bool loaded, bool preserve, ModeEntry** pLink);

    // Appends a child at the end of the child list.
    void       AddMode(ModeEntry* pChild);
    // The mode at the end of the link chain (this one without a link).
    ModeEntry* Resolve();
    // A child of the link target with the same mode and sub-mode (the group is not compared).
    ModeEntry* FindMode(const TuningMode* pMode);
    // A chain of count nested children matching the same-type modes of the branch, in any order.
    ModeEntry* FindMode(const TuningMode* pBranch, UINT32 count, UINT32 depth);
    // The instance of a name hash in the link target's map, or null.
    ParameterModule* FindModule(UINT64 hash);
    // Enters an instance with no references; a hash already present is left as it is.
    void       AddModule(UINT64 hash, ParameterModule* pModule);
    // Puts pModule in place of the instance of its hash; returns the replaced one (null if none).
    ParameterModule* ReplaceModule(UINT64 hash, ParameterModule* pModule);
    void       GetModules(PList<ParameterModule*>& list, bool local, bool inherited, const PipelineType* pPipeline,
                          const IParameterLoggingAPI* pLog);
    void       ReleaseModules(PList<ParameterModule*>& list, const IParameterLoggingAPI* pLog);
    // "<mode>.<submode>" from Default down, joined by "|".
    void       GetModePath(CHAR* pOut, UINT32 size) const;
    const CHAR* GetModeName() const;
    const CHAR* GetSubModeName() const;
    bool       AddReference(ParameterModule* pModule, const IParameterLoggingAPI* pLog);
    bool       ReleaseReference(ParameterModule* pModule, const IParameterLoggingAPI* pLog);
    // The reference of a module that this mode owns; null, with the given log line, when it is absent or foreign.
    ModuleReference* FindOwnReference(ParameterModule* pModule, const IParameterLoggingAPI* pLog,
                                      const CHAR* pMissingFormat, const CHAR* pWrongModeFormat);
    void       ReleaseReferences(const IParameterLoggingAPI* pLog);
    // References of one own instance, or of all own instances for null.
    UINT32     GetReferenceCount(ParameterModule* pModule);
    bool       IsActive();
    bool       HasLocalModules();
    bool       IsParent(const ModeEntry* pCandidate) const;
    // True if the instance's own mode is this one.
    bool       IsOwnModule(const ParameterModule* pModule) const;

    UINT32                             Id;
    ModeUnion                          Mode;
    // Atomic: the live tuning link protects a mode while camera threads walk the tree.
    std::atomic<bool>                  Loaded;
    std::atomic<bool>                  Preserve;
    ModeEntry**                        Link;
    ModeEntry*                         Parent;
    ModeEntry*                         FirstChild;
    ModeEntry*                         LastChild;
    ModeEntry*                         Next;
    ParameterMutex                     Mutex;
    std::map<UINT64, ModuleReference>  ModuleMap;
    // Table index, to find the table's mutex for references.
    UINT32                             TableIndex;
};

// A slot of a mode table: several slots may share one mode that differs only in the group.
struct ModeEntryInfo
{
    ModeEntry* Entry;
    BYTE       Group;
};

class ParameterModeTable
{
public:
    ParameterModeTable(const CHAR* pName, UINT32 count);
    ~ParameterModeTable();
    ParameterModeTable(const ParameterModeTable&) = delete;
    ParameterModeTable& operator=(const ParameterModeTable&) = delete;

    // Takes ownership of a mode made for this table.
    void Own(ModeEntry* pEntry) { m_owned.Add(pEntry); }
    PList<ModeEntry*>& Owned() { return m_owned; }

    CHAR*             Name;
    ModeEntryInfo     RootMode;
    ModeEntryInfo*    Modes;
    UINT32            Count;
    PList<ModeEntry*> ActiveModes;
    ParameterMutex    ActModeMutex;

private:
    PList<ModeEntry*> m_owned;
};

#endif // AECORE_TUNING_PARSER_MODEENTRY_H
