"""The trays of a desktop, as a test sees them."""

import contextlib
import re
import time


class TrayIcon:
    """The client's item in a status notifier host, which comes and goes as the test says."""

    def __init__(self, client):
        self._client = client

    def appear(self):
        self._client.ask("tray_appear")

    def vanish(self):
        self._client.ask("tray_vanish")

    def item(self):
        return self._client.ask("tray_item")

    def wait_item(self, timeout=10, **until):
        """Waits until the item is there with these values; the item."""
        end = time.monotonic() + timeout
        while True:
            found = self.item()
            if found is not None and all(found[key] == value for key, value in until.items()):
                return found
            assert time.monotonic() < end, f"the item did not become {until}; last seen: {found}"
            time.sleep(0.02)

    def activate(self):
        self._client.ask("tray_activate")

    def menu(self):
        """The entries' labels in order, "-" for separators."""
        return [entry[0] if entry else "-" for entry in self._client.ask("tray_menu")]

    def enabled(self, label):
        return dict(entry for entry in self._client.ask("tray_menu") if entry)[label]

    def wait_enabled(self, label, timeout=15):
        end = time.monotonic() + timeout
        while label not in self.menu() or not self.enabled(label):
            assert time.monotonic() < end, f"the item {label} was not enabled: {self.menu()}"
            time.sleep(0.02)

    def click(self, label):
        self._client.ask("tray_click", label=label)


class EmbeddingTray:
    """A tray that embeds windows: trayer, at the top right of the screen."""

    def __init__(self, client):
        self._client = client
        client.ask(
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

    def wait_icon(self, timeout=15):
        """Waits until an icon is embedded; where its middle is."""
        end = time.monotonic() + timeout
        while True:
            found = self._client.display.run("xwininfo", "-root", "-tree", check=False).stdout
            # Name and class of an embedded icon are the client's; its place is the last pair of the line.
            match = re.search(
                r'\("quorvane" "[Qq]uorvane"\) +(\d+)x(\d+)\+-?\d+\+-?\d+ +\+(\d+)\+(\d+)', icons(found)
            )
            if match:
                width, height, left, top = (int(part) for part in match.groups())
                return left + width // 2, top + height // 2
            assert time.monotonic() < end, f"no icon was embedded:\n{found}"
            time.sleep(0.05)

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

    def menu_open(self):
        """Whether a window of the client's without a frame, taller than an icon, is on the screen: its menu."""
        tree = self._client.display.run("xwininfo", "-root", "-tree", check=False).stdout
        # Framed windows lie deeper, inside of the window manager's frames.
        top = re.findall(r'^ {5}0x[0-9a-f]+ .*\("quorvane" "Quorvane"\) +\d+x(\d+)\+', tree, re.MULTILINE)
        return any(int(height) > 100 for height in top)

    def close(self):
        with contextlib.suppress(Exception):
            self._client.signal(15, key="trayer")
        self._client.wait_exit(key="trayer")


def icons(tree):
    """The part of xwininfo's tree with what lies inside of the tray's window."""
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
