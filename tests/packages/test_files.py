"""The packages as files: contents, what the distribution's tools find, and that a build can be repeated."""

import hashlib
import re
import stat
import subprocess
import tarfile

import pytest

from layers import PACKAGES, package_file

NAME = "com.tallowind.Quorvane"
LARGEST_CLIENT = 1.5e6  # bytes


def run(*command, **options):
    return subprocess.run(
        command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, **options
    )


@pytest.fixture(name="contents", scope="module")
def fixture_contents(debs, tmp_path_factory):
    """The files of both packages."""
    folder = tmp_path_factory.mktemp("contents")
    for package in PACKAGES:
        subprocess.run(["dpkg-deb", "--extract", package_file(debs, package), folder], check=True)
    return folder


def test_every_package_is_there(debs):
    names = {path.name.split("_")[0] for path in debs.glob("*.deb")}
    assert names == {*PACKAGES, *(f"{name}-dbgsym" for name in PACKAGES)}


def test_two_builds_make_the_same_bytes(debs):
    def sums(folder):
        return {path.name: hashlib.sha256(path.read_bytes()).hexdigest() for path in folder.glob("*.deb")}

    first = sums(debs)
    assert len(first) == 4 and first == sums(debs / "again")


def test_lintian_finds_nothing(debs):
    (changes,) = debs.glob("*.changes")
    # It runs as root by request only.
    done = run("lintian", "--allow-root", "--fail-on", "error,warning", "--tag-display-limit", "0", changes)
    assert done.returncode == 0, done.stdout
    assert not re.search(r"^[EW]:", done.stdout, re.MULTILINE), done.stdout


def test_entry_of_the_menu_and_data_for_software_centres(contents):
    done = run("desktop-file-validate", contents / f"usr/share/applications/{NAME}.desktop")
    assert (done.returncode, done.stdout) == (0, "")
    done = run(
        "appstreamcli",
        "validate",
        "--no-net",
        "--pedantic",
        contents / f"usr/share/metainfo/{NAME}.metainfo.xml",
    )
    assert done.returncode == 0 and "successful" in done.stdout, done.stdout


@pytest.mark.parametrize("page", ["man1/quorvane.1", "man5/service.conf.5", "man8/quorvane-service.8"])
def test_manual_page(contents, page):
    done = run(
        "man",
        "--warnings",
        "--local-file",
        "--encoding=UTF-8",
        contents / f"usr/share/man/{page}.gz",
        env={"PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8", "MANROFFSEQ": "", "MANWIDTH": "80"},
    )
    assert done.returncode == 0 and "SYNOPSIS" in done.stdout
    assert "warning" not in done.stdout, done.stdout


def test_every_option_is_in_the_manual_page(contents):
    done = run("man", "--local-file", contents / "usr/share/man/man1/quorvane.1.gz")
    text = re.sub(r".\x08", "", done.stdout)
    shown = run(contents / "usr/lib/quorvane/bin/quorvane", "--help").stdout
    options = set(re.findall(r"^  (?:-h, )?(--[a-z]+) ", shown, re.MULTILINE))
    assert "--locations" in options
    assert {
        option for option in options if not re.search(rf"^ +(-h, )?{option}\b", text, re.MULTILINE)
    } == set()


def test_every_option_of_the_service_is_in_its_manual_page(contents):
    done = run("man", "--local-file", contents / "usr/share/man/man8/quorvane-service.8.gz")
    text = re.sub(r".\x08", "", done.stdout).replace("\u2010", "-")
    shown = run(contents / "usr/sbin/quorvane-service", "--help").stdout
    options = set(re.findall(r"^  (--[a-z-]+)\b", shown, re.MULTILINE))
    assert {"--addresses", "--json", "--check"} <= options
    assert {option for option in options if not re.search(rf"{option}\b", text)} == set()


def test_everything_belongs_to_root_and_only_root_changes_it(debs):
    for package in PACKAGES:
        command = ["dpkg-deb", "--fsys-tarfile", package_file(debs, package)]
        with subprocess.Popen(command, stdout=subprocess.PIPE) as unpack:
            with tarfile.open(fileobj=unpack.stdout, mode="r|") as archive:
                for member in archive:
                    assert (member.uid, member.gid) == (0, 0), member.name
                    writable = member.mode & (stat.S_IWGRP | stat.S_IWOTH)
                    assert member.issym() or not writable, member.name
                    assert not member.mode & (stat.S_ISUID | stat.S_ISGID), member.name


def test_client_is_small(debs):
    assert package_file(debs, "quorvane").stat().st_size <= LARGEST_CLIENT


@pytest.mark.parametrize(
    "name", ["quorvane-service-api", "quorvane-service-gateway", "quorvane-service-renew"]
)
def test_unit_is_understood(contents, tmp_path, name):
    """Its program is looked for in the package."""
    units = contents / "lib/systemd/system"
    unit = (units / f"{name}.service").read_text(encoding="utf-8")
    program = contents / "usr/sbin/quorvane-service"
    assert "ExecStart=/usr/sbin/quorvane-service " in unit
    file = tmp_path / f"{name}.service"
    text = re.sub(
        r"^Documentation=.*\n", "", unit.replace("/usr/sbin/quorvane-service", str(program)), flags=re.M
    )
    file.write_text(text, encoding="utf-8")
    done = run("systemd-analyze", "verify", "--man=no", file)
    assert (done.returncode, done.stdout) == (0, "")
    done = run("systemd-analyze", "security", "--offline=true", "--threshold=20", file)
    assert done.returncode == 0, done.stdout


def test_timer_of_the_renewal_is_understood(contents, tmp_path):
    for kind in ("timer", "service"):
        unit = (contents / f"lib/systemd/system/quorvane-service-renew.{kind}").read_text(encoding="utf-8")
        program = str(contents / "usr/sbin/quorvane-service")
        file = tmp_path / f"quorvane-service-renew.{kind}"
        file.write_text(unit.replace("/usr/sbin/quorvane-service", program), encoding="utf-8")
    done = run("systemd-analyze", "verify", "--man=no", tmp_path / "quorvane-service-renew.timer")
    assert (done.returncode, done.stdout) == (0, "")
