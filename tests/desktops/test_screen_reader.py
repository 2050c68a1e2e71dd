"""The main job with a screen reader: keys, no pointer, and what Orca says."""

import re
import signal

import pytest

from harness.drive.client import picture_folder
from harness.observe.outcomes import check_hidden, check_not_hidden

# Controls of the main window, at most.
FURTHEST = 25


class Reader:
    """Orca. Its debug file has a line for everything that it says, without a speech synthesiser too.

    Orca buffers what it writes to a file. To a terminal it writes each line at once, and script(1) copies it.
    """

    def __init__(self, session):
        self.session = session
        self.file = f"{session.client.folder}/orca.debug"
        self.heard = 0
        command = "orca --replace --debug-file=/dev/tty"
        session.start("orca", ["script", "-q", "-f", "-c", command, self.file])
        self.wait("Screen reader on")

    def said(self):
        """Everything that was said so far."""
        path = self.session.home.path(self.file)
        text = path.read_text(encoding="utf-8", errors="replace") if path.exists() else ""
        return re.findall(r"SPEECH OUTPUT: '(.*?)'(?:\{|\s*$)", text, re.MULTILINE)

    def wait(self, *parts):
        """Waits until each part was said, in this order, after what was waited for before."""
        for part in parts:
            try:
                self.session.wait(
                    lambda part=part: any(part in text for text in self.said()[self.heard :]),
                    f"the screen reader says {part!r}",
                )
            except TimeoutError as late:
                raise AssertionError(f"{part!r} is not in {self.said()[self.heard :]}") from late
            said = self.said()[self.heard :]
            self.heard += next(i for i, text in enumerate(said) if part in text) + 1

    def focus(self):
        """The control of the client that has the focus."""
        found = [part for part in self.session.client.nodes() if part["focused"]]
        return (found[-1]["role"], found[-1]["name"]) if found else None

    def press(self, key, *parts):
        """Presses the key; the parts are said after it."""
        self.heard = len(self.said())
        self.session.screen.key(key)
        self.wait(*parts)

    def reach(self, key, name, *parts):
        """Presses the key until the control has the focus; then its name and the parts are said."""
        for _ in range(FURTHEST):
            before = self.focus()
            self.heard = len(self.said())
            self.session.screen.key(key)
            self.session.wait(lambda before=before: self.focus() not in (before, None), "the focus moves")
            if self.focus()[1] == name:
                self.wait(" ".join((name, *parts)))
                return
        raise AssertionError(f"{name!r} was not reached")

    def keep(self):
        """Keeps what was said beside the pictures."""
        if folder := picture_folder():
            folder.mkdir(parents=True, exist_ok=True)
            text = "".join(f"{line}\n" for line in self.said())
            (folder / f"{self.session.desktop.name}-screen-reader.txt").write_text(text, encoding="utf-8")


def place_of_pointer(session):
    return session.screen.run("xdotool", "getmouselocation").stdout.split(" window:")[0]


@pytest.mark.check("screen reader")
def test_main_job(session):
    """Every control is named with its role and state; presses act, and their effects are said."""
    reader = Reader(session)
    session.start_client()
    reader.wait("Quorvane (ver.")
    untouched = place_of_pointer(session)
    reader.reach("Tab", "Always Use Same IP Address", "check box not checked")
    reader.reach("Tab", "Change IP every", "check box not checked")
    reader.reach("Tab", "US only", "check box not checked")
    reader.press("space", "checked")
    reader.press("space", "not checked")
    reader.reach("shift+Tab", "Quorvane", "push button")
    reader.wait("Hides your real IP")
    session.screen.key("space")
    address = check_hidden(session.client)
    reader.reach("Tab", "Change IP", "push button")
    reader.reach("shift+Tab", "Stop Hiding IP", "push button")
    session.client.start(key="second")
    reader.wait("Quorvane is already running.")
    session.screen.key("Return")
    assert session.client.wait_exit("second") == 0
    assert check_hidden(session.client) == address
    # Not every desktop makes Orca name the control that has the focus again.
    reader.reach("Tab", "Change IP", "push button")
    reader.reach("shift+Tab", "Stop Hiding IP", "push button")
    session.screen.key("space")
    session.client.wait_not_hidden()
    check_not_hidden(session.client)
    assert place_of_pointer(session) == untouched
    reader.keep()
    session.client.signal(signal.SIGTERM, key="orca")
