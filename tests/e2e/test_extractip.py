"""Resources/extractip.sh: it prints an address that came through the tunnel, and nothing without a tunnel."""

import contextlib
import shutil
import subprocess
import tempfile
import time

import pytest

from harness.conditions import scripts
from harness.conditions.tunnel import DEVICE, Tunnel
from harness.drive import client as ui
from harness.observe import figures
from world import home as homes
from world import network
from world.accounts import ADA
from world.service import BERLIN

SCRIPT = f"{homes.CONTENTS}/Resources/extractip.sh"
CONFIGURATION = "/var/tmp/qrvp.ovpn"
OVERRIDES = "/etc/quorvane/service.conf"
SETTINGS = f"web_host = {network.WEB_HOST}\nca_file = /etc/quorvane/ca.crt\n"
LENT = "203.0.113.40"
# Seconds. The script's own limit is four and a half; a machine under full load starts programs slowly.
LONGEST = 20
NOTHING = (1, "")


@pytest.fixture
def make_home(make_world):
    folders = []

    def make(**defaults):
        folders.append(tempfile.mkdtemp(prefix="quorvane-scripts-"))
        made = make_world(contents=scripts.contents(f"{folders[-1]}/contents", **defaults))
        made.home.write(CONFIGURATION, f"client\ndev tun\nremote {LENT} 1194\n", owner="joe", mode=0o600)
        return made

    yield make
    for folder in folders:
        shutil.rmtree(folder)


@pytest.fixture
def hidden(make_home):
    """A home with a real tunnel that carries everything."""
    made = make_home()
    made.tunnel = Tunnel(made.home, CONFIGURATION, LENT)
    return made


def run(world, configuration=CONFIGURATION, environment=None):
    begun = time.monotonic()
    done = world.home.run(
        "/bin/bash", SCRIPT, configuration, user="joe", environment=environment, check=False
    )
    assert time.monotonic() - begun < LONGEST
    assert done.stderr == ""
    return done.returncode, done.stdout


def route(world, *arguments):
    world.home.run("ip", "-4", "route", *arguments)


def requests_from(world):
    """The addresses from which requests for the own address came."""
    return [request.peer for request in world.service.requests() if request.target == "/ip"]


def name_queries(world):
    """The addresses from which queries for the web host's name came."""
    lines = (world.folder / "dnsmasq.log").read_text(encoding="utf-8").splitlines()
    return [line.rpartition(" from ")[2] for line in lines if f"query[A] {network.WEB_HOST} from" in line]


# --- with the tunnel


@pytest.mark.parametrize("protocol", ["UDP", pytest.param("TCP", marks=pytest.mark.slow)])
def test_tunnel_up(make_home, protocol):
    """It prints the lent address; the plain user sends the query and the request from that address."""
    world = make_home()
    Tunnel(world.home, CONFIGURATION, LENT, protocol)
    before = len(name_queries(world))
    assert run(world) == (0, LENT + "\n")
    assert requests_from(world) == [LENT]
    assert name_queries(world)[before:] == [LENT]


def test_tunnel_up_settings_key_by_key(make_home):
    """A key in the override file replaces the default; the other defaults remain."""
    world = make_home(web_host=network.WEB_HOST, ca_file="/nowhere")
    Tunnel(world.home, CONFIGURATION, LENT)
    world.home.write(OVERRIDES, "  # only the authority\n ca_file=/etc/quorvane/ca.crt # ours\n")
    assert run(world) == (0, LENT + "\n")
    world.home.write(OVERRIDES, f"web_host = {network.WEB_HOST}:443\nca_file = /etc/quorvane/ca.crt\n")
    assert run(world) == (0, LENT + "\n")
    world.home.write(OVERRIDES, f"web_host = {network.SERVICE_ADDRESS}\nca_file = /etc/quorvane/ca.crt\n")
    assert run(world) == (0, LENT + "\n")
    world.home.write(OVERRIDES, "web_host = other.quorvane.test\nca_file = /etc/quorvane/ca.crt\n")
    assert run(world) == NOTHING, "there is no such host"
    for host in ("a b", "", ":443", "www.quorvane.test:", "$(id)"):
        world.home.write(OVERRIDES, f"web_host = {host}\nca_file = /etc/quorvane/ca.crt\n")
        assert run(world) == (0, LENT + "\n"), f"{host!r} is no host, so the default remains"


def test_tunnel_up_other_name_sources(hidden):
    """The machine's resolver, here a silent one, is not used; a name in /etc/hosts is."""
    hidden.home.write("/etc/resolv.conf", f"nameserver {network.ROUTER_ADDRESS}\n")
    assert run(hidden) == (0, LENT + "\n")
    hidden.home.run("sh", "-c", f"echo '{network.SERVICE_ADDRESS} {network.WEB_HOST}' >> /etc/hosts")
    before = len(name_queries(hidden))
    assert run(hidden) == (0, LENT + "\n")
    assert len(name_queries(hidden)) == before


