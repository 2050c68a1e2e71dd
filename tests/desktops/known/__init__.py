"""The desktops, one file each: what is installed for it, how it starts and what it can do."""

from . import common, gnome, lxqt, mate, plasma, sway, xfce

DESKTOPS = tuple(module.DESKTOP for module in (xfce, mate, lxqt, plasma, sway, gnome))


def packages():
    """Every package of the root file system, sorted."""
    lists = [common.PACKAGES, *(desktop.packages for desktop in DESKTOPS)]
    return sorted({name for one in lists for name in one.split()})
