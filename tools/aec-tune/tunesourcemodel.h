// Records of a tuning source as the writer sees it: header identity, mode tables, record types and module values.
#ifndef AECTUNE_TUNESOURCEMODEL_H
#define AECTUNE_TUNESOURCEMODEL_H

#include <cstddef>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "aecore/aecore_types.h"
#include "tuning/parser/parameterdefinition.h"

namespace AecTune
{

using Json = nlohmann::ordered_json;

// Major, Minor, Patch of a file or module version, ordered in that sequence.
struct TuneVersion
{
    UINT16 major;
    UINT16 minor;
    UINT32 patch;
};

// What one element of a member is.
enum class TuneElementKind
{
    Scalar,
    String,
    Struct,
    Enum,
};

// One member of a record: its element type and how many elements it holds.
struct TuneMember
{
    std::string         name;
    UINT64              nameHash;       // how the file's definitions know the member
    std::string         doc;
    std::string         path;           // where the member is declared in the source, for messages
    std::string         typeText;       // the type as written, e.g. "FLOAT[8][8]"
    TuneElementKind     kind;
    ParameterDefinitionType definitionType; // element type code written to the definitions
    UINT32              elementSize;    // bytes of one scalar element (0 for strings and records)
    size_t              typeIndex;      // index into TuneSource::structs or ::enums
    std::vector<UINT32> dims;           // fixed dimensions; empty for a single element or a variable array
    bool                variable;       // count and elements out of line
    UINT32              minCount;       // least number of elements
    UINT32              maxCount;       // largest number of elements
};

// A record type: its name in the definitions and its members in layout order.
struct TuneStruct
{
    std::string             typeName;
    std::string             path;
    std::vector<TuneMember> members;
};

// One named value of an enumeration.
struct TuneEnumValue
{
    std::string name;
    INT32       value;
};

// An enumeration; its values are stored as 32-bit integers.
struct TuneEnum
{
    std::string                typeName;
    std::string                path;
    std::vector<TuneEnumValue> values;
};

// Value written when a mode slot has no parent or no link.
constexpr INT32 TuneNoSlot = -1;

// One slot of a mode table, in file order (a parent always precedes its children; slot 0 is the root).
struct TuneModeSlot
{
    UINT16      mode;
    UINT16      subMode;
    UINT32      group;      // pipeline + 1, 0 for none
    bool        preserve;
    bool        alias;      // same mode and sub-mode as the parent: shares the parent's node, keeps its own group
    INT32       parentSlot; // TuneNoSlot for the root
    INT32       linkSlot;   // TuneNoSlot for no link
    std::string label;      // optional name by which modules refer to the slot
    std::string modePath;   // canonical path from the root, e.g. "Usecase.Video|Scene.Portrait"
    std::string path;       // where the slot is declared in the source
};

// A tree of modes under one name.
struct TuneModeTable
{
    std::string               name;
    std::vector<TuneModeSlot> slots;
};

// The values of one module in one mode slot.
struct TuneModuleInstance
{
    size_t      table;
    UINT32      slot;
    Json        values;
    std::string path;   // where the values are given in the source
};

// A tuning module: the name under which the file knows it, its version and record, and its values per mode.
struct TuneModule
{
    std::string                     name;
    std::string                     description;
    TuneVersion                     version;
    size_t                          structIndex;
    std::vector<TuneModuleInstance> instances;
};

// A whole tuning source.
struct TuneSource
{
    std::string                createdBy;
    std::string                binaryTag;
    UINT64                     flags;
    std::vector<TuneModeTable> modeTables;
    std::vector<TuneStruct>    structs;
    std::vector<TuneEnum>      enums;
    std::vector<TuneModule>    modules;
};

} // namespace AecTune

#endif // AECTUNE_TUNESOURCEMODEL_H
