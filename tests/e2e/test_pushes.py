"""Settings that a hostile VPN server pushes: no packet leaves beside the tunnel, and the routes come back.

A real OpenVPN server pushes them to the installed guard. A program in the home sends all the time, and the
home's router captures. Whatever is pushed, one of two things must happen: the log reports that the tunnel is
up and nothing leaves beside it, or the guard ends the attempt. Afterwards all tables are as before.
"""

import ipaddress
import os
import random
import time

import pytest

from harness.conditions.guarded_home import (
    NEIGHBOUR,
    SERVER,
    UP,
    Watched,
    check_tables,
    settled_tables,
    tables,
)
from harness.conditions.hostile_api import HostileApi, page
from harness.conditions.probing import NAMES, PLAIN, PROBE_PORT, SIX
from harness.conditions.pushing_server import ADDRESS, PORT, configuration, pushing
from harness.home.deadlines import EVENTUALLY
from harness.observe import capture as captures
from harness.observe import figures, outcomes
from world import network
from world.accounts import ADA
from world.service import BERLIN

SEED = os.environ.get("QUORVANE_E2E_SEED")
FEW, MANY = 5, 200
FEW_WITH_THE_LOCK = 3

QUARTERS = [f"route {first}.0.0.0 192.0.0.0 net_gateway" for first in (0, 64, 128, 192)]
MANY_ROUTES = [
    f"route 100.{number // 256}.{number % 256}.0 255.255.255.0 net_gateway" for number in range(3000)
]
# Name -> what is pushed, the server's own settings, whether the tunnel can come up.
HOSTILE = {
    "quarters over the net gateway": (QUARTERS, [], True),
    "both resolvers": (
        [f"route {one} 255.255.255.255 net_gateway" for one in network.NAME_SERVERS],
        [],
        True,
    ),
    "a neighbour as route-gateway": ([f"route-gateway {NEIGHBOUR}"], [], False),
    "the router as route-gateway": ([f"route-gateway {network.ROUTER_ADDRESS}"], [], False),
    "3,000 routes": (MANY_ROUTES, [], True),
    "redirect-gateway": (["redirect-gateway"], [], True),
    "redirect-gateway with flags": (["redirect-gateway local !ipv4 autolocal bypass-dns"], [], True),
    "IPv6": (
        ["route-ipv6 2000::/3 2001:db8:77::1", "route-ipv6 ::/0 2001:db8:77::1", "redirect-gateway ipv6"],
        ["server-ipv6 fd00:78::/64"],
        True,
    ),
    "verb 11": (["verb 11"], [], True),
    "resolvers": (["dhcp-option DNS 192.168.77.1", "dhcp-option DNS6 2001:db8:77::1"], [], True),
    "MTU 576": (["tun-mtu 576"], ["tun-mtu 576"], False),
}
THROUGH_THE_WINDOW = ("quarters over the net gateway", "a neighbour as route-gateway")


def attack(watched, pushes, settings=()):
    """One session with a server that pushes; returns whether it came up."""
    with pushing(watched.world, pushes, settings):
        is_up = watched.start(configuration(watched.world))
        if is_up:
            watched.check_nothing_beside()
            watched.end()
        watched.guard.wait(EVENTUALLY)
    assert is_up or "the tunnel is refused: " in watched.log() or "Exiting due to fatal" in watched.log()
    watched.check_as_before()
    return is_up


@pytest.fixture(name="watched")
def _watched(make_world):
    one = Watched(make_world(ipv6=True))
    yield one
    one.close()


def test_hostile_pushes(watched):
    for name, (pushes, settings, comes_up) in HOSTILE.items():
        is_up = attack(watched, pushes, settings)
        assert is_up == comes_up, (name, watched.log())
        if name == "a neighbour as route-gateway":
            assert "its device does not carry all IPv4 addresses" in watched.log()
        figures.record(f"pushed {name}", "up, 0 packets beside" if is_up else "refused")
    watched.check_seen_in_the_open()


def test_hostile_pushes_with_the_lock(watched):
    """Nothing leaves from before the launch until after the end, and the same sessions come up."""
    watched.close_lock()
    for name, (pushes, settings, comes_up) in HOSTILE.items():
        with watched.capture.phase(name) as phase:
            assert attack(watched, pushes, settings) == comes_up, (name, watched.log())
        assert captures.counted(phase.beside(SERVER)) == {}, name
    watched.lock("-lift")
    watched.check_seen_in_the_open()


