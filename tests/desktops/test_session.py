"""Notifications, the start at login and the end of the session."""

import os
import shlex
import signal

import pytest

from harness.drive import settings
from harness.observe.outcomes import check_hidden, check_not_hidden
from windows import MAIN
from world import network

ENTRY = ".config/autostart/com.tallowind.Quorvane.desktop"
NOTICE = "Your real IP is visible"


@pytest.mark.check("notification shown")
def test_notification(session):
    session.start_client(noReconnect=True)
    client = session.client
    client.hide()
    check_hidden(client)
    assert NOTICE not in session.notices()
    for process in session.home.processes("openvpn"):
        os.kill(process.pid, signal.SIGKILL)
    session.wait(lambda: NOTICE in session.notices(), "the desktop shows the notification")
    session.picture("notification")


def switch_on(session, client):
    """Switches the start at login on and returns the command of the entry that is written."""
    settings.open_window(client)
    settings.switch(client, "Start Quorvane when I log in", to=True)
    settings.close_window(client, "OK")
    session.wait(client.file(ENTRY).exists, "the entry is written")
    lines = client.file(ENTRY).read_text(encoding="utf-8").splitlines()
    (command,) = [line.partition("=")[2] for line in lines if line.startswith("Exec=")]
    assert "Hidden=false" in lines
    return shlex.split(command)


@pytest.mark.check("autostart entry")
def test_autostart(session, client):
    command = switch_on(session, client)
    session.end_client()
    try:
        if session.desktop.starts_entries:
            session.log_out()
            session.leave()
            session.log_in()
        else:
            session.start("autostart", command, session.menu_environment())
        session.wait(lambda: session.living("quorvane"), "the client is started")
        session.tray_place()
        assert session.living("quorvane")[0].command == command
        assert not session.windows.shown(MAIN)
        session.picture("autostart")
    finally:
        session.client.file(ENTRY).unlink()


@pytest.mark.check("log-out while hidden")
def test_log_out(session, client):
    """The client ends. When its desktop let it end by itself, the tunnel ends with it.

    A compositor that ends takes the client with it, as a kill does: then the IP stays hidden until the next
    start.
    """
    client.hide()
    address = check_hidden(client)
    try:
        session.log_out()
        session.wait(lambda: not session.living("quorvane"), "the client has ended")
        if session.desktop.ends_programs:
            client.wait_no_openvpn()
            session.world.wait_nothing_lent()
            assert session.home.public_address(client.user) == network.REAL_ADDRESS
        else:
            assert session.home.public_address(client.user) == address, "the tunnel is as after a kill"
    finally:
        session.leave()
        session.log_in()
    session.start_client()
    check_not_hidden(session.client)
