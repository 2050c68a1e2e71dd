#!/usr/bin/python3
"""attacked.py: how long the real OpenVPN needs for a session, without and beside strangers at the VPN ports.

Runs inside of tests/e2e/world/enter.py and prints one line of JSON for run-bench: for each case the seconds
of its sessions, from the start of OpenVPN until the tunnel is up.
"""

import contextlib
import json
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "e2e"))

from harness.conditions import strangers  # noqa: E402 # pylint: disable=wrong-import-position
from world.world import World  # noqa: E402 # pylint: disable=wrong-import-position

SESSIONS = 10


def no_strangers():
    return contextlib.nullcontext()


CASES = {
    "UDP, no attack": ("udp", no_strangers),
    "UDP, 5,000 datagrams of garbage a second": ("udp", strangers.datagrams),
    "TCP, no attack": ("tcp", no_strangers),
    "TCP, beside 5,000 idle connections": ("tcp", strangers.idle_connections),
}


def main():
    world = World()
    results = {}
    try:
        for name, (protocol, attack) in CASES.items():
            with attack():
                results[name] = [strangers.session(world, protocol) for _ in range(SESSIONS)]
    finally:
        world.close()
    print(json.dumps(results))
    return 0 if all(None not in seconds for seconds in results.values()) else 1


if __name__ == "__main__":
    sys.exit(main())
