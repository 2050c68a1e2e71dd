"""A tunnel that ends by itself or gives no answer: the window shows it, and the client reconnects."""

import os
import re
import signal
import time

import pytest

from harness.drive import client as ui
from harness.observe import figures, outcomes
from harness.home.deadlines import EVENTUALLY
from world import network
from world.accounts import ADA
from world.service import BERLIN

DEVICE = "tun0"
GUARD = "openvpn-guard"
NOTICE = ui.label("Address notice")
# A connection of the lent address to the web host, which returns the address, and to the resolvers.
ANSWERS = "ip saddr 10.0.0.0/8 tcp dport 443"


def in_home(*command):
    network.run("ip", "netns", "exec", network.HOME, *command)


def kill_openvpn(client):
    (process,) = client.openvpn()
    os.kill(process.pid, signal.SIGKILL)


def end_openvpn(client):
    (process,) = client.openvpn()
    os.kill(process.pid, signal.SIGTERM)


def kill_guard(client):
    (process,) = client.home.processes(GUARD)
    os.kill(process.pid, signal.SIGKILL)


def delete_device(_client):
    in_home("ip", "link", "delete", DEVICE)


def delete_half(_client):
    in_home("ip", "route", "delete", "128.0.0.0/1")


# What the loss looks like. The device goes a moment before its process, which a busy computer can draw out.
KILLED = "OpenVPN was killed|the device is gone"
LOSSES = [
    pytest.param(kill_openvpn, KILLED, id="openvpn-killed"),
    pytest.param(end_openvpn, "OpenVPN has ended|the routes were changed", id="openvpn-ended"),
    pytest.param(kill_guard, KILLED, id="guard-killed"),
    pytest.param(delete_device, "the device is gone|OpenVPN has ended", id="device-deleted"),
    pytest.param(delete_half, "the routes were changed", id="route-deleted"),
]


def hide(client, **preferences):
    client.remember_administrator(ADA, location=BERLIN.title, showLogs=0, **preferences)
    client.start()
    client.hide()
    client.wait_hidden()
    return outcomes.check_hidden(client)


def wait_shown(client, since):
    """Waits until the window says that nothing is hidden; returns the milliseconds since then."""
    end = since + EVENTUALLY
    while client.text("Status line") != ui.NOT_HIDING:
        assert time.monotonic() < end, client.text("Status line")
    return round((time.monotonic() - since) * 1000)


@pytest.mark.parametrize("lose, reason", LOSSES)
def test_loss_is_shown(world, client, lose, reason):
    hide(client, noReconnect=True)
    begun = time.monotonic()
    lose(client)
    figures.record("milliseconds from the loss to the truth in the window", wait_shown(client, begun))
    client.wait_output("the tunnel was lost: ", "the loss is logged")
    assert re.search(f"the tunnel was lost: ({reason})\n", client.output())
    client.wait_no_openvpn()
    outcomes.check_shown_not_hidden(client)
    world.home.wait_for(
        lambda: world.home.public_address() == network.REAL_ADDRESS, "the real address is used again"
    )
    assert len(world.service.requests_of("VPNC")) == 1, "no attempt has begun"
    client.hide()
    client.wait_hidden()
    outcomes.check_hidden(client)


def test_lost_tunnel_is_made_anew(world, client):
    hide(client)
    kill_openvpn(client)
    world.home.wait_for(lambda: len(world.service.requests_of("VPNC")) == 2, "another attempt begins")
    client.wait_hidden()
    outcomes.check_hidden(client)
    first, second = world.service.requests_of("VPNC")
    assert first.parameter("loc") == second.parameter("loc")
    assert client.alerts() == []
    client.stop()
    outcomes.check_not_hidden(client)


def test_reconnecting_without_a_network_ends_not_hidden(world, client):
    hide(client)
    with world.network.unplugged_cable():
        kill_openvpn(client)
        client.wait_no_openvpn()
        client.wait_alert()
        assert client.alerts() == [outcomes.NOT_AVAILABLE]
        client.dismiss_alert()
        outcomes.check_shown_not_hidden(client)
    outcomes.check_session(client)


def test_silent_server_is_reported(make_world, make_client):
    world = make_world(vpn_settings={"ping_seconds": 1, "ping_exit_seconds": 4})
    client = make_client(world)
    hide(client, noReconnect=True)
    with network.ruled(network.GATEWAY, network.leaving(f"ip saddr {network.LENT_POOL} drop")):
        client.wait_output("the tunnel was lost: the server is silent", "the loss is logged")
    client.wait_no_openvpn()
    outcomes.check_shown_not_hidden(client)


def test_sleep_of_the_programs_ends_no_tunnel(world, client):
    address = hide(client)
    processes = [
        process.pid for name in ("openvpn", GUARD, "quorvane") for process in world.home.processes(name)
    ]
    for pid in processes:
        os.kill(pid, signal.SIGSTOP)
    time.sleep(3)  # the sleep is what the test is about
    for pid in processes:
        os.kill(pid, signal.SIGCONT)
    assert world.home.public_address() == address
    assert outcomes.check_hidden(client) == address
    assert len(world.service.requests_of("VPNC")) == 1


@pytest.mark.parametrize("protocol", ["UDP", "TCP"])
def test_change_of_network(make_world, make_client, protocol):
    """Another address and another default route: over UDP the tunnel goes on, over TCP it is made anew."""
    world = make_world(vpn_settings={"ping_seconds": 1, "ping_exit_seconds": 8})
    client = make_client(world)
    client.remember_administrator(ADA, location=BERLIN.title, showLogs=0)
    client.start()
    client.choose_protocol(protocol)
    client.hide()
    client.wait_hidden()
    outcomes.check_hidden(client)
    in_home("ip", "address", "delete", f"{network.HOME_ADDRESS}/24", "dev", "eth0")
    in_home("ip", "address", "add", "192.168.77.9/24", "dev", "eth0")
    in_home("ip", "route", "add", "default", "via", network.ROUTER_ADDRESS)

    def carries():
        lent = world.service.requests_of("VPNC")[-1].parameter("desiredip")
        return world.home.public_address(timeout=2) == lent

    world.home.wait_for(carries, "a tunnel carries again")
    outcomes.check_hidden(client)
    assert len(world.service.requests_of("VPNC")) == (1 if protocol == "UDP" else 2)
    client.stop()
    world.home.wait_for(
        lambda: world.home.public_address() == network.REAL_ADDRESS, "the real address is used again"
    )


def test_address_that_does_not_come_is_requested_again(world, client):
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    with network.swallowing(ANSWERS):
        client.hide()
        client.wait_hidden()
        client.wait(NOTICE, name="No answer through the tunnel yet", showing=True)
        assert client.current_address() == ""
    address = world.service.requests_of("VPNC")[0].parameter("desiredip")
    client.wait(ui.label("Current IP address"), matches="^" + re.escape(address))
    client.wait(NOTICE, showing=False)
    outcomes.check_hidden(client)
