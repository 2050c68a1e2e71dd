"""scripts/check_translations.py on catalogues with one message."""

import unittest

from checked_repository import CheckedRepository


class CheckTranslationsTest(CheckedRepository):
    """Each test writes one translation."""

    SCRIPT = "check_translations.py"

    def translate(self, source, translation):
        self.write(
            "resources/translations/quorvane_fr.ts",
            f"""<?xml version="1.0" encoding="utf-8"?>
<TS version="2.1" language="fr_FR"><context><name>A</name><message numerus="yes">
<source>{source}</source><translation>{translation}</translation></message></context></TS>""",
        )
        return [line.split(": ")[1].rsplit("' ")[-1] for line in self.problems()]

    def test_the_form_of_the_source_is_kept(self):
        self.assertEqual(self.translate("&amp;Stop %1 (%2)\n", "(%2) %1 &amp;fin\n"), [])
        self.assertEqual(self.translate("A &amp; B", "A et B"), [])

    def test_other_placeholders(self):
        self.assertEqual(self.translate("Stop %1", "Fin"), ["has other placeholders"])
        self.assertEqual(self.translate("Stop %1", "Fin %2"), ["has other placeholders"])
        self.assertEqual(self.translate("&lt;b&gt;A&lt;/b&gt;", "A"), ["has other placeholders"])

    def test_mnemonics(self):
        self.assertEqual(self.translate("&amp;Stop", "Fin"), ["has a mnemonic more or less"])
        self.assertEqual(self.translate("Stop", "&amp;Fin"), ["has a mnemonic more or less"])

    def test_ends(self):
        self.assertEqual(self.translate("Stop\n", "Fin"), ["ends otherwise"])

    def test_every_form_of_a_number(self):
        one, other = "<numerusform>%n minute</numerusform>", "<numerusform></numerusform>"
        self.assertEqual(self.translate("%n minutes", one + one), [])
        self.assertEqual(self.translate("%n minutes", one + other), ["is empty"])

    def test_empty(self):
        self.assertEqual(self.translate("Stop", ""), ["is empty"])


if __name__ == "__main__":
    unittest.main()
