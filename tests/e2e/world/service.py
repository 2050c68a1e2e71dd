"""quorvane-service in the Internet of the test network, with its OpenVPN servers on the gateway."""

import contextlib
import datetime
import ipaddress
import json
import os
import re
import signal
import socket
import subprocess
import time
from dataclasses import dataclass
from pathlib import Path

from harness.home.deadlines import EVENTUALLY, POLL

from . import machine, network

UDP_PORT, TCP_PORT = 1194, 443
TABLE, LENT_MAP = "quorvane", "lent"
# The requests of the client and of its scripts. After any other one the service ends with exit status 3.
ANNOUNCED = (r"/\?cmd=(MRTSL|VPNC)&ver=[^&]*&device=1&.*", r"/ip")
API_NAMES = f"DNS:{network.API_HOST},DNS:{network.WEB_HOST},IP:{network.SERVICE_ADDRESS}"


@dataclass(frozen=True)
class Location:
    """One group of lent addresses; `title` is what the client's pop-up shows for it."""

    country_code: str
    country: str
    code: str
    city: str
    addresses: tuple

    @property
    def title(self):
        return f"{self.country} {self.city}"


def _pool(*last_numbers):
    return tuple(f"203.0.113.{number}" for number in last_numbers)


LOCATIONS = (
    Location("US", "United States", "NYC", "New York", _pool(10, 11, 12, 13)),
    Location("US", "United States", "LAX", "Los Angeles", _pool(20, 21)),
    Location("GB", "United Kingdom", "LON", "London", _pool(30, 31, 32)),
    Location("DE", "Germany", "BER", "Berlin", _pool(40, 41, 42, 43)),
    Location("FR", "France", "PAR", "Paris", _pool(50, 51)),
    Location("NL", "Netherlands", "AMS", "Amsterdam", _pool(60)),
    Location("JP", "Japan", "TYO", "Tokyo", _pool(70, 71, 72)),
    Location("SE", "Sweden", "STO", "Stockholm", _pool(80)),
    Location("BR", "Brazil", "SAO", "Sao Paulo", _pool(90, 91)),
)
BERLIN = next(place for place in LOCATIONS if place.city == "Berlin")


def location_of(address):
    """The location that lends the address, or None."""
    return next((place for place in LOCATIONS if address in place.addresses), None)


def groups(places):
    """The setting "groups" of a service that has these locations."""
    return [
        {
            "country_code": place.country_code,
            "country": place.country,
            "location_code": place.code,
            "city": place.city,
            "addresses": list(place.addresses),
        }
        for place in places
    ]


@dataclass(frozen=True)
class Request:
    """One request from the service's log; the target is in the form in which it was received."""

    peer: str
    target: str
    time: float  # seconds since 1970, by the machine's clock

    def parameter(self, key):
        """The raw value of the first occurrence of a query key, or None."""
        found = re.search(rf"[?&]{re.escape(key)}=([^&]*)", self.target)
        return found.group(1) if found else None


