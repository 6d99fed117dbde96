// Structure descriptions as a parameter file carries them: modules, structures and their members.
#include "tuning/parser/parameterdefinition.h"

ParameterDefinitionElementInfo::ParameterDefinitionElementInfo(ParameterDefinitionType type, UINT32 id,
                                                               UINT16 flags, UINT32 minCount, UINT32 maxCount)
    : Type(type)
    , ID(id)
    , Flags(flags)
    , MaxCount(maxCount)
    , ParentOffset(0)
    , Structure(nullptr)
{
    // The counts decide the shape as much as the flags do.
    if ((minCount >= 2) && (minCount == maxCount))
    {
        Flags |= FlagIsFixed;
    }
    else if ((maxCount >= 2) || ((0 == minCount) && (maxCount > 0)))
    {
        Flags |= FlagIsPointer;
    }
}

UINT32 ParameterDefinitionElementInfo::GetSize() const
{
    switch (Type)
    {
        case ParameterDefinitionType_Signed8Bits:
        case ParameterDefinitionType_Unsigned8Bits:
        case ParameterDefinitionType_Hex8Bits:
        case ParameterDefinitionType_String:
        case ParameterDefinitionType_AlphaNumeric:
        case ParameterDefinitionType_IDString:
        case ParameterDefinitionType_IDStringRef:
        case ParameterDefinitionType_Attribute:
            return 1;
        case ParameterDefinitionType_Signed16Bits:
        case ParameterDefinitionType_Unsigned16Bits:
        case ParameterDefinitionType_Hex16Bits:
            return 2;
        case ParameterDefinitionType_Signed32Bits:
        case ParameterDefinitionType_Unsigned32Bits:
        case ParameterDefinitionType_Float:
        case ParameterDefinitionType_Hex32Bits:
        case ParameterDefinitionType_Boolean:
        case ParameterDefinitionType_Enum:
            return 4;
        case ParameterDefinitionType_Signed64Bits:
        case ParameterDefinitionType_Unsigned64Bits:
        case ParameterDefinitionType_Double:
        case ParameterDefinitionType_Hex64Bits:
            return 8;
        case ParameterDefinitionType_Structure:
            return (nullptr != Structure) ? Structure->Size : 0;
        default:
            return 0;
    }
}

ParameterDefinitionElement::~ParameterDefinitionElement()
{
    if (m_nameAllocated)
    {
        delete Info;
    }
}

ParameterDefinitionStructure::~ParameterDefinitionStructure()
{
    for (auto& child : Children)
    {
        delete child.second;
    }
    delete[] TypeName;
}

bool ParameterDefinitionStructure::IsVerified(PList<UINT32>& visited) const
{
    if (visited.Contains(StructureID))
    {
        return true;
    }
    visited.Add(StructureID);
    for (const auto& child : Children)
    {
        const ParameterDefinitionElement* pElement = child.second;
        if (nullptr == pElement->Info)
        {
            continue;
        }
        if (!pElement->Verified)
        {
            return false;
        }
        if ((nullptr != pElement->Info->Structure) && !pElement->Info->Structure->IsVerified(visited))
        {
            return false;
        }
    }
    return true;
}
