// Turns what was read from a parameter file into JSON in the source format (plus file facts) or into plain text.
#ifndef AECTUNE_CTUNEDUMPER_H
#define AECTUNE_CTUNEDUMPER_H

#include <ostream>

#include "ctunefilereader.h"

namespace AecTune
{

class CTuneDumper
{
public:
    explicit CTuneDumper(const TuneFileContents* pContents);

    // A document that compile accepts again: header, mode tables, modules with members and values, and a "file"
    // object with what the file says beyond the source (version, sizes, sections, symbol entries, checksum).
    Json ToJson() const;
    void WriteText(std::ostream& out) const;

    // The name a section type has in dumps.
    static const char* SectionName(UINT32 type);

private:
    Json        FileJson() const;
    Json        ModesJson(size_t table, INT32 parent) const;
    Json        MembersJson(size_t structIndex, std::vector<size_t>* pStack) const;
    std::string ModuleName(const TuneFileModule& module) const;
    std::string ModeReference(UINT32 modeId) const;
    static void Flatten(const Json& value, const std::string& path, std::ostream& out);

    const TuneFileContents* m_pContents;
};

} // namespace AecTune

#endif // AECTUNE_CTUNEDUMPER_H