def test_lock_holds_where_the_routes_lead_past_the_tunnel(watched):
    """Even OpenVPN alone, which follows the quarters, lets nothing out while the lock is closed."""
    watched.home.write("/run/x.ovpn", configuration(watched.world))
    watched.home.write("/run/pair", "user\npassword\n", mode=0o600)
    watched.close_lock()
    opened = f"add element inet quorvane_lock servers {{ {ADDRESS} . udp . {PORT} }}"
    network.inside(network.HOME, "nft", opened)
    with watched.capture.phase("past the tunnel") as phase, pushing(watched.world, QUARTERS):
        process = watched.home.popen(
            "/usr/sbin/openvpn",
            *("--config", "/run/x.ovpn", "--auth-user-pass", "/run/pair", "--log", "/run/x.log"),
        )
        log = watched.home.path("/run/x.log")
        watched.home.wait_for(lambda: log.exists() and UP in log.read_text(), "the tunnel is up")
        time.sleep(1)  # fifty packets of each kind
        assert tables() != watched.before
        process.kill()
        process.wait(EVENTUALLY)
    assert captures.counted(phase.beside(SERVER)) == {}
    assert phase.towards(SERVER)
    watched.lock("-lift")
    watched.check_seen_in_the_open()


def test_without_the_filter_the_same_pushes_leak(watched):
    """The control: OpenVPN alone follows the quarters, and the capture sees what leaves beside the tunnel."""
    watched.home.write("/run/x.ovpn", configuration(watched.world))
    watched.home.write("/run/pair", "user\npassword\n", mode=0o600)
    with pushing(watched.world, QUARTERS):
        process = watched.home.popen(
            "/usr/sbin/openvpn",
            *("--config", "/run/x.ovpn", "--auth-user-pass", "/run/pair", "--log", "/run/x.log"),
        )
        log = watched.home.path("/run/x.log")
        watched.home.wait_for(lambda: log.exists() and UP in log.read_text(), "the tunnel is up")
        with watched.capture.phase("followed") as phase:
            watched.wait_open({(PLAIN, PROBE_PORT)})
        process.kill()
        process.wait(EVENTUALLY)
    assert any(one.destination == PLAIN for one in phase.beside(SERVER))
    assert tables() != watched.before, "the routes are left"


def drawn(draw):
    """A random combination of pushed settings, and settings of the server itself."""
    gateways = ["net_gateway", "vpn_gateway", NEIGHBOUR, network.ROUTER_ADDRESS, ""]
    flags = ["def1", "local", "autolocal", "bypass-dhcp", "bypass-dns", "block-local", "ipv6", "!ipv4"]

    def route():
        length = draw.randint(1, 32)
        mask = (0xFFFFFFFF << (32 - length)) & 0xFFFFFFFF
        address = ipaddress.ip_address(draw.getrandbits(32) & mask)
        rest = f"{draw.choice(gateways)} {draw.choice(['', '0', '5'])}"
        return f"route {address} {ipaddress.ip_address(mask)} {rest}".strip()

    kinds = [
        route,
        lambda: f"route {draw.choice([PLAIN, NAMES])} 255.255.255.255 {draw.choice(gateways[:4])}",
        lambda: f"route-gateway {draw.choice(['dhcp', NEIGHBOUR, network.ROUTER_ADDRESS, '10.78.0.9'])}",
        lambda: "redirect-gateway " + " ".join(draw.sample(flags, draw.randint(0, 4))),
        lambda: "redirect-private " + " ".join(draw.sample(flags, draw.randint(0, 2))),
        lambda: f"route-ipv6 {draw.choice(['2000::/3', '::/1', f'{SIX}/128'])} {network.ROUTER_ADDRESS_6}",
        lambda: f"dhcp-option {draw.choice(['DNS', 'DNS6', 'DOMAIN', 'WINS'])} {network.ROUTER_ADDRESS}",
        lambda: f"tun-mtu {draw.randint(68, 9000)}",
        lambda: f"verb {draw.randint(0, 11)}",
        lambda: f"route-metric {draw.randint(0, 9)}",
        lambda: f"route-delay {draw.randint(0, 2)}",
        lambda: draw.choice(["block-ipv6", "persist-tun", "route-nopull", "comp-lzo yes", "compress lz4"]),
        lambda: f"topology {draw.choice(['net30', 'p2p', 'subnet'])}",
        lambda: f"ifconfig 10.78.0.{draw.randint(2, 200)} 255.255.255.0",
        lambda: f"ifconfig {draw.choice([network.ROUTER_ADDRESS, NEIGHBOUR, PLAIN])} 255.255.255.0",
        lambda: f"ifconfig-ipv6 {draw.choice(['2001:db8:77::9/64', 'fd00::9/64'])} fd00::1",
        lambda: draw.choice(["inactive 1", "ping-restart 3", "ping-exit 30", "explicit-exit-notify 5"]),
        lambda: draw.choice(["setenv x y", "up /bin/true", "route-up /bin/true", "plugin x.so", "log x"]),
    ]
    pushes = [draw.choice(kinds)() for _ in range(draw.randint(1, 8))]
    return pushes, draw.choice([[], [], ["server-ipv6 fd00:78::/64"], ["tun-mtu 576"], ["tun-mtu 1400"]])


