"""The screen of a client: a private X server with a window manager, or the caller's screen."""

import contextlib
import os
import re
import secrets
import select
import signal
import struct
import subprocess
import threading
import time

from harness.home.deadlines import EVENTUALLY, POLL
from harness.observe import figures

FAMILY_WILD = 0xFFFF
FIRST_NUMBER = 7
# Once in some hundred starts on a busy machine Xvfb gets no keymap from xkbcomp, without saying why.
NO_KEYMAP = "XKB: Failed to compile keymap"
STARTS = 3
SIZE = (1280, 1024)
# Seconds after which a press that had no effect is repeated.
REPEAT = 5
# One shell, started before the window appears: a new process for each look could miss its first states.
_SPY = r"""
echo watching
while :; do
    for window in $(xprop -root _NET_CLIENT_LIST | grep -o '0x[0-9a-f]*'); do
        case $(xprop -id "$window" WM_NAME 2>/dev/null) in
        *"\"$1"*) exec stdbuf -oL xprop -id "$window" -spy _NET_WM_STATE WM_STATE ;;
        esac
    done
    sleep 0.01
done
"""


def authority(number, cookie):
    """The bytes of an X authority file with one cookie that is valid for any host name."""

    def counted(text):
        return struct.pack(">H", len(text)) + text

    return (
        struct.pack(">H", FAMILY_WILD)
        + counted(b"")
        + counted(number.encode())
        + counted(b"MIT-MAGIC-COOKIE-1")
        + counted(cookie)
    )


def _is_stopped(pid):
    with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as stat:
        return stat.read().rpartition(")")[2].split()[0] == "T"


class Display:
    """An X screen that a user of the home can connect to."""

    def __init__(self, home, user, number, cookie):
        self.home = home
        self.user = user
        self.name = f":{number}"
        self._authority = f"{home.folder(user)}/.Xauthority"
        home.write(self._authority, authority(number, cookie), owner=user, mode=0o600)

    @property
    def environment(self):
        return {"DISPLAY": self.name, "XAUTHORITY": self._authority}

    def usable(self):
        """True when the user can connect to the X server."""
        return self.run("xdpyinfo", check=False).returncode == 0

    def run(self, *arguments, **options):
        """Runs an X program as the user, on this screen."""
        options.setdefault("timeout", EVENTUALLY)
        return self.home.run(*arguments, user=self.user, environment=self.environment, **options)

    def picture(self):
        """The whole screen as the bytes of a PNG file."""
        return self._whole("png:-")

    def screenshot(self, path):
        """Saves the whole screen as a picture (a path outside of the home)."""
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(self.picture())

    def pixels(self):
        """The whole screen as raw pixels: equal screens give equal bytes."""
        return self._whole("rgb:-")

    def _whole(self, form):
        return subprocess.run(
            self.home.command(["import", "-window", "root", form], self.user, self.environment),
            capture_output=True,
            check=True,
            timeout=EVENTUALLY,
        ).stdout

    def close(self):
        """The caller's screen stays as it is."""


