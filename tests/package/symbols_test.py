"""Shows that the check of exported symbols can fail."""

import unittest

from symbols import allowed, exported, soname

TABLE = """
Symbol table '.dynsym' contains 3 entries:
   Num:    Value          Size Type    Bind   Vis      Ndx Name
     1: 0000000000000000     0 FUNC    GLOBAL DEFAULT  UND memcpy@GLIBC_2.14 (2)
     2: 0000000000001130    52 FUNC    GLOBAL DEFAULT   12 _ZN6trelvo6Buffer5resetEv
"""


class Symbols(unittest.TestCase):
    def test_takes_the_classes_of_the_library(self):
        for name in ("_ZN6trelvo6Buffer5resetEv", "_ZNK6trelvo3gom7Variant5writeERNS_7IStreamE",
                     "_ZTVN6trelvo12BufferStreamE", "_ZTIN6trelvo3gom10ObjectBaseE",
                     "_ZThn8_N6trelvo3gom10ObjectBaseD1Ev", "trelvo_core_init"):
            self.assertTrue(allowed(name, "GLOBAL"), name)

    def test_takes_the_platforms_interface(self):
        for name in ("_ZN3com6ubuntu8location12connectivity24platform_default_managerEv",
                     "_ZTVN3com6ubuntu8location12connectivity7ManagerE"):
            self.assertTrue(allowed(name, "GLOBAL"), name)

    def test_refuses_helpers_outside_the_namespace(self):
        for name in ("helper", "_Z6helperv", "_ZN5other6trelvoEv", "_ZN3com6ubuntu5otherEv",
                     "_ZN9trelvocore3runEv"):
            self.assertFalse(allowed(name, "GLOBAL"), name)
            self.assertFalse(allowed(name, "WEAK"), name)

    def test_takes_standard_templates_only_as_weak_ones(self):
        name = "_ZNSt6vectorIPN6trelvo3gom7VariantESaIS3_EE9push_backERKS3_"
        self.assertTrue(allowed(name, "WEAK"))
        self.assertFalse(allowed(name, "GLOBAL"))

    def test_takes_standard_data_of_any_binding(self):
        for name in ("_ZTSSt19_Sp_make_shared_tag", "_ZTINSt7__cxx114listIiSaIiEEE",
                     "_ZZNSt19_Sp_make_shared_tag5_S_tiEvE5__tag", "_ZSt19piecewise_construct"):
            self.assertTrue(allowed(name, "GLOBAL"), name)

    def test_lists_what_is_defined(self):
        self.assertEqual(list(exported(TABLE)), [("_ZN6trelvo6Buffer5resetEv", "GLOBAL")])

    def test_reads_the_soname(self):
        self.assertEqual(soname(" 0x0e (SONAME)  Library soname: [libx.so.2]"), "libx.so.2")
        self.assertIsNone(soname(" 0x01 (NEEDED)  Shared library: [libc.so.6]"))


if __name__ == "__main__":
    unittest.main()
