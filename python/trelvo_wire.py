#!/usr/bin/env python3
"""Reads the wire format of trelvocore, by docs/wire-format.md and with the standard library alone.

    python3 trelvo_wire.py FILE...          prints one JSON object a line; - is standard input

    import trelvo_wire
    with open("drive.trelvo", "rb") as file:
        for container in trelvo_wire.objects(file):
            print(container.name, container.to_json())

It shares no code with the library, so that each can be held against the other.

The JSON has the names and the nesting that `trelvo show --ndjson` has, and of each value what is on
the wire: coordinate codes instead of degrees, reporting codes instead of levels. Numbers without a
name or of another type than the format gives them come as {"value": ..., "type": ...}, strings that
are not UTF-8 as {"value": hexadecimal, "encoding": "hex"}, what JSON cannot hold of floating point
as "nan", "inf" and "-inf". A second property of the same key has "#2" behind its name.

Bytes may be anything: what is cut off, refused or nested too deep raises WireError, which tells the
byte, and memory stays in proportion to the bytes that are there.
"""

import contextlib
import io
import json
import math
import os
import struct
import sys
from dataclasses import dataclass
from typing import Any, BinaryIO, Dict, Iterator, List, NamedTuple, Optional, Tuple

MAX_DEPTH = 512
BLOCK = 1 << 16
ROUNDS_TO_SINGLE = 2.0 ** 128 - 2.0 ** 103  # below it, the nearest single is finite

PRIMITIVES = {name: struct.Struct("<" + letter) for name, letter in (
    ("u8", "B"), ("u16", "H"), ("u32", "I"), ("u64", "Q"),
    ("i8", "b"), ("i16", "h"), ("i32", "i"), ("i64", "q"), ("f32", "f"), ("f64", "d"))}

# Tag: the type's name and, where there is one, the primitive of its payload.
STRING, OBJECT, RECORD, COLLECTION = 12, 13, 14, 15
TAGS = {
    0: ("none", None), 1: ("int8", "i8"), 2: ("uint8", "u8"), 3: ("int16", "i16"),
    4: ("uint16", "u16"), 5: ("int32", "i32"), 6: ("uint32", "u32"), 7: ("int64", "i64"),
    8: ("uint64", "u64"), 9: ("float", "f32"), 10: ("double", "f64"), 11: ("boolean", "u8"),
    STRING: ("string", None), OBJECT: ("object", None), RECORD: ("record", None),
    COLLECTION: ("collection", None)}
BOOLEAN = 11


class Field(NamedTuple):
    """A row of a field table. A mask of 0 says that the field is always there."""
    mask: int
    name: str
    type: str


class Form(NamedTuple):
    """What a class of flat records looks like. Without `mask` (its type), there is no mask."""
    name: str
    mask: Optional[str]
    limit: int
    fields: Tuple[Field, ...]


def _form(name: str, mask: Optional[str], limit: int, *rows: Tuple[int, str, str]) -> Form:
    return Form(name, mask, limit, tuple(Field(*row) for row in rows))


ANY = 0xFFFFFFFF
COVERAGE = _form(
    "Coverage", "u16", 0xFF, (0x01, "latitude", "i32"), (0x02, "longitude", "i32"),
    (0x08, "majorAxis", "u32"), (0x10, "minorAxis", "u32"), (0x20, "angle", "f32"),
    (0x04, "altitude", "f32"), (0x40, "altitudeUncertainty", "f32"),
    (0x80, "horizontalCepUncertainty", "f32"))

