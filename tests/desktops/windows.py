"""The client's windows as a desktop shows them: from the X server, or on Wayland by assistive means."""

import re

MAIN, ABOUT, ALERT, SETTINGS = "Quorvane (ver.1.0.0)", "About Quorvane", "Quorvane", "Quorvane Settings"


def _pattern(title):
    return f"^{re.escape(title)}$"


class XWindows:
    """Windows that an X11 window manager has."""

    def __init__(self, session):
        self._session, self._screen = session, session.screen

    def shown(self, title):
        """Whether the window is on the screen, neither hidden nor minimised."""
        return self._screen.on_screen(_pattern(title))

    def listed(self, title):
        """Whether the window manager has the window, minimised or not; the task bar shows these."""
        return bool(self._numbers(title))

    def _numbers(self, title):
        return self._screen.listed(f'= "{re.escape(title)}"$')

    def has_focus(self, title):
        return self._screen.active() in self._numbers(title)

    def in_front(self, title):
        """Whether the window is above all others and has the focus."""
        stacking = self._screen.property("root", "_NET_CLIENT_LIST_STACKING")
        ordinary = [
            str(int(number, 16))
            for number in re.findall(r"0x[0-9a-f]+", stacking)
            if "_DOCK" not in self._screen.property(number, "_NET_WM_WINDOW_TYPE")
        ]
        return self.has_focus(title) and ordinary[-1:] == self._numbers(title)

    def size(self, title):
        """Width and height of the window on the screen, in the screen's pixels."""
        text = self._screen.run("xwininfo", "-id", self._numbers(title)[0]).stdout
        return tuple(int(re.search(rf"{side}: (\d+)", text)[1]) for side in ("Width", "Height"))


class WaylandWindows:
    """Windows of a Wayland client. The compositor reports the focus and what shows to the client."""

    def __init__(self, session):
        self._session, self._client = session, session.client

    def _frame(self, title):
        found = [
            part
            for part in self._client.nodes()
            if part["role"] in ("frame", "dialog", "alert") and part["name"] == title
        ]
        return next((part for part in found if part["showing"]), None)

    def shown(self, title):
        return self._frame(title) is not None

    def listed(self, title):
        return any(title in name for name in self._session.listed_titles())

    def has_focus(self, title):
        frame = self._frame(title)
        return bool(frame and frame["active"])

    def in_front(self, title):
        return self.has_focus(title)
