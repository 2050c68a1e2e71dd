"""Ending the client while the IP is hidden takes the tunnel down."""

import signal

import pytest

from harness.drive import client as ui
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


def test_the_quit_key(world, hidden):
    hidden.display.press_keys("Quorvane", "ctrl+q")
    assert hidden.wait_exit() == 0
    check_gone(world, hidden)


def test_closing_the_window_is_no_quitting(world, hidden):
    """The window goes out of the way; the session goes on."""
    address = hidden.current_address()
    hidden.display.press_keys("Quorvane", "alt+F4")
    world.home.wait_for(lambda: not hidden.display.on_screen("Quorvane"), 10, "the window is out of the way")
    assert hidden.running()
    assert len(hidden.openvpn()) == 1
    assert world.home.public_address() == address


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
