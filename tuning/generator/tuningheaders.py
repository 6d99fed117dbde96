# Emits the C++ record headers of the tuning schema: one per namespace and the umbrella header.
"""C++ record emitter of the tuning record generator."""

from tuningschema import (EnumDecl, StructDecl, TypedefDecl, SYMBOL_TABLE_ID, cpp_type, namespace_dependencies,
                          ordered_declarations)

UMBRELLA_HEADER = "aectuningrecords.h"

# The store's types that the accessor declarations name; the records themselves need none of them complete.
FORWARD_DECLARATIONS = """struct ParameterLoadParameters;
struct ParameterParserInfo;
class ParameterFileSymbolTable;
template <typename T>
class PList;"""


def namespace_header(namespace):
    return f"tuning_{namespace.lower()}.h"


def _guard(file_name):
    return "AECTUNING_" + file_name.upper().replace(".", "_")


def _doc(lines, indent):
    trimmed = list(lines)
    while trimmed and not trimmed[-1].strip():
        trimmed.pop()
    while trimmed and not trimmed[0].strip():
        trimmed.pop(0)
    return [f"{indent}// {line}".rstrip() for line in trimmed]


def _aligned(fields, indent):
    """Field declarations with their names in one column; each field is (doc lines, type, declarator)."""
    width = max((len(cpp) for doc, cpp, _ in fields if cpp is not None), default=0)
    out = []
    for doc, cpp, declarator in fields:
        out += doc
        if cpp is not None:
            out.append(f"{indent}{cpp.ljust(width)} {declarator};")
    return out


def _record(record, indent):
    """A record definition; nested records are defined just above the member that uses them."""
    inner = indent + "    "
    fields = []
    if record.symbol:
        fields.append(([], "UINT32", SYMBOL_TABLE_ID))
    for member in record.members:
        doc = _doc(member.doc, inner)
        if member.nested is not None:
            # The nested definition breaks the column alignment on purpose: it reads as its own block.
            fields.append((doc, None, None))
            fields.append((_record(member.nested, inner), None, None))
            doc = []
        element = cpp_type(member.element_type, record)
        if member.variable:
            fields.append((doc, "UINT32", member.name + "Count"))
            fields.append(([], "UINT32", member.name + "ID"))
            fields.append(([], element + "*", member.name))
        else:
            dims = "".join(f"[{size}]" for size in member.dims)
            fields.append((doc, element, member.name + dims))
    lines = [f"{indent}struct {record.name}", f"{indent}{{"]
    # Align the plain fields that stand between nested definitions.
    run = []
    for field in fields + [([], None, None)]:
        if field[1] is None:
            lines += _aligned(run, inner)
            run = []
            lines += field[0]
        else:
            run.append(field)
    lines.append("")
    lines += [inner + line if line else "" for line in _accessor_declarations(record)]
    lines.append(f"{indent}}};")
    return lines


def _accessor_declarations(record):
    """The generated accessors of a record (defined in tuning_<namespace>.cpp); they keep the record plain."""
    lines = [
        "// Generated accessors: load from the parameter file, release, values by path (\"zones[1].target\").",
        "bool         Load(ParameterLoadParameters& params);",
        "static bool  LoadArray(ParameterLoadParameters& params, void* pDest, UINT32 count);",
        "static void* AllocArray(UINT32 count);",
        "void         Unload(ParameterFileSymbolTable* pSymbolTable);",
        "bool         GetValue(const CHAR* pPath, CHAR* pOut, UINT32 size) const;",
        "bool         SetValue(const CHAR* pPath, const CHAR* pValue);",
        "bool         GetInfo(const CHAR* pPath, PList<ParameterParserInfo>& list) const;",
    ]
    if record.is_module:
        lines += [
            "// Of the module: GetModified and Release only on a record that the store handed out.",
            "UINT32             GetModified() const;",
            "static const CHAR* GetModuleName();",
            "static UINT64      GetModuleNameHash();",
            "bool               Release();",
        ]
    return lines


def _declaration(decl):
    lines = _doc(decl.doc, "")
    if isinstance(decl, EnumDecl):
        lines += [f"enum {decl.name} : INT32", "{"]
        width = max((len(member.name) for member in decl.members), default=0)
        for member in decl.members:
            lines += _doc(member.doc, "    ")
            lines.append(f"    {member.name.ljust(width)} = {member.value},")
        lines.append("};")
    elif isinstance(decl, TypedefDecl):
        lines.append(f"typedef {cpp_type(decl.type_ref.target)} {decl.name};")
    elif isinstance(decl, StructDecl):
        if decl.is_module:
            major, minor, patch = decl.module_version
            lines.append(f"// Tuning module {decl.name}, version {major}.{minor}.{patch}.")
        lines += _record(decl, "")
        lines.append(f"static_assert(std::is_trivial_v<{decl.name}> && "
                     f"std::is_standard_layout_v<{decl.name}>,")
        lines.append(f'              "{decl.name} must stay a plain record");')
    return lines


def render_namespace(schema, namespace):
    """The header text of one namespace."""
    file_name = namespace_header(namespace)
    guard = _guard(file_name)
    lines = [
        f"// Tuning records of namespace {namespace}, generated from the tuning schema by aectuninggen.py: do not edit.",
        f"#ifndef {guard}",
        f"#define {guard}",
        "",
        "#include <type_traits>",
        "",
        '#include "aecore/aecore_types.h"',
    ]
    lines += [f'#include "{namespace_header(other)}"' for other in namespace_dependencies(schema, namespace)]
    lines += ["", FORWARD_DECLARATIONS]
    lines += ["", f"namespace {namespace}", "{"]
    for decl in ordered_declarations(schema, namespace):
        lines.append("")
        lines += _declaration(decl)
    lines += ["", f"}} // namespace {namespace}", "", f"#endif // {guard}", ""]
    return "\n".join(lines)


def render_umbrella(schema):
    guard = _guard(UMBRELLA_HEADER)
    lines = [
        "// All tuning records, generated from the tuning schema by aectuninggen.py: do not edit.",
        f"#ifndef {guard}",
        f"#define {guard}",
        "",
        '#include "aecore/aecore_types.h"',
    ]
    lines += [f'#include "{namespace_header(namespace)}"' for namespace in sorted(schema.namespaces)]
    lines += ["", f"#endif // {guard}", ""]
    return "\n".join(lines)


def render_headers(schema, registry=None):
    """{file name: text} of every record header."""
    files = {namespace_header(namespace): render_namespace(schema, namespace) for namespace in schema.namespaces}
    files[UMBRELLA_HEADER] = render_umbrella(schema)
    return files
