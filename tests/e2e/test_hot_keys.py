"""Global hot keys: real keys pressed while another program's window has the focus."""

import re
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
from harness.home.deadlines import EVENTUALLY
from world import network, service
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
MAIN = re.escape(ui.MAIN)  # xdotool expects a pattern
ENTRIES = ["None", *(f"Cmd + {digit}" for digit in range(10))]  # how the pane's lists begin
LOCK_STATES = {
    "no lock": ((), 0),
    "Num Lock": ((NUM_LOCK,), 16),
    "Caps Lock": ((CAPS_LOCK,), 2),
    "both": ((NUM_LOCK, CAPS_LOCK), 18),
}


class HotKeys:
    """A started client with hot keys, a window of another program that has the focus, and a keyboard."""

    def __init__(self, world, client, **keys):
        self.world, self.client = world, client
        self.keyboard = Keyboard(client.display)
        client.start_ready(ADA, location=BERLIN.title, **keys)
        self.other = OtherWindow(client.display)
        self.settle()

    def settle(self):
        """Waits until client and window manager have handled the current keyboard.

        The X server announces a keyboard when its first key is pressed and when its layout changes. Programs
        then register their combinations again, and a press in between is lost.
        """
        before = len(self.other.presses())
        self.other.focus()
        self.keyboard.strike(SPACE)
        self.world.home.wait_for(lambda: len(self.other.presses()) > before, "a key reaches the other window")
        self.client.request("round_trips", key="first", count=20)

    def press(self, keys):
        """Presses a combination while the other window has the focus."""
        self.other.focus()
        self.keyboard.strike(*keys)

    def requested(self):
        return [request.parameter("desiredip") for request in self.world.service.requests_of("VPNC")]

    def wait_lent(self, number):
        """Waits until the address of request `number`, the last one, is lent; returns it."""
        self.world.home.wait_for(lambda: len(self.requested()) >= number, f"request {number}")
        self.client.wait_hidden()
        assert len(self.requested()) == number
        address = self.requested()[-1]
        assert list(self.world.service.lent().values()) == [address]
        assert self.world.home.public_address() == address
        return address

    def wait_returned(self):
        self.client.wait_not_hidden()
        self.client.wait_no_openvpn()
        self.world.home.wait_for(lambda: self.world.service.lent() == {}, "no address is lent any more")
        assert self.world.home.public_address() == network.REAL_ADDRESS


@pytest.mark.parametrize("locks", LOCK_STATES)
def test_every_action(world, client, locks):
    hot_keys = HotKeys(world, client, **KEYS)
    lock_keys, state = LOCK_STATES[locks]
    for key in lock_keys:
        hot_keys.keyboard.strike(key)
    hot_keys.press((B,))
    world.home.wait_for(lambda: (B, state) in hot_keys.other.presses(), "a key reaches the other window")

    hot_keys.press(HIDE)
    assert hot_keys.wait_lent(1) in BERLIN.addresses
    hot_keys.press(CHANGE)
    place = service.location_of(hot_keys.wait_lent(2))
    hot_keys.press(DISCARD)
    address = hot_keys.wait_lent(3)
    discarded = client.preferences()["discardedIPs"]
    assert discarded in place.addresses and address != discarded
    hot_keys.press(STOP)
    hot_keys.wait_returned()

    client.display.run("xdotool", "search", "--onlyvisible", "--name", MAIN, "windowminimize")
    world.home.wait_for(lambda: not client.display.on_screen(MAIN), "the window is minimised")
    hot_keys.press(BRING_UP)
    world.home.wait_for(
        lambda: active_window(client.display).startswith(ui.MAIN), "the main window has the focus"
    )
    assert client.display.on_screen(MAIN)

    assert len(hot_keys.requested()) == 3
    reached = {key for key, _state in hot_keys.other.presses()}
    assert not reached & {ONE, F1, UP, A}, "the combinations do not reach the other window"


def test_held_key_acts_once(world, client):
    """Each press of this action requests another address, so repeated presses would be seen."""
    hot_keys = HotKeys(world, client, **KEYS)
    hot_keys.keyboard.hold(2, B)
    world.home.wait_for(
        lambda: len(hot_keys.other.presses()) >= 10, "the X server repeats a key that is held"
    )
    hot_keys.press(HIDE)
    hot_keys.wait_lent(1)
    hot_keys.other.focus()
    hot_keys.keyboard.hold(2, *CHANGE)
    hot_keys.wait_lent(2)
    hot_keys.press(STOP)
    hot_keys.wait_returned()
    assert len(hot_keys.requested()) == 2


