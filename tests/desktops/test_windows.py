"""Alerts, the About window and the settings."""

import pytest

from harness.drive import client as ui
from harness.drive import settings
from windows import ABOUT, ALERT, MAIN

SAME_IP = {"window": ui.MAIN, "role": "check box", "name": "Always Use Same IP Address"}
PANES = {"IP Addresses": ("check box", "Start Quorvane when I log in"), "Hot Keys": ("combo box", "None")}


@pytest.mark.check("alerts in front with the focus")
def test_alert(session, client):
    session.wait(lambda: session.windows.has_focus(MAIN), "the window has the focus")
    client.press(SAME_IP)
    client.wait_alert()
    session.wait(lambda: session.windows.in_front(ALERT), "the alert is in front with the focus")
    session.picture("alert")
    session.screen.key("Return")
    session.wait(lambda: not client.alerts(), "a key closes the alert")


@pytest.mark.check("alerts in front with the focus")
def test_alert_over_about(session, client):
    session.tray.wait_item()
    session.tray.click("About Quorvane")
    session.wait(lambda: session.windows.in_front(ABOUT), "the About window is in front")
    session.picture("about")
    client.press(SAME_IP)
    client.wait_alert()
    session.wait(lambda: session.windows.in_front(ALERT), "the alert is in front with the focus")
    session.picture("alert-over-about")
    session.screen.key("Return")
    session.wait(lambda: not client.alerts(), "a key closes the alert")


@pytest.mark.check("settings panes")
def test_settings(session, client):
    settings.open_window(client)
    session.wait(lambda: session.windows.in_front(settings.TITLE), "the settings are in front")
    for pane, (role, name) in PANES.items():
        settings.open_pane(client, pane)
        client.wait({"window": settings.TITLE, "role": role, "name": name}, showing=True)
        session.picture(f"settings-{pane.replace(' ', '-')}")
    settings.close_window(client)
