import tempfile
import unittest
from pathlib import Path

import code_blocks
import diagram


class CodeBlocks(unittest.TestCase):
    def test_finds_blocks_with_their_language(self):
        text = "a\n```cpp\nint x;\n```\nb\n```\nplain\n```\n"
        self.assertEqual(code_blocks.blocks(text), [("cpp", "int x;\n"), ("", "plain\n")])

    def test_tells_of_commands_that_nothing_runs(self):
        text = "```sh\nmake demo   # all of it\nmake nonsense\n```\n"
        self.assertEqual(list(code_blocks.untested(text, "make demo:")), ["make nonsense"])

    def test_block_that_does_not_compile_fails(self):
        with tempfile.TemporaryDirectory() as folder:
            page = Path(folder, "page.md")
            page.write_text("```cpp\nint main() { return nothing; }\n```\n")
            with self.assertRaises(Exception):
                code_blocks.main(str(page), folder, "c++")

    def test_output_other_than_the_pages_fails(self):
        with tempfile.TemporaryDirectory() as folder:
            page = Path(folder, "page.md")
            page.write_text("```cpp\n#include <cstdio>\nint main() { std::puts(\"a\"); }\n```\n"
                            "```text\nb\n```\n")
            with self.assertRaises(SystemExit):
                code_blocks.main(str(page), folder, "c++")

    def test_language_that_nothing_tests_fails(self):
        with tempfile.TemporaryDirectory() as folder:
            page = Path(folder, "page.md")
            page.write_text("```cobol\nSTOP RUN.\n```\n")
            with self.assertRaises(SystemExit):
                code_blocks.main(str(page), folder, "c++")


class Diagram(unittest.TestCase):
    def test_takes_layers_and_leaves_single_headers_out(self):
        self.assertEqual(diagram.stated("a: b c/D.h\nb:\n"), {("a", "b")})

    def test_takes_only_the_picture_of_the_layers(self):
        page = "digraph layers {\n  a -> b\n}\ndigraph other {\n  x -> y\n}\n"
        self.assertEqual(diagram.drawn(page), {("a", "b")})


if __name__ == "__main__":
    unittest.main()
