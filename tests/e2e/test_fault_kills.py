"""SIGKILL of the client and of OpenVPN in every state: what remains, and that the next session works."""

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
    """How to get the client into a state, and whether a tunnel remains when it is killed there."""

    def __init__(self, enter, *, tunnel):
        self.enter, self.tunnel = enter, tunnel


def start_up(client):
    """The server list has been requested; there is no answer."""
    network.swallow(API)
    client.start()
    client.wait(ui.HIDE, showing=True, enabled=False)
    client.wait_output("inet YES", "the client notices the network")


def ready(client):
    client.start()
    client.wait_ready()


def dialog_open(client):
    client.seed_preferences(**SETTINGS)
    client.start()
    client.wait_dialog()


def fetching(client):
    ready(client)
    network.swallow(API)
    client.hide()
    client.wait(ui.label("Status line"), name=ui.SEARCHING)
    client.world.home.wait_for(
        lambda: "downloadCertificateForSelectedItem url" in client.output(), "the request"
    )
    assert client.openvpn() == []


def searching(client):
    network.swallow(TUNNEL)
    client.start()
    client.choose_protocol("TCP")
    client.hide()
    client.world.home.wait_for(lambda: "Attempting to establish TCP" in client.openvpn_log(), "OpenVPN tries")


def hidden(client):
    client.start()
    client.choose_protocol("TCP")
    client.hide()
    check_hidden(client)


def changing(client):
    hidden(client)
    network.swallow(TUNNEL)
    client.press(CHANGE)
    client.world.home.wait_for(
        lambda: len(client.world.service.requests_of("VPNC")) == 2
        and "Attempting to establish TCP" in client.openvpn_log(),
        "OpenVPN tries anew",
    )


def quitting(client):
    """The end of the tunnel waits for the check of a password that is no longer valid."""
    hidden(client)
    client.world.home.run("chpasswd", "-c", "SHA512", input=f"{ADA.name}:another\n")
    client.signal(signal.SIGTERM)
    client.world.home.wait_for(
        lambda: client.world.home.processes("su"), "the administrator's password is checked"
    )


def editing_settings(client):
    ready(client)
    settings.open_window(client)
    settings.switch(client, "Hide my IP when Quorvane starts", to=True)


def check_whole(client):
    """Preferences and configuration are complete, and the user's settings are unchanged."""
    stored = client.preferences()
    assert {key: stored[key] for key in SETTINGS} == SETTINGS
    assert "hide" not in stored, "settings that were not confirmed are not stored"
    configuration = client.file("Documents/Quorvane/qrvp.ovpn")
    assert not configuration.exists() or configuration.read_text(encoding="utf-8").endswith(
        "</tls-crypt-v2>\n"
    )
    folders = [client.file("Library/Preferences"), client.file("Documents/Quorvane")]
    names = {path.name for folder in folders if folder.exists() for path in folder.iterdir()}
    assert names <= {
        "com.tallowind.Quorvane.plist",
        "com.tallowind.Quorvane.plist.lock",
        "qrvp.ovpn",
        "qrvp.log",
        ".vpnCreds.txt",
        "openvpn.log",
    }, "no incomplete file is left"


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
    """OpenVPN remains if it ran; the next start ends it and is not prevented by a lock; files are intact."""
    resolver = world.home.path("/etc/resolv.conf").read_bytes()
    client.remember_administrator(ADA, location=BERLIN.title, **SETTINGS)
    state.enter(client)
    address = client.current_address() if state.enter is hidden else None
    client.kill()
    assert bool(client.openvpn()) == state.tunnel
    if address:
        assert world.home.public_address() == address, "the tunnel works without the client"
    check_whole(client)
    assert world.home.path("/etc/resolv.conf").read_bytes() == resolver

    network.stop_swallowing()
    world.home.run("chpasswd", "-c", "SHA512", input=f"{ADA.name}:{ADA.password}\n")
    client.start(key="next")
    if state.enter is dialog_open:
        client.enter_administrator(ADA.name, ADA.password, key="next")
        check_hidden(client, key="next")
        client.stop(key="next")
    client.wait_ready(key="next")
    check_not_hidden(client, key="next")
    check_session(client, key="next")
    world.wait_nothing_lent()
    check_whole(client)
    assert world.home.path("/etc/resolv.conf").read_bytes() == resolver


@pytest.fixture
def tunnel(client):
    """A function that ends the OpenVPN process in the home by SIGKILL."""

    def kill():
        processes = client.openvpn()
        assert len(processes) == 1
        os.kill(processes[0].pid, signal.SIGKILL)

    return kill


def test_openvpn_is_killed_while_the_client_searches(client, tunnel):
    """The attempt ends with the message box, although OpenVPN could not log anything."""
    client.remember_administrator(ADA, location=BERLIN.title)
    searching(client)
    tunnel()
    check_given_up(client)
    network.stop_swallowing()
    check_session(client)


def test_openvpn_is_killed_while_hidden(world, client, tunnel):
    """The window shows the loss. (test_tunnel_loss.py has the other ways, and the reconnection.)"""
    client.remember_administrator(ADA, location=BERLIN.title, noReconnect=True)
    hidden(client)
    tunnel()
    client.wait_no_openvpn()
    world.home.wait_for(
        lambda: world.home.public_address() == network.REAL_ADDRESS, "the real address is used again"
    )
    check_not_hidden(client)
    world.wait_nothing_lent()
    check_session(client)
    assert plistlib.loads(client.file(ui.PREFERENCES).read_bytes())
