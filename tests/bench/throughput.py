#!/usr/bin/python3
"""throughput.py: what one session carries, with the client's and the server's OpenVPN on the same machine.

Runs inside of tests/e2e/world/enter.py and prints one line of JSON for run-bench: for each protocol the
megabits a second that a download receives, and the share of a core that the OpenVPN server uses.
"""

import contextlib
import json
import sys
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "e2e"))

# pylint: disable=wrong-import-position
from harness.drive import client as ui  # noqa: E402
from harness.observe.outcomes import check_hidden  # noqa: E402
from watch import processor_seconds  # noqa: E402
from world import network  # noqa: E402
from world.accounts import ADA, JOE  # noqa: E402
from world.service import BERLIN  # noqa: E402
from world.world import World  # noqa: E402

SECONDS = 8
PIECE = bytes(1 << 16)


def send(server, peers):
    """Accepts one connection and sends until its other side closes it."""
    connection, peer = server.accept()
    peers.append(peer[0])
    with connection, contextlib.suppress(OSError):
        while True:
            connection.sendall(PIECE)


def download(world, protocol):
    with contextlib.closing(network.socket_in(network.INTERNET)) as server:
        server.bind((network.SERVICE_ADDRESS, 0))
        server.listen()
        peers = []
        sender = threading.Thread(target=send, args=(server, peers))
        sender.start()
        with contextlib.closing(network.socket_in(network.HOME)) as link:
            link.connect(server.getsockname())
            link.recv(1)
            openvpn = world.service.server_process(protocol)
            used, begun, received = processor_seconds(openvpn), time.monotonic(), 0
            while (passed := time.monotonic() - begun) < SECONDS:
                received += len(link.recv(1 << 20))
            share = (processor_seconds(openvpn) - used) / passed
        sender.join()
    return {"megabits": received * 8 / 1e6 / passed, "share": share, "peer": peers[0]}


def measure(protocol):
    world = World()
    client = ui.Client(world, JOE.name)
    try:
        client.remember_administrator(ADA, location=BERLIN.title)
        client.start()
        client.wait_ready()
        client.choose_protocol(protocol.upper())
        client.hide()
        client.wait_hidden()
        address = check_hidden(client)
        found = download(world, protocol)
        if found["peer"] != address:
            raise RuntimeError(f"the download went to {found['peer']} instead of {address}")
        return found
    finally:
        client.close()
        world.close()


def main():
    print(json.dumps({protocol: measure(protocol) for protocol in ("udp", "tcp")}))


if __name__ == "__main__":
    main()
