"""Random locations: each is used once, then an attempt waits until the user chooses."""

import os
import statistics
import time

import pytest

from harness.drive import client as ui
from harness.drive.locations import (
    AMSTERDAM,
    BERLIN,
    RANDOM,
    TOKYO,
    choose,
    lent_addresses,
    selected,
    wait_lent,
)
from world import network, service
from world.accounts import ADA

US_ONLY = {"window": ui.MAIN, "role": "check box", "name": "US only"}


def processor_seconds(pid):
    with open(f"/proc/{pid}/stat", encoding="ascii") as stat:
        fields = stat.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def client_process(world):
    return next(process.pid for process in world.home.processes("quorvane"))


def test_random_locations_until_every_one_was_used_and_again(world, client):
    """No location is used twice; then the attempt waits, idle and with a working window."""
    client.start_ready(ADA)
    client.hide()
    places = []
    for count in range(1, len(service.LOCATIONS) + 1):
        places.append(service.location_of(wait_lent(world, client, count)).title)
        assert selected(client) == places[-1]
        choose(client, RANDOM)
    assert sorted(places) == sorted(place.title for place in service.LOCATIONS)

    client.wait(ui.label("Notice"), showing=True, matches="^Every location has been used in this rotation")
    assert client.text("Status line") == ui.SEARCHING
    pid = client_process(world)
    begun, used = time.monotonic(), processor_seconds(pid)
    time.sleep(5)  # the length of the measurement
    share = (processor_seconds(pid) - used) / (time.monotonic() - begun)
    answers = client.request("round_trips", key="first", count=50)
    print(
        f"waiting: {share:.1%} of a core, answers in {statistics.median(answers) * 1000:.1f} ms, "
        f"at most {max(answers) * 1000:.1f} ms"
    )
    assert share < 0.02
    assert statistics.median(answers) < 0.1
    assert len(world.service.requests_of("VPNC")) == len(
        service.LOCATIONS
    ), "nothing is requested while it waits"
    assert lent_addresses(world) == []

    client.press(US_ONLY)
    address = wait_lent(world, client, len(service.LOCATIONS) + 1)
    assert service.location_of(address).country_code == "US"
    client.stop()


@pytest.fixture(name="waiting")
def fixture_waiting(make_world, make_client):
    """A network with three locations and a client whose attempt waits, because every location was used."""
    places = (BERLIN, AMSTERDAM, TOKYO)
    world = make_world(groups=service.groups(places))
    client = make_client(world)
    client.start_ready(ADA)
    client.hide()
    for count in range(1, len(places) + 1):
        wait_lent(world, client, count)
        choose(client, RANDOM)
    client.wait(ui.label("Notice"), showing=True)
    return world, client


def test_a_waiting_attempt_can_be_stopped(waiting):
    world, client = waiting
    client.stop()
    assert not client.shows("Notice")
    assert world.home.public_address(client.user) == network.REAL_ADDRESS
    choose(client, RANDOM)
    client.wait(ui.label("Notice"), showing=True)
    # A fixed location begins a new rotation, in which every location is free again.
    choose(client, BERLIN.title)
    assert wait_lent(world, client, 4) in BERLIN.addresses
    client.stop()


def test_the_program_can_be_ended_while_an_attempt_waits(waiting):
    world, client = waiting
    client.terminate()
    client.wait_no_openvpn()
    assert len(world.service.requests_of("VPNC")) == 3
