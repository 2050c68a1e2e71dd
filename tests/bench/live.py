#!/usr/bin/python3
"""live.py loop|loss|tray: measurements of a running client in the test network.

Runs inside of tests/e2e/world/enter.py:

loop    a whole session with constant requests to the event loop: which answers were slow, and in which phase
loss    how long after OpenVPN was killed the window shows that nothing is hidden
tray    what the client uses at rest (share of a core, wake-ups) and while the icon is animated

Everything runs with a real-time priority, so that other work on the machine does not change the figures.
Prints one line of JSON for run-bench.
"""

import argparse
import contextlib
import json
import os
import signal
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "e2e"))

from harness.conditions import hostile_api  # noqa: E402 # pylint: disable=wrong-import-position
from harness.drive import client as ui  # noqa: E402 # pylint: disable=wrong-import-position
from harness.drive.tray import TrayIcon  # noqa: E402 # pylint: disable=wrong-import-position
from watch import processor_seconds, wake_ups  # noqa: E402 # pylint: disable=wrong-import-position
from world import network  # noqa: E402 # pylint: disable=wrong-import-position
from world.accounts import ADA, JOE  # noqa: E402 # pylint: disable=wrong-import-position
from world.service import BERLIN  # noqa: E402 # pylint: disable=wrong-import-position
from world.world import World  # noqa: E402 # pylint: disable=wrong-import-position

STALL = 0.05
SHARE_OVER = 10
LONGEST_LIST = 16 * 1024 * 1024


@contextlib.contextmanager
def made():
    """A test network, and a client with a stored administrator and location; it is not started yet."""
    world = World()
    client = ui.Client(world, JOE.name)
    try:
        client.remember_administrator(ADA, location=BERLIN.title)
        yield world, client
    finally:
        client.close()
        world.close()


def process_of(world):
    return next(process.pid for process in world.home.processes("quorvane"))


def rest(seconds):
    """Lets time pass without any request to the client."""
    time.sleep(seconds)


# --- stalls of the event loop --------------------------------------------------------------------------


class Phases:
    """What the user was doing, and since when."""

    def __init__(self):
        self._begun = []

    def begin(self, name):
        self._begun.append((time.monotonic(), name))

    def current(self, moment):
        return [name for begun, name in self._begun if begun <= moment][-1]


def longest_list():
    """The longest server list that the client accepts, of the shortest lines."""
    line = b"Server:,,,,|<br />"
    start = f"STATUS: 1<br />ClientIP: {network.REAL_ADDRESS}<br />".encode("ascii")
    return start + line * ((LONGEST_LIST - len(start)) // len(line))


def change(world, client, count):
    client.press(ui.button("Change IP"))
    world.home.wait_for(lambda: len(world.service.requests_of("VPNC")) == count, f"request {count}")
    client.wait_hidden()


def session(world, client, phases):
    """One session: see the phases. Returns the probe's figures."""
    phases.begin("start")
    started = client.start()["at"]
    client.request("probe_begin", key="first")
    phases.begin("wrong password")
    client.enter_administrator(ADA.name, "not " + ADA.password)
    client.wait_alert()
    client.dismiss_alert()
    phases.begin("right password, then hide")
    client.enter_administrator(ADA.name, ADA.password)
    client.wait_dialog_closed()
    client.wait_hidden()
    phases.begin("hidden")
    rest(3)
    phases.begin("another address")
    change(world, client, 2)
    with network.swallowing("ip saddr 10.0.0.0/8 tcp dport 443"):
        phases.begin("an address that cannot be read")
        change(world, client, 3)
    phases.begin("stop")
    client.stop()
    client.wait_no_openvpn()
    phases.begin("not hidden")
    rest(1)
    phases.begin("a server list of 16 MiB")
    with hostile_api.HostileApi(world, {"MRTSL": hostile_api.page(longest_list())}) as api:
        TrayIcon(client).choose("Refresh Locations")
        world.home.wait_for(lambda: api.requests_of("MRTSL"), "the list is requested")
        client.wait_output("lines beyond the first", "the list was read")
        rest(1)
    phases.begin("quit")
    client.terminate()
    noted = client.request("probe_end")
    return {**noted, "first": noted["first"] - started}


def bench_loop():
    phases = Phases()
    with made() as (world, client):
        client.seed_preferences(location=BERLIN.title)
        TrayIcon(client).appear()
        noted = session(world, client, phases)
    longest = max((end - begin for begin, end in noted["slow"]), default=0)
    return {
        "answered": noted["answered"],
        "first": noted["first"],
        "longest": longest,
        "stalls": [
            {"seconds": end - begin, "phase": phases.current(begin)}
            for begin, end in noted["slow"]
            if end - begin > STALL
        ],
    }


# --- a lost tunnel ------------------------------------------------------------------------------------


def bench_loss():
    """Milliseconds from each of ten kills to the first look at the window that shows the truth."""
    found = []
    with made() as (_world, client):
        client.remember_administrator(ADA, location=BERLIN.title, noReconnect=True)
        client.start()
        for _ in range(10):
            client.hide()
            client.wait_hidden()
            (process,) = client.openvpn()
            begun = time.monotonic()
            os.kill(process.pid, signal.SIGKILL)
            while client.text("Status line") != ui.NOT_HIDING:
                pass
            found.append((time.monotonic() - begun) * 1000)
            client.wait_no_openvpn()
        client.terminate()
    return found


# --- the animated tray icon ----------------------------------------------------------------------------


def share(pid):
    """The share of one core that a process uses during some seconds."""
    begun, used = time.monotonic(), processor_seconds(pid)
    rest(SHARE_OVER)
    return (processor_seconds(pid) - used) / (time.monotonic() - begun)


def bench_tray():
    with made() as (world, client):
        tray = TrayIcon(client)
        tray.appear()
        client.start()
        client.wait_ready()
        client.wait_output("getSystemDns", "the name servers are checked", count=2)
        still = tray.wait_item()["icon"]
        pid = process_of(world)
        rest(2)
        before = wake_ups(pid)
        found = {"icon at rest": share(pid)}
        found["wake-ups"] = wake_ups(pid) - before
        if tray.item()["icon"] != still:
            raise RuntimeError("the icon changed at rest")
        network.swallow(f"ip daddr {network.SERVICE_ADDRESS} tcp dport 443")
        client.hide()
        client.wait(ui.label("Status line"), name=ui.SEARCHING)
        rest(1)
        found["icon animated"] = share(pid)
        seen = set()
        for _ in range(10):
            seen.add(str(tray.item()["icon"]))
            rest(0.1)
        if len(seen) < 3 or client.text("Status line") != ui.SEARCHING:
            raise RuntimeError(f"the icon was not animated all the time: {len(seen)} pictures in a second")
        client.terminate()
    return found


BENCHES = {"loop": bench_loop, "loss": bench_loss, "tray": bench_tray}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("what", choices=tuple(BENCHES))
    os.sched_setscheduler(0, os.SCHED_RR, os.sched_param(1))
    print(json.dumps(BENCHES[parser.parse_args().what]()))


if __name__ == "__main__":
    main()
