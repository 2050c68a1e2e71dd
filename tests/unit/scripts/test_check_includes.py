#!/usr/bin/python3
"""scripts/check_includes.py: each kind of wrong include is found, and right ones are not."""

import unittest

from checked_repository import CheckedRepository

ARROWS = """
# low to high
low:
high/inner: low
high: high/inner low
tests: *
"""


class CheckIncludes(CheckedRepository):
    """Three layers and the tests."""

    SCRIPT = "check_includes.py"

    def setUp(self):
        super().setUp()
        self.write("scripts/include-arrows.txt", ARROWS)
        self.write("low/Base.h", "#include <string>\n")
        self.write("high/inner/Part.h", '#include "low/Base.h"\n')
        self.write("high/Whole.h", '#include "high/inner/Part.h"\n#include "ui_Whole.h"\n')
        self.write("high/Whole.cpp", '#include "Whole.h"\n#include "low/Base.h"\n#include "Whole.moc"\n')
        self.write("tests/WholeTest.cpp", '#include "high/Whole.h"\n')

    def test_right_includes_pass(self):
        self.assertEqual(self.problems(), [])

    def test_upward_include(self):
        self.write("low/Base.h", '#include "high/Whole.h"\n')
        self.assertIn("low/Base.h: no arrow from low to high (high/Whole.h)", self.problems())

    def test_upward_include_beside_right_ones_in_a_source(self):
        self.write("high/inner/Part.cpp", '#include "Part.h"\n  #  include "high/Whole.h"\n')
        self.assertIn("high/inner/Part.cpp: no arrow from high/inner to high (high/Whole.h)", self.problems())

    def test_private_folder_without_arrow(self):
        self.write("scripts/include-arrows.txt", ARROWS + "other: low\n")
        self.write("other/User.cpp", '#include "high/inner/Part.h"\n')
        self.assertEqual(
            self.problems(), ["other/User.cpp: no arrow from other to high/inner (high/inner/Part.h)"]
        )

    def test_product_includes_no_test(self):
        self.write("tests/Fake.h", "")
        self.write("low/Base.h", '#include "tests/Fake.h"\n')
        self.assertEqual(self.problems(), ["low/Base.h: no arrow from low to tests (tests/Fake.h)"])

    def test_missing_file(self):
        self.write("low/Base.cpp", '#include "Base.h"\n#include "low/Gone.h"\n')
        self.assertEqual(self.problems(), ['low/Base.cpp: "low/Gone.h" is not found'])

    def test_folder_without_line(self):
        self.write("new/Thing.cpp", "")
        self.assertEqual(
            self.problems(), ["new/Thing.cpp: its folder has no line in scripts/include-arrows.txt"]
        )

    def test_arrows_in_a_circle(self):
        self.write("scripts/include-arrows.txt", ARROWS.replace("low:", "low: high"))
        self.assertEqual(len(self.problems()), 1)
        self.assertIn("the arrows form a cycle: high -> ", self.problems()[0])

    def test_units_in_a_circle(self):
        self.write("low/One.h", '#include "Two.h"\n')
        self.write("low/Two.h", "")
        self.write("low/Two.cpp", '#include "Two.h"\n#include "One.h"\n')
        self.assertEqual(
            self.problems(), ["units include each other in a circle: low/One -> low/Two -> low/One"]
        )

    def test_table_that_is_not_understood(self):
        for wrong in ("low\n", "low:\n", "more: nowhere\n"):
            self.write("scripts/include-arrows.txt", ARROWS + wrong)
            self.assertEqual(len(self.problems()), 1, wrong)


if __name__ == "__main__":
    unittest.main()
