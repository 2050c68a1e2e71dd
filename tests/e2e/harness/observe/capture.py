"""What leaves the home: a packet capture at its router, divided into phases by marker packets.

A phase begins and ends with a mark, a packet from the home to its router that must appear in the capture. A
capture that sees nothing, or is late, can therefore not be mistaken for a home that sends nothing.
"""

import contextlib
import ipaddress
import struct
import subprocess
import time
from dataclasses import dataclass

from harness.home.deadlines import EVENTUALLY, POLL
from world import network

ICMP, TCP, UDP, ICMP6 = 1, 6, 17, 58
_NAMES = {ICMP: "ICMP", TCP: "TCP", UDP: "UDP", ICMP6: "ICMPv6"}
_MARK_PORT = 40000
# The types of router and neighbour solicitations and advertisements.
_NEIGHBOUR_DISCOVERY = {bytes([number]) for number in (133, 134, 135, 136)}
_ETHERNET, _IPV4, _IPV6, _ARP = 14, 0x0800, 0x86DD, 0x0806


@dataclass(frozen=True)
class Packet:
    """One IP packet that left the home."""

    time: float
    protocol: int
    source: str
    destination: str
    port: int  # of the destination; 0 when the protocol has none
    payload: bytes  # of UDP; of ICMPv6 the whole message

    @property
    def six(self):
        return ":" in self.destination

    @property
    def stays(self):
        """True for IPv6 messages to neighbours on the cable, which no router forwards.

        The kernel asks now and then whether a neighbour is still there, also under its global address.
        """
        address = ipaddress.ip_address(self.destination)
        discovers = self.protocol == ICMP6 and self.payload[:1] in _NEIGHBOUR_DISCOVERY
        near = address.is_link_local or address.is_multicast
        return discovers or (self.six and self.protocol in (0, ICMP6) and near)

    def __str__(self):
        name = _NAMES.get(self.protocol, f"protocol {self.protocol}")
        return f"{name} {self.source} > {self.destination} port {self.port}"


def _ip(moment, data, six):
    """The packet in the bytes that follow the Ethernet header."""
    if six:
        protocol, start = data[6], 40
        source, destination = ipaddress.IPv6Address(data[8:24]), ipaddress.IPv6Address(data[24:40])
        first = True
    else:
        protocol, start = data[9], (data[0] & 15) * 4
        source, destination = ipaddress.IPv4Address(data[12:16]), ipaddress.IPv4Address(data[16:20])
        first = struct.unpack(">H", data[6:8])[0] & 0x1FFF == 0
    port, payload = 0, b""
    if protocol in (TCP, UDP) and first and len(data) >= start + 8:
        port = struct.unpack(">H", data[start + 2 : start + 4])[0]
        payload = data[start + 8 :] if protocol == UDP else b""
    elif protocol == ICMP6:
        payload = data[start:]
    return Packet(moment, protocol, str(source), str(destination), port, payload)


def _packets(raw):
    """The whole packets of a capture file that is still being written."""
    order = "<" if raw[:4] == b"\xd4\xc3\xb2\xa1" else ">"
    start, found = 24, []
    while start + 16 <= len(raw):
        seconds, micros, kept, _whole = struct.unpack(f"{order}IIII", raw[start : start + 16])
        frame = raw[start + 16 : start + 16 + kept]
        if len(frame) < kept:
            break
        start += 16 + kept
        kind = struct.unpack(">H", frame[12:14])[0]
        if kind in (_IPV4, _IPV6):
            found.append(_ip(seconds + micros / 1e6, frame[_ETHERNET:], kind == _IPV6))
        elif kind != _ARP:
            raise AssertionError(
                f"a frame of kind {kind:#06x} left the home: the capture does not know this kind"
            )
    return found


class Phase:
    """The packets between two marks."""

    def __init__(self, name):
        self.name = name
        self.packets = []

    def beside(self, servers):
        """The packets that leave the cable and do not go to the VPN servers, (address, port, protocol)."""
        return [
            packet
            for packet in self.packets
            if not packet.stays and (packet.destination, packet.port, packet.protocol) not in servers
        ]

    def towards(self, servers):
        return [
            packet for packet in self.packets if (packet.destination, packet.port, packet.protocol) in servers
        ]


def is_dns(packet):
    return packet.port == 53


def counted(packets):
    """The number of packets of each kind, for messages and figures."""
    kinds = {}
    for packet in packets:
        kind = f"{_NAMES.get(packet.protocol, packet.protocol)} {packet.destination} port {packet.port}"
        kinds[kind] = kinds.get(kind, 0) + 1
    return kinds


class Capture:
    """tcpdump at the router's end of the home's cable, from the constructor to `close`."""

    def __init__(self, world):
        self._home = world.home
        self._file = world.folder / "home.pcap"
        self._marks = 0
        self._process = subprocess.Popen(
            [
                "ip",
                "netns",
                "exec",
                network.GATEWAY,
                "tcpdump",
                "-i",
                "lan",
                "-Q",
                "in",
                "-n",
                "-s",
                "160",
                "-U",
                "--immediate-mode",
                "-Z",
                "root",
                "-w",
                str(self._file),
            ],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.PIPE,
            text=True,
        )
        first = self._process.stderr.readline()
        if "listening on lan" not in first:
            raise RuntimeError(f"tcpdump did not start: {first}")

    def packets(self):
        return _packets(self._file.read_bytes())

    def _mark(self):
        """Sends a marker packet and waits until it is captured; returns its number in the capture."""
        self._marks += 1
        port = _MARK_PORT + self._marks
        self._home.run("bash", "-c", f"echo mark >/dev/udp/{network.ROUTER_ADDRESS}/{port}")
        end = time.monotonic() + EVENTUALLY
        while time.monotonic() < end:
            for number, packet in enumerate(self.packets()):
                if (packet.destination, packet.port) == (network.ROUTER_ADDRESS, port):
                    return number
            time.sleep(POLL)
        raise AssertionError(f"mark {self._marks} is missing in the capture: it does not work")

    @contextlib.contextmanager
    def phase(self, name):
        """Collects what leaves the home during the block; complete after the block."""
        phase = Phase(name)
        begin = self._mark()
        yield phase
        end = self._mark()
        # Without the marks of phases within this one.
        phase.packets = [
            packet
            for packet in self.packets()[begin + 1 : end]
            if packet.destination != network.ROUTER_ADDRESS
            or not _MARK_PORT < packet.port <= _MARK_PORT + self._marks
        ]

    def close(self):
        self._process.terminate()
        self._process.wait(EVENTUALLY)
        self._process.stderr.close()
