# Unit tests of the tuning record generator: schema parsing and errors, type resolution, headers, defaults,
# name hashes and accessors.
import io
import os
import sys
import tempfile
import textwrap
import unittest
from contextlib import redirect_stderr, redirect_stdout

HERE = os.path.dirname(os.path.abspath(__file__))
FIXTURES = os.path.join(HERE, "fixtures")
sys.path.insert(0, os.path.join(HERE, "..", "..", "..", "tuning", "generator"))
sys.dont_write_bytecode = True

import aectuninggen  # noqa: E402
import tuningaccessors  # noqa: E402
import tuningcrc  # noqa: E402
import tuningdefaults  # noqa: E402
import tuningregistry  # noqa: E402
import tuningheaders  # noqa: E402
import tuningschema  # noqa: E402
import tuningsource  # noqa: E402
import tuningstore  # noqa: E402


def parse(*texts):
    """Parses schema texts named a.schema, b.schema, ... and resolves them; returns (schema, errors)."""
    schema = tuningschema.Schema()
    parser = tuningschema.SchemaParser(schema)
    for index, text in enumerate(texts):
        parser.parse_text(textwrap.dedent(text), f"{chr(ord('a') + index)}.schema")
    if not schema.errors:
        tuningschema.resolve(schema)
    if not schema.errors:
        tuningschema.check_namespace_cycles(schema)
    return schema, schema.errors


class TemporaryTree:
    """A schema and a default directory with given files and a module registry, removed afterwards."""

    def __init__(self, schemas=None, defaults=None, registry=""):
        self.directory = tempfile.TemporaryDirectory()
        self.schema_dir = os.path.join(self.directory.name, "schema")
        self.default_dir = os.path.join(self.directory.name, "default")
        self.out_dir = os.path.join(self.directory.name, "out")
        self.registry = os.path.join(self.directory.name, "modules.list")
        with open(self.registry, "w", encoding="utf-8") as handle:
            handle.write(textwrap.dedent(registry))
        for folder, files in ((self.schema_dir, schemas or {}), (self.default_dir, defaults or {})):
            os.makedirs(folder)
            for name, text in files.items():
                with open(os.path.join(folder, name), "w", encoding="utf-8") as handle:
                    handle.write(textwrap.dedent(text))

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.directory.cleanup()


MODULE_SCHEMA = """\
    namespace demo
    enum ModeType {
        ModeOff = 0
        ModeOn = 1
    }
    struct ZoneType {
        FLOAT start
        FLOAT end
    }
    module DemoType 2.1.0 {
        FLOAT gains[3]
        ZoneType zones[]
        ModeType mode
        BOOL enable
        CHAR label[4]
        UINT8 small
        struct inner {
            INT32 value
        }
    }
"""


def defaults(toml_text, schema_text=MODULE_SCHEMA):
    with TemporaryTree({"demo.schema": schema_text}, {"demo.toml": toml_text}) as tree:
        schema, errors = tuningschema.load(tree.schema_dir)
        assert not errors, errors
        modules, errors = tuningdefaults.load_defaults(schema, tree.default_dir)
        return modules, [error.replace(tree.default_dir + os.sep, "") for error in errors]


