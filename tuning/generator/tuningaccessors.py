# Emits the generated module accessors: per record Load / LoadArray / AllocArray / Unload / GetValue / SetValue /
# GetInfo, and per module its <Name>TypeClass.
"""Accessor emitter of the tuning record generator.

tuning_<ns>.cpp defines the accessors of every record of a namespace (namespace-level, module and nested records):
Load reads member by member with the member's name hash as a literal, Unload releases the blocks Load allocated,
and GetValue / SetValue / GetInfo go through a table of the record's members (ParameterAccessor in
src/tuning/parser/parameteraccessorutils.h). tuning_<ns>_module.h declares the <Name>TypeClass of each module of the
namespace; its functions are defined in tuning_<ns>.cpp too.
"""

from tuningcrc import literal, name_hash
from tuningheaders import namespace_header
from tuningschema import StructDecl, cpp_type, underlying

# Schema scalar words and enumerations as the value interface's element types.
ACCESSOR_TYPES = {
    "INT8": "Int8", "UINT8": "UInt8", "INT16": "Int16", "UINT16": "UInt16", "INT32": "Int32", "UINT32": "UInt32",
    "INT64": "Int64", "UINT64": "UInt64", "INT": "Int32", "UINT": "UInt32", "FLOAT": "Float", "DOUBLE": "Double",
    "BOOL": "Bool", "CHAR": "Char", "STRING": "String",
}

NO_LIMIT = "ParameterFileSymbolTableEntry::NoLimit"


def source_name(namespace):
    return namespace_header(namespace)[:-2] + ".cpp"


def module_header(namespace):
    return namespace_header(namespace)[:-2] + "_module.h"


def _module_namespaces(schema):
    return sorted({decl.namespace for decl in schema.modules()})


def output_names(schema):
    names = [source_name(namespace) for namespace in sorted(schema.namespaces)]
    names += [module_header(namespace) for namespace in _module_namespaces(schema)]
    return names


def class_name(decl):
    return decl.name + "Class"


def _records(decl):
    """A record and the records nested in it, innermost first, so that each is defined after what it uses."""
    for member in decl.members:
        if member.nested is not None:
            yield from _records(member.nested)
    yield decl


def _local(record):
    """A record's name inside its namespace, e.g. FixMeteringType::levelsStruct."""
    return record.qualified[len(record.namespace) + 2:]


def _element(member):
    """The member's element type behind typedefs: scalar word, EnumDecl or StructDecl."""
    return underlying(member.element_type)


def _count(member):
    total = 1
    for size in member.dims:
        total *= size
    return total


def _first(member):
    """The address of the first element of a fixed array (of any dimensions) or of a single field."""
    name = "this->" + member.name
    if not member.dims:
        return f"&{name}"
    if len(member.dims) == 1:
        return name
    return "&" + name + "[0]" * len(member.dims)


def _allocates(member):
    return member.variable or _element(member) == "STRING"


def _locations(schema):
    """{(record, member name): Location constant} of every allocated member of the schema.

    The store shares a block among instances per data entry and location, and equal blocks of different members
    may be one entry of the file: so each allocated member needs its own location. A member's location comes from
    the hash of its qualified name, the same in every build; a clash (a next value) is settled in schema order.
    """
    locations, taken = {}, set()
    for namespace in sorted(schema.namespaces):
        for decl in schema.declarations(namespace):
            if not isinstance(decl, StructDecl):
                continue
            for record in _records(decl):
                for member in record.members:
                    if not _allocates(member):
                        continue
                    value = name_hash(f"{record.qualified}::{member.name}") & 0x7FFFFFFF
                    while value in taken:
                        value = (value + 1) & 0x7FFFFFFF
                    taken.add(value)
                    locations[(record.qualified, member.name)] = value
    return locations


def _needs_unload(record):
    """True if loading the record may allocate (directly or in a nested record)."""
    for member in record.members:
        element = _element(member)
        if _allocates(member):
            return True
        if isinstance(element, StructDecl) and _needs_unload(element):
            return True
    return False


