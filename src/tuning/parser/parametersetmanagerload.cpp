// The parameter store: reading the header and section table, loading, reloading and freeing a parameter file.
#include <cstdio>
#include <cstring>
#include <new>

#include "platform/osutils.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parameterutils.h"

namespace
{
const CHAR   TagText[]         = "KVR Sorenta Header";
const UINT64 CompressedFlag    = 0x2;
const UINT32 MaxModeTables     = 256;

// A logging object that wants nothing, for reads that must stay quiet.
class SilentLogging : public IParameterLoggingAPI
{
public:
    const CHAR* GetLoggingIdentifier() const override { return nullptr; }
    bool        LoggingEnabled(ParameterLogLevel) const override { return false; }
};

bool ReadHeaderText(CHAR* pDest, UINT32 size, const BYTE* pBuffer, SIZE_T length, UINT32& pos,
                    const IParameterLoggingAPI* pLog)
{
    std::memset(pDest, 0, size + 1);
    return ParameterUtils::ReadField(pDest, size, pBuffer, length, pos, 1, pLog);
}
} // namespace

UINT32 ParameterSetManager::GetModeEntrySize(BYTE alignment, VersionUnion version)
{
    if (1 == alignment)
    {
        if (version < VersionUnion::Make(3, 0, 1))
        {
            return 16;
        }
        return (version < VersionUnion::Make(5, 0, 0)) ? 20 : 24;
    }
    return (version < VersionUnion::Make(2, 0, 0)) ? 24 : 32;
}

bool ParameterSetManager::ReadHeader(const BYTE* pBuffer, SIZE_T length, UINT32& pos, UINT32& sectionTableOffset,
                                     BYTE& alignment, VersionUnion& version, CHAR* pBinaryTag, UINT64& flags,
                                     UINT32& sectionCount, CHAR* pErrorText, const IParameterLoggingAPI* pLog)
{
    CHAR   tag[ParameterTagSize + 1];
    CHAR   createdBy[ParameterCreatedBySize + 1];
    CHAR   binaryTag[ParameterBinaryTagSize + 1];
    UINT32 expectedSize = 0;
    pos                 = 0;
    version.Value       = 0;
    flags               = 0;
    sectionTableOffset  = 0;
    sectionCount        = 0;
    pErrorText[0]       = '\0';
    std::memset(binaryTag, 0, sizeof(binaryTag));

    // Every field first; a field past the end is logged and leaves the header truncated.
    bool complete = ReadHeaderText(tag, ParameterTagSize, pBuffer, length, pos, pLog);
    complete      = complete && ParameterUtils::ReadValue(expectedSize, pBuffer, length, pos, 1, pLog);
    complete      = complete && ParameterUtils::ReadValue(version.Value, pBuffer, length, pos, 1, pLog);
    if (complete && (version >= VersionUnion::Make(1, 0, 2)))
    {
        complete = ReadHeaderText(createdBy, ParameterCreatedBySize, pBuffer, length, pos, pLog) &&
                   ReadHeaderText(binaryTag, ParameterBinaryTagSize, pBuffer, length, pos, pLog);
    }
    if (complete && (version >= VersionUnion::Make(3, 0, 0)))
    {
        complete = ParameterUtils::ReadValue(flags, pBuffer, length, pos, 1, pLog);
    }
    complete = complete && ParameterUtils::ReadValue(sectionTableOffset, pBuffer, length, pos, 1, pLog);
    complete = complete && ParameterUtils::ReadValue(sectionCount, pBuffer, length, pos, 1, pLog);
    if (nullptr != pBinaryTag)
    {
        std::memcpy(pBinaryTag, binaryTag, sizeof(binaryTag));
    }

    // The alignment of everything behind the header, set on every path.
    alignment = ((version >= VersionUnion::Make(1, 1, 0)) && (version < VersionUnion::Make(3, 0, 1))) ? 8 : 1;

    if ((nullptr == pBuffer) || (length < ParameterTagSize) || ('\0' == tag[0]))
    {
        Vela::OsUtils::SNPrintF(pErrorText, ParameterErrorTextSize, "Failed to read binary header tag");
        return false;
    }
    if (0 != std::strcmp(tag, TagText))
    {
        Vela::OsUtils::SNPrintF(pErrorText, ParameterErrorTextSize, "Invalid binary header tag: %s", tag);
        return false;
    }
    if ((length < expectedSize) && (0 == (flags & CompressedFlag)))
    {
        Vela::OsUtils::SNPrintF(pErrorText, ParameterErrorTextSize,
                                "Binary header data too small: Expected: %d bytes, Actual: %u bytes",
                                static_cast<INT32>(expectedSize), static_cast<UINT32>(length));
        return false;
    }
    if (version < VersionUnion::Make(1, 0, 2))
    {
        Vela::OsUtils::SNPrintF(pErrorText, ParameterErrorTextSize,
                                "Warning: This is an older binary format, only Default mode data is supported. To "
                                "support multiple modes, please re-generate binary using the latest version of Sorenta");
    }
    else if (version > VersionUnion::Make(7, 0, 0))
    {
        Vela::OsUtils::SNPrintF(pErrorText, ParameterErrorTextSize,
                                "Unsupported binary header version : %u.%u.%u. Please re-generate parser code using "
                                "the latest version of ParameterParser",
                                version.Version.Major, version.Version.Minor, version.Version.Patch);
        return false;
    }
    if (!ParameterBinaryFile::ValidateCRC(pBuffer, length, version >= VersionUnion::Make(6, 0, 0), pLog))
    {
        Vela::OsUtils::SNPrintF(pErrorText, ParameterErrorTextSize, "Binary file CRC validation failed");
        return false;
    }
    if (!complete)
    {
        Vela::OsUtils::SNPrintF(pErrorText, ParameterErrorTextSize, "General error parsing binary header data header");
        return false;
    }
    return true;
}

