"""Resources/extractip.sh: what it prints came through the tunnel, and without one it prints nothing."""

import contextlib
import shutil
import subprocess
import tempfile
import time

import pytest

from harness.conditions import scripts
from harness.conditions.tunnel import DEVICE, Tunnel
from harness.drive import client as ui
from world import home as homes
from world import network
from world.accounts import ADA
from world.service import BERLIN

SCRIPT = f"{homes.CONTENTS}/Resources/extractip.sh"
CONFIGURATION = "/var/tmp/qrvp.ovpn"
OVERRIDES = "/etc/quorvane/service.conf"
SETTINGS = f"web_host = {network.WEB_HOST}\nca_file = /etc/quorvane/ca.crt\n"
LENT = "203.0.113.40"
# Its own bound is four and a half seconds; a busy machine takes a while to start and to end a program.
LONGEST = 6
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


def asked(world):
    """Who asked the service for his address."""
    return [request.peer for request in world.service.requests() if request.target == "/ip"]


def name_questions(world):
    """The addresses from which the web host's name was asked for."""
    lines = (world.folder / "dnsmasq.log").read_text(encoding="utf-8").splitlines()
    return [line.rpartition(" from ")[2] for line in lines if f"query[A] {network.WEB_HOST} from" in line]


# --- with the tunnel


@pytest.mark.parametrize("protocol", ["UDP", pytest.param("TCP", marks=pytest.mark.slow)])
def test_tunnel_up(make_home, protocol):
    """The lent address; the name and the address were both asked from it, and by the plain user."""
    world = make_home()
    Tunnel(world.home, CONFIGURATION, LENT, protocol)
    before = len(name_questions(world))
    assert run(world) == (0, LENT + "\n")
    assert asked(world) == [LENT]
    assert name_questions(world)[before:] == [LENT]


def test_tunnel_up_settings_key_by_key(make_home):
    """The override file wins for the keys that it has; the defaults hold for the others."""
    world = make_home(web_host=network.WEB_HOST, ca_file="/nowhere")
    Tunnel(world.home, CONFIGURATION, LENT)
    world.home.write(OVERRIDES, "  # only the authority\n ca_file=/etc/quorvane/ca.crt # ours\n")
    assert run(world) == (0, LENT + "\n")
    world.home.write(OVERRIDES, f"web_host = {network.WEB_HOST}:443\nca_file = /etc/quorvane/ca.crt\n")
    assert run(world) == (0, LENT + "\n")
    world.home.write(OVERRIDES, f"web_host = {network.SERVICE_ADDRESS}\nca_file = /etc/quorvane/ca.crt\n")
    assert run(world) == (0, LENT + "\n")
    for host in ("other.quorvane.test", "a b", "", ":443", "www.quorvane.test:", "$(id)"):
        world.home.write(OVERRIDES, f"web_host = {host}\nca_file = /etc/quorvane/ca.crt\n")
        assert run(world) == NOTHING, host


def test_tunnel_up_other_name_sources(hidden):
    """The machine's own resolver, here at the router and silent, does not matter; a name in /etc/hosts does."""
    hidden.home.write("/etc/resolv.conf", f"nameserver {network.ROUTER_ADDRESS}\n")
    assert run(hidden) == (0, LENT + "\n")
    hidden.home.run("sh", "-c", f"echo '{network.SERVICE_ADDRESS} {network.WEB_HOST}' >> /etc/hosts")
    before = len(name_questions(hidden))
    assert run(hidden) == (0, LENT + "\n")
    assert len(name_questions(hidden)) == before


def test_tunnel_up_users_own_settings_do_not_matter(hidden):
    """Neither a proxy nor a .curlrc of the user's turns the question aside; the authority is checked."""
    hidden.home.write(
        "/home/joe/.curlrc", "url = https://192.0.2.99/\ninsecure\ninterface = eth0\n", owner="joe"
    )
    proxy = "http://192.0.2.99:1"
    environment = {"https_proxy": proxy, "ALL_PROXY": proxy, "CURL_CA_BUNDLE": "/nowhere"}
    assert run(hidden, environment=environment) == (0, LENT + "\n")
    hidden.home.write(OVERRIDES, f"web_host = {network.WEB_HOST}\n")
    assert run(hidden, environment=environment) == NOTHING
    assert asked(hidden) == [LENT]


@contextlib.contextmanager
def hole(rule):
    """Drops or refuses at the gateway what matches, for a while."""
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