def _load_body(record, locations):
    lines = []
    for member in record.members:
        element = _element(member)
        cpp = cpp_type(member.element_type)
        lines.append(f"    members.NameHash = {literal(member.name)};")
        name = "this->" + member.name
        location = locations.get((record.qualified, member.name))
        if isinstance(element, StructDecl):
            if member.variable:
                lines.append(f"    {name} = static_cast<{cpp}*>(pEntry->ReadStructureArray(&{cpp}::LoadArray, "
                             f"&{cpp}::AllocArray, {name}Count, {name}ID, {NO_LIMIT}, sizeof({cpp}), members, "
                             f"{location}));")
            elif member.dims:
                lines.append(f"    pEntry->ReadStructureFixedArray(&{cpp}::LoadArray, {_first(member)}, "
                             f"{_count(member)}, members);")
            else:
                lines.append(f"    {name}.Load(members);")
        elif element == "STRING":
            if member.variable:
                lines.append(f"    pEntry->ReadStringArray({name}, {name}Count, {name}ID, {NO_LIMIT}, members, "
                             f"{location});")
            elif member.dims:
                lines.append(f"    pEntry->ReadStringFixedArray({_first(member)}, {_count(member)}, members, "
                             f"{location});")
            else:
                lines.append(f"    pEntry->ReadString({name}, members, {location});")
        elif member.variable:
            lines.append(f"    pEntry->ReadSimpleTypeArray<{cpp}>({name}, {name}Count, {name}ID, {NO_LIMIT}, "
                         f"members, {location});")
        else:
            lines.append(f"    pEntry->ReadSimpleTypeFixedArray<{cpp}>({_first(member)}, {_count(member)}, "
                         f"members);")
    return lines


def _unload_body(record):
    lines = []
    for member in record.members:
        element = _element(member)
        name = "this->" + member.name
        if isinstance(element, StructDecl):
            if member.variable:
                lines.append(f"    ParameterAccessor::ReleaseRecords(pSymbolTable, {name}, {name}Count, {name}ID);")
            elif _needs_unload(element):
                if member.dims:
                    lines.append(f"    for (UINT32 i = 0; i < {_count(member)}; i++)")
                    lines.append("    {")
                    lines.append(f"        ({_first(member)})[i].Unload(pSymbolTable);")
                    lines.append("    }")
                else:
                    lines.append(f"    {name}.Unload(pSymbolTable);")
        elif element == "STRING":
            if member.variable:
                lines.append(f"    ParameterAccessor::ReleaseStrings(pSymbolTable, {name}, {name}Count, {name}ID);")
            elif member.dims:
                lines.append(f"    ParameterAccessor::ReleaseStringArray(pSymbolTable, {_first(member)}, "
                             f"{_count(member)});")
            else:
                lines.append(f"    ParameterAccessor::Release(pSymbolTable, {name});")
        elif member.variable:
            lines.append(f"    ParameterAccessor::Release(pSymbolTable, {name});")
            lines.append(f"    {name}Count = 0;")
            lines.append(f"    {name}ID    = 0;")
    return lines


def _table_name(record):
    return "s_" + record.qualified.replace("::", "_")


def _member_table(record):
    """The member table of a record, or None for a record without members."""
    if not record.members:
        return None
    qualified = record.qualified
    rows = []
    for member in record.members:
        element = _element(member)
        cpp = cpp_type(member.element_type)
        if isinstance(element, StructDecl):
            kind, functions = "Record", f"&ParameterAccessorRecordOf<{cpp}>::Functions"
        elif isinstance(element, str):
            kind, functions = ACCESSOR_TYPES[element], "nullptr"
        else:
            kind, functions = "Enum", "nullptr"
        element_cpp = "CHAR*" if element == "STRING" else cpp
        is_array = "true" if (member.variable or member.dims) else "false"
        variable = "true" if member.variable else "false"
        count = "0" if member.variable else str(_count(member))
        count_offset = f"offsetof({qualified}, {member.name}Count)" if member.variable else "0"
        rows.append(f'    {{"{member.name}", ParameterAccessorType::{kind}, {is_array}, {variable}, '
                    f"offsetof({qualified}, {member.name}), {count}, {count_offset}, sizeof({element_cpp}), "
                    f"{functions}}},")
    return [f"const ParameterAccessorMember {_table_name(record)}[] = {{"] + rows + ["};"]


def _table_args(record):
    if not record.members:
        return "nullptr, 0"
    return f"{_table_name(record)}, {len(record.members)}"


