#!/usr/bin/python3
"""crowd.py [COUNT]: so many sessions at once on one machine, each with an OpenVPN of its own.

Runs inside of tests/e2e/world/enter.py and prints one line of JSON for run-bench. The clients are real
OpenVPN processes without a device; server lists and configurations are requested before.
"""

import contextlib
import json
import re
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "e2e"))

# pylint: disable=wrong-import-position
from harness.conditions import service_api, strangers  # noqa: E402
from harness.home.deadlines import POLL  # noqa: E402
from world import network, service  # noqa: E402
from world.world import World  # noqa: E402

PATIENCE = 600
LIMITS = {
    "per_caller": {"requests_per_second": 0, "configurations_per_second": 0, "connections_per_second": 0}
    | {"handshakes_per_second": 0, "connections": 0},
    "vpn": {"starts_per_second": 10000, "starts_burst": 10000, "handshake_seconds": 60},
}


def memory(pid):
    """The resident memory of a process, in KiB."""
    status = Path(f"/proc/{pid}/status").read_text(encoding="ascii")
    return int(re.search(r"^VmRSS:\s*(\d+)", status, re.MULTILINE).group(1))


def configurations(world, count):
    """Makes the files of so many clients; returns their names without suffix."""
    folder = world.folder / "crowd"
    folder.mkdir()
    names = []
    for number in range(count):
        user, password = service_api.credentials(world.home)
        place = service.LOCATIONS[number % len(service.LOCATIONS)]
        target = service_api.configuration_target(user, place.addresses[0], "UDP")
        text = service_api.configuration_of(service_api.get(world.home, target))
        lines = [line for line in text.splitlines() if not line.startswith(strangers.Session.LEFT_OUT)]
        # Logins wait for each other here; a client's usual limits are for a single one.
        lines += ["hand-window 120", "connect-timeout 120", "resolv-retry 0"]
        name = folder / str(number)
        name.with_suffix(".ovpn").write_text("\n".join(lines) + "\n", encoding="ascii")
        name.with_suffix(".pair").touch(mode=0o600)
        name.with_suffix(".pair").write_text(f"{user}\n{password}\n", encoding="ascii")
        names.append(name)
    return names


def start(name):
    return subprocess.Popen(
        ["ip", "netns", "exec", network.HOME, "/usr/sbin/openvpn", "--config", f"{name}.ovpn"]
        + ["--auth-user-pass", f"{name}.pair", *strangers.Session.HARMLESS, "--log", f"{name}.log"],
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
    )


def wait_logged_in(world, count):
    end = time.monotonic() + PATIENCE
    while len(world.service.lent()) < count:
        if time.monotonic() > end:
            raise TimeoutError(f"{len(world.service.lent())} of {count} sessions after {PATIENCE} s")
        time.sleep(10 * POLL)


def main():
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 1000
    world = World(limits=LIMITS, grant_seconds=3600)
    clients = []
    try:
        names = configurations(world, count)
        processes = {"service": world.service.pid, "OpenVPN server": world.service.server_process("udp")}
        before = {name: memory(pid) for name, pid in processes.items()}
        begun = time.monotonic()
        clients = [start(name) for name in names]
        wait_logged_in(world, count)
        seconds = time.monotonic() - begun
        grown = {name: memory(pid) - before[name] for name, pid in processes.items()}
    finally:
        for client in clients:
            client.terminate()
        for client in clients:
            with contextlib.suppress(subprocess.TimeoutExpired):
                client.wait(PATIENCE)
        world.close()
    print(json.dumps({"count": count, "seconds": seconds, "memory": grown}))
    return 0


if __name__ == "__main__":
    sys.exit(main())
