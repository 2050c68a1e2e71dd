"""A program in the home that sends packets of all kinds all the time, and what of it a capture has seen."""

import json
import subprocess

from harness.home.deadlines import EVENTUALLY
from harness.observe import capture as captures
from world import home as homes
from world import network

RATE = 50
PROBE_PORT = 9999
PLAIN, NAMES, SIX = network.SERVICE_ADDRESS, network.NAME_SERVERS[0], network.INTERNET_ADDRESS_6


def is_probe(packet):
    return packet.port in (PROBE_PORT, 53) and b"probe" in packet.payload


def kinds(packets):
    """The probe's packets: IPv4 datagrams, name queries, IPv6 datagrams."""
    found = {"IPv4": [], "DNS": [], "IPv6": []}
    for packet in filter(is_probe, packets):
        found["IPv6" if packet.six else "DNS" if captures.is_dns(packet) else "IPv4"].append(packet)
    return found


class Probe:
    """The program: 50 datagrams, 50 name queries and 50 IPv6 datagrams a second."""

    def __init__(self, home):
        self._process = home.popen(
            "/usr/bin/python3",
            f"{homes.HARNESS}/probe.py",
            str(RATE),
            f"udp={PLAIN}",
            f"dns={NAMES}",
            f"udp={SIX}",
            user="joe",
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )
        assert self._process.stdout.readline() == "sending\n"

    def end(self):
        """Ends it; returns what it sent and which errors it got: kind and address -> {"sent", "errors"}."""
        report, _ = self._process.communicate(timeout=EVENTUALLY)
        return json.loads(report)


def wait_seen(home, capture, kind, more=1):
    """Waits until the capture has `more` further packets of the kind."""
    wanted = len(kinds(capture.packets())[kind]) + more
    home.wait_for(lambda: len(kinds(capture.packets())[kind]) >= wanted, f"{kind} captured")


def check_seen_in_the_open(home, capture):
    """The control: while nothing is hidden, packets of every kind are captured."""
    for kind in ("IPv4", "DNS", "IPv6"):
        wait_seen(home, capture, kind)