bool ParameterSetManager::ReadHeader(const BYTE* pBuffer, SIZE_T length)
{
    CHAR       errorText[ParameterErrorTextSize];
    UINT32     pos = 0;
    const bool ok  = ReadHeader(pBuffer, length, pos, m_sectionTableOffset, m_alignment, m_version, m_binaryTag,
                               m_flags, m_sectionCount, errorText, this);
    if (!ok)
    {
        if ('\0' != errorText[0])
        {
            SetError(errorText);
        }
        return false;
    }
    if ('\0' != errorText[0])
    {
        SetWarning(errorText);
    }
    delete[] m_pLoggingIdentifier;
    m_pLoggingIdentifier = nullptr;
    CHAR identifier[ParameterErrorTextSize];
    if (nullptr != m_pIdentifier)
    {
        Vela::OsUtils::SNPrintF(identifier, sizeof(identifier), "%s;BinaryTag=%s", m_pIdentifier, m_binaryTag);
    }
    else
    {
        Vela::OsUtils::StrLCpy(identifier, m_binaryTag, sizeof(identifier));
    }
    const SIZE_T size    = std::strlen(identifier) + 1;
    m_pLoggingIdentifier = new (std::nothrow) CHAR[size];
    if (nullptr != m_pLoggingIdentifier)
    {
        std::memcpy(m_pLoggingIdentifier, identifier, size);
    }
    return true;
}

bool ParameterSetManager::ReadSectionInfo(const BYTE* pBuffer, SIZE_T length, UINT32& pos, BYTE alignment,
                                          UINT32 sectionCount, SectionInfo& symbolTable, SectionInfo& dataTable,
                                          PList<SectionInfo>& modeTables, SectionInfo& data, SectionInfo& definitions,
                                          CHAR* pErrorText, const IParameterLoggingAPI* pLog)
{
    pErrorText[0] = '\0';
    symbolTable   = SectionInfo();
    dataTable     = SectionInfo();
    data          = SectionInfo();
    definitions   = SectionInfo();
    modeTables.Clear();
    if (sectionCount < ParameterMinSections)
    {
        ParameterLogging::Write(pLog, Error, "ReadSectionInfo: Section count %d is less than Min sections %d\n",
                                static_cast<INT32>(sectionCount), static_cast<INT32>(ParameterMinSections));
        return false;
    }
    if (nullptr == pBuffer)
    {
        Vela::OsUtils::SNPrintF(pErrorText, ParameterErrorTextSize, "ReadSectionInfo: buffer is nullptr");
        return false;
    }
    for (UINT32 i = 0; i < sectionCount; i++)
    {
        UINT32      type = 0;
        SectionInfo info = {};
        if (!ParameterUtils::ReadValue(type, pBuffer, length, pos, alignment, pLog) ||
            !ParameterUtils::ReadValue(info.Offset, pBuffer, length, pos, alignment, pLog) ||
            !ParameterUtils::ReadValue(info.Size, pBuffer, length, pos, alignment, pLog))
        {
            Vela::OsUtils::SNPrintF(pErrorText, ParameterErrorTextSize, "Error reading data from header sections");
            return false;
        }
        switch (type)
        {
            case ParameterSectionType_SymbolTable:     symbolTable = info; break;
            case ParameterSectionType_Data:            data = info; break;
            case ParameterSectionType_DataTable:       dataTable = info; break;
            case ParameterSectionType_DefinitionTable: definitions = info; break;
            case ParameterSectionType_ModeTable:
                // A mode ID has 8 bits for its table.
                if (modeTables.Count() >= MaxModeTables)
                {
                    ParameterLogging::Write(pLog, Error, "ReadSectionInfo: More than %u mode table sections\n",
                                            MaxModeTables);
                    return false;
                }
                modeTables.Add(info);
                break;
            default:
                ParameterLogging::Write(pLog, Error, "Invalid binary section type %d\n", static_cast<INT32>(type));
                return false;
        }
    }
    return true;
}

