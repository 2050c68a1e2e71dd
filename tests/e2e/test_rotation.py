"""Which location is chosen: fixed, US only, by the tray's menu."""

from harness.drive import client as ui
from harness.drive.locations import BERLIN, CHANGE, CHOICE, RANDOM, selected, wait_lent
from harness.drive.tray import TrayIcon
from world import service
from world.accounts import ADA

US_ONLY = {"window": ui.MAIN, "role": "check box", "name": "US only"}


def test_a_fixed_location_keeps_its_place_over_changes(world, client):
    client.start_ready(ADA, location=BERLIN.title)
    client.hide()
    for count in (1, 2, 3):
        assert wait_lent(world, client, count) in BERLIN.addresses
        assert selected(client) == BERLIN.title
        if count < 3:
            client.press(CHANGE)
    client.stop()


def test_us_only(world, client):
    american = [place.title for place in service.LOCATIONS if place.country_code == "US"]
    client.start_ready(ADA, location=BERLIN.title)
    client.press(US_ONLY)
    client.wait(CHOICE, name=RANDOM)
    client.hide()
    places = []
    for count in range(1, 5):
        places.append(service.location_of(wait_lent(world, client, count)).title)
        assert selected(client) == RANDOM
        client.press(CHANGE)
    assert (
        sorted(places[:2]) == sorted(places[2:]) == sorted(american)
    ), "each location is used once before one is used again"
    wait_lent(world, client, 5)
    client.stop()
    assert client.preferences()["requireUS"] is True


def test_switching_to_us_only_moves_a_session_there(world, client):
    client.start_ready(ADA, location=BERLIN.title)
    client.hide()
    assert wait_lent(world, client, 1) in BERLIN.addresses
    client.press(US_ONLY)
    assert service.location_of(wait_lent(world, client, 2)).country_code == "US"
    client.stop()


def test_change_by_the_trays_menu_is_random(world, client):
    tray = TrayIcon(client)
    tray.appear()
    client.start_ready(ADA, location=BERLIN.title)
    tray.choose("Quorvane")
    assert wait_lent(world, client, 1) in BERLIN.addresses
    tray.choose("Change IP")
    second = service.location_of(wait_lent(world, client, 2))
    assert selected(client) == second.title
    tray.choose("Stop Hiding IP")
    client.wait_not_hidden()
    client.wait_no_openvpn()
    # While nothing is hidden, it starts an attempt with a random location.
    tray.choose("Change IP")
    third = service.location_of(wait_lent(world, client, 3))
    assert third != second
    client.stop()
