"""The requests that the client sends to the service, byte for byte."""

import plistlib

from harness.drive import client as ui
from world import home, network, service
from world.accounts import ADA

PARIS = next(place for place in service.LOCATIONS if place.city == "Paris")


def identity(world):
    """(version, device identifier) that the client must send from this home."""
    contents = world.home.path(f"{home.CONTENTS}/Info.plist")
    version = plistlib.loads(contents.read_bytes())["CFBundleVersion"]
    card = world.home.run("cat", "/sys/class/net/eth0/address").stdout.strip().replace(":", "").upper()
    return version, f"{card}-{version}"


def test_targets_of_a_session(world, client):
    client.remember_administrator(ADA, location=PARIS.title)
    version, device = identity(world)
    client.start()
    client.wait_ready()
    requests = world.service.requests()
    assert [request.target for request in requests] == [
        f"/?cmd=MRTSL&ver={version}&device=1&systamp=MacOS,user,mobilebox&uniqueid={device}"
    ]
    assert requests[0].peer == network.REAL_ADDRESS

    client.choose_protocol("TCP")
    client.hide()
    client.wait_hidden()
    requests = world.service.requests()
    user = client.preferences()["vpnUsername"]
    address = client.current_address()
    assert [request.target for request in requests[1:]] == [
        f"/?cmd=VPNC&ver={version}&device=1&server=571&desiredip={address}&sessid={user}"
        f"&&systamp=MacOS,user,mobilebox&uniqueid={device}&proto=TCP",
        "/ip",
    ]
    assert requests[1].peer == network.REAL_ADDRESS
    assert requests[2].peer == address, "the script's request goes through the tunnel"

    client.stop()
    assert len(world.service.requests()) == 3, "stopping sends no request"


def test_one_server_list_request_per_run(world, client):
    client.start_ready(ADA)
    with client.noticed_loss(world.network.unplugged_cable()):
        pass
    client.hide()
    client.wait_hidden()
    assert len(world.service.requests_of("MRTSL")) == 1
    assert client.text("Status line").startswith(ui.HIDING)
