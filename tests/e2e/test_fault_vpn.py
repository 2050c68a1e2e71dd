"""Faults of the VPN servers and on the way to them, of the resolver and of the home's route.

Every test checks what the user sees and what remains, and goes on to a session that works.
"""

import contextlib
import os
import signal
import socket
import time
from pathlib import Path

import pytest

from harness.conditions.listener import Datagrams, Listener
from harness.drive import client as ui
from harness.drive.tray import TrayIcon
from harness.home.deadlines import EVENTUALLY
from harness.observe import figures, outcomes
from world import machine, network, pki, service
from world.accounts import ADA
from world.service import BERLIN

PROTOCOLS = {"udp": service.UDP_PORT, "tcp": service.TCP_PORT}
SLOW_TCP = ["udp", pytest.param("tcp", marks=pytest.mark.slow)]
SLOW_UDP = ["tcp", pytest.param("udp", marks=pytest.mark.slow)]
FAKE_PORT, NAME_PORT = 4443, 5353


def to_servers(protocol):
    """Packets to the VPN server, in nft's language."""
    return f"ip daddr {network.LENT_POOL} {protocol} dport {PROTOCOLS[protocol]}"


def from_servers(protocol):
    return f"ip saddr {network.LENT_POOL} {protocol} sport {PROTOCOLS[protocol]}"


def start(client, protocol="udp"):
    """The client is ready, with Berlin and the protocol chosen; returns the state of the home.

    By design a list that is fetched again resets the chosen location; the client is started again then. With
    a random location each session would use up a location, and with all of them used an attempt waits instead
    of ending.
    """
    if client.home.processes("quorvane"):
        client.wait_ready()
        if client.button_state(ui.label("Location choice"))["name"] != BERLIN.title:
            client.end()
    if not client.home.processes("quorvane"):
        client.start_ready(ADA, location=BERLIN.title)
    client.choose_protocol(protocol.upper())
    return outcomes.HomeState(client.home)


def check_tried_once(world, client, before):
    """A press that fails: the message box, one request, and no session at the service."""
    asked, logged = len(world.service.requests_of("VPNC")), outcomes.failures_logged(client)
    client.hide()
    outcomes.check_given_up(client, before, logged)
    assert len(world.service.requests_of("VPNC")) == asked + 1, "a fixed location is tried once"
    assert world.home.public_address(client.user) == network.REAL_ADDRESS


@pytest.fixture(name="logins")
def fixture_logins(shared):
    """The number of logins that the VPN servers have accepted so far."""
    return lambda: shared.world.service.output.read_text(encoding="utf-8").count(": login of ")


@pytest.mark.parametrize("protocol", SLOW_TCP)
def test_black_hole(shared, logins, protocol):
    before, let_in = start(shared, protocol), logins()
    with network.swallowing(to_servers(protocol)):
        check_tried_once(shared.world, shared, before)
    assert logins() == let_in
    outcomes.check_session(shared, before)


@pytest.mark.parametrize("protocol", SLOW_UDP)
def test_refused(shared, logins, protocol):
    """An ICMP message for UDP, a reset for TCP, as without a running server."""
    before, let_in = start(shared, protocol), logins()
    kind = {"udp": "icmp type port-unreachable", "tcp": "tcp reset"}[protocol]
    chain = (
        f"chain closed {{ type filter hook input priority 0;\n {to_servers(protocol)} reject with {kind}\n }}"
    )
    with network.ruled(network.GATEWAY, chain):
        check_tried_once(shared.world, shared, before)
    assert logins() == let_in
    outcomes.check_session(shared, before)


def never_answer(_connection, closing):
    closing.wait()


def answer_garbage(connection, _closing):
    while connection.recv(65536):
        connection.sendall(os.urandom(4096))


