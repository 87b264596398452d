"""Compares the installed headers with those of the tree. Usage: SOURCE_INCLUDE INSTALLED_INCLUDE"""

import filecmp
import pathlib
import sys


def headers(root):
    return {path.relative_to(root) for path in root.rglob("*.h")}


def main(source, installed):
    if not headers(source):
        sys.exit(f"no headers below {source}")
    wrong = headers(source) ^ headers(installed)
    wrong |= {h for h in headers(source) & headers(installed)
              if not filecmp.cmp(source / h, installed / h, shallow=False)}
    if wrong:
        sys.exit("missing, surplus or different: " + ", ".join(map(str, sorted(wrong))))
    print(f"{len(headers(source))} headers installed as they stand")


main(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]))
