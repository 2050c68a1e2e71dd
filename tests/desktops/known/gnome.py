"""GNOME Shell 43 on Wayland with the AppIndicator extension, nested in the X screen."""

from .common import ENDS_WITH_COMPOSITOR, NO_HOT_KEYS, WATCHER, Desktop, Program

SOCKET = "wayland-gnome"
INDICATORS = "ubuntu-appindicators@ubuntu.com"


def _setting(schema, key, value):
    return ("gsettings", "set", schema, key, value)


DESKTOP = Desktop(
    name="GNOME",
    packages="gnome-shell gnome-shell-extension-appindicator xdg-desktop-portal-gnome gnome-session-bin gjs",
    commands=(
        _setting("org.gnome.shell", "enabled-extensions", f"['{INDICATORS}']"),
        _setting("org.gnome.shell", "disable-user-extensions", "false"),
        _setting("org.gnome.shell", "welcome-dialog-last-shown-version", "99"),
        _setting("org.gnome.desktop.interface", "enable-animations", "false"),
        _setting("org.gnome.desktop.interface", "toolkit-accessibility", "true"),
    ),
    programs=(
        Program(
            ("gnome-shell", "--nested", "--wayland", "--wayland-display", SOCKET),
            {
                "MUTTER_DEBUG_DUMMY_MODE_SPECS": "1280x800",
                "LIBGL_ALWAYS_SOFTWARE": "1",
                "QT_QPA_PLATFORM": "",
            },
            socket=SOCKET,
            owns=("org.gnome.Shell", "org.freedesktop.Notifications", WATCHER),
        ),
    ),
    environment={
        "XDG_CURRENT_DESKTOP": "GNOME",
        "XDG_SESSION_DESKTOP": "gnome",
        "XDG_SESSION_TYPE": "wayland",
        "XDG_MENU_PREFIX": "gnome-",
        "XDG_DATA_DIRS": "/usr/local/share:/usr/share",
    },
    client_environment={"WAYLAND_DISPLAY": SOCKET},
    wayland=True,
    portals=("gnome",),
    hot_keys=False,
    first_keys=("Escape",),
    panel="gnome-shell",
    tray_shows="double",
    tray="gnome-shell",
    notifier="gnome-shell",
    unchecked=("scale 1, 1.5 and 2", "late and dying tray host", "screen reader"),
    cannot={"icon and name in the task bar": "GNOME Shell has no task bar"},
    remarks={**ENDS_WITH_COMPOSITOR, **NO_HOT_KEYS},
)
