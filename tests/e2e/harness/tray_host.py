#!/usr/bin/python3
"""A desktop's tray on the session bus: takes the items that programs register, and lists them.

Says "ready" on standard output once it owns its name and ends when its standard input is closed.
"""

import sys

from gi.repository import Gio, GLib

NAME = "org.kde.StatusNotifierWatcher"
PATH = "/StatusNotifierWatcher"
INTERFACE = """
<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
  <signal name="StatusNotifierItemUnregistered"><arg type="s"/></signal>
  <signal name="StatusNotifierHostRegistered"/>
</interface></node>
"""


class TrayHost:
    def __init__(self, bus):
        self.bus = bus
        self.items = []
        node = Gio.DBusNodeInfo.new_for_xml(INTERFACE)
        bus.register_object(PATH, node.interfaces[0], self._call, self._get, None)

    def _call(self, _bus, sender, _path, _interface, method, arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            service = arguments.unpack()[0]
            item = sender + service if service.startswith("/") else service + "/StatusNotifierItem"
            self.items.append(item)
            Gio.bus_watch_name_on_connection(self.bus, sender, Gio.BusNameWatcherFlags.NONE, None,
                                             lambda *_: self._forget(item))
            self._say("StatusNotifierItemRegistered", item)
        invocation.return_value(None)

    def _forget(self, item):
        if item in self.items:
            self.items.remove(item)
            self._say("StatusNotifierItemUnregistered", item)

    def _say(self, signal, item):
        self.bus.emit_signal(None, PATH, NAME, signal, GLib.Variant("(s)", (item,)))

    def _get(self, _bus, _sender, _path, _interface, name):
        return {"RegisteredStatusNotifierItems": GLib.Variant("as", self.items),
                "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
                "ProtocolVersion": GLib.Variant("i", 0)}[name]


def main():
    loop = GLib.MainLoop()
    host = []
    Gio.bus_own_name(Gio.BusType.SESSION, NAME, Gio.BusNameOwnerFlags.NONE,
                     lambda bus, _name: host.append(TrayHost(bus)),
                     lambda *_: print("ready", flush=True), lambda *_: loop.quit())
    GLib.unix_fd_add_full(GLib.PRIORITY_DEFAULT, sys.stdin.fileno(), GLib.IOCondition.IN | GLib.IOCondition.HUP,
                          lambda *_: loop.quit())
    loop.run()


if __name__ == "__main__":
    main()
