// The parameter store: loads a parameter file, owns its mode trees and module instances, and serves them.
#ifndef AECORE_TUNING_PARSER_PARAMETERSETMANAGER_H
#define AECORE_TUNING_PARSER_PARAMETERSETMANAGER_H

#include <atomic>
#include <map>

#include "aecore/aecore_types.h"
#include "tuning/parser/iparameterdataapi.h"
#include "tuning/parser/modeentry.h"
#include "tuning/parser/parameterbinaryfile.h"
#include "tuning/parser/parameterfilesymboltable.h"
#include "tuning/parser/parameterlogging.h"
#include "tuning/parser/parametermodule.h"
#include "tuning/parser/parametertypes.h"
#include "tuning/parser/plist.h"

class ParameterSetManager : public IModeTable, public IParameterDataAPI
{
public:
    // A main manager has no parent and serves table 0; a derived one serves one table of its root.
    ParameterSetManager(ParameterSetManager* pParent, BYTE tableIndex, const CHAR* pIdentifier);
    ~ParameterSetManager() override;
    ParameterSetManager(const ParameterSetManager&) = delete;
    ParameterSetManager& operator=(const ParameterSetManager&) = delete;

    // IModeTable: the slot of a packed mode ID of the tables being read.
    ModeEntryInfo* GetModeEntry(UINT32 modeId) override;

    // IParameterDataAPI
    UINT32     GetModeTableCount() override;
    bool       GetModeTableNames(PList<const CHAR*>& names) override;
    bool       GetValue(UINT32 tableIndex, const CHAR* pModePath, const CHAR* pName, const CHAR* pFields, CHAR* pOut,
                        UINT32 size) override;
    bool       SetValue(UINT32 tableIndex, const CHAR* pModePath, const CHAR* pName, const CHAR* pField,
                        const CHAR* pValue) override;
    bool       GetInfo(UINT32 tableIndex, const CHAR* pModePath, const CHAR* pName,
                       PList<ParameterParserInfo>& list) override;
    bool       GetActiveModes(UINT32 tableIndex, CHAR* pOut, UINT32 size) override;
    bool       GetModeShorthand(const CHAR* pText, CHAR* pOut, UINT32 size) override;
    ModeEntry* GetModeEntry(UINT32 tableIndex, const CHAR* pPath) override;
    ModeEntry* GetModeEntry(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count) override;
    UINT32     GetChildModes(UINT32 tableIndex, const CHAR* pPath, CHAR* pOut, UINT32 size) override;

    // IParameterLoggingAPI
    const CHAR* GetLoggingIdentifier() const override;
    bool        LoggingEnabled(ParameterLogLevel level) const override;

    virtual DefaultModule* GetDefaultModule(UINT64 nameHash);
    virtual void           SaveAndClearModules();
    virtual void           SaveAndClearModule(DefaultModule* pDefault);

    // Registers the prototype of a module name (the manager owns it); false on a derived manager or for null.
    bool AddDefaultModule(ParameterModule* pPrototype);

    // Loading.
    bool LoadBinaryParameters(BYTE* pBuffer, SIZE_T length);
    bool LoadBinaryParameters(const CHAR* pFileName);
    bool ReloadBinaryParameters(bool bufferMode);
    void FreeBinaryParameters();
    void FreeReplacedParameters();

    static bool ReadHeader(const BYTE* pBuffer, SIZE_T length, UINT32& pos, UINT32& sectionTableOffset,
                           BYTE& alignment, VersionUnion& version, CHAR* pBinaryTag, UINT64& flags,
                           UINT32& sectionCount, CHAR* pErrorText, const IParameterLoggingAPI* pLog);
    bool        ReadHeader(const BYTE* pBuffer, SIZE_T length);
    static bool ReadSectionInfo(const BYTE* pBuffer, SIZE_T length, UINT32& pos, BYTE alignment, UINT32 sectionCount,
                                SectionInfo& symbolTable, SectionInfo& dataTable, PList<SectionInfo>& modeTables,
                                SectionInfo& data, SectionInfo& definitions, CHAR* pErrorText,
                                const IParameterLoggingAPI* pLog);
    bool        ReadSections(const BYTE* pBuffer, SIZE_T length, const CHAR* pFileName, ParameterBinaryFile* pFile,
                             UINT32 fileLength, UINT32 position, BYTE alignment);
    bool        ReadModeSections(const BYTE* pBuffer, SIZE_T length, ParameterBinaryFile* pFile, BYTE alignment);
    static bool ModeTableEntryExists(const CHAR* pFileName, const CHAR* pTableName);
    static UINT32 GetModeEntrySize(BYTE alignment, VersionUnion version);

    void        SetError(const CHAR* pText, const ModuleData* pModuleData = nullptr);
    const CHAR* GetLastError() const { return m_lastError; }
    // False after a failed load or a module that could not be made.
    bool        GetStatus() const { return m_status; }

    // Modes and modules.
    bool LoadMode(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pCaller);
    bool UnloadMode(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count);
    bool GetModules(UINT32 tableIndex, PList<ParameterModule*>& list, const TuningMode* pBranch, UINT32 count,
                    bool includeLocal, bool includeInherited, const PipelineType* pPipeline);
    // The instance of the deepest mode of the branch that has one; previous (may be null) is released.
    ParameterModule* GetModuleInternal(UINT32 tableIndex, const CHAR* pName, const TuningMode* pBranch, UINT32 count,
                                       ParameterModule* pPrevious, UINT32 flag);
    bool ReleaseModule(ParameterModule* pModule);
    void ReleaseModules(PList<ParameterModule*>& list);
    bool AddReference(ParameterModule* pModule);
    bool ValidateMode(const CHAR* pCaller, const TuningMode* pBranch, UINT32 index);
    ParameterModule* CreateModule(ModuleData* pModuleData, bool load);
    bool             AddModule(ModuleData* pModuleData, ParameterModule* pModule);
    bool             UpdateParameters(ParameterSetManager* pOther);

