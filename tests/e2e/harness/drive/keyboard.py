"""Keys pressed on a client's screen, and another program's window that has the focus meanwhile."""

import re
import subprocess
import time

# X key codes: positions on the keyboard, whatever is written on them.
SUPER, SHIFT, CONTROL, CAPS_LOCK, NUM_LOCK = 133, 50, 37, 66, 77
A, B = 38, 56
HOME, UP, DOWN, RETURN, SPACE = 110, 111, 116, 36, 65
ONE, FIVE = 10, 14
F1, F2 = 67, 68


class Keyboard:
    """Real key events, through the X server's test extension."""

    def __init__(self, display):
        self._display = display

    def _send(self, words):
        self._display.run("xdotool", *words, timeout=20)

    def down(self, *keys):
        self._send([word for key in keys for word in ("keydown", str(key))])

    def up(self, *keys):
        self._send([word for key in keys for word in ("keyup", str(key))])

    def strike(self, *keys):
        """Presses the keys in turn and releases them in reverse."""
        self.down(*keys)
        self.up(*reversed(keys))

    def hold(self, seconds, *keys):
        """Keeps the last of the keys down for that long, the others around it."""
        self.down(*keys)
        time.sleep(seconds)
        self.up(*reversed(keys))

    def set_layout(self, layout):
        self._display.run("setxkbmap", layout, timeout=20)


class OtherWindow:
    """Another program in front, which writes down every key that reaches it."""

    TITLE = "Event Tester"

    def __init__(self, display):
        self._display = display
        self._log = f"/home/{display.user}/other-window.log"
        display.home.write(self._log, "", owner=display.user)
        with display.home.path(self._log).open("wb") as log:
            self._process = display.home.popen(
                "stdbuf",
                "-oL",
                "xev",
                "-event",
                "keyboard",
                user=display.user,
                environment=display.environment,
                stdin=subprocess.DEVNULL,
                stdout=log,
            )
        self.focus()

    def focus(self):
        self._display.run(
            "xdotool",
            "search",
            "--sync",
            "--onlyvisible",
            "--name",
            self.TITLE,
            "windowactivate",
            "--sync",
            timeout=20,
        )
        self._display.home.wait_for(
            lambda: active_window(self._display) == self.TITLE, 10, "the focus elsewhere"
        )

    def presses(self):
        """(key code, state) of every press that this window has got."""
        text = self._display.home.path(self._log).read_text(encoding="utf-8", errors="replace")
        return [
            (int(key), int(state, 16))
            for state, key in re.findall(
                r"^KeyPress event.*?state (0x[0-9a-f]+), keycode (\d+)", text, re.M | re.S
            )
        ]

    def close(self):
        self._process.terminate()
        self._process.wait(10)


def active_window(display):
    """The title of the window in front, by the window manager."""
    found = display.run("xdotool", "getactivewindow", "getwindowname", check=False, timeout=20)
    return found.stdout.strip()
