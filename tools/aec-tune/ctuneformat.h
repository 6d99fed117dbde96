// Layout rules of a parameter file of one version: alignment, which fields exist, and the sizes of header and entries.
#ifndef AECTUNE_CTUNEFORMAT_H
#define AECTUNE_CTUNEFORMAT_H

#include <string>

#include "tunesourcemodel.h"

namespace AecTune
{

class CTuneFormat
{
public:
    // Bounds of the versions this tool writes.
    static constexpr TuneVersion OldestVersion         = { 1, 0, 1 };
    static constexpr TuneVersion NewestVersion         = { 7, 0, 0 };
    // Versions at which the format changes.
    static constexpr TuneVersion ModeTreeMinVersion    = { 1, 0, 2 };
    static constexpr TuneVersion AlignmentStartVersion = { 1, 1, 0 };
    static constexpr TuneVersion LinkVersion           = { 2, 0, 0 };
    static constexpr TuneVersion FlagsStartVersion     = { 3, 0, 0 };
    static constexpr TuneVersion AlignedEndVersion     = { 3, 0, 1 };
    static constexpr TuneVersion DataTableVersion      = { 4, 0, 0 };
    static constexpr TuneVersion ModeFlagsVersion      = { 5, 0, 0 };
    static constexpr TuneVersion StructSymbolsVersion  = { 6, 0, 0 };
    static constexpr TuneVersion MultiModeTableVersion = { 7, 0, 0 };

    // The tag every file starts with, and the field sizes of the header.
    static constexpr const char* FileTag       = "KVR Sorenta Header";
    static constexpr UINT32 TagBytes           = 28;
    static constexpr UINT32 CreatedByBytes     = 48;
    static constexpr UINT32 BinaryTagBytes     = 64;
    static constexpr UINT32 SymbolNameBytes    = 32;
    // A reader that keeps the file open reads header and section table from this many leading bytes.
    static constexpr UINT32 FileModeHeadBytes  = 3388;

    // Values of a section record's Type.
    static constexpr UINT32 SectionSymbolTable = 0;
    static constexpr UINT32 SectionData        = 1;
    static constexpr UINT32 SectionModeTable   = 2;
    static constexpr UINT32 SectionDataTable   = 3;
    static constexpr UINT32 SectionDefinitions = 4;

    // A mode entry's LinkID when it has no link; a symbol entry's ModeId when it holds no module.
    static constexpr UINT32 NoModeId           = 0xFFFFFFFFu;

    explicit CTuneFormat(const TuneVersion& version);

    static int         Compare(const TuneVersion& left, const TuneVersion& right);
    static bool        ParseVersion(const std::string& text, TuneVersion* pVersion);
    static std::string FormatVersion(const TuneVersion& version);
    // True for versions this tool can write: 1.0.1 up to 7.0.0.
    static bool        IsSupported(const TuneVersion& version);

    const TuneVersion& Version() const;
    bool   AtLeast(const TuneVersion& version) const;
    UINT32 Alignment() const;

    bool   HasModeTree() const;          // Created By, BinaryTag and mode tables beyond Default
    bool   HasHeaderFlags() const;
    bool   HasLinks() const;
    bool   HasModeFlags() const;
    bool   HasDuplicateIds() const;      // symbol and data entries carry a DuplicateID
    bool   HasSymbolReserved() const;
    bool   HasDataTable() const;
    bool   HasNameHashes() const;        // symbols by name hash, IDs by index, structure load limits, 64-bit checksum
    bool   HasFixedArrayCounts() const;
    bool   HasMultipleModeTables() const;

    UINT32 HeaderSize() const;
    UINT32 SectionRecordSize() const;
    UINT32 ModeTableNameBytes() const;
    UINT32 ModeEntrySize() const;
    UINT32 SymbolEntrySize() const;
    UINT32 DataTableEntrySize() const;
    UINT32 ChecksumBytes() const;

private:
    TuneVersion m_version;
};

} // namespace AecTune

#endif // AECTUNE_CTUNEFORMAT_H
