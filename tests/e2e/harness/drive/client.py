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

from harness.home.deadlines import EVENTUALLY
from world import home as homes

from .display import PrivateDisplay

PROGRAM = f"{homes.CONTENTS}/bin/quorvane"
PROGRAM_OF_GUARD = f"{homes.CONTENTS}/Resources/openvpn"
PREFERENCES = "Library/Preferences/com.tallowind.Quorvane.plist"

NOT_HIDING = "WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!"
SEARCHING = "Searching for an available IP..."
HIDING = "You are currently hiding your real IP "
MAIN, DIALOG = "Quorvane (ver.", "Quorvane - Administrator"


class DriverError(Exception):
    """An operation that the driver in the home could not carry out; the text is the driver's."""


def label(description):
    return {"window": MAIN, "description": description}


def button(name, window=MAIN):
    return {"window": window, "role": "push button", "name": name}


HIDE = {"window": MAIN, "role": "push button", "name": ["Quorvane", "Stop Hiding IP"]}


def scrambled(text):
    """A text in the form in which the administrator's name and password are stored."""
    return "".join(unit + "x" for unit in text)


def unscrambled(stored):
    """The text that was entered, from its stored form: a string, or UTF-16 bytes behind a marker."""
    units = stored[4:] if isinstance(stored, bytes) else stored.encode("utf-16-le")
    length = len(units) // 4
    assert (
        len(units) == 4 * length + 2 and units[-2:] == b"\0\0"
    ), "two units for each character, and U+0000 at the end"
    return b"".join(units[at : at + 2] for at in range(0, 4 * length, 4)).decode("utf-16-le")


