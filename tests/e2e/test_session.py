"""A whole session: from the press to the lent address and back."""

import plistlib

import pytest

from harness.drive import client as ui
from harness.observe.secret_search import ProcessWatch
from world import home as homes
from world import network, service
from world.accounts import ADA, SUE
from world.service import BERLIN


def check_hidden(world, client, address, place):
    """The window, the service and the gateway agree on the lent address."""
    assert client.text("Status line") == ui.HIDING + network.REAL_ADDRESS
    assert client.current_address() == address
    assert client.text("Location") == place.title
    assert client.text("Country flag") == f"Flag: {place.country_code.upper()}"
    assert client.text("State picture") == "IP hidden"
    assert client.button_state()["name"] == "Stop Hiding IP"
    assert client.shows("Location label") and client.shows("Location") and client.shows("Country flag")
    assert address in world.service.lent().values()
    assert world.home.public_address(client.user) == address
    assert world.service.requests()[-1].peer == address


def check_not_hidden(world, client):
    assert client.current_address() == network.REAL_ADDRESS
    assert client.text("State picture") == "IP not hidden"
    assert client.button_state()["name"] == "Quorvane"
    assert (
        not client.shows("Location label")
        and not client.shows("Location")
        and not client.shows("Country flag")
    )
    client.wait_no_openvpn()
    assert world.home.public_address(client.user) == network.REAL_ADDRESS


@pytest.mark.parametrize("protocol", ["UDP", "TCP"])
def test_fixed_location(world, client, protocol):
    client.start_ready(ADA, location=BERLIN.title)
    client.choose_protocol(protocol)
    client.hide()
    client.wait({"description": "State picture"}, name="Searching")
    client.wait_hidden()

    requests = world.service.requests_of("VPNC")
    assert len(requests) == 1
    assert requests[0].parameter("proto") == protocol
    assert requests[0].parameter("desiredip") in BERLIN.addresses
    check_hidden(world, client, requests[0].parameter("desiredip"), BERLIN)

    tunnel = client.openvpn()
    assert len(tunnel) == 1 and tunnel[0].uid == 0, "OpenVPN runs once, as root"
    server = (
        f"{requests[0].parameter('desiredip')}:{service.UDP_PORT if protocol == 'UDP' else service.TCP_PORT}"
    )
    link = {"UDP": "UDPv4", "TCP": "TCPv4_CLIENT"}[protocol]
    assert f"{link} link remote: [AF_INET]{server}\n" in client.openvpn_log()

    client.stop()
    check_not_hidden(world, client)
    assert len(world.service.requests_of("VPNC")) == 1


def test_first_run_requests_the_administrator_and_starts(world, client):
    """Nothing is stored: the dialog opens by itself, and after it the first session starts by itself."""
    client.start()
    client.wait_dialog()
    assert client.dialog_text("User name") == "Joe Plain"
    assert world.service.requests_of("VPNC") == []
    client.enter_administrator(ADA.name, ADA.password)
    client.wait_dialog_closed()
    client.wait_hidden()

    requests = world.service.requests_of("VPNC")
    assert len(requests) == 1, "one attempt, one request"
    address = requests[0].parameter("desiredip")
    check_hidden(world, client, address, service.location_of(address))
    client.stop()
    check_not_hidden(world, client)


def test_the_user_is_the_administrator(world, make_client):
    client = make_client(world, SUE.name)
    client.start_ready(SUE, location=BERLIN.title)
    client.hide()
    client.wait_hidden()
    address = world.service.requests_of("VPNC")[0].parameter("desiredip")
    check_hidden(world, client, address, BERLIN)
    client.stop()
    check_not_hidden(world, client)


def test_a_second_session_gets_an_address_of_its_own_request(world, client):
    client.start_ready(ADA, location=BERLIN.title)
    for count in (1, 2):
        client.hide()
        client.wait_hidden()
        requests = world.service.requests_of("VPNC")
        assert len(requests) == count
        check_hidden(world, client, requests[-1].parameter("desiredip"), BERLIN)
        client.stop()
        check_not_hidden(world, client)


def test_choosing_a_location_starts_a_session_there(world, client):
    client.start_ready(ADA)
    entries = client.request("entries", key="first", query=ui.label("Location choice"))
    assert entries == ["Random Location", *sorted(place.title for place in service.LOCATIONS)]
    place = next(place for place in service.LOCATIONS if place.city == "Tokyo")
    client.request("choose", key="first", query=ui.label("Location choice"), entry=place.title)
    client.wait_hidden()
    requests = world.service.requests_of("VPNC")
    assert len(requests) == 1 and requests[0].parameter("desiredip") in place.addresses
    check_hidden(world, client, requests[0].parameter("desiredip"), place)


def test_files_of_a_session(world, client):
    """The session's files are in their places, and those that hold a secret are private."""
    client.start_ready(ADA, location=BERLIN.title)
    client.hide()
    client.wait_hidden()
    folder = "Documents/Quorvane/"
    preferences = client.preferences()
    assert (
        client.file(folder + "qrvp.log").read_text(encoding="utf-8")
        == f"trying to connect {BERLIN.title}\nconnection success {BERLIN.title}\n"
    )
    assert (
        client.file(folder + ".vpnCreds.txt").read_text(encoding="utf-8")
        == f"{preferences['vpnUsername']}\n{preferences['vpnPassword']}"
    )
    assert preferences["vpnConfigPath"] == f"{client.folder}/{folder}qrvp.ovpn"
    assert preferences["countryCode"] == BERLIN.country_code
    address = world.service.requests_of("VPNC")[0].parameter("desiredip")
    assert f"remote {address} " in client.file(folder + "qrvp.ovpn").read_text(encoding="utf-8")
    for name in (folder + ".vpnCreds.txt", folder + "qrvp.ovpn", ui.PREFERENCES):
        assert client.file(name).stat().st_mode & 0o077 == 0, name
    assert plistlib.loads(client.file(ui.PREFERENCES).read_bytes())


def test_no_secret_on_a_command_line(world, client):
    """While privileged lines run, the administrator's password is on no command line and in no log."""
    client.remember_administrator(ADA, location=BERLIN.title)
    watch = ProcessWatch(world.home)
    client.start()
    client.hide()
    client.wait_hidden()
    watch.stop()
    seen = [command.replace(b"\0", b" ").decode(errors="replace") for command in watch.commands()]
    guard = f"{homes.CONTENTS}/Resources/openvpn --config"
    assert any(line.startswith(guard) for line in seen), seen
    assert not [line for line in seen if ADA.password in line]
    # What the watch can miss is in sudo's own log: every privileged line, with its arguments.
    privileged = world.home.privileged_lines()
    assert any("/Resources/openvpn" in line for line in privileged), privileged
    assert not [line for line in privileged if ADA.password in line]
    assert ADA.password not in client.output()
