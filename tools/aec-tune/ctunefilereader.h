// Reads a parameter file through the parameter store: header, sections, mode tables, modules and their values.
#ifndef AECTUNE_CTUNEFILEREADER_H
#define AECTUNE_CTUNEFILEREADER_H

#include <string>
#include <vector>

#include "ctunelogcapture.h"
#include "tunesourcemodel.h"
#include "tuning/parser/parameterfilesymboltable.h"

class ParameterSetManager;

namespace AecTune
{

// A section record as the store read it.
struct TuneFileSection
{
    UINT32 type;
    UINT32 offset;
    UINT32 size;
};

// One module entry of the file, with its values when a layout for it was known.
struct TuneFileModule
{
    UINT32      id;
    UINT64      nameHash;
    std::string name;           // from the layout, or the symbol entry's text before 6.0.0, or empty
    TuneVersion version;
    UINT32      modeId;
    UINT32      duplicateId;
    UINT32      dataSize;
    INT32       structIndex;    // record of the layout the values were read as, -1 if none
    bool        hasValues;
    Json        values;
};

// Everything the tool shows of a file.
struct TuneFileContents
{
    UINT32                       length;
    UINT32                       expectedSize;
    TuneVersion                  version;
    UINT32                       alignment;
    std::string                  createdBy;
    std::string                  binaryTag;
    UINT64                       flags;
    UINT32                       sectionTableOffset;
    UINT64                       checksum;
    std::vector<TuneFileSection> sections;
    bool                         hasDefinitions;
    TuneSource                   layout;        // record types and mode tables as read
    std::vector<TuneFileModule>  modules;
    std::vector<TuneLogLine>     log;           // what the store reported while reading
    std::string                  headerError;   // the store's header error text, empty if the header is good
    bool                         loaded;        // the store loaded the file
    std::string                  loadError;     // the store's last error text of the load, if it set one
};

class CTuneFileReader
{
public:
    // pSource (may be null) supplies module and member names and the record layouts values are read as;
    // without it the file's own definitions are used, with members named by their name hashes.
    explicit CTuneFileReader(const TuneSource* pSource);

    // False if the header or the section table cannot be read; then only headerError and log are set.
    bool Read(const std::vector<UINT8>& bytes, TuneFileContents* pContents);

private:
    void ReadModeTables(ParameterSetManager* pManager, TuneFileContents* pContents);
    void ReadModules(const std::vector<UINT8>& bytes, const SectionInfo& symbols, ParameterFileSymbolTable* pTable,
                     TuneFileContents* pContents);
    // Adds the file's description of a structure (and the ones it uses) to the layout; returns its index.
    size_t AddDefinedStructure(const ParameterDefinitionStructure* pStructure, TuneSource* pLayout);
    std::string MemberName(UINT64 nameHash) const;

    const TuneSource* m_pSource;
};

} // namespace AecTune

#endif // AECTUNE_CTUNEFILEREADER_H
