// Test helper that lays out parameter files byte by byte, well-formed or deliberately broken.
#include "unit/tuningparser/cparameterfilebuilder.h"

#include <algorithm>
#include <cstring>

#include "tuning/parser/parsercrc.h"

CRecordWriter& CRecordWriter::Field(const void* pValue, UINT32 size)
{
    const BYTE* pBytes = static_cast<const BYTE*>(pValue);
    m_bytes.insert(m_bytes.end(), pBytes, pBytes + size);
    const UINT32 occupied = (size >= m_alignment) ? size : ((0 == m_alignment) ? 1 : m_alignment);
    m_bytes.insert(m_bytes.end(), occupied - size, 0);
    return *this;
}

CRecordWriter& CRecordWriter::Begin()
{
    if (m_limits)
    {
        m_open.push_back(m_bytes.size());
        U32(0);
    }
    return *this;
}

CRecordWriter& CRecordWriter::End()
{
    if (m_limits && !m_open.empty())
    {
        const size_t at = m_open.back();
        m_open.pop_back();
        const UINT32 limit = static_cast<UINT32>(m_bytes.size() - at - 4);
        std::memcpy(&m_bytes[at], &limit, sizeof(limit));
    }
    return *this;
}

CRecordWriter& CRecordWriter::Raw(const ByteVector& bytes)
{
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    return *this;
}

void CDefinitionWriter::Put(const void* pValue, UINT32 size)
{
    const BYTE* pBytes = static_cast<const BYTE*>(pValue);
    m_bytes.insert(m_bytes.end(), pBytes, pBytes + size);
}

void CDefinitionWriter::String(const std::string& text)
{
    const UINT32 count = static_cast<UINT32>(text.size() + 1);
    Put(&count, sizeof(count));
    Put(text.c_str(), count);
}

CDefinitionWriter& CDefinitionWriter::Tag(BYTE tag)
{
    Put(&tag, 1);
    return *this;
}

CDefinitionWriter& CDefinitionWriter::Module(UINT32 structureId, const std::string& name)
{
    const UINT64 hash = ParserCRC64::GetNameHash(name.c_str());
    Tag(4);
    Put(&structureId, 4);
    Put(&hash, 8);
    String(name);
    String("module description");
    return *this;
}

CDefinitionWriter& CDefinitionWriter::Structure(UINT32 structureId, const std::string& typeName,
                                                const std::vector<Child>& children)
{
    const UINT64 hash  = ParserCRC64::GetNameHash(typeName.c_str());
    const UINT32 count = static_cast<UINT32>(children.size());
    Tag(5);
    Put(&structureId, 4);
    String(typeName);
    Put(&hash, 8);
    Put(&count, 4);
    for (const Child& child : children)
    {
        Put(&child.Type, 1);
        Put(&child.ID, 4);
        String(child.Name);
        Put(&child.Flags, 2);
        Put(&child.MinCount, 4);
        Put(&child.MaxCount, 4);
        String("");
    }
    return *this;
}

CDefinitionWriter& CDefinitionWriter::ScenarioMode()
{
    const BYTE value = 1;
    Tag(0);
    Put(&value, 1);
    String("Usecase");
    Put(&value, 1);
    return *this;
}

CDefinitionWriter& CDefinitionWriter::EnumDefinition()
{
    const UINT32 id    = 9;
    const UINT64 hash  = 0x1234;
    const UINT32 count = 2;
    Tag(6);
    Put(&id, 4);
    String("ColourEnum");
    Put(&hash, 8);
    Put(&count, 4);
    for (UINT32 v = 0; v < count; v++)
    {
        const BYTE flag = 0;
        Put(&v, 4);
        Put(&flag, 1);
        String("Value");
        String("a value");
    }
    return *this;
}

