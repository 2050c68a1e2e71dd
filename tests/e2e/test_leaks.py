"""What leaves the computer beside the tunnel, seen at the home's router: while hidden, over a change, a loss, a stop.

What the design lets through is measured and written down as figures (docs/known-issues.md has them); everything else
fails. A program at home sends 50 datagrams and 50 questions for names a second all the time, and with IPv6 as many
there. Before it is hidden the same capture must see them, or nothing it says later counts.
"""

import json
import os
import signal
import subprocess
import time

import pytest

from harness.conditions.tunnel import DEVICE
from harness.drive import client as ui
from harness.observe import capture as captures
from harness.observe import figures
from world import home as homes
from world import machine, network, service
from world.accounts import ADA
from world.service import BERLIN

RATE = 50
PROBE_PORT = 9999
PLAIN, NAMES, SIX = network.SERVICE_ADDRESS, network.NAME_SERVERS[0], network.INTERNET_ADDRESS_6
CHANGE = ui.button("Change IP")
# Every address of the pool is a VPN server's, for both protocols.
SERVERS = {
    (address, port, protocol)
    for place in service.LOCATIONS
    for address in place.addresses
    for port, protocol in ((service.UDP_PORT, captures.UDP), (service.TCP_PORT, captures.TCP))
}


def is_probe(packet):
    return packet.port in (PROBE_PORT, 53) and b"probe" in packet.payload


def kinds(packets):
    """The probe's packets: IPv4 datagrams, questions for names, IPv6 datagrams."""
    found = {"IPv4": [], "DNS": [], "IPv6": []}
    for packet in filter(is_probe, packets):
        found["IPv6" if packet.six else "DNS" if captures.is_dns(packet) else "IPv4"].append(packet)
    return found


