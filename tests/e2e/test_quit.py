"""Ending the client while the IP is hidden ends the tunnel as well."""

import contextlib
import signal

import pytest

from harness.drive import client as ui
from harness.drive.client import DriverError
from world import network
from world.accounts import ADA


@pytest.fixture
def hidden(world, client):
    client.remember_administrator(ADA, location="Netherlands Amsterdam")
    client.start()
    # Over TCP the server notices the end at once, so that its side can be checked as well.
    client.choose_protocol("TCP")
    client.hide()
    client.wait_hidden()
    assert world.service.lent()
    return client


def check_gone(world, client):
    client.wait_no_openvpn()
    assert world.home.public_address() == network.REAL_ADDRESS
    world.wait_nothing_lent()


def test_the_quit_key(world, hidden):
    hidden.display.press_keys("Quorvane", "ctrl+q")
    assert hidden.wait_exit() == 0
    check_gone(world, hidden)


def test_closing_the_window_does_not_quit(world, hidden):
    """The window is hidden; the session goes on."""
    address = hidden.current_address()
    hidden.display.close_window("Quorvane")
    assert hidden.running()
    assert len(hidden.openvpn()) == 1
    assert world.home.public_address() == address


@pytest.mark.parametrize("number", [signal.SIGTERM, signal.SIGINT, signal.SIGHUP])
def test_signals(world, hidden, number):
    hidden.signal(number)
    assert hidden.wait_exit() == 0
    check_gone(world, hidden)


def test_signals_that_are_repeated(world, hidden):
    """Requests to quit that come while the tunnel is being ended do not end the client before it."""
    while hidden.running():
        with contextlib.suppress(DriverError):  # it may have ended meanwhile
            hidden.signal(signal.SIGTERM)
    assert hidden.wait_exit() == 0
    check_gone(world, hidden)


def test_end_of_the_desktop_session(world, hidden):
    """At a logout every process of the user receives SIGTERM, the session bus included."""
    hidden.log_out()
    world.home.wait_for(lambda: not world.home.processes("quorvane"), "the client has ended")
    check_gone(world, hidden)


def test_preferences_survive(world, hidden):
    hidden.terminate()
    check_gone(world, hidden)
    stored = hidden.preferences()
    assert stored["countryCode"] == "NL"
    hidden.start(key="again")
    hidden.wait_ready(key="again")
    assert hidden.text("Status line", key="again") == ui.NOT_HIDING


class SessionManager:
    """xsm, a session manager of the X protocol, on the client's screen."""

    def __init__(self, world, client):
        self.client = client
        self.address_file = f"{client.folder}/session-manager"
        world.home.write(
            f"{client.folder}/.xsmstartup",
            f"""sh -c "printenv SESSION_MANAGER > {self.address_file}; exec sleep 1000"\n""",
            owner=client.user,
        )
        client.request(
            "start",
            key="manager",
            arguments=["xsm"],
            environment={},
            output=f"{client.folder}/manager.log",
        )
        path = world.home.path(self.address_file)
        world.home.wait_for(lambda: path.exists() and path.read_text().strip(), "the session manager runs")
        self.address = path.read_text(encoding="utf-8").strip()


def test_session_manager_that_ends_at_once(world, client):
    """It closes its connection before the client could end the tunnel."""
    manager = SessionManager(world, client)
    client.remember_administrator(ADA, location="Netherlands Amsterdam")
    client.start(environment={"SESSION_MANAGER": manager.address})
    client.choose_protocol("TCP")
    client.hide()
    client.wait_hidden()
    client.signal(signal.SIGKILL, key="manager")
    assert client.wait_exit() == 0
    check_gone(world, client)
