"""Checks that the picture of the layers shows what the build says of them.

Usage: diagram.py LAYERS PAGE     LAYERS is layers.txt of the build tree
"""

import pathlib
import re
import sys


def stated(text):
    """The arrows between layers in layers.txt; headers that one layer may use of another are none."""
    arrows = set()
    for line in text.splitlines():
        layer, _, used = line.partition(":")
        arrows |= {(layer, other) for other in used.split() if "/" not in other}
    return arrows


def drawn(page):
    """The arrows of the picture named "layers" on a page."""
    picture = re.search(r"digraph layers \{(.*?)^\}", page, re.MULTILINE | re.DOTALL)
    return set(re.findall(r"(\w+) -> (\w+)", picture.group(1))) if picture else set()


def main(layers, page):
    says = stated(pathlib.Path(layers).read_text(encoding="utf-8"))
    shows = drawn(pathlib.Path(page).read_text(encoding="utf-8"))
    if says != shows:
        sys.exit(f"not drawn: {sorted(says - shows)}, drawn but not so: {sorted(shows - says)}")


if __name__ == "__main__":
    main(*sys.argv[1:])
