#!/usr/bin/python3
"""loop_probe.py PID: sends one small request to a client's event loop all the time, as its user.

Ends when its input is closed or the client is gone, and then writes one JSON object to standard output:

    answered  how many requests the event loop answered
    first     the time of the first answer
    slow      [begin, end] of every request that was answered after more than SLOW

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
# The main thread answers this one; requests to the bus's own interfaces are answered by another thread.
REQUEST = GLib.Variant("(ss)", ("org.a11y.atspi.Accessible", "ChildCount"))


class Ended(Exception):
    """The client is gone, or the input of this program is closed."""


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


def call_bus(bus, method, *arguments):
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
    """Sends the requests and collects the figures; `run` returns when one side has ended."""

    def __init__(self, client):
        self._client = client
        self._bus = accessibility_bus()
        self._over = threading.Event()
        self.answered = 0
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
        """Waits for the client's name on the bus and returns it."""
        others = set()
        while True:
            for name in set(call_bus(self._bus, "ListNames")) - others:
                try:
                    if (
                        name.startswith(":")
                        and call_bus(self._bus, "GetConnectionUnixProcessID", name) == self._client
                    ):
                        return name
                except GLib.Error:
                    pass
                others.add(name)
            self._pause()

    def _request(self, name):
        begun = time.monotonic()
        try:
            self._bus.call_sync(
                name,
                "/org/a11y/atspi/accessible/root",
                "org.freedesktop.DBus.Properties",
                "Get",
                REQUEST,
                None,
                Gio.DBusCallFlags.NO_AUTO_START,
                LONGEST_MS,
                None,
            )
        except GLib.Error:
            if self.first is None:
                return  # the client does not answer yet
            raise
        ended = time.monotonic()
        self.first = self.first or ended
        self.answered += 1
        if ended - begun > SLOW:
            self.slow.append([begun, ended])

    def run(self):
        try:
            name = self._name()
            while True:
                self._request(name)
                self._pause()
        except (Ended, GLib.Error):
            return


def main():
    probe = Probe(int(sys.argv[1]))
    probe.run()
    json.dump({"answered": probe.answered, "first": probe.first, "slow": probe.slow}, sys.stdout)


if __name__ == "__main__":
    main()
