"""The program in OpenVPN's place, seen from outside of the whole client: what it starts, refuses, tells and tidies."""

import os
import signal
import time

import pytest

from harness.drive import client as ui
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


def given_up(world, client, timeout=ui.FAILURE):
    """The attempt ends as every failed attempt does, and nothing of it is left."""
    outcomes.check_given_up(client, timeout=timeout)
    world.home.wait_for(lambda: not guards(world), 10, "no guard left")
    assert world.service.lent() == {}


def kept_configuration(world, client, change):
    """A stored configuration that the service really made, changed by `change`, is what the next press uses."""
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    client.hide()
    client.wait_hidden()
    client.stop()
    preferences = client.preferences()
    client.signal(signal.SIGTERM)
    client.wait_exit()
    text = client.file(CONFIGURATION).read_bytes()
    world.home.write(f"{client.folder}/{CONFIGURATION}", change(text), owner="joe", mode=0o600)
    client.seed_preferences(**preferences, useSameIP=True)
    client.start()
    client.hide()


@pytest.fixture(name="covered")
def _covered(world):
    """Puts another file over a program of the home, for this home only."""
    made = []

    def cover(path, text, mode):
        made.append(f"/var/tmp/cover-{len(made)}")
        world.home.write(made[-1], text, mode=mode)
        world.home.run("mount", "--bind", made[-1], path)

    return cover


def test_the_whole_line_and_what_it_starts(world, client):
    """The line of the application reaches the guard unchanged; OpenVPN itself sees private copies only."""
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
    assert not [word for word in tunnel.command if client.folder in word], "no path of the user's"
    opened = [
        os.readlink(f"/proc/{tunnel.pid}/fd/{number}") for number in os.listdir(f"/proc/{tunnel.pid}/fd")
    ]
    assert not [path for path in opened if path.startswith(client.folder)], opened
    address = client.current_address()
    assert any(
        route.startswith(address) for route in routes(world)
    ), "a route to the server, while it is needed"
    client.stop()
    world.home.wait_for(lambda: not guards(world), 10, "no guard left")
    assert routes(world) == before, "the kill leaves no route behind"


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
    kept_configuration(world, client, lambda text: text + added.encode())
    world.home.wait_for(
        lambda: "is not allowed" in client.openvpn_log(), ui.SESSION, "the refusal in the log"
    )
    assert client.openvpn_log().splitlines()[-1].endswith("Exiting due to fatal error")
    given_up(world, client)
    assert not world.home.path("/var/tmp/it-ran").exists()


def test_most_talkative_configuration(world, client):
    """At level 4 OpenVPN's times end in microseconds; its word that the tunnel is up is understood all the same."""
    kept_configuration(world, client, lambda text: text.replace(b"verb 3\n", b"verb 4\n"))
    client.wait_hidden()
    assert " us=" in client.openvpn_log()
    assert client.current_address() == world.home.public_address()


@pytest.mark.parametrize(
    "text, mode, word",
    [
        ("", 0o644, "cannot be started: Permission denied"),
        ("#!/bin/sh\nexit 0\n", 0o755, "OpenVPN ended with status 0"),
    ],
    ids=["is no program", "ends without a word"],
)
def test_openvpn_itself(world, client, covered, text, mode, word):
    covered(OPENVPN, text, mode)
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    client.hide()
    world.home.wait_for(lambda: word in client.openvpn_log(), ui.SESSION, "the guard's word")
    given_up(world, client)
    world.home.run("umount", OPENVPN)
    outcomes.check_session(client)


@pytest.mark.slow
def test_openvpn_that_searches_for_ever(world, client, covered):
    """Nothing that says how it ends: after a minute the guard ends it."""
    covered(OPENVPN, "#!/bin/sh\necho '2026-01-01 00:00:00 waiting'\nexec /var/tmp/openvpn 600\n", 0o755)
    world.home.run("cp", "/usr/bin/sleep", "/var/tmp/openvpn")
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    begun = time.monotonic()
    client.hide()
    given_up(world, client, timeout=120)
    assert "the tunnel did not come up in time" in client.openvpn_log()
    assert time.monotonic() - begun > 55, "it was given its time"
    world.home.run("umount", OPENVPN)
    outcomes.check_session(client)


def test_openvpn_killed_while_it_searches(world, client):
    """By somebody else, so the client does not know of it."""
    network.swallow(f"ip daddr {network.LENT_POOL} tcp dport {service.TCP_PORT}")
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    client.choose_protocol("TCP")
    client.hide()
    world.home.wait_for(client.openvpn, ui.SESSION, "OpenVPN runs")
    world.home.run("killall", "-9", "openvpn")
    world.home.wait_for(lambda: "ended by signal 9" in client.openvpn_log(), 10, "the guard's word")
    given_up(world, client)
    network.inside(network.GATEWAY, "nft", "delete", "table", "ip", "hole")
    outcomes.check_session(client)


def test_links_in_the_places_of_the_files(world, client):
    """A program of the user's swaps the log for a link while the session is asked for: root does not write there."""
    target = "/etc/quorvane/precious"
    world.home.write(target, "precious\n")
    kept_configuration(world, client, lambda text: text)
    client.wait_hidden()
    client.stop()
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
    # The client makes the log anew, so its own next attempt is not disturbed.
    client.hide()
    client.wait_hidden()
    assert world.home.path(target).read_text(encoding="utf-8") == "precious\n"
