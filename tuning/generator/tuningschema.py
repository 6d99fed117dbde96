# Parses the tuning schema language into typed declarations and resolves, checks and orders them.
"""Schema model, parser and resolver of the tuning record generator.

Every problem is collected as a "file:line: message" text so that one run reports all of them.
"""

import os
import re

# Scalar type words of the schema and their C++ spelling.
SCALAR_CPP = {
    "INT8": "INT8", "UINT8": "UINT8", "INT16": "INT16", "UINT16": "UINT16",
    "INT32": "INT32", "UINT32": "UINT32", "INT64": "INT64", "UINT64": "UINT64",
    "INT": "INT", "UINT": "UINT", "FLOAT": "FLOAT", "DOUBLE": "DOUBLE",
    "BOOL": "BOOL", "CHAR": "CHAR", "STRING": "CHAR*",
}

# Inclusive value ranges of the integer scalars (INT/UINT are 32 bits on every target we build for).
INTEGER_RANGES = {
    "INT8": (-2**7, 2**7 - 1), "UINT8": (0, 2**8 - 1),
    "INT16": (-2**15, 2**15 - 1), "UINT16": (0, 2**16 - 1),
    "INT32": (-2**31, 2**31 - 1), "UINT32": (0, 2**32 - 1),
    "INT64": (-2**63, 2**63 - 1), "UINT64": (0, 2**64 - 1),
    "INT": (-2**31, 2**31 - 1), "UINT": (0, 2**32 - 1),
    "CHAR": (-2**7, 2**7 - 1), "BOOL": (-2**31, 2**31 - 1),
}

# Namespaces searched, in this order, after the current one for an unqualified type name.
GLOBAL_NAMESPACES = ("aecglobalelements", "statsglobalelements")

# Record member flags: @ours marks a member that we chose ourselves, @symbol a version record.
MEMBER_FLAGS = {"@ours"}
STRUCT_FLAGS = {"@symbol", "@ours"}

CPP_KEYWORDS = frozenset("""
    alignas alignof and and_eq asm auto bitand bitor bool break case catch char char16_t char32_t class compl
    const constexpr const_cast continue decltype default delete do double dynamic_cast else enum explicit export
    extern false float for friend goto if inline int long mutable namespace new noexcept not not_eq nullptr
    operator or or_eq private protected public register reinterpret_cast return short signed sizeof static
    static_assert static_cast struct switch template this thread_local throw true try typedef typeid typename
    union unsigned using virtual void volatile wchar_t while xor xor_eq
""".split())

SYMBOL_TABLE_ID = "SymbolTableID"


class Location:
    """A place in a schema file, printed as file:line."""

    def __init__(self, path, line):
        self.path = path
        self.line = line

    def __str__(self):
        return f"{self.path}:{self.line}"


class TypeRef:
    """A type as written in the schema, resolved to a scalar word or a declaration."""

    def __init__(self, text, location):
        self.text = text
        self.location = location
        self.target = None  # scalar word (str) or Declaration after resolution


class Declaration:
    """Common part of everything declared at namespace level."""

    kind = ""

    def __init__(self, namespace, name, location, doc):
        self.namespace = namespace
        self.name = name
        self.location = location
        self.doc = doc

    @property
    def qualified(self):
        return f"{self.namespace}::{self.name}"


class EnumMember:
    def __init__(self, name, value, location, doc):
        self.name = name
        self.value = value
        self.location = location
        self.doc = doc


class EnumDecl(Declaration):
    kind = "enum"

    def __init__(self, namespace, name, location, doc):
        super().__init__(namespace, name, location, doc)
        self.members = []

    def member_by_value(self, value):
        return next((member for member in self.members if member.value == value), None)


class TypedefDecl(Declaration):
    kind = "typedef"

    def __init__(self, namespace, name, location, doc, type_ref):
        super().__init__(namespace, name, location, doc)
        self.type_ref = type_ref


