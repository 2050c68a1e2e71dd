"""Puts fakes of the machine's resolver tools into a home.

They replace the real programs in the home's /usr/bin, because networksetup uses no other folder.
"""

from world import home as homes


def _cover_programs(home, *names):
    """Covers the named programs in /usr/bin by fakes; the others stay visible."""
    folder = "/run/fakes"
    home.run("mkdir", "-p", folder)
    for name in names:
        home.run("cp", "-p", f"{homes.HARNESS}/fakes/{name}", folder)
    home.run("mount", "-t", "overlay", "overlay", "-o", f"lowerdir={folder}:/usr/bin", "/usr/bin")


class NetworkManager:
    """A running NetworkManager with one wired and one wireless profile."""

    STATE = "/run/nmcli"

    def __init__(self, home, wired=None, wireless=None):
        """The servers of each profile, separated by blanks; None: the machine has no such profile."""
        self._home = home
        _cover_programs(home, "nmcli")
        self._profile("Ethernet", "802-3-ethernet", "eth0", wired)
        self._profile("Wi-Fi", "802-11-wireless", "wlan0", wireless)

    def _profile(self, name, kind, device, servers):
        if servers is None:
            return
        files = {
            "uuid": f"uuid-of-{device}",
            "type": kind,
            "active": "yes",
            "device": device,
            "ipv4.dns": servers,
            "ipv6.dns": "",
            "ignore-auto": "yes" if servers else "no",
        }
        for file, text in files.items():
            self._home.write(f"{self.STATE}/{name}/{file}", text + "\n")

    def servers(self, name):
        return self._home.path(f"{self.STATE}/{name}/ipv4.dns").read_text(encoding="utf-8").strip()

    def changes(self):
        path = self._home.path(f"{self.STATE}/changes")
        return path.read_text(encoding="utf-8").splitlines() if path.exists() else []


class Resolved:
    """A running systemd-resolved to which /etc/resolv.conf leads."""

    STATE = "/run/resolvectl"

    def __init__(self, home, servers):
        self._home = home
        _cover_programs(home, "resolvectl")
        home.write(f"{self.STATE}/eth0", servers + "\n")
        home.write("/etc/resolv.conf", "nameserver 127.0.0.53\n")

    def servers(self):
        return self._home.path(f"{self.STATE}/eth0").read_text(encoding="utf-8").strip()

    def changes(self):
        path = self._home.path(f"{self.STATE}/changes")
        return path.read_text(encoding="utf-8").splitlines() if path.exists() else []
