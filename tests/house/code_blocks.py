"""Compiles and runs the code blocks of a Markdown page.

Usage: code_blocks.py FILE BUILD_DIR COMPILER [FLAG...]

A block of `cpp` that has a main() is built and run, and prints what the block of `text` behind it
says; any other is compiled. EMULATOR in the environment is what a program is started by, where it does
not run by itself. Each line of a block of `sh` or `cmake` stands in the sources of the test
that runs it, so that no page tells of a command that nothing runs.
"""

import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
BLOCK = re.compile(r"^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
KNOWN = {"", "cpp", "text", "hexdump", "dot", "sh", "cmake"}
# What runs the commands that pages show.
RUNNERS = ["Makefile", ".ci/run", "examples/CMakeLists.txt", "tests/examples", "tests/package",
           "tests/tools", "tests/crypto", "tests/manual", "scripts"]


def blocks(text):
    """The language and the content of each block, in order."""
    return BLOCK.findall(text)


def runner_sources():
    files = []
    for name in RUNNERS:
        path = ROOT / name
        files += [path] if path.is_file() else sorted(path.rglob("*"))
    texts = (path.read_bytes().decode("utf-8", "replace") for path in files
             if path.is_file() and path.suffix in ("", ".sh", ".txt", ".py", ".cpp", ".cmake"))
    return "\n".join(texts)


def untested(text, sources):
    """Yields the lines of sh and cmake blocks that have a word which no runner knows."""
    for language, content in blocks(text):
        if language not in ("sh", "cmake"):
            continue
        for line in content.splitlines():
            words = [word for word in re.split(r"[\s()|&;\"'$]+", line.split("#")[0])
                     if re.fullmatch(r"[\w.:-]{4,}", word)]
            if not all(word in sources for word in words):
                yield line


def compile_block(content, name, build, command):
    source = build / f"{name}.cpp"
    source.write_text(content, encoding="utf-8")
    program = build / name
    has_main = "int main(" in content
    target = ["-o", str(program)] if has_main else ["-fsyntax-only"]
    compiler, *flags = command
    libraries = [flag for flag in flags if flag.startswith(("-l", "-L", "-Wl,"))]
    others = [flag for flag in flags if flag not in libraries]
    subprocess.run([compiler, "-std=c++17", "-Wall", "-Wextra", "-Werror", *others, str(source),
                    *target, *(libraries if has_main else [])], check=True)
    return program if has_main else None


def main(file, build, *command):
    page = pathlib.Path(file)
    text = page.read_text(encoding="utf-8")
    build = pathlib.Path(build)
    build.mkdir(parents=True, exist_ok=True)
    found = blocks(text)
    unknown = {language for language, _ in found} - KNOWN
    if unknown:
        sys.exit(f"{file}: blocks that nothing tests: {sorted(unknown)}")
    missing = list(untested(text, runner_sources()))
    if missing:
        sys.exit(f"{file}: nothing runs:\n" + "\n".join(missing))
    for index, (language, content) in enumerate(found):
        if language != "cpp":
            continue
        program = compile_block(content, f"{page.stem}_{index}", build, command)
        if program:
            check_output(program, found[index + 1:])


def check_output(program, following):
    command = [*os.environ.get("EMULATOR", "").split(), str(program)]
    printed = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    language, expected = following[0] if following else ("", "")
    if language != "text" or printed != expected:
        sys.exit(f"{program} prints:\n{printed}The page says:\n{expected}")
    print(printed, end="")


if __name__ == "__main__":
    main(*sys.argv[1:])