class Member:
    """A record member: `dims` holds fixed sizes; `variable` marks a Count/ID/pointer array."""

    def __init__(self, name, location, doc, type_ref=None, nested=None, dims=(), variable=False, ours=False):
        self.name = name
        self.location = location
        self.doc = doc
        self.type_ref = type_ref
        self.nested = nested
        self.dims = list(dims)
        self.variable = variable
        self.ours = ours

    @property
    def element_type(self):
        """The resolved element type: scalar word, declaration or nested StructDecl."""
        return self.nested if self.nested is not None else self.type_ref.target


class StructDecl(Declaration):
    """A record: namespace-level struct, module top record, or nested `<name>Struct`."""

    kind = "struct"

    def __init__(self, namespace, name, location, doc, symbol=False, module_version=None, outer=None):
        super().__init__(namespace, name, location, doc)
        self.members = []
        self.symbol = symbol or module_version is not None
        self.module_version = module_version  # (major, minor, patch) for a module's top record
        self.outer = outer  # enclosing StructDecl of a nested record

    @property
    def is_module(self):
        return self.module_version is not None

    @property
    def qualified(self):
        if self.outer is not None:
            return f"{self.outer.qualified}::{self.name}"
        return super().qualified

    def field_names(self):
        """Names of the C++ fields in layout order, with the generated ones."""
        names = [SYMBOL_TABLE_ID] if self.symbol else []
        for member in self.members:
            if member.variable:
                names += [member.name + "Count", member.name + "ID"]
            names.append(member.name)
        return names


class Schema:
    """All declarations of a schema directory, by namespace, in file order."""

    def __init__(self):
        self.namespaces = {}  # name -> {declaration name -> Declaration}, in declaration order
        self.errors = []

    def declarations(self, namespace):
        return list(self.namespaces.get(namespace, {}).values())

    def modules(self):
        return [decl for namespace in sorted(self.namespaces) for decl in self.declarations(namespace)
                if isinstance(decl, StructDecl) and decl.is_module]

    def lookup(self, text, current_namespace):
        """Finds a declaration by schema type text; returns (declaration, namespaces searched)."""
        if "::" in text:
            namespace, _, name = text.rpartition("::")
            return self.namespaces.get(namespace, {}).get(name), [namespace]
        searched = [current_namespace] + [ns for ns in GLOBAL_NAMESPACES if ns != current_namespace]
        for namespace in searched:
            decl = self.namespaces.get(namespace, {}).get(text)
            if decl is not None:
                return decl, searched
        return None, searched


_TOKEN = re.compile(r"""\s*(?:
    (?P<version>\d+(?:\.\d+)+)
  | (?P<number>-?(?:0[xX][0-9a-fA-F]+|\d+))(?![\w.])
  | (?P<name>[A-Za-z_]\w*(?:::[A-Za-z_]\w*)*)
  | (?P<flag>@[A-Za-z_]\w*)
  | (?P<punct>[\[\]{}=])
)""", re.VERBOSE)

_IDENTIFIER = re.compile(r"[A-Za-z_]\w*\Z")


class SchemaError(Exception):
    """One problem of one schema line."""


def _tokenize(text):
    tokens = []
    position = 0
    text = text.rstrip()
    while position < len(text):
        match = _TOKEN.match(text, position)
        if match is None or match.end() == position:
            rest = text[position:].strip()
            raise SchemaError(f"unexpected text '{rest}'")
        kind = match.lastgroup
        tokens.append((kind, match.group(kind)))
        position = match.end()
    return tokens


def _parse_int(text):
    """Decimal or 0x hexadecimal, with an optional minus sign."""
    digits = text.lstrip("-")
    value = int(digits, 16) if digits[:2].lower() == "0x" else int(digits, 10)
    return -value if text.startswith("-") else value


class _Block:
    """An open `{ ... }` while parsing: its record or enum, or None while skipping a block whose header was wrong."""

    def __init__(self, decl):
        self.decl = decl