def test_layout_changes_nothing(world, client):
    """Combinations are positions on the keyboard."""
    hot_keys = HotKeys(world, client, **KEYS)
    for number, layout in enumerate(("fr", "ru"), start=1):
        hot_keys.keyboard.set_layout(layout)
        hot_keys.settle()
        hot_keys.press(HIDE)
        hot_keys.wait_lent(number)
        hot_keys.press(STOP)
        hot_keys.wait_returned()
    hot_keys.press(BRING_UP)
    world.home.wait_for(
        lambda: active_window(client.display).startswith(ui.MAIN), "the main window has the focus"
    )


def open_hot_keys(client):
    client.press(ui.button("Settings", ui.MAIN))
    client.wait({"window": SETTINGS, "role": "push button", "name": "Apply"}, showing=True)
    client.press({"window": SETTINGS, "name": "Hot Keys"})
    client.wait({"window": SETTINGS, "role": "combo box"}, showing=True)


def choose_first(hot_keys, entry):
    """Chooses a combination for the first action of the pane, hide IP, and applies it.

    With the keyboard, because the list scrolls.
    """
    pop_up = {"window": SETTINGS, "role": "combo box"}
    hot_keys.client.display.press_keys(SETTINGS, "alt+h")
    hot_keys.keyboard.strike(SPACE)
    hot_keys.client.wait({**pop_up, "role": "list"}, showing=True)
    hot_keys.keyboard.strike(HOME)
    for _ in range(ENTRIES.index(entry)):
        hot_keys.keyboard.strike(DOWN)
    hot_keys.keyboard.strike(RETURN)
    hot_keys.client.wait(pop_up, name=entry)
    hot_keys.client.press(ui.button("Apply", SETTINGS))


def press_for_desktop(hot_keys, keys, wanted):
    """Presses a combination of the window manager until it shows that desktop, which each press leads to.

    A single press can be lost while the window manager registers its combinations again.
    """
    end = time.monotonic() + EVENTUALLY
    while hot_keys.client.display.run("xdotool", "get_desktop").stdout.strip() != wanted:
        assert time.monotonic() < end, f"the window manager does not show desktop {wanted}"
        hot_keys.keyboard.strike(*keys)
        time.sleep(0.2)  # the time of the window manager to change the desktop before the next press


def test_combination_of_another_program(world, client):
    """The window manager keeps its combination, the pane reports that, other combinations work."""
    hot_keys = HotKeys(world, client, **{**KEYS, "hideIpHotKey": 11})
    desktops = client.display.run("xdotool", "get_num_desktops").stdout.strip()
    assert desktops == "4", "this window manager has four desktops"
    hot_keys.other.focus()
    press_for_desktop(hot_keys, (SUPER, F2), "1")
    press_for_desktop(hot_keys, (SUPER, F1), "0")
    hot_keys.press(BRING_UP)
    world.home.wait_for(
        lambda: active_window(client.display).startswith(ui.MAIN), "the main window has the focus"
    )
    assert hot_keys.requested() == []
    open_hot_keys(client)
    assert (
        client.request("read", key="first", query={"window": SETTINGS, "description": "Hide IP, problem"})[
            "name"
        ]
        == "Another program uses this combination."
    )
    assert client.preferences()["hideIpHotKey"] == 11, "the stored choice is unchanged"


def test_old_combination_acts_until_the_end(world, client):
    hot_keys = HotKeys(world, client, **KEYS)
    open_hot_keys(client)
    choose_first(hot_keys, "Cmd + 5")
    world.home.wait_for(lambda: client.preferences()["hideIpHotKey"] == 6, "the choice is stored")
    for number, keys in enumerate(((SUPER, FIVE), HIDE), start=1):
        hot_keys.press(keys)
        hot_keys.wait_lent(number)
        hot_keys.press(STOP)
        hot_keys.wait_returned()

    choose_first(hot_keys, "None")
    world.home.wait_for(lambda: client.preferences()["hideIpHotKey"] == -1, "the choice is stored")
    hot_keys.press((SUPER, FIVE))
    world.home.wait_for(
        lambda: FIVE in [key for key, _state in hot_keys.other.presses()],
        "the released combination reaches the other window",
    )
    assert len(hot_keys.requested()) == 2
    hot_keys.press(HIDE)
    hot_keys.wait_lent(3)
