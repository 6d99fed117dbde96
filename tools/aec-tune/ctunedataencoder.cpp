// Encodes module values into the bytes of the Data section: records in line, arrays and strings as referenced blocks.
#include "ctunedataencoder.h"

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

namespace AecTune
{

namespace
{

// The path of one element: "name[3]" inside an array, the member's own path for a single element.
std::string ElementPath(const TuneMember& member, const std::string& path, size_t index)
{
    return (member.variable || !member.dims.empty()) ? CTuneMessages::Index(path, index) : path;
}

bool IntegerRange(ParameterDefinitionType type, INT64* pLow, UINT64* pHigh)
{
    switch (type)
    {
        case ParameterDefinitionType_Signed8Bits:    *pLow = INT8_MIN;  *pHigh = INT8_MAX;   return true;
        case ParameterDefinitionType_Unsigned8Bits:
        case ParameterDefinitionType_Hex8Bits:       *pLow = 0;         *pHigh = UINT8_MAX;  return true;
        case ParameterDefinitionType_Signed16Bits:   *pLow = INT16_MIN; *pHigh = INT16_MAX;  return true;
        case ParameterDefinitionType_Unsigned16Bits:
        case ParameterDefinitionType_Hex16Bits:      *pLow = 0;         *pHigh = UINT16_MAX; return true;
        case ParameterDefinitionType_Signed32Bits:
        case ParameterDefinitionType_Boolean:
        case ParameterDefinitionType_Enum:       *pLow = INT32_MIN; *pHigh = INT32_MAX;  return true;
        case ParameterDefinitionType_Unsigned32Bits:
        case ParameterDefinitionType_Hex32Bits:      *pLow = 0;         *pHigh = UINT32_MAX; return true;
        case ParameterDefinitionType_Signed64Bits:   *pLow = INT64_MIN; *pHigh = INT64_MAX;  return true;
        case ParameterDefinitionType_Unsigned64Bits:
        case ParameterDefinitionType_Hex64Bits:      *pLow = 0;         *pHigh = UINT64_MAX; return true;
        default:                return false;
    }
}

} // namespace

CTuneDataEncoder::CTuneDataEncoder(const TuneSource* pSource, const CTuneFormat* pFormat, UINT32 firstBlockId,
                                   CTuneMessages* pMessages)
    : m_pSource(pSource)
    , m_pFormat(pFormat)
    , m_firstBlockId(firstBlockId)
    , m_pMessages(pMessages)
{
}

const std::vector<std::vector<UINT8>>& CTuneDataEncoder::Blocks() const
{
    return m_blocks;
}

UINT32 CTuneDataEncoder::AddBlock(const std::vector<UINT8>& block)
{
    auto it = m_blockIds.find(block);
    if (it != m_blockIds.end())
    {
        return it->second;
    }
    const UINT32 id = m_firstBlockId + static_cast<UINT32>(m_blocks.size());
    m_blocks.push_back(block);
    m_blockIds[block] = id;
    return id;
}

bool CTuneDataEncoder::EncodeModule(const TuneModule& module, const TuneModuleInstance& instance,
                                    std::vector<UINT8>* pData)
{
    CTuneByteWriter out(m_pFormat->Alignment());
    if (!EncodeStruct(module.structIndex, &instance.values, instance.path, &out))
    {
        return false;
    }
    *pData = out.Bytes();
    return true;
}

bool CTuneDataEncoder::EncodeStruct(size_t structIndex, const Json* pValue, const std::string& path,
                                    CTuneByteWriter* pOut)
{
    const TuneStruct& record = m_pSource->structs[structIndex];
    if (pValue != nullptr && !pValue->is_null() && !pValue->is_object())
    {
        m_pMessages->Error(path, "expected an object of members of '" + record.typeName + "'");
        return false;
    }
    bool ok = true;
    if (pValue != nullptr && pValue->is_object())
    {
        for (auto it = pValue->begin(); it != pValue->end(); ++it)
        {
            bool known = false;
            for (const TuneMember& member : record.members)
            {
                known = known || (member.name == it.key());
            }
            if (!known)
            {
                m_pMessages->Error(CTuneMessages::Child(path, it.key()), "'" + record.typeName +
                                                                             "' has no member of this name");
                ok = false;
            }
        }
    }
    // From the name-hash version on, every record starts with the number of its bytes that follow.
    const size_t limitAt = pOut->Size();
    if (m_pFormat->HasNameHashes())
    {
        pOut->U32(0);
    }
    for (const TuneMember& member : record.members)
    {
        const Json* pMember = nullptr;
        if (pValue != nullptr && pValue->is_object() && pValue->contains(member.name))
        {
            pMember = &(*pValue)[member.name];
        }
        ok = EncodeMember(member, pMember, CTuneMessages::Child(path, member.name), pOut) && ok;
    }
    if (m_pFormat->HasNameHashes())
    {
        pOut->PatchU32(limitAt, static_cast<UINT32>(pOut->Size() - limitAt - 4));
    }
    return ok;
}

bool CTuneDataEncoder::Flatten(const TuneMember& member, const Json* pValue, const std::string& path,
                               std::vector<Json>* pElements)
{
    pElements->clear();
    if (pValue == nullptr || pValue->is_null())
    {
        return true;
    }
    const bool isCharacters = (member.kind == TuneElementKind::Scalar && member.definitionType == ParameterDefinitionType_Signed8Bits);
    if (isCharacters && pValue->is_string() && (member.variable || !member.dims.empty()))
    {
        // Text for a character array: its bytes, the rest stays zero.
        for (char c : pValue->get<std::string>())
        {
            pElements->push_back(Json(static_cast<INT64>(static_cast<INT8>(c))));
        }
        return true;
    }
    if (!member.variable && member.dims.empty())
    {
        pElements->push_back(*pValue);
        return true;
    }
    if (!pValue->is_array())
    {
        m_pMessages->Error(path, "expected an array for '" + member.typeText + "'");
        return false;
    }
    // Nested arrays of a multi-dimensional member must give every row in full; a flat array may be shorter.
    bool nested = member.dims.size() > 1 && !pValue->empty() && (*pValue)[0].is_array();
    if (!nested)
    {
        for (const Json& element : *pValue)
        {
            pElements->push_back(element);
        }
        return true;
    }
    std::function<bool(const Json&, size_t, const std::string&)> walk = [&](const Json& level, size_t dim,
                                                                           const std::string& levelPath) {
        if (dim == member.dims.size())
        {
            pElements->push_back(level);
            return true;
        }
        if (!level.is_array() || level.size() != member.dims[dim])
        {
            m_pMessages->Error(levelPath, "expected an array of " + std::to_string(member.dims[dim]) + " elements");
            return false;
        }
        bool good = true;
        for (size_t i = 0; i < level.size(); i++)
        {
            good = walk(level[i], dim + 1, CTuneMessages::Index(levelPath, i)) && good;
        }
        return good;
    };
    return walk(*pValue, 0, path);
}

bool CTuneDataEncoder::EncodeMember(const TuneMember& member, const Json* pValue, const std::string& path,
                                    CTuneByteWriter* pOut)
{
    std::vector<Json> elements;
    if (!Flatten(member, pValue, path, &elements))
    {
        return false;
    }
    if (member.variable)
    {
        if (elements.size() < member.minCount || elements.size() > member.maxCount)
        {
            m_pMessages->Error(path, std::to_string(elements.size()) + " elements, '" + member.typeText + "' takes " +
                                         std::to_string(member.minCount) + " to " + std::to_string(member.maxCount));
            return false;
        }
        // Count and reference in line; the elements form the referenced block. An empty array has no block.
        CTuneByteWriter block(pOut->Alignment());
        if (!EncodeElements(member, elements, path, &block))
        {
            return false;
        }
        pOut->U32(static_cast<UINT32>(elements.size()));
        pOut->U32(elements.empty() ? 0 : AddBlock(block.Bytes()));
        return true;
    }
    const size_t count = member.minCount;
    if (elements.size() > count)
    {
        m_pMessages->Error(path, std::to_string(elements.size()) + " elements, '" + member.typeText + "' holds " +
                                     std::to_string(count));
        return false;
    }
    if (pValue == nullptr || pValue->is_null())
    {
        elements.assign(count, Json());
    }
    elements.resize(count, Json());
    if (count >= 2 && m_pFormat->HasFixedArrayCounts())
    {
        pOut->U32(static_cast<UINT32>(count));
    }
    return EncodeElements(member, elements, path, pOut);
}

bool CTuneDataEncoder::EncodeElements(const TuneMember& member, const std::vector<Json>& elements,
                                      const std::string& path, CTuneByteWriter* pOut)
{
    bool ok = true;
    if (member.kind == TuneElementKind::Scalar || member.kind == TuneElementKind::Enum)
    {
        // Each scalar element is a field of its own: padded to the alignment one by one.
        UINT8 bytes[8];
        for (size_t i = 0; i < elements.size(); i++)
        {
            std::memset(bytes, 0, sizeof(bytes));
            ok = ScalarBytes(member, &elements[i], ElementPath(member, path, i), bytes) && ok;
            pOut->Buffer(bytes, member.elementSize);
        }
        return ok;
    }
    for (size_t i = 0; i < elements.size(); i++)
    {
        const std::string elementPath = ElementPath(member, path, i);
        const Json*       pElement    = elements[i].is_null() ? nullptr : &elements[i];
        if (member.kind == TuneElementKind::String)
        {
            ok = EncodeString(pElement, elementPath, pOut) && ok;
        }
        else
        {
            ok = EncodeStruct(member.typeIndex, pElement, elementPath, pOut) && ok;
        }
    }
    return ok;
}

bool CTuneDataEncoder::EncodeString(const Json* pValue, const std::string& path, CTuneByteWriter* pOut)
{
    // A string is its byte count with the NUL and a reference to the text; null is count 0, reference 0.
    if (pValue == nullptr || pValue->is_null())
    {
        pOut->U32(0);
        pOut->U32(0);
        return true;
    }
    if (!pValue->is_string())
    {
        m_pMessages->Error(path, "expected a string or null");
        return false;
    }
    const std::string  text = pValue->get<std::string>();
    CTuneByteWriter    block(pOut->Alignment());
    block.Buffer(text.c_str(), text.size() + 1);
    pOut->U32(static_cast<UINT32>(text.size() + 1));
    pOut->U32(AddBlock(block.Bytes()));
    return true;
}

bool CTuneDataEncoder::ScalarBytes(const TuneMember& member, const Json* pValue, const std::string& path,
                                   UINT8* pBytes)
{
    const ParameterDefinitionType type = member.definitionType;
    if (pValue == nullptr || pValue->is_null())
    {
        return true; // zero
    }
    if (type == ParameterDefinitionType_Float || type == ParameterDefinitionType_Double)
    {
        if (!pValue->is_number())
        {
            m_pMessages->Error(path, "expected a number");
            return false;
        }
        const double value = pValue->get<double>();
        if (type == ParameterDefinitionType_Float)
        {
            if (std::isfinite(value) && std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max()))
            {
                m_pMessages->Error(path, "out of the range of FLOAT");
                return false;
            }
            const float single = static_cast<float>(value);
            std::memcpy(pBytes, &single, 4);
        }
        else
        {
            std::memcpy(pBytes, &value, 8);
        }
        return true;
    }
    INT64  low  = 0;
    UINT64 high = 0;
    IntegerRange(type, &low, &high);
    UINT64 bits = 0;
    if (type == ParameterDefinitionType_Enum && pValue->is_string())
    {
        const TuneEnum& typeEnum = m_pSource->enums[member.typeIndex];
        bool            found    = false;
        for (const TuneEnumValue& value : typeEnum.values)
        {
            found = found || (value.name == pValue->get<std::string>());
            bits  = (value.name == pValue->get<std::string>()) ? static_cast<UINT64>(static_cast<INT64>(value.value))
                                                                : bits;
        }
        if (!found)
        {
            m_pMessages->Error(path, "'" + pValue->get<std::string>() + "' is no value of " + typeEnum.typeName);
            return false;
        }
    }
    else if (type == ParameterDefinitionType_Boolean && pValue->is_boolean())
    {
        bits = pValue->get<bool>() ? 1 : 0;
    }
    else if (type == ParameterDefinitionType_Signed8Bits && pValue->is_string() && pValue->get<std::string>().size() == 1)
    {
        bits = static_cast<UINT64>(static_cast<INT64>(static_cast<INT8>(pValue->get<std::string>()[0])));
    }
    else if (pValue->is_number_unsigned())
    {
        const UINT64 value = pValue->get<UINT64>();
        if (value > high)
        {
            m_pMessages->Error(path, std::to_string(value) + " is out of the range of '" + member.typeText + "'");
            return false;
        }
        bits = value;
    }
    else if (pValue->is_number_integer())
    {
        const INT64 value = pValue->get<INT64>();
        if (value < low || (value > 0 && static_cast<UINT64>(value) > high))
        {
            m_pMessages->Error(path, std::to_string(value) + " is out of the range of '" + member.typeText + "'");
            return false;
        }
        bits = static_cast<UINT64>(value);
    }
    else
    {
        m_pMessages->Error(path, (type == ParameterDefinitionType_Boolean) ? "expected true, false, 0 or 1"
                                 : (type == ParameterDefinitionType_Enum) ? "expected an enumerator name or an integer"
                                                         : "expected an integer");
        return false;
    }
    if (type == ParameterDefinitionType_Boolean && bits > 1)
    {
        m_pMessages->Error(path, "expected true, false, 0 or 1");
        return false;
    }
    for (UINT32 i = 0; i < member.elementSize; i++)
    {
        pBytes[i] = static_cast<UINT8>(bits >> (8 * i));
    }
    return true;
}

} // namespace AecTune