class SchemaParsingTest(unittest.TestCase):
    def test_fixture_schema_parses_without_errors(self):
        schema, errors = tuningschema.load(os.path.join(FIXTURES, "schema"))
        self.assertEqual(errors, [])
        modules = {module.qualified: module for module in schema.modules()}
        self.assertEqual(sorted(modules), ["fixEmpty::FixEmptyType", "fixMetering::FixMeteringType"])
        self.assertEqual(modules["fixMetering::FixMeteringType"].module_version, (8, 0, 1))
        self.assertEqual(modules["fixEmpty::FixEmptyType"].module_version, (1, 2, 3))

    def test_namespace_spans_files(self):
        schema, errors = tuningschema.load(os.path.join(FIXTURES, "schema"))
        self.assertEqual(errors, [])
        names = [decl.name for decl in schema.declarations("fixMetering")]
        self.assertEqual(names, ["FixMeteringType", "FixZoneType"])

    def test_member_kinds(self):
        schema, errors = parse(MODULE_SCHEMA)
        self.assertEqual(errors, [])
        module = schema.namespaces["demo"]["DemoType"]
        members = {member.name: member for member in module.members}
        self.assertEqual(members["gains"].dims, [3])
        self.assertTrue(members["zones"].variable)
        self.assertEqual(members["inner"].nested.name, "innerStruct")
        self.assertEqual(members["inner"].nested.qualified, "demo::DemoType::innerStruct")
        self.assertEqual(module.field_names()[:4], ["SymbolTableID", "gains", "zonesCount", "zonesID"])

    def test_doc_comments_above_and_after(self):
        schema, errors = parse("""\
            namespace demo
            # Detached: a blank line follows.

            # First line.
            # Second line.
            struct DocType {
                FLOAT value   # trailing note
            }
        """)
        self.assertEqual(errors, [])
        record = schema.namespaces["demo"]["DocType"]
        self.assertEqual(record.doc, ["First line.", "Second line."])
        self.assertEqual(record.members[0].doc, ["trailing note"])

    def test_enum_values_implicit_and_hex(self):
        schema, errors = parse("""\
            namespace demo
            enum E {
                A = -2
                B
                C = 0x10
            }
        """)
        self.assertEqual(errors, [])
        self.assertEqual([(m.name, m.value) for m in schema.namespaces["demo"]["E"].members],
                         [("A", -2), ("B", -1), ("C", 16)])

    def test_errors_carry_file_and_line(self):
        cases = [
            ("namespace demo\nstruct S {\n    FLOAT x[0]\n}\n", "a.schema:3: 'x': array size must be positive, found 0"),
            ("namespace demo\nstruct S {\n    FLOAT x[n]\n}\n",
             "a.schema:3: 'x': array size must be an integer literal, as in 'x[4]'"),
            ("struct S {\n}\n", "a.schema:1: 'struct' before the first 'namespace' line"),
            ("namespace demo\nstruct S {\n    FLOAT x\n", "a.schema:2: record 'S' is not closed before the end of the file"),
            ("namespace demo\n}\n", "a.schema:2: '}' without an open enum or record"),
            ("namespace demo\nstruct S {\n    FLOAT x\n    INT32 x\n}\n",
             "a.schema:4: 'x' in record 'S' clashes with member 'x' at a.schema:3"),
            ("namespace demo\nstruct S {\n    FLOAT v[]\n    UINT32 vCount\n}\n",
             "a.schema:4: 'vCount' in record 'S' clashes with the count of 'v' at a.schema:3"),
            ("namespace demo\nmodule M 1.0.0 {\n    UINT32 SymbolTableID\n}\n",
             "a.schema:3: 'SymbolTableID' in record 'M' clashes with the generated SymbolTableID"),
            ("namespace demo\nstruct S {\n    FLOAT x @ours\n}\n",
             "a.schema:3: 'x' is marked @ours: the comment above it must say why it exists"),
            ("namespace demo\nstruct S {\n    FLOAT x @later\n}\n",
             "a.schema:3: unknown flag '@later' (allowed here: @ours)"),
            ("namespace demo\nstruct class {\n}\n",
             "a.schema:2: 'class' is reserved and cannot name a declaration or member"),
            ("namespace demo\nmodule M 1.0 {\n}\n", "a.schema:2: module version '1.0' must be <major>.<minor>.<patch>"),
            ("namespace demo\nmodule M {\n}\n", "a.schema:2: expected 'module <name> <major>.<minor>.<patch> {'"),
            ("namespace demo\nenum E {\n    A = 1.5\n}\n", "a.schema:3: expected '<name> = <integer>' in enum 'E'"),
            ("namespace demo\nstruct S {\n    FLOAT x!\n}\n", "a.schema:3: unexpected text '!'"),
            ("namespace demo\nstruct S {\n    FLOAT x[]\n    FLOAT y[2][]\n}\n",
             "a.schema:4: 'y': a variable array '[]' must be the only dimension"),
            ("namespace demo\nstruct S {\n    FLOAT x\nnamespace other\n}\n",
             "a.schema:4: 'namespace' inside record 'S': close the record with '}' first"),
            ("namespace demo\nwidget W\n",
             "a.schema:2: expected 'namespace', 'enum', 'typedef', 'struct' or 'module', found 'widget'"),
        ]
        for text, expected in cases:
            with self.subTest(expected=expected):
                _, errors = parse(text)
                self.assertIn(expected, errors)

    def test_duplicate_names_across_files(self):
        _, errors = parse("namespace demo\nstruct S {\n}\n", "namespace demo\n\ntypedef INT32 S\n")
        self.assertEqual(errors, ["b.schema:3: 'S' is already declared in namespace demo at a.schema:2"])

    def test_enumerators_share_the_namespace(self):
        _, errors = parse("namespace demo\nenum E {\n    Same = 0\n}\nenum F {\n    Same = 1\n}\n")
        self.assertEqual(errors, ["a.schema:6: 'Same' is already declared in namespace demo at a.schema:3"])

    def test_a_wrong_block_header_does_not_cascade(self):
        _, errors = parse("namespace demo\nstruct S @odd {\n    FLOAT x\n    struct n {\n    }\n}\n")
        self.assertEqual(errors, ["a.schema:2: unknown flag '@odd' (allowed here: @ours, @symbol)"])

    def test_all_errors_of_a_run_are_reported(self):
        _, errors = parse("namespace demo\nstruct S {\n    FLOAT x[0]\n    FLOAT y[-1]\n}\n")
        self.assertEqual(len(errors), 2)


