#!/usr/bin/python3
"""A status notifier watcher with a host, as a desktop's panel is one: takes the items that register.

Fetches an item's pictures whenever it says that they are new. Runs until it is told to end; what it holds is read
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
    def __init__(self, bus):
        self._bus = bus
        self._items = []
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        bus.register_object(PATH, interface, self._called, self._asked, None)
        bus.signal_subscribe(None, ITEM, "NewIcon", None, None, Gio.DBusSignalFlags.NONE, self._fetch)
        Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, None, None)

    def _called(self, _bus, sender, _path, _interface, method, arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            service = arguments.unpack()[0]
            item = sender + service if service.startswith("/") else service + "/StatusNotifierItem"
            if item not in self._items:
                self._items.append(item)
                self._tell("StatusNotifierItemRegistered", item)
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
            self._tell("StatusNotifierItemUnregistered", item)

    def _tell(self, signal_name, item):
        self._bus.emit_signal(None, PATH, NAME, signal_name, GLib.Variant("(s)", (item,)))

    def _asked(self, _bus, _sender, _path, _interface, key):
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