# Fields stand in wire order.
RECORDS = {
    100: _form("GeranCellDn", "u8", 0x0F, (0x01, "mcc", "u16"), (0x02, "mnc", "u16"),
               (0x04, "lac", "u16"), (0x08, "cid", "u16")),
    101: _form("UtraCellDn", "u8", 0x07, (0x01, "mcc", "u16"), (0x02, "mnc", "u16"),
               (0x04, "ucid", "u32")),
    102: _form("GeranFrequencyInfo", "u8", 0x03, (0x01, "bsic", "u8"), (0x02, "arfcn", "u16")),
    103: _form("UtraFddFrequencyInfo", "u8", 0x03, (0x01, "uarfcnDl", "u16"),
               (0x02, "pcpich", "u16")),
    104: _form("Area", None, 0, (0, "coverage", "Coverage")),
    109: _form("GeranServingCellMeasurement", "u8", 0x1F, (0x10, "nwMeasurement", "record 110"),
               (0x08, "frequency", "u8"), (0x02, "timingAdvance", "u8")),
    110: _form("GeranNwMeasurement", "u8", 0x0F, (0x01, "frequencyInfo", "record 102"),
               (0x02, "lac", "u16"), (0x04, "cid", "u16"), (0x08, "rxLevel", "u8")),
    111: _form("UtraFddServingCellMeasurement", "u8", 0x87,
               (0x80, "nwMeasurement", "record 112"), (0x01, "lac", "u16")),
    112: _form("UtraFddNwMeasurement", "u8", 0x7F, (0x01, "frequencyInfo", "record 103"),
               (0x08, "ucid", "u32"), (0x02, "uarfcnUl", "u16"), (0x04, "utraCarrierRssi", "u8"),
               (0x10, "ecNo", "u8"), (0x20, "rscp", "i8"), (0x40, "pathloss", "u8")),
    113: _form("PositionEstimate", "u32", ANY, (0x00001, "timeStamp", "u32"),
               (0x00002, "latitude", "f64"), (0x00004, "longitude", "f64"),
               (0x00008, "horizontalCepUncertainty", "f64"), (0x00010, "majorAxis", "f64"),
               (0x00020, "minorAxis", "f64"), (0x00040, "angle", "f64"),
               (0x00080, "altitude", "f64"), (0x00100, "altitudeUncertainty", "f64"),
               (0x00200, "speed", "f64"), (0x00400, "speedUncertainty", "f64"),
               (0x00800, "course", "f64"), (0x01000, "courseUncertainty", "f64"),
               (0x08000, "floorId", "i32"), (0x02000, "technology", "i32"),
               (0x04000, "source", "i32"), (0x20000, "measurementId", "u32"),
               (0x10000, "buildingId", "nothing")),
    118: _form("EUtraServingCellMeasurement", "u8", 0x07, (0x01, "nwMeasurement", "record 119"),
               (0x02, "timingAdvance", "u16")),
    119: _form("EUtraNwMeasurement", "u8", 0x1F, (0x01, "frequencyInfo", "record 120"),
               (0x10, "ucid", "u32"), (0x02, "tac", "u16"), (0x04, "rsrp", "u8"),
               (0x08, "rsrq", "u8")),
    120: _form("EUtraFrequencyInfo", "u8", 0x03, (0x01, "earfcn", "u16"), (0x02, "pci", "u16")),
    121: _form("EUtraCellDn", "u8", 0x07, (0x01, "mcc", "u16"), (0x02, "mnc", "u16"),
               (0x04, "ucid", "u32")),
    122: _form("CdmaCellDn", "u8", 0x07, (0x01, "sid", "u16"), (0x02, "nid", "u16"),
               (0x04, "bsid", "u16")),
    123: _form("CdmaFrequencyInfo", "u8", 0x00),
    126: _form("CdmaServingCellMeasurement", "u8", 0x03, (0x02, "nwMeasurement", "record 127")),
    127: _form("CdmaNwMeasurement", "u8", 0x01, (0x01, "frequencyInfo", "record 123")),
    128: _form("WlanDn", "u8", 0x01, (0x01, "bssid", "counted bytes")),
    129: _form("WlanApMeasurement", "u32", ANY, (0x001, "ssid", "u16"), (0x002, "rxLevel", "i8"),
               (0x004, "txLevel", "i8"), (0x100, "rssi", "u8"), (0x008, "distance", "u8"),
               (0x010, "distanceUncertainty", "u8"), (0x020, "band", "u8"),
               (0x040, "apLatitude", "i32"), (0x080, "apLongitude", "i32")),
    130: _form("GnssMeasurementData", "u32", ANY, (0, "coverage", "Coverage"),
               (0x0200, "speed", "f64"), (0x0400, "speedUncertainty", "f64"),
               (0x0800, "course", "f64"), (0x1000, "courseUncertainty", "f64")),
    131: _form("UtraTddFrequencyInfo", "u8", 0x03, (0x01, "uarfcn", "u16"),
               (0x02, "cellParam", "u8")),
    134: _form("UtraTddServingCellMeasurement", "u8", 0x0F, (0x08, "nwMeasurement", "record 135"),
               (0x01, "lac", "u16"), (0x04, "timingAdvance", "u16")),
    135: _form("UtraTddNwMeasurement", "u8", 0x1F, (0x01, "frequencyInfo", "record 131"),
               (0x04, "ucid", "u32"), (0x02, "utraCarrierRssi", "u8"), (0x08, "rscp", "i8"),
               (0x10, "pathloss", "u8")),
}

