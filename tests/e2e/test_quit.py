"""Ending the client while the IP is hidden takes the tunnel down."""

import signal

import pytest
from harness import client as ui
from world import network
from world.accounts import ADA


@pytest.fixture
def hidden(world, client):
    client.remember_administrator(ADA, location="Netherlands Amsterdam")
    client.start()
    # Over TCP the server learns of the end at once, so that its side can be looked at as well.
    client.choose_protocol("TCP")
    client.hide()
    client.wait_hidden()
    assert world.service.lent()
    return client


def check_gone(world, client):
    client.wait_no_openvpn()
    assert world.home.public_address() == network.REAL_ADDRESS
    world.home.wait_for(lambda: not world.service.lent(), 15, "the lent address is given back")


def test_closing_the_window(world, hidden):
    """Without a tray there is no other way back to the program, so the last window's close ends it."""
    hidden.display.close_active_window("Quorvane")
    assert hidden.wait_exit() == 0
    check_gone(world, hidden)


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGINT, signal.SIGHUP])
def test_signals(world, hidden, number):
    hidden.signal(number)
    assert hidden.wait_exit() == 0
    check_gone(world, hidden)


def test_end_of_the_desktop_session(world, hidden):
    """Logging out tells every process of the user to end, the session bus among them."""
    hidden.log_out()
    world.home.wait_for(lambda: not world.home.processes("quorvane"), 20, "the client has ended")
    check_gone(world, hidden)


def test_preferences_survive(world, hidden):
    hidden.signal(signal.SIGTERM)
    hidden.wait_exit()
    check_gone(world, hidden)
    stored = hidden.preferences()
    assert stored["countryCode"] == "NL"
    hidden.start(key="again")
    hidden.wait(ui.HIDE, ui.ANSWER, key="again", showing=True, enabled=True)
    assert hidden.ask("read", key="again", query=ui.label("Status line"))["name"] == ui.NOT_HIDING
