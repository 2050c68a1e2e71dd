"""Root file systems of a plain Debian, kept in the user's cache.

A layer is a Debian of the machine's own release with a list of packages, or what another list of packages
adds to such a layer. The machine itself gets none of these packages. A layer is kept and made anew when its
list or one below it changes. Making one needs root and debootstrap.
"""

import contextlib
import dataclasses
import hashlib
import os
import re
import shutil
import subprocess
import sys
import time
from pathlib import Path

# What the list of packages does not show: a change here makes every layer anew.
FORM = "1"
TRIES = 3  # of what needs the network
NO_SERVICES = "#!/bin/sh\nexit 101\n"
DPKG_OPTIONS = """force-unsafe-io
path-exclude=/usr/share/help/*
path-exclude=/usr/share/wallpapers/*/contents/images/*
"""
WITHOUT_DOCUMENTS = "path-exclude=/usr/share/doc/*\npath-exclude=/usr/share/man/*\n"
# In namespaces of its own, so that nothing that an installation starts or mounts outlives it. $1: the root,
# $2: the packages, $3: the options of an overlay that is mounted there first, $4: commands to end with.
INSTALL = """set -e
[ -z "$3" ] || mount -t overlay overlay -o "$3" "$1"
mount -t proc proc "$1/proc"
chroot "$1" apt-get -qq update
chroot "$1" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 \
    apt-get -y -qq -o Dpkg::Use-Pty=0 -o Acquire::Retries=3 --no-install-recommends install $2
chroot "$1" apt-get clean
cd "$1"
eval "$4"
"""


@dataclasses.dataclass(frozen=True)
class Layer:
    """One root file system, or what is added to the one below."""

    name: str  # of its folder in the cache
    packages: tuple
    below: "Layer | None" = None
    # Shell commands that change it at the end; the working folder is its root.
    commands: str = ""
    documents: bool = True

    @property
    def folder(self):
        cache = os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache"
        return Path(cache) / self.name / "root"

    @property
    def lower(self):
        """The layers as the option "lowerdir" of an overlay has them."""
        return f"{self.folder}:{self.below.lower}" if self.below else str(self.folder)

    def identity(self):
        """Changes with everything that the layer consists of."""
        parts = [FORM, *sorted(self.packages), self.commands, str(self.documents)]
        parts.append(self.below.identity() if self.below else "")
        return hashlib.sha256("\n".join(parts).encode()).hexdigest()

    def is_made(self):
        mark = self.folder.with_name("made-of")
        return mark.exists() and mark.read_text(encoding="utf-8") == self.identity()

    def ensure(self):
        """Makes the layer and those below it where that is needed. Only as root."""
        if self.below:
            self.below.ensure()
        if self.is_made():
            return
        if shutil.which("debootstrap") is None:
            install = ["apt-get", "install", "-y", "-qq", "--no-install-recommends", "debootstrap"]
            subprocess.run(install, check=True, stdout=subprocess.DEVNULL)
        begun = time.monotonic()
        print(f"making the root file system {self.name}, which takes some minutes", file=sys.stderr)
        log = self.folder.with_name("log")
        for attempt in range(TRIES):
            try:
                self._make(log)
                break
            except subprocess.CalledProcessError:
                with contextlib.suppress(OSError):
                    sys.stderr.write(log.read_text(errors="replace")[-4000:])
                if attempt == TRIES - 1:
                    raise
        print(f"made in {time.monotonic() - begun:.0f} s", file=sys.stderr)

    def _make(self, log):
        """Makes it beside the old one, and replaces that at the end."""
        new, scratch = self.folder.with_name("new"), self.folder.with_name("scratch")
        self.folder.parent.mkdir(parents=True, exist_ok=True)
        self.folder.with_name("made-of").unlink(missing_ok=True)
        for old in (new, scratch, self.folder):
            shutil.rmtree(old, ignore_errors=True)
        with log.open("wb") as output:
            logged = {"stdin": subprocess.DEVNULL, "stdout": output, "stderr": output}
            root, overlay = new, ""
            if self.below:
                for folder in (new, scratch, self.folder):
                    folder.mkdir()
                root = self.folder
                overlay = f"lowerdir={self.below.lower},upperdir={new},workdir={scratch}"
            else:
                self._bootstrap(new, logged)
            namespaces = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--propagation", "private"]
            script = ["sh", "-c", INSTALL, "sh", str(root), " ".join(self.packages), overlay, self.commands]
            subprocess.run([*namespaces, *script], check=True, **logged)
        if self.below:
            self.folder.rmdir()
            shutil.rmtree(scratch)
        new.rename(self.folder)
        self.folder.with_name("made-of").write_text(self.identity(), encoding="utf-8")

    def _bootstrap(self, new, logged):
        suite = release()
        mirror = next(address for address, name, _ in sources() if name == suite)
        subprocess.run(["debootstrap", "--variant=minbase", suite, str(new), mirror], check=True, **logged)
        lines = "".join(f"deb {' '.join(source)}\n" for source in sources())
        for name, text in {
            "etc/apt/sources.list": lines,
            "etc/apt/apt.conf.d/80proxies": _proxies(),
            "etc/dpkg/dpkg.cfg.d/quick": DPKG_OPTIONS + ("" if self.documents else WITHOUT_DOCUMENTS),
            "usr/sbin/policy-rc.d": NO_SERVICES,
        }.items():
            (new / name).write_text(text, encoding="utf-8")
        (new / "usr/sbin/policy-rc.d").chmod(0o755)
        for name in ("resolv.conf", "hosts"):
            shutil.copy(f"/etc/{name}", new / "etc" / name)


def release():
    """The code name of the machine's Debian."""
    text = Path("/etc/os-release").read_text(encoding="utf-8")
    return re.search(r"^VERSION_CODENAME=(\S+)$", text, re.MULTILINE)[1]


def _output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def sources():
    """The machine's own sources of Debian packages, as (address, suite, component), mirrors included."""
    form = "$(REPO_URI) $(RELEASE) $(COMPONENT) $(SUITE)"
    listed = _output("apt-get", "indextargets", "--format", form, "Created-By: Packages", "Origin: Debian")
    return sorted({tuple(line.split()[:3]) for line in listed.splitlines()})


def _proxies():
    dumped = _output("apt-config", "dump").splitlines()
    return "".join(f"{line}\n" for line in dumped if re.match(r"Acquire::.*Proxy", line))


def print_lower(layer):
    """For a script: makes the layer as root when that is needed, and prints it as "lowerdir" has it."""
    if not layer.is_made() and os.geteuid() != 0:
        cache = os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache"
        again = ["env", f"XDG_CACHE_HOME={cache}", sys.executable, "-B", *sys.argv]
        os.execvp("sudo", ["sudo", "--", *again])
    try:
        layer.ensure()
    except (OSError, subprocess.CalledProcessError) as error:
        print(f"the root file system could not be made: {error}", file=sys.stderr)
        return 1
    print(layer.lower)
    return 0
