"""The tray item, its menu, and the window that is closed into the tray."""

import pytest

from harness.observe.outcomes import check_hidden, check_not_hidden
from icons import BLUE, GREEN
from windows import MAIN

NOT_HIDDEN = "Quorvane: your IP is not hidden"
SEARCHING = "Quorvane: searching for an available IP"
REST = [
    "Change IP",
    "Location",
    "-",
    "Copy IP",
    "Check IP in Browser",
    "-",
    "Show Quorvane",
    "Refresh Locations",
    "Settings...",
    "Help",
    "About Quorvane",
    "-",
    "Quit Quorvane",
]


@pytest.mark.check("tray item and menu in every phase")
def test_phases(session, client):
    """The menu that the tray itself shows hides the IP and stops it again."""
    at_rest = session.tray.wait_item(tooltip=NOT_HIDDEN)["icon"]
    assert session.tray.menu() == ["Quorvane", *REST]
    session.tray_place(BLUE)
    session.choose_first_entry()
    searching = session.tray.wait_item(tooltip=SEARCHING)["icon"]
    assert session.tray.menu()[1:] == REST
    address = check_hidden(client)
    hidden = session.tray.wait_item(tooltip=f"Quorvane: your IP is hidden behind {address}")["icon"]
    assert hidden not in (at_rest, searching)
    session.tray_place(GREEN)
    session.tray.wait_enabled("Stop Hiding IP")
    assert session.tray.menu() == ["Stop Hiding IP", *REST]
    session.picture("tray-hidden")
    session.choose_first_entry()
    client.wait_not_hidden()
    check_not_hidden(client)
    assert session.tray.wait_item(tooltip=NOT_HIDDEN)["icon"] == at_rest


@pytest.mark.check("hidden state")
def test_hidden(session, client):
    """A press of the button through accessibility; the service's side sees the lent address."""
    client.hide()
    address = check_hidden(client)
    assert session.home.public_address(client.user) == address
    session.picture("hidden")
    client.stop()
    check_not_hidden(client)


@pytest.mark.check("close and return by the tray")
def test_close_and_return(session, client):
    session.tray_place()
    session.close_window(MAIN)
    session.wait(lambda: not session.windows.listed(MAIN), "the window is not in the task bar")
    assert client.running()
    session.picture("closed")
    session.show_by_tray()
    session.wait(lambda: session.windows.in_front(MAIN), "the tray brings the window to the front")


@pytest.mark.check("late and dying tray host")
def test_tray_host_ends_and_returns(session, client):
    session.tray_place()
    session.close_window(MAIN)
    session.wait(lambda: not session.windows.listed(MAIN), "the window is in the tray only")
    session.end_tray_host()
    session.wait(lambda: session.windows.listed(MAIN), "without a tray the window is in the task bar")
    assert client.running() and not session.windows.shown(MAIN)
    session.start_tray_host()
    session.tray_place()
    session.wait(lambda: not session.windows.listed(MAIN), "the window is in the tray again")
    session.show_by_tray()
    session.wait(lambda: session.windows.in_front(MAIN), "the tray brings the window to the front")


@pytest.mark.check("late and dying tray host")
def test_late_tray_host(session):
    """The tray starts after the client, as in a slow login."""
    session.end_tray_host()
    try:
        session.start_client()
        session.close_window(MAIN)
        assert session.windows.listed(MAIN), "without a tray the window is in the task bar"
    finally:
        session.start_tray_host()
    session.tray_place()
    session.wait(lambda: not session.windows.listed(MAIN), "the window moves to the tray")
    session.show_by_tray()
    session.wait(lambda: session.windows.in_front(MAIN), "the tray brings the window to the front")
