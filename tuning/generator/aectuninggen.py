# Command line of the tuning record generator: schema and default files in, C++ records and default filler out.
"""Generates the C++ tuning records and their default values from the tuning schema.

Schema files (*.schema, read in sorted order; a namespace may span files), line based, '#' starts a comment; a
comment block directly above a declaration or member (or at the end of its line) documents it:

    namespace aecMetering                    C++ namespace of the declarations that follow
    enum AECConvAlgoType {                   enum AECConvAlgoType : INT32, members '<name> = <integer>'
        AECConvSlowConv = 0
    }
    typedef INT32 ExposureTableIDType
    struct TriggerPointType {                plain record; '@symbol' after the name adds UINT32 SymbolTableID
        FLOAT start
    }
    module AECCoreMeteringType 8.0.1 {       tuning module top record, starts with UINT32 SymbolTableID
        struct module_version @symbol {      nested record: type module_versionStruct, member module_version
            INT32 major_revision
        }
        FLOAT EVCompTable[49]                fixed array (several dimensions allowed: [8][8])
        ZoneType zones[]                     variable array: UINT32 zonesCount, UINT32 zonesID, ZoneType* zones
        STRING name                          CHAR*
        aecglobalelements::TriggerPointType trigger
        FLOAT oursOnly @ours                 a member we chose ourselves; the comment above must say why
    }

Scalars: INT8 UINT8 INT16 UINT16 INT32 UINT32 INT64 UINT64 INT UINT FLOAT DOUBLE BOOL CHAR STRING. An unqualified
type is looked up in the current namespace, then aecglobalelements, then statsglobalelements.

Default files (*.toml, one per namespace, named after it): one table per module; nested records as sub-tables or
dotted keys; arrays as TOML arrays (a short fixed array fills its leading elements); enums by member name or
number; BOOL as true/false or 0/1; CHAR[N] also as a string. Members not given stay 0; unknown keys are errors.

Output: tuning_<namespace>.h per namespace, aectuningrecords.h including them all, and aecdefaulttuning.h/.cpp
with, per module, <Module>DefaultStorage (the record, then its own copy of every array and string the record points
to), FillDefault<Module>Storage(<Module>DefaultStorage*) that fills one and points its record into it,
FillDefault<Module>(<ns>::<Module>*) for a record whose arrays all its callers share, and g_aecDefaultTuningModules
(names, versions, record and storage sizes, storage alignment and filler). Per namespace also tuning_<namespace>.cpp
with the record accessors (Load, LoadArray, AllocArray, Unload, GetValue, SetValue, GetInfo) and, where the namespace
has modules, tuning_<namespace>_module.h with their <Module>Class store modules; tuningmoduleregistry.h/.cpp with
TuningSetManager's GetModule_<name> for every module of the registry (tuning/modules.list, see tuningregistry.py);
and aectuningdefault.json, the default tuning as an aec-tune source that the build compiles into default.bin.
Files are rewritten only when their content changes.
"""

import argparse
import os
import sys

sys.dont_write_bytecode = True  # keep the source tree free of caches when the build runs us

import tuningaccessors  # noqa: E402
import tuningdefaults  # noqa: E402
import tuningheaders  # noqa: E402
import tuningregistry  # noqa: E402
import tuningschema  # noqa: E402
import tuningsource  # noqa: E402
import tuningstore  # noqa: E402

REPOSITORY = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))


def generate(schema_dir, default_dir, registry_path):
    """Returns ({file name: text}, errors) for a schema, a default directory and a module registry."""
    schema, errors = tuningschema.load(schema_dir)
    if errors:
        return {}, errors
    registry, errors = tuningregistry.load(registry_path, schema)
    if errors:
        return {}, errors
    headers = {}
    for namespace in sorted(schema.namespaces):
        name = tuningheaders.namespace_header(namespace)
        if name in headers:
            first = headers[name]
            errors.append(f"{schema_dir}: namespaces {first} and {namespace} differ only in case; "
                          f"both would be written to {name}")
        headers[name] = namespace
    if errors:
        return {}, errors
    modules, errors = tuningdefaults.load_defaults(schema, default_dir)
    if errors:
        return {}, errors
    files = tuningheaders.render_headers(schema, registry)
    files.update(tuningdefaults.render_defaults(modules))
    files.update(tuningaccessors.render_accessors(schema, registry))
    files.update(tuningstore.render_store(registry))
    try:
        files.update(tuningsource.render_source(schema, modules, registry))
    except tuningsource.SourceError as error:
        return {}, [f"{default_dir}: {error}"]
    return files, []


def output_names(schema_dir):
    """Names of the files a run would write, for the build system; (names, errors)."""
    schema, errors = tuningschema.load(schema_dir)
    if errors:
        return [], errors
    names = [tuningheaders.namespace_header(namespace) for namespace in sorted(schema.namespaces)]
    names += [tuningheaders.UMBRELLA_HEADER, tuningdefaults.DEFAULT_HEADER, tuningdefaults.DEFAULT_SOURCE]
    names += tuningaccessors.output_names(schema)
    names += tuningstore.OUTPUT_NAMES
    names += tuningsource.OUTPUT_NAMES
    return names, []


def write_outputs(files, out_dir):
    """Writes changed files only, so that an unchanged schema rebuilds nothing; removes stale namespace files."""
    os.makedirs(out_dir, exist_ok=True)
    written = []
    for name, text in sorted(files.items()):
        path = os.path.join(out_dir, name)
        try:
            with open(path, encoding="utf-8", newline="") as handle:
                if handle.read() == text:
                    continue
        except FileNotFoundError:
            pass
        with open(path + ".tmp", "w", encoding="utf-8", newline="") as handle:
            handle.write(text)
        os.replace(path + ".tmp", path)
        written.append(name)
    for name in sorted(os.listdir(out_dir)):
        if name.startswith("tuning_") and name.endswith((".h", ".cpp")) and name not in files:
            os.remove(os.path.join(out_dir, name))
    return written


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--schema-dir", default=os.path.join(REPOSITORY, "tuning", "schema"),
                        help="directory of the *.schema files (default: tuning/schema)")
    parser.add_argument("--default-dir", default=os.path.join(REPOSITORY, "tuning", "default"),
                        help="directory of the *.toml default files (default: tuning/default)")
    parser.add_argument("--registry", default=tuningregistry.DEFAULT_PATH,
                        help="the module registry (default: tuning/modules.list)")
    mode = parser.add_mutually_exclusive_group(required=True)
    mode.add_argument("--out-dir", help="write the generated files into this directory")
    mode.add_argument("--check", action="store_true", help="only check schema and defaults, write nothing")
    mode.add_argument("--list-outputs", action="store_true",
                      help="print the names of the files that would be generated, one per line")
    parser.add_argument("--verbose", action="store_true", help="name every file that was rewritten")
    args = parser.parse_args(argv)

    if args.list_outputs:
        names, errors = output_names(args.schema_dir)
    else:
        files, errors = generate(args.schema_dir, args.default_dir, args.registry)
    if errors:
        for error in errors:
            print(error, file=sys.stderr)
        print(f"aectuninggen: {len(errors)} error(s)", file=sys.stderr)
        return 1
    if args.list_outputs:
        print("\n".join(names))
    elif args.out_dir:
        for name in write_outputs(files, args.out_dir):
            if args.verbose:
                print(f"aectuninggen: wrote {name}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
