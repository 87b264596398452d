"""Checks of the public headers that the compiler cannot make.

Usage: headers.py SOURCE_ROOT

Every public header is included by <trelvo/trelvo.h>, and only those; every class is exported; every
flat record states its fields in one table.
"""

import pathlib
import re
import sys

UMBRELLA = "trelvo/trelvo.h"

# Flat records without a table of fields, and why.
WITHOUT_TABLE = {
    "WlanDn": "one presence bit covers a length byte and that many bytes",
    "CellularObjectDn": "no presence bits; how many fields count follows from the first",
    "Area": "its one member is a Coverage, which carries the presence bits",
}

INCLUDE = re.compile(r"^#include <(trelvo/[^>]+)>", re.MULTILINE)
# A class in a namespace starts in the first column; one declared ahead ends at once.
CLASS = re.compile(
    r"^(?P<template>template <[^\n]*>\n)?(?:class|struct) (?P<export>TRELVO_EXPORT )?"
    r"(?P<name>\w+)(?: final)?(?:\s*:\s*(?P<bases>[^{;]*))?\s*{", re.MULTILINE)
TABLE = re.compile(r"\bstruct\s+(?:\w+::)*(\w+)::Fields\b")
BASE = re.compile(r"(?:public|protected|private)\s+(?:virtual\s+)?([\w:]+)")


def public_headers(root):
    return {path.relative_to(root / "include").as_posix(): path.read_text(encoding="utf-8")
            for path in sorted((root / "include").rglob("*.h"))}


def umbrella_complaints(headers):
    included = set(INCLUDE.findall(headers.get(UMBRELLA, "")))
    there = set(headers) - {UMBRELLA}
    return ([f"{name} is not included by <{UMBRELLA}>" for name in sorted(there - included)] +
            [f"<{UMBRELLA}> includes {name}, which is not there"
             for name in sorted(included - there)])


def export_complaints(headers):
    return [f"{name}: {found['name']} is not exported"
            for name, text in headers.items() for found in CLASS.finditer(text)
            if not found["template"] and not found["export"]]


def classes(texts):
    """Gives {class: its bases, without their namespaces}."""
    return {found["name"]: {base.split("::")[-1] for base in BASE.findall(found["bases"] or "")}
            for text in texts for found in CLASS.finditer(text)}


def records(bases):
    """The classes that derive from ObjectBase, directly or through others."""
    found = {"ObjectBase"}
    while more := {name for name, of in bases.items() if of & found} - found:
        found |= more
    return found - {"ObjectBase"}


def table_complaints(headers, sources):
    there = records(classes(text for name, text in headers.items()
                            if name.startswith("trelvo/schema/")))
    tables = {name for text in sources for name in TABLE.findall(text)}
    missing = sorted(there - tables - set(WITHOUT_TABLE))
    stale = sorted(set(WITHOUT_TABLE) & tables | set(WITHOUT_TABLE) - there)
    return ([f"{name} has no table of fields and no reason to have none" for name in missing] +
            [f"{name} is listed as a record without a table, and is not one" for name in stale])


def main(root):
    headers = public_headers(root)
    sources = [path.read_text(encoding="utf-8") for path in sorted((root / "schema").glob("*.*"))]
    complaints = (umbrella_complaints(headers) + export_complaints(headers) +
                  table_complaints(headers, sources))
    if complaints:
        sys.exit("\n".join(complaints))
    print(f"{len(headers)} headers, {len(records(classes(headers.values())))} records")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