@pytest.mark.slow
@pytest.mark.parametrize("behave", [never_answer, answer_garbage], ids=["is-silent", "sends-garbage"])
def test_server_that_accepts_and(shared, behave):
    before = start(shared, "tcp")
    with Listener(network.GATEWAY, FAKE_PORT, behave) as fake, network.ruled(
        network.GATEWAY, network.diverted("tcp", service.TCP_PORT, FAKE_PORT)
    ):
        check_tried_once(shared.world, shared, before)
        assert fake.connections > 0
    outcomes.check_session(shared, before)


@pytest.mark.slow
def test_server_that_sends_garbage_udp(shared):
    before = start(shared, "udp")
    with Datagrams(
        network.GATEWAY, FAKE_PORT, lambda datagram: os.urandom(len(datagram))
    ) as fake, network.ruled(network.GATEWAY, network.diverted("udp", service.UDP_PORT, FAKE_PORT)):
        check_tried_once(shared.world, shared, before)
        assert fake.received > 0
    outcomes.check_session(shared, before)


@pytest.mark.parametrize("protocol", SLOW_TCP)
def test_server_of_another_authority(shared, logins, protocol):
    """The server cannot prove to belong to the service: the client does not log in."""
    world = shared.world
    folder = world.folder / f"other-pki-{protocol}"
    other = pki.Authority(folder)
    usual = world.service.configure(vpn={**world.service.vpn_settings, "ca": str(other.certificate)})
    world.service.stop()
    world.service.start()
    shared.end()
    before, let_in = start(shared, protocol), logins()
    check_tried_once(world, shared, before)
    assert logins() == let_in
    assert "certificate verify failed" in shared.openvpn_log()
    world.service.configure(**usual)
    world.service.stop()
    world.service.start()
    TrayIcon(shared).click("Refresh Locations")
    world.home.wait_for(lambda: len(world.service.requests_of("MRTSL")) >= 2, "the list is requested")
    shared.wait_ready()
    outcomes.check_session(shared, before)


# --- the server goes away while the address is hidden


def command_of(pid):
    """The command line of a process; empty when it has ended since it was listed."""
    try:
        return Path(f"/proc/{pid}/cmdline").read_text(encoding="utf-8", errors="replace")
    except (FileNotFoundError, ProcessLookupError):
        return ""


def servers(protocol):
    """The service's OpenVPN servers for a protocol."""
    return [
        pid for pid, name in machine.processes() if name == "vpnsrv" and f"{protocol}.conf" in command_of(pid)
    ]


ENDS = [
    pytest.param("udp", signal.SIGKILL, id="udp-SIGKILL"),
    pytest.param("tcp", signal.SIGTERM, id="tcp-SIGTERM"),
    pytest.param("udp", signal.SIGTERM, id="udp-SIGTERM", marks=pytest.mark.slow),
    pytest.param("tcp", signal.SIGKILL, id="tcp-SIGKILL", marks=pytest.mark.slow),
]


@pytest.mark.parametrize("protocol, number", ENDS)
def test_server_ends_in_mid_session(shared, protocol, number):
    """By design the client does not watch a tunnel that is up: it shows hidden until the user stops."""
    world = shared.world
    before = start(shared, protocol)
    shared.hide()
    shared.wait_hidden()
    outcomes.check_hidden(shared)
    (server,) = servers(protocol)
    os.kill(server, number)
    world.home.wait_for(
        lambda: servers(protocol) not in ([], [server]) and world.service.control("status")["ready"],
        "the service starts another server by itself",
    )
    seen = world.home.public_address(shared.user, timeout=3)
    figures.record(f"address seen after the {protocol} server got {signal.Signals(number).name}", seen)
    assert shared.text("Status line").startswith(ui.HIDING)
    assert shared.text("State picture") == "IP hidden"
    assert shared.alerts() == []
    shared.stop()
    outcomes.check_shown_not_hidden(shared)
    shared.wait_no_openvpn()
    before.check()
    assert world.home.public_address(shared.user) == network.REAL_ADDRESS
    outcomes.check_session(shared, before)


# --- a line that loses packets


