"""Shows that the layering check fails on each kind of wrong line, and on no right one."""

import pathlib
import tempfile
import unittest

import layering

LAYERS = "objects:\nschema: objects geometry\ngeometry: objects\ncore: objects\n"


class Layering(unittest.TestCase):
    def complaints(self, file, line, layers=LAYERS):
        """Checks a tree of one file that holds one line."""
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, file)
            path.parent.mkdir(parents=True)
            path.write_text(f"#pragma once\n{line}\n", encoding="utf-8")
            seen, complaints = layering.check(pathlib.Path(folder), layering.read_layers(layers))
        self.assertEqual(seen, 1)
        return complaints

    def assert_right(self, file, line):
        self.assertEqual(self.complaints(file, line), [])

    def assert_wrong(self, file, line, layers=LAYERS):
        complaints = self.complaints(file, line, layers)
        self.assertEqual(len(complaints), 1, complaints)
        self.assertTrue(complaints[0].startswith(file + ": "), complaints)

    def test_a_layer_may_use_itself_and_what_it_states(self):
        self.assert_right("schema/Area.cpp", "#include <trelvo/schema/Area.h>")
        self.assert_right("schema/Area.cpp", "#include <trelvo/gom/Variant.h>")
        self.assert_right("schema/Area.cpp", '#include "objects/FieldTable.h"')
        self.assert_right("schema/Area.cpp", '#include "RadioFamily.h"')
        self.assert_right("schema/Area.cpp", "#include <vector>")
        self.assert_right("schema/Area.cpp", "#include <sys/types.h>")
        self.assert_right("include/trelvo/schema/Area.h", "#include <trelvo/Status.h>")

    def test_a_layer_that_was_not_stated_is_refused(self):
        self.assert_wrong("objects/Buffer.cpp", "#include <trelvo/core/ITime.h>")
        self.assert_wrong("objects/Buffer.cpp", '#include "geometry/Ellipse.h"')
        self.assert_wrong("core/Time.cpp", "#include  <trelvo/schema/Utility.h>")
        self.assert_wrong("include/trelvo/gom/Variant.h", "#  include <trelvo/core/ITime.h>")

    def test_the_platform_never_knows_the_schema_even_if_it_says_so(self):
        self.assert_wrong("core/Time.cpp", "#include <trelvo/schema/Area.h>",
                          LAYERS.replace("core: objects", "core: objects schema"))

    def test_a_single_header_can_be_stated(self):
        layers = LAYERS.replace("objects:\n", "objects: schema/ObjectBaseFactory.h\n")
        self.assertEqual(self.complaints(
            "objects/Variant.cpp", "#include <trelvo/schema/ObjectBaseFactory.h>", layers), [])
        self.assert_wrong("objects/Variant.cpp", "#include <trelvo/schema/Area.h>", layers)
        self.assert_wrong("core/Time.cpp", "#include <trelvo/schema/Area.h>",
                          LAYERS.replace("core: objects", "core: schema/Area.h"))

    def test_geometry_may_use_the_utility_header_of_the_schema_and_no_other(self):
        self.assert_right("geometry/Geodesy.cpp", "#include <trelvo/schema/Utility.h>")
        self.assert_wrong("geometry/Geodesy.cpp", "#include <trelvo/schema/Area.h>",
                          LAYERS.replace("geometry: objects", "geometry: objects schema"))

    def test_headers_of_others_in_a_folder_named_like_a_layer_are_theirs(self):
        self.assert_right("schema/Area.cpp", "#include <core/signal.h>")
        self.assert_wrong("schema/Area.cpp", "#include <core/Deadline.h>")

    def test_the_header_of_all_headers_is_for_users(self):
        self.assert_wrong("schema/Area.cpp", "#include <trelvo/trelvo.h>")

    def test_a_public_header_belongs_to_the_layer_that_has_its_source(self):
        sources = {"Midpoint": "geometry"}
        self.assertEqual(layering.public_header_layer("trelvo/Midpoint.h", sources), "geometry")
        self.assertEqual(layering.public_header_layer("trelvo/Buffer.h", sources), "objects")
        self.assertEqual(layering.public_header_layer("trelvo/core/ITime.h", sources), "core")

    def test_programs_use_public_headers_only(self):
        self.assert_right("tools/trelvo/main.cpp", "#include <trelvo/trelvo.h>")
        self.assert_right("tools/trelvo/main.cpp", '#include "tools/trelvo/App.h"')
        self.assert_wrong("tools/trelvo/main.cpp", '#include "objects/FieldTable.h"')
        self.assert_wrong("bench/geodesy.cpp", "#include <geometry/Ellipse.h>")

    def test_a_header_of_a_folder_without_a_layer_is_refused(self):
        self.assert_wrong("include/trelvo/crypto/ICryptor.h", "#include <trelvo/Status.h>")

    def test_layers_that_use_each_other_are_found(self):
        self.assertIsNone(layering.cycle(layering.read_layers(LAYERS)))
        self.assertIsNotNone(layering.cycle({"a": {"b"}, "b": {"c"}, "c": {"a"}}))


if __name__ == "__main__":
    unittest.main()
