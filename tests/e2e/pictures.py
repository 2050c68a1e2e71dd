"""Pictures of every window and state, at the usual size and at twice the size, for ./run --headless."""

import os
import signal
import subprocess

from harness.drive import client as ui
from harness.drive.display import PrivateDisplay
from harness.drive.tray import EmbeddingTray
from harness.home.deadlines import EVENTUALLY
from world.accounts import ADA, JOE

MAIN_TITLE, ABOUT_TITLE, SETTINGS_TITLE = "Quorvane .ver", "About Quorvane", "Settings"
SCREEN = (1280, 1024)
MARGIN, FRAME = 24, 28
DISCARDED = ("203.0.113.60", "203.0.113.43", "203.0.113.12")


class Photographer:
    """Saves pictures of one started client, whose windows are drawn `scale` times as large."""

    def __init__(self, client, out, scale):
        self.client = client
        self.out = out
        self.scale = scale
        self.taken = []

    def _geometry(self, title):
        """Left, top, width and height of a window without its frame."""
        search = ("xdotool", "search", "--onlyvisible", "--name", title, "getwindowgeometry", "--shell")
        found = {}

        def known():
            # The search fails when any window goes while it looks at all of them, a tooltip for instance.
            done = self.client.display.run(*search, check=False)
            found.update(line.split("=") for line in done.stdout.splitlines() if "=" in line)
            return done.returncode == 0

        self.client.home.wait_for(known, f"the window {title} is found")
        return tuple(int(found[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def _save(self, name, left, top, width, height):
        path = self.out / f"{name}-{self.scale}x.png"
        whole = self.out / "whole.png"
        self.client.display.screenshot(whole)
        subprocess.run(
            [
                "convert",
                str(whole),
                "-crop",
                f"{width}x{height}+{max(left, 0)}+{max(top, 0)}",
                "+repage",
                str(path),
            ],
            check=True,
            timeout=EVENTUALLY,
        )
        whole.unlink()
        self.taken.append(path.name)

    def window(self, name, title=MAIN_TITLE, below=0):
        """A window with its frame, and `below` unscaled pixels of the screen under it."""
        left, top, width, height = self._geometry(title)
        margin = MARGIN
        self._save(
            name,
            left - margin,
            top - margin - FRAME,
            width + 2 * margin,
            height + 2 * margin + FRAME + below * self.scale,
        )

    def corner(self, name, width, height):
        """The upper right corner of the screen, in unscaled pixels."""
        width, height = width * self.scale, height * self.scale
        self._save(name, SCREEN[0] * self.scale - width, 0, width, height)

    def keys(self, keys, title=MAIN_TITLE):
        self.client.display.press_keys(title, keys)

    def wait_window(self, title, shown=True):
        self.client.home.wait_for(
            lambda: self.client.display.on_screen(title) == shown, f"{title} shows: {shown}"
        )

    def still(self):
        """Waits until the screen does not change any more, so that no window is half drawn."""
        seen = []

        def same_twice():
            seen.append(self.client.display.pixels())
            return len(seen) > 1 and seen[-1] == seen[-2]

        self.client.home.wait_for(same_twice, "a screen that does not change any more")


def take_states(photographer):
    """Not hidden with the open pop-up, searching, hidden."""
    client = photographer.client
    client.wait_ready()
    photographer.still()
    photographer.window("not-hidden")
    client.press(ui.label("Location choice"))
    client.wait({"window": ui.MAIN, "role": "list"}, showing=True)
    photographer.still()
    photographer.window("locations", below=120)
    client.display.run("xdotool", "key", "Escape")
    photographer.still()
    photographer.keys("Return")
    client.wait(ui.label("Status line"), name=ui.SEARCHING)
    photographer.window("searching")
    client.wait_hidden()
    photographer.still()
    photographer.window("hidden")


def take_tray_menu(photographer, tray):
    tray.open_menu()
    photographer.still()
    photographer.corner("tray-menu", 320, 380)
    photographer.client.display.run("xdotool", "key", "Escape")


def take_other_windows(photographer):
    photographer.keys("alt+s")
    photographer.wait_window(SETTINGS_TITLE)
    photographer.still()
    photographer.window("discarded", SETTINGS_TITLE)
    photographer.keys("Escape", SETTINGS_TITLE)
    photographer.wait_window(MAIN_TITLE)
    photographer.client.press(ui.button("About Quorvane"))
    photographer.wait_window(ABOUT_TITLE)
    photographer.still()
    photographer.window("about", ABOUT_TITLE)
    photographer.keys("Escape", ABOUT_TITLE)
    photographer.wait_window(MAIN_TITLE)


def take_lock(photographer):
    """Hidden with the network lock closed, and after the tunnel was lost."""
    client = photographer.client
    client.wait_ready()
    photographer.still()
    photographer.keys("Return")
    client.wait_hidden()
    photographer.still()
    photographer.window("hidden-locked")
    for process in client.openvpn():
        os.kill(process.pid, signal.SIGKILL)
    client.wait(ui.button("Lift the block of traffic outside the tunnel"), showing=True)
    photographer.still()
    photographer.window("locked")


def take(world, out, scale):
    """Starts a client for the pictures and ends it; returns the names of the files."""
    display = PrivateDisplay(world.home, JOE.name, size=tuple(side * scale for side in SCREEN))
    client = ui.Client(world, JOE.name, display=display)
    tray = EmbeddingTray(client)
    client.remember_administrator(ADA, location="Germany Berlin", discardedIPs="|".join(DISCARDED))
    client.start(environment={"QT_SCALE_FACTOR": str(scale)})
    photographer = Photographer(client, out, scale)
    take_states(photographer)
    take_tray_menu(photographer, tray)
    take_other_windows(photographer)
    client.terminate()
    client.wait_no_openvpn()
    client.remember_administrator(ADA, location="Germany Berlin", networkLock=True, noReconnect=True)
    client.start(environment={"QT_SCALE_FACTOR": str(scale)})
    take_lock(photographer)
    client.terminate()
    tray.close()
    client.close()
    return photographer.taken
