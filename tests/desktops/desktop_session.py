"""A user's session of a real desktop in the test network, with the client in it."""

import contextlib
import os
import re
import signal
import subprocess
from pathlib import Path

from harness.drive.client import PROGRAM, Client, DriverError, picture_folder
from harness.drive.display import BareDisplay
from harness.home.deadlines import EVENTUALLY
from harness.drive.tray import TrayIcon
from icons import AMBER, BLUE, GREEN, icons
from windows import MAIN, WaylandWindows, XWindows
from world.accounts import ADA
from world.service import BERLIN
from world.world import contents_from_environment

USER = "joe"
SIZE = (1280, 800)
# Beside the client's own folder the packages install these: the entry in the menu and the icons.
INSTALLED = {
    "com.tallowind.Quorvane.desktop": "/usr/share/applications",
    "icons": "/usr/share/icons/hicolor",
}


PORTALS = ".portals"


class Screen(BareDisplay):
    """The X server in which the desktop is, with the variables of its session."""

    def __init__(self, home, user, desktop):
        self._variables = desktop.environment
        super().__init__(home, user, SIZE)

    @property
    def environment(self):
        # Only the portals of this desktop: its packages are not the only ones here.
        portals = {"XDG_DESKTOP_PORTAL_DIR": f"{self.home.folder(self.user)}/{PORTALS}"}
        return {**super().environment, **portals, **self._variables}

    def icons(self, lines, *colours):
        """The middles of the client's icons in these lines of the screen, left to right."""
        command = ["import", "-window", "root", "-depth", "8", "rgb:-"]
        done = subprocess.run(
            self.home.command(command, self.user, self.environment),
            capture_output=True,
            check=True,
            timeout=EVENTUALLY,
        )
        return icons(done.stdout, SIZE[0], lines, colours)

    def click(self, place, button=1, times=1):
        """Clicks of the pointer, all of them soon enough for a double click."""
        clicks = ["click", "--repeat", str(times), "--delay", "50", str(button)]
        self.run("xdotool", "mousemove", *map(str, place), *clicks)

    def move_away(self):
        """Moves the pointer to where no tip covers anything."""
        self.run("xdotool", "mousemove", str(SIZE[0] // 2), str(SIZE[1] - 100))

    def key(self, *keys):
        self.run("xdotool", "key", *keys)


class Session:
    """A desktop's session from its start to `close`. One at a time in a home."""

    def __init__(self, world, desktop):
        self.world, self.home, self.desktop = world, world.home, desktop
        self._install(contents_from_environment().parent / "resources")
        self._start_system_bus()
        for name, text in desktop.files.items():
            self.home.write(f"{self.home.folder(USER)}/{name}", text, owner=USER)
        self._choose_portals()
        self.screen = self.client = self.tray = self.windows = None
        self._variables = {}
        self.log_in()

    def _install(self, resources):
        for name, target in INSTALLED.items():
            source = resources / name
            for file in [source] if source.is_file() else source.rglob("*.png"):
                inside = f"{target}/{file.relative_to(source if source.is_dir() else source.parent)}"
                self.home.write(inside, file.read_bytes())
        # Desktops pass over an entry whose program does not exist.
        entry = (resources / "com.tallowind.Quorvane.desktop").read_text(encoding="utf-8")
        program = re.search(r"^Exec=(\S+)$", entry, re.MULTILINE)[1]
        if program.startswith("/"):
            self.home.run("mkdir", "-p", str(Path(program).parent))
            self.home.run("ln", "-s", PROGRAM, program)
        # The system's own trigger does this when a package brings icons.
        self.home.run("gtk-update-icon-cache", "-q", "-f", "/usr/share/icons/hicolor")

    def _choose_portals(self):
        for name in self.desktop.portals:
            source = self.home.path(f"/usr/share/xdg-desktop-portal/portals/{name}.portal")
            text = source.read_text(encoding="utf-8")
            self.home.write(f"{self.home.folder(USER)}/{PORTALS}/{name}.portal", text, owner=USER)

    def _start_system_bus(self):
        self.home.run("mkdir", "-p", "/run/dbus")
        self.home.run("dbus-uuidgen", "--ensure=/etc/machine-id")
        # As at the start of a machine: only root may make it.
        self.home.run("install", "-d", "-m", "1777", "/tmp/.ICE-unix")
        self.home.run("dbus-daemon", "--system", "--fork")

    # --- its programs

    def log_in(self):
        """Starts a screen, a session bus and the desktop's programs in their order."""
        self.screen = Screen(self.home, USER, self.desktop)
        self.client = Client(self.world, USER, display=self.screen)
        self.tray = TrayIcon(self.client)
        self.windows = WaylandWindows(self) if self.desktop.wayland else XWindows(self)
        for number, command in enumerate(self.desktop.commands):
            self.run(f"command-{number}", command)
        for program in self.desktop.programs:
            self.begin(program)
        if self.desktop.first_keys:
            self.screen.key(*self.desktop.first_keys)

    def start(self, key, arguments, environment=None):
        """Starts a program on the session bus; its output is in the user's home folder."""
        return self.client.request(
            "start",
            key=key,
            arguments=list(arguments),
            environment=environment or {},
            output=f"{self.client.folder}/{key}.log",
        )

    def run(self, key, arguments, environment=None):
        """Runs a program on the session bus to its end, which must be a success; returns its output."""
        output = self.client.file(f"{key}.log")
        if output.exists():
            output.unlink()
        self.start(key, arguments, environment)
        status = self.client.wait_exit(key)
        assert status == 0, f"{arguments}: {status}\n{self.client.output(key)}"
        return self.client.output(key)

    def begin(self, program):
        """Starts a part of the desktop and waits until it is ready."""
        self.start(program.name, program.arguments, program.environment)
        for name in program.owns:
            self.wait(lambda name=name: self.owned(name), f"{name} is on the bus")
        if program.ends:
            assert self.client.wait_exit(program.name) == 0
        if program.manages:
            self.wait(self._managed, f"{program.name} manages the screen")
        if program.socket:
            folder = f"/run/user/{self.home.uid(USER)[0]}"
            self.wait(self.home.path(f"{folder}/{program.socket}").exists, f"{program.socket} exists")

    def owned(self, name):
        return self.client.request("owned", name=name)

    def _managed(self):
        return "window id" in self.screen.property("root", "_NET_SUPPORTING_WM_CHECK")

    def wait(self, condition, what, timeout=EVENTUALLY):
        self.home.wait_for(condition, what, timeout)

    def processes(self, name):
        """The user's processes with this short name."""
        uid = self.home.uid(USER)[0]
        return [process for process in self.home.processes(name) if process.uid == uid]

    def living(self, name):
        """The home's processes with this name, without those that have ended and wait for their parent."""
        return [process for process in self.home.processes(name) if process.command]

    def kill(self, name):
        """Kills a part of the desktop."""
        found = self.processes(name)
        assert found, f"there is no {name} to kill"
        for process in found:
            os.kill(process.pid, signal.SIGKILL)

    def menu_environment(self):
        """The variables of a program that is started from the desktop's menu."""
        if not self.desktop.member:
            return {"QT_QPA_PLATFORM": "", **self._inner_screen(), **self.desktop.client_environment}
        pid = self.processes(self.desktop.member)[0].pid
        text = Path(f"/proc/{pid}/environ").read_bytes().decode()
        found = dict(line.split("=", 1) for line in text.split("\0") if line)
        return {**found, "QT_QPA_PLATFORM": "", **self.desktop.client_environment}

    def _inner_screen(self):
        """The variables of a compositor's own X server, for programs that draw over X."""
        (server,) = self.processes("Xwayland")
        cookie = server.command[server.command.index("-auth") + 1]
        return {"DISPLAY": server.command[1], "XAUTHORITY": cookie}

    # --- the client

    def start_client(self, *arguments, key="first", **preferences):
        """Starts the client with an administrator, as a user's menu would, and waits until it is ready."""
        self.client.remember_administrator(ADA, location=BERLIN.title, **preferences)
        self.client.start(*arguments, key=key, environment=self.menu_environment())
        self.client.wait_ready(key)

    def end_client(self):
        """Ends every copy of the client and what it left, so that the next test finds the desktop alone."""
        with contextlib.suppress(DriverError):
            self.screen.key("Escape")
        for name in ("quorvane", "openvpn"):
            for process in self.home.processes(name):
                with contextlib.suppress(ProcessLookupError):
                    os.kill(process.pid, signal.SIGTERM if name == "quorvane" else signal.SIGKILL)
            self.wait(lambda name=name: not self.living(name), f"{name} has ended")
        self.world.wait_nothing_lent()

    # --- the desktop's parts

    def elements(self, program=None):
        """What assistive programs see of a program of the desktop."""
        return self.client.request("elements", program=program or self.desktop.panel)

    def showing(self, program=None):
        """The names and descriptions of what a program shows."""
        parts = [part for part in self.elements(program) if part["showing"]]
        return [text for part in parts for text in (part["name"], part["description"]) if text]

    def titles_in_task_bar(self):
        """The client's main window in the task bar: its title once, or nothing."""
        return [name for name in dict.fromkeys(self.showing()) if name == MAIN]

    def task_bar_icons(self):
        """The places of the program's icons in the task bar, which is in the left half of the screen."""
        return [
            place for place in self.screen.icons(self.desktop.task_strip, BLUE) if place[0] < SIZE[0] // 2
        ]

    def notices(self):
        """The texts of the notifications that show."""
        if self.desktop.notices:
            return re.findall(r'"data": *"([^"]*)"', self.run("notices", self.desktop.notices))
        return self.showing(self.desktop.notifier)

    def listed_titles(self):
        """The titles of the windows in the task bar of a Wayland session."""
        return self.showing()

    def set_scale(self, scale):
        """Sets the scale in the desktop's own way; programs that start later have it."""
        values = {"dpi": str(round(96 * scale)), "scale": str(scale)}
        self.run("scale", [part.format(**values) for part in self.desktop.scaling])
        if not self.desktop.wayland:
            dots = f"Xft.dpi:\t{values['dpi']}"
            self.wait(lambda: dots in self.screen.run("xrdb", "-query").stdout, f"the screen has {dots}")

    def keys_are_taken(self):
        """Whether the desktop has had the time to register the combinations of the client."""
        self.client.request("round_trips", key="first", count=20)
        return True

    def _has_tray(self):
        try:
            return self.client.request("tray_host")
        except DriverError:
            return False  # it ended over the question

    def end_tray_host(self):
        self._variables = self.menu_environment()
        if self.desktop.tray_end:
            self.run("tray-end", self.desktop.tray_end)
        else:
            self.kill(self.desktop.tray)
        self.wait(lambda: not self._has_tray(), "the tray is gone")

    def start_tray_host(self):
        self.start(self.desktop.tray, self.desktop.tray_again, self._variables)
        self.wait(self._has_tray, "the tray is back")

    def log_out(self):
        """Ends the desktop's session as its menu does, or by ending its compositor."""
        last = self.desktop.session_program
        if self.desktop.log_out:
            self.start("log-out", self.desktop.log_out)
        else:
            self.client.signal(signal.SIGTERM, key=last)
        self.client.wait_exit(last)
        if not self.desktop.ends_programs and not self.desktop.wayland:
            self.screen.close()

    def tray_icons(self, *colours):
        """The places of the client's icons in the tray, which is in the right half of the screen."""
        found = self.screen.icons(self.desktop.tray_strip, *(colours or (BLUE, AMBER, GREEN)))
        return [place for place in found if place[0] > SIZE[0] // 2]

    def tray_place(self, *colours):
        """Waits until the tray shows the client's icon and does not move it any more; returns its place."""
        place = []
        self.screen.move_away()

        def found():
            before = list(place)
            place[:] = self.tray_icons(*colours)
            return len(place) == 1 and place == before

        self.wait(found, "the tray shows the icon")
        return place[0]

    def choose_first_entry(self):
        """Opens the icon's menu in the tray and chooses its first entry by keys."""
        before = self.screen.picture()
        self.screen.click(self.tray_place(), 3)
        last = [before]

        def opened():
            previous, last[0] = last[0], self.screen.picture()
            return before != last[0] == previous

        self.wait(opened, "the menu is open")
        self.screen.key(*self.desktop.first_entry)

    def show_by_tray(self):
        """Shows the main window by the tray, in this desktop's way."""
        self.screen.click(self.tray_place(), times=2 if self.desktop.tray_shows == "double" else 1)

    def close_window(self, title):
        """Closes the window that has the focus by the desktop's own keys."""
        self.wait(lambda: self.windows.has_focus(title), f"{title} has the focus")
        self.screen.key(self.desktop.close_keys)
        self.wait(lambda: not self.windows.shown(title), f"{title} is closed")

    # --- pictures

    def picture(self, name):
        """Keeps a picture of the whole screen."""
        folder = picture_folder()
        if folder is not None:
            self.screen.screenshot(folder / f"{self.desktop.name}-{name}.png")

    def leave(self):
        """Ends whatever is left of the session, as the end of a login does; `log_in` starts another one."""
        self.client.close()
        uid = self.home.uid(USER)[0]
        for process in self.home.processes():
            if process.uid == uid:
                with contextlib.suppress(ProcessLookupError):
                    os.kill(process.pid, signal.SIGKILL)
        self.wait(
            lambda: not [one for one in self.home.processes() if one.uid == uid and one.command],
            "all programs have ended",
        )
        for file in (self.home.path("/tmp/.X11-unix"), self.home.path("/tmp/.ICE-unix")):
            for socket in file.iterdir():
                socket.unlink()

    def close(self):
        self.leave()
        for process in self.home.processes("dbus-daemon"):
            with contextlib.suppress(ProcessLookupError):
                os.kill(process.pid, signal.SIGTERM)
