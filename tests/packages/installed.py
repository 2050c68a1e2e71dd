"""A Debian machine as far as its files go, on which packages are installed and removed."""

import dataclasses
import hashlib
import os
import stat
import subprocess
from pathlib import Path

from world import home_init

# Of dpkg, apt and adduser, and caches: they record that something was installed.
RECORDS = (
    "run/adduser",
    "var/lib/dpkg",
    "var/lib/apt",
    "var/lib/systemd/deb-systemd-helper-enabled",
    "var/lib/systemd/deb-systemd-helper-masked",
    "var/cache",
    "var/log",
    "dev",
    "proc",
    "tmp",
)
# The former version of each, which the tools for accounts keep.
BACKUPS = ("etc/passwd-", "etc/shadow-", "etc/group-", "etc/gshadow-", "etc/subuid-", "etc/subgid-")


@dataclasses.dataclass(frozen=True)
class Entry:
    """What is at a path."""

    kind: int
    mode: int
    owner: tuple
    content: str

    @classmethod
    def read(cls, path):
        state = path.lstat()
        content = ""
        if stat.S_ISLNK(state.st_mode):
            content = os.readlink(path)
        elif stat.S_ISREG(state.st_mode):
            content = hashlib.sha256(path.read_bytes()).hexdigest()
        kind = stat.S_IFMT(state.st_mode)
        return cls(kind, stat.S_IMODE(state.st_mode), (state.st_uid, state.st_gid), content)


class Machine:
    """The files of `lower` (as the option "lowerdir" has them); what is written stays in `folder`."""

    def __init__(self, lower, folder):
        self._lower = lower
        self.upper, self._scratch, self.root = (folder / name for name in ("upper", "scratch", "root"))

    def __enter__(self):
        for folder in (self.upper, self._scratch, self.root):
            folder.mkdir()
        options = f"lowerdir={self._lower},upperdir={self.upper},workdir={self._scratch}"
        subprocess.run(["mount", "-t", "overlay", "overlay", "-o", options, self.root], check=True)
        subprocess.run(["mount", "-t", "proc", "proc", self.root / "proc"], check=True)
        home_init.make_devices(self.root / "dev")
        return self

    def __exit__(self, *_error):
        subprocess.run(["umount", "--recursive", self.root], check=True)

    def run(self, *command, check=True):
        """Runs a command on the machine; returns its output with both streams."""
        done = subprocess.run(
            [
                "chroot",
                self.root,
                "env",
                "-i",
                "PATH=/usr/sbin:/usr/bin:/sbin:/bin",
                "LC_ALL=C.UTF-8",
                *command,
            ],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            check=False,
        )
        assert not check or done.returncode == 0, f"{command}: exit status {done.returncode}\n{done.stdout}"
        return done.stdout

    def install(self, *files):
        """Installs package files by apt, which finds here everything that they depend on."""
        for file in files:
            (self.root / "tmp" / file.name).write_bytes(file.read_bytes())
        return self.run(
            "apt-get",
            "-y",
            "-q",
            "--no-install-recommends",
            "install",
            *(f"/tmp/{file.name}" for file in files),
        )

    def files(self):
        """path -> Entry of everything but the records of package tools."""
        found = {}
        for folder, names, files in os.walk(self.root):
            here = Path(folder).relative_to(self.root)
            names[:] = [name for name in names if str(here / name) not in RECORDS]
            for name in (*names, *files):
                path = here / name
                if str(path) not in BACKUPS + RECORDS:
                    found[str(path)] = Entry.read(self.root / path)
        return found
