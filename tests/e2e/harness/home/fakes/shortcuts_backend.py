#!/usr/bin/python3
"""A desktop behind the real portal, with global shortcuts only: shortcuts_backend.py LOG MODE [TAKEN...].

MODE is "plasma" for a desktop that registers the shortcuts that come with a new session, and "dialog" for one
that registers what BindShortcuts contains. With "plasma" it also answers as Plasma's table of keys; another
program holds the TAKEN triggers there, although the portal lists their shortcuts.

Writes a JSON line to LOG for each call. SIGUSR1 activates the first shortcut that has its keys.
"""

# The names of D-Bus methods and signals are given by the interfaces.
# pylint: disable=invalid-name

import json
import signal
import sys
import time

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME, PATH = "org.freedesktop.impl.portal.desktop.quorvane", "/org/freedesktop/portal/desktop"
SHORTCUTS, SESSION = "org.freedesktop.impl.portal.GlobalShortcuts", "org.freedesktop.impl.portal.Session"
TABLE, COMPONENT = "org.kde.KGlobalAccel", "org.kde.kglobalaccel.Component"
MODIFIERS = {"SHIFT": 0x02000000, "CTRL": 0x04000000, "LOGO": 0x10000000}
NAMED = {"Left": 0x01000012, "Up": 0x01000013, "Right": 0x01000014, "Down": 0x01000015}


def key_of(trigger):
    """The number of a trigger's keys in Plasma's table, such as that of LOGO+1."""
    *modifiers, key = trigger.split("+")
    if len(key) == 1:
        number = ord(key.upper())
    else:
        number = NAMED.get(key) or 0x01000030 + int(key[1:]) - 1
    return number | sum(MODIFIERS[modifier] for modifier in modifiers)


class Session(dbus.service.Object):
    """A session of the portal."""

    def __init__(self, bus, path, backend):
        super().__init__(bus, path)
        self.backend = backend

    @dbus.service.method(SESSION)
    def Close(self):
        self.backend.record("Close")
        self.backend.forget(self)
        self.remove_from_connection()

    @dbus.service.signal(SESSION)
    def Closed(self):
        pass


class Component(dbus.service.Object):
    """A program in the table of keys."""

    def __init__(self, bus, name, backend):
        self.path = "/component/" + "".join(c if c.isalnum() else "_" for c in name)
        super().__init__(bus, self.path)
        self.backend = backend

    @dbus.service.method(COMPONENT, in_signature="", out_signature="a(ssssssaiai)")
    def allShortcutInfos(self):
        return self.backend.own_entries()


class Table(dbus.service.Object):
    """Plasma's table of keys."""

    def __init__(self, bus, backend):
        super().__init__(bus, "/kglobalaccel")
        self.backend = backend

    @dbus.service.method(TABLE, in_signature="s", out_signature="o")
    def getComponent(self, name):
        component = self.backend.component
        if component is None or name != self.backend.component_name:
            raise dbus.DBusException(
                f"The component '{name}' doesn't exist.", name="org.kde.kglobalaccel.NoSuchComponent"
            )
        return dbus.ObjectPath(component.path)

    @dbus.service.method(TABLE, in_signature="(ai)(i)", out_signature="a(ssssssaiai)")
    def globalShortcutsByKey(self, sequence, match):
        assert len(sequence[0]) == 4 and match[0] == 0, (sequence, match)
        key = int(sequence[0][0])
        found = [entry for entry in self.backend.own_entries() if key in entry[6]]
        if key in self.backend.taken:
            found.append(self.backend.entry("Kill Window", "kwin", key, key))
        return dbus.Array(found, signature="(ssssssaiai)")


