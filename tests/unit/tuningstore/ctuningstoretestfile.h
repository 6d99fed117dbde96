// Test support of the tuning store: parameter files compiled from JSON sources, and stores loaded from them.
#ifndef AECORE_TESTS_UNIT_TUNINGSTORE_CTUNINGSTORETESTFILE_H
#define AECORE_TESTS_UNIT_TUNINGSTORE_CTUNINGSTORETESTFILE_H

#include <memory>
#include <string>
#include <vector>

#include "tuning/tuningsetmanager.h"

// A parameter file on disk, compiled from a source text with the aec-tune writer; removed with the object.
class CTuningStoreTestFile
{
public:
    explicit CTuningStoreTestFile(const std::string& sourceText);
    ~CTuningStoreTestFile();
    CTuningStoreTestFile(const CTuningStoreTestFile&)            = delete;
    CTuningStoreTestFile& operator=(const CTuningStoreTestFile&) = delete;

    // False (with the writer's messages) if the source did not compile.
    bool               IsValid() const { return m_valid; }
    const std::string& Messages() const { return m_messages; }
    const std::string& Name() const { return m_name; }
    std::vector<UINT8>& Bytes() { return m_bytes; }

    // Gives a module the name (hash) of another, which a source cannot do: one name of two versions. The file is
    // written again with its checksum.
    void RenameModule(const std::string& from, const std::string& to);

    // A main store over the file: file mode (references counted, modes loaded on demand) or buffer mode.
    std::unique_ptr<TuningSetManager> LoadFileMode() const;
    std::unique_ptr<TuningSetManager> LoadBufferMode();

private:
    void WriteFile();

    bool               m_valid;
    std::string        m_messages;
    std::string        m_name;
    std::vector<UINT8> m_bytes;
};

// A source module entry: name, record type, version and the values of Default and further modes, given as JSON.
std::string SourceModule(const std::string& name, const std::string& type, const std::string& version,
                         const std::string& members, const std::string& values);
// A whole source: mode tables (JSON array, may be empty) and module entries.
std::string Source(const std::string& modeTables, const std::vector<std::string>& modules);

// A mode selector.
TuningMode Selector(ModeType mode, UINT16 subMode);

#endif // AECORE_TESTS_UNIT_TUNINGSTORE_CTUNINGSTORETESTFILE_H
