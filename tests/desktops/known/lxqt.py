"""LXQt 1.2: openbox, the notifications and the panel."""

from .common import ENDS_WITH_COMPOSITOR, WATCHER, Desktop, Program

PANEL = """[General]
iconTheme=breeze
panels=panel1

[panel1]
desktop=0
panelSize=32
iconSize=22
lineCount=1
length=100
percent=true
position=Bottom
alignment=-1
plugins=mainmenu,taskbar,statusnotifier,worldclock

[mainmenu]
type=mainmenu

[taskbar]
type=taskbar

[statusnotifier]
type=statusnotifier

[worldclock]
type=worldclock
"""

DESKTOP = Desktop(
    name="LXQt",
    packages="lxqt-panel openbox lxqt-themes lxqt-session lxqt-notificationd lxqt-qtplugin",
    programs=(Program(("lxqt-session",), owns=(WATCHER,), manages=True),),
    environment={
        "XDG_CURRENT_DESKTOP": "LXQt",
        "XDG_SESSION_DESKTOP": "LXQt",
        "XDG_MENU_PREFIX": "lxqt-",
        "XDG_SESSION_TYPE": "x11",
        "XDG_CONFIG_DIRS": "/etc/xdg:/usr/share",
        "XDG_DATA_DIRS": "/usr/local/share:/usr/share",
        "QT_QPA_PLATFORMTHEME": "lxqt",
        "QT_QPA_PLATFORM": "",
    },
    files={
        ".config/lxqt/session.conf": "[General]\nwindow_manager=openbox\n",
        ".config/lxqt/lxqt.conf": "[General]\nicon_theme=breeze\ntheme=frost\n",
        ".config/lxqt/panel.conf": PANEL,
    },
    member="openbox",
    panel="lxqt-panel",
    task_strip=(760, 800),
    tray_strip=(760, 800),
    tray="lxqt-panel",
    tray_again=("lxqt-panel",),
    starts_entries=True,
    scaling=("sh", "-c", "echo Xft.dpi: {dpi} | xrdb -merge"),
    unchecked=("late and dying tray host",),
    remarks=ENDS_WITH_COMPOSITOR,
    notifier="lxqt-notificationd",
    log_out=(
        *("gdbus", "call", "--session", "--dest", "org.lxqt.session", "--object-path", "/LXQtSession"),
        *("--method", "org.lxqt.session.logout"),
    ),
)
