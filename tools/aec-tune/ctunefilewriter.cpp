// Lays out a whole parameter file of one version from a tuning source: header, section table, sections, checksum.
#include "ctunefilewriter.h"

#include <map>

#include "ctunedataencoder.h"
#include "ctunedefinitionwriter.h"
#include "tuning/parser/parametertypes.h"
#include "tuning/parser/parsercrc.h"

namespace AecTune
{

namespace
{

UINT32 PackModeId(size_t table, UINT32 slot)
{
    return (static_cast<UINT32>(table) << 24) | slot;
}

UINT64 PackVersion(const TuneVersion& version)
{
    return static_cast<UINT64>(version.major) | (static_cast<UINT64>(version.minor) << 16) |
           (static_cast<UINT64>(version.patch) << 32);
}

// One section as the section table records it.
struct Section
{
    UINT32 type;
    UINT32 offset;
    UINT32 size;
};

} // namespace

CTuneFileWriter::CTuneFileWriter(const TuneSource* pSource, const TuneFileOptions& options, CTuneMessages* pMessages)
    : m_pSource(pSource)
    , m_options(options)
    , m_format(options.version)
    , m_pMessages(pMessages)
{
}

UINT32 CTuneFileWriter::ModeTableCount() const
{
    // Files before the mode tree hold Default data only and no mode table; one table until several are allowed.
    if (!m_format.HasModeTree())
    {
        return 0;
    }
    const size_t count = m_pSource->modeTables.size();
    return static_cast<UINT32>((m_format.HasMultipleModeTables() || count == 0) ? count : 1);
}

bool CTuneFileWriter::CheckModeTables()
{
    const std::string version = CTuneFormat::FormatVersion(m_format.Version());
    bool              ok      = true;
    if (m_pSource->modeTables.size() > 256)
    {
        m_pMessages->Error("modeTables", "at most 256 mode tables fit the mode ID's table index");
        return false;
    }
    if (m_pSource->modeTables.size() > ModeTableCount() && m_format.HasModeTree())
    {
        m_pMessages->Warning("modeTables", "version " + version + " holds one mode table; only the first is written");
    }
    for (UINT32 t = 0; t < ModeTableCount(); t++)
    {
        const TuneModeTable& table = m_pSource->modeTables[t];
        const UINT32         room  = m_format.ModeTableNameBytes();
        if (room != 0 && table.name.size() >= room)
        {
            m_pMessages->Error(table.slots[0].path, "mode table name '" + table.name + "' is longer than " +
                                                        std::to_string(room - 1) + " characters");
            ok = false;
        }
        if (room == 0 && !table.name.empty())
        {
            m_pMessages->Warning(table.slots[0].path, "version " + version + " has no mode table names; name dropped");
        }
        for (const TuneModeSlot& slot : table.slots)
        {
            if (slot.linkSlot != TuneNoSlot && !m_format.HasLinks())
            {
                m_pMessages->Warning(slot.path, "version " + version + " has no mode links; link dropped");
            }
            if (slot.preserve && slot.parentSlot != TuneNoSlot && !m_format.HasModeFlags())
            {
                m_pMessages->Warning(slot.path, "version " + version + " has no mode flags; preserve dropped");
            }
        }
    }
    return ok;
}

void CTuneFileWriter::SelectInstances(std::vector<Placed>* pPlaced)
{
    const std::string version = CTuneFormat::FormatVersion(m_format.Version());
    // Symbol IDs: from 6.0.0 on the ID is the index and index 0 is a placeholder, so modules start at 1 either way.
    UINT32 id = 1;
    for (const TuneModule& module : m_pSource->modules)
    {
        for (const TuneModuleInstance& instance : module.instances)
        {
            const bool tableKept = instance.table < ModeTableCount() || (instance.table == 0 && instance.slot == 0);
            if (!tableKept || (!m_format.HasModeTree() && instance.slot != 0))
            {
                m_pMessages->Warning(instance.path, "version " + version + " cannot hold this mode; values dropped");
                continue;
            }
            pPlaced->push_back(Placed{ &module, &instance, id, id, 0, 0 });
            id++;
        }
    }
}

bool CTuneFileWriter::Write(std::vector<UINT8>* pFile)
{
    const std::string version = CTuneFormat::FormatVersion(m_format.Version());
    if (!CTuneFormat::IsSupported(m_format.Version()))
    {
        m_pMessages->Error("", "version " + version + " cannot be written (1.0.1 to 7.0.0)");
        return false;
    }
    if (!m_format.HasModeTree() && !m_pSource->binaryTag.empty())
    {
        m_pMessages->Warning("header.binaryTag", "version " + version + " has no BinaryTag; dropped");
    }
    if (!m_format.HasHeaderFlags() && m_pSource->flags != 0)
    {
        m_pMessages->Warning("header.flags", "version " + version + " has no header flags; dropped");
    }
    if (m_format.HasHeaderFlags() && (m_pSource->flags & 2) != 0)
    {
        m_pMessages->Warning("header.flags", "flag 2 marks a compressed file, which readers refuse");
    }
    if (!CheckModeTables())
    {
        return false;
    }
    std::vector<Placed> placed;
    SelectInstances(&placed);

    // Without a data table the blocks are symbol table entries behind the modules.
    const UINT32      firstBlockId = m_format.HasDataTable() ? 1 : static_cast<UINT32>(placed.size() + 1);
    const UINT32      alignment    = m_format.Alignment();
    CTuneDataEncoder  encoder(m_pSource, &m_format, firstBlockId, m_pMessages);
    CTuneByteWriter   data(alignment);
    // Equal data of one module (same name and version) is stored once; its entries form a duplicate group.
    std::map<std::vector<UINT8>, size_t> firstEqual;
    for (size_t i = 0; i < placed.size(); i++)
    {
        std::vector<UINT8> bytes;
        if (!encoder.EncodeModule(*placed[i].pModule, *placed[i].pInstance, &bytes))
        {
            continue;
        }
        std::vector<UINT8> key(placed[i].pModule->name.begin(), placed[i].pModule->name.end());
        key.push_back(0);
        const UINT64 versionBits = PackVersion(placed[i].pModule->version);
        for (UINT32 b = 0; b < 8; b++)
        {
            key.push_back(static_cast<UINT8>(versionBits >> (8 * b)));
        }
        key.insert(key.end(), bytes.begin(), bytes.end());
        auto it = firstEqual.find(key);
        if (it != firstEqual.end())
        {
            placed[i].duplicateId = placed[it->second].id;
            placed[i].dataOffset  = placed[it->second].dataOffset;
            placed[i].dataSize    = placed[it->second].dataSize;
            continue;
        }
        firstEqual[key]      = i;
        placed[i].dataOffset = static_cast<UINT32>(data.Size());
        placed[i].dataSize   = static_cast<UINT32>(bytes.size());
        data.Buffer(bytes.data(), bytes.size());
    }
    if (m_pMessages->HasErrors())
    {
        return false;
    }
    std::vector<UINT32> blockOffsets;
    for (const std::vector<UINT8>& block : encoder.Blocks())
    {
        blockOffsets.push_back(static_cast<UINT32>(data.Size()));
        data.Buffer(block.data(), block.size());
    }
    if (data.Size() == 0)
    {
        // A reader takes a file without data for one without tuning at all; keep the section present.
        data.U64(0);
    }
    if (placed.empty())
    {
        m_pMessages->Warning("modules", "no module values to write");
    }

    // Sections in file order: definitions, symbols, data table, mode tables, data.
    std::vector<std::pair<UINT32, CTuneByteWriter>> bodies;
    if (m_options.definitions)
    {
        CTuneByteWriter definitions(alignment);
        CTuneDefinitionWriter(m_pSource).Write(&definitions);
        bodies.emplace_back(ParameterSectionType_DefinitionTable, definitions);
    }
    CTuneByteWriter symbols(alignment);
    WriteSymbolTable(placed, blockOffsets, encoder.Blocks(), &symbols);
    bodies.emplace_back(ParameterSectionType_SymbolTable, symbols);
    if (m_format.HasDataTable() && !encoder.Blocks().empty())
    {
        CTuneByteWriter dataTable(alignment);
        WriteDataTable(blockOffsets, encoder.Blocks(), &dataTable);
        bodies.emplace_back(ParameterSectionType_DataTable, dataTable);
    }
    for (UINT32 t = 0; t < ModeTableCount(); t++)
    {
        CTuneByteWriter modeTable(alignment);
        WriteModeTable(t, &modeTable);
        bodies.emplace_back(ParameterSectionType_ModeTable, modeTable);
    }
    bodies.emplace_back(ParameterSectionType_Data, data);

    const UINT32 sectionCount  = static_cast<UINT32>(bodies.size());
    const UINT32 tableOffset   = m_format.HeaderSize();
    UINT64       offset        = static_cast<UINT64>(tableOffset) + sectionCount * m_format.SectionRecordSize();
    if (offset > ParameterFileHeaderReadSize)
    {
        m_pMessages->Warning("modeTables", "header and section table pass the first " +
                                               std::to_string(ParameterFileHeaderReadSize) +
                                               " bytes; a reader that keeps the file open cannot load it");
    }
    std::vector<Section> sections;
    for (const auto& body : bodies)
    {
        sections.push_back(Section{ body.first, static_cast<UINT32>(offset), static_cast<UINT32>(body.second.Size()) });
        offset += body.second.Size();
    }
    UINT64 total = offset + m_format.ChecksumBytes();
    total        = (total < m_options.minimumSize) ? m_options.minimumSize : total;
    if (total > 0xFFFFFFFFu)
    {
        m_pMessages->Error("", "the file would pass 4 GiB");
        return false;
    }

    CTuneByteWriter file(1);
    WriteHeader(static_cast<UINT32>(total), sectionCount, &file);
    // Section records are three fields in the file's alignment; the order of type 2 records is the table index.
    CTuneByteWriter records(alignment);
    for (UINT32 type : { ParameterSectionType_SymbolTable, ParameterSectionType_Data, ParameterSectionType_ModeTable,
                         ParameterSectionType_DataTable, ParameterSectionType_DefinitionTable })
    {
        for (const Section& section : sections)
        {
            if (section.type == type)
            {
                records.U32(section.type);
                records.U32(section.offset);
                records.U32(section.size);
            }
        }
    }
    file.Buffer(records.Bytes().data(), records.Size());
    for (const auto& body : bodies)
    {
        file.Buffer(body.second.Bytes().data(), body.second.Size());
    }
    // Padding (for readers that need a minimum size) lies between the last section and the checksum.
    file.PadTo(total - m_format.ChecksumBytes());
    const std::vector<UINT8>& bytes = file.Bytes();
    if (m_format.ChecksumBytes() == 8)
    {
        file.U64(ParserCRC64::GetCRC(bytes.data(), bytes.size(), true, 0));
    }
    else
    {
        file.U32(ParserCRC32::GetCRC(bytes.data(), bytes.size(), 0));
    }
    *pFile = file.Bytes();
    return true;
}

void CTuneFileWriter::WriteHeader(UINT32 totalSize, UINT32 sectionCount, CTuneByteWriter* pOut) const
{
    pOut->FixedText(CTuneFormat::FileTag, ParameterTagSize);
    pOut->U32(totalSize);
    pOut->U64(PackVersion(m_format.Version()));
    if (m_format.HasModeTree())
    {
        pOut->FixedText(m_pSource->createdBy, ParameterCreatedBySize);
        pOut->FixedText(m_pSource->binaryTag, ParameterBinaryTagSize);
    }
    if (m_format.HasHeaderFlags())
    {
        pOut->U64(m_pSource->flags);
    }
    pOut->U32(m_format.HeaderSize());
    pOut->U32(sectionCount);
}

void CTuneFileWriter::WriteSymbolTable(const std::vector<Placed>& placed, const std::vector<UINT32>& blockOffsets,
                                       const std::vector<std::vector<UINT8>>& blocks, CTuneByteWriter* pOut) const
{
    const UINT32 entrySize = m_format.SymbolEntrySize();
    // One entry: the fields this version has, each in the file's alignment, padded to the entry size.
    auto entry = [&](UINT32 id, const std::string& name, const TuneVersion& version, UINT32 modeId, UINT32 offset,
                     UINT32 size, UINT32 duplicateId) {
        const size_t start = pOut->Size();
        if (m_format.HasNameHashes())
        {
            pOut->U64(name.empty() ? 0 : ParserCRC64::GetNameHash(name.c_str()));
        }
        else
        {
            pOut->U32(id);
            pOut->FixedText(name.substr(0, CTuneFormat::SymbolNameBytes - 1), CTuneFormat::SymbolNameBytes);
        }
        pOut->U64(PackVersion(version));
        if (m_format.HasSymbolReserved())
        {
            pOut->U64(0);
        }
        pOut->U32(modeId);
        pOut->U32(offset);
        pOut->U32(size);
        if (m_format.HasDuplicateIds())
        {
            pOut->U32(duplicateId);
        }
        pOut->PadTo(start + entrySize);
    };
    const TuneVersion none = { 0, 0, 0 };
    if (m_format.HasNameHashes())
    {
        // ID 0 is the null reference: its entry exists but nobody reaches it.
        entry(0, std::string(), none, CTuneFormat::NoModeId, 0, 0, 0);
    }
    for (const Placed& module : placed)
    {
        entry(module.id, module.pModule->name, module.pModule->version,
              PackModeId(module.pInstance->table, module.pInstance->slot), module.dataOffset, module.dataSize,
              module.duplicateId);
    }
    if (!m_format.HasDataTable())
    {
        for (size_t b = 0; b < blocks.size(); b++)
        {
            const UINT32 id = static_cast<UINT32>(placed.size() + 1 + b);
            entry(id, std::string(), none, CTuneFormat::NoModeId, blockOffsets[b], static_cast<UINT32>(blocks[b].size()),
                  id);
        }
    }
}

void CTuneFileWriter::WriteDataTable(const std::vector<UINT32>& blockOffsets,
                                     const std::vector<std::vector<UINT8>>& blocks, CTuneByteWriter* pOut) const
{
    if (m_format.HasNameHashes())
    {
        pOut->U32(0);
        pOut->U32(0);
        pOut->U32(0);
    }
    for (size_t b = 0; b < blocks.size(); b++)
    {
        const UINT32 id = static_cast<UINT32>(b + 1);
        if (!m_format.HasNameHashes())
        {
            pOut->U32(id);
        }
        pOut->U32(blockOffsets[b]);
        pOut->U32(static_cast<UINT32>(blocks[b].size()));
        pOut->U32(id);
    }
}

void CTuneFileWriter::WriteModeTable(size_t tableIndex, CTuneByteWriter* pOut) const
{
    const TuneModeTable& table = m_pSource->modeTables[tableIndex];
    if (m_format.ModeTableNameBytes() != 0)
    {
        pOut->FixedText(table.name, m_format.ModeTableNameBytes());
    }
    for (size_t s = 0; s < table.slots.size(); s++)
    {
        const TuneModeSlot& slot   = table.slots[s];
        const UINT32        modeId = PackModeId(tableIndex, static_cast<UINT32>(s));
        pOut->U32(modeId);
        pOut->U64(static_cast<UINT64>(slot.mode) | (static_cast<UINT64>(slot.subMode) << 16) |
                  (static_cast<UINT64>(slot.group) << 32));
        pOut->U32((slot.parentSlot == TuneNoSlot) ? modeId
                                                  : PackModeId(tableIndex, static_cast<UINT32>(slot.parentSlot)));
        if (m_format.HasLinks())
        {
            pOut->U32((slot.linkSlot == TuneNoSlot) ? CTuneFormat::NoModeId
                                                    : PackModeId(tableIndex, static_cast<UINT32>(slot.linkSlot)));
        }
        if (m_format.HasModeFlags())
        {
            pOut->U32(slot.preserve ? 1u : 0u);
        }
    }
}

} // namespace AecTune
