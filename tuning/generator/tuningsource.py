# Emits the default tuning as a parameter-file source (JSON) that aec-tune compiles into default.bin.
"""Source emitter of the tuning record generator.

aectuningdefault.json holds every registered module of the schema with its record description and the values of
the embedded defaults (aecdefaulttuning.cpp), so that the file compiled from it gives the library the very records
that it builds in. The values come from tuningdefaults, already checked and turned into C++ literals; they are read
back from those literals here rather than from the TOML files, so both outputs always agree.

Records declared at namespace level, enumerations and typedefs go to "types" under their qualified names; nested
records are declared in place, where the source names them <member>Struct as the headers do. The generated
SymbolTableID is no file data and is left out. There is one mode table, "Main", with the Default mode only: a host
may select any mode, and every selection ends at Default.
"""

import json
import re

from tuningschema import EnumDecl, StructDecl, TypedefDecl, underlying

OUTPUT_NAMES = ["aectuningdefault.json"]

MODE_TABLE = "Main"
CREATED_BY = "aectuninggen"
BINARY_TAG = "libaecore default tuning"
LINE_WIDTH = 118

_INTEGER = re.compile(r"^(-?\d+)u?$")
_INT64_MIN_TEXT = "(-9223372036854775807LL - 1)"
_STATIC_CAST = re.compile(r"^static_cast<[\w:]+>\((-?\d+)\)$")
_OCTAL_ESCAPE = re.compile(r"\\([0-7]{3})|\\(.)")


class SourceError(Exception):
    """A default value that a tuning source cannot carry."""


def _doc(lines):
    return " ".join(line.strip() for line in lines if line.strip())


def _c_string_text(literal):
    """The text of a C++ string literal as tuningdefaults writes it: plain characters, \\\\, \\\" and octal bytes."""
    body = literal[1:-1]
    data = bytearray()
    position = 0
    for match in _OCTAL_ESCAPE.finditer(body):
        data += body[position:match.start()].encode("ascii")
        data.append(int(match.group(1), 8) if match.group(1) else ord(match.group(2)))
        position = match.end()
    data += body[position:].encode("ascii")
    return data.decode("utf-8")


def _scalar_value(word, literal):
    """The JSON value of one scalar default from its C++ literal."""
    if word in ("FLOAT", "DOUBLE"):
        if literal.startswith(("std::", "-std::")):
            raise SourceError(f"{literal} (not finite) cannot be written to a tuning source")
        return float(literal[:-1] if literal.endswith("f") else literal)
    if word == "STRING":
        return _c_string_text(literal)
    if word == "BOOL":
        return literal == "1"
    if literal == _INT64_MIN_TEXT:
        return -2**63
    match = _INTEGER.match(literal)
    if match is None:
        raise SourceError(f"unexpected literal {literal} for {word}")
    return int(match.group(1))


def _enum_value(enum, literal):
    match = _STATIC_CAST.match(literal)
    if match is not None:
        return int(match.group(1))  # a value the enum does not name
    name = literal.rpartition("::")[2]
    if not any(member.name == name for member in enum.members):
        raise SourceError(f"unexpected literal {literal} for enum {enum.qualified}")
    return name


def _element_value(target, value):
    target = underlying(target)
    if isinstance(target, StructDecl):
        return record_values(target, value)
    if isinstance(target, EnumDecl):
        return _enum_value(target, value)
    return _scalar_value(target, value)


def _flatten(target, dims, value):
    """A multi-dimensional array as one flat list in row-major order; short rows are filled up with null (zero)."""
    if not dims:
        return [_element_value(target, value)]
    flat = []
    inner = 1
    for size in dims[1:]:
        inner *= size
    for item in value:
        part = _flatten(target, dims[1:], item)
        flat += part + [None] * (inner - len(part))
    return flat


def _member_value(member, value):
    target = member.element_type
    if member.variable:
        return [_element_value(target, item) for item in value]
    if not member.dims:
        return _element_value(target, value)
    if isinstance(value, str):
        return _c_string_text(value)  # CHAR[N] given as text
    if len(member.dims) == 1:
        return [_element_value(target, item) for item in value]
    flat = _flatten(target, member.dims, value)
    while flat and flat[-1] is None:
        flat.pop()
    return flat


