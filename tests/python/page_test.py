"""The tables of the second reader are those of docs/wire-format.md, row by row."""

import re
import unittest

import wire_files

import trelvo_wire

PAGE = wire_files.PAGE.read_text(encoding="utf-8")


def sections():
    """The text below each heading of level 2 and 3."""
    parts = re.split(r"^#{2,3} (.*)$", PAGE, flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


def rows(text):
    """The cells of the tables of a section, without head lines."""
    for line in text.splitlines():
        cells = [cell.strip().strip("`") for cell in line.strip("|").split("|")]
        if line.startswith("|") and not set(cells[0]) <= {"-"} and cells[0] not in HEADS:
            yield cells


HEADS = {"Type", "Tag", "Offset", "Mask", "Class id", "Object key", "Key"}
SECTIONS = sections()


class Page(unittest.TestCase):
    def test_primitives(self):
        sizes = {}
        for names, counts, _ in rows(SECTIONS["Primitives"]):
            names = [name.strip(" `") for name in names.split(",")]
            sizes.update(zip(names, map(int, counts.split(","))))
        self.assertEqual(sizes.pop("bool"), 1)
        self.assertEqual(sizes, {name: form.size for name, form in trelvo_wire.PRIMITIVES.items()})

    def test_tags(self):
        table = {int(row[0]): row[2] for row in rows(SECTIONS["Generic objects and values"])
                 if len(row) == 3 and row[1] not in ("2", "by tag")}
        self.assertEqual(table.keys(), trelvo_wire.TAGS.keys())
        for tag, (_, primitive) in trelvo_wire.TAGS.items():
            if tag == trelvo_wire.BOOLEAN:
                self.assertEqual(table[tag], "bool")
            elif primitive is not None:
                self.assertEqual(table[tag], primitive)

    def test_class_ids(self):
        table = {int(row[0]): (row[1], row[2]) for row in rows(SECTIONS["Class ids"])}
        expected = {class_id: (form.name, "yes") for class_id, form in trelvo_wire.RECORDS.items()}
        expected.update((class_id, (name, "no"))
                        for class_id, name in trelvo_wire.WITHOUT_WIRE_FORM.items())
        self.assertEqual(table, expected)

    def test_fields(self):
        forms = {f"{class_id} `{form.name}`": form
                 for class_id, form in trelvo_wire.RECORDS.items()}
        forms["`Coverage`"] = trelvo_wire.COVERAGE
        for heading, form in forms.items():
            with self.subTest(heading):
                table = [(0 if mask == "always" else int(mask, 16), name, kind)
                         for mask, name, kind, _ in rows(SECTIONS[heading])]
                self.assertEqual(table, [field for field in form.fields if field.type != "nothing"])
                self.check_mask(SECTIONS[heading], form)

    def check_mask(self, text, form):
        limit = re.search(r"mask of (\d) bytes?(?:, at most (0x[0-9A-F]+))?", text, re.IGNORECASE)
        if form.mask is None:
            self.assertIn("No mask of its own", text)
            return
        self.assertEqual(int(limit.group(1)), trelvo_wire.PRIMITIVES[form.mask].size)
        self.assertEqual(int(limit.group(2), 16) if limit.group(2) else trelvo_wire.ANY, form.limit)

    def test_the_bit_without_bytes(self):
        silent = [(form.name, field.mask) for form in trelvo_wire.RECORDS.values()
                  for field in form.fields if field.type == "nothing"]
        self.assertEqual(silent, [("PositionEstimate", 0x10000)])
        self.assertIn("Bit 0x10000 says", SECTIONS["113 `PositionEstimate`"])

    def test_object_keys(self):
        table = {int(key): name for key, name in rows(SECTIONS["Object keys"])}
        self.assertEqual(table, trelvo_wire.OBJECT_NAMES)

    def test_properties(self):
        found = {}
        for heading, text in SECTIONS.items():
            if not heading.startswith("Object key"):
                continue
            for object_key in map(int, re.findall(r"\d+", heading)):
                found[object_key] = dict(self.properties(object_key, text))
        self.assertEqual(found, trelvo_wire.PROPERTIES)

    def properties(self, object_key, text):
        for row in rows(text):
            if len(row) != 4 or not row[2].isdigit():
                continue
            only = re.match(r"object keys (.*) only", row[3])
            if only is None or object_key in map(int, re.findall(r"\d+", only.group(1))):
                yield int(row[0]), (row[1], int(row[2]))

    def test_the_worked_example(self):
        dump, = wire_files.hex_dumps(wire_files.PAGE)
        container, = trelvo_wire.loads(dump)
        self.assertEqual(container.to_json(), {
            "class": "MeasurementContainer", "geranMeasurementCollection": [{
                "class": "GeranCellMeasurement", "timeStamp": 1700000000, "dn": {
                    "class": "GeranCellDn", "mcc": 262, "mnc": 7, "lac": 4660, "cid": 41394}}]})


if __name__ == "__main__":
    unittest.main()
