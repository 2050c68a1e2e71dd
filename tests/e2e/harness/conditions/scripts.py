"""A contents folder that holds only the shell resources, for their tests."""

import shutil
from pathlib import Path

RESOURCES = Path(__file__).resolve().parents[4] / "resources"


def contents(folder, **defaults):
    """Makes the folder; `defaults` become Resources/service.conf. Returns its path."""
    target = Path(folder) / "Resources"
    target.mkdir(parents=True)
    for script in (RESOURCES / "scripts").iterdir():
        shutil.copy(script, target)
    lines = "".join(f"{key} = {value}\n" for key, value in defaults.items())
    (target / "service.conf").write_text("# built-in defaults\n" + lines, encoding="utf-8")
    # Users of the home read it through a bind mount.
    for path in (folder, target):
        Path(path).chmod(0o755)
    return folder
