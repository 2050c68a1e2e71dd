"""kill -9 of the client and of OpenVPN in every state: what is left, and that the next session works."""

import os
import plistlib
import signal

import pytest

from harness.drive import client as ui
from harness.drive import settings
from harness.observe.outcomes import check_given_up, check_hidden, check_not_hidden, check_session
from world import network, service
from world.accounts import ADA
from world.service import BERLIN

API = f"ip daddr {network.SERVICE_ADDRESS} tcp dport 443"
TUNNEL = f"ip daddr {network.LENT_POOL} tcp dport {service.TCP_PORT}"
SETTINGS = {"changeIpInterval": 33, "userAgent": "mine"}
CHANGE = ui.button("Change IP")


class State:
    """A way into a state of the client, and what its sudden end leaves running."""

    def __init__(self, enter, *, tunnel):
        self.enter, self.tunnel = enter, tunnel


def start_up(world, client):
    """The server list has been asked for, nothing has answered."""
    network.swallow(API)
    client.start()
    client.wait(ui.HIDE, ui.ANSWER, showing=True, enabled=False)
    world.home.wait_for(lambda: "inet YES" in client.output(), ui.ANSWER, "the network is seen")


def ready(_world, client):
    client.start()
    client.wait_ready()


def dialog_open(_world, client):
    client.seed_preferences(**SETTINGS)
    client.start()
    client.wait_dialog()


def fetching(world, client):
    ready(world, client)
    network.swallow(API)
    client.hide()
    client.wait(ui.label("Status line"), 10, name=ui.SEARCHING)
    world.home.wait_for(
        lambda: "downloadCertificateForSelectedItem url" in client.output(), 10, "the request"
    )
    assert client.openvpn() == []


def searching(world, client):
    network.swallow(TUNNEL)
    client.start()
    client.choose_protocol("TCP")
    client.hide()
    world.home.wait_for(
        lambda: "Attempting to establish TCP" in client.openvpn_log(), ui.SESSION, "OpenVPN tries"
    )


def hidden(_world, client):
    client.start()
    client.choose_protocol("TCP")
    client.hide()
    check_hidden(client)


def changing(world, client):
    hidden(world, client)
    network.swallow(TUNNEL)
    client.press(CHANGE)
    world.home.wait_for(
        lambda: len(world.service.requests_of("VPNC")) == 2
        and "Attempting to establish TCP" in client.openvpn_log(),
        ui.SESSION,
        "OpenVPN tries anew",
    )


def quitting(world, client):
    """The end of the tunnel hangs in the check of a password that no longer holds."""
    hidden(world, client)
    world.home.run("chpasswd", "-c", "SHA512", input=f"{ADA.name}:another\n")
    client.signal(signal.SIGTERM)
    world.home.wait_for(lambda: world.home.processes("su"), 10, "the administrator's shell is asked for")


def editing_settings(_world, client):
    ready(_world, client)
    settings.open_window(client)
    settings.switch(client, "Hide my IP when Quorvane starts", to=True)


def check_whole(client):
    """Preferences and configuration can be read, and the user's settings are what they were."""
    stored = client.preferences()
    assert {key: stored[key] for key in SETTINGS} == SETTINGS
    assert "hide" not in stored, "what was not confirmed is not stored"
    configuration = client.file("Documents/Quorvane/qrvp.ovpn")
    assert not configuration.exists() or configuration.read_text(encoding="utf-8").endswith("</ca>\n")
    folders = [client.file("Library/Preferences"), client.file("Documents/Quorvane")]
    names = {path.name for folder in folders if folder.exists() for path in folder.iterdir()}
    assert names <= {
        "com.tallowind.Quorvane.plist",
        "com.tallowind.Quorvane.plist.lock",
        "qrvp.ovpn",
        "qrvp.log",
        ".vpnCreds.txt",
        "openvpn.log",
    }, "nothing half-written lies about"


