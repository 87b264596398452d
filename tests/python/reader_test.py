"""The second reader by itself: values out of bytes written by hand, failures, the command line."""

import io
import json
import pathlib
import struct
import subprocess
import sys
import tempfile
import tracemalloc
import unittest

import wire_files
from wire_files import generic, record, string, value

import trelvo_wire

SCRIPT = wire_files.SOURCE / "python" / "trelvo_wire.py"
CONTAINER = generic(1, value(6, 317, b"\x2a\0\0\0"))


class Reading(unittest.TestCase):
    def only(self, *values):
        """The properties of one object that is read with them."""
        root, = trelvo_wire.loads(generic(99, *values))
        return root.properties

    def test_an_object_knows_key_place_and_properties(self):
        first, second = trelvo_wire.loads(CONTAINER + generic(500))
        self.assertEqual((first.offset, first.key, first.name), (0, 1, "MeasurementContainer"))
        self.assertEqual(first.properties, [trelvo_wire.Value(6, 6, 317, 42)])
        self.assertEqual((second.offset, second.key, second.name), (14, 500, "GenericObject"))
        self.assertEqual(second.properties, [])

    def test_numbers_have_sign_and_width_of_their_tag(self):
        read = self.only(*(value(tag, 0, b"\xfe" + b"\xff" * (size - 1)) for tag, size in
                           ((1, 1), (2, 1), (3, 2), (4, 2), (5, 4), (6, 4), (7, 8), (8, 8))))
        self.assertEqual([item.value for item in read],
                         [-2, 254, -2, 65534, -2, 2**32 - 2, -2, 2**64 - 2])

    def test_a_single_is_the_shortest_decimal_that_means_it(self):
        for text in ("0.1", "1e-45", "3.4028235e+38", "16777216.0", "-0.0", "1.1754944e-38"):
            data = struct.pack("<f", float(text))
            self.assertEqual(repr(self.only(value(9, 0, data))[0].value), text)

    def test_any_byte_but_0_is_true(self):
        read = self.only(value(11, 0, b"\0"), value(11, 0, b"\1"), value(11, 0, b"\x80"))
        self.assertEqual([item.value for item in read], [False, True, True])

    def test_strings_are_bytes(self):
        self.assertEqual(self.only(value(12, 1, string(b"a\0\xff")))[0].value, b"a\0\xff")

    def test_an_unknown_tag_takes_four_bytes(self):
        read = self.only(value(16, 7), value(2, 8, b"\5"))
        self.assertEqual([(item.tag, item.key, item.value) for item in read],
                         [(16, 7, None), (2, 8, 5)])

    def test_the_first_property_of_a_key_counts(self):
        root, = trelvo_wire.loads(generic(1, *(value(2, 317, bytes((i,))) for i in (7, 8))))
        self.assertEqual(root.get(317).value, 7)
        self.assertIsNone(root.get(318))

    def test_a_record_has_its_fields_in_wire_order(self):
        item, = self.only(record(1, 109, bytes.fromhex("01 1A 01 08 2F 03 3F")))
        self.assertEqual((item.value.name, item.value.offset, item.value.end, item.value.mask),
                         ("GeranServingCellMeasurement", 12, 19, 0x1A))
        self.assertEqual(list(item.value.fields), ["nwMeasurement", "frequency", "timingAdvance"])
        self.assertEqual(item.value.fields["nwMeasurement"].fields, {"rxLevel": 47})

    def test_an_area_is_shown_as_its_coverage(self):
        item, = self.only(record(1, 104, bytes.fromhex("01 01 03 00 FF FF FF FF 01 00 00 00")))
        self.assertEqual(item.value.to_json(), {"class": "Area", "latitude": -1, "longitude": 1})

    def test_an_address_is_shown_as_it_is_printed(self):
        item, = self.only(record(1, 128, bytes.fromhex("01 01 06 01 23 45 67 89 AB")))
        self.assertEqual(item.value.to_json(), {"class": "WlanDn", "bssid": "01:23:45:67:89:ab"})

    def test_a_pipe_gives_each_object_as_soon_as_it_is_whole(self):
        class Pipe(io.RawIOBase):
            asked = 0

            def read(self, size=-1):
                self.asked += size
                return CONTAINER[self.asked - size:self.asked]

        pipe = Pipe()
        next(trelvo_wire.objects(pipe))
        self.assertEqual(pipe.asked, len(CONTAINER))


