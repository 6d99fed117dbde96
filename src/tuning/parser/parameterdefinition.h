// Structure descriptions as a parameter file carries them: modules, structures and their members.
#ifndef AECORE_TUNING_PARSER_PARAMETERDEFINITION_H
#define AECORE_TUNING_PARSER_PARAMETERDEFINITION_H

#include <atomic>
#include <map>

#include "aecore/aecore_types.h"
#include "tuning/parser/parametertypes.h"
#include "tuning/parser/plist.h"

enum ParameterDefinitionType : UINT32
{
    ParameterDefinitionType_ScenarioMode    = 0,
    ParameterDefinitionType_ScenarioSubMode = 1,
    ParameterDefinitionType_Pipeline        = 2,
    ParameterDefinitionType_Module          = 4,
    ParameterDefinitionType_Structure       = 5,
    ParameterDefinitionType_EnumDefinition  = 6,
    ParameterDefinitionType_Signed8Bits     = 8,
    ParameterDefinitionType_Unsigned8Bits   = 9,
    ParameterDefinitionType_Signed16Bits    = 10,
    ParameterDefinitionType_Unsigned16Bits  = 11,
    ParameterDefinitionType_Signed32Bits    = 12,
    ParameterDefinitionType_Unsigned32Bits  = 13,
    ParameterDefinitionType_Signed64Bits    = 14,
    ParameterDefinitionType_Unsigned64Bits  = 15,
    ParameterDefinitionType_Float           = 16,
    ParameterDefinitionType_Double          = 17,
    ParameterDefinitionType_Hex8Bits        = 18,
    ParameterDefinitionType_Hex16Bits       = 19,
    ParameterDefinitionType_Hex32Bits       = 20,
    ParameterDefinitionType_Hex64Bits       = 21,
    ParameterDefinitionType_Boolean         = 22,
    ParameterDefinitionType_Enum            = 23,
    ParameterDefinitionType_String          = 24,
    ParameterDefinitionType_AlphaNumeric    = 25,
    ParameterDefinitionType_IDString        = 26,
    ParameterDefinitionType_IDStringRef     = 27,
    ParameterDefinitionType_Attribute       = 28,
};

class ParameterDefinitionStructure;

// How the file stores one member: its type, shape and place in the parent structure.
class ParameterDefinitionElementInfo
{
public:
    static const UINT16 FlagIsFloat   = 0x1;
    static const UINT16 FlagIsPointer = 0x2;
    static const UINT16 FlagIsFixed   = 0x80;

    ParameterDefinitionElementInfo(ParameterDefinitionType type, UINT32 id, UINT16 flags, UINT32 minCount,
                                   UINT32 maxCount);

    bool   IsFloat() const { return 0 != (Flags & FlagIsFloat); }
    bool   IsPointer() const { return 0 != (Flags & FlagIsPointer); }
    bool   IsFixed() const { return 0 != (Flags & FlagIsFixed); }
    bool   IsString() const { return Type >= ParameterDefinitionType_String; }
    // Bytes of one element in the file; a structure's is its populated size.
    UINT32 GetSize() const;

    ParameterDefinitionType       Type;
    UINT32                        ID;
    UINT16                        Flags;
    UINT32                        MaxCount;
    UINT32                        ParentOffset;
    ParameterDefinitionStructure* Structure;
};

// One member of a structure, known by its name hash.
class ParameterDefinitionElement
{
public:
    ParameterDefinitionElement() = default;
    ~ParameterDefinitionElement();
    ParameterDefinitionElement(const ParameterDefinitionElement&) = delete;
    ParameterDefinitionElement& operator=(const ParameterDefinitionElement&) = delete;

    UINT64                          NameHash      = 0;
    std::atomic<bool>               Verified{false};
    ParameterDefinitionElementInfo* Info          = nullptr;
    // Set when Info belongs to this element (not when it is a temporary view of a module).
    bool                            m_nameAllocated = true;
};

// A structure of the file: its members by name hash and, until sizes are known, in file order.
class ParameterDefinitionStructure
{
public:
    ParameterDefinitionStructure() = default;
    ~ParameterDefinitionStructure();
    ParameterDefinitionStructure(const ParameterDefinitionStructure&) = delete;
    ParameterDefinitionStructure& operator=(const ParameterDefinitionStructure&) = delete;

    // True if every member matched the code on its first load, through nested structures too.
    bool IsVerified(PList<UINT32>& visited) const;

    UINT32                                       StructureID   = 0;
    CHAR*                                        TypeName      = nullptr;
    UINT64                                       StructureHash = 0;
    UINT32                                       Size          = 0;
    bool                                         Populated     = false;
    std::map<UINT64, ParameterDefinitionElement*> Children;
    PList<ParameterDefinitionElement*>            ChildOrder;
};

// A module of the file: its name and top structure.
class ParameterDefinitionModule
{
public:
    ParameterDefinitionModule() = default;
    ~ParameterDefinitionModule() { delete[] Name; }
    ParameterDefinitionModule(const ParameterDefinitionModule&) = delete;
    ParameterDefinitionModule& operator=(const ParameterDefinitionModule&) = delete;

    UINT32 StructureID = 0;
    UINT64 NameHash    = 0;
    CHAR*  Name        = nullptr;
};

#endif // AECORE_TUNING_PARSER_PARAMETERDEFINITION_H
