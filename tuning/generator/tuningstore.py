# Emits the tuning store's module table: the typed GetModule_<name> of TuningSetManager and the prototype of each
# registered module.
"""Store emitter of the tuning record generator.

tuningmoduleregistry.h is included inside the body of class TuningSetManager: one virtual GetModule_<name> per
registered module (typed by its record for a module the library reads, ParameterModule* for one registered by name
only), the number of registered modules and CreatePrototype(index). tuningmoduleregistry.cpp defines them: the
accessors go through ParameterSetManager::GetModuleInternal, and the prototypes are made in registration order.
"""

from tuningaccessors import module_header

OUTPUT_NAMES = ["tuningmoduleregistry.h", "tuningmoduleregistry.cpp"]

_GENERATED = "generated from tuning/modules.list by aectuninggen.py: do not edit."


def _record(module):
    """Qualified record type of a present module."""
    return module.decl.qualified


def _module_class(module):
    """Qualified module class of a present module: the record's name with 'Class'."""
    return f"{module.decl.namespace}::{module.decl.name}Class"


def _result_type(module):
    return _record(module) if module.present else "ParameterModule"


def _accessor_declaration(module, qualifier):
    result = _result_type(module)
    return (f"{result}* {qualifier}GetModule_{module.name}(const TuningMode* pBranch, UINT32 count, "
            f"{result}* pPrevious)")


def render_header(registry):
    lines = [
        "// The module accessors of TuningSetManager, " + _GENERATED,
        "// Included inside the class body. Each returns the instance of the module for the mode branch, or null;",
        "// pPrevious (may be null) is the instance the caller held before and is released. Virtual, so that a test",
        "// double can stand in for the store.",
        "",
        "public:",
        f"    static constexpr UINT32 RegisteredModuleCount = {len(registry)};",
        "    // The prototype of the module registered at index (registration order), or null past the end; the",
        "    // caller owns it.",
        "    static ParameterModule* CreatePrototype(UINT32 index);",
        "",
    ]
    for module in registry:
        lines.append(f"    virtual {_accessor_declaration(module, '')};")
    lines.append("")
    return "\n".join(lines)


def _present_accessor(module):
    module_class = _module_class(module)
    return [
        f"{_accessor_declaration(module, 'TuningSetManager::')}",
        "{",
        f"    ParameterModule* pFound = GetModuleInternal(GetTableIndex(), \"{module.name}\", pBranch, count,",
        f"                                                static_cast<{module_class}*>(pPrevious), 1);",
        f"    return static_cast<{module_class}*>(pFound);",
        "}",
        "",
    ]


def _absent_accessor(module):
    return [
        f"{_accessor_declaration(module, 'TuningSetManager::')}",
        "{",
        f"    return GetModuleInternal(GetTableIndex(), \"{module.name}\", pBranch, count, pPrevious, 1);",
        "}",
        "",
    ]


def render_source(registry):
    headers = sorted({module_header(module.decl.namespace) for module in registry if module.present})
    lines = [
        "// The module accessors and prototypes of TuningSetManager, " + _GENERATED,
        "// Every instance of a module name is made by that name's prototype, so an accessor's casts between the",
        "// module class and its record hold (and keep null null).",
        "#include <new>",
        "",
        '#include "tuning/cabsenttuningmodule.h"',
        '#include "tuning/tuningsetmanager.h"',
    ]
    lines += [f'#include "{header}"' for header in headers]
    lines += [
        "",
        "ParameterModule* TuningSetManager::CreatePrototype(UINT32 index)",
        "{",
        "    switch (index)",
        "    {",
    ]
    for index, module in enumerate(registry):
        if module.present:
            made = f"new (std::nothrow) {_module_class(module)}(\"{module.name}\", nullptr)"
        else:
            made = f"new (std::nothrow) CAbsentTuningModule(\"{module.name}\")"
        lines.append(f"        case {index}: return {made};")
    lines += [
        "        default: return nullptr;",
        "    }",
        "}",
        "",
    ]
    for module in registry:
        lines += _present_accessor(module) if module.present else _absent_accessor(module)
    return "\n".join(lines)


def render_store(registry):
    """{file name: text} of the store's module table for a list of RegisteredModule."""
    return {OUTPUT_NAMES[0]: render_header(registry), OUTPUT_NAMES[1]: render_source(registry)}