bool ParameterSetManager::ReadSections(const BYTE* pBuffer, SIZE_T length, const CHAR* pFileName,
                                       ParameterBinaryFile* pFile, UINT32 fileLength, UINT32 position, BYTE alignment)
{
    CHAR   errorText[ParameterErrorTextSize];
    UINT32 pos = position;
    if (!ReadSectionInfo(pBuffer, length, pos, alignment, m_sectionCount, m_symbolSection, m_dataTableSection,
                         m_modeSections, m_dataSection, m_definitionSection, errorText, this))
    {
        if ('\0' != errorText[0])
        {
            ParameterLogging::Write(this, Error, "%s\n", errorText);
        }
        SetError("Invalid binary file section count");
        return false;
    }
    if (0 != (m_flags & CompressedFlag))
    {
        SetError("Compressed binary file not supported (support ended with V5.1.0)");
        return false;
    }

    m_pSymbolTable = new (std::nothrow) ParameterFileSymbolTable(this, this, m_version, alignment);
    if (nullptr == m_pSymbolTable)
    {
        return false;
    }
    if (nullptr != pFile)
    {
        m_pSymbolTable->TakeFile(pFile);
    }
    const bool modesOk = ReadModeSections(pBuffer, length, pFile, alignment);
    if ((0 == m_symbolSection.Offset) || (0 == m_symbolSection.Size) || (0 == m_dataSection.Offset) ||
        (0 == m_dataSection.Size))
    {
        ParameterLogging::Write(this, Error,
                                "ReadModeSections: Binary missing symbol table or data SymbolOffset(%d) && "
                                "SymbolSize(%d) && DataOffset(%d) && DataSize(%d)\n",
                                static_cast<INT32>(m_symbolSection.Offset), static_cast<INT32>(m_symbolSection.Size),
                                static_cast<INT32>(m_dataSection.Offset), static_cast<INT32>(m_dataSection.Size));
        return modesOk;
    }
    if (!m_pSymbolTable->Load(pBuffer, length, pFileName, pFile, fileLength, m_symbolSection, m_dataTableSection,
                              m_dataSection, m_definitionSection, this, true))
    {
        return false;
    }
    const bool bufferMode = (nullptr == pFile);
    if (!bufferMode)
    {
        m_pSymbolTable->FreeEntryData();
    }
    for (UINT32 i = 0; i < m_pSymbolTable->ModuleCount(); i++)
    {
        ModuleData* pData = m_pSymbolTable->GetModule(i);
        const bool  preserve =
            (nullptr != pData->Mode) && (nullptr != pData->Mode->Entry) && pData->Mode->Entry->Preserve;
        ParameterModule* pModule = CreateModule(pData, bufferMode || preserve);
        if ((nullptr == pModule) || !AddModule(pData, pModule))
        {
            m_status = false;
        }
    }
    if (bufferMode)
    {
        m_pSymbolTable->FreeEntryData();
        m_pSymbolTable->FreeLookupData();
        m_pSymbolTable->ClearDefinitions(true);
    }
    else
    {
        m_pSymbolTable->ClearDefinitions(false);
    }
    return modesOk;
}

