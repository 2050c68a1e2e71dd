"""The comparison of the machine before and after: it must see what it is there to see."""

import os
import signal
import subprocess
import time
from pathlib import Path

import pytest

from world import enter, machine, network

NOWHERE = 0  # no PID namespace has this inode


def differences_after(change):
    before = machine.Snapshot()
    change()
    return [line.split(":")[0] for line in before.differences(machine.Snapshot(), NOWHERE)]


@pytest.fixture
def own_etc():
    """A writable copy of /etc for as long as the test runs; the test runs in namespaces of its own already."""
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
def test_files(own_etc, file, aspect):  # pylint: disable=unused-argument
    def change():
        with open(file, "a", encoding="utf-8") as opened:
            opened.write("# seen\n")

    assert differences_after(change) == [f"{aspect} changed"]


def test_file_mode(own_etc):  # pylint: disable=unused-argument
    assert differences_after(lambda: os.chmod("/etc/shadow", 0o604)) == ["users changed"]


def test_killed_openvpn():
    program = Path("/run/openvpn")
    program.write_bytes(Path("/usr/bin/sleep").read_bytes())
    program.chmod(0o755)
    with subprocess.Popen([program, "100"]) as process:
        end = time.monotonic() + 5
        while ("openvpn" not in dict(machine.processes()).values()) and time.monotonic() < end:
            time.sleep(0.01)

        def change():
            process.kill()
            process.wait()

        assert differences_after(change) == ["OpenVPN processes of the machine are gone"]


@pytest.fixture
def nested():
    """A small world in this one, with a process that would run for ever in a namespace below it."""
    command = ["unshare", "--pid", "--fork", "sleep", "86400"]
    program = str(Path(enter.__file__).resolve())
    with subprocess.Popen([enter.PYTHON, program, "--", *command], stdout=subprocess.DEVNULL) as process:
        try:
            end = time.monotonic() + 10
            while time.monotonic() < end:
                namespace = namespace_of_first(process)
                if namespace is not None and "sleep" in " ".join(machine.left_behind(namespace)):
                    break
                time.sleep(0.01)
            else:
                pytest.fail("the nested world did not come up")
            yield process, namespace
        finally:
            process.kill()


def namespace_of_first(process):
    """The PID namespace that the nested enter.py made: the one that its unshare gives its children."""
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
def test_nothing_outlives_the_one_who_entered(nested, number):
    process, namespace = nested
    process.send_signal(number)
    process.wait(10)
    end = time.monotonic() + 10
    while machine.left_behind(namespace) and time.monotonic() < end:
        time.sleep(0.01)
    assert machine.left_behind(namespace) == []
