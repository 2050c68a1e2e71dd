"""An OpenVPN process that an earlier run left behind."""

import shutil

import pytest

from harness.drive import client as ui
from harness.home.deadlines import EVENTUALLY
from world import network
from world.accounts import ADA


@pytest.fixture
def leftover(world):
    """A process of root with the name openvpn that no other program controls."""
    shutil.copy("/usr/bin/sleep", world.home.path("/var/tmp/openvpn"))
    process = world.home.popen("setsid", "/var/tmp/openvpn", "600")
    world.home.wait_for(lambda: world.home.processes("openvpn"), "the left-over process runs")
    yield
    process.wait(EVENTUALLY)


@pytest.mark.usefixtures("leftover")
def test_left_over_process_is_killed_at_the_start(world, client):
    client.remember_administrator(ADA)
    client.start()
    client.wait_no_openvpn()
    killed = [line for line in world.home.privileged_lines() if "sudo -S killall -9 openvpn" in line]
    assert killed, "the kill is a privileged line"
    client.wait_ready()
    assert client.text("Status line") == ui.NOT_HIDING


@pytest.mark.usefixtures("leftover")
def test_only_that_name_is_killed(world, client):
    shutil.copy("/usr/bin/sleep", world.home.path("/var/tmp/openvpn2"))
    world.home.popen("/var/tmp/openvpn2", "600")
    world.home.wait_for(lambda: world.home.processes("openvpn2"), "the other process runs")
    client.remember_administrator(ADA)
    client.start()
    client.wait_no_openvpn()
    assert world.home.processes("openvpn2")


@pytest.mark.usefixtures("leftover")
def test_the_gateways_servers_stay(world, client):
    """The client kills by name, and must not reach the OpenVPN servers on the gateway."""
    client.remember_administrator(ADA)
    client.start()
    client.wait_no_openvpn()
    client.hide()
    client.wait_hidden()
    assert world.service.running
    assert world.home.public_address() != network.REAL_ADDRESS