bool ParameterSetManager::LoadFromBuffer(const BYTE* pBuffer, SIZE_T length)
{
    if (length > 0xFFFFFFFFull)
    {
        ParameterLogging::Write(this, Error, "Buffer length (%llu) exceeds maximum %lu\n",
                                static_cast<unsigned long long>(length), static_cast<unsigned long>(0xFFFFFFFFul));
        m_status = false;
        return false;
    }
    const bool ok = ReadHeader(pBuffer, length) &&
                    ReadSections(pBuffer, length, nullptr, nullptr, static_cast<UINT32>(length), m_sectionTableOffset,
                                 m_alignment);
    if (!ok)
    {
        m_status = false;
        FreeBinaryParameters();
        return false;
    }
    ParameterLogging::Write(this, Debug, "Load Binary Parameters completed: Tag: %s, Version: %d.%d.%d\n", m_binaryTag,
                            m_version.Version.Major, m_version.Version.Minor,
                            static_cast<INT32>(m_version.Version.Patch));
    return true;
}

bool ParameterSetManager::LoadBinaryParameters(BYTE* pBuffer, SIZE_T length)
{
    ParameterSetManager* pRoot = Root();
    if (pRoot != this)
    {
        return pRoot->LoadBinaryParameters(pBuffer, length);
    }
    ParameterLogging::Write(this, Debug, "Load Binary Parameters from buffer\n");
    m_status = true;
    if (nullptr != m_pSymbolTable)
    {
        SetError("Binary file already loaded");
        return false;
    }
    return LoadFromBuffer(pBuffer, length);
}

bool ParameterSetManager::LoadBinaryParameters(const CHAR* pFileName)
{
    ParameterSetManager* pRoot = Root();
    if (pRoot != this)
    {
        return pRoot->LoadBinaryParameters(pFileName);
    }
    m_status = true;
    if (nullptr == pFileName)
    {
        SetError("LoadBinaryParameters called with nullptr file name");
        return false;
    }
    const SIZE_T nameLength = std::strlen(pFileName);
    if (nameLength >= ParameterFileNameSize - 1)
    {
        ParameterLogging::Write(this, Error, "File name length (%lld) exceeds max file name length of %d\n",
                                static_cast<long long>(nameLength), static_cast<INT32>(ParameterFileNameSize - 1));
        return false;
    }
    ParameterLogging::Write(this, Debug, "Load Binary Parameters from file: %s\n", pFileName);
    if (nullptr != m_pSymbolTable)
    {
        SetError("Binary file already loaded");
        return false;
    }

    ParameterBinaryFile* pFile   = new (std::nothrow) ParameterBinaryFile(pFileName, this);
    BYTE*                pBuffer = ((nullptr != pFile) && pFile->IsValid()) ? pFile->Read(0, pFile->Length()) : nullptr;
    if (nullptr == pBuffer)
    {
        SetError("Unable to allocate space to read binary file");
        delete pFile;
        m_status = false;
        return false;
    }
    const UINT32 length = pFile->Length();
    if (!m_keepFile)
    {
        delete pFile;
        const bool ok = LoadFromBuffer(pBuffer, length);
        delete[] pBuffer;
        return ok;
    }

    // File mode: the checksum covers the whole file; afterwards only header and section table stay in memory.
    Vela::OsUtils::StrLCpy(m_fileName, pFileName, sizeof(m_fileName));
    bool ok = ReadHeader(pBuffer, length);
    delete[] pBuffer;
    BYTE* pHeader = nullptr;
    if (ok)
    {
        pHeader = pFile->Read(0, ParameterFileHeaderReadSize);
        if (nullptr == pHeader)
        {
            ParameterLogging::Write(this, Error, "Failed to read %d bytes from binary file %s\n",
                                    static_cast<INT32>(ParameterFileHeaderReadSize), pFileName);
            ok = false;
        }
    }
    if (ok && (0 != (m_flags & CompressedFlag)))
    {
        ParameterLogging::Write(this, Error, "Compressed binary files ssupport removed in V5.1.0\n");
        ok = false;
    }
    bool fileTaken = false;
    if (ok)
    {
        ok = ReadSections(pHeader, ParameterFileHeaderReadSize, pFileName, pFile, length, m_sectionTableOffset,
                          m_alignment);
        fileTaken = (nullptr != m_pSymbolTable);
    }
    delete[] pHeader;
    if (!fileTaken)
    {
        delete pFile;
    }
    if (!ok)
    {
        m_status = false;
        FreeBinaryParameters();
        m_fileName[0] = '\0';
        return false;
    }
    ParameterLogging::Write(this, Debug, "Load Binary Parameters completed: Binary Version: %d.%d.%d\n",
                            m_version.Version.Major, m_version.Version.Minor,
                            static_cast<INT32>(m_version.Version.Patch));
    // The load's own reference: the file closes until a mode load needs it.
    m_pSymbolTable->FileReference(-1);
    return true;
}

