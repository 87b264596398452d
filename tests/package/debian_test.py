"""The Debian packaging agrees with the rest of the tree."""

import importlib.machinery
import importlib.util
import pathlib
import re
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


def read(path):
    return (ROOT / path).read_text(encoding="utf-8")


def load_symbols():
    """scripts/symbols as a module."""
    loader = importlib.machinery.SourceFileLoader("symbols", str(ROOT / "scripts" / "symbols"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("symbols", loader))
    loader.exec_module(module)
    return module


def project_version():
    return re.search(r"^project\(trelvocore VERSION ([\d.]+)", read("CMakeLists.txt"),
                     re.MULTILINE).group(1)


class Debian(unittest.TestCase):
    def test_versions_agree(self):
        newest = re.match(r"trelvocore \(([\d.]+)-", read("debian/changelog")).group(1)
        self.assertEqual(newest, project_version())

    def test_the_package_is_named_after_the_soname(self):
        major = project_version().split(".")[0]
        self.assertIn(f"\nPackage: libtrelvocore{major}\n", read("debian/control"))
        self.assertTrue(read(f"debian/libtrelvocore{major}.symbols").startswith(
            f"libtrelvocore.so.{major} libtrelvocore{major} #MINVER#\n"))

    def test_what_a_build_needs_is_said_once_and_again(self):
        group = re.search(r'\[demo\]="([^"]*)"', read("scripts/install-deps")).group(1).split()
        control = read("debian/control").split("\nPackage:")[0]
        build_depends = set(re.findall(r"^ ([a-z0-9.+-]+)(?= \(|,)", control, re.MULTILINE))
        # What every build of a package has, and what only the demo and the tests run.
        self.assertEqual(set(group) - {"make", "g++", "openssl", "python3"},
                         build_depends - {"debhelper-compat"})

    def test_users_get_what_the_headers_include(self):
        listed = re.findall(r'^  "(?:\S+?)\|.*\|(\S*)"', read("cmake/Dependencies.cmake"),
                            re.MULTILINE)
        packages = {"glib-2.0": "libglib2.0-dev", "properties-cpp": "libproperties-cpp-dev",
                    "zlib": "zlib1g-dev", "": "libboost-dev"}
        control = re.search(r"\nPackage: libtrelvocore-dev\n.*?\n\n", read("debian/control"),
                            re.DOTALL).group(0)
        self.assertEqual(len(listed), 4)
        for module in listed:
            self.assertIn(f" {packages[module]},\n", control)


class Symbols(unittest.TestCase):
    symbols = load_symbols()

    def line(self, mangled, name):
        return self.symbols.line_of(mangled, name, {"ServingCellInjection"})

    def test_names_stand_as_they_are_written(self):
        self.assertEqual(self.line("_ZN6trelvo6Buffer4sizeEv", "trelvo::Buffer::size() const"),
                         ' (c++)"trelvo::Buffer::size() const@Base"')
        self.assertEqual(self.line("trelvo_core_init", "trelvo_core_init"),
                         " trelvo_core_init@Base")

    def test_instantiations_of_programs_are_optional(self):
        self.assertEqual(self.line("_Z", "typeinfo for trelvo::Lockable<int>"),
                         ' (c++|optional=templinst)"typeinfo for trelvo::Lockable<int>@Base"')
        self.assertEqual(
            self.line("_Z", "trelvo::schema::ServingCellInjection<trelvo::A>::unset(unsigned int)"),
            ' (c++)"trelvo::schema::ServingCellInjection<trelvo::A>::unset(unsigned int)@Base"')
        self.assertEqual(self.line("_Z", "trelvo::A::operator trelvo::B<int>()"),
                         ' (c++)"trelvo::A::operator trelvo::B<int>()@Base"')

    def test_what_processors_spell_differently_is_a_pattern(self):
        self.assertEqual(self.line("_Z", "trelvo::A::operator new(unsigned long)"),
                         r' (c++|regex)"^trelvo::A::operator new\(unsigned (int|long)\)@Base$"')
        self.assertEqual(self.line("_Z", "trelvo::A::log(char const*, __va_list_tag*)"),
                         r' (c++|regex)"^trelvo::A::log\(char const\*, .*\)@Base$"')

    def test_the_standard_library_is_one_line(self):
        names = "_ZTISt9exception", "_ZNSt6vectorIiE", "_ZTSNSt1aE", "_ZSt4swapv", "_ZZNKSt1aE"
        lines = {self.line(mangled, "") for mangled in names}
        self.assertEqual(lines, {self.symbols.STANDARD_LINE})

    def test_the_file_is_read_back(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "symbols"
            lines = [' (c++)"trelvo::A::b(int, char const*) const@Base"', " trelvo_core_init@Base",
                     r' (c++|regex)"^trelvo::A::operator new\(unsigned (int|long)\)@Base$"',
                     self.symbols.STANDARD_LINE]
            path.write_text(self.symbols.HEAD + "".join(f"{line} 1.{i}.0\n"
                                                        for i, line in enumerate(lines)))
            self.assertEqual(self.symbols.known(path),
                             {line: f"1.{i}.0" for i, line in enumerate(lines)})


if __name__ == "__main__":
    unittest.main()
