"""Many changes of the address: neither the client nor the home nor the service may grow with them."""

import re
import time
from pathlib import Path

import pytest

from harness.drive import client as ui
from harness.drive.tray import TrayIcon
from harness.home.deadlines import EVENTUALLY
from harness.observe import figures, outcomes
from world import machine, network, service
from world.accounts import ADA

# Twelve American locations with four addresses each: with "US only" none is used twice before all are used.
PLACES = tuple(
    service.Location(
        "US",
        "United States",
        f"C{number:02}",
        f"City {number:02}",
        tuple(f"203.0.113.{4 * number + part}" for part in range(1, 5)),
    )
    for number in range(12)
)

EVERY = 10  # changes between two samples
# Caches grow during the first changes: fonts, pictures of both states, memory pools, those of OpenVPN.
SETTLED = 20
# A leak of 25 KiB per change is 5 MiB in 200; the allocator's reserve varies by less than half of that.
CLIENT_GROWTH_KIB = 5 * 1024
SERVICE_GROWTH_KIB = 1024  # smaller, and without pictures
SERVERS_GROWTH_KIB = (
    2 * 1024
)  # two OpenVPN servers, which keep some memory of each client until it is renewed
DESCRIPTORS = 2  # a connection to the screen or the bus that is just being used
THREADS = 3  # of the pool of background tasks: two of a fetch and a launch, one of the resolver
# By design the session log has a line for the attempt and one for the success; no other file may grow.
SESSION_LOG_PER_CHANGE = 100
HOME_GROWTH = 1024  # bytes of all other files: preferences and the like, which hold texts of other lengths
# The log of an OpenVPN server for one session, from the first packet to the last.
SERVER_LOG_PER_CHANGE = 8 * 1024
# The routes contain the one to the server in use; those of an ended OpenVPN must be removed.
COUNTS_OF_HOME = (
    "processes of the user",
    "OpenVPN processes",
    "OpenVPN's guards",
    "routes",
    "links",
    "firewall entries",
    "files",
    "temporary files",
)
COUNTS_OF_SERVICE = ("credentials", "files in the runtime folder")
ONE_OF_SERVICE = ("clients", service.LENT_MAP, "allowed")


def details(pid):
    """Memory in KiB, open descriptors and threads of one process.

    "own" belongs to it alone. "pss" depends on other programs on the machine: it is recorded, not checked.
    """
    rollup = Path(f"/proc/{pid}/smaps_rollup").read_text(encoding="ascii")
    return {
        "rss": outcomes.memory(pid),
        "own": outcomes.memory(pid, "RssAnon"),
        "pss": int(re.search(r"^Pss:\s+(\d+)", rollup, re.MULTILINE).group(1)),
        "descriptors": len(list(Path(f"/proc/{pid}/fd").iterdir())),
        "threads": len(list(Path(f"/proc/{pid}/task").iterdir())),
    }


def files_of(folder, left_out=()):
    """Number and bytes of the files below a folder."""
    found = [path for path in Path(folder).rglob("*") if path.is_file() and path.name not in left_out]
    return {"files": len(found), "bytes": sum(path.stat().st_size for path in found)}


def entries_of_gateway():
    """The number of entries in each table by which addresses are lent."""
    return {
        name: len(entry[kind].get("elem", []))
        for entry in network.firewall(network.GATEWAY)
        for kind, name in (("map", service.LENT_MAP), ("set", "allowed"))
        if entry.get(kind, {}).get("name") == name
    }


class Sample:
    """Figures of the home and of the service at one moment while the IP is hidden."""

    def __init__(self, world, client):
        home, uid = world.home, world.home.uid(client.user)[0]
        documents, state = client.file("Documents/Quorvane"), outcomes.HomeState(home).value
        self.client = details(outcomes.client_pid(home))
        self.home = {
            "processes of the user": sum(process.uid == uid for process in home.processes()),
            "OpenVPN processes": len(client.openvpn()),
            "OpenVPN's guards": len(home.processes("openvpn-guard")),
            "routes": len(state["routes"]),
            "links": len(state["links"]),
            "firewall entries": len(network.firewall(network.HOME)),
            # The file with the client's output belongs to the test.
            **files_of(client.file("."), left_out=("first.log", "qrvp.log", "openvpn.log")),
            "temporary files": sum(
                files_of(home.path(folder), left_out=("driver.log",))["files"]
                for folder in ("/tmp", "/var/tmp", "/run", "/root")
            ),
            "bytes of the session log": (documents / "qrvp.log").stat().st_size,
            "bytes of OpenVPN's log": (documents / "openvpn.log").stat().st_size,
        }
        status = world.service.control("status")
        runtime = world.service.runtime
        self.service = {
            **details(world.service.pid),
            "credentials": status["credentials"],
            "clients": sum(server["clients"] for server in status["servers"].values()),
            **entries_of_gateway(),
            "files in the runtime folder": len(list(runtime.iterdir())),
            "bytes of the servers' logs": sum(path.stat().st_size for path in runtime.glob("*.log")),
        }
        servers = [details(pid) for pid, name in machine.processes() if name == "vpnsrv"]
        self.servers = {
            "number": len(servers),
            **{key: sum(one[key] for one in servers) for key in servers[0]},
        }

    def counts(self):
        """The figures that must not depend on the number of changes."""
        return {
            **{key: self.home[key] for key in COUNTS_OF_HOME},
            **{key: self.service[key] for key in COUNTS_OF_SERVICE + ONE_OF_SERVICE},
            "servers": self.servers["number"],
        }


