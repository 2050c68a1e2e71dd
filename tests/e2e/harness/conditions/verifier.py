"""An OpenVPN server on the gateway that records the user name and password of each login and refuses it."""

import os
import subprocess
import time

from harness.home.deadlines import EVENTUALLY, POLL
from world import network

ADDRESS, PORT = "203.0.113.250", 1300
# OpenVPN runs it with the name of a file: its first line is the user name, its second the password.
SCRIPT = """#!/bin/sh
cp "$1" "{seen}.new" && mv "{seen}.new" "{seen}"
exit 1
"""


class Verifier:
    """The server, which listens when the constructor returns. `close` ends it."""

    def __init__(self, world):
        self._folder = world.folder / "verifier"
        self._folder.mkdir()
        self._keys = world.authority.folder
        self._seen = self._folder / "seen"
        script = self._folder / "verify"
        script.write_text(SCRIPT.format(seen=self._seen), encoding="utf-8")
        script.chmod(0o700)
        # Under another name, so that it is not counted among the OpenVPN processes of a client.
        program = self._folder / "vpnverify"
        program.symlink_to("/usr/sbin/openvpn")
        settings = {
            "dev": "tun",
            "proto": "udp",
            "local": ADDRESS,
            "port": PORT,
            "server": "10.77.0.0 255.255.255.0",
            "topology": "subnet",
            "ca": self._keys / "ca.crt",
            "cert": self._keys / "vpn.crt",
            "key": self._keys / "vpn.key",
            "dh": "none",
            "verify-client-cert": "none",
            "script-security": 2,
            "auth-user-pass-verify": f"{script} via-file",
            "tmp-dir": self._folder,
        }
        configuration = self._folder / "server.ovpn"
        configuration.write_text(
            "".join(f"{key} {value}\n" for key, value in settings.items()), encoding="utf-8"
        )
        self._log = self._folder / "server.log"
        self._process = subprocess.Popen(
            [
                "ip",
                "netns",
                "exec",
                network.GATEWAY,
                str(program),
                "--config",
                str(configuration),
                "--log",
                str(self._log),
            ],
            stdin=subprocess.DEVNULL,
        )
        self._wait(
            lambda: self._log.exists()
            and "Initialization Sequence Completed"
            in self._log.read_text(encoding="utf-8", errors="replace"),
            "the server is up",
        )

    def _wait(self, condition, what):
        end = time.monotonic() + EVENTUALLY
        while not condition():
            if time.monotonic() > end or self._process.poll() is not None:
                raise TimeoutError(f"{what}: not within {EVENTUALLY} s")
            time.sleep(POLL)

    def configuration(self):
        """A configuration with which a client connects to this server."""
        authority = (self._keys / "ca.crt").read_text(encoding="utf-8")
        return (
            f"client\ndev tun\nproto udp\nremote {ADDRESS} {PORT}\nnobind\nauth-user-pass\nauth-nocache\n"
            f"remote-cert-tls server\nconnect-retry-max 1\n<ca>\n{authority}</ca>\n"
        )

    def wait_pair(self):
        """Waits for a login; returns its user name and password."""
        self._wait(self._seen.exists, "a client's user name and password")
        user, password = self._seen.read_text(encoding="utf-8").split("\n")[:2]
        return user, password

    def close(self):
        self._process.terminate()
        self._process.wait(EVENTUALLY)
        assert not os.path.exists(f"/proc/{self._process.pid}")
