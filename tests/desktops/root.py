#!/usr/bin/python3
"""root.py: prints the folder with the desktops' root file system, and makes it first when that is needed."""

import sys
from pathlib import Path

sys.path[:0] = [str(Path(__file__).resolve().parent.parent / "e2e")]

from known import packages  # noqa: E402 # pylint: disable=wrong-import-position
from world import debian  # noqa: E402 # pylint: disable=wrong-import-position

# A copy has no capability of its own: where a container lacks one, a program that has it does not even start.
PLAIN_KWIN = "cp -p usr/bin/kwin_wayland kwin.copy && mv kwin.copy usr/bin/kwin_wayland"
DESKTOPS = debian.Layer("quorvane-desktops", tuple(packages()), commands=PLAIN_KWIN, documents=False)

if __name__ == "__main__":
    sys.exit(debian.print_lower(DESKTOPS))
