"""Runs an example program that wants a directory, with a new one, and prints what it prints.

Usage: in_directory.py PROGRAM
"""

import subprocess
import sys
import tempfile


def main(program):
    usage = subprocess.run([program], capture_output=True, text=True)
    if usage.returncode != 2 or "Usage:" not in usage.stderr:
        sys.exit(f"without a directory it ends with {usage.returncode}: {usage.stderr}")
    with tempfile.TemporaryDirectory() as folder:
        done = subprocess.run([program, folder], stdout=subprocess.PIPE)
    sys.stdout.buffer.write(done.stdout)
    sys.exit(done.returncode)


if __name__ == "__main__":
    main(*sys.argv[1:])
