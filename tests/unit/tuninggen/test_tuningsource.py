# Unit tests of the default tuning source (aectuningdefault.json) that aec-tune compiles into default.bin.
import json
import os
import re
import sys
import tempfile
import textwrap
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
REPOSITORY = os.path.normpath(os.path.join(HERE, "..", "..", ".."))
sys.path.insert(0, os.path.join(REPOSITORY, "tuning", "generator"))
sys.dont_write_bytecode = True

import aectuninggen  # noqa: E402
import tuningdefaults  # noqa: E402
import tuningregistry  # noqa: E402
import tuningschema  # noqa: E402
import tuningsource  # noqa: E402

SCHEMA = """\
    namespace shared
    typedef INT32 TableIdType
    typedef TableIdType OtherIdType
    enum LevelType {
        LevelLow = 0
        LevelHigh = 5
    }
    # A zone of the lux index.
    struct ZoneType {
        FLOAT start
        FLOAT end
    }

    namespace demo
    struct UnusedType {
        INT32 value
    }
    # The demo module.
    module DemoType 2.1.7 {
        struct module_version @symbol {
            INT32 major_revision
        }
        # Gains per channel.
        FLOAT gains[3]
        DOUBLE precise
        shared::ZoneType zones[]
        shared::LevelType level
        shared::LevelType levels[4]
        shared::OtherIdType table
        BOOL enable
        CHAR label[8]
        CHAR letter
        STRING name
        STRING names[]
        INT64 smallest
        UINT64 largest
        UINT8 grid[2][3]
        struct rows[2] {
            FLOAT weight
            shared::ZoneType zone
        }
        struct optional[] {
            INT16 code
        }
    }
    module QuietType 1.0.0 {
        INT32 value
    }
    module HiddenType 3.0.0 {
        INT32 value
    }
"""

DEFAULTS = """\
    [DemoType]
    module_version = { major_revision = 2 }
    gains = [1.5, 0.1]
    precise = 0.1
    zones = [{ start = 0.0, end = 150.0 }, { start = 200.0, end = 300.5 }]
    level = "LevelHigh"
    levels = ["LevelLow", 5, 7]
    table = -3
    enable = true
    label = "a\\"b\\\\ü?"
    letter = "x"
    name = "über \\"quoted\\""
    names = ["one", "two"]
    smallest = -9223372036854775808
    largest = 18446744073709551615
    grid = [[1, 2], [4, 5, 6]]
    rows = [{ weight = 0.25, zone = { start = 1.0, end = 2.0 } }]
    optional = [{ code = -7 }]
"""

REGISTRY = """\
    Demo        demo::DemoType
    Absent
    Quiet       demo::QuietType
"""


def read_source(text):
    """The JSON document of an emitted source: its first line is a comment, which aec-tune allows."""
    first, _, rest = text.partition("\n")
    assert first.startswith("// "), first
    return json.loads(rest)


def render(schema_text=SCHEMA, defaults_text=DEFAULTS, registry_text=REGISTRY):
    with tempfile.TemporaryDirectory() as directory:
        schema_dir = os.path.join(directory, "schema")
        default_dir = os.path.join(directory, "default")
        os.makedirs(schema_dir)
        os.makedirs(default_dir)
        with open(os.path.join(schema_dir, "demo.schema"), "w", encoding="utf-8") as handle:
            handle.write(textwrap.dedent(schema_text))
        with open(os.path.join(default_dir, "demo.toml"), "w", encoding="utf-8") as handle:
            handle.write(textwrap.dedent(defaults_text))
        schema, errors = tuningschema.load(schema_dir)
        assert not errors, errors
        modules, errors = tuningdefaults.load_defaults(schema, default_dir)
        assert not errors, errors
        registry, errors = tuningregistry.parse_text(textwrap.dedent(registry_text), "modules.list", schema)
        assert not errors, errors
        files = tuningsource.render_source(schema, modules, registry)
    return read_source(files["aectuningdefault.json"])


def module(document, name):
    return next(item for item in document["modules"] if item["name"] == name)


def member(members, name):
    return next(item for item in members if item["name"] == name)


class SourceLayoutTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.document = render()

    def test_header_and_one_default_mode_table(self):
        self.assertEqual(self.document["header"],
                         {"createdBy": "aectuninggen", "binaryTag": "libaecore default tuning", "flags": 0})
        self.assertEqual(self.document["modeTables"], [{"name": "Main"}])

    def test_registered_modules_in_registry_order_by_registry_name(self):
        self.assertEqual([item["name"] for item in self.document["modules"]], ["Demo", "Quiet"])
        demo = module(self.document, "Demo")
        self.assertEqual(demo["type"], "demo::DemoType")
        self.assertEqual(demo["version"], "2.1.7")
        self.assertEqual(demo["description"], "The demo module.")

    def test_unregistered_and_absent_modules_are_left_out(self):
        names = [item["type"] for item in self.document["modules"]]
        self.assertNotIn("demo::HiddenType", names)

    def test_members_in_schema_order_without_symbol_table_id(self):
        members = module(self.document, "Demo")["members"]
        self.assertEqual([item["name"] for item in members],
                         ["module_version", "gains", "precise", "zones", "level", "levels", "table", "enable",
                          "label", "letter", "name", "names", "smallest", "largest", "grid", "rows", "optional"])
        self.assertEqual(member(members, "module_version")["members"], [{"name": "major_revision", "type": "INT32"}])

    def test_member_types_are_spelt_as_in_the_schema(self):
        members = module(self.document, "Demo")["members"]
        types = {item["name"]: item.get("type") for item in members}
        self.assertEqual(types["gains"], "FLOAT[3]")
        self.assertEqual(types["zones"], "shared::ZoneType[]")
        self.assertEqual(types["levels"], "shared::LevelType[4]")
        self.assertEqual(types["table"], "shared::OtherIdType")
        self.assertEqual(types["label"], "CHAR[8]")
        self.assertEqual(types["name"], "STRING")
        self.assertEqual(types["names"], "STRING[]")
        self.assertEqual(types["grid"], "UINT8[2][3]")
        self.assertEqual(member(members, "gains")["doc"], "Gains per channel.")

    def test_nested_records_are_declared_in_place(self):
        members = module(self.document, "Demo")["members"]
        rows = member(members, "rows")
        self.assertEqual(rows["type"], "[2]")
        self.assertNotIn("typeName", rows)  # the source names it rowsStruct, as the headers do
        self.assertEqual(rows["members"], [{"name": "weight", "type": "FLOAT"},
                                           {"name": "zone", "type": "shared::ZoneType"}])
        self.assertEqual(member(members, "optional")["type"], "[]")
        self.assertNotIn("type", member(members, "module_version"))

    def test_used_types_once_with_qualified_names(self):
        types = {item["name"]: item for item in self.document["types"]}
        self.assertEqual(sorted(types), ["shared::LevelType", "shared::OtherIdType", "shared::ZoneType"])
        self.assertEqual(types["shared::LevelType"]["enum"], {"LevelLow": 0, "LevelHigh": 5})
        self.assertEqual(types["shared::OtherIdType"]["typedef"], "INT32")
        self.assertEqual(types["shared::ZoneType"]["members"], [{"name": "start", "type": "FLOAT"},
                                                               {"name": "end", "type": "FLOAT"}])
        self.assertEqual(types["shared::ZoneType"]["doc"], "A zone of the lux index.")


class SourceValuesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.values = module(render(), "Demo")["values"]

    def test_only_default_values(self):
        self.assertEqual(list(self.values), ["Default"])

    def test_scalars_and_arrays(self):
        values = self.values["Default"]
        self.assertEqual(values["module_version"], {"major_revision": 2})
        self.assertEqual(values["gains"], [1.5, 0.1])
        self.assertEqual(values["precise"], 0.1)
        self.assertIs(values["enable"], True)
        self.assertEqual(values["table"], -3)
        self.assertEqual(values["smallest"], -2**63)
        self.assertEqual(values["largest"], 2**64 - 1)
        self.assertEqual(values["letter"], ord("x"))

    def test_enums_by_name_and_unnamed_values_as_numbers(self):
        values = self.values["Default"]
        self.assertEqual(values["level"], "LevelHigh")
        self.assertEqual(values["levels"], ["LevelLow", "LevelHigh", 7])

    def test_strings_keep_their_text(self):
        values = self.values["Default"]
        self.assertEqual(values["label"], 'a"b\\ü?')
        self.assertEqual(values["name"], 'über "quoted"')
        self.assertEqual(values["names"], ["one", "two"])

    def test_records_and_variable_arrays(self):
        values = self.values["Default"]
        self.assertEqual(values["zones"], [{"start": 0.0, "end": 150.0}, {"start": 200.0, "end": 300.5}])
        self.assertEqual(values["rows"], [{"weight": 0.25, "zone": {"start": 1.0, "end": 2.0}}])
        self.assertEqual(values["optional"], [{"code": -7}])

    def test_multi_dimensional_arrays_are_flat_with_short_rows_filled(self):
        self.assertEqual(self.values["Default"]["grid"], [1, 2, None, 4, 5, 6])

    def test_members_without_defaults_are_left_out(self):
        document = render(defaults_text="[DemoType]\nprecise = 2.0\n")
        self.assertEqual(module(document, "Demo")["values"], {"Default": {"precise": 2.0}})
        self.assertEqual(module(document, "Quiet")["values"], {"Default": {}})

    def test_float_values_survive_the_text_exactly(self):
        document = render(defaults_text="[DemoType]\ngains = [0.30000000000000004, 1e-38, 3.4028234663852886e38]\n")
        self.assertEqual(module(document, "Demo")["values"]["Default"]["gains"],
                         [0.30000000000000004, 1e-38, 3.4028234663852886e38])

    def test_a_value_that_json_cannot_carry_is_an_error(self):
        with self.assertRaisesRegex(tuningsource.SourceError, "not finite"):
            render(defaults_text="[DemoType]\nprecise = nan\n")


class LibraryDefaultSourceTest(unittest.TestCase):
    """The source of the library's own default tuning."""

    @classmethod
    def setUpClass(cls):
        files, errors = aectuninggen.generate(os.path.join(REPOSITORY, "tuning", "schema"),
                                              os.path.join(REPOSITORY, "tuning", "default"),
                                              os.path.join(REPOSITORY, "tuning", "modules.list"))
        assert not errors, errors
        cls.text = files["aectuningdefault.json"]
        cls.document = read_source(cls.text)
        schema, errors = tuningschema.load(os.path.join(REPOSITORY, "tuning", "schema"))
        assert not errors, errors
        cls.registry, errors = tuningregistry.load(os.path.join(REPOSITORY, "tuning", "modules.list"), schema)
        assert not errors, errors

    def test_every_registered_module_with_a_record(self):
        expected = [(item.name, item.decl.qualified) for item in self.registry if item.present]
        self.assertEqual(len(expected), 17)
        self.assertEqual([(item["name"], item["type"]) for item in self.document["modules"]], expected)
        self.assertEqual(module(self.document, "Metering")["type"], "aecMetering::AECCoreMeteringType")
        self.assertEqual(module(self.document, "Metering")["version"], "8.0.1")

    def test_every_module_has_default_values_and_versions_match_the_schema(self):
        for item, registered in zip(self.document["modules"], [r for r in self.registry if r.present]):
            with self.subTest(module=item["name"]):
                self.assertEqual(item["version"], ".".join(map(str, registered.decl.module_version)))
                self.assertTrue(item["values"]["Default"], "a module without defaults would load as zeros")

    def test_type_names_are_unique_and_qualified(self):
        names = [item["name"] for item in self.document["types"]]
        self.assertEqual(len(names), len(set(names)))
        self.assertTrue(all("::" in name for name in names))

    def test_text_is_deterministic_without_symbol_table_ids(self):
        files, _ = aectuninggen.generate(os.path.join(REPOSITORY, "tuning", "schema"),
                                         os.path.join(REPOSITORY, "tuning", "default"),
                                         os.path.join(REPOSITORY, "tuning", "modules.list"))
        self.assertEqual(files["aectuningdefault.json"], self.text)
        self.assertFalse(re.search(r"\bSymbolTableID\b", self.text))


if __name__ == "__main__":
    unittest.main()