class SchemaParser:
    """Line-based parser of one or more schema files into a Schema."""

    def __init__(self, schema):
        self.schema = schema
        self.declared_at = {}  # (namespace, name) -> Location, also for enum members

    def parse_file(self, path, display_path=None):
        display = display_path or path
        with open(path, encoding="utf-8") as handle:
            lines = handle.read().splitlines()
        self._parse_lines(lines, display)

    def parse_text(self, text, display_path):
        self._parse_lines(text.splitlines(), display_path)

    def _error(self, location, message):
        self.schema.errors.append(f"{location}: {message}")

    def _parse_lines(self, lines, display):
        namespace = None
        stack = []
        doc = []
        for number, raw in enumerate(lines, start=1):
            location = Location(display, number)
            code, hash_sign, comment = raw.partition("#")
            if not code.strip():
                if hash_sign:
                    doc.append(comment[1:].rstrip() if comment.startswith(" ") else comment.rstrip())
                else:
                    doc = []  # a blank line detaches the comment block above it
                continue
            line_doc = doc + ([comment.strip()] if comment.strip() else [])
            doc = []
            try:
                tokens = _tokenize(code)
                namespace = self._parse_statement(tokens, location, line_doc, namespace, stack)
            except SchemaError as error:
                self._error(location, str(error))
                if code.rstrip().endswith("{"):
                    stack.append(_Block(None))  # skip the body of a block whose header is wrong
        for block in stack:
            if block.decl is None:
                continue
            what = "enum" if isinstance(block.decl, EnumDecl) else "record"
            self._error(block.decl.location, f"{what} '{block.decl.name}' is not closed before the end of the file")

    def _parse_statement(self, tokens, location, doc, namespace, stack):
        words = [value for _, value in tokens]
        kinds = [kind for kind, _ in tokens]
        if words == ["}"]:
            if not stack:
                raise SchemaError("'}' without an open enum or record")
            stack.pop()
            return namespace
        if stack and stack[-1].decl is None:
            if words[-1] == "{":
                stack.append(_Block(None))
            return namespace
        if stack and isinstance(stack[-1].decl, EnumDecl):
            self._parse_enum_member(stack[-1].decl, tokens, location, doc)
            return namespace
        if stack:
            self._parse_member(stack, tokens, location, doc)
            return namespace
        keyword = words[0]
        if keyword == "namespace":
            if len(tokens) != 2 or kinds[1] != "name" or not _IDENTIFIER.match(words[1]):
                raise SchemaError("expected 'namespace <name>'")
            self._check_identifier(words[1])
            self.schema.namespaces.setdefault(words[1], {})
            return words[1]
        if namespace is None:
            raise SchemaError(f"'{keyword}' before the first 'namespace' line")
        if keyword == "enum":
            if len(tokens) != 3 or kinds[1] != "name" or words[2] != "{":
                raise SchemaError("expected 'enum <name> {'")
            decl = EnumDecl(namespace, words[1], location, doc)
            self._declare(decl)
            stack.append(_Block(decl))
        elif keyword == "typedef":
            if len(tokens) != 3 or kinds[1] != "name" or kinds[2] != "name":
                raise SchemaError("expected 'typedef <type> <name>'")
            self._declare(TypedefDecl(namespace, words[2], location, doc, TypeRef(words[1], location)))
        elif keyword == "struct":
            name, dims, variable, flags = self._parse_declarator(tokens[1:], location, STRUCT_FLAGS, opens=True)
            if dims or variable:
                raise SchemaError(f"a namespace-level struct '{name}' cannot be an array")
            decl = StructDecl(namespace, name, location, doc, symbol="@symbol" in flags)
            self._declare(decl)
            stack.append(_Block(decl))
        elif keyword == "module":
            if len(tokens) != 4 or kinds[1] != "name" or kinds[2] != "version" or words[3] != "{":
                raise SchemaError("expected 'module <name> <major>.<minor>.<patch> {'")
            version = tuple(int(part) for part in words[2].split("."))
            if len(version) != 3:
                raise SchemaError(f"module version '{words[2]}' must be <major>.<minor>.<patch>")
            if version[0] > 0xFFFF or version[1] > 0xFFFF or version[2] > 0xFFFFFFFF:
                raise SchemaError(f"version {words[2]} out of range (major and minor 16 bits, patch 32 bits)")
            decl = StructDecl(namespace, words[1], location, doc, module_version=version)
            self._declare(decl)
            stack.append(_Block(decl))
        else:
            raise SchemaError(f"expected 'namespace', 'enum', 'typedef', 'struct' or 'module', found '{keyword}'")
        return namespace

    def _check_identifier(self, name):
        if "::" in name or not _IDENTIFIER.match(name):
            raise SchemaError(f"'{name}' is not a plain identifier")
        if name in CPP_KEYWORDS or name in SCALAR_CPP:
            raise SchemaError(f"'{name}' is reserved and cannot name a declaration or member")

    def _declare(self, decl):
        self._check_identifier(decl.name)
        declarations = self.schema.namespaces[decl.namespace]
        key = (decl.namespace, decl.name)
        if key in self.declared_at:
            raise SchemaError(f"'{decl.name}' is already declared in namespace {decl.namespace} "
                              f"at {self.declared_at[key]}")
        self.declared_at[key] = decl.location
        declarations[decl.name] = decl

    def _parse_enum_member(self, enum, tokens, location, doc):
        words = [value for _, value in tokens]
        kinds = [kind for kind, _ in tokens]
        if len(tokens) == 1 and kinds[0] == "name":
            value = enum.members[-1].value + 1 if enum.members else 0
        elif len(tokens) == 3 and kinds[0] == "name" and words[1] == "=" and kinds[2] == "number":
            value = _parse_int(words[2])
        else:
            raise SchemaError(f"expected '<name> = <integer>' in enum '{enum.name}'")
        name = words[0]
        self._check_identifier(name)
        low, high = INTEGER_RANGES["INT32"]
        if not low <= value <= high:
            raise SchemaError(f"value {value} of '{name}' does not fit the enum's INT32")
        # Enumerators share the scope of their namespace in C++, so they must not collide with its other names.
        key = (enum.namespace, name)
        if key in self.declared_at:
            raise SchemaError(f"'{name}' is already declared in namespace {enum.namespace} at {self.declared_at[key]}")
        self.declared_at[key] = location
        enum.members.append(EnumMember(name, value, location, doc))

    def _parse_declarator(self, tokens, location, allowed_flags, opens):
        """Parses '<name>[N]...[] @flag... {?' and returns (name, dims, variable, flags)."""
        kinds = [kind for kind, _ in tokens]
        words = [value for _, value in tokens]
        if opens:
            if not words or words[-1] != "{":
                raise SchemaError("expected '{' at the end of the line")
            kinds, words = kinds[:-1], words[:-1]
        if not words or kinds[0] != "name":
            raise SchemaError("expected a name")
        name = words[0]
        self._check_identifier(name)
        dims, variable, index = [], False, 1
        while index < len(words) and words[index] == "[":
            if variable:
                raise SchemaError(f"'{name}': a variable array '[]' must be the only dimension")
            if index + 1 < len(words) and words[index + 1] == "]":
                if dims:
                    raise SchemaError(f"'{name}': a variable array '[]' must be the only dimension")
                variable = True
                index += 2
                continue
            if index + 2 >= len(words) or kinds[index + 1] != "number" or words[index + 2] != "]":
                raise SchemaError(f"'{name}': array size must be an integer literal, as in '{name}[4]'")
            size = _parse_int(words[index + 1])
            if size <= 0:
                raise SchemaError(f"'{name}': array size must be positive, found {size}")
            dims.append(size)
            index += 3
        flags = []
        for kind, word in zip(kinds[index:], words[index:]):
            if kind != "flag":
                raise SchemaError(f"unexpected '{word}' after '{name}'")
            if word not in allowed_flags:
                raise SchemaError(f"unknown flag '{word}' (allowed here: {', '.join(sorted(allowed_flags))})")
            flags.append(word)
        return name, dims, variable, flags

    def _parse_member(self, stack, tokens, location, doc):
        record = stack[-1].decl
        if tokens[0][1] in ("namespace", "enum", "typedef", "module"):
            raise SchemaError(f"'{tokens[0][1]}' inside record '{record.name}': close the record with '}}' first")
        if tokens[0][1] == "struct":
            name, dims, variable, flags = self._parse_declarator(tokens[1:], location, STRUCT_FLAGS, opens=True)
            nested = StructDecl(record.namespace, name + "Struct", location, doc, symbol="@symbol" in flags,
                                outer=record)
            member = Member(name, location, doc, nested=nested, dims=dims, variable=variable, ours="@ours" in flags)
            self._add_member(record, member)
            stack.append(_Block(nested))
            return
        if tokens[0][0] != "name":
            raise SchemaError(f"expected '<type> <name>' or 'struct <name> {{' in record '{record.name}'")
        if len(tokens) < 2:
            raise SchemaError(f"member of type '{tokens[0][1]}' has no name")
        name, dims, variable, flags = self._parse_declarator(tokens[1:], location, MEMBER_FLAGS, opens=False)
        member = Member(name, location, doc, type_ref=TypeRef(tokens[0][1], location), dims=dims,
                        variable=variable, ours="@ours" in flags)
        self._add_member(record, member)

    def _add_member(self, record, member):
        if member.ours and not member.doc:
            raise SchemaError(f"'{member.name}' is marked @ours: the comment above it must say why it exists")
        taken = {}
        if record.symbol:
            taken[SYMBOL_TABLE_ID] = "the generated SymbolTableID"
        for other in record.members:
            taken[other.name] = f"member '{other.name}' at {other.location}"
            if other.variable:
                taken[other.name + "Count"] = f"the count of '{other.name}' at {other.location}"
                taken[other.name + "ID"] = f"the allocated count of '{other.name}' at {other.location}"
            if other.nested is not None:
                taken[other.nested.name] = f"the nested type of '{other.name}' at {other.location}"
        mine = [member.name]
        if member.variable:
            mine += [member.name + "Count", member.name + "ID"]
        if member.nested is not None:
            mine.append(member.nested.name)
        for name in mine:
            if name in taken:
                raise SchemaError(f"'{name}' in record '{record.name}' clashes with {taken[name]}")
        record.members.append(member)


