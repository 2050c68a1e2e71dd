#!/usr/bin/python3
"""scripts/check_words.py: a word of the list is found wherever it is, and what is excepted passes."""

import unittest

from checked_repository import CheckedRepository

# A list of the test's own words; the project's list changes with its language.
WORDS = """
# what is ruled out
word gadget gadgets -> device
word@docs/ widgetry -> windows
except a "gadget" of the product|\\bGadgetView\\b
skip samples/ scripts/words.txt
"""


class CheckWords(CheckedRepository):
    """Two words of which one is ruled out in one folder only."""

    SCRIPT = "check_words.py"

    def setUp(self):
        super().setUp()
        self.write("scripts/words.txt", WORDS)

    def test_other_words_pass(self):
        self.write("a.cpp", "// devices, gadgetry and a go-getter\n")
        self.assertEqual(self.problems(), [])

    def test_word_in_a_comment(self):
        self.write("a.cpp", "int a;\n// Gadgets are new.\n")
        self.assertEqual(self.problems(), ['a.cpp:2: "gadgets": device'])

    def test_word_inside_names(self):
        for name in ("newGadget", "gadgetCount", "NewGadgetCount", "new_gadget", "GADGET_COUNT", "m_gadget2"):
            self.write("a.h", f"int {name} = 1;\n")
            self.assertEqual(self.problems(), ['a.h:1: "gadget": device'], name)

    def test_word_in_a_document(self):
        self.write("docs/read.md", "# Title\n\nOne *gadget*, and another gadget.\n")
        self.assertEqual(self.problems(), ['docs/read.md:3: "gadget": device'] * 2)

    def test_word_in_the_name_of_a_file(self):
        self.write("src/TheGadget.h", "")
        self.assertEqual(self.problems(), ['src/TheGadget.h:0: "gadget": device'])

    def test_word_of_one_folder(self):
        self.write("docs/a.md", "widgetry\n")
        self.write("src/a.cpp", "// widgetry\n")
        self.assertEqual(self.problems(), ['docs/a.md:1: "widgetry": windows'])

    def test_excepted_text_passes_but_not_what_is_beside_it(self):
        self.write("a.cpp", 'tr("a "gadget" of the product"); GadgetView view;\n')
        self.assertEqual(self.problems(), [])
        self.write("a.cpp", "GadgetView gadget;\n")
        self.assertEqual(self.problems(), ['a.cpp:1: "gadget": device'])

    def test_skipped_and_untranslatable_files_pass(self):
        self.write("samples/log.txt", "gadget\n")
        self.root.joinpath("picture.png").write_bytes(b"\xff\xfe gadget")
        self.assertEqual(self.problems(), [])

    def test_list_that_is_not_understood(self):
        self.write("scripts/words.txt", WORDS + "wrod gizmo -> device\n")
        self.assertIn("not understood", self.problems()[-1])


if __name__ == "__main__":
    unittest.main()
