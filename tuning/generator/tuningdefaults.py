# Checks the TOML default values against the schema and emits aecdefaulttuning.h/.cpp: default storages and fillers.
"""Default-value reader and emitter of the tuning record generator.

Values are checked once and turned into C++ expressions: a record becomes a dict of member name to value, a fixed
array a list, a variable array a VariableArray, a STRING a StringValue, and every other scalar the C++ text of its
literal.
"""

import difflib
import math
import os
import tomllib

from tuningschema import (EnumDecl, StructDecl, INTEGER_RANGES, SYMBOL_TABLE_ID, cpp_type, underlying)

DEFAULT_HEADER = "aecdefaulttuning.h"
DEFAULT_SOURCE = "aecdefaulttuning.cpp"

FLOAT_MAX = 3.4028234663852886e38


class VariableArray(list):
    """Elements of a variable array; every default storage holds its own copy, which its record points to."""


class StringValue(str):
    """The C++ literal of a STRING; like an array, its text is copied into every default storage."""

    def __new__(cls, literal, size):
        value = super().__new__(cls, literal)
        value.size = size  # bytes with the terminating zero
        return value


class ModuleDefaults:
    """The checked default values of one module (an empty dict when no file gives any)."""

    def __init__(self, module, values, source):
        self.module = module
        self.values = values
        self.source = source


class DefaultsError(Exception):
    """A value that does not fit its member; `path` is the key path inside the file."""

    def __init__(self, path, message):
        super().__init__(message)
        self.path = path


def _describe(value):
    if isinstance(value, bool):
        return f"boolean {str(value).lower()}"
    if isinstance(value, int):
        return f"integer {value}"
    if isinstance(value, float):
        return f"float {value!r}"
    if isinstance(value, str):
        return f'string "{value}"'
    if isinstance(value, list):
        return f"array of {len(value)}"
    if isinstance(value, dict):
        return "table"
    return f"{type(value).__name__} {value}"


def _type_word(target):
    if isinstance(target, str):
        return target
    return target.qualified


def _c_string(text):
    """A C++ string literal; bytes outside printable ASCII become three-digit octal escapes."""
    out = []
    for byte in text.encode("utf-8"):
        char = chr(byte)
        if char in '"\\':
            out.append("\\" + char)
        elif 32 <= byte < 127 and char != "?":
            out.append(char)
        else:
            out.append(f"\\{byte:03o}")  # '?' too, so no trigraph can form
    return '"' + "".join(out) + '"'


def _float_literal(value, word, path):
    suffix = "f" if word == "FLOAT" else ""
    limits = f"std::numeric_limits<{word}>"
    if math.isnan(value):
        return f"{limits}::quiet_NaN()"
    if math.isinf(value):
        return ("-" if value < 0 else "") + f"{limits}::infinity()"
    if word == "FLOAT" and abs(value) > FLOAT_MAX:
        raise DefaultsError(path, f"{value!r} is out of range for FLOAT")
    text = repr(float(value))
    if "." not in text and "e" not in text:
        text += ".0"
    return text + suffix


def _integer_literal(value, word):
    if word in ("INT64",) and value == INTEGER_RANGES["INT64"][0]:
        return "(-9223372036854775807LL - 1)"
    if value > INTEGER_RANGES["INT64"][1]:
        return f"{value}u"
    return str(value)


def _scalar(word, value, path):
    """The C++ literal of a scalar member from its TOML value."""
    if word in ("FLOAT", "DOUBLE"):
        if isinstance(value, bool) or not isinstance(value, (int, float)):
            raise DefaultsError(path, f"expected a number for {word}, found {_describe(value)}")
        return _float_literal(float(value), word, path)
    if word == "STRING":
        if not isinstance(value, str):
            raise DefaultsError(path, f"expected a string for STRING, found {_describe(value)}")
        return StringValue(_c_string(value), len(value.encode("utf-8")) + 1)
    if word == "BOOL":
        if isinstance(value, bool):
            return "1" if value else "0"
        if isinstance(value, int) and value in (0, 1):
            return str(value)
        raise DefaultsError(path, f"expected true, false, 0 or 1 for BOOL, found {_describe(value)}")
    if word == "CHAR" and isinstance(value, str):
        encoded = value.encode("utf-8")
        if len(encoded) != 1:
            raise DefaultsError(path, f"expected one character for CHAR, found {_describe(value)}")
        value = encoded[0] if encoded[0] < 128 else encoded[0] - 256
    if isinstance(value, bool) or not isinstance(value, int):
        raise DefaultsError(path, f"expected an integer for {word}, found {_describe(value)}")
    low, high = INTEGER_RANGES[word]
    if not low <= value <= high:
        raise DefaultsError(path, f"{value} is out of range for {word} ({low} to {high})")
    return _integer_literal(value, word)