# Over UDP about one attempt in seven becomes a session: an attempt without a first answer after two seconds
# is given up. The probability that all of these fail is below one in a thousand.
TRIES = 60


@pytest.mark.slow
@pytest.mark.parametrize("protocol", PROTOCOLS)
def test_three_of_ten_packets_are_lost(shared, protocol):
    """Every attempt ends, in a session or with the message box; at least one is a session."""
    world = shared.world
    before = start(shared, protocol)
    lossy = "{} numgen random mod 100 < 30 drop"
    rules = (
        network.arriving(lossy.format(to_servers(protocol)))
        + "\n"
        + network.leaving(lossy.format(from_servers(protocol)))
    )
    tries = []
    with network.ruled(network.GATEWAY, rules):
        while "session" not in tries and len(tries) < TRIES:
            logged = outcomes.failures_logged(shared)
            shared.hide()
            world.home.wait_for(
                lambda: shared.alerts() or shared.text("State picture") == "IP hidden", "the attempt ends"
            )
            if shared.alerts():
                tries.append("alert")
                outcomes.check_given_up(shared, before, logged=logged)
            else:
                tries.append("session")
                address = world.service.requests_of("VPNC")[-1].parameter("desiredip")
                assert address in world.service.lent().values()
                shared.stop()
    figures.record(f"tries over {protocol} with 30 % loss", tries)
    assert tries[-1] == "session"
    outcomes.check_session(shared, before)


# --- the resolver


def dead_resolver():
    return network.swallowing("udp dport 53")


def test_names_cannot_be_resolved_at_the_start(shared):
    """The name servers do not answer: the message box and no request; after a refresh everything works."""
    shared.end()
    asked = len(shared.world.service.requests())
    with dead_resolver():
        shared.remember_administrator(ADA, location=BERLIN.title)
        shared.start()
        outcomes.accept_alert(shared, outcomes.NO_SERVICE)
        assert shared.current_address() == "0.0.0.0"
        assert not shared.button_state()["enabled"]
    assert len(shared.world.service.requests()) == asked
    check_refreshed(shared)


def check_refreshed(shared):
    TrayIcon(shared).click("Refresh Locations")
    shared.wait(ui.label("Current IP address"), name=network.REAL_ADDRESS)
    shared.wait_ready()
    outcomes.check_session(shared)


@pytest.mark.slow
def test_names_do_not_exist_at_the_start(shared):
    """The name server answers at once that the name does not exist."""
    shared.end()
    with unknowing_name_server():
        shared.remember_administrator(ADA, location=BERLIN.title)
        shared.start()
        outcomes.accept_alert(shared, outcomes.NO_SERVICE)
        assert shared.current_address() == "0.0.0.0"
    check_refreshed(shared)


@pytest.mark.slow
def test_names_cannot_be_resolved_through_the_tunnel(shared):
    """A session starts, as its server is named by a number; its address cannot be requested."""
    shared.end()
    before = start(shared)
    with network.swallowing("ip saddr 10.0.0.0/8 udp dport 53"):  # of either protocol's tunnel
        shared.hide()
        shared.wait_hidden()
        address = shared.world.service.requests_of("VPNC")[-1].parameter("desiredip")
        assert shared.current_address() == "", "an address that was not confirmed is not shown"
        assert address in shared.world.service.lent().values()
        shared.stop()
        outcomes.check_shown_not_hidden(shared)
    outcomes.check_session(shared, before)


@pytest.mark.slow
def test_names_cannot_be_resolved_at_the_press(shared):
    """No address of a name is kept from the request for the server list."""
    shared.end()
    before = start(shared)
    asked = len(shared.world.service.requests())
    with dead_resolver():
        shared.hide()
        outcomes.check_given_up(shared, before)
    assert len(shared.world.service.requests()) == asked
    outcomes.check_session(shared, before)