class TypeResolutionTest(unittest.TestCase):
    def test_current_namespace_then_global_ones(self):
        schema, errors = parse("""\
            namespace aecglobalelements
            struct T {
                FLOAT g
            }
            struct OnlyGlobal {
                FLOAT g
            }
            namespace statsglobalelements
            struct OnlyStats {
                FLOAT s
            }
            struct OnlyGlobal {
                FLOAT s
            }
            namespace demo
            struct T {
                FLOAT d
            }
            struct User {
                T local
                OnlyGlobal global
                OnlyStats stats
                aecglobalelements::T qualified
            }
        """)
        self.assertEqual(errors, [])
        members = {m.name: m.type_ref.target.qualified for m in schema.namespaces["demo"]["User"].members}
        self.assertEqual(members, {"local": "demo::T", "global": "aecglobalelements::OnlyGlobal",
                                   "stats": "statsglobalelements::OnlyStats", "qualified": "aecglobalelements::T"})

    def test_unknown_type_and_namespace(self):
        _, errors = parse("namespace demo\nstruct S {\n    Missing a\n    other::T b\n}\n")
        self.assertEqual(errors, [
            "a.schema:3: unknown type 'Missing' (looked in demo, aecglobalelements, statsglobalelements)",
            "a.schema:4: unknown namespace 'other' in type 'other::T'",
        ])

    def test_type_cycles_are_errors(self):
        _, errors = parse("namespace demo\nstruct A {\n    B b\n}\nstruct B {\n    A a[]\n}\n")
        self.assertEqual(errors, ["a.schema:2: type cycle demo::A -> demo::B -> demo::A"])

    def test_typedef_cycle(self):
        _, errors = parse("namespace demo\ntypedef B A\ntypedef A B\n")
        self.assertEqual(errors, ["a.schema:2: type cycle demo::A -> demo::B -> demo::A"])

    def test_namespace_cycle(self):
        _, errors = parse("namespace one\nstruct A {\n    two::B b\n}\nnamespace two\nstruct B {\n    FLOAT x\n}\n"
                          "struct C {\n    one::A a\n}\n")
        self.assertEqual(errors, ["a.schema:10: namespaces use each other's types (one -> two -> one); "
                                  "move the shared types to aecglobalelements"])

    def test_declarations_ordered_by_dependency(self):
        schema, errors = tuningschema.load(os.path.join(FIXTURES, "schema"))
        self.assertEqual(errors, [])
        names = [decl.name for decl in tuningschema.ordered_declarations(schema, "fixMetering")]
        self.assertEqual(names, ["FixZoneType", "FixMeteringType"])


class HeaderTest(unittest.TestCase):
    def setUp(self):
        schema, errors = tuningschema.load(os.path.join(FIXTURES, "schema"))
        self.assertEqual(errors, [])
        self.files = tuningheaders.render_headers(schema)

    def test_one_header_per_namespace_and_umbrella(self):
        self.assertEqual(sorted(self.files), ["aectuningrecords.h", "tuning_aecglobalelements.h", "tuning_fixempty.h",
                                              "tuning_fixmetering.h", "tuning_statsglobalelements.h"])
        umbrella = self.files["aectuningrecords.h"]
        self.assertIn('#include "tuning_fixmetering.h"', umbrella)
        self.assertIn('#include "aecore/aecore_types.h"', umbrella)

    def test_record_layout_text(self):
        header = self.files["tuning_fixmetering.h"]
        self.assertIn('#include "tuning_aecglobalelements.h"', header)
        self.assertLess(header.index("struct FixZoneType"), header.index("struct FixMeteringType"))
        module = header[header.index("struct FixMeteringType"):]
        self.assertTrue(module.split("{", 1)[1].lstrip().startswith("UINT32 SymbolTableID;"))
        self.assertRegex(module, r"UINT32\s+zonesCount;\s+UINT32\s+zonesID;\s+fixMetering::FixZoneType\*\s+zones;")
        self.assertRegex(module, r"struct module_versionStruct\s+\{\s+UINT32 SymbolTableID;")
        self.assertRegex(module, r"module_versionStruct\s+module_version;")
        self.assertRegex(module, r"FLOAT\s+grid\[2\]\[3\];")
        self.assertRegex(module, r"CHAR\*\*\s+names;")
        self.assertIn("// Kept by us to exercise @ours members.", module)
        self.assertIn("// Metering fixture module.\n// Tuning module FixMeteringType, version 8.0.1.\nstruct FixMeteringType",
                      header)

    def test_records_declare_their_accessors(self):
        header = self.files["tuning_fixmetering.h"]
        self.assertIn("struct ParameterLoadParameters;\nstruct ParameterParserInfo;\nclass ParameterFileSymbolTable;\n"
                      "template <typename T>\nclass PList;\n\nnamespace fixMetering", header)
        start = header.index("struct FixZoneType")
        zone = header[start:header.index("static_assert", start)]
        for declaration in ["bool         Load(ParameterLoadParameters& params);",
                            "static bool  LoadArray(ParameterLoadParameters& params, void* pDest, UINT32 count);",
                            "static void* AllocArray(UINT32 count);",
                            "void         Unload(ParameterFileSymbolTable* pSymbolTable);",
                            "bool         GetValue(const CHAR* pPath, CHAR* pOut, UINT32 size) const;",
                            "bool         SetValue(const CHAR* pPath, const CHAR* pValue);",
                            "bool         GetInfo(const CHAR* pPath, PList<ParameterParserInfo>& list) const;"]:
            self.assertIn("    " + declaration, zone)
        self.assertNotIn("GetModuleName", zone)
        module = header[header.index("struct FixMeteringType"):]
        self.assertIn("        bool         Load(ParameterLoadParameters& params);", module)
        for declaration in ["UINT32             GetModified() const;", "static const CHAR* GetModuleName();",
                            "static UINT64      GetModuleNameHash();", "bool               Release();"]:
            self.assertIn("\n    " + declaration, module)

    def test_enum_has_fixed_underlying_type(self):
        header = self.files["tuning_aecglobalelements.h"]
        self.assertIn("enum FixPrioType : INT32", header)
        self.assertIn("    // Gain first.\n    FixPrioGain = 0,", header)
        self.assertIn("typedef INT32 FixIDType;", header)


