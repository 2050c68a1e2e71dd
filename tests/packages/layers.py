#!/usr/bin/python3
"""layers.py DEBS: makes the root file systems of the tests; prints them as the option "lowerdir" has them.

The first one is a bare Debian with nothing but what the packages in DEBS depend on; the second one adds the
programs with which the tests drive a session.
"""

import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
sys.path[:0] = [str(ROOT / "tests" / "e2e")]

from world import debian  # noqa: E402 # pylint: disable=wrong-import-position

PACKAGES = ("quorvane", "quorvane-service")
# The headings of scripts/packages.txt below which these programs are.
HEADING = "# the test network of the end-to-end tests and of ./run"
# What autopkgtest itself needs there.
FOR_AUTOPKGTEST = ("apt-utils", "dpkg-dev")


def package_file(debs, name):
    """The one file of the package in the folder."""
    (found,) = Path(debs).glob(f"{name}_*.deb")
    return found


def dependencies(debs):
    """The names that the packages depend on; of alternatives the first one, as apt does."""
    names = set()
    for package in PACKAGES:
        for field in ("Depends", "Pre-Depends"):
            command = ["dpkg-deb", "--field", package_file(debs, package), field]
            text = subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout
            names |= {re.split(r"[ (|:]", entry.strip())[0] for entry in text.split(",") if entry.strip()}
    return tuple(sorted(names - set(PACKAGES)))


def tools():
    lines = (ROOT / "scripts" / "packages.txt").read_text(encoding="utf-8").splitlines()
    listed = [line for line in lines[lines.index(HEADING) + 1 :] if not line.startswith("#")]
    return tuple(sorted({*listed, *FOR_AUTOPKGTEST}))


def layers(debs):
    bare = debian.Layer("quorvane-packages", dependencies(debs))
    return bare, debian.Layer("quorvane-packages-tools", tools(), below=bare)


if __name__ == "__main__":
    sys.exit(debian.print_lower(layers(sys.argv[1])[1]))
