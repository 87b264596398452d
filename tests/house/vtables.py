"""Keeps the order of virtual functions, which compiled programs rely on.

Usage: vtables.py headers SOURCE_ROOT LIST              the public headers declare what LIST says
       vtables.py library SOURCE_ROOT READELF LIBRARY   the library's tables are what they declare
       vtables.py write SOURCE_ROOT LIST                writes LIST anew, for a new SONAME

LIST has a paragraph a class: its bases, then the virtual functions that it declares, in order. New
functions of a class stand behind all slots of its first base that has any, so a line more or
less, or at another place, moves what callers find.
"""

import pathlib
import re
import subprocess
import sys
from dataclasses import dataclass, field
from typing import Dict, List

COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
DIRECTIVE = re.compile(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*$", re.MULTILINE)
ATTRIBUTE = re.compile(r"\[\[.*?\]\]\s*|\bTRELVO_EXPORT\b\s*|\b(?:public|protected|private):\s*")
CLASS = re.compile(r"^\s*(?:template\s*<.*>\s*)?(?:class|struct)\s+(?P<name>\w+)(?:\s+final)?"
                   r"\s*(?::(?!:)\s*(?P<bases>.*))?$", re.DOTALL)
NAMESPACE = re.compile(r"^\s*namespace\s+([\w:]+)\s*$")
VIRTUAL = re.compile(r"\bvirtual\b|\boverride\b|\bfinal\s*$")
FUNCTION = re.compile(r"(~?\w+|operator\W+)\s*\(")

# What stands in a slot besides a function's name: a pure function, the destructor of an abstract
# class, and a hidden function of a stripped library.
WITHOUT_NAME = PURE, NOTHING, UNKNOWN = "__cxa_pure_virtual", "", "?"


@dataclass
class Class:
    """A class of the public headers; names are whole ones, without template arguments."""
    name: str
    bases: List[str]
    functions: List[str] = field(default_factory=list)


def split_at_commas(text):
    """Splits at commas outside of all brackets."""
    parts, depth = [""], 0
    for character in text:
        depth += (character in "<([{") - (character in ">)]}")
        if character == "," and depth == 0:
            parts.append("")
        else:
            parts[-1] += character
    return [part.strip() for part in parts if part.strip()]


def without_templates(text):
    """Takes template arguments away."""
    while "<" in text:
        shorter = re.sub(r"<[^<>]*>", "", text)
        if shorter == text:
            break
        text = shorter
    return text


def signature(function):
    """What tells a function from others of its class: name, const, and of each parameter whether
    it is a value or a function. Types are spelled differently in headers and in symbols."""
    if re.search(r"~\w+", function):
        return "~"
    start = FUNCTION.search(function)
    depth, end = 0, start.end() - 1
    for end in range(start.end() - 1, len(function)):
        depth += (function[end] == "(") - (function[end] == ")")
        if depth == 0:
            break
    parameters = split_at_commas(function[start.end():end])
    kinds = "".join("f" if "(*" in parameter else "v" for parameter in parameters)
    constant = " const" if re.match(r"\s*const\b", function[end + 1:]) else ""
    return f"{start.group(1)}({kinds}){constant}"


class Parser:
    """Reads one header: cuts it at braces and semicolons and keeps what is virtual."""

    def __init__(self):
        self.classes: List[Class] = []
        self._scopes = []  # of each open brace: a namespace's name, a Class, or None

    def parse(self, text):
        text = ATTRIBUTE.sub("", DIRECTIVE.sub("", COMMENT.sub("", text)))
        statement = ""
        for piece in re.split(r"([;{}])", text):
            if piece == "{":
                self._open(" ".join(statement.split()))
            elif piece == "}":
                self._scopes.pop()
            elif piece == ";":
                self._declare(" ".join(statement.split()))
            else:
                statement = piece
                continue
            statement = ""

    def _open(self, statement):
        namespace, opened = NAMESPACE.match(statement), CLASS.match(statement)
        if namespace:
            self._scopes.append(namespace.group(1))
        elif opened:
            bases = [without_templates(re.sub(r"\b(public|protected|private|virtual)\b", "", base))
                     for base in split_at_commas(opened.group("bases") or "")]
            path = [scope if isinstance(scope, str) else scope.name.split("::")[-1]
                    for scope in self._scopes if scope] + [opened.group("name")]
            self._scopes.append(Class("::".join(path), [base.strip() for base in bases]))
            self.classes.append(self._scopes[-1])
        else:
            self._declare(statement)
            self._scopes.append(None)

    def _declare(self, statement):
        scope = self._scopes[-1] if self._scopes else None
        if isinstance(scope, Class) and VIRTUAL.search(statement) and "(" in statement:
            scope.functions.append(re.sub(r"^virtual | = (default|0)$", "", statement))


def read_headers(root):
    """All classes of the public headers by name, bases with their whole names."""
    classes: Dict[str, Class] = {}
    for path in sorted((pathlib.Path(root) / "include").rglob("*.h")):
        parser = Parser()
        parser.parse(path.read_text(encoding="utf-8"))
        classes.update((found.name, found) for found in parser.classes)
    for found in classes.values():
        found.bases = [whole_name(base, found.name, classes) for base in found.bases]
    return classes


def whole_name(base, user, classes):
    """The class that `base` means inside of `user`, or itself when it is none of ours."""
    scopes = user.split("::")[:-1]
    for length in range(len(scopes), -1, -1):
        name = "::".join(scopes[:length] + [base])
        if name in classes:
            return name
    return base


def is_polymorphic(name, classes):
    return name in classes and bool(classes[name].functions or any(
        is_polymorphic(base, classes) for base in classes[name].bases))


def slots(name, classes):
    """The signatures in the primary table of a class, in order."""
    found = classes[name]
    first = next((base for base in found.bases if is_polymorphic(base, classes)), None)
    table = slots(first, classes) if first else []
    inherited = [base for base in found.bases if is_polymorphic(base, classes)]
    declared = [signature(function) for function in found.functions]
    if "~" not in declared and any("~" in slots(base, classes) for base in inherited):
        declared.append("~")  # the compiler's own
    for function in declared:
        if function not in table:
            table += ["~", "~"] if function == "~" else [function]
    return table


def listing(classes):
    """The text of the list."""
    paragraphs = []
    for name in sorted(classes):
        if is_polymorphic(name, classes):
            bases = f" : {', '.join(classes[name].bases)}" if classes[name].bases else ""
            paragraphs.append("\n".join(
                [name + bases] + [f"  {function}" for function in classes[name].functions]))
    return "\n\n".join(paragraphs) + "\n"


def check_list(classes, path):
    kept = pathlib.Path(path).read_text(encoding="utf-8")
    declared = listing(classes)
    if kept != declared:
        sys.exit("\n".join(differences(kept, declared)) +
                 f"\nThe headers do not declare what {path} says: compiled programs would call "
                 "other functions.")


def differences(kept, declared):
    import difflib
    return difflib.unified_diff(kept.splitlines(), declared.splitlines(), "list", "headers",
                                lineterm="")


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def demangled(names):
    text = "\n".join(names)
    output = subprocess.run(["c++filt"], input=text, check=True, capture_output=True, text=True)
    return dict(zip(names, output.stdout.splitlines()))


class Library:
    """The tables of virtual functions in a shared library."""

    def __init__(self, readelf, path):
        self._symbols = {}  # address: name
        self._tables = {}  # name of the table: (address, size)
        for line in run(readelf, "--wide", "--syms", path).splitlines():
            fields = line.split()
            if len(fields) == 8 and fields[0].rstrip(":").isdigit() and fields[6] != "UND":
                address, name = int(fields[1], 16), fields[7].split("@")[0]
                if name.startswith("_ZTVN6trelvo"):
                    self._tables[name] = (address, int(fields[2], 0))
                if name.startswith("_Z"):  # not a label of the compiler's own
                    self._symbols.setdefault(address, name)
        header = run(readelf, "--file-header", path)
        self._word = 8 if "ELF64" in header else 4
        self._relocations = dict(self._read_relocations(run(readelf, "--wide", "--relocs", path)))

    def _read_relocations(self, text):
        """Yields where, and the name of what is put there."""
        for line in text.splitlines():
            named = re.match(r"([0-9a-f]+)\s+[0-9a-f]+\s+R_\S+\s+[0-9a-f]+\s+(\S+)", line)
            plain = re.match(r"([0-9a-f]+)\s+[0-9a-f]+\s+R_\S*RELATIVE\S*\s+([0-9a-f]+)\s*$", line)
            if plain:
                yield int(plain.group(1), 16), self._symbols.get(int(plain.group(2), 16), UNKNOWN)
            elif named:
                yield int(named.group(1), 16), named.group(2).split("@")[0]

    def primary_tables(self):
        """The mangled names in the primary table of each class, by its demangled name."""
        names = demangled(list(self._tables))
        for table, (address, size) in self._tables.items():
            # Ahead of the functions: how far it is to the whole object, and the type; the same
            # again ahead of each further table.
            places = range(address + 2 * self._word, address + size, self._word)
            entries = [self._relocations.get(place, NOTHING) for place in places]
            further = [slot for slot, name in enumerate(entries) if name.startswith("_ZTI")]
            entries = entries[:further[0] - 1] if further else entries
            yield names[table].replace("vtable for ", ""), entries


def signature_of_symbol(text):
    """The signature in a demangled name."""
    text = without_templates(re.sub(r"\[abi:\w+\]| \[clone.*", "", text))
    path = text[:text.index("(")] if "(" in text else text
    return signature(text[path.rfind("::") + 2 if "::" in path else 0:])


def mismatches(table, functions, names):
    """Compares slots with what a library has there; yields what differs."""
    if len(table) != len(functions):
        yield f"{len(functions)} slots, declared are {len(table)}"
    for slot, (declared, there) in enumerate(zip(table, functions)):
        # Of what has no name there, a class that implements it tells.
        if there not in WITHOUT_NAME and signature_of_symbol(names[there]) != declared:
            yield f"slot {slot} is {names[there]}, declared is {declared}"


def check_library(classes, readelf, path):
    tables = dict(Library(readelf, path).primary_tables())
    names = demangled(sorted({name for entries in tables.values() for name in entries}))
    polymorphic = {name for name in classes if is_polymorphic(name, classes)}
    complaints, checked = [], set()
    for name, entries in sorted(tables.items()):
        plain = without_templates(name)
        if plain in polymorphic:
            checked.add(plain)
            complaints += [f"{name}: {text}"
                           for text in mismatches(slots(plain, classes), entries, names)]
    print(f"{len(checked)} of {len(polymorphic)} classes have a table in the library")
    # Only a class that is all inline has none.
    if complaints or 10 * len(checked) < 9 * len(polymorphic):
        sys.exit("\n".join(complaints) or "hardly any table found")


def main(task, root, *arguments):
    classes = read_headers(root)
    if task == "headers":
        check_list(classes, *arguments)
    elif task == "library":
        check_library(classes, *arguments)
    elif task == "write":
        pathlib.Path(*arguments).write_text(listing(classes), encoding="utf-8")
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main(*sys.argv[1:])
