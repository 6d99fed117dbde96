// Layout rules of a parameter file of one version: alignment, which fields exist, and the sizes of header and entries.
#include "ctuneformat.h"

#include <cstdlib>

namespace AecTune
{

constexpr TuneVersion CTuneFormat::OldestVersion;
constexpr TuneVersion CTuneFormat::NewestVersion;
constexpr TuneVersion CTuneFormat::ModeTreeMinVersion;
constexpr TuneVersion CTuneFormat::AlignmentStartVersion;
constexpr TuneVersion CTuneFormat::LinkVersion;
constexpr TuneVersion CTuneFormat::FlagsStartVersion;
constexpr TuneVersion CTuneFormat::AlignedEndVersion;
constexpr TuneVersion CTuneFormat::DataTableVersion;
constexpr TuneVersion CTuneFormat::ModeFlagsVersion;
constexpr TuneVersion CTuneFormat::StructSymbolsVersion;
constexpr TuneVersion CTuneFormat::MultiModeTableVersion;

CTuneFormat::CTuneFormat(const TuneVersion& version)
    : m_version(version)
{
}

int CTuneFormat::Compare(const TuneVersion& left, const TuneVersion& right)
{
    if (left.major != right.major)
    {
        return (left.major > right.major) ? 1 : -1;
    }
    if (left.minor != right.minor)
    {
        return (left.minor > right.minor) ? 1 : -1;
    }
    if (left.patch != right.patch)
    {
        return (left.patch > right.patch) ? 1 : -1;
    }
    return 0;
}

bool CTuneFormat::ParseVersion(const std::string& text, TuneVersion* pVersion)
{
    UINT64      parts[3] = { 0, 0, 0 };
    const UINT64 limits[3] = { 0xFFFF, 0xFFFF, 0xFFFFFFFFu };
    size_t      start    = 0;
    for (int i = 0; i < 3; i++)
    {
        size_t end = (i < 2) ? text.find('.', start) : text.size();
        if (end == std::string::npos || end == start || end - start > 10)
        {
            return false;
        }
        for (size_t c = start; c < end; c++)
        {
            if (text[c] < '0' || text[c] > '9')
            {
                return false;
            }
            parts[i] = parts[i] * 10 + static_cast<UINT64>(text[c] - '0');
        }
        if (parts[i] > limits[i])
        {
            return false;
        }
        start = end + 1;
    }
    pVersion->major = static_cast<UINT16>(parts[0]);
    pVersion->minor = static_cast<UINT16>(parts[1]);
    pVersion->patch = static_cast<UINT32>(parts[2]);
    return true;
}

std::string CTuneFormat::FormatVersion(const TuneVersion& version)
{
    return std::to_string(version.major) + "." + std::to_string(version.minor) + "." + std::to_string(version.patch);
}

bool CTuneFormat::IsSupported(const TuneVersion& version)
{
    return Compare(version, OldestVersion) >= 0 && Compare(version, NewestVersion) <= 0;
}

const TuneVersion& CTuneFormat::Version() const
{
    return m_version;
}

bool CTuneFormat::AtLeast(const TuneVersion& version) const
{
    return Compare(m_version, version) >= 0;
}

UINT32 CTuneFormat::Alignment() const
{
    return (AtLeast(AlignmentStartVersion) && !AtLeast(AlignedEndVersion)) ? 8 : 1;
}

bool CTuneFormat::HasModeTree() const
{
    return AtLeast(ModeTreeMinVersion);
}

bool CTuneFormat::HasHeaderFlags() const
{
    return AtLeast(FlagsStartVersion);
}

bool CTuneFormat::HasLinks() const
{
    return AtLeast(LinkVersion);
}

bool CTuneFormat::HasModeFlags() const
{
    return AtLeast(ModeFlagsVersion);
}

bool CTuneFormat::HasDuplicateIds() const
{
    return Compare(m_version, AlignedEndVersion) > 0;
}

bool CTuneFormat::HasSymbolReserved() const
{
    return Alignment() == 1 && !AtLeast(AlignedEndVersion);
}

bool CTuneFormat::HasDataTable() const
{
    return AtLeast(DataTableVersion);
}

bool CTuneFormat::HasNameHashes() const
{
    return AtLeast(StructSymbolsVersion);
}

bool CTuneFormat::HasFixedArrayCounts() const
{
    return AtLeast(MultiModeTableVersion);
}

bool CTuneFormat::HasMultipleModeTables() const
{
    return AtLeast(MultiModeTableVersion);
}

UINT32 CTuneFormat::HeaderSize() const
{
    // Tag, size and version always; identity strings from the mode tree on; flags later; then table offset and count.
    UINT32 size = TagBytes + 4 + 8;
    size += HasModeTree() ? (CreatedByBytes + BinaryTagBytes) : 0;
    size += HasHeaderFlags() ? 8 : 0;
    return size + 4 + 4;
}

UINT32 CTuneFormat::SectionRecordSize() const
{
    return 3 * ((Alignment() > 4) ? Alignment() : 4);
}

UINT32 CTuneFormat::ModeTableNameBytes() const
{
    if (AtLeast(MultiModeTableVersion))
    {
        return 128;
    }
    return AtLeast(DataTableVersion) ? 32 : 0;
}

UINT32 CTuneFormat::ModeEntrySize() const
{
    if (Alignment() == 1)
    {
        if (!AtLeast(AlignedEndVersion))
        {
            return 16;
        }
        return AtLeast(ModeFlagsVersion) ? 24 : 20;
    }
    return AtLeast(LinkVersion) ? 32 : 24;
}

UINT32 CTuneFormat::SymbolEntrySize() const
{
    if (HasDuplicateIds())
    {
        return HasNameHashes() ? 32 : 60;
    }
    if (Alignment() != 1)
    {
        return 76;
    }
    return AtLeast(AlignedEndVersion) ? 56 : 64;
}

UINT32 CTuneFormat::DataTableEntrySize() const
{
    if (!HasDataTable())
    {
        return 0;
    }
    return HasNameHashes() ? 12 : 16;
}

UINT32 CTuneFormat::ChecksumBytes() const
{
    return HasNameHashes() ? 8 : 4;
}

} // namespace AecTune
