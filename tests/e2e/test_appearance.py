"""The appearance that the user has chosen for the desktop, through the real desktop portal."""

import re
import signal

import pytest

from harness.conditions.portal import PortalDesktop
from harness.drive import settings
from world.accounts import ADA
from world.service import BERLIN

LIGHT, MOVES = "2", "1"
DARK_GROUND, LIGHT_GROUND = "#404040", "#F2F2F2"


@pytest.fixture(name="desktop")
def fixture_desktop(world, client):
    return PortalDesktop(world, client, "Settings", "settings_backend.py")


def ground(client):
    """The colour of the settings window's left margin, as it is on the screen."""
    number = client.display.run(
        "xdotool", "search", "--onlyvisible", "--name", settings.TITLE
    ).stdout.split()[0]
    pixel = client.display.run(
        "import", "-window", number, "-crop", "1x1+8+300", "-depth", "8", "txt:-"
    ).stdout
    return re.search(r"#[0-9A-F]{6}", pixel).group()


def open_settings(client, **preferences):
    client.remember_administrator(ADA, location=BERLIN.title, **preferences)
    client.start()
    client.wait_ready()
    settings.open_window(client)


def wait_ground(world, client, colour):
    world.home.wait_for(lambda: ground(client) == colour, f"the ground is {colour}")


def test_windows_follow_the_desktop(world, client, desktop):
    """A choice of the desktop is followed at the start and while the program runs."""
    desktop.start(LIGHT, MOVES)
    desktop.start_portal()
    open_settings(client)
    wait_ground(world, client, LIGHT_GROUND)
    client.signal(signal.SIGUSR2, key="desktop")
    wait_ground(world, client, DARK_GROUND)
    client.signal(signal.SIGUSR1, key="desktop")
    wait_ground(world, client, LIGHT_GROUND)


def test_portal_that_comes_late_is_read(world, client, desktop):
    open_settings(client)
    wait_ground(world, client, DARK_GROUND)
    desktop.start(LIGHT, MOVES)
    desktop.start_portal()
    wait_ground(world, client, LIGHT_GROUND)


def test_choice_of_the_program_is_stronger(world, client, desktop):
    """With "Dark" chosen in the settings, the windows stay dark whatever the desktop reports."""
    desktop.start(LIGHT, MOVES)
    desktop.start_portal()
    open_settings(client, appearance=1)
    world.home.wait_for(lambda: desktop.calls("ReadAll"), "the desktop is read")
    client.signal(signal.SIGUSR1, key="desktop")
    # The answer to a later press is drawn after the signal was handled.
    settings.close_window(client)
    settings.open_window(client)
    assert ground(client) == DARK_GROUND
