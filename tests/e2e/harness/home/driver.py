#!/usr/bin/python3
"""Runs in the home as the user, on the session bus: starts the client and drives it through accessibility.

Reads one JSON object a line from standard input, {"op": name, ...arguments}, and writes one to descriptor 3
for each: {"value": ...} or {"error": text}. When its input is closed it ends what it started, and itself.
Times are seconds of CLOCK_MONOTONIC.
"""

import functools
import json
import os
import re
import signal
import subprocess
import sys
import time
from pathlib import Path

import gi

gi.require_version("Atspi", "2.0")
from deadlines import EVENTUALLY, POLL, pause_after  # noqa: E402 # pylint: disable=wrong-import-position
from elements import children, describe, states_of, walk  # noqa: E402 # pylint: disable=wrong-import-position
from gi.repository import Atspi, Gio, GLib  # noqa: E402 # pylint: disable=wrong-import-position
from other_programs import OtherPrograms  # noqa: E402 # pylint: disable=wrong-import-position

from status_items import TrayError, TrayOperations  # noqa: E402 # pylint: disable=wrong-import-position

# The client's main thread does not answer while an administrator's password is checked, for up to some 4 s.
ANSWER_MS = EVENTUALLY * 1000
# A list ignores a click that comes within the time of a double click after the one that opened it.
LIST_READY = 0.5
# Seconds after which a click on an entry that had no effect is repeated.
REPEAT = 10
# The errors for a window, and for a client, that has been closed meanwhile.
VANISHED = re.compile("No such object path|application no longer exists")
LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
PROBE = Path(__file__).with_name("loop_probe.py")


class DriverError(Exception):
    """Reported to the test; the driver keeps running."""


def start_accessibility():
    launcher = subprocess.Popen([LAUNCHER, "--launch-immediately"], stdin=subprocess.DEVNULL)
    bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    end = time.monotonic() + EVENTUALLY
    while True:
        try:
            bus.call_sync(
                "org.a11y.Bus",
                "/org/a11y/bus",
                "org.a11y.Bus",
                "GetAddress",
                None,
                None,
                Gio.DBusCallFlags.NONE,
                1000,
                None,
            )
            break
        except GLib.Error:
            if time.monotonic() > end or launcher.poll() is not None:
                raise
            time.sleep(POLL)
    Atspi.init()
    Atspi.set_timeout(ANSWER_MS, ANSWER_MS)
    return launcher


class Client:
    """One started copy of the client."""

    def __init__(self, arguments, environment, output):
        self.started = time.monotonic()
        with open(output, "ab") as log:
            self.process = subprocess.Popen(
                arguments,
                stdin=subprocess.DEVNULL,
                stdout=log,
                stderr=log,
                env={**os.environ, **environment},
                start_new_session=True,
            )

    def application(self):
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        for application in children(desktop):
            try:
                if application.get_process_id() == self.process.pid:
                    application.set_cache_mask(Atspi.Cache.NONE)
                    return application
            except GLib.Error:
                continue
        return None

    def windows(self):
        application = self.application()
        return [] if application is None else list(children(application))


def matches(node, query):
    """Whether the element has every property; a list names alternatives."""
    for key, wanted in query.items():
        if key == "window":
            continue
        if key == "role":
            actual = node.get_role_name()
        elif key == "name":
            actual = node.get_name()
        elif key == "description":
            actual = node.get_description()
        else:
            raise DriverError(f"no such key in a query: {key}")
        if actual not in (wanted if isinstance(wanted, list) else [wanted]):
            return False
    return True


def window_fits(window, query):
    return "window" not in query or window.get_name().startswith(query["window"])


def repeated(look):
    """Repeats a look at the windows when a part of them vanished meanwhile, as a closing window does."""

    @functools.wraps(look)
    def wrapped(*arguments, **keywords):
        end = time.monotonic() + EVENTUALLY
        while True:
            try:
                return look(*arguments, **keywords)
            except GLib.Error as error:
                if not VANISHED.search(str(error)) or time.monotonic() > end:
                    raise
                time.sleep(POLL)

    return wrapped


