"""Global hot keys in a Wayland session: the real desktop portal, with a desktop of the test behind it."""

import signal

import pytest

from harness.conditions.portal import PortalDesktop
from harness.drive import client as ui
from harness.drive.keyboard import ONE, SUPER, Keyboard, OtherWindow
from world.accounts import ADA
from world.service import BERLIN

# Preferences hold tags: "Cmd + 1", "Ctrl + F1", "Shift + F1", "Cmd + Up arrow", "Cmd + A".
KEYS = {
    "hideIpHotKey": 2,
    "changeIpHotKey": 41,
    "stopHideIpHotKey": 57,
    "discardIpHotKey": 30,
    "bringUpWindowHotKey": 18,
}
EXPECTED = {
    ("Hide IP", "LOGO+1"),
    ("Change IP", "CTRL+F1"),
    ("Stop hiding IP", "SHIFT+F1"),
    ("Discard IP", "LOGO+Up"),
    ("Bring up window", "LOGO+a"),
}
SETTINGS = "Quorvane Settings"

# Requests a session of the portal; with the argument "0" as a process that no other one may inspect.
CALLER = """import ctypes
import sys
import dbus
ctypes.CDLL(None).prctl(4, int(sys.argv[1]))
portal = dbus.SessionBus().get_object("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop")
try:
    portal.CreateSession(
        {"session_handle_token": "caller", "handle_token": "one"},
        dbus_interface="org.freedesktop.portal.GlobalShortcuts",
    )
    print("accepted", flush=True)
except dbus.DBusException as error:
    print(error, flush=True)
"""


class Desktop(PortalDesktop):
    """The desktop behind the portal, and the portal, both on the session bus of a client."""

    def __init__(self, world, client):
        super().__init__(world, client, "GlobalShortcuts", "shortcuts_backend.py")

    def start_client(self):
        self.client.remember_administrator(ADA, location=BERLIN.title, **KEYS)
        self.client.start(environment={"XDG_SESSION_TYPE": "wayland"})
        self.client.wait_ready()

    def wait_calls(self, name, number=1):
        self.world.home.wait_for(lambda: len(self.calls(name)) >= number, f"call {number} of {name}")
        assert len(self.calls(name)) == number
        return self.calls(name)[-1]

    def press(self):
        """The user presses the keys of the first shortcut that has its keys."""
        self.client.signal(signal.SIGUSR1, key="desktop")

    def problem(self, action):
        query = {"window": SETTINGS, "description": f"{action}, problem"}
        return self.client.request("read", key="first", query=query)["name"]


@pytest.fixture(name="desktop")
def fixture_desktop(world, client):
    return Desktop(world, client)


def descriptions_and_triggers(call):
    return {
        (properties["description"], properties["preferred_trigger"])
        for properties in call["shortcuts"].values()
    }


def test_keys_come_with_the_session_and_hide_the_ip(world, client, desktop):
    """As on Plasma: the portal accepts the client as a caller, no second list follows, a press acts."""
    desktop.start("plasma")
    desktop.start_portal()
    desktop.start_client()
    desktop.wait_calls("ListShortcuts")
    assert descriptions_and_triggers(desktop.wait_calls("CreateSession")) == EXPECTED

    other = OtherWindow(client.display)
    other.focus()
    Keyboard(client.display).strike(SUPER, ONE)
    world.home.wait_for(
        lambda: ONE in [key for key, _state in other.presses()], "a key reaches the other window"
    )
    assert world.service.requests_of("VPNC") == [], "the client registers no key at the X server"
    first = desktop.calls("CreateSession")[0]["shortcuts"]
    assert next(iter(first.values()))["description"] == "Hide IP"
    desktop.press()
    client.wait_hidden()
    sent = world.service.requests_of("VPNC")
    assert [request.parameter("desiredip") for request in sent] == list(world.service.lent().values())
    assert desktop.calls("BindShortcuts") == [], "no window of the desktop opens"
    assert len(desktop.calls("CreateSession")) == 1


def test_desktop_that_binds_on_request_receives_the_list_once(client, desktop):
    """A desktop that passes over the shortcuts of a new session, and shows a dialog for them."""
    desktop.start("dialog")
    desktop.start_portal()
    desktop.start_client()
    assert descriptions_and_triggers(desktop.wait_calls("BindShortcuts")) == EXPECTED
    desktop.press()
    client.wait_hidden()
    assert len(desktop.calls("BindShortcuts")) == len(desktop.calls("CreateSession")) == 1


def test_portal_that_comes_late_and_returns(client, desktop):
    """The keys are registered when a portal appears, and again after it has ended."""
    desktop.start("plasma")
    desktop.start_client()
    key = desktop.start_portal()
    desktop.wait_calls("ListShortcuts")
    client.signal(signal.SIGKILL, key=key)
    assert client.wait_exit(key=key) == -signal.SIGKILL
    desktop.start_portal()
    desktop.wait_calls("ListShortcuts", 2)
    assert descriptions_and_triggers(desktop.wait_calls("CreateSession", 2)) == EXPECTED
    desktop.press()
    client.wait_hidden()
    assert desktop.calls("BindShortcuts") == []


def test_combination_that_the_desktop_holds_is_reported(world, client, desktop):
    """Plasma's portal lists a shortcut as bound whose keys another program holds; the pane says so."""
    desktop.start("plasma", "CTRL+F1")
    desktop.start_portal()
    desktop.start_client()
    desktop.wait_calls("ListShortcuts")
    client.press(ui.button("Settings", ui.MAIN))
    client.wait({"window": SETTINGS, "role": "push button", "name": "Apply"}, showing=True)
    client.press({"window": SETTINGS, "name": "Hot Keys"})
    client.wait({"window": SETTINGS, "role": "combo box"}, showing=True)
    world.home.wait_for(
        lambda: desktop.problem("Change IP") == "Another program uses this combination.", "it is reported"
    )
    assert desktop.problem("Hide IP") == ""
    assert client.preferences()["changeIpHotKey"] == KEYS["changeIpHotKey"], "the stored choice is unchanged"


@pytest.mark.parametrize(
    "dumpable, expected", [("1", "accepted"), ("0", "Portal operation not allowed: Unable to open")]
)
def test_control_the_portal_looks_at_its_caller(world, client, desktop, dumpable, expected):
    """The portal of these tests rejects a caller that it cannot inspect, as it would reject the client."""
    desktop.start("plasma")
    desktop.start_portal()
    client.request(
        "start",
        key="caller",
        arguments=["/usr/bin/python3", "-c", CALLER, dumpable],
        environment={},
        output=f"{client.folder}/caller.log",
    )
    assert client.wait_exit(key="caller") == 0
    assert expected in world.home.path(f"{client.folder}/caller.log").read_text(encoding="utf-8")
    assert len(desktop.calls("CreateSession")) == int(dumpable)
