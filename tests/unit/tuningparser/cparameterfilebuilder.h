// Test helper that lays out parameter files byte by byte, well-formed or deliberately broken.
#ifndef AECORE_TESTS_UNIT_TUNINGPARSER_CPARAMETERFILEBUILDER_H
#define AECORE_TESTS_UNIT_TUNINGPARSER_CPARAMETERFILEBUILDER_H

#include <string>
#include <vector>

#include "tuning/parser/parametertypes.h"

typedef std::vector<BYTE> ByteVector;

// Bytes of one record: little-endian fields padded to the file's alignment, structures with their load limit.
class CRecordWriter
{
public:
    CRecordWriter(BYTE alignment, bool limits)
        : m_alignment(alignment)
        , m_limits(limits)
    {
    }

    CRecordWriter& U8(UINT8 value) { return Field(&value, sizeof(value)); }
    CRecordWriter& U16(UINT16 value) { return Field(&value, sizeof(value)); }
    CRecordWriter& U32(UINT32 value) { return Field(&value, sizeof(value)); }
    CRecordWriter& I32(INT32 value) { return Field(&value, sizeof(value)); }
    CRecordWriter& U64(UINT64 value) { return Field(&value, sizeof(value)); }
    CRecordWriter& F32(FLOAT value) { return Field(&value, sizeof(value)); }
    CRecordWriter& F64(DOUBLE value) { return Field(&value, sizeof(value)); }
    // Opens a structure: its limit (bytes that follow) is filled in by End.
    CRecordWriter& Begin();
    CRecordWriter& End();
    CRecordWriter& Raw(const ByteVector& bytes);
    const ByteVector& Bytes() const { return m_bytes; }

private:
    CRecordWriter& Field(const void* pValue, UINT32 size);

    BYTE                m_alignment;
    bool                m_limits;
    ByteVector          m_bytes;
    std::vector<size_t> m_open;
};

// Records of a definition table.
class CDefinitionWriter
{
public:
    struct Child
    {
        BYTE        Type;
        UINT32      ID;
        std::string Name;
        UINT16      Flags;
        UINT32      MinCount;
        UINT32      MaxCount;
    };

    CDefinitionWriter& Module(UINT32 structureId, const std::string& name);
    CDefinitionWriter& Structure(UINT32 structureId, const std::string& typeName, const std::vector<Child>& children);
    CDefinitionWriter& ScenarioMode();
    CDefinitionWriter& EnumDefinition();
    CDefinitionWriter& Tag(BYTE tag);
    const ByteVector&  Bytes() const { return m_bytes; }

private:
    void Put(const void* pValue, UINT32 size);
    void String(const std::string& text);

    ByteVector m_bytes;
};

class CParameterFileBuilder
{
public:
    CParameterFileBuilder(UINT16 major, UINT16 minor, UINT32 patch);

    VersionUnion Version() const { return m_version; }
    BYTE         Alignment() const;
    bool         HasLimits() const { return m_version >= VersionUnion::Make(6, 0, 0); }
    CRecordWriter Writer() const { return CRecordWriter(Alignment(), HasLimits()); }

    // A module instance of a mode; returns its symbol ID.
    UINT32 AddModule(const std::string& name, VersionUnion version, UINT32 modeId, const ByteVector& data,
                     UINT32 duplicateId = 0);
    // An out-of-line block; returns the reference to it (data table ID, or symbol ID without a data table).
    UINT32 AddData(const ByteVector& data, UINT32 duplicateId = 0);
    // A mode table; returns its index.
    UINT32 AddModeTable(const std::string& name);
    // A mode entry of a table by indices; parent == index for a root. linkIndex NoLink for none.
    void   AddMode(UINT32 table, UINT32 index, UINT16 mode, UINT16 subMode, UINT32 parentIndex,
                   UINT32 linkIndex = NoLink, UINT32 flags = 0, UINT32 group = 0);
    // A raw mode entry (packed IDs as given), for broken tables.
    void   AddRawMode(UINT32 table, UINT32 modeId, UINT16 mode, UINT16 subMode, UINT32 parentId, UINT32 linkId,
                      UINT32 flags = 0, UINT32 group = 0);
    void   SetDefinitions(const ByteVector& bytes) { m_definitions = bytes; }

    ByteVector Build() const;
    // Recomputes the checksum trailer after a test changed bytes.
    static void Reseal(ByteVector& file, bool crc64);

    static UINT32 ModeId(UINT32 table, UINT32 index) { return (table << 24) | index; }

    static const UINT32 NoLink = 0xFFFFFFFFu;

    // Knobs for malformed files.
    std::string Tag       = "KVR Sorenta Header";
    std::string CreatedBy = "unit test builder";
    std::string BinaryTag = "TestBinary";
    UINT64      Flags     = 0;
    bool        SetExpectedSize = false;
    UINT32      ExpectedSize    = 0;
    INT32       SectionCountAdjust = 0;
    bool        OmitSymbols     = false;
    bool        OmitData        = false;
    // Extra section records (type, offset, size) appended to the table.
    std::vector<std::vector<UINT32>> ExtraSections;
    // Bytes appended to the symbol table section (to break its size).
    UINT32      SymbolPadding   = 0;
    // IDs written instead of the counted ones (files below 6.0.0), by entry index.
    std::vector<std::pair<size_t, UINT32>> IdOverrides;
    // Makes the unreachable entry 0 (from 6.0.0) look like a module instance of this name in mode 0.
    std::string PlaceholderModule;

private:
    struct Symbol
    {
        bool         IsModule;
        UINT64       NameHash;
        VersionUnion Version;
        UINT32       ModeId;
        UINT32       DataOffset;
        UINT32       DataSize;
        UINT32       DuplicateID;
    };
    struct ModeRecord
    {
        UINT32 ModeId;
        UINT16 Mode;
        UINT16 SubMode;
        UINT32 Group;
        UINT32 ParentId;
        UINT32 LinkId;
        UINT32 Flags;
    };
    struct Table
    {
        std::string             Name;
        std::vector<ModeRecord> Modes;
    };

    bool   HasDataTable() const { return m_version >= VersionUnion::Make(4, 0, 0); }
    UINT32 AppendData(const ByteVector& data);
    void   PutField(ByteVector& out, UINT64 value, UINT32 size) const;

    VersionUnion        m_version;
    std::vector<Symbol> m_symbols;
    std::vector<Symbol> m_dataEntries;
    ByteVector          m_data;
    ByteVector          m_definitions;
    std::vector<Table>  m_tables;
};

#endif // AECORE_TESTS_UNIT_TUNINGPARSER_CPARAMETERFILEBUILDER_H
