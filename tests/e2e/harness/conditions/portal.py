"""The real desktop portal on the session bus of a client, and a desktop of the test behind it."""

import json

from world import home

PORTAL = "/usr/libexec/xdg-desktop-portal"
DESCRIPTION = """[portal]
DBusName=org.freedesktop.impl.portal.desktop.quorvane
Interfaces=org.freedesktop.impl.portal.{interface};
UseIn=quorvane
"""


class PortalDesktop:
    """A desktop that offers one interface to the portal: `backend`, a program in harness/home/fakes.

    The back end writes a JSON line for each call to its first argument.
    """

    def __init__(self, world, client, interface, backend):
        self.world, self.client = world, client
        self.backend = f"{home.HARNESS}/fakes/{backend}"
        self.log = f"{client.folder}/desktop.log"
        self.portals = 0
        world.home.write(f"{client.folder}/portals/quorvane.portal", DESCRIPTION.format(interface=interface))

    def start(self, *arguments):
        self.client.request(
            "start",
            key="desktop",
            arguments=["/usr/bin/python3", self.backend, self.log, *arguments],
            environment={},
            output=f"{self.client.folder}/desktop.out",
        )
        self.world.home.wait_for(lambda: self.world.home.path(self.log).exists(), "the desktop has started")

    def start_portal(self):
        """Starts the portal, and returns the key of its process."""
        self.portals += 1
        key = f"portal-{self.portals}"
        output = f"{self.client.folder}/{key}.log"
        self.client.request(
            "start",
            key=key,
            arguments=[PORTAL, "--verbose", "--replace"],
            environment={
                "XDG_DESKTOP_PORTAL_DIR": f"{self.client.folder}/portals",
                "XDG_CURRENT_DESKTOP": "quorvane",
            },
            output=output,
        )
        self.world.home.wait_for(
            lambda: "org.freedesktop.portal.Desktop acquired"
            in self.world.home.path(output).read_text(encoding="utf-8"),
            "the portal has its name",
        )
        return key

    def calls(self, name):
        """The calls of this name that the desktop has received."""
        lines = self.world.home.path(self.log).read_text(encoding="utf-8").splitlines()
        return [call for call in map(json.loads, lines) if call["call"] == name]