def _enum(enum, value, path):
    if isinstance(value, str):
        member = next((item for item in enum.members if item.name == value), None)
        if member is None:
            names = [item.name for item in enum.members]
            hint = difflib.get_close_matches(value, names, n=1)
            suggestion = f"; did you mean '{hint[0]}'?" if hint else f" (members: {', '.join(names)})"
            raise DefaultsError(path, f"'{value}' is not a member of enum {enum.qualified}{suggestion}")
        return f"{enum.namespace}::{member.name}"
    if isinstance(value, bool) or not isinstance(value, int):
        raise DefaultsError(path, f"expected a member name or an integer for enum {enum.qualified}, "
                                  f"found {_describe(value)}")
    low, high = INTEGER_RANGES["INT32"]
    if not low <= value <= high:
        raise DefaultsError(path, f"{value} is out of range for enum {enum.qualified} (INT32)")
    # A tuning file may carry values the enum does not name; they stay numbers.
    member = enum.member_by_value(value)
    if member is not None:
        return f"{enum.namespace}::{member.name}"
    return f"static_cast<{enum.qualified}>({value})"


def _element(target, value, path):
    """Checks one element of a member's type (after its array dimensions)."""
    target = underlying(target)
    if isinstance(target, StructDecl):
        return _record(target, value, path)
    if isinstance(target, EnumDecl):
        return _enum(target, value, path)
    return _scalar(target, value, path)


def _fixed(target, dims, value, path):
    if not dims:
        return _element(target, value, path)
    size = dims[0]
    if underlying(target) == "CHAR" and len(dims) == 1 and isinstance(value, str):
        if len(value.encode("utf-8")) + 1 > size:
            raise DefaultsError(path, f"string of {len(value.encode('utf-8'))} bytes does not fit CHAR[{size}] "
                                      f"with its terminating zero")
        return _c_string(value)
    if not isinstance(value, list):
        raise DefaultsError(path, f"expected an array of up to {size} for {_type_word(target)}[{size}], "
                                  f"found {_describe(value)}")
    if len(value) > size:
        raise DefaultsError(path, f"{len(value)} values given for an array of {size}")
    return [_fixed(target, dims[1:], item, f"{path}[{index}]") for index, item in enumerate(value)]


def _record(record, value, path):
    if not isinstance(value, dict):
        raise DefaultsError(path, f"expected a table for record {record.qualified}, found {_describe(value)}")
    members = {member.name: member for member in record.members}
    generated = {}
    if record.symbol:
        generated[SYMBOL_TABLE_ID] = "SymbolTableID is set by the parameter store"
    for member in record.members:
        if member.variable:
            generated[member.name + "Count"] = f"{member.name}Count follows from the length of '{member.name}'"
            generated[member.name + "ID"] = f"{member.name}ID follows from the length of '{member.name}'"
    checked = {}
    for key, item in value.items():
        key_path = f"{path}.{key}"
        member = members.get(key)
        if member is None:
            if key in generated:
                raise DefaultsError(key_path, f"not a default value: {generated[key]}")
            hint = difflib.get_close_matches(key, list(members), n=1)
            suggestion = f"; did you mean '{hint[0]}'?" if hint else ""
            raise DefaultsError(key_path, f"unknown key: {record.qualified} has no member '{key}'{suggestion}")
        if member.variable:
            if not isinstance(item, list):
                raise DefaultsError(key_path, f"expected an array for variable array '{key}', "
                                              f"found {_describe(item)}")
            checked[key] = VariableArray(_element(member.element_type, element, f"{key_path}[{index}]")
                                         for index, element in enumerate(item))
        else:
            checked[key] = _fixed(member.element_type, member.dims, item, key_path)
    return checked


def _module_index(schema):
    by_name = {}
    for module in schema.modules():
        by_name.setdefault(module.name, []).append(module)
    return by_name