class Failures(unittest.TestCase):
    def expect(self, data, offset, reason):
        with self.assertRaises(trelvo_wire.WireError) as raised:
            trelvo_wire.loads(data)
        self.assertEqual((raised.exception.offset, raised.exception.reason), (offset, reason))

    def test_every_cut_is_told_with_the_end_of_the_input(self):
        for data in dict(wire_files.vectors()).values():
            for end in range(1, len(data)):
                with self.assertRaises(trelvo_wire.WireError) as raised:
                    trelvo_wire.loads(data[:end])
                self.assertEqual(raised.exception.offset, end)
                self.assertIn("the input ends inside", raised.exception.reason)

    def test_what_is_refused_is_told_with_its_byte(self):
        self.expect(b"\0\0", 0, "no object begins here (object key 0)")
        self.expect(CONTAINER + b"\0\0", 14, "no object begins here (object key 0)")
        self.expect(generic(9, record(1, 105, b"")), 10, "GeranCell (class 105) has no wire form")
        self.expect(generic(9, record(1, 136, b"")), 10, "unknown class id 136")
        self.expect(generic(9, record(1, 100, b"\2\0")), 12,
                    "GeranCellDn has version 2, only 1 is known")
        self.expect(generic(9, record(1, 100, b"\1\x10")), 13,
                    "GeranCellDn has the presence mask 0x10, at most 0xf is known")
        self.expect(generic(9, record(1, 104, b"\1\0")), 13,
                    "Coverage has version 0, only 1 is known")
        self.expect(generic(9, record(1, 128, b"\1\1\7")), 14,
                    "bssid of WlanDn has 7 bytes instead of 6 or 8")

    def test_nesting_ends_at_512_levels(self):
        root, = trelvo_wire.loads(wire_files.nested(512))
        self.assertEqual(json.dumps(root.key), "1")
        self.expect(wire_files.nested(513), 512 * 10, "more than 512 nested levels")

    def test_collections_count_as_levels(self):
        data = b""
        for _ in range(511):
            data = value(15, 0, wire_files.collection(*([data] if data else [])))
        trelvo_wire.loads(generic(9, data))
        with self.assertRaises(trelvo_wire.WireError):
            trelvo_wire.loads(generic(9, value(15, 0, wire_files.collection(data))))

    def test_claims_take_no_memory(self):
        claims = (struct.pack("<HI", 9, 0xFFFFFFFF) + value(12, 1, struct.pack("<I", 0xFFFFFFF0)),
                  generic(9, value(15, 1, b"\xff\xff\xff\xff")))
        tracemalloc.start()
        self.addCleanup(tracemalloc.stop)
        for claim in claims:
            with self.assertRaises(trelvo_wire.WireError):
                trelvo_wire.loads(claim)
        self.assertLess(tracemalloc.get_traced_memory()[1], 1 << 20)

    def test_damage_raises_nothing_else(self):
        whole = [data for _, data in wire_files.vectors()] + list(wire_files.odd_files().values())
        failed = 0
        for _, data in wire_files.damaged(whole, 3000, seed=3):
            try:
                for root in trelvo_wire.loads(data):
                    json.dumps(root.properties[0].to_json() if root.properties else None)
            except trelvo_wire.WireError as error:
                self.assertLessEqual(error.offset, len(data))
                failed += 1
        self.assertGreater(failed, 1000)

    def test_the_limit_of_recursion_stays_as_it_was(self):
        limit = sys.getrecursionlimit()
        trelvo_wire.loads(wire_files.nested(512))[0].to_json()
        with self.assertRaises(trelvo_wire.WireError):
            trelvo_wire.loads(wire_files.nested(513))
        self.assertEqual(sys.getrecursionlimit(), limit)


class CommandLine(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_script(self, *arguments, **options):
        return subprocess.run([sys.executable, SCRIPT, *arguments], capture_output=True,
                              cwd=self.folder, **options)

    def write(self, name, data):
        (self.folder / name).write_bytes(data)
        return name

    def test_files_become_a_line_an_object(self):
        files = self.write("a", CONTAINER + CONTAINER), self.write("b", CONTAINER)
        done = self.run_script(*files)
        line = b'{"class":"MeasurementContainer","offset":%d,"measurementId":42}\n'
        self.assertEqual(done.stdout, line % 0 + line % 14 + line % 0)
        self.assertEqual((done.stderr, done.returncode), (b"", 0))

    def test_a_minus_is_standard_input(self):
        done = self.run_script("-", input=CONTAINER)
        self.assertEqual(json.loads(done.stdout)["measurementId"], 42)

    def test_damage_is_told_behind_what_is_whole(self):
        done = self.run_script(self.write("a", CONTAINER + CONTAINER[:-1]))
        self.assertEqual(len(done.stdout.splitlines()), 1)
        self.assertEqual(done.stderr, b"trelvo_wire.py: a: byte 27: the input ends inside a value "
                                      b"of type uint32\n")
        self.assertEqual(done.returncode, 1)

    def test_a_missing_file_is_told(self):
        done = self.run_script("missing")
        self.assertEqual(done.stderr, b"trelvo_wire.py: missing: No such file or directory\n")
        self.assertEqual(done.returncode, 1)

    def test_deep_nesting_is_printed(self):
        done = self.run_script(self.write("deep", wire_files.nested(512)))
        self.assertEqual((done.stderr, done.returncode), (b"", 0))
        self.assertEqual(done.stdout.count(b"MeasurementContainer"), 512)

    def test_wrong_usage_is_explained(self):
        for arguments in ((), ("--json", "a")):
            done = self.run_script(*arguments)
            self.assertEqual((done.stderr, done.returncode),
                             (b"usage: trelvo_wire.py FILE...\n", 2))

    def test_help_is_there(self):
        done = self.run_script("--help")
        self.assertEqual((done.stderr, done.returncode), (b"", 0))
        self.assertIn(b"trelvo_wire.py FILE...", done.stdout)

    def test_a_closed_pipe_ends_it_quietly(self):
        self.write("many", CONTAINER * 20000)
        script = subprocess.Popen([sys.executable, SCRIPT, "many"], stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE, cwd=self.folder)
        script.stdout.readline()
        script.stdout.close()
        self.assertEqual(script.stderr.read(), b"")
        script.stderr.close()
        self.assertEqual(script.wait(), 1)


if __name__ == "__main__":
    unittest.main()