class Driver(TrayOperations, OtherPrograms):
    """The operations that a test can request: each method op_NAME, with the request's other fields."""

    def __init__(self):
        self.clients = {}
        self.probe = None

    # --- processes

    def op_start(self, key, arguments, environment, output):
        self.clients[key] = Client(arguments, environment, output)
        return {"pid": self.clients[key].process.pid, "at": self.clients[key].started}

    def op_wait_exit(self, key, timeout):
        try:
            return self.clients[key].process.wait(timeout)
        except subprocess.TimeoutExpired as error:
            raise DriverError(f"the client still runs after {timeout} s") from error

    def op_status(self, key):
        return self.clients[key].process.poll()

    def op_signal(self, key, number):
        self.clients[key].process.send_signal(number)

    # --- reading the windows

    @repeated
    def find(self, key, query):
        """The first matching node that shows, else the first matching one, else None."""
        hidden = None
        for window in self.clients[key].windows():
            if not window_fits(window, query):
                continue
            # A message box is a window: without a look at every element the client is not kept busy.
            for node in [window] if query.get("role") == "alert" else [window, *walk(window)]:
                if matches(node, query):
                    if states_of(node)["showing"]:
                        return node
                    hidden = hidden or node
        return hidden

    @repeated
    def op_nodes(self, key):
        """Every element of every window."""
        found = []
        for window in self.clients[key].windows():
            found += [describe(node) for node in [window, *walk(window)]]
        return found

    @repeated
    def op_read(self, key, query):
        node = self.find(key, query)
        return None if node is None else describe(node)

    def op_wait(self, key, query, until, timeout):
        """Waits until the node has the properties in `until`; "matches" in it is a pattern for the name.

        until {"absent": true} waits until no matching node shows.
        """
        end = time.monotonic() + timeout
        node, seen = None, None
        while True:
            begun = time.monotonic()
            try:
                node = node or self.find(key, query)
                seen = describe(node) if node else None
                if fits(seen, until):
                    return {**(seen or {}), "at": time.monotonic()}
                if seen is None or not seen["showing"]:
                    node = None
            except GLib.Error as error:
                node, seen = None, str(error)
            if time.monotonic() > end:
                raise DriverError(f"{query} did not become {until} within {timeout} s; last state: {seen}")
            time.sleep(pause_after(begun))

    def op_round_trips(self, key, count):
        """Sends requests to the client's event loop in turn; returns the seconds for each answer."""
        application = self.clients[key].application()
        durations = []
        for _ in range(count):
            begun = time.monotonic()
            application.get_child_count()
            durations.append(time.monotonic() - begun)
        return durations

    def op_probe_begin(self, key):
        """Starts loop_probe.py, which sends requests to the client's event loop all the time."""
        self.probe = subprocess.Popen(
            [sys.executable, str(PROBE), str(self.clients[key].process.pid)],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )

    def op_probe_end(self):
        """Ends the probe and returns its figures; also after the client's end."""
        noted, _ = self.probe.communicate(timeout=EVENTUALLY)
        return json.loads(noted)

    @repeated
    def op_alert_ids(self, key):
        """One identity for each message box that shows; a later box with the same texts has another."""
        return [
            window.path
            for window in self.clients[key].windows()
            if window.get_role_name() == "alert" and states_of(window)["showing"]
        ]

    @repeated
    def op_alerts(self, key):
        """Title, texts and buttons of every message box that shows."""
        found = []
        for window in self.clients[key].windows():
            if window.get_role_name() != "alert" or not states_of(window)["showing"]:
                continue
            parts = [describe(node) for node in walk(window)]
            found.append(
                {
                    "title": window.get_name(),
                    "texts": [part["name"] for part in parts if part["role"] == "label" and part["name"]],
                    "buttons": [part["name"] for part in parts if part["role"] == "push button"],
                }
            )
        return found

    # --- acting

    def op_press(self, key, query):
        """Does what an assistive program does with a button, a box or a pop-up list: its first action."""
        node = self.find(key, query)
        if node is None:
            raise DriverError(f"no element matches {query}")
        if not states_of(node)["enabled"]:
            raise DriverError(f"{query} is disabled")
        pressed = time.monotonic()
        actions = [
            Atspi.Action.get_action_name(node, index) for index in range(Atspi.Action.get_n_actions(node))
        ]
        if not actions or actions[0] not in ("Press", "Toggle", "ShowMenu"):
            raise DriverError(f"{query} has no action to press it, only {actions}")
        Atspi.Action.do_action(node, 0)
        return pressed

    def op_set_text(self, key, query, text):
        node = self.find(key, query)
        if node is None:
            raise DriverError(f"no element matches {query}")
        if not Atspi.EditableText.set_text_contents(node, text):
            raise DriverError(f"{query} cannot be edited")

    def op_choose(self, key, query, entry):
        """Opens a combo box and clicks on one of its entries."""
        node = self.find(key, query)
        if node is None:
            raise DriverError(f"no element matches {query}")
        click(node)
        end = time.monotonic() + EVENTUALLY
        clicked, next_click = None, None
        while time.monotonic() < end:
            # Entries of a closed list are reported as showing; the list itself is not.
            lists = [
                part for part in walk(node) if part.get_role_name() == "list" and states_of(part)["showing"]
            ]
            if clicked is not None and not lists:
                return clicked
            if lists and next_click is None:
                next_click = time.monotonic() + LIST_READY
            for part, item in [(part, item) for part in lists for item in children(part)]:
                if item.get_name() == entry and states_of(item)["showing"] and time.monotonic() > next_click:
                    clicked, next_click = time.monotonic(), time.monotonic() + REPEAT
                    click(item, within=part)
            time.sleep(POLL)
        raise DriverError(f"the entry {entry!r} of {query} could not be chosen")

    @repeated
    def op_entries(self, key, query):
        """The entries of a combo box, in order."""
        node = self.find(key, query)
        if node is None:
            raise DriverError(f"no element matches {query}")
        return [item.get_name() for item in walk(node) if item.get_role_name() == "list item"]