class BareDisplay(Display):
    """Xvfb inside the home, without a window manager."""

    def __init__(self, home, user, size=SIZE):
        cookie = secrets.token_bytes(16)
        number = FIRST_NUMBER
        while home.path(f"/run/xvfb{number}.auth").exists():
            number += 1
        super().__init__(home, user, str(number), cookie)
        home.write(f"/run/xvfb{number}.auth", authority(str(number), cookie), mode=0o600)
        for left in reversed(range(STARTS)):
            failure = self._start(number, size)
            if failure is None:
                break
            if not left or NO_KEYMAP not in failure:
                raise RuntimeError(f"Xvfb did not start: {failure}")
            figures.record("Xvfb started again", NO_KEYMAP)

    def _start(self, number, size):
        """Starts the server; returns None, or its status and messages when it has ended or is not ready."""
        messages = self.home.path(f"/run/xvfb{number}.log")
        # Without -noreset the server restarts when its last client leaves, even if another one connects.
        with messages.open("wb") as output:
            self._server = self.home.popen(
                "Xvfb",
                self.name,
                "-screen",
                "0",
                f"{size[0]}x{size[1]}x24",
                "-noreset",
                "-nolisten",
                "tcp",
                "-auth",
                f"/run/xvfb{number}.auth",
                "-displayfd",
                "1",
                stdin=subprocess.DEVNULL,
                stdout=subprocess.PIPE,
                stderr=output,
            )
        ready, _, _ = select.select([self._server.stdout], [], [], EVENTUALLY)
        if not ready or os.read(self._server.stdout.fileno(), 64).strip() != str(number).encode():
            status = self._server.wait(EVENTUALLY) if ready else "it still runs"
            return f"{status}\n{messages.read_text(errors='replace')}"
        return None

    def press_keys(self, title, keys):
        """Brings a window to the front and presses keys in it."""
        self.run(
            "xdotool",
            "search",
            "--sync",
            "--onlyvisible",
            "--name",
            title,
            "windowactivate",
            "--sync",
        )
        self.run("xdotool", "key", "--clearmodifiers", keys)

    def close_window(self, title):
        """Presses Alt+F4, a combination of the window manager, until the window is closed; returns how often.

        A press is lost while the window manager registers its combinations again.
        """
        self.press_keys(title, "alt+F4")
        presses, again, end = 1, time.monotonic() + REPEAT, time.monotonic() + EVENTUALLY
        while self.on_screen(title):
            if time.monotonic() > end:
                raise TimeoutError(f"{title} was not closed by {presses} presses within {EVENTUALLY} s")
            if time.monotonic() > again:
                self.run("xdotool", "key", "--clearmodifiers", "alt+F4")
                presses, again = presses + 1, time.monotonic() + REPEAT
            time.sleep(POLL)
        return presses

    def on_screen(self, title):
        """True when a window with this title is neither closed nor minimised."""
        found = self.run("xdotool", "search", "--onlyvisible", "--name", title, check=False)
        return bool(found.stdout.strip())

    def property(self, window, name):
        """The value of a window's property as xprop prints it; "root" is the root window."""
        which = ["-root"] if window == "root" else ["-id", window]
        return self.run("xprop", *which, name, check=False).stdout.partition(name)[2].strip()

    def active(self):
        """The decimal number of the window that has the focus; "0" for none."""
        found = re.search(r"0x[0-9a-f]+", self.property("root", "_NET_ACTIVE_WINDOW"))
        return str(int(found[0], 16)) if found else "0"

    def listed(self, title):
        """Decimal numbers of the windows with this title that the window manager lists, minimised or not."""
        numbers = re.findall(r"0x[0-9a-f]+", self.property("root", "_NET_CLIENT_LIST").partition("#")[2])
        return [
            str(int(number, 16))
            for number in numbers
            if re.search(title, self.property(str(int(number, 16)), "WM_NAME"))
        ]

    @contextlib.contextmanager
    def watched_window(self, title):
        """Records the states of the next window with this title, from its appearance to the end of the block.

        Yields a function that returns the lines of xprop so far: the states that the window appeared with
        come first, then one line for each change.
        """
        spy = self.home.popen(
            "sh",
            "-c",
            _SPY,
            "sh",
            title,
            user=self.user,
            environment=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            text=True,
        )
        lines = []
        reader = threading.Thread(target=lambda: lines.extend(spy.stdout), daemon=True)
        try:
            if spy.stdout.readline() != "watching\n":
                raise RuntimeError("the window watcher did not start")
            reader.start()
            yield lambda: list(lines)
        finally:
            spy.terminate()
            for process in self.home.processes("xprop"):
                os.kill(process.pid, signal.SIGTERM)
            spy.wait(EVENTUALLY)
            if reader.ident is not None:
                reader.join()
            spy.stdout.close()

    def close(self):
        """Ends the X server, whatever still uses it."""
        for process in self.home.processes("Xvfb"):
            if process.command[1] == self.name:
                os.kill(process.pid, signal.SIGTERM)
        self._server.wait(EVENTUALLY)
        self._server.stdout.close()


class PrivateDisplay(BareDisplay):
    """Xvfb and openbox, inside the home."""

    def __init__(self, home, user, size=SIZE):
        super().__init__(home, user, size)
        self._manager = home.popen(
            "openbox",
            "--sm-disable",
            user=user,
            environment=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        home.wait_for(
            lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK").stdout,
            "openbox has started",
        )
        # At the first key the X server announces the keyboard; programs register their combinations again.
        self.run("xdotool", "key", "Shift_L")

    def pause_manager(self):
        """Stops the window manager, as on a machine that does not schedule it."""
        uid = self.home.uid(self.user)[0]
        (manager,) = [process for process in self.home.processes("openbox") if process.uid == uid]
        os.kill(manager.pid, signal.SIGSTOP)
        # nsenter, outside of the home, waits for the window manager and stops with it; it continues both.
        self.home.wait_for(lambda: _is_stopped(self._manager.pid), "the window manager is stopped")

    def continue_manager(self):
        self._manager.send_signal(signal.SIGCONT)

    def close(self):
        """Ends the X server and the window manager, whatever still uses them."""
        super().close()
        self._manager.wait(EVENTUALLY)


def caller_cookie(display):
    """(number, cookie) of a display of the caller, if it has a socket in /tmp/.X11-unix; else None."""
    number = display.removeprefix("unix").removeprefix(":").split(".")[0]
    if not display.removeprefix("unix").startswith(":") or not number.isdigit():
        return None
    if not os.path.exists(f"/tmp/.X11-unix/X{number}"):
        return None
    listed = subprocess.run(
        ["xauth", "-q", "nlist", display], capture_output=True, text=True, check=False
    ).stdout
    for line in listed.splitlines():
        fields = line.split()
        # Counted from the end: an empty host name leaves no field.
        if len(fields) >= 8 and bytes.fromhex(fields[-3]) == b"MIT-MAGIC-COOKIE-1":
            return number, bytes.fromhex(fields[-1])
    return number, b""