class DefaultsTest(unittest.TestCase):
    def test_fixture_defaults_are_valid(self):
        schema, _ = tuningschema.load(os.path.join(FIXTURES, "schema"))
        modules, errors = tuningdefaults.load_defaults(schema, os.path.join(FIXTURES, "default"))
        self.assertEqual(errors, [])
        values = {item.module.name: item.values for item in modules}
        self.assertEqual(values["FixEmptyType"], {})
        metering = values["FixMeteringType"]
        self.assertEqual(metering["table"], ["0.25f", "0.5f"])
        self.assertEqual(metering["prio"], "aecglobalelements::FixPrioTime")
        self.assertEqual(metering["prioByNumber"], "aecglobalelements::FixPrioMax")
        self.assertEqual(metering["big"], "(-9223372036854775807LL - 1)")
        self.assertEqual(metering["ubig"], "18446744073709551615u")
        self.assertEqual(metering["flag"], "1")
        self.assertEqual(metering["label"], '"abc"')
        self.assertIsInstance(metering["zones"], tuningdefaults.VariableArray)
        self.assertEqual(metering["zones"][1], {"zoneTrigger": {"start": "120.0f", "end": "400.0f"}, "target": "40.5f"})

    def test_enum_by_name_and_number(self):
        modules, errors = defaults('[DemoType]\nmode = "ModeOn"\n')
        self.assertEqual(errors, [])
        self.assertEqual(modules[0].values["mode"], "demo::ModeOn")
        modules, errors = defaults("[DemoType]\nmode = 7\n")
        self.assertEqual(errors, [])
        self.assertEqual(modules[0].values["mode"], "static_cast<demo::ModeType>(7)")

    def test_value_errors_name_file_and_key_path(self):
        cases = [
            ("[DemoType]\ngainz = [1.0]\n", "demo.toml: DemoType.gainz: unknown key: demo::DemoType has no member "
                                           "'gainz'; did you mean 'gains'?"),
            ("[DemoType]\ngains = [1, 2, 3, 4]\n", "demo.toml: DemoType.gains: 4 values given for an array of 3"),
            ('[DemoType]\ngains = ["x"]\n', 'demo.toml: DemoType.gains[0]: expected a number for FLOAT, '
                                            'found string "x"'),
            ("[DemoType]\nenable = 2\n", "demo.toml: DemoType.enable: expected true, false, 0 or 1 for BOOL, "
                                         "found integer 2"),
            ("[DemoType]\nsmall = 256\n", "demo.toml: DemoType.small: 256 is out of range for UINT8 (0 to 255)"),
            ("[DemoType]\nsmall = 1.0\n", "demo.toml: DemoType.small: expected an integer for UINT8, found float 1.0"),
            ('[DemoType]\nlabel = "abcd"\n', "demo.toml: DemoType.label: string of 4 bytes does not fit CHAR[4] "
                                             "with its terminating zero"),
            ('[DemoType]\nmode = "ModeOnn"\n', "demo.toml: DemoType.mode: 'ModeOnn' is not a member of enum "
                                               "demo::ModeType; did you mean 'ModeOn'?"),
            ("[DemoType]\nzonesCount = 2\n", "demo.toml: DemoType.zonesCount: not a default value: zonesCount "
                                             "follows from the length of 'zones'"),
            ("[DemoType]\nSymbolTableID = 2\n", "demo.toml: DemoType.SymbolTableID: not a default value: "
                                                "SymbolTableID is set by the parameter store"),
            ("[[DemoType.zones]]\nstart = 1.0\nmiddle = 2.0\n",
             "demo.toml: DemoType.zones[0].middle: unknown key: demo::ZoneType has no member 'middle'"),
            ("[DemoType]\nzones = 3\n", "demo.toml: DemoType.zones: expected an array for variable array 'zones', "
                                        "found integer 3"),
            ("[DemoType.inner]\nvalue = 1\nextra = 2\n",
             "demo.toml: DemoType.inner.extra: unknown key: demo::DemoType::innerStruct has no member 'extra'"),
            ("[OtherType]\nx = 1\n", "demo.toml: OtherType: unknown key: no module 'OtherType' in namespace demo"),
            ("[DemoType]\nmode = true\n", "demo.toml: DemoType.mode: expected a member name or an integer for enum "
                                          "demo::ModeType, found boolean true"),
        ]
        for text, expected in cases:
            with self.subTest(expected=expected):
                _, errors = defaults(text)
                self.assertEqual(errors, [expected])

    def test_toml_syntax_error(self):
        _, errors = defaults("[DemoType\n")
        self.assertEqual(len(errors), 1)
        self.assertTrue(errors[0].startswith("demo.toml: invalid TOML: "), errors[0])

    def test_float_limits(self):
        modules, errors = defaults("[DemoType]\ngains = [inf, -inf, 1e-5]\n")
        self.assertEqual(errors, [])
        self.assertEqual(modules[0].values["gains"], ["std::numeric_limits<FLOAT>::infinity()",
                                                       "-std::numeric_limits<FLOAT>::infinity()", "1e-05f"])
        _, errors = defaults("[DemoType]\ngains = [1e39]\n")
        self.assertEqual(errors, ["demo.toml: DemoType.gains[0]: 1e+39 is out of range for FLOAT"])

    def test_string_literals_are_escaped(self):
        self.assertEqual(tuningdefaults._c_string('a"b\\c\n??=é'), '"a\\"b\\\\c\\012\\077\\077=\\303\\251"')

    def test_source_assigns_counts_and_pointers(self):
        modules, errors = defaults('[DemoType]\ngains = [1.5]\n[[DemoType.zones]]\nstart = 1.0\nend = 2.0\n')
        self.assertEqual(errors, [])
        files = tuningdefaults.render_defaults(modules)
        header, source = files["aecdefaulttuning.h"], files["aecdefaulttuning.cpp"]
        self.assertRegex(header, r"struct DemoTypeDefaultStorage\s+\{\s+demo::DemoType\s+module;\s+"
                                 r"demo::ZoneType\s+zones\[1\];\s+\};")
        self.assertIn("void FillDefaultDemoTypeStorage(DemoTypeDefaultStorage* pStorage);", header)
        self.assertIn("void FillDefaultDemoType(demo::DemoType* pModule);", header)
        self.assertIn("const DemoTypeDefaultStorage kDefault_demo_DemoType = {", source)
        self.assertIn("/* zonesCount */ 1,", source)
        self.assertIn("/* zones */ {},", source)  # null in the built-in defaults: set when a storage is filled
        self.assertIn("    pStorage->module.zones = pStorage->zones;\n", source)
        self.assertIn('{ "demo", "DemoType", 2, 1, 0, sizeof(demo::DemoType), sizeof(DemoTypeDefaultStorage), '
                      "alignof(DemoTypeDefaultStorage),", source)
        self.assertNotIn("only read", source)

    def test_storage_copies_strings_and_nested_arrays(self):
        schema = """\
            namespace demo
            struct StepType {
                STRING label
                UINT32 steps[]
            }
            module DemoType 1.0.0 {
                StepType levels[]
                struct inner {
                    FLOAT values[]
                }
                STRING names[]
            }
        """
        text = ('[DemoType]\nnames = ["a", "bc"]\ninner = { values = [1.0] }\n'
                '[[DemoType.levels]]\nlabel = "x\u00e9"\nsteps = [1, 2]\n[[DemoType.levels]]\nsteps = []\n')
        modules, errors = defaults(text, schema)
        self.assertEqual(errors, [])
        files = tuningdefaults.render_defaults(modules)
        header, source = files["aecdefaulttuning.h"], files["aecdefaulttuning.cpp"]
        storage = header[header.index("struct DemoTypeDefaultStorage"):]
        storage = " ".join(storage[:storage.index("};") + 1].split())
        # The record first, then every array before the arrays and strings its elements point to.
        self.assertIn("{ demo::DemoType module; demo::StepType levels[2]; CHAR levels_0_label[4]; "
                      "UINT32 levels_0_steps[2]; FLOAT inner_values[1]; CHAR* names[2]; CHAR names_0[2]; "
                      "CHAR names_1[3]; }", storage)
        links = [line.strip() for line in source.splitlines() if line.strip().startswith("pStorage->")]
        self.assertEqual(links, [
            "pStorage->module.levels = pStorage->levels;",
            "pStorage->levels[0].label = pStorage->levels_0_label;",
            "pStorage->levels[0].steps = pStorage->levels_0_steps;",
            "pStorage->module.inner.values = pStorage->inner_values;",
            "pStorage->module.names = pStorage->names;",
            "pStorage->names[0] = pStorage->names_0;",
            "pStorage->names[1] = pStorage->names_1;",
        ])
        self.assertIn('/* levels_0_label */ "x\\303\\251",', source)
        self.assertNotIn("const_cast", source)

    def test_storage_member_names_stay_unique(self):
        schema = """\
            namespace demo
            module DemoType 1.0.0 {
                struct a {
                    FLOAT b[]
                }
                FLOAT a_b[]
                FLOAT module[]
            }
        """
        modules, errors = defaults("[DemoType]\na = { b = [1.0] }\na_b = [2.0]\nmodule = [3.0]\n", schema)
        self.assertEqual(errors, [])
        source = tuningdefaults.render_defaults(modules)["aecdefaulttuning.cpp"]
        self.assertIn("pStorage->module.a.b = pStorage->a_b;", source)
        self.assertIn("pStorage->module.a_b = pStorage->a_b_2;", source)
        self.assertIn("pStorage->module.module = pStorage->module_2;", source)

    def test_module_without_defaults_has_a_zeroed_storage(self):
        modules, errors = defaults("")
        self.assertEqual(errors, [])
        files = tuningdefaults.render_defaults(modules)
        self.assertRegex(files["aecdefaulttuning.h"], r"struct DemoTypeDefaultStorage\s+\{\s+demo::DemoType module;\s+\};")
        source = files["aecdefaulttuning.cpp"]
        self.assertNotIn("kDefault_", source)
        self.assertIn("    std::memset(pStorage, 0, sizeof(*pStorage));\n", source)


