"""Searches for passwords in everything in the home that other programs can read, at once or later.

It searches the argument lists and environments of processes, all the time; the content of files, also of open
files that have no name any more; and the system log.
"""

import base64
import binascii
import os
import re
import stat
import subprocess
import threading
import urllib.parse
from dataclasses import dataclass
from pathlib import Path

from harness.home.deadlines import EVENTUALLY
from world import home as homes

# The folders in which a home writes. The rest of the file system is searched at the end of a test.
OWN = ("/etc", "/home", "/root", "/run", "/tmp", "/dev", "/var/log", "/var/tmp", "/var/mail", "/var/lib/sudo")
_LARGEST = 256 << 20
_ENCODED = re.compile(rb"[A-Za-z0-9+/][A-Za-z0-9+/\s]{14,}=*")
_CORE = 4  # the type of an ELF file that is a core


@dataclass(frozen=True)
class Finding:
    """One secret in one place. `mode` and `owner` are those of the file."""

    secret: str
    form: str
    place: str
    mode: int = 0
    owner: int = -1


def _scrambled(text, encoding):
    """A pattern for the stored form: each unit is followed by a meaningless letter or digit."""
    filler = rb"[A-Za-z0-9]".join("a".encode(encoding).split(b"a"))
    return filler.join(re.escape(unit.encode(encoding)) for unit in text)


def forms(text):
    """Patterns for the simple forms in which a text can be stored."""
    plain = text.encode("utf-8")
    return {
        "plain": re.escape(plain),
        "UTF-16": re.escape(text.encode("utf-16-le")) + b"|" + re.escape(text.encode("utf-16-be")),
        "backwards": re.escape(text[::-1].encode("utf-8")),
        "percent": re.escape(urllib.parse.quote(text, safe="").encode())
        + b"|"
        + re.escape(urllib.parse.quote_plus(text).encode()),
        "quoted": re.escape(
            text.replace("\\", "\\\\").replace('"', '\\"').replace(" ", "\\ ").encode("utf-8")
        ),
        "hexadecimal": b"(?i:" + plain.hex().encode() + b")",
        "scrambled": b"|".join(
            _scrambled(text, encoding) for encoding in ("utf-8", "utf-16-le", "utf-16-be")
        ),
    }