class Backend(dbus.service.Object):
    """The desktop's side of the portal."""

    def __init__(self, bus, log, mode, taken):
        super().__init__(bus, PATH)
        self.log, self.mode = log, mode
        self.taken = {key_of(trigger) for trigger in taken}
        self.session, self.session_path = None, "/"
        self.table = Table(bus, self) if mode == "plasma" else None
        self.shortcuts = {}
        self.component = None
        self.component_name = ""

    def record(self, call, **fields):
        with open(self.log, "a", encoding="utf-8") as log:
            log.write(json.dumps({"call": call, **fields}) + "\n")

    def forget(self, session):
        if session is self.session:
            self.session = None

    def entry(self, name, component, key, default):
        keys, defaults = dbus.Array([key], signature="i"), dbus.Array([default], signature="i")
        return dbus.Struct((name, name, component, component, "default", "Default", keys, defaults))

    def own_entries(self):
        entries = []
        for name, properties in self.shortcuts.items():
            key = key_of(properties["preferred_trigger"])
            active = 0 if key in self.taken else key
            entries.append(self.entry(name, self.component_name, active, key))
        return dbus.Array(entries, signature="(ssssssaiai)")

    @staticmethod
    def plain(shortcuts):
        return {
            str(name): {str(key): str(value) for key, value in properties.items()}
            for name, properties in shortcuts
        }

    def results(self):
        listed = [
            (name, dbus.Dictionary({"trigger_description": properties["preferred_trigger"]}, signature="sv"))
            for name, properties in self.shortcuts.items()
        ]
        shortcuts = dbus.Array(listed, signature="(sa{sv})")
        return dbus.UInt32(0), dbus.Dictionary({"shortcuts": shortcuts}, signature="sv")

    @dbus.service.method(SHORTCUTS, in_signature="oosa{sv}", out_signature="ua{sv}")
    def CreateSession(self, _handle, session, application, options):
        offered = self.plain(options.get("shortcuts", []))
        self.record("CreateSession", shortcuts=offered, application=str(application))
        if self.session is not None:
            # Of a portal that ended without closing it: the next one may use the same path.
            self.session.remove_from_connection()
        self.session = Session(self.connection, session, self)
        self.session_path = session
        self.shortcuts = offered if self.mode == "plasma" else {}
        if self.mode == "plasma" and self.component is None:
            self.component_name = str(application) or session.rsplit("/", 1)[1]
            self.component = Component(self.connection, self.component_name, self)
        return self.results()

    @dbus.service.method(SHORTCUTS, in_signature="ooa(sa{sv})sa{sv}", out_signature="ua{sv}")
    def BindShortcuts(self, _handle, _session, shortcuts, _parent, _options):
        self.record("BindShortcuts", shortcuts=self.plain(shortcuts))
        self.shortcuts.update(self.plain(shortcuts))
        return self.results()

    @dbus.service.method(SHORTCUTS, in_signature="oo", out_signature="ua{sv}")
    def ListShortcuts(self, _handle, _session):
        self.record("ListShortcuts")
        return self.results()

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return {"version": dbus.UInt32(1)} if interface == SHORTCUTS else {}

    @dbus.service.signal(SHORTCUTS, signature="osta{sv}")
    def Activated(self, session, shortcut, timestamp, options):
        pass

    @dbus.service.signal(SHORTCUTS, signature="osta{sv}")
    def Deactivated(self, session, shortcut, timestamp, options):
        pass

    def press(self):
        name = next(
            name
            for name, properties in self.shortcuts.items()
            if key_of(properties["preferred_trigger"]) not in self.taken
        )
        now = dbus.UInt64(time.monotonic_ns() // 1000000)
        self.Activated(dbus.ObjectPath(self.session_path), name, now, {})
        self.Deactivated(dbus.ObjectPath(self.session_path), name, now, {})
        return True


def main():
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    _program, log, mode, *taken = sys.argv
    backend = Backend(bus, log, mode, taken)
    names = [dbus.service.BusName(NAME, bus)]
    if mode == "plasma":
        names.append(dbus.service.BusName("org.kde.kglobalaccel", bus))
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGUSR1, backend.press)
    backend.record("started")
    GLib.MainLoop().run()
    names.clear()


if __name__ == "__main__":
    main()
