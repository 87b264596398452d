"""The wire forms that the tests of the second reader go through."""

import os
import pathlib
import random
import re
import struct
import sys

SOURCE = pathlib.Path(os.environ["TRELVO_SOURCE_DIR"])
PAGE = SOURCE / "docs" / "wire-format.md"
VECTORS = SOURCE / "tests" / "golden" / "vectors"

sys.path.insert(0, str(SOURCE / "python"))


def generic(key, *values):
    return struct.pack("<HI", key, len(values)) + b"".join(values)


def value(tag, key, payload=b""):
    return struct.pack("<HH", tag, key) + payload


def collection(*values):
    return struct.pack("<I", len(values)) + b"".join(values)


def string(text):
    return struct.pack("<I", len(text)) + text


def record(key, class_id, content):
    return value(14, key, struct.pack("<H", class_id) + content)


def nested(levels):
    """Generic objects in each other, so many of them."""
    data = generic(1)
    for _ in range(levels - 1):
        data = generic(1, value(13, 1, data))
    return data


def hex_dumps(path):
    """The bytes of each hex dump of a page."""
    for block in re.findall(r"^```hexdump\n(.*?)^```$", path.read_text(encoding="utf-8"),
                            re.MULTILINE | re.DOTALL):
        yield b"".join(bytes.fromhex(re.match(r"[0-9A-Fa-f]+  ((?:[0-9A-Fa-f]{2} )*[0-9A-Fa-f]{2})",
                                              line).group(1)) for line in block.splitlines())


def class_ids():
    import trelvo_wire
    return {form.name: class_id for class_id, form in trelvo_wire.RECORDS.items()}


def vectors():
    """Every golden vector by name, as a file that a program can show.

    Of a flat record the vector holds the record alone, of a Coverage less than that.
    """
    ids = class_ids()
    for path in sorted(VECTORS.glob("*.hex")):
        data = bytes.fromhex(path.read_text())
        recipe = path.with_suffix(".txt").read_text()
        written = re.search(r"^write (\S+)", recipe, re.MULTILINE).group(1)
        name = re.search(rf"^new {written} (\w+)", recipe, re.MULTILINE).group(1)
        if name == "Coverage":
            name, data = "Area", b"\1" + data
        yield path.stem, generic(99, record(1, ids[name], data)) if name in ids else data


def odd_files():
    """What no vector has: every type, unknown ones, limits, and every way to be wrong."""
    every_type = [value(tag, tag, b"\xff" * size)
                  for tag, size in zip(range(1, 12), (1, 1, 2, 2, 4, 4, 8, 8, 4, 8, 1))]
    files = {
        "nothing": b"",
        "every type": generic(99, *every_type, value(0, 13), value(77, 14), value(65535, 15)),
        "floats": generic(99, *(value(10, i, struct.pack("<d", number)) for i, number in enumerate(
            (0.0, -0.0, 0.1, 5e-324, 1e300, float("inf"), float("-inf"), float("nan")))),
            *(value(9, 50 + i, struct.pack("<f", number)) for i, number in enumerate(
                (0.1, -2.5e-45, 3.4028234e38, 16777217.0, float("inf"), float("nan"))))),
        "strings": generic(99, value(12, 1, string(b"")), value(12, 2, string(b"a\0b\xff\"\\\n")),
                           value(12, 3, string("äöü€\U0001F6F0\"\\\n\x7f".encode()))),
        "twice": generic(1, *(value(6, 317, struct.pack("<I", i)) for i in range(3)),
                         value(2, 317, b"\1"), value(6, 999, b"\0" * 4)),
        "other tags": generic(1, value(2, 317, b"\1"), value(12, 300, string(b"x")),
                              value(15, 301, collection(value(12, 0, string(b"y"))))),
        "other classes": generic(2, record(200, 101, b"\1\0"), value(
            15, 303, collection(record(0, 112, b"\1\0"), value(2, 0, b"\1")))),
        "element keys": generic(1, value(15, 300, collection(
            value(13, 7, generic(3)), value(13, 0, generic(2)), record(5, 128, b"\1\0")))),
        "collections": generic(99, value(15, 1, collection(value(15, 0, collection()), value(
            15, 0, collection(value(1, 0, b"\x80")))))),
        "object key 0 inside": generic(99, value(13, 1, b"\0\0"), value(2, 3, b"\7")),
        "bits without a field": generic(99, record(1, 111, b"\1\x08"), record(
            2, 129, b"\1\0\0\0\xff"), record(3, 109, b"\1\x05"), record(
                4, 113, b"\1\0\0\xff\xff" + b"\3\0\0\0")),
        "two objects": generic(1) + generic(5, value(6, 317, b"\1\2\3\4")),
        "512 levels": nested(512),
        "513 levels": nested(513),
        "zeroes behind": generic(1) + bytes(64),
        "zeroes": bytes(64),
        "half a key": b"\1",
        "no count": b"\1\0",
        "huge count": struct.pack("<HI", 99, 0xFFFFFFFF) + value(0, 1),
        "huge string": generic(99, value(12, 1, struct.pack("<I", 0xFFFFFFF0) + b"x")),
    }
    for class_id in (0, 99, 105, 114, 133, 136, 65535):
        files[f"class {class_id}"] = generic(99, record(1, class_id, b"\1\0"))
    for length in (0, 5, 6, 7, 8, 9, 255):
        files[f"BSSID of {length}"] = generic(
            99, record(1, 128, b"\1\1" + bytes((length,)) + b"x" * length))
    for version in (0, 2, 255):
        files[f"version {version}"] = generic(99, record(1, 100, bytes((version, 0))))
        files[f"inner version {version}"] = generic(99, record(1, 104, bytes((1, version, 0, 0))))
    for class_id, masks in _masks().items():
        for mask in masks:
            files[f"class {class_id}, mask {mask.hex()}"] = generic(
                99, record(1, class_id, b"\1" + mask + b"\1" * 200))
    return files


def _masks():
    """Of each class with a limit, the masks around it."""
    import trelvo_wire
    masks = {}
    for class_id, form in trelvo_wire.RECORDS.items():
        if form.mask == "u8":
            masks[class_id] = [bytes((mask,)) for mask in (form.limit, form.limit + 1, 255)]
    masks[104] = [b"\1\xff\0", b"\1\0\1", b"\1\xff\xff"]
    return masks


def damaged(files, count, seed):
    """Files with a bit turned, a byte replaced, or an end cut off, the same ones at each run."""
    source = random.Random(seed)
    contents = [data for data in files if data]
    for number in range(count):
        data = bytearray(source.choice(contents))
        for _ in range(source.randint(1, 3)):
            place = source.randrange(len(data))
            kind = source.randrange(4)
            if kind == 0:
                data[place] ^= 1 << source.randrange(8)
            elif kind == 1:
                data[place] = source.randrange(256)
            elif kind == 2:
                data[place:place] = bytes(source.choices(range(256), k=source.randint(1, 6)))
            elif len(data) > 1:
                del data[place:]
                if not data:
                    data = bytearray(b"\0")
        yield f"damage {number}", bytes(data)
