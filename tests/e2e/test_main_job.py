"""The main job without a pointer: by keys alone, and by the actions of assistive programs alone."""

from harness.drive import client as ui
from harness.observe.outcomes import check_hidden, check_not_hidden
from world import network
from world.accounts import ADA

AMSTERDAM = "Netherlands Amsterdam"
TITLE = "Quorvane .ver"
SETTINGS_TITLE = "Quorvane Settings"


def pointer(client):
    place = client.display.run("xdotool", "getmouselocation").stdout
    return place.split(" window:")[0]


def wait_other_address(world, client, before):
    world.home.wait_for(
        lambda: client.current_address() not in (before, network.REAL_ADDRESS), "another address is shown"
    )
    after = check_hidden(client)
    assert after != before
    return after


def test_by_keys_alone(world, client):
    client.start_ready(ADA)
    untouched = pointer(client)
    keys = client.display.press_keys
    keys(TITLE, "space")  # the list of locations has the focus
    client.wait({"window": ui.MAIN, "role": "list"}, showing=True)
    for key in ("n", "e", "t", "Return"):
        client.display.run("xdotool", "key", key)
    # A choice hides the IP there. The location has one address, so the discard leads to another location.
    client.wait(ui.label("Location"), name=AMSTERDAM, showing=True)
    first = check_hidden(client)
    keys(TITLE, "alt+d")
    second = wait_other_address(world, client, first)
    keys(TITLE, "alt+s")
    world.home.wait_for(lambda: client.display.on_screen(SETTINGS_TITLE), "the settings are open")
    assert first in client.preferences()["discardedIPs"]
    keys(SETTINGS_TITLE, "Escape")
    world.home.wait_for(lambda: client.display.on_screen(TITLE), "the main window is back")
    assert check_hidden(client) == second
    keys(TITLE, "alt+r")
    client.wait({"window": ui.MAIN, "role": "check box", "name": "Do not repeat IPs"}, checked=True)
    keys(TITLE, "Return")
    client.wait_not_hidden()
    check_not_hidden(client)
    assert pointer(client) == untouched


def test_by_assistive_actions_alone(world, client):
    client.start_ready(ADA)
    untouched = pointer(client)
    client.choose_protocol("UDP")
    us_only = {"window": ui.MAIN, "role": "check box", "name": "US only"}
    client.press(us_only)
    client.wait(us_only, checked=True)
    assert client.button_state()["checked"] is False
    client.hide()
    client.wait_hidden()
    first = check_hidden(client)
    assert client.text("Location").startswith("United States")
    assert client.button_state()["checked"] is True
    client.press(ui.button("Discard IP"))
    wait_other_address(world, client, first)
    client.stop()
    check_not_hidden(client)
    assert client.button_state()["checked"] is False
    assert pointer(client) == untouched
