#!/usr/bin/env python3
"""Prints docs/wire-dumps.md: bytes of each kind of record and object, line by line with remarks.

    python3 docs/wire_dumps.py > docs/wire-dumps.md
    python3 docs/wire_dumps.py --check docs/wire-dumps.md

The forms are those of python/trelvo_wire.py. A test reads every dump with the library.
"""

import pathlib
import struct
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "python"))
import trelvo_wire as wire  # noqa: E402

HEAD = """# Wire format, byte by byte

One example of each flat record and each kind of generic object, as it stands in a property or a file.
[The wire format](wire-format.md) has the rules. All numbers are little-endian. This page is made by
`docs/wire_dumps.py`.
"""

# What fields hold here; the rest have small numbers.
SAMPLES = {
    "mcc": 262, "mnc": 7, "lac": 0x1234, "cid": 0xA1B2, "ucid": 0x0012A1B2, "tac": 0x4E21,
    "timeStamp": 1700000000, "latitude": 52.5163, "longitude": 13.3777, "altitude": 34.0,
    "altitudeUncertainty": 12.0, "majorAxis": 120, "minorAxis": 80, "angle": 0.5,
    "horizontalCepUncertainty": 95.0, "speed": 13.9, "speedUncertainty": 0.5, "course": 84.4,
    "courseUncertainty": 2.5, "floorId": 3, "technology": 1, "source": 1, "measurementId": 42,
    "arfcn": 62, "bsic": 21, "uarfcnDl": 10663, "pcpich": 312, "earfcn": 1300, "pci": 401,
    "rxLevel": 47, "rsrp": 52, "rsrq": 20, "rscp": 40, "ecNo": 30, "timingAdvance": 3,
    "ssid": 5, "apLatitude": 1253149696, "apLongitude": 159906816, "txLevel": 20, "sid": 4182,
    "nid": 3, "bsid": 9001, "elapsedRealtimeTimeStamp": 86400000,
    "unreliableStateTimeStamp": 1700000000,
}
LATITUDE_CODE, LONGITUDE_CODE = 1253149696, 159906816
WITH_LEVELS_BELOW_ZERO = {"WlanApMeasurement": {"rxLevel": -61, "txLevel": 17}}
BSSID = bytes.fromhex("001122334455")

# The radio of each object key, and its records: identity, serving cell, neighbour, frequency.
RADIOS = {
    "Geran": (100, 109, 110, 102), "UtraFdd": (101, 111, 112, 103),
    "UtraTdd": (101, 134, 135, 131), "EUtra": (121, 118, 119, 120), "Cdma": (122, 126, 127, 123)}
AREA, GNSS_DATA, WLAN_DN, WLAN_AP = 104, 130, 128, 129
FEW = 2  # fields of a record inside another
WITHOUT_WIRE_FORM = {("CellularObjectInjection", "dn")}


class Dump:
    """Lines of a dump: the offset, the bytes, the remark."""

    def __init__(self):
        self.lines, self.offset = [], 0

    def add(self, data, remark):
        for start in range(0, len(data), 8):
            part = data[start:start + 8]
            text = " ".join(f"{byte:02X}" for byte in part)
            self.lines.append(f"{self.offset:04X}  {text:<24} {remark if start == 0 else ''}".rstrip())
            self.offset += len(part)

    def number(self, primitive, value, remark):
        self.add(wire.PRIMITIVES[primitive].pack(value), remark)

    def text(self):
        return "```hexdump\n" + "\n".join(self.lines) + "\n```\n"


def sample(form, field):
    value = WITH_LEVELS_BELOW_ZERO.get(form.name, {}).get(field.name, SAMPLES.get(field.name, 1))
    if field.type in ("f32", "f64"):
        return float(value)
    if form.name == "Coverage" and field.name in ("latitude", "longitude"):
        return LATITUDE_CODE if field.name == "latitude" else LONGITUDE_CODE
    return int(value)


def shown(field, value):
    if field.type == "f32":
        return f"{field.name} {wire.shortest_single(struct.unpack('<f', struct.pack('<f', value))[0])}"
    if field.name in ("lac", "cid", "ucid", "tac"):
        return f"{field.name} 0x{value:X}"
    return f"{field.name} {value}"


def add_record(dump, class_id, few=False):
    form = wire.RECORDS[class_id]
    dump.number("u16", class_id, f"class id {class_id}: {form.name}")
    add_form(dump, form, few)


def chosen(form, few):
    """The fields that an example has."""
    fields = [field for field in form.fields if field.type != "nothing"]
    return fields[:FEW] if few else fields


def add_form(dump, form, few):
    fields = chosen(form, few)
    dump.number("u8", 1, "version" if form.mask is None else f"version of {form.name}")
    if form.mask:
        mask = sum(field.mask for field in fields)
        dump.number(form.mask, mask, f"mask {mask:#x}: {presence(form, fields)}")
    for field in fields:
        add_field(dump, form, field)


