// Lays out a whole parameter file of one version from a tuning source: header, section table, sections, checksum.
#ifndef AECTUNE_CTUNEFILEWRITER_H
#define AECTUNE_CTUNEFILEWRITER_H

#include <vector>

#include "ctunebytewriter.h"
#include "ctuneformat.h"
#include "ctunemessages.h"
#include "tunesourcemodel.h"

namespace AecTune
{

// How a file is written.
struct TuneFileOptions
{
    TuneVersion version;
    bool        definitions;    // write the definition table
    UINT32      minimumSize;    // pad the file to at least this many bytes (0: no padding)
};

class CTuneFileWriter
{
public:
    CTuneFileWriter(const TuneSource* pSource, const TuneFileOptions& options, CTuneMessages* pMessages);

    // Builds the file's bytes; false after reporting errors. What the version cannot carry is dropped with a warning.
    bool Write(std::vector<UINT8>* pFile);

private:
    // A module instance as it goes into the file.
    struct Placed
    {
        const TuneModule*         pModule;
        const TuneModuleInstance* pInstance;
        UINT32                    id;
        UINT32                    duplicateId;
        UINT32                    dataOffset;
        UINT32                    dataSize;
    };

    void   SelectInstances(std::vector<Placed>* pPlaced);
    bool   CheckModeTables();
    UINT32 ModeTableCount() const;
    void   WriteSymbolTable(const std::vector<Placed>& placed, const std::vector<UINT32>& blockOffsets,
                            const std::vector<std::vector<UINT8>>& blocks, CTuneByteWriter* pOut) const;
    void   WriteDataTable(const std::vector<UINT32>& blockOffsets, const std::vector<std::vector<UINT8>>& blocks,
                          CTuneByteWriter* pOut) const;
    void   WriteModeTable(size_t tableIndex, CTuneByteWriter* pOut) const;
    void   WriteHeader(UINT32 totalSize, UINT32 sectionCount, CTuneByteWriter* pOut) const;

    const TuneSource* m_pSource;
    TuneFileOptions   m_options;
    CTuneFormat       m_format;
    CTuneMessages*    m_pMessages;
};

} // namespace AecTune

#endif // AECTUNE_CTUNEFILEWRITER_H
