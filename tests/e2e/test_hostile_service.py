"""A service that sends hostile configurations: the real client, the real rights, and nothing of them runs.

The list is tests/hostile/configurations.txt, the same that the guard's own tests walk. Each configuration travels the
whole way from the service's answer to the guard as root. A few are pressed for in the window each time; with --full
all that can travel in an answer are, in one long session of attempts.
"""

import re
from pathlib import Path

import pytest

from harness.conditions.hostile_api import HostileApi, page
from harness.drive import client as ui
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
    """A line of the list as bytes; see the head of the list."""
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


def travels(configuration):
    """What is not UTF-8 is no answer at all for the client, and never becomes a file."""
    try:
        configuration.decode("utf-8")
    except UnicodeDecodeError:
        return False
    return True


def attack(world, client, configuration, says):
    """One press against one answer; the refusal, the alert, and nothing that ran."""
    answer = b"VPNConfig: " + configuration.replace(b"\n", b"<br />")
    with HostileApi(world, {"VPNC": page(answer)}):
        client.hide()
        assert client.wait_alert(ui.FAILURE)["texts"] == outcomes.NOT_AVAILABLE["texts"]
        log = client.openvpn_log()
        client.dismiss_alert()
        client.wait({"role": "alert"}, 10, absent=True)
    assert "the configuration is refused: " in log and says in log, log
    assert "ended with status" not in log, "OpenVPN was started"
    assert not world.home.path(TRACE).exists(), "the canary ran"
    client.wait_not_hidden()
    assert client.openvpn() == [] and world.service.lent() == {}


@pytest.fixture(name="attacked")
def _attacked(world, client):
    world.home.write(CANARY, f"#!/bin/sh\ntouch {TRACE}\n", mode=0o755)
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    client.wait_ready()
    return client


def test_a_few_pressed_for_in_the_window(world, attacked):
    chosen = [record for record in records() if record[0] in FEW]
    assert len(chosen) == len(FEW)
    for _name, says, configuration in chosen:
        attack(world, attacked, configuration, says)
    outcomes.check_session(attacked)


@pytest.mark.slow
@pytest.mark.parametrize("part", range(PARTS))
def test_all_pressed_for_in_the_window(world, attacked, part):
    pressed = [record for record in records() if travels(record[2])]
    assert len(pressed) > 200
    for _name, says, configuration in pressed[part::PARTS]:
        attack(world, attacked, configuration, says)
    outcomes.check_session(attacked)


def test_all_by_the_guard_with_the_administrators_rights(world):
    """Every record, also those that no answer can carry: the installed guard, as root, on the user's files."""
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
        )
        log = world.home.path(f"{folder}/x.log").read_text(encoding="ascii")
        assert log.endswith("Exiting due to fatal error\n"), name
        if says is None:
            assert "define CA file" in log, "OpenVPN itself was reached: the others' refusals are the guard's"
            allowed += 1
        else:
            assert "the configuration is refused: " in log and says in log, (name, log)
            assert "ended with status" not in log, name
    assert allowed == 1 and not world.home.path(TRACE).exists()
    world.home.run(CANARY)
    assert world.home.path(TRACE).exists(), "the canary leaves a trace when it is run"
