// Writes the definition table: enumerations, record structures with their members, and the modules' top records.
#include "ctunedefinitionwriter.h"

#include "tuning/parser/parsercrc.h"

namespace AecTune
{

CTuneDefinitionWriter::CTuneDefinitionWriter(const TuneSource* pSource)
    : m_pSource(pSource)
{
}

UINT16 CTuneDefinitionWriter::MemberFlags(const TuneMember& member)
{
    if (member.variable)
    {
        return ParameterDefinitionElementInfo::FlagIsPointer;
    }
    return (member.maxCount >= 2) ? ParameterDefinitionElementInfo::FlagIsFixed : 0;
}

void CTuneDefinitionWriter::Write(CTuneByteWriter* pOut) const
{
    for (size_t i = 0; i < m_pSource->enums.size(); i++)
    {
        WriteEnum(i, pOut);
    }
    for (size_t i = 0; i < m_pSource->structs.size(); i++)
    {
        WriteStructure(i, pOut);
    }
    for (const TuneModule& module : m_pSource->modules)
    {
        WriteModule(module, pOut);
    }
}

void CTuneDefinitionWriter::WriteEnum(size_t index, CTuneByteWriter* pOut) const
{
    const TuneEnum& typeEnum = m_pSource->enums[index];
    pOut->U8(ParameterDefinitionType_EnumDefinition);
    pOut->U32(static_cast<UINT32>(index + 1));
    pOut->CountedString(typeEnum.typeName);
    pOut->U64(ParserCRC64::GetNameHash(typeEnum.typeName.c_str()));
    pOut->U32(static_cast<UINT32>(typeEnum.values.size()));
    for (const TuneEnumValue& value : typeEnum.values)
    {
        pOut->U32(static_cast<UINT32>(value.value));
        pOut->U8(0);
        pOut->CountedString(value.name);
        pOut->CountedString(std::string());
    }
}

void CTuneDefinitionWriter::WriteStructure(size_t index, CTuneByteWriter* pOut) const
{
    const TuneStruct& record = m_pSource->structs[index];
    pOut->U8(ParameterDefinitionType_Structure);
    pOut->U32(static_cast<UINT32>(index + 1));
    pOut->CountedString(record.typeName);
    pOut->U64(ParserCRC64::GetNameHash(record.typeName.c_str()));
    pOut->U32(static_cast<UINT32>(record.members.size()));
    for (const TuneMember& member : record.members)
    {
        // A child names its structure or enumeration by number; scalars and strings need none.
        const bool   named = (member.kind == TuneElementKind::Struct || member.kind == TuneElementKind::Enum);
        const UINT32 id    = named ? static_cast<UINT32>(member.typeIndex + 1) : 0;
        pOut->U8(static_cast<UINT8>(member.definitionType));
        pOut->U32(id);
        pOut->CountedString(member.name);
        pOut->U16(MemberFlags(member));
        pOut->U32(member.minCount);
        pOut->U32(member.maxCount);
        pOut->CountedString(member.doc);
    }
}

void CTuneDefinitionWriter::WriteModule(const TuneModule& module, CTuneByteWriter* pOut) const
{
    pOut->U8(ParameterDefinitionType_Module);
    pOut->U32(static_cast<UINT32>(module.structIndex + 1));
    pOut->U64(ParserCRC64::GetNameHash(module.name.c_str()));
    pOut->CountedString(module.name);
    pOut->CountedString(module.description);
}

} // namespace AecTune