bool ParameterSetManager::ReloadBinaryParameters(bool bufferMode)
{
    ParameterSetManager* pRoot = Root();
    if (pRoot != this)
    {
        return pRoot->ReloadBinaryParameters(bufferMode);
    }
    if ('\0' == m_fileName[0])
    {
        SetError("ReloadBinaryParameters called with empty file name");
        return false;
    }
    ParameterLogging::Write(this, Debug, "Reloading binary file %s%s\n", m_fileName, bufferMode ? " in buffer mode" : "");
    FreeReplacedParameters();

    SaveAndClearModules();
    if (nullptr != m_pSymbolTable)
    {
        m_replacedSymbolTables.Add(m_pSymbolTable);
        m_pSymbolTable = nullptr;
    }
    PList<ParameterModeTable*> previous;
    for (UINT32 i = 0; i < m_modeTables.Count(); i++)
    {
        m_replacedModeTables.Add(m_modeTables[i]);
        previous.Add(m_modeTables[i]);
    }
    m_modeTables.Clear();
    m_modeSections.Clear();

    CHAR fileName[ParameterFileNameSize];
    Vela::OsUtils::StrLCpy(fileName, m_fileName, sizeof(fileName));
    FreeBinaryParameters();

    bool ok = false;
    if (bufferMode)
    {
        FILE* pStream = std::fopen(fileName, "rb");
        if (nullptr == pStream)
        {
            SetError("ReloadBinaryParameters: Failed to open file");
            return false;
        }
        m_fileName[0] = '\0';
        BYTE*  pBuffer = nullptr;
        SIZE_T length  = 0;
        if ((0 == std::fseek(pStream, 0, SEEK_END)))
        {
            const long size = std::ftell(pStream);
            if ((size > 0) && (0 == std::fseek(pStream, 0, SEEK_SET)))
            {
                pBuffer = new (std::nothrow) BYTE[static_cast<SIZE_T>(size)];
                length  = static_cast<SIZE_T>(size);
                if ((nullptr != pBuffer) && (std::fread(pBuffer, 1, length, pStream) != length))
                {
                    delete[] pBuffer;
                    pBuffer = nullptr;
                }
            }
        }
        std::fclose(pStream);
        if (nullptr == pBuffer)
        {
            SetError("ReloadBinaryParameters: Failed to allocate space to read data from file");
            return false;
        }
        ok = LoadBinaryParameters(pBuffer, length);
        delete[] pBuffer;
    }
    else
    {
        m_fileName[0] = '\0';
        ok            = LoadBinaryParameters(fileName);
    }
    if (ok)
    {
        TransferReferenceCounts(previous);
    }
    return ok;
}

void ParameterSetManager::TransferReferenceCounts(PList<ParameterModeTable*>& previous)
{
    if (previous.Count() != m_modeTables.Count())
    {
        return;
    }
    for (UINT32 t = 0; t < previous.Count(); t++)
    {
        ParameterModeTable* pOld = previous[t];
        ParameterModeTable* pNew = m_modeTables[t];
        if (pOld->Count != pNew->Count)
        {
            continue;
        }
        PList<ModeEntry*> done;
        for (UINT32 slot = 0; slot < pOld->Count; slot++)
        {
            ModeEntry* pOldMode = pOld->Modes[slot].Entry;
            ModeEntry* pNewMode = pNew->Modes[slot].Entry;
            if ((nullptr == pOldMode) || (nullptr == pNewMode) || done.Contains(pNewMode))
            {
                continue;
            }
            done.Add(pNewMode);
            auto oldIt = pOldMode->ModuleMap.begin();
            auto newIt = pNewMode->ModuleMap.begin();
            for (; (pOldMode->ModuleMap.end() != oldIt) && (pNewMode->ModuleMap.end() != newIt); ++oldIt, ++newIt)
            {
                const CHAR* pOldName = oldIt->second.Module->GetModuleName();
                const CHAR* pNewName = newIt->second.Module->GetModuleName();
                if ((nullptr == pOldName) || (nullptr == pNewName) || (0 != std::strcmp(pOldName, pNewName)))
                {
                    ParameterLogging::Write(this, Debug,
                                            "ReloadBinaryParameters: Failed to transfer reference counts, current "
                                            "module name (%s) does not match prev name (%s) in mode index %d\n",
                                            (nullptr != pNewName) ? pNewName : "", (nullptr != pOldName) ? pOldName : "",
                                            static_cast<INT32>(slot));
                    break;
                }
                const UINT32 count = oldIt->second.RefCount.load();
                if (count > 0)
                {
                    newIt->second.RefCount += count;
                }
            }
        }
    }
}