def parse_directory(directory):
    """Parses every *.schema file of a directory (none if it does not exist), in sorted order."""
    schema = Schema()
    parser = SchemaParser(schema)
    for path in schema_files(directory):
        parser.parse_file(path)
    return schema


def schema_files(directory):
    if not os.path.isdir(directory):
        return []
    return [os.path.join(directory, name) for name in sorted(os.listdir(directory)) if name.endswith(".schema")]


def _records(decl):
    """A record and all records nested in it, outer first."""
    yield decl
    for member in decl.members:
        if member.nested is not None:
            yield from _records(member.nested)


def resolve(schema):
    """Binds every type reference; reports unknown names and by-value cycles. Returns the schema's errors."""
    for namespace in sorted(schema.namespaces):
        for decl in schema.declarations(namespace):
            if isinstance(decl, TypedefDecl):
                _bind(schema, decl.type_ref, namespace)
            elif isinstance(decl, StructDecl):
                for record in _records(decl):
                    for member in record.members:
                        if member.type_ref is not None:
                            _bind(schema, member.type_ref, namespace)
    if not schema.errors:
        _check_cycles(schema)
    return schema.errors


def _bind(schema, type_ref, namespace):
    if type_ref.text in SCALAR_CPP:
        type_ref.target = type_ref.text
        return
    decl, searched = schema.lookup(type_ref.text, namespace)
    if decl is None:
        if "::" in type_ref.text and type_ref.text.rpartition("::")[0] not in schema.namespaces:
            schema.errors.append(f"{type_ref.location}: unknown namespace '{type_ref.text.rpartition('::')[0]}' "
                                 f"in type '{type_ref.text}'")
        else:
            schema.errors.append(f"{type_ref.location}: unknown type '{type_ref.text}' "
                                 f"(looked in {', '.join(searched)})")
        return
    type_ref.target = decl


