"""Global hot keys: real keys pressed while another program's window has the focus."""

import json
import re
import signal
import time

import pytest

from harness.drive import client as ui
from harness.drive.keyboard import (
    CAPS_LOCK,
    CONTROL,
    DOWN,
    F1,
    F2,
    FIVE,
    HOME,
    NUM_LOCK,
    ONE,
    RETURN,
    SHIFT,
    SPACE,
    SUPER,
    UP,
    A,
    B,
    Keyboard,
    OtherWindow,
    active_window,
)
from world import home, network, service
from world.accounts import ADA
from world.service import BERLIN

# Preferences hold tags: "Cmd + 1", "Ctrl + F1", "Shift + F1", "Cmd + Up arrow"; 18 is Command with the A key.
KEYS = {
    "hideIpHotKey": 2,
    "changeIpHotKey": 41,
    "stopHideIpHotKey": 57,
    "discardIpHotKey": 30,
    "bringUpWindowHotKey": 18,
}
HIDE, CHANGE, STOP, DISCARD, BRING_UP = (SUPER, ONE), (CONTROL, F1), (SHIFT, F1), (SUPER, UP), (SUPER, A)
SETTINGS = "Quorvane Settings"
MAIN = re.escape(ui.MAIN)  # xdotool looks for patterns
ENTRIES = ["None", *(f"Cmd + {digit}" for digit in range(10))]  # how the pane's lists begin
LOCK_STATES = {
    "no lock": ((), 0),
    "Num Lock": ((NUM_LOCK,), 16),
    "Caps Lock": ((CAPS_LOCK,), 2),
    "both": ((NUM_LOCK, CAPS_LOCK), 18),
}


class Desk:
    """A client with hot keys that is ready, another window in front of it, and a keyboard."""

    def __init__(self, world, client, **keys):
        self.world, self.client = world, client
        self.keyboard = Keyboard(client.display)
        client.remember_administrator(ADA, location=BERLIN.title, **keys)
        client.start()
        client.wait_ready()
        self.other = OtherWindow(client.display)

    def press(self, keys):
        """Strikes a combination while the other window has the focus."""
        self.other.focus()
        self.keyboard.strike(*keys)

    def asked(self):
        return [request.parameter("desiredip") for request in self.world.service.requests_of("VPNC")]

    def wait_lent(self, number):
        """Waits until the service has lent the address of the client's last request, the number-th of all."""
        self.world.home.wait_for(lambda: len(self.asked()) >= number, ui.ANSWER, f"request {number}")
        self.client.wait_hidden()
        assert len(self.asked()) == number
        address = self.asked()[-1]
        assert list(self.world.service.lent().values()) == [address]
        assert self.world.home.public_address() == address
        return address

    def wait_returned(self):
        self.client.wait_not_hidden()
        self.client.wait_no_openvpn()
        self.world.home.wait_for(lambda: self.world.service.lent() == {}, 10, "the lent address given back")
        assert self.world.home.public_address() == network.REAL_ADDRESS


@pytest.mark.parametrize("locks", LOCK_STATES)
def test_every_action(world, client, locks):
    desk = Desk(world, client, **KEYS)
    lock_keys, state = LOCK_STATES[locks]
    for key in lock_keys:
        desk.keyboard.strike(key)
    desk.press((B,))
    world.home.wait_for(lambda: (B, state) in desk.other.presses(), 10, "a key in the other window")

    desk.press(HIDE)
    assert desk.wait_lent(1) in BERLIN.addresses
    desk.press(CHANGE)
    place = service.location_of(desk.wait_lent(2))
    desk.press(DISCARD)
    address = desk.wait_lent(3)
    discarded = client.preferences()["discardedIPs"]
    assert discarded in place.addresses and address != discarded
    desk.press(STOP)
    desk.wait_returned()

    client.display.run("xdotool", "search", "--onlyvisible", "--name", MAIN, "windowminimize", timeout=20)
    world.home.wait_for(lambda: not client.display.on_screen(MAIN), 10, "the minimised window")
    desk.press(BRING_UP)
    world.home.wait_for(
        lambda: active_window(client.display).startswith(ui.MAIN), 10, "the main window in front"
    )
    assert client.display.on_screen(MAIN)

    assert len(desk.asked()) == 3
    reached = {key for key, _state in desk.other.presses()}
    assert not reached & {ONE, F1, UP, A}, "the combinations do not reach the other window"


def test_held_key_acts_once(world, client):
    """Each press of this action asks for another address, so repeats would show."""
    desk = Desk(world, client, **KEYS)
    desk.keyboard.hold(2, B)
    world.home.wait_for(
        lambda: len(desk.other.presses()) >= 10, 10, "the server repeating a key that is held"
    )
    desk.press(HIDE)
    desk.wait_lent(1)
    desk.other.focus()
    desk.keyboard.hold(2, *CHANGE)
    desk.wait_lent(2)
    desk.press(STOP)
    desk.wait_returned()
    assert len(desk.asked()) == 2


def test_layout_changes_nothing(world, client):
    desk = Desk(world, client, **KEYS)
    for number, layout in enumerate(("fr", "ru"), start=1):
        desk.keyboard.set_layout(layout)
        desk.press(HIDE)
        desk.wait_lent(number)
        desk.press(STOP)
        desk.wait_returned()
    desk.press(BRING_UP)
    world.home.wait_for(
        lambda: active_window(client.display).startswith(ui.MAIN), 10, "the main window in front"
    )


