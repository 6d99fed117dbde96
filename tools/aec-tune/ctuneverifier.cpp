// Decides whether a parameter file is sound, from what the parameter store reported while reading it.
#include "ctuneverifier.h"

#include <algorithm>

#include "ctunedumper.h"
#include "ctuneformat.h"
#include "tuning/parser/parameterutils.h"

namespace AecTune
{

void CTuneVerifier::Check(const TuneFileContents& contents, std::vector<std::string>* pProblems,
                          std::vector<std::string>* pWarnings)
{
    if (!contents.headerError.empty())
    {
        pProblems->push_back(contents.headerError);
    }
    if (!contents.loadError.empty())
    {
        pProblems->push_back(contents.loadError);
    }
    // The load and the reading of the values may report the same thing; each text is told once.
    for (const TuneLogLine& line : contents.log)
    {
        std::vector<std::string>* pList = line.isError ? pProblems : pWarnings;
        if (std::find(pList->begin(), pList->end(), line.text) == pList->end())
        {
            pList->push_back(line.text);
        }
    }
    if (!contents.headerError.empty())
    {
        return;
    }
    // The store trusts section offsets and sizes; each section must lie between the section table and the checksum.
    const CTuneFormat format(contents.version);
    const UINT64      dataEnd  = (contents.length > format.ChecksumBytes()) ? contents.length - format.ChecksumBytes()
                                                                            : 0;
    const UINT64      tableEnd = static_cast<UINT64>(contents.sectionTableOffset) +
                            contents.sections.size() * 3 *
                                ParameterUtils::FieldSize(4, static_cast<BYTE>(contents.alignment));
    for (const TuneFileSection& section : contents.sections)
    {
        const UINT64 end = static_cast<UINT64>(section.offset) + section.size;
        if (section.size != 0 && (end > dataEnd || section.offset < tableEnd))
        {
            pProblems->push_back(std::string(CTuneDumper::SectionName(section.type)) + " section (type " +
                                 std::to_string(section.type) + ") at offset " + std::to_string(section.offset) +
                                 " with size " + std::to_string(section.size) + " lies outside the sections' room (" +
                                 std::to_string(tableEnd) + " to " + std::to_string(dataEnd) + ")");
        }
    }
    if (contents.headerError.empty() && !contents.loaded && pProblems->empty())
    {
        pProblems->push_back("the parameter store does not load the file");
    }
    if (contents.length > contents.expectedSize)
    {
        pWarnings->push_back("the file has " + std::to_string(contents.length - contents.expectedSize) +
                             " bytes more than its header's size of " + std::to_string(contents.expectedSize));
    }
}

} // namespace AecTune
