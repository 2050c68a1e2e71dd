#!/usr/bin/python3
"""Runs at home as the user, inside the session bus: starts the client and drives it through accessibility.

One JSON object a line comes in at standard input, {"op": name, ...arguments}, and one goes out at descriptor 3:
{"value": ...} or {"error": text}. Ends, with what it started, when its input is closed. Times are seconds of
CLOCK_MONOTONIC.
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
from gi.repository import Atspi, Gio, GLib  # noqa: E402 # pylint: disable=wrong-import-position

from status_items import TrayError, TrayOperations  # noqa: E402 # pylint: disable=wrong-import-position

POLL = 0.01
# The client's main thread stands still while an administrator's password is checked, up to some 4 s a time.
PATIENCE_MS = 15000
# How long a window manager may take to place a window, on a busy machine.
PLACE = 10
# How long things may go on to vanish while they are looked at.
AGAIN = 5
# What is said of a window, and of a client, that is gone by now.
VANISHED = re.compile("No such object path|application no longer exists")
LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
PROBE = Path(__file__).with_name("loop_probe.py")


class DriverError(Exception):
    """Told to the other side; the driver goes on."""


def start_accessibility():
    launcher = subprocess.Popen([LAUNCHER, "--launch-immediately"], stdin=subprocess.DEVNULL)
    bus = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    end = time.monotonic() + 10
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
    Atspi.set_timeout(PATIENCE_MS, PATIENCE_MS)
    return launcher


def states_of(node):
    states = node.get_state_set()
    names = {
        "showing": Atspi.StateType.SHOWING,
        "enabled": Atspi.StateType.ENABLED,
        "checked": Atspi.StateType.CHECKED,
        "modal": Atspi.StateType.MODAL,
        "active": Atspi.StateType.ACTIVE,
    }
    return {name: states.contains(kind) for name, kind in names.items()}


def describe(node):
    found = {"role": node.get_role_name(), "name": node.get_name(), "description": node.get_description()}
    found.update(states_of(node))
    if found["role"] in ("text", "password text"):
        found["text"] = Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node))
    return found


def children(node):
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child is not None:
            yield child


def walk(node, depth=0):
    if depth > 25:
        return
    for child in children(node):
        yield child
        yield from walk(child, depth + 1)


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
        if actual != wanted:
            return False
    return True


def window_fits(window, query):
    return "window" not in query or window.get_name().startswith(query["window"])


def looking_again(look):
    """Looks once more when something went away while it was looked at, as a closing window does."""

    @functools.wraps(look)
    def wrapped(*arguments, **keywords):
        end = time.monotonic() + AGAIN
        while True:
            try:
                return look(*arguments, **keywords)
            except GLib.Error as error:
                if not VANISHED.search(error.message) or time.monotonic() > end:
                    raise
                time.sleep(POLL)

    return wrapped


class Driver(TrayOperations):
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

    # --- looking

    @looking_again
    def find(self, key, query):
        """The first node that fits and shows, else the first that fits, else None."""
        hidden = None
        for window in self.clients[key].windows():
            if not window_fits(window, query):
                continue
            for node in [window, *walk(window)]:
                if matches(node, query):
                    if states_of(node)["showing"]:
                        return node
                    hidden = hidden or node
        return hidden

    @looking_again
    def op_nodes(self, key):
        """Everything there is, for a failure's message."""
        found = []
        for window in self.clients[key].windows():
            found += [describe(node) for node in [window, *walk(window)]]
        return found

    @looking_again
    def op_read(self, key, query):
        node = self.find(key, query)
        return None if node is None else describe(node)

    def op_wait(self, key, query, until, timeout):
        """Waits until the node is as wanted: keys of its description to values, "matches" for its name.

        until {"absent": true} waits until nothing that fits shows.
        """
        end = time.monotonic() + timeout
        node, seen = None, None
        while True:
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
                raise DriverError(f"{query} did not become {until} within {timeout} s; last seen: {seen}")
            time.sleep(POLL)

    def op_round_trips(self, key, count):
        """Asks the client's event loop for one thing after the other; the seconds that each answer took."""
        application = self.clients[key].application()
        taken = []
        for _ in range(count):
            begun = time.monotonic()
            application.get_child_count()
            taken.append(time.monotonic() - begun)
        return taken

    def op_probe_begin(self, key):
        """Has the client's event loop asked all the time from now on; see loop_probe.py."""
        self.probe = subprocess.Popen(
            [sys.executable, str(PROBE), str(self.clients[key].process.pid)],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )

    def op_probe_end(self):
        """What the probe noted; also after the client's end."""
        noted, _ = self.probe.communicate(timeout=60)
        return json.loads(noted)

    @looking_again
    def op_alert_ids(self, key):
        """What tells the message boxes that show from later ones with the same texts."""
        return [
            window.path
            for window in self.clients[key].windows()
            if window.get_role_name() == "alert" and states_of(window)["showing"]
        ]

    @looking_again
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
        """Presses a button; one whose only action toggles it without a click gets a real click."""
        node = self.find(key, query)
        if node is None:
            raise DriverError(f"there is no {query}")
        if not states_of(node)["enabled"]:
            raise DriverError(f"{query} is disabled")
        pressed = time.monotonic()
        for index in range(Atspi.Action.get_n_actions(node)):
            if Atspi.Action.get_action_name(node, index).lower() == "press":
                Atspi.Action.do_action(node, index)
                return pressed
        click(node)
        return pressed

    def op_set_text(self, key, query, text):
        node = self.find(key, query)
        if node is None:
            raise DriverError(f"there is no {query}")
        if not Atspi.EditableText.set_text_contents(node, text):
            raise DriverError(f"{query} cannot be edited")

    def op_choose(self, key, query, entry, timeout):
        """Opens a combo box and clicks on one of its entries."""
        node = self.find(key, query)
        if node is None:
            raise DriverError(f"there is no {query}")
        click(node)
        end = time.monotonic() + timeout
        clicked, again = None, 0
        while time.monotonic() < end:
            # The entries of a closed list say that they show; the list itself knows better.
            lists = [
                part for part in walk(node) if part.get_role_name() == "list" and states_of(part)["showing"]
            ]
            if clicked is not None and not lists:
                return clicked
            for part, item in [(part, item) for part in lists for item in children(part)]:
                # A list takes a click at the place that opened it for a part of that one, if it comes at once.
                if item.get_name() == entry and states_of(item)["showing"] and time.monotonic() > again:
                    clicked, again = time.monotonic(), time.monotonic() + 1
                    click(item, within=part)
            time.sleep(POLL)
        raise DriverError(f"{query} shows no entry {entry!r}")

    @looking_again
    def op_entries(self, key, query):
        """The entries of a combo box, in order."""
        node = self.find(key, query)
        if node is None:
            raise DriverError(f"there is no {query}")
        return [item.get_name() for item in walk(node) if item.get_role_name() == "list item"]


