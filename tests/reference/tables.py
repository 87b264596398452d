"""Writes the tables of a program of this folder as C++, into the file beside it."""

import pathlib
import sys


def _nested(fields, values):
    """The values of one row, with braces around those of an array."""
    for field in fields.replace(";", ",").split(","):
        name = field.strip()
        count = int(name[name.index("[") + 1:-1]) if name.endswith("]") else 1
        taken, values = values[:count], values[count:]
        yield "{" + ", ".join(taken) + "}" if count > 1 else taken[0]
    if values:
        raise ValueError("more values than fields")


def _generate(name, tables, literal):
    yield f"// Made by {name}; do not edit.\n// clang-format off\n"
    for struct, fields, array, rows in tables:
        yield f"\nstruct {struct} {{\n  {fields};\n}};\n\nconstexpr {struct} {array}[] = {{\n"
        for row in rows():
            yield "    {" + ", ".join(_nested(fields, [literal(value) for value in row])) + "},\n"
        yield "};\n"


def main(program, tables, literal):
    """Writes the tables, or with --check ends with 1 when they are not those of the file.

    A table is the name of a struct, its fields, the name of the array, and what gives its rows;
    `literal` makes C++ of a value.
    """
    source = pathlib.Path(program)
    target = source.with_suffix(".inc")
    text = "".join(_generate(source.name, tables, literal))
    if "--check" in sys.argv[1:]:
        sys.exit(0 if target.read_text() == text else f"{target} is out of date")
    target.write_text(text)