def test_tunnel_up_users_own_settings_do_not_matter(hidden):
    """Neither a proxy nor a .curlrc of the user redirects the request; the certificate is checked."""
    hidden.home.write(
        "/home/joe/.curlrc", "url = https://192.0.2.99/\ninsecure\ninterface = eth0\n", owner="joe"
    )
    proxy = "http://192.0.2.99:1"
    environment = {"https_proxy": proxy, "ALL_PROXY": proxy, "CURL_CA_BUNDLE": "/nowhere"}
    assert run(hidden, environment=environment) == (0, LENT + "\n")
    hidden.home.write(OVERRIDES, f"web_host = {network.WEB_HOST}\n")
    assert run(hidden, environment=environment) == NOTHING
    assert requests_from(hidden) == [LENT]


@contextlib.contextmanager
def hole(rule):
    """While the block runs, the gateway drops or refuses what matches."""
    if "reject" in rule:
        network.inside(
            network.GATEWAY,
            "nft",
            "-f",
            "-",
            input="table ip hole {\n chain passing {\n"
            f"  type filter hook forward priority 0;\n  {rule}\n }}\n}}\n",
        )
    else:
        network.swallow(rule)
    yield
    network.inside(network.GATEWAY, "nft", "delete", "table", "ip", "hole")


def test_tunnel_up_without_answer(hidden):
    """Without an answer of service or resolvers it prints nothing, not the address in the configuration."""
    with hole("tcp dport 443 reject with tcp reset"):
        assert run(hidden) == NOTHING, "the service refuses"
    with hole("ip daddr 192.0.2.10"):
        assert run(hidden) == NOTHING, "the service is silent"
    with hole("ip daddr 8.8.8.8 udp dport 53"):
        assert run(hidden) == (0, LENT + "\n"), "one resolver is enough"
    with hole("udp dport 53"):
        assert run(hidden) == NOTHING, "both resolvers are silent"
    with hole(f"ip daddr {LENT}"):
        assert run(hidden) == NOTHING, "the tunnel is dead"
    assert requests_from(hidden) == [LENT]
    assert run(hidden) == (0, LENT + "\n")


def test_tunnel_up_thousands_of_servers_in_the_configuration(hidden):
    """The look at the servers is bounded, and lines in blocks are none."""
    # Addresses that are reached through the tunnel, so that each of them is looked up.
    many = "".join(f"remote 100.64.{number // 250}.{number % 250} 1194\n" for number in range(7500))
    path = "/home/joe/many.ovpn"
    hidden.home.write(path, f"client\n{many}remote {LENT} 1194\n", owner="joe", mode=0o600)
    begun = time.monotonic()
    assert run(hidden, path) == NOTHING
    figures.record("extractip: seconds with 7,500 servers", round(time.monotonic() - begun, 1))
    hidden.home.write(path, f"client\n<ca>\n{many}</ca>\nremote {LENT} 1194\n", owner="joe", mode=0o600)
    assert run(hidden, path) == (0, LENT + "\n")


def test_tunnel_up_routes_beside_it(hidden):
    """Routes of the user past the tunnel: resolvers there are not queried, the service only through it."""
    route(hidden, "add", network.SERVICE_ADDRESS, "via", network.ROUTER_ADDRESS)
    assert hidden.home.public_address() == network.REAL_ADDRESS, "other programs use that route"
    assert run(hidden) == (0, LENT + "\n")
    before = len(name_queries(hidden))
    for server in network.NAME_SERVERS:
        route(hidden, "add", server, "via", network.ROUTER_ADDRESS)
    assert run(hidden) == NOTHING
    assert len(name_queries(hidden)) == before


@pytest.mark.parametrize("when", ["name-query", "address-request"])
def test_tunnel_lost_meanwhile(hidden, when):
    """OpenVPN is killed while the script waits for an answer; afterwards the direct way is open again."""
    with hole(
        "udp dport 53" if when == "name-query" else "ip saddr 10.8.0.0/16 tcp dport 443"
    ), hidden.home.popen(
        "/bin/bash",
        SCRIPT,
        CONFIGURATION,
        user="joe",
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        text=True,
    ) as script:
        waiting = "dd" if when == "name-query" else "curl"
        hidden.home.wait_for(lambda: hidden.home.processes(waiting), f"{waiting} waits")
        hidden.tunnel.kill()
        assert script.communicate(timeout=LONGEST) == ("", "")
        assert script.returncode == 1
    assert requests_from(hidden) == []
    assert hidden.home.public_address() == network.REAL_ADDRESS, "requests go the direct way"
    assert run(hidden) == NOTHING