# Live in memory only; a stream with one of them cannot be read on.
WITHOUT_WIRE_FORM = {
    105: "GeranCell", 106: "GeranNeighborCell", 107: "UtraFddCell", 108: "UtraFddNeighborCell",
    114: "CellularObjectDn", 115: "CellularObject", 116: "EUtraCell", 117: "EUtraNeighborCell",
    124: "CdmaCell", 125: "CdmaNeighborCell", 132: "UtraTddCell", 133: "UtraTddNeighborCell"}

# The properties of each kind of generic object: key, name, tag.
_CELL = ((200, "dn", 14), (202, "servingCellMeasurement", 14), (205, "timeStamp", 6))
_UTRA_CELL = (*_CELL, (207, "unreliableStateTimeStamp", 6))
_NEIGHBOURS = ((303, "nwMeasurementCollection", 15),)
_STATEMENT = ((204, "coverage", 14), (208, "source", 6),
              (307, "neighborCellInjectionCollection", 15))
_NEIGHBOUR_STATEMENT = ((201, "frequencyInfo", 14), (203, "neighborCellMeasurement", 14),
                        (204, "coverage", 14))
_OBJECTS = {
    1: ("MeasurementContainer", (
        (300, "geranMeasurementCollection", 15), (301, "utraFddMeasurementCollection", 15),
        (302, "utraTddMeasurementCollection", 15), (310, "eutraMeasurementCollection", 15),
        (312, "cdmaMeasurementCollection", 15), (314, "wlanMeasurementCollection", 15),
        (315, "gnssMeasurementCollection", 15), (317, "measurementId", 6))),
    2: ("GeranCellMeasurement", _CELL + _NEIGHBOURS),
    3: ("UtraFddCellMeasurement", _UTRA_CELL + _NEIGHBOURS),
    4: ("UtraTddCellMeasurement", _UTRA_CELL + _NEIGHBOURS),
    5: ("Injection", (
        (304, "geranInjectionCollection", 15), (305, "utraFddInjectionCollection", 15),
        (306, "utraTddInjectionCollection", 15), (308, "cellularObjectInjectionCollection", 15),
        (309, "gnssInjectionCollection", 15), (311, "eutraInjectionCollection", 15),
        (313, "cdmaInjectionCollection", 15), (316, "wlanInjectionCollection", 15),
        (317, "measurementId", 6))),
    6: ("GeranServingCellInjection", _CELL + _STATEMENT),
    7: ("UtraFddServingCellInjection", _UTRA_CELL + _STATEMENT),
    8: ("UtraTddServingCellInjection", _UTRA_CELL + _STATEMENT),
    9: ("GeranNeighborCellInjection", _NEIGHBOUR_STATEMENT),
    10: ("UtraFddNeighborCellInjection", _NEIGHBOUR_STATEMENT),
    11: ("UtraTddNeighborCellInjection", _NEIGHBOUR_STATEMENT),
    12: ("CellularObjectInjection", (
        (200, "dn", 14), (204, "coverage", 14), (205, "timeStamp", 6))),
    13: ("GnssInjection", ((130, "gnssMeasurementData", 14), (205, "timeStamp", 6))),
    14: ("EUtraCellMeasurement", _CELL + _NEIGHBOURS),
    15: ("EUtraServingCellInjection", _CELL + _STATEMENT),
    16: ("EUtraNeighborCellInjection", _NEIGHBOUR_STATEMENT),
    17: ("CdmaCellMeasurement", _CELL + _NEIGHBOURS),
    18: ("CdmaServingCellInjection", _CELL + _STATEMENT),
    19: ("CdmaNeighborCellInjection", _NEIGHBOUR_STATEMENT),
    20: ("WlanMeasurement", (
        (129, "wlanApMeasurement", 14), (200, "dn", 14), (205, "timeStamp", 6),
        (206, "elapsedRealtimeTimeStamp", 7))),
    21: ("GnssMeasurement", ((130, "measurementData", 14), (205, "timeStamp", 6))),
    22: ("WlanInjection", (
        (129, "wlanApMeasurement", 14), (200, "dn", 14), (204, "coverage", 14),
        (205, "timeStamp", 6))),
}
OBJECT_NAMES = {key: name for key, (name, _) in _OBJECTS.items()}
PROPERTIES = {object_key: {key: (name, tag) for key, name, tag in rows}
              for object_key, (_, rows) in _OBJECTS.items()}


class WireError(ValueError):
    """Bytes that are no wire form. `offset` is where the input ends or goes wrong."""

    def __init__(self, offset: int, reason: str):
        super().__init__(f"byte {offset}: {reason}")
        self.offset = offset
        self.reason = reason


