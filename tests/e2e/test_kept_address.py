"""An address that is kept is lent again, and one that is discarded is not."""

from harness.drive import client as ui
from harness.drive.locations import AMSTERDAM, BERLIN, CHANGE, TOKYO, choose, entries, wait_lent
from world import service
from world.accounts import ADA

SAME_IP = {"window": ui.MAIN, "role": "check box", "name": "Always Use Same IP Address"}
DISCARD = ui.button("Discard IP")


def test_the_same_address_is_kept(world, client):
    """A kept address is used again without another request: after a stop, a restart and SIGKILL."""
    client.start_ready(ADA, location=BERLIN.title)
    client.hide()
    address = wait_lent(world, client, 1)
    client.press(SAME_IP)
    client.wait(SAME_IP, checked=True)
    assert client.preferences()["lastIP"].strip() == address
    client.stop()
    client.wait_no_openvpn()

    client.hide()
    assert wait_lent(world, client, 1) == address
    client.terminate()
    client.wait_no_openvpn()

    # A run in which no location was chosen shows the text of the server's line.
    line = f"{BERLIN.city} {BERLIN.code}"
    client.start()
    client.hide()
    assert wait_lent(world, client, 1, line) == address
    client.kill()

    client.start()
    client.wait_ready()
    client.wait_no_openvpn()
    client.hide()
    assert wait_lent(world, client, 1, line) == address

    choose(client, TOKYO.title)
    assert wait_lent(world, client, 2) in TOKYO.addresses
    assert client.button_state(SAME_IP)["checked"] is False
    assert client.preferences()["lastIP"] == ""
    client.stop()


def test_the_same_address_cannot_be_kept_before_there_is_one(client):
    client.start_ready(ADA)
    client.press(SAME_IP)
    alert = client.wait_alert()
    assert alert["title"] == "Quorvane"
    assert alert["texts"] == [
        'Please check "Always Use Same IP Address" when you have found a fake IP you would like to reuse'
    ]
    client.dismiss_alert()
    assert client.button_state(SAME_IP)["checked"] is False
    assert "useSameIP" not in client.preferences()


def test_the_same_address_is_kept_over_tcp(world, client):
    client.start_ready(ADA, location=BERLIN.title, tcpUdp=0)
    client.choose_protocol("TCP")
    client.hide()
    address = wait_lent(world, client, 1)
    client.press(SAME_IP)
    client.stop()
    client.wait_no_openvpn()
    client.hide()
    assert wait_lent(world, client, 1) == address
    client.stop()


def test_a_discarded_address_never_comes_again(world, client):
    """One address of the location is discarded; the others are used further."""
    client.start_ready(ADA, location=BERLIN.title)
    client.hide()
    wait_lent(world, client, 1)
    client.press(DISCARD)
    client.home.wait_for(lambda: client.preferences().get("discardedIPs"), "an address is discarded")
    discarded = client.preferences()["discardedIPs"]
    assert discarded in BERLIN.addresses
    for count in range(2, 6):
        address = wait_lent(world, client, count)
        assert address in BERLIN.addresses and address != discarded
        if count < 5:
            client.press(CHANGE)
    assert client.preferences()["discardedIPs"] == discarded
    client.stop()


def test_discarding_the_last_address_removes_the_location(world, client):
    client.start_ready(ADA, location=AMSTERDAM.title)
    assert AMSTERDAM.title in entries(client)
    client.hide()
    (only,) = AMSTERDAM.addresses
    assert wait_lent(world, client, 1) == only
    client.press(DISCARD)
    assert wait_lent(world, client, 2) != only
    assert AMSTERDAM.title not in entries(client)
    client.stop()
    assert client.preferences()["discardedIPs"] == only

    # It is missing in the next run as well.
    client.terminate()
    client.start()
    client.wait_ready()
    assert AMSTERDAM.title not in entries(client)
    assert len(entries(client)) == len(service.LOCATIONS)
