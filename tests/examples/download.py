"""Runs the example program against a web server on the loopback interface.

Usage: download.py PROGRAM
"""

import functools
import http.server
import os
import pathlib
import subprocess
import sys
import tempfile
import threading
import unittest

CONTENT = bytes(range(256)) * 1000


class QuietHandler(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


class Download(unittest.TestCase):
    program = ""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "served").mkdir()
        (self.folder / "served" / "tile").write_bytes(CONTENT)
        os.utime(self.folder / "served" / "tile", (1234567890, 1234567890))
        handler = functools.partial(QuietHandler, directory=str(self.folder / "served"))
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
        self.address = f"127.0.0.1:{server.server_port}"
        thread = threading.Thread(target=server.serve_forever)
        thread.start()
        self.addCleanup(server.server_close)
        self.addCleanup(thread.join)
        self.addCleanup(server.shutdown)

    def run_program(self, *arguments):
        environment = {k: v for k, v in os.environ.items() if not k.lower().endswith("_proxy")}
        return subprocess.run([self.program, *arguments], capture_output=True, text=True,
                              timeout=60, env=environment)

    def test_a_file_arrives_whole(self):
        result = self.run_program(self.address, "/tile", str(self.folder / "local"))
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stdout, "last changed 2009-02-13 23:31:30 UTC\n256000 bytes\n")
        self.assertEqual((self.folder / "local").read_bytes(), CONTENT)

    def test_a_missing_file_is_reported(self):
        result = self.run_program(self.address, "/missing", str(self.folder / "local"))
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr, "the server has no such file\n")

    def test_a_file_that_cannot_be_written_is_reported(self):
        result = self.run_program(self.address, "/tile", str(self.folder / "no" / "local"))
        self.assertEqual(result.returncode, 1)
        self.assertIn("the local file cannot be written", result.stderr)

    def test_wrong_arguments_are_explained(self):
        result = self.run_program(self.address)
        self.assertEqual(result.returncode, 2)
        self.assertEqual(result.stderr, "usage: download SERVER PATH FILE\n")


if __name__ == "__main__":
    Download.program = sys.argv.pop(1)
    unittest.main()