class Soak:
    """A session that changes its address, with the tray's menu and the window's button in turn."""

    def __init__(self, world, client, protocol):
        self.world, self.client, self.tray = world, client, TrayIcon(client)
        self.used = set()
        self.samples = {}
        self.tray.appear()
        client.start_ready(ADA, requireUS=True)
        self.before = outcomes.HomeState(world.home)
        client.choose_protocol(protocol)
        client.hide()
        self._wait_lent(1)

    def _wait_lent(self, count):
        """Waits until the address of request `count` is lent, and no earlier one any more; returns it."""
        self.world.home.wait_for(
            lambda: len(self.world.service.requests_of("VPNC")) >= count, f"request {count}"
        )
        self.client.wait_hidden()
        requests = self.world.service.requests_of("VPNC")
        # By design a handshake of more than two seconds is a failed attempt, and another one follows.
        slow = self.client.output().count("stopVpn by link remote")
        assert len(requests) == count + slow, "one change, one request"
        address = requests[-1].parameter("desiredip")
        assert self.client.current_address() == address
        assert list(self.world.service.lent().values()) == [address]
        assert self.client.alerts() == []
        self.used.add(address)
        return address

    def run(self, changes, every):
        self._sample(0)
        for count in range(1, changes + 1):
            if count % 2:
                self.tray.choose("Change IP")
            else:
                self.client.press(ui.button("Change IP"))
            address = self._wait_lent(count + 1)
            if count % every == 0:
                assert self.world.home.public_address(self.client.user) == address
                self._sample(count)

    def _sample(self, count):
        """Keeps a sample when two consecutive ones are equal: programs of the last change can still end."""
        sample, end = None, time.monotonic() + EVENTUALLY
        while True:
            before, sample = sample, Sample(self.world, self.client)
            if before and before.counts() == sample.counts():
                break
            assert time.monotonic() < end, (before.counts(), sample.counts())
        self.samples[count] = sample
        figures.record(f"after {count} changes", vars(self.samples[count]))

    def check_growth(self, settled):
        counts = sorted(self.samples)
        first, last = self.samples[settled], self.samples[counts[-1]]
        changes = counts[-1] - settled
        for key in ("rss", "own"):
            assert last.client[key] - first.client[key] < CLIENT_GROWTH_KIB, f"the client's {key}"
            assert last.service[key] - first.service[key] < SERVICE_GROWTH_KIB, f"the service's {key}"
            assert last.servers[key] - first.servers[key] < SERVERS_GROWTH_KIB, f"the OpenVPN servers' {key}"
        for side in ("client", "service", "servers"):
            was, now = getattr(first, side), getattr(last, side)
            assert now["descriptors"] - was["descriptors"] <= DESCRIPTORS, side
            assert now["threads"] - was["threads"] <= THREADS, side
        self._check_counts()
        assert last.home["bytes"] - first.home["bytes"] < HOME_GROWTH
        assert (
            last.home["bytes of the session log"] - first.home["bytes of the session log"]
            <= SESSION_LOG_PER_CHANGE * changes
        )
        assert (
            last.service["bytes of the servers' logs"] - first.service["bytes of the servers' logs"]
            <= SERVER_LOG_PER_CHANGE * changes
        )

    def _check_counts(self):
        """Figures that must not depend on the number of changes."""
        samples = [self.samples[count] for count in sorted(self.samples)]
        for key in COUNTS_OF_HOME:
            assert {sample.home[key] for sample in samples[1:]} == {samples[1].home[key]}, key
        for key in COUNTS_OF_SERVICE:
            assert {sample.service[key] for sample in samples} == {samples[0].service[key]}, key
        for key in ONE_OF_SERVICE:
            assert {sample.service[key] for sample in samples} == {1}, key
        assert {sample.servers["number"] for sample in samples} == {2}

    def check_end(self):
        """After the stop everything is as before."""
        self.client.stop()
        outcomes.check_shown_not_hidden(self.client)
        self.client.wait_no_openvpn()
        self.before.check()
        figures.record("addresses used", len(self.used))
        outcomes.check_session(self.client, self.before)


def soak(make_world, make_client, protocol, changes, every, settled):
    world = make_world(groups=service.groups(PLACES))
    one = Soak(world, make_client(world), protocol)
    one.run(changes, every)
    one.check_growth(settled)
    one.check_end()


def test_five_changes(make_world, make_client):
    soak(make_world, make_client, "TCP", changes=5, every=1, settled=2)


@pytest.mark.slow
def test_two_hundred_changes(make_world, make_client):
    soak(make_world, make_client, "UDP", changes=200, every=EVERY, settled=SETTLED)
