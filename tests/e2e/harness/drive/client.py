"""One client of one user, as a test sees it."""

import contextlib
import json
import os
import plistlib
import re
import signal
import subprocess
import threading
import time
from pathlib import Path

from world import home as homes

from .display import PrivateDisplay

PROGRAM = f"{homes.CONTENTS}/bin/quorvane"
PREFERENCES = "Library/Preferences/com.tallowind.Quorvane.plist"
# A first answer of the service and a session through sudo and OpenVPN take some seconds; a failure marker is
# followed by 5 s of waiting on purpose; wrong passwords take up to 4 s each.
ANSWER, SESSION, FAILURE, PASSWORD = 15, 40, 40, 30

NOT_HIDING = "WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!"
SEARCHING = "Searching for an available IP..."
HIDING = "You are currently hiding your real IP "
MAIN, DIALOG = "Quorvane (ver.", "Quorvane - Administrator"


class DriverError(Exception):
    """What the driver at home could not do, in its words."""


def label(description):
    return {"window": MAIN, "description": description}


def button(name, window=MAIN):
    return {"window": window, "role": "push button", "name": name}


HIDE = {"window": MAIN, "description": "Hide button"}


def scrambled(text):
    """A text as the stored administrator pair has it, with fillers of its own."""
    return "".join(unit + "x" for unit in text)


def unscrambled(stored):
    """What was entered, from the stored form: a text, or its marked UTF-16 bytes."""
    units = stored[4:] if isinstance(stored, bytes) else stored.encode("utf-16-le")
    length = len(units) // 4
    assert len(units) == 4 * length + 2 and units[-2:] == b"\0\0", "two units for each and U+0000 at the end"
    return b"".join(units[at : at + 2] for at in range(0, 4 * length, 4)).decode("utf-16-le")


