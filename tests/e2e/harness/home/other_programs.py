"""The driver's operations on programs that the test did not start itself: parts of a desktop."""

import gi

gi.require_version("Atspi", "2.0")
from elements import children, describe, walk  # noqa: E402 # pylint: disable=wrong-import-position
from gi.repository import Atspi, GLib  # noqa: E402 # pylint: disable=wrong-import-position
from status_items import bus_name_owned  # noqa: E402 # pylint: disable=wrong-import-position


def applications(name):
    desktop = Atspi.get_desktop(0)
    desktop.clear_cache()
    for application in children(desktop):
        try:
            if application.get_name() == name:
                application.set_cache_mask(Atspi.Cache.NONE)
                yield application
        except GLib.Error:
            continue


def place_of(node):
    try:
        where = Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)
    except GLib.Error:
        return None
    return None if where is None else [where.x, where.y, where.width, where.height]


class OtherPrograms:
    """Operations that the driver inherits."""

    def op_owned(self, name):
        """Whether a program on the session bus has this name."""
        return bus_name_owned(name)

    def op_programs(self):
        """The names of all programs that assistive programs see."""
        found = []
        for application in children(Atspi.get_desktop(0)):
            try:
                found.append(application.get_name())
            except GLib.Error:
                continue
        return found

    def op_elements(self, program):
        """Every element of a program, with its place on the screen, that has a name or a description."""
        found = []
        for application in applications(program):
            try:
                for node in walk(application):
                    about = describe(node)
                    if about["name"] or about["description"]:
                        found.append({**about, "place": place_of(node)})
            except GLib.Error:
                continue  # a part of it vanished meanwhile
        return found

    def op_perform(self, program, role, name):
        """Does the first action of an element of a program; false when no such element shows."""
        for application in applications(program):
            for node in walk(application):
                about = describe(node)
                if about["role"] == role and about["name"] == name and about["showing"]:
                    Atspi.Action.do_action(node, 0)
                    return True
        return False
