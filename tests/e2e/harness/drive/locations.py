"""The choice of a location in the main window, and the address that is lent then."""

from harness.drive import client as ui
from world import service

RANDOM = "Random Location"
CHANGE = ui.button("Change IP")
CHOICE = ui.label("Location choice")


def place_in(city):
    return next(place for place in service.LOCATIONS if place.city == city)


BERLIN, AMSTERDAM, TOKYO = place_in("Berlin"), place_in("Amsterdam"), place_in("Tokyo")


def lent_addresses(world):
    return list(world.service.lent().values())


def wait_lent(world, client, count, text=None):
    """Waits until the address of request `count` is lent, and checks it on all sides; returns it."""
    client.home.wait_for(lambda: len(world.service.requests_of("VPNC")) >= count, f"request {count}")
    client.wait_hidden()
    requests = world.service.requests_of("VPNC")
    assert len(requests) == count, [request.target for request in requests]
    address = requests[-1].parameter("desiredip")
    check_lent(world, client, address, text)
    return address


def check_lent(world, client, address, text):
    assert client.current_address() == address
    assert lent_addresses(world) == [address], "one address is lent at a time"
    assert world.home.public_address(client.user) == address
    assert client.text("Location") == (text or service.location_of(address).title)


def entries(client):
    return client.request("entries", key="first", query=CHOICE)


def choose(client, title):
    client.request("choose", key="first", query=CHOICE, entry=title)


def selected(client):
    """The title that the closed pop-up shows."""
    return client.request("read", key="first", query=CHOICE)["name"]
