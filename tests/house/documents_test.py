"""Shows that the checks of the documents can fail."""

import pathlib
import sys
import tempfile
import unittest

import documents

PAGE = "# A b-c, `d`\n\n[here](#a-b-c-d) [file](page.md) [web](https://example.org/x)\n\n"


class Documents(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.page = pathlib.Path(folder.name, "page.md")

    def write(self, text):
        self.page.write_text(text, encoding="utf-8")

    def test_right_links_pass(self):
        self.write(PAGE)
        self.assertEqual(list(documents.broken_links(self.page)), [])

    def test_links_to_missing_files_and_headings_are_found(self):
        self.write(PAGE + "[x](gone.md) [y](#gone) [z](page.md#gone)")
        self.assertEqual(list(documents.broken_links(self.page)),
                         ["gone.md", "#gone", "page.md#gone"])

    def test_the_first_block_of_a_language_is_taken(self):
        self.write("```sh\nno\n```\n\n```cpp\nint a;\nint b;\n```\n\n```cpp\nint c;\n```\n")
        target = self.page.with_suffix(".cpp")
        documents.extract(self.page, "cpp", target)
        self.assertEqual(target.read_text(encoding="utf-8"), "int a;\nint b;\n")

    def test_a_program_that_prints_something_else_fails(self):
        self.write(f"```text\n{sys.version}\n```\n")
        with self.assertRaises(SystemExit):
            documents.run(self.page, "text", "/bin/true")

    def test_a_missing_block_fails(self):
        self.write(PAGE)
        with self.assertRaises(SystemExit):
            documents.extract(self.page, "cpp", self.page)


if __name__ == "__main__":
    unittest.main()
