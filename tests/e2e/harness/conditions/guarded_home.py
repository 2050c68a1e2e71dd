"""A home that sends all the time, with a guard that is started by hand, without the client."""

import contextlib
import ipaddress
import json
import os
import signal
import subprocess

from harness.home.deadlines import EVENTUALLY
from harness.observe import capture as captures
from world import home as homes
from world import network

from .pushing_server import ADDRESS, PORT

SERVER = {(ADDRESS, PORT, captures.UDP)}
NEIGHBOUR = "192.168.77.50"
FOLDER = "/home/joe/Documents/Quorvane"
UP = "Initialization Sequence Completed"
PROBE_PORT = 9999
PLAIN, NAMES, SIX = network.SERVICE_ADDRESS, network.NAME_SERVERS[0], network.INTERNET_ADDRESS_6


def tables():
    """All routes and rules of the home as text, in any order."""
    found = []
    for family in ("-4", "-6"):
        for what in (["route", "show", "table", "all"], ["rule", "show"]):
            lines = network.inside(network.HOME, "ip", family, *what).stdout.splitlines()
            found += [" ".join(line.split()) for line in lines]
    return sorted(found)


def settled_tables(home):
    """The tables after the kernel has tried out the home's own IPv6 addresses, which adds routes to them."""
    home.wait_for(
        lambda: not network.inside(network.HOME, "ip", "-6", "address", "show", "tentative").stdout,
        "the home's addresses are settled",
    )
    return tables()


def check_tables(home, before):
    """The kernel removes the routes of a device some moments after the process that had it open."""
    with contextlib.suppress(TimeoutError):
        home.wait_for(lambda: tables() == before, "the tables are as before", timeout=5)
    now = tables()
    assert now == before, {"came": set(now) - set(before), "went": set(before) - set(now)}


def is_neighbour_discovery(packet):
    """The kernel asks now and then whether the router is still there. No router forwards such an address."""
    return packet.protocol == captures.ICMP6 and ipaddress.ip_address(packet.source).is_link_local


class Watched:
    """A home that sends all the time, its captured packets, and a guard in it that is started by hand."""

    def __init__(self, world):
        self.world, self.home = world, world.home
        network.run("ip", "-n", network.GATEWAY, "address", "add", f"{NEIGHBOUR}/24", "dev", "lan")
        self.before = settled_tables(self.home)
        self.capture = captures.Capture(world)
        self.probe = self.home.popen(
            "/usr/bin/python3",
            f"{homes.HARNESS}/probe.py",
            "50",
            f"udp={PLAIN}",
            f"dns={NAMES}",
            f"udp={SIX}",
            user="joe",
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )
        assert self.probe.stdout.readline() == "sending\n"
        self.guard = None
        self.check_seen_in_the_open()

    def close(self):
        if self.guard is not None and self.guard.poll() is None:
            self.end()
        assert json.loads(self.probe.communicate(timeout=EVENTUALLY)[0])
        self.capture.close()

    def check_seen_in_the_open(self):
        """The control: without a tunnel all kinds of packets are captured."""
        self.wait_open({(PLAIN, PROBE_PORT), (NAMES, 53), (SIX, PROBE_PORT)})

    def wait_open(self, wanted):
        """Waits until packets to each (address, port) are captured."""
        begin = len(self.capture.packets())
        self.home.wait_for(
            lambda: wanted <= {(one.destination, one.port) for one in self.capture.packets()[begin:]},
            "packets in the open",
        )

    def log(self):
        return self.home.path(f"{FOLDER}/x.log").read_text(encoding="ascii")

    def begin(self, text):
        """Starts the guard with this configuration."""
        for name, content in {"x.ovpn": text, "pair": "user\npassword", "x.log": ""}.items():
            self.home.write(f"{FOLDER}/{name}", content, mode=0o600)
        self.guard = self.home.popen(
            f"{homes.CONTENTS}/Resources/openvpn",
            "--config",
            f"{FOLDER}/x.ovpn",
            "--auth-user-pass",
            f"{FOLDER}/pair",
            "--log-append",
            f"{FOLDER}/x.log",
        )

    def start(self, text):
        """Starts the guard and waits until the tunnel is up or the attempt is over; True when it is up."""
        self.begin(text)
        self.home.wait_for(lambda: UP in self.log() or self.guard.poll() is not None, "a result")
        return UP in self.log()

    def check_nothing_beside(self):
        """While the tunnel is up, everything goes into it; returns the number of packets that did."""
        with self.capture.phase("up") as phase:
            begin = len(self.capture.packets())
            self.home.wait_for(
                lambda: sum(
                    (one.destination, one.port) == (ADDRESS, PORT) for one in self.capture.packets()[begin:]
                )
                >= 10,
                "packets into the tunnel",
            )
        beside = [packet for packet in phase.beside(SERVER) if not is_neighbour_discovery(packet)]
        assert not beside, f"{[str(packet) for packet in beside]}\n{self.log()}"
        return len(phase.towards(SERVER))

    def end(self):
        """Ends OpenVPN like the client: by SIGKILL."""
        for process in self.home.processes("openvpn"):
            os.kill(process.pid, signal.SIGKILL)
        self.guard.wait(EVENTUALLY)

    def check_as_before(self):
        check_tables(self.home, self.before)