class NameHashTest(unittest.TestCase):
    # Computed once with ParserCRC64::GetNameHash of the parameter store.
    STORE_HASHES = [
        ("", 0x0000000000000000),
        ("a", 0xA9AD4E3121C380AE),
        ("revision", 0xD594EED07A5650C5),
        ("mtrLumaCalc", 0x866A355C62D13A6F),
        ("Metering", 0xBEA6F5E148AD561D),
        ("module_version", 0xE11CD9F365A2599F),
        ("AECParamExtension", 0xFF8D0ADED230E94B),
        ("histLumaTargetZone", 0xAA56E5BDDFE0DCBE),
        ("abcdefgh", 0x9464D55D0D1636BD),
        ("abcdefghi", 0xEF71CE86EA8EE231),
        ("0123456789abcdef0123456789abcdef", 0xB7412D1287DFF45B),
        ("\u00e9t\u00e9", 0xD95A75CD163E6DFC),
    ]

    def test_member_names_of_the_store(self):
        self.assertEqual(tuningcrc.name_hash("revision"), 0xD594EED07A5650C5)
        self.assertEqual(tuningcrc.name_hash("mtrLumaCalc"), 0x866A355C62D13A6F)

    def test_same_values_as_the_store(self):
        for name, value in self.STORE_HASHES:
            with self.subTest(name=name):
                self.assertEqual(tuningcrc.name_hash(name), value)

    def test_literal(self):
        self.assertEqual(tuningcrc.literal("revision"), "0xD594EED07A5650C5ULL")

    def test_length_is_fed_only_when_asked(self):
        self.assertNotEqual(tuningcrc.crc64(b"abc", True), tuningcrc.crc64(b"abc", False))
        self.assertEqual(tuningcrc.crc64(b"", True, seed=5), 5)


