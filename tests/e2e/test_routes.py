"""The guard and the home's routes: what ends a tunnel and what does not, and that all tables come back."""

import contextlib
import itertools
import os
import signal
import time

import pytest

from harness.conditions.guarded_home import Watched, check_tables, tables
from harness.conditions.probing import PLAIN, PROBE_PORT
from harness.conditions.pushing_server import ADDRESS, PORT, configuration, pushing
from harness.home.deadlines import EVENTUALLY
from harness.observe import figures
from world import network

RECORD = "/run/quorvane-openvpn.routes"


def change(*command):
    """Changes something in the home's network, as the home does."""
    network.run("ip", "-n", network.HOME, *command)


@pytest.fixture(name="watched")
def _watched(make_world):
    one = Watched(make_world(ipv6=True))
    yield one
    one.close()


@pytest.fixture(name="tunnel")
def _tunnel(watched):
    """A tunnel that is up."""
    with pushing(watched.world, []):
        assert watched.start(configuration(watched.world)), watched.log()
        yield watched


@pytest.mark.parametrize(
    "route",
    [
        ["route", "add", "192.0.2.0/24", "via", network.ROUTER_ADDRESS],
        ["-6", "route", "add", "2001:db8:2::/48", "via", network.ROUTER_ADDRESS_6],
        ["route", "add", "0.0.0.0/1", "via", network.ROUTER_ADDRESS, "metric", "5"],
    ],
    ids=["IPv4", "IPv6", "a half"],
)
def test_route_past_the_tunnel_ends_it(tunnel, route):
    begun = time.monotonic()
    change(*route)
    tunnel.guard.wait(EVENTUALLY)
    figures.record(
        "a route past the tunnel: seconds until its guard has ended", round(time.monotonic() - begun, 3)
    )
    assert " leads past it\n" in tunnel.log() and "the tunnel was ended\n" in tunnel.log()
    assert not tunnel.home.processes("openvpn")
    tunnel.check_as_before()


def test_rule_with_a_table_of_its_own_ends_it(tunnel):
    change("route", "add", "default", "via", network.ROUTER_ADDRESS, "table", "100")
    tunnel.check_nothing_beside()
    change("rule", "add", "to", PLAIN, "lookup", "100", "priority", "50")
    tunnel.guard.wait(EVENTUALLY)
    assert "the tunnel is ended: the route to 0.0.0.0/0 leads past it\n" in tunnel.log()
    change("rule", "delete", "priority", "50")
    network.run("ip", "-n", network.HOME, "route", "flush", "table", "100", check=False)
    tunnel.check_as_before()


def test_changes_of_the_home_end_nothing(tunnel):
    """The default route is lost and regained, another one comes, and so does a network of containers."""
    change("route", "delete", "default")
    change("route", "add", "default", "via", network.ROUTER_ADDRESS)
    tunnel.check_nothing_beside()
    change("route", "add", "default", "via", "192.168.77.50", "metric", "7", "proto", "dhcp")
    change("route", "add", "192.168.77.128/25", "via", "192.168.77.50")
    change("link", "add", "docker0", "type", "veth", "peer", "name", "docker1")
    change("address", "add", "172.17.0.1/16", "dev", "docker0")
    change("link", "set", "docker1", "up")
    change("link", "set", "docker0", "up")
    tunnel.check_nothing_beside()
    change("link", "delete", "docker0")
    change("route", "delete", "default", "metric", "7")
    tunnel.check_nothing_beside()
    assert tunnel.guard.poll() is None and " is ended" not in tunnel.log()
    tunnel.end()
    tunnel.check_as_before()


def test_what_went_is_put_back(tunnel):
    change("route", "delete", "default")
    change("-6", "route", "delete", "default")
    tunnel.end()
    tunnel.check_as_before()


def test_the_new_default_route_of_the_home_is_kept(tunnel):
    change("route", "replace", "default", "via", "192.168.77.50")
    expected = sorted(
        line.replace(f"default via {network.ROUTER_ADDRESS}", "default via 192.168.77.50")
        for line in tunnel.before
    )
    tunnel.end()
    check_tables(tunnel.home, expected)


