"""Small, full and read-only disks in the home, and their content."""

import contextlib
import errno
import os
from pathlib import PurePosixPath

PAGE = 4096
BALLAST = ".ballast"


class Disk:
    """A small tmpfs in the home."""

    def __init__(self, home, folder):
        self.home, self.folder = home, folder

    def _path(self, name):
        return self.home.path(str(PurePosixPath(self.folder) / name))

    def fill(self, spare_pages=0):
        """Fills the disk up to this number of free pages."""
        with self._path(BALLAST).open("ab", buffering=0) as ballast:
            with contextlib.suppress(OSError):
                while True:
                    ballast.write(b"\0" * PAGE)
            size = ballast.seek(0, os.SEEK_END) // PAGE * PAGE
            ballast.truncate(max(0, size - spare_pages * PAGE))
        assert self.free_pages() == spare_pages

    def fill_with_files(self):
        """Uses up all inodes, while bytes remain free."""
        made = 0
        with contextlib.suppress(OSError):
            while True:
                self._path(f"{BALLAST}-{made}").touch(exist_ok=False)
                made += 1
        assert made > 0 and self.free_pages() > 0

    def free_pages(self):
        state = os.statvfs(self._path("."))
        return state.f_bavail * state.f_frsize // PAGE

    def free(self):
        """Removes the files that fill the disk."""
        for ballast in self._path(".").glob(f"{BALLAST}*"):
            ballast.unlink()

    def make_read_only(self):
        self.home.run("mount", "-o", "remount,ro", self.folder)

    def make_writable(self):
        self.home.run("mount", "-o", "remount,rw", self.folder)


class SmallDisk(Disk):
    """A disk mounted over one folder of a user, with the folder's content; a missing folder is made."""

    def __init__(self, home, folder, owner, *, size="512k", files=None):
        super().__init__(home, folder)
        uid, gid = home.uid(owner)
        staged = f"/var/tmp/staged{folder.replace('/', '-')}"
        home.run("mkdir", "-p", staged)
        home.run("install", "-d", "-o", owner, "-g", owner, "-m", "700", folder, user=owner)
        home.run("cp", "-a", f"{folder}/.", staged)
        options = f"size={size},mode=700,uid={uid},gid={gid}" + (f",nr_inodes={files}" if files else "")
        home.run("mount", "-t", "tmpfs", "-o", options, "small", folder)
        home.run("cp", "-a", f"{staged}/.", folder)


class ShrunkDisk(Disk):
    """An existing tmpfs, made smaller."""

    def __init__(self, home, folder, size):
        super().__init__(home, folder)
        home.run("mount", "-o", f"remount,size={size}", folder)


def check_full(home, folder, owner):
    """Checks that the user really cannot write there."""
    done = home.run("tee", f"{folder}/probe", user=owner, check=False, input="x")
    home.run("rm", "-f", f"{folder}/probe", check=False)
    text = done.stderr
    assert any(os.strerror(number) in text for number in (errno.ENOSPC, errno.EROFS)), text


def contents(home, folder):
    """Every file below a folder of the home: relative path -> bytes."""
    root = home.path(folder)
    return {
        str(path.relative_to(root)): path.read_bytes()
        for path in root.rglob("*")
        if path.is_file() and not path.is_symlink() and not path.name.startswith(BALLAST)
    }