def default_files(directory):
    if not os.path.isdir(directory):
        return []
    return [os.path.join(directory, name) for name in sorted(os.listdir(directory)) if name.endswith(".toml")]


def load_defaults(schema, directory):
    """Reads every *.toml of a directory; returns ([ModuleDefaults] for every module, errors)."""
    errors = []
    given = {}  # module qualified name -> ModuleDefaults
    by_name = _module_index(schema)
    for path in default_files(directory):
        try:
            with open(path, "rb") as handle:
                document = tomllib.load(handle)
        except tomllib.TOMLDecodeError as error:
            errors.append(f"{path}: invalid TOML: {error}")
            continue
        # A file named after a namespace holds that namespace's modules; otherwise the module name must be unique.
        stem = os.path.splitext(os.path.basename(path))[0]
        for key, value in document.items():
            candidates = by_name.get(key, [])
            if stem in schema.namespaces:
                candidates = [module for module in candidates if module.namespace == stem]
            if not candidates:
                known = sorted(by_name)
                hint = difflib.get_close_matches(key, known, n=1)
                suggestion = f"; did you mean '{hint[0]}'?" if hint else ""
                where = f"namespace {stem}" if stem in schema.namespaces else "the schema"
                errors.append(f"{path}: {key}: unknown key: no module '{key}' in {where}{suggestion}")
                continue
            if len(candidates) > 1:
                errors.append(f"{path}: {key}: module name is declared in several namespaces "
                              f"({', '.join(module.namespace for module in candidates)}); "
                              f"name the file after the namespace")
                continue
            module = candidates[0]
            if module.qualified in given:
                errors.append(f"{path}: {key}: defaults of {module.qualified} are already given in "
                              f"{given[module.qualified].source}")
                continue
            try:
                given[module.qualified] = ModuleDefaults(module, _record(module, value, key), path)
            except DefaultsError as error:
                errors.append(f"{path}: {error.path}: {error}")
    modules = [given.get(module.qualified, ModuleDefaults(module, {}, None)) for module in schema.modules()]
    return modules, errors


def _identifier(path):
    return "".join(char if char.isalnum() else "_" for char in path).strip("_")


# Name of the module record inside its default storage.
STORAGE_RECORD = "module"


class _StorageWriter:
    """Lays out the default storage of one module: the record first, then a copy of every array and string that its
    pointers lead to, in the order the record reaches them.

    The initialiser of the storage leaves every pointer null; `links` are the pointers that a filler sets to the
    storage's own arrays, as (pointer relative to the storage, storage member).
    """

    def __init__(self):
        self.members = []  # [cpp type, member name, dimension text, initialiser] in storage order
        self.links = []
        self.taken = {STORAGE_RECORD}

    def _reserve(self, path, cpp, dims):
        """A new storage member named after its path (numbered if that name is taken); returns its slot."""
        name = _identifier(path)
        number = 2
        while name in self.taken:
            name = f"{_identifier(path)}_{number}"
            number += 1
        self.taken.add(name)
        slot = [cpp, name, dims, "{}"]
        self.members.append(slot)
        return slot

    def record(self, record, values, pointer, path, indent):
        if not values:
            return "{}"
        inner = indent + "    "
        fields = []
        if record.symbol:
            fields.append(f"/* {SYMBOL_TABLE_ID} */ {{}}")
        for member in record.members:
            value = values.get(member.name)
            place = f"{pointer}.{member.name}"
            member_path = f"{path}_{member.name}" if path else member.name
            if member.variable:
                count = len(value) if value is not None else 0
                if count:
                    self.array(member, value, place, member_path)
                count_text = str(count) if count else "{}"
                fields.append(f"/* {member.name}Count */ {count_text}")
                fields.append(f"/* {member.name}ID */ {count_text}")
                fields.append(f"/* {member.name} */ {{}}")
            else:
                text = self.value(member.element_type, member.dims, value, place, member_path, inner)
                fields.append(f"/* {member.name} */ {text}")
        one_line = "{ " + ", ".join(fields) + " }"
        if "\n" not in one_line and len(one_line) <= 80:
            return one_line
        return "\n".join(["{"] + [f"{inner}{field}," for field in fields] + [f"{indent}}}"])

    def value(self, target, dims, value, pointer, path, indent):
        if value is None:
            return "{}"
        if isinstance(value, StringValue):
            slot = self._reserve(path, "CHAR", f"[{value.size}]")
            slot[3] = str(value)
            self.links.append((pointer, slot[1]))
            return "{}"
        if isinstance(value, str):
            return value
        if dims or isinstance(value, list):
            items = [self.value(target, dims[1:], item, f"{pointer}[{index}]", f"{path}_{index}", indent + "    ")
                     for index, item in enumerate(value)]
            return _braced(items, indent)
        return self.record(underlying(target), value, pointer, path, indent)

    def array(self, member, elements, pointer, path):
        # Reserved before its elements, so that an array stands before the arrays its elements point to.
        slot = self._reserve(path, cpp_type(member.element_type), f"[{len(elements)}]")
        self.links.append((pointer, slot[1]))
        items = [self.value(member.element_type, [], element, f"{slot[1]}[{index}]", f"{path}_{index}", "        ")
                 for index, element in enumerate(elements)]
        slot[3] = _braced(items, "    ")