@pytest.mark.slow
def test_a_slow_resolver(shared):
    """Each look-up lasts almost as long as the client waits for one: everything works, only later."""
    shared.end()
    with slow_name_server(0.5):
        shared.remember_administrator(ADA, location=BERLIN.title)
        shared.start()
        before = start(shared)
        outcomes.check_session(shared, before)
    outcomes.check_session(shared, before)


def name_server(answer):
    """Redirects queries for the name servers to a server in the test."""
    stack = contextlib.ExitStack()
    stack.enter_context(Datagrams(network.INTERNET, NAME_PORT, answer))
    match = f"ip daddr {{ {', '.join(network.NAME_SERVERS)} }} udp dport 53"
    stack.enter_context(network.ruled(network.INTERNET, network.redirected(match, NAME_PORT)))
    return stack


def unknowing_name_server():
    # The query comes back as an answer: the name does not exist.
    return name_server(lambda query: query[:2] + b"\x81\x83" + query[4:])


def slow_name_server(pause):
    def answer(query):
        time.sleep(pause)  # the fault itself
        with network.socket_in(network.INTERNET, socket.SOCK_DGRAM) as real:
            real.settimeout(EVENTUALLY)
            real.sendto(query, (network.NAME_SERVERS[0], 53))
            return real.recv(65536)

    return name_server(answer)


# --- the way out


LOSSES = ("unplugged_cable", "lost_route")
SLOW_ROUTE = ["unplugged_cable", pytest.param("lost_route", marks=pytest.mark.slow)]


def loss_of(world, name):
    """The context in which the network is lost in the named way."""
    return getattr(world.network, name)()


@pytest.mark.slow
@pytest.mark.parametrize("loss", LOSSES)
def test_the_way_out_is_lost_while_not_hidden(shared, loss):
    before = start(shared)
    asked = len(shared.world.service.requests())
    with shared.noticed_loss(loss_of(shared.world, loss)):
        shared.press(ui.HIDE)
        outcomes.accept_alert(shared, outcomes.NO_INTERNET)
        outcomes.check_shown_not_hidden(shared)
    assert len(shared.world.service.requests()) == asked
    outcomes.check_session(shared, before)


@pytest.mark.parametrize("loss", SLOW_ROUTE)
def test_the_way_out_is_lost_while_searching(shared, loss):
    """Packets to the VPN server are dropped first, so that the loss happens in the middle of the attempt."""
    before = start(shared)
    with network.swallowing(to_servers("udp")):
        logged, launched = outcomes.failures_logged(shared), outcomes.launches(shared)
        shared.hide()
        shared.home.wait_for(
            lambda: outcomes.launches(shared) != launched and "link remote" in shared.openvpn_log(),
            "OpenVPN tries the server",
        )
        with shared.noticed_loss(loss_of(shared.world, loss)):
            outcomes.accept_not_available(shared, logged)
            outcomes.check_shown_not_hidden(shared)
            shared.wait_no_openvpn()
    before.check()
    outcomes.check_session(shared, before)


@pytest.mark.parametrize("loss", SLOW_ROUTE)
def test_the_way_out_is_lost_while_hidden(shared, loss):
    """The tunnel's routes remain, so that nothing leaves outside of it. It is back with the network."""
    world, before = shared.world, start(shared)
    shared.hide()
    shared.wait_hidden()
    address = outcomes.check_hidden(shared)
    with loss_of(world, loss):
        if loss == "unplugged_cable":
            assert world.home.public_address(shared.user, timeout=2) is None
        else:
            assert world.home.public_address(shared.user) == address
        assert shared.text("State picture") == "IP hidden"
    shared.home.wait_for(
        lambda: world.home.public_address(shared.user, timeout=2) == address, "the tunnel carries again"
    )
    assert shared.text("State picture") == "IP hidden" and shared.alerts() == []
    shared.stop()
    outcomes.check_shown_not_hidden(shared)
    shared.wait_no_openvpn()
    before.check()
    outcomes.check_session(shared, before)