@dataclass
class Record:
    """A flat record. `fields` has what is present, in wire order, nested records as Record."""
    offset: int
    name: str
    mask: int
    fields: Dict[str, Any]
    end: int = 0  # offset of the first byte behind it

    def to_json(self) -> dict:
        if self.name == "Area":  # nothing but its coverage
            return {**self.fields["coverage"].to_json(), "class": self.name}
        return {"class": self.name,
                **{name: _json_of_field(value) for name, value in self.fields.items()}}


@dataclass
class Value:
    """A property or an element of a collection.

    `value` is None (no value, or a tag above 15), an int, a float (of a single the shortest decimal
    that means it), a bool, bytes (a string), a GenericObject, a Record, or a list of Value.
    """
    offset: int
    tag: int
    key: int
    value: Any

    def to_json(self, expected_tag: Optional[int] = None) -> Any:
        if self.tag == STRING:
            return _json_of_string(self.value)
        if self.tag in (OBJECT, RECORD):
            return self.value.to_json()
        if self.tag == COLLECTION:
            return [element.element_to_json() for element in self.value]
        number = _json_of_float(self.value) if isinstance(self.value, float) else self.value
        if self.tag == expected_tag:
            return number
        return {"value": number, "type": TAGS.get(self.tag, (f"tag {self.tag}",))[0]}

    def element_to_json(self) -> Any:
        if self.key == 0:
            return self.to_json()
        return {"class": "Element", "key": self.key, "value": self.to_json()}


@dataclass
class GenericObject:
    """A bag of properties, in the order of the stream."""
    offset: int
    key: int
    properties: List[Value]

    @property
    def name(self) -> str:
        """The class that the object key stands for, or GenericObject."""
        return OBJECT_NAMES.get(self.key, "GenericObject")

    def get(self, key: int) -> Optional[Value]:
        """The property that counts: the first one of that key."""
        return next((value for value in self.properties if value.key == key), None)

    def to_json(self) -> dict:
        with _room_for_nesting():
            result = {"class": self.name}
            if self.key not in OBJECT_NAMES:
                result["key"] = self.key
            seen: Dict[int, int] = {}
            for value in self.properties:
                name, tag = PROPERTIES.get(self.key, {}).get(
                    value.key, (f"property {value.key}", None))
                seen[value.key] = seen.get(value.key, 0) + 1
                if seen[value.key] > 1:
                    name += f"#{seen[value.key]}"
                result[name] = value.to_json(tag)
            return result


def objects(file: BinaryIO) -> Iterator[GenericObject]:
    """The objects of a file, one after another up to its end, reading no more than it needs."""
    reader = _Reader(file)
    while not reader.at_end():
        yield reader.root()


def loads(data: bytes) -> List[GenericObject]:
    """The objects of a byte string."""
    return list(objects(io.BytesIO(data)))


