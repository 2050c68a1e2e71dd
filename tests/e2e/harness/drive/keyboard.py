"""Keys pressed on a client's screen, and another program's window that has the focus meanwhile."""

import re
import subprocess
import time

from harness.home.deadlines import EVENTUALLY

# X key codes: positions on the keyboard, in any layout.
SUPER, SHIFT, CONTROL, CAPS_LOCK, NUM_LOCK = 133, 50, 37, 66, 77
A, B = 38, 56
HOME, UP, DOWN, RETURN, SPACE = 110, 111, 116, 36, 65
ONE, FIVE = 10, 14
F1, F2 = 67, 68


class Keyboard:
    """Real key events, through the X server's test extension."""

    def __init__(self, display):
        self._display = display

    def _send(self, event, keys):
        self._display.run("xdotool", *(part for key in keys for part in (event, str(key))))

    def down(self, *keys):
        self._send("keydown", keys)

    def up(self, *keys):
        self._send("keyup", keys)

    def strike(self, *keys):
        """Presses the keys one after the other and releases them in reverse order."""
        self.down(*keys)
        self.up(*reversed(keys))

    def hold(self, seconds, *keys):
        """Presses the keys one after the other and keeps all of them down for that long."""
        self.down(*keys)
        time.sleep(seconds)  # the length of the press is what the test is about
        self.up(*reversed(keys))

    def set_layout(self, layout):
        self._display.run("setxkbmap", layout)


class OtherWindow:
    """A window of another program that has the focus and records every key that reaches it."""

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
        # xdotool by itself looks for a window twice a second only.
        self._display.home.wait_for(lambda: self._display.on_screen(self.TITLE), "the other window shows")
        self._display.run(
            "xdotool",
            "search",
            "--sync",
            "--onlyvisible",
            "--name",
            self.TITLE,
            "windowactivate",
            "--sync",
        )
        self._display.home.wait_for(
            lambda: active_window(self._display) == self.TITLE, "the other window has the focus"
        )

    def presses(self):
        """(key code, modifier state) of every press that this window has received."""
        text = self._display.home.path(self._log).read_text(encoding="utf-8", errors="replace")
        return [
            (int(key), int(state, 16))
            for state, key in re.findall(
                r"^KeyPress event.*?state (0x[0-9a-f]+), keycode (\d+)", text, re.M | re.S
            )
        ]

    def close(self):
        self._process.terminate()
        self._process.wait(EVENTUALLY)


def active_window(display):
    """The title of the window that has the focus, as the window manager reports it."""
    found = display.run("xdotool", "getactivewindow", "getwindowname", check=False)
    return found.stdout.strip()
