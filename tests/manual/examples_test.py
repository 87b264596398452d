"""Runs every example that help gives, in the order of help, in a folder with the files it names."""

import functools
import http.server
import lzma
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import threading
import unittest

import help as program

DATA = pathlib.Path(os.environ['TRELVO_EXAMPLES'])
README = pathlib.Path(__file__).resolve().parents[2] / 'README.md'

# What the examples call beside the program: a daemon that logs, keys that need no pass phrase, a
# scan and a modem's answer.
SHELL = r'''
set -euo pipefail
trelvo() { "$TRELVO_PROGRAM" "$@"; }
daemon() { printf 'line 1\nwarning 2\n'; }
openssl() { local words=("$@"); command openssl "${words[@]/-aes256/-traditional}"; }
iw() { cat wifi/iw-scan0.out; }
mmcli() { cat modem/mmcli-cell-info.json; }
'''

# Without a system bus these end with a message.
NEED_A_BUS = ('trelvo net', '--allow')


class Server:
    """Serves a folder on a port of its own."""

    def __init__(self, folder):
        handler = functools.partial(QuietHandler, directory=folder)
        self.server = http.server.ThreadingHTTPServer(('127.0.0.1', 0), handler)
        self.address = 'http://127.0.0.1:%d/' % self.server.server_address[1]
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def close(self):
        self.server.shutdown()
        self.server.server_close()


class QuietHandler(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *arguments):
        pass


class Examples(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.served = self.folder / 'served'
        self.served.mkdir()
        self.server = Server(self.served)
        self.addCleanup(self.server.close)
        self.prepare()

    def prepare(self):
        shutil.copytree(DATA, self.folder, dirs_exist_ok=True)
        drive = (DATA / 'nmea/quectel-eg25-g.log').read_bytes()
        reports = (DATA / 'geosubmit/geosubmit2.json').read_bytes()
        for name in ('drive.log', 'nodate.log'):
            self.put(name, drive)
        self.put('reports.json', reports)
        self.put('reports.json.xz', lzma.compress(reports))
        self.put('cell_towers.csv', (DATA / 'cell/opencellid-san-francisco.csv').read_bytes())
        self.put('secret', b'phrase\n')
        (self.folder / 'keys').mkdir()
        (self.folder / '.trelvo').mkdir()
        self.run_line('trelvo import drive.log -o drive.trelvo')
        self.put('drive.xz', lzma.compress((self.folder / 'drive.trelvo').read_bytes()))
        self.put('unknown.bin', (self.folder / 'drive.trelvo').read_bytes())
        self.prepare_server(drive)

    def prepare_server(self, drive):
        (self.served / 'drive.log').write_bytes(drive)
        (self.served / 'tile').write_bytes(b'tile' * 100)
        self.put('key.bin', b'k' * 16)
        self.put('iv.bin', b'i' * 16)
        self.run_line('openssl enc -aes-128-cbc -in served/tile -out served/tile.aes -K %s -iv %s'
                      % ((b'k' * 16).hex(), (b'i' * 16).hex()))

    def put(self, name, content):
        (self.folder / name).write_bytes(content)

    def run_line(self, line):
        line = line.replace('http://127.0.0.1:8000/', self.server.address)
        line = line.replace('http://server/', self.server.address)
        environment = dict(os.environ, HOME=str(self.folder), LOG_PHRASE='phrase',
                           ORVE_UNIQUE_DEVICE_ID='device-1', NO_COLOR='1',
                           DBUS_SYSTEM_BUS_ADDRESS='unix:path=/nonexistent')
        return subprocess.run(['bash', '-c', SHELL + line], cwd=self.folder, env=environment,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True)

    def check(self, line):
        ended = self.run_line(line)
        if any(part in line for part in NEED_A_BUS):
            self.assertEqual(ended.returncode, 1, line)
            self.assertRegex(ended.stderr, '^trelvo: ', line)
        else:
            self.assertEqual(ended.returncode, 0, f'{line}\n{ended.stderr}')

    def test_every_example_runs(self):
        ran = set()
        for command in program.all_commands():
            lines = program.examples(*command)
            self.assertTrue(any(line.find('trelvo ' + ' '.join(command)) >= 0 for line in lines),
                            f'help of {command} has no example')
            for line in program.examples(*command[:1]) + lines:
                if line not in ran:
                    ran.add(line)
                    self.check(line)
        self.assertGreater(len(ran), 20)

    def test_the_readmes_commands_run(self):
        """As they stand there, in a tree where the demo was built."""
        tree = self.folder / 'tree'
        (tree / 'examples').mkdir(parents=True)
        (tree / 'examples/data').symlink_to(DATA)
        (tree / 'build/release/tools').mkdir(parents=True)
        (tree / 'build/release/tools/trelvo').symlink_to(
            pathlib.Path(os.environ['TRELVO_PROGRAM']).parent)
        blocks = re.findall(r'^```sh\n(.*?)^```$', README.read_text(), re.MULTILINE | re.DOTALL)
        [block] = [block for block in blocks if 'trelvo import' in block]
        ended = subprocess.run(['bash', '-euo', 'pipefail', '-c', block], cwd=tree,
                               stdin=subprocess.DEVNULL, capture_output=True, text=True)
        self.assertEqual(ended.returncode, 0, ended.stderr)
        self.assertTrue((tree / 'drive.svg').read_text().startswith('<?xml'))
        self.assertIn('"FeatureCollection"', (tree / 'drive.geojson').read_text())


if __name__ == '__main__':
    unittest.main()
