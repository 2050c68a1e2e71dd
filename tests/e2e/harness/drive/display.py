"""The screen of a client: an X server of its own with a window manager, or the caller's."""

import contextlib
import os
import re
import secrets
import select
import signal
import struct
import subprocess
import time

FAMILY_WILD = 0xFFFF
FIRST_NUMBER = 7
SIZE = (1280, 1024)


def authority(number, cookie):
    """An X authority file with one cookie that holds for any host name."""

    def counted(text):
        return struct.pack(">H", len(text)) + text

    return (
        struct.pack(">H", FAMILY_WILD)
        + counted(b"")
        + counted(number.encode())
        + counted(b"MIT-MAGIC-COOKIE-1")
        + counted(cookie)
    )


def _is_held(pid):
    with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as stat:
        return stat.read().rpartition(")")[2].split()[0] == "T"


class Display:
    """What a client needs to know of its screen."""

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
        """Whether the user can connect."""
        return self.run("xdpyinfo", check=False).returncode == 0

    def run(self, *arguments, **options):
        """Runs an X program as the user, on this screen."""
        return self.home.run(*arguments, user=self.user, environment=self.environment, **options)

    def picture(self):
        """What is on the whole screen, as the bytes of a PNG file."""
        return self._whole("png:-")

    def screenshot(self, path):
        """Saves the whole screen as a picture (a path outside of the home)."""
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(self.picture())

    def pixels(self):
        """What is on the whole screen, as bytes that are the same for the same picture."""
        return self._whole("rgb:-")

    def _whole(self, form):
        return subprocess.run(
            self.home.command(["import", "-window", "root", form], self.user, self.environment),
            capture_output=True,
            check=True,
            timeout=20,
        ).stdout

    def close(self):
        """The caller's screen stays as it is."""


class PrivateDisplay(Display):
    """Xvfb and openbox, inside the home."""

    def __init__(self, home, user, size=SIZE):
        cookie = secrets.token_bytes(16)
        number = FIRST_NUMBER
        while home.path(f"/run/xvfb{number}.auth").exists():
            number += 1
        super().__init__(home, user, str(number), cookie)
        home.write(f"/run/xvfb{number}.auth", authority(str(number), cookie), mode=0o600)
        # Without -noreset the server starts over whenever its last client leaves, under whoever is just coming.
        self._server = home.popen(
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
            stderr=subprocess.DEVNULL,
        )
        ready, _, _ = select.select([self._server.stdout], [], [], 20)
        if not ready or os.read(self._server.stdout.fileno(), 64).strip() != str(number).encode():
            raise RuntimeError("Xvfb did not start")
        self._manager = home.popen(
            "openbox",
            "--sm-disable",
            user=user,
            environment=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        end = time.monotonic() + 10
        while "window id" not in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK").stdout:
            if time.monotonic() > end:
                raise RuntimeError("openbox did not start")
            time.sleep(0.02)

    def hold_manager(self):
        """Holds the window manager, as on a machine that has no time for it."""
        uid = self.home.uid(self.user)[0]
        (manager,) = [process for process in self.home.processes("openbox") if process.uid == uid]
        os.kill(manager.pid, signal.SIGSTOP)
        # Who waits for it outside of the home holds itself then, and takes it along when it goes on.
        self.home.wait_for(lambda: _is_held(self._manager.pid), 5, "the window manager is held")

    def let_manager_go_on(self):
        self._manager.send_signal(signal.SIGCONT)

    def press_keys(self, title, keys):
        """Brings a window to the front and presses keys in it, the way a user does."""
        self.run(
            "xdotool",
            "search",
            "--sync",
            "--onlyvisible",
            "--name",
            title,
            "windowactivate",
            "--sync",
            timeout=20,
        )
        self.run("xdotool", "key", "--clearmodifiers", keys, timeout=20)

    def on_screen(self, title):
        """Whether a window of this title is neither closed nor minimised."""
        found = self.run("xdotool", "search", "--onlyvisible", "--name", title, check=False, timeout=20)
        return bool(found.stdout.strip())

    def property(self, window, name):
        """The value of a window's property as xprop writes it; the root window's for "root"."""
        which = ["-root"] if window == "root" else ["-id", window]
        return self.run("xprop", *which, name, check=False).stdout.partition(name)[2].strip()

    def active(self):
        """The number of the window that has the focus, in decimal; "0" for none."""
        found = re.search(r"0x[0-9a-f]+", self.property("root", "_NET_ACTIVE_WINDOW"))
        return str(int(found[0], 16)) if found else "0"

    def listed(self, title):
        """The windows of this title in the window manager's list, minimised ones too, as numbers in decimal."""
        numbers = re.findall(r"0x[0-9a-f]+", self.property("root", "_NET_CLIENT_LIST").partition("#")[2])
        return [
            str(int(number, 16))
            for number in numbers
            if re.search(title, self.property(str(int(number, 16)), "WM_NAME"))
        ]

    @contextlib.contextmanager
    def watched(self, window):
        """Notes every change of the window's states meanwhile; gives a function that tells them afterwards."""
        spy = self.home.popen(
            "xprop",
            "-id",
            window,
            "-spy",
            "WM_STATE",
            "_NET_WM_STATE",
            user=self.user,
            environment=self.environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            text=True,
        )
        lines = []
        try:
            yield lambda: lines
        finally:
            for process in self.home.processes("xprop"):
                os.kill(process.pid, 15)
            lines += spy.communicate()[0].splitlines()

    def close(self):
        """Takes the X server away from whoever still uses it."""
        for process in self.home.processes("Xvfb"):
            if process.command[1] == self.name:
                os.kill(process.pid, 15)
        self._server.wait(10)
        self._server.stdout.close()
        self._manager.wait(10)


def caller_cookie(display):
    """(number, cookie) of a display of the caller's that has a path socket, or None."""
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
