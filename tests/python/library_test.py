"""The library and the second reader take and refuse the same bytes."""

import io
import os
import pathlib
import subprocess
import tempfile
import unittest

import wire_files

import trelvo_wire


def read_by_second_reader(data):
    """What library_reads prints of the same bytes, but for the kind of a failure."""
    stream = io.BytesIO(data)
    ends = []
    try:
        for _ in trelvo_wire.objects(stream):
            ends.append(stream.tell())
    except trelvo_wire.WireError:
        return ends, "stops"
    return ends, "end"


class Library(unittest.TestCase):
    def read_by_library(self, contents):
        with tempfile.TemporaryDirectory() as folder:
            for number, data in enumerate(contents):
                (pathlib.Path(folder) / f"{number:05}").write_bytes(data)
            output = subprocess.run(
                [os.environ["TRELVO_LIBRARY_READS"], *sorted(os.listdir(folder))], cwd=folder,
                check=True, capture_output=True, text=True).stdout
        for line in output.splitlines():
            *ends, how = line.split()
            yield [int(end) for end in ends], "end" if how == "end" else "stops"

    def expect_same(self, files):
        read = list(self.read_by_library(files.values()))
        self.assertEqual(len(read), len(files))
        for (name, data), by_library in zip(files.items(), read):
            with self.subTest(name=name, data=data.hex()):
                self.assertEqual(read_by_second_reader(data), by_library)
        return [how for _, how in read]

    def test_every_golden_vector(self):
        outcomes = self.expect_same(dict(wire_files.vectors()))
        self.assertEqual(outcomes, ["end"] * 239)

    def test_odd_files(self):
        outcomes = self.expect_same(wire_files.odd_files())
        self.assertGreater(outcomes.count("end"), 12)
        self.assertGreater(outcomes.count("stops"), 40)

    def test_every_cut_of_a_file(self):
        data = dict(wire_files.vectors())["pub_geran_cell_measurement_full"]
        self.expect_same({str(end): data[:end] for end in range(len(data))})

    def test_damaged_files(self):
        whole = [data for _, data in wire_files.vectors()] + list(wire_files.odd_files().values())
        outcomes = self.expect_same(dict(wire_files.damaged(whole, 5000, seed=7)))
        self.assertGreater(outcomes.count("end"), 300)
        self.assertGreater(outcomes.count("stops"), 500)


if __name__ == "__main__":
    unittest.main()