def _record_functions(record, registry_names, locations):
    local = _local(record)
    lines = [f"bool {local}::Load(ParameterLoadParameters& params)", "{"]
    if record.is_module:
        lines += ["    const UINT32 key = this->SymbolTableID;",
                  f"    *this            = {record.name}();",
                  "    SymbolTableID    = key;"]
    else:
        lines.append(f"    *this = {record.name}();")
    lines += ["    ParameterFileSymbolTableEntry* pEntry = params.Entry;",
              "    ParameterLoadParameters        members;",
              "    UINT32                         limit = 0;",
              "    if ((nullptr == pEntry) || !pEntry->BeginStructure(params, members, limit))",
              "    {",
              "        return (nullptr != pEntry);",
              "    }"]
    lines += _load_body(record, locations)
    lines += ["    pEntry->EndStructure(limit);", "    return true;", "}", ""]
    lines += [f"bool {local}::LoadArray(ParameterLoadParameters& params, void* pDest, UINT32 count)", "{",
              f"    return ParameterAccessor::LoadArray<{record.name}>(params, pDest, count);", "}", ""]
    lines += [f"void* {local}::AllocArray(UINT32 count)", "{",
              f"    return ParameterAccessor::AllocArray<{record.name}>(count);", "}", ""]
    unload = _unload_body(record)
    lines += [f"void {local}::Unload(ParameterFileSymbolTable* pSymbolTable)", "{"]
    lines += unload if unload else ["    static_cast<void>(pSymbolTable);"]
    lines += ["}", ""]
    args = _table_args(record)
    lines += [f"bool {local}::GetValue(const CHAR* pPath, CHAR* pOut, UINT32 size) const", "{",
              f"    return ParameterAccessor::GetValue({args}, this, pPath, pOut, size);", "}", ""]
    lines += [f"bool {local}::SetValue(const CHAR* pPath, const CHAR* pValue)", "{",
              f"    return ParameterAccessor::SetValue({args}, this, pPath, pValue);", "}", ""]
    lines += [f"bool {local}::GetInfo(const CHAR* pPath, PList<ParameterParserInfo>& list) const", "{",
              f"    return ParameterAccessor::GetInfo({args}, this, pPath, list);", "}", ""]
    if record.is_module:
        lines += _module_record_functions(record, registry_names)
    return lines


def _module_name(record, registry_names):
    return registry_names.get(record.qualified, record.name)


def _module_record_functions(record, registry_names):
    name = record.name
    cls = class_name(record)
    module_name = _module_name(record, registry_names)
    return [
        f"UINT32 {name}::GetModified() const", "{",
        f"    return static_cast<const {cls}*>(this)->GetModifiedCount();", "}", "",
        f"const CHAR* {name}::GetModuleName()", "{", f'    return "{module_name}";', "}", "",
        f"UINT64 {name}::GetModuleNameHash()", "{", f"    return {literal(module_name)};", "}", "",
        f"bool {name}::Release()", "{", f"    return static_cast<{cls}*>(this)->Release();", "}", "",
    ]


def _class_functions(record):
    name = record.name
    cls = class_name(record)
    major, minor, patch = record.module_version
    value = (patch << 32) | (minor << 16) | major
    return [
        f"// {major}.{minor}.{patch}: Major, Minor and Patch in the layout of VersionUnion.",
        f"const VersionUnion {cls}::SourceVersion = {{0x{value:016X}ULL}};", "",
        f"{cls}::{cls}(const CHAR* pName, ModuleData* pData)",
        "    : ParameterModule(pName, SourceVersion, pData)",
        f"    , {name}()", "{", "}", "",
        f"{cls}::~{cls}()", "{", "    if (IsLoaded())", "    {", "        UnloadModule();", "    }", "}", "",
        f"ParameterModule* {cls}::Create(ModuleData* pData, DefaultModule* pDefaults) const", "{",
        f'    return CreateInstance(pData, pDefaults, "{cls}", true, &ParameterAccessor::MakeInstance<{cls}>);', "}", "",
        f"bool {cls}::LoadModule(ParameterFileSymbolTable* pSymbolTable)", "{",
        f'    return LoadFromSymbolTable(pSymbolTable, "{cls}", &ParameterAccessor::LoadTop<{name}>,',
        f"                               static_cast<{name}*>(this));", "}", "",
        f"bool {cls}::UnloadModule()", "{",
        f"    return ParameterAccessor::UnloadModule(m_mutex, m_loaded, m_pData, m_name, static_cast<{name}&>(*this));",
        "}", "",
        f"bool {cls}::GetValue(const CHAR* pPath, CHAR* pOut, UINT32 size)", "{",
        f"    return {name}::GetValue(pPath, pOut, size);", "}", "",
        f"bool {cls}::SetValue(const CHAR* pPath, const CHAR* pValue)", "{",
        "    std::lock_guard<ParameterMutex> lock(m_mutex);",
        f"    if (!{name}::SetValue(pPath, pValue))", "    {", "        return false;", "    }",
        "    // A changed instance differs from the file's: the key's top byte counts the changes.",
        "    NoteModified();", "    SymbolTableID = GetKey();", "    return true;", "}", "",
        f"bool {cls}::GetInfo(const CHAR* pPath, PList<ParameterParserInfo>& list)", "{",
        f"    return {name}::GetInfo(pPath, list);", "}", "",
    ]


