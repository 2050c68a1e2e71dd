"""The check of the guide against the sources."""

import sys
import unittest
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parents[3] / "scripts")]

import check_guide  # noqa: E402 # pylint: disable=wrong-import-position

SOURCE = """
    Alerts::shared().critical({QStringLiteral("Quorvane"), tr("It is \\"down\\".\\n"
                                                              "Really."), tr("Wait (a bit).")});
    label->setText(tr("No alert"));
    const auto shown = alert(tr("Error"), tr("Wrong, very "
                                             "wrong."));
"""
SHOWN = [['It is "down". Really.', "Wait (a bit)."], ["Wrong, very wrong."]]


class CheckGuideTest(unittest.TestCase):
    """Its parts, with a source and a guide of the test's own."""

    def test_alerts_are_found_with_their_texts(self):
        self.assertEqual(check_guide.alerts(SOURCE), SHOWN)

    def test_table_has_beginnings(self):
        table = '| "It is "down". ..." | a |'
        guide = f'# x\n| "not here" | a |\n{check_guide.HEADING}\n{table}\n\n## y\n| "no" | b |\n'
        self.assertEqual(check_guide.explained(guide), ['It is "down".'])

    def test_both_directions(self):
        every = check_guide.texts_of(SOURCE)
        self.assertEqual(check_guide.differences(SHOWN, every, ["Wait", "Wrong"]), [])
        missing = check_guide.differences(SHOWN, every, ["Wait"])
        self.assertEqual(len(missing), 1)
        self.assertIn("Wrong, very wrong.", missing[0])
        unknown = check_guide.differences(SHOWN, every, ["Wait", "Wrong", "Never"])
        self.assertEqual(len(unknown), 1)
        self.assertIn("Never", unknown[0])


if __name__ == "__main__":
    unittest.main()