def dependencies(decl):
    """Namespace-level declarations that a declaration needs complete before it, with where it uses them."""
    found = []
    if isinstance(decl, TypedefDecl):
        refs = [decl.type_ref]
    elif isinstance(decl, StructDecl):
        refs = [member.type_ref for record in _records(decl) for member in record.members
                if member.type_ref is not None]
    else:
        refs = []
    for ref in refs:
        if isinstance(ref.target, Declaration):
            found.append((ref.target, ref.location))
    return found


def _check_cycles(schema):
    """Types must not contain themselves; pointers of variable arrays count too, so every order is a plain one."""
    state = {}

    def visit(decl, chain):
        key = decl.qualified
        if state.get(key) == "done":
            return
        if state.get(key) == "open":
            cycle = chain[chain.index(decl):]
            path = " -> ".join(item.qualified for item in cycle + [decl])
            schema.errors.append(f"{cycle[0].location}: type cycle {path}")
            return
        state[key] = "open"
        for dep, _ in dependencies(decl):
            visit(dep, chain + [decl])
        state[key] = "done"

    for namespace in sorted(schema.namespaces):
        for decl in schema.declarations(namespace):
            visit(decl, [])


def ordered_declarations(schema, namespace):
    """The namespace's declarations with each one after those it needs, otherwise in schema order."""
    ordered, seen = [], set()

    def visit(decl):
        if decl.qualified in seen:
            return
        seen.add(decl.qualified)
        for dep, _ in dependencies(decl):
            if dep.namespace == namespace:
                visit(dep)
        ordered.append(decl)

    for decl in schema.declarations(namespace):
        visit(decl)
    return ordered


