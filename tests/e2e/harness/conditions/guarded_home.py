"""A home that sends all the time, with a guard that is started by hand, without the client."""

import contextlib
import os
import signal

from harness.home.deadlines import EVENTUALLY
from harness.observe import capture as captures
from world import home as homes
from world import network

from .probing import Probe, check_seen_in_the_open
from .pushing_server import ADDRESS, PORT

SERVER = {(ADDRESS, PORT, captures.UDP)}
NEIGHBOUR = "192.168.77.50"
FOLDER = "/home/joe/Documents/Quorvane"
UP = "Initialization Sequence Completed"


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


class Watched:
    """A home that sends all the time, its captured packets, and a guard in it that is started by hand."""

    def __init__(self, world):
        self.world, self.home = world, world.home
        network.run("ip", "-n", network.GATEWAY, "address", "add", f"{NEIGHBOUR}/24", "dev", "lan")
        self.before = settled_tables(self.home)
        self.capture = captures.Capture(world)
        self.probe = Probe(self.home)
        self.guard = None
        self.check_seen_in_the_open()

    def close(self):
        if self.guard is not None and self.guard.poll() is None:
            self.end()
        assert self.probe.end()
        self.capture.close()

    def check_seen_in_the_open(self):
        check_seen_in_the_open(self.home, self.capture)

    def lock(self, *words):
        """Runs the script of the network lock."""
        script = f"{homes.CONTENTS}/Resources/networklock"
        self.home.run(script, *words, environment={"QUORVANE_CALLER": str(self.home.uid("joe")[0])})

    def close_lock(self):
        self.lock("-close", "home", f"service.test:443/{network.SERVICE_ADDRESS}")

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
        beside = phase.beside(SERVER)
        assert not beside, f"{[str(packet) for packet in beside]}\n{self.log()}"
        return len(phase.towards(SERVER))

    def end(self):
        """Ends OpenVPN like the client: by SIGKILL."""
        for process in self.home.processes("openvpn"):
            os.kill(process.pid, signal.SIGKILL)
        self.guard.wait(EVENTUALLY)

    def check_as_before(self):
        check_tables(self.home, self.before)