void ParameterSetManager::FreeReplacedParameters()
{
    ParameterLogging::Write(this, Debug, "FreeReplacedParameters called\n");
    // Modules first: unloading them needs their symbol table.
    for (UINT32 i = 0; i < m_replacedModules.Count(); i++)
    {
        delete m_replacedModules[i];
    }
    m_replacedModules.Clear();
    for (UINT32 i = 0; i < m_replacedSymbolTables.Count(); i++)
    {
        delete m_replacedSymbolTables[i];
    }
    m_replacedSymbolTables.Clear();
    for (UINT32 i = 0; i < m_replacedModeTables.Count(); i++)
    {
        delete m_replacedModeTables[i];
    }
    m_replacedModeTables.Clear();
}

void ParameterSetManager::FreeBinaryParameters()
{
    ParameterLogging::Write(this, Debug, "FreeBinaryParameters called\n");
    // Instances point into the symbol table and the mode tables, so they go first.
    for (auto& entry : m_defaultModules)
    {
        DefaultModule::DeleteChain(entry.second->first);
        entry.second->first = nullptr;
        entry.second->last  = nullptr;
    }
    delete[] m_pLoggingIdentifier;
    m_pLoggingIdentifier = nullptr;
    for (UINT32 i = 0; i < m_modeTables.Count(); i++)
    {
        delete m_modeTables[i];
    }
    m_modeTables.Clear();
    m_modeSections.Clear();
    delete m_pSymbolTable;
    m_pSymbolTable = nullptr;
    m_binaryTag[0] = '\0';
}

bool ParameterSetManager::ModeTableEntryExists(const CHAR* pFileName, const CHAR* pTableName)
{
    if ((nullptr == pFileName) || (nullptr == pTableName))
    {
        return false;
    }
    SilentLogging       silent;
    ParameterBinaryFile file(pFileName, &silent);
    BYTE*               pBuffer = file.IsValid() ? file.Read(0, file.Length()) : nullptr;
    if (nullptr == pBuffer)
    {
        return false;
    }
    const UINT32       length = file.Length();
    CHAR               errorText[ParameterErrorTextSize];
    UINT32             pos = 0;
    UINT32             sectionTableOffset;
    UINT32             sectionCount;
    BYTE               alignment;
    VersionUnion       version;
    UINT64             flags;
    SectionInfo        symbols;
    SectionInfo        dataTable;
    SectionInfo        data;
    SectionInfo        definitions;
    PList<SectionInfo> modeTables;
    bool               found = false;
    if (ReadHeader(pBuffer, length, pos, sectionTableOffset, alignment, version, nullptr, flags, sectionCount,
                   errorText, &silent) &&
        (version.Version.Major >= 7))
    {
        pos = sectionTableOffset;
        if (ReadSectionInfo(pBuffer, length, pos, alignment, sectionCount, symbols, dataTable, modeTables, data,
                            definitions, errorText, &silent))
        {
            for (UINT32 i = 0; (i < modeTables.Count()) && !found; i++)
            {
                const SectionInfo& section = modeTables[i];
                if (static_cast<UINT64>(section.Offset) + ParameterTableNameSize <= length)
                {
                    CHAR name[ParameterTableNameSize + 1];
                    std::memcpy(name, pBuffer + section.Offset, ParameterTableNameSize);
                    name[ParameterTableNameSize] = '\0';
                    found                         = (0 == std::strcmp(name, pTableName));
                }
            }
        }
    }
    delete[] pBuffer;
    return found;
}