def test_tunnel_that_loses_its_own_routes_is_ended(tunnel):
    change("route", "delete", "128.0.0.0/1")
    tunnel.guard.wait(EVENTUALLY)
    assert "its device does not carry all IPv4 addresses any more\n" in tunnel.log()
    tunnel.check_as_before()


def test_named_and_several_servers(watched):
    """The route to a server that the configuration names is known from OpenVPN's log and taken back."""
    hosts = watched.home.path("/etc/hosts")
    watched.home.write("/etc/hosts", hosts.read_text(encoding="utf-8") + f"{ADDRESS} vpn.quorvane.test\n")
    text = configuration(watched.world, f"203.0.113.252 1302\nremote vpn.quorvane.test {PORT}")
    with pushing(watched.world, []):
        assert watched.start(text), watched.log()
        watched.check_nothing_beside()
        watched.end()
    watched.check_as_before()


def test_server_in_a_connection_block(watched):
    text = configuration(watched.world).replace(
        f"remote {ADDRESS} {PORT}\n", f"<connection>\nremote {ADDRESS} {PORT} udp\n</connection>\n"
    )
    assert "<connection>" in text
    with pushing(watched.world, []):
        assert watched.start(text), watched.log()
        watched.check_nothing_beside()
        watched.end()
    watched.check_as_before()


def test_address_that_the_tunnel_may_not_have(watched):
    """A server that gives the tunnel the address of the home's router gets no session."""
    with pushing(watched.world, [f"ifconfig {network.ROUTER_ADDRESS} 255.255.255.0"]):
        if watched.start(configuration(watched.world)):
            watched.check_nothing_beside()
            watched.end()
        watched.guard.wait(EVENTUALLY)
    watched.check_as_before()


def guards(home):
    return home.processes("openvpn-guard")


def kill(processes, number=signal.SIGKILL):
    assert processes
    for process in processes:
        os.kill(process.pid, number)


@pytest.mark.parametrize("order", list(itertools.permutations(("guard", "openvpn"))), ids="-".join)
@pytest.mark.parametrize("stopped", [False, True], ids=["at once", "with the guard stopped before"])
def test_next_guard_restores_what_a_killed_one_left(tunnel, order, stopped):
    """Thousands of routes, and no default route; the guard cannot act any more, or is killed as well."""
    home = tunnel.home
    kill(guards(home), signal.SIGSTOP)
    added = "".join(
        f"route add 100.{number // 256}.{number % 256}.0/24 via {network.ROUTER_ADDRESS}\n"
        for number in range(3000)
    )
    network.run("ip", "-n", network.HOME, "-batch", "-", input=added + "route delete default\n")
    if not stopped:
        kill(guards(home), signal.SIGCONT)
    for name in order:
        found = guards(home) if name == "guard" else home.processes("openvpn")
        for process in found:
            os.kill(process.pid, signal.SIGKILL)
    # nsenter, which started the guard, has stopped itself with it.
    tunnel.guard.send_signal(signal.SIGCONT)
    tunnel.guard.wait(EVENTUALLY)
    home.wait_for(lambda: not home.processes("openvpn"), "OpenVPN has ended with its guard")
    if stopped:
        assert tables() != tunnel.before and home.path(RECORD).stat().st_mode & 0o777 == 0o600
    # The next guard starts nothing, and restores the tables all the same.
    assert not tunnel.start("up /bin/true\n")
    check_tables(home, tunnel.before)
    assert not home.path(RECORD).exists()


def test_guard_killed_while_its_openvpn_starts(watched):
    """At random moments of the launch; the session after it works, and the tables are as before."""

    def killed():
        for process in guards(watched.home):
            with contextlib.suppress(ProcessLookupError):
                os.kill(process.pid, signal.SIGKILL)
        return watched.guard.poll() is not None

    with pushing(watched.world, []):
        for pause in (0.05, 0.3, 0.9, 1.1, 1.2):
            watched.begin(configuration(watched.world))
            time.sleep(pause)  # the moment is what this test is about
            # A busy machine may not have started the guard by then.
            watched.home.wait_for(killed, "the guard is killed")
        assert watched.start(configuration(watched.world)), watched.log()
        watched.check_nothing_beside()
        watched.end()
    watched.check_as_before()
    watched.wait_open({(PLAIN, PROBE_PORT)})
