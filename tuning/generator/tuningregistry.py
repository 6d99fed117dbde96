# Reads tuning/modules.list: the names of every module the tuning store knows and the record type of those it reads.
"""The module registry of the tuning store.

tuning/modules.list, line based, '#' starts a comment:

    Metering                aecMetering::AECCoreMeteringType     a module read through its generated accessors
    aecGyro                                                      a module registered by name only (absent)

The order of the lines is the order of registration. Each name is unique and a C++ identifier (it becomes the suffix
of TuningSetManager::GetModule_<name>); each record type names a module of the schema, and no module is listed twice.
"""

import os
import re

DEFAULT_PATH = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "modules.list"))
_IDENTIFIER = re.compile(r"^[A-Za-z_][A-Za-z0-9_]*$")


class RegisteredModule:
    """One line of the registry: name, line number, and the schema module (None for an absent module)."""

    def __init__(self, name, line, decl):
        self.name = name
        self.line = line
        self.decl = decl

    @property
    def present(self):
        return self.decl is not None


def parse_text(text, display, schema):
    """Returns ([RegisteredModule], errors) for the registry text against a resolved schema."""
    modules = {decl.qualified: decl for decl in schema.modules()}
    registered, errors, names, types = [], [], {}, {}
    for number, raw in enumerate(text.splitlines(), start=1):
        words = raw.split("#", 1)[0].split()
        if not words:
            continue
        where = f"{display}:{number}"
        if len(words) > 2:
            errors.append(f"{where}: expected '<name>' or '<name> <record type>', found {len(words)} words")
            continue
        name = words[0]
        if not _IDENTIFIER.match(name):
            errors.append(f"{where}: module name '{name}' is not an identifier")
            continue
        if name in names:
            errors.append(f"{where}: module '{name}' is already listed on line {names[name]}")
            continue
        names[name] = number
        decl = None
        if len(words) == 2:
            decl = modules.get(words[1])
            if decl is None:
                errors.append(f"{where}: '{words[1]}' is not a module of the tuning schema")
                continue
            if words[1] in types:
                errors.append(f"{where}: '{words[1]}' is already the record of line {types[words[1]]}")
                continue
            types[words[1]] = number
        registered.append(RegisteredModule(name, number, decl))
    return registered, errors


def load(path, schema):
    """Returns ([RegisteredModule], errors) of a registry file."""
    try:
        with open(path, encoding="utf-8") as handle:
            text = handle.read()
    except OSError as error:
        return [], [f"{path}: {error.strerror}"]
    return parse_text(text, os.path.relpath(path), schema)
