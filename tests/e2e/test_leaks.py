"""Packets outside of the tunnel, captured at the home's router: while hidden, changing and stopping.

Packets that the design lets through are counted and recorded as figures (see docs/known-issues.md); all
others fail the test. A program in the home sends 50 datagrams, 50 name queries and 50 IPv6 datagrams a second
all the time. The capture must see them before the IP is hidden; otherwise its later results would prove
nothing.
"""

import json
import os
import signal
import time

import pytest

from harness.conditions import probing
from harness.conditions.probing import NAMES, PLAIN, RATE, SIX, Probe, is_probe, kinds
from harness.conditions.tunnel import DEVICE
from harness.drive import client as ui
from harness.observe import capture as captures
from harness.observe import figures
from world import machine, network, service
from world.accounts import ADA
from world.service import BERLIN

CHANGE = ui.button("Change IP")
# Every address of the pool is a VPN server's, for both protocols.
SERVERS = {
    (address, port, protocol)
    for place in service.LOCATIONS
    for address in place.addresses
    for port, protocol in ((service.UDP_PORT, captures.UDP), (service.TCP_PORT, captures.TCP))
}


class Watched:
    """A client whose home is captured since before its start."""

    def __init__(self, world, client):
        self.world, self.client = world, client
        self.capture = captures.Capture(world)
        self.probe = Probe(world.home)
        self.routes = self.all_routes()
        self.resolver = world.home.path("/etc/resolv.conf").read_text(encoding="utf-8")

    def all_routes(self):
        return set(
            network.inside(network.HOME, "ip", "-4", "route").stdout.splitlines()
            + network.inside(network.HOME, "ip", "-6", "route").stdout.splitlines()
        )

    def wait_seen(self, kind, more=1):
        probing.wait_seen(self.world.home, self.capture, kind, more)

    def check_seen_in_the_open(self):
        """The control: while nothing is hidden, all kinds of packets and a TCP connection are captured."""
        with self.capture.phase("control") as phase:
            probing.check_seen_in_the_open(self.world.home, self.capture)
            assert self.world.home.public_address() == network.REAL_ADDRESS
        found = kinds(phase.beside(SERVERS))
        assert found["IPv4"] and found["DNS"] and found["IPv6"], captures.counted(phase.packets)
        assert any(
            (packet.destination, packet.port, packet.protocol) == (network.SERVICE_ADDRESS, 443, captures.TCP)
            for packet in phase.beside(SERVERS)
        )
        assert phase.towards(SERVERS) == []

    def check_routes_beside_are_seen(self):
        """The control while hidden: with routes past the tunnel the capture sees every kind.

        A route through a gateway would end the tunnel. These pretend that the targets are on the cable, with
        the router's hardware address.
        """
        beside = [("-4", PLAIN), ("-4", NAMES), ("-6", SIX)]
        link = json.loads(network.inside(network.GATEWAY, "ip", "-j", "link", "show", "lan").stdout)
        router = ["lladdr", link[0]["address"], "dev", "eth0", "nud", "permanent"]
        with self.capture.phase("control while hidden") as phase:
            for family, target in beside:
                network.run("ip", "-n", network.HOME, "neighbour", "add", target, *router)
                network.run("ip", "-n", network.HOME, family, "route", "add", target, "dev", "eth0")
            for kind in ("IPv4", "DNS", "IPv6"):
                self.wait_seen(kind)
            for family, target in beside:
                network.run("ip", "-n", network.HOME, family, "route", "delete", target)
                network.run("ip", "-n", network.HOME, "neighbour", "delete", target, "dev", "eth0")
        assert all(kinds(phase.beside(SERVERS)).values()), captures.counted(phase.packets)

    def hide(self, protocol="UDP", **preferences):
        self.client.remember_administrator(ADA, location=BERLIN.title, **preferences)
        self.client.start()
        self.client.choose_protocol(protocol)
        self.check_seen_in_the_open()
        self.client.hide()
        self.client.wait_hidden()
        address = self.world.service.requests_of("VPNC")[-1].parameter("desiredip")
        assert self.client.current_address() == address
        return address

    def wait_reaches(self, source, count=20):
        """Waits until the name server has received `count` further queries of the probe from that address."""
        log = self.world.folder / "dnsmasq.log"

        def queries():
            return sum(
                1
                for line in log.read_text(encoding="utf-8").splitlines()
                if "query[A] probe" in line and line.endswith(f" from {source}")
            )

        wanted = queries() + count
        self.world.home.wait_for(lambda: queries() >= wanted, f"name queries from {source}")


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
    """Records how many packets of each kind were outside of the tunnel, and for how long."""
    found = kinds(packets)
    for kind, of_kind in found.items():
        figures.record(f"{what}: {kind} packets outside of the tunnel, of {RATE}/s", len(of_kind))
    times = [packet.time for of_kind in found.values() for packet in of_kind]
    figures.record(
        f"{what}: seconds from the first to the last", round(max(times) - min(times), 2) if times else 0
    )
    others = captures.counted(packet for packet in packets if not is_probe(packet))
    figures.record(f"{what}: other packets outside of the tunnel", others)
    if sent is not None:
        figures.record(f"{what}: sent and errors", sent)


