import os
import pathlib
import subprocess
import tempfile
import unittest

import help as program

SCRIPT = pathlib.Path(os.environ['TRELVO_PAGES']) / 'trelvo.bash'

# Asks for what completes the last of the words.
ASK = r'''
compopt() { :; }
source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
_trelvo
printf '%s\n' "${COMPREPLY[@]}"
'''


def completions(*words, folder=None):
    answer = subprocess.run(['bash', '-euc', ASK, 'bash', str(SCRIPT), 'trelvo', *words],
                            check=True, capture_output=True, text=True, cwd=folder)
    return sorted(answer.stdout.split())


class Completion(unittest.TestCase):
    def test_offers_all_commands(self):
        offered = completions('')
        self.assertLessEqual(set(program.subcommands()), set(offered))
        self.assertIn('--version', offered)

    def test_completes_a_command(self):
        self.assertEqual(completions('uns'), ['unseal'])

    def test_offers_the_commands_below_a_command(self):
        self.assertEqual(completions('log', 'd'), ['decrypt'])

    def test_offers_every_option_of_every_command(self):
        for command in program.all_commands():
            with self.subTest(command=command):
                wanted = [name for name in program.options(*command) if name.startswith('--')]
                self.assertEqual(completions(*command, '--'), sorted(wanted))

    def test_offers_the_choices_of_an_option(self):
        self.assertIn('nmea', completions('import', '--format', ''))
        self.assertEqual(completions('import', '--format', 'geos'), ['geosubmit'])

    def test_offers_files_for_operands_and_folders_for_storage(self):
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, 'drive.log').touch()
            pathlib.Path(folder, 'keys').mkdir()
            self.assertEqual(completions('import', 'dr', folder=folder), ['drive.log'])
            self.assertEqual(completions('import', '-o', 'dr', folder=folder), ['drive.log'])
            self.assertEqual(completions('seal', '--storage', '', folder=folder), ['keys'])


if __name__ == '__main__':
    unittest.main()
