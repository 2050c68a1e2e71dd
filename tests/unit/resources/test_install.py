"""The files of an installed program: entry, icons, command, completions, the name on the session bus."""

import configparser
import re
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

BUILD, CMAKE, PREFIX = sys.argv.pop(1), sys.argv.pop(1), sys.argv.pop(1)
NAME = "com.tallowind.Quorvane"
SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)


class InstallTest(unittest.TestCase):
    """Installs the build once, below a folder of its own."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        subprocess.run(
            [CMAKE, "--install", BUILD],
            env={"DESTDIR": cls.folder.name, "PATH": "/usr/bin:/bin"},
            check=True,
            stdout=subprocess.DEVNULL,
        )
        cls.root = Path(cls.folder.name)
        cls.share = cls.root / PREFIX.lstrip("/") / "share"

    def entry(self):
        parser = configparser.ConfigParser(interpolation=None)
        parser.optionxform = str
        parser.read(self.share / "applications" / f"{NAME}.desktop", encoding="utf-8")
        return parser["Desktop Entry"]

    def test_entry_is_valid(self):
        path = self.share / "applications" / f"{NAME}.desktop"
        done = subprocess.run(
            ["desktop-file-validate", str(path)], check=False, capture_output=True, text=True
        )
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))

    def test_entry_starts_the_installed_program(self):
        program = self.root / self.entry()["Exec"].lstrip("/")
        done = subprocess.run([program, "--version"], check=True, capture_output=True, text=True)
        self.assertEqual(done.stdout, "1.0.0\n")

    def test_icon_of_the_entry_has_every_size(self):
        self.assertEqual(self.entry()["Icon"], NAME)
        hicolor = self.share / "icons" / "hicolor"
        for size in SIZES:
            head = (hicolor / f"{size}x{size}" / "apps" / f"{NAME}.png").read_bytes()[:24]
            self.assertEqual(head[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(struct.unpack(">II", head[16:24]), (size, size))
        self.assertIn("<svg", (hicolor / "scalable" / "apps" / f"{NAME}.svg").read_text(encoding="utf-8"))

    def test_command_is_on_the_path(self):
        command = self.root / PREFIX.lstrip("/") / "bin" / "quorvane"
        self.assertTrue(command.is_symlink() and not command.readlink().is_absolute())
        done = subprocess.run([command, "--version"], check=True, capture_output=True, text=True)
        self.assertEqual(done.stdout, "1.0.0\n")

    def test_bus_starts_the_program_in_the_background(self):
        parser = configparser.ConfigParser(interpolation=None)
        parser.read(self.share / "dbus-1" / "services" / f"{NAME}.service", encoding="utf-8")
        service = parser["D-BUS Service"]
        self.assertEqual(service["name"], NAME)
        self.assertEqual(service["exec"], self.entry()["Exec"] + " -hide")
        self.assertNotIn("DBusActivatable", self.entry())

    def complete(self, *words):
        """What bash offers in place of the last word."""
        script = """
            quorvane() { printf '%s\\n' 'Random Location' 'Germany Berlin' 'Ghana Accra'; }
            . "$0"
            COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
            _quorvane
            printf '%s\\n' "${COMPREPLY[@]}"
        """
        file = self.share / "bash-completion" / "completions" / "quorvane"
        done = subprocess.run(
            ["bash", "-c", script, str(file), *words], check=True, capture_output=True, text=True
        )
        self.assertEqual(done.stderr, "")
        return done.stdout.split("\n")[:-1]

    def test_bash_completes_commands_and_locations(self):
        self.assertEqual(self.complete("quorvane", "--st"), ["--stop", "--status"])
        self.assertEqual(self.complete("quorvane", "--status", "--j"), ["--json"])
        self.assertEqual(self.complete("quorvane", "--hide", "G"), ["Germany\\ Berlin", "Ghana\\ Accra"])
        self.assertEqual(self.complete("quorvane", "--stop", ""), [""])

    def test_every_shell_knows_every_option(self):
        command = self.root / PREFIX.lstrip("/") / "bin" / "quorvane"
        done = subprocess.run([command, "--help"], check=True, capture_output=True, text=True)
        options = set(re.findall(r"^  (?:-h, )?--([a-z]+) ", done.stdout, re.MULTILINE))
        self.assertIn("locations", options)
        files = {
            "bash-completion/completions/quorvane": "--{}",
            "zsh/site-functions/_quorvane": "--{}[",
            "fish/vendor_completions.d/quorvane.fish": "-l {} ",
        }
        for name, form in files.items():
            text = (self.share / name).read_text(encoding="utf-8")
            missing = [option for option in options if form.format(option) not in text]
            self.assertEqual(missing, [], name)


if __name__ == "__main__":
    unittest.main()