def record_begin(what, packets, killed):
    first = min(packet.time for packet in packets if is_probe(packet))
    figures.record(f"{what}: seconds until the first packet outside of the tunnel", round(first - killed, 2))


@pytest.mark.parametrize("protocol", ["UDP", pytest.param("TCP", marks=pytest.mark.slow)])
def test_hidden_ipv4_ipv6_and_dns(watch, protocol):
    """No IPv4 (UDP, TCP), IPv6 or name query leaves outside of the tunnel, also after the client's end."""
    watched = watch()
    home = watched.world.home
    address = watched.hide(protocol)
    with watched.capture.phase("hidden") as phase:
        watched.wait_reaches(address)
        assert home.public_address() == address
        found = home.run("getent", "ahostsv4", network.WEB_HOST, user="joe").stdout
        assert network.SERVICE_ADDRESS in found, "names are resolved, through the tunnel"
        there = home.run("curl", "-q", "-sS", "-6", "-m", "2", f"http://[{SIX}]/", user="joe", check=False)
        assert there.returncode != 0, "IPv6 is refused, not forwarded"
    assert captures.counted(phase.beside(SERVERS)) == {}
    assert len(phase.towards(SERVERS)) > RATE / 5, "the packets go into the tunnel"
    log = (watched.world.folder / "dnsmasq.log").read_text(encoding="utf-8")
    assert f"query[A] {network.WEB_HOST} from {address}" in log

    watched.check_routes_beside_are_seen()
    watched.client.kill()
    with watched.capture.phase("hidden, the client was killed") as orphaned:
        watched.wait_reaches(address)
    assert captures.counted(orphaned.beside(SERVERS)) == {}
    figures.record(
        f"hidden, {protocol}: packets into the tunnel",
        len(phase.towards(SERVERS)) + len(orphaned.towards(SERVERS)),
    )
    record(f"hidden, {protocol}", phase.beside(SERVERS) + orphaned.beside(SERVERS), watched.probe.end())


def test_hidden_the_own_network_is_reached_directly(watch):
    """By design traffic within the home's network is direct, also queries of a resolver there."""
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
def test_hidden_ipv6_is_not_stopped_when_the_service_allows_it(watch):
    """With a service that does not stop IPv6, all of it leaves, while IPv4 and names are hidden."""
    watched = watch(vpn_settings={"block_ipv6": False})
    address = watched.hide()
    with watched.capture.phase("hidden") as phase:
        watched.wait_reaches(address)
        watched.wait_seen("IPv6", RATE)
    found = kinds(phase.beside(SERVERS))
    assert found["IPv4"] == found["DNS"] == []
    record("hidden, IPv6 not stopped", phase.beside(SERVERS))
    watched.client.stop()


# What the client sends outside of the tunnel to fetch a configuration, and name queries of any program.
OF_THE_CLIENT = {f"UDP {server} port 53" for server in network.NAME_SERVERS} | {
    f"TCP {network.SERVICE_ADDRESS} port 443"
}


def answers_old_server(packet):
    """The home's ICMP answer to a VPN server that still sends to the ended tunnel: port unreachable."""
    return packet.protocol == captures.ICMP and service.is_lent_address(packet.destination)


def test_change_of_ip(watch):
    """By design traffic leaves openly between the old tunnel and the new one; before and after not."""
    watched = watch()
    client, service_ = watched.client, watched.world.service
    first = watched.hide()
    with watched.capture.phase("before") as before:
        watched.wait_reaches(first)
    with watched.capture.phase("change") as change:
        client.press(CHANGE)
        client.home.wait_for(lambda: len(service_.requests_of("VPNC")) == 2, "the second request")
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
                packet for packet in beside if not is_probe(packet) and not answers_old_server(packet)
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
    """Ends the processes by SIGKILL; returns the time, by the capture's clock."""
    assert pids
    begun = time.time()
    for pid in pids:
        os.kill(pid, signal.SIGKILL)
    return begun