def render_source(schema, namespace, registry_names, has_modules, locations):
    records = [record for decl in schema.declarations(namespace) if isinstance(decl, StructDecl)
               for record in _records(decl)]
    lines = [f"// Accessors of the tuning records of namespace {namespace}, generated from the tuning schema by "
             "aectuninggen.py: do not edit.",
             f'#include "{module_header(namespace) if has_modules else namespace_header(namespace)}"', "",
             "#include <cstddef>", "#include <mutex>", "",
             '#include "tuning/parser/parameteraccessorutils.h"', ""]
    tables = [table for table in (_member_table(record) for record in records) if table is not None]
    if tables:
        lines += ["namespace", "{", ""]
        for table in tables:
            lines += table + [""]
        lines += ["} // namespace", ""]
    lines += [f"namespace {namespace}", "{", ""]
    for record in records:
        lines += _record_functions(record, registry_names, locations)
    for record in records:
        if record.is_module:
            lines += _class_functions(record)
    lines += [f"}} // namespace {namespace}", ""]
    return "\n".join(lines)


def render_module_header(schema, namespace, registry_names):
    file_name = module_header(namespace)
    guard = "AECTUNING_" + file_name.upper().replace(".", "_")
    lines = [f"// Module classes of namespace {namespace}, generated from the tuning schema by aectuninggen.py: "
             "do not edit.",
             f"#ifndef {guard}", f"#define {guard}", "",
             '#include "tuning/parser/parametermodule.h"', f'#include "{namespace_header(namespace)}"', "",
             f"namespace {namespace}", "{"]
    for decl in schema.declarations(namespace):
        if not (isinstance(decl, StructDecl) and decl.is_module):
            continue
        cls = class_name(decl)
        name = decl.name
        major, minor, patch = decl.module_version
        lines += [
            "",
            f'// Module "{_module_name(decl, registry_names)}": a store instance of {name} (source version '
            f"{major}.{minor}.{patch}); the store hands out its {name}.",
            f"class {cls} : public ParameterModule, public {name}",
            "{",
            "public:",
            "    // The record type, whose static GetModuleName / GetModuleNameHash name the registered module.",
            f"    typedef {name} RecordType;",
            "    static const VersionUnion SourceVersion;",
            "",
            "    // pData is null for the prototype that the set manager registers.",
            f"    {cls}(const CHAR* pName, ModuleData* pData);",
            f"    ~{cls}() override;",
            "",
            "    ParameterModule* Create(ModuleData* pData, DefaultModule* pDefaults) const override;",
            "    bool             LoadModule(ParameterFileSymbolTable* pSymbolTable) override;",
            "    bool             UnloadModule() override;",
            "    bool             GetValue(const CHAR* pPath, CHAR* pOut, UINT32 size) override;",
            "    bool             SetValue(const CHAR* pPath, const CHAR* pValue) override;",
            "    bool             GetInfo(const CHAR* pPath, PList<ParameterParserInfo>& list) override;",
            "    // The instance's own name and hash.",
            "    const CHAR*      GetModuleName() const override { return ParameterModule::GetModuleName(); }",
            "    UINT64           GetModuleNameHash() const override { return ParameterModule::GetModuleNameHash(); }",
            "    using ParameterModule::Release;",
            "};",
        ]
    lines += ["", f"}} // namespace {namespace}", "", f"#endif // {guard}", ""]
    return "\n".join(lines)


def render_accessors(schema, registry):
    """{file name: text}: tuning_<ns>.cpp per namespace, tuning_<ns>_module.h per namespace with a module."""
    registry_names = {module.decl.qualified: module.name for module in (registry or []) if module.present}
    module_namespaces = set(_module_namespaces(schema))
    locations = _locations(schema)
    files = {}
    for namespace in sorted(schema.namespaces):
        files[source_name(namespace)] = render_source(schema, namespace, registry_names,
                                                      namespace in module_namespaces, locations)
    for namespace in sorted(module_namespaces):
        files[module_header(namespace)] = render_module_header(schema, namespace, registry_names)
    return files
