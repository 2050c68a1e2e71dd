"""Sessions of the installed programs, and what an upgrade, a removal and a purge do to one."""

import json
import os
import re
import signal
import subprocess

import pytest

from harness.drive.terminal import DONE, FAILED, Terminal
from layers import package_file
from world import network
from world.accounts import ADA
from world.service import BERLIN

COMMAND, PROGRAM = "/usr/bin/quorvane", "/usr/lib/quorvane/bin/quorvane"
LOCK = "/run/quorvane-lock"


@pytest.fixture(name="terminal")
def fixture_terminal(client):
    return Terminal(client)


@pytest.fixture(name="hidden")
def fixture_hidden(client, terminal):
    """The lent address of a session that a command has begun."""
    client.remember_administrator(ADA, networkLock=True)
    code, (lent,) = terminal.run("--hide", BERLIN.title)
    assert code == DONE and lent in BERLIN.addresses
    assert client.home.public_address() == lent
    return lent


def install(home, file):
    """Installs the package file on the running machine, over another version."""
    home.write(f"/tmp/{file.name}", file.read_bytes())
    home.run("dpkg", "--install", f"/tmp/{file.name}")


def tables(home):
    return home.run("nft", "list", "tables").stdout


def state(client):
    """What a purge must leave as it was on the machine beside files."""
    home = client.home
    routes = home.run("ip", "-4", "route", "show", "table", "all").stdout
    links = [link["ifname"] for link in json.loads(home.run("ip", "-json", "link").stdout)]
    return routes, links, tables(home)


@pytest.fixture(name="newer", scope="session")
def fixture_newer(debs, tmp_path_factory):
    """The client's package with a later version number."""
    folder = tmp_path_factory.mktemp("newer")
    subprocess.run(
        ["dpkg-deb", "--raw-extract", package_file(debs, "quorvane"), folder / "files"], check=True
    )
    control = folder / "files/DEBIAN/control"
    text = control.read_text(encoding="utf-8")
    control.write_text(re.sub(r"^(Version: .*)$", r"\1+later", text, flags=re.MULTILINE), encoding="utf-8")
    plist = folder / "files/usr/lib/quorvane/Info.plist"
    plist.write_text(plist.read_text(encoding="utf-8").replace("1.0.0", "1.0.1"), encoding="utf-8")
    file = folder / "quorvane_later.deb"
    subprocess.run(["dpkg-deb", "--root-owner-group", "--build", folder / "files", file], check=True)
    return file


def test_main_job_by_commands(client, terminal, hidden):
    """What is on the path runs, and the installed guard starts OpenVPN."""
    home = client.home
    assert home.run("readlink", "-f", COMMAND).stdout.strip() == PROGRAM
    assert list(client.world.service.lent().values()) == [hidden]
    assert terminal.status()["current_address"] == hidden
    code, (changed,) = terminal.run("--change")
    assert code == DONE and home.public_address() == changed
    assert terminal.run("--stop") == (DONE, [])
    assert home.public_address() == network.REAL_ADDRESS
    assert terminal.run("--quit") == (DONE, [])


def test_session_goes_on_during_an_upgrade(client, terminal, hidden, newer):
    home = client.home
    install(home, newer)
    assert home.run("quorvane", "--version").stdout == "1.0.1\n"
    assert terminal.status()["current_address"] == hidden and home.public_address() == hidden
    code, (changed,) = terminal.run("--change")
    assert code == DONE and home.public_address() == changed
    assert terminal.run("--quit") == (DONE, [])
    home.wait_for(lambda: home.public_address() == network.REAL_ADDRESS, "the tunnel has ended")
    assert client.preferences()["networkLock"] is True
    assert terminal.run("--hide", BERLIN.title)[0] == DONE
    assert terminal.run("--quit") == (DONE, [])


def test_removal_ends_the_session(client, terminal):
    before = state(client)
    client.remember_administrator(ADA, networkLock=True)
    assert terminal.run("--hide", BERLIN.title)[0] == DONE
    client.home.run("dpkg", "--remove", "quorvane")
    assert client.home.public_address() == network.REAL_ADDRESS
    assert not client.home.processes("quorvane") and not client.home.processes("openvpn")
    assert state(client) == before
    assert client.preferences()["networkLock"] is True, "the settings are the user's"


def test_removal_lifts_the_lock_of_a_killed_session(client, hidden):
    assert hidden
    home = client.home
    for process in home.processes("quorvane"):
        os.kill(process.pid, signal.SIGKILL)
    assert home.path(LOCK).exists() and "quorvane_lock" in tables(home)
    home.run("dpkg", "--purge", "quorvane")
    assert not home.path(LOCK).exists() and "quorvane_lock" not in tables(home)
    assert home.public_address() == network.REAL_ADDRESS
    assert not home.processes("openvpn")


def test_copy_that_its_user_can_change_is_refused(client):
    """Root would run what such a copy contains."""
    home = client.home
    home.run("cp", "-r", "/usr/lib/quorvane", f"{client.folder}/copy", user=client.user)
    client.request(
        "start",
        key="copy",
        arguments=[f"{client.folder}/copy/bin/quorvane"],
        environment={},
        output=f"{client.folder}/copy.log",
    )
    client.wait_alert(key="copy")
    (alert,) = client.alerts(key="copy")
    assert "The program's files are not safe." in alert["texts"]
    client.dismiss_alert(key="copy")
    assert client.wait_exit(key="copy") == FAILED
    assert f'Another user can change "{client.folder}/copy/Resources"' in client.output(key="copy")