def _braced(items, indent):
    """An array initialiser: short scalars eight to a line, records one per line."""
    if not items:
        return "{}"
    if all("\n" not in item for item in items) and sum(len(item) + 2 for item in items) <= 80:
        return "{ " + ", ".join(items) + " }"
    inner = indent + "    "
    lines = ["{"]
    if all("\n" not in item and len(item) <= 24 for item in items):
        for start in range(0, len(items), 8):
            lines.append(inner + ", ".join(items[start:start + 8]) + ",")
    else:
        lines += [f"{inner}{item}," for item in items]
    lines.append(f"{indent}}}")
    return "\n".join(lines)


class _ModuleStorage:
    """The default storage of one module: its layout, the initialiser of its record and the pointers to set."""

    def __init__(self, item):
        self.item = item
        self.module = item.module
        writer = _StorageWriter()
        self.record = writer.record(self.module, item.values, STORAGE_RECORD, "", "    ")
        self.members = writer.members
        self.links = writer.links
        self.type = f"{self.module.name}DefaultStorage"
        self.constant = f"kDefault_{self.module.namespace}_{self.module.name}"

    @property
    def fill(self):
        return f"FillDefault{self.module.name}"

    @property
    def fill_storage(self):
        return f"FillDefault{self.module.name}Storage"


def render_default_header(storages):
    lines = [
        "// Default tuning of every module, generated from the tuning defaults by aectuninggen.py: do not edit.",
        "#ifndef AECTUNING_AECDEFAULTTUNING_H",
        "#define AECTUNING_AECDEFAULTTUNING_H",
        "",
        "#include <array>",
        "#include <cstddef>",
        "#include <type_traits>",
        "",
        '#include "aectuningrecords.h"',
        "",
        "// The library writes into its tuning records (it raises f-numbers, interpolates weights), so a default record",
        "// comes in a storage of its own: the record first, so that the storage's address is the record's, then a",
        "// copy of every array and string that the record points to. A storage is filled bytewise from the built-in",
        "// defaults and its pointers lead into itself only; every owner of a storage writes into nobody else's.",
        "",
        "// One tuning module: its name, source version, record size, and the size, alignment and filler of its",
        "// default storage.",
        "struct AECDefaultTuningModule",
        "{",
        "    const CHAR* pNamespace;",
        "    const CHAR* pName;",
        "    UINT16      versionMajor;",
        "    UINT16      versionMinor;",
        "    UINT32      versionPatch;",
        "    SIZE_T      size;",
        "    SIZE_T      storageSize;",
        "    SIZE_T      storageAlignment;",
        "    void        (*pfnFillDefaultStorage)(void* pStorage);",
        "};",
        "",
        "// Every module of the schema, in namespace order.",
        f"extern const std::array<AECDefaultTuningModule, {len(storages)}> g_aecDefaultTuningModules;",
    ]
    for storage in storages:
        module = storage.module
        fields = [(module.qualified, STORAGE_RECORD, "")] + [(cpp, name, dims) for cpp, name, dims, _ in
                                                             storage.members]
        width = max(len(cpp) for cpp, _, _ in fields)
        lines += ["",
                  f"// Default storage of {module.qualified}.",
                  f"struct {storage.type}",
                  "{"]
        lines += [f"    {cpp.ljust(width)} {name}{dims};" for cpp, name, dims in fields]
        lines += ["};",
                  f"static_assert(std::is_standard_layout_v<{storage.type}>, \"a storage is a plain record\");",
                  f"static_assert(offsetof({storage.type}, {STORAGE_RECORD}) == 0, "
                  f"\"the record starts its storage\");",
                  "",
                  f"// Fills *pStorage with the defaults of {module.qualified}; a null pStorage is ignored.",
                  f"void {storage.fill_storage}({storage.type}* pStorage);",
                  "",
                  f"// Sets *pModule to the defaults of {module.qualified}. Its arrays and strings are shared by "
                  f"every",
                  "// record filled here, so a write through one reaches all of them: only for code that owns them "
                  "all",
                  "// (tests, tools). A null pModule is ignored.",
                  f"void {storage.fill}({module.qualified}* pModule);"]
    lines += ["", "#endif // AECTUNING_AECDEFAULTTUNING_H", ""]
    return "\n".join(lines)