class _Reader:
    def __init__(self, file: BinaryIO):
        self._file = file
        self._ahead = b""
        self._offset = 0  # of the next byte

    def at_end(self) -> bool:
        if not self._ahead:
            self._ahead = self._file.read(1)
        return not self._ahead

    def root(self) -> GenericObject:
        with _room_for_nesting():
            root = self._object(1)
        # Zeroes behind the last object would be read as objects without an end.
        if root.key == 0:
            raise WireError(root.offset, "no object begins here (object key 0)")
        return root

    def _take(self, count: int, what: str) -> bytes:
        """So many bytes. Takes them in blocks, as a count may claim more than there is."""
        parts = [self._ahead]
        missing = count - len(self._ahead)
        self._ahead = b""
        self._offset += count - missing
        while missing > 0:
            part = self._file.read(min(missing, BLOCK))
            if not part:
                raise WireError(self._offset, f"the input ends inside {what}")
            parts.append(part)
            missing -= len(part)
            self._offset += len(part)
        return b"".join(parts)

    def _number(self, primitive: str, what: str) -> Any:
        form = PRIMITIVES[primitive]
        number = form.unpack(self._take(form.size, what))[0]
        return shortest_single(number) if primitive == "f32" else number

    def _object(self, level: int) -> GenericObject:
        self._check(level)
        offset = self._offset
        key = self._number("u16", "an object key")
        result = GenericObject(offset, key, [])
        if key != 0:
            self._values(result.properties, level)
        return result

    def _check(self, level: int) -> None:
        if level > MAX_DEPTH:
            raise WireError(self._offset, f"more than {MAX_DEPTH} nested levels")

    def _values(self, values: List[Value], level: int) -> None:
        for _ in range(self._number("u32", "a count")):
            offset = self._offset
            tag = self._number("u16", "a type tag")
            key = self._number("u16", "a property key")
            values.append(Value(offset, tag, key, self._payload(tag, level)))

    def _payload(self, tag: int, level: int) -> Any:
        name, primitive = TAGS.get(tag, (None, None))
        if primitive is not None:
            number = self._number(primitive, f"a value of type {name}")
            return number != 0 if tag == BOOLEAN else number
        if tag == STRING:
            count = self._number("u32", "the length of a string")
            return self._take(count, f"a string of {count} bytes")
        if tag == OBJECT:
            return self._object(level + 1)
        if tag == RECORD:
            return self._record_with_class_id()
        if tag == COLLECTION:
            self._check(level + 1)
            elements: List[Value] = []
            self._values(elements, level + 1)
            return elements
        return None

    def _record_with_class_id(self) -> Record:
        offset = self._offset
        class_id = self._number("u16", "a class id")
        if class_id in WITHOUT_WIRE_FORM:
            raise WireError(offset, f"{WITHOUT_WIRE_FORM[class_id]} (class {class_id}) has no "
                                    "wire form")
        if class_id not in RECORDS:
            raise WireError(offset, f"unknown class id {class_id}")
        return self._record(RECORDS[class_id])

    def _record(self, form: Form) -> Record:
        offset = self._offset
        version = self._number("u8", f"the version of {form.name}")
        if version != 1:
            raise WireError(offset, f"{form.name} has version {version}, only 1 is known")
        mask_offset = self._offset
        mask = self._number(form.mask, f"the mask of {form.name}") if form.mask else 0
        if mask > form.limit:
            raise WireError(mask_offset, f"{form.name} has the presence mask {mask:#x}, at most "
                                         f"{form.limit:#x} is known")
        record = Record(offset, form.name, mask, {})
        for field in form.fields:
            if field.mask == 0 or mask & field.mask:
                record.fields[field.name] = self._field(field.type, f"{field.name} of {form.name}")
        record.end = self._offset
        return record

    def _field(self, type_name: str, what: str) -> Any:
        if type_name in PRIMITIVES:
            return self._number(type_name, what)
        if type_name == "nothing":
            return b""
        if type_name == "Coverage":
            return self._record(COVERAGE)
        if type_name == "counted bytes":
            offset = self._offset
            count = self._number("u8", what)
            if count not in (6, 8):
                raise WireError(offset, f"{what} has {count} bytes instead of 6 or 8")
            return self._take(count, what)
        return self._record(RECORDS[int(type_name.split()[1])])


@contextlib.contextmanager
def _room_for_nesting() -> Iterator[None]:
    """Reading, converting and printing take a few calls a level."""
    limit = sys.getrecursionlimit()
    sys.setrecursionlimit(limit + 5 * MAX_DEPTH)
    try:
        yield
    finally:
        sys.setrecursionlimit(limit)


def shortest_single(number: float) -> float:
    """The shortest decimal that is nearest to the same single, as 0.1 for 0.10000000149."""
    if math.isfinite(number):
        for digits in range(1, 9):
            short = float(f"{number:.{digits}g}")
            if abs(short) < ROUNDS_TO_SINGLE and _as_single(short) == _as_single(number):
                return short
    return number


def _as_single(number: float) -> bytes:
    return struct.pack("<f", number)


def _json_of_float(value: float) -> Any:
    return value if math.isfinite(value) else str(value)


def _json_of_string(value: bytes) -> Any:
    try:
        return value.decode("utf-8")
    except UnicodeDecodeError:
        return {"value": value.hex(), "encoding": "hex"}


def _json_of_field(value: Any) -> Any:
    if isinstance(value, Record):
        return value.to_json()
    if isinstance(value, bytes):
        return value.hex(":")
    return _json_of_float(value) if isinstance(value, float) else value


def _print_file(path: str) -> None:
    with open(path, "rb") if path != "-" else contextlib.nullcontext(sys.stdin.buffer) as file:
        for root in objects(file):
            content = root.to_json()
            head = {"class": content.pop("class"), "offset": root.offset}
            with _room_for_nesting():
                print(json.dumps({**head, **content}, separators=(",", ":")))


def main(arguments: List[str]) -> int:
    if arguments in (["-h"], ["--help"]):
        print(__doc__.strip())
        return 0
    if not arguments or any(a.startswith("-") and a != "-" for a in arguments):
        print("usage: trelvo_wire.py FILE...", file=sys.stderr)
        return 2
    for path in arguments:
        try:
            _print_file(path)
            sys.stdout.flush()
        except BrokenPipeError:
            os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
            return 1
        except (OSError, WireError) as error:
            reason = error.strerror if isinstance(error, OSError) else error
            sys.stdout.flush()
            print(f"trelvo_wire.py: {path}: {reason}", file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
