"""The test that the source package brings for a distribution, run by the distribution's own program."""

import subprocess

from installed import Machine
from layers import PACKAGES, ROOT, layers, package_file


def test_main_job_of_the_installed_packages(debs, tmp_path):
    _bare, tools = layers(debs)
    tree, output = tmp_path / "tree", tmp_path / "output"
    tree.mkdir()
    with subprocess.Popen(["git", "-C", ROOT, "archive", "HEAD"], stdout=subprocess.PIPE) as archive:
        subprocess.run(["tar", "-x", "-C", tree], stdin=archive.stdout, check=True)
    folder = tmp_path / "machine"
    folder.mkdir()
    with Machine(tools.lower, folder) as machine:
        files = [package_file(debs, name) for name in PACKAGES]
        machine.install(*files)
        done = subprocess.run(
            # "chroot" gives no isolation of its own: the test makes what it needs.
            [
                "autopkgtest",
                "--ignore-restrictions=isolation-container",
                "--output-dir",
                output,
                "--no-built-binaries",
            ]
            + [*files, f"{tree}/", "--", "chroot", machine.root],
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            check=False,
        )
    summary = output / "summary"
    assert done.returncode == 0, done.stdout[-4000:]
    assert summary.read_text(encoding="utf-8").split() == ["main-job", "PASS"]