def record_values(record, values):
    """The JSON object of a record's defaults (tuningdefaults' checked values), members in schema order."""
    return {member.name: _member_value(member, values[member.name])
            for member in record.members if member.name in values}


class _TypeCollector:
    """The namespace-level declarations that the modules use, each once, in the order first reached, and the member
    lists of those that are records."""

    def __init__(self):
        self.declarations = []
        self.records = {}

    def type_text(self, member):
        """The member's type as the source spells it; declares what it refers to."""
        suffix = "[]" if member.variable else "".join(f"[{size}]" for size in member.dims)
        if member.nested is not None:
            return suffix
        target = member.type_ref.target
        if isinstance(target, str):
            return target + suffix
        if isinstance(target, TypedefDecl) and not isinstance(underlying(target), str):
            target = underlying(target)  # the source's typedefs name scalar words only
        self.use(target)
        return target.qualified + suffix

    def use(self, decl):
        if any(other is decl for other in self.declarations):
            return
        self.declarations.append(decl)
        if isinstance(decl, StructDecl):
            self.records[decl.qualified] = self.members(decl)

    def members(self, record):
        out = []
        for member in record.members:
            item = {"name": member.name}
            text = self.type_text(member)
            if member.nested is not None:
                if text:
                    item["type"] = text
                item["members"] = self.members(member.nested)
            else:
                item["type"] = text
            if member.doc:
                item["doc"] = _doc(member.doc)
            out.append(item)
        return out

    def types(self):
        out = []
        for decl in self.declarations:
            item = {"name": decl.qualified}
            if decl.doc:
                item["doc"] = _doc(decl.doc)
            if isinstance(decl, EnumDecl):
                item["enum"] = {member.name: member.value for member in decl.members}
            elif isinstance(decl, TypedefDecl):
                item["typedef"] = underlying(decl)
            else:
                item["members"] = self.records[decl.qualified]
            out.append(item)
        return out


def build_source(schema, modules, registry):
    """The source document (a dict) of the registered modules that the schema describes, in registry order."""
    del schema  # the modules carry their declarations
    defaults = {item.module.qualified: item for item in modules}
    collector = _TypeCollector()
    module_items = []
    for registered in registry:
        if not registered.present or registered.decl.qualified not in defaults:
            continue
        decl = registered.decl
        item = {"name": registered.name, "type": decl.qualified, "version": ".".join(map(str, decl.module_version))}
        if decl.doc:
            item["description"] = _doc(decl.doc)
        item["members"] = collector.members(decl)
        item["values"] = {"Default": record_values(decl, defaults[decl.qualified].values)}
        module_items.append(item)
    return {
        "header": {"createdBy": CREATED_BY, "binaryTag": BINARY_TAG, "flags": 0},
        "types": collector.types(),
        "modeTables": [{"name": MODE_TABLE}],
        "modules": module_items,
    }


def _format(value, indent, width):
    """JSON text with short arrays and objects on one line and long number lists wrapped."""
    flat = json.dumps(value, ensure_ascii=False)
    if len(flat) + indent <= width or not isinstance(value, (list, dict)) or not value:
        return flat
    pad = " " * (indent + 2)
    if isinstance(value, dict):
        items = [f"{pad}{json.dumps(key)}: {_format(item, indent + 2, width).lstrip()}"
                 for key, item in value.items()]
        return "{\n" + ",\n".join(items) + "\n" + " " * indent + "}"
    if all(not isinstance(item, (list, dict)) for item in value):
        rows, row = [], []
        for text in (json.dumps(item, ensure_ascii=False) for item in value):
            if row and len(pad) + len(", ".join(row + [text])) + 1 > width:
                rows.append(row)
                row = []
            row.append(text)
        rows.append(row)
        return "[\n" + ",\n".join(pad + ", ".join(row) for row in rows) + "\n" + " " * indent + "]"
    items = [pad + _format(item, indent + 2, width) for item in value]
    return "[\n" + ",\n".join(items) + "\n" + " " * indent + "]"


def render_source(schema, modules, registry):
    document = build_source(schema, modules, registry)
    text = ("// Default tuning of libaecore as an aec-tune source, generated from the tuning defaults by "
            "aectuninggen.py: do not edit.\n" + _format(document, 0, LINE_WIDTH) + "\n")
    return {OUTPUT_NAMES[0]: text}
