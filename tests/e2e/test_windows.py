"""The order of the program's windows on a screen with a window manager."""

import re

import pytest

from harness.drive import client as ui
from harness.drive.tray import TrayIcon
from world.accounts import ADA

MAIN_TITLE, ABOUT_TITLE = "Quorvane (ver.1.0.0)", "About Quorvane"
SAME_IP = {"window": ui.MAIN, "role": "check box", "name": "Always Use Same IP Address"}


@pytest.fixture
def tray(client):
    client.remember_administrator(ADA, location="Netherlands Amsterdam")
    return TrayIcon(client)


@pytest.fixture
def about(client, tray):
    """The client with its About window open over the main window."""
    tray.appear()
    client.start()
    client.wait_ready()
    tray.wait_item()
    tray.click(ABOUT_TITLE)
    client.wait(ui.button("OK", ABOUT_TITLE), showing=True)
    return client


def stacking(display):
    """Every managed window from the lowest to the highest, as decimal numbers."""
    numbers = re.findall(r"0x[0-9a-f]+", display.property("root", "_NET_CLIENT_LIST_STACKING"))
    return [str(int(number, 16)) for number in numbers]


def number_of(client, title):
    """The window with exactly this title, once the window manager lists it."""
    client.home.wait_for(lambda: client.display.listed(f'= "{re.escape(title)}"$'), f"{title} is listed")
    (number,) = client.display.listed(f'= "{re.escape(title)}"$')
    return number


def check_alert_in_front(world, display, number):
    world.home.wait_for(
        lambda: stacking(display)[-1] == number and display.active() == number,
        "the alert is above every other window and has the focus",
    )
    assert "_NET_WM_STATE_MODAL" in display.property(number, "_NET_WM_STATE")
    assert display.property(number, "_NET_WM_ICON"), "the alert has the program's icon"


def test_alert_is_above_the_about_window(world, about, tray):
    """The About window floats above all others: an alert below it would let the program look dead."""
    display = about.display
    tray.click("Show Quorvane")
    main = number_of(about, MAIN_TITLE)
    world.home.wait_for(
        lambda: "_NET_WM_STATE_ABOVE" not in display.property(main, "_NET_WM_STATE"),
        "the main window floats no more",
    )
    about.press(SAME_IP)
    about.wait_alert()
    alert = number_of(about, "Quorvane")
    check_alert_in_front(world, display, alert)
    owner = re.search(r"0x[0-9a-f]+", display.property(alert, "WM_TRANSIENT_FOR"))
    assert str(int(owner[0], 16)) == number_of(about, ABOUT_TITLE)
    display.run("xdotool", "key", "Return")
    world.home.wait_for(lambda: not about.alerts(), "the alert is closed by a key")


def test_about_window_opens_below_an_alert(world, client, tray):
    tray.appear()
    client.start()
    client.wait_ready()
    tray.wait_item()
    client.press(SAME_IP)
    client.wait_alert()
    tray.click(ABOUT_TITLE)
    world.home.wait_for(lambda: client.display.on_screen(ABOUT_TITLE), "the About window is open")
    check_alert_in_front(world, client.display, number_of(client, "Quorvane"))


def test_alert_of_a_second_copy_is_above_the_about_window(world, about):
    about.start(key="second")
    about.wait_alert(key="second")
    check_alert_in_front(world, about.display, number_of(about, "Quorvane"))
    about.dismiss_alert(key="second")
    assert about.wait_exit(key="second") == 0
