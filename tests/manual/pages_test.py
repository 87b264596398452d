import os
import pathlib
import re
import subprocess
import unittest

import help as program

PAGES = pathlib.Path(os.environ['TRELVO_PAGES'])


def plain(page):
    """The page as a terminal shows it, without bold and underlined letters."""
    shown = subprocess.run(['groff', '-t', '-man', '-Tutf8', '-P-cbou', '-rLL=300n', str(page)],
                           check=True, capture_output=True, text=True)
    return re.sub(r'\s+', ' ', shown.stdout.replace('‐\n', '').replace('−', '-'))


class Pages(unittest.TestCase):
    def test_each_command_has_a_page_and_each_page_a_command(self):
        wanted = {'trelvo.1'} | {f'trelvo-{name}.1' for name in program.subcommands()}
        self.assertEqual({page.name for page in PAGES.glob('*.1')}, wanted)

    def test_pages_are_set_without_a_warning(self):
        for page in PAGES.glob('*.1'):
            with self.subTest(page=page.name):
                checked = subprocess.run(
                    ['groff', '-t', '-man', '-Tutf8', '-ww', '-z', str(page)],
                    check=True, capture_output=True, text=True)
                self.assertEqual(checked.stderr, '')

    def test_program_page_names_every_command(self):
        text = plain(PAGES / 'trelvo.1')
        for name in program.subcommands():
            self.assertIn(f'trelvo-{name}(1)', text)

    def test_program_page_holds_the_reporting_codes(self):
        text = plain(PAGES / 'trelvo.1')
        self.assertIn('RXLEV rxLevel 45.008 0 -110 63 -48 1 dBm', text)
        self.assertIn('RSRQ rsrq 36.133 0 -19.5 34 -3 0.5 dB', text)

    def test_page_of_a_command_names_all_its_options_and_examples(self):
        for command in program.all_commands():
            text = plain(PAGES / f'trelvo-{command[0]}.1')
            with self.subTest(command=command):
                names = program.options(*command)
                self.assertIn('--help', names)
                for option in names:
                    self.assertRegex(text, rf'(?<![\w-]){option}[ ,]')
                for line in program.examples(*command):
                    self.assertIn(re.sub(r'\s+', ' ', line), text)


if __name__ == '__main__':
    unittest.main()