class Service:
    """One quorvane-service process, with certificates from `authority`."""

    # Where its process is, and where its tables are.
    namespace, gateway_namespace = network.INTERNET, network.GATEWAY

    STATUS = "3 means that it received requests that no test announced, -9 that it had to be killed"

    def __init__(self, program, folder, authority, **overrides):
        self.program = Path(program)
        self.folder = Path(folder)
        self.folder.mkdir(parents=True)
        self.request_log = self.folder / "requests.jsonl"
        self.output = self.folder / "service.log"
        self.runtime = self.folder / "runtime"
        self.certificate = authority.leaf("api", API_NAMES)
        self._settings = self._usual_settings(authority)
        # Settings of the tunnels are added to the usual ones; other settings replace them.
        self._settings["vpn"].update(overrides.pop("vpn_settings", {}))
        self.configure(**overrides)
        self.role = "all"
        self.environment = {}  # beside the machine's
        self._process = None

    @property
    def _configuration(self):
        return self.folder / "service.json"

    def configure(self, **changes):
        """Changes settings, which are valid from the next start on; returns their previous values."""
        before = {key: self._settings.get(key) for key in changes}
        self._settings.update(changes)
        self._configuration.write_text(json.dumps(self._settings, indent=1), encoding="utf-8")
        return before

    @property
    def vpn_settings(self):
        return dict(self._settings["vpn"])

    def _usual_settings(self, authority):
        certificate, key = map(str, self.certificate)
        vpn_certificate, vpn_key = map(str, authority.leaf("vpn", "DNS:vpn"))
        return {
            "listen": [{"address": network.SERVICE_ADDRESS, "port": 443}],
            "tls": {"certificate": certificate, "key": key},
            "groups": groups(LOCATIONS),
            "home": [{"network": "198.51.100.0/24", "country_code": "AT"}],
            "request_log": str(self.request_log),
            "runtime_folder": str(self.runtime),
            "strict": True,
            "announced": [{"pattern": pattern, "count": 0} for pattern in ANNOUNCED],
            "vpn": {
                "ca": str(authority.certificate),
                "certificate": vpn_certificate,
                "key": vpn_key,
                "udp": {"port": UDP_PORT, "network": "10.8.0.0/16"},
                "tcp": {"port": TCP_PORT, "network": "10.9.0.0/16"},
                "dns": list(network.NAME_SERVERS),
            },
            "gateway": {
                "command": ["ip", "netns", "exec", network.GATEWAY],
                "nft": {"table": TABLE, "map": LENT_MAP, "wan_interface": "wan"},
            },
        }

    @property
    def pid(self):
        """The process number of the service; only while it runs."""
        return self._process.pid

    def start(self):
        """Starts the service and waits until its web server and both OpenVPN servers listen."""
        with self.output.open("ab") as output:
            self._process = subprocess.Popen(
                [
                    "ip",
                    "netns",
                    "exec",
                    self.namespace,
                    str(self.program),
                    "--config",
                    str(self._configuration),
                    "--role",
                    self.role,
                ],
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=output,
                env={**os.environ, **self.environment},
            )
        end = time.monotonic() + EVENTUALLY
        while not self._ready():
            if self._process.poll() is not None or time.monotonic() > end:
                raise RuntimeError(f"quorvane-service did not start:\n{self._account()}")
            time.sleep(POLL)

    def remove_user_keys(self):
        """While the service is stopped: it makes a new key then, and refuses the users of earlier lists."""
        (self.runtime / "user.keys").unlink()

    def _account(self):
        """The state after a failed start: exit status or None, the answer to "status", the logs."""
        parts = [f"ended with {self._process.poll()}"]
        with contextlib.suppress(OSError, ValueError):
            parts.append(json.dumps(self.control("status")))
        for path in [self.output, *sorted(self.runtime.glob("*.log"))]:
            parts.append(f"{path.name}:\n{path.read_text(errors='replace')}")
        return "\n".join(parts)

    def control(self, command, **arguments):
        """Sends one command to the control socket and returns the answer."""
        with socket.socket(socket.AF_UNIX) as connection:
            connection.settimeout(EVENTUALLY)
            connection.connect(str(self.runtime / "control.sock"))
            connection.sendall(json.dumps({"command": command, **arguments}).encode() + b"\n")
            return json.loads(connection.makefile("rb").readline())

    def _ready(self):
        try:
            listens = self.role == "gateway" or (self.runtime / "listening").exists()
            return listens and self.control("status").get("ready", False)
        except OSError:
            return False

    @property
    def process(self):
        """The running process (subprocess.Popen)."""
        return self._process

    @property
    def running(self):
        return self._process is not None and self._process.poll() is None

    def stop(self):
        """Ends the service; returns its exit status (see STATUS)."""
        if self._process is None:
            return 0
        if self._process.poll() is None:
            self._process.send_signal(signal.SIGTERM)
            try:
                self._process.wait(EVENTUALLY)
            except subprocess.TimeoutExpired:
                self._process.kill()
        return self._process.wait()

    def end(self):
        """Ends the service and what it started; returns its exit status (see STATUS).

        The OpenVPN servers are killed first: they take two seconds to inform their clients, which have ended
        before the service does.
        """
        if self.running:
            for pid, _name in machine.processes():
                if machine.parent_of(pid) == self._process.pid:
                    with contextlib.suppress(ProcessLookupError):
                        os.kill(pid, signal.SIGKILL)
        return self.stop()

    def requests(self):
        """Every request since the start, in order."""
        if not self.request_log.exists():
            return []
        lines = self.request_log.read_text(encoding="utf-8").splitlines()
        entries = [json.loads(line) for line in lines]
        return [
            Request(
                entry["peer"], entry["target"], datetime.datetime.fromisoformat(entry["time"]).timestamp()
            )
            for entry in entries
            if entry["event"] == "request"
        ]

    def requests_of(self, command):
        """The API requests with this cmd, in order."""
        return [request for request in self.requests() if request.parameter("cmd") == command]

    def server_process(self, protocol):
        """The process number of the OpenVPN server for "udp" or "tcp"."""
        found = subprocess.run(
            ["pgrep", "-n", "-f", f"vpnsrv --config {self.runtime}/{protocol}.conf"],
            check=True,
            stdout=subprocess.PIPE,
        )
        return int(found.stdout)

    def server_log(self, protocol):
        """The log of the OpenVPN server for "udp" or "tcp"."""
        return (self.runtime / f"{protocol}.log").read_text(encoding="utf-8", errors="replace")

    def lent(self):
        """The gateway's table of lent addresses: tunnel address -> public address."""
        for entry in network.firewall(self.gateway_namespace):
            found = entry.get("map", {})
            if found.get("table") == TABLE and found.get("name") == LENT_MAP:
                return dict(found.get("elem", []))
        return {}


def is_lent_address(text):
    """True for an address of the lent pool."""
    try:
        return ipaddress.ip_address(text) in ipaddress.ip_network(network.LENT_POOL)
    except ValueError:
        return False


def program_from_environment():
    """The service to run: QUORVANE_SERVICE, set by ctest and by ./run."""
    path = os.environ.get("QUORVANE_SERVICE")
    if not path:
        raise RuntimeError("QUORVANE_SERVICE must name the quorvane-service program")
    return Path(path)