def open_hot_keys(client):
    client.press(ui.button("Settings", ui.MAIN))
    client.wait({"window": SETTINGS, "role": "push button", "name": "Apply"}, 10, showing=True)
    client.press({"window": SETTINGS, "name": "Hot Keys"})
    client.wait({"window": SETTINGS, "role": "combo box"}, 10, showing=True)


def choose_first(desk, entry):
    """Chooses a combination for the first action of the pane, hide IP, and applies it. By keys: the list scrolls."""
    pop_up = {"window": SETTINGS, "role": "combo box"}
    desk.client.display.press_keys(SETTINGS, "alt+h")
    desk.keyboard.strike(SPACE)
    desk.client.wait({**pop_up, "role": "list"}, 10, showing=True)
    desk.keyboard.strike(HOME)
    for _ in range(ENTRIES.index(entry)):
        desk.keyboard.strike(DOWN)
    desk.keyboard.strike(RETURN)
    desk.client.wait(pop_up, 10, name=entry)
    desk.client.press(ui.button("Apply", SETTINGS))


def press_for_desktop(desk, keys, wanted):
    """Presses until the window manager has gone to that desktop, which it does each time.

    A first press was seen to be lost: probably it takes its combinations anew when a keyboard's first key tells of it.
    """
    until = time.monotonic() + 20
    while desk.client.display.run("xdotool", "get_desktop", timeout=20).stdout.strip() != wanted:
        assert time.monotonic() < until, f"the window manager's desktop {wanted}"
        desk.keyboard.strike(*keys)
        time.sleep(0.2)


def test_combination_of_another_program(world, client):
    """The window manager holds Super+F1: it keeps it, the pane says so, and the other combinations act."""
    desk = Desk(world, client, **{**KEYS, "hideIpHotKey": 11})
    desktops = client.display.run("xdotool", "get_num_desktops", timeout=20).stdout.strip()
    assert desktops == "4", "this window manager has four desktops"
    desk.other.focus()
    press_for_desktop(desk, (SUPER, F2), "1")
    press_for_desktop(desk, (SUPER, F1), "0")
    desk.press(BRING_UP)
    world.home.wait_for(
        lambda: active_window(client.display).startswith(ui.MAIN), 10, "the main window in front"
    )
    assert desk.asked() == []
    open_hot_keys(client)
    assert (
        client.ask("read", key="first", query={"window": SETTINGS, "description": "Hide IP, problem"})["name"]
        == "Another program uses this combination."
    )
    assert client.preferences()["hideIpHotKey"] == 11, "the stored choice stays"


def test_old_combination_acts_until_the_end(world, client):
    desk = Desk(world, client, **KEYS)
    open_hot_keys(client)
    choose_first(desk, "Cmd + 5")
    world.home.wait_for(lambda: client.preferences()["hideIpHotKey"] == 6, 10, "the stored choice")
    for number, keys in enumerate(((SUPER, FIVE), HIDE), start=1):
        desk.press(keys)
        desk.wait_lent(number)
        desk.press(STOP)
        desk.wait_returned()

    choose_first(desk, "None")
    world.home.wait_for(lambda: client.preferences()["hideIpHotKey"] == -1, 10, "the stored choice")
    desk.press((SUPER, FIVE))
    world.home.wait_for(
        lambda: FIVE in [key for key, _state in desk.other.presses()],
        10,
        "the released combination in the other window",
    )
    assert len(desk.asked()) == 2
    desk.press(HIDE)
    desk.wait_lent(3)


def test_wayland_session_uses_the_portal(world, client):
    log = f"{client.folder}/portal.log"
    portal = f"{home.HARNESS}/fakes/portal.py"
    client.ask(
        "start",
        key="portal",
        arguments=["/usr/bin/python3", portal, log],
        environment={},
        output=f"{client.folder}/portal.out",
    )
    world.home.wait_for(lambda: world.home.path(log).exists(), 10, "the portal")
    client.remember_administrator(ADA, location=BERLIN.title, **KEYS)
    client.start(environment={"XDG_SESSION_TYPE": "wayland"})
    client.wait_ready()
    world.home.wait_for(lambda: world.home.path(log).read_text(encoding="utf-8"), 10, "the list of shortcuts")
    lines = world.home.path(log).read_text(encoding="utf-8").splitlines()
    assert len(lines) == 1, "one list for all five"
    assert {(shortcut["description"], shortcut["trigger"]) for shortcut in json.loads(lines[0])} == {
        ("Hide IP", "LOGO+1"),
        ("Change IP", "CTRL+F1"),
        ("Stop hiding IP", "SHIFT+F1"),
        ("Discard IP", "LOGO+Up"),
        ("Bring up window", "LOGO+a"),
    }

    other = OtherWindow(client.display)
    other.focus()
    Keyboard(client.display).strike(*HIDE)
    world.home.wait_for(
        lambda: ONE in [key for key, _state in other.presses()], 10, "the keys of another program"
    )
    assert world.service.requests_of("VPNC") == [], "no key is grabbed from X here"
    client.signal(signal.SIGUSR1, key="portal")
    client.wait_hidden()
    asked = world.service.requests_of("VPNC")
    assert [request.parameter("desiredip") for request in asked] == list(world.service.lent().values())
