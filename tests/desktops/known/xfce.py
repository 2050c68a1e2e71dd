"""XFCE 4.18: xfce4-session starts xfwm4, the panel, the settings and the desktop, and autostart entries."""

from .common import WATCHER, Desktop, Program

DESKTOP = Desktop(
    name="XFCE",
    packages="xfwm4 xfce4-panel xfce4-settings xfdesktop4 xfce4-session xfce4-notifyd",
    programs=(Program(("xfce4-session",), owns=(WATCHER,), manages=True),),
    environment={
        "XDG_CURRENT_DESKTOP": "XFCE",
        "XDG_SESSION_DESKTOP": "xfce",
        "XDG_MENU_PREFIX": "xfce-",
        "XDG_SESSION_TYPE": "x11",
        "XDG_CONFIG_DIRS": "/etc/xdg",
        "XDG_DATA_DIRS": "/usr/local/share:/usr/share",
    },
    member="xfwm4",
    panel="xfce4-panel",
    tray="xfce4-panel",
    # The session starts a panel again that was killed, but not one that was ended.
    tray_end=("xfce4-panel", "--quit"),
    tray_again=("xfce4-panel",),
    starts_entries=True,
    scaling=("xfconf-query", "-c", "xsettings", "-p", "/Xft/DPI", "-n", "-t", "int", "-s", "{dpi}"),
    notifier="xfce4-notifyd",
    ends_programs=True,
    log_out=("xfce4-session-logout", "--logout", "--fast"),
)
