"""sway 1.7 on Wayland with waybar and mako, nested in the X screen."""

from .common import ENDS_WITH_COMPOSITOR, NO_HOT_KEYS, WATCHER, Desktop, Program

SOCKET = "wayland-1"
CONFIGURATION = """set $mod Mod4
font pango:DejaVu Sans 10
output * resolution 1280x800
bindsym $mod+Shift+q kill
for_window [app_id="com.tallowind.Quorvane"] floating enable
exec mako
bar {
    position top
    swaybar_command waybar
}
"""
BAR = """{
    "layer": "top",
    "position": "top",
    "height": 30,
    "modules-left": ["wlr/taskbar"],
    "modules-right": ["tray", "clock"],
    "wlr/taskbar": {"format": "{icon} {title}", "icon-size": 20, "all-outputs": true, "on-click": "activate"},
    "tray": {"icon-size": 20, "spacing": 8}
}
"""

DESKTOP = Desktop(
    name="sway",
    packages="sway waybar grim wtype xdg-desktop-portal-wlr mako-notifier swaybg",
    programs=(
        Program(
            ("sway",),
            {"WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman", "WLR_NO_HARDWARE_CURSORS": "1"},
            socket=SOCKET,
            owns=(WATCHER, "org.freedesktop.Notifications"),
        ),
    ),
    environment={
        "XDG_CURRENT_DESKTOP": "sway",
        "XDG_SESSION_DESKTOP": "sway",
        "XDG_SESSION_TYPE": "wayland",
        "XDG_DATA_DIRS": "/usr/local/share:/usr/share",
        "QT_QPA_PLATFORM": "",
    },
    files={".config/sway/config": CONFIGURATION, ".config/waybar/config": BAR},
    wayland=True,
    portals=("wlr",),
    hot_keys=False,
    member="waybar",
    panel="waybar",
    close_keys="super+shift+q",
    tray="waybar",
    tray_again=("swaymsg", "reload"),
    notices=("makoctl", "list"),
    unchecked=(
        "scale 1, 1.5 and 2",
        "late and dying tray host",
        "icon and name in the task bar",
        "tray item and menu in every phase",
    ),
    remarks={**ENDS_WITH_COMPOSITOR, **NO_HOT_KEYS},
)
