"""An OpenVPN process that an earlier run left behind."""

import shutil
import time

import pytest

from harness.drive import client as ui
from harness.home.deadlines import EVENTUALLY
from harness.observe import figures
from harness.observe.opens import Opens
from world import network
from world.accounts import ADA, NORM

# Kills that are refused are 1, 2, 4, ... seconds apart: fewer than six in this time.
SECONDS = 20
# Each is followed by a reset, which reads the preferences twice; the dialog's own checks read them as well.
MOST_OPENS = 30
MOST_LINES = 10
SLOWEST_ANSWER = 2  # seconds; the event loop answers within milliseconds unless it is never free


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


@pytest.fixture
def protected(world):
    """A process named openvpn of another user, which a client without an administrator cannot end."""
    shutil.copy("/usr/bin/sleep", world.home.path("/var/tmp/openvpn"))
    process = world.home.popen("setsid", "/var/tmp/openvpn", "600", user=NORM.name)
    world.home.wait_for(lambda: world.home.processes("openvpn"), "the other user's process runs")
    yield
    world.home.run("killall", "-9", "openvpn")
    process.wait(EVENTUALLY)


@pytest.mark.usefixtures("protected")
def test_process_that_cannot_be_killed(world, client):
    """The kill is tried again seldom, is logged once, and the windows can be used meanwhile."""
    client.seed_preferences(location="Netherlands Amsterdam")
    client.start()
    client.wait_dialog()
    client.wait_output("Stopped? > 0", "the first kill was refused")
    client.wait_ready()
    lines, opens = len(client.output().splitlines()), Opens(client.file(ui.PREFERENCES))
    client.request("probe_begin", key="first")
    end = time.monotonic() + SECONDS
    entered = 0
    while time.monotonic() < end:  # the time is what the test is about
        entered += 1
        client.fill_dialog(f"name {entered}", "password")
        assert client.dialog_text("User name") == f"name {entered}"
    probed = client.request("probe_end")
    opened, lines = opens.close(), client.output().splitlines()[lines:]
    slowest = max((finished - begun for begun, finished in probed["slow"]), default=0)
    figures.record("preferences opened", opened)
    figures.record("lines logged", len(lines))
    figures.record("slowest answer, seconds", slowest)
    figures.record("answers", probed["answered"])
    assert 2 <= opened <= MOST_OPENS, "the kill was tried again, but a few times only"
    assert len(lines) <= MOST_LINES, lines
    assert client.output().count("Stopped? > 0") == 1
    assert probed["answered"] > 0 and slowest < SLOWEST_ANSWER
    assert world.home.processes("openvpn"), "the process was there all the time"
    assert client.running()
