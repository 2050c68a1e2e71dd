"""A tunnel of the home without the client: OpenVPN with a configuration that was requested from the service.
"""

import os
import signal

from harness.home.deadlines import EVENTUALLY

from . import service_api

DEVICE = "tun0"
_UP = "Initialization Sequence Completed"


class Tunnel:
    """OpenVPN in the home; when the constructor returns, the tunnel is up and the address is lent."""

    def __init__(self, home, path, address, protocol="UDP"):
        self.home = home
        user, password = service_api.credentials(home)
        answer = service_api.get(home, service_api.configuration_target(user, address, protocol))
        configuration = service_api.configuration_of(answer)
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
        home.wait_for(lambda: _UP in self.log(), "the tunnel is up")

    def log(self):
        path = self.home.path("/run/tunnel.log")
        return path.read_text(encoding="utf-8") if path.exists() else ""

    def kill(self):
        """Ends OpenVPN as a crash does; the kernel removes its device and the routes through it."""
        for process in self.home.processes("openvpn"):
            os.kill(process.pid, signal.SIGKILL)
        self._process.wait(EVENTUALLY)
        self.home.wait_for(lambda: not self.home.processes("openvpn"), "OpenVPN is gone")