class Client:
    """A user's session in the home: bus, driver and screen. `start` starts a copy of the client in it."""

    def __init__(self, world, user, *, display=None):
        self.world, self.home, self.user = world, world.home, user
        self.folder = self.home.folder(user)
        self.log_folder = self.folder
        self.display = display or PrivateDisplay(self.home, user)
        environment = {
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_QPA_PLATFORM": "xcb",
            "NO_AT_BRIDGE": "0",
            **self.display.environment,
        }
        self._errors = self.home.path("/tmp/driver.log").open("ab")
        self._driver = self.home.popen(
            # The bus can write to standard output as well, so the driver answers on another descriptor.
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

    # --- requests to the driver

    def _read(self):
        line = self._driver.stdout.readline()
        if not line:
            log = self.home.path("/tmp/driver.log").read_text(encoding="utf-8", errors="replace")
            raise DriverError(f"the driver ended:\n{log}")
        answer = json.loads(line)
        if "error" in answer:
            raise DriverError(answer["error"])
        return answer["value"]

    def request(self, operation, **arguments):
        with self._lock:
            self._driver.stdin.write(json.dumps({"op": operation, **arguments}) + "\n")
            self._driver.stdin.flush()
            return self._read()

    # --- the process

    def start(self, *arguments, key="first", environment=None):
        """Starts a copy of the client; `key` names it, so that several copies can run."""
        return self.request(
            "start",
            key=key,
            arguments=[PROGRAM, *arguments],
            environment=environment or {},
            output=f"{self.log_folder}/{key}.log",
        )

    def start_ready(self, account, **preferences):
        """Stores an administrator, starts a copy and waits until it is ready to hide the IP."""
        self.remember_administrator(account, **preferences)
        self.start()
        self.wait_ready()

    def start_hidden(self, account, **preferences):
        """The same, and hides the IP."""
        self.start_ready(account, **preferences)
        self.hide()
        self.wait_hidden()

    def output(self, key="first"):
        """What the copy wrote to its standard output and error."""
        path = self.home.path(f"{self.log_folder}/{key}.log")
        return path.read_text(encoding="utf-8", errors="replace") if path.exists() else ""

    def running(self, key="first"):
        return self.request("status", key=key) is None

    def wait_exit(self, key="first", timeout=EVENTUALLY):
        """Waits until the copy has ended; returns its exit status, negative for a signal."""
        return self.request("wait_exit", key=key, timeout=timeout)

    def signal(self, number, key="first"):
        self.request("signal", key=key, number=int(number))

    def terminate(self, key="first"):
        """Ends the copy as the desktop does, by SIGTERM, which it must obey with exit status 0."""
        self.signal(signal.SIGTERM, key)
        status = self.wait_exit(key)
        assert status == 0, f"the client ended with status {status} after SIGTERM"

    def kill(self, key="first"):
        """Ends the copy by SIGKILL."""
        self.signal(signal.SIGKILL, key)
        assert self.wait_exit(key) == -signal.SIGKILL

    def end(self, key="first"):
        """Ends the copy if it runs, and the OpenVPN processes; its files stay."""
        if self.home.processes("quorvane") and self.running(key):
            self.signal(signal.SIGTERM, key)
            self.wait_exit(key)
        for process in self.home.processes("openvpn"):
            os.kill(process.pid, signal.SIGKILL)
        self.wait_no_openvpn()

    # --- its windows

    def wait(self, query, key="first", timeout=EVENTUALLY, **until):
        """Waits until an element has the wanted properties; see the driver's op_wait."""
        return self.request("wait", key=key, query=query, until=until, timeout=timeout)

    def text(self, description, key="first"):
        """The text of a label of the main window."""
        found = self.request("read", key=key, query=label(description))
        if found is None:
            raise DriverError(f"there is no label {description!r}")
        return found["name"]

    def shows(self, description, key="first"):
        found = self.request("read", key=key, query=label(description))
        return bool(found and found["showing"])

    def button_state(self, query=None, key="first"):
        """The description of the hide button, or of another element."""
        return self.request("read", key=key, query=query or HIDE)

    def press(self, query, key="first"):
        return self.request("press", key=key, query=query)

    def nodes(self, key="first"):
        return self.request("nodes", key=key)

    def wait_ready(self, key="first"):
        """Waits until the hide button can be pressed, which it can after the service's first answer."""
        return self.wait(HIDE, key=key, showing=True, enabled=True)

    def wait_hidden(self, key="first"):
        return self.wait(label("Status line"), key=key, matches="^" + re.escape(HIDING))

    def wait_not_hidden(self, key="first"):
        return self.wait(label("Status line"), key=key, name=NOT_HIDING)

    def hide(self, key="first"):
        """Presses the hide button; returns the time of the press."""
        self.wait_ready(key)
        return self.press(HIDE, key=key)

    def stop(self, key="first"):
        self.wait(HIDE, key=key, name="Stop Hiding IP", enabled=True)
        self.press(HIDE, key=key)
        return self.wait_not_hidden(key=key)

    def choose_protocol(self, name):
        self.wait_ready()
        self.press({"window": MAIN, "role": "radio button", "name": name})
        self.wait({"window": MAIN, "role": "radio button", "name": name}, checked=True)

    def current_address(self, key="first"):
        return self.text("Current IP address", key=key).strip()

    # --- the administrator dialog and the message boxes

    def wait_dialog(self, key="first"):
        return self.wait({"window": DIALOG, "role": "push button", "name": "Start"}, key=key, showing=True)

    def dialog_open(self):
        found = self.request("read", key="first", query={"window": DIALOG, "description": "Password"})
        return bool(found and found["showing"])

    def dialog_text(self, description):
        found = self.request("read", key="first", query={"window": DIALOG, "description": description})
        return found["text"]

    def fill_dialog(self, name, password, key="first"):
        self.wait_dialog(key)
        for description, text in (("User name", name), ("Password", password)):
            self.request("set_text", key=key, query={"window": DIALOG, "description": description}, text=text)

    def enter_administrator(self, name, password, key="first"):
        """Fills the dialog and presses Start; does not wait for the result."""
        self.fill_dialog(name, password, key)
        return self.press(button("Start", DIALOG), key=key)

    def wait_dialog_closed(self):
        return self.wait({"window": DIALOG, "role": "push button", "name": "Start"}, absent=True)

    def alerts(self, key="first"):
        """Every message box that shows: its title, its texts without surrounding white space, its buttons."""
        return [
            {**alert, "texts": [text.strip() for text in alert["texts"] if text.strip()]}
            for alert in self.request("alerts", key=key)
        ]

    def wait_alert(self, key="first"):
        """Waits for a message box; returns its title, texts and buttons."""
        self.wait({"role": "alert"}, key=key, showing=True)
        return self.alerts(key)[0]

    def dismiss_alert(self, key="first"):
        """Presses OK in the message box that shows and waits until it is gone."""
        shown, identities = self.alerts(key), self.request("alert_ids", key=key)
        assert shown, "there is no message box to dismiss"
        self.press({"window": shown[0]["title"], "role": "push button", "name": "OK"}, key=key)
        # A press through accessibility first shows the button as pressed; the box closes a moment later.
        self.home.wait_for(
            lambda: identities[0] not in self.request("alert_ids", key=key), "the message box is closed"
        )

    # --- its files

    def file(self, name):
        """A file below the user's home folder, as seen from the test."""
        return self.home.path(f"{self.folder}/{name}")

    def preferences(self):
        return plistlib.loads(self.file(PREFERENCES).read_bytes())

    def stored_pair(self):
        """The stored name and password of the administrator."""
        preferences = self.preferences()
        return unscrambled(preferences["un"]), unscrambled(preferences["up"])

    def seed_preferences(self, **values):
        """Writes the preferences before a start."""
        self.home.write(f"{self.folder}/{PREFERENCES}", plistlib.dumps(values), owner=self.user, mode=0o600)

    def remember_administrator(self, account, **others):
        """Stores an administrator's name and password as an earlier run does, with further preferences."""
        self.seed_preferences(un=scrambled(account.name), up=scrambled(account.password), **others)

    def openvpn_log(self):
        path = self.file("Documents/Quorvane/openvpn.log")
        return path.read_text(encoding="utf-8", errors="replace") if path.exists() else ""

    def openvpn(self):
        """The OpenVPN processes in the home. The guard has their name too until it has changed its own."""
        return [
            process for process in self.home.processes("openvpn") if process.command[:1] != [PROGRAM_OF_GUARD]
        ]

    def wait_no_openvpn(self):
        self.home.wait_for(lambda: not self.home.processes("openvpn"), "no OpenVPN process is left")

    # --- its log

    def wait_output(self, text, what, *, count=1, key="first"):
        """Waits until the copy has written the text `count` times; a failure's message contains `what`."""
        self.home.wait_for(lambda: self.output(key).count(text) >= count, what)

    @contextlib.contextmanager
    def noticed_loss(self, loss):
        """Runs the block while `loss`, a context manager, has taken the network away.

        The client has logged the loss before the block starts, and the return of the network when this ends.
        """
        lost, found = (self.output().count(f"inet {state}") for state in ("NO", "YES"))
        with loss:
            self.wait_output("inet NO", "the client notices the loss of the network", count=lost + 1)
            yield
        self.wait_output("inet YES", "the client notices the network again", count=found + 1)

    # --- the end

    def log_out(self):
        """Ends the user's session: every process of the user receives SIGTERM."""
        uid = self.home.uid(self.user)[0]
        for process in self.home.processes():
            if process.uid == uid:
                # A process that has just ended by itself is fine as well.
                with contextlib.suppress(ProcessLookupError):
                    os.kill(process.pid, signal.SIGTERM)

    def close(self):
        with contextlib.suppress(BrokenPipeError):
            self._driver.stdin.close()
        try:
            self._driver.wait(EVENTUALLY)
        except subprocess.TimeoutExpired:
            self._driver.kill()
            self._driver.wait()
        self._driver.stdout.close()
        self._errors.close()
        self.display.close()


class OpenVpnWatch:
    """Records when OpenVPN appears in the home and when its log reports that the tunnel is up."""

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
    """The folder for pictures and logs of failed tests, QUORVANE_E2E_OUT; None when it is not set."""
    path = os.environ.get("QUORVANE_E2E_OUT")
    return Path(path) if path else None