def window_of(node):
    """The top-level window of the element."""
    parent = node.get_parent()
    while parent.get_role() != Atspi.Role.APPLICATION:
        node, parent = parent, parent.get_parent()
    return node


def output_of(*arguments):
    """What a program prints; empty when it fails."""
    return subprocess.run(
        arguments,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
        text=True,
        check=False,
    ).stdout


def shown_places(pid):
    """[x, y, width, height] of each window of the process, as the X server shows it."""
    windows = output_of("xdotool", "search", "--onlyvisible", "--pid", str(pid)).split()
    of_place = re.compile(r"^ +(?:Absolute upper-left [XY]|Width|Height): +(-?\d+)$", re.MULTILINE)
    return [
        [int(value) for value in of_place.findall(output_of("xwininfo", "-id", window))] for window in windows
    ]


def wait_in_place(node):
    """Waits until the element's window is on the screen, at the position that the client reports for it.

    The window manager decides on both, and the client can be ready before: a click would hit another window
    then.
    """
    window = window_of(node)
    end = time.monotonic() + EVENTUALLY
    while True:
        where = Atspi.Component.get_extents(window, Atspi.CoordType.SCREEN)
        shown = shown_places(window.get_process_id())
        wanted = [where.x, where.y, where.width, where.height]
        if wanted in shown:
            return
        if time.monotonic() > end:
            raise DriverError(f"the client reports its window at {wanted}, the screen shows {shown}")
        time.sleep(POLL)


def click(node, within=None):
    """Clicks on the middle of an element; horizontally on the middle of `within`, which can be narrower."""
    wait_in_place(node)
    where = Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)
    if where.width <= 0 or where.height <= 0:
        raise DriverError("the element has no size on the screen")
    across = Atspi.Component.get_extents(within, Atspi.CoordType.SCREEN) if within else where
    Atspi.generate_mouse_event(across.x + across.width // 2, where.y + where.height // 2, "b1c")


def fits(seen, until):
    if until.get("absent"):
        return seen is None or not seen["showing"]
    if seen is None:
        return False
    for key, wanted in until.items():
        if key == "matches":
            if not re.search(wanted, seen["name"]):
                return False
        elif seen.get(key) != wanted:
            return False
    return True


def serve(driver, answers):
    answers.write(json.dumps({"value": "ready"}) + "\n")
    for line in sys.stdin:
        request = json.loads(line)
        operation = getattr(driver, "op_" + request.pop("op"))
        try:
            answer = {"value": operation(**request)}
        except (DriverError, TrayError, GLib.Error, OSError) as error:
            answer = {"error": f"{type(error).__name__}: {error}"}
        answers.write(json.dumps(answer) + "\n")


def main():
    answers = os.fdopen(3, "w", buffering=1, encoding="utf-8")
    os.set_inheritable(3, False)
    launcher = start_accessibility()
    driver = Driver()
    serve(driver, answers)
    for client in driver.clients.values():
        if client.process.poll() is None:
            client.process.send_signal(signal.SIGKILL)
    driver.end_tray()
    launcher.terminate()


if __name__ == "__main__":
    main()
