"""A tunnel of the home's without the client: OpenVPN with a configuration that the service was asked for."""

import os
import re
import signal

from world import network

DEVICE = "tun0"
_API = f"https://{network.API_HOST}/?cmd="
_CALLED_BY = "&ver=1&device=1"
_CALLER = "&systamp=MacOS,user,mobilebox&uniqueid=x"
_UP = "Initialization Sequence Completed"


def ask(home, query):
    """The service's answer to an API request made at home, its parts as lines."""
    done = home.run("curl", "-q", "-fsS", "-4", "--cacert", "/etc/quorvane/ca.crt", _API + query, user="joe")
    return done.stdout.replace("<br />", "\n")


def fetch(home, address, protocol="UDP"):
    """Asks for one address; the configuration and its one-time user and password."""
    listed = ask(home, f"MRTSL{_CALLED_BY}{_CALLER}")
    user, password = (re.search(rf"^{key}:\s*(\S+)", listed, re.M).group(1) for key in ("VPNUser", "VPNPass"))
    answer = ask(
        home, f"VPNC{_CALLED_BY}&server=571&desiredip={address}&sessid={user}&proto={protocol}{_CALLER}"
    )
    return answer.partition("VPNConfig: ")[2], user, password


class Tunnel:
    """OpenVPN at home, up with the address lent when the constructor returns."""

    def __init__(self, home, path, address, protocol="UDP"):
        self.home = home
        configuration, user, password = fetch(home, address, protocol)
        home.write(path, configuration, owner="joe", mode=0o600)
        home.write("/run/tunnel.pair", f"{user}\n{password}\n", mode=0o600)
        self._process = home.popen(
            "/usr/sbin/openvpn",
            "--config",
            path,
            "--auth-user-pass",
            "/run/tunnel.pair",
            "--log",
            "/run/tunnel.log",
        )
        home.wait_for(lambda: _UP in self.log(), 20, "the tunnel is up")

    def log(self):
        path = self.home.path("/run/tunnel.log")
        return path.read_text(encoding="utf-8") if path.exists() else ""

    def kill(self):
        """Ends OpenVPN as a crash does; the kernel takes its device and the routes through it."""
        for process in self.home.processes("openvpn"):
            os.kill(process.pid, signal.SIGKILL)
        self._process.wait(5)
        self.home.wait_for(lambda: not self.home.processes("openvpn"), 5, "OpenVPN is gone")
