"""Holds every #include of the library against what the layers stated that they use.

Usage: layering.py LAYERS_TXT SOURCE_ROOT

A layer is a folder; LAYERS_TXT has a line "layer: used used ..." for each, where a use is a layer or
one public header of it, "schema/ObjectBaseFactory.h". A public header belongs to the layer that has a
source of its name, else to the layer of its folder.
"""

import pathlib
import re
import sys

# Layers that know nothing of what is measured, whatever they state.
KNOW_NO_SCHEMA = ("core", "crypto", "network", "debug")
# Layers below the schema: they may state single headers of it, not all of it.
BELOW_SCHEMA = ("objects", "geometry")

# Public headers that have no source of their name and belong to another layer than their folder's.
HEADERS_ELSEWHERE = {
    "trelvo/schema/Utility.h": "geometry",
    "trelvo/StateEstimateCovariance.h": "geometry",
    "trelvo/Lock.h": "core",
    "trelvo/Lockable.h": "core",
    "trelvo/SingletonPointer.h": "core",
    "trelvo/ICryptoFile.h": "crypto",
    "trelvo/ICryptoLog.h": "crypto",
}

# Headers of properties-cpp, whose folder bears the name of a layer.
FOREIGN = ("core/connection.h", "core/property.h", "core/signal.h")

# Folders of programs. They use the library as everyone does, by its public headers.
USERS = ("tools", "examples", "bench", "fuzz")
# But for the bench of the cipher, which times it without the file around it.
USERS_INSIDE = (("bench/sealed/CipherBench.cpp", "crypto/CounterCipher.h"),)

# The header that includes all others is for users.
UMBRELLA = "trelvo/trelvo.h"

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def read_layers(text):
    """Gives {layer: set of the layers it uses}."""
    layers = {}
    for line in filter(str.strip, text.splitlines()):
        name, _, uses = line.partition(":")
        layers[name.strip()] = set(uses.split())
    return layers


def layer_files(root, layer):
    for path in sorted((root / layer).rglob("*")):
        if path.suffix in (".h", ".cpp"):
            yield path


def find_sources(root, layers):
    """Gives {source name without ending: its layer}."""
    return {path.stem: layer for layer in layers
            for path in layer_files(root, layer) if path.suffix == ".cpp"}


def public_header_layer(path, sources):
    """The layer of a header by the path that an #include names, "trelvo/gom/Variant.h"."""
    if path in HEADERS_ELSEWHERE:
        return HEADERS_ELSEWHERE[path]
    if pathlib.Path(path).stem in sources:
        return sources[pathlib.Path(path).stem]
    folders = path.split("/")[1:-1]
    return "objects" if not folders or folders[0] == "gom" else folders[0]


def included_layer(path, quoted, own, layers, sources):
    """The layer that an #include reaches into, or None for the standard library and the system."""
    if path.startswith("trelvo/"):
        return public_header_layer(path, sources)
    folder = path.split("/")[0]
    if "/" in path and folder in layers and path not in FOREIGN:
        return folder
    return own if quoted else None


def stated(own, path, target, layers):
    """Whether layer `own` states that it uses the header `path` of the layer `target`."""
    if path.removeprefix("trelvo/") in layers[own]:
        return True
    return target in layers[own] and not (target == "schema" and own in BELOW_SCHEMA)


def objection(own, path, quoted, layers, sources):
    """Why a file of layer `own` may not include `path`, or None when it may."""
    target = included_layer(path, quoted, own, layers, sources)
    if target is None or target == own:
        return None
    if target == "schema" and own in KNOW_NO_SCHEMA:
        return f"{own} must not know the schema"
    if target not in layers:
        return f"{target} is no layer"
    return None if stated(own, path, target, layers) else f"{own} does not state that it uses {target}"


def all_files(root, layers, sources):
    """Yields (path, its layer) of every source and every public header."""
    for folder in (*layers, *USERS):
        for path in layer_files(root, folder):
            yield path, folder
    for path in sorted((root / "include").rglob("*.h")):
        name = path.relative_to(root / "include").as_posix()
        if name != UMBRELLA:
            yield path, public_header_layer(name, sources)


def include_complaint(name, own, target, quoted, layers, sources):
    """Why the file `name` of layer `own` may not include `target`, or None."""
    if (name, target) in USERS_INSIDE:
        return None
    if own in USERS:
        inside = target.split("/")[0] in layers and target not in FOREIGN
        return f"{own} uses the public headers only" if inside else None
    if own not in layers:
        return f"{own} is no layer"
    if target == UMBRELLA:
        return "that is for users"
    return objection(own, target, quoted, layers, sources)


def check(root, layers):
    """Gives the number of #includes seen and the list of complaints."""
    seen, complaints = 0, []
    sources = find_sources(root, layers)
    for path, own in all_files(root, layers, sources):
        name = path.relative_to(root).as_posix()
        for mark, target in INCLUDE.findall(path.read_text(encoding="utf-8")):
            seen += 1
            if why := include_complaint(name, own, target, mark == '"', layers, sources):
                complaints.append(f"{name}: includes {target}, but {why}")
    return seen, complaints


def cycle(layers):
    """Gives a layer that uses itself through others, or None."""
    def reaches(start, goal, visited):
        return any(goal == used or (used not in visited and
                                    reaches(used, goal, visited | {used}))
                   for used in layers.get(start, ()))
    return next((layer for layer in layers if reaches(layer, layer, set())), None)


def main(layers_txt, root):
    layers = read_layers(pathlib.Path(layers_txt).read_text(encoding="utf-8"))
    seen, complaints = check(pathlib.Path(root), layers)
    if not layers or not seen:
        sys.exit("nothing to check: no layer, or no #include")
    if looped := cycle(layers):
        complaints.append(f"{looped} uses itself through other layers")
    if complaints:
        sys.exit("\n".join(complaints))
    print(f"{seen} #includes of {len(layers)} layers point where they may")


if __name__ == "__main__":
    main(*sys.argv[1:])
