"""Takes fenced blocks out of a Markdown file.

Usage: documents.py extract FILE LANGUAGE OUTPUT     writes the first block of that language
       documents.py run FILE LANGUAGE PROGRAM...     compares what PROGRAM prints with that block
       documents.py links FILE...                    checks that relative links lead somewhere
"""

import pathlib
import re
import subprocess
import sys

LINK = re.compile(r"\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+ (.*)$", re.MULTILINE)


def block(text, language):
    found = re.search(rf"^```{language}\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
    if not found:
        sys.exit(f"no block of {language}")
    return found.group(1)


def anchors(text):
    """The anchors that a Markdown page offers for its headings."""
    plain = (re.sub(r"[^\w\- ]", "", heading.lower()) for heading in HEADING.findall(text))
    return {heading.replace(" ", "-") for heading in plain}


def broken_links(path):
    """Yields the links of a page, other than absolute ones, that lead nowhere."""
    for link in LINK.findall(path.read_text(encoding="utf-8")):
        if "://" in link:
            continue
        file, _, anchor = link.partition("#")
        target = path.parent / file if file else path
        if not target.exists():
            yield link
        elif anchor and anchor not in anchors(target.read_text(encoding="utf-8")):
            yield link


def extract(file, language, output):
    text = pathlib.Path(file).read_text(encoding="utf-8")
    pathlib.Path(output).write_text(block(text, language), encoding="utf-8")


def run(file, language, *program):
    expected = block(pathlib.Path(file).read_text(encoding="utf-8"), language)
    printed = subprocess.run(program, check=True, capture_output=True, text=True).stdout
    if printed != expected:
        sys.exit(f"{file} says:\n{expected}The program prints:\n{printed}")
    print(printed, end="")


def links(*files):
    pages = [pathlib.Path(file) for file in files]
    broken = [f"{page}: {link}" for page in pages for link in broken_links(page)]
    if broken or not pages:
        sys.exit("\n".join(["lead nowhere:"] + broken))


if __name__ == "__main__":
    {"extract": extract, "run": run, "links": links}[sys.argv[1]](*sys.argv[2:])
