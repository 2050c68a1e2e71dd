#!/usr/bin/python3
"""live.py loop|tray: measurements of a running client in the test network.

Runs inside of tests/e2e/world/enter.py:

loop    a whole session with constant requests to the event loop: which answers were slow, and what ran then
tray    the share of a core that the client uses at rest, and while the tray icon is animated

Everything runs with a real-time priority, so that other work on the machine does not change the figures.
Prints one line of JSON for run-bench.
"""

import argparse
import contextlib
import json
import os
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "e2e"))

from harness.drive import client as ui  # noqa: E402 # pylint: disable=wrong-import-position
from harness.drive.tray import TrayIcon  # noqa: E402 # pylint: disable=wrong-import-position
from watch import Children, processor_seconds  # noqa: E402 # pylint: disable=wrong-import-position
from world import network  # noqa: E402 # pylint: disable=wrong-import-position
from world.accounts import ADA, JOE  # noqa: E402 # pylint: disable=wrong-import-position
from world.service import BERLIN  # noqa: E402 # pylint: disable=wrong-import-position
from world.world import World  # noqa: E402 # pylint: disable=wrong-import-position

STALL = 0.05
SHARE_OVER = 10
# The child processes that the main thread waits for. Another thread waits for the start of OpenVPN.
STEPS = {
    "networksetup -getdnsservers": "check of the name servers",
    "networksetup -setdnsservers": "setting of the name servers",
    "/test_credentials.sh": "test of the administrator",
    "/extractip.sh": "extractip",
    "killall -9 openvpn": "end of OpenVPN",
}


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


def session(world, client, phases):
    """Start, hide, hidden, another address, stop, quit.

    Returns the probe's figures and the child processes.
    """
    phases.begin("start")
    started = client.start()["at"]
    children = Children(process_of(world))
    children.start()
    client.request("probe_begin", key="first")
    client.wait_ready()
    client.wait_output("getSystemDns", "the name servers are checked", count=2)
    rest(1)
    phases.begin("hide")
    client.hide()
    client.wait_hidden()
    phases.begin("hidden")
    rest(3)
    phases.begin("change of IP")
    client.press(ui.button("Change IP"))
    world.home.wait_for(lambda: len(world.service.requests_of("VPNC")) == 2, "the second request")
    client.wait_hidden()
    phases.begin("stop")
    client.stop()
    client.wait_no_openvpn()
    phases.begin("not hidden")
    rest(1)
    phases.begin("quit")
    client.terminate()
    children.stop()
    noted = client.request("probe_end")
    return {**noted, "first": noted["first"] - started}, children.ended


def steps_during(begin, end, children):
    """(names, seconds) of the blocking steps between two moments. They never overlap each other."""
    names, seconds = [], 0
    for child in children:
        common = min(end, child["end"]) - max(begin, child["begin"])
        name = next((name for part, name in STEPS.items() if part in child["name"]), None)
        if name is not None and common > 0:
            names.append(name)
            seconds += common
    return names, seconds


def bench_loop():
    phases = Phases()
    with made() as (world, client):
        noted, children = session(world, client, phases)
    found = {"answered": noted["answered"], "first": noted["first"], "inside": [], "outside": []}
    for begin, end in noted["slow"]:
        names, seconds = steps_during(begin, end, children)
        if end - begin > STALL:
            # Without the steps, the rest of the time must be short as well.
            where = "inside" if end - begin - seconds <= STALL else "outside"
            found[where].append({"seconds": end - begin, "phase": phases.current(begin), "steps": names})
    ran = {name for child in children for name in steps_during(child["begin"], child["end"], [child])[0]}
    if not {"check of the name servers", "test of the administrator", "extractip", "end of OpenVPN"} <= ran:
        raise RuntimeError(
            f"not all blocking steps were seen: {ran} of {[child['name'] for child in children]}"
        )
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
        found = {"icon at rest": share(pid)}
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


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("what", choices=("loop", "tray"))
    os.sched_setscheduler(0, os.SCHED_RR, os.sched_param(1))
    print(json.dumps(bench_loop() if parser.parse_args().what == "loop" else bench_tray()))


if __name__ == "__main__":
    main()