def namespace_dependencies(schema, namespace):
    """Other namespaces whose types a namespace uses, each with one place that uses it."""
    used = {}
    for decl in schema.declarations(namespace):
        for dep, location in dependencies(decl):
            if dep.namespace != namespace:
                used.setdefault(dep.namespace, location)
    return dict(sorted(used.items()))


def check_namespace_cycles(schema):
    """One header per namespace can only include another if namespaces do not use each other in a circle."""
    state = {}

    def visit(namespace, chain):
        if state.get(namespace) == "done":
            return
        if state.get(namespace) == "open":
            start = chain.index(namespace)
            path = " -> ".join(chain[start:] + [namespace])
            location = namespace_dependencies(schema, chain[-1])[namespace]
            schema.errors.append(f"{location}: namespaces use each other's types ({path}); "
                                 f"move the shared types to aecglobalelements")
            return
        state[namespace] = "open"
        for other in namespace_dependencies(schema, namespace):
            visit(other, chain + [namespace])
        state[namespace] = "done"

    for namespace in sorted(schema.namespaces):
        visit(namespace, [])
    return schema.errors


def load(directory):
    """Parses and resolves a schema directory; returns (schema, errors)."""
    schema = parse_directory(directory)
    if not schema.errors:
        resolve(schema)
    if not schema.errors:
        check_namespace_cycles(schema)
    return schema, schema.errors


def underlying(target):
    """Follows typedefs to a scalar word, EnumDecl or StructDecl."""
    while isinstance(target, TypedefDecl):
        target = target.type_ref.target
    return target


def cpp_type(target, scope=None):
    """C++ spelling of a resolved element type; a record nested in `scope` is named without qualification."""
    if isinstance(target, str):
        return SCALAR_CPP[target]
    if isinstance(target, StructDecl) and target.outer is not None and target.outer is scope:
        return target.name
    return target.qualified
