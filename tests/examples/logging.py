"""Runs the example program that logs, and prints what it prints and what its encrypted log says.

Usage: logging.py PROGRAM

The openssl program makes the key pair, and tests/reference reads the log: the library has no part
in either.
"""

import pathlib
import stat
import subprocess
import sys
import tempfile

READER = (pathlib.Path(__file__).resolve().parent.parent / "reference"
          / "encrypted_files_reference.py")
LOG = "replay_20231114.slog"


def output_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout


def make_keys(private, public):
    subprocess.run(["openssl", "genrsa", "-traditional", "-out", private, "2048"],
                   check=True, stderr=subprocess.DEVNULL)
    subprocess.run(["openssl", "rsa", "-in", private, "-pubout", "-out", public],
                   check=True, stderr=subprocess.DEVNULL)


def expect_refusal(program, *arguments):
    result = subprocess.run([program, *arguments], capture_output=True)
    if result.returncode not in (1, 2) or not result.stderr:
        sys.exit(f"{arguments} gave {result.returncode}: {result.stderr}")


def check_sealed(log):
    mode = stat.S_IMODE(log.stat().st_mode)
    if mode != 0o600:
        sys.exit(f"{log.name} has mode {mode:o}")
    if b"cell" in log.read_bytes():
        sys.exit(f"{log.name} is readable without a key")


def main(program):
    with tempfile.TemporaryDirectory() as folder:
        device = pathlib.Path(folder) / "device"
        private = pathlib.Path(folder) / "private.pem"
        device.mkdir()
        expect_refusal(program)
        expect_refusal(program, device)
        make_keys(private, device / "publog.pem")
        printed = output_of(program, device)
        check_sealed(device / LOG)
        text = output_of(sys.executable, READER, "decrypt", device / LOG, private)
    sys.stdout.buffer.write(printed + f"--- {LOG}, decrypted\n".encode() + text)


if __name__ == "__main__":
    main(sys.argv[1])
