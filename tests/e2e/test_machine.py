"""The comparison of the machine before and after: it must report every kind of change."""

import os
import signal
import subprocess
import time
from pathlib import Path

import pytest

from harness.home.deadlines import EVENTUALLY, POLL
from world import enter, machine, network

NO_NAMESPACE = 0  # no PID namespace has this inode


def differences_after(change):
    before = machine.Snapshot()
    change()
    return [line.split(":")[0] for line in before.differences(machine.Snapshot(), NO_NAMESPACE)]


@pytest.fixture
def own_etc():
    """A writable copy of /etc during the test, in the mount namespace in which the test runs."""
    folder = enter.BASE / "etc"
    subprocess.run(["cp", "-a", "/etc", str(folder)], check=True)
    subprocess.run(["mount", "--bind", str(folder), "/etc"], check=True)
    yield
    subprocess.run(["umount", "/etc"], check=True)
    subprocess.run(["rm", "-rf", str(folder)], check=True)


def test_nothing_changed():
    assert differences_after(lambda: None) == []


def test_links_and_routes():
    def change():
        network.run("ip", "link", "add", "seen", "type", "veth", "peer", "name", "seen2")
        network.run("ip", "address", "add", "192.0.2.77/24", "dev", "seen")
        network.run("ip", "link", "set", "seen", "up")

    try:
        assert differences_after(change) == ["routes changed", "links changed"]
    finally:
        network.run("ip", "link", "delete", "seen")


def test_firewall():
    try:
        assert differences_after(lambda: network.run("nft", "add", "table", "ip", "seen")) == [
            "firewall changed"
        ]
    finally:
        network.run("nft", "delete", "table", "ip", "seen")


def test_named_namespaces():
    try:
        assert differences_after(lambda: network.run("ip", "netns", "add", "seen")) == ["namespaces changed"]
    finally:
        network.run("ip", "netns", "delete", "seen")


@pytest.mark.parametrize(
    "file, aspect",
    [
        ("/etc/passwd", "users"),
        ("/etc/shadow", "users"),
        ("/etc/resolv.conf", "resolver"),
        ("/etc/hosts", "resolver"),
    ],
)
@pytest.mark.usefixtures("own_etc")
def test_files(file, aspect):
    def change():
        with open(file, "a", encoding="utf-8") as opened:
            opened.write("# seen\n")

    assert differences_after(change) == [f"{aspect} changed"]


@pytest.mark.usefixtures("own_etc")
def test_file_mode():
    assert differences_after(lambda: os.chmod("/etc/shadow", 0o604)) == ["users changed"]


def test_killed_openvpn():
    program = Path("/run/openvpn")
    program.write_bytes(Path("/usr/bin/sleep").read_bytes())
    program.chmod(0o755)
    with subprocess.Popen([program, "100"]) as process:
        end = time.monotonic() + EVENTUALLY
        while ("openvpn" not in dict(machine.processes()).values()) and time.monotonic() < end:
            time.sleep(POLL)

        def change():
            process.kill()
            process.wait()

        assert differences_after(change) == ["OpenVPN processes of the machine are gone"]


@pytest.fixture
def nested():
    """A test network inside this one, with a process that does not end in a namespace below it."""
    command = ["unshare", "--pid", "--fork", "sleep", "86400"]
    program = str(Path(enter.__file__).resolve())
    with subprocess.Popen([enter.PYTHON, program, "--", *command], stdout=subprocess.DEVNULL) as process:
        try:
            end = time.monotonic() + EVENTUALLY
            while time.monotonic() < end:
                namespace = namespace_of_first(process)
                if namespace is not None and "sleep" in " ".join(machine.left_behind(namespace)):
                    break
                time.sleep(POLL)
            else:
                pytest.fail("the nested test network was not made")
            yield process, namespace
        finally:
            process.kill()


def namespace_of_first(process):
    """The PID namespace that the nested enter.py made, which is that of its unshare's children."""
    for pid, _name in machine.processes():
        try:
            if machine.parent_of(pid) == process.pid:
                return os.stat(f"/proc/{pid}/ns/pid_for_children").st_ino
        except OSError:
            continue
    return None


def test_processes_left_behind_are_seen(nested):
    _process, namespace = nested
    left = " ".join(machine.left_behind(namespace))
    assert "sleep" in left and "python3" in left


@pytest.mark.parametrize("number", [signal.SIGKILL, signal.SIGTERM])
def test_no_process_outlives_enter(nested, number):
    process, namespace = nested
    process.send_signal(number)
    process.wait(EVENTUALLY)
    end = time.monotonic() + EVENTUALLY
    while machine.left_behind(namespace) and time.monotonic() < end:
        time.sleep(POLL)
    assert machine.left_behind(namespace) == []
