#!/usr/bin/python3
"""loop_probe.py PID: asks a client's event loop for one small thing again and again, at home, as its user.

Ends when its input is closed or the client is gone, and then writes one JSON object to standard output:

    asked  how many questions were answered by the event loop
    first  when the first answer was there
    slow   [begin, end] of every answer that took more than SLOW

Times are seconds of CLOCK_MONOTONIC.
"""

import json
import sys
import threading
import time

from gi.repository import Gio, GLib

SLOW = 0.02
PAUSE = 0.003
LONGEST_MS = 60000
# Answered by the main thread; what the bus's own interfaces are asked is answered by another one.
QUESTION = GLib.Variant("(ss)", ("org.a11y.atspi.Accessible", "ChildCount"))


class Ended(Exception):
    """The client is gone, or nobody wants to know any more."""


def accessibility_bus():
    session = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    (address,) = session.call_sync(
        "org.a11y.Bus",
        "/org/a11y/bus",
        "org.a11y.Bus",
        "GetAddress",
        None,
        None,
        Gio.DBusCallFlags.NONE,
        LONGEST_MS,
        None,
    ).unpack()
    kind = Gio.DBusConnectionFlags
    return Gio.DBusConnection.new_for_address_sync(
        address, kind.AUTHENTICATION_CLIENT | kind.MESSAGE_BUS_CONNECTION, None, None
    )


def ask_bus(bus, method, *arguments):
    signature = GLib.Variant(f"({'s' * len(arguments)})", arguments)
    return bus.call_sync(
        "org.freedesktop.DBus",
        "/org/freedesktop/DBus",
        "org.freedesktop.DBus",
        method,
        signature,
        None,
        Gio.DBusCallFlags.NONE,
        LONGEST_MS,
        None,
    ).unpack()[0]


class Probe:
    def __init__(self, client):
        self._client = client
        self._bus = accessibility_bus()
        self._over = threading.Event()
        self.asked = 0
        self.first = None
        self.slow = []
        threading.Thread(target=self._wait_for_end, daemon=True).start()

    def _wait_for_end(self):
        sys.stdin.read()
        self._over.set()

    def _pause(self):
        if self._over.wait(PAUSE):
            raise Ended

    def _name(self):
        """The client's name on the bus, as soon as it has one."""
        others = set()
        while True:
            for name in set(ask_bus(self._bus, "ListNames")) - others:
                try:
                    if (
                        name.startswith(":")
                        and ask_bus(self._bus, "GetConnectionUnixProcessID", name) == self._client
                    ):
                        return name
                except GLib.Error:
                    pass
                others.add(name)
            self._pause()

    def _ask(self, name):
        begun = time.monotonic()
        try:
            self._bus.call_sync(
                name,
                "/org/a11y/atspi/accessible/root",
                "org.freedesktop.DBus.Properties",
                "Get",
                QUESTION,
                None,
                Gio.DBusCallFlags.NO_AUTO_START,
                LONGEST_MS,
                None,
            )
        except GLib.Error:
            if self.first is None:
                return  # not ready to answer
            raise
        ended = time.monotonic()
        self.first = self.first or ended
        self.asked += 1
        if ended - begun > SLOW:
            self.slow.append([begun, ended])

    def run(self):
        try:
            name = self._name()
            while True:
                self._ask(name)
                self._pause()
        except (Ended, GLib.Error):
            return


def main():
    probe = Probe(int(sys.argv[1]))
    probe.run()
    json.dump({"asked": probe.asked, "first": probe.first, "slow": probe.slow}, sys.stdout)


if __name__ == "__main__":
    main()
