#!/usr/bin/python3
"""A desktop portal that offers global shortcuts only: portal.py LOG.

Grants every request and writes a JSON line to LOG for each list of shortcuts. SIGUSR1 activates the first
shortcut of the list.
"""

# The names of D-Bus methods and signals are given by the interfaces.
# pylint: disable=invalid-name

import json
import signal
import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME, PATH = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
SHORTCUTS, REQUEST = "org.freedesktop.portal.GlobalShortcuts", "org.freedesktop.portal.Request"
SESSION = "org.freedesktop.portal.Session"


class Session(dbus.service.Object):
    """A session of a client of the portal."""

    @dbus.service.method(SESSION, in_signature="", out_signature="")
    def Close(self):
        self.remove_from_connection()


class Request(dbus.service.Object):
    """A request of a client, which the portal answers by a signal."""

    @dbus.service.signal(REQUEST, signature="ua{sv}")
    def Response(self, response, results):
        pass


class Portal(dbus.service.Object):
    """The portal itself, with the shortcuts of its last client."""

    def __init__(self, bus, log):
        super().__init__(bus, PATH)
        self.log = log
        self.session = None
        self.shortcuts = []

    def _answer(self, sender, options, results):
        request = Request(self.connection, self._path("request", sender, options["handle_token"]))

        def respond():
            request.Response(dbus.UInt32(0), results)
            request.remove_from_connection()

        GLib.idle_add(respond)
        return dbus.ObjectPath(request.__dbus_object_path__)

    @staticmethod
    def _path(kind, sender, token):
        return f"{PATH}/{kind}/{sender[1:].replace('.', '_')}/{token}"

    @dbus.service.method(SHORTCUTS, in_signature="a{sv}", out_signature="o", sender_keyword="sender")
    def CreateSession(self, options, sender=None):
        self.session = self._path("session", sender, options["session_handle_token"])
        Session(self.connection, self.session)
        return self._answer(sender, options, {"session_handle": self.session})

    @dbus.service.method(
        SHORTCUTS, in_signature="oa(sa{sv})sa{sv}", out_signature="o", sender_keyword="sender"
    )
    def BindShortcuts(self, session, shortcuts, _parent, options, sender=None):
        assert session == self.session
        self.shortcuts = [str(shortcut[0]) for shortcut in shortcuts]
        with open(self.log, "a", encoding="utf-8") as log:
            log.write(
                json.dumps(
                    [
                        {
                            "id": str(name),
                            "description": str(properties["description"]),
                            "trigger": str(properties["preferred_trigger"]),
                        }
                        for name, properties in shortcuts
                    ]
                )
                + "\n"
            )
        granted = dbus.Array(
            [
                (name, dbus.Dictionary({"trigger_description": "by the user"}, signature="sv"))
                for name in self.shortcuts
            ],
            signature="(sa{sv})",
        )
        return self._answer(sender, options, {"shortcuts": granted})

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        assert (interface, name) == (SHORTCUTS, "version")
        return dbus.UInt32(1)

    @dbus.service.signal(SHORTCUTS, signature="osta{sv}")
    def Activated(self, session, shortcut, timestamp, options):
        pass

    def press(self):
        self.Activated(dbus.ObjectPath(self.session), self.shortcuts[0], dbus.UInt64(1), {})
        return True


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    portal = Portal(bus, sys.argv[1])
    name = dbus.service.BusName(NAME, bus)
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGUSR1, portal.press)
    open(sys.argv[1], "a", encoding="utf-8").close()
    GLib.MainLoop().run()
    del name


if __name__ == "__main__":
    main()