class Client:
    """A user's session bus, driver and screen. `start` starts a copy of the client in it."""

    def __init__(self, world, user, *, display=None):
        self.world, self.home, self.user = world, world.home, user
        self.folder = self.home.folder(user)
        self.log_folder = self.folder
        self.display = display or PrivateDisplay(self.home, user)
        environment = {
            **self.display.environment,
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_QPA_PLATFORM": "xcb",
            "NO_AT_BRIDGE": "0",
        }
        self._errors = self.home.path("/tmp/driver.log").open("ab")
        self._driver = self.home.popen(
            # The bus writes to its standard output now and then, so the driver answers on a descriptor of its own.
            "sh",
            "-c",
            'exec 3>&1 1>&2; exec dbus-run-session -- /usr/bin/python3 "$0"',
            f"{homes.HARNESS}/driver.py",
            user=user,
            environment=environment,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=self._errors,
            text=True,
        )
        self._lock = threading.Lock()
        if self._read() != "ready":
            raise DriverError("the driver did not start")

    # --- talking to the driver

    def _read(self):
        line = self._driver.stdout.readline()
        if not line:
            log = self.home.path("/tmp/driver.log").read_text(encoding="utf-8", errors="replace")
            raise DriverError(f"the driver ended:\n{log}")
        answer = json.loads(line)
        if "error" in answer:
            raise DriverError(answer["error"])
        return answer["value"]

    def ask(self, operation, **arguments):
        with self._lock:
            self._driver.stdin.write(json.dumps({"op": operation, **arguments}) + "\n")
            self._driver.stdin.flush()
            return self._read()

    # --- the process

    def start(self, *arguments, key="first", environment=None):
        """Starts a copy of the client; `key` tells several copies apart."""
        return self.ask(
            "start",
            key=key,
            arguments=[PROGRAM, *arguments],
            environment=environment or {},
            output=f"{self.log_folder}/{key}.log",
        )

    def output(self, key="first"):
        """What the copy wrote to its standard output and error."""
        path = self.home.path(f"{self.log_folder}/{key}.log")
        return path.read_text(encoding="utf-8", errors="replace") if path.exists() else ""

    def running(self, key="first"):
        return self.ask("status", key=key) is None

    def wait_exit(self, key="first", timeout=20):
        """Waits for the copy's end; its exit status, negative for a signal."""
        return self.ask("wait_exit", key=key, timeout=timeout)

    def signal(self, number, key="first"):
        self.ask("signal", key=key, number=int(number))

    def end(self, key="first"):
        """Ends the copy, if it runs, and what it started; its files stay."""
        if self.home.processes("quorvane") and self.running(key):
            self.signal(signal.SIGTERM, key)
            self.wait_exit(key)
        for process in self.openvpn():
            os.kill(process.pid, signal.SIGKILL)
        self.wait_no_openvpn()

    # --- looking at and acting on its windows

    def wait(self, query, timeout, key="first", **until):
        """Waits until an element is as wanted; see the driver's op_wait."""
        return self.ask("wait", key=key, query=query, until=until, timeout=timeout)

    def text(self, description, key="first"):
        """The text of a label of the main window."""
        found = self.ask("read", key=key, query=label(description))
        if found is None:
            raise DriverError(f"there is no {description}")
        return found["name"]

    def shows(self, description, key="first"):
        found = self.ask("read", key=key, query=label(description))
        return bool(found and found["showing"])

    def button_state(self, query=None, key="first"):
        """The description of the hide button, or of another element."""
        return self.ask("read", key=key, query=query or HIDE)

    def press(self, query, key="first"):
        return self.ask("press", key=key, query=query)

    def nodes(self, key="first"):
        return self.ask("nodes", key=key)

    def wait_ready(self, key="first"):
        """Waits for the service's first answer: the hide button can be pressed."""
        return self.wait(HIDE, ANSWER, key=key, showing=True, enabled=True)

    def wait_hidden(self, timeout=SESSION, key="first"):
        return self.wait(label("Status line"), timeout, key=key, matches="^" + re.escape(HIDING))

    def wait_not_hidden(self, timeout=SESSION, key="first"):
        return self.wait(label("Status line"), timeout, key=key, name=NOT_HIDING)

    def hide(self, key="first"):
        """Presses the hide button; the time of the press."""
        self.wait_ready(key)
        return self.press(HIDE, key=key)

    def stop(self, key="first"):
        self.wait(HIDE, ANSWER, key=key, name="Stop Hiding IP", enabled=True)
        self.press(HIDE, key=key)
        return self.wait_not_hidden(key=key)

    def choose_protocol(self, name):
        self.wait_ready()
        self.press({"window": MAIN, "role": "radio button", "name": name})
        self.wait({"window": MAIN, "role": "radio button", "name": name}, 5, checked=True)

    def current_address(self, key="first"):
        return self.text("Current IP address", key=key).strip()

    # --- the administrator dialog and the alerts

    def wait_dialog(self, timeout=PASSWORD):
        return self.wait({"window": DIALOG, "role": "push button", "name": "Start"}, timeout, showing=True)

    def dialog_open(self):
        found = self.ask("read", key="first", query={"window": DIALOG, "description": "Password"})
        return bool(found and found["showing"])

    def dialog_text(self, description):
        found = self.ask("read", key="first", query={"window": DIALOG, "description": description})
        return found["text"]

    def enter_administrator(self, name, password):
        """Fills the dialog and presses Start, without waiting for what comes of it."""
        self.wait_dialog()
        for description, text in (("User name", name), ("Password", password)):
            self.ask("set_text", key="first", query={"window": DIALOG, "description": description}, text=text)
        return self.press(button("Start", DIALOG))

    def wait_dialog_closed(self, timeout=PASSWORD):
        return self.wait({"window": DIALOG, "role": "push button", "name": "Start"}, timeout, absent=True)

    def alerts(self, key="first"):
        """Every message box that shows: title, texts without blank lines at their ends, buttons."""
        return [
            {**alert, "texts": [text.strip() for text in alert["texts"] if text.strip()]}
            for alert in self.ask("alerts", key=key)
        ]

    def wait_alert(self, timeout, key="first"):
        """Waits for a message box; its title, texts and buttons."""
        self.wait({"role": "alert"}, timeout, key=key, showing=True)
        return self.alerts(key)[0]

    def dismiss_alert(self, key="first"):
        """Presses OK in the message box that shows and waits until it is gone."""
        shown, identities = self.alerts(key), self.ask("alert_ids", key=key)
        assert shown, "there is no alert to dismiss"
        self.press({"window": shown[0]["title"], "role": "push button", "name": "OK"}, key=key)
        # The button looks pressed for a moment before it does what it is for.
        self.home.wait_for(
            lambda: identities[0] not in self.ask("alert_ids", key=key), 10, "the message box is closed"
        )

    # --- its files

    def file(self, name):
        """A file below the user's home folder, as seen from the test."""
        return self.home.path(f"{self.folder}/{name}")

    def preferences(self):
        return plistlib.loads(self.file(PREFERENCES).read_bytes())

    def stored_pair(self):
        """The administrator's name and password that are remembered."""
        preferences = self.preferences()
        return unscrambled(preferences["un"]), unscrambled(preferences["up"])

    def seed_preferences(self, **values):
        """Writes the preferences before a start."""
        self.home.write(f"{self.folder}/{PREFERENCES}", plistlib.dumps(values), owner=self.user, mode=0o600)

    def remember_administrator(self, account, **others):
        """Stores an administrator's pair as an earlier run would have, with further preferences."""
        self.seed_preferences(un=scrambled(account.name), up=scrambled(account.password), **others)

    def openvpn_log(self):
        path = self.file("Documents/Quorvane/openvpn.log")
        return path.read_text(encoding="utf-8", errors="replace") if path.exists() else ""

    def openvpn(self):
        """The OpenVPN processes at home."""
        return self.home.processes("openvpn")

    def wait_no_openvpn(self, timeout=10):
        self.home.wait_for(lambda: not self.openvpn(), timeout, "no OpenVPN process left")

    # --- the end

    def log_out(self):
        """Ends the user's session: every process of the user is told to end."""
        uid = self.home.uid(self.user)[0]
        for process in self.home.processes():
            if process.uid == uid:
                # One that has just ended by itself is what is wanted, too.
                with contextlib.suppress(ProcessLookupError):
                    os.kill(process.pid, signal.SIGTERM)

    def close(self):
        with contextlib.suppress(BrokenPipeError):
            self._driver.stdin.close()
        try:
            self._driver.wait(5)
        except subprocess.TimeoutExpired:
            self._driver.kill()
            self._driver.wait()
        self._driver.stdout.close()
        self._errors.close()
        self.display.close()


class OpenVpnWatch:
    """Notes when OpenVPN appears at home and when its log says that the tunnel is up."""

    UP = "Initialization Sequence Completed"

    def __init__(self, client):
        self._client = client
        self._end = threading.Event()
        self.started = None
        self.up = None
        self._thread = threading.Thread(target=self._watch, daemon=True)
        self._thread.start()

    def _watch(self):
        while not self._end.wait(0.005):
            if self.started is None and self._client.openvpn():
                self.started = time.monotonic()
            if self.started is not None and self.UP in self._client.openvpn_log():
                self.up = time.monotonic()
                return

    def stop(self):
        self._end.set()
        self._thread.join()


def picture_folder():
    """Where failures leave pictures and logs: QUORVANE_E2E_OUT, or nowhere."""
    path = os.environ.get("QUORVANE_E2E_OUT")
    return Path(path) if path else None
