# Unit tests of the store emitter: the typed module accessors and the prototypes of the module registry.
import os
import re
import sys
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
FIXTURES = os.path.join(HERE, "fixtures")
REPOSITORY = os.path.normpath(os.path.join(HERE, "..", "..", ".."))
sys.path.insert(0, os.path.join(REPOSITORY, "tuning", "generator"))
sys.dont_write_bytecode = True

import tuningregistry  # noqa: E402
import tuningschema  # noqa: E402
import tuningstore  # noqa: E402


def fixture_registry():
    schema, errors = tuningschema.load(os.path.join(FIXTURES, "schema"))
    assert not errors, errors
    registry, errors = tuningregistry.load(os.path.join(FIXTURES, "modules.list"), schema)
    assert not errors, errors
    return registry


class StoreHeaderTest(unittest.TestCase):
    def setUp(self):
        self.text = tuningstore.render_store(fixture_registry())["tuningmoduleregistry.h"]

    def test_counts_the_registered_modules(self):
        self.assertIn("static constexpr UINT32 RegisteredModuleCount = 3;", self.text)
        self.assertIn("static ParameterModule* CreatePrototype(UINT32 index);", self.text)

    def test_present_module_accessor_is_typed_by_its_record(self):
        self.assertIn("virtual fixMetering::FixMeteringType* GetModule_FixMetering(const TuningMode* pBranch, "
                      "UINT32 count, fixMetering::FixMeteringType* pPrevious);", self.text)

    def test_absent_module_accessor_hands_out_the_module(self):
        self.assertIn("virtual ParameterModule* GetModule_fixAbsent(const TuningMode* pBranch, UINT32 count, "
                      "ParameterModule* pPrevious);", self.text)

    def test_accessors_follow_the_registry_order(self):
        names = re.findall(r"GetModule_(\w+)\(", self.text)
        self.assertEqual(names, ["FixMetering", "FixEmpty", "fixAbsent"])

    def test_is_made_to_be_included_in_a_class_body(self):
        self.assertNotIn("#include", self.text)
        self.assertNotIn("#ifndef", self.text)


class StoreSourceTest(unittest.TestCase):
    def setUp(self):
        self.text = tuningstore.render_store(fixture_registry())["tuningmoduleregistry.cpp"]

    def test_includes_the_module_classes_of_present_modules(self):
        self.assertIn('#include "tuning_fixmetering_module.h"', self.text)
        self.assertIn('#include "tuning_fixempty_module.h"', self.text)
        self.assertIn('#include "tuning/cabsenttuningmodule.h"', self.text)
        self.assertIn('#include "tuning/tuningsetmanager.h"', self.text)

    def test_prototypes_by_registry_index(self):
        self.assertIn('case 0: return new (std::nothrow) fixMetering::FixMeteringTypeClass("FixMetering", nullptr);',
                      self.text)
        self.assertIn('case 1: return new (std::nothrow) fixEmpty::FixEmptyTypeClass("FixEmpty", nullptr);',
                      self.text)
        self.assertIn('case 2: return new (std::nothrow) CAbsentTuningModule("fixAbsent");', self.text)
        self.assertIn("default: return nullptr;", self.text)

    def test_present_accessor_goes_through_the_module_class(self):
        body = self.text[self.text.index("TuningSetManager::GetModule_FixMetering("):]
        body = body[:body.index("\n}\n")]
        self.assertIn('GetModuleInternal(GetTableIndex(), "FixMetering", pBranch, count,', body)
        self.assertIn("static_cast<fixMetering::FixMeteringTypeClass*>(pPrevious), 1);", body)
        self.assertIn("return static_cast<fixMetering::FixMeteringTypeClass*>(pFound);", body)

    def test_absent_accessor_passes_the_module_on(self):
        self.assertIn('return GetModuleInternal(GetTableIndex(), "fixAbsent", pBranch, count, pPrevious, 1);',
                      self.text)


class LibraryRegistryTest(unittest.TestCase):
    def test_the_library_registers_270_modules_17_with_records(self):
        schema, errors = tuningschema.load(os.path.join(REPOSITORY, "tuning", "schema"))
        self.assertEqual(errors, [])
        registry, errors = tuningregistry.load(tuningregistry.DEFAULT_PATH, schema)
        self.assertEqual(errors, [])
        files = tuningstore.render_store(registry)
        self.assertEqual(sorted(files), sorted(tuningstore.OUTPUT_NAMES))
        self.assertIn("RegisteredModuleCount = 270;", files["tuningmoduleregistry.h"])
        self.assertEqual(len(re.findall(r"case \d+: return", files["tuningmoduleregistry.cpp"])), 270)
        self.assertEqual(files["tuningmoduleregistry.cpp"].count("CAbsentTuningModule(\""), 253)
        self.assertIn('new (std::nothrow) aecSensorConfig::AECSensorHDRConfigClass("SensorHDRDefaultConfig", '
                      'nullptr)', files["tuningmoduleregistry.cpp"])


if __name__ == "__main__":
    unittest.main()
