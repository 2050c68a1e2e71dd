"""The tray icon of a client, in a status notifier host and in a tray that embeds windows."""

import contextlib
import re
import time

from harness.home.deadlines import EVENTUALLY, POLL


class TrayIcon:
    """The client's item in a status notifier host; the test starts and ends the host."""

    def __init__(self, client):
        self._client = client

    def appear(self):
        self._client.request("tray_appear")

    def vanish(self):
        self._client.request("tray_vanish")

    def item(self):
        return self._client.request("tray_item")

    def wait_item(self, **until):
        """Waits until the item is present with these values; returns it."""
        end = time.monotonic() + EVENTUALLY
        while True:
            found = self.item()
            if found is not None and all(found[key] == value for key, value in until.items()):
                return found
            assert time.monotonic() < end, f"the item did not become {until}; last state: {found}"
            time.sleep(POLL)

    def activate(self):
        self._client.request("tray_activate")

    def menu(self):
        """The labels of the entries in order, "-" for a separator."""
        return [entry[0] if entry else "-" for entry in self._client.request("tray_menu")]

    def enabled(self, label):
        return dict(entry for entry in self._client.request("tray_menu") if entry)[label]

    def wait_enabled(self, label):
        end = time.monotonic() + EVENTUALLY
        while label not in self.menu() or not self.enabled(label):
            assert time.monotonic() < end, f"the entry {label} was not enabled: {self.menu()}"
            time.sleep(POLL)

    def submenu(self, label):
        """Opens a submenu; the entries' labels and whether each is checked, "-" for a separator."""
        return [entry or ["-", False] for entry in self._client.request("tray_submenu", label=label)]

    def click(self, label, submenu=None):
        self._client.request("tray_click", label=label, submenu=submenu)

    def choose(self, label):
        """Clicks on an entry as soon as it is enabled."""
        self.wait_enabled(label)
        self.click(label)


# Seconds for which an icon must not have moved: the tray places it again when its size changes.
STILL = 0.2
# Seconds after which a click that had no effect is repeated.
REPEAT = 10


class EmbeddingTray:
    """A tray that embeds windows: trayer, at the top right of the screen."""

    def __init__(self, client):
        self._client = client
        client.request(
            "start",
            key="trayer",
            environment={},
            output=f"{client.folder}/trayer.log",
            arguments=[
                "trayer",
                "--edge",
                "top",
                "--align",
                "right",
                "--widthtype",
                "request",
                "--height",
                "24",
            ],
        )

    def _place(self):
        """(width, height, left, top) of the embedded icon on the screen; None while there is none."""
        tree = self._client.display.run("xwininfo", "-root", "-tree", check=False).stdout
        # Name and class of an embedded icon are the client's; its place is the last pair of the line.
        match = re.search(
            r'\("quorvane" "[Qq]uorvane"\) +(\d+)x(\d+)\+-?\d+\+-?\d+ +\+(\d+)\+(\d+)', icons(tree)
        )
        return match and tuple(int(part) for part in match.groups())

    def wait_icon(self):
        """Waits until an icon is embedded and does not move any more; returns the position of its middle."""
        end = time.monotonic() + EVENTUALLY
        before = None
        while True:
            place = self._place()
            if place and place == before:
                width, height, left, top = place
                return left + width // 2, top + height // 2
            assert time.monotonic() < end, f"no icon was embedded at a fixed place: {before}, {place}"
            before = place
            time.sleep(STILL)

    def click(self, button=1, times=1):
        left, top = self.wait_icon()
        self._client.display.run(
            "xdotool",
            "mousemove",
            str(left),
            str(top),
            "click",
            "--repeat",
            str(times),
            "--delay",
            "50",
            str(button),
        )

    def open_menu(self):
        """Clicks with the right button until the menu is open."""
        end, again = time.monotonic() + EVENTUALLY, 0
        while not self.menu_open():
            assert time.monotonic() < end, "the menu did not open"
            if time.monotonic() > again:
                self.click(button=3)
                again = time.monotonic() + REPEAT
            time.sleep(POLL)

    def menu_open(self):
        """True when the client shows a window without a frame that is taller than an icon: its menu."""
        tree = self._client.display.run("xwininfo", "-root", "-tree", check=False).stdout
        # Windows with a frame are deeper in the tree, inside the window manager's frames.
        top = re.findall(r'^ {5}0x[0-9a-f]+ .*\("quorvane" "Quorvane"\) +\d+x(\d+)\+', tree, re.MULTILINE)
        return any(int(height) > 100 for height in top)

    def close(self):
        with contextlib.suppress(Exception):
            self._client.signal(15, key="trayer")
        self._client.wait_exit(key="trayer")


def icons(tree):
    """The part of xwininfo's tree below the tray's window."""
    lines = tree.splitlines()
    for number, line in enumerate(lines):
        if '("trayer" "trayer")' in line or '("panel" "trayer")' in line:
            depth = len(line) - len(line.lstrip())
            inside = []
            for following in lines[number + 1 :]:
                if following.strip() and len(following) - len(following.lstrip()) <= depth:
                    break
                inside.append(following)
            return "\n".join(inside)
    return ""