CParameterFileBuilder::CParameterFileBuilder(UINT16 major, UINT16 minor, UINT32 patch)
    : m_version(VersionUnion::Make(major, minor, patch))
{
    // From 6.0.0 the entry at index 0 exists but nobody can reach it.
    if (HasLimits())
    {
        m_symbols.push_back(Symbol{true, 0, VersionUnion(), 0xFFFFFFFFu, 0, 0, 0});
        m_dataEntries.push_back(Symbol{false, 0, VersionUnion(), 0xFFFFFFFFu, 0, 0, 0});
    }
}

BYTE CParameterFileBuilder::Alignment() const
{
    return ((m_version >= VersionUnion::Make(1, 1, 0)) && (m_version < VersionUnion::Make(3, 0, 1))) ? 8 : 1;
}

UINT32 CParameterFileBuilder::AppendData(const ByteVector& data)
{
    const UINT32 offset = static_cast<UINT32>(m_data.size());
    m_data.insert(m_data.end(), data.begin(), data.end());
    return offset;
}

UINT32 CParameterFileBuilder::AddModule(const std::string& name, VersionUnion version, UINT32 modeId,
                                        const ByteVector& data, UINT32 duplicateId)
{
    const UINT32 id     = static_cast<UINT32>(m_symbols.size()) + (HasLimits() ? 0 : 1);
    const UINT32 offset = AppendData(data);
    m_symbols.push_back(Symbol{true, ParserCRC64::GetNameHash(name.c_str()), version, modeId, offset,
                               static_cast<UINT32>(data.size()), (0 == duplicateId) ? id : duplicateId});
    return id;
}

UINT32 CParameterFileBuilder::AddData(const ByteVector& data, UINT32 duplicateId)
{
    const UINT32 offset = AppendData(data);
    if (!HasDataTable())
    {
        const UINT32 id = static_cast<UINT32>(m_symbols.size()) + 1;
        m_symbols.push_back(Symbol{true, 0, VersionUnion(), 0xFFFFFFFFu, offset, static_cast<UINT32>(data.size()),
                                   (0 == duplicateId) ? id : duplicateId});
        return id;
    }
    const UINT32 id = static_cast<UINT32>(m_dataEntries.size()) + (HasLimits() ? 0 : 1);
    m_dataEntries.push_back(Symbol{false, 0, VersionUnion(), 0, offset, static_cast<UINT32>(data.size()),
                                   (0 == duplicateId) ? id : duplicateId});
    return id;
}

UINT32 CParameterFileBuilder::AddModeTable(const std::string& name)
{
    m_tables.push_back(Table{name, {}});
    return static_cast<UINT32>(m_tables.size() - 1);
}

void CParameterFileBuilder::AddMode(UINT32 table, UINT32 index, UINT16 mode, UINT16 subMode, UINT32 parentIndex,
                                    UINT32 linkIndex, UINT32 flags, UINT32 group)
{
    AddRawMode(table, ModeId(table, index), mode, subMode, ModeId(table, parentIndex),
               (NoLink == linkIndex) ? NoLink : ModeId(table, linkIndex), flags, group);
}

void CParameterFileBuilder::AddRawMode(UINT32 table, UINT32 modeId, UINT16 mode, UINT16 subMode, UINT32 parentId,
                                       UINT32 linkId, UINT32 flags, UINT32 group)
{
    m_tables[table].Modes.push_back(ModeRecord{modeId, mode, subMode, group, parentId, linkId, flags});
}

void CParameterFileBuilder::PutField(ByteVector& out, UINT64 value, UINT32 size) const
{
    const BYTE   alignment = Alignment();
    const UINT32 occupied  = (size >= alignment) ? size : alignment;
    for (UINT32 b = 0; b < occupied; b++)
    {
        out.push_back((b < size) ? static_cast<BYTE>(value >> (8 * b)) : 0);
    }
}