class Patterns:
    """The patterns of all secrets."""

    def __init__(self):
        self._patterns = []

    def add(self, name, text):
        for form, pattern in forms(text).items():
            compiled = re.compile(pattern, re.S)
            if (name, form, compiled) not in self._patterns:
                self._patterns.append((name, form, compiled))

    def _direct(self, data):
        # The plain form comes first. A secret that matches in several forms is reported once.
        found = {}
        for name, form, pattern in self._patterns:
            if name not in found and pattern.search(data):
                found[name] = form
        return found

    def found_in(self, data):
        """Secret -> form, for every secret in the bytes, also with XML entities and inside of base64."""
        found = self._direct(data)
        if b"&amp;" in data:
            for name, form in self._direct(
                data.replace(b"&lt;", b"<")
                .replace(b"&gt;", b">")
                .replace(b"&quot;", b'"')
                .replace(b"&apos;", b"'")
                .replace(b"&amp;", b"&")
            ).items():
                found.setdefault(name, form)
        for run in _ENCODED.findall(data):
            packed = b"".join(run.split()).rstrip(b"=")
            for offset in range(4):
                part = packed[offset : offset + (len(packed) - offset) // 4 * 4] if offset else packed
                try:
                    plain = base64.b64decode(part + b"=" * (-len(part) % 4))
                except binascii.Error:
                    continue
                for name, form in self._direct(plain).items():
                    found.setdefault(name, f"base64 of {form}")
        return found


class ProcessWatch:
    """Collects the argument lists and environments of the home's processes until `stop`."""

    def __init__(self, home):
        self._namespace = os.stat(f"/proc/{home.pid}/ns/pid").st_ino
        self._end = threading.Event()
        self._seen = set()
        self._outside = set()
        self._thread = threading.Thread(target=self._watch, daemon=True)
        self._thread.start()

    def _look(self, pid):
        try:
            if pid not in self._outside and os.stat(f"/proc/{pid}/ns/pid").st_ino != self._namespace:
                self._outside.add(pid)
            if pid in self._outside:
                return
            command = Path(f"/proc/{pid}/cmdline").read_bytes()
            self._seen.add(("argument list", pid, command))
            self._seen.add(("environment", pid, Path(f"/proc/{pid}/environ").read_bytes()))
        except OSError:
            pass  # the process has ended

    def _watch(self):
        while not self._end.wait(0.002):
            for entry in os.listdir("/proc"):
                if entry.isdigit():
                    self._look(int(entry))

    def stop(self):
        self._end.set()
        self._thread.join()

    def commands(self):
        return {data for kind, _pid, data in self._seen.copy() if kind == "argument list"}

    def findings(self, patterns):
        return {
            Finding(name, form, kind)
            for kind, _pid, data in self._seen.copy()
            for name, form in patterns.found_in(data).items()
        }


class Search:
    """The search of one home, with a system log in it. Make it before the programs to be searched start."""

    def __init__(self, world):
        self.home = world.home
        self.patterns = Patterns()
        self._give_system_log()
        self.home.write("/run/begin", "")
        self._begun = self.home.path("/run/begin").stat().st_ctime
        self.watch = ProcessWatch(self.home)

    def _give_system_log(self):
        # The socket must not appear in the machine's /dev, so the home receives a private /dev.
        self.home.run(
            "sh",
            "-ec",
            """
            mkdir /run/dev && mount --rbind /dev /run/dev
            mount -t tmpfs -o mode=755 tmpfs /dev
            cd /run/dev
            cp -a null zero full random urandom tty ptmx fd stdin stdout stderr /dev
            for folder in shm pts net; do mkdir /dev/$folder && mount --rbind $folder /dev/$folder; done
            cd / && umount -l /run/dev && rmdir /run/dev""",
        )
        self._log = self.home.popen(
            "/usr/bin/python3",
            f"{homes.HARNESS}/system_log.py",
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )
        if self._log.stdout.readline() != "ready\n":
            raise RuntimeError("the home's system log did not start")

    def system_log(self):
        return self.home.path("/var/log/syslog").read_text(encoding="utf-8", errors="replace")

    def _files(self, folders):
        """Yields (path at home, status, content) of the regular files that are new or were changed."""
        for top in folders:
            for folder, below, names in os.walk(self.home.path(top)):
                below[:] = [name for name in below if not self._elsewhere(f"{folder}/{name}")]
                for name in names:
                    try:
                        status = os.lstat(f"{folder}/{name}")
                        if (
                            stat.S_ISREG(status.st_mode)
                            and status.st_ctime >= self._begun
                            and status.st_size <= _LARGEST
                        ):
                            inside = "/" + os.path.relpath(f"{folder}/{name}", self.home.path("/"))
                            yield inside, status, Path(folder, name).read_bytes()
                    except FileNotFoundError:
                        continue  # removed meanwhile

    def _elsewhere(self, folder):
        """True for a folder without files of a home. Other work can change a source tree at any time."""
        if os.path.exists(f"{folder}/.git"):
            return True
        inside = "/" + os.path.relpath(folder, self.home.path("/"))
        return inside in ("/proc", "/sys", homes.CONTENTS, homes.HARNESS) or os.path.islink(folder)

    def _nameless(self):
        """Yields (description, status, content) of open files without a name, those in memory among them."""
        for process in self.home.processes():
            try:
                descriptors = os.listdir(f"/proc/{process.pid}/fd")
            except OSError:
                continue
            for number in descriptors:
                path = f"/proc/{process.pid}/fd/{number}"
                try:
                    target = os.readlink(path)
                    status = os.stat(path)
                    if (
                        target.endswith("(deleted)")
                        and stat.S_ISREG(status.st_mode)
                        and status.st_size <= _LARGEST
                    ):
                        yield f"open in {process.name}: {target}", status, Path(path).read_bytes()
                except OSError:
                    continue

    def files(self):
        """The findings in the folders in which a home writes, and in open files without a name."""
        return {
            Finding(name, form, place, stat.S_IMODE(status.st_mode), status.st_uid)
            for source in (self._files(OWN), self._nameless())
            for place, status, data in source
            for name, form in self.patterns.found_in(data).items()
        }

    def new_files(self):
        """The findings in every file of the whole file system that is new or was changed."""
        return {
            Finding(name, form, place, stat.S_IMODE(status.st_mode), status.st_uid)
            for place, status, data in self._files(("/",))
            for name, form in self.patterns.found_in(data).items()
        }

    def cores(self):
        """The places of the core files among all new files."""
        return [
            place
            for place, _status, data in self._files(("/",))
            if data[:4] == b"\x7fELF" and data[16] == _CORE
        ]

    def processes(self):
        """The findings in argument lists and environments since the start of the search."""
        return self.watch.findings(self.patterns)

    def close(self):
        self.watch.stop()
        self._log.stdin.close()
        self._log.wait(EVENTUALLY)
        self._log.stdout.close()
