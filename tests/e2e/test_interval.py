"""The change of the address after the interval that the user has set."""

import time

from harness.drive import client as ui
from harness.drive.locations import RANDOM, selected, wait_lent
from world import service
from world.accounts import ADA

CHANGE_EVERY = {"window": ui.MAIN, "role": "check box", "name": "Change IP every"}


def test_the_address_changes_by_itself(world, client):
    """With the shortest interval, another address is requested one minute after the first one was lent."""
    client.start_ready(ADA, changeIpEvery=True, changeIpInterval=1)
    assert client.button_state(CHANGE_EVERY)["checked"] is True
    client.hide()
    hidden_at = client.wait_hidden()["at"]
    first = wait_lent(world, client, 1)
    assert selected(client) == RANDOM
    client.home.wait_for(lambda: len(world.service.requests_of("VPNC")) == 2, "a change after a minute")
    # The log has the time of the request itself, however late this test reads it.
    lent_at = hidden_at + time.time() - time.monotonic()
    waited = world.service.requests_of("VPNC")[1].time - lent_at
    assert 55 < waited < 75, waited
    second = wait_lent(world, client, 2)
    assert service.location_of(second) != service.location_of(first)
    client.press(CHANGE_EVERY)
    client.wait(CHANGE_EVERY, checked=False)
    client.stop()