def window_of(node):
    """The top-level window that the element is in."""
    parent = node.get_parent()
    while parent.get_role() != Atspi.Role.APPLICATION:
        node, parent = parent, parent.get_parent()
    return node


def output_of(*arguments):
    """What a program prints, empty when it fails."""
    return subprocess.run(
        arguments,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
        text=True,
        check=False,
    ).stdout


def shown_places(pid):
    """Where the X server shows windows of the process: [x, y, width, height] of each."""
    windows = output_of("xdotool", "search", "--onlyvisible", "--pid", str(pid)).split()
    of_place = re.compile(r"^ +(?:Absolute upper-left [XY]|Width|Height): +(-?\d+)$", re.MULTILINE)
    return [
        [int(value) for value in of_place.findall(output_of("xwininfo", "-id", window))] for window in windows
    ]


def wait_in_place(node):
    """Waits until the element's window is on the screen, where the client takes it to be.

    The window manager decides on both, and may be slower than the client, which is ready before: until then a click
    would hit what is below.
    """
    window = window_of(node)
    end = time.monotonic() + PLACE
    while True:
        where = Atspi.Component.get_extents(window, Atspi.CoordType.SCREEN)
        shown = shown_places(window.get_process_id())
        wanted = [where.x, where.y, where.width, where.height]
        if wanted in shown:
            return
        if time.monotonic() > end:
            raise DriverError(f"the client takes its window to be at {wanted}, the screen shows {shown}")
        time.sleep(POLL)


def click(node, within=None):
    """Clicks on the middle of an element; across, on that of `within`, which may be narrower than what it holds."""
    wait_in_place(node)
    where = Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)
    if where.width <= 0 or where.height <= 0:
        raise DriverError("the element has no place on the screen")
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