class AccessorTest(unittest.TestCase):
    def setUp(self):
        schema, errors = tuningschema.load(os.path.join(FIXTURES, "schema"))
        self.assertEqual(errors, [])
        registry, errors = tuningregistry.load(os.path.join(FIXTURES, "modules.list"), schema)
        self.assertEqual(errors, [])
        self.schema = schema
        self.files = tuningaccessors.render_accessors(schema, registry)
        self.source = self.files["tuning_fixmetering.cpp"]

    def function(self, signature):
        """The body of a generated function."""
        start = self.source.index(signature)
        return self.source[start:self.source.index("\n}\n", start)]

    def test_one_source_per_namespace_and_one_module_header_per_module_namespace(self):
        self.assertEqual(sorted(self.files), ["tuning_aecglobalelements.cpp", "tuning_fixempty.cpp",
                                              "tuning_fixempty_module.h", "tuning_fixmetering.cpp",
                                              "tuning_fixmetering_module.h", "tuning_statsglobalelements.cpp"])
        self.assertEqual(sorted(tuningaccessors.output_names(self.schema)), sorted(self.files))
        self.assertIn('#include "tuning_fixmetering_module.h"', self.source)
        self.assertIn('#include "tuning_aecglobalelements.h"', self.files["tuning_aecglobalelements.cpp"])

    def test_load_reads_members_in_order_with_literal_hashes(self):
        body = self.function("bool FixMeteringType::Load(")
        self.assertIn("const UINT32 key = this->SymbolTableID;", body)
        self.assertNotIn("GetNameHash", self.source)
        order = ["module_version", "table", "zones", "name", "range", "prio", "prioByNumber", "id", "bytes", "label",
                 "big", "ubig", "precise", "flag", "pairs", "levels", "grid", "oursOnly", "params", "names", "limits"]
        positions = [body.index(f"members.NameHash = {tuningcrc.literal(name)};") for name in order]
        self.assertEqual(positions, sorted(positions))
        self.assertIn("this->module_version.Load(members);", body)
        self.assertIn("pEntry->ReadSimpleTypeFixedArray<FLOAT>(this->table, 4, members);", body)
        self.assertIn("pEntry->ReadSimpleTypeFixedArray<aecglobalelements::FixPrioType>(&this->prio, 1, members);",
                      body)
        self.assertIn("pEntry->ReadSimpleTypeFixedArray<FLOAT>(&this->grid[0][0], 6, members);", body)
        self.assertIn("pEntry->ReadStructureFixedArray(&fixMetering::FixMeteringType::pairsStruct::LoadArray, "
                      "this->pairs, 2, members);", body)
        self.assertRegex(body, r"this->zones = static_cast<fixMetering::FixZoneType\*>\(pEntry->ReadStructureArray\("
                               r"&fixMetering::FixZoneType::LoadArray, &fixMetering::FixZoneType::AllocArray, "
                               r"this->zonesCount, this->zonesID, ParameterFileSymbolTableEntry::NoLimit, "
                               r"sizeof\(fixMetering::FixZoneType\), members, \d+\)\);")
        self.assertRegex(body, r"pEntry->ReadString\(this->name, members, \d+\);")
        self.assertRegex(body, r"pEntry->ReadStringArray\(this->names, this->namesCount, this->namesID, "
                               r"ParameterFileSymbolTableEntry::NoLimit, members, \d+\);")
        self.assertTrue(body.rstrip().endswith("pEntry->EndStructure(limit);\n    return true;"))

    def test_nested_records_zero_all_and_keep_no_key(self):
        body = self.function("bool FixMeteringType::module_versionStruct::Load(")
        self.assertIn("*this = module_versionStruct();", body)
        self.assertNotIn("key", body)
        self.assertIn("pEntry->ReadSimpleTypeArray<UINT8>(this->marks, this->marksCount, this->marksID, ",
                      self.function("bool FixMeteringType::pairsStruct::Load("))

    def test_location_constants_differ(self):
        import re
        locations = re.findall(r"members, (\d+)\)", self.source)
        self.assertGreaterEqual(len(locations), 4)
        self.assertEqual(len(locations), len(set(locations)))

    def test_unload_releases_every_allocated_member(self):
        body = self.function("void FixMeteringType::Unload(")
        self.assertIn("ParameterAccessor::ReleaseRecords(pSymbolTable, this->zones, this->zonesCount, this->zonesID);",
                      body)
        self.assertIn("ParameterAccessor::Release(pSymbolTable, this->name);", body)
        self.assertIn("ParameterAccessor::ReleaseStrings(pSymbolTable, this->names, this->namesCount, "
                      "this->namesID);", body)
        self.assertIn("(this->pairs)[i].Unload(pSymbolTable);", body)
        self.assertIn("this->limits.Unload(pSymbolTable);", body)
        self.assertNotIn("range", body)
        self.assertNotIn("module_version", body)
        self.assertIn("static_cast<void>(pSymbolTable);",
                      self.function("void FixMeteringType::module_versionStruct::Unload("))

    def test_member_table_drives_the_value_interface(self):
        self.assertIn('{"grid", ParameterAccessorType::Float, true, false, offsetof(fixMetering::FixMeteringType, '
                      'grid), 6, 0, sizeof(FLOAT), nullptr},', self.source)
        self.assertIn('{"zones", ParameterAccessorType::Record, true, true, offsetof(fixMetering::FixMeteringType, '
                      'zones), 0, offsetof(fixMetering::FixMeteringType, zonesCount), '
                      'sizeof(fixMetering::FixZoneType), '
                      '&ParameterAccessorRecordOf<fixMetering::FixZoneType>::Functions},', self.source)
        self.assertIn('{"prio", ParameterAccessorType::Enum,', self.source)
        self.assertIn('{"id", ParameterAccessorType::Int32,', self.source)
        self.assertIn('{"name", ParameterAccessorType::String, false, false,', self.source)
        self.assertIn("return ParameterAccessor::GetValue(s_fixMetering_FixMeteringType, 21, this, pPath, pOut, size);",
                      self.source)

    def test_module_class(self):
        header = self.files["tuning_fixmetering_module.h"]
        self.assertIn("class FixMeteringTypeClass : public ParameterModule, public FixMeteringType", header)
        self.assertIn("static const VersionUnion SourceVersion;", header)
        self.assertIn("const VersionUnion FixMeteringTypeClass::SourceVersion = {0x0000000100000008ULL};",
                      self.source)
        self.assertIn(f'return "FixMetering";', self.function("const CHAR* FixMeteringType::GetModuleName()"))
        self.assertIn(f"return {tuningcrc.literal('FixMetering')};",
                      self.function("UINT64 FixMeteringType::GetModuleNameHash()"))
        self.assertIn('CreateInstance(pData, pDefaults, "FixMeteringTypeClass", true,'
                      ' &ParameterAccessor::MakeInstance<FixMeteringTypeClass>)', self.source)
        self.assertIn('LoadFromSymbolTable(pSymbolTable, "FixMeteringTypeClass", '
                      '&ParameterAccessor::LoadTop<FixMeteringType>,', self.source)
        set_value = self.function("bool FixMeteringTypeClass::SetValue(")
        self.assertIn("NoteModified();\n    SymbolTableID = GetKey();", set_value)
        self.assertIn("const VersionUnion FixEmptyTypeClass::SourceVersion = {0x0000000300020001ULL};",
                      self.files["tuning_fixempty.cpp"])

    def test_namespace_without_records_or_members(self):
        schema, errors = parse("namespace bare\nenum E {\n    A\n}\nstruct Empty {\n}\n")
        self.assertEqual(errors, [])
        files = tuningaccessors.render_accessors(schema, [])
        self.assertEqual(sorted(files), ["tuning_bare.cpp"])
        self.assertIn("ParameterAccessor::GetValue(nullptr, 0, this, pPath, pOut, size);", files["tuning_bare.cpp"])
        self.assertNotIn("namespace\n{", files["tuning_bare.cpp"])

    def test_unregistered_module_is_named_after_its_record(self):
        schema, errors = parse("namespace demo\nmodule DemoType 1.0.0 {\n    UINT32 v\n}\n")
        self.assertEqual(errors, [])
        source = tuningaccessors.render_accessors(schema, [])["tuning_demo.cpp"]
        self.assertIn('return "DemoType";', source)


