"""The running copy controlled from a terminal: the main job by commands alone, and what commands report."""

import json

import pytest

from harness.drive import client as ui
from harness.drive.terminal import (
    CANNOT_START,
    DONE,
    FAILED,
    NOT_HIDDEN,
    NOT_RUNNING,
    UNKNOWN_LOCATION,
    WRONG_USE,
    Terminal,
)
from harness.observe import outcomes
from world import network, service
from world.accounts import ADA
from world.service import BERLIN, location_of

SERVICE = "com.tallowind.Quorvane"


@pytest.fixture(name="terminal")
def fixture_terminal(client):
    return Terminal(client)


def copies(world):
    return [process for process in world.home.processes("quorvane") if "-hide" in process.command]


def test_main_job(world, client, terminal):
    """Start, hide, change, discard, stop and quit, without a window that is touched."""
    client.remember_administrator(ADA)
    assert terminal.run("--hide", BERLIN.title)[0] == DONE
    lent = world.home.public_address()
    assert lent in BERLIN.addresses and [lent] == list(world.service.lent().values())
    assert len(copies(world)) == 1
    status = terminal.status()
    assert (status["state"], status["current_address"]) == ("hidden", lent)
    assert (status["location"], status["real_address"]) == (BERLIN.title, network.REAL_ADDRESS)
    assert terminal.run("--hide") == (DONE, [lent]), "it is hidden already"
    assert terminal.run("--status")[1] == [
        f"Hidden behind {lent} ({BERLIN.title}). The real IP is {network.REAL_ADDRESS}."
    ]

    code, (changed,) = terminal.run("--change")
    assert code == DONE and changed == world.home.public_address()
    assert location_of(changed) is not None
    code, (after,) = terminal.run("--discard")
    assert code == DONE and after == world.home.public_address()
    assert client.preferences()["discardedIPs"]

    assert terminal.run("--stop") == (DONE, [])
    assert world.home.public_address() == network.REAL_ADDRESS
    client.wait_no_openvpn()
    assert terminal.status()["state"] == "not-hidden"
    assert terminal.run("--quit") == (DONE, [])
    world.home.wait_for(lambda: not copies(world), "the copy has quit")
    assert terminal.status() == {"running": False}


def test_commands_that_start_no_copy(world, terminal):
    for command in ("--stop", "--change", "--discard", "--quit", "--status", "--locations"):
        assert terminal.run(command) == (NOT_RUNNING, ["Quorvane is not running."])
    assert world.home.processes("quorvane") == [] and world.service.requests() == []


def test_hide_without_a_display(world, terminal):
    assert terminal.run("--hide", environment={"DISPLAY": ""}) == (
        CANNOT_START,
        ["Quorvane is not running, and there is no display to start it on."],
    )
    assert world.home.processes("quorvane") == []


def test_flag_and_command_of_the_same_name(world, client, terminal):
    """ "-hide" starts a copy in the background, which hides nothing; "--hide" is a command."""
    client.remember_administrator(ADA)
    client.start("-hide")
    world.home.wait_for(lambda: terminal.status().get("state") == "not-hidden", "the copy is ready")
    assert world.service.requests_of("VPNC") == []
    assert terminal.run("--hide")[0] == DONE
    assert len(world.service.requests_of("VPNC")) == 1
    assert client.running()


def test_running_copy_is_used(world, client, terminal):
    """The window shows what a command did, and a command what a press did."""
    client.start_ready(ADA)
    code, lines = terminal.run("--hide", BERLIN.title.upper())
    assert code == DONE and lines == [client.current_address()]
    assert outcomes.check_hidden(client) == lines[0]
    client.stop()
    assert terminal.status()["state"] == "not-hidden"
    assert terminal.run("--change") == (NOT_HIDDEN, ["Your IP is not hidden."])
    assert terminal.run("--discard") == (NOT_HIDDEN, ["Your IP is not hidden."])
    assert terminal.run("--hide", "Atlantis") == (
        UNKNOWN_LOCATION,
        ['There is no location "Atlantis".'],
    )
    code, lines = terminal.run("--locations", "--json")
    places = json.loads(lines[0])
    assert code == DONE and places[0]["title"] == "Random Location"
    assert {"title": BERLIN.title, "country": "DE", "full": False, "selected": True} in places
    assert [place["title"] for place in places] == terminal.run("--locations")[1]
    assert terminal.run("--status", "now")[0] == WRONG_USE
    assert len(world.service.requests_of("MRTSL")) == 1


def test_attempt_that_fails_is_reported(world, client, terminal):
    client.start_ready(ADA, location=BERLIN.title)
    network.swallow(f"ip daddr {network.LENT_POOL} tcp dport {service.TCP_PORT}")
    key = terminal.begin("--hide")
    world.home.wait_for(client.openvpn, "OpenVPN runs")
    world.home.run("killall", "-9", "openvpn")
    client.wait_alert()
    assert client.wait_exit(key=key) == FAILED
    assert client.output(key=key).splitlines() == ["Location is not available."]
    client.dismiss_alert()
    network.stop_swallowing()
    assert terminal.run("--hide")[0] == DONE
    assert world.home.public_address() in BERLIN.addresses


def test_missing_administrator_is_waited_for(world, client, terminal):
    client.start()
    client.wait_dialog()
    key = terminal.begin("--hide")
    world.home.wait_for(
        lambda: "asks for an administrator's name and password" in client.output(key=key), "it is reported"
    )
    client.enter_administrator(ADA.name, ADA.password)
    assert client.wait_exit(key=key) == DONE
    assert client.output(key=key).splitlines()[-1] == world.home.public_address()
    assert ADA.password not in client.output(key=key)


def test_states_are_followed(world, client, terminal):
    client.start_ready(ADA)
    key = terminal.begin("--status", "--follow", "--json")

    def states():
        return [json.loads(line).get("state", "end") for line in client.output(key=key).splitlines()]

    world.home.wait_for(lambda: states() == ["not-hidden"], "the first state is reported")
    assert terminal.run("--hide")[0] == DONE
    assert terminal.run("--quit")[0] == DONE
    assert client.wait_exit() == 0
    assert client.wait_exit(key=key) == DONE
    seen = states()
    assert seen[0] == "not-hidden" and seen[-1] == "end"
    assert [state for at, state in enumerate(seen) if state != seen[at - 1]][:3] == [
        "not-hidden",
        "searching",
        "hidden",
    ]
    assert world.home.public_address() == network.REAL_ADDRESS


def test_any_program_can_use_the_bus(world, client):
    """As a script does it: the interface is on the session bus, with introspection."""
    client.start_ready(ADA, location=BERLIN.title)

    def gdbus(*arguments):
        client.request(
            "start",
            key="gdbus",
            arguments=[
                "gdbus",
                *arguments,
                "--session",
                "--dest",
                SERVICE,
                "--object-path",
                "/com/tallowind/Quorvane",
            ],
            environment={},
            output=f"{client.folder}/gdbus.log",
        )
        assert client.wait_exit(key="gdbus") == 0
        return world.home.path(f"{client.folder}/gdbus.log").read_text(encoding="utf-8")

    assert "readonly s State = 'not-hidden'" in gdbus("introspect")
    assert gdbus("call", "--timeout", "100", "--method", f"{SERVICE}.Hide", "")
    assert world.home.public_address() in BERLIN.addresses
    assert ui.HIDING in client.text("Status line")