def render_default_source(storages):
    lines = [
        "// Default tuning of every module, generated from the tuning defaults by aectuninggen.py: do not edit.",
        '#include "aecdefaulttuning.h"',
        "",
        "#include <cstring>",
        "#include <limits>",
        "",
    ]
    if not storages:
        lines += [f"const std::array<AECDefaultTuningModule, 0> g_aecDefaultTuningModules = {{}};", ""]
        return "\n".join(lines)
    lines += ["namespace", "{"]
    if any(storage.item.values for storage in storages):
        lines += ["// The built-in defaults, copied into every storage and never written themselves; their pointers "
                  "stay null",
                  "// until the copy points them into its own arrays."]
    for storage in storages:
        item = storage.item
        if not item.values:
            continue
        lines.append(f"// {storage.module.qualified}, from {os.path.basename(item.source)}")
        lines.append(f"const {storage.type} {storage.constant} = {{")
        lines.append(f"    /* {STORAGE_RECORD} */ {storage.record},")
        lines += [f"    /* {name} */ {initialiser}," for _, name, _, initialiser in storage.members]
        lines += ["};", ""]
    lines += [
        "// The storage of FillDefault<Module>(): one per module, filled on first use (thread-safely) and shared by",
        "// every record filled from it.",
        "template <typename StorageType, void (*pfnFillStorage)(StorageType*)>",
        "const StorageType& SharedStorage()",
        "{",
        "    static StorageType s_storage;",
        "    static const bool  s_bFilled = (pfnFillStorage(&s_storage), true);",
        "    static_cast<void>(s_bFilled);",
        "    return s_storage;",
        "}",
        "} // namespace",
    ]
    for storage in storages:
        module = storage.module
        lines += ["", f"void {storage.fill_storage}({storage.type}* pStorage)", "{",
                  "    if (pStorage == nullptr)", "    {", "        return;", "    }"]
        if storage.item.values:
            lines += ["    // Bytewise, so that the padding is zero too and records compare bytewise.",
                      f"    std::memcpy(pStorage, &{storage.constant}, sizeof(*pStorage));"]
            lines += [f"    pStorage->{pointer} = pStorage->{target};" for pointer, target in storage.links]
        else:
            lines.append("    std::memset(pStorage, 0, sizeof(*pStorage));")
        lines += ["}",
                  "",
                  f"void {storage.fill}({module.qualified}* pModule)", "{",
                  "    if (pModule == nullptr)", "    {", "        return;", "    }",
                  f"    const {storage.type}& rShared = SharedStorage<{storage.type}, &{storage.fill_storage}>();",
                  f"    std::memcpy(pModule, &rShared.{STORAGE_RECORD}, sizeof(*pModule));",
                  "}"]
    lines += ["", f"const std::array<AECDefaultTuningModule, {len(storages)}> g_aecDefaultTuningModules = {{{{"]
    for storage in storages:
        module = storage.module
        major, minor, patch = module.module_version
        lines += [f'    {{ "{module.namespace}", "{module.name}", {major}, {minor}, {patch}, '
                  f"sizeof({module.qualified}), sizeof({storage.type}), alignof({storage.type}),",
                  f"      [](void* pStorage) {{ {storage.fill_storage}(static_cast<{storage.type}*>(pStorage)); }} }},"]
    lines += ["}};", ""]
    return "\n".join(lines)


def render_defaults(modules):
    storages = [_ModuleStorage(item) for item in modules]
    return {DEFAULT_HEADER: render_default_header(storages), DEFAULT_SOURCE: render_default_source(storages)}