def presence(form, fields):
    flagged = [field for field in form.fields if field.mask]
    present = sum(1 for field in fields if field.mask)
    if not flagged:
        return "there are no fields"
    return "all fields follow" if present == len(flagged) else f"{present} of {len(flagged)} fields"


def add_field(dump, form, field):
    if field.type in wire.PRIMITIVES:
        value = sample(form, field)
        dump.number(field.type, value, shown(field, value))
    elif field.type == "Coverage":
        add_form(dump, wire.COVERAGE, few=True)
    elif field.type == "counted bytes":
        dump.number("u8", len(BSSID), f"{field.name}: six bytes")
        dump.add(BSSID, BSSID.hex(":"))
    else:
        add_form(dump, wire.RECORDS[int(field.type.split()[1])], few=True)


def add_object(dump, key, few=False):
    """An object with all its properties, or with the first one alone."""
    name = wire.OBJECT_NAMES[key]
    rows = [(each, *row) for each, row in wire.PROPERTIES[key].items()
            if (name, row[0]) not in WITHOUT_WIRE_FORM][:1 if few else None]
    dump.number("u16", key, f"object key {key}: {name}")
    dump.number("u32", len(rows), "one property" if len(rows) == 1 else f"{len(rows)} properties")
    for property_key, property_name, tag in rows:
        what = wire.TAGS[tag][0]
        dump.add(struct.pack("<HH", tag, property_key), f"tag {tag} ({what}), key {property_key}: "
                 f"{property_name}")
        add_payload(dump, name, property_name, tag)


def add_payload(dump, owner, name, tag):
    if tag == wire.RECORD:
        add_record(dump, record_of(owner, name), few=True)
    elif tag == wire.COLLECTION:
        dump.number("u32", 1, "one element")
        add_element(dump, owner, name)
    else:
        primitive = wire.TAGS[tag][1]
        dump.number(primitive, SAMPLES[name], str(SAMPLES[name]))


def add_element(dump, owner, name):
    if name == "nwMeasurementCollection":
        dump.add(struct.pack("<HH", wire.RECORD, 0), "tag 14 (record), key 0")
        add_record(dump, RADIOS[radio_of(owner)][2], few=True)
        return
    dump.add(struct.pack("<HH", wire.OBJECT, 0), "tag 13 (object), key 0")
    keys = {each: key for key, each in wire.OBJECT_NAMES.items()}
    add_object(dump, keys[element_of(owner, name)], few=True)


def radio_of(owner):
    return next(radio for radio in RADIOS if owner.startswith(radio))


def record_of(owner, name):
    if name in ("gnssMeasurementData", "measurementData"):
        return GNSS_DATA
    if name == "wlanApMeasurement":
        return WLAN_AP
    if name == "coverage":
        return AREA
    if owner.startswith("Wlan"):
        return WLAN_DN
    if owner == "CellularObjectInjection":
        return AREA
    return RADIOS[radio_of(owner)][
        {"dn": 0, "servingCellMeasurement": 1, "neighborCellMeasurement": 2, "frequencyInfo": 3}[name]]


def element_of(owner, name):
    if name == "neighborCellInjectionCollection":
        return radio_of(owner) + "NeighborCellInjection"
    kind = name[:-len("Collection")]
    for word in ("Measurement", "Injection"):
        if kind.endswith(word):
            radio = kind[:-len(word)]
    if radio in ("cellularObject", "gnss", "wlan"):
        return radio[0].upper() + radio[1:] + word_of(kind)
    radio = {"eutra": "EUtra"}.get(radio, radio[0].upper() + radio[1:])
    return radio + ("Cell" if "Measurement" in kind else "ServingCell") + word_of(kind)


def word_of(kind):
    return "Measurement" if kind.endswith("Measurement") else "Injection"


def page():
    parts = [HEAD, "## Flat records\n"]
    for class_id, form in wire.RECORDS.items():
        dump = Dump()
        add_record(dump, class_id)
        parts.append(f"### Bytes of {class_id} `{form.name}`\n\n{dump.text()}")
    parts.append("## Generic objects\n")
    for key, name in wire.OBJECT_NAMES.items():
        dump = Dump()
        add_object(dump, key)
        parts.append(f"### Bytes of object key {key}, `{name}`\n\n{dump.text()}")
    return "\n".join(parts)


def check(path):
    if pathlib.Path(path).read_text(encoding="utf-8") != page():
        sys.exit(f"{path} is not what this program prints")


if __name__ == "__main__":
    if sys.argv[1:2] == ["--check"]:
        check(sys.argv[2])
    else:
        print(page(), end="")
