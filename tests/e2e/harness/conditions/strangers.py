"""Strangers in the Internet who attack the ports of the VPN servers, and sessions beside them."""

import contextlib
import json
import subprocess
import time
from pathlib import Path

from harness.conditions import service_api
from harness.home.deadlines import EVENTUALLY
from world import network, service

_FLOOD = Path(__file__).with_name("flood.py")
_BLOCK = "198.18.7"
TARGET = service.BERLIN.addresses[0]


@contextlib.contextmanager
def _attack(*arguments):
    """While the block runs, flood.py runs; yields a dictionary that has its results after the block."""
    results = {}
    with subprocess.Popen(
        ["ip", "netns", "exec", network.INTERNET, "prlimit", "--nofile=16384"]
        + ["/usr/bin/python3", "-B", str(_FLOOD), *map(str, arguments)],
        stdin=subprocess.PIPE,
        stdout=subprocess.PIPE,
        text=True,
    ) as process:
        try:
            if process.stdout.readline() != "begun\n":
                raise RuntimeError("the attack did not begin")
            yield results
        finally:
            process.stdin.close()
            results.update(json.loads(process.stdout.readline() or "{}"))
            process.wait(EVENTUALLY)


def datagrams(rate=5000, sources=1000, file=None):
    """Datagrams to the UDP server: garbage, or copies of the one in the file."""
    return _attack("datagrams", TARGET, service.UDP_PORT, rate, sources, *([file] if file else []))


@contextlib.contextmanager
def idle_connections(count=5000, sources=50):
    """TCP connections to the TCP server that send nothing."""
    addresses = [f"{_BLOCK}.{number}" for number in range(1, sources + 1)]
    for address in addresses:
        network.inside(network.INTERNET, "ip", "address", "add", f"{address}/32", "dev", "lo")
    with _attack("idle", TARGET, service.TCP_PORT, count, *addresses) as results:
        yield results


def first_datagram(world, configuration):
    """The first datagram that a client with this configuration sends to its server."""
    with contextlib.closing(network.socket_in(network.INTERNET, network.socket.SOCK_DGRAM)) as server:
        server.bind((network.SERVICE_ADDRESS, 0))
        server.settimeout(EVENTUALLY)
        port = server.getsockname()[1]
        elsewhere = configuration.replace(
            f"remote {TARGET} {service.UDP_PORT}\n", f"remote {network.SERVICE_ADDRESS} {port}\n"
        )
        with Session(world, elsewhere, "x", "x"):
            return server.recv(2048)


class Session:
    """The real OpenVPN with a configuration of the service. It changes nothing in its namespace."""

    HARMLESS = ["--dev", "null", "--route-noexec", "--ifconfig-noexec", "--verb", "3"]
    LEFT_OUT = ("dev ", "redirect-gateway", "block-ipv6", "ifconfig-ipv6")

    def __init__(self, world, configuration, user, password):
        folder = world.folder / "honest"
        folder.mkdir(exist_ok=True)
        program = folder / "honest"
        if not program.is_symlink():
            program.symlink_to("/usr/sbin/openvpn")
        lines = [line for line in configuration.splitlines() if not line.startswith(self.LEFT_OUT)]
        (folder / "honest.ovpn").write_text("\n".join(lines) + "\n", encoding="ascii")
        (folder / "pair").touch(mode=0o600)
        (folder / "pair").write_text(f"{user}\n{password}\n", encoding="ascii")
        self._begun = time.monotonic()
        self._process = subprocess.Popen(
            ["ip", "netns", "exec", network.HOME, str(program), "--config", str(folder / "honest.ovpn")]
            + ["--auth-user-pass", str(folder / "pair"), *self.HARMLESS],
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
        )
        self.log = ""

    def seconds_to_come_up(self):
        """Waits for the end of the attempt; None when it failed. OpenVPN limits its own time."""
        for line in self._process.stdout:
            self.log += line
            if "Initialization Sequence Completed" in line:
                return time.monotonic() - self._begun
        return None

    def __enter__(self):
        return self

    def __exit__(self, *_error):
        self._process.terminate()
        self._process.wait(EVENTUALLY)
        self._process.stdout.close()


def session(world, protocol):
    """One session from the server list to the tunnel; returns the seconds of OpenVPN, or None."""
    user, password = service_api.credentials(world.home)
    target = service_api.configuration_target(user, TARGET, protocol.upper())
    configuration = service_api.configuration_of(service_api.get(world.home, target))
    with Session(world, configuration, user, password) as attempt:
        return attempt.seconds_to_come_up()
