"""MATE 1.26: the settings daemon, marco and the panel, one after the other as the session starts them."""

from .common import WATCHER, Desktop, Program

NOTIFIER = "/usr/lib/mate-notification-daemon/mate-notification-daemon"

DESKTOP = Desktop(
    name="MATE",
    packages="mate-panel marco mate-indicator-applet mate-control-center-common mate-settings-daemon "
    "mate-session-manager mate-notification-daemon mate-desktop-common",
    programs=(
        # Other desktops' packages have notifiers as well, which would be started at the first notification.
        Program((NOTIFIER,), owns=("org.freedesktop.Notifications",)),
        Program(("mate-session",), owns=(WATCHER,), manages=True),
    ),
    environment={
        "XDG_CURRENT_DESKTOP": "MATE",
        "XDG_SESSION_DESKTOP": "mate",
        "XDG_MENU_PREFIX": "mate-",
        "XDG_SESSION_TYPE": "x11",
        "XDG_CONFIG_DIRS": "/etc/xdg",
        "XDG_DATA_DIRS": "/usr/share/mate:/usr/local/share:/usr/share",
    },
    member="marco",
    panel="mate-panel",
    task_strip=(774, 800),
    tray_strip=(0, 26),
    tray="mate-panel",
    tray_again=("mate-panel",),
    starts_entries=True,
    scaling=("gsettings", "set", "org.mate.font-rendering", "dpi", "{dpi}"),
    notifier="mate-notification-daemon",
    ends_programs=True,
    unchecked=("late and dying tray host", "scale 1, 1.5 and 2"),
    log_out=("mate-session-save", "--force-logout"),
)