class CommandLineTest(unittest.TestCase):
    def run_main(self, *args):
        out, err = io.StringIO(), io.StringIO()
        with redirect_stdout(out), redirect_stderr(err):
            result = aectuninggen.main(list(args))
        return result, out.getvalue(), err.getvalue()

    def test_check_mode_writes_nothing(self):
        with TemporaryTree({"demo.schema": MODULE_SCHEMA}, {"demo.toml": "[DemoType]\nsmall = 3\n"}) as tree:
            result, _, _ = self.run_main("--schema-dir", tree.schema_dir, "--default-dir", tree.default_dir,
                                         "--registry", tree.registry, "--check")
            self.assertEqual(result, 0)
            self.assertFalse(os.path.exists(tree.out_dir))

    def test_check_mode_reports_errors(self):
        with TemporaryTree({"demo.schema": "namespace demo\nstruct S {\n    Nope x\n}\n"}) as tree:
            result, _, err = self.run_main("--schema-dir", tree.schema_dir, "--default-dir", tree.default_dir,
                                           "--check")
            self.assertEqual(result, 1)
            self.assertIn(os.path.join(tree.schema_dir, "demo.schema") + ":3: unknown type 'Nope'", err)

    def test_list_outputs(self):
        with TemporaryTree({"demo.schema": MODULE_SCHEMA}) as tree:
            result, out, _ = self.run_main("--schema-dir", tree.schema_dir, "--list-outputs")
            self.assertEqual(result, 0)
            self.assertEqual(out.split(), ["tuning_demo.h", "aectuningrecords.h", "aecdefaulttuning.h",
                                           "aecdefaulttuning.cpp", "tuning_demo.cpp", "tuning_demo_module.h"]
                             + tuningstore.OUTPUT_NAMES + tuningsource.OUTPUT_NAMES)

    def test_empty_schema_gives_umbrella_and_empty_table(self):
        with TemporaryTree() as tree:
            result, _, _ = self.run_main("--schema-dir", tree.schema_dir, "--default-dir", tree.default_dir,
                                         "--registry", tree.registry, "--out-dir", tree.out_dir)
            self.assertEqual(result, 0)
            self.assertEqual(sorted(os.listdir(tree.out_dir)),
                             sorted(["aecdefaulttuning.cpp", "aecdefaulttuning.h", "aectuningrecords.h"]
                                    + tuningstore.OUTPUT_NAMES + tuningsource.OUTPUT_NAMES))
            with open(os.path.join(tree.out_dir, "aecdefaulttuning.cpp"), encoding="utf-8") as handle:
                self.assertIn("std::array<AECDefaultTuningModule, 0> g_aecDefaultTuningModules", handle.read())

    def test_unchanged_files_are_not_rewritten_and_stale_headers_go(self):
        with TemporaryTree({"demo.schema": MODULE_SCHEMA}) as tree:
            arguments = ["--schema-dir", tree.schema_dir, "--default-dir", tree.default_dir, "--registry",
                         tree.registry, "--out-dir", tree.out_dir]
            self.assertEqual(self.run_main(*arguments)[0], 0)
            header = os.path.join(tree.out_dir, "tuning_demo.h")
            os.utime(header, (1, 1))
            stale = os.path.join(tree.out_dir, "tuning_gone.h")
            open(stale, "w").close()
            self.assertEqual(self.run_main(*arguments)[0], 0)
            self.assertEqual(os.stat(header).st_mtime, 1)
            self.assertFalse(os.path.exists(stale))

    def test_output_is_deterministic(self):
        first, errors = aectuninggen.generate(os.path.join(FIXTURES, "schema"), os.path.join(FIXTURES, "default"),
                                             os.path.join(FIXTURES, "modules.list"))
        self.assertEqual(errors, [])
        second, _ = aectuninggen.generate(os.path.join(FIXTURES, "schema"), os.path.join(FIXTURES, "default"),
                                             os.path.join(FIXTURES, "modules.list"))
        self.assertEqual(first, second)


if __name__ == "__main__":
    unittest.main()
