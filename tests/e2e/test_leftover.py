"""What an earlier run left behind."""

import shutil

import pytest

from harness.drive import client as ui
from world import network
from world.accounts import ADA


@pytest.fixture
def leftover(world):
    """A process called openvpn that nobody looks after any more, owned by root."""
    shutil.copy("/usr/bin/sleep", world.home.path("/var/tmp/openvpn"))
    process = world.home.popen("setsid", "/var/tmp/openvpn", "600")
    world.home.wait_for(lambda: world.home.processes("openvpn"), 5, "the left-over process runs")
    yield
    process.wait(5)


def test_left_over_process_is_killed_at_the_start(world, client, leftover):  # pylint: disable=unused-argument
    client.remember_administrator(ADA)
    client.start()
    client.wait_no_openvpn(ui.ANSWER)
    killed = [line for line in world.home.privileged_lines() if "sudo -S killall -9 openvpn" in line]
    assert killed, "it went the privileged way"
    client.wait_ready()
    assert client.text("Status line") == ui.NOT_HIDING


def test_only_that_name_is_killed(world, client, leftover):  # pylint: disable=unused-argument
    shutil.copy("/usr/bin/sleep", world.home.path("/var/tmp/openvpn2"))
    world.home.popen("/var/tmp/openvpn2", "600")
    world.home.wait_for(lambda: world.home.processes("openvpn2"), 5, "the other process runs")
    client.remember_administrator(ADA)
    client.start()
    client.wait_no_openvpn(ui.ANSWER)
    assert world.home.processes("openvpn2")


def test_the_gateways_servers_stay(world, client, leftover):  # pylint: disable=unused-argument
    """The client kills by name; the OpenVPN servers must not be among those it reaches."""
    client.remember_administrator(ADA)
    client.start()
    client.wait_no_openvpn(ui.ANSWER)
    client.hide()
    client.wait_hidden()
    assert world.service.running
    assert world.home.public_address() != network.REAL_ADDRESS