def random_combinations(watched, count, attack_with=attack, name="random pushes"):
    seed = int(SEED) if SEED else random.SystemRandom().randrange(2**32)
    print(f"QUORVANE_E2E_SEED={seed}")
    figures.record(f"{name}: seed", seed)
    draw, came_up = random.Random(seed), 0
    for number in range(count):
        pushes, settings = drawn(draw)
        try:
            came_up += attack_with(watched, pushes, settings)
        except BaseException:
            print(f"combination {number} of seed {seed}: {pushes} {settings}\n{watched.log()}")
            raise
    figures.record(f"{name}: combinations, of these up", [count, came_up])
    return came_up


def random_combinations_in_the_open(watched, count):
    assert random_combinations(watched, count) > 0
    watched.check_seen_in_the_open()


def attack_locked(watched, pushes, settings):
    """Nothing leaves from before the launch until after the end, whether or not the session comes up."""
    with watched.capture.phase("locked") as phase:
        is_up = attack(watched, pushes, settings)
    assert captures.counted(phase.beside(SERVER)) == {}
    assert phase.towards(SERVER) or not is_up, "the capture sees the tunnel"
    return is_up


def random_combinations_with_the_lock(watched, count):
    """The capture sees the same program before the lock closes and after it is lifted."""
    watched.close_lock()
    assert attack_locked(watched, [], []), "a session without pushed settings comes up"
    random_combinations(watched, count, attack_locked, "random pushes with the lock")
    watched.lock("-lift")
    watched.check_seen_in_the_open()


def test_random_pushes(watched):
    random_combinations_in_the_open(watched, FEW)


@pytest.mark.slow
def test_many_random_pushes(watched):
    random_combinations_in_the_open(watched, MANY)


def test_random_pushes_with_the_lock(watched):
    random_combinations_with_the_lock(watched, FEW_WITH_THE_LOCK)


@pytest.mark.slow
def test_many_random_pushes_with_the_lock(watched):
    random_combinations_with_the_lock(watched, MANY)


def address_seen(connection, closing):
    """Like the service's answer to /ip: the address from which the request came."""
    page(f"{connection.getpeername()[0]}\n".encode())(connection, closing)


def through_the_window(world, client, names):
    """The whole client: the window says hidden only when nothing leaves beside the tunnel."""
    network.run("ip", "-n", network.GATEWAY, "address", "add", f"{NEIGHBOUR}/24", "dev", "lan")
    client.start_ready(ADA, location=BERLIN.title)
    before, capture = settled_tables(world.home), captures.Capture(world)
    answer = page(b"VPNConfig: " + configuration(world).encode().replace(b"\n", b"<br />"))
    for name in names:
        pushes, settings, comes_up = HOSTILE[name]
        with HostileApi(world, {"VPNC": answer, "": address_seen}), pushing(world, pushes, settings):
            client.hide()
            if comes_up:
                client.wait_hidden()
                with capture.phase(name) as phase:
                    assert world.home.public_address() == ADDRESS
                assert not phase.beside(SERVER), name
                assert client.current_address() == ADDRESS, name
                client.stop()
            else:
                client.wait_alert()
                outcomes.accept_alert(client, outcomes.NOT_AVAILABLE)
                client.wait_not_hidden()
                assert world.home.public_address() == network.REAL_ADDRESS
        client.wait_no_openvpn()
        check_tables(world.home, before)
    capture.close()
    outcomes.check_session(client)


def test_a_few_through_the_window(make_world, make_client):
    world = make_world(ipv6=True)
    through_the_window(world, make_client(world), THROUGH_THE_WINDOW)


@pytest.mark.slow
def test_all_through_the_window(make_world, make_client):
    world = make_world(ipv6=True)
    through_the_window(world, make_client(world), list(HOSTILE))
