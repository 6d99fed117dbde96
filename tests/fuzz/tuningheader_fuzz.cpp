// Fuzz target of the parameter file header and section table readers, on the raw input (checksum included).
#include <cstdint>
#include <cstdlib>

#include "platform/velalog.h"
#include "tuning/parser/parametersetmanager.h"

namespace
{
void DropLine(Vela::Log::Level, const CHAR*)
{
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size)
{
    Vela::Log::SetSink(&DropLine);
    CHAR         errorText[ParameterErrorTextSize];
    CHAR         binaryTag[ParameterBinaryTagSize + 1];
    UINT32       pos                = 0;
    UINT32       sectionTableOffset = 0;
    UINT32       sectionCount       = 0;
    BYTE         alignment          = 0;
    VersionUnion version;
    UINT64       flags  = 0;
    const bool   header = ParameterSetManager::ReadHeader(pData, size, pos, sectionTableOffset, alignment, version,
                                                        binaryTag, flags, sectionCount, errorText, nullptr);
    // The header is read up to its end even when it is refused.
    if ((pos > size) || ((1 != alignment) && (8 != alignment)))
    {
        std::abort();
    }
    if (header)
    {
        SectionInfo        symbols;
        SectionInfo        dataTable;
        SectionInfo        data;
        SectionInfo        definitions;
        PList<SectionInfo> modeTables;
        pos = sectionTableOffset;
        ParameterSetManager::ReadSectionInfo(pData, size, pos, alignment, sectionCount, symbols, dataTable, modeTables,
                                             data, definitions, errorText, nullptr);
    }
    return 0;
}
