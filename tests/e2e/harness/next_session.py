"""What is left after a fault, and that life goes on: shared by the tests of faults at home."""

from harness import client as ui
from world import network, service

NOT_AVAILABLE = ["Location is not available.", "Please try a different location."]
BERLIN = next(place for place in service.LOCATIONS if place.city == "Berlin")


def check_given_up(world, client, timeout=ui.FAILURE):
    """The alert of an attempt that failed; after it the window, the home and the service are as before the press."""
    alert = client.wait_alert(timeout)
    assert alert == {"title": "Quorvane", "texts": NOT_AVAILABLE, "buttons": ["OK"]}
    client.dismiss_alert()
    client.wait({"role": "alert"}, 10, absent=True)
    check_not_hidden(world, client)


def check_not_hidden(world, client, key="first"):
    assert client.text("Status line", key=key) == ui.NOT_HIDING
    assert client.text("State picture", key=key) == "IP not hidden"
    assert client.text("Current IP address", key=key).strip() == network.REAL_ADDRESS
    found = client.ask("read", key=key, query=ui.HIDE)
    assert found["name"] == "Quorvane" and found["enabled"] and not found["checked"]
    client.wait_no_openvpn()
    world.home.wait_for(lambda: world.home.public_address() == network.REAL_ADDRESS, 10, "the real address again")


def check_hidden(world, client, key="first", user=None):
    """Shown, lent and seen from outside are one address; that address."""
    client.wait(ui.label("Status line"), ui.SESSION, key=key, name=ui.HIDING + network.REAL_ADDRESS)
    address = world.service.requests_of("VPNC")[-1].parameter("desiredip")
    assert client.text("Current IP address", key=key).strip() == address
    assert client.text("State picture", key=key) == "IP hidden"
    assert address in world.service.lent().values()
    assert world.home.public_address(user or client.user) == address
    assert len(client.openvpn()) == 1
    return address


def press(client, key="first"):
    client.wait(ui.HIDE, ui.ANSWER, key=key, showing=True, enabled=True)
    client.press(ui.HIDE, key=key)


def check_session(world, client, key="first"):
    """A press, the lent address, and back: the session after the fault works."""
    press(client, key)
    address = check_hidden(world, client, key)
    client.wait(ui.HIDE, ui.ANSWER, key=key, name="Stop Hiding IP", enabled=True)
    client.press(ui.HIDE, key=key)
    client.wait(ui.label("Status line"), ui.SESSION, key=key, name=ui.NOT_HIDING)
    check_not_hidden(world, client, key)
    return address
