// Writes the definition table: enumerations, record structures with their members, and the modules' top records.
#ifndef AECTUNE_CTUNEDEFINITIONWRITER_H
#define AECTUNE_CTUNEDEFINITIONWRITER_H

#include "ctunebytewriter.h"
#include "tunesourcemodel.h"

namespace AecTune
{

class CTuneDefinitionWriter
{
public:
    explicit CTuneDefinitionWriter(const TuneSource* pSource);

    // Appends the whole table to out, padded to out's alignment. Structures are numbered from 1 in the order of TuneSource::structs,
    // enumerations likewise in the order of TuneSource::enums.
    void Write(CTuneByteWriter* pOut) const;

    // Flags of a member as the file describes it: fixed array, out-of-line (pointer) array.
    static UINT16 MemberFlags(const TuneMember& member);

private:
    void WriteEnum(size_t index, CTuneByteWriter* pOut) const;
    void WriteStructure(size_t index, CTuneByteWriter* pOut) const;
    void WriteModule(const TuneModule& module, CTuneByteWriter* pOut) const;

    const TuneSource* m_pSource;
};

} // namespace AecTune

#endif // AECTUNE_CTUNEDEFINITIONWRITER_H
