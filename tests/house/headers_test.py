"""Shows that the checks of the public headers can fail."""

import unittest

import headers

ALL = '#pragma once\n#include <trelvo/schema/A.h>\n#include <trelvo/schema/B.h>\n'
A = "class TRELVO_EXPORT A : public gom::ObjectBase {\n};\n"
B = "class TRELVO_EXPORT B\n    : public A {\n};\n"
EXCEPTIONS = "".join(f"class TRELVO_EXPORT {name} : public gom::ObjectBase {{\n}};\n"
                     for name in headers.WITHOUT_TABLE)
TREE = {headers.UMBRELLA: ALL, "trelvo/schema/A.h": A + EXCEPTIONS, "trelvo/schema/B.h": B}
TABLES = ["struct A::Fields : gom::FieldTable<> {};", "struct schema::B::Fields {};"]


class Headers(unittest.TestCase):
    def test_a_tree_in_order_raises_no_complaint(self):
        self.assertEqual(headers.umbrella_complaints(TREE), [])
        self.assertEqual(headers.export_complaints(TREE), [])
        self.assertEqual(headers.table_complaints(TREE, TABLES), [])

    def test_a_header_left_out_is_found(self):
        self.assertEqual(headers.umbrella_complaints({**TREE, "trelvo/C.h": ""}),
                         ["trelvo/C.h is not included by <trelvo/trelvo.h>"])

    def test_a_header_that_is_gone_is_found(self):
        tree = {name: text for name, text in TREE.items() if name != "trelvo/schema/B.h"}
        self.assertEqual(headers.umbrella_complaints(tree),
                         ["<trelvo/trelvo.h> includes trelvo/schema/B.h, which is not there"])

    def test_a_class_that_is_not_exported_is_found(self):
        tree = {"trelvo/C.h": "class Ahead;\nenum X : int {\n};\n"
                              "template <class T>\nclass List {\n};\nclass C {\n};\n"}
        self.assertEqual(headers.export_complaints(tree), ["trelvo/C.h: C is not exported"])

    def test_a_record_without_a_table_is_found_also_behind_another_class(self):
        self.assertEqual(headers.table_complaints(TREE, TABLES[:1]),
                         ["B has no table of fields and no reason to have none"])

    def test_an_exception_that_has_a_table_is_found(self):
        self.assertEqual(headers.table_complaints(TREE, TABLES + ["struct Area::Fields {};"]),
                         ["Area is listed as a record without a table, and is not one"])


if __name__ == "__main__":
    unittest.main()
