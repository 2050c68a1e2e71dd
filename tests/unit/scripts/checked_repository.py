"""A small repository in which one of the checks of scripts/ runs as a program."""

import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SCRIPTS = Path(__file__).resolve().parents[3] / "scripts"


class CheckedRepository(unittest.TestCase):
    """Every test begins with an empty repository that contains only the check."""

    SCRIPT = ""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        subprocess.run(["git", "init", "-q", self.root], check=True)
        self.root.joinpath("scripts").mkdir()
        shutil.copy(SCRIPTS / self.SCRIPT, self.root / "scripts")

    def write(self, path, text):
        target = self.root / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")

    def problems(self):
        """Runs the check; the lines that it printed. It fails exactly when it printed one."""
        subprocess.run(["git", "-C", self.root, "add", "-A"], check=True)
        ended = subprocess.run(
            ["/usr/bin/python3", "-B", self.root / "scripts" / self.SCRIPT],
            capture_output=True,
            text=True,
            check=False,
        )
        lines = ended.stderr.splitlines()
        self.assertEqual(ended.returncode, 1 if lines else 0, ended.stderr)
        return lines
