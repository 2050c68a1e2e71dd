"""A service that sends hostile configurations: with the real client and real rights, nothing in them is run.

The list is tests/hostile/configurations.txt, which the guard's own tests use as well. Each configuration goes
the whole way from the service's answer to the guard, which runs as root. Every run tries a few of them
through the window; with --full it tries all that an answer can contain.
"""

import re
from pathlib import Path

import pytest

from harness.conditions.hostile_api import HostileApi, page
from harness.observe import outcomes
from world import home as homes
from world.accounts import ADA
from world.service import BERLIN

LIST = Path(__file__).resolve().parent.parent / "hostile" / "configurations.txt"
CANARY, TRACE = "/var/tmp/canary", "/var/tmp/it-ran"
FEW = (
    "up CANARY",
    "plugin CANARY",
    "double quotes round the name",
    "text behind an end tag",
    "config /etc/openvpn/other.conf",
)
PARTS = 6
ALLOWED = (
    "client\ndev tun\nproto udp\nremote 203.0.113.40 1194\nnobind\nauth-user-pass\nresolv-retry 0\n"
    "connect-retry-max 1\nhand-window 5\nverb 3\n"
)


def expanded(line):
    """A line of the list as bytes; the head of the list describes the format."""
    found = re.fullmatch(r"%(repeat|lines) (\d+) (.*)", line)
    if found:
        piece = expanded(found[3])
        count = int(found[2])
        return piece * count if found[1] == "lines" else piece[:-1] * count + b"\n"
    ended = not line.endswith("\\e")
    line = line if ended else line[:-2]
    text = re.sub(rb"\\x([0-9a-f]{2})", lambda match: bytes.fromhex(match[1].decode()), line.encode("utf-8"))
    return text + (b"\n" if ended else b"")


def records():
    """(name, part of the refusal, configuration) for each record."""
    found = []
    for part in LIST.read_text(encoding="utf-8").split("\n== ")[1:]:
        name, _why, says, *lines = part.rstrip("\n").split("\n")
        added = b"".join(expanded(line) for line in lines if line)
        found.append(
            (name, says.removeprefix("says: "), ALLOWED.encode() + added.replace(b"CANARY", CANARY.encode()))
        )
    return found


def fits_an_answer(configuration):
    """True when an answer can contain it: the client rejects an answer that is not UTF-8."""
    try:
        configuration.decode("utf-8")
    except UnicodeDecodeError:
        return False
    return True


def attack(world, client, configuration, says):
    """One press with one answer: the refusal is logged, the message box shows, nothing is run."""
    answer = b"VPNConfig: " + configuration.replace(b"\n", b"<br />")
    with HostileApi(world, {"VPNC": page(answer)}):
        client.hide()
        client.wait_alert()
        log = client.openvpn_log()
        outcomes.accept_alert(client, outcomes.NOT_AVAILABLE)
    assert "the configuration is refused: " in log and says in log, log
    assert "ended with status" not in log, "OpenVPN was started"
    assert not world.home.path(TRACE).exists(), "the canary ran"
    client.wait_not_hidden()
    assert client.openvpn() == [] and world.service.lent() == {}


@pytest.fixture(name="attacked")
def _attacked(world, client):
    world.home.write(CANARY, f"#!/bin/sh\ntouch {TRACE}\n", mode=0o755)
    client.start_ready(ADA, location=BERLIN.title)
    return client


def test_a_few_through_the_window(world, attacked):
    chosen = [record for record in records() if record[0] in FEW]
    assert len(chosen) == len(FEW)
    for _name, says, configuration in chosen:
        attack(world, attacked, configuration, says)
    outcomes.check_session(attacked)


@pytest.mark.slow
@pytest.mark.parametrize("part", range(PARTS))
def test_all_through_the_window(world, attacked, part):
    possible = [record for record in records() if fits_an_answer(record[2])]
    assert len(possible) > 200
    for _name, says, configuration in possible[part::PARTS]:
        attack(world, attacked, configuration, says)
    outcomes.check_session(attacked)


def test_all_by_the_guard_with_the_administrators_rights(world):
    """Every record, also those that no answer can contain, by the installed guard, which root runs."""
    folder = "/home/joe/Documents/Quorvane"
    world.home.write(CANARY, f"#!/bin/sh\ntouch {TRACE}\n", mode=0o755)
    world.home.write(f"{folder}/pair", "user\npassword", owner="joe", mode=0o600)
    allowed = 0
    for name, says, configuration in [("allowed", None, ALLOWED.encode()), *records()]:
        world.home.write(f"{folder}/x.ovpn", configuration, owner="joe", mode=0o600)
        world.home.write(f"{folder}/x.log", "", owner="joe", mode=0o600)
        world.home.run(
            f"{homes.CONTENTS}/Resources/openvpn",
            "--config",
            f"{folder}/x.ovpn",
            "--auth-user-pass",
            f"{folder}/pair",
            "--log-append",
            f"{folder}/x.log",
            environment={"QUORVANE_CALLER": str(world.home.uid("joe")[0])},
        )
        log = world.home.path(f"{folder}/x.log").read_text(encoding="ascii")
        assert log.endswith("Exiting due to fatal error\n"), name
        if says is None:
            assert (
                "define CA file" in log
            ), "OpenVPN itself was started: the other refusals come from the guard"
            allowed += 1
        else:
            assert "the configuration is refused: " in log and says in log, (name, log)
            assert "ended with status" not in log, name
    assert allowed == 1 and not world.home.path(TRACE).exists()
    world.home.run(CANARY)
    assert world.home.path(TRACE).exists(), "the canary leaves a trace when it is run"
