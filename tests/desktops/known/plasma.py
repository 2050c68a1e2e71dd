"""Plasma 5.27 on Wayland: KWin, nested in the X screen, with the global keys; the shell and its portal."""

from .common import ENDS_WITH_COMPOSITOR, WATCHER, Desktop, Program

LIBEXEC = "/usr/lib/x86_64-linux-gnu/libexec"
SOCKET = "wayland-plasma"
WAYLAND = {"WAYLAND_DISPLAY": SOCKET, "QT_QPA_PLATFORM": "wayland", "QT_QUICK_BACKEND": "software"}
# What the session's service files and the portal get: they are started by the bus.
SHARED = ["WAYLAND_DISPLAY=" + SOCKET, "QT_QPA_PLATFORM=wayland", "QT_QUICK_BACKEND=software"]
KWIN = "kwin_wayland --x11-display {display} --width 1280 --height 800 --socket {socket} --xwayland"

DESKTOP = Desktop(
    name="Plasma",
    packages="kwin-wayland plasma-workspace plasma-desktop xdg-desktop-portal-kde breeze breeze-icon-theme "
    "libkf5globalaccel-bin kde-cli-tools qdbus-qt5 libkf5screen-bin qtwayland5",
    programs=(
        Program(
            ("sh", "-c", "exec " + KWIN.format(display="$DISPLAY", socket=SOCKET)),
            {"LIBGL_ALWAYS_SOFTWARE": "1", "KWIN_COMPOSE": "Q", "QT_QPA_PLATFORM": ""},
            called="kwin_wayland",
            socket=SOCKET,
            owns=("org.kde.KWin", "org.kde.kglobalaccel"),
        ),
        Program(("dbus-update-activation-environment", *SHARED), ends=True),
        Program(("/usr/bin/kded5",), WAYLAND, owns=("org.kde.kded5",)),
        Program(("/usr/bin/plasmashell",), WAYLAND, owns=("org.kde.plasmashell", WATCHER)),
        Program(
            (f"{LIBEXEC}/xdg-desktop-portal-kde",), WAYLAND, owns=("org.freedesktop.impl.portal.desktop.kde",)
        ),
        Program(("/usr/libexec/xdg-desktop-portal", "-v"), WAYLAND, owns=("org.freedesktop.portal.Desktop",)),
    ),
    environment={
        "XDG_CURRENT_DESKTOP": "KDE",
        "XDG_SESSION_DESKTOP": "KDE",
        "KDE_FULL_SESSION": "true",
        "KDE_SESSION_VERSION": "5",
        "XDG_SESSION_TYPE": "wayland",
        "XDG_MENU_PREFIX": "plasma-",
        "XDG_CONFIG_DIRS": "/etc/xdg",
        "XDG_DATA_DIRS": "/usr/local/share:/usr/share",
    },
    wayland=True,
    portals=("kde",),
    client_environment={"WAYLAND_DISPLAY": SOCKET, "DISPLAY": ""},
    member="plasmashell",
    panel="plasmashell",
    task_strip=(750, 800),
    tray_strip=(750, 800),
    tray="kded5",
    tray_again=("/usr/bin/kded5",),
    notifier="plasmashell",
    unchecked=("scale 1, 1.5 and 2", "late and dying tray host"),
    remarks=ENDS_WITH_COMPOSITOR,
)
