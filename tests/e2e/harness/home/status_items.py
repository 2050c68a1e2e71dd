"""Operations of the driver on status notifier items, as a panel and its user perform them."""

import subprocess
import sys
import time
from pathlib import Path

from deadlines import EVENTUALLY, POLL
from gi.repository import Gio, GLib

HOST = Path(__file__).with_name("tray_host.py")
WATCHER, WATCHER_PATH = "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher"
ITEM, MENU = "org.kde.StatusNotifierItem", "com.canonical.dbusmenu"
PROPERTIES = "org.freedesktop.DBus.Properties"
# The item's identifier is the name of the client's program.
IDENTIFIER = "Quorvane"
CALL_MS = EVENTUALLY * 1000


class TrayError(Exception):
    """Reported to the test; the driver keeps running."""


def call(name, path, interface, method, arguments):
    bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    return bus.call_sync(
        name, path, interface, method, arguments, None, Gio.DBusCallFlags.NO_AUTO_START, CALL_MS, None
    ).unpack()


def properties(name, path, interface):
    return call(name, path, PROPERTIES, "GetAll", GLib.Variant("(s)", (interface,)))[0]


def bus_name_owned(name):
    return call(
        "org.freedesktop.DBus",
        "/org/freedesktop/DBus",
        "org.freedesktop.DBus",
        "NameHasOwner",
        GLib.Variant("(s)", (name,)),
    )[0]


def watcher_owned():
    return bus_name_owned(WATCHER)


def wait_watcher(owned):
    end = time.monotonic() + EVENTUALLY
    while watcher_owned() != owned:
        if time.monotonic() > end:
            raise TrayError(
                f"the name of the watcher on the bus did not become {'owned' if owned else 'free'}"
            )
        time.sleep(POLL)


def place(item):
    """Bus name and path of an item in the watcher's list."""
    name, slash, path = item.partition("/")
    return name.rstrip("@"), slash + path


def identifier(found):
    """The item's own identifier; None when it does not answer."""
    try:
        return properties(*found, ITEM).get("Id")
    except GLib.Error:
        return None


class TrayOperations:
    """Operations that the driver inherits. One host and one item at a time."""

    _host = None

    def op_tray_appear(self):
        self._host = subprocess.Popen([sys.executable, str(HOST)], stdin=subprocess.DEVNULL)
        wait_watcher(True)

    def op_tray_host(self):
        """Whether a program shows the items: a watcher alone only lists them."""
        return (
            watcher_owned() and properties(WATCHER, WATCHER_PATH, WATCHER)["IsStatusNotifierHostRegistered"]
        )

    def op_tray_vanish(self):
        self.end_tray()
        wait_watcher(False)

    def end_tray(self):
        if self._host is not None:
            self._host.terminate()
            self._host.wait()
            self._host = None

    def op_tray_item(self):
        """Title, tooltip, state and icon of the registered item; None when no item is registered."""
        place = self._item()
        if place is None:
            return None
        found = properties(*place, ITEM)
        return {
            "title": found["Title"],
            "tooltip": found["ToolTip"][2],
            "status": found["Status"],
            "item_is_menu": found["ItemIsMenu"],
            "menu": found["Menu"],
            "sizes": sorted((width, height) for width, height, _ in found["IconPixmap"]),
            "icon": [hash(bytes(pixels)) for _, _, pixels in found["IconPixmap"]],
        }

    def _item(self):
        if not watcher_owned():
            return None
        # A desktop has items of its own, some of which are not answering yet.
        places = map(place, properties(WATCHER, WATCHER_PATH, WATCHER)["RegisteredStatusNotifierItems"])
        items = [found for found in places if identifier(found) == IDENTIFIER]
        if len(items) > 1:
            raise TrayError(f"more than one item: {items}")
        return items[0] if items else None

    def _needed_item(self):
        place = self._item()
        if place is None:
            raise TrayError("no item is registered")
        return place

    def op_tray_activate(self):
        call(*self._needed_item(), ITEM, "Activate", GLib.Variant("(ii)", (5, 5)))

    def _menu(self):
        name, path = self._needed_item()
        menu = properties(name, path, ITEM)["Menu"]
        _, (_, _, entries) = call(name, menu, MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, [])))
        return name, menu, entries

    def op_tray_menu(self):
        """The menu's entries: [label, enabled], null for a separator."""
        _, _, entries = self._menu()
        return [
            None if about.get("type") == "separator" else [about["label"], about.get("enabled", True)]
            for _, about, _ in entries
        ]

    def op_tray_submenu(self, label):
        """Opens a submenu; returns the labels of its entries as op_tray_menu does, the checked one too."""
        name, menu, entries = self._menu()
        for number, about, _ in entries:
            if about.get("label") == label:
                call(name, menu, MENU, "AboutToShow", GLib.Variant("(i)", (number,)))
                _, (_, _, inner) = call(
                    name, menu, MENU, "GetLayout", GLib.Variant("(iias)", (number, -1, []))
                )
                return [
                    None
                    if about.get("type") == "separator"
                    else [about["label"], about.get("toggle-state", 0) == 1]
                    for _, about, _ in inner
                ]
        raise TrayError(f"there is no entry {label}")

    def op_tray_click(self, label, submenu=None):
        name, menu, entries = self._menu()
        if submenu is not None:
            (entries,) = (inner for _, about, inner in entries if about.get("label") == submenu)
        for number, about, _ in entries:
            if about.get("label") == label:
                if not about.get("enabled", True):
                    raise TrayError(f"the entry {label} is disabled")
                call(
                    name,
                    menu,
                    MENU,
                    "Event",
                    GLib.Variant("(isvu)", (number, "clicked", GLib.Variant("i", 0), 0)),
                )
                return
        raise TrayError(f"there is no entry {label}")