def test_tunnel_up_nobody_tells(hidden):
    """The service or the resolvers give nothing. The configuration's server does not stand in: nobody has seen it."""
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
    assert asked(hidden) == [LENT]
    assert run(hidden) == (0, LENT + "\n")


def test_tunnel_up_routes_beside_it(hidden):
    """Routes of the user's own lead round the tunnel: resolvers there are not asked, the service still through it."""
    route(hidden, "add", network.SERVICE_ADDRESS, "via", network.ROUTER_ADDRESS)
    assert hidden.home.public_address() == network.REAL_ADDRESS, "others do go by that route"
    assert run(hidden) == (0, LENT + "\n")
    before = len(name_questions(hidden))
    for server in network.NAME_SERVERS:
        route(hidden, "add", server, "via", network.ROUTER_ADDRESS)
    assert run(hidden) == NOTHING
    assert len(name_questions(hidden)) == before


@pytest.mark.parametrize("when", ["the name is asked for", "the service is asked"])
def test_tunnel_lost_meanwhile(hidden, when):
    """OpenVPN is killed while the question waits for its answer; afterwards every way is open again."""
    with hole("udp dport 53" if "name" in when else "ip saddr 10.8.0.0/16 tcp dport 443"), hidden.home.popen(
        "/bin/bash",
        SCRIPT,
        CONFIGURATION,
        user="joe",
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        text=True,
    ) as script:
        waiting = "dd" if "name" in when else "curl"
        hidden.home.wait_for(lambda: hidden.home.processes(waiting), 5, f"{waiting} waits")
        hidden.tunnel.kill()
        assert script.communicate(timeout=LONGEST) == ("", "")
        assert script.returncode == 1
    assert asked(hidden) == []
    assert hidden.home.public_address() == network.REAL_ADDRESS, "the direct way is open"
    assert run(hidden) == NOTHING


# --- no tunnel, or not ours


def test_no_tunnel(make_home):
    """The service would tell the real address: it is not even asked."""
    world = make_home()
    assert world.home.public_address() == network.REAL_ADDRESS
    before = len(asked(world)), len(name_questions(world))
    assert run(world) == NOTHING
    assert (len(asked(world)), len(name_questions(world))) == before


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
    """All traffic leaves by the cable although there is a tun device."""
    world = make_home()
    make_tun(world)
    assert run(world) == NOTHING
    assert asked(world) == []


def test_tunnel_that_carries_a_part(make_home):
    """Half of the addresses, only the service's, or the halves on two devices: not ours."""
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
    assert asked(world) == []


@pytest.mark.parametrize("name", ["tun0", "wg0"])
def test_default_route_by_a_device_that_is_no_tunnel(make_home, name):
    """The computer's cable called like a tunnel, and a tunnel of another kind."""
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
    """Routes decide: a user's own tunnel beside ours, one of somebody's that carries everything, and ours again."""
    make_tun(hidden, "tun5", "10.99.0.2/24")
    route(hidden, "add", "192.0.2.0/24", "dev", "tun5")
    assert run(hidden) == (0, LENT + "\n"), "asked through ours although the other leads to the service"
    route(hidden, "delete", f"{LENT}/32")
    assert run(hidden) == NOTHING, "our server would be reached through it: somebody else's"
    route(hidden, "add", f"{LENT}/32", "via", network.ROUTER_ADDRESS)
    for half in ("0.0.0.0/1", "128.0.0.0/1"):
        route(hidden, "delete", half)
    assert run(hidden) == NOTHING, "it carries nothing"
    route(hidden, "replace", "default", "dev", DEVICE)
    assert run(hidden) == (0, LENT + "\n"), "the other way to carry everything"
    for configuration in ("/nowhere", "", "/var/tmp"):
        assert (
            run(hidden, configuration=configuration) == NOTHING
        ), "without a configuration it cannot be told"


# --- the client


def test_client_shows_no_address_when_nobody_tells(world, client):
    """The tunnel is up and the service silent: hidden, its place shown, no address; the real one nowhere as lent."""
    network.swallow("ip saddr 10.0.0.0/8 tcp dport 443")  # of either protocol's tunnel
    client.remember_administrator(ADA, location=BERLIN.title)
    client.start()
    client.hide()
    client.wait_hidden()
    assert client.text("Status line") == ui.HIDING + network.REAL_ADDRESS
    assert client.current_address() == ""
    assert client.text("Location") == BERLIN.title and client.text("State picture") == "IP hidden"
    assert [request.peer for request in world.service.requests() if request.target == "/ip"] == []
    client.stop()
    assert client.current_address() == network.REAL_ADDRESS
