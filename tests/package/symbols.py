"""Checks the name and the exported symbols of the installed library.

Usage: symbols.py READELF LIBRARY

Exported may be what lies in namespace trelvo with its tables, the two C functions, the inline
standard templates that users of the library instantiate as well, and the platform's connectivity
interface, whose platform_default_manager() an application may define itself.
"""

import re
import subprocess
import sys

SONAME = "libtrelvocore.so.1"
C_FUNCTIONS = {"trelvo_core_init", "trelvo_core_fini"}

# vtable, typeinfo, its name, thunks, guard variables; then a possibly const nested name.
OURS = re.compile(r"_Z(T[VIST]|Th[n\d]+_|Tv[n\d]+_[n\d]+_|GV)?N[rVK]*[RO]?6trelvo")
PLATFORM = re.compile(r"_Z(T[VIS])?N[rVK]*3com6ubuntu8location12connectivity")
# Free functions and templates of the standard library: std::..., operator new and delete.
STANDARD = re.compile(r"_Z(T[VIST])?(N[rVK]*[RO]?)?S[tabsiod]")
# Data of theirs: tables, static variables of inline functions, a constant. Optimising the library as
# a whole makes them strong, which is all the same to the dynamic linker.
STANDARD_DATA = re.compile(r"_ZT[VIS](N[rVK]*)?St|_Z(GVZ|Z)N[rVK]*St|_ZSt19piecewise_construct$")

# What coverage, fuzzing, the address sanitizer and Clang's check of function types add to
# instrumented builds.
INSTRUMENTS = re.compile(r"__odr_asan\.|__gcov_|mangle_path$|__(start|stop)___sancov_|_ZT[IS]F")


def allowed(name, binding):
    if OURS.match(name) or PLATFORM.match(name) or name in C_FUNCTIONS:
        return True
    if INSTRUMENTS.match(name) or STANDARD_DATA.match(name):
        return True
    return binding in ("WEAK", "UNIQUE") and STANDARD.match(name) is not None


def exported(table):
    """Yields (name, binding) of the defined dynamic symbols in the output of readelf."""
    for line in table.splitlines():
        fields = line.split()
        if len(fields) != 8 or not fields[0].rstrip(":").isdigit():
            continue
        # Some processors' linkers name sections, too.
        if fields[6] != "UND" and fields[3] != "SECTION":
            yield fields[7], fields[4]


def soname(dynamic):
    found = re.search(r"\(SONAME\).*\[(.*)\]", dynamic)
    return found.group(1) if found else None


def readelf(program, option, library):
    return subprocess.run([program, "--wide", option, library],
                          check=True, capture_output=True, text=True).stdout


def main(program, library):
    name = soname(readelf(program, "--dynamic", library))
    if name != SONAME:
        sys.exit(f"SONAME is {name}, not {SONAME}")
    symbols = list(exported(readelf(program, "--dyn-syms", library)))
    names = {symbol for symbol, _ in symbols}
    if missing := C_FUNCTIONS - names:
        sys.exit(f"not exported: {missing}")
    if foreign := sorted(symbol for symbol, binding in symbols if not allowed(symbol, binding)):
        sys.exit("exported, but not of this library:\n" + "\n".join(foreign))
    print(f"{name}: {len(symbols)} symbols, all of this library")


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])