# --- no tunnel, or not that of the client


def test_no_tunnel(make_home):
    """The service would answer with the real address: the script sends no request."""
    world = make_home()
    assert world.home.public_address() == network.REAL_ADDRESS
    before = len(requests_from(world)), len(name_queries(world))
    assert run(world) == NOTHING
    assert (len(requests_from(world)), len(name_queries(world))) == before


def test_no_tunnel_whatever_the_configuration_says(make_home):
    world = make_home()
    for remote in (LENT, network.REAL_ADDRESS, "vpn.quorvane.test"):
        world.home.write(CONFIGURATION, f"client\nremote {remote} 1194\n")
        assert run(world) == NOTHING, remote
    network.swallow("udp dport 53")
    assert run(world) == NOTHING


def make_tun(world, name=DEVICE, address="10.8.0.2/16"):
    world.home.run("ip", "tuntap", "add", name, "mode", "tun")
    world.home.run("ip", "address", "add", address, "dev", name)
    world.home.run("ip", "link", "set", name, "up")


def test_leftover_tun_without_routes(make_home):
    """There is a tun device, but all traffic leaves through the cable."""
    world = make_home()
    make_tun(world)
    assert run(world) == NOTHING
    assert requests_from(world) == []


def test_tunnel_that_carries_a_part(make_home):
    """Half of the addresses, only the service's, or the halves on two devices: not the client's tunnel."""
    world = make_home()
    make_tun(world)
    for part in (
        {"0.0.0.0/1": DEVICE},
        {"128.0.0.0/1": DEVICE},
        {"192.0.2.0/24": DEVICE, "8.8.0.0/16": DEVICE},
        {"0.0.0.0/1": DEVICE, "128.0.0.0/1": "eth0"},
    ):
        for target, device in part.items():
            route(world, "add", target, "dev", device)
        assert run(world) == NOTHING, part
        for target in part:
            route(world, "delete", target)
    assert requests_from(world) == []


@pytest.mark.parametrize("name", ["tun0", "wg0"])
def test_default_route_by_a_device_that_is_no_tunnel(make_home, name):
    """A cable with the name of a tunnel device, and a tunnel device of another kind."""
    world = make_home()
    if name == "wg0":
        make_tun(world, name)
        route(world, "replace", "default", "dev", name)
    else:
        world.home.run("ip", "link", "set", "eth0", "down")
        world.home.run("ip", "link", "set", "eth0", "name", name)
        world.home.run("ip", "link", "set", name, "up")
        route(world, "add", "default", "via", network.ROUTER_ADDRESS)
        assert world.home.public_address() == network.REAL_ADDRESS
    assert run(world) == NOTHING


def test_whose_tunnel_it_is(hidden):
    """Routes decide: another tunnel beside the client's, another one for everything, the client's again."""
    make_tun(hidden, "tun5", "10.99.0.2/24")
    route(hidden, "add", "192.0.2.0/24", "dev", "tun5")
    assert run(hidden) == (
        0,
        LENT + "\n",
    ), "the request goes through the client's tunnel, although the other one leads to the service"
    route(hidden, "delete", f"{LENT}/32")
    assert run(hidden) == NOTHING, "its server would be reached through it: it is another program's tunnel"
    route(hidden, "add", f"{LENT}/32", "via", network.ROUTER_ADDRESS)
    for half in ("0.0.0.0/1", "128.0.0.0/1"):
        route(hidden, "delete", half)
    assert run(hidden) == NOTHING, "it carries nothing"
    route(hidden, "replace", "default", "dev", DEVICE)
    assert run(hidden) == (0, LENT + "\n"), "the other way to carry everything"
    for configuration in ("/nowhere", "", "/var/tmp"):
        assert (
            run(hidden, configuration=configuration) == NOTHING
        ), "without a configuration the tunnel cannot be identified"


# --- the client


def test_client_shows_no_address_without_answer(world, client):
    """The service is silent: hidden, with a location and without an address; not the real one as lent."""
    network.swallow("ip saddr 10.0.0.0/8 tcp dport 443")  # of either protocol's tunnel
    client.start_hidden(ADA, location=BERLIN.title)
    assert client.text("Status line") == ui.HIDING + network.REAL_ADDRESS
    assert client.current_address() == ""
    assert client.text("Location") == BERLIN.title and client.text("State picture") == "IP hidden"
    assert [request.peer for request in world.service.requests() if request.target == "/ip"] == []
    client.stop()
    assert client.current_address() == network.REAL_ADDRESS
