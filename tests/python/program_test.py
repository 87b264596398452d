"""What `trelvo show` says of a file is what the second reader reads there."""

import json
import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import unittest

import wire_files

import trelvo_wire

sys.setrecursionlimit(20000)  # for what is nested 512 levels deep
PROGRAM = os.environ["TRELVO_PROGRAM"]
OBSERVATIONS = sorted(path for kind in ("nmea/*.log", "geosubmit/*.json", "cell/*.csv")
                      for path in (wire_files.SOURCE / "examples" / "data").glob(kind))
CLASS_ID_SIZE = 2
STOPS = re.compile(r"stops at byte (\d+): (.*)$", re.MULTILINE)
# "00000006  06 00 cd 00 ...   key 205, tag 6 uint32: 1700000100", or the root, without key and tag.
RAW_LINE = re.compile(r"([0-9a-f]{8})  (?:[0-9a-f]{2} )*[0-9a-f]{2} +"
                      r"(?:key (\d+), tag (\d+) [a-z0-9]+(?:: )?|(?=object ))(.*)$")


def plain(shown):
    """Takes away what the program adds to a value: unit, degrees, split identity, date."""
    if isinstance(shown, list):
        return [plain(item) for item in shown]
    if not isinstance(shown, dict):
        return shown
    if "class" not in shown and not {"type", "encoding"} & shown.keys():
        return shown["code"] if "code" in shown else shown["value"]
    return {name: plain(item) for name, item in shown.items()}


def raw_lines(properties):
    """(offset, key, tag, what follows) of all values, as the program prints them under --raw."""
    for value in properties:
        text = {12: lambda v: f"{len(v)} byte", 13: lambda v: f"object {v.key},",
                14: lambda v: f"class {wire_files.class_ids()[v.name]} {v.name}, "
                              f"{v.end - v.offset} bytes",
                15: lambda v: f"{len(v)} element"}.get(value.tag, lambda v: None)(value.value)
        yield value.offset, value.key, value.tag, text
        if value.tag == 13:
            yield from raw_lines(value.value.properties)
        elif value.tag == 15:
            yield from raw_lines(value.value)


def number_of(text, tag):
    if tag == 11:
        return text == "true"
    if tag == 9:
        return trelvo_wire.shortest_single(struct.unpack("<f", struct.pack("<f", float(text)))[0])
    return float(text) if tag == 10 else int(text)


class Program(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = pathlib.Path(folder.name) / "file.trelvo"

    def show(self, option):
        return subprocess.run([PROGRAM, "show", option, self.path], capture_output=True,
                              encoding="utf-8")

    def read(self):
        """What both readers have in common: the whole objects, and why they stop."""
        found = []
        with open(self.path, "rb") as file:
            try:
                for root in trelvo_wire.objects(file):
                    found.append(root)
            except trelvo_wire.WireError as error:
                return found, error
        return found, None

    def expect_same_json(self, data):
        self.path.write_bytes(data)
        read, error = self.read()
        shown = self.show("--ndjson")
        lines = [plain(json.loads(line)) for line in shown.stdout.splitlines()]
        expected = [{"offset": root.offset, **root.to_json()} for root in read]
        # repr tells 1 from True and shows which values differ.
        self.assertEqual(list(map(normal, lines[:len(read)])), list(map(normal, expected)))
        self.expect_same_end(shown, error)
        if error is None:
            self.assertEqual(len(lines), len(read))
        return read

    def expect_same_end(self, shown, error):
        self.assertEqual(shown.returncode, 0 if error is None else 1, shown.stderr)
        if error is None:
            self.assertEqual(shown.stderr, "")
            return
        offset, reason = STOPS.search(shown.stderr).groups()
        cut_off = "the input ends inside"
        self.assertEqual(error.reason.startswith(cut_off), reason.startswith(cut_off), reason)
        if reason.startswith(cut_off):
            self.assertEqual(error.offset, int(offset))
        else:  # the program tells where a record begins, the second reader what is wrong in it
            self.assertLessEqual(int(offset), error.offset + CLASS_ID_SIZE)

    def expect_same_raw(self, data):
        self.path.write_bytes(data)
        read, error = self.read()
        self.assertIsNone(error)
        shown = filter(None, map(RAW_LINE.match, self.show("--raw").stdout.splitlines()))
        lines = [line.groups() for line in shown]
        expected = []
        values = {}
        for root in read:
            expected.append((root.offset, None, None, f"object {root.key},"))
            for line in raw_lines(root.properties):
                expected.append(line)
            values.update((value.offset, value.value) for value in all_values(root.properties))
        self.assertEqual(len(lines), len(expected))
        for (offset, key, tag, text), (at, its_key, its_tag, its_text) in zip(lines, expected):
            self.assertEqual((int(offset, 16), key and int(key), tag and int(tag)),
                             (at, its_key, its_tag))
            if its_text is not None:
                self.assertTrue(text.startswith(its_text), f"{text!r} {its_text!r}")
            elif 0 < its_tag < 12:
                self.assertEqual(repr(number_of(text, its_tag)), repr(values[at]))

    def test_every_golden_vector(self):
        data = b"".join(data for _, data in wire_files.vectors())
        self.assertEqual(len(self.expect_same_json(data)), 239)
        self.expect_same_raw(data)

    def test_odd_files(self):
        whole = b""
        for name, data in wire_files.odd_files().items():
            if "mask" in name:
                continue  # the library reads records, and its test has these
            with self.subTest(name):
                self.expect_same_json(data)
                if self.read()[1] is None:
                    whole += data
        self.assertGreater(len(trelvo_wire.loads(whole)), 10)
        self.expect_same_raw(whole)

    def test_damaged_files(self):
        whole = [data for _, data in wire_files.vectors()]
        for name, data in wire_files.damaged(whole, 25, seed=11):
            with self.subTest(name, data=data.hex()):
                self.expect_same_json(data)

    def test_the_pages_of_this_project(self):
        dumps = [dump for page in (wire_files.SOURCE / "README.md", wire_files.PAGE)
                 for dump in wire_files.hex_dumps(page)]
        self.assertGreaterEqual(len(dumps), 2)
        for dump in dumps:
            self.assertEqual(len(self.expect_same_json(dump)), 1)
            self.expect_same_raw(dump)

    def test_every_observation_of_the_demo(self):
        self.assertGreater(len(OBSERVATIONS), 15)
        everything = b""
        for path in OBSERVATIONS:
            done = subprocess.run([PROGRAM, "import", path, "-o", self.path], capture_output=True,
                                  text=True)
            self.assertEqual(done.returncode, 0, done.stderr)
            everything += self.path.read_bytes()
        self.assertGreater(len(self.expect_same_json(everything)), 500)
        self.expect_same_raw(everything)


def all_values(properties):
    for value in properties:
        yield value
        if value.tag == 13:
            yield from all_values(value.value.properties)
        elif value.tag == 15:
            yield from all_values(value.value)


def normal(item):
    """Text that is equal where two JSON values are; 1.0 and 1 are one number to JSON."""
    if isinstance(item, dict):
        return {name: normal(content) for name, content in item.items()}
    if isinstance(item, list):
        return [normal(content) for content in item]
    if isinstance(item, float) and item.is_integer():
        return repr(int(item))
    return repr(item)


if __name__ == "__main__":
    unittest.main()