    // Mode texts.
    static bool   GetModeBranchFromPath(const CHAR* pPath, PList<TuningMode>& list);
    static bool   GetPathFromModeBranch(const TuningMode* pBranch, UINT32 count, CHAR* pOut, UINT32 size);
    static UINT32 GetModeIndex(const CHAR* pName);
    static UINT32 GetSubModeIndex(UINT32 mode, const CHAR* pName);
    static bool   GetDorvikModesString(const CHAR* pText, CHAR* pOut, UINT32 size);

    // Values by text, the branch forms.
    bool GetValue(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pName, const CHAR* pFields,
                  CHAR* pOut, UINT32 size);
    bool SetValue(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pName, const CHAR* pField,
                  const CHAR* pValue);
    bool GetInfo(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pName,
                 PList<ParameterParserInfo>& list);

    // State for tests and for the generated layer.
    ParameterFileSymbolTable* GetSymbolTable() const { return Root()->m_pSymbolTable; }
    ParameterModeTable*       GetModeTable(UINT32 tableIndex) { return Root()->m_modeTables[tableIndex]; }
    VersionUnion              GetVersion() const { return Root()->m_version; }
    const CHAR*               GetBinaryTag() const { return Root()->m_binaryTag; }
    bool                      IsFileMode() const { return '\0' != Root()->m_fileName[0]; }
    UINT32                    GetChangeCount() const { return Root()->m_changeCount.load(); }
    BYTE                      GetTableIndex() const { return m_tableIndex; }
    ParameterSetManager*      Root() const;

protected:
    void SetModeCacheSize(UINT32 size) { m_modeCacheSize = size; }
    void SetKeepFile(bool keep) { m_keepFile = keep; }
    void SetLogEnable(bool debug, bool warning, bool error);

public:
    // Test and tool hooks; a main manager of the generated layer sets them in its constructor.
    void ConfigureForFileMode(UINT32 modeCacheSize) { SetModeCacheSize(modeCacheSize); SetKeepFile(true); }
    void SetIgnoreMissingModules(bool ignore) { m_ignoreMissingModules = ignore; }

private:
    // Adds or releases a reference of a module in its own mode, under the mode table's lock.
    typedef bool (ModeEntry::*ReferenceChange)(ParameterModule* pModule, const IParameterLoggingAPI* pLog);
    bool ChangeReference(ParameterModule* pModule, ReferenceChange pfnChange);
    struct WalkResult
    {
        ModeEntry* Last;
        bool       Complete;
    };
    template <typename Visit>
    WalkResult WalkBranch(ParameterModeTable* pTable, const TuningMode* pBranch, UINT32 count, const CHAR* pCaller,
                          Visit visit);
    bool LoadFromBuffer(const BYTE* pBuffer, SIZE_T length);
    bool LoadModules(ModeEntry* pMode, bool load, const CHAR* pCaller, const TuningMode* pBranch, UINT32 count,
                     UINT32& references);
    bool LoadModeInternal(ParameterModeTable* pTable, const TuningMode* pBranch, UINT32 count, const CHAR* pCaller);
    bool ReadModeSection(const BYTE* pSection, UINT32 size, UINT32 count, BYTE alignment, bool bufferMode);
    void TransferReferenceCounts(PList<ParameterModeTable*>& previous);
    bool CheckTable(UINT32 tableIndex, const CHAR* pCaller);
    void ProtectMode(ParameterModule* pModule);
    void SetWarning(const CHAR* pText);
    void UpdateMode(ParameterModeTable* pTable, UINT32 tableIndex, ModeEntry* pMine, ModeEntry* pTheirs,
                    ParameterSetManager* pOther);
    ParameterModule* ResolveValueModule(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pName,
                                        const CHAR*& pRest);

    ParameterSetManager*              m_pParent;
    BYTE                              m_tableIndex;
    VersionUnion                      m_version;
    UINT64                            m_flags;
    BYTE                              m_alignment;
    UINT32                            m_sectionTableOffset;
    UINT32                            m_sectionCount;
    SectionInfo                       m_symbolSection;
    SectionInfo                       m_dataSection;
    SectionInfo                       m_dataTableSection;
    SectionInfo                       m_definitionSection;
    PList<SectionInfo>                m_modeSections;
    CHAR                              m_lastError[ParameterErrorTextSize];
    bool                              m_status;
    std::map<UINT64, DefaultModule*>  m_defaultModules;
    ParameterFileSymbolTable*         m_pSymbolTable;
    CHAR                              m_fileName[ParameterFileNameSize];
    bool                              m_keepFile;
    UINT32                            m_modeCacheSize;
    BYTE                              m_logEnable[3];
    PList<ParameterModeTable*>        m_modeTables;
    CHAR*                             m_pIdentifier;
    CHAR*                             m_pLoggingIdentifier;
    CHAR                              m_binaryTag[ParameterBinaryTagSize + 1];
    PList<ParameterModule*>           m_replacedModules;
    PList<ParameterModeTable*>        m_replacedModeTables;
    PList<ParameterFileSymbolTable*>  m_replacedSymbolTables;
    std::atomic<UINT32>               m_changeCount;
    bool                              m_ignoreMissingModules;
    // What a merged manager handed over; it lives as long as this manager.
    PList<ParameterModule*>           m_adoptedModules;
    PList<ParameterFileSymbolTable*>  m_adoptedSymbolTables;
    PList<ParameterModeTable*>        m_adoptedModeTables;
};

#endif // AECORE_TUNING_PARSER_PARAMETERSETMANAGER_H
