#!/usr/bin/python3
"""A desktop behind the real portal, with the user's appearance only: settings_backend.py LOG SCHEME MOTION.

SCHEME is the color-scheme of the start (0 none, 1 dark, 2 light), MOTION is 1 when things may move. SIGUSR1
chooses the light scheme, SIGUSR2 the dark one. Writes a JSON line to LOG for each call.
"""

# The names of D-Bus methods and signals are given by the interface.
# pylint: disable=invalid-name

import json
import signal
import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME, PATH = "org.freedesktop.impl.portal.desktop.quorvane", "/org/freedesktop/portal/desktop"
SETTINGS = "org.freedesktop.impl.portal.Settings"
APPEARANCE, DESKTOP = "org.freedesktop.appearance", "org.gnome.desktop.interface"
DARK, LIGHT = 1, 2


class Backend(dbus.service.Object):
    """The desktop's side of the portal."""

    def __init__(self, bus, log, scheme, motion):
        super().__init__(bus, PATH)
        self.log = log
        self.values = {
            APPEARANCE: {"color-scheme": dbus.UInt32(scheme)},
            DESKTOP: {"enable-animations": dbus.Boolean(motion)},
        }

    def record(self, call, **fields):
        with open(self.log, "a", encoding="utf-8") as log:
            log.write(json.dumps({"call": call, **fields}) + "\n")

    @dbus.service.method(SETTINGS, in_signature="as", out_signature="a{sa{sv}}")
    def ReadAll(self, namespaces):
        self.record("ReadAll", namespaces=[str(name) for name in namespaces])
        return dbus.Dictionary(
            {
                space: dbus.Dictionary(values, signature="sv")
                for space, values in self.values.items()
                if not namespaces or space in namespaces
            },
            signature="sa{sv}",
        )

    @dbus.service.method(SETTINGS, in_signature="ss", out_signature="v")
    def Read(self, namespace, key):
        self.record("Read", namespace=str(namespace), key=str(key))
        return self.values[namespace][key]

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return {"version": dbus.UInt32(1)} if interface == SETTINGS else {}

    @dbus.service.signal(SETTINGS, signature="ssv")
    def SettingChanged(self, namespace, key, value):
        pass

    def choose(self, scheme):
        self.values[APPEARANCE]["color-scheme"] = dbus.UInt32(scheme)
        self.SettingChanged(APPEARANCE, "color-scheme", dbus.UInt32(scheme))
        return True


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    backend = Backend(bus, sys.argv[1], int(sys.argv[2]), int(sys.argv[3]))
    names = [dbus.service.BusName(NAME, bus)]
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGUSR1, backend.choose, LIGHT)
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGUSR2, backend.choose, DARK)
    backend.record("started")
    GLib.MainLoop().run()
    names.clear()


if __name__ == "__main__":
    main()