def check_shows_hidden(client):
    assert client.text("Status line") == ui.HIDING + network.REAL_ADDRESS
    assert client.text("State picture") == "IP hidden"


def test_tunnel_lost_server_killed(watch):
    """Traffic stays in the dead tunnel while OpenVPN runs; when OpenVPN gives up, it leaves openly."""
    watched = watch(vpn_settings={"ping_seconds": 1, "ping_exit_seconds": 8})
    watched.hide(noReconnect=True)
    tunnels = [process.pid for process in watched.client.openvpn()]
    with watched.capture.phase("dead tunnel") as dead:
        killed = kill_all(server_processes("udp"))
        end = len(watched.capture.packets()) + RATE
        watched.world.home.wait_for(
            lambda: len(watched.capture.packets()) > end, "traffic into the dead tunnel"
        )
    assert [process.pid for process in watched.client.openvpn()] == tunnels, "OpenVPN ran all the time"
    assert captures.counted(dead.beside(SERVERS)) == {}
    with watched.capture.phase("after OpenVPN") as after:
        watched.client.wait_no_openvpn()
        for kind in ("IPv4", "DNS", "IPv6"):
            watched.wait_seen(kind, RATE // 5)
    check_lost(watched, "server killed, ping-exit 8 s", after, killed)


def check_lost(watched, what, phase, killed):
    """All traffic leaves openly, and the window shows it."""
    record_begin(what, phase.beside(SERVERS), killed)
    watched.client.wait_not_hidden()
    assert watched.client.current_address() == network.REAL_ADDRESS
    assert watched.world.home.public_address() == network.REAL_ADDRESS


def test_tunnel_lost_openvpn_killed(watch):
    """Its device and routes vanish with it, and all traffic leaves openly at once."""
    watched = watch()
    watched.hide(noReconnect=True)
    with watched.capture.phase("OpenVPN killed") as phase:
        killed = kill_all([process.pid for process in watched.client.openvpn()])
        for kind in ("IPv4", "DNS", "IPv6"):
            watched.wait_seen(kind, RATE // 5)
    check_lost(watched, "OpenVPN killed", phase, killed)


@pytest.mark.slow
def test_tunnel_lost_connection_reset(watch):
    """Over TCP OpenVPN notices the server's end at once and reconnects; nothing leaves openly."""
    watched = watch()
    address = watched.hide("TCP")
    with watched.capture.phase("reset") as phase:
        kill_all(server_processes("tcp"))
        watched.world.home.wait_for(
            lambda: watched.client.openvpn_log().count(ui.OpenVpnWatch.UP) == 2, "up again"
        )
        watched.wait_reaches(address)
    record("TCP server killed, tunnel made anew", phase.beside(SERVERS))
    assert captures.counted(phase.beside(SERVERS)) == {}
    check_shows_hidden(watched.client)
    assert watched.client.current_address() == watched.world.home.public_address() == address
    watched.client.stop()


@pytest.mark.slow
@pytest.mark.parametrize("protocol", ["UDP", "TCP"])
def test_tunnel_lost_service_stopped(watch, protocol):
    """The servers announce their end and OpenVPN tries twice more; nothing leaves openly before it ends."""
    watched = watch()
    watched.hide(protocol, noReconnect=True)
    with watched.capture.phase("service stopped") as phase:
        stopped = time.time()
        assert watched.world.service.stop() == 0
        watched.client.wait_no_openvpn()
        for kind in ("IPv4", "DNS", "IPv6"):
            watched.wait_seen(kind, RATE)
    record_begin(f"service stopped, {protocol}", phase.beside(SERVERS), stopped)
    watched.client.wait_not_hidden()


def test_after_stop(watch):
    """The real address again, no packet to the VPN servers, routes and resolver as before."""
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
    assert phase.towards(SERVERS) == []
    assert watched.all_routes() == watched.routes
    links = network.inside(network.HOME, "ip", "-o", "link").stdout
    assert DEVICE not in links
    assert watched.world.home.path("/etc/resolv.conf").read_text(encoding="utf-8") == watched.resolver
    assert network.firewall(network.HOME) == [
        entry for entry in network.firewall(network.HOME) if "metainfo" in entry
    ]
