#!/usr/bin/python3
"""A status notifier watcher with a host, like a desktop's panel: accepts the items that register.

Fetches an item's pictures whenever the item signals new ones. Runs until SIGTERM; the list of items is read
over the bus.
"""

import signal

from gi.repository import Gio, GLib

NAME = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
PATH = "/StatusNotifierWatcher"
INTERFACE = """
<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg name="service" type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg name="service" type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
  <signal name="StatusNotifierItemUnregistered"><arg type="s"/></signal>
  <signal name="StatusNotifierHostRegistered"/>
  <signal name="StatusNotifierHostUnregistered"/>
</interface></node>
"""


class Watcher:
    """The watcher's object on the session bus, which holds the list of registered items."""

    def __init__(self, bus):
        self._bus = bus
        self._items = []
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        bus.register_object(PATH, interface, self._called, self._read, None)
        bus.signal_subscribe(None, ITEM, "NewIcon", None, None, Gio.DBusSignalFlags.NONE, self._fetch)
        Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, None, None)

    def _called(self, _bus, sender, _path, _interface, method, arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            service = arguments.unpack()[0]
            item = sender + service if service.startswith("/") else service + "/StatusNotifierItem"
            if item not in self._items:
                self._items.append(item)
                self._emit("StatusNotifierItemRegistered", item)
                Gio.bus_watch_name_on_connection(
                    self._bus,
                    item.partition("/")[0],
                    Gio.BusNameWatcherFlags.NONE,
                    None,
                    lambda *_: self._drop(item),
                )
        invocation.return_value(None)

    def _fetch(self, _bus, sender, path, *_about):
        wanted = GLib.Variant("(ss)", (ITEM, "IconPixmap"))
        self._bus.call(
            sender,
            path,
            "org.freedesktop.DBus.Properties",
            "Get",
            wanted,
            None,
            Gio.DBusCallFlags.NO_AUTO_START,
            -1,
            None,
            None,
        )

    def _drop(self, item):
        if item in self._items:
            self._items.remove(item)
            self._emit("StatusNotifierItemUnregistered", item)

    def _emit(self, signal_name, item):
        self._bus.emit_signal(None, PATH, NAME, signal_name, GLib.Variant("(s)", (item,)))

    def _read(self, _bus, _sender, _path, _interface, key):
        return {
            "RegisteredStatusNotifierItems": GLib.Variant("as", self._items),
            "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
            "ProtocolVersion": GLib.Variant("i", 0),
        }[key]


def main():
    loop = GLib.MainLoop()
    GLib.unix_signal_add(GLib.PRIORITY_HIGH, signal.SIGTERM, loop.quit)
    watcher = Watcher(Gio.bus_get_sync(Gio.BusType.SESSION, None))
    loop.run()
    del watcher


if __name__ == "__main__":
    main()
