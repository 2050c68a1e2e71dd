"""The guard that starts OpenVPN, through the whole client: what it starts, refuses, logs and cleans up."""

import os
import time

import pytest

from harness.observe import outcomes
from world import home as homes
from world import network, service
from world.accounts import ADA
from world.service import BERLIN

OPENVPN = "/usr/sbin/openvpn"
CONFIGURATION = "Documents/Quorvane/qrvp.ovpn"


def guards(world):
    return world.home.processes("openvpn-guard")


def routes(world):
    return sorted(line.strip() for line in world.home.run("ip", "-4", "route", "show").stdout.splitlines())


def check_given_up(world, client):
    """The attempt ends like every failed attempt, and nothing of it remains."""
    outcomes.check_given_up(client)
    world.home.wait_for(lambda: not guards(world), "no guard is left")
    assert world.service.lent() == {}


def start_with_stored_configuration(world, client, change):
    """Starts a session with a stored configuration of the service that the function `change` has modified.

    A location is selected, because an attempt with a random one is repeated when it fails.
    """
    client.start_hidden(ADA, location=BERLIN.title)
    client.stop()
    preferences = client.preferences()
    client.terminate()
    text = client.file(CONFIGURATION).read_bytes()
    world.home.write(f"{client.folder}/{CONFIGURATION}", change(text), owner="joe", mode=0o600)
    client.seed_preferences(**{**preferences, "location": BERLIN.title, "useSameIP": True})
    client.start()
    client.hide()


@pytest.fixture(name="covered")
def _covered(world):
    """A function that covers a program of the home by another file."""
    made = []

    def cover(path, text, mode):
        made.append(f"/var/tmp/cover-{len(made)}")
        world.home.write(made[-1], text, mode=mode)
        world.home.run("mount", "--bind", made[-1], path)

    return cover


def test_the_whole_line_and_what_it_starts(world, client):
    """The client's command line reaches the guard unchanged; OpenVPN itself receives private copies only."""
    client.remember_administrator(ADA, location=BERLIN.title)
    before = routes(world)
    client.start()
    client.hide()
    client.wait_hidden()
    folder = f"{client.folder}/Documents/Quorvane"
    line = [
        f"{homes.CONTENTS}/Resources/openvpn",
        "--config",
        f"{folder}/qrvp.ovpn",
        "--auth-user-pass",
        f"{folder}/.vpnCreds.txt",
        "--log-append",
        f"{folder}/openvpn.log",
    ]
    assert [guard.command for guard in guards(world)] == [line]
    (tunnel,) = client.openvpn()
    assert tunnel.command[0] == OPENVPN and tunnel.uid == 0
    assert not [argument for argument in tunnel.command if client.folder in argument], "no path of the user"
    open_files = [
        os.readlink(f"/proc/{tunnel.pid}/fd/{number}") for number in os.listdir(f"/proc/{tunnel.pid}/fd")
    ]
    assert not [path for path in open_files if path.startswith(client.folder)], open_files
    address = client.current_address()
    assert any(route.startswith(address) for route in routes(world)), "there is a route to the server"
    client.stop()
    world.home.wait_for(lambda: not guards(world), "no guard is left")
    assert routes(world) == before, "the kill leaves no route"


@pytest.mark.parametrize(
    "added",
    [
        "script-security 2\nup /var/tmp/canary\n",
        '"--up" /var/tmp/canary\n',
        "<ca>\n</ca> \nroute-up /var/tmp/canary\n",
    ],
    ids=["program", "quoted name", "behind a block"],
)
def test_stored_configuration_that_runs_something(world, client, added):
    world.home.write("/var/tmp/canary", "#!/bin/sh\ntouch /var/tmp/it-ran\n", mode=0o755)
    start_with_stored_configuration(world, client, lambda text: text + added.encode())
    world.home.wait_for(lambda: "is not allowed" in client.openvpn_log(), "the refusal in the log")
    assert client.openvpn_log().splitlines()[-1].endswith("Exiting due to fatal error")
    check_given_up(world, client)
    assert not world.home.path("/var/tmp/it-ran").exists()