ByteVector CParameterFileBuilder::Build() const
{
    const VersionUnion v301 = VersionUnion::Make(3, 0, 1);
    const BYTE         align = Alignment();

    // Sections.
    ByteVector symbols;
    UINT32     symbolSize = 0;
    if (m_version > v301)
    {
        symbolSize = HasLimits() ? 32 : 60;
    }
    else
    {
        symbolSize = (1 != align) ? 76 : ((m_version < v301) ? 64 : 56);
    }
    for (size_t i = 0; i < m_symbols.size(); i++)
    {
        const Symbol& s     = m_symbols[i];
        const size_t  start = symbols.size();
        Symbol entry = s;
        if ((0 == i) && HasLimits() && !PlaceholderModule.empty())
        {
            entry.NameHash = ParserCRC64::GetNameHash(PlaceholderModule.c_str());
            entry.Version  = m_symbols.back().Version;
            entry.ModeId   = 0;
            entry.DataSize = m_symbols.back().DataSize;
            entry.DataOffset = m_symbols.back().DataOffset;
        }
        if (!HasLimits())
        {
            UINT32 id = static_cast<UINT32>(i + 1);
            for (const auto& over : IdOverrides)
            {
                id = (over.first == i) ? over.second : id;
            }
            PutField(symbols, id, 4);
            symbols.insert(symbols.end(), 32, 'n');
        }
        else
        {
            PutField(symbols, entry.NameHash, 8);
        }
        PutField(symbols, entry.Version.Value, 8);
        if ((1 == align) && (m_version < v301))
        {
            PutField(symbols, 0, 8);
        }
        PutField(symbols, entry.ModeId, 4);
        PutField(symbols, entry.DataOffset, 4);
        PutField(symbols, entry.DataSize, 4);
        if (m_version > v301)
        {
            PutField(symbols, entry.DuplicateID, 4);
        }
        symbols.resize(start + symbolSize, 0);
    }
    symbols.insert(symbols.end(), SymbolPadding, 0);

    ByteVector dataTable;
    if (HasDataTable())
    {
        for (size_t i = 0; i < m_dataEntries.size(); i++)
        {
            const Symbol& s = m_dataEntries[i];
            if (!HasLimits())
            {
                PutField(dataTable, i + 1, 4);
            }
            PutField(dataTable, s.DataOffset, 4);
            PutField(dataTable, s.DataSize, 4);
            PutField(dataTable, s.DuplicateID, 4);
        }
    }
    ByteVector data = m_data;
    if (data.empty())
    {
        data.resize(8, 0);
    }

    std::vector<ByteVector> modeSections;
    const UINT32 nameBytes = (m_version >= VersionUnion::Make(7, 0, 0))   ? 128
                             : (m_version >= VersionUnion::Make(4, 0, 0)) ? 32
                                                                          : 0;
    const bool   hasLink   = m_version >= VersionUnion::Make(2, 0, 0);
    const bool   hasFlags  = m_version >= VersionUnion::Make(5, 0, 0);
    for (const Table& table : m_tables)
    {
        ByteVector section(nameBytes, 0);
        std::copy_n(table.Name.begin(), std::min<size_t>(table.Name.size(), nameBytes), section.begin());
        for (const ModeRecord& m : table.Modes)
        {
            PutField(section, m.ModeId, 4);
            const UINT64 mode = static_cast<UINT64>(m.Mode) | (static_cast<UINT64>(m.SubMode) << 16) |
                                (static_cast<UINT64>(m.Group) << 32);
            PutField(section, mode, 8);
            PutField(section, m.ParentId, 4);
            if (hasLink)
            {
                PutField(section, m.LinkId, 4);
            }
            if (hasFlags)
            {
                PutField(section, m.Flags, 4);
            }
        }
        modeSections.push_back(section);
    }

    // Header.
    ByteVector out;
    auto       put = [&out](UINT64 value, UINT32 size) {
        for (UINT32 b = 0; b < size; b++)
        {
            out.push_back(static_cast<BYTE>(value >> (8 * b)));
        }
    };
    auto text = [&out](const std::string& value, UINT32 size) {
        for (UINT32 b = 0; b < size; b++)
        {
            out.push_back((b < value.size()) ? static_cast<BYTE>(value[b]) : 0);
        }
    };
    text(Tag, 28);
    const size_t sizeAt = out.size();
    put(0, 4);
    put(m_version.Value, 8);
    if (m_version >= VersionUnion::Make(1, 0, 2))
    {
        text(CreatedBy, 48);
        text(BinaryTag, 64);
    }
    if (m_version >= VersionUnion::Make(3, 0, 0))
    {
        put(Flags, 8);
    }
    const size_t tableOffsetAt = out.size();
    put(0, 4);
    const size_t countAt = out.size();
    put(0, 4);

    // Section table and sections.
    std::vector<std::vector<UINT32>> records;
    std::vector<const ByteVector*>   contents;
    auto add = [&](UINT32 type, const ByteVector* pBytes) {
        records.push_back({type, 0, static_cast<UINT32>(pBytes->size())});
        contents.push_back(pBytes);
    };
    if (!OmitSymbols)
    {
        add(0, &symbols);
    }
    if (!OmitData)
    {
        add(1, &data);
    }
    if (HasDataTable() && (m_dataEntries.size() > (HasLimits() ? 1u : 0u)))
    {
        add(3, &dataTable);
    }
    if (!m_definitions.empty())
    {
        add(4, &m_definitions);
    }
    for (const ByteVector& section : modeSections)
    {
        add(2, &section);
    }
    const UINT32 fieldSize   = (4 >= align) ? 4 : align;
    const UINT32 recordCount = static_cast<UINT32>(records.size() + ExtraSections.size());
    const UINT32 tableOffset = static_cast<UINT32>(out.size());
    UINT32       offset      = tableOffset + recordCount * 3 * fieldSize;
    for (size_t i = 0; i < records.size(); i++)
    {
        offset        = (offset + 7) & ~7u;
        records[i][1] = offset;
        offset += records[i][2];
    }
    std::memcpy(&out[tableOffsetAt], &tableOffset, 4);
    const UINT32 count = static_cast<UINT32>(static_cast<INT32>(recordCount) + SectionCountAdjust);
    std::memcpy(&out[countAt], &count, 4);
    for (const auto& record : records)
    {
        for (UINT32 field : record)
        {
            PutField(out, field, 4);
        }
    }
    for (const auto& record : ExtraSections)
    {
        for (UINT32 field : record)
        {
            PutField(out, field, 4);
        }
    }
    for (size_t i = 0; i < records.size(); i++)
    {
        out.resize(records[i][1], 0);
        out.insert(out.end(), contents[i]->begin(), contents[i]->end());
    }

    // Size and checksum trailer.
    const bool   crc64 = HasLimits();
    const UINT32 total = static_cast<UINT32>(out.size() + (crc64 ? 8 : 4));
    const UINT32 size  = SetExpectedSize ? ExpectedSize : total;
    std::memcpy(&out[sizeAt], &size, 4);
    if (crc64)
    {
        const UINT64 crc = ParserCRC64::GetCRC(out.data(), out.size(), true);
        put(crc, 8);
    }
    else
    {
        const UINT32 crc = ParserCRC32::GetCRC(out.data(), out.size());
        put(crc, 4);
    }
    return out;
}

void CParameterFileBuilder::Reseal(ByteVector& file, bool crc64)
{
    const size_t trailer = crc64 ? 8 : 4;
    if (file.size() < trailer)
    {
        return;
    }
    const size_t body = file.size() - trailer;
    if (crc64)
    {
        const UINT64 crc = ParserCRC64::GetCRC(file.data(), body, true);
        std::memcpy(&file[body], &crc, 8);
    }
    else
    {
        const UINT32 crc = ParserCRC32::GetCRC(file.data(), body);
        std::memcpy(&file[body], &crc, 4);
    }
}
