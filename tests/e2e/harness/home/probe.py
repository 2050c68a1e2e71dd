#!/usr/bin/python3
"""probe.py RATE KIND=ADDRESS...: a program in the home that sends all the time, with and without a tunnel.

KIND is udp (a numbered datagram to port 9999) or dns (a query for a numbered name). It sends RATE of each per
second, on sockets without a fixed source address, like most programs. Ends when its standard input is closed,
and prints as JSON how many of each it sent and which errors the system returned.
"""

import errno
import json
import select
import socket
import struct
import sys
import time

PORT = 9999


def query(number):
    labels = b"".join(bytes([len(label)]) + label for label in (b"probe%d" % number, b"quorvane", b"test"))
    return (
        struct.pack(">HHHHHH", number & 0xFFFF, 0x0100, 1, 0, 0, 0)
        + labels
        + b"\0"
        + struct.pack(">HH", 1, 1)
    )


class Sender:
    """Sends one kind of datagram to one address and counts what the system returned."""

    def __init__(self, kind, address):
        self.kind, self.address = kind, address
        self.socket = socket.socket(socket.AF_INET6 if ":" in address else socket.AF_INET, socket.SOCK_DGRAM)
        self.sent, self.errors = 0, {}

    def send(self, number):
        data, port = (query(number), 53) if self.kind == "dns" else (b"probe %d" % number, PORT)
        try:
            self.socket.sendto(data, (self.address, port))
            self.sent += 1
        except OSError as error:
            name = errno.errorcode.get(error.errno, str(error.errno))
            self.errors[name] = self.errors.get(name, 0) + 1


def main():
    rate = float(sys.argv[1])
    senders = [Sender(*argument.split("=", 1)) for argument in sys.argv[2:]]
    print("sending", flush=True)
    begun, number = time.monotonic(), 0
    while True:
        number += 1
        for sender in senders:
            sender.send(number)
        wait = max(0.0, begun + number / rate - time.monotonic())
        if select.select([sys.stdin], [], [], wait)[0]:
            break
    print(
        json.dumps(
            {
                f"{sender.kind} {sender.address}": {"sent": sender.sent, "errors": sender.errors}
                for sender in senders
            }
        ),
        flush=True,
    )


if __name__ == "__main__":
    main()
