"""The wall clock jumps by hours while the client runs."""

import time

import pytest

from harness.conditions.clock import Clock
from harness.observe.outcomes import check_given_up, check_hidden, check_not_hidden, check_session
from world import network, service
from world.accounts import ADA
from world.service import BERLIN

TUNNEL = f"ip daddr {network.LENT_POOL} tcp dport {service.TCP_PORT}"
# Hours. The service's certificate is valid for two days from now on: both times of a jump are within.
FORWARD, BACK = (1, 30), (30, 1)
JUMPS = [pytest.param(*FORWARD, id="forward"), pytest.param(*BACK, id="back")]


def started(client, hours, **preferences):
    client.remember_administrator(ADA, location=BERLIN.title, **preferences)
    clock = Clock(client, hours)
    client.start(environment=clock.environment)
    client.choose_protocol("TCP")
    return clock


def check_stop_and_next_session(client, clock):
    with clock.check():
        client.stop()
        check_not_hidden(client)
    check_session(client)


@pytest.mark.slow
@pytest.mark.parametrize("before, after", JUMPS)
def test_jump_while_ready(client, before, after):
    clock = started(client, before)
    clock.set(after)
    client.hide()
    check_hidden(client)
    check_stop_and_next_session(client, clock)


@pytest.mark.slow
@pytest.mark.parametrize("before, after", JUMPS)
def test_jump_while_searching(world, client, before, after):
    """The client still reads the log every two seconds and finds that the tunnel is up."""
    network.swallow(TUNNEL)
    clock = started(client, before)
    client.hide()
    world.home.wait_for(lambda: "Attempting to establish TCP" in client.openvpn_log(), "OpenVPN tries")
    clock.set(after)
    network.stop_swallowing()
    check_hidden(client)
    check_stop_and_next_session(client, clock)


@pytest.mark.parametrize(
    "before, after",
    [pytest.param(*FORWARD, id="forward", marks=pytest.mark.slow), pytest.param(*BACK, id="back")],
)
def test_jump_while_hidden(client, before, after):
    clock = started(client, before)
    client.hide()
    address = check_hidden(client)
    clock.set(after)
    client.request("round_trips", key="first", count=20)
    assert check_hidden(client) == address and client.alerts() == []
    check_stop_and_next_session(client, clock)


@pytest.mark.slow
@pytest.mark.parametrize("before, after", JUMPS)
def test_jump_while_the_automatic_change_waits(world, client, before, after):
    """The interval of a minute remains: the change comes neither at once nor hours late."""
    clock = started(client, before, changeIpEvery=True, changeIpInterval=1)
    client.hide()
    hidden_at = client.wait_hidden()["at"]
    check_hidden(client)
    clock.set(after)
    world.home.wait_for(lambda: len(world.service.requests_of("VPNC")) == 2, "the change", timeout=180)
    # This test sees the hidden state later than the client, which counts the minute from its own time.
    assert time.monotonic() - hidden_at > 45
    client.wait({"description": "State picture"}, name="IP hidden")
    check_hidden(client)
    with clock.check():
        client.stop()
        check_not_hidden(client)


@pytest.mark.parametrize(
    "hours",
    [pytest.param(-20, id="too-early"), pytest.param(24 * 400, id="too-late", marks=pytest.mark.slow)],
)
def test_jump_out_of_the_certificates_time(world, client, hours):
    """With this clock the certificate is not valid: the message box. With the right time a session works."""
    clock = started(client, 0)
    clock.set(hours)
    client.hide()
    check_given_up(client)
    assert world.service.requests_of("VPNC") == [], "no request reached the service"
    clock.set(0)
    client.hide()
    check_hidden(client)
    check_stop_and_next_session(client, clock)