@pytest.mark.parametrize(
    "state",
    [
        pytest.param(State(start_up, tunnel=False), id="before-the-first-answer", marks=pytest.mark.slow),
        pytest.param(State(ready, tunnel=False), id="ready", marks=pytest.mark.slow),
        pytest.param(State(dialog_open, tunnel=False), id="dialog-open", marks=pytest.mark.slow),
        pytest.param(State(fetching, tunnel=False), id="fetching", marks=pytest.mark.slow),
        pytest.param(State(searching, tunnel=True), id="searching"),
        pytest.param(State(hidden, tunnel=True), id="hidden"),
        pytest.param(State(changing, tunnel=True), id="changing-the-address", marks=pytest.mark.slow),
        pytest.param(State(quitting, tunnel=True), id="quitting", marks=pytest.mark.slow),
        pytest.param(State(editing_settings, tunnel=False), id="unsaved-settings", marks=pytest.mark.slow),
    ],
)
def test_client_is_killed(world, client, state):
    """OpenVPN stays if it ran, and the next start ends it; no lock holds that start; nothing stored is harmed."""
    resolver = world.home.path("/etc/resolv.conf").read_bytes()
    client.remember_administrator(ADA, location=BERLIN.title, **SETTINGS)
    state.enter(world, client)
    address = client.current_address() if state.enter is hidden else None
    client.signal(signal.SIGKILL)
    assert client.wait_exit() == -signal.SIGKILL
    assert bool(client.openvpn()) == state.tunnel
    if address:
        assert world.home.public_address() == address, "the tunnel outlives the client"
    check_whole(client)
    assert world.home.path("/etc/resolv.conf").read_bytes() == resolver

    network.stop_swallowing()
    world.home.run("chpasswd", "-c", "SHA512", input=f"{ADA.name}:{ADA.password}\n")
    client.start(key="next")
    if state.enter is dialog_open:
        client.wait({"window": ui.DIALOG, "description": "Password"}, ui.PASSWORD, key="next", showing=True)
        for description, text in (("User name", ADA.name), ("Password", ADA.password)):
            client.ask(
                "set_text", key="next", query={"window": ui.DIALOG, "description": description}, text=text
            )
        client.press(ui.button("Start", ui.DIALOG), key="next")
        check_hidden(client, key="next")
        client.stop(key="next")
    client.wait_ready(key="next")
    check_not_hidden(client, key="next")
    check_session(client, key="next")
    world.home.wait_for(lambda: not world.service.lent(), 15, "no address stays lent")
    check_whole(client)
    assert world.home.path("/etc/resolv.conf").read_bytes() == resolver


@pytest.fixture
def tunnel(client):
    """Kills the OpenVPN process at home, the way that nobody can catch."""

    def kill():
        processes = client.openvpn()
        assert len(processes) == 1
        os.kill(processes[0].pid, signal.SIGKILL)

    return kill


def test_openvpn_is_killed_while_the_client_searches(world, client, tunnel):
    """The attempt ends in the alert, though OpenVPN could not say anything."""
    client.remember_administrator(ADA, location=BERLIN.title)
    searching(world, client)
    tunnel()
    check_given_up(client, timeout=75)
    network.stop_swallowing()
    check_session(client)


def test_openvpn_is_killed_while_hidden(world, client, tunnel):
    """Nobody watches a tunnel that is up: the window still says hidden until the user stops it; then all is well."""
    client.remember_administrator(ADA, location=BERLIN.title)
    hidden(world, client)
    tunnel()
    client.wait_no_openvpn()
    world.home.wait_for(
        lambda: world.home.public_address() == network.REAL_ADDRESS, 10, "the address is real again"
    )
    assert client.text("Status line") == ui.HIDING + network.REAL_ADDRESS
    assert client.text("State picture") == "IP hidden"
    assert client.alerts() == []
    world.home.wait_for(lambda: not world.service.lent(), 15, "the lent address is given back")
    client.stop()
    check_not_hidden(client)
    check_session(client)
    assert plistlib.loads(client.file(ui.PREFERENCES).read_bytes())