def test_configuration_with_the_most_verbose_log(world, client):
    """At level 4 OpenVPN logs microseconds; the client still finds the line that the tunnel is up."""
    start_with_stored_configuration(world, client, lambda text: text.replace(b"verb 3\n", b"verb 4\n"))
    client.wait_hidden()
    assert " us=" in client.openvpn_log()
    assert client.current_address() == world.home.public_address()


@pytest.mark.parametrize(
    "text, mode, logged",
    [
        ("", 0o644, "cannot be started: Permission denied"),
        ("#!/bin/sh\nexit 0\n", 0o755, "OpenVPN ended with status 0"),
    ],
    ids=["is no program", "ends without a log"],
)
def test_openvpn_that_does_not_run(world, client, covered, text, mode, logged):
    covered(OPENVPN, text, mode)
    client.start_ready(ADA, location=BERLIN.title)
    client.hide()
    world.home.wait_for(lambda: logged in client.openvpn_log(), "the guard's log line")
    check_given_up(world, client)
    world.home.run("umount", OPENVPN)
    outcomes.check_session(client)


@pytest.mark.slow
def test_openvpn_that_searches_for_ever(world, client, covered):
    """OpenVPN neither connects nor fails: the guard ends it after a minute."""
    covered(OPENVPN, "#!/bin/sh\necho '2026-01-01 00:00:00 waiting'\nexec /var/tmp/openvpn 600\n", 0o755)
    world.home.run("cp", "/usr/bin/sleep", "/var/tmp/openvpn")
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    begun = time.monotonic()
    client.hide()
    check_given_up(world, client)
    assert "the tunnel did not come up in time" in client.openvpn_log()
    assert time.monotonic() - begun > 55, "it was not ended before its time"
    world.home.run("umount", OPENVPN)
    outcomes.check_session(client)


def test_openvpn_killed_while_it_searches(world, client):
    """By another program, so the client does not know of it."""
    network.swallow(f"ip daddr {network.LENT_POOL} tcp dport {service.TCP_PORT}")
    client.start_ready(ADA, location=BERLIN.title)
    client.choose_protocol("TCP")
    client.hide()
    world.home.wait_for(client.openvpn, "OpenVPN runs")
    world.home.run("killall", "-9", "openvpn")
    world.home.wait_for(lambda: "ended by signal 9" in client.openvpn_log(), "the guard's log line")
    check_given_up(world, client)
    network.stop_swallowing()
    outcomes.check_session(client)


def test_links_in_the_places_of_the_files(world, client):
    """A program of the user replaces the log by a link before the guard starts: root does not follow it."""
    target = "/etc/quorvane/precious"
    world.home.write(target, "precious\n")
    start_with_stored_configuration(world, client, lambda text: text)
    client.wait_hidden()
    client.stop()
    world.home.wait_for(lambda: client.openvpn() == [], "the stopped session's processes are gone")
    guard = f"{homes.CONTENTS}/Resources/openvpn"
    folder = f"{client.folder}/Documents/Quorvane"
    world.home.run("rm", "-f", f"{folder}/openvpn.log")
    world.home.run("ln", "-s", target, f"{folder}/openvpn.log")
    done = world.home.run(
        guard,
        "--config",
        f"{folder}/qrvp.ovpn",
        "--auth-user-pass",
        f"{folder}/.vpnCreds.txt",
        "--log-append",
        f"{folder}/openvpn.log",
        check=False,
    )
    assert done.returncode == 1 and "it is not a plain file" in done.stderr
    assert world.home.path(target).read_text(encoding="utf-8") == "precious\n"
    assert client.openvpn() == []
    # The client makes a new log, so its next attempt works.
    client.hide()
    client.wait_hidden()
    assert world.home.path(target).read_text(encoding="utf-8") == "precious\n"