class Probe:
    """The program at home that sends all the time."""

    def __init__(self, world):
        self._process = world.home.popen(
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
        """What it sent, and the errors it got: kind and address -> {"sent", "errors"}."""
        told, _ = self._process.communicate(timeout=10)
        return json.loads(told)


class Watched:
    """A client whose home is watched from before its start."""

    def __init__(self, world, client):
        self.world, self.client = world, client
        self.capture = captures.Capture(world)
        self.probe = Probe(world)
        self.routes = self.all_routes()
        self.resolver = world.home.path("/etc/resolv.conf").read_text(encoding="utf-8")

    def all_routes(self):
        return set(
            network.inside(network.HOME, "ip", "-4", "route").stdout.splitlines()
            + network.inside(network.HOME, "ip", "-6", "route").stdout.splitlines()
        )

    def wait_seen(self, kind, more=1):
        """Waits until the capture has that many more probe packets of the kind than now."""
        wanted = len(kinds(self.capture.packets())[kind]) + more
        self.world.home.wait_for(
            lambda: len(kinds(self.capture.packets())[kind]) >= wanted, 30, f"{kind} captured"
        )

    def check_seen_in_the_open(self):
        """The control: not hidden, all kinds of packets are caught, and a TCP connection."""
        with self.capture.phase("control") as phase:
            for kind in ("IPv4", "DNS", "IPv6"):
                self.wait_seen(kind)
            assert self.world.home.public_address() == network.REAL_ADDRESS
        found = kinds(phase.beside(SERVERS))
        assert found["IPv4"] and found["DNS"] and found["IPv6"], captures.counted(phase.packets)
        assert any(
            (packet.destination, packet.port, packet.protocol) == (network.SERVICE_ADDRESS, 443, captures.TCP)
            for packet in phase.beside(SERVERS)
        )
        assert phase.to(SERVERS) == []

    def check_routes_beside_are_seen(self):
        """The control while hidden: with routes round the tunnel the capture sees every kind."""
        beside = [
            ("-4", PLAIN, network.ROUTER_ADDRESS),
            ("-4", NAMES, network.ROUTER_ADDRESS),
            ("-6", SIX, network.ROUTER_ADDRESS_6),
        ]
        with self.capture.phase("control while hidden") as phase:
            for family, target, router in beside:
                network.run("ip", "-n", network.HOME, family, "route", "add", target, "via", router)
            for kind in ("IPv4", "DNS", "IPv6"):
                self.wait_seen(kind)
            for family, target, _router in beside:
                network.run("ip", "-n", network.HOME, family, "route", "delete", target)
        assert all(kinds(phase.beside(SERVERS)).values()), captures.counted(phase.packets)

    def hide(self, protocol="UDP"):
        self.client.remember_administrator(ADA, location=BERLIN.title)
        self.client.start()
        self.client.choose_protocol(protocol)
        self.check_seen_in_the_open()
        self.client.hide()
        self.client.wait_hidden()
        address = self.world.service.requests_of("VPNC")[-1].parameter("desiredip")
        assert self.client.current_address() == address
        return address

    def wait_reaches(self, source, count=20):
        """Waits until the name server has answered so many more of the probe's questions from that address."""
        log = self.world.folder / "dnsmasq.log"

        def questions():
            return sum(
                1
                for line in log.read_text(encoding="utf-8").splitlines()
                if "query[A] probe" in line and line.endswith(f" from {source}")
            )

        wanted = questions() + count
        self.world.home.wait_for(lambda: questions() >= wanted, 20, f"questions from {source}")


@pytest.fixture
def watch(make_world, make_client):
    made = []

    def make(**settings):
        world = make_world(ipv6=True, **settings)
        made.append(Watched(world, make_client(world)))
        return made[-1]

    yield make
    for one in made:
        one.capture.close()


def record(what, packets, sent=None):
    """Writes down how much of each kind went beside the tunnel, and from the first to the last of all."""
    found = kinds(packets)
    for kind, of_kind in found.items():
        figures.record(f"{what}: {kind} packets beside the tunnel, of {RATE}/s", len(of_kind))
    times = [packet.time for of_kind in found.values() for packet in of_kind]
    figures.record(
        f"{what}: seconds from the first to the last", round(max(times) - min(times), 2) if times else 0
    )
    others = captures.counted(packet for packet in packets if not is_probe(packet))
    figures.record(f"{what}: other packets beside the tunnel", others)
    if sent is not None:
        figures.record(f"{what}: sent and errors", sent)


def record_begin(what, packets, killed):
    first = min(packet.time for packet in packets if is_probe(packet))
    figures.record(f"{what}: seconds until the first packet beside the tunnel", round(first - killed, 2))


@pytest.mark.parametrize("protocol", ["UDP", pytest.param("TCP", marks=pytest.mark.slow)])
def test_hidden_ipv4_ipv6_and_dns(watch, protocol):
    """Nothing goes beside the tunnel: not IPv4 (UDP, TCP), not IPv6, no question for a name. Nor without the client."""
    watched = watch()
    home = watched.world.home
    address = watched.hide(protocol)
    with watched.capture.phase("hidden") as phase:
        watched.wait_reaches(address)
        assert home.public_address() == address
        found = home.run("getent", "ahostsv4", network.WEB_HOST, user="joe").stdout
        assert network.SERVICE_ADDRESS in found, "names are found, through the tunnel"
        there = home.run("curl", "-q", "-sS", "-6", "-m", "2", f"http://[{SIX}]/", user="joe", check=False)
        assert there.returncode != 0, "IPv6 is refused, not carried"
    assert captures.counted(phase.beside(SERVERS)) == {}
    assert len(phase.to(SERVERS)) > RATE / 5, "what was sent went into the tunnel"
    asked = (watched.world.folder / "dnsmasq.log").read_text(encoding="utf-8")
    assert f"query[A] {network.WEB_HOST} from {address}" in asked

    watched.check_routes_beside_are_seen()
    watched.client.signal(signal.SIGKILL)
    watched.client.wait_exit()
    with watched.capture.phase("hidden, the client was killed") as orphaned:
        watched.wait_reaches(address)
    assert captures.counted(orphaned.beside(SERVERS)) == {}
    figures.record(
        f"hidden, {protocol}: packets into the tunnel", len(phase.to(SERVERS)) + len(orphaned.to(SERVERS))
    )
    record(f"hidden, {protocol}", phase.beside(SERVERS) + orphaned.beside(SERVERS), watched.probe.end())


def test_hidden_the_own_network_is_reached_directly(watch):
    """By design only what has a way out of the home goes into the tunnel; a resolver in the home is asked directly."""
    watched = watch()
    home = watched.world.home
    watched.hide()
    home.write("/etc/resolv.conf", f"nameserver {network.ROUTER_ADDRESS}\noptions timeout:1 attempts:1\n")
    with watched.capture.phase("own network") as phase:
        assert home.run("getent", "ahostsv4", network.WEB_HOST, user="joe", check=False).returncode != 0
        home.run(
            "curl", "-q", "-sS", "-m", "2", f"http://[{network.ROUTER_ADDRESS_6}]/", user="joe", check=False
        )
    beside = phase.beside(SERVERS)
    assert {packet.destination for packet in beside} == {network.ROUTER_ADDRESS, network.ROUTER_ADDRESS_6}
    record("hidden, to the router", beside)
    watched.client.stop()


@pytest.mark.slow
def test_hidden_ipv6_is_left_alone_when_the_service_says_so(watch):
    """A service that does not stop IPv6 lets all of it out, while IPv4 and names are hidden."""
    watched = watch(vpn_settings={"block_ipv6": False})
    address = watched.hide()
    with watched.capture.phase("hidden") as phase:
        watched.wait_reaches(address)
        watched.wait_seen("IPv6", RATE)
    found = kinds(phase.beside(SERVERS))
    assert found["IPv4"] == found["DNS"] == []
    record("hidden, IPv6 not stopped", phase.beside(SERVERS))
    watched.client.stop()


# What the client itself sends beside the tunnel while it gets a configuration, and names that anyone asks for.
OF_THE_CLIENT = {f"UDP {server} port 53" for server in network.NAME_SERVERS} | {
    f"TCP {network.SERVICE_ADDRESS} port 443"
}


def tells_the_server(packet):
    """The home's answer to a VPN server that still talks to the tunnel that was ended: nobody is there."""
    return packet.protocol == captures.ICMP and service.is_lent_address(packet.destination)


def test_change_of_ip(watch):
    """Between the old tunnel and the new one traffic goes out in the open, by design; before and after it does not."""
    watched = watch()
    client, service_ = watched.client, watched.world.service
    first = watched.hide()
    with watched.capture.phase("before") as before:
        watched.wait_reaches(first)
    with watched.capture.phase("change") as change:
        client.press(CHANGE)
        client.home.wait_for(lambda: len(service_.requests_of("VPNC")) == 2, ui.SESSION, "the second request")
        client.wait_hidden()
        second = service_.requests_of("VPNC")[-1].parameter("desiredip")
        watched.wait_reaches(second)
    with watched.capture.phase("after") as after:
        watched.wait_reaches(second)
    assert captures.counted(before.beside(SERVERS)) == captures.counted(after.beside(SERVERS)) == {}
    beside = change.beside(SERVERS)
    assert (
        set(
            captures.counted(
                packet for packet in beside if not is_probe(packet) and not tells_the_server(packet)
            )
        )
        <= OF_THE_CLIENT
    )
    record("change of IP", beside, watched.probe.end())
    client.stop()


def command_of(pid):
    try:
        with open(f"/proc/{pid}/cmdline", encoding="utf-8") as file:
            return file.read()
    except OSError:
        return ""


def server_processes(protocol):
    """The gateway's OpenVPN server for a protocol."""
    return [
        pid for pid, name in machine.processes() if name == "vpnsrv" and f"{protocol}." in command_of(pid)
    ]


def kill_all(pids):
    """Kills; the time of it, by the capture's clock."""
    assert pids
    begun = time.time()
    for pid in pids:
        os.kill(pid, signal.SIGKILL)
    return begun


def check_says_hidden(client):
    """The client does not look at the tunnel once it is up: the window goes on to say that the address is hidden."""
    assert client.text("Status line") == ui.HIDING + network.REAL_ADDRESS
    assert client.text("State picture") == "IP hidden"


def test_tunnel_lost_server_killed(watch):
    """As long as OpenVPN lives traffic stays in the dead tunnel. After a silence OpenVPN gives up, and all goes out."""
    watched = watch(vpn_settings={"ping_seconds": 1, "ping_exit_seconds": 8})
    watched.hide()
    tunnels = [process.pid for process in watched.client.openvpn()]
    with watched.capture.phase("dead tunnel") as dead:
        killed = kill_all(server_processes("udp"))
        end = len(watched.capture.packets()) + RATE
        watched.world.home.wait_for(
            lambda: len(watched.capture.packets()) > end, 10, "traffic into the dead tunnel"
        )
    assert [process.pid for process in watched.client.openvpn()] == tunnels, "OpenVPN lived all the time"
    assert captures.counted(dead.beside(SERVERS)) == {}
    with watched.capture.phase("after OpenVPN") as after:
        watched.client.wait_no_openvpn(60)
        for kind in ("IPv4", "DNS", "IPv6"):
            watched.wait_seen(kind, RATE // 5)
    check_lost(watched, "server killed, ping-exit 8 s", after, killed)


def check_lost(watched, what, phase, killed):
    """Everything is in the open and the window does not know; a press makes both agree again."""
    record_begin(what, phase.beside(SERVERS), killed)
    check_says_hidden(watched.client)
    assert watched.world.home.public_address() == network.REAL_ADDRESS
    watched.client.stop()
    assert watched.client.current_address() == network.REAL_ADDRESS


def test_tunnel_lost_openvpn_killed(watch):
    """Its device and routes go with it, and all traffic goes out at once."""
    watched = watch()
    watched.hide()
    with watched.capture.phase("OpenVPN killed") as phase:
        killed = kill_all([process.pid for process in watched.client.openvpn()])
        for kind in ("IPv4", "DNS", "IPv6"):
            watched.wait_seen(kind, RATE // 5)
    check_lost(watched, "OpenVPN killed", phase, killed)


@pytest.mark.slow
def test_tunnel_lost_connection_reset(watch):
    """Over TCP a server that ends is noticed at once. OpenVPN connects anew by itself; meanwhile nothing goes out."""
    watched = watch()
    address = watched.hide("TCP")
    with watched.capture.phase("reset") as phase:
        kill_all(server_processes("tcp"))
        watched.world.home.wait_for(
            lambda: watched.client.openvpn_log().count(ui.OpenVpnWatch.UP) == 2, 30, "up again"
        )
        watched.wait_reaches(address)
    record("TCP server killed, tunnel made anew", phase.beside(SERVERS))
    assert captures.counted(phase.beside(SERVERS)) == {}
    check_says_hidden(watched.client)
    assert watched.client.current_address() == watched.world.home.public_address() == address
    watched.client.stop()


@pytest.mark.slow
@pytest.mark.parametrize("protocol", ["UDP", "TCP"])
def test_tunnel_lost_service_stopped(watch, protocol):
    """The servers say goodbye and OpenVPN tries twice more, without a packet beside it; when it ends all goes out."""
    watched = watch()
    watched.hide(protocol)
    with watched.capture.phase("service stopped") as phase:
        stopped = time.time()
        assert watched.world.service.stop() == 0
        watched.client.wait_no_openvpn(30)
        for kind in ("IPv4", "DNS", "IPv6"):
            watched.wait_seen(kind, RATE)
    record_begin(f"service stopped, {protocol}", phase.beside(SERVERS), stopped)
    check_says_hidden(watched.client)
    watched.client.stop()


def test_after_stop(watch):
    """The real address again; no packet for the tunnel; routes and resolver as before."""
    watched = watch()
    watched.hide()
    assert watched.all_routes() != watched.routes
    watched.client.stop()
    watched.client.wait_no_openvpn()
    with watched.capture.phase("after the stop") as phase:
        watched.wait_reaches(network.REAL_ADDRESS, RATE)
        assert watched.world.home.public_address() == network.REAL_ADDRESS
        for kind in ("IPv4", "DNS", "IPv6"):
            watched.wait_seen(kind, RATE)
    assert phase.to(SERVERS) == []
    assert watched.all_routes() == watched.routes
    links = network.inside(network.HOME, "ip", "-o", "link").stdout
    assert DEVICE not in links
    assert watched.world.home.path("/etc/resolv.conf").read_text(encoding="utf-8") == watched.resolver
    assert network.firewall(network.HOME) == [
        entry for entry in network.firewall(network.HOME) if "metainfo" in entry
    ]
