"""What the tests know of a desktop, and the packages that every one of them needs."""

import dataclasses

# The client's and the driver's, as scripts/packages.txt has them for the machine.
PACKAGES = """
libqt6widgets6 libqt6dbus6 libqt6network6 libqt6svg6 qt6-qpa-plugins qt6-wayland qt6-translations-l10n
libplist3 libsecret-1-0 libcurl4 libmnl0 libxcb-xkb1 libxcb-xtest0 libxcb-record0
openvpn sudo psmisc iproute2 curl util-linux procps passwd ca-certificates gnome-keyring
python3 python3-gi python3-dbus python3-pyatspi gir1.2-atspi-2.0 at-spi2-core
dbus dbus-x11 libglib2.0-bin xdg-desktop-portal libnotify-bin
xvfb xauth x11-utils x11-xkb-utils x11-xserver-utils xdotool imagemagick xwayland libgl1-mesa-dri
fonts-dejavu-core hicolor-icon-theme adwaita-icon-theme orca
"""

# Remarks of several desktops.
ENDS_WITH_COMPOSITOR = {
    "log-out while hidden": "the end of the display takes the client with it, as a kill does: the IP stays "
    "hidden until the next start, which ends the tunnel"
}
NO_HOT_KEYS = {"global hot keys": "the desktop has none; the pane of the hot keys says so"}

# The name by which every tray of status notifier items is known on the session bus.
WATCHER = "org.kde.StatusNotifierWatcher"


@dataclasses.dataclass(frozen=True)
class Program:
    """One program that a desktop consists of, started by the tests."""

    arguments: tuple
    environment: dict = dataclasses.field(default_factory=dict)
    # Names on the session bus that it has when it is ready.
    owns: tuple = ()
    # It is ready when the X screen has a window manager.
    manages: bool = False
    # It ends by itself before the next program is started.
    ends: bool = False
    # A file in the user's runtime folder that exists when it is ready.
    socket: str = ""

    # What the tests call it; without a name it is that of its file.
    called: str = ""

    @property
    def name(self):
        return self.called or self.arguments[0].rpartition("/")[2]


@dataclasses.dataclass(frozen=True)
class Desktop:  # pylint: disable=too-many-instance-attributes # a description has many lines
    """One desktop: how it starts, and where the tests find its parts."""

    name: str
    packages: str
    programs: tuple
    # Of the whole session.
    environment: dict
    # Of the client alone; empty on X11.
    client_environment: dict = dataclasses.field(default_factory=dict)
    # Files in the user's home folder, and commands on the session bus, before the first program.
    files: dict = dataclasses.field(default_factory=dict)
    commands: tuple = ()
    # The back ends of the desktop portal that belong to it.
    portals: tuple = ()
    wayland: bool = False
    # The process whose variables a program has that is started from the desktop's menu.
    member: str = ""
    # The keys that close what the desktop shows at its start.
    first_keys: tuple = ()
    # The keys that close the window with the focus.
    close_keys: str = "alt+F4"
    # The program with the task bar, by its name for assistive programs.
    panel: str = ""
    # The process with the tray, the command that ends it (without one it is killed), and the one that
    # starts it.
    tray: str = ""
    tray_end: tuple = ()
    tray_again: tuple = ()
    # The lines of the screen, from and to, with the task bar and with the tray.
    task_strip: tuple = (0, 30)
    tray_strip: tuple = (0, 30)
    # How the tray shows the window: "click", or "double" for two clicks.
    tray_shows: str = "click"
    # The keys that choose the first entry of the tray's open menu.
    first_entry: tuple = ("Down", "Return")
    # The process that shows notifications, and its name for assistive programs.
    notifier: str = ""
    # The command that lists the notifications, of a notifier without an accessible window.
    notices: tuple = ()
    # Whether programs can have global hot keys.
    hot_keys: bool = True
    # Whether the desktop's own programs start the entries of the autostart folder here.
    starts_entries: bool = False
    # The command, with {dpi} or {scale} in it, that sets the scale; empty for another way.
    scaling: tuple = ()
    # The command that ends the session as its menu does; without one the compositor is ended.
    log_out: tuple = ()
    # Whether the session lets its programs end by themselves at a log-out.
    ends_programs: bool = False
    # Checks that the tests cannot make on this desktop yet.
    unchecked: tuple = ()
    # What the desktop itself cannot do: the name of a check, and why.
    cannot: dict = dataclasses.field(default_factory=dict)
    # What a check means on this desktop where it means less than elsewhere.
    remarks: dict = dataclasses.field(default_factory=dict)

    @property
    def session_program(self):
        """The name of the program with which the session ends: its manager, or the compositor."""
        return self.programs[0 if self.wayland else -1].name
